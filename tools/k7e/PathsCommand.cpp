#include "CPath.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "TextTable.h"
#include "ValueText.h"

namespace {

struct Row
{
    const char *title;
    QString (*path)();
};

template <QString (*Path)(bool)>
QString query()
{
    return Path(false);
}

constexpr Row kRows[] = {
    {"installation", &CPath::installPath},
    {"product", &CPath::productName},
    {"programs", &query<&CPath::binPath>},
    {"libraries", &query<&CPath::libPath>},
    {"installed files", &query<&CPath::etcPath>},
    {"texts", &query<&CPath::txtPath>},
    {"images", &query<&CPath::imagePath>},
    {"documents", &query<&CPath::docPath>},
    {"installed configuration", &query<&CPath::constConfigPath>},
    {"installed data", &query<&CPath::constDataPath>},
    {"application data", &CPath::appdataPath},
    {"configuration", &query<&CPath::configPath>},
    {"logs", &query<&CPath::logPath>},
    {"user data", &CPath::userdataPath},
    {"motors", &query<&CPath::motorPath>},
    {"parameters", &query<&CPath::paramPath>},
    {"data", &query<&CPath::dataPath>},
    {"projects", &query<&CPath::projectPath>},
};

} // namespace

void runPaths(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows where the programs of this installation keep their "
                                    "files. Nothing is made."));
    if (!line.parse(arguments, console))
        return;
    TextTable table({{QStringLiteral("WHAT")}, {QStringLiteral("WHERE")}});
    for (const Row &row : kRows)
        table.addRow({QLatin1String(row.title), visible(row.path())});
    table.print(console.out());
}
