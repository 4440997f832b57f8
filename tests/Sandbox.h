#ifndef SANDBOX_H
#define SANDBOX_H

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

// Runs the built program as a user does, in a folder of its own.

struct Outcome
{
    int status = -1; // -1: the program did not end in order
    QString out;
    QString errors;
};

// A folder of its own for the files of a test, in which the program runs.
class Sandbox
{
public:
    bool isValid() const { return mDir.isValid(); }
    QString path(const QString &name) const { return mDir.filePath(name); }

    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }

    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    Outcome run(const QStringList &arguments,
                const std::function<void(QProcess &)> &prepare = {}) const
    {
        QProcess process;
        process.setWorkingDirectory(mDir.path());
        if (prepare)
            prepare(process);
        process.start(QStringLiteral(K7E_PROGRAM), arguments);
        Outcome outcome;
        if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit)
            outcome.status = process.exitCode();
        outcome.out = QString::fromUtf8(process.readAllStandardOutput());
        outcome.errors = QString::fromUtf8(process.readAllStandardError());
        return outcome;
    }

    // Runs the program with words that stand in one text, parted by "|".
    Outcome run(const char *words, const std::function<void(QProcess &)> &prepare = {}) const
    {
        return run(QString::fromUtf8(words).split(QLatin1Char('|')), prepare);
    }

private:
    QTemporaryDir mDir;
};

inline QString sourceFile(const char *name)
{
    return QStringLiteral(K7E_SOURCE_DIR) + QLatin1Char('/') + QLatin1String(name);
}

// Runs a command with the words of the row, and compares both outputs and the exit status.
inline void runRow(const QString &command)
{
    QFETCH(QString, words);
    QFETCH(QString, out);
    QFETCH(QString, errors);
    QFETCH(int, status);
    const Sandbox sandbox;
    QVERIFY(sandbox.isValid());
    const Outcome outcome = sandbox.run(QStringList{command} + words.split(QLatin1Char('|')));
    QCOMPARE(outcome.out, out);
    QCOMPARE(outcome.errors, errors);
    QCOMPARE(outcome.status, status);
}

#endif // SANDBOX_H
