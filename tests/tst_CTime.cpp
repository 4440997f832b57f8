#include "CTime.h"

#include <QDataStream>
#include <QtTest>

#include <climits>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

using ETimeUnit = CTime::ETimeUnit;

Q_DECLARE_METATYPE(CTime::ETimeUnit)
Q_DECLARE_METATYPE(CTime)

namespace {

static_assert(CTime::PS == 0 && CTime::NS == 1 && CTime::US == 2 && CTime::MS == 3);
static_assert(CTime::S == 4 && CTime::MIN == 5 && CTime::H == 6 && CTime::UNKNOWN == 7);
static_assert(std::is_same_v<std::underlying_type_t<ETimeUnit>, int>);
static_assert(std::is_convertible_v<ETimeUnit, int>); // a plain enumeration
static_assert(std::has_virtual_destructor_v<CTime>);
static_assert(std::is_nothrow_move_constructible_v<CTime>);
static_assert(std::is_nothrow_move_assignable_v<CTime>);
static_assert(std::is_nothrow_swappable_v<CTime>);
static_assert(sizeof(CTime) == 2 * sizeof(void *));
static_assert(std::is_same_v<decltype(CTime::mUnitHash), const QHash<QString, ETimeUnit>>);

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr quint64 kTwo53 = Q_UINT64_C(1) << 53;
constexpr quint64 kTwo63 = Q_UINT64_C(1) << 63;
constexpr double kTwo63F = 9223372036854775808.0;

constexpr ETimeUnit code(int value)
{
    return static_cast<ETimeUnit>(value);
}

//! The count that the two's complement of \a value is.
constexpr quint64 bits(qint64 value)
{
    return static_cast<quint64>(value);
}

struct Code
{
    ETimeUnit unit;
    const char *name;
};

constexpr Code kCodes[] = {
    {CTime::PS, "ps"}, {CTime::NS, "ns"},   {CTime::US, "us"},      {CTime::MS, "ms"},
    {CTime::S, "s"},   {CTime::MIN, "min"}, {CTime::H, "h"},        {CTime::UNKNOWN, "unknown"},
    {code(8), "8"},    {code(-1), "-1"},    {code(INT_MAX), "max"}, {code(INT_MIN), "min code"},
};

constexpr quint64 kCounts[] = {0,
                               1,
                               2,
                               5,
                               29,
                               30,
                               90,
                               499,
                               500,
                               1499,
                               1500,
                               3600,
                               5400,
                               1000000007,
                               kTwo53,
                               kTwo53 + 1,
                               bits(-1),
                               bits(-90),
                               bits(-1499),
                               bits(-1500),
                               bits(-5400),
                               kTwo63,
                               kTwo63 - 1,
                               kTwo63 + 1,
                               123456789012345678,
                               1844674407370955};

// What follows computes everything anew from the factors, in the order of the operations.

double plainSeconds(double value, ETimeUnit unit)
{
    switch (static_cast<int>(unit)) {
    case 0:
        return value * 1e-12;
    case 1:
        return value * 1e-9;
    case 2:
        return value * 1e-6;
    case 3:
        return value * 0.001;
    case 5:
        return value * 60.0;
    case 6:
        return value * 3600.0;
    default:
        return value;
    }
}

double plainConvert(double value, ETimeUnit from, ETimeUnit to)
{
    const double seconds = plainSeconds(value, from);
    switch (static_cast<int>(to)) {
    case 0:
        return seconds * 1e12;
    case 1:
        return seconds * 1e9;
    case 2:
        return seconds * 1e6;
    case 3:
        return seconds * 1000.0;
    case 5:
        return seconds / 60.0;
    case 6:
        return seconds / 3600.0;
    default:
        return seconds;
    }
}

//! Rounds to the nearest count, halves away from zero; what neither 64 bits nor 64 bits with a sign
//! have is 2^63.
quint64 plainRounded(double value)
{
    if (value >= kTwo63F && value < 2 * kTwo63F)
        return static_cast<quint64>(value);
    if (!(std::fabs(value) < kTwo63F))
        return kTwo63;
    const double whole = std::trunc(value);
    const auto count = static_cast<qint64>(whole);
    if (std::fabs(value - whole) < 0.5)
        return bits(count);
    return bits(value < 0 ? count - 1 : count + 1);
}

quint64 plainCut(double value)
{
    // The values here are sums of counts, so that none is negative.
    return value < 2 * kTwo63F ? static_cast<quint64>(value) : kTwo63;
}

quint64 plainValue(const CTime &time, ETimeUnit unit)
{
    if (time.unit() == unit)
        return time.value();
    const auto count = static_cast<double>(static_cast<qint64>(time.value()));
    return plainRounded(plainConvert(count, time.unit(), unit));
}

struct Walk
{
    bool found = false;
    long long value = -77;
    ETimeUnit unit = code(-77);
};

bool operator==(const Walk &left, const Walk &right)
{
    return left.found == right.found && left.value == right.value && left.unit == right.unit;
}

Walk plainWalk(double value, ETimeUnit unit)
{
    Walk walk;
    if (value == 0.0 || unit <= 0)
        return walk;
    // All codes above H are seconds; 20 of them stand for as many as there may be.
    for (int u = qMin<int>(unit, 26); u >= 0; --u) {
        const double x = std::fabs(plainConvert(value, unit, code(u)));
        if (!(x < kTwo63F))
            return walk;
        const double below = std::floor(x);
        const double nearest = x - below < 0.5 ? below : below + 1;
        if (x == nearest || std::nextafter(x, nearest) == nearest)
            return walk;
        walk.value = value < 0 ? -static_cast<long long>(below) : static_cast<long long>(below);
        walk.unit = code(u);
        walk.found = true;
    }
    walk.found = false;
    return walk;
}

QByteArray text(const Walk &walk)
{
    return QByteArray::number(walk.found) + ' ' + QByteArray::number(walk.value) + ' '
        + QByteArray::number(walk.unit);
}

QByteArray text(const CTime &time)
{
    return QByteArray::number(time.value()) + " of unit " + QByteArray::number(time.unit());
}

// What a static initialiser of another file sees of the hash.
const QHash<QString, ETimeUnit> kHashAtLoad = CTime::mUnitHash;
const ETimeUnit kMinutesAtLoad = CTime::unit(QStringLiteral("min"));

const QString kMicroseconds = QStringLiteral("\u00b5s");

} // namespace

class tst_CTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction();
    void anyCodeIsKept();
    void sharing_data();
    void sharing();
    void setters();
    void moves();
    void swaps();
    void isValid_data();
    void isValid();

    void unitHash();
    void unitNames_data();
    void unitNames();
    void unitOfName_data();
    void unitOfName();

    void convertsAllPairs_data();
    void convertsAllPairs();
    void valueInUnit_data();
    void valueInUnit();
    void fromValue_data();
    void fromValue();
    void fromValueOfSelf();
    void previousInteger_data();
    void previousInteger();
    void previousIntegerWalk_data();
    void previousIntegerWalk();
    void previousIntegerMember();

    void comparesAllPairs_data();
    void comparesAllPairs();
    void compares_data();
    void compares();
    void multiplies_data();
    void multiplies();
    void addsAllPairs_data();
    void addsAllPairs();
    void adds_data();
    void adds();

    void stream_data();
    void stream();
    void shortStream_data();
    void shortStream();
    void debug_data();
    void debug();

private:
    static void pairs();
};

void tst_CTime::construction()
{
    const CTime time;
    QCOMPARE(time.value(), 0ULL);
    QCOMPARE(time.unit(), CTime::UNKNOWN);
    QVERIFY(!time.isValid());
    QVERIFY(CTime::unitStr(time.unit()).isEmpty());

    const CTime greatest(ULLONG_MAX, CTime::H);
    QCOMPARE(greatest.value(), ULLONG_MAX);
    QCOMPARE(greatest.unit(), CTime::H);
}

void tst_CTime::anyCodeIsKept()
{
    for (const Code &row : kCodes) {
        QCOMPARE(CTime(5, row.unit).unit(), row.unit);
        CTime time;
        time.setUnit(row.unit);
        QCOMPARE(time.unit(), row.unit);
        time.setValue(7, row.unit);
        QCOMPARE(time.unit(), row.unit);
        QCOMPARE(time.value(), 7ULL);
    }
}

void tst_CTime::sharing_data()
{
    QTest::addColumn<int>("writer");
    QTest::newRow("setValue, count") << 0;
    QTest::newRow("setValue, both") << 1;
    QTest::newRow("setUnit") << 2;
    QTest::newRow("fromValue, other unit") << 3;
    QTest::newRow("fromValue, own unit") << 4;
    QTest::newRow("operator>>") << 5;
    QTest::newRow("operator=") << 6;
}

void tst_CTime::sharing()
{
    QFETCH(const int, writer);
    const auto write = [writer](CTime &time) {
        QDataStream in(QByteArray::fromHex("0000000000000009"
                                           "00000001"));
        switch (writer) {
        case 0:
            return time.setValue(9);
        case 1:
            return time.setValue(9, CTime::NS);
        case 2:
            return time.setUnit(CTime::NS);
        case 3:
            time.fromValue(CTime(9, CTime::S));
            return;
        case 4:
            time.fromValue(CTime(9, CTime::MS));
            return;
        case 5:
            in >> time;
            return;
        default:
            time = CTime(9, CTime::NS);
        }
    };
    CTime original(5, CTime::MS);
    CTime copy(original);
    CTime assigned;
    assigned = original;
    for (const CTime *time : {&copy, &assigned}) {
        QCOMPARE(time->value(), 5ULL);
        QCOMPARE(time->unit(), CTime::MS);
    }

    write(copy);
    QVERIFY(copy.value() != 5 || copy.unit() != CTime::MS);
    for (const CTime *time : {&original, &assigned}) {
        QCOMPARE(time->value(), 5ULL);
        QCOMPARE(time->unit(), CTime::MS);
    }
    write(original);
    QCOMPARE(original.value(), copy.value());
    QCOMPARE(original.unit(), copy.unit());
    QCOMPARE(assigned.value(), 5ULL);
    QCOMPARE(assigned.unit(), CTime::MS);
}

void tst_CTime::setters()
{
    CTime time(5, CTime::S);
    time.setUnit(CTime::MS); // the count is not converted
    QCOMPARE(time.value(), 5ULL);
    QCOMPARE(time.unit(), CTime::MS);
    time.setValue(ULLONG_MAX);
    QCOMPARE(time.value(), ULLONG_MAX);
    QCOMPARE(time.unit(), CTime::MS);
    time.setValue(3, CTime::H);
    QCOMPARE(time.value(), 3ULL);
    QCOMPARE(time.unit(), CTime::H);
    CTime &same = time;
    time = same;
    QCOMPARE(time.value(), 3ULL);
    QCOMPARE(time.unit(), CTime::H);
}

void tst_CTime::moves()
{
    CTime first(5, CTime::MS);
    const CTime kept(first);
    CTime second(std::move(first));
    QCOMPARE(second.value(), 5ULL);
    QCOMPARE(second.unit(), CTime::MS);

    first = CTime(7, CTime::H); // a moved-from object may be assigned, by move
    QCOMPARE(first.value(), 7ULL);
    QCOMPARE(first.unit(), CTime::H);
    CTime third;
    third = std::move(first);
    QCOMPARE(third.value(), 7ULL);
    QCOMPARE(third.unit(), CTime::H);
    first = kept; // and by copy
    QCOMPARE(first.value(), 5ULL);
    QCOMPARE(first.unit(), CTime::MS);
    const CTime last(std::move(second)); // and just destroyed
    QCOMPARE(last.value(), 5ULL);
}

void tst_CTime::swaps()
{
    CTime left(5, CTime::MS);
    CTime right(7, CTime::H);
    left.swap(right);
    QCOMPARE(left.value(), 7ULL);
    QCOMPARE(left.unit(), CTime::H);
    QCOMPARE(right.value(), 5ULL);
    QCOMPARE(right.unit(), CTime::MS);
    swap(left, right);
    QCOMPARE(left.value(), 5ULL);
    QCOMPARE(left.unit(), CTime::MS);
    QCOMPARE(right.value(), 7ULL);
    QCOMPARE(right.unit(), CTime::H);
}

void tst_CTime::isValid_data()
{
    QTest::addColumn<ETimeUnit>("unit");
    QTest::addColumn<bool>("expected");
    QTest::newRow("ps, not valid on purpose") << CTime::PS << false;
    QTest::newRow("ns") << CTime::NS << true;
    QTest::newRow("us") << CTime::US << true;
    QTest::newRow("ms") << CTime::MS << true;
    QTest::newRow("s") << CTime::S << true;
    QTest::newRow("min") << CTime::MIN << true;
    QTest::newRow("h") << CTime::H << true;
    QTest::newRow("unknown") << CTime::UNKNOWN << false;
    QTest::newRow("8") << code(8) << false;
    QTest::newRow("INT_MAX") << code(INT_MAX) << false;
    QTest::newRow("-1") << code(-1) << false;
    QTest::newRow("INT_MIN") << code(INT_MIN) << false;
    QTest::newRow("257, no narrow code") << code(257) << false;
}

void tst_CTime::isValid()
{
    QFETCH(const ETimeUnit, unit);
    QTEST(CTime(0, unit).isValid(), "expected"); // the count plays no part
    QTEST(CTime(1, unit).isValid(), "expected");
    QTEST(CTime(ULLONG_MAX, unit).isValid(), "expected");
}

void tst_CTime::unitHash()
{
    const QHash<QString, ETimeUnit> expected = {
        {QStringLiteral("ps"), CTime::PS}, {QStringLiteral("ns"), CTime::NS},
        {kMicroseconds, CTime::US},        {QStringLiteral("ms"), CTime::MS},
        {QStringLiteral("s"), CTime::S},   {QStringLiteral("min"), CTime::MIN},
        {QStringLiteral("h"), CTime::H},
    };
    QCOMPARE(CTime::mUnitHash, expected);
    QCOMPARE(CTime::createUnitHash(), expected);
    QCOMPARE(kHashAtLoad, expected);
    QCOMPARE(kMinutesAtLoad, CTime::MIN);
}

void tst_CTime::unitNames_data()
{
    QTest::addColumn<ETimeUnit>("unit");
    QTest::addColumn<QString>("name");
    QTest::newRow("ps") << CTime::PS << QStringLiteral("ps");
    QTest::newRow("ns") << CTime::NS << QStringLiteral("ns");
    QTest::newRow("us, micro sign") << CTime::US << kMicroseconds;
    QTest::newRow("ms") << CTime::MS << QStringLiteral("ms");
    QTest::newRow("s") << CTime::S << QStringLiteral("s");
    QTest::newRow("min") << CTime::MIN << QStringLiteral("min");
    QTest::newRow("h") << CTime::H << QStringLiteral("h");
    QTest::newRow("unknown") << CTime::UNKNOWN << QString();
    QTest::newRow("8") << code(8) << QString();
    QTest::newRow("-1") << code(-1) << QString();
    QTest::newRow("INT_MAX") << code(INT_MAX) << QString();
    QTest::newRow("INT_MIN") << code(INT_MIN) << QString();
}

void tst_CTime::unitNames()
{
    QFETCH(const ETimeUnit, unit);
    QFETCH(const QString, name);
    QCOMPARE(CTime::unitStr(unit), name);
    QCOMPARE(CTime::unitStr(unit).isNull(), name.isNull());
    QCOMPARE(CTime::unit(name), name.isNull() ? CTime::UNKNOWN : unit);
}

void tst_CTime::unitOfName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<ETimeUnit>("unit");
    const auto row = [](const char *name, ETimeUnit unit) {
        QTest::newRow(name) << QString::fromLatin1(name) << unit;
    };
    row("MS", CTime::MS);
    row("Ms", CTime::MS);
    row("mS", CTime::MS);
    row("MIN", CTime::MIN);
    row("Min", CTime::MIN);
    row("H", CTime::H);
    row("S", CTime::S);
    row("NS", CTime::NS);
    row("PS", CTime::PS);
    row("us", CTime::UNKNOWN);
    row("sec", CTime::UNKNOWN);
    row("m", CTime::UNKNOWN);
    row("", CTime::UNKNOWN);
    row(" ms", CTime::UNKNOWN);
    row("ms ", CTime::UNKNOWN);
    row("d", CTime::UNKNOWN);
    QTest::newRow("null") << QString() << CTime::UNKNOWN;
    QTest::newRow("micro sign, capital S") << QStringLiteral("\u00b5S") << CTime::US;
    QTest::newRow("Greek mu, not the micro sign") << QStringLiteral("\u03bcs") << CTime::UNKNOWN;
    QTest::newRow("capital Greek mu") << QStringLiteral("\u039cS") << CTime::UNKNOWN;
    QTest::newRow("ms and a zero unit") << QStringLiteral("ms") + QChar(0) << CTime::UNKNOWN;
}

void tst_CTime::unitOfName()
{
    QFETCH(const QString, name);
    QTEST(CTime::unit(name), "unit");
}

// Makes a row for each pair of codes.
void tst_CTime::pairs()
{
    QTest::addColumn<ETimeUnit>("from");
    QTest::addColumn<ETimeUnit>("to");
    for (const Code &from : kCodes) {
        for (const Code &to : kCodes)
            QTest::addRow("%s->%s", from.name, to.name) << from.unit << to.unit;
    }
}

void tst_CTime::convertsAllPairs_data()
{
    pairs();
}

void tst_CTime::convertsAllPairs()
{
    QFETCH(const ETimeUnit, from);
    QFETCH(const ETimeUnit, to);

    for (const double value : {0.0, 1.0, -1.0, 1.5, 0.1, -59.99, 12345.678, 1e18, -1e300, 5e-324}) {
        QVERIFY(CTime::toS(value, from) == plainSeconds(value, from));
        QVERIFY(CTime::convertValue(value, from, to) == plainConvert(value, from, to));
    }
    QVERIFY(std::isnan(CTime::convertValue(kNaN, from, to)));
    QVERIFY(CTime::convertValue(kInfinity, from, to) == kInfinity);
    QVERIFY(CTime::convertValue(-kInfinity, from, to) == -kInfinity);

    for (const quint64 count : kCounts) {
        const CTime time(count, from);
        QCOMPARE(time.value(to), plainValue(time, to));
        QCOMPARE(time.toNS(), plainValue(time, CTime::NS));
        QCOMPARE(time.toMS(), plainValue(time, CTime::MS));
        QCOMPARE(time.toS(), plainValue(time, CTime::S));

        CTime own(77, to);
        QCOMPARE(&own.fromValue(time), &own);
        const quint64 expected
            = from == to ? count : plainRounded(plainConvert(static_cast<double>(count), from, to));
        QCOMPARE(own.value(), expected);
        QCOMPARE(own.unit(), to);
    }
}

// Adds the columns of a conversion, and returns what adds a row.
static auto conversionRows()
{
    QTest::addColumn<quint64>("count");
    QTest::addColumn<ETimeUnit>("from");
    QTest::addColumn<ETimeUnit>("to");
    QTest::addColumn<quint64>("expected");
    return [](const char *name, quint64 count, ETimeUnit from, ETimeUnit to, quint64 expected) {
        QTest::newRow(name) << count << from << to << expected;
    };
}

void tst_CTime::valueInUnit_data()
{
    const auto row = conversionRows();
    row("1 s->ms", 1, CTime::S, CTime::MS, 1000);
    row("1500 us->ms, half up", 1500, CTime::US, CTime::MS, 2);
    row("1499 us->ms", 1499, CTime::US, CTime::MS, 1);
    row("-1500 us->ms, half away from zero", bits(-1500), CTime::US, CTime::MS, bits(-2));
    row("90 s->min, half up", 90, CTime::S, CTime::MIN, 2);
    row("89 s->min", 89, CTime::S, CTime::MIN, 1);
    row("1500 ps->ns, half up", 1500, CTime::PS, CTime::NS, 2);
    row("1 h->ps", 1, CTime::H, CTime::PS, Q_UINT64_C(3600000000000000));
    row("1 min->ns", 1, CTime::MIN, CTime::NS, Q_UINT64_C(60000000000));
    row("1 h->min", 1, CTime::H, CTime::MIN, 60);
    row("5400 s->h, half up", 5400, CTime::S, CTime::H, 2);
    row("5 unknown->ms, seconds", 5, CTime::UNKNOWN, CTime::MS, 5000);
    row("5 s->code 8, seconds", 5, CTime::S, code(8), 5);
    row("5 min->code -1, seconds", 5, CTime::MIN, code(-1), 300);
    row("-1 s->ms, signed", bits(-1), CTime::S, CTime::MS, bits(-1000));
    row("-1 s->h, signed", bits(-1), CTime::S, CTime::H, 0);
    row("2^53 + 1 unknown->s, 53 bits", kTwo53 + 1, CTime::UNKNOWN, CTime::S, kTwo53);
    row("2^53 + 1 s->s, raw", kTwo53 + 1, CTime::S, CTime::S, kTwo53 + 1);
    row("2^64 - 1 h->h, raw", ULLONG_MAX, CTime::H, CTime::H, ULLONG_MAX);
    row("10^10 s->ns, upper half", Q_UINT64_C(10000000000), CTime::S, CTime::NS,
        Q_UINT64_C(10000000000000000000));
    row("2^60 s->ms, beyond 64 bits", Q_UINT64_C(1) << 60, CTime::S, CTime::MS, kTwo63);
    row("-10^10 s->ns, no 64 bits with a sign", bits(Q_INT64_C(-10000000000)), CTime::S, CTime::NS,
        kTwo63);
    row("2^63 - 1 h->ps, beyond 64 bits", kTwo63 - 1, CTime::H, CTime::PS, kTwo63);
    row("2^63 h->ps, beyond 64 bits", kTwo63, CTime::H, CTime::PS, kTwo63);
}

void tst_CTime::valueInUnit()
{
    QFETCH(const quint64, count);
    QFETCH(const ETimeUnit, from);
    QFETCH(const ETimeUnit, to);
    QFETCH(const quint64, expected);
    QCOMPARE(CTime(count, from).value(to), expected);
}

void tst_CTime::fromValue_data()
{
    const auto row = conversionRows();
    row("1500 us->ms, half up", 1500, CTime::US, CTime::MS, 2);
    row("1499 us->ms", 1499, CTime::US, CTime::MS, 1);
    row("2^64 - 1 ms->ms, raw", ULLONG_MAX, CTime::MS, CTime::MS, ULLONG_MAX);
    row("2^64 - 1 ps->ps, raw", ULLONG_MAX, CTime::PS, CTime::PS, ULLONG_MAX);
    row("2^64 - 1 s->h, unsigned", ULLONG_MAX, CTime::S, CTime::H, Q_UINT64_C(5124095576030431));
    row("2^63 unknown->s", kTwo63, CTime::UNKNOWN, CTime::S, kTwo63);
    row("2^63 + 2048 unknown->s, upper half", kTwo63 + 2048, CTime::UNKNOWN, CTime::S,
        kTwo63 + 2048);
    row("2^64 - 2048 unknown->s, greatest", ULLONG_MAX - 2047, CTime::UNKNOWN, CTime::S,
        ULLONG_MAX - 2047);
    row("12 * 10^9 s->ns, upper half", Q_UINT64_C(12000000000), CTime::S, CTime::NS,
        Q_UINT64_C(12000000000000000000));
    row("2^64 - 1 unknown->s, beyond 64 bits", ULLONG_MAX, CTime::UNKNOWN, CTime::S, kTwo63);
    row("3 unknown->ms, seconds", 3, CTime::UNKNOWN, CTime::MS, 3000);
    row("3000 ms->code -1, seconds", 3000, CTime::MS, code(-1), 3);
}

void tst_CTime::fromValue()
{
    QFETCH(const quint64, count);
    QFETCH(const ETimeUnit, from);
    QFETCH(const ETimeUnit, to);
    QFETCH(const quint64, expected);
    const CTime other(count, from);
    CTime own(77, to);
    QCOMPARE(&own.fromValue(other), &own);
    QCOMPARE(own.value(), expected);
    QCOMPARE(own.unit(), to); // the own unit stays
    QCOMPARE(other.value(), count);
    QCOMPARE(other.unit(), from);
}

void tst_CTime::fromValueOfSelf()
{
    CTime time(kTwo53 + 1, CTime::MIN);
    time.fromValue(time);
    QCOMPARE(time.value(), kTwo53 + 1);
    QCOMPARE(time.unit(), CTime::MIN);
}

void tst_CTime::previousInteger_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<ETimeUnit>("unit");
    QTest::addColumn<bool>("found");
    QTest::addColumn<bool>("writes");
    QTest::addColumn<qint64>("expectedValue");
    QTest::addColumn<ETimeUnit>("expectedUnit");
    const auto found = [](const char *name, double value, ETimeUnit unit, qint64 expectedValue,
                          ETimeUnit expectedUnit) {
        QTest::newRow(name) << value << unit << true << true << expectedValue << expectedUnit;
    };
    const auto writes = [](const char *name, double value, ETimeUnit unit, qint64 expectedValue,
                           ETimeUnit expectedUnit) {
        QTest::newRow(name) << value << unit << false << true << expectedValue << expectedUnit;
    };
    const auto nothing = [](const char *name, double value, ETimeUnit unit) {
        QTest::newRow(name) << value << unit << false << false << qint64(0) << CTime::PS;
    };
    found("1.5 s, 1500 ms are whole", 1.5, CTime::S, 1, CTime::S);
    found("-1.5 s", -1.5, CTime::S, -1, CTime::S);
    found("1.0001234 s, whole within the last place", 1.0001234, CTime::S, 1000123, CTime::US);
    found("-1.0001234 s", -1.0001234, CTime::S, -1000123, CTime::US);
    found("0.5 s, truncated to 0", 0.5, CTime::S, 0, CTime::S);
    found("-0.5 s, truncated to 0", -0.5, CTime::S, 0, CTime::S);
    found("0.5 h", 0.5, CTime::H, 0, CTime::H);
    found("1.25 min", 1.25, CTime::MIN, 1, CTime::MIN);
    found("0.025 min, 1.5 s", 0.025, CTime::MIN, 1, CTime::S);
    found("1.5 ns", 1.5, CTime::NS, 1, CTime::NS);
    // The codes above H are seconds, but the walk passes H and MIN on its way down.
    found("1.5 unknown", 1.5, CTime::UNKNOWN, 1, CTime::S);
    found("1.5 of code 8", 1.5, code(8), 1, CTime::S);
    found("1.5 of code INT_MAX", 1.5, code(INT_MAX), 1, CTime::S);
    found("-1.5 of code INT_MAX", -1.5, code(INT_MAX), -1, CTime::S);
    writes("1000.5 ps, down to picoseconds", 1.0005, CTime::NS, 1000, CTime::PS);
    writes("-1000.5 ps", -1.0005, CTime::NS, -1000, CTime::PS);
    writes("1/3 s", 1.0 / 3.0, CTime::S, 333333333333, CTime::PS);
    writes("1e-300 s", 1e-300, CTime::S, 0, CTime::PS);
    writes("1/3 of code INT_MAX", 1.0 / 3.0, code(INT_MAX), 333333333333, CTime::PS);
    nothing("2 s, whole", 2.0, CTime::S);
    nothing("-2 s, whole", -2.0, CTime::S);
    nothing("2 unknown, whole", 2.0, CTime::UNKNOWN);
    nothing("2 of code INT_MAX, whole", 2.0, code(INT_MAX));
    nothing("0 s", 0.0, CTime::S);
    nothing("-0 s", -0.0, CTime::S);
    nothing("1.5 ps", 1.5, CTime::PS);
    nothing("2 ps", 2.0, CTime::PS);
    nothing("1.5 of code -1", 1.5, code(-1));
    nothing("1.5 of code INT_MIN", 1.5, code(INT_MIN));
    nothing("NaN s", kNaN, CTime::S);
    nothing("NaN h", kNaN, CTime::H);
    nothing("NaN of code INT_MAX", kNaN, code(INT_MAX));
    nothing("infinite s", kInfinity, CTime::S);
    nothing("-infinite s", -kInfinity, CTime::S);
    nothing("infinite h", kInfinity, CTime::H);
    nothing("2^63 s", kTwo63F, CTime::S);
    nothing("-2^63 s", -kTwo63F, CTime::S);
    nothing("1e19 s", 1e19, CTime::S);
    nothing("1e300 h", 1e300, CTime::H);
    nothing("greatest double h", std::numeric_limits<double>::max(), CTime::H);
    nothing("greatest double of code INT_MAX", std::numeric_limits<double>::max(), code(INT_MAX));
}

void tst_CTime::previousInteger()
{
    QFETCH(const double, value);
    QFETCH(const ETimeUnit, unit);
    QFETCH(const bool, writes);
    long long outValue = -77;
    ETimeUnit outUnit = code(-77);
    QTEST(CTime::convertToPrevIntegerValue(value, unit, outValue, outUnit), "found");
    if (writes) {
        QTEST(qint64(outValue), "expectedValue");
        QTEST(outUnit, "expectedUnit");
    } else {
        QCOMPARE(outValue, -77LL);
        QCOMPARE(outUnit, code(-77));
    }
}

void tst_CTime::previousIntegerWalk_data()
{
    QTest::addColumn<ETimeUnit>("unit");
    for (const Code &row : kCodes)
        QTest::newRow(row.name) << row.unit;
}

void tst_CTime::previousIntegerWalk()
{
    QFETCH(const ETimeUnit, unit);
    std::vector<double> values = {1.0,
                                  1.0 / 3,
                                  0.1,
                                  59.99,
                                  3600.5,
                                  1e-9,
                                  1e-12,
                                  1e-13,
                                  5e-324,
                                  1e15 + 0.5,
                                  4503599627370496.5,
                                  9007199254740993.0,
                                  9.3e18,
                                  1e300,
                                  1.0000000000000002,
                                  0.9999999999999999};
    std::mt19937_64 random(1357);
    for (int i = 0; i < 5000; ++i) {
        // Decimal fractions, which are whole in one unit or another, and fractions of any kind.
        values.push_back(static_cast<double>(random() >> (14 + random() % 50))
                         / std::pow(10.0, static_cast<double>(random() % 16)));
        values.push_back(
            std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(random() % 80)));
    }
    for (const double magnitude : values) {
        for (const double value : {magnitude, -magnitude}) {
            const Walk expected = plainWalk(value, unit);
            Walk walk;
            walk.found = CTime::convertToPrevIntegerValue(value, unit, walk.value, walk.unit);
            QVERIFY2(
                walk == expected,
                (QByteArray::number(value, 'g', 17) + ": " + text(walk) + " for " + text(expected))
                    .constData());
        }
    }
}

// Every count is whole in its own unit, the way through seconds costs it one last place at most.
void tst_CTime::previousIntegerMember()
{
    std::vector<quint64> counts(std::begin(kCounts), std::end(kCounts));
    std::mt19937_64 random(1357);
    for (int i = 0; i < 20000; ++i)
        counts.push_back(random() >> (random() % 64));
    for (const Code &row : kCodes) {
        for (const quint64 count : counts) {
            const CTime time(count, row.unit);
            Walk walk;
            walk.found = time.convertToPrevIntegerValue(walk.value, walk.unit);
            QVERIFY2(walk == Walk(), (text(time) + ": " + text(walk)).constData());
        }
    }
}

void tst_CTime::comparesAllPairs_data()
{
    pairs();
}

void tst_CTime::comparesAllPairs()
{
    QFETCH(const ETimeUnit, from);
    QFETCH(const ETimeUnit, to);
    for (const quint64 leftCount : kCounts) {
        const CTime left(leftCount, from);
        const quint64 leftNs = plainValue(left, CTime::NS);
        for (const quint64 rightCount : kCounts) {
            const CTime right(rightCount, to);
            const quint64 rightNs = plainValue(right, CTime::NS);
            QCOMPARE(left == right, leftNs == rightNs);
            QCOMPARE(left != right, leftNs != rightNs);
            QCOMPARE(left < right, leftNs < rightNs);
            QCOMPARE(left > right, leftNs > rightNs);
            QCOMPARE(left <= right, leftNs <= rightNs);
            QCOMPARE(left >= right, leftNs >= rightNs);
        }
    }
}

void tst_CTime::compares_data()
{
    QTest::addColumn<quint64>("leftCount");
    QTest::addColumn<ETimeUnit>("leftUnit");
    QTest::addColumn<quint64>("rightCount");
    QTest::addColumn<ETimeUnit>("rightUnit");
    QTest::addColumn<int>("order");
    const auto row = [](const char *name, quint64 leftCount, ETimeUnit leftUnit, quint64 rightCount,
                        ETimeUnit rightUnit, int order) {
        QTest::newRow(name) << leftCount << leftUnit << rightCount << rightUnit << order;
    };
    row("1 s, 1000 ms", 1, CTime::S, 1000, CTime::MS, 0);
    row("1 s, 1001 ms", 1, CTime::S, 1001, CTime::MS, -1);
    row("1 h, 3600 s", 1, CTime::H, 3600, CTime::S, 0);
    row("2 min, 119 s", 2, CTime::MIN, 119, CTime::S, 1);
    row("1500 ps, 2 ns, rounded", 1500, CTime::PS, 2, CTime::NS, 0);
    row("1499 ps, 2 ns", 1499, CTime::PS, 2, CTime::NS, -1);
    row("1 ps, 2 ps, both no nanosecond", 1, CTime::PS, 2, CTime::PS, 0);
    row("499 ps, 500 ps", 499, CTime::PS, 500, CTime::PS, -1);
    row("2^53 us, 2^53 + 1 us, through doubles", kTwo53, CTime::US, kTwo53 + 1, CTime::US, 0);
    row("2^53 ns, 2^53 + 1 ns, raw", kTwo53, CTime::NS, kTwo53 + 1, CTime::NS, -1);
    row("10^10 s, 12 * 10^9 s, upper half", Q_UINT64_C(10000000000), CTime::S,
        Q_UINT64_C(12000000000), CTime::S, -1);
    row("2 * 10^10 s, 3 * 10^10 s, beyond 64 bits", Q_UINT64_C(20000000000), CTime::S,
        Q_UINT64_C(30000000000), CTime::S, 0);
    row("-1 ns, 1 ns, unsigned", bits(-1), CTime::NS, 1, CTime::NS, 1);
    row("-1 ms, 1 ms, unsigned", bits(-1), CTime::MS, 1, CTime::MS, 1);
    row("1 unknown, 1 s", 1, CTime::UNKNOWN, 1, CTime::S, 0);
    row("1 of code -1, 1 of code INT_MAX", 1, code(-1), 1, code(INT_MAX), 0);
    row("0 unknown, 0 h", 0, CTime::UNKNOWN, 0, CTime::H, 0);
}

void tst_CTime::compares()
{
    QFETCH(const quint64, leftCount);
    QFETCH(const ETimeUnit, leftUnit);
    QFETCH(const quint64, rightCount);
    QFETCH(const ETimeUnit, rightUnit);
    QFETCH(const int, order);
    const CTime left(leftCount, leftUnit);
    const CTime right(rightCount, rightUnit);
    for (const bool turned : {false, true}) {
        const CTime &a = turned ? right : left;
        const CTime &b = turned ? left : right;
        const int expected = turned ? -order : order;
        QCOMPARE(a == b, expected == 0);
        QCOMPARE(a != b, expected != 0);
        QCOMPARE(a < b, expected < 0);
        QCOMPARE(a > b, expected > 0);
        QCOMPARE(a <= b, expected <= 0);
        QCOMPARE(a >= b, expected >= 0);
    }
    const CTime copy(left);
    QVERIFY(copy == left);
    QVERIFY(!(copy != left));
    QVERIFY(copy <= left && copy >= left && !(copy < left) && !(copy > left));
}

void tst_CTime::multiplies_data()
{
    QTest::addColumn<quint64>("count");
    QTest::addColumn<double>("factor");
    QTest::addColumn<quint64>("expected");
    const auto row = [](const char *name, quint64 count, double factor, quint64 expected) {
        QTest::newRow(name) << count << factor << expected;
    };
    row("3 by 0.5, half up", 3, 0.5, 2);
    row("3 by 2", 3, 2.0, 6);
    row("3 by 0.49", 3, 0.49, 1);
    row("3 by 0", 3, 0.0, 0);
    row("3 by -0", 3, -0.0, 0);
    row("3 by -1, wraps", 3, -1.0, bits(-3));
    row("1 by -0.5, half away from zero", 1, -0.5, bits(-1));
    row("1 by -0.49", 1, -0.49, 0);
    row("2^63 by 0.5, unsigned", kTwo63, 0.5, kTwo63 / 2);
    row("2^64 - 1 by 0.25, unsigned", ULLONG_MAX, 0.25, kTwo63 / 2);
    row("2^53 + 1 by 1, 53 bits", kTwo53 + 1, 1.0, kTwo53);
    row("2^62 by -2", kTwo63 / 2, -2.0, kTwo63);
    row("2^62 by 2, upper half", kTwo63 / 2, 2.0, kTwo63);
    row("2^62 by 3, upper half", kTwo63 / 2, 3.0, kTwo63 + kTwo63 / 2);
    row("18 * 10^18 by 1, upper half", Q_UINT64_C(18000000000000000000), 1.0,
        Q_UINT64_C(18000000000000000000));
    row("2^64 - 2048 by 1, greatest", ULLONG_MAX - 2047, 1.0, ULLONG_MAX - 2047);
    row("2^62 by 4, beyond 64 bits", kTwo63 / 2, 4.0, kTwo63);
    row("2^64 - 1 by 1, beyond 64 bits", ULLONG_MAX, 1.0, kTwo63);
    row("1 by 1e300, beyond 64 bits", 1, 1e300, kTwo63);
    row("1 by -1e300, beyond 64 bits", 1, -1e300, kTwo63);
    row("1 by NaN", 1, kNaN, kTwo63);
    row("0 by NaN", 0, kNaN, kTwo63);
    row("1 by infinity", 1, kInfinity, kTwo63);
    row("1 by -infinity", 1, -kInfinity, kTwo63);
    row("0 by infinity", 0, kInfinity, kTwo63);
    row("1 by 5e-324", 1, 5e-324, 0);
}

void tst_CTime::multiplies()
{
    QFETCH(const quint64, count);
    QFETCH(const double, factor);
    QFETCH(const quint64, expected);
    for (const Code &row : kCodes) {
        const CTime time(count, row.unit);
        for (const CTime &product : {time * factor, factor * time}) {
            QCOMPARE(product.value(), expected);
            QCOMPARE(product.unit(), row.unit);
        }
        QCOMPARE(time.value(), count); // its copy was detached
        QCOMPARE(time.unit(), row.unit);
    }
}

void tst_CTime::addsAllPairs_data()
{
    pairs();
}

void tst_CTime::addsAllPairs()
{
    QFETCH(const ETimeUnit, from);
    QFETCH(const ETimeUnit, to);
    for (const quint64 leftCount : kCounts) {
        for (const quint64 rightCount : kCounts) {
            const CTime left(leftCount, from);
            const CTime right(rightCount, to);
            const CTime sum = left + right;
            QCOMPARE(sum.unit(), from);
            if (from == to) {
                // Contract: twice the code of the unit, whatever the counts.
                QCOMPARE(sum.value(), bits(2 * static_cast<qint64>(from)));
                continue;
            }
            const quint64 ns = plainValue(left, CTime::NS) + plainValue(right, CTime::NS);
            const quint64 expected
                = plainCut(plainConvert(static_cast<double>(ns), CTime::NS, from));
            QVERIFY2(sum.value() == expected,
                     (text(left) + " + " + text(right) + ": " + text(sum)).constData());
        }
    }
}

void tst_CTime::adds_data()
{
    QTest::addColumn<quint64>("leftCount");
    QTest::addColumn<ETimeUnit>("leftUnit");
    QTest::addColumn<quint64>("rightCount");
    QTest::addColumn<ETimeUnit>("rightUnit");
    QTest::addColumn<quint64>("expected");
    const auto row = [](const char *name, quint64 leftCount, ETimeUnit leftUnit, quint64 rightCount,
                        ETimeUnit rightUnit, quint64 expected) {
        QTest::newRow(name) << leftCount << leftUnit << rightCount << rightUnit << expected;
    };
    row("1 s + 500 ms, cut", 1, CTime::S, 500, CTime::MS, 1);
    row("500 ms + 1 s", 500, CTime::MS, 1, CTime::S, 1500);
    row("0 s + 1600 ms, cut", 0, CTime::S, 1600, CTime::MS, 1);
    row("2 h + 90 min, cut", 2, CTime::H, 90, CTime::MIN, 3);
    row("0 ns + 1500 ps, rounded to ns", 0, CTime::NS, 1500, CTime::PS, 2);
    row("0 unknown + 2500 ms, seconds", 0, CTime::UNKNOWN, 2500, CTime::MS, 2);
    row("1 of code -1 + 1 s", 1, code(-1), 1, CTime::S, 2);
    row("5 s + -3000 ms, wraps", 5, CTime::S, bits(-3000), CTime::MS, 2);
    row("0 ns + 10^10 s, upper half", 0, CTime::NS, Q_UINT64_C(10000000000), CTime::S,
        Q_UINT64_C(10000000000000000000));
    row("1 s + -2000 ms, unsigned", 1, CTime::S, bits(-2000), CTime::MS, 18446744072);
    row("5 ms + 3 ms, same unit", 5, CTime::MS, 3, CTime::MS, 6);
    row("10 ms + 20 ms, same unit", 10, CTime::MS, 20, CTime::MS, 6);
    row("7 s + 1 s, same unit", 7, CTime::S, 1, CTime::S, 8);
    row("2 h + 2 h, same unit", 2, CTime::H, 2, CTime::H, 12);
    row("9 ps + 9 ps, same unit", 9, CTime::PS, 9, CTime::PS, 0);
    row("0 unknown + 0 unknown, same unit", 0, CTime::UNKNOWN, 0, CTime::UNKNOWN, 14);
    row("code -1 twice", 5, code(-1), 3, code(-1), bits(-2));
    row("code INT_MAX twice", 5, code(INT_MAX), 3, code(INT_MAX), Q_UINT64_C(4294967294));
    row("code INT_MIN twice", 5, code(INT_MIN), 3, code(INT_MIN), bits(Q_INT64_C(-4294967296)));
}

void tst_CTime::adds()
{
    QFETCH(const quint64, leftCount);
    QFETCH(const ETimeUnit, leftUnit);
    QFETCH(const quint64, rightCount);
    QFETCH(const ETimeUnit, rightUnit);
    const CTime left(leftCount, leftUnit);
    const CTime right(rightCount, rightUnit);
    QTEST(quint64((left + right).value()), "expected");
    QCOMPARE((left + right).unit(), leftUnit);
    QCOMPARE(left.value(), leftCount);
    QCOMPARE(right.value(), rightCount);
}

void tst_CTime::stream_data()
{
    QTest::addColumn<quint64>("count");
    QTest::addColumn<ETimeUnit>("unit");
    QTest::addColumn<QByteArray>("bigEndian");
    QTest::addColumn<QByteArray>("littleEndian");
    const auto row = [](const char *name, quint64 count, ETimeUnit unit, const char *bigEndian,
                        const char *littleEndian) {
        QTest::newRow(name) << count << unit << QByteArray(bigEndian) << QByteArray(littleEndian);
    };
    row("0 unknown, default", 0, CTime::UNKNOWN, "000000000000000000000007",
        "000000000000000007000000");
    row("0x123456789abcdef us", 0x0123456789ABCDEF, CTime::US, "0123456789abcdef00000002",
        "efcdab896745230102000000");
    row("2^64 - 1 ps", ULLONG_MAX, CTime::PS, "ffffffffffffffff00000000",
        "ffffffffffffffff00000000");
    row("2^63 h", kTwo63, CTime::H, "800000000000000000000006", "000000000000008006000000");
    row("5 of code -1", 5, code(-1), "0000000000000005ffffffff", "0500000000000000ffffffff");
    row("5 of code 8", 5, code(8), "000000000000000500000008", "050000000000000008000000");
    row("5 of code INT_MAX", 5, code(INT_MAX), "00000000000000057fffffff",
        "0500000000000000ffffff7f");
    row("5 of code INT_MIN", 5, code(INT_MIN), "000000000000000580000000",
        "050000000000000000000080");
}

void tst_CTime::stream()
{
    QFETCH(const quint64, count);
    QFETCH(const ETimeUnit, unit);
    for (const auto version : {QDataStream::Qt_4_6, QDataStream::Qt_5_0, QDataStream::Qt_5_15}) {
        for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out.setVersion(version);
            out.setByteOrder(order);
            QCOMPARE(&(out << CTime(count, unit)), &out);
            QTEST(bytes.toHex(), order == QDataStream::BigEndian ? "bigEndian" : "littleEndian");

            QDataStream in(bytes + "tail");
            in.setVersion(version);
            in.setByteOrder(order);
            CTime time(77, CTime::MIN);
            QCOMPARE(&(in >> time), &in);
            QCOMPARE(time.value(), count);
            QCOMPARE(time.unit(), unit);
            QCOMPARE(in.status(), QDataStream::Ok);
            QCOMPARE(in.device()->bytesAvailable(), 4LL);
        }
    }
}

void tst_CTime::shortStream_data()
{
    QTest::addColumn<int>("length");
    for (int length = 0; length < 12; ++length)
        QTest::addRow("%d bytes", length) << length;
}

void tst_CTime::shortStream()
{
    QFETCH(const int, length);
    const QByteArray whole = QByteArray::fromHex("0123456789abcdef01020304");
    for (const auto version : {QDataStream::Qt_4_6, QDataStream::Qt_5_0, QDataStream::Qt_5_15}) {
        QDataStream in(whole.left(length));
        in.setVersion(version);
        CTime time(77, CTime::MIN);
        in >> time;
        QCOMPARE(time.value(), length < 8 ? 0ULL : 0x0123456789ABCDEFULL);
        QCOMPARE(time.unit(), CTime::PS);
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
    }
}

void tst_CTime::debug_data()
{
    QTest::addColumn<CTime>("time");
    QTest::addColumn<QString>("expected");
    QTest::newRow("5 ms") << CTime(5, CTime::MS) << QStringLiteral("CTime(5 ms)|7 x");
    QTest::newRow("2^64 - 1 us") << CTime(ULLONG_MAX, CTime::US)
                                 << QStringLiteral("CTime(18446744073709551615 \u00b5s)|7 x");
}

void tst_CTime::debug()
{
    QFETCH(const CTime, time);
    QString written;
    QDebug(&written).nospace() << time << '|' << 7 << " x"; // the state of the stream is kept
    QTEST(written, "expected");
    QString spaced;
    QDebug(&spaced) << 1 << time << 2;
    QVERIFY(spaced.startsWith(QLatin1String("1 CTime(")));
    QVERIFY(spaced.trimmed().endsWith(QLatin1String(") 2")));
}

QTEST_APPLESS_MAIN(tst_CTime)

#include "tst_CTime.moc"
