#include "CTemporaryDir.h"

#include "FileSystem_p.h"
#include "Tree_p.h"

namespace {

// Leaves nothing to the walk of QTemporaryDir, which takes a link for what it leads to if that is all
// it can tell, or if a directory becomes one meanwhile.
void removeTree(const QTemporaryDir &directory)
{
    if (directory.isValid())
        Tree::remove(directory.path());
}

} // namespace

CTemporaryDir::CTemporaryDir() = default;

CTemporaryDir::~CTemporaryDir()
{
    if (autoRemove())
        removeTree(mDir);
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
    removeTree(mDir);
    // It takes what it cannot see for removed.
    return mDir.remove() && FileSystem::hasEntry(path()) == false;
}
