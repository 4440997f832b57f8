#ifndef NUMBERTEXT_P_H
#define NUMBERTEXT_P_H

#include <QLatin1String>
#include <QString>

#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <type_traits>

/*!
    \internal
    Texts of single numbers, each made in place and then copied into its QString: one allocation.
*/
namespace NumberText {

//! Returns \a value in decimal.
template <class Integer>
std::enable_if_t<std::is_integral_v<Integer>, QString> toStr(Integer value)
{
    char text[std::numeric_limits<Integer>::digits10 + 2]; // a sign and one digit more
    const auto end = std::to_chars(std::begin(text), std::end(text), value).ptr;
    return QLatin1String(text, static_cast<int>(end - text));
}

/*!
    Returns QString::number(\a value, 'g', \a Digits).

    The C++ library rounds the same way except for a value half-way between two texts, which it
    rounds to even and Qt rounds up. Such a value has exactly one digit more than asked for, a 5; it
    is left to Qt, and so are zero, which Qt writes without a sign, NaN and the infinities.
*/
template <int Digits>
QString toStrRounded(double value)
{
    if (value == 0 || !std::isfinite(value))
        return QString::number(value, 'g', Digits);
    // A sign, the point, "e-308" and one digit more: "-1.234567890123455e-308" for 15 digits.
    char text[Digits + 9];
    // Scientific notation with the digits behind the first: d.ddd...de+xx.
    const auto exact = std::to_chars(std::begin(text), std::end(text), value,
                                     std::chars_format::scientific, Digits);
    const char *lastDigit = text + (std::signbit(value) ? 1 : 0) + 1 + Digits;
    if (exact.ec != std::errc() || *lastDigit == '5')
        return QString::number(value, 'g', Digits);
    const auto end
        = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::general, Digits)
              .ptr;
    return QLatin1String(text, static_cast<int>(end - text));
}

//! Returns \a value with 6 digits at most.
inline QString toStr(float value)
{
    return toStrRounded<6>(static_cast<double>(value));
}

//! Returns \a value with 15 digits at most.
inline QString toStr(double value)
{
    return toStrRounded<15>(value);
}

/*!
    Returns \a prefix and \a value in hexadecimal, in two lower-case digits per byte.

    Contract: a negative number is its sign and magnitude, the zeros between them, in as many
    characters as an unsigned number has; only magnitudes that fill them need one more. 8 and 16
    bits keep the rightmost characters, so that -1 is "-1" but -128 is "80".
*/
template <class Integer>
QString toHex(const QString &prefix, Integer value)
{
    using Bits = std::make_unsigned_t<Integer>;
    constexpr int kDigits = 2 * sizeof(Integer);
    constexpr bool kCutsSign = sizeof(Integer) <= sizeof(qint16);

    auto magnitude = static_cast<Bits>(value);
    int digits = kDigits;
    bool sign = false;
    if (value < 0) {
        magnitude = static_cast<Bits>(0 - magnitude);
        const bool fits = magnitude >> (4 * (kDigits - 1)) == 0;
        digits = fits ? kDigits - 1 : kDigits;
        sign = fits || !kCutsSign;
    }
    QString hex;
    hex.reserve(prefix.size() + sign + digits);
    hex += prefix;
    if (sign)
        hex += QLatin1Char('-');
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        hex += QLatin1Char("0123456789abcdef"[magnitude >> shift & 0xF]);
    return hex;
}

} // namespace NumberText

#endif // NUMBERTEXT_P_H
