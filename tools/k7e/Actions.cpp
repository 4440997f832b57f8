#include "Actions.h"

#include "CommandLine.h"
#include "Console.h"
#include "ValueText.h"

void runAction(const QStringList &arguments, const QString &description, const QString &argument,
               const Action (&actions)[2], Console &console)
{
    const QLatin1String first(actions[0].name);
    const QLatin1String second(actions[1].name);
    CommandLine line(arguments.first(), description);
    line.addArgument(first + QLatin1Char('|') + second, QStringLiteral("What to do."));
    line.addArgument(QStringLiteral("ARGUMENT"), argument, CommandLine::Need::AnyNumber);
    line.endOptionsAtFirstArgument();
    if (!line.parse(arguments, console))
        return;
    QStringList rest = line.arguments();
    const QString action = rest.first();
    rest.first() = arguments.first() + QLatin1Char(' ') + action;
    if (action == first)
        actions[0].run(rest, console);
    else if (action == second)
        actions[1].run(rest, console);
    else
        console.usageError(
            arguments.first(),
            QStringLiteral("\"%1\" is neither %2 nor %3").arg(visible(action), first, second));
}
