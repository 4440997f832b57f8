#include "Tree_p.h"

#include "FileSystem_p.h"

#include <QByteArray>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// A removal goes down by openat() of a name and up by openat() of "..", with one directory of the
// tree open at a time; what it comes back to is known by name and identity. For a/b/c it opens a,
// removes what is no directory there, opens b in it, then c in that; ".." must be b again, or else
// b is looked for from the top. Failures on the way need no memory: only an empty directory can be
// removed, so that the last rmdir tells whether all went well.

namespace {

constexpr int kOpenDirectory = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Owns a descriptor, or none.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : mNumber(number) { }
    Descriptor(Descriptor &&other) noexcept : mNumber(other.release()) { }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(mNumber, other.mNumber);
        return *this;
    }
    ~Descriptor()
    {
        if (isOpen())
            close(mNumber);
    }

    bool isOpen() const { return mNumber >= 0; }
    int number() const { return mNumber; }
    int release() { return std::exchange(mNumber, -1); }

private:
    Q_DISABLE_COPY(Descriptor)

    int mNumber;
};

struct CloseStream
{
    void operator()(DIR *stream) const { closedir(stream); }
};

// Calls visit(entry) for the entries of a directory but "." and "..", and returns whether it could
// be read to its end.
template <class Visit>
bool readDirectory(const Descriptor &directory, Visit visit)
{
    Descriptor copy(fcntl(directory.number(), F_DUPFD_CLOEXEC, 0));
    const std::unique_ptr<DIR, CloseStream> stream(copy.isOpen() ? fdopendir(copy.number())
                                                                 : nullptr);
    if (!stream)
        return false;
    copy.release();
    errno = 0;
    while (const dirent *const entry = readdir(stream.get())) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            visit(*entry);
        errno = 0;
    }
    return errno == 0;
}

// ---- Listing

enum class Kind { File, Directory, LinkToDirectory, Omitted };

Kind kindOf(mode_t mode)
{
    return S_ISREG(mode) ? Kind::File : S_ISDIR(mode) ? Kind::Directory : Kind::Omitted;
}

// Returns nothing if the kind cannot be told.
std::optional<Kind> kindOf(const Descriptor &directory, const dirent &entry)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return kindOf(DTTOIF(entry.d_type));
    struct stat status;
    if (fstatat(directory.number(), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    if (!S_ISLNK(status.st_mode))
        return kindOf(status.st_mode);
    if (fstatat(directory.number(), entry.d_name, &status, 0) == 0) {
        const Kind kind = kindOf(status.st_mode);
        return kind == Kind::Directory ? Kind::LinkToDirectory : kind;
    }
    const bool isBroken
        = errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == ENAMETOOLONG;
    return isBroken ? std::optional<Kind>(Kind::Omitted) : std::nullopt;
}

struct Found
{
    QString name; // relative to the root
    Kind kind;
};

// Appends what is to be copied of a directory, whose name is 'prefix' with a "/" behind it.
bool listDirectory(const Descriptor &directory, const QString &prefix, std::vector<Found> &found)
{
    bool isAll = true;
    const auto add = [&](const dirent &entry) {
        if (entry.d_name[0] == '.')
            return;
        const std::optional<Kind> kind = kindOf(directory, entry);
        const QString name = QFile::decodeName(entry.d_name);
        if (kind == Kind::Omitted)
            return;
        isAll = isAll && kind && QFile::encodeName(name) == entry.d_name;
        if (isAll)
            found.push_back({prefix + name, *kind});
    };
    return readDirectory(directory, add) && isAll;
}

// What Qt alone knows: the resources.
void listByQt(const QString &root, std::vector<Tree::Entry> &entries)
{
    const QDir directory(root);
    QDirIterator it(root, Tree::kListed, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        entries.push_back({directory.relativeFilePath(path), it.fileInfo().isDir()});
    }
}

// ---- Removing

using Names = std::vector<std::string>;

// A directory on the way from the top to where a removal is.
struct Level
{
    std::string name; // in the directory above
    dev_t device;
    ino_t inode;
    Names directories; // that are still to be removed in it
};

bool removeDirectory(const Descriptor &directory, const char *name)
{
    return unlinkat(directory.number(), name, AT_REMOVEDIR) == 0 || errno == ENOENT;
}

// Removes what is no directory and returns the names of the directories.
Names removeFiles(const Descriptor &directory)
{
    Names files;
    Names directories;
    // Removed when all are known: what is removed in between may hide others.
    readDirectory(directory, [&](const dirent &entry) {
        (entry.d_type == DT_DIR ? directories : files).emplace_back(entry.d_name);
    });
    const auto isDirectory = [&](const std::string &name) {
        return unlinkat(directory.number(), name.c_str(), 0) != 0 && errno == EISDIR;
    };
    std::copy_if(files.begin(), files.end(), std::back_inserter(directories), isDirectory);
    return directories;
}

class Removal
{
public:
    //! \a base is the directory that holds what is to be removed.
    explicit Removal(Descriptor base) : mBase(std::move(base)) { }

    //! Removes the directory \a name and returns whether it is gone.
    bool run(const char *name)
    {
        if (!enter(name))
            return removeDirectory(mBase, name);
        bool isGone = false;
        while (!mLevels.empty()) {
            Names &rest = mLevels.back().directories;
            if (rest.empty()) {
                isGone = leave();
            } else {
                const std::string next = std::move(rest.back());
                rest.pop_back();
                if (!enter(next))
                    removeUnopened(next.c_str());
            }
        }
        return isGone;
    }

private:
    const Descriptor &current() const { return mLevels.empty() ? mBase : mOpen; }

    // Goes down into a directory and removes what is no directory there.
    bool enter(const std::string &name)
    {
        Descriptor directory(openat(current().number(), name.c_str(), kOpenDirectory | O_NOFOLLOW));
        struct stat status;
        if (!directory.isOpen() || fstat(directory.number(), &status) != 0)
            return false;
        mLevels.push_back({name, status.st_dev, status.st_ino, removeFiles(directory)});
        mOpen = std::move(directory);
        return true;
    }

    // An empty directory can be removed without rights to read it; and what was a directory may be
    // a link by now.
    void removeUnopened(const char *name) const
    {
        if (unlinkat(current().number(), name, 0) != 0)
            removeDirectory(current(), name);
    }

    // Goes up and removes the directory that it comes from; returns whether that is gone.
    bool leave()
    {
        const std::string name = std::move(mLevels.back().name);
        mLevels.pop_back();
        bool isAbove = true;
        while (!mLevels.empty() && !climb()) {
            mLevels.pop_back();
            isAbove = false;
        }
        return isAbove && removeDirectory(current(), name.c_str());
    }

    // Opens the last level again. The directory below it may have been moved: what is above that
    // now is no part of the tree.
    bool climb()
    {
        Descriptor directory = openLevel(mOpen, "..", mLevels.back());
        if (!directory.isOpen())
            directory = openFromBase();
        mOpen = std::move(directory);
        return mOpen.isOpen();
    }

    Descriptor openFromBase() const
    {
        Descriptor directory = openLevel(mBase, mLevels.front().name.c_str(), mLevels.front());
        for (auto it = mLevels.begin() + 1; it != mLevels.end() && directory.isOpen(); ++it)
            directory = openLevel(directory, it->name.c_str(), *it);
        return directory;
    }

    // Opens a directory, not to read it, if it is that of the level.
    static Descriptor openLevel(const Descriptor &directory, const char *name, const Level &level)
    {
        Descriptor opened(
            openat(directory.number(), name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        struct stat status;
        const bool isSame = opened.isOpen() && fstat(opened.number(), &status) == 0
            && status.st_dev == level.device && status.st_ino == level.inode;
        return isSame ? std::move(opened) : Descriptor();
    }

    const Descriptor mBase;
    Descriptor mOpen; // the last level
    std::vector<Level> mLevels;
};

} // namespace

bool Tree::list(const QString &root, std::vector<Entry> &entries)
try {
    if (!QFileInfo(root).isNativePath()) {
        listByQt(root, entries);
        return true;
    }
    const QByteArray base = FileSystem::nativeName(root);
    const Descriptor top(open(base.constData(), kOpenDirectory));
    if (!top.isOpen())
        return errno == ENOENT || errno == ENOTDIR;
    std::vector<Found> pending;
    bool isAll = listDirectory(top, QString(), pending);
    std::reverse(pending.begin(), pending.end());
    while (isAll && !pending.empty()) {
        const Found found = std::move(pending.back());
        pending.pop_back();
        entries.push_back({found.name, found.kind != Kind::File});
        if (found.kind != Kind::Directory)
            continue;
        const QByteArray path = base + '/' + QFile::encodeName(found.name);
        const Descriptor directory(open(path.constData(), kOpenDirectory | O_NOFOLLOW));
        const auto count = pending.size();
        isAll = directory.isOpen()
            && listDirectory(directory, found.name + QLatin1Char('/'), pending);
        std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(count), pending.end());
    }
    return isAll;
} catch (const std::bad_alloc &) {
    return false;
}

bool Tree::remove(const QString &path)
try {
    QByteArray entry = FileSystem::nativeName(path);
    // A link with a "/" behind it is still a link to be removed.
    while (entry.endsWith('/'))
        entry.chop(1);
    const int nameBegin = entry.lastIndexOf('/') + 1;
    const QByteArray name = entry.mid(nameBegin);
    if (name.isEmpty() || name == "." || name == "..")
        return false;
    const QByteArray parent = nameBegin == 0 ? QByteArray(".") : entry.left(nameBegin);
    Descriptor base(open(parent.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status;
    if (!base.isOpen()
        || fstatat(base.number(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT || errno == ENOTDIR;
    if (S_ISLNK(status.st_mode))
        return unlinkat(base.number(), name.constData(), 0) == 0 || errno == ENOENT;
    return !S_ISDIR(status.st_mode) || Removal(std::move(base)).run(name.constData());
} catch (const std::bad_alloc &) {
    return false;
}
