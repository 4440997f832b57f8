#include "FileSystem_p.h"

#include "Nk7eGlobal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>

bool FileSystem::makeDirectory(const QString &path)
{
    const QDir directory(resolved(path));
    if (directory.exists())
        return true;
    const QString absolute = directory.absolutePath();
    if (!directory.mkpath(absolute))
        return false;
    QFile::setPermissions(absolute, Nk7eGlobal::PATH_PERMISSIONS);
    return true;
}

QString FileSystem::resolved(const QString &path)
{
    const QLatin1Char separator('/');
    const QLatin1String parent("..");
    const QStringList parts = path.split(separator, Qt::SkipEmptyParts);
    if (!parts.contains(parent))
        return path;
    QString result = path.startsWith(separator) ? QString(separator) : QDir::currentPath();
    for (const QString &part : parts) {
        if (part == parent) {
            const QString canonical = QFileInfo(result).canonicalFilePath();
            result = QFileInfo(canonical.isEmpty() ? result : canonical).path();
        } else if (part != QLatin1String(".")) {
            if (!result.endsWith(separator))
                result += separator;
            result += part;
        }
    }
    return result;
}

bool FileSystem::hasEntry(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

bool FileSystem::renameEntry(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}
