#ifndef PROGRESSLINE_H
#define PROGRESSLINE_H

#include <QElapsedTimer>
#include <QString>

/*!
    A line on standard error that tells how far something has come, if that is a terminal. It is
    written anew ten times a second at most, and removed with the object.
*/
class ProgressLine
{
public:
    //! \a text has %1 for the steps that are done and %2 for their number.
    explicit ProgressLine(const QString &text);
    ~ProgressLine();

    void show(int done, int steps);

private:
    Q_DISABLE_COPY(ProgressLine)

    QString mText;
    bool mIsTerminal;
    bool mIsShown = false;
    QElapsedTimer mLast;
};

#endif // PROGRESSLINE_H
