#include "ObjectEdit.h"

#include "Console.h"
#include "ValueText.h"

#include <QtEndian>

namespace {

// Variants compare date-times as the numbers they convert to, and there is none without a
// converter: all date-times would be equal. The variant takes the number from the record itself.
void makeDateTimesComparable()
{
    static const bool isRegistered = QMetaType::registerConverter<NTypes::tsDateTime, qlonglong>(
        [](const NTypes::tsDateTime &value) { return qFromLittleEndian<qint64>(&value); });
    Q_UNUSED(isRegistered)
}

// Returns the position of the only object of this name, or reports why there is none.
std::optional<int> findObject(const QVector<DriveObject> &objects, const QString &name,
                              Console &console)
{
    std::optional<int> found;
    for (int i = 0; i < objects.size(); ++i) {
        if (objects.at(i).name != name)
            continue;
        if (found) {
            console.error(QStringLiteral("cannot set \"%1\": several objects have that name")
                              .arg(visible(name)));
            return std::nullopt;
        }
        found = i;
    }
    if (!found) {
        console.error(
            QStringLiteral("cannot set \"%1\": no object has that name").arg(visible(name)));
    }
    return found;
}

} // namespace

std::optional<Setting> Setting::fromText(const QString &text)
{
    const int equals = text.indexOf(QLatin1Char('='));
    if (equals <= 0)
        return std::nullopt;
    return Setting{text.left(equals), text.mid(equals + 1)};
}

QVector<Edit> applySettings(const QVector<Setting> &settings, QVector<DriveObject> &objects,
                            Console &console)
{
    makeDateTimesComparable();
    QVector<Edit> edits;
    for (const Setting &setting : settings) {
        const std::optional<int> position = findObject(objects, setting.name, console);
        if (!position)
            continue;
        DriveObject &object = objects[*position];
        if (object.value.type() == NTypes::TYPE_UNKNOWN) {
            console.error(QStringLiteral("cannot set \"%1\": its unit has no data type")
                              .arg(visible(setting.name)));
            continue;
        }
        const Edit edit{*position, object.value,
                        CVariant::fromStr(setting.text, object.value.type())};
        if (edit.isChange())
            object.value = edit.after;
        edits += edit;
    }
    return edits;
}
