#ifndef DRIVEOBJECT_H
#define DRIVEOBJECT_H

#include "CVariant.h"
#include "NUnits.h"

#include <QString>

#include <optional>

/*!
    The place of an object in the object dictionary of a device: an index, with or without a
    sub-index.
*/
struct ObjectIndex
{
    static constexpr qint16 kNoSubIndex = -1;

    quint16 index = 0;
    qint16 subIndex = kNoSubIndex; //!< 0..255 or kNoSubIndex

    //! Returns the text such as "0x6041" or "0x1018:01".
    Q_REQUIRED_RESULT QString text() const;
    //! Returns the index that \a text names in that form, or nothing; leading zeros may be missing.
    Q_REQUIRED_RESULT static std::optional<ObjectIndex> fromText(const QString &text);
};

/*!
    An object of a device with its value. The type of the value is the type of the unit.
*/
struct DriveObject
{
    ObjectIndex index;
    QString name;
    NUnits::EObjectUnit unit = NUnits::UNIT_UNKNOWN;
    CVariant value; //!< null for a unit without a type
};

#endif // DRIVEOBJECT_H
