#include "CCommandLineParser.h"

#include "DefaultLocale.h"
#include "InThreads.h"
#include "MessageRecorder.h"

#include <QCoreApplication>
#include <QtTest>

#include <climits>
#include <memory>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

using Options = QMap<QString, QString>;

Q_DECLARE_METATYPE(Options)

namespace {

static_assert(std::has_virtual_destructor_v<CCommandLineParser>);
static_assert(sizeof(CCommandLineParser) == sizeof(void *) + sizeof(Options));
static_assert(std::is_nothrow_move_constructible_v<CCommandLineParser>);
static_assert(std::is_nothrow_move_assignable_v<CCommandLineParser>);
static_assert(std::is_convertible_v<QStringList *, CCommandLineParser>);
static_assert(std::is_same_v<decltype(CCommandLineParser::argumentsMap()), Options>);

using Parser = CCommandLineParser;
static_assert(std::is_same_v<decltype(std::declval<Parser>().powerAddress()), int>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().driveAddress()), int>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().abAddress()), QString>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().comAddress()), unsigned int>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().language()), QLocale>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().ip()), QString>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().port()), int>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().serverName()), QString>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().userLevel()), int>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().deviceClass()), unsigned int>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().deviceFunction()), unsigned int>);
static_assert(std::is_same_v<decltype(std::declval<Parser>().currentUnit()), int>);

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

//! An application that was started with these words.
class Application
{
public:
    explicit Application(const QList<QByteArray> &words) : mWords(words)
    {
        for (QByteArray &word : mWords)
            mPointers.push_back(word.data());
        mPointers.push_back(nullptr);
        mCount = mWords.size();
        mApplication = std::make_unique<QCoreApplication>(mCount, mPointers.data());
    }

private:
    Q_DISABLE_COPY(Application)

    QList<QByteArray> mWords;
    std::vector<char *> mPointers;
    int mCount = 0;
    std::unique_ptr<QCoreApplication> mApplication;
};

//! Returns a parser of this one word.
CCommandLineParser parser(const QString &word)
{
    QStringList words{word};
    return CCommandLineParser(&words);
}

struct Number
{
    const char *name;
    qint64 absent;
    bool isUnsigned;
    qint64 (*read)(const CCommandLineParser &);
};

constexpr Number kNumbers[] = {
    {"powadr", -1, false, [](const CCommandLineParser &p) -> qint64 { return p.powerAddress(); }},
    {"drvadr", -1, false, [](const CCommandLineParser &p) -> qint64 { return p.driveAddress(); }},
    {"comadr", 0, true, [](const CCommandLineParser &p) -> qint64 { return p.comAddress(); }},
    {"port", 0, false, [](const CCommandLineParser &p) -> qint64 { return p.port(); }},
    {"level", 0, false, [](const CCommandLineParser &p) -> qint64 { return p.userLevel(); }},
    {"devtype", 0, true, [](const CCommandLineParser &p) -> qint64 { return p.deviceClass(); }},
    {"df", 0, true, [](const CCommandLineParser &p) -> qint64 { return p.deviceFunction(); }},
    {"cu", 0, false, [](const CCommandLineParser &p) -> qint64 { return p.currentUnit(); }},
};

struct Text
{
    const char *name;
    QString (CCommandLineParser::*read)() const;
};

constexpr Text kTexts[] = {
    {"abadr", &CCommandLineParser::abAddress},
    {"ip", &CCommandLineParser::ip},
    {"server", &CCommandLineParser::serverName},
};

//! Returns whether \a parser reads every option as absent but the one called \a but.
bool isAbsent(const CCommandLineParser &parser, const char *but = "")
{
    bool absent = true;
    for (const Number &number : kNumbers)
        absent = absent && (qstrcmp(number.name, but) == 0 || number.read(parser) == number.absent);
    for (const Text &text : kTexts)
        absent = absent && (qstrcmp(text.name, but) == 0 || (parser.*text.read)().isNull());
    return absent
        && (qstrcmp("lang", but) == 0
            || parser.language() == QLocale(QLocale::C, QLocale::AnyCountry));
}

//! The messages that Qt logs where there is no application to ask.
QStringList messagesOfArguments()
{
    const MessageRecorder recorder;
    if (!QCoreApplication::arguments().isEmpty())
        return {latin("there is an application")};
    return recorder.messages();
}

} // namespace

class tst_CCommandLineParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void words_data();
    void words();
    void longList();
    void noList();
    void absent();
    void numbers_data();
    void numbers();
    void port_data();
    void port();
    void texts_data();
    void texts();
    void language_data();
    void language();
    void languageIgnoresDefault();
    void setLanguage_data();
    void setLanguage();
    void value();
    void names_data();
    void names();
    void copies();
    void ofApplication_data();
    void ofApplication();
    void prefixed_data();
    void prefixed();
    void prefixedRandom();
    void noApplication();
    void inThreads();
};

void tst_CCommandLineParser::words_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<Options>("expected");
    const auto row = [](const char *title, const QStringList &words, const Options &expected) {
        QTest::newRow(title) << words << expected;
    };
    row("no words", {}, {});
    row("program only", {latin("/opt/suite/k7e")}, {});
    row("program with =", {latin("/opt/a=b/k7e")}, {{latin("/opt/a"), latin("b/k7e")}});
    row("lang=de", {latin("k7e"), latin("lang=de")}, {{latin("lang"), latin("de")}});
    row("first word counts", {latin("lang=de")}, {{latin("lang"), latin("de")}});
    row("a=b=c", {latin("a=b=c")}, {{latin("a"), latin("b=c")}});
    row("a==", {latin("a==")}, {{latin("a"), latin("=")}});
    row("=x", {latin("=x")}, {});
    row("=x=y", {latin("=x=y")}, {});
    row("=", {latin("=")}, {});
    row("key=", {latin("key=")}, {{latin("key"), latin("")}});
    row("word without =", {latin("word"), latin("--flag"), latin("a:b")}, {});
    row("empty and null words", {latin(""), QString()}, {});
    row("later word wins", {latin("level=1"), latin("x=y"), latin("level=3")},
        {{latin("level"), latin("3")}, {latin("x"), latin("y")}});
    row("later empty value wins", {latin("level=1"), latin("level=")},
        {{latin("level"), latin("")}});
    row("case and dashes stay", {latin("-lang=de"), latin("LANG=en"), latin("--lang=fr")},
        {{latin("-lang"), latin("de")},
         {latin("LANG"), latin("en")},
         {latin("--lang"), latin("fr")}});
    row("no trimming", {latin(" a = b ")}, {{latin(" a "), latin(" b ")}});
    row("blank name", {latin(" =b")}, {{latin(" "), latin("b")}});
    row("no unquoting", {latin("\"a\"='b'")}, {{latin("\"a\""), latin("'b'")}});
    row("%1 stays", {latin("%1=%2")}, {{latin("%1"), latin("%2")}});
    row("name and value apart", {latin("a="), latin("b")}, {{latin("a"), latin("")}});
    row("non-ASCII", {QStringLiteral("\u00e4\u20ac=\U0001f600")},
        {{QStringLiteral("\u00e4\u20ac"), QStringLiteral("\U0001f600")}});
    row("fullwidth equals sign", {QStringLiteral("a\uff1db")}, {});
    row("low byte of an equals sign", {QStringLiteral("a\u013db")}, {});
    row("NUL in name and value", {QString::fromLatin1("a\0=\0b", 5)},
        {{QString::fromLatin1("a\0", 2), QString::fromLatin1("\0b", 2)}});
}

void tst_CCommandLineParser::words()
{
    QFETCH(const QStringList, words);
    QFETCH(const Options, expected);
    QStringList list = words;
    const MessageRecorder recorder;
    QCOMPARE(CCommandLineParser::argumentsMap(&list), expected);
    const CCommandLineParser parser(&list);
    QCOMPARE(parser.count(), expected.size());
    for (auto option = expected.cbegin(); option != expected.cend(); ++option) {
        QVERIFY(parser.contains(option.key()));
        QCOMPARE(parser.value(option.key()), option.value());
    }
    QCOMPARE(list, words); // the caller's list stays
    list.clear();          // and is not needed any more
    QCOMPARE(parser.count(), expected.size());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CCommandLineParser::longList()
{
    QStringList list;
    for (int i = 0; i < 100000; ++i)
        list += QStringLiteral("name%1=%2").arg(i % 50000).arg(i);
    const QString value(100000, QLatin1Char('='));
    list += latin("long=") + value;
    const CCommandLineParser parser(&list);
    QCOMPARE(parser.count(), 50001);
    QCOMPARE(parser.value(latin("name0")), latin("50000"));
    QCOMPARE(parser.value(latin("name49999")), latin("99999"));
    QCOMPARE(parser.value(latin("long")), value);
}

void tst_CCommandLineParser::noList()
{
    const MessageRecorder recorder;
    QStringList *const none = nullptr;
    QCOMPARE(CCommandLineParser::argumentsMap(none), Options());
    const CCommandLineParser parser(none);
    QCOMPARE(parser.count(), 0);
    QVERIFY(isAbsent(parser));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CCommandLineParser::absent()
{
    QStringList words{latin("/opt/suite/k7e")};
    const CCommandLineParser parser(&words);
    QCOMPARE(parser.count(), 0);
    QCOMPARE(parser.powerAddress(), -1);
    QCOMPARE(parser.driveAddress(), -1);
    QVERIFY(parser.abAddress().isNull());
    QCOMPARE(parser.comAddress(), 0U);
    QCOMPARE(parser.language(), QLocale(QLocale::C, QLocale::AnyCountry));
    QVERIFY(parser.ip().isNull());
    QCOMPARE(parser.port(), 0);
    QVERIFY(parser.serverName().isNull());
    QCOMPARE(parser.userLevel(), 0);
    QCOMPARE(parser.deviceClass(), 0U);
    QCOMPARE(parser.deviceFunction(), 0U);
    QCOMPARE(parser.currentUnit(), 0);
    QVERIFY(isAbsent(parser));
}

// Each number by each text; a number of the other signedness is 0.
void tst_CCommandLineParser::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("asSigned");
    QTest::addColumn<qint64>("asUnsigned");
    const auto row = [](const char *text, qint64 asSigned, qint64 asUnsigned) {
        QTest::newRow(text) << latin(text) << asSigned << asUnsigned;
    };
    row("0", 0, 0);
    row("7", 7, 7);
    row("-0", 0, 0);
    row("+7", 7, 7);
    row("-1", -1, 0);
    row("-7", -7, 0);
    row("010", 10, 10);
    row("2147483647", INT_MAX, INT_MAX);
    row("2147483648", 0, 2147483648);
    row("-2147483648", INT_MIN, 0);
    row("-2147483649", 0, 0);
    row("4294967295", 0, UINT_MAX);
    row("4294967296", 0, 0);
    row("4294967301", 0, 0);
    row("18446744073709551623", 0, 0);
    row("65535", 65535, 65535);
    row("abc", 0, 0);
    row("7x", 0, 0);
    row("x7", 0, 0);
    row("1F", 0, 0);
    row("1.0", 0, 0);
    row("1e3", 0, 0);
    row("1,000", 0, 0);
    row("1.000", 0, 0);
    row("7 7", 0, 0);
    row("--7", 0, 0);
    row("-", 0, 0);
    row("=7", 0, 0);
    QTest::newRow("empty: present, so not -1") << latin("") << Q_INT64_C(0) << Q_INT64_C(0);
    QTest::newRow("U+FFFF") << QString(QChar(0xFFFF)) << Q_INT64_C(0) << Q_INT64_C(0);
    QTest::newRow("Arabic digit") << QStringLiteral("\u0663") << Q_INT64_C(0) << Q_INT64_C(0);
    QTest::newRow("100000 digits")
        << QString(100000, QLatin1Char('1')) << Q_INT64_C(0) << Q_INT64_C(0);
}

void tst_CCommandLineParser::numbers()
{
    QFETCH(const QString, text);
    QFETCH(const qint64, asSigned);
    QFETCH(const qint64, asUnsigned);
    for (const char *const locale : {"C", "de_DE"}) {
        const DefaultLocale defaultLocale(latin(locale));
        for (const Number &number : kNumbers) {
            const CCommandLineParser present = parser(latin(number.name) + latin("=") + text);
            const qint64 expected = number.isUnsigned ? asUnsigned : asSigned;
            QVERIFY2(number.read(present) == expected, number.name);
            QVERIFY2(isAbsent(present, number.name), number.name);
        }
    }
}

void tst_CCommandLineParser::port_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    const auto row
        = [](const char *text, int expected) { QTest::newRow(text) << latin(text) << expected; };
    row("0x1F90", 8080);
    row("0x1f90", 8080);
    row("8080", 8080);
    row("0X1F90", 0);
    row("1F90", 0);
    row("x0x1", 0);
    row("0x10", 16);
    row("010", 10);
    row("0x010", 16);
    row("0x0", 0);
    row("0x", 0);
    row("0xG", 0);
    row("0x1G", 0);
    row("0x1.0", 0);
    row("0x10x10", 0);
    row("00x10", 0);
    row("-0x10", 0);
    row("+0x10", 0);
    row(" 0x10", 0);
    row("0x7FFFFFFF", INT_MAX);
    row("0x80000000", 0);
    row("0xFFFFFFFF", 0);
    row("0x100000010", 0);
    row("65535", 65535);
    row("65536", 65536);
    row("-5", -5);
    row("0b1", 0);
    row("8080/tcp", 0);
}

void tst_CCommandLineParser::port()
{
    QFETCH(const QString, text);
    QTEST(parser(latin("port=") + text).port(), "expected");
    // No other number reads base 16.
    if (text.startsWith(QLatin1String("0x"))) {
        for (const Number &number : kNumbers) {
            if (qstrcmp(number.name, "port") != 0)
                QCOMPARE(number.read(parser(latin(number.name) + latin("=") + text)), Q_INT64_C(0));
        }
    }
}

void tst_CCommandLineParser::texts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("10.0.0.1") << latin("10.0.0.1");
    QTest::newRow("empty") << latin("");
    QTest::newRow("not checked") << latin("300.x.%1.-1");
    QTest::newRow("blanks stay") << latin("  a b ");
    QTest::newRow("equals signs stay") << latin("=a=b=");
    QTest::newRow("non-ASCII") << QStringLiteral("\u00e4\u20ac\U0001f600");
}

void tst_CCommandLineParser::texts()
{
    QFETCH(const QString, text);
    for (const Text &option : kTexts) {
        const CCommandLineParser present = parser(latin(option.name) + latin("=") + text);
        QCOMPARE((present.*option.read)(), text);
        QCOMPARE(present.value(latin(option.name)), text);
        QVERIFY2(isAbsent(present, option.name), option.name);
    }
}

void tst_CCommandLineParser::language_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("language");
    QTest::addColumn<int>("country");
    QTest::newRow("de") << latin("de") << int(QLocale::German) << int(QLocale::Germany);
    QTest::newRow("de_AT") << latin("de_AT") << int(QLocale::German) << int(QLocale::Austria);
    QTest::newRow("en") << latin("en") << int(QLocale::English) << int(QLocale::UnitedStates);
    QTest::newRow("en_GB") << latin("en_GB") << int(QLocale::English)
                           << int(QLocale::UnitedKingdom);
    QTest::newRow("fr") << latin("fr") << int(QLocale::French) << int(QLocale::France);
    QTest::newRow("C") << latin("C") << int(QLocale::C) << int(QLocale::AnyCountry);
    QTest::newRow("empty") << latin("") << int(QLocale::C) << int(QLocale::AnyCountry);
    QTest::newRow("no language") << latin("!?") << int(QLocale::C) << int(QLocale::AnyCountry);
}

void tst_CCommandLineParser::language()
{
    QFETCH(const QString, text);
    QFETCH(const int, language);
    QFETCH(const int, country);
    for (const char *const locale : {"C", "de_DE", "ja_JP"}) {
        const DefaultLocale defaultLocale(latin(locale));
        const CCommandLineParser present = parser(latin("lang=") + text);
        QCOMPARE(int(present.language().language()), language);
        QCOMPARE(int(present.language().country()), country);
        QCOMPARE(present.value(latin("lang")), text);
        QVERIFY(isAbsent(present, "lang"));
    }
}

void tst_CCommandLineParser::languageIgnoresDefault()
{
    const DefaultLocale german(latin("de_DE"));
    const QLocale c(QLocale::C, QLocale::AnyCountry);
    for (const char *const word : {"", "lang", "lang=", "LANG=fr", "-lang=fr", "=fr"}) {
        const CCommandLineParser absent = parser(latin(word));
        QVERIFY2(absent.language() == c, word);
        QCOMPARE(absent.language().name(), latin("C"));
        QCOMPARE(absent.language().toString(1.5), latin("1.5"));
    }
}

void tst_CCommandLineParser::setLanguage_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("language");
    QTest::newRow("de_DE") << QLocale(latin("de_DE")) << latin("de") << int(QLocale::German);
    QTest::newRow("de_AT") << QLocale(latin("de_AT")) << latin("de") << int(QLocale::German);
    QTest::newRow("en_US") << QLocale(latin("en_US")) << latin("en") << int(QLocale::English);
    QTest::newRow("zh_TW, whose script is lost")
        << QLocale(latin("zh_TW")) << latin("zh") << int(QLocale::Chinese);
    QTest::newRow("C, a name of one character") << QLocale::c() << latin("C") << int(QLocale::C);
    // Contract: three letters are cut to two, those of Filipino to Finnish.
    QTest::newRow("fil_PH") << QLocale(QLocale::Filipino, QLocale::Philippines) << latin("fi")
                            << int(QLocale::Finnish);
}

void tst_CCommandLineParser::setLanguage()
{
    QFETCH(const QLocale, locale);
    QFETCH(const QString, text);
    QFETCH(const int, language);
    const DefaultLocale french(latin("fr_FR"));
    QStringList without{latin("a=b")};
    CCommandLineParser added(&without);
    added.setLanguage(locale);
    QCOMPARE(added.count(), 2);
    QVERIFY(added.contains(latin("lang")));
    QCOMPARE(added.value(latin("lang")), text);
    QCOMPARE(int(added.language().language()), language);
    QCOMPARE(added.language(), QLocale(text));
    QStringList with{latin("lang=ja_JP")};
    CCommandLineParser replaced(&with);
    replaced.setLanguage(locale);
    QCOMPARE(replaced.count(), 1);
    QCOMPARE(replaced.value(latin("lang")), text);
    QVERIFY(isAbsent(replaced, "lang"));
    QCOMPARE(with, QStringList{latin("lang=ja_JP")});
}

void tst_CCommandLineParser::value()
{
    QStringList words{latin("a=1"), latin("b=")};
    const CCommandLineParser parser(&words);
    QCOMPARE(parser.value(latin("a")), latin("1"));
    QCOMPARE(parser.value(latin("b")), latin(""));
    for (const QString &name : {latin("c"), latin("A"), latin("-a"), latin(""), QString(),
                                latin("powadr"), latin("devtype"), latin("df"), latin("lang")}) {
        QVERIFY(!parser.contains(name));
        QVERIFY(parser.value(name).isEmpty());
        QVERIFY(!parser.value(name).isNull());
    }
    QVERIFY(parser.contains(latin("a")));
    QVERIFY(parser.contains(latin("b")));
    QCOMPARE(parser.count(), 2);
}

// A name that is written in any other way sets no option.
void tst_CCommandLineParser::names_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::newRow("dash") << latin("-%1");
    QTest::newRow("two dashes") << latin("--%1");
    QTest::newRow("slash") << latin("/%1");
    QTest::newRow("blank in front") << latin(" %1");
    QTest::newRow("blank behind") << latin("%1 ");
    QTest::newRow("longer") << latin("%1s");
}

void tst_CCommandLineParser::names()
{
    QFETCH(const QString, pattern);
    QStringList words;
    for (const Number &number : kNumbers) {
        words += pattern.arg(latin(number.name)) + latin("=7");
        words += latin(number.name).toUpper() + latin("=7");
    }
    for (const Text &text : kTexts)
        words += pattern.arg(latin(text.name)) + latin("=7");
    words += pattern.arg(latin("lang")) + latin("=de");
    const CCommandLineParser parser(&words);
    QCOMPARE(parser.count(), words.size());
    QVERIFY(isAbsent(parser));
}

void tst_CCommandLineParser::copies()
{
    QStringList words{latin("level=3"), latin("lang=de")};
    const CCommandLineParser source(&words);
    CCommandLineParser copy(source);
    QCOMPARE(copy.userLevel(), 3);
    copy.setLanguage(QLocale(latin("en_US")));
    QCOMPARE(source.value(latin("lang")), latin("de"));
    CCommandLineParser target(nullptr);
    QCOMPARE(&(target = copy), &target);
    QCOMPARE(target.value(latin("lang")), latin("en"));
    QCOMPARE(target.count(), 2);
    CCommandLineParser moved(std::move(copy));
    QCOMPARE(moved.value(latin("lang")), latin("en"));
    QCOMPARE(moved.userLevel(), 3);
    copy = source; // a moved-from parser can be assigned
    QCOMPARE(copy.value(latin("lang")), latin("de"));
    QCOMPARE(&(target = std::move(copy)), &target);
    QCOMPARE(target.value(latin("lang")), latin("de"));
    QCOMPARE(target.count(), 2);
}

void tst_CCommandLineParser::ofApplication_data()
{
    QTest::addColumn<QList<QByteArray>>("words");
    QTest::addColumn<Options>("expected");
    const auto row = [](const char *title, const QList<QByteArray> &words,
                        const Options &expected) { QTest::newRow(title) << words << expected; };
    row("program only", {"k7e"}, {});
    row("program with =", {"a=b"}, {{latin("a"), latin("b")}});
    row("two options and others", {"k7e", "level=1", "-x", "cu=2", "=y", "level=3"},
        {{latin("level"), latin("3")}, {latin("cu"), latin("2")}});
    row("empty words", {"k7e", "", "a="}, {{latin("a"), latin("")}});
}

void tst_CCommandLineParser::ofApplication()
{
    QFETCH(const QList<QByteArray>, words);
    QFETCH(const Options, expected);
    const MessageRecorder recorder;
    const Application application(words);
    QCOMPARE(CCommandLineParser::argumentsMap(), expected);
    const CCommandLineParser parser;
    QCOMPARE(parser.count(), expected.size());
    for (auto option = expected.cbegin(); option != expected.cend(); ++option)
        QCOMPARE(parser.value(option.key()), option.value());
    QCOMPARE(parser.userLevel(), expected.value(latin("level")).toInt());
    QCOMPARE(parser.powerAddress(), -1);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CCommandLineParser::prefixed_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QList<QByteArray>>("words");
    QTest::addColumn<Options>("expected");
    const auto row = [](const char *title, const char *prefix, const QList<QByteArray> &words,
                        const Options &expected) {
        QTest::newRow(title) << latin(prefix) << words << expected;
    };
    row("-lang de -title Drive 1 -x", "-", {"k7e", "-lang", "de", "-title", "Drive", "1", "-x"},
        {{latin("-lang"), latin("de")},
         {latin("-title"), latin("Drive 1")},
         {latin("-x"), latin("")}});
    row("program only", "-", {"k7e"}, {});
    row("program begins with the prefix", "-", {"-k7e", "x"}, {});
    row("program begins with the prefix, value behind the next", "-", {"-k7e", "x", "-a", "y"},
        {{latin("-a"), latin("y")}});
    row("empty prefix", "", {"k7e", "-a", "b"}, {});
    row("words in front of the first name", "-", {"k7e", "x", "y", "-a", "z"},
        {{latin("-a"), latin("z")}});
    row("name last", "-", {"k7e", "-a"}, {{latin("-a"), latin("")}});
    row("prefix alone is a name", "-", {"k7e", "-", "b"}, {{latin("-"), latin("b")}});
    row("prefix --, value ends at one dash", "--", {"k7e", "--a", "b", "-c", "d", "--e", "f"},
        {{latin("--a"), latin("b")}, {latin("--e"), latin("f")}});
    row("prefix -, two dashes are a name", "-", {"k7e", "--a", "b"}, {{latin("--a"), latin("b")}});
    row("prefix +, value goes through names with it", "+",
        {"k7e", "+a", "b", "+c", "-d", "+e", "f"},
        {{latin("+a"), latin("b +c")}, {latin("+e"), latin("f")}});
    row("prefix /, dash word ignored", "/", {"k7e", "-a", "/b", "c"}, {{latin("/b"), latin("c")}});
    row("prefix of a word", "-ti", {"k7e", "-title", "A", "-time", "B", "-x", "C"},
        {{latin("-title"), latin("A")}, {latin("-time"), latin("B")}});
    row("prefix longer than the words", "-title", {"k7e", "-ti", "A"}, {});
    row("case-sensitive prefix", "-A", {"k7e", "-a", "b", "-Ab", "c"},
        {{latin("-Ab"), latin("c")}});
    row("prefix in the middle of a word", "-", {"k7e", "a-b", "c"}, {});
    row("dash in the middle of a value", "-", {"k7e", "-a", "b-c", "d"},
        {{latin("-a"), latin("b-c d")}});
    row("negative number ends the value and is a name", "-", {"k7e", "-a", "1", "-2", "3"},
        {{latin("-a"), latin("1")}, {latin("-2"), latin("3")}});
    row("negative number ends the value of another prefix", "/", {"k7e", "/a", "1", "-2", "3"},
        {{latin("/a"), latin("1")}});
    row("repeated name", "-", {"k7e", "-a", "1", "-b", "2", "-a", "3"},
        {{latin("-a"), latin("3")}, {latin("-b"), latin("2")}});
    row("repeated name, empty the second time", "-", {"k7e", "-a", "1", "-a"},
        {{latin("-a"), latin("")}});
    row("names differ in case", "-", {"k7e", "-a", "1", "-A", "2"},
        {{latin("-a"), latin("1")}, {latin("-A"), latin("2")}});
    row("name=value is a word like others", "-", {"k7e", "-a=b", "c=d"},
        {{latin("-a=b"), latin("c=d")}});
    row("%1 stays", "-", {"k7e", "-%1", "%1", "%2 %1", "%n"},
        {{latin("-%1"), latin("%1 %2 %1 %n")}});
    row("%1 as the prefix", "%1", {"k7e", "%1a", "%1"}, {{latin("%1a"), latin("%1")}});
    row("empty word adds a blank", "-", {"k7e", "-a", "b", "", "c"},
        {{latin("-a"), latin("b  c")}});
    row("empty words at the ends are trimmed", "-", {"k7e", "-a", "", "b", "", ""},
        {{latin("-a"), latin("b")}});
    row("empty words only", "-", {"k7e", "-a", "", ""}, {{latin("-a"), latin("")}});
    row("only the ends are trimmed", "-", {"k7e", "-a", "  b ", "\tc\n "},
        {{latin("-a"), latin("b  \tc")}});
    row("blank in front of a dash is no name", "-", {"k7e", "-a", " -b", "c"},
        {{latin("-a"), latin("-b c")}});
    row("name is not trimmed", "-", {"k7e", "-a ", "b"}, {{latin("-a "), latin("b")}});
    row("prefix with a blank", "-a b", {"k7e", "-a bc", "d"}, {{latin("-a bc"), latin("d")}});
}

void tst_CCommandLineParser::prefixed()
{
    QFETCH(const QString, prefix);
    QFETCH(const QList<QByteArray>, words);
    QFETCH(const Options, expected);
    const MessageRecorder recorder;
    const Application application(words);
    QCOMPARE(CCommandLineParser::argumentsMap(prefix), expected);
    QCOMPARE(CCommandLineParser::argumentsMap(QString()), Options());
    QCOMPARE(recorder.messages(), QStringList());
}

// Against the same rule put in another way: a word belongs to the last word with a dash or the
// prefix that opened a value.
void tst_CCommandLineParser::prefixedRandom()
{
    const QList<QByteArray> pool{"-",   "-a", "-b", "--a", "+", "+a",  "+b", "a",
                                 "b c", "",   " ",  "%1",  "=", "x=y", "/a", "a-"};
    const char *const prefixes[] = {"-", "--", "-a", "+", "+a", "a", "%", " "};
    std::mt19937 random(71);
    int found = 0;
    for (int i = 0; i < 3000; ++i) {
        QList<QByteArray> words{pool.at(static_cast<int>(random() % 16))};
        for (auto count = random() % 12; count > 0; --count)
            words += pool.at(static_cast<int>(random() % 16));
        const Application application(words);
        for (const char *const prefix : prefixes) {
            Options expected;
            QString open; // the name whose value is being read
            bool isOpen = false;
            for (int word = 1; word < words.size(); ++word) {
                const QString text = QString::fromLatin1(words.at(word));
                if (isOpen && text.startsWith(QLatin1Char('-')))
                    isOpen = false;
                if (isOpen) {
                    expected[open] += QLatin1Char(' ') + text;
                } else if (text.startsWith(QLatin1String(prefix))) {
                    open = text;
                    isOpen = true;
                    expected[open] = latin("");
                }
            }
            for (QString &value : expected)
                value = value.trimmed();
            QCOMPARE(CCommandLineParser::argumentsMap(latin(prefix)), expected);
            found += expected.size();
        }
    }
    QVERIFY(found > 10000);
}

void tst_CCommandLineParser::noApplication()
{
    const QStringList ofQt = messagesOfArguments();
    {
        const MessageRecorder recorder;
        QCOMPARE(CCommandLineParser::argumentsMap(), Options());
        QCOMPARE(recorder.messages(), ofQt);
    }
    {
        const MessageRecorder recorder;
        QCOMPARE(CCommandLineParser::argumentsMap(latin("-")), Options());
        QCOMPARE(recorder.messages(), ofQt);
    }
    {
        const MessageRecorder recorder;
        const CCommandLineParser parser;
        QCOMPARE(parser.count(), 0);
        QVERIFY(isAbsent(parser));
        QCOMPARE(recorder.messages(), ofQt);
    }
    QCOMPARE(CCommandLineParser::argumentsMap(QString()), Options());
    QCOMPARE(CCommandLineParser::argumentsMap(latin("")), Options());
}

void tst_CCommandLineParser::inThreads()
{
    QVERIFY(trueInThreads([] {
        bool right = true;
        for (int i = 0; i < 500; ++i) {
            QStringList words{latin("level=3"), QStringLiteral("cu=%1").arg(i)};
            CCommandLineParser parser(&words);
            parser.setLanguage(QLocale(latin("en_US")));
            right = right && parser.userLevel() == 3 && parser.currentUnit() == i
                && parser.powerAddress() == -1 && parser.value(latin("lang")) == latin("en");
        }
        return right;
    }));
}

QTEST_APPLESS_MAIN(tst_CCommandLineParser)

#include "tst_CCommandLineParser.moc"
