#ifndef FILEERROR_H
#define FILEERROR_H

class Console;
class QFile;
class QString;

//! Reports what is wrong with the file \a fileName to \a console, as "FILE: text".
void reportFileError(const QString &fileName, const QString &text, Console &console);

//! Opens \a file for reading and returns whether it is open; if not, \a console is told so.
bool openInput(QFile &file, Console &console);

#endif // FILEERROR_H
