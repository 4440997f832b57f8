#include "ObjectReport.h"

#include "CStr.h"
#include "CUnitParser.h"
#include "TextTable.h"
#include "ValueText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace {

// Every number fits, -9223372036854775808 and its hexadecimal form included.
constexpr int kValueWidth = 28;
constexpr int kHexWidth = 19;

int bytesOf(const DriveObject &object)
{
    return static_cast<int>(CUnitParser::size(object.unit));
}

QJsonObject toJson(const DriveObject &object)
{
    QJsonObject json{
        {QStringLiteral("index"), object.index.text()},
        {QStringLiteral("name"), object.name},
        {QStringLiteral("unit"), CUnitParser::unitToStr(object.unit)},
        {QStringLiteral("unitCode"), static_cast<int>(object.unit)},
        {QStringLiteral("type"), CStr::nTypeToStr(object.value.type())},
        {QStringLiteral("bytes"), bytesOf(object)},
        {QStringLiteral("value"), object.value.toStr()},
        {QStringLiteral("hex"), hexText(object.value)},
    };
    const QString bits = bitText(object.value);
    if (!bits.isEmpty())
        json.insert(QStringLiteral("bits"), QString(bits).remove(QLatin1Char(' ')));
    return json;
}

} // namespace

void printTable(const QVector<DriveObject> &objects, Cells cells, QTextStream &out)
{
    const bool isCut = cells == Cells::Cut;
    TextTable table({{QStringLiteral("INDEX")},
                     {QStringLiteral("NAME")},
                     {QStringLiteral("UNIT")},
                     {QStringLiteral("TYPE")},
                     {QStringLiteral("BYTES"), TextTable::Align::Right},
                     {QStringLiteral("VALUE"), TextTable::Align::Left, isCut ? kValueWidth : 0},
                     {QStringLiteral("HEX"), TextTable::Align::Left, isCut ? kHexWidth : 0},
                     {QStringLiteral("BITS")}});
    for (const DriveObject &object : objects) {
        table.addRow({object.index.text(), visible(object.name),
                      CUnitParser::unitToStr(object.unit), CStr::nTypeToStr(object.value.type()),
                      QString::number(bytesOf(object)), visible(object.value.toStr()),
                      hexText(object.value), bitText(object.value)});
    }
    table.print(out);
}

void printEdits(const QVector<DriveObject> &objects, const QVector<Edit> &edits, QTextStream &out)
{
    for (const Edit &edit : edits) {
        const QString name = visible(objects.at(edit.object).name);
        const QString before = visible(edit.before.toStr());
        const QString after = visible(edit.after.toStr());
        if (edit.isChange())
            out << QStringLiteral("%1: changed from \"%2\" to \"%3\"\n").arg(name, before, after);
        else
            out << QStringLiteral("%1: unchanged, \"%2\"\n").arg(name, before);
    }
}

void printJson(const QVector<DriveObject> &objects, const QVector<Edit> &edits, QTextStream &out)
{
    const QString oldValue = QStringLiteral("oldValue");
    const QString changed = QStringLiteral("changed");
    QVector<QJsonObject> rows;
    for (const DriveObject &object : objects)
        rows += toJson(object);
    for (const Edit &edit : edits) {
        QJsonObject &row = rows[edit.object];
        if (!row.contains(oldValue))
            row.insert(oldValue, edit.before.toStr());
        row.insert(changed, edit.isChange() || row.value(changed).toBool());
    }
    QJsonArray array;
    for (const QJsonObject &row : qAsConst(rows))
        array += row;
    out << QString::fromUtf8(QJsonDocument(array).toJson());
}
