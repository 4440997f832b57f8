#include "Actions.h"
#include "CK7String.h"
#include "CStr.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "ValueText.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>

namespace {

// What a number type does with text: null results stand for texts that are no number.
struct NumberType
{
    const char *name;
    QString (*read)(const QString &text, unsigned int format, double factor);
    QString (*write)(const QString &number, unsigned int format);
};

template <class T, T (*Read)(const QString &, unsigned int, double, bool *)>
QString read(const QString &text, unsigned int format, double factor)
{
    bool ok = false;
    const T number = Read(text, format, factor, &ok);
    return ok ? QString::number(+number) : QString();
}

template <class T, bool (*Parse)(const QString &, T &, int)>
QString writeInteger(const QString &number, unsigned int format)
{
    T value = 0;
    return Parse(number, value, 10) ? CK7String::toStr(value, format) : QString();
}

template <class T, bool (*Parse)(const QString &, T &)>
QString writeFloating(const QString &number, unsigned int format)
{
    T value = 0;
    return Parse(number, value) ? CK7String::toStr(value, format) : QString();
}

constexpr NumberType kTypes[] = {
    {"U8", &read<quint8, &CK7String::toU8>, &writeInteger<unsigned char, &CStr::strToU8>},
    {"I8", &read<qint8, &CK7String::toI8>, &writeInteger<signed char, &CStr::strToI8>},
    {"U16", &read<quint16, &CK7String::toU16>, &writeInteger<unsigned short, &CStr::strToU16>},
    {"I16", &read<qint16, &CK7String::toI16>, &writeInteger<short, &CStr::strToI16>},
    {"U32", &read<quint32, &CK7String::toU32>, &writeInteger<unsigned int, &CStr::strToU32>},
    {"I32", &read<qint32, &CK7String::toI32>, &writeInteger<int, &CStr::strToI32>},
    {"F32", &read<float, &CK7String::toF32>, &writeFloating<float, &CStr::strToF32>},
    {"U64", &read<quint64, &CK7String::toU64>, &writeInteger<unsigned long long, &CStr::strToU64>},
    {"I64", &read<qint64, &CK7String::toI64>, &writeInteger<long long, &CStr::strToI64>},
    {"F64", &read<double, &CK7String::toF64>, &writeFloating<double, &CStr::strToF64>},
};

struct Notation
{
    const char *name;
    CK7String::EFormat code;
};

constexpr Notation kNotations[] = {{"float", CK7String::Float},
                                   {"dec", CK7String::Dec},
                                   {"hex", CK7String::Hex},
                                   {"dual", CK7String::Dual}};

template <class Row, std::size_t Rows>
const Row *findRow(const Row (&rows)[Rows], const QString &name)
{
    const auto found = std::find_if(std::begin(rows), std::end(rows), [&](const Row &row) {
        return name.compare(QLatin1String(row.name), Qt::CaseInsensitive) == 0;
    });
    return found != std::end(rows) ? found : nullptr;
}

// What the command line asks for.
struct Request
{
    const NumberType *type = nullptr;
    unsigned int format = 0;
    double factor = 1;
};

QCommandLineOption numberOption(const QString &name, const QString &description)
{
    return {name, description, QStringLiteral("N"), QStringLiteral("0")};
}

const QString kType = QStringLiteral("type");
const QString kNotation = QStringLiteral("notation");
const QString kDecimals = QStringLiteral("decimals");
const QString kWidth = QStringLiteral("width");
const QString kShift = QStringLiteral("shift");
const QString kFactor = QStringLiteral("factor");

void addOptions(CommandLine &line)
{
    line.addOption({kType, QStringLiteral("The type of the number, U8 to F64; I64 without this."),
                    QStringLiteral("TYPE"), QStringLiteral("I64")});
    line.addOption({kNotation, QStringLiteral("float, dec, hex or dual; dec without this."),
                    QStringLiteral("NAME"), QStringLiteral("dec")});
    line.addOption(numberOption(
        kDecimals, QStringLiteral("Digits behind the separator, -128 to 127; 0 without this.")));
    line.addOption(numberOption(
        kWidth, QStringLiteral("Digits in all, or the width of the field; 0 without this.")));
    line.addOption(numberOption(
        kShift, QStringLiteral("Bits: to the left when reading, to the right when writing.")));
}

// Returns what the options say, or nothing after a usage error.
std::optional<Request> request(const CommandLine &line, Console &console)
{
    const auto refuse = [&](const QString &option) {
        line.refuse(option, console);
        return std::nullopt;
    };
    Request result;
    result.type = findRow(kTypes, line.value(kType));
    if (!result.type)
        return refuse(kType);
    const Notation *notation = findRow(kNotations, line.value(kNotation));
    if (!notation)
        return refuse(kNotation);
    int shift = 0;
    for (const QString &option : {kDecimals, kWidth, kShift}) {
        signed char byte = 0;
        if (!CStr::strToI8(line.value(option), byte))
            return refuse(option);
        result.format |= static_cast<unsigned int>(static_cast<unsigned char>(byte)) << shift;
        shift += std::numeric_limits<unsigned char>::digits;
    }
    result.format |= static_cast<unsigned int>(notation->code) << shift;
    if (line.isSet(kFactor) && !CStr::strToF64(line.value(kFactor), result.factor))
        return refuse(kFactor);
    return result;
}

void showFormat(Console &console, unsigned int format)
{
    console.show("format", QStringLiteral("0x%1").arg(format, 8, 16, QLatin1Char('0')));
}

void runRead(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Reads a number text in a format, and shows the packed format "
                                    "and the number."));
    addOptions(line);
    line.addOption({kFactor, QStringLiteral("What the number is multiplied by; 1 without this."),
                    QStringLiteral("X")});
    line.addArgument(QStringLiteral("TEXT"),
                     QStringLiteral("The text; behind \"--\" it may begin with \"-\"."));
    if (!line.parse(arguments, console))
        return;
    const std::optional<Request> asked = request(line, console);
    if (!asked)
        return;
    const QString text = line.arguments().first();
    const QString number = asked->type->read(text, asked->format, asked->factor);
    if (number.isNull()) {
        console.error(QStringLiteral("\"%1\" is no %2 in this format")
                          .arg(visible(text), QLatin1String(asked->type->name)));
        return;
    }
    showFormat(console, asked->format);
    console.show("number", number);
}

void runWrite(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Writes a number in a format, and shows the packed format and "
                                    "the text in\nquotation marks."));
    addOptions(line);
    line.addArgument(
        QStringLiteral("NUMBER"),
        QStringLiteral("The number, in decimal; behind \"--\" it may begin with \"-\"."));
    if (!line.parse(arguments, console))
        return;
    const std::optional<Request> asked = request(line, console);
    if (!asked)
        return;
    const QString number = line.arguments().first();
    const QString text = asked->type->write(number, asked->format);
    if (text.isNull()) {
        console.error(QStringLiteral("\"%1\" is no %2, or has no text in this notation")
                          .arg(visible(number), QLatin1String(asked->type->name)));
        return;
    }
    showFormat(console, asked->format);
    console.show("text", QStringLiteral("\"%1\"").arg(text));
}

} // namespace

void runNumber(const QStringList &arguments, Console &console)
{
    runAction(arguments,
              QStringLiteral("Shows what a number format does.\n\n"
                             "  read   reads a text in a format\n"
                             "  write  writes a number in a format"),
              QStringLiteral("Options, and a text or number."),
              {{"read", &runRead}, {"write", &runWrite}}, console);
}
