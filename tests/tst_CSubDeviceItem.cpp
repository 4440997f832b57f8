#include "CSubDeviceItem.h"

#include "DeviceStream.h"
#include "MessageRecorder.h"

#include <QBuffer>
#include <QDataStream>
#include <QtTest>

#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

using DeviceStream::describe;
using DeviceStream::Format;
using DeviceStream::kErrors;
using DeviceStream::kFormats;
using DeviceStream::setFormat;
using DeviceStream::written;

Q_DECLARE_METATYPE(QDataStream::Status)

namespace {

static_assert(std::is_same_v<decltype(CSubDeviceItem::key), unsigned char>);
static_assert(std::is_same_v<decltype(CSubDeviceItem::name), QString>);
static_assert(!std::is_polymorphic_v<CSubDeviceItem>); // a plain structure
static_assert(std::is_constructible_v<CSubDeviceItem, QString>);
static_assert(std::is_nothrow_move_constructible_v<CSubDeviceItem>);
static_assert(std::is_nothrow_move_assignable_v<CSubDeviceItem>);
static_assert(std::is_same_v<decltype(std::declval<QDataStream &>()
                                      << std::declval<const CSubDeviceItem &>()),
                             QDataStream &>);
static_assert(
    std::is_same_v<decltype(std::declval<QDataStream &>() >> std::declval<CSubDeviceItem &>()),
                   QDataStream &>);

CSubDeviceItem item(unsigned char key, const QString &name)
{
    CSubDeviceItem made(name);
    made.key = key;
    return made;
}

} // namespace

class tst_CSubDeviceItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldsInOrder();
    void defaultItem();
    void namedItem_data();
    void namedItem();
    void everyFieldIsInitialised();
    void copies();

    void compares_data();
    void compares();

    void stream_data();
    void stream();
    void shortStream_data();
    void shortStream();
    void corruptName_data();
    void corruptName();
    void streamAfterError();
    void streamInTransaction();
};

void tst_CSubDeviceItem::fieldsInOrder()
{
    const CSubDeviceItem made;
    const auto &[key, name] = made;
    QCOMPARE(&key, &made.key);
    QCOMPARE(&name, &made.name);
}

void tst_CSubDeviceItem::defaultItem()
{
    const CSubDeviceItem made;
    QCOMPARE(int(made.key), 0);
    QCOMPARE(made.name, QStringLiteral("Series K7 Sub-Device"));
}

void tst_CSubDeviceItem::namedItem_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("text") << QStringLiteral("Encoder");
    QTest::newRow("empty, not null") << QStringLiteral("");
    QTest::newRow("null") << QString();
    QTest::newRow("U+0000 and a surrogate pair") << QStringLiteral("a\0b\U0001F600");
}

void tst_CSubDeviceItem::namedItem()
{
    QFETCH(const QString, name);
    const CSubDeviceItem made(name);
    QCOMPARE(int(made.key), 0);
    QCOMPARE(describe(made.name), describe(name)); // null stays null
}

void tst_CSubDeviceItem::everyFieldIsInitialised()
{
    alignas(CSubDeviceItem) unsigned char memory[sizeof(CSubDeviceItem)];
    std::memset(memory, 0xA5, sizeof memory);
    CSubDeviceItem *made = new (memory) CSubDeviceItem;
    QCOMPARE(describe(*made), QStringLiteral("0 \"Series K7 Sub-Device\""));
    made->~CSubDeviceItem();

    std::memset(memory, 0xA5, sizeof memory);
    made = new (memory) CSubDeviceItem(QStringLiteral("n"));
    QCOMPARE(describe(*made), QStringLiteral("0 \"n\""));
    made->~CSubDeviceItem();
}

void tst_CSubDeviceItem::copies()
{
    const CSubDeviceItem original = item(255, QStringLiteral("x"));
    CSubDeviceItem copy(original);
    QCOMPARE(describe(copy), QStringLiteral("255 \"x\""));
    copy.key = 7;
    copy.name = QStringLiteral("y");
    QCOMPARE(describe(original), QStringLiteral("255 \"x\""));
    copy = original;
    QCOMPARE(describe(copy), QStringLiteral("255 \"x\""));
    const CSubDeviceItem moved(std::move(copy));
    QCOMPARE(describe(moved), QStringLiteral("255 \"x\""));
}

void tst_CSubDeviceItem::compares_data()
{
    QTest::addColumn<int>("firstKey");
    QTest::addColumn<QString>("firstName");
    QTest::addColumn<int>("secondKey");
    QTest::addColumn<QString>("secondName");
    QTest::addColumn<bool>("isEqual");
    const QString a = QStringLiteral("a");
    QTest::newRow("same") << 5 << a << 5 << QStringLiteral("a") << true;
    QTest::newRow("other key") << 5 << a << 6 << a << false;
    QTest::newRow("keys 0 and 255") << 0 << a << 255 << a << false;
    QTest::newRow("keys 1 and 129") << 1 << a << 129 << a << false;
    QTest::newRow("other name") << 5 << a << 5 << QStringLiteral("b") << false;
    QTest::newRow("other case") << 5 << a << 5 << QStringLiteral("A") << false;
    QTest::newRow("longer name") << 5 << a << 5 << QStringLiteral("a ") << false;
    QTest::newRow("both differ") << 5 << a << 6 << QStringLiteral("b") << false;
    QTest::newRow("null and empty name") << 5 << QString() << 5 << QStringLiteral("") << true;
}

void tst_CSubDeviceItem::compares()
{
    QFETCH(const int, firstKey);
    QFETCH(const QString, firstName);
    QFETCH(const int, secondKey);
    QFETCH(const QString, secondName);
    QFETCH(const bool, isEqual);
    const CSubDeviceItem first = item(static_cast<unsigned char>(firstKey), firstName);
    const CSubDeviceItem second = item(static_cast<unsigned char>(secondKey), secondName);
    QCOMPARE(first == second, isEqual);
    QCOMPARE(second == first, isEqual);
    QCOMPARE(first != second, !isEqual);
    QVERIFY(first == first);
}

void tst_CSubDeviceItem::stream_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bigEndian");
    QTest::addColumn<QByteArray>("littleEndian");
    const auto row = [](const char *name, int key, const QString &text, const char *bigEndian,
                        const char *littleEndian) {
        QTest::newRow(name) << key << text << QByteArray::fromHex(bigEndian)
                            << QByteArray::fromHex(littleEndian);
    };
    row("0, null name", 0, QString(), "00 ffffffff", "00 ffffffff");
    row("1, empty name", 1, QStringLiteral(""), "01 00000000", "01 00000000");
    row("127", 127, QStringLiteral("A"), "7f 00000002 0041", "7f 02000000 4100");
    row("128", 128, QStringLiteral("A"), "80 00000002 0041", "80 02000000 4100");
    row("255, U+20AC and U+0000", 255, QStringLiteral("\u20ac\0"), "ff 00000004 20ac 0000",
        "ff 04000000 ac20 0000");
    row("9, surrogate pair", 9, QStringLiteral("\U0001F600"), "09 00000004 d83d de00",
        "09 04000000 3dd8 00de");
    row("default", 0, CSubDeviceItem().name,
        "00 00000028 0053006500720069006500730020004b00370020"
        "005300750062002d004400650076006900630065",
        "00 28000000 53006500720069006500730020004b0037002000"
        "5300750062002d00440065007600690063006500");
}

void tst_CSubDeviceItem::stream()
{
    QFETCH(const int, key);
    QFETCH(const QString, name);
    QFETCH(const QByteArray, bigEndian);
    QFETCH(const QByteArray, littleEndian);
    const CSubDeviceItem original = item(static_cast<unsigned char>(key), name);
    for (const Format &format : kFormats) {
        const bool isBig = format.order == QDataStream::BigEndian;
        const QByteArray bytes = isBig ? bigEndian : littleEndian;
        QCOMPARE(written(original, format).toHex(' '), bytes.toHex(' '));

        QDataStream in(bytes + "tail");
        setFormat(in, format);
        CSubDeviceItem read = item(77, QStringLiteral("before"));
        QCOMPARE(&(in >> read), &in);
        QCOMPARE(describe(read), describe(original));
        QCOMPARE(in.status(), QDataStream::Ok);
        QCOMPARE(in.device()->bytesAvailable(), 4LL);
    }
}

void tst_CSubDeviceItem::shortStream_data()
{
    QTest::addColumn<int>("length");
    for (int length = 0; length < 9; ++length)
        QTest::addRow("%d bytes", length) << length;
}

void tst_CSubDeviceItem::shortStream()
{
    QFETCH(const int, length);
    for (const Format &format : kFormats) {
        const bool isBig = format.order == QDataStream::BigEndian;
        const QByteArray whole
            = QByteArray::fromHex(isBig ? "c8 00000004 0041 0042" : "c8 04000000 4100 4200");
        QDataStream in(whole.left(length));
        setFormat(in, format);
        CSubDeviceItem read = item(77, QStringLiteral("before"));
        const MessageRecorder recorder;
        in >> read;
        QCOMPARE(int(read.key), length < 1 ? 0 : 200);
        QVERIFY(read.name.isEmpty());
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QCOMPARE(recorder.messages(), QStringList());
    }
}

void tst_CSubDeviceItem::corruptName_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QDataStream::Status>("status");
    QTest::newRow("odd byte count")
        << QByteArray::fromHex("c8 00000003 0041 0042") << QDataStream::ReadCorruptData;
    QTest::newRow("2^32 - 2 bytes of which 4 are there")
        << QByteArray::fromHex("c8 fffffffe 0041 0042") << QDataStream::ReadPastEnd;
}

void tst_CSubDeviceItem::corruptName()
{
    QFETCH(const QByteArray, bytes);
    QDataStream in(bytes);
    CSubDeviceItem read = item(77, QStringLiteral("before"));
    const MessageRecorder recorder;
    in >> read;
    QCOMPARE(int(read.key), 200);
    QVERIFY(read.name.isEmpty());
    QTEST(in.status(), "status");
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CSubDeviceItem::streamAfterError()
{
    for (const QDataStream::Status error : kErrors) {
        QDataStream in(QByteArray::fromHex("c8 00000002 0041"));
        in.setStatus(error);
        CSubDeviceItem read;
        in >> read;
        QCOMPARE(describe(read), QStringLiteral("200 \"A\""));
        QCOMPARE(in.status(), error);
    }
}

void tst_CSubDeviceItem::streamInTransaction()
{
    const QByteArray bytes = QByteArray::fromHex("c8 00000002 0041");
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QDataStream in(&buffer);
    CSubDeviceItem read;
    for (int size = 0; size <= bytes.size(); ++size) {
        buffer.buffer() = bytes.left(size);
        in.startTransaction();
        in >> read;
        const bool isWhole = size == bytes.size();
        QCOMPARE(in.commitTransaction(), isWhole);
        QCOMPARE(in.status(), isWhole ? QDataStream::Ok : QDataStream::ReadPastEnd);
        QCOMPARE(buffer.pos(), isWhole ? size : 0LL);
    }
    QCOMPARE(describe(read), QStringLiteral("200 \"A\""));
}

QTEST_APPLESS_MAIN(tst_CSubDeviceItem)

#include "tst_CSubDeviceItem.moc"
