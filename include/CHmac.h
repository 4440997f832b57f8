#ifndef CHMAC_H
#define CHMAC_H

#include "k7eCoreExport.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QString>

/*!
    Keyed message authentication codes, and numeric one-time codes made of them.

    An object computes the code of data that comes in pieces. The static functions keep no state and
    may be called from any thread.

    Contract: the one-time codes follow a recipe of their own, the base64 text of an HMAC-SHA1, and
    are not those of RFC 4226 and RFC 6238. Devices in the field compute them in the same way.
*/
class K7ECORE_EXPORT CHmac
{
public:
    //! What validateTotp() returns; names that are additions.
    enum ETotpResult : int { TOTP_ACCEPTED = 0, TOTP_REFUSED = 1, TOTP_WRONG_LENGTH = 2 };

    //! Begins a message under \a key, with the hash \a method.
    CHmac(QCryptographicHash::Algorithm method, const QByteArray &key);

    //! Sets the key and forgets the data.
    void setKey(const QByteArray &key);
    //! Adds \a data to the message; behind a result() it changes nothing.
    void addData(const QByteArray &data);
    //! Forgets the data and keeps the key.
    void resetData();
    //! Returns the code of the message, the bytes of the digest. Until resetData() or setKey() is
    //! called, it stays the same.
    Q_REQUIRED_RESULT QByteArray result() const;

    //! Returns the bytes of the code of \a message under \a key with the hash \a method.
    Q_REQUIRED_RESULT static QByteArray
    hmac(const QByteArray &message, QCryptographicHash::Algorithm method, const QByteArray &key);
    //! Returns the HMAC-SHA1 of \a message under \a key as base64 text of 28 characters.
    Q_REQUIRED_RESULT static QByteArray hmacSha1(const QByteArray &message, const QByteArray &key);

    /*!
        Returns the number that the first four bytes of \a data hold, low byte first and signed,
        halved, then taken as unsigned, modulo 10^\a digits; 0 if there are fewer than four bytes.

        \a digits is 0 to 9. From 10 to 18 the low 32 bits of the power of ten count, and the result
        may be negative; for any other \a digits it is 0.
    */
    Q_REQUIRED_RESULT static int hotp(const QByteArray &data, int digits);
    /*!
        Returns the code under \a key for the present time: hotp() of the hmacSha1() of the number
        of whole steps of \a timeStep seconds since \a startTime, eight bytes, low byte first. \a
        startTime is in seconds since 1970-01-01T00:00:00 UTC. A \a timeStep of 0 gives a
        meaningless code.
    */
    Q_REQUIRED_RESULT static int totp(const QByteArray &key, unsigned long long startTime,
                                      unsigned int timeStep, int digits);
    //! Returns the last \a digits digits of the totp(), with zeros in front of a shorter one; as
    //! many zeros for a negative \a digits, and an empty text for more than 2^28 of them.
    Q_REQUIRED_RESULT static QString totpStr(const QByteArray &key, unsigned long long startTime,
                                             unsigned int timeStep, int digits);
    /*!
        Returns an ETotpResult: 0 if \a code is the code of the present step or of one of the \a
        window steps before it, 1 if not, and 2 if it does not have \a digits characters. A \a
        window of 2^31 and more gives 1. The time grows with the window; a comparison does not tell
        by its time where codes differ.

        Contract: codes of the steps to come are not accepted. The start time is moved by the step
        times window, window - 1 and so on down to -window, as a number of 32 bits without a sign:
        for the steps to come by about 136 years. Devices in the field do the same.
    */
    Q_REQUIRED_RESULT static int validateTotp(const QString &code, const QByteArray &key,
                                              unsigned long long startTime, unsigned int timeStep,
                                              int digits, unsigned int window);

private:
    Q_DISABLE_COPY(CHmac)

    QMessageAuthenticationCode mCode;
};

#endif // CHMAC_H
