#ifndef OBJECTREPORT_H
#define OBJECTREPORT_H

#include "ObjectEdit.h"

class QTextStream;

//! How wide the cells of the table may be.
enum class Cells {
    Cut, //!< long values are cut, so that most rows fit a terminal
    Whole
};

//! Writes a table with a row for each of \a objects to \a out.
void printTable(const QVector<DriveObject> &objects, Cells cells, QTextStream &out);

//! Writes a line for each of \a edits to \a out: whether the value of the object changed.
void printEdits(const QVector<DriveObject> &objects, const QVector<Edit> &edits, QTextStream &out);

/*!
    Writes \a objects to \a out as a JSON array. An object of \a edits also has its value before the
    first edit as "oldValue" and, as "changed", whether an edit changed it.
*/
void printJson(const QVector<DriveObject> &objects, const QVector<Edit> &edits, QTextStream &out);

#endif // OBJECTREPORT_H
