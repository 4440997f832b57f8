#include <QtTest>

#include "AllocationCounter.h"
#include "CDateTime.h"
#include "CVariant.h"
#include "ForeignStreams.h"
#include "MessageRecorder.h"

#include <QBuffer>
#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QDataStream>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegExp>

#include <cmath>
#include <new>
#include <random>
#include <stdexcept>

using namespace ForeignStreams;

namespace {

constexpr int kAllVersions[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19};
constexpr QDataStream::ByteOrder kByteOrders[]
    = {QDataStream::BigEndian, QDataStream::LittleEndian};

//! What a stream gives, with all that a QVariant has.
struct Read
{
    QVariant content = 7.5;
    int tag = -7;
    int status = 0;
    qint64 position = 0;
};

template <class ReadFields>
Read readWith(const QByteArray &bytes, int version, QDataStream::ByteOrder byteOrder,
              ReadFields readFields)
{
    Read read;
    QDataStream in(bytes);
    in.setVersion(version);
    in.setByteOrder(byteOrder);
    readFields(in, read);
    read.status = in.status();
    read.position = in.device()->pos();
    return read;
}

Read readVariant(const QByteArray &bytes, int version = QDataStream::Qt_5_15,
                 QDataStream::ByteOrder byteOrder = QDataStream::BigEndian)
{
    return readWith(bytes, version, byteOrder, [](QDataStream &in, Read &read) {
        CVariant value = 7.5;
        in >> value;
        read.content = value;
        read.tag = value.type();
    });
}

Read readByQt(const QByteArray &bytes, int version, QDataStream::ByteOrder byteOrder)
{
    return readWith(bytes, version, byteOrder,
                    [](QDataStream &in, Read &read) { in >> read.content >> read.tag; });
}

//! Content shows as its stream: Qt compares only some contents.
QByteArray describe(const Read &read)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << read.content;
    return QByteArray(read.content.typeName()) + (read.content.isNull() ? " null" : "") + " tag "
        + QByteArray::number(read.tag) + " status " + QByteArray::number(read.status) + " at "
        + QByteArray::number(read.position) + ": " + bytes.toHex();
}

QByteArray streamOf(const QVariant &content, int version, QDataStream::ByteOrder byteOrder)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(version);
    out.setByteOrder(byteOrder);
    out << content;
    return bytes;
}

QByteArray streamOf(qint32 tag, QDataStream::ByteOrder byteOrder)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(byteOrder);
    out << tag;
    return bytes;
}

//! Values of all types of Qt Core that a stream may hold and that are taken.
class RandomContent
{
public:
    QVariant next(int depth = 0)
    {
        constexpr int kLeaves = 38;
        constexpr int kContainers = 4;
        constexpr int kMaxDepth = 4;
        switch (below(depth < kMaxDepth ? kLeaves + kContainers : kLeaves)) {
        case 0:
            return QVariant();
        case 1:
            return below(2) == 1;
        case 2:
            return static_cast<int>(mRandom());
        case 3:
            return static_cast<uint>(mRandom());
        case 4:
            return static_cast<qlonglong>(number());
        case 5:
            return static_cast<qulonglong>(number());
        case 6:
            return std::ldexp(static_cast<double>(mRandom()), below(600) - 300);
        case 7:
            return QChar(static_cast<ushort>(mRandom()));
        case 8:
            return text();
        case 9:
            return bytes();
        case 10:
            return bits();
        case 11:
            return date();
        case 12:
            return time();
        case 13:
            return dateTime();
        case 14:
            return QUrl(QStringLiteral("http://b\u00FCcher.example/") + text());
        case 15:
            return QUrl(text());
        case 16:
            return QLocale(static_cast<QLocale::Language>(2 + below(100)));
        case 17:
            return QRect(below(100), below(100), below(100), below(100));
        case 18:
            return QRectF(below(100), 0.5, below(100), below(100));
        case 19:
            return QSize(below(100), below(100));
        case 20:
            return QSizeF(below(100), 0.25);
        case 21:
            return QLine(1, below(100), 3, 4);
        case 22:
            return QLineF(1, 2, below(100), 4);
        case 23:
            return QPoint(below(100), below(100));
        case 24:
            return QPointF(below(100), below(100));
        case 25:
            return QUuid(QByteArray(16, static_cast<char>(mRandom())).toHex());
        case 26:
            return QRegularExpression(text(), QRegularExpression::DotMatchesEverythingOption);
        case 27:
            return QVariant::fromValue(static_cast<long>(number()));
        case 28:
            return QVariant::fromValue(static_cast<short>(mRandom()));
        case 29:
            return QVariant::fromValue(static_cast<char>(mRandom()));
        case 30:
            return QVariant::fromValue(static_cast<uchar>(mRandom()));
        case 31:
            return QVariant::fromValue(static_cast<float>(below(1000)) / 7);
        case 32:
            return QVariant::fromValue(static_cast<signed char>(mRandom()));
        case 33:
            return QVariant::fromValue(nullptr);
        case 34:
            return QJsonObject{{text(), below(100)}, {QStringLiteral("list"), json()}};
        case 35:
            return QJsonDocument(json());
        case 36:
            return below(2) == 1 ? QJsonValue(text()) : QJsonValue(json());
        case 37:
            return QVariant(static_cast<QVariant::Type>(1 + below(26)));
        case 38:
            return list(depth);
        case 39:
            return map<QMultiMap<QString, QVariant>, QVariantMap>(depth);
        case 40:
            return map<QMultiHash<QString, QVariant>, QVariantHash>(depth);
        default:
            return texts();
        }
    }

private:
    int below(int limit) { return static_cast<int>(mRandom() % static_cast<uint>(limit)); }
    quint64 number() { return quint64{mRandom()} << 32 | mRandom(); }

    QString text()
    {
        QString text;
        const int size = below(4) == 0 ? 0 : below(12);
        for (int i = 0; i < size; ++i)
            text += QChar(static_cast<ushort>(0x20 + below(0x300)));
        return below(8) == 0 ? QString() : text;
    }

    QByteArray bytes() { return text().toUtf8(); }

    QBitArray bits()
    {
        QBitArray bits(below(40));
        for (int i = 0; i < bits.size(); ++i)
            bits.setBit(i, below(2) == 1);
        return bits;
    }

    QDate date() { return QDate(2000 + below(40), 1 + below(12), 1 + below(28)); }
    QTime time() { return QTime(below(24), below(60), below(60), below(1000)); }

    QDateTime dateTime()
    {
        switch (below(5)) {
        case 0:
            return QDateTime(date(), time(), Qt::LocalTime);
        case 1:
            return QDateTime(date(), time(), Qt::OffsetFromUTC, 60 * (below(1440) - 720));
        case 2:
            return QDateTime(date(), time(), QTimeZone("Europe/Zurich"));
        case 3:
            return QDateTime();
        default:
            return QDateTime(date(), time(), Qt::UTC);
        }
    }

    QJsonArray json() { return {text(), below(100), QJsonArray{1.5, true}, QJsonValue()}; }

    QVariantList list(int depth)
    {
        QVariantList list;
        for (int i = below(6); i > 0; --i)
            list += next(depth + 1);
        return list;
    }

    template <class MultiMap, class Map>
    Map map(int depth)
    {
        MultiMap map;
        for (int i = below(40); i > 0; --i)
            map.insert(text(), depth == 0 && below(8) == 0 ? next(depth + 1) : below(100));
        return static_cast<const Map &>(map);
    }

    QVariant texts()
    {
        if (below(2) == 1)
            return QStringList({text(), text(), text()});
        return QVariant::fromValue(QByteArrayList({bytes(), bytes()}));
    }

    std::mt19937 mRandom{20140305};
};

//! A program's own type, whose reader throws.
struct Throwing
{
};

QDataStream &operator<<(QDataStream &out, const Throwing &)
{
    return out;
}

QDataStream &operator>>(QDataStream &in, Throwing &)
{
    quint8 isShortOfMemory = 0;
    in >> isShortOfMemory;
    if (isShortOfMemory)
        throw std::bad_alloc();
    throw std::length_error("too many");
}

struct WithoutStream
{
};

} // namespace

Q_DECLARE_METATYPE(Throwing)
Q_DECLARE_METATYPE(WithoutStream)

/*!
    What a CVariant does with a stream that any program may have written: see tst_CVariant for those
    that the library writes itself.
*/
class tst_CVariantForeign : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void asQt();
    void asQtCut();
    void readPast_data();
    void readPast();
    void readPastInTransaction_data();
    void readPastInTransaction();
    void readPastInDateTime();
    void refused_data();
    void refused();
    void nested_data();
    void nested();
    void urls_data();
    void urls();
    void hashes_data();
    void hashes();
    void paddingBits_data();
    void paddingBits();
    void typeNames_data();
    void typeNames();
    void typesOfQt3();
    void memory_data();
    void memory();
    void allocations_data();
    void allocations();
    void instructions();
    void withoutMemory();
};

// What is counted is what is allocated, by Qt too.
void tst_CVariantForeign::initTestCase()
{
    AllocationCounter::start();
    QString text(1000, QLatin1Char('a'));
    text.reserve(3000);
    text = QString();
    QByteArray bytes(500, 'a');
    const AllocationCounter::Counts counts = AllocationCounter::stop();
    QVERIFY(counts.calls >= 3 && counts.calls <= 4);
    QVERIFY(counts.bytes >= 8500 && counts.bytes < 9000);
    QVERIFY(counts.peak >= 6000 && counts.peak < 8500);
}

// Fixed seed; each content in every version and byte order that there is.
void tst_CVariantForeign::asQt()
{
    RandomContent random;
    for (int i = 0; i < 2000; ++i) {
        const QVariant content = random.next();
        for (const int version : kAllVersions) {
            for (const auto byteOrder : kByteOrders) {
                const MessageRecorder recorder; // what has no id in Qt 3 cannot be saved
                const QByteArray bytes
                    = streamOf(content, version, byteOrder) + streamOf(6, byteOrder) + "next";
                const Read read = readVariant(bytes, version, byteOrder);
                QCOMPARE(describe(read), describe(readByQt(bytes, version, byteOrder)));
                if (version >= QDataStream::Qt_4_0)
                    QCOMPARE(read.tag, 6);
            }
        }
    }
}

// Where Qt leaves what is cut, a failing element of a list or a half QRect, it is left here.
void tst_CVariantForeign::asQtCut()
{
    RandomContent random;
    for (int i = 0; i < 300; ++i) {
        const QVariant content = random.next();
        for (const int version : {int(QDataStream::Qt_4_0), int(QDataStream::Qt_5_15)}) {
            const QByteArray bytes = streamOf(content, version, QDataStream::BigEndian);
            for (int size = 0; size < bytes.size(); size += 1 + size / 16) {
                const MessageRecorder recorder;
                QCOMPARE(describe(readVariant(bytes.left(size), version)),
                         describe(readByQt(bytes.left(size), version, QDataStream::BigEndian)));
            }
        }
    }
}

namespace {

//! Adds the contents that are not taken but read past.
void addReadPast()
{
    QTest::addColumn<QVariant>("content");
    const auto add
        = [](const char *name, const QVariant &content) { QTest::addRow("%s", name) << content; };
    add("QRegExp", QRegExp(QStringLiteral("a+(b)"), Qt::CaseInsensitive, QRegExp::RegExp2));
    add("QRegExp, empty", QRegExp());
    add("QEasingCurve, linear", QEasingCurve());
    add("QEasingCurve with parameters", QEasingCurve(QEasingCurve::OutBack));
    QEasingCurve drawn(QEasingCurve::BezierSpline);
    drawn.addCubicBezierSegment(QPointF(0.1, 0.2), QPointF(0.3, 0.4), QPointF(1, 1));
    add("QEasingCurve with cubic points", drawn);
    QEasingCurve spline(QEasingCurve::TCBSpline);
    spline.addTCBSegment(QPointF(0.5, 0.25), 0.125, 0.0625, 2);
    add("QEasingCurve with tension points", spline);
    add("QCborValue", QVariant::fromValue(QCborValue(QCborArray{1, QStringLiteral("a")})));
    add("QCborValue, undefined", QVariant::fromValue(QCborValue()));
    add("QCborArray", QVariant::fromValue(QCborArray{1, 2.5}));
    add("QCborMap", QVariant::fromValue(QCborMap{{1, QStringLiteral("a")}}));
    add("QUrl of a host, with the user, of 256 bytes",
        QUrl(QStringLiteral("http://") + QString(251, QLatin1Char('a'))
             + QStringLiteral("%20@b/")));
}

} // namespace

void tst_CVariantForeign::readPast_data()
{
    addReadPast();
}

void tst_CVariantForeign::readPast()
{
    QFETCH(const QVariant, content);
    const QVariantMap map = {{QStringLiteral("a"), 1}, {QStringLiteral("b"), content}};
    const QVariantHash hash = {{QStringLiteral("a"), content}};
    const QVariant holders[] = {QVariantList({1, content, QStringLiteral("behind")}), map, hash,
                                QVariantList({QVariantList({content, 2}), map, 3})};
    for (int version = QDataStream::Qt_4_0; version <= QDataStream::Qt_5_15; ++version) {
        for (const auto byteOrder : kByteOrders) {
            const QByteArray next = streamOf(16, byteOrder) + streamOf(2.5, version, byteOrder)
                + streamOf(10, byteOrder);
            const auto check = [&](const QVariant &written) {
                QDataStream in(streamOf(written, version, byteOrder) + next);
                in.setVersion(version);
                in.setByteOrder(byteOrder);
                CVariant value = 7.5;
                CVariant behind;
                in >> value;
                QCOMPARE(in.status(), QDataStream::ReadCorruptData);
                QCOMPARE(int(value.type()), 16);
                in.resetStatus();
                in >> behind;
                QCOMPARE(in.status(), QDataStream::Ok);
                QVERIFY(behind == CVariant(2.5));
                QVERIFY(in.atEnd());
                // A container that holds it is empty, but valid.
                const QVariant read = value;
                QCOMPARE(read.userType(),
                         written.userType() == content.userType() ? 0 : written.userType());
                QCOMPARE(read.toList(), QVariantList());
                QCOMPARE(read.toMap(), QVariantMap());
                QCOMPARE(read.toHash(), QVariantHash());
            };
            check(content);
            for (const QVariant &holder : holders)
                check(holder);
        }
    }
    // In single precision too, which the parameters of a curve have.
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setFloatingPointPrecision(QDataStream::SinglePrecision);
    out << content << 16;
    QDataStream in(bytes);
    in.setFloatingPointPrecision(QDataStream::SinglePrecision);
    CVariant value;
    in >> value;
    QCOMPARE(int(value.type()), 16);
    QVERIFY(in.atEnd());
    // A QVariant in a QVariant is one that holds nothing; cut, it is not taken all the same.
    const QByteArray whole = streamOf(content, QDataStream::Qt_5_15, QDataStream::BigEndian);
    const Read inner = readVariant(head(QMetaType::QVariant) + whole + number(16));
    QCOMPARE(inner.content.userType(), int(QMetaType::QVariant));
    QVERIFY(!static_cast<const QVariant *>(inner.content.constData())->isValid());
    QCOMPARE(inner.status, int(QDataStream::ReadCorruptData));
    QCOMPARE(inner.tag, 16);
    for (int size = 0; size < whole.size(); ++size) {
        const Read cut = readVariant(whole.left(size));
        QVERIFY(cut.status != QDataStream::Ok);
        QCOMPARE(cut.tag, 0);
    }
}

void tst_CVariantForeign::readPastInTransaction_data()
{
    addReadPast();
}

// A stream that arrives in pieces: nothing is lost, and what is not taken is told in the end.
void tst_CVariantForeign::readPastInTransaction()
{
    QFETCH(const QVariant, content);
    const QByteArray bytes
        = streamOf(QVariantList({content, 1}), QDataStream::Qt_5_15, QDataStream::BigEndian)
        + number(16);
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QDataStream in(&buffer);
    CVariant value;
    for (int size = 0; size <= bytes.size(); ++size) {
        buffer.buffer() = bytes.left(size);
        in.startTransaction();
        in >> value;
        const auto status = in.status();
        QCOMPARE(status,
                 size < bytes.size() ? QDataStream::ReadPastEnd : QDataStream::ReadCorruptData);
        QVERIFY(!in.commitTransaction());
    }
    QCOMPARE(int(value.type()), 16);
    QCOMPARE(buffer.pos(), qint64{bytes.size()});
}

void tst_CVariantForeign::readPastInDateTime()
{
    for (const QByteArray &unknown :
         {dateTime(Qt::TimeZone) + written(QStringLiteral("Nowhere/Unknown")), dateTime(4)}) {
        const Read read = readVariant(unknown + number(16));
        QVERIFY(!read.content.isValid());
        QCOMPARE(read.status, int(QDataStream::ReadCorruptData));
        QCOMPARE(read.tag, 16);
        const Read inList = readVariant(filled(unknown, 2 * unknown.size()) + number(16));
        QCOMPARE(inList.content, QVariant(QVariantList()));
        QCOMPARE(inList.status, int(QDataStream::ReadCorruptData));
        QCOMPARE(inList.tag, 16);

        QDataStream in(unknown.mid(5) + number(5));
        CDateTime value(QDateTime(QDate(2014, 3, 5), QTime(1, 2), Qt::UTC));
        qint32 next = 0;
        in >> value;
        QCOMPARE(in.status(), QDataStream::ReadCorruptData);
        QVERIFY(value.isNull());
        in >> next;
        QCOMPARE(next, 5);
    }
}

void tst_CVariantForeign::refused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("version");
    const auto add
        = [](const QByteArray &name, const QByteArray &bytes, int version = QDataStream::Qt_5_15) {
              QTest::addRow("%s", name.constData()) << bytes << version;
          };
    for (int type = QMetaType::QFont; type <= QMetaType::QColorSpace; ++type)
        add("of Qt Gui, " + QByteArray::number(type), head(type));
    add("of Qt Gui, by name", named("QPolygon"));
    add("of Qt Gui, id 40000047", head(0x40000047));
    add("of Qt Widgets", head(QMetaType::QSizePolicy));
    add("of Qt Widgets, by name", named("QSizePolicy"));
    for (int type = 64; type <= 86; ++type)
        add("4.6 of Qt Gui, " + QByteArray::number(type), head(type), QDataStream::Qt_4_6);
    add("unknown name", named("Unknown"));
    add("pointer", head(QMetaType::VoidStar));
    add("object", head(QMetaType::QObjectStar));
    add("model index", head(QMetaType::QModelIndex));
    qRegisterMetaType<WithoutStream>();
    add("own type without stream functions", named("WithoutStream"));
}

// Nothing can be known of the end; what stands there is read on.
void tst_CVariantForeign::refused()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, version);
    const MessageRecorder recorder;
    const Read read = readVariant(bytes + number(16), version);
    QVERIFY(!read.content.isValid());
    QCOMPARE(read.status, int(QDataStream::ReadCorruptData));
    QCOMPARE(read.tag, 16);
    const Read inList = readVariant(head(9) + number(2) + bytes + number(16), version);
    QCOMPARE(inList.content, QVariant(QVariantList()));
    QCOMPARE(inList.status, int(QDataStream::ReadCorruptData));
    QCOMPARE(inList.tag, 16);
}

void tst_CVariantForeign::nested_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QVariant>("content");
    QTest::addColumn<int>("status");
    const QByteArray list = head(9) + number(1);
    const QByteArray map = head(8) + number(1) + number(0);
    const QByteArray five = head(2) + number(5);
    constexpr int kCut = QDataStream::ReadPastEnd;
    constexpr int kCorrupt = QDataStream::ReadCorruptData;
    QTest::newRow("list of 101 levels")
        << list.repeated(101) + five << QVariant(QVariantList()) << kCorrupt;
    QTest::newRow("map of 101 levels")
        << map.repeated(101) + five << QVariant(QVariantMap()) << kCorrupt;
    QTest::newRow("cut list") << head(9) + number(3) + five.repeated(2) << QVariant(QVariantList())
                              << kCut;
    QTest::newRow("cut map") << head(8) + number(2) + number(0) + five << QVariant(QVariantMap())
                             << kCut;
    QTest::newRow("cut hash") << head(28) + number(2) + number(0) + five << QVariant(QVariantHash())
                              << kCut;
    QTest::newRow("cut texts") << head(11) + number(2) + written(QStringLiteral("a"))
                               << QVariant(QStringList()) << kCut;
    QTest::newRow("cut text") << head(10) + number(8) + "abcd" << QVariant(QString()) << kCut;
    QTest::newRow("cut byte array")
        << head(12) + number(8) + "abcd" << QVariant(QByteArray()) << kCut;
    QTest::newRow("cut bits") << head(13) + number(80) + "abcd" << QVariant(QBitArray()) << kCut;
    QTest::newRow("cut QSize: what is there")
        << head(21) + number(5) + "ab" << QVariant(QSize(5, 0)) << kCut;
}

void tst_CVariantForeign::nested()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QVariant, content);
    QFETCH(const int, status);
    const Read read = readVariant(bytes);
    QCOMPARE(read.content, content);
    QVERIFY(read.content.isValid());
    QCOMPARE(read.status, status);
}

void tst_CVariantForeign::urls_data()
{
    QTest::addColumn<QByteArray>("encoded");
    QTest::addColumn<bool>("isTaken");
    const auto add = [](const char *name, const QByteArray &encoded, bool isTaken) {
        QTest::addRow("%s", name) << encoded << isTaken;
    };
    const QByteArray letters = manyCharacters(85); // 255 bytes
    add("empty", "", true);
    add("name with an umlaut",
        "http://b\xC3\xBC"
        "cher.example/path?query#part",
        true);
    add("name with an umlaut, encoded",
        "http://b%C3%BC"
        "cher.example/",
        true);
    // What looks like a long host, but is in another place
    const QByteArray encodedLetters = QByteArray("%C3%A4").repeated(50);
    for (const char *before :
         {"search?url=http://", "?q=http://", "a//", "mailto:x//", "http:/a//", "#//", "x:?//",
          "/a//", "http:a//", "1http://", "://", "a:b://", "\xc3\xa4://"}) {
        add((QByteArray(before) + " is no beginning of a host").constData(),
            before + encodedLetters, true);
    }
    for (const char *before : {"//", "http://", "x:////"})
        add((QByteArray(before) + " and a long host").constData(), before + encodedLetters,
            QByteArray(before) == "x:////");
    add("name with an umlaut, as ASCII", "http://xn--bcher-kva.example/", true);
    add("host of 255 bytes", "http://" + letters + "/", true);
    add("host of 256 bytes", "http://" + letters + "a/", false);
    add("host of 256 bytes, no path", "http://" + letters + "a", false);
    add("host of 256 bytes, then a query", "http://" + letters + "a?b", false);
    add("host of 256 bytes, then a part", "http://" + letters + "a#b", false);
    add("host of 256 bytes, no scheme", "//" + letters + "a/", false);
    add("host of 255 bytes with user and port", "http://a:b@" + letters.left(248) + ":80/", true);
    add("host of 256 bytes with user and port", "http://a:b@" + letters.left(249) + ":80/", false);
    add("host of 256 bytes, encoded", "http://" + QByteArray(253, 'a') + "%41/", false);
    add("host of 256 bytes, as ASCII", "http://Xn--" + QByteArray(252, 'a') + "/", false);
    add("host of 10000 plain bytes", "http://" + QByteArray(10000, 'a') + "/", true);
    add("path of 10000 characters", "http://a/" + manyCharacters(10000), true);
    add("path of slashes", "a/" + letters + "/" + letters, true);
    add("zero bytes", QByteArray("http://a\0b/\xC3", 12), true);
    add("no host", "mailto:" + letters + "a@b", true);
}

void tst_CVariantForeign::urls()
{
    QFETCH(const QByteArray, encoded);
    QFETCH(const bool, isTaken);
    const QByteArray bytes = url(encoded) + number(16);
    const Read read = readVariant(bytes);
    QCOMPARE(read.tag, 16);
    QCOMPARE(read.position, qint64{bytes.size()});
    QCOMPARE(read.content.isValid(), isTaken);
    QCOMPARE(read.status, int(isTaken ? QDataStream::Ok : QDataStream::ReadCorruptData));
    if (isTaken)
        QCOMPARE(describe(read),
                 describe(readByQt(bytes, QDataStream::Qt_5_15, QDataStream::BigEndian)));
}

void tst_CVariantForeign::hashes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isTaken");
    const auto hashOf = [](int count, auto key) {
        QByteArray bytes = head(28) + number(static_cast<quint32>(count));
        for (int i = 0; i < count; ++i)
            bytes += written(key(i)) + head(2) + number(static_cast<quint32>(i));
        return bytes;
    };
    const auto numbered = [](int i) { return QString::number(i); };
    QTest::newRow("20000 keys") << hashOf(20000, numbered) << true;
    QTest::newRow("20000 times a key") << hashOf(20000, [](int) { return QString(); }) << true;
    QTest::newRow("20000 keys, each twice")
        << hashOf(20000, [](int i) { return QString::number(i / 2); }) << true;
    QTest::newRow("20000 keys, twice each in turn")
        << hashOf(20000, [](int i) { return QString::number(i % 10000); }) << true;
    QTest::newRow("40 keys that collide") << collidingHash(40) << true;
    QTest::newRow("2000 keys that collide") << collidingHash(2000) << false;
    QTest::newRow("2000 keys that collide, each twice")
        << head(28) + number(4000) + collidingHash(2000).mid(9).repeated(2) << false;
    const CollidingKeys keys;
    QTest::newRow("2 keys that collide, 2000 times one, then the other")
        << hashOf(4000, [&](int i) { return keys.key(i / 2000); }) << false;
    QTest::newRow("2 keys that collide, 2000 times in turn")
        << hashOf(4000, [&](int i) { return keys.key(i % 2); }) << false;
    // Keys that lie apart until the last of them makes the table grow.
    QHash<int, int> table;
    table.reserve(2000);
    const int count = table.capacity() + 1;
    table.reserve(count);
    const auto buckets = static_cast<uint>(table.capacity());
    QStringList apart;
    for (int i = 0; apart.size() < count; ++i) {
        const QString key = QString::number(i, 36);
        if (qHash(key, static_cast<uint>(qGlobalQHashSeed())) % buckets < 2)
            apart += key;
    }
    const auto keyOf = [&apart](int i) { return apart.at(i); };
    QTest::newRow("keys that collide in the end, one before") << hashOf(count - 1, keyOf) << true;
    QTest::newRow("keys that collide in the end") << hashOf(count, keyOf) << false;
}

void tst_CVariantForeign::hashes()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, isTaken);
    const QByteArray whole = bytes + number(16);
    const Read read = readVariant(whole);
    QCOMPARE(read.tag, 16);
    QCOMPARE(read.position, qint64{whole.size()});
    QCOMPARE(read.content.isValid(), isTaken);
    QCOMPARE(read.status, int(isTaken ? QDataStream::Ok : QDataStream::ReadCorruptData));
    if (isTaken)
        QVERIFY(describe(read)
                == describe(readByQt(whole, QDataStream::Qt_5_15, QDataStream::BigEndian)));
    const Read inList = readVariant(filled(bytes, bytes.size()) + number(16));
    QCOMPARE(inList.tag, 16);
    QCOMPARE(inList.content.toList().size(), isTaken ? 1 : 0);
}

void tst_CVariantForeign::paddingBits_data()
{
    QTest::addColumn<QByteArray>("bits");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("5 bits, none set behind") << number(5) + '\x1F' << true;
    QTest::newRow("5 bits, the next is set") << number(5) + '\x3F' << false;
    QTest::newRow("5 bits, the last is set") << number(5) + '\x80' << false;
    QTest::newRow("8 bits") << number(8) + '\xFF' << true;
    QTest::newRow("9 bits, the last is set") << number(9) + '\xFF' + '\x81' << false;
    QTest::newRow("9 bits") << number(9) + '\xFF' + '\1' << true;
    QTest::newRow("none") << number(0) << true;
}

// As Qt reads them: no bits if any behind them is set.
void tst_CVariantForeign::paddingBits()
{
    QFETCH(const QByteArray, bits);
    QFETCH(const bool, isTaken);
    for (int version = QDataStream::Qt_4_2; version <= QDataStream::Qt_5_15; ++version) {
        const QByteArray bytes = head(13) + bits + number(6);
        const Read read = readVariant(bytes, version);
        QCOMPARE(read.status, int(isTaken ? QDataStream::Ok : QDataStream::ReadCorruptData));
        QCOMPARE(read.content.userType(), int(QMetaType::QBitArray));
        if (!isTaken)
            QCOMPARE(read.content.toBitArray().size(), 0);
        QCOMPARE(describe(read), describe(readByQt(bytes, version, QDataStream::BigEndian)));
    }
}

void tst_CVariantForeign::typeNames_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("int") << QByteArray("int\0", 4) << true;
    QTest::newRow("no zero at the end") << QByteArray("int") << true;
    QTest::newRow("bytes behind the zero") << QByteArray("int\0junk", 8) << true;
    QTest::newRow("blanks") << QByteArray(" unsigned  int ") << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("1024 characters") << "int" + QByteArray(1021, ' ') << true;
    QTest::newRow("1025 characters") << "int" + QByteArray(1022, ' ') << false;
    QTest::newRow("many levels") << repeated("QList<", 600000) + "int" + repeated(" >", 200000)
                                 << false;
}

void tst_CVariantForeign::typeNames()
{
    QFETCH(const QByteArray, name);
    QFETCH(const bool, isTaken);
    const MessageRecorder recorder;
    const QByteArray bytes = head(1024) + counted(name) + number(5) + number(6);
    const Read read = readVariant(bytes);
    QCOMPARE(read.status, int(isTaken ? QDataStream::Ok : QDataStream::ReadCorruptData));
    QCOMPARE(read.content.toInt(), isTaken ? 5 : 0);
    QCOMPARE(read.tag, isTaken ? 6 : 5);
    if (isTaken)
        QCOMPARE(describe(read),
                 describe(readByQt(bytes, QDataStream::Qt_5_15, QDataStream::BigEndian)));
}

// Ids as Qt 3 counted them, over contents of zeros, are what they are to Qt; its own are refused.
void tst_CVariantForeign::typesOfQt3()
{
    for (int version = QDataStream::Qt_1_0; version < QDataStream::Qt_4_0; ++version) {
        for (quint32 type = 0; type < 60; ++type) {
            const MessageRecorder recorder;
            const QByteArray bytes = number(type) + QByteArray(40, '\0');
            const Read read = readVariant(bytes, version);
            const Read expected = readByQt(bytes, version, QDataStream::BigEndian);
            const bool isOfGui = expected.content.userType() >= QMetaType::QFont;
            if (isOfGui || expected.content.userType() == QMetaType::QEasingCurve) {
                QCOMPARE(read.status, int(QDataStream::ReadCorruptData));
                QVERIFY(!read.content.isValid());
            } else {
                QCOMPARE(describe(read), describe(expected));
            }
        }
    }
}

namespace {

constexpr qint64 kAlways = 4 << 20;
constexpr qint64 kPerByte = 64;

struct Cost
{
    AllocationCounter::Counts counts;
    qint64 bytes = 0;
};

Cost costOf(const QByteArray &bytes, int version = QDataStream::Qt_5_15)
{
    const MessageRecorder recorder;
    QDataStream in(bytes);
    in.setVersion(version);
    CVariant value;
    AllocationCounter::start();
    in >> value;
    return {AllocationCounter::stop(), in.device()->pos()};
}

} // namespace

void tst_CVariantForeign::memory_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray huge = number(0xFFFFFFFE);
    const auto add
        = [](const char *name, const QByteArray &bytes) { QTest::addRow("%s", name) << bytes; };
    for (const int type : {8, 9, 10, 11, 12, 17, 18, 27, 28, 44, 46, 47, 48, 49, 53, 54, 55})
        add(qPrintable(QStringLiteral("type %1 that claims 2^32-2").arg(type)),
            head(type) + huge + "ab");
    add("bits that claim 2^31-1", head(13) + number(0x7FFFFFFF) + "ab");
    add("JSON text that claims 2^32-2", head(45) + '\3' + huge);
    add("key that claims 2^32-2", head(8) + number(1) + huge);
    add("list of a text that claims 2^32-2", head(9) + number(1) + head(10) + huge);
    add("name that claims 2^32-2", head(1024) + huge);
    add("curve of 2^32-2 points",
        head(29) + '\x2d' + QByteArray(8, '\0') + '\1' + QByteArray(24, '\0') + huge);
    add("CBOR, array of 2^30", head(53) + counted(QByteArray::fromHex("9a3fffffff")));
    add("CBOR, arrays of 2^20",
        head(54) + counted(QByteArray::fromHex("9a000fffff").repeated(1000)));
    add("polygon of 2^27 points", head(71) + number(1 << 27));
    for (const Kind &kind : kinds()) {
        // A table is largest just after it has grown.
        for (int size = 1000; size < 300000; size += size / 4)
            add(qPrintable(QStringLiteral("%1 of %2").arg(QLatin1String(kind.name)).arg(size)),
                kind.make(size));
    }
}

void tst_CVariantForeign::memory()
{
    QFETCH(const QByteArray, bytes);
    for (const int version : {QDataStream::Qt_4_0, QDataStream::Qt_5_15}) {
        const Cost cost = costOf(bytes, version);
        QVERIFY2(cost.counts.peak <= kAlways + kPerByte * cost.bytes,
                 qPrintable(
                     QStringLiteral("%1 bytes for %2 read").arg(cost.counts.peak).arg(cost.bytes)));
    }
}

void tst_CVariantForeign::allocations_data()
{
    QTest::addColumn<int>("kind");
    const QVector<Kind> all = kinds();
    QVERIFY(all.size() >= 40);
    for (int i = 0; i < all.size(); ++i)
        QTest::addRow("%s", all.at(i).name) << i;
}

// From n over 2n to 4n bytes, what is added doubles.
void tst_CVariantForeign::allocations()
{
    QFETCH(const int, kind);
    constexpr int kSize = 1 << 15;
    const auto make = kinds().at(kind).make;
    costOf(make(kSize)); // what is done once is done
    AllocationCounter::Counts counts[3];
    for (int i = 0; i < 3; ++i)
        counts[i] = costOf(make(kSize << i)).counts;
    const auto isLinear = [](qint64 one, qint64 two, qint64 four, qint64 few) {
        return 4 * (four - two) <= 10 * (two - one) + few;
    };
    constexpr qint64 kFewCalls = 100;
    constexpr qint64 kFewBytes = 1 << 20; // Qt reads in steps
    QVERIFY2(isLinear(counts[0].calls, counts[1].calls, counts[2].calls, kFewCalls),
             qPrintable(QStringLiteral("calls %1 %2 %3")
                            .arg(counts[0].calls)
                            .arg(counts[1].calls)
                            .arg(counts[2].calls)));
    QVERIFY2(isLinear(counts[0].bytes, counts[1].bytes, counts[2].bytes, kFewBytes),
             qPrintable(QStringLiteral("bytes %1 %2 %3")
                            .arg(counts[0].bytes)
                            .arg(counts[1].bytes)
                            .arg(counts[2].bytes)));
}

// The profiler counts exactly.
void tst_CVariantForeign::instructions()
{
#ifdef K7E_VALGRIND
    constexpr int kSize = 1 << 14;
    const QTemporaryDir directory;
    QVERIFY(directory.isValid());
    QProcess profiler;
    profiler.start(
        QStringLiteral(K7E_VALGRIND),
        {QStringLiteral("--tool=callgrind"), QStringLiteral("--zero-before=readForeign"),
         QStringLiteral("--dump-after=readForeign"),
         QStringLiteral("--callgrind-out-file=") + directory.filePath(QStringLiteral("out")),
         QStringLiteral(K7E_FOREIGN_PROBE), QStringLiteral("instructions"),
         QString::number(kSize)});
    QVERIFY(profiler.waitForFinished(-1));
    QVERIFY2(profiler.exitStatus() == QProcess::NormalExit && profiler.exitCode() == 0,
             profiler.readAllStandardError().constData());
    const auto instructionsOf = [&directory](int call) {
        QFile file(directory.filePath(QStringLiteral("out.%1").arg(call)));
        const QByteArray profile = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        const QByteArray key = "\ntotals: ";
        const int at = profile.indexOf(key);
        return at < 0 ? 0 : profile.mid(at + key.size(), 30).split('\n').first().toLongLong();
    };
    int call = 0;
    for (const Kind &kind : kinds()) {
        const qint64 one = instructionsOf(++call);
        const qint64 two = instructionsOf(++call);
        const qint64 four = instructionsOf(++call);
        const QByteArray counts = QByteArray(kind.name) + ' ' + QByteArray::number(one) + ' '
            + QByteArray::number(two) + ' ' + QByteArray::number(four);
        QVERIFY2(one > 100, counts.constData());
        // A quarter more than what is linear, since keys are sorted, and the few collisions that are free.
        constexpr qint64 kFew = 500000;
        QVERIFY2(2 * (four - two) <= 5 * (two - one) + kFew, counts.constData());
    }
#elif defined(K7E_SANITIZED)
    QSKIP("valgrind does not run what the sanitizers have instrumented");
#else
    QSKIP("valgrind is not installed");
#endif
}

void tst_CVariantForeign::withoutMemory()
{
    qRegisterMetaTypeStreamOperators<Throwing>();
    for (const char *kind : {"\0", "\1"}) {
        const QByteArray bytes = named("Throwing") + *kind + number(16);
        const Read read = readVariant(bytes);
        QVERIFY(!read.content.isValid());
        QCOMPARE(read.status, int(QDataStream::ReadCorruptData));
        QCOMPARE(read.tag, 0);
        const Read inList = readVariant(head(9) + number(1) + bytes);
        QVERIFY(!inList.content.isValid());
        QCOMPARE(inList.status, int(QDataStream::ReadCorruptData));
    }
#ifdef K7E_SANITIZED
    QSKIP("a sanitizer ends the program where memory is short");
#else
    QProcess probe;
    probe.start(QStringLiteral(K7E_FOREIGN_PROBE), {QStringLiteral("limited")});
    QVERIFY(probe.waitForFinished(-1));
    QCOMPARE(probe.readAllStandardError(), QByteArray());
    QCOMPARE(probe.readAllStandardOutput(), QByteArray("2 invalid\n").repeated(8));
    QCOMPARE(probe.exitStatus(), QProcess::NormalExit);
    QCOMPARE(probe.exitCode(), 0);
#endif
}

QTEST_GUILESS_MAIN(tst_CVariantForeign)
#include "tst_CVariantForeign.moc"
