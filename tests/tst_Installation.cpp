#include "installation/Permissions.h"
#include "installation/SetupIni.h"

#include <QDirIterator>
#include <QLibrary>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

// A program is copied into an installation and run there. It is linked with the library, this test
// is not.

using Texts = QMap<QString, QString>;

namespace {

constexpr int kProducts[] = {90, 91, 92, 93, 94, 101, 102, 103, 104, 105, 106, 107, 108};
constexpr int kNoProducts[] = {0, 7, -3, 89, 95, 100, 109};

struct Outcome
{
    int status = -1; // -1: the program did not end in order
    qint64 id = 0;
    QStringList lines; // sorted
    QString errors;
};

//! An installation of the program in a directory of its own.
class Installation
{
public:
    explicit Installation(const QString &program = QStringLiteral("bin/probe"),
                          const QString &root = QStringLiteral("x/y"))
        : mRoot(QFileInfo(mDir.path()).canonicalFilePath() + QLatin1Char('/') + root
                + QLatin1Char('/'))
        , mProgram(mRoot + program)
    {
        mIsValid = mDir.isValid() && QDir().mkpath(QFileInfo(mProgram).path())
            && QFile::copy(QStringLiteral(K7E_PROBE), mProgram) && setMode(mProgram, 0755)
            && setMode(QFileInfo(mProgram).path(), 0710);
    }

    bool isValid() const { return mIsValid; }
    QString root() const { return mRoot; } // with a "/" at its end
    QString above() const { return mDir.path(); }
    QString path(const char *name) const { return mRoot + QLatin1String(name); }

    //! Writes the installation's settings, in a directory that is there from then on.
    bool writeSettings(const QByteArray &bytes) const
    {
        QFile file(path("etc/conf/Setup.Ini"));
        return QDir().mkpath(path("etc/conf")) && setMode(path("etc"), 0750)
            && setMode(path("etc/conf"), 0750) && file.open(QIODevice::WriteOnly)
            && file.write(bytes) == bytes.size() && setMode(file.fileName(), 0640);
    }
    QByteArray settings() const
    {
        QFile file(path("etc/conf/Setup.Ini"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    Outcome run(const QStringList &steps, const QString &locale = QStringLiteral("C.UTF-8")) const
    {
        QProcess process;
        process.setWorkingDirectory(QDir::rootPath());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LC_ALL"), locale);
        environment.insert(QStringLiteral("LANG"), locale);
        process.setProcessEnvironment(environment);
        process.start(mProgram, steps);
        Outcome outcome;
        if (!process.waitForStarted())
            return outcome;
        outcome.id = process.processId();
        if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
            outcome.status = process.exitCode();
        outcome.lines = QString::fromUtf8(process.readAllStandardOutput())
                            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        outcome.lines.sort();
        outcome.errors = QString::fromUtf8(process.readAllStandardError());
        return outcome;
    }

    //! Returns all that there is, as "name mode", sorted.
    QStringList entries() const
    {
        QStringList entries;
        for (QDirIterator it(mRoot, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
             it.hasNext();) {
            const QString path = it.next();
            entries += path.mid(mRoot.size()) + QLatin1Char(' ') + QString::number(modeOf(path), 8);
        }
        entries.sort();
        return entries;
    }

private:
    const QTemporaryDir mDir;
    const QString mRoot;
    const QString mProgram;
    bool mIsValid = false;
};

QStringList linesOf(const Texts &texts)
{
    QStringList lines;
    for (auto it = texts.begin(); it != texts.end(); ++it)
        lines += it.key() + QLatin1Char('=') + it.value();
    lines.sort();
    return lines;
}

QString section(int id)
{
    return QLatin1String("PRODUCT") + QString::fromLatin1(QByteArray::number(id));
}

//! Calls a function with each id that the program asks for.
void forEachId(const std::function<void(int)> &function)
{
    for (const int id : kProducts)
        function(id);
    for (const int id : kNoProducts)
        function(id);
}

Texts pathsOf(const QString &root)
{
    Texts texts;
    const auto add
        = [&texts](const char *name, const QString &value) { texts[QLatin1String(name)] = value; };
    const QString bare = root.left(root.size() - 1);
    add("installPath", root);
    add("productName", bare.mid(bare.lastIndexOf(QLatin1Char('/')) + 1));
    add("binPath", root + QLatin1String("bin/"));
    add("libPath", root + QLatin1String("lib/"));
    add("etcPath", root + QLatin1String("etc/"));
    add("txtPath", root + QLatin1String("etc/txt/"));
    add("imagePath", root + QLatin1String("etc/image/"));
    add("docPath", root + QLatin1String("etc/doc/"));
    add("constConfigPath", root + QLatin1String("etc/conf/"));
    add("constDataPath", root + QLatin1String("etc/data/"));
    add("appdataPath", QStringLiteral("/KORVALENT/"));
    add("userdataPath", QStringLiteral("/KORVALENT/"));
    add("configPath", QStringLiteral("/KORVALENT/conf/"));
    add("logPath", QStringLiteral("/KORVALENT/log/"));
    add("motorPath", QStringLiteral("/KORVALENT/motor/"));
    add("paramPath", QStringLiteral("/KORVALENT/param/"));
    add("dataPath", QStringLiteral("/KORVALENT/data/"));
    add("projectPath", QStringLiteral("/KORVALENT/project/"));
    return texts;
}

Texts sections()
{
    Texts texts;
    forEachId([&texts](int id) {
        texts[QLatin1String("productSection.") + QString::number(id)] = section(id);
    });
    return texts;
}

Texts logsOf(const QString &program, qint64 id)
{
    const QString start = QLatin1String("/KORVALENT/log/") + program;
    return {
        {QStringLiteral("createLogFileName"), start + QLatin1String(".log")},
        {QStringLiteral("createLogFileName.pid"),
         start + QLatin1String("_PID") + QString::number(id) + QLatin1String(".log")},
        {QStringLiteral("createLogFileName.named"), QStringLiteral("/KORVALENT/log/b.c.log")},
    };
}

Texts dates()
{
    return {
        {QStringLiteral("date.Mar"), QStringLiteral("2026-03-05")},
        {QStringLiteral("date.May"), QStringLiteral("2026-05-05")},
        {QStringLiteral("date.Mai"), QString()},
        {QStringLiteral("date.Oct"), QStringLiteral("2026-10-05")},
        {QStringLiteral("date.Okt"), QString()},
        {QStringLiteral("date.Dec"), QStringLiteral("2026-12-05")},
        {QStringLiteral("date.Dez"), QString()},
    };
}

Texts companyOf(const Texts &settings)
{
    constexpr const char *kKeys[][2] = {
        {"getCompanyLongName", "NameLong"},
        {"getCompanyMediumName", "NameMedium"},
        {"getCompanyShortName", "NameShort"},
        {"getAddressName", "AddressName"},
        {"getAddressStreet", "AddressStreet"},
        {"getAddressCity", "AddressCity"},
        {"getAddressHtml", "AddressHtml"},
        {"getWebUrl", "WebUrl"},
        {"getEMail", "eMail"},
        {"getUpdateVersionFile", "UpdateVersionFile"},
        {"getUpdatePath", "UpdatePath"},
        {"getUpdateChangelogFile", "UpdateChangelogFile"},
        {"getOpenSourceUrl", "OpenSourceUrl"},
    };
    Texts texts;
    for (const auto &key : kKeys) {
        texts[QLatin1String(key[0])]
            = settings.value(QLatin1String("COMPANY/") + QLatin1String(key[1]));
    }
    return texts;
}

Texts titlesOf(const Texts &settings)
{
    const QString longName = settings.value(QStringLiteral("COMPANY/NameLong"));
    const QString shortName = settings.value(QStringLiteral("COMPANY/NameShort"));
    return {
        {QStringLiteral("createApplicationTitle.en_US"),
         QLatin1String("Scope %1 - ") + longName + QLatin1String(" - [ V1.60 - 11/5/26 ] - beta")},
        {QStringLiteral("createApplicationTitle.de_DE"),
         QLatin1String("Scope %1 - ") + longName + QLatin1String(" - [ V1.60 - 05.11.26 ] - beta")},
        {QStringLiteral("createShortApplicationTitle"),
         shortName + QLatin1String(" Scope %1 - V1.60 - [ Build 1234 - 2026-11-05 ]")},
        {QStringLiteral("createShortApplicationTitle.bare"),
         shortName + QLatin1String(" Scope %1 - V1.60")},
    };
}

QString imageOf(const QString &root, const QString &name)
{
    return name.isEmpty() ? QString() : root + QLatin1String("etc/image/") + name;
}

Texts imagesOf(const QString &root, const Texts &settings)
{
    constexpr const char *kKeys[][2] = {
        {"getLogoAndNameBitmapFile_145x52", "LogoAndNameBitmap_145x52"},
        {"getLogoAndNameBitmapFile_105x30", "LogoAndNameBitmap_105x30"},
        {"getLogoAndNameBitmapFile_105x30_inverted", "LogoAndNameBitmap_105x30_inverted"},
        {"getLogoBitmapFile_32x32", "Logo_32x32"},
        {"getLogoBitmapFile_16x16", "Logo_16x16"},
        {"getImageFile", "Logo_16x16"},
        {"getImageFile.missing", "None"},
    };
    Texts texts;
    for (const auto &key : kKeys) {
        texts[QLatin1String(key[0])]
            = imageOf(root, settings.value(QLatin1String("COMPANY/") + QLatin1String(key[1])));
    }
    return texts;
}

Texts productsOf(const QString &root, const Texts &settings)
{
    Texts texts;
    forEachId([&](int id) {
        const auto value = [&](const char *key) {
            return settings.value(section(id) + QLatin1Char('/') + QLatin1String(key));
        };
        const auto add = [&](const char *getter, const QString &text) {
            texts[QLatin1String(getter) + QLatin1Char('.') + QString::number(id)] = text;
        };
        add("getProductName", value("Name").isEmpty() ? section(id) : value("Name"));
        add("getProductExeFile", root + QLatin1String("bin/") + value("ExeFile"));
        add("getProductSplashScreenBitmapFile", imageOf(root, value("SplashScreen")));
        add("getProductEMailAddress", value("eMail"));
        add("getProductUpdateVersionFile", value("UpdateVersionFile"));
        add("getProductUpdatePath", value("UpdatePath"));
        add("getProductUpdateChangelogFile", value("UpdateChangelogFile"));
    });
    return texts;
}

//! Returns the texts of all that is told of settings.
Texts settingsTexts(const QString &root, const Texts &settings)
{
    Texts texts = companyOf(settings);
    texts.unite(titlesOf(settings));
    texts.unite(imagesOf(root, settings));
    texts.unite(productsOf(root, settings));
    return texts;
}

const QStringList kSettingsSteps = {QStringLiteral("company"), QStringLiteral("titles"),
                                    QStringLiteral("images"), QStringLiteral("products")};

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

class tst_Installation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void tellsAll_data();
    void tellsAll();
    void ownSettings_data();
    void ownSettings();
    void emptySettings();
    void lateSettings();
    void goneSettings();
    void makes_data();
    void makes();
    void makesBesideTheirOwn_data();
    void makesBesideTheirOwn();
    void environment_data();
    void environment();
    void loadsAndStays();

private:
    int mCompanyMode = kNoEntry;
};

// No run makes the maker's directory.
void tst_Installation::init()
{
    mCompanyMode = modeOf(QStringLiteral("/KORVALENT"));
}

void tst_Installation::cleanup()
{
    QCOMPARE(modeOf(QStringLiteral("/KORVALENT")), mCompanyMode);
}

void tst_Installation::tellsAll_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("baseName");
    const auto row
        = [](const char *name, const char *root, const char *program, const char *baseName) {
              QTest::newRow(name) << QString::fromLatin1(root) << QString::fromLatin1(program)
                                  << QString::fromLatin1(baseName);
          };
    row("x/y/bin", "x/y", "bin/probe", "probe");
    row("suffixes", "x/y", "bin/my.probe.bin", "my.probe");
    row("blanks", "x y/ z ", "bin/my probe", "my probe");
    row("place markers", "%1/%2", "bin/%3", "%3");
    row("bin in bin", "bin/bin", "bin/probe", "probe");
    row("suffix in the root", "x/y-1.60.d", "bin/probe", "probe");
}

void tst_Installation::tellsAll()
{
    QFETCH(QString, root);
    QFETCH(QString, program);
    QFETCH(QString, baseName);
    const Installation installation(program, root);
    QVERIFY(installation.isValid());
    QVERIFY(installation.root().endsWith(QLatin1Char('/') + root + QLatin1Char('/')));
    const Outcome outcome = installation.run({});
    Texts expected = settingsTexts(installation.root(), setupIniTexts());
    expected.unite(pathsOf(installation.root()));
    expected.unite(sections());
    expected.unite(logsOf(baseName, outcome.id));
    expected.unite(dates());
    for (const char *name : {"binPath", "etcPath", "imagePath", "constConfigPath"})
        expected[QLatin1String("exists.") + QLatin1String(name)] = QStringLiteral("1");
    for (const char *name : {"libPath", "txtPath", "docPath", "constDataPath"})
        expected[QLatin1String("exists.") + QLatin1String(name)] = QStringLiteral("0");
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.lines, linesOf(expected));
}

void tst_Installation::ownSettings_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Texts>("settings");
    const auto row = [](const char *name, const QByteArray &bytes, const Texts &settings) {
        QTest::newRow(name) << bytes << settings;
    };
    QByteArray bytes("[COMPANY]\n");
    Texts settings;
    for (const char *key :
         {"NameLong", "NameMedium", "NameShort", "AddressName", "AddressStreet", "AddressCity",
          "AddressHtml", "WebUrl", "eMail", "LogoAndNameBitmap_145x52", "LogoAndNameBitmap_105x30",
          "LogoAndNameBitmap_105x30_inverted", "Logo_32x32", "Logo_16x16", "UpdateVersionFile",
          "UpdateChangelogFile", "UpdatePath", "OpenSourceUrl"}) {
        bytes += QByteArray(key) + "=own " + key + '\n';
        settings[QLatin1String("COMPANY/") + QLatin1String(key)]
            = QLatin1String("own ") + QLatin1String(key);
    }
    for (const char *product : {"PRODUCT101", "PRODUCT7", "PRODUCT-3"}) {
        bytes += '[' + QByteArray(product) + "]\n";
        for (const char *key : {"Name", "ExeFile", "SplashScreen", "eMail", "UpdateVersionFile",
                                "UpdateChangelogFile", "UpdatePath"}) {
            const QByteArray text = QByteArray(product) + ' ' + key;
            bytes += QByteArray(key) + '=' + text + '\n';
            settings[QLatin1String(product) + QLatin1Char('/') + QLatin1String(key)]
                = QString::fromLatin1(text);
        }
    }
    row("all keys", bytes, settings);
    row("one key", "[COMPANY]\nNameShort=Own\n",
        {{QStringLiteral("COMPANY/NameShort"), QStringLiteral("Own")}});
    row("one product", "[PRODUCT101]\nName=Own\n",
        {{QStringLiteral("PRODUCT101/Name"), QStringLiteral("Own")}});
    row("empty product name", "[PRODUCT101]\nName=\nExeFile=own\n",
        {{QStringLiteral("PRODUCT101/ExeFile"), QStringLiteral("own")}});
    row("place markers", "[COMPANY]\nNameLong=%1 %2 %3\nNameShort=%2%1\n[PRODUCT90]\nName=%1\n",
        {{QStringLiteral("COMPANY/NameLong"), QStringLiteral("%1 %2 %3")},
         {QStringLiteral("COMPANY/NameShort"), QStringLiteral("%2%1")},
         {QStringLiteral("PRODUCT90/Name"), QStringLiteral("%1")}});
    row("quoted", "[COMPANY]\nNameLong=\"Own, Inc.\"\nAddressHtml=\"a<br>b;c=\\\"d\\\"\"\n",
        {{QStringLiteral("COMPANY/NameLong"), QStringLiteral("Own, Inc.")},
         {QStringLiteral("COMPANY/AddressHtml"), QStringLiteral("a<br>b;c=\"d\"")}});
    row("comma not quoted",
        "[COMPANY]\nNameLong=Own, Inc.\nLogo_16x16=a,b\n[PRODUCT90]\nName=a,b\n", {});
    row("semicolon not quoted", "[COMPANY]\nNameLong=Own; Inc.\n",
        {{QStringLiteral("COMPANY/NameLong"), QStringLiteral("Own")}});
    row("Latin-1", "[COMPANY]\nAddressCity=8005 Z\xfcrich\nAddressStreet=Stra\\xdfweg\n",
        {{QStringLiteral("COMPANY/AddressCity"), QStringLiteral("8005 Z\u00fcrich")},
         {QStringLiteral("COMPANY/AddressStreet"), QStringLiteral("Stra\u00dfweg")}});
    row("other case", "[company]\nnameshort=Own\n[COMPANY]\nNAMELONG=Own\n", {});
    row("without section", "NameShort=Own\nCOMPANY/NameLong=Own\n", {});
    row("no settings", "; nothing\n\n", {});
    row("order and blanks", "[PRODUCT90]\nName = b\n\n[COMPANY]\nNameShort =  a \n",
        {{QStringLiteral("PRODUCT90/Name"), QStringLiteral("b")},
         {QStringLiteral("COMPANY/NameShort"), QStringLiteral("a")}});
}

// All comes from the file and nothing from the built-in settings; the file stays as it is.
void tst_Installation::ownSettings()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Texts, settings);
    const Installation installation;
    QVERIFY(installation.isValid());
    QVERIFY(installation.writeSettings(bytes));
    const Outcome outcome = installation.run(kSettingsSteps);
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.lines, linesOf(settingsTexts(installation.root(), settings)));
    QCOMPARE(installation.settings(), bytes);
    QStringList entries = installation.entries();
    entries.removeAll(QStringLiteral("etc/image 775")); // only there if an image is named
    QCOMPARE(entries,
             QStringList({QStringLiteral("bin 710"), QStringLiteral("bin/probe 755"),
                          QStringLiteral("etc 750"), QStringLiteral("etc/conf 750"),
                          QStringLiteral("etc/conf/Setup.Ini 640")}));
}

void tst_Installation::emptySettings()
{
    const Installation installation;
    QVERIFY(installation.isValid());
    QVERIFY(installation.writeSettings(QByteArray()));
    const Outcome outcome = installation.run(kSettingsSteps);
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.lines, linesOf(settingsTexts(installation.root(), {})));
    QVERIFY(outcome.lines.contains(QLatin1String("getProductName.101=PRODUCT101")));
    QCOMPARE(QFileInfo(installation.path("etc/conf/Setup.Ini")).size(), qint64(0));
}

void tst_Installation::lateSettings()
{
    const Installation installation;
    QVERIFY(installation.isValid());
    const QString name = setupIniTexts().value(QStringLiteral("COMPANY/NameShort"));
    Outcome outcome = installation.run({QStringLiteral("late")});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.lines,
             QStringList({QLatin1String("early=") + name, QLatin1String("late=") + name,
                          QStringLiteral("written=1")}));
    // The next run has it.
    outcome = installation.run({QStringLiteral("company")});
    QVERIFY(outcome.lines.contains(QLatin1String("getCompanyShortName=Late")));
    QVERIFY(outcome.lines.contains(QLatin1String("getCompanyLongName=")));
}

void tst_Installation::goneSettings()
{
    const Installation installation;
    QVERIFY(installation.isValid());
    QVERIFY(installation.writeSettings("[COMPANY]\nNameShort=Own\n"));
    const Outcome outcome = installation.run({QStringLiteral("gone")});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.lines,
             QStringList({QStringLiteral("early=Own"), QStringLiteral("late=Own"),
                          QStringLiteral("removed=1")}));
    QVERIFY(!QFile::exists(installation.path("etc/conf/Setup.Ini")));
}

void tst_Installation::makes_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<int>("mask");
    QTest::addColumn<QStringList>("made"); // "$" stands for what the umask leaves
    const auto row = [](const char *steps, const char *made) {
        for (const int mask : {0, 022, 077}) {
            QTest::addRow("%s, umask %03o", steps, static_cast<unsigned>(mask))
                << words(steps) << mask << QString::fromLatin1(made).split(QLatin1Char('|'));
        }
    };
    row("nothing", "");
    row("sections", "");
    row("paths", "");
    row("logs", "");
    row("dates", "");
    row("existing", "");
    row("nothing sections paths logs dates existing", "");
    row("company", "etc $|etc/conf 775");
    row("titles", "etc $|etc/conf 775");
    row("images", "etc $|etc/conf 775|etc/image 775");
    row("products", "etc $|etc/conf 775|etc/image 775");
    row("made", "etc 775|etc/conf 775|etc/data 775|etc/doc 775|etc/image 775|etc/txt 775|lib 775");
    row("company made",
        "etc $|etc/conf 775|etc/data 775|etc/doc 775|etc/image 775|etc/txt 775|lib 775");
}

void tst_Installation::makes()
{
    QFETCH(QStringList, steps);
    QFETCH(int, mask);
    QFETCH(QStringList, made);
    const Installation installation;
    QVERIFY(installation.isValid());
    Outcome outcome;
    {
        const Umask umask(mask);
        outcome = installation.run(steps);
    }
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    made.removeAll(QString());
    made.replaceInStrings(QStringLiteral("$"), QString::number(0777 & ~mask, 8));
    QCOMPARE(installation.entries(),
             QStringList({QStringLiteral("bin 710"), QStringLiteral("bin/probe 755")}) + made);
    const QDir above(installation.above());
    QCOMPARE(above.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral("x")));
    QCOMPARE(QDir(above.filePath(QStringLiteral("x")))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral("y")));
}

void tst_Installation::makesBesideTheirOwn_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<bool>("isBinMade");
    QTest::newRow("nothing") << words("nothing") << false;
    QTest::newRow("paths") << words("paths") << false;
    QTest::newRow("company") << words("company") << false;
    QTest::newRow("images") << words("images") << false;
    QTest::newRow("products") << words("products") << true;
    QTest::newRow("made") << words("made") << true;
}

// A program in another directory than bin/.
void tst_Installation::makesBesideTheirOwn()
{
    QFETCH(QStringList, steps);
    QFETCH(bool, isBinMade);
    const Installation installation(QStringLiteral("tools/probe"));
    QVERIFY(installation.isValid());
    Outcome outcome;
    {
        const Umask umask(077);
        outcome = installation.run(steps);
    }
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(modeOf(installation.path("bin")), isBinMade ? 0775 : kNoEntry);
    QCOMPARE(modeOf(installation.path("tools")), 0710);
}

void tst_Installation::environment_data()
{
    QTest::addColumn<QString>("locale");
    for (const char *locale : {"C", "C.UTF-8", "en_US.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8",
                               "ja_JP.UTF-8", "tr_TR.UTF-8", "de_DE", "none"})
        QTest::newRow(locale) << QString::fromLatin1(locale);
}

// Neither months nor names and numbers are those of the environment.
void tst_Installation::environment()
{
    QFETCH(QString, locale);
    const Installation installation;
    QVERIFY(installation.isValid());
    const Outcome outcome
        = installation.run(words("dates titles sections products paths logs"), locale);
    Texts expected = dates();
    expected.unite(titlesOf(setupIniTexts()));
    expected.unite(sections());
    expected.unite(productsOf(installation.root(), setupIniTexts()));
    expected.unite(pathsOf(installation.root()));
    expected.unite(logsOf(QStringLiteral("probe"), outcome.id));
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.lines, linesOf(expected));
}

// Neither loading nor closing the library makes anything. It stays to the end of the program, and so
// do the built-in settings, used or not; the settings are then closed before Qt forgets its own.
void tst_Installation::loadsAndStays()
{
    const QString resource = QStringLiteral(":/k7eCore/data/Setup.Ini");
    const QDir root(QFileInfo(QCoreApplication::applicationDirPath()).path());
    QVERIFY(!QFile::exists(resource));
    const QStringList before = root.entryList(QDir::AllEntries | QDir::Hidden);
    QLibrary library(QStringLiteral(K7E_LIBRARY));
    for (int i = 0; i < 2; ++i) {
        QVERIFY2(library.load(), qPrintable(library.errorString()));
        QCOMPARE(root.entryList(QDir::AllEntries | QDir::Hidden), before);
        QVERIFY2(library.unload(), qPrintable(library.errorString()));
        QFile file(resource);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), setupIniBytes());
        QCOMPARE(root.entryList(QDir::AllEntries | QDir::Hidden), before);
    }

    using Text = QString (*)();
    for (int i = 0; i < 2; ++i) {
        QVERIFY2(library.load(), qPrintable(library.errorString()));
        const auto name = reinterpret_cast<Text>(
            library.resolve("_ZN15CCompanyStrings19getCompanyShortNameEv"));
        QVERIFY(name != nullptr);
        QCOMPARE(name(), QStringLiteral("KORVALENT"));
        QVERIFY2(library.unload(), qPrintable(library.errorString()));
    }
    QVERIFY(QDir(root.filePath(QStringLiteral("etc"))).removeRecursively());
}

QTEST_GUILESS_MAIN(tst_Installation)

#include "tst_Installation.moc"
