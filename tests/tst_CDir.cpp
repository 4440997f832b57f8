#include "CDir.h"

#include "CPath.h"
#include "FileTree.h"
#include "InThreads.h"
#include "MessageRecorder.h"
#include "k7eGlobal.h"

#include <QDirIterator>
#include <QtTest>

#include <climits>
#include <numeric>
#include <type_traits>

#include <sys/mount.h>

using Nk7eGlobal::EDirFilter;

namespace {

using Paths = QStringList;
using Lines = QByteArrayList;

template <class... Arguments>
using Query = bool (*)(Arguments...);
using Text = const QString &;
using Texts = const QStringList &;

static_assert(!std::is_default_constructible_v<CDir>);
static_assert(std::is_same_v<decltype(&CDir::removeFile), Query<Text>>);
static_assert(std::is_same_v<decltype(&CDir::removeDirectory), Query<Text>>);
static_assert(std::is_same_v<decltype(&CDir::removeDirectoryRecursive), Query<Text>>);
static_assert(std::is_same_v<decltype(&CDir::removeFileOrDirectory), Query<Text>>);
static_assert(std::is_same_v<decltype(&CDir::removeFilesByPathList), Query<Texts>>);
static_assert(std::is_same_v<decltype(&CDir::copyFile), Query<Text, Text>>);
static_assert(std::is_same_v<decltype(&CDir::copyFileF), Query<Text, Text>>);
static_assert(std::is_same_v<decltype(&CDir::copyDirectory), Query<Text, Text>>);
static_assert(std::is_same_v<decltype(&CDir::getRelativeSubPath), QString (*)(Text, Text)>);
static_assert(std::is_same_v<decltype(&CDir::toDirFilter), QDir::Filters (*)(EDirFilter)>);
static_assert(std::is_same_v<decltype(&CDir::listFilesAndDirectories), QStringList (*)(Text)>);
static_assert(std::is_same_v<decltype(&CDir::listFileAndDirInfos), QFileInfoList (*)(Text)>);
static_assert(std::is_same_v<decltype(&CDir::addPathToPath), QString (*)(Text, Text)>);
static_assert(std::is_same_v<decltype(&CDir::addFileNameToPath), QString (*)(Text, Text)>);

// The overloads, told apart by their types.
constexpr Query<Text, Text> kCopyTree = &CDir::copyDirectoryRecursive;
constexpr Query<Text, Text, const std::function<bool(int, int)> &> kCopyTreeInSteps
    = &CDir::copyDirectoryRecursive;
constexpr QFileInfoList (*kListByFlags)(Text, Texts, QDir::Filters) = &CDir::entryInfoList;
constexpr QFileInfoList (*kListByKind)(Text, Texts, EDirFilter) = &CDir::entryInfoList;
constexpr QFileInfoList (*kListExcluding)(Text, EDirFilter, Texts) = &CDir::entryInfoList;
constexpr QFileInfoList (*kTreeByFlags)(Text, Texts, QDir::Filters) = &CDir::entryInfoListRecursive;
constexpr QFileInfoList (*kTreeByKind)(Text, Texts, EDirFilter) = &CDir::entryInfoListRecursive;

// The message in which Qt tells an empty name.
const QString kNoNameToRemove
    = QStringLiteral("warning default: QFile::remove: Empty or null file name");

QByteArray cannotCopy(const QByteArray &target)
{
    return "\nCDir::copyFile unable to copy " + target;
}

QByteArray cannotCreate(const QByteArray &target)
{
    return "\nCDir::copyDirectory unable to create " + target;
}

QByteArray cannotRemoveFile(const QByteArray &path)
{
    return "\n CDir::removeFileOrDirectory: unable to remove " + path;
}

//! \a listed is "path" or "path\npath/a\npath/b".
QByteArray cannotRemove(const QByteArray &path, const QByteArray &listed)
{
    return cannotRemoveFile(path) + "\n " + listed + "\n--------------";
}

QByteArray cannotRemove(const QByteArray &path)
{
    return cannotRemove(path, path);
}

QString text(const QByteArray &path)
{
    return QString::fromUtf8(path);
}

QStringList texts(const QByteArrayList &paths)
{
    QStringList result;
    for (const QByteArray &path : paths)
        result += text(path);
    return result;
}

// In all rows below, "@" is the path of the tree.

void addColumns()
{
    QTest::addColumn<Lines>("before");
    QTest::addColumn<Paths>("paths");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<Lines>("after");
    QTest::addColumn<QStringList>("messages");
}

//! A row in which the tree becomes \a after.
void changed(const QByteArray &name, const Lines &before, const QByteArrayList &paths, bool ok,
             const Lines &after, const QByteArray &output = QByteArray(),
             const QString &message = QString())
{
    QTest::newRow(name.constData()) << before << texts(paths) << ok << output << after
                                    << (message.isNull() ? QStringList() : QStringList(message));
}

//! A row in which nothing changes.
void unchanged(const QByteArray &name, const Lines &before, const QByteArrayList &paths, bool ok,
               const QByteArray &output = QByteArray(), const QString &message = QString())
{
    changed(name, before, paths, ok, before, output, message);
}

//! Makes the tree of the row, calls \a call with its paths, and compares all that it did.
template <class Call>
void checkRow(Call call)
{
    QFETCH(const Lines, before);
    QFETCH(const Paths, paths);
    QFETCH(const bool, ok);
    QFETCH(const QByteArray, output);
    QFETCH(const Lines, after);
    QFETCH(const QStringList, messages);
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const Paths expanded = tree.expanded(paths);

    bool actual = !ok;
    const MessageRecorder recorder;
    const QByteArray actualOutput = outputOf([&] { actual = call(expanded); });

    QCOMPARE(actualOutput, tree.expanded(output));
    QCOMPARE(actual, ok);
    QCOMPARE(tree.lines(), FileTree::complete(after));
    QCOMPARE(recorder.messages(), messages);
}

//! The lines of a chain of \a depth directories below the directory \a top.
Lines chain(const QByteArray &top, int depth, const QByteArray &mode)
{
    Lines lines;
    QByteArray path = top;
    for (int i = 0; i < depth; ++i) {
        path += "/d";
        lines += 'd' + mode + ' ' + path;
    }
    lines += "f " + path + "/end=1";
    return lines;
}

//! Bytes that show a lost, a doubled and a swapped block.
QByteArray content(int size)
{
    QByteArray bytes;
    for (quint32 i = 0; bytes.size() < size; ++i)
        bytes += QByteArray::number(i * 2654435761u, 16) + '\0';
    return bytes.left(size);
}

QStringList filePaths(const QFileInfoList &infos)
{
    QStringList paths;
    for (const QFileInfo &info : infos)
        paths += info.filePath();
    return paths;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

//! The names of \a infos, sorted, parted by "|".
QString names(const QFileInfoList &infos)
{
    QStringList list;
    for (const QFileInfo &info : infos)
        list += info.fileName();
    return sorted(list).join(QLatin1Char('|'));
}

//! A file system of 128 KiB; where none may be mounted, a limit of the size of files.
class SmallDisk
{
public:
    SmallDisk(const QByteArray &path, bool mayMount)
        : mPath(path)
        , mIsMounted(mayMount
                     && mount("tmpfs", path.constData(), "tmpfs", 0, "size=128k,mode=755") == 0)
        , mLimit(mIsMounted ? RLIM_INFINITY : 128 * 1024)
    {
    }
    ~SmallDisk()
    {
        if (mIsMounted)
            umount2(mPath.constData(), MNT_DETACH);
    }

    bool isValid() const { return mIsMounted || mLimit.isValid(); }

private:
    Q_DISABLE_COPY(SmallDisk)

    const QByteArray mPath;
    const bool mIsMounted;
    const FileSizeLimit mLimit;
};

} // namespace

class tst_CDir : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void removeFile_data();
    void removeFile();
    void removeDirectory_data();
    void removeDirectory();
    void removeDirectoryOfTemporaryPath_data();
    void removeDirectoryOfTemporaryPath();
    void removeDirectoryRecursive_data();
    void removeDirectoryRecursive();
    void removeDirectoryRecursiveFrom_data();
    void removeDirectoryRecursiveFrom();
    void removeFileOrDirectory_data();
    void removeFileOrDirectory();
    void removeRelativeDirectory();
    void removeFilesByPathList_data();
    void removeFilesByPathList();
    void removeWhatIsListed_data();
    void removeWhatIsListed();

    void copyFile_data();
    void copyFile();
    void fileModes();
    void copyFileF_data();
    void copyFileF();
    void copyDirectory_data();
    void copyDirectory();
    void copyDirectoryRecursive_data();
    void copyDirectoryRecursive();
    void copyStopsAtFirstFailure_data();
    void copyStopsAtFirstFailure();
    void copyOntoItself();
    void copyOfResources();
    void copyFromSearchPath();
    void progress_data();
    void progress();
    void fewDescriptors();
    void deeperThanPaths();
    void withoutCurrentDirectory();
    void namesWithZero();
    void undecodableDirectories();
    void otherEncoding();
    void searchPaths();
    void permissionsOfDots_data();
    void permissionsOfDots();
    void permissions_data();
    void permissions();
    void fullDisk_data();
    void fullDisk();
    void localEncoding();
    void outputInOrder();

    void getRelativeSubPath_data();
    void getRelativeSubPath();
    void toDirFilter_data();
    void toDirFilter();
    void entryInfoList_data();
    void entryInfoList();
    void entryInfoListOrder();
    void excluded_data();
    void excluded();
    void entryInfoListRecursive_data();
    void entryInfoListRecursive();
    void lists_data();
    void lists();
    void listsOfLinks();
    void pathHelpers_data();
    void pathHelpers();
    void threads();
};

// ---- Removing

void tst_CDir::removeFile_data()
{
    addColumns();

    changed("file", {"f a=1", "f b=2"}, {"a"}, true, {"f b=2"});
    changed("file, absolute", {"f a=1"}, {"@/a"}, true, {});
    changed("file without rights", {"f0 a=1"}, {"a"}, true, {});
    changed("hidden file", {"f .a=1"}, {".a"}, true, {});
    changed("pipe", {"p a"}, {"a"}, true, {});
    changed("link to a file", {"f a=1", "l b>a"}, {"b"}, true, {"f a=1"});
    changed("link to a directory", {"d a", "f a/c=1", "l b>a"}, {"b"}, true, {"d a", "f a/c=1"});
    changed("broken link", {"l b>gone"}, {"b"}, true, {});
    changed("behind a link", {"d a", "f a/c=1", "l b>a"}, {"b/c"}, true, {"d a", "l b>a"});
    unchanged("missing", {"f a=1"}, {"b"}, false);
    unchanged("other case", {"f a=1"}, {"A"}, false);
    unchanged("empty directory", {"d a"}, {"a"}, false);
    unchanged("directory", {"d a", "f a/b=1"}, {"@/a"}, false);
    unchanged("file/", {"f a=1"}, {"a/"}, false);
    unchanged("link to a directory/", {"d a", "l b>a"}, {"b/"}, false);
    unchanged("below a file", {"f a=1"}, {"a/b"}, false);
    unchanged("too long name", {"f a=1"}, {QByteArray(256, 'n')}, false);
    unchanged("no rights", {}, {"/proc/self/status"}, false);
    unchanged("empty", {"f a=1"}, {""}, false, {}, kNoNameToRemove);
    unchanged("undecodable", {"f a\xff=1"}, {"a\xff"}, false);
    const QByteArrayList odd = FileTree::oddNames();
    for (const QByteArray &name : odd)
        changed("name " + FileTree::printable(name), {"f " + name + "=1"}, {"@/" + name}, true, {});
}

void tst_CDir::removeFile()
{
    checkRow([](const Paths &paths) { return CDir::removeFile(paths.first()); });
}

void tst_CDir::removeDirectory_data()
{
    addColumns();

    changed("empty", {"d a", "d b"}, {"@/a"}, true, {"d b"});
    changed("empty, without rights", {"d0 a"}, {"@/a"}, true, {});
    changed("empty/", {"d a"}, {"@/a/"}, true, {});
    changed("below another", {"d a", "d a/b"}, {"@/a/b"}, true, {"d a"});
    changed(".. inside the path", {"d a", "d b"}, {"@/a/../b"}, true, {"d a"});
    changed("behind a link", {"d a", "d a/c", "l b>a"}, {"@/b/c"}, true, {"d a", "l b>a"});
    unchanged("with a file", {"d a", "f a/b=1"}, {"@/a"}, false);
    unchanged("with a hidden file", {"d a", "f a/.b=1"}, {"@/a"}, false);
    unchanged("with a broken link", {"d a", "l a/b>gone"}, {"@/a"}, false);
    unchanged("with a directory", {"d a", "d a/b"}, {"@/a"}, false);
    unchanged("missing", {"d a"}, {"@/b"}, false);
    unchanged("file", {"f a=1"}, {"@/a"}, false);
    unchanged("pipe", {"p a"}, {"@/a"}, false);
    unchanged("link to an empty directory", {"d a", "l b>a"}, {"@/b"}, false);
    unchanged("link to an empty directory/", {"d a", "l b>a"}, {"@/b/"}, false);
    unchanged("link to an empty directory/.", {"d a", "l b>a"}, {"@/b/."}, false);
    unchanged("broken link", {"l b>gone"}, {"@/b"}, false);
    unchanged("directory/..", {"d a", "d a/b"}, {"@/a/b/.."}, false);
    unchanged("too long name", {}, {"@/" + QByteArray(256, 'n')}, false);
    unchanged("no rights", {}, {"/proc/self/fdinfo"}, false);
    unchanged("empty path", {"d a"}, {""}, false);
    unchanged("relative: not in the current directory", {"d a"}, {"a"}, false);
    unchanged("relative, beside the temporary directory", {"d a"}, {"./a"}, false);
}

void tst_CDir::removeDirectory()
{
    checkRow([](const Paths &paths) { return CDir::removeDirectory(paths.first()); });
}

void tst_CDir::removeDirectoryOfTemporaryPath_data()
{
    QTest::addColumn<Lines>("made"); // in the temporary directory
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<Lines>("left");

    QTest::newRow("empty") << Lines{"d a"} << QStringLiteral("a") << true << Lines{};
    QTest::newRow("./empty") << Lines{"d a"} << QStringLiteral("./a") << true << Lines{};
    QTest::newRow("a/empty") << Lines{"d a", "d a/b"} << QStringLiteral("a/b") << true
                             << Lines{"d a"};
    QTest::newRow("not empty") << Lines{"d a", "f a/b=1"} << QStringLiteral("a") << false
                               << Lines{"d a", "f a/b=1"};
    QTest::newRow("back into the tree")
        << Lines{} << QStringLiteral("../tree/a") << true << Lines{};
    QTest::newRow("empty path") << Lines{} << QString() << false << Lines{};
    QTest::newRow(".") << Lines{} << QStringLiteral(".") << false << Lines{};
}

void tst_CDir::removeDirectoryOfTemporaryPath()
{
    QFETCH(const Lines, made);
    QFETCH(const QString, path);
    QFETCH(const bool, ok);
    QFETCH(const Lines, left);
    const FileTree tree({"d a"});
    QVERIFY(tree.isValid());
    for (QByteArray line : made)
        QVERIFY(FileTree::make(line.replace(line.indexOf(' '), 1, ' ' + tree.temporary() + '/')));
    const MessageRecorder recorder;
    QCOMPARE(CDir::removeDirectory(path), ok);
    QCOMPARE(FileTree::linesOf(tree.temporary()), FileTree::complete(left));
    QCOMPARE(FileTree::linesOf(tree.root()),
             path.startsWith(QLatin1String("../")) ? Lines{} : Lines{"d755 a"});
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CDir::removeDirectoryRecursive_data()
{
    addColumns();

    const Lines outside{"d out", "f out/x=1", "d out/.h", "f out/.h/y=2", "f file=3"};
    const auto gone
        = [&outside](const QByteArray &name, const Lines &lines, const QByteArray &path) {
              changed(name, outside + lines, {path}, true, outside);
          };
    const auto kept = [&outside](const QByteArray &name, const Lines &lines, const QByteArray &path,
                                 bool ok) { unchanged(name, outside + lines, {path}, ok); };

    gone("empty", {"d a"}, "a");
    gone("empty, absolute", {"d a"}, "@/a");
    gone("file inside", {"d a", "f a/b=1"}, "a");
    gone("hidden entries", {"d a", "f a/.b=1", "d a/.c", "f a/.c/.d=2"}, "a");
    gone("hidden itself", {"d .a", "f .a/b=1"}, ".a");
    gone("pipe", {"d a", "p a/b"}, "a");
    gone("entries without rights", {"d a", "f0 a/b=1", "d0 a/c", "f444 a/d=2"}, "a");
    gone("many kinds",
         {"d a", "d a/b", "d a/b/c", "d a/b/c/d", "f a/b/c/e=1", "f a/b/f=2", "d a/g"}, "a");
    gone("400 levels", Lines{"d a"} + chain("a", 400, ""), "a");
    for (const QByteArray ending : {"/", "//", "///"}) {
        gone("directory" + ending, {"d a", "f a/b=1"}, "a" + ending);
        gone("link to a directory" + ending, {"l a>out"}, "a" + ending);
        gone("absolute link to a directory" + ending, {"l a>@/out"}, "@/a" + ending);
    }
    for (const QByteArray ending : {"/.", "/./", "/.//.", "/././"}) {
        kept("directory" + ending, {"d a", "f a/b=1"}, "a" + ending, false);
        kept("link to a directory" + ending, {"l a>out"}, "a" + ending, false);
        kept("missing" + ending, {}, "a" + ending, false);
    }
    gone("./directory", {"d a", "f a/b=1"}, "./a");
    gone("./link to a directory", {"l a>out"}, "./a");
    gone(".. inside the path", {"d a", "f a/b=1"}, "out/../a");
    // Behind a link, ".." leads where the system goes, and what has the same text is left alone.
    changed("link/../directory",
            {"d e", "d e/d", "d e/v", "d e/v/s", "f e/v/g=1", "d v", "d v/s", "l link>e/d"},
            {"link/../v"}, true, {"d e", "d e/d", "d v", "d v/s", "l link>e/d"});
    changed("link/../directory, missing by its text",
            {"d e", "d e/d", "d e/v", "f e/v/g=1", "l link>e/d"}, {"link/../v"}, true,
            {"d e", "d e/d", "l link>e/d"});
    gone("name ends with a point", {"d a.", "f a./b=1"}, "a.");
    gone("name ends with two points", {"d a..", "f a../b=1"}, "a..");
    gone("name of three points", {"d ...", "f .../b=1"}, "...");
    gone("name of three points/", {"d ...", "f .../b=1"}, ".../");
    gone("link with a name of three points/", {"l ...>out"}, ".../");
    gone("link, name ends with a point", {"l a.>out"}, "a.");
    gone("link, name ends with a point/", {"l a.>out"}, "a./");

    gone("link to a directory", {"l a>out"}, "a");
    gone("link to a file", {"l a>file"}, "a");
    gone("broken link", {"l a>gone"}, "a");
    gone("broken link/", {"l a>gone"}, "a/");
    gone("link to itself", {"l a>a"}, "a");
    changed("link to a link to a directory", outside + Lines{"l a>out", "l b>a"}, {"b/"}, true,
            outside + Lines{"l a>out"});
    gone("link to the directory above", {"l a>.."}, "a/");
    gone("link to its own directory", {"l a>."}, "a/");
    gone("links inside",
         {"d a", "l a/d>../out", "l a/f>../file", "l a/x>gone", "l a/s>s", "l a/t>.", "l a/u>..",
          "l a/.h>../out", "d a/b", "l a/b/d>../../out"},
         "a");
    gone("absolute links inside", {"d a", "l a/d>@/out", "l a/f>@/file"}, "a/");
    changed("behind a link: only what is named", {"d a", "d a/b", "f a/b/c=1", "f a/d=2", "l e>a"},
            {"e/b"}, true, {"d a", "f a/d=2", "l e>a"});

    kept("missing", {}, "a", true);
    kept("missing, absolute", {}, "@/a/b", true);
    kept("file", {"f a=1"}, "a", true);
    kept("file/", {"f a=1"}, "a/", true);
    kept("below a file", {"f a=1"}, "a/b", true);
    kept("below a broken link", {"l a>gone"}, "a/b", true);
    kept("empty path", {"d a", "f a/b=1"}, "", false);
    kept("the root", {}, "/", false);
    kept("the root, //", {}, "//", false);
    kept("the root, /.", {}, "/.", false);
    kept("..", {"d a", "f a/b=1"}, "a/..", false);
    kept("../", {"d a", "f a/b=1"}, "a/../", false);
    kept("../.", {"d a", "f a/b=1"}, "a/../.", false);
    kept("../..", {"d a", "d a/b"}, "@/a/b/../..", false);
    kept("link/..", {"d a", "l a/b>../out"}, "a/b/..", false);
    kept("link/../", {"d a", "l a/b>../out"}, "a/b/../", false);
    kept("no rights", {}, "/proc/self/fdinfo", false);

    // Behind what is no directory, ".." leads nowhere, and what has the same text is left alone.
    kept("missing/../directory", {"d e", "f e/f=1"}, "missing/../e", true);
    kept("broken link/../directory", {"d e", "f e/f=1", "l broken>gone"}, "broken/../e", true);
    kept("file/../directory", {"d e", "f e/f=1"}, "file/../e", true);
    kept("link to itself/../directory", {"d e", "f e/f=1", "l loop>loop"}, "loop/../e", false);
    kept("too long name", {}, QByteArray(256, 'n'), false);
    kept("too long path", {}, QByteArray("a/").repeated(2100), false);

    gone("undecodable names",
         {"d a", "f a/b\xff=1", "f a/c=2", "d a/\xfe", "f a/\xfe/b=1", "l a/\xfd>../out"}, "a");
    gone("a pattern is no pattern", {"d *", "f */*=1"}, "*");
    kept("undecodable path", {"d \xfe", "f \xfe/b=1"}, "\xfe", true);

    const QByteArrayList odd = FileTree::oddNames();
    for (const QByteArray &name : odd) {
        gone("name " + FileTree::printable(name),
             {"d " + name, "f " + name + "/b=1", "d " + name + "/" + name,
              "f " + name + "/" + name + "/" + name + "=2"},
             "@/" + name);
        gone("link " + FileTree::printable(name), {"l " + name + ">out"}, "@/" + name + '/');
    }
}

void tst_CDir::removeDirectoryRecursive()
{
    QFETCH(Lines, before);
    // The targets of links may be absolute paths, too.
    const bool hasAbsoluteLinks = before.join('\n').contains(">@");
    if (!hasAbsoluteLinks) {
        checkRow([](const Paths &paths) { return CDir::removeDirectoryRecursive(paths.first()); });
        return;
    }
    QFETCH(const Paths, paths);
    QFETCH(const Lines, after);
    const FileTree tree({});
    QVERIFY(tree.isValid());
    for (const QByteArray &line : qAsConst(before))
        QVERIFY(FileTree::make(tree.expanded(line)));
    QVERIFY(CDir::removeDirectoryRecursive(tree.expanded(paths.first())));
    QCOMPARE(tree.lines(), FileTree::complete(after));
}

void tst_CDir::removeDirectoryRecursiveFrom_data()
{
    QTest::addColumn<QByteArray>("current");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<Lines>("after");

    const Lines all{"d a", "d a/b", "f a/b/c=1", "f a/d=2", "f e=3"};
    QTest::newRow("empty path") << QByteArray("a/b") << QStringLiteral("") << false << all;
    QTest::newRow("null path") << QByteArray("a/b") << QString() << false << all;
    QTest::newRow("..") << QByteArray("a/b") << QStringLiteral("..") << false << all;
    QTest::newRow("../") << QByteArray("a/b") << QStringLiteral("../") << false << all;
    QTest::newRow("./..") << QByteArray("a/b") << QStringLiteral("./..") << false << all;
    QTest::newRow("../..") << QByteArray("a/b") << QStringLiteral("../..") << false << all;
    QTest::newRow("../b, from inside")
        << QByteArray("a/b") << QStringLiteral("../b") << true << Lines{"d a", "f a/d=2", "f e=3"};
    QTest::newRow("b, relative") << QByteArray("a") << QStringLiteral("b") << true
                                 << Lines{"d a", "f a/d=2", "f e=3"};
    QTest::newRow("b, relative, elsewhere")
        << QByteArray("a/b") << QStringLiteral("b") << true << all;
}

void tst_CDir::removeDirectoryRecursiveFrom()
{
    QFETCH(const QByteArray, current);
    QFETCH(const QString, path);
    QFETCH(const bool, ok);
    QFETCH(const Lines, after);
    const FileTree tree({"d a", "d a/b", "f a/b/c=1", "f a/d=2", "f e=3"});
    QVERIFY(tree.isValid());
    QVERIFY(chdir(current.constData()) == 0);
    const MessageRecorder recorder;
    const bool actual = CDir::removeDirectoryRecursive(path);
    QVERIFY(chdir(tree.root().constData()) == 0);
    QCOMPARE(actual, ok);
    QCOMPARE(tree.lines(), FileTree::complete(after));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CDir::removeFileOrDirectory_data()
{
    addColumns();

    changed("file", {"f a=1", "f b=2"}, {"@/a"}, true, {"f b=2"});
    changed("file, relative to the current directory", {"f a=1"}, {"a"}, true, {});
    changed("link to a file", {"f a=1", "l b>a"}, {"@/b"}, true, {"f a=1"});
    changed("empty directory", {"d a"}, {"@/a"}, true, {});
    changed("empty directory/", {"d a"}, {"@/a/"}, true, {});
    changed("hidden file", {"f .a=1"}, {"@/.a"}, true, {});

    unchanged("file that cannot be removed", {}, {"/proc/self/status"}, false,
              cannotRemoveFile("/proc/self/status"));
    unchanged("directory with a file", {"d a", "f a/b=1"}, {"@/a"}, false,
              cannotRemove("@/a", "@/a\n@/a/b"));
    unchanged("directory with a file/", {"d a", "f a/b=1"}, {"@/a/"}, false,
              cannotRemove("@/a/", "@/a/\n@/a/b"));
    unchanged("directory with a chain", {"d a", "d a/b", "d a/b/c", "f a/b/c/d=1"}, {"@/a"}, false,
              cannotRemove("@/a", "@/a\n@/a/b\n@/a/b/c\n@/a/b/c/d"));
    unchanged("directory with an empty one", {"d a", "d a/b"}, {"@/a"}, false,
              cannotRemove("@/a", "@/a\n@/a/b"));
    unchanged("only hidden entries", {"d a", "f a/.b=1", "d a/.c", "f a/.c/d=1"}, {"@/a"}, false,
              cannotRemove("@/a"));
    unchanged("only a broken link", {"d a", "l a/b>gone"}, {"@/a"}, false, cannotRemove("@/a"));
    unchanged("only a pipe", {"d a", "p a/b"}, {"@/a"}, false, cannotRemove("@/a"));
    unchanged("only an undecodable name", {"d a", "f a/\xff=1"}, {"@/a"}, false,
              cannotRemove("@/a"));
    unchanged("link to a directory inside", {"d a", "d c", "f c/d=1", "l a/b>../c"}, {"@/a"}, false,
              cannotRemove("@/a", "@/a\n@/a/b"));

    // Contract: a path that does not exist is told, and is true.
    unchanged("missing", {"f a=1"}, {"@/b"}, true, cannotRemove("@/b"));
    unchanged("missing, relative", {"f a=1"}, {"b"}, true, cannotRemove("b"));
    unchanged("below a file", {"f a=1"}, {"@/a/b"}, true, cannotRemove("@/a/b"));
    unchanged("broken link", {"l a>gone"}, {"@/a"}, true, cannotRemove("@/a"));
    // What cannot be told is not taken for gone.
    unchanged("too long name", {}, {"@/" + QByteArray(256, 'n')}, false,
              cannotRemove("@/" + QByteArray(256, 'n')));
    unchanged("link to itself", {"l a>a"}, {"@/a"}, false, cannotRemove("@/a"));
    unchanged("empty path", {"f a=1"}, {""}, true, cannotRemove(""));

    unchanged("link to an empty directory", {"d a", "l b>a"}, {"@/b"}, false, cannotRemove("@/b"));
    unchanged("link to an empty directory/", {"d a", "l b>a"}, {"@/b/"}, false,
              cannotRemove("@/b/"));
    unchanged("link to an empty directory/.", {"d a", "l b>a"}, {"@/b/."}, false,
              cannotRemove("@/b/."));
    unchanged("link to a directory", {"d a", "f a/c=1", "l b>a"}, {"@/b"}, false,
              cannotRemove("@/b", "@/b\n@/b/c"));
    unchanged("pipe", {"p a"}, {"@/a"}, false, cannotRemove("@/a"));

    const QByteArrayList odd = FileTree::oddNames();
    for (const QByteArray &name : odd) {
        const QByteArray shown = FileTree::printable(name);
        changed("file " + shown, {"f " + name + "=1"}, {"@/" + name}, true, {});
        changed("directory " + shown, {"d " + name}, {"@/" + name}, true, {});
        unchanged("missing " + shown, {}, {"@/" + name}, true, cannotRemove("@/" + name));
        unchanged("full " + shown, {"d " + name, "f " + name + '/' + name + "=1"}, {"@/" + name},
                  false, cannotRemove("@/" + name, "@/" + name + "\n@/" + name + '/' + name));
    }
}

void tst_CDir::removeFileOrDirectory()
{
    checkRow([](const Paths &paths) { return CDir::removeFileOrDirectory(paths.first()); });
}

// As in removeDirectory(), a relative path of a directory is taken from the temporary directory;
// what is listed and whether it exists, from the current one.
void tst_CDir::removeRelativeDirectory()
{
    const FileTree tree({"d a"});
    QVERIFY(tree.isValid());
    const QByteArray there = "d " + tree.temporary() + "/a";
    bool ok = true;
    QCOMPARE(outputOf([&] { ok = CDir::removeFileOrDirectory(QStringLiteral("a")); }),
             cannotRemove("a"));
    QCOMPARE(ok, false);
    QCOMPARE(tree.lines(), Lines{"d755 a"});

    QVERIFY(FileTree::make(there));
    QCOMPARE(outputOf([&] { ok = CDir::removeFileOrDirectory(QStringLiteral("a")); }),
             QByteArray());
    QCOMPARE(ok, false);
    QCOMPARE(tree.lines(), Lines{"d755 a"});

    QVERIFY(FileTree::make("d " + tree.temporary() + "/b"));
    QCOMPARE(outputOf([&] { ok = CDir::removeFileOrDirectory(QStringLiteral("b")); }),
             QByteArray());
    QCOMPARE(ok, true);
    QCOMPARE(tree.lines(), Lines{"d755 a"});
}

void tst_CDir::removeFilesByPathList_data()
{
    addColumns();

    unchanged("empty list", {"f a=1"}, {}, true);
    changed("one", {"f a=1", "f b=2"}, {"@/a"}, true, {"f b=2"});
    changed("a directory before its content", {"d a", "d a/b", "f a/b/c=1"},
            {"@/a", "@/a/b", "@/a/b/c"}, true, {});
    changed("a directory behind its content", {"d a", "f a/b=1"}, {"@/a/b", "@/a"}, false, {"d a"},
            cannotRemove("@/a", "@/a\n@/a/b"));
    unchanged("from the last to the first", {}, {"@/a", "@/b", "@/c"}, true,
              cannotRemove("@/c") + cannotRemove("@/b") + cannotRemove("@/a"));
    changed("goes on after a failure at the end", {"f a=1", "d b", "f b/c=2", "f d=3"},
            {"@/a", "@/d", "@/b"}, false, {"d b", "f b/c=2"}, cannotRemove("@/b", "@/b\n@/b/c"));
    changed("failure in the middle", {"f a=1", "d b", "f b/c=2", "f d=3"}, {"@/a", "@/b", "@/d"},
            false, {"d b", "f b/c=2"}, cannotRemove("@/b", "@/b\n@/b/c"));
    changed("failure at the beginning", {"d b", "f b/c=2", "f d=3"}, {"@/b", "@/d"}, false,
            {"d b", "f b/c=2"}, cannotRemove("@/b", "@/b\n@/b/c"));
    unchanged("all fail", {"d a", "f a/x=1", "d b", "f b/y=2"}, {"@/a", "@/b"}, false,
              cannotRemove("@/b", "@/b\n@/b/y") + cannotRemove("@/a", "@/a\n@/a/x"));
    changed("the same twice", {"f a=1"}, {"@/a", "@/a"}, true, {}, cannotRemove("@/a"));
    unchanged("an empty path", {"f a=1"}, {""}, true, cannotRemove(""));
    unchanged("link to a directory", {"d a", "f a/b=1", "l c>a"}, {"@/c"}, false,
              cannotRemove("@/c", "@/c\n@/c/b"));
}

void tst_CDir::removeFilesByPathList()
{
    checkRow([](const Paths &paths) { return CDir::removeFilesByPathList(paths); });
}

void tst_CDir::removeWhatIsListed_data()
{
    addColumns();

    const Lines outside{"d out", "f out/x=1", "f file=2"};
    const auto gone = [&outside](const QByteArray &name, const Lines &lines) {
        changed(name, outside + lines, {"@/a"}, true, outside);
    };
    gone("empty", {"d a"});
    gone("file", {"f a=1"});
    gone("tree",
         {"d a", "f a/b=1", "d a/c", "f a/c/d=2", "f a/c/e=3", "d a/c/f", "d a/g", "f a/h="});
    gone("links to files", {"d a", "l a/b>../file", "f a/c=1", "l a/d>../out/x"});
    gone("400 levels", Lines{"d a"} + chain("a", 400, ""));
    Lines odd{"d a"};
    const QByteArrayList names = FileTree::oddNames();
    for (const QByteArray &name : names)
        odd += QByteArrayList{"d a/" + name, "f a/" + name + '/' + name + "=1"};
    gone("odd names", odd);

    const auto rest = [&outside](const QByteArray &name, const Lines &lines, const Lines &left,
                                 const QByteArray &output) {
        changed(name, outside + lines, {"@/a"}, false, outside + left, output);
    };
    rest("a hidden file stays with its directories",
         {"d a", "d a/b", "f a/b/.h=1", "f a/b/c=2", "f a/d=3", "d a/e"},
         {"d a", "d a/b", "f a/b/.h=1"}, cannotRemove("@/a/b") + cannotRemove("@/a", "@/a\n@/a/b"));
    rest("a hidden directory stays", {"d a", "d a/.h", "f a/.h/b=1", "f a/c=2"},
         {"d a", "d a/.h", "f a/.h/b=1"}, cannotRemove("@/a"));
    rest("a broken link stays", {"d a", "l a/b>gone"}, {"d a", "l a/b>gone"}, cannotRemove("@/a"));
    rest("a link to a directory stays", {"d a", "l a/b>../out", "f a/c=1"}, {"d a", "l a/b>../out"},
         cannotRemove("@/a/b", "@/a/b\n@/a/b/x") + cannotRemove("@/a", "@/a\n@/a/b"));
    rest("an undecodable name stays", {"d a", "f a/\xff=1", "f a/c=1"}, {"d a", "f a/\xff=1"},
         cannotRemove("@/a"));
}

void tst_CDir::removeWhatIsListed()
{
    checkRow([](const Paths &paths) {
        return CDir::removeFilesByPathList(CDir::listFilesAndDirectories(paths.first()));
    });
}

// ---- Copying

void tst_CDir::copyFile_data()
{
    addColumns();

    const Lines source{"f a=text"};
    const auto copied = [&source](const QByteArray &name, const Lines &lines,
                                  const QByteArray &target, const Lines &made) {
        changed(name, source + lines, {"a", target}, true, source + lines + made);
    };
    const auto failed
        = [&source](const QByteArray &name, const Lines &lines, const QByteArray &target) {
              unchanged(name, source + lines, {"a", target}, false, cannotCopy(target));
          };

    copied("relative", {}, "b", {"f b=text"});
    copied("absolute", {}, "@/b", {"f b=text"});
    copied("into a directory", {"d c"}, "c/a", {"f c/a=text"});
    copied("existing directory keeps its mode", {"d700 c"}, "@/c/b", {"f c/b=text"});
    copied("missing directory is made", {}, "c/b", {"d775 c", "f c/b=text"});
    copied("with its parents", {}, "@/c/d/e/b",
           {"d775 c", "d775 c/d", "d775 c/d/e", "f c/d/e/b=text"});
    copied("through a link to a directory", {"d c", "l d>c"}, "d/b", {"f c/b=text"});
    copied("behind a link and ..", {"d e", "d e/d", "l link>e/d"}, "link/../c/b",
           {"d775 e/c", "f e/c/b=text"});
    copied("behind a missing directory and ..", {"d700 e"}, "e/missing/../b", {"f e/b=text"});
    copied("hidden target", {}, ".b", {"f .b=text"});
    copied("backup of the name is no matter", {"f ~b=old"}, "b", {"f b=text"});
    copied("name of 255", {}, QByteArray(255, 'n'), {"f " + QByteArray(255, 'n') + "=text"});

    for (const char *const mode : {"600", "640", "644", "664", "666", "700", "755", "777"}) {
        const QByteArray line = QByteArray("f") + mode + ' ';
        changed(QByteArray("mode ") + mode, {line + "a=1"}, {"a", "b"}, true,
                {line + "a=1", line + "b=1"});
    }
    for (const int size : {0, 1, 4095, 4096, 4097, 65537, 1000000}) {
        const QByteArray line = "=" + content(size);
        changed(QByteArray::number(size) + " bytes", {"f a" + line}, {"a", "b"}, true,
                {"f a" + line, "f b" + line});
    }
    changed("link to a file: its content", {"f600 a=1", "l b>a"}, {"b", "c"}, true,
            {"f600 a=1", "l b>a", "f600 c=1"});
    changed("source behind a link", {"d a", "f a/b=1", "l c>a"}, {"c/b", "d"}, true,
            {"d a", "f a/b=1", "l c>a", "f d=1"});

    failed("existing file", {"f b=old"}, "b");
    failed("existing file, absolute", {"f b=old"}, "@/b");
    failed("existing empty file", {"f b="}, "b");
    failed("existing file of the same content", {"f b=text"}, "b");
    failed("existing directory", {"d b"}, "b");
    failed("existing directory/", {"d b"}, "b/");
    failed("existing pipe", {"p b"}, "b");
    failed("existing link to a file", {"f c=old", "l b>c"}, "b");
    failed("existing link to a directory", {"d c", "l b>c"}, "b");
    failed("existing broken link", {"l b>gone"}, "b");
    failed("existing broken link into a directory", {"d c", "l b>c/gone"}, "b");
    failed("existing link to itself", {"l b>b"}, "b");
    failed("itself", {}, "a");
    failed("itself by another path", {}, "@/a");
    failed("below a file", {"f b=old"}, "b/c");
    failed("far below a file", {"f b=old"}, "@/b/c/d");
    failed("below a broken link", {"l b>gone"}, "b/c");
    failed("too long name", {}, QByteArray(256, 'n'));
    failed("too long directory", {}, QByteArray(256, 'n') + "/b");
    failed("no rights for a directory", {}, "/proc/self/new/b");
    failed("no rights for a file", {}, "/proc/self/new");
    failed("empty target", {}, "");
    failed("below itself", {}, "a/b");

    unchanged("missing source", {"f b=1"}, {"a", "c"}, false, cannotCopy("c"));
    changed("missing source: the directory is made first", {}, {"a", "c/b"}, false, {"d775 c"},
            cannotCopy("c/b"));
    unchanged("broken link", {"l a>gone"}, {"a", "b"}, false, cannotCopy("b"));
    unchanged("source is a directory", {"d a", "f a/c=1"}, {"a", "b"}, false, cannotCopy("b"));
    unchanged("empty source", {"f b=1"}, {"", "c"}, false, cannotCopy("c"));
    unchanged("undecodable source", {"f a\xff=1"}, {"a\xff", "b"}, false, cannotCopy("b"));
    // Only what has an end is read.
    unchanged("source is a pipe", {"p a"}, {"a", "b"}, false, cannotCopy("b"));
    unchanged("source is a link to a pipe", {"p a", "l c>a"}, {"c", "b"}, false, cannotCopy("b"));
    unchanged("source is a device without end", {}, {"/dev/zero", "b"}, false, cannotCopy("b"));
    // Where the system would not go, ".." is no way to what has the same text.
    failed("behind a file and ..", {"f c=1", "d x"}, "c/../b");
    failed("behind a broken link and ..", {"l c>gone"}, "c/../b");
    failed("behind a link to itself and ..", {"l c>c"}, "c/../b");
    failed("behind a link to a file and ..", {"f d=1", "l c>d"}, "@/c/../b");
    failed("behind a too long name and ..", {}, QByteArray(256, 'n') + "/../b");
    failed("existing directory/..", {"d c"}, "c/..");

    const QByteArrayList odd = FileTree::oddNames();
    for (const QByteArray &name : odd) {
        const QByteArray shown = FileTree::printable(name);
        changed("from " + shown, {"f " + name + "=1"}, {"@/" + name, "@/to"}, true,
                {"f " + name + "=1", "f to=1"});
        copied("to " + shown, {}, "@/x/" + name, {"d775 x", "f x/" + name + "=text"});
        copied("into " + shown, {}, "@/" + name + "/b", {"d775 " + name, "f " + name + "/b=text"});
        failed("onto " + shown, {"f " + name + "=old"}, "@/" + name);
    }
}

void tst_CDir::copyFile()
{
    checkRow([](const Paths &paths) { return CDir::copyFile(paths.at(0), paths.at(1)); });
}

// Whatever the mode of the source is, the target's is that of the framework's copy.
void tst_CDir::fileModes()
{
    const FileTree tree({"f source=1"});
    QVERIFY(tree.isValid());
    const QString source = QStringLiteral("source");
    for (mode_t mode = 0; mode <= 0777; mode += 37) {
        QVERIFY(chmod("source", mode) == 0);
        const bool ok = QFile::copy(source, QStringLiteral("peer"));
        bool isCopied = !ok;
        outputOf([&] { isCopied = CDir::copyFile(source, QStringLiteral("target")); });
        QCOMPARE(isCopied, ok);
        struct stat peer, target;
        if (ok) {
            QVERIFY(stat("peer", &peer) == 0);
            QVERIFY(stat("target", &target) == 0);
            QCOMPARE(target.st_mode, peer.st_mode);
            QVERIFY(unlink("peer") == 0);
            QVERIFY(unlink("target") == 0);
        }
    }
    QVERIFY(chmod("source", 0644) == 0);
    QCOMPARE(tree.lines(), Lines{"f644 source=1"});
}

void tst_CDir::copyFileF_data()
{
    addColumns();

    const Lines source{"f a=text"};
    // The target, which is old, is replaced by the source.
    const auto replaced
        = [&source](const QByteArray &name, const QByteArray &old, const QByteArray &target,
                    const QByteArray &line, const Lines &others = {}) {
              changed(name, source + others + Lines{old}, {"a", target}, true,
                      source + others + Lines{line});
          };
    const auto kept
        = [&source](const QByteArray &name, const Lines &lines, const QByteArray &target, bool ok) {
              unchanged(name, source + lines, {"a", target}, ok);
          };

    changed("new", source, {"a", "b"}, true, {"f a=text", "f b=text"});
    changed("new, absolute", source, {"a", "@/b"}, true, {"f a=text", "f b=text"});
    changed("new, in a new directory", source, {"a", "c/d/b"}, true,
            {"f a=text", "d775 c", "d775 c/d", "f c/d/b=text"});
    changed("new; the backup's name does not matter", {"f a=text", "f ~b=old"}, {"a", "b"}, true,
            {"f a=text", "f ~b=old", "f b=text"});
    replaced("replaced", "f b=old", "b", "f b=text");
    replaced("replaced, absolute", "f b=old", "@/b", "f b=text");
    replaced("replaced, in a directory", "f c/b=old", "c/b", "f c/b=text", {"d700 c"});
    replaced("replaced, ./", "f b=old", "./b", "f b=text");
    replaced("replaced, a longer one", "f b=much older", "b", "f b=text");
    replaced("replaced, mode of the source", "f600 b=old", "b", "f b=text");
    replaced("replaced, read-only", "f444 b=old", "b", "f b=text");
    replaced("name begins with ~", "f ~b=old", "~b", "f ~b=text");
    replaced("hidden name", "f .b=old", ".b", "f .b=text");
    replaced("name of 254", "f " + QByteArray(254, 'n') + "=old", QByteArray(254, 'n'),
             "f " + QByteArray(254, 'n') + "=text");
    replaced("link to a file: the link", "l b>c", "b", "f b=text", {"f c=keep"});
    replaced("link to a directory: the link", "l b>c", "b", "f b=text", {"d c", "f c/d=keep"});
    replaced("link to the source", "l b>a", "b", "f b=text");
    replaced("pipe", "p b", "b", "f b=text");

    // Contract: the old content is removed after a failure too.
    changed("missing source: the target is gone", {"f b=old"}, {"a", "b"}, false, {});
    changed("missing source, target in a directory", {"d c", "f c/b=old"}, {"a", "@/c/b"}, false,
            {"d c"});
    unchanged("missing source, no target", {"f c=1"}, {"a", "b"}, false);
    changed("missing source, no directory", {}, {"a", "c/b"}, false, {"d775 c"});
    changed("broken link as the source", {"l a>gone", "f b=old"}, {"a", "b"}, false, {"l a>gone"});
    changed("directory as the source", {"d a", "f a/c=1", "f b=old"}, {"a", "b"}, false,
            {"d a", "f a/c=1"});
    changed("link to the target as the source", {"f b=old", "l a>b"}, {"a", "b"}, false, {"l a>b"});
    changed("empty source", {"f b=old"}, {"", "b"}, false, {});
    changed("itself is lost", {"f b=old", "f c=1"}, {"b", "b"}, false, {"f c=1"});
    changed("itself by another path is lost", {"f b=old", "f c=1"}, {"b", "@/b"}, false, {"f c=1"});

    // Contract: nothing changes, which is no failure, where the backup cannot be made.
    kept("backup's name is taken", {"f b=old", "f ~b=older"}, "b", true);
    kept("backup's name is taken, absolute", {"f b=old", "f ~b=older"}, "@/b", true);
    kept("backup's name is taken by a directory", {"f b=old", "d ~b"}, "b", true);
    kept("backup's name is taken by a link", {"f b=old", "f c=1", "l ~b>c"}, "b", true);
    kept("backup's name is taken by a link to a directory", {"f b=old", "d c", "l ~b>c"}, "b",
         true);
    kept("backup's name is taken by a pipe", {"f b=old", "p ~b"}, "b", true);
    kept("backup's name is taken by a broken link", {"f b=old", "l ~b>gone"}, "b", true);
    kept("backup's name is taken by a broken link into a directory",
         {"f b=old", "d c", "l ~b>c/gone"}, "b", true);
    unchanged("backup's name is the source", {"f b=old", "f ~b=text"}, {"~b", "b"}, true);
    unchanged("backup's name is taken, missing source", {"f b=old", "f ~b=1"}, {"a", "b"}, true);
    unchanged("backup's name is taken, itself", {"f b=old", "f ~b=1"}, {"b", "b"}, true);
    kept("name of 255, too long for a backup", {"f " + QByteArray(255, 'n') + "=old"},
         QByteArray(255, 'n'), true);
    kept("no rights", {}, "/proc/self/status", true);

    // A backup that is no file is not removed: a directory is never emptied.
    changed("existing directory", {"f a=text", "d b", "f b/c=keep"}, {"a", "b"}, true,
            {"f a=text", "f b=text", "d ~b", "f ~b/c=keep"});

    kept("below a file", {"f b=old"}, "b/c", false);
    kept("too long name", {}, QByteArray(256, 'n'), false);
    kept("no rights for a directory", {}, "/proc/self/new/b", false);
    changed("pipe as the source", {"p a", "f b=old"}, {"a", "b"}, false, {"p a"});
    kept("behind a file and ..", {"f c=1", "f b=old"}, "c/../b", false);
    kept("behind a broken link and ..", {"l c>gone", "f b=old"}, "c/../b", false);
    kept("behind a link to itself and ..", {"l c>c", "f b=old"}, "c/../b", false);
    // A path that names a directory names no file in it, however it is spelled.
    for (const QByteArray path : {"d", "x/../d", "@/d", "@/x/../d"}) {
        for (const QByteArray ending : {"/", "//", "/.", "/./", "/..", "/../"})
            kept(path + ending, {"d d", "f d/y=keep", "d x"}, path + ending, true);
    }
    kept("broken link", {"l b>gone"}, "b", false);
    kept("broken link into a directory", {"d c", "l b>c/gone"}, "b", false);
    kept("empty target", {}, "", false);

    const QByteArrayList odd = FileTree::oddNames();
    for (const QByteArray &name : odd) {
        const QByteArray shown = FileTree::printable(name);
        replaced("file " + shown, "f x/" + name + "=old", "@/x/" + name, "f x/" + name + "=text",
                 {"d x"});
        replaced("in a directory " + shown, "f " + name + "/" + name + "=old",
                 "@/" + name + "/" + name, "f " + name + "/" + name + "=text", {"d " + name});
    }
}

void tst_CDir::copyFileF()
{
    checkRow([](const Paths &paths) { return CDir::copyFileF(paths.at(0), paths.at(1)); });
}

void tst_CDir::copyDirectory_data()
{
    addColumns();

    const auto made = [](const QByteArray &name, const Lines &lines, const QByteArray &target,
                         const Lines &others) {
        changed(name, lines, {"source", target}, true, lines + others);
    };
    const auto kept = [](const QByteArray &name, const Lines &lines, const QByteArray &target) {
        unchanged(name, lines, {"source", target}, true);
    };
    const auto failed = [](const QByteArray &name, const Lines &lines, const QByteArray &target) {
        unchanged(name, lines, {"source", target}, false, cannotCreate(target));
    };

    made("new", {}, "a", {"d775 a"});
    made("new, absolute", {}, "@/a", {"d775 a"});
    made("new/", {}, "a/", {"d775 a"});
    made("new//", {}, "@/a//", {"d775 a"});
    made("new, with its parents", {}, "@/a/b/c", {"d775 a", "d775 a/b", "d775 a/b/c"});
    made("new, existing parents keep their modes", {"d700 a"}, "a/b/c", {"d775 a/b", "d775 a/b/c"});
    made("new, hidden", {}, ".a", {"d775 .a"});
    made("new, behind a link", {"d a", "l b>a"}, "b/c", {"d775 a/c"});
    made("new, behind a link and ..", {"d e", "d e/d", "l link>e/d"}, "link/../a", {"d775 e/a"});
    made("new, behind a missing directory and ..", {"d700 e"}, "e/missing/../a", {"d775 e/a"});
    kept("existing, behind a missing directory and ..", {"d700 e"}, "e/missing/..");
    failed("behind a file and ..", {"f e=1"}, "e/../a");
    failed("behind a broken link and ..", {"l e>gone"}, "e/../a");
    made("source is not used", {"d source", "f source/x=1"}, "a", {"d775 a"});
    changed("source is not used, empty", {}, {"", "a"}, true, {"d775 a"});
    changed("source is not used, a file", {"f s=1"}, {"s", "a"}, true, {"f s=1", "d775 a"});
    kept("existing", {"d700 a", "f a/b=1"}, "a");
    kept("existing/", {"d700 a"}, "@/a/");
    kept("existing/..", {"d700 a"}, "a/..");
    kept("link to a directory", {"d700 a", "l b>a"}, "b");
    kept("itself", {"d700 source"}, "source");
    failed("file in the way", {"f600 a=1"}, "a");
    failed("file in the way, absolute", {"f600 a=1"}, "@/a");
    failed("file in the way/", {"f600 a=1"}, "a/");
    failed("pipe in the way", {"p600 a"}, "a");
    failed("link to a file in the way", {"f600 a=1", "l b>a"}, "b");
    failed("broken link in the way", {"l a>gone"}, "a");
    failed("below a file", {"f600 a=1"}, "a/b");
    failed("far below a file", {"f600 a=1"}, "@/a/b/c");
    failed("below a broken link", {"l a>gone"}, "a/b");
    failed("too long name", {}, "@/" + QByteArray(256, 'n'));
    failed("no rights", {}, "/proc/self/new");
    const QByteArrayList odd = FileTree::oddNames();
    for (const QByteArray &name : odd) {
        const QByteArray shown = FileTree::printable(name);
        made("name " + shown, {}, "@/" + name + '/' + name,
             {"d775 " + name, "d775 " + name + '/' + name});
        failed("file in the way " + shown, {"f " + name + "=1"}, "@/" + name);
    }
}

void tst_CDir::copyDirectory()
{
    checkRow([](const Paths &paths) { return CDir::copyDirectory(paths.at(0), paths.at(1)); });
}

void tst_CDir::copyDirectoryRecursive_data()
{
    addColumns();

    const auto copied = [](const QByteArray &name, const Lines &lines, const QByteArray &source,
                           const QByteArray &target, const Lines &made) {
        changed(name, lines, {source, target}, true, lines + made);
    };
    const auto kept = [](const QByteArray &name, const Lines &lines, const QByteArray &source,
                         const QByteArray &target) {
        unchanged(name, lines, {source, target}, true);
    };

    const Lines tree{"d s",   "f s/a=1", "d700 s/b",       "f600 s/b/c=2", "d s/b/d",
                     "d s/e", "d s/e/f", "f755 s/e/f/g=3", "f s/h.txt="};
    const Lines made{"d775 t",   "f t/a=1",    "d775 t/b",       "f600 t/b/c=2", "d775 t/b/d",
                     "d775 t/e", "d775 t/e/f", "f755 t/e/f/g=3", "f t/h.txt="};
    copied("tree", tree, "s", "t", made);
    const struct
    {
        const char *source;
        const char *target;
    } forms[] = {
        {"@/s", "@/t"},   {"s", "@/t"},       {"@/s", "t"},        {"s/", "t/"},
        {"s//", "t//"},   {"./s", "./t"},     {"s/.", "t/."},      {"@/s/", "@/t/"},
        {"s/../s", "t"},  {"s/b/..", "t"},    {"@/s/e/..", "@/t"}, {"s/e/f/../..", "t"},
        {"s", "s/../t"},  {"../tree/s", "t"}, {"s", "../tree/t"},  {"@/s/./", "@//t"},
        {"s/b/../", "t"},
    };
    for (const auto &form : forms) {
        copied(QByteArray("tree, ") + form.source + " to " + form.target, tree, form.source,
               form.target, made);
    }
    copied("target in new directories", {"d s", "f s/a=1"}, "s", "t/u/v",
           {"d775 t", "d775 t/u", "d775 t/u/v", "f t/u/v/a=1"});
    copied("existing target keeps its mode and content",
           {"d s", "f s/a=1", "d s/b", "d700 t", "f t/x=2", "d700 t/b", "f t/b/y=3"}, "s", "t",
           {"f t/a=1"});
    copied("existing target, behind a link", {"d s", "f s/a=1", "d t", "l l>t"}, "s", "l",
           {"f t/a=1"});
    copied("source is a link to a directory", {"d s", "f s/a=1", "l l>s"}, "l", "t",
           {"d775 t", "f t/a=1"});
    copied("source is a link to a directory/", {"d s", "f s/a=1", "l l>s"}, "@/l/", "t",
           {"d775 t", "f t/a=1"});
    copied("hidden source", {"d .s", "f .s/a=1"}, ".s", "t", {"d775 t", "f t/a=1"});
    copied("names that begin like the source", {"d s", "d s/s", "f s/s/s=1", "f ss=2"}, "s", "t",
           {"d775 t", "d775 t/s", "f t/s/s=1"});
    copied("empty sub-directory", {"d s", "d s/a"}, "s", "t", {"d775 t", "d775 t/a"});
    copied("300 levels", Lines{"d s"} + chain("s", 300, ""), "s", "t",
           Lines{"d775 t"} + chain("t", 300, "775"));

    copied("hidden entries are left out",
           {"d s", "f s/a=1", "f s/.b=2", "d s/.c", "f s/.c/d=3", "d s/e", "f s/e/.f=4"}, "s", "t",
           {"d775 t", "f t/a=1", "d775 t/e"});
    copied("links to files become files", {"f600 x=1", "d s", "l s/a>../x", "l s/b>a"}, "s", "t",
           {"d775 t", "f600 t/a=1", "f600 t/b=1"});
    copied("links to directories become empty",
           {"d x", "f x/y=1", "d s", "l s/a>../x", "d s/b", "l s/b/c>../../x"}, "s", "t",
           {"d775 t", "d775 t/a", "d775 t/b", "d775 t/b/c"});
    copied("links to the tree itself", {"d s", "l s/a>.", "l s/b>..", "l s/c>../s", "f s/d=1"}, "s",
           "t", {"d775 t", "d775 t/a", "d775 t/b", "d775 t/c", "f t/d=1"});
    copied("broken links and pipes are left out",
           {"d s", "l s/a>gone", "l s/b>b", "p s/c", "f s/d=1", "d s/e", "p s/e/f"}, "s", "t",
           {"d775 t", "f t/d=1", "d775 t/e"});
    copied("a link to a name that is too long is left out",
           {"d s", "l s/a>" + QByteArray(300, 'n'), "f s/d=1"}, "s", "t", {"d775 t", "f t/d=1"});
    copied("a link to a pipe is left out", {"d s", "p p", "l s/a>../p", "f s/d=1"}, "s", "t",
           {"d775 t", "f t/d=1"});
    copied("hidden names need not be decoded", {"d s", "f s/.\xff=1", "f s/a=2"}, "s", "t",
           {"d775 t", "f t/a=2"});
    copied("names of what is left out need not be decoded",
           {"d s", "l s/\xff>gone", "p s/\xfe", "f s/a=2"}, "s", "t", {"d775 t", "f t/a=2"});
    // All or nothing: what cannot be read is not left out in silence.
    for (const QByteArray line : {"f s/\xff=1", "d s/\xff", "l s/\xff>../x", "f s/b/c/\xff=1"}) {
        unchanged("undecodable name: " + FileTree::printable(line),
                  {"f x=1", "d s", "f s/a=2", "d s/b", "d s/b/c", line, "f s/b/c/z=3"}, {"s", "t"},
                  false);
    }
    copied("a pattern is no pattern", {"d s", "f s/*=1", "f s/?=2", "d [ab]", "d a"}, "s", "t",
           {"d775 t", "f t/*=1", "f t/?=2"});

    kept("empty directory", {"d s"}, "s", "t");
    kept("missing", {"f a=1"}, "s", "t");
    kept("file", {"f s=1"}, "s", "t");
    kept("link to a file", {"f a=1", "l s>a"}, "s", "t");
    kept("broken link", {"l s>gone"}, "s", "t");
    kept("pipe", {"p s"}, "s", "t");
    kept("hidden entries only", {"d s", "f s/.a=1", "d s/.b", "f s/.b/c=2"}, "s", "t");
    kept("broken links only", {"d s", "l s/a>gone"}, "s", "t");
    kept("undecodable source", {"d \xfe", "f \xfe/a=1"}, "\xfe", "t");
    kept("empty path", {"f a=1"}, "", "t");

    // All that is copied was there before: a copy of a tree into itself ends.
    copied("into itself, new", {"d s", "f s/a=1", "d s/b", "f s/b/c=2"}, "s", "s/t",
           {"d775 s/t", "f s/t/a=1", "d775 s/t/b", "f s/t/b/c=2"});
    copied("into itself, new, absolute", {"d s", "f s/a=1"}, "@/s", "@/s/t",
           {"d775 s/t", "f s/t/a=1"});
    copied("into itself, existing", {"d s", "f s/a=1", "d s/t"}, "s", "s/t",
           {"f s/t/a=1", "d775 s/t/t"});
    copied("into its sub-directory", {"d s", "f s/a=1", "d s/b", "f s/b/c=2"}, "s", "s/b",
           {"f s/b/a=1", "d775 s/b/b", "f s/b/b/c=2"});
    copied("deep into itself", {"d s", "f s/a=1"}, "s", "s/b/c/d",
           {"d775 s/b", "d775 s/b/c", "d775 s/b/c/d", "f s/b/c/d/a=1"});
    copied("into itself, hidden", {"d s", "f s/a=1", "d s/b"}, "s", "s/.t",
           {"d775 s/.t", "f s/.t/a=1", "d775 s/.t/b"});
    copied("into itself, behind a link", {"d s", "f s/a=1", "d s/b", "l l>s/b"}, "s", "l",
           {"f s/b/a=1", "d775 s/b/b"});
    copied("the current directory into itself", {"f a=1", "d b"}, ".", "b/c",
           {"d775 b/c", "f b/c/a=1", "d775 b/c/b"});
    copied("out of itself", {"d s", "d s/b", "f s/b/c=1"}, "s/b", "s", {"f s/c=1"});
    kept("onto itself, only directories", {"d700 s", "d700 s/a", "d700 s/a/b"}, "s", "s");
    unchanged("onto itself", {"d s", "f s/a=1"}, {"s", "s"}, false, cannotCopy("s/a"));
    unchanged("onto itself, absolute", {"d s", "d s/b", "f s/b/a=1"}, {"s/", "@/s"}, false,
              cannotCopy("@/s/b/a"));

    unchanged("target is a file, a file comes first", {"d s", "f s/a=1", "f600 t=2"}, {"s", "t"},
              false, cannotCopy("t/a"));
    unchanged("target is a file, a directory comes first", {"d s", "d s/a", "f600 t=2"},
              {"s", "@/t"}, false, cannotCreate("@/t/a"));
    unchanged("target is below a file", {"d s", "f s/a=1", "f600 t=2"}, {"s", "t/u/"}, false,
              cannotCopy("t/u/a"));
    unchanged("target is a broken link", {"d s", "f s/a=1", "l t>gone"}, {"s", "t"}, false,
              cannotCopy("t/a"));
    unchanged("target cannot be made", {"d s", "f s/a=1"}, {"s", "/proc/self/new"}, false,
              cannotCopy("/proc/self/new/a"));
    unchanged("too long target", {"d s", "d s/a"}, {"s", QByteArray(256, 'n')}, false,
              cannotCreate(QByteArray(256, 'n') + "/a"));
    unchanged("target is behind a file and ..", {"d s", "f s/a=1", "f t=2"}, {"s", "t/../u"}, false,
              cannotCopy("t/../u/a"));
    unchanged("empty target", {"d s", "d s/a"}, {"s", ""}, false);
    unchanged("empty target, nothing to copy", {"d s"}, {"s", ""}, false);
    unchanged("source is a link to itself", {"l s>s"}, {"s", "t"}, false);
    unchanged("too long source", {}, {QByteArray(256, 'n'), "t"}, false);
    unchanged("existing file", {"d s", "f s/a=1", "d t", "f t/a=2"}, {"s", "t"}, false,
              cannotCopy("t/a"));
    unchanged("existing file deep in it",
              {"d s", "d s/a", "f s/a/b=1", "d t", "d t/a", "f t/a/b=2"}, {"s", "t"}, false,
              cannotCopy("t/a/b"));
    unchanged("file in the way of a directory", {"d s", "d s/a", "d t", "f600 t/a=2"}, {"s", "t"},
              false, cannotCreate("t/a"));
    unchanged("directory in the way of a file", {"d s", "f s/a=1", "d t", "d t/a"}, {"s", "t"},
              false, cannotCopy("t/a"));
    unchanged("broken link in the way of a file", {"d s", "f s/a=1", "d t", "l t/a>../gone"},
              {"s", "t"}, false, cannotCopy("t/a"));
    unchanged("broken link in the way of a directory", {"d s", "d s/a", "d t", "l t/a>../gone"},
              {"s", "t"}, false, cannotCreate("t/a"));

    Lines odd{"d s"};
    Lines oddMade{"d775 t"};
    const QByteArrayList names = FileTree::oddNames();
    for (const QByteArray &name : names) {
        odd += QByteArrayList{"d s/" + name, "f s/" + name + '/' + name + "=1"};
        oddMade += QByteArrayList{"d775 t/" + name, "f t/" + name + '/' + name + "=1"};
        copied("source " + FileTree::printable(name), {"d " + name, "f " + name + "/a=1"},
               "@/" + name, "to", {"d775 to", "f to/a=1"});
        copied("target " + FileTree::printable(name), {"d s", "f s/b=1"}, "s", "@/" + name,
               {"d775 " + name, "f " + name + "/b=1"});
        unchanged("failure " + FileTree::printable(name),
                  {"d s", "f s/" + name + "=1", "d t", "f t/" + name + "=2"}, {"@/s", "@/t"}, false,
                  cannotCopy("@/t/" + name));
    }
    copied("odd names", odd, "s", "t", oddMade);
    copied("odd names, the current directory", {"f :a=1", "f -rf=2", "d %1"}, ".", "@/%1/%2",
           {"d775 %1/%2", "f %1/%2/:a=1", "f %1/%2/-rf=2", "d775 %1/%2/%1"});
}

void tst_CDir::copyDirectoryRecursive()
{
    checkRow([](const Paths &paths) { return kCopyTree(paths.at(0), paths.at(1)); });
}

void tst_CDir::copyStopsAtFirstFailure_data()
{
    QTest::addColumn<int>("failing"); // the index in the order of the directory

    for (const int index : {0, 1, 7, 18, 19})
        QTest::newRow(QByteArray::number(index).constData()) << index;
}

// What comes before the failure stays, what comes behind it is not tried.
void tst_CDir::copyStopsAtFirstFailure()
{
    QFETCH(const int, failing);
    Lines before{"d s", "d775 t"};
    for (int i = 0; i < 20; ++i)
        before += "f s/" + QByteArray::number(i * 7 % 20) + "=new";
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const QByteArrayList order = FileTree::names("s");
    QCOMPARE(order.size(), 20);
    Lines after = before;
    for (int i = 0; i < failing; ++i)
        after += "f t/" + order.at(i) + "=new";
    // A second one in the way is not reached.
    for (const int i : {failing, 19}) {
        const QByteArray line = "f t/" + order.at(i) + "=old";
        if (!after.contains(line)) {
            QVERIFY(FileTree::make(line));
            after += line;
        }
    }
    bool ok = true;
    const QByteArray output = outputOf(
        [&] { ok = CDir::copyDirectoryRecursive(QStringLiteral("s"), QStringLiteral("t")); });
    QCOMPARE(output, cannotCopy("t/" + order.at(failing)));
    QCOMPARE(ok, false);
    QCOMPARE(tree.lines(), FileTree::complete(after));
}

// The first file of the walk is in its own way.
void tst_CDir::copyOntoItself()
{
    const Lines before{"d s", "f s/a=1", "d s/b", "f s/b/c=2", "d s/d", "f s/e=3", "f s/b/f=4"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    QByteArray first;
    const QByteArrayList walked = FileTree::walked(tree.root() + "/s");
    for (const QByteArray &path : walked) {
        if (first.isNull() && QFileInfo(text(path)).isFile())
            first = path;
    }
    const QString path = text(tree.root() + "/s");
    bool ok = true;
    QCOMPARE(outputOf([&] { ok = CDir::copyDirectoryRecursive(path, path); }), cannotCopy(first));
    QCOMPARE(ok, false);
    QCOMPARE(tree.lines(), FileTree::complete(before));
}

// What Qt knows as a file or a directory can be copied, though the system does not know it.
void tst_CDir::copyOfResources()
{
    const FileTree tree({});
    QVERIFY(tree.isValid());
    QFile resource(QStringLiteral(":/k7eCore/data/Setup.Ini"));
    QVERIFY(resource.open(QIODevice::ReadOnly));
    const QByteArray content = resource.readAll();
    QVERIFY(content.contains("[COMPANY]"));
    QVERIFY(CDir::copyFile(resource.fileName(), QStringLiteral("a")));
    QVERIFY(kCopyTree(QStringLiteral(":/k7eCore"), QStringLiteral("t")));
    QCOMPARE(tree.lines(),
             FileTree::complete({"f444 a=" + content, "d775 t", "d775 t/data",
                                 "f444 t/data/Setup.Ini=" + content}));
}

void tst_CDir::copyFromSearchPath()
{
    const Lines before{"d x", "d x/s", "f x/s/a=1", "d x/s/b"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    QDir::setSearchPaths(QStringLiteral("place"), {text(tree.root() + "/x")});
    const bool ok = kCopyTree(QStringLiteral("place:s"), QStringLiteral("t"));
    QDir::setSearchPaths(QStringLiteral("place"), {});
    QVERIFY(ok);
    QCOMPARE(tree.lines(), FileTree::complete(before + Lines{"d775 t", "f t/a=1", "d775 t/b"}));
}

void tst_CDir::progress_data()
{
    QTest::addColumn<Lines>("before");
    QTest::addColumn<int>("stopAt"); // the number of entries that are done then
    QTest::addColumn<int>("calls");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<Lines>("made");

    const Lines chained{"d s", "d s/a", "d s/a/b", "f s/a/b/c=1", "f s/a/.hidden=2"};
    QTest::newRow("to the end") << chained << -1 << 3 << true
                                << Lines{"d775 t", "d775 t/a", "d775 t/a/b", "f t/a/b/c=1"};
    QTest::newRow("stopped before the first") << chained << 0 << 1 << false << Lines{};
    QTest::newRow("stopped before the second")
        << chained << 1 << 2 << false << Lines{"d775 t", "d775 t/a"};
    QTest::newRow("stopped before the last")
        << chained << 2 << 3 << false << Lines{"d775 t", "d775 t/a", "d775 t/a/b"};
    QTest::newRow("nothing to copy") << Lines{"d s"} << 0 << 0 << true << Lines{};
    QTest::newRow("no source") << Lines{} << 0 << 0 << true << Lines{};
    QTest::newRow("unreadable") << Lines{"d s", "f s/\xff=1"} << -1 << 0 << false << Lines{};
}

void tst_CDir::progress()
{
    QFETCH(const Lines, before);
    QFETCH(const int, stopAt);
    QFETCH(const int, calls);
    QFETCH(const bool, ok);
    QFETCH(const Lines, made);
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    QVector<int> done;
    bool actual = !ok;
    const QByteArray output = outputOf([&] {
        actual = kCopyTreeInSteps(QStringLiteral("s"), QStringLiteral("t"),
                                  [&](int entries, int total) {
                                      done += entries;
                                      return total == 3 && entries != stopAt;
                                  });
    });
    QCOMPARE(actual, ok);
    QCOMPARE(output, QByteArray());
    QVector<int> expected(calls);
    std::iota(expected.begin(), expected.end(), 0);
    QCOMPARE(done, expected);
    QCOMPARE(tree.lines(), FileTree::complete(before + made));
}

// However deep a tree is, a few descriptors do.
void tst_CDir::fewDescriptors()
{
    const Lines before = Lines{"d s"} + chain("s", 300, "");
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    bool isCopied = false;
    {
        const OpenFileLimit limit(24);
        QVERIFY(limit.isValid());
        isCopied = kCopyTree(QStringLiteral("s"), QStringLiteral("t"));
    }
    QVERIFY(isCopied);
    QCOMPARE(tree.lines(), FileTree::complete(before + Lines{"d775 t"} + chain("t", 300, "775")));
    bool isRemoved = false;
    {
        const OpenFileLimit limit(24);
        QVERIFY(limit.isValid());
        isRemoved = CDir::removeDirectoryRecursive(QStringLiteral("t"));
    }
    QVERIFY(isRemoved);
    QCOMPARE(tree.lines(), FileTree::complete(before));
    {
        const OpenFileLimit none(0);
        QVERIFY(none.isValid());
        QVERIFY(!kCopyTree(QStringLiteral("s"), QStringLiteral("t")));
        QVERIFY(!CDir::removeDirectoryRecursive(QStringLiteral("s")));
    }
    QCOMPARE(tree.lines(), FileTree::complete(before));
}

// A tree can be deeper than any path is long.
void tst_CDir::deeperThanPaths()
{
    const FileTree tree({"d a", "f keep=1"});
    QVERIFY(tree.isValid());
    QVERIFY(chdir("a") == 0);
    for (int i = 0; i < PATH_MAX; ++i)
        QVERIFY(mkdir("d", 0755) == 0 && chdir("d") == 0);
    QVERIFY(FileTree::make("f end=1"));
    QVERIFY(chdir(tree.root().constData()) == 0);
    // No path leads to the end of it.
    QVERIFY(!kCopyTree(QStringLiteral("a"), QStringLiteral("t")));
    QVERIFY(CDir::removeDirectoryRecursive(QStringLiteral("a")));
    QCOMPARE(tree.lines(), Lines{"f644 keep=1"});
}

// Where the current directory is gone, nothing relative is taken from the root.
void tst_CDir::withoutCurrentDirectory()
{
    const FileTree tree({"d gone", "f source=1"});
    QVERIFY(tree.isValid());
    const QString source = text(tree.root() + "/source");
    QVERIFY(chdir("gone") == 0);
    QVERIFY(rmdir((tree.root() + "/gone").constData()) == 0);
    const QString name = QStringLiteral("k7e-tst-CDir");
    const QString roundabout = QStringLiteral("x/../") + name;
    QVERIFY(!QFileInfo::exists(QLatin1Char('/') + name));
    outputOf([&] {
        for (const QString &target : {name, roundabout}) {
            QVERIFY(!CDir::copyFile(source, target));
            QVERIFY(!CDir::copyFile(source, target + QStringLiteral("/b")));
            QVERIFY(!CDir::copyFileF(source, target));
            QVERIFY(!CDir::copyDirectory(QString(), target));
            QVERIFY(CDir::removeDirectoryRecursive(target));
        }
    });
    QVERIFY(!QFileInfo::exists(QLatin1Char('/') + name));
    QVERIFY(chdir(tree.root().constData()) == 0);
    QCOMPARE(tree.lines(), Lines{"f644 source=1"});
}

// A name with a zero in it names nothing, and no part of it does.
void tst_CDir::namesWithZero()
{
    const Lines before{"f a=1", "d d", "f d/x=2", "f b=old"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const auto withZero = [](const char *name) { return text(name) + QChar() + text("/x"); };
    const QString source = text("a");
    const MessageRecorder recorder;
    outputOf([&] {
        for (const char *name : {"new", "b", "d", "d/new", "x/../b"}) {
            const QString target = withZero(name);
            QVERIFY2(!CDir::copyFile(source, target), name);
            QVERIFY2(!CDir::copyFileF(source, target), name);
            QVERIFY2(!CDir::copyFile(target, text("c")), name);
            QVERIFY2(!CDir::copyDirectory(QString(), target), name);
            QVERIFY2(!kCopyTree(text("d"), target), name);
        }
        const QString directory = withZero("d");
        QVERIFY(!CDir::removeDirectoryRecursive(directory));
        CDir::removeFileOrDirectory(directory);
        QCOMPARE(CDir::listFilesAndDirectories(directory), QStringList(directory));
        QCOMPARE(CDir::listFileAndDirInfos(directory).size(), 1);
        QVERIFY(kTreeByFlags(directory, {}, QDir::AllEntries).isEmpty());
        QVERIFY(kListByFlags(directory, {}, QDir::AllEntries).isEmpty());
        QVERIFY(kListExcluding(directory, Nk7eGlobal::DIRFILTER_ALL, {}).isEmpty());
    });
    QCOMPARE(tree.lines(), FileTree::complete(before));
}

// Where ".." leads through a name that no QString gives, nothing is made elsewhere.
void tst_CDir::undecodableDirectories()
{
    const Lines before{"f s=new", "d \xe9", "d \xe9/sub", "f \xe9/n=old", "l link>\xe9/sub"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const QString source = text(tree.root() + "/s");
    outputOf([&] {
        QVERIFY(!CDir::copyFile(source, text("link/../m")));
        QVERIFY(!CDir::copyFileF(source, text("link/../n")));
        QVERIFY(!CDir::copyDirectory(QString(), text("link/../d")));
        QVERIFY(chdir("\xe9") == 0);
        QVERIFY(!CDir::copyFileF(source, text("sub/../n")));
        QVERIFY(!CDir::copyDirectory(QString(), text("sub/../d")));
        QVERIFY(chdir(tree.root().constData()) == 0);
    });
    QCOMPARE(tree.lines(), FileTree::complete(before));
}

// A letter that the encoding of file names does not have is not taken for another.
void tst_CDir::otherEncoding()
{
    const Lines before{"f s=1", "d d?", "f d?/x=2", "f t?=old"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const LocalEncoding latin1("ISO-8859-1");
    const QString euro(1, QChar(0x20ac));
    outputOf([&] {
        QVERIFY(!CDir::removeDirectoryRecursive(text("d") + euro));
        QVERIFY(!CDir::copyFile(text("s"), text("new") + euro));
        QVERIFY(!CDir::copyFileF(text("s"), text("t") + euro));
        QVERIFY(!CDir::copyDirectory(QString(), text("new") + euro));
    });
    QCOMPARE(tree.lines(), FileTree::complete(before));
}

void tst_CDir::searchPaths()
{
    const FileTree tree({"d x", "d x/t", "f x/t/a=1", "f x/keep=2"});
    QVERIFY(tree.isValid());
    QDir::setSearchPaths(QStringLiteral("place"), {text(tree.root() + "/x")});
    const bool isGone = CDir::removeDirectoryRecursive(QStringLiteral("place:t"));
    QDir::setSearchPaths(QStringLiteral("place"), {});
    QVERIFY(isGone);
    QCOMPARE(tree.lines(), FileTree::complete({"d x", "f x/keep=2"}));
    // A resource cannot be removed.
    QVERIFY(!CDir::removeDirectoryRecursive(QStringLiteral(":/k7eCore")));
    QVERIFY(CDir::removeDirectoryRecursive(QStringLiteral(":/k7eCore/none")));
}

void tst_CDir::permissionsOfDots_data()
{
    QTest::addColumn<QString>("path");

    for (const char *path : {"n", "n/", "n/.", "n/./", "n//.", "./n/.", "x/../n/."})
        QTest::newRow(path) << QString::fromLatin1(path);
}

void tst_CDir::permissionsOfDots()
{
    QFETCH(const QString, path);
    const FileTree tree({"d x"}, 077);
    QVERIFY(tree.isValid());
    QVERIFY(CDir::copyDirectory(QString(), path));
    QCOMPARE(tree.lines(), FileTree::complete({"d x", "d775 n"}));
}

void tst_CDir::permissions_data()
{
    QTest::addColumn<uint>("mask");
    QTest::addColumn<QByteArray>("parent"); // what the mask leaves to a parent

    QTest::newRow("umask 0") << 0u << QByteArray("d777 ");
    QTest::newRow("umask 022") << 022u << QByteArray("d755 ");
    QTest::newRow("umask 002") << 002u << QByteArray("d775 ");
    QTest::newRow("umask 077") << 077u << QByteArray("d700 ");
}

// Only the directory itself gets 775, its parents get what the umask leaves.
void tst_CDir::permissions()
{
    QFETCH(const uint, mask);
    QFETCH(const QByteArray, parent);
    const Lines before{"f640 a=1", "d s", "f600 s/f=2", "d v", "d v/w"};
    const FileTree tree(before, mask);
    QVERIFY(tree.isValid());
    QVERIFY(CDir::copyFile(QStringLiteral("a"), QStringLiteral("b/c/d")));
    QVERIFY(CDir::copyFileF(QStringLiteral("a"), QStringLiteral("e/f/g")));
    QVERIFY(CDir::copyDirectory(QString(), QStringLiteral("h/i/j")));
    QVERIFY(CDir::copyDirectory(QString(), QStringLiteral("k/l/")));
    QVERIFY(CDir::copyDirectoryRecursive(QStringLiteral("s"), QStringLiteral("m/n")));
    QVERIFY(CDir::copyDirectoryRecursive(QStringLiteral("v"), QStringLiteral("x/y")));
    QCOMPARE(
        tree.lines(),
        FileTree::complete(before
                           + Lines{parent + "b", "d775 b/c", "f640 b/c/d=1", parent + "e",
                                   "d775 e/f", "f640 e/f/g=1", parent + "h", parent + "h/i",
                                   "d775 h/i/j", parent + "k", "d775 k/l", parent + "m", "d775 m/n",
                                   "f600 m/n/f=2", parent + "x", parent + "x/y", "d775 x/y/w"}));
}

void tst_CDir::fullDisk_data()
{
    QTest::addColumn<bool>("mayMount");

    QTest::newRow("small file system, where it may be mounted") << true;
    QTest::newRow("limit of the file size") << false;
}

// Nothing is left of a file that could not be written.
void tst_CDir::fullDisk()
{
    QFETCH(const bool, mayMount);
    const QByteArray big = content(200 * 1024);
    const Lines before{"d disk", "f big=" + big, "f small=1", "d s", "d s/t", "f s/t/big=" + big};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const SmallDisk disk(tree.root() + "/disk", mayMount);
    QVERIFY(disk.isValid());
    const MessageRecorder recorder;
    const QString bigPath = QStringLiteral("big");
    const QString smallPath = QStringLiteral("small");
    bool ok = true;

    QVERIFY(CDir::copyFile(smallPath, QStringLiteral("disk/a")));
    QCOMPARE(outputOf([&] { ok = CDir::copyFile(bigPath, QStringLiteral("disk/b")); }),
             cannotCopy("disk/b"));
    QCOMPARE(ok, false);
    Lines after = before + Lines{"f disk/a=1"};
    QCOMPARE(tree.lines(), FileTree::complete(after));

    QCOMPARE(outputOf([&] { ok = CDir::copyFileF(bigPath, QStringLiteral("disk/c")); }),
             QByteArray());
    QCOMPARE(ok, false);
    QCOMPARE(tree.lines(), FileTree::complete(after));

    QCOMPARE(outputOf([&] {
                 ok = CDir::copyDirectoryRecursive(QStringLiteral("s"), QStringLiteral("disk/u"));
             }),
             cannotCopy("disk/u/t/big"));
    QCOMPARE(ok, false);
    after += Lines{"d775 disk/u", "d775 disk/u/t"};
    QCOMPARE(tree.lines(), FileTree::complete(after));

    // Contract: the old content is lost.
    QCOMPARE(outputOf([&] { ok = CDir::copyFileF(bigPath, QStringLiteral("disk/a")); }),
             QByteArray());
    QCOMPARE(ok, false);
    after.removeOne("f disk/a=1");
    QCOMPARE(tree.lines(), FileTree::complete(after));

    QVERIFY(CDir::copyFile(smallPath, QStringLiteral("disk/b")));
    QCOMPARE(tree.lines(), FileTree::complete(after + Lines{"f disk/b=1"}));
    QCOMPARE(recorder.messages(), QStringList());
}

// The paths are printed in the local encoding.
void tst_CDir::localEncoding()
{
    const FileTree tree({"f a=1", "d \xe4", "f \xe4/\xf6=2"});
    QVERIFY(tree.isValid());
    const LocalEncoding latin1("ISO-8859-1");
    const QString directory = QString::fromLatin1(tree.root()) + QStringLiteral("/\u00e4");
    bool ok = true;
    QCOMPARE(outputOf([&] { ok = CDir::copyFile(QStringLiteral("a"), directory); }),
             cannotCopy(tree.root() + "/\xe4"));
    QCOMPARE(ok, false);
    QCOMPARE(outputOf([&] {
                 ok = CDir::copyDirectory(QString(), directory + QStringLiteral("/\u00f6"));
             }),
             cannotCreate(tree.root() + "/\xe4/\xf6"));
    QCOMPARE(ok, false);
    QCOMPARE(
        outputOf([&] { ok = CDir::removeFileOrDirectory(directory); }),
        cannotRemove(tree.root() + "/\xe4", tree.root() + "/\xe4\n" + tree.root() + "/\xe4/\xf6"));
    QCOMPARE(ok, false);
    QCOMPARE(tree.lines(), FileTree::complete({"f a=1", "d \xe4", "f \xe4/\xf6=2"}));
}

// The diagnostics go the way of the caller's own output, each with a line break in front only.
void tst_CDir::outputInOrder()
{
    const FileTree tree({"f a=1", "d b", "f b/c=2"});
    QVERIFY(tree.isValid());
    const QString directory = text(tree.root() + "/b");
    const QByteArray output = outputOf([&] {
        std::printf("one");
        CDir::copyFile(QStringLiteral("a"), QStringLiteral("b/c"));
        std::printf("two\n");
        CDir::copyDirectory(QString(), QStringLiteral("a"));
        std::fputs("three", stdout);
        CDir::removeFileOrDirectory(directory);
        std::putchar('4');
        CDir::removeDirectory(directory);
        CDir::removeFile(directory);
        CDir::copyFileF(QStringLiteral("a"), QStringLiteral("a/b"));
        std::printf("five");
    });
    QCOMPARE(output,
             "one" + cannotCopy("b/c") + "two\n" + cannotCreate("a") + "three"
                 + cannotRemove(tree.root() + "/b", tree.root() + "/b\n" + tree.root() + "/b/c")
                 + "4five");
}

// ---- Listing

void tst_CDir::getRelativeSubPath_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected"); // null: a null string

    const struct
    {
        const char *base;
        const char *path;
        const char *expected;
    } rows[] = {
        {"/a/b", "/a/b/c/d", "c/d"},
        {"/a/b/", "/a/b/c/d", "c/d"},
        {"/a/b", "/a/b/c/", "c"},
        {"/a/b", "/a/b//c", "c"},
        {"/a/b", "/a/b/./c", "c"},
        {"/a/b", "/a/b/c/../d", "d"},
        {"/a/b", "/a/b/../c", "../c"},
        {"/", "/a/b", "a/b"},
        {"/a", "/a/%1", "%1"},
        {"/a", "/a/\\", "\\"},
        {"/a", "/a/ b ", " b "},
        {"/a", "/a/.b", ".b"},
        {"/a/./b", "/a/./b/c", "c"},
        {"/a/../b", "/a/../b/c/d", "c/d"},
        // The texts are compared.
        {"/a/b", "/a/bc", "../bc"},
        {"/a/b", "/a/bc/d", "../bc/d"},
        {"/a/b", "/a/b.txt", "../b.txt"},
        {"/a/b", "/a/b", nullptr},
        {"/a/b/", "/a/b/", nullptr},
        {"a", "a", nullptr},
        {"", "", nullptr},
        {"/a/b", "/a", nullptr},
        {"/a/b", "/a/c", nullptr},
        {"/a/b", "/c/a/b/d", nullptr},
        {"/a/b/", "/a/b", nullptr},
        {"/A/b", "/a/b/c", nullptr},
        {"/a/b", "/a/B/c", nullptr},
        {"/a/b", "", nullptr},
        {"/a", "a/b", nullptr},
        {"a", "/a/b", nullptr},
        {"a", "./a/b", nullptr},
        {"/a//b", "/a/b/c", nullptr},
        // A relative path does not come back as it is.
        {"a", "a/b", "b"},
        {"a/b", "a/b/c/d", "c/d"},
        {"a/b/", "a/b/c/d", "c/d"},
        {"./a", "./a/b", "b"},
        {".", "./a/b", "a/b"},
        {"..", "../a", "a"},
        {"../a", "../a/b/c", "b/c"},
        {"a/..", "a/../b", "b"},
        {"a", "ab/c", "../ab/c"},
        {"", "a/b", "a/b"},
    };
    for (const auto &row : rows) {
        QTest::newRow(qPrintable(
            QStringLiteral("%1 | %2").arg(QLatin1String(row.base), QLatin1String(row.path))))
            << QString::fromLatin1(row.base) << QString::fromLatin1(row.path)
            << (row.expected ? QString::fromLatin1(row.expected) : QString());
    }
}

void tst_CDir::getRelativeSubPath()
{
    QFETCH(const QString, base);
    QFETCH(const QString, path);
    QFETCH(const QString, expected);
    const FileTree tree({});
    QVERIFY(tree.isValid());
    const QString actual = CDir::getRelativeSubPath(base, path);
    QCOMPARE(actual, expected);
    QCOMPARE(actual.isNull(), expected.isNull());
}

void tst_CDir::toDirFilter_data()
{
    QTest::addColumn<int>("filter");
    QTest::addColumn<int>("flags");

    const QDir::Filters always = QDir::Hidden | QDir::NoDotAndDotDot;
    const auto row = [](const char *name, int filter, QDir::Filters flags) {
        QTest::newRow(name) << filter << static_cast<int>(flags);
    };
    row("all", 0, QDir::Dirs | QDir::Files | always);
    row("files", 1, QDir::Files | always);
    row("directories", 2, QDir::Dirs | always);
    for (const int other : {3, 4, -1, 256, INT_MAX, INT_MIN})
        row(QByteArray::number(other).constData(), other, always);
}

void tst_CDir::toDirFilter()
{
    QFETCH(const int, filter);
    QFETCH(const int, flags);
    QCOMPARE(static_cast<int>(CDir::toDirFilter(static_cast<EDirFilter>(filter))), flags);
}

namespace {

// A directory with an entry of each kind.
const Lines kKinds{"d d",          "f d/a.txt=1",        "f d/B.TXT=2",     "f d/c=3",
                   "f d/.h.txt=4", "d d/s.txt",          "d d/t",           "d d/.u",
                   "l d/lf>c",     "l d/ld>t",           "l d/lx.txt>gone", "p d/p.txt",
                   "f d/t/in=5",   "f d/s.txt/in.txt=6", "f d/.u/in.txt=7"};

} // namespace

void tst_CDir::entryInfoList_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("nameFilters"); // parted by "|"
    QTest::addColumn<int>("kind");            // -1: the flags
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("expected"); // names, sorted, parted by "|"

    const auto row = [](const char *name, const char *path, const char *nameFilters, int kind,
                        int flags, const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(path) << QString::fromLatin1(nameFilters) << kind
                            << flags << QString::fromLatin1(expected);
    };
    const auto kind
        = [&row](const char *name, const char *nameFilters, int filter, const char *expected) {
              row(name, "d", nameFilters, filter, 0, expected);
          };
    const auto flags = [&row](const char *name, const char *nameFilters, QDir::Filters filters,
                              const char *expected) {
        row(name, "d", nameFilters, -1, static_cast<int>(filters), expected);
    };

    const char *const all = ".h.txt|.u|B.TXT|a.txt|c|ld|lf|s.txt|t";
    kind("all", "", 0, all);
    kind("files", "", 1, ".h.txt|B.TXT|a.txt|c|lf");
    kind("directories", "", 2, ".u|ld|s.txt|t");
    kind("3", "", 3, "");
    kind("-1", "", -2, "");
    kind("all *.txt, in any case", "*.txt", 0, ".h.txt|B.TXT|a.txt|s.txt");
    kind("all *.TXT, in any case", "*.TXT", 0, ".h.txt|B.TXT|a.txt|s.txt");
    kind("files *.txt", "*.txt", 1, ".h.txt|B.TXT|a.txt");
    kind("directories *.txt", "*.txt", 2, "s.txt");
    kind("all *", "*", 0, all);
    kind("all *.*", "*.*", 0, ".h.txt|.u|B.TXT|a.txt|s.txt");
    kind("all ?", "?", 0, "c|t");
    kind("all [a-c]*", "[a-c]*", 0, "B.TXT|a.txt|c");
    kind("two name filters", "c|l*", 0, "c|ld|lf");
    kind("two name filters, one matching", "x|t", 0, "t");
    kind("no match", "x*", 0, "");
    kind("a name", "a.txt", 0, "a.txt");
    kind("a part of a name", "a", 0, "");

    flags("Files", "", QDir::Files, "B.TXT|a.txt|c|lf");
    flags("Dirs", "", QDir::Dirs, ".|..|ld|s.txt|t");
    flags("Dirs NoDotAndDotDot", "", QDir::Dirs | QDir::NoDotAndDotDot, "ld|s.txt|t");
    flags("Dirs NoDot", "", QDir::Dirs | QDir::NoDot, "..|ld|s.txt|t");
    flags("Dirs Files Hidden NoDotAndDotDot", "",
          QDir::Dirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, all);
    flags("NoSymLinks", "", QDir::Dirs | QDir::Files | QDir::NoSymLinks | QDir::NoDotAndDotDot,
          "B.TXT|a.txt|c|s.txt|t");
    flags("System", "", QDir::Files | QDir::System, "B.TXT|a.txt|c|lf|lx.txt|p.txt");
    flags("CaseSensitive", "*.txt", QDir::Files | QDir::CaseSensitive, "a.txt");
    flags("AllDirs: name filters are for files", "*.txt",
          QDir::AllDirs | QDir::Files | QDir::NoDotAndDotDot, "B.TXT|a.txt|ld|s.txt|t");
    // The framework's default flags.
    flags("NoFilter", "", QDir::NoFilter, ".|..|B.TXT|a.txt|c|ld|lf|s.txt|t");
    flags("NoFilter *.txt", "*.txt", QDir::NoFilter, "B.TXT|a.txt|s.txt");

    row("absolute", "@/d", "", 1, 0, ".h.txt|B.TXT|a.txt|c|lf");
    row("absolute/", "@/d/", "", 1, 0, ".h.txt|B.TXT|a.txt|c|lf");
    row("d/t", "d/t", "", 0, 0, "in");
    row("hidden directory", "d/.u", "", 0, 0, "in.txt");
    row("link to a directory", "d/ld", "", 0, 0, "in");
    row("link to a directory/", "d/ld/", "", 0, 0, "in");
    row("directory/..", "d/t/..", "c", 0, 0, "c");
    row("missing", "x", "", 0, 0, "");
    row("file", "d/c", "", 0, 0, "");
    row("broken link", "d/lx.txt", "", 0, 0, "");
    row("below a file", "d/c/x", "", 0, 0, "");
    row("a pattern is no path", "*", "", 0, 0, "");
}

void tst_CDir::entryInfoList()
{
    QFETCH(QString, path);
    QFETCH(const QString, nameFilters);
    QFETCH(const int, kind);
    QFETCH(const int, flags);
    QFETCH(const QString, expected);
    const FileTree tree(kKinds);
    QVERIFY(tree.isValid());
    path = tree.expanded(path);
    QStringList filters = nameFilters.split(QLatin1Char('|'));
    if (nameFilters.isEmpty())
        filters.clear();
    const MessageRecorder recorder;
    if (kind == -1) {
        QCOMPARE(names(kListByFlags(path, filters, QDir::Filters(flags))), expected);
    } else {
        const auto filter = static_cast<EDirFilter>(kind);
        QCOMPARE(names(kListByKind(path, filters, filter)), expected);
        if (filters.isEmpty())
            QCOMPARE(names(kListExcluding(path, filter, {})), expected);
    }
    QCOMPARE(tree.lines(), FileTree::complete(kKinds));
    QCOMPARE(recorder.messages(), QStringList());
}

// The order is that of the directory.
void tst_CDir::entryInfoListOrder()
{
    Lines lines{"d d"};
    for (int i = 0; i < 100; ++i)
        lines += (i % 3 == 0 ? "d d/" : "f d/") + QByteArray::number(i * 37 % 100);
    lines += "f d/.hidden=";
    const FileTree tree(lines);
    QVERIFY(tree.isValid());
    QStringList expected;
    QStringList some;
    const QByteArrayList order = FileTree::names("d");
    QCOMPARE(order.size(), 101);
    for (const QByteArray &name : order) {
        expected += QStringLiteral("d/") + text(name);
        if (name.size() == 2)
            some += expected.last();
    }
    const QString path = QStringLiteral("d");
    const QDir::Filters flags = QDir::Dirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot;
    QCOMPARE(filePaths(kListByFlags(path, {}, flags)), expected);
    QCOMPARE(filePaths(kListByKind(path, {}, Nk7eGlobal::DIRFILTER_ALL)), expected);
    QCOMPARE(filePaths(kListByKind(path, {QStringLiteral("??")}, Nk7eGlobal::DIRFILTER_ALL)), some);
    QStringList others;
    for (int i = 0; i < 10; ++i)
        others += QString::number(i);
    others += QStringLiteral(".hidden");
    QCOMPARE(filePaths(kListExcluding(path, Nk7eGlobal::DIRFILTER_ALL, others)), some);
    QCOMPARE(filePaths(kTreeByFlags(path, {}, flags)), expected);
    QCOMPARE(filePaths(kTreeByKind(path, {}, Nk7eGlobal::DIRFILTER_ALL)), expected);
}

void tst_CDir::excluded_data()
{
    QTest::addColumn<QStringList>("excluded");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("expected");

    const auto row
        = [](const char *name, const QByteArrayList &excluded, int kind, const char *expected) {
              QTest::newRow(name) << texts(excluded) << kind << QString::fromLatin1(expected);
          };
    const char *const all = ".h.txt|.u|B.TXT|a.txt|c|ld|lf|s.txt|t";
    row("none", {}, 0, all);
    row("a file", {"a.txt"}, 0, ".h.txt|.u|B.TXT|c|ld|lf|s.txt|t");
    row("a directory", {"t"}, 0, ".h.txt|.u|B.TXT|a.txt|c|ld|lf|s.txt");
    row("hidden ones", {".u", ".h.txt"}, 0, "B.TXT|a.txt|c|ld|lf|s.txt|t");
    row("links", {"lf", "ld"}, 0, ".h.txt|.u|B.TXT|a.txt|c|s.txt|t");
    row("all", {"c", "t", ".u", "a.txt", "B.TXT", ".h.txt", "ld", "lf", "s.txt"}, 0, "");
    row("other case", {"A.txt", "b.txt", "C", "T"}, 0, all);
    row("beginning", {"a", "a.", "a.tx", "B"}, 0, all);
    row("end", {".txt", "txt"}, 0, all);
    row("longer", {"a.txt.", "cc", "t/"}, 0, all);
    row("wildcards", {"*", "*.txt", "?", "[a-z]", ".*"}, 0, all);
    row("path", {"d/c", "./c", "@/d/c"}, 0, all);
    row("blank", {" c", "c ", "", " "}, 0, all);
    row("twice", {"c", "c"}, 0, ".h.txt|.u|B.TXT|a.txt|ld|lf|s.txt|t");
    row("what is not there", {"x", "lx.txt", "p.txt", ".", ".."}, 0, all);
    row("files", {"c", "t"}, 1, ".h.txt|B.TXT|a.txt|lf");
    row("directories", {"c", "t"}, 2, ".u|ld|s.txt");
    row("other kind", {"c"}, 3, "");
}

void tst_CDir::excluded()
{
    QFETCH(const QStringList, excluded);
    QFETCH(const int, kind);
    QFETCH(const QString, expected);
    const FileTree tree(kKinds);
    QVERIFY(tree.isValid());
    QCOMPARE(names(kListExcluding(QStringLiteral("d"), static_cast<EDirFilter>(kind),
                                  tree.expanded(excluded))),
             expected);
}

void tst_CDir::entryInfoListRecursive_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("nameFilters"); // parted by "|"
    QTest::addColumn<int>("kind");            // -1: the flags
    QTest::addColumn<int>("flags");
    QTest::addColumn<QString>("expected"); // paths, sorted, parted by "|"

    const auto row = [](const char *name, const char *path, const char *nameFilters, int kind,
                        int flags, const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(path) << QString::fromLatin1(nameFilters) << kind
                            << flags << QString::fromLatin1(expected);
    };
    const auto kind
        = [&row](const char *name, const char *nameFilters, int filter, const char *expected) {
              row(name, "d", nameFilters, filter, 0, expected);
          };
    const auto flags = [&row](const char *name, const char *nameFilters, QDir::Filters filters,
                              const char *expected) {
        row(name, "d", nameFilters, -1, static_cast<int>(filters), expected);
    };

    kind("all", "", 0,
         "d/.h.txt|d/.u|d/.u/in.txt|d/B.TXT|d/a.txt|d/c|d/ld|d/lf|d/s.txt|d/s.txt/in.txt|d/t|"
         "d/t/in");
    kind("files", "", 1, "d/.h.txt|d/.u/in.txt|d/B.TXT|d/a.txt|d/c|d/lf|d/s.txt/in.txt|d/t/in");
    kind("directories", "", 2, "d/.u|d/ld|d/s.txt|d/t");
    kind("3", "", 3, "");
    kind("all *.txt", "*.txt", 0, "d/.h.txt|d/.u/in.txt|d/B.TXT|d/a.txt|d/s.txt|d/s.txt/in.txt");
    kind("files in*", "in*", 1, "d/.u/in.txt|d/s.txt/in.txt|d/t/in");
    kind("directories in*", "in*", 2, "");
    kind("two name filters", "c|in", 0, "d/c|d/t/in");
    kind("no match", "x", 0, "");

    flags("Files", "", QDir::Files, "d/B.TXT|d/a.txt|d/c|d/lf|d/s.txt/in.txt|d/t/in");
    flags("Files Hidden", "", QDir::Files | QDir::Hidden,
          "d/.h.txt|d/.u/in.txt|d/B.TXT|d/a.txt|d/c|d/lf|d/s.txt/in.txt|d/t/in");
    flags("Dirs NoDotAndDotDot", "", QDir::Dirs | QDir::NoDotAndDotDot, "d/ld|d/s.txt|d/t");
    flags("Files NoSymLinks", "", QDir::Files | QDir::NoSymLinks,
          "d/B.TXT|d/a.txt|d/c|d/s.txt/in.txt|d/t/in");
    flags("Files System", "", QDir::Files | QDir::System,
          "d/B.TXT|d/a.txt|d/c|d/lf|d/lx.txt|d/p.txt|d/s.txt/in.txt|d/t/in");
    flags("Files CaseSensitive *.txt", "*.txt", QDir::Files | QDir::CaseSensitive,
          "d/a.txt|d/s.txt/in.txt");
    flags("NoFilter", "c|in", QDir::NoFilter, "d/c|d/t/in");

    row("absolute", "@/d/t", "", 0, 0, "@/d/t/in");
    row("directory/", "d/t/", "", 0, 0, "d/t/in");
    row("link to a directory", "d/ld", "", 0, 0, "d/ld/in");
    row("hidden directory", "d/.u", "", -1, static_cast<int>(QDir::Files), "d/.u/in.txt");
    row("missing", "x", "", 0, 0, "");
    row("file", "d/c", "", 0, 0, "");
    row("broken link", "d/lx.txt", "", 0, 0, "");
}

void tst_CDir::entryInfoListRecursive()
{
    QFETCH(QString, path);
    QFETCH(const QString, nameFilters);
    QFETCH(const int, kind);
    QFETCH(const int, flags);
    QFETCH(const QString, expected);
    const FileTree tree(kKinds);
    QVERIFY(tree.isValid());
    path = tree.expanded(path);
    QStringList filters = nameFilters.split(QLatin1Char('|'));
    if (nameFilters.isEmpty())
        filters.clear();
    const MessageRecorder recorder;
    const QFileInfoList infos = kind == -1
        ? kTreeByFlags(path, filters, QDir::Filters(flags))
        : kTreeByKind(path, filters, static_cast<EDirFilter>(kind));
    QCOMPARE(sorted(filePaths(infos)).join(QLatin1Char('|')), tree.expanded(expected));
    QCOMPARE(tree.lines(), FileTree::complete(kKinds));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CDir::lists_data()
{
    QTest::addColumn<Lines>("lines");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArrayList>("others"); // sorted, behind the path itself

    const auto row
        = [](const char *name, const Lines &lines, const QByteArray &path,
             const QByteArrayList &others) { QTest::newRow(name) << lines << path << others; };
    const Lines tree{"d a", "f a/b=1", "d a/c", "f a/c/d=2", "d a/c/e", "f a/c/e/f=3", "d a/g"};
    row("tree", tree, "a", {"a/b", "a/c", "a/c/d", "a/c/e", "a/c/e/f", "a/g"});
    row("tree/", tree, "a/", {"a/b", "a/c", "a/c/d", "a/c/e", "a/c/e/f", "a/g"});
    row("./tree", tree, "./a", {"./a/b", "./a/c", "./a/c/d", "./a/c/e", "./a/c/e/f", "./a/g"});
    row("absolute", tree, "@/a/c", {"@/a/c/d", "@/a/c/e", "@/a/c/e/f"});
    row("directory/..", tree, "a/c/e/..", {"a/c/e/../d", "a/c/e/../e", "a/c/e/../e/f"});
    row(".", {"d a", "f a/b=1"}, ".", {"./a", "./a/b"});
    row("hidden entries are left out", {"d a", "f a/.b=1", "d a/.c", "f a/.c/d=1", "f a/e=1"}, "a",
        {"a/e"});
    row("hidden itself", {"d .a", "f .a/b=1"}, ".a", {".a/b"});
    row("broken links and pipes are left out", {"d a", "l a/b>gone", "l a/c>c", "p a/d", "f a/e=1"},
        "a", {"a/e"});
    row("links are listed, but not followed",
        {"d x", "f x/y=1", "d a", "l a/b>../x", "l a/c>../x/y", "l a/d>.", "l a/e>.."}, "a",
        {"a/b", "a/c", "a/d", "a/e"});
    row("undecodable names are left out",
        {"d a", "f a/\xff=1", "d a/\xfe", "f a/\xfe/b=1", "f a/c="}, "a", {"a/c"});
    row("empty directory", {"d a"}, "a", {});
    row("file", {"f a=1"}, "a", {});
    row("missing", {}, "a", {});
    row("broken link", {"l a>gone"}, "a", {});
    row("empty path", {"f a=1"}, "", {});
    Lines odd{"d a"};
    QByteArrayList others;
    const QByteArrayList names = FileTree::oddNames();
    for (const QByteArray &name : names) {
        odd += QByteArrayList{"d a/" + name, "f a/" + name + '/' + name + "=1"};
        others += QByteArrayList{"a/" + name, "a/" + name + '/' + name};
    }
    row("odd names", odd, "a", others);
    const Lines deep = Lines{"d a"} + chain("a", 400, "");
    others.clear();
    for (const QByteArray &line : deep)
        others += line.startsWith('f') ? line.mid(2).chopped(2) : line.mid(2);
    row("400 levels", deep, "a", others.mid(1));
}

void tst_CDir::lists()
{
    QFETCH(const Lines, lines);
    QFETCH(const QByteArray, path);
    QFETCH(const QByteArrayList, others);
    const FileTree tree(lines);
    QVERIFY(tree.isValid());
    const QByteArray expanded = tree.expanded(path);
    const MessageRecorder recorder;
    const QStringList actual = CDir::listFilesAndDirectories(text(expanded));

    // Each entry once, the path itself first and as it was given.
    QCOMPARE(actual.value(0), text(expanded));
    QCOMPARE(sorted(actual.mid(1)), sorted(tree.expanded(texts(others))));
    // In the order of the walk: that of the directories, each before its content.
    if (!others.isEmpty() && !lines.join().contains('\xff'))
        QCOMPARE(actual.mid(1), texts(FileTree::walked(expanded)));
    QCOMPARE(filePaths(CDir::listFileAndDirInfos(text(expanded))), actual);
    QCOMPARE(tree.lines(), FileTree::complete(lines));
    QCOMPARE(recorder.messages(), QStringList());
}

// The informations are those of the links, too.
void tst_CDir::listsOfLinks()
{
    const FileTree tree({"d x", "d a", "l a/d>../x", "f600 y=12345", "l a/f>../y"});
    QVERIFY(tree.isValid());
    const QFileInfoList infos = CDir::listFileAndDirInfos(QStringLiteral("a"));
    QCOMPARE(infos.size(), 3);
    QVERIFY(infos.first().isDir());
    for (const QFileInfo &info : infos.mid(1)) {
        QVERIFY(info.isSymLink());
        if (info.fileName() == QLatin1String("d")) {
            QVERIFY(info.isDir());
        } else {
            QCOMPARE(info.fileName(), QStringLiteral("f"));
            QVERIFY(info.isFile());
            QCOMPARE(info.size(), qint64(5));
        }
    }
}

void tst_CDir::pathHelpers_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("file");

    const auto row = [](const char *path, const char *second, const char *directory,
                        const char *file) {
        QTest::newRow(
            qPrintable(QStringLiteral("%1 | %2").arg(QLatin1String(path), QLatin1String(second))))
            << QString::fromLatin1(path) << QString::fromLatin1(second)
            << QString::fromLatin1(directory) << QString::fromLatin1(file);
    };
    row("a", "b", "a/b/", "a/b");
    row("a/", "b", "a/b/", "a/b");
    row("a", "b/", "a/b/", "a/b/");
    row("a", "/b", "a//b/", "a//b");
    row("a/", "/b/", "a//b/", "a//b/");
    row("", "", "/", "/");
    row("", "b", "/b/", "/b");
    row("a", "", "a/", "a/");
    row("%1", "%2", "%1/%2/", "%1/%2");
}

void tst_CDir::pathHelpers()
{
    QFETCH(const QString, path);
    QFETCH(const QString, second);
    QFETCH(const QString, directory);
    QFETCH(const QString, file);
    QCOMPARE(CDir::addPathToPath(path, second), directory);
    QCOMPARE(CDir::addFileNameToPath(path, second), file);
    QCOMPARE(CDir::addPathToPath(path, second), CPath::addPathToPath(path, second));
    QCOMPARE(CDir::addFileNameToPath(path, second), CPath::addFileNameToPath(path, second));
}

void tst_CDir::threads()
{
    const FileTree tree({});
    QVERIFY(tree.isValid());
    const QString root = text(tree.root());
    QVERIFY(trueInThreads([&root] {
        const QString base
            = root + QLatin1Char('/') + QString::number(quintptr(QThread::currentThreadId()));
        const QByteArray bytes = QFile::encodeName(base);
        bool ok = FileTree::make("d " + bytes) && FileTree::make("d " + bytes + "/s")
            && FileTree::make("f " + bytes + "/s/a=1") && FileTree::make("d " + bytes + "/s/b");
        for (int i = 0; i < 20; ++i) {
            const QString source = base + QStringLiteral("/s");
            const QString target = base + QStringLiteral("/t");
            ok = ok && CDir::copyDirectoryRecursive(source, target)
                && CDir::listFilesAndDirectories(target).size() == 3
                && CDir::copyFileF(source + QStringLiteral("/a"), target + QStringLiteral("/a"))
                && CDir::removeFilesByPathList(CDir::listFilesAndDirectories(target));
        }
        return ok && CDir::removeDirectoryRecursive(base);
    }));
    QCOMPARE(tree.lines(), Lines());
}

QTEST_APPLESS_MAIN(tst_CDir)

#include "tst_CDir.moc"
