#ifndef FILESYSTEM_P_H
#define FILESYSTEM_P_H

#include <QByteArray>
#include <QString>

#include <optional>

//! \internal What the classes do to the file system, beside that which Qt does in the same way.
namespace FileSystem {

//! Returns \a path as the system has it; empty, which names nothing, if it holds a zero or what
//! file names cannot express.
QByteArray nativeName(const QString &path);

/*!
    Makes the directory \a path with all missing parents, and returns whether it is there. If this
    call made it, it gets the permissions 775 whatever the umask is; its parents do not, and neither
    does what was there already.
*/
bool makeDirectory(const QString &path);

/*!
    Returns \a path without ".." in it, as an absolute path, or \a path as it is if it has none.
    ".." leads where the system goes, through symbolic links too; only behind what does not exist is
    it taken by its text. Where the system would not go, and for what nativeName() does not express,
    the result is null. What names a directory by its end, "/", "." or "..", ends in "/".

    Qt takes ".." by its text in some functions and not in others.
*/
QString resolved(const QString &path);

//! Returns 0 if \a path leads to something, or else the system's error.
int lookUp(const QString &path);

//! Returns whether the \a error of lookUp() says that there is nothing, or a broken link. Others
//! may hide what is there.
bool saysMissing(int error);

/*!
    Returns whether there is an entry \a path, a broken link too; nothing where that cannot be told.
    A name that is too long is none.
*/
std::optional<bool> hasEntry(const QString &path);

//! What became of a renaming.
enum class Renaming { Done, Taken, Failed };

/*!
    Renames \a from to \a to in one step that replaces nothing: if there is an entry \a to, it is
    Taken. Copies nothing, follows no link and logs nothing. On a file system that cannot do so in
    one step, a look comes before it.
*/
Renaming renameNew(const QString &from, const QString &to);

} // namespace FileSystem

#endif // FILESYSTEM_P_H
