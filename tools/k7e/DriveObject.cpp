#include "DriveObject.h"

#include <QRegularExpression>

QString ObjectIndex::text() const
{
    // Qt writes hexadecimal digits in lower case; indexes are customarily written in upper case.
    QString text = QStringLiteral("%1").arg(index, 4, 16, QLatin1Char('0'));
    if (subIndex != kNoSubIndex)
        text += QStringLiteral(":%1").arg(subIndex, 2, 16, QLatin1Char('0'));
    return QStringLiteral("0x") + text.toUpper();
}

std::optional<ObjectIndex> ObjectIndex::fromText(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral("\\A0[xX]([0-9a-fA-F]{1,4})(?::([0-9a-fA-F]{1,2}))?\\z"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    ObjectIndex result;
    result.index = match.captured(1).toUShort(nullptr, 16);
    if (match.capturedLength(2) > 0)
        result.subIndex = match.captured(2).toShort(nullptr, 16);
    return result;
}
