#ifndef VARIANTTYPES_P_H
#define VARIANTTYPES_P_H

#include "CString128.h"
#include "CString32.h"
#include "CString64.h"
#include "NTypes.h"

#include <QByteArray>
#include <QChar>
#include <QDataStream>
#include <QVariant>

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
    //! Calls \a f with the rows in turn until it returns true, and returns whether it did.
    template <class F>
    static bool any(F &&f)
    {
        return (f(Rows()) || ...);
    }

    //! Calls \a f with the row of \a code, and returns whether there is one.
    template <class F>
    static bool visit(NTypes::ETypes code, F &&f)
    {
        return ((Rows::code == code && (f(Rows()), true)) || ...);
    }
};

using Types = RowList<
    Row<NTypes::TYPE_U8, Kind::Integer, quint8>,
    Row<NTypes::TYPE_I8, Kind::Integer, signed char>,
    Row<NTypes::TYPE_U16, Kind::Integer, quint16>,
    Row<NTypes::TYPE_I16, Kind::Integer, qint16>,
    Row<NTypes::TYPE_U32, Kind::Integer, quint32>,
    Row<NTypes::TYPE_I32, Kind::Integer, qint32>,
    Row<NTypes::TYPE_F32, Kind::Floating, float>,
    Row<NTypes::TYPE_U64, Kind::Integer, quint64>,
    Row<NTypes::TYPE_I64, Kind::Integer, qint64>,
    Row<NTypes::TYPE_F64, Kind::Floating, double>,
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
    std::optional<Kind> kind;
    Types::visit(type, [&](auto row) { kind = row.kind; });
    return kind;
}

//! Returns whether a value of \a type is a string or a character.
inline bool isText(NTypes::ETypes type)
{
    const auto kind = kindOf(type);
    return kind == Kind::FixedString || kind == Kind::Bytes || kind == Kind::Utf16Char;
}

template <Kind K>
constexpr bool isNumber = K == Kind::Integer || K == Kind::Floating;

inline void save(QDataStream &out, const NTypes::tsDateTime &value)
{
    out << value.time.hundredths << value.time.seconds << value.time.minutes << value.time.hours
        << value.date.day << value.date.month << value.date.year;
}

inline void load(QDataStream &in, NTypes::tsDateTime &value)
{
    in >> value.time.hundredths >> value.time.seconds >> value.time.minutes >> value.time.hours
        >> value.date.day >> value.date.month >> value.date.year;
}

template <class String>
void save(QDataStream &out, const String &value)
{
    out << value;
}

template <class String>
void load(QDataStream &in, String &value)
{
    in >> value;
}

//! Registers \a T, with its stream functions, and returns its meta-type id.
template <class T>
int registerContent()
{
    const int id = qMetaTypeId<T>();
    QMetaType::registerStreamOperators(
        id, [](QDataStream &out, const void *data) { save(out, *static_cast<const T *>(data)); },
        [](QDataStream &in, void *data) { load(in, *static_cast<T *>(data)); });
    return id;
}

//! Returns the meta-type id of \a T; those that are not Qt's own are registered on first use.
template <class T>
int contentId()
{
    if constexpr (QMetaTypeId2<T>::IsBuiltIn)
        return qMetaTypeId<T>();
    else {
        static const int id = registerContent<T>();
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
    return static_cast<const T *>(data.is_shared ? data.data.shared->ptr : &data.data);
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
QVariant toContent(const T &content)
{
    return QVariant(contentId<T>(), &content);
}

} // namespace VariantTypes

#endif // VARIANTTYPES_P_H
