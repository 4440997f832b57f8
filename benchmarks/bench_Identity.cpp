#include "Pairs.h"

#include "CDeviceHardwareId.h"
#include "CIPv6Address.h"
#include "CMotorBaseName.h"
#include "Nk7eGlobal.h"

#include <QFileInfo>
#include <QRegExp>
#include <QStringList>

// Identifiers read from text beside the same steps with the patterns built and matched as QRegExp.

namespace {

constexpr Pairs::Limit kLimit = {0.25, 0, -1};

bool matches(const QString &pattern, const QString &text)
{
    return QRegExp(pattern).exactMatch(text);
}

bool readNumber(ushort &number, const QString &text)
{
    if (!matches(QStringLiteral(R"(^\d{1,%1}$)").arg(3), text))
        return false;
    number = static_cast<ushort>(text.toUInt());
    return true;
}

CDeviceHardwareId::SHardwareId readHardwareId(const QString &text)
{
    CDeviceHardwareId::SHardwareId id;
    QStringList parts = text.split(QLatin1Char('_'));
    const QRegExp prefix(QStringLiteral(R"(^\D{1,1})"));
    if (prefix.indexIn(parts.first()) == 0)
        id.prefix = prefix.cap(0);
    parts.first().replace(prefix, QString());
    ushort *const numbers[] = {&id.platform, &id.version, &id.revision};
    for (int i = 0; i < parts.size(); ++i) {
        if (i == 3 || !readNumber(*numbers[i], parts.at(i))) {
            id.name = QStringList(parts.mid(i)).join(QLatin1Char('_'));
            break;
        }
    }
    return id;
}

CMotorBaseName::SMOFileName readMotorBaseName(const QString &text)
{
    CMotorBaseName::SMOFileName name;
    const QFileInfo info(text);
    if (!CMotorBaseName::fullRegExp(false).exactMatch(info.fileName()))
        return name;
    const QStringList parts = info.completeBaseName().split(QLatin1Char('_'));
    QString *const fields[] = {&name.manufacturer, &name.name, &name.number};
    for (int i = 0; i < parts.size(); ++i) {
        if (matches(QStringLiteral(R"(^([0-9a-zA-Z\-&\+]+)(\t\r|$))"), parts.at(i)))
            *fields[i] = parts.at(i);
    }
    return name;
}

struct Address
{
    uchar bytes[16] = {};
};

Address readAddress(const QString &text)
{
    Address address;
    if (QRegExp(Nk7eGlobal::IPV6_PATTERN).indexIn(text) < 0)
        return address;
    const QStringList parts = text.split(QLatin1Char(':'));
    for (int i = 0; parts.size() == 8 && i < 8; ++i) {
        const uint group = parts.at(i).toUInt(nullptr, 16);
        address.bytes[2 * i] = static_cast<uchar>(group);
        address.bytes[2 * i + 1] = static_cast<uchar>(group >> 8);
    }
    return address;
}

void addIdentityPairs()
{
    const QString id = QStringLiteral("P001_002_003_Drive_A");
    Pairs::add(
        "CDeviceHardwareId::setHardwareId", kLimit,
        [id, ours = CDeviceHardwareId()]() mutable { return ours.setHardwareId(id); },
        [id] { return readHardwareId(id); });
    Pairs::add(
        "CDeviceHardwareId::isFullHardwareId(text)", {0.25, 0, 0},
        [id] { return CDeviceHardwareId::isFullHardwareId(id); },
        [id] { return CDeviceHardwareId::fullRegExp().exactMatch(id); });
    const QString motor = QStringLiteral("MFR_M-100_7");
    Pairs::add(
        "CMotorBaseName::setFileBaseName", kLimit,
        [motor, ours = CMotorBaseName()]() mutable { return ours.setFileBaseName(motor); },
        [motor] { return readMotorBaseName(motor); });
    const QString address = QStringLiteral("fe80:0:0:0:12:34ab:0:1");
    Pairs::add(
        "CIPv6Address::setAddress(text)", {0.25, 0, 0},
        [address, ours = CIPv6Address()]() mutable { return ours.setAddress(address); },
        [address] { return readAddress(address); });
}

const Pairs::Group kGroup(&addIdentityPairs);

} // namespace
