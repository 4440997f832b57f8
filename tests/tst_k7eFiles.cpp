#include "Sandbox.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtTest>

#include <sys/stat.h>

// Drives the commands of the program that handle files. Expected texts were worked out by hand. The
// library is not linked.

namespace {

QString utf8(const char *text)
{
    return QString::fromUtf8(text);
}

// What a run is to give.
void verify(const Outcome &outcome, const QString &out, const QString &errors, int status)
{
    QCOMPARE(outcome.out, out);
    QCOMPARE(outcome.errors, errors);
    QCOMPARE(outcome.status, status);
}

// A member of an archive: a header with name, size, type and magic, and the data.
QByteArray member(const QByteArray &name, const QByteArray &data, char type = '0',
                  const QByteArray &size = QByteArray())
{
    QByteArray header(512, '\0');
    const QByteArray digits = QByteArray::number(data.size(), 8).rightJustified(11, '0');
    header.replace(0, name.size(), name);
    header.replace(124, 11, size.isNull() ? digits : size.leftJustified(11, '\0'));
    header[156] = type;
    header.replace(257, 5, "ustar");
    return header + data.leftJustified((data.size() + 511) / 512 * 512, '\0');
}

const QByteArray kEnd(1024, '\0');

QString sample(const char *name)
{
    return sourceFile("tests/data/tar/") + QLatin1String(name);
}

// Runs the program and returns its standard output as it is.
QByteArray rawOutput(const Sandbox &sandbox, const QStringList &arguments, Outcome &outcome)
{
    const QString file = sandbox.path(QStringLiteral("raw output"));
    outcome
        = sandbox.run(arguments, [&](QProcess &process) { process.setStandardOutputFile(file); });
    return sandbox.read(QStringLiteral("raw output"));
}

// A copy of the program in the folder suite/bin/ of the sandbox, where it finds its installation.
class Installation
{
public:
    Installation()
    {
        QDir(mSandbox.path(QString())).mkpath(QStringLiteral("suite/bin"));
        mIsValid = mSandbox.isValid() && QFile::copy(QStringLiteral(K7E_PROGRAM), program());
    }

    bool isValid() const { return mIsValid; }
    const Sandbox &sandbox() const { return mSandbox; }
    // With "/" at its end, and without symbolic links.
    QString root() const
    {
        return QFileInfo(mSandbox.path(QStringLiteral("suite"))).canonicalFilePath()
            + QLatin1Char('/');
    }
    bool has(const char *name) const { return QFileInfo(root() + QLatin1String(name)).isDir(); }

    Outcome run(const QStringList &arguments) const
    {
        QProcess process;
        process.setWorkingDirectory(mSandbox.path(QString()));
        process.start(program(), arguments);
        Outcome outcome;
        if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
            outcome.status = process.exitCode();
        outcome.out = QString::fromUtf8(process.readAllStandardOutput());
        outcome.errors = QString::fromUtf8(process.readAllStandardError());
        return outcome;
    }

private:
    QString program() const { return mSandbox.path(QStringLiteral("suite/bin/k7e")); }

    Sandbox mSandbox;
    bool mIsValid = false;
};

// Sets where the program finds the user's trash.
std::function<void(QProcess &)> userAt(const QString &home, const QString &dataHome = QString())
{
    return [=](QProcess &process) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home);
        environment.remove(QStringLiteral("XDG_DATA_HOME"));
        if (!dataHome.isNull())
            environment.insert(QStringLiteral("XDG_DATA_HOME"), dataHome);
        process.setProcessEnvironment(environment);
    };
}

bool makeTrash(const Sandbox &sandbox, const QString &trash)
{
    const QDir root(sandbox.path(QString()));
    return root.mkpath(trash + QStringLiteral("/info"))
        && root.mkpath(trash + QStringLiteral("/files"));
}

QStringList entries(const Sandbox &sandbox, const char *folder)
{
    return QDir(sandbox.path(QLatin1String(folder)))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::Name);
}

} // namespace

class tst_k7eFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void help_data();
    void help();
    void version();
    void usageErrors_data();
    void usageErrors();
    void tarList();
    void tarListOfFormats_data();
    void tarListOfFormats();
    void tarListOfMade_data();
    void tarListOfMade();
    void unreadableArchives_data();
    void unreadableArchives();
    void tarCat_data();
    void tarCat();
    void tarCatOfSample();
    void tarCatOfAllBytes();
    void tarCatToFullDevice();
    void paths();
    void company();
    void companyOfFile();
    void products_data();
    void products();
    void productsOfFile();
    void entrypoint_data();
    void entrypoint();
    void entrypointErrors_data();
    void entrypointErrors();
    void trash_data();
    void trash();
    void trashTwice();
    void trashFailures();
    void copyFile();
    void copyFileFailures();
    void copyTree();
    void copyTreeIntoItself();
    void copyTreeFailures();
};

void tst_k7eFiles::help_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("usage");
    QTest::addColumn<QString>("text");
    const auto add = [](const char *words, const char *usage, const char *text) {
        QTest::newRow(words) << utf8(words) << utf8(usage) << utf8(text);
    };
    add("tar", "tar [options] list|cat [ARGUMENT...]", "  cat   writes the data of members\n");
    add("tar|list", "tar list [options] FILE", "Shows the members of a tar archive.\n");
    add("tar|cat", "tar cat [options] FILE NAME [NAME...]",
        "Writes the data of members of a tar archive.\n");
    add("paths", "paths [options]", "Nothing is made.\n");
    add("company", "company [options] [ID]", "Makes the directories");
    add("entrypoint", "entrypoint [options] PATH", "such as /tmp/trace.csv");
    add("trash", "trash [options] PATH", "Moves a file or a directory into your trash.\n");
    add("copy", "copy [options] SOURCE TARGET", "not overwritten.\n");
}

void tst_k7eFiles::help()
{
    QFETCH(QString, words);
    QFETCH(QString, usage);
    QFETCH(QString, text);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QStringList command = words.split(QLatin1Char('|'));
    const Outcome all = sandbox.run("--help");
    QVERIFY(all.out.contains(QLatin1String("\n  ") + command.first() + QLatin1Char(' ')));
    for (const char *option : {"--help", "-h"}) {
        const Outcome own = sandbox.run(command + QStringList{QLatin1String(option)});
        QCOMPARE(own.status, 0);
        QCOMPARE(own.errors, QString());
        QCOMPARE(own.out.section(QLatin1Char('\n'), 0, 0), QLatin1String("Usage: k7e ") + usage);
        QVERIFY(own.out.contains(text));
    }
}

void tst_k7eFiles::version()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QString text = sandbox.run("--version").out;
    QVERIFY(text.startsWith(QLatin1String("k7e ")));
    for (const char *words :
         {"tar|--version", "tar|list|--version", "tar|cat|-v", "paths|--version", "company|-v",
          "entrypoint|-v", "trash|-v", "copy|--version"})
        verify(sandbox.run(words), text, QString(), 0);
}

void tst_k7eFiles::usageErrors_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("error");
    const auto add = [](const char *words, const char *program, const char *error) {
        QTest::newRow(words) << utf8(words) << utf8(program) << utf8(error);
    };
    add("tar", "k7e tar", "list|cat is missing");
    add("tar|show|a.tar", "k7e tar", "\"show\" is neither list nor cat");
    add("tar|List|a.tar", "k7e tar", "\"List\" is neither list nor cat");
    add("tar||a.tar", "k7e tar", "\"\" is neither list nor cat");
    add("tar|a\nb", "k7e tar", "\"a\\nb\" is neither list nor cat");
    add("tar|--all|list", "k7e tar", "Unknown option 'all'.");
    add("tar|list", "k7e tar list", "FILE is missing");
    add("tar|list|a.tar|b", "k7e tar list", "unexpected argument \"b\"");
    add("tar|list|--all|a.tar", "k7e tar list", "Unknown option 'all'.");
    add("tar|cat", "k7e tar cat", "FILE is missing");
    add("tar|cat|a.tar", "k7e tar cat", "NAME is missing");
    add("tar|cat|a.tar|-x", "k7e tar cat", "Unknown option 'x'.");
    add("paths|a", "k7e paths", "unexpected argument \"a\"");
    add("paths|--make", "k7e paths", "Unknown option 'make'.");
    add("company|101|102", "k7e company", "unexpected argument \"102\"");
    add("company|x", "k7e company", "\"x\" is no product id");
    add("company|", "k7e company", "\"\" is no product id");
    add("company|101.5", "k7e company", "\"101.5\" is no product id");
    add("company|0x65", "k7e company", "\"0x65\" is no product id");
    add("company|2147483648", "k7e company", "\"2147483648\" is no product id");
    add("company|4294967397", "k7e company", "\"4294967397\" is no product id");
    add("company|-3", "k7e company", "Unknown option '3'.");
    add("entrypoint", "k7e entrypoint", "PATH is missing");
    add("entrypoint|/a|/b", "k7e entrypoint", "unexpected argument \"/b\"");
    add("trash", "k7e trash", "PATH is missing");
    add("trash|a|b", "k7e trash", "unexpected argument \"b\"");
    add("trash|--all|a", "k7e trash", "Unknown option 'all'.");
    add("copy", "k7e copy", "SOURCE is missing");
    add("copy|a", "k7e copy", "TARGET is missing");
    add("copy|a|b|c", "k7e copy", "unexpected argument \"c\"");
    add("copy|-r|a|b", "k7e copy", "Unknown option 'r'.");
}

void tst_k7eFiles::usageErrors()
{
    QFETCH(QString, words);
    QFETCH(QString, program);
    QFETCH(QString, error);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a"), "content");
    verify(sandbox.run(words.split(QLatin1Char('|'))), QString(),
           QStringLiteral("%1: %2\nTry \"%1 --help\".\n").arg(program, error), 2);
    QCOMPARE(sandbox.read(QStringLiteral("a")), QByteArray("content"));
    QCOMPARE(entries(sandbox, ""), QStringList{QStringLiteral("a")});
}

void tst_k7eFiles::tarList()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const auto repeated = [](char character, int count) {
        return QString(count, QLatin1Char(character)) + QLatin1Char('\n');
    };
    const QString table = utf8("TYPE       BYTES  NAME\n"
                               "directory      0  tree/\n"
                               "file           5  tree/Gr\u00f6\u00dfe.txt\n"
                               "file         512  tree/block_512\n"
                               "file         513  tree/block_513\n"
                               "file           0  tree/empty\n"
                               "directory      0  tree/folder/\n"
                               "file           7  tree/folder/inside\n"
                               "other          0  tree/hard_link\n"
                               "link           0  tree/link -> empty\n"
                               "link           0  tree/link_100 -> ")
        + repeated('x', 100) + QStringLiteral("file          99  tree/") + repeated('n', 94)
        + QStringLiteral("file         100  tree/") + repeated('o', 95)
        + QStringLiteral("other          0  tree/pipe\n") + QStringLiteral("file         105  ")
        + repeated('p', 100);
    verify(sandbox.run({QStringLiteral("tar"), QStringLiteral("list"), sample("ustar.tar")}), table,
           QString(), 0);
}

void tst_k7eFiles::tarListOfFormats_data()
{
    QTest::addColumn<int>("members");
    QTest::addColumn<QString>("line");
    QTest::newRow("gnu.tar") << 17 << QStringLiteral("other        102  ././@LongLink");
    QTest::newRow("oldgnu.tar") << 19 << QStringLiteral("other        101  ././@LongLink");
    QTest::newRow("pax.tar") << 19 << QStringLiteral("other         18  GlobalHead");
}

void tst_k7eFiles::tarListOfFormats()
{
    QFETCH(int, members);
    QFETCH(QString, line);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run(
        {QStringLiteral("tar"), QStringLiteral("list"), sample(QTest::currentDataTag())});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    const QStringList lines = outcome.out.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), members + 2); // a title, and nothing behind the last end of a line
    QVERIFY(lines.contains(line));
    QVERIFY(lines.contains(utf8("file           5  tree/Gr\u00f6\u00dfe.txt")));
}

void tst_k7eFiles::tarListOfMade_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("error"); // behind the name of the file
    const auto add
        = [](const char *row, const QByteArray &bytes, const char *out, const char *error) {
              QTest::newRow(row) << bytes << utf8(out) << utf8(error);
          };
    const QByteArray good = member("a", "A");
    const char *const table = "TYPE  BYTES  NAME\n"
                              "file      1  a\n";
    add("no members", kEnd, "TYPE  BYTES  NAME\n", "");
    add("one member", good + kEnd, table, "");
    add("names with control characters", member("a\n\t\x1b[1m\\", "") + kEnd,
        "TYPE  BYTES  NAME\n"
        "file      0  a\\n\\t\\u001b[1m\\\\\n",
        "");
    add("place of an argument", member("%1", "") + kEnd,
        "TYPE  BYTES  NAME\n"
        "file      0  %1\n",
        "");
    add("no name", member("", "") + kEnd,
        "TYPE  BYTES  NAME\n"
        "file      0\n",
        "");
    add("no end", good, table,
        "ERROR : The file ist too short. Only 0 bytes read but 512 expected !");
    add("cut header", good + QByteArray(7, 'x'), table,
        "ERROR : The file ist too short. Only 7 bytes read but 512 expected !");
    add("garbage behind a member", good + QByteArray(512, 'x'), table,
        "ERROR : This is not a tar archive. Header.magic = \"512\" but \"ustar\" was expected !");
    add("8 GiB", good + member("b", "BB", '0', "77777777777"),
        "TYPE       BYTES  NAME\n"
        "file           1  a\n"
        "file  8589934591  b\n",
        "ERROR : The file ist too short. Only 0 bytes read but 512 expected !");
    add("no size", member("a", "", '0', "8") + kEnd, "", "a header holds no size");
    add("size with a sign", good + member("b", "", '0', "-1000") + kEnd, table,
        "a header holds no size");
    add("empty file", "", "",
        "ERROR : The file ist too short. Only 0 bytes read but 512 expected !");
    add("no archive", QByteArray(600, 'x'), "",
        "ERROR : This is not a tar archive. Header.magic = \"512\" but \"ustar\" was expected !");
}

void tst_k7eFiles::tarListOfMade()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, out);
    QFETCH(QString, error);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.tar"), bytes);
    const bool isFailure = !error.isEmpty();
    verify(sandbox.run("tar|list|a.tar"), out,
           isFailure ? QStringLiteral("a.tar: ") + error + QLatin1Char('\n') : QString(),
           isFailure ? 1 : 0);
}

void tst_k7eFiles::unreadableArchives_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("error");
    QTest::newRow("missing") << QStringLiteral("none")
                             << QStringLiteral("none: No such file or directory\n");
    QTest::newRow("folder") << QStringLiteral(".")
                            << QStringLiteral(".: file to open is a directory\n");
    QTest::newRow("name with a line end")
        << QStringLiteral("a\nb") << QStringLiteral("a\\nb: No such file or directory\n");
    QTest::newRow("name with a place")
        << QStringLiteral("%2") << QStringLiteral("%2: No such file or directory\n");
}

void tst_k7eFiles::unreadableArchives()
{
    QFETCH(QString, file);
    QFETCH(QString, error);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    verify(sandbox.run({QStringLiteral("tar"), QStringLiteral("list"), file}), QString(), error, 1);
    const QString noMember
        = error.section(QLatin1Char(':'), 0, 0) + QStringLiteral(": no member \"a\"\n");
    verify(sandbox.run({QStringLiteral("tar"), QStringLiteral("cat"), file, QStringLiteral("a")}),
           QString(), error + noMember, 1);
}

void tst_k7eFiles::tarCat_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("names");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("errors");
    const auto add = [](const char *row, const QByteArray &bytes, const char *names,
                        const char *out, const char *errors) {
        QTest::newRow(row) << bytes << utf8(names) << utf8(out) << utf8(errors);
    };
    const QByteArray good = member("a", "one\n") + member("b", "two\n") + member("a", "three\n")
        + member("%1", "four\n") + member("-x", "five\n") + member("folder/", "", '5');
    add("first of two", good + kEnd, "a", "one\n", "");
    add("two names", good + kEnd, "b|a", "two\none\n", "");
    add("twice", good + kEnd, "b|b", "two\ntwo\n", "");
    add("no data", good + kEnd, "folder/", "", "");
    add("place of an argument", good + kEnd, "%1", "four\n", "");
    add("name like an option", good + kEnd, "--|a|-x", "one\nfive\n", "");
    add("missing name", good + kEnd, "A", "", "a.tar: no member \"A\"\n");
    add("missing among others", good + kEnd, "a|x\ny|b", "one\ntwo\n",
        "a.tar: no member \"x\\ny\"\n");
    add("missing, place of an argument", good + kEnd, "%2", "", "a.tar: no member \"%2\"\n");
    add("no end", good, "b", "two\n",
        "a.tar: ERROR : The file ist too short. Only 0 bytes read but 512 expected !\n");
    add("cut data", (good + member("c", "12345")).chopped(510), "c|a", "12one\n",
        "a.tar: ERROR : The file ist too short. Only 0 bytes read but 512 expected !\n"
        "a.tar: ERROR: 2 bytes read but 5 are expected !\n");
    add("8 GiB", member("c", "12345", '0', "77777777777").chopped(507), "c", "12345",
        "a.tar: ERROR : The file ist too short. Only 0 bytes read but 512 expected !\n"
        "a.tar: ERROR: 5 bytes read but 8589934591 are expected !\n");
    add("no size behind a member", good + member("c", "", '0', "8") + kEnd, "c|a", "one\n",
        "a.tar: a header holds no size\n"
        "a.tar: no member \"c\"\n");
}

void tst_k7eFiles::tarCat()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, names);
    QFETCH(QString, out);
    QFETCH(QString, errors);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.tar"), bytes);
    QStringList words{QStringLiteral("tar"), QStringLiteral("cat")};
    QStringList rest = names.split(QLatin1Char('|'));
    if (rest.first() == QLatin1String("--"))
        words += rest.takeFirst();
    verify(sandbox.run(words + QStringList{QStringLiteral("a.tar")} + rest), out, errors,
           errors.isEmpty() ? 0 : 1);
}

void tst_k7eFiles::tarCatOfSample()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QByteArray lines = QByteArray("0123456789abcde\n").repeated(40);
    for (const char *archive : {"ustar.tar", "gnu.tar", "oldgnu.tar", "pax.tar"}) {
        Outcome outcome;
        const QByteArray out
            = rawOutput(sandbox,
                        {QStringLiteral("tar"), QStringLiteral("cat"), sample(archive),
                         QStringLiteral("tree/block_513"), utf8("tree/Gr\u00f6\u00dfe.txt"),
                         QStringLiteral("tree/hard_link"), QStringLiteral("tree/folder/inside")},
                        outcome);
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(out, lines.left(513) + lines.left(5) + lines.left(7));
    }
}

void tst_k7eFiles::tarCatOfAllBytes()
{
    QByteArray data;
    for (int i = 0; i < 100000; ++i)
        data += static_cast<char>(i % 256);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a.tar"), member("a", data) + member("b", "\xff") + kEnd);
    Outcome outcome;
    const QByteArray out
        = rawOutput(sandbox,
                    {QStringLiteral("tar"), QStringLiteral("cat"), QStringLiteral("a.tar"),
                     QStringLiteral("a"), QStringLiteral("b")},
                    outcome);
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(out, data + '\xff');
}

void tst_k7eFiles::tarCatToFullDevice()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    for (const int size : {1, 100000}) {
        sandbox.write(QStringLiteral("a.tar"), member("a", QByteArray(size, 'x')) + kEnd);
        const Outcome outcome = sandbox.run("tar|cat|a.tar|a", [](QProcess &process) {
            process.setStandardOutputFile(QStringLiteral("/dev/full"));
        });
        QCOMPARE(outcome.errors, QStringLiteral("standard output: No space left on device\n"));
        QCOMPARE(outcome.status, 1);
    }
}

void tst_k7eFiles::paths()
{
    const Installation installation;
    QVERIFY(installation.isValid());
    verify(installation.run({QStringLiteral("paths")}),
           utf8("WHAT                     WHERE\n"
                "installation             <root>\n"
                "product                  suite\n"
                "programs                 <root>bin/\n"
                "libraries                <root>lib/\n"
                "installed files          <root>etc/\n"
                "texts                    <root>etc/txt/\n"
                "images                   <root>etc/image/\n"
                "documents                <root>etc/doc/\n"
                "installed configuration  <root>etc/conf/\n"
                "installed data           <root>etc/data/\n"
                "application data         /KORVALENT/\n"
                "configuration            /KORVALENT/conf/\n"
                "logs                     /KORVALENT/log/\n"
                "user data                /KORVALENT/\n"
                "motors                   /KORVALENT/motor/\n"
                "parameters               /KORVALENT/param/\n"
                "data                     /KORVALENT/data/\n"
                "projects                 /KORVALENT/project/\n")
               .replace(QStringLiteral("<root>"), installation.root()),
           QString(), 0);
    // Nothing is made.
    QCOMPARE(entries(installation.sandbox(), "suite"), QStringList{QStringLiteral("bin")});
}

void tst_k7eFiles::company()
{
    const Installation installation;
    QVERIFY(installation.isValid());
    const QString table
        = utf8("WHAT                   TEXT\n"
               "long name              KORVALENT Antriebstechnik AG\n"
               "medium name            KORVALENT Antriebstechnik\n"
               "short name             KORVALENT\n"
               "addressee              KORVALENT Antriebstechnik AG\n"
               "street                 Hardturmweg 7\n"
               "city                   8005 Z\u00fcrich\n"
               "address in HTML        KORVALENT Antriebstechnik AG<br>Hardturmweg 7<br>8005 "
               "Z\u00fcrich<br>Phone: +41 44 555 01 70<br>E-mail: "
               "<a href=\"mailto:info@korvalent.example\">info@korvalent.example</a>\n"
               "web                    https://www.korvalent.example\n"
               "e-mail                 info@korvalent.example\n"
               "open source            https://www.korvalent.example/open-source\n"
               "version file           https://update.korvalent.example/suite/version.txt\n"
               "change log             https://update.korvalent.example/suite/changelog.txt\n"
               "downloads              https://update.korvalent.example/suite/\n"
               "logo 145x52            <root>etc/image/korvalent_145x52.png\n"
               "logo 105x30            <root>etc/image/korvalent_105x30.png\n"
               "logo 105x30, inverted  <root>etc/image/korvalent_105x30_inverted.png\n"
               "logo 32x32             <root>etc/image/korvalent_32x32.png\n"
               "logo 16x16             <root>etc/image/korvalent_16x16.png\n")
              .replace(QStringLiteral("<root>"), installation.root());
    verify(installation.run({QStringLiteral("company")}), table, QString(), 0);
    // It looked for a file of its own and for images there.
    QVERIFY(installation.has("etc/conf") && installation.has("etc/image"));
    QCOMPARE(entries(installation.sandbox(), "suite/etc"),
             (QStringList{QStringLiteral("conf"), QStringLiteral("image")}));
    QCOMPARE(entries(installation.sandbox(), "suite/etc/conf"), QStringList());
    verify(installation.run({QStringLiteral("company")}), table, QString(), 0);
}

void tst_k7eFiles::companyOfFile()
{
    const Installation installation;
    QVERIFY(installation.isValid());
    QVERIFY(QDir().mkpath(installation.root() + QStringLiteral("etc/conf")));
    const QByteArray settings("[COMPANY]\n"
                              "NameLong=Other Drives\n"
                              "AddressHtml=\"a<br>b, c\"\n"
                              "AddressCity=8005 Z\\xfcrich\n"
                              "WebUrl=a\\nb\n"
                              "Logo_16x16=small.png\n");
    installation.sandbox().write(QStringLiteral("suite/etc/conf/Setup.Ini"), settings);
    verify(installation.run({QStringLiteral("company")}),
           utf8("WHAT                   TEXT\n"
                "long name              Other Drives\n"
                "medium name\n"
                "short name\n"
                "addressee\n"
                "street\n"
                "city                   8005 Z\u00fcrich\n"
                "address in HTML        a<br>b, c\n"
                "web                    a\\nb\n"
                "e-mail\n"
                "open source\n"
                "version file\n"
                "change log\n"
                "downloads\n"
                "logo 145x52\n"
                "logo 105x30\n"
                "logo 105x30, inverted\n"
                "logo 32x32\n"
                "logo 16x16             <root>etc/image/small.png\n")
               .replace(QStringLiteral("<root>"), installation.root()),
           QString(), 0);
    QCOMPARE(installation.sandbox().read(QStringLiteral("suite/etc/conf/Setup.Ini")), settings);
}

void tst_k7eFiles::products_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("out");
    const auto add = [](const char *words, const char *out) {
        QTest::newRow(words) << QString::fromUtf8(words).split(QLatin1Char('|')) << utf8(out);
    };
    const char *const manager
        = "WHAT           TEXT\n"
          "name           Drive Manager\n"
          "executable     <root>bin/k7drivemanager\n"
          "splash screen  <root>etc/image/drivemanager_splash.png\n"
          "e-mail         drivemanager@korvalent.example\n"
          "version file   https://update.korvalent.example/drivemanager/version.txt\n"
          "change log     https://update.korvalent.example/drivemanager/changelog.txt\n"
          "downloads      https://update.korvalent.example/drivemanager/\n";
    add("101", manager);
    add("+101", manager);
    add("0101", manager);
    add("94",
        "WHAT           TEXT\n"
        "name           Load Test\n"
        "executable     <root>bin/k7loadtest\n"
        "splash screen\n"
        "e-mail\n"
        "version file\n"
        "change log\n"
        "downloads\n");
    add("7",
        "WHAT           TEXT\n"
        "name           PRODUCT7\n"
        "executable     <root>bin/\n"
        "splash screen\n"
        "e-mail\n"
        "version file\n"
        "change log\n"
        "downloads\n");
    add("--|-2147483648",
        "WHAT           TEXT\n"
        "name           PRODUCT-2147483648\n"
        "executable     <root>bin/\n"
        "splash screen\n"
        "e-mail\n"
        "version file\n"
        "change log\n"
        "downloads\n");
}

void tst_k7eFiles::products()
{
    QFETCH(QStringList, words);
    QFETCH(QString, out);
    const Installation installation;
    QVERIFY(installation.isValid());
    verify(installation.run(QStringList{QStringLiteral("company")} + words),
           out.replace(QStringLiteral("<root>"), installation.root()), QString(), 0);
    QVERIFY(installation.has("etc/conf"));
}

void tst_k7eFiles::productsOfFile()
{
    const Installation installation;
    QVERIFY(installation.isValid());
    QVERIFY(QDir().mkpath(installation.root() + QStringLiteral("etc/conf")));
    installation.sandbox().write(QStringLiteral("suite/etc/conf/Setup.Ini"),
                                 "[PRODUCT7]\n"
                                 "Name=Seven\n"
                                 "ExeFile=seven\n"
                                 "UpdatePath=/mnt/seven\n");
    verify(installation.run({QStringLiteral("company"), QStringLiteral("7")}),
           utf8("WHAT           TEXT\n"
                "name           Seven\n"
                "executable     <root>bin/seven\n"
                "splash screen\n"
                "e-mail\n"
                "version file\n"
                "change log\n"
                "downloads      /mnt/seven\n")
               .replace(QStringLiteral("<root>"), installation.root()),
           QString(), 0);
    // Nothing comes from the built-in file any more.
    verify(installation.run({QStringLiteral("company"), QStringLiteral("101")}),
           utf8("WHAT           TEXT\n"
                "name           PRODUCT101\n"
                "executable     <root>bin/\n"
                "splash screen\n"
                "e-mail\n"
                "version file\n"
                "change log\n"
                "downloads\n")
               .replace(QStringLiteral("<root>"), installation.root()),
           QString(), 0);
}

void tst_k7eFiles::entrypoint_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("texts");
    const auto add = [](const char *path, const char *name, int code, const char *directory,
                        const char *relative) {
        QTest::newRow(path) << utf8(path)
                            << QStringList{utf8(name), QString::number(code), utf8(directory),
                                           utf8(relative)};
    };
    add("/tmp/trace.csv", "TMP", 8, "/tmp/", "trace.csv");
    add("/tmp/", "TMP", 8, "/tmp/", "");
    add("TMP/trace.csv", "TMP", 8, "/tmp/", "/TMP/trace.csv");
    add("/TMP/trace.csv", "TMP", 8, "/tmp/", "/TMP/trace.csv");
    add("TMPX", "TMP", 8, "/tmp/", "/TMPX");
    add("/tmp/a\nb\\c", "TMP", 8, "/tmp/", "a\\nb\\\\c");
    add("/opt/KORVALENT/etc/conf/drive.ini", "CONSTCONFIG", 1, "/opt/KORVALENT/etc/conf/",
        "drive.ini");
    add("CONSTCONFIG/x", "CONSTCONFIG", 1, "/opt/KORVALENT/etc/conf/", "/CONSTCONFIG/x");
    add("/KORVALENT/conf/a", "KORVALENT", 2, "/KORVALENT/", "conf/a");
    add("/opt/KORVALENT/bin/x", "OPT/KORVALENT", 4, "/opt/KORVALENT/", "bin/x");
    add("/opt/other/a", "ROOT", 16, "/", "opt/other/a");
    add("/appdata/x", "ROOT", 16, "/", "appdata/x");
    add("/OPT/x", "ROOT", 16, "/", "OPT/x");
    add("/", "ROOT", 16, "/", "");
    add("//a", "ROOT", 16, "/", "/a");
    add("ROOT/a", "ROOT", 16, "/", "ROOT/a");
    add("OPT/x", "OPT", 32, "/opt/", "/OPT/x");
    add("APPDATA/\u00e4", "APPDATA", 64, "/appdata/", "/APPDATA/\u00e4");
}

void tst_k7eFiles::entrypoint()
{
    QFETCH(QString, path);
    QFETCH(QStringList, texts);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QString relative = texts.at(3).isEmpty() ? QString() : QLatin1String("  ") + texts.at(3);
    verify(sandbox.run({QStringLiteral("entrypoint"), path}),
           QStringLiteral("WHAT           TEXT\nentry point    ") + texts.at(0)
               + QStringLiteral("\ncode           ") + texts.at(1)
               + QStringLiteral("\ndirectory      ") + texts.at(2)
               + QStringLiteral("\nrelative path") + relative + QLatin1Char('\n'),
           QString(), 0);
}

void tst_k7eFiles::entrypointErrors_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("shown");
    const auto add = [](const char *row, const char *path, const char *shown) {
        QTest::newRow(row) << utf8(path) << utf8(shown);
    };
    add("file name alone", "drive.ini", "drive.ini");
    add("relative path", "conf/drive.ini", "conf/drive.ini");
    add("lower case", "constconfig/x", "constconfig/x");
    add("name of no entry point", "<invalid>", "<invalid>");
    add("name at the third place", "xxTMP", "xxTMP");
    add("empty", "", "");
    add("line end", "a\nb", "a\\nb");
    add("place of an argument", "%1", "%1");
}

void tst_k7eFiles::entrypointErrors()
{
    QFETCH(QString, path);
    QFETCH(QString, shown);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    verify(sandbox.run({QStringLiteral("entrypoint"), path}), QString(),
           QLatin1Char('"') + shown + QStringLiteral("\" belongs to no entry point\n"), 1);
}

void tst_k7eFiles::trash_data()
{
    QTest::addColumn<QString>("trash"); // in the sandbox
    QTest::addColumn<bool>("isDataHomeSet");
    QTest::newRow("data home") << QStringLiteral("data/Trash") << true;
    QTest::newRow("home") << QStringLiteral(".local/share/Trash") << false;
    QTest::newRow("home, data home without a trash")
        << QStringLiteral(".local/share/Trash") << true;
    QTest::newRow("home, older place") << QStringLiteral(".trash") << false;
}

void tst_k7eFiles::trash()
{
    QFETCH(QString, trash);
    QFETCH(bool, isDataHomeSet);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    QVERIFY(makeTrash(sandbox, trash));
    const auto user = userAt(sandbox.path(QString()),
                             isDataHomeSet ? sandbox.path(QStringLiteral("data")) : QString());
    const QString root = QFileInfo(sandbox.path(QString())).canonicalFilePath() + QLatin1Char('/');
    const auto verifyMoved = [&](const QString &name) {
        verify(sandbox.run({QStringLiteral("trash"), name}, user), QString(), QString(), 0);
        QVERIFY(!QFileInfo::exists(sandbox.path(name)));
        QVERIFY(QFileInfo::exists(sandbox.path(QStringLiteral("%1/files/%2").arg(trash, name))));
        const QString record = QString::fromUtf8(
            sandbox.read(QStringLiteral("%1/info/%2.trashinfo").arg(trash, name)));
        const QString begin
            = QStringLiteral("[Trash Info]\nPath=") + root + name + QLatin1Char('\n');
        QCOMPARE(record.left(begin.size()), begin);
        const QRegularExpression date(QRegularExpression::anchoredPattern(
            QStringLiteral("DeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z\n")));
        QVERIFY(date.match(record.mid(begin.size())).hasMatch());
    };
    const QString file = utf8("Z\u00fcrich %1.txt");
    sandbox.write(file, "content");
    verifyMoved(file);
    QCOMPARE(sandbox.read(QStringLiteral("%1/files/%2").arg(trash, file)), QByteArray("content"));
    QVERIFY(QDir(sandbox.path(QString())).mkpath(QStringLiteral("folder/inner")));
    sandbox.write(QStringLiteral("folder/inner/a"), "A");
    verifyMoved(QStringLiteral("folder"));
    QCOMPARE(sandbox.read(trash + QStringLiteral("/files/folder/inner/a")), QByteArray("A"));
}

void tst_k7eFiles::trashTwice()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    QVERIFY(makeTrash(sandbox, QStringLiteral("Trash")));
    const auto user = userAt(sandbox.path(QStringLiteral("none")), sandbox.path(QString()));
    for (const char *content : {"1", "2", "3"}) {
        sandbox.write(QStringLiteral("a.tar.gz"), content);
        verify(sandbox.run("trash|a.tar.gz", user), QString(), QString(), 0);
    }
    QCOMPARE(entries(sandbox, "Trash/files"),
             (QStringList{QStringLiteral("a.2.tar.gz"), QStringLiteral("a.3.tar.gz"),
                          QStringLiteral("a.tar.gz")}));
    QCOMPARE(
        entries(sandbox, "Trash/info"),
        (QStringList{QStringLiteral("a.2.tar.gz.trashinfo"), QStringLiteral("a.3.tar.gz.trashinfo"),
                     QStringLiteral("a.tar.gz.trashinfo")}));
    QCOMPARE(sandbox.read(QStringLiteral("Trash/files/a.tar.gz")), QByteArray("1"));
    QCOMPARE(sandbox.read(QStringLiteral("Trash/files/a.3.tar.gz")), QByteArray("3"));
}

void tst_k7eFiles::trashFailures()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const auto user = userAt(sandbox.path(QStringLiteral("none")), sandbox.path(QString()));
    const QString notMoved
        = QStringLiteral("not moved: no trash directory, or one on another file system\n");
    sandbox.write(QStringLiteral("a"), "content");
    // No trash: nothing is made, and whether there is something to move does not matter.
    verify(sandbox.run("trash|a", user), QString(), QStringLiteral("a: ") + notMoved, 1);
    verify(sandbox.run("trash|missing", user), QString(), QStringLiteral("missing: ") + notMoved,
           1);
    QCOMPARE(entries(sandbox, ""), QStringList{QStringLiteral("a")});

    QVERIFY(QDir(sandbox.path(QString())).mkdir(QStringLiteral("Trash")));
    verify(sandbox.run("trash|missing", user), QString(),
           QStringLiteral("missing: No such file or directory\n"), 1);
    verify(sandbox.run("trash|a\nb", user), QString(),
           QStringLiteral("a\\nb: No such file or directory\n"), 1);
    // It has no place for files.
    verify(sandbox.run("trash|a", user), QString(), QStringLiteral("a: ") + notMoved, 1);
    QCOMPARE(sandbox.read(QStringLiteral("a")), QByteArray("content"));
    QCOMPARE(entries(sandbox, "Trash"), QStringList());
}

void tst_k7eFiles::copyFile()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QByteArray content(100000, '\xff');
    sandbox.write(QStringLiteral("a"), content);
    // Into the folder and into folders that are missing; standard error is no terminal.
    for (const char *target : {"b", "new/folder/%1 c"}) {
        verify(sandbox.run({QStringLiteral("copy"), QStringLiteral("a"), QLatin1String(target)}),
               QString(), QString(), 0);
        QCOMPARE(sandbox.read(QLatin1String(target)), content);
    }
    QCOMPARE(sandbox.read(QStringLiteral("a")), content);
    QVERIFY(QFile::link(QStringLiteral("a"), sandbox.path(QStringLiteral("link"))));
    verify(sandbox.run("copy|link|d"), QString(), QString(), 0);
    QCOMPARE(sandbox.read(QStringLiteral("d")), content);
    QVERIFY(!QFileInfo(sandbox.path(QStringLiteral("d"))).isSymLink());
}

void tst_k7eFiles::copyFileFailures()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    sandbox.write(QStringLiteral("a"), "A");
    sandbox.write(QStringLiteral("b"), "B");
    const QString notCopied = QStringLiteral("a: not copied, or not all of it\n");
    const auto unable = [](const char *target) {
        return QStringLiteral("\nCDir::copyFile unable to copy ") + QLatin1String(target);
    };
    verify(sandbox.run("copy|missing|c"), QString(),
           QStringLiteral("missing: No such file or directory\n"), 1);
    verify(sandbox.run("copy||c"), QString(), QStringLiteral(": No such file or directory\n"), 1);
    verify(sandbox.run("copy|x\ny|c"), QString(),
           QStringLiteral("x\\ny: No such file or directory\n"), 1);
    // The target is there: another file, the source, a folder; or a file is where a folder has to
    // be.
    verify(sandbox.run("copy|a|b"), unable("b"), notCopied, 1);
    verify(sandbox.run("copy|a|a"), unable("a"), notCopied, 1);
    QVERIFY(QDir(sandbox.path(QString())).mkdir(QStringLiteral("folder")));
    verify(sandbox.run("copy|a|folder"), unable("folder"), notCopied, 1);
    verify(sandbox.run("copy|a|b/c"), unable("b/c"), notCopied, 1);
    QCOMPARE(sandbox.read(QStringLiteral("a")), QByteArray("A"));
    QCOMPARE(sandbox.read(QStringLiteral("b")), QByteArray("B"));
    QCOMPARE(entries(sandbox, ""),
             (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("folder")}));
    QCOMPARE(entries(sandbox, "folder"), QStringList());
    QVERIFY(QFile::link(QStringLiteral("none"), sandbox.path(QStringLiteral("broken"))));
    verify(sandbox.run("copy|broken|c"), QString(),
           QStringLiteral("broken: No such file or directory\n"), 1);
    // Nobody writes to the pipe: it is not waited for.
    QCOMPARE(mkfifo(QFile::encodeName(sandbox.path(QStringLiteral("pipe"))).constData(), 0600), 0);
    verify(sandbox.run("copy|pipe|c"), unable("c"),
           QStringLiteral("pipe: not copied, or not all of it\n"), 1);
}

void tst_k7eFiles::copyTree()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QDir root(sandbox.path(QString()));
    QVERIFY(root.mkpath(QStringLiteral("tree/folder/empty")));
    QVERIFY(root.mkpath(QStringLiteral("tree/.hidden")));
    sandbox.write(QStringLiteral("tree/a b"), "A");
    sandbox.write(QStringLiteral("tree/.profile"), "hidden");
    sandbox.write(QStringLiteral("tree/.hidden/a"), "hidden");
    sandbox.write(utf8("tree/folder/\u00e4\n%1"), "B");
    QVERIFY(QFile::link(QStringLiteral("none"), sandbox.path(QStringLiteral("tree/broken"))));
    QCOMPARE(mkfifo(QFile::encodeName(sandbox.path(QStringLiteral("pipe"))).constData(), 0600), 0);
    QVERIFY(QFile::link(QStringLiteral("../pipe"), sandbox.path(QStringLiteral("tree/to a pipe"))));
    for (const char *target : {"copy", "new/copy/"}) {
        verify(sandbox.run({QStringLiteral("copy"), QStringLiteral("tree"), QLatin1String(target)}),
               QString(), QString(), 0);
        const QString folder = QLatin1String(target) + QLatin1Char('/');
        QCOMPARE(entries(sandbox, target),
                 (QStringList{QStringLiteral("a b"), QStringLiteral("folder")}));
        QCOMPARE(entries(sandbox, (folder + QStringLiteral("folder")).toUtf8().constData()),
                 (QStringList{QStringLiteral("empty"), utf8("\u00e4\n%1")}));
        QCOMPARE(sandbox.read(folder + QStringLiteral("a b")), QByteArray("A"));
        QCOMPARE(sandbox.read(folder + utf8("folder/\u00e4\n%1")), QByteArray("B"));
        QVERIFY(QFileInfo(sandbox.path(folder + QStringLiteral("folder/empty"))).isDir());
    }
    // Nothing to copy: no target is made.
    verify(sandbox.run("copy|tree/folder/empty|other"), QString(), QString(), 0);
    QVERIFY(!QFileInfo::exists(sandbox.path(QStringLiteral("other"))));
}

void tst_k7eFiles::copyTreeIntoItself()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    QVERIFY(QDir(sandbox.path(QString())).mkpath(QStringLiteral("tree/inner")));
    sandbox.write(QStringLiteral("tree/a"), "A");
    verify(sandbox.run("copy|tree|tree/inner/copy"), QString(), QString(), 0);
    QCOMPARE(sandbox.read(QStringLiteral("tree/inner/copy/a")), QByteArray("A"));
    QCOMPARE(entries(sandbox, "tree/inner/copy"),
             (QStringList{QStringLiteral("a"), QStringLiteral("inner")}));
    QCOMPARE(entries(sandbox, "tree/inner/copy/inner"), QStringList());
}

void tst_k7eFiles::copyTreeFailures()
{
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const QDir root(sandbox.path(QString()));
    QVERIFY(root.mkpath(QStringLiteral("tree")) && root.mkpath(QStringLiteral("target"))
            && root.mkpath(QStringLiteral("deep/folder")));
    sandbox.write(QStringLiteral("tree/a"), "A");
    sandbox.write(QStringLiteral("target/a"), "old");
    sandbox.write(QStringLiteral("file"), "file");
    const QString error = QStringLiteral("tree: not copied, or not all of it\n");
    verify(sandbox.run("copy|tree|target"),
           QStringLiteral("\nCDir::copyFile unable to copy target/a"), error, 1);
    QCOMPARE(sandbox.read(QStringLiteral("target/a")), QByteArray("old"));
    verify(sandbox.run("copy|tree|file"), QStringLiteral("\nCDir::copyFile unable to copy file/a"),
           error, 1);
    verify(sandbox.run("copy|deep|file"),
           QStringLiteral("\nCDir::copyDirectory unable to create file/folder"),
           QStringLiteral("deep: not copied, or not all of it\n"), 1);
    QCOMPARE(sandbox.read(QStringLiteral("file")), QByteArray("file"));

    // What cannot be read wholly is not copied at all.
    const QByteArray undecodable
        = QFile::encodeName(sandbox.path(QStringLiteral("tree/"))) + '\xff';
    QCOMPARE(mkdir(undecodable.constData(), 0755), 0);
    verify(sandbox.run("copy|tree|new"), QString(), error, 1);
    QVERIFY(!QFileInfo::exists(sandbox.path(QStringLiteral("new"))));
}

QTEST_GUILESS_MAIN(tst_k7eFiles)

#include "tst_k7eFiles.moc"
