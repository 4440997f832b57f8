#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "FileError.h"
#include "ObjectListReader.h"
#include "ObjectReport.h"
#include "ObjectStream.h"
#include "ValueText.h"

void runObjects(const QStringList &arguments, Console &console)
{
    const QString &program = arguments.first();
    const QString json = QStringLiteral("json");
    const QString full = QStringLiteral("full");
    const QString set = QStringLiteral("set");
    const QString out = QStringLiteral("out");
    CommandLine line(
        program,
        QStringLiteral("Shows the values of an object list: comma-separated text in UTF-8 with\n"
                       "the columns index,name,unit,bytes, such as\n"
                       "    0x6041,Statusword,UNIT_U16,3702\n"
                       "    0x1018:01,\"Vendor, number\",UNIT_U32,78563412\n"
                       "The bytes are hexadecimal, as they lie on the device (low byte first).\n"
                       "Blank lines, lines that begin with # and the line of column names are\n"
                       "passed over. A line with a fault is reported and left out."));
    line.addArgument(QStringLiteral("FILE"), QStringLiteral("The object list."));
    line.addOption({json, QStringLiteral("Writes JSON instead of a table.")});
    line.addOption({full, QStringLiteral("Does not cut long values in the table.")});
    line.addOption({set,
                    QStringLiteral("Sets the object NAME to the value TEXT and says whether that "
                                   "changes it. May be given several times."),
                    QStringLiteral("NAME=TEXT")});
    line.addOption({out,
                    QStringLiteral("Writes all values to the file OUT, for \"k7e stream\". Nothing "
                                   "is written after an error."),
                    QStringLiteral("OUT")});
    if (!line.parse(arguments, console))
        return;

    QVector<Setting> settings;
    const QStringList texts = line.values(set);
    for (const QString &text : texts) {
        const std::optional<Setting> setting = Setting::fromText(text);
        if (!setting) {
            console.usageError(
                program, QStringLiteral("\"%1\" is not of the form NAME=TEXT").arg(visible(text)));
            return;
        }
        settings += *setting;
    }

    std::optional<QVector<DriveObject>> objects = readObjectList(line.arguments().first(), console);
    if (!objects)
        return;
    const QVector<Edit> edits = applySettings(settings, *objects, console);
    if (line.isSet(json)) {
        printJson(*objects, edits, console.out());
    } else {
        printTable(*objects, line.isSet(full) ? Cells::Whole : Cells::Cut, console.out());
        printEdits(*objects, edits, console.out());
    }
    if (!line.isSet(out))
        return;
    const QString outFile = line.value(out);
    if (console.hasErrors())
        reportFileError(outFile, QStringLiteral("not written because of the errors"), console);
    else
        writeObjectStream(*objects, outFile, console);
}
