#ifndef CPATH_H
#define CPATH_H

#include "k7eCoreExport.h"

#include <QString>

/*!
    Where the programs of the suite keep their files, and how names of directories and files are put
    together.

    The installation's root is the parent of the directory that the running program lies in, which
    is expected to be bin/. What programs and users write lies under a second root, which is fixed.
    Paths of directories end with "/". Nothing here reports an error.
*/
class K7ECORE_EXPORT CPath
{
public:
    //! Does nothing; all members are static.
    CPath() = default;

    //! \name Directories under the root of the installation
    //! @{
    static const QString CPATH_BIN; //!< "bin/"
    static const QString CPATH_LIB; //!< "lib/"
    static const QString CPATH_ETC; //!< "etc/"
    static const QString CPATH_TXT; //!< "etc/txt/"
    static const QString CPATH_IMG; //!< "etc/image/"
    static const QString CPATH_DOC; //!< "etc/doc/"
    static const QString
        CPATH_CCONF; //!< "etc/conf/": configuration that is installed and not changed
    static const QString CPATH_CDATA;   //!< "etc/data/": data that is installed and not changed
    static const QString CPATH_PLUGINS; //!< "plugins/": for programs that look for plug-ins
    //! @}

    //! \name Directories under the roots of what is written
    //! @{
    static const QString CPATH_CONF; //!< "conf/"
    static const QString CPATH_LOG;  //!< "log/"
    static const QString CPATH_MOT;  //!< "motor/"
    static const QString CPATH_PAR;  //!< "param/"
    static const QString CPATH_DAT;  //!< "data/"
    static const QString CPATH_PRJ;  //!< "project/"
    //! @}

    static const QString CPATH_COMPANY; //!< "KORVALENT/", the maker's directory

    //! Returns the root of the installation.
    Q_REQUIRED_RESULT static QString installPath();
    //! Returns the name of the directory that is the root of the installation.
    Q_REQUIRED_RESULT static QString productName();
    //! Returns the root of what programs write.
    Q_REQUIRED_RESULT static QString appdataPath();
    //! Returns the root of what users write, which is the same.
    Q_REQUIRED_RESULT static QString userdataPath();

    //! \name Directories of the installation, made if \a create is set and they are missing
    //! @{
    static QString binPath(bool create = false);
    static QString libPath(bool create = false);
    static QString etcPath(bool create = false);
    static QString txtPath(bool create = false);
    static QString imagePath(bool create = false);
    static QString docPath(bool create = false);
    static QString constConfigPath(bool create = false);
    static QString constDataPath(bool create = false);
    //! @}

    //! \name Directories of what is written, made if \a create is set and they are missing
    //! @{
    static QString configPath(bool create = false);
    static QString logPath(bool create = false);
    static QString motorPath(bool create = false);
    static QString paramPath(bool create = false);
    static QString dataPath(bool create = false);
    static QString projectPath(bool create = false);
    //! @}

    /*!
        Returns \a path. If \a create is set and there is no such directory, makes it with all its
        parents first and gives it, but not them, the permissions 775 whatever the umask is. Whether
        that went well is not told.
    */
    static QString createDirIfWanted(QString path, bool create);

    //! Returns whether \a name holds a "/".
    Q_REQUIRED_RESULT static bool doesFilenameContainPath(const QString &name);
    /*!
        Returns \a fileName as an absolute path in the directory that contains \a path; as it is if
        it is empty or holds a "/".

        Contract: \a path is that of a file beside it, even where it is a directory: "f" and "/d/e"
        give "/d/f", "f" and "/d/e/" give "/d/e/f". Callers rely on it.
    */
    Q_REQUIRED_RESULT static QString prependPathIfNoPathIsGiven(const QString &fileName,
                                                                const QString &path);
    //! Returns the file name of \a filePath if it lies in the directory \a path, be it through
    //! symbolic links; otherwise \a filePath as it is.
    Q_REQUIRED_RESULT static QString trimPathIfPathIsEqual(const QString &filePath,
                                                           const QString &path);
    //! Returns the absolute path of the directory that contains \a fileName, without a "/" at its
    //! end; a null string if \a fileName is empty.
    Q_REQUIRED_RESULT static QString filePath(const QString &fileName);

    //! Returns \a path with a "/" at its end.
    Q_REQUIRED_RESULT static QString ensurePathSeparatorAtEnd(QString path);
    //! Returns \a path with a "/" at its start.
    Q_REQUIRED_RESULT static QString ensurePathSeparatorAtStart(const QString &path);
    //! Returns \a path without the "/" at its start; further ones stay.
    Q_REQUIRED_RESULT static QString removePathSeparatorAtStart(const QString &path);
    //! Returns \a path without the "/" at its end; further ones stay.
    Q_REQUIRED_RESULT static QString removePathSeparatorAtEnd(const QString &path);
    //! Returns \a subPath behind \a path, with a "/" behind each. "a" and "/b" give "a//b/".
    Q_REQUIRED_RESULT static QString addPathToPath(const QString &path, const QString &subPath);
    //! Returns \a fileName behind \a path, with a "/" between them.
    Q_REQUIRED_RESULT static QString addFileNameToPath(const QString &path,
                                                       const QString &fileName);
    /*!
        Returns the absolute path of \a filePath with its file name cleaned: white space at its ends
        is removed and each run inside becomes one blank, then the characters < > : ! ? | and " are
        removed, so that "a ? b" becomes "a  b".
    */
    Q_REQUIRED_RESULT static QString cleanFileName(const QString &filePath);
};

#endif // CPATH_H
