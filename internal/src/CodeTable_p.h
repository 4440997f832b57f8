#ifndef CODETABLE_P_H
#define CODETABLE_P_H

#include <QChar>
#include <QLatin1String>
#include <QString>

#include <cstddef>

/*!
    \internal
    Constant tables whose row i describes code i.
*/
namespace CodeTable {

//! Returns a name for a row; QLatin1String itself measures a literal at run time with some
//! compilers.
template <std::size_t N>
constexpr QLatin1String name(const char (&text)[N])
{
    return QLatin1String(text, static_cast<int>(N - 1));
}

//! Returns whether the member \a code of each row is the row's index; for static_assert.
template <class Row, std::size_t Rows, class Code>
constexpr bool indexIsCode(const Row (&rows)[Rows], Code Row::*code)
{
    for (std::size_t i = 0; i < Rows; ++i) {
        if (rows[i].*code != static_cast<Code>(i))
            return false;
    }
    return true;
}

/*!
    Returns the row of \a code, or null for any other code. The comparison is unsigned: a negative
    code is as unknown as one behind the end.
*/
template <class Row, std::size_t Rows, class Code>
constexpr const Row *find(const Row (&rows)[Rows], Code code)
{
    const auto index = static_cast<unsigned int>(code);
    return index < Rows ? &rows[index] : nullptr;
}

/*!
    Finds the row of a name: an open hash table that is made at compile time and refers to the rows.
*/
template <class Row, std::size_t Rows>
class NameIndex
{
public:
    //! Keeps a pointer to \a rows. The member \a name of each is what it is found by.
    constexpr NameIndex(const Row (&rows)[Rows], QLatin1String Row::*name)
        : mRows(rows)
        , mName(name)
    {
        for (std::size_t row = 0; row < Rows; ++row) {
            const QLatin1String text = rows[row].*name;
            std::size_t slot = slotOf(text.data(), text.size());
            while (mSlots[slot] != 0)
                slot = (slot + 1) % kSlots;
            mSlots[slot] = static_cast<unsigned char>(row + 1);
        }
    }

    //! Returns the row named \a name, compared exactly, or null.
    const Row *find(const QString &name) const
    {
        std::size_t slot = slotOf(name.constData(), name.size());
        for (; mSlots[slot] != 0; slot = (slot + 1) % kSlots) {
            const Row &row = mRows[mSlots[slot] - 1];
            if (row.*mName == name)
                return &row;
        }
        return nullptr;
    }

private:
    static constexpr std::size_t kSlots = 512; // so many that most names are found at once
    static_assert(2 * Rows <= kSlots && Rows < 256);

    static constexpr unsigned int unitOf(char letter) { return static_cast<uchar>(letter); }
    static constexpr unsigned int unitOf(QChar letter) { return letter.unicode(); }

    // Names differ most at their ends and in their lengths; with these numbers few names share a
    // slot.
    template <class Letter>
    static constexpr std::size_t slotOf(const Letter *letters, int size)
    {
        constexpr int kLetters = 6;
        auto hash = static_cast<unsigned int>(size);
        for (int i = size > kLetters ? size - kLetters : 0; i < size; ++i)
            hash = hash * 37 + unitOf(letters[i]);
        return (hash ^ hash >> 9) % kSlots;
    }

    const Row *mRows;
    QLatin1String Row::*mName;
    unsigned char mSlots[kSlots] = {}; // the index of a row plus 1; 0: none
};

} // namespace CodeTable

#endif // CODETABLE_P_H
