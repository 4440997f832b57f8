#include "CHmac.h"

#include "FloatToInteger_p.h"

#include <QDateTime>
#include <QtEndian>

#include <cmath>
#include <limits>

// The first four bytes of a base64 text are below 0x80, so that a one-time code of 0 to 9 digits is
// never negative: "ABCD" is 0x44434241, half of it 572629280, of which six digits are 629280.

namespace {

constexpr int kMaxField = 1 << 28; // characters of a code, well below what a QString can hold

// The low 32 bits of 10^exponent, or 0 if a signed 64-bit integer cannot hold it or it is no
// integer.
quint32 powerOf10(int exponent)
{
    if (exponent < 0 || exponent > std::numeric_limits<qint64>::digits10)
        return 0;
    quint32 power = 1;
    for (int i = 0; i < exponent; ++i)
        power *= 10;
    return power;
}

QByteArray base64Sha1(const void *message, int size, const QByteArray &key)
{
    QMessageAuthenticationCode code(QCryptographicHash::Sha1, key);
    code.addData(static_cast<const char *>(message), size);
    return code.result().toBase64();
}

// Compares without telling by its time where the codes differ.
bool isSameCode(const QString &left, const QString &right)
{
    if (left.size() != right.size())
        return false;
    int difference = 0;
    for (int i = 0; i < left.size(); ++i)
        difference |= left.at(i).unicode() ^ right.at(i).unicode();
    return difference == 0;
}

} // namespace

CHmac::CHmac(QCryptographicHash::Algorithm method, const QByteArray &key) : mCode(method, key)
{
}

void CHmac::setKey(const QByteArray &key)
{
    mCode.setKey(key);
}

void CHmac::addData(const QByteArray &data)
{
    mCode.addData(data);
}

void CHmac::resetData()
{
    mCode.reset();
}

QByteArray CHmac::result() const
{
    return mCode.result();
}

QByteArray CHmac::hmac(const QByteArray &message, QCryptographicHash::Algorithm method,
                       const QByteArray &key)
{
    return QMessageAuthenticationCode::hash(message, key, method);
}

QByteArray CHmac::hmacSha1(const QByteArray &message, const QByteArray &key)
{
    return base64Sha1(message.constData(), message.size(), key);
}

int CHmac::hotp(const QByteArray &data, int digits)
{
    if (data.size() < static_cast<int>(sizeof(qint32)))
        return 0;
    const auto number = static_cast<quint32>(qFromLittleEndian<qint32>(data.constData()) >> 1);
    const quint32 divisor = powerOf10(digits);
    return divisor == 0 ? 0 : static_cast<int>(number % divisor);
}

int CHmac::totp(const QByteArray &key, unsigned long long startTime, unsigned int timeStep,
                int digits)
{
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
    const double elapsed = now - static_cast<double>(startTime);
    const double steps
        = timeStep == 0 ? std::numeric_limits<double>::infinity() : elapsed / timeStep;
    const long double wholeSteps = std::floor(steps);
    const qint64 message = qToLittleEndian(FloatToInteger::truncated<qint64>(wholeSteps));
    return hotp(base64Sha1(&message, sizeof message, key), digits);
}

QString CHmac::totpStr(const QByteArray &key, unsigned long long startTime, unsigned int timeStep,
                       int digits)
{
    if (digits < -kMaxField || digits > kMaxField)
        return QString();
    const QString code = QString::number(totp(key, startTime, timeStep, digits));
    const QLatin1Char zero('0');
    // A field of negative width is aligned to the left, as everywhere in Qt.
    return digits < 0 ? code.leftJustified(-digits, zero)
                      : code.rightJustified(digits, zero).right(digits);
}

int CHmac::validateTotp(const QString &code, const QByteArray &key, unsigned long long startTime,
                        unsigned int timeStep, int digits, unsigned int window)
{
    if (code.size() != digits)
        return TOTP_WRONG_LENGTH;
    if (window > static_cast<unsigned int>(std::numeric_limits<int>::max()))
        return TOTP_REFUSED;
    const auto last = static_cast<qint64>(window);
    for (qint64 i = last; i >= -last; --i) {
        // Contract: the offset has 32 bits without a sign, so that a negative one is far in the
        // future.
        const quint32 offset = timeStep * static_cast<quint32>(i);
        if (isSameCode(totpStr(key, startTime + offset, timeStep, digits), code))
            return TOTP_ACCEPTED;
    }
    return TOTP_REFUSED;
}
