#include "Pairs.h"

#include "CDateTime.h"
#include "CTime.h"

#include <QDateTime>

#include <cmath>

namespace {

void addTime()
{
    // The same arithmetic on doubles, which takes next to nothing: 25 ns more than that.
    const Pairs::Limit limit = {1, 25, 0};
    Pairs::add(
        "CTime::toMS of s", limit, [t = CTime(90, CTime::S)] { return t.toMS(); },
        [t = 90.0]() mutable {
            benchmark::DoNotOptimize(t);
            return static_cast<long long>(t * 1 * 1000 + 0.5);
        });
    Pairs::add(
        "CTime::value(MIN) of h", limit, [t = CTime(90, CTime::H)] { return t.value(CTime::MIN); },
        [t = 90.0]() mutable {
            benchmark::DoNotOptimize(t);
            return static_cast<long long>(t * 3600 / 60 + 0.5);
        });
    const auto compare = [a = 90.0, b = 1500.0]() mutable {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        return std::floor(a * 1e9 + 0.5) < std::floor(b * 0.001 * 1e9 + 0.5);
    };
    Pairs::add(
        "CTime <", limit, [a = CTime(90, CTime::S), b = CTime(1500, CTime::MS)] { return a < b; },
        compare);
    Pairs::add(
        "CTime ==", limit, [a = CTime(90, CTime::S), b = CTime(1500, CTime::MS)] { return a == b; },
        compare);
}

void addDateTime(const char *name, Qt::TimeSpec spec)
{
    // From the numbers that a packed date-time holds, and in the same three steps.
    auto build = [year = 2014, spec]() mutable {
        benchmark::DoNotOptimize(year);
        QDateTime dateTime;
        dateTime.setTimeSpec(spec);
        dateTime.setDate(QDate(year, 5, 6));
        dateTime.setTime(QTime(7, 8, 9, 120));
        return dateTime;
    };
    const CDateTime dateTime(build());
    const long long packed = dateTime.toI64(spec);
    Pairs::add(
        std::string("CDateTime unpack, ") + name, {1.2, 0, -1},
        [packed, spec] { return CDateTime(packed, spec); }, build);
    Pairs::add(
        std::string("CDateTime pack, ") + name, {1.2, 0, -1},
        [dateTime, spec] { return dateTime.toI64(spec); }, build);
}

void addTimePairs()
{
    addTime();
    addDateTime("UTC", Qt::UTC);
    addDateTime("local time", Qt::LocalTime);
}

const Pairs::Group kGroup(&addTimePairs);

} // namespace
