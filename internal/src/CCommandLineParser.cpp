#include "CCommandLineParser.h"

#include <QCoreApplication>

namespace {

const QString &languageOption()
{
    static const QString name = QStringLiteral("lang");
    return name;
}

// The default text of an address that is absent.
QString noAddress()
{
    return QStringLiteral("-1");
}

} // namespace

CCommandLineParser::CCommandLineParser() : mArgs(argumentsMap())
{
}

CCommandLineParser::CCommandLineParser(QStringList *arguments) : mArgs(argumentsMap(arguments))
{
}

CCommandLineParser::CCommandLineParser(const CCommandLineParser &other) = default;
CCommandLineParser::CCommandLineParser(CCommandLineParser &&other) noexcept = default;
CCommandLineParser::~CCommandLineParser() = default;
CCommandLineParser &CCommandLineParser::operator=(const CCommandLineParser &other) = default;
CCommandLineParser &CCommandLineParser::operator=(CCommandLineParser &&other) noexcept = default;

int CCommandLineParser::powerAddress() const
{
    return mArgs.value(QStringLiteral("powadr"), noAddress()).toInt();
}

int CCommandLineParser::driveAddress() const
{
    return mArgs.value(QStringLiteral("drvadr"), noAddress()).toInt();
}

QString CCommandLineParser::abAddress() const
{
    return mArgs.value(QStringLiteral("abadr"));
}

unsigned int CCommandLineParser::comAddress() const
{
    return mArgs.value(QStringLiteral("comadr")).toUInt();
}

QLocale CCommandLineParser::language() const
{
    const QString name = mArgs.value(languageOption());
    return name.isEmpty() ? QLocale(QLocale::C, QLocale::AnyCountry) : QLocale(name);
}

QString CCommandLineParser::ip() const
{
    return mArgs.value(QStringLiteral("ip"));
}

int CCommandLineParser::port() const
{
    const QString text = mArgs.value(QStringLiteral("port"));
    return text.toInt(nullptr, text.startsWith(QLatin1String("0x")) ? 16 : 10);
}

QString CCommandLineParser::serverName() const
{
    return mArgs.value(QStringLiteral("server"));
}

int CCommandLineParser::userLevel() const
{
    return mArgs.value(QStringLiteral("level")).toInt();
}

unsigned int CCommandLineParser::deviceClass() const
{
    return mArgs.value(QStringLiteral("devtype")).toUInt();
}

unsigned int CCommandLineParser::deviceFunction() const
{
    return mArgs.value(QStringLiteral("df")).toUInt();
}

int CCommandLineParser::currentUnit() const
{
    return mArgs.value(QStringLiteral("cu")).toInt();
}

QString CCommandLineParser::value(const QString &name) const
{
    return mArgs.value(name, QLatin1String(""));
}

bool CCommandLineParser::contains(const QString &name) const
{
    return mArgs.contains(name);
}

int CCommandLineParser::count() const
{
    return mArgs.size();
}

void CCommandLineParser::setLanguage(const QLocale &locale)
{
    mArgs.insert(languageOption(), locale.name().left(2));
}

QMap<QString, QString> CCommandLineParser::argumentsMap()
{
    QStringList arguments = QCoreApplication::arguments();
    return argumentsMap(&arguments);
}

QMap<QString, QString> CCommandLineParser::argumentsMap(QStringList *arguments)
{
    QMap<QString, QString> options;
    if (arguments == nullptr)
        return options;
    for (const QString &word : qAsConst(*arguments)) {
        const int equals = word.indexOf(QLatin1Char('='));
        if (equals > 0)
            options.insert(word.left(equals), word.mid(equals + 1));
    }
    return options;
}

QMap<QString, QString> CCommandLineParser::argumentsMap(const QString &prefix)
{
    QMap<QString, QString> options;
    if (prefix.isEmpty())
        return options;
    const QStringList words = QCoreApplication::arguments();
    int i = 1; // behind the program
    while (i < words.size()) {
        const QString &name = words.at(i++);
        if (!name.startsWith(prefix))
            continue;
        QString value;
        while (i < words.size() && !words.at(i).startsWith(QLatin1Char('-')))
            value += words.at(i++) + QLatin1Char(' ');
        options.insert(name, value.trimmed());
    }
    return options;
}
