#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "ValueText.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>
#include <clocale>
#include <iterator>

namespace {

struct Command
{
    const char *name;
    const char *summary;
    void (*run)(const QStringList &arguments, Console &console);
};

constexpr Command kCommands[] = {
    {"objects", "shows the values of an object list, sets some, writes them to a file",
     &runObjects},
    {"stream", "shows the values in a file that \"objects\" wrote", &runStream},
    {"units", "shows the object units", &runUnits},
    {"types", "shows the data types", &runTypes},
    {"value", "shows a value given as text in all its forms", &runValue},
    {"number", "reads and writes a number text in a format", &runNumber},
    {"time", "shows a time in other units", &runTime},
    {"devices", "shows the devices in a file", &runDevices},
    {"id", "shows the parts and forms of a hardware identifier", &runId},
    {"motor", "shows the parts of a motor base name", &runMotor},
    {"ipv6", "shows an IPv6 address as text and bytes", &runIpv6},
    {"otp", "shows or checks a one-time code", &runOtp},
    {"tar", "shows the members of a tar archive and writes their data", &runTar},
    {"paths", "shows where the programs keep their files", &runPaths},
    {"company", "shows what the settings say of the maker or a program", &runCompany},
    {"entrypoint", "shows the entry point for file transfer of a path", &runEntrypoint},
    {"trash", "moves a file or directory into your trash", &runTrash},
    {"copy", "copies a file or a tree", &runCopy},
};

QString description()
{
    QString text = QStringLiteral(
        "Shows and sets the values of the objects of a drive, and shows what the programs\n"
        "of the suite read and write.\n\n"
        "Commands (\"k7e COMMAND --help\" tells more):\n");
    for (const Command &command : kCommands) {
        text += QStringLiteral("  %1%2\n")
                    .arg(QString(QLatin1String(command.name)).leftJustified(12),
                         QLatin1String(command.summary));
    }
    text += QStringLiteral("\nExit status: 0 if all went well, 1 after an error in a file or a "
                           "value, 2 after an\nerror in the command line.");
    return text;
}

void run(const QStringList &words, Console &console)
{
    const QString program = QStringLiteral("k7e");
    CommandLine line(program, description());
    line.addArgument(QStringLiteral("COMMAND"), QStringLiteral("One of the commands above."));
    line.addArgument(QStringLiteral("ARGUMENT"), QStringLiteral("What the command needs."),
                     CommandLine::Need::AnyNumber);
    line.endOptionsAtFirstArgument();
    if (!line.parse(words, console))
        return;
    const QString name = line.arguments().first();
    const auto command
        = std::find_if(std::begin(kCommands), std::end(kCommands),
                       [&](const Command &row) { return name == QLatin1String(row.name); });
    if (command == std::end(kCommands)) {
        console.usageError(program, QStringLiteral("unknown command \"%1\"").arg(visible(name)));
        return;
    }
    QStringList arguments = line.arguments();
    arguments.first() = program + QLatin1Char(' ') + name;
    command->run(arguments, console);
}

// Returns whether the arguments came as they were typed: a name that is decoded to another one would
// be that of another file.
bool areDecoded(int count, char *words[], Console &console)
{
    for (int i = 1; i < count; ++i) {
        const QString word = QString::fromLocal8Bit(words[i]);
        if (word.toLocal8Bit() == words[i])
            continue;
        console.usageError(QStringLiteral("k7e"),
                           QStringLiteral("\"%1\" is not UTF-8").arg(visible(word)));
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    // Arguments and file names are UTF-8 and messages English, whatever the locale is.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const QCoreApplication application(argc, argv);
    static_cast<void>(std::setlocale(LC_ALL, "C"));
    // A damaged file is reported by the command that reads it; Qt's messages do not name the file.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    Console console;
    if (areDecoded(argc, argv, console))
        run(QCoreApplication::arguments(), console);
    return console.finish();
}
