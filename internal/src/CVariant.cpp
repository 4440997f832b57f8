#include "CVariant.h"

#include "ContentGuard_p.h"
#include "DateTimeRecord_p.h"
#include "FixedString_p.h"
#include "FloatToInteger_p.h"
#include "NumberText_p.h"
#include "TypeTable_p.h"
#include "VariantContent_p.h"
#include "VariantTypes_p.h"

#include <QBitArray>
#include <QDataStream>
#include <QDateTime>
#include <QDebug>

#include <algorithm>
#include <cstring>
#include <functional>
#include <type_traits>
#include <utility>

// Each operation looks up the row of its tag in VariantTypes::Types and does what the row's kind
// asks for. Content of the tag's own form is read in place: CVariant(5) is the tag I32 over a Qt
// Int. Content of any other form goes through QVariant, whose conversions decide.

using namespace VariantContent;
using namespace VariantTypes;

namespace {

constexpr char kFromStrWarning[]
    = "CVariant::fromStr : Data type %1 is not supported in this method.";
constexpr char kToBitArrayWarning[]
    = "CVariant::toBitArray() : Data type %1 is not supported in this method.";
constexpr char kFromBitArrayWarning[]
    = "CVariant::fromBitArray : Data type %1 is not supported in this method.";
constexpr char kAssignWarning[]
    = "CVariant::operator=() : userType() %1 is not supported in this method.";

void warn(const char *text, int code)
{
    qWarning() << QString(QLatin1String(text)).arg(code);
}

// A value as the functions below take it.
struct Value
{
    const QVariant &content;
    NTypes::ETypes tag;
};

// The tag of a value whose content is a T.
template <class T>
constexpr NTypes::ETypes tagOf()
{
    NTypes::ETypes tag = NTypes::TYPE_UNKNOWN;
    Types::any([&](auto row) {
        tag = row.code;
        return std::is_same_v<typename decltype(row)::Content, T>;
    });
    return tag;
}

// The bytes of a value whose content is a T.
template <class T>
constexpr int bytesOf()
{
    return static_cast<int>(TypeTable::kRows[tagOf<T>()].bytes);
}

// Returns whether Qt converts every From to a To. Contract: it converts an unsigned char to neither
// an unsigned short nor a float, and such a value is no number there.
template <class From, class To>
constexpr bool kAlwaysConverts
    = !(std::is_same_v<From, quint8> && (std::is_same_v<To, quint16> || std::is_same_v<To, float>));

template <class To>
bool convertsToNumber(const QVariant &content)
{
    if constexpr (std::is_same_v<To, double>) {
        switch (content.userType()) {
        case QMetaType::Short:
        case QMetaType::Char:
        case QMetaType::UShort:
        case QMetaType::UChar:
        case QMetaType::Float:
            return true;
        default:
            break;
        }
    }
    return content.canConvert(qMetaTypeId<To>());
}

template <class To, class From>
To numberCast(From from)
{
    if constexpr (std::is_floating_point_v<From> && std::is_integral_v<To>)
        return FloatToInteger::wrapped<To>(from);
    else
        return static_cast<To>(from);
}

// The QVariant conversion that reads content of another form than From's tag asks for, and its
// type: integers below 64 bits as int or unsigned int, floats as double.
template <class From>
auto widened(const QVariant &content, bool *ok)
{
    if constexpr (std::is_floating_point_v<From>)
        return content.toDouble(ok);
    else if constexpr (std::is_same_v<From, quint64>)
        return content.toULongLong(ok);
    else if constexpr (std::is_same_v<From, qint64>)
        return content.toLongLong(ok);
    else if constexpr (std::is_signed_v<From>)
        return content.toInt(ok);
    else
        return content.toUInt(ok);
}

// The number that QVariant makes of content of another form than the tag's, and everything else
// that is not a plain number.
template <class To>
Q_NEVER_INLINE To toNumberByQt(Value value, bool *ok)
{
    bool success = false;
    const To number = Types::visit(
        value.tag,
        [&](auto row) -> To {
            using From = typename decltype(row)::Content;
            if (!convertsToNumber<To>(value.content))
                return 0;
            if constexpr (isNumber<row.kind>) {
                const auto from = widened<From>(value.content, &success);
                return success ? numberCast<To>(from) : 0;
            } else if constexpr (row.kind == Kind::DateTime) {
                // Only with a converter that the application registered; its result is not used.
                success = true;
                return numberCast<To>(DateTimeRecord::toBits(convertedTo<From>(value.content)));
            } else {
                return 0;
            }
        },
        [] { return To(0); });
    if (ok)
        *ok = success;
    return number;
}

// Writes the number that is content of the tag's own form; returns false if there is none such, or
// not one that converts to To.
template <class To>
Q_ALWAYS_INLINE bool readNumber(Value value, To &number)
{
    // The commonest case, which needs no switch.
    if (Q_LIKELY(value.tag == tagOf<To>())) {
        const auto *content = contentOf<To>(value.content);
        if (content)
            number = *content;
        return content;
    }
    return Types::visit(
        value.tag,
        [&](auto row) {
            using From = typename decltype(row)::Content;
            if constexpr (isNumber<row.kind> && kAlwaysConverts<From, To>) {
                if (const auto *from = contentOf<From>(value.content)) {
                    number = numberCast<To>(*from);
                    return true;
                }
            }
            return false;
        },
        [] { return false; });
}

template <class To>
Q_ALWAYS_INLINE To toNumber(Value value, bool *ok)
{
    To number;
    if (!readNumber(value, number))
        return toNumberByQt<To>(value, ok);
    if (ok)
        *ok = true;
    return number;
}

NTypes::tsDateTime parseDateTime(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber)
        return DateTimeRecord::fromBits(number);
    const QDateTime dateTime = QDateTime::fromString(text, Qt::ISODate);
    return dateTime.isValid() ? DateTimeRecord::fromQt(dateTime.date(), dateTime.time())
                              : NTypes::tsDateTime();
}

// Contract: what does not parse is 0. Integers below 64 bits are parsed with 32 and then narrowed.
template <class Number>
Number parseNumber(const QString &text)
{
    constexpr int kByPrefix = 0;
    if constexpr (std::is_same_v<Number, float>)
        return text.toFloat();
    else if constexpr (std::is_same_v<Number, double>)
        return text.toDouble();
    else if constexpr (std::is_same_v<Number, quint64>)
        return text.toULongLong(nullptr, kByPrefix);
    else if constexpr (std::is_same_v<Number, qint64>)
        return text.toLongLong(nullptr, kByPrefix);
    else if constexpr (std::is_signed_v<Number>)
        return static_cast<Number>(text.toInt(nullptr, kByPrefix));
    else
        return static_cast<Number>(text.toUInt(nullptr, kByPrefix));
}

QString toText(const NTypes::tsDateTime &record)
{
    const QDateTime dateTime(DateTimeRecord::toQDate(record.date),
                             DateTimeRecord::toQTime(record.time));
    return dateTime.toString(Qt::ISODate);
}

QString toText(Value value)
{
    return Types::visit(
        value.tag,
        [&](auto row) {
            using Content = typename decltype(row)::Content;
            if constexpr (row.kind == Kind::FixedString)
                return convertedTo<Content>(value.content).str();
            else if constexpr (row.kind == Kind::DateTime)
                return toText(convertedTo<Content>(value.content));
            else if constexpr (isNumber<row.kind>)
                return NumberText::toStr(convertedTo<Content>(value.content));
            else if (value.content.isValid())
                return toContent(convertedTo<Content>(value.content)).toString();
            else
                return QString();
        },
        [&] { return value.content.toString(); });
}

QChar firstUnit(const QString &text)
{
    return text.isEmpty() ? QChar() : text.at(0);
}

template <std::size_t N>
bool toCharStr(Value value, char (&buffer)[N])
{
    // Contract: numbers and the date-time convert to 8-bit strings but are not written to a buffer.
    if (kindOf(value.tag) != Kind::Bytes)
        return false;
    const QByteArray bytes = value.content.toByteArray();
    const auto size = std::min(static_cast<std::size_t>(bytes.size()), N - 1);
    std::memcpy(buffer, bytes.constData(), size);
    std::memset(buffer + size, 0, N - size);
    return true;
}

template <class String>
String toFixedString(Value value, bool *ok)
{
    const bool converts = isText(value.tag);
    if (ok)
        *ok = converts;
    if (!converts)
        return String();
    // A string of the same capacity is copied whole; any other value gives its text alone.
    if (value.tag == tagOf<String>())
        return convertedTo<String>(value.content);
    // Contract: content that is no QChar is not made one first, as it is for its text elsewhere.
    if (value.tag == NTypes::TYPE_UTF16CHAR)
        return String(value.content.toString());
    return String(toText(value));
}

template <class Number, class Comparison>
bool compareAs(Value left, Value right, Comparison comparison)
{
    return comparison(toNumber<Number>(left, nullptr), toNumber<Number>(right, nullptr));
}

/*
    The common part of the six comparisons: the left tag selects what is compared. 'untyped' is the
    result for a tag that holds no values.
*/
template <class Comparison>
bool compare(Value left, Value right, Comparison comparison, bool untyped)
{
    return Types::visit(
        left.tag,
        [&](auto row) -> bool {
            using Content = typename decltype(row)::Content;
            if constexpr (isNumber<row.kind> || row.kind == Kind::FixedString) {
                // The usual case, two values of one type, in place and without making any text.
                const auto *leftContent = contentOf<Content>(left.content);
                const auto *rightContent = contentOf<Content>(right.content);
                if (left.tag == right.tag && leftContent && rightContent) {
                    if constexpr (row.kind == Kind::FixedString)
                        return comparison(FixedString::compareTexts(*leftContent, *rightContent),
                                          0);
                    else
                        return comparison(*leftContent, *rightContent);
                }
            }
            if constexpr (row.kind == Kind::Floating)
                return compareAs<Content>(left, right, comparison);
            else if constexpr (row.kind == Kind::DateTime || std::is_signed_v<Content>)
                return compareAs<qint64>(left, right, comparison);
            else if constexpr (row.kind == Kind::Integer)
                return compareAs<quint64>(left, right, comparison);
            else
                return comparison(toText(left), toText(right));
        },
        [untyped] { return untyped; });
}

} // namespace

CVariant::CVariant() noexcept = default;

CVariant::CVariant(const CVariant &other) : mValue(copyOf(other.mValue)), mType(other.mType)
{
}

CVariant::~CVariant() = default;

CVariant::CVariant(CVariant &&other) noexcept
    : mValue(std::move(other.mValue))
    , mType(std::exchange(other.mType, NTypes::TYPE_UNKNOWN))
{
}

CVariant::CVariant(unsigned char value) : mValue(toContent(value)), mType(tagOf<unsigned char>())
{
}

CVariant::CVariant(signed char value) : mValue(toContent(value)), mType(tagOf<signed char>())
{
}

CVariant::CVariant(unsigned short value) : mValue(toContent(value)), mType(tagOf<unsigned short>())
{
}

CVariant::CVariant(short value) : mValue(toContent(value)), mType(tagOf<short>())
{
}

CVariant::CVariant(unsigned int value) : mValue(toContent(value)), mType(tagOf<unsigned int>())
{
}

CVariant::CVariant(int value) : mValue(toContent(value)), mType(tagOf<int>())
{
}

CVariant::CVariant(float value) : mValue(toContent(value)), mType(tagOf<float>())
{
}

CVariant::CVariant(unsigned long long value)
    : mValue(toContent(value))
    , mType(tagOf<unsigned long long>())
{
}

CVariant::CVariant(long long value) : mValue(toContent(value)), mType(tagOf<long long>())
{
}

CVariant::CVariant(double value) : mValue(toContent(value)), mType(tagOf<double>())
{
}

CVariant::CVariant(const CString32 &value) : mValue(toContent(value)), mType(tagOf<CString32>())
{
}

CVariant::CVariant(const unsigned short (&units)[32]) : CVariant(CString32(units))
{
}

CVariant::CVariant(const char (&bytes)[64])
    : mValue(QByteArray(bytes, sizeof(bytes)))
    , mType(NTypes::TYPE_CHARSTR64)
{
}

CVariant::CVariant(const CString128 &value) : mValue(toContent(value)), mType(tagOf<CString128>())
{
}

CVariant::CVariant(const unsigned short (&units)[128]) : CVariant(CString128(units))
{
}

CVariant::CVariant(const char (&bytes)[256])
    : mValue(QByteArray(bytes, sizeof(bytes)))
    , mType(NTypes::TYPE_CHARSTR256)
{
}

CVariant::CVariant(const NTypes::tsDateTime &value)
    : mValue(toContent(value))
    , mType(tagOf<NTypes::tsDateTime>())
{
}

CVariant::CVariant(const CString64 &value) : mValue(toContent(value)), mType(tagOf<CString64>())
{
}

CVariant::CVariant(const unsigned short (&units)[64]) : CVariant(CString64(units))
{
}

CVariant::CVariant(const char (&bytes)[128])
    : mValue(QByteArray(bytes, sizeof(bytes)))
    , mType(NTypes::TYPE_CHARSTR128)
{
}

CVariant::CVariant(QChar value) : mValue(toContent(value)), mType(tagOf<QChar>())
{
}

CVariant::CVariant(char value) : mValue(QByteArray(1, value)), mType(NTypes::TYPE_CHAR)
{
}

CVariant::CVariant(NTypes::ETypes type)
{
    if (TypeTable::find(type))
        setDefaultValue(type);
}

CVariant::CVariant(const QString &text, NTypes::ETypes type) : mType(type)
{
    fromStr(text);
}

CVariant::CVariant(const QBitArray &bits, NTypes::ETypes type) : CVariant(fromBitArray(bits, type))
{
}

CVariant::CVariant(const QVariant &value) : mValue(value)
{
    *this = value;
}

CVariant &CVariant::operator=(const CVariant &other) = default;

CVariant &CVariant::operator=(CVariant &&other) noexcept
{
    swap(other);
    return *this;
}

CVariant &CVariant::operator=(const unsigned char &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const signed char &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const unsigned short &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const short &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const unsigned int &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const int &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const float &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const unsigned long long &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const long long &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const double &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const CString32 &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const unsigned short (&units)[32])
{
    return *this = CVariant(units);
}

CVariant &CVariant::operator=(const char (&bytes)[64])
{
    return *this = CVariant(bytes);
}

CVariant &CVariant::operator=(const CString128 &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const unsigned short (&units)[128])
{
    return *this = CVariant(units);
}

CVariant &CVariant::operator=(const char (&bytes)[256])
{
    return *this = CVariant(bytes);
}

CVariant &CVariant::operator=(const NTypes::tsDateTime &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const CString64 &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const unsigned short (&units)[64])
{
    return *this = CVariant(units);
}

CVariant &CVariant::operator=(const char (&bytes)[128])
{
    return *this = CVariant(bytes);
}

CVariant &CVariant::operator=(const QChar &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const char &value)
{
    return *this = CVariant(value);
}

CVariant &CVariant::operator=(const QBitArray &bits)
{
    fromBitArray(bits);
    return *this;
}

CVariant &CVariant::operator=(const QVariant &value)
{
    // Contract: a byte array is taken as UTF-16 units, not as an 8-bit string, and the date-time
    // record is refused, although operator QVariant() gives out both.
    const bool taken = Types::any([&](auto row) {
        using Content = typename decltype(row)::Content;
        if constexpr (row.kind != Kind::Bytes && row.kind != Kind::DateTime) {
            if (const auto *content = contentOf<Content>(value)) {
                *this = CVariant(*content);
                return true;
            }
        }
        return false;
    });
    if (taken)
        return *this;

    // Text by the size of its UTF-8, bytes by their own.
    const auto assignString = [&](const auto &from) {
        const int bytes = value.toByteArray().size();
        if (bytes < bytesOf<CString32>())
            *this = CString32(from);
        else if (bytes < bytesOf<CString64>())
            *this = CString64(from);
        else
            *this = CString128(from);
    };
    switch (value.userType()) {
    case QMetaType::Long:
        *this = static_cast<int>(value.toLongLong());
        break;
    case QMetaType::ULong:
        *this = static_cast<unsigned int>(value.toULongLong());
        break;
    case QMetaType::Char:
        *this = value.value<char>();
        break;
    case QMetaType::QString:
        assignString(value.toString());
        break;
    case QMetaType::QByteArray:
        assignString(value.toByteArray());
        break;
    default:
        warn(kAssignWarning, value.userType());
    }
    return *this;
}

bool CVariant::isNull() const
{
    return mValue.isNull() || mType == NTypes::TYPE_UNKNOWN;
}

bool CVariant::isValid() const
{
    return mValue.isValid() && mType != NTypes::TYPE_UNKNOWN;
}

bool CVariant::canConvertTo(NTypes::ETypes target) const
{
    return Types::visit(
        target,
        [this](auto row) {
            const auto kind = kindOf(mType);
            if constexpr (isNumber<row.kind>)
                return convertsToNumber<typename decltype(row)::Content>(mValue);
            else if constexpr (row.kind == Kind::DateTime)
                return mType == NTypes::TYPE_U64 || mType == NTypes::TYPE_I64
                    || kind == Kind::DateTime;
            else if constexpr (row.kind == Kind::Bytes)
                return kind == Kind::Integer || kind == Kind::Floating || kind == Kind::Bytes
                    || kind == Kind::DateTime;
            else
                return isText(mType);
        },
        [] { return false; });
}

signed char CVariant::toI8(bool *ok) const
{
    return toNumber<signed char>({mValue, mType}, ok);
}

unsigned char CVariant::toU8(bool *ok) const
{
    return toNumber<unsigned char>({mValue, mType}, ok);
}

short CVariant::toI16(bool *ok) const
{
    return toNumber<short>({mValue, mType}, ok);
}

unsigned short CVariant::toU16(bool *ok) const
{
    return toNumber<unsigned short>({mValue, mType}, ok);
}

int CVariant::toI32(bool *ok) const
{
    return toNumber<int>({mValue, mType}, ok);
}

unsigned int CVariant::toU32(bool *ok) const
{
    return toNumber<unsigned int>({mValue, mType}, ok);
}

long long CVariant::toI64(bool *ok) const
{
    return toNumber<long long>({mValue, mType}, ok);
}

unsigned long long CVariant::toU64(bool *ok) const
{
    return toNumber<unsigned long long>({mValue, mType}, ok);
}

float CVariant::toF32(bool *ok) const
{
    return toNumber<float>({mValue, mType}, ok);
}

double CVariant::toF64(bool *ok) const
{
    return toNumber<double>({mValue, mType}, ok);
}

CVariant::operator signed char() const
{
    return toI8();
}

CVariant::operator unsigned char() const
{
    return toU8();
}

CVariant::operator short() const
{
    return toI16();
}

CVariant::operator unsigned short() const
{
    return toU16();
}

CVariant::operator int() const
{
    return toI32();
}

CVariant::operator unsigned int() const
{
    return toU32();
}

CVariant::operator long long() const
{
    return toI64();
}

CVariant::operator unsigned long long() const
{
    return toU64();
}

CVariant::operator float() const
{
    return toF32();
}

CVariant::operator double() const
{
    return toF64();
}

bool CVariant::toCharStr64(char (&buffer)[64]) const
{
    return toCharStr({mValue, mType}, buffer);
}

bool CVariant::toCharStr128(char (&buffer)[128]) const
{
    return toCharStr({mValue, mType}, buffer);
}

bool CVariant::toCharStr256(char (&buffer)[256]) const
{
    return toCharStr({mValue, mType}, buffer);
}

bool CVariant::toChar(char &character) const
{
    char text[2];
    if (!toCharStr({mValue, mType}, text))
        return false;
    character = text[0];
    return true;
}

CVariant::operator char() const
{
    char character = 0;
    toChar(character);
    return character;
}

template <>
QChar CVariant::value<QChar>(NTypes::ETypes target, bool *ok) const
{
    const bool converts = canConvertTo(target);
    if (ok)
        *ok = converts;
    if (!converts)
        return QChar();
    return mType == NTypes::TYPE_UTF16CHAR ? mValue.toChar() : firstUnit(toStr());
}

template <>
CString32 CVariant::value<CString32>(NTypes::ETypes, bool *ok) const
{
    return toFixedString<CString32>({mValue, mType}, ok);
}

template <>
CString64 CVariant::value<CString64>(NTypes::ETypes, bool *ok) const
{
    return toFixedString<CString64>({mValue, mType}, ok);
}

template <>
CString128 CVariant::value<CString128>(NTypes::ETypes, bool *ok) const
{
    return toFixedString<CString128>({mValue, mType}, ok);
}

bool CVariant::toUtf16Char(unsigned short &unit) const
{
    QChar character;
    const bool ok = toUtf16Char(character);
    unit = character.unicode();
    return ok;
}

bool CVariant::toUtf16Char(QChar &character) const
{
    bool ok = false;
    character = value<QChar>(NTypes::TYPE_UTF16CHAR, &ok);
    return ok;
}

CVariant::operator QChar() const
{
    return value<QChar>(NTypes::TYPE_UTF16CHAR);
}

CString32 CVariant::toString32(bool *ok) const
{
    return value<CString32>(NTypes::TYPE_STRING32, ok);
}

bool CVariant::toString32(unsigned short (&units)[32]) const
{
    return toString32().string32(units);
}

CVariant::operator CString32() const
{
    return toString32();
}

CString64 CVariant::toString64(bool *ok) const
{
    return value<CString64>(NTypes::TYPE_STRING64, ok);
}

bool CVariant::toString64(unsigned short (&units)[64]) const
{
    return toString64().string64(units);
}

CVariant::operator CString64() const
{
    return toString64();
}

CString128 CVariant::toString128(bool *ok) const
{
    return value<CString128>(NTypes::TYPE_STRING128, ok);
}

bool CVariant::toString128(unsigned short (&units)[128]) const
{
    return toString128().string128(units);
}

CVariant::operator CString128() const
{
    return toString128();
}

QString CVariant::toStr() const
{
    return toText({mValue, mType});
}

CVariant::operator QString() const
{
    return toStr();
}

QString CVariant::toLocaleStr() const
{
    return Types::visit(
        mType,
        [this](auto row) {
            if constexpr (row.kind == Kind::Floating) {
                const auto value = convertedTo<typename decltype(row)::Content>(mValue);
                return QStringLiteral("%L1").arg(static_cast<double>(value), 0, 'g', -1);
            } else {
                return toStr();
            }
        },
        [this] { return toStr(); });
}

CVariant CVariant::fromStr(const QString &text, NTypes::ETypes type)
{
    return Types::visit(
        type,
        [&](auto row) -> CVariant {
            using Content = typename decltype(row)::Content;
            if constexpr (isNumber<row.kind>) {
                return parseNumber<Content>(text);
            } else if constexpr (row.kind == Kind::FixedString) {
                return Content(text);
            } else if constexpr (row.kind == Kind::DateTime) {
                return parseDateTime(text);
            } else if constexpr (row.kind == Kind::Utf16Char) {
                return firstUnit(text);
            } else {
                // One byte a unit. A null text gives null bytes, which the other forms replace.
                CVariant variant;
                variant.mValue = text.left(row.bytes).toLatin1();
                variant.mType = type;
                return variant;
            }
        },
        [type] {
            warn(kFromStrWarning, type);
            return CVariant();
        });
}

CVariant &CVariant::fromStr(const QString &text)
{
    CVariant parsed = fromStr(text, mType);
    // The null character is a value, although Qt calls a QVariant of it null.
    if (parsed.isNull() && mType != NTypes::TYPE_UTF16CHAR)
        return setDefaultValue(mType);
    return *this = std::move(parsed);
}

QString CVariant::toHex(const QString &prefix) const
{
    return Types::visit(
        mType,
        [&](auto row) {
            const auto content = convertedTo<typename decltype(row)::Content>(mValue);
            if constexpr (row.kind == Kind::Integer)
                return NumberText::toHex(prefix, content);
            else if constexpr (row.kind == Kind::Utf16Char)
                return NumberText::toHex(prefix, content.unicode());
            else if constexpr (row.kind == Kind::FixedString)
                return prefix + QLatin1String(content.byteArray().toHex());
            else if constexpr (row.kind == Kind::Bytes)
                return prefix + QLatin1String(content.toHex());
            else if constexpr (row.kind == Kind::DateTime)
                return prefix + QString::number(DateTimeRecord::toBits(content), 16);
            else
                return prefix;
        },
        [&] { return prefix; });
}

QBitArray CVariant::toBitArray() const
{
    const auto unsupported = [this] {
        warn(kToBitArrayWarning, mType);
        return QBitArray();
    };
    return Types::visit(
        mType,
        [&](auto row) {
            if constexpr (row.kind == Kind::Integer) {
                const auto value = convertedTo<typename decltype(row)::Content>(mValue);
                QBitArray bits(8 * row.bytes);
                for (int i = 0; i < bits.size(); ++i)
                    bits.setBit(i, static_cast<quint64>(value) >> i & 1);
                return bits;
            } else {
                return unsupported();
            }
        },
        unsupported);
}

CVariant CVariant::fromBitArray(const QBitArray &bits, NTypes::ETypes type)
{
    const auto unsupported = [type] {
        warn(kFromBitArrayWarning, type);
        return CVariant();
    };
    return Types::visit(
        type,
        [&](auto row) -> CVariant {
            if constexpr (row.kind == Kind::Integer) {
                quint64 value = 0;
                for (int i = 0; i < std::min(bits.size(), 8 * row.bytes); ++i)
                    value |= static_cast<quint64>(bits.testBit(i)) << i;
                return static_cast<typename decltype(row)::Content>(value);
            } else {
                return unsupported();
            }
        },
        unsupported);
}

CVariant &CVariant::fromBitArray(const QBitArray &bits)
{
    return *this = fromBitArray(bits, mType == NTypes::TYPE_UNKNOWN ? NTypes::TYPE_U64 : mType);
}

QVariant CVariant::defaultValue(NTypes::ETypes type) const
{
    return Types::visit(
        type,
        [](auto row) -> QVariant {
            // Contract: the narrow integers start with an int, which their streams then carry.
            if constexpr (row.kind == Kind::Bytes)
                return QByteArray(row.bytes, '\0');
            else if constexpr (row.kind == Kind::Integer && row.bytes < int(sizeof(int)))
                return toContent(0);
            else
                return toContent(typename decltype(row)::Content());
        },
        [] { return QVariant(); });
}

CVariant &CVariant::setDefaultValue(NTypes::ETypes type)
{
    mType = type;
    QVariant value = defaultValue(type);
    // The null character counts as no default: Qt calls a QVariant of it null.
    if (!value.isNull())
        mValue = std::move(value);
    return *this;
}

bool CVariant::operator==(const CVariant &other) const
{
    return mType == other.mType
        && compare({mValue, mType}, {other.mValue, other.mType}, std::equal_to<>(), true);
}

bool CVariant::operator!=(const CVariant &other) const
{
    return !(*this == other);
}

bool CVariant::operator<(const CVariant &other) const
{
    return compare({mValue, mType}, {other.mValue, other.mType}, std::less<>(), false);
}

bool CVariant::operator>(const CVariant &other) const
{
    return compare({mValue, mType}, {other.mValue, other.mType}, std::greater<>(), false);
}

bool CVariant::operator<=(const CVariant &other) const
{
    return !(*this > other);
}

bool CVariant::operator>=(const CVariant &other) const
{
    return !(*this < other);
}

CVariant::operator QVariant() const
{
    return mValue;
}

QDataStream &operator<<(QDataStream &out, const CVariant &variant)
{
    registerTypes();
    return out << variant.mValue << static_cast<qint32>(variant.mType);
}

QDataStream &operator>>(QDataStream &in, CVariant &variant)
{
    registerTypes();
    qint32 type = 0;
    ContentGuard::read(in, variant.mValue, type);
    variant.mType = static_cast<NTypes::ETypes>(type);
    return in;
}

QDebug operator<<(QDebug debug, const CVariant &variant)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "CVariant(" << qUtf8Printable(TypeTable::name(variant.type())) << ' '
                    << variant.toStr() << ')';
    return debug;
}
