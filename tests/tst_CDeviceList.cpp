#include "CDeviceList.h"

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
using DeviceStream::Devices;
using DeviceStream::falling;
using DeviceStream::feedDevice;
using DeviceStream::feedFields;
using DeviceStream::Fields;
using DeviceStream::Format;
using DeviceStream::joined;
using DeviceStream::kErrors;
using DeviceStream::kFormats;
using DeviceStream::plainDevice;
using DeviceStream::plainFields;
using DeviceStream::setFormat;
using DeviceStream::SubDevices;
using DeviceStream::written;
using ESourceType = CDeviceList::ESourceType;

Q_DECLARE_METATYPE(CDeviceList)
Q_DECLARE_METATYPE(QDataStream::ByteOrder)
Q_DECLARE_METATYPE(QDataStream::Status)

namespace {

using DeviceMap = QMap<unsigned int, CDeviceItem>;

static_assert(std::is_same_v<decltype(CDeviceList::name), QString>);
static_assert(std::is_same_v<decltype(CDeviceList::sourceType), ESourceType>);
static_assert(std::is_same_v<decltype(CDeviceList::devices), DeviceMap>);
static_assert(std::is_same_v<std::underlying_type_t<ESourceType>, int>);
static_assert(std::is_convertible_v<ESourceType, int>); // a plain enumeration
static_assert(CDeviceList::SOURCETYPE_UNSET == 0);
static_assert(std::is_constructible_v<CDeviceList, QString, ESourceType>);
static_assert(std::is_nothrow_move_constructible_v<CDeviceList>);
static_assert(std::is_nothrow_move_assignable_v<CDeviceList>);
static_assert(std::has_virtual_destructor_v<CDeviceList>);
static_assert(std::is_same_v<decltype(&CDeviceList::addDevice),
                             void (CDeviceList::*)(unsigned int, const CDeviceItem &)>);
static_assert(
    std::is_same_v<decltype(&CDeviceList::removeDevice), void (CDeviceList::*)(unsigned)>);
static_assert(
    std::is_same_v<decltype(&CDeviceList::device), CDeviceItem (CDeviceList::*)(unsigned) const>);
static_assert(
    std::is_same_v<decltype(&CDeviceList::contains), bool (CDeviceList::*)(unsigned) const>);

constexpr ESourceType code(int value)
{
    return static_cast<ESourceType>(value);
}

CDeviceItem named(const char *name)
{
    CDeviceItem item;
    item.name = QLatin1String(name);
    return item;
}

//! Makes a list of devices; of those with one key the later stand in front.
CDeviceList listOf(std::initializer_list<std::pair<unsigned int, const char *>> pairs)
{
    QMultiMap<unsigned int, CDeviceItem> devices;
    for (const auto &[key, name] : pairs) {
        CDeviceItem item = named(name);
        item.key = key;
        devices.insert(key, item);
    }
    CDeviceList list(QStringLiteral("list"), code(1));
    list.devices = devices;
    return list;
}

//! Returns "key name" of each device in order, with the device's own key where that is another.
QString keysAndNames(const CDeviceList &list)
{
    QStringList parts;
    for (auto it = list.devices.constBegin(); it != list.devices.constEnd(); ++it) {
        QString part = QString::number(it.key());
        if (it->key != it.key())
            part += QLatin1Char('/') + QString::number(it->key);
        parts += part + QLatin1Char(' ') + it->name;
    }
    return parts.join(QLatin1String(", "));
}

//! Asserts that name and source type are those of listOf() and returns the devices.
QString devicesOf(const CDeviceList &list)
{
    if (list.name != QLatin1String("list") || list.sourceType != code(1))
        return QStringLiteral("name or source type changed");
    return keysAndNames(list);
}

// The golden list: two devices, of which the one with the key above 2^31 has two sub-devices.

CDeviceList goldenList()
{
    CDeviceList list(QStringLiteral("Rig"), code(0x0A0B0C0D));
    list.devices = {{5, plainDevice()}, {0x89ABCDEF, feedDevice()}};
    return list;
}

Fields goldenFields(const Fields &feed = feedFields(), const Fields &plain = plainFields())
{
    return joined({{{"list name", "00000006 0052 0069 0067", "06000000 5200 6900 6700"},
                    {"source type", "0a0b0c0d", "0d0c0b0a"},
                    {"devices", "00000002", "02000000"},
                    {"map key 0x89abcdef", "89abcdef", "efcdab89"}},
                   feed,
                   {{"map key 5", "00000005", "05000000"}},
                   plain});
}

QByteArray goldenBytes(QDataStream::ByteOrder order)
{
    return bytesOf(goldenFields(), order);
}

//! Returns what is left of goldenList() when only the first \a length bytes are there.
CDeviceList cutGoldenList(int length, QDataStream::ByteOrder order)
{
    CDeviceList cut;
    if (extentOf(goldenFields(), "list name", order).isWithin(length))
        cut.name = QStringLiteral("Rig");
    if (extentOf(goldenFields(), "source type", order).isWithin(length))
        cut.sourceType = code(0x0A0B0C0D);
    return cut;
}

CDeviceList withNullName(CDeviceList list)
{
    if (list.name.isEmpty())
        list.name = QString();
    return list;
}

} // namespace

class tst_CDeviceList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldsInOrder();
    void defaultList();
    void listWithNameAndType_data();
    void listWithNameAndType();
    void everyFieldIsInitialised();
    void copies();

    void size_data();
    void size();
    void contains_data();
    void contains();
    void device_data();
    void device();
    void deviceIsACopy();
    void addDevice_data();
    void addDevice();
    void addDeviceTwice();
    void addDeviceOfSameList_data();
    void addDeviceOfSameList();
    void removeDevice_data();
    void removeDevice();
    void clear();
    void unite_data();
    void unite();
    void uniteWithItself_data();
    void uniteWithItself();
    void uniteKeepsOtherList();
    void unitesDoubledKey();

    void compares_data();
    void compares();

    void streamOfType_data();
    void streamOfType();
    void shortStreamOfType();

    void stream_data();
    void stream();
    void streamOfTwoLists();
    void streamOfUnitedLists();
    void streamOfForeignPairs_data();
    void streamOfForeignPairs();
    void streamOfAnyList();
    void shortStream_data();
    void shortStream();
    void streamInTransaction();
    void streamAfterError();
    void shortStreamAfterError();
    void corruptStream_data();
    void corruptStream();
    void hostileCounts_data();
    void hostileCounts();
};

void tst_CDeviceList::fieldsInOrder()
{
    const CDeviceList list;
    const auto &[name, sourceType, devices] = list;
    QCOMPARE(&name, &list.name);
    QCOMPARE(&sourceType, &list.sourceType);
    QCOMPARE(&devices, &list.devices);
}

void tst_CDeviceList::defaultList()
{
    const CDeviceList list;
    QVERIFY(list.name.isNull());
    QCOMPARE(int(list.sourceType), 0);
    QVERIFY(list.devices.isEmpty());
    QCOMPARE(list.size(), 0);
    QCOMPARE(list.count(), 0);
}

void tst_CDeviceList::listWithNameAndType_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("type");
    QTest::newRow("text, 2") << QStringLiteral("Hall \u00c4") << 2;
    QTest::newRow("empty, -1") << QStringLiteral("") << -1;
    QTest::newRow("null, INT_MIN") << QString() << INT_MIN;
    QTest::newRow("null, 0") << QString() << 0;
}

void tst_CDeviceList::listWithNameAndType()
{
    QFETCH(const QString, name);
    QFETCH(const int, type);
    const CDeviceList list(name, code(type));
    QCOMPARE(describe(list.name), describe(name)); // null stays null
    QCOMPARE(int(list.sourceType), type);
    QVERIFY(list.devices.isEmpty());
}

void tst_CDeviceList::everyFieldIsInitialised()
{
    alignas(CDeviceList) unsigned char memory[sizeof(CDeviceList)];
    std::memset(memory, 0xA5, sizeof memory);
    const CDeviceList *list = new (memory) CDeviceList;
    QCOMPARE(describe(*list), QStringLiteral("null 0"));
    list->~CDeviceList();
}

void tst_CDeviceList::copies()
{
    const CDeviceList original = goldenList();
    const QString expected = describe(goldenList());
    CDeviceList copy(original);
    QCOMPARE(describe(copy), expected);
    QCOMPARE(&copy.devices.constFind(5)->name, &original.devices.constFind(5)->name);

    copy = CDeviceList();
    QCOMPARE(describe(copy), QStringLiteral("null 0"));
    copy = original;
    QCOMPARE(describe(copy), expected);

    copy.addDevice(5, named("other"));
    copy.removeDevice(0x89ABCDEF);
    copy.unite(goldenList());
    copy.name.clear();
    QCOMPARE(describe(original), expected);
    copy.clear();
    QCOMPARE(describe(original), expected);

    copy = original;
    const CDeviceList moved(std::move(copy));
    QCOMPARE(describe(moved), expected);

    CDeviceList left = original;
    CDeviceList right(QStringLiteral("right"), code(9));
    const QString other = describe(right);
    left.swap(right);
    QCOMPARE(describe(left), other);
    QCOMPARE(describe(right), expected);
    swap(left, right);
    QCOMPARE(describe(left), expected);
    QCOMPARE(describe(right), other);
    left = std::move(right);
    QCOMPARE(describe(left), other);
}

void tst_CDeviceList::size_data()
{
    QTest::addColumn<CDeviceList>("list");
    QTest::addColumn<int>("size");
    QTest::newRow("empty") << listOf({}) << 0;
    QTest::newRow("one") << listOf({{0, "a"}}) << 1;
    QTest::newRow("two keys") << listOf({{0, "a"}, {UINT_MAX, "b"}}) << 2;
    QTest::newRow("one key twice") << listOf({{7, "a"}, {7, "b"}}) << 2;
    QTest::newRow("one key three times, another twice")
        << listOf({{7, "a"}, {8, "b"}, {7, "c"}, {8, "d"}, {7, "a"}}) << 5;
}

void tst_CDeviceList::size()
{
    QFETCH(const CDeviceList, list);
    QTEST(list.size(), "size");
    QTEST(list.count(), "size");
}

void tst_CDeviceList::contains_data()
{
    QTest::addColumn<unsigned int>("key");
    QTest::addColumn<bool>("isThere");
    QTest::newRow("0, the smallest") << 0U << true;
    QTest::newRow("1, absent") << 1U << false;
    QTest::newRow("7, doubled") << 7U << true;
    QTest::newRow("9, only a device's own key") << 9U << false;
    QTest::newRow("10, where the device's own key is 9") << 10U << true;
    QTest::newRow("2^31") << 0x80000000U << true;
    QTest::newRow("2^31 + 7, absent") << 0x80000007U << false;
    QTest::newRow("2^32 - 1, the largest") << UINT_MAX << true;
}

void tst_CDeviceList::contains()
{
    QFETCH(const unsigned int, key);
    CDeviceList list
        = listOf({{0, "a"}, {7, "b"}, {7, "c"}, {10, "d"}, {0x80000000U, "e"}, {UINT_MAX, "f"}});
    list.devices[10].key = 9;
    QTEST(list.contains(key), "isThere");
    QVERIFY(!CDeviceList().contains(key));
    QVERIFY(!list.contains(key) || list.devices.contains(key));
    QCOMPARE(list.size(), 6); // asking adds nothing
}

void tst_CDeviceList::device_data()
{
    QTest::addColumn<unsigned int>("key");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0") << 0U << QStringLiteral("a");
    QTest::newRow("7, the last of two") << 7U << QStringLiteral("c");
    QTest::newRow("2^31") << 0x80000000U << QStringLiteral("e");
    QTest::newRow("2^32 - 1") << UINT_MAX << QStringLiteral("f");
    QTest::newRow("42, absent") << 42U << QString();
    QTest::newRow("2^31 + 7, absent") << 0x80000007U << QString();
}

void tst_CDeviceList::device()
{
    QFETCH(const unsigned int, key);
    QFETCH(const QString, expected);
    const CDeviceList list
        = listOf({{0, "a"}, {7, "b"}, {7, "c"}, {0x80000000U, "e"}, {UINT_MAX, "f"}});
    const CDeviceItem found = list.device(key);
    QCOMPARE(found.name, expected);
    QCOMPARE(found.key, expected.isNull() ? 0U : key);
    QCOMPARE(list.size(), 5);

    const CDeviceItem none = CDeviceList().device(key);
    QVERIFY(none == CDeviceItem());
    QCOMPARE(describe(none), describe(CDeviceItem()));
}

void tst_CDeviceList::deviceIsACopy()
{
    CDeviceList list = goldenList();
    CDeviceItem found = list.device(0x89ABCDEF);
    QCOMPARE(describe(found), describe(feedDevice()));
    found.name = QStringLiteral("other");
    found.addSubDevice(3, CSubDeviceItem());
    QCOMPARE(describe(list), describe(goldenList()));

    list.devices[5].key = 77; // stays as it is
    QCOMPARE(list.device(5).key, 77U);
}

void tst_CDeviceList::addDevice_data()
{
    QTest::addColumn<unsigned int>("key");
    QTest::addColumn<QString>("expected"); // beside 3 a, 9 b, 9 c
    QTest::newRow("absent 7") << 7U << QStringLiteral("3 a, 7 new, 9 c, 9 b");
    QTest::newRow("absent 0") << 0U << QStringLiteral("0 new, 3 a, 9 c, 9 b");
    QTest::newRow("absent 2^31, above all")
        << 0x80000000U << QStringLiteral("3 a, 9 c, 9 b, 2147483648 new");
    QTest::newRow("absent 2^32 - 1, the item's own")
        << UINT_MAX << QStringLiteral("3 a, 9 c, 9 b, 4294967295 new");
    QTest::newRow("present 3") << 3U << QStringLiteral("3 new, 9 c, 9 b");
    QTest::newRow("doubled 9, the first replaced") << 9U << QStringLiteral("3 a, 9 new, 9 b");
}

void tst_CDeviceList::addDevice()
{
    QFETCH(const unsigned int, key);
    CDeviceList list = listOf({{3, "a"}, {9, "b"}, {9, "c"}});
    CDeviceItem item = feedDevice();
    item.name = QStringLiteral("new");
    item.key = UINT_MAX;
    list.addDevice(key, item);
    QTEST(devicesOf(list), "expected");
    QCOMPARE(item.key, UINT_MAX);
    item.key = key;
    QCOMPARE(describe(list.device(key)), describe(item)); // every field of it
}

void tst_CDeviceList::addDeviceTwice()
{
    CDeviceList list;
    CDeviceItem first = feedDevice();
    first.key = 1;
    list.addDevice(7, first);
    list.addDevice(7, plainDevice()); // its own key is 5
    QCOMPARE(list.size(), 1);
    CDeviceItem expected = plainDevice();
    expected.key = 7;
    QCOMPARE(describe(list.device(7)), describe(expected));
}

void tst_CDeviceList::addDeviceOfSameList_data()
{
    QTest::addColumn<unsigned int>("from");
    QTest::addColumn<unsigned int>("to");
    QTest::addColumn<bool>("isShared");
    QTest::addColumn<QString>("expected"); // beside 3 a, 9 c, 9 b
    for (const bool isShared : {false, true}) {
        const char *kind = isShared ? "shared" : "alone";
        QTest::addRow("%s, to itself", kind)
            << 3U << 3U << isShared << QStringLiteral("3 a, 9 c, 9 b");
        QTest::addRow("%s, to an absent key", kind)
            << 3U << 5U << isShared << QStringLiteral("3 a, 5 a, 9 c, 9 b");
        QTest::addRow("%s, to a doubled key", kind)
            << 3U << 9U << isShared << QStringLiteral("3 a, 9 a, 9 b");
        QTest::addRow("%s, from a doubled key", kind)
            << 9U << 3U << isShared << QStringLiteral("3 c, 9 c, 9 b");
    }
}

void tst_CDeviceList::addDeviceOfSameList()
{
    QFETCH(const unsigned int, from);
    QFETCH(const unsigned int, to);
    QFETCH(const bool, isShared);
    CDeviceList list = listOf({{3, "a"}, {9, "b"}, {9, "c"}});
    CDeviceList copy;
    if (isShared)
        copy = list;
    list.addDevice(to, *list.devices.constFind(from));
    QTEST(devicesOf(list), "expected");
    QCOMPARE(keysAndNames(copy), isShared ? QStringLiteral("3 a, 9 c, 9 b") : QString());
}

void tst_CDeviceList::removeDevice_data()
{
    QTest::addColumn<unsigned int>("key");
    QTest::addColumn<QString>("expected"); // of 3 a, 9 d, 9 c, 9 b, 4294967295 e
    QTest::newRow("single 3") << 3U << QStringLiteral("9 d, 9 c, 9 b, 4294967295 e");
    QTest::newRow("tripled 9") << 9U << QStringLiteral("3 a, 4294967295 e");
    QTest::newRow("2^32 - 1") << UINT_MAX << QStringLiteral("3 a, 9 d, 9 c, 9 b");
    QTest::newRow("absent 0") << 0U << QStringLiteral("3 a, 9 d, 9 c, 9 b, 4294967295 e");
}

void tst_CDeviceList::removeDevice()
{
    QFETCH(const unsigned int, key);
    CDeviceList list = listOf({{3, "a"}, {9, "b"}, {9, "c"}, {9, "d"}, {UINT_MAX, "e"}});
    list.removeDevice(key);
    QTEST(devicesOf(list), "expected");
    QVERIFY(!list.contains(key));
    list.removeDevice(key); // there is none any more
    QTEST(devicesOf(list), "expected");

    CDeviceList none;
    none.removeDevice(key);
    QCOMPARE(none.size(), 0);
}

void tst_CDeviceList::clear()
{
    CDeviceList list = goldenList();
    list.clear();
    QCOMPARE(list.size(), 0);
    QCOMPARE(describe(list), QStringLiteral("\"Rig\" %1").arg(0x0A0B0C0D));
    list.clear();
    QCOMPARE(describe(list), QStringLiteral("\"Rig\" %1").arg(0x0A0B0C0D));
}

void tst_CDeviceList::unite_data()
{
    QTest::addColumn<CDeviceList>("list");
    QTest::addColumn<CDeviceList>("other");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const CDeviceList &list, const CDeviceList &other,
                        const char *expected) {
        QTest::newRow(name) << list << other << QString(QLatin1String(expected));
    };
    row("both empty", listOf({}), listOf({}), "");
    row("with an empty one", listOf({{3, "a"}, {3, "b"}}), listOf({}), "3 b, 3 a");
    row("empty with another", listOf({}), listOf({{3, "a"}, {3, "b"}}), "3 b, 3 a");
    row("no key in both", listOf({{3, "a"}, {UINT_MAX, "b"}}), listOf({{0, "c"}, {5, "d"}}),
        "0 c, 3 a, 5 d, 4294967295 b");
    row("7 in both, the new in front", listOf({{7, "old"}}), listOf({{7, "new"}}), "7 new, 7 old");
    row("overlapping", listOf({{3, "a"}, {7, "b"}}), listOf({{7, "c"}, {9, "d"}}),
        "3 a, 7 c, 7 b, 9 d");
    row("equal devices are added, too", listOf({{7, "a"}}), listOf({{7, "a"}}), "7 a, 7 a");
    row("doubled in both, each keeps its order", listOf({{7, "1"}, {7, "2"}}),
        listOf({{7, "3"}, {7, "4"}}), "7 4, 7 3, 7 2, 7 1");
    row("doubled in the other, between others", listOf({{6, "x"}, {7, "1"}, {8, "y"}}),
        listOf({{7, "3"}, {7, "4"}, {7, "5"}}), "6 x, 7 5, 7 4, 7 3, 7 1, 8 y");
    CDeviceList foreign = listOf({{7, "b"}});
    foreign.devices[7].key = 70;
    row("own keys are kept", listOf({{7, "a"}}), foreign, "7/70 b, 7 a");
}

void tst_CDeviceList::unite()
{
    QFETCH(CDeviceList, list);
    QFETCH(const CDeviceList, other);
    QFETCH(const QString, expected);
    CDeviceList renamed = other;
    renamed.name = QStringLiteral("other");
    renamed.sourceType = code(2);
    const int size = list.size() + other.size();
    list.unite(renamed);
    QCOMPARE(devicesOf(list), expected); // with its own name and source type
    QCOMPARE(list.size(), size);
    QCOMPARE(keysAndNames(renamed), keysAndNames(other));
}

void tst_CDeviceList::uniteWithItself_data()
{
    QTest::addColumn<CDeviceList>("list");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << listOf({}) << QString();
    QTest::newRow("one") << listOf({{7, "a"}}) << QStringLiteral("7 a, 7 a");
    QTest::newRow("two keys") << listOf({{7, "a"}, {9, "b"}})
                              << QStringLiteral("7 a, 7 a, 9 b, 9 b");
    QTest::newRow("doubled, in its order twice")
        << listOf({{7, "a"}, {7, "b"}}) << QStringLiteral("7 b, 7 a, 7 b, 7 a");
}

void tst_CDeviceList::uniteWithItself()
{
    QFETCH(CDeviceList, list);
    QFETCH(const QString, expected);
    CDeviceList copy = list;
    copy.unite(list); // shares its devices
    QCOMPARE(devicesOf(copy), expected);
    copy = CDeviceList(); // so that the list shares its devices with none of ours
    list.unite(list);
    QCOMPARE(devicesOf(list), expected);
}

void tst_CDeviceList::uniteKeepsOtherList()
{
    CDeviceList list = goldenList();
    const CDeviceList other = goldenList();
    list.unite(other);
    QCOMPARE(describe(other), describe(goldenList()));
    list.devices.first().name = QStringLiteral("changed");
    QCOMPARE(describe(other), describe(goldenList()));
}

void tst_CDeviceList::unitesDoubledKey()
{
    CDeviceList list = listOf({{7, "old"}});
    list.unite(listOf({{7, "new"}}));
    QCOMPARE(list.size(), 2);
    QVERIFY(list.contains(7));
    QCOMPARE(list.device(7).name, QStringLiteral("new"));

    list.addDevice(7, named("newest"));
    QCOMPARE(devicesOf(list), QStringLiteral("7 newest, 7 old"));
    QCOMPARE(list.device(7).name, QStringLiteral("newest"));

    list.removeDevice(7);
    QCOMPARE(list.size(), 0);
    QVERIFY(!list.contains(7));
}

void tst_CDeviceList::compares_data()
{
    QTest::addColumn<CDeviceList>("first");
    QTest::addColumn<CDeviceList>("second");
    QTest::addColumn<bool>("isEqual");
    const auto row = [](const char *name, const CDeviceList &first, const CDeviceList &second,
                        bool isEqual) { QTest::newRow(name) << first << second << isEqual; };
    row("default", CDeviceList(), CDeviceList(), true);
    row("made twice", goldenList(), goldenList(), true);
    row("null and empty name", CDeviceList(), CDeviceList(QStringLiteral(""), code(0)), true);

    const auto differs = [&row](const char *name, auto change) {
        CDeviceList other = goldenList();
        change(other);
        row(name, goldenList(), other, false);
    };
    differs("name", [](CDeviceList &list) { list.name = QStringLiteral("rig"); });
    differs("source type", [](CDeviceList &list) { list.sourceType = code(0x0A0B0C0E); });
    differs("no devices", [](CDeviceList &list) { list.clear(); });
    differs("one device less", [](CDeviceList &list) { list.removeDevice(5); });
    differs("one device more", [](CDeviceList &list) { list.addDevice(6, CDeviceItem()); });
    differs("a device twice", [](CDeviceList &list) { list.unite(listOf({{5, ""}})); });
    differs("map key, same device",
            [](CDeviceList &list) { list.devices.insert(6, list.devices.take(5)); });
    differs("device's own key", [](CDeviceList &list) { list.devices[5].key = 6; });
    differs("device's text", [](CDeviceList &list) { list.devices[5].auxText.clear(); });
    differs("device's flag", [](CDeviceList &list) { list.devices[5].auxFlagA = true; });
    differs("device's sub-device",
            [](CDeviceList &list) { list.devices[0x89ABCDEF].subDevices[3].key = 4; });

    const CDeviceList doubled = listOf({{7, "a"}, {7, "b"}});
    row("doubled key", doubled, listOf({{7, "a"}, {7, "b"}}), true);
    row("doubled key, other order", doubled, listOf({{7, "b"}, {7, "a"}}), false);
    row("doubled key, one left", doubled, listOf({{7, "b"}}), false);
    row("other keys, same count", doubled, listOf({{7, "a"}, {8, "b"}}), false);
}

void tst_CDeviceList::compares()
{
    QFETCH(const CDeviceList, first);
    QFETCH(const CDeviceList, second);
    QFETCH(const bool, isEqual);
    QCOMPARE(first == second, isEqual);
    QCOMPARE(second == first, isEqual);
    QCOMPARE(first != second, !isEqual);
    QCOMPARE(second != first, !isEqual);
    QVERIFY(first == CDeviceList(first));
}

void tst_CDeviceList::streamOfType_data()
{
    DeviceStream::addCodeRows();
}

void tst_CDeviceList::streamOfType()
{
    DeviceStream::checkCode<ESourceType>();
}

void tst_CDeviceList::shortStreamOfType()
{
    DeviceStream::checkShortCode<ESourceType>();
}

void tst_CDeviceList::stream_data()
{
    QTest::addColumn<CDeviceList>("list");
    QTest::addColumn<QByteArray>("bigEndian");
    QTest::addColumn<QByteArray>("littleEndian");
    QTest::newRow("two devices, one with two sub-devices")
        << goldenList() << goldenBytes(QDataStream::BigEndian)
        << goldenBytes(QDataStream::LittleEndian);
    QTest::newRow("default") << CDeviceList() << QByteArray::fromHex("ffffffff 00000000 00000000")
                             << QByteArray::fromHex("ffffffff 00000000 00000000");
    QTest::newRow("empty, with name and type")
        << CDeviceList(QStringLiteral("\u20ac"), code(2))
        << QByteArray::fromHex("00000002 20ac 00000002 00000000")
        << QByteArray::fromHex("02000000 ac20 02000000 00000000");
}

void tst_CDeviceList::stream()
{
    QFETCH(const CDeviceList, list);
    QFETCH(const QByteArray, bigEndian);
    QFETCH(const QByteArray, littleEndian);
    for (const Format &format : kFormats) {
        const bool isBig = format.order == QDataStream::BigEndian;
        const QByteArray bytes = isBig ? bigEndian : littleEndian;
        QByteArray output;
        QDataStream out(&output, QIODevice::WriteOnly);
        setFormat(out, format);
        QCOMPARE(&(out << list), &out);
        QCOMPARE(output.toHex(' '), bytes.toHex(' '));

        for (const CDeviceList &before : {CDeviceList(), listOf({{1, "a"}, {5, "b"}, {5, "c"}})}) {
            QDataStream in(bytes + "tail");
            setFormat(in, format);
            CDeviceList read = before;
            const MessageRecorder recorder;
            QCOMPARE(&(in >> read), &in);
            QCOMPARE(describe(read), describe(list));
            QVERIFY(read == list);
            QCOMPARE(in.status(), QDataStream::Ok);
            QCOMPARE(in.device()->bytesAvailable(), 4LL);
            QCOMPARE(recorder.messages(), QStringList());
        }
    }
}

void tst_CDeviceList::streamOfTwoLists()
{
    const CDeviceList other = listOf({{7, "a"}, {7, "b"}, {UINT_MAX, "c"}});
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << goldenList() << other;
    QDataStream in(bytes);
    CDeviceList first;
    CDeviceList second;
    in >> first >> second;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(describe(first), describe(goldenList()));
    QCOMPARE(describe(second), describe(other));
}

void tst_CDeviceList::streamOfUnitedLists()
{
    CDeviceList list = listOf({{7, "1"}, {7, "2"}, {8, "x"}});
    list.unite(listOf({{7, "3"}, {7, "4"}}));
    list.unite(list);
    const QString expected = QStringLiteral("7 4, 7 3, 7 2, 7 1, 7 4, 7 3, 7 2, 7 1, 8 x, 8 x");
    QCOMPARE(devicesOf(list), expected);
    for (const Format &format : kFormats) {
        const QByteArray bytes = written(list, format);
        QDataStream in(bytes);
        setFormat(in, format);
        CDeviceList read;
        in >> read;
        QCOMPARE(devicesOf(read), expected);
        QVERIFY(read == list);
        QCOMPARE(written(read, format), bytes);

        // The map's last entry comes first.
        Devices devices;
        for (const char *name : {"x", "x", "1", "2", "3", "4", "1", "2", "3", "4"}) {
            CDeviceItem item = named(name);
            item.key = *name == 'x' ? 8 : 7;
            devices.push_back({item.key, item, {}});
        }
        const auto plain = DeviceStream::bytesOf(format, QStringLiteral("list"), 1, devices);
        QCOMPARE(bytes.toHex(), plain.toHex());
    }
}

void tst_CDeviceList::streamOfForeignPairs_data()
{
    QTest::addColumn<QString>("pairs"); // map key/own key name, in the order of the stream
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("again");
    const auto row = [](const char *name, const char *pairs, const char *expected,
                        const char *again) {
        QTest::newRow(name) << QString(QLatin1String(pairs)) << QString(QLatin1String(expected))
                            << QString(QLatin1String(again));
    };
    row("falling", "4294967295/4294967295 a,2147483648/2147483648 b,2147483647/2147483647 c,0/0 d",
        "0 d, 2147483647 c, 2147483648 b, 4294967295 a",
        "4294967295/4294967295 a,2147483648/2147483648 b,2147483647/2147483647 c,0/0 d");
    row("rising", "0/0 a,1/1 b,4294967295/4294967295 c", "0 a, 1 b, 4294967295 c",
        "4294967295/4294967295 c,1/1 b,0/0 a");
    row("sorted as with a sign", "2147483647/2147483647 a,2147483648/2147483648 b",
        "2147483647 a, 2147483648 b", "2147483648/2147483648 b,2147483647/2147483647 a");
    row("without order", "3/3 a,9/9 b,5/5 c", "3 a, 5 c, 9 b", "9/9 b,5/5 c,3/3 a");
    row("own keys differ", "9/3 a,3/9 b", "3/9 b, 9/3 a", "9/3 a,3/9 b");
    row("own key 0", "9/0 a", "9/0 a", "9/0 a");
    row("doubled, the last in front", "7/7 a,7/7 b", "7 b, 7 a", "7/7 a,7/7 b");
    row("doubled, own keys differ", "7/8 a,7/9 b", "7/9 b, 7/8 a", "7/8 a,7/9 b");
    row("doubled, others between", "7/7 a,9/9 x,7/7 b,3/3 y,7/7 c", "3 y, 7 c, 7 b, 7 a, 9 x",
        "9/9 x,7/7 a,7/7 b,7/7 c,3/3 y");
    row("the same three times", "7/7 a,7/7 a,7/7 a", "7 a, 7 a, 7 a", "7/7 a,7/7 a,7/7 a");
}

void tst_CDeviceList::streamOfForeignPairs()
{
    QFETCH(const QString, pairs);
    QFETCH(const QString, expected);
    QFETCH(const QString, again);
    const auto parsed = [](const QString &text) {
        Devices devices;
        for (const QString &pair : text.split(QLatin1Char(','))) {
            CDeviceItem item;
            item.name = pair.section(QLatin1Char(' '), 1);
            item.key = pair.section(QLatin1Char(' '), 0, 0).section(QLatin1Char('/'), 1).toUInt();
            devices.push_back({pair.section(QLatin1Char('/'), 0, 0).toUInt(), item, {}});
        }
        return devices;
    };
    for (const Format &format : kFormats) {
        const QString name = QStringLiteral("list");
        QDataStream in(DeviceStream::bytesOf(format, name, 1, parsed(pairs)) + "tail");
        setFormat(in, format);
        CDeviceList list = goldenList();
        in >> list;
        QCOMPARE(in.status(), QDataStream::Ok);
        QCOMPARE(in.device()->bytesAvailable(), 4LL);
        QCOMPARE(devicesOf(list), expected);
        QCOMPARE(written(list, format).toHex(),
                 DeviceStream::bytesOf(format, name, 1, parsed(again)).toHex());
    }
}

void tst_CDeviceList::streamOfAnyList()
{
    std::mt19937 random(815);
    const auto below = [&random](unsigned int limit) { return static_cast<int>(random() % limit); };
    constexpr quint32 kKeys[] = {0, 1, 7, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFF};
    for (int run = 0; run < 200; ++run) {
        Devices devices;
        CDeviceList list(run % 7 == 0 ? QString() : QString::number(run),
                         code(static_cast<int>(random())));
        QMultiMap<unsigned int, CDeviceItem> map;
        for (int left = below(15); left > 0; --left) {
            CDeviceItem item = below(2) == 0 ? feedDevice() : plainDevice();
            item.name = QString::number(left);
            item.key = static_cast<unsigned int>(random());
            SubDevices pairs;
            QMultiMap<unsigned char, CSubDeviceItem> subDevices;
            for (int sub = below(5); sub > 0; --sub) {
                const auto key = static_cast<quint8>(126 + below(4));
                const CSubDeviceItem made(QString::number(sub));
                pairs.emplace_back(key, made);
                subDevices.insert(key, made);
            }
            item.subDevices = subDevices;
            const quint32 key = kKeys[below(7)];
            devices.push_back({key, item, pairs});
            map.insert(key, item);
        }
        list.devices = map;

        const Format &format = kFormats[run % 6];
        QDataStream in(DeviceStream::bytesOf(format, list.name, list.sourceType, devices));
        setFormat(in, format);
        CDeviceList read;
        in >> read;
        QCOMPARE(in.status(), QDataStream::Ok);
        QVERIFY(in.atEnd());
        QCOMPARE(describe(read), describe(list));
        QVERIFY(read == list);
        const auto plain
            = DeviceStream::bytesOf(format, list.name, list.sourceType, falling(devices));
        QCOMPARE(written(read, format).toHex(), plain.toHex());
        QCOMPARE(written(list, format).toHex(), plain.toHex());
    }
}

void tst_CDeviceList::shortStream_data()
{
    QTest::addColumn<QDataStream::ByteOrder>("order");
    QTest::addColumn<int>("length");
    for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
        const Fields fields = goldenFields();
        const int size = bytesOf(fields, order).size();
        for (int length = 0; length < size; ++length) {
            QTest::addRow("%s, %d bytes, %s missing",
                          order == QDataStream::BigEndian ? "big endian" : "little endian", length,
                          fieldAt(fields, length, order))
                << order << length;
        }
    }
}

void tst_CDeviceList::shortStream()
{
    QFETCH(const QDataStream::ByteOrder, order);
    QFETCH(const int, length);
    const QByteArray cut = goldenBytes(order).left(length);
    for (const Format &format : kFormats) {
        if (format.order != order)
            continue;
        for (const bool isTransaction : {false, true}) {
            QDataStream in(cut);
            setFormat(in, format);
            if (isTransaction)
                in.startTransaction();
            CDeviceList read = listOf({{1, "a"}, {5, "b"}, {5, "c"}});
            const MessageRecorder recorder;
            in >> read;
            QCOMPARE(in.status(), QDataStream::ReadPastEnd);
            QCOMPARE(describe(withNullName(read)), describe(cutGoldenList(length, order)));
            if (isTransaction) {
                QVERIFY(!in.commitTransaction());
                QCOMPARE(in.device()->pos(), 0LL);
            }
            QCOMPARE(recorder.messages(), QStringList());
        }
    }
}

void tst_CDeviceList::streamInTransaction()
{
    for (const Format &format : kFormats) {
        const QByteArray bytes = goldenBytes(format.order);
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QDataStream in(&buffer);
        setFormat(in, format);
        CDeviceList list;
        for (int size = 0; size <= bytes.size(); ++size) { // as if it came byte by byte
            buffer.buffer() = bytes.left(size);
            in.startTransaction();
            in >> list;
            const bool isWhole = size == bytes.size();
            QCOMPARE(in.commitTransaction(), isWhole);
            QCOMPARE(in.status(), isWhole ? QDataStream::Ok : QDataStream::ReadPastEnd);
            QCOMPARE(buffer.pos(), isWhole ? size : 0LL);
        }
        QCOMPARE(describe(list), describe(goldenList()));
    }
}

void tst_CDeviceList::streamAfterError()
{
    for (const Format &format : kFormats) {
        for (const QDataStream::Status error : kErrors) {
            QDataStream in(goldenBytes(format.order) + "tail");
            setFormat(in, format);
            in.setStatus(error);
            CDeviceList read = listOf({{1, "a"}});
            in >> read;
            QCOMPARE(describe(read), describe(goldenList()));
            QCOMPARE(in.status(), error);
            QCOMPARE(in.device()->bytesAvailable(), 4LL);
        }
    }
}

void tst_CDeviceList::shortStreamAfterError()
{
    const QByteArray bytes = goldenBytes(QDataStream::LittleEndian);
    for (const QDataStream::Status error : kErrors) {
        for (int length = 0; length < bytes.size(); ++length) {
            QDataStream in(bytes.left(length));
            in.setByteOrder(QDataStream::LittleEndian);
            in.setStatus(error);
            CDeviceList read = listOf({{1, "a"}});
            in >> read;
            QCOMPARE(describe(withNullName(read)),
                     describe(cutGoldenList(length, QDataStream::LittleEndian)));
            QCOMPARE(in.status(), error);
        }
    }
}

void tst_CDeviceList::corruptStream_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("left"); // bytes behind the last pair that is read
    const auto row
        = [](const char *name, const Fields &fields, const CDeviceList &expected, int left = 0) {
              QTest::newRow(name) << bytesOf(fields, QDataStream::BigEndian) << describe(expected)
                                  << left;
          };
    CDeviceList noDevices = goldenList();
    noDevices.clear();
    CDeviceList noName = goldenList();
    noName.name = QString();
    row("list name of 3 bytes, the rest is kept",
        replaced(goldenFields(), "list name", "00000003", nullptr), noName);

    // The first device that fails ends the reading and empties the list, the sound ones included.
    const int second = bytesOf(plainFields(), QDataStream::BigEndian).size() + int(sizeof(quint32));
    row("address protocol 3 in the first device",
        goldenFields(replaced(feedFields(), "hostAddress", "03", nullptr)), noDevices, second);
    row("address protocol 3 in the last device",
        goldenFields(feedFields(), replaced(plainFields(), "hostAddress", "03", nullptr)),
        noDevices);
    row("device name of 1 byte in the first device",
        goldenFields(replaced(feedFields(), "name", "00000001", nullptr)), noDevices, second);
    row("sub-device name of 1 byte in the first device",
        goldenFields(replaced(feedFields(), "sub-device 3", "03 00000001", nullptr)), noDevices,
        second);
    row("address protocol and list name",
        replaced(goldenFields(replaced(feedFields(), "hostAddress", "03", nullptr)), "list name",
                 "00000001", nullptr),
        CDeviceList(QString(), code(0x0A0B0C0D)), second);
}

void tst_CDeviceList::corruptStream()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, expected);
    QFETCH(const int, left);
    QDataStream in(bytes);
    CDeviceList read = listOf({{1, "a"}});
    const MessageRecorder recorder;
    in >> read;
    QCOMPARE(describe(read), expected);
    QCOMPARE(in.status(), QDataStream::ReadCorruptData);
    QCOMPARE(in.device()->bytesAvailable(), qint64(left));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CDeviceList::hostileCounts_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QDataStream::Status>("error"); // before the list
    const QByteArray head = QByteArray::fromHex("00000006 005200690067 0a0b0c0d");
    const QByteArray pair
        = QByteArray::fromHex("00000005") + bytesOf(plainFields(), QDataStream::BigEndian);
    const auto hostileSubDevices = [&head](const char *count) {
        return head + QByteArray::fromHex("00000001 00000005")
            + bytesOf(replaced(plainFields(), "subDevices", count, nullptr),
                      QDataStream::BigEndian);
    };
    const auto row = [](const char *name, const QByteArray &bytes) {
        QTest::newRow(name) << bytes << QDataStream::Ok;
        QTest::addRow("%s, after an error", name) << bytes << QDataStream::WriteFailed;
    };
    const QByteArray all = QByteArray::fromHex("ffffffff");
    row("2^32 - 1, none there", head + all);
    row("2^32 - 1, 3 bytes of a key", head + all + QByteArray(3, '\0'));
    row("2^32 - 1, a key", head + all + QByteArray(4, '\0'));
    row("2^32 - 1, one device", head + all + pair);
    row("2^32 - 1, three devices and a half", head + all + pair + pair + pair + pair.left(30));
    row("2^31, one device", head + QByteArray::fromHex("80000000") + pair);
    row("2^31 - 1, one device", head + QByteArray::fromHex("7fffffff") + pair);
    row("2, one device", head + QByteArray::fromHex("00000002") + pair);
    row("sub-devices 2^32 - 1, none there", hostileSubDevices("ffffffff"));
    row("sub-devices 2^32 - 1, one there", hostileSubDevices("ffffffff 07 07 ffffffff"));
    row("sub-devices 2^31, one there", hostileSubDevices("80000000 07 07 ffffffff"));
    row("both 2^32 - 1",
        head + all
            + hostileSubDevices("ffffffff 07 07 ffffffff").mid(head.size() + int(sizeof(quint32))));
}

void tst_CDeviceList::hostileCounts()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QDataStream::Status, error);
    CountingBuffer buffer(bytes);
    QDataStream in(&buffer);
    in.setStatus(error);
    CDeviceList read = listOf({{1, "a"}});
    const MessageRecorder recorder;
    in >> read;
    QCOMPARE(describe(read), QStringLiteral("\"Rig\" %1").arg(0x0A0B0C0D));
    QCOMPARE(in.status(), error == QDataStream::Ok ? QDataStream::ReadPastEnd : error);
    QVERIFY2(buffer.reads() < 200, qPrintable(QString::number(buffer.reads())));
    QCOMPARE(recorder.messages(), QStringList());
}

QTEST_APPLESS_MAIN(tst_CDeviceList)

#include "tst_CDeviceList.moc"
