#include "CStr.h"
#include "DefaultLocale.h"
#include "MessageRecorder.h"
#include "installation/Permissions.h"
#include "installation/SetupIni.h"

#include <QDataStream>
#include <QTranslator>
#include <QtTest>

#include <memory>
#include <type_traits>

#include <unistd.h>

Q_DECLARE_METATYPE(QDataStream::Status)

namespace {

static_assert(std::is_same_v<decltype(&CStr::createQDateFrom__DATE__), QDate (*)(const QString &)>);
static_assert(
    std::is_same_v<decltype(&CStr::createDate), QString (*)(const QLocale &, const QString &)>);
static_assert(std::is_same_v<decltype(&CStr::createApplicationTitle),
                             QString (*)(const QLocale &, const QString &, const QString &,
                                         const QString &, const QString &)>);
static_assert(std::is_same_v<decltype(&CStr::createShortApplicationTitle),
                             QString (*)(const QLocale &, const QString &, const QString &,
                                         const QString &, unsigned int)>);
static_assert(std::is_same_v<decltype(&CStr::createLogFileName), QString (*)(QString, bool)>);
static_assert(std::is_same_v<decltype(&CStr::inStreamStatus),
                             bool (*)(const QDataStream &, const QString &, QString &)>);

// English and others, with other months, digits, signs and groups.
constexpr const char *kLocales[]
    = {"C", "en_US", "de_DE", "fr_FR", "tr_TR", "ja_JP", "ar_EG", "fa_IR", "hi_IN"};

const QString kBuildDate = QStringLiteral("Nov  5 2026");

const QString kPastEnd = QStringLiteral("Stream ERROR while reading value \"%1\" : "
                                        "The data stream has read past the end of the data.");
const QString kCorrupt = QStringLiteral("Stream ERROR while reading value \"%1\" : "
                                        "The data stream has read corrupt data.");
const QString kUnknown = QStringLiteral("Stream ERROR while reading value \"%1\" : "
                                        "Unknown stream status.");

//! Returns the pieces of the absolute path of this program.
QStringList programPieces()
{
    return QCoreApplication::applicationFilePath().split(QLatin1Char('/'));
}

//! Takes away the directories that asking for the company makes, as far as they are empty.
void removeDirectories()
{
    const QStringList pieces = programPieces();
    const QString root = pieces.mid(0, pieces.size() - 2).join(QLatin1Char('/'));
    QDir().rmdir(root + QLatin1String("/etc/conf"));
    QDir().rmdir(root + QLatin1String("/etc"));
}

//! Translates each text into a known one while it lives, and keeps what it was asked.
class Translator : public QTranslator
{
public:
    explicit Translator(const QString &context) : mContext(context)
    {
        QCoreApplication::installTranslator(this);
    }
    ~Translator() override { QCoreApplication::removeTranslator(this); }

    QString translate(const char *context, const char *text, const char *disambiguation,
                      int number) const override
    {
        mAsked += QLatin1String(context) + QLatin1Char('|') + QLatin1String(text);
        if (disambiguation || number != -1)
            mAsked += QStringLiteral("with more than a text");
        if (QLatin1String(context) != mContext)
            return QString();
        return QStringLiteral("Wert %1 fehlt");
    }
    bool isEmpty() const override { return false; }

    QStringList asked() const { return mAsked; }

private:
    const QString mContext;
    mutable QStringList mAsked;
};

} // namespace

class tst_CStrTitles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void dateFrom_data();
    void dateFrom();
    void dateFromEachDay();
    void dateFromNoPieces_data();
    void dateFromNoPieces();
    void dateFromThisBuild();
    void createDate_data();
    void createDate();
    void createDateOfLocalesOwnDigits();

    void versionString_data();
    void versionString();
    void versionStringWithDate_data();
    void versionStringWithDate();
    void title_data();
    void title();
    void shortTitle_data();
    void shortTitle();

    void logFileName_data();
    void logFileName();
    void logFileNameOfProgram();

    void inStreamStatus_data();
    void inStreamStatus();
    void inStreamStatusOk();
    void inStreamStatusOfReading();
    void inStreamStatusTranslated_data();
    void inStreamStatusTranslated();
    void inStreamStatusOfOtherContext();

private:
    QString mLongName;
    QString mShortName;
    std::unique_ptr<MessageRecorder> mRecorder;
};

void tst_CStrTitles::initTestCase()
{
    removeDirectories();
    const QMap<QString, QString> texts = setupIniTexts();
    mLongName = texts.value(QStringLiteral("COMPANY/NameLong"));
    mShortName = texts.value(QStringLiteral("COMPANY/NameShort"));
    QVERIFY(!mLongName.isEmpty());
    QVERIFY(!mShortName.isEmpty());
    QVERIFY(mLongName != mShortName);
}

void tst_CStrTitles::cleanupTestCase()
{
    removeDirectories();
}

void tst_CStrTitles::init()
{
    mRecorder = std::make_unique<MessageRecorder>();
}

void tst_CStrTitles::cleanup()
{
    const QStringList messages = mRecorder->messages();
    mRecorder.reset();
    QCOMPARE(messages, QStringList());
}

void tst_CStrTitles::dateFrom_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDate>("expected");
    const auto valid = [](const char *text, int year, int month, int day) {
        QTest::addRow("\"%s\"", text) << QString::fromLatin1(text) << QDate(year, month, day);
    };
    const auto invalid = [](const char *text) {
        QTest::addRow("\"%s\", no date", text) << QString::fromLatin1(text) << QDate();
    };
    valid("Nov  5 2026", 2026, 11, 5);
    valid("Nov 05 2026", 2026, 11, 5);
    valid("Nov 5 2026", 2026, 11, 5);
    valid("Nov   05   2026", 2026, 11, 5);
    valid("  Nov  5 2026  ", 2026, 11, 5);
    valid("Jan  1 1970", 1970, 1, 1);
    valid("Dec 31 1999", 1999, 12, 31);
    valid("Mar 10 2024", 2024, 3, 10);
    valid("May 30 2024", 2024, 5, 30);
    valid("Oct  9 2024", 2024, 10, 9);
    valid("Feb 29 2024", 2024, 2, 29);
    invalid("Feb 29 2023");
    invalid("Nov 31 2026");
    invalid("Nov 32 2026");
    invalid("Nov  0 2026");
    invalid("Nov -5 2026");
    invalid("Nov 005 2026");
    invalid("Nov  5 26");
    invalid("Nov  x 2026");
    invalid("Mai  5 2026");
    invalid("Okt  5 2026");
    invalid("Dez  5 2026");
    invalid("d\xe9"
            "c  5 2026");
    invalid("Xyz  5 2026");
    invalid("11 05 2026");
    invalid("5 Nov 2026");
    invalid("2026 Nov 5");
}

// The months are English and the digits those of ASCII under every default locale.
void tst_CStrTitles::dateFrom()
{
    QFETCH(QString, text);
    QFETCH(QDate, expected);
    for (const char *name : kLocales) {
        const DefaultLocale locale(QString::fromLatin1(name));
        const QDate date = CStr::createQDateFrom__DATE__(text);
        QCOMPARE(date.isValid(), expected.isValid());
        QCOMPARE(date, expected);
    }
}

void tst_CStrTitles::dateFromEachDay()
{
    constexpr const char *kMonths[]
        = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    constexpr int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const DefaultLocale locale(QStringLiteral("de_DE"));
    for (int month = 1; month <= 12; ++month) {
        for (int day = 1; day <= 31; ++day) {
            const QByteArray number = QByteArray::number(day);
            const QByteArray name(kMonths[month - 1]);
            const QDate expected = day <= kDays[month - 1] ? QDate(2028, month, day) : QDate();
            for (const QByteArray &text : {name + ' ' + number.rightJustified(2, ' ') + " 2028",
                                           name + ' ' + number.rightJustified(2, '0') + " 2028"})
                QCOMPARE(CStr::createQDateFrom__DATE__(QString::fromLatin1(text)), expected);
        }
    }
}

void tst_CStrTitles::dateFromNoPieces_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"", " ", "Nov", "Nov 5", "Nov  5", "Nov 5 2026 x",
                             "Nov 5 2026 12:00:00", "Nov-5-2026", "Nov, 5, 20 26", "Nov 5,2026"})
        QTest::addRow("\"%s\"", text) << QString::fromLatin1(text);
    QTest::newRow("null") << QString();
    QTest::newRow("tab") << QStringLiteral("Nov\t5 2026");
    QTest::newRow("tabs") << QStringLiteral("Nov\t5\t2026");
    QTest::newRow("line break") << QStringLiteral("Nov 5\n2026");
    QTest::newRow("no-break spaces") << QStringLiteral("Nov\u00a05\u00a02026");
}

// Other numbers of pieces than three; only blanks part them.
void tst_CStrTitles::dateFromNoPieces()
{
    QFETCH(QString, text);
    QVERIFY(CStr::createQDateFrom__DATE__(text).isNull());
}

void tst_CStrTitles::dateFromThisBuild()
{
    const QDate date = CStr::createQDateFrom__DATE__(QStringLiteral(__DATE__));
    QVERIFY(date.isValid());
    const QByteArray text(__DATE__);
    QCOMPARE(date.day(), text.mid(4, 2).trimmed().toInt());
    QCOMPARE(date.year(), text.mid(7).toInt());
}

void tst_CStrTitles::createDate_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *locale, const char *text, const char *expected) {
        QTest::addRow("%s, \"%s\"", locale, text)
            << QString::fromLatin1(locale) << QString::fromLatin1(text)
            << QString::fromUtf8(expected);
    };
    row("C", "Nov  5 2026", "5 Nov 2026");
    row("en_US", "Nov  5 2026", "11/5/26");
    row("en_US", "Mar 14 2009", "3/14/09");
    row("en_GB", "Nov  5 2026", "05/11/2026");
    row("de_DE", "Nov  5 2026", "05.11.26");
    row("de_DE", "Mar 14 2009", "14.03.09");
    row("de_CH", "Nov  5 2026", "05.11.26");
    row("fr_FR", "Nov  5 2026", "05/11/2026");
    row("nl_NL", "Nov  5 2026", "05-11-2026");
    row("sv_SE", "Nov  5 2026", "2026-11-05");
    row("pl_PL", "Nov  5 2026", "05.11.2026");
    row("ja_JP", "Nov  5 2026", "2026/11/05");
    row("zh_CN", "Nov  5 2026", "2026/11/5");
    row("hu_HU", "Nov  5 2026", "2026. 11. 05.");
    // The date is written in the locale's format, but with digits of ASCII.
    row("ar_EG", "Nov  5 2026", "5\u200f/11\u200f/2026");
    row("fa_IR", "Nov  5 2026", "2026/11/5");
    for (const char *locale : {"C", "en_US", "de_DE", "ar_EG"}) {
        for (const char *text : {"", "Feb 30 2026", "Nov 5", "Mai  5 2026", "%1"})
            row(locale, text, "");
    }
}

void tst_CStrTitles::createDate()
{
    QFETCH(QString, locale);
    QFETCH(QString, text);
    QFETCH(QString, expected);
    for (const char *name : kLocales) {
        const DefaultLocale defaultLocale(QString::fromLatin1(name));
        QCOMPARE(CStr::createDate(QLocale(locale), text), expected);
    }
}

void tst_CStrTitles::createDateOfLocalesOwnDigits()
{
    const QLocale locale(QStringLiteral("ar_EG"));
    const QDate date(2026, 11, 5);
    QVERIFY(locale.toString(date, QLocale::ShortFormat) != CStr::createDate(locale, kBuildDate));
    QCOMPARE(CStr::createDate(locale, kBuildDate),
             date.toString(locale.dateFormat(QLocale::ShortFormat)));
}

void tst_CStrTitles::versionString_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("extra");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *version, const char *extra, const char *expected) {
        QTest::addRow("\"%s\", \"%s\"", version, extra)
            << QString::fromLatin1(version) << QString::fromLatin1(extra)
            << QString::fromLatin1(expected);
    };
    row("1.60", "", "[ V1.60 ]");
    row("1.60", "beta", "[ V1.60 ] - beta");
    row("1.60", " ", "[ V1.60 ] -  ");
    row("", "", "[ V ]");
    row("", "beta", "[ V ] - beta");
    row("%1", "%1", "[ V%1 ] - %1");
    row("%2", "%1 %2", "[ V%2 ] - %1 %2");
    row("%1", "", "[ V%1 ]");
    row("1.60", "%1", "[ V1.60 ] - %1");
    row("%L1", "%%1", "[ V%L1 ] - %%1");
    QTest::newRow("null, null") << QString() << QString() << QStringLiteral("[ V ]");
    QTest::newRow("not ASCII") << QStringLiteral("\u00df") << QStringLiteral("\u65e5")
                               << QStringLiteral("[ V\u00df ] - \u65e5");
}

void tst_CStrTitles::versionString()
{
    QFETCH(QString, version);
    QFETCH(QString, extra);
    QTEST(CStr::getVersionString(version, extra), "expected");
}

void tst_CStrTitles::versionStringWithDate_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("buildDate");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("extra");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *version, const char *buildDate, const char *locale,
                        const char *extra, const char *expected) {
        QTest::addRow("\"%s\", \"%s\", %s, \"%s\"", version, buildDate, locale, extra)
            << QString::fromLatin1(version) << QString::fromLatin1(buildDate)
            << QString::fromLatin1(locale) << QString::fromLatin1(extra)
            << QString::fromLatin1(expected);
    };
    row("1.60", "Nov  5 2026", "en_US", "", "[ V1.60 - 11/5/26 ]");
    row("1.60", "Nov  5 2026", "de_DE", "", "[ V1.60 - 05.11.26 ]");
    row("1.60", "Nov  5 2026", "en_US", "beta", "[ V1.60 - 11/5/26 ] - beta");
    row("1.60", "Nov  5 2026", "en_US", " ", "[ V1.60 - 11/5/26 ] -  ");
    row("", "Nov  5 2026", "en_US", "", "[ V - 11/5/26 ]");
    row("%1", "Nov  5 2026", "en_US", "%1", "[ V%1 - 11/5/26 ] - %1");
    row("%2", "Nov  5 2026", "en_US", "%2", "[ V%2 - 11/5/26 ] - %2");
    row("%2 %1 %3", "Nov  5 2026", "en_US", "", "[ V%2 %1 %3 - 11/5/26 ]");
    row("1.60", "Feb 30 2026", "en_US", "", "[ V1.60 -  ]");
    row("1.60", "", "en_US", "", "[ V1.60 -  ]");
    row("1.60", "", "de_DE", "beta", "[ V1.60 -  ] - beta");
    row("1.60", "%1 %2 %3", "en_US", "", "[ V1.60 -  ]");
}

void tst_CStrTitles::versionStringWithDate()
{
    QFETCH(QString, version);
    QFETCH(QString, buildDate);
    QFETCH(QString, locale);
    QFETCH(QString, extra);
    QTEST(CStr::getVersionString(version, buildDate, QLocale(locale), extra), "expected");
}

void tst_CStrTitles::title_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("buildDate");
    QTest::addColumn<QString>("application");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("extra");
    QTest::addColumn<QString>("before"); // the name of the company
    QTest::addColumn<QString>("behind"); // the name of the company
    const auto row
        = [](const char *name, const char *locale, const char *buildDate, const char *application,
             const char *version, const char *extra, const char *before, const char *behind) {
              QTest::newRow(name) << QString::fromLatin1(locale) << QString::fromLatin1(buildDate)
                                  << QString::fromLatin1(application)
                                  << QString::fromLatin1(version) << QString::fromLatin1(extra)
                                  << QString::fromLatin1(before) << QString::fromLatin1(behind);
          };
    const char *const date = "Nov  5 2026";
    row("en_US", "en_US", date, "Scope", "1.60", "", "Scope - ", " - [ V1.60 - 11/5/26 ]");
    row("de_DE", "de_DE", date, "Scope", "1.60", "", "Scope - ", " - [ V1.60 - 05.11.26 ]");
    row("extra", "en_US", date, "Scope", "1.60", "beta 2", "Scope - ",
        " - [ V1.60 - 11/5/26 ] - beta 2");
    row("place markers in the name", "en_US", date, "%1 %2 %3", "1.60", "", "%1 %2 %3 - ",
        " - [ V1.60 - 11/5/26 ]");
    row("place markers everywhere", "en_US", date, "%3", "%1", "%2", "%3 - ",
        " - [ V%1 - 11/5/26 ] - %2");
    row("no date", "en_US", "yesterday", "Scope", "1.60", "", "Scope - ", " - [ V1.60 -  ]");
    row("all empty", "en_US", "", "", "", "", " - ", " - [ V -  ]");
}

void tst_CStrTitles::title()
{
    QFETCH(QString, locale);
    QFETCH(QString, buildDate);
    QFETCH(QString, application);
    QFETCH(QString, version);
    QFETCH(QString, extra);
    QFETCH(QString, before);
    QFETCH(QString, behind);
    for (const char *name : kLocales) {
        const DefaultLocale defaultLocale(QString::fromLatin1(name));
        QCOMPARE(
            CStr::createApplicationTitle(QLocale(locale), buildDate, application, version, extra),
            before + mLongName + behind);
    }
}

void tst_CStrTitles::shortTitle_data()
{
    QTest::addColumn<QString>("application");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("buildDate");
    QTest::addColumn<uint>("buildNumber");
    QTest::addColumn<QString>("behind"); // the name of the company
    const auto row = [](const char *name, const char *application, const char *version,
                        const char *buildDate, uint buildNumber, const char *behind) {
        QTest::newRow(name) << QString::fromLatin1(application) << QString::fromLatin1(version)
                            << QString::fromLatin1(buildDate) << buildNumber
                            << QString::fromLatin1(behind);
    };
    const char *const date = "Nov  5 2026";
    row("neither", "Scope", "1.60", "", 0, " Scope - V1.60");
    row("number", "Scope", "1.60", "", 42, " Scope - V1.60 - [ Build 42 ]");
    row("number 1", "Scope", "1.60", "", 1, " Scope - V1.60 - [ Build 1 ]");
    row("number 1234567", "Scope", "1.60", "", 1234567, " Scope - V1.60 - [ Build 1234567 ]");
    row("number 2^31", "Scope", "1.60", "", 2147483648U, " Scope - V1.60 - [ Build 2147483648 ]");
    row("number 2^32-1", "Scope", "1.60", "", 4294967295U, " Scope - V1.60 - [ Build 4294967295 ]");
    row("date", "Scope", "1.60", date, 0, " Scope - V1.60 - [ 2026-11-05 ]");
    row("both", "Scope", "1.60", date, 42, " Scope - V1.60 - [ Build 42 - 2026-11-05 ]");
    row("no date", "Scope", "1.60", "Feb 30 2026", 0, " Scope - V1.60 - [  ]");
    row("no date of two pieces", "Scope", "1.60", "Nov 5", 0, " Scope - V1.60 - [  ]");
    row("no date, blank", "Scope", "1.60", " ", 0, " Scope - V1.60 - [  ]");
    row("number and no date", "Scope", "1.60", "Feb 30 2026", 42,
        " Scope - V1.60 - [ Build 42 -  ]");
    row("number and blank", "Scope", "1.60", " ", 1, " Scope - V1.60 - [ Build 1 -  ]");
    row("place markers, neither", "%1 %2 %3", "%1 %2 %3", "", 0, " %1 %2 %3 - V%1 %2 %3");
    row("place markers, number", "%1", "%2", "", 42, " %1 - V%2 - [ Build 42 ]");
    row("place markers, both", "%2", "%1", date, 42, " %2 - V%1 - [ Build 42 - 2026-11-05 ]");
    row("place markers, no date", "%3", "%4", "%1", 42, " %3 - V%4 - [ Build 42 -  ]");
    row("empty, neither", "", "", "", 0, "  - V");
    row("empty, both", "", "", date, 42, "  - V - [ Build 42 - 2026-11-05 ]");
}

// No locale plays a part.
void tst_CStrTitles::shortTitle()
{
    QFETCH(QString, application);
    QFETCH(QString, version);
    QFETCH(QString, buildDate);
    QFETCH(uint, buildNumber);
    QFETCH(QString, behind);
    for (const char *name : kLocales) {
        const DefaultLocale defaultLocale(QString::fromLatin1(name));
        for (const char *given : kLocales) {
            QCOMPARE(CStr::createShortApplicationTitle(QLocale(QString::fromLatin1(given)),
                                                       application, version, buildDate,
                                                       buildNumber),
                     mShortName + behind);
        }
    }
}

void tst_CStrTitles::logFileName_data()
{
    QTest::addColumn<QString>("baseName");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *baseName, const char *name) {
        QTest::addRow("\"%s\"", baseName)
            << QString::fromLatin1(baseName) << QString::fromLatin1(name);
    };
    row("scope", "scope");
    row("scope.exe", "scope");
    row("scope.v1.exe", "scope.v1");
    row("scope.", "scope");
    row("a..b", "a.");
    row(".hidden", "");
    row(".hidden.txt", ".hidden");
    row("/x/y/scope.log", "scope");
    row("/x.y/scope", "scope");
    row("x/scope.a.b", "scope.a");
    row("../scope.log", "scope");
    row("x/", "");
    row(" ", " ");
    row("my scope.log", "my scope");
    row("a\\b.log", "a\\b");
    row("%1", "%1");
    row("%1.%2.%3", "%1.%2");
    QTest::newRow("not ASCII") << QStringLiteral("\u00fcber.log") << QStringLiteral("\u00fcber");
}

void tst_CStrTitles::logFileName()
{
    QFETCH(QString, baseName);
    QFETCH(QString, name);
    const QString directory = QStringLiteral("/KORVALENT/log");
    const int before = modeOf(directory);
    const QString start = directory + QLatin1Char('/') + name;
    const QString number = QString::fromLatin1(QByteArray::number(getpid()));
    for (const char *locale : kLocales) {
        const DefaultLocale defaultLocale(QString::fromLatin1(locale));
        QCOMPARE(CStr::createLogFileName(baseName, false), start + QLatin1String(".log"));
        QCOMPARE(CStr::createLogFileName(baseName, true),
                 start + QLatin1String("_PID") + number + QLatin1String(".log"));
    }
    QCOMPARE(modeOf(directory), before);
}

// Without a name that of the program stands for it, less its last suffix.
void tst_CStrTitles::logFileNameOfProgram()
{
    const QString file = programPieces().last();
    const int dot = file.lastIndexOf(QLatin1Char('.'));
    const QString start = QLatin1String("/KORVALENT/log/") + (dot < 0 ? file : file.left(dot));
    const QString number = QString::fromLatin1(QByteArray::number(getpid()));
    for (const QString &none : {QString(), QStringLiteral("")}) {
        QCOMPARE(CStr::createLogFileName(none, false), start + QLatin1String(".log"));
        QCOMPARE(CStr::createLogFileName(none, true),
                 start + QLatin1String("_PID") + number + QLatin1String(".log"));
    }
}

void tst_CStrTitles::inStreamStatus_data()
{
    QTest::addColumn<QDataStream::Status>("status");
    QTest::addColumn<QString>("text");
    QTest::newRow("ReadPastEnd") << QDataStream::ReadPastEnd << kPastEnd;
    QTest::newRow("ReadCorruptData") << QDataStream::ReadCorruptData << kCorrupt;
    QTest::newRow("WriteFailed") << QDataStream::WriteFailed << kUnknown;
}

void tst_CStrTitles::inStreamStatus()
{
    QFETCH(QDataStream::Status, status);
    QFETCH(QString, text);
    for (const char *name : {"speed", "", "%1", "%2 %1 %L1", "a \"b\"", "%"}) {
        QByteArray bytes("abc");
        QDataStream stream(bytes);
        stream.setStatus(status);
        const QString valueName = QString::fromLatin1(name);
        const int place = text.indexOf(QLatin1String("%1"));
        const QString expected = text.left(place) + valueName + text.mid(place + 2);
        for (const QString &before : {QString(), QStringLiteral("before")}) {
            QString error = before;
            QVERIFY(!CStr::inStreamStatus(stream, valueName, error));
            QCOMPARE(error, expected);
        }
        QCOMPARE(stream.status(), status);
        QVERIFY(!stream.atEnd());
    }
}

void tst_CStrTitles::inStreamStatusOk()
{
    const QByteArray bytes("abc");
    const QDataStream stream(bytes);
    for (const QString &before : {QString(), QStringLiteral(""), QStringLiteral("before %1")}) {
        QString error = before;
        const Translator translator(QStringLiteral("CStr"));
        QVERIFY(CStr::inStreamStatus(stream, QStringLiteral("speed"), error));
        QCOMPARE(error, before);
        QCOMPARE(error.isNull(), before.isNull());
        QCOMPARE(translator.asked(), QStringList());
    }
}

void tst_CStrTitles::inStreamStatusOfReading()
{
    const QByteArray bytes(3, '\0');
    QDataStream stream(bytes);
    quint16 value = 0;
    QString error;
    stream >> value;
    QVERIFY(CStr::inStreamStatus(stream, QStringLiteral("first"), error));
    QVERIFY(error.isNull());
    stream >> value;
    QVERIFY(!CStr::inStreamStatus(stream, QStringLiteral("second"), error));
    QCOMPARE(error,
             QStringLiteral("Stream ERROR while reading value \"second\" : "
                            "The data stream has read past the end of the data."));
}

void tst_CStrTitles::inStreamStatusTranslated_data()
{
    inStreamStatus_data();
}

// The text is translated with its place marker, then filled.
void tst_CStrTitles::inStreamStatusTranslated()
{
    QFETCH(QDataStream::Status, status);
    QFETCH(QString, text);
    QDataStream stream(QByteArray{});
    stream.setStatus(status);
    for (const char *name : {"speed", "%1", ""}) {
        const QString valueName = QString::fromLatin1(name);
        const Translator translator(QStringLiteral("CStr"));
        QString error;
        QVERIFY(!CStr::inStreamStatus(stream, valueName, error));
        QCOMPARE(error, QLatin1String("Wert ") + valueName + QLatin1String(" fehlt"));
        QCOMPARE(translator.asked(), QStringList(QLatin1String("CStr|") + text));
    }
}

void tst_CStrTitles::inStreamStatusOfOtherContext()
{
    QDataStream stream(QByteArray{});
    stream.setStatus(QDataStream::ReadCorruptData);
    const Translator translator(QStringLiteral("CTar"));
    QString error;
    QVERIFY(!CStr::inStreamStatus(stream, QStringLiteral("speed"), error));
    QCOMPARE(error, QString(kCorrupt).replace(QLatin1String("%1"), QLatin1String("speed")));
}

// QDate writes names of months in the language of the environment.
int main(int argc, char *argv[])
{
    qputenv("LC_ALL", "C.UTF-8");
    QCoreApplication application(argc, argv);
    tst_CStrTitles test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_CStrTitles.moc"
