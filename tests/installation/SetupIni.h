#ifndef SETUPINI_H
#define SETUPINI_H

#include <QFile>
#include <QMap>
#include <QString>

// The built-in settings, read from the source of the library without the help of QSettings: each
// value is one plain or one quoted text.

inline QByteArray setupIniBytes()
{
    QFile file(QStringLiteral(K7E_SOURCE_DIR "/data/Setup.Ini"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

//! Returns the text that a value stands for: \" and \\ stand for a character, \x for its code.
inline QString setupIniText(QByteArray value)
{
    if (value.startsWith('"') && value.endsWith('"'))
        value = value.mid(1, value.size() - 2);
    QString text;
    for (int i = 0; i < value.size(); ++i) {
        if (value.at(i) != '\\') {
            text += QLatin1Char(value.at(i));
        } else if (value.at(++i) != 'x') {
            text += QLatin1Char(value.at(i));
        } else {
            ushort code = 0;
            while (i + 1 < value.size() && isxdigit(static_cast<uchar>(value.at(i + 1)))) {
                const ushort digit = value.mid(++i, 1).toUShort(nullptr, 16);
                code = static_cast<ushort>(code * 16 + digit);
            }
            text += QChar(code);
        }
    }
    return text;
}

//! Returns the texts by "section/key".
inline QMap<QString, QString> setupIniTexts()
{
    QMap<QString, QString> texts;
    QString section;
    const QList<QByteArray> lines = setupIniBytes().split('\n');
    for (const QByteArray &line : lines) {
        const int sign = line.indexOf('=');
        if (line.startsWith('['))
            section = QString::fromLatin1(line.mid(1, line.size() - 2)) + QLatin1Char('/');
        else if (!line.startsWith(';') && sign > 0)
            texts[section + QString::fromLatin1(line.left(sign))]
                = setupIniText(line.mid(sign + 1));
    }
    return texts;
}

#endif // SETUPINI_H
