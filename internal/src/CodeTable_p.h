#ifndef CODETABLE_P_H
#define CODETABLE_P_H

#include <QLatin1String>

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

} // namespace CodeTable

#endif // CODETABLE_P_H
