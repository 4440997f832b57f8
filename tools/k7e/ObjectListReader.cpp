#include "ObjectListReader.h"

#include "CUnitParser.h"
#include "Console.h"
#include "FileError.h"
#include "RawValue.h"
#include "ValueText.h"

#include <QFile>
#include <QStringList>

#include <algorithm>

namespace {

// A line with the longest value, 256 bytes, takes less than 1 KiB; what goes beyond is no list.
constexpr qint64 kMaxLineBytes = 65536;

constexpr char kHeader[] = "index,name,unit,bytes";
constexpr int kFields = 4;

// Why a line is no object; null: it is one.
using Fault = QString;

Fault splitFields(const QString &line, QStringList &fields)
{
    int at = 0;
    const auto skipBlanks = [&] {
        while (at < line.size() && line.at(at).isSpace())
            ++at;
    };
    for (;;) {
        skipBlanks();
        QString field;
        if (at < line.size() && line.at(at) == QLatin1Char('"')) {
            for (++at;; ++at) {
                const int quote = line.indexOf(QLatin1Char('"'), at);
                if (quote < 0)
                    return QStringLiteral("the closing quote of a field is missing");
                field += line.midRef(at, quote - at);
                at = quote + 1;
                if (at >= line.size() || line.at(at) != QLatin1Char('"'))
                    break;
                field += QLatin1Char('"');
            }
            skipBlanks();
            if (at < line.size() && line.at(at) != QLatin1Char(','))
                return QStringLiteral("text behind the closing quote of a field");
        } else {
            const int comma = line.indexOf(QLatin1Char(','), at);
            const int end = comma < 0 ? line.size() : comma;
            field = line.mid(at, end - at).trimmed();
            at = end;
        }
        fields += field;
        if (at >= line.size())
            return Fault();
        ++at; // the comma
    }
}

Fault readBytes(const QString &digits, QByteArray &bytes)
{
    const auto isHexDigit = [](QChar digit) {
        const ushort unit = digit.toLower().unicode();
        return (unit >= '0' && unit <= '9') || (unit >= 'a' && unit <= 'f');
    };
    const auto other = std::find_if_not(digits.cbegin(), digits.cend(), isHexDigit);
    if (other != digits.cend()) {
        return QStringLiteral("the bytes hold \"%1\", which is no hexadecimal digit")
            .arg(visible(QString(*other)));
    }
    if (digits.size() % 2 != 0) {
        return QStringLiteral("the bytes have an odd number of hexadecimal digits, %1")
            .arg(digits.size());
    }
    bytes = QByteArray::fromHex(digits.toLatin1());
    return Fault();
}

Fault readObject(const QStringList &fields, DriveObject &object)
{
    if (fields.size() != kFields) {
        return QStringLiteral("field count %1 is not %2: %3")
            .arg(QString::number(fields.size()), QString::number(kFields), QLatin1String(kHeader));
    }
    const std::optional<ObjectIndex> index = ObjectIndex::fromText(fields.at(0));
    if (!index) {
        return QStringLiteral("index \"%1\" is not of the form 0x6041 or 0x1018:01")
            .arg(visible(fields.at(0)));
    }
    if (fields.at(1).isEmpty())
        return QStringLiteral("the name is empty");
    bool isUnit = false;
    const NUnits::EObjectUnit unit = CUnitParser::strToUnit(fields.at(2), &isUnit);
    if (!isUnit)
        return QStringLiteral("unknown unit \"%1\"").arg(visible(fields.at(2)));
    QByteArray bytes;
    Fault fault = readBytes(fields.at(3), bytes);
    if (!fault.isNull())
        return fault;
    const unsigned int size = CUnitParser::size(unit);
    if (static_cast<unsigned int>(bytes.size()) != size) {
        return QStringLiteral("byte count %1 does not fit %2, which has %3")
            .arg(QString::number(bytes.size()), fields.at(2), QString::number(size));
    }
    object = {*index, fields.at(1), unit, fromRawBytes(CUnitParser::type(unit), bytes)};
    return Fault();
}

bool isHeader(const QStringList &fields)
{
    return fields.join(QLatin1Char(',')).compare(QLatin1String(kHeader), Qt::CaseInsensitive) == 0;
}

class ListReader
{
public:
    //! Takes one \a line of the file, without its end, and returns what is wrong with it.
    Fault add(const QByteArray &line)
    {
        const QString text = QString::fromUtf8(line);
        if (text.toUtf8() != line)
            return QStringLiteral("the line is not valid UTF-8");
        const QString content = text.trimmed();
        if (content.isEmpty() || content.startsWith(QLatin1Char('#')))
            return Fault();
        const bool isFirst = !mHasContent;
        mHasContent = true;
        QStringList fields;
        Fault fault = splitFields(content, fields);
        if (!fault.isNull() || (isFirst && isHeader(fields)))
            return fault;
        DriveObject object;
        fault = readObject(fields, object);
        if (fault.isNull())
            mObjects += object;
        return fault;
    }

    QVector<DriveObject> objects() const { return mObjects; }

private:
    QVector<DriveObject> mObjects;
    bool mHasContent = false; // a line that is neither blank nor a comment was seen
};

// Passes over what is left of a line, its end included.
void skipLine(QFile &file)
{
    QByteArray rest;
    do
        rest = file.readLine(kMaxLineBytes);
    while (!rest.isEmpty() && !rest.endsWith('\n'));
}

} // namespace

std::optional<QVector<DriveObject>> readObjectList(const QString &fileName, Console &console)
{
    QFile file(fileName);
    if (!openInput(file, console))
        return std::nullopt;
    ListReader reader;
    // Not atEnd(): it is true for a pipe that has nothing to read yet.
    for (int number = 1;; ++number) {
        QByteArray line = file.readLine(kMaxLineBytes + 2); // the end, and Qt takes one less
        if (line.isEmpty())
            break;
        Fault fault;
        if (line.endsWith('\n')) {
            line.chop(1);
        } else if (line.size() > kMaxLineBytes) {
            skipLine(file);
            fault = QStringLiteral("the line is longer than %1 bytes").arg(kMaxLineBytes);
        }
        if (number == 1 && line.startsWith("\xef\xbb\xbf"))
            line.remove(0, 3); // the byte order mark that some editors write
        if (fault.isNull())
            fault = reader.add(line);
        if (!fault.isNull()) {
            console.error(
                QStringLiteral("%1:%2: %3").arg(visible(fileName), QString::number(number), fault));
        }
    }
    if (file.error() != QFileDevice::NoError)
        reportFileError(fileName, file.errorString(), console);
    return reader.objects();
}
