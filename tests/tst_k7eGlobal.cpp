#include "k7eGlobal.h"

#include "InThreads.h"
#include "TextSets.h"

#include <QTemporaryDir>
#include <QVector>
#include <QtTest>

#include <initializer_list>
#include <sys/stat.h>
#include <type_traits>

using namespace Nk7eGlobal;

Q_DECLARE_METATYPE(QFile::Permissions)

namespace {

// One header brings all of the names that the programs share.
static_assert(NTypes::TYPE_U8 == 1);
static_assert(std::is_enum_v<NUnits::EObjectUnit>);
static_assert(std::is_same_v<decltype(NDeviceConf::NAME_CHECK_REGEXP), const QRegExp>);

static_assert(DIRFILTER_ALL == 0 && DIRFILTER_FILES == 1 && DIRFILTER_DIRS == 2);
static_assert(std::is_same_v<std::underlying_type_t<EDirFilter>, int>);
static_assert(std::is_convertible_v<EDirFilter, int>); // a plain enumeration

//! A constant of this file, as its address, so that it is read when it is asked for.
template <class Type>
struct Constant
{
    const char *name;
    Type *constant; // of the exact type: no other converts to it
    const char *value;
};

constexpr Constant<const QString> kTexts[] = {
    {"CAPPOBJECT_MIME_TYPE", &CAPPOBJECT_MIME_TYPE, "application/x-k7appobject"},
    {"CAPPONLINEOBJECT_MIME_TYPE", &CAPPONLINEOBJECT_MIME_TYPE, "application/x-k7apponlineobject"},
    {"COBJECTBROWSEROBJECT_MIME_TYPE", &COBJECTBROWSEROBJECT_MIME_TYPE,
     "application/x-k7objectbrowserobject"},
    {"CSCOPEOBJECT_MIME_TYPE", &CSCOPEOBJECT_MIME_TYPE, "application/x-k7scopeobject"},
    {"CPROJECTOBJECT_MIME_TYPE", &CPROJECTOBJECT_MIME_TYPE, "application/x-k7projectobject"},
    {"CPROJECTGUI_TREEITEM_MIME_TYPE", &CPROJECTGUI_TREEITEM_MIME_TYPE,
     "application/x-k7projectguitreeitem"},
    {"CDEVICEDATABASEGUI_DEVICE_MIME_TYPE", &CDEVICEDATABASEGUI_DEVICE_MIME_TYPE,
     "application/x-k7edevicedatabasedevice"},
    {"CDEVICEDATABASEGUI_FIRMWARE_MIME_TYPE", &CDEVICEDATABASEGUI_FIRMWARE_MIME_TYPE,
     "application/x-k7edevicedatabasefirmware"},
    {"CDEVICEDATABASEGUI_FPGA_MIME_TYPE", &CDEVICEDATABASEGUI_FPGA_MIME_TYPE,
     "application/x-k7edevicedatabasefpga"},
    {"CFILETRANSFER_TARGETFILE_MIME_TYPE", &CFILETRANSFER_TARGETFILE_MIME_TYPE,
     "application/k7FileTransferTargetFile"},
    {"SYSLOG_EMERG_STR, severity 0", &SYSLOG_EMERG_STR, "emerg"},
    {"SYSLOG_ALERT_STR, severity 1", &SYSLOG_ALERT_STR, "alert"},
    {"SYSLOG_CRIT_STR, severity 2", &SYSLOG_CRIT_STR, "crit"},
    {"SYSLOG_ERR_STR, severity 3, not err", &SYSLOG_ERR_STR, "error"},
    {"SYSLOG_WARNING_STR, severity 4, not warning", &SYSLOG_WARNING_STR, "warn"},
    {"SYSLOG_NOTICE_STR, severity 5", &SYSLOG_NOTICE_STR, "notice"},
    {"SYSLOG_INFO_STR, severity 6", &SYSLOG_INFO_STR, "info"},
    {"SYSLOG_DEBUG_STR, severity 7", &SYSLOG_DEBUG_STR, "debug"},
};

struct Latin1Constant
{
    Constant<const QLatin1String> row;
    int length;
};

constexpr Latin1Constant kLatin1Texts[] = {
    {{"RESULT_ENTRY_OK", &RESULT_ENTRY_OK, "[ OK ]"}, 6},
    {{"RESULT_ENTRY_FAILED", &RESULT_ENTRY_FAILED, "[ FAILED ]"}, 10},
    {{"PREFIX_PARAMETER", &PREFIX_PARAMETER, "I"}, 1},
    {{"PREFIX_CONFIG_PARAMS", &PREFIX_CONFIG_PARAMS, "C"}, 1},
    {{"PREFIX_DEVICE_DATABASE", &PREFIX_DEVICE_DATABASE, "U"}, 1},
    {{"PREFIX_FIRMWARE_DATABASE", &PREFIX_FIRMWARE_DATABASE, "F"}, 1},
    {{"PREFIX_LOGIC_DATABASE", &PREFIX_LOGIC_DATABASE, "L"}, 1},
    {{"PREFIX_DEVICE_CONFIGURATION", &PREFIX_DEVICE_CONFIGURATION, "D"}, 1},
    {{"PREFIX_EXTENSION_CONTROLLER", &PREFIX_EXTENSION_CONTROLLER, "S"}, 1},
    {{"PREFIX_OPTIONMODUL_DATABASE", &PREFIX_OPTIONMODUL_DATABASE, "O"}, 1},
    {{"MAC_PATTERN", &MAC_PATTERN, "([0-9a-fA-F]{2,2}(:|\\-){1,1}){5,5}[0-9a-fA-F]{2,2}"}, 50},
    {{"MAC_INPUT_PATTERN", &MAC_INPUT_PATTERN, "^([0-9a-fA-F]{,2}:{,1}){,5}[0-9a-fA-F]{,2}$"}, 43},
    {{"IPV4_PATTERN", &IPV4_PATTERN,
      "^((1?[0-9][0-9]?|2[0-4][0-9]|25[0-5])\\.){3}"
      "((25[0-5])|(2[0-4][0-9])|(1?[0-9][0-9]?))$"},
     85},
    {{"IPV4_INPUT_PATTERN", &IPV4_INPUT_PATTERN, "^([0-9]{,3}\\.{,1}){,3}[0-9]{,3}$"}, 32},
    {{"IPV4_SUBNET_PATTERN", &IPV4_SUBNET_PATTERN,
      "^((([0-5]{1,2})|([0-2]{1}[0-5]{2,2}))\\.){3,3}"
      "(([0-5]{1,2})|([0-2]{1}[0-5]{2,2}))$"},
     81},
    {{"IPV6_PATTERN", &IPV6_PATTERN, "^([0-9a-fA-F]{1,4}|:|0)(:([0-9a-fA-F]{0,4})|){7}$"}, 49},
    {{"FACTORY_CONFIGURATION_NAME", &NDeviceConf::FACTORY_CONFIGURATION_NAME, "setup"}, 5},
    {{"FACTORY_CONFIGURATION_PATTERN", &NDeviceConf::FACTORY_CONFIGURATION_PATTERN,
      ".*(setup){1,}.*"},
     15},
    {{"FAILSAFE_CONFIGURATION_PATTERN", &NDeviceConf::FAILSAFE_CONFIGURATION_PATTERN,
      ".*(failsafe){1,}.*"},
     18},
    {{"MOUNTERROR_CONFIGURATION_PATTERN", &NDeviceConf::MOUNTERROR_CONFIGURATION_PATTERN,
      ".*(mount error){1,}.*"},
     21},
    // Backslashes before t and r, no tab and no carriage return.
    {{"NAME_INPUT_PATTERN", &NDeviceConf::NAME_INPUT_PATTERN,
      "([0-9a-zA-Z_\\-\\+]+)"
      "([\\(][0-9]+[\\)])?"
      "(\\t\\r|$)"},
     44},
    {{"NAME_CHECK_PATTERN", &NDeviceConf::NAME_CHECK_PATTERN,
      ".*(setup|failsafe|mount error){1,}.*"},
     36},
    {{"PLUGIN_NAME_ETHERCAT_MASTER", &NDeviceConf::PLUGIN_NAME_ETHERCAT_MASTER, "CECatMaster"}, 11},
};

struct RegExpConstant
{
    Constant<const QRegExp> row;
    const QLatin1String *pattern;
};

constexpr RegExpConstant kRegExps[] = {
    {{"FACTORY_CONFIGURATION_REGEXP", &NDeviceConf::FACTORY_CONFIGURATION_REGEXP,
      ".*(setup){1,}.*"},
     &NDeviceConf::FACTORY_CONFIGURATION_PATTERN},
    {{"FAILSAFE_CONFIGURATION_REGEXP", &NDeviceConf::FAILSAFE_CONFIGURATION_REGEXP,
      ".*(failsafe){1,}.*"},
     &NDeviceConf::FAILSAFE_CONFIGURATION_PATTERN},
    {{"MOUNTERROR_CONFIGURATION_REGEXP", &NDeviceConf::MOUNTERROR_CONFIGURATION_REGEXP,
      ".*(mount error){1,}.*"},
     &NDeviceConf::MOUNTERROR_CONFIGURATION_PATTERN},
    {{"NAME_CHECK_REGEXP", &NDeviceConf::NAME_CHECK_REGEXP, ".*(setup|failsafe|mount error){1,}.*"},
     &NDeviceConf::NAME_CHECK_PATTERN},
};

static_assert(std::is_same_v<decltype(PATH_PERMISSIONS), const QFile::Permissions>);
static_assert(std::is_same_v<decltype(FILE_PERMISSIONS), const QFile::Permissions>);

//! What the constructor of a static object of this file sees of the constants.
struct AtLoad
{
    AtLoad()
    {
        for (const auto &text : kTexts)
            texts += *text.constant;
        for (const Latin1Constant &text : kLatin1Texts)
            latin1Texts += QString(*text.row.constant);
        for (const RegExpConstant &regExp : kRegExps)
            regExps += *regExp.row.constant;
        isSetup = NDeviceConf::FACTORY_CONFIGURATION_REGEXP.exactMatch(QStringLiteral("a Setup"));
    }

    QStringList texts;
    QStringList latin1Texts;
    QVector<QRegExp> regExps;
    bool isSetup = false;
    QFile::Permissions path = PATH_PERMISSIONS;
    QFile::Permissions file = FILE_PERMISSIONS;
};
const AtLoad kAtLoad;

//! Returns whether the whole of \a text matches, which all ways to ask for it must agree on.
bool matches(QLatin1String pattern, const QString &text)
{
    return QRegExp(pattern).exactMatch(text);
}

//! The name of a row, with its control characters in words.
QByteArray shown(const char *text)
{
    if (*text == '\0')
        return "(empty)";
    return QByteArray(text).replace('\t', "<tab>").replace('\n', "<lf>").replace('\r', "<cr>");
}

//! All texts of up to three digits, the empty one too.
QStringList digitTexts()
{
    QStringList texts(QStringLiteral(""));
    for (int digits = 1, end = 10; digits <= 3; ++digits, end *= 10) {
        for (int value = 0; value < end; ++value)
            texts += QString::number(value).rightJustified(digits, QLatin1Char('0'));
    }
    return texts;
}

//! Returns \a text at place \a place of four groups of which the others are \a other.
QString inGroup(const QString &text, int place, const QString &other)
{
    QStringList groups;
    for (int i = 0; i < 4; ++i)
        groups += i == place ? text : other;
    return groups.join(QLatin1Char('.'));
}

//! Returns whether \a text is up to \a groups times up to \a digits characters of \a isDigit and
//! perhaps a separator, then once more so many characters.
template <class IsDigit>
bool isTyped(const QString &text, int groups, int digits, IsDigit isDigit, QChar separator)
{
    const auto behindDigits = [&](const QVector<bool> &from) {
        QVector<bool> to = from;
        for (int place = 0; place <= text.size(); ++place) {
            for (int i = 1; from[place] && i <= digits && place + i <= text.size()
                 && isDigit(text.at(place + i - 1));
                 ++i) {
                to[place + i] = true;
            }
        }
        return to;
    };
    QVector<bool> places(text.size() + 1, false);
    places[0] = true;
    for (int group = 0; group < groups; ++group) {
        const QVector<bool> behind = behindDigits(places);
        for (int place = 0; place <= text.size(); ++place) {
            places[place] = behind[place]
                || (place > 0 && behind[place - 1] && text.at(place - 1) == separator);
        }
    }
    return behindDigits(places).last();
}

} // namespace

class tst_k7eGlobal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dirFilter_data();
    void dirFilter();
    void texts_data();
    void texts();
    void latin1Texts_data();
    void latin1Texts();
    void regExps_data();
    void regExps();
    void atLoad();
    void permissions_data();
    void permissions();

    void patternsAreValid_data();
    void patternsAreValid();
    void macPattern_data();
    void macPattern();
    void macInputPattern_data();
    void macInputPattern();
    void ipv4Pattern_data();
    void ipv4Pattern();
    void ipv4InputPattern_data();
    void ipv4InputPattern();
    void ipv4SubnetPattern_data();
    void ipv4SubnetPattern();
    void ipv6Pattern_data();
    void ipv6Pattern();
    void allGroups_data();
    void allGroups();
    void allTypedTexts();

    void configurations_data();
    void configurations();
    void nameInput_data();
    void nameInput();

    void threads();

private:
    static void accepted(const char *name, const QString &text, bool expected);
    static void rows(std::initializer_list<const char *> good,
                     std::initializer_list<const char *> bad);
};

void tst_k7eGlobal::accepted(const char *name, const QString &text, bool expected)
{
    QTest::addRow("%s%s", expected ? "" : "not ", shown(name).constData()) << text << expected;
}

void tst_k7eGlobal::rows(std::initializer_list<const char *> good,
                         std::initializer_list<const char *> bad)
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");
    for (const char *text : good)
        accepted(text, QString::fromLatin1(text), true);
    for (const char *text : bad)
        accepted(text, QString::fromLatin1(text), false);
}

void tst_k7eGlobal::dirFilter_data()
{
    QTest::addColumn<int>("filter");
    QTest::addColumn<int>("value");
    QTest::newRow("DIRFILTER_ALL") << static_cast<int>(DIRFILTER_ALL) << 0;
    QTest::newRow("DIRFILTER_FILES") << static_cast<int>(DIRFILTER_FILES) << 1;
    QTest::newRow("DIRFILTER_DIRS") << static_cast<int>(DIRFILTER_DIRS) << 2;
    QTest::newRow("any other code is a value")
        << static_cast<int>(static_cast<EDirFilter>(-7)) << -7;
}

void tst_k7eGlobal::dirFilter()
{
    QFETCH(const int, filter);
    QTEST(filter, "value");
}

void tst_k7eGlobal::texts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    for (const auto &row : kTexts)
        QTest::newRow(row.name) << *row.constant << QString::fromLatin1(row.value);
}

void tst_k7eGlobal::texts()
{
    QFETCH(const QString, text);
    QTEST(text, "value");
}

void tst_k7eGlobal::latin1Texts_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("length");
    for (const Latin1Constant &constant : kLatin1Texts) {
        const QLatin1String text = *constant.row.constant;
        QTest::newRow(constant.row.name) << QByteArray(text.data(), text.size())
                                         << QByteArray(constant.row.value) << constant.length;
    }
}

void tst_k7eGlobal::latin1Texts()
{
    QFETCH(const QByteArray, text);
    QTEST(text, "value");
    QTEST(text.size(), "length");
    for (const char character : text)
        QVERIFY(character >= ' ' && character <= '~');
}

void tst_k7eGlobal::regExps_data()
{
    QTest::addColumn<QRegExp>("regExp");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("constant");
    for (const RegExpConstant &regExp : kRegExps) {
        QTest::newRow(regExp.row.name)
            << *regExp.row.constant << QString::fromLatin1(regExp.row.value)
            << QString(*regExp.pattern);
    }
}

void tst_k7eGlobal::regExps()
{
    QFETCH(const QRegExp, regExp);
    QTEST(regExp.pattern(), "pattern");
    QTEST(regExp.pattern(), "constant");
    QCOMPARE(regExp.caseSensitivity(), Qt::CaseInsensitive);
    QCOMPARE(regExp.patternSyntax(), QRegExp::RegExp);
    QVERIFY(!regExp.isMinimal());
    QVERIFY2(regExp.isValid(), qPrintable(regExp.errorString()));
}

void tst_k7eGlobal::atLoad()
{
    int i = 0;
    for (const auto &text : kTexts)
        QCOMPARE(kAtLoad.texts.at(i++), QLatin1String(text.value));
    QCOMPARE(i, 18);
    i = 0;
    for (const Latin1Constant &text : kLatin1Texts)
        QCOMPARE(kAtLoad.latin1Texts.at(i++), QLatin1String(text.row.value));
    i = 0;
    for (const RegExpConstant &regExp : kRegExps) {
        QCOMPARE(kAtLoad.regExps.at(i).caseSensitivity(), Qt::CaseInsensitive);
        QCOMPARE(kAtLoad.regExps.at(i++).pattern(), QLatin1String(regExp.row.value));
    }
    QVERIFY(kAtLoad.isSetup);
    QCOMPARE(static_cast<int>(kAtLoad.path), 0x7075);
    QCOMPARE(static_cast<int>(kAtLoad.file), 0x6064);
}

void tst_k7eGlobal::permissions_data()
{
    QTest::addColumn<QFile::Permissions>("permissions");
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("mode");
    QTest::newRow("PATH_PERMISSIONS") << PATH_PERMISSIONS << 0x7075 << 0775;
    QTest::newRow("FILE_PERMISSIONS") << FILE_PERMISSIONS << 0x6064 << 0664;
}

void tst_k7eGlobal::permissions()
{
    QFETCH(const QFile::Permissions, permissions);
    QFETCH(const int, mode);
    QTEST(static_cast<int>(permissions), "flags");
    QVERIFY(!(permissions & (QFile::ReadUser | QFile::WriteUser | QFile::ExeUser)));

    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString path = directory.filePath(QStringLiteral("file"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.setPermissions(permissions));
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QCOMPARE(static_cast<int>(status.st_mode & 07777U), mode);
}

void tst_k7eGlobal::patternsAreValid_data()
{
    QTest::addColumn<QString>("pattern");
    for (const Latin1Constant &constant : kLatin1Texts) {
        if (QByteArray(constant.row.name).endsWith("_PATTERN"))
            QTest::newRow(constant.row.name) << QString(*constant.row.constant);
    }
}

void tst_k7eGlobal::patternsAreValid()
{
    QFETCH(const QString, pattern);
    const QRegExp regExp(pattern);
    QVERIFY2(regExp.isValid(), qPrintable(regExp.errorString()));
    QVERIFY(!regExp.isEmpty());
}

void tst_k7eGlobal::macPattern_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("place"); // where it is found
    QTest::addColumn<int>("length");
    const auto row = [](const char *text, int place) {
        QTest::newRow(text) << QString::fromLatin1(text) << place << (place < 0 ? -1 : 17);
    };
    row("00:1A:2b-3C:4d:5E", 0);
    row("00:1a:2b:3c:4d:5e", 0);
    row("FF-FF-FF-FF-FF-FF", 0);
    row("MAC 00:1A:2b-3C:4d:5E.", 4);
    row("00:00:1A:2b-3C:4d:5E:ff", 0); // the first six of more groups
    row("000:1A:2b:3C:4d:5E", 1);      // not anchored: the last digits of a group
    row("00:1A:2b:3C:4d:5Eff", 0);
    row("zz:00:1A:2b:3C:4d:5E", 3);
    row("00:1A:2b:3C:4d", -1);
    row("00:1A:2b:3C:4d:", -1);
    row("00:1A:2b:3C:4d:5", -1);
    row("0:1A:2b:3C:4d:5E", -1);
    row("00::1A:2b:3C:4d:5E", -1);
    row("00.1A.2b.3C.4d.5E", -1);
    row("00 1A 2b 3C 4d 5E", -1);
    row("001A2b3C4d5E", -1);
    row("00:1A:2b:3C:4d:5G", -1);
    row("00:1A:2b:3C:4d:\\-", -1);
    QTest::newRow("(empty)") << QString() << -1 << -1;
    QTest::newRow("Arabic digits") << QStringLiteral("\u0660\u0660:1A:2b:3C:4d:5E") << -1 << -1;
}

void tst_k7eGlobal::macPattern()
{
    QFETCH(const QString, text);
    QFETCH(const int, place);
    const QRegExp regExp(MAC_PATTERN);
    QCOMPARE(regExp.indexIn(text), place);
    QTEST(regExp.matchedLength(), "length");
    QCOMPARE(matches(MAC_PATTERN, text), place == 0 && text.size() == 17);
}

void tst_k7eGlobal::macInputPattern_data()
{
    rows({"", "0", "00", "00:", "00:1", "00:1A:", "00:1A:2b:3C:4d:5E", ":", ":::::", "0:1:2:3:4:5",
          "001A2b3C4d5E", "001", "fF:"},
         {"00-1A", "-", "::::::", "00:1A:2b:3C:4d:5E:", "00:1A:2b:3C:4d:5E0", "001A2b3C4d5E0",
          "00:1g", " 00", "00 ", "00\n", "."});
    accepted("Arabic digit", QStringLiteral("\u0660"), false);
}

void tst_k7eGlobal::macInputPattern()
{
    QFETCH(const QString, text);
    QTEST(matches(MAC_INPUT_PATTERN, text), "expected");
    QTEST(QRegExp(MAC_INPUT_PATTERN).indexIn(text) == 0, "expected");
}

void tst_k7eGlobal::ipv4Pattern_data()
{
    rows({"192.168.0.1", "10.0.0.255", "0.0.0.0", "255.255.255.255", "1.2.3.4", "00.01.09.99",
          "199.100.249.250"},
         {"256.1.1.1",   "1.256.1.1",     "1.1.256.1",  "1.1.1.256", "1.2.3",     "1.2.3.",
          "1.2.3.4.",    "1.2.3.4.5",     ".1.2.3",     "1..2.3",    "001.2.3.4", "1.2.3.012",
          "300.1.1.1",   "1.1.1.260",     "1.1.1.1000", "1,2,3,4",   "1 .2.3.4",  " 1.2.3.4",
          "1.2.3.4\n",   "1.2.3.4/24",    "a.b.c.d",    "0x1.2.3.4", "-1.2.3.4",  "1.2.3.4 ",
          "x 1.2.3.4 y", "1\\.2\\.3\\.4", "",           "1234"});
    accepted("Arabic digit", QStringLiteral("\u0661.2.3.4"), false);
}

void tst_k7eGlobal::ipv4Pattern()
{
    QFETCH(const QString, text);
    QTEST(matches(IPV4_PATTERN, text), "expected");
    QTEST(QRegExp(IPV4_PATTERN).indexIn(text) == 0, "expected");
}

void tst_k7eGlobal::ipv4InputPattern_data()
{
    rows({"", "1", "192", "192.", "192.168.0.", "192.168.0.1", "999.999.999.999", ".", "...", ".1",
          "1..2", "1234", "123456789012"},
         {"....", "1.2.3.4.", "1.2.3.4.5", "1.2.3.4567", "1234567890123", "a", "1:2", "1,2", " 1",
          "1 ", "1\n", "-1"});
    accepted("Arabic digit", QStringLiteral("\u0661"), false);
}

void tst_k7eGlobal::ipv4InputPattern()
{
    QFETCH(const QString, text);
    QTEST(matches(IPV4_INPUT_PATTERN, text), "expected");
    QTEST(QRegExp(IPV4_INPUT_PATTERN).indexIn(text) == 0, "expected");
}

void tst_k7eGlobal::ipv4SubnetPattern_data()
{
    rows({"255.255.255.0", "255.255.240.0", "255.255.255.252", "255.255.255.254", "255.255.255.255",
          "0.0.0.0", "55.55.55.55", "5.05.005.00", "255.0.0.0", "250.055.155.205"},
         {"255.255.255.128", "255.255.255.192", "255.255.248.0",
          "255.255.256.0",   "300.0.0.0",       "355.0.0.0",
          "6.0.0.0",         "0.0.0.60",        "265.0.0.0",
          "255.255.255",     "255.255.255.",    "255.255.255.0.0",
          "255..255.0",      "0255.0.0.0",      "2555.0.0.0",
          "255.255.255.0 ",  "255.255.255.0\n", " 255.0.0.0",
          "a.0.0.0",         "255,0,0,0",       "",
          "255.255.224.0\r"});
    accepted("Arabic digit", QStringLiteral("\u0661.0.0.0"), false);
}

void tst_k7eGlobal::ipv4SubnetPattern()
{
    QFETCH(const QString, text);
    QTEST(matches(IPV4_SUBNET_PATTERN, text), "expected");
    QTEST(QRegExp(IPV4_SUBNET_PATTERN).indexIn(text) == 0, "expected");
}

void tst_k7eGlobal::ipv6Pattern_data()
{
    rows({"fe80:0:0:0:0:0:0:1", "FE80:0000:0:0:0:0:0:0001", "::1", "::", ":", "0", "1", "ffff",
          "1:2:3", "1:::::::", ":::::::", "::::::::", "1::2", "1:2:3:4:5:6:7:8",
          "1:", "::2:3:4:5:6:7:8", "aBcD:eF01:2:3:4:5:6:7"},
         {"",
          "12345",
          "00000",
          "fe800:0:0:0:0:0:0:1",
          "fe80:0:0:0:0:0:0:00001",
          "1:23456",
          "::12345",
          "1:2:3:4:5:6:7:8:9",
          "1:2:3:4:5:6:7:8:",
          ":::::::::",
          "1::::::::",
          ":1",
          ":1:2:3:4:5:6:7",
          "g",
          "1:g",
          "1.2.3.4",
          "::1.2.3.4",
          "fe80::1%eth0",
          "[::1]",
          " ::1",
          "::1 ",
          "::1\n",
          "1;2",
          "-1"});
    accepted("Arabic digit", QStringLiteral("\u0661"), false);
}

void tst_k7eGlobal::ipv6Pattern()
{
    QFETCH(const QString, text);
    QTEST(matches(IPV6_PATTERN, text), "expected");
    QTEST(QRegExp(IPV6_PATTERN).indexIn(text) == 0, "expected");
}

void tst_k7eGlobal::allGroups_data()
{
    QTest::addColumn<int>("place");
    for (int place = 0; place < 4; ++place)
        QTest::addRow("group %d", place) << place;
}

// Every text of up to three digits in every group, told by its value or its digits.
void tst_k7eGlobal::allGroups()
{
    QFETCH(const int, place);
    const QRegExp address(IPV4_PATTERN);
    const QRegExp subnet(IPV4_SUBNET_PATTERN);
    const QStringList texts = digitTexts();
    QCOMPARE(texts.size(), 1111);
    for (const QString &text : texts) {
        const int value = text.toInt();
        const bool isOctet = value <= 255 && !text.isEmpty() && (text.size() < 3 || value >= 100);
        bool isMask = !text.isEmpty();
        for (const QChar digit : text)
            isMask = isMask && digit <= QLatin1Char('5');
        if (text.size() == 3)
            isMask = isMask && text.at(0) <= QLatin1Char('2');
        QVERIFY2(address.exactMatch(inGroup(text, place, QStringLiteral("99"))) == isOctet,
                 qPrintable(text));
        QVERIFY2(subnet.exactMatch(inGroup(text, place, QStringLiteral("255"))) == isMask,
                 qPrintable(text));
    }
}

// What may be typed, against all ways to cut a text into groups.
void tst_k7eGlobal::allTypedTexts()
{
    const QRegExp mac(MAC_INPUT_PATTERN);
    const QRegExp address(IPV4_INPUT_PATTERN);
    const auto isHex
        = [](QChar unit) { return QLatin1String("0123456789abcdefABCDEF").contains(unit); };
    const auto isDecimal = [](QChar unit) { return QLatin1String("0123456789").contains(unit); };
    QByteArray failed;
    int count = 0;
    int addresses = 0;
    const auto check = [&](const QString &text) {
        const bool isAddress = isTyped(text, 3, 3, isDecimal, QLatin1Char('.'));
        if (mac.exactMatch(text) != isTyped(text, 5, 2, isHex, QLatin1Char(':'))
            || address.exactMatch(text) != isAddress) {
            failed = text.toUtf8();
        }
        ++count;
        addresses += isAddress ? 1 : 0;
        return true;
    };
    forAllTexts(QStringLiteral("1:"), 13, check);
    forAllTexts(QStringLiteral("1."), 13, check);
    forAllTexts(QStringLiteral("0aF9:.-"), 4, check);
    QVERIFY2(failed.isEmpty(), failed.constData());
    QCOMPARE(count, 2 * ((1 << 14) - 1) + 1 + 7 + 49 + 343 + 2401);
    QVERIFY(addresses > 500 && addresses < count / 2);
}

void tst_k7eGlobal::configurations_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("factory");
    QTest::addColumn<bool>("failsafe");
    QTest::addColumn<bool>("mountError");

    const auto row = [](const char *text, const QByteArray &found) {
        QTest::addRow("%s", shown(text).constData())
            << QString::fromLatin1(text) << found.contains('s') << found.contains('f')
            << found.contains('m');
    };
    row("setup", "s");
    row("SETUP", "s");
    row("my Setup 1", "s");
    row("presetups", "s");
    row("setupsetup", "s");
    row("a\nsetup\nb", "s");
    row("set up", "");
    row("setu", "");
    row("etup", "");
    row("failsafe", "f");
    row("FailSafe (2)", "f");
    row("xfailsafex", "f");
    row("fail-safe", "");
    row("fail safe", "");
    row("mount error", "m");
    row("Mount Error: 5", "m");
    row("dismount errors", "m");
    row("mounterror", "");
    row("mount  error", "");
    row("mount_error", "");
    row("setup failsafe", "sf");
    row("SETUPFAILSAFEMOUNT ERROR", "sfm");
    row("Drive_1", "");
    row("(setup){1,}", "s");
    row("", "");
}

void tst_k7eGlobal::configurations()
{
    using namespace NDeviceConf;
    QFETCH(const QString, text);
    QFETCH(const bool, factory);
    QFETCH(const bool, failsafe);
    QFETCH(const bool, mountError);
    const bool any = factory || failsafe || mountError;
    QCOMPARE(FACTORY_CONFIGURATION_REGEXP.exactMatch(text), factory);
    QCOMPARE(FAILSAFE_CONFIGURATION_REGEXP.exactMatch(text), failsafe);
    QCOMPARE(MOUNTERROR_CONFIGURATION_REGEXP.exactMatch(text), mountError);
    QCOMPARE(NAME_CHECK_REGEXP.exactMatch(text), any);
    QCOMPARE(FACTORY_CONFIGURATION_REGEXP.indexIn(text), factory ? 0 : -1);
    QCOMPARE(FAILSAFE_CONFIGURATION_REGEXP.indexIn(text), failsafe ? 0 : -1);
    QCOMPARE(MOUNTERROR_CONFIGURATION_REGEXP.indexIn(text), mountError ? 0 : -1);
    QCOMPARE(NAME_CHECK_REGEXP.indexIn(text), any ? 0 : -1);

    // The patterns themselves are of no case.
    const bool isLower = text == text.toLower();
    QCOMPARE(matches(FACTORY_CONFIGURATION_PATTERN, text), factory && isLower);
    QCOMPARE(matches(NAME_CHECK_PATTERN, text.toUpper()), false);
    QCOMPARE(matches(NAME_CHECK_PATTERN, text.toLower()), any);
}

void tst_k7eGlobal::nameInput_data()
{
    rows({"Drive", "a", "0", "_", "-", "+", "a-b+c_9", "-+_", "Drive(1)", "Drive(0123456789)",
          "Drive\t\r", "Drive(1)\t\r", "AZaz09"},
         {"",        "Drive 1",       "Drive()",    "Drive(",      "Drive(1",
          "Drive)",  "Drive(a)",      "Drive(-1)",  "Drive(1)(2)", "Drive(1)x",
          "(1)",     "\t\r",          "Drive\t",    "Drive\r",     "Drive\r\t",
          "Drive\n", "Drive\t\r\t\r", "Drive\t\rx", "Drive\\t\\r", "Dri.ve",
          "Dri/ve",  "Dri\\ve",       "Drive(1)\t", "Drive[1]",    " Drive"});
    accepted("letter that is not ASCII", QStringLiteral("Antrieb_\u00e9"), false);
    accepted("Arabic digit", QStringLiteral("Drive\u0661"), false);
    accepted("long s, sensitive to case", QStringLiteral("\u017f"), false);
}

void tst_k7eGlobal::nameInput()
{
    QFETCH(const QString, text);
    QTEST(matches(NDeviceConf::NAME_INPUT_PATTERN, text), "expected");
}

void tst_k7eGlobal::threads()
{
    const auto check = [] {
        for (int i = 0; i < 200; ++i) {
            const QRegExp name(NDeviceConf::NAME_CHECK_REGEXP); // matching changes it
            const bool isRight = name.exactMatch(QStringLiteral("a Setup"))
                && !name.exactMatch(QStringLiteral("Drive"))
                && QRegExp(IPV6_PATTERN).exactMatch(QStringLiteral("::1"))
                && !QRegExp(IPV4_PATTERN).exactMatch(QStringLiteral("1.2.3"))
                && QString(SYSLOG_ERR_STR) == QLatin1String("error")
                && PREFIX_FIRMWARE_DATABASE == QLatin1String("F");
            if (!isRight)
                return false;
        }
        return true;
    };
    QVERIFY(trueInThreads(check));
}

QTEST_APPLESS_MAIN(tst_k7eGlobal)

#include "tst_k7eGlobal.moc"
