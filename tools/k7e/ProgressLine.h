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
    //! \a text has %1 for the steps done and %2 for \a steps, their number.
    ProgressLine(const QString &text, int steps);
    ~ProgressLine();

    void step();

private:
    Q_DISABLE_COPY(ProgressLine)

    QString mText;
    int mSteps;
    int mDone = 0;
    bool mIsTerminal;
    bool mIsShown = false;
    QElapsedTimer mLast;
};

#endif // PROGRESSLINE_H
