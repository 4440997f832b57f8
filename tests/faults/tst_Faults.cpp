#include "Faults.h"
#include "Operations.h"
#include "Playground.h"

#include "../MessageRecorder.h"

#include <QCoreApplication>
#include <QtTest>

#include <cerrno>
#include <csignal>

#include <sys/mman.h>
#include <sys/sendfile.h>

// Each operation is run once for every call that it makes on files, for every error and twice: that
// call fails alone, or all calls from it on do. What it says afterwards must be true.

namespace {

struct Error
{
    const char *name;
    int code;
    //! How many calls "from then on" are. No signal comes for ever: code that is interrupted rightly
    //! tries again until it gets through.
    int onward;
};

constexpr Error kErrors[]{{"ENOSPC", ENOSPC, Faults::kForever},
                          {"EIO", EIO, Faults::kForever},
                          {"EACCES", EACCES, Faults::kForever},
                          {"EXDEV", EXDEV, Faults::kForever},
                          {"EINTR", EINTR, 8},
                          {"EMFILE", EMFILE, Faults::kForever}};

constexpr Error kHalf{"half of the bytes", 0, Faults::kForever};

//! What an operation may say though a call failed.
struct Known
{
    const char *operation; //!< "copy*": all whose names begin with "copy"
    const char *call;      //!< the first that failed
    //! A pattern of each entry that is not as it is without faults; empty: all are.
    const char *changes;
    const char *reason;
};

const Known kKnown[]{
    {"copy*", "fdatasync", "", "QFile::copy() does not look at the result"},
    {"copy*", "close", "", "QFile::copy() does not look at the result"},
    {"copy*", "close", "mode .*", "QFile::copy() does not look at the result"},
    {"copy*", "chmod", "mode .*", "QFile::copy() does not look at the result"},
    {"copy*", "statx", "mode .*", "QFile::copy() takes what it does not get for no permission"},
    {"copy*", "access", "mode .*", "QFile::copy() takes what it does not get for no permission"},
    {"copyDirectory", "open", "mode .*", "contract: that a directory is there is what counts"},
    {"copyDirectory", "fchmod", "mode .*", "contract: that a directory is there is what counts"},
    {"copyFileF, over a file", "unlink", "[+]~b", "contract: the copy is what counts"},
    {"copyFileF, over a file", "renameat2", "content b", "contract: without a backup, no copy"},
    {"copyFileF, over a file", "lstat", "content b", "contract: without a backup, no copy"},
    {"copyFileF, over a file", "rename", "content b", "contract: without a backup, no copy"},
    {"copyFileF, over a file, of*", "renameat2", "[+]b", "contract: without a backup, no copy"},
    {"copyFileF, over a file, of*", "lstat", "[+]b", "contract: without a backup, no copy"},
    {"copyFileF, over a file, of*", "rename", "[+]b", "contract: without a backup, no copy"},
    {"moveToTrash*", "open", "-home/.*/info/.*", "contract: the record is not told of"},
    {"moveToTrash*", "statx", "content home/.*/info/.*", "contract: the record is not told of"},
    {"moveToTrash*", "write", "content home/.*/info/.*", "contract: the record is not told of"},
    {"moveToTrash*", "close", "", "contract: the record is not told of"},
};

//! One run of an operation.
struct Trial
{
    Result result{false};
    QByteArray printed;
    Lines before;
    Lines after;
    std::vector<Faults::Call> calls;
    int leaked = 0; //!< descriptors
    bool hasThrown = false;
};

//! A plan with the words that tell it.
struct Fault
{
    Faults::Plan plan;
    QByteArray text;
};

//! Catches what is printed to the standard output.
class Output
{
public:
    Output() : mFile(memfd_create("output", MFD_CLOEXEC)) { }
    ~Output() { close(mFile); }

    void begin()
    {
        std::fflush(stdout);
        mSaved = dup(STDOUT_FILENO);
        dup2(mFile, STDOUT_FILENO);
    }

    QByteArray end()
    {
        std::fflush(stdout);
        dup2(mSaved, STDOUT_FILENO);
        close(mSaved);
        QByteArray text(static_cast<int>(lseek(mFile, 0, SEEK_END)), '\0');
        const bool isRead
            = pread(mFile, text.data(), static_cast<size_t>(text.size()), 0) == text.size();
        const bool isEmptied = ftruncate(mFile, 0) == 0 && lseek(mFile, 0, SEEK_SET) == 0;
        if (!isRead || !isEmptied)
            qFatal("The output cannot be captured.");
        return text;
    }

private:
    Q_DISABLE_COPY(Output)

    const int mFile;
    int mSaved = -1;
};

int openDescriptors()
{
    int count = 0;
    for (int i = 0; i < 256; ++i)
        count += fcntl(i, F_GETFD) >= 0 ? 1 : 0;
    return count;
}

//! Whether all \a parts are in \a whole, in that order.
bool isSubsequence(const QStringList &parts, const QStringList &whole)
{
    int position = 0;
    for (const QString &part : parts) {
        position = whole.indexOf(part, position) + 1;
        if (position == 0)
            return false;
    }
    return true;
}

bool matches(const QByteArray &text, const QByteArray &pattern)
{
    const QRegularExpression expression(QRegularExpression::anchoredPattern(
        QString::fromUtf8(QByteArray(pattern).replace('.', "\\."))));
    return expression.match(QString::fromUtf8(text)).hasMatch();
}

bool isWild(const char *pattern, const char *name)
{
    const QByteArray start = pattern;
    return start.endsWith('*') ? QByteArray(name).startsWith(start.chopped(1)) : start == name;
}

//! Whether \a pattern stands for each of \a texts; an empty one for none.
bool isAll(const char *pattern, const QByteArrayList &texts)
{
    const QRegularExpression expression(
        QRegularExpression::anchoredPattern(QString::fromUtf8(pattern)));
    return texts.isEmpty() == (*pattern == '\0')
        && std::all_of(texts.begin(), texts.end(), [&expression](const QByteArray &text) {
               return expression.match(QString::fromUtf8(text)).hasMatch();
           });
}

// What the watchdog says of a run that does not end.
char watched[512];

void watch(const Operation &operation, const QByteArray &text)
{
    qstrncpy(watched, (QByteArray(operation.name) + ", " + text + ": no end\n").constData(),
             sizeof watched);
}

void bark(int)
{
    const size_t size = strlen(watched);
    _exit(write(STDERR_FILENO, watched, size) == static_cast<ssize_t>(size) ? 1 : 2);
}

//! Makes a call on the file "f", the directory "d" or their descriptors, and returns whether it went
//! well.
using Use = bool (*)(int file, int directory);

} // namespace

Q_DECLARE_METATYPE(Use)

class tst_Faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void calls_data();
    void calls();
    void halves();
    void operations_data();
    void operations();
    void known();

public:
    explicit tst_Faults(const Playground &playground) : mPlayground(playground) { }

    //! What was tried, in one line.
    QByteArray summary() const;

private:
    Trial run(const Operation &operation, const Faults::Plan &plan, Faults::Support support) const;
    Lines normalized(Lines lines) const;
    QByteArrayList complaints(const Operation &operation, const Trial &clean, const Trial &trial,
                              const Fault &fault);
    void judgeSuccess(const Operation &operation, const Trial &clean, const Trial &trial,
                      const Fault &fault, QByteArrayList &complaints);
    static void judgeRest(const Operation &operation, const Trial &clean, const Trial &trial,
                          const Fault &fault, QByteArrayList &complaints);
    void judgeRemoval(const Trial &trial, const Fault &fault, const QByteArrayList &removed,
                      QByteArrayList &complaints) const;
    void tryAll(const Operation &operation, Faults::Support support, QByteArrayList &callsBefore,
                QByteArrayList &failures);

    static std::vector<Fault> faults(const Faults::Call &call, int number);

    const Playground &mPlayground;
    const std::vector<Operation> mOperations = Operations::all();
    mutable Output mOutput;
    QSet<int> mOccurred; // rows of the table of what is known
    int mPoints = 0;
    int mRuns = 0;
};

void tst_Faults::initTestCase()
{
    QVERIFY(mPlayground.isValid());
    std::signal(SIGALRM, &bark);
    QCOMPARE(QFile::encodeName(CPath::installPath()), mPlayground.root() + '/');
    // The first use of the settings is an operation of its own.
    QCOMPARE(CCompanyStrings::getCompanyShortName(), QStringLiteral("KORVALENT"));
}

void tst_Faults::calls_data()
{
    QTest::addColumn<Use>("use");

    static char byte = 'x';
    static struct stat status;
    static struct statx extendedStatus;
    const auto row = [](const char *name, Use use) { QTest::newRow(name) << use; };
    row("open", [](int, int) { return close(open("f", O_RDONLY)) == 0; });
    row("openat", [](int, int in) { return close(openat(in, "../f", O_RDONLY)) == 0; });
    row("read", [](int file, int) { return read(file, &byte, 1) == 1; });
    row("write", [](int file, int) { return write(file, &byte, 1) == 1; });
    row("close", [](int file, int) { return close(file) == 0; });
    row("fdatasync", [](int file, int) { return fdatasync(file) == 0; });
    row("lseek", [](int file, int) { return lseek(file, 0, SEEK_SET) == 0; });
    row("sendfile", [](int file, int) { return sendfile(file, file, nullptr, 1) == 1; });
    row("copy_file_range", [](int file, int) {
        loff_t end = 2;
        return copy_file_range(file, nullptr, file, &end, 1, 0) == 1;
    });
    row("rename", [](int, int) { return rename("f", "g") == 0; });
    row("renameat2", [](int, int in) { return renameat2(in, "../f", in, "g", 0) == 0; });
    row("linkat", [](int, int in) { return linkat(in, "../f", in, "g", 0) == 0; });
    row("mkdir", [](int, int) { return mkdir("n", 0755) == 0; });
    row("mkdirat", [](int, int in) { return mkdirat(in, "n", 0755) == 0; });
    row("rmdir", [](int, int) { return rmdir("d") == 0; });
    row("unlink", [](int, int) { return unlink("f") == 0; });
    row("unlinkat", [](int, int in) { return unlinkat(in, "../f", 0) == 0; });
    row("chmod", [](int, int) { return chmod("f", 0600) == 0; });
    row("fchmod", [](int file, int) { return fchmod(file, 0600) == 0; });
    row("fchmodat", [](int, int in) { return fchmodat(in, "../f", 0600, 0) == 0; });
    row("stat", [](int, int) { return stat("f", &status) == 0; });
    row("lstat", [](int, int) { return lstat("f", &status) == 0; });
    row("fstat", [](int file, int) { return fstat(file, &status) == 0; });
    row("fstatat", [](int, int in) { return fstatat(in, "../f", &status, 0) == 0; });
    row("statx", [](int, int in) { return statx(in, "../f", 0, 0, &extendedStatus) == 0; });
    row("realpath", [](int, int) {
        char buffer[PATH_MAX];
        return realpath("f", buffer) != nullptr;
    });
    row("opendir", [](int, int) {
        DIR *const directory = opendir("d");
        return directory && closedir(directory) == 0;
    });
    row("fdopendir", [](int, int in) {
        DIR *const directory = fdopendir(in);
        return directory && closedir(directory) == 0;
    });
    row("readdir", [](int, int) {
        DIR *const directory = opendir("d");
        const bool isRead = readdir(directory) != nullptr;
        return closedir(directory) == 0 && isRead;
    });
}

// What is to be tried is tried: the call fails if it is to, and is passed on if it is not.
void tst_Faults::calls()
{
    QFETCH(const Use, use);
    const QByteArray name = QTest::currentDataTag();
    for (const bool fails : {false, true}) {
        QVERIFY(mPlayground.make({"f f=12345678", "d d"}));
        const int file = open("f", O_RDWR | O_CLOEXEC);
        const int directory = open("d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        Faults::Plan plan;
        plan.first = name == "readdir" ? 2 : 1;
        plan.error = EDOM; // which no call gives by itself
        Faults::arm(mPlayground.base().toStdString(), fails ? plan : Faults::Plan());
        errno = 0;
        const bool ok = use(file, directory);
        const int error = errno;
        const std::vector<Faults::Call> made = Faults::disarm();
        close(file);
        close(directory);
        const auto isNamed = [&name](const Faults::Call &call) { return call.name == name; };
        QCOMPARE(std::count_if(made.begin(), made.end(), isNamed), 1);
        QCOMPARE(ok, !fails);
        if (fails && name != "open" && name != "openat" && name != "readdir")
            QCOMPARE(error, EDOM);
        // Not what lies elsewhere.
        Faults::arm(mPlayground.temporary().toStdString(), plan);
        struct stat status;
        const bool isSeen = stat(mPlayground.root().constData(), &status) == 0;
        QVERIFY(Faults::disarm().empty() && isSeen);
    }
}

void tst_Faults::halves()
{
    QVERIFY(mPlayground.make({"f f=12345678"}));
    const int file = open("f", O_RDWR | O_CLOEXEC);
    char buffer[100];
    Faults::Plan plan;
    plan.first = 1;
    plan.count = Faults::kForever;
    Faults::arm(mPlayground.base().toStdString(), plan);
    QList<ssize_t> sizes;
    for (int i = 0; i < 5; ++i)
        sizes += read(file, buffer, sizeof buffer);
    sizes += write(file, buffer, 5);
    Faults::disarm();
    close(file);
    QCOMPARE(sizes, (QList<ssize_t>{4, 2, 1, 1, 0, 3}));
}

// Puts marks into the place of what is another each time.
Lines tst_Faults::normalized(Lines lines) const
{
    struct Mark
    {
        const char *word; // without which there is nothing to do
        QRegularExpression pattern;
        QString mark;
    };
    static const Mark marks[]{
        {"@temporary/tst_Faults",
         QRegularExpression(QStringLiteral("(@temporary/tst_Faults)-[A-Za-z]{6}")),
         QStringLiteral("\\1-XXXXXX")},
        {"qt_temp", QRegularExpression(QStringLiteral("qt_temp[.][A-Za-z]{6}")),
         QStringLiteral("qt_temp-XXXXXX")},
        {"(deleted)", QRegularExpression(QStringLiteral("/#[0-9]+ .deleted.")),
         QStringLiteral("/unnamed")},
        {"Setup", QRegularExpression(QStringLiteral("etc/conf/Setup[0-9]+")),
         QStringLiteral("etc/conf/Setup")},
        {"DeletionDate", QRegularExpression(QStringLiteral("DeletionDate=[0-9T:.-]{23}Z")),
         QStringLiteral("DeletionDate=#")}};
    for (QByteArray &line : lines) {
        line.replace(mPlayground.root(), "@");
        line.replace(mPlayground.temporary(), "@temporary");
        for (const Mark &mark : marks) {
            if (line.contains(mark.word)) // Latin-1 keeps every byte
                line = QString::fromLatin1(line).replace(mark.pattern, mark.mark).toLatin1();
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

Trial tst_Faults::run(const Operation &operation, const Faults::Plan &plan,
                      Faults::Support support) const
{
    Trial trial;
    if (!mPlayground.make(Operations::kOutside + operation.before))
        qFatal("The tree of \"%s\" cannot be made.", operation.name);
    {
        const MessageRecorder recorder; // what the framework has to say is not judged
        const Run run = operation.prepare();
        trial.before = normalized(mPlayground.lines());
        const int descriptors = openDescriptors();
        mOutput.begin();
        alarm(60);
        Faults::arm(mPlayground.base().toStdString(), plan, support);
        try {
            trial.result = run();
        } catch (...) {
            trial.hasThrown = true;
        }
        trial.calls = Faults::disarm();
        alarm(0);
        trial.printed = mOutput.end().replace(mPlayground.root(), "@");
        trial.leaked = openDescriptors() - descriptors;
        trial.after = normalized(mPlayground.lines());
    }
    return trial;
}

// The faults that make sense at a call: all errors, as a file system that lies elsewhere may have
// any; and half of the bytes for those that transfer bytes.
std::vector<Fault> tst_Faults::faults(const Faults::Call &call, int number)
{
    std::vector<Error> errors(std::begin(kErrors), std::end(kErrors));
    for (const char *const name : {"read", "write", "sendfile", "copy_file_range"}) {
        if (qstrcmp(call.name, name) == 0)
            errors.push_back(kHalf);
    }
    std::vector<Fault> faults;
    for (const Error &error : errors) {
        for (const int count : {1, error.onward}) {
            Fault fault;
            fault.plan.first = number;
            fault.plan.count = count;
            fault.plan.error = error.code;
            fault.text = QByteArray(error.name) + (count == 1 ? " once" : " from then on");
            faults.push_back(fault);
        }
    }
    return faults;
}

void tst_Faults::operations_data()
{
    QTest::addColumn<int>("index");

    int index = 0;
    for (const Operation &operation : mOperations)
        QTest::newRow(operation.name) << index++;
}

void tst_Faults::operations()
{
    QFETCH(const int, index);
    const Operation &operation = mOperations.at(static_cast<size_t>(index));
    QByteArrayList failures;
    QByteArrayList calls;
    for (const Faults::Support support : {Faults::Support::Full, Faults::Support::Plain})
        tryAll(operation, support, calls, failures);
    // Not as the message of the failure, whose length is limited.
    for (const QByteArray &failure : qAsConst(failures))
        QWARN(failure.constData());
    QCOMPARE(failures.size(), 0);
}

// Does nothing if the calls are those of the trials before.
void tst_Faults::tryAll(const Operation &operation, Faults::Support support,
                        QByteArrayList &callsBefore, QByteArrayList &failures)
{
    watch(operation, "no fault");
    const Trial clean = run(operation, Faults::Plan(), support);
    Lines expected = operation.made;
    for (const QByteArray &line : clean.before) {
        if (!isBelow(nameOf(line), operation.lost))
            expected += line;
    }
    QCOMPARE(changes(normalized(FileTree::complete(expected)), clean.after).join(", "),
             QByteArray());
    QCOMPARE(clean.result.kind, operation.result);
    QVERIFY(!clean.calls.empty());
    QByteArrayList calls;
    for (const Faults::Call &call : clean.calls)
        calls += call.name;
    if (calls == callsBefore)
        return;
    callsBefore = calls;

    mPoints += static_cast<int>(clean.calls.size());
    for (int number = 1; number <= static_cast<int>(clean.calls.size()); ++number) {
        const Faults::Call &call = clean.calls.at(static_cast<size_t>(number - 1));
        const QByteArray text = (support == Faults::Support::Plain ? "plain, " : "")
            + QByteArray::number(number) + ' ' + call.name + ' '
            + normalized({QByteArray::fromStdString(call.path)}).first() + ": ";
        QMap<QByteArray, QByteArrayList> found; // the faults of each complaint
        for (const Fault &fault : faults(call, number)) {
            watch(operation, text + fault.text);
            const Trial trial = run(operation, fault.plan, support);
            ++mRuns;
            for (const QByteArray &complaint : complaints(operation, clean, trial, fault))
                found[complaint] += fault.text;
        }
        for (auto it = found.cbegin(); it != found.cend(); ++it)
            failures += text + it.key() + " (" + it.value().join(", ") + ')';
    }
}

// All that is wrong in a trial.
QByteArrayList tst_Faults::complaints(const Operation &operation, const Trial &clean,
                                      const Trial &trial, const Fault &fault)
{
    QByteArrayList complaints;
    if (trial.hasThrown)
        complaints += "an exception";
    if (trial.leaked != 0)
        complaints += QByteArray::number(trial.leaked) + " descriptors are left open";
    if (static_cast<int>(trial.calls.size()) < fault.plan.first)
        complaints += "the call was not made again";
    for (const QByteArray &line : qAsConst(trial.before)) {
        if (!trial.after.contains(line) && !isBelow(nameOf(line), operation.lost))
            complaints += "lost or changed: " + nameOf(line);
    }
    if (!isSubsequence(trial.result.told, clean.result.told))
        complaints += "told: " + trial.result.told.join(QStringLiteral(" | ")).toUtf8().left(200);
    if (trial.result.kind == Result::True) {
        if (!trial.printed.isEmpty() && !matches(trial.printed, operation.printed))
            complaints += "success, but printed: " + trial.printed;
        judgeSuccess(operation, clean, trial, fault, complaints);
    } else {
        if (!matches(trial.printed, operation.printed))
            complaints += "printed: " + trial.printed;
        judgeRest(operation, clean, trial, fault, complaints);
        if (isWild("removeDirectoryRecursive*", operation.name) && fault.plan.count == 1)
            judgeRemoval(trial, fault, operation.lost, complaints);
    }
    return complaints;
}

// What is said to be done is done, and so that it lasts: a write that is put off may fail when the
// file is closed or brought to the disk.
void tst_Faults::judgeSuccess(const Operation &operation, const Trial &clean, const Trial &trial,
                              const Fault &fault, QByteArrayList &complaints)
{
    const Faults::Call &call = trial.calls.at(static_cast<size_t>(fault.plan.first - 1));
    const bool isSync = qstrcmp(call.name, "fdatasync") == 0 || qstrcmp(call.name, "fsync") == 0;
    const bool isLate = qstrcmp(call.name, "close") == 0 && call.isWritten;
    const bool isFirst = fault.plan.first == 1 && fault.plan.count == Faults::kForever;
    QByteArrayList differences = changes(clean.after, trial.after);
    if (fault.plan.count > 1) // the backup cannot be removed any more either
        differences.removeAll('+' + nameOf(operation.backup));
    const bool isHidden
        = (isSync || isLate) && fault.plan.error != EINTR && clean.result.kind == Result::True;
    if (differences.isEmpty() && !isHidden && clean.result.kind == Result::True
        && (!isFirst || fault.plan.error == 0))
        return;
    for (int i = 0; i < static_cast<int>(std::size(kKnown)); ++i) {
        const Known &known = kKnown[i];
        if (isWild(known.operation, operation.name) && qstrcmp(known.call, call.name) == 0
            && isAll(known.changes, differences)) {
            mOccurred += i;
            return;
        }
    }
    complaints += "success, though not as without faults: "
        + (differences.isEmpty() ? QByteArray("no call tells so") : differences.join(", "));
}

// What a failure, or what does not say how it went, leaves behind: nothing that is another thing
// than before or than after a success. Permissions are the last that an entry gets; and what cannot
// be removed stays.
void tst_Faults::judgeRest(const Operation &operation, const Trial &clean, const Trial &trial,
                           const Fault &fault, QByteArrayList &complaints)
{
    const bool isRemovable = fault.plan.count == 1
        && qstrcmp(trial.calls.at(static_cast<size_t>(fault.plan.first - 1)).name, "unlink") != 0;
    for (const QByteArray &line : trial.after) {
        if (trial.before.contains(line) || clean.after.contains(line))
            continue;
        if (!isRemovable && (operation.backup == line || nameOf(line).endsWith("qt_temp-XXXXXX")))
            continue;
        const auto isSame = [&line](const QByteArray &other) {
            return other.front() == line.front()
                && other.mid(other.indexOf(' ')) == line.mid(line.indexOf(' '));
        };
        if (!std::any_of(clean.after.begin(), clean.after.end(), isSame))
            complaints += "left behind: " + line.left(100);
    }
}

// A removal goes on behind a failure: what is left is the entry that the one call named, what lies
// below it, and the directories that it lies in.
void tst_Faults::judgeRemoval(const Trial &trial, const Fault &fault, const QByteArrayList &removed,
                              QByteArrayList &complaints) const
{
    const Faults::Call &call = trial.calls.at(static_cast<size_t>(fault.plan.first - 1));
    QByteArray failed = QByteArray::fromStdString(call.path);
    if (failed.endsWith('/') || failed.endsWith("/."))
        failed = QFile::encodeName(QFileInfo(QFile::decodeName(failed)).canonicalFilePath());
    for (const QByteArray &line : trial.after) {
        const QByteArray path = mPlayground.root() + '/' + nameOf(line);
        if (isBelow(nameOf(line), removed) && !isBelow(path, {failed}) && !isBelow(failed, {path}))
            complaints += "not removed: " + nameOf(line);
    }
}

// A row that is not needed any more would hide what comes back.
void tst_Faults::known()
{
    for (int i = 0; i < static_cast<int>(std::size(kKnown)); ++i) {
        const Known &known = kKnown[i];
        QVERIFY2(mOccurred.contains(i),
                 qPrintable(QStringLiteral("%1, %2, %3")
                                .arg(QLatin1String(known.operation), QLatin1String(known.call),
                                     QLatin1String(known.changes))));
    }
}

QByteArray tst_Faults::summary() const
{
    return QByteArray("faults: ") + QByteArray::number(static_cast<int>(mOperations.size()))
        + " operations, " + QByteArray::number(mPoints) + " points, "
        + QByteArray::number(static_cast<int>(std::size(kErrors))) + " errors x 2 modes, "
        + QByteArray::number(mRuns) + " runs";
}

int main(int argc, char *argv[])
{
    const Playground playground;
    // The program seems to lie in the tree, which so is an installation: the system is not asked for
    // the program's path, and its first argument counts.
    playground.make({"d bin", "f755 bin/tst_Faults="});
    Faults::hide("/proc/" + std::to_string(getpid()) + "/exe");
    QByteArray program = playground.root() + "/bin/tst_Faults";
    char *arguments[]{program.data(), nullptr};
    int count = 1;
    const QCoreApplication application(count, arguments);
    tst_Faults test(playground);
    const int failures = QTest::qExec(&test, argc, argv);
    std::puts(test.summary().constData());
    return failures;
}

#include "tst_Faults.moc"
