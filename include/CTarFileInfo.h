#ifndef CTARFILEINFO_H
#define CTARFILEINFO_H

#include "k7eCoreExport.h"

#include <QString>

/*!
    What a CTar tells about a member of an archive.
*/
struct K7ECORE_EXPORT CTarFileInfo
{
    //! The kind of a member.
    enum EType : int {
        TYPE_UNKNOWN = 0, //!< any other kind, a hard link for instance
        TYPE_FILE = 1,
        TYPE_SYMLINK = 2,
        TYPE_DIRECTORY = 3
    };

    //! Calls clear().
    CTarFileInfo();

    //! Sets TYPE_UNKNOWN, 0 and empty texts, which are not null.
    void clear();
    //! Returns whether the type is known.
    Q_REQUIRED_RESULT bool isValid() const { return type != TYPE_UNKNOWN; }

    EType type;
    QString name;     //!< as in the header, decoded as Latin-1
    QString linkName; //!< the target of a link, decoded as Latin-1
    qint64 size;      //!< of the data, in bytes
    qint64 position;  //!< of the header in the archive, in bytes; the data begins 512 bytes later
};

#endif // CTARFILEINFO_H
