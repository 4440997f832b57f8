#ifndef CDATETIME_H
#define CDATETIME_H

#include "NTypes.h"
#include "k7eCoreExport.h"

#include <QDateTime>
#include <QString>

class QByteArray;
class QDataStream;

/*!
    A QDateTime that converts to and from the packed date-time of a device: the 8 bytes of
    NTypes::tsDateTime as a little-endian signed 64-bit integer, hundredths of a second lowest.

    Stream layout: that of QDateTime.
*/
class K7ECORE_EXPORT CDateTime
{
public:
    //! Makes a null date-time.
    CDateTime();
    CDateTime(const CDateTime &other);
    CDateTime(CDateTime &&other) noexcept;
    CDateTime(const QDateTime &dateTime);
    /*!
        Makes the date-time that \a packed reads in \a spec: gives a null one \a spec, then the
        date, then the time. As QDateTime has it, Qt::OffsetFromUTC is UTC and Qt::TimeZone local
        time.

        Of a local reading that the clock shows twice it is the one whose offset from UTC the day
        begins with, or either if that midnight is shown twice itself, or if another thread converts
        local times meanwhile; one that the clock skips is kept and invalid.
    */
    CDateTime(const long long &packed, Qt::TimeSpec spec);
    //! Makes the date-time that \a record reads in \a spec, in the same way.
    CDateTime(const NTypes::tsDateTime &record, Qt::TimeSpec spec);
    virtual ~CDateTime();

    CDateTime &operator=(const CDateTime &other);
    CDateTime &operator=(CDateTime &&other) noexcept;
    CDateTime &operator=(const QDateTime &dateTime);
    //! Takes date and time from \a packed and keeps the time spec. Of a local reading that the clock
    //! shows twice it may be either.
    CDateTime &operator=(const long long &packed);
    //! Takes date and time from \a record and keeps the time spec.
    CDateTime &operator=(const NTypes::tsDateTime &record);
    //! Exchanges the values.
    void swap(CDateTime &other) noexcept { mDateTime.swap(other.mDateTime); }

    //! Sets the date; an impossible one makes the date-time invalid.
    void setDate(const NTypes::tsDate &date);
    //! Sets the time; an impossible one is midnight, as QDateTime has it.
    void setTime(const NTypes::tsTime &time);
    /*!
        Converts the same instant to \a spec, unless it has that spec already. As QDateTime has it,
        Qt::OffsetFromUTC gives UTC and Qt::TimeZone local time.
    */
    void setTimeSpec(Qt::TimeSpec spec);
    Q_REQUIRED_RESULT Qt::TimeSpec timeSpec() const;

    //! Returns the same instant in \a spec, see setTimeSpec(); it is always converted.
    Q_REQUIRED_RESULT QDateTime toQDateTime(Qt::TimeSpec spec) const;
    //! Returns the same instant in \a spec as Qt::ISODate, without fractions of a second.
    Q_REQUIRED_RESULT QString toIsoDateTime(Qt::TimeSpec spec) const;
    /*!
        Returns the packed form of the same instant in \a spec, milliseconds cut to hundredths. Each
        field holds the low bits of its part: those of a null date-time are 0 and -1.
    */
    Q_REQUIRED_RESULT long long toI64(Qt::TimeSpec spec) const;
    //! Returns the 8 bytes of toI64(), the lowest first.
    Q_REQUIRED_RESULT QByteArray toI64ByteArray(Qt::TimeSpec spec) const;
    //! Reads what toI64ByteArray() wrote; missing bytes are 0, more than 8 are ignored.
    Q_REQUIRED_RESULT static CDateTime fromI64ByteArray(const QByteArray &bytes, Qt::TimeSpec spec);

    //! Compares instants, as QDateTime does.
    bool operator==(const CDateTime &other) const;
    bool operator!=(const CDateTime &other) const;
    bool operator<(const CDateTime &other) const;
    bool operator>(const CDateTime &other) const;
    bool operator<=(const CDateTime &other) const;
    bool operator>=(const CDateTime &other) const;

    Q_REQUIRED_RESULT bool isNull() const;
    Q_REQUIRED_RESULT bool isValid() const;

private:
    friend K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CDateTime &dateTime);
    friend K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CDateTime &dateTime);

    QDateTime mDateTime;
};

inline void swap(CDateTime &left, CDateTime &right) noexcept
{
    left.swap(right);
}

//! \relates CDateTime Writes \a dateTime as a QDateTime.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CDateTime &dateTime);
/*!
    \relates CDateTime
    Reads a QDateTime. One of an unknown time spec or zone is null, with
    QDataStream::ReadCorruptData; what follows is read from the right place. Nothing is thrown.
*/
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CDateTime &dateTime);

#endif // CDATETIME_H
