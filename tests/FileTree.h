#ifndef FILETREE_H
#define FILETREE_H

#include <QByteArrayList>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTextCodec>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <ctime>

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

//! Sets an environment variable, or removes it for a null value, while it lives.
class EnvironmentVariable
{
public:
    EnvironmentVariable(const char *name, const QByteArray &value)
        : mName(name)
        , mBefore(qgetenv(name))
    {
        set(value);
    }
    ~EnvironmentVariable() { set(mBefore); }

private:
    Q_DISABLE_COPY(EnvironmentVariable)

    void set(const QByteArray &value) const
    {
        if (value.isNull())
            qunsetenv(mName);
        else
            qputenv(mName, value);
        tzset();
    }

    const char *const mName;
    const QByteArray mBefore;
};

//! Makes an encoding that of the file names and of the printed paths while it lives.
class LocalEncoding
{
public:
    explicit LocalEncoding(const char *name)
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName(name));
    }
    ~LocalEncoding() { QTextCodec::setCodecForLocale(mBefore); }

private:
    Q_DISABLE_COPY(LocalEncoding)

    QTextCodec *const mBefore = QTextCodec::codecForLocale();
};

//! Lets no more files be open than there are and some more while it lives.
class OpenFileLimit
{
public:
    explicit OpenFileLimit(rlim_t more)
    {
        getrlimit(RLIMIT_NOFILE, &mBefore);
        rlimit limit = mBefore;
        limit.rlim_cur = firstFree() + more;
        mIsValid = setrlimit(RLIMIT_NOFILE, &limit) == 0;
    }
    ~OpenFileLimit() { setrlimit(RLIMIT_NOFILE, &mBefore); }

    bool isValid() const { return mIsValid; }

private:
    Q_DISABLE_COPY(OpenFileLimit)

    static rlim_t firstFree()
    {
        const int file = open("/", O_PATH | O_CLOEXEC);
        close(file);
        return static_cast<rlim_t>(file);
    }

    rlimit mBefore{};
    bool mIsValid = false;
};

//! Lets no file grow beyond a size while it lives, as a full disk does.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes) : mSignal(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &mBefore);
        rlimit limit = mBefore;
        limit.rlim_cur = bytes;
        mIsValid = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &mBefore);
        std::signal(SIGXFSZ, mSignal);
    }

    bool isValid() const { return mIsValid; }

private:
    Q_DISABLE_COPY(FileSizeLimit)

    rlimit mBefore{};
    void (*const mSignal)(int);
    bool mIsValid = false;
};

/*!
    A directory tree that is the current directory while it lives; with an empty directory for
    temporary files beside it, the umask 002 unless another is given, and file names in UTF-8.

    A line describes an entry: "d name" a directory, "f name=content" a file, "p name" a pipe,
    "l name>target" a symbolic link. The kind may be followed by octal permissions ("f600 name="),
    which are 755 for directories and 644 for others if they are missing. Names are bytes, and are
    relative to the tree; a directory comes before its content.
*/
class FileTree
{
public:
    explicit FileTree(const QByteArrayList &lines, mode_t mask = 002)
        : mMaskBefore(umask(mask))
        , mMask(mask)
        , mDirectoryBefore(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC))
    {
        const QByteArray base = QFile::encodeName(QDir(mDir.path()).canonicalPath());
        mRoot = base + "/tree";
        mTemporary = base + "/temporary";
        mIsValid = mDir.isValid() && mDirectoryBefore >= 0 && mkdir(mRoot.constData(), 0755) == 0
            && mkdir(mTemporary.constData(), 0755) == 0 && chdir(mRoot.constData()) == 0
            && std::all_of(lines.begin(), lines.end(), &FileTree::make);
        qputenv("TMPDIR", mTemporary);
    }

    ~FileTree()
    {
        if (mTemporaryBefore.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", mTemporaryBefore);
        if (fchdir(mDirectoryBefore) != 0)
            qFatal("The current directory cannot be restored.");
        close(mDirectoryBefore);
        umask(mMaskBefore);
        removeContent(AT_FDCWD, QFile::encodeName(mDir.path()).constData());
    }

    bool isValid() const { return mIsValid; }

    //! The path of the tree.
    QByteArray root() const { return mRoot; }

    //! The path of the directory for temporary files.
    QByteArray temporary() const { return mTemporary; }

    //! \a text with the path of the tree in the place of each "@".
    QByteArray expanded(QByteArray text) const { return text.replace('@', mRoot); }
    QString expanded(const QString &text) const
    {
        return QString(text).replace(QLatin1Char('@'), QString::fromUtf8(mRoot));
    }
    QStringList expanded(QStringList texts) const
    {
        return texts.replaceInStrings(QStringLiteral("@"), QString::fromUtf8(mRoot));
    }

    //! Makes the entry that \a line describes.
    static bool make(const QByteArray &line)
    {
        const int blank = line.indexOf(' ');
        const int equals = line.indexOf(line.startsWith('l') ? '>' : '=', blank);
        const QByteArray name = line.mid(blank + 1, equals < 0 ? -1 : equals - blank - 1);
        const QByteArray rest = equals < 0 ? QByteArray() : line.mid(equals + 1);
        const mode_t mode = blank > 1 ? line.mid(1, blank - 1).toUInt(nullptr, 8)
            : line.startsWith('d')    ? 0755
                                      : 0644;
        switch (line.front()) {
        case 'd':
            return mkdir(name.constData(), mode) == 0 && chmod(name.constData(), mode) == 0;
        case 'p':
            return mkfifo(name.constData(), mode) == 0 && chmod(name.constData(), mode) == 0;
        case 'l':
            return symlink(rest.constData(), name.constData()) == 0;
        default:
            break;
        }
        const int file = open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        const bool isWritten = file >= 0
            && write(file, rest.constData(), static_cast<size_t>(rest.size())) == rest.size()
            && fchmod(file, mode) == 0;
        return close(file) == 0 && isWritten;
    }

    //! The lines of \a lines with all permissions, in the order of lines().
    static QByteArrayList complete(QByteArrayList lines)
    {
        for (QByteArray &line : lines) {
            if (line.at(1) == ' ' && !line.startsWith('l'))
                line.insert(1, line.startsWith('d') ? "755" : "644");
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    //! The description of the tree. What else may not have changed is told by a line if it has: the
    //! current directory, the umask, and the temporary directory.
    QByteArrayList lines() const
    {
        QByteArrayList lines = linesOf(mRoot);
        const QByteArrayList temporary = linesOf(mTemporary);
        for (const QByteArray &line : temporary)
            lines += "temporary " + line;
        struct stat current, root;
        if (stat(".", &current) != 0 || stat(mRoot.constData(), &root) != 0
            || current.st_dev != root.st_dev || current.st_ino != root.st_ino)
            lines += "current directory changed";
        if (umask(mMask) != mMask)
            lines += "umask changed";
        return lines;
    }

    //! The description of the tree under \a path.
    static QByteArrayList linesOf(const QByteArray &path)
    {
        QByteArrayList lines;
        addLines(lines, AT_FDCWD, path.constData(), QByteArray());
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    //! The names in the directory \a path in its own order, without "." and "..".
    static QByteArrayList names(const QByteArray &path)
    {
        QByteArrayList names;
        if (DIR *const directory = opendir(path.constData())) {
            while (const dirent *const entry = readdir(directory))
                names += entry->d_name;
            closedir(directory);
        }
        names.removeAll(".");
        names.removeAll("..");
        return names;
    }

    //! The paths of the tree under \a path as a walk that is told the rules finds them: each
    //! directory before its content, in the order of the directories; through no symbolic link; no
    //! broken links, no pipes and no hidden entries.
    static QByteArrayList walked(const QByteArray &path)
    {
        QByteArrayList paths;
        const QByteArray base = path.endsWith('/') ? path : path + '/';
        const QByteArrayList entries = names(path);
        for (const QByteArray &name : entries) {
            const QByteArray entry = base + name;
            struct stat followed, own;
            if (name.startsWith('.') || stat(entry.constData(), &followed) != 0
                || lstat(entry.constData(), &own) != 0
                || !(S_ISREG(followed.st_mode) || S_ISDIR(followed.st_mode)))
                continue;
            paths += entry;
            if (S_ISDIR(own.st_mode))
                paths += walked(entry);
        }
        return paths;
    }

    //! Names that are hard to handle, but valid UTF-8 and not hidden.
    static QByteArrayList oddNames()
    {
        return {"a b",  " a",        "a ",           "a\nb",
                "\n",   "a\tb",      "%1",           "%2 %1",
                "%s%n", "%",         "\xc3\xa9",     "\\",
                "a\\b", "e\xcc\x81", "\xe6\x97\xa5", "\xf0\x9f\x98\x80",
                "*",    "?",         "[ab]",         "-rf",
                "~a",   "#",         "\"",           "'",
                ";",    "$HOME",     "\x01",         ":a",
                "a:b",  "a.",        "a..b",         "\xef\xbf\xbd"};
    }

    //! A name of a row for \a name, in printable characters.
    static QByteArray printable(const QByteArray &name)
    {
        return '"' + name.toPercentEncoding(" $*?[]~#\"';:\\") + '"';
    }

private:
    Q_DISABLE_COPY(FileTree)

    static void addLines(QByteArrayList &lines, int parent, const char *path,
                         const QByteArray &prefix)
    {
        const int fd = openat(parent, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        DIR *const directory = fd < 0 ? nullptr : fdopendir(fd);
        if (!directory) {
            lines += "unreadable " + prefix;
            return;
        }
        while (const dirent *const entry = readdir(directory)) {
            const QByteArray name = entry->d_name;
            struct stat own;
            if (name == "." || name == ".."
                || fstatat(fd, name.constData(), &own, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            const QByteArray mode = QByteArray::number(own.st_mode & 07777, 8) + ' ';
            if (S_ISDIR(own.st_mode)) {
                lines += 'd' + mode + prefix + name;
                addLines(lines, fd, name.constData(), prefix + name + '/');
            } else if (S_ISLNK(own.st_mode)) {
                char target[4096];
                const ssize_t size = readlinkat(fd, name.constData(), target, sizeof target);
                lines += "l " + prefix + name + '>' + QByteArray(target, static_cast<int>(size));
            } else if (S_ISREG(own.st_mode)) {
                lines += 'f' + mode + prefix + name + '=' + content(fd, name);
            } else {
                lines += 'p' + mode + prefix + name;
            }
        }
        closedir(directory);
    }

    static QByteArray content(int parent, const QByteArray &name)
    {
        const int file = openat(parent, name.constData(), O_RDONLY | O_CLOEXEC);
        QByteArray bytes;
        char block[65536];
        for (ssize_t size = 0; (size = read(file, block, sizeof block)) > 0;)
            bytes.append(block, static_cast<int>(size));
        close(file);
        return bytes;
    }

    // QTemporaryDir does not remove names that cannot be decoded.
    static void removeContent(int parent, const char *path)
    {
        const int fd = openat(parent, path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        DIR *const directory = fd < 0 ? nullptr : fdopendir(fd);
        if (!directory)
            return;
        while (const dirent *const entry = readdir(directory)) {
            const QByteArray name = entry->d_name;
            if (name == "." || name == ".." || unlinkat(fd, name.constData(), 0) == 0)
                continue;
            removeContent(fd, name.constData());
            unlinkat(fd, name.constData(), AT_REMOVEDIR);
        }
        closedir(directory);
    }

    const QTemporaryDir mDir;
    const LocalEncoding mEncoding{"UTF-8"};
    const QByteArray mTemporaryBefore = qgetenv("TMPDIR");
    const mode_t mMaskBefore;
    const mode_t mMask;
    const int mDirectoryBefore;
    QByteArray mRoot;
    QByteArray mTemporary;
    bool mIsValid = false;
};

/*!
    Returns what \a call prints to the standard output. The caller's own output in front and behind,
    which waits in the buffer of the C library, must stay in order.
*/
template <class Call>
QByteArray outputOf(Call call)
{
    std::fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    FILE *const file = std::tmpfile();
    if (!file || saved < 0 || dup2(fileno(file), STDOUT_FILENO) < 0)
        qFatal("The output cannot be captured.");
    std::printf("<");
    call();
    std::printf(">");
    std::fflush(stdout);
    dup2(saved, STDOUT_FILENO);
    close(saved);
    std::rewind(file);
    QByteArray output;
    char block[4096];
    for (size_t size = 0; (size = std::fread(block, 1, sizeof block, file)) > 0;)
        output.append(block, static_cast<int>(size));
    std::fclose(file);
    if (output.size() < 2 || !output.startsWith('<') || !output.endsWith('>'))
        return "out of order: " + output;
    return output.mid(1, output.size() - 2);
}

#endif // FILETREE_H
