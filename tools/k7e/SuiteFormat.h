#ifndef SUITEFORMAT_H
#define SUITEFORMAT_H

#include "Nk7eGlobal.h"

#include <QDataStream>

//! Sets \a stream to the format that the files of the suite have.
inline void setSuiteFormat(QDataStream &stream)
{
    stream.setVersion(Nk7eGlobal::STREAM_VERSION);
    stream.setByteOrder(Nk7eGlobal::STREAM_BYTE_ORDER);
}

#endif // SUITEFORMAT_H
