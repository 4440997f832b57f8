#include "Pairs.h"

#include "CDir.h"
#include "Nk7eGlobal.h"

#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <memory>

// Trees copied and listed beside bare loops over Qt's own classes.

namespace {

constexpr QDir::Filters kWalked = QDir::Dirs | QDir::Files | QDir::Drives | QDir::NoDotAndDotDot;

// A directory with so many files of so many bytes, a hundred in each of its sub-directories.
class Tree
{
public:
    Tree(int files, qint64 bytes) : mFiles(files), mBytes(bytes) { make(); }

    void make() const
    {
        const QByteArray block(static_cast<int>(qMin(mBytes, Q_INT64_C(1) << 20)), 'x');
        for (int i = 0; i < mFiles; ++i) {
            const QString directory = QStringLiteral("%1/%2").arg(path()).arg(i / 100);
            QDir().mkpath(directory);
            QFile file(QStringLiteral("%1/file%2").arg(directory).arg(i));
            if (!file.open(QIODevice::WriteOnly))
                std::abort();
            for (qint64 written = 0; written < mBytes; written += block.size())
                file.write(block);
        }
    }

    QString path() const { return mDir.path() + QStringLiteral("/source"); }
    QString target() const { return mDir.path() + QStringLiteral("/target"); }

private:
    QTemporaryDir mDir;
    int mFiles;
    qint64 mBytes;
};

bool copyByPeer(const QString &source, const QString &target)
{
    QDirIterator it(source, kWalked, QDirIterator::Subdirectories);
    bool ok = QDir().mkpath(target);
    while (it.hasNext() && ok) {
        const QString path = it.next();
        const QString destination = target + path.mid(source.size());
        ok = it.fileInfo().isDir() ? QDir().mkpath(destination) : QFile::copy(path, destination);
    }
    return ok;
}

void addCopy(const char *name, int files, qint64 bytes)
{
    const auto tree = std::make_shared<Tree>(files, bytes);
    Pairs::addUndone(
        name, 1.05, [tree] { return CDir::copyDirectoryRecursive(tree->path(), tree->target()); },
        [tree] { return copyByPeer(tree->path(), tree->target()); },
        [tree] { QDir(tree->target()).removeRecursively(); });
}

void addRemoval()
{
    const auto tree = std::make_shared<Tree>(10000, 0);
    Pairs::addUndone(
        "removeDirectoryRecursive, 10 000 files", 1.0,
        [tree] { return CDir::removeDirectoryRecursive(tree->path()); },
        [tree] { return QDir(tree->path()).removeRecursively(); }, [tree] { tree->make(); });
}

void addListing()
{
    const auto tree = std::make_shared<Tree>(100000, 0);
    Pairs::add(
        "CDir::listFileAndDirInfos of 100 000", {1.05, 0, -1},
        [tree] { return CDir::listFileAndDirInfos(tree->path()).size(); },
        [tree] {
            QFileInfoList infos;
            QDirIterator it(tree->path(), kWalked, QDirIterator::Subdirectories);
            while (it.hasNext()) {
                it.next();
                infos += it.fileInfo();
            }
            return infos.size();
        });
}

void addExclusion()
{
    const auto directory = std::make_shared<QTemporaryDir>();
    QStringList excluded;
    for (int i = 0; i < 10000; ++i) {
        const QString name = QStringLiteral("file%1").arg(i);
        QFile file(directory->filePath(name));
        if (!file.open(QIODevice::WriteOnly))
            std::abort();
        if (i % 10 == 0)
            excluded += name;
    }
    Pairs::add(
        "CDir::entryInfoList of 10 000 without 1 000", {1.3, 0, -1},
        [directory, excluded] {
            return CDir::entryInfoList(directory->path(), Nk7eGlobal::DIRFILTER_ALL, excluded)
                .size();
        },
        [directory] {
            return QDir(directory->path())
                .entryInfoList(QDir::Dirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot,
                               QDir::Unsorted)
                .size();
        });
}

void addDirPairs()
{
    addCopy("copyDirectoryRecursive, 10 000 of 4 KiB", 10000, 4096);
    addCopy("copyDirectoryRecursive, one of 1 GiB", 1, Q_INT64_C(1) << 30);
    addRemoval();
    addListing();
    addExclusion();
}

const Pairs::Group kGroup(&addDirPairs);

} // namespace
