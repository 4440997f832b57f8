#include "CIPv6Address.h"

#include <QByteArray>
#include <QDataStream>
#include <QDebug>
#include <QStringView>

#include <algorithm>
#include <cstddef>
#include <iterator>

// Texts are matched by hand, since building a QRegExp costs more than all else together and one
// that is kept cannot be shared by threads.

namespace {

constexpr std::size_t kGroups = 8;
constexpr int kBytes = 16;
const QLatin1String kNoAddress("CIPv6Address::setAddress() : %1 is not a IPv6-Address.");

// The value of a hexadecimal digit, or -1.
int digitValue(QChar character)
{
    const int unit = character.unicode();
    if (unit >= '0' && unit <= '9')
        return unit - '0';
    const int letter = unit | 0x20;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

// What stands between the colons of a text.
struct Group
{
    bool isEmpty = true;
    quint16 value = 0;
};

// The groups of a text that matches the pattern; up to one more than an address has.
struct Groups
{
    Group groups[kGroups + 1];
    std::size_t count = 0;
};

// Takes up to four hexadecimal digits from the front of 'text'.
Group takeGroup(QStringView &text)
{
    constexpr int kMaxDigits = 4;
    Group group;
    int digits = 0;
    while (digits < kMaxDigits && digits < text.size() && digitValue(text.at(digits)) >= 0) {
        group.value = static_cast<quint16>(16 * group.value + digitValue(text.at(digits)));
        ++digits;
    }
    group.isEmpty = digits == 0;
    text = text.mid(digits);
    return group;
}

// Reads 'text' as Nk7eGlobal::IPV6_PATTERN does: a group or a colon, then up to seven times a colon
// and a group that may be empty. Returns whether it matches.
bool readGroups(QStringView text, Groups &read)
{
    const Group first = takeGroup(text);
    read.groups[read.count++] = first;
    if (first.isEmpty) {
        // The colon that stands for the first group has nothing behind it but another one.
        if (!text.startsWith(QLatin1Char(':')))
            return false;
        text = text.mid(1);
        read.groups[read.count++] = Group();
    }
    for (std::size_t i = 1; i < kGroups && text.startsWith(QLatin1Char(':')); ++i) {
        text = text.mid(1);
        read.groups[read.count++] = takeGroup(text);
    }
    return text.isEmpty();
}

// Shows what Latin-1 does not have as "?".
void warnOf(const QString &text)
{
    const QByteArray latin1 = text.toLatin1();
    qWarning().noquote() << QString(kNoAddress).arg(QLatin1String(latin1.data(), latin1.size()));
}

} // namespace

CIPv6Address::CIPv6Address() = default;

CIPv6Address::CIPv6Address(const QByteArray &bytes)
{
    setAddress(bytes);
}

CIPv6Address::CIPv6Address(unsigned char *bytes)
{
    setAddress(bytes);
}

CIPv6Address::CIPv6Address(const unsigned char *bytes)
{
    setAddress(bytes);
}

CIPv6Address::CIPv6Address(const QVariant &value)
{
    setAddress(value);
}

CIPv6Address::CIPv6Address(const QString &text)
{
    setAddress(text);
}

CIPv6Address::CIPv6Address(const CIPv6Address &other) = default;
CIPv6Address::CIPv6Address(CIPv6Address &&other) noexcept = default;
CIPv6Address::~CIPv6Address() = default;
CIPv6Address &CIPv6Address::operator=(const CIPv6Address &other) = default;
CIPv6Address &CIPv6Address::operator=(CIPv6Address &&other) noexcept = default;

CIPv6Address &CIPv6Address::operator=(const QByteArray &bytes)
{
    setAddress(bytes);
    return *this;
}

CIPv6Address &CIPv6Address::operator=(const QVariant &value)
{
    setAddress(value);
    return *this;
}

CIPv6Address &CIPv6Address::operator=(const QString &text)
{
    setAddress(text);
    return *this;
}

void CIPv6Address::swap(CIPv6Address &other) noexcept
{
    std::swap(mAddress, other.mAddress);
}

bool CIPv6Address::setAddress(const QByteArray &bytes)
{
    if (bytes.size() == kBytes)
        std::copy(bytes.begin(), bytes.end(), std::begin(mAddress));
    return false; // Contract: callers rely on it
}

void CIPv6Address::setAddress(unsigned char *bytes)
{
    setAddress(const_cast<const unsigned char *>(bytes));
}

void CIPv6Address::setAddress(const unsigned char *bytes)
{
    std::copy_n(bytes, kBytes, mAddress);
}

bool CIPv6Address::setAddress(const QVariant &value)
{
    if (value.userType() == QMetaType::QByteArray)
        return setAddress(value.toByteArray());
    clear();
    return false;
}

bool CIPv6Address::setAddress(const QString &text)
{
    Groups read;
    if (!readGroups(text, read)) {
        clear();
        warnOf(text);
        return false;
    }
    // Contract: any other number of groups is taken for an address, and stores nothing.
    if (read.count == kGroups) {
        for (std::size_t i = 0; i < kGroups; ++i) {
            const Group &group = read.groups[i];
            if (group.isEmpty)
                continue;
            mAddress[2 * i] = static_cast<unsigned char>(group.value & 0xFF);
            mAddress[2 * i + 1] = static_cast<unsigned char>(group.value >> 8);
        }
    }
    return true;
}

void CIPv6Address::clear()
{
    std::fill(std::begin(mAddress), std::end(mAddress), static_cast<unsigned char>(0));
}

QByteArray CIPv6Address::byteArray() const
{
    return QByteArray(reinterpret_cast<const char *>(mAddress), kBytes);
}

CIPv6Address::operator QVariant() const
{
    return byteArray();
}

QString CIPv6Address::str() const
{
    constexpr char kDigits[] = "0123456789abcdef";
    QString text;
    text.reserve(39); // eight groups of four digits
    for (std::size_t i = 0; i < kGroups; ++i) {
        if (i > 0)
            text += QLatin1Char(':');
        const int group = mAddress[2 * i] | mAddress[2 * i + 1] << 8;
        for (int shift = 12; shift >= 0; shift -= 4) {
            if (shift == 0 || group >> shift != 0)
                text += QLatin1Char(kDigits[group >> shift & 0xF]);
        }
    }
    return text;
}

bool CIPv6Address::operator==(const CIPv6Address &other) const
{
    return std::equal(std::begin(mAddress), std::end(mAddress), other.mAddress);
}

QDataStream &operator<<(QDataStream &out, const CIPv6Address &address)
{
    for (int i = 0; i < kBytes; ++i)
        out << static_cast<qint8>(address[i]);
    return out;
}

QDataStream &operator>>(QDataStream &in, CIPv6Address &address)
{
    for (int i = 0; i < kBytes; ++i)
        in >> address[i];
    return in;
}

QDebug operator<<(QDebug debug, const CIPv6Address &address)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "CIPv6Address(" << address.str() << ')';
    return debug;
}
