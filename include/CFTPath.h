#ifndef CFTPATH_H
#define CFTPATH_H

#include "k7eCoreExport.h"

#include <QList>
#include <QMap>
#include <QString>

/*!
    The entry points of file transfer: the top-level locations in the file system of a device, each
    with a symbolic name and a directory there, and the names of the standard directories below
    them. All directories end with "/".
*/
class K7ECORE_EXPORT CFTPath
{
public:
    //! The entry points: single bits, to be combined into sets. Any 32-bit code is a value.
    enum EEntryPoint : int {
        EP_INVALID = 0,     //!< no entry point; name and directory are "<invalid>"
        EP_CONSTCONFIG = 1, //!< "CONSTCONFIG", "/opt/KORVALENT/etc/conf/"
        EP_COMPANY = 2,     //!< "KORVALENT", "/KORVALENT/"
        EP_OPT_COMPANY = 4, //!< "OPT/KORVALENT", "/opt/KORVALENT/"
        EP_TMP = 8,         //!< "TMP", "/tmp/"
        EP_ROOT = 16,       //!< "ROOT", "/"
        EP_OPT = 32,        //!< "OPT", "/opt/"
        EP_APPDATA = 64     //!< "APPDATA", "/appdata/"
    };

    static const QString INVALID_STR; //!< "<invalid>"

    //! \name Directories below the entry points
    //! @{
    static const QString PATH_AUTOSTART;      //!< "autostart/"
    static const QString PATH_BIN;            //!< "bin/"
    static const QString PATH_CONFIGURATIONS; //!< "configurations/"
    static const QString PATH_CONF;           //!< "conf/"
    static const QString PATH_PARAM;          //!< "param/"
    static const QString PATH_FIRMWARE;       //!< "firmware/"
    static const QString PATH_LOGIC;          //!< "logic/"
    static const QString PATH_SUBDEVICES;     //!< "subdevices/"
    //! @}

    //! Does nothing; all members are static.
    CFTPath() = default;

    //! Returns the names of all entry points, EP_INVALID included.
    Q_REQUIRED_RESULT static QMap<EEntryPoint, QString> entryStrMap();
    //! Returns the name of \a entryPoint, "<invalid>" for a code that is none.
    Q_REQUIRED_RESULT static QString toString(EEntryPoint entryPoint);
    //! Returns the entry point named \a name in this case, EP_INVALID if there is none.
    Q_REQUIRED_RESULT static EEntryPoint toEntryPoint(const QString &name);
    //! Returns all entry points by their codes, EP_INVALID first.
    Q_REQUIRED_RESULT static QList<EEntryPoint> entryPoints();
    //! Returns the directory of \a entryPoint on a device, "<invalid>" for a code that is none.
    Q_REQUIRED_RESULT static QString toPath(EEntryPoint entryPoint);
    //! Returns \a path, with a "/" at its start, relative to the directory of \a entryPoint; if it
    //! does not lie there, with the "/".
    Q_REQUIRED_RESULT static QString toRelativePath(const QString &path, EEntryPoint entryPoint);
    /*!
        Returns the entry point with the lowest code whose name stands in \a path at position 0 or
        1, or whose directory \a path begins with; EP_INVALID if there is none.

        Contract: "/" is tried before "/opt/" and "/appdata/", so that paths there give EP_ROOT; and
        a name counts at the start of a longer word too: "TMPX" gives EP_TMP. Callers rely on both.
    */
    Q_REQUIRED_RESULT static EEntryPoint fromPath(const QString &path);
};

#endif // CFTPATH_H
