#ifndef CSUBDEVICEITEM_H
#define CSUBDEVICEITEM_H

#include "k7eCoreExport.h"

#include <QString>

class QDataStream;

/*!
    A sub-device of a drive controller, an entry of CDeviceItem::subDevices.

    Stream layout: the key as qint8 (its bit pattern), the name as QString.
*/
struct K7ECORE_EXPORT CSubDeviceItem
{
    //! Makes an item with the key 0 and the name "Series K7 Sub-Device".
    CSubDeviceItem();
    //! Makes an item with the key 0 and the given name.
    CSubDeviceItem(QString itemName);

    //! Returns whether keys and names are equal.
    bool operator==(const CSubDeviceItem &other) const;
    bool operator!=(const CSubDeviceItem &other) const { return !(*this == other); }

    unsigned char key = 0; //!< as in the map that holds the item
    QString name;
};

//! \relates CSubDeviceItem Writes \a item to \a out in the stream layout of the class.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CSubDeviceItem &item);
//! \relates CSubDeviceItem Reads both fields; what a short stream lacks is 0 or empty.
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CSubDeviceItem &item);

#endif // CSUBDEVICEITEM_H
