#include "ContentGuard_p.h"

#include "VariantContent_p.h"

#include <QBitArray>
#include <QByteArrayList>
#include <QDataStream>
#include <QDateTime>
#include <QDebug>
#include <QEasingCurve>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLocale>
#include <QMultiHash>
#include <QMultiMap>
#include <QRegularExpression>
#include <QStringList>
#include <QTimeZone>
#include <QUrl>
#include <QVariant>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <exception>
#include <iterator>
#include <limits>
#include <new>
#include <optional>
#include <vector>

// The head of the content is read here, and with it everything that holds other content, a number
// of elements, or what should not come from a foreign stream; the rest by Qt's own readers. 00 00
// 00 09 | 00 | ff ff ff ff is a list that claims 2^32 - 1 elements and has none: it ends as an
// empty list, with QDataStream::ReadPastEnd.

namespace {

constexpr int kMaxDepth = 100;
// Qt takes the name of a type apart level by level, in quadratic time and memory.
constexpr uint kMaxTypeName = 1024;
// A host has at most 253 characters; encoding one takes quadratic time.
constexpr int kMaxEncodedAuthority = 255;

bool isInTransaction(const QDataStream &in)
{
    return in.device() && in.device()->isTransactionStarted();
}

/*
    What Qt's own readers of containers do about the status: elements are read as if it was Ok, and
    a failure before the container is what stays.
*/
class StatusGuard
{
public:
    explicit StatusGuard(QDataStream &in) : mIn(in)
    {
        if (!isInTransaction(in)) {
            mBefore = in.status();
            in.resetStatus();
        }
    }

    ~StatusGuard()
    {
        if (mBefore != QDataStream::Ok) {
            mIn.resetStatus();
            mIn.setStatus(mBefore);
        }
    }

    Q_DISABLE_COPY_MOVE(StatusGuard)

private:
    QDataStream &mIn;
    QDataStream::Status mBefore = QDataStream::Ok;
};

// Calls readOne() as often as the stream says; returns false if one of them fails.
template <class ReadOne>
bool readCounted(QDataStream &in, ReadOne readOne)
{
    const StatusGuard guard(in);
    quint32 count = 0;
    in >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i)
        readOne();
    return in.status() == QDataStream::Ok;
}

// Reads \a total elements; a claim is believed only as far as it is there. Returns false if they
// are not.
template <class Buffer>
bool readInto(QDataStream &in, Buffer &buffer, int total)
{
    constexpr int kStep = 1 << 16;
    constexpr int kSize = sizeof(*buffer.data());
    while (buffer.size() < total) {
        const int before = buffer.size();
        const int step = std::min(kStep, total - before);
        buffer.resize(before + step);
        const int bytes = step * kSize;
        if (in.readRawData(reinterpret_cast<char *>(buffer.data() + before), bytes) != bytes) {
            in.setStatus(QDataStream::ReadPastEnd);
            return false;
        }
    }
    return true;
}

// Reads a QString. Qt believes a claim of up to 2 MiB, and makes twice that room.
QString readText(QDataStream &in)
{
    QString text = QLatin1String("");
    if (in.version() == QDataStream::Qt_1_0) {
        in >> text; // in Latin-1
        return text;
    }
    constexpr quint32 kNull = 0xFFFFFFFF;
    quint32 bytes = 0;
    in >> bytes;
    if (bytes == kNull)
        return QString();
    if (bytes % sizeof(QChar) != 0) {
        in.setStatus(QDataStream::ReadCorruptData);
        return QString();
    }
    if (!readInto(in, text, static_cast<int>(bytes / sizeof(QChar))))
        return QString();
    constexpr auto kOwnOrder = static_cast<QDataStream::ByteOrder>(QSysInfo::ByteOrder);
    if (in.byteOrder() != kOwnOrder)
        qbswap<sizeof(QChar)>(text.constData(), text.size(), text.data());
    return text;
}

template <class T>
T read(QDataStream &in)
{
    T value{};
    in >> value;
    return value;
}

template <>
QString read(QDataStream &in)
{
    return readText(in);
}

template <class... Fields>
void skip(QDataStream &in)
{
    (read<Fields>(in), ...);
}

// The ids of Qt 3 and Qt 4, which counted the types in other ways, as they are today.
constexpr quint32 kTypesOfQt3[]
    = {QMetaType::UnknownType, QMetaType::QVariantMap,  QMetaType::QVariantList,
       QMetaType::QString,     QMetaType::QStringList,  QMetaType::QFont,
       QMetaType::QPixmap,     QMetaType::QBrush,       QMetaType::QRect,
       QMetaType::QSize,       QMetaType::QColor,       QMetaType::QPalette,
       QMetaType::UnknownType, QMetaType::QIcon,        QMetaType::QPoint,
       QMetaType::QImage,      QMetaType::Int,          QMetaType::UInt,
       QMetaType::Bool,        QMetaType::Double,       QMetaType::UnknownType,
       QMetaType::QPolygon,    QMetaType::QRegion,      QMetaType::QBitmap,
       QMetaType::QCursor,     QMetaType::QSizePolicy,  QMetaType::QDate,
       QMetaType::QTime,       QMetaType::QDateTime,    QMetaType::QByteArray,
       QMetaType::QBitArray,   QMetaType::QKeySequence, QMetaType::QPen,
       QMetaType::LongLong,    QMetaType::ULongLong,    QMetaType::QEasingCurve};

quint32 typeOfQt4(quint32 type)
{
    constexpr quint32 kUserTypeOfQt4 = 127;
    constexpr quint32 kShiftFromQt4 = 97;
    constexpr quint32 kSizePolicyOfQt4 = 75;
    constexpr quint32 kLastGuiTypeOfQt4 = 86;
    if (type == QMetaType::User || type == kUserTypeOfQt4)
        return QMetaType::User;
    if (type > kUserTypeOfQt4)
        return type - kShiftFromQt4;
    if (type == kSizePolicyOfQt4)
        return QMetaType::QSizePolicy;
    return type > kSizePolicyOfQt4 && type <= kLastGuiTypeOfQt4 ? type - 1 : type;
}

// Returns the id that a type has today, given the one it has in the stream; nothing if there was
// none.
std::optional<quint32> currentType(const QDataStream &in, quint32 type)
{
    if (in.version() >= QDataStream::Qt_5_0)
        return type;
    if (in.version() >= QDataStream::Qt_4_0)
        return typeOfQt4(type);
    if (type < std::size(kTypesOfQt3))
        return kTypesOfQt3[type];
    return std::nullopt;
}

// Returns whether a type holds content of any type, its own included.
bool nests(int type)
{
    return type == QMetaType::QVariantList || type == QMetaType::QVariantMap
        || type == QMetaType::QVariantHash || type == QMetaType::QVariant;
}

bool isOfQtGui(int type)
{
    return (type >= QMetaType::FirstGuiType && type <= QMetaType::LastGuiType)
        || (type >= QMetaType::FirstWidgetsType && type <= QMetaType::LastWidgetsType);
}

// Returns the type of that name; QMetaType::UnknownType if there is none.
int typeOfName(const QByteArray &name)
{
    return qstrlen(name.constData()) <= kMaxTypeName ? QMetaType::type(name.constData())
                                                     : static_cast<int>(QMetaType::UnknownType);
}

// Returns whether a text is the scheme of an URL with the ":" behind it.
bool isScheme(const char *begin, const char *end)
{
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    const auto isOther = [](char c) { return (c >= '0' && c <= '9') || std::strchr("+-.", c); };
    const char *const colon = std::find(begin, end, ':');
    return colon != begin && colon + 1 == end && isLetter(*begin)
        && std::all_of(begin, colon, [&](char c) { return c != 0 && (isLetter(c) || isOther(c)); });
}

// Returns whether QUrl reads \a encoded in linear time: it does unless it has to decode a long
// host.
bool isReadByQt(const QByteArray &encoded)
{
    // A host stands at the very beginning, or behind the scheme.
    constexpr char kEnds[] = {'/', '?', '#'};
    const auto first
        = std::find_first_of(encoded.cbegin(), encoded.cend(), std::begin(kEnds), std::end(kEnds));
    if ((first != encoded.cbegin() && !isScheme(encoded.cbegin(), first))
        || encoded.cend() - first < 2 || first[0] != '/' || first[1] != '/')
        return true;
    const auto begin = first + 2;
    const auto end = std::find_first_of(begin, encoded.cend(), std::begin(kEnds), std::end(kEnds));
    if (end - begin <= kMaxEncodedAuthority)
        return true;
    const auto isPlain = [](char c) { return static_cast<signed char>(c) >= 0 && c != '%'; };
    return std::all_of(begin, end, isPlain)
        && !QByteArray(begin, static_cast<int>(end - begin)).toLower().contains("xn--");
}

using Hash = QMultiHash<QString, QVariant>;

/*
    Counts the keys that a QHash looks at while others are inserted. Who knows how it scatters them
    can choose keys that all lie in one bucket, and each is then compared with all before it.
*/
class CollisionCount
{
public:
    // Counts what inserting \a key takes; returns false if it is too much.
    bool allows(const QString &key)
    {
        if (mSize >= static_cast<int>(mNodesOfBucket.size()))
            grow();
        quint32 &nodes = nodesBeside(key);
        quint32 &times = mTimesOfKey[key];
        mCount += nodes - times; // equal keys lie together, the last in front
        constexpr qint64 kPerKey = 16;
        constexpr qint64 kAlways = 1000; // so that a few keys may collide as they like
        if (mCount > kAlways + kPerKey * mSize)
            return false;
        ++nodes;
        ++times;
        ++mSize;
        return true;
    }

private:
    quint32 &nodesBeside(const QString &key)
    {
        return mNodesOfBucket[qHash(key, mSeed) % mNodesOfBucket.size()];
    }

    // Does what QHash is about to do: scatters the keys over more buckets.
    void grow()
    {
        QHash<int, int> larger;
        larger.reserve(mSize + 1);
        mNodesOfBucket.assign(static_cast<std::size_t>(larger.capacity()), 0);
        for (auto it = mTimesOfKey.cbegin(); it != mTimesOfKey.cend(); ++it) {
            quint32 &nodes = nodesBeside(it.key());
            mCount += nodes;
            nodes += it.value();
        }
    }

    const uint mSeed = static_cast<uint>(qGlobalQHashSeed());
    std::vector<quint32> mNodesOfBucket;
    QHash<QString, quint32> mTimesOfKey;
    int mSize = 0;
    qint64 mCount = 0;
};

/*
    Returns whether QTimeZone may be asked for a zone of that name. It looks a name up as a file,
    and else reads it as rules; some rules that cannot be, such as one for month 13, keep it busy
    for ever.
*/
bool isZoneName(const QString &name)
{
    // Letters, digits and the signs of the names that there are, without a way out of the
    // directory.
    static const QRegularExpression fileName(QStringLiteral("\\A(?!/)[A-Za-z0-9/_+:-]*\\z"));
    // "CET-1CEST,M3.5.0,M10.5.0/3": abbreviation and offset, those of summer time, and when it is.
    static const QRegularExpression rules(QStringLiteral(
        "\\A(?<name><[A-Za-z0-9+-]+>|[A-Za-z]+)(?<offset>[+-]?[0-9]{1,3}(:[0-9]{2}){0,2})"
        "((?&name)(?&offset)?"
        "(,(?<rule>(M([1-9]|1[0-2])\\.[1-5]\\.[0-6]|J?[0-9]{1,3})(/(?&offset))?),(?&rule))?)?\\z"));
    return fileName.match(name).hasMatch() || rules.match(name).hasMatch();
}

QTimeZone namedZone(const QString &name)
{
    return isZoneName(name) ? QTimeZone(name.toUtf8()) : QTimeZone();
}

// Reads what QTimeZone wrote.
QTimeZone readZone(QDataStream &in)
{
    QString name = readText(in);
    if (name != QLatin1String("OffsetFromUtc"))
        return namedZone(name);
    name = readText(in);
    const auto offset = read<qint32>(in);
    const QString longName = readText(in);
    const QString abbreviation = readText(in);
    const auto country = read<qint32>(in);
    const QString comment = readText(in);
    const QTimeZone zone = namedZone(name);
    if (zone.isValid())
        return zone;
    const bool isCountry = country >= QLocale::AnyCountry && country <= QLocale::LastCountry;
    return QTimeZone(name.toUtf8(), offset, longName, abbreviation,
                     isCountry ? static_cast<QLocale::Country>(country) : QLocale::AnyCountry,
                     comment);
}

// Throws std::bad_alloc if there is no memory for what Qt makes of JSON: there, it would end the
// program. The worst, nested arrays, takes 41 bytes for each of the text.
void requireMemoryForJson(const QByteArray &text)
{
    constexpr std::size_t kFactor = 48;
    ::operator delete(::operator new(kFactor *static_cast<std::size_t>(text.size())));
}

QJsonDocument readJsonDocument(QDataStream &in)
{
    const auto text = read<QByteArray>(in);
    requireMemoryForJson(text);
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError && !text.isEmpty())
        in.setStatus(QDataStream::ReadCorruptData);
    return document;
}

// Reads one content with all that it holds.
class Reader
{
public:
    explicit Reader(QDataStream &in) : mIn(in) { }

    // Returns whether something was read past.
    bool hasRefused() const { return mHasRefused; }

    void readContent(QVariant &value, int depth = 0);
    bool readDateTime(QDateTime &dateTime);

private:
    void readBody(QVariant &value, int type, int depth);
    void readElement(QString &element, int) { element = readText(mIn); }
    void readElement(QByteArray &element, int) { mIn >> element; }
    void readElement(QVariant &element, int depth) { readContent(element, depth); }
    template <class List>
    QVariant readList(int depth);
    QVariant readMap(int depth);
    QVariant readHash(int depth);
    void readBits(QVariant &value);
    void readUrl(QVariant &value);
    QVariant readJson();
    void skipEasingCurve();
    bool readTimeOf(QDateTime &dateTime);

    // Of what comes next the end is not known: nothing more can be read.
    void stop() { mIn.setStatus(QDataStream::ReadCorruptData); }
    // What is here is not taken. The status stays Ok, so that it is read past; an earlier failure
    // is what counts.
    void refuse() { mHasRefused = mHasRefused || mIn.status() == QDataStream::Ok; }

    QDataStream &mIn;
    bool mHasRefused = false;
};

template <class List>
QVariant Reader::readList(int depth)
{
    List list;
    const bool isComplete = readCounted(mIn, [&] {
        typename List::value_type element;
        readElement(element, depth);
        if (!mHasRefused)
            list.append(element);
    });
    return QVariant::fromValue(isComplete && !mHasRefused ? list : List());
}

QVariant Reader::readMap(int depth)
{
    QMultiMap<QString, QVariant> map;
    const bool isComplete = readCounted(mIn, [&] {
        const QString key = readText(mIn);
        QVariant element;
        readContent(element, depth);
        if (!mHasRefused)
            map.insert(key, element);
    });
    return isComplete && !mHasRefused ? static_cast<const QVariantMap &>(map) : QVariantMap();
}

QVariant Reader::readHash(int depth)
{
    Hash hash;
    CollisionCount collisions;
    bool isTaken = true;
    const bool isComplete = readCounted(mIn, [&] {
        const QString key = readText(mIn);
        QVariant element;
        readContent(element, depth);
        if (mHasRefused)
            return;
        isTaken = collisions.allows(key);
        if (isTaken)
            hash.insert(key, element);
        else
            refuse();
    });
    if (!isTaken)
        return QVariant();
    return isComplete && !mHasRefused ? static_cast<const QVariantHash &>(hash) : QVariantHash();
}

void Reader::readBits(QVariant &value)
{
    quint32 size = 0;
    mIn >> size;
    const auto total = static_cast<int>((static_cast<qint64>(size) + 7) / 8);
    if (size > static_cast<quint32>(std::numeric_limits<int>::max())) {
        refuse(); // Qt takes it for a negative size
        mIn.skipRawData(total);
        return;
    }
    value = QBitArray();
    QByteArray bytes;
    if (!readInto(mIn, bytes, total))
        return;
    const int bitsOfLast = static_cast<int>(size % 8);
    if (bitsOfLast != 0 && static_cast<uchar>(bytes.back()) >> bitsOfLast != 0)
        return refuse();
    value = QBitArray::fromBits(bytes.constData(), static_cast<int>(size));
}

void Reader::readUrl(QVariant &value)
{
    const auto encoded = read<QByteArray>(mIn);
    if (!isReadByQt(encoded))
        return refuse();
    value = QUrl(QString::fromLatin1(encoded));
}

QVariant Reader::readJson()
{
    switch (read<quint8>(mIn)) {
    case QJsonValue::Null:
        return QJsonValue();
    case QJsonValue::Bool:
        return QJsonValue(read<bool>(mIn));
    case QJsonValue::Double:
        return QJsonValue(read<double>(mIn));
    case QJsonValue::String:
        return QJsonValue(readText(mIn));
    case QJsonValue::Array:
        return QJsonValue(readJsonDocument(mIn).array());
    case QJsonValue::Object:
        return QJsonValue(readJsonDocument(mIn).object());
    case QJsonValue::Undefined:
        break;
    default:
        mIn.setStatus(QDataStream::ReadCorruptData);
    }
    return QJsonValue(QJsonValue::Undefined);
}

// The parameters are of a curve that is not linear, and the points of one that is drawn.
void Reader::skipEasingCurve()
{
    skip<quint8, quint64>(mIn); // shape and the address of a function
    const bool hasParameters = read<bool>(mIn);
    if (!hasParameters)
        return;
    skip<qreal, qreal, qreal>(mIn);
    if (mIn.version() <= QDataStream::Qt_5_12)
        return;
    readCounted(mIn, [this] { skip<double, double>(mIn); });
    readCounted(mIn, [this] { skip<double, double, qreal, qreal, qreal>(mIn); });
}

// Returns whether it is taken; if not, it is null.
bool Reader::readDateTime(QDateTime &dateTime)
{
    if (readTimeOf(dateTime))
        return true;
    dateTime = QDateTime();
    refuse();
    return false;
}

// Returns false if Qt has no such time spec or zone: it makes a value of it all the same, and
// crashes with that.
bool Reader::readTimeOf(QDateTime &dateTime)
{
    const bool isUtcInStream = mIn.version() == QDataStream::Qt_5_0;
    if (mIn.version() < QDataStream::Qt_5_2 && !isUtcInStream) {
        mIn >> dateTime;
        return true;
    }
    QDate date;
    QTime time;
    qint8 spec = 0;
    mIn >> date >> time >> spec;
    if (spec < Qt::LocalTime || spec > Qt::TimeZone)
        return false;
    const auto timeSpec = static_cast<Qt::TimeSpec>(spec);
    if (isUtcInStream) {
        dateTime = QDateTime(date, time, Qt::UTC).toTimeSpec(timeSpec);
    } else if (timeSpec == Qt::TimeZone) {
        const QTimeZone zone = readZone(mIn);
        if (!zone.isValid())
            return false;
        dateTime = QDateTime(date, time, zone);
    } else {
        qint32 offset = 0;
        if (timeSpec == Qt::OffsetFromUTC)
            mIn >> offset;
        dateTime = QDateTime(date, time, timeSpec, offset);
    }
    return true;
}

// Reads what follows the type id and the null flag.
void Reader::readBody(QVariant &value, int type, int depth)
{
    switch (type) {
    // What holds other content, or as many elements as it claims
    case QMetaType::QVariantList:
        value = readList<QVariantList>(depth + 1);
        return;
    case QMetaType::QVariantMap:
        value = readMap(depth + 1);
        return;
    case QMetaType::QVariantHash:
        value = readHash(depth + 1);
        return;
    case QMetaType::QVariant: {
        QVariant inner;
        readContent(inner, depth + 1);
        value = QVariant(QMetaType::QVariant, &inner);
        return;
    }
    case QMetaType::QStringList:
        value = readList<QStringList>(depth);
        return;
    case QMetaType::QByteArrayList:
        value = readList<QByteArrayList>(depth);
        return;
    case QMetaType::QBitArray:
        return readBits(value);

    // What holds a text
    case QMetaType::QString:
        value = readText(mIn);
        return;
    case QMetaType::QLocale:
        value = QLocale(readText(mIn));
        return;
    case QMetaType::QRegularExpression: {
        const QString pattern = readText(mIn);
        const auto options = read<quint32>(mIn);
        value = QRegularExpression(pattern, QRegularExpression::PatternOptions(QFlag(options)));
        return;
    }
    case QMetaType::QJsonValue:
        value = readJson();
        return;
    case QMetaType::QJsonArray:
        value = readJsonDocument(mIn).array();
        return;
    case QMetaType::QJsonObject:
        value = readJsonDocument(mIn).object();
        return;
    case QMetaType::QJsonDocument:
        value = readJsonDocument(mIn);
        return;

    // What is taken only in part
    case QMetaType::QDateTime: {
        QDateTime dateTime;
        if (readDateTime(dateTime))
            value = dateTime;
        return;
    }
    case QMetaType::QUrl:
        return readUrl(value);

    // What is read past
    case QMetaType::QRegExp: // is compiled when it is read
        refuse();
        skip<QString, quint8, quint8, quint8>(mIn);
        return;
    case QMetaType::QEasingCurve: // holds the address of a function
        refuse();
        skipEasingCurve();
        return;
    case QMetaType::QCborValue: // is made as large as it claims to be
    case QMetaType::QCborArray:
    case QMetaType::QCborMap:
        refuse();
        skip<QByteArray>(mIn);
        return;

    default:
        break;
    }
    if (isOfQtGui(type))
        return stop();
    value = QVariant(type, nullptr);
    if (!value.isValid()) {
        value.clear();
        if (mIn.version() < QDataStream::Qt_5_0)
            skip<QString>(mIn); // that Qt 4 wrote
    } else if (!QMetaType::load(mIn, type, value.data())) {
        value.clear();
        qWarning("QVariant::load: unable to load type %d.", type);
        stop();
    }
}

void Reader::readContent(QVariant &value, int depth)
{
    quint32 typeInStream = 0;
    qint8 isNull = 0;
    mIn >> typeInStream;
    const std::optional<quint32> type = currentType(mIn, typeInStream);
    if (!type)
        return;
    if (mIn.version() >= QDataStream::Qt_4_2)
        mIn >> isNull;
    int id = static_cast<int>(*type & VariantContent::kIdMask);
    if (*type == QMetaType::User) {
        const auto name = read<QByteArray>(mIn);
        id = typeOfName(name);
        if (id == QMetaType::UnknownType) {
            qWarning("QVariant::load: unknown user type with name %s.", name.constData());
            return stop();
        }
    }
    if (depth >= kMaxDepth && nests(id))
        return stop();
    readBody(value, id, depth);
    if (value.isValid())
        value.data_ptr().is_null = (isNull & 1) != 0;
}

// Calls \a readFields with a reader, and sets the status if not all was taken.
template <class ReadFields>
void readGuarded(QDataStream &in, ReadFields readFields)
{
    const QDataStream::Status before = in.status();
    Reader reader(in);
    try {
        readFields(reader);
        // A transaction that runs dry is started again when there is more to read.
        if (!reader.hasRefused()
            || (isInTransaction(in) && in.status() == QDataStream::ReadPastEnd))
            return;
    } catch (const std::exception &) { // a program's own functions may throw any
    }
    if (before == QDataStream::Ok)
        in.resetStatus();
    in.setStatus(QDataStream::ReadCorruptData);
}

} // namespace

void ContentGuard::read(QDataStream &in, QVariant &content, qint32 &tag)
{
    content.clear();
    tag = 0;
    readGuarded(in, [&](Reader &reader) {
        QVariant value;
        reader.readContent(value);
        in >> tag;
        content.swap(value);
    });
}

void ContentGuard::read(QDataStream &in, QDateTime &value)
{
    value = QDateTime();
    readGuarded(in, [&](Reader &reader) { reader.readDateTime(value); });
}
