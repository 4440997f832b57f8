#ifndef CONTENTGUARD_P_H
#define CONTENTGUARD_P_H

#include <QtGlobal>

class QDataStream;
class QDateTime;
class QVariant;

/*!
    \internal
    Reads what Qt's operators wrote, from a stream that may be hostile.

    Qt's own readers allocate room for as many elements as a list claims to have, descend as deep as
    lists of lists go, and compile, look up or call what the stream names: a few bytes can exhaust
    memory or stack, or crash. What holds here instead, and what is not taken, is the contract of
    CVariant's operator>>().
*/
namespace ContentGuard {

/*!
    Reads \a content, a QVariant, and \a tag behind it, with the result that operator>>() would have
    for all that is taken.

    What is not taken but whose end is known is read past, also between the elements of a list, map
    or hash. In a transaction a stream that runs dry is QDataStream::ReadPastEnd, whatever was not
    taken before: there may be more to read.
*/
void read(QDataStream &in, QVariant &content, qint32 &tag);

//! Reads a QDateTime in the same way; one of an unknown time spec or zone is null.
void read(QDataStream &in, QDateTime &value);

} // namespace ContentGuard

#endif // CONTENTGUARD_P_H
