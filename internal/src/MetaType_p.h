#ifndef METATYPE_P_H
#define METATYPE_P_H

#include <QDataStream>
#include <QMetaType>

/*!
    \internal
    Makes the types of the library known to Qt.
*/
namespace MetaType {

/*!
    Registers \a T as \a name, together with the stream functions \a save and \a load, and returns
    its id. A program asks for the id to register functions of its own, so that these are there
    first and are replaced. To look whether there are some already would call them.
*/
template <class T>
int registered(const char *name, QMetaType::SaveOperator save, QMetaType::LoadOperator load)
{
    T any; // any address keeps Qt from asking for the id that is being made
    const int id = qRegisterMetaType<T>(name, &any);
    QMetaType::registerStreamOperators(id, save, load);
    return id;
}

//! \overload Takes the stream operators of \a T.
template <class T>
int registered(const char *name)
{
    return registered<T>(
        name, [](QDataStream &out, const void *data) { out << *static_cast<const T *>(data); },
        [](QDataStream &in, void *data) { in >> *static_cast<T *>(data); });
}

} // namespace MetaType

#endif // METATYPE_P_H
