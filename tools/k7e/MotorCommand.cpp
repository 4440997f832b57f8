#include "CMotorBaseName.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "TextTable.h"
#include "ValueText.h"

void runMotor(const QStringList &arguments, Console &console)
{
    const QString numeric = QStringLiteral("numeric");
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows the parts of the base name of a motor parameter file."));
    line.addArgument(QStringLiteral("TEXT"),
                     QStringLiteral("The name, such as MFR_M-100_1, or a path that ends in one."));
    line.addOption({numeric, QStringLiteral("Takes only a digit for the number.")});
    if (!line.parse(arguments, console))
        return;
    const QString text = line.arguments().first();
    CMotorBaseName name(line.isSet(numeric));
    if (!name.setFileBaseName(text)) {
        console.error(QStringLiteral("\"%1\" has a part that cannot be set").arg(visible(text)));
        return;
    }
    if (name.isEmpty()) {
        console.error(QStringLiteral("\"%1\" is no motor base name").arg(visible(text)));
        return;
    }
    TextTable table({{QStringLiteral("PART")}, {QStringLiteral("TEXT")}});
    table.addRow({QStringLiteral("manufacturer"), name.manufacturer()});
    table.addRow({QStringLiteral("name"), name.name()});
    table.addRow({QStringLiteral("number"), name.number()});
    table.addRow({QStringLiteral("base name"), name.fileBaseName()});
    table.print(console.out());
}
