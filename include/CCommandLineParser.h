#ifndef CCOMMANDLINEPARSER_H
#define CCOMMANDLINEPARSER_H

#include "k7eCoreExport.h"

#include <QLocale>
#include <QMap>
#include <QString>
#include <QStringList>

/*!
    The options that a program of the suite was started with, written as words name=value:
    addresses, the language, the network endpoint, the user level, the device and the unit.

    Names are case-sensitive and kept as they are written: the words "-lang=de" and "LANG=de" do not
    set the option "lang". What does not convert to a number reads as 0.
*/
class K7ECORE_EXPORT CCommandLineParser
{
public:
    //! Reads the arguments of the QCoreApplication.
    CCommandLineParser();
    //! Reads \a arguments, which may be null and stay with the caller. Implicit: programs pass
    //! their list where a parser is wanted.
    CCommandLineParser(QStringList *arguments);
    CCommandLineParser(const CCommandLineParser &other);
    CCommandLineParser(CCommandLineParser &&other) noexcept;
    virtual ~CCommandLineParser();

    CCommandLineParser &operator=(const CCommandLineParser &other);
    CCommandLineParser &operator=(CCommandLineParser &&other) noexcept;
    //! Exchanges the options.
    void swap(CCommandLineParser &other) noexcept { mArgs.swap(other.mArgs); }

    //! Returns the power unit's address, option "powadr"; -1 if it is absent.
    Q_REQUIRED_RESULT int powerAddress() const;
    //! Returns the drive's address, option "drvadr"; -1 if it is absent.
    Q_REQUIRED_RESULT int driveAddress() const;
    //! Returns the AB's address, option "abadr"; a null string if it is absent.
    Q_REQUIRED_RESULT QString abAddress() const;
    //! Returns the COM device's address, option "comadr"; 0 if it is absent.
    Q_REQUIRED_RESULT unsigned int comAddress() const;
    //! Returns the locale named by the option "lang"; the C locale if it is absent or empty.
    Q_REQUIRED_RESULT QLocale language() const;
    //! Returns the network address, option "ip", not checked; a null string if it is absent.
    Q_REQUIRED_RESULT QString ip() const;
    //! Returns the network port, option "port", hexadecimal behind "0x" and decimal otherwise; 0 if
    //! it is absent. The range is that of an int.
    Q_REQUIRED_RESULT int port() const;
    //! Returns the server's name, option "server"; a null string if it is absent.
    Q_REQUIRED_RESULT QString serverName() const;
    //! Returns the user level, option "level"; 0 if it is absent.
    Q_REQUIRED_RESULT int userLevel() const;
    //! Returns the device class, option "devtype"; 0 if it is absent.
    Q_REQUIRED_RESULT unsigned int deviceClass() const;
    //! Returns the device function, option "df"; 0 if it is absent.
    Q_REQUIRED_RESULT unsigned int deviceFunction() const;
    //! Returns the current unit, option "cu"; 0 if it is absent.
    Q_REQUIRED_RESULT int currentUnit() const;

    //! Returns the text of the option \a name; an empty string, which is not null, if it is absent.
    Q_REQUIRED_RESULT QString value(const QString &name) const;
    //! Returns whether there is an option \a name.
    Q_REQUIRED_RESULT bool contains(const QString &name) const;
    //! Returns the number of options.
    Q_REQUIRED_RESULT int count() const;
    //! Sets the option "lang" to the first two characters of the name of \a locale: "de" for de_DE.
    void setLanguage(const QLocale &locale);

    //! Returns the options in the arguments of the QCoreApplication, as the overload below reads
    //! them.
    Q_REQUIRED_RESULT static QMap<QString, QString> argumentsMap();
    /*!
        Returns the options in \a arguments, a value by name: of each word, the first one too, that
        has a "=" behind at least one character, the name before the first "=" and the value behind
        it. The last word of a name counts. The map is empty if \a arguments is null.
    */
    Q_REQUIRED_RESULT static QMap<QString, QString> argumentsMap(QStringList *arguments);
    /*!
        Returns the options in the arguments of the QCoreApplication that are written as a word with
        \a prefix and words for the value, a value by name: each word but the first that begins with
        \a prefix is a name, prefix included; the words up to the next one that begins with "-",
        whatever the prefix is, are its value, joined with blanks and trimmed. The last word of a
        name counts. An empty prefix gives an empty map.

        With the prefix "-" the words -title Drive 1 -x give "Drive 1" under "-title" and an empty
        text under "-x".
    */
    Q_REQUIRED_RESULT static QMap<QString, QString> argumentsMap(const QString &prefix);

private:
    QMap<QString, QString> mArgs;
};

inline void swap(CCommandLineParser &left, CCommandLineParser &right) noexcept
{
    left.swap(right);
}

#endif // CCOMMANDLINEPARSER_H
