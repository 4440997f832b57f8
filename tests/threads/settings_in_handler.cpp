#include "CCompanyStrings.h"

#include <QFileInfo>
#include <QString>

#include <unistd.h>

// A message handler that asks for the maker's name, in a program without an application: the search
// for the settings logs a message, so that they are asked for while they are made.

namespace {

QString nameInHandler;

void handle(QtMsgType, const QMessageLogContext &, const QString &)
{
    nameInHandler = CCompanyStrings::getCompanyLongName();
}

} // namespace

int main()
{
    constexpr unsigned int kSeconds = 60; // a guard against waiting for ever, not a measure
    alarm(kSeconds);
    // Without an application, the root of the installation is that of the system.
    const char *const directory = "/etc/conf";
    const bool wasThere = QFileInfo::exists(QString::fromLatin1(directory));
    qInstallMessageHandler(&handle);
    const QString name = CCompanyStrings::getCompanyLongName();
    const bool isSame = !name.isEmpty() && name == nameInHandler;
    if (!wasThere)
        rmdir(directory);
    return isSame ? 0 : 1;
}
