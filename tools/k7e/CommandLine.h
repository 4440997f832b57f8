#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

class Console;

/*!
    The command line of the program or of one of its commands: options, named arguments, help and
    version.
*/
class CommandLine
{
public:
    enum class Need {
        Required,
        Optional,
        AnyNumber //!< for the last argument: any number of words, which are passed on as they are
    };

    /*!
        Makes the command line of \a program, the words to be typed for it. The help text shows
        \a description.
    */
    CommandLine(const QString &program, const QString &description);

    void addOption(const QCommandLineOption &option) { mParser.addOption(option); }
    void addArgument(const QString &name, const QString &description, Need need = Need::Required);
    //! Takes everything behind the first argument as an argument, words that begin with "-" too.
    void endOptionsAtFirstArgument();

    /*!
        Reads \a words, the first of which is the program. Returns whether there is something left
        to do: not if the help or the version was asked for and shown, or after a usage error.
    */
    bool parse(const QStringList &words, Console &console);

    //! Tells \a console that the value of \a option cannot be taken.
    void refuse(const QString &option, Console &console) const;

    bool isSet(const QString &option) const { return mParser.isSet(option); }
    QString value(const QString &option) const { return mParser.value(option); }
    QStringList values(const QString &option) const { return mParser.values(option); }
    QStringList arguments() const { return mParser.positionalArguments(); }

private:
    QString helpText() const;

    QString mProgram;
    QStringList mRequired; // the names of the arguments that must be there, which come first
    QString mSyntax;
    int mMaximum = 0; // of arguments
    QCommandLineParser mParser;
};

#endif // COMMANDLINE_H
