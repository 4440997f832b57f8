#ifndef TREE_P_H
#define TREE_P_H

#include <QDir>
#include <QString>

#include <vector>

//! \internal Directory trees as CDir lists, copies and removes them.
namespace Tree {

//! What a listing of a tree shows. Contract: no hidden entries, unlike CDir::toDirFilter().
constexpr QDir::Filters kListed = QDir::Dirs | QDir::Files | QDir::Drives | QDir::NoDotAndDotDot;

//! What a copy of a tree makes: a directory, or a copy of a file.
struct Entry
{
    QString name; //!< relative to the root of the tree
    bool isDirectory;
};

/*!
    Appends what is to be copied of the tree under the directory \a root to \a entries, each
    directory before its content, and returns whether that is all of it. Hidden entries, broken
    links and what is neither a file nor a directory are no part of it; a link to a directory is one
    without content. Where there is no directory, there is nothing to copy.

    It is not all if a directory cannot be opened or read to its end, if it cannot be told where a
    link leads, and for a name that no QString gives. One directory is open at a time.
*/
bool list(const QString &root, std::vector<Entry> &entries);

/*!
    Removes the directory \a path with all its content, or the symbolic link \a path, and returns
    whether it is gone; see CDir::removeDirectoryRecursive().

    Entries are reached by their names in an open directory and never through a link, so that
    nothing outside the tree is touched however the tree changes meanwhile. Four descriptors do at
    any depth.
*/
bool remove(const QString &path);

} // namespace Tree

#endif // TREE_P_H
