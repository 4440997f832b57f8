#ifndef CONSOLE_H
#define CONSOLE_H

#include <QFile>
#include <QTextStream>

/*!
    Standard output, standard error and exit status of the program. Both outputs are UTF-8 whatever
    the locale is.
*/
class Console
{
public:
    //! What the program ends with.
    enum ExitStatus {
        Success = 0,
        DataError = 1, //!< something in the input, or the writing of a result, failed
        UsageError = 2 //!< the command line was wrong; nothing was done
    };

    Console();

    //! Returns the stream to standard output.
    QTextStream &out() { return mOut; }

    //! Writes a line with a short \a title and \a text to standard output.
    void show(const char *title, const QString &text);

    //! Writes \a bytes as they are to standard output.
    void write(const QByteArray &bytes);

    //! Writes the line \a text to standard error; the program will end with DataError.
    void error(const QString &text);
    //! Writes what is wrong with the command line of \a program; the program will end with
    //! UsageError.
    void usageError(const QString &program, const QString &text);
    //! Returns whether an error was reported.
    bool hasErrors() const { return mStatus != Success; }

    //! Writes everything out and returns the exit status.
    ExitStatus finish();

private:
    Q_DISABLE_COPY(Console)

    void writeError(const QString &text);

    QFile mOutFile;
    QFile mErrorFile;
    QTextStream mOut;
    ExitStatus mStatus = Success;
};

#endif // CONSOLE_H
