#ifndef NTYPES_H
#define NTYPES_H

#include "k7eCoreExport.h"

#include <QMetaType>
#include <QtGlobal>

/*!
    The data types that an object of a device can have.
*/
namespace NTypes {

/*!
    The code of a data type.

    The codes travel in streams and in device data and never change; they are not ordered by size.
    Any 32-bit code that was read from a stream is a value of this enumeration; codes outside 0..20
    are no types. CStr::nTypeToStr() gives the text name, the enumerator's without "TYPE_".
*/
enum ETypes : int {
    TYPE_UNKNOWN = 0,     //!< no type
    TYPE_U8 = 1,          //!< unsigned 8-bit integer
    TYPE_I8 = 2,          //!< signed 8-bit integer
    TYPE_U16 = 3,         //!< unsigned 16-bit integer
    TYPE_I16 = 4,         //!< signed 16-bit integer
    TYPE_U32 = 5,         //!< unsigned 32-bit integer
    TYPE_I32 = 6,         //!< signed 32-bit integer
    TYPE_F32 = 7,         //!< IEEE 754 single precision
    TYPE_U64 = 8,         //!< unsigned 64-bit integer
    TYPE_I64 = 9,         //!< signed 64-bit integer
    TYPE_F64 = 10,        //!< IEEE 754 double precision
    TYPE_F80 = 11,        //!< 80-bit float: a name only, no value has this type
    TYPE_STRING32 = 12,   //!< CString32: 32 UTF-16 code units
    TYPE_CHARSTR64 = 13,  //!< 64 bytes of 8-bit characters
    TYPE_STRING128 = 14,  //!< CString128: 128 UTF-16 code units
    TYPE_CHARSTR256 = 15, //!< 256 bytes of 8-bit characters
    TYPE_DATETIME = 16,   //!< tsDateTime
    TYPE_STRING64 = 17,   //!< CString64: 64 UTF-16 code units
    TYPE_CHARSTR128 = 18, //!< 128 bytes of 8-bit characters
    TYPE_UTF16CHAR = 19,  //!< one UTF-16 code unit
    TYPE_CHAR = 20        //!< one 8-bit character
};

/*!
    A time of day as a device stores it: 4 bytes. No range is enforced.
*/
struct tsTime
{
    qint8 hundredths = 0; //!< hundredths of a second, 0..99
    qint8 seconds = 0;    //!< 0..59
    qint8 minutes = 0;    //!< 0..59
    qint8 hours = 0;      //!< 0..23
};

/*!
    A date as a device stores it: 4 bytes. No range is enforced.
*/
struct tsDate
{
    qint8 day = 0;   //!< day of the month, 1..31
    qint8 month = 0; //!< 1..12
    qint16 year = 0; //!< the full year, such as 2014
};

/*!
    A date and time as a device stores it: 8 bytes, the time first. Default-constructed it is all
    zeros. It has no validity of its own; CVariant shows an impossible date as an empty text.
*/
struct tsDateTime
{
    tsTime time; //!< bytes 0 to 3
    tsDate date; //!< bytes 4 to 7
};

} // namespace NTypes

/*!
    The meta-type "NTypes::tsDateTime". Its stream functions, unless a program registers its own,
    take the 8 bytes in the order of the members, the year as qint16. It is made in the library,
    whoever asks for it first: what Qt keeps of it outlives a plug-in.
*/
template <>
struct QMetaTypeId<NTypes::tsDateTime>
{
    enum { Defined = 1 };
    K7ECORE_EXPORT static int qt_metatype_id();
};

#endif // NTYPES_H
