#include "CCompanyStrings.h"
#include "CPath.h"
#include "CStr.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <cstdio>

// Prints what the library tells the program that it is part of, a line "name=value" each. The
// arguments name the steps in their order; without any, all but those that change something run.

namespace {

constexpr int kIds[]
    = {90, 91, 92, 93, 94, 101, 102, 103, 104, 105, 106, 107, 108, 0, 7, -3, 89, 95, 100, 109};

void print(const QString &name, const QString &value)
{
    std::printf("%s=%s\n", name.toUtf8().constData(), value.toUtf8().constData());
}

void print(const char *name, const QString &value)
{
    print(QString::fromLatin1(name), value);
}

struct Directory
{
    const char *name;
    QString (*path)(bool);
};

constexpr Directory kInstalled[] = {
    {"binPath", &CPath::binPath},
    {"libPath", &CPath::libPath},
    {"etcPath", &CPath::etcPath},
    {"txtPath", &CPath::txtPath},
    {"imagePath", &CPath::imagePath},
    {"docPath", &CPath::docPath},
    {"constConfigPath", &CPath::constConfigPath},
    {"constDataPath", &CPath::constDataPath},
};

constexpr Directory kWritten[] = {
    {"configPath", &CPath::configPath}, {"logPath", &CPath::logPath},
    {"motorPath", &CPath::motorPath},   {"paramPath", &CPath::paramPath},
    {"dataPath", &CPath::dataPath},     {"projectPath", &CPath::projectPath},
};

void printNothing()
{
}

void printPaths()
{
    print("installPath", CPath::installPath());
    print("productName", CPath::productName());
    print("appdataPath", CPath::appdataPath());
    print("userdataPath", CPath::userdataPath());
    for (const Directory &directory : kInstalled)
        print(directory.name, directory.path(false));
    for (const Directory &directory : kWritten)
        print(directory.name, directory.path(false));
}

void printMade()
{
    for (const Directory &directory : kInstalled)
        print(directory.name, directory.path(true));
}

void printExisting()
{
    for (const Directory &directory : kInstalled) {
        print(QLatin1String("exists.") + QLatin1String(directory.name),
              QString::number(QFileInfo(directory.path(false)).isDir()));
    }
}

void printSections()
{
    for (const int id : kIds)
        print(QStringLiteral("productSection.%1").arg(id), CCompanyStrings::productSection(id));
}

void printCompany()
{
    print("getCompanyLongName", CCompanyStrings::getCompanyLongName());
    print("getCompanyMediumName", CCompanyStrings::getCompanyMediumName());
    print("getCompanyShortName", CCompanyStrings::getCompanyShortName());
    print("getAddressName", CCompanyStrings::getAddressName());
    print("getAddressStreet", CCompanyStrings::getAddressStreet());
    print("getAddressCity", CCompanyStrings::getAddressCity());
    print("getAddressHtml", CCompanyStrings::getAddressHtml());
    print("getWebUrl", CCompanyStrings::getWebUrl());
    print("getEMail", CCompanyStrings::getEMail());
    print("getUpdateVersionFile", CCompanyStrings::getUpdateVersionFile());
    print("getUpdatePath", CCompanyStrings::getUpdatePath());
    print("getUpdateChangelogFile", CCompanyStrings::getUpdateChangelogFile());
    print("getOpenSourceUrl", CCompanyStrings::getOpenSourceUrl());
}

void printImages()
{
    print("getLogoAndNameBitmapFile_145x52", CCompanyStrings::getLogoAndNameBitmapFile_145x52());
    print("getLogoAndNameBitmapFile_105x30", CCompanyStrings::getLogoAndNameBitmapFile_105x30());
    print("getLogoAndNameBitmapFile_105x30_inverted",
          CCompanyStrings::getLogoAndNameBitmapFile_105x30_inverted());
    print("getLogoBitmapFile_32x32", CCompanyStrings::getLogoBitmapFile_32x32());
    print("getLogoBitmapFile_16x16", CCompanyStrings::getLogoBitmapFile_16x16());
    print("getImageFile", CCompanyStrings::getImageFile(QStringLiteral("COMPANY/Logo_16x16")));
    print("getImageFile.missing", CCompanyStrings::getImageFile(QStringLiteral("COMPANY/None")));
}

void printProducts()
{
    const struct
    {
        const char *name;
        QString (*value)(int);
    } getters[] = {
        {"getProductName", &CCompanyStrings::getProductName},
        {"getProductExeFile", &CCompanyStrings::getProductExeFile},
        {"getProductSplashScreenBitmapFile", &CCompanyStrings::getProductSplashScreenBitmapFile},
        {"getProductEMailAddress", &CCompanyStrings::getProductEMailAddress},
        {"getProductUpdateVersionFile", &CCompanyStrings::getProductUpdateVersionFile},
        {"getProductUpdatePath", &CCompanyStrings::getProductUpdatePath},
        {"getProductUpdateChangelogFile", &CCompanyStrings::getProductUpdateChangelogFile},
    };
    for (const int id : kIds) {
        for (const auto &getter : getters) {
            print(QLatin1String(getter.name) + QStringLiteral(".%1").arg(id), getter.value(id));
        }
    }
}

void printTitles()
{
    const QString date = QStringLiteral("Nov  5 2026");
    const QString name = QStringLiteral("Scope %1");
    const QString version = QStringLiteral("1.60");
    const QString extra = QStringLiteral("beta");
    for (const char *locale : {"en_US", "de_DE"}) {
        print(QLatin1String("createApplicationTitle.") + QLatin1String(locale),
              CStr::createApplicationTitle(QLocale(QLatin1String(locale)), date, name, version,
                                           extra));
    }
    print("createShortApplicationTitle",
          CStr::createShortApplicationTitle(QLocale(), name, version, date, 1234));
    print("createShortApplicationTitle.bare",
          CStr::createShortApplicationTitle(QLocale(), name, version, QString(), 0));
}

void printDates()
{
    for (const char *month : {"Mar", "May", "Mai", "Oct", "Okt", "Dec", "Dez"}) {
        const QDate date
            = CStr::createQDateFrom__DATE__(QLatin1String(month) + QLatin1String("  5 2026"));
        print(QLatin1String("date.") + QLatin1String(month), date.toString(Qt::ISODate));
    }
}

void printLogs()
{
    print("createLogFileName", CStr::createLogFileName(QString(), false));
    print("createLogFileName.pid", CStr::createLogFileName(QString(), true));
    print("createLogFileName.named", CStr::createLogFileName(QStringLiteral("a/b.c.d"), false));
}

// A settings file that comes after the first use.
void printLate()
{
    print("early", CCompanyStrings::getCompanyShortName());
    QFile file(CPath::constConfigPath() + QLatin1String("Setup.Ini"));
    const bool isWritten
        = file.open(QIODevice::WriteOnly) && file.write("[COMPANY]\nNameShort=Late\n") > 0;
    file.close();
    print("written", QString::number(isWritten));
    print("late", CCompanyStrings::getCompanyShortName());
}

// A settings file that goes after the first use.
void printGone()
{
    print("early", CCompanyStrings::getCompanyShortName());
    print("removed",
          QString::number(QFile::remove(CPath::constConfigPath() + QLatin1String("Setup.Ini"))));
    print("late", CCompanyStrings::getCompanyShortName());
}

struct Step
{
    const char *name;
    void (*print)();
    bool isPlain;
};

constexpr Step kSteps[] = {
    {"nothing", &printNothing, true},   {"paths", &printPaths, true},
    {"sections", &printSections, true}, {"logs", &printLogs, true},
    {"dates", &printDates, true},       {"company", &printCompany, true},
    {"titles", &printTitles, true},     {"images", &printImages, true},
    {"products", &printProducts, true}, {"existing", &printExisting, true},
    {"made", &printMade, false},        {"late", &printLate, false},
    {"gone", &printGone, false},
};

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList names = QCoreApplication::arguments().mid(1);
    if (names.isEmpty()) {
        for (const Step &step : kSteps) {
            if (step.isPlain)
                step.print();
        }
        return 0;
    }
    for (const QString &name : names) {
        const Step *known = nullptr;
        for (const Step &step : kSteps) {
            if (name == QLatin1String(step.name))
                known = &step;
        }
        if (!known)
            return 1;
        known->print();
    }
    return 0;
}
