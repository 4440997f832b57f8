#include "CDeviceList.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QList>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

QByteArray written(const CDeviceList &list, const QDataStream &format)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(format.byteOrder());
    out.setVersion(format.version());
    out << list;
    return bytes;
}

// Every operation of a device, whatever it holds.
void useAll(const CDeviceItem &device)
{
    const bool isUnset = device.hostAddress.isNull() || device.port == 0 || device.hostAddrType == 0
        || device.auxNumberB == 0;
    require(device.isValid() == !isUnset);
    require(device.configurationName() == device.configuration);
    CDeviceItem other = device;
    require(other == device && !(other != device));
    for (auto it = device.subDevices.cbegin(); it != device.subDevices.cend(); ++it) {
        const bool isEqual = it.key() == it->key;
        other.addSubDevice(it.key(), *it);
        require(other.subDevices.value(it.key()).key == it.key());
        require(other.subDevices.size() == device.subDevices.size());
        require(!isEqual || *it == other.subDevices.value(it.key()));
    }
    other.auxNumberA ^= 1;
    require(other != device);
}

// Every operation of a list, on each key it holds and beside them.
void useAll(const CDeviceList &list)
{
    require(list.size() == list.devices.size() && list.count() == list.size());
    CDeviceList other = list;
    require(other == list && !(other != list));
    other.unite(list);
    require(other.size() == 2 * list.size());
    other.unite(other);
    require(other.size() == 4 * list.size());
    require((other == list) == (list.size() == 0));
    for (const unsigned int key : list.devices.keys()) {
        const auto first = list.devices.constFind(key);
        require(list.contains(key) && list.device(key) == *first);
        require(other.device(key) == *first);
        other = list;
        other.addDevice(key, *other.devices.constFind(key));
        require(other.size() == list.size() && other.device(key).key == key);
        other.removeDevice(key);
        require(!other.contains(key) && other.device(key) == CDeviceItem());
        require(other.size() == list.size() - list.devices.count(key));
        other.addDevice(key, *first);
        require(other.contains(key));
        other = list;
        other.unite(list);
    }
    for (const CDeviceItem &device : list.devices)
        useAll(device);
    other.clear();
    require(other.size() == 0 && other.name == list.name && other.sourceType == list.sourceType);
}

} // namespace

// The first byte selects byte order and version of the stream; the rest is read as a device list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data + 1),
                                                     static_cast<int>(size - 1));
    QDataStream in(bytes);
    in.setByteOrder((data[0] & 1) != 0 ? QDataStream::LittleEndian : QDataStream::BigEndian);
    in.setVersion((data[0] & 2) != 0 ? QDataStream::Qt_4_6 : QDataStream::Qt_5_15);
    CDeviceList list;
    in >> list;
    // Only damage in the name, which is empty then, lets devices be kept behind it.
    require(in.status() == QDataStream::Ok || list.size() == 0 || list.name.isEmpty());
    useAll(list);

    // What was read is written as it is, whatever it is, and comes back. A sound list was read to
    // its end: it takes as many bytes again.
    const QByteArray copy = written(list, in);
    require(in.status() != QDataStream::Ok || copy.size() == in.device()->pos());
    QDataStream again(copy);
    again.setByteOrder(in.byteOrder());
    again.setVersion(in.version());
    CDeviceList read;
    again >> read;
    require(again.status() == QDataStream::Ok && again.atEnd());
    require(read == list);
    require(written(read, in) == copy);
    return 0;
}
