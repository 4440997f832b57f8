#include "CDeviceList.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "DeviceReport.h"
#include "FileError.h"
#include "SuiteFormat.h"

#include <QDataStream>
#include <QFile>

#include <optional>

namespace {

// Returns the list in the file, or nothing after an error.
std::optional<CDeviceList> readDeviceList(const QString &fileName, Console &console)
{
    QFile file(fileName);
    if (!openInput(file, console))
        return std::nullopt;
    QDataStream in(&file);
    setSuiteFormat(in);
    CDeviceList list;
    in >> list;
    if (in.status() == QDataStream::ReadPastEnd)
        reportFileError(fileName, QStringLiteral("ends within the device list"), console);
    else if (in.status() != QDataStream::Ok)
        reportFileError(fileName, QStringLiteral("is no device list, or damaged"), console);
    else if (!file.peek(1).isEmpty())
        reportFileError(fileName, QStringLiteral("has data behind the device list"), console);
    else
        return list;
    return std::nullopt;
}

} // namespace

void runDevices(const QStringList &arguments, Console &console)
{
    const QString json = QStringLiteral("json");
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows the devices in a file that holds a streamed device list "
                                    "(QDataStream, version\nQt_5_15, big-endian) as a tree."));
    line.addArgument(QStringLiteral("FILE"), QStringLiteral("The device list."));
    line.addOption({json, QStringLiteral("Writes JSON instead of a tree.")});
    if (!line.parse(arguments, console))
        return;
    const std::optional<CDeviceList> list = readDeviceList(line.arguments().first(), console);
    if (!list)
        return;
    if (line.isSet(json))
        printJson(*list, console.out());
    else
        printTree(*list, console.out());
}
