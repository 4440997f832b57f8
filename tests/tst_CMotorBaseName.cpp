#include "CMotorBaseName.h"

#include "InThreads.h"
#include "MessageRecorder.h"

#include <QDataStream>
#include <QFileInfo>
#include <QTextCodec>
#include <QtTest>

#include <climits>
#include <cstddef>
#include <random>
#include <type_traits>
#include <utility>

Q_DECLARE_METATYPE(CMotorBaseName)

namespace {

using SMOFileName = CMotorBaseName::SMOFileName;

static_assert(std::has_virtual_destructor_v<CMotorBaseName>);
static_assert(sizeof(CMotorBaseName) == 2 * sizeof(void *) + sizeof(SMOFileName));
static_assert(sizeof(SMOFileName) == 3 * sizeof(QString));
static_assert(offsetof(SMOFileName, manufacturer) == 0);
static_assert(offsetof(SMOFileName, name) == sizeof(QString));
static_assert(offsetof(SMOFileName, number) == 2 * sizeof(QString));
static_assert(std::is_nothrow_move_constructible_v<CMotorBaseName>);
static_assert(!std::is_constructible_v<CMotorBaseName, const char16_t *>); // no mode
static_assert(!std::is_constructible_v<CMotorBaseName, QString *>);
static_assert(std::is_nothrow_move_assignable_v<CMotorBaseName>);
static_assert(std::is_nothrow_swappable_v<CMotorBaseName>);
static_assert(std::is_convertible_v<CMotorBaseName, QString>);
// A literal must not become a mode on its way to a text.
static_assert(std::is_constructible_v<CMotorBaseName, bool>);
static_assert(!std::is_convertible_v<bool, CMotorBaseName>);
static_assert(!std::is_convertible_v<const char *, CMotorBaseName>);
static_assert(!std::is_assignable_v<CMotorBaseName &, bool>);
static_assert(std::is_assignable_v<CMotorBaseName &, QString>);
static_assert(std::is_assignable_v<CMotorBaseName &, QLatin1String>);

template <class... T>
constexpr bool kMakes = std::is_constructible_v<CMotorBaseName, T...>;
using Text = const QString &;

static_assert(kMakes<const char *> && kMakes<char *> && kMakes<const char (&)[6]>);
static_assert(kMakes<Text, bool> && kMakes<QLatin1String, bool>);
static_assert(kMakes<Text, Text, Text, bool>);
static_assert(kMakes<Text, const bool &> && kMakes<Text, bool &>);
static_assert(kMakes<Text, int>); // a number is a mode, as anywhere else in the language
// No pointer is a mode.
static_assert(!kMakes<const void *> && !kMakes<void *> && !kMakes<const bool *>);
static_assert(!kMakes<Text, const char *> && !kMakes<Text, char *> && !kMakes<Text, void *>);
static_assert(!kMakes<Text, const char (&)[4]> && !kMakes<Text, const QString *>);
static_assert(!kMakes<Text, const bool *> && !kMakes<Text, void (*)()>);
static_assert(!kMakes<QLatin1String, const char *> && !kMakes<Text, std::nullptr_t>);
struct SMember;
static_assert(!kMakes<void (*)()> && !kMakes<int (*)(int)> && !kMakes<int SMember::*>);
static_assert(!kMakes<Text, int SMember::*> && !kMakes<Text, Text, Text, int SMember::*>);
static_assert(!kMakes<Text, Text, Text, const char *> && !kMakes<Text, Text, Text, QString *>);

constexpr QDataStream::Version kVersions[]
    = {QDataStream::Qt_4_6, QDataStream::Qt_5_0, QDataStream::Qt_5_15};
constexpr int kLong = 100000;

QString latin(const char *text)
{
    return QString::fromLatin1(text);
}

//! Returns \a count characters of \a unit.
QString run(int count, char unit)
{
    return QString(count, QLatin1Char(unit));
}

//! Returns \a text as a row name: control characters by name.
QByteArray printable(const char *text)
{
    return QByteArray(text).replace("\t", " TAB").replace("\r", " CR").replace("\n", " LF");
}

QString hex(const QString &text)
{
    QString result;
    for (const QChar unit : text)
        result += QStringLiteral("%1 ").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    return result;
}

// The rules as expressions.

constexpr char kPart[] = R"(^([0-9a-zA-Z\-&\+]+)(\t\r|$))";
constexpr char kDigit[] = R"(^([0-9]?)(\t\r|$))";
constexpr char kDigits[] = "^[0-9]+$";
constexpr char kFull[] = R"(^([0-9a-zA-Z\-&\+]+_){1}([0-9a-zA-Z\-&\+]+_){1}([0-9a-zA-Z\-&\+]+)+$)";
constexpr char kFullNumeric[] = R"(^([0-9a-zA-Z\-&\+]+_){1}([0-9a-zA-Z\-&\+]+_){1}([0-9])+$)";

bool isPart(const QString &text)
{
    static const QRegExp expression(latin(kPart));
    return expression.exactMatch(text);
}

bool isNumber(const QString &text, bool numeric)
{
    static const QRegExp expression(latin(kDigit));
    return numeric ? expression.exactMatch(text) : isPart(text);
}

bool isDigits(const QString &text)
{
    static const QRegExp expression(latin(kDigits));
    return expression.exactMatch(text);
}

bool isFull(const QString &text, bool numeric)
{
    static const QRegExp expression(latin(kFull), Qt::CaseInsensitive);
    static const QRegExp numericExpression(latin(kFullNumeric), Qt::CaseInsensitive);
    return (numeric ? numericExpression : expression).exactMatch(text);
}

//! What a text as a base name sets, and whether that counts as a success.
struct Parsed
{
    SMOFileName parts;
    bool result = true;
};

Parsed parsed(const QString &text, bool numeric)
{
    Parsed parsed;
    const QFileInfo info(text);
    if (text.isEmpty() || !isFull(info.fileName(), numeric))
        return parsed;
    const QStringList parts = info.completeBaseName().split(QLatin1Char('_'));
    for (int i = 0; i < parts.size() && parsed.result; ++i) {
        const QString &part = parts.at(i);
        parsed.result = i < 3 && (i == 2 ? isNumber(part, numeric) : isPart(part));
        if (parsed.result) {
            QString *const places[]
                = {&parsed.parts.manufacturer, &parsed.parts.name, &parsed.parts.number};
            *places[i] = part;
        }
    }
    return parsed;
}

//! Returns a name of these parts in any mode, without the warning for the number.
CMotorBaseName unchecked(const QString &manufacturer, const QString &name, const QString &number,
                         bool numeric)
{
    CMotorBaseName result(numeric);
    result = CMotorBaseName(manufacturer, name, number, false);
    return result;
}

bool holds(const CMotorBaseName &object, const QString &manufacturer, const QString &name,
           const QString &number)
{
    return object.manufacturer() == manufacturer && object.name() == name
        && object.number() == (number.isEmpty() ? QStringLiteral("0") : number)
        && object.isEmpty() == (manufacturer + name + number).isEmpty()
        && object == CMotorBaseName(manufacturer, name, number, false);
}

//! Returns whether \a object is in numeric-number mode; its parts are lost.
bool isNumeric(CMotorBaseName object)
{
    return !object.setNumber(QStringLiteral("X12"));
}

//! Returns the operation that treats \a text otherwise than the rules do, or null.
const char *firstDifference(const QString &text, bool numeric)
{
    const QString a = QStringLiteral("A");
    const QString b = QStringLiteral("B");
    const QString c = QStringLiteral("1");
    const CMotorBaseName before = unchecked(a, b, c, numeric);
    const bool part = isPart(text);
    CMotorBaseName object(before);
    if (object.setManufacturer(text) != part || !holds(object, part ? text : a, b, c))
        return "setManufacturer";
    object = before;
    if (object.setName(text) != part || !holds(object, a, part ? text : b, c))
        return "setName";
    object = before;
    const bool number = isNumber(text, numeric);
    if (object.setNumber(text) != number || !holds(object, a, b, number ? text : c))
        return "setNumber";
    if (before.checkNumber(text) != isDigits(text))
        return "checkNumber";
    if (CMotorBaseName::isValid(text, numeric) != isFull(QFileInfo(text).baseName(), numeric))
        return "static isValid";
    for (const SMOFileName &parts :
         {SMOFileName{text, b, c}, SMOFileName{a, text, c}, SMOFileName{a, b, text}}) {
        object = CMotorBaseName(parts.manufacturer, parts.name, parts.number, false);
        const QString last = parts.number.isEmpty() ? QStringLiteral("0") : parts.number;
        const QString whole
            = QStringList{parts.manufacturer, parts.name, last}.join(QLatin1Char('_'));
        if (object.fileBaseName() != whole)
            return "fileBaseName";
        if (object.isValid() != isFull(whole, numeric))
            return "isValid";
    }
    const Parsed expected = parsed(text, numeric);
    object = before;
    if (object.setFileBaseName(text) != expected.result
        || !holds(object, expected.parts.manufacturer, expected.parts.name, expected.parts.number))
        return "setFileBaseName";
    if (isNumeric(object) != numeric)
        return "mode";
    if (CMotorBaseName(text, numeric) != object)
        return "constructor";
    return nullptr;
}

//! Returns the operation that treats \a text otherwise than the rules do, with the text, or a null
//! string.
QString difference(const QString &text, bool numeric)
{
    const char *const operation = firstDifference(text, numeric);
    if (operation == nullptr)
        return QString();
    return QLatin1String(operation) + QLatin1String(numeric ? " in the mode: " : ": ") + hex(text);
}

//! Where a message came from. Qt owns its texts only while the handler runs.
struct Origin
{
    QtMsgType type;
    QByteArray category;
    QByteArray function;
    QByteArray file;
};

QVector<Origin> &origins()
{
    static QVector<Origin> origins;
    return origins;
}

void recordOrigin(QtMsgType type, const QMessageLogContext &context, const QString &)
{
    origins().append({type, context.category, context.function, context.file});
}

QByteArray written(const CMotorBaseName &name, QDataStream::Version version,
                   QDataStream::ByteOrder order)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(version);
    out.setByteOrder(order);
    out << name;
    return bytes;
}

} // namespace

class tst_CMotorBaseName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initial_data();
    void initial();
    void part_data();
    void part();
    void number_data();
    void number();
    void emptyNumberInMode();
    void checkNumber_data();
    void checkNumber();
    void numberAsI32_data();
    void numberAsI32();
    void fileBaseName_data();
    void fileBaseName();
    void defaultName();
    void fullRegExp();
    void isValidFile_data();
    void isValidFile();
    void isValidObject_data();
    void isValidObject();
    void setFileBaseName_data();
    void setFileBaseName();
    void longTexts_data();
    void longTexts();
    void longDirectories();
    void allShortTexts_data();
    void allShortTexts();
    void eachUnit();
    void randomTexts();
    void warning_data();
    void warning();
    void warningInLocalEncoding();
    void warningOrigin();
    void noWarning();
    void literal();
    void copies();
    void moves();
    void swaps();
    void assignText();
    void clear();
    void equality_data();
    void equality();
    void streamBytes_data();
    void streamBytes();
    void readsAnything_data();
    void readsAnything();
    void shortStream_data();
    void shortStream();
    void debug_data();
    void debug();
    void inThreads();
};

void tst_CMotorBaseName::initial_data()
{
    QTest::addColumn<CMotorBaseName>("object");
    QTest::addColumn<bool>("numeric");
    QTest::newRow("no argument") << CMotorBaseName() << false;
    QTest::newRow("mode off") << CMotorBaseName(false) << false;
    QTest::newRow("mode on") << CMotorBaseName(true) << true;
    QTest::newRow("null text, mode on") << CMotorBaseName(QString(), true) << true;
    QTest::newRow("empty text, mode off") << CMotorBaseName(latin(""), false) << false;
}

void tst_CMotorBaseName::initial()
{
    QFETCH(const CMotorBaseName, object);
    QVERIFY(object.manufacturer().isNull());
    QVERIFY(object.name().isNull());
    QCOMPARE(object.number(), QStringLiteral("0"));
    QCOMPARE(object.numberAsI32(), -1);
    QVERIFY(object.fileBaseName().isNull());
    QVERIFY(QString(object).isNull());
    QVERIFY(object.isEmpty());
    QVERIFY(object.isNull());
    QVERIFY(!object.isValid());
    QTEST(isNumeric(object), "numeric");
    const SMOFileName parts;
    QVERIFY(parts.manufacturer.isNull() && parts.name.isNull() && parts.number.isNull());
}

void tst_CMotorBaseName::part_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isRight");
    QTest::newRow("MFR") << latin("MFR") << true;
    QTest::newRow("one letter") << latin("a") << true;
    QTest::newRow("one digit") << latin("0") << true;
    QTest::newRow("A&B+1") << latin("A&B+1") << true;
    QTest::newRow("M-100") << latin("M-100") << true;
    QTest::newRow("minus only") << latin("-") << true;
    QTest::newRow("limits of the ranges") << latin("09azAZ") << true;
    QTest::newRow("TAB CR behind") << latin("MFR\t\r") << true;
    QTest::newRow("null") << QString() << false;
    QTest::newRow("empty") << latin("") << false;
    QTest::newRow("A_B") << latin("A_B") << false;
    QTest::newRow("TAB CR only") << latin("\t\r") << false;
    QTest::newRow("TAB behind") << latin("MFR\t") << false;
    QTest::newRow("CR behind") << latin("MFR\r") << false;
    QTest::newRow("CR TAB behind") << latin("MFR\r\t") << false;
    QTest::newRow("TAB CR twice") << latin("MFR\t\r\t\r") << false;
    QTest::newRow("TAB CR in the middle") << latin("MF\t\rR") << false;
    QTest::newRow("TAB CR in front") << latin("\t\rMFR") << false;
    QTest::newRow("LF behind") << latin("MFR\n") << false;
    QTest::newRow("blank behind") << latin("MFR ") << false;
    QTest::newRow("blank in front") << latin(" MFR") << false;
    QTest::newRow("NUL behind") << QString::fromLatin1("MFR\0", 4) << false;
    QTest::newRow("backslash") << latin("M\\R") << false;
    QTest::newRow("dot") << latin("M.R") << false;
    QTest::newRow("a umlaut") << latin("M\xe4R") << false;
    QTest::newRow("long s") << QStringLiteral("\u017f") << false;
    QTest::newRow("Kelvin sign") << QStringLiteral("\u212a") << false;
    QTest::newRow("dotless i") << QStringLiteral("\u0131") << false;
    QTest::newRow("Arabic digit") << QStringLiteral("\u0663") << false;
    QTest::newRow("fullwidth letter") << QStringLiteral("\uff2d") << false;
    QTest::newRow("low byte of a letter") << QStringLiteral("\u014d") << false;
    for (const char unit : {'/', ':', '@', '[', '`', '{', '*', ',', '%', '\''})
        QTest::addRow("next to the class: %c", unit) << run(1, unit) << false;
}

void tst_CMotorBaseName::part()
{
    QFETCH(const QString, text);
    QFETCH(const bool, isRight);
    for (const bool numeric : {false, true}) {
        const QString kept = QStringLiteral("old");
        CMotorBaseName name = unchecked(kept, kept, kept, numeric);
        QCOMPARE(name.setManufacturer(text), isRight);
        QCOMPARE(name.manufacturer(), isRight ? text : kept);
        QCOMPARE(name.name(), kept);
        QCOMPARE(name.setName(text), isRight);
        QCOMPARE(name.name(), isRight ? text : kept);
        QCOMPARE(name.number(), kept);
        if (!numeric) {
            QCOMPARE(name.setNumber(text), isRight);
            QCOMPARE(name.number(), isRight ? text : kept);
        }
    }
}

void tst_CMotorBaseName::number_data()
{
    QTest::addColumn<bool>("numeric");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isRight");
    QTest::newRow("mode, 7") << true << latin("7") << true;
    QTest::newRow("mode, 0") << true << latin("0") << true;
    QTest::newRow("mode, 9") << true << latin("9") << true;
    QTest::newRow("mode, 7 TAB CR") << true << latin("7\t\r") << true;
    QTest::newRow("mode, 12") << true << latin("12") << false;
    QTest::newRow("mode, 12 TAB CR") << true << latin("12\t\r") << false;
    QTest::newRow("mode, X12") << true << latin("X12") << false;
    QTest::newRow("mode, one letter") << true << latin("X") << false;
    QTest::newRow("mode, minus") << true << latin("-") << false;
    QTest::newRow("mode, slash, below the digits") << true << latin("/") << false;
    QTest::newRow("mode, colon, above the digits") << true << latin(":") << false;
    QTest::newRow("mode, TAB") << true << latin("\t") << false;
    QTest::newRow("mode, CR") << true << latin("\r") << false;
    QTest::newRow("mode, TAB CR twice") << true << latin("\t\r\t\r") << false;
    QTest::newRow("mode, blank 7") << true << latin(" 7") << false;
    QTest::newRow("mode, Arabic digit") << true << QStringLiteral("\u0663") << false;
    QTest::newRow("no mode, X12") << false << latin("X12") << true;
    QTest::newRow("no mode, 12") << false << latin("12") << true;
    QTest::newRow("no mode, empty") << false << latin("") << false;
    QTest::newRow("no mode, TAB CR") << false << latin("\t\r") << false;
}

void tst_CMotorBaseName::number()
{
    QFETCH(const bool, numeric);
    QFETCH(const QString, text);
    QFETCH(const bool, isRight);
    CMotorBaseName name = unchecked(latin("m"), latin("n"), latin("old"), numeric);
    QCOMPARE(name.setNumber(text), isRight);
    QCOMPARE(name.number(), isRight ? text : latin("old"));
    QCOMPARE(name.manufacturer(), latin("m"));
    QCOMPARE(name.name(), latin("n"));
}

// Contract: in the mode no digit at all is a number, with or without TAB and CR.
void tst_CMotorBaseName::emptyNumberInMode()
{
    for (const QString &text : {QString(), latin("")}) {
        CMotorBaseName name = unchecked(latin("m"), latin("n"), latin("5"), true);
        QVERIFY(name.setNumber(text));
        QCOMPARE(name.number(), latin("0"));
        QCOMPARE(name.numberAsI32(), -1);
        QCOMPARE(name.fileBaseName(), latin("m_n_0"));
    }
    CMotorBaseName name = unchecked(latin("m"), latin("n"), latin("5"), true);
    QVERIFY(name.setNumber(latin("\t\r")));
    QCOMPARE(name.number(), latin("\t\r"));
    QCOMPARE(name.numberAsI32(), -1);
    QCOMPARE(name.fileBaseName(), latin("m_n_\t\r"));
}

void tst_CMotorBaseName::checkNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("0") << latin("0") << true;
    QTest::newRow("12, any number of digits") << latin("12") << true;
    QTest::newRow("0123456789") << latin("0123456789") << true;
    QTest::newRow("40 digits") << run(40, '9') << true;
    QTest::newRow("null") << QString() << false;
    QTest::newRow("empty") << latin("") << false;
    QTest::newRow("7 TAB CR") << latin("7\t\r") << false;
    QTest::newRow("7 LF") << latin("7\n") << false;
    QTest::newRow("blank behind") << latin("7 ") << false;
    QTest::newRow("letter behind") << latin("7x") << false;
    QTest::newRow("letter in front") << latin("x7") << false;
    QTest::newRow("-7") << latin("-7") << false;
    QTest::newRow("+7") << latin("+7") << false;
    QTest::newRow("Arabic digits") << QStringLiteral("\u0661\u0662") << false;
    QTest::newRow("fullwidth digit") << QStringLiteral("\uff11") << false;
    QTest::newRow("NUL behind") << QString::fromLatin1("7\0", 2) << false;
}

void tst_CMotorBaseName::checkNumber()
{
    QFETCH(const QString, text);
    QTEST(CMotorBaseName(false).checkNumber(text), "expected");
    QTEST(CMotorBaseName(true).checkNumber(text), "expected");
}

void tst_CMotorBaseName::numberAsI32_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<int>("expected");
    QTest::newRow("null") << QString() << -1;
    QTest::newRow("empty") << latin("") << -1;
    QTest::newRow("0") << latin("0") << 0;
    QTest::newRow("7") << latin("7") << 7;
    QTest::newRow("007") << latin("007") << 7;
    QTest::newRow("010, decimal") << latin("010") << 10;
    QTest::newRow("7 TAB CR") << latin("7\t\r") << 7;
    QTest::newRow("12 TAB CR") << latin("12\t\r") << 12;
    QTest::newRow("2147483647") << latin("2147483647") << INT_MAX;
    QTest::newRow("2147483648") << latin("2147483648") << -1;
    QTest::newRow("-2147483648") << latin("-2147483648") << INT_MIN;
    QTest::newRow("-2147483649") << latin("-2147483649") << -1;
    QTest::newRow("4294967301, not its low bits") << latin("4294967301") << -1;
    QTest::newRow("-5") << latin("-5") << -5;
    QTest::newRow("+5") << latin("+5") << 5;
    QTest::newRow("minus only") << latin("-") << -1;
    QTest::newRow("X12") << latin("X12") << -1;
    QTest::newRow("12X") << latin("12X") << -1;
    QTest::newRow("1-2") << latin("1-2") << -1;
    QTest::newRow("0x10") << latin("0x10") << -1;
    QTest::newRow("1F") << latin("1F") << -1;
    QTest::newRow("TAB CR") << latin("\t\r") << -1;
    QTest::newRow("Arabic digit") << QStringLiteral("\u0663") << -1;
    QTest::newRow("100000 digits") << run(kLong, '1') << -1;
}

void tst_CMotorBaseName::numberAsI32()
{
    QFETCH(const QString, number);
    QTEST(unchecked(latin("m"), latin("n"), number, false).numberAsI32(), "expected");
    QTEST(unchecked(QString(), QString(), number, true).numberAsI32(), "expected");
}

void tst_CMotorBaseName::fileBaseName_data()
{
    QTest::addColumn<QString>("manufacturer");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("expected");
    QTest::newRow("three parts") << latin("MFR") << latin("M-100") << latin("1")
                                 << latin("MFR_M-100_1");
    QTest::newRow("number null") << latin("MFR") << latin("M-100") << QString()
                                 << latin("MFR_M-100_0");
    QTest::newRow("number empty") << latin("MFR") << latin("M-100") << latin("")
                                  << latin("MFR_M-100_0");
    QTest::newRow("manufacturer only") << latin("MFR") << QString() << QString() << latin("MFR__0");
    QTest::newRow("name only") << QString() << latin("M") << QString() << latin("_M_0");
    QTest::newRow("number only") << QString() << QString() << latin("5") << latin("__5");
    QTest::newRow("number 0") << QString() << QString() << latin("0") << latin("__0");
    QTest::newRow("texts with %1, %2, %3")
        << latin("%2") << latin("%3%1") << latin("%1") << latin("%2_%3%1_%1");
    QTest::newRow("unchecked texts")
        << latin("a_b") << latin(" ") << latin("x y") << latin("a_b_ _x y");
    QTest::newRow("TAB CR behind each")
        << latin("a\t\r") << latin("b\t\r") << latin("1\t\r") << latin("a\t\r_b\t\r_1\t\r");
}

void tst_CMotorBaseName::fileBaseName()
{
    QFETCH(const QString, manufacturer);
    QFETCH(const QString, name);
    QFETCH(const QString, number);
    const CMotorBaseName object(manufacturer, name, number, false);
    QCOMPARE(object.manufacturer(), manufacturer);
    QCOMPARE(object.name(), name);
    QCOMPARE(object.number(), number.isEmpty() ? latin("0") : number);
    QVERIFY(!object.isEmpty());
    QVERIFY(!object.isNull());
    QTEST(object.fileBaseName(), "expected");
    const QString converted = object;
    QTEST(converted, "expected");
    QVERIFY(CMotorBaseName(latin(""), latin(""), latin(""), false).fileBaseName().isNull());
    QVERIFY(CMotorBaseName(latin(""), latin(""), latin(""), false).isEmpty());
    QVERIFY(CMotorBaseName(latin(""), latin(""), latin(""), false).isNull());
}

void tst_CMotorBaseName::defaultName()
{
    QCOMPARE(CMotorBaseName::defaultMotorBaseName(), latin("UNKNOWN_UNKNOWN_1"));
    CMotorBaseName name(true);
    QVERIFY(name.setFileBaseName(CMotorBaseName::defaultMotorBaseName()));
    QVERIFY(name.isValid());
    QCOMPARE(name.numberAsI32(), 1);
}

void tst_CMotorBaseName::fullRegExp()
{
    const QRegExp any = CMotorBaseName::fullRegExp(false);
    QCOMPARE(any.pattern(), latin(kFull));
    QCOMPARE(any.caseSensitivity(), Qt::CaseInsensitive);
    QCOMPARE(any.patternSyntax(), QRegExp::RegExp);
    QVERIFY(!any.isMinimal());
    const QRegExp numeric = CMotorBaseName::fullRegExp(true);
    QCOMPARE(numeric.pattern(), latin(kFullNumeric));
    QCOMPARE(numeric.caseSensitivity(), Qt::CaseInsensitive);
    QCOMPARE(numeric.patternSyntax(), QRegExp::RegExp);
    QVERIFY(!numeric.isMinimal());
    QVERIFY(any.exactMatch(latin("MFR_M1_X7")));
    QVERIFY(!numeric.exactMatch(latin("MFR_M1_X7")));
    QVERIFY(numeric.exactMatch(latin("MFR_M1_12")));
}

void tst_CMotorBaseName::isValidFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("any");
    QTest::addColumn<bool>("numeric");
    const auto add = [](const char *file, bool any, bool numeric) {
        QTest::newRow(printable(file).constData()) << latin(file) << any << numeric;
    };
    add("/data/MFR_M1_7.par", true, true);
    add("MFR_M1_7", true, true);
    add("MFR_M1_7.par.bak", true, true);
    add("MFR_M1_7.", true, true);
    add("MFR_M1_7.a_b", true, true);
    add("data.d/MFR_M1_7", true, true);
    add("../MFR_M1_7.par", true, true);
    add("a_b_c/MFR_M1_12", true, true);
    add("mfr_m1_x7", true, false);
    add("MFR_M1_7+", true, false);
    add("&_+_-", true, false);
    add("0_0_0", true, true);
    add("MFR_M1", false, false);
    add("MFR_M1_", false, false);
    add("_M1_7", false, false);
    add("MFR__7", false, false);
    add("MFR_M1_7_8", false, false);
    add("MFR_M1_7_", false, false);
    add("MFR.x_M1_7", false, false);
    add("MFR_M1_.7", false, false);
    add(".MFR_M1_7", false, false);
    add("MFR_M1_7/", false, false);
    add("MFR_M1_7 ", false, false);
    add("MFR_M1_7\t\r", false, false);
    add("MFR_M1_7\n", false, false);
    add("dir\\MFR_M1_7", false, false);
    QTest::newRow("null") << QString() << false << false;
    QTest::newRow("empty") << latin("") << false << false;
    QTest::newRow("Kelvin sign in the manufacturer")
        << QStringLiteral("\u212a_b_1") << true << true;
    QTest::newRow("long s in the name") << QStringLiteral("a_\u017f_1") << true << true;
    QTest::newRow("dotless i in the number") << QStringLiteral("a_b_\u0131") << true << false;
    QTest::newRow("dotted I in the name") << QStringLiteral("a_\u0130_1") << false << false;
    QTest::newRow("Arabic digit as the number") << QStringLiteral("a_b_\u0663") << false << false;
    QTest::newRow("NUL in the directory") << QString::fromLatin1("d\0/a_b_1", 8) << true << true;
}

void tst_CMotorBaseName::isValidFile()
{
    QFETCH(const QString, file);
    QTEST(CMotorBaseName::isValid(file, false), "any");
    QTEST(CMotorBaseName::isValid(file, true), "numeric");
}

void tst_CMotorBaseName::isValidObject_data()
{
    QTest::addColumn<QString>("manufacturer");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("number");
    QTest::addColumn<bool>("any");
    QTest::addColumn<bool>("numeric");
    QTest::newRow("one digit") << latin("MFR") << latin("M1") << latin("7") << true << true;
    QTest::newRow("many digits") << latin("MFR") << latin("M1") << latin("123") << true << true;
    QTest::newRow("letters") << latin("MFR") << latin("M1") << latin("X12") << true << false;
    QTest::newRow("empty number counts as 0")
        << latin("MFR") << latin("M1") << QString() << true << true;
    QTest::newRow("no name") << latin("MFR") << QString() << latin("7") << false << false;
    QTest::newRow("no manufacturer") << QString() << latin("M1") << latin("7") << false << false;
    QTest::newRow("all empty") << QString() << QString() << QString() << false << false;
    QTest::newRow("separator in the name")
        << latin("MFR") << latin("M_1") << latin("7") << false << false;
    QTest::newRow("stored TAB CR")
        << latin("MFR\t\r") << latin("M1") << latin("7") << false << false;
    QTest::newRow("stored TAB CR at the end")
        << latin("MFR") << latin("M1") << latin("7\t\r") << false << false;
    QTest::newRow("no file name: a directory in front")
        << latin("/data/MFR") << latin("M1") << latin("7") << false << false;
    QTest::newRow("no file name: a suffix")
        << latin("MFR") << latin("M1") << latin("7.par") << false << false;
    QTest::newRow("Kelvin sign") << QStringLiteral("\u212a") << latin("M1") << latin("7") << true
                                 << true;
}

void tst_CMotorBaseName::isValidObject()
{
    QFETCH(const QString, manufacturer);
    QFETCH(const QString, name);
    QFETCH(const QString, number);
    QTEST(unchecked(manufacturer, name, number, false).isValid(), "any");
    QTEST(unchecked(manufacturer, name, number, true).isValid(), "numeric");
}

void tst_CMotorBaseName::setFileBaseName_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("numeric");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QStringList>("parts");
    const auto add = [](const char *text, bool numeric, bool result, const QStringList &parts) {
        QTest::addRow("%s%s", printable(text).constData(), numeric ? ", mode" : "")
            << latin(text) << numeric << result << parts;
    };
    const QStringList none{QString(), QString(), QString()};
    const QStringList name{latin("MFR"), latin("M1"), latin("7")};
    add("MFR_M1_7", false, true, name);
    add("MFR_M1_7", true, true, name);
    add("/data/MFR_M1_7", false, true, name);
    add("data.d/x_y/MFR_M1_7", true, true, name);
    add("./../MFR_M1_7", false, true, name);
    add("MFR_M1_X7", false, true, {latin("MFR"), latin("M1"), latin("X7")});
    add("MFR_M1_12", false, true, {latin("MFR"), latin("M1"), latin("12")});
    add("MFR_M1_12", true, false, {latin("MFR"), latin("M1"), QString()});
    add("MFR_M1_007", true, false, {latin("MFR"), latin("M1"), QString()});
    add("mfr_m&1_+-", false, true, {latin("mfr"), latin("m&1"), latin("+-")});
    // What does not fit is a success with nothing set.
    for (const char *const text : {"",           "MFR_M1",       "MFR",
                                   "_",          "__",           "_M1_7",
                                   "MFR__7",     "MFR_M1_",      "MFR_M1_7_8",
                                   "MFR_M1_7_",  "MFR_M1_7.par", "MFR_M1_7.",
                                   ".MFR_M1_7",  "MFR_M1_7/",    "/data/MFR_M1_7.par",
                                   "M R_M1_7",   "MFR_M1_7\t\r", "MFR\t\r_M1_7",
                                   "MFR_M1_7\n", "%1_%2_%3",     "C:MFR_M1_7"}) {
        add(text, false, true, none);
        add(text, true, true, none);
    }
    add("MFR_M1_X7", true, true, none);
    QTest::newRow("null") << QString() << false << true << none;
    // The whole expression takes these, the setters do not.
    const QString kelvin = QStringLiteral("\u212a");
    const QString longS = QStringLiteral("\u017f");
    const QString dotless = QStringLiteral("\u0131");
    QTest::newRow("Kelvin sign as the manufacturer")
        << kelvin + latin("_b_1") << false << false << none;
    QTest::newRow("long s in the name") << latin("a_x") + longS + latin("_1") << true << false
                                        << QStringList{latin("a"), QString(), QString()};
    QTest::newRow("dotless i in the number") << latin("a_b_1") + dotless << false << false
                                             << QStringList{latin("a"), latin("b"), QString()};
    QTest::newRow("dotless i in the number, mode: no name at all")
        << latin("a_b_") + dotless << true << true << none;
    QTest::newRow("Arabic digit as the number")
        << QStringLiteral("a_b_\u0663") << true << true << none;
}

void tst_CMotorBaseName::setFileBaseName()
{
    QFETCH(const QString, text);
    QFETCH(const bool, numeric);
    QFETCH(const bool, result);
    QFETCH(const QStringList, parts);
    const CMotorBaseName expected = unchecked(parts.at(0), parts.at(1), parts.at(2), numeric);
    const MessageRecorder recorder;
    CMotorBaseName object = unchecked(latin("A"), latin("B"), latin("C"), numeric);
    QCOMPARE(object.setFileBaseName(text), result);
    QCOMPARE(object, expected);
    QCOMPARE(object.manufacturer().isNull(), parts.at(0).isNull());
    QCOMPARE(object.name().isNull(), parts.at(1).isNull());
    QCOMPARE(object.number(), parts.at(2).isNull() ? latin("0") : parts.at(2));
    QCOMPARE(isNumeric(object), numeric);
    const CMotorBaseName constructed(text, numeric);
    QCOMPARE(constructed, expected);
    QCOMPARE(isNumeric(constructed), numeric);
    CMotorBaseName assigned = unchecked(latin("A"), latin("B"), latin("C"), numeric);
    QCOMPARE(&(assigned = text), &assigned);
    QCOMPARE(assigned, expected);
    QCOMPARE(isNumeric(assigned), numeric);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CMotorBaseName::longTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isPart");
    QTest::addColumn<bool>("isDigits");
    QTest::addColumn<bool>("isAnyFile");
    QTest::addColumn<bool>("isNumericFile");
    QTest::addColumn<QStringList>("parts");
    const QStringList none{QString(), QString(), QString()};
    const QString letters = run(kLong, 'k');
    const QString digits = run(kLong, '9');
    QTest::newRow("letters") << letters << true << false << false << false << none;
    QTest::newRow("digits") << digits << true << true << false << false << none;
    QTest::newRow("digits, letter last")
        << digits + latin("x") << true << false << false << false << none;
    QTest::newRow("digits, letter first")
        << latin("x") + digits << true << false << false << false << none;
    QTest::newRow("letters TAB CR")
        << letters + latin("\t\r") << true << false << false << false << none;
    QTest::newRow("letters blank")
        << letters + latin(" ") << false << false << false << false << none;
    QTest::newRow("separators") << run(kLong, '_') << false << false << false << false << none;
    QTest::newRow("TAB CR pairs") << latin("\t\r").repeated(kLong / 2) << false << false << false
                                  << false << none;
    QTest::newRow("letter and separator in turn")
        << latin("a_").repeated(kLong / 2) << false << false << false << false << none;
    QTest::newRow("name of letters")
        << letters + latin("_") + letters + latin("_") + letters << false << false << true << false
        << QStringList{letters, letters, letters};
    QTest::newRow("name of letters, blank last")
        << letters + latin("_") + letters + latin("_") + letters + latin(" ") << false << false
        << false << false << none;
    QTest::newRow("name with many digits") << latin("a_b_") + digits << false << false << true
                                           << true << QStringList{latin("a"), latin("b"), digits};
    QTest::newRow("name with a long manufacturer, third part empty")
        << letters + latin("_b_") << false << false << false << false << none;
    QTest::newRow("32000 slashes in front")
        << run(32000, '/') + latin("a_b_1") << false << false << true << true
        << QStringList{latin("a"), latin("b"), latin("1")};
    QTest::newRow("directory of 32000 letters in front")
        << run(32000, 'k') + latin("/a_b_1") << false << false << true << true
        << QStringList{latin("a"), latin("b"), latin("1")};
    QTest::newRow("dots behind") << latin("a_b_1") + run(kLong, '.') << false << false << true
                                 << true << none;
}

void tst_CMotorBaseName::longTexts()
{
    QFETCH(const QString, text);
    QFETCH(const QStringList, parts);
    CMotorBaseName object;
    QTEST(object.setManufacturer(text), "isPart");
    QTEST(object.setName(text), "isPart");
    QTEST(object.setNumber(text), "isPart");
    QTEST(object.checkNumber(text), "isDigits");
    QVERIFY(!CMotorBaseName(true).setNumber(text));
    QTEST(CMotorBaseName::isValid(text, false), "isAnyFile");
    QTEST(CMotorBaseName::isValid(text, true), "isNumericFile");
    QVERIFY(object.setFileBaseName(text));
    QCOMPARE(object, CMotorBaseName(parts.at(0), parts.at(1), parts.at(2), false));
    QCOMPARE(object.isValid(), !parts.at(0).isNull());
}

// Contract: directory and suffixes are what QFileInfo takes for them, in longer paths than it can
// take apart too.
void tst_CMotorBaseName::longDirectories()
{
    for (const int length : {32766, 32767, 32768, 65535, 65536, kLong}) {
        for (const QString &directory : {run(length, '/'), run(length, 'k') + latin("/")}) {
            for (const bool numeric : {false, true}) {
                QCOMPARE(difference(directory + latin("a_b_1"), numeric), QString());
                QCOMPARE(difference(directory + latin("a_b_1.par"), numeric), QString());
            }
        }
        QCOMPARE(difference(run(length, 'k') + latin("_b_1.par"), true), QString());
    }
}

void tst_CMotorBaseName::allShortTexts_data()
{
    QTest::addColumn<QString>("alphabet");
    QTest::addColumn<int>("maxLength");
    QTest::newRow("up to 6 of 7 M _ TAB CR Kelvin") << QStringLiteral("7M_\t\r\u212a") << 6;
    QTest::newRow("up to 7 of 7 _ dot slash") << latin("7_./") << 7;
    QTest::newRow("up to 6 of z _ - 0 long s") << QStringLiteral("z_-0\u017f") << 6;
    QTest::newRow("up to 3 of many edges")
        << QStringLiteral("09azAZ+&-_/.:@[`{\\ \n\r\t\u0131\u0130\u0663\U0001d7ce\ufeff") << 3;
}

void tst_CMotorBaseName::allShortTexts()
{
    QFETCH(const QString, alphabet);
    QFETCH(const int, maxLength);
    const MessageRecorder recorder;
    int taken = 0;
    for (int length = 0; length <= maxLength; ++length) {
        QVector<int> digits(length, 0);
        QString text(length, alphabet.front());
        for (bool isLast = false; !isLast;) {
            for (const bool numeric : {false, true})
                QCOMPARE(difference(text, numeric), QString());
            taken += isPart(text) ? 1 : 0;
            int place = 0;
            while (place < length && ++digits[place] == alphabet.size()) {
                digits[place] = 0;
                text[place++] = alphabet.front();
            }
            isLast = place == length;
            if (!isLast)
                text[place] = alphabet.at(digits.at(place));
        }
    }
    QVERIFY(taken > 0);
    QCOMPARE(recorder.messages(), QStringList());
}

// Each of the 65536 units alone and at both ends of a name.
void tst_CMotorBaseName::eachUnit()
{
    int taken = 0;
    for (uint unit = 0; unit <= 0xFFFF; ++unit) {
        const QString text{QChar(unit)};
        QCOMPARE(difference(text, false), QString());
        QCOMPARE(difference(text, true), QString());
        QCOMPARE(difference(latin("a_b_1") + text, unit % 2 == 0), QString());
        QCOMPARE(difference(text + latin("_b_1"), unit % 2 != 0), QString());
        taken += CMotorBaseName().setName(text) ? 1 : 0;
    }
    QCOMPARE(taken, 10 + 26 + 26 + 3);
}

void tst_CMotorBaseName::randomTexts()
{
    const QString part = latin("0123456789azAZkKsSiI-&+");
    const QString odd = QStringLiteral("_\t\r\n ./%\u212a\u017f\u0131\u0130\u0663\u00e4\U0001d7ce");
    std::mt19937 random(20140305);
    const auto below = [&random](int end) {
        return static_cast<int>(random() % static_cast<unsigned int>(end));
    };
    int names = 0;
    int parts = 0;
    int refused = 0;
    for (int i = 0; i < 200000; ++i) {
        QString text;
        if (below(8) == 0)
            text = latin("d/");
        for (int count = below(8) == 0 ? below(6) : (below(3) == 0 ? 1 : 3); count > 0; --count) {
            const bool isNumber = below(3) == 0;
            for (int length = below(6); length >= 0; --length)
                text += part.at(below(isNumber ? 10 : part.size()));
            if (count > 1)
                text += QLatin1Char('_');
        }
        if (below(8) == 0)
            text += latin("\t\r");
        if (below(4) == 0)
            text.insert(below(text.size() + 1), odd.at(below(odd.size())));
        if (below(16) == 0)
            text += latin(".par");
        const bool numeric = below(2) == 0;
        QCOMPARE(difference(text, numeric), QString());
        const bool isName = CMotorBaseName::isValid(text, numeric);
        names += isName ? 1 : 0;
        parts += isPart(text) ? 1 : 0;
        refused += !isName && !isPart(text) ? 1 : 0;
    }
    QVERIFY(names > 20000);
    QVERIFY(parts > 20000);
    QVERIFY(refused > 20000);
}

void tst_CMotorBaseName::warning_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("expected"); // between the quotes; null if there is no warning
    QTest::newRow("7") << latin("7") << QString();
    QTest::newRow("12, though setNumber() refuses it") << latin("12") << QString();
    QTest::newRow("007") << latin("007") << QString();
    QTest::newRow("100000 digits") << run(kLong, '3') << QString();
    QTest::newRow("null") << QString() << latin("");
    QTest::newRow("empty, though setNumber() takes it") << latin("") << latin("");
    QTest::newRow("7 TAB CR, though setNumber() takes it") << latin("7\t\r") << latin("7\t\r");
    QTest::newRow("X12") << latin("X12") << latin("X12");
    QTest::newRow("-1") << latin("-1") << latin("-1");
    QTest::newRow("blank") << latin(" ") << latin(" ");
    QTest::newRow("%s%n") << latin("%s%n") << latin("%s%n");
    QTest::newRow("%1 %2") << latin("%1 %2") << latin("%1 %2");
    QTest::newRow("quotes") << latin("'\"") << latin("'\"");
    QTest::newRow("text up to a NUL") << QString::fromLatin1("7\0x", 3) << latin("7");
    QTest::newRow("100000 letters") << run(kLong, 'x') << run(kLong, 'x');
}

void tst_CMotorBaseName::warning()
{
    QFETCH(const QString, number);
    QFETCH(const QString, expected);
    QStringList messages;
    if (!expected.isNull()) {
        messages += latin("warning default: CParameterFileMotorName() : Invalid number '")
            + expected + latin("'");
    }
    const MessageRecorder recorder;
    const CMotorBaseName silent(latin("m_"), latin(""), number, false);
    QCOMPARE(recorder.messages(), QStringList());
    const CMotorBaseName name(latin("m_"), latin(""), number, true);
    QCOMPARE(recorder.messages(), messages);
    // The texts are kept all the same.
    QCOMPARE(name, silent);
    QCOMPARE(name.manufacturer(), latin("m_"));
    QCOMPARE(name.name(), latin(""));
    QCOMPARE(name.number(), number.isEmpty() ? latin("0") : number);
    QVERIFY(isNumeric(name));
    QVERIFY(!isNumeric(silent));
}

// The number goes through the 8-bit encoding of the locale; what that lacks is a question mark.
void tst_CMotorBaseName::warningInLocalEncoding()
{
    QTextCodec *const before = QTextCodec::codecForLocale();
    QStringList messages;
    for (const char *const codec : {"UTF-8", "ISO-8859-1"}) {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName(codec));
        const MessageRecorder recorder;
        CMotorBaseName(latin("m"), latin("n"), QStringLiteral("5\u20ac"), true);
        messages += recorder.messages();
    }
    QTextCodec::setCodecForLocale(before);
    const QString text
        = QStringLiteral("warning default: CParameterFileMotorName() : Invalid number '5%1'");
    QCOMPARE(messages, QStringList({text.arg(QChar(0x20AC)), text.arg(QLatin1Char('?'))}));
}

void tst_CMotorBaseName::warningOrigin()
{
    origins().clear();
    const QtMessageHandler before = qInstallMessageHandler(recordOrigin);
    CMotorBaseName(latin("m"), latin("n"), latin("X"), true);
    qInstallMessageHandler(before);
    QCOMPARE(origins().size(), 1);
    const Origin origin = origins().constFirst();
    QCOMPARE(origin.type, QtWarningMsg);
    QCOMPARE(origin.category, QByteArray("default"));
    QVERIFY2(origin.function.contains("CMotorBaseName::CMotorBaseName("),
             origin.function.constData());
    QVERIFY2(origin.file.contains("CMotorBaseName"), origin.file.constData());
}

// Nothing but the constructor from three parts warns.
void tst_CMotorBaseName::noWarning()
{
    const CMotorBaseName wrong = unchecked(latin("m"), latin("n"), latin("X"), true);
    const MessageRecorder recorder;
    CMotorBaseName copy(wrong);
    CMotorBaseName target(true);
    target = wrong;
    target = std::move(copy);
    swap(target, target);
    QCOMPARE(target, wrong);
    QVERIFY(!target.setNumber(latin("12")));
    QVERIFY(!target.setManufacturer(latin("_")));
    QVERIFY(!target.checkNumber(latin("X")));
    QVERIFY(!target.isValid());
    QVERIFY(!target.setFileBaseName(latin("a_b_12")));
    QVERIFY(CMotorBaseName(latin("a_b_X"), true).isEmpty());
    QVERIFY(!CMotorBaseName::isValid(latin("a_b_X"), true));
    QDataStream in(written(wrong, QDataStream::Qt_5_15, QDataStream::BigEndian));
    in >> target;
    QCOMPARE(target, wrong);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CMotorBaseName::literal()
{
    const CMotorBaseName name("a_b_c");
    QCOMPARE(name, CMotorBaseName(latin("a"), latin("b"), latin("c"), false));
    QVERIFY(!isNumeric(name));
    QVERIFY(CMotorBaseName("a_b").isEmpty());
    QVERIFY(CMotorBaseName("").isEmpty());
    const CMotorBaseName null(static_cast<const char *>(nullptr));
    QVERIFY(null.isEmpty());
    QVERIFY(!isNumeric(null));
    // UTF-8: the Kelvin sign passes the whole expression and is refused as part of a name.
    QCOMPARE(CMotorBaseName("a_\xe2\x84\xaa_c").manufacturer(), latin("a"));
    QVERIFY(CMotorBaseName("a_\xe2\x84\xab_c").isEmpty());
}

void tst_CMotorBaseName::copies()
{
    for (const bool numeric : {false, true}) {
        const CMotorBaseName source = unchecked(latin("a"), latin("b"), latin("1"), numeric);
        CMotorBaseName copy(source);
        QCOMPARE(copy, source);
        QCOMPARE(isNumeric(copy), numeric);
        QVERIFY(copy.setName(latin("other")));
        QCOMPARE(source.name(), latin("b"));
        for (const bool targetMode : {false, true}) {
            CMotorBaseName target(targetMode);
            QCOMPARE(&(target = source), &target);
            QCOMPARE(target, source);
            QCOMPARE(isNumeric(target), targetMode);
        }
        const CMotorBaseName &same = copy;
        copy = same;
        QCOMPARE(copy.fileBaseName(), latin("a_other_1"));
        QCOMPARE(isNumeric(copy), numeric);
    }
}

void tst_CMotorBaseName::moves()
{
    for (const bool numeric : {false, true}) {
        const CMotorBaseName expected = unchecked(latin("a"), latin("b"), latin("1"), numeric);
        CMotorBaseName source(expected);
        CMotorBaseName moved(std::move(source));
        QCOMPARE(moved, expected);
        QCOMPARE(isNumeric(moved), numeric);
        source = expected; // a moved-from name can be assigned
        QCOMPARE(source, expected);
        for (const bool targetMode : {false, true}) {
            CMotorBaseName again(expected);
            CMotorBaseName target(targetMode);
            QCOMPARE(&(target = std::move(again)), &target);
            QCOMPARE(target, expected);
            QCOMPARE(isNumeric(target), targetMode);
        }
    }
}

void tst_CMotorBaseName::swaps()
{
    const CMotorBaseName first = unchecked(latin("a"), latin("b"), latin("1"), true);
    const CMotorBaseName second = unchecked(latin("c"), QString(), latin("X"), false);
    CMotorBaseName left(first);
    CMotorBaseName right(second);
    left.swap(right);
    QCOMPARE(left, second);
    QVERIFY(!isNumeric(left));
    QCOMPARE(right, first);
    QVERIFY(isNumeric(right));
    swap(left, right);
    QCOMPARE(left, first);
    QVERIFY(isNumeric(left));
    QCOMPARE(right, second);
    QVERIFY(!isNumeric(right));
    left.swap(left);
    QCOMPARE(left, first);
    QVERIFY(isNumeric(left));
}

void tst_CMotorBaseName::assignText()
{
    CMotorBaseName name(true);
    name = QLatin1String("a_b_5");
    QCOMPARE(name.fileBaseName(), latin("a_b_5"));
    name = name.fileBaseName();
    QCOMPARE(name.fileBaseName(), latin("a_b_5"));
    name = name.manufacturer(); // no whole name
    QVERIFY(name.isEmpty());
    QVERIFY(isNumeric(name));
}

void tst_CMotorBaseName::clear()
{
    for (const bool numeric : {false, true}) {
        CMotorBaseName name = unchecked(latin("a"), latin("b"), latin("1"), numeric);
        name.clear();
        QVERIFY(name.manufacturer().isNull());
        QVERIFY(name.name().isNull());
        QCOMPARE(name.number(), latin("0"));
        QVERIFY(name.isEmpty());
        QVERIFY(name.isNull());
        QCOMPARE(written(name, QDataStream::Qt_5_15, QDataStream::BigEndian),
                 QByteArray(12, '\xff')); // three null texts
        QCOMPARE(isNumeric(name), numeric);
    }
}

void tst_CMotorBaseName::equality_data()
{
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<QStringList>("right");
    QTest::addColumn<bool>("isEqual");
    const QStringList name{latin("a"), latin("b"), latin("1")};
    QTest::newRow("same") << name << name << true;
    QTest::newRow("other manufacturer")
        << name << QStringList{latin("x"), latin("b"), latin("1")} << false;
    QTest::newRow("other name") << name << QStringList{latin("a"), latin("x"), latin("1")} << false;
    QTest::newRow("other number") << name << QStringList{latin("a"), latin("b"), latin("2")}
                                  << false;
    QTest::newRow("other case") << name << QStringList{latin("A"), latin("b"), latin("1")} << false;
    QTest::newRow("null and empty") << QStringList{QString(), QString(), QString()}
                                    << QStringList{latin(""), latin(""), latin("")} << true;
    QTest::newRow("empty number and 0, which have the same text")
        << QStringList{latin("a"), latin("b"), QString()}
        << QStringList{latin("a"), latin("b"), latin("0")} << false;
    QTest::newRow("same text, other parts")
        << QStringList{latin("a_b"), latin("c"), latin("1")}
        << QStringList{latin("a"), latin("b_c"), latin("1")} << false;
    QTest::newRow("TAB CR counts")
        << name << QStringList{latin("a"), latin("b"), latin("1\t\r")} << false;
}

void tst_CMotorBaseName::equality()
{
    QFETCH(const QStringList, left);
    QFETCH(const QStringList, right);
    QFETCH(const bool, isEqual);
    for (const bool leftMode : {false, true}) {
        for (const bool rightMode : {false, true}) {
            const CMotorBaseName a = unchecked(left.at(0), left.at(1), left.at(2), leftMode);
            const CMotorBaseName b = unchecked(right.at(0), right.at(1), right.at(2), rightMode);
            QCOMPARE(a == b, isEqual);
            QCOMPARE(b == a, isEqual);
            QCOMPARE(a != b, !isEqual);
            QCOMPARE(b != a, !isEqual);
        }
    }
    // A text compares with the whole name.
    const CMotorBaseName name(latin("a"), latin("b"), latin("1"), false);
    QVERIFY(name == latin("a_b_1"));
    QVERIFY(name != latin("a_b_2"));
}

void tst_CMotorBaseName::streamBytes_data()
{
    QTest::addColumn<QStringList>("parts");
    QTest::addColumn<QByteArray>("big");
    QTest::addColumn<QByteArray>("little");
    const auto row = [](const char *title, const QStringList &parts, const char *big,
                        const char *little) {
        QTest::newRow(title) << parts << QByteArray::fromHex(big) << QByteArray::fromHex(little);
    };
    row("MFR M-1 7", {latin("MFR"), latin("M-1"), latin("7")},
        "00000006 004d 0046 0052 00000006 004d 002d 0031 00000002 0037",
        "06000000 4d00 4600 5200 06000000 4d00 2d00 3100 02000000 3700");
    row("stored empty number, not 0", {latin("a"), latin("b"), latin("")},
        "00000002 0061 00000002 0062 00000000", "02000000 6100 02000000 6200 00000000");
    row("number null", {latin("a"), latin("b"), QString()}, "00000002 0061 00000002 0062 ffffffff",
        "02000000 6100 02000000 6200 ffffffff");
    row("all null", {QString(), QString(), QString()}, "ffffffff ffffffff ffffffff",
        "ffffffff ffffffff ffffffff");
    row("unchecked: separator, blank, U+20AC", {latin("_"), latin(" "), QString(QChar(0x20AC))},
        "00000002 005f 00000002 0020 00000002 20ac", "02000000 5f00 02000000 2000 02000000 ac20");
    row("byte-order mark, lone surrogate, NUL",
        {QString(QChar(0xFEFF)), QString(QChar(0xD800)), QString(QChar(0))},
        "00000002 feff 00000002 d800 00000002 0000", "02000000 fffe 02000000 00d8 02000000 0000");
    row("TAB CR behind the number", {latin("a"), latin("b"), latin("7\t\r")},
        "00000002 0061 00000002 0062 00000006 0037 0009 000d",
        "02000000 6100 02000000 6200 06000000 3700 0900 0d00");
}

void tst_CMotorBaseName::streamBytes()
{
    QFETCH(const QStringList, parts);
    QFETCH(const QByteArray, big);
    QFETCH(const QByteArray, little);
    for (const auto version : kVersions) {
        for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            const QByteArray &bytes = order == QDataStream::BigEndian ? big : little;
            for (const bool numeric : {false, true}) {
                // The mode does not travel.
                const CMotorBaseName name
                    = unchecked(parts.at(0), parts.at(1), parts.at(2), numeric);
                QCOMPARE(written(name, version, order).toHex(' '), bytes.toHex(' '));
                QDataStream in(bytes + "rest");
                in.setVersion(version);
                in.setByteOrder(order);
                CMotorBaseName read = unchecked(latin("x"), latin("y"), latin("5"), numeric);
                QCOMPARE(&(in >> read), &in);
                QCOMPARE(in.status(), QDataStream::Ok);
                QCOMPARE(in.device()->bytesAvailable(), 4);
                QCOMPARE(read, name);
                QCOMPARE(read.manufacturer(), parts.at(0));
                QCOMPARE(read.manufacturer().isNull(), parts.at(0).isNull());
                QCOMPARE(written(read, version, order), bytes);
                QCOMPARE(isNumeric(read), numeric);
            }
        }
    }
}

void tst_CMotorBaseName::readsAnything_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("parts");
    const int pastEnd = QDataStream::ReadPastEnd;
    const int corrupt = QDataStream::ReadCorruptData;
    const QString none;
    QTest::newRow("odd length, the later texts are read")
        << QByteArray::fromHex("00000003 00000002 0062 00000002 0031") << corrupt
        << QStringList{none, latin("b"), latin("1")};
    QTest::newRow("length 0xfffffffe")
        << QByteArray::fromHex("fffffffe 0061 0062") << pastEnd << QStringList{none, none, none};
    QTest::newRow("length 0x7ffffffe of the last")
        << QByteArray::fromHex("00000002 0061 00000002 0062 7ffffffe 0031") << pastEnd
        << QStringList{latin("a"), latin("b"), none};
    QTest::newRow("no bytes") << QByteArray() << pastEnd << QStringList{none, none, none};
}

void tst_CMotorBaseName::readsAnything()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, status);
    QFETCH(const QStringList, parts);
    for (const auto version : kVersions) {
        QDataStream in(bytes);
        in.setVersion(version);
        CMotorBaseName name(latin("x"), latin("y"), latin("z"), false);
        in >> name;
        QCOMPARE(static_cast<int>(in.status()), status);
        QCOMPARE(name, CMotorBaseName(parts.at(0), parts.at(1), parts.at(2), false));
    }
}

void tst_CMotorBaseName::shortStream_data()
{
    QTest::addColumn<int>("length");
    for (int length = 0; length < 26; ++length)
        QTest::addRow("%d bytes", length) << length;
}

void tst_CMotorBaseName::shortStream()
{
    QFETCH(const int, length);
    for (const auto version : kVersions) {
        for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            const QByteArray whole = written(CMotorBaseName("MFR_M-1_7"), version, order);
            QCOMPARE(whole.size(), 26); // 4 + 6, 4 + 6, 4 + 2
            QDataStream in(whole.left(length));
            in.setVersion(version);
            in.setByteOrder(order);
            CMotorBaseName name = unchecked(latin("x"), latin("y"), latin("z"), true);
            in >> name;
            QCOMPARE(in.status(), QDataStream::ReadPastEnd);
            QCOMPARE(name.manufacturer(), length < 10 ? QString() : latin("MFR"));
            QCOMPARE(name.name(), length < 20 ? QString() : latin("M-1"));
            QCOMPARE(name.number(), latin("0"));
            QCOMPARE(name.numberAsI32(), -1);
            QCOMPARE(name.isEmpty(), length < 10);
            QVERIFY(isNumeric(name));
        }
    }
}

void tst_CMotorBaseName::debug_data()
{
    QTest::addColumn<QStringList>("parts");
    QTest::addColumn<QString>("expected");
    QTest::newRow("MFR_M-100_1") << QStringList{latin("MFR"), latin("M-100"), latin("1")}
                                 << latin("CMotorBaseName(\"MFR_M-100_1\")");
    QTest::newRow("no number") << QStringList{latin("MFR"), latin("M-100"), QString()}
                               << latin("CMotorBaseName(\"MFR_M-100_0\")");
    QTest::newRow("empty") << QStringList{QString(), QString(), QString()}
                           << latin("CMotorBaseName(\"\")");
}

void tst_CMotorBaseName::debug()
{
    QFETCH(const QStringList, parts);
    const CMotorBaseName name(parts.at(0), parts.at(1), parts.at(2), false);
    QFETCH(const QString, expected);
    QString text;
    QDebug(&text).nospace() << name << '|' << 7 << " x"; // the state of the stream is kept
    QCOMPARE(text, expected + latin("|7 x"));
    QString spaced;
    QDebug(&spaced) << 1 << name << 2;
    QCOMPARE(spaced.trimmed(), latin("1 ") + expected + latin(" 2"));
}

void tst_CMotorBaseName::inThreads()
{
    QVERIFY(trueInThreads([] {
        bool right = true;
        for (int i = 0; i < 2000; ++i) {
            CMotorBaseName name(i % 2 == 0);
            right = right && name.setFileBaseName(latin("d/MFR_M1_7"))
                && name.fileBaseName() == latin("MFR_M1_7") && name.isValid()
                && !name.setNumber(latin("_")) && name.checkNumber(latin("12"))
                && CMotorBaseName::isValid(latin("a_b_1.x"), true)
                && !CMotorBaseName::isValid(latin("a_b_c.x"), true)
                && CMotorBaseName::fullRegExp(false).exactMatch(latin("a_b_c"))
                && !CMotorBaseName::fullRegExp(true).exactMatch(latin("a_b_c"));
        }
        return right;
    }));
}

QTEST_APPLESS_MAIN(tst_CMotorBaseName)

#include "tst_CMotorBaseName.moc"
