#ifndef VARIANTCONTENT_P_H
#define VARIANTCONTENT_P_H

#include "CString128.h"
#include "CString32.h"
#include "CString64.h"
#include "NTypes.h"
#include "VariantTypes_p.h"

#include <QVariant>

#include <new>
#include <type_traits>

/*!
    \internal
    Typed access to the content of a QVariant.
*/
namespace VariantContent {

using VariantTypes::isNumber;
using VariantTypes::Types;

//! QVariant keeps these bits of a meta-type id.
constexpr quint32 kIdMask = (1U << 30) - 1;

//! Returns the meta-type id of \a T; those that are not Qt's own are registered on first use.
template <class T>
int idOf()
{
    if constexpr (QMetaTypeId2<T>::IsBuiltIn)
        return qMetaTypeId<T>();
    else {
        static const int id = qMetaTypeId<T>();
        return id;
    }
}

//! Registers all types that a stream may name.
inline void registerTypes()
{
    idOf<CString32>();
    idOf<CString64>();
    idOf<CString128>();
    idOf<NTypes::tsDateTime>();
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
    if (static_cast<int>(data.type) != idOf<T>())
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
    if (!converted.convert(idOf<T>()))
        return T();
    return *contentOf<T>(converted);
}

//! Returns a QVariant that holds \a content as a \a T.
template <class T>
std::enable_if_t<!std::is_arithmetic_v<T>, QVariant> toContent(const T &content)
{
    return QVariant(idOf<T>(), &content);
}

//! \overload Does the same for a number without the way through Qt's table of types.
template <class T>
std::enable_if_t<std::is_arithmetic_v<T>, QVariant> toContent(T content)
{
    QVariant value;
    QVariant::DataPtr &data = value.data_ptr();
    data.type = kIdMask & static_cast<uint>(idOf<T>());
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

} // namespace VariantContent

#endif // VARIANTCONTENT_P_H
