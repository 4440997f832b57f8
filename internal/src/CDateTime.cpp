#include "CDateTime.h"

#include "ContentGuard_p.h"
#include "DateTimeRecord_p.h"

#include <QByteArray>
#include <QDataStream>

#include <algorithm>
#include <cstring>

// 2014-05-06 07:08:09.123 packs to 07DE'05'06'07'08'09'0C: the year highest, 12 hundredths lowest.

CDateTime::CDateTime() = default;
CDateTime::CDateTime(const CDateTime &other) = default;
CDateTime::CDateTime(CDateTime &&other) noexcept = default;
CDateTime::~CDateTime() = default;
CDateTime &CDateTime::operator=(const CDateTime &other) = default;
CDateTime &CDateTime::operator=(CDateTime &&other) noexcept = default;

CDateTime::CDateTime(const QDateTime &dateTime) : mDateTime(dateTime)
{
}

CDateTime::CDateTime(const long long &packed, Qt::TimeSpec spec)
    : CDateTime(DateTimeRecord::fromBits(packed), spec)
{
}

CDateTime::CDateTime(const NTypes::tsDateTime &record, Qt::TimeSpec spec)
{
    // Contract: the date before the time, not both at once. Of a reading that a clock shows twice
    // it then is the one in the half of the year that the day begins in, whatever was converted
    // before.
    mDateTime.setTimeSpec(spec);
    *this = record;
}

CDateTime &CDateTime::operator=(const QDateTime &dateTime)
{
    mDateTime = dateTime;
    return *this;
}

CDateTime &CDateTime::operator=(const long long &packed)
{
    return *this = DateTimeRecord::fromBits(packed);
}

CDateTime &CDateTime::operator=(const NTypes::tsDateTime &record)
{
    setDate(record.date);
    setTime(record.time);
    return *this;
}

void CDateTime::setDate(const NTypes::tsDate &date)
{
    mDateTime.setDate(DateTimeRecord::toQDate(date));
}

void CDateTime::setTime(const NTypes::tsTime &time)
{
    mDateTime.setTime(DateTimeRecord::toQTime(time));
}

void CDateTime::setTimeSpec(Qt::TimeSpec spec)
{
    if (spec != mDateTime.timeSpec())
        mDateTime = mDateTime.toTimeSpec(spec);
}

Qt::TimeSpec CDateTime::timeSpec() const
{
    return mDateTime.timeSpec();
}

QDateTime CDateTime::toQDateTime(Qt::TimeSpec spec) const
{
    return mDateTime.toTimeSpec(spec);
}

QString CDateTime::toIsoDateTime(Qt::TimeSpec spec) const
{
    return toQDateTime(spec).toString(Qt::ISODate);
}

long long CDateTime::toI64(Qt::TimeSpec spec) const
{
    const QDateTime dateTime = toQDateTime(spec);
    return DateTimeRecord::toBits(DateTimeRecord::fromQt(dateTime.date(), dateTime.time()));
}

QByteArray CDateTime::toI64ByteArray(Qt::TimeSpec spec) const
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out << static_cast<qint64>(toI64(spec));
    return bytes;
}

CDateTime CDateTime::fromI64ByteArray(const QByteArray &bytes, Qt::TimeSpec spec)
{
    qint64 packed = 0;
    const auto size = std::min(static_cast<std::size_t>(bytes.size()), sizeof(packed));
    std::memcpy(&packed, bytes.constData(), size);
    return CDateTime(qFromLittleEndian(packed), spec);
}

bool CDateTime::operator==(const CDateTime &other) const
{
    return mDateTime == other.mDateTime;
}

bool CDateTime::operator!=(const CDateTime &other) const
{
    return !(*this == other);
}

bool CDateTime::operator<(const CDateTime &other) const
{
    return mDateTime < other.mDateTime;
}

bool CDateTime::operator>(const CDateTime &other) const
{
    return mDateTime > other.mDateTime;
}

bool CDateTime::operator<=(const CDateTime &other) const
{
    return !(*this > other);
}

bool CDateTime::operator>=(const CDateTime &other) const
{
    return !(*this < other);
}

bool CDateTime::isNull() const
{
    return mDateTime.isNull();
}

bool CDateTime::isValid() const
{
    return mDateTime.isValid();
}

QDataStream &operator<<(QDataStream &out, const CDateTime &dateTime)
{
    return out << dateTime.mDateTime;
}

QDataStream &operator>>(QDataStream &in, CDateTime &dateTime)
{
    ContentGuard::read(in, dateTime.mDateTime);
    return in;
}
