#include "CDeviceList.h"

#include "MapStream_p.h"

#include <QDataStream>

#include <utility>

CDeviceList::CDeviceList() = default;

CDeviceList::CDeviceList(QString listName, ESourceType type)
    : name(std::move(listName))
    , sourceType(type)
{
}

CDeviceList::CDeviceList(const CDeviceList &other) = default;
CDeviceList::CDeviceList(CDeviceList &&other) noexcept = default;
CDeviceList::~CDeviceList() = default;
CDeviceList &CDeviceList::operator=(const CDeviceList &other) = default;
CDeviceList &CDeviceList::operator=(CDeviceList &&other) noexcept = default;

void CDeviceList::swap(CDeviceList &other) noexcept
{
    name.swap(other.name);
    std::swap(sourceType, other.sourceType);
    devices.swap(other.devices);
}

void CDeviceList::addDevice(unsigned int key, const CDeviceItem &item)
{
    devices.insert(key, item)->key = key;
}

void CDeviceList::unite(const CDeviceList &other)
{
    using Devices = QMultiMap<unsigned int, CDeviceItem>;
    const Devices added(other.devices);
    Devices united(std::exchange(devices, {}));
    united.unite(added);
    devices = std::move(united);
}

bool CDeviceList::operator==(const CDeviceList &other) const
{
    return name == other.name && sourceType == other.sourceType && devices == other.devices;
}

QDataStream &operator<<(QDataStream &out, CDeviceList::ESourceType type)
{
    return out << static_cast<qint32>(type);
}

QDataStream &operator>>(QDataStream &in, CDeviceList::ESourceType &type)
{
    qint32 code = 0;
    in >> code;
    type = static_cast<CDeviceList::ESourceType>(code);
    return in;
}

QDataStream &operator<<(QDataStream &out, const CDeviceList &list)
{
    out << list.name << list.sourceType;
    MapStream::write(out, list.devices);
    return out;
}

QDataStream &operator>>(QDataStream &in, CDeviceList &list)
{
    return in >> list.name >> list.sourceType >> list.devices;
}
