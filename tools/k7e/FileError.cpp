#include "FileError.h"

#include "Console.h"
#include "ValueText.h"

#include <QFile>

void reportFileError(const QString &fileName, const QString &text, Console &console)
{
    console.error(QStringLiteral("%1: %2").arg(visible(fileName), text));
}

bool openInput(QFile &file, Console &console)
{
    if (file.fileName().isEmpty()) {
        // Qt would add a message of its own.
        reportFileError(QString(), QStringLiteral("No such file or directory"), console);
        return false;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        reportFileError(file.fileName(), file.errorString(), console);
        return false;
    }
    return true;
}
