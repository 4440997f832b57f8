#include "CString64.h"

#include "FixedString_p.h"
#include "MetaType_p.h"

// One call per member: what the three fixed strings do is written in FixedString_p.h.

CString64::CString64() noexcept = default;
CString64::CString64(const CString64 &other) = default;
CString64::CString64(CString64 &&other) noexcept = default;
CString64::~CString64() = default;

CString64::CString64(const QString &text)
{
    FixedString::assign(mData, text);
}

CString64::CString64(const unsigned short (&units)[64])
{
    FixedString::assign(mData, units);
}

CString64::CString64(const QByteArray &bytes)
{
    FixedString::assign(mData, bytes);
}

CString64 &CString64::operator=(const CString64 &other) = default;
CString64 &CString64::operator=(CString64 &&other) noexcept = default;

CString64 &CString64::operator=(const QString &text)
{
    FixedString::assign(mData, text);
    return *this;
}

CString64 &CString64::operator=(const unsigned short (&units)[64])
{
    FixedString::assign(mData, units);
    return *this;
}

bool CString64::operator==(const CString64 &other) const
{
    return FixedString::equal(mData, other.mData);
}

bool CString64::operator!=(const CString64 &other) const
{
    return !(*this == other);
}

bool CString64::isValid() const
{
    return FixedString::units(mData)[0] != 0;
}

bool CString64::string64(unsigned short *out) const
{
    return FixedString::copy(mData, out);
}

QByteArray CString64::byteArray() const
{
    return FixedString::byteArray(mData);
}

QString CString64::str() const
{
    return FixedString::text(mData);
}

QDataStream &operator<<(QDataStream &out, const CString64 &string)
{
    return FixedString::write(out, string);
}

QDataStream &operator>>(QDataStream &in, CString64 &string)
{
    return FixedString::read(in, string);
}

QDebug operator<<(QDebug debug, const CString64 &string)
{
    return FixedString::print(debug, "CString64", string);
}

int QMetaTypeId<CString64>::qt_metatype_id()
{
    static const int id = MetaType::registered<CString64>("CString64");
    return id;
}
