#ifndef CBENCHMARKTIMER_H
#define CBENCHMARKTIMER_H

#include "k7eCoreExport.h"

#include <QString>

/*!
    Measures intervals in ticks of the processor's time-stamp counter, at the cost of a few
    instructions. On a processor without one the ticks are nanoseconds of a monotonic clock.
*/
class K7ECORE_EXPORT CBenchmarkTimer
{
public:
    /*!
        The ticks in a microsecond, as ticksPerUs() found them; negative until it has. It is written
        without a lock: call ticksPerUs() once before other threads run.
    */
    static double mTicksPerUs;

    //! Makes a timer that was started at tick 0.
    CBenchmarkTimer();
    CBenchmarkTimer(const CBenchmarkTimer &other);
    CBenchmarkTimer &operator=(const CBenchmarkTimer &other);

    //! Starts the interval now.
    void start();
    //! Returns the ticks since start().
    Q_REQUIRED_RESULT double elapsed() const;
    //! Returns the name of the unit of elapsed(): "CPU Ticks".
    Q_REQUIRED_RESULT QString unit() const;
    //! Returns the ticks in a microsecond. The first call measures them, which takes 100 ms.
    static double ticksPerUs();

private:
    unsigned long long mStart = 0;
};

#endif // CBENCHMARKTIMER_H
