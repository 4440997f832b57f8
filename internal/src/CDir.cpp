#include "CDir.h"

#include "CPath.h"
#include "FileSystem_p.h"
#include "Trash_p.h"
#include "Tree_p.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr char kCannotCopy[] = "\nCDir::copyFile unable to copy %s";
constexpr char kCannotCreate[] = "\nCDir::copyDirectory unable to create %s";
constexpr char kCannotRemove[] = "\n CDir::removeFileOrDirectory: unable to remove %s";
constexpr char kListed[] = "\n %s";
constexpr char kListEnd[] = "\n--------------";

// Goes to the buffer of the program's own output, so that the order is kept.
void print(const char *format, const QString &text)
{
    std::printf(format, text.toLocal8Bit().constData());
}

// Of a path with a zero in it, Qt lists a part of the path, and that without end.
bool isListable(const QString &path)
{
    return !path.contains(QChar::Null);
}

// Calls 'visit' with an iterator at each entry of the tree under 'path'.
template <class Visit>
void walk(const QString &path, const QStringList &nameFilters, QDir::Filters filters, Visit visit)
{
    if (!isListable(path))
        return;
    QDirIterator it(path, nameFilters, filters, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        visit(it);
    }
}

// Puts the entries of the tree under 'path' behind 'entries'.
void addTree(QFileInfoList &entries, const QString &path, const QStringList &nameFilters = {},
             QDir::Filters filters = Tree::kListed)
{
    walk(path, nameFilters, filters, [&](const QDirIterator &it) { entries += it.fileInfo(); });
}

// Copies a file, or the one that a link leads to. Anything else could keep the reader waiting.
bool copyContent(const QString &source, const QString &target)
{
    const bool isName = !FileSystem::nativeName(source).isEmpty();
    return isName && QFileInfo(source).isFile() && QFile::copy(source, target);
}

} // namespace

bool CDir::removeFile(const QString &path)
{
    return QFile::remove(path);
}

bool CDir::removeDirectory(const QString &path)
{
    return !path.isEmpty() && QDir::temp().rmdir(path);
}

bool CDir::removeDirectoryRecursive(const QString &path)
{
    const QFileInfo info(path);
    // A search path leads to what is removed; a resource stays.
    const bool isNative = path.isEmpty() || info.isNativePath();
    return isNative ? Tree::remove(info.filePath()) : !info.exists();
}

bool CDir::removeFileOrDirectory(const QString &path)
{
    if (QFileInfo(path).isFile()) {
        if (!removeFile(path))
            print(kCannotRemove, path);
    } else if (!removeDirectory(path)) {
        print(kCannotRemove, path);
        print(kListed, listFilesAndDirectories(path).join(QLatin1Char('\n')));
        std::printf(kListEnd);
    }
    return !QFileInfo::exists(path) && FileSystem::saysMissing(FileSystem::lookUp(path));
}

bool CDir::removeFilesByPathList(const QStringList &paths)
{
    bool ok = true;
    std::for_each(paths.rbegin(), paths.rend(),
                  [&ok](const QString &path) { ok = removeFileOrDirectory(path) && ok; });
    return ok;
}

bool CDir::copyFile(const QString &source, const QString &target)
{
    const QString place = FileSystem::resolved(target);
    if (!place.isEmpty() && FileSystem::makeDirectory(QFileInfo(place).path())
        && copyContent(source, place))
        return true;
    print(kCannotCopy, target);
    return false;
}

bool CDir::copyFileF(const QString &source, const QString &target)
{
    const QString place = FileSystem::resolved(target);
    if (place.isEmpty())
        return false;
    const QFileInfo info(place);
    FileSystem::makeDirectory(info.path());
    if (!info.exists())
        return copyContent(source, place);
    const QString backup = QStringLiteral("%1/~%2").arg(info.absolutePath(), info.fileName());
    if (FileSystem::renameNew(place, backup) != FileSystem::Renaming::Done)
        return true; // Contract: nothing was changed, which is no failure
    const bool isCopied = copyContent(source, place);
    QFile::remove(backup); // Contract: after a failure too
    return isCopied;
}

bool CDir::copyDirectory(const QString &source, const QString &target)
{
    Q_UNUSED(source)
    if (FileSystem::makeDirectory(target))
        return true;
    print(kCannotCreate, target);
    return false;
}

bool CDir::copyDirectoryRecursive(const QString &source, const QString &target)
{
    return copyDirectoryRecursive(source, target, {});
}

bool CDir::copyDirectoryRecursive(const QString &source, const QString &target,
                                  const std::function<bool(int done, int total)> &progress)
{
    if (target.isEmpty())
        return false;
    // All entries are known before the first is made: the target may lie in the tree.
    const QString root = QFileInfo(source).filePath(); // of a search path, what it leads to
    std::vector<Tree::Entry> entries;
    if (!Tree::list(root, entries))
        return false;
    const QString place = FileSystem::resolved(target);
    const QString from = CPath::ensurePathSeparatorAtEnd(root);
    const QString to = CPath::ensurePathSeparatorAtEnd(place.isEmpty() ? target : place);
    const auto total = static_cast<int>(entries.size());
    int done = 0;
    return std::all_of(entries.begin(), entries.end(), [&](const Tree::Entry &entry) {
        if (progress && !progress(done++, total))
            return false;
        return entry.isDirectory ? copyDirectory(from + entry.name, to + entry.name)
                                 : copyFile(from + entry.name, to + entry.name);
    });
}

QString CDir::getRelativeSubPath(const QString &basePath, const QString &path)
{
    const QString base = QDir::fromNativeSeparators(basePath);
    const QString full = QDir::fromNativeSeparators(path);
    if (base == full || !full.startsWith(base))
        return QString();
    // A relative path would come back as it is.
    return QDir(base).relativeFilePath(QFileInfo(full).absoluteFilePath());
}

QDir::Filters CDir::toDirFilter(Nk7eGlobal::EDirFilter filter)
{
    const QDir::Filters always = QDir::Hidden | QDir::NoDotAndDotDot;
    switch (filter) {
    case Nk7eGlobal::DIRFILTER_ALL:
        return QDir::Dirs | QDir::Files | always;
    case Nk7eGlobal::DIRFILTER_FILES:
        return QDir::Files | always;
    case Nk7eGlobal::DIRFILTER_DIRS:
        return QDir::Dirs | always;
    }
    return always;
}

QFileInfoList CDir::entryInfoList(const QString &path, const QStringList &nameFilters,
                                  QDir::Filters filters)
{
    return isListable(path) ? QDir(path).entryInfoList(nameFilters, filters, QDir::Unsorted)
                            : QFileInfoList();
}

QFileInfoList CDir::entryInfoList(const QString &path, const QStringList &nameFilters,
                                  Nk7eGlobal::EDirFilter filter)
{
    return entryInfoList(path, nameFilters, toDirFilter(filter));
}

QFileInfoList CDir::entryInfoList(const QString &path, Nk7eGlobal::EDirFilter filter,
                                  const QStringList &excludedNames)
{
    const QSet<QString> excluded(excludedNames.begin(), excludedNames.end());
    QFileInfoList entries = entryInfoList(path, QStringList(), filter);
    const auto isExcluded
        = [&excluded](const QFileInfo &entry) { return excluded.contains(entry.fileName()); };
    entries.erase(std::remove_if(entries.begin(), entries.end(), isExcluded), entries.end());
    return entries;
}

QFileInfoList CDir::entryInfoListRecursive(const QString &path, const QStringList &nameFilters,
                                           QDir::Filters filters)
{
    QFileInfoList entries;
    addTree(entries, path, nameFilters, filters);
    return entries;
}

QFileInfoList CDir::entryInfoListRecursive(const QString &path, const QStringList &nameFilters,
                                           Nk7eGlobal::EDirFilter filter)
{
    return entryInfoListRecursive(path, nameFilters, toDirFilter(filter));
}

QStringList CDir::listFilesAndDirectories(const QString &path)
{
    QStringList paths(path);
    walk(path, {}, Tree::kListed, [&paths](const QDirIterator &it) { paths += it.filePath(); });
    return paths;
}

QFileInfoList CDir::listFileAndDirInfos(const QString &path)
{
    QFileInfoList infos{QFileInfo(path)};
    addTree(infos, path);
    return infos;
}

QString CDir::addPathToPath(const QString &path, const QString &subPath)
{
    return CPath::addPathToPath(path, subPath);
}

QString CDir::addFileNameToPath(const QString &path, const QString &fileName)
{
    return CPath::addFileNameToPath(path, fileName);
}

int CDir::moveToTrash(const QString &path)
{
    return Trash::move(path);
}
