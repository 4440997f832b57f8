#include "CDir.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "FileError.h"

void runTrash(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Moves a file or a directory into your trash."));
    line.addArgument(QStringLiteral("PATH"), QStringLiteral("What to move."));
    if (!line.parse(arguments, console))
        return;
    const QString path = line.arguments().first();
    switch (CDir::moveToTrash(path)) {
    case CDir::TRASH_MOVED:
        return;
    case CDir::TRASH_NO_SUCH_PATH:
        reportFileError(path, QStringLiteral("No such file or directory"), console);
        return;
    default:
        reportFileError(
            path, QStringLiteral("not moved: no trash directory, or one on another file system"),
            console);
    }
}
