#include "Pairs.h"

#include "CK7String.h"

#include <limits>

namespace {

constexpr unsigned int packed(int decimals, int width, int shift, CK7String::EFormat format)
{
    return (static_cast<unsigned int>(decimals) & 0xFF)
        | (static_cast<unsigned int>(width) & 0xFF) << 8
        | (static_cast<unsigned int>(shift) & 0xFF) << 16 | static_cast<unsigned int>(format) << 24;
}

// The text of 'value' in 'base', composed with Qt and grouped by fours.
template <class T>
QString composed(T value, int digits, int base)
{
    QString text = QStringLiteral("%1").arg(+value, digits, base, QLatin1Char('0')).right(digits);
    for (int i = 4; i < text.size(); i += 5)
        text.insert(text.size() - i, QLatin1Char('.'));
    return text;
}

template <class T>
void addBits(const char *type, T value)
{
    // Wide enough for a separator.
    constexpr int kHexDigits = sizeof(T) < sizeof(int) ? 8 : 2 * sizeof(T);
    constexpr int kDualDigits = 8 * sizeof(T);
    Pairs::add(
        std::string("toStr Hex ") + type, {0.33, 0, 1},
        [value] { return CK7String::toStr(value, packed(0, 0, 0, CK7String::Hex)); },
        [value] { return composed(value, kHexDigits, 16); });
    Pairs::add(
        std::string("toStr Dual ") + type, {0.33, 0, 1},
        [value] { return CK7String::toStr(value, packed(0, 0, 0, CK7String::Dual)); },
        [value] { return composed(value, kDualDigits, 2); });
}

void addDec()
{
    Pairs::add(
        "toStr Dec I32", {0.5, 0, 1},
        [] { return CK7String::toStr(-123456, packed(0, 10, 0, CK7String::Dec)); },
        [] { return QStringLiteral("%1").arg(-123456, 10); });
    Pairs::add(
        "toStr Dec I32, 2 decimals", {0.5, 0, 1},
        [] { return CK7String::toStr(123456, packed(2, 10, 0, CK7String::Dec)); },
        [] { return QStringLiteral("%1.%2").arg(1234, 7).arg(56, 2, 10, QLatin1Char('0')); });
    Pairs::add(
        "toStr Dec U64", {0.5, 0, 1},
        [] { return CK7String::toStr(10000000000000000000ULL, packed(0, 0, 0, CK7String::Dec)); },
        [] { return QStringLiteral("%1").arg(10000000000000000000ULL); });
}

void addReaders()
{
    const QString dec = QStringLiteral("-123456789");
    Pairs::add(
        "toI32 Dec", {1.2, 0, 0},
        [dec] { return CK7String::toI32(dec, packed(0, 0, 0, CK7String::Dec), 1.0); },
        [dec] { return dec.toInt(nullptr, 0); });
    Pairs::add(
        "toU64 Dec", {1.2, 0, 0},
        [dec] { return CK7String::toU64(dec, packed(0, 0, 0, CK7String::Dec), 1.0); },
        [dec] { return dec.toInt(nullptr, 0); });
    const QString hex = QStringLiteral("12345678");
    Pairs::add(
        "toI32 Hex", {1.5, 0, 0},
        [hex] { return CK7String::toI32(hex, packed(0, 0, 0, CK7String::Hex), 1.0); },
        [hex] { return hex.toULongLong(nullptr, 16); });
    const QString longHex = QStringLiteral("1234567812345678");
    Pairs::add(
        "toU64 Hex", {1.5, 0, 0},
        [longHex] { return CK7String::toU64(longHex, packed(0, 0, 0, CK7String::Hex), 1.0); },
        [longHex] { return longHex.toULongLong(nullptr, 16); });
}

void addNumberTextPairs()
{
    addBits("U8", static_cast<unsigned char>(0xAB));
    addBits("I8", static_cast<signed char>(0x5A));
    addBits("U16", static_cast<unsigned short>(0xABCD));
    addBits("I16", static_cast<short>(0x5ABC));
    addBits("U32", 0xABCDEF01U);
    addBits("I32", 0x5ABCDEF0);
    addBits("U64", 0xABCDEF0123456789ULL);
    addBits("I64", 0x5ABCDEF012345678LL);
    addDec();
    addReaders();
}

const Pairs::Group kGroup(&addNumberTextPairs);

} // namespace
