#include "CHmac.h"
#include "CStr.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "FileError.h"
#include "ValueText.h"

#include <QFile>

#include <optional>

namespace {

constexpr unsigned int kMaxDigits = 9;
constexpr unsigned int kMaxWindow = 100000; // steps; they are tried in less than a second

const QString kHex = QStringLiteral("hex");
const QString kDigits = QStringLiteral("digits");
const QString kStep = QStringLiteral("step");
const QString kStart = QStringLiteral("start");
const QString kCheck = QStringLiteral("check");
const QString kWindow = QStringLiteral("window");

// What the command line asks for.
struct Request
{
    unsigned int digits = 0;
    unsigned int step = 0;
    unsigned long long start = 0;
    unsigned int window = 0;
};

QCommandLineOption numberOption(const QString &name, const QString &description,
                                const QString &number)
{
    return {name, description.arg(number), QStringLiteral("N"), number};
}

void addOptions(CommandLine &line)
{
    line.addOption({kHex, QStringLiteral("The key file holds hexadecimal digits.")});
    line.addOption(numberOption(kDigits, QStringLiteral("Digits, 1 to 9; %1 without this."),
                                QStringLiteral("6")));
    line.addOption(numberOption(kStep, QStringLiteral("Seconds in a step; %1 without this."),
                                QStringLiteral("30")));
    line.addOption(numberOption(
        kStart, QStringLiteral("Seconds from 1970 to the first step; %1 without this."),
        QStringLiteral("0")));
    line.addOption(
        {kCheck, QStringLiteral("Tells whether this code is accepted."), QStringLiteral("CODE")});
    line.addOption(numberOption(
        kWindow, QStringLiteral("Earlier steps whose code is accepted too; %1 without this."),
        QStringLiteral("1")));
}

// Returns what the options say, or nothing after a usage error.
std::optional<Request> request(const CommandLine &line, Console &console)
{
    const auto refuse = [&](const QString &option) {
        line.refuse(option, console);
        return std::nullopt;
    };
    Request result;
    if (!CStr::strToU32(line.value(kDigits), result.digits) || result.digits < 1
        || result.digits > kMaxDigits)
        return refuse(kDigits);
    if (!CStr::strToU32(line.value(kStep), result.step) || result.step == 0)
        return refuse(kStep);
    if (!CStr::strToU64(line.value(kStart), result.start))
        return refuse(kStart);
    if (!CStr::strToU32(line.value(kWindow), result.window) || result.window > kMaxWindow)
        return refuse(kWindow);
    return result;
}

// Returns the key in the file, or nothing after an error.
std::optional<QByteArray> readKey(const QString &fileName, bool isHex, Console &console)
{
    QFile file(fileName);
    if (!openInput(file, console))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    if (!isHex)
        return bytes;
    const QByteArray digits = bytes.simplified().replace(' ', "");
    const QByteArray key = QByteArray::fromHex(digits);
    if (digits.isEmpty() || key.toHex() != digits.toLower()) {
        reportFileError(fileName, QStringLiteral("holds no hexadecimal digits"), console);
        return std::nullopt;
    }
    return key;
}

} // namespace

void runOtp(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows the one-time code of the present time, or checks one."));
    line.addArgument(QStringLiteral("KEYFILE"),
                     QStringLiteral("The file whose bytes are the key, a last line end too."));
    addOptions(line);
    if (!line.parse(arguments, console))
        return;
    const std::optional<Request> asked = request(line, console);
    if (!asked)
        return;
    const int digits = static_cast<int>(asked->digits);
    const std::optional<QByteArray> key
        = readKey(line.arguments().first(), line.isSet(kHex), console);
    if (!key)
        return;
    if (!line.isSet(kCheck)) {
        console.out() << CHmac::totpStr(*key, asked->start, asked->step, digits) << '\n';
        return;
    }
    const QString code = line.value(kCheck);
    if (code.size() != digits) {
        console.error(
            QStringLiteral("\"%1\" does not have %2 digits").arg(visible(code)).arg(digits));
    } else if (CHmac::validateTotp(code, *key, asked->start, asked->step, digits, asked->window)
               != CHmac::TOTP_ACCEPTED) {
        console.error(QStringLiteral("\"%1\" is not accepted").arg(visible(code)));
    } else {
        console.out() << "accepted\n";
    }
}
