#include "CDir.h"
#include "CPath.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "FileError.h"
#include "ProgressLine.h"

#include <QFileInfo>

namespace {

// Copies the entry to its place; a failure is told on standard output.
bool copyEntry(const QFileInfo &entry, const QString &destination)
{
    return entry.isDir() ? CDir::copyDirectory(entry.filePath(), destination)
                         : CDir::copyFile(entry.filePath(), destination);
}

bool copyTree(const QString &source, const QString &target)
{
    const QFileInfoList entries = CDir::listFileAndDirInfos(source).mid(1);
    ProgressLine progress(QStringLiteral("copied %1 of %2"), entries.size());
    for (const QFileInfo &entry : entries) {
        const QString destination = CPath::ensurePathSeparatorAtEnd(target)
            + CDir::getRelativeSubPath(source, entry.filePath());
        if (!copyEntry(entry, destination))
            return false;
        progress.step();
    }
    return true;
}

} // namespace

void runCopy(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Copies a file, or what is in a directory, without hidden "
                                    "entries. What is there is\nnot overwritten."));
    line.addArgument(QStringLiteral("SOURCE"), QStringLiteral("The file or directory."));
    line.addArgument(QStringLiteral("TARGET"),
                     QStringLiteral("The file to make, or the directory that gets the content."));
    if (!line.parse(arguments, console))
        return;
    const QString source = line.arguments().at(0);
    const QString target = line.arguments().at(1);
    const QFileInfo info(source);
    if (!info.exists())
        reportFileError(source, QStringLiteral("No such file or directory"), console);
    else if (info.isDir() ? !copyTree(source, target) : !CDir::copyFile(source, target))
        reportFileError(source, QStringLiteral("not copied, or not all of it"), console);
}
