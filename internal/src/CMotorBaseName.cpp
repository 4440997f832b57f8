#include "CMotorBaseName.h"

#include <QDataStream>
#include <QDebug>
#include <QFileInfo>
#include <QStringView>

#include <algorithm>
#include <utility>

// Texts are matched by hand, since building a QRegExp costs more than all else together and one
// that is kept cannot be shared by threads.

namespace {

constexpr QChar kSeparator = QLatin1Char('_');
constexpr char kInvalidNumber[] = "CParameterFileMotorName() : Invalid number '%s'";

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool isPartCharacter(QChar character)
{
    const ushort unit = character.unicode();
    return (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z') || isDigit(character)
        || unit == '-' || unit == '&' || unit == '+';
}

// What the class of a part's characters matches in a case-insensitive QRegExp: three more letters,
// which case folding takes for i, s and k.
bool isPartCharacterInAnyCase(QChar character)
{
    const ushort unit = character.unicode();
    return isPartCharacter(character) || unit == 0x0131 || unit == 0x017F || unit == 0x212A;
}

// Cuts the TAB and CR that may stand behind a part.
QStringView withoutTail(QStringView text)
{
    return text.endsWith(QLatin1String("\t\r")) ? text.chopped(2) : text;
}

bool isPart(QStringView text)
{
    text = withoutTail(text);
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), isPartCharacter);
}

bool isDigitOrNothing(QStringView text)
{
    text = withoutTail(text);
    return text.isEmpty() || (text.size() == 1 && isDigit(text.front()));
}

bool isDigits(QStringView text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), isDigit);
}

// Returns whether 'text' matches fullRegExp().
bool isFullName(QStringView text, bool numericNumber)
{
    for (int part = 0; part < 2; ++part) {
        const auto end = std::find_if_not(text.begin(), text.end(), isPartCharacterInAnyCase);
        if (end == text.begin() || end == text.end() || *end != kSeparator)
            return false;
        text = text.mid(end - text.begin() + 1);
    }
    return !text.isEmpty()
        && std::all_of(text.begin(), text.end(),
                       numericNumber ? isDigit : isPartCharacterInAnyCase);
}

bool store(QString &part, const QString &text, bool isRight)
{
    if (isRight)
        part = text;
    return isRight;
}

} // namespace

CMotorBaseName::CMotorBaseName() = default;

CMotorBaseName::CMotorBaseName(bool numericNumber) : mNumericNumber(numericNumber)
{
}

CMotorBaseName::CMotorBaseName(const QString &manufacturer, const QString &name,
                               const QString &number, bool numericNumber)
    : mFileName{manufacturer, name, number}
    , mNumericNumber(numericNumber)
{
    if (mNumericNumber && !checkNumber(number))
        qWarning(kInvalidNumber, number.toLocal8Bit().constData());
}

CMotorBaseName::CMotorBaseName(const QString &fileBaseName, bool numericNumber)
    : mNumericNumber(numericNumber)
{
    setFileBaseName(fileBaseName);
}

CMotorBaseName::CMotorBaseName(const char *fileBaseName)
    : CMotorBaseName(QString::fromUtf8(fileBaseName), false)
{
}

CMotorBaseName::CMotorBaseName(const CMotorBaseName &other) = default;
CMotorBaseName::CMotorBaseName(CMotorBaseName &&other) noexcept = default;
CMotorBaseName::~CMotorBaseName() = default;

CMotorBaseName &CMotorBaseName::operator=(const CMotorBaseName &other)
{
    if (this != &other)
        mFileName = other.mFileName;
    return *this;
}

CMotorBaseName &CMotorBaseName::operator=(CMotorBaseName &&other) noexcept
{
    mFileName = std::move(other.mFileName);
    return *this;
}

CMotorBaseName &CMotorBaseName::operator=(const QString &fileBaseName)
{
    setFileBaseName(fileBaseName);
    return *this;
}

void CMotorBaseName::swap(CMotorBaseName &other) noexcept
{
    std::swap(mFileName, other.mFileName);
    std::swap(mNumericNumber, other.mNumericNumber);
}

QString CMotorBaseName::number() const
{
    return mFileName.number.isEmpty() ? QStringLiteral("0") : mFileName.number;
}

int CMotorBaseName::numberAsI32() const
{
    bool ok = false;
    const int number = mFileName.number.toInt(&ok);
    return ok ? number : -1;
}

bool CMotorBaseName::setManufacturer(const QString &manufacturer)
{
    return store(mFileName.manufacturer, manufacturer, isPart(manufacturer));
}

bool CMotorBaseName::setName(const QString &name)
{
    return store(mFileName.name, name, isPart(name));
}

bool CMotorBaseName::setNumber(const QString &number)
{
    return store(mFileName.number, number,
                 mNumericNumber ? isDigitOrNothing(number) : isPart(number));
}

bool CMotorBaseName::checkNumber(const QString &number) const
{
    return isDigits(number);
}

QString CMotorBaseName::defaultMotorBaseName()
{
    return QStringLiteral("UNKNOWN_UNKNOWN_1");
}

QString CMotorBaseName::fileBaseName() const
{
    if (isEmpty())
        return QString();
    return mFileName.manufacturer + kSeparator + mFileName.name + kSeparator + number();
}

QRegExp CMotorBaseName::fullRegExp(bool numericNumber)
{
    const QString part = QStringLiteral(R"([0-9a-zA-Z\-&\+]+)");
    const QString number = numericNumber ? QStringLiteral("[0-9]") : part;
    return QRegExp(QStringLiteral("^(%1_){1}(%1_){1}(%2)+$").arg(part, number),
                   Qt::CaseInsensitive);
}

bool CMotorBaseName::isValid(const QString &fileName, bool numericNumber)
{
    return isFullName(QFileInfo(fileName).baseName(), numericNumber);
}

bool CMotorBaseName::isValid() const
{
    return isFullName(fileBaseName(), mNumericNumber);
}

bool CMotorBaseName::setFileBaseName(const QString &fileBaseName)
{
    clear();
    const QString name = QFileInfo(fileBaseName).fileName();
    // Contract: what is no name at all is reported as a success, with nothing set.
    if (!isFullName(name, mNumericNumber))
        return true;
    // The name has no suffix, and exactly two separators.
    const int first = name.indexOf(kSeparator);
    const int second = name.indexOf(kSeparator, first + 1);
    return setManufacturer(name.left(first)) && setName(name.mid(first + 1, second - first - 1))
        && setNumber(name.mid(second + 1));
}

void CMotorBaseName::clear()
{
    mFileName = SMOFileName();
}

bool CMotorBaseName::isEmpty() const
{
    return mFileName.manufacturer.isEmpty() && mFileName.name.isEmpty()
        && mFileName.number.isEmpty();
}

bool CMotorBaseName::operator==(const CMotorBaseName &other) const
{
    return mFileName.manufacturer == other.mFileName.manufacturer
        && mFileName.name == other.mFileName.name && mFileName.number == other.mFileName.number;
}

QDataStream &operator<<(QDataStream &out, const CMotorBaseName &name)
{
    const CMotorBaseName::SMOFileName &parts = name.mFileName;
    return out << parts.manufacturer << parts.name << parts.number;
}

QDataStream &operator>>(QDataStream &in, CMotorBaseName &name)
{
    CMotorBaseName::SMOFileName &parts = name.mFileName;
    return in >> parts.manufacturer >> parts.name >> parts.number;
}

QDebug operator<<(QDebug debug, const CMotorBaseName &name)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "CMotorBaseName(" << name.fileBaseName() << ')';
    return debug;
}
