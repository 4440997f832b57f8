#include "CTemporaryDir.h"

#include "Tree_p.h"

#include <QDebug>

CTemporaryDir::CTemporaryDir() = default;

CTemporaryDir::~CTemporaryDir()
{
    if (autoRemove())
        remove();
    setAutoRemove(false);
}

void CTemporaryDir::setAutoRemove(bool autoRemove)
{
    mDir.setAutoRemove(autoRemove);
}

bool CTemporaryDir::autoRemove() const
{
    return mDir.autoRemove();
}

bool CTemporaryDir::isValid() const
{
    return mDir.isValid();
}

QString CTemporaryDir::path() const
{
    return mDir.path();
}

bool CTemporaryDir::remove()
{
    // Not by QTemporaryDir, whose walk takes a directory that becomes a link meanwhile for what the
    // link leads to, and what it cannot see for removed; the warning is the same.
    const bool isGone = isValid() && Tree::remove(path());
    if (isValid() && !isGone) {
        qWarning() << "QTemporaryDir: Unable to remove" << path()
                   << "most likely due to the presence of read-only files.";
    }
    return isGone;
}
