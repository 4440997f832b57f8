#include "Pairs.h"

#include <QProcess>

#include <cstdlib>

// Loading the library into a program that has Qt loaded, beside loading Qt Network. Each is done once in
// a process of its own.

namespace {

double secondsOf(const QStringList &libraries)
{
    QProcess process;
    process.start(QStringLiteral(LOAD_LIBRARY), libraries);
    process.waitForFinished();
    const qint64 nanoseconds = process.readAllStandardOutput().trimmed().toLongLong();
    if (nanoseconds <= 0)
        std::abort();
    return static_cast<double>(nanoseconds) * 1e-9;
}

void addLoadPairs()
{
    const QString network = QStringLiteral(NETWORK_LIBRARY);
    Pairs::addMeasured(
        "load the library", 0.2,
        [network] {
            return secondsOf({network, QStringLiteral(K7E_LIBRARY)});
        },
        [network] { return secondsOf({network}); });
}

const Pairs::Group kGroup(&addLoadPairs);

} // namespace
