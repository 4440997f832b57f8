#include "DeviceReport.h"

#include "CDeviceList.h"
#include "ValueText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace {

// The parts of a line, joined with commas; those without a text are left out.
class Line
{
public:
    explicit Line(const QString &start) { mParts += start; }

    void add(const char *title, const QString &text)
    {
        if (!text.isEmpty())
            mParts += QLatin1String(title) + visible(text);
    }
    void addCode(const char *title, int code)
    {
        if (code != 0)
            add(title, QString::number(code));
    }
    void addFlag(const char *title, bool flag)
    {
        if (flag)
            mParts += QLatin1String(title);
    }

    QString text() const { return mParts.join(QStringLiteral(", ")) + QLatin1Char('\n'); }

private:
    QStringList mParts;
};

// "3 devices", "1 device"
QString countText(int count, const char *what)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), QLatin1String(what),
                                         count == 1 ? QString() : QStringLiteral("s"));
}

// What begins the line of an entry: its key and name, and its own key if that is another one.
Line entryLine(unsigned int key, unsigned int ownKey, const QString &name)
{
    Line line(QStringLiteral("%1 \"%2\"").arg(QString::number(key), visible(name)));
    if (ownKey != key)
        line.add("own key ", QString::number(ownKey));
    return line;
}

QString endpointText(const CDeviceItem &item)
{
    QString text = item.hostAddress.toString();
    if (item.hostAddress.protocol() == QAbstractSocket::IPv6Protocol)
        text = QStringLiteral("[%1]").arg(text);
    return item.port == 0 ? text : QStringLiteral("%1:%2").arg(text).arg(item.port);
}

Line deviceLine(unsigned int key, const CDeviceItem &item)
{
    Line line = entryLine(key, item.key, item.name);
    line.add("at ", endpointText(item));
    line.addCode("address type ", item.hostAddrType);
    line.add("server ", item.serverName);
    line.add("configuration ", item.configuration);
    line.add("text ", item.auxText);
    line.addFlag("flag A", item.auxFlagA);
    line.addFlag("flag B", item.auxFlagB);
    line.addCode("number A ", item.auxNumberA);
    line.addCode("number B ", item.auxNumberB);
    line.addFlag("not valid", !item.isValid());
    return line;
}

QJsonObject entryJson(unsigned int key, unsigned int ownKey, const QString &name)
{
    return {{QStringLiteral("key"), static_cast<qint64>(key)},
            {QStringLiteral("ownKey"), static_cast<qint64>(ownKey)},
            {QStringLiteral("name"), name}};
}

QJsonObject deviceJson(unsigned int key, const CDeviceItem &item)
{
    QJsonArray subDevices;
    for (auto it = item.subDevices.begin(); it != item.subDevices.end(); ++it)
        subDevices += entryJson(it.key(), it->key, it->name);
    QJsonObject json = entryJson(key, item.key, item.name);
    json.insert(QStringLiteral("hostAddrType"), static_cast<int>(item.hostAddrType));
    json.insert(QStringLiteral("hostAddress"), item.hostAddress.toString());
    json.insert(QStringLiteral("port"), item.port);
    json.insert(QStringLiteral("serverName"), item.serverName);
    json.insert(QStringLiteral("auxText"), item.auxText);
    json.insert(QStringLiteral("configuration"), item.configuration);
    json.insert(QStringLiteral("auxFlagA"), item.auxFlagA);
    json.insert(QStringLiteral("auxFlagB"), item.auxFlagB);
    json.insert(QStringLiteral("auxNumberA"), item.auxNumberA);
    json.insert(QStringLiteral("auxNumberB"), item.auxNumberB);
    json.insert(QStringLiteral("valid"), item.isValid());
    json.insert(QStringLiteral("subDevices"), subDevices);
    return json;
}

} // namespace

void printTree(const CDeviceList &list, QTextStream &out)
{
    Line head(QStringLiteral("\"%1\"").arg(visible(list.name)));
    head.addCode("source type ", list.sourceType);
    head.add("", countText(list.size(), "device"));
    out << head.text();
    for (auto device = list.devices.begin(); device != list.devices.end(); ++device) {
        out << "  " << deviceLine(device.key(), *device).text();
        const auto &subDevices = device->subDevices;
        for (auto it = subDevices.begin(); it != subDevices.end(); ++it)
            out << "    " << entryLine(it.key(), it->key, it->name).text();
    }
}

void printJson(const CDeviceList &list, QTextStream &out)
{
    QJsonArray devices;
    for (auto it = list.devices.begin(); it != list.devices.end(); ++it)
        devices += deviceJson(it.key(), *it);
    const QJsonObject json{{QStringLiteral("name"), list.name},
                           {QStringLiteral("sourceType"), static_cast<int>(list.sourceType)},
                           {QStringLiteral("devices"), devices}};
    out << QString::fromUtf8(QJsonDocument(json).toJson());
}
