#ifndef VARIANTTYPES_P_H
#define VARIANTTYPES_P_H

#include "CString128.h"
#include "CString32.h"
#include "CString64.h"
#include "NTypes.h"
#include "TypeTable_p.h"

#include <QByteArray>
#include <QChar>

#include <optional>
#include <type_traits>

/*!
    \internal
    What CVariant knows of each data type beside what TypeTable tells, as one list of rows that all
    its operations read.
*/
namespace VariantTypes {

enum class Kind { Integer, Floating, FixedString, Bytes, DateTime, Utf16Char };

/*!
    One data type: its code, its kind, and the type \a T that it has as content of a QVariant.
    Signedness, hexadecimal digits and bits follow from T and the bytes.
*/
template <NTypes::ETypes Code, Kind K, class T>
struct Row
{
    static constexpr NTypes::ETypes code = Code;
    static constexpr Kind kind = K;
    static constexpr int bytes = static_cast<int>(TypeTable::kRows[Code].bytes);
    static_assert(K == Kind::FixedString || K == Kind::Bytes || sizeof(T) == bytes);
    using Content = T;
};

template <class... Rows>
struct RowList
{
    /*!
        Returns \a f(row) for the row of \a code, or \a otherwise() if there is none. Inlined into
        each caller, where it becomes a switch: it is most of what reading a number takes.
    */
    template <class F, class G>
    Q_ALWAYS_INLINE static auto visit(NTypes::ETypes code, F &&f, G &&otherwise)
    {
        return visitFirst<F, G, Rows...>(code, f, otherwise);
    }

    //! Calls \a f with the rows in turn until it returns true, and returns whether it did.
    template <class F>
    static constexpr bool any(F &&f)
    {
        return (f(Rows()) || ...);
    }

private:
    template <class F, class G, class First, class... Rest>
    Q_ALWAYS_INLINE static auto visitFirst(NTypes::ETypes code, F &f, G &otherwise)
    {
        if (First::code == code)
            return f(First());
        if constexpr (sizeof...(Rest) > 0)
            return visitFirst<F, G, Rest...>(code, f, otherwise);
        else
            return otherwise();
    }
};

using Types = RowList<
    Row<NTypes::TYPE_U8, Kind::Integer, quint8>, Row<NTypes::TYPE_I8, Kind::Integer, signed char>,
    Row<NTypes::TYPE_U16, Kind::Integer, quint16>, Row<NTypes::TYPE_I16, Kind::Integer, qint16>,
    Row<NTypes::TYPE_U32, Kind::Integer, quint32>, Row<NTypes::TYPE_I32, Kind::Integer, qint32>,
    Row<NTypes::TYPE_F32, Kind::Floating, float>, Row<NTypes::TYPE_U64, Kind::Integer, quint64>,
    Row<NTypes::TYPE_I64, Kind::Integer, qint64>, Row<NTypes::TYPE_F64, Kind::Floating, double>,
    Row<NTypes::TYPE_STRING32, Kind::FixedString, CString32>,
    Row<NTypes::TYPE_CHARSTR64, Kind::Bytes, QByteArray>,
    Row<NTypes::TYPE_STRING128, Kind::FixedString, CString128>,
    Row<NTypes::TYPE_CHARSTR256, Kind::Bytes, QByteArray>,
    Row<NTypes::TYPE_DATETIME, Kind::DateTime, NTypes::tsDateTime>,
    Row<NTypes::TYPE_STRING64, Kind::FixedString, CString64>,
    Row<NTypes::TYPE_CHARSTR128, Kind::Bytes, QByteArray>,
    Row<NTypes::TYPE_UTF16CHAR, Kind::Utf16Char, QChar>,
    Row<NTypes::TYPE_CHAR, Kind::Bytes, QByteArray>>;

//! Returns whether the rows are those of the types that hold values; for static_assert.
constexpr bool haveAllTypes()
{
    for (const TypeTable::Row &type : TypeTable::kRows) {
        if (Types::any([&type](auto row) { return row.code == type.type; }) != type.holdsValues)
            return false;
    }
    return true;
}
static_assert(haveAllTypes());

//! Returns the kind of \a type; nothing for UNKNOWN, F80 and codes that are no type.
inline std::optional<Kind> kindOf(NTypes::ETypes type)
{
    return Types::visit(
        type, [](auto row) { return std::optional<Kind>(row.kind); },
        [] { return std::optional<Kind>(); });
}

//! Returns whether a value of \a type is a string or a character.
inline bool isText(NTypes::ETypes type)
{
    const auto kind = kindOf(type);
    return kind == Kind::FixedString || kind == Kind::Bytes || kind == Kind::Utf16Char;
}

template <Kind K>
constexpr bool isNumber = K == Kind::Integer || K == Kind::Floating;

} // namespace VariantTypes

#endif // VARIANTTYPES_P_H
