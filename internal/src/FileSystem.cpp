#include "FileSystem_p.h"

#include "Nk7eGlobal.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Returns the permissions as the system has them, from Qt's flags, which have one hexadecimal digit
// for each of owner, user, group and others.
mode_t toMode(QFile::Permissions permissions)
{
    const auto flags = static_cast<mode_t>(permissions);
    return (flags >> 12 & 7) << 6 | (flags >> 4 & 7) << 3 | (flags & 7);
}

bool isDirectory(const char *path)
{
    struct stat status;
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

// Makes the directory 'path', which has no "/" at its end, with all missing parents. Returns
// whether it was made; errno is EEXIST if something is there.
bool makeWithParents(const QByteArray &path)
{
    if (mkdir(path.constData(), 0777) == 0)
        return true;
    int parentEnd = path.lastIndexOf('/');
    while (parentEnd > 0 && path.at(parentEnd - 1) == '/')
        --parentEnd;
    if (errno != ENOENT || parentEnd <= 0)
        return false;
    return (makeWithParents(path.left(parentEnd)) || errno == EEXIST)
        && mkdir(path.constData(), 0777) == 0;
}

// Cuts the "/" and "/." at the end of a directory's path.
QByteArray withoutDotsAtEnd(QByteArray path)
{
    while (path.size() > 1 && (path.endsWith('/') || path.endsWith("/.")))
        path.chop(1);
    return path;
}

// Gives a directory that was made its permissions, but not through a link that has taken its place
// meanwhile.
void setPermissions(const char *path)
{
    const mode_t mode = toMode(Nk7eGlobal::PATH_PERMISSIONS);
    const int directory = open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    const bool isSet = directory >= 0 && fchmod(directory, mode) == 0;
    if (directory >= 0)
        close(directory);
    // The umask may have taken the right to read it. This way needs /proc.
    if (!isSet)
        fchmodat(AT_FDCWD, path, mode, AT_SYMLINK_NOFOLLOW);
}

// Returns the absolute path of a directory without links in it, or a null string if it cannot be
// told.
QString canonicalPath(const QString &path)
{
    const std::unique_ptr<char, decltype(&std::free)> canonical(
        realpath(FileSystem::nativeName(path).constData(), nullptr), &std::free);
    const QString result = canonical ? QFile::decodeName(canonical.get()) : QString();
    return FileSystem::nativeName(result) == canonical.get() ? result : QString();
}

// Returns the directory that ".." behind the absolute path 'path' leads to, or a null string if the
// system would not go there.
QString parentOf(const QString &path)
{
    const int error = FileSystem::lookUp(path + QLatin1String("/.."));
    if (error == 0) {
        const QString canonical = canonicalPath(path);
        return canonical.isNull() ? QString() : QFileInfo(canonical).path();
    }
    const bool isByText = error == ENOENT && FileSystem::hasEntry(path) == false;
    return isByText ? QFileInfo(path).path() : QString();
}

} // namespace

QByteArray FileSystem::nativeName(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const bool isName = !path.contains(QChar::Null) && QFile::decodeName(name) == path;
    return isName ? name : QByteArray("");
}

bool FileSystem::makeDirectory(const QString &path)
{
    const QString place = resolved(path);
    if (place.isEmpty())
        return false;
    if (QFileInfo(place).isDir())
        return true;
    const QByteArray name = withoutDotsAtEnd(nativeName(place));
    if (!makeWithParents(name))
        return errno == EEXIST && isDirectory(name.constData());
    setPermissions(name.constData());
    return true;
}

QString FileSystem::resolved(const QString &path)
{
    const QLatin1Char separator('/');
    const QLatin1String parent("..");
    const QLatin1String self(".");
    if (nativeName(path).isEmpty())
        return QString();
    if (!path.contains(parent))
        return path;
    const QStringList parts = path.split(separator, Qt::SkipEmptyParts);
    if (!parts.contains(parent))
        return path;
    QString result = path.startsWith(separator) ? QString(separator) : canonicalPath(self);
    for (const QString &part : parts) {
        if (result.isEmpty()) // also where the current directory is gone
            return QString();
        if (part == parent) {
            result = parentOf(result);
        } else if (part != self) {
            if (!result.endsWith(separator))
                result += separator;
            result += part;
        }
    }
    const bool isDirectory
        = path.endsWith(separator) || parts.last() == parent || parts.last() == self;
    if (isDirectory && !result.isEmpty() && !result.endsWith(separator))
        result += separator;
    return result;
}

int FileSystem::lookUp(const QString &path)
{
    struct stat status;
    return stat(nativeName(path).constData(), &status) == 0 ? 0 : errno;
}

bool FileSystem::saysMissing(int error)
{
    return error == ENOENT || error == ENOTDIR;
}

std::optional<bool> FileSystem::hasEntry(const QString &path)
{
    struct stat status;
    if (lstat(nativeName(path).constData(), &status) == 0)
        return true;
    const bool isFree = saysMissing(errno) || errno == ENAMETOOLONG;
    return isFree ? std::optional<bool>(false) : std::nullopt;
}

FileSystem::Renaming FileSystem::renameNew(const QString &from, const QString &to)
{
    const QByteArray oldName = nativeName(from);
    const QByteArray newName = nativeName(to);
    if (renameat2(AT_FDCWD, oldName.constData(), AT_FDCWD, newName.constData(), RENAME_NOREPLACE)
        == 0)
        return Renaming::Done;
    if (errno == EEXIST)
        return Renaming::Taken;
    if (errno != EINVAL && errno != ENOSYS)
        return Renaming::Failed;
    // The file system has no such renaming.
    const std::optional<bool> isTaken = hasEntry(to);
    if (isTaken == true)
        return Renaming::Taken;
    const bool isDone
        = isTaken == false && std::rename(oldName.constData(), newName.constData()) == 0;
    return isDone ? Renaming::Done : Renaming::Failed;
}
