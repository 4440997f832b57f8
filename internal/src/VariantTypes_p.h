#ifndef VARIANTTYPES_P_H
#define VARIANTTYPES_P_H

#include "CString128.h"
#include "CString32.h"
#include "CString64.h"
#include "NTypes.h"

#include <QByteArray>
#include <QChar>
#include <QVariant>

#include <new>
#include <optional>
#include <type_traits>

/*!
    \internal
    What CVariant knows of each data type, as one list of rows that all its operations read, and
    typed access to the content of a QVariant.
*/
namespace VariantTypes {

enum class Kind { Integer, Floating, FixedString, Bytes, DateTime, Utf16Char };

/*!
    One data type: its code, its kind, the type \a T that it has as content of a QVariant, and the
    bytes of a value. Signedness, hexadecimal digits and bits follow from T and the bytes.
*/
template <NTypes::ETypes Code, Kind K, class T, int Bytes = sizeof(T)>
struct Row
{
    static constexpr NTypes::ETypes code = Code;
    static constexpr Kind kind = K;
    static constexpr int bytes = Bytes;
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
    Row<NTypes::TYPE_STRING32, Kind::FixedString, CString32, 64>,
    Row<NTypes::TYPE_CHARSTR64, Kind::Bytes, QByteArray, 64>,
    Row<NTypes::TYPE_STRING128, Kind::FixedString, CString128, 256>,
    Row<NTypes::TYPE_CHARSTR256, Kind::Bytes, QByteArray, 256>,
    Row<NTypes::TYPE_DATETIME, Kind::DateTime, NTypes::tsDateTime>,
    Row<NTypes::TYPE_STRING64, Kind::FixedString, CString64, 128>,
    Row<NTypes::TYPE_CHARSTR128, Kind::Bytes, QByteArray, 128>,
    Row<NTypes::TYPE_UTF16CHAR, Kind::Utf16Char, QChar>,
    Row<NTypes::TYPE_CHAR, Kind::Bytes, QByteArray, 1>>;

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

//! QVariant keeps these bits of a meta-type id.
constexpr quint32 kContentIdMask = (1U << 30) - 1;

//! Returns the meta-type id of \a T; those that are not Qt's own are registered on first use.
template <class T>
int contentId()
{
    if constexpr (QMetaTypeId2<T>::IsBuiltIn)
        return qMetaTypeId<T>();
    else {
        static const int id = qMetaTypeId<T>();
        return id;
    }
}

//! Registers all types that a stream may name.
inline void registerContents()
{
    contentId<CString32>();
    contentId<CString64>();
    contentId<CString128>();
    contentId<NTypes::tsDateTime>();
}

/*!
    Returns the content of \a value if that is a \a T, else null.

    The members of QVariant are read directly: userType() and constData() are calls, and this is
    what each conversion and comparison of a number mostly consists of.
*/
template <class T>
const T *contentOf(const QVariant &value)
{
    const QVariant::DataPtr &data = value.data_ptr();
    if (static_cast<int>(data.type) != contentId<T>())
        return nullptr;
    // Numbers are never shared.
    const bool isShared = !std::is_arithmetic_v<T> && data.is_shared;
    return static_cast<const T *>(isShared ? data.data.shared->ptr : &data.data);
}

//! Returns the content of \a value converted to \a T; 0, empty or the null record if it does not.
template <class T>
T convertedTo(const QVariant &value)
{
    if (const T *content = contentOf<T>(value))
        return *content;
    QVariant converted(value);
    if (!converted.convert(contentId<T>()))
        return T();
    return *contentOf<T>(converted);
}

//! Returns a QVariant that holds \a content as a \a T.
template <class T>
std::enable_if_t<!std::is_arithmetic_v<T>, QVariant> toContent(const T &content)
{
    return QVariant(contentId<T>(), &content);
}

//! \overload Does the same for a number without the way through Qt's table of types.
template <class T>
std::enable_if_t<std::is_arithmetic_v<T>, QVariant> toContent(T content)
{
    QVariant value;
    QVariant::DataPtr &data = value.data_ptr();
    data.type = kContentIdMask & static_cast<uint>(contentId<T>());
    data.is_null = false;
    new (&data.data) T(content);
    return value;
}

//! Returns a bit for the meta-type id of each type that is a number; all of them are below 64.
constexpr quint64 numberIds()
{
    quint64 ids = 0;
    Types::any([&ids](auto row) {
        if constexpr (isNumber<row.kind>)
            ids |= Q_UINT64_C(1) << qMetaTypeId<typename decltype(row)::Content>();
        return false;
    });
    return ids;
}

/*!
    Returns whether \a value holds a number. Its members alone are then the whole value: it is never
    shared, and there is nothing to destroy.
*/
inline bool isNumberContent(const QVariant &value)
{
    constexpr quint64 kIds = numberIds();
    const QVariant::DataPtr &data = value.data_ptr();
    return data.type < 64 && (kIds >> data.type & 1) != 0;
}

//! Returns a copy of \a value; numbers are copied in place.
inline QVariant copyOf(const QVariant &value)
{
    const auto copyNumber = [](const QVariant &number) {
        QVariant copy;
        copy.data_ptr() = number.data_ptr();
        return copy;
    };
    return Q_LIKELY(isNumberContent(value)) ? copyNumber(value) : QVariant(value);
}

} // namespace VariantTypes

#endif // VARIANTTYPES_P_H
