#ifndef OBJECTSTREAM_H
#define OBJECTSTREAM_H

#include "DriveObject.h"

#include <QVector>

class Console;

/*!
    \file ObjectStream.h
    Object lists as files of the QDataStream format, version Qt_5_15, big-endian, with
   floating-point numbers in double precision. The layout of format 1:

    | field         | Qt type  | content                                              |
    |---------------|----------|------------------------------------------------------|
    | magic number  | quint32  | 0x4b374f4c, "K7OL"                                   |
    | format        | quint32  | 1                                                    |
    | count         | quint32  | objects in the list                                  |
    | for each object:                                                                |
    | index         | quint16  |                                                      |
    | sub-index     | qint16   | 0..255, or -1 for none                               |
    | name          | QString  |                                                      |
    | unit          | qint32   | NUnits::EObjectUnit                                  |
    | value         | CVariant | in the stream layout of the class; the unit's type   |

    Nothing follows the last object.
*/

//! Writes \a objects to the file \a fileName, whole or not at all; reports a failure to \a console.
void writeObjectStream(const QVector<DriveObject> &objects, const QString &fileName,
                       Console &console);

/*!
    Returns the objects in the file \a fileName, up to the place where it ends too early or holds
    what a writer does not write; this is reported to \a console. Nothing if the file is no object
    stream of a known format.
*/
std::optional<QVector<DriveObject>> readObjectStream(const QString &fileName, Console &console);

#endif // OBJECTSTREAM_H
