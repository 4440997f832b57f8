#include "CMath.h"

#include "../internal/src/Crc32_p.h"

#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include <sys/mman.h>

namespace {

static_assert(!std::is_default_constructible_v<CMath>);
static_assert(std::is_same_v<decltype(CMath::mPowTab), const double[5]>);
static_assert(std::is_same_v<decltype(&CMath::exp10), double (*)(int)>);
static_assert(std::is_same_v<decltype(&CMath::round), double (*)(double, unsigned int)>);
static_assert(std::is_same_v<decltype(&CMath::roundOff), double (*)(double, unsigned int)>);
static_assert(std::is_same_v<decltype(&CMath::roundUp), double (*)(double, unsigned int)>);
static_assert(std::is_same_v<decltype(&CMath::checkDouble), bool (*)(const void *)>);
static_assert(std::is_same_v<decltype(&CMath::crc32), unsigned int (*)(const void *, int)>);

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTwo63 = 9223372036854775808.0;

//! Returns the low bits that a number of places below zero has.
constexpr unsigned int places(int decimals)
{
    return static_cast<unsigned int>(decimals);
}

//! Returns whether two doubles are the same, the sign of zero included; all NaN are one.
bool same(double left, double right)
{
    if (std::isnan(left) || std::isnan(right))
        return std::isnan(left) && std::isnan(right);
    return std::memcmp(&left, &right, sizeof(left)) == 0;
}

QByteArray text(double value)
{
    return QByteArray::number(value, 'g', 17);
}

//! Returns the register after one more byte, bit by bit.
quint32 bitwise(quint32 crc, quint32 byte)
{
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit)
        crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320U : crc >> 1;
    return crc;
}

std::vector<uchar> randomBytes(std::size_t size)
{
    std::mt19937 random(20140506);
    std::vector<uchar> bytes(size);
    for (uchar &byte : bytes)
        byte = static_cast<uchar>(random() >> 24);
    return bytes;
}

//! Returns the register after each count of leading bytes, from none to all of them.
std::vector<quint32> prefixRegisters(const std::vector<uchar> &bytes, quint32 crc)
{
    std::vector<quint32> registers = {crc};
    for (const uchar byte : bytes)
        registers.push_back(crc = bitwise(crc, byte));
    return registers;
}

/*!
    Calls \a check with the start and the length of every block of 0 to 4096 leading bytes of
    \a bytes, at each alignment. A block ends where its allocation does.
*/
template <class Check>
void forEachBlock(const std::vector<uchar> &bytes, Check &&check)
{
    for (std::size_t shift = 0; shift < 16; ++shift) {
        std::vector<uchar> room(bytes.size() + shift);
        for (std::size_t length = 0; length <= bytes.size(); ++length) {
            uchar *start = room.data() + room.size() - length;
            std::copy_n(bytes.data(), length, start);
            if (!check(start, length))
                return;
        }
    }
}

constexpr std::size_t kLongestBlock = 4096;

//! The effect of a number of zero bytes on the register, as the image of each of its bits.
using ZeroBytes = std::array<quint32, 32>;

quint32 after(const ZeroBytes &zeros, quint32 crc)
{
    quint32 sum = 0;
    for (std::size_t bit = 0; bit < zeros.size(); ++bit)
        sum ^= (crc >> bit & 1) != 0 ? zeros[bit] : 0;
    return sum;
}

} // namespace

class tst_CMath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void powTab();
    void exp10_data();
    void exp10();
    void roundThroughLongInteger();
    void exp10IsPow();
    void rounding_data();
    void rounding();
    void roundingIsExact();
    void decimalsStay_data();
    void decimalsStay();
    void checkDouble_data();
    void checkDouble();
    void checkDoubleOfValues_data();
    void checkDoubleOfValues();
    void crc32_data();
    void crc32();
    void crc32OfNothing_data();
    void crc32OfNothing();
    void crc32EveryByte();
    void crc32EveryLength();
    void crc32WaysEveryLength();
    void crc32WaysLong();
    void crc32GreatestLength();
};

void tst_CMath::powTab()
{
    constexpr double kExpected[] = {1.0, 10.0, 100.0, 1000.0, 10000.0};
    for (std::size_t i = 0; i < std::size(kExpected); ++i)
        QVERIFY(same(CMath::mPowTab[i], kExpected[i]));
}

void tst_CMath::exp10_data()
{
    QTest::addColumn<int>("exponent");
    QTest::addColumn<double>("expected");

    QTest::newRow("0, table") << 0 << 1.0;
    QTest::newRow("1, table") << 1 << 10.0;
    QTest::newRow("2, table") << 2 << 100.0;
    QTest::newRow("3, table") << 3 << 1000.0;
    QTest::newRow("4, last of the table") << 4 << 10000.0;
    QTest::newRow("5, behind the table") << 5 << 100000.0;
    QTest::newRow("22, last exact power") << 22 << 1e22;
    QTest::newRow("-1, before the table") << -1 << 0.1;
    QTest::newRow("-2") << -2 << 0.01;
    QTest::newRow("309, too great") << 309 << kInfinity;
    QTest::newRow("-400, too small") << -400 << 0.0;
    QTest::newRow("INT_MAX") << INT_MAX << kInfinity;
    QTest::newRow("INT_MIN") << INT_MIN << 0.0;
}

void tst_CMath::exp10()
{
    QFETCH(const int, exponent);
    QFETCH(const double, expected);
    QVERIFY2(same(CMath::exp10(exponent), expected), text(CMath::exp10(exponent)).constData());
}

// 12183325645556375 has more bits than a double; the value comes back all the same.
void tst_CMath::roundThroughLongInteger()
{
    QCOMPARE(CMath::round(121833256455563.75, 2), 121833256455563.75);
    QCOMPARE(CMath::round(113227943559359.27, 2), 113227943559359.27);
}

void tst_CMath::exp10IsPow()
{
    for (int exponent = -400; exponent <= 400; ++exponent) {
        const volatile double base = 10.0; // else the compiler may know better than pow()
        QVERIFY2(same(CMath::exp10(exponent), std::pow(base, exponent)),
                 QByteArray::number(exponent).constData());
    }
}

void tst_CMath::rounding_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<unsigned int>("decimals");
    QTest::addColumn<double>("nearest");
    QTest::addColumn<double>("down");
    QTest::addColumn<double>("up");

    const auto row
        = [](const char *name, double value, unsigned int decimals, double nearest, double down,
             double up) { QTest::newRow(name) << value << decimals << nearest << down << up; };
    row("2.5, half", 2.5, 0, 3, 2, 3);
    row("-2.5, half", -2.5, 0, -3, -3, -2);
    row("2.4999999999999996", 2.4999999999999996, 0, 2, 2, 3);
    row("-2.4999999999999996", -2.4999999999999996, 0, -2, -3, -2);
    row("1.25, 1 place", 1.25, 1, 1.3, 1.2, 1.3);
    row("-1.25, 1 place", -1.25, 1, -1.3, -1.3, -1.2);
    row("1.29, 1 place", 1.29, 1, 1.3, 1.2, 1.3);
    row("1.21, 1 place", 1.21, 1, 1.2, 1.2, 1.3);
    row("1.0625, 4 places", 1.0625, 4, 1.0625, 1.0625, 1.0625);
    row("1.0000051, 5 places", 1.0000051, 5, 1.00001, 1.0, 1.00001);
    row("0, 2 places", 0.0, 2, 0.0, 0.0, 0.0);
    row("-0, 2 places", -0.0, 2, 0.0, -0.0, -0.0);
    row("0.25", 0.25, 0, 0.0, 0.0, 1.0);
    row("-0.25, no sign of zero left by an integer", -0.25, 0, 0.0, -1.0, -0.0);
    row("0.5", 0.5, 0, 1, 0, 1);
    row("-0.5", -0.5, 0, -1, -1, -0.0);

    // The product and the half are in extended precision: in a double these go over the half.
    row("1.115, 2 places, extended product", 1.115, 2, 1.11, 1.11, 1.12);
    row("-1.115, 2 places, extended product", -1.115, 2, -1.11, -1.12, -1.11);
    row("0.49999999999999994, extended sum", 0.49999999999999994, 0, 0.0, 0.0, 1.0);
    row("-0.49999999999999994, extended sum", -0.49999999999999994, 0, 0.0, -1.0, -0.0);
    row("2^52 + 1, extended sum", 4503599627370497.0, 0, 4503599627370497.0, 4503599627370497.0,
        4503599627370497.0);
    row("-2^52 - 1, extended sum", -4503599627370497.0, 0, -4503599627370497.0, -4503599627370497.0,
        -4503599627370497.0);
    // These products are in double precision: 1.1 * 10 is 11 there.
    row("1.1, 1 place, double product", 1.1, 1, 1.1, 1.1, 1.1);
    row("-1.1, 1 place, double product", -1.1, 1, -1.1, -1.1, -1.1);

    // A number of places below zero travels in the low bits.
    row("1234, -2 places", 1234, places(-2), 1200, 1200, 1300);
    row("-1234, -2 places", -1234, places(-2), -1200, -1300, -1200);
    row("1250, -2 places", 1250, places(-2), 1300, 1200, 1300);
    row("1234, -1 place", 1234, places(-1), 1230, 1230, 1240);
    row("1234, -400 places, factor 0", 1234, places(-400), kNaN, kNaN, kNaN);
    row("1234, 2^31 places, factor 0", 1234, 0x80000000U, kNaN, kNaN, kNaN);
    row("1, 400 places, factor infinite", 1, 400, 1, kNaN, kNaN);
    row("0, 400 places, factor infinite", 0, 400, 0, kNaN, kNaN);
    row("-0, 400 places, factor infinite", -0.0, 400, -0.0, kNaN, kNaN);

    // The quotient is rounded once.
    row("0.002877, 6 places", 0.002877, 6, 0.002877, 0.002877, 0.002877);
    row("2^53, 1 place", 9007199254740992.0, 1, 9007199254740992.0, 9007199254740992.0,
        9007199254740992.0);

    // Only the nearest goes through a 64-bit integer; what does not fit is left as it is.
    row("greatest below 2^63", 9223372036854774784.0, 0, 9223372036854774784.0,
        9223372036854774784.0, 9223372036854774784.0);
    row("2^63", kTwo63, 0, kTwo63, kTwo63, kTwo63);
    row("-2^63", -kTwo63, 0, -kTwo63, -kTwo63, -kTwo63);
    row("-2^63 - 2048, next below", -9223372036854777856.0, 0, -9223372036854777856.0,
        -9223372036854777856.0, -9223372036854777856.0);
    row("2^64", 2 * kTwo63, 0, 2 * kTwo63, 2 * kTwo63, 2 * kTwo63);
    row("-2^64", -2 * kTwo63, 0, -2 * kTwo63, -2 * kTwo63, -2 * kTwo63);
    row("1e300", 1e300, 0, 1e300, 1e300, 1e300);
    row("-1e300", -1e300, 0, -1e300, -1e300, -1e300);
    row("9, 18 places fit", 9, 18, 9, 9, 9);
    row("1, 19 places do not fit", 1, 19, 1, 1, 1);
    row("-0.1, 300 places do not fit", -0.1, 300, -0.1, -0.1, -0.1);
    row("infinity", kInfinity, 0, kInfinity, kInfinity, kInfinity);
    row("-infinity", -kInfinity, 0, -kInfinity, -kInfinity, -kInfinity);
    row("NaN", kNaN, 0, kNaN, kNaN, kNaN);
    row("NaN, 2 places", kNaN, 2, kNaN, kNaN, kNaN);
}

void tst_CMath::rounding()
{
    QFETCH(const double, value);
    QFETCH(const unsigned int, decimals);
    QFETCH(const double, nearest);
    QFETCH(const double, down);
    QFETCH(const double, up);

    QVERIFY2(same(CMath::round(value, decimals), nearest),
             text(CMath::round(value, decimals)).constData());
    QVERIFY2(same(CMath::roundOff(value, decimals), down),
             text(CMath::roundOff(value, decimals)).constData());
    QVERIFY2(same(CMath::roundUp(value, decimals), up),
             text(CMath::roundUp(value, decimals)).constData());
}

// Values n / 2^s whose products are exact, so that integers tell the results.
void tst_CMath::roundingIsExact()
{
    constexpr qint64 kPowers[] = {1, 10, 100, 1000, 10000};
    const auto floored = [](qint64 n, qint64 divisor) {
        return n >= 0 ? n / divisor : -((-n + divisor - 1) / divisor);
    };
    std::mt19937_64 random(115);
    for (int i = 0; i < 200000; ++i) {
        const auto shift = static_cast<int>(random() % 21);
        // Numbers of every length, both signs and many halves among them.
        const auto n = static_cast<qint64>(random()) >> (25 + random() % 39);
        const auto decimals = static_cast<unsigned int>(random() % 5);
        const double value = std::ldexp(static_cast<double>(n), -shift);

        const qint64 power = kPowers[decimals];
        const qint64 divisor = Q_INT64_C(1) << shift;
        const qint64 product = n * power;
        const qint64 magnitude = (2 * qAbs(product) + divisor) / (2 * divisor);
        const qint64 nearest = product < 0 ? -magnitude : magnitude;
        const auto result = [power](qint64 integer) {
            return static_cast<double>(integer) / static_cast<double>(power);
        };
        const QByteArray where = text(value) + ' ' + QByteArray::number(decimals);
        QVERIFY2(same(CMath::round(value, decimals), result(nearest)), where.constData());
        QVERIFY2(CMath::roundOff(value, decimals) == result(floored(product, divisor)),
                 where.constData());
        QVERIFY2(CMath::roundUp(value, decimals) == result(-floored(-product, divisor)),
                 where.constData());
    }
}

void tst_CMath::decimalsStay_data()
{
    QTest::addColumn<int>("decimals");
    for (int decimals = 0; decimals <= 15; ++decimals)
        QTest::addRow("%d places", decimals) << decimals;
}

// A number with so many decimals and fewer than 2^53 units of the last is the double next to it, and
// so is what it is rounded to. The C library reads it from its text.
void tst_CMath::decimalsStay()
{
    QFETCH(const int, decimals);
    constexpr quint64 kTwo53 = Q_UINT64_C(1) << 53;
    std::vector<quint64> units = {0, 1, 2, 5, 9, 2877, kTwo53 / 2 - 1, kTwo53 / 2, kTwo53 / 2 + 1};
    for (quint64 power = 1; power < kTwo53; power *= 10)
        units.insert(units.end(), {power - 1, power, power + 1});
    for (quint64 i = 1; i <= 1000; ++i)
        units.push_back(kTwo53 - i);
    std::mt19937_64 random(static_cast<quint64>(2877 + decimals));
    for (int i = 0; i < 50000; ++i)
        units.push_back(random() >> (11 + random() % 52)); // of every length
    for (const quint64 count : units) {
        const std::string number = std::to_string(count) + "e-" + std::to_string(decimals);
        const double value = std::strtod(number.c_str(), nullptr);
        const auto places = static_cast<unsigned int>(decimals);
        QVERIFY2(same(CMath::round(value, places), value), number.c_str());
        if (count != 0)
            QVERIFY2(same(CMath::round(-value, places), -value), number.c_str());
    }
}

void tst_CMath::checkDouble_data()
{
    QTest::addColumn<quint64>("exponent");
    QTest::addColumn<quint64>("lowWord");
    QTest::addColumn<bool>("expected");

    const auto row = [](const char *name, quint64 exponent, quint64 lowWord, bool expected) {
        QTest::newRow(name) << exponent << lowWord << expected;
    };
    row("7FF, low word 0", 0x7FF, 0, false);
    row("7FF, low word 1", 0x7FF, 1, false);
    row("7FF, low word FFFFFFFF", 0x7FF, 0xFFFFFFFF, false);
    row("7FE, low word 0", 0x7FE, 0, true);
    row("7FE, low word 7FFFFFFF, unsigned", 0x7FE, 0x7FFFFFFF, true);
    row("7FE, at the limit", 0x7FE, 0xD7B9609A, true);
    row("7FE, one past the limit", 0x7FE, 0xD7B9609B, false);
    row("7FE, low word FFFFFFFF", 0x7FE, 0xFFFFFFFF, false);
    row("7FD, low word FFFFFFFF", 0x7FD, 0xFFFFFFFF, true);
    row("400", 0x400, 0, true);
    row("3FF", 0x3FF, 0, true);
    row("002, low word 0", 0x002, 0, true);
    row("001, low word 0", 0x001, 0, false);
    row("001, at the limit", 0x001, 0x1111E1E4, false);
    row("001, one past the limit", 0x001, 0x1111E1E5, true);
    row("001, low word 80000000, unsigned", 0x001, 0x80000000, true);
    row("001, low word FFFFFFFF", 0x001, 0xFFFFFFFF, true);
    row("000, low word 0", 0x000, 0, true);
    row("000, low word 1", 0x000, 1, true);
    row("000, low word 1111E1E4", 0x000, 0x1111E1E4, true);
    row("000, low word FFFFFFFF", 0x000, 0xFFFFFFFF, true);
}

void tst_CMath::checkDouble()
{
    QFETCH(const quint64, exponent);
    QFETCH(const quint64, lowWord);
    QFETCH(const bool, expected);

    // Neither the sign nor the upper 20 bits of the mantissa count, and neither does the address.
    constexpr quint64 kUpperBits[] = {0x00000, 0x00001, 0x80000, 0xFFFFF};
    for (const quint64 sign : {0U, 1U}) {
        for (const quint64 upper : kUpperBits) {
            const quint64 bits = sign << 63 | exponent << 52 | upper << 32 | lowWord;
            for (std::size_t shift = 0; shift < 8; ++shift) {
                // The bytes stand at the end of the allocation, foreign ones before them.
                std::vector<uchar> room(shift + sizeof(bits), 0xA5);
                qToLittleEndian(bits, room.data() + shift);
                QCOMPARE(CMath::checkDouble(room.data() + shift), expected);
            }
        }
    }
}

void tst_CMath::checkDoubleOfValues_data()
{
    using Limits = std::numeric_limits<double>;
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("expected");

    QTest::newRow("0") << 0.0 << true;
    QTest::newRow("-0") << -0.0 << true;
    QTest::newRow("1") << 1.0 << true;
    QTest::newRow("-1") << -1.0 << true;
    QTest::newRow("smallest subnormal") << Limits::denorm_min() << true;
    QTest::newRow("smallest normal") << Limits::min() << false;
    QTest::newRow("greatest") << Limits::max() << false;
    QTest::newRow("least") << Limits::lowest() << false;
    QTest::newRow("infinity") << kInfinity << false;
    QTest::newRow("-infinity") << -kInfinity << false;
    QTest::newRow("quiet NaN") << kNaN << false;
    QTest::newRow("signaling NaN") << Limits::signaling_NaN() << false;
}

void tst_CMath::checkDoubleOfValues()
{
    QFETCH(const double, value);
    QFETCH(const bool, expected);
    uchar raw[sizeof(double)];
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    qToLittleEndian(bits, raw);
    QCOMPARE(CMath::checkDouble(raw), expected);
}

void tst_CMath::crc32_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<unsigned int>("expected");

    QTest::newRow("123456789, check value") << QByteArray("123456789") << 0xCBF43926U;
    QTest::newRow("one zero byte") << QByteArray(1, '\0') << 0xD202EF8DU;
    QTest::newRow("one byte FF, unsigned") << QByteArray(1, '\xff') << 0xFF000000U;
    QTest::newRow("four bytes FF") << QByteArray(4, '\xff') << 0xFFFFFFFFU;
    QTest::newRow("32 zero bytes") << QByteArray(32, '\0') << 0x190A55ADU;
    QTest::newRow("32 bytes FF") << QByteArray(32, '\xff') << 0xFF6CAB0BU;
}

void tst_CMath::crc32()
{
    QFETCH(const QByteArray, data);
    QFETCH(const unsigned int, expected);
    QCOMPARE(CMath::crc32(data.constData(), data.size()), expected);
}

void tst_CMath::crc32OfNothing_data()
{
    QTest::addColumn<bool>("null");
    QTest::addColumn<int>("length");

    for (const int length : {0, -1, -64, INT_MIN}) {
        QTest::addRow("null, %d", length) << true << length;
        QTest::addRow("bytes, %d", length) << false << length;
    }
}

void tst_CMath::crc32OfNothing()
{
    QFETCH(const bool, null);
    QFETCH(const int, length);
    QCOMPARE(CMath::crc32(null ? nullptr : "123456789", length), 0U);
}

void tst_CMath::crc32EveryByte()
{
    for (quint32 value = 0; value < 256; ++value) {
        const auto byte = static_cast<uchar>(value);
        QCOMPARE(CMath::crc32(&byte, 1), ~bitwise(0xFFFFFFFF, value));
        // The table entry of a byte is its checksum without the two inversions.
        QCOMPARE(Crc32::crc32tab[0][value], bitwise(0, value));
    }
}

void tst_CMath::crc32EveryLength()
{
    const auto bytes = randomBytes(kLongestBlock);
    const auto registers = prefixRegisters(bytes, 0xFFFFFFFF);
    forEachBlock(bytes, [&registers](const uchar *start, std::size_t length) {
        const quint32 expected = length == 0 ? 0 : ~registers[length];
        return QTest::qCompare(CMath::crc32(start, static_cast<int>(length)), expected,
                               std::to_string(length).c_str(), "bit by bit", __FILE__, __LINE__);
    });
}

void tst_CMath::crc32WaysEveryLength()
{
    const auto bytes = randomBytes(kLongestBlock);
    // Any register may come in, not only the one that a checksum starts with.
    for (const quint32 crc : {0xFFFFFFFFU, 0x12345678U}) {
        const auto registers = prefixRegisters(bytes, crc);
        forEachBlock(bytes, [&](const uchar *start, std::size_t length) {
            bool equal
                = QTest::qCompare(Crc32::portable(crc, start, length), registers[length],
                                  std::to_string(length).c_str(), "portable", __FILE__, __LINE__);
#ifdef Q_PROCESSOR_X86_64
            if (Crc32::canFold() && length >= std::size_t(Crc32::kBlockBytes))
                equal = equal
                    && QTest::qCompare(Crc32::folded(crc, start, length), registers[length],
                                       std::to_string(length).c_str(), "folded", __FILE__,
                                       __LINE__);
#endif
            return equal;
        });
    }
}

void tst_CMath::crc32WaysLong()
{
    constexpr std::size_t kMiB = 1024 * 1024;
    const auto bytes = randomBytes(3 * kMiB + 61);
    for (const std::size_t start : {0, 1, 15}) {
        quint32 expected = 0xFFFFFFFF;
        for (std::size_t i = start; i < bytes.size(); ++i)
            expected = bitwise(expected, bytes[i]);
        const uchar *data = bytes.data() + start;
        const std::size_t size = bytes.size() - start;
        QCOMPARE(CMath::crc32(data, static_cast<int>(size)), ~expected);
        QCOMPARE(Crc32::portable(0xFFFFFFFF, data, size), expected);
#ifdef Q_PROCESSOR_X86_64
        if (Crc32::canFold())
            QCOMPARE(Crc32::folded(0xFFFFFFFF, data, size), expected);
#endif
    }
}

// Zero bytes are not written, so that the block takes addresses and next to no memory.
void tst_CMath::crc32GreatestLength()
{
    ZeroBytes zeros;
    for (std::size_t bit = 0; bit < zeros.size(); ++bit)
        zeros[bit] = bitwise(1U << bit, 0);
    quint32 expected = 0xFFFFFFFF;
    for (int rest = INT_MAX; rest > 0; rest /= 2) {
        if (rest % 2 != 0)
            expected = after(zeros, expected);
        ZeroBytes twice;
        for (std::size_t bit = 0; bit < zeros.size(); ++bit)
            twice[bit] = after(zeros, zeros[bit]);
        zeros = twice;
    }

    // Pages that are only read take no memory.
    void *const block
        = mmap(nullptr, INT_MAX, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    QVERIFY(block != MAP_FAILED);
    const quint32 crc = CMath::crc32(block, INT_MAX);
    munmap(block, INT_MAX);
    QCOMPARE(crc, ~expected);
}

QTEST_APPLESS_MAIN(tst_CMath)

#include "tst_CMath.moc"
