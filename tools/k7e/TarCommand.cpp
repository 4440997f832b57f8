#include "Actions.h"
#include "CTar.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "FileError.h"
#include "TextTable.h"
#include "ValueText.h"

namespace {

const char *typeName(CTarFileInfo::EType type)
{
    switch (type) {
    case CTarFileInfo::TYPE_FILE:
        return "file";
    case CTarFileInfo::TYPE_SYMLINK:
        return "link";
    case CTarFileInfo::TYPE_DIRECTORY:
        return "directory";
    case CTarFileInfo::TYPE_UNKNOWN:
        break;
    }
    return "other";
}

// Loads the archive as far as it goes; 'console' is told if that is not to the end.
void load(CTar &archive, const QString &fileName, Console &console)
{
    if (archive.loadFile(fileName))
        return;
    // A size that is no number has no text of its own.
    const QString error = archive.error();
    reportFileError(fileName,
                    error.isEmpty() ? QStringLiteral("a header holds no size") : visible(error),
                    console);
}

void runList(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(), QStringLiteral("Shows the members of a tar archive."));
    line.addArgument(QStringLiteral("FILE"), QStringLiteral("The archive."));
    if (!line.parse(arguments, console))
        return;
    CTar archive;
    load(archive, line.arguments().first(), console);
    if (archive.count() == 0 && console.hasErrors())
        return;
    TextTable table({{QStringLiteral("TYPE")},
                     {QStringLiteral("BYTES"), TextTable::Align::Right},
                     {QStringLiteral("NAME")}});
    const QList<CTarFileInfo> members = archive.infos();
    for (const CTarFileInfo &member : members) {
        QString name = visible(member.name);
        if (member.type == CTarFileInfo::TYPE_SYMLINK)
            name += QLatin1String(" -> ") + visible(member.linkName);
        table.addRow({QLatin1String(typeName(member.type)), QString::number(member.size), name});
    }
    table.print(console.out());
}

void runCat(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Writes the data of members of a tar archive."));
    line.addArgument(QStringLiteral("FILE"), QStringLiteral("The archive."));
    line.addArgument(QStringLiteral("NAME"), QStringLiteral("The name of a member."));
    line.addArgument(QStringLiteral("NAME"), QStringLiteral("Further ones."),
                     CommandLine::Need::AnyNumber);
    if (!line.parse(arguments, console))
        return;
    const QString fileName = line.arguments().first();
    CTar archive;
    load(archive, fileName, console);
    const QStringList names = line.arguments().mid(1);
    for (const QString &name : names) {
        const int index = archive.index(name);
        QByteArray data;
        if (index < 0) {
            reportFileError(fileName, QStringLiteral("no member \"%1\"").arg(visible(name)),
                            console);
            continue;
        }
        if (!archive.file(index, data))
            reportFileError(fileName, visible(archive.error()), console);
        console.write(data);
    }
}

} // namespace

void runTar(const QStringList &arguments, Console &console)
{
    runAction(arguments,
              QStringLiteral("Shows what is in a tar archive.\n\n"
                             "  list  shows the members\n"
                             "  cat   writes the data of members"),
              QStringLiteral("The archive, and names."), {{"list", &runList}, {"cat", &runCat}},
              console);
}
