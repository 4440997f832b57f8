#include "CBenchmarkTimer.h"

#include <QtTest>

#include <chrono>
#include <cmath>
#include <type_traits>

#ifdef Q_PROCESSOR_X86
#include <x86intrin.h>
#endif

namespace {

static_assert(std::is_same_v<decltype(CBenchmarkTimer::mTicksPerUs), double>);
static_assert(std::is_same_v<decltype(&CBenchmarkTimer::ticksPerUs), double (*)()>);
static_assert(std::is_same_v<decltype(&CBenchmarkTimer::start), void (CBenchmarkTimer::*)()>);
static_assert(
    std::is_same_v<decltype(&CBenchmarkTimer::elapsed), double (CBenchmarkTimer::*)() const>);
static_assert(sizeof(CBenchmarkTimer) == sizeof(quint64)); // nothing but the start

//! Returns the counter that the timer reads.
quint64 counter()
{
#ifdef Q_PROCESSOR_X86
    return __rdtsc();
#else
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<quint64>(std::chrono::duration_cast<std::chrono::nanoseconds>(time).count());
#endif
}

//! Returns the ticks since \a start.
double ticksSince(quint64 start)
{
    return static_cast<double>(counter() - start);
}

//! Sets the cached calibration and restores it.
class Calibration
{
public:
    explicit Calibration(double ticksPerUs) { CBenchmarkTimer::mTicksPerUs = ticksPerUs; }
    ~Calibration() { CBenchmarkTimer::mTicksPerUs = mPrevious; }

private:
    Q_DISABLE_COPY(Calibration)

    const double mPrevious = CBenchmarkTimer::mTicksPerUs;
};

// What the calibration is before anybody asked for it.
const double kTicksPerUsAtLoad = CBenchmarkTimer::mTicksPerUs;

} // namespace

class tst_CBenchmarkTimer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsAtZero();
    void elapsed();
    void copies();
    void unit();
    void storedTicksPerUs_data();
    void storedTicksPerUs();
    void calibrates_data();
    void calibrates();
};

// The ticks since tick 0 are the whole counter.
void tst_CBenchmarkTimer::startsAtZero()
{
    const CBenchmarkTimer timer;
    const double before = ticksSince(0);
    const double ticks = timer.elapsed();
    const double behind = ticksSince(0);
    QVERIFY(before <= ticks);
    QVERIFY(ticks <= behind);
}

void tst_CBenchmarkTimer::elapsed()
{
    CBenchmarkTimer timer;
    for (int i = 0; i < 3; ++i) { // each start() is a new one
        const quint64 before = counter();
        timer.start();
        const double first = timer.elapsed();
        const double second = timer.elapsed();
        const double most = ticksSince(before);
        QVERIFY(first >= 0);
        QVERIFY(first <= second); // reading does not start anew
        QVERIFY(second <= most);
    }
}

void tst_CBenchmarkTimer::copies()
{
    const CBenchmarkTimer fresh;
    CBenchmarkTimer started;
    const quint64 before = counter();
    started.start();
    const CBenchmarkTimer copy(started);
    CBenchmarkTimer assigned;
    assigned = started;
    started = fresh;
    const double ofCopy = copy.elapsed();
    const double ofAssigned = assigned.elapsed();
    const double interval = ticksSince(before);
    QVERIFY(ofCopy >= 0 && ofCopy <= interval);
    QVERIFY(ofAssigned >= 0 && ofAssigned <= interval);
    // The original has the start of the fresh one by now, and did not take its copies along.
    QVERIFY(started.elapsed() >= static_cast<double>(before));
}

void tst_CBenchmarkTimer::unit()
{
#ifdef Q_PROCESSOR_X86
    QCOMPARE(CBenchmarkTimer().unit(), QStringLiteral("CPU Ticks"));
#else
    QCOMPARE(CBenchmarkTimer().unit(), QStringLiteral("ns"));
#endif
}

void tst_CBenchmarkTimer::storedTicksPerUs_data()
{
    QTest::addColumn<double>("stored");
    QTest::newRow("5") << 5.0;
    QTest::newRow("0, counts as calibrated") << 0.0;
    QTest::newRow("-0, not negative") << -0.0;
    QTest::newRow("5e-324") << 5e-324;
}

void tst_CBenchmarkTimer::storedTicksPerUs()
{
    QFETCH(const double, stored);
    const Calibration calibration(stored);
    QVERIFY(CBenchmarkTimer::ticksPerUs() == stored);
    QVERIFY(CBenchmarkTimer::mTicksPerUs == stored);
}

void tst_CBenchmarkTimer::calibrates_data()
{
    QTest::addColumn<double>("stored");
    QTest::newRow("as loaded") << kTicksPerUsAtLoad;
    QTest::newRow("-5e-324") << -5e-324;
}

void tst_CBenchmarkTimer::calibrates()
{
    QCOMPARE(kTicksPerUsAtLoad, -1.0);
    QFETCH(const double, stored);
    const Calibration calibration(stored);

    const auto start = std::chrono::steady_clock::now();
    const quint64 before = counter();
    const double ticks = CBenchmarkTimer::ticksPerUs();
    const double most = ticksSince(before);
    QVERIFY(std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(100));
    QVERIFY(ticks > 0);
    QVERIFY(CBenchmarkTimer::mTicksPerUs == ticks);
    QVERIFY(CBenchmarkTimer::ticksPerUs() == ticks); // the second call measures nothing

    // It is a whole number of ticks by 100000, and no more of them than passed here.
    const double counted = ticks * 100000.0;
    QVERIFY(std::fabs(counted - std::round(counted)) < 1e-4);
    QVERIFY(counted <= most);
}

QTEST_APPLESS_MAIN(tst_CBenchmarkTimer)

#include "tst_CBenchmarkTimer.moc"
