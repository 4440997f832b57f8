#include "CString32.h"

#include "FixedString_p.h"
#include "MetaType_p.h"

// One call per member: what the three fixed strings do is written in FixedString_p.h.

CString32::CString32() noexcept = default;
CString32::CString32(const CString32 &other) = default;
CString32::CString32(CString32 &&other) noexcept = default;
CString32::~CString32() = default;

CString32::CString32(const QString &text)
{
    FixedString::assign(mData, text);
}

CString32::CString32(const unsigned short (&units)[32])
{
    FixedString::assign(mData, units);
}

CString32::CString32(const QByteArray &bytes)
{
    FixedString::assign(mData, bytes);
}

CString32 &CString32::operator=(const CString32 &other) = default;
CString32 &CString32::operator=(CString32 &&other) noexcept = default;

CString32 &CString32::operator=(const QString &text)
{
    FixedString::assign(mData, text);
    return *this;
}

CString32 &CString32::operator=(const unsigned short (&units)[32])
{
    FixedString::assign(mData, units);
    return *this;
}

bool CString32::operator==(const CString32 &other) const
{
    return FixedString::equal(mData, other.mData);
}

bool CString32::operator!=(const CString32 &other) const
{
    return !(*this == other);
}

bool CString32::isValid() const
{
    return FixedString::units(mData)[0] != 0;
}

bool CString32::string32(unsigned short *out) const
{
    return FixedString::copy(mData, out);
}

QByteArray CString32::byteArray() const
{
    return FixedString::byteArray(mData);
}

QString CString32::str() const
{
    return FixedString::text(mData);
}

QDataStream &operator<<(QDataStream &out, const CString32 &string)
{
    return FixedString::write(out, string);
}

QDataStream &operator>>(QDataStream &in, CString32 &string)
{
    return FixedString::read(in, string);
}

QDebug operator<<(QDebug debug, const CString32 &string)
{
    return FixedString::print(debug, "CString32", string);
}

int QMetaTypeId<CString32>::qt_metatype_id()
{
    static const int id = MetaType::registered<CString32>("CString32");
    return id;
}
