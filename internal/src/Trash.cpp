#include "Trash_p.h"

#include "FileSystem_p.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTextStream>

// A trash directory holds the items in files/ and a record of each, of the same name with
// ".trashinfo" behind it, in info/.

namespace {

enum Result { Moved = 0, Failed = 1, NoSuchPath = 10 };

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

// Where an item and its record go.
struct Place
{
    Place(const QString &trash, const QString &name)
        : item(trash + QLatin1String("/files/") + name)
        , record(QStringLiteral("%1/info/%2.trashinfo").arg(trash, name))
    {
    }

    bool isTaken() const { return FileSystem::hasEntry(item) || FileSystem::hasEntry(record); }

    QString item;
    QString record;
};

Place freePlace(const QString &trash, const QFileInfo &item)
{
    Place place(trash, item.fileName());
    const QString suffix = item.completeSuffix();
    for (int counter = 2; place.isTaken(); ++counter) {
        QString name = item.baseName() + QLatin1Char('.') + QString::number(counter);
        if (!suffix.isEmpty())
            name += QLatin1Char('.') + suffix;
        place = Place(trash, name);
    }
    return place;
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
    if (!file.open(QIODevice::ReadWrite))
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
        return Failed;
    if (!QFileInfo::exists(path))
        return NoSuchPath;
    const QString place = QFileInfo(FileSystem::resolved(path)).absoluteFilePath();
    const QFileInfo item(QDir::cleanPath(place));
    const QString text = recordText(item.filePath());
    const Place target = freePlace(trash, item);
    // QFile::rename() would copy to another file system.
    if (!FileSystem::renameEntry(item.filePath(), target.item))
        return Failed;
    writeRecord(target.record, text);
    return Moved;
}
