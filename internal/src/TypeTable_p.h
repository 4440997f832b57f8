#ifndef TYPETABLE_P_H
#define TYPETABLE_P_H

#include "CodeTable_p.h"
#include "NTypes.h"

#include <QString>

/*!
    \internal
    What there is to know about each data type: row i is type i. What a value of it holds is told by
    the rows of VariantTypes.
*/
namespace TypeTable {

struct Row
{
    NTypes::ETypes type;
    QLatin1String name;
    unsigned int bytes; //!< of a value on the device
    bool holdsValues;   //!< whether a CVariant can have this type
};

constexpr Row kRows[] = {
    {NTypes::TYPE_UNKNOWN, CodeTable::name("UNKNOWN"), 0, false},
    {NTypes::TYPE_U8, CodeTable::name("U8"), 1, true},
    {NTypes::TYPE_I8, CodeTable::name("I8"), 1, true},
    {NTypes::TYPE_U16, CodeTable::name("U16"), 2, true},
    {NTypes::TYPE_I16, CodeTable::name("I16"), 2, true},
    {NTypes::TYPE_U32, CodeTable::name("U32"), 4, true},
    {NTypes::TYPE_I32, CodeTable::name("I32"), 4, true},
    {NTypes::TYPE_F32, CodeTable::name("F32"), 4, true},
    {NTypes::TYPE_U64, CodeTable::name("U64"), 8, true},
    {NTypes::TYPE_I64, CodeTable::name("I64"), 8, true},
    {NTypes::TYPE_F64, CodeTable::name("F64"), 8, true},
    {NTypes::TYPE_F80, CodeTable::name("F80"), 10, false},
    {NTypes::TYPE_STRING32, CodeTable::name("STRING32"), 64, true},
    {NTypes::TYPE_CHARSTR64, CodeTable::name("CHARSTR64"), 64, true},
    {NTypes::TYPE_STRING128, CodeTable::name("STRING128"), 256, true},
    {NTypes::TYPE_CHARSTR256, CodeTable::name("CHARSTR256"), 256, true},
    {NTypes::TYPE_DATETIME, CodeTable::name("DATETIME"), 8, true},
    {NTypes::TYPE_STRING64, CodeTable::name("STRING64"), 128, true},
    {NTypes::TYPE_CHARSTR128, CodeTable::name("CHARSTR128"), 128, true},
    {NTypes::TYPE_UTF16CHAR, CodeTable::name("UTF16CHAR"), 2, true},
    {NTypes::TYPE_CHAR, CodeTable::name("CHAR"), 1, true},
};
static_assert(CodeTable::indexIsCode(kRows, &Row::type));

//! Returns the row of \a type, or null for a code that is no type.
constexpr const Row *find(NTypes::ETypes type)
{
    return CodeTable::find(kRows, type);
}

//! Returns the name of \a type, or a null string for a code that is no type.
inline QString name(NTypes::ETypes type)
{
    const Row *row = find(type);
    return row ? QString(row->name) : QString();
}

} // namespace TypeTable

#endif // TYPETABLE_P_H
