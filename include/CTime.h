#ifndef CTIME_H
#define CTIME_H

#include "k7eCoreExport.h"

#include <QHash>
#include <QSharedDataPointer>
#include <QString>

class CTimeData;
class QDataStream;
class QDebug;

/*!
    A duration: an unsigned 64-bit count and the unit it is in, from picoseconds to hours.

    Conversions go through seconds in double precision: large counts may come out a few units off.
    What comes to 2^64 and more, below -2^63, or to NaN is the count 2^63. A unit code that is not
    in ETimeUnit is kept as it is and counts as seconds. The value is implicitly shared. A
    moved-from object may only be destroyed or assigned.

    Stream layout: the count as qint64 (its bit pattern), the unit code as qint32.
*/
class K7ECORE_EXPORT CTime
{
public:
    //! The units. The codes travel in streams; any 32-bit code is a value of this type.
    enum ETimeUnit : int {
        PS = 0,     //!< picoseconds
        NS = 1,     //!< nanoseconds
        US = 2,     //!< microseconds
        MS = 3,     //!< milliseconds
        S = 4,      //!< seconds
        MIN = 5,    //!< minutes
        H = 6,      //!< hours
        UNKNOWN = 7 //!< no unit; counts as seconds
    };

    //! The unit of each of the seven names: "ps", "ns", "\u00b5s", "ms", "s", "min", "h".
    static const QHash<QString, ETimeUnit> mUnitHash;

    //! Makes 0 of the unit UNKNOWN.
    CTime();
    //! Makes \a value of \a unit, neither of them checked.
    CTime(unsigned long long value, ETimeUnit unit);
    CTime(const CTime &other);
    CTime(CTime &&other) noexcept;
    virtual ~CTime();

    CTime &operator=(const CTime &other);
    CTime &operator=(CTime &&other) noexcept;
    //! Exchanges the values.
    void swap(CTime &other) noexcept { mData.swap(other.mData); }

    //! Returns the count in the own unit.
    Q_REQUIRED_RESULT unsigned long long value() const;
    //! Returns the own unit.
    Q_REQUIRED_RESULT ETimeUnit unit() const;
    //! Sets the count and keeps the unit.
    void setValue(unsigned long long value);
    //! Sets both.
    void setValue(unsigned long long value, ETimeUnit unit);
    //! Sets the unit and keeps the count, which is not converted.
    void setUnit(ETimeUnit unit);
    //! Returns whether the unit is NS to H. A time in picoseconds is not valid: callers rely on it.
    Q_REQUIRED_RESULT bool isValid() const;

    //! Returns \a value of \a unit in seconds.
    static double toS(const double &value, ETimeUnit unit);
    //! Returns \a value of \a from in the unit \a to, not rounded.
    static double convertValue(const double &value, ETimeUnit from, ETimeUnit to);

    /*!
        Returns the count in \a unit, rounded by CMath::round(): 1500 us is 2 ms. The own count is
        read as signed, unless \a unit is the own one, which gives it as it is; a negative result is
        its two's complement.
    */
    Q_REQUIRED_RESULT unsigned long long value(ETimeUnit unit) const;
    //! Returns value(NS).
    Q_REQUIRED_RESULT unsigned long long toNS() const;
    //! Returns value(MS).
    Q_REQUIRED_RESULT unsigned long long toMS() const;
    //! Returns value(S).
    Q_REQUIRED_RESULT unsigned long long toS() const;
    //! Sets the count to \a other, converted to the own unit and rounded; the unit stays.
    CTime &fromValue(const CTime &other);

    /*!
        Walks from \a unit towards smaller units as long as \a value has a fraction in them, writes
        the last such unit to \a outUnit and \a value there, cut towards zero, to \a outValue, and
        returns whether the next smaller unit made it whole. 1.5 s gives 1 S; 1.0001234 s gives
        1000123 US.

        Nothing is written for a whole value, for zero and NaN, and for picoseconds or a negative
        code. A value with a fraction down to picoseconds gives false, with those written. What is
        within one unit in the last place of a double of an integer is whole.
    */
    static bool convertToPrevIntegerValue(const double &value, ETimeUnit unit, long long &outValue,
                                          ETimeUnit &outUnit);
    //! The same for the own count, read as signed, and the own unit.
    bool convertToPrevIntegerValue(long long &outValue, ETimeUnit &outUnit) const;

    //! Returns the name of \a unit, or a null string for a code above H or below PS.
    Q_REQUIRED_RESULT static QString unitStr(ETimeUnit unit);
    //! Returns the unit named \a name in any case, or UNKNOWN.
    Q_REQUIRED_RESULT static ETimeUnit unit(const QString &name);
    //! Builds the content of #mUnitHash anew.
    Q_REQUIRED_RESULT static QHash<QString, ETimeUnit> createUnitHash();

    //! Compares in whole nanoseconds, by toNS(): 1500 ps and 2 ns are equal.
    bool operator==(const CTime &other) const;
    bool operator!=(const CTime &other) const;
    bool operator<(const CTime &other) const;
    bool operator>(const CTime &other) const;
    bool operator<=(const CTime &other) const;
    bool operator>=(const CTime &other) const;

private:
    QSharedDataPointer<CTimeData> mData;
};

inline void swap(CTime &left, CTime &right) noexcept
{
    left.swap(right);
}

//! \relates CTime Returns \a time with its count multiplied and rounded: 3 s by 0.5 is 2 s.
K7ECORE_EXPORT CTime operator*(const CTime &time, double factor);
//! \relates CTime \overload
K7ECORE_EXPORT CTime operator*(double factor, const CTime &time);
/*!
    \relates CTime
    Returns the sum in the unit of \a a, cut towards zero: 1 s + 500 ms is 1 s.

    Contract: for operands of one unit the count is twice the unit's code, whatever their counts:
    5 ms + 3 ms is 6 ms. Callers rely on it.
*/
K7ECORE_EXPORT CTime operator+(const CTime &a, const CTime &b);

//! \relates CTime Writes \a time to \a out in the stream layout of the class.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CTime &time);
//! \relates CTime Reads count and unit as they stand; what a short stream lacks is 0.
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CTime &time);

//! \relates CTime Writes the form CTime(5 ms).
K7ECORE_EXPORT QDebug operator<<(QDebug debug, const CTime &time);

#endif // CTIME_H
