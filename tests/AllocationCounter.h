#ifndef ALLOCATIONCOUNTER_H
#define ALLOCATIONCOUNTER_H

#include <cstdint>

/*!
    Counts what a thread allocates, Qt's containers included. With the address sanitizer its hooks
    count, in any other build malloc() and the like of the program.
*/
namespace AllocationCounter {

struct Counts
{
    std::int64_t calls = 0; //!< of malloc(), calloc() and realloc()
    std::int64_t bytes = 0; //!< of all blocks together
    std::int64_t peak = 0;  //!< most bytes at a time, beyond those at the start
};

//! Starts to count what this thread allocates.
void start();
//! Returns what was counted since the start.
Counts stop();

} // namespace AllocationCounter

#endif // ALLOCATIONCOUNTER_H
