#include "Pairs.h"

#include "CHmac.h"

#include <QMessageAuthenticationCode>

// A one-time code beside the authentication code and the text that it is made of.

namespace {

void addHmacPairs()
{
    const QByteArray key = QByteArrayLiteral("12345678901234567890");
    Pairs::add(
        "CHmac::totp", {1.1, 0, -1}, [key] { return CHmac::totp(key, 0, 30, 6); },
        [key, message = QByteArray(8, '\1')] {
            QMessageAuthenticationCode code(QCryptographicHash::Sha1, key);
            code.addData(message);
            return code.result().toBase64();
        });
}

const Pairs::Group kGroup(&addHmacPairs);

} // namespace
