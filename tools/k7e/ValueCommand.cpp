#include "CUnitParser.h"
#include "CVariant.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "SuiteFormat.h"
#include "ValueText.h"

namespace {

QString streamText(const CVariant &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    setSuiteFormat(out);
    out << value;
    return QString::fromLatin1(bytes.toHex());
}

// The option parser ends the options at TYPE and so takes a "--" behind it for the text.
QStringList withoutSeparator(QStringList arguments)
{
    const bool isSeparated = arguments.value(2) == QLatin1String("--")
        && !arguments.value(1).startsWith(QLatin1Char('-'));
    if (isSeparated)
        arguments.removeAt(2);
    return arguments;
}

} // namespace

void runValue(const QStringList &arguments, Console &console)
{
    CommandLine line(
        arguments.first(),
        QStringLiteral("Reads a text as a value of a data type, and shows the value as "
                       "text, its\nhexadecimal digits, its bits (integers) and the "
                       "bytes it has in a stream\n(QDataStream, version Qt_5_15, "
                       "big-endian). A text that is no such value gives 0."));
    line.addArgument(QStringLiteral("TYPE"),
                     QStringLiteral("The data type, such as U8, STRING32 or DATETIME; see "
                                    "\"k7e types\"."));
    line.addArgument(QStringLiteral("TEXT"),
                     QStringLiteral("The text. It may begin with \"-\": k7e value I16 -5"));
    line.endOptionsAtFirstArgument();
    if (!line.parse(withoutSeparator(arguments), console))
        return;
    const QString typeName = line.arguments().at(0);
    const auto type = CUnitParser::mcTYPE_MAP.constFind(typeName);
    if (type == CUnitParser::mcTYPE_MAP.constEnd()) {
        console.error(QStringLiteral("no value can have the type \"%1\", see \"k7e types\"")
                          .arg(visible(typeName)));
        return;
    }
    const CVariant value = CVariant::fromStr(line.arguments().at(1), *type);
    const QString hex = hexText(value);
    const QString bits = bitText(value);
    console.show("type", typeName);
    console.show("text", visible(value.toStr()));
    if (!hex.isEmpty())
        console.show("hex", hex);
    if (!bits.isEmpty())
        console.show("bits", bits);
    console.show("stream", streamText(value));
}
