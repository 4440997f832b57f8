#ifndef UTF16_P_H
#define UTF16_P_H

#include <QString>
#include <QtEndian>

#include <cstring>

/*!
    \internal
    Text in memory that holds UTF-16 units in host byte order, at any address.
*/
namespace Utf16 {

/*!
    Returns the units before the first zero unit among the \a units units at \a memory, or all.

    Four units are tested at a time: subtracting 1 from each lane of a word sets the top bit of a
    lane that was clear before only in a word that holds a zero lane.
*/
inline int textLength(const void *memory, int units)
{
    constexpr quint64 kOnes = Q_UINT64_C(0x0001000100010001);
    constexpr quint64 kTops = Q_UINT64_C(0x8000800080008000);
    const auto *bytes = static_cast<const uchar *>(memory);
    int i = 0;
    for (; i + 4 <= units; i += 4) {
        const auto word = qFromUnaligned<quint64>(bytes + 2 * i);
        if (((word - kOnes) & ~word & kTops) != 0)
            break;
    }
    while (i < units && qFromUnaligned<quint16>(bytes + 2 * i) != 0)
        ++i;
    return i;
}

//! Returns that text, its units verbatim: no byte order mark is interpreted.
inline QString text(const void *memory, int units)
{
    const int length = textLength(memory, units);
    QString result(length, Qt::Uninitialized);
    if (length > 0)
        std::memcpy(result.data(), memory, static_cast<std::size_t>(length) * sizeof(QChar));
    return result;
}

} // namespace Utf16

#endif // UTF16_P_H
