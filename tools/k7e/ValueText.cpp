#include "ValueText.h"

#include "CVariant.h"

#include <QBitArray>

namespace {

bool isInteger(NTypes::ETypes type)
{
    switch (type) {
    case NTypes::TYPE_U8:
    case NTypes::TYPE_I8:
    case NTypes::TYPE_U16:
    case NTypes::TYPE_I16:
    case NTypes::TYPE_U32:
    case NTypes::TYPE_I32:
    case NTypes::TYPE_U64:
    case NTypes::TYPE_I64:
        return true;
    default:
        return false;
    }
}

bool isVisible(uint codePoint)
{
    switch (QChar::category(codePoint)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    default:
        return true;
    }
}

QString escaped(QChar unit)
{
    switch (unit.unicode()) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    case '\\':
        return QStringLiteral("\\\\");
    default:
        return QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    }
}

} // namespace

QString visible(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        const bool isPair
            = unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        const QChar second = isPair ? text.at(++i) : QChar();
        const uint codePoint = isPair ? QChar::surrogateToUcs4(unit, second) : unit.unicode();
        const bool isPlain = isVisible(codePoint) && unit != QLatin1Char('\\');
        result += isPlain ? QString(unit) : escaped(unit);
        if (isPair)
            result += isPlain ? QString(second) : escaped(second);
    }
    return result;
}

QString hexText(const CVariant &value)
{
    const QString prefix = QStringLiteral("0x");
    const QString text = value.toHex(prefix);
    return text == prefix ? QString() : text;
}

QString bitText(const CVariant &value)
{
    if (!isInteger(value.type()))
        return QString();
    const QBitArray bits = value.toBitArray();
    QString text;
    for (int bit = bits.size() - 1; bit >= 0; --bit) {
        text += QLatin1Char(bits.testBit(bit) ? '1' : '0');
        if (bit > 0 && bit % 4 == 0)
            text += QLatin1Char(' ');
    }
    return text;
}
