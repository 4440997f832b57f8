#ifndef FILESYSTEM_P_H
#define FILESYSTEM_P_H

#include <QString>

//! \internal What the classes do to the file system, beside that which Qt does in the same way.
namespace FileSystem {

/*!
    Makes the directory \a path with all missing parents, gives it, but not them, the permissions 775
    whatever the umask is, and returns whether it is there. A directory that was there already keeps
    its permissions, and so does what stands in the way.
*/
bool makeDirectory(const QString &path);

/*!
    Returns \a path without ".." in it, as an absolute path, or \a path as it is if it has none. Behind
    what exists, ".." leads where the system goes, through symbolic links too; otherwise it is taken by
    its text. Qt takes it by its text in some functions and not in others.
*/
QString resolved(const QString &path);

//! Returns whether there is an entry \a path, a broken link too.
bool hasEntry(const QString &path);

//! Renames \a from to \a to by the system's own call, which copies nothing, follows no link and logs
//! nothing; returns whether that went well.
bool renameEntry(const QString &from, const QString &to);

} // namespace FileSystem

#endif // FILESYSTEM_P_H
