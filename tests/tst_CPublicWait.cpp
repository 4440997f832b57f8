#include "CPublicWait.h"

#include <QtTest>

#include <chrono>
#include <type_traits>

namespace {

using Wait = void (*)(unsigned long);
using std::chrono::microseconds;

static_assert(!std::is_default_constructible_v<CPublicWait>);
static_assert(std::is_same_v<decltype(&CPublicWait::sleep), Wait>);
static_assert(std::is_same_v<decltype(&CPublicWait::msleep), Wait>);
static_assert(std::is_same_v<decltype(&CPublicWait::usleep), Wait>);

} // namespace

Q_DECLARE_METATYPE(Wait)

class tst_CPublicWait : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waits_data();
    void waits();
};

void tst_CPublicWait::waits_data()
{
    QTest::addColumn<Wait>("wait");
    QTest::addColumn<unsigned int>("count");
    QTest::addColumn<qint64>("leastUs");

    QTest::newRow("sleep 0") << Wait(&CPublicWait::sleep) << 0U << qint64(0);
    QTest::newRow("msleep 0") << Wait(&CPublicWait::msleep) << 0U << qint64(0);
    QTest::newRow("usleep 0") << Wait(&CPublicWait::usleep) << 0U << qint64(0);
    QTest::newRow("sleep 1") << Wait(&CPublicWait::sleep) << 1U << qint64(1000000);
    QTest::newRow("msleep 2") << Wait(&CPublicWait::msleep) << 2U << qint64(2000);
    QTest::newRow("usleep 2000") << Wait(&CPublicWait::usleep) << 2000U << qint64(2000);
    QTest::newRow("usleep 1") << Wait(&CPublicWait::usleep) << 1U << qint64(1);
}

// A wait may last longer than it was told to, and on a busy machine it does; never shorter.
void tst_CPublicWait::waits()
{
    QFETCH(const Wait, wait);
    QFETCH(const unsigned int, count);
    QFETCH(const qint64, leastUs);

    const auto start = std::chrono::steady_clock::now();
    wait(count);
    QVERIFY(std::chrono::steady_clock::now() - start >= microseconds(leastUs));
}

QTEST_APPLESS_MAIN(tst_CPublicWait)

#include "tst_CPublicWait.moc"
