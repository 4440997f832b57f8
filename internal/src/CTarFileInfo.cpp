#include "CTarFileInfo.h"

CTarFileInfo::CTarFileInfo()
{
    clear();
}

void CTarFileInfo::clear()
{
    type = TYPE_UNKNOWN;
    name = QLatin1String("");
    linkName = QLatin1String("");
    size = 0;
    position = 0;
}
