#include "CDateTime.h"

#include <QDataStream>
#include <QTimeZone>
#include <QtTest>

#include <algorithm>
#include <ctime>
#include <iterator>
#include <limits>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

using NTypes::tsDate;
using NTypes::tsDateTime;
using NTypes::tsTime;

Q_DECLARE_METATYPE(Qt::TimeSpec)

namespace {

static_assert(std::has_virtual_destructor_v<CDateTime>);
static_assert(std::is_nothrow_move_constructible_v<CDateTime>);
static_assert(std::is_nothrow_move_assignable_v<CDateTime>);
static_assert(std::is_nothrow_swappable_v<CDateTime>);
static_assert(std::is_convertible_v<QDateTime, CDateTime>);
static_assert(sizeof(CDateTime) == sizeof(void *) + sizeof(QDateTime));

constexpr Qt::TimeSpec kSpecs[] = {Qt::LocalTime, Qt::UTC, Qt::OffsetFromUTC, Qt::TimeZone};
constexpr QDataStream::Version kVersions[]
    = {QDataStream::Qt_4_6, QDataStream::Qt_5_0, QDataStream::Qt_5_15};

//! Makes a rule the local time zone while it lives.
class LocalZone
{
public:
    explicit LocalZone(const QByteArray &rule) { set(rule); }
    ~LocalZone()
    {
        if (mPrevious.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", mPrevious);
        tzset();
    }

private:
    Q_DISABLE_COPY(LocalZone)

    static void set(const QByteArray &rule)
    {
        qputenv("TZ", rule);
        tzset();
    }

    const QByteArray mPrevious = qgetenv("TZ");
};

constexpr char kUtc[] = "UTC";
constexpr char kGapAtTwo[] = "CET-1CEST,M3.5.0,M10.5.0/3";        // and an overlap from 2 to 3
constexpr char kGapAtMidnight[] = "XXX3YYY,M10.3.0/0,M2.3.0/0";   // and an overlap before it
constexpr char kHalfHours[] = "LHST-10:30LHDT-11,M10.1.0,M4.1.0"; // steps of half an hour
constexpr char kSouth[] = "AEST-10AEDT,M10.1.0,M4.1.0/3";         // summer in January
constexpr char kWinterTime[] = "IST-1GMT0,M10.5.0,M3.5.0/1";      // the rule turns on in winter

struct Zone
{
    const char *name;
    const char *rule;
};
constexpr Zone kZones[] = {{"UTC", kUtc},
                           {"gap at 2", kGapAtTwo},
                           {"gap at midnight", kGapAtMidnight},
                           {"half hours", kHalfHours}};

//! Returns the packed form of a reading.
constexpr qint64 packed(int year, int month, int day, int hour, int minute, int second,
                        int hundredths)
{
    quint64 bits = static_cast<quint64>(year) & 0xFFFF;
    for (const int part : {month, day, hour, minute, second, hundredths})
        bits = bits << 8 | (static_cast<quint64>(part) & 0xFF);
    return static_cast<qint64>(bits);
}
static_assert(packed(2014, 5, 6, 7, 8, 9, 12) == 0x07DE05060708090C);

//! Returns the packed form of the reading of \a dateTime, whatever that is.
qint64 packed(const QDateTime &dateTime)
{
    const QDate date = dateTime.date();
    const QTime time = dateTime.time();
    return packed(date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second(),
                  time.msec() > 0 ? time.msec() / 10 : 0);
}

//! Returns a field of \a bytes bytes from bit \a shift on, with its sign.
int field(qint64 bits, int shift, int bytes)
{
    const auto low = static_cast<quint64>(bits) >> shift;
    return bytes == 1 ? static_cast<qint8>(low) : static_cast<qint16>(low);
}

tsDateTime record(qint64 bits)
{
    const auto byte = [bits](int shift) { return static_cast<qint8>(field(bits, shift, 1)); };
    tsDateTime record;
    record.time.hundredths = byte(0);
    record.time.seconds = byte(8);
    record.time.minutes = byte(16);
    record.time.hours = byte(24);
    record.date.day = byte(32);
    record.date.month = byte(40);
    record.date.year = static_cast<qint16>(field(bits, 48, 2));
    return record;
}

//! Gives \a dateTime the reading, first the date and then the time.
void assign(QDateTime &dateTime, qint64 bits)
{
    dateTime.setDate(QDate(field(bits, 48, 2), field(bits, 40, 1), field(bits, 32, 1)));
    dateTime.setTime(
        QTime(field(bits, 24, 1), field(bits, 16, 1), field(bits, 8, 1), field(bits, 0, 1) * 10));
}

//! Two dates of the halves of a year.
constexpr int kMonths[] = {1, 7};

//! Converts a local time of \a month, as any other part of a program may. The C library remembers
//! which half of the year it was in.
qint64 convertOne(int month)
{
    return QDateTime(QDate(2021, month, 15), QTime(12, 0), Qt::LocalTime).toMSecsSinceEpoch();
}

QDateTime reading(qint64 bits, Qt::TimeSpec spec)
{
    QDateTime dateTime;
    dateTime.setTimeSpec(spec);
    assign(dateTime, bits);
    return dateTime;
}

template <class X>
QByteArray streamed(const X &value, QDataStream::Version version)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(version);
    out << value;
    return bytes;
}

//! Returns all that there is to a date-time: reading, spec, offset or zone, and its two flags.
template <class X>
QByteArray state(const X &dateTime)
{
    return streamed(dateTime, QDataStream::Qt_5_15).toHex() + (dateTime.isNull() ? " null" : "")
        + (dateTime.isValid() ? " valid " : " invalid ") + QByteArray::number(dateTime.timeSpec());
}

//! Date-times of every spec, valid and not.
std::vector<QDateTime> samples()
{
    const QDate date(2021, 7, 1);
    const QTime time(23, 59, 59, 999);
    QDateTime onlyTime;
    onlyTime.setTime(time);
    return {
        QDateTime(),
        onlyTime,
        QDateTime(date, time, Qt::LocalTime),
        QDateTime(date, time, Qt::UTC),
        QDateTime(date, time, Qt::OffsetFromUTC, 5400),
        QDateTime(date, time, Qt::OffsetFromUTC, -43200),
        QDateTime(date, time, QTimeZone(20700)),
        QDateTime(QDate(2021, 3, 28), QTime(2, 30), Qt::LocalTime),
        QDateTime(QDate(2021, 10, 31), QTime(2, 30), Qt::LocalTime),
        QDateTime(QDate(2021, 10, 17), QTime(0, 30), Qt::LocalTime),
        QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC),
        QDateTime(QDate(-1, 12, 31), QTime(0, 0, 0, 9), Qt::UTC),
        QDateTime(QDate(9999, 12, 31), time, Qt::UTC),
        QDateTime(QDate(40000, 2, 29), time, Qt::UTC),
    };
}

} // namespace

class tst_CDateTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void null();
    void packs_data();
    void packs();
    void nullPacks();
    void hundredths_data();
    void hundredths();
    void eachBit();

    void readings_data();
    void readings();
    void assignsParts_data();
    void assignsParts();
    void impossibleParts_data();
    void impossibleParts();
    void gapKeepsParts_data();
    void gapKeepsParts();
    void repeatedHour_data();
    void repeatedHour();
    void copiesAndMoves();
    void fromQDateTime();

    void setTimeSpec_data();
    void setTimeSpec();
    void sameSpec();
    void converts_data();
    void converts();
    void isoDateTime_data();
    void isoDateTime();

    void byteArray_data();
    void byteArray();
    void byteArrayRoundTrip_data();
    void byteArrayRoundTrip();

    void compares_data();
    void compares();
    void comparesOrder();
    void streamBytes();
    void stream_data();
    void stream();
    void streamOfUnknownZone();
    void streamOfRuledZone();
    void streamOfAnySpec();

private:
    static void zones();
};

void tst_CDateTime::zones()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<Qt::TimeSpec>("spec");
    constexpr const char *kNames[] = {"local", "UTC", "offset", "zone"};
    for (const Zone &zone : kZones) {
        for (std::size_t i = 0; i < std::size(kSpecs); ++i)
            QTest::addRow("%s, %s", zone.name, kNames[i]) << QByteArray(zone.rule) << kSpecs[i];
    }
}

void tst_CDateTime::null()
{
    const CDateTime dateTime;
    QVERIFY(dateTime.isNull());
    QVERIFY(!dateTime.isValid());
    QCOMPARE(dateTime.timeSpec(), Qt::LocalTime);
    QCOMPARE(state(dateTime), state(QDateTime()));
}

void tst_CDateTime::packs_data()
{
    QTest::addColumn<QDateTime>("dateTime");
    QTest::addColumn<qint64>("bits");
    const auto row = [](const char *name, QDate date, QTime time, qint64 bits) {
        QTest::newRow(name) << QDateTime(date, time, Qt::UTC) << bits;
    };
    row("2014-05-06 07:08:09.123", QDate(2014, 5, 6), QTime(7, 8, 9, 123), 0x07DE05060708090C);
    row("1970-01-01 00:00", QDate(1970, 1, 1), QTime(0, 0), 0x07B2010100000000);
    row("year 1", QDate(1, 1, 1), QTime(0, 0, 0, 10), 0x0001010100000001);
    row("year 9999, all greatest", QDate(9999, 12, 31), QTime(23, 59, 59, 999), 0x270F0C1F173B3B63);
    row("year -1", QDate(-1, 12, 31), QTime(23, 0), Q_INT64_C(-0xF3E0E9000000));
    row("year -4713", QDate(-4713, 1, 2), QTime(0, 0), packed(0xED97, 1, 2, 0, 0, 0, 0));
    row("year 32767", QDate(32767, 1, 1), QTime(0, 0), 0x7FFF010100000000);
    row("leap day", QDate(2000, 2, 29), QTime(12, 0), 0x07D0021D0C000000);
}

void tst_CDateTime::packs()
{
    QFETCH(const QDateTime, dateTime);
    QFETCH(const qint64, bits);
    QCOMPARE(qint64(CDateTime(dateTime).toI64(Qt::UTC)), bits);

    const CDateTime read(bits, Qt::UTC);
    QVERIFY(read.isValid());
    QCOMPARE(read.timeSpec(), Qt::UTC);
    const int cut = dateTime.time().msec() % 10;
    QCOMPARE(state(read), state(dateTime.addMSecs(-cut)));
    QCOMPARE(state(CDateTime(record(bits), Qt::UTC)), state(read));
}

void tst_CDateTime::nullPacks()
{
    for (const Qt::TimeSpec spec : kSpecs)
        QCOMPARE(CDateTime().toI64(spec), 0x00000000FFFFFF00LL);
    // The low 16 bits of a year, as a record has them.
    const CDateTime far(QDateTime(QDate(32768, 1, 1), QTime(0, 0), Qt::UTC));
    QCOMPARE(quint64(far.toI64(Qt::UTC)), Q_UINT64_C(0x8000010100000000));
    const CDateTime farther(QDateTime(QDate(65537, 1, 1), QTime(0, 0), Qt::UTC));
    QCOMPARE(quint64(farther.toI64(Qt::UTC)), Q_UINT64_C(0x0001010100000000));
    // No date, but a time: invalid, and packed all the same.
    QDateTime onlyTime;
    onlyTime.setTime(QTime(1, 2, 3, 40));
    QCOMPARE(CDateTime(onlyTime).toI64(Qt::LocalTime), 0x0000000001020304LL);
}

void tst_CDateTime::hundredths_data()
{
    QTest::addColumn<int>("msec");
    QTest::addColumn<int>("expected");
    for (const auto &[msec, expected] : {std::pair(0, 0),
                                         {1, 0},
                                         {9, 0},
                                         {10, 1},
                                         {19, 1},
                                         {123, 12},
                                         {989, 98},
                                         {990, 99},
                                         {999, 99}})
        QTest::addRow("%d ms", msec) << msec << expected;
}

void tst_CDateTime::hundredths()
{
    QFETCH(const int, msec);
    QFETCH(const int, expected);
    const CDateTime dateTime(QDateTime(QDate(2014, 5, 6), QTime(7, 8, 9, msec), Qt::UTC));
    QCOMPARE(qint64(dateTime.toI64(Qt::UTC)), packed(2014, 5, 6, 7, 8, 9, expected));
}

// Every bit of the packed form alone, turned in two readings.
void tst_CDateTime::eachBit()
{
    const LocalZone zone(kGapAtTwo);
    for (const qint64 base : {packed(2014, 5, 6, 7, 8, 9, 12), qint64(0), qint64(-1)}) {
        for (int bit = 0; bit < 64; ++bit) {
            const qint64 bits = base ^ static_cast<qint64>(Q_UINT64_C(1) << bit);
            for (const Qt::TimeSpec spec : kSpecs) {
                const QDateTime expected = reading(bits, spec);
                QCOMPARE(state(CDateTime(bits, spec)), state(expected));
                QCOMPARE(state(CDateTime(record(bits), spec)), state(expected));
                QCOMPARE(qint64(CDateTime(bits, spec).toI64(spec)),
                         packed(expected.toTimeSpec(spec)));
            }
        }
    }
}

void tst_CDateTime::readings_data()
{
    zones();
}

// The readings around every step of the clock in a year, and some without a valid part.
void tst_CDateTime::readings()
{
    QFETCH(const QByteArray, zone);
    QFETCH(const Qt::TimeSpec, spec);
    const LocalZone localZone(zone);

    std::vector<qint64> readings = {
        packed(2021, 13, 1, 12, 0, 0, 0), packed(2021, 2, 29, 12, 0, 0, 0),
        packed(2021, 0, 1, 0, 0, 0, 0),   packed(2021, 7, 1, 24, 0, 0, 0),
        packed(0, 7, 1, 12, 0, 0, 0),     packed(1969, 12, 31, 23, 59, 59, 99),
        packed(1900, 7, 1, 12, 0, 0, 0),  packed(2100, 7, 1, 12, 0, 0, 0),
        packed(-1, 7, 1, 12, 0, 0, 0),    packed(32767, 7, 1, 12, 0, 0, 0),
    };
    for (QDate date(2021, 1, 1); date.year() == 2021; date = date.addDays(1)) {
        for (int halfHour = 0; halfHour < 48; ++halfHour) {
            if (date.dayOfWeek() == Qt::Sunday || halfHour % 16 == 1)
                readings.push_back(packed(date.year(), date.month(), date.day(), halfHour / 2,
                                          halfHour % 2 * 30, 15, 42));
        }
    }
    // What stood there before must not be left over; it is in the hour of a gap for two zones.
    const qint64 before = packed(2021, 3, 28, 2, 30, 0, 0);
    for (const qint64 bits : readings) {
        const QDateTime expected = reading(bits, spec);
        const CDateTime dateTime(bits, spec);
        QCOMPARE(state(dateTime), state(expected));
        QCOMPARE(state(CDateTime(record(bits), spec)), state(expected));

        QDateTime expectedAssigned = reading(before, spec);
        assign(expectedAssigned, bits);
        CDateTime assigned(before, spec);
        QCOMPARE(&(assigned = static_cast<long long>(bits)), &assigned);
        QCOMPARE(state(assigned), state(expectedAssigned));
        CDateTime fromRecord(before, spec);
        QCOMPARE(&(fromRecord = record(bits)), &fromRecord);
        QCOMPARE(state(fromRecord), state(expectedAssigned));

        for (const Qt::TimeSpec to : kSpecs) {
            const QDateTime converted = expected.toTimeSpec(to);
            QCOMPARE(state(dateTime.toQDateTime(to)), state(converted));
            QCOMPARE(dateTime.toIsoDateTime(to), converted.toString(Qt::ISODate));
            QCOMPARE(qint64(dateTime.toI64(to)), packed(converted));
        }
    }
}

void tst_CDateTime::assignsParts_data()
{
    zones();
}

void tst_CDateTime::assignsParts()
{
    QFETCH(const QByteArray, zone);
    const LocalZone localZone(zone);
    for (const QDateTime &sample : samples()) {
        for (const qint64 bits :
             {packed(2021, 3, 28, 2, 30, 0, 0), packed(2021, 10, 17, 0, 30, 59, 99),
              packed(2021, 13, 1, 24, 0, 0, 0), packed(2021, 7, 1, 12, 60, 0, 0), qint64(0)}) {
            QDateTime expected = sample;
            CDateTime dateTime(sample);
            expected.setDate(QDate(field(bits, 48, 2), field(bits, 40, 1), field(bits, 32, 1)));
            dateTime.setDate(record(bits).date);
            QCOMPARE(state(dateTime), state(expected));
            expected.setTime(QTime(field(bits, 24, 1), field(bits, 16, 1), field(bits, 8, 1),
                                   field(bits, 0, 1) * 10));
            dateTime.setTime(record(bits).time);
            QCOMPARE(state(dateTime), state(expected)); // any spec, offset and zone is kept
            CDateTime assigned(sample);
            assigned = static_cast<long long>(bits);
            QCOMPARE(state(assigned), state(expected));
        }
    }
}

void tst_CDateTime::impossibleParts_data()
{
    QTest::addColumn<qint64>("bits");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QString>("expected");
    const QString midnight = QStringLiteral("2021-07-01T00:00:00Z");
    const auto row = [](const char *name, qint64 bits, bool valid, const QString &expected) {
        QTest::newRow(name) << bits << valid << expected;
    };
    row("month 13", packed(2021, 13, 1, 12, 0, 0, 0), false, QString());
    row("month 0", packed(2021, 0, 1, 12, 0, 0, 0), false, QString());
    row("month -1", packed(2021, -1, 1, 12, 0, 0, 0), false, QString());
    row("day 0", packed(2021, 7, 0, 12, 0, 0, 0), false, QString());
    row("day 32", packed(2021, 7, 32, 12, 0, 0, 0), false, QString());
    row("day -1", packed(2021, 7, -1, 12, 0, 0, 0), false, QString());
    row("29 February 2021", packed(2021, 2, 29, 12, 0, 0, 0), false, QString());
    row("year 0", packed(0, 7, 1, 12, 0, 0, 0), false, QString());
    row("all bits 0", 0, false, QString());
    row("all bits 1", -1, false, QString());
    // An impossible time is midnight.
    row("hour 24", packed(2021, 7, 1, 24, 0, 0, 0), true, midnight);
    row("hour -1", packed(2021, 7, 1, -1, 0, 0, 0), true, midnight);
    row("minute 60", packed(2021, 7, 1, 12, 60, 0, 0), true, midnight);
    row("second 60", packed(2021, 7, 1, 12, 0, 60, 0), true, midnight);
    row("100 hundredths", packed(2021, 7, 1, 12, 0, 0, 100), true, midnight);
    row("-1 hundredths", packed(2021, 7, 1, 12, 0, 0, -1), true, midnight);
    row("99 hundredths", packed(2021, 7, 1, 12, 0, 0, 99), true,
        QStringLiteral("2021-07-01T12:00:00Z"));
}

void tst_CDateTime::impossibleParts()
{
    QFETCH(const qint64, bits);
    QFETCH(const bool, valid);
    const CDateTime dateTime(bits, Qt::UTC);
    QCOMPARE(dateTime.isValid(), valid);
    QTEST(dateTime.toIsoDateTime(Qt::UTC), "expected");
    CDateTime assigned(packed(2014, 5, 6, 7, 8, 9, 12), Qt::UTC);
    assigned = static_cast<long long>(bits);
    QCOMPARE(assigned.isValid(), valid);
    QTEST(assigned.toIsoDateTime(Qt::UTC), "expected");
}

void tst_CDateTime::gapKeepsParts_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<qint64>("bits");
    QTest::addColumn<bool>("inGap");
    const auto row = [](const char *name, const char *zone, qint64 bits, bool inGap) {
        QTest::newRow(name) << QByteArray(zone) << bits << inGap;
    };
    row("gap at 2, 02:30", kGapAtTwo, packed(2021, 3, 28, 2, 30, 0, 0), true);
    row("gap at 2, 02:00", kGapAtTwo, packed(2021, 3, 28, 2, 0, 0, 0), true);
    row("gap at 2, 03:00 behind it", kGapAtTwo, packed(2021, 3, 28, 3, 0, 0, 0), false);
    row("overlap at 2, 02:30", kGapAtTwo, packed(2021, 10, 31, 2, 30, 0, 0), false);
    row("gap at midnight, 00:00", kGapAtMidnight, packed(2021, 10, 17, 0, 0, 0, 0), true);
    row("gap at midnight, 00:30", kGapAtMidnight, packed(2021, 10, 17, 0, 30, 0, 99), true);
    // The date alone is in the gap until the time is set.
    row("gap at midnight, 12:30", kGapAtMidnight, packed(2021, 10, 17, 12, 30, 0, 0), false);
    row("gap in the south, 02:30", kSouth, packed(2021, 10, 3, 2, 30, 0, 0), true);
    row("gap of winter time, 01:30", kWinterTime, packed(2021, 3, 28, 1, 30, 0, 0), true);
    row("overlap before midnight, 23:30", kGapAtMidnight, packed(2021, 2, 20, 23, 30, 0, 0), false);
}

void tst_CDateTime::gapKeepsParts()
{
    QFETCH(const QByteArray, zone);
    QFETCH(const qint64, bits);
    const LocalZone localZone(zone);
    for (const int before : kMonths) {
        convertOne(before);
        const CDateTime dateTime(bits, Qt::LocalTime);
        QTEST(!dateTime.isValid(), "inGap"); // as QDateTime has it
        QCOMPARE(qint64(dateTime.toI64(Qt::LocalTime)), bits);
        convertOne(before);
        QCOMPARE(qint64(CDateTime(record(bits), Qt::LocalTime).toI64(Qt::LocalTime)), bits);
        convertOne(before);
        CDateTime assigned;
        assigned = static_cast<long long>(bits);
        QCOMPARE(qint64(assigned.toI64(Qt::LocalTime)), bits);
        const QByteArray bytes = dateTime.toI64ByteArray(Qt::LocalTime);
        convertOne(before);
        QCOMPARE(qint64(CDateTime::fromI64ByteArray(bytes, Qt::LocalTime).toI64(Qt::LocalTime)),
                 bits);
    }
}

void tst_CDateTime::repeatedHour_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<qint64>("bits");
    QTest::addColumn<QString>("expected"); // in UTC
    const auto row = [](const char *name, const char *zone, qint64 bits, const char *expected) {
        QTest::newRow(name) << QByteArray(zone) << bits << QString::fromLatin1(expected);
    };
    row("north, 01:59:59.99 before it", kGapAtTwo, packed(2021, 10, 31, 1, 59, 59, 99),
        "2021-10-30T23:59:59.990Z");
    row("north, 02:00", kGapAtTwo, packed(2021, 10, 31, 2, 0, 0, 0), "2021-10-31T00:00:00.000Z");
    row("north, 02:30", kGapAtTwo, 0x07E50A1F021E0000, "2021-10-31T00:30:00.000Z");
    row("north, 02:59:59.99", kGapAtTwo, packed(2021, 10, 31, 2, 59, 59, 99),
        "2021-10-31T00:59:59.990Z");
    row("north, 03:00 behind it", kGapAtTwo, packed(2021, 10, 31, 3, 0, 0, 0),
        "2021-10-31T02:00:00.000Z");
    row("south, 02:30", kSouth, packed(2021, 4, 4, 2, 30, 0, 0), "2021-04-03T15:30:00.000Z");
    row("south, 03:00 behind it", kSouth, packed(2021, 4, 4, 3, 0, 0, 0),
        "2021-04-03T17:00:00.000Z");
    row("south, before midnight, 23:30", kGapAtMidnight, packed(2021, 2, 20, 23, 30, 0, 0),
        "2021-02-21T01:30:00.000Z");
    row("half an hour, 01:45", kHalfHours, packed(2021, 4, 4, 1, 45, 0, 0),
        "2021-04-03T14:45:00.000Z");
    row("winter time, 01:30", kWinterTime, packed(2021, 10, 31, 1, 30, 0, 0),
        "2021-10-31T00:30:00.000Z");
}

// The C library takes a reading that a clock shows twice for the one closer to what it converted
// last. The date is set first, so that this is the half of the year that the day begins in.
void tst_CDateTime::repeatedHour()
{
    QFETCH(const QByteArray, zone);
    QFETCH(const qint64, bits);
    QFETCH(const QString, expected);
    const LocalZone localZone(zone);
    QVERIFY(convertOne(7) - convertOne(1) != QDate(2021, 1, 15).daysTo({2021, 7, 15}) * 86400000);
    QByteArray bytes(8, '\0');
    qToLittleEndian(bits, bytes.data());
    for (const int before : kMonths) {
        const auto check = [&](auto make) {
            convertOne(before);
            const CDateTime dateTime = make();
            for (const int behind : kMonths) {
                convertOne(behind);
                QCOMPARE(dateTime.toQDateTime(Qt::UTC).toString(Qt::ISODateWithMs), expected);
                QCOMPARE(qint64(dateTime.toI64(Qt::LocalTime)), bits);
            }
        };
        check([&] { return CDateTime(bits, Qt::LocalTime); });
        check([&] { return CDateTime(bits, Qt::TimeZone); }); // local time as well
        check([&] { return CDateTime(record(bits), Qt::LocalTime); });
        check([&] { return CDateTime::fromI64ByteArray(bytes, Qt::LocalTime); });
        check([&] {
            CDateTime assigned;
            assigned = static_cast<long long>(bits);
            return assigned;
        });
    }
}

void tst_CDateTime::copiesAndMoves()
{
    const LocalZone zone(kGapAtTwo);
    const CDateTime other(packed(2014, 5, 6, 7, 8, 9, 12), Qt::UTC);
    for (const QDateTime &sample : samples()) {
        const QByteArray expected = state(sample);
        CDateTime original(sample);
        CDateTime copy(original);
        CDateTime assigned(other);
        QCOMPARE(&(assigned = original), &assigned);
        original.setDate({6, 5, 2014}); // the copies are values of their own
        QCOMPARE(state(copy), expected);
        QCOMPARE(state(assigned), expected);

        CDateTime moved(std::move(copy));
        QCOMPARE(state(moved), expected);
        copy = other; // a moved-from object may be assigned
        QCOMPARE(state(copy), state(other));
        copy = std::move(moved);
        QCOMPARE(state(copy), expected);
        moved = QDateTime(sample);
        QCOMPARE(state(moved), expected);

        CDateTime second(other);
        copy.swap(second);
        QCOMPARE(state(copy), state(other));
        QCOMPARE(state(second), expected);
        swap(copy, second);
        QCOMPARE(state(copy), expected);
        QCOMPARE(state(second), state(other));
    }
}

void tst_CDateTime::fromQDateTime()
{
    const LocalZone zone(kGapAtTwo);
    for (const QDateTime &sample : samples()) {
        const CDateTime constructed = sample;
        CDateTime assigned(packed(2014, 5, 6, 7, 8, 9, 12), Qt::UTC);
        QCOMPARE(&(assigned = sample), &assigned);
        for (const CDateTime &dateTime : {constructed, assigned}) {
            QCOMPARE(state(dateTime), state(sample));
            QCOMPARE(dateTime.isNull(), sample.isNull());
            QCOMPARE(dateTime.isValid(), sample.isValid());
            QCOMPARE(dateTime.timeSpec(), sample.timeSpec());
        }
    }
}

void tst_CDateTime::setTimeSpec_data()
{
    zones();
}

void tst_CDateTime::setTimeSpec()
{
    QFETCH(const QByteArray, zone);
    QFETCH(const Qt::TimeSpec, spec);
    const LocalZone localZone(zone);
    for (const QDateTime &sample : samples()) {
        CDateTime dateTime(sample);
        dateTime.setTimeSpec(spec);
        const bool same = sample.timeSpec() == spec;
        QCOMPARE(state(dateTime), state(same ? sample : sample.toTimeSpec(spec)));
        if (sample.isValid())
            QVERIFY(dateTime == CDateTime(sample)); // the instant stays
    }
}

// A spec that is there already stays, but what is converted never takes a short cut.
void tst_CDateTime::sameSpec()
{
    const LocalZone zone(kGapAtTwo);
    const QDate date(2021, 7, 1);
    const QTime time(12, 0);
    const QDateTime offset(date, time, Qt::OffsetFromUTC, 5400);
    CDateTime dateTime(offset);
    dateTime.setTimeSpec(Qt::OffsetFromUTC);
    QCOMPARE(state(dateTime), state(offset));
    QCOMPARE(dateTime.timeSpec(), Qt::OffsetFromUTC);
    const QDateTime utc(date, QTime(10, 30), Qt::UTC);
    QCOMPARE(state(dateTime.toQDateTime(Qt::OffsetFromUTC)), state(utc));
    QCOMPARE(dateTime.toIsoDateTime(Qt::OffsetFromUTC), QStringLiteral("2021-07-01T10:30:00Z"));
    QCOMPARE(qint64(dateTime.toI64(Qt::OffsetFromUTC)), packed(2021, 7, 1, 10, 30, 0, 0));

    const QDateTime zoned(date, time, QTimeZone(20700));
    dateTime = zoned;
    dateTime.setTimeSpec(Qt::TimeZone);
    QCOMPARE(state(dateTime), state(zoned));
    QCOMPARE(dateTime.timeSpec(), Qt::TimeZone);
    const QDateTime local(date, QTime(8, 15), Qt::LocalTime); // 06:15 UTC in summer time
    QCOMPARE(state(dateTime.toQDateTime(Qt::TimeZone)), state(local));
    QCOMPARE(dateTime.toIsoDateTime(Qt::TimeZone), QStringLiteral("2021-07-01T08:15:00"));
    QCOMPARE(qint64(dateTime.toI64(Qt::TimeZone)), packed(2021, 7, 1, 8, 15, 0, 0));

    // From another spec, the two give UTC and local time as well.
    dateTime = utc;
    dateTime.setTimeSpec(Qt::OffsetFromUTC);
    QCOMPARE(dateTime.timeSpec(), Qt::UTC);
    dateTime.setTimeSpec(Qt::TimeZone);
    QCOMPARE(dateTime.timeSpec(), Qt::LocalTime);
    QCOMPARE(qint64(dateTime.toI64(Qt::LocalTime)), packed(2021, 7, 1, 12, 30, 0, 0));
}

void tst_CDateTime::converts_data()
{
    zones();
}

void tst_CDateTime::converts()
{
    QFETCH(const QByteArray, zone);
    QFETCH(const Qt::TimeSpec, spec);
    const LocalZone localZone(zone);
    for (const QDateTime &sample : samples()) {
        const CDateTime dateTime(sample);
        const QDateTime expected = sample.toTimeSpec(spec);
        QCOMPARE(state(dateTime.toQDateTime(spec)), state(expected));
        QCOMPARE(dateTime.toIsoDateTime(spec), expected.toString(Qt::ISODate));
        QCOMPARE(qint64(dateTime.toI64(spec)), packed(expected));
        QCOMPARE(state(dateTime), state(sample)); // which stays as it is
    }
}

void tst_CDateTime::isoDateTime_data()
{
    QTest::addColumn<QDateTime>("dateTime");
    QTest::addColumn<QString>("utc");
    QTest::addColumn<QString>("local");
    const QDate winter(2021, 1, 1);
    const QDate summer(2021, 7, 1);
    const QTime time(12, 0, 0, 999); // no fraction is shown
    QTest::newRow("winter") << QDateTime(winter, time, Qt::UTC)
                            << QStringLiteral("2021-01-01T12:00:00Z")
                            << QStringLiteral("2021-01-01T13:00:00");
    QTest::newRow("summer") << QDateTime(summer, time, Qt::UTC)
                            << QStringLiteral("2021-07-01T12:00:00Z")
                            << QStringLiteral("2021-07-01T14:00:00");
    QTest::newRow("null") << QDateTime() << QString() << QString();
}

void tst_CDateTime::isoDateTime()
{
    QFETCH(const QDateTime, dateTime);
    const LocalZone zone(kGapAtTwo);
    QTEST(CDateTime(dateTime).toIsoDateTime(Qt::UTC), "utc");
    QTEST(CDateTime(dateTime).toIsoDateTime(Qt::LocalTime), "local");
}

void tst_CDateTime::byteArray_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("bits");
    const QByteArray whole = QByteArray::fromHex("0c0908070605de07");
    // Missing bytes are 0, and what is behind the eighth is ignored.
    QTest::newRow("null") << QByteArray() << qint64(0);
    QTest::newRow("empty") << QByteArray("") << qint64(0);
    for (int size = 1; size <= 8; ++size) {
        const auto mask = size == 8 ? ~Q_UINT64_C(0) : (Q_UINT64_C(1) << (8 * size)) - 1;
        QTest::addRow("%d bytes", size)
            << whole.left(size) << static_cast<qint64>(Q_UINT64_C(0x07DE05060708090C) & mask);
    }
    QTest::newRow("9 bytes") << whole + '\xff' << qint64(0x07DE05060708090C);
    QTest::newRow("1000 bytes") << whole + QByteArray(992, '\x55') << qint64(0x07DE05060708090C);
    QTest::newRow("7 bytes, no month")
        << QByteArray::fromHex("00000000010021") << qint64(0x21000100000000);
    QTest::newRow("8 bytes FF") << QByteArray(8, '\xff') << qint64(-1);
}

void tst_CDateTime::byteArray()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const qint64, bits);
    const LocalZone zone(kGapAtTwo);
    for (const Qt::TimeSpec spec : kSpecs)
        QCOMPARE(state(CDateTime::fromI64ByteArray(bytes, spec)), state(reading(bits, spec)));
}

void tst_CDateTime::byteArrayRoundTrip_data()
{
    zones();
}

void tst_CDateTime::byteArrayRoundTrip()
{
    QFETCH(const QByteArray, zone);
    QFETCH(const Qt::TimeSpec, spec);
    const LocalZone localZone(zone);
    QCOMPARE(CDateTime(packed(2014, 5, 6, 7, 8, 9, 12), Qt::UTC).toI64ByteArray(Qt::UTC).toHex(),
             QByteArray("0c0908070605de07"));
    QCOMPARE(CDateTime().toI64ByteArray(spec).toHex(), QByteArray("00ffffff00000000"));

    // The steps of the clocks in 2021, in seconds since 1970.
    constexpr quint64 kSteps[]
        = {1613872800, 1616893200, 1617462000, 1633188600, 1634439600, 1635642000};
    constexpr quint64 kAroundMsecs = 4 * 3600 * 1000;
    constexpr int kClockSteps[] = {-3600, -1800, 1800, 3600};
    std::mt19937_64 random(3232);
    for (int i = 0; i < 2000; ++i) {
        // An instant between 1970 and 2036 to the millisecond, every other one close to a step.
        const quint64 any = random() % Q_UINT64_C(2100000000000);
        const quint64 close = kSteps[random() % std::size(kSteps)] * 1000 - kAroundMsecs / 2
            + random() % kAroundMsecs;
        const auto msecs = static_cast<qint64>(i % 2 == 0 ? any : close);
        const QDateTime instant = QDateTime::fromMSecsSinceEpoch(msecs, Qt::UTC);
        const CDateTime dateTime(instant);
        const QByteArray bytes = dateTime.toI64ByteArray(spec);
        QCOMPARE(bytes.size(), 8);
        const CDateTime back = CDateTime::fromI64ByteArray(bytes, spec);
        // The reading always comes back; so does the instant, unless the clock reads so twice.
        QCOMPARE(back.toI64ByteArray(spec), bytes);
        const QDateTime cut = instant.addMSecs(-(msecs % 10));
        const auto clock = [&](int seconds) {
            const QDateTime there = cut.addSecs(seconds).toTimeSpec(spec);
            return std::pair(there.date(), there.time());
        };
        const bool isTwice
            = std::any_of(std::begin(kClockSteps), std::end(kClockSteps),
                          [&clock](int seconds) { return clock(seconds) == clock(0); });
        if (isTwice)
            QVERIFY(qAbs(back.toQDateTime(Qt::UTC).msecsTo(cut)) <= 3600000);
        else
            QVERIFY(back == CDateTime(cut));
    }
}

void tst_CDateTime::compares_data()
{
    zones();
}

void tst_CDateTime::compares()
{
    QFETCH(const QByteArray, zone);
    const LocalZone localZone(zone);
    for (const QDateTime &left : samples()) {
        for (const QDateTime &right : samples()) {
            const CDateTime a(left);
            const CDateTime b(right);
            QCOMPARE(a == b, left == right);
            QCOMPARE(a != b, !(left == right));
            QCOMPARE(a < b, left < right);
            QCOMPARE(a > b, left > right);
            QCOMPARE(a <= b, !(left > right));
            QCOMPARE(a >= b, !(left < right));
        }
    }
}

// In rows of equal instants, each row behind the one before.
void tst_CDateTime::comparesOrder()
{
    const LocalZone zone(kGapAtTwo);
    const QDate date(2021, 7, 1);
    const std::vector<std::vector<CDateTime>> rows = {
        {QDateTime(QDate(-1, 1, 1), QTime(0, 0), Qt::UTC)},
        {QDateTime(date, QTime(9, 59, 59, 999), Qt::UTC)},
        {QDateTime(date, QTime(10, 0), Qt::UTC), QDateTime(date, QTime(12, 0), Qt::LocalTime),
         QDateTime(date, QTime(11, 30), Qt::OffsetFromUTC, 5400),
         QDateTime(date, QTime(15, 45), QTimeZone(20700))},
        {QDateTime(date, QTime(11, 0), Qt::LocalTime).addSecs(3601)},
        {QDateTime(date.addDays(1), QTime(0, 0), Qt::UTC)},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (std::size_t j = 0; j < rows.size(); ++j) {
            for (const CDateTime &a : rows[i]) {
                for (const CDateTime &b : rows[j]) {
                    QCOMPARE(a == b, i == j);
                    QCOMPARE(a != b, i != j);
                    QCOMPARE(a < b, i < j);
                    QCOMPARE(a > b, i > j);
                    QCOMPARE(a <= b, i <= j);
                    QCOMPARE(a >= b, i >= j);
                }
            }
        }
    }
}

// The day, the milliseconds of the day and the time spec: 2456784, 25689120 and 1 for UTC.
void tst_CDateTime::streamBytes()
{
    const CDateTime dateTime(packed(2014, 5, 6, 7, 8, 9, 12), Qt::UTC);
    QCOMPARE(streamed(dateTime, QDataStream::Qt_5_15).toHex(),
             QByteArray("0000000000257cd00187fc2001"));
}

void tst_CDateTime::stream_data()
{
    zones();
}

void tst_CDateTime::stream()
{
    QFETCH(const QByteArray, zone);
    const LocalZone localZone(zone);
    for (const QDateTime &sample : samples()) {
        for (const QDataStream::Version version : kVersions) {
            const QByteArray bytes = streamed(sample, version);
            QCOMPARE(streamed(CDateTime(sample), version).toHex(), bytes.toHex());
            for (int size = 0; size <= bytes.size(); ++size) {
                const QByteArray part = bytes.left(size);
                QDataStream expectedIn(part);
                expectedIn.setVersion(version);
                QDateTime expected(QDate(2014, 5, 6), QTime(7, 8, 9), Qt::UTC);
                expectedIn >> expected;
                QDataStream in(part);
                in.setVersion(version);
                CDateTime dateTime(packed(2014, 5, 6, 7, 8, 9, 0), Qt::UTC);
                QCOMPARE(&(in >> dateTime), &in);
                // Qt makes a date-time without a zone of a cut one, and crashes when it writes that.
                if (expected.timeSpec() == Qt::TimeZone && !expected.timeZone().isValid())
                    expected = QDateTime();
                QCOMPARE(dateTime.timeSpec(), expected.timeSpec());
                QCOMPARE(dateTime.isNull(), expected.isNull());
                QCOMPARE(dateTime.isValid(), expected.isValid());
                QCOMPARE(state(dateTime), state(expected));
                QCOMPARE(in.status(), expectedIn.status());
                QVERIFY(in.atEnd() == expectedIn.atEnd());
            }
        }
    }
}

void tst_CDateTime::streamOfUnknownZone()
{
    for (const char *zone : {"Nowhere/Unknown", "STT5,M13.2.0,0", "../../../dev/stdin"}) {
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << QDate(2014, 5, 6) << QTime(7, 8, 9) << qint8{Qt::TimeZone}
            << QString::fromLatin1(zone);
        QDataStream in(bytes);
        CDateTime dateTime(packed(2014, 5, 6, 7, 8, 9, 0), Qt::UTC);
        in >> dateTime;
        QVERIFY2(dateTime.isNull(), zone);
        QVERIFY2(in.status() == QDataStream::ReadCorruptData, zone);
        QVERIFY2(in.atEnd(), zone);
        QCOMPARE(streamed(dateTime, QDataStream::Qt_5_15),
                 streamed(CDateTime(), QDataStream::Qt_5_15));
    }
}

// A zone that rules name, as the environment may give the local one, comes back.
void tst_CDateTime::streamOfRuledZone()
{
    for (const char *zone : {"<+03>-3", "<+0330>-3:30", "<-03>3"}) {
        const QDateTime sample(QDate(2020, 7, 1), QTime(1, 2, 3), QTimeZone(zone));
        QVERIFY2(sample.isValid(), zone);
        QDataStream in(streamed(CDateTime(sample), QDataStream::Qt_5_15));
        CDateTime dateTime;
        in >> dateTime;
        QVERIFY2(in.status() == QDataStream::Ok, zone);
        QCOMPARE(state(dateTime), state(sample));
    }
}

// Every byte in the place of the time spec, in the versions that have one there.
void tst_CDateTime::streamOfAnySpec()
{
    for (const QDataStream::Version version :
         {QDataStream::Qt_4_6, QDataStream::Qt_5_0, QDataStream::Qt_5_1, QDataStream::Qt_5_2,
          QDataStream::Qt_5_15}) {
        for (int spec = -128; spec < 128; ++spec) {
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out.setVersion(version);
            out << QDate(2014, 5, 6) << QTime(7, 8, 9) << static_cast<qint8>(spec);
            QDataStream in(bytes);
            in.setVersion(version);
            CDateTime dateTime(packed(2014, 5, 6, 7, 8, 9, 0), Qt::UTC);
            in >> dateTime;
            const bool isSpec = spec >= Qt::LocalTime && spec <= Qt::TimeZone;
            const bool isChecked = version == QDataStream::Qt_5_0 || version >= QDataStream::Qt_5_2;
            if (isChecked && !isSpec) {
                QVERIFY(dateTime.isNull());
                QCOMPARE(in.status(), QDataStream::ReadCorruptData);
            }
            QVERIFY(!streamed(dateTime, QDataStream::Qt_5_15).isEmpty());
        }
    }
}

QTEST_APPLESS_MAIN(tst_CDateTime)

#include "tst_CDateTime.moc"
