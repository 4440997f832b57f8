#include "CBenchmarkTimer.h"

#include "CPublicWait.h"

#include <QtGlobal>

#ifdef Q_PROCESSOR_X86
#include <x86intrin.h>
#else
#include <chrono>
#endif

namespace {

#ifdef Q_PROCESSOR_X86
constexpr char kUnit[] = "CPU Ticks";

quint64 now()
{
    return __rdtsc();
}
#else
constexpr char kUnit[] = "ns";

quint64 now()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<quint64>(std::chrono::duration_cast<std::chrono::nanoseconds>(time).count());
}
#endif

} // namespace

double CBenchmarkTimer::mTicksPerUs = -1.0;

CBenchmarkTimer::CBenchmarkTimer() = default;
CBenchmarkTimer::CBenchmarkTimer(const CBenchmarkTimer &other) = default;
CBenchmarkTimer &CBenchmarkTimer::operator=(const CBenchmarkTimer &other) = default;

void CBenchmarkTimer::start()
{
    mStart = now();
}

double CBenchmarkTimer::elapsed() const
{
    return static_cast<double>(now() - mStart);
}

QString CBenchmarkTimer::unit() const
{
    return QLatin1String(kUnit);
}

double CBenchmarkTimer::ticksPerUs()
{
    constexpr unsigned long kWaitMs = 100;
    constexpr double kWaitUs = 100000.0;
    if (mTicksPerUs < 0) {
        const quint64 start = now();
        CPublicWait::msleep(kWaitMs);
        mTicksPerUs = static_cast<double>(now() - start) / kWaitUs;
    }
    return mTicksPerUs;
}
