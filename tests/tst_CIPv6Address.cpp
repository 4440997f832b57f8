#include "CIPv6Address.h"

#include "InThreads.h"
#include "MessageRecorder.h"
#include "TextSets.h"
#include "k7eGlobal.h"

#include <QDataStream>
#include <QRegExp>
#include <QStringList>
#include <QtTest>

#include <cstring>
#include <random>
#include <type_traits>
#include <utility>

Q_DECLARE_METATYPE(CIPv6Address)

namespace {

using Bytes = unsigned char *;
using ConstBytes = const unsigned char *;

static_assert(std::has_virtual_destructor_v<CIPv6Address>);
static_assert(std::is_copy_constructible_v<CIPv6Address>);
static_assert(std::is_copy_assignable_v<CIPv6Address>);
static_assert(std::is_nothrow_move_constructible_v<CIPv6Address>);
static_assert(std::is_nothrow_move_assignable_v<CIPv6Address>);
static_assert(std::is_nothrow_swappable_v<CIPv6Address>);
static_assert(sizeof(CIPv6Address) == sizeof(void *) + 16);
static_assert(std::is_convertible_v<const QByteArray &, CIPv6Address>);
static_assert(std::is_convertible_v<Bytes, CIPv6Address>);
static_assert(std::is_convertible_v<const QVariant &, CIPv6Address>);
static_assert(std::is_convertible_v<const QString &, CIPv6Address>);
static_assert(std::is_convertible_v<const CIPv6Address &, QString>);
static_assert(std::is_convertible_v<const CIPv6Address &, QVariant>);

static_assert(std::is_convertible_v<ConstBytes, CIPv6Address>);

struct SMember;

//! Whether a T makes an address, may be set as one, or assigned to one.
template <class T, class = void>
constexpr bool kSets = false;
template <class T>
constexpr bool kSets<
    T, std::void_t<decltype(std::declval<CIPv6Address &>().setAddress(std::declval<T>()))>> = true;
template <class T>
constexpr bool kTakes = std::is_constructible_v<CIPv6Address, T> &&kSets<T>;
template <class T>
constexpr bool kRefuses
    = !std::is_constructible_v<CIPv6Address,
                               T> && !kSets<T> && !std::is_assignable_v<CIPv6Address &, T>;

static_assert(kTakes<QByteArray> && kTakes<QByteArray &> && kTakes<const QByteArray &>);
static_assert(kTakes<QVariant> && kTakes<QVariant &> && kTakes<const QVariant &>);
static_assert(kTakes<QString> && kTakes<QString &> && kTakes<const QString &>);
static_assert(kTakes<Bytes> && kTakes<Bytes &> && kTakes<ConstBytes> && kTakes<ConstBytes const &>);
static_assert(kTakes<unsigned char (&)[16]> && kTakes<const unsigned char (&)[16]>);
static_assert(kTakes<quint8 *> && kTakes<uchar *>);
static_assert(std::is_assignable_v<CIPv6Address &, const QByteArray &>);
static_assert(std::is_assignable_v<CIPv6Address &, QByteArray>);
static_assert(std::is_assignable_v<CIPv6Address &, const QVariant &>);
static_assert(std::is_assignable_v<CIPv6Address &, const QString &>);
static_assert(std::is_assignable_v<CIPv6Address &, CIPv6Address>);
// No other pointer becomes a bool in a QVariant, which would clear the address.
static_assert(kRefuses<const qint8 *> && kRefuses<qint8 *>);
static_assert(kRefuses<const qint8 (&)[16]> && kRefuses<qint8 (&)[16]>);
static_assert(kRefuses<const char *> && kRefuses<char *> && kRefuses<const char (&)[16]>);
static_assert(kRefuses<const void *> && kRefuses<void *> && kRefuses<void (*)()>);
static_assert(kRefuses<const quint16 *> && kRefuses<const char16_t *> && kRefuses<const QChar *>);
static_assert(kRefuses<volatile unsigned char *> && kRefuses<const volatile unsigned char *>);
static_assert(kRefuses<const QString *> && kRefuses<const QByteArray *>);
static_assert(kRefuses<const CIPv6Address *> && kRefuses<unsigned char **>);
static_assert(kRefuses<std::nullptr_t>);
static_assert(kRefuses<int SMember::*> && kRefuses<void (SMember::*)()>);

template <class Argument>
using SetResult
    = decltype(std::declval<CIPv6Address &>().setAddress(std::declval<const Argument &>()));
static_assert(std::is_same_v<SetResult<QByteArray>, bool>);
static_assert(std::is_same_v<SetResult<QVariant>, bool>);
static_assert(std::is_same_v<SetResult<QString>, bool>);
static_assert(std::is_same_v<SetResult<Bytes>, void>);
static_assert(std::is_same_v<SetResult<ConstBytes>, void>); // not that of a bool in a QVariant
static_assert(std::is_same_v<decltype(std::declval<CIPv6Address &>()[0]), unsigned char &>);
static_assert(
    std::is_same_v<std::decay_t<decltype(std::declval<const CIPv6Address &>()[0])>, unsigned char>);
static_assert(!std::is_assignable_v<decltype(std::declval<const CIPv6Address &>()[0]), int>);

constexpr int kLongText = 100000;
constexpr QDataStream::Version kVersions[]
    = {QDataStream::Qt_4_6, QDataStream::Qt_5_0, QDataStream::Qt_5_15};

constexpr unsigned char kOwn[] = {0xa0, 0xa1, 0xa2, 0xa3, 0xa4, 0xa5, 0xa6, 0xa7,
                                  0xa8, 0xa9, 0xaa, 0xab, 0xac, 0xad, 0xae, 0xaf};
constexpr char kOwnHex[] = "a0a1a2a3a4a5a6a7a8a9aaabacadaeaf";
constexpr char kZeros[] = "00000000000000000000000000000000";

QByteArray raw(const unsigned char (&bytes)[16])
{
    return QByteArray(reinterpret_cast<const char *>(bytes), 16);
}

//! Returns an address whose bytes all differ, so that any one that is kept or lost shows.
CIPv6Address own()
{
    CIPv6Address address;
    for (int i = 0; i < 16; ++i)
        address[i] = kOwn[i];
    return address;
}

QByteArray hex(const CIPv6Address &address)
{
    QByteArray bytes;
    for (int i = 0; i < 16; ++i)
        bytes += static_cast<char>(address[i]);
    return bytes.toHex();
}

const QString kBeforeText = QStringLiteral("warning default: CIPv6Address::setAddress() : ");
const QString kBehindText = QStringLiteral(" is not a IPv6-Address.");

//! The warning about \a text, which shows "?" for each unit that Latin-1 does not have.
QStringList warningOf(QString text)
{
    for (QChar &unit : text) {
        if (unit.unicode() > 0xFF)
            unit = QLatin1Char('?');
    }
    return {kBeforeText + text + kBehindText};
}

QString repeated(const char *text, int times)
{
    return QString::fromLatin1(text).repeated(times);
}

QByteArray units(const QString &text)
{
    QByteArray shown;
    for (const QChar unit : text)
        shown += QByteArray::number(unit.unicode(), 16) + ' ';
    return shown;
}

//! What a text does to an address, by the public pattern and Qt's operations on lists of texts.
class Model
{
public:
    bool matches(const QString &text) const { return mPattern.indexIn(text) == 0; }

    //! Returns what is wrong with the class on \a text, nothing if all is right.
    QByteArray difference(const QString &text) const
    {
        const bool isMatch = matches(text);
        unsigned char expected[16] = {};
        if (isMatch) {
            std::memcpy(expected, kOwn, sizeof expected);
            const QStringList groups
                = text.split(QLatin1Char(':'), Qt::KeepEmptyParts, Qt::CaseSensitive);
            for (int i = 0; groups.size() == 8 && i < 8; ++i) {
                if (groups.at(i).isEmpty())
                    continue;
                const uint value = groups.at(i).toUInt(nullptr, 16);
                expected[2 * i] = static_cast<unsigned char>(value % 256);
                expected[2 * i + 1] = static_cast<unsigned char>(value / 256 % 256);
            }
        }
        CIPv6Address address = own();
        const MessageRecorder recorder;
        if (address.setAddress(text) != isMatch)
            return "result: " + units(text);
        if (address.byteArray() != raw(expected))
            return "bytes: " + units(text) + " gives " + hex(address);
        const bool isRight = recorder.messages() == (isMatch ? QStringList() : warningOf(text));
        return isRight ? QByteArray() : "messages: " + units(text);
    }

private:
    const QRegExp mPattern = QRegExp(Nk7eGlobal::IPV6_PATTERN, Qt::CaseSensitive, QRegExp::RegExp);
};

//! Texts near those of addresses, the same ones in each run.
class RandomTexts
{
public:
    QString next()
    {
        static const QString digits = QStringLiteral("0123456789abcdefABCDEF");
        static const QString odd = QStringLiteral(":::gG.%/[] -\n\u0661\uff11\u00e9\u0301");
        QString text;
        const int groups = chance(2) ? 8 : 1 + below(10);
        for (int i = 0; i < groups; ++i) {
            if (i > 0)
                text += QLatin1Char(':');
            for (int length = chance(30) ? 5 : below(5); length > 0; --length)
                text += digits.at(below(digits.size()));
        }
        for (int changes = chance(4) ? 1 + below(2) : 0; changes > 0; --changes) {
            const QChar unit
                = chance(4) ? QChar(static_cast<ushort>(mEngine())) : odd.at(below(odd.size()));
            if (chance(2) && !text.isEmpty())
                text.remove(below(text.size()), 1);
            else
                text.insert(below(text.size() + 1), unit);
        }
        return text;
    }

private:
    int below(int end) { return static_cast<int>(mEngine() % static_cast<uint>(end)); }
    bool chance(int of) { return below(of) == 0; }

    std::mt19937 mEngine{20140507};
};

} // namespace

class tst_CIPv6Address : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults();
    void copies();
    void moves();
    void swaps();
    void compares();
    void indexes();
    void clears();

    void byteArrays_data();
    void byteArrays();
    void pointers();
    void variants_data();
    void variants();
    void conversions();

    void texts_data();
    void texts();
    void warnings_data();
    void warnings();
    void prints_data();
    void prints();
    void allGroupValues_data();
    void allGroupValues();

    void allShortTexts_data();
    void allShortTexts();
    void allUnits_data();
    void allUnits();
    void randomTexts();
    void longTexts_data();
    void longTexts();
    void threads();

    void stream_data();
    void stream();
    void shortStream_data();
    void shortStream();
    void debug_data();
    void debug();
};

void tst_CIPv6Address::defaults()
{
    const MessageRecorder recorder;
    const CIPv6Address address;
    QCOMPARE(hex(address), QByteArray(kZeros));
    QCOMPARE(address.byteArray(), QByteArray(16, '\0'));
    QCOMPARE(address.str(), QStringLiteral("0:0:0:0:0:0:0:0"));
    QVERIFY(address == CIPv6Address());
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CIPv6Address::copies()
{
    CIPv6Address original = own();
    const CIPv6Address copy(original);
    CIPv6Address assigned;
    QCOMPARE(&(assigned = original), &assigned);
    const CIPv6Address &same = assigned;
    assigned = same;
    original[0] = 1;
    original[15] = 2;
    QCOMPARE(hex(copy), QByteArray(kOwnHex));
    QCOMPARE(hex(assigned), QByteArray(kOwnHex));
    QCOMPARE(hex(original), QByteArray("01a1a2a3a4a5a6a7a8a9aaabacadae02"));
}

void tst_CIPv6Address::moves()
{
    CIPv6Address first = own();
    CIPv6Address second(std::move(first));
    QCOMPARE(hex(second), QByteArray(kOwnHex));
    first = CIPv6Address(QStringLiteral("1:2:3:4:5:6:7:8")); // a moved-from object may be assigned
    QCOMPARE(hex(first), QByteArray("01000200030004000500060007000800"));
    CIPv6Address third = own();
    third = std::move(first);
    QCOMPARE(hex(third), QByteArray("01000200030004000500060007000800"));
}

void tst_CIPv6Address::swaps()
{
    CIPv6Address left = own();
    CIPv6Address right;
    left.swap(right);
    QCOMPARE(hex(left), QByteArray(kZeros));
    QCOMPARE(hex(right), QByteArray(kOwnHex));
    swap(left, right);
    QCOMPARE(hex(left), QByteArray(kOwnHex));
    QCOMPARE(hex(right), QByteArray(kZeros));
}

void tst_CIPv6Address::compares()
{
    const CIPv6Address left = own();
    QVERIFY(left == own());
    QVERIFY(!(left != own()));
    for (int i = 0; i < 16; ++i) { // every byte, its highest and lowest bit
        for (const int bit : {0x01, 0x80}) {
            CIPv6Address right = own();
            right[i] = static_cast<unsigned char>(right[i] ^ bit);
            QVERIFY(left != right);
            QVERIFY(right != left);
            QVERIFY(!(left == right));
            QVERIFY(!(right == left));
        }
    }
}

void tst_CIPv6Address::indexes()
{
    for (int index = 0; index < 16; ++index) {
        CIPv6Address address = own();
        const CIPv6Address &constant = address;
        QCOMPARE(constant[index], kOwn[index]);
        QCOMPARE(address[index], kOwn[index]);
        address[index] = 0x5B;
        QCOMPARE(constant[index], static_cast<unsigned char>(0x5B));
        QByteArray expected = raw(kOwn);
        expected[index] = 0x5B;
        QCOMPARE(address.byteArray(), expected);
        unsigned char &byte = address[index];
        byte = 0xFF;
        QCOMPARE(constant[index], static_cast<unsigned char>(0xFF));
    }
}

void tst_CIPv6Address::clears()
{
    CIPv6Address address = own();
    address.clear();
    QCOMPARE(hex(address), QByteArray(kZeros));
}

void tst_CIPv6Address::byteArrays_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("copied");
    QTest::newRow("null") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("1 byte") << QByteArray(1, '\1') << false;
    QTest::newRow("15 bytes") << QByteArray(15, '\1') << false;
    QTest::newRow("16 bytes") << QByteArray::fromHex("fe8000000000000000ff7f8001020304") << true;
    QTest::newRow("16 zeros") << QByteArray(16, '\0') << true;
    QTest::newRow("16 bytes of a text") << QByteArray("1:2:3:4:5:6:7:88") << true;
    QTest::newRow("17 bytes") << QByteArray(17, '\1') << false;
    QTest::newRow("32 bytes") << QByteArray(32, '\1') << false;
    QTest::newRow("an address as text") << QByteArray("fe80:0:0:0:0:0:0:1") << false;
    QTest::newRow("100000 bytes") << QByteArray(kLongText, '\1') << false;
}

void tst_CIPv6Address::byteArrays()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, copied);
    const MessageRecorder recorder;
    CIPv6Address address = own();
    QCOMPARE(address.setAddress(bytes), false); // in both cases
    QCOMPARE(address.byteArray(), copied ? bytes : raw(kOwn));

    CIPv6Address assigned = own();
    QCOMPARE(&(assigned = bytes), &assigned);
    QVERIFY(assigned == address);

    const CIPv6Address made(bytes);
    QCOMPARE(made.byteArray(), copied ? bytes : QByteArray(16, '\0'));
    const CIPv6Address implicit = bytes;
    QVERIFY(implicit == made);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CIPv6Address::pointers()
{
    unsigned char bytes[18];
    for (int i = 0; i < 18; ++i)
        bytes[i] = static_cast<unsigned char>(0xF0 - 7 * i);
    const QByteArray expected(reinterpret_cast<const char *>(bytes + 1), 16); // at an odd place
    unsigned char *const from = bytes + 1;
    const unsigned char *const constFrom = from;

    CIPv6Address address = own();
    address.setAddress(from);
    QCOMPARE(address.byteArray(), expected);
    address = own();
    address.setAddress(constFrom);
    QCOMPARE(address.byteArray(), expected);
    QCOMPARE(CIPv6Address(from).byteArray(), expected);
    QCOMPARE(CIPv6Address(constFrom).byteArray(), expected);
    QCOMPARE(CIPv6Address(kOwn).byteArray(), raw(kOwn)); // an array
    const CIPv6Address implicit = from;
    QCOMPARE(implicit.byteArray(), expected);

    bytes[1] = 1; // they are copied
    QCOMPARE(address.byteArray(), expected);
    address.setAddress(&address[0]); // its own
    QCOMPARE(address.byteArray(), expected);
}

void tst_CIPv6Address::variants_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("bytes"); // of the address afterwards
    const QByteArray zeros(kZeros);
    const QByteArray kept(kOwnHex);
    const QByteArray hex("fe8000000000000000ff7f8001020304");
    const auto row = [](const char *name, const QVariant &value, const QByteArray &bytes) {
        QTest::newRow(name) << value << bytes;
    };
    row("16 bytes", QByteArray::fromHex(hex), hex);
    row("15 bytes", QByteArray(15, '\1'), kept);
    row("17 bytes", QByteArray(17, '\1'), kept);
    row("no bytes", QByteArray(), kept);
    row("bytes of a text", QByteArray("::1"), kept);
    row("invalid", QVariant(), zeros);
    row("int", 5, zeros);
    row("int 0", 0, zeros);
    row("bool", true, zeros);
    row("double", 1.5, zeros);
    row("text of an address", QStringLiteral("fe80:0:0:0:0:0:0:1"), zeros);
    row("text of 16 characters", QStringLiteral("0123456789abcdef"), zeros);
    row("text that is no address", QStringLiteral("x"), zeros);
    row("null text", QString(), zeros);
    row("list of one array", QVariantList{QByteArray(16, '\1')}, zeros);
    row("bits", QBitArray(128, true), zeros);
    row("null of the type of bytes", QVariant(QVariant::ByteArray), kept);
    row("null of the type int", QVariant(QVariant::Int), zeros);
    row("an address as a type of its own", QVariant::fromValue(own()), zeros);
}

void tst_CIPv6Address::variants()
{
    QFETCH(const QVariant, value);
    QFETCH(const QByteArray, bytes);
    const MessageRecorder recorder;
    CIPv6Address address = own();
    QCOMPARE(address.setAddress(value), false); // in all cases
    QCOMPARE(hex(address), bytes);

    address = own();
    QCOMPARE(&(address = value), &address);
    QCOMPARE(hex(address), bytes);

    const CIPv6Address made(value);
    QCOMPARE(hex(made), bytes == kOwnHex ? QByteArray(kZeros) : bytes);
    const CIPv6Address implicit = value;
    QVERIFY(implicit == made);
    QCOMPARE(recorder.messages(), QStringList()); // a text does not warn either
}

void tst_CIPv6Address::conversions()
{
    CIPv6Address address = own();
    const QByteArray bytes = address.byteArray();
    const QVariant value = address;
    const QString text = address;
    address.clear();
    QCOMPARE(bytes, raw(kOwn)); // a copy
    QCOMPARE(value.userType(), static_cast<int>(QMetaType::QByteArray));
    QCOMPARE(value.toByteArray(), raw(kOwn));
    QCOMPARE(text, QStringLiteral("a1a0:a3a2:a5a4:a7a6:a9a8:abaa:adac:afae"));

    QVERIFY(CIPv6Address(value) == own());
    QVERIFY(CIPv6Address(text) == own());
    QVERIFY(CIPv6Address(bytes) == own());
    address = text;
    QVERIFY(address == own());
    address.clear();
    address = value;
    QVERIFY(address == own());
    QVERIFY(QVariant::fromValue(own()).value<CIPv6Address>() == own());
}

void tst_CIPv6Address::texts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QByteArray>("bytes"); // "-": as they were

    const auto row = [](const char *text, const char *bytes) {
        const QByteArray hex = QByteArray(bytes).replace(' ', "");
        QByteArray expected = hex;
        for (int i = 0; i < 32; ++i) {
            if (expected.at(i) == '-')
                expected[i] = kOwnHex[i];
        }
        QTest::newRow(*text ? text : "(empty)") << QString::fromLatin1(text) << true << expected;
    };
    const char *const kept = "--------------------------------";
    row("fe80:0:0:0:0:0:0:1", "80fe 0000 0000 0000 0000 0000 0000 0100");
    row("1234:5678:9abc:def0:0fed:cba9:8765:4321", "3412 7856 bc9a f0de ed0f a9cb 6587 2143");
    row("1234:5678:9ABC:DEF0:0FED:CBA9:8765:4321", "3412 7856 bc9a f0de ed0f a9cb 6587 2143");
    row("FfFf:fFfF:0:0:0:0:0:0", "ffff ffff 0000 0000 0000 0000 0000 0000");
    row("0:0:0:0:0:0:0:0", kZeros);
    row("0000:0000:0000:0000:0000:0000:0000:0000", kZeros);
    row("1:02:003:0004:a:0b:00c:000d", "0100 0200 0300 0400 0a00 0b00 0c00 0d00");
    row("100:0:0:0:0:0:0:ff00", "0001 0000 0000 0000 0000 0000 0000 00ff");
    // An empty group keeps its two bytes.
    row("1:::::::", "0100 ---- ---- ---- ---- ---- ---- ----");
    row("::::::1:", "---- ---- ---- ---- ---- ---- 0100 ----");
    row("1:2::4:5:6:7:8", "0100 0200 ---- 0400 0500 0600 0700 0800");
    row("1::::::7:8", "0100 ---- ---- ---- ---- ---- 0700 0800");
    row("1:2:3:4:5:6:7:", "0100 0200 0300 0400 0500 0600 0700 ----");
    row("1:::::::8", "0100 ---- ---- ---- ---- ---- ---- 0800");
    row("0:::::::", "0000 ---- ---- ---- ---- ---- ---- ----");
    row("::3:4:5:6:7:8", "---- ---- 0300 0400 0500 0600 0700 0800");
    row("::::::7:8", "---- ---- ---- ---- ---- ---- 0700 0800");
    row(":::::::", kept);
    row("::::::::", kept); // nine groups
    row("::2:3:4:5:6:7:8", kept);
    // Fewer or more groups store nothing.
    row("::1", kept);
    row("::", kept);
    row(":", kept);
    row("1", kept);
    row("0", kept);
    row("ffff", kept);
    row("1:2:3", kept);
    row("1:2:3:4:5:6:7", kept);
    row("1::8", kept);
    row("fe80::1", kept);
    row("1:", kept);
    row("1:2:3:4::6:7", kept);

    const auto bad = [](const char *text) {
        QTest::addRow("%s, refused", QByteArray(text).replace('\n', "<lf>").constData())
            << QString::fromLatin1(text) << false << QByteArray(kZeros);
    };
    bad("fe800:0:0:0:0:0:0:1");
    bad("fe80:0:0:0:0:0:0:00001");
    bad("12345");
    bad("00000");
    bad("1:2:3:4:5:6:7:8:9");
    bad("1:2:3:4:5:6:7:8:");
    bad("1::::::::");
    bad(":::::::::");
    bad(":1");
    bad(":1:2:3:4:5:6:7");
    bad(":1:2:3:4:5:6:7:8");
    bad("g:0:0:0:0:0:0:1");
    bad("fe80:0:0:0:0:0:0:g");
    bad("fe80::1%eth0");
    bad("%s%n");
    bad("%1");
    bad("%");
    bad("%%");
    bad("1.2.3.4");
    bad("::1.2.3.4");
    bad("[::1]");
    bad("::1/64");
    bad(" ::1");
    bad("::1 ");
    bad("::1\n");
    bad("\n::1");
    bad("0x1:2:3:4:5:6:7:8");
    bad("-1:2:3:4:5:6:7:8");
    bad("+1:2:3:4:5:6:7:8");
    bad("1 :2:3:4:5:6:7:8");
    bad("1:2;3");
    bad("\"quoted\" \\n");
    bad("");
}

void tst_CIPv6Address::texts()
{
    QFETCH(const QString, text);
    QFETCH(const bool, accepted);
    QFETCH(const QByteArray, bytes);
    const QStringList messages = accepted ? QStringList() : warningOf(text);
    {
        const MessageRecorder recorder;
        CIPv6Address address = own();
        QCOMPARE(address.setAddress(text), accepted);
        QCOMPARE(hex(address), bytes);
        QCOMPARE(recorder.messages(), messages);
    }
    {
        const MessageRecorder recorder;
        CIPv6Address address = own();
        QCOMPARE(&(address = text), &address);
        QCOMPARE(hex(address), bytes);
        QCOMPARE(recorder.messages(), messages);
    }
    {
        // A new address has zeros where the other one kept its bytes.
        const MessageRecorder recorder;
        const CIPv6Address made(text);
        CIPv6Address expected;
        for (int i = 0; i < 16; ++i) {
            const int byte = bytes.mid(2 * i, 2).toInt(nullptr, 16);
            expected[i] = byte == kOwn[i] ? static_cast<unsigned char>(0)
                                          : static_cast<unsigned char>(byte);
        }
        QCOMPARE(hex(made), hex(expected));
        QCOMPARE(recorder.messages(), messages);
    }
}

void tst_CIPv6Address::warnings_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("null") << QString() << QString();
    QTest::newRow("characters that Latin-1 lacks")
        << QStringLiteral("\u4e2d:\u0661") << QStringLiteral("?:?");
    QTest::newRow("fullwidth digit") << QStringLiteral("\uff11::") << QStringLiteral("?::");
    QTest::newRow("%1 %2 %n %s %d %5000000c")
        << QStringLiteral("%1 %2 %n %s %d %5000000c") << QStringLiteral("%1 %2 %n %s %d %5000000c");
    QTest::newRow("tab and line feeds")
        << QStringLiteral("a\tb\r\nc\n") << QStringLiteral("a\tb\r\nc\n");
    QTest::newRow("the warning itself")
        << QStringLiteral("CIPv6Address::setAddress() : %1 is not a IPv6-Address.")
        << QStringLiteral("CIPv6Address::setAddress() : %1 is not a IPv6-Address.");
}

void tst_CIPv6Address::warnings()
{
    QFETCH(const QString, text);
    QFETCH(const QString, shown);
    const MessageRecorder recorder;
    CIPv6Address address = own();
    QVERIFY(!address.setAddress(text));
    QCOMPARE(hex(address), QByteArray(kZeros));
    QVERIFY(!address.setAddress(text)); // once for each call
    QCOMPARE(recorder.messages(), warningOf(shown) + warningOf(shown));
}

void tst_CIPv6Address::prints_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *text, const char *bytes) {
        QTest::newRow(text) << QByteArray::fromHex(bytes) << QString::fromLatin1(text);
    };
    row("0:0:0:0:0:0:0:0", kZeros);
    row("fe80:0:0:0:0:0:0:1", "80fe0000000000000000000000000100");
    row("1234:0:0:0:0:0:0:0", "34120000000000000000000000000000");
    row("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", "ffffffffffffffffffffffffffffffff");
    row("1:20:300:4000:a:b0:c00:d000", "01002000000300400a00b000000c00d0");
    row("100:ff:ff00:f:f0:f00:f000:8000", "0001ff0000ff0f00f000000f00f00080");
    row("0:1:0:0:1:0:0:0", "00000100000000000100000000000000");
}

void tst_CIPv6Address::prints()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, text);
    QCOMPARE(bytes.size(), 16);
    const CIPv6Address address(bytes);
    QCOMPARE(address.str(), text);
    const QString converted = address;
    QCOMPARE(converted, text);

    CIPv6Address read = own();
    QVERIFY(read.setAddress(text));
    QCOMPARE(read.byteArray(), bytes);
    QVERIFY(read.setAddress(text.toUpper()));
    QCOMPARE(read.byteArray(), bytes);
}

void tst_CIPv6Address::allGroupValues_data()
{
    QTest::addColumn<int>("group");
    for (int group = 0; group < 8; ++group)
        QTest::addRow("group %d", group) << group;
}

void tst_CIPv6Address::allGroupValues()
{
    QFETCH(const int, group);
    QStringList groups{QStringLiteral("a1a0"), QStringLiteral("a3a2"), QStringLiteral("a5a4"),
                       QStringLiteral("a7a6"), QStringLiteral("a9a8"), QStringLiteral("abaa"),
                       QStringLiteral("adac"), QStringLiteral("afae")};
    QByteArray bytes = raw(kOwn);
    for (int value = 0; value <= 0xFFFF; ++value) {
        groups[group] = QString::number(value, 16);
        bytes[2 * group] = static_cast<char>(value % 256);
        bytes[2 * group + 1] = static_cast<char>(value / 256);
        const QString text = groups.join(QLatin1Char(':'));
        CIPv6Address address = own();
        if (!address.setAddress(text) || address.byteArray() != bytes || address.str() != text)
            QFAIL(qPrintable(text));
    }
}

void tst_CIPv6Address::allShortTexts_data()
{
    QTest::addColumn<QString>("alphabet");
    QTest::addColumn<int>("length");
    QTest::newRow("digits of both cases, colon, letter") << QStringLiteral("0aF:g") << 6;
    QTest::newRow("digit, colon") << QStringLiteral("1:") << 14;
    QTest::newRow("digit, colon, Arabic digit, mark, blank, line feed, zero")
        << QStringLiteral("1:\u0661\u0301 \n") + QChar(0) << 5;
}

void tst_CIPv6Address::allShortTexts()
{
    QFETCH(const QString, alphabet);
    QFETCH(const int, length);
    const Model model;
    QByteArray difference;
    forAllTexts(alphabet, length, [&](const QString &text) {
        difference = model.difference(text);
        return difference.isEmpty();
    });
    QVERIFY2(difference.isEmpty(), difference.constData());
}

void tst_CIPv6Address::allUnits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("place");
    for (const char *text : {"1", "12:::::3::"}) {
        for (int place = 0; place < static_cast<int>(qstrlen(text)); ++place)
            QTest::addRow("%s, unit %d", text, place) << QString::fromLatin1(text) << place;
    }
}

void tst_CIPv6Address::allUnits()
{
    QFETCH(QString, text);
    QFETCH(const int, place);
    const Model model;
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        text[place] = QChar(static_cast<ushort>(unit));
        const QByteArray difference = model.difference(text);
        QVERIFY2(difference.isEmpty(), difference.constData());
    }
}

void tst_CIPv6Address::randomTexts()
{
    const Model model;
    RandomTexts texts;
    int accepted = 0;
    int whole = 0;
    for (int i = 0; i < 200000; ++i) {
        const QString text = texts.next();
        const QByteArray difference = model.difference(text);
        QVERIFY2(difference.isEmpty(), difference.constData());
        if (model.matches(text)) {
            ++accepted;
            whole += text.count(QLatin1Char(':')) == 7 ? 1 : 0;
        }
    }
    QVERIFY(accepted > 50000 && accepted < 180000); // both answers are frequent
    QVERIFY(whole > 30000);
}

void tst_CIPv6Address::longTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("digits") << repeated("1", kLongText);
    QTest::newRow("colons") << repeated(":", kLongText);
    QTest::newRow("groups") << repeated("fe80:", kLongText / 5);
    QTest::newRow("an address, then blanks")
        << QStringLiteral("1:2:3:4:5:6:7:8") + repeated(" ", kLongText);
    QTest::newRow("blanks, then an address")
        << repeated(" ", kLongText) + QStringLiteral("1:2:3:4:5:6:7:8");
    QTest::newRow("an address, then digits")
        << QStringLiteral("1:2:3:4:5:6:7:8") + repeated("0", kLongText);
    QTest::newRow("%s%n") << repeated("%s%n", kLongText / 4);
}

void tst_CIPv6Address::longTexts()
{
    QFETCH(const QString, text);
    QVERIFY(text.size() >= kLongText);
    const MessageRecorder recorder;
    CIPv6Address address = own();
    QVERIFY(!address.setAddress(text));
    QCOMPARE(hex(address), QByteArray(kZeros));
    QVERIFY(recorder.messages() == warningOf(text));
}

void tst_CIPv6Address::threads()
{
    const auto check = [] {
        for (int i = 0; i < 2000; ++i) {
            const QString group = QString::number(i, 16);
            CIPv6Address address;
            const bool isRight = address.setAddress(QStringLiteral("1:2:3:4:5:6:7:") + group)
                && address[14] == i % 256 && address[15] == i / 256
                && address.setAddress(QStringLiteral("::") + group) && address[0] == 1
                && address.str() == QStringLiteral("1:2:3:4:5:6:7:") + group;
            if (!isRight)
                return false;
        }
        return true;
    };
    const MessageRecorder recorder;
    QVERIFY(trueInThreads(check));
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CIPv6Address::stream_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("zeros") << QByteArray(kZeros);
    QTest::newRow("all differ") << QByteArray(kOwnHex);
    QTest::newRow("limits of signed bytes") << QByteArray("00017f80ff00017f80ff00017f80ff01");
}

void tst_CIPv6Address::stream()
{
    QFETCH(const QByteArray, bytes);
    const CIPv6Address address(QByteArray::fromHex(bytes));
    for (const auto version : kVersions) {
        for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            QByteArray written;
            QDataStream out(&written, QIODevice::WriteOnly);
            out.setVersion(version);
            out.setByteOrder(order);
            QCOMPARE(&(out << address), &out);
            QCOMPARE(written.toHex(), bytes); // of no byte order

            QDataStream in(written + "tail");
            in.setVersion(version);
            in.setByteOrder(order);
            CIPv6Address read(QByteArray(16, '\x55'));
            QCOMPARE(&(in >> read), &in);
            QCOMPARE(hex(read), bytes);
            QCOMPARE(in.status(), QDataStream::Ok);
            QCOMPARE(in.device()->bytesAvailable(), 4LL);
        }
    }
}

void tst_CIPv6Address::shortStream_data()
{
    QTest::addColumn<int>("length");
    for (int length = 0; length < 16; ++length)
        QTest::addRow("%d bytes", length) << length;
}

void tst_CIPv6Address::shortStream()
{
    QFETCH(const int, length);
    for (const auto version : kVersions) {
        QDataStream in(raw(kOwn).left(length));
        in.setVersion(version);
        CIPv6Address address(QByteArray(16, '\x55'));
        in >> address;
        QCOMPARE(address.byteArray(), raw(kOwn).left(length) + QByteArray(16 - length, '\0'));
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
    }
}

void tst_CIPv6Address::debug_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("fe80:0:0:0:0:0:0:1") << QStringLiteral("fe80:0:0:0:0:0:0:1")
                                        << QStringLiteral("CIPv6Address(\"fe80:0:0:0:0:0:0:1\")");
    QTest::newRow("zeros") << QStringLiteral("::")
                           << QStringLiteral("CIPv6Address(\"0:0:0:0:0:0:0:0\")");
}

void tst_CIPv6Address::debug()
{
    QFETCH(const QString, text);
    QFETCH(const QString, expected);
    const CIPv6Address address(text);
    QString written;
    QDebug(&written).nospace() << address << '|' << 7 << " x"; // the state of the stream is kept
    QCOMPARE(written, expected + QLatin1String("|7 x"));
    QString spaced;
    QDebug(&spaced) << 1 << address << 2;
    QCOMPARE(spaced.trimmed(), QLatin1String("1 ") + expected + QLatin1String(" 2"));
}

QTEST_APPLESS_MAIN(tst_CIPv6Address)

#include "tst_CIPv6Address.moc"
