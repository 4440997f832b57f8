#include "CTarFileInfo.h"

#include "MessageRecorder.h"

#include <QList>
#include <QtTest>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <iterator>
#include <new>
#include <type_traits>

using EType = CTarFileInfo::EType;

namespace {

static_assert(std::is_same_v<std::underlying_type_t<EType>, qint32>);
static_assert(std::is_convertible_v<EType, int>); // a plain enumeration
static_assert(CTarFileInfo::TYPE_UNKNOWN == 0 && CTarFileInfo::TYPE_FILE == 1);
static_assert(CTarFileInfo::TYPE_SYMLINK == 2 && CTarFileInfo::TYPE_DIRECTORY == 3);

static_assert(std::is_same_v<decltype(CTarFileInfo::type), EType>);
static_assert(std::is_same_v<decltype(CTarFileInfo::name), QString>);
static_assert(std::is_same_v<decltype(CTarFileInfo::linkName), QString>);
static_assert(std::is_same_v<decltype(CTarFileInfo::size), qint64>);
static_assert(std::is_same_v<decltype(CTarFileInfo::position), qint64>);
static_assert(std::is_standard_layout_v<CTarFileInfo>);
static_assert(offsetof(CTarFileInfo, type) == 0);
static_assert(offsetof(CTarFileInfo, type) < offsetof(CTarFileInfo, name));
static_assert(offsetof(CTarFileInfo, name) < offsetof(CTarFileInfo, linkName));
static_assert(offsetof(CTarFileInfo, linkName) < offsetof(CTarFileInfo, size));
static_assert(offsetof(CTarFileInfo, size) < offsetof(CTarFileInfo, position));

static_assert(std::is_default_constructible_v<CTarFileInfo>);
static_assert(std::is_copy_constructible_v<CTarFileInfo>);
static_assert(std::is_copy_assignable_v<CTarFileInfo>);

CTarFileInfo link()
{
    CTarFileInfo info;
    info.type = CTarFileInfo::TYPE_SYMLINK;
    info.name = QStringLiteral("a");
    info.linkName = QStringLiteral("b");
    info.size = -1;
    info.position = Q_INT64_C(0x7FFFFFFFFFFFFFFF);
    return info;
}

void verifyCleared(const CTarFileInfo &info)
{
    QCOMPARE(static_cast<int>(info.type), 0);
    QVERIFY(info.name.isEmpty() && !info.name.isNull());
    QVERIFY(info.linkName.isEmpty() && !info.linkName.isNull());
    QCOMPARE(info.size, Q_INT64_C(0));
    QCOMPARE(info.position, Q_INT64_C(0));
    QVERIFY(!info.isValid());
}

} // namespace

class tst_CTarFileInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newRecord();
    void clear();
    void validity_data();
    void validity();
    void copies();
};

void tst_CTarFileInfo::newRecord()
{
    verifyCleared(CTarFileInfo());
    // In memory that held something else before.
    alignas(CTarFileInfo) unsigned char memory[sizeof(CTarFileInfo)];
    std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>(0xA5));
    auto *const info = new (memory) CTarFileInfo;
    verifyCleared(*info);
    info->~CTarFileInfo();
}

void tst_CTarFileInfo::clear()
{
    const MessageRecorder recorder;
    CTarFileInfo info = link();
    info.clear();
    verifyCleared(info);
    info.name = QString();
    info.linkName = QString();
    info.clear();
    verifyCleared(info);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTarFileInfo::validity_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("isValid");
    QTest::newRow("0 unknown") << 0 << false;
    QTest::newRow("1 file") << 1 << true;
    QTest::newRow("2 symbolic link") << 2 << true;
    QTest::newRow("3 directory") << 3 << true;
    QTest::newRow("4") << 4 << true;
    QTest::newRow("-1") << -1 << true;
    QTest::newRow("256") << 256 << true;
    QTest::newRow("65536") << 65536 << true;
    QTest::newRow("greatest") << INT_MAX << true;
    QTest::newRow("least") << INT_MIN << true;
}

void tst_CTarFileInfo::validity()
{
    QFETCH(int, type);
    QFETCH(bool, isValid);
    CTarFileInfo info; // names and numbers do not count
    info.type = static_cast<EType>(type);
    QCOMPARE(info.isValid(), isValid);
    info = link();
    info.type = static_cast<EType>(type);
    QCOMPARE(info.isValid(), isValid);
}

void tst_CTarFileInfo::copies()
{
    QList<CTarFileInfo> infos{link(), CTarFileInfo()};
    const QList<CTarFileInfo> copy = infos;
    infos[0].clear();
    verifyCleared(infos.at(0));
    verifyCleared(copy.at(1));
    QCOMPARE(copy.at(0).type, CTarFileInfo::TYPE_SYMLINK);
    QCOMPARE(copy.at(0).name, QStringLiteral("a"));
    QCOMPARE(copy.at(0).linkName, QStringLiteral("b"));
    QCOMPARE(copy.at(0).size, Q_INT64_C(-1));
    QCOMPARE(copy.at(0).position, Q_INT64_C(0x7FFFFFFFFFFFFFFF));
}

QTEST_APPLESS_MAIN(tst_CTarFileInfo)

#include "tst_CTarFileInfo.moc"
