#ifndef MESSAGERECORDER_H
#define MESSAGERECORDER_H

#include <QStringList>
#include <QtGlobal>

/*!
    Records every Qt message while it lives, so that a test can assert the exact list, the empty one
    included. Each entry is "type category: text", such as "warning default: text".
    One recorder at a time.
*/
class MessageRecorder
{
public:
    MessageRecorder()
    {
        sMessages().clear();
        mPrevious = qInstallMessageHandler(&MessageRecorder::record);
    }
    ~MessageRecorder() { qInstallMessageHandler(mPrevious); }

    QStringList messages() const { return sMessages(); }

private:
    Q_DISABLE_COPY(MessageRecorder)

    static QStringList &sMessages()
    {
        static QStringList messages;
        return messages;
    }

    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        const QString kind = type == QtWarningMsg ? QStringLiteral("warning")
                                                  : QString::number(static_cast<int>(type));
        sMessages() += kind + QLatin1Char(' ') + QLatin1String(context.category)
            + QLatin1String(": ") + text;
    }

    QtMessageHandler mPrevious;
};

#endif // MESSAGERECORDER_H
