#include "Console.h"

#include <unistd.h>

Console::Console()
{
    mOutFile.open(STDOUT_FILENO, QIODevice::WriteOnly);
    mErrorFile.open(STDERR_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered);
    mOut.setDevice(&mOutFile);
    mOut.setCodec("UTF-8");
}

void Console::show(const char *title, const QString &text)
{
    constexpr int kTitleWidth = 8;
    mOut << QString(QLatin1String(title)).leftJustified(kTitleWidth) << text << '\n';
}

void Console::write(const QByteArray &bytes)
{
    mOut.flush();
    mOutFile.write(bytes);
}

void Console::error(const QString &text)
{
    writeError(text);
    mStatus = DataError;
}

void Console::usageError(const QString &program, const QString &text)
{
    writeError(QStringLiteral("%1: %2\nTry \"%1 --help\".").arg(program, text));
    mStatus = UsageError;
}

Console::ExitStatus Console::finish()
{
    mOut.flush();
    mOutFile.flush();
    if (mOutFile.error() != QFileDevice::NoError)
        error(QStringLiteral("standard output: %1").arg(mOutFile.errorString()));
    return mStatus;
}

void Console::writeError(const QString &text)
{
    mErrorFile.write(text.toUtf8() + '\n');
}
