#include "CDeviceItem.h"

#include "DeviceStream.h"
#include "MessageRecorder.h"

#include <QDataStream>
#include <QtTest>

#include <climits>
#include <cstring>
#include <new>
#include <random>
#include <type_traits>
#include <utility>

using DeviceStream::CountingBuffer;
using DeviceStream::describe;
using DeviceStream::Extent;
using DeviceStream::feedDevice;
using DeviceStream::feedFields;
using DeviceStream::Fields;
using DeviceStream::Format;
using DeviceStream::kErrors;
using DeviceStream::kFormats;
using DeviceStream::plainDevice;
using DeviceStream::plainFields;
using DeviceStream::setFormat;
using DeviceStream::SubDevices;
using DeviceStream::withNullTexts;
using DeviceStream::written;
using EHostAddrType = CDeviceItem::EHostAddrType;

Q_DECLARE_METATYPE(CDeviceItem)
Q_DECLARE_METATYPE(QDataStream::ByteOrder)
Q_DECLARE_METATYPE(QDataStream::Status)
Q_DECLARE_METATYPE(QHostAddress)

namespace {

using SubDeviceMap = QMap<unsigned char, CSubDeviceItem>;

static_assert(std::is_same_v<decltype(CDeviceItem::key), unsigned int>);
static_assert(std::is_same_v<decltype(CDeviceItem::name), QString>);
static_assert(std::is_same_v<decltype(CDeviceItem::hostAddrType), EHostAddrType>);
static_assert(std::is_same_v<decltype(CDeviceItem::hostAddress), QHostAddress>);
static_assert(std::is_same_v<decltype(CDeviceItem::port), unsigned short>);
static_assert(std::is_same_v<decltype(CDeviceItem::serverName), QString>);
static_assert(std::is_same_v<decltype(CDeviceItem::auxText), QString>);
static_assert(std::is_same_v<decltype(CDeviceItem::configuration), QString>);
static_assert(std::is_same_v<decltype(CDeviceItem::auxFlagA), bool>);
static_assert(std::is_same_v<decltype(CDeviceItem::auxFlagB), bool>);
static_assert(std::is_same_v<decltype(CDeviceItem::auxNumberA), int>);
static_assert(std::is_same_v<decltype(CDeviceItem::auxNumberB), int>);
static_assert(std::is_same_v<decltype(CDeviceItem::subDevices), SubDeviceMap>);
static_assert(!std::is_polymorphic_v<CDeviceItem>); // a plain structure
static_assert(std::is_constructible_v<CDeviceItem, QString, EHostAddrType, QHostAddress,
                                      unsigned short, QString>);
static_assert(std::is_same_v<std::underlying_type_t<EHostAddrType>, int>);
static_assert(std::is_convertible_v<EHostAddrType, int>); // a plain enumeration
static_assert(CDeviceItem::HOSTADDRTYPE_UNSET == 0);
static_assert(std::is_same_v<decltype(&CDeviceItem::addSubDevice),
                             void (CDeviceItem::*)(unsigned char, const CSubDeviceItem &)>);
static_assert(
    std::is_same_v<decltype(&CDeviceItem::configurationName), QString (CDeviceItem::*)() const>);
static_assert(std::is_same_v<decltype(&CDeviceItem::isValid), bool (CDeviceItem::*)() const>);

constexpr EHostAddrType code(int value)
{
    return static_cast<EHostAddrType>(value);
}

QHostAddress address(const char *text)
{
    return QHostAddress(QLatin1String(text));
}

CSubDeviceItem subDevice(unsigned char key, const char *name)
{
    CSubDeviceItem item{QString(QLatin1String(name))};
    item.key = key;
    return item;
}

//! Makes a map of the pairs as they come from a stream: a later one stands before those of its key.
SubDeviceMap mapOf(const SubDevices &pairs)
{
    QMultiMap<unsigned char, CSubDeviceItem> map;
    for (const auto &[key, item] : pairs)
        map.insert(key, item);
    return map;
}

CDeviceItem withSubDevices(CDeviceItem item, const SubDevices &pairs)
{
    item.subDevices = mapOf(pairs);
    return item;
}

//! Returns the part of describe() that is about the sub-devices.
QString describeSubDevices(const SubDeviceMap &map)
{
    QStringList parts;
    for (auto it = map.constBegin(); it != map.constEnd(); ++it)
        parts += QString::number(it.key()) + QLatin1Char(':') + describe(it.value());
    return parts.join(QLatin1String(", "));
}

const QString kAllUnset
    = QStringLiteral("0, null, 0, -1, -, 0, null, null, null, not A, not B, 0, 0");

//! Returns what is left of feedDevice() when only the first \a length bytes are there.
CDeviceItem cutFeedDevice(int length, QDataStream::ByteOrder order)
{
    const Fields fields = feedFields();
    const auto isThere = [&fields, length, order](const char *name) {
        return extentOf(fields, name, order).isWithin(length);
    };
    const CDeviceItem whole = feedDevice();
    CDeviceItem cut;
    if (isThere("key"))
        cut.key = whole.key;
    if (isThere("name"))
        cut.name = whole.name;
    if (isThere("hostAddrType"))
        cut.hostAddrType = whole.hostAddrType;
    if (isThere("port"))
        cut.port = whole.port;
    if (isThere("serverName"))
        cut.serverName = whole.serverName;
    if (isThere("configuration"))
        cut.configuration = whole.configuration;
    if (isThere("auxFlagA"))
        cut.auxFlagA = whole.auxFlagA;
    if (isThere("auxNumberA"))
        cut.auxNumberA = whole.auxNumberA;
    if (isThere("auxNumberB"))
        cut.auxNumberB = whole.auxNumberB;

    // Without the protocol byte it is 0, that of IPv4; the bytes of IPv6 that lack are 0.
    const int addressBytes = length - extentOf(fields, "hostAddress", order).begin;
    if (isThere("hostAddress")) {
        cut.hostAddress = whole.hostAddress;
    } else if (addressBytes < 1) {
        cut.hostAddress = address("0.0.0.0");
    } else {
        Q_IPV6ADDR bytes = {};
        if (addressBytes > 1)
            bytes[0] = 0xFE;
        if (addressBytes > 2)
            bytes[1] = 0x80;
        if (addressBytes > 16)
            bytes[15] = 1;
        cut.hostAddress = QHostAddress(bytes);
    }
    return cut;
}

} // namespace

class tst_CDeviceItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldsInOrder();
    void defaultItem();
    void itemWithFields_data();
    void itemWithFields();
    void everyFieldIsInitialised();
    void copies();

    void isValid_data();
    void isValid();
    void isValidOfAllCombinations();
    void configurationName_data();
    void configurationName();

    void addSubDevice_data();
    void addSubDevice();
    void addSubDeviceToDoubledKey();
    void addSubDeviceOfSameItem_data();
    void addSubDeviceOfSameItem();

    void compares_data();
    void compares();
    void comparesAddresses();

    void streamOfType_data();
    void streamOfType();
    void shortStreamOfType();

    void stream_data();
    void stream();
    void streamOfSubDevices_data();
    void streamOfSubDevices();
    void streamOfAnyItem();
    void shortStream_data();
    void shortStream();
    void streamInTransaction();
    void streamAfterError();
    void shortStreamAfterError();
    void corruptStream_data();
    void corruptStream();
    void corruptSubDevices_data();
    void corruptSubDevices();
};

void tst_CDeviceItem::fieldsInOrder()
{
    const CDeviceItem item;
    const auto &[key, name, hostAddrType, hostAddress, port, serverName, auxText, configuration,
                 auxFlagA, auxFlagB, auxNumberA, auxNumberB, subDevices]
        = item;
    QCOMPARE(&key, &item.key);
    QCOMPARE(&name, &item.name);
    QCOMPARE(&hostAddrType, &item.hostAddrType);
    QCOMPARE(&hostAddress, &item.hostAddress);
    QCOMPARE(&port, &item.port);
    QCOMPARE(&serverName, &item.serverName);
    QCOMPARE(&auxText, &item.auxText);
    QCOMPARE(&configuration, &item.configuration);
    QCOMPARE(&auxFlagA, &item.auxFlagA);
    QCOMPARE(&auxFlagB, &item.auxFlagB);
    QCOMPARE(&auxNumberA, &item.auxNumberA);
    QCOMPARE(&auxNumberB, &item.auxNumberB);
    QCOMPARE(&subDevices, &item.subDevices);
}

void tst_CDeviceItem::defaultItem()
{
    const CDeviceItem item;
    QCOMPARE(item.key, 0U);
    QVERIFY(item.name.isNull());
    QCOMPARE(int(item.hostAddrType), 0);
    QVERIFY(item.hostAddress == QHostAddress(QHostAddress::Null));
    QVERIFY(item.hostAddress.isNull());
    QCOMPARE(int(item.port), 0);
    QVERIFY(item.serverName.isNull());
    QVERIFY(item.auxText.isNull());
    QVERIFY(item.configuration.isNull());
    QCOMPARE(item.auxFlagA, false);
    QCOMPARE(item.auxFlagB, false);
    QCOMPARE(item.auxNumberA, 0);
    QCOMPARE(item.auxNumberB, 0);
    QVERIFY(item.subDevices.isEmpty());
    QCOMPARE(describe(item), kAllUnset);
}

void tst_CDeviceItem::itemWithFields_data()
{
    QTest::addColumn<CDeviceItem>("item");
    QTest::addColumn<QString>("expected");
    QTest::newRow("each other than its default")
        << CDeviceItem(QStringLiteral("Axis 1"), code(2), address("10.0.0.1"), 502,
                       QStringLiteral("host"))
        << QStringLiteral("0, \"Axis 1\", 2, 0, 10.0.0.1, 502, \"host\", null, null, not A, not B, "
                          "0, 0");
    QTest::newRow("empty texts, greatest port, IPv6")
        << CDeviceItem(QStringLiteral(""), code(-1), address("::1"), 65535, QStringLiteral(""))
        << QStringLiteral("0, \"\", -1, 1, ::1, 65535, \"\", null, null, not A, not B, 0, 0");
    QTest::newRow("null texts, no address, port 0")
        << CDeviceItem(QString(), code(0), QHostAddress(), 0, QString()) << kAllUnset;
}

void tst_CDeviceItem::itemWithFields()
{
    QFETCH(const CDeviceItem, item);
    QFETCH(const QString, expected);
    QCOMPARE(describe(item), expected);
}

void tst_CDeviceItem::everyFieldIsInitialised()
{
    alignas(CDeviceItem) unsigned char memory[sizeof(CDeviceItem)];
    std::memset(memory, 0xA5, sizeof memory);
    CDeviceItem *item = new (memory) CDeviceItem;
    QCOMPARE(describe(*item), kAllUnset);
    item->~CDeviceItem();

    std::memset(memory, 0xA5, sizeof memory);
    item = new (memory) CDeviceItem(QString(), code(0), QHostAddress(), 0, QString());
    QCOMPARE(describe(*item), kAllUnset);
    item->~CDeviceItem();
}

void tst_CDeviceItem::copies()
{
    const CDeviceItem original = feedDevice();
    const QString expected = describe(feedDevice());
    CDeviceItem copy(original);
    QCOMPARE(describe(copy), expected);
    QCOMPARE(&copy.subDevices.constFind(3)->name, &original.subDevices.constFind(3)->name);

    copy = CDeviceItem();
    QCOMPARE(describe(copy), kAllUnset);
    copy = original;
    QCOMPARE(describe(copy), expected);
    QCOMPARE(&copy.subDevices.constFind(3)->name, &original.subDevices.constFind(3)->name);

    copy.addSubDevice(3, subDevice(0, "other"));
    copy.name = QStringLiteral("other");
    copy.hostAddress.setScopeId(QStringLiteral("eth1"));
    QCOMPARE(describe(original), expected);

    copy = original;
    const CDeviceItem moved(std::move(copy));
    QCOMPARE(describe(moved), expected);
}

void tst_CDeviceItem::isValid_data()
{
    QTest::addColumn<QHostAddress>("hostAddress");
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("auxNumberB");
    QTest::addColumn<bool>("isValid");
    const auto row
        = [](const char *name, const QHostAddress &host, int port, int type, int number,
             bool valid) { QTest::newRow(name) << host << port << type << number << valid; };
    const QHostAddress host = address("10.0.0.1");
    row("all set", host, 502, 1, 1, true);
    row("null address", QHostAddress(), 502, 1, 1, false);
    row("address of no address's text", address("x"), 502, 1, 1, false);
    row("port 0", host, 0, 1, 1, false);
    row("port 0, the rest unset", host, 0, 0, 0, false);
    row("type 0", host, 502, 0, 1, false);
    row("number 0", host, 502, 1, 0, false);
    row("0.0.0.0 is an address", address("0.0.0.0"), 502, 1, 1, true);
    row("Any is an address", QHostAddress(QHostAddress::Any), 502, 1, 1, true);
    row("IPv6 ::", address("::"), 502, 1, 1, true);
    row("port 1", host, 1, 1, 1, true);
    row("port 32768", host, 32768, 1, 1, true);
    row("port 65535", host, 65535, 1, 1, true);
    row("type -1", host, 502, -1, 1, true);
    row("type 256", host, 502, 256, 1, true);
    row("type INT_MIN", host, 502, INT_MIN, 1, true);
    row("number -1", host, 502, 1, -1, true);
    row("number 65536", host, 502, 1, 65536, true);
    row("number INT_MIN", host, 502, 1, INT_MIN, true);
}

void tst_CDeviceItem::isValid()
{
    QFETCH(const QHostAddress, hostAddress);
    QFETCH(const int, port);
    QFETCH(const int, type);
    QFETCH(const int, auxNumberB);
    CDeviceItem item(QString(), code(type), hostAddress, static_cast<unsigned short>(port),
                     QString());
    item.auxNumberB = auxNumberB;
    const MessageRecorder recorder;
    QTEST(item.isValid(), "isValid");
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CDeviceItem::isValidOfAllCombinations()
{
    for (int bits = 0; bits < 16; ++bits) {
        CDeviceItem item;
        if ((bits & 1) != 0)
            item.hostAddress = address("10.0.0.1");
        if ((bits & 2) != 0)
            item.port = 502;
        if ((bits & 4) != 0)
            item.hostAddrType = code(1);
        if ((bits & 8) != 0)
            item.auxNumberB = 7;
        QCOMPARE(item.isValid(), bits == 15);

        // No other field matters.
        item.key = 1;
        item.name = item.serverName = item.auxText = item.configuration = QStringLiteral("x");
        item.auxFlagA = item.auxFlagB = true;
        item.auxNumberA = 1;
        item.addSubDevice(1, subDevice(1, "x"));
        QCOMPARE(item.isValid(), bits == 15);
    }
}

void tst_CDeviceItem::configurationName_data()
{
    QTest::addColumn<QString>("configuration");
    QTest::newRow("text") << QStringLiteral("Default %1 \u00c4");
    QTest::newRow("empty, not null") << QStringLiteral("");
    QTest::newRow("null") << QString();
}

void tst_CDeviceItem::configurationName()
{
    QFETCH(const QString, configuration);
    CDeviceItem item = feedDevice();
    item.configuration = configuration;
    QString name = item.configurationName();
    QCOMPARE(describe(name), describe(configuration));
    name += QLatin1Char('x');
    QCOMPARE(describe(item.configuration), describe(configuration));
}

void tst_CDeviceItem::addSubDevice_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("itemKey");
    QTest::addColumn<QString>("expected"); // beside the sub-devices 3 and 200
    QTest::newRow("absent key 5, item's 9")
        << 5 << 9 << QStringLiteral("3:3 \"A\", 5:5 \"new\", 200:200 \"B\"");
    QTest::newRow("present key 3, item's 9")
        << 3 << 9 << QStringLiteral("3:3 \"new\", 200:200 \"B\"");
    QTest::newRow("present key 200, item's 3")
        << 200 << 3 << QStringLiteral("3:3 \"A\", 200:200 \"new\"");
    QTest::newRow("0, item's 255")
        << 0 << 255 << QStringLiteral("0:0 \"new\", 3:3 \"A\", 200:200 \"B\"");
    QTest::newRow("255, item's 0")
        << 255 << 0 << QStringLiteral("3:3 \"A\", 200:200 \"B\", 255:255 \"new\"");
    QTest::newRow("128 between 3 and 200")
        << 128 << 128 << QStringLiteral("3:3 \"A\", 128:128 \"new\", 200:200 \"B\"");
}

void tst_CDeviceItem::addSubDevice()
{
    QFETCH(const int, key);
    QFETCH(const int, itemKey);
    CDeviceItem item = feedDevice();
    const CSubDeviceItem added = subDevice(static_cast<unsigned char>(itemKey), "new");
    item.addSubDevice(static_cast<unsigned char>(key), added);
    QTEST(describeSubDevices(item.subDevices), "expected");
    QCOMPARE(int(added.key), itemKey);
    item.subDevices = feedDevice().subDevices;
    QCOMPARE(describe(item), describe(feedDevice())); // nothing else has changed
}

void tst_CDeviceItem::addSubDeviceToDoubledKey()
{
    CDeviceItem item = withSubDevices(
        CDeviceItem(), {{7, subDevice(7, "old")}, {7, subDevice(7, "new")}, {6, subDevice(6, "")}});
    QCOMPARE(item.subDevices.value(7).name, QStringLiteral("new"));
    item.addSubDevice(7, subDevice(1, "newest"));
    QCOMPARE(describeSubDevices(item.subDevices),
             QStringLiteral("6:6 \"\", 7:7 \"newest\", 7:7 \"old\""));
}

void tst_CDeviceItem::addSubDeviceOfSameItem_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<bool>("isShared");
    QTest::addColumn<QString>("expected");
    for (const bool isShared : {false, true}) {
        const char *kind = isShared ? "shared" : "alone";
        QTest::addRow("%s, to itself", kind)
            << 3 << 3 << isShared << QStringLiteral("3:3 \"A\", 200:200 \"B\"");
        QTest::addRow("%s, to an absent key", kind)
            << 3 << 9 << isShared << QStringLiteral("3:3 \"A\", 9:9 \"A\", 200:200 \"B\"");
        QTest::addRow("%s, to a present key", kind)
            << 200 << 3 << isShared << QStringLiteral("3:3 \"B\", 200:200 \"B\"");
    }
}

void tst_CDeviceItem::addSubDeviceOfSameItem()
{
    QFETCH(const int, from);
    QFETCH(const int, to);
    QFETCH(const bool, isShared);
    CDeviceItem item;
    item.addSubDevice(3, subDevice(3, "A"));
    item.addSubDevice(200, subDevice(200, "B"));
    const CDeviceItem copy = isShared ? item : CDeviceItem();
    const CSubDeviceItem &added = *item.subDevices.constFind(static_cast<unsigned char>(from));
    item.addSubDevice(static_cast<unsigned char>(to), added);
    QTEST(describeSubDevices(item.subDevices), "expected");
    QCOMPARE(describeSubDevices(copy.subDevices),
             isShared ? QStringLiteral("3:3 \"A\", 200:200 \"B\"") : QString());
}

void tst_CDeviceItem::compares_data()
{
    QTest::addColumn<CDeviceItem>("first");
    QTest::addColumn<CDeviceItem>("second");
    QTest::addColumn<bool>("isEqual");
    const auto row = [](const char *name, const CDeviceItem &first, const CDeviceItem &second,
                        bool isEqual) { QTest::newRow(name) << first << second << isEqual; };
    row("default", CDeviceItem(), CDeviceItem(), true);
    row("made twice", feedDevice(), feedDevice(), true);
    row("feed and plain", feedDevice(), plainDevice(), false);

    const auto differs = [&row](const char *name, auto change) {
        CDeviceItem other = feedDevice();
        change(other);
        row(name, feedDevice(), other, false);
    };
    differs("key", [](CDeviceItem &item) { item.key ^= 0x80000000; });
    differs("name", [](CDeviceItem &item) { item.name += QLatin1Char(' '); });
    differs("hostAddrType", [](CDeviceItem &item) { item.hostAddrType = code(0); });
    differs("hostAddress", [](CDeviceItem &item) { item.hostAddress = address("fe80::2"); });
    differs("hostAddress, null", [](CDeviceItem &item) { item.hostAddress.clear(); });
    differs("port", [](CDeviceItem &item) { item.port = 65001; });
    differs("serverName", [](CDeviceItem &item) { item.serverName = QStringLiteral("S\u20ac"); });
    differs("auxText", [](CDeviceItem &item) { item.auxText = QStringLiteral("x"); });
    differs("configuration", [](CDeviceItem &item) { item.configuration = QString(); });
    differs("auxFlagA", [](CDeviceItem &item) { item.auxFlagA = false; });
    differs("auxFlagB", [](CDeviceItem &item) { item.auxFlagB = true; });
    differs("auxNumberA", [](CDeviceItem &item) { item.auxNumberA = 2; });
    differs("auxNumberB", [](CDeviceItem &item) { item.auxNumberB = 0x12345679; });
    differs("one sub-device less", [](CDeviceItem &item) { item.subDevices.remove(3); });
    differs("one sub-device more", [](CDeviceItem &item) { item.addSubDevice(0, {}); });
    differs("sub-device's name",
            [](CDeviceItem &item) { item.subDevices[3].name = QStringLiteral("a"); });
    differs("sub-device's own key", [](CDeviceItem &item) { item.subDevices[3].key = 4; });
    differs("map key, same sub-devices",
            [](CDeviceItem &item) { item.subDevices.insert(4, item.subDevices.take(3)); });

    const CSubDeviceItem a = subDevice(7, "a");
    const CSubDeviceItem b = subDevice(7, "b");
    const CDeviceItem doubled = withSubDevices(feedDevice(), {{7, a}, {7, b}});
    row("doubled key", doubled, withSubDevices(feedDevice(), {{7, a}, {7, b}}), true);
    row("doubled key, other order", doubled, withSubDevices(feedDevice(), {{7, b}, {7, a}}), false);
    row("doubled key, one left", doubled, withSubDevices(feedDevice(), {{7, b}}), false);
    row("same items, second key other", doubled, withSubDevices(feedDevice(), {{8, a}, {7, b}}),
        false);

    CDeviceItem emptyTexts;
    emptyTexts.name = emptyTexts.serverName = emptyTexts.auxText = emptyTexts.configuration
        = QStringLiteral("");
    row("null and empty texts", CDeviceItem(), emptyTexts, true);
}

void tst_CDeviceItem::compares()
{
    QFETCH(const CDeviceItem, first);
    QFETCH(const CDeviceItem, second);
    QFETCH(const bool, isEqual);
    QCOMPARE(first == second, isEqual);
    QCOMPARE(second == first, isEqual);
    QCOMPARE(first != second, !isEqual);
    QVERIFY(first == first);
    QVERIFY(second == CDeviceItem(second));
}

void tst_CDeviceItem::comparesAddresses()
{
    const QHostAddress addresses[] = {
        QHostAddress(),
        address("0.0.0.0"),
        address("10.0.0.1"),
        address("::"),
        address("::1"),
        address("::ffff:10.0.0.1"),
        address("fe80::1"),
        address("fe80::1%eth0"),
        address("fe80::1%eth1"),
        QHostAddress(QHostAddress::Any),
        QHostAddress(QHostAddress::LocalHost),
    };
    int equalPairs = 0;
    for (const QHostAddress &first : addresses) {
        for (const QHostAddress &second : addresses) {
            const CDeviceItem one(QString(), code(0), first, 0, QString());
            const CDeviceItem two(QString(), code(0), second, 0, QString());
            QCOMPARE(one == two, first == second);
            if (one == two)
                ++equalPairs;
        }
    }
    QVERIFY(equalPairs >= int(std::size(addresses))); // each and itself
}

void tst_CDeviceItem::streamOfType_data()
{
    DeviceStream::addCodeRows();
}

void tst_CDeviceItem::streamOfType()
{
    DeviceStream::checkCode<EHostAddrType>();
}

void tst_CDeviceItem::shortStreamOfType()
{
    DeviceStream::checkShortCode<EHostAddrType>();
}

void tst_CDeviceItem::stream_data()
{
    QTest::addColumn<CDeviceItem>("item");
    QTest::addColumn<QByteArray>("bigEndian");
    QTest::addColumn<QByteArray>("littleEndian");
    const auto row = [](const char *name, const CDeviceItem &item, const Fields &fields) {
        QTest::newRow(name) << item << bytesOf(fields, QDataStream::BigEndian)
                            << bytesOf(fields, QDataStream::LittleEndian);
    };
    row("with two sub-devices", feedDevice(), feedFields());
    row("without sub-devices", plainDevice(), plainFields());
    const auto addressRow = [&row](const char *name, const QHostAddress &host,
                                   const char *bigEndian, const char *littleEndian) {
        CDeviceItem item = plainDevice();
        item.hostAddress = host;
        row(name, item, replaced(plainFields(), "hostAddress", bigEndian, littleEndian));
    };
    addressRow("null address", QHostAddress(), "ff", "ff");
    addressRow("0.0.0.0", address("0.0.0.0"), "00 00000000", "00 00000000");
    addressRow("255.254.253.252", address("255.254.253.252"), "00 fffefdfc", "00 fcfdfeff");
    addressRow("::, no scope", address("::"), "01 00000000000000000000000000000000 ffffffff",
               "01 00000000000000000000000000000000 ffffffff");
    addressRow("IPv6 of 1 to 16", address("102:304:506:708:90a:b0c:d0e:f10"),
               "01 0102030405060708090a0b0c0d0e0f10 ffffffff",
               "01 0102030405060708090a0b0c0d0e0f10 ffffffff");
    addressRow("scope 7", address("fe80::1%7"), "01 fe800000000000000000000000000001 00000002 0037",
               "01 fe800000000000000000000000000001 02000000 3700");
    addressRow("Any", QHostAddress(QHostAddress::Any), "02", "02");
    row("default", CDeviceItem(),
        {{"all",
          "00000000 ffffffff 00000000 ff 0000 ffffffff ffffffff ffffffff 00 00 00000000"
          "00000000 00000000",
          "00000000 ffffffff 00000000 ff 0000 ffffffff ffffffff ffffffff 00 00 00000000"
          "00000000 00000000"}});
}

void tst_CDeviceItem::stream()
{
    QFETCH(const CDeviceItem, item);
    QFETCH(const QByteArray, bigEndian);
    QFETCH(const QByteArray, littleEndian);
    for (const Format &format : kFormats) {
        const bool isBig = format.order == QDataStream::BigEndian;
        const QByteArray bytes = isBig ? bigEndian : littleEndian;
        QCOMPARE(written(item, format).toHex(' '), bytes.toHex(' '));

        for (const CDeviceItem &before : {CDeviceItem(), feedDevice(), plainDevice()}) {
            QDataStream in(bytes + "tail");
            setFormat(in, format);
            CDeviceItem read = before;
            const MessageRecorder recorder;
            QCOMPARE(&(in >> read), &in);
            QCOMPARE(describe(read), describe(item));
            QVERIFY(read == item);
            QCOMPARE(in.status(), QDataStream::Ok);
            QCOMPARE(in.device()->bytesAvailable(), 4LL);
            QCOMPARE(recorder.messages(), QStringList());
        }
    }
}

void tst_CDeviceItem::streamOfSubDevices_data()
{
    // The pairs as they are read, as they lie in the map then, and as they are written again.
    QTest::addColumn<QByteArray>("read");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QByteArray>("again");
    const auto row
        = [](const char *name, const char *read, const char *expected, const char *again) {
              QTest::newRow(name) << QByteArray::fromHex(read) << QString(QLatin1String(expected))
                                  << QByteArray::fromHex(again);
          };
    const auto sorted = [&row](const char *name, const char *bytes, const char *expected) {
        row(name, bytes, expected, bytes);
    };
    sorted("none", "00000000", "");
    sorted("255", "00000001 ff ff 00000002 0061", "255:255 \"a\"");
    sorted("255 before 128 before 127 before 0",
           "00000004 ff ff ffffffff 80 80 ffffffff 7f 7f ffffffff 00 00 ffffffff",
           "0:0 null, 127:127 null, 128:128 null, 255:255 null");
    sorted("own keys differ", "00000002 80 01 00000002 0061 01 80 00000002 0062",
           "1:128 \"b\", 128:1 \"a\"");
    sorted("doubled, the last in front", "00000002 07 07 00000002 0061 07 07 00000002 0062",
           "7:7 \"b\", 7:7 \"a\"");
    sorted("tripled, the same twice",
           "00000003 c8 c8 00000002 0061 c8 c8 00000002 0062 c8 c8 00000002 0061",
           "200:200 \"a\", 200:200 \"b\", 200:200 \"a\"");
    row("rising", "00000003 03 03 ffffffff 7f 7f ffffffff c8 c8 ffffffff",
        "3:3 null, 127:127 null, 200:200 null",
        "00000003 c8 c8 ffffffff 7f 7f ffffffff 03 03 ffffffff");
    row("sorted as with a sign", "00000002 7f 7f ffffffff 80 80 ffffffff",
        "127:127 null, 128:128 null", "00000002 80 80 ffffffff 7f 7f ffffffff");
    row("doubled, others between",
        "00000004 07 07 00000002 0061 09 09 ffffffff 07 07 00000002 0062 05 05 ffffffff",
        "5:5 null, 7:7 \"b\", 7:7 \"a\", 9:9 null",
        "00000004 09 09 ffffffff 07 07 00000002 0061 07 07 00000002 0062 05 05 ffffffff");
}

void tst_CDeviceItem::streamOfSubDevices()
{
    QFETCH(const QByteArray, read);
    QFETCH(const QString, expected);
    QFETCH(const QByteArray, again);
    Fields front = plainFields();
    front.pop_back(); // the count of sub-devices
    const QByteArray start = bytesOf(front, QDataStream::BigEndian);
    QDataStream in(start + read + "tail");
    CDeviceItem item = feedDevice();
    in >> item;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(in.device()->bytesAvailable(), 4LL);
    QCOMPARE(describeSubDevices(item.subDevices), expected);
    QCOMPARE(written(item, kFormats[2]).toHex(' '), (start + again).toHex(' '));

    CDeviceItem twice;
    QDataStream second(written(item, kFormats[2]));
    second >> twice;
    QVERIFY(twice == item);
}

void tst_CDeviceItem::streamOfAnyItem()
{
    std::mt19937 random(4711);
    const auto below = [&random](unsigned int limit) { return static_cast<int>(random() % limit); };
    const auto text = [&below] {
        if (below(4) == 0)
            return QString();
        QString made = QStringLiteral("");
        for (int left = below(6); left > 0; --left)
            made += QChar(static_cast<ushort>(below(0x10000)));
        return made;
    };
    constexpr int kKeys[] = {0, 1, 7, 126, 127, 128, 129, 254, 255};
    for (int run = 0; run < 300; ++run) {
        CDeviceItem item;
        item.key = static_cast<unsigned int>(random());
        item.name = text();
        item.hostAddrType = code(static_cast<int>(random()));
        item.hostAddress = run % 2 == 0 ? QHostAddress(static_cast<quint32>(random()))
                                        : address(run % 3 == 0 ? "fe80::7%eth0" : "2001:db8::8");
        item.port = static_cast<unsigned short>(below(0x10000));
        item.serverName = text();
        item.auxText = text();
        item.configuration = text();
        item.auxFlagA = below(2) != 0;
        item.auxFlagB = below(2) != 0;
        item.auxNumberA = static_cast<int>(random());
        item.auxNumberB = static_cast<int>(random());
        SubDevices pairs;
        for (int left = below(12); left > 0; --left) {
            CSubDeviceItem sub(text());
            sub.key = static_cast<unsigned char>(below(256));
            pairs.emplace_back(static_cast<quint8>(kKeys[below(9)]), sub);
        }
        item.subDevices = mapOf(pairs);

        const Format &format = kFormats[run % 6];
        const QByteArray foreign = DeviceStream::bytesOf(format, item, pairs);
        QDataStream in(foreign);
        setFormat(in, format);
        CDeviceItem read;
        in >> read;
        QCOMPARE(in.status(), QDataStream::Ok);
        QVERIFY(in.atEnd());
        QCOMPARE(describe(read), describe(item));
        QVERIFY(read == item);
        QCOMPARE(written(read, format).toHex(),
                 DeviceStream::bytesOf(format, item, DeviceStream::falling(pairs)).toHex());
    }
}

void tst_CDeviceItem::shortStream_data()
{
    QTest::addColumn<QDataStream::ByteOrder>("order");
    QTest::addColumn<int>("length");
    for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
        const Fields fields = feedFields();
        const int size = bytesOf(fields, order).size();
        for (int length = 0; length < size; ++length) {
            QTest::addRow("%s, %d bytes, %s missing",
                          order == QDataStream::BigEndian ? "big endian" : "little endian", length,
                          fieldAt(fields, length, order))
                << order << length;
        }
    }
}

void tst_CDeviceItem::shortStream()
{
    QFETCH(const QDataStream::ByteOrder, order);
    QFETCH(const int, length);
    const QByteArray cut = bytesOf(feedFields(), order).left(length);
    for (const Format &format : kFormats) {
        if (format.order != order)
            continue;
        for (const bool isTransaction : {false, true}) {
            QDataStream in(cut);
            setFormat(in, format);
            if (isTransaction)
                in.startTransaction();
            CDeviceItem read = plainDevice();
            read.addSubDevice(1, {});
            const MessageRecorder recorder;
            in >> read;
            QCOMPARE(in.status(), QDataStream::ReadPastEnd);
            QCOMPARE(describe(withNullTexts(read)), describe(cutFeedDevice(length, order)));
            if (isTransaction) {
                QVERIFY(!in.commitTransaction());
                QCOMPARE(in.device()->pos(), 0LL);
            }
            QCOMPARE(recorder.messages(), QStringList());
        }
    }
}

void tst_CDeviceItem::streamInTransaction()
{
    for (const Format &format : kFormats) {
        const QByteArray first = bytesOf(feedFields(), format.order);
        const QByteArray bytes = first + bytesOf(plainFields(), format.order);
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QDataStream in(&buffer);
        setFormat(in, format);
        CDeviceItem feed;
        CDeviceItem plain;
        for (int size = 0; size <= bytes.size(); ++size) {
            buffer.buffer() = bytes.left(size);
            in.startTransaction();
            in >> feed;
            QCOMPARE(in.status(), size < first.size() ? QDataStream::ReadPastEnd : QDataStream::Ok);
            in >> plain;
            const bool isWhole = size == bytes.size();
            QCOMPARE(in.commitTransaction(), isWhole);
            QCOMPARE(buffer.pos(), isWhole ? size : 0LL);
        }
        QCOMPARE(describe(feed), describe(feedDevice()));
        QCOMPARE(describe(plain), describe(plainDevice()));
    }
}

void tst_CDeviceItem::streamAfterError()
{
    for (const Format &format : kFormats) {
        for (const QDataStream::Status error : kErrors) {
            QDataStream in(bytesOf(feedFields(), format.order) + "tail");
            setFormat(in, format);
            in.setStatus(error);
            CDeviceItem read = plainDevice();
            in >> read;
            QCOMPARE(describe(read), describe(feedDevice()));
            QCOMPARE(in.status(), error);
            QCOMPARE(in.device()->bytesAvailable(), 4LL);
        }
    }
}

void tst_CDeviceItem::shortStreamAfterError()
{
    const QByteArray bytes = bytesOf(feedFields(), QDataStream::BigEndian);
    for (const QDataStream::Status error : kErrors) {
        for (int length = 0; length < bytes.size(); ++length) {
            QDataStream in(bytes.left(length));
            in.setStatus(error);
            CDeviceItem read = feedDevice();
            in >> read;
            QCOMPARE(describe(withNullTexts(read)),
                     describe(cutFeedDevice(length, QDataStream::BigEndian)));
            QCOMPARE(in.status(), error);
        }
    }
}

void tst_CDeviceItem::corruptStream_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<CDeviceItem>("expected");
    const auto row = [](const char *name, const char *field, const char *digits, auto change) {
        CDeviceItem expected = feedDevice();
        change(expected);
        QTest::newRow(name) << bytesOf(replaced(feedFields(), field, digits, digits),
                                       QDataStream::BigEndian)
                            << expected;
    };
    const auto noAddress = [](CDeviceItem &item) { item.hostAddress.clear(); };
    row("address protocol 3", "hostAddress", "03", noAddress);
    row("address protocol 127", "hostAddress", "7f", noAddress);
    row("address protocol -128", "hostAddress", "80", noAddress);
    row("address protocol -2", "hostAddress", "fe", noAddress);
    row("scope of 1 byte", "hostAddress", "01 00000000000000000000000000000001 00000001",
        [](CDeviceItem &item) { item.hostAddress = address("::1"); });
    row("name of 1 byte", "name", "00000001", [](CDeviceItem &item) { item.name = QString(); });
    row("serverName of 3 bytes", "serverName", "00000003",
        [](CDeviceItem &item) { item.serverName = QString(); });
    row("auxText of 2^32 - 3 bytes", "auxText", "fffffffd",
        [](CDeviceItem &item) { item.auxText = QString(); });
    row("configuration of 2^31 - 1 bytes", "configuration", "7fffffff",
        [](CDeviceItem &item) { item.configuration = QString(); });
}

void tst_CDeviceItem::corruptStream()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const CDeviceItem, expected);
    // Every field behind the damage is read, and the sub-devices, which are sound, are kept.
    QDataStream in(bytes + "tail");
    CDeviceItem read = plainDevice();
    const MessageRecorder recorder;
    in >> read;
    QCOMPARE(describe(withNullTexts(read)), describe(withNullTexts(expected)));
    QCOMPARE(in.status(), QDataStream::ReadCorruptData);
    QCOMPARE(in.device()->bytesAvailable(), 4LL);
    QCOMPARE(recorder.messages(), QStringList());

    // The first error stays when the end comes later.
    QDataStream cut(bytes.left(bytes.size() - 1));
    cut >> read;
    CDeviceItem rest = expected;
    rest.subDevices.clear();
    QCOMPARE(describe(withNullTexts(read)), describe(withNullTexts(rest)));
    QCOMPARE(cut.status(), QDataStream::ReadCorruptData);
}

void tst_CDeviceItem::corruptSubDevices_data()
{
    QTest::addColumn<QByteArray>("subDevices");
    QTest::addColumn<QDataStream::Status>("status");
    QTest::addColumn<int>("left"); // bytes behind the last pair that is read
    const auto row
        = [](const char *name, const char *digits, QDataStream::Status status, int left = 0) {
              QTest::newRow(name) << QByteArray::fromHex(digits) << status << left;
          };
    row("2^32 - 1, none there", "ffffffff", QDataStream::ReadPastEnd);
    row("2^32 - 1, a key", "ffffffff 07", QDataStream::ReadPastEnd);
    row("2^32 - 1, one pair", "ffffffff 07 07 ffffffff", QDataStream::ReadPastEnd);
    row("2^32 - 1, two pairs and a half", "ffffffff 07 07 ffffffff 06 06 00000002 0041 05 05",
        QDataStream::ReadPastEnd);
    row("2^31, one pair", "80000000 07 07 ffffffff", QDataStream::ReadPastEnd);
    row("2^31 - 1, one pair", "7fffffff 07 07 ffffffff", QDataStream::ReadPastEnd);
    row("2, one pair", "00000002 07 07 ffffffff", QDataStream::ReadPastEnd);
    row("count of 3 bytes", "000000", QDataStream::ReadPastEnd);
    row("odd name in the last pair", "00000002 07 07 ffffffff 06 06 00000001",
        QDataStream::ReadCorruptData);
    row("odd name in the first pair", "00000002 07 07 00000001 06 06 ffffffff",
        QDataStream::ReadCorruptData, 6);
    row("2^32 - 1, odd name in the second pair",
        "ffffffff 07 07 ffffffff 06 06 00000001 05 05 ffffffff", QDataStream::ReadCorruptData, 6);
    row("name of 2^32 - 2 bytes", "00000001 07 07 fffffffe 0041", QDataStream::ReadPastEnd);
}

void tst_CDeviceItem::corruptSubDevices()
{
    QFETCH(const QByteArray, subDevices);
    QFETCH(const int, left);
    Fields front = plainFields();
    front.pop_back(); // the count of sub-devices
    CountingBuffer buffer(bytesOf(front, QDataStream::BigEndian) + subDevices);
    QDataStream in(&buffer);
    CDeviceItem read = feedDevice();
    const MessageRecorder recorder;
    in >> read;
    QCOMPARE(describe(read), describe(plainDevice())); // which has none
    QTEST(in.status(), "status");
    QCOMPARE(buffer.bytesAvailable(), qint64(left)); // it stops at the first pair that fails
    QVERIFY2(buffer.reads() < 100, qPrintable(QString::number(buffer.reads())));
    QCOMPARE(recorder.messages(), QStringList());
}

QTEST_APPLESS_MAIN(tst_CDeviceItem)

#include "tst_CDeviceItem.moc"
