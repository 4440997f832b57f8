#include "Sandbox.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QtTest>

#include <sys/stat.h>

// Drives the built program as a user does. Texts and numbers that are expected here were worked out
// from the bytes by hand; the library is not linked.

namespace {

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList linesOf(const QString &text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QJsonArray jsonOf(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).array();
}

// What is given to the program, as the name of a row: one line of ASCII.
QByteArray rowName(QByteArray text)
{
    for (char &byte : text) {
        if (byte < ' ' || byte > '~')
            byte = '?';
    }
    return text.isEmpty() ? QByteArray("nothing") : text;
}

QString zeros(int bytes)
{
    return QString(2 * bytes, QLatin1Char('0'));
}

// A big-endian stream put together from hexadecimal digits; blanks do not count.
QByteArray bytesOf(const QByteArray &digits)
{
    return QByteArray::fromHex(digits);
}

// A list whose stream is short enough to be cut at every byte, with what each object takes in it.
struct ShortObject
{
    const char *line;
    int nameUnits;
    int contentBytes; // type, null flag, type name if it is not Qt's own, value
};

constexpr int kTypeAndFlag = 4 + 1;
const ShortObject kShortObjects[] = {
    {"0x1,U8,UNIT_U8,ff", 2, kTypeAndFlag + 1},
    {"0x2:7,I64,UNIT_I64,feffffffffffffff", 3, kTypeAndFlag + 8},
    {"0x3,F32,UNIT_F32,0000003f", 3, kTypeAndFlag + 8}, // floats travel in double precision
    {"0x4,S,UNIT_STRING32,"
     "4100420000004300000000000000000000000000000000000000000000000000"
     "0000000000000000000000000000000000000000000000000000000000000000",
     1, kTypeAndFlag + 4 + 10 + 64}, // "CString32" with its end
    {"0x5,C,UNIT_CHARSTR64,"
     "4869000000000000000000000000000000000000000000000000000000000000"
     "0000000000000000000000000000000000000000000000000000000000000000",
     1, kTypeAndFlag + 4 + 64},
    {"0x6,D,UNIT_DATE_TIME,001e140a0503de07", 1, kTypeAndFlag + 4 + 19 + 8}, // "NTypes::tsDateTime"
    {"0x7,?,UNIT_UNKNOWN,", 1, kTypeAndFlag},                                // no content
    {"0x8,W,UNIT_UTF16CHAR,a903", 1, kTypeAndFlag + 2},
};

QByteArray shortList()
{
    QByteArray list;
    for (const ShortObject &object : kShortObjects)
        list += QByteArray(object.line) + '\n';
    return list;
}

} // namespace

class tst_k7e : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void help();
    void version();
    void usageErrors_data();
    void usageErrors();

    void listFormat();
    void values_data();
    void values();
    void jsonMembers();
    void textWithByteOrderMark();
    void wholeCells();
    void badLines_data();
    void badLines();
    void severalBadLines();
    void longLine();
    void byteOrderMark();
    void emptyList();
    void unreadableFiles_data();
    void unreadableFiles();
    void slowPipe();
    void fullOutput();
    void anyLocale();

    void exampleCoverage();
    void exampleRows_data();
    void exampleRows();

    void settings_data();
    void settings();
    void settingsInTable();
    void settingsInJson();

    void streamBytes();
    void streamRoundTrip();
    void streamKeepsTails();
    void outNotWritten_data();
    void outNotWritten();
    void truncatedStreams();
    void damagedStreams_data();
    void damagedStreams();

    void units_data();
    void units();
    void unitsTable();
    void types();
    void value_data();
    void value();
    void number_data();
    void number();
    void time_data();
    void time();
};

void tst_k7e::help()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run("--help");
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QString());
    QVERIFY(outcome.out.startsWith(QLatin1String("Usage: k7e [options] COMMAND [ARGUMENT...]\n")));
    QVERIFY(outcome.out.contains(QLatin1String("Exit status: 0 if all went well, 1 after an error "
                                               "in a file or a value, 2 after an\n")));
    const QStringList usages{
        QStringLiteral("objects [options] FILE"), QStringLiteral("stream [options] FILE"),
        QStringLiteral("units [options] [PATTERN]"), QStringLiteral("types [options]"),
        QStringLiteral("value [options] TYPE TEXT")};
    for (const QString &usage : usages) {
        const QString command = usage.section(QLatin1Char(' '), 0, 0);
        QVERIFY2(outcome.out.contains(QLatin1String("\n  ") + command + QLatin1Char(' ')),
                 qPrintable(command));
        const Outcome own = sandbox.run({command, QStringLiteral("-h")});
        QCOMPARE(own.status, 0);
        QCOMPARE(own.errors, QString());
        QCOMPARE(own.out.section(QLatin1Char('\n'), 0, 0), QLatin1String("Usage: k7e ") + usage);
    }
}

void tst_k7e::version()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run("--version");
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.out, QStringLiteral("k7e 1.60\n"));
    QCOMPARE(outcome.errors, QString());
}

void tst_k7e::usageErrors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("text");

    const auto add = [](const char *words, const char *program, const char *text) {
        const QString all = QString::fromUtf8(words);
        QTest::newRow(rowName(words).constData())
            << (all.isEmpty() ? QStringList() : all.split(QLatin1Char('|')))
            << QString::fromUtf8(program) << QString::fromUtf8(text);
    };
    add("", "k7e", "COMMAND is missing");
    add("frobnicate", "k7e", "unknown command \"frobnicate\"");
    add("Objects|f.csv", "k7e", "unknown command \"Objects\"");
    add("a\x1b[1mb", "k7e", "unknown command \"a\\u001b[1mb\"");
    add("--frobnicate", "k7e", "Unknown option 'frobnicate'.");
    add("objects", "k7e objects", "FILE is missing");
    add("objects|--json", "k7e objects", "FILE is missing");
    add("objects|a.csv|b.csv", "k7e objects", "unexpected argument \"b.csv\"");
    add("objects|--frobnicate|a.csv", "k7e objects", "Unknown option 'frobnicate'.");
    add("objects|a.csv|--out", "k7e objects", "Missing value after '--out'.");
    add("objects|a.csv|--set|A", "k7e objects", "\"A\" is not of the form NAME=TEXT");
    add("objects|a.csv|--set|=1", "k7e objects", "\"=1\" is not of the form NAME=TEXT");
    add("stream", "k7e stream", "FILE is missing");
    add("stream|--set|A=1|f", "k7e stream", "Unknown option 'set'.");
    add("units|a|b", "k7e units", "unexpected argument \"b\"");
    add("types|a", "k7e types", "unexpected argument \"a\"");
    add("value", "k7e value", "TYPE is missing");
    add("value|U8", "k7e value", "TEXT is missing");
    add("value|U8|--", "k7e value", "TEXT is missing");
    add("value|U8|1|2", "k7e value", "unexpected argument \"2\"");
}

void tst_k7e::usageErrors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, program);
    QFETCH(QString, text);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), "0x1,A,UNIT_U8,01\n");
    const Outcome outcome = sandbox.run(arguments);
    QCOMPARE(outcome.errors, QStringLiteral("%1: %2\nTry \"%1 --help\".\n").arg(program, text));
    QCOMPARE(outcome.out, QString());
    QCOMPARE(outcome.status, 2);
}

// Comments, blank lines, column names, blanks, quotes, CR LF, no end of the last line; in the table:
// alignment with wide characters, cut values, escapes.
void tst_k7e::listFormat()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome
        = sandbox.run({QStringLiteral("objects"), sourceFile("tests/data/k7e/table.csv")});
    const QByteArray expected = contentOf(sourceFile("tests/data/k7e/table.txt"));
    QVERIFY(!expected.isEmpty());
    QCOMPARE(linesOf(outcome.out), linesOf(QString::fromUtf8(expected)));
    QCOMPARE(outcome.out, QString::fromUtf8(expected));
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
}

void tst_k7e::values_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<int>("unitCode");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("bytes");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("hex");
    QTest::addColumn<QString>("bits");

    const auto add = [](const char *row, const char *unit, int unitCode, const char *type,
                        const QString &bytes, const QString &value, const QString &hex,
                        const char *bits = "") {
        QTest::newRow(row) << QString(QLatin1String(unit)) << unitCode
                           << QString(QLatin1String(type)) << bytes << value << hex
                           << QString(QLatin1String(bits)).remove(QLatin1Char(' '));
    };
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    // Strings show all their bytes.
    const auto addString = [&](const char *row, const char *unit, int unitCode, const char *type,
                               const QString &bytes, const QString &value) {
        add(row, unit, unitCode, type, bytes, value, QLatin1String("0x") + bytes);
    };

    add("U8 0", "UNIT_U8", 1, "U8", text("00"), text("0"), text("0x00"), "0000 0000");
    add("U8 255", "UNIT_U8", 1, "U8", text("FF"), text("255"), text("0xff"), "1111 1111");
    add("I8 -1", "UNIT_I8", 2, "I8", text("ff"), text("-1"), text("0x-1"), "1111 1111");
    add("I8 -100", "UNIT_I8", 2, "I8", text("9c"), text("-100"), text("0x64"), "1001 1100");
    add("I8 -128", "UNIT_I8", 2, "I8", text("80"), text("-128"), text("0x80"), "1000 0000");
    add("U16 4660", "UNIT_U16", 3, "U16", text("3412"), text("4660"), text("0x1234"),
        "0001 0010 0011 0100");
    add("I16 -2", "UNIT_I16", 4, "I16", text("feff"), text("-2"), text("0x-002"),
        "1111 1111 1111 1110");
    add("I16 minimum", "UNIT_I16", 4, "I16", text("0080"), text("-32768"), text("0x8000"),
        "1000 0000 0000 0000");
    add("U32 305419896", "UNIT_U32", 5, "U32", text("78563412"), text("305419896"),
        text("0x12345678"), "0001 0010 0011 0100 0101 0110 0111 1000");
    add("I32 -1", "UNIT_I32", 6, "I32", text("ffffffff"), text("-1"), text("0x-0000001"),
        "1111 1111 1111 1111 1111 1111 1111 1111");
    add("I32 minimum", "UNIT_I32", 6, "I32", text("00000080"), text("-2147483648"),
        text("0x-80000000"), "1000 0000 0000 0000 0000 0000 0000 0000");
    add("F32 0.1", "UNIT_F32", 7, "F32", text("cdcccc3d"), text("0.1"), QString());
    add("F32 least", "UNIT_F32", 7, "F32", text("01000000"), text("1.4013e-45"), QString());
    add("F32 greatest", "UNIT_F32", 7, "F32", text("ffff7f7f"), text("3.40282e+38"), QString());
    add("F32 -infinity", "UNIT_F32", 7, "F32", text("000080ff"), text("-inf"), QString());
    add("F32 NaN", "UNIT_F32", 7, "F32", text("0000c07f"), text("nan"), QString());
    add("U64 maximum", "UNIT_U64", 8, "U64", text("ffffffffffffffff"), text("18446744073709551615"),
        text("0xffffffffffffffff"),
        "11111111 11111111 11111111 11111111 11111111 11111111 11111111 11111111");
    add("I64 -1", "UNIT_I64", 9, "I64", text("ffffffffffffffff"), text("-1"),
        text("0x-000000000000001"),
        "11111111 11111111 11111111 11111111 11111111 11111111 11111111 11111111");
    add("I64 minimum", "UNIT_I64", 9, "I64", text("0000000000000080"), text("-9223372036854775808"),
        text("0x-8000000000000000"),
        "10000000 00000000 00000000 00000000 00000000 00000000 00000000 00000000");
    add("I64 2^53+1", "UNIT_I64", 9, "I64", text("0100000000002000"), text("9007199254740993"),
        text("0x0020000000000001"),
        "00000000 00100000 00000000 00000000 00000000 00000000 00000000 00000001");
    add("F64 1/3", "UNIT_F64", 10, "F64", text("555555555555d53f"), text("0.333333333333333"),
        QString());
    add("F64 -0", "UNIT_F64", 10, "F64", text("0000000000000080"), text("0"), QString());
    add("F64 least", "UNIT_F64", 10, "F64", text("0100000000000000"), text("4.94065645841247e-324"),
        QString());
    add("F64 greatest", "UNIT_F64", 10, "F64", text("ffffffffffffef7f"),
        text("1.79769313486232e+308"), QString());
    add("F64 infinity", "UNIT_F64", 10, "F64", text("000000000000f07f"), text("inf"), QString());
    add("F64 NaN", "UNIT_F64", 10, "F64", text("000000000000f87f"), text("nan"), QString());

    add("no bytes", "UNIT_UNKNOWN", 0, "UNKNOWN", QString(), QString(), QString());
    add("F80", "UNIT_F80", 11, "UNKNOWN", text("00000000000000c0ff3f"), QString(), QString());

    addString("STRING32 tail", "UNIT_STRING32", 12, "STRING32",
              text("4100420000004300") + zeros(56), text("AB"));
    addString("STRING32 no terminator", "UNIT_STRING32", 12, "STRING32",
              text("4100").repeated(31) + text("5a00"), QString(31, QLatin1Char('A')) + text("Z"));
    addString("STRING64 swapped mark", "UNIT_STRING64", 81, "STRING64",
              text("feff4100") + zeros(124), QStringLiteral("\uFFFEA"));
    addString("STRING64 half a pair", "UNIT_STRING64", 81, "STRING64",
              text("3dd84100") + zeros(124), QString(QChar(0xd83d)) + text("A"));
    addString("STRING128 pair", "UNIT_STRING128", 14, "STRING128", text("3dd800de") + zeros(252),
              QStringLiteral("\U0001F600"));
    addString("CHARSTR64 tail", "UNIT_CHARSTR64", 13, "CHARSTR64", text("486900ff") + zeros(60),
              text("Hi"));
    addString("CHARSTR128 UTF-8", "UNIT_CHARSTR128", 82, "CHARSTR128", text("c3bc") + zeros(126),
              QStringLiteral("\u00fc"));
    addString("CHARSTR256 no terminator", "UNIT_CHARSTR256", 15, "CHARSTR256",
              text("7a").repeated(256), QString(256, QLatin1Char('z')));
    addString("CHAR X", "UNIT_CHAR", 84, "CHAR", text("58"), text("X"));
    addString("CHAR 0", "UNIT_CHAR", 84, "CHAR", text("00"), QString());
    addString("CHAR not UTF-8", "UNIT_CHAR", 84, "CHAR", text("e9"), QStringLiteral("\uFFFD"));
    add("UTF16CHAR omega", "UNIT_UTF16CHAR", 83, "UTF16CHAR", text("a903"),
        QStringLiteral("\u03a9"), text("0x03a9"));
    add("UTF16CHAR 0", "UNIT_UTF16CHAR", 83, "UTF16CHAR", text("0000"), QString(QChar(0)),
        text("0x0000"));

    add("DATETIME", "UNIT_DATE_TIME", 80, "DATETIME", text("191e140a0503de07"),
        text("2014-03-05T10:20:30"), text("0x7de03050a141e19"));
    add("DATETIME 0", "UNIT_DATE_TIME", 80, "DATETIME", text("0000000000000000"), QString(),
        text("0x0"));
    add("DATETIME February 30", "UNIT_DATE_TIME", 80, "DATETIME", text("000000001e02e707"),
        QString(), text("0x7e7021e00000000"));
    add("DATETIME 25 hours", "UNIT_DATE_TIME", 80, "DATETIME", text("000000190503de07"),
        text("2014-03-05T00:00:00"), text("0x7de030519000000"));
    add("DATETIME all -1", "UNIT_DATE_TIME", 80, "DATETIME", text("ffffffffffffffff"), QString(),
        text("0xffffffffffffffff"));

    add("fraction", "UNIT_I_FRAC", 16, "I16", text("ff7f"), text("32767"), text("0x7fff"),
        "0111 1111 1111 1111");
    add("fault", "UNIT_FAULT", 39, "U32", text("10230080"), text("2147492624"), text("0x80002310"),
        "1000 0000 0000 0000 0010 0011 0001 0000");
    add("whole degrees", "UNIT_T_Degree", 55, "I16", text("d8ff"), text("-40"), text("0x-028"),
        "1111 1111 1101 1000");
    add("slot", "UNIT_56", 56, "I32", text("38000000"), text("56"), text("0x00000038"),
        "0000 0000 0000 0000 0000 0000 0011 1000");
    add("increments", "UNIT_S_INC_32x32", 64, "I64", text("0000000001000000"), text("4294967296"),
        text("0x0000000100000000"),
        "00000000 00000000 00000000 00000001 00000000 00000000 00000000 00000000");
    add("joule", "UNIT_J", 125, "F64", text("000000000000f8bf"), text("-1.5"), QString());
}

void tst_k7e::values()
{
    QFETCH(QString, unit);
    QFETCH(int, unitCode);
    QFETCH(QString, type);
    QFETCH(QString, bytes);
    QFETCH(QString, value);
    QFETCH(QString, hex);
    QFETCH(QString, bits);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"),
                  QStringLiteral("0x2345:6,Name,%1,%2\n").arg(unit, bytes).toUtf8());
    const Outcome outcome = sandbox.run("objects|--json|a.csv");
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);

    QJsonObject expected{{QStringLiteral("index"), QStringLiteral("0x2345:06")},
                         {QStringLiteral("name"), QStringLiteral("Name")},
                         {QStringLiteral("unit"), unit},
                         {QStringLiteral("unitCode"), unitCode},
                         {QStringLiteral("type"), type},
                         {QStringLiteral("bytes"), bytes.size() / 2},
                         {QStringLiteral("value"), value},
                         {QStringLiteral("hex"), hex}};
    if (!bits.isEmpty())
        expected.insert(QStringLiteral("bits"), bits);
    QCOMPARE(jsonOf(outcome.out), QJsonArray{expected});
}

void tst_k7e::jsonMembers()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"),
                  "0x1,A \"b\",UNIT_U8,05\n0x2,C,UNIT_F64,000000000000f03f\n");
    const Outcome outcome = sandbox.run("objects|a.csv|--json");
    QCOMPARE(outcome.out,
             QStringLiteral("[\n"
                            "    {\n"
                            "        \"bits\": \"00000101\",\n"
                            "        \"bytes\": 1,\n"
                            "        \"hex\": \"0x05\",\n"
                            "        \"index\": \"0x0001\",\n"
                            "        \"name\": \"A \\\"b\\\"\",\n"
                            "        \"type\": \"U8\",\n"
                            "        \"unit\": \"UNIT_U8\",\n"
                            "        \"unitCode\": 1,\n"
                            "        \"value\": \"5\"\n"
                            "    },\n"
                            "    {\n"
                            "        \"bytes\": 8,\n"
                            "        \"hex\": \"\",\n"
                            "        \"index\": \"0x0002\",\n"
                            "        \"name\": \"C\",\n"
                            "        \"type\": \"F64\",\n"
                            "        \"unit\": \"UNIT_F64\",\n"
                            "        \"unitCode\": 10,\n"
                            "        \"value\": \"1\"\n"
                            "    }\n"
                            "]\n"));
    QCOMPARE(outcome.status, 0);
}

// A mark at the beginning of a text is a unit like any other.
void tst_k7e::textWithByteOrderMark()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), "0x1,A,UNIT_STRING32,fffe4100" + zeros(60).toLatin1());
    const Outcome table = sandbox.run("objects|a.csv");
    QCOMPARE(linesOf(table.out).value(1),
             QStringLiteral("0x0001  A     UNIT_STRING32  STRING32     64  \\ufeffA  "
                            "0xfffe4100000000..."));
    const Outcome json = sandbox.run("objects|a.csv|--json");
    QVERIFY(json.out.contains(QStringLiteral("\"value\": \"\uFEFFA\"\n")));
}

void tst_k7e::wholeCells()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"),
                  "0x1,A,UNIT_CHARSTR64," + QByteArray("7a").repeated(64) + '\n');
    const Outcome cut = sandbox.run("objects|a.csv");
    QCOMPARE(linesOf(cut.out).value(1),
             QStringLiteral("0x0001  A     UNIT_CHARSTR64  CHARSTR64     64  "
                            "zzzzzzzzzzzzzzzzzzzzzzzzz...  0x7a7a7a7a7a7a7a..."));
    const Outcome whole = sandbox.run("objects|--full|a.csv");
    QCOMPARE(linesOf(whole.out).value(1),
             QStringLiteral("0x0001  A     UNIT_CHARSTR64  CHARSTR64     64  %1  0x%2")
                 .arg(QString(64, QLatin1Char('z')), QStringLiteral("7a").repeated(64)));
}

void tst_k7e::badLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("text");

    const auto add = [](const QByteArray &line, const char *text) {
        QTest::newRow(rowName(line).constData()) << line << QString::fromUtf8(text);
    };
    add("0x2", "field count 1 is not 4: index,name,unit,bytes");
    add("0x2,B,UNIT_U8", "field count 3 is not 4: index,name,unit,bytes");
    add("0x2,B,UNIT_U8,01,", "field count 5 is not 4: index,name,unit,bytes");
    add(",,,", "index \"\" is not of the form 0x6041 or 0x1018:01");
    add("index,name,unit,bytes", "index \"index\" is not of the form 0x6041 or 0x1018:01");
    add("6041,B,UNIT_U8,01", "index \"6041\" is not of the form 0x6041 or 0x1018:01");
    add("0x,B,UNIT_U8,01", "index \"0x\" is not of the form 0x6041 or 0x1018:01");
    add("0x10000,B,UNIT_U8,01", "index \"0x10000\" is not of the form 0x6041 or 0x1018:01");
    add("0x1:,B,UNIT_U8,01", "index \"0x1:\" is not of the form 0x6041 or 0x1018:01");
    add("0x1:100,B,UNIT_U8,01", "index \"0x1:100\" is not of the form 0x6041 or 0x1018:01");
    add("0x-1,B,UNIT_U8,01", "index \"0x-1\" is not of the form 0x6041 or 0x1018:01");
    add("\"0x2", "the closing quote of a field is missing");
    add("0x2, ,UNIT_U8,01", "the name is empty");
    add("0x2,B,,01", "unknown unit \"\"");
    add("0x2,B,UNIT_FOO,01", "unknown unit \"UNIT_FOO\"");
    add("0x2,B,unit_u8,01", "unknown unit \"unit_u8\"");
    add("0x2,B,U8,01", "unknown unit \"U8\"");
    add("0x2,B,UNIT_\x1b,01", "unknown unit \"UNIT_\\u001b\"");
    add("0x2,B,UNIT_%1,01", "unknown unit \"UNIT_%1\"");
    add("0x2,B,UNIT_U8,0", "the bytes have an odd number of hexadecimal digits, 1");
    add("0x2,B,UNIT_U16,012", "the bytes have an odd number of hexadecimal digits, 3");
    add("0x2,B,UNIT_U8,0g", "the bytes hold \"g\", which is no hexadecimal digit");
    add("0x2,B,UNIT_U16,01 02", "the bytes hold \" \", which is no hexadecimal digit");
    add("0x2,B,UNIT_U8,0x01", "the bytes hold \"x\", which is no hexadecimal digit");
    add("0x2,B,UNIT_U8,-1", "the bytes hold \"-\", which is no hexadecimal digit");
    add("0x2,B,UNIT_U8,\xef\xbc\x91\xef\xbc\x91",
        "the bytes hold \"\xef\xbc\x91\", which is no hexadecimal digit");
    add("0x2,B,UNIT_U8,", "byte count 0 does not fit UNIT_U8, which has 1");
    add("0x2,B,UNIT_U8,0102", "byte count 2 does not fit UNIT_U8, which has 1");
    add("0x2,B,UNIT_UNKNOWN,00", "byte count 1 does not fit UNIT_UNKNOWN, which has 0");
    add("0x2,B,UNIT_F80,0102030405060708", "byte count 8 does not fit UNIT_F80, which has 10");
    add("0x2,B,UNIT_STRING32,4100", "byte count 2 does not fit UNIT_STRING32, which has 64");
    add("0x2,B,UNIT_DATE_TIME,00000000", "byte count 4 does not fit UNIT_DATE_TIME, which has 8");
    add("0x2,\"B,UNIT_U8,01", "the closing quote of a field is missing");
    add("0x2,\"B\"\",UNIT_U8,01", "the closing quote of a field is missing");
    add("0x2,\"B\" b,UNIT_U8,01", "text behind the closing quote of a field");
    add("0x2,B\xff,UNIT_U8,01", "the line is not valid UTF-8");
    add("# \xc3", "the line is not valid UTF-8");
}

void tst_k7e::badLines()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, text);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), "0x1,A,UNIT_U8,01\n" + line + "\n0x3,C,UNIT_U8,03\n");
    const Outcome outcome = sandbox.run("objects|a.csv");
    QCOMPARE(outcome.errors, QStringLiteral("a.csv:2: %1\n").arg(QString(text)));
    QCOMPARE(outcome.out,
             QStringLiteral("INDEX   NAME  UNIT     TYPE  BYTES  VALUE  HEX   BITS\n"
                            "0x0001  A     UNIT_U8  U8        1  1      0x01  0000 0001\n"
                            "0x0003  C     UNIT_U8  U8        1  3      0x03  0000 0011\n"));
    QCOMPARE(outcome.status, 1);

    const Outcome json = sandbox.run("objects|a.csv|--json");
    QCOMPARE(json.errors, outcome.errors);
    QCOMPARE(jsonOf(json.out).size(), 2);
    QCOMPARE(json.status, 1);
}

void tst_k7e::severalBadLines()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QString file = sourceFile("tests/data/k7e/faults.csv");
    const Outcome outcome = sandbox.run({QStringLiteral("objects"), file});
    const QStringList texts{
        QStringLiteral("3: field count 3 is not 4: index,name,unit,bytes"),
        QStringLiteral("4: index \"six\" is not of the form 0x6041 or 0x1018:01"),
        QStringLiteral("5: unknown unit \"UNIT_FOO\""),
        QStringLiteral("6: the bytes have an odd number of hexadecimal digits, 3"),
        QStringLiteral("7: the bytes hold \"g\", which is no hexadecimal digit"),
        QStringLiteral("8: byte count 3 does not fit UNIT_U16, which has 2"),
        QStringLiteral("9: the closing quote of a field is missing"),
        QStringLiteral("10: the line is not valid UTF-8"),
    };
    QString expected;
    for (const QString &text : texts)
        expected += file + QLatin1Char(':') + text + QLatin1Char('\n');
    QCOMPARE(outcome.errors, expected);
    QCOMPARE(linesOf(outcome.out).mid(1),
             QStringList(
                 {QStringLiteral("0x0001  First  UNIT_U8  U8        1  1      0x01  0000 0001"),
                  QStringLiteral("0x0009  Last   UNIT_U8  U8        1  2      0x02  0000 0010")}));
    QCOMPARE(outcome.status, 1);
}

void tst_k7e::longLine()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QByteArray last = "0x1,A,UNIT_U8,01";
    constexpr int kLimit = 65536;
    const QByteArray atLimit = '#' + QByteArray(kLimit - 1, ' ');
    for (const int beyond : {1, 2, kLimit, 3 * kLimit}) {
        const QByteArray tooLong = '#' + QByteArray(kLimit - 1 + beyond, ' ');
        sandbox.write(QStringLiteral("a.csv"),
                      atLimit + '\n' + tooLong + '\n' + last + '\n' + tooLong);
        const Outcome outcome = sandbox.run("objects|a.csv");
        QCOMPARE(outcome.errors,
                 QStringLiteral("a.csv:2: the line is longer than 65536 bytes\n"
                                "a.csv:4: the line is longer than 65536 bytes\n"));
        QCOMPARE(linesOf(outcome.out).size(), 2);
        QCOMPARE(outcome.status, 1);
    }
}

void tst_k7e::byteOrderMark()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), "\xef\xbb\xbfindex,name,unit,bytes\n0x1,A,UNIT_U8,01\n");
    const Outcome outcome = sandbox.run("objects|a.csv");
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(linesOf(outcome.out).size(), 2);
    QCOMPARE(outcome.status, 0);
}

void tst_k7e::emptyList()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), QByteArray());
    const Outcome table = sandbox.run("objects|a.csv|--out|a.k7e");
    QCOMPARE(table.out, QStringLiteral("INDEX  NAME  UNIT  TYPE  BYTES  VALUE  HEX  BITS\n"));
    QCOMPARE(table.errors, QString());
    QCOMPARE(table.status, 0);
    QCOMPARE(sandbox.read(QStringLiteral("a.k7e")), bytesOf("4b374f4c 00000001 00000000"));
    const Outcome json = sandbox.run("stream|a.k7e|--json");
    QCOMPARE(json.out, QStringLiteral("[\n]\n"));
    QCOMPARE(json.status, 0);
}

void tst_k7e::unreadableFiles_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("text");

    for (const char *command : {"objects", "stream", "devices", "otp"}) {
        const QString name = QString::fromUtf8(command);
        QTest::addRow("%s, no such file", command)
            << name << QStringLiteral("none \u00fc.csv")
            << QStringLiteral("none \u00fc.csv: No such file or directory\n");
        QTest::addRow("%s, folder", command)
            << name << QStringLiteral(".") << QStringLiteral(".: file to open is a directory\n");
        QTest::addRow("%s, empty name", command)
            << name << QString() << QStringLiteral(": No such file or directory\n");
    }
}

void tst_k7e::unreadableFiles()
{
    QFETCH(QString, command);
    QFETCH(QString, file);
    QFETCH(QString, text);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run({command, file});
    QCOMPARE(outcome.errors, text);
    QCOMPARE(outcome.out, QString());
    QCOMPARE(outcome.status, 1);
}

// A pipe that stops in the middle of a line or a value is read to its end all the same.
void tst_k7e::slowPipe()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), "0x1,A,UNIT_U8,01\n0x2,B,UNIT_U8,02\n");
    QCOMPARE(sandbox.run("objects|a.csv|--out|a.k7e").status, 0);
    const struct
    {
        QString command;
        QByteArray input;
    } cases[] = {{QStringLiteral("objects"), sandbox.read(QStringLiteral("a.csv"))},
                 {QStringLiteral("stream"), sandbox.read(QStringLiteral("a.k7e"))}};
    for (const auto &row : cases) {
        QProcess process;
        process.start(QStringLiteral(K7E_PROGRAM), {row.command, QStringLiteral("/dev/stdin")});
        QVERIFY(process.waitForStarted());
        for (const char byte : row.input) {
            QCOMPARE(process.write(&byte, 1), qint64(1));
            QVERIFY(process.waitForBytesWritten());
            QThread::msleep(2);
        }
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished());
        QCOMPARE(QString::fromUtf8(process.readAllStandardError()), QString());
        QCOMPARE(
            linesOf(QString::fromUtf8(process.readAllStandardOutput())).mid(1),
            QStringList(
                {QStringLiteral("0x0001  A     UNIT_U8  U8        1  1      0x01  0000 0001"),
                 QStringLiteral("0x0002  B     UNIT_U8  U8        1  2      0x02  0000 0010")}));
        QCOMPARE(process.exitCode(), 0);
    }
}

void tst_k7e::fullOutput()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run("types", [](QProcess &process) {
        process.setStandardOutputFile(QStringLiteral("/dev/full"));
    });
    QCOMPARE(outcome.errors, QStringLiteral("standard output: No space left on device\n"));
    QCOMPARE(outcome.status, 1);
}

void tst_k7e::anyLocale()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QString file = QStringLiteral("\u00fc.csv");
    QFile::copy(sourceFile("examples/drive.csv"), sandbox.path(file));
    const QStringList arguments{QStringLiteral("objects"), file, QStringLiteral("--set"),
                                QStringLiteral("Product \u00b5-code=\u20ac")};
    const Outcome usual = sandbox.run(arguments);
    QVERIFY(usual.out.endsWith(
        QStringLiteral("\nProduct \u00b5-code: changed from \"\u52a8\u529b \u2126 \u20ac 1\" to "
                       "\"\u20ac\"\n")));
    QCOMPARE(usual.status, 0);
    for (const char *locale : {"C", "POSIX", "de_DE.UTF-8", "de_DE.ISO-8859-1"}) {
        const Outcome other = sandbox.run(arguments, [=](QProcess &process) {
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("LC_ALL"), QString::fromUtf8(locale));
            process.setProcessEnvironment(environment);
        });
        QCOMPARE(other.out, usual.out);
        QCOMPARE(other.errors, QString());
        QCOMPARE(other.status, 0);
    }
}

void tst_k7e::exampleCoverage()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QString file = sourceFile("examples/drive.csv");
    const Outcome table = sandbox.run({QStringLiteral("objects"), file});
    QCOMPARE(table.errors, QString());
    QCOMPARE(table.status, 0);
    const Outcome json = sandbox.run({QStringLiteral("objects"), file, QStringLiteral("--json")});
    const QJsonArray objects = jsonOf(json.out);
    QVERIFY(objects.size() >= 60);
    QCOMPARE(linesOf(table.out).size(), objects.size() + 1);

    QSet<QString> types;
    QSet<QString> units;
    QSet<QString> names;
    QSet<QString> indexes;
    QSet<QString> values;
    QSet<QString> stringTypesWithTail;
    int fullTexts = 0;
    for (int i = 0; i < objects.size(); ++i) {
        const QJsonObject object = objects.at(i).toObject();
        const QString type = object.value(QStringLiteral("type")).toString();
        const QString value = object.value(QStringLiteral("value")).toString();
        types += type;
        units += object.value(QStringLiteral("unit")).toString();
        names += object.value(QStringLiteral("name")).toString();
        indexes += object.value(QStringLiteral("index")).toString();
        values += value;
        if (type.startsWith(QLatin1String("STRING"))) {
            const QString hex = object.value(QStringLiteral("hex")).toString();
            const int terminator = 2 + 4 * value.size(); // behind "0x" and the text
            if (terminator == hex.size())
                ++fullTexts;
            else if (hex.mid(terminator).contains(QRegularExpression(QStringLiteral("[1-9a-f]"))))
                stringTypesWithTail += type;
        }
        // Only the bits of 64-bit integers take more than a wide terminal.
        if (type != QLatin1String("U64") && type != QLatin1String("I64"))
            QVERIFY2(linesOf(table.out).at(i + 1).size() <= 160, qPrintable(value));
    }
    QCOMPARE(names.size(), objects.size());
    QCOMPARE(indexes.size(), objects.size());
    QVERIFY(units.size() >= 40);
    // F80 has a unit but no value, so the type of its row is UNKNOWN.
    QVERIFY(units.contains(QStringLiteral("UNIT_F80")));
    QVERIFY(units.contains(QStringLiteral("UNIT_UNKNOWN")));
    const QString expectedTypes = QStringLiteral(
        "UNKNOWN U8 I8 U16 I16 U32 I32 F32 U64 I64 F64 STRING32 CHARSTR64 STRING128 CHARSTR256 "
        "DATETIME STRING64 CHARSTR128 UTF16CHAR CHAR");
    const QStringList typeNames = expectedTypes.split(QLatin1Char(' '));
    QCOMPARE(types, QSet<QString>(typeNames.cbegin(), typeNames.cend()));
    QVERIFY(stringTypesWithTail.size() >= 2);
    QVERIFY(fullTexts >= 1);
    const QString extremes = QStringLiteral(
        "255 65535 18446744073709551615 -128 -32768 -2147483648 -9223372036854775808 32767 "
        "2147483647 9223372036854775807 inf -inf nan 1.4013e-45 4.94065645841247e-324 "
        "1.79769313486232e+308");
    for (const QString &value : extremes.split(QLatin1Char(' ')))
        QVERIFY2(values.contains(value), qPrintable(value));
}

void tst_k7e::exampleRows_data()
{
    QTest::addColumn<QString>("row");

    // The columns are as wide as the widest cell of the list: the title or one of these.
    const auto add
        = [](const char *index, const char *name, const char *unit, const char *type,
             const char *bytes, const QString &value, const char *hex = "", const char *bits = "") {
              QString row = QString(QLatin1String(index)).leftJustified(9) + QLatin1String("  ")
                  + QString(QLatin1String(name)).leftJustified(18) + QLatin1String("  ")
                  + QString(QLatin1String(unit)).leftJustified(18) + QLatin1String("  ")
                  + QString(QLatin1String(type)).leftJustified(10) + QLatin1String("  ")
                  + QString(QLatin1String(bytes)).rightJustified(5) + QLatin1String("  ")
                  + value.leftJustified(28) + QLatin1String("  ")
                  + QString(QLatin1String(hex)).leftJustified(19) + QLatin1String("  ")
                  + QLatin1String(bits);
              while (row.endsWith(QLatin1Char(' ')))
                  row.chop(1);
              QTest::newRow(name) << row;
          };
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    add("INDEX", "NAME", "UNIT", "TYPE", "BYTES", text("VALUE"), "HEX", "BITS");
    add("0x1000", "Device type", "UNIT_U32", "U32", "4", text("131474"), "0x00020192",
        "0000 0000 0000 0010 0000 0001 1001 0010");
    add("0x1008", "Device name", "UNIT_STRING32", "STRING32", "64", text("Servo axis 3"),
        "0x53006500720076...");
    add("0x1018:01", "Vendor identity", "UNIT_U32", "U32", "4", text("1263489622"), "0x4b4f5256",
        "0100 1011 0100 1111 0101 0010 0101 0110");
    add("0x2000", "Maker", "UNIT_STRING128", "STRING128", "256",
        QStringLiteral("KORVALENT Z\u00fcrich"), "0x4b004f00520056...");
    add("0x2001", "Order code", "UNIT_STRING32", "STRING32", "64",
        text("KV-300-08-A2-M1-B0-F4-S1-..."), "0x4b0056002d0033...");
    add("0x2003", "Note", "UNIT_CHARSTR256", "CHARSTR256", "256",
        text("Oil changed\\nBearing nois..."), "0x4f696c20636861...");
    add("0x2004", "Axis letter", "UNIT_CHAR", "CHAR", "1", text("X"), "0x58");
    add("0x2005", "Axis symbol", "UNIT_UTF16CHAR", "UTF16CHAR", "2", QStringLiteral("\u03a9"),
        "0x03a9");
    add("0x2010", "Commissioned", "UNIT_DATE_TIME", "DATETIME", "8", text("2014-03-05T10:20:30"),
        "0x7de03050a141e19");
    add("0x2012", "Next service", "UNIT_DATE_TIME", "DATETIME", "8", QString(),
        "0x7e9021d08000000");
    add("0x6061", "Mode display", "UNIT_I8", "I8", "1", text("-1"), "0x-1", "1111 1111");
    add("0x2022", "Trace mask", "UNIT_U64", "U64", "8", text("18446744073709551615"),
        "0xffffffffffffffff",
        "1111 1111 1111 1111 1111 1111 1111 1111 1111 1111 1111 1111 1111 1111 1111 1111");
    add("0x2026", "Reserved", "UNIT_UNKNOWN", "UNKNOWN", "0", QString());
    add("0x6064", "Position, actual", "UNIT_I32", "I32", "4", text("-2147483648"), "0x-80000000",
        "1000 0000 0000 0000 0000 0000 0000 0000");
    add("0x2032", "Travel, negative", "UNIT_I64", "I64", "8", text("-9223372036854775808"),
        "0x-8000000000000000",
        "1000 0000 0000 0000 0000 0000 0000 0000 0000 0000 0000 0000 0000 0000 0000 0000");
    add("0x6083", "Acceleration", "UNIT_U_ACC", "F64", "8", text("1e+20"));
    add("0x2034", "Velocity fraction", "UNIT_V_FRAC", "I16", "2", text("-16384"), "0x4000",
        "1100 0000 0000 0000");
    add("0x2051", "Brake power", "UNIT_P_1mWatt", "I32", "4", text("-75000"), "0x-00124f8",
        "1111 1111 1111 1110 1101 1011 0000 1000");
    add("0x2053", "Motor temperature", "UNIT_T_100mDegree", "I16", "2", text("-405"), "0x-195",
        "1111 1110 0110 1011");
    add("0x2060:03", "Velocity filter", "UNIT_F32", "F32", "4", text("1.4013e-45"));
    add("0x2061:04", "Position bound", "UNIT_F64", "F64", "8", text("-inf"));
    add("0x2063", "Observer state", "UNIT_F80", "UNKNOWN", "10", QString());
}

void tst_k7e::exampleRows()
{
    QFETCH(QString, row);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome
        = sandbox.run({QStringLiteral("objects"), sourceFile("examples/drive.csv")});
    const QString index = row.section(QLatin1Char(' '), 0, 0) + QLatin1Char(' ');
    const QStringList found
        = linesOf(outcome.out)
              .filter(QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(index)));
    QCOMPARE(found, QStringList{row});
}

namespace {

QByteArray settingsList()
{
    return "0x1,Byte,UNIT_U8,05\n"
           "0x2,Text,UNIT_CHARSTR64,4869"
        + zeros(62).toLatin1()
        + "\n0x3,Date,UNIT_DATE_TIME,001e140a0503de07\n"
          "0x4,Float,UNIT_F32,0000c07f\n"
          "0x5,Wide,UNIT_STRING32,4100420000004300"
        + zeros(56).toLatin1()
        + "\n0x6,Nothing,UNIT_F80,00000000000000000000\n"
          "0x7,Twin,UNIT_U8,01\n"
          "0x8,Twin,UNIT_U8,02\n"
          "0x9,100%1,UNIT_I64,0000000000000080\n";
}

} // namespace

void tst_k7e::settings_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("result"); // the last line of the output
    QTest::addColumn<QString>("error");

    const auto add = [](const char *setting, const char *result) {
        QTest::newRow(rowName(setting).constData())
            << QString::fromUtf8(setting) << QString::fromUtf8(result) << QString();
    };
    const auto addError = [](const char *setting, const char *error) {
        QTest::newRow(rowName(setting).constData()) << QString::fromUtf8(setting) << QString()
                                                    << QString::fromUtf8(error) + QLatin1Char('\n');
    };
    add("Byte=7", "Byte: changed from \"5\" to \"7\"");
    add("Byte=5", "Byte: unchanged, \"5\"");
    add("Byte=0x05", "Byte: unchanged, \"5\"");
    add("Byte=261", "Byte: unchanged, \"5\"");           // keeps the low 8 bits
    add("Byte=-1", "Byte: changed from \"5\" to \"0\""); // no unsigned number
    add("Byte=many", "Byte: changed from \"5\" to \"0\"");
    add("Byte=", "Byte: changed from \"5\" to \"0\"");
    add("Text=Hi", "Text: unchanged, \"Hi\"");
    add("Text=hi", "Text: changed from \"Hi\" to \"hi\"");
    add("Text=a=b", "Text: changed from \"Hi\" to \"a=b\"");
    add("Text=two\nlines", "Text: changed from \"Hi\" to \"two\\nlines\"");
    add("Text=%1%2", "Text: changed from \"Hi\" to \"%1%2\"");
    add("Date=2014-03-05T10:20:30", "Date: unchanged, \"2014-03-05T10:20:30\"");
    add("Date=2020-02-29T00:00:00",
        "Date: changed from \"2014-03-05T10:20:30\" to \"2020-02-29T00:00:00\"");
    // The hundredths count, although the text does not show them.
    add("Date=2014-03-05T10:20:30.250",
        "Date: changed from \"2014-03-05T10:20:30\" to \"2014-03-05T10:20:30\"");
    add("Date=never", "Date: changed from \"2014-03-05T10:20:30\" to \"\"");
    add("Float=0.5", "Float: changed from \"nan\" to \"0.5\"");
    add("Float=nan", "Float: changed from \"nan\" to \"nan\""); // NaN equals nothing
    add("Wide=AB", "Wide: unchanged, \"AB\"");
    add("Wide=AC", "Wide: changed from \"AB\" to \"AC\"");
    add("100%1=-9223372036854775808", "100%1: unchanged, \"-9223372036854775808\"");
    add("100%1=1", "100%1: changed from \"-9223372036854775808\" to \"1\"");
    addError("None=1", "cannot set \"None\": no object has that name");
    addError("byte=1", "cannot set \"byte\": no object has that name");
    addError("Nothing=1", "cannot set \"Nothing\": its unit has no data type");
    addError("Twin=1", "cannot set \"Twin\": several objects have that name");
}

void tst_k7e::settings()
{
    QFETCH(QString, setting);
    QFETCH(QString, result);
    QFETCH(QString, error);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), settingsList());
    const Outcome outcome = sandbox.run(
        {QStringLiteral("objects"), QStringLiteral("a.csv"), QStringLiteral("--set"), setting});
    QCOMPARE(outcome.errors, error);
    constexpr int kTableLines = 1 + 9;
    QCOMPARE(linesOf(outcome.out).mid(kTableLines),
             result.isEmpty() ? QStringList() : QStringList{result});
    QCOMPARE(outcome.status, error.isEmpty() ? 0 : 1);
}

void tst_k7e::settingsInTable()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), "0x1,A,UNIT_U8,05\n0x2,B,UNIT_I8,06\n");
    const Outcome outcome = sandbox.run("objects|--set|A=7|a.csv|--set|A=9|--set|C=1|--set|B=6");
    QCOMPARE(outcome.out,
             QStringLiteral("INDEX   NAME  UNIT     TYPE  BYTES  VALUE  HEX   BITS\n"
                            "0x0001  A     UNIT_U8  U8        1  9      0x09  0000 1001\n"
                            "0x0002  B     UNIT_I8  I8        1  6      0x06  0000 0110\n"
                            "A: changed from \"5\" to \"7\"\n"
                            "A: changed from \"7\" to \"9\"\n"
                            "B: unchanged, \"6\"\n"));
    QCOMPARE(outcome.errors, QStringLiteral("cannot set \"C\": no object has that name\n"));
    QCOMPARE(outcome.status, 1);
}

void tst_k7e::settingsInJson()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"),
                  "0x1,A,UNIT_U8,05\n0x2,B,UNIT_I8,06\n0x3,C,UNIT_U8,07\n");
    const Outcome outcome = sandbox.run("objects|--json|a.csv|--set|A=7|--set|A=7|--set|B=6");
    QCOMPARE(outcome.errors, QString());
    const QJsonArray objects = jsonOf(outcome.out);
    QCOMPARE(objects.size(), 3);
    const QJsonObject a = objects.at(0).toObject();
    QCOMPARE(a.value(QStringLiteral("value")), QJsonValue(QStringLiteral("7")));
    QCOMPARE(a.value(QStringLiteral("oldValue")), QJsonValue(QStringLiteral("5")));
    QCOMPARE(a.value(QStringLiteral("changed")), QJsonValue(true));
    const QJsonObject b = objects.at(1).toObject();
    QCOMPARE(b.value(QStringLiteral("value")), QJsonValue(QStringLiteral("6")));
    QCOMPARE(b.value(QStringLiteral("oldValue")), QJsonValue(QStringLiteral("6")));
    QCOMPARE(b.value(QStringLiteral("changed")), QJsonValue(false));
    const QJsonObject c = objects.at(2).toObject();
    QVERIFY(!c.contains(QStringLiteral("oldValue")));
    QVERIFY(!c.contains(QStringLiteral("changed")));
}

void tst_k7e::streamBytes()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), "0x6041,S,UNIT_U8,05\n0x1018:2,F,UNIT_F32,0000003f\n");
    const Outcome outcome = sandbox.run("objects|a.csv|--out|a.k7e");
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(sandbox.read(QStringLiteral("a.k7e")).toHex(),
             bytesOf("4b374f4c 00000001 00000002"
                     "6041 ffff 000000020053 00000001 0000002500 05 00000001"
                     "1018 0002 000000020046 00000007 0000002600 3fe0000000000000 00000007")
                 .toHex());
}

void tst_k7e::streamRoundTrip()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QString list = sourceFile("examples/drive.csv");
    const QString out = QStringLiteral("drive.k7e");
    for (const char *form : {"--json", "--full"}) {
        const QString option = QString::fromUtf8(form);
        const Outcome written
            = sandbox.run({QStringLiteral("objects"), list, option, QStringLiteral("--out"), out});
        QCOMPARE(written.errors, QString());
        QCOMPARE(written.status, 0);
        QVERIFY(!written.out.isEmpty());
        const Outcome read = sandbox.run({QStringLiteral("stream"), out, option});
        QCOMPARE(read.errors, QString());
        QCOMPARE(read.status, 0);
        QCOMPARE(read.out, written.out);
    }
    // An earlier file is replaced, and the edits are written.
    const Outcome edited
        = sandbox.run({QStringLiteral("objects"), list, QStringLiteral("--set"),
                       QStringLiteral("Statusword=0x1234"), QStringLiteral("--out"), out});
    QCOMPARE(edited.status, 0);
    const Outcome read = sandbox.run({QStringLiteral("stream"), out});
    QCOMPARE(linesOf(read.out), linesOf(edited.out).mid(0, linesOf(read.out).size()));
    QCOMPARE(linesOf(read.out).size(), linesOf(edited.out).size() - 1);
    QCOMPARE(read.out.count(QLatin1String("  4660  ")), 1);
}

// An edit that changes nothing keeps the bytes behind the end of a text.
void tst_k7e::streamKeepsTails()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QString bytes = QStringLiteral("4100420000004300") + zeros(56);
    sandbox.write(QStringLiteral("a.csv"), "0x1,A,UNIT_STRING32," + bytes.toLatin1());
    QCOMPARE(sandbox.run("objects|a.csv|--set|A=AB|--out|a.k7e").status, 0);
    const QJsonArray objects = jsonOf(sandbox.run("stream|a.k7e|--json").out);
    QCOMPARE(objects.at(0).toObject().value(QStringLiteral("hex")),
             QJsonValue(QLatin1String("0x") + bytes));
}

void tst_k7e::outNotWritten_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("errors");

    const QByteArray good = "0x1,A,UNIT_U8,05\n";
    const QString unchanged = QStringLiteral("A=5");
    QTest::newRow("bad line") << QByteArray(good + "0x2\n") << unchanged << QStringLiteral("old")
                              << QStringLiteral("a.csv:2: field count 1 is not 4: "
                                                "index,name,unit,bytes\n"
                                                "old: not written because of the errors\n");
    QTest::newRow("no such object") << good << QStringLiteral("B=5") << QStringLiteral("old")
                                    << QStringLiteral("cannot set \"B\": no object has that name\n"
                                                      "old: not written because of the errors\n");
    QTest::newRow("no such folder") << good << unchanged << QStringLiteral("none/new")
                                    << QStringLiteral("none/new: No such file or directory\n");
    QTest::newRow("folder") << good << unchanged << QStringLiteral(".")
                            << QStringLiteral(".: not a regular file\n");
    // A pipe of the test's own: a program that replaced it would replace a device as well.
    QTest::newRow("pipe") << good << unchanged << QStringLiteral("pipe")
                          << QStringLiteral("pipe: not a regular file\n");
    QTest::newRow("empty name") << good << unchanged << QString()
                                << QStringLiteral(": No such file or directory\n");
}

void tst_k7e::outNotWritten()
{
    QFETCH(QByteArray, list);
    QFETCH(QString, setting);
    QFETCH(QString, out);
    QFETCH(QString, errors);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), list);
    sandbox.write(QStringLiteral("old"), "old");
    QCOMPARE(mkfifo(QFile::encodeName(sandbox.path(QStringLiteral("pipe"))).constData(), 0600), 0);
    const Outcome outcome
        = sandbox.run({QStringLiteral("objects"), QStringLiteral("a.csv"), QStringLiteral("--set"),
                       setting, QStringLiteral("--out"), out});
    QCOMPARE(outcome.errors, errors);
    QCOMPARE(outcome.status, 1);
    QVERIFY(linesOf(outcome.out).size() >= 2); // the list is shown all the same
    QCOMPARE(sandbox.read(QStringLiteral("old")), QByteArray("old"));
    QCOMPARE(QDir(sandbox.path(QString())).entryList(QDir::Files | QDir::Hidden),
             QStringList({QStringLiteral("a.csv"), QStringLiteral("old")}));
}

void tst_k7e::truncatedStreams()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.csv"), shortList());
    const Outcome whole = sandbox.run("objects|a.csv|--out|a.k7e|--full");
    QCOMPARE(whole.errors, QString());
    const QByteArray stream = sandbox.read(QStringLiteral("a.k7e"));
    const QStringList rows = linesOf(whole.out);

    constexpr int kMagic = 4;
    constexpr int kHeader = 12;
    QVector<int> ends; // of the objects
    int end = kHeader;
    for (const ShortObject &object : kShortObjects) {
        end += 2 + 2 + 4 + 2 * object.nameUnits + 4 + object.contentBytes + 4;
        ends += end;
    }
    QCOMPARE(stream.size(), end);
    QCOMPARE(sandbox.run("stream|a.k7e|--full").out, whole.out);

    for (int length = 0; length < stream.size(); ++length) {
        sandbox.write(QStringLiteral("cut"), stream.left(length));
        const Outcome outcome = sandbox.run("stream|cut|--full");
        QString text;
        int objects = 0;
        if (length < kMagic) {
            text = QStringLiteral("not an object stream");
        } else if (length < kHeader) {
            text = QStringLiteral("ends within the header");
        } else {
            while (ends.at(objects) <= length)
                ++objects;
            text = QStringLiteral("ends within object %1 of 8").arg(objects + 1);
        }
        const QByteArray where = "cut at " + QByteArray::number(length);
        QVERIFY2(outcome.status == 1, where.constData());
        QVERIFY2(outcome.errors == QStringLiteral("cut: %1\n").arg(text),
                 (where + ": " + outcome.errors.toUtf8()).constData());
        // The columns may be narrower; the cells are those of the whole list.
        const QStringList lines = linesOf(outcome.out);
        QVERIFY2(lines.size() == (length < kHeader ? 0 : 1 + objects), where.constData());
        for (int i = 0; i < lines.size(); ++i)
            QVERIFY2(lines.at(i).simplified() == rows.at(i).simplified(), where.constData());
    }
}

void tst_k7e::damagedStreams_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error");
    QTest::addColumn<int>("objects"); // that are shown; -1: not even a table

    const QByteArray header = "4b374f4c 00000001 00000002";
    const QByteArray good = "6041 ffff 000000020053 00000001 0000002500 05 00000001";
    const QByteArray second = "6042 ffff 000000020054";
    const auto add = [](const char *row, const QByteArray &digits, const char *error, int objects) {
        QTest::newRow(row) << bytesOf(digits) << QString::fromUtf8(error) << objects;
    };
    add("other magic", "4b374f4d 00000001 00000000", "not an object stream", -1);
    add("little-endian", "4c4f374b 01000000 00000000", "not an object stream", -1);
    add("format 0", "4b374f4c 00000000 00000000", "format 0 of the object stream is not known", -1);
    add("format 2", "4b374f4c 00000002 00000000", "format 2 of the object stream is not known", -1);
    add("greatest count", "4b374f4c 00000001 ffffffff" + good, "ends within object 2 of 4294967295",
        1);
    add("data behind", "4b374f4c 00000001 00000001" + good + "00",
        "has data behind the last object", 1);
    const auto addSecond = [&](const char *row, const QByteArray &digits,
                               const char *error = "object 2 of 2 is damaged") {
        add(row, header + good + digits, error, 1);
    };
    addSecond("sub-index -2", "6042 fffe 000000020054 00000001 0000002500 05 00000001");
    addSecond("sub-index 256", "6042 0100 000000020054 00000001 0000002500 05 00000001");
    addSecond("unit -1", second + "ffffffff 0000002500 05 00000001");
    addSecond("unit 126", second + "0000007e 0000002500 05 00000001");
    addSecond("unit 126, no type", second + "0000007e 0000000001 00000000");
    addSecond("type of another unit", second + "00000001 0000002100 0005 00000004");
    addSecond("type 21", second + "00000001 0000002500 05 00000015");
    addSecond("type -1", second + "00000001 0000002500 05 ffffffff");
    addSecond("name of odd bytes", "6042 ffff 00000003 005454 00000001 0000002500 05 00000001");
    addSecond("name of 4 GiB", "6042 ffff fffffffe 0054", "ends within object 2 of 2");
    addSecond("bytes of 2 GiB", second + "0000000d 0000000c00 7fffffff 4869",
              "ends within object 2 of 2");
    // Content that claims to be long.
    const char *const ends = "ends within object 2 of 2";
    addSecond("list of 2^31-1", second + "00000001 0000000900 7fffffff", ends);
    addSecond("list of 2^32-1", second + "00000001 0000000900 ffffffff", ends);
    addSecond("map", second + "00000001 0000000800 7fffffff", ends);
    addSecond("strings", second + "00000001 0000000b00 7fffffff", ends);
    addSecond("bits", second + "00000001 0000000d00 7fffffff", ends);
    addSecond("type by the name of a list",
              second + "00000001 0000040000 0000000d 51566172 69616e74 4c697374 00 7fffffff", ends);
    addSecond("type by an unknown name", second + "00000001 0000040000 00000002 5800 05 00000001");
    addSecond("type by a name of 4 GiB", second + "00000001 0000040000 ffffffff 4353");
}

void tst_k7e::damagedStreams()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, error);
    QFETCH(int, objects);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.k7e"), bytes);
    const Outcome outcome = sandbox.run("stream|a.k7e");
    QCOMPARE(outcome.errors, QStringLiteral("a.k7e: %1\n").arg(error));
    QCOMPARE(outcome.status, 1);
    QStringList expected{
        QStringLiteral("INDEX   NAME  UNIT     TYPE  BYTES  VALUE  HEX   BITS"),
        QStringLiteral("0x6041  S     UNIT_U8  U8        1  5      0x05  0000 0101")};
    QCOMPARE(linesOf(outcome.out), expected.mid(0, objects + 1));
}

void tst_k7e::units_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("names");

    const auto add = [](const char *pattern, const char *names) {
        QTest::newRow(pattern) << QString::fromUtf8(pattern) << QString::fromUtf8(names);
    };
    add("INC",
        "S_INC_32x32 V_INC_PER_SAMPLE_32x32 A_INC_PER_SAMPLE2_32x32 "
        "JERK_INC_PER_SAMPLE3_32x32");
    add("volt_", "Volt_per_Ampere Volt_per_krpm");
    add("UNIT_U8", "U8");
    add("*henry", "L_1uHenry uHenry mHenry");
    add("henry*", "");
    add("unit_?", "A V W P J");
    add("UNIT_[uU]64", "U64");
    add("UNIT_U.", "");
    add("zzz", "");
    add("(", "");
    add("[", "");
    add("\\", "");
    add("unit_8[5-8]", "85 86 87 88");
}

void tst_k7e::units()
{
    QFETCH(QString, pattern);
    QFETCH(QString, names);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run({QStringLiteral("units"), pattern});
    QStringList found;
    for (const QString &line : linesOf(outcome.out).mid(1)) {
        const QString name = line.simplified().section(QLatin1Char(' '), 1, 1);
        QVERIFY(name.startsWith(QLatin1String("UNIT_")));
        found += name.mid(5);
    }
    QCOMPARE(found.join(QLatin1Char(' ')), names);
    QCOMPARE(outcome.status, names.isEmpty() ? 1 : 0);
    QCOMPARE(outcome.errors,
             names.isEmpty()
                 ? QStringLiteral("no unit matches \"%1\"\n")
                       .arg(QString(pattern).replace(QLatin1String("\\"), QLatin1String("\\\\")))
                 : QString());
}

void tst_k7e::unitsTable()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run("units");
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    const QStringList lines = linesOf(outcome.out);
    QCOMPARE(lines.size(), 1 + 126);
    // The longest name, UNIT_JERK_INC_PER_SAMPLE3_32x32, has 31 characters.
    QCOMPARE(lines.at(0),
             QStringLiteral("CODE  NAME                             TYPE        BYTES"));
    QCOMPARE(lines.at(1),
             QStringLiteral("   0  UNIT_UNKNOWN                     UNKNOWN         0"));
    QCOMPARE(lines.at(12),
             QStringLiteral("  11  UNIT_F80                         UNKNOWN        10"));
    QCOMPARE(lines.at(16),
             QStringLiteral("  15  UNIT_CHARSTR256                  CHARSTR256    256"));
    QCOMPARE(lines.at(68),
             QStringLiteral("  67  UNIT_JERK_INC_PER_SAMPLE3_32x32  I64             8"));
    QCOMPARE(lines.at(81),
             QStringLiteral("  80  UNIT_DATE_TIME                   DATETIME        8"));
    QCOMPARE(lines.at(126),
             QStringLiteral(" 125  UNIT_J                           F64             8"));
}

void tst_k7e::types()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run("types");
    QCOMPARE(outcome.out,
             QStringLiteral("CODE  NAME        BYTES\n"
                            "   0  UNKNOWN         0\n"
                            "   1  U8              1\n"
                            "   2  I8              1\n"
                            "   3  U16             2\n"
                            "   4  I16             2\n"
                            "   5  U32             4\n"
                            "   6  I32             4\n"
                            "   7  F32             4\n"
                            "   8  U64             8\n"
                            "   9  I64             8\n"
                            "  10  F64             8\n"
                            "  11  F80            10\n"
                            "  12  STRING32       64\n"
                            "  13  CHARSTR64      64\n"
                            "  14  STRING128     256\n"
                            "  15  CHARSTR256    256\n"
                            "  16  DATETIME        8\n"
                            "  17  STRING64      128\n"
                            "  18  CHARSTR128    128\n"
                            "  19  UTF16CHAR       2\n"
                            "  20  CHAR            1\n"));
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
}

void tst_k7e::value_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("errors");

    const auto add = [](const char *words, const QString &out) {
        QTest::newRow(rowName(words).constData()) << QString::fromUtf8(words) << out << QString();
    };
    const auto addError = [](const char *words, const char *type) {
        QTest::newRow(rowName(words).constData())
            << QString::fromUtf8(words) << QString()
            << QStringLiteral("no value can have the type \"%1\", see \"k7e types\"\n")
                   .arg(QString::fromUtf8(type));
    };
    const QString minusFive = QStringLiteral("type    I16\n"
                                             "text    -5\n"
                                             "hex     0x-005\n"
                                             "bits    1111 1111 1111 1011\n"
                                             "stream  0000002100fffb00000004\n");
    add("I16|-5", minusFive);
    add("I16|--|-5", minusFive);
    add("--|I16|-5", minusFive);
    add("U8|300",
        QStringLiteral("type    U8\n"
                       "text    44\n"
                       "hex     0x2c\n"
                       "bits    0010 1100\n"
                       "stream  00000025002c00000001\n"));
    add("U16|010",
        QStringLiteral("type    U16\n"
                       "text    8\n"
                       "hex     0x0008\n"
                       "bits    0000 0000 0000 1000\n"
                       "stream  0000002400000800000003\n"));
    add("I32|",
        QStringLiteral("type    I32\n"
                       "text    0\n"
                       "hex     0x00000000\n"
                       "bits    0000 0000 0000 0000 0000 0000 0000 0000\n"
                       "stream  00000002000000000000000006\n"));
    add("F32|-0.5",
        QStringLiteral("type    F32\n"
                       "text    -0.5\n"
                       "stream  0000002600bfe000000000000000000007\n"));
    add("CHARSTR64|--help",
        QStringLiteral("type    CHARSTR64\n"
                       "text    --help\n"
                       "hex     0x2d2d68656c70\n"
                       "stream  0000000c00000000062d2d68656c700000000d\n"));
    add("CHAR|\n",
        QStringLiteral("type    CHAR\n"
                       "text    \\n\n"
                       "hex     0x0a\n"
                       "stream  0000000c00000000010a00000014\n"));
    add("UTF16CHAR|\xce\xa9",
        QStringLiteral("type    UTF16CHAR\n"
                       "text    \u03a9\n"
                       "hex     0x03a9\n"
                       "stream  000000070003a900000013\n"));
    add("DATETIME|2014-03-05T10:20:30",
        QStringLiteral("type    DATETIME\n"
                       "text    2014-03-05T10:20:30\n"
                       "hex     0x7de03050a141e00\n"
                       "stream  0000040000000000134e54797065733a3a74734461746554696d6500"
                       "001e140a050307de00000010\n"));
    add("STRING32|A",
        QStringLiteral("type    STRING32\n"
                       "text    A\n"
                       "hex     0x4100%1\n"
                       "stream  00000400000000000a43537472696e67333200" // CString32
                       "0041%1%2\n")
            .arg(zeros(62), QStringLiteral("0000000c")));
    addError("F80|1", "F80");
    addError("UNKNOWN|1", "UNKNOWN");
    addError("u8|1", "u8");
    addError("UNIT_U8|1", "UNIT_U8");
    addError("|1", "");
}

void tst_k7e::value()
{
    QFETCH(QString, words);
    QFETCH(QString, out);
    QFETCH(QString, errors);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome
        = sandbox.run(QStringList{QStringLiteral("value")} + words.split(QLatin1Char('|')));
    QCOMPARE(outcome.out, out);
    QCOMPARE(outcome.errors, errors);
    QCOMPARE(outcome.status, errors.isEmpty() ? 0 : 1);
}

void tst_k7e::number_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("errors");
    QTest::addColumn<int>("status");
    const auto add = [](const char *words, const char *format, const char *what) {
        QTest::newRow(words)
            << QString::fromLatin1(words)
            << QStringLiteral("format  0x%1\n%2\n").arg(QLatin1String(format), QLatin1String(what))
            << QString() << 0;
    };
    const auto addError = [](const char *words, const char *error, int status) {
        QTest::newRow(words) << QString::fromLatin1(words) << QString()
                             << QString::fromLatin1(error) << status;
    };
    add("write|--decimals|2|--width|7|1234", "01000702", "text    \"  12.34\"");
    add("write|--decimals|2|--width|7|--|-1234", "01000702", "text    \" -12.-34\"");
    add("write|--notation|hex|--type|i8|--|-128", "02000000", "text    \"80\"");
    add("write|--notation|dual|--type|U8|170", "03000000", "text    \"1010.1010\"");
    add("write|--notation|float|--type|f64|--decimals|3|2.5", "00000003", "text    \"2.500\"");
    add("write|--shift|2|40", "01020000", "text    \"10\"");
    add("write|--shift|-1|--width|-4|40", "01fffc00", "text    \"80  \"");
    add("read|1.000.000", "01000000", "number  1000000");
    add("read|--type|I8|300", "01000000", "number  44");
    add("read|--factor|0.5|--|-7", "01000000", "number  -3");
    add("read|--notation|HEX|--decimals|4|--width|8|--type|U32|1234:5678", "02000804",
        "number  305419896");
    addError("read|x", "\"x\" is no I64 in this format\n", 1);
    addError("write|--type|U8|256", "\"256\" is no U8, or has no text in this notation\n", 1);
    addError("write|--type|F64|--notation|hex|1",
             "\"1\" is no F64, or has no text in this notation\n", 1);
    addError("read|--width|128|1",
             "k7e number read: \"128\" is no value for --width\n"
             "Try \"k7e number read --help\".\n",
             2);
    addError("read|--type|F80|1",
             "k7e number read: \"F80\" is no value for --type\n"
             "Try \"k7e number read --help\".\n",
             2);
    addError("write|--notation|oct|1",
             "k7e number write: \"oct\" is no value for --notation\n"
             "Try \"k7e number write --help\".\n",
             2);
    addError("read|--factor|x|1",
             "k7e number read: \"x\" is no value for --factor\n"
             "Try \"k7e number read --help\".\n",
             2);
    addError("show",
             "k7e number: \"show\" is neither read nor write\n"
             "Try \"k7e number --help\".\n",
             2);
}

void tst_k7e::number()
{
    runRow(QStringLiteral("number"));
}

void tst_k7e::time_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("errors");
    QTest::addColumn<int>("status");
    QTest::newRow("90 min") << QStringLiteral("90|min|s|h")
                            << QStringLiteral("UNIT  COUNT  VALUE\n"
                                              "s      5400   5400\n"
                                              "h         2    1.5\n")
                            << QString() << 0;
    QTest::newRow("all units") << QStringLiteral("1500|\u00b5s")
                               << QStringLiteral("UNIT       COUNT                 VALUE\n"
                                                 "ps    1500000000            1500000000\n"
                                                 "ns       1500000               1500000\n"
                                                 "\u00b5s          1500                  1500\n"
                                                 "ms             2                   1.5\n"
                                                 "s              0                0.0015\n"
                                                 "min            0               2.5e-05\n"
                                                 "h              0  4.16666666666667e-07\n")
                               << QString() << 0;
    QTest::newRow("a fraction") << QStringLiteral("1.5|s|ms")
                                << QStringLiteral("UNIT  COUNT  VALUE\n"
                                                  "ms     1500   1500\n"
                                                  "cut 1 s, then whole\n")
                                << QString() << 0;
    QTest::newRow("unknown target") << QStringLiteral("1|s|ms|sec")
                                    << QStringLiteral("UNIT  COUNT  VALUE\n"
                                                      "ms     1000   1000\n")
                                    << QStringLiteral("unknown unit \"sec\"\n") << 1;
    QTest::newRow("unknown unit") << QStringLiteral("1|us") << QString()
                                  << QStringLiteral("unknown unit \"us\"\n") << 1;
    QTest::newRow("no number") << QStringLiteral("x|s") << QString()
                               << QStringLiteral("\"x\" is no number\n") << 1;
}

void tst_k7e::time()
{
    runRow(QStringLiteral("time"));
}

QTEST_GUILESS_MAIN(tst_k7e)

#include "tst_k7e.moc"
