#ifndef FLOATTOINTEGER_P_H
#define FLOATTOINTEGER_P_H

#include <QtGlobal>

#include <cmath>

/*!
    \internal
    Conversions of floating values to integers that are defined for every value.
*/
namespace FloatToInteger {

/*!
    Returns \a value cut towards zero, modulo 2^64, in the low bits of an \a Integer. NaN, the
    infinities and magnitudes of 2^64 and more give the low bits of -2^63: 0 up to 32 bits.
*/
template <class Integer>
Integer wrapped(double value)
{
    constexpr double kTwo63 = 9223372036854775808.0;
    constexpr double kTwo64 = 2 * kTwo63;
    const double magnitude = std::fabs(value);
    if (magnitude < kTwo63)
        return static_cast<Integer>(static_cast<qint64>(value));
    if (magnitude < kTwo64) {
        const auto bits = static_cast<quint64>(magnitude);
        return static_cast<Integer>(value < 0 ? 0 - bits : bits);
    }
    return static_cast<Integer>(Q_UINT64_C(1) << 63);
}

} // namespace FloatToInteger

#endif // FLOATTOINTEGER_P_H
