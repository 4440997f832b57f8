#ifndef CTEMPORARYDIR_H
#define CTEMPORARYDIR_H

#include "k7eCoreExport.h"

#include <QTemporaryDir>

/*!
    A new directory with a name of its own under the system's temporary directory, which is removed
    with its content when the object is destroyed.
*/
class K7ECORE_EXPORT CTemporaryDir
{
public:
    //! Makes the directory.
    CTemporaryDir();
    //! Removes the directory with its content if autoRemove() is set.
    ~CTemporaryDir();

    //! Sets whether the directory is removed with the object; it is by default.
    void setAutoRemove(bool autoRemove);
    Q_REQUIRED_RESULT bool autoRemove() const;
    //! Returns whether the directory was made.
    Q_REQUIRED_RESULT bool isValid() const;
    //! Returns the path, without a "/" at its end; an empty string if the directory was not made.
    Q_REQUIRED_RESULT QString path() const;
    //! Removes the directory with its content, and returns whether it is gone; warns if not.
    //! Nothing is reached through a symbolic link.
    bool remove();

private:
    Q_DISABLE_COPY(CTemporaryDir)

    QTemporaryDir mDir;
};

#endif // CTEMPORARYDIR_H
