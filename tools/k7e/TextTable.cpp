#include "TextTable.h"

#include <QTextStream>

#include <algorithm>
#include <iterator>

namespace {

constexpr char kEllipsis[] = "...";

struct Range
{
    uint first;
    uint last;
};

// Characters that terminals show two cells wide: East Asian scripts, full-width forms and pictures.
constexpr Range kWide[] = {
    {0x1100, 0x115f},   {0x2e80, 0x303e},   {0x3041, 0xa4cf},   {0xac00, 0xd7a3},
    {0xf900, 0xfaff},   {0xfe30, 0xfe6f},   {0xff01, 0xff60},   {0xffe0, 0xffe6},
    {0x1f300, 0x1f64f}, {0x1f900, 0x1f9ff}, {0x20000, 0x3fffd},
};

int widthOf(uint codePoint)
{
    constexpr uint kFirstMark = 0x300; // nothing below is other than one cell wide
    if (codePoint < kFirstMark)
        return 1;
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return 0;
    default:
        break;
    }
    const bool isWide = std::any_of(std::begin(kWide), std::end(kWide), [=](Range range) {
        return codePoint >= range.first && codePoint <= range.last;
    });
    return isWide ? 2 : 1;
}

// The longest beginning of a text that fits a width.
struct Beginning
{
    int units;
    int width;
};

Beginning beginningOf(const QString &text, int maximum)
{
    Beginning result{0, 0};
    while (result.units < text.size()) {
        const QChar unit = text.at(result.units);
        const bool isPair = unit.isHighSurrogate() && result.units + 1 < text.size();
        const uint codePoint
            = isPair ? QChar::surrogateToUcs4(unit, text.at(result.units + 1)) : unit.unicode();
        const int width = widthOf(codePoint);
        if (width > maximum - result.width)
            break;
        result.units += isPair ? 2 : 1;
        result.width += width;
    }
    return result;
}

int widthOf(const QString &text)
{
    return beginningOf(text, 2 * text.size()).width;
}

QString cut(const QString &text, int limit)
{
    if (limit == 0 || widthOf(text) <= limit)
        return text;
    const QLatin1String ellipsis(kEllipsis);
    return text.left(beginningOf(text, limit - ellipsis.size()).units) + ellipsis;
}

} // namespace

TextTable::TextTable(const QVector<Column> &columns) : mColumns(columns), mWidths(columns.size(), 0)
{
    QStringList titles;
    for (const Column &column : columns)
        titles += column.title;
    add(titles);
}

void TextTable::addRow(const QStringList &cells)
{
    Q_ASSERT(cells.size() == mColumns.size());
    add(cells);
}

void TextTable::add(QStringList cells)
{
    for (int i = 0; i < cells.size(); ++i) {
        cells[i] = cut(cells.at(i), mColumns.at(i).limit);
        mWidths[i] = qMax(mWidths.at(i), widthOf(cells.at(i)));
    }
    mRows += cells;
}

void TextTable::print(QTextStream &out) const
{
    for (const QStringList &cells : mRows) {
        QString line;
        int pending = 0; // blanks owed before the next text
        for (int i = 0; i < cells.size(); ++i) {
            const int fill = mWidths.at(i) - widthOf(cells.at(i));
            const bool isRight = mColumns.at(i).align == Align::Right;
            if (!cells.at(i).isEmpty()) {
                line += QString(pending + (isRight ? fill : 0), QLatin1Char(' ')) + cells.at(i);
                pending = isRight ? 0 : fill;
            } else {
                pending += fill;
            }
            pending += 2;
        }
        out << line << '\n';
    }
}
