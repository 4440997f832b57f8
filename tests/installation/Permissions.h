#ifndef PERMISSIONS_H
#define PERMISSIONS_H

#include <QFile>
#include <QString>

#include <sys/stat.h>

constexpr int kNoEntry = -1;

//! Returns the permissions of an entry, not of what a link points to; kNoEntry if there is none.
inline int modeOf(const QString &path)
{
    struct stat status;
    if (lstat(QFile::encodeName(path).constData(), &status) != 0)
        return kNoEntry;
    return static_cast<int>(status.st_mode & 07777);
}

inline bool setMode(const QString &path, int mode)
{
    return chmod(QFile::encodeName(path).constData(), static_cast<mode_t>(mode)) == 0;
}

//! Makes a umask that of the process while it lives.
class Umask
{
public:
    explicit Umask(int mask) : mBefore(umask(static_cast<mode_t>(mask))) { }
    ~Umask() { umask(mBefore); }

private:
    Q_DISABLE_COPY(Umask)

    const mode_t mBefore;
};

#endif // PERMISSIONS_H
