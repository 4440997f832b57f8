#include "CK7String.h"

#include "FloatToInteger_p.h"

#include <QVarLengthArray>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <type_traits>

// Reading is one template over the eight types, writing another; what differs by type is in Traits.
// With the format 04 08 00 02 (4 decimals, width 8, Hex) "1234:5678" reads as 0x12345678 and back.

namespace {

using SFormatValue = CK7String::SFormatValue;

constexpr int kGroup = 4;
constexpr int kHexBits = 4;
constexpr int kDualBits = 1;

SFormatValue unpack(unsigned int format)
{
    return {static_cast<qint8>(format), static_cast<qint8>(format >> 8),
            static_cast<qint8>(format >> 16), static_cast<qint8>(format >> 24)};
}

/*
    The type that a scaled number is converted to before it is cut to its own: a signed one of 16
    bits at least, of twice the bits for the unsigned types, and for 64 bits the type itself.
    Contract: values that fit it wrap in the narrower type, so that "300" is I8 44.
*/
template <class T>
constexpr std::size_t kConversionBytes
    = std::is_signed_v<T> ? std::max<std::size_t>(sizeof(T), 2)
                          : std::min<std::size_t>(2 * sizeof(T), 8);
template <class T>
using Conversion = std::conditional_t<sizeof(T) == sizeof(qint64), T,
                                      typename QIntegerForSize<kConversionBytes<T>>::Signed>;

// What shifts and divisions are done in: 32 bits, or 64 for the 64-bit types.
template <class T>
using Arithmetic = std::conditional_t<sizeof(T) == sizeof(qint64), T,
                                      std::conditional_t<std::is_signed_v<T>, qint32, quint32>>;

// Returns 'value' shifted left, or right if 'bits' is negative; every count is defined.
template <class A>
A shifted(A value, int bits)
{
    constexpr int kBits = 8 * sizeof(A);
    if (bits >= kBits)
        return 0;
    if (bits >= 0)
        return static_cast<A>(static_cast<std::make_unsigned_t<A>>(value) << bits);
    return value >> std::min(-bits, kBits - 1) >> (-bits >= kBits ? 1 : 0);
}

// A QString over units that are somewhere else, as QString::fromRawData() makes it, but without an
// allocation. It is valid as long as the units are.
class BorrowedString
{
public:
    BorrowedString(const ushort *units, int size)
        : mHeader{{Q_REFCOUNT_INITIALIZE_STATIC, size, 0, 0,
                   reinterpret_cast<const char *>(units)
                       - reinterpret_cast<const char *>(&mHeader)}}
        , mString(QStringDataPtr{&mHeader})
    {
    }

    Q_DISABLE_COPY_MOVE(BorrowedString)

    const QString &string() const { return mString; }

private:
    QStringData mHeader;
    QString mString;
};

// Some units of a text.
struct Part
{
    const ushort *begin;
    const ushort *end;
};

Part wholeOf(const QString &text)
{
    const auto *begin = reinterpret_cast<const ushort *>(text.constData());
    return {begin, begin + text.size()};
}

// Returns the place behind the last 'character' of the part, or its begin.
const ushort *behindLast(Part part, char character)
{
    while (part.end != part.begin && *(part.end - 1) != character)
        --part.end;
    return part.end;
}

// Returns whether the part has no sign and no separator, as most texts have none.
bool isPlain(Part part)
{
    // Without an early end, so that it is vectorised.
    unsigned int marks = 0;
    for (const ushort *unit = part.begin; unit != part.end; ++unit)
        marks |= static_cast<unsigned int>((*unit == '-') | (*unit == '.') | (*unit == ':'));
    return marks == 0;
}

using Units = QVarLengthArray<ushort, 320>;

/*
    Appends the rightmost 'width' units of 'part', filled with zeros on the left, without
    separators. Each group between separators counts for four units, a part without separator for
    'single'. A negative width cuts nothing, as in QString::right().
*/
void appendFitted(Units &to, Part part, int width, int single)
{
    constexpr qint64 kMaxSize = 1 << 28; // of what a QString can hold when it is grouped
    const qint64 separators = std::count(part.begin, part.end, ushort('.'));
    const int groupSize = separators == 0 ? single : kGroup;
    const int size
        = width < 0 ? static_cast<int>(std::min((separators + 1) * groupSize, kMaxSize)) : width;
    const int start = to.size();
    to.resize(start + size);
    ushort *const first = to.data() + start;
    std::fill_n(first, size, ushort('0'));

    for (int room = size; room > 0; room -= groupSize) {
        const ushort *const begin = separators == 0 ? part.begin : behindLast(part, '.');
        const int length = static_cast<int>(std::min<std::ptrdiff_t>(part.end - begin, groupSize));
        const int count = std::min(length, room);
        std::copy_n(part.end - count, count, first + room - count);
        if (begin == part.begin)
            break;
        part.end = begin - 1;
    }
}

// Hexadecimal or dual text, taken apart; 'text' has to stay.
class Parts
{
public:
    explicit Parts(const QString &text) : mUpper(wholeOf(text))
    {
        if (isPlain(mUpper))
            return;
        mIsNegative = text.startsWith(QLatin1Char('-'));
        mWithoutSigns = QString(text).remove(QLatin1Char('-'));
        const Part whole = wholeOf(mWithoutSigns);
        mLower = {behindLast(whole, ':'), whole.end};
        mHasLower = mLower.begin != whole.begin;
        mUpper = {whole.begin, mHasLower ? mLower.begin - 1 : whole.end};
        mUpper.begin = behindLast(mUpper, ':');
    }

    Q_DISABLE_COPY_MOVE(Parts)

    bool isNegative() const { return mIsNegative; }
    bool hasLower() const { return mHasLower; }
    Part upper() const { return mUpper; }
    Part lower() const { return mLower; }

private:
    bool mIsNegative = false;
    bool mHasLower = false;
    QString mWithoutSigns;
    Part mUpper;
    Part mLower = {};
};

void appendUpper(Units &to, Part part, SFormatValue format)
{
    constexpr int kSingle = 8;
    appendFitted(to, part, format.width - format.decimals, kSingle);
}

void appendLower(Units &to, Part part, SFormatValue format)
{
    appendFitted(to, part, format.decimals, kGroup);
}

// Writes 'size' characters to 'to', with "." between groups of four from the right, and returns the
// end.
template <class Character>
Character *copyGrouped(Character *to, const Character *from, int size, Character separator)
{
    const Character *const end = from + size;
    for (int left = size % kGroup; left > 0; --left)
        *to++ = *from++;
    for (bool isFirst = size % kGroup == 0; from != end; isFirst = false) {
        if (!isFirst)
            *to++ = separator;
        for (int i = 0; i < kGroup; ++i)
            *to++ = *from++;
    }
    return to;
}

QString grouped(const ushort *units, int size)
{
    if (size == 0)
        return QLatin1String("");
    QString text(size + (size - 1) / kGroup, Qt::Uninitialized);
    copyGrouped(reinterpret_cast<ushort *>(text.data()), units, size, ushort('.'));
    return text;
}

bool normalise(QString &text, SFormatValue format)
{
    const QString given = text.isEmpty() ? QStringLiteral("0") : text;
    const Parts parts(given);
    Units units;
    appendUpper(units, parts.upper(), format);
    QString normal = grouped(units.constData(), units.size());
    if (parts.isNegative())
        normal.prepend(QLatin1Char('-'));
    if (parts.hasLower()) {
        units.clear();
        appendLower(units, parts.lower(), format);
        normal += QLatin1Char(':') + grouped(units.constData(), units.size());
    }
    text = normal;
    return true;
}

// The digits of normalised text, without separators, as Qt converts them.
template <class Convert>
auto readDigits(const QString &text, SFormatValue format, Convert convert)
{
    const Parts parts(text);
    Units digits;
    if (parts.isNegative())
        digits.append(ushort('-'));
    appendUpper(digits, parts.upper(), format);
    if (parts.hasLower())
        appendLower(digits, parts.lower(), format);
    const BorrowedString borrowed(digits.constData(), digits.size());
    return convert(borrowed.string(), parts.isNegative());
}

template <class T, class Number>
T scaled(Number number, double factor)
{
    const long double product = static_cast<long double>(number) * static_cast<long double>(factor);
    return static_cast<T>(FloatToInteger::truncated<Conversion<T>>(product));
}

template <class T>
std::optional<T> readFloat(const QString &text, double factor)
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    return ok ? std::optional<T>(scaled<T>(number, factor)) : std::nullopt;
}

template <class T>
std::optional<T> readDec(const QString &text, double factor)
{
    constexpr int kByPrefix = 0;
    bool ok = false;
    qint64 number = 0;
    const auto isSeparator = [](ushort unit) { return unit == '.' || unit == ':'; };
    const Part whole = wholeOf(text);
    if (std::any_of(whole.begin, whole.end, isSeparator)) {
        QString digits = text;
        digits.remove(QLatin1Char('.')).remove(QLatin1Char(':'));
        number = digits.toLongLong(&ok, kByPrefix);
    } else {
        number = text.toLongLong(&ok, kByPrefix);
    }
    return ok ? std::optional<T>(scaled<T>(number, factor)) : std::nullopt;
}

template <class T>
std::optional<T> readHex(const QString &text, SFormatValue format, double factor)
{
    constexpr int kBase = 16;
    if (format.decimals <= 0 && format.width <= 0)
        format.width = 2 * sizeof(T);
    bool ok = false;
    const auto bits
        = readDigits(text, format, [&ok](const QString &digits, bool isNegative) -> quint64 {
              return isNegative ? static_cast<quint64>(digits.toLongLong(&ok, kBase))
                                : digits.toULongLong(&ok, kBase);
          });
    if (!ok)
        return std::nullopt;
    const auto number = static_cast<T>(bits);
    return qFuzzyCompare(factor, 1.0) ? number : scaled<T>(number, factor);
}

template <class T>
std::optional<T> readDual(const QString &text, SFormatValue format, double factor)
{
    constexpr int kBase = 2;
    bool ok = false;
    const quint64 number = readDigits(text, format, [&ok](const QString &digits, bool) {
        return digits.toULongLong(&ok, kBase);
    });
    // Contract: scaled even by 1, so that 16 ones are I16 -32768.
    return ok ? std::optional<T>(scaled<T>(number, factor)) : std::nullopt;
}

template <class T>
std::optional<T> readUnshifted(const QString &text, SFormatValue format, double factor)
{
    if (text.isEmpty())
        return std::nullopt;
    switch (format.format) {
    case CK7String::Float:
        return readFloat<T>(text, factor);
    case CK7String::Dec:
        return readDec<T>(text, factor);
    case CK7String::Hex:
        return readHex<T>(text, format, factor);
    case CK7String::Dual:
        return readDual<T>(text, format, factor);
    default:
        return std::nullopt;
    }
}

template <class T>
T readInteger(const QString &text, unsigned int packedFormat, double factor, bool *ok)
{
    const SFormatValue format = unpack(packedFormat);
    const std::optional<T> number = readUnshifted<T>(text, format, factor);
    if (ok)
        *ok = number.has_value();
    return static_cast<T>(shifted<Arithmetic<T>>(number.value_or(0), format.shift));
}

template <class Number>
Number scaledIfOk(Number number, double factor, bool success, bool *ok)
{
    if (ok)
        *ok = success;
    return success ? static_cast<Number>(static_cast<double>(number) * factor) : 0;
}

/*
    What QString::arg(number, width, Base, fill) makes, but negative numbers as sign and magnitude
    in every base. It grows from the middle of its memory: digits and filling to the left, filling
    for a negative width to the right.
*/
template <int Base>
class Field
{
public:
    template <class Number>
    Field(Number number, int width, char fill)
    {
        const bool isNegative = number < 0;
        auto magnitude = static_cast<std::make_unsigned_t<Number>>(number);
        if (isNegative)
            magnitude = 0 - magnitude;
        do {
            *--mBegin = "0123456789abcdef"[magnitude % Base];
            magnitude /= Base;
        } while (magnitude != 0);
        // Zeros go between sign and digits, blanks in front of the sign.
        const int sign = isNegative ? 1 : 0;
        if (fill == '0')
            padLeft(width - sign, fill);
        if (isNegative)
            *--mBegin = '-';
        padLeft(width, fill);
        for (int count = -width - size(); count > 0; --count)
            *mEnd++ = fill;
    }

    Q_DISABLE_COPY_MOVE(Field)

    int size() const { return static_cast<int>(mEnd - mBegin); }
    const char *begin() const { return mBegin; }
    const char *end() const { return mEnd; }

private:
    void padLeft(int width, char fill)
    {
        while (size() < width)
            *--mBegin = fill;
    }

    // A width is the difference of two signed bytes and one, at most.
    static constexpr int kMaxWidth = 256;

    char mMemory[2 * kMaxWidth];
    char *mBegin = mMemory + kMaxWidth;
    char *mEnd = mMemory + kMaxWidth;
};

/*
    A text that is made in place and then copied into its QString. The longest has two fields,
    grouped, and a separator between them.
*/
class Text
{
public:
    void append(char character) { *mEnd++ = character; }

    template <int Base>
    void append(const Field<Base> &field)
    {
        mEnd = std::copy(field.begin(), field.end(), mEnd);
    }

    // Appends the rightmost 'width' characters of the field, grouped; all if 'width' is negative.
    template <int Base>
    void appendGrouped(const Field<Base> &field, int width)
    {
        const int size = width < 0 ? field.size() : std::min(width, field.size());
        mEnd = copyGrouped(mEnd, field.end() - size, size, '.');
    }

    QString toString() const { return QLatin1String(mBegin, static_cast<int>(mEnd - mBegin)); }

private:
    char mBegin[2 * (256 + 256 / kGroup)];
    char *mEnd = mBegin;
};

template <class T>
QString writeDec(T value, SFormatValue format)
{
    using A = Arithmetic<T>;
    using Unsigned = std::make_unsigned_t<A>;
    constexpr int kBase = 10;
    const A number = shifted<A>(value, -format.shift);
    Text text;
    if (format.decimals < 1) {
        text.append(Field<kBase>(number, format.width, ' '));
        return text.toString();
    }
    Unsigned power = 1;
    for (int i = 0; i < format.decimals; ++i)
        power = static_cast<Unsigned>(power * kBase);
    // The power has become 0 where it exceeds the arithmetic: the number is all remainder then.
    const auto divisor = static_cast<A>(power);
    const A quotient = divisor != 0 ? number / divisor : 0;
    const A remainder = divisor != 0 ? number % divisor : number;
    text.append(Field<kBase>(quotient, format.width - format.decimals - 1, ' '));
    text.append('.');
    // Contract: the remainder keeps its sign, "-12.-34".
    text.append(Field<kBase>(remainder, format.decimals, '0'));
    return text.toString();
}

// Hexadecimal and dual text; BitsPerDigit tells which.
template <int BitsPerDigit, class T>
QString writeBits(T value, SFormatValue format)
{
    using A = Arithmetic<T>;
    using Unsigned = std::make_unsigned_t<A>;
    using Digits = Field<1 << BitsPerDigit>;
    constexpr int kDefaultWidth = 8 * sizeof(T) / BitsPerDigit;
    const A number = shifted<A>(value, -format.shift);
    Text text;
    if (format.decimals < 1) {
        const int width = format.width != 0 ? format.width : kDefaultWidth;
        text.appendGrouped(Digits(number, width, '0'), width);
        return text.toString();
    }
    const int upperWidth = format.width - format.decimals;
    const int lowerBits = BitsPerDigit * format.decimals;
    const auto mask = static_cast<Unsigned>(~shifted<Unsigned>(~Unsigned(0), lowerBits));
    const auto lower = static_cast<Unsigned>(static_cast<Unsigned>(number) & mask);
    text.appendGrouped(Digits(shifted<A>(number, -lowerBits), upperWidth, '0'), upperWidth);
    text.append(':');
    text.appendGrouped(Digits(lower, format.decimals, '0'), format.decimals);
    return text.toString();
}

QString writeFloat(double value, SFormatValue format)
{
    // Two characters more than the width, on the side that the sign of the width says.
    constexpr int kExtra = 2;
    int fieldWidth = format.width;
    if (fieldWidth != 0)
        fieldWidth += fieldWidth > 0 ? kExtra : -kExtra;
    return QStringLiteral("%1").arg(value, fieldWidth, format.decimals >= 0 ? 'f' : 'g',
                                    format.decimals, QLatin1Char(' '));
}

template <class T>
QString writeInteger(T value, unsigned int packedFormat)
{
    const SFormatValue format = unpack(packedFormat);
    switch (format.format) {
    case CK7String::Dec:
        return writeDec(value, format);
    case CK7String::Dual:
        return writeBits<kDualBits>(value, format);
    case CK7String::Float:
        return writeFloat(static_cast<double>(value), format);
    default:
        return writeBits<kHexBits>(value, format);
    }
}

QString writeFloating(double value, unsigned int packedFormat)
{
    const SFormatValue format = unpack(packedFormat);
    switch (format.format) {
    case CK7String::Float:
        return writeFloat(value, format);
    case CK7String::Dec:
        return writeDec(FloatToInteger::truncated<qint64>(static_cast<long double>(value)), format);
    default:
        return QString();
    }
}

} // namespace

CK7String::CK7String() = default;
CK7String::~CK7String() = default;

qint8 CK7String::toI8(const QString &text, unsigned int format, double factor, bool *ok)
{
    return readInteger<qint8>(text, format, factor, ok);
}

quint8 CK7String::toU8(const QString &text, unsigned int format, double factor, bool *ok)
{
    return readInteger<quint8>(text, format, factor, ok);
}

qint16 CK7String::toI16(const QString &text, unsigned int format, double factor, bool *ok)
{
    return readInteger<qint16>(text, format, factor, ok);
}

quint16 CK7String::toU16(const QString &text, unsigned int format, double factor, bool *ok)
{
    return readInteger<quint16>(text, format, factor, ok);
}

qint32 CK7String::toI32(const QString &text, unsigned int format, double factor, bool *ok)
{
    return readInteger<qint32>(text, format, factor, ok);
}

quint32 CK7String::toU32(const QString &text, unsigned int format, double factor, bool *ok)
{
    return readInteger<quint32>(text, format, factor, ok);
}

qint64 CK7String::toI64(const QString &text, unsigned int format, double factor, bool *ok)
{
    return readInteger<qint64>(text, format, factor, ok);
}

quint64 CK7String::toU64(const QString &text, unsigned int format, double factor, bool *ok)
{
    return readInteger<quint64>(text, format, factor, ok);
}

float CK7String::toF32(const QString &text, unsigned int, double factor, bool *ok)
{
    bool success = false;
    const float number = text.toFloat(&success);
    return scaledIfOk(number, factor, success, ok);
}

double CK7String::toF64(const QString &text, unsigned int, double factor, bool *ok)
{
    bool success = false;
    const double number = text.toDouble(&success);
    return scaledIfOk(number, factor, success, ok);
}

bool CK7String::validateHexStr(QString &text, SFormatValue format)
{
    return normalise(text, format);
}

bool CK7String::validateDualStr(QString &text, SFormatValue format)
{
    return normalise(text, format);
}

QString CK7String::validateUpperString(const QString &part, SFormatValue format)
{
    Units units;
    appendUpper(units, wholeOf(part), format);
    return grouped(units.constData(), units.size());
}

QString CK7String::validateLowerString(const QString &part, SFormatValue format)
{
    Units units;
    appendLower(units, wholeOf(part), format);
    return grouped(units.constData(), units.size());
}

QString CK7String::insertPointSeparator(const QString &digits)
{
    return digits.size() <= kGroup ? digits : grouped(wholeOf(digits).begin, digits.size());
}

QString CK7String::toStr(const signed char &value, unsigned int format)
{
    return writeInteger(value, format);
}

QString CK7String::toStr(const unsigned char &value, unsigned int format)
{
    return writeInteger(value, format);
}

QString CK7String::toStr(const short &value, unsigned int format)
{
    return writeInteger(value, format);
}

QString CK7String::toStr(const unsigned short &value, unsigned int format)
{
    return writeInteger(value, format);
}

QString CK7String::toStr(const int &value, unsigned int format)
{
    return writeInteger(value, format);
}

QString CK7String::toStr(const unsigned int &value, unsigned int format)
{
    return writeInteger(value, format);
}

QString CK7String::toStr(const long long &value, unsigned int format)
{
    return writeInteger(value, format);
}

QString CK7String::toStr(const unsigned long long &value, unsigned int format)
{
    return writeInteger(value, format);
}

QString CK7String::toStr(const float &value, unsigned int format)
{
    return writeFloating(static_cast<double>(value), format);
}

QString CK7String::toStr(const double &value, unsigned int format)
{
    return writeFloating(value, format);
}

template <class T>
QString CK7String::toDecString(const T &value, unsigned int format)
{
    const SFormatValue unpacked = unpack(format);
    return unpacked.format == Dec ? writeDec(value, unpacked) : QString();
}

template <class T>
QString CK7String::toHexString(const T &value, unsigned int format)
{
    const SFormatValue unpacked = unpack(format);
    return unpacked.format == Hex ? writeBits<kHexBits>(value, unpacked) : QString();
}

template <class T>
QString CK7String::toDualString(const T &value, unsigned int format)
{
    const SFormatValue unpacked = unpack(format);
    return unpacked.format == Dual ? writeBits<kDualBits>(value, unpacked) : QString();
}

template <class T>
QString CK7String::toFloatString(const T &value, unsigned int format)
{
    const SFormatValue unpacked = unpack(format);
    if (unpacked.format == Float)
        return writeFloat(static_cast<double>(value), unpacked);
    // Contract: Dec is signed here for every type, unlike toStr().
    return toDecString(static_cast<long long>(value), format);
}

template K7ECORE_EXPORT QString CK7String::toDecString(const signed char &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDecString(const unsigned char &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDecString(const short &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDecString(const unsigned short &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDecString(const int &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDecString(const unsigned int &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDecString(const long long &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDecString(const unsigned long long &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toHexString(const signed char &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toHexString(const unsigned char &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toHexString(const short &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toHexString(const unsigned short &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toHexString(const int &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toHexString(const unsigned int &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toHexString(const long long &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toHexString(const unsigned long long &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDualString(const signed char &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDualString(const unsigned char &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDualString(const short &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDualString(const unsigned short &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDualString(const int &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDualString(const unsigned int &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDualString(const long long &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toDualString(const unsigned long long &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toFloatString(const signed char &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toFloatString(const unsigned char &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toFloatString(const short &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toFloatString(const unsigned short &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toFloatString(const int &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toFloatString(const unsigned int &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toFloatString(const long long &, unsigned int);
template K7ECORE_EXPORT QString CK7String::toFloatString(const unsigned long long &, unsigned int);
