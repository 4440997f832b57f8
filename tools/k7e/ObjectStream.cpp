#include "ObjectStream.h"

#include "CUnitParser.h"
#include "FileError.h"
#include "SuiteFormat.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

constexpr quint32 kMagic = 0x4b374f4c;
constexpr quint32 kFormat = 1;

void readObject(QDataStream &in, DriveObject &object)
{
    qint32 unit = 0;
    in >> object.index.index >> object.index.subIndex >> object.name >> unit >> object.value;
    object.unit = static_cast<NUnits::EObjectUnit>(unit);
    bool isUnit = false;
    const NTypes::ETypes type = CUnitParser::type(object.unit, &isUnit);
    const qint16 subIndex = object.index.subIndex;
    const bool isObject = isUnit && type == object.value.type()
        && subIndex >= ObjectIndex::kNoSubIndex && subIndex <= 255;
    if (!isObject && in.status() == QDataStream::Ok)
        in.setStatus(QDataStream::ReadCorruptData);
}

} // namespace

void writeObjectStream(const QVector<DriveObject> &objects, const QString &fileName,
                       Console &console)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile()) {
        reportFileError(fileName, QStringLiteral("not a regular file"), console);
        return;
    }
    QSaveFile file(fileName);
    bool isWritten = file.open(QIODevice::WriteOnly);
    if (isWritten) {
        QDataStream out(&file);
        setSuiteFormat(out);
        out << kMagic << kFormat << static_cast<quint32>(objects.size());
        for (const DriveObject &object : objects) {
            out << object.index.index << object.index.subIndex << object.name
                << static_cast<qint32>(object.unit) << object.value;
        }
        isWritten = file.commit();
    }
    if (!isWritten)
        reportFileError(fileName, file.errorString(), console);
}

std::optional<QVector<DriveObject>> readObjectStream(const QString &fileName, Console &console)
{
    const auto report = [&](const QString &text) { reportFileError(fileName, text, console); };
    QFile file(fileName);
    if (!openInput(file, console))
        return std::nullopt;
    QDataStream in(&file);
    setSuiteFormat(in);
    quint32 magic = 0;
    quint32 format = 0;
    quint32 count = 0;
    in >> magic >> format >> count;
    if (magic != kMagic) {
        report(QStringLiteral("not an object stream"));
        return std::nullopt;
    }
    if (in.status() != QDataStream::Ok) {
        report(QStringLiteral("ends within the header"));
        return std::nullopt;
    }
    if (format != kFormat) {
        report(QStringLiteral("format %1 of the object stream is not known").arg(format));
        return std::nullopt;
    }
    QVector<DriveObject> objects;
    for (quint32 i = 0; i < count; ++i) {
        DriveObject object;
        readObject(in, object);
        if (in.status() != QDataStream::Ok) {
            const QString text = in.status() == QDataStream::ReadPastEnd
                ? QStringLiteral("ends within object %1 of %2")
                : QStringLiteral("object %1 of %2 is damaged");
            report(text.arg(i + 1).arg(count));
            return objects;
        }
        objects += object;
    }
    if (!file.peek(1).isEmpty())
        report(QStringLiteral("has data behind the last object"));
    return objects;
}
