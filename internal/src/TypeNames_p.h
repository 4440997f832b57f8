#ifndef TYPENAMES_P_H
#define TYPENAMES_P_H

#include "CodeTable_p.h"
#include "NTypes.h"

/*!
    \internal
    The text names of the data types: row i is type i.
*/
namespace TypeNames {

struct Row
{
    NTypes::ETypes type;
    QLatin1String name;
    bool holdsValues; //!< whether a value can have this type
};

constexpr Row kRows[] = {
    {NTypes::TYPE_UNKNOWN, CodeTable::name("UNKNOWN"), false},
    {NTypes::TYPE_U8, CodeTable::name("U8"), true},
    {NTypes::TYPE_I8, CodeTable::name("I8"), true},
    {NTypes::TYPE_U16, CodeTable::name("U16"), true},
    {NTypes::TYPE_I16, CodeTable::name("I16"), true},
    {NTypes::TYPE_U32, CodeTable::name("U32"), true},
    {NTypes::TYPE_I32, CodeTable::name("I32"), true},
    {NTypes::TYPE_F32, CodeTable::name("F32"), true},
    {NTypes::TYPE_U64, CodeTable::name("U64"), true},
    {NTypes::TYPE_I64, CodeTable::name("I64"), true},
    {NTypes::TYPE_F64, CodeTable::name("F64"), true},
    {NTypes::TYPE_F80, CodeTable::name("F80"), false},
    {NTypes::TYPE_STRING32, CodeTable::name("STRING32"), true},
    {NTypes::TYPE_CHARSTR64, CodeTable::name("CHARSTR64"), true},
    {NTypes::TYPE_STRING128, CodeTable::name("STRING128"), true},
    {NTypes::TYPE_CHARSTR256, CodeTable::name("CHARSTR256"), true},
    {NTypes::TYPE_DATETIME, CodeTable::name("DATETIME"), true},
    {NTypes::TYPE_STRING64, CodeTable::name("STRING64"), true},
    {NTypes::TYPE_CHARSTR128, CodeTable::name("CHARSTR128"), true},
    {NTypes::TYPE_UTF16CHAR, CodeTable::name("UTF16CHAR"), true},
    {NTypes::TYPE_CHAR, CodeTable::name("CHAR"), true},
};
static_assert(CodeTable::indexIsCode(kRows, &Row::type));

} // namespace TypeNames

#endif // TYPENAMES_P_H
