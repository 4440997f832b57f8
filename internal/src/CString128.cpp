#include "CString128.h"

#include "FixedString_p.h"
#include "MetaType_p.h"

// One call per member: what the three fixed strings do is written in FixedString_p.h.

CString128::CString128() noexcept = default;
CString128::CString128(const CString128 &other) = default;
CString128::CString128(CString128 &&other) noexcept = default;
CString128::~CString128() = default;

CString128::CString128(const QString &text)
{
    FixedString::assign(mData, text);
}

CString128::CString128(const unsigned short (&units)[128])
{
    FixedString::assign(mData, units);
}

CString128::CString128(const QByteArray &bytes)
{
    FixedString::assign(mData, bytes);
}

CString128 &CString128::operator=(const CString128 &other) = default;
CString128 &CString128::operator=(CString128 &&other) noexcept = default;

CString128 &CString128::operator=(const QString &text)
{
    FixedString::assign(mData, text);
    return *this;
}

CString128 &CString128::operator=(const unsigned short (&units)[128])
{
    FixedString::assign(mData, units);
    return *this;
}

bool CString128::operator==(const CString128 &other) const
{
    return FixedString::equal(mData, other.mData);
}

bool CString128::operator!=(const CString128 &other) const
{
    return !(*this == other);
}

bool CString128::isValid() const
{
    return FixedString::units(mData)[0] != 0;
}

bool CString128::string128(unsigned short *out) const
{
    return FixedString::copy(mData, out);
}

QByteArray CString128::byteArray() const
{
    return FixedString::byteArray(mData);
}

QString CString128::str() const
{
    return FixedString::text(mData);
}

QDataStream &operator<<(QDataStream &out, const CString128 &string)
{
    return FixedString::write(out, string);
}

QDataStream &operator>>(QDataStream &in, CString128 &string)
{
    return FixedString::read(in, string);
}

QDebug operator<<(QDebug debug, const CString128 &string)
{
    return FixedString::print(debug, "CString128", string);
}

int QMetaTypeId<CString128>::qt_metatype_id()
{
    static const int id = MetaType::registered<CString128>("CString128");
    return id;
}
