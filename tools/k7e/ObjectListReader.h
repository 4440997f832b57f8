#ifndef OBJECTLISTREADER_H
#define OBJECTLISTREADER_H

#include "DriveObject.h"

#include <QVector>

class Console;

/*!
    Reads the object list in the file \a fileName and returns its objects; nothing if the file
   cannot be read.

    The list is comma-separated text in UTF-8, an object a line:

        index,name,unit,bytes
        0x6041,Statusword,UNIT_U16,3702
        0x1018:01,"Vendor, number",UNIT_U32,78563412

    The index is hexadecimal, with or without a sub-index. The bytes are the value as it lies on the
    device, low byte first, two digits a byte; a unit of no bytes has none. Blanks around a field do
    not count. A field in double quotes may hold commas, and quotes when they are doubled; it ends
   on its line. Blank lines, lines that begin with "#" and the line of column names at the beginning
    are passed over.

    Each line with a fault is reported to \a console as "FILE:LINE: fault" and left out.
*/
std::optional<QVector<DriveObject>> readObjectList(const QString &fileName, Console &console);

#endif // OBJECTLISTREADER_H
