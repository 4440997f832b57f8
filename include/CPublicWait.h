#ifndef CPUBLICWAIT_H
#define CPUBLICWAIT_H

#include "k7eCoreExport.h"

/*!
    Waits that block the calling thread, for code that is not a thread class. Static members only.
*/
class K7ECORE_EXPORT CPublicWait
{
public:
    CPublicWait() = delete;

    //! Waits \a seconds.
    static void sleep(unsigned long seconds);
    //! Waits \a milliseconds.
    static void msleep(unsigned long milliseconds);
    //! Waits \a microseconds.
    static void usleep(unsigned long microseconds);
};

#endif // CPUBLICWAIT_H
