#ifndef FLOATTOINTEGER_P_H
#define FLOATTOINTEGER_P_H

#include <QtGlobal>

#include <cmath>
#include <limits>
#include <type_traits>

/*!
    \internal
    Conversions of floating values to integers that are defined for every value. No other code casts
    a floating value to an integer.
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

//! Returns whether \a value cut towards zero is a signed \a Integer; NaN is none.
template <class Integer>
bool fits(long double value)
{
    static_assert(std::is_signed_v<Integer>);
    // A power of two, so that the limits are exact: -2^(n-1) - 1 < value < 2^(n-1).
    constexpr long double kEnd = -static_cast<long double>(std::numeric_limits<Integer>::min());
    return value > -kEnd - 1 && value < kEnd;
}

/*!
    Returns \a value cut towards zero. What does not fit into an \a Integer, and NaN, is the most
    negative integer of its width; a negative value that fits into the signed type of that width
    wraps in the unsigned one.
*/
template <class Integer>
Integer truncated(long double value)
{
    using Signed = std::make_signed_t<Integer>;
    constexpr auto kLeast = std::numeric_limits<Signed>::min();
    constexpr long double kSignedEnd = -static_cast<long double>(kLeast);
    if (fits<Signed>(value))
        return static_cast<Integer>(static_cast<Signed>(value));
    if (std::is_unsigned_v<Integer> && value >= kSignedEnd && value < 2 * kSignedEnd)
        return static_cast<Integer>(value);
    return static_cast<Integer>(kLeast);
}

} // namespace FloatToInteger

#endif // FLOATTOINTEGER_P_H
