#include "CFTPath.h"
#include "MessageRecorder.h"

#include <QtTest>

#include <limits>
#include <memory>
#include <type_traits>

Q_DECLARE_METATYPE(CFTPath::EEntryPoint)

namespace {

static_assert(std::is_trivially_default_constructible_v<CFTPath>);
static_assert(std::is_same_v<std::underlying_type_t<CFTPath::EEntryPoint>, int>);
static_assert(std::is_convertible_v<CFTPath::EEntryPoint, int>); // for sets of them

struct Row
{
    CFTPath::EEntryPoint code;
    int value;
    const char *name;
    const char *directory;
};

constexpr Row kRows[] = {
    {CFTPath::EP_INVALID, 0, "<invalid>", "<invalid>"},
    {CFTPath::EP_CONSTCONFIG, 1, "CONSTCONFIG", "/opt/KORVALENT/etc/conf/"},
    {CFTPath::EP_COMPANY, 2, "KORVALENT", "/KORVALENT/"},
    {CFTPath::EP_OPT_COMPANY, 4, "OPT/KORVALENT", "/opt/KORVALENT/"},
    {CFTPath::EP_TMP, 8, "TMP", "/tmp/"},
    {CFTPath::EP_ROOT, 16, "ROOT", "/"},
    {CFTPath::EP_OPT, 32, "OPT", "/opt/"},
    {CFTPath::EP_APPDATA, 64, "APPDATA", "/appdata/"},
};

struct Constant
{
    const char *name;
    QString value;
    const char *expected;
};

// Contract: the constants are there when another program's static data is made.
const Constant kConstants[] = {
    {"INVALID_STR", CFTPath::INVALID_STR, "<invalid>"},
    {"PATH_AUTOSTART", CFTPath::PATH_AUTOSTART, "autostart/"},
    {"PATH_BIN", CFTPath::PATH_BIN, "bin/"},
    {"PATH_CONFIGURATIONS", CFTPath::PATH_CONFIGURATIONS, "configurations/"},
    {"PATH_CONF", CFTPath::PATH_CONF, "conf/"},
    {"PATH_PARAM", CFTPath::PATH_PARAM, "param/"},
    {"PATH_FIRMWARE", CFTPath::PATH_FIRMWARE, "firmware/"},
    {"PATH_LOGIC", CFTPath::PATH_LOGIC, "logic/"},
    {"PATH_SUBDEVICES", CFTPath::PATH_SUBDEVICES, "subdevices/"},
};

CFTPath::EEntryPoint code(int value)
{
    return static_cast<CFTPath::EEntryPoint>(value);
}

//! Returns the entry point of a path as the table and the order of its rows have it.
CFTPath::EEntryPoint expectedOf(const QString &path)
{
    for (const Row &row : kRows) {
        const QString name = QString::fromLatin1(row.name);
        const QString directory = QString::fromLatin1(row.directory);
        if (path.mid(0, name.size()) == name || path.mid(1, name.size()) == name
            || path.mid(0, directory.size()) == directory)
            return row.code;
    }
    return CFTPath::EP_INVALID;
}

} // namespace

class tst_CFTPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constants_data();
    void constants();
    void codes_data();
    void codes();
    void otherCodes();
    void entryStrMap();
    void entryPoints();
    void toEntryPoint_data();
    void toEntryPoint();
    void toRelativePath_data();
    void toRelativePath();
    void toRelativePathOfEach_data();
    void toRelativePathOfEach();
    void fromPath_data();
    void fromPath();
    void fromPathOfPairs();

private:
    std::unique_ptr<MessageRecorder> mRecorder;
};

// None of the functions says anything, whatever it is given.
void tst_CFTPath::init()
{
    mRecorder = std::make_unique<MessageRecorder>();
}

void tst_CFTPath::cleanup()
{
    const QStringList messages = mRecorder->messages();
    mRecorder.reset();
    QCOMPARE(messages, QStringList());
}

void tst_CFTPath::constants_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    for (const Constant &constant : kConstants)
        QTest::newRow(constant.name) << constant.value << QString::fromLatin1(constant.expected);
}

void tst_CFTPath::constants()
{
    QFETCH(QString, value);
    QTEST(value, "expected");
}

void tst_CFTPath::codes_data()
{
    QTest::addColumn<CFTPath::EEntryPoint>("entryPoint");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("directory");
    for (const Row &row : kRows) {
        QTest::newRow(row.name) << row.code << row.value << QString::fromLatin1(row.name)
                                << QString::fromLatin1(row.directory);
    }
}

void tst_CFTPath::codes()
{
    QFETCH(CFTPath::EEntryPoint, entryPoint);
    QFETCH(QString, name);
    QTEST(int(entryPoint), "value");
    QCOMPARE(CFTPath::toString(entryPoint), name);
    QTEST(CFTPath::toPath(entryPoint), "directory");
    QCOMPARE(CFTPath::toEntryPoint(name), entryPoint);
}

// Sets of entry points, and whatever else a device may send.
void tst_CFTPath::otherCodes()
{
    QVector<int> values;
    for (int value = -256; value < 256; ++value)
        values += value;
    for (int bit = 8; bit < 31; ++bit)
        values << (1 << bit) << (1 << bit | 1) << (1 << bit | 16);
    values << std::numeric_limits<int>::min() << std::numeric_limits<int>::min() + 1
           << std::numeric_limits<int>::max();
    int known = 0;
    for (const int value : qAsConst(values)) {
        QString name = QStringLiteral("<invalid>");
        QString directory = name;
        for (const Row &row : kRows) {
            if (row.value == value) {
                name = QString::fromLatin1(row.name);
                directory = QString::fromLatin1(row.directory);
                ++known;
            }
        }
        QCOMPARE(CFTPath::toString(code(value)), name);
        QCOMPARE(CFTPath::toPath(code(value)), directory);
    }
    QCOMPARE(known, 8);
}

void tst_CFTPath::entryStrMap()
{
    QMap<CFTPath::EEntryPoint, QString> expected;
    for (const Row &row : kRows)
        expected[row.code] = QString::fromLatin1(row.name);
    auto map = CFTPath::entryStrMap();
    QCOMPARE(map.size(), 8);
    QCOMPARE(map, expected);

    // A map of the caller's own.
    map[CFTPath::EP_TMP] = QStringLiteral("OTHER");
    map.remove(CFTPath::EP_INVALID);
    map[code(3)] = QStringLiteral("THREE");
    QCOMPARE(CFTPath::entryStrMap(), expected);
    QCOMPARE(CFTPath::toString(CFTPath::EP_TMP), QStringLiteral("TMP"));
    QCOMPARE(CFTPath::toString(code(3)), QStringLiteral("<invalid>"));
    QCOMPARE(CFTPath::entryPoints().size(), 8);
}

void tst_CFTPath::entryPoints()
{
    const QList<CFTPath::EEntryPoint> expected
        = {code(0), code(1), code(2), code(4), code(8), code(16), code(32), code(64)};
    QCOMPARE(CFTPath::entryPoints(), expected);
    QCOMPARE(CFTPath::entryPoints(), CFTPath::entryStrMap().keys());
}

void tst_CFTPath::toEntryPoint_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("value");
    const auto row = [](const char *name, int value) {
        QTest::addRow("\"%s\"", name) << QString::fromLatin1(name) << value;
    };
    row("CONSTCONFIG", 1);
    row("KORVALENT", 2);
    row("OPT/KORVALENT", 4);
    row("TMP", 8);
    row("ROOT", 16);
    row("OPT", 32);
    row("APPDATA", 64);
    row("<invalid>", 0);
    row("", 0);
    row("constconfig", 0);
    row("Tmp", 0);
    row(" TMP", 0);
    row("TMP ", 0);
    row("TMPX", 0);
    row("TM", 0);
    row("/TMP", 0);
    row("TMP/", 0);
    row("OPT/", 0);
    row("/tmp/", 0);
    row("/", 0);
    row("8", 0);
    QTest::newRow("null") << QString() << 0;
    QTest::newRow("NUL behind") << QString(QLatin1String("TMP", 4)) << 0;
}

void tst_CFTPath::toEntryPoint()
{
    QFETCH(QString, name);
    QFETCH(int, value);
    QCOMPARE(int(CFTPath::toEntryPoint(name)), value);
}

void tst_CFTPath::toRelativePath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *path, int value, const char *expected) {
        QTest::addRow("\"%s\", %d", path, value)
            << QString::fromLatin1(path) << value << QString::fromLatin1(expected);
    };
    row("/opt/KORVALENT/etc/conf/drive.ini", 1, "drive.ini");
    row("opt/KORVALENT/etc/conf/drive.ini", 1, "drive.ini");
    row("/opt/KORVALENT/etc/conf/", 1, "");
    row("/opt/KORVALENT/etc/conf", 1, "/opt/KORVALENT/etc/conf");
    row("/opt/KORVALENT/etc/conf/drive.ini", 2, "/opt/KORVALENT/etc/conf/drive.ini");
    row("/opt/KORVALENT/etc/conf/drive.ini", 4, "etc/conf/drive.ini");
    row("/opt/KORVALENT/etc/conf/drive.ini", 8, "/opt/KORVALENT/etc/conf/drive.ini");
    row("/opt/KORVALENT/etc/conf/drive.ini", 16, "opt/KORVALENT/etc/conf/drive.ini");
    row("/opt/KORVALENT/etc/conf/drive.ini", 32, "KORVALENT/etc/conf/drive.ini");
    row("/opt/KORVALENT/etc/conf/drive.ini", 64, "/opt/KORVALENT/etc/conf/drive.ini");
    row("tmp/a", 8, "a");
    row("/tmp/a", 8, "a");
    row("/tmp", 8, "/tmp");
    row("tmp", 8, "/tmp");
    row("/tmp/", 8, "");
    row("/tmp//a", 8, "/a");
    row("//tmp/a", 8, "//tmp/a");
    row("/tmp/tmp/a", 8, "tmp/a");
    row("/tmp//tmp/a", 8, "/tmp/a");
    row("/a/tmp/b", 8, "/a/tmp/b");
    row("/TMP/a", 8, "/TMP/a");
    row("/Tmp/a", 8, "/Tmp/a");
    row("/tmpx/a", 8, "/tmpx/a");
    row("/appdata/x", 64, "x");
    row("/KORVALENT/conf/x", 2, "conf/x");
    row("/a", 16, "a");
    row("a", 16, "a");
    row("//a", 16, "/a");
    row("/", 16, "");
    row("", 16, "");
    row("", 8, "/");
    row("", 0, "/");
    row("a", 0, "/a");
    row("/a", 0, "/a");
    row("<invalid>a", 0, "/<invalid>a");
    row("/<invalid>a", 0, "/<invalid>a");
    row("a", 3, "/a");
    row("/tmp/a", 24, "/tmp/a");
    row("/tmp/a", -1, "/tmp/a");
    row("\\tmp\\a", 8, "/\\tmp\\a");
    row("/tmp/%1", 8, "%1");
    QTest::newRow("line break, 8") << QStringLiteral("/tmp/a\nb") << 8 << QStringLiteral("a\nb");
    QTest::newRow("null, 16") << QString() << 16 << QStringLiteral("");
    QTest::newRow("null, 8") << QString() << 8 << QStringLiteral("/");
}

void tst_CFTPath::toRelativePath()
{
    QFETCH(QString, path);
    QFETCH(int, value);
    QTEST(CFTPath::toRelativePath(path, code(value)), "expected");
}

void tst_CFTPath::toRelativePathOfEach_data()
{
    codes_data();
}

// Below each entry point a path loses its directory, and no longer below the invalid one.
void tst_CFTPath::toRelativePathOfEach()
{
    QFETCH(CFTPath::EEntryPoint, entryPoint);
    QFETCH(QString, directory);
    const bool isInvalid = entryPoint == CFTPath::EP_INVALID;
    for (const char *tail : {"", "a", "a/b.c", "^.*/"}) {
        const QString name = QString::fromLatin1(tail);
        const QString path = directory + name;
        const QString expected = isInvalid ? QLatin1Char('/') + path : name;
        QCOMPARE(CFTPath::toRelativePath(path, entryPoint), expected);
        if (!isInvalid)
            QCOMPARE(CFTPath::toRelativePath(path.mid(1), entryPoint), name);
    }
}

void tst_CFTPath::fromPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("value");
    const auto row = [](const char *path, int value) {
        QTest::addRow("\"%s\"", path) << QString::fromLatin1(path) << value;
    };
    // By name, at position 0.
    row("CONSTCONFIG/x", 1);
    row("KORVALENT/x", 2);
    row("OPT/KORVALENT/x", 4);
    row("TMP/x", 8);
    row("ROOT/x", 16);
    row("OPT/x", 32);
    row("APPDATA/x", 64);
    row("TMP", 8);
    // By name, at position 1.
    row("/CONSTCONFIG/x", 1);
    row("/KORVALENT/x", 2);
    row("/OPT/KORVALENT/x", 4);
    row("/TMP/x", 8);
    row("/ROOT/x", 16);
    row("xCONSTCONFIG", 1);
    row("xTMP", 8);
    row("xOPT", 32);
    row("xAPPDATA", 64);
    row(" OPT/KORVALENT", 4);
    // Contract: "/" is tried before "OPT" and "APPDATA".
    row("/OPT/x", 16);
    row("/APPDATA/x", 16);
    row("/OPT", 16);
    // At position 2 and beyond.
    row("xxTMP", 0);
    row("a/TMP/x", 0);
    row("//TMP/x", 16);
    row("OPT/TMP", 32);
    // In a longer word.
    row("TMPX", 8);
    row("/TMPX/y", 8);
    row("ROOTS", 16);
    row("OPTION", 32);
    row("KORVALENTS", 2);
    row("OPT/KORVALENTS", 4);
    // By directory.
    row("/opt/KORVALENT/etc/conf/", 1);
    row("/opt/KORVALENT/etc/conf/drive.ini", 1);
    row("/opt/KORVALENT/etc/conf", 4);
    row("/opt/KORVALENT/etc/confx/", 4);
    row("/opt/KORVALENT/", 4);
    row("/opt/KORVALENT", 16);
    row("/KORVALENT/", 2);
    row("/tmp/", 8);
    row("/tmp/x", 8);
    row("/tmp", 16);
    row("/", 16);
    row("/x", 16);
    row("/opt/other/", 16);
    row("/opt/", 16);
    row("/appdata/x", 16);
    // Case, and no separator in front.
    row("tmp/x", 0);
    row("/Tmp/x", 16);
    row("constconfig/x", 0);
    row("/korvalent/x", 16);
    row("opt/KORVALENT/x", 0);
    row("appdata/x", 0);
    row("drive.ini", 0);
    row("", 0);
    row("T", 0);
    row("TM", 0);
    row("xTM", 0);
    // Contract: the invalid one is tried first.
    row("<invalid>", 0);
    row("/<invalid>", 0);
    row("/<invalid>/TMP", 0);
    row("/x<invalid>", 16);
    row("/<invalid", 16);
    row("/<INVALID>", 16);
    QTest::newRow("null") << QString() << 0;
}

void tst_CFTPath::fromPath()
{
    QFETCH(QString, path);
    QFETCH(int, value);
    QCOMPARE(int(CFTPath::fromPath(path)), value);
    QCOMPARE(int(expectedOf(path)), value);
}

// Names and directories behind each other, with nothing, "/", "x" or both in front and between.
void tst_CFTPath::fromPathOfPairs()
{
    QStringList words = {QString()};
    for (const Row &row : kRows)
        words << QString::fromLatin1(row.name) << QString::fromLatin1(row.directory);
    QSet<int> seen;
    for (const char *front : {"", "/", "x", "//", "xx", "/x"}) {
        for (const QString &first : qAsConst(words)) {
            for (const char *middle : {"", "/", "x"}) {
                for (const QString &second : qAsConst(words)) {
                    const QString path
                        = QLatin1String(front) + first + QLatin1String(middle) + second;
                    const CFTPath::EEntryPoint expected = expectedOf(path);
                    QVERIFY2(CFTPath::fromPath(path) == expected, qUtf8Printable(path));
                    seen += expected;
                }
            }
        }
    }
    QCOMPARE(seen.size(), 8);
}

QTEST_APPLESS_MAIN(tst_CFTPath)

#include "tst_CFTPath.moc"
