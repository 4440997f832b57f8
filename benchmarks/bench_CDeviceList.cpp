#include "Pairs.h"

#include "CDeviceList.h"

#include <QByteArray>
#include <QDataStream>

#include <memory>

// Device lists written to and read from a stream, beside plain maps of the same fields.

namespace {

constexpr uint kDevices = 10000;
constexpr uchar kSubDevices = 8;

struct PlainSubDevice
{
    quint8 key = 0;
    QString name;
};

struct PlainDevice
{
    quint32 key = 0;
    QString name;
    qint32 hostAddrType = 0;
    QHostAddress hostAddress;
    quint16 port = 0;
    QString serverName;
    QString auxText;
    QString configuration;
    bool auxFlagA = false;
    bool auxFlagB = false;
    qint32 auxNumberA = 0;
    qint32 auxNumberB = 0;
    QMap<quint8, PlainSubDevice> subDevices;
};

using PlainDevices = QMap<quint32, PlainDevice>;

QDataStream &operator<<(QDataStream &out, const PlainSubDevice &item)
{
    return out << item.key << item.name;
}

QDataStream &operator>>(QDataStream &in, PlainSubDevice &item)
{
    return in >> item.key >> item.name;
}

QDataStream &operator<<(QDataStream &out, const PlainDevice &item)
{
    return out << item.key << item.name << item.hostAddrType << item.hostAddress << item.port
               << item.serverName << item.auxText << item.configuration << item.auxFlagA
               << item.auxFlagB << item.auxNumberA << item.auxNumberB << item.subDevices;
}

QDataStream &operator>>(QDataStream &in, PlainDevice &item)
{
    return in >> item.key >> item.name >> item.hostAddrType >> item.hostAddress >> item.port
        >> item.serverName >> item.auxText >> item.configuration >> item.auxFlagA >> item.auxFlagB
        >> item.auxNumberA >> item.auxNumberB >> item.subDevices;
}

CDeviceList deviceList()
{
    CDeviceList list(QStringLiteral("Plant"), CDeviceList::SOURCETYPE_FILE);
    for (uint key = 0; key < kDevices; ++key) {
        CDeviceItem item(QStringLiteral("Axis %1").arg(key), CDeviceItem::HOSTADDRTYPE_IPV4,
                         QHostAddress(0x0a000000 + key), 502, QStringLiteral("server"));
        item.configuration = QStringLiteral("setup");
        for (uchar subKey = 0; subKey < kSubDevices; ++subKey)
            item.addSubDevice(subKey, CSubDeviceItem());
        list.addDevice(key, item);
    }
    return list;
}

template <class Value>
QByteArray written(const Value &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    return bytes;
}

template <class Value>
Value read(const QByteArray &bytes)
{
    QDataStream in(bytes);
    Value value;
    in >> value;
    return value;
}

void addDeviceListPairs()
{
    const Pairs::Limit limit = {1.1, 0, -1};
    const auto list = std::make_shared<CDeviceList>(deviceList());
    const QByteArray bytes = written(*list);
    // Behind the name and the source type stands the map.
    const QByteArray mapBytes = bytes.mid(written(list->name).size() + 4);
    const auto plain = std::make_shared<PlainDevices>(read<PlainDevices>(mapBytes));
    Pairs::add(
        "write a CDeviceList of 10 000", limit, [list] { return written(*list); },
        [plain] { return written(*plain); });
    Pairs::add(
        "read a CDeviceList of 10 000", limit, [bytes] { return read<CDeviceList>(bytes); },
        [mapBytes] { return read<PlainDevices>(mapBytes); });
}

const Pairs::Group kGroup(&addDeviceListPairs);

} // namespace
