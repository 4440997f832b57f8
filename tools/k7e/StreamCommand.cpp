#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "ObjectReport.h"
#include "ObjectStream.h"

void runStream(const QStringList &arguments, Console &console)
{
    const QString json = QStringLiteral("json");
    const QString full = QStringLiteral("full");
    CommandLine line(
        arguments.first(),
        QStringLiteral("Shows the values in a file that \"k7e objects --out\" wrote."));
    line.addArgument(QStringLiteral("FILE"), QStringLiteral("The object stream."));
    line.addOption({json, QStringLiteral("Writes JSON instead of a table.")});
    line.addOption({full, QStringLiteral("Does not cut long values in the table.")});
    if (!line.parse(arguments, console))
        return;
    const std::optional<QVector<DriveObject>> objects
        = readObjectStream(line.arguments().first(), console);
    if (!objects)
        return;
    if (line.isSet(json))
        printJson(*objects, {}, console.out());
    else
        printTable(*objects, line.isSet(full) ? Cells::Whole : Cells::Cut, console.out());
}
