#ifndef CDEVICEITEM_H
#define CDEVICEITEM_H

#include "CSubDeviceItem.h"
#include "k7eCoreExport.h"

#include <QHostAddress>
#include <QMap>
#include <QString>

class QDataStream;

/*!
    A device that a program knows about, an entry of CDeviceList::devices: its network endpoint,
    texts, flags and sub-devices. What the fields mean lies with the programs; the library keeps,
    compares and streams them.

    Stream layout, in this order: key qint32, name QString, hostAddrType qint32, hostAddress
    QHostAddress, port qint16, serverName, auxText and configuration QString, auxFlagA and auxFlagB
    bool, auxNumberA and auxNumberB qint32; then the sub-devices: their count as quint32 and, from
    the largest key down to the smallest, each key as qint8 with its CSubDeviceItem. Unsigned fields
    travel as their bit patterns.
*/
struct K7ECORE_EXPORT CDeviceItem
{
    //! The kind of the host address. The codes travel in streams; any 32-bit code is a value.
    enum EHostAddrType : int {
        HOSTADDRTYPE_UNSET = 0, //!< no address: such a device is not valid
        HOSTADDRTYPE_IPV4 = 1,
        HOSTADDRTYPE_IPV6 = 2,
        HOSTADDRTYPE_SERVER = 3 //!< reached through the server named serverName
    };

    //! Makes an item whose fields are unset: texts null, numbers 0, no sub-devices.
    CDeviceItem();
    //! Makes an item with these fields, the others unset; a \a portNumber of 0 is unset too.
    CDeviceItem(QString deviceName, EHostAddrType type, QHostAddress address,
                unsigned short portNumber, QString server);

    //! Returns whether there is an address, and none of port, hostAddrType and auxNumberB is 0.
    Q_REQUIRED_RESULT bool isValid() const;
    Q_REQUIRED_RESULT QString configurationName() const { return configuration; }
    /*!
        Makes a copy of \a item the sub-device with the key \a subKey, and \a subKey its own key.
        It replaces the one of that key; of several the one that subDevices.value() returns.
    */
    void addSubDevice(unsigned char subKey, const CSubDeviceItem &item);

    //! Returns whether all fields are equal, the sub-devices with their keys in order.
    bool operator==(const CDeviceItem &other) const;
    bool operator!=(const CDeviceItem &other) const { return !(*this == other); }

    unsigned int key = 0; //!< as in the list that holds the item
    QString name;
    EHostAddrType hostAddrType = HOSTADDRTYPE_UNSET;
    QHostAddress hostAddress;
    unsigned short port = 0; //!< 0: unset
    QString serverName;
    QString auxText;
    QString configuration; //!< the configuration's name
    bool auxFlagA = false;
    bool auxFlagB = false;
    int auxNumberA = 0;
    int auxNumberB = 0; //!< 0: the device is not valid
    QMap<unsigned char, CSubDeviceItem> subDevices;
};

//! \relates CDeviceItem Writes the code as qint32.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, CDeviceItem::EHostAddrType type);
//! \relates CDeviceItem Reads the code, which is not checked.
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CDeviceItem::EHostAddrType &type);
//! \relates CDeviceItem Writes \a item to \a out in the stream layout of the class.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CDeviceItem &item);
/*!
    \relates CDeviceItem
    Reads all fields without checks. What a short stream lacks is 0 or empty, the address 0.0.0.0.

    The sub-devices are read like a QMap: with the status reset (but not in a transaction), until
    one of the pairs fails, which leaves them empty; an error before them is the status afterwards
    again. Several of one key and keys that differ from those of their items stay as they are.
*/
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CDeviceItem &item);

#endif // CDEVICEITEM_H
