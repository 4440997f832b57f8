#include "CTime.h"

#include "CMath.h"
#include "FloatToInteger_p.h"

#include <QDataStream>
#include <QDebug>
#include <QSharedData>

#include <algorithm>
#include <cmath>
#include <iterator>

// A unit code is an index into kUnits; any other code counts as seconds. 90 s in minutes are
// 90 * 1 / 60 = 1.5, rounded 2; the factors of the small units differ by direction (multiply by
// 0.001, multiply by 1000), since a product with 1e-3 and a quotient by 1000 round differently.

class CTimeData : public QSharedData
{
public:
    CTimeData(quint64 value, CTime::ETimeUnit unit) : mValue(value), mUnit(unit) { }

    quint64 mValue;
    CTime::ETimeUnit mUnit;
};

namespace {

struct UnitRow
{
    const char *name; // Latin-1
    double toSeconds; // a factor
    double fromSeconds;
    bool divides; // fromSeconds is a divisor
};

constexpr UnitRow kUnits[] = {
    {"ps", 1e-12, 1e12, false}, {"ns", 1e-9, 1e9, false}, {"\xb5s", 1e-6, 1e6, false},
    {"ms", 0.001, 1000, false}, {"s", 1, 1, false},       {"min", 60, 60, true},
    {"h", 3600, 3600, true},
};

const UnitRow &row(CTime::ETimeUnit unit)
{
    const auto index = static_cast<unsigned int>(unit);
    return kUnits[index < std::size(kUnits) ? index : static_cast<unsigned int>(CTime::S)];
}

// Returns 'value' rounded to a count; a negative one wraps.
quint64 toCount(double value)
{
    return FloatToInteger::truncated<quint64>(static_cast<long double>(CMath::round(value, 0)));
}

// The count as a signed number, in floating point.
double signedCount(quint64 count)
{
    return static_cast<double>(static_cast<qint64>(count));
}

// Returns whether 'value' is an integer, or next to one.
bool isWhole(double value)
{
    const double nearest = std::round(value);
    return value == nearest || std::nextafter(value, nearest) == nearest;
}

} // namespace

const QHash<QString, CTime::ETimeUnit> CTime::mUnitHash = CTime::createUnitHash();

CTime::CTime() : CTime(0, UNKNOWN)
{
}

CTime::CTime(unsigned long long value, ETimeUnit unit) : mData(new CTimeData(value, unit))
{
}

CTime::CTime(const CTime &other) = default;
CTime::CTime(CTime &&other) noexcept = default;
CTime::~CTime() = default;
CTime &CTime::operator=(const CTime &other) = default;
CTime &CTime::operator=(CTime &&other) noexcept = default;

unsigned long long CTime::value() const
{
    return mData->mValue;
}

CTime::ETimeUnit CTime::unit() const
{
    return mData->mUnit;
}

void CTime::setValue(unsigned long long value)
{
    mData->mValue = value;
}

void CTime::setValue(unsigned long long value, ETimeUnit unit)
{
    mData->mValue = value;
    mData->mUnit = unit;
}

void CTime::setUnit(ETimeUnit unit)
{
    mData->mUnit = unit;
}

bool CTime::isValid() const
{
    // Contract: a time in picoseconds is not valid.
    return unit() >= NS && unit() <= H;
}

double CTime::toS(const double &value, ETimeUnit unit)
{
    return value * row(unit).toSeconds;
}

double CTime::convertValue(const double &value, ETimeUnit from, ETimeUnit to)
{
    const double seconds = toS(value, from);
    const UnitRow &target = row(to);
    return target.divides ? seconds / target.fromSeconds : seconds * target.fromSeconds;
}

unsigned long long CTime::value(ETimeUnit unit) const
{
    if (unit == mData->mUnit)
        return mData->mValue;
    return toCount(convertValue(signedCount(mData->mValue), mData->mUnit, unit));
}

unsigned long long CTime::toNS() const
{
    return value(NS);
}

unsigned long long CTime::toMS() const
{
    return value(MS);
}

unsigned long long CTime::toS() const
{
    return value(S);
}

CTime &CTime::fromValue(const CTime &other)
{
    const quint64 count = other.unit() == unit()
        ? other.value()
        : toCount(convertValue(static_cast<double>(other.value()), other.unit(), unit()));
    setValue(count);
    return *this;
}

bool CTime::convertToPrevIntegerValue(const double &value, ETimeUnit unit, long long &outValue,
                                      ETimeUnit &outUnit)
{
    if (value == 0.0 || unit <= PS)
        return false;
    bool found = false;
    // Every code above H means seconds, so that the walk may start at the lowest of them.
    for (int code = std::min<int>(unit, UNKNOWN); code >= PS; --code) {
        const auto smaller = static_cast<ETimeUnit>(code);
        const double magnitude = std::fabs(convertValue(value, unit, smaller));
        if (!std::isfinite(magnitude) || isWhole(magnitude))
            return found;
        const auto integer = FloatToInteger::truncated<qint64>(static_cast<long double>(magnitude));
        outValue = value < 0 ? -integer : integer;
        outUnit = smaller;
        found = true;
    }
    return false;
}

bool CTime::convertToPrevIntegerValue(long long &outValue, ETimeUnit &outUnit) const
{
    return convertToPrevIntegerValue(signedCount(value()), unit(), outValue, outUnit);
}

QString CTime::unitStr(ETimeUnit unit)
{
    return mUnitHash.key(unit);
}

CTime::ETimeUnit CTime::unit(const QString &name)
{
    return mUnitHash.value(name.toLower(), UNKNOWN);
}

QHash<QString, CTime::ETimeUnit> CTime::createUnitHash()
{
    QHash<QString, ETimeUnit> hash;
    for (int code = PS; code <= H; ++code)
        hash.insert(QLatin1String(kUnits[code].name), static_cast<ETimeUnit>(code));
    return hash;
}

bool CTime::operator==(const CTime &other) const
{
    return mData == other.mData || toNS() == other.toNS();
}

bool CTime::operator!=(const CTime &other) const
{
    return !(*this == other);
}

bool CTime::operator<(const CTime &other) const
{
    return toNS() < other.toNS();
}

bool CTime::operator>(const CTime &other) const
{
    return toNS() > other.toNS();
}

bool CTime::operator<=(const CTime &other) const
{
    return toNS() <= other.toNS();
}

bool CTime::operator>=(const CTime &other) const
{
    return toNS() >= other.toNS();
}

CTime operator*(const CTime &time, double factor)
{
    return CTime(toCount(static_cast<double>(time.value()) * factor), time.unit());
}

CTime operator*(double factor, const CTime &time)
{
    return time * factor;
}

CTime operator+(const CTime &a, const CTime &b)
{
    const CTime::ETimeUnit unit = a.unit();
    if (unit == b.unit()) {
        // Contract: the counts play no part here, the sum is that of the unit codes.
        const auto code = static_cast<quint64>(static_cast<qint64>(unit));
        return CTime(code + code, unit);
    }
    const auto sum = static_cast<double>(a.toNS() + b.toNS());
    const double value = CTime::convertValue(sum, CTime::NS, unit);
    return CTime(FloatToInteger::truncated<quint64>(static_cast<long double>(value)), unit);
}

QDataStream &operator<<(QDataStream &out, const CTime &time)
{
    return out << static_cast<qint64>(time.value()) << static_cast<qint32>(time.unit());
}

QDataStream &operator>>(QDataStream &in, CTime &time)
{
    qint64 value = 0;
    qint32 unit = 0;
    in >> value >> unit;
    time.setValue(static_cast<quint64>(value), static_cast<CTime::ETimeUnit>(unit));
    return in;
}

QDebug operator<<(QDebug debug, const CTime &time)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "CTime(" << time.value() << ' '
                    << qUtf8Printable(CTime::unitStr(time.unit())) << ')';
    return debug;
}
