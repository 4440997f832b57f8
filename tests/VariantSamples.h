#ifndef VARIANTSAMPLES_H
#define VARIANTSAMPLES_H

#include "CVariant.h"

#include <QBitArray>
#include <QByteArray>
#include <QChar>
#include <QDataStream>
#include <QDateTime>
#include <QIODevice>
#include <QLine>
#include <QRegularExpression>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QUuid>
#include <QVariant>
#include <QVector>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <type_traits>

/*!
    Values for the tests of CVariant, ways to make those that no constructor makes, and a readable
    form of tag and content.
*/
namespace VariantTest {

template <std::size_t N>
struct Chars
{
    char array[N] = {};
};

//! Returns an array that starts with \a bytes; the rest is zero.
template <std::size_t N>
Chars<N> chars(const QByteArray &bytes)
{
    Chars<N> to;
    std::memcpy(to.array, bytes.constData(), qMin(static_cast<std::size_t>(bytes.size()), N));
    return to;
}

//! Returns an array of the bytes 1, 8, 15, ..., which holds a NUL at index 73.
template <std::size_t N>
Chars<N> countingChars()
{
    Chars<N> to;
    for (std::size_t i = 0; i < N; ++i)
        to.array[i] = static_cast<char>(7 * i + 1);
    return to;
}

template <std::size_t N>
struct Units
{
    unsigned short array[N] = {};
};

//! Returns an array that starts with \a text; the last unit is \a last, the others are zero.
template <std::size_t N>
Units<N> units(const QString &text, unsigned short last = 0)
{
    Units<N> to;
    to.array[N - 1] = last;
    for (int i = 0; i < text.size(); ++i)
        to.array[i] = text.at(i).unicode();
    return to;
}

inline NTypes::tsDateTime record(int day, int month, int year, int hours, int minutes, int seconds,
                                 int hundredths)
{
    NTypes::tsDateTime to;
    to.date.day = static_cast<qint8>(day);
    to.date.month = static_cast<qint8>(month);
    to.date.year = static_cast<qint16>(year);
    to.time.hours = static_cast<qint8>(hours);
    to.time.minutes = static_cast<qint8>(minutes);
    to.time.seconds = static_cast<qint8>(seconds);
    to.time.hundredths = static_cast<qint8>(hundredths);
    return to;
}

//! Returns the bytes of \a from in the order of the device: the time first, the year little-endian.
inline QByteArray recordBytes(const NTypes::tsDateTime &from)
{
    const auto year = static_cast<quint16>(from.date.year);
    const char bytes[8] = {from.time.hundredths,
                           from.time.seconds,
                           from.time.minutes,
                           from.time.hours,
                           from.date.day,
                           from.date.month,
                           static_cast<char>(year & 0xFF),
                           static_cast<char>(year >> 8)};
    return QByteArray(bytes, sizeof(bytes));
}

inline QString bits(const QBitArray &from)
{
    QString text;
    for (int i = 0; i < from.size(); ++i)
        text += QLatin1Char(from.testBit(i) ? '1' : '0');
    return text;
}

//! Returns the bits that \a text writes as '0' and '1', the first bit first.
inline QBitArray bits(const char *text)
{
    QBitArray to(static_cast<int>(std::strlen(text)));
    for (int i = 0; i < to.size(); ++i)
        to.setBit(i, text[i] == '1');
    return to;
}

inline QString hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

//! Returns \a number in decimal, or for a floating type its bits, NaN apart.
template <class Number>
QString numberText(Number number)
{
    if constexpr (std::is_integral_v<Number>)
        return QString::number(number);
    else {
        if (std::isnan(number))
            return QStringLiteral("nan");
        return hex(QByteArray(reinterpret_cast<const char *>(&number), sizeof(number)))
            + QLatin1Char('=') + QString::number(static_cast<double>(number));
    }
}

//! Returns type and value of \a content, and whether it is null: "ushort 7".
inline QString describe(const QVariant &content)
{
    if (!content.isValid())
        return QStringLiteral("invalid");
    const int type = content.userType();
    QString text = QLatin1String(content.typeName()) + QLatin1Char(' ');
    if (type == QMetaType::UChar)
        text += numberText(content.value<unsigned char>());
    else if (type == QMetaType::SChar)
        text += numberText(content.value<signed char>());
    else if (type == QMetaType::Char)
        text += numberText(content.value<char>());
    else if (type == QMetaType::Float)
        text += numberText(content.value<float>());
    else if (type == QMetaType::Double)
        text += numberText(content.value<double>());
    else if (type == QMetaType::QChar)
        text += QString::number(content.toChar().unicode(), 16);
    else if (type == QMetaType::QByteArray)
        text += hex(content.toByteArray());
    else if (type == QMetaType::QBitArray)
        text += bits(content.toBitArray());
    else if (type == qMetaTypeId<CString32>())
        text += hex(content.value<CString32>().byteArray());
    else if (type == qMetaTypeId<CString64>())
        text += hex(content.value<CString64>().byteArray());
    else if (type == qMetaTypeId<CString128>())
        text += hex(content.value<CString128>().byteArray());
    else if (type == qMetaTypeId<NTypes::tsDateTime>())
        text += hex(recordBytes(content.value<NTypes::tsDateTime>()));
    else
        text += content.toString();
    return content.isNull() ? text + QLatin1String(" null") : text;
}

//! Returns the content of \a value.
inline QVariant contentOf(const CVariant &value)
{
    return value;
}

//! Returns tag, type and value: "3 ushort 7".
inline QString describe(const CVariant &value)
{
    return QString::number(static_cast<int>(value.type())) + QLatin1Char(' ')
        + describe(contentOf(value));
}

inline NTypes::ETypes tag(int code)
{
    return static_cast<NTypes::ETypes>(code);
}

//! Returns the value that a stream of \a bytes holds.
inline CVariant readFrom(const QByteArray &bytes)
{
    CVariant value;
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_5_15);
    in >> value;
    return value;
}

//! Returns a value of \a content under the tag \a code, which only a stream can make.
inline CVariant withTag(const QVariant &content, int code)
{
    // The types must be met once before a QVariant of them streams.
    static const CVariant kMet[] = {CString32(), CString64(), CString128(), NTypes::tsDateTime()};
    Q_UNUSED(kMet)
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    out << content << static_cast<qint32>(code);
    return readFrom(bytes);
}

struct Content
{
    const char *name;
    QVariant content;
};

//! Returns an Int that is marked as null but is 5, which only a stream can make.
inline QVariant nullFive()
{
    return readFrom(QByteArray::fromHex("000000020100000005"
                                        "00000006"));
}

//! Returns QVariants of every kind that a stream may bring under any tag.
inline QVector<Content> contents()
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    return {
        {"invalid", QVariant()},
        {"null Int", QVariant(QVariant::Int)},
        {"null Int 5", nullFive()},
        {"Bool true", QVariant(true)},
        {"Int 0", QVariant(0)},
        {"Int 65", QVariant(65)},
        {"Int 300", QVariant(300)},
        {"Int -1", QVariant(-1)},
        {"Int min", QVariant(std::numeric_limits<int>::min())},
        {"UInt max", QVariant(0xFFFFFFFFU)},
        {"LongLong 5000000000", QVariant(Q_INT64_C(5000000000))},
        {"LongLong min", QVariant(std::numeric_limits<qlonglong>::min())},
        {"ULongLong max", QVariant(std::numeric_limits<qulonglong>::max())},
        {"Long -2", QVariant::fromValue(-2L)},
        {"ULong 2^32+5", QVariant::fromValue(4294967301UL)},
        {"Short -300", QVariant::fromValue(static_cast<short>(-300))},
        {"UShort 65535", QVariant::fromValue(static_cast<unsigned short>(65535))},
        {"UChar 200", QVariant::fromValue(static_cast<unsigned char>(200))},
        {"SChar -100", QVariant::fromValue(static_cast<signed char>(-100))},
        {"Char A", QVariant::fromValue('A')},
        {"Float 2.5", QVariant(2.5F)},
        {"Float -0.75", QVariant(-0.75F)},
        {"Float NaN", QVariant(std::numeric_limits<float>::quiet_NaN())},
        {"Double 2.5", QVariant(2.5)},
        {"Double -2.9", QVariant(-2.9)},
        {"Double 2^32+5", QVariant(4294967301.0)},
        {"Double 1e19", QVariant(1e19)},
        {"Double 1e300", QVariant(1e300)},
        {"Double inf", QVariant(kInfinity)},
        {"Double -inf", QVariant(-kInfinity)},
        {"Double NaN", QVariant(kNaN)},
        {"QChar A", QVariant(QChar(u'A'))},
        {"QChar 0", QVariant(QChar(u'\0'))},
        {"QChar FFFF", QVariant(QChar(u'\uFFFF'))},
        {"QString 12", QVariant(QStringLiteral("12"))},
        {"QString abc", QVariant(QStringLiteral("abc"))},
        {"QString 0x1F", QVariant(QStringLiteral("0x1F"))},
        {"QString empty", QVariant(QLatin1String(""))},
        {"QString null", QVariant(QString())},
        {"QByteArray 12", QVariant(QByteArray("12"))},
        {"QByteArray abc", QVariant(QByteArray("abc"))},
        {"QByteArray A NUL B", QVariant(QByteArray("A\0B", 3))},
        {"QByteArray no UTF-8", QVariant(QByteArray("\xFF\xC3"))},
        {"QByteArray empty", QVariant(QByteArray(""))},
        {"QByteArray null", QVariant(QByteArray())},
        {"QByteArray 300 bytes", QVariant(QByteArray(300, 'x'))},
        {"CString32 with a tail",
         QVariant::fromValue(CString32(units<32>(QStringLiteral("AB"), 7).array))},
        {"CString32 empty", QVariant::fromValue(CString32())},
        {"CString64 full", QVariant::fromValue(CString64(QString(64, QLatin1Char('y'))))},
        {"CString128 with a tail",
         QVariant::fromValue(CString128(units<128>(QString(40, QLatin1Char('z')), 8).array))},
        {"record", QVariant::fromValue(record(5, 3, 2014, 10, 20, 30, 99))},
        {"record of zeros", QVariant::fromValue(NTypes::tsDateTime())},
        {"QDate", QVariant(QDate(2014, 3, 5))},
        {"QTime", QVariant(QTime(10, 20, 30))},
        {"QDateTime", QVariant(QDateTime(QDate(2014, 3, 5), QTime(10, 20, 30), Qt::UTC))},
        {"QStringList of one", QVariant(QStringList(QStringLiteral("1")))},
        {"QVariantList", QVariant(QVariantList({1, 2}))},
        {"QVariantMap", QVariant(QVariantMap({{QStringLiteral("k"), 1}}))},
        {"QBitArray", QVariant(bits("101"))},
        {"QUrl", QVariant(QUrl(QStringLiteral("http://example.com")))},
        {"QUuid", QVariant(QUuid())},
        {"QSize", QVariant(QSize(1, 2))},
        {"QLine", QVariant(QLine(1, 2, 3, 4))},
        {"QRegularExpression", QVariant(QRegularExpression(QStringLiteral("a+")))},
    };
}

//! Returns the tags 0 to 20 and codes that are no types.
inline QVector<int> tags()
{
    QVector<int> codes;
    for (int code = 0; code <= 20; ++code)
        codes << code;
    return codes << 21 << 25 << 127 << 1024 << std::numeric_limits<int>::max() << -1
                 << std::numeric_limits<int>::min();
}

struct Sample
{
    const char *name;
    CVariant value;
};

//! Returns values of every type at its edges, and some whose content is of another form.
inline QVector<Sample> values()
{
    using F32 = std::numeric_limits<float>;
    using F64 = std::numeric_limits<double>;
    using I64 = std::numeric_limits<long long>;
    using U64 = std::numeric_limits<unsigned long long>;
    constexpr double kTwo63 = 9223372036854775808.0;
    return {
        {"UNKNOWN", CVariant()},
        {"UNKNOWN over Bool", withTag(true, 0)},
        {"F80", CVariant(NTypes::TYPE_F80)},
        {"F80 over UShort 7", withTag(QVariant::fromValue(static_cast<unsigned short>(7)), 11)},
        {"U8 0", CVariant(static_cast<unsigned char>(0))},
        {"U8 5", CVariant(static_cast<unsigned char>(5))},
        {"U8 128", CVariant(static_cast<unsigned char>(128))},
        {"U8 255", CVariant(static_cast<unsigned char>(255))},
        {"U8 default", CVariant(NTypes::TYPE_U8)},
        {"U8 over Int 300", withTag(300, 1)},
        {"U8 over Int -1", withTag(-1, 1)},
        {"I8 -128", CVariant(static_cast<signed char>(-128))},
        {"I8 -1", CVariant(static_cast<signed char>(-1))},
        {"I8 5", CVariant(static_cast<signed char>(5))},
        {"I8 127", CVariant(static_cast<signed char>(127))},
        {"U16 0", CVariant(static_cast<unsigned short>(0))},
        {"U16 9", CVariant(static_cast<unsigned short>(9))},
        {"U16 65535", CVariant(static_cast<unsigned short>(65535))},
        {"U16 over UChar 5", withTag(QVariant::fromValue(static_cast<unsigned char>(5)), 3)},
        {"I16 -32768", CVariant(static_cast<short>(-32768))},
        {"I16 -1", CVariant(static_cast<short>(-1))},
        {"I16 32767", CVariant(static_cast<short>(32767))},
        {"U32 10", CVariant(10U)},
        {"U32 max", CVariant(4294967295U)},
        {"I32 min", CVariant(std::numeric_limits<int>::min())},
        {"I32 -1", CVariant(-1)},
        {"I32 0", CVariant(0)},
        {"I32 5", CVariant(5)},
        {"I32 10", CVariant(10)},
        {"I32 max", CVariant(2147483647)},
        {"I32 over Double 2.5", withTag(2.5, 6)},
        {"I32 over Double 1e300", withTag(1e300, 6)},
        {"I32 over Double NaN", withTag(F64::quiet_NaN(), 6)},
        {"I32 over QByteArray 12", withTag(QByteArray("12"), 6)},
        {"I32 over record", withTag(QVariant::fromValue(record(5, 3, 2014, 10, 20, 30, 0)), 6)},
        {"I32 over CString32", withTag(QVariant::fromValue(CString32(QStringLiteral("7"))), 6)},
        {"F32 0", CVariant(0.0F)},
        {"F32 -0", CVariant(-0.0F)},
        {"F32 0.1", CVariant(0.1F)},
        {"F32 1", CVariant(1.0F)},
        {"F32 -2.9", CVariant(-2.9F)},
        {"F32 max", CVariant(F32::max())},
        {"F32 inf", CVariant(F32::infinity())},
        {"F32 -inf", CVariant(-F32::infinity())},
        {"F32 NaN", CVariant(F32::quiet_NaN())},
        {"F32 2^63", CVariant(static_cast<float>(kTwo63))},
        {"F32 over Double 0.1", withTag(0.1, 7)},
        {"F32 over Double 1e300", withTag(1e300, 7)},
        {"U64 0", CVariant(0ULL)},
        {"U64 5", CVariant(5ULL)},
        {"U64 2^63", CVariant(9223372036854775808ULL)},
        {"U64 max", CVariant(U64::max())},
        {"I64 min", CVariant(I64::min())},
        {"I64 -1", CVariant(-1LL)},
        {"I64 5", CVariant(5LL)},
        {"I64 2^53+1", CVariant(9007199254740993LL)},
        {"I64 max", CVariant(I64::max())},
        {"I64 over Double 1e19", withTag(1e19, 9)},
        {"F64 0", CVariant(0.0)},
        {"F64 -0", CVariant(-0.0)},
        {"F64 0.1", CVariant(0.1)},
        {"F64 1", CVariant(1.0)},
        {"F64 2.9", CVariant(2.9)},
        {"F64 -1", CVariant(-1.0)},
        {"F64 2^63", CVariant(kTwo63)},
        {"F64 -2^63", CVariant(-kTwo63)},
        {"F64 2^64", CVariant(2 * kTwo63)},
        {"F64 1e300", CVariant(1e300)},
        {"F64 inf", CVariant(F64::infinity())},
        {"F64 -inf", CVariant(-F64::infinity())},
        {"F64 NaN", CVariant(F64::quiet_NaN())},
        {"F64 over QByteArray 2.5", withTag(QByteArray("2.5"), 10)},
        {"STRING32 empty", CVariant(CString32())},
        {"STRING32 A", CVariant(CString32(QStringLiteral("A")))},
        {"STRING32 A with a tail", CVariant(units<32>(QStringLiteral("A"), 7).array)},
        {"STRING32 9", CVariant(CString32(QStringLiteral("9")))},
        {"STRING32 a", CVariant(CString32(QStringLiteral("a")))},
        {"STRING32 full", CVariant(CString32(QString(32, QLatin1Char('y'))))},
        {"STRING32 over CString64",
         withTag(QVariant::fromValue(CString64(QStringLiteral("A"))), 12)},
        {"STRING32 over Int 9", withTag(9, 12)},
        {"CHARSTR64 A", CVariant(chars<64>("A").array)},
        {"CHARSTR64 A NUL x", CVariant(chars<64>(QByteArray("A\0x", 3)).array)},
        {"CHARSTR64 full", CVariant(chars<64>(QByteArray(64, 'y')).array)},
        {"CHARSTR64 null bytes", CVariant::fromStr(QString(), NTypes::TYPE_CHARSTR64)},
        {"CHARSTR64 over Int 9", withTag(9, 13)},
        {"STRING128 A", CVariant(CString128(QStringLiteral("A")))},
        {"STRING128 U+FFFD", CVariant(CString128(QString(QChar(u'\uFFFD'))))},
        {"STRING128 U+10000", CVariant(CString128(QStringLiteral("\U00010000")))},
        {"CHARSTR256 A", CVariant(chars<256>("A").array)},
        {"CHARSTR256 no UTF-8", CVariant(chars<256>("\xFF\xC3").array)},
        {"DATETIME", CVariant(record(5, 3, 2014, 10, 20, 30, 99))},
        {"DATETIME zeros", CVariant(NTypes::tsDateTime())},
        {"DATETIME over Int 5", withTag(5, 16)},
        {"STRING64 A", CVariant(CString64(QStringLiteral("A")))},
        {"STRING64 B", CVariant(CString64(QStringLiteral("B")))},
        {"CHARSTR128 A", CVariant(chars<128>("A").array)},
        {"UTF16CHAR A", CVariant(QChar(u'A'))},
        {"UTF16CHAR 0", CVariant(QChar(u'\0'))},
        {"UTF16CHAR D800", CVariant(QChar(0xD800))},
        {"UTF16CHAR default", CVariant(NTypes::TYPE_UTF16CHAR)},
        {"UTF16CHAR over Int 65", withTag(65, 19)},
        {"CHAR A", CVariant('A')},
        {"CHAR 9", CVariant('9')},
        {"CHAR NUL", CVariant('\0')},
        {"21 over Int 5", withTag(5, 21)},
        {"25 over Int 5", withTag(5, 25)},
        {"25 over QString", withTag(QStringLiteral("A"), 25)},
        {"-1 over Double NaN", withTag(F64::quiet_NaN(), -1)},
        {"int max over invalid", withTag(QVariant(), std::numeric_limits<int>::max())},
    };
}

} // namespace VariantTest

#endif // VARIANTSAMPLES_H
