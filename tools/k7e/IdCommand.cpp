#include "CDeviceHardwareId.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "TextTable.h"
#include "ValueText.h"

namespace {

struct Form
{
    const char *name;
    bool (*matches)(const QString &text);
    QString (CDeviceHardwareId::*text)() const;
};

constexpr Form kForms[] = {
    {"minimum", &CDeviceHardwareId::isMinimumHardwareId, &CDeviceHardwareId::minimumHardwareId},
    {"short", &CDeviceHardwareId::isShortHardwareId, &CDeviceHardwareId::shortHardwareId},
    {"full", &CDeviceHardwareId::isFullHardwareId, &CDeviceHardwareId::fullHardwareId},
};

} // namespace

void runId(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows the parts of a hardware identifier, the forms it can be "
                                    "written in, and\nwhich of them the text itself has. What is "
                                    "not there is left empty."));
    line.addArgument(QStringLiteral("TEXT"),
                     QStringLiteral("The identifier, such as P001_002_003_Drive."));
    if (!line.parse(arguments, console))
        return;
    const QString text = line.arguments().first();
    CDeviceHardwareId id;
    if (!id.setHardwareId(text) || id.isEmpty()) {
        console.error(QStringLiteral("\"%1\" is no hardware identifier").arg(visible(text)));
        return;
    }
    TextTable table({{QStringLiteral("PART")}, {QStringLiteral("TEXT")}});
    table.addRow({QStringLiteral("prefix"), visible(id.prefix())});
    table.addRow({QStringLiteral("platform"), id.platformStr()});
    table.addRow({QStringLiteral("version"), id.versionStr()});
    table.addRow({QStringLiteral("revision"), id.revisionStr()});
    table.addRow({QStringLiteral("name"), visible(id.name())});
    QStringList matched;
    for (const Form &form : kForms) {
        table.addRow({QLatin1String(form.name), visible((id.*form.text)())});
        if (form.matches(text))
            matched += QLatin1String(form.name);
    }
    table.addRow({QStringLiteral("has form"), matched.join(QStringLiteral(", "))});
    table.print(console.out());
}
