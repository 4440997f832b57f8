#ifndef CDEVICELIST_H
#define CDEVICELIST_H

#include "CDeviceItem.h"
#include "k7eCoreExport.h"

#include <QMap>
#include <QString>

class QDataStream;

/*!
    A named list of devices by key. A key may occur more than once, after unite() or in a stream;
    then device() returns the entry that came last.

    Stream layout: the name as QString, the source type as qint32, the number of devices as quint32
    and, from the largest key down to the smallest, each key as quint32 with its CDeviceItem.
*/
class K7ECORE_EXPORT CDeviceList
{
public:
    //! Where a list comes from. The codes travel in streams; any 32-bit code is a value.
    enum ESourceType : int {
        SOURCETYPE_UNSET = 0,
        SOURCETYPE_USER = 1,   //!< entered by a user
        SOURCETYPE_FILE = 2,   //!< read from a file
        SOURCETYPE_NETWORK = 3 //!< found on the network
    };

    //! Makes an empty list with a null name.
    CDeviceList();
    //! Makes an empty list with this name and source type.
    CDeviceList(QString listName, ESourceType type);
    CDeviceList(const CDeviceList &other);
    CDeviceList(CDeviceList &&other) noexcept;
    virtual ~CDeviceList();

    CDeviceList &operator=(const CDeviceList &other);
    CDeviceList &operator=(CDeviceList &&other) noexcept;
    //! Exchanges the values.
    void swap(CDeviceList &other) noexcept;

    //! Returns the number of devices; each of several with one key counts.
    Q_REQUIRED_RESULT int size() const { return devices.size(); }
    //! Returns size().
    Q_REQUIRED_RESULT int count() const { return devices.size(); }
    Q_REQUIRED_RESULT bool contains(unsigned int key) const { return devices.contains(key); }
    //! Returns the device with the key \a key, of several the one that came last; a default item if
    //! there is none.
    Q_REQUIRED_RESULT CDeviceItem device(unsigned int key) const { return devices.value(key); }
    /*!
        Makes a copy of \a item the device with the key \a key, and \a key its own key. It replaces
        the one of that key; of several the one that device() returns.
    */
    void addDevice(unsigned int key, const CDeviceItem &item);
    //! Removes all devices with the key \a key.
    void removeDevice(unsigned int key) { devices.remove(key); }
    //! Removes all devices; name and source type stay.
    void clear() { devices.clear(); }
    /*!
        Adds all devices of \a other, which may be this list; name and source type stay.

        Contract: an entry whose key is there already replaces nothing; the key occurs twice then,
        the new one first. Callers rely on it; addDevice() is what replaces.
    */
    void unite(const CDeviceList &other);

    //! Returns whether names and source types are equal and the devices with their keys in order.
    bool operator==(const CDeviceList &other) const;
    bool operator!=(const CDeviceList &other) const { return !(*this == other); }

    QString name;
    ESourceType sourceType = SOURCETYPE_UNSET;
    QMap<unsigned int, CDeviceItem> devices;
};

inline void swap(CDeviceList &left, CDeviceList &right) noexcept
{
    left.swap(right);
}

//! \relates CDeviceList Writes the code as qint32.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, CDeviceList::ESourceType type);
//! \relates CDeviceList Reads the code, which is not checked.
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CDeviceList::ESourceType &type);
//! \relates CDeviceList Writes \a list to \a out in the stream layout of the class.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CDeviceList &list);
/*!
    \relates CDeviceList
    Reads all fields without checks. What a short stream lacks is 0 or empty.

    The devices are read like a QMap: with the status reset (but not in a transaction), until one of
    the pairs fails, which leaves the list empty; an error before them is the status afterwards
    again. Several devices of one key and keys that differ from those of their items stay as they
    are.
*/
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CDeviceList &list);

#endif // CDEVICELIST_H
