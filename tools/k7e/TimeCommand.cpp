#include "CMath.h"
#include "CStr.h"
#include "CTime.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "TextTable.h"
#include "ValueText.h"

namespace {

// The units to show: those named, or all.
QVector<CTime::ETimeUnit> targetUnits(const QStringList &names, Console &console)
{
    QVector<CTime::ETimeUnit> units;
    for (const QString &name : names) {
        const CTime::ETimeUnit unit = CTime::unit(name);
        if (unit == CTime::UNKNOWN)
            console.error(QStringLiteral("unknown unit \"%1\"").arg(visible(name)));
        else
            units += unit;
    }
    if (names.isEmpty()) {
        for (int code = CTime::PS; code <= CTime::H; ++code)
            units += static_cast<CTime::ETimeUnit>(code);
    }
    return units;
}

} // namespace

void runTime(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows a time in other units: the count, rounded, and the "
                                    "value to 15 digits;\nthen the value cut in the last unit that "
                                    "it has a fraction in, if it is whole in the\nnext one. The "
                                    "units are ps, ns, \u00b5s, ms, s, min and h."));
    line.addArgument(QStringLiteral("VALUE"), QStringLiteral("The number, 0 or more."));
    line.addArgument(QStringLiteral("UNIT"), QStringLiteral("The unit that it is in."));
    line.addArgument(QStringLiteral("UNIT"),
                     QStringLiteral("The units to show; all if none is named."),
                     CommandLine::Need::AnyNumber);
    if (!line.parse(arguments, console))
        return;
    const QString text = line.arguments().at(0);
    unsigned long long count = 0;
    const bool isCount = CStr::strToU64(text, count);
    double value = static_cast<double>(static_cast<qint64>(count));
    if (!isCount && !CStr::strToF64(text, value)) {
        console.error(QStringLiteral("\"%1\" is no number").arg(visible(text)));
        return;
    }
    const QVector<CTime::ETimeUnit> own = targetUnits({line.arguments().at(1)}, console);
    const QVector<CTime::ETimeUnit> targets = targetUnits(line.arguments().mid(2), console);
    if (own.isEmpty())
        return;

    const CTime::ETimeUnit from = own.first();
    TextTable table({{QStringLiteral("UNIT")},
                     {QStringLiteral("COUNT"), TextTable::Align::Right},
                     {QStringLiteral("VALUE"), TextTable::Align::Right}});
    for (const CTime::ETimeUnit to : targets) {
        const double converted = CTime::convertValue(value, from, to);
        table.addRow({CTime::unitStr(to),
                      isCount ? QString::number(CTime(count, from).value(to))
                              : QString::number(CMath::round(converted, 0), 'f', 0),
                      QString::number(converted, 'g', 15)});
    }
    table.print(console.out());
    long long cut = 0;
    CTime::ETimeUnit last = CTime::UNKNOWN;
    if (CTime::convertToPrevIntegerValue(value, from, cut, last))
        console.out() << "cut " << cut << ' ' << CTime::unitStr(last) << ", then whole\n";
}
