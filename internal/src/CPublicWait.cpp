#include "CPublicWait.h"

#include <QThread>

void CPublicWait::sleep(unsigned long seconds)
{
    QThread::sleep(seconds);
}

void CPublicWait::msleep(unsigned long milliseconds)
{
    QThread::msleep(milliseconds);
}

void CPublicWait::usleep(unsigned long microseconds)
{
    QThread::usleep(microseconds);
}
