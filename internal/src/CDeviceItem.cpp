#include "CDeviceItem.h"

#include "MapStream_p.h"

#include <QDataStream>

#include <tuple>
#include <utility>

namespace {

// The fields in the order of the stream, but for the sub-devices, which come last.
template <class Item>
auto fields(Item &item)
{
    return std::tie(item.key, item.name, item.hostAddrType, item.hostAddress, item.port,
                    item.serverName, item.auxText, item.configuration, item.auxFlagA, item.auxFlagB,
                    item.auxNumberA, item.auxNumberB);
}

} // namespace

CDeviceItem::CDeviceItem() = default;

CDeviceItem::CDeviceItem(QString deviceName, EHostAddrType type, QHostAddress address,
                         unsigned short portNumber, QString server)
    : name(std::move(deviceName))
    , hostAddrType(type)
    , hostAddress(address)
    , port(portNumber)
    , serverName(std::move(server))
{
}

bool CDeviceItem::isValid() const
{
    return !hostAddress.isNull() && port != 0 && hostAddrType != HOSTADDRTYPE_UNSET
        && auxNumberB != 0;
}

void CDeviceItem::addSubDevice(unsigned char subKey, const CSubDeviceItem &item)
{
    subDevices.insert(subKey, item)->key = subKey;
}

bool CDeviceItem::operator==(const CDeviceItem &other) const
{
    return fields(*this) == fields(other) && subDevices == other.subDevices;
}

QDataStream &operator<<(QDataStream &out, CDeviceItem::EHostAddrType type)
{
    return out << static_cast<qint32>(type);
}

QDataStream &operator>>(QDataStream &in, CDeviceItem::EHostAddrType &type)
{
    qint32 code = 0;
    in >> code;
    type = static_cast<CDeviceItem::EHostAddrType>(code);
    return in;
}

QDataStream &operator<<(QDataStream &out, const CDeviceItem &item)
{
    std::apply([&out](const auto &...field) { (out << ... << field); }, fields(item));
    MapStream::write(out, item.subDevices);
    return out;
}

QDataStream &operator>>(QDataStream &in, CDeviceItem &item)
{
    std::apply([&in](auto &...field) { (in >> ... >> field); }, fields(item));
    return in >> item.subDevices;
}
