#include "CFTPath.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "TextTable.h"
#include "ValueText.h"

void runEntrypoint(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows the entry point for file transfer that a path of a "
                                    "device belongs to."));
    line.addArgument(QStringLiteral("PATH"),
                     QStringLiteral("The path, such as /tmp/trace.csv or TMP/trace.csv."));
    if (!line.parse(arguments, console))
        return;
    const QString path = line.arguments().first();
    const CFTPath::EEntryPoint entryPoint = CFTPath::fromPath(path);
    if (entryPoint == CFTPath::EP_INVALID) {
        console.error(QStringLiteral("\"%1\" belongs to no entry point").arg(visible(path)));
        return;
    }
    TextTable table({{QStringLiteral("WHAT")}, {QStringLiteral("TEXT")}});
    table.addRow({QStringLiteral("entry point"), CFTPath::toString(entryPoint)});
    table.addRow({QStringLiteral("code"), QString::number(entryPoint)});
    table.addRow({QStringLiteral("directory"), CFTPath::toPath(entryPoint)});
    table.addRow(
        {QStringLiteral("relative path"), visible(CFTPath::toRelativePath(path, entryPoint))});
    table.print(console.out());
}
