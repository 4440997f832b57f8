#include "CSubDeviceItem.h"

#include <QDataStream>

#include <utility>

CSubDeviceItem::CSubDeviceItem() : CSubDeviceItem(QStringLiteral("Series K7 Sub-Device"))
{
}

CSubDeviceItem::CSubDeviceItem(QString itemName) : name(std::move(itemName))
{
}

bool CSubDeviceItem::operator==(const CSubDeviceItem &other) const
{
    return key == other.key && name == other.name;
}

QDataStream &operator<<(QDataStream &out, const CSubDeviceItem &item)
{
    return out << item.key << item.name;
}

QDataStream &operator>>(QDataStream &in, CSubDeviceItem &item)
{
    return in >> item.key >> item.name;
}
