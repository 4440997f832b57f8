#ifndef TYPENAMES_P_H
#define TYPENAMES_P_H

#include "CodeTable_p.h"
#include "NTypes.h"

#include <QLatin1String>

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
    {NTypes::TYPE_UNKNOWN, QLatin1String("UNKNOWN"), false},
    {NTypes::TYPE_U8, QLatin1String("U8"), true},
    {NTypes::TYPE_I8, QLatin1String("I8"), true},
    {NTypes::TYPE_U16, QLatin1String("U16"), true},
    {NTypes::TYPE_I16, QLatin1String("I16"), true},
    {NTypes::TYPE_U32, QLatin1String("U32"), true},
    {NTypes::TYPE_I32, QLatin1String("I32"), true},
    {NTypes::TYPE_F32, QLatin1String("F32"), true},
    {NTypes::TYPE_U64, QLatin1String("U64"), true},
    {NTypes::TYPE_I64, QLatin1String("I64"), true},
    {NTypes::TYPE_F64, QLatin1String("F64"), true},
    {NTypes::TYPE_F80, QLatin1String("F80"), false},
    {NTypes::TYPE_STRING32, QLatin1String("STRING32"), true},
    {NTypes::TYPE_CHARSTR64, QLatin1String("CHARSTR64"), true},
    {NTypes::TYPE_STRING128, QLatin1String("STRING128"), true},
    {NTypes::TYPE_CHARSTR256, QLatin1String("CHARSTR256"), true},
    {NTypes::TYPE_DATETIME, QLatin1String("DATETIME"), true},
    {NTypes::TYPE_STRING64, QLatin1String("STRING64"), true},
    {NTypes::TYPE_CHARSTR128, QLatin1String("CHARSTR128"), true},
    {NTypes::TYPE_UTF16CHAR, QLatin1String("UTF16CHAR"), true},
    {NTypes::TYPE_CHAR, QLatin1String("CHAR"), true},
};
static_assert(CodeTable::indexIsCode(kRows, &Row::type));

} // namespace TypeNames

#endif // TYPENAMES_P_H
