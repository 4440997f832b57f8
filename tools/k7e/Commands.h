#ifndef COMMANDS_H
#define COMMANDS_H

class Console;
class QStringList;

/*
    The commands of the program, each in a source file of its name. Each takes its own part of the
    command line, with "k7e <command>" in the place of the program's name, and leaves the exit
    status in the console.
*/
void runCompany(const QStringList &arguments, Console &console);
void runCopy(const QStringList &arguments, Console &console);
void runDevices(const QStringList &arguments, Console &console);
void runEntrypoint(const QStringList &arguments, Console &console);
void runId(const QStringList &arguments, Console &console);
void runIpv6(const QStringList &arguments, Console &console);
void runMotor(const QStringList &arguments, Console &console);
void runNumber(const QStringList &arguments, Console &console);
void runObjects(const QStringList &arguments, Console &console);
void runOtp(const QStringList &arguments, Console &console);
void runPaths(const QStringList &arguments, Console &console);
void runStream(const QStringList &arguments, Console &console);
void runTar(const QStringList &arguments, Console &console);
void runTime(const QStringList &arguments, Console &console);
void runTrash(const QStringList &arguments, Console &console);
void runTypes(const QStringList &arguments, Console &console);
void runUnits(const QStringList &arguments, Console &console);
void runValue(const QStringList &arguments, Console &console);

#endif // COMMANDS_H
