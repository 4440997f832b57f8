#include "Sandbox.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

// Drives the commands of the program that show identifiers, devices and codes. Expected texts were
// worked out by hand; the codes come from another implementation of HMAC-SHA1. The library is not
// linked.

namespace {

void addColumns()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("errors");
    QTest::addColumn<int>("status");
}

void addRow(const char *words, const char *out)
{
    QTest::newRow(words) << QString::fromUtf8(words) << QString::fromUtf8(out) << QString() << 0;
}

void addError(const char *words, const char *errors, int status = 1)
{
    QTest::newRow(words) << QString::fromUtf8(words) << QString() << QString::fromUtf8(errors)
                         << status;
}

// A key and a step that has not ended since 1970 and will not until 2106.
constexpr char kKey[] = "k";
constexpr char kLongStep[] = "4294967295";
// The code of the message of eight zero bytes under the key.
constexpr char kCode9[] = "429996320";

QByteArray exampleBytes()
{
    QFile file(sourceFile("examples/devices.k7e"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_k7eIdentity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void help_data();
    void help();
    void id_data();
    void id();
    void motor_data();
    void motor();
    void ipv6_data();
    void ipv6();
    void tree();
    void json();
    void emptyList();
    void damagedLists_data();
    void damagedLists();
    void truncatedLists();
    void code_data();
    void code();
    void codeChecks_data();
    void codeChecks();
    void hexKey_data();
    void hexKey();
    void codeErrors_data();
    void codeErrors();
};

void tst_k7eIdentity::help_data()
{
    QTest::addColumn<QString>("usage");
    for (const char *usage : {"id [options] TEXT", "motor [options] TEXT", "ipv6 [options] TEXT",
                              "devices [options] FILE", "otp [options] KEYFILE"})
        QTest::newRow(usage) << QString::fromUtf8(usage);
}

void tst_k7eIdentity::help()
{
    QFETCH(QString, usage);
    const QString command = usage.section(QLatin1Char(' '), 0, 0);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome all = sandbox.run("--help");
    QVERIFY(all.out.contains(QLatin1String("\n  ") + command + QLatin1Char(' ')));
    const Outcome own = sandbox.run({command, QStringLiteral("--help")});
    QCOMPARE(own.status, 0);
    QCOMPARE(own.errors, QString());
    QCOMPARE(own.out.section(QLatin1Char('\n'), 0, 0), QLatin1String("Usage: k7e ") + usage);
    const Outcome none = sandbox.run(QStringList{command});
    QCOMPARE(none.status, 2);
    QCOMPARE(none.out, QString());
    QCOMPARE(none.errors,
             QStringLiteral("k7e %1: %2 is missing\nTry \"k7e %1 --help\".\n")
                 .arg(command, usage.section(QLatin1Char(' '), -1)));
}

void tst_k7eIdentity::id_data()
{
    addColumns();
    addRow("P001_002_003_Drive_A",
           "PART      TEXT\n"
           "prefix    P\n"
           "platform  001\n"
           "version   002\n"
           "revision  003\n"
           "name      Drive_A\n"
           "minimum   P001_Drive_A\n"
           "short     P001_002_Drive_A\n"
           "full      P001_002_003_Drive_A\n"
           "has form  minimum, short, full\n");
    addRow("7_12_Servo",
           "PART      TEXT\n"
           "prefix\n"
           "platform  007\n"
           "version   012\n"
           "revision\n"
           "name      Servo\n"
           "minimum   007_Servo\n"
           "short     007_012_Servo\n"
           "full\n"
           "has form\n");
    addRow("K005_N-1",
           "PART      TEXT\n"
           "prefix    K\n"
           "platform  005\n"
           "version\n"
           "revision\n"
           "name      N-1\n"
           "minimum   K005_N-1\n"
           "short\n"
           "full\n"
           "has form\n");
    addRow("001_2\n",
           "PART      TEXT\n"
           "prefix\n"
           "platform  001\n"
           "version\n"
           "revision\n"
           "name      2\\n\n"
           "minimum   001_2\\n\n"
           "short\n"
           "full\n"
           "has form\n");
    addError("AB001", "\"AB001\" is no hardware identifier\n");
    addError("_001", "\"_001\" is no hardware identifier\n");
    addError("", "\"\" is no hardware identifier\n");
}

void tst_k7eIdentity::id()
{
    runRow(QStringLiteral("id"));
}

void tst_k7eIdentity::motor_data()
{
    addColumns();
    addRow("data/MFR_M-100_12",
           "PART          TEXT\n"
           "manufacturer  MFR\n"
           "name          M-100\n"
           "number        12\n"
           "base name     MFR_M-100_12\n");
    addRow("--numeric|A&B_c+d_7",
           "PART          TEXT\n"
           "manufacturer  A&B\n"
           "name          c+d\n"
           "number        7\n"
           "base name     A&B_c+d_7\n");
    addError("--numeric|MFR_M1_12", "\"MFR_M1_12\" has a part that cannot be set\n");
    addError("--numeric|MFR_M1_X", "\"MFR_M1_X\" is no motor base name\n");
    addError("MFR_M1_7.par", "\"MFR_M1_7.par\" is no motor base name\n");
    addError("", "\"\" is no motor base name\n");
}

void tst_k7eIdentity::motor()
{
    runRow(QStringLiteral("motor"));
}

void tst_k7eIdentity::ipv6_data()
{
    addColumns();
    addRow("FE80:0:0:0:0:0:1234:1",
           "FORM   ADDRESS\n"
           "text   fe80:0:0:0:0:0:1234:1\n"
           "bytes  80 fe 00 00 00 00 00 00 00 00 00 00 34 12 01 00\n");
    addRow("1:::::::8",
           "FORM   ADDRESS\n"
           "text   1:0:0:0:0:0:0:8\n"
           "bytes  01 00 00 00 00 00 00 00 00 00 00 00 00 00 08 00\n");
    addError("::1", "\"::1\" has 3 groups, and only an address of 8 is taken\n");
    addError(":1:2:3:4:5:6:7:8", "\":1:2:3:4:5:6:7:8\" is no IPv6 address\n");
    addError("::2:3:4:5:6:7:8",
             "\"::2:3:4:5:6:7:8\" has 9 groups, and only an address of 8 is taken\n");
    addError("fe80::1%eth0", "\"fe80::1%eth0\" is no IPv6 address\n");
    addError("", "\"\" is no IPv6 address\n");
}

void tst_k7eIdentity::ipv6()
{
    runRow(QStringLiteral("ipv6"));
}

void tst_k7eIdentity::tree()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome
        = sandbox.run({QStringLiteral("devices"), sourceFile("examples/devices.k7e")});
    QCOMPARE(outcome.out,
             QString::fromUtf8(
                 "\"Paper mill, Z\u00fcrich\", source type 2, 5 devices\n"
                 "  1 \"Unwinder\", at 192.0.2.11:502, address type 1, configuration setup, number "
                 "B 7\n"
                 "    1 \"Series K7 Sub-Device\"\n"
                 "    2 \"Encoder\"\n"
                 "    200 \"Brake \u00b5-module\"\n"
                 "  7 \"Press, upper axis\", at 192.0.2.17:65535, address type 1, server Halle 4, "
                 "configuration production, text bearing noisy\\tcheck, flag A, number A -3, "
                 "number B 1\n"
                 "  7 \"Press, lower axis\", at 192.0.2.18:502, address type 1, flag B, number A "
                 "2147483647, number B -2147483648\n"
                 "  4000000000 \"Winder\", at [fe80::1%eth0]:8080, address type 2, configuration "
                 "failsafe, number B 1\n"
                 "    0 \"\", own key 9\n"
                 "  4294967295 \"\", not valid\n"));
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
}

void tst_k7eIdentity::json()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run(
        {QStringLiteral("devices"), QStringLiteral("--json"), sourceFile("examples/devices.k7e")});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    const QJsonObject list = QJsonDocument::fromJson(outcome.out.toUtf8()).object();
    QCOMPARE(list.keys().join(QLatin1Char(' ')), QStringLiteral("devices name sourceType"));
    QCOMPARE(list.value(QStringLiteral("name")).toString(),
             QStringLiteral("Paper mill, Z\u00fcrich"));
    QCOMPARE(list.value(QStringLiteral("sourceType")).toInt(), 2);
    const QJsonArray devices = list.value(QStringLiteral("devices")).toArray();
    QCOMPARE(devices.size(), 5);
    const QJsonObject winder{{QStringLiteral("key"), 4000000000.0},
                             {QStringLiteral("ownKey"), 4000000000.0},
                             {QStringLiteral("name"), QStringLiteral("Winder")},
                             {QStringLiteral("hostAddrType"), 2},
                             {QStringLiteral("hostAddress"), QStringLiteral("fe80::1%eth0")},
                             {QStringLiteral("port"), 8080},
                             {QStringLiteral("serverName"), QString()},
                             {QStringLiteral("auxText"), QString()},
                             {QStringLiteral("configuration"), QStringLiteral("failsafe")},
                             {QStringLiteral("auxFlagA"), false},
                             {QStringLiteral("auxFlagB"), false},
                             {QStringLiteral("auxNumberA"), 0},
                             {QStringLiteral("auxNumberB"), 1},
                             {QStringLiteral("valid"), true},
                             {QStringLiteral("subDevices"),
                              QJsonArray{QJsonObject{{QStringLiteral("key"), 0},
                                                     {QStringLiteral("ownKey"), 9},
                                                     {QStringLiteral("name"), QString()}}}}};
    QCOMPARE(devices.at(3).toObject(), winder);
    const QJsonObject press = devices.at(1).toObject();
    QCOMPARE(press.value(QStringLiteral("auxText")).toString(),
             QStringLiteral("bearing noisy\tcheck"));
    QCOMPARE(press.value(QStringLiteral("auxFlagA")).toBool(), true);
    QCOMPARE(press.value(QStringLiteral("serverName")).toString(), QStringLiteral("Halle 4"));
    QCOMPARE(devices.at(4).toObject().value(QStringLiteral("valid")).toBool(true), false);
    QCOMPARE(devices.at(2).toObject().value(QStringLiteral("auxNumberB")).toDouble(),
             -2147483648.0);
}

void tst_k7eIdentity::emptyList()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.k7e"), QByteArray::fromHex("ffffffff0000000000000000"));
    const Outcome tree = sandbox.run("devices|a.k7e");
    QCOMPARE(tree.out, QStringLiteral("\"\", 0 devices\n"));
    QCOMPARE(tree.errors, QString());
    QCOMPARE(tree.status, 0);
    const Outcome json = sandbox.run("devices|a.k7e|--json");
    QCOMPARE(QJsonDocument::fromJson(json.out.toUtf8()).object().value(QStringLiteral("devices")),
             QJsonValue(QJsonArray()));
    QCOMPARE(json.status, 0);
}

void tst_k7eIdentity::damagedLists_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error");
    const auto add = [](const char *row, const char *digits, const char *error) {
        QTest::newRow(row) << QByteArray::fromHex(digits) << QString::fromUtf8(error);
    };
    add("nothing", "", "ends within the device list");
    add("greatest count", "ffffffff 00000000 ffffffff", "ends within the device list");
    add("name of odd bytes", "00000003 005454 00000000 00000000", "is no device list, or damaged");
    add("data behind", "ffffffff 00000000 00000000 00", "has data behind the device list");
    add("address of protocol 7",
        "ffffffff 00000000 00000001 00000001 00000001 ffffffff 00000000 07 0000 ffffffff ffffffff "
        "ffffffff 00 00 00000000 00000000 00000000",
        "is no device list, or damaged");
}

void tst_k7eIdentity::damagedLists()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, error);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.k7e"), bytes);
    const Outcome outcome = sandbox.run("devices|a.k7e");
    QCOMPARE(outcome.errors, QStringLiteral("a.k7e: %1\n").arg(error));
    QCOMPARE(outcome.out, QString());
    QCOMPARE(outcome.status, 1);
}

void tst_k7eIdentity::truncatedLists()
{
    const QByteArray bytes = exampleBytes();
    QVERIFY(bytes.size() > 600);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    for (int size = 0; size < bytes.size(); size += 7) {
        sandbox.write(QStringLiteral("a.k7e"), bytes.left(size));
        const Outcome outcome = sandbox.run("devices|a.k7e");
        const QByteArray where = QByteArray::number(size);
        QVERIFY2(outcome.errors == QLatin1String("a.k7e: ends within the device list\n"),
                 where.constData());
        QVERIFY2(outcome.out.isEmpty() && outcome.status == 1, where.constData());
    }
}

void tst_k7eIdentity::code_data()
{
    QTest::addColumn<int>("digits");
    for (int digits = 1; digits <= 9; ++digits)
        QTest::addRow("%d digits", digits) << digits;
}

void tst_k7eIdentity::code()
{
    QFETCH(int, digits);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("key"), kKey);
    const Outcome outcome = sandbox.run({QStringLiteral("otp"), QStringLiteral("key"),
                                         QStringLiteral("--step"), QLatin1String(kLongStep),
                                         QStringLiteral("--digits"), QString::number(digits)});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.out, QString(QLatin1String(kCode9)).right(digits) + QLatin1Char('\n'));
    QCOMPARE(outcome.status, 0);
}

void tst_k7eIdentity::codeChecks_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("errors");
    const auto add = [](const char *row, const char *code, const char *out, const char *errors) {
        QTest::newRow(row) << QString::fromUtf8(code) << QString::fromUtf8(out)
                           << QString::fromUtf8(errors);
    };
    add("right", "996320", "accepted\n", "");
    add("wrong", "996321", "", "\"996321\" is not accepted\n");
    add("five digits", "96320", "", "\"96320\" does not have 6 digits\n");
    add("no digits", "\t", "", "\"\\t\" does not have 6 digits\n");
}

void tst_k7eIdentity::codeChecks()
{
    QFETCH(QString, code);
    QFETCH(QString, out);
    QFETCH(QString, errors);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("key"), kKey);
    const Outcome outcome
        = sandbox.run({QStringLiteral("otp"), QStringLiteral("--check"), code,
                       QStringLiteral("--step"), QLatin1String(kLongStep),
                       QStringLiteral("--window"), QStringLiteral("0"), QStringLiteral("key")});
    QCOMPARE(outcome.errors, errors);
    QCOMPARE(outcome.out, out);
    QCOMPARE(outcome.status, errors.isEmpty() ? 0 : 1);
}

void tst_k7eIdentity::hexKey_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isKey");
    QTest::newRow("digits") << QByteArray("6b") << true;
    QTest::newRow("blanks and line ends") << QByteArray(" 6\r\n B\n") << true;
    QTest::newRow("odd") << QByteArray("6b6") << false;
    QTest::newRow("no digit") << QByteArray("6g") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void tst_k7eIdentity::hexKey()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isKey);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("key"), content);
    const Outcome outcome
        = sandbox.run({QStringLiteral("otp"), QStringLiteral("--hex"), QStringLiteral("key"),
                       QStringLiteral("--step"), QLatin1String(kLongStep)});
    QCOMPARE(outcome.out, isKey ? QStringLiteral("996320\n") : QString());
    QCOMPARE(outcome.errors,
             isKey ? QString() : QStringLiteral("key: holds no hexadecimal digits\n"));
    QCOMPARE(outcome.status, isKey ? 0 : 1);
}

void tst_k7eIdentity::codeErrors_data()
{
    addColumns();
    const auto add = [](const char *option, const char *value) {
        QTest::addRow("--%s %s", option, value)
            << QStringLiteral("key|--%1|%2").arg(QLatin1String(option), QLatin1String(value))
            << QString()
            << QStringLiteral("k7e otp: \"%1\" is no value for --%2\nTry \"k7e otp --help\".\n")
                   .arg(QLatin1String(value), QLatin1String(option))
            << 2;
    };
    add("digits", "0");
    add("digits", "10");
    add("digits", "x");
    add("step", "0");
    add("step", "4294967296");
    add("start", "18446744073709551616");
    add("window", "100001");
    add("window", "x");
}

void tst_k7eIdentity::codeErrors()
{
    runRow(QStringLiteral("otp"));
}

QTEST_GUILESS_MAIN(tst_k7eIdentity)

#include "tst_k7eIdentity.moc"
