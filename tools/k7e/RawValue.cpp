#include "RawValue.h"

#include <QByteArray>
#include <QtEndian>

#include <cstddef>
#include <cstring>

namespace {

template <class T>
CVariant integer(const char *bytes)
{
    return qFromLittleEndian<T>(bytes);
}

template <class T, class Image>
CVariant floating(const char *bytes)
{
    static_assert(sizeof(T) == sizeof(Image));
    const auto image = qFromLittleEndian<Image>(bytes);
    T value;
    std::memcpy(&value, &image, sizeof(value));
    return value;
}

template <std::size_t Size>
CVariant charString(const char *bytes)
{
    char value[Size];
    std::memcpy(value, bytes, Size);
    return CVariant(value);
}

template <std::size_t Units>
CVariant fixedString(const char *bytes)
{
    unsigned short value[Units];
    for (std::size_t i = 0; i < Units; ++i)
        value[i] = qFromLittleEndian<quint16>(bytes + 2 * i);
    return CVariant(value);
}

CVariant dateTime(const char *bytes)
{
    NTypes::tsDateTime value;
    value.time.hundredths = qFromLittleEndian<qint8>(bytes);
    value.time.seconds = qFromLittleEndian<qint8>(bytes + 1);
    value.time.minutes = qFromLittleEndian<qint8>(bytes + 2);
    value.time.hours = qFromLittleEndian<qint8>(bytes + 3);
    value.date.day = qFromLittleEndian<qint8>(bytes + 4);
    value.date.month = qFromLittleEndian<qint8>(bytes + 5);
    value.date.year = qFromLittleEndian<qint16>(bytes + 6);
    return value;
}

CVariant utf16Char(const char *bytes)
{
    return QChar(qFromLittleEndian<quint16>(bytes));
}

CVariant character(const char *bytes)
{
    return *bytes;
}

struct RawType
{
    NTypes::ETypes type;
    int bytes;
    CVariant (*read)(const char *bytes);
};

constexpr RawType kRawTypes[] = {
    {NTypes::TYPE_U8, 1, &integer<quint8>},
    {NTypes::TYPE_I8, 1, &integer<qint8>},
    {NTypes::TYPE_U16, 2, &integer<quint16>},
    {NTypes::TYPE_I16, 2, &integer<qint16>},
    {NTypes::TYPE_U32, 4, &integer<quint32>},
    {NTypes::TYPE_I32, 4, &integer<qint32>},
    {NTypes::TYPE_F32, 4, &floating<float, quint32>},
    {NTypes::TYPE_U64, 8, &integer<quint64>},
    {NTypes::TYPE_I64, 8, &integer<qint64>},
    {NTypes::TYPE_F64, 8, &floating<double, quint64>},
    {NTypes::TYPE_STRING32, 64, &fixedString<32>},
    {NTypes::TYPE_CHARSTR64, 64, &charString<64>},
    {NTypes::TYPE_STRING128, 256, &fixedString<128>},
    {NTypes::TYPE_CHARSTR256, 256, &charString<256>},
    {NTypes::TYPE_DATETIME, 8, &dateTime},
    {NTypes::TYPE_STRING64, 128, &fixedString<64>},
    {NTypes::TYPE_CHARSTR128, 128, &charString<128>},
    {NTypes::TYPE_UTF16CHAR, 2, &utf16Char},
    {NTypes::TYPE_CHAR, 1, &character},
};

} // namespace

CVariant fromRawBytes(NTypes::ETypes type, const QByteArray &bytes)
{
    for (const RawType &row : kRawTypes) {
        if (row.type == type && bytes.size() >= row.bytes)
            return row.read(bytes.constData());
    }
    return CVariant();
}
