#ifndef DATETIMERECORD_P_H
#define DATETIMERECORD_P_H

#include "NTypes.h"

#include <QDate>
#include <QTime>
#include <QtEndian>

/*!
    \internal
    The date-time record of a device, its packed form and Qt's date and time.
*/
namespace DateTimeRecord {

//! Returns the little-endian integer that the 8 bytes of \a record are.
inline qint64 toBits(const NTypes::tsDateTime &record)
{
    static_assert(sizeof(record) == sizeof(qint64));
    return qFromLittleEndian<qint64>(&record);
}

//! Returns the record whose 8 bytes are \a bits.
inline NTypes::tsDateTime fromBits(qint64 bits)
{
    NTypes::tsDateTime record;
    qToLittleEndian(bits, &record);
    return record;
}

//! Returns the record of \a date and \a time, each part cut to its field, milliseconds to
//! hundredths.
inline NTypes::tsDateTime fromQt(QDate date, QTime time)
{
    int year = 0;
    int month = 0;
    int day = 0;
    date.getDate(&year, &month, &day); // at once: each part costs a conversion of the day number
    return {{static_cast<qint8>(time.msec() / 10), static_cast<qint8>(time.second()),
             static_cast<qint8>(time.minute()), static_cast<qint8>(time.hour())},
            {static_cast<qint8>(day), static_cast<qint8>(month), static_cast<qint16>(year)}};
}

//! Returns \a date; invalid if there is no such day.
inline QDate toQDate(const NTypes::tsDate &date)
{
    return QDate(date.year, date.month, date.day);
}

//! Returns \a time; invalid if there is no such time.
inline QTime toQTime(const NTypes::tsTime &time)
{
    return QTime(time.hours, time.minutes, time.seconds, time.hundredths * 10);
}

} // namespace DateTimeRecord

#endif // DATETIMERECORD_P_H
