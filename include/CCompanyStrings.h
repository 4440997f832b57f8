#ifndef CCOMPANYSTRINGS_H
#define CCOMPANYSTRINGS_H

#include "k7eCoreExport.h"

#include <QScopedPointer>
#include <QSettings>
#include <QString>

/*!
    The settings of an INI file in the directory CPath::constConfigPath(), or those that are built
    in, which are opened when they are first asked for.

    Threads may call settings() at once, the first time too. Init() must not race with any call.
*/
class K7ECORE_EXPORT CCreateOnFirstUseSettings
{
public:
    //! Keeps the name of the file, without a directory; opens nothing.
    CCreateOnFirstUseSettings(QString fileName);
    //! Closes the settings.
    ~CCreateOnFirstUseSettings();

    //! Returns the settings, which stay with this object; the first call opens them as
    //! Init() does.
    QSettings *settings();
    /*!
        Opens the settings: those of the file if it is there, which must be so at this moment,
        otherwise those that are built in. The directory is made if it is missing.
    */
    void Init();

private:
    Q_DISABLE_COPY(CCreateOnFirstUseSettings)

    QString mFileName;
    QScopedPointer<QSettings> mSettings;
};

/*!
    The maker's names, address and images, and the names, files and update locations of the programs
    of the suite, each known by its product id.

    They come from the file Setup.Ini in the directory CPath::constConfigPath() if there was one
    when the first of them was asked for, otherwise from the one that is built in; the two are never
    mixed. What a file does not have is an empty string. Threads may ask at once, the first time
    too; nobody may when the library's static objects are destroyed, at the end of the program.
*/
class K7ECORE_EXPORT CCompanyStrings
{
public:
    CCompanyStrings() = delete;

    //! \name The maker, section COMPANY
    //! @{
    Q_REQUIRED_RESULT static QString getCompanyLongName();
    Q_REQUIRED_RESULT static QString getCompanyMediumName();
    Q_REQUIRED_RESULT static QString getCompanyShortName();
    Q_REQUIRED_RESULT static QString getAddressName();
    Q_REQUIRED_RESULT static QString getAddressStreet();
    Q_REQUIRED_RESULT static QString getAddressCity();
    Q_REQUIRED_RESULT static QString getAddressHtml(); //!< the whole address as rich text
    Q_REQUIRED_RESULT static QString getWebUrl();
    Q_REQUIRED_RESULT static QString getEMail();
    Q_REQUIRED_RESULT static QString getUpdateVersionFile();
    Q_REQUIRED_RESULT static QString getUpdatePath();
    Q_REQUIRED_RESULT static QString getUpdateChangelogFile();
    Q_REQUIRED_RESULT static QString getOpenSourceUrl();
    //! @}

    //! \name Images
    //! Paths in the directory CPath::imagePath(), which is made if it is missing; empty if none is
    //! named.
    //! @{
    Q_REQUIRED_RESULT static QString
    getImageFile(const QString &key); //!< of a key such as "COMPANY/Logo_16x16"
    Q_REQUIRED_RESULT static QString getLogoAndNameBitmapFile_145x52();
    Q_REQUIRED_RESULT static QString getLogoAndNameBitmapFile_105x30();
    Q_REQUIRED_RESULT static QString getLogoAndNameBitmapFile_105x30_inverted();
    Q_REQUIRED_RESULT static QString getLogoBitmapFile_32x32();
    Q_REQUIRED_RESULT static QString getLogoBitmapFile_16x16();
    Q_REQUIRED_RESULT static QString getProductSplashScreenBitmapFile(int id);
    //! @}

    //! \name The programs, section PRODUCT and the id
    //! @{

    //! Returns the name of the section, "PRODUCT101".
    Q_REQUIRED_RESULT static QString productSection(int id);
    //! Returns the program's name, or that of its section if it has none.
    Q_REQUIRED_RESULT static QString getProductName(int id);
    //! Returns the path of the executable in the directory CPath::binPath(), which is made if it is
    //! missing; the directory alone if none is named.
    Q_REQUIRED_RESULT static QString getProductExeFile(int id);
    Q_REQUIRED_RESULT static QString getProductEMailAddress(int id);
    Q_REQUIRED_RESULT static QString getProductUpdateVersionFile(int id);
    Q_REQUIRED_RESULT static QString getProductUpdatePath(int id);
    Q_REQUIRED_RESULT static QString getProductUpdateChangelogFile(int id);
    //! @}

private:
    static CCreateOnFirstUseSettings mSettings;

    static QString text(const QString &key);
};

#endif // CCOMPANYSTRINGS_H
