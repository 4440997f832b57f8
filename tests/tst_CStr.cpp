#include "CStr.h"

#include "DefaultLocale.h"
#include "InThreads.h"
#include "MessageRecorder.h"

#include <QLocale>
#include <QStringList>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

using namespace NTypes;

namespace {

static_assert(!std::is_default_constructible_v<CStr>);

// The three forms of each reader as one callable, which takes what any of them takes.
constexpr auto kReadU8
    = [](auto &&...a) -> decltype(CStr::strToU8(std::forward<decltype(a)>(a)...)) {
    return CStr::strToU8(std::forward<decltype(a)>(a)...);
};
constexpr auto kReadI8
    = [](auto &&...a) -> decltype(CStr::strToI8(std::forward<decltype(a)>(a)...)) {
    return CStr::strToI8(std::forward<decltype(a)>(a)...);
};
constexpr auto kReadU16
    = [](auto &&...a) -> decltype(CStr::strToU16(std::forward<decltype(a)>(a)...)) {
    return CStr::strToU16(std::forward<decltype(a)>(a)...);
};
constexpr auto kReadI16
    = [](auto &&...a) -> decltype(CStr::strToI16(std::forward<decltype(a)>(a)...)) {
    return CStr::strToI16(std::forward<decltype(a)>(a)...);
};
constexpr auto kReadU32
    = [](auto &&...a) -> decltype(CStr::strToU32(std::forward<decltype(a)>(a)...)) {
    return CStr::strToU32(std::forward<decltype(a)>(a)...);
};
constexpr auto kReadI32
    = [](auto &&...a) -> decltype(CStr::strToI32(std::forward<decltype(a)>(a)...)) {
    return CStr::strToI32(std::forward<decltype(a)>(a)...);
};
constexpr auto kReadU64
    = [](auto &&...a) -> decltype(CStr::strToU64(std::forward<decltype(a)>(a)...)) {
    return CStr::strToU64(std::forward<decltype(a)>(a)...);
};
constexpr auto kReadI64
    = [](auto &&...a) -> decltype(CStr::strToI64(std::forward<decltype(a)>(a)...)) {
    return CStr::strToI64(std::forward<decltype(a)>(a)...);
};
constexpr auto kReadF32
    = [](auto &&...a) -> decltype(CStr::strToF32(std::forward<decltype(a)>(a)...)) {
    return CStr::strToF32(std::forward<decltype(a)>(a)...);
};
constexpr auto kReadF64
    = [](auto &&...a) -> decltype(CStr::strToF64(std::forward<decltype(a)>(a)...)) {
    return CStr::strToF64(std::forward<decltype(a)>(a)...);
};

template <class Reader, class X>
constexpr bool kHasForms
    = std::conjunction_v<std::is_same<std::invoke_result_t<Reader, QString, X &>, bool>,
                         std::is_same<std::invoke_result_t<Reader, X, QString>, X>,
                         std::is_same<std::invoke_result_t<Reader, QString>, X>,
                         std::is_same<std::invoke_result_t<Reader, QString, bool *>, X>>;
template <class Reader, class X>
constexpr bool kHasBase = std::conjunction_v<std::is_invocable<Reader, QString, X &, int>,
                                             std::is_invocable<Reader, QString, bool *, int>>;
template <class Reader, class X>
constexpr bool kDefaultFormHasBase = std::is_invocable_v<Reader, X, QString, int>;

static_assert(kHasForms<decltype(kReadU8), unsigned char>);
static_assert(kHasForms<decltype(kReadI8), signed char>);
static_assert(kHasForms<decltype(kReadU16), unsigned short>);
static_assert(kHasForms<decltype(kReadI16), short>);
static_assert(kHasForms<decltype(kReadU32), unsigned int>);
static_assert(kHasForms<decltype(kReadI32), int>);
static_assert(kHasForms<decltype(kReadU64), unsigned long long>);
static_assert(kHasForms<decltype(kReadI64), long long>);
static_assert(kHasForms<decltype(kReadF32), float>);
static_assert(kHasForms<decltype(kReadF64), double>);
// Contract: only the unsigned default forms take a base, and no form of the floating types.
static_assert(kDefaultFormHasBase<decltype(kReadU8), unsigned char>);
static_assert(!kDefaultFormHasBase<decltype(kReadI8), signed char>);
static_assert(kDefaultFormHasBase<decltype(kReadU16), unsigned short>);
static_assert(!kDefaultFormHasBase<decltype(kReadI16), short>);
static_assert(kDefaultFormHasBase<decltype(kReadU32), unsigned int>);
static_assert(!kDefaultFormHasBase<decltype(kReadI32), int>);
static_assert(kDefaultFormHasBase<decltype(kReadU64), unsigned long long>);
static_assert(!kDefaultFormHasBase<decltype(kReadI64), long long>);
static_assert(!kDefaultFormHasBase<decltype(kReadF32), float>);
static_assert(!kDefaultFormHasBase<decltype(kReadF64), double>);
static_assert(kHasBase<decltype(kReadI8), signed char> && kHasBase<decltype(kReadI64), long long>);
static_assert(!std::is_invocable_v<decltype(kReadF32), QString, float &, int>);
static_assert(!std::is_invocable_v<decltype(kReadF32), QString, bool *, int>);
static_assert(!std::is_invocable_v<decltype(kReadF64), QString, double &, int>);
static_assert(!std::is_invocable_v<decltype(kReadF64), QString, bool *, int>);

//! An integer type with the decimal texts at its limits and one past each.
struct IntegerType
{
    ETypes type;
    const char *name;
    int width;
    bool isSigned;
    const char *min;
    const char *belowMin;
    qint64 minValue;
    const char *max;
    const char *aboveMax;
    quint64 maxValue;
};

constexpr IntegerType kIntegerTypes[] = {
    {TYPE_U8, "U8", 8, false, "0", "-1", 0, "255", "256", 0xff},
    {TYPE_I8, "I8", 8, true, "-128", "-129", -0x80, "127", "128", 0x7f},
    {TYPE_U16, "U16", 16, false, "0", "-1", 0, "65535", "65536", 0xffff},
    {TYPE_I16, "I16", 16, true, "-32768", "-32769", -0x8000, "32767", "32768", 0x7fff},
    {TYPE_U32, "U32", 32, false, "0", "-1", 0, "4294967295", "4294967296", 0xffffffff},
    {TYPE_I32, "I32", 32, true, "-2147483648", "-2147483649", -0x80000000LL, "2147483647",
     "2147483648", 0x7fffffff},
    {TYPE_U64, "U64", 64, false, "0", "-1", 0, "18446744073709551615", "18446744073709551616",
     0xffffffffffffffff},
    {TYPE_I64, "I64", 64, true, "-9223372036854775808", "-9223372036854775809",
     std::numeric_limits<qint64>::min(), "9223372036854775807", "9223372036854775808",
     0x7fffffffffffffff},
};

//! Calls \a check with a zero of the integer type \a type and with its reader.
template <class Check>
void withReader(int type, Check check)
{
    switch (type) {
    case TYPE_U8:
        return check(static_cast<unsigned char>(0), kReadU8);
    case TYPE_I8:
        return check(static_cast<signed char>(0), kReadI8);
    case TYPE_U16:
        return check(static_cast<unsigned short>(0), kReadU16);
    case TYPE_I16:
        return check(static_cast<short>(0), kReadI16);
    case TYPE_U32:
        return check(0U, kReadU32);
    case TYPE_I32:
        return check(0, kReadI32);
    case TYPE_U64:
        return check(0ULL, kReadU64);
    case TYPE_I64:
        return check(0LL, kReadI64);
    default:
        QFAIL("no integer type");
    }
}

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

void addInteger(const IntegerType &type, const char *edge, const QString &text, int base,
                bool success, quint64 bits)
{
    QTest::addRow("%s base %d, %s", type.name, base, edge)
        << static_cast<int>(type.type) << text << base << success << bits;
}

// The limits of a type in base 10, and those in base 2 and 16 as digits that follow from its width.
void addLimits(const IntegerType &type)
{
    const auto minBits = static_cast<quint64>(type.minValue);
    addInteger(type, qUtf8Printable(latin1("min ") + latin1(type.min)), latin1(type.min), 10, true,
               minBits);
    addInteger(type, qUtf8Printable(latin1("below min ") + latin1(type.belowMin)),
               latin1(type.belowMin), 10, false, 0);
    addInteger(type, qUtf8Printable(latin1("max ") + latin1(type.max)), latin1(type.max), 10, true,
               type.maxValue);
    addInteger(type, qUtf8Printable(latin1("above max ") + latin1(type.aboveMax)),
               latin1(type.aboveMax), 10, false, 0);

    const QLatin1Char zero('0');
    const QLatin1Char one('1');
    const int digits2 = type.isSigned ? type.width - 1 : type.width;
    const QString above2 = one + QString(digits2, zero);
    addInteger(type, "max", QString(digits2, one), 2, true, type.maxValue);
    addInteger(type, "above max", above2, 2, false, 0);
    const int digits16 = type.width / 4;
    const QString max16 = type.isSigned ? QLatin1Char('7') + QString(digits16 - 1, QLatin1Char('F'))
                                        : QString(digits16, QLatin1Char('F'));
    const QString above16 = type.isSigned ? QLatin1Char('8') + QString(digits16 - 1, zero)
                                          : one + QString(digits16, zero);
    addInteger(type, "max", max16, 16, true, type.maxValue);
    addInteger(type, "max in lower case", max16.toLower(), 16, true, type.maxValue);
    addInteger(type, "above max", above16, 16, false, 0);
    addInteger(type, "max with 0x", latin1("0x") + max16, 0, true, type.maxValue);
    addInteger(type, "above max with 0x", latin1("0x") + above16, 0, false, 0);
    if (type.isSigned) {
        const QLatin1Char minus('-');
        addInteger(type, "min", minus + above2, 2, true, minBits);
        addInteger(type, "below min", minus + above2.leftRef(digits2) + one, 2, false, 0);
        addInteger(type, "min", minus + above16, 16, true, minBits);
        addInteger(type, "below min", minus + above16.leftRef(digits16 - 1) + one, 16, false, 0);
        addInteger(type, "all bits set, not -1", QString(digits16, QLatin1Char('F')), 16, false, 0);
    }
}

void addCommonIntegers(const IntegerType &type)
{
    struct Number
    {
        const char *edge;
        const char *text;
        int base;
        quint64 value;
    };
    constexpr Number kNumbers[] = {
        {"0", "0", 10, 0},
        {"7", "7", 10, 7},
        {"plus sign", "+7", 10, 7},
        {"blanks around", " 7 ", 10, 7},
        {"white space around", "\t7\n", 10, 7},
        {"leading zeros", "007", 10, 7},
        {"leading zero is not octal", "010", 10, 10},
        {"8 behind a zero", "08", 10, 8},
        {"10", "10", 2, 2},
        {"10", "10", 8, 8},
        {"10", "10", 16, 16},
        {"0x10", "0x10", 16, 16},
        {"7f", "7f", 16, 127},
        {"z", "z", 36, 35},
        {"10 decimal", "10", 0, 10},
        {"010 octal", "010", 0, 8},
        {"0x10 hexadecimal", "0x10", 0, 16},
        {"0X7F hexadecimal", "0X7F", 0, 127},
        {"0", "0", 0, 0},
        // What a wider number leaves in the low bits of a narrower type is no success.
        {"2^8 + 5", "261", 10, 261},
        {"2^16 + 5", "65541", 10, 65541},
        {"2^32 + 5", "4294967301", 10, 4294967301},
        {"2^32 + 5", "100000005", 16, 4294967301},
        {"2^32 + 5 with 0x", "0x100000005", 0, 4294967301},
        {"2^32 - 5", "4294967291", 10, 4294967291},
        {"FFFFFFFF", "FFFFFFFF", 16, 4294967295},
        {"2^64 - 5", "18446744073709551611", 10, 18446744073709551611ULL},
        {"FFFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFF", 16, 18446744073709551615ULL},
    };
    for (const Number &number : kNumbers)
        addInteger(type, number.edge, latin1(number.text), number.base,
                   number.value <= type.maxValue, number.value);

    struct NegativeNumber
    {
        const char *edge;
        const char *text;
        int base;
        qint64 value;
    };
    constexpr NegativeNumber kNegativeNumbers[] = {
        {"-1", "-1", 10, -1},
        {"-1", "-1", 2, -1},
        {"-1", "-1", 16, -1},
        {"-1", "-1", 0, -1},
        {"-0x10", "-0x10", 0, -16},
        {"-(2^8) + 5", "-251", 10, -251},
        {"-(2^32) + 5", "-4294967291", 10, -4294967291},
    };
    for (const NegativeNumber &number : kNegativeNumbers)
        addInteger(type, number.edge, latin1(number.text), number.base,
                   type.isSigned && number.value >= type.minValue,
                   static_cast<quint64>(number.value));

    struct NoNumber
    {
        const char *edge;
        const char *text;
        int base;
    };
    constexpr NoNumber kNoNumbers[] = {
        {"empty", "", 10},
        {"empty", "", 2},
        {"empty", "", 16},
        {"empty", "", 0},
        {"blank", " ", 10},
        {"blanks", "   ", 0},
        {"minus only", "-", 10},
        {"minus only", "-", 16},
        {"minus only", "-", 0},
        {"plus only", "+", 10},
        {"plus only", "+", 0},
        {"two signs", "--1", 10},
        {"two unlike signs", "+-1", 10},
        {"blank behind the sign", "- 1", 10},
        {"trailing letter", "12x", 10},
        {"trailing unit", "12 mA", 10},
        {"leading letter", "x12", 10},
        {"blank inside", "1 2", 10},
        {"decimal point", "1.0", 10},
        {"trailing point", "1.", 10},
        {"group separator", "1,000", 10},
        {"exponent", "1e1", 10},
        {"0x", "0x10", 10},
        {"hexadecimal digit", "A", 10},
        {"digit 2", "2", 2},
        {"digit 8", "8", 8},
        {"letter G", "G", 16},
        {"0x alone", "0x", 16},
        {"0x alone", "0x", 0},
        {"8 behind an octal zero", "08", 0},
        {"hexadecimal digit without 0x", "A", 0},
        {"word", "one", 10},
        {"2^64 + 5", "18446744073709551621", 10},
        {"26 nines", "99999999999999999999999999", 10},
        {"-26 nines", "-99999999999999999999999999", 10},
    };
    for (const NoNumber &text : kNoNumbers)
        addInteger(type, text.edge, latin1(text.text), text.base, false, 0);
    addInteger(type, "null", QString(), 10, false, 0);
    addInteger(type, "trailing letter that is not ASCII", QStringLiteral("12\u00b5"), 10, false, 0);
}

//! Equal, the sign of zero included; NaN equals NaN.
template <class X>
bool isSame(X left, X right)
{
    return std::isnan(left) ? std::isnan(right)
                            : left == right && std::signbit(left) == std::signbit(right);
}

template <class Reader, class X>
void checkFloating(Reader read, const QString &text, bool success, X number)
{
    const X before = static_cast<X>(55.5);
    X value = before;
    QCOMPARE(read(text, value), success);
    QVERIFY(isSame(value, success ? number : before));
    QVERIFY(isSame(read(before, text), success ? number : before));
    const X onFailure = 0;
    bool ok = !success;
    QVERIFY(isSame(read(text, &ok), success ? number : onFailure));
    QCOMPARE(ok, success);
    QVERIFY(isSame(read(text, nullptr), success ? number : onFailure));
    QVERIFY(isSame(read(text), success ? number : onFailure));
}

void floatingRows()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isF32");
    QTest::addColumn<float>("f32");
    QTest::addColumn<bool>("isF64");
    QTest::addColumn<double>("f64");

    struct Number
    {
        const char *edge;
        const char *text;
        double value; // exact in both types
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const Number numbers[] = {
        {"0", "0", 0.0},
        {"-0", "-0", -0.0},
        {"1.5", "1.5", 1.5},
        {"-1.5", "-1.5", -1.5},
        {"plus sign", "+1.5", 1.5},
        {"integer", "42", 42.0},
        {"exponent", "15e-1", 1.5},
        {"upper case exponent", "0.15E1", 1.5},
        {"no digit before the point", ".5", 0.5},
        {"no digit behind the point", "5.", 5.0},
        {"leading zeros", "007", 7.0},
        {"blanks around", " 1.5 ", 1.5},
        {"infinity", "inf", infinity},
        {"negative infinity", "-inf", -infinity},
        {"not a number", "nan", std::numeric_limits<double>::quiet_NaN()},
    };
    for (const Number &number : numbers)
        QTest::newRow(number.edge) << latin1(number.text) << true
                                   << static_cast<float>(number.value) << true << number.value;

    struct NoNumber
    {
        const char *edge;
        const char *text;
    };
    constexpr NoNumber kNoNumbers[] = {
        {"empty", ""},
        {"blank", " "},
        {"sign only", "-"},
        {"plus only", "+"},
        {"point only", "."},
        {"exponent only", "e5"},
        {"exponent without digits", "1e"},
        {"trailing letter", "1.5x"},
        {"trailing unit", "1.5 V"},
        {"leading letter", "x1.5"},
        {"blank inside", "1 5"},
        {"two points", "1.5.1"},
        {"decimal comma", "1,5"},
        {"two signs", "--1"},
        {"hexadecimal", "0x10"},
        {"word", "one"},
    };
    for (const NoNumber &text : kNoNumbers)
        QTest::newRow(text.edge) << latin1(text.text) << false << 0.0F << false << 0.0;
    QTest::newRow("null") << QString() << false << 0.0F << false << 0.0;

    using F32 = std::numeric_limits<float>;
    using F64 = std::numeric_limits<double>;
    QTest::newRow("F32 max") << latin1("3.4028234663852886e38") << true << F32::max() << true
                             << static_cast<double>(F32::max());
    QTest::newRow("F32 lowest") << latin1("-3.4028234663852886e38") << true << F32::lowest() << true
                                << static_cast<double>(F32::lowest());
    QTest::newRow("F32 past max") << latin1("3.5e38") << false << 0.0F << true << 3.5e38;
    QTest::newRow("F32 past lowest") << latin1("-3.5e38") << false << 0.0F << true << -3.5e38;
    QTest::newRow("F32 smallest normal") << latin1("1.1754943508222875e-38") << true << F32::min()
                                         << true << static_cast<double>(F32::min());
    QTest::newRow("F32 smallest") << latin1("1.401298464324817e-45") << true << F32::denorm_min()
                                  << true << static_cast<double>(F32::denorm_min());
    QTest::newRow("F64 max") << latin1("1.7976931348623157e308") << false << 0.0F << true
                             << F64::max();
    QTest::newRow("F64 lowest") << latin1("-1.7976931348623157e308") << false << 0.0F << true
                                << F64::lowest();
    QTest::newRow("F64 past max") << latin1("1.8e308") << false << 0.0F << false << 0.0;
    QTest::newRow("F64 past lowest") << latin1("-1.8e308") << false << 0.0F << false << 0.0;
    QTest::newRow("exponent past both") << latin1("1e999") << false << 0.0F << false << 0.0;
    QTest::newRow("negative, exponent past both")
        << latin1("-1e999") << false << 0.0F << false << 0.0;
    QTest::newRow("0.1, rounded once") << latin1("0.1") << true << 0.1F << true << 0.1;
}

QByteArray bytesOfHex(const char *hex)
{
    return QByteArray::fromHex(hex);
}

//! A copy of \a data whose bytes lie at an odd address and end where their memory ends.
class OddBytes
{
public:
    explicit OddBytes(const QByteArray &data)
        : mMemory(new char[static_cast<std::size_t>(data.size()) + 1])
        , mData(QByteArray::fromRawData(mMemory.get() + 1, data.size()))
    {
        std::copy(data.begin(), data.end(), mMemory.get() + 1);
    }
    const QByteArray &data() const { return mData; }

private:
    std::unique_ptr<char[]> mMemory;
    QByteArray mData;
};

//! The units of \a data in host byte order, one by one up to the first zero unit.
QString plainText(const QByteArray &data)
{
    QString text;
    for (int i = 0; i + 2 <= data.size(); i += 2) {
        ushort unit = 0;
        std::memcpy(&unit, data.constData() + i, sizeof(unit));
        if (unit == 0)
            break;
        text += QChar(unit);
    }
    return text;
}

/*!
    Shortens \a text as cutString() has to, in the plain way: each blank found from the left is
    marked in a working copy, so that the next search finds the next one.
*/
QString plainlyCut(const QString &text, unsigned int maxLength, bool &cut, bool atWord)
{
    cut = false;
    if (maxLength >= static_cast<unsigned int>(text.length()))
        return text;
    cut = true;
    const int n = maxLength < 4 ? 0 : static_cast<int>(maxLength - 4);
    int length = n;
    if (atWord) {
        QString working = text;
        int lastFound = -1;
        for (;;) {
            const int blank = working.indexOf(QLatin1Char(' '));
            if (blank == -1 || blank >= n)
                break;
            lastFound = blank;
            working[blank] = QLatin1Char('x');
        }
        if (lastFound > 0)
            length = lastFound;
    }
    return text.left(length) + QLatin1String(" ...");
}

//! Text \a index of those with \a length units out of the letter a, a blank and a tab.
QString textOfIndex(int index, int length)
{
    const char kUnits[] = {'a', ' ', '\t'};
    QString text;
    for (int i = 0; i < length; ++i, index /= 3)
        text += QLatin1Char(kUnits[index % 3]);
    return text;
}

} // namespace

class tst_CStr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readInteger_data();
    void readInteger();
    void baseIs10ByDefault_data();
    void baseIs10ByDefault();
    void defaultFormOfUnsignedTakesBase();
    void defaultFormOfSignedReadsBase10_data();
    void defaultFormOfSignedReadsBase10();
    void readF32_data() { floatingRows(); }
    void readF32();
    void readF64_data() { floatingRows(); }
    void readF64();

    void fixPointToStr_data();
    void fixPointToStr();
    void strToFixPoint_data();
    void strToFixPoint();
    void fixPointRoundTrip();

    void revisionToString_data();
    void revisionToString();
    void shortRevisionToString_data();
    void shortRevisionToString();
    void stringToRevision_data();
    void stringToRevision();
    void revisionRoundTrip();
    void splitStringAtDot_data();
    void splitStringAtDot();

    void serialToString_data();
    void serialToString();
    void memSizeToString_data();
    void memSizeToString();

    void cutString_data();
    void cutString();
    void cutStringKeepsNull();
    void cutStringAgainstPlainWay_data();
    void cutStringAgainstPlainWay();
    void cutStringOfAMillionBlanks();

    void doubleToString_data();
    void doubleToString();
    void doubleToStringFollowsTheDefault();

    void indexOfAmpersand_data();
    void indexOfAmpersand();

    void toUtf16_data();
    void toUtf16();
    void toUtf16OfNoBuffer_data();
    void toUtf16OfNoBuffer();
    void fromUtf16Buffer_data();
    void fromUtf16Buffer();
    void fromUtf16OfNoBuffer_data();
    void fromUtf16OfNoBuffer();
    void fromUtf16Bytes_data();
    void fromUtf16Bytes();
    void fromUtf16BytesAgainstPlainWay();

    void nTypeToStr_data();
    void nTypeToStr();
    void nTypeToStrOfNoType_data();
    void nTypeToStrOfNoType();

    void selectionValues_data();
    void selectionValues();

    void independentOfTheLocale_data();
    void independentOfTheLocale();
    void noMessages();
    void threads();
};

void tst_CStr::readInteger_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("base");
    QTest::addColumn<bool>("success");
    QTest::addColumn<quint64>("bits");
    for (const IntegerType &type : kIntegerTypes) {
        addLimits(type);
        addCommonIntegers(type);
    }
}

void tst_CStr::readInteger()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(int, base);
    QFETCH(bool, success);
    QFETCH(quint64, bits);
    withReader(type, [&](auto zero, auto read) {
        using X = decltype(zero);
        const X number = static_cast<X>(bits);
        const X before = 55;
        X value = before;
        QCOMPARE(read(text, value, base), success);
        QCOMPARE(value, success ? number : before);
        bool ok = !success;
        QCOMPARE(read(text, &ok, base), success ? number : zero);
        QCOMPARE(ok, success);
        QCOMPARE(read(text, nullptr, base), success ? number : zero);
        if constexpr (kDefaultFormHasBase<decltype(read), X>)
            QCOMPARE(read(before, text, base), success ? number : before);
        else if (base == 10)
            QCOMPARE(read(before, text), success ? number : before);
    });
}

void tst_CStr::baseIs10ByDefault_data()
{
    QTest::addColumn<int>("type");
    for (const IntegerType &type : kIntegerTypes)
        QTest::newRow(type.name) << static_cast<int>(type.type);
}

void tst_CStr::baseIs10ByDefault()
{
    QFETCH(int, type);
    const QString text = QStringLiteral("010");
    const QString hex = QStringLiteral("0x10");
    withReader(type, [&](auto zero, auto read) {
        using X = decltype(zero);
        const X before = 55;
        const X ten = 10;
        X value = before;
        QVERIFY(read(text, value));
        QCOMPARE(value, ten);
        QVERIFY(!read(hex, value));
        QCOMPARE(value, ten);
        QCOMPARE(read(before, text), ten);
        QCOMPARE(read(before, hex), before);
        QCOMPARE(read(text), ten);
        QCOMPARE(read(hex), zero);
        bool ok = false;
        QCOMPARE(read(text, &ok), ten);
        QVERIFY(ok);
        QCOMPARE(read(hex, &ok), zero);
        QVERIFY(!ok);
    });
}

void tst_CStr::defaultFormOfUnsignedTakesBase()
{
    const QString text = QStringLiteral("10");
    QCOMPARE(CStr::strToU8(static_cast<unsigned char>(55), text, 16),
             static_cast<unsigned char>(16));
    QCOMPARE(CStr::strToU16(static_cast<unsigned short>(55), text, 16),
             static_cast<unsigned short>(16));
    QCOMPARE(CStr::strToU32(55U, text, 16), 16U);
    QCOMPARE(CStr::strToU64(55ULL, text, 16), 16ULL);
}

void tst_CStr::defaultFormOfSignedReadsBase10_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("success");
    QTest::addColumn<int>("number");
    QTest::newRow("10 is ten") << QStringLiteral("10") << true << 10;
    QTest::newRow("010 is ten") << QStringLiteral("010") << true << 10;
    QTest::newRow("-11") << QStringLiteral("-11") << true << -11;
    QTest::newRow("7F") << QStringLiteral("7F") << false << 0;
    QTest::newRow("0x7F") << QStringLiteral("0x7F") << false << 0;
}

void tst_CStr::defaultFormOfSignedReadsBase10()
{
    QFETCH(QString, text);
    QFETCH(bool, success);
    QFETCH(int, number);
    const int expected = success ? number : 55;
    QCOMPARE(CStr::strToI8(static_cast<signed char>(55), text), static_cast<signed char>(expected));
    QCOMPARE(CStr::strToI16(static_cast<short>(55), text), static_cast<short>(expected));
    QCOMPARE(CStr::strToI32(55, text), expected);
    QCOMPARE(CStr::strToI64(55LL, text), static_cast<long long>(expected));
}

void tst_CStr::readF32()
{
    QFETCH(QString, text);
    QFETCH(bool, isF32);
    QFETCH(float, f32);
    checkFloating(kReadF32, text, isF32, f32);
}

void tst_CStr::readF64()
{
    QFETCH(QString, text);
    QFETCH(bool, isF64);
    QFETCH(double, f64);
    checkFloating(kReadF64, text, isF64, f64);
}

void tst_CStr::fixPointToStr_data()
{
    QTest::addColumn<unsigned int>("value");
    QTest::addColumn<unsigned int>("fracBits");
    QTest::addColumn<QChar>("separator");
    QTest::addColumn<QString>("text");
    const QChar point = QLatin1Char('.');
    const unsigned int all = 0xffffffffU;
    QTest::newRow("0x305, 8 bits") << 0x305U << 8U << point << latin1("3.5");
    QTest::newRow("0, 8 bits") << 0U << 8U << point << latin1("0.0");
    QTest::newRow("0x3ff, the count of all 8 bits") << 0x3ffU << 8U << point << latin1("3.255");
    QTest::newRow("all bits, 8 bits") << all << 8U << point << latin1("16777215.255");
    QTest::newRow("all bits, 16 bits") << all << 16U << point << latin1("65535.65535");
    QTest::newRow("all bits, 0 bits") << all << 0U << point << latin1("4294967295.0");
    QTest::newRow("all bits, 1 bit") << all << 1U << point << latin1("2147483647.1");
    QTest::newRow("all bits, 31 bits") << all << 31U << point << latin1("1.2147483647");
    QTest::newRow("all bits, 32 bits") << all << 32U << point << latin1("0.4294967295");
    QTest::newRow("all bits, 33 bits") << all << 33U << point << latin1("0.4294967295");
    QTest::newRow("5, 32 bits") << 5U << 32U << point << latin1("0.5");
    QTest::newRow("0x305, 40 bits, 8 modulo 32") << 0x305U << 40U << point << latin1("0.773");
    QTest::newRow("0x305, 64 bits") << 0x305U << 64U << point << latin1("0.773");
    QTest::newRow("0x305, the most bits") << 0x305U << all << point << latin1("0.773");
    QTest::newRow("comma") << 0x305U << 8U << QChar(QLatin1Char(',')) << latin1("3,5");
    QTest::newRow("percent sign") << 0x305U << 8U << QChar(QLatin1Char('%')) << latin1("3%5");
    QTest::newRow("digit") << 0x305U << 8U << QChar(QLatin1Char('1')) << latin1("315");
    QTest::newRow("blank") << 0x305U << 8U << QChar(QLatin1Char(' ')) << latin1("3 5");
    QTest::newRow("not ASCII") << 0x305U << 8U << QChar(0x20ac) << QStringLiteral("3\u20ac5");
    QTest::newRow("zero unit") << 0x305U << 8U << QChar(0)
                               << QString(latin1("3") + QChar(0) + latin1("5"));
}

void tst_CStr::fixPointToStr()
{
    QFETCH(unsigned int, value);
    QFETCH(unsigned int, fracBits);
    QFETCH(QChar, separator);
    QTEST(CStr::fixPointToStr(value, fracBits, separator), "text");
}

void tst_CStr::strToFixPoint_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<unsigned int>("fracBits");
    QTest::addColumn<QChar>("separator");
    QTest::addColumn<bool>("success");
    QTest::addColumn<unsigned int>("value");
    const QChar point = QLatin1Char('.');
    const unsigned int all = 0xffffffffU;
    QTest::newRow("3.5") << latin1("3.5") << 8U << point << true << 0x305U;
    QTest::newRow("0.0") << latin1("0.0") << 8U << point << true << 0U;
    QTest::newRow("3.5.1, three pieces") << latin1("3.5.1") << 8U << point << false << 0U;
    QTest::newRow("3.5., three pieces") << latin1("3.5.") << 8U << point << false << 0U;
    QTest::newRow("3..5, three pieces") << latin1("3..5") << 8U << point << false << 0U;
    QTest::newRow("35, one piece") << latin1("35") << 8U << point << false << 0U;
    QTest::newRow("empty, one piece") << latin1("") << 8U << point << false << 0U;
    QTest::newRow("null") << QString() << 8U << point << false << 0U;
    QTest::newRow("3.x, first kept") << latin1("3.x") << 8U << point << false << 0x300U;
    QTest::newRow("3., first kept") << latin1("3.") << 8U << point << false << 0x300U;
    QTest::newRow("3.-5, first kept") << latin1("3.-5") << 8U << point << false << 0x300U;
    QTest::newRow("3.0x5, first kept") << latin1("3.0x5") << 8U << point << false << 0x300U;
    QTest::newRow("x.5") << latin1("x.5") << 8U << point << false << 0U;
    QTest::newRow(".5") << latin1(".5") << 8U << point << false << 0U;
    QTest::newRow(".") << latin1(".") << 8U << point << false << 0U;
    QTest::newRow("-3.5") << latin1("-3.5") << 8U << point << false << 0U;
    QTest::newRow("0x3.5") << latin1("0x3.5") << 8U << point << false << 0U;
    QTest::newRow("blanks around the pieces") << latin1(" 3 . 5 ") << 8U << point << true << 0x305U;
    QTest::newRow("3.005, no decimal fraction") << latin1("3.005") << 8U << point << true << 0x305U;
    QTest::newRow("3.255, all bits") << latin1("3.255") << 8U << point << true << 0x3ffU;
    QTest::newRow("3.256, masked") << latin1("3.256") << 8U << point << true << 0x300U;
    QTest::newRow("3.511, masked") << latin1("3.511") << 8U << point << true << 0x3ffU;
    QTest::newRow("first shifted out") << latin1("16777216.1") << 8U << point << true << 1U;
    QTest::newRow("first max") << latin1("4294967295.0") << 8U << point << true << 0xffffff00U;
    QTest::newRow("first above max") << latin1("4294967296.1") << 8U << point << false << 0U;
    QTest::newRow("first 2^32 + 5") << latin1("4294967301.1") << 8U << point << false << 0U;
    QTest::newRow("second max, masked") << latin1("3.4294967295") << 8U << point << true << 0x3ffU;
    QTest::newRow("second above max") << latin1("3.4294967296") << 8U << point << false << 0x300U;
    QTest::newRow("0 bits") << latin1("5.7") << 0U << point << true << 5U;
    QTest::newRow("1 bit") << latin1("2147483647.1") << 1U << point << true << all;
    QTest::newRow("31 bits") << latin1("1.2147483647") << 31U << point << true << all;
    QTest::newRow("31 bits, first shifted out") << latin1("2.1") << 31U << point << true << 1U;
    QTest::newRow("32 bits") << latin1("7.9") << 32U << point << true << 9U;
    QTest::newRow("32 bits, second max") << latin1("7.4294967295") << 32U << point << true << all;
    QTest::newRow("32 bits, no second") << latin1("7.x") << 32U << point << false << 0U;
    QTest::newRow("32 bits, no first") << latin1("x.9") << 32U << point << false << 0U;
    QTest::newRow("33 bits") << latin1("7.9") << 33U << point << true << 9U;
    QTest::newRow("40 bits, 8 modulo 32") << latin1("7.300") << 40U << point << true << 300U;
    QTest::newRow("64 bits") << latin1("7.300") << 64U << point << true << 300U;
    QTest::newRow("the most bits") << latin1("7.300") << all << point << true << 300U;
    QTest::newRow("comma") << latin1("3,5") << 8U << QChar(QLatin1Char(',')) << true << 0x305U;
    QTest::newRow("point for a comma")
        << latin1("3.5") << 8U << QChar(QLatin1Char(',')) << false << 0U;
    QTest::newRow("blank") << latin1("3 5") << 8U << QChar(QLatin1Char(' ')) << true << 0x305U;
    QTest::newRow("separators are case sensitive")
        << latin1("3X5") << 8U << QChar(QLatin1Char('x')) << false << 0U;
    QTest::newRow("not ASCII") << QStringLiteral("3\u20ac5") << 8U << QChar(0x20ac) << true
                               << 0x305U;
}

void tst_CStr::strToFixPoint()
{
    QFETCH(QString, text);
    QFETCH(unsigned int, fracBits);
    QFETCH(QChar, separator);
    QFETCH(bool, success);
    QFETCH(unsigned int, value);
    bool ok = !success;
    QCOMPARE(CStr::strToFixPoint(text, &ok, fracBits, separator), value);
    QCOMPARE(ok, success);
    QCOMPARE(CStr::strToFixPoint(text, nullptr, fracBits, separator), value);
}

void tst_CStr::fixPointRoundTrip()
{
    const QChar point = QLatin1Char('.');
    for (unsigned int fracBits = 0; fracBits <= 40; ++fracBits) {
        for (const unsigned int value : {0U, 1U, 0x305U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
            bool ok = false;
            const QString text = CStr::fixPointToStr(value, fracBits, point);
            QCOMPARE(CStr::strToFixPoint(text, &ok, fracBits, point), value);
            QVERIFY(ok);
        }
    }
}

void tst_CStr::revisionToString_data()
{
    QTest::addColumn<unsigned int>("revision");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0U << latin1("0.000");
    QTest::newRow("minor 5") << 0x00010005U << latin1("1.005");
    QTest::newRow("minor 9, last with two zeros") << 0x00010009U << latin1("1.009");
    QTest::newRow("minor 10") << 0x0001000aU << latin1("1.010");
    QTest::newRow("minor 99, last with one zero") << 0x00010063U << latin1("1.099");
    QTest::newRow("minor 100") << 0x00010064U << latin1("1.100");
    QTest::newRow("minor 123") << 0x0002007bU << latin1("2.123");
    QTest::newRow("minor 999") << 0x000203e7U << latin1("2.999");
    QTest::newRow("minor 1234") << 0x000204d2U << latin1("2.1234");
    QTest::newRow("major 10 stays as it is") << 0x000a0001U << latin1("10.001");
    QTest::newRow("major 0x8000") << 0x80000000U << latin1("32768.000");
    QTest::newRow("max") << 0xffffffffU << latin1("65535.65535");
}

void tst_CStr::revisionToString()
{
    QFETCH(unsigned int, revision);
    QTEST(CStr::revisionToString(revision), "text");
}

void tst_CStr::shortRevisionToString_data()
{
    QTest::addColumn<unsigned short>("revision");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, unsigned int revision, const char *text) {
        QTest::newRow(name) << static_cast<unsigned short>(revision) << latin1(text);
    };
    row("0", 0, "0.00");
    row("minor 5", 0x0105, "1.05");
    row("minor 9, last with a zero", 0x0109, "1.09");
    row("minor 10", 0x010a, "1.10");
    row("minor 99", 0x0163, "1.99");
    row("minor 100", 0x0164, "1.100");
    row("major 10 stays as it is", 0x0a01, "10.01");
    row("major 0x80", 0x8000, "128.00");
    row("max", 0xffff, "255.255");
}

void tst_CStr::shortRevisionToString()
{
    QFETCH(unsigned short, revision);
    QTEST(CStr::revisionToString(revision), "text");
}

void tst_CStr::stringToRevision_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("is32");
    QTest::addColumn<unsigned int>("revision32");
    QTest::addColumn<bool>("is16");
    QTest::addColumn<unsigned int>("revision16");
    const auto both = [](const char *text, unsigned int revision32, unsigned int revision16) {
        QTest::newRow(text) << latin1(text) << true << revision32 << true << revision16;
    };
    const auto only32 = [](const char *text, unsigned int revision32) {
        QTest::newRow(text) << latin1(text) << true << revision32 << false << 0U;
    };
    const auto none = [](const char *name, const char *text) {
        QTest::newRow(name) << latin1(text) << false << 0U << false << 0U;
    };
    both("0", 0, 0);
    both("0.0", 0, 0);
    both("1.5", 0x00010005, 0x0105);
    both("1.005", 0x00010005, 0x0105);
    both("1.05", 0x00010005, 0x0105);
    both("1.50", 0x00010032, 0x0132);
    both("7", 0x00070000, 0x0700);
    both("0.1", 1, 1);
    both(" 1 . 5 ", 0x00010005, 0x0105);
    both("255.255", 0x00ff00ff, 0xffff);
    only32("1.256", 0x00010100);
    only32("256.0", 0x01000000);
    only32("256", 0x01000000);
    only32("32768.0", 0x80000000);
    only32("65535.65535", 0xffffffff);
    none("65536.0, major above max", "65536.0");
    none("0.65536, minor above max", "0.65536");
    none("-1.1, negative major", "-1.1");
    none("1.-1, negative minor", "1.-1");
    none("-65535.0, 1 in 16 bits", "-65535.0");
    none("2147483647.0", "2147483647.0");
    none("2147483648.0, past 32 bits", "2147483648.0");
    none("4294967297.5, 1 in 32 bits", "4294967297.5");
    none("1.4294967301, 5 in 32 bits", "1.4294967301");
    none("-4294967295.0, 1 in 32 bits", "-4294967295.0");
    none("18446744073709551617.0, 1 in 64 bits", "18446744073709551617.0");
    none("1.2.3", "1.2.3");
    none("1..5", "1..5");
    none("1.5.", "1.5.");
    none("empty", "");
    none("blank", " ");
    none("point only", ".");
    none("1., no minor", "1.");
    none(".5, no major", ".5");
    none("x", "x");
    none("x.5", "x.5");
    none("1.x", "1.x");
    none("1.5x, trailing letter", "1.5x");
    none("1,5", "1,5");
    none("0x1.5", "0x1.5");
    none("V1.5", "V1.5");
    QTest::newRow("null") << QString() << false << 0U << false << 0U;
}

void tst_CStr::stringToRevision()
{
    QFETCH(QString, text);
    QFETCH(bool, is32);
    QFETCH(unsigned int, revision32);
    QFETCH(bool, is16);
    QFETCH(unsigned int, revision16);
    unsigned int revision = 0xdeadbeefU;
    QCOMPARE(CStr::stringToRevision(text, revision), is32);
    QCOMPARE(revision, is32 ? revision32 : 0xdeadbeefU);
    unsigned short shortRevision = 0xbeef;
    QCOMPARE(CStr::stringToRevision(text, shortRevision), is16);
    QCOMPARE(static_cast<unsigned int>(shortRevision), is16 ? revision16 : 0xbeefU);
}

void tst_CStr::revisionRoundTrip()
{
    for (unsigned int low = 0; low <= 0xffff; ++low) {
        const unsigned int revision = 0xfedc0000U | low;
        unsigned int back = ~revision;
        QVERIFY(CStr::stringToRevision(CStr::revisionToString(revision), back));
        QCOMPARE(back, revision);
        const auto shortRevision = static_cast<unsigned short>(low);
        auto shortBack = static_cast<unsigned short>(~low);
        QVERIFY(CStr::stringToRevision(CStr::revisionToString(shortRevision), shortBack));
        QCOMPARE(shortBack, shortRevision);
    }
}

void tst_CStr::splitStringAtDot_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("success");
    QTest::addColumn<int>("major");
    QTest::addColumn<int>("minor");
    const int untouchedMajor = 77;
    const int untouchedMinor = 88;
    QTest::newRow("1.5") << latin1("1.5") << true << 1 << 5;
    QTest::newRow("1.005") << latin1("1.005") << true << 1 << 5;
    QTest::newRow("7, one piece") << latin1("7") << true << 7 << 0;
    QTest::newRow("-1.-2") << latin1("-1.-2") << true << -1 << -2;
    QTest::newRow("limits") << latin1("2147483647.-2147483648") << true
                            << std::numeric_limits<int>::max() << std::numeric_limits<int>::min();
    QTest::newRow("blanks around the pieces") << latin1(" 1 . 5 ") << true << 1 << 5;
    QTest::newRow("1.x, minor is no number") << latin1("1.x") << false << 1 << 0;
    QTest::newRow("1., minor is empty") << latin1("1.") << false << 1 << 0;
    QTest::newRow("1.4294967301, 5 in 32 bits") << latin1("1.4294967301") << false << 1 << 0;
    QTest::newRow("1.2147483648") << latin1("1.2147483648") << false << 1 << 0;
    QTest::newRow("x.5, major is no number") << latin1("x.5") << false << 0 << 0;
    QTest::newRow(".5, major is empty") << latin1(".5") << false << 0 << 0;
    QTest::newRow(". alone") << latin1(".") << false << 0 << 0;
    QTest::newRow("4294967297.5, 1 in 32 bits") << latin1("4294967297.5") << false << 0 << 0;
    QTest::newRow("2147483648.5") << latin1("2147483648.5") << false << 0 << 0;
    QTest::newRow("-2147483649") << latin1("-2147483649") << false << 0 << 0;
    QTest::newRow("0x1.5, base 10") << latin1("0x1.5") << false << 0 << 0;
    QTest::newRow("empty, one empty piece") << latin1("") << false << 0 << 0;
    QTest::newRow("null, one empty piece") << QString() << false << 0 << 0;
    QTest::newRow("1.2.3") << latin1("1.2.3") << false << untouchedMajor << untouchedMinor;
    QTest::newRow("1..5") << latin1("1..5") << false << untouchedMajor << untouchedMinor;
    QTest::newRow("..") << latin1("..") << false << untouchedMajor << untouchedMinor;
    QTest::newRow("1.2.3.4") << latin1("1.2.3.4") << false << untouchedMajor << untouchedMinor;
}

void tst_CStr::splitStringAtDot()
{
    QFETCH(QString, text);
    int splitMajor = 77;
    int splitMinor = 88;
    QTEST(CStr::_splitStringAtDot(text, splitMajor, splitMinor), "success");
    QTEST(splitMajor, "major");
    QTEST(splitMinor, "minor");
}

void tst_CStr::serialToString_data()
{
    QTest::addColumn<unsigned int>("serial");
    QTest::addColumn<QString>("text");
    QTest::newRow("1 digit, 0") << 0U << latin1("0");
    QTest::newRow("1 digit, 7") << 7U << latin1("7");
    QTest::newRow("2 digits") << 12U << latin1("1 2");
    QTest::newRow("3 digits") << 123U << latin1("1 23");
    QTest::newRow("4 digits") << 1234U << latin1("1 234");
    QTest::newRow("5 digits") << 12345U << latin1("1 234 5");
    QTest::newRow("6 digits") << 123456U << latin1("1 234 56");
    QTest::newRow("7 digits") << 1234567U << latin1("1 234 567");
    QTest::newRow("8 digits") << 12345678U << latin1("1 234 567 8");
    QTest::newRow("9 digits") << 123456789U << latin1("1 234 567 89");
    QTest::newRow("10 digits") << 1234567890U << latin1("1 234 567 890");
    QTest::newRow("2^31") << 0x80000000U << latin1("2 147 483 648");
    QTest::newRow("max") << 0xffffffffU << latin1("4 294 967 295");
}

void tst_CStr::serialToString()
{
    QFETCH(unsigned int, serial);
    QTEST(CStr::serialToString(serial), "text");
}

void tst_CStr::memSizeToString_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, qint64 bytes, const char *text) {
        QTest::newRow(name) << bytes << latin1(text);
    };
    const qint64 one = 1;
    row("0", 0, "0 Byte");
    row("1", 1, "1 Byte");
    row("1024, less than ten KiB", 1024, "1024 Byte");
    row("10239, last in Byte", 10239, "10239 Byte");
    row("-1", -1, "-1 Byte");
    row("-10240, negative", -10240, "-10240 Byte");
    row("-2^40, negative", -(one << 40), "-1099511627776 Byte");
    row("min", std::numeric_limits<qint64>::min(), "-9223372036854775808 Byte");
    row("10240, first in KiB", 10240, "10.0 KiB");
    row("10291, 10.0498 KiB", 10291, "10.0 KiB");
    row("10292, 10.0508 KiB", 10292, "10.1 KiB");
    row("10496, the tie 10.25 KiB goes up", 10496, "10.3 KiB");
    row("11008, the tie 10.75 KiB goes up", 11008, "10.8 KiB");
    row("1536000", 1536000, "1500.0 KiB");
    row("2^20, less than ten MiB", one << 20, "1024.0 KiB");
    row("10 * 2^20 - 1, last in KiB", 10 * (one << 20) - 1, "10240.0 KiB");
    row("10 * 2^20, first in MiB", 10 * (one << 20), "10.0 MiB");
    row("10.25 * 2^20, a tie", 41 * (one << 18), "10.3 MiB");
    row("2^30, less than ten GiB", one << 30, "1024.0 MiB");
    row("2^31", one << 31, "2048.0 MiB");
    row("2^32", one << 32, "4096.0 MiB");
    row("10 * 2^30 - 1, last in MiB", 10 * (one << 30) - 1, "10240.0 MiB");
    row("10 * 2^30, first in GiB", 10 * (one << 30), "10.0 GiB");
    row("10 * 2^40 - 1, last in GiB", 10 * (one << 40) - 1, "10240.0 GiB");
    row("10 * 2^40, first in TiB", 10 * (one << 40), "10.0 TiB");
    row("10.25 * 2^40, a tie", 41 * (one << 38), "10.3 TiB");
    row("10 * 2^50 - 1, last in TiB", 10 * (one << 50) - 1, "10240.0 TiB");
    row("10 * 2^50, first in PiB", 10 * (one << 50), "10 PiB");
    row("11 * 2^50 - 1, PiB cut down", 11 * (one << 50) - 1, "10 PiB");
    row("2^60", one << 60, "1024 PiB");
    row("max", std::numeric_limits<qint64>::max(), "8191 PiB");
}

void tst_CStr::memSizeToString()
{
    QFETCH(qint64, bytes);
    QTEST(CStr::memSizeToString(bytes), "text");
}

void tst_CStr::cutString_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<unsigned int>("maxLength");
    QTest::addColumn<bool>("atWord");
    QTest::addColumn<bool>("cut");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, const QString &text, unsigned int maxLength, bool atWord,
                        const QString &result) {
        QTest::newRow(name) << text << maxLength << atWord << (result != text) << result;
    };
    const QString word = latin1("abcdefghijklmnopqrst"); // 20 units
    row("20 units, 20", word, 20, false, word);
    row("20 units, 21", word, 21, false, word);
    row("20 units, 2^31", word, 0x80000000U, false, word);
    row("20 units, 2^32 - 1", word, 0xffffffffU, false, word);
    row("20 units, 2^32 - 1 at a word", word, 0xffffffffU, true, word);
    row("20 units, 19", word, 19, false, latin1("abcdefghijklmno ..."));
    row("20 units, 5", word, 5, false, latin1("a ..."));
    row("20 units, 4", word, 4, false, latin1(" ..."));
    row("20 units, 3, less than the points take", word, 3, false, latin1(" ..."));
    row("20 units, 2", word, 2, false, latin1(" ..."));
    row("20 units, 1", word, 1, false, latin1(" ..."));
    row("20 units, 0", word, 0, false, latin1(" ..."));
    row("20 units, 3 at a word", word, 3, true, latin1(" ..."));
    row("20 units, 0 at a word", word, 0, true, latin1(" ..."));
    row("one unit, 0", latin1("a"), 0, false, latin1(" ..."));

    const QString words = latin1("Hello big wide world"); // blanks at 5, 9 and 14
    row("words, not at a word", words, 14, false, latin1("Hello big  ..."));
    row("words, whole", words, 20, true, words);
    row("blank below the cut at 10", words, 14, true, latin1("Hello big ..."));
    row("blank exactly at the cut at 9", words, 13, true, latin1("Hello ..."));
    row("blank just below the cut at 6", words, 10, true, latin1("Hello ..."));
    row("only blank exactly at the cut at 5", words, 9, true, latin1("Hello ..."));
    row("no blank below the cut at 4", words, 8, true, latin1("Hell ..."));
    row("no blank at all", word, 10, true, latin1("abcdef ..."));
    row("blank only behind the cut", latin1("abcdefgh ij"), 9, true, latin1("abcde ..."));
    row("blank only in front", latin1(" abcdefghij"), 9, true, latin1(" abcd ..."));
    row("blanks in front and at 1", latin1("  abcdefghij"), 9, true, latin1("  ..."));
    row("blank in front and within", latin1(" ab cdefghij"), 9, true, latin1(" ab ..."));
    row("two blanks in a row", latin1("ab  cdefghij"), 9, true, latin1("ab  ..."));
    row("tab is no word boundary", latin1("ab\tcdefghij"), 9, true, latin1("ab\tcd ..."));
    row("newline is no word boundary", latin1("ab\ncdefghij"), 9, true, latin1("ab\ncd ..."));
    row("no-break space is no word boundary", QStringLiteral("ab\u00a0cdefghij"), 9, true,
        QStringLiteral("ab\u00a0cd ..."));
    row("ideographic space is no word boundary", QStringLiteral("ab\u3000cdefghij"), 9, true,
        QStringLiteral("ab\u3000cd ..."));
    row("zero unit inside", QString(latin1("ab") + QChar(0) + latin1("cdefghij")), 9, true,
        QString(latin1("ab") + QChar(0) + latin1("cd ...")));
}

void tst_CStr::cutString()
{
    QFETCH(QString, text);
    QFETCH(unsigned int, maxLength);
    QFETCH(bool, atWord);
    QFETCH(bool, cut);
    QFETCH(QString, result);
    bool wasFalse = false;
    QCOMPARE(CStr::cutString(text, maxLength, wasFalse, atWord), result);
    QCOMPARE(wasFalse, cut);
    bool wasTrue = true;
    QCOMPARE(CStr::cutString(text, maxLength, wasTrue, atWord), result);
    QCOMPARE(wasTrue, cut);
}

void tst_CStr::cutStringKeepsNull()
{
    bool cut = true;
    QVERIFY(CStr::cutString(QString(), 0, cut, true).isNull());
    QVERIFY(!cut);
    cut = true;
    const QString empty = CStr::cutString(QStringLiteral(""), 0, cut, false);
    QVERIFY(empty.isEmpty() && !empty.isNull());
    QVERIFY(!cut);
}

void tst_CStr::cutStringAgainstPlainWay_data()
{
    QTest::addColumn<int>("length");
    for (int length = 0; length <= 8; ++length)
        QTest::addRow("all texts of %d units out of letter, blank and tab", length) << length;
}

void tst_CStr::cutStringAgainstPlainWay()
{
    QFETCH(int, length);
    int texts = 1;
    for (int i = 0; i < length; ++i)
        texts *= 3;
    for (int index = 0; index < texts; ++index) {
        const QString text = textOfIndex(index, length);
        for (unsigned int maxLength = 0; maxLength <= static_cast<unsigned int>(length) + 1;
             ++maxLength) {
            for (const bool atWord : {false, true}) {
                bool cut = false;
                bool plainCut = false;
                const QString result = CStr::cutString(text, maxLength, cut, atWord);
                QCOMPARE(result, plainlyCut(text, maxLength, plainCut, atWord));
                QCOMPARE(cut, plainCut);
                QVERIFY(result.size() <= std::max(static_cast<int>(maxLength), 4));
            }
        }
    }
}

// Marking the blanks one after the other would take longer than the test may.
void tst_CStr::cutStringOfAMillionBlanks()
{
    const QString blanks(1000000, QLatin1Char(' '));
    bool cut = false;
    const QString result = CStr::cutString(blanks, 999999, cut, true);
    QVERIFY(cut);
    // n is 999995, and the last blank below it stands at 999994.
    QCOMPARE(result, QString(blanks.left(999994) + latin1(" ...")));
}

void tst_CStr::doubleToString_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");
    const double millions = 1234567.891;
    const auto row = [](const char *name, const char *locale, double value, int decimals,
                        const QString &text) {
        QTest::newRow(name) << latin1(locale) << value << decimals << text;
    };
    row("C millions", "C", millions, 2, latin1("1234567.89"));
    row("C none grouped", "C", 12.5, 1, latin1("12.5"));
    row("en_US, comma groups", "en_US", millions, 2, latin1("1234567.89"));
    row("de_DE, point groups", "de_DE", millions, 2, latin1("1234567,89"));
    row("de_DE thousand", "de_DE", 1000, 0, latin1("1000"));
    row("de_DE below a thousand", "de_DE", 999.5, 1, latin1("999,5"));
    row("de_DE billions", "de_DE", 1234567890123.25, 2, latin1("1234567890123,25"));
    row("de_DE negative", "de_DE", -millions, 2, latin1("-1234567,89"));
    row("de_DE zero", "de_DE", 0, 3, latin1("0,000"));
    row("de_DE no decimals", "de_DE", millions, 0, latin1("1234568"));
    row("de_DE rounds into a group", "de_DE", 999999.999, 2, latin1("1000000,00"));
    row("de_DE trailing zeros stay", "de_DE", 1000.5, 4, latin1("1000,5000"));
    row("fr_FR, U+202F groups", "fr_FR", millions, 2, latin1("1234567,89"));
    row("fr_FR negative", "fr_FR", -millions, 2, latin1("-1234567,89"));
    row("sv_SE, U+00A0 groups, U+2212 is minus", "sv_SE", -millions, 2,
        QStringLiteral("\u22121234567,89"));
    row("de_CH, U+2019 groups", "de_CH", millions, 2, latin1("1234567.89"));
    row("hi_IN, groups of two", "hi_IN", millions, 2, latin1("1234567.89"));
    row("ar_EG, native digits, U+066C groups", "ar_EG", millions, 2,
        QStringLiteral("\u0661\u0662\u0663\u0664\u0665\u0666\u0667\u066b\u0668\u0669"));
    row("ar_EG zero", "ar_EG", 0, 1, QStringLiteral("\u0660\u066b\u0660"));
    row("fa_IR, native digits", "fa_IR", 1234.5, 1,
        QStringLiteral("\u06f1\u06f2\u06f3\u06f4\u066b\u06f5"));
}

void tst_CStr::doubleToString()
{
    QFETCH(QString, locale);
    QFETCH(double, value);
    QFETCH(int, decimals);
    const DefaultLocale asDefault(locale);
    QTEST(CStr::doubleToString(value, decimals), "text");
}

void tst_CStr::doubleToStringFollowsTheDefault()
{
    const QLocale before;
    {
        const DefaultLocale german(latin1("de_DE"));
        QCOMPARE(CStr::doubleToString(1234.5, 1), latin1("1234,5"));
        const DefaultLocale swiss(latin1("de_CH"));
        QCOMPARE(CStr::doubleToString(1234.5, 1), latin1("1234.5"));
    }
    QCOMPARE(QLocale(), before);
}

void tst_CStr::indexOfAmpersand_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("index");
    const auto row = [](const QString &text, int index) {
        QTest::newRow(qUtf8Printable(QLatin1Char('"') + text + QLatin1Char('"'))) << text << index;
    };
    QTest::newRow("null") << QString() << -1;
    row(latin1(""), -1);
    row(latin1("File"), -1);
    row(latin1("&File"), 0);
    row(latin1("F&ile"), 0);
    row(latin1("Fi&le"), 1);
    row(latin1("Fil&e"), 2);
    row(latin1("&"), -1);
    row(latin1("A&"), -1);
    row(latin1("&&"), -1);
    row(latin1("&&A"), -1);
    row(latin1("A&&"), -1);
    row(latin1("A&&B"), -1);
    row(latin1("A&&&B"), -1);
    row(latin1("&&&B"), -1);
    row(latin1("Save && Exit"), -1);
    row(latin1("Save && E&xit"), 8);
    row(latin1("Save && &Exit"), 7);
    row(latin1("&Save && Exit"), 0);
    row(latin1("Save & Exit"), -1);
    row(latin1("Save & E&xit"), 7);
    row(latin1("a&b&c"), 0);
    row(latin1("&1 first"), 0);
    row(latin1("x&_y"), 0);
    row(latin1("&-x"), -1);
    row(latin1("&.x &y"), 3);
    row(latin1("& &x"), 1);
    QTest::newRow("tab in front") << latin1("\t&x") << 0;
    QTest::newRow("newline in front") << latin1("a\n&x") << 1;
    QTest::newRow("newline behind") << latin1("a&\nx") << -1;
    row(QStringLiteral("&\u00d6ffnen"), 0);
    row(QStringLiteral("F&\u00fcr"), 0);
    row(QStringLiteral("Men\u00fc &\u00e4ndern"), 4);
    row(QStringLiteral("\u00fc&x"), 0);
    row(QStringLiteral("&\u0424\u0430\u0439\u043b"), 0);
    row(QStringLiteral("\u6587\u4ef6&\u7f16"), 1);
    row(QStringLiteral("&\u00b0C"), -1);
    row(QStringLiteral("&\u20ac &x"), 2);
    row(QStringLiteral("&\u00a0x"), -1);
}

void tst_CStr::indexOfAmpersand()
{
    QFETCH(QString, text);
    QTEST(CStr::indexOfAmpersand(text), "index");
    QTEST(CStr::indexOfAmpersand(text), "index"); // a match leaves no trace for the next
}

void tst_CStr::toUtf16_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("bufferBytes");
    QTest::addColumn<QByteArray>("memory"); // of six units that were 0xaaaa each
    const QString text = latin1("abcdef");
    const auto row = [](const char *name, const QString &from, int bufferBytes, const char *hex) {
        QTest::newRow(name) << from << bufferBytes << bytesOfHex(hex);
    };
    row("-2^31 bytes", text, std::numeric_limits<int>::min(), "aaaaaaaaaaaaaaaaaaaaaaaa");
    row("-1 bytes", text, -1, "aaaaaaaaaaaaaaaaaaaaaaaa");
    row("0 bytes", text, 0, "aaaaaaaaaaaaaaaaaaaaaaaa");
    row("1 byte, zeroed", text, 1, "00aaaaaaaaaaaaaaaaaaaaaa");
    row("2 bytes, the terminator alone", text, 2, "0000aaaaaaaaaaaaaaaaaaaa");
    row("3 bytes, half a unit and zeros", text, 3, "610000aaaaaaaaaaaaaaaaaa");
    row("4 bytes, one unit", text, 4, "61000000aaaaaaaaaaaaaaaa");
    row("7 bytes, two units and a half", text, 7, "61006200630000aaaaaaaaaa");
    row("8 bytes, three units", text, 8, "6100620063000000aaaaaaaa");
    row("12 bytes, cut by one unit", text, 12, "610062006300640065000000");
    row("12 bytes, fits exactly", latin1("abcde"), 12, "610062006300640065000000");
    row("12 bytes, zeros behind a short text", latin1("ab"), 12, "610062000000000000000000");
    row("11 bytes, zeros behind a short text", latin1("ab"), 11, "6100620000000000000000aa");
    row("empty text", latin1(""), 12, "000000000000000000000000");
    row("null text", QString(), 12, "000000000000000000000000");
    row("odd size cuts inside a unit", QStringLiteral("\u1234\u5678"), 5,
        "3412780000aaaaaaaaaaaaaa");
    row("zero unit inside is copied", QString(latin1("a") + QChar(0) + latin1("b")), 12,
        "610000006200000000000000");
    row("byte order mark", QStringLiteral("\ufeffa"), 8, "fffe610000000000aaaaaaaa");
    row("surrogate pair is cut", QStringLiteral("\U0001f600"), 4, "3dd80000aaaaaaaaaaaaaaaa");
}

void tst_CStr::toUtf16()
{
    QFETCH(QString, text);
    QFETCH(int, bufferBytes);
    std::vector<unsigned short> units(6, 0xaaaa);
    CStr::toUtf16(text, units.data(), bufferBytes);
    const QByteArray memory(reinterpret_cast<const char *>(units.data()), 12);
    QTEST(memory, "memory");
}

void tst_CStr::toUtf16OfNoBuffer_data()
{
    QTest::addColumn<int>("bufferBytes");
    QTest::newRow("0 bytes") << 0;
    QTest::newRow("-1 bytes") << -1;
    QTest::newRow("-2^31 bytes") << std::numeric_limits<int>::min();
}

void tst_CStr::toUtf16OfNoBuffer()
{
    QFETCH(int, bufferBytes);
    const MessageRecorder recorder;
    CStr::toUtf16(latin1("abc"), nullptr, bufferBytes); // would crash if it wrote
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CStr::fromUtf16Buffer_data()
{
    QTest::addColumn<QVector<ushort>>("units");
    QTest::addColumn<int>("bufferBytes");
    QTest::addColumn<QString>("text");
    using Units = QVector<ushort>;
    const Units abc{0x61, 0x62, 0x63};
    QTest::newRow("-1 bytes") << abc << -1 << latin1("");
    QTest::newRow("0 bytes") << abc << 0 << latin1("");
    QTest::newRow("1 byte") << abc << 1 << latin1("");
    QTest::newRow("2 bytes") << abc << 2 << latin1("a");
    QTest::newRow("3 bytes, odd one ignored") << abc << 3 << latin1("a");
    QTest::newRow("5 bytes, odd one ignored") << abc << 5 << latin1("ab");
    QTest::newRow("6 bytes, no terminator") << abc << 6 << latin1("abc");
    QTest::newRow("terminator last") << Units{0x61, 0x62, 0} << 6 << latin1("ab");
    QTest::newRow("terminator inside") << Units{0x61, 0, 0x63, 0x64} << 8 << latin1("a");
    QTest::newRow("terminator first") << Units{0, 0x62, 0x63} << 6 << latin1("");
    QTest::newRow("terminator behind the bytes") << Units{0x61, 0x62, 0x63, 0} << 4 << latin1("ab");
    QTest::newRow("zero low byte") << Units{0x6100, 0x0062} << 4 << QStringLiteral("\u6100b");
    QTest::newRow("zero bytes of two units")
        << Units{0x0041, 0x4100} << 4 << QStringLiteral("A\u4100");
    QTest::newRow("byte order mark stays")
        << Units{0xfeff, 0x61} << 4 << QString(QChar(0xfeff) + latin1("a"));
    QTest::newRow("swapped byte order mark swaps nothing")
        << Units{0xfffe, 0x6100} << 4 << QString(QString(QChar(0xfffe)) + QChar(0x6100));
    QTest::newRow("lone surrogates stay")
        << Units{0xdc00, 0xd800} << 4 << QString(QString(QChar(0xdc00)) + QChar(0xd800));
    for (int terminator = 0; terminator <= 9; ++terminator) {
        Units units(9, 0xffff);
        QString text(terminator, QChar(0xffff));
        if (terminator < 9)
            units[terminator] = 0;
        QTest::addRow("9 units, terminator at %d", terminator) << units << 18 << text;
    }
}

void tst_CStr::fromUtf16Buffer()
{
    QFETCH(QVector<ushort>, units);
    QFETCH(int, bufferBytes);
    const std::vector<unsigned short> buffer(units.cbegin(), units.cend());
    QTEST(CStr::fromUtf16(buffer.data(), bufferBytes), "text");
}

void tst_CStr::fromUtf16OfNoBuffer_data()
{
    QTest::addColumn<int>("bufferBytes");
    QTest::newRow("1 byte") << 1;
    QTest::newRow("0 bytes") << 0;
    QTest::newRow("-1 bytes") << -1;
    QTest::newRow("-2 bytes") << -2;
    QTest::newRow("-2^31 bytes") << std::numeric_limits<int>::min();
}

void tst_CStr::fromUtf16OfNoBuffer()
{
    QFETCH(int, bufferBytes);
    QCOMPARE(CStr::fromUtf16(nullptr, bufferBytes), QString());
}

void tst_CStr::fromUtf16Bytes_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *hex, const QString &text) {
        QTest::newRow(name) << bytesOfHex(hex) << text;
    };
    QTest::newRow("null") << QByteArray() << latin1("");
    row("empty", "", latin1(""));
    row("1 byte", "41", latin1(""));
    row("1 zero byte", "00", latin1(""));
    row("terminator alone", "0000", latin1(""));
    row("1 unit", "4100", latin1("A"));
    row("1 unit and a zero byte, no terminator", "410000", latin1("A"));
    row("1 unit and half a unit", "410042", latin1("A"));
    row("no terminator", "410042004300", latin1("ABC"));
    row("terminator last", "410042000000", latin1("AB"));
    row("terminator inside", "410000004300", latin1("A"));
    row("terminator first", "00004200", latin1(""));
    row("zero bytes at an odd offset", "41000041", QStringLiteral("A\u4100"));
    row("zero bytes at an odd offset, then a terminator", "4100004142000000",
        QStringLiteral("A\u4100B"));
    row("zero bytes at an odd offset, then text", "410000410042", QStringLiteral("A\u4100\u4200"));
    row("zero byte first", "00410000", QStringLiteral("\u4100"));
    row("zero bytes at an odd offset at the end", "004100", QStringLiteral("\u4100"));
    row("byte order mark stays", "fffe4100", QString(QChar(0xfeff) + latin1("A")));
    row("swapped byte order mark swaps nothing", "feff0041",
        QString(QString(QChar(0xfffe)) + QChar(0x4100)));
    row("lone surrogate stays", "00d84100", QString(QChar(0xd800) + latin1("A")));
}

void tst_CStr::fromUtf16Bytes()
{
    QFETCH(QByteArray, data);
    QTEST(CStr::fromUtf16(data), "text");
    QTEST(CStr::fromUtf16(OddBytes(data).data()), "text");
}

void tst_CStr::fromUtf16BytesAgainstPlainWay()
{
    for (int size = 0; size <= 12; ++size) {
        for (int bits = 0; bits < 1 << size; ++bits) {
            QByteArray data(size, '\0');
            for (int i = 0; i < size; ++i)
                data[i] = (bits >> i & 1) != 0 ? 'A' : '\0';
            QCOMPARE(CStr::fromUtf16(data), plainText(data));
            QCOMPARE(CStr::fromUtf16(OddBytes(data).data()), plainText(data));
        }
    }
}

void tst_CStr::nTypeToStr_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    const char *const names[] = {
        "UNKNOWN",   "U8",         "I8",       "U16",      "I16",        "U32",       "I32",
        "F32",       "U64",        "I64",      "F64",      "F80",        "STRING32",  "CHARSTR64",
        "STRING128", "CHARSTR256", "DATETIME", "STRING64", "CHARSTR128", "UTF16CHAR", "CHAR"};
    QCOMPARE(static_cast<int>(std::size(names)), 21);
    int code = 0;
    for (const char *name : names) {
        QTest::addRow("%d %s", code, name) << code << latin1(name);
        ++code;
    }
}

void tst_CStr::nTypeToStr()
{
    QFETCH(int, type);
    QTEST(CStr::nTypeToStr(static_cast<ETypes>(type)), "text");
}

void tst_CStr::nTypeToStrOfNoType_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("-1") << -1;
    QTest::newRow("-20") << -20;
    QTest::newRow("21, one past the last") << 21;
    QTest::newRow("22") << 22;
    QTest::newRow("255") << 255;
    QTest::newRow("256, 0 in 8 bits") << 256;
    QTest::newRow("257, 1 in 8 bits") << 257;
    QTest::newRow("65537, 1 in 16 bits") << 65537;
    QTest::newRow("0x7FFFFFFF") << std::numeric_limits<int>::max();
    QTest::newRow("0x80000000") << std::numeric_limits<int>::min();
    QTest::newRow("0x80000001, 1 without the sign") << std::numeric_limits<int>::min() + 1;
}

void tst_CStr::nTypeToStrOfNoType()
{
    QFETCH(int, type);
    QVERIFY(CStr::nTypeToStr(static_cast<ETypes>(type)).isNull());
}

void tst_CStr::selectionValues_data()
{
    QTest::addColumn<QString>("deviceName");
    QTest::addColumn<QString>("subDeviceName");
    QTest::addColumn<unsigned int>("serial");
    QTest::addColumn<QString>("device"); // of the sub-device's name
    QTest::addColumn<QString>("subDevice");
    const auto row = [](const char *name, const QString &deviceName, const QString &subDeviceName,
                        unsigned int serial, const QString &device, const QString &subDevice) {
        QTest::newRow(name) << deviceName << subDeviceName << serial << device << subDevice;
    };
    row("plain", latin1("Gantry"), latin1("Axis 1"), 12345678, latin1("Axis 1 [s/n: 12345678]"),
        latin1("Gantry - Axis 1 [s/n: 12345678]"));
    row("serial 0", latin1("Gantry"), latin1("Axis"), 0, latin1("Axis [s/n: 0]"),
        latin1("Gantry - Axis [s/n: 0]"));
    row("largest serial, not grouped", latin1("Gantry"), latin1("Axis"), 0xffffffffU,
        latin1("Axis [s/n: 4294967295]"), latin1("Gantry - Axis [s/n: 4294967295]"));
    row("empty names", latin1(""), latin1(""), 7, latin1(" [s/n: 7]"), latin1(" -  [s/n: 7]"));
    row("null names", QString(), QString(), 7, latin1(" [s/n: 7]"), latin1(" -  [s/n: 7]"));
    row("%1 in the names", latin1("a%1b"), latin1("c%1d"), 7, latin1("c%1d [s/n: 7]"),
        latin1("a%1b - c%1d [s/n: 7]"));
    row("%2 in the names", latin1("a%2b"), latin1("c%2d"), 7, latin1("c%2d [s/n: 7]"),
        latin1("a%2b - c%2d [s/n: 7]"));
    row("%3 and %L1 in the names", latin1("%3%L1"), latin1("%L2%99"), 7, latin1("%L2%99 [s/n: 7]"),
        latin1("%3%L1 - %L2%99 [s/n: 7]"));
    row("% at the end of the names", latin1("50%"), latin1("100%"), 7, latin1("100% [s/n: 7]"),
        latin1("50% - 100% [s/n: 7]"));
    row("not ASCII", QStringLiteral("\u00c4"), QStringLiteral("\u00b5"), 7,
        QStringLiteral("\u00b5 [s/n: 7]"), QStringLiteral("\u00c4 - \u00b5 [s/n: 7]"));
}

void tst_CStr::selectionValues()
{
    QFETCH(QString, deviceName);
    QFETCH(QString, subDeviceName);
    QFETCH(unsigned int, serial);
    QTEST(CStr::createDeviceSelectionValue(subDeviceName, serial), "device");
    QTEST(CStr::createSubDeviceSelectionValue(deviceName, subDeviceName, serial), "subDevice");
}

void tst_CStr::independentOfTheLocale_data()
{
    QTest::addColumn<QString>("locale");
    for (const char *locale : {"C", "de_DE", "fr_FR", "de_CH", "sv_SE", "ar_EG", "hi_IN"})
        QTest::newRow(locale) << latin1(locale);
}

void tst_CStr::independentOfTheLocale()
{
    QFETCH(QString, locale);
    const DefaultLocale asDefault(locale);
    const QChar point = QLatin1Char('.');
    bool ok = false;

    QCOMPARE(CStr::strToF64(latin1("1234.5"), &ok), 1234.5);
    QVERIFY(ok);
    QCOMPARE(CStr::strToF32(latin1("1234.5"), &ok), 1234.5F);
    QVERIFY(ok);
    for (const char *text : {"1234,5", "1,234.5", "1.234,5"}) {
        QCOMPARE(CStr::strToF64(7.5, latin1(text)), 7.5);
        QCOMPARE(CStr::strToF32(7.5F, latin1(text)), 7.5F);
    }
    QCOMPARE(CStr::strToI64(latin1("-1234567")), -1234567LL);
    QCOMPARE(CStr::strToU64(latin1("1234567")), 1234567ULL);
    for (const char *text : {"1,234", "1.234"}) {
        QCOMPARE(CStr::strToU16(static_cast<unsigned short>(7), latin1(text)),
                 static_cast<unsigned short>(7));
        QCOMPARE(CStr::strToI32(7, latin1(text)), 7);
    }

    QCOMPARE(CStr::fixPointToStr(1234567U << 8U | 5U, 8, point), latin1("1234567.5"));
    QCOMPARE(CStr::strToFixPoint(latin1("1234.5"), &ok, 8, point), 1234U << 8U | 5U);
    QCOMPARE(CStr::revisionToString(0x04d20005U), latin1("1234.005"));
    QCOMPARE(CStr::revisionToString(static_cast<unsigned short>(0x0105)), latin1("1.05"));
    unsigned int revision = 0;
    QVERIFY(CStr::stringToRevision(latin1("1234.5"), revision));
    QCOMPARE(revision, 0x04d20005U);
    QCOMPARE(CStr::serialToString(1234567890), latin1("1 234 567 890"));
    QCOMPARE(CStr::memSizeToString(1234), latin1("1234 Byte"));
    QCOMPARE(CStr::memSizeToString(1536000), latin1("1500.0 KiB"));
    QCOMPARE(CStr::memSizeToString(Q_INT64_C(1) << 60), latin1("1024 PiB"));
    QCOMPARE(CStr::createDeviceSelectionValue(latin1("Axis"), 1234567),
             latin1("Axis [s/n: 1234567]"));
    QCOMPARE(CStr::indexOfAmpersand(QStringLiteral("&\u00d6ffnen")), 0);
}

void tst_CStr::noMessages()
{
    const MessageRecorder recorder;
    bool ok = true;
    for (const QString &text : {QString(), latin1("x"), latin1("1.2.3"), latin1("99999999999")}) {
        for (const IntegerType &type : kIntegerTypes)
            withReader(type.type, [&](auto, auto read) { read(text, &ok, 10); });
        CStr::strToF32(text, &ok);
        CStr::strToF64(text, &ok);
        CStr::strToFixPoint(text, &ok, 99, QLatin1Char('.'));
        unsigned int revision = 0;
        CStr::stringToRevision(text, revision);
        unsigned short shortRevision = 0;
        CStr::stringToRevision(text, shortRevision);
        CStr::cutString(text, 0, ok, true);
    }
    QVERIFY(CStr::nTypeToStr(static_cast<ETypes>(-1)).isNull());
    QVERIFY(CStr::fromUtf16(bytesOfHex("41")).isEmpty());
    QVERIFY(!CStr::memSizeToString(-1).isEmpty());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CStr::threads()
{
    const QString text = latin1("Save && E&xit");
    const QByteArray bytes = bytesOfHex("4100004142000000");
    QVERIFY(trueInThreads([&] {
        for (int i = 0; i < 500; ++i) {
            if (CStr::indexOfAmpersand(text) != 8 || CStr::indexOfAmpersand(latin1("File")) != -1
                || CStr::fromUtf16(bytes) != QStringLiteral("A\u4100B")
                || CStr::memSizeToString(10496) != latin1("10.3 KiB")
                || CStr::nTypeToStr(TYPE_U8) != latin1("U8"))
                return false;
        }
        return true;
    }));
}

QTEST_APPLESS_MAIN(tst_CStr)

#include "tst_CStr.moc"
