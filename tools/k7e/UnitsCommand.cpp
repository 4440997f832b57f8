#include "CStr.h"
#include "CUnitParser.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "TextTable.h"
#include "ValueText.h"

#include <QRegularExpression>

namespace {

// Returns the expression for the names that hold \a pattern or, if it has wildcards, are like it.
QRegularExpression toExpression(const QString &pattern)
{
    static const QRegularExpression wildcards(QStringLiteral("[*?[]"));
    QRegularExpression result(QRegularExpression::wildcardToRegularExpression(pattern));
    if (!pattern.contains(wildcards) || !result.isValid())
        result.setPattern(QRegularExpression::escape(pattern));
    result.setPatternOptions(QRegularExpression::CaseInsensitiveOption);
    return result;
}

} // namespace

void runUnits(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows the object units, their types and the bytes of their "
                                    "values."));
    line.addArgument(
        QStringLiteral("PATTERN"),
        QStringLiteral("Shows only units with this in their name, or like it if it has "
                       "the wildcards * ? [ ]. Case does not count."),
        CommandLine::Need::Optional);
    if (!line.parse(arguments, console))
        return;
    const QString pattern = line.arguments().value(0);
    const QRegularExpression expression = toExpression(pattern);
    TextTable table({{QStringLiteral("CODE"), TextTable::Align::Right},
                     {QStringLiteral("NAME")},
                     {QStringLiteral("TYPE")},
                     {QStringLiteral("BYTES"), TextTable::Align::Right}});
    bool hasRows = false;
    const QMap<NUnits::EObjectUnit, QString> &units = CUnitParser::mcUNIT_TO_STR_MAP;
    for (auto unit = units.cbegin(); unit != units.cend(); ++unit) {
        if (!expression.match(unit.value()).hasMatch())
            continue;
        table.addRow({QString::number(unit.key()), unit.value(),
                      CStr::nTypeToStr(CUnitParser::type(unit.key())),
                      QString::number(CUnitParser::size(unit.key()))});
        hasRows = true;
    }
    if (hasRows)
        table.print(console.out());
    else
        console.error(QStringLiteral("no unit matches \"%1\"").arg(visible(pattern)));
}
