#ifndef MAPSTREAM_P_H
#define MAPSTREAM_P_H

#include <QDataStream>
#include <QMap>

//! \internal The maps of the device classes in a stream.
namespace MapStream {

/*!
    Writes \a map to \a out as its count and then its pairs from the last one, with the largest key,
    to the first, so that several of one key come back in their order.

    QDataStream's own operator does so too, but only in sources that see what Qt 5.15 deprecates.
    Reading needs no function of its own: it is the same in all sources.
*/
template <class Key, class Value>
void write(QDataStream &out, const QMap<Key, Value> &map)
{
    out << static_cast<quint32>(map.size());
    for (auto it = map.constEnd(); it != map.constBegin();) {
        --it;
        out << it.key() << it.value();
    }
}

} // namespace MapStream

#endif // MAPSTREAM_P_H
