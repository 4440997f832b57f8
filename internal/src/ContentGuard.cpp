#include "ContentGuard_p.h"

#include "VariantTypes_p.h"

#include <QBitArray>
#include <QByteArrayList>
#include <QDataStream>
#include <QDateTime>
#include <QDebug>
#include <QIODevice>
#include <QLocale>
#include <QMultiHash>
#include <QMultiMap>
#include <QRegularExpression>
#include <QStringList>
#include <QTimeZone>
#include <QVariant>

#include <algorithm>
#include <limits>

// The head of the content is read here, and with it everything that holds other content, a number of
// elements, or what should not come from a foreign stream; the rest by Qt's own readers.
// 00 00 00 09 | 00 | ff ff ff ff is a list that claims 2^32 - 1 elements and has none: it ends as
// an empty list, with QDataStream::ReadPastEnd.

namespace {

constexpr int kMaxDepth = 100;

void readContent(QDataStream &in, QVariant &value, int depth);

/*
    What Qt's own readers of containers do about the status: elements are read as if it was Ok, and
    a failure before the container is what stays.
*/
class StatusGuard
{
public:
    explicit StatusGuard(QDataStream &in) : mIn(in)
    {
        if (!in.device() || !in.device()->isTransactionStarted()) {
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

template <class Element>
void readElement(QDataStream &in, Element &element, int)
{
    in >> element;
}

void readElement(QDataStream &in, QVariant &element, int depth)
{
    readContent(in, element, depth);
}

// Calls readOne() as often as the stream says; returns false if one of them fails.
template <class ReadOne>
bool readCounted(QDataStream &in, ReadOne readOne)
{
    quint32 count = 0;
    in >> count;
    for (quint32 i = 0; i < count && in.status() == QDataStream::Ok; ++i)
        readOne();
    return in.status() == QDataStream::Ok;
}

template <class List>
QVariant readList(QDataStream &in, int depth)
{
    const StatusGuard guard(in);
    List list;
    const bool complete = readCounted(in, [&] {
        typename List::value_type element;
        readElement(in, element, depth);
        list.append(element);
    });
    return QVariant::fromValue(complete ? list : List());
}

template <class MultiMap, class Map>
QVariant readMap(QDataStream &in, int depth)
{
    const StatusGuard guard(in);
    MultiMap map;
    const bool complete = readCounted(in, [&] {
        QString key;
        QVariant element;
        in >> key;
        readContent(in, element, depth);
        map.insert(key, element);
    });
    return QVariant::fromValue(complete ? static_cast<const Map &>(map) : Map());
}

// Returns the id that a type has today, given the one it has in the stream.
quint32 currentType(const QDataStream &in, quint32 type)
{
    if (in.version() >= QDataStream::Qt_5_0 || type == QMetaType::User)
        return type;
    // Qt 4 counted the types in another way.
    constexpr quint32 kUserTypeOfQt4 = 127;
    constexpr quint32 kShiftFromQt4 = 97;
    constexpr quint32 kSizePolicyOfQt4 = 75;
    constexpr quint32 kLastGuiTypeOfQt4 = 86;
    if (type == kUserTypeOfQt4)
        return QMetaType::User;
    if (type > kUserTypeOfQt4)
        return type - kShiftFromQt4;
    if (type == kSizePolicyOfQt4)
        return QMetaType::QSizePolicy;
    return type > kSizePolicyOfQt4 && type <= kLastGuiTypeOfQt4 ? type - 1 : type;
}

// Returns whether a type holds content of any type, its own included.
bool nests(int type)
{
    return type == QMetaType::QVariantList || type == QMetaType::QVariantMap
        || type == QMetaType::QVariantHash || type == QMetaType::QVariant;
}

// Refuses what comes next: the content stays invalid.
void refuse(QDataStream &in)
{
    in.setStatus(QDataStream::ReadCorruptData);
}

void readBits(QDataStream &in, QVariant &value)
{
    // Qt takes a size beyond int for a negative one. A piece of the stream is put together again,
    // since QBitArray has no other way in.
    quint32 size = 0;
    in >> size;
    if (size > static_cast<quint32>(std::numeric_limits<int>::max()))
        return refuse(in);
    QByteArray bytes;
    constexpr int kStep = 1 << 16; // what is claimed is believed only as far as it is there
    const auto total = static_cast<int>((static_cast<qint64>(size) + 7) / 8);
    while (bytes.size() < total) {
        const int step = std::min(kStep, total - bytes.size());
        const int before = bytes.size();
        bytes.resize(before + step);
        if (in.readRawData(bytes.data() + before, step) != step) {
            in.setStatus(QDataStream::ReadPastEnd);
            value = QBitArray();
            return;
        }
    }
    value = QBitArray::fromBits(bytes.constData(), static_cast<int>(size));
}

/*
    Returns whether QTimeZone may be asked for a zone of that name. It looks a name up as a file, and
    else reads it as rules; some rules that cannot be, such as one for month 13, keep it busy for ever.
*/
bool isZoneName(const QString &name)
{
    // Letters, digits and the signs of the names that there are, without a way out of the directory.
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
    QString name;
    in >> name;
    if (name != QLatin1String("OffsetFromUtc"))
        return namedZone(name);
    QString longName;
    QString abbreviation;
    QString comment;
    qint32 offset = 0;
    qint32 country = 0;
    in >> name >> offset >> longName >> abbreviation >> country >> comment;
    const QTimeZone zone = namedZone(name);
    if (zone.isValid())
        return zone;
    const bool isCountry = country >= QLocale::AnyCountry && country <= QLocale::LastCountry;
    return QTimeZone(name.toUtf8(), offset, longName, abbreviation,
                     isCountry ? static_cast<QLocale::Country>(country) : QLocale::AnyCountry,
                     comment);
}

// Reads a QDateTime; returns false if Qt has no such time spec or zone: it makes a value of it all the
// same, and crashes with that.
bool readDateTime(QDataStream &in, QDateTime &dateTime)
{
    const bool isUtcInStream = in.version() == QDataStream::Qt_5_0;
    if (in.version() < QDataStream::Qt_5_2 && !isUtcInStream) {
        in >> dateTime;
        return true;
    }
    QDate date;
    QTime time;
    qint8 spec = 0;
    in >> date >> time >> spec;
    dateTime = QDateTime();
    if (spec < Qt::LocalTime || spec > Qt::TimeZone)
        return false;
    const auto timeSpec = static_cast<Qt::TimeSpec>(spec);
    if (isUtcInStream) {
        dateTime = QDateTime(date, time, Qt::UTC).toTimeSpec(timeSpec);
    } else if (timeSpec == Qt::TimeZone) {
        const QTimeZone zone = readZone(in);
        if (!zone.isValid())
            return false;
        dateTime = QDateTime(date, time, zone);
    } else {
        qint32 offset = 0;
        if (timeSpec == Qt::OffsetFromUTC)
            in >> offset;
        dateTime = QDateTime(date, time, timeSpec, offset);
    }
    return true;
}

// Reads what follows the type id and the null flag.
void readBody(QDataStream &in, QVariant &value, int type, int depth)
{
    switch (type) {
    case QMetaType::QVariantList:
        value = readList<QVariantList>(in, depth + 1);
        return;
    case QMetaType::QVariantMap:
        value = readMap<QMultiMap<QString, QVariant>, QVariantMap>(in, depth + 1);
        return;
    case QMetaType::QVariantHash:
        value = readMap<QMultiHash<QString, QVariant>, QVariantHash>(in, depth + 1);
        return;
    case QMetaType::QStringList:
        value = readList<QStringList>(in, depth);
        return;
    case QMetaType::QByteArrayList:
        value = readList<QByteArrayList>(in, depth);
        return;
    case QMetaType::QVariant: {
        QVariant inner;
        readContent(in, inner, depth + 1);
        value = QVariant(QMetaType::QVariant, &inner);
        return;
    }
    case QMetaType::QBitArray:
        return readBits(in, value);
    case QMetaType::QDateTime: {
        QDateTime dateTime;
        if (!readDateTime(in, dateTime))
            return refuse(in);
        value = dateTime;
        return;
    }
    case QMetaType::QRegExp:      // is compiled when it is read
    case QMetaType::QEasingCurve: // holds the address of a function
        return refuse(in);
    default:
        break;
    }
    value = QVariant(type, nullptr);
    if (!value.isValid()) {
        value.clear();
        if (in.version() < QDataStream::Qt_5_0) {
            QString nothing; // that Qt 4 wrote
            in >> nothing;
        }
    } else if (!QMetaType::load(in, type, value.data())) {
        in.setStatus(QDataStream::ReadCorruptData);
        qWarning("QVariant::load: unable to load type %d.", type);
    }
}

void readContent(QDataStream &in, QVariant &value, int depth)
{
    if (in.version() < QDataStream::Qt_4_0) {
        in >> value;
        return;
    }
    value.clear();
    quint32 type = 0;
    qint8 isNull = 0;
    in >> type;
    if (in.version() >= QDataStream::Qt_4_2)
        in >> isNull;
    type = currentType(in, type);
    int id = static_cast<int>(type & VariantTypes::kContentIdMask);
    if (type == QMetaType::User) {
        QByteArray name;
        in >> name;
        id = QMetaType::type(name);
        if (id == QMetaType::UnknownType) {
            in.setStatus(QDataStream::ReadCorruptData);
            qWarning("QVariant::load: unknown user type with name %s.", name.constData());
            return;
        }
    }
    if (depth >= kMaxDepth && nests(id))
        return refuse(in);
    readBody(in, value, id, depth);
    if (value.isValid())
        value.data_ptr().is_null = (isNull & 1) != 0;
}

} // namespace

void ContentGuard::read(QDataStream &in, QVariant &value)
{
    readContent(in, value, 0);
}

void ContentGuard::read(QDataStream &in, QDateTime &value)
{
    if (!readDateTime(in, value))
        refuse(in);
}
