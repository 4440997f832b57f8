// A program of somebody who has installed the library: it sets every strict macro of Qt's, uses
// each public class, and declares its own stream operators for the date-time record.
#define QT_NO_CAST_FROM_ASCII
#define QT_NO_CAST_TO_ASCII
#define QT_NO_KEYWORDS

#include <CDeviceList.h>
#include <CStr.h>
#include <CUnitParser.h>
#include <CVariant.h>
#include <k7eGlobal.h>

#include <QByteArray>
#include <QDataStream>

#include <cstdio>

QDataStream &operator<<(QDataStream &out, const NTypes::tsDateTime &value)
{
    return out << value.date.year;
}

QDataStream &operator>>(QDataStream &in, NTypes::tsDateTime &value)
{
    return in >> value.date.year;
}

int main()
{
    const NTypes::ETypes type = CUnitParser::type(QStringLiteral("UNIT_I_1mA"));
    CVariant current(QStringLiteral("-1500"), type);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    CDeviceList devices(QStringLiteral("plant"), CDeviceList::SOURCETYPE_USER);
    devices.addDevice(7,
                      CDeviceItem(QStringLiteral("axis"), CDeviceItem::HOSTADDRTYPE_IPV4,
                                  QHostAddress(QHostAddress::LocalHost), 502, QString()));
    out << devices << current << CString32(QStringLiteral("axis")) << NTypes::tsDateTime();

    QDataStream in(bytes);
    CVariant read;
    CString32 name;
    CDeviceList readDevices;
    in >> readDevices >> read >> name;
    const bool same = in.status() == QDataStream::Ok && readDevices == devices && read == current
        && name.str() == QStringLiteral("axis");
    std::printf("%s %s %s\n", qPrintable(CStr::nTypeToStr(type)), qPrintable(read.toStr()),
                same ? "same" : "different");
    return same ? 0 : 1;
}
