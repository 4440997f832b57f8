#include "CIPv6Address.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "TextTable.h"
#include "ValueText.h"

void runIpv6(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows an IPv6 address as text and as the bytes that a device "
                                    "holds, the low byte\nof each group first."));
    line.addArgument(QStringLiteral("TEXT"),
                     QStringLiteral("Eight groups of hexadecimal digits with \":\" between them; "
                                    "an empty group is 0."));
    if (!line.parse(arguments, console))
        return;
    const QString text = line.arguments().first();
    CIPv6Address address;
    if (!address.setAddress(text)) {
        console.error(QStringLiteral("\"%1\" is no IPv6 address").arg(visible(text)));
        return;
    }
    const int groups = text.count(QLatin1Char(':')) + 1;
    if (groups != 8) {
        console.error(QStringLiteral("\"%1\" has %2 groups, and only an address of 8 is taken")
                          .arg(text)
                          .arg(groups));
        return;
    }
    TextTable table({{QStringLiteral("FORM")}, {QStringLiteral("ADDRESS")}});
    table.addRow({QStringLiteral("text"), address.str()});
    table.addRow({QStringLiteral("bytes"), QString::fromLatin1(address.byteArray().toHex(' '))});
    table.print(console.out());
}
