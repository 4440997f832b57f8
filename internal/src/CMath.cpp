#include "CMath.h"

#include "Crc32_p.h"
#include "FloatToInteger_p.h"

#include <QtEndian>

#include <cmath>
#include <iterator>

const double CMath::mPowTab[5] = {1, 10, 100, 1000, 10000};

namespace {

// The factor of a number of places; their low bits count, so that UINT_MAX - 1 is -2.
double factor(unsigned int decimals)
{
    return CMath::exp10(static_cast<int>(decimals));
}

} // namespace

double CMath::exp10(int exponent)
{
    if (exponent >= 0 && exponent < static_cast<int>(std::size(mPowTab)))
        return mPowTab[exponent];
    return std::pow(10.0, exponent);
}

double CMath::round(double value, unsigned int decimals)
{
    constexpr qint64 kTwo53 = Q_INT64_C(1) << 53;
    const double f = factor(decimals);
    const long double half = value > 0 ? 0.5L : -0.5L;
    const long double scaled = static_cast<long double>(value) * static_cast<long double>(f) + half;
    if (!FloatToInteger::fits<qint64>(scaled))
        return value;
    const auto integer = FloatToInteger::truncated<qint64>(scaled);
    // The quotient is rounded once, to a double, where a double holds the integer.
    if (integer >= -kTwo53 && integer <= kTwo53)
        return static_cast<double>(integer) / f;
    return static_cast<double>(static_cast<long double>(integer) / static_cast<long double>(f));
}

double CMath::roundOff(double value, unsigned int decimals)
{
    const double f = factor(decimals);
    return std::floor(value * f) / f;
}

double CMath::roundUp(double value, unsigned int decimals)
{
    const double f = factor(decimals);
    return std::ceil(value * f) / f;
}

bool CMath::checkDouble(const void *raw)
{
    // Contract: only the low word of the mantissa is compared; callers rely on it.
    constexpr quint32 kGreatestLowWord = 0xD7B9609A;
    constexpr quint32 kSmallestLowWord = 0x1111E1E4;
    const auto bits = qFromLittleEndian<quint64>(raw);
    const auto exponent = static_cast<quint32>(bits >> 52) & 0x7FF;
    const auto lowWord = static_cast<quint32>(bits);
    switch (exponent) {
    case 0x7FF:
        return false;
    case 0x7FE:
        return lowWord <= kGreatestLowWord;
    case 0x001:
        return lowWord > kSmallestLowWord;
    default:
        return true;
    }
}

unsigned int CMath::crc32(const void *data, int length)
{
    if (length <= 0)
        return 0;
    return ~Crc32::update(~0U, static_cast<const uchar *>(data), static_cast<std::size_t>(length));
}
