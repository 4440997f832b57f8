#include "ProgressLine.h"

#include <cstdio>

#include <unistd.h>

namespace {

constexpr qint64 kInterval = 100; // ms

void writeLine(const QString &text)
{
    // To the start of the line, and what is there is cleared.
    std::fprintf(stderr, "\r\x1b[K%s", text.toUtf8().constData());
}

} // namespace

ProgressLine::ProgressLine(const QString &text)
    : mText(text)
    , mIsTerminal(isatty(STDERR_FILENO) != 0)
{
    mLast.start();
}

ProgressLine::~ProgressLine()
{
    if (mIsShown)
        writeLine(QString());
}

void ProgressLine::show(int done, int steps)
{
    if (!mIsTerminal || mLast.elapsed() < kInterval)
        return;
    mLast.restart();
    mIsShown = true;
    writeLine(mText.arg(done).arg(steps));
}
