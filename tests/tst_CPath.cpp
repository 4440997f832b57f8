#include "CPath.h"
#include "MessageRecorder.h"
#include "installation/Permissions.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <type_traits>

#include <unistd.h>

using Accessor = QString (*)(bool);
using Query = QString (*)();

Q_DECLARE_METATYPE(Accessor)
Q_DECLARE_METATYPE(Query)

namespace {

static_assert(std::is_trivially_default_constructible_v<CPath>);
static_assert(std::is_same_v<decltype(&CPath::createDirIfWanted), QString (*)(QString, bool)>);

struct Constant
{
    const char *name;
    QString value;
    const char *expected;
};

// Contract: the constants are there when another program's static data is made.
const Constant kConstants[] = {
    {"CPATH_BIN", CPath::CPATH_BIN, "bin/"},
    {"CPATH_LIB", CPath::CPATH_LIB, "lib/"},
    {"CPATH_ETC", CPath::CPATH_ETC, "etc/"},
    {"CPATH_TXT", CPath::CPATH_TXT, "etc/txt/"},
    {"CPATH_IMG", CPath::CPATH_IMG, "etc/image/"},
    {"CPATH_DOC", CPath::CPATH_DOC, "etc/doc/"},
    {"CPATH_CCONF", CPath::CPATH_CCONF, "etc/conf/"},
    {"CPATH_CDATA", CPath::CPATH_CDATA, "etc/data/"},
    {"CPATH_CONF", CPath::CPATH_CONF, "conf/"},
    {"CPATH_LOG", CPath::CPATH_LOG, "log/"},
    {"CPATH_MOT", CPath::CPATH_MOT, "motor/"},
    {"CPATH_PAR", CPath::CPATH_PAR, "param/"},
    {"CPATH_DAT", CPath::CPATH_DAT, "data/"},
    {"CPATH_PRJ", CPath::CPATH_PRJ, "project/"},
    {"CPATH_PLUGINS", CPath::CPATH_PLUGINS, "plugins/"},
    {"CPATH_COMPANY", CPath::CPATH_COMPANY, "KORVALENT/"},
};

//! An accessor with its argument and with the default, and what it puts behind its root.
struct Directory
{
    const char *name;
    Accessor accessor;
    Query query;
    const char *tail;
};

const Directory kInstalled[] = {
    {"bin", &CPath::binPath, [] { return CPath::binPath(); }, "bin/"},
    {"lib", &CPath::libPath, [] { return CPath::libPath(); }, "lib/"},
    {"etc", &CPath::etcPath, [] { return CPath::etcPath(); }, "etc/"},
    {"txt", &CPath::txtPath, [] { return CPath::txtPath(); }, "etc/txt/"},
    {"image", &CPath::imagePath, [] { return CPath::imagePath(); }, "etc/image/"},
    {"doc", &CPath::docPath, [] { return CPath::docPath(); }, "etc/doc/"},
    {"constConfig", &CPath::constConfigPath, [] { return CPath::constConfigPath(); }, "etc/conf/"},
    {"constData", &CPath::constDataPath, [] { return CPath::constDataPath(); }, "etc/data/"},
};
const Directory kWritten[] = {
    {"config", &CPath::configPath, [] { return CPath::configPath(); }, "conf/"},
    {"log", &CPath::logPath, [] { return CPath::logPath(); }, "log/"},
    {"motor", &CPath::motorPath, [] { return CPath::motorPath(); }, "motor/"},
    {"param", &CPath::paramPath, [] { return CPath::paramPath(); }, "param/"},
    {"data", &CPath::dataPath, [] { return CPath::dataPath(); }, "data/"},
    {"project", &CPath::projectPath, [] { return CPath::projectPath(); }, "project/"},
};

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

//! Makes a directory the current one while it lives.
class CurrentDirectory
{
public:
    explicit CurrentDirectory(const QString &path) : mIsSet(QDir::setCurrent(path)) { }
    ~CurrentDirectory() { QDir::setCurrent(mBefore); }

    bool isSet() const { return mIsSet; }

private:
    Q_DISABLE_COPY(CurrentDirectory)

    const QString mBefore = QDir::currentPath();
    const bool mIsSet;
};

//! Returns the pieces of the absolute path of this program.
QStringList programPieces()
{
    return QCoreApplication::applicationFilePath().split(QLatin1Char('/'));
}

//! Returns the directory above that of this program, with a "/" at its end.
QString root()
{
    const QStringList pieces = programPieces();
    return pieces.mid(0, pieces.size() - 2).join(QLatin1Char('/')) + QLatin1Char('/');
}

} // namespace

class tst_CPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void constants_data();
    void constants();
    void roots();
    void directories_data();
    void directories();
    void writtenDirectories_data();
    void writtenDirectories();

    void creates_data();
    void creates();
    void createsThroughParent();
    void createsInCurrent_data();
    void createsInCurrent();
    void createsNothing_data();
    void createsNothing();
    void keepsDirectory_data();
    void keepsDirectory();
    void keepsLinkedDirectory();
    void keepsFile_data();
    void keepsFile();
    void keepsBrokenLink();

    void doesFilenameContainPath_data();
    void doesFilenameContainPath();
    void prependPath_data();
    void prependPath();
    void prependPathKeepsNull();
    void trimPath_data();
    void trimPath();
    void trimPathKeepsNull();
    void trimUndoesPrepend_data();
    void trimUndoesPrepend();
    void filePath_data();
    void filePath();
    void filePathOfNothing();
    void separators_data();
    void separators();
    void joins_data();
    void joins();
    void cleanFileName_data();
    void cleanFileName();
    void cleanFileNameOfEachCharacter();

private:
    std::unique_ptr<MessageRecorder> mRecorder;
};

// None of the functions says anything, whatever it is given.
void tst_CPath::init()
{
    mRecorder = std::make_unique<MessageRecorder>();
}

void tst_CPath::cleanup()
{
    const QStringList messages = mRecorder->messages();
    mRecorder.reset();
    QCOMPARE(messages, QStringList());
}

void tst_CPath::constants_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    for (const Constant &constant : kConstants)
        QTest::newRow(constant.name) << constant.value << QString::fromLatin1(constant.expected);
}

void tst_CPath::constants()
{
    QFETCH(QString, value);
    QTEST(value, "expected");
}

void tst_CPath::roots()
{
    const QStringList pieces = programPieces();
    QVERIFY(pieces.size() >= 4);
    QCOMPARE(CPath::installPath(), root());
    QCOMPARE(CPath::productName(), pieces.at(pieces.size() - 3));
    QCOMPARE(CPath::appdataPath(), QStringLiteral("/KORVALENT/"));
    QCOMPARE(CPath::userdataPath(), QStringLiteral("/KORVALENT/"));
}

void tst_CPath::directories_data()
{
    QTest::addColumn<Accessor>("accessor");
    QTest::addColumn<Query>("query");
    QTest::addColumn<QString>("expected");
    for (const Directory &directory : kInstalled) {
        QTest::newRow(directory.name)
            << directory.accessor << directory.query << root() + QLatin1String(directory.tail);
    }
    for (const Directory &directory : kWritten) {
        QTest::newRow(directory.name)
            << directory.accessor << directory.query
            << QLatin1String("/KORVALENT/") + QLatin1String(directory.tail);
    }
}

// Asking makes nothing, be it with the default or not.
void tst_CPath::directories()
{
    QFETCH(Accessor, accessor);
    QFETCH(Query, query);
    QFETCH(QString, expected);
    const int before = modeOf(expected);
    QCOMPARE(accessor(false), expected);
    QCOMPARE(query(), expected);
    QCOMPARE(modeOf(expected), before);
}

void tst_CPath::writtenDirectories_data()
{
    QTest::addColumn<Accessor>("accessor");
    QTest::addColumn<QString>("path");
    for (const Directory &directory : kWritten) {
        QTest::newRow(directory.name)
            << directory.accessor << QLatin1String("/KORVALENT/") + QLatin1String(directory.tail);
    }
}

// The fixed root is outside of any sandbox: it is only written to where it can be taken away again.
// Otherwise creates() and its neighbours stand for it.
void tst_CPath::writtenDirectories()
{
    QFETCH(Accessor, accessor);
    QFETCH(QString, path);
    const QString company = QStringLiteral("/KORVALENT");
    QCOMPARE(accessor(false), path);
    if (modeOf(company) != kNoEntry || access("/", W_OK) != 0)
        return;
    const Umask umask(077);
    const QString returned = accessor(true);
    const int companyMode = modeOf(company);
    const int mode = modeOf(path);
    const bool isChanged = setMode(path, 0711);
    const QString again = accessor(true);
    const int modeAfter = modeOf(path);
    const bool isRemoved = QDir().rmdir(path) && QDir().rmdir(company);
    QCOMPARE(returned, path);
    QCOMPARE(companyMode, 0700);
    QCOMPARE(mode, 0775);
    QVERIFY(isChanged);
    QCOMPARE(again, path);
    QCOMPARE(modeAfter, 0711);
    QVERIFY(isRemoved);
}

void tst_CPath::creates_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QString>("path");
    const struct
    {
        const char *name;
        const char *path;
    } paths[] = {
        {"one directory", "a"},  {"one directory and separator", "a/"},
        {"one parent", "a/b/"},  {"many parents", "a/b/c/d/e/f/g"},
        {"blanks", " a b/ c /"}, {"place marker", "%1/%2/"},
        {"hidden", ".a/.b"},     {"backslash", "a\\b/c\\"},
    };
    for (const int mask : {0, 022, 027, 077}) {
        for (const auto &path : paths) {
            QTest::addRow("umask %03o, %s", static_cast<unsigned>(mask), path.name)
                << mask << QString::fromLatin1(path.path);
        }
    }
}

// The directory itself has all its permissions whatever the umask is, its parents what that leaves.
void tst_CPath::creates()
{
    QFETCH(int, mask);
    QFETCH(QString, path);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(setMode(dir.path(), 0711));
    const QString wanted = dir.path() + QLatin1Char('/') + path;
    {
        const Umask umask(mask);
        QCOMPARE(CPath::createDirIfWanted(wanted, true), wanted);
    }
    QStringList pieces = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QCOMPARE(modeOf(dir.filePath(pieces.join(QLatin1Char('/')))), 0775);
    pieces.removeLast();
    for (; !pieces.isEmpty(); pieces.removeLast()) {
        const QString parent = dir.filePath(pieces.join(QLatin1Char('/')));
        QCOMPARE(modeOf(parent), 0777 & ~mask);
        QCOMPARE(
            QDir(parent).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
            1);
    }
    QCOMPARE(modeOf(dir.path()), 0711);
}

// A directory that is only missing because a parent named on the way is.
void tst_CPath::createsThroughParent()
{
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("a/../b"));
    {
        const Umask umask(077);
        QCOMPARE(CPath::createDirIfWanted(path, true), path);
    }
    QCOMPARE(modeOf(dir.filePath(QStringLiteral("b"))), 0775);
}

void tst_CPath::createsInCurrent_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("made");
    QTest::newRow("name") << QStringLiteral("a") << QStringLiteral("a");
    QTest::newRow("name/") << QStringLiteral("a/") << QStringLiteral("a");
    QTest::newRow("./name") << QStringLiteral("./a") << QStringLiteral("a");
    QTest::newRow("two names") << QStringLiteral("a/b/") << QStringLiteral("a/b");
}

void tst_CPath::createsInCurrent()
{
    QFETCH(QString, path);
    QFETCH(QString, made);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const CurrentDirectory current(dir.path());
    QVERIFY(current.isSet());
    const Umask umask(077);
    QCOMPARE(CPath::createDirIfWanted(path, false), path);
    QCOMPARE(modeOf(dir.filePath(made)), kNoEntry);
    QCOMPARE(CPath::createDirIfWanted(path, true), path);
    QCOMPARE(modeOf(dir.filePath(made)), 0775);
}

void tst_CPath::createsNothing_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("create");
    QTest::newRow("not wanted") << QStringLiteral("a/b/") << false;
    QTest::newRow("empty, not wanted") << QStringLiteral("") << false;
    QTest::newRow("empty") << QStringLiteral("") << true;
    QTest::newRow("current") << QStringLiteral(".") << true;
    QTest::newRow("parent") << QStringLiteral("..") << true;
}

void tst_CPath::createsNothing()
{
    QFETCH(QString, path);
    QFETCH(bool, create);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString inner = dir.filePath(QStringLiteral("in"));
    QVERIFY(QDir().mkdir(inner));
    QVERIFY(setMode(inner, 0710));
    QVERIFY(setMode(dir.path(), 0701));
    const CurrentDirectory current(inner);
    QVERIFY(current.isSet());
    QCOMPARE(CPath::createDirIfWanted(path, create), path);
    QVERIFY(QDir(inner).isEmpty());
    QCOMPARE(modeOf(inner), 0710);
    QCOMPARE(modeOf(dir.path()), 0701);
}

void tst_CPath::keepsDirectory_data()
{
    QTest::addColumn<int>("mode");
    for (const int mode : {0700, 0711, 0755, 0777, 01777, 02775})
        QTest::addRow("%04o", static_cast<unsigned>(mode)) << mode;
}

void tst_CPath::keepsDirectory()
{
    QFETCH(int, mode);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("a"));
    QVERIFY(QDir().mkdir(path));
    QVERIFY(setMode(path, mode));
    const Umask umask(0);
    for (const QString &spelling : {path, path + QLatin1Char('/'), path + QLatin1String("/.")}) {
        QCOMPARE(CPath::createDirIfWanted(spelling, false), spelling);
        QCOMPARE(CPath::createDirIfWanted(spelling, true), spelling);
        QCOMPARE(modeOf(path), mode);
    }
}

void tst_CPath::keepsLinkedDirectory()
{
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("a"));
    const QString link = dir.filePath(QStringLiteral("link"));
    QVERIFY(QDir().mkdir(path));
    QVERIFY(setMode(path, 0700));
    QVERIFY(QFile::link(path, link));
    QCOMPARE(CPath::createDirIfWanted(link, true), link);
    QCOMPARE(modeOf(path), 0700);
    QCOMPARE(QFile::symLinkTarget(link), path);

    const QString inner = link + QLatin1String("/b/");
    const Umask umask(077);
    QCOMPARE(CPath::createDirIfWanted(inner, true), inner);
    QCOMPARE(modeOf(path), 0700);
    QCOMPARE(modeOf(path + QLatin1String("/b")), 0775);
}

void tst_CPath::keepsFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("mode");
    for (const int mode : {0600, 0644, 0400}) {
        const auto bits = static_cast<unsigned>(mode);
        QTest::addRow("itself, %03o", bits) << QStringLiteral("file") << mode;
        QTest::addRow("itself/, %03o", bits) << QStringLiteral("file/") << mode;
        QTest::addRow("as parent, %03o", bits) << QStringLiteral("file/a") << mode;
        QTest::addRow("as farther parent, %03o", bits) << QStringLiteral("file/a/b/") << mode;
    }
}

void tst_CPath::keepsFile()
{
    QFETCH(QString, path);
    QFETCH(int, mode);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString file = dir.filePath(QStringLiteral("file"));
    QVERIFY(write(file, "content"));
    QVERIFY(setMode(file, mode));
    const QString wanted = dir.filePath(path);
    QCOMPARE(CPath::createDirIfWanted(wanted, true), wanted);
    QCOMPARE(modeOf(file), mode);
    QCOMPARE(read(file), QByteArray("content"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("file")});
}

void tst_CPath::keepsBrokenLink()
{
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString target = dir.filePath(QStringLiteral("missing"));
    const QString link = dir.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(target, link));
    QCOMPARE(CPath::createDirIfWanted(link, true), link);
    QCOMPARE(QFile::symLinkTarget(link), target);
}

void tst_CPath::doesFilenameContainPath_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char *name, bool expected) {
        QTest::addRow("\"%s\"", name) << QString::fromLatin1(name) << expected;
    };
    row("", false);
    row("f", false);
    row("f.txt", false);
    row("a\\b", false);
    row("a:b", false);
    row(".", false);
    row("..", false);
    row("/", true);
    row("/f", true);
    row("f/", true);
    row("a/b", true);
    row("./f", true);
    row("a//b", true);
    QTest::newRow("null") << QString() << false;
    QTest::newRow("fraction slash") << QStringLiteral("a\u2044b") << false;
}

void tst_CPath::doesFilenameContainPath()
{
    QFETCH(QString, name);
    QTEST(CPath::doesFilenameContainPath(name), "expected");
}

void tst_CPath::prependPath_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected"); // "$" stands for the current directory
    const auto row
        = [](const char *name, const char *fileName, const char *path, const char *expected) {
              QTest::newRow(name) << QString::fromLatin1(fileName) << QString::fromLatin1(path)
                                  << QString::fromLatin1(expected);
          };
    row("directory with separator", "f.txt", "/d/e/", "/d/e/f.txt");
    row("sibling file", "f.txt", "/d/e", "/d/f.txt");
    row("sibling file with suffix", "f.txt", "/d/e.ini", "/d/f.txt");
    row("directory without separator", "f.txt", "$/sub", "$/f.txt");
    row("directory that is there", "f.txt", "$/sub/", "$/sub/f.txt");
    row("root", "f.txt", "/", "/f.txt");
    row("file in the root", "f.txt", "/e", "/f.txt");
    row("relative directory", "f.txt", "sub/", "$/sub/f.txt");
    row("relative directory without separator", "f.txt", "sub", "$/f.txt");
    row("relative file", "f.txt", "no/such/g", "$/no/such/f.txt");
    row("file name with directory", "sub/f.txt", "/d/", "sub/f.txt");
    row("absolute file name", "/a/f.txt", "/d/", "/a/f.txt");
    row("file name ./", "./f.txt", "/d/", "./f.txt");
    row("file name with / at its end", "f/", "/d/", "f/");
    row("file name of / alone", "/", "/d/", "/");
    row("empty file name", "", "/d/", "");
    row("empty file name and path", "", "", "");
    row("backslash in the file name", "a\\f", "/d/", "/d/a\\f");
    row("blanks", " f g ", "/d e/", "/d e/ f g ");
    row("place marker", "%1", "/%2/", "/%2/%1");
    row("no suffix, hidden", ".f", "/d/", "/d/.f");
}

void tst_CPath::prependPath()
{
    QFETCH(QString, fileName);
    QFETCH(QString, path);
    QFETCH(QString, expected);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString here = QFileInfo(dir.path()).canonicalFilePath();
    QVERIFY(QDir(here).mkdir(QStringLiteral("sub")));
    const CurrentDirectory current(here);
    QVERIFY(current.isSet());
    QCOMPARE(CPath::prependPathIfNoPathIsGiven(fileName, path.replace(QLatin1Char('$'), here)),
             expected.replace(QLatin1Char('$'), here));
}

void tst_CPath::prependPathKeepsNull()
{
    QVERIFY(CPath::prependPathIfNoPathIsGiven(QString(), QStringLiteral("/d/")).isNull());
}

void tst_CPath::trimPath_data()
{
    QTest::addColumn<QString>("filePath"); // "$" stands for the directory of the files
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    const auto trimmed
        = [](const char *name, const char *filePath, const char *path, const char *expected) {
              QTest::newRow(name) << QString::fromLatin1(filePath) << QString::fromLatin1(path)
                                  << QString::fromLatin1(expected);
          };
    const auto kept = [&trimmed](const char *name, const char *filePath, const char *path) {
        trimmed(name, filePath, path, filePath);
    };
    trimmed("same directory", "$/real/f", "$/real", "f");
    trimmed("same directory with separator", "$/real/f", "$/real/", "f");
    trimmed("missing file", "$/real/none", "$/real", "none");
    trimmed("file with suffixes", "$/real/f.a.b", "$/real", "f.a.b");
    trimmed("a directory is a name too", "$/real/sub", "$/real", "sub");
    trimmed("file through a link", "$/link/f", "$/real", "f");
    trimmed("path through a link", "$/real/f", "$/link", "f");
    trimmed("both through links", "$/link/f", "$/link2/", "f");
    trimmed("path with ..", "$/real/f", "$/real/sub/..", "f");
    trimmed("file with ..", "$/real/sub/../f", "$/real", "f");
    trimmed("relative file", "real/f", "$/real", "f");
    trimmed("relative path", "$/real/f", "real", "f");
    trimmed("both relative", "real/f", "./real/", "f");
    trimmed("current directory", "$/f", ".", "f");
    trimmed("name alone in the current directory", "f", "$", "f");
    trimmed("missing directory", "$/no/f", "$/no", "f");
    trimmed("missing directory with separator", "$/no/f", "$/no/", "f");
    trimmed("root", "/f", "/", "f");
    trimmed("link to a file, its own directory", "$/real/file-link", "$/real", "file-link");
    kept("link to a file, that of its target", "$/real/file-link", "$/other");
    kept("directory below", "$/real/sub/f", "$/real");
    kept("directory above", "$/real/f", "$/real/sub");
    kept("directory beside", "$/real/f", "$/other");
    kept("other missing directory", "$/no/f", "$/nothing");
    kept("missing and there", "$/no/f", "$/real");
    kept("other case", "$/real/f", "$/REAL");
    kept("start of the name", "$/real/f", "$/rea");
    kept("empty file", "", "$/real");
    kept("empty file, current directory", "", ".");
    kept("the directory itself", "$/real", "$/real");
}

void tst_CPath::trimPath()
{
    QFETCH(QString, filePath);
    QFETCH(QString, path);
    QFETCH(QString, expected);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString here = QFileInfo(dir.path()).canonicalFilePath();
    const QDir top(here);
    QVERIFY(top.mkpath(QStringLiteral("real/sub")));
    QVERIFY(top.mkdir(QStringLiteral("other")));
    QVERIFY(write(here + QLatin1String("/real/f"), "f"));
    QVERIFY(write(here + QLatin1String("/other/g"), "g"));
    QVERIFY(QFile::link(QStringLiteral("real"), here + QLatin1String("/link")));
    QVERIFY(QFile::link(here + QLatin1String("/real"), here + QLatin1String("/link2")));
    QVERIFY(QFile::link(here + QLatin1String("/other/g"), here + QLatin1String("/real/file-link")));
    const CurrentDirectory current(here);
    QVERIFY(current.isSet());
    for (QString *text : {&filePath, &path, &expected})
        text->replace(QLatin1Char('$'), here);
    QCOMPARE(CPath::trimPathIfPathIsEqual(filePath, path), expected);
}

void tst_CPath::trimPathKeepsNull()
{
    QVERIFY(CPath::trimPathIfPathIsEqual(QString(), QStringLiteral("/d")).isNull());
}

void tst_CPath::trimUndoesPrepend_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::newRow("suffix") << QStringLiteral("f.txt");
    QTest::newRow("blanks") << QStringLiteral(" f ");
    QTest::newRow("backslash") << QStringLiteral("a\\b");
    QTest::newRow("place marker") << QStringLiteral("%1");
    QTest::newRow("hidden") << QStringLiteral(".f");
    QTest::newRow("not ASCII") << QStringLiteral("\u00fcber.txt");
}

void tst_CPath::trimUndoesPrepend()
{
    QFETCH(QString, fileName);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = CPath::prependPathIfNoPathIsGiven(fileName, dir.path() + QLatin1Char('/'));
    QCOMPARE(path, dir.path() + QLatin1Char('/') + fileName);
    QCOMPARE(CPath::trimPathIfPathIsEqual(path, dir.path()), fileName);
}

void tst_CPath::filePath_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("expected"); // "$" stands for the current directory
    const auto row = [](const char *fileName, const char *expected) {
        QTest::addRow("\"%s\"", fileName)
            << QString::fromLatin1(fileName) << QString::fromLatin1(expected);
    };
    row("/d/e/f.txt", "/d/e");
    row("/d/e/", "/d/e");
    row("/d", "/");
    row("/", "/");
    row("f.txt", "$");
    row("sub/f.txt", "$/sub");
    row("./f.txt", "$");
    row("no/such/f", "$/no/such");
    row("a\\b", "$");
    row("/d e/f", "/d e");
    row(" ", "$");
}

void tst_CPath::filePath()
{
    QFETCH(QString, fileName);
    QFETCH(QString, expected);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString here = QFileInfo(dir.path()).canonicalFilePath();
    const CurrentDirectory current(here);
    QVERIFY(current.isSet());
    QCOMPARE(CPath::filePath(fileName), expected.replace(QLatin1Char('$'), here));
}

void tst_CPath::filePathOfNothing()
{
    QVERIFY(CPath::filePath(QString()).isNull());
    QVERIFY(CPath::filePath(QStringLiteral("")).isNull());
}

void tst_CPath::separators_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("atEnd");
    QTest::addColumn<QString>("atStart");
    QTest::addColumn<QString>("notAtStart");
    QTest::addColumn<QString>("notAtEnd");
    const auto row = [](const char *path, const char *atEnd, const char *atStart,
                        const char *notAtStart, const char *notAtEnd) {
        QTest::addRow("\"%s\"", path)
            << QString::fromLatin1(path) << QString::fromLatin1(atEnd)
            << QString::fromLatin1(atStart) << QString::fromLatin1(notAtStart)
            << QString::fromLatin1(notAtEnd);
    };
    row("", "/", "/", "", "");
    row("/", "/", "/", "", "");
    row("//", "//", "//", "/", "/");
    row("a", "a/", "/a", "a", "a");
    row("a/", "a/", "/a/", "a/", "a");
    row("/a", "/a/", "/a", "a", "/a");
    row("/a/", "/a/", "/a/", "a/", "/a");
    row("a//", "a//", "/a//", "a//", "a/");
    row("//a", "//a/", "//a", "/a", "//a");
    row("a/b", "a/b/", "/a/b", "a/b", "a/b");
    row("a\\", "a\\/", "/a\\", "a\\", "a\\");
    row("\\a", "\\a/", "/\\a", "\\a", "\\a");
    row(" ", " /", "/ ", " ", " ");
    row("/ ", "/ /", "/ ", " ", "/ ");
    row(" /", " /", "/ /", " /", " ");
    QTest::newRow("null") << QString() << QStringLiteral("/") << QStringLiteral("/") << QString()
                          << QString();
}

void tst_CPath::separators()
{
    QFETCH(QString, path);
    QTEST(CPath::ensurePathSeparatorAtEnd(path), "atEnd");
    QTEST(CPath::ensurePathSeparatorAtStart(path), "atStart");
    QTEST(CPath::removePathSeparatorAtStart(path), "notAtStart");
    QTEST(CPath::removePathSeparatorAtEnd(path), "notAtEnd");
}

void tst_CPath::joins_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("asPath");
    QTest::addColumn<QString>("asFile");
    const auto row
        = [](const char *path, const char *name, const char *asPath, const char *asFile) {
              QTest::addRow("\"%s\", \"%s\"", path, name)
                  << QString::fromLatin1(path) << QString::fromLatin1(name)
                  << QString::fromLatin1(asPath) << QString::fromLatin1(asFile);
          };
    row("a", "b", "a/b/", "a/b");
    row("a/", "b", "a/b/", "a/b");
    row("a", "/b", "a//b/", "a//b");
    row("a/", "/b", "a//b/", "a//b");
    row("a", "b/", "a/b/", "a/b/");
    row("/a/b/", "c/d", "/a/b/c/d/", "/a/b/c/d");
    row("a//", "b", "a//b/", "a//b");
    row("", "b", "/b/", "/b");
    row("", "/b", "//b/", "//b");
    row("", "", "/", "/");
    row("a", "", "a/", "a/");
    row("a/", "", "a/", "a/");
    row("/", "b", "/b/", "/b");
    row("a", "/", "a//", "a//");
    row("%1", "%2", "%1/%2/", "%1/%2");
    row("a\\", "b\\", "a\\/b\\/", "a\\/b\\");
    row("a", "../b", "a/../b/", "a/../b");
}

void tst_CPath::joins()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    QTEST(CPath::addPathToPath(path, name), "asPath");
    QTEST(CPath::addFileNameToPath(path, name), "asFile");
}

void tst_CPath::cleanFileName_data()
{
    QTest::addColumn<QString>("filePath");
    QTest::addColumn<QString>("expected"); // "$" stands for the current directory
    const auto row = [](const char *name, const char *filePath, const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(filePath) << QString::fromLatin1(expected);
    };
    row("clean", "/tmp/a.txt", "/tmp/a.txt");
    row("blanks and characters", "/tmp/  a:b?  c.txt", "/tmp/ab c.txt");
    row("all seven", "/tmp/<a>b:c!d?e|f\"g", "/tmp/abcdefg");
    row("nothing but the seven", "/tmp/<>:!?|\"", "/tmp/");
    row("a ? b, simplified before", "/tmp/a ? b", "/tmp/a  b");
    row("? a, simplified before", "/tmp/? a", "/tmp/ a");
    row("a ?, simplified before", "/tmp/a ?", "/tmp/a ");
    row("backslash stays", "/tmp/a\\b\\", "/tmp/a\\b\\");
    row("backslashes beside the seven", "/tmp/\\!\\?\\|", "/tmp/\\\\\\");
    row("brackets, star and the like stay", "/tmp/a[b]*c'd;e,f", "/tmp/a[b]*c'd;e,f");
    row("caret and dash stay", "/tmp/a^b-c", "/tmp/a^b-c");
    row("place marker", "/tmp/%1?%2", "/tmp/%1%2");
    row("tabs", "/tmp/\ta\t\tb\t.txt\t", "/tmp/a b .txt");
    row("line breaks", "/tmp/a\n\nb\r\nc\n", "/tmp/a b c");
    row("vertical tab and form feed", "/tmp/a\vb\fc", "/tmp/a b c");
    row("blank and tab", "/tmp/a \t b", "/tmp/a b");
    row("blanks alone", "/tmp/   ", "/tmp/");
    row("case", "/tmp/AbC?.TXT", "/tmp/AbC.TXT");
    row("directory stays as it is", "/t ?mp/a:  b/c?", "/t ?mp/a:  b/c");
    row("no file name", "/tmp/a?/", "/tmp/a?/");
    row("file in the root", "/a?", "//a");
    row("relative", "a?.txt", "$/a.txt");
    row("relative with directory", "s?b/a?.txt", "$/s?b/a.txt");
    row("relative ./", "./a?", "$/a");
    QTest::newRow("no-break space is white space")
        << QStringLiteral("/tmp/\u00a0a\u00a0\u2003b\u00a0") << QStringLiteral("/tmp/a b");
    QTest::newRow("other scripts stay")
        << QStringLiteral("/tmp/\u00fc?\u65e5\u672c") << QStringLiteral("/tmp/\u00fc\u65e5\u672c");
    QTest::newRow("full-width signs stay") << QStringLiteral("/tmp/a\uff1fb\uff1a\u00a1")
                                           << QStringLiteral("/tmp/a\uff1fb\uff1a\u00a1");
    QTest::newRow("beyond the basic plane") << QStringLiteral("/tmp/\U0001f600?\U0001f600")
                                            << QStringLiteral("/tmp/\U0001f600\U0001f600");
}

void tst_CPath::cleanFileName()
{
    QFETCH(QString, filePath);
    QFETCH(QString, expected);
    const QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString here = QFileInfo(dir.path()).canonicalFilePath();
    const CurrentDirectory current(here);
    QVERIFY(current.isSet());
    QCOMPARE(CPath::cleanFileName(filePath), expected.replace(QLatin1Char('$'), here));
}

// Every character below 256, between two letters.
void tst_CPath::cleanFileNameOfEachCharacter()
{
    for (ushort code = 1; code < 256; ++code) {
        if (code == '/')
            continue;
        const QChar character(code);
        QString kept(character);
        if (character.isSpace())
            kept = QStringLiteral(" ");
        else if (QStringLiteral("<>:!?|\"").contains(character))
            kept.clear();
        const QString name = QLatin1Char('a') + character + QLatin1Char('b');
        QCOMPARE(CPath::cleanFileName(QLatin1String("/tmp/") + name),
                 QLatin1String("/tmp/a") + kept + QLatin1Char('b'));
    }
}

QTEST_GUILESS_MAIN(tst_CPath)

#include "tst_CPath.moc"
