#include "CommandLine.h"

#include "Console.h"
#include "ValueText.h"

#include <limits>

namespace {

constexpr char kHelp[] = "help";
constexpr char kVersion[] = "version";

} // namespace

CommandLine::CommandLine(const QString &program, const QString &description)
    : mProgram(program)
    , mSyntax(program + QStringLiteral(" [options]"))
{
    mParser.setApplicationDescription(description);
    mParser.addOption(
        {{QStringLiteral("h"), QLatin1String(kHelp)}, QStringLiteral("Shows this help.")});
    mParser.addOption(
        {{QStringLiteral("v"), QLatin1String(kVersion)}, QStringLiteral("Shows the version.")});
}

void CommandLine::addArgument(const QString &name, const QString &description, Need need)
{
    mParser.addPositionalArgument(name, description);
    switch (need) {
    case Need::Required:
        mRequired += name;
        mSyntax += QLatin1Char(' ') + name;
        ++mMaximum;
        break;
    case Need::Optional:
        mSyntax += QStringLiteral(" [%1]").arg(name);
        ++mMaximum;
        break;
    case Need::AnyNumber:
        mSyntax += QStringLiteral(" [%1...]").arg(name);
        mMaximum = std::numeric_limits<int>::max();
        break;
    }
}

void CommandLine::endOptionsAtFirstArgument()
{
    mParser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
}

bool CommandLine::parse(const QStringList &words, Console &console)
{
    if (!mParser.parse(words)) {
        console.usageError(mProgram, visible(mParser.errorText()));
        return false;
    }
    if (mParser.isSet(QLatin1String(kHelp))) {
        console.out() << helpText();
        return false;
    }
    if (mParser.isSet(QLatin1String(kVersion))) {
        console.out() << "k7e " K7E_VERSION "\n";
        return false;
    }
    const QStringList given = arguments();
    if (given.size() < mRequired.size()) {
        console.usageError(mProgram,
                           QStringLiteral("%1 is missing").arg(mRequired.at(given.size())));
        return false;
    }
    if (given.size() > mMaximum) {
        console.usageError(
            mProgram,
            QStringLiteral("unexpected argument \"%1\"").arg(visible(given.at(mMaximum))));
        return false;
    }
    return true;
}

void CommandLine::refuse(const QString &option, Console &console) const
{
    console.usageError(
        mProgram,
        QStringLiteral("\"%1\" is no value for --%2").arg(visible(value(option)), option));
}

QString CommandLine::helpText() const
{
    // Qt's first line names the file that was started, which says nothing about the command.
    const QString text = mParser.helpText();
    return QStringLiteral("Usage: ") + mSyntax + text.mid(text.indexOf(QLatin1Char('\n')));
}
