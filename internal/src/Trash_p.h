#ifndef TRASH_P_H
#define TRASH_P_H

class QString;

//! \internal The user's trash on the desktop, for CDir::moveToTrash().
namespace Trash {

//! Moves \a path into the trash and returns the result of CDir::moveToTrash().
int move(const QString &path);

} // namespace Trash

#endif // TRASH_P_H
