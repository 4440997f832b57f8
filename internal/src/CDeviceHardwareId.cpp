#include "CDeviceHardwareId.h"

#include <QDataStream>
#include <QDebug>
#include <QStringView>

#include <algorithm>

// The three forms differ only in how many numbers they have: 1 is the minimum, 2 the short, 3 the
// full form. Texts are matched by hand, since building a QRegExp costs more than all else together
// and one that is kept cannot be shared by threads.

namespace {

using SHardwareId = CDeviceHardwareId::SHardwareId;

constexpr ushort kNotSet = 0xFFFF;
constexpr int kDigits = 3;
constexpr uint kNumberEnd = 1000; // of a number of so many digits
constexpr QChar kSeparator = QLatin1Char('_');

// What \w of a QRegExp matches.
bool isWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character == kSeparator;
}

bool isNumberText(QStringView text)
{
    return !text.isEmpty() && text.size() <= kDigits
        && std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

bool isPrefix(QStringView text)
{
    return text.size() == 1 && !text.front().isDigit();
}

QRegExp formRegExp(const char *pattern)
{
    return QRegExp(QString(QLatin1String(pattern)).arg(kDigits));
}

// Returns whether 'text' matches the expression of the form with so many numbers.
bool hasForm(QStringView text, int numbers)
{
    if (!text.isEmpty() && isPrefix(text.left(1)))
        text = text.mid(1);
    for (int i = 0; i < numbers; ++i) {
        if (i > 0) {
            if (!text.startsWith(kSeparator))
                return false;
            text = text.mid(1);
        }
        if (text.size() < kDigits || !isNumberText(text.left(kDigits)))
            return false;
        text = text.mid(kDigits);
    }
    return text.isEmpty()
        || (text.size() > 1 && text.startsWith(kSeparator)
            && std::all_of(text.begin(), text.end(), isWordCharacter));
}

// Returns whether 'id' has the parts of the form with so many numbers.
bool hasForm(const SHardwareId &id, int numbers)
{
    return (id.prefix.isEmpty() || isPrefix(id.prefix)) && id.platform < kNumberEnd
        && (numbers < 2 || id.version < kNumberEnd) && (numbers < 3 || id.revision < kNumberEnd);
}

bool setNumber(ushort &number, QStringView text)
{
    if (!isNumberText(text))
        return false;
    // Contract: 0 for digits other than the ASCII ones.
    uint value = 0;
    for (const QChar digit : text) {
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9')) {
            value = 0;
            break;
        }
        value = 10 * value + digit.unicode() - '0';
    }
    number = static_cast<ushort>(value);
    return true;
}

// Appends a number below 1000.
void appendNumber(QString &text, uint number)
{
    for (uint unit = kNumberEnd / 10; unit > 0; unit /= 10)
        text += QLatin1Char(static_cast<char>('0' + number / unit % 10));
}

QString numberStr(ushort number)
{
    QString text;
    if (number == kNotSet)
        return text;
    if (number >= kNumberEnd)
        return text.setNum(number);
    appendNumber(text, number);
    return text;
}

// Returns 'id' in the form with so many numbers, or a null string if it does not have it.
QString form(const SHardwareId &id, int numbers)
{
    if (!hasForm(id, numbers))
        return QString();
    QString text;
    text.reserve(id.prefix.size() + numbers * (kDigits + 1) + id.name.size());
    text += id.prefix;
    const ushort values[] = {id.platform, id.version, id.revision};
    for (int i = 0; i < numbers; ++i) {
        if (i > 0)
            text += kSeparator;
        appendNumber(text, values[i]);
    }
    if (!id.name.isEmpty())
        text += kSeparator + id.name;
    return text;
}

} // namespace

CDeviceHardwareId::CDeviceHardwareId() = default;

CDeviceHardwareId::CDeviceHardwareId(const QString &text)
{
    setHardwareId(text);
}

CDeviceHardwareId::CDeviceHardwareId(const CDeviceHardwareId &other) = default;
CDeviceHardwareId::CDeviceHardwareId(CDeviceHardwareId &&other) noexcept = default;
CDeviceHardwareId::~CDeviceHardwareId() = default;
CDeviceHardwareId &CDeviceHardwareId::operator=(const CDeviceHardwareId &other) = default;
CDeviceHardwareId &CDeviceHardwareId::operator=(CDeviceHardwareId &&other) noexcept = default;

CDeviceHardwareId &CDeviceHardwareId::operator=(const QString &text)
{
    setHardwareId(text);
    return *this;
}

void CDeviceHardwareId::swap(CDeviceHardwareId &other) noexcept
{
    std::swap(mHardwareId, other.mHardwareId);
}

QRegExp CDeviceHardwareId::minimumRegExp()
{
    return formRegExp(R"(^((\D?\d{%1}){1})(_{1}\w+)?$)");
}

QRegExp CDeviceHardwareId::shortRegExp()
{
    return formRegExp(R"(^((\D?\d{%1}_\d{%1}){1})(_{1}\w+)?$)");
}

QRegExp CDeviceHardwareId::fullRegExp()
{
    return formRegExp(R"(^((\D?\d{%1}_\d{%1}_\d{%1}){1})(_{1}\w+)?$)");
}

bool CDeviceHardwareId::isMinimumHardwareId(const QString &text)
{
    return hasForm(text, 1);
}

bool CDeviceHardwareId::isShortHardwareId(const QString &text)
{
    return hasForm(text, 2);
}

bool CDeviceHardwareId::isFullHardwareId(const QString &text)
{
    return hasForm(text, 3);
}

bool CDeviceHardwareId::checkIVR(const QString &text) const
{
    return isNumberText(text);
}

QString CDeviceHardwareId::platformStr() const
{
    return numberStr(mHardwareId.platform);
}

QString CDeviceHardwareId::versionStr() const
{
    return numberStr(mHardwareId.version);
}

QString CDeviceHardwareId::revisionStr() const
{
    return numberStr(mHardwareId.revision);
}

void CDeviceHardwareId::setPrefix(const QString &prefix)
{
    mHardwareId.prefix = prefix;
}

void CDeviceHardwareId::setPlatform(unsigned short platform)
{
    mHardwareId.platform = platform;
}

void CDeviceHardwareId::setVersion(unsigned short version)
{
    mHardwareId.version = version;
}

void CDeviceHardwareId::setRevision(unsigned short revision)
{
    mHardwareId.revision = revision;
}

bool CDeviceHardwareId::setPlatform(const QString &text)
{
    return setNumber(mHardwareId.platform, text);
}

bool CDeviceHardwareId::setVersion(const QString &text)
{
    return setNumber(mHardwareId.version, text);
}

bool CDeviceHardwareId::setRevision(const QString &text)
{
    return setNumber(mHardwareId.revision, text);
}

void CDeviceHardwareId::setName(const QString &name)
{
    mHardwareId.name = name;
}

bool CDeviceHardwareId::isMinimumHardwareId() const
{
    return hasForm(mHardwareId, 1);
}

bool CDeviceHardwareId::isShortHardwareId() const
{
    return hasForm(mHardwareId, 2);
}

bool CDeviceHardwareId::isFullHardwareId() const
{
    return hasForm(mHardwareId, 3);
}

bool CDeviceHardwareId::isValid() const
{
    return isMinimumHardwareId();
}

QString CDeviceHardwareId::minimumHardwareId() const
{
    return form(mHardwareId, 1);
}

QString CDeviceHardwareId::shortHardwareId() const
{
    return form(mHardwareId, 2);
}

QString CDeviceHardwareId::fullHardwareId() const
{
    return form(mHardwareId, 3);
}

QString CDeviceHardwareId::hardwareId() const
{
    for (int numbers = 3; numbers > 0; --numbers) {
        QString text = form(mHardwareId, numbers);
        if (!text.isNull())
            return text;
    }
    return mHardwareId.name;
}

bool CDeviceHardwareId::setHardwareId(const QString &text)
{
    clear();
    if (text.isEmpty())
        return true;
    int from = 0; // of the piece
    // A "_" ends the first piece before anything of it can be the prefix.
    if (!text.at(0).isDigit() && text.at(0) != kSeparator) {
        mHardwareId.prefix = text.at(0);
        from = 1;
    }
    ushort *const numbers[] = {&mHardwareId.platform, &mHardwareId.version, &mHardwareId.revision};
    for (ushort *number : numbers) {
        const int separator = text.indexOf(kSeparator, from);
        const int end = separator < 0 ? text.size() : separator;
        if (!setNumber(*number, QStringView(text).mid(from, end - from))) {
            if (number == numbers[0])
                return false;
            break;
        }
        if (separator < 0)
            return true;
        from = separator + 1;
    }
    if (from < text.size()) // Contract: no name is null, as it is by default
        mHardwareId.name = text.mid(from);
    return true;
}

void CDeviceHardwareId::clear()
{
    mHardwareId = SHardwareId();
}

bool CDeviceHardwareId::isEmpty() const
{
    return *this == CDeviceHardwareId();
}

bool CDeviceHardwareId::operator==(const CDeviceHardwareId &other) const
{
    const SHardwareId &left = mHardwareId;
    const SHardwareId &right = other.mHardwareId;
    return left.prefix == right.prefix && left.platform == right.platform
        && left.version == right.version && left.revision == right.revision
        && left.name == right.name;
}

QDataStream &operator<<(QDataStream &out, const CDeviceHardwareId &id)
{
    const SHardwareId &parts = id.mHardwareId;
    return out << parts.prefix << parts.platform << parts.version << parts.revision << parts.name;
}

QDataStream &operator>>(QDataStream &in, CDeviceHardwareId &id)
{
    SHardwareId &parts = id.mHardwareId;
    return in >> parts.prefix >> parts.platform >> parts.version >> parts.revision >> parts.name;
}

QDebug operator<<(QDebug debug, const CDeviceHardwareId &id)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "CDeviceHardwareId(" << id.hardwareId() << ')';
    return debug;
}
