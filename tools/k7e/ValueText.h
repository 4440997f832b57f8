#ifndef VALUETEXT_H
#define VALUETEXT_H

#include "NTypes.h"

#include <QString>

class CVariant;

/*!
    Returns \a text with everything that does not stay in its place on a terminal escaped: control,
    format and separator characters and halves of surrogate pairs as "\n", "\r", "\t" or by their
    UTF-16 units as "\u001b", and the backslash itself as "\\".
*/
Q_REQUIRED_RESULT QString visible(const QString &text);

//! Returns the hexadecimal text of \a value with the prefix "0x"; empty for a type that has none.
Q_REQUIRED_RESULT QString hexText(const CVariant &value);

/*!
    Returns the bits of an integer, the most significant first, in groups of four such as
    "0000 0010 0011 0111"; empty for all other types.
*/
Q_REQUIRED_RESULT QString bitText(const CVariant &value);

#endif // VALUETEXT_H
