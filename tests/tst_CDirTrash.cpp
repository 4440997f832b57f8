#include "CDir.h"

#include "DefaultLocale.h"
#include "FileTree.h"
#include "MessageRecorder.h"

#include <QRegularExpression>
#include <QtTest>

#include <cstdlib>
#include <memory>
#include <type_traits>

#include <sched.h>
#include <sys/wait.h>

namespace {

static_assert(std::is_same_v<decltype(&CDir::moveToTrash), int (*)(const QString &)>);

constexpr int kMoved = 0;
constexpr int kFailed = 1;
constexpr int kNoSuchPath = 10;

//! The part of an entry that most rows have: a trash directory in the home directory.
const QByteArrayList kTrash{"d home", "d home/.trash", "d home/.trash/files", "d home/.trash/info"};

//! The line of a record; its date is replaced by "#".
QByteArray record(const QByteArray &name, const QByteArray &path)
{
    return "f664 home/.trash/info/" + name + ".trashinfo=[Trash Info]\nPath=" + path
        + "\nDeletionDate=#\n";
}

//! The line of an item in the trash: "f a.txt=1".
QByteArray item(QByteArray line)
{
    return line.replace(line.indexOf(' '), 1, " home/.trash/files/");
}

//! The clock in a zone 5:45 ahead of UTC.
QByteArray clockText()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    const time_t local = now.tv_sec + (5 * 60 + 45) * 60;
    tm parts;
    gmtime_r(&local, &parts);
    char text[64];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    return QByteArray(text)
        + ('.' + QByteArray::number(1000 + static_cast<int>(now.tv_nsec / 1000000)).mid(1)) + 'Z';
}

//! Puts "#" into the place of the dates of the records, and adds them to \a dates.
QByteArrayList dated(const QByteArrayList &lines, QByteArrayList *dates)
{
    static const QRegularExpression pattern(QStringLiteral(
        "\nDeletionDate=([0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{3}Z)\n$"));
    QByteArrayList result;
    for (const QByteArray &line : lines) {
        // Latin-1 keeps every byte.
        const auto match = pattern.match(QString::fromLatin1(line));
        result += match.hasMatch() ? line.left(match.capturedStart(1)) + "#\n" : line;
        if (match.hasMatch())
            *dates += match.captured(1).toLatin1();
    }
    std::sort(result.begin(), result.end());
    return result;
}

void addColumns()
{
    QTest::addColumn<QByteArrayList>("before");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("result");
    QTest::addColumn<QByteArrayList>("after");
}

//! A row that begins with an empty trash.
void moved(const char *name, const QByteArrayList &before, const QByteArray &path,
           const QByteArrayList &after)
{
    QTest::newRow(name) << kTrash + before << path << kMoved << kTrash + after;
}

//! A row in which nothing changes.
void unmoved(const char *name, const QByteArrayList &before, const QByteArray &path, int result)
{
    QTest::newRow(name) << before << path << result << before;
}

//! Moves the path of the row to the trash, and compares the whole tree afterwards.
void checkRow(const QByteArray &xdg = QByteArray())
{
    QFETCH(const QByteArrayList, before);
    QFETCH(const QByteArray, path);
    QFETCH(const int, result);
    QFETCH(QByteArrayList, after);
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    for (QByteArray &line : after)
        line = line.startsWith('l') ? line : tree.expanded(line);
    const EnvironmentVariable home("HOME", tree.root() + "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", tree.expanded(xdg));
    const EnvironmentVariable zone("TZ", "<+0545>-5:45");

    int actual = -1;
    const MessageRecorder recorder;
    const QByteArray earliest = clockText();
    const QByteArray output
        = outputOf([&] { actual = CDir::moveToTrash(QString::fromUtf8(tree.expanded(path))); });
    const QByteArray latest = clockText();

    QCOMPARE(actual, result);
    QByteArrayList dates;
    QCOMPARE(dated(tree.lines(), &dates), FileTree::complete(after));
    for (const QByteArray &date : qAsConst(dates)) {
        QVERIFY2(earliest <= date, date.constData());
        QVERIFY2(date <= latest, date.constData());
    }
    QCOMPARE(output, QByteArray());
    QCOMPARE(recorder.messages(), QStringList());
}

//! An empty directory on another file system than \a path; null if there is none.
std::unique_ptr<QTemporaryDir> directoryElsewhere(const QByteArray &path)
{
    struct stat here, there;
    if (stat(path.constData(), &here) != 0)
        return nullptr;
    for (const char *const place : {"/dev/shm", "/run", "/var/tmp"}) {
        auto directory = std::make_unique<QTemporaryDir>(QLatin1String(place)
                                                         + QLatin1String("/trash-XXXXXX"));
        if (directory->isValid()
            && stat(QFile::encodeName(directory->path()).constData(), &there) == 0
            && here.st_dev != there.st_dev)
            return directory;
    }
    return nullptr;
}

} // namespace

class tst_CDirTrash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void candidates_data();
    void candidates();
    void emptyDataHome();
    void rootCandidate();
    void items_data();
    void items();
    void taken_data();
    void taken();
    void failures_data();
    void failures();
    void missingParts_data();
    void missingParts();
    void longNames_data();
    void longNames();
    void twice();
    void date_data();
    void date();
    void encoding();
    void fullDisk();
    void otherFileSystem_data();
    void otherFileSystem();
    void undecodable();
};

void tst_CDirTrash::candidates_data()
{
    QTest::addColumn<QByteArray>("xdg");
    QTest::addColumn<QByteArrayList>("places"); // with files/ and info/
    QTest::addColumn<QByteArrayList>("others"); // further entries
    QTest::addColumn<QByteArray>("used");       // null: none

    const QByteArray unset;
    const QByteArrayList none;
    const QByteArray local = "home/.local/share/Trash";
    const QByteArrayList locals{"d home/.local", "d home/.local/share"};
    const QByteArray dot = "home/.trash";

    QTest::newRow("none, unset") << unset << none << none << unset;
    QTest::newRow("none, set") << QByteArray("@/xdg") << none << none << unset;
    QTest::newRow("set, with a Trash only")
        << QByteArray("@/xdg") << QByteArrayList{"xdg/Trash"} << none << QByteArray("xdg/Trash");
    QTest::newRow("set, with all three")
        << QByteArray("@/xdg") << QByteArrayList{"xdg/Trash", local, dot} << locals
        << QByteArray("xdg/Trash");
    QTest::newRow("set, without a Trash")
        << QByteArray("@/xdg") << QByteArrayList{local, dot} << locals << local;
    QTest::newRow("set, only .trash") << QByteArray("@/xdg") << QByteArrayList{dot} << none << dot;
    QTest::newRow("set, missing directory")
        << QByteArray("@/gone") << QByteArrayList{dot} << none << dot;
    QTest::newRow("set, Trash is a file")
        << QByteArray("@/xdg") << QByteArrayList{dot} << QByteArrayList{"f xdg/Trash=1"} << dot;
    QTest::newRow("set, Trash is a link to a directory")
        << QByteArray("@/xdg") << QByteArrayList{"place", dot}
        << QByteArrayList{"l xdg/Trash>../place"} << QByteArray("place");
    QTest::newRow("set, Trash is a broken link")
        << QByteArray("@/xdg") << QByteArrayList{dot} << QByteArrayList{"l xdg/Trash>gone"} << dot;
    QTest::newRow("set, named trash")
        << QByteArray("@/xdg") << QByteArrayList{"xdg/trash", dot} << none << dot;
    QTest::newRow("set, ending with a slash")
        << QByteArray("@/xdg/") << QByteArrayList{"xdg/Trash"} << none << QByteArray("xdg/Trash");
    QTest::newRow("set, relative")
        << QByteArray("xdg") << QByteArrayList{"xdg/Trash", dot} << none << QByteArray("xdg/Trash");
    QTest::newRow("set, with places for arguments")
        << QByteArray("@/%1 %2") << QByteArrayList{"%1 %2/Trash", dot} << QByteArrayList{"d %1 %2"}
        << QByteArray("%1 %2/Trash");
    QTest::newRow("set, not ASCII")
        << QByteArray("@/\xc3\xa4") << QByteArrayList{"\xc3\xa4/Trash", dot}
        << QByteArrayList{"d \xc3\xa4"} << QByteArray("\xc3\xa4/Trash");
    QTest::newRow("unset, a Trash is no candidate")
        << unset << QByteArrayList{"xdg/Trash", dot} << none << dot;
    QTest::newRow("unset, both of home") << unset << QByteArrayList{local, dot} << locals << local;
    QTest::newRow("unset, only .local") << unset << QByteArrayList{local} << locals << local;
    QTest::newRow("unset, only .trash") << unset << QByteArrayList{dot} << none << dot;
    QTest::newRow("unset, .local's is a file")
        << unset << QByteArrayList{dot} << locals + QByteArrayList{"f home/.local/share/Trash=1"}
        << dot;
    QTest::newRow("unset, only .Trash") << unset << QByteArrayList{"home/.Trash"} << none << unset;
    QTest::newRow("unset, .trash is a file")
        << unset << none << QByteArrayList{"f home/.trash=1"} << unset;
}

void tst_CDirTrash::candidates()
{
    QFETCH(const QByteArray, xdg);
    QFETCH(const QByteArrayList, places);
    QFETCH(const QByteArrayList, others);
    QFETCH(const QByteArray, used);
    QByteArrayList before = QByteArrayList{"d home", "d xdg", "f a.txt=1"} + others;
    for (const QByteArray &place : places)
        before += QByteArrayList{"d " + place, "d " + place + "/files", "d " + place + "/info"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const EnvironmentVariable home("HOME", tree.root() + "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", tree.expanded(xdg));

    const MessageRecorder recorder;
    // Without a trash it does not matter whether the path exists.
    QCOMPARE(CDir::moveToTrash(QStringLiteral("gone")), used.isNull() ? kFailed : kNoSuchPath);
    QCOMPARE(tree.lines(), FileTree::complete(before));
    QCOMPARE(CDir::moveToTrash(QStringLiteral("a.txt")), used.isNull() ? kFailed : kMoved);
    QByteArrayList after = before;
    if (!used.isNull()) {
        after.removeOne("f a.txt=1");
        after += "f " + used + "/files/a.txt=1";
        after += "f664 " + used + "/info/a.txt.trashinfo=[Trash Info]\nPath=" + tree.root()
            + "/a.txt\nDeletionDate=#\n";
    }
    QByteArrayList dates;
    QCOMPARE(dated(tree.lines(), &dates), FileTree::complete(after));
    QCOMPARE(recorder.messages(), QStringList());
}

// An empty value is no relative path: "Trash" in the current directory is no candidate.
void tst_CDirTrash::emptyDataHome()
{
    QVERIFY2(!QFileInfo(QStringLiteral("/Trash")).isDir(), "The test needs a root without a trash");
    const QByteArrayList before{"d home", "d Trash", "d Trash/files", "d Trash/info", "f a.txt=1"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const EnvironmentVariable home("HOME", tree.root() + "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", "");
    QCOMPARE(CDir::moveToTrash(QStringLiteral("a.txt")), kFailed);
    QCOMPARE(tree.lines(), FileTree::complete(before));
}

// An empty value gives "/Trash". A child process has the tree as its root to see that, by its own
// right or in a user namespace; where neither is granted, it moves nothing and tells so.
void tst_CDirTrash::rootCandidate()
{
    constexpr int noRight = 99;
    const QByteArrayList before{
        "d home",  "d home/.trash", "d home/.trash/files", "d home/.trash/info",
        "d Trash", "d Trash/files", "d Trash/info",        "f a.txt=1"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const EnvironmentVariable home("HOME", "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", "");
    const pid_t child = fork();
    QVERIFY(child >= 0);
    if (child == 0) {
        if (chroot(".") != 0 && (unshare(CLONE_NEWUSER) != 0 || chroot(".") != 0))
            _exit(noRight);
        _exit(CDir::moveToTrash(QStringLiteral("/a.txt")));
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFEXITED(status));
    QByteArrayList after = before;
    if (WEXITSTATUS(status) != noRight) {
        QCOMPARE(WEXITSTATUS(status), kMoved);
        after.removeOne("f a.txt=1");
        after += "f Trash/files/a.txt=1";
        after += "f664 Trash/info/a.txt.trashinfo=[Trash Info]\nPath=/a.txt\nDeletionDate=#\n";
    }
    QByteArrayList dates;
    QCOMPARE(dated(tree.lines(), &dates), FileTree::complete(after));
}

void tst_CDirTrash::items_data()
{
    addColumns();

    moved("file, absolute path", {"f a.txt=1"}, "@/a.txt",
          {item("f a.txt=1"), record("a.txt", "@/a.txt")});
    moved("file, relative path", {"f a.txt=1"}, "a.txt",
          {item("f a.txt=1"), record("a.txt", "@/a.txt")});
    moved("./file", {"f a.txt=1"}, "./a.txt", {item("f a.txt=1"), record("a.txt", "@/a.txt")});
    moved("file in a directory", {"d sub", "f sub/a.txt=1"}, "sub/a.txt",
          {"d sub", item("f a.txt=1"), record("a.txt", "@/sub/a.txt")});
    moved(".. inside the path", {"d sub", "f a.txt=1"}, "@/sub/../a.txt",
          {"d sub", item("f a.txt=1"), record("a.txt", "@/a.txt")});
    // Behind a link, ".." leads where the system goes.
    const QByteArrayList behind{"d a", "d a/b", "d d", "l d/link>../a/b"};
    moved("link/../file", behind + QByteArrayList{"f a/c=1", "f d/c=2"}, "d/link/../c",
          behind + QByteArrayList{"f d/c=2", item("f c=1"), record("c", "@/a/c")});
    moved("link/../link, another link to the same there",
          behind + QByteArrayList{"f c=1", "l a/y>../c", "l d/y>../c"}, "d/link/../y",
          behind + QByteArrayList{"f c=1", "l d/y>../c", item("l y>../c"), record("y", "@/a/y")});
    moved("link/..", behind + QByteArrayList{"f a/c=1"}, "d/link/..",
          {"d d", "l d/link>../a/b", item("d a"), item("d a/b"), item("f a/c=1"),
           record("a", "@/a")});
    moved("// inside the path", {"d sub", "f sub/a.txt=1"}, "@//sub//a.txt",
          {"d sub", item("f a.txt=1"), record("a.txt", "@/sub/a.txt")});
    moved("empty file, mode 600", {"f600 a="}, "a", {item("f600 a="), record("a", "@/a")});
    moved("pipe", {"p a"}, "a", {item("p a"), record("a", "@/a")});

    moved("empty directory", {"d sub"}, "sub", {item("d sub"), record("sub", "@/sub")});
    const QByteArrayList directory{"d700 sub", "f sub/a=1", "d sub/.b", "l sub/.b/c>../gone",
                                   "f sub/.b/\xff=2"};
    const QByteArrayList inTrash{item("d700 sub"),        item("f sub/a=1"),
                                 item("d sub/.b"),        item("l sub/.b/c>../gone"),
                                 item("f sub/.b/\xff=2"), record("sub", "@/sub")};
    moved("directory as a whole", directory, "@/sub", inTrash);
    moved("directory/", directory, "sub/", inTrash);
    moved("directory//", directory, "sub//", inTrash);
    moved("directory/.", directory, "sub/.", inTrash);
    moved("absolute directory/", directory, "@/sub/", inTrash);
    moved("directory/x/..", {"d sub", "d sub/x"}, "sub/x/..",
          {item("d sub"), item("d sub/x"), record("sub", "@/sub")});

    // The link moves, and what it names stays.
    moved("link to a file", {"f a=1", "l b>a"}, "b", {"f a=1", item("l b>a"), record("b", "@/b")});
    moved("link to a directory", {"d a", "f a/c=1", "l b>a"}, "b",
          {"d a", "f a/c=1", item("l b>a"), record("b", "@/b")});
    moved("link to a directory/", {"d a", "f a/c=1", "l b>a"}, "b/",
          {"d a", "f a/c=1", item("l b>a"), record("b", "@/b")});
    moved("absolute link to a directory/", {"d a", "f a/c=1", "l b>a"}, "@/b/",
          {"d a", "f a/c=1", item("l b>a"), record("b", "@/b")});
    moved("link to a directory/.", {"d a", "f a/c=1", "l b>a"}, "b/.",
          {"d a", "f a/c=1", item("l b>a"), record("b", "@/b")});
    moved("link to a link", {"f a=1", "l b>a", "l c>b"}, "c",
          {"f a=1", "l b>a", item("l c>b"), record("c", "@/c")});
    moved("behind a link", {"d a", "f a/c=1", "l b>a"}, "b/c",
          {"d a", "l b>a", item("f c=1"), record("c", "@/b/c")});

    moved("the home directory's file", {"f home/a=1"}, "home/a",
          {item("f a=1"), record("a", "@/home/a")});
    moved("an item in the trash", {item("f a.txt=1")}, "home/.trash/files/a.txt",
          {item("f a.2.txt=1"), record("a.2.txt", "@/home/.trash/files/a.txt")});

    const QByteArrayList names = FileTree::oddNames();
    for (const QByteArray &name : names) {
        const QByteArray rowName = "name " + FileTree::printable(name);
        moved(rowName.constData(), {"d sub", "f sub/" + name + "=1"}, "@/sub/" + name,
              {"d sub", item("f " + name + "=1"), record(name, "@/sub/" + name)});
        const QByteArray directoryName = "in a directory " + FileTree::printable(name);
        moved(directoryName.constData(), {"d " + name, "f " + name + "/a=1"}, "@/" + name + "/a",
              {"d " + name, item("f a=1"), record("a", "@/" + name + "/a")});
    }
}

void tst_CDirTrash::items()
{
    checkRow();
}

void tst_CDirTrash::taken_data()
{
    addColumns();

    // Both names are those of a file, "from" is taken in the trash.
    const auto renamed = [](const QByteArray &from, const QByteArray &to) {
        const QByteArray name = FileTree::printable(from) + " -> " + FileTree::printable(to);
        const QByteArrayList others{item("f " + from + "=old")};
        moved(name.constData(), others + QByteArrayList{"f " + from + "=1"}, "@/" + from,
              others + QByteArrayList{item("f " + to + "=1"), record(to, "@/" + from)});
    };
    renamed("a.txt", "a.2.txt");
    renamed("archive.tar.gz", "archive.2.tar.gz");
    renamed("notes", "notes.2");
    renamed(".profile", ".2.profile");
    renamed(".a.b", ".2.a.b");
    renamed("a.", "a.2");
    renamed("a..b", "a.2..b");
    renamed("a.b.", "a.2.b.");
    renamed("..a", ".2..a");
    renamed("...", ".2...");
    renamed("a.2.txt", "a.2.2.txt");
    renamed("a b.c d", "a b.2.c d");
    renamed("a\nb", "a\nb.2");
    renamed("%1", "%1.2");
    renamed("%1.%2", "%1.2.%2");
    renamed("\xc3\xa4.\xc3\xb6", "\xc3\xa4.2.\xc3\xb6");
    renamed("a.trashinfo", "a.2.trashinfo");

    // What takes a name of the trash: each of these gives "a.2.txt".
    const QByteArrayList second{item("f a.2.txt=1"), record("a.2.txt", "@/a.txt")};
    const QByteArray info = "home/.trash/info/a.txt.trashinfo";
    const struct
    {
        const char *name;
        QByteArrayList lines;
    } takers[] = {
        {"item", {item("f a.txt=old")}},
        {"item, empty directory", {item("d a.txt")}},
        {"item, pipe", {item("p a.txt")}},
        {"item, link", {item("l a.txt>../info")}},
        {"item, broken link", {item("l a.txt>gone")}},
        {"item, link to itself", {item("l a.txt>a.txt")}},
        {"record", {"f " + info + "=old"}},
        {"record, directory", {"d " + info}},
        {"record, broken link", {"l " + info + ">gone"}},
        {"item and record", {item("f a.txt=old"), "f " + info + "=old"}},
    };
    for (const auto &taker : takers) {
        moved(taker.name, taker.lines + QByteArrayList{"f a.txt=1"}, "a.txt", taker.lines + second);
    }

    // What does not.
    const QByteArrayList first{item("f a.txt=1"), record("a.txt", "@/a.txt")};
    const struct
    {
        const char *name;
        QByteArray line;
    } others[] = {
        {"other case", item("f A.txt=old")},
        {"longer", item("f a.txt.b=old")},
        {"the second name", item("f a.2.txt=old")},
        {"item's name in info/", "f home/.trash/info/a.txt=old"},
        {"record's name in files/", item("f a.txt.trashinfo=old")},
        {"name in the trash itself", "f home/.trash/a.txt=old"},
    };
    for (const auto &other : others) {
        moved(other.name, {other.line, "f a.txt=1"}, "a.txt", QByteArrayList{other.line} + first);
    }

    // The counter goes on for items and records alike.
    QByteArrayList lines{item("f a.txt=old"), "f home/.trash/info/a.2.txt.trashinfo=old",
                         item("d a.3.txt"), item("l a.4.txt>gone")};
    moved("third free: item, record, directory, link", lines + QByteArrayList{"f a.txt=1"}, "a.txt",
          lines + QByteArrayList{item("f a.5.txt=1"), record("a.5.txt", "@/a.txt")});
    lines = QByteArrayList{item("f a=old")};
    for (int i = 2; i < 12; ++i)
        lines += item("f a." + QByteArray::number(i) + "=old");
    moved("two digits", lines + QByteArrayList{"f a=1"}, "a",
          lines + QByteArrayList{item("f a.12=1"), record("a.12", "@/a")});
    lines = QByteArrayList{item("f a.txt=old"), item("f a.3.txt=old")};
    moved("a gap is used", lines + QByteArrayList{"f a.txt=1"}, "a.txt", lines + second);

    const QByteArrayList directory{item("d sub.d"), item("f sub.d/old=1")};
    moved("directory", directory + QByteArrayList{"d sub.d", "f sub.d/new=2"}, "sub.d/",
          directory
              + QByteArrayList{item("d sub.2.d"), item("f sub.2.d/new=2"),
                               record("sub.2.d", "@/sub.d")});
    moved("link to a directory", directory + QByteArrayList{"d a", "l sub.d>a"}, "sub.d",
          directory + QByteArrayList{"d a", item("l sub.2.d>a"), record("sub.2.d", "@/sub.d")});
}

void tst_CDirTrash::taken()
{
    checkRow();
}

void tst_CDirTrash::failures_data()
{
    addColumns();

    unmoved("no trash", {"d home", "f a=1"}, "a", kFailed);
    unmoved("no trash, no path", {"d home"}, "a", kFailed);
    unmoved("no trash, empty path", {"d home"}, "", kFailed);
    unmoved("missing", kTrash, "a", kNoSuchPath);
    unmoved("missing, absolute", kTrash, "@/a", kNoSuchPath);
    unmoved("missing directory", kTrash, "@/a/b", kNoSuchPath);
    unmoved("empty path", kTrash, "", kNoSuchPath);
    unmoved("below a file", kTrash + QByteArrayList{"f a=1"}, "a/b", kNoSuchPath);
    unmoved("other case", kTrash + QByteArrayList{"f a=1"}, "A", kNoSuchPath);
    unmoved("broken link", kTrash + QByteArrayList{"l a>gone"}, "a", kNoSuchPath);
    unmoved("link to itself", kTrash + QByteArrayList{"l a>a"}, "a", kNoSuchPath);
    unmoved("missing, though in the trash", kTrash + QByteArrayList{item("f a=1")}, "a",
            kNoSuchPath);
    unmoved("too long name", kTrash, QByteArray(256, 'n'), kNoSuchPath);

    unmoved("the trash itself", kTrash, "home/.trash", kFailed);
    unmoved("the trash's files/", kTrash, "home/.trash/files", kFailed);
    unmoved("what contains the trash", kTrash, "home", kFailed);
    unmoved("the root", kTrash, "/", kFailed);
    unmoved("on the file system of processes", kTrash, "/proc/self/status", kFailed);
    unmoved("directory on the file system of processes", kTrash, "/proc/sys", kFailed);
}

void tst_CDirTrash::failures()
{
    checkRow();
}

void tst_CDirTrash::missingParts_data()
{
    addColumns();

    const QByteArrayList trash{"d home", "d home/.trash"};
    const auto failed = [&trash](const char *name, const QByteArrayList &parts) {
        unmoved(name, trash + parts + QByteArrayList{"f a=1"}, "@/a", kFailed);
    };
    const auto movedOnly = [&trash](const char *name, const QByteArrayList &parts) {
        QTest::newRow(name) << trash + parts + QByteArrayList{"f a=1"} << QByteArray("@/a")
                            << kMoved << trash + parts + QByteArrayList{item("f a=1")};
    };
    const QByteArray files = "d home/.trash/files";
    const QByteArray info = "d home/.trash/info";

    failed("neither", {});
    failed("no files/", {info});
    failed("files is a file", {info, "f home/.trash/files=1"});
    failed("files is a broken link", {info, "l home/.trash/files>gone"});
    movedOnly("no info/", {files});
    movedOnly("info is a file", {files, "f home/.trash/info=1"});
    movedOnly("info is a broken link", {files, "l home/.trash/info>gone"});
    unmoved("no files/, no path", trash, "a", kNoSuchPath);

    QTest::newRow("both are links to directories") << trash
            + QByteArrayList{"d x", "d y", "l home/.trash/files>../../x",
                             "l home/.trash/info>../../y", "f a=1"}
                                                   << QByteArray("a") << kMoved
                                                   << trash
            + QByteArrayList{"d x",
                             "d y",
                             "l home/.trash/files>../../x",
                             "l home/.trash/info>../../y",
                             "f x/a=1",
                             "f664 y/a.trashinfo=[Trash Info]\nPath=@/a\nDeletionDate=#\n"};
}

void tst_CDirTrash::missingParts()
{
    checkRow();
}

// A name has at most 255 bytes on all usual file systems.
void tst_CDirTrash::longNames_data()
{
    addColumns();

    const QByteArray shorter(245, 'n'); // its record has 255
    const QByteArray longer(246, 'n');
    const QByteArray longest(255, 'n');
    moved("245: with a record", {"f " + shorter + "=1"}, shorter,
          {item("f " + shorter + "=1"), record(shorter, "@/" + shorter)});
    moved("246: without a record", {"f " + longer + "=1"}, longer, {item("f " + longer + "=1")});
    moved("255: without a record", {"f " + longest + "=1"}, longest, {item("f " + longest + "=1")});
    unmoved("255, taken: no place for the counter",
            kTrash + QByteArrayList{item("f " + longest + "=old"), "f " + longest + "=1"}, longest,
            kFailed);
}

void tst_CDirTrash::longNames()
{
    checkRow();
}

void tst_CDirTrash::twice()
{
    const FileTree tree(kTrash);
    QVERIFY(tree.isValid());
    const EnvironmentVariable home("HOME", tree.root() + "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", QByteArray());
    QByteArrayList expected = kTrash;
    for (const char *const name : {"a.txt", "a.2.txt", "a.3.txt", "a.4.txt"}) {
        const QByteArray content = QByteArray("=") + name;
        QVERIFY(FileTree::make("f a.txt" + content));
        QCOMPARE(CDir::moveToTrash(QStringLiteral("a.txt")), kMoved);
        expected += item(QByteArray("f ") + name + content);
        expected += tree.expanded(record(name, "@/a.txt"));
        QByteArrayList dates;
        QCOMPARE(dated(tree.lines(), &dates), FileTree::complete(expected));
    }
}

void tst_CDirTrash::date_data()
{
    QTest::addColumn<QString>("locale");

    for (const char *const name : {"C", "en_US", "de_DE", "ar_EG", "fa_IR", "hi_IN", "my_MM"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

// The digits are those of ASCII, the time is that of the zone, whatever the locale.
void tst_CDirTrash::date()
{
    QFETCH(const QString, locale);
    const DefaultLocale defaultLocale(locale);
    const FileTree tree(kTrash + QByteArrayList{"f a=1"});
    QVERIFY(tree.isValid());
    const EnvironmentVariable home("HOME", tree.root() + "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", QByteArray());
    const EnvironmentVariable zone("TZ", "<+0545>-5:45");

    const QByteArray earliest = clockText();
    QCOMPARE(CDir::moveToTrash(QStringLiteral("a")), kMoved);
    const QByteArray latest = clockText();
    QByteArrayList dates;
    QCOMPARE(dated(tree.lines(), &dates),
             FileTree::complete(
                 kTrash + QByteArrayList{item("f a=1"), tree.expanded(record("a", "@/a"))}));
    QCOMPARE(dates.size(), 1);
    QVERIFY2(earliest <= dates.first() && dates.first() <= latest, dates.first().constData());
}

// The record is UTF-8 even where file names are not.
void tst_CDirTrash::encoding()
{
    const FileTree tree(kTrash + QByteArrayList{"f \xe4=1"});
    QVERIFY(tree.isValid());
    const EnvironmentVariable home("HOME", tree.root() + "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", QByteArray());
    const LocalEncoding latin1("ISO-8859-1");
    QCOMPARE(CDir::moveToTrash(QStringLiteral("\u00e4")), kMoved);
    QByteArrayList dates;
    QCOMPARE(dated(tree.lines(), &dates),
             FileTree::complete(
                 kTrash
                 + QByteArrayList{item("f \xe4=1"), tree.expanded(record("\xe4", "@/\xc3\xa4"))}));
}

// Whether the record could be written is not told.
void tst_CDirTrash::fullDisk()
{
    const FileTree tree(kTrash + QByteArrayList{"f a=1"});
    QVERIFY(tree.isValid());
    const EnvironmentVariable home("HOME", tree.root() + "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", QByteArray());
    const MessageRecorder recorder;
    int result = -1;
    {
        const FileSizeLimit limit(0);
        QVERIFY(limit.isValid());
        result = CDir::moveToTrash(QStringLiteral("a"));
    }
    QCOMPARE(result, kMoved);
    QCOMPARE(tree.lines(),
             FileTree::complete(
                 kTrash + QByteArrayList{item("f a=1"), "f664 home/.trash/info/a.trashinfo="}));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CDirTrash::otherFileSystem_data()
{
    QTest::addColumn<QByteArrayList>("lines");

    QTest::newRow("file") << QByteArrayList{"f a=1"};
    QTest::newRow("empty directory") << QByteArrayList{"d a"};
    QTest::newRow("directory") << QByteArrayList{"d a", "f a/b=1", "d a/c", "f a/c/d=2"};
    QTest::newRow("link to a file") << QByteArrayList{"l a>b", "f b=1"};
}

// Nothing is copied there and deleted here. Without a second file system where files can be made,
// the item is one of the processes'.
void tst_CDirTrash::otherFileSystem()
{
    QFETCH(const QByteArrayList, lines);
    const FileTree tree(kTrash);
    QVERIFY(tree.isValid());
    const EnvironmentVariable home("HOME", tree.root() + "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", QByteArray());
    const auto elsewhere = directoryElsewhere(tree.root());
    const QByteArray base = elsewhere ? QFile::encodeName(elsewhere->path()) : QByteArray("/proc");
    if (elsewhere) {
        for (QByteArray line : lines)
            QVERIFY(FileTree::make(line.replace(line.indexOf(' '), 1, ' ' + base + '/')));
    }
    const MessageRecorder recorder;
    QCOMPARE(CDir::moveToTrash(QFile::decodeName(base + (elsewhere ? "/a" : "/self/status"))),
             kFailed);
    QCOMPARE(tree.lines(), FileTree::complete(kTrash));
    if (elsewhere)
        QCOMPARE(FileTree::linesOf(base), FileTree::complete(lines));
    QCOMPARE(recorder.messages(), QStringList());
}

// Such a name cannot be told as a path; nothing else is taken in its place.
void tst_CDirTrash::undecodable()
{
    const QByteArrayList before = kTrash + QByteArrayList{"f a\xff=1", "d \xfe", "f \xfe/b=2"};
    const FileTree tree(before);
    QVERIFY(tree.isValid());
    const EnvironmentVariable home("HOME", tree.root() + "/home");
    const EnvironmentVariable data("XDG_DATA_HOME", QByteArray());
    for (const QByteArray &path : {QByteArray("a\xff"), QByteArray("\xfe"), QByteArray("\xfe/b")}) {
        QCOMPARE(CDir::moveToTrash(QFile::decodeName(path)), kNoSuchPath);
        QCOMPARE(tree.lines(), FileTree::complete(before));
    }
}

QTEST_APPLESS_MAIN(tst_CDirTrash)

#include "tst_CDirTrash.moc"
