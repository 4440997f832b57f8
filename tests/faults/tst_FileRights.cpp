#include "Operations.h"
#include "Playground.h"

#include "../MessageRecorder.h"

#include <QtTest>

#include <grp.h>
#include <sys/prctl.h>
#include <sys/wait.h>

// What file operations do and say where rights lack. Nothing lacks root, so that where root runs the
// tests, they run as a user of whom nothing else is.

namespace {

using namespace Operations;

//! Gives an entry of the tree another mode first, so that there can be something in a closed
//! directory.
std::function<Run()> with(const char *path, mode_t mode, const Run &run)
{
    return [path, mode, run] { return chmod(path, mode) == 0 ? run : Run(); };
}

Operation without(const char *name, const Lines &before, const char *path, mode_t mode,
                  const Run &run)
{
    return Operation(name, before, {}).prepared(with(path, mode, run));
}

//! A temporary directory with a closed one in it, which is open again in the end.
Run removeTemporaryDirectory()
{
    const auto directory = filledTemporaryDir();
    const QByteArray closed = QFile::encodeName(directory->path()) + "/sub";
    if (chmod(closed.constData(), 0000) != 0)
        return {};
    return [directory, closed] {
        const bool ok = directory->remove();
        return Result(ok || chmod(closed.constData(), 0755) != 0);
    };
}

Result loadArchive()
{
    CTar tar;
    const bool ok = tar.loadFile(text("a.tar"));
    return Result(ok || tar.error().isEmpty());
}

const Lines kSmallTree{"d t", "f t/a=1", "d t/d", "f t/d/b=2", "d t/z", "f t/z/c=3"};
const Lines kParent{"d p", "d p/t", "f p/t/a=1"};
const Lines kClosed{"d closed", "f closed/x=1", "d e", "f e/a=2"};
const Lines kLink{"d closed", "d closed/d", "l link>closed/d", "d e", "f e/a=1", "f a=2"};

constexpr mode_t kNone = 0000;
constexpr mode_t kReadOnly = 0555;
constexpr mode_t kNamesOnly = 0444; // lists, but shows nothing of its entries

std::vector<Operation> removals()
{
    return {
        without("tree with a closed directory", kSmallTree, "t/d", kNone, removeTree("t"))
            .fails()
            .removes({"t/a", "t/z"}),
        without("tree with a closed empty directory", {"d t", "d t/d"}, "t/d", kNone,
                removeTree("t"))
            .removes({"t"}),
        without("tree with a read-only directory",
                kSmallTree + Lines{"l t/d/link>../../out/sub/deep"}, "t/d", kReadOnly,
                removeTree("t"))
            .fails()
            .removes({"t/a", "t/z"}),
        without("tree with a directory of names only", kSmallTree, "t/d", kNamesOnly,
                removeTree("t"))
            .fails()
            .removes({"t/a", "t/z"}),
        without("tree that is closed itself", kSmallTree, "t", kNone, removeTree("t")).fails(),
        without("tree in a read-only directory", kParent, "p", kReadOnly, removeTree("p/t"))
            .fails()
            .removes({"p/t/a"}),
        without("tree in a closed directory", kParent, "p", kNone, removeTree("p/t")).fails(),
        without("nothing in a closed directory", kClosed, "closed", kNone,
                removeTree("closed/gone"))
            .fails(),
        without(".. behind a closed directory", kClosed, "closed", kNone, removeTree("closed/../e"))
            .fails(),
        without(".. behind a link into a closed directory", kLink, "closed", kNone,
                removeTree("link/../e"))
            .fails(),
        Operation(".. behind nothing", kClosed, removeTree("gone/../e")),
        Operation(".. behind a broken link", kClosed + Lines{"l link>gone"},
                  removeTree("link/../e")),
        Operation(".. behind a file", kClosed + Lines{"f f=1"}, removeTree("f/../e")),
        without("entry in a closed directory", kClosed, "closed", kNone, removeEntry("closed/x"))
            .fails()
            .prints(cannotRemove("closed/x")),
        without("no entry in a closed directory", kClosed, "closed", kNone,
                removeEntry("closed/gone"))
            .fails()
            .prints(cannotRemove("closed/gone")),
        without("entry in a read-only directory", kClosed, "closed", kReadOnly,
                removeEntry("closed/x"))
            .fails()
            .prints(cannotRemove("closed/x")),
        Operation("temporary directory with a closed one", {}, {})
            .prepared(removeTemporaryDirectory)
            .fails()
            .removes({"@temporary"}),
    };
}

std::vector<Operation> treeCopies()
{
    const std::vector<Operation> failures{
        without("copy of a tree with a closed directory", kSmallTree, "t/d", kNone,
                copyTree("t", "n")),
        without("copy of a tree with a directory of names only", kSmallTree, "t/d", kNamesOnly,
                copyTree("t", "n")),
        without("copy of a tree with a closed empty directory", {"d t", "d t/d"}, "t/d", kNone,
                copyTree("t", "n")),
        without("copy of a closed tree", kSmallTree, "t", kNone, copyTree("t", "n")),
        without("copy of a tree with a closed file", kSmallTree, "t/z/c", kNone,
                copyTree("t", "n")),
        without("copy of a tree to a read-only directory", kSmallTree + Lines{"d n"}, "n",
                kReadOnly, copyTree("t", "n")),
        without("copy of a tree to a closed directory", kSmallTree + Lines{"d n"}, "n", kNone,
                copyTree("t", "n")),
        without("copy of a tree from a closed directory", kParent, "p", kNone,
                copyTree("p/t", "n"))};
    std::vector<Operation> operations{
        without("copy of a tree with a read-only directory", kSmallTree + Lines{"d n"}, "t/d",
                kReadOnly, copyTree("t", "n"))
            .makes({"f n/a=1", "d775 n/d", "f n/d/b=2", "d775 n/z", "f n/z/c=3"})};
    for (Operation operation : failures)
        operations.push_back(operation.fails().prints(cannotCopyTree("n")));
    return operations;
}

std::vector<Operation> copies()
{
    const Lines file{"f a=1", "d n", "f n/b=2"};
    return {
        without("copy of a closed file", {"f a=1"}, "a", kNone, copyFile("a", "b"))
            .fails()
            .prints(cannotCopy("b")),
        without("copy to a read-only directory", file, "n", kReadOnly, copyFile("a", "n/c"))
            .fails()
            .prints(cannotCopy("n/c")),
        without("copy to a closed directory", file, "n", kNone, copyFile("a", "n/c"))
            .fails()
            .prints(cannotCopy("n/c")),
        without("copy, .. behind a closed directory", {"d closed", "f a=1"}, "closed", kNone,
                copyFile("a", "closed/../b"))
            .fails()
            .prints(cannotCopy("closed/../b")),
        without("copy over a file in a closed directory", file, "n", kNone, copyFileF("a", "n/b"))
            .fails(),
        // Contract: the backup cannot be made, nothing is changed, and that is no failure.
        without("copy over a file in a read-only directory", file, "n", kReadOnly,
                copyFileF("a", "n/b")),
        // Contract: the old content is given up before.
        without("copy of a closed file over a file", {"f a=1", "f b=2"}, "a", kNone,
                copyFileF("a", "b"))
            .fails()
            .removes({"b"}),
        without("copy over a file, .. behind a link into a closed directory", kLink, "closed",
                kNone, copyFileF("e/a", "link/../a"))
            .fails(),
        without("directory in a read-only one", {"d n"}, "n", kReadOnly, copyDirectory("n/a"))
            .fails()
            .prints(cannotCreate("n/a")),
        without("directory in a closed one", {"d n", "d n/a"}, "n", kNone, copyDirectory("n/a"))
            .fails()
            .prints(cannotCreate("n/a")),
        without("directory that is closed", {"d n"}, "n", kNone, copyDirectory("n")),
    };
}

std::vector<Operation> otherUses()
{
    const Lines file = kTrash + Lines{"d n", "f n/a=1"};
    return {
        without("trash, from a read-only directory", file, "n", kReadOnly, trash("n/a")).fails(),
        without("trash, from a closed directory", file, "n", kNone, trash("n/a")).fails(),
        without("trash, no items may be added", file, "home/.local/share/Trash/files", kReadOnly,
                trash("n/a"))
            .fails(),
        // Contract: whether the record could be written is not told.
        without("trash, no records may be added", file, "home/.local/share/Trash/info", kReadOnly,
                trash("n/a"))
            .removes({"n/a"})
            .makes({item("f", "a=1")}),
        without("archive that is closed", {"f a.tar=1"}, "a.tar", kNone, loadArchive).fails(),
        without("path in a read-only directory", {"d n"}, "n", kReadOnly,
                [] { return QStringList(CPath::createDirIfWanted(text("n/a"), true)); })
            .tells(),
    };
}

//! The lines of the tree, those of closed directories included.
Lines allLines(const Playground &playground)
{
    Lines lines = playground.lines();
    const Lines visible = lines;
    for (const QByteArray &line : visible) {
        struct stat own;
        const QByteArray name = nameOf(line);
        if (!line.startsWith('d') || stat(name.constData(), &own) != 0
            || (own.st_mode & 0500) == 0500)
            continue;
        chmod(name.constData(), 0700);
        const Lines inside = FileTree::linesOf(name);
        chmod(name.constData(), own.st_mode & 07777);
        for (QByteArray entry : inside)
            lines += entry.insert(entry.indexOf(' ') + 1, name + '/');
    }
    const auto isUnreadable = [](const QByteArray &line) { return line.startsWith("unreadable"); };
    lines.erase(std::remove_if(lines.begin(), lines.end(), isUnreadable), lines.end());
    return lines;
}

} // namespace

class tst_FileRights : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void rights_data();
    void rights();

private:
    const Playground mPlayground;
    const std::vector<Operation> mOperations
        = joined({removals(), treeCopies(), copies(), otherUses()});
};

void tst_FileRights::initTestCase()
{
    QVERIFY(geteuid() != 0);
    QVERIFY(mPlayground.isValid());
}

void tst_FileRights::rights_data()
{
    QTest::addColumn<int>("index");

    int index = 0;
    for (const Operation &operation : mOperations)
        QTest::newRow(operation.name) << index++;
}

void tst_FileRights::rights()
{
    QFETCH(const int, index);
    const Operation &operation = mOperations.at(static_cast<size_t>(index));
    QVERIFY(mPlayground.make(kOutside + operation.before));
    const Run run = operation.prepare();
    QVERIFY(run);
    Lines expected = FileTree::complete(operation.made);
    for (const QByteArray &line : allLines(mPlayground)) {
        if (!isBelow(nameOf(line), operation.lost))
            expected += line;
    }

    Result result(false);
    const MessageRecorder recorder; // the framework may say what it likes
    const QByteArray printed = outputOf([&] { result = run(); }).replace(mPlayground.root(), "@");

    QByteArrayList changed = changes(expected, allLines(mPlayground));
    // A copy that failed may have made what it could.
    if (result.kind == Result::False) {
        changed.erase(std::remove_if(changed.begin(), changed.end(),
                                     [](const QByteArray &change) {
                                         return isBelow(change, {"+n"}) || change == "+t"
                                             || change.startsWith("+@temporary");
                                     }),
                      changed.end());
    }
    QCOMPARE(changed.join(", "), QByteArray());
    QCOMPARE(result.kind, operation.result);
    QVERIFY(!result.told.contains(QStringLiteral("no such path")));
    const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(QString::fromUtf8(operation.printed)));
    QVERIFY2(pattern.match(QString::fromUtf8(printed)).hasMatch(), printed.constData());
}

namespace {

// Becomes a user of whom no file is; whether the process may be looked at stays.
bool giveUpRights()
{
    constexpr id_t nobody = 65534;
    return setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0
        && prctl(PR_SET_DUMPABLE, 1) == 0;
}

int runTests(int argc, char *argv[])
{
    tst_FileRights test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

int main(int argc, char *argv[])
{
    if (geteuid() != 0)
        return runTests(argc, argv);
    const pid_t child = fork();
    if (child == 0)
        return giveUpRights() ? runTests(argc, argv) : 1;
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

#include "tst_FileRights.moc"
