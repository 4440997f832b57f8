#ifndef CONTENTGUARD_P_H
#define CONTENTGUARD_P_H

class QDataStream;
class QDateTime;
class QVariant;

/*!
    \internal
    Reads what Qt's operators wrote, from a stream that may be hostile.
*/
namespace ContentGuard {

/*!
    Reads a QVariant from \a in into \a value, with the result that operator>>() would have.

    Qt's own reader allocates room for as many elements as a list claims to have, and descends as
    deep as lists of lists go: a few bytes can exhaust memory or stack. Here memory is bounded by
    the bytes that are there. QDataStream::ReadCorruptData is set, and the content is invalid, for
    what is nested deeper than 100 levels, more than 2^31 - 1 bits, a QRegExp, a QEasingCurve, and a
    QDateTime of an unknown time spec or zone. Streams of versions before Qt_4_0 are read by Qt.
*/
void read(QDataStream &in, QVariant &value);

//! Reads a QDateTime in the same way; one of an unknown time spec or zone is null.
void read(QDataStream &in, QDateTime &value);

} // namespace ContentGuard

#endif // CONTENTGUARD_P_H
