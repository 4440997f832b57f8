#include "CPath.h"

#include "FileSystem_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

namespace {

constexpr QChar kSeparator = QLatin1Char('/');

bool isSeparator(QChar character)
{
    return character == kSeparator || character == QDir::separator();
}

// What a file name loses; a backslash may stay.
bool isUnwanted(QChar character)
{
    return QLatin1String("<>:!?|\"").contains(character);
}

// The parent of the program's directory, by its text: the installation may be gone by now.
QString installDirectory()
{
    return QFileInfo(QCoreApplication::applicationDirPath()).absolutePath();
}

} // namespace

const QString CPath::CPATH_BIN = QStringLiteral("bin/");
const QString CPath::CPATH_LIB = QStringLiteral("lib/");
const QString CPath::CPATH_ETC = QStringLiteral("etc/");
const QString CPath::CPATH_TXT = QStringLiteral("etc/txt/");
const QString CPath::CPATH_IMG = QStringLiteral("etc/image/");
const QString CPath::CPATH_DOC = QStringLiteral("etc/doc/");
const QString CPath::CPATH_CCONF = QStringLiteral("etc/conf/");
const QString CPath::CPATH_CDATA = QStringLiteral("etc/data/");
const QString CPath::CPATH_PLUGINS = QStringLiteral("plugins/");
const QString CPath::CPATH_CONF = QStringLiteral("conf/");
const QString CPath::CPATH_LOG = QStringLiteral("log/");
const QString CPath::CPATH_MOT = QStringLiteral("motor/");
const QString CPath::CPATH_PAR = QStringLiteral("param/");
const QString CPath::CPATH_DAT = QStringLiteral("data/");
const QString CPath::CPATH_PRJ = QStringLiteral("project/");
const QString CPath::CPATH_COMPANY = QStringLiteral("KORVALENT/");

QString CPath::installPath()
{
    return installDirectory() + kSeparator;
}

QString CPath::productName()
{
    return QFileInfo(installDirectory()).fileName();
}

QString CPath::appdataPath()
{
    return kSeparator + CPATH_COMPANY;
}

QString CPath::userdataPath()
{
    return kSeparator + CPATH_COMPANY;
}

QString CPath::binPath(bool create)
{
    return createDirIfWanted(installPath() + CPATH_BIN, create);
}

QString CPath::libPath(bool create)
{
    return createDirIfWanted(installPath() + CPATH_LIB, create);
}

QString CPath::etcPath(bool create)
{
    return createDirIfWanted(installPath() + CPATH_ETC, create);
}

QString CPath::txtPath(bool create)
{
    return createDirIfWanted(installPath() + CPATH_TXT, create);
}

QString CPath::imagePath(bool create)
{
    return createDirIfWanted(installPath() + CPATH_IMG, create);
}

QString CPath::docPath(bool create)
{
    return createDirIfWanted(installPath() + CPATH_DOC, create);
}

QString CPath::constConfigPath(bool create)
{
    return createDirIfWanted(installPath() + CPATH_CCONF, create);
}

QString CPath::constDataPath(bool create)
{
    return createDirIfWanted(installPath() + CPATH_CDATA, create);
}

QString CPath::configPath(bool create)
{
    return createDirIfWanted(appdataPath() + CPATH_CONF, create);
}

QString CPath::logPath(bool create)
{
    return createDirIfWanted(appdataPath() + CPATH_LOG, create);
}

QString CPath::motorPath(bool create)
{
    return createDirIfWanted(userdataPath() + CPATH_MOT, create);
}

QString CPath::paramPath(bool create)
{
    return createDirIfWanted(userdataPath() + CPATH_PAR, create);
}

QString CPath::dataPath(bool create)
{
    return createDirIfWanted(userdataPath() + CPATH_DAT, create);
}

QString CPath::projectPath(bool create)
{
    return createDirIfWanted(userdataPath() + CPATH_PRJ, create);
}

QString CPath::createDirIfWanted(QString path, bool create)
{
    if (create)
        FileSystem::makeDirectory(path);
    return path;
}

bool CPath::doesFilenameContainPath(const QString &name)
{
    return std::any_of(name.begin(), name.end(), isSeparator);
}

QString CPath::prependPathIfNoPathIsGiven(const QString &fileName, const QString &path)
{
    if (fileName.isEmpty() || doesFilenameContainPath(fileName))
        return fileName;
    return QFileInfo(path).dir().absoluteFilePath(fileName);
}

QString CPath::trimPathIfPathIsEqual(const QString &filePath, const QString &path)
{
    if (filePath.isEmpty())
        return filePath;
    const QFileInfo info(filePath);
    return info.dir() == QDir(path) ? info.fileName() : filePath;
}

QString CPath::filePath(const QString &fileName)
{
    return fileName.isEmpty() ? QString() : QFileInfo(fileName).absolutePath();
}

QString CPath::ensurePathSeparatorAtEnd(QString path)
{
    if (path.isEmpty() || !isSeparator(path.back()))
        path += kSeparator;
    return path;
}

QString CPath::ensurePathSeparatorAtStart(const QString &path)
{
    return path.isEmpty() || !isSeparator(path.front()) ? kSeparator + path : path;
}

QString CPath::removePathSeparatorAtStart(const QString &path)
{
    return path.isEmpty() || !isSeparator(path.front()) ? path : path.mid(1);
}

QString CPath::removePathSeparatorAtEnd(const QString &path)
{
    return path.isEmpty() || !isSeparator(path.back()) ? path : path.chopped(1);
}

QString CPath::addPathToPath(const QString &path, const QString &subPath)
{
    return ensurePathSeparatorAtEnd(ensurePathSeparatorAtEnd(path) + subPath);
}

QString CPath::addFileNameToPath(const QString &path, const QString &fileName)
{
    return ensurePathSeparatorAtEnd(path) + fileName;
}

QString CPath::cleanFileName(const QString &filePath)
{
    const QFileInfo info(filePath);
    QString name = info.fileName().simplified();
    const auto end = std::remove_if(name.begin(), name.end(), isUnwanted);
    name.truncate(static_cast<int>(end - name.begin()));
    return info.absolutePath() + kSeparator + name;
}
