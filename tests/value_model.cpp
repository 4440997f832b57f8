#include "CUnitParser.h"
#include "CVariant.h"

// The value model, linked without the rest of the library: it stands on Qt Core alone.

int main()
{
    const CVariant value(QStringLiteral("0x10"), CUnitParser::type(NUnits::UNIT_FAULT));
    const bool isText = CVariant(CString32(value.toStr())).toStr() == QLatin1String("16");
    const bool hasSize = 2 * CUnitParser::size(NUnits::UNIT_FAULT) == uint(value.toHex().size());
    return isText && hasSize ? 0 : 1;
}
