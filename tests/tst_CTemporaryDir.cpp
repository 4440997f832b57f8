#include "CTemporaryDir.h"

#include "FileTree.h"
#include "InThreads.h"
#include "MessageRecorder.h"

#include <QFileInfo>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <type_traits>

namespace {

static_assert(std::is_default_constructible_v<CTemporaryDir>);
static_assert(!std::is_copy_constructible_v<CTemporaryDir>);
static_assert(!std::is_move_constructible_v<CTemporaryDir>);
static_assert(
    std::is_same_v<decltype(&CTemporaryDir::setAutoRemove), void (CTemporaryDir::*)(bool)>);
static_assert(
    std::is_same_v<decltype(&CTemporaryDir::autoRemove), bool (CTemporaryDir::*)() const>);
static_assert(std::is_same_v<decltype(&CTemporaryDir::isValid), bool (CTemporaryDir::*)() const>);
static_assert(std::is_same_v<decltype(&CTemporaryDir::path), QString (CTemporaryDir::*)() const>);
static_assert(std::is_same_v<decltype(&CTemporaryDir::remove), bool (CTemporaryDir::*)()>);

//! The path without the characters that make it the only one of its kind.
QString unnumbered(const QString &path)
{
    return path.chopped(6);
}

QByteArray bytes(const QString &path)
{
    return QFile::encodeName(path);
}

} // namespace

class tst_CTemporaryDir : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makes();
    void removesAtEnd_data();
    void removesAtEnd();
    void removes();
    void staysInside_data();
    void staysInside();
    void notMade_data();
    void notMade();
    void withoutRights();
    void undecodable();
    void threads();
};

void tst_CTemporaryDir::makes()
{
    const FileTree tree({});
    QVERIFY(tree.isValid());
    const MessageRecorder recorder;
    {
        const CTemporaryDir directory;
        const CTemporaryDir other;
        const QTemporaryDir peer;
        QVERIFY(directory.isValid());
        QVERIFY(other.isValid());
        QVERIFY(directory.autoRemove());
        QVERIFY(directory.path() != other.path());
        QCOMPARE(bytes(QFileInfo(directory.path()).path()), tree.temporary());
        QVERIFY(QFileInfo(directory.path()).isDir());
        // The default template: a name and six characters that differ.
        QCOMPARE(unnumbered(directory.path()), unnumbered(peer.path()));
        QCOMPARE(directory.path().size(), peer.path().size());
        QCOMPARE(FileTree::linesOf(bytes(directory.path())), QByteArrayList());
        QCOMPARE(QFileInfo(directory.path()).permissions(), QFileInfo(peer.path()).permissions());
    }
    QCOMPARE(tree.lines(), QByteArrayList());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTemporaryDir::removesAtEnd_data()
{
    QTest::addColumn<QList<bool>>("set");
    QTest::addColumn<bool>("isKept");

    QTest::newRow("default") << QList<bool>{} << false;
    QTest::newRow("on") << QList<bool>{true} << false;
    QTest::newRow("off") << QList<bool>{false} << true;
    QTest::newRow("off, on") << QList<bool>{false, true} << false;
    QTest::newRow("on, off") << QList<bool>{true, false} << true;
}

void tst_CTemporaryDir::removesAtEnd()
{
    QFETCH(const QList<bool>, set);
    QFETCH(const bool, isKept);
    const FileTree tree({});
    QVERIFY(tree.isValid());
    const MessageRecorder recorder;
    QByteArray name;
    {
        CTemporaryDir directory;
        for (const bool autoRemove : set) {
            directory.setAutoRemove(autoRemove);
            QCOMPARE(directory.autoRemove(), autoRemove);
        }
        QVERIFY(FileTree::make("d " + bytes(directory.path()) + "/sub"));
        QVERIFY(FileTree::make("f " + bytes(directory.path()) + "/sub/.hidden=1"));
        name = bytes(QFileInfo(directory.path()).fileName());
    }
    QByteArrayList expected;
    if (isKept) {
        expected = {"temporary d700 " + name, "temporary d755 " + name + "/sub",
                    "temporary f644 " + name + "/sub/.hidden=1"};
    }
    QCOMPARE(tree.lines(), expected);
    QCOMPARE(recorder.messages(), QStringList());
}

// Every step is compared with the class that is wrapped.
void tst_CTemporaryDir::removes()
{
    const FileTree tree({});
    QVERIFY(tree.isValid());
    const MessageRecorder recorder;
    {
        CTemporaryDir directory;
        QTemporaryDir peer;
        directory.setAutoRemove(false);
        peer.setAutoRemove(false);
        const QString path = directory.path();
        QVERIFY(FileTree::make("f " + bytes(path) + "/file=1"));
        QVERIFY(FileTree::make("f " + bytes(peer.path()) + "/file=1"));
        QCOMPARE(directory.remove(), true);
        QCOMPARE(peer.remove(), true);
        QVERIFY(!QFileInfo::exists(path));
        QCOMPARE(directory.isValid(), peer.isValid());
        QCOMPARE(directory.autoRemove(), false);
        QCOMPARE(directory.path().isEmpty(), peer.path().isEmpty());
        QCOMPARE(directory.remove(), peer.remove());
    }
    QCOMPARE(tree.lines(), QByteArrayList());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTemporaryDir::staysInside_data()
{
    QTest::addColumn<bool>("atOnce");

    QTest::newRow("remove()") << true;
    QTest::newRow("at the end") << false;
}

void tst_CTemporaryDir::staysInside()
{
    QFETCH(const bool, atOnce);
    const QByteArrayList before{"d keep", "f keep/file=1", "f other=2"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    {
        CTemporaryDir directory;
        const QByteArray base = bytes(directory.path());
        for (const char *const link :
             {"d>@/keep", "f>@/other", "gone>@/gone", "up>..", "self>self"})
            QVERIFY(FileTree::make("l " + base + '/' + tree.expanded(QByteArray(link))));
        if (atOnce)
            QVERIFY(directory.remove());
    }
    QCOMPARE(tree.lines(), FileTree::complete(before));
}

void tst_CTemporaryDir::notMade_data()
{
    QTest::addColumn<QString>("temporary");

    QTest::newRow("a file") << QStringLiteral("@/file");
    QTest::newRow("nothing can be made there") << QStringLiteral("/proc");
    QTest::newRow("a too long name") << QLatin1String("@/") + QString(256, QLatin1Char('n'));
}

void tst_CTemporaryDir::notMade()
{
    QFETCH(const QString, temporary);
    const QByteArrayList before{"f file=1"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const EnvironmentVariable variable("TMPDIR", bytes(tree.expanded(temporary)));
    const MessageRecorder recorder;
    {
        CTemporaryDir directory;
        QVERIFY(!directory.isValid());
        QVERIFY(directory.autoRemove());
        QCOMPARE(directory.path(), QString());
        QVERIFY(!directory.remove());
        directory.setAutoRemove(false);
        QVERIFY(!directory.autoRemove());
        directory.setAutoRemove(true);
    }
    QCOMPARE(tree.lines(), FileTree::complete(before));
    QCOMPARE(recorder.messages(), QStringList());
}

// What cannot be removed is told, by the result and in Qt's words.
void tst_CTemporaryDir::withoutRights()
{
    const FileTree tree({});
    QVERIFY(tree.isValid());
    CTemporaryDir directory;
    const QByteArray base = bytes(directory.path());
    QVERIFY(FileTree::make("d " + base + "/closed"));
    QVERIFY(FileTree::make("f " + base + "/closed/file=1"));
    QVERIFY(chmod((base + "/closed").constData(), 0) == 0);
    const MessageRecorder recorder;
    bool isRemoved = true;
    {
        // Nothing lacks root.
        constexpr uid_t kNobody = 65534;
        const uid_t user = geteuid();
        QVERIFY(user != 0 || seteuid(kNobody) == 0);
        isRemoved = directory.remove();
        QVERIFY(seteuid(user) == 0);
    }
    QVERIFY(!isRemoved);
    QVERIFY(QFileInfo::exists(directory.path()));
    QCOMPARE(recorder.messages(),
             QStringList(QStringLiteral("warning default: QTemporaryDir: Unable to remove \"%1\""
                                        " most likely due to the presence of read-only files.")
                             .arg(directory.path())));
    QVERIFY(chmod((base + "/closed").constData(), 0755) == 0);
}

// Names need not be decoded.
void tst_CTemporaryDir::undecodable()
{
    const FileTree tree({});
    QVERIFY(tree.isValid());
    const MessageRecorder recorder;
    CTemporaryDir directory;
    const QByteArray base = bytes(directory.path());
    QVERIFY(FileTree::make("f " + base + "/\xff=1"));
    QVERIFY(FileTree::make("d " + base + "/\xfe"));
    QVERIFY(directory.remove());
    QCOMPARE(tree.lines(), QByteArrayList());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CTemporaryDir::threads()
{
    const FileTree tree({});
    QVERIFY(tree.isValid());
    QVERIFY(trueInThreads([] {
        bool ok = true;
        for (int i = 0; i < 50; ++i) {
            CTemporaryDir directory;
            const QString path = directory.path();
            ok = ok && directory.isValid()
                && FileTree::make("f " + bytes(directory.path()) + "/file=1") && directory.remove()
                && !QFileInfo::exists(path);
        }
        return ok;
    }));
    QCOMPARE(tree.lines(), QByteArrayList());
}

QTEST_APPLESS_MAIN(tst_CTemporaryDir)

#include "tst_CTemporaryDir.moc"
