#include "Faults.h"
#include "Operations.h"
#include "Playground.h"

#include "../MessageRecorder.h"

#include <QtTest>

#include <atomic>
#include <cerrno>
#include <thread>

// What file operations do while something else changes the same files. A change comes before the
// first, the second, and so on up to the last of the calls that an operation makes on files, so that
// no moment is left out, and none is left to chance.

namespace {

using namespace Operations;

//! Does what something else does to the files, and returns whether that was possible.
using Change = std::function<bool()>;

struct Race
{
    const char *name;
    Operation operation;
    Change change;
    QByteArrayList free;               //!< the entries that the operation and the change may change
    Lines theirs = Lines();            //!< what the change made, which must be there in the end
    QByteArray content = QByteArray(); //!< the end of a line that must be there in the end

    Race &leaves(Lines lines) { return theirs = std::move(lines), *this; }
    Race &keeps(QByteArray end) { return content = std::move(end), *this; }
};

//! Exchanges two entries, in one step where the file system can.
Change exchange(const char *one, const char *other)
{
    return [one, other] {
        if (renameat2(AT_FDCWD, one, AT_FDCWD, other, RENAME_EXCHANGE) == 0)
            return true;
        const bool isUnknown = errno == EINVAL || errno == ENOSYS;
        return isUnknown && access(other, F_OK) == 0 && rename(one, "aside") == 0
            && rename(other, one) == 0 && rename("aside", other) == 0;
    };
}

Change move(const char *from, const char *to)
{
    return [from, to] { return rename(from, to) == 0; };
}

//! Makes an entry, and replaces none.
Change make(const QByteArray &line)
{
    return [line] { return FileTree::make(line); };
}

const Lines kVictim{"d victim", "f victim/a=precious", "d victim/deep", "f victim/deep/b=precious"};
const Lines kTarget = Lines{"d t",           "f t/a=1",       "d t/sub",
                            "f t/sub/a=2",   "d t/sub/deep",  "f t/sub/deep/b=3",
                            "d t/sub/empty", "l link>victim", "l t/link>../victim"}
    + kVictim;

//! The link is read in the tree and one level below: the victim's path is absolute.
Run withAbsoluteLink(const Run &run)
{
    const QByteArray victim = QFile::encodeName(inTree("victim"));
    const bool isMade = unlink("link") == 0 && symlink(victim.constData(), "link") == 0;
    return isMade ? run : Run();
}

Operation removal(const char *path)
{
    return Operation("", kTarget, {}).prepared([path] {
        return withAbsoluteLink(removeTree(path));
    });
}

// An exchange in the tree that is removed, and of the link to the victim.
Race exchangeIn(const char *name, const char *path, const char *one, const char *other)
{
    return {name, removal(path), exchange(one, other), {"t", "link"}};
}

// The same in a temporary directory, whose name is known only when it is made.
Race exchangeInTemporaryDirectory()
{
    const auto path = std::make_shared<QByteArray>();
    const auto prepare = [path]() -> Run {
        const auto directory = filledTemporaryDir();
        *path = QFile::encodeName(directory->path()) + "/sub";
        return withAbsoluteLink([directory] { return Result(directory->remove()); });
    };
    return {"temporary directory, a directory becomes a link",
            Operation("", Lines{"l link>victim"} + kVictim, {}).prepared(prepare),
            [path] { return exchange(path->constData(), "link")(); },
            {"@temporary", "link"}};
}

// A file or a link that appears where one is written to.
Race appearance(const char *name, const Lines &before, const Run &run, const QByteArray &line,
                const QByteArrayList &free)
{
    return Race{name, Operation("", before, run), make(line), free}.leaves({line});
}

// The same in the trash; what is moved there is never lost.
Race appearanceInTrash(const char *name, const QByteArray &line)
{
    return appearance(name, kTrash + Lines{"d a.b", "f a.b/in=1"}, trash("a.b"), line,
                      {"a.b", "home"})
        .keeps("/in=1");
}

std::vector<Race> races()
{
    const Lines files{"f a=new", "f b=old"};
    return {
        exchangeIn("removal, a directory becomes a link", "t", "t/sub", "link"),
        exchangeIn("removal, a deep directory becomes a link", "t", "t/sub/deep", "link"),
        exchangeIn("removal, the tree becomes a link", "t", "t", "link"),
        exchangeIn("removal, the tree becomes a link, slash", "t/", "t", "link"),
        exchangeIn("removal, a link becomes a directory", "link", "t", "link"),
        exchangeIn("removal, a directory becomes a file", "t", "t/sub", "t/a"),
        {"removal, a directory moves away",
         removal("t"),
         move("t/sub/deep", "victim/moved"),
         {"t", "link", "victim/moved"}},
        {"removal, a directory moves up",
         removal("t"),
         move("t/sub/deep", "moved"),
         {"t", "link", "moved"}},
        exchangeInTemporaryDirectory(),

        appearance("copy, the target appears", {"f a=new"}, copyFile("a", "b"), "f b=theirs",
                   {"b"}),
        appearance("copy over a file, the backup appears", files, copyFileF("a", "b"),
                   "f ~b=theirs", {"b", "~b"}),
        appearance("copy over a file, a link appears as the backup", files, copyFileF("a", "b"),
                   "l ~b>out/keep", {"b", "~b"}),
        appearance("copy over a file, another file appears", files, copyFileF("a", "b"),
                   "f b=theirs", {"b", "~b"}),
        appearance("copy of a tree, a file appears", {"d s", "f s/a=new", "d t"},
                   copyTree("s", "t"), "f t/a=theirs", {"t"}),
        {"copy of a tree, a directory becomes a link",
         Operation("", kTarget + Lines{"d n"}, copyTree("t", "n")),
         exchange("t/sub", "link"),
         {"t", "link", "n"}},
        appearance("directory, another appears", {"d x"}, copyDirectory("x/y"), "d700 x/y",
                   {"x/y"}),

        appearance("trash, a file appears", kTrash + Lines{"f a.b=1"}, trash("a.b"),
                   item("f", "a.b=theirs"), {"a.b", "home"})
            .keeps("=1"),
        appearanceInTrash("trash, a file appears, for a directory", item("f", "a.b=theirs")),
        appearanceInTrash("trash, a link appears", item("l", "a.b>gone")),
        appearanceInTrash("trash, a directory appears", item("d700", "a.b")),
        appearanceInTrash("trash, a record appears",
                          "f home/.local/share/Trash/info/a.b.trashinfo=theirs"),
    };
}

//! A change that comes in the middle of an operation.
struct Meddler
{
    const Change &change;
    bool hasCome = false;
    bool hasChanged = false;
};

void meddle(void *meddler)
{
    Meddler &self = *static_cast<Meddler *>(meddler);
    self.hasCome = true;
    self.hasChanged = self.change();
}

} // namespace

class tst_FileRaces : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void moments_data();
    void moments();
    void threads_data();
    void threads();

private:
    // What must be true afterwards. Whether the operation says that it went well depends on the
    // moment.
    static void check(const Race &race, const Lines &before, const Lines &after, bool hasChanged);

    const Playground mPlayground;
    const std::vector<Race> mRaces = races();
};

void tst_FileRaces::initTestCase()
{
    QVERIFY(mPlayground.isValid());
}

void tst_FileRaces::moments_data()
{
    QTest::addColumn<int>("index");

    int index = 0;
    for (const Race &race : mRaces)
        QTest::newRow(race.name) << index++;
}

void tst_FileRaces::check(const Race &race, const Lines &before, const Lines &after,
                          bool hasChanged)
{
    for (const QByteArray &change : changes(before, after)) {
        const QByteArray name = change.startsWith('+') || change.startsWith('-')
            ? change.mid(1)
            : change.mid(change.indexOf(' ') + 1);
        QVERIFY2(isBelow(name, race.free), change.constData());
    }
    if (hasChanged) {
        for (const QByteArray &line : FileTree::complete(race.theirs))
            QVERIFY2(after.contains(line), line.constData());
    }
    QVERIFY(std::any_of(after.begin(), after.end(),
                        [&race](const QByteArray &line) { return line.endsWith(race.content); }));
}

// Up to the moment that the operation does not reach any more.
void tst_FileRaces::moments()
{
    QFETCH(const int, index);
    const Race &race = mRaces.at(static_cast<size_t>(index));
    int changes = 0;
    bool hasCome = true;
    for (int moment = 1; hasCome; ++moment) {
        QVERIFY(mPlayground.make(kOutside + race.operation.before));
        const Run run = race.operation.prepare();
        QVERIFY(run);
        const Lines before = mPlayground.lines();
        Meddler meddler{race.change};
        Faults::Plan plan;
        plan.first = moment;
        plan.before = &meddle;
        plan.context = &meddler;
        const MessageRecorder recorder;
        outputOf([&] {
            Faults::arm(mPlayground.base().toStdString(), plan);
            run();
            Faults::disarm();
        });
        hasCome = meddler.hasCome;
        changes += meddler.hasChanged ? 1 : 0;
        check(race, before, mPlayground.lines(), meddler.hasChanged);
        if (QTest::currentTestFailed()) {
            qWarning("before call %d", moment);
            return;
        }
    }
    QVERIFY(changes > 0);
}

void tst_FileRaces::threads_data()
{
    moments_data();
}

// The same with a thread that changes and changes, without a pause.
void tst_FileRaces::threads()
{
    constexpr int kRounds = 50;
    QFETCH(const int, index);
    const Race &race = mRaces.at(static_cast<size_t>(index));
    for (int round = 0; round < kRounds; ++round) {
        QVERIFY(mPlayground.make(kOutside + race.operation.before));
        const Run run = race.operation.prepare();
        QVERIFY(run);
        const Lines before = mPlayground.lines();
        std::atomic<bool> isOver{false};
        const MessageRecorder recorder;
        outputOf([&] {
            std::thread other([&] {
                while (!isOver)
                    race.change();
            });
            run();
            isOver = true;
            other.join();
        });
        check(race, before, mPlayground.lines(), false);
        if (QTest::currentTestFailed())
            return;
    }
}

QTEST_APPLESS_MAIN(tst_FileRaces)

#include "tst_FileRaces.moc"
