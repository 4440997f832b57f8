#include "Trash_p.h"

#include "CDir.h"
#include "FileSystem_p.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTextStream>

#include <cerrno>
#include <optional>

// A trash directory holds the items in files/ and a record of each, of the same name with
// ".trashinfo" behind it, in info/.

namespace {

// Returns the trash directory, or a null string if there is none.
QString trashDirectory()
{
    QStringList candidates;
    if (qEnvironmentVariableIsSet("XDG_DATA_HOME"))
        candidates += qEnvironmentVariable("XDG_DATA_HOME") + QLatin1String("/Trash");
    const QString home = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    candidates += home + QLatin1String("/.local/share/Trash");
    candidates += home + QLatin1String("/.trash");
    for (const QString &candidate : qAsConst(candidates)) {
        if (QFileInfo(candidate).isDir())
            return candidate;
    }
    return QString();
}

// Returns whether the error of a look-up tells that there is nothing to move, and not only that it
// cannot be seen.
bool saysNothing(int error)
{
    return FileSystem::saysMissing(error) || error == ELOOP || error == ENAMETOOLONG;
}

// Where an item and its record go.
struct Place
{
    Place(const QString &trash, const QString &name)
        : item(trash + QLatin1String("/files/") + name)
        , record(QStringLiteral("%1/info/%2.trashinfo").arg(trash, name))
    {
    }

    QString item;
    QString record;
};

// Returns the name of an item at the attempt 1, 2 and so on.
QString nameAt(int attempt, const QFileInfo &item)
{
    if (attempt == 1)
        return item.fileName();
    const QString name = item.baseName() + QLatin1Char('.') + QString::number(attempt);
    const QString suffix = item.completeSuffix();
    return suffix.isEmpty() ? name : name + QLatin1Char('.') + suffix;
}

// Moves an item to a place that is taken neither by another item nor by a record; QFile::rename()
// would copy it to another file system.
FileSystem::Renaming moveTo(const Place &place, const QString &item)
{
    const std::optional<bool> hasRecord = FileSystem::hasEntry(place.record);
    if (!hasRecord)
        return FileSystem::Renaming::Failed;
    return *hasRecord ? FileSystem::Renaming::Taken : FileSystem::renameNew(item, place.item);
}

// Contract: the time is local although a "Z" follows it, and the path is not percent-encoded.
QString recordText(const QString &path)
{
    const QString date = QLocale::c().toString(QDateTime::currentDateTime(),
                                               QStringLiteral("yyyy-MM-ddThh:mm:ss.zzzZ"));
    return QStringLiteral("[Trash Info]\nPath=%1\nDeletionDate=%2\n").arg(path, date);
}

void writeRecord(const QString &fileName, const QString &text)
{
    QFile file(fileName);
    // Not over a record that another program has written meanwhile.
    if (!file.open(QIODevice::ReadWrite | QIODevice::NewOnly))
        return;
    QTextStream out(&file);
    out.setCodec("UTF-8");
    out << text;
}

} // namespace

int Trash::move(const QString &path)
{
    const QString trash = trashDirectory();
    if (trash.isNull())
        return CDir::TRASH_FAILED;
    const QString place = QFileInfo(path).filePath(); // of a search path, what it leads to
    if (const int error = FileSystem::lookUp(place))
        return saysNothing(error) ? CDir::TRASH_NO_SUCH_PATH : CDir::TRASH_FAILED;
    const QString resolved = FileSystem::resolved(place);
    if (resolved.isEmpty())
        return CDir::TRASH_FAILED;
    const QFileInfo item(QDir::cleanPath(QFileInfo(resolved).absoluteFilePath()));
    const QString text = recordText(item.filePath());
    for (int attempt = 1;; ++attempt) {
        const Place target(trash, nameAt(attempt, item));
        const FileSystem::Renaming renaming = moveTo(target, item.filePath());
        if (renaming == FileSystem::Renaming::Taken)
            continue;
        if (renaming == FileSystem::Renaming::Failed)
            return CDir::TRASH_FAILED;
        writeRecord(target.record, text);
        return CDir::TRASH_MOVED;
    }
}
