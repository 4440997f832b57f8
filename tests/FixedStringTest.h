#ifndef FIXEDSTRINGTEST_H
#define FIXEDSTRINGTEST_H

#include "CStr.h"
#include "CString128.h"
#include "CString32.h"
#include "CString64.h"
#include "CUnitParser.h"
#include "InThreads.h"
#include "MessageRecorder.h"

#include <QBuffer>
#include <QDataStream>
#include <QDebug>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>

//! The class of the fixed strings with a capacity of \a N units, and what only this class has.
template <int N>
struct FixedStringTraits;

template <>
struct FixedStringTraits<32>
{
    using String = CString32;
    static constexpr auto array = &CString32::string32;
    static constexpr NTypes::ETypes type = NTypes::TYPE_STRING32;
    static constexpr NUnits::EObjectUnit unit = NUnits::UNIT_STRING32;
    static constexpr int typeCode = 12;
    static constexpr const char *typeName = "STRING32";
    static constexpr const char *name = "CString32";
};

template <>
struct FixedStringTraits<64>
{
    using String = CString64;
    static constexpr auto array = &CString64::string64;
    static constexpr NTypes::ETypes type = NTypes::TYPE_STRING64;
    static constexpr NUnits::EObjectUnit unit = NUnits::UNIT_STRING64;
    static constexpr int typeCode = 17;
    static constexpr const char *typeName = "STRING64";
    static constexpr const char *name = "CString64";
};

template <>
struct FixedStringTraits<128>
{
    using String = CString128;
    static constexpr auto array = &CString128::string128;
    static constexpr NTypes::ETypes type = NTypes::TYPE_STRING128;
    static constexpr NUnits::EObjectUnit unit = NUnits::UNIT_STRING128;
    static constexpr int typeCode = 14;
    static constexpr const char *typeName = "STRING128";
    static constexpr const char *name = "CString128";
};

/*!
    The test of the fixed strings; K7E_CAPACITY, the number of units, selects the class under test.
*/
class FixedStringTest : public QObject
{
    Q_OBJECT

    static constexpr int N = K7E_CAPACITY;
    using Traits = FixedStringTraits<N>;
    using String = Traits::String;
    using Array = unsigned short[N];
    using Units = QVector<ushort>;
    using Writer = void (*)(String &);

    static_assert(std::has_virtual_destructor_v<String>);
    static_assert(sizeof(String) == 2 * sizeof(void *)); // its one member and the virtual table
    static_assert(std::is_nothrow_move_constructible_v<String>);
    static_assert(std::is_nothrow_move_assignable_v<String>);
    static_assert(std::is_nothrow_swappable_v<String>);
    static_assert(std::is_copy_constructible_v<String> && std::is_copy_assignable_v<String>);
    static_assert(std::is_convertible_v<const QString &, String>);
    static_assert(std::is_convertible_v<const QByteArray &, String>);
    static_assert(std::is_convertible_v<const Array &, String>);
    static_assert(!std::is_constructible_v<String, const unsigned short (&)[N - 1]>);
    static_assert(!std::is_constructible_v<String, const unsigned short (&)[N + 1]>);
    static_assert(std::is_same_v<decltype(std::declval<String &>() = QString()), String &>);
    static_assert(std::is_same_v<decltype(std::declval<String &>() = std::declval<const Array &>()),
                                 String &>);
    static_assert(
        std::is_same_v<decltype(Traits::array), bool (String::*const)(unsigned short *) const>);

    //! Units that differ in both of their bytes from each other; none is zero.
    static Units fullUnits();
    //! fullUnits() with a terminator at 3: the tail behind it belongs to the value.
    static Units tailUnits();
    static Units zeroUnits() { return Units(N, 0); }
    static Units unitsOfText(const QString &text);
    static String fromUnits(const Units &units);
    static Units unitsOf(const String &string);
    static QString textOfLength(int length, ushort first = 0x100);
    static QByteArray memoryOf(const Units &units);
    static Units unitsOfMemory(const QByteArray &memory);
    static QByteArray streamOf(const Units &units, QDataStream::ByteOrder order);

    static void texts();
    static void writers();
    static void byteOrders();
    static void streams();
    static Writer writer(int index);

private Q_SLOTS:
    void typeCode();
    void zeroByDefault();

    void constructFromText_data() { texts(); }
    void constructFromText();
    void assignTextOverFullArray_data() { texts(); }
    void assignTextOverFullArray();
    void assignShorterText();
    void assignEmptyText_data();
    void assignEmptyText();
    void assignOwnText();

    void constructFromArray_data();
    void constructFromArray();
    void assignArray_data() { constructFromArray_data(); }
    void assignArray();
    void constructFromBytes_data();
    void constructFromBytes();
    void threeBytes();

    void textOfUnits_data();
    void textOfUnits();
    void isValid_data();
    void isValid();
    void arrayToNull();
    void arrayIsAllUnits();
    void byteArrayIsACopy();

    void equality();
    void inequalityInEachUnit();

    void copyShares();
    void writersDetach_data() { writers(); }
    void writersDetach();
    void writersDetachFromDefault_data() { writers(); }
    void writersDetachFromDefault();
    void selfAssignment();
    void move();
    void writeMovedFrom_data() { writers(); }
    void writeMovedFrom();
    void swapValues();

    void writeStream_data() { streams(); }
    void writeStream();
    void readStream_data() { streams(); }
    void readStream();
    void goldenStream();
    void streamInTheOtherByteOrder();
    void readTruncatedStream_data();
    void readTruncatedStream();
    void readLongerStream_data() { byteOrders(); }
    void readLongerStream();
    void readStreamWithStatus();

    void metaType();
    void metaTypeOperations();
    void variant();

    void debugOutput();
    void noMessages();
    void threads();
};

inline FixedStringTest::Units FixedStringTest::fullUnits()
{
    Units units;
    for (int i = 0; i < N; ++i)
        units += static_cast<ushort>(0x8001 + 0x0203 * i);
    return units;
}

inline FixedStringTest::Units FixedStringTest::tailUnits()
{
    Units units = fullUnits();
    units[3] = 0;
    return units;
}

//! Returns \a text, cut or filled with zeros, as the units of a fresh value.
inline FixedStringTest::Units FixedStringTest::unitsOfText(const QString &text)
{
    Units units = zeroUnits();
    for (int i = 0; i < std::min(N, text.size()); ++i)
        units[i] = text.at(i).unicode();
    return units;
}

inline FixedStringTest::String FixedStringTest::fromUnits(const Units &units)
{
    Array array;
    std::copy_n(units.begin(), N, array);
    return String(array);
}

inline FixedStringTest::Units FixedStringTest::unitsOf(const String &string)
{
    Units units(N, 0xdead);
    (string.*Traits::array)(units.data());
    return units;
}

//! Returns a text of \a length units from \a first upwards, none of them zero.
inline QString FixedStringTest::textOfLength(int length, ushort first)
{
    QString text;
    for (int i = 0; i < length; ++i)
        text += QChar(static_cast<ushort>(first + i % 0x4000));
    return text;
}

inline QByteArray FixedStringTest::memoryOf(const Units &units)
{
    return QByteArray(reinterpret_cast<const char *>(units.constData()), 2 * units.size());
}

//! Returns \a memory, cut or filled with zeros, as units in host byte order.
inline FixedStringTest::Units FixedStringTest::unitsOfMemory(const QByteArray &memory)
{
    Units units = zeroUnits();
    std::memcpy(units.data(), memory.constData(),
                static_cast<std::size_t>(std::min(2 * N, memory.size())));
    return units;
}

//! Returns \a units as bytes, each unit in the byte order of the stream and nothing else.
inline QByteArray FixedStringTest::streamOf(const Units &units, QDataStream::ByteOrder order)
{
    QByteArray bytes;
    for (const ushort unit : units) {
        const char high = static_cast<char>(unit / 256);
        const char low = static_cast<char>(unit % 256);
        bytes += order == QDataStream::BigEndian ? high : low;
        bytes += order == QDataStream::BigEndian ? low : high;
    }
    return bytes;
}

inline void FixedStringTest::texts()
{
    QTest::addColumn<QString>("text");
    const QString zero = QChar(0);
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("1 unit") << textOfLength(1);
    QTest::newRow("2 units") << textOfLength(2);
    QTest::newRow("N-2 units") << textOfLength(N - 2);
    QTest::newRow("N-1 units: terminator in the last unit") << textOfLength(N - 1);
    QTest::newRow("N units: no terminator") << textOfLength(N);
    QTest::newRow("N+1 units: cut") << textOfLength(N + 1);
    QTest::newRow("N+5 units: cut") << textOfLength(N + 5);
    QTest::newRow("2N units: cut") << textOfLength(2 * N);
    QTest::newRow("40000 units: cut") << textOfLength(40000);
    QTest::newRow("zero unit alone") << zero;
    QTest::newRow("zero unit first") << QString(zero + textOfLength(4));
    QTest::newRow("zero unit inside") << QString(textOfLength(2) + zero + textOfLength(3));
    QTest::newRow("zero unit last") << QString(textOfLength(3) + zero);
    QTest::newRow("zero unit inside N units") << QString(textOfLength(2) + zero + textOfLength(N));
    QTest::newRow("N zero units") << QString(N, QChar(0));
    QTest::newRow("surrogate pair cut at N")
        << QString(textOfLength(N - 1) + QStringLiteral("\U0001f600"));
    QTest::newRow("surrogate pair that just fits")
        << QString(textOfLength(N - 2) + QStringLiteral("\U0001f600"));
    QTest::newRow("lone surrogates") << QString(QString(QChar(0xdc00)) + QChar(0xd800));
    QTest::newRow("byte order mark first") << QString(QChar(0xfeff) + textOfLength(3));
    QTest::newRow("swapped byte order mark first") << QString(QChar(0xfffe) + textOfLength(3));
    QTest::newRow("units 0xffff") << QString(N, QChar(0xffff));
}

inline FixedStringTest::Writer FixedStringTest::writer(int index)
{
    const Writer kWriters[] = {
        [](String &string) { string = textOfLength(5, 0x300); },
        [](String &string) { string = QString(); },
        [](String &string) { string = textOfLength(N + 1, 0x300); },
        [](String &string) {
            Array units;
            std::fill(std::begin(units), std::end(units), static_cast<unsigned short>(0x1234));
            string = units;
        },
        [](String &string) {
            const String other(textOfLength(5, 0x300));
            string = other;
        },
        [](String &string) { string = String(textOfLength(5, 0x300)); },
        [](String &string) {
            String other(textOfLength(5, 0x300));
            string.swap(other);
        },
        [](String &string) {
            QDataStream in(streamOf(unitsOfText(textOfLength(5, 0x300)), QDataStream::BigEndian));
            in >> string;
        },
        [](String &string) {
            QDataStream in(QByteArray("\x12\x34", 2));
            in >> string;
        },
        [](String &string) {
            QDataStream in{QByteArray()};
            in >> string;
        },
    };
    return kWriters[index];
}

//! Every operation that changes a value, by its index in writer(), and the units that it leaves.
inline void FixedStringTest::writers()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("keepsTail");
    QTest::addColumn<QVector<ushort>>("written");
    const Units five = unitsOfText(textOfLength(5, 0x300));
    Units first = zeroUnits();
    first[0] = 0x1234;
    const Units five0 = Units(five.mid(0, 6)); // and the terminator
    QTest::newRow("assign a text") << 0 << true << five0;
    QTest::newRow("assign the null text") << 1 << true << Units{0};
    QTest::newRow("assign a text of N+1 units")
        << 2 << true << unitsOfText(textOfLength(N + 1, 0x300));
    QTest::newRow("assign an array") << 3 << false << Units(N, 0x1234);
    QTest::newRow("assign a value") << 4 << false << five;
    QTest::newRow("move-assign a value") << 5 << false << five;
    QTest::newRow("swap") << 6 << false << five;
    QTest::newRow("read a stream") << 7 << false << five;
    QTest::newRow("read a stream of one unit") << 8 << false << first;
    QTest::newRow("read an empty stream") << 9 << false << zeroUnits();
}

inline void FixedStringTest::byteOrders()
{
    QTest::addColumn<int>("order");
    QTest::newRow("big-endian") << static_cast<int>(QDataStream::BigEndian);
    QTest::newRow("little-endian") << static_cast<int>(QDataStream::LittleEndian);
}

inline void FixedStringTest::streams()
{
    QTest::addColumn<QVector<ushort>>("units");
    QTest::addColumn<int>("order");
    QTest::addColumn<int>("version");
    const struct
    {
        const char *name;
        Units units;
    } values[] = {{"zeros", zeroUnits()},
                  {"text of N units", fullUnits()},
                  {"text and tail", tailUnits()},
                  {"units 0xffff", Units(N, 0xffff)},
                  {"units 0x8000", Units(N, 0x8000)}};
    const struct
    {
        const char *name;
        QDataStream::ByteOrder order;
    } orders[]
        = {{"big-endian", QDataStream::BigEndian}, {"little-endian", QDataStream::LittleEndian}};
    const struct
    {
        const char *name;
        QDataStream::Version version;
    } versions[] = {{"Qt_4_6", QDataStream::Qt_4_6},
                    {"Qt_5_0", QDataStream::Qt_5_0},
                    {"Qt_5_15", QDataStream::Qt_5_15}};
    for (const auto &value : values) {
        for (const auto &order : orders) {
            for (const auto &version : versions)
                QTest::addRow("%s, %s, %s", value.name, order.name, version.name)
                    << value.units << static_cast<int>(order.order)
                    << static_cast<int>(version.version);
        }
    }
}

inline void FixedStringTest::typeCode()
{
    QCOMPARE(static_cast<int>(Traits::type), Traits::typeCode);
    QCOMPARE(CStr::nTypeToStr(Traits::type), QString::fromLatin1(Traits::typeName));
    QCOMPARE(CUnitParser::type(Traits::unit), Traits::type);
    QCOMPARE(CUnitParser::size(Traits::unit), static_cast<unsigned int>(2 * N));
}

inline void FixedStringTest::zeroByDefault()
{
    const String string;
    QCOMPARE(unitsOf(string), zeroUnits());
    QCOMPARE(string.byteArray(), QByteArray(2 * N, '\0'));
    QCOMPARE(string.str(), QString());
    QVERIFY(!string.isValid());
    QVERIFY(string == String());
    QVERIFY(string == fromUnits(zeroUnits()));
    QVERIFY(fromUnits(zeroUnits()) == string);
}

inline void FixedStringTest::constructFromText()
{
    QFETCH(QString, text);
    const String string(text);
    QCOMPARE(unitsOf(string), unitsOfText(text));
    QCOMPARE(string.byteArray(), memoryOf(unitsOfText(text)));
}

inline void FixedStringTest::assignTextOverFullArray()
{
    QFETCH(QString, text);
    Units expected = fullUnits();
    for (int i = 0; i < std::min(N, text.size()); ++i)
        expected[i] = text.at(i).unicode();
    if (text.size() < N)
        expected[text.size()] = 0;
    String string = fromUnits(fullUnits());
    QCOMPARE(&(string = text), &string);
    QCOMPARE(unitsOf(string), expected);
}

inline void FixedStringTest::assignShorterText()
{
    const QString ab = QStringLiteral("AB");
    String string;
    string = QStringLiteral("ABCDEF");
    string = ab;
    Units expected = zeroUnits();
    std::copy_n(std::initializer_list<ushort>{'A', 'B', 0, 'D', 'E', 'F', 0}.begin(), 7,
                expected.begin());
    QCOMPARE(unitsOf(string), expected);
    QCOMPARE(string.str(), ab);
    QVERIFY(string.isValid());
    String fresh;
    fresh = ab;
    QCOMPARE(fresh.str(), string.str());
    QVERIFY(string != fresh);
    QVERIFY(!(string == fresh));
    QVERIFY(string != String(ab));
}

inline void FixedStringTest::assignEmptyText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QStringLiteral("");
}

inline void FixedStringTest::assignEmptyText()
{
    QFETCH(QString, text);
    String string = fromUnits(fullUnits());
    QVERIFY(string.isValid());
    string = text;
    QVERIFY(!string.isValid());
    QCOMPARE(string.str(), QString());
    Units expected = fullUnits();
    expected[0] = 0;
    QCOMPARE(unitsOf(string), expected);
}

inline void FixedStringTest::assignOwnText()
{
    for (const Units &units : {zeroUnits(), tailUnits(), fullUnits()}) {
        String string = fromUnits(units);
        string = string.str();
        QCOMPARE(unitsOf(string), units);
    }
}

inline void FixedStringTest::constructFromArray_data()
{
    QTest::addColumn<QVector<ushort>>("units");
    Units last = zeroUnits();
    last[N - 1] = 0x8000;
    QTest::newRow("zeros") << zeroUnits();
    QTest::newRow("no terminator") << fullUnits();
    QTest::newRow("text and tail") << tailUnits();
    QTest::newRow("units 0xffff") << Units(N, 0xffff);
    QTest::newRow("units 0x8000") << Units(N, 0x8000);
    QTest::newRow("only the last unit, behind the terminator") << last;
}

inline void FixedStringTest::constructFromArray()
{
    QFETCH(QVector<ushort>, units);
    Array array;
    std::copy_n(units.cbegin(), N, array);
    const String string(array);
    std::fill(std::begin(array), std::end(array), static_cast<unsigned short>(0x55));
    QCOMPARE(unitsOf(string), units);
    QCOMPARE(string.byteArray(), memoryOf(units));
}

inline void FixedStringTest::assignArray()
{
    QFETCH(QVector<ushort>, units);
    Array array;
    std::copy_n(units.cbegin(), N, array);
    for (const Units &before : {zeroUnits(), fullUnits()}) {
        String string = fromUnits(before);
        QCOMPARE(&(string = array), &string);
        QCOMPARE(unitsOf(string), units);
    }
}

inline void FixedStringTest::constructFromBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QByteArray full;
    for (int i = 0; i < 4 * N; ++i)
        full += static_cast<char>(i % 255 + 1); // no zero byte
    QByteArray zeros = full.left(2 * N);
    zeros.replace(2, 4, QByteArray(4, '\0'));
    QTest::newRow("null") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("1 byte, low byte of unit 0") << full.left(1);
    QTest::newRow("2 bytes") << full.left(2);
    QTest::newRow("3 bytes, low byte of unit 1") << full.left(3);
    QTest::newRow("4 bytes") << full.left(4);
    QTest::newRow("2N-2 bytes") << full.left(2 * N - 2);
    QTest::newRow("2N-1 bytes, low byte of the last unit") << full.left(2 * N - 1);
    QTest::newRow("2N bytes") << full.left(2 * N);
    QTest::newRow("2N+1 bytes: cut") << full.left(2 * N + 1);
    QTest::newRow("2N+2 bytes: cut") << full.left(2 * N + 2);
    QTest::newRow("4N bytes: cut") << full;
    QTest::newRow("2N bytes, zeros inside") << zeros;
    QTest::newRow("zero bytes at an odd offset") << QByteArray("A\0\0A", 4);
    QTest::newRow("2N zero bytes") << QByteArray(2 * N, '\0');
    QTest::newRow("byte order mark") << QByteArray("\xff\xfe\x41\x00", 4);
}

inline void FixedStringTest::constructFromBytes()
{
    QFETCH(QByteArray, bytes);
    const Units units = unitsOfMemory(bytes);
    QCOMPARE(unitsOf(String(bytes)), units);

    // At an odd address, and ending where their memory ends.
    const auto size = static_cast<std::size_t>(bytes.size());
    const std::unique_ptr<char[]> memory(new char[size + 1]);
    std::copy(bytes.cbegin(), bytes.cend(), memory.get() + 1);
    const String string(QByteArray::fromRawData(memory.get() + 1, bytes.size()));
    std::fill_n(memory.get(), size + 1, 'x');
    QCOMPARE(unitsOf(string), units);
    QCOMPARE(string.byteArray(), memoryOf(units));
}

inline void FixedStringTest::threeBytes()
{
    Units expected = zeroUnits();
    expected[0] = qFromLittleEndian<quint16>(0xb2a1); // as they lie in memory, on any host
    expected[1] = qFromLittleEndian<quint16>(0x00c3);
    QCOMPARE(unitsOf(String(QByteArray("\xa1\xb2\xc3", 3))), expected);
}

inline void FixedStringTest::textOfUnits_data()
{
    QTest::addColumn<QVector<ushort>>("units");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QString &text) {
        QTest::newRow(name) << unitsOfText(text) << text;
    };
    row("zeros", QStringLiteral(""));
    row("1 unit", textOfLength(1));
    row("N-1 units: terminator in the last unit", textOfLength(N - 1));
    row("N units: no terminator", textOfLength(N));
    row("byte order mark stays", QString(QChar(0xfeff) + textOfLength(3)));
    row("byte order mark stays before N-1 units", QString(QChar(0xfeff) + textOfLength(N - 1)));
    row("swapped byte order mark swaps nothing", QString(QChar(0xfffe) + textOfLength(3)));
    row("low bytes zero: zero bytes at odd offsets", textOfLength(1, 0x4100));
    row("A and U+4100: zero bytes at an odd offset", QStringLiteral("A\u4100B"));
    row("half a surrogate pair", QString(textOfLength(N - 1) + QChar(0xd83d)));
    row("units 0xffff", QString(N, QChar(0xffff)));
    for (int terminator = 0; terminator < N; ++terminator) {
        Units units = fullUnits();
        units[terminator] = 0;
        QString text;
        for (int i = 0; i < terminator; ++i)
            text += QChar(units.at(i));
        QTest::addRow("terminator at %d, then a tail", terminator) << units << text;
    }
}

inline void FixedStringTest::textOfUnits()
{
    QFETCH(QVector<ushort>, units);
    QTEST(fromUnits(units).str(), "text");
}

inline void FixedStringTest::isValid_data()
{
    QTest::addColumn<QVector<ushort>>("units");
    QTest::addColumn<bool>("valid");
    Units tailOnly = fullUnits();
    tailOnly[0] = 0;
    Units headOnly = zeroUnits();
    headOnly[0] = 0x0100;
    QTest::newRow("zeros") << zeroUnits() << false;
    QTest::newRow("unit 0 is zero, tail behind") << tailOnly << false;
    QTest::newRow("only unit 0, its low byte zero") << headOnly << true;
    QTest::newRow("no terminator") << fullUnits() << true;
}

inline void FixedStringTest::isValid()
{
    QFETCH(QVector<ushort>, units);
    QTEST(fromUnits(units).isValid(), "valid");
}

inline void FixedStringTest::arrayToNull()
{
    QVERIFY(!(String().*Traits::array)(nullptr));
    QVERIFY(!(fromUnits(fullUnits()).*Traits::array)(nullptr));
}

inline void FixedStringTest::arrayIsAllUnits()
{
    for (const Units &units : {zeroUnits(), tailUnits(), fullUnits()}) {
        Units out(N + 2, 0xbeef);
        QVERIFY((fromUnits(units).*Traits::array)(out.data() + 1));
        QCOMPARE(out, Units{0xbeef} + units + Units{0xbeef});
    }
    Units out(N, 0xbeef);
    QVERIFY((String().*Traits::array)(out.data()));
    QCOMPARE(out, zeroUnits());
}

inline void FixedStringTest::byteArrayIsACopy()
{
    auto string = std::make_unique<String>(fromUnits(tailUnits()));
    const QByteArray bytes = string->byteArray();
    QCOMPARE(bytes.size(), 2 * N);
    QCOMPARE(bytes, memoryOf(tailUnits()));

    QByteArray changed = string->byteArray();
    changed.fill('x');
    QCOMPARE(unitsOf(*string), tailUnits());

    *string = textOfLength(N);
    QCOMPARE(bytes, memoryOf(tailUnits()));
    string.reset();
    QCOMPARE(bytes, memoryOf(tailUnits()));
}

inline void FixedStringTest::equality()
{
    for (const Units &units : {zeroUnits(), tailUnits(), fullUnits()}) {
        const String string = fromUnits(units);
        const String other = fromUnits(units);
        const String copy = string;
        QVERIFY(string == other);
        QVERIFY(!(string != other));
        QVERIFY(string == copy);
        QVERIFY(!(string != copy));
        const String &same = string;
        QVERIFY(string == same);
        QVERIFY(!(string != same));
    }
}

inline void FixedStringTest::inequalityInEachUnit()
{
    for (const Units &units : {zeroUnits(), tailUnits(), fullUnits()}) {
        const String string = fromUnits(units);
        for (int i = 0; i < N; ++i) {
            for (const int difference : {0x0001, 0x0100}) {
                Units changed = units;
                changed[i] = static_cast<ushort>(changed.at(i) ^ difference);
                const String other = fromUnits(changed);
                QVERIFY(string != other);
                QVERIFY(other != string);
                QVERIFY(!(string == other));
                QVERIFY(!(other == string));
            }
        }
    }
}

inline void FixedStringTest::copyShares()
{
    const String original = fromUnits(tailUnits());
    const String copy(original);
    QCOMPARE(unitsOf(copy), tailUnits());
    String assigned = fromUnits(fullUnits());
    QCOMPARE(&(assigned = original), &assigned);
    QCOMPARE(unitsOf(assigned), tailUnits());
    QCOMPARE(unitsOf(original), tailUnits());
}

inline void FixedStringTest::writersDetach()
{
    QFETCH(int, index);
    QFETCH(bool, keepsTail);
    QFETCH(QVector<ushort>, written);
    const Units before = tailUnits();
    Units after = written;
    if (keepsTail)
        after += before.mid(written.size());

    String original = fromUnits(before);
    String copy = original;
    const String witness = original;
    writer(index)(copy);
    QCOMPARE(unitsOf(copy), after);
    QCOMPARE(unitsOf(original), before);
    QCOMPARE(unitsOf(witness), before);
    writer(index)(original);
    QCOMPARE(unitsOf(original), after);
    QCOMPARE(unitsOf(witness), before);
}

inline void FixedStringTest::writersDetachFromDefault()
{
    QFETCH(int, index);
    QFETCH(QVector<ushort>, written);
    Units after = zeroUnits();
    std::copy(written.cbegin(), written.cend(), after.begin());

    const String original;
    String copy = original;
    writer(index)(copy);
    QCOMPARE(unitsOf(copy), after);
    QCOMPARE(unitsOf(original), zeroUnits());
    QCOMPARE(unitsOf(String()), zeroUnits());
}

inline void FixedStringTest::selfAssignment()
{
    String string = fromUnits(tailUnits());
    const String &same = string;
    string = same;
    QCOMPARE(unitsOf(string), tailUnits());
}

inline void FixedStringTest::move()
{
    String source = fromUnits(tailUnits());
    const String witness = source;
    String constructed(std::move(source));
    QCOMPARE(unitsOf(constructed), tailUnits());
    String assigned = fromUnits(fullUnits());
    QCOMPARE(&(assigned = std::move(constructed)), &assigned);
    QCOMPARE(unitsOf(assigned), tailUnits());
    assigned = fromUnits(fullUnits());
    QCOMPARE(unitsOf(assigned), fullUnits());
    QCOMPARE(unitsOf(witness), tailUnits());
}

// A value that was moved from may be written, whatever it holds then.
inline void FixedStringTest::writeMovedFrom()
{
    QFETCH(int, index);
    QFETCH(bool, keepsTail);
    QFETCH(QVector<ushort>, written);
    String source = fromUnits(fullUnits());
    const String target(std::move(source));
    writer(index)(source);
    const int count = keepsTail ? written.size() : N;
    QCOMPARE(unitsOf(source).mid(0, count), written);
    QCOMPARE(unitsOf(target), fullUnits());

    String assigned;
    assigned = std::move(source);
    writer(index)(source);
    QCOMPARE(unitsOf(source).mid(0, count), written);
    QCOMPARE(unitsOf(assigned).mid(0, count), written);
}

inline void FixedStringTest::swapValues()
{
    String left = fromUnits(tailUnits());
    String right = fromUnits(fullUnits());
    left.swap(right);
    QCOMPARE(unitsOf(left), fullUnits());
    QCOMPARE(unitsOf(right), tailUnits());
    using std::swap;
    swap(left, right);
    QCOMPARE(unitsOf(left), tailUnits());
    QCOMPARE(unitsOf(right), fullUnits());
    std::swap(left, right);
    QCOMPARE(unitsOf(left), fullUnits());
    QCOMPARE(unitsOf(right), tailUnits());
    String none;
    left.swap(none);
    QCOMPARE(unitsOf(left), zeroUnits());
    QCOMPARE(unitsOf(none), fullUnits());
}

inline void FixedStringTest::writeStream()
{
    QFETCH(QVector<ushort>, units);
    QFETCH(int, order);
    QFETCH(int, version);
    const auto byteOrder = static_cast<QDataStream::ByteOrder>(order);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(byteOrder);
    out.setVersion(version);
    QCOMPARE(&(out << fromUnits(units)), &out);
    QCOMPARE(out.status(), QDataStream::Ok);
    QCOMPARE(out.byteOrder(), byteOrder);
    QCOMPARE(out.version(), version);
    QCOMPARE(bytes.size(), 2 * N);
    QCOMPARE(bytes.toHex(), streamOf(units, byteOrder).toHex());
}

inline void FixedStringTest::readStream()
{
    QFETCH(QVector<ushort>, units);
    QFETCH(int, order);
    QFETCH(int, version);
    const auto byteOrder = static_cast<QDataStream::ByteOrder>(order);
    for (const Units &before : {zeroUnits(), fullUnits()}) {
        QDataStream in(streamOf(units, byteOrder));
        in.setByteOrder(byteOrder);
        in.setVersion(version);
        String string = fromUnits(before);
        QCOMPARE(&(in >> string), &in);
        QCOMPARE(in.status(), QDataStream::Ok);
        QCOMPARE(in.byteOrder(), byteOrder);
        QCOMPARE(in.version(), version);
        QVERIFY(in.atEnd());
        QCOMPARE(unitsOf(string), units);
        QVERIFY(string == fromUnits(units));
    }
}

inline void FixedStringTest::goldenStream()
{
    String string;
    string = QStringLiteral("AB\u20acDEF");
    string = QStringLiteral("\u1234b");
    QByteArray golden = QByteArray::fromHex("1234 0062 0000 0044 0045 0046");
    golden += QByteArray(2 * N - golden.size(), '\0');
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly); // big-endian unless told otherwise
    out << string;
    QCOMPARE(bytes.toHex(' '), golden.toHex(' '));
    QDataStream in(golden);
    String back;
    in >> back;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(back == string);
}

inline void FixedStringTest::streamInTheOtherByteOrder()
{
    Units swapped;
    for (const ushort unit : fullUnits())
        swapped += static_cast<ushort>(unit % 256 * 256 + unit / 256);
    QDataStream in(streamOf(fullUnits(), QDataStream::BigEndian));
    in.setByteOrder(QDataStream::LittleEndian);
    String string;
    in >> string;
    QCOMPARE(unitsOf(string), swapped);
}

inline void FixedStringTest::readTruncatedStream_data()
{
    QTest::addColumn<int>("order");
    QTest::addColumn<int>("length");
    for (int length = 0; length < 2 * N; ++length) {
        QTest::addRow("%d bytes of %d, big-endian", length, 2 * N)
            << static_cast<int>(QDataStream::BigEndian) << length;
        QTest::addRow("%d bytes of %d, little-endian", length, 2 * N)
            << static_cast<int>(QDataStream::LittleEndian) << length;
    }
}

inline void FixedStringTest::readTruncatedStream()
{
    QFETCH(int, order);
    QFETCH(int, length);
    const auto byteOrder = static_cast<QDataStream::ByteOrder>(order);
    Units expected = zeroUnits();
    for (int i = 0; i < length / 2; ++i)
        expected[i] = fullUnits().at(i);
    QDataStream in(streamOf(fullUnits(), byteOrder).left(length));
    in.setByteOrder(byteOrder);
    String string = fromUnits(Units(N, 0xffff));
    in >> string;
    QCOMPARE(unitsOf(string), expected);
    QCOMPARE(in.status(), QDataStream::ReadPastEnd);
}

inline void FixedStringTest::readLongerStream()
{
    QFETCH(int, order);
    const auto byteOrder = static_cast<QDataStream::ByteOrder>(order);
    QByteArray bytes = streamOf(tailUnits(), byteOrder) + streamOf(fullUnits(), byteOrder) + '\x2a';
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QDataStream in(&buffer);
    in.setByteOrder(byteOrder);
    String first;
    String second;
    in >> first;
    QCOMPARE(buffer.pos(), static_cast<qint64>(2 * N));
    in >> second;
    QCOMPARE(buffer.pos(), static_cast<qint64>(4 * N));
    quint8 next = 0;
    in >> next;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(unitsOf(first), tailUnits());
    QCOMPARE(unitsOf(second), fullUnits());
    QCOMPARE(next, static_cast<quint8>(0x2a));
}

// An error that happened before does not stop the reading, and stays for the caller to see.
inline void FixedStringTest::readStreamWithStatus()
{
    QDataStream in(streamOf(tailUnits(), QDataStream::BigEndian));
    in.setStatus(QDataStream::ReadCorruptData);
    String string;
    in >> string;
    QCOMPARE(unitsOf(string), tailUnits());
    QCOMPARE(in.status(), QDataStream::ReadCorruptData);
}

inline void FixedStringTest::metaType()
{
    const int id = qMetaTypeId<String>();
    QVERIFY(id >= static_cast<int>(QMetaType::User));
    QCOMPARE(QMetaType::typeName(id), Traits::name);
    QCOMPARE(QMetaType::type(Traits::name), id);
    QCOMPARE(QMetaType::sizeOf(id), static_cast<int>(sizeof(String)));
    const QMetaType::TypeFlags flags = QMetaType::typeFlags(id);
    QVERIFY(flags & QMetaType::NeedsConstruction);
    QVERIFY(flags & QMetaType::NeedsDestruction);
}

inline void FixedStringTest::metaTypeOperations()
{
    const int id = qMetaTypeId<String>();
    const String original = fromUnits(tailUnits());

    auto *created = static_cast<String *>(QMetaType::create(id));
    QCOMPARE(unitsOf(*created), zeroUnits());
    QMetaType::destroy(id, created);
    auto *copied = static_cast<String *>(QMetaType::create(id, &original));
    QCOMPARE(unitsOf(*copied), tailUnits());
    *copied = QString();
    QMetaType::destroy(id, copied);

    alignas(String) unsigned char memory[sizeof(String)];
    auto *constructed = static_cast<String *>(QMetaType::construct(id, memory, nullptr));
    QCOMPARE(unitsOf(*constructed), zeroUnits());
    QMetaType::destruct(id, constructed);
    constructed = static_cast<String *>(QMetaType::construct(id, memory, &original));
    QCOMPARE(unitsOf(*constructed), tailUnits());
    *constructed = QString();
    QMetaType::destruct(id, constructed);

    QCOMPARE(unitsOf(original), tailUnits());
}

inline void FixedStringTest::variant()
{
    String string = fromUnits(tailUnits());
    const QVariant variant = QVariant::fromValue(string);
    QCOMPARE(variant.typeName(), Traits::name);
    QCOMPARE(variant.userType(), qMetaTypeId<String>());
    string = textOfLength(N);
    QVariant copy;
    copy = variant;
    QVERIFY(copy.canConvert<String>());
    QCOMPARE(unitsOf(copy.value<String>()), tailUnits());
    QCOMPARE(unitsOf(QVariant().value<String>()), zeroUnits());
}

inline void FixedStringTest::debugOutput()
{
    QString output;
    QDebug(&output) << String(QStringLiteral("AB")) << 5;
    QCOMPARE(output.trimmed(), QString(QLatin1String(Traits::name) + QLatin1String("(\"AB\") 5")));
}

inline void FixedStringTest::noMessages()
{
    const MessageRecorder recorder;
    String string(textOfLength(N + 1));
    string = QString();
    QDataStream in{QByteArray()};
    in >> string;
    QCOMPARE(in.status(), QDataStream::ReadPastEnd);
    QVERIFY(!(string.*Traits::array)(nullptr));
    QVERIFY(!String(QByteArray(4 * N, '\0')).isValid());
    QCOMPARE(recorder.messages(), QStringList());
}

// Distinct values that share an array are used in different threads.
inline void FixedStringTest::threads()
{
    const String original = fromUnits(tailUnits());
    QVERIFY(trueInThreads([&original] {
        for (int i = 0; i < 1000; ++i) {
            String copy = original;
            if (copy != original || unitsOf(copy) != tailUnits())
                return false;
            copy = QStringLiteral("AB");
            if (copy.str() != QStringLiteral("AB") || copy == original)
                return false;
        }
        return true;
    }));
    QCOMPARE(unitsOf(original), tailUnits());
}

#endif // FIXEDSTRINGTEST_H
