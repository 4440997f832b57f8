#include "CDir.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "FileError.h"
#include "ProgressLine.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <sys/stat.h>

namespace {

bool copyTree(const QString &source, const QString &target)
{
    ProgressLine progress(QStringLiteral("copied %1 of %2"));
    return CDir::copyDirectoryRecursive(source, target, [&progress](int done, int total) {
        progress.show(done, total);
        return true;
    });
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
    struct stat status;
    if (stat(QFile::encodeName(source).constData(), &status) != 0)
        reportFileError(source, qt_error_string(errno), console);
    else if (info.isDir() ? !copyTree(source, target) : !CDir::copyFile(source, target))
        reportFileError(source, QStringLiteral("not copied, or not all of it"), console);
}
