#ifndef RAWVALUE_H
#define RAWVALUE_H

#include "CVariant.h"

class QByteArray;

/*!
    Returns the value of \a type that \a bytes hold as they lie on the device: numbers and UTF-16
    units with the low byte first, strings over their whole length, a date-time field by field.

    A null value for UNKNOWN, F80 and codes that are no type, and if \a bytes are fewer than the
   type takes.
*/
Q_REQUIRED_RESULT CVariant fromRawBytes(NTypes::ETypes type, const QByteArray &bytes);

#endif // RAWVALUE_H
