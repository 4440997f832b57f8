#include "CVariant.h"

#include "DefaultLocale.h"
#include "InThreads.h"
#include "MessageRecorder.h"
#include "VariantModel.h"
#include "VariantSamples.h"

#include <QBuffer>
#include <QDebug>
#include <QLocale>
#include <QMap>
#include <QMultiHash>
#include <QMultiMap>
#include <QTimeZone>
#include <QtTest>

#include <cmath>
#include <cstring>
#include <ctime>
#include <limits>
#include <random>
#include <type_traits>
#include <utility>

using namespace VariantTest;

Q_DECLARE_METATYPE(CVariant)

namespace {

static_assert(std::has_virtual_destructor_v<CVariant>);
static_assert(std::is_nothrow_default_constructible_v<CVariant>);
static_assert(std::is_copy_constructible_v<CVariant> && std::is_copy_assignable_v<CVariant>);
static_assert(std::is_nothrow_move_constructible_v<CVariant>);
static_assert(std::is_nothrow_move_assignable_v<CVariant>);
static_assert(std::is_nothrow_swappable_v<CVariant>);

//! What the assignment of a T to a variant gives.
template <class T>
using Assignment = decltype(std::declval<CVariant &>() = std::declval<const T &>());

//! Whether each T becomes a variant, and a variant becomes it, without a cast.
template <class... T>
constexpr bool kIsImplicit = (std::is_convertible_v<T, CVariant> && ...)
    && (std::is_convertible_v<const CVariant, T> && ...)
    && (std::is_same_v<Assignment<T>, CVariant &> && ...);
static_assert(kIsImplicit<signed char, unsigned char, short, unsigned short, int, unsigned int,
                          long long, unsigned long long, float, double, char, QChar, CString32,
                          CString64, CString128, QVariant>);
static_assert(std::is_convertible_v<NTypes::tsDateTime, CVariant>);
static_assert(std::is_convertible_v<NTypes::ETypes, CVariant>);
static_assert(std::is_convertible_v<const CVariant, QString>);

using I64 = std::numeric_limits<qint64>;
using U64 = std::numeric_limits<quint64>;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kTwo63 = 9223372036854775808.0;
constexpr double kTwo64 = 2 * kTwo63;

//! Returns the entry of a MessageRecorder for a warning about \a code.
QString warning(const char *start, int code)
{
    return QLatin1String("warning default: \"CVariant::") + QLatin1String(start)
        + QString::number(code) + QLatin1String(" is not supported in this method.\"");
}

constexpr char kFromStr[] = "fromStr : Data type ";
constexpr char kToBitArray[] = "toBitArray() : Data type ";
constexpr char kFromBitArray[] = "fromBitArray : Data type ";
constexpr char kAssign[] = "operator=() : userType() ";

//! Adds a row of a value and the text that is expected of it.
void addRow(const char *name, const CVariant &value, const QString &expected)
{
    QTest::addRow("%s", name) << value << expected;
}

void addRow(const char *name, const CVariant &value, const char *expected)
{
    addRow(name, value, QString::fromLatin1(expected));
}

//! Assigns \a value to a variant of another type.
template <class T>
CVariant assigned(const T &value)
{
    CVariant to = CString64(QStringLiteral("before"));
    CVariant &result = to = value;
    return &result == &to ? to : CVariant();
}

template <class T>
void addStorage(const char *name, const T &value, const QString &expected)
{
    addRow(name, CVariant(value), expected);
    QTest::addRow("= %s", name) << assigned(value) << expected;
}

template <class T>
void addStorage(const char *name, const T &value, const char *expected)
{
    addStorage(name, value, QString::fromLatin1(expected));
}

template <std::size_t N>
void addBytes(const char *name, const Chars<N> &chars, const char *described)
{
    addStorage(name, chars.array,
               QLatin1String(described) + hex(QByteArray(chars.array, static_cast<int>(N))));
}

template <std::size_t N>
void addUnits(const char *name, const Units<N> &units, const char *described)
{
    QString expected = QLatin1String(described);
    for (const unsigned short unit : units.array)
        expected += QString::asprintf("%02x%02x", unit & 0xFFU, unsigned(unit >> 8));
    addStorage(name, units.array, expected);
}

/*!
    Adds a row a value of the type From, with the numbers that plain arithmetic gives: the low bits
    of an integer, one rounding to a floating type. Qt converts an unsigned char to neither an
    unsigned short nor a float.
*/
template <class From>
void addNumbers(const char *type, std::initializer_list<From> numbers)
{
    for (const From from : numbers) {
        const QStringList expected = numberLines([from](auto to) {
            using To = decltype(to);
            if constexpr (std::is_same_v<
                              From,
                              uchar> && (std::is_same_v<To, ushort> || std::is_same_v<To, float>))
                return Result<To>{0, false};
            else if constexpr (std::is_floating_point_v<From>)
                return Result<To>{VariantModel::cut<To>(static_cast<double>(from)), true};
            else if constexpr (std::is_floating_point_v<To>)
                return Result<To>{static_cast<To>(from), true};
            else
                return Result<To>{static_cast<To>(static_cast<quint64>(static_cast<Int128>(from))),
                                  true};
        });
        QTest::addRow("%s %s", type, qPrintable(numberText(from))) << CVariant(from) << expected;
    }
}

//! Adds the edges of the integer type From.
template <class From>
void addIntegers(const char *type)
{
    using Limits = std::numeric_limits<From>;
    constexpr From kTop = Limits::max() / 2 + 1;
    addNumbers<From>(
        type, {0, 1, 5, 44, 127, kTop, kTop - 1, kTop + 1, Limits::max(), Limits::max() - 1});
    if constexpr (std::is_signed_v<From>)
        addNumbers<From>(type, {Limits::min(), Limits::min() + 1, -1, -2, -127});
}

//! Returns ok and the ten numbers of \a value in the order of the codes; "-" for ok false.
QString numbersOf(const CVariant &value)
{
    QStringList to;
    const auto add = [&](auto(CVariant::*convert)(bool *) const) {
        bool ok = false;
        const auto number = (value.*convert)(&ok);
        if constexpr (std::is_floating_point_v<std::decay_t<decltype(number)>>)
            to += ok ? QString::number(static_cast<double>(number), 'g', 17) : QStringLiteral("-");
        else
            to += ok ? QString::number(number) : QStringLiteral("-");
    };
    add(&CVariant::toU8);
    add(&CVariant::toI8);
    add(&CVariant::toU16);
    add(&CVariant::toI16);
    add(&CVariant::toU32);
    add(&CVariant::toI32);
    add(&CVariant::toF32);
    add(&CVariant::toU64);
    add(&CVariant::toI64);
    add(&CVariant::toF64);
    return to.join(QLatin1Char(' '));
}

//! Compares strings that differ in one unit, behind a terminator, or that have none.
template <class String, int N>
void checkOrder(QStringList *wrong)
{
    const auto check = [wrong](const CVariant &left, const CVariant &right) {
        const QString leftText = left.toString128().str();
        const QString rightText = right.toString128().str();
        QString expected;
        for (const bool result :
             {leftText == rightText, leftText != rightText, leftText<rightText, leftText> rightText,
              leftText <= rightText, leftText >= rightText})
            expected += QLatin1Char(result ? '1' : '0');
        if (compared(left, right) != expected)
            *wrong += leftText + QLatin1Char('|') + rightText;
    };
    const QString full(N, QChar(0x0180)); // no terminator, both bytes count
    for (int i = 0; i < N; ++i) {
        for (const int unit : {0, 0x0101, 0x017F, 0x0181, 0x0280, 0x8001, 0xFFFF}) {
            QString other = full;
            other[i] = QChar(unit);
            check(String(full), String(other));
            check(String(other), String(full));
            check(String(full.left(i)), String(other));
            // The second difference does not count.
            if (i + 1 < N) {
                QString second = full;
                second[i + 1] = QChar(unit ^ 0xFF);
                check(String(other), String(second));
                check(String(second), String(other));
            }
        }
        // Equal but for what is behind the terminator at i.
        if (i + 1 < N) {
            auto tail = units<N>(full.left(i), 7);
            check(String(tail.array), String(full.left(i)));
            tail.array[i + 1] = 0xFFFF;
            check(String(tail.array), String(full.left(i)));
            check(String(full.left(i)), String(tail.array));
        }
    }
    check(String(full), String(full));
}

QByteArray bytesOf(const CVariant &value, int version, bool isLittleEndian = false)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(version);
    out.setByteOrder(isLittleEndian ? QDataStream::LittleEndian : QDataStream::BigEndian);
    out << value;
    return out.status() == QDataStream::Ok ? bytes : QByteArray("write failed");
}

//! What a stream gives: the content, the tag, the stream's status and the messages.
struct Read
{
    QVariant content;
    int tag = 7;
    int status = 0;
    bool isAtEnd = false;
    QStringList messages;
};

//! Returns all of \a read as text. Content shows as its stream: Qt compares only some contents.
QString describe(const Read &read)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << read.content;
    return QStringLiteral("%1 tag %2 status %3 at end %4 ")
               .arg(hex(bytes))
               .arg(read.tag)
               .arg(read.status)
               .arg(static_cast<int>(read.isAtEnd))
        + read.messages.join(QLatin1Char(' '));
}

template <class ReadFields>
Read readWith(const QByteArray &bytes, int version, bool isLittleEndian, QDataStream::Status before,
              ReadFields readFields)
{
    const MessageRecorder recorder;
    Read to;
    QDataStream in(bytes);
    in.setVersion(version);
    in.setByteOrder(isLittleEndian ? QDataStream::LittleEndian : QDataStream::BigEndian);
    in.setStatus(before);
    readFields(in, to);
    to.status = in.status();
    to.isAtEnd = in.atEnd();
    to.messages = recorder.messages();
    return to;
}

//! Reads \a bytes as a variant.
Read readVariant(const QByteArray &bytes, int version = QDataStream::Qt_5_15,
                 bool isLittleEndian = false, QDataStream::Status before = QDataStream::Ok)
{
    return readWith(bytes, version, isLittleEndian, before, [](QDataStream &in, Read &to) {
        CVariant value = 7.0;
        in >> value;
        to.content = value;
        to.tag = value.type();
    });
}

//! Reads \a bytes with Qt alone.
Read readByQt(const QByteArray &bytes, int version = QDataStream::Qt_5_15,
              bool isLittleEndian = false, QDataStream::Status before = QDataStream::Ok)
{
    return readWith(bytes, version, isLittleEndian, before, [](QDataStream &in, Read &to) {
        to.content = 7.0;
        in >> to.content >> to.tag;
    });
}

struct Golden
{
    const char *name;
    CVariant value;
    QByteArray bytes; // big-endian, in Qt 5.0 and later
};

QByteArray repeated(int count, const char *hexDigits)
{
    return QByteArray::fromHex(hexDigits).repeated(count);
}

//! Returns a value of each type with its stream: type id, null flag, content, tag.
QVector<Golden> goldens()
{
    const auto raw = [](const char *hexDigits) { return QByteArray::fromHex(hexDigits); };
    const QByteArray string32 = raw("00000400 00 0000000a 43537472696e67333200");
    const QByteArray string64 = raw("00000400 00 0000000a 43537472696e67363400");
    const QByteArray string128 = raw("00000400 00 0000000b 43537472696e6731323800");
    const QByteArray record8 = raw("00000400 00 00000013 4e54797065733a3a74734461746554696d6500");
    return {
        {"UNKNOWN", CVariant(), raw("00000000 01 00000000")},
        {"U8 255", uchar(255), raw("00000025 00 ff 00000001")},
        {"I8 -2", qint8(-2), raw("00000028 00 fe 00000002")},
        {"U16 1234", ushort(0x1234), raw("00000024 00 1234 00000003")},
        {"I16 -2", short(-2), raw("00000021 00 fffe 00000004")},
        {"U32 12345678", 0x12345678U, raw("00000003 00 12345678 00000005")},
        {"I32 -2", -2, raw("00000002 00 fffffffe 00000006")},
        {"F32 1.5: 8 bytes", 1.5F, raw("00000026 00 3ff8000000000000 00000007")},
        {"U64", 0x123456789ABCDEFULL, raw("00000005 00 0123456789abcdef 00000008")},
        {"I64 -2", -2LL, raw("00000004 00 fffffffffffffffe 00000009")},
        {"F64 1.5", 1.5, raw("00000006 00 3ff8000000000000 0000000a")},
        {"F80", NTypes::TYPE_F80, raw("00000000 01 0000000b")},
        {"STRING32 with a tail", units<32>(QStringLiteral("A\u20AC"), 7).array,
         string32 + raw("0041 20ac") + repeated(29, "0000") + raw("0007 0000000c")},
        {"CHARSTR64", chars<64>(QByteArray("A\0B", 3)).array,
         raw("0000000c 00 00000040 410042") + repeated(61, "00") + raw("0000000d")},
        {"STRING128 no zero unit", CString128(QString(128, QChar(0x8001))),
         string128 + repeated(128, "8001") + raw("0000000e")},
        {"CHARSTR256", chars<256>(QByteArray(256, '\xFE')).array,
         raw("0000000c 00 00000100") + repeated(256, "fe") + raw("0000000f")},
        {"DATETIME", record(5, 3, 2014, 10, 20, 30, 99),
         record8 + raw("631e140a050307de 00000010")},
        {"DATETIME year -2", record(-1, 0, -2, 0, 0, 0, 0),
         record8 + raw("00000000ff00fffe 00000010")},
        {"STRING64", CString64(QStringLiteral("A")),
         string64 + raw("0041") + repeated(63, "0000") + raw("00000011")},
        {"CHARSTR128", chars<128>("A").array,
         raw("0000000c 00 00000080 41") + repeated(127, "00") + raw("00000012")},
        {"UTF16CHAR 20AC", QChar(0x20AC), raw("00000007 00 20ac 00000013")},
        {"CHAR A", 'A', raw("0000000c 00 00000001 41 00000014")},
        {"U8 default: an Int", NTypes::TYPE_U8, raw("00000002 00 00000000 00000001")},
        {"UTF16CHAR default: no content", NTypes::TYPE_UTF16CHAR, raw("00000000 01 00000013")},
        {"CHARSTR64 not padded", CVariant::fromStr(QStringLiteral("AB"), NTypes::TYPE_CHARSTR64),
         raw("0000000c 00 00000002 4142 0000000d")},
        {"CHARSTR64 null bytes", CVariant::fromStr(QString(), NTypes::TYPE_CHARSTR64),
         raw("0000000c 00 ffffffff 0000000d")},
        {"U16 over Double 1.5", withTag(1.5, 3), raw("00000006 00 3ff8000000000000 00000003")},
        {"I32 over null Int 5", withTag(nullFive(), 6), raw("00000002 01 00000005 00000006")},
    };
}

} // namespace

class tst_CVariant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nullValue();
    void storage_data();
    void storage();
    void arraysAreCopied();
    void implicitUses();
    void copyMoveSwap();
    void debugText();

    void operations_data();
    void operations();
    void numbers_data();
    void numbers();
    void numbersByHand_data();
    void numbersByHand();
    void charBuffers_data();
    void charBuffers();
    void utf16Chars_data();
    void utf16Chars();
    void fixedStrings_data();
    void fixedStrings();
    void fixedStringTails();

    void texts_data();
    void texts();
    void floatingTexts();
    void localeTexts_data();
    void localeTexts();
    void fromText_data();
    void fromText();
    void fromTextUnsupported_data();
    void fromTextUnsupported();
    void fromTextTakesNullCharacter();
    void hexTexts_data();
    void hexTexts();
    void toBits_data();
    void toBits();
    void fromBits_data();
    void fromBits();

    void comparisons_data();
    void comparisons();
    void comparisonsByHand_data();
    void comparisonsByHand();
    void fixedStringOrder();
    void defaults_data();
    void defaults();
    void fromQVariant_data();
    void fromQVariant();
    void fromEveryQtType();

    void streamBytes_data();
    void streamBytes();
    void streamKeepsTags_data();
    void streamKeepsTags();
    void streamTruncated_data();
    void streamTruncated();
    void streamContainers_data();
    void streamContainers();
    void streamUnknownUserType();
    void streamWithoutDevice();
    void streamInTransaction();
    void streamHostile_data();
    void streamHostile();
    void streamNesting();
    void streamJunk();

    void otherTimeZone();
    void inThreads();
};

// A stream may name the types of the library before the program has met any of them.
void tst_CVariant::initTestCase()
{
    QByteArray bytes
        = QByteArray::fromHex("00000400 00 00000013 4e54797065733a3a74734461746554696d6500"
                              "631e140a050307de 00000010"
                              "00000400 00 0000000a 43537472696e67333200 0041")
        + QByteArray(62, '\0') + QByteArray::fromHex("0000000c");
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_5_15);
    CVariant dateTime;
    CVariant string;
    in >> dateTime >> string;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(dateTime.toStr(), QStringLiteral("2014-03-05T10:20:30"));
    QCOMPARE(string.toStr(), QStringLiteral("A"));
}

void tst_CVariant::nullValue()
{
    const MessageRecorder recorder;
    const CVariant value;
    QCOMPARE(describe(value), QStringLiteral("0 invalid"));
    QVERIFY(value.isNull());
    QVERIFY(!value.isValid());
    QCOMPARE(value.toStr(), QString());
    bool ok = true;
    QCOMPARE(value.toI32(&ok), 0);
    QVERIFY(!ok);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CVariant::storage_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<QString>("expected");
    addStorage<unsigned char>("U8 255", 255, "1 uchar 255");
    addStorage<signed char>("I8 -128", -128, "2 signed char -128");
    addStorage<unsigned short>("U16 65535", 65535, "3 ushort 65535");
    addStorage<short>("I16 -32768", -32768, "4 short -32768");
    addStorage<unsigned int>("U32 4294967295", 4294967295U, "5 uint 4294967295");
    addStorage<int>("I32 -2147483648", -2147483647 - 1, "6 int -2147483648");
    addStorage<float>("F32 -0", -0.0F, "7 float 00000080=0");
    addStorage<float>("F32 0.1", 0.1F, "7 float cdcccc3d=0.1");
    addStorage<float>("F32 NaN", std::numeric_limits<float>::quiet_NaN(), "7 float nan");
    addStorage<unsigned long long>("U64 2^64-1", U64::max(), "8 qulonglong 18446744073709551615");
    addStorage<long long>("I64 -2^63", I64::min(), "9 qlonglong -9223372036854775808");
    addStorage<double>("F64 0.1", 0.1, "10 double 9a9999999999b93f=0.1");
    addStorage<double>("F64 inf", kInfinity, "10 double 000000000000f07f=inf");
    addStorage("STRING32 empty", CString32(),
               QLatin1String("12 CString32 ") + QString(128, QLatin1Char('0')));
    addUnits("STRING32 units with a tail", units<32>(QStringLiteral("AB"), 0x1234),
             "12 CString32 ");
    addUnits("STRING64 units, none zero", units<64>(QString(64, QChar(0x20AC))), "17 CString64 ");
    addUnits("STRING128 units with a tail", units<128>(QString(), 0xFFFF), "14 CString128 ");
    const auto with32 = units<32>(QStringLiteral("abc"), 9);
    const auto with64 = units<64>(QStringLiteral("abc"), 9);
    const auto with128 = units<128>(QStringLiteral("abc"), 9);
    addStorage("STRING32 with a tail", CString32(with32.array),
               QLatin1String("12 CString32 ") + hex(CString32(with32.array).byteArray()));
    addStorage("STRING64 with a tail", CString64(with64.array),
               QLatin1String("17 CString64 ") + hex(CString64(with64.array).byteArray()));
    addStorage("STRING128 with a tail", CString128(with128.array),
               QLatin1String("14 CString128 ") + hex(CString128(with128.array).byteArray()));
    addBytes("CHARSTR64 bytes behind a NUL", chars<64>(QByteArray("A\0xyz", 5)), "13 QByteArray ");
    addBytes("CHARSTR64 no NUL", countingChars<64>(), "13 QByteArray ");
    addBytes("CHARSTR128 a NUL within", countingChars<128>(), "18 QByteArray ");
    addBytes("CHARSTR256 a NUL within", countingChars<256>(), "15 QByteArray ");
    addStorage("DATETIME", record(5, 3, 2014, 10, 20, 30, 99),
               "16 NTypes::tsDateTime 631e140a0503de07");
    addStorage("DATETIME negative fields", record(-1, -128, -2, 127, -3, -4, -5),
               "16 NTypes::tsDateTime fbfcfd7fff80feff");
    addStorage("UTF16CHAR FFFF", QChar(0xFFFF), "19 QChar ffff");
    addStorage("UTF16CHAR 0, null to Qt", QChar(0), "19 QChar 0 null");
    addStorage<char>("CHAR -1", '\xFF', "20 QByteArray ff");
    addStorage<char>("CHAR NUL", '\0', "20 QByteArray 00");
}

void tst_CVariant::storage()
{
    QFETCH(const CVariant, value);
    QFETCH(const QString, expected);
    QCOMPARE(describe(value), expected);
    QCOMPARE(value.isNull(), expected.endsWith(QLatin1String("null")));
    QVERIFY(value.isValid());
}

void tst_CVariant::arraysAreCopied()
{
    auto chars64 = chars<64>("A");
    auto units64 = units<64>(QStringLiteral("A"));
    const CVariant bytes = chars64.array;
    const CVariant string = units64.array;
    CVariant assignedBytes;
    assignedBytes = chars64.array;
    chars64.array[0] = 'B';
    units64.array[0] = u'B';
    QCOMPARE(bytes.toStr(), QStringLiteral("A"));
    QCOMPARE(assignedBytes.toStr(), QStringLiteral("A"));
    QCOMPARE(string.toStr(), QStringLiteral("A"));
}

void tst_CVariant::implicitUses()
{
    CVariant v(5);
    const int i = v;
    const QString s = v;
    const QVariant q = v;
    QCOMPARE(i, 5);
    QCOMPARE(s, QStringLiteral("5"));
    QCOMPARE(describe(q), QStringLiteral("int 5"));
    QVERIFY(v == CVariant(5));
    v = 3.0;
    QCOMPARE(describe(v), QStringLiteral("10 double 0000000000000840=3"));
    v = 'c';
    QCOMPARE(v.type(), NTypes::TYPE_CHAR);
    v = QVariant(QStringLiteral("text"));
    QCOMPARE(v.type(), NTypes::TYPE_STRING32);
    const auto take = [](const CVariant &value) { return value.type(); };
    QCOMPARE(take(5U), NTypes::TYPE_U32);
    QCOMPARE(take(5.0F), NTypes::TYPE_F32);
    QCOMPARE(take(QChar(u'x')), NTypes::TYPE_UTF16CHAR);
    QCOMPARE(take(NTypes::tsDateTime()), NTypes::TYPE_DATETIME);
    QCOMPARE(take(NTypes::TYPE_U16), NTypes::TYPE_U16);
}

void tst_CVariant::copyMoveSwap()
{
    for (const Sample &sample : values()) {
        const QString before = describe(sample.value);
        const CVariant copy(sample.value);
        CVariant copied = 1;
        copied = copy;
        QCOMPARE(describe(copy), before);
        QCOMPARE(describe(copied), before);
        const CVariant &self = copied;
        copied = self;
        QCOMPARE(describe(copied), before);

        CVariant moved(std::move(copied));
        QCOMPARE(describe(moved), before);
        QCOMPARE(describe(copied), QStringLiteral("0 invalid"));
        copied = 7;
        QCOMPARE(describe(copied), QStringLiteral("6 int 7"));
        copied = std::move(moved);
        QCOMPARE(describe(copied), before);
        moved = copied;
        QCOMPARE(describe(moved), before);

        CVariant other = 'c';
        swap(copied, other);
        QCOMPARE(describe(other), before);
        QCOMPARE(describe(copied), QStringLiteral("20 QByteArray 63"));
        other.swap(copied);
        QCOMPARE(describe(copied), before);
        QCOMPARE(describe(sample.value), before);
    }
    // A changed copy leaves the original alone.
    const CVariant original = chars<64>("A").array;
    CVariant changed = original;
    changed.fromStr(QStringLiteral("B"));
    QCOMPARE(original.toStr(), QStringLiteral("A"));
    QCOMPARE(changed.toStr(), QStringLiteral("B"));
}

void tst_CVariant::debugText()
{
    QString text;
    QDebug(&text) << CVariant(static_cast<unsigned char>(5)) << 1;
    QCOMPARE(text, QStringLiteral("CVariant(U8 \"5\") 1 "));
}

void tst_CVariant::operations_data()
{
    QTest::addColumn<CVariant>("value");
    for (const Sample &sample : values())
        QTest::addRow("%s", sample.name) << sample.value;
    for (const Content &content : contents()) {
        for (const int code : tags())
            QTest::addRow("tag %d over %s", code, content.name) << withTag(content.content, code);
    }
}

// The convertibility matrix, all conversions and all texts, of every tag over every content.
void tst_CVariant::operations()
{
    QFETCH(const CVariant, value);
    const QString before = describe(value);
    QCOMPARE(resultsOf(value), resultsOf(modelOf(value)));
    QCOMPARE(describe(value), before);
}

void tst_CVariant::numbers_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<QStringList>("expected");
    addIntegers<unsigned char>("U8");
    addIntegers<signed char>("I8");
    addIntegers<unsigned short>("U16");
    addIntegers<short>("I16");
    addIntegers<unsigned int>("U32");
    addIntegers<int>("I32");
    addIntegers<unsigned long long>("U64");
    addIntegers<long long>("I64");
    // Rounded to double first, these two would become the wrong float.
    addNumbers<unsigned long long>("U64 rounded once", {0x8000008000000001ULL});
    addNumbers<long long>("I64 rounded once", {0x4000004000000001LL, -0x4000004000000001LL});
    std::initializer_list<double> doubles = {0.0,
                                             -0.0,
                                             -1.0,
                                             0.1,
                                             2.9,
                                             -2.9,
                                             0.999999999999,
                                             -0.5,
                                             255.9,
                                             300.7,
                                             2147483648.0,
                                             -2147483649.0,
                                             5e9,
                                             -5e9,
                                             1e19,
                                             -1e19,
                                             kTwo63,
                                             -kTwo63,
                                             std::nextafter(kTwo63, 0.0),
                                             kTwo64,
                                             -kTwo64,
                                             std::nextafter(kTwo64, 0.0),
                                             1e300,
                                             -1e300,
                                             std::numeric_limits<double>::max(),
                                             std::numeric_limits<double>::min(),
                                             std::numeric_limits<double>::denorm_min(),
                                             kInfinity,
                                             -kInfinity,
                                             kNaN};
    addNumbers<double>("F64", doubles);
    for (const double number : doubles) {
        if (!(std::abs(number) <= std::numeric_limits<double>::max() && std::abs(number) > 1e299))
            addNumbers<float>("F32", {static_cast<float>(number)});
    }
    addNumbers<float>("F32", {std::numeric_limits<float>::max(), -3e9F});
}

void tst_CVariant::numbers()
{
    QFETCH(const CVariant, value);
    QFETCH(const QStringList, expected);
    QCOMPARE(numberLines(value), expected);
}

void tst_CVariant::numbersByHand_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<QString>("expected"); // U8 I8 U16 I16 U32 I32 F32 U64 I64 F64
    constexpr char kNone[] = "- - - - - - - - - -";
    constexpr char kZeros[] = "0 0 0 0 0 0 0 0 0 0";
    const auto uchar255 = static_cast<unsigned char>(255);
    addRow("U8 255: no U16, no F32", uchar255, "255 -1 - 255 255 255 - 255 255 255");
    addRow("U8 default", NTypes::TYPE_U8, kZeros);
    addRow("I8 -1", static_cast<signed char>(-1),
           "255 -1 65535 -1 4294967295 -1 -1 18446744073709551615 -1 -1");
    addRow("U16 65535", static_cast<unsigned short>(65535),
           "255 -1 65535 -1 65535 65535 65535 65535 65535 65535");
    addRow("I16 -32768", static_cast<short>(-32768),
           "0 0 32768 -32768 4294934528 -32768 -32768 18446744073709518848 -32768 -32768");
    addRow("U32 300", 300U, "44 44 300 300 300 300 300 300 300 300");
    addRow("I32 -1", -1, "255 -1 65535 -1 4294967295 -1 -1 18446744073709551615 -1 -1");
    addRow(
        "I32 min", std::numeric_limits<int>::min(),
        "0 0 0 0 2147483648 -2147483648 -2147483648 18446744071562067968 -2147483648 -2147483648");
    addRow("U64 max", U64::max(),
           "255 -1 65535 -1 4294967295 -1 1.8446744073709552e+19 18446744073709551615 -1 "
           "1.8446744073709552e+19");
    addRow("I64 min", I64::min(),
           "0 0 0 0 0 0 -9.2233720368547758e+18 9223372036854775808 -9223372036854775808 "
           "-9.2233720368547758e+18");
    addRow("U64 2^63+2^39+1: F32 rounded once", 0x8000008000000001ULL,
           "1 1 1 1 1 1 9.2233731363664036e+18 9223372586610589697 -9223371487098961919 "
           "9.2233725866105897e+18");
    addRow("I64 2^62+2^38+1: F32 rounded once", 0x4000004000000001LL,
           "1 1 1 1 1 1 4.6116865681832018e+18 4611686293305294849 4611686293305294849 "
           "4.6116862933052948e+18");
    addRow("F32 3e9", 3e9F,
           "0 0 24064 24064 3000000000 -1294967296 3000000000 3000000000 3000000000 3000000000");
    addRow("F64 2.9", 2.9, "2 2 2 2 2 2 2.9000000953674316 2 2 2.8999999999999999");
    addRow("F64 -2.9", -2.9,
           "254 -2 65534 -2 4294967294 -2 -2.9000000953674316 18446744073709551614 -2 "
           "-2.8999999999999999");
    addRow("F64 5e9", 5e9,
           "0 0 61952 -3584 705032704 705032704 5000000000 5000000000 5000000000 5000000000");
    addRow("F64 1e19", 1e19,
           "0 0 0 0 2313682944 -1981284352 9.9999999805064479e+18 10000000000000000000 "
           "-8446744073709551616 1e+19");
    addRow("F64 2^63", kTwo63,
           "0 0 0 0 0 0 9.2233720368547758e+18 9223372036854775808 -9223372036854775808 "
           "9.2233720368547758e+18");
    addRow("F64 2^64", kTwo64,
           "0 0 0 0 0 0 1.8446744073709552e+19 9223372036854775808 -9223372036854775808 "
           "1.8446744073709552e+19");
    addRow("F64 1e300", 1e300,
           "0 0 0 0 0 0 inf 9223372036854775808 -9223372036854775808 1.0000000000000001e+300");
    addRow("F64 -inf", -kInfinity,
           "0 0 0 0 0 0 -inf 9223372036854775808 -9223372036854775808 -inf");
    addRow("F64 NaN", kNaN, "0 0 0 0 0 0 nan 9223372036854775808 -9223372036854775808 nan");
    addRow("UNKNOWN", CVariant(), kNone);
    addRow("UNKNOWN over Int 5", withTag(5, 0), kNone);
    addRow("F80 over Int 5", withTag(5, 11), kNone);
    addRow("25 over Int 5", withTag(5, 25), kNone);
    addRow("-1 over Int 5", withTag(5, -1), kNone);
    addRow("STRING32 7", CString32(QStringLiteral("7")), kNone);
    addRow("STRING32 over Int 7", withTag(7, 12), kNone);
    addRow("CHARSTR64 7", chars<64>("7").array, kNone);
    addRow("CHARSTR128 over Int 7", withTag(7, 18), kNone);
    addRow("UTF16CHAR 7", QChar(u'7'), kNone);
    addRow("CHAR 7", '7', kNone);
    addRow("DATETIME", record(5, 3, 2014, 10, 20, 30, 0), kNone);
    addRow("DATETIME over Int 5: the null record", withTag(5, 16), kZeros);
    addRow("DATETIME over Double 1e300", withTag(1e300, 16), kZeros);
    addRow("DATETIME over CString32", withTag(QVariant::fromValue(CString32()), 16), kNone);
    addRow("U8 over Int 300: narrowed last", withTag(300, 1),
           "44 44 300 300 300 300 300 300 300 300");
    addRow("U8 over Int -1", withTag(-1, 1),
           "255 -1 65535 -1 4294967295 -1 4294967296 4294967295 4294967295 4294967295");
    addRow("U16 over UChar 5: no U16", withTag(QVariant::fromValue(uchar(5)), 3),
           "5 5 - 5 5 5 - 5 5 5");
    addRow("I32 over Double 2.5: rounds", withTag(2.5, 6), "3 3 3 3 3 3 3 3 3 3");
    addRow("I32 over Double -2.9: rounds", withTag(-2.9, 6),
           "253 -3 65533 -3 4294967293 -3 -3 18446744073709551613 -3 -3");
    addRow("I32 over null Int", withTag(QVariant(QVariant::Int), 6), kZeros);
    addRow("I32 over null Int 5: toInt() reads it", withTag(nullFive(), 6), "5 5 5 5 5 5 5 5 5 5");
    addRow("I32 over QByteArray 12", withTag(QByteArray("12"), 6), "12 12 12 12 12 12 12 12 12 12");
    addRow("I32 over QByteArray abc", withTag(QByteArray("abc"), 6), kNone);
    addRow("I32 over CString32 7", withTag(QVariant::fromValue(CString32(QStringLiteral("7"))), 6),
           kNone);
    addRow("F32 over Double 0.1", withTag(0.1, 7),
           "0 0 0 0 0 0 0.10000000149011612 0 0 0.10000000000000001");
    addRow("F64 over Bool", withTag(true, 10), "1 1 1 1 1 1 1 1 1 1");
    addRow("I64 over Double 2.5: rounds", withTag(2.5, 9), "3 3 3 3 3 3 3 3 3 3");
}

void tst_CVariant::numbersByHand()
{
    QFETCH(const CVariant, value);
    QFETCH(const QString, expected);
    QCOMPARE(numbersOf(value), expected);
    if (expected == QLatin1String("- - - - - - - - - -")) {
        const QStringList lines = numberLines([](auto to) {
            return Result<decltype(to)>{0, false};
        });
        QCOMPARE(numberLines(value), lines); // 0, not something else
    }
}

void tst_CVariant::charBuffers_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<bool>("expected");
    QTest::addColumn<QByteArray>("text");
    const QByteArray none;
    QTest::newRow("CHARSTR64 no NUL")
        << CVariant(chars<64>(QByteArray(64, 'y')).array) << true << QByteArray(64, 'y');
    QTest::newRow("CHARSTR64 bytes behind a NUL")
        << CVariant(chars<64>(QByteArray("A\0x", 3)).array) << true << QByteArray("A\0x", 3);
    QTest::newRow("CHARSTR64 starts with a NUL")
        << CVariant(chars<64>(QByteArray("\0x", 2)).array) << true << QByteArray("\0x", 2);
    const auto counting = countingChars<256>();
    QTest::newRow("CHARSTR256 a NUL within")
        << CVariant(counting.array) << true << QByteArray(counting.array, 256);
    QTest::newRow("CHARSTR128 127 bytes")
        << CVariant(chars<128>(QByteArray(127, 'q')).array) << true << QByteArray(127, 'q');
    QTest::newRow("CHAR A") << CVariant('A') << true << QByteArray("A");
    QTest::newRow("CHAR -1") << CVariant('\xFF') << true << QByteArray("\xFF");
    QTest::newRow("CHAR null bytes")
        << CVariant::fromStr(QString(), NTypes::TYPE_CHAR) << true << none;
    QTest::newRow("CHARSTR64 no bytes") << withTag(QByteArray(""), 13) << true << none;
    QTest::newRow("CHARSTR64 over invalid") << withTag(QVariant(), 13) << true << none;
    QTest::newRow("CHAR over Int 97") << withTag(97, 20) << true << QByteArray("97");
    QTest::newRow("U8 5") << CVariant(uchar(5)) << false << none;
    QTest::newRow("U8 over QByteArray") << withTag(QByteArray("A"), 1) << false << none;
    QTest::newRow("I64 5") << CVariant(5LL) << false << none;
    QTest::newRow("F64 5") << CVariant(5.0) << false << none;
    QTest::newRow("DATETIME") << CVariant(record(5, 3, 2014, 0, 0, 0, 0)) << false << none;
    QTest::newRow("STRING32 A") << CVariant(CString32(QStringLiteral("A"))) << false << none;
    QTest::newRow("UTF16CHAR A") << CVariant(QChar(u'A')) << false << none;
    QTest::newRow("UNKNOWN") << CVariant() << false << none;
    QTest::newRow("25 over QByteArray") << withTag(QByteArray("A"), 25) << false << none;
}

void tst_CVariant::charBuffers()
{
    QFETCH(const CVariant, value);
    QFETCH(const bool, expected);
    QFETCH(const QByteArray, text);
    const auto check = [&](auto &buffer, auto convert) {
        constexpr int kSize = sizeof(buffer);
        std::memset(buffer, 'Z', kSize);
        QCOMPARE((value.*convert)(buffer), expected);
        QCOMPARE(QByteArray(buffer, kSize),
                 expected ? text.left(kSize - 1).leftJustified(kSize, '\0')
                          : QByteArray(kSize, 'Z'));
    };
    char buffer64[64];
    char buffer128[128];
    char buffer256[256];
    check(buffer64, &CVariant::toCharStr64);
    check(buffer128, &CVariant::toCharStr128);
    check(buffer256, &CVariant::toCharStr256);
    char character = 'Z';
    const char first = text.isEmpty() ? '\0' : text.at(0);
    QCOMPARE(value.toChar(character), expected);
    QCOMPARE(character, expected ? first : 'Z');
    const char implicit = value;
    QCOMPARE(implicit, first);
}

void tst_CVariant::utf16Chars_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<int>("target");
    QTest::addColumn<int>("expected"); // -1 if it does not convert
    const auto add = [](const char *name, const CVariant &value, int target, int expected) {
        QTest::addRow("%s to %d", name, target) << value << target << expected;
    };
    const CVariant string32 = CString32(QStringLiteral("AB"));
    for (const int target : {12, 14, 17, 19})
        add("STRING32 AB", string32, target, 'A');
    for (const int target : {0, 1, 6, 10, 11, 13, 15, 16, 18, 20, 21, 25, -1})
        add("STRING32 AB", string32, target, -1);
    add("STRING32 empty", CString32(), 19, 0);
    add("STRING64 no zero unit", CString64(QString(64, QLatin1Char('y'))), 19, 'y');
    add("STRING64 empty", CString64(), 12, 0);
    add("STRING128 U+10000: the first half", CString128(QStringLiteral("\U00010000")), 19, 0xD800);
    add("STRING128 starts with U+FEFF", CString128(QStringLiteral("\uFEFFx")), 19, 0xFEFF);
    add("STRING128 starts with U+FFFE", CString128(QString(QChar(0xFFFE))), 19, 0xFFFE);
    const CVariant character = QChar(0x20AC);
    for (const int target : {6, 12, 19})
        add("UTF16CHAR 20AC", character, target, 0x20AC);
    for (const int target : {0, 10, 11, 13, 16, 20, 21})
        add("UTF16CHAR 20AC", character, target, -1);
    add("UTF16CHAR 0", QChar(0), 19, 0);
    add("UTF16CHAR default", NTypes::TYPE_UTF16CHAR, 19, 0);
    add("UTF16CHAR over Int 65", withTag(65, 19), 19, 'A');
    const CVariant number = -5;
    for (const int target : {6, 10, 13, 15, 18, 20})
        add("I32 -5", number, target, '-');
    for (const int target : {12, 16, 19, 25})
        add("I32 -5", number, target, -1);
    add("I64 -5", -5LL, 16, '-');
    add("U8 5", uchar(5), 3, -1);
    add("U8 5", uchar(5), 7, -1);
    add("U8 5", uchar(5), 10, '5');
    add("F64 NaN", kNaN, 20, 'n');
    add("DATETIME", record(5, 3, 2014, 0, 0, 0, 0), 13, '2');
    add("DATETIME of zeros: no text", NTypes::tsDateTime(), 13, 0);
    add("CHAR A", 'A', 19, 'A');
    add("CHAR NUL: no text", '\0', 19, 0);
    add("CHAR C3: no UTF-8", '\xC3', 19, 0xFFFD);
    add("CHARSTR64 euro sign in UTF-8", chars<64>("\xE2\x82\xAC").array, 19, 0x20AC);
    add("CHARSTR64 null bytes", CVariant::fromStr(QString(), NTypes::TYPE_CHARSTR64), 19, 0);
    add("UNKNOWN", CVariant(), 19, -1);
    add("25 over QString", withTag(QStringLiteral("A"), 25), 19, -1);
}

void tst_CVariant::utf16Chars()
{
    QFETCH(const CVariant, value);
    QFETCH(const int, target);
    QFETCH(const int, expected);
    const auto unit = static_cast<ushort>(qMax(expected, 0));
    bool ok = expected < 0;
    QCOMPARE(value.value<QChar>(tag(target), &ok).unicode(), unit);
    QCOMPARE(ok, expected >= 0);
    QCOMPARE(value.value<QChar>(tag(target)).unicode(), unit);
    if (target != 19)
        return;
    ushort to = 'Z';
    QCOMPARE(value.toUtf16Char(to), expected >= 0);
    QCOMPARE(to, unit);
    QChar character(u'Z');
    QCOMPARE(value.toUtf16Char(character), expected >= 0);
    QCOMPARE(character.unicode(), unit);
    const QChar implicit = value;
    QCOMPARE(implicit.unicode(), unit);
}

void tst_CVariant::fixedStrings_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<bool>("expected");
    QTest::addColumn<QString>("text");
    const auto add
        = [](const char *name, const CVariant &value, bool expected, const QString &text) {
              QTest::addRow("%s", name) << value << expected << text;
          };
    add("STRING32 AB", CString32(QStringLiteral("AB")), true, QStringLiteral("AB"));
    add("STRING32 no zero unit", CString32(QString(32, QLatin1Char('x'))), true,
        QString(32, QLatin1Char('x')));
    add("STRING64 no zero unit", CString64(QString(64, QLatin1Char('y'))), true,
        QString(64, QLatin1Char('y')));
    add("STRING128 no zero unit", CString128(QString(128, QLatin1Char('z'))), true,
        QString(128, QLatin1Char('z')));
    add("STRING128 31 units", CString128(QString(31, QLatin1Char('z'))), true,
        QString(31, QLatin1Char('z')));
    add("CHARSTR64 no NUL", chars<64>(QByteArray(64, 'c')).array, true,
        QString(64, QLatin1Char('c')));
    add("CHARSTR128 bytes behind a NUL", chars<128>(QByteArray("A\0x", 3)).array, true,
        QStringLiteral("A"));
    add("CHARSTR256 UTF-8", chars<256>("\xC3\xA4").array, true, QStringLiteral("\u00E4"));
    add("CHAR A", 'A', true, QStringLiteral("A"));
    add("CHAR NUL", '\0', true, QString());
    add("UTF16CHAR 20AC", QChar(0x20AC), true, QStringLiteral("\u20AC"));
    add("UTF16CHAR default", NTypes::TYPE_UTF16CHAR, true, QString());
    add("UTF16CHAR over Int 65: QVariant::toString()", withTag(65, 19), true, QStringLiteral("65"));
    add("CHARSTR64 over Int 65", withTag(65, 13), true, QStringLiteral("65"));
    add("U16 7", ushort(7), false, QString());
    add("I64 7", 7LL, false, QString());
    add("F32 7", 7.0F, false, QString());
    add("DATETIME", record(5, 3, 2014, 0, 0, 0, 0), false, QString());
    add("UNKNOWN", CVariant(), false, QString());
    add("UNKNOWN over QString", withTag(QStringLiteral("A"), 0), false, QString());
    add("25 over CString32", withTag(QVariant::fromValue(CString32(QStringLiteral("A"))), 25),
        false, QString());
}

// All forms of one capacity give the fixed string that the text makes.
void tst_CVariant::fixedStrings()
{
    QFETCH(const CVariant, value);
    QFETCH(const bool, expected);
    QFETCH(const QString, text);
    const auto check = [&](const auto &string, auto convert, auto copy, auto &units) {
        using String = std::decay_t<decltype(string)>;
        bool ok = !expected;
        QCOMPARE((value.*convert)(&ok).byteArray(), string.byteArray());
        QCOMPARE(ok, expected);
        QCOMPARE((value.*convert)(nullptr).byteArray(), string.byteArray());
        std::memset(units, 0x5A, sizeof(units));
        QVERIFY((value.*copy)(units)); // also if the value does not convert
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(units), sizeof(units)),
                 string.byteArray());
        for (const int target : tags()) { // which does not matter
            ok = !expected;
            QCOMPARE(value.value<String>(tag(target), &ok).byteArray(), string.byteArray());
            QCOMPARE(ok, expected);
        }
        const String implicit = value;
        QCOMPARE(implicit.byteArray(), string.byteArray());
    };
    unsigned short units32[32];
    unsigned short units64[64];
    unsigned short units128[128];
    using Copy32 = bool (CVariant::*)(unsigned short(&)[32]) const;
    using Copy64 = bool (CVariant::*)(unsigned short(&)[64]) const;
    using Copy128 = bool (CVariant::*)(unsigned short(&)[128]) const;
    check(CString32(text),
          static_cast<CString32 (CVariant::*)(bool *) const>(&CVariant::toString32),
          static_cast<Copy32>(&CVariant::toString32), units32);
    check(CString64(text),
          static_cast<CString64 (CVariant::*)(bool *) const>(&CVariant::toString64),
          static_cast<Copy64>(&CVariant::toString64), units64);
    check(CString128(text),
          static_cast<CString128 (CVariant::*)(bool *) const>(&CVariant::toString128),
          static_cast<Copy128>(&CVariant::toString128), units128);
}

// A tail goes along within one capacity, and is lost to another one.
void tst_CVariant::fixedStringTails()
{
    const CString32 tail32(units<32>(QStringLiteral("AB"), 7).array);
    const CString64 tail64(units<64>(QStringLiteral("AB"), 7).array);
    const CString128 tail128(units<128>(QStringLiteral("AB"), 7).array);
    const CString32 plain32(QStringLiteral("AB"));
    const CString64 plain64(QStringLiteral("AB"));
    const CString128 plain128(QStringLiteral("AB"));
    QVERIFY(CVariant(tail32).toString32() == tail32);
    QVERIFY(CVariant(tail32).toString64() == plain64);
    QVERIFY(CVariant(tail32).toString128() == plain128);
    QVERIFY(CVariant(tail64).toString32() == plain32);
    QVERIFY(CVariant(tail64).toString64() == tail64);
    QVERIFY(CVariant(tail64).toString128() == plain128);
    QVERIFY(CVariant(tail128).toString32() == plain32);
    QVERIFY(CVariant(tail128).toString64() == plain64);
    QVERIFY(CVariant(tail128).toString128() == tail128);
}

void tst_CVariant::texts_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<QString>("expected");
    addRow("U8 0", uchar(0), "0");
    addRow("U8 65: no character", uchar(65), "65");
    addRow("U8 255", uchar(255), "255");
    addRow("U8 default", NTypes::TYPE_U8, "0");
    addRow("I8 -128", qint8(-128), "-128");
    addRow("I8 65: no character", qint8(65), "65");
    addRow("U16 65535", ushort(65535), "65535");
    addRow("I16 -32768", short(-32768), "-32768");
    addRow("U32 4294967295", 4294967295U, "4294967295");
    addRow("I32 min", -2147483647 - 1, "-2147483648");
    addRow("U64 max", U64::max(), "18446744073709551615");
    addRow("I64 min", I64::min(), "-9223372036854775808");
    addRow("F32 0.1", 0.1F, "0.1");
    addRow("F32 1234567", 1234567.0F, "1.23457e+06");
    addRow("F32 100000.5: a tie, up", 100000.5F, "100001");
    addRow("F32 0.0001", 0.0001F, "0.0001");
    addRow("F32 0.00001", 0.00001F, "1e-05");
    addRow("F32 -0: no sign, as Qt", -0.0F, "0");
    addRow("F64 -0: no sign, as Qt", -0.0, "0");
    addRow("F32 NaN", std::numeric_limits<float>::quiet_NaN(), "nan");
    addRow("F64 1/3", 1.0 / 3, "0.333333333333333");
    addRow("F64 1e20", 1e20, "1e+20");
    addRow("F64 -2.5", -2.5, "-2.5");
    addRow("F64 123456789012345", 123456789012345.0, "123456789012345");
    addRow("F64 5e-324", std::numeric_limits<double>::denorm_min(), "4.94065645841247e-324");
    addRow("F64 inf", kInfinity, "inf");
    addRow("F64 -inf", -kInfinity, "-inf");
    addRow("STRING32 A with a tail", units<32>(QStringLiteral("A"), 7).array, "A");
    addRow("STRING64 no zero unit", CString64(QString(64, QLatin1Char('y'))),
           QString(64, QLatin1Char('y')));
    addRow("STRING128 empty", CString128(), "");
    addRow("CHARSTR64 UTF-8 up to NUL", chars<64>(QByteArray("\xC3\xA4\0x", 4)).array,
           QStringLiteral("\u00E4"));
    addRow("CHARSTR128 no NUL", chars<128>(QByteArray(128, 'q')).array,
           QString(128, QLatin1Char('q')));
    addRow("CHARSTR256 no UTF-8", chars<256>("\xFFz").array, QStringLiteral("\uFFFDz"));
    addRow("CHAR A", 'A', "A");
    addRow("CHAR NUL", '\0', "");
    addRow("UTF16CHAR 20AC", QChar(0x20AC), QStringLiteral("\u20AC"));
    addRow("UTF16CHAR 0: one character", QChar(0), QString(1, QChar(0)));
    addRow("UTF16CHAR default: no content", NTypes::TYPE_UTF16CHAR, "");
    addRow("DATETIME", record(5, 3, 2014, 10, 20, 30, 99), "2014-03-05T10:20:30");
    addRow("DATETIME year 1", record(1, 1, 1, 0, 0, 0, 0), "0001-01-01T00:00:00");
    addRow("DATETIME year 9999", record(31, 12, 9999, 23, 59, 59, 99), "9999-12-31T23:59:59");
    addRow("DATETIME year 10000", record(1, 1, 10000, 0, 0, 0, 0), "");
    addRow("DATETIME year 0", record(1, 1, 0, 0, 0, 0, 0), "");
    addRow("DATETIME year -1", record(1, 1, -1, 0, 0, 0, 0), "");
    addRow("DATETIME of zeros", NTypes::tsDateTime(), "");
    addRow("DATETIME February 30", record(30, 2, 2014, 1, 2, 3, 4), "");
    addRow("DATETIME hour 24: midnight", record(5, 3, 2014, 24, 0, 0, 0), "2014-03-05T00:00:00");
    addRow("DATETIME hundredths -1: midnight", record(5, 3, 2014, 10, 20, 30, -1),
           "2014-03-05T00:00:00");
    addRow("DATETIME hundredths 100: midnight", record(5, 3, 2014, 10, 20, 30, 100),
           "2014-03-05T00:00:00");
    addRow("DATETIME over Int 5", withTag(5, 16), "");
    addRow("UNKNOWN", CVariant(), "");
    addRow("UNKNOWN over QString", withTag(QStringLiteral("A"), 0), "A");
    addRow("F80 over Int 7", withTag(7, 11), "7");
    addRow("25 over Int 7", withTag(7, 25), "7");
    addRow("U8 over Int 300", withTag(300, 1), "44");
    addRow("U16 over Int -1", withTag(-1, 3), "65535");
    addRow("I32 over Double 2.5: rounds", withTag(2.5, 6), "3");
    addRow("I32 over QByteArray abc", withTag(QByteArray("abc"), 6), "0");
    addRow("F32 over Double 0.1", withTag(0.1, 7), "0.1");
    addRow("STRING32 over Int 7: empty", withTag(7, 12), "");
    addRow("CHARSTR64 over Int 7", withTag(7, 13), "7");
    addRow("UTF16CHAR over Int 65", withTag(65, 19), "A");
}

void tst_CVariant::texts()
{
    QFETCH(const CVariant, value);
    QFETCH(const QString, expected);
    const MessageRecorder recorder;
    QCOMPARE(value.toStr(), expected);
    const QString implicit = value;
    QCOMPARE(implicit, expected);
    QCOMPARE(recorder.messages(), QStringList());
}

// Texts of random and of awkward numbers are those that Qt makes.
void tst_CVariant::floatingTexts()
{
    const auto checkFloat = [](float number) {
        return CVariant(number).toStr() == QString::number(static_cast<double>(number), 'g', 6);
    };
    const auto checkDouble = [](double number) {
        return CVariant(number).toStr() == QString::number(number, 'g', 15);
    };
    std::mt19937_64 random(20140305);
    const auto fromBits = [](auto bits, auto number) {
        static_assert(sizeof(bits) == sizeof(number));
        std::memcpy(&number, &bits, sizeof(number));
        return number;
    };
    QVector<double> numbers = {0.0,      -0.0,    kNaN, kInfinity, -kInfinity, 100000.5,
                               999999.5, 1000005, 2.5,  0.00001,   0.0001};
    for (int i = 0; i < 200000; ++i) {
        const quint64 bits = random();
        const auto shortNumber = static_cast<double>(bits % 2000001) - 1000000;
        switch (i % 8) {
        case 0: // any
            numbers << fromBits(bits, 0.0);
            break;
        case 1:
            numbers << static_cast<double>(fromBits(static_cast<quint32>(bits), 0.0F));
            break;
        case 2: // short decimals
            numbers << shortNumber / std::pow(10.0, static_cast<double>(bits >> 60));
            break;
        case 3: // exactly half-way for 6 digits
            numbers << 100000.5 + static_cast<double>(bits % 900000);
            break;
        case 4: // exactly half-way for 15 digits: 16 digits, the last one a 5
            numbers << 1e15 + 5 + 10 * static_cast<double>(bits % 100000000000000);
            break;
        case 5: // integers
            numbers << static_cast<double>(static_cast<qint64>(bits >> (bits % 60)));
            break;
        case 6: // powers of ten, and their neighbours
            numbers << std::nextafter(std::pow(10.0, static_cast<double>(bits % 640) - 324),
                                      bits & 1024 ? kInfinity : 0.0);
            break;
        default: // denormals of both
            numbers << fromBits(bits & Q_UINT64_C(0x800FFFFFFFFFFFFF), 0.0)
                    << static_cast<double>(fromBits(static_cast<quint32>(bits & 0x807FFFFF), 0.0F));
        }
    }
    for (int power = -324; power <= 308; ++power)
        numbers << std::pow(10.0, power) << -std::pow(10.0, power);
    QStringList failed;
    for (const double number : qAsConst(numbers)) {
        const bool isFloat
            = !(std::abs(number) > static_cast<double>(std::numeric_limits<float>::max()))
            || std::isinf(number);
        if (!checkDouble(number))
            failed += numberText(number);
        if (isFloat && !checkFloat(static_cast<float>(number)))
            failed += numberText(static_cast<float>(number));
    }
    failed.removeDuplicates();
    QCOMPARE(failed, QStringList());
}

void tst_CVariant::localeTexts_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<QString>("expected");
    const auto add = [](const char *locale, const char *name, const CVariant &value,
                        const QString &expected) {
        QTest::addRow("%s %s", locale, name) << QString::fromLatin1(locale) << value << expected;
    };
    add("C", "F64 1234.5", 1234.5, QStringLiteral("1234.5"));
    add("C", "F64 1/3: 6 digits", 1.0 / 3, QStringLiteral("0.333333"));
    add("C", "F64 1e20", 1e20, QStringLiteral("1e+20"));
    add("en_US", "F64 1234.5", 1234.5, QStringLiteral("1,234.5"));
    add("en_US", "F64 123456.7: 6 digits", 123456.7, QStringLiteral("123,457"));
    add("de_DE", "F64 1234.5", 1234.5, QStringLiteral("1.234,5"));
    add("de_DE", "F32 1234.5", 1234.5F, QStringLiteral("1.234,5"));
    add("de_DE", "F32 -0.1", -0.1F, QStringLiteral("-0,1"));
    add("de_DE", "F32 over Double 0.5", withTag(0.5, 7), QStringLiteral("0,5"));
    add("de_DE", "F32 over QByteArray abc", withTag(QByteArray("abc"), 7), QStringLiteral("0"));
    add("de_DE", "I32 1234567: not localised", 1234567, QStringLiteral("1234567"));
    add("de_DE", "U64 max: not localised", U64::max(), QStringLiteral("18446744073709551615"));
    add("de_DE", "STRING32 1.5", CString32(QStringLiteral("1.5")), QStringLiteral("1.5"));
    add("de_DE", "DATETIME", record(5, 3, 2014, 10, 20, 30, 0),
        QStringLiteral("2014-03-05T10:20:30"));
    add("de_DE", "UNKNOWN over Double 1.5", withTag(1.5, 0), QStringLiteral("1.5"));
    add("fr_FR", "F64 1234.5", 1234.5, QStringLiteral("1\u202F234,5"));
    add("de_CH", "F64 1234.5", 1234.5, QStringLiteral("1\u2019234.5"));
    add("ar_EG", "F64 1234.5", 1234.5,
        QStringLiteral("\u0661\u066C\u0662\u0663\u0664\u066B\u0665"));
    add("ar_EG", "I32 12: not localised", 12, QStringLiteral("12"));
}

void tst_CVariant::localeTexts()
{
    QFETCH(const QString, locale);
    QFETCH(const CVariant, value);
    QFETCH(const QString, expected);
    const QString plain = value.toStr();
    const DefaultLocale asDefault(locale);
    QCOMPARE(value.toLocaleStr(), expected);
    QCOMPARE(CVariant(1234.5).toLocaleStr(), QStringLiteral("%L1").arg(1234.5, 0, 'g', -1));
    QCOMPARE(value.toStr(), plain); // the same in every locale
}

void tst_CVariant::fromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("replaced"); // in the member and the constructor
    const auto addNamed = [](const char *name, const QString &text, int code,
                             const QString &expected, const QString &replaced = QString()) {
        QTest::addRow("%d %s", code, name) << text << code << expected << replaced;
    };
    const auto add = [&](const char *text, int code, const QString &expected) {
        addNamed(text, QString::fromUtf8(text), code, expected);
    };
    const auto number
        = [](const char *type, auto value) { return QLatin1String(type) + numberText(value); };
    const auto addNumber = [&](const char *text, int code, const char *expected) {
        add(text, code, QString::fromLatin1(expected));
    };
    addNumber("0x1F", 1, "1 uchar 31");
    addNumber("0X1f", 1, "1 uchar 31");
    addNumber("300", 1, "1 uchar 44");
    addNumber("0xFFFFFFFF", 1, "1 uchar 255");
    addNumber("4294967296", 1, "1 uchar 0");
    addNumber("-1", 1, "1 uchar 0");
    addNumber("08", 1, "1 uchar 0");
    addNumber("017", 1, "1 uchar 15");
    addNumber(" 7 ", 1, "1 uchar 7");
    addNumber("+7", 1, "1 uchar 7");
    addNumber("7x", 1, "1 uchar 0");
    addNumber("1.5", 1, "1 uchar 0");
    addNumber("0x", 1, "1 uchar 0");
    addNumber("", 1, "1 uchar 0");
    addNumber("200", 2, "2 signed char -56");
    addNumber("-200", 2, "2 signed char 56");
    addNumber("-128", 2, "2 signed char -128");
    addNumber("-0x10", 2, "2 signed char -16");
    addNumber("0xFFFFFFFF", 2, "2 signed char 0");
    addNumber("010", 3, "3 ushort 8");
    addNumber("65536", 3, "3 ushort 0");
    addNumber("65535", 3, "3 ushort 65535");
    addNumber("40000", 4, "4 short -25536");
    addNumber("-32769", 4, "4 short 32767");
    addNumber("4294967295", 5, "5 uint 4294967295");
    addNumber("4294967296", 5, "5 uint 0");
    addNumber("-1", 5, "5 uint 0");
    addNumber("abc", 6, "6 int 0");
    addNumber("-2147483648", 6, "6 int -2147483648");
    addNumber("2147483648", 6, "6 int 0");
    addNumber("0xFFFFFFFF", 6, "6 int 0");
    addNumber("0x7FFFFFFF", 6, "6 int 2147483647");
    addNumber("1,234", 6, "6 int 0");
    addNumber("18446744073709551615", 8, "8 qulonglong 18446744073709551615");
    addNumber("18446744073709551616", 8, "8 qulonglong 0");
    addNumber("0xFFFFFFFFFFFFFFFF", 8, "8 qulonglong 18446744073709551615");
    addNumber("-9223372036854775808", 9, "9 qlonglong -9223372036854775808");
    addNumber("9223372036854775808", 9, "9 qlonglong 0");
    addNumber("0x10", 9, "9 qlonglong 16");
    add("2.5", 7, number("7 float ", 2.5F));
    add("0.1", 7, number("7 float ", 0.1F));
    add("1e39", 7, number("7 float ", std::numeric_limits<float>::infinity()));
    add("1,5", 7, number("7 float ", 0.0F));
    add("0x10", 7, number("7 float ", 0.0F));
    add("abc", 7, number("7 float ", 0.0F));
    add("0.1", 10, number("10 double ", 0.1));
    add("-1e400", 10, number("10 double ", -kInfinity));
    add("nan", 10, number("10 double ", kNaN));
    add("", 10, number("10 double ", 0.0));

    addNamed("40 characters", QString(40, QLatin1Char('x')), 12,
             describe(CVariant(CString32(QString(32, QLatin1Char('x'))))));
    addNamed("null", QString(), 12, describe(CVariant(CString32())));
    addNamed("U+20AC", QStringLiteral("\u20AC"), 17,
             describe(CVariant(units<64>(QStringLiteral("\u20AC")).array)));
    addNamed("128 characters", QString(128, QLatin1Char('x')), 14,
             describe(CVariant(units<128>(QString(128, QLatin1Char('x'))).array)));

    const auto bytes
        = [](int code, const QByteArray &content) { return describe(withTag(content, code)); };
    struct ByteType
    {
        int code;
        int size;
    };
    for (const ByteType type : {ByteType{13, 64}, {18, 128}, {15, 256}, {20, 1}}) {
        const QString text(type.size - 1, QLatin1Char('x'));
        const QByteArray latin1(type.size - 1, 'x');
        addNamed("Latin-1, not padded", QStringLiteral("\u00E4").left(type.size), type.code,
                 bytes(type.code, "\xE4"));
        addNamed("cut", text + QStringLiteral("\u00E4y"), type.code,
                 bytes(type.code, latin1 + '\xE4'));
        addNamed("not Latin-1", text + QStringLiteral("\u20AC"), type.code,
                 bytes(type.code, latin1 + '?'));
        addNamed("empty", QLatin1String(""), type.code, bytes(type.code, ""));
        addNamed("null", QString(), type.code,
                 QString::number(type.code) + QLatin1String(" QByteArray  null"),
                 bytes(type.code, QByteArray(type.size, '\0')));
    }
    addNamed("a character of zero", QString(QChar(0)) + QLatin1Char('x'), 13,
             bytes(13, QByteArray("\0x", 2)));
    addNamed("AB", QStringLiteral("AB"), 19, QStringLiteral("19 QChar 41"));
    addNamed("U+10000", QStringLiteral("\U00010000"), 19, QStringLiteral("19 QChar d800"));
    // The null character is a value, although it is null to Qt.
    for (const QString &text : {QString(), QStringLiteral(""), QString(QChar(0))})
        addNamed(qPrintable(QStringLiteral("%1 characters, null %2")
                                .arg(text.size())
                                .arg(static_cast<int>(text.isNull()))),
                 text, 19, QStringLiteral("19 QChar 0 null"));

    const auto addRecord = [&](const char *text, const char *expected) {
        add(text, 16, QLatin1String("16 NTypes::tsDateTime ") + QLatin1String(expected));
    };
    addRecord("2014-03-05T10:20:30", "001e140a0503de07");
    addRecord("2014-03-05T10:20:30.129", "0c1e140a0503de07");
    addRecord("2014-03-05T10:20:30.999", "631e140a0503de07");
    addRecord("2014-03-05", "000000000503de07");
    addRecord("2014-03-05T10:20:30Z", "001e140a0503de07");
    addRecord("2014-03-05T10:20:30+05:00", "001e140a0503de07");
    addRecord("2014-03-05T10:20:30-11:30", "001e140a0503de07");
    addRecord("9999-12-31T23:59:59", "003b3b171f0c0f27");
    addRecord("20140305", "1151330100000000");
    addRecord("0", "0000000000000000");
    addRecord("-1", "ffffffffffffffff");
    addRecord("-2147483648", "00000080ffffffff");
    addRecord("2147483647", "ffffff7f00000000");
    addRecord("2147483648", "0000000000000000");
    addRecord("99999999999", "0000000000000000");
    addRecord("010", "0a00000000000000");
    addRecord("0x10", "0000000000000000");
    addRecord("2014-02-30T10:20:30", "0000000000000000");
    addRecord("05.03.2014", "0000000000000000");
    addRecord("abc", "0000000000000000");
    addRecord("", "0000000000000000");
}

void tst_CVariant::fromText()
{
    QFETCH(const QString, text);
    QFETCH(const int, code);
    QFETCH(const QString, expected);
    QFETCH(const QString, replaced);
    const QString other = replaced.isEmpty() ? expected : replaced;
    const MessageRecorder recorder;
    QCOMPARE(describe(CVariant::fromStr(text, tag(code))), expected);
    QCOMPARE(describe(CVariant(text, tag(code))), other);
    CVariant value(tag(code));
    QVERIFY(&value.fromStr(text) == &value);
    QCOMPARE(describe(value), other);
    // What was there before does not matter.
    CVariant mismatched = withTag(300, code);
    QCOMPARE(describe(mismatched.fromStr(text)), other);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CVariant::fromTextUnsupported_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {0, 11, 21, 25, 127, 2147483647, -1, -2147483647 - 1})
        QTest::addRow("%d", code) << code;
}

void tst_CVariant::fromTextUnsupported()
{
    QFETCH(const int, code);
    const MessageRecorder recorder;
    QStringList expected = {warning(kFromStr, code)};
    QCOMPARE(describe(CVariant::fromStr(QStringLiteral("5"), tag(code))),
             QStringLiteral("0 invalid"));
    QCOMPARE(recorder.messages(), expected);
    const CVariant made(QStringLiteral("5"), tag(code)); // the tag stays in every case
    expected += expected.first();
    QCOMPARE(describe(made), QString::number(code) + QLatin1String(" invalid"));
    QCOMPARE(recorder.messages(), expected);
    CVariant member = withTag(7, code);
    member.fromStr(QStringLiteral("5"));
    expected += expected.first();
    QCOMPARE(describe(member), QString::number(code) + QLatin1String(" int 7"));
    QCOMPARE(recorder.messages(), expected);
}

// An edit that clears the character is an edit, although setDefaultValue() has no null character.
void tst_CVariant::fromTextTakesNullCharacter()
{
    for (const QString &text : {QString(), QStringLiteral(""), QString(QChar(0))}) {
        CVariant value = QChar(u'A');
        QCOMPARE(describe(value.fromStr(text)), QStringLiteral("19 QChar 0 null"));
        QCOMPARE(value.toStr(), QString(QChar(0)));
        QCOMPARE(describe(value.fromStr(QStringLiteral("B"))), QStringLiteral("19 QChar 42"));
        QCOMPARE(describe(value.setDefaultValue(NTypes::TYPE_UTF16CHAR)),
                 QStringLiteral("19 QChar 42"));
        CVariant other = withTag(65, 19);
        QCOMPARE(describe(other.fromStr(text)), QStringLiteral("19 QChar 0 null"));
    }
}

void tst_CVariant::hexTexts_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<QString>("expected");
    addRow("U8 0", uchar(0), "00");
    addRow("U8 5", uchar(5), "05");
    addRow("U8 255", uchar(255), "ff");
    addRow("U8 over Int 300", withTag(300, 1), "2c");
    addRow("U8 default", NTypes::TYPE_U8, "00");
    addRow("U16 AB", ushort(0xAB), "00ab");
    addRow("U16 FFFF", ushort(0xFFFF), "ffff");
    addRow("U32 0", 0U, "00000000");
    addRow("U32 89ABCDEF", 0x89ABCDEFU, "89abcdef");
    addRow("U64 1", 1ULL, "0000000000000001");
    addRow("U64 max", U64::max(), "ffffffffffffffff");
    addRow("I8 0", qint8(0), "00");
    addRow("I8 127", qint8(127), "7f");
    addRow("I8 -1", qint8(-1), "-1");
    addRow("I8 -15", qint8(-15), "-f");
    addRow("I8 -16: sign cut", qint8(-16), "10");
    addRow("I8 -127: sign cut", qint8(-127), "7f");
    addRow("I8 -128: sign cut", qint8(-128), "80");
    addRow("I16 32767", short(32767), "7fff");
    addRow("I16 -1", short(-1), "-001");
    addRow("I16 -4095", short(-4095), "-fff");
    addRow("I16 -4096: sign cut", short(-4096), "1000");
    addRow("I16 min: sign cut", short(-32768), "8000");
    addRow("I32 10", 10, "0000000a");
    addRow("I32 -1", -1, "-0000001");
    addRow("I32 -0x0FFFFFFF", -0x0FFFFFFF, "-fffffff");
    addRow("I32 -0x10000000: 9 characters", -0x10000000, "-10000000");
    addRow("I32 max", 2147483647, "7fffffff");
    addRow("I32 min: 9 characters", -2147483647 - 1, "-80000000");
    addRow("I64 10", 10LL, "000000000000000a");
    addRow("I64 -1", -1LL, "-000000000000001");
    addRow("I64 max", I64::max(), "7fffffffffffffff");
    addRow("I64 min: 17 characters", I64::min(), "-8000000000000000");
    addRow("I64 min + 1", I64::min() + 1, "-7fffffffffffffff");
    addRow("F32 1", 1.0F, "");
    addRow("F64 1", 1.0, "");
    addRow("UNKNOWN", CVariant(), "");
    addRow("UNKNOWN over Int 5", withTag(5, 0), "");
    addRow("F80 over Int 5", withTag(5, 11), "");
    addRow("25 over Int 5", withTag(5, 25), "");
    addRow("-1 over Int 5", withTag(5, -1), "");
    addRow("UTF16CHAR AB", QChar(0xAB), "00ab");
    addRow("UTF16CHAR FFFF", QChar(0xFFFF), "ffff");
    addRow("UTF16CHAR default", NTypes::TYPE_UTF16CHAR, "0000");
    addRow("CHAR 0F", '\x0F', "0f");
    addRow("DATETIME", record(5, 3, 2014, 10, 20, 30, 99), "7de03050a141e63");
    addRow("DATETIME of zeros: not padded", NTypes::tsDateTime(), "0");
    addRow("DATETIME hundredths 1", record(0, 0, 0, 0, 0, 0, 1), "1");
    addRow("DATETIME year -1: two's complement", record(0, 0, -1, 0, 0, 0, 0), "ffff000000000000");
    addRow("DATETIME over Int 5", withTag(5, 16), "0");
    const auto zeros = [](int count) { return QString(count, QLatin1Char('0')); };
    addRow("STRING32 A", CString32(QStringLiteral("A")), QLatin1String("4100") + zeros(124));
    addRow("STRING64 12AB with a tail", units<64>(QString(QChar(0x12AB)), 0x34CD).array,
           QLatin1String("ab12") + zeros(248) + QLatin1String("cd34"));
    addRow("STRING128 empty", CString128(), zeros(512));
    addRow("STRING32 over Int 5", withTag(5, 12), zeros(128));
    addRow("CHARSTR64 bytes behind a NUL", chars<64>(QByteArray("A\0\xFE", 3)).array,
           QLatin1String("4100fe") + zeros(122));
    addRow("CHARSTR128", chars<128>(QByteArray(128, '\x1A')).array,
           QStringLiteral("1a").repeated(128));
    addRow("CHARSTR256", chars<256>(QByteArray(256, '\x1A')).array,
           QStringLiteral("1a").repeated(256));
    addRow("CHARSTR64 not padded", CVariant::fromStr(QStringLiteral("AB"), NTypes::TYPE_CHARSTR64),
           "4142");
    addRow("CHARSTR64 null bytes", CVariant::fromStr(QString(), NTypes::TYPE_CHARSTR64), "");
}

void tst_CVariant::hexTexts()
{
    QFETCH(const CVariant, value);
    QFETCH(const QString, expected);
    const MessageRecorder recorder;
    QCOMPARE(value.toHex(), expected);
    for (const QString &prefix :
         {QString(), QStringLiteral("0x"), QStringLiteral("%1 %2 %L1 \u20AC")})
        QCOMPARE(value.toHex(prefix), prefix + expected);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CVariant::toBits_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<QString>("expected"); // empty: there is a warning
    const auto run = [](char bit, int count) { return QString(count, QLatin1Char(bit)); };
    addRow("U8 1: the first bit", uchar(1), "10000000");
    addRow("U8 128", uchar(128), "00000001");
    addRow("U8 over Int 300", withTag(300, 1), "00110100");
    addRow("U8 default", NTypes::TYPE_U8, run('0', 8));
    addRow("I8 -1", qint8(-1), run('1', 8));
    addRow("I8 -128", qint8(-128), "00000001");
    addRow("U16 0x8003", ushort(0x8003), "1100000000000001");
    addRow("I16 -2", short(-2), QLatin1Char('0') + run('1', 15));
    addRow("U32 2^31", 0x80000000U, run('0', 31) + QLatin1Char('1'));
    addRow("I32 min", -2147483647 - 1, run('0', 31) + QLatin1Char('1'));
    addRow("I32 -1", -1, run('1', 32));
    addRow("U64 2^32", 0x100000000ULL, run('0', 32) + QLatin1Char('1') + run('0', 31));
    addRow("I64 min", I64::min(), run('0', 63) + QLatin1Char('1'));
    addRow("I64 -1", -1LL, run('1', 64));
    addRow("I32 over QByteArray abc", withTag(QByteArray("abc"), 6), run('0', 32));
    addRow("F32 1", 1.0F, "");
    addRow("F64 1", 1.0, "");
    addRow("STRING32 1", CString32(QStringLiteral("1")), "");
    addRow("CHARSTR64 1", chars<64>("1").array, "");
    addRow("STRING128 1", CString128(), "");
    addRow("CHARSTR256 1", chars<256>("1").array, "");
    addRow("DATETIME", NTypes::tsDateTime(), "");
    addRow("STRING64 1", CString64(), "");
    addRow("CHARSTR128 1", chars<128>("1").array, "");
    addRow("UTF16CHAR 1", QChar(u'1'), "");
    addRow("CHAR 1", '1', "");
    addRow("UNKNOWN", CVariant(), "");
    addRow("F80", NTypes::TYPE_F80, "");
    addRow("25 over Int 5", withTag(5, 25), "");
    addRow("-1 over QBitArray", withTag(bits("101"), -1), "");
}

void tst_CVariant::toBits()
{
    QFETCH(const CVariant, value);
    QFETCH(const QString, expected);
    const MessageRecorder recorder;
    QCOMPARE(bits(value.toBitArray()), expected);
    QStringList messages;
    if (expected.isEmpty())
        messages += warning(kToBitArray, value.type());
    QCOMPARE(recorder.messages(), messages);
}

void tst_CVariant::fromBits_data()
{
    QTest::addColumn<QBitArray>("array");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("expected");
    const auto add = [](const char *name, const QBitArray &array, int code, const char *expected) {
        QTest::addRow("%d %s", code, name) << array << code << QString::fromLatin1(expected);
    };
    const QBitArray empty;
    const QBitArray ones(70, true);
    const QBitArray short101 = bits("101");
    // The bits 64 to 69 are set, bit 63 is not.
    QBitArray beyond(70, false);
    beyond.fill(true, 64, 70);
    beyond.setBit(1);
    struct Type
    {
        int code;
        const char *zero;
        const char *five;
        const char *allSet;
        const char *two;
    };
    for (const Type type :
         {Type{1, "1 uchar 0", "1 uchar 5", "1 uchar 255", "1 uchar 2"},
          {2, "2 signed char 0", "2 signed char 5", "2 signed char -1", "2 signed char 2"},
          {3, "3 ushort 0", "3 ushort 5", "3 ushort 65535", "3 ushort 2"},
          {4, "4 short 0", "4 short 5", "4 short -1", "4 short 2"},
          {5, "5 uint 0", "5 uint 5", "5 uint 4294967295", "5 uint 2"},
          {6, "6 int 0", "6 int 5", "6 int -1", "6 int 2"},
          {8, "8 qulonglong 0", "8 qulonglong 5", "8 qulonglong 18446744073709551615",
           "8 qulonglong 2"},
          {9, "9 qlonglong 0", "9 qlonglong 5", "9 qlonglong -1", "9 qlonglong 2"}}) {
        add("no bits", empty, type.code, type.zero);
        add("101: no sign", short101, type.code, type.five);
        add("70 ones", ones, type.code, type.allSet);
        add("bits beyond", beyond, type.code, type.two);
    }
    add("8 bits", bits("00000001"), 2, "2 signed char -128");
    add("9 bits", bits("000000001"), 2, "2 signed char 0");
    add("8 bits: no sign", bits("00000001"), 4, "4 short 128");
    for (const int code : {0, 7, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 25, 127, -1,
                           2147483647, -2147483647 - 1})
        add("101", short101, code, "0 invalid");
}

void tst_CVariant::fromBits()
{
    QFETCH(const QBitArray, array);
    QFETCH(const int, code);
    QFETCH(const QString, expected);
    const MessageRecorder recorder;
    const bool fails = expected == QLatin1String("0 invalid");
    QStringList messages;
    const auto warned = [&] {
        if (fails)
            messages += warning(kFromBitArray, code);
        return messages;
    };
    QCOMPARE(describe(CVariant::fromBitArray(array, tag(code))), expected);
    QCOMPARE(recorder.messages(), warned());
    QCOMPARE(describe(CVariant(array, tag(code))), expected);
    QCOMPARE(recorder.messages(), warned());

    CVariant member = withTag(300, code);
    CVariant assignee = member;
    if (code == 0) { // the members take U64 instead
        QCOMPARE(describe(member.fromBitArray(array)), QStringLiteral("8 qulonglong 5"));
        QCOMPARE(describe(assignee = array), QStringLiteral("8 qulonglong 5"));
        QCOMPARE(recorder.messages(), messages);
        return;
    }
    QVERIFY(&member.fromBitArray(array) == &member);
    QCOMPARE(describe(member), expected);
    QCOMPARE(recorder.messages(), warned());
    QVERIFY(&(assignee = array) == &assignee);
    QCOMPARE(describe(assignee), expected);
    QCOMPARE(recorder.messages(), warned());
}

void tst_CVariant::comparisons_data()
{
    QTest::addColumn<CVariant>("left");
    for (const Sample &sample : values())
        QTest::addRow("%s", sample.name) << sample.value;
}

// Every value with every other one, itself included.
void tst_CVariant::comparisons()
{
    QFETCH(const CVariant, left);
    const MessageRecorder recorder;
    QStringList wrong;
    for (const Sample &sample : values()) {
        const QString actual = compared(left, sample.value);
        const QString expected = modelOf(left).compared(modelOf(sample.value));
        if (actual != expected)
            wrong += QLatin1String(sample.name) + QLatin1Char(' ') + actual;
    }
    QCOMPARE(wrong, QStringList());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CVariant::comparisonsByHand_data()
{
    QTest::addColumn<CVariant>("left");
    QTest::addColumn<CVariant>("right");
    QTest::addColumn<QString>("expected"); // == != < > <= >=
    constexpr char kEqual[] = "100011";
    constexpr char kLess[] = "011010";
    constexpr char kGreater[] = "010101";
    constexpr char kNeither[] = "010011"; // other tags but the same number, NaN
    const auto add
        = [](const char *name, const CVariant &left, const CVariant &right, const char *expected) {
              QTest::addRow("%s", name) << left << right << QString::fromLatin1(expected);
          };
    const CVariant u8 = uchar(5);
    add("U8 5, U8 5", u8, uchar(5), kEqual);
    add("U8 5, U8 6", u8, uchar(6), kLess);
    add("U8 default, U8 0", NTypes::TYPE_U8, uchar(0), kEqual);
    add("U8 5, I32 5: other tag", u8, 5, kNeither);
    add("I32 5, U8 5: other tag", 5, u8, kNeither);
    add("U8 5, I32 -1: 2^64-1", u8, -1, kLess);
    add("I32 -1, U8 5", -1, u8, kLess);
    add("F32 1, U8 5: no F32 from U8", 1.0F, u8, kGreater);
    add("F64 1, U8 5", 1.0, u8, kLess);
    add("STRING32 9, I32 10: texts", CString32(QStringLiteral("9")), 10, kGreater);
    add("I32 10, STRING32 9: numbers", 10, CString32(QStringLiteral("9")), kGreater);
    add("I32 5, F64 1e300: 0x80... is 0", 5, 1e300, kGreater);
    add("I32 5, F64 2^63: -2^63", 5, kTwo63, kGreater);
    add("I64 -2^63, F64 1e300", I64::min(), 1e300, kNeither);
    add("I32 -1, I32 0: signed", -1, 0, kLess);
    add("U32 max, U32 0: unsigned", 4294967295U, 0U, kGreater);
    add("U64 max, U64 2^63", U64::max(), 9223372036854775808ULL, kGreater);
    add("I64 min, I64 max", I64::min(), I64::max(), kLess);
    add("I64 2^53+1, I64 2^53", 9007199254740993LL, 9007199254740992LL, kGreater);
    add("U8 over Int 300, U8 44: 300 counts", withTag(300, 1), uchar(44), kGreater);
    add("U8 over Int 300, U8 over Int 300", withTag(300, 1), withTag(300, 1), kEqual);
    add("I32 5, unknown tag 25 over Int 9", 5, withTag(9, 25), kGreater);
    add("F32 NaN, F32 NaN", std::numeric_limits<float>::quiet_NaN(),
        std::numeric_limits<float>::quiet_NaN(), kNeither);
    add("F64 NaN, F64 1", kNaN, 1.0, kNeither);
    add("F64 1, F64 NaN", 1.0, kNaN, kNeither);
    add("F64 0, F64 -0", 0.0, -0.0, kEqual);
    add("F64 inf, F64 inf", kInfinity, kInfinity, kEqual);
    add("F64 -inf, F64 lowest", -kInfinity, -std::numeric_limits<double>::max(), kLess);
    add("F32 0.1, F32 0.1", 0.1F, 0.1F, kEqual);
    add("F32 0.1, F64 0.1: as float", 0.1F, 0.1, kNeither);
    add("F64 0.1, F32 0.1: as double", 0.1, 0.1F, kLess);
    add("F32 over Double 0.1, F32 0.1: as float", withTag(0.1, 7), 0.1F, kEqual);
    add("STRING32 A with a tail", units<32>(QStringLiteral("A"), 7).array,
        CString32(QStringLiteral("A")), kEqual);
    add("STRING32 A, STRING64 A: other tag", CString32(QStringLiteral("A")),
        CString64(QStringLiteral("A")), kNeither);
    add("STRING32 A, STRING64 B", CString32(QStringLiteral("A")), CString64(QStringLiteral("B")),
        kLess);
    add("STRING128 U+10000, U+FFFD: by unit", CString128(QStringLiteral("\U00010000")),
        CString128(QStringLiteral("\uFFFD")), kLess);
    add("STRING32 Z, a: by unit", CString32(QStringLiteral("Z")), CString32(QStringLiteral("a")),
        kLess);
    add("STRING32 A, AB", CString32(QStringLiteral("A")), CString32(QStringLiteral("AB")), kLess);
    add("CHARSTR64 bytes behind a NUL", chars<64>(QByteArray("A\0x", 3)).array,
        chars<64>("A").array, kEqual);
    add("CHARSTR64 padded or not", CVariant::fromStr(QStringLiteral("A"), NTypes::TYPE_CHARSTR64),
        chars<64>("A").array, kEqual);
    add("CHARSTR64 null, zeros", CVariant::fromStr(QString(), NTypes::TYPE_CHARSTR64),
        NTypes::TYPE_CHARSTR64, kEqual);
    add("CHAR 9, U8 10", '9', uchar(10), kGreater);
    add("CHAR A, UTF16CHAR A", 'A', QChar(u'A'), kNeither);
    add("UTF16CHAR 0, default: one character, none", QChar(0), NTypes::TYPE_UTF16CHAR, kGreater);
    add("DATETIME: all equal", record(5, 3, 2014, 1, 2, 3, 4), NTypes::tsDateTime(), kEqual);
    add("DATETIME, DATETIME over Int 5", record(5, 3, 2014, 1, 2, 3, 4), withTag(5, 16), kEqual);
    add("DATETIME, I64 1", record(5, 3, 2014, 1, 2, 3, 4), 1LL, kLess);
    add("UNKNOWN, UNKNOWN", CVariant(), CVariant(), kEqual);
    add("UNKNOWN over Int 5, UNKNOWN over QString", withTag(5, 0), withTag(QStringLiteral("A"), 0),
        kEqual);
    add("F80 over Int 5, F80", withTag(5, 11), NTypes::TYPE_F80, kEqual);
    add("F80, UNKNOWN: other tag", NTypes::TYPE_F80, CVariant(), kNeither);
    add("UNKNOWN over Int 5, I32 9: neither", withTag(5, 0), 9, kNeither);
    add("I32 9, UNKNOWN over Int 12: 0", 9, withTag(12, 0), kGreater);
    add("25, 26", withTag(5, 25), withTag(5, 26), kNeither);
}

void tst_CVariant::comparisonsByHand()
{
    QFETCH(const CVariant, left);
    QFETCH(const CVariant, right);
    QFETCH(const QString, expected);
    QCOMPARE(compared(left, right), expected);
    // A copy of NaN is not equal to it, nor is the object itself.
    const CVariant copy = left;
    QCOMPARE(left == left, copy == left);
}

void tst_CVariant::fixedStringOrder()
{
    QStringList wrong;
    checkOrder<CString32, 32>(&wrong);
    checkOrder<CString64, 64>(&wrong);
    checkOrder<CString128, 128>(&wrong);
    QCOMPARE(wrong, QStringList());
}

void tst_CVariant::defaults_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("expected"); // the default
    const auto zeros = [](const char *type, int bytes) {
        return QLatin1String(type) + QString(2 * bytes, QLatin1Char('0'));
    };
    const auto add
        = [](int code, const QString &expected) { QTest::addRow("%d", code) << code << expected; };
    for (const int code : {1, 2, 3, 4, 6})
        add(code, QStringLiteral("int 0"));
    add(5, QStringLiteral("uint 0"));
    add(7, QStringLiteral("float 00000000=0"));
    add(8, QStringLiteral("qulonglong 0"));
    add(9, QStringLiteral("qlonglong 0"));
    add(10, QStringLiteral("double 0000000000000000=0"));
    add(12, zeros("CString32 ", 64));
    add(13, zeros("QByteArray ", 64));
    add(14, zeros("CString128 ", 256));
    add(15, zeros("QByteArray ", 256));
    add(16, zeros("NTypes::tsDateTime ", 8));
    add(17, zeros("CString64 ", 128));
    add(18, zeros("QByteArray ", 128));
    add(19, QStringLiteral("QChar 0 null"));
    add(20, zeros("QByteArray ", 1));
    for (const int code : {0, 11, 21, 25, 127, 2147483647, -1, -2147483647 - 1})
        add(code, QStringLiteral("invalid"));
}

void tst_CVariant::defaults()
{
    QFETCH(const int, code);
    QFETCH(const QString, expected);
    const MessageRecorder recorder;
    const QString codeText = QString::number(code) + QLatin1Char(' ');
    QCOMPARE(describe(CVariant().defaultValue(tag(code))), expected);
    QCOMPARE(describe(CVariant(7.0).defaultValue(tag(code))), expected);

    // A default that is null to Qt, the null character's too, leaves the content.
    const bool hasDefault = expected != QLatin1String("invalid") && code != 19;
    CVariant value = ushort(7);
    QVERIFY(&value.setDefaultValue(tag(code)) == &value);
    QCOMPARE(describe(value), codeText + (hasDefault ? expected : QStringLiteral("ushort 7")));

    const CVariant made(tag(code));
    const bool isType = code >= 0 && code <= 20;
    QCOMPARE(describe(made),
             (isType ? codeText : QStringLiteral("0 "))
                 + (hasDefault ? expected : QStringLiteral("invalid")));
    QCOMPARE(made.isNull(), !hasDefault);
    QCOMPARE(made.isValid(), hasDefault);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CVariant::fromQVariant_data()
{
    QTest::addColumn<QVariant>("from");
    QTest::addColumn<QString>("expected");
    const auto add = [](const char *name, const QVariant &from, const CVariant &expected) {
        QTest::addRow("%s", name) << from << describe(expected);
    };
    add("Int -5", -5, -5);
    add("Int null", QVariant(QVariant::Int), 0);
    add("Int 5, marked as null", nullFive(), 5);
    add("UInt max", 4294967295U, 4294967295U);
    add("UInt null", QVariant(QVariant::UInt), 0U);
    add("LongLong min", qlonglong(I64::min()), I64::min());
    add("ULongLong max", qulonglong(U64::max()), U64::max());
    add("Long -2", QVariant::fromValue(-2L), -2);
    add("Long 2^32+5: low 32 bits", QVariant::fromValue(4294967301L), 5);
    add("Long 2^31: low 32 bits", QVariant::fromValue(2147483648L), -2147483647 - 1);
    add("ULong 2^32+5: low 32 bits", QVariant::fromValue(4294967301UL), 5U);
    add("ULong max", QVariant::fromValue(~0UL), 4294967295U);
    add("Double -0", -0.0, -0.0);
    add("Double NaN", kNaN, kNaN);
    add("Float 0.1", 0.1F, 0.1F);
    add("Short -300", QVariant::fromValue(short(-300)), short(-300));
    add("UShort 65535", QVariant::fromValue(ushort(65535)), ushort(65535));
    add("UChar 200", QVariant::fromValue(uchar(200)), uchar(200));
    add("SChar -100", QVariant::fromValue(qint8(-100)), qint8(-100));
    add("Char -1", QVariant::fromValue('\xFF'), '\xFF');
    add("Char NUL", QVariant::fromValue('\0'), '\0');
    add("QChar 20AC", QChar(0x20AC), QChar(0x20AC));
    add("QChar 0", QChar(0), QChar(0));
    const auto text = [](int count) { return QString(count, QLatin1Char('x')); };
    add("QString null", QString(), CString32());
    add("QVariant of a null QString", QVariant(QVariant::String), CString32());
    add("QString 63 bytes: cut", text(63), CString32(text(32)));
    add("QString 64 bytes", text(64), CString64(text(64)));
    add("QString 70 characters", text(70), CString64(text(64)));
    add("QString 127 bytes: cut", text(127), CString64(text(64)));
    add("QString 128 bytes", text(128), CString128(text(128)));
    add("QString 300 bytes: cut", text(300), CString128(text(128)));
    const QString umlauts(40, QChar(0xE4));
    add("QString 31 two-byte letters", umlauts.left(31), CString32(umlauts.left(31)));
    add("QString 32 two-byte letters", umlauts.left(32), CString64(umlauts.left(32)));
    add("QString 40 two-byte letters", umlauts, CString64(umlauts));
    add("QString 70 two-byte letters", QString(70, QChar(0xE4)),
        CString128(QString(70, QChar(0xE4))));
    add("QString 63 bytes and a zero", text(31) + QChar(0) + text(31), CString32(text(31)));
    const auto bytes = [](int count) { return QByteArray(count, 'x'); };
    const auto pairs = [](int count) { return QString(count, QChar(0x7878)); };
    add("QByteArray null", QByteArray(), CString32());
    add("QByteArray 3 bytes: odd", QByteArray("A\0B", 3), CString32(QStringLiteral("AB")));
    add("QByteArray 63 bytes", bytes(63), CString32(pairs(31) + QLatin1Char('x')));
    add("QByteArray 64 bytes", bytes(64), CString64(pairs(32)));
    add("QByteArray 127 bytes", bytes(127), CString64(pairs(63) + QLatin1Char('x')));
    add("QByteArray 128 bytes", bytes(128), CString128(pairs(64)));
    add("QByteArray 300 bytes: cut", bytes(300), CString128(pairs(128)));
    const CString32 string32(units<32>(QStringLiteral("AB"), 7).array);
    const CString64 string64(units<64>(QStringLiteral("AB"), 7).array);
    const CString128 string128(units<128>(QStringLiteral("AB"), 7).array);
    add("CString32 with a tail", QVariant::fromValue(string32), string32);
    add("CString64 with a tail", QVariant::fromValue(string64), string64);
    add("CString128 with a tail", QVariant::fromValue(string128), string128);
}

void tst_CVariant::fromQVariant()
{
    QFETCH(const QVariant, from);
    QFETCH(const QString, expected);
    const MessageRecorder recorder;
    const CVariant made = from;
    QCOMPARE(describe(made), expected);
    QVERIFY(made.isValid());
    CVariant value = CString64(QStringLiteral("before"));
    QVERIFY(&(value = from) == &value);
    QCOMPARE(describe(value), expected);
    QCOMPARE(recorder.messages(), QStringList());
    const QVariant back = value; // without the tag
    QCOMPARE(describe(back), expected.section(QLatin1Char(' '), 1));
}

// Exactly these types of Qt are taken; each of the others leaves the variant as it is.
void tst_CVariant::fromEveryQtType()
{
    const QMap<int, int> tagOfType
        = {{2, 6},  {3, 5},  {4, 9},   {5, 8},  {6, 10}, {7, 19}, {10, 12}, {12, 12},
           {32, 6}, {33, 4}, {34, 20}, {35, 5}, {36, 3}, {37, 1}, {38, 7},  {40, 2}};
    QVector<QVariant> all = {QVariant()};
    for (int type = 1; type <= QMetaType::LastCoreType; ++type) {
        if (type != QMetaType::Void) // of which there is no QVariant
            all += QVariant(type, nullptr);
    }
    all << QVariant(true) << QDate(2014, 3, 5) << QVariantList({1}) << bits("101")
        << QVariant::fromValue(record(5, 3, 2014, 1, 2, 3, 4)) << QVariant::fromValue(QVariant(5))
        << QVariant::fromValue(CVariant(5));
    for (const QVariant &from : qAsConst(all)) {
        const int type = from.userType();
        const MessageRecorder recorder;
        CVariant value = ushort(7);
        value = from;
        if (tagOfType.contains(type)) {
            QCOMPARE(static_cast<int>(value.type()), tagOfType.value(type));
            QCOMPARE(static_cast<int>(CVariant(from).type()), tagOfType.value(type));
            QCOMPARE(recorder.messages(), QStringList());
        } else {
            QCOMPARE(describe(value), QStringLiteral("3 ushort 7"));
            QCOMPARE(recorder.messages(), QStringList(warning(kAssign, type)));
            // The constructor keeps what it cannot take, without a tag.
            const CVariant made = from;
            QCOMPARE(static_cast<int>(made.type()), 0);
            QCOMPARE(contentOf(made).userType(), type);
            QCOMPARE(contentOf(made).isNull(), from.isNull());
            QVERIFY(made.isNull() && !made.isValid());
            QCOMPARE(recorder.messages(),
                     QStringList({warning(kAssign, type), warning(kAssign, type)}));
        }
    }
}

void tst_CVariant::streamBytes_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("isLittleEndian");
    QTest::addColumn<QByteArray>("expected");
    for (const Golden &golden : goldens()) {
        QTest::addRow("5.15 %s", golden.name)
            << golden.value << int(QDataStream::Qt_5_15) << false << golden.bytes;
        QTest::addRow("5.0 %s", golden.name)
            << golden.value << int(QDataStream::Qt_5_0) << false << golden.bytes;
    }
    const auto add = [](const char *name, const CVariant &value, int version, bool isLittleEndian,
                        const QByteArray &expected) {
        QTest::addRow("%s", name) << value << version << isLittleEndian << expected;
    };
    const auto addLittle
        = [&](const char *name, const CVariant &value, const QByteArray &expected) {
              add(qPrintable(QStringLiteral("5.15 little-endian ") + QLatin1String(name)), value,
                  QDataStream::Qt_5_15, true, expected);
          };
    const auto add46 = [&](const char *name, const CVariant &value, const QByteArray &expected) {
        add(qPrintable(QStringLiteral("4.6 ") + QLatin1String(name)), value, QDataStream::Qt_4_6,
            false, expected);
    };
    const auto raw = [](const char *hexDigits) { return QByteArray::fromHex(hexDigits); };
    addLittle("UNKNOWN", CVariant(), raw("00000000 01 00000000"));
    addLittle("U8 255", uchar(255), raw("25000000 00 ff 01000000"));
    addLittle("U16 1234", ushort(0x1234), raw("24000000 00 3412 03000000"));
    addLittle("I32 -2", -2, raw("02000000 00 feffffff 06000000"));
    addLittle("F32 1.5", 1.5F, raw("26000000 00 000000000000f83f 07000000"));
    addLittle("U64", 0x123456789ABCDEFULL, raw("05000000 00 efcdab8967452301 08000000"));
    addLittle("F64 1.5", 1.5, raw("06000000 00 000000000000f83f 0a000000"));
    addLittle("STRING32", units<32>(QStringLiteral("A\u20AC"), 7).array,
              raw("00040000 00 0a000000 43537472696e67333200 4100 ac20") + repeated(29, "0000")
                  + raw("0700 0c000000"));
    addLittle("CHAR A", 'A', raw("0c000000 00 01000000 41 14000000"));
    addLittle("UTF16CHAR 20AC", QChar(0x20AC), raw("07000000 00 ac20 13000000"));
    addLittle("DATETIME", record(5, 3, 2014, 10, 20, 30, 99),
              raw("00040000 00 13000000 4e54797065733a3a74734461746554696d6500"
                  "631e140a0503de07 10000000"));
    // Streams of Qt 4 count the types beyond 30 in another way, and write a text for no content.
    add46("UNKNOWN", CVariant(), raw("00000000 01 ffffffff 00000000"));
    add46("U8 255", uchar(255), raw("00000086 00 ff 00000001"));
    add46("I8 -2", qint8(-2), raw("00000089 00 fe 00000002"));
    add46("U16 1234", ushort(0x1234), raw("00000085 00 1234 00000003"));
    add46("I16 -2", short(-2), raw("00000082 00 fffe 00000004"));
    add46("U32", 0x12345678U, raw("00000003 00 12345678 00000005"));
    add46("F32 1.5", 1.5F, raw("00000087 00 3ff8000000000000 00000007"));
    add46("I64 -2", -2LL, raw("00000004 00 fffffffffffffffe 00000009"));
    add46("F64 1.5", 1.5, raw("00000006 00 3ff8000000000000 0000000a"));
    add46("CHAR A", 'A', raw("0000000c 00 00000001 41 00000014"));
    add46("UTF16CHAR 20AC", QChar(0x20AC), raw("00000007 00 20ac 00000013"));
    add46("STRING64", CString64(QStringLiteral("A")),
          raw("0000007f 00 0000000a 43537472696e67363400 0041") + repeated(63, "0000")
              + raw("00000011"));
    add46("DATETIME", record(5, 3, 2014, 10, 20, 30, 99),
          raw("0000007f 00 00000013 4e54797065733a3a74734461746554696d6500"
              "631e140a050307de 00000010"));
}

void tst_CVariant::streamBytes()
{
    QFETCH(const CVariant, value);
    QFETCH(const int, version);
    QFETCH(const bool, isLittleEndian);
    QFETCH(const QByteArray, expected);
    const MessageRecorder recorder;
    QCOMPARE(hex(bytesOf(value, version, isLittleEndian)), hex(expected));
    QCOMPARE(recorder.messages(), QStringList());

    // Reading takes these bytes and no more.
    QByteArray bytes = expected + "more";
    QDataStream in(&bytes, QIODevice::ReadOnly);
    in.setVersion(version);
    in.setByteOrder(isLittleEndian ? QDataStream::LittleEndian : QDataStream::BigEndian);
    CVariant read = 7.0;
    in >> read;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(in.device()->readAll(), QByteArray("more"));
    QCOMPARE(describe(read), describe(value));
    QCOMPARE(static_cast<int>(in.byteOrder()), isLittleEndian ? 1 : 0);
    QCOMPARE(in.version(), version);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CVariant::streamKeepsTags_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("code");
    const auto add = [](int code, const char *hexDigits) {
        QTest::addRow("%d", code) << QByteArray::fromHex(hexDigits) << code;
    };
    add(11, "00000002 00 00000007 0000000b");
    add(12, "00000002 00 00000007 0000000c");
    add(21, "00000002 00 00000007 00000015");
    add(25, "00000002 00 00000007 00000019");
    add(255, "00000002 00 00000007 000000ff");
    add(2147483647, "00000002 00 00000007 7fffffff");
    add(-1, "00000002 00 00000007 ffffffff");
    add(-2147483647 - 1, "00000002 00 00000007 80000000");
}

// Nothing is checked or repaired; what the operations make of such a value is in operations().
void tst_CVariant::streamKeepsTags()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, code);
    const CVariant value = readFrom(bytes);
    QCOMPARE(describe(value), QString::number(code) + QLatin1String(" int 7"));
    QCOMPARE(hex(bytesOf(value, QDataStream::Qt_5_15)), hex(bytes));
    QCOMPARE(resultsOf(value), resultsOf(modelOf(value)));
    QCOMPARE(compared(value, value), QStringLiteral("100011"));
}

void tst_CVariant::streamTruncated_data()
{
    QTest::addColumn<QByteArray>("bytes");
    for (const Golden &golden : goldens())
        QTest::addRow("%s", golden.name) << golden.bytes;
}

void tst_CVariant::streamTruncated()
{
    QFETCH(const QByteArray, bytes);
    for (int size = 0; size < bytes.size(); ++size) {
        const Read read = readVariant(bytes.left(size));
        QCOMPARE(read.tag, 0);
        QVERIFY(read.status != QDataStream::Ok);
        QCOMPARE(describe(read), describe(readByQt(bytes.left(size))));
        const CVariant value = withTag(read.content, read.tag);
        QCOMPARE(resultsOf(value), resultsOf(modelOf(value)));
    }
    QCOMPARE(readVariant(bytes).status, int(QDataStream::Ok));
    QCOMPARE(describe(readVariant(bytes)), describe(readByQt(bytes)));
}

void tst_CVariant::streamContainers_data()
{
    QTest::addColumn<QVariant>("content");
    const auto add
        = [](const char *name, const QVariant &content) { QTest::addRow("%s", name) << content; };
    const QVariantList list = {1, QStringLiteral("two"), QVariant(), 3.5};
    QMultiMap<QString, QVariant> doubled;
    doubled.insert(QStringLiteral("key"), 1);
    doubled.insert(QStringLiteral("key"), list);
    doubled.insert(QStringLiteral("other"), QByteArray("bytes"));
    QVariantHash hash;
    hash.insert(QStringLiteral("key"), 1);
    hash.insert(QStringLiteral("other"), list);
    QMultiHash<QString, QVariant> doubledHash;
    doubledHash.insert(QStringLiteral("key"), 1);
    doubledHash.insert(QStringLiteral("key"), 2);
    const QVariantMap map = static_cast<const QVariantMap &>(doubled);
    const QVariant inner(5);
    add("list", list);
    add("list, empty", QVariantList());
    add("list, null", QVariant(QVariant::List));
    add("texts, null", QVariant(QVariant::StringList));
    add("bits, null", QVariant(QVariant::BitArray));
    add("list of lists", QVariantList({QVariant(list), QVariant(QVariantList({QVariant(list)}))}));
    add("list of maps", QVariantList({QVariant(map), QVariant(hash)}));
    add("list of fixed strings and a record",
        QVariantList({QVariant::fromValue(CString32(QStringLiteral("A"))),
                      QVariant::fromValue(record(5, 3, 2014, 1, 2, 3, 4))}));
    add("map with a doubled key", map);
    add("map, empty", QVariantMap());
    add("map of maps", QVariantMap({{QStringLiteral("a"), map}, {QStringLiteral("b"), hash}}));
    add("hash", hash);
    add("hash with a doubled key", QVariant(static_cast<const QVariantHash &>(doubledHash)));
    add("texts", QStringList({QStringLiteral("one"), QString(), QLatin1String("")}));
    add("texts, none", QStringList());
    add("byte arrays", QVariant::fromValue(QByteArrayList({"one", QByteArray(), ""})));
    add("QVariant of a QVariant", QVariant(QMetaType::QVariant, &inner));
    add("list of a QVariant", QVariantList({QVariant(QMetaType::QVariant, &inner)}));
    add("date-time in a time zone",
        QDateTime(QDate(2014, 3, 5), QTime(10, 20), QTimeZone("Europe/Zurich")));
    add("easing curve in a list, none", QVariantList({QVariant(QSize(1, 2))}));
    for (const Content &content : contents())
        add(content.name, content.content);
}

// Whole and cut at every length, a stream of Qt's own types gives what Qt alone reads from it.
void tst_CVariant::streamContainers()
{
    QFETCH(const QVariant, content);
    for (const int version : {QDataStream::Qt_4_6, QDataStream::Qt_5_0, QDataStream::Qt_5_15}) {
        for (const bool isLittleEndian : {false, true}) {
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out.setVersion(version);
            if (isLittleEndian)
                out.setByteOrder(QDataStream::LittleEndian);
            out << content << 6;
            for (int size = 0; size <= bytes.size(); ++size) {
                const QByteArray part = bytes.left(size);
                const Read read = readVariant(part, version, isLittleEndian);
                QCOMPARE(describe(read), describe(readByQt(part, version, isLittleEndian)));
                if (size < bytes.size())
                    continue;
                QCOMPARE(read.tag, 6);
                // After a failure too.
                constexpr auto kFailed = QDataStream::ReadCorruptData;
                QCOMPARE(describe(readVariant(part, version, isLittleEndian, kFailed)),
                         describe(readByQt(part, version, isLittleEndian, kFailed)));
                const CVariant value = withTag(read.content, 6);
                QCOMPARE(resultsOf(value), resultsOf(modelOf(value)));
            }
        }
    }
}

void tst_CVariant::streamUnknownUserType()
{
    const auto bytes = QByteArray::fromHex("00000400 00 00000008 556e6b6e6f776e00 00000006");
    const Read read = readVariant(bytes);
    QVERIFY(!read.content.isValid());
    QCOMPARE(read.tag, 6);
    QCOMPARE(read.status, int(QDataStream::ReadCorruptData));
    QCOMPARE(read.messages,
             QStringList(QStringLiteral(
                 "warning default: QVariant::load: unknown user type with name Unknown.")));
    QCOMPARE(describe(read), describe(readByQt(bytes)));
    const auto old = QByteArray::fromHex("0000007f 00 00000008 556e6b6e6f776e00 00000006");
    QCOMPARE(readVariant(old, QDataStream::Qt_4_6).tag, 6);
    QCOMPARE(describe(readVariant(old, QDataStream::Qt_4_6)),
             describe(readByQt(old, QDataStream::Qt_4_6)));
}

void tst_CVariant::streamWithoutDevice()
{
    CVariant value = 7;
    QDataStream none;
    none >> value;
    QCOMPARE(describe(value), QStringLiteral("0 invalid"));
    none << value; // does nothing
}

void tst_CVariant::streamInTransaction()
{
    const QByteArray bytes = bytesOf(withTag(QVariantList({1, 2}), 25), QDataStream::Qt_5_15)
        + bytesOf(record(5, 3, 2014, 1, 2, 3, 4), QDataStream::Qt_5_15);
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QDataStream in(&buffer);
    in.setVersion(QDataStream::Qt_5_15);
    CVariant first;
    CVariant second;
    const MessageRecorder recorder; // Qt warns of user types whose name is not yet there
    for (int size = 0; size <= bytes.size(); ++size) {
        buffer.buffer() = bytes.left(size);
        in.startTransaction();
        in >> first >> second;
        QCOMPARE(in.commitTransaction(), size == bytes.size());
    }
    QCOMPARE(contentOf(first).toList(), QVariantList({1, 2}));
    QCOMPARE(describe(second), QStringLiteral("16 NTypes::tsDateTime 040302010503de07"));
}

void tst_CVariant::streamHostile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isCorrupt");
    QTest::addColumn<int>("version");
    const auto add = [](const char *name, const QByteArray &bytes, bool isCorrupt,
                        int version = QDataStream::Qt_5_15) {
        QTest::addRow("%s", name) << bytes << isCorrupt << version;
    };
    const auto raw = [](const char *hexDigits) { return QByteArray::fromHex(hexDigits); };
    add("list of 2^32-1", raw("00000009 00 ffffffff"), false);
    add("list of 2^31", raw("00000009 00 80000000 00000002 00 00000001"), false);
    add("map of 2^32-1", raw("00000008 00 ffffffff"), false);
    add("hash of 2^32-1", raw("0000001c 00 ffffffff"), false);
    add("texts of 2^32-1", raw("0000000b 00 ffffffff"), false);
    add("byte arrays of 2^32-1", raw("00000031 00 ffffffff"), false);
    add("text of 2^32-2 bytes", raw("0000000a 00 fffffffe 0041"), false);
    add("byte array of 2^32-2", raw("0000000c 00 fffffffe 41"), false);
    add("bits of 2^31-1", raw("0000000d 00 7fffffff ff"), false);
    add("bits of 2^31", raw("0000000d 00 80000000 ff"), true);
    add("bits of 2^32-1: a negative number to Qt", raw("0000000d 00 ffffffff 00000006"), true);
    add("list of lists of 2^32-1", raw("00000009 00 00000001 00000009 00 ffffffff"), false);
    add("list of 2^32-1, by name",
        raw("00000400 00 0000000d") + QByteArray("QVariantList", 13) + raw("ffffffff"), false);
    add("type id 40000009: a list to Qt", raw("40000009 00 ffffffff"), false);
    add("type id c0000008: a map to Qt", raw("c0000008 00 ffffffff"), false);
    add("lists 100000 deep", raw("00000009 00 00000001").repeated(100000), true);
    add("maps 100000 deep", raw("00000008 00 00000001 00000000").repeated(100000), true);
    add("hashes 100000 deep", raw("0000001c 00 00000001 00000000").repeated(100000), true);
    add("QVariants 100000 deep", raw("00000029 00").repeated(100000), true);
    add("lists by name 100000 deep",
        (raw("00000400 00 0000000d") + QByteArray("QVariantList", 13) + raw("00000001"))
            .repeated(100000),
        true);
    add("easing curve", raw("0000001d 00 01 00 4141414141414141") + repeated(100, "41"), true);
    add("easing curve, type id 4000001d", raw("4000001d 00") + repeated(100, "41"), true);
    add("easing curve, by name",
        raw("00000400 00 0000000d") + QByteArray("QEasingCurve", 13) + repeated(100, "41"), true);
    // Streams of Qt 4 count types beyond 30 in another way.
    add("4.6 byte arrays of 2^32-1", raw("00000092 00 ffffffff"), false, QDataStream::Qt_4_6);
    add("4.6 QVariants 100000 deep", raw("0000008a 00").repeated(100000), true,
        QDataStream::Qt_4_6);
    add("4.6 lists by name 100000 deep",
        (raw("0000007f 00 0000000d") + QByteArray("QVariantList", 13) + raw("00000001"))
            .repeated(100000),
        true, QDataStream::Qt_4_6);
    add("4.6 easing curve", raw("0000001d 00") + repeated(100, "41"), true, QDataStream::Qt_4_6);
    QByteArray dateTime;
    QDataStream out(&dateTime, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    out << quint32{QMetaType::QDateTime} << qint8{0} << QDate(2014, 3, 5) << QTime(10, 20)
        << qint8{Qt::TimeZone} << QStringLiteral("Nowhere/Unknown");
    add("date-time in an unknown zone", dateTime + raw("00000006"), true);
    const auto inZone = [&raw](const char *zone) {
        QByteArray bytes = raw("00000010 00 0000000000256859 02376a00 03");
        QDataStream stream(&bytes, QIODevice::Append);
        stream << QString::fromLatin1(zone);
        return bytes + raw("00000006");
    };
    add("date-time in a zone of endless rules", inZone("STT5,M13.2.0,0"), true);
    add("date-time in a zone that is a file", inZone("../../../dev/stdin"), true);
    add("date-time in a zone that is an absolute file", inZone("/dev/stdin"), true);
    add("date-time in an unknown zone, by name",
        raw("00000400 00 0000000a") + QByteArray("QDateTime", 10)
            + inZone("Nowhere/Unknown").mid(5),
        true);
    add("regular expression of many brackets",
        raw("0000001b 00 00009c40") + repeated(20000, "0028") + raw("01 00 00 00000006"), true);
    add("list of 2^28 with one element", raw("00000009 00 0fffffff 00000000"), false);
}

void tst_CVariant::streamHostile()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, isCorrupt);
    QFETCH(const int, version);
    for (const bool isInList : {false, true}) {
        const QByteArray list = QByteArray::fromHex("00000009 00 00000001");
        CVariant value = 7;
        QDataStream in(isInList ? list + bytes : bytes);
        in.setVersion(version);
        in >> value;
        QCOMPARE(in.status(), isCorrupt ? QDataStream::ReadCorruptData : QDataStream::ReadPastEnd);
        QCOMPARE(resultsOf(value), resultsOf(modelOf(value)));
        const MessageRecorder recorder;
        QVERIFY(bytesOf(value, QDataStream::Qt_5_15) != "write failed");
        const CVariant copy = value;
        QCOMPARE(compared(copy, value), compared(value, value));
        QCOMPARE(recorder.messages(), QStringList());
    }
}

// 100 levels are read as Qt reads them, more are refused.
void tst_CVariant::streamNesting()
{
    const auto nested = [](int levels) {
        return QByteArray::fromHex("00000009 00 00000001").repeated(levels)
            + QByteArray::fromHex("00000002 00 00000007 00000006");
    };
    const Read read = readVariant(nested(100));
    QCOMPARE(read.status, int(QDataStream::Ok));
    QCOMPARE(describe(read), describe(readByQt(nested(100))));
    const Read refused = readVariant(nested(101));
    QCOMPARE(refused.status, int(QDataStream::ReadCorruptData));
}

// Every type that a stream may name, with contents that make no sense.
void tst_CVariant::streamJunk()
{
    std::mt19937 random(1);
    QByteArray noise(200, '\0');
    for (char &byte : noise)
        byte = static_cast<char>(random());
    for (int type = 0; type < 140; ++type) {
        for (const QByteArray &junk : {QByteArray(), QByteArray(200, '\0'), QByteArray(200, '\xFF'),
                                       QByteArray(200, '\x7F'), QByteArray(200, '\1'), noise}) {
            for (const int version : {QDataStream::Qt_4_6, QDataStream::Qt_5_15}) {
                QByteArray bytes;
                QDataStream out(&bytes, QIODevice::WriteOnly);
                out << quint32(type) << qint8{0};
                CVariant value;
                {
                    const MessageRecorder recorder; // Qt says what it cannot load or save
                    QDataStream in(bytes + junk);
                    in.setVersion(version);
                    in >> value;
                    bytesOf(value, version);
                }
                QCOMPARE(resultsOf(value), resultsOf(modelOf(value)));
            }
        }
    }
}

// The clock of the record is local time, whatever the zone is.
void tst_CVariant::otherTimeZone()
{
    const QByteArray before = qgetenv("TZ");
    QVERIFY(qputenv("TZ", "Asia/Tokyo"));
    tzset();
    const CVariant value = record(5, 3, 2014, 10, 20, 30, 0);
    const QString text = value.toStr();
    const auto parsed = CVariant::fromStr(QStringLiteral("2014-03-05T10:20:30Z"), value.type());
    const int offset = QDateTime(QDate(2014, 3, 5), QTime(0, 0)).offsetFromUtc();
    if (before.isEmpty())
        qunsetenv("TZ");
    else
        qputenv("TZ", before);
    tzset();
    QCOMPARE(offset, 9 * 3600); // the zone was in force
    QCOMPARE(text, QStringLiteral("2014-03-05T10:20:30"));
    QCOMPARE(describe(parsed), describe(value));
}

// Copies that share their content are used in several threads at the same time.
void tst_CVariant::inThreads()
{
    const QVector<Sample> shared = values();
    QStringList expected;
    for (const Sample &sample : shared)
        expected += sample.value.toStr() + sample.value.toHex();
    QVERIFY(trueInThreads([&] {
        for (int round = 0; round < 50; ++round) {
            QStringList actual;
            for (const Sample &sample : shared) {
                CVariant copy = sample.value;
                actual += copy.toStr() + copy.toHex();
                copy = CString32(actual.last());
            }
            if (actual != expected)
                return false;
        }
        return true;
    }));
}

QTEST_APPLESS_MAIN(tst_CVariant)
#include "tst_CVariant.moc"
