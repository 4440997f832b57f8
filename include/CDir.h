#ifndef CDIR_H
#define CDIR_H

#include "Nk7eGlobal.h"
#include "k7eCoreExport.h"

#include <QDir>
#include <QFileInfoList>
#include <QString>
#include <QStringList>

#include <functional>

/*!
    Copies, lists and removes files and directories, and moves them to the trash.

    Failures are told by the result; where it is said, a diagnostic goes to the standard output too,
    with a line break in front and none behind. Nothing is undone after a failure. What cannot be
    told, for lack of rights or after an error of the disk, counts neither as there nor as gone.

    A directory that is made gets the permissions 775, its missing parents those that the umask
    leaves. ".." in the path of what is made leads where the system goes, through symbolic links
    too; behind a directory that does not exist it is taken by its text.

    The walks of trees go through sub-directories in the order of the file system, do not follow
    symbolic links, and leave out hidden entries, broken links and what is neither a file nor a
    directory.
*/
class K7ECORE_EXPORT CDir
{
public:
    //! What moveToTrash() returns; names that are additions.
    enum ETrashResult : int {
        TRASH_MOVED = 0,
        TRASH_FAILED = 1,       //!< there is no trash directory, or the move failed
        TRASH_NO_SUCH_PATH = 10 //!< there is a trash directory, but nothing to move
    };

    CDir() = delete;

    //! \name Removing
    //! A symbolic link at the end of a path is never followed.
    //! @{

    //! Removes the file \a path, or the symbolic link, and returns whether that went well.
    static bool removeFile(const QString &path);
    //! Removes the empty directory \a path and returns whether that went well. A relative path is
    //! taken from the system's temporary directory.
    static bool removeDirectory(const QString &path);
    /*!
        Removes the directory \a path with all its content, hidden entries too, and returns whether
        it is gone; a symbolic link alone. True where there is no directory: nothing is there, or a
        file, which stays. False if the system cannot tell, and for what is never removed: an empty
        path, "/", and a path that ends in "." or "..".

        Goes on after a failure, so that as much as possible is removed. Nothing is reached through
        a symbolic link in the tree, also if the tree changes meanwhile; no permissions are changed.
        A kill in between leaves the rest.
    */
    static bool removeDirectoryRecursive(const QString &path);
    /*!
        Removes the file or, as removeDirectory() does, the empty directory \a path, and returns
        whether it does not exist afterwards, as a broken link does not; false if the system cannot
        tell. On failure prints the path; for what is no file also the paths of the tree under it.

        Contract: for a path that does not exist the diagnostics are printed and the result is true.
        Callers rely on it.
    */
    static bool removeFileOrDirectory(const QString &path);
    //! Calls removeFileOrDirectory() for all \a paths from the last to the first, so that what
    //! listFilesAndDirectories() gives is removed; returns whether all went well.
    static bool removeFilesByPathList(const QStringList &paths);
    //! @}

    //! \name Copying
    //! @{

    //! Copies the file \a source, or the one that a link leads to, to \a target, whose directory is
    //! made if it is missing, and returns whether that went well; an existing target is a failure,
    //! and so is a source that is no regular file. On failure prints the target. A file without a
    //! size of its own, as in /proc, may come out empty; one that becomes a pipe meanwhile is
    //! waited for. A kill in between leaves no part of a target, but maybe one with the permissions
    //! 600, or a file "qt_temp." and six letters beside it.
    static bool copyFile(const QString &source, const QString &target);
    /*!
        Copies the file \a source to \a target, as copyFile() does, but in the place of what is
        there, and returns whether that went well.

        Contract: an existing target is first renamed to "~" and its name, which replaces nothing.
        If that fails, as it does if the name is taken, nothing changes and the result is true;
        after it the old content is removed even if the copy fails, so that a target that is the
        source is lost; only a directory stays, under its new name. Callers rely on it.

        A kill in between leaves the old content under the name with "~", with or without a new
        target. As long as it is there, a call that finds a target changes nothing and returns true.
    */
    static bool copyFileF(const QString &source, const QString &target);
    //! Makes the directory \a target if it is missing, and returns whether it is there; \a source
    //! is not used. On failure prints the target.
    static bool copyDirectory(const QString &source, const QString &target);
    /*!
        Copies the tree under the directory \a source into \a target, up to the first failure, and
        returns whether all was copied. Links to files become files and links to directories empty
        directories. A tree may be copied into itself. If nothing is there to copy, no target is
        made; an empty target is refused.

        If a directory of the source cannot be read to its end, or a name there cannot be decoded,
        nothing is copied and the result is false. A kill in between leaves what was copied; each
        file is there whole or not at all.
    */
    static bool copyDirectoryRecursive(const QString &source, const QString &target);
    /*!
        The same, calling \a progress before each entry with the number of entries that are done and
        the number of all. If it returns false, the copy ends there and returns false.
    */
    static bool copyDirectoryRecursive(const QString &source, const QString &target,
                                       const std::function<bool(int done, int total)> &progress);
    //! @}

    //! \name Listing
    //! @{

    /*!
        Returns \a path relative to the directory \a basePath; a null string if both are equal, or
        if the text of \a path does not begin with that of \a basePath.

        Contract: the texts are compared, so that "/a/b" and "/a/bc" give "../bc". Callers rely on
        it.
    */
    Q_REQUIRED_RESULT static QString getRelativeSubPath(const QString &basePath,
                                                        const QString &path);
    //! Returns the flags of \a filter, hidden entries included; for an unknown one no kind of
    //! entry.
    Q_REQUIRED_RESULT static QDir::Filters toDirFilter(Nk7eGlobal::EDirFilter filter);
    //! Returns the entries of the directory \a path that match one of the wildcards \a nameFilters,
    //! or all if there are none, and \a filters; not sorted.
    Q_REQUIRED_RESULT static QFileInfoList
    entryInfoList(const QString &path, const QStringList &nameFilters, QDir::Filters filters);
    //! \overload
    Q_REQUIRED_RESULT static QFileInfoList entryInfoList(const QString &path,
                                                         const QStringList &nameFilters,
                                                         Nk7eGlobal::EDirFilter filter);
    //! Returns the entries of the directory \a path that match \a filter and whose names are not
    //! among \a excludedNames; not sorted.
    Q_REQUIRED_RESULT static QFileInfoList entryInfoList(const QString &path,
                                                         Nk7eGlobal::EDirFilter filter,
                                                         const QStringList &excludedNames);
    //! Returns the entries of the tree under \a path, as entryInfoList() does; hidden ones too if
    //! \a filters has them.
    Q_REQUIRED_RESULT static QFileInfoList entryInfoListRecursive(const QString &path,
                                                                  const QStringList &nameFilters,
                                                                  QDir::Filters filters);
    //! \overload
    Q_REQUIRED_RESULT static QFileInfoList entryInfoListRecursive(const QString &path,
                                                                  const QStringList &nameFilters,
                                                                  Nk7eGlobal::EDirFilter filter);
    //! Returns \a path and then the paths of the tree under it, each directory before its content.
    Q_REQUIRED_RESULT static QStringList listFilesAndDirectories(const QString &path);
    //! Returns the same as file informations.
    Q_REQUIRED_RESULT static QFileInfoList listFileAndDirInfos(const QString &path);
    //! @}

    //! Returns CPath::addPathToPath().
    Q_REQUIRED_RESULT static QString addPathToPath(const QString &path, const QString &subPath);
    //! Returns CPath::addFileNameToPath().
    Q_REQUIRED_RESULT static QString addFileNameToPath(const QString &path,
                                                       const QString &fileName);

    /*!
        Moves the file or directory \a path into the user's trash, where it gets a record for the
        desktop's trash tools, and returns an ETrashResult: 0; 1 if there is no trash directory or
        the move failed, as it does from another file system; 10 if there is a trash directory but
        no such path.

        The trash is the first of these directories that is there: $XDG_DATA_HOME/Trash,
        ~/.local/share/Trash and ~/.trash; none is made. If the name is taken there, by an item or
        by a record, a number is put behind its first part: "a.txt" becomes "a.2.txt"; nothing is
        replaced. If it cannot be told whether the name is taken, the item stays. The record has the
        absolute path as plain text and the local time; whether it could be written is not told. A
        kill in between leaves the item there without a record.
    */
    static int moveToTrash(const QString &path);
};

#endif // CDIR_H
