#include "CTemporaryDir.h"

CTemporaryDir::CTemporaryDir() = default;
CTemporaryDir::~CTemporaryDir() = default;

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
    return mDir.remove();
}
