#ifndef DEVICESTREAM_H
#define DEVICESTREAM_H

#include "CDeviceList.h"

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QStringList>
#include <QtTest>

#include <algorithm>
#include <initializer_list>
#include <utility>
#include <vector>

/*!
    The stream layouts of devices, written a second time: golden values field by field in
    hexadecimal digits, and a writer that knows nothing of the library's.
*/
namespace DeviceStream {

struct Format
{
    const char *name;
    QDataStream::ByteOrder order;
    QDataStream::Version version;
};
constexpr Format kFormats[] = {
    {"big endian, Qt 4.6", QDataStream::BigEndian, QDataStream::Qt_4_6},
    {"big endian, Qt 5.0", QDataStream::BigEndian, QDataStream::Qt_5_0},
    {"big endian, Qt 5.15", QDataStream::BigEndian, QDataStream::Qt_5_15},
    {"little endian, Qt 4.6", QDataStream::LittleEndian, QDataStream::Qt_4_6},
    {"little endian, Qt 5.0", QDataStream::LittleEndian, QDataStream::Qt_5_0},
    {"little endian, Qt 5.15", QDataStream::LittleEndian, QDataStream::Qt_5_15},
};
constexpr QDataStream::Status kErrors[]
    = {QDataStream::ReadPastEnd, QDataStream::ReadCorruptData, QDataStream::WriteFailed};

inline void setFormat(QDataStream &stream, const Format &format)
{
    stream.setByteOrder(format.order);
    stream.setVersion(format.version);
}

//! Returns what the library writes of \a value.
template <class T>
QByteArray written(const T &value, const Format &format)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    setFormat(out, format);
    out << value;
    return bytes;
}

//! A buffer that counts how often it is read from: a long loop over a dry one shows.
class CountingBuffer : public QBuffer
{
public:
    explicit CountingBuffer(const QByteArray &bytes)
    {
        setData(bytes);
        open(QIODevice::ReadOnly);
    }
    int reads() const { return mReads; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        ++mReads;
        return QBuffer::readData(data, size);
    }

private:
    int mReads = 0;
};

//! One field of a stream as hexadecimal digits, whose blanks mean nothing.
struct Field
{
    const char *name;
    const char *bigEndian;
    const char *littleEndian;

    QByteArray bytes(QDataStream::ByteOrder order) const
    {
        return QByteArray::fromHex(order == QDataStream::BigEndian ? bigEndian : littleEndian);
    }
};
using Fields = std::vector<Field>;

inline Fields joined(std::initializer_list<Fields> parts)
{
    Fields fields;
    for (const Fields &part : parts)
        fields.insert(fields.end(), part.begin(), part.end());
    return fields;
}

inline QByteArray bytesOf(const Fields &fields, QDataStream::ByteOrder order)
{
    QByteArray bytes;
    for (const Field &field : fields)
        bytes += field.bytes(order);
    return bytes;
}

//! Returns the fields with other digits in the first one called \a name.
inline Fields replaced(Fields fields, const char *name, const char *bigEndian,
                       const char *littleEndian)
{
    const auto isIt = [name](const Field &field) { return qstrcmp(field.name, name) == 0; };
    const auto it = std::find_if(fields.begin(), fields.end(), isIt);
    if (it == fields.end())
        qFatal("no field %s", name);
    *it = {name, bigEndian, littleEndian};
    return fields;
}

//! Where the first field called \a name begins and ends, and what of it is left after a cut.
struct Extent
{
    int begin = 0;
    int end = 0;

    bool isWithin(int length) const { return end <= length; }
};

inline Extent extentOf(const Fields &fields, const char *name, QDataStream::ByteOrder order)
{
    Extent extent;
    for (const Field &field : fields) {
        extent.end = extent.begin + field.bytes(order).size();
        if (qstrcmp(field.name, name) == 0)
            return extent;
        extent.begin = extent.end;
    }
    qFatal("no field %s", name);
}

//! Returns the name of the field that holds the byte at \a offset.
inline const char *fieldAt(const Fields &fields, int offset, QDataStream::ByteOrder order)
{
    int end = 0;
    for (const Field &field : fields) {
        end += field.bytes(order).size();
        if (offset < end)
            return field.name;
    }
    return "end";
}

// A device whose every field tells its byte order and its sign, with two sub-devices.

inline CDeviceItem feedDevice()
{
    CDeviceItem item;
    item.key = 0x89ABCDEF;
    item.name = QStringLiteral("Feed\u00c4");
    item.hostAddrType = static_cast<CDeviceItem::EHostAddrType>(0x01020304);
    item.hostAddress = QHostAddress(QStringLiteral("fe80::1"));
    item.hostAddress.setScopeId(QStringLiteral("eth0"));
    item.port = 65000;
    item.serverName = QStringLiteral("s\u20ac");
    item.auxText = QStringLiteral("");
    item.configuration = QStringLiteral("c");
    item.auxFlagA = true;
    item.auxFlagB = false;
    item.auxNumberA = -2;
    item.auxNumberB = 0x12345678;
    CSubDeviceItem first(QStringLiteral("A"));
    first.key = 3;
    CSubDeviceItem last(QStringLiteral("B"));
    last.key = 200;
    item.subDevices = {{3, first}, {200, last}};
    return item;
}

inline Fields feedFields()
{
    return {
        {"key", "89abcdef", "efcdab89"},
        {"name", "0000000a 0046 0065 0065 0064 00c4", "0a000000 4600 6500 6500 6400 c400"},
        {"hostAddrType", "01020304", "04030201"},
        {"hostAddress", "01 fe80000000000000 0000000000000001 00000008 0065 0074 0068 0030",
         "01 fe80000000000000 0000000000000001 08000000 6500 7400 6800 3000"},
        {"port", "fde8", "e8fd"},
        {"serverName", "00000004 0073 20ac", "04000000 7300 ac20"},
        {"auxText", "00000000", "00000000"},
        {"configuration", "00000002 0063", "02000000 6300"},
        {"auxFlagA", "01", "01"},
        {"auxFlagB", "00", "00"},
        {"auxNumberA", "fffffffe", "feffffff"},
        {"auxNumberB", "12345678", "78563412"},
        {"subDevices", "00000002", "02000000"},
        {"map key 200", "c8", "c8"},
        {"sub-device 200", "c8 00000002 0042", "c8 02000000 4200"},
        {"map key 3", "03", "03"},
        {"sub-device 3", "03 00000002 0041", "03 02000000 4100"},
    };
}

// A device with null texts, an IPv4 address, the extreme numbers and no sub-devices.

inline CDeviceItem plainDevice()
{
    CDeviceItem item;
    item.key = 5;
    item.hostAddrType = static_cast<CDeviceItem::EHostAddrType>(1);
    item.hostAddress = QHostAddress(QStringLiteral("10.0.0.1"));
    item.port = 502;
    item.auxText = QStringLiteral("x");
    item.auxFlagB = true;
    item.auxNumberA = 2147483647;
    item.auxNumberB = -2147483647 - 1;
    return item;
}

inline Fields plainFields()
{
    return {
        {"key", "00000005", "05000000"},
        {"name", "ffffffff", "ffffffff"},
        {"hostAddrType", "00000001", "01000000"},
        {"hostAddress", "00 0a000001", "00 0100000a"},
        {"port", "01f6", "f601"},
        {"serverName", "ffffffff", "ffffffff"},
        {"auxText", "00000002 0078", "02000000 7800"},
        {"configuration", "ffffffff", "ffffffff"},
        {"auxFlagA", "00", "00"},
        {"auxFlagB", "01", "01"},
        {"auxNumberA", "7fffffff", "ffffff7f"},
        {"auxNumberB", "80000000", "00000080"},
        {"subDevices", "00000000", "00000000"},
    };
}

//! Every field as text, with the scope of the address, which its comparison leaves out.
inline QString describe(const QString &text)
{
    return text.isNull() ? QStringLiteral("null") : QLatin1Char('"') + text + QLatin1Char('"');
}

inline QString describe(const CSubDeviceItem &item)
{
    return QString::number(item.key) + QLatin1Char(' ') + describe(item.name);
}

inline QString describe(const CDeviceItem &item)
{
    QStringList parts{
        QString::number(item.key),
        describe(item.name),
        QString::number(item.hostAddrType),
        QString::number(item.hostAddress.protocol()),
        item.hostAddress.isNull() ? QStringLiteral("-") : item.hostAddress.toString(),
        QString::number(item.port),
        describe(item.serverName),
        describe(item.auxText),
        describe(item.configuration),
        item.auxFlagA ? QStringLiteral("A") : QStringLiteral("not A"),
        item.auxFlagB ? QStringLiteral("B") : QStringLiteral("not B"),
        QString::number(item.auxNumberA),
        QString::number(item.auxNumberB),
    };
    for (auto it = item.subDevices.constBegin(); it != item.subDevices.constEnd(); ++it)
        parts += QString::number(it.key()) + QLatin1Char(':') + describe(it.value());
    return parts.join(QLatin1String(", "));
}

inline QString describe(const CDeviceList &list)
{
    QStringList lines{describe(list.name) + QLatin1Char(' ') + QString::number(list.sourceType)};
    for (auto it = list.devices.constBegin(); it != list.devices.constEnd(); ++it)
        lines += QString::number(it.key()) + QLatin1Char(':') + describe(it.value());
    return lines.join(QLatin1Char('\n'));
}

// The writer. Pairs come in the order of the stream, so that foreign ones can be made, too.

using SubDevices = std::vector<std::pair<quint8, CSubDeviceItem>>;
struct Device
{
    quint32 mapKey;
    CDeviceItem fields; //!< the sub-devices in it count nothing
    SubDevices subDevices;
};
using Devices = std::vector<Device>;

//! Returns the pairs as the library is to write them: the key of \a keyOf falls, equal ones stay.
template <class Pairs, class KeyOf>
Pairs falling(Pairs pairs, KeyOf keyOf)
{
    std::stable_sort(pairs.begin(), pairs.end(), [keyOf](const auto &first, const auto &second) {
        return keyOf(first) > keyOf(second);
    });
    return pairs;
}

inline SubDevices falling(const SubDevices &pairs)
{
    return falling(pairs, [](const SubDevices::value_type &pair) { return pair.first; });
}

inline Devices falling(const Devices &devices)
{
    Devices sorted = falling(devices, [](const Device &device) { return device.mapKey; });
    for (Device &device : sorted)
        device.subDevices = falling(device.subDevices);
    return sorted;
}

inline void write(QDataStream &out, const SubDevices &pairs)
{
    out << static_cast<qint32>(pairs.size());
    for (const auto &[mapKey, item] : pairs)
        out << static_cast<qint8>(mapKey) << static_cast<qint8>(item.key) << item.name;
}

inline void write(QDataStream &out, const CDeviceItem &fields, const SubDevices &subDevices)
{
    out << static_cast<qint32>(fields.key) << fields.name
        << static_cast<qint32>(fields.hostAddrType) << fields.hostAddress
        << static_cast<qint16>(fields.port) << fields.serverName << fields.auxText
        << fields.configuration << fields.auxFlagA << fields.auxFlagB
        << static_cast<qint32>(fields.auxNumberA) << static_cast<qint32>(fields.auxNumberB);
    write(out, subDevices);
}

inline void write(QDataStream &out, const QString &name, qint32 sourceType, const Devices &devices)
{
    out << name << sourceType << static_cast<qint32>(devices.size());
    for (const Device &device : devices) {
        out << static_cast<qint32>(device.mapKey);
        write(out, device.fields, device.subDevices);
    }
}

//! Returns what write() makes of the arguments.
template <class... Arguments>
QByteArray bytesOf(const Format &format, const Arguments &...arguments)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    setFormat(out, format);
    write(out, arguments...);
    return bytes;
}

//! Adds rows with codes of an enumeration and the bytes that they have in a stream.
inline void addCodeRows()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("bigEndian");
    QTest::addColumn<QByteArray>("littleEndian");
    const auto row
        = [](const char *name, int type, const char *bigEndian, const char *littleEndian) {
              QTest::newRow(name) << type << QByteArray(bigEndian) << QByteArray(littleEndian);
          };
    row("0 unset", 0, "00000000", "00000000");
    row("1", 1, "00000001", "01000000");
    row("0x01020304", 0x01020304, "01020304", "04030201");
    row("-1", -1, "ffffffff", "ffffffff");
    row("-2", -2, "fffffffe", "feffffff");
    row("INT_MAX", INT_MAX, "7fffffff", "ffffff7f");
    row("INT_MIN", INT_MIN, "80000000", "00000080");
}

//! Writes and reads the code of the row as a \a Code in all formats.
template <class Code>
void checkCode()
{
    QFETCH(const int, type);
    for (const Format &format : kFormats) {
        const bool isBig = format.order == QDataStream::BigEndian;
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        setFormat(out, format);
        QCOMPARE(&(out << static_cast<Code>(type)), &out);
        QTEST(bytes.toHex(), isBig ? "bigEndian" : "littleEndian");

        QDataStream in(bytes + "tail");
        setFormat(in, format);
        auto read = static_cast<Code>(77);
        QCOMPARE(&(in >> read), &in);
        QCOMPARE(int(read), type);
        QCOMPARE(in.status(), QDataStream::Ok);
        QCOMPARE(in.device()->bytesAvailable(), 4LL);
    }
}

//! Reads a \a Code from streams that are too short for one.
template <class Code>
void checkShortCode()
{
    for (int length = 0; length < 4; ++length) {
        QDataStream in(QByteArray(length, '\x01'));
        auto read = static_cast<Code>(77);
        in >> read;
        QCOMPARE(int(read), 0);
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
    }
}

//! Returns the item with empty texts made null: a short stream may leave either.
inline CDeviceItem withNullTexts(CDeviceItem item)
{
    for (QString *text : {&item.name, &item.serverName, &item.auxText, &item.configuration}) {
        if (text->isEmpty())
            *text = QString();
    }
    return item;
}

} // namespace DeviceStream

#endif // DEVICESTREAM_H
