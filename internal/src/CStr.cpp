#include "CStr.h"

#include "CCompanyStrings.h"
#include "CPath.h"
#include "TypeTable_p.h"
#include "Utf16_p.h"

#include <QByteArray>
#include <QChar>
#include <QCoreApplication>
#include <QDataStream>
#include <QFileInfo>
#include <QLocale>
#include <QRegExp>
#include <QStringList>

#include <algorithm>
#include <cstring>
#include <limits>
#include <type_traits>

// The thirty number readers are the three forms below of one conversion, read(). Integers are read
// with 64 bits and tested against the range of their type: "4294967301" is no U8 5.

namespace {

template <class X>
X read(const QString &text, bool *ok, int base)
{
    if constexpr (std::is_same_v<X, float>)
        return text.toFloat(ok);
    else if constexpr (std::is_same_v<X, double>)
        return text.toDouble(ok);
    else {
        using Limits = std::numeric_limits<X>;
        const auto wide = [&] {
            if constexpr (Limits::is_signed)
                return text.toLongLong(ok, base);
            else
                return text.toULongLong(ok, base);
        }();
        *ok = *ok && wide >= Limits::min() && wide <= Limits::max();
        return static_cast<X>(wide);
    }
}

template <class X>
bool readInto(X &value, const QString &text, int base = 10)
{
    bool ok = false;
    const X number = read<X>(text, &ok, base);
    if (ok)
        value = number;
    return ok;
}

template <class X>
X readOr(X defaultValue, const QString &text, int base = 10)
{
    readInto(defaultValue, text, base);
    return defaultValue;
}

template <class X>
X readOk(const QString &text, bool *ok, int base = 10)
{
    X value = 0;
    const bool success = readInto(value, text, base);
    if (ok)
        *ok = success;
    return value;
}

constexpr unsigned int kFixPointBits = 32;

// The integer part of a fixed-point value; every shift is defined, and 32 bits and more leave none.
unsigned int integerPart(unsigned int value, unsigned int fracBits)
{
    return fracBits < kFixPointBits ? value >> fracBits : 0;
}

unsigned int fractionMask(unsigned int fracBits)
{
    return fracBits < kFixPointBits ? (1U << fracBits) - 1 : ~0U;
}

// Both revision forms: Bits is the width of each number. 0x00010005 is 1 and 5 with 16 bits.
template <int Bits>
QString writeRevision(unsigned int revision, int minorDigits)
{
    constexpr unsigned int kMask = (1U << Bits) - 1;
    return QStringLiteral("%1.%2")
        .arg(revision >> Bits)
        .arg(revision & kMask, minorDigits, 10, QLatin1Char('0'));
}

template <int Bits, class Revision>
bool readRevision(const QString &text, Revision &revision)
{
    constexpr unsigned int kMask = (1U << Bits) - 1;
    int major = 0;
    int minor = 0;
    if (!CStr::_splitStringAtDot(text, major, minor))
        return false;
    // Unsigned, so that negative numbers are beyond the limit too.
    const auto high = static_cast<unsigned int>(major);
    const auto low = static_cast<unsigned int>(minor);
    if (high > kMask || low > kMask)
        return false;
    revision = static_cast<Revision>(high << Bits | low);
    return true;
}

constexpr char kReadPastEnd[] = QT_TRANSLATE_NOOP(
    "CStr",
    "Stream ERROR while reading value \"%1\" : The data stream has read past the end of the data.");
constexpr char kReadCorruptData[] = QT_TRANSLATE_NOOP(
    "CStr", "Stream ERROR while reading value \"%1\" : The data stream has read corrupt data.");
constexpr char kUnknownStatus[]
    = QT_TRANSLATE_NOOP("CStr", "Stream ERROR while reading value \"%1\" : Unknown stream status.");

const char *streamErrorText(QDataStream::Status status)
{
    switch (status) {
    case QDataStream::ReadPastEnd:
        return kReadPastEnd;
    case QDataStream::ReadCorruptData:
        return kReadCorruptData;
    default:
        return kUnknownStatus;
    }
}

QString withExtra(const QString &text, const QString &extra)
{
    return extra.isEmpty() ? text : QStringLiteral("%1 - %2").arg(text, extra);
}

} // namespace

bool CStr::strToU8(const QString &text, unsigned char &value, int base)
{
    return readInto(value, text, base);
}

unsigned char CStr::strToU8(unsigned char defaultValue, const QString &text, int base)
{
    return readOr(defaultValue, text, base);
}

unsigned char CStr::strToU8(const QString &text, bool *ok, int base)
{
    return readOk<unsigned char>(text, ok, base);
}

bool CStr::strToI8(const QString &text, signed char &value, int base)
{
    return readInto(value, text, base);
}

signed char CStr::strToI8(signed char defaultValue, const QString &text)
{
    return readOr(defaultValue, text);
}

signed char CStr::strToI8(const QString &text, bool *ok, int base)
{
    return readOk<signed char>(text, ok, base);
}

bool CStr::strToU16(const QString &text, unsigned short &value, int base)
{
    return readInto(value, text, base);
}

unsigned short CStr::strToU16(unsigned short defaultValue, const QString &text, int base)
{
    return readOr(defaultValue, text, base);
}

unsigned short CStr::strToU16(const QString &text, bool *ok, int base)
{
    return readOk<unsigned short>(text, ok, base);
}

bool CStr::strToI16(const QString &text, short &value, int base)
{
    return readInto(value, text, base);
}

short CStr::strToI16(short defaultValue, const QString &text)
{
    return readOr(defaultValue, text);
}

short CStr::strToI16(const QString &text, bool *ok, int base)
{
    return readOk<short>(text, ok, base);
}

bool CStr::strToU32(const QString &text, unsigned int &value, int base)
{
    return readInto(value, text, base);
}

unsigned int CStr::strToU32(unsigned int defaultValue, const QString &text, int base)
{
    return readOr(defaultValue, text, base);
}

unsigned int CStr::strToU32(const QString &text, bool *ok, int base)
{
    return readOk<unsigned int>(text, ok, base);
}

bool CStr::strToI32(const QString &text, int &value, int base)
{
    return readInto(value, text, base);
}

int CStr::strToI32(int defaultValue, const QString &text)
{
    return readOr(defaultValue, text);
}

int CStr::strToI32(const QString &text, bool *ok, int base)
{
    return readOk<int>(text, ok, base);
}

bool CStr::strToF32(const QString &text, float &value)
{
    return readInto(value, text);
}

float CStr::strToF32(float defaultValue, const QString &text)
{
    return readOr(defaultValue, text);
}

float CStr::strToF32(const QString &text, bool *ok)
{
    return readOk<float>(text, ok);
}

bool CStr::strToU64(const QString &text, unsigned long long &value, int base)
{
    return readInto(value, text, base);
}

unsigned long long CStr::strToU64(unsigned long long defaultValue, const QString &text, int base)
{
    return readOr(defaultValue, text, base);
}

unsigned long long CStr::strToU64(const QString &text, bool *ok, int base)
{
    return readOk<unsigned long long>(text, ok, base);
}

bool CStr::strToI64(const QString &text, long long &value, int base)
{
    return readInto(value, text, base);
}

long long CStr::strToI64(long long defaultValue, const QString &text)
{
    return readOr(defaultValue, text);
}

long long CStr::strToI64(const QString &text, bool *ok, int base)
{
    return readOk<long long>(text, ok, base);
}

bool CStr::strToF64(const QString &text, double &value)
{
    return readInto(value, text);
}

double CStr::strToF64(double defaultValue, const QString &text)
{
    return readOr(defaultValue, text);
}

double CStr::strToF64(const QString &text, bool *ok)
{
    return readOk<double>(text, ok);
}

QString CStr::fixPointToStr(unsigned int value, unsigned int fracBits, const QChar &separator)
{
    return QString::number(integerPart(value, fracBits)) + separator
        + QString::number(value & fractionMask(fracBits));
}

unsigned int CStr::strToFixPoint(const QString &text, bool *ok, unsigned int fracBits,
                                 const QChar &separator)
{
    const QStringList pieces = text.split(separator);
    bool success = false;
    unsigned int value = 0;
    if (pieces.size() == 2) {
        const unsigned int integer = pieces.at(0).toUInt(&success);
        if (success) {
            value = fracBits < kFixPointBits ? integer << fracBits : 0;
            value |= pieces.at(1).toUInt(&success) & fractionMask(fracBits);
        }
    }
    if (ok)
        *ok = success;
    return value;
}

QString CStr::revisionToString(unsigned int revision)
{
    return writeRevision<16>(revision, 3);
}

QString CStr::revisionToString(unsigned short revision)
{
    return writeRevision<8>(revision, 2);
}

bool CStr::stringToRevision(QString text, unsigned int &revision)
{
    return readRevision<16>(text, revision);
}

bool CStr::stringToRevision(QString text, unsigned short &revision)
{
    return readRevision<8>(text, revision);
}

bool CStr::_splitStringAtDot(QString text, int &major, int &minor)
{
    const QStringList pieces = text.split(QLatin1Char('.'));
    if (pieces.size() > 2)
        return false;
    bool ok = false;
    minor = 0;
    major = pieces.at(0).toInt(&ok);
    if (ok && pieces.size() == 2)
        minor = pieces.at(1).toInt(&ok);
    return ok;
}

QString CStr::serialToString(unsigned int serial)
{
    QString text = QString::number(serial);
    // Each position counts the blanks inserted before; inserting behind the end pads with blanks.
    for (const int position : {1, 5, 9})
        text.insert(position, QLatin1Char(' '));
    return text.trimmed();
}

QString CStr::memSizeToString(long long bytes)
{
    constexpr qint64 kKiB = 1024;
    struct Unit
    {
        qint64 bytes;
        const char *name;
    };
    constexpr Unit kUnits[] = {{kKiB, "KiB"},
                               {kKiB * kKiB, "MiB"},
                               {kKiB * kKiB * kKiB, "GiB"},
                               {kKiB * kKiB * kKiB * kKiB, "TiB"}};
    constexpr int kPiBShift = 50;

    if (bytes < 10 * kKiB)
        return QStringLiteral("%1 Byte").arg(bytes);
    for (const Unit &unit : kUnits) {
        if (bytes < 10 * kKiB * unit.bytes) {
            const double size = static_cast<double>(bytes) / static_cast<double>(unit.bytes);
            return QStringLiteral("%1 %2").arg(size, 0, 'f', 1).arg(QLatin1String(unit.name));
        }
    }
    return QStringLiteral("%1 PiB").arg(bytes >> kPiBShift);
}

QString CStr::cutString(const QString &text, unsigned int maxLength, bool &cut, bool atWord)
{
    const QLatin1String ellipsis(" ...");
    cut = maxLength < static_cast<unsigned int>(text.size());
    if (!cut)
        return text;
    int length = std::max(static_cast<int>(maxLength) - ellipsis.size(), 0);
    if (atWord && length > 0) {
        // Contract: a blank exactly at the cut does not count; the word before it goes too.
        const int blank = text.lastIndexOf(QLatin1Char(' '), length - 1);
        if (blank > 0)
            length = blank;
    }
    return text.leftRef(length) + ellipsis;
}

QString CStr::doubleToString(double value, int decimals)
{
    const QLocale locale;
    return locale.toString(value, 'f', decimals).remove(locale.groupSeparator());
}

int CStr::indexOfAmpersand(const QString &text)
{
    // Built anew in each call: matching changes a QRegExp, and calls may run on any thread.
    return text.indexOf(QRegExp(QStringLiteral(R"((^|[^&])&(?!(&|\W|$)))")));
}

void CStr::toUtf16(const QString &text, unsigned short *buffer, int bufferBytes)
{
    if (bufferBytes < 1)
        return;
    std::memset(buffer, 0, static_cast<std::size_t>(bufferBytes));
    const qint64 terminatorBytes = sizeof(QChar);
    const qint64 bytes
        = std::min(bufferBytes - terminatorBytes, text.size() * static_cast<qint64>(sizeof(QChar)));
    if (bytes > 0)
        std::memcpy(buffer, text.constData(), static_cast<std::size_t>(bytes));
}

QString CStr::fromUtf16(const unsigned short *buffer, int bufferBytes)
{
    return bufferBytes > 1 ? Utf16::text(buffer, bufferBytes / 2) : QLatin1String("");
}

QString CStr::fromUtf16(const QByteArray &data)
{
    return Utf16::text(data.constData(), data.size() / 2);
}

QString CStr::nTypeToStr(NTypes::ETypes type)
{
    return TypeTable::name(type);
}

QString CStr::createDeviceSelectionValue(const QString &name, unsigned int serial)
{
    // All places filled at once: a name that holds "%2" stays as it is.
    return QStringLiteral("%1 [s/n: %2]").arg(name, QString::number(serial));
}

QString CStr::createSubDeviceSelectionValue(const QString &deviceName, const QString &subDeviceName,
                                            unsigned int serial)
{
    return QStringLiteral("%1 - %2").arg(deviceName,
                                         createDeviceSelectionValue(subDeviceName, serial));
}

QString CStr::getVersionString(const QString &version, const QString &extra)
{
    return withExtra(QStringLiteral("[ V%1 ]").arg(version), extra);
}

QString CStr::getVersionString(const QString &version, const QString &buildDate,
                               const QLocale &locale, const QString &extra)
{
    return withExtra(QStringLiteral("[ V%1 - %2 ]").arg(version, createDate(locale, buildDate)),
                     extra);
}

QString CStr::createDate(const QLocale &locale, const QString &buildDate)
{
    return createQDateFrom__DATE__(buildDate).toString(locale.dateFormat(QLocale::ShortFormat));
}

QDate CStr::createQDateFrom__DATE__(const QString &buildDate)
{
    QStringList pieces = buildDate.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (pieces.size() != 3)
        return QDate();
    QString &day = pieces[1];
    if (day.size() == 1)
        day.prepend(QLatin1Char('0'));
    // The name of no locale gives the neutral one, whose months are English in every environment.
    const QLocale english(QStringLiteral("QLocale::English"));
    return english.toDate(pieces.join(QLatin1Char(' ')), QStringLiteral("MMM dd yyyy"));
}

QString CStr::createApplicationTitle(const QLocale &locale, const QString &buildDate,
                                     const QString &applicationName, const QString &version,
                                     const QString &extra)
{
    return QStringLiteral("%1 - %2 - %3")
        .arg(applicationName, CCompanyStrings::getCompanyLongName(),
             getVersionString(version, buildDate, locale, extra));
}

QString CStr::createShortApplicationTitle(const QLocale &locale, const QString &applicationName,
                                          const QString &version, const QString &buildDate,
                                          unsigned int buildNumber)
{
    Q_UNUSED(locale) // Contract: the date is the same under every locale
    QString title = QStringLiteral("%1 %2 - V%3")
                        .arg(CCompanyStrings::getCompanyShortName(), applicationName, version);
    if (buildDate.isEmpty() && buildNumber == 0)
        return title;
    QStringList build;
    if (buildNumber != 0)
        build += QStringLiteral("Build %1").arg(buildNumber);
    // Contract: what is no date is empty text, with the separator in front of it.
    if (!buildDate.isEmpty())
        build += createQDateFrom__DATE__(buildDate).toString(Qt::ISODate);
    return QStringLiteral("%1 - [ %2 ]").arg(title, build.join(QStringLiteral(" - ")));
}

QString CStr::createLogFileName(QString baseName, bool withPid)
{
    const QFileInfo file(baseName.isEmpty() ? QCoreApplication::applicationFilePath() : baseName);
    QString name = file.completeBaseName();
    if (withPid)
        name += QStringLiteral("_PID%1").arg(QCoreApplication::applicationPid());
    return CPath::logPath(false) + name + QLatin1String(".log");
}

bool CStr::inStreamStatus(const QDataStream &stream, const QString &valueName, QString &error)
{
    const QDataStream::Status status = stream.status();
    if (status == QDataStream::Ok)
        return true;
    error = QCoreApplication::translate("CStr", streamErrorText(status)).arg(valueName);
    return false;
}
