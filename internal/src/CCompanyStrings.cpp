#include "CCompanyStrings.h"

#include "CPath.h"

#include <QFileInfo>

#include <mutex>

namespace {

// Held while the pointer to settings is read or set. Needs no construction: other programs' statics
// may ask.
std::mutex access;

QSettings *openSettings(const QString &fileName)
{
    const QString installed = CPath::constConfigPath(true) + fileName;
    // The built-in ones whatever the file's name is.
    const QString file
        = QFileInfo(installed).isFile() ? installed : QStringLiteral(":/k7eCore/data/Setup.Ini");
    return new QSettings(file, QSettings::IniFormat);
}

QString productKey(int id, const char *key)
{
    return CCompanyStrings::productSection(id) + QLatin1String(key);
}

} // namespace

CCreateOnFirstUseSettings::CCreateOnFirstUseSettings(QString fileName)
    : mFileName(std::move(fileName))
{
}

CCreateOnFirstUseSettings::~CCreateOnFirstUseSettings() = default;

QSettings *CCreateOnFirstUseSettings::settings()
{
    {
        const std::lock_guard<std::mutex> lock(access);
        if (mSettings)
            return mSettings.get();
    }
    // Not under the lock: a message that is logged there may have a handler that asks for settings.
    // What was returned first stays.
    QScopedPointer<QSettings> made(openSettings(mFileName));
    const std::lock_guard<std::mutex> lock(access);
    if (!mSettings)
        mSettings.swap(made);
    return mSettings.get();
}

void CCreateOnFirstUseSettings::Init()
{
    mSettings.reset(openSettings(mFileName));
}

CCreateOnFirstUseSettings CCompanyStrings::mSettings(QStringLiteral("Setup.Ini"));

QString CCompanyStrings::text(const QString &key)
{
    return mSettings.settings()->value(key).toString();
}

QString CCompanyStrings::getCompanyLongName()
{
    return text(QStringLiteral("COMPANY/NameLong"));
}

QString CCompanyStrings::getCompanyMediumName()
{
    return text(QStringLiteral("COMPANY/NameMedium"));
}

QString CCompanyStrings::getCompanyShortName()
{
    return text(QStringLiteral("COMPANY/NameShort"));
}

QString CCompanyStrings::getAddressName()
{
    return text(QStringLiteral("COMPANY/AddressName"));
}

QString CCompanyStrings::getAddressStreet()
{
    return text(QStringLiteral("COMPANY/AddressStreet"));
}

QString CCompanyStrings::getAddressCity()
{
    return text(QStringLiteral("COMPANY/AddressCity"));
}

QString CCompanyStrings::getAddressHtml()
{
    return text(QStringLiteral("COMPANY/AddressHtml"));
}

QString CCompanyStrings::getWebUrl()
{
    return text(QStringLiteral("COMPANY/WebUrl"));
}

QString CCompanyStrings::getEMail()
{
    return text(QStringLiteral("COMPANY/eMail"));
}

QString CCompanyStrings::getUpdateVersionFile()
{
    return text(QStringLiteral("COMPANY/UpdateVersionFile"));
}

QString CCompanyStrings::getUpdatePath()
{
    return text(QStringLiteral("COMPANY/UpdatePath"));
}

QString CCompanyStrings::getUpdateChangelogFile()
{
    return text(QStringLiteral("COMPANY/UpdateChangelogFile"));
}

QString CCompanyStrings::getOpenSourceUrl()
{
    return text(QStringLiteral("COMPANY/OpenSourceUrl"));
}

QString CCompanyStrings::getImageFile(const QString &key)
{
    const QString name = text(key);
    return name.isEmpty() ? QString() : CPath::imagePath(true) + name;
}

QString CCompanyStrings::getLogoAndNameBitmapFile_145x52()
{
    return getImageFile(QStringLiteral("COMPANY/LogoAndNameBitmap_145x52"));
}

QString CCompanyStrings::getLogoAndNameBitmapFile_105x30()
{
    return getImageFile(QStringLiteral("COMPANY/LogoAndNameBitmap_105x30"));
}

QString CCompanyStrings::getLogoAndNameBitmapFile_105x30_inverted()
{
    return getImageFile(QStringLiteral("COMPANY/LogoAndNameBitmap_105x30_inverted"));
}

QString CCompanyStrings::getLogoBitmapFile_32x32()
{
    return getImageFile(QStringLiteral("COMPANY/Logo_32x32"));
}

QString CCompanyStrings::getLogoBitmapFile_16x16()
{
    return getImageFile(QStringLiteral("COMPANY/Logo_16x16"));
}

QString CCompanyStrings::getProductSplashScreenBitmapFile(int id)
{
    return getImageFile(productKey(id, "/SplashScreen"));
}

QString CCompanyStrings::productSection(int id)
{
    return QLatin1String("PRODUCT") + QString::number(id);
}

QString CCompanyStrings::getProductName(int id)
{
    const QString name = text(productKey(id, "/Name"));
    return name.isEmpty() ? productSection(id) : name;
}

QString CCompanyStrings::getProductExeFile(int id)
{
    return CPath::binPath(true) + text(productKey(id, "/ExeFile"));
}

QString CCompanyStrings::getProductEMailAddress(int id)
{
    return text(productKey(id, "/eMail"));
}

QString CCompanyStrings::getProductUpdateVersionFile(int id)
{
    return text(productKey(id, "/UpdateVersionFile"));
}

QString CCompanyStrings::getProductUpdatePath(int id)
{
    return text(productKey(id, "/UpdatePath"));
}

QString CCompanyStrings::getProductUpdateChangelogFile(int id)
{
    return text(productKey(id, "/UpdateChangelogFile"));
}
