#include "CCompanyStrings.h"
#include "CPath.h"
#include "DefaultLocale.h"
#include "MessageRecorder.h"
#include "installation/Permissions.h"
#include "installation/SetupIni.h"

#include <QResource>
#include <QtTest>

#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

using Getter = QString (*)();
using ProductGetter = QString (*)(int);

Q_DECLARE_METATYPE(Getter)
Q_DECLARE_METATYPE(ProductGetter)

namespace {

static_assert(!std::is_constructible_v<CCompanyStrings>);
static_assert(std::is_convertible_v<QString, CCreateOnFirstUseSettings>);
static_assert(!std::is_copy_constructible_v<CCreateOnFirstUseSettings>);
static_assert(!std::is_copy_assignable_v<CCreateOnFirstUseSettings>);
static_assert(!std::is_move_constructible_v<CCreateOnFirstUseSettings>);
static_assert(!std::is_move_assignable_v<CCreateOnFirstUseSettings>);
static_assert(sizeof(CCreateOnFirstUseSettings) == sizeof(QString) + sizeof(QSettings *));
static_assert(
    std::is_same_v<decltype(std::declval<CCreateOnFirstUseSettings &>().settings()), QSettings *>);

constexpr int kProducts[] = {90, 91, 92, 93, 94, 101, 102, 103, 104, 105, 106, 107, 108};
constexpr int kNoProducts[] = {0,
                               1,
                               7,
                               -3,
                               -90,
                               89,
                               95,
                               100,
                               109,
                               1000,
                               std::numeric_limits<int>::min(),
                               std::numeric_limits<int>::max()};

constexpr const char *kInstallerKeys[] = {"ProductName", "SplashScreen", "CompanyDirectory"};
constexpr const char *kCompanyKeys[] = {"NameLong",
                                        "NameMedium",
                                        "NameShort",
                                        "AddressName",
                                        "AddressStreet",
                                        "AddressCity",
                                        "WebUrl",
                                        "eMail",
                                        "AddressHtml",
                                        "LogoAndNameBitmap_145x52",
                                        "LogoAndNameBitmap_105x30",
                                        "LogoAndNameBitmap_105x30_inverted",
                                        "Logo_32x32",
                                        "Logo_16x16",
                                        "UpdateVersionFile",
                                        "UpdateChangelogFile",
                                        "UpdatePath",
                                        "OpenSourceUrl"};
constexpr const char *kProductKeys[] = {"Name", "ExeFile", "SplashScreen", "eMail"};
constexpr const char *kUpdateKeys[] = {"UpdateVersionFile", "UpdateChangelogFile", "UpdatePath"};

const QString kResource = QStringLiteral(":/k7eCore/data/Setup.Ini");

//! Returns the directory above that of this program, with a "/" at its end.
QString root()
{
    const QStringList pieces = QCoreApplication::applicationFilePath().split(QLatin1Char('/'));
    return pieces.mid(0, pieces.size() - 2).join(QLatin1Char('/')) + QLatin1Char('/');
}

QString installed(const char *name)
{
    return root() + QLatin1String(name);
}

//! Returns the name of a settings file that was not used before: QSettings knows a file again by
//! its name, size and time.
QString newName()
{
    static int count = 0;
    return QStringLiteral("tst_CCompanyStrings-%1.Ini").arg(++count);
}

//! Takes away the directories that asking makes, as far as they hold nothing but files of a test
//! that was cut off.
void removeDirectories()
{
    QDir conf(installed("etc/conf"));
    const QStringList names = conf.entryList({QStringLiteral("tst_CCompanyStrings-*")});
    for (const QString &name : names)
        conf.remove(name);
    for (const char *name : {"etc/conf", "etc/image", "etc"})
        QDir().rmdir(installed(name));
}

//! A settings file of the installation while it lives.
class SettingsFile
{
public:
    explicit SettingsFile(const QByteArray &bytes, const QString &name = newName()) : mName(name)
    {
        QFile file(path());
        mIsWritten = QDir().mkpath(installed("etc/conf"))
            && file.open(QIODevice::WriteOnly | QIODevice::NewOnly)
            && file.write(bytes) == bytes.size();
    }
    ~SettingsFile()
    {
        if (mIsWritten)
            QFile::remove(path());
    }

    bool isWritten() const { return mIsWritten; }
    QString name() const { return mName; }
    QString path() const { return installed("etc/conf/") + mName; }
    QByteArray bytes() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    Q_DISABLE_COPY(SettingsFile)

    const QString mName;
    bool mIsWritten = false;
};

QString section(int id)
{
    return QStringLiteral("PRODUCT") + QString::fromStdString(std::to_string(id));
}

} // namespace

class tst_CCompanyStrings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void resource();
    void resourceTree();
    void sections();
    void keys_data();
    void keys();
    void productKeys_data();
    void productKeys();
    void values();
    void escapes();

    void company_data();
    void company();
    void images_data();
    void images();
    void imageFile_data();
    void imageFile();
    void products_data();
    void products();
    void productSection_data();
    void productSection();
    void productSectionOfLocale_data();
    void productSectionOfLocale();
    void directories();

    void settingsBuiltIn();
    void settingsOfFile();
    void settingsOfFileOfOtherName();
    void settingsAreChosenOnce();
    void settingsMakeDirectory_data();
    void settingsMakeDirectory();
    void settingsValue_data();
    void settingsValue();

private:
    const QMap<QString, QString> mTexts = setupIniTexts();
    std::unique_ptr<MessageRecorder> mRecorder;
};

// Loading the library makes no directory, neither does a section's name or settings not yet used.
void tst_CCompanyStrings::initTestCase()
{
    removeDirectories();
    QVERIFY(!mTexts.isEmpty());
    QCOMPARE(modeOf(installed("etc")), kNoEntry);
    QCOMPARE(CCompanyStrings::productSection(101), QStringLiteral("PRODUCT101"));
    {
        const CCreateOnFirstUseSettings settings(QStringLiteral("Setup.Ini"));
    }
    QCOMPARE(modeOf(installed("etc")), kNoEntry);
}

void tst_CCompanyStrings::cleanupTestCase()
{
    removeDirectories();
    QCOMPARE(modeOf(installed("etc")), kNoEntry);
}

void tst_CCompanyStrings::init()
{
    mRecorder = std::make_unique<MessageRecorder>();
}

void tst_CCompanyStrings::cleanup()
{
    const QStringList messages = mRecorder->messages();
    mRecorder.reset();
    QCOMPARE(messages, QStringList());
}

void tst_CCompanyStrings::resource()
{
    const QByteArray source = setupIniBytes();
    QVERIFY(source.size() > 1000);
    const QResource resource(kResource);
    QVERIFY(resource.isValid());
    QCOMPARE(resource.compressionAlgorithm(), QResource::NoCompression);
    QCOMPARE(resource.size(), qint64(source.size()));
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(resource.data()), source.size()), source);
    // From format version 2 on a file has the time of its last change.
    QVERIFY(!resource.lastModified().isValid());
    QFile file(kResource);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), source);
}

void tst_CCompanyStrings::resourceTree()
{
    QStringList entries;
    for (QDirIterator it(QStringLiteral(":/k7eCore"), QDirIterator::Subdirectories); it.hasNext();)
        entries += it.next();
    QCOMPARE(entries, QStringList({QStringLiteral(":/k7eCore/data"), kResource}));
}

void tst_CCompanyStrings::sections()
{
    QStringList expected = {QStringLiteral("COMPANY"), QStringLiteral("INSTALLER")};
    for (const int id : kProducts)
        expected += section(id);
    expected.sort();
    CCreateOnFirstUseSettings settings(QStringLiteral("Missing.Ini"));
    QStringList groups = settings.settings()->childGroups();
    groups.sort();
    QCOMPARE(groups, expected);
    QCOMPARE(settings.settings()->childKeys(), QStringList());
    QCOMPARE(settings.settings()->allKeys(), mTexts.keys());
}

void tst_CCompanyStrings::keys_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("mayBeEmpty");
    for (const char *key : kInstallerKeys)
        QTest::addRow("INSTALLER/%s", key)
            << QLatin1String("INSTALLER/") + QLatin1String(key) << false;
    for (const char *key : kCompanyKeys)
        QTest::addRow("COMPANY/%s", key) << QLatin1String("COMPANY/") + QLatin1String(key)
                                         << QByteArray(key).startsWith("Update");
    for (const int id : kProducts) {
        for (const char *key : kProductKeys) {
            const QByteArray name(key);
            QTest::addRow("PRODUCT%d/%s", id, key) << section(id) + QLatin1Char('/')
                    + QLatin1String(key) << (name == "SplashScreen" || name == "eMail");
        }
    }
}

// Each value is one text, as it stands in the file.
void tst_CCompanyStrings::keys()
{
    QFETCH(QString, key);
    QFETCH(bool, mayBeEmpty);
    QVERIFY(mTexts.contains(key));
    QVERIFY(mayBeEmpty || !mTexts.value(key).trimmed().isEmpty());
    CCreateOnFirstUseSettings settings(QStringLiteral("Missing.Ini"));
    QVERIFY(settings.settings()->contains(key));
    QCOMPARE(settings.settings()->value(key).type(), QVariant::String);
    QCOMPARE(settings.settings()->value(key).toString(), mTexts.value(key));
}

void tst_CCompanyStrings::productKeys_data()
{
    QTest::addColumn<int>("id");
    for (const int id : kProducts)
        QTest::addRow("%d", id) << id;
}

// The update locations are there together or not at all, and there are no other keys.
void tst_CCompanyStrings::productKeys()
{
    QFETCH(int, id);
    const QString prefix = section(id) + QLatin1Char('/');
    QStringList plain;
    for (const char *key : kProductKeys)
        plain += prefix + QLatin1String(key);
    QStringList updated = plain;
    for (const char *key : kUpdateKeys)
        updated += prefix + QLatin1String(key);
    QStringList there;
    const QStringList all = mTexts.keys();
    for (const QString &key : all) {
        if (key.startsWith(prefix))
            there += key;
    }
    plain.sort();
    updated.sort();
    there.sort();
    QVERIFY2(there == plain || there == updated, qPrintable(there.join(QLatin1Char(' '))));
}

// What the values have to be for a suite that can be shown.
void tst_CCompanyStrings::values()
{
    const auto text = [this](const char *key) { return mTexts.value(QLatin1String(key)); };
    QCOMPARE(text("INSTALLER/CompanyDirectory") + QLatin1Char('/'), CPath::CPATH_COMPANY);
    for (const char *key : {"COMPANY/NameLong", "COMPANY/NameMedium", "COMPANY/NameShort"})
        QVERIFY2(text(key).startsWith(QLatin1String("KORVALENT")), key);
    QCOMPARE(text("COMPANY/NameShort"), QStringLiteral("KORVALENT"));
    const QString html = text("COMPANY/AddressHtml");
    for (const char *key : {"COMPANY/AddressName", "COMPANY/AddressStreet", "COMPANY/AddressCity"})
        QVERIFY2(html.contains(text(key)), key);
    QVERIFY(html.contains(QLatin1String("<br>")));
    QVERIFY(text("COMPANY/eMail").contains(QLatin1Char('@')));
    for (const char *key : {"COMPANY/WebUrl", "COMPANY/OpenSourceUrl"})
        QVERIFY2(text(key).startsWith(QLatin1String("http")), key);
    for (const char *key : kCompanyKeys) {
        if (QByteArray(key).startsWith("Logo")) {
            const QString image = mTexts.value(QLatin1String("COMPANY/") + QLatin1String(key));
            QVERIFY2(!image.isEmpty() && !image.contains(QLatin1Char('/')), key);
        }
    }
    QSet<QString> names;
    QSet<QString> programs;
    int updated = 0;
    for (const int id : kProducts) {
        const QString prefix = section(id) + QLatin1Char('/');
        names += mTexts.value(prefix + QLatin1String("Name"));
        programs += mTexts.value(prefix + QLatin1String("ExeFile"));
        QVERIFY(!mTexts.value(prefix + QLatin1String("ExeFile")).contains(QLatin1Char('/')));
        QVERIFY(!mTexts.value(prefix + QLatin1String("SplashScreen")).contains(QLatin1Char('/')));
        updated += mTexts.contains(prefix + QLatin1String("UpdatePath")) ? 1 : 0;
    }
    QCOMPARE(names.size(), 13);
    QCOMPARE(programs.size(), 13);
    QVERIFY(updated > 0);
}

// The codec of INI files is not that of the sources: what is not ASCII is escaped.
void tst_CCompanyStrings::escapes()
{
    const QByteArray source = setupIniBytes();
    for (const char byte : source)
        QVERIFY(byte == '\n' || (byte >= ' ' && byte <= '~'));
}

void tst_CCompanyStrings::company_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("key");
    const auto row = [](const char *key, Getter getter) {
        QTest::newRow(key) << getter << QLatin1String("COMPANY/") + QLatin1String(key);
    };
    row("NameLong", &CCompanyStrings::getCompanyLongName);
    row("NameMedium", &CCompanyStrings::getCompanyMediumName);
    row("NameShort", &CCompanyStrings::getCompanyShortName);
    row("AddressName", &CCompanyStrings::getAddressName);
    row("AddressStreet", &CCompanyStrings::getAddressStreet);
    row("AddressCity", &CCompanyStrings::getAddressCity);
    row("AddressHtml", &CCompanyStrings::getAddressHtml);
    row("WebUrl", &CCompanyStrings::getWebUrl);
    row("eMail", &CCompanyStrings::getEMail);
    row("UpdateVersionFile", &CCompanyStrings::getUpdateVersionFile);
    row("UpdatePath", &CCompanyStrings::getUpdatePath);
    row("UpdateChangelogFile", &CCompanyStrings::getUpdateChangelogFile);
    row("OpenSourceUrl", &CCompanyStrings::getOpenSourceUrl);
}

void tst_CCompanyStrings::company()
{
    QFETCH(Getter, getter);
    QFETCH(QString, key);
    QVERIFY(mTexts.contains(key));
    QCOMPARE(getter(), mTexts.value(key));
    QCOMPARE(getter(), mTexts.value(key));
}

void tst_CCompanyStrings::images_data()
{
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<QString>("key");
    const auto row = [](const char *key, Getter getter) {
        QTest::newRow(key) << getter << QLatin1String("COMPANY/") + QLatin1String(key);
    };
    row("LogoAndNameBitmap_145x52", &CCompanyStrings::getLogoAndNameBitmapFile_145x52);
    row("LogoAndNameBitmap_105x30", &CCompanyStrings::getLogoAndNameBitmapFile_105x30);
    row("LogoAndNameBitmap_105x30_inverted",
        &CCompanyStrings::getLogoAndNameBitmapFile_105x30_inverted);
    row("Logo_32x32", &CCompanyStrings::getLogoBitmapFile_32x32);
    row("Logo_16x16", &CCompanyStrings::getLogoBitmapFile_16x16);
}

void tst_CCompanyStrings::images()
{
    QFETCH(Getter, getter);
    QFETCH(QString, key);
    const QString expected = installed("etc/image/") + mTexts.value(key);
    QCOMPARE(getter(), expected);
    QCOMPARE(CCompanyStrings::getImageFile(key), expected);
}

void tst_CCompanyStrings::imageFile_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");
    const auto row = [this](const char *key) {
        const QString text = QLatin1String(key);
        QTest::addRow("\"%s\"", key) << text << mTexts.value(text);
    };
    row("INSTALLER/SplashScreen");
    row("PRODUCT101/SplashScreen");
    row("COMPANY/NameShort");
    QTest::newRow("empty value") << QStringLiteral("PRODUCT90/SplashScreen") << QString();
    QTest::newRow("missing key") << QStringLiteral("COMPANY/Logo_64x64") << QString();
    QTest::newRow("missing section") << QStringLiteral("PRODUCT7/SplashScreen") << QString();
    QTest::newRow("section alone") << QStringLiteral("COMPANY") << QString();
    QTest::newRow("without section") << QStringLiteral("Logo_16x16") << QString();
    QTest::newRow("other case") << QStringLiteral("company/logo_16x16") << QString();
}

void tst_CCompanyStrings::imageFile()
{
    QFETCH(QString, key);
    QFETCH(QString, name);
    QCOMPARE(CCompanyStrings::getImageFile(key),
             name.isEmpty() ? QString() : installed("etc/image/") + name);
}

void tst_CCompanyStrings::products_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("isKnown");
    for (const int id : kProducts)
        QTest::addRow("%d", id) << id << true;
    for (const int id : kNoProducts)
        QTest::addRow("%d, unknown", id) << id << false;
}

void tst_CCompanyStrings::products()
{
    QFETCH(int, id);
    QFETCH(bool, isKnown);
    const auto text = [&](const char *key) {
        return mTexts.value(section(id) + QLatin1Char('/') + QLatin1String(key));
    };
    QCOMPARE(!text("Name").isEmpty(), isKnown);
    const QString splash = text("SplashScreen");
    QCOMPARE(CCompanyStrings::getProductName(id), isKnown ? text("Name") : section(id));
    QCOMPARE(CCompanyStrings::getProductExeFile(id), installed("bin/") + text("ExeFile"));
    QCOMPARE(CCompanyStrings::getProductSplashScreenBitmapFile(id),
             splash.isEmpty() ? QString() : installed("etc/image/") + splash);
    QCOMPARE(CCompanyStrings::getProductEMailAddress(id), text("eMail"));
    QCOMPARE(CCompanyStrings::getProductUpdateVersionFile(id), text("UpdateVersionFile"));
    QCOMPARE(CCompanyStrings::getProductUpdatePath(id), text("UpdatePath"));
    QCOMPARE(CCompanyStrings::getProductUpdateChangelogFile(id), text("UpdateChangelogFile"));
}

void tst_CCompanyStrings::productSection_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0") << 0 << QStringLiteral("PRODUCT0");
    QTest::newRow("7") << 7 << QStringLiteral("PRODUCT7");
    QTest::newRow("101") << 101 << QStringLiteral("PRODUCT101");
    QTest::newRow("1000") << 1000 << QStringLiteral("PRODUCT1000");
    QTest::newRow("-3") << -3 << QStringLiteral("PRODUCT-3");
    QTest::newRow("2^31-1") << std::numeric_limits<int>::max()
                            << QStringLiteral("PRODUCT2147483647");
    QTest::newRow("-2^31") << std::numeric_limits<int>::min()
                           << QStringLiteral("PRODUCT-2147483648");
}

void tst_CCompanyStrings::productSection()
{
    QFETCH(int, id);
    QTEST(CCompanyStrings::productSection(id), "expected");
}

void tst_CCompanyStrings::productSectionOfLocale_data()
{
    QTest::addColumn<QString>("locale");
    for (const char *name : {"en_US", "de_CH", "ar_EG", "fa_IR", "sv_SE"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

// The default locale plays no part: neither its digits and minus sign nor its groups.
void tst_CCompanyStrings::productSectionOfLocale()
{
    QFETCH(QString, locale);
    const DefaultLocale defaultLocale(locale);
    QCOMPARE(CCompanyStrings::productSection(-1234567), QStringLiteral("PRODUCT-1234567"));
    QCOMPARE(CCompanyStrings::getProductName(101), mTexts.value(QStringLiteral("PRODUCT101/Name")));
}

// Images and programs have their directories made, whatever the umask is; texts do not.
void tst_CCompanyStrings::directories()
{
    const QString image = QStringLiteral("COMPANY/Logo_16x16");
    QVERIFY(!CCompanyStrings::getImageFile(image).isEmpty());
    removeDirectories();
    QCOMPARE(modeOf(installed("etc")), kNoEntry);

    const Umask umask(077);
    QVERIFY(!CCompanyStrings::getCompanyShortName().isEmpty());
    QVERIFY(!CCompanyStrings::getProductName(101).isEmpty());
    QCOMPARE(modeOf(installed("etc")), kNoEntry);
    QVERIFY(!CCompanyStrings::getImageFile(image).isEmpty());
    QCOMPARE(modeOf(installed("etc/image")), 0775);
    QCOMPARE(modeOf(installed("etc")), 0700);
    QCOMPARE(modeOf(installed("etc/conf")), kNoEntry);
}

void tst_CCompanyStrings::settingsBuiltIn()
{
    CCreateOnFirstUseSettings settings(QStringLiteral("Missing.Ini"));
    QSettings *const first = settings.settings();
    QVERIFY(first);
    QCOMPARE(settings.settings(), first);
    QCOMPARE(first->fileName(), kResource);
    QCOMPARE(first->format(), QSettings::IniFormat);
    QCOMPARE(first->status(), QSettings::NoError);
    QVERIFY(!first->parent());
    QVERIFY(!first->iniCodec());
    QVERIFY(!first->isWritable());
    QCOMPARE(first->value(QStringLiteral("COMPANY/NameShort")).toString(),
             QStringLiteral("KORVALENT"));
    // An object of its own.
    CCreateOnFirstUseSettings other(QStringLiteral("Missing.Ini"));
    QVERIFY(other.settings() != first);
}

// With a file of the name, all comes from it and nothing from the built-in settings; it stays as it
// is to the byte.
void tst_CCompanyStrings::settingsOfFile()
{
    const QByteArray bytes("; a comment\n\n[COMPANY]\nNameShort = \"Other\"\n[B]\nb=1\n[A]\na=2\n");
    const SettingsFile file(bytes);
    QVERIFY(file.isWritten());
    QVERIFY(setMode(file.path(), 0640));
    {
        CCreateOnFirstUseSettings settings(file.name());
        QSettings *const first = settings.settings();
        QCOMPARE(first->fileName(), file.path());
        QCOMPARE(first->format(), QSettings::IniFormat);
        QVERIFY(!first->parent());
        QVERIFY(!first->iniCodec());
        QCOMPARE(first->allKeys(),
                 QStringList({QStringLiteral("A/a"), QStringLiteral("B/b"),
                              QStringLiteral("COMPANY/NameShort")}));
        QCOMPARE(first->value(QStringLiteral("COMPANY/NameShort")).toString(),
                 QStringLiteral("Other"));
        QVERIFY(first->value(QStringLiteral("COMPANY/NameLong")).toString().isEmpty());
        QCOMPARE(settings.settings(), first);
    }
    QCOMPARE(file.bytes(), bytes);
    QCOMPARE(modeOf(file.path()), 0640);
    QCOMPARE(QDir(installed("etc/conf")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{file.name()});
}

void tst_CCompanyStrings::settingsOfFileOfOtherName()
{
    const SettingsFile file("[COMPANY]\nNameShort=Other\n");
    QVERIFY(file.isWritten());
    for (const QString &name :
         {QStringLiteral("Setup.Ini"), file.name().toLower(), file.name().chopped(4), newName()}) {
        CCreateOnFirstUseSettings settings(name);
        QCOMPARE(settings.settings()->fileName(), kResource);
    }
}

// Neither a file that comes later nor one that goes changes the settings in use.
void tst_CCompanyStrings::settingsAreChosenOnce()
{
    const QString key = QStringLiteral("COMPANY/NameShort");
    const QString name = newName();
    CCreateOnFirstUseSettings builtIn(name);
    QSettings *const before = builtIn.settings();
    CCreateOnFirstUseSettings unused(name);
    CCreateOnFirstUseSettings own(name);
    {
        const SettingsFile file("[COMPANY]\nNameShort=Other\n", name);
        QVERIFY(file.isWritten());
        QCOMPARE(builtIn.settings(), before);
        QCOMPARE(builtIn.settings()->value(key).toString(), QStringLiteral("KORVALENT"));
        QCOMPARE(own.settings()->value(key).toString(), QStringLiteral("Other"));
    }
    QCOMPARE(own.settings()->value(key).toString(), QStringLiteral("Other"));
    QCOMPARE(unused.settings()->fileName(), kResource);
}

void tst_CCompanyStrings::settingsMakeDirectory_data()
{
    QTest::addColumn<int>("mask");
    QTest::newRow("umask 000") << 0;
    QTest::newRow("umask 022") << 022;
    QTest::newRow("umask 077") << 077;
}

// The directory is made by the first use, and is not touched from then on.
void tst_CCompanyStrings::settingsMakeDirectory()
{
    QFETCH(int, mask);
    removeDirectories();
    const Umask umask(mask);
    CCreateOnFirstUseSettings settings(QStringLiteral("Missing.Ini"));
    QCOMPARE(modeOf(installed("etc")), kNoEntry);
    QVERIFY(settings.settings());
    QCOMPARE(modeOf(installed("etc")), 0777 & ~mask);
    QCOMPARE(modeOf(installed("etc/conf")), 0775);
    QVERIFY(QDir(installed("etc/conf")).isEmpty());
    QVERIFY(setMode(installed("etc/conf"), 0710));
    QVERIFY(settings.settings());
    QVERIFY(CCreateOnFirstUseSettings(QStringLiteral("Missing.Ini")).settings());
    QCOMPARE(modeOf(installed("etc/conf")), 0710);
    removeDirectories();
    QVERIFY(settings.settings());
    QCOMPARE(modeOf(installed("etc")), kNoEntry);
}

void tst_CCompanyStrings::settingsValue_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QByteArray("key=a b") << QStringLiteral("a b");
    QTest::newRow("blanks around") << QByteArray("key =  a b  ") << QStringLiteral("a b");
    QTest::newRow("quoted comma") << QByteArray("key=\"a, b\"") << QStringLiteral("a, b");
    QTest::newRow("comma makes a list") << QByteArray("key=a, b") << QString();
    QTest::newRow("quoted semicolon") << QByteArray("key=\"a; b\"") << QStringLiteral("a; b");
    QTest::newRow("semicolon cuts") << QByteArray("key=a; b") << QStringLiteral("a");
    QTest::newRow("place marker") << QByteArray("key=a %1") << QStringLiteral("a %1");
    QTest::newRow("escaped") << QByteArray("key=Z\\xfcrich") << QStringLiteral("Z\u00fcrich");
    QTest::newRow("byte of Latin-1")
        << QByteArray("key=Z\xfcrich") << QStringLiteral("Z\u00fcrich");
    QTest::newRow("UTF-8 is read as Latin-1")
        << QByteArray("key=Z\xc3\xbcrich") << QStringLiteral("Z\u00c3\u00bcrich");
    QTest::newRow("empty") << QByteArray("key=") << QString();
    QTest::newRow("missing") << QByteArray("other=a") << QString();
    QTest::newRow("other case") << QByteArray("KEY=a") << QString();
    QTest::newRow("comment") << QByteArray(";key=a") << QString();
    QTest::newRow("number") << QByteArray("key=007") << QStringLiteral("007");
}

void tst_CCompanyStrings::settingsValue()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, expected);
    const SettingsFile file("[COMPANY]\n" + line + '\n');
    QVERIFY(file.isWritten());
    CCreateOnFirstUseSettings settings(file.name());
    QCOMPARE(settings.settings()->value(QStringLiteral("COMPANY/key")).toString(), expected);
}

QTEST_GUILESS_MAIN(tst_CCompanyStrings)

#include "tst_CCompanyStrings.moc"
