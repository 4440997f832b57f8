#ifndef ACTIONS_H
#define ACTIONS_H

#include <QStringList>

class Console;

//! What a command can do, chosen by the first word behind it.
struct Action
{
    const char *name;
    void (*run)(const QStringList &arguments, Console &console);
};

//! Runs the one of two actions that \a arguments name, with "k7e <command> <action>" in the place of
//! the program's name. The help text shows \a description, and \a argument for what comes behind.
void runAction(const QStringList &arguments, const QString &description, const QString &argument,
               const Action (&actions)[2], Console &console);

#endif // ACTIONS_H
