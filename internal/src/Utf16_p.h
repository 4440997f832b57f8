#ifndef UTF16_P_H
#define UTF16_P_H

#include <QString>
#include <QtEndian>

#include <cstddef>
#include <cstring>

/*!
    \internal
    Text in memory that holds UTF-16 units in host byte order, at any address.
*/
namespace Utf16 {

//! The units that are tested at a time.
constexpr int kWordUnits = sizeof(quint64) / sizeof(quint16);

//! Returns the \a Word from unit \a index of \a memory on, at any address.
template <class Word>
Word readAt(const void *memory, int index)
{
    constexpr std::ptrdiff_t kUnitBytes = sizeof(quint16);
    return qFromUnaligned<Word>(static_cast<const uchar *>(memory) + kUnitBytes * index);
}

inline quint64 wordAt(const void *memory, int index)
{
    return readAt<quint64>(memory, index);
}

inline quint16 unitAt(const void *memory, int index)
{
    return readAt<quint16>(memory, index);
}

/*!
    Returns whether one of the units of \a word is zero: only then does subtracting 1 from each unit
    set a top bit that was clear.
*/
inline bool hasZeroUnit(quint64 word)
{
    constexpr auto kOnes = Q_UINT64_C(0x0001000100010001);
    constexpr auto kTops = Q_UINT64_C(0x8000800080008000);
    return ((word - kOnes) & ~word & kTops) != 0;
}

//! Returns the units before the first zero unit among the \a units units at \a memory, or all.
inline int textLength(const void *memory, int units)
{
    int i = 0;
    while (i + kWordUnits <= units && !hasZeroUnit(wordAt(memory, i)))
        i += kWordUnits;
    while (i < units && unitAt(memory, i) != 0)
        ++i;
    return i;
}

/*!
    Compares the texts in two arrays of \a units units each, by unit: less than, equal to or greater
    than zero. Nothing behind a terminator is looked at.
*/
inline int compareTexts(const void *left, const void *right, int units)
{
    int i = 0;
    while (i + kWordUnits <= units && wordAt(left, i) == wordAt(right, i)
           && !hasZeroUnit(wordAt(left, i)))
        i += kWordUnits;
    for (; i < units; ++i) {
        const auto unit = unitAt(left, i);
        const int difference = unit - unitAt(right, i);
        if (difference != 0 || unit == 0)
            return difference;
    }
    return 0;
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
