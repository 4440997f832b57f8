#include "ContentReader_p.h"

#include <QBitArray>
#include <QByteArrayList>
#include <QDataStream>
#include <QDateTime>
#include <QDebug>
#include <QIODevice>
#include <QMultiHash>
#include <QMultiMap>
#include <QStringList>
#include <QTimeZone>
#include <QVariant>
#include <QtEndian>

#include <limits>

// Content that holds other content, or a number of elements, is read here; everything else by Qt.
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
        readElement(in, element, depth);
        map.insert(key, element);
    });
    return QVariant::fromValue(complete ? static_cast<const Map &>(map) : Map());
}

// Returns whether Qt's own reader is not safe for the type.
bool isReadHere(int type)
{
    switch (type) {
    case QMetaType::QVariantList:
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
    case QMetaType::QStringList:
    case QMetaType::QByteArrayList:
    case QMetaType::QVariant:
    case QMetaType::QBitArray:
    case QMetaType::QEasingCurve:
        return true;
    default:
        return false;
    }
}

// Returns the number that comes next in the stream, which stays where it is; 0 if there is none.
quint32 peekNumber(const QDataStream &in)
{
    const QByteArray bytes = in.device() ? in.device()->peek(sizeof(quint32)) : QByteArray();
    if (bytes.size() < static_cast<int>(sizeof(quint32)))
        return 0;
    return in.byteOrder() == QDataStream::BigEndian ? qFromBigEndian<quint32>(bytes.constData())
                                                    : qFromLittleEndian<quint32>(bytes.constData());
}

// Returns the type id that comes next in the stream, which stays where it is.
quint32 peekType(const QDataStream &in)
{
    const quint32 type = peekNumber(in);
    if (in.version() >= QDataStream::Qt_5_0 || type == QMetaType::User)
        return type;
    // Streams of Qt 4 count the types in another way.
    constexpr quint32 kUserTypeOfQt4 = 127;
    constexpr quint32 kShiftFromQt4 = 97;
    if (type == kUserTypeOfQt4)
        return QMetaType::User;
    return type > kUserTypeOfQt4 ? type - kShiftFromQt4 : type;
}

void readBody(QDataStream &in, QVariant &value, int type, int depth)
{
    switch (type) {
    case QMetaType::QVariantList:
        value = readList<QVariantList>(in, depth + 1);
        break;
    case QMetaType::QVariantMap:
        value = readMap<QMultiMap<QString, QVariant>, QVariantMap>(in, depth + 1);
        break;
    case QMetaType::QVariantHash:
        value = readMap<QMultiHash<QString, QVariant>, QVariantHash>(in, depth + 1);
        break;
    case QMetaType::QStringList:
        value = readList<QStringList>(in, depth);
        break;
    case QMetaType::QByteArrayList:
        value = readList<QByteArrayList>(in, depth);
        break;
    case QMetaType::QVariant: {
        QVariant inner;
        readContent(in, inner, depth + 1);
        value = QVariant(QMetaType::QVariant, &inner);
        break;
    }
    case QMetaType::QBitArray:
        // Qt takes a size beyond int for a negative one.
        if (peekNumber(in) > static_cast<quint32>(std::numeric_limits<int>::max())) {
            in.setStatus(QDataStream::ReadCorruptData);
        } else {
            QBitArray bits;
            in >> bits;
            value = bits;
        }
        break;
    case QMetaType::QEasingCurve:
        // Its stream holds the address of a function, and no device value is one.
        in.setStatus(QDataStream::ReadCorruptData);
        break;
    default:
        value = QVariant(type, nullptr);
        if (value.isValid() && !QMetaType::load(in, type, value.data())) {
            in.setStatus(QDataStream::ReadCorruptData);
            qWarning("QVariant::load: unable to load type %d.", type);
        }
    }
}

// Qt reads a date-time in a time zone that it does not know, and crashes when it is to write it.
bool isDateTimeOfNoZone(const QVariant &value)
{
    if (value.userType() != QMetaType::QDateTime)
        return false;
    const QDateTime dateTime = value.toDateTime();
    return dateTime.timeSpec() == Qt::TimeZone && !dateTime.timeZone().isValid();
}

void readContent(QDataStream &in, QVariant &value, int depth)
{
    // QVariant keeps 30 bits of a type id, whatever the stream says.
    constexpr quint32 kIdMask = (1U << 30) - 1;
    const quint32 next = peekType(in);
    const bool isUserType = next == QMetaType::User;
    int id = static_cast<int>(next & kIdMask);
    if (!isUserType && !isReadHere(id)) {
        in >> value;
        if (isDateTimeOfNoZone(value)) {
            value = QDateTime();
            in.setStatus(QDataStream::ReadCorruptData);
        }
        return;
    }
    value.clear();
    if (depth >= kMaxDepth) {
        in.setStatus(QDataStream::ReadCorruptData);
        return;
    }

    quint32 type = 0;
    qint8 isNull = 0;
    in >> type;
    if (in.version() >= QDataStream::Qt_4_2)
        in >> isNull;
    if (isUserType) {
        QByteArray name;
        in >> name;
        id = QMetaType::type(name);
        if (id == QMetaType::UnknownType) {
            in.setStatus(QDataStream::ReadCorruptData);
            qWarning("QVariant::load: unknown user type with name %s.", name.constData());
            return;
        }
    }
    readBody(in, value, id, depth);
    if (value.isValid())
        value.data_ptr().is_null = isNull != 0;
}

} // namespace

void ContentReader::read(QDataStream &in, QVariant &value)
{
    readContent(in, value, 0);
}
