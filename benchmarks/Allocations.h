#ifndef ALLOCATIONS_H
#define ALLOCATIONS_H

/*!
    Returns how often the program has called malloc(), calloc() or realloc(), operator new and Qt's
    containers included.
*/
long allocations();

#endif // ALLOCATIONS_H
