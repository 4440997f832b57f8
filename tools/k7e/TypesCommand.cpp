#include "CStr.h"
#include "CUnitParser.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "TextTable.h"

namespace {

// Returns the bytes of a value as a unit gives them: that of the type's name, or any of the type.
QString bytesOf(NTypes::ETypes type, const QString &name)
{
    const QMap<NUnits::EObjectUnit, QString> &units = CUnitParser::mcUNIT_TO_STR_MAP;
    for (auto unit = units.cbegin(); unit != units.cend(); ++unit) {
        if (CUnitParser::type(unit.key()) == type || unit.value() == QLatin1String("UNIT_") + name)
            return QString::number(CUnitParser::size(unit.key()));
    }
    return QString();
}

} // namespace

void runTypes(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows the data types and the bytes of their values."));
    if (!line.parse(arguments, console))
        return;
    TextTable table({{QStringLiteral("CODE"), TextTable::Align::Right},
                     {QStringLiteral("NAME")},
                     {QStringLiteral("BYTES"), TextTable::Align::Right}});
    for (int code = NTypes::TYPE_UNKNOWN; code <= NTypes::TYPE_CHAR; ++code) {
        const auto type = static_cast<NTypes::ETypes>(code);
        const QString name = CStr::nTypeToStr(type);
        table.addRow({QString::number(code), name, bytesOf(type, name)});
    }
    table.print(console.out());
}
