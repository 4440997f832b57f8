#ifndef CTAR_H
#define CTAR_H

#include "CTarFileInfo.h"
#include "k7eCoreExport.h"

#include <QFile>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/*!
    Reads tar archives with ustar headers: the table of contents once, then the data of any member.

    A name is the 100-byte name field of a header; the ustar prefix and the records that other
    formats put in front of a member for a longer name are not joined to it. The archive stays open
    for reading until the object is destroyed or loads another one. What an operation that failed
    has to say is in error(). An object is for one thread at a time.
*/
class K7ECORE_EXPORT CTar
{
public:
    //! The header block of a member as it lies in the archive. Texts that are shorter than their
    //! field end with a zero byte; numbers are octal text.
    struct K7ECORE_EXPORT STarHdr
    {
        //! Returns whether all bytes are zero: the end of the archive.
        Q_REQUIRED_RESULT bool isNull() const;

        char name[100];
        char mode[8];
        char uid[8];
        char gid[8];
        char size[12];
        char mtime[12];
        char chksum[8];
        char typeflag;
        char linkname[100];
        char magic[6];
        char version[2];
        char uname[32];
        char gname[32];
        char devmajor[8];
        char devminor[8];
        char prefix[155];
        char padding[12];
    };

    //! Makes a reader without an archive.
    CTar();
    //! Closes the archive.
    ~CTar();

    /*!
        Reads the table of contents of the archive \a fileName up to the block of zeros at its end,
        and returns whether it got there. If not, the members before the failure are there all the
        same, and the archive is open if it could be opened. What has no positions, such as a pipe,
        fails at once.

        Contract: a size that is no octal number is a failure that leaves error() as it was. Callers
        rely on it.
    */
    bool loadFile(const QString &fileName);
    //! Returns what the last failure had to say. Nothing resets it.
    Q_REQUIRED_RESULT QString error() const { return mError; }

    //! Returns the number of members.
    Q_REQUIRED_RESULT int count() const { return mInfos.size(); }
    //! Returns the names of the members in the order of the archive.
    Q_REQUIRED_RESULT QStringList names() const { return mNames; }
    //! Returns the position of the first member named \a name, or -1.
    Q_REQUIRED_RESULT int index(const QString &name) const;
    //! Returns what there is to know about a member, a cleared record if there is none at \a index.
    Q_REQUIRED_RESULT CTarFileInfo info(int index) const;
    //! Returns info() of all members.
    Q_REQUIRED_RESULT QList<CTarFileInfo> infos() const { return mInfos; }

    //! Reads the data of a member into \a data and returns whether it is all there; if it ends too
    //! early, \a data holds what there is. A failure before the reading, too little memory
    //! included, leaves \a data as it was.
    bool file(int index, QByteArray &data);
    //! Reads the data of the first member named \a name in the same way.
    bool file(const QString &name, QByteArray &data);

private:
    Q_DISABLE_COPY(CTar)

    bool readFileHeader(qint64 &position, bool &isEnd);
    bool seek(qint64 position);
    qint64 fileSize() const;
    bool fail(const QString &error);

    QString mError;
    QFile mFile;
    qint64 mFileSize = 0; // when it was loaded
    QStringList mNames;
    QList<CTarFileInfo> mInfos;
    mutable QHash<QString, int> mIndexes; // of the first member of each name; made when asked for
};

#endif // CTAR_H
