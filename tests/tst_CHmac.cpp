#include "CHmac.h"

#include "DefaultLocale.h"
#include "InThreads.h"
#include "MessageRecorder.h"

#include <QDateTime>
#include <QtTest>

#include <algorithm>
#include <climits>
#include <cmath>
#include <random>
#include <type_traits>
#include <utility>

Q_DECLARE_METATYPE(QCryptographicHash::Algorithm)

namespace {

static_assert(!std::is_polymorphic_v<CHmac>);
static_assert(sizeof(CHmac) == sizeof(QMessageAuthenticationCode));
static_assert(std::is_same_v<decltype(CHmac::hotp(QByteArray(), 0)), int>);
static_assert(std::is_same_v<decltype(CHmac::totp(QByteArray(), 0, 0, 0)), int>);
static_assert(std::is_same_v<decltype(CHmac::totpStr(QByteArray(), 0, 0, 0)), QString>);

enum Result { Accepted = 0, NoMatch = 1, WrongLength = 2 };

constexpr quint32 kStep = 1000000; // seconds, so that no test meets the end of a step
constexpr quint64 kTwo63 = Q_UINT64_C(1) << 63;
constexpr char kKey[] = "12345678901234567890";

// What follows computes the codes anew: the hash is all that is taken from elsewhere.

//! Returns the HMAC-SHA1 by its definition.
QByteArray plainHmacSha1(const QByteArray &message, const QByteArray &key)
{
    constexpr int kBlock = 64;
    const auto sha1 = [](const QByteArray &data) {
        return QCryptographicHash::hash(data, QCryptographicHash::Sha1);
    };
    QByteArray inner = key.size() > kBlock ? sha1(key) : key;
    inner += QByteArray(kBlock - inner.size(), '\0');
    QByteArray outer = inner;
    for (int i = 0; i < kBlock; ++i) {
        inner[i] = static_cast<char>(inner.at(i) ^ 0x36);
        outer[i] = static_cast<char>(outer.at(i) ^ 0x5C);
    }
    return sha1(outer + sha1(inner + message));
}

//! Returns the low 32 bits of the power of ten, 0 where there is none in 63 bits.
quint32 plainDivisor(int digits)
{
    if (digits < 0 || digits > 18)
        return 0;
    quint64 power = 1;
    for (int i = 0; i < digits; ++i)
        power *= 10;
    return static_cast<quint32>(power % (Q_UINT64_C(1) << 32));
}

int plainHotp(const QByteArray &data, int digits)
{
    const quint32 divisor = plainDivisor(digits);
    if (data.size() < 4 || divisor == 0)
        return 0;
    qint64 number = 0;
    for (int i = 3; i >= 0; --i)
        number = number * 256 + static_cast<uchar>(data.at(i));
    if (number >= Q_INT64_C(1) << 31)
        number -= Q_INT64_C(1) << 32;
    // Half of it, towards minus infinity, with 32 bits.
    const qint64 half = number >= 0 ? number / 2 : -((1 - number) / 2);
    const qint64 bits = half >= 0 ? half : half + (Q_INT64_C(1) << 32);
    const qint64 rest = bits % divisor;
    return static_cast<int>(rest <= INT_MAX ? rest : rest - (Q_INT64_C(1) << 32));
}

//! Returns the code of a step.
int plainCode(const QByteArray &key, qint64 counter, int digits)
{
    QByteArray message;
    auto rest = static_cast<quint64>(counter);
    for (int i = 0; i < 8; ++i) {
        message += static_cast<char>(rest % 256);
        rest /= 256;
    }
    return plainHotp(plainHmacSha1(message, key).toBase64(), digits);
}

//! Returns the decimal digits of a code, with zeros in front, the last ones if they are too many.
QString plainText(int code, int digits)
{
    QString text = QString::number(code);
    while (text.size() < digits)
        text.prepend(QLatin1Char('0'));
    return text.mid(text.size() - digits);
}

qint64 counterAt(qint64 msecs, quint64 start, quint32 step)
{
    const double seconds = static_cast<double>(msecs) / 1000.0 - static_cast<double>(start);
    return static_cast<qint64>(std::floor(seconds / step));
}

//! Returns the steps that the algorithm tries in their order.
QVector<qint64> countersTried(qint64 msecs, quint64 start, quint32 step, int window)
{
    QVector<qint64> counters;
    for (qint64 i = window; i >= -window; --i) {
        const qint64 product = static_cast<qint64>(step) * i;
        const qint64 two32 = Q_INT64_C(1) << 32;
        const qint64 wrapped = ((product % two32) + two32) % two32;
        counters += counterAt(msecs, start + static_cast<quint64>(wrapped), step);
    }
    return counters;
}

//! Calls \a call until the clock is in the same step before and after it. Returns the steps that
//! were tried, and the result.
template <class Call>
auto inOneStep(quint64 start, quint32 step, int window, Call call)
{
    for (;;) {
        const auto before = countersTried(QDateTime::currentMSecsSinceEpoch(), start, step, window);
        const auto result = call();
        const auto after = countersTried(QDateTime::currentMSecsSinceEpoch(), start, step, window);
        if (before == after)
            return std::make_pair(before, result);
    }
}

quint64 now()
{
    return static_cast<quint64>(QDateTime::currentMSecsSinceEpoch() / 1000);
}

//! Returns a start time from which the clock is now in the middle of step \a counter.
quint64 startOf(qint64 counter)
{
    return now() - static_cast<quint64>(counter * kStep + kStep / 2);
}

} // namespace

class tst_CHmac : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void vectors_data();
    void vectors();
    void sha1Text_data();
    void sha1Text();
    void sha1TextOfAnyLength();
    void pieces();
    void setKey();
    void resetData();
    void forwards_data();
    void forwards();
    void hotpOfAbcd_data();
    void hotpOfAbcd();
    void hotp_data();
    void hotp();
    void shortData_data();
    void shortData();
    void digitsOutOfRange_data();
    void digitsOutOfRange();
    void hotpRandom();
    void totpOfStep_data();
    void totpOfStep();
    void totp_data();
    void totp();
    void totpOfAnyTime_data();
    void totpOfAnyTime();
    void totpStr_data();
    void totpStr();
    void totpStrOfClock();
    void totpStrOfOddDigits();
    void window_data();
    void window();
    void negativeOffset_data();
    void negativeOffset();
    void productWraps();
    void sumWraps();
    void anyWindow_data();
    void anyWindow();
    void largeWindow_data();
    void largeWindow();
    void windowOf31Bits_data();
    void windowOf31Bits();
    void codeLength_data();
    void codeLength();
    void noDigits();
    void wrongCode();
    void manyDigits_data();
    void manyDigits();
    void zeroStep();
    void inThreads();
};

// The test cases of RFC 2202 and RFC 4231.
void tst_CHmac::vectors_data()
{
    QTest::addColumn<QCryptographicHash::Algorithm>("method");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *title, QCryptographicHash::Algorithm method,
                        const QByteArray &key, const QByteArray &message, const char *expected) {
        QTest::newRow(title) << method << key << message << QByteArray(expected);
    };
    QByteArray counting;
    for (char i = 1; i <= 25; ++i)
        counting += i;
    const QByteArray hi = "Hi There";
    const QByteArray want = "what do ya want for nothing?";
    const QByteArray truncation = "Test With Truncation";
    const QByteArray largeKey = "Test Using Larger Than Block-Size Key - Hash Key First";
    const auto sha1 = QCryptographicHash::Sha1;
    row("SHA-1, 20-byte key", sha1, QByteArray(20, '\x0b'), hi,
        "b617318655057264e28bc0b6fb378c8ef146be00");
    row("SHA-1, short key", sha1, "Jefe", want, "effcdf6ae5eb2fa2d27416d5f184df9c259a7c79");
    row("SHA-1, 50 bytes dd", sha1, QByteArray(20, '\xaa'), QByteArray(50, '\xdd'),
        "125d7342b9ac11cd91a39af48aa17b4f63f175d3");
    row("SHA-1, 25-byte key", sha1, counting, QByteArray(50, '\xcd'),
        "4c9007f4026250c6bc8414f9bf50c86c2d7235da");
    row("SHA-1, key 0c", sha1, QByteArray(20, '\x0c'), truncation,
        "4c1a03424b55e07fe7f27be1d58bb9324a9a5a04");
    row("SHA-1, 80-byte key", sha1, QByteArray(80, '\xaa'), largeKey,
        "aa4ae5e15272d00e95705637ce8a3b55ed402112");
    row("SHA-1, 80-byte key, 73 bytes", sha1, QByteArray(80, '\xaa'),
        "Test Using Larger Than Block-Size Key and Larger Than One Block-Size Data",
        "e8e99d0f45237d786d6bbaa7965c7808bbff1a91");
    row("SHA-1, nothing at all", sha1, QByteArray(), QByteArray(),
        "fbdb1d1b18aa6c08324b7d64b71fb76370690e1d");
    const auto sha256 = QCryptographicHash::Sha256;
    row("SHA-256, 20-byte key", sha256, QByteArray(20, '\x0b'), hi,
        "b0344c61d8db38535ca8afceaf0bf12b881dc200c9833da726e9376c2e32cff7");
    row("SHA-256, short key", sha256, "Jefe", want,
        "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
    row("SHA-256, 50 bytes dd", sha256, QByteArray(20, '\xaa'), QByteArray(50, '\xdd'),
        "773ea91e36800e46854db8ebd09181a72959098b3ef8c122d9635514ced565fe");
    row("SHA-256, 25-byte key", sha256, counting, QByteArray(50, '\xcd'),
        "82558a389a443c0ea4cc819899f2083a85f0faa3e578f8077a2e3ff46729665b");
    row("SHA-256, key 0c", sha256, QByteArray(20, '\x0c'), truncation,
        "a3b6167473100ee06e0c796c2955552bfa6f7c0a6a8aef8b93f860aab0cd20c5");
    row("SHA-256, 131-byte key", sha256, QByteArray(131, '\xaa'), largeKey,
        "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54");
    row("SHA-256, 131-byte key, 152 bytes", sha256, QByteArray(131, '\xaa'),
        "This is a test using a larger than block-size key and a larger than block-size data. "
        "The key needs to be hashed before being used by the HMAC algorithm.",
        "9b09ffa71b942fcb27635fbcd5b0e944bfdc63644f0713938a7f51535c3a35e2");
    row("SHA-256, nothing at all", sha256, QByteArray(), QByteArray(),
        "b613679a0814d9ec772f95d778c35fc5ff1697c493715653c6c712144292c5ad");
    row("MD5, short key", QCryptographicHash::Md5, "Jefe", want,
        "750c783e6ab0b503eaa86e310a5db738");
    row("SHA-512, short key", QCryptographicHash::Sha512, "Jefe", want,
        "164b7a7bfcf819e2e395fbe73b56e0a387bd64222e831fd610270cd7ea250554"
        "9758bf75c05a994a6d034f65f8f0e6fdcaeab1a34d4a6b4b636e070a38bce737");
}

void tst_CHmac::vectors()
{
    QFETCH(const QCryptographicHash::Algorithm, method);
    QFETCH(const QByteArray, key);
    QFETCH(const QByteArray, message);
    QFETCH(const QByteArray, expected);
    QCOMPARE(CHmac::hmac(message, method, key).toHex(), expected);
    CHmac code(method, key);
    code.addData(message);
    const CHmac &constCode = code;
    QCOMPARE(constCode.result().toHex(), expected);
    QCOMPARE(constCode.result().toHex(), expected);
    if (method == QCryptographicHash::Sha1) {
        const QByteArray text = CHmac::hmacSha1(message, key);
        QCOMPARE(QByteArray::fromBase64(text).toHex(), expected);
        QCOMPARE(plainHmacSha1(message, key).toHex(), expected);
    }
}

void tst_CHmac::sha1Text_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *title, const QByteArray &key, const QByteArray &message,
                        const char *expected) {
        QTest::newRow(title) << key << message << QByteArray(expected);
    };
    row("null key and message", QByteArray(), QByteArray(), "+9sdGxiqbAgyS31ktx+3Y3BpDh0=");
    row("empty key and message", QByteArray(""), QByteArray(""), "+9sdGxiqbAgyS31ktx+3Y3BpDh0=");
    row("+ of the standard alphabet", QByteArray(20, '\x0b'), "Hi There",
        "thcxhlUFcmTii8C2+zeMjvFGvgA=");
    row("/ of the standard alphabet", "Jefe", "what do ya want for nothing?",
        "7/zfauXrL6LSdBbV8YTfnCWafHk=");
}

void tst_CHmac::sha1Text()
{
    QFETCH(const QByteArray, key);
    QFETCH(const QByteArray, message);
    QTEST(CHmac::hmacSha1(message, key), "expected");
}

// Lengths around a block of 64 bytes, and 100000.
void tst_CHmac::sha1TextOfAnyLength()
{
    for (const int keySize : {0, 1, 63, 64, 65, 200, 100000}) {
        for (const int size : {0, 1, 55, 56, 63, 64, 65, 200, 100000}) {
            const QByteArray key(keySize, '\xfe');
            const QByteArray message(size, '\0');
            const QByteArray text = CHmac::hmacSha1(message, key);
            QCOMPARE(text, plainHmacSha1(message, key).toBase64());
            QCOMPARE(text.size(), 28);
            QVERIFY(text.endsWith('='));
        }
    }
}

void tst_CHmac::pieces()
{
    const QByteArray message = "what do ya want for nothing?";
    for (int cut = 0; cut <= message.size(); ++cut) {
        CHmac code(QCryptographicHash::Sha1, "Jefe");
        code.addData(message.left(cut));
        code.addData(QByteArray());
        code.addData(message.mid(cut));
        QCOMPARE(code.result().toHex(), QByteArray("effcdf6ae5eb2fa2d27416d5f184df9c259a7c79"));
    }
}

void tst_CHmac::setKey()
{
    CHmac code(QCryptographicHash::Sha1, "other");
    code.addData("forgotten");
    code.setKey("Jefe");
    code.addData("what do ya want for nothing?");
    QCOMPARE(code.result().toHex(), QByteArray("effcdf6ae5eb2fa2d27416d5f184df9c259a7c79"));
    code.setKey(QByteArray(20, '\x0b'));
    code.addData("Hi There");
    QCOMPARE(code.result().toHex(), QByteArray("b617318655057264e28bc0b6fb378c8ef146be00"));
}

void tst_CHmac::resetData()
{
    CHmac code(QCryptographicHash::Sha256, "Jefe");
    code.addData("forgotten");
    code.resetData();
    for (int i = 0; i < 2; ++i) {
        code.addData("what do ya want for nothing?");
        QCOMPARE(code.result().toHex(),
                 QByteArray("5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843"));
        code.resetData();
    }
    QCOMPARE(code.result(), CHmac::hmac(QByteArray(), QCryptographicHash::Sha256, "Jefe"));
}

void tst_CHmac::forwards_data()
{
    QTest::addColumn<QCryptographicHash::Algorithm>("method");
    QTest::newRow("MD5") << QCryptographicHash::Md5;
    QTest::newRow("SHA-1") << QCryptographicHash::Sha1;
    QTest::newRow("SHA-256") << QCryptographicHash::Sha256;
    QTest::newRow("SHA-512") << QCryptographicHash::Sha512;
}

// Any order of calls does what it does to the code object of Qt, data behind a result included.
void tst_CHmac::forwards()
{
    QFETCH(const QCryptographicHash::Algorithm, method);
    std::mt19937 random(63);
    CHmac code(method, "key");
    QMessageAuthenticationCode peer(method, "key");
    for (int i = 0; i < 3000; ++i) {
        const QByteArray data(static_cast<int>(random() % 150), static_cast<char>(random() % 256));
        switch (random() % 6) {
        case 0:
            code.setKey(data);
            peer.setKey(data);
            break;
        case 1:
            code.resetData();
            peer.reset();
            break;
        case 2:
        case 3:
            code.addData(data);
            peer.addData(data);
            break;
        default:
            QCOMPARE(code.result(), peer.result());
            break;
        }
    }
    QCOMPARE(code.result(), peer.result());
}

// "ABCD" is 0x44434241, half of it 572629280.
void tst_CHmac::hotpOfAbcd_data()
{
    QTest::addColumn<int>("digits");
    QTest::addColumn<int>("expected");
    const int expected[]
        = {0,        0,         80,        280,       9280,      29280,     629280,
           2629280,  72629280,  572629280, 572629280, 572629280, 572629280, 572629280,
           19734816, 572629280, 572629280, 572629280, 572629280};
    for (int digits = 0; digits <= 18; ++digits)
        QTest::addRow("%d digits", digits) << digits << expected[digits];
}

void tst_CHmac::hotpOfAbcd()
{
    QFETCH(const int, digits);
    QTEST(CHmac::hotp("ABCD", digits), "expected");
    QTEST(CHmac::hotp("ABCDE", digits), "expected");
    QTEST(CHmac::hotp("ABCD" + QByteArray(100000, '\xff'), digits), "expected");
}

void tst_CHmac::hotp_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("digits");
    QTest::addColumn<int>("expected");
    const auto row = [](const char *data, int digits, int expected) {
        QTest::addRow("%s, %d digits", data, digits)
            << QByteArray::fromHex(data) << digits << expected;
    };
    row("00000000", 6, 0);
    row("01000000", 6, 0);
    row("02000000", 6, 1);
    row("03000000", 6, 1);
    row("00020000", 6, 256);
    row("00000200", 6, 65536);
    row("00000002", 6, 777216); // 16777216
    row("00000002", 8, 16777216);
    row("80808000", 9, 4210752); // 0x00808080 / 2, bytes without a sign
    row("ff000000", 6, 127);
    row("00ff0000", 6, 32640);
    row("ffffff7f", 9, 73741823); // 2^30 - 1
    row("ffffff7f", 10, 1073741823);
    // The sign stays in the shift: 4294967295 and 3221225472.
    row("ffffffff", 0, 0);
    row("ffffffff", 1, 5);
    row("ffffffff", 6, 967295);
    row("ffffffff", 9, 294967295);
    row("ffffffff", 10, 64771071);
    row("ffffffff", 11, 647710719);
    row("ffffffff", 12, 727379967);
    row("ffffffff", 13, 346562559);
    row("ffffffff", 14, 148258815);
    row("ffffffff", 15, 1530494975);
    row("ffffffff", 16, 545128447);
    row("ffffffff", 17, 1156317183);
    row("ffffffff", 18, 1486618623);
    row("feffffff", 6, 967295);
    row("fdffffff", 6, 967294);
    row("00000080", 6, 225472);
    row("01000080", 6, 225472);
    row("02000080", 6, 225473);
    row("00000080", 9, 221225472);
    row("00000080", 10, 401094656);
    row("00000080", 12, -1073741824); // 3221225472, below the divisor 3567587328
    row("00000080", 15, 456753152);
    row("00000080", 18, 412876800);
}

void tst_CHmac::hotp()
{
    QFETCH(const QByteArray, data);
    QFETCH(const int, digits);
    QTEST(CHmac::hotp(data, digits), "expected");
    QTEST(plainHotp(data, digits), "expected");
}

void tst_CHmac::shortData_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("null") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("1 byte") << QByteArray("A");
    QTest::newRow("2 bytes") << QByteArray("AB");
    QTest::newRow("3 bytes") << QByteArray("ABC");
    QTest::newRow("3 bytes ff") << QByteArray(3, '\xff');
}

void tst_CHmac::shortData()
{
    QFETCH(const QByteArray, data);
    for (int digits = -2; digits < 22; ++digits)
        QCOMPARE(CHmac::hotp(data, digits), 0);
}

// The divisor has no low 32 bits.
void tst_CHmac::digitsOutOfRange_data()
{
    QTest::addColumn<int>("digits");
    for (const int digits :
         {-1, -2, -9, -400, INT_MIN, INT_MIN + 1, 19, 20, 31, 32, 64, 308, 309, 400, INT_MAX})
        QTest::addRow("%d", digits) << digits;
}

void tst_CHmac::digitsOutOfRange()
{
    QFETCH(const int, digits);
    for (const char *const data : {"ABCD", "\xff\xff\xff\xff", "\x80\x80\x80\x80", "abcdefgh"})
        QCOMPARE(CHmac::hotp(data, digits), 0);
    QCOMPARE(CHmac::totp(kKey, 0, 30, digits), 0);
}

void tst_CHmac::hotpRandom()
{
    std::mt19937 random(4226);
    int negative = 0;
    for (int i = 0; i < 20000; ++i) {
        QByteArray data;
        for (auto size = random() % 10; size > 0; --size)
            data += static_cast<char>(random() % 256);
        for (int digits = -2; digits <= 21; ++digits) {
            const int code = CHmac::hotp(data, digits);
            QCOMPARE(code, plainHotp(data, digits));
            negative += code < 0 ? 1 : 0;
            QVERIFY(digits > 9 || code >= 0);
        }
    }
    QVERIFY(negative > 1000);
}

// The numbers of steps of a million seconds, computed by another program.
void tst_CHmac::totpOfStep_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("counter");
    QTest::addColumn<int>("expected"); // of 9 digits and more
    QTest::newRow("step 0") << QByteArray(kKey) << 0 << 673719613;
    QTest::newRow("step 1") << QByteArray(kKey) << 1 << 849094829;
    QTest::newRow("step 2") << QByteArray(kKey) << 2 << 614543907;
    QTest::newRow("step 255, one byte") << QByteArray(kKey) << 255 << 597898901;
    QTest::newRow("step 256, two bytes") << QByteArray(kKey) << 256 << 725332122;
    QTest::newRow("step 1000") << QByteArray(kKey) << 1000 << 665199404;
    QTest::newRow("step -1, half a step before the start") << QByteArray(kKey) << -1 << 481375260;
    QTest::newRow("step -2") << QByteArray(kKey) << -2 << 1009986723;
    QTest::newRow("null key") << QByteArray() << 0 << 816888089;
    QTest::newRow("100-byte key") << QByteArray(100, 'x') << 0 << 590519332;
}

void tst_CHmac::totpOfStep()
{
    QFETCH(const QByteArray, key);
    QFETCH(const int, counter);
    QFETCH(const int, expected);
    const quint64 start = startOf(counter);
    const MessageRecorder recorder;
    QCOMPARE(CHmac::totp(key, start, kStep, 0), 0);
    int power = 1;
    for (int digits = 1; digits <= 9; ++digits) {
        power *= 10;
        QCOMPARE(CHmac::totp(key, start, kStep, digits), expected % power);
    }
    QCOMPARE(CHmac::totp(key, start, kStep, 10), expected);
    QCOMPARE(CHmac::totp(key, start, kStep, -1), 0);
    QCOMPARE(CHmac::totp(key, start, kStep, 19), 0);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CHmac::totp_data()
{
    QTest::addColumn<bool>("isFromNow");
    QTest::addColumn<quint64>("start"); // from now on it wraps
    QTest::addColumn<quint32>("step");
    const auto row = [](const char *title, bool isFromNow, quint64 start, quint32 step) {
        QTest::newRow(title) << isFromNow << start << step;
    };
    const auto ago = [](quint64 seconds) { return 0 - seconds; };
    row("epoch, 1 s", false, 0, 1);
    row("epoch, 30 s", false, 0, 30);
    row("epoch, a day", false, 0, 86400);
    row("epoch, 2^31 s", false, 0, 0x80000000);
    row("epoch, 2^32 - 1 s", false, 0, 0xFFFFFFFF);
    row("1 s behind the epoch, 60 s", false, 1, 60);
    row("now, 1 s", true, 0, 1);
    row("now, an hour", true, 0, 3600);
    row("100 s ago, 30 s", true, ago(100), 30);
    row("1000 s ago, 1 s", true, ago(1000), 1);
    row("10 s ahead, 30 s: not step 0", true, 10, 30);
    row("10 s ahead, an hour: not step 0", true, 10, 3600);
    row("4000 s ahead, an hour", true, 4000, 3600);
    row("1 s ahead, 2^32 - 1 s", true, 1, 0xFFFFFFFF);
    row("2^31 s, 30 s", false, 0x80000000, 30);
    row("2^32 s, 30 s", false, Q_UINT64_C(1) << 32, 30);
    row("2^53 + 1 s, an hour", false, (Q_UINT64_C(1) << 53) + 1, 3600);
    row("2^63 - 1 s, 30 s", false, kTwo63 - 1, 30);
    row("2^63 s, without a sign, 30 s", false, kTwo63, 30);
    row("2^63 s, 1 s", false, kTwo63, 1);
    row("2^64 - 1 s, 30 s", false, ULLONG_MAX, 30);
    row("2^64 - 1 s, 2^32 - 1 s", false, ULLONG_MAX, 0xFFFFFFFF);
    row("2^64 - 1 s, 2 s, just above the least step", false, ULLONG_MAX, 2);
}

void tst_CHmac::totp()
{
    QFETCH(const bool, isFromNow);
    QFETCH(const quint64, start);
    QFETCH(const quint32, step);
    const quint64 from = isFromNow ? now() + start : start;
    for (const QByteArray &key :
         {QByteArray(), QByteArray("k"), QByteArray(kKey), QByteArray(100, '\xff')}) {
        for (const int digits : {0, 1, 6, 8, 9, 10, 12, 14, 18}) {
            const auto [counters, code]
                = inOneStep(from, step, 0, [key = key, from, step = step, digits] {
                      return CHmac::totp(key, from, step, digits);
                  });
            QCOMPARE(code, plainCode(key, counters.constFirst(), digits));
        }
    }
}

// Steps without a number: any code, but one.
void tst_CHmac::totpOfAnyTime_data()
{
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint32>("step");
    QTest::newRow("epoch, step 0") << Q_UINT64_C(0) << 0U;
    QTest::newRow("now, step 0") << now() << 0U;
    QTest::newRow("1000 s ahead, step 0") << now() + 1000 << 0U;
    QTest::newRow("2^63 s, step 0") << kTwo63 << 0U;
    QTest::newRow("2^64 - 1 s, step 0") << quint64(ULLONG_MAX) << 0U;
    QTest::newRow("start 2^64 - 1, step 1, beyond 64 bits") << quint64(ULLONG_MAX) << 1U;
    QTest::newRow("start 2^64 - 1025, step 1, beyond 64 bits") << quint64(ULLONG_MAX - 1024) << 1U;
}

void tst_CHmac::totpOfAnyTime()
{
    QFETCH(const quint64, start);
    QFETCH(const quint32, step);
    for (int digits = 0; digits <= 9; ++digits) {
        const int code = CHmac::totp(kKey, start, step, digits);
        QVERIFY(code >= 0);
        QVERIFY(code < std::lround(std::pow(10.0, digits)));
        QCOMPARE(CHmac::totpStr(kKey, start, step, digits).size(), digits);
    }
    QCOMPARE(CHmac::totp(kKey, start, step, -1), 0);
    QCOMPARE(CHmac::totp(kKey, start, step, 400), 0);
}

void tst_CHmac::totpStr_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("counter");
    QTest::addColumn<int>("digits");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *title, const QByteArray &key, int counter, int digits,
                        const char *expected) {
        QTest::newRow(title) << key << counter << digits << QString::fromLatin1(expected);
    };
    row("6 digits of 42", "424284", 0, 6, "000042");
    row("3 digits of 42", "424284", 0, 3, "042");
    row("2 digits of 42", "424284", 0, 2, "42");
    row("1 digit of 2", "424284", 0, 1, "2");
    row("7 digits, all but the first two zeros", "424284", 0, 7, "0000042");
    row("9 digits of 750000042", "424284", 0, 9, "750000042");
    row("10 digits of 750000042", "424284", 0, 10, "0750000042");
    row("12 digits of 750000042", "424284", 0, 12, "000750000042");
    row("0 digits", "424284", 0, 0, "");
    row("6 digits, none is a filler", kKey, 0, 6, "719613");
    row("9 digits", kKey, 0, 9, "673719613");
    row("9 digits of step -2, filler in front", kKey, -2, 9, "009986723");
    row("10 digits of step -2", kKey, -2, 10, "1009986723");
    row("18 digits of step -2", kKey, -2, 18, "000000001009986723");
    row("19 digits, no divisor", kKey, 0, 19, "0000000000000000000");
    row("40 digits, no divisor", kKey, 0, 40, "0000000000000000000000000000000000000000");
}

void tst_CHmac::totpStr()
{
    QFETCH(const QByteArray, key);
    QFETCH(const int, counter);
    QFETCH(const int, digits);
    // The digits are ASCII, without separators, whatever the default locale is.
    for (const char *const locale : {"C", "de_DE", "ar_EG"}) {
        const DefaultLocale defaultLocale(QString::fromLatin1(locale));
        QTEST(CHmac::totpStr(key, startOf(counter), kStep, digits), "expected");
    }
}

void tst_CHmac::totpStrOfClock()
{
    for (int i = 0; i < 200; ++i) {
        const QByteArray key = QByteArray::number(i);
        const int digits = i % 19;
        const auto [counters, text]
            = inOneStep(0, 30, 0, [&key, digits] { return CHmac::totpStr(key, 0, 30, digits); });
        QCOMPARE(text, plainText(plainCode(key, counters.constFirst(), digits), digits));
    }
}

void tst_CHmac::totpStrOfOddDigits()
{
    const MessageRecorder recorder;
    QCOMPARE(CHmac::totpStr(kKey, 0, 30, 1 << 22), QString(1 << 22, QLatin1Char('0')));
    QVERIFY(CHmac::totpStr(kKey, 0, 30, (1 << 28) + 1).isEmpty());
    QVERIFY(CHmac::totpStr(kKey, 0, 30, INT_MAX).isEmpty());
    QVERIFY(CHmac::totpStr(kKey, 0, 30, INT_MAX - 1).isEmpty());
    for (const int digits : {-1, -2, -6, -1000, INT_MIN, INT_MIN + 1}) {
        const QString text = CHmac::totpStr(kKey, 0, 30, digits);
        QCOMPARE(text.count(QLatin1Char('0')), text.size()); // no code
    }
    QCOMPARE(recorder.messages(), QStringList());
}

// The code of each step near step 10.
void tst_CHmac::window_data()
{
    QTest::addColumn<int>("counter");
    QTest::addColumn<quint32>("window");
    QTest::addColumn<int>("expected");
    const auto row = [](const char *title, int counter, quint32 window, int expected) {
        QTest::newRow(title) << counter << window << expected;
    };
    row("present, window 0", 10, 0, Accepted);
    row("present, window 1", 10, 1, Accepted);
    row("present, window 3", 10, 3, Accepted);
    row("previous, window 0", 9, 0, NoMatch);
    row("previous, window 1", 9, 1, Accepted);
    row("previous, window 2", 9, 2, Accepted);
    row("second last, window 1", 8, 1, NoMatch);
    row("second last, window 2", 8, 2, Accepted);
    row("step 0, window 9", 0, 9, NoMatch);
    row("step 0, window 10", 0, 10, Accepted);
    row("before the start, window 10", -1, 10, NoMatch);
    row("before the start, window 11", -1, 11, Accepted);
    row("100 steps before, window 99", -90, 99, NoMatch);
    row("100 steps before, window 100", -90, 100, Accepted);
    row("1000 steps before, window 1000", -990, 1000, Accepted);
    row("next, window 0", 11, 0, NoMatch);
    row("next, window 1", 11, 1, NoMatch);
    row("next, window 20", 11, 20, NoMatch);
    row("next but one, window 2", 12, 2, NoMatch);
}

void tst_CHmac::window()
{
    QFETCH(const int, counter);
    QFETCH(const quint32, window);
    QFETCH(const int, expected);
    const quint64 start = startOf(10);
    const MessageRecorder recorder;
    for (const int digits : {6, 8, 9}) {
        const QString code = plainText(plainCode(kKey, counter, digits), digits);
        QCOMPARE(CHmac::validateTotp(code, kKey, start, kStep, digits, window), expected);
        QCOMPARE(CHmac::validateTotp(code, "other", start, kStep, digits, window), int(NoMatch));
    }
    QCOMPARE(recorder.messages(), QStringList());
}

// Contract: a step to come is tried at a start time that is 2^32 - n * step seconds later. From the
// middle of step 10 that is, for one step, 10.5 - 4293.967296 = -4283.467296.
void tst_CHmac::negativeOffset_data()
{
    QTest::addColumn<int>("counter");
    QTest::addColumn<quint32>("window");
    QTest::addColumn<int>("expected");
    QTest::newRow("-1, window 0") << -4284 << 0U << int(NoMatch);
    QTest::newRow("-1, window 1") << -4284 << 1U << int(Accepted);
    QTest::newRow("-2, window 1") << -4283 << 1U << int(NoMatch);
    QTest::newRow("-2, window 2") << -4283 << 2U << int(Accepted);
    QTest::newRow("-5, window 4") << -4280 << 4U << int(NoMatch);
    QTest::newRow("-5, window 5") << -4280 << 5U << int(Accepted);
    QTest::newRow("0 with 2^32, not tried") << -4285 << 5U << int(NoMatch);
}

void tst_CHmac::negativeOffset()
{
    QFETCH(const int, counter);
    QFETCH(const quint32, window);
    const QString code = plainText(plainCode(kKey, counter, 9), 9);
    QTEST(CHmac::validateTotp(code, kKey, startOf(10), kStep, 9, window), "expected");
}

// Twice 2^31 is 0 in 32 bits: the second last step is not tried, but the present one again.
void tst_CHmac::productWraps()
{
    constexpr quint32 kTwo31 = 0x80000000;
    const quint64 start = now() - 100000;
    const auto validate = [start](qint64 counter, quint32 window) {
        const QString code = plainText(plainCode(kKey, counter, 9), 9);
        return CHmac::validateTotp(code, kKey, start, kTwo31, 9, window);
    };
    QCOMPARE(validate(0, 0), int(Accepted));
    QCOMPARE(validate(-1, 0), int(NoMatch));
    QCOMPARE(validate(-1, 1), int(Accepted));
    QCOMPARE(validate(0, 2), int(Accepted));
    QCOMPARE(validate(-2, 2), int(NoMatch));
    QCOMPARE(validate(-2, 5), int(NoMatch));
    QCOMPARE(validate(1, 5), int(NoMatch));
}

// The start time of the previous step goes around 2^64 to 0.
void tst_CHmac::sumWraps()
{
    const quint64 start = 0 - quint64(kStep);
    for (const int window : {0, 1}) {
        QString code;
        const auto [counters, result] = inOneStep(start, kStep, window, [&, steps = window] {
            code = CHmac::totpStr(kKey, 0, kStep, 9);
            return CHmac::validateTotp(code, kKey, start, kStep, 9,
                                       static_cast<unsigned int>(steps));
        });
        if (window == 1)
            QCOMPARE(code, plainText(plainCode(kKey, counters.constFirst(), 9), 9));
        const auto isCode
            = [&code](qint64 counter) { return plainText(plainCode(kKey, counter, 9), 9) == code; };
        QCOMPARE(result == Accepted, std::any_of(counters.begin(), counters.end(), isCode));
    }
}

// The stated loop, by any start time and step, and codes of steps in it and beside it.
void tst_CHmac::anyWindow_data()
{
    QTest::addColumn<bool>("isFromNow");
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint32>("step");
    const auto row = [](const char *title, bool isFromNow, quint64 start, quint32 step) {
        QTest::newRow(title) << isFromNow << start << step;
    };
    row("epoch, 30 s", false, 0, 30);
    row("epoch, 7 s", false, 0, 7);
    row("epoch, a day", false, 0, 86400);
    row("epoch, 2^30 s", false, 0, 1U << 30);
    row("epoch, 2^31 + 1 s", false, 0, 0x80000001);
    row("epoch, 2^32 - 1 s", false, 0, 0xFFFFFFFF);
    row("now, an hour", true, 0, 3600);
    row("an hour ahead, an hour", true, 3600, 3600);
    row("2^63 s, 30 s", false, kTwo63, 30);
    row("2^64 - 1 s, 30 s", false, ULLONG_MAX, 30);
    row("2^64 - 100 s, 60 s", false, 0 - Q_UINT64_C(100), 60);
    row("2^64 - 2^31 s, 2^30 s", false, 0 - Q_UINT64_C(0x80000000), 1U << 30);
}

void tst_CHmac::anyWindow()
{
    QFETCH(const bool, isFromNow);
    QFETCH(const quint64, start);
    QFETCH(const quint32, step);
    constexpr int kDigits = 9;
    const quint64 from = isFromNow ? now() + start : start;
    for (int window = 0; window <= 4; ++window) {
        // What the loop tries, and the steps around.
        QVector<qint64> candidates
            = countersTried(QDateTime::currentMSecsSinceEpoch(), from, step, window + 1);
        for (int i = 0; i < 2 * window + 3; ++i)
            candidates += candidates.at(i) + 1;
        for (const qint64 candidate : qAsConst(candidates)) {
            const QString code = plainText(plainCode(kKey, candidate, kDigits), kDigits);
            const auto [counters, result] = inOneStep(from, step, window, [&, s = step] {
                return CHmac::validateTotp(code, kKey, from, s, kDigits,
                                           static_cast<unsigned int>(window));
            });
            int expected = NoMatch;
            for (const qint64 counter : counters) {
                if (plainText(plainCode(kKey, counter, kDigits), kDigits) == code)
                    expected = Accepted;
            }
            QCOMPARE(result, expected);
        }
    }
}

// The oldest step comes first, so that these end soon. The largest window of 2^31 - 1 steps of
// 65536 s begins with the offset 2^32 - 65536, 65535 steps; 30000 s are less than half a step.
void tst_CHmac::largeWindow_data()
{
    QTest::addColumn<int>("steps"); // before the present one
    QTest::addColumn<quint32>("window");
    QTest::newRow("2^31 - 1, first step tried") << 65535 << 0x7FFFFFFFU;
    QTest::newRow("2^31 - 1, 101st step tried") << 65435 << 0x7FFFFFFFU;
    QTest::newRow("2^31 - 2, first step tried") << 65534 << 0x7FFFFFFEU;
    QTest::newRow("65536, the present step by its product 2^32") << 0 << 65536U;
    QTest::newRow("65535, first step tried") << 65535 << 65535U;
}

void tst_CHmac::largeWindow()
{
    QFETCH(const int, steps);
    QFETCH(const quint32, window);
    constexpr quint32 kLongStep = 65536;
    const quint64 start = now() - 30000;
    const QString code = plainText(plainCode(kKey, -steps, 9), 9);
    // Without that a search would not end soon.
    QCOMPARE(CHmac::totpStr(kKey, start + static_cast<quint32>(steps) * kLongStep, kLongStep, 9),
             code);
    QCOMPARE(CHmac::validateTotp(code, kKey, start, kLongStep, 9, window), int(Accepted));
}

void tst_CHmac::windowOf31Bits_data()
{
    QTest::addColumn<quint32>("window");
    QTest::newRow("2^31") << 0x80000000U;
    QTest::newRow("2^31 + 1") << 0x80000001U;
    QTest::newRow("2^32 - 2") << 0xFFFFFFFEU;
    QTest::newRow("2^32 - 1") << 0xFFFFFFFFU;
}

void tst_CHmac::windowOf31Bits()
{
    QFETCH(const quint32, window);
    const quint64 start = startOf(10);
    for (const int counter : {9, 10, 11, -4284}) {
        const QString code = plainText(plainCode(kKey, counter, 6), 6);
        QCOMPARE(CHmac::validateTotp(code, kKey, start, kStep, 6, window), int(NoMatch));
    }
    QCOMPARE(CHmac::validateTotp(QString(), kKey, start, kStep, 0, window), int(NoMatch));
    QCOMPARE(CHmac::validateTotp(QStringLiteral("000000"), kKey, start, 0, 6, window),
             int(NoMatch));
    // The length comes first.
    QCOMPARE(CHmac::validateTotp(QStringLiteral("12345"), kKey, start, kStep, 6, window),
             int(WrongLength));
}

void tst_CHmac::codeLength_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("digits");
    const QString code = plainText(plainCode(kKey, 10, 6), 6);
    QTest::newRow("5 characters of 6") << code.left(5) << 6;
    QTest::newRow("last 5 characters of 6") << code.right(5) << 6;
    QTest::newRow("7 characters for 6, zero in front") << QLatin1Char('0') + code << 6;
    QTest::newRow("blank behind") << code + QLatin1Char(' ') << 6;
    QTest::newRow("NUL behind") << code + QChar(0) << 6;
    QTest::newRow("empty for 6") << QString() << 6;
    QTest::newRow("1 character for 0") << QStringLiteral("0") << 0;
    QTest::newRow("empty for -1") << QString() << -1;
    QTest::newRow("1 character for -1") << QStringLiteral("0") << -1;
    QTest::newRow("6 characters for -6") << code << -6;
    QTest::newRow("empty for INT_MIN") << QString() << INT_MIN;
    QTest::newRow("6 characters for INT_MAX") << code << INT_MAX;
    QTest::newRow("100000 characters for 6") << code.repeated(20000) << 6;
    QTest::newRow("characters are counted as UTF-16 units")
        << code.left(5) + QStringLiteral("\U0001d7ce") << 6;
}

void tst_CHmac::codeLength()
{
    QFETCH(const QString, code);
    QFETCH(const int, digits);
    for (const unsigned int window : {0U, 1U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        QCOMPARE(CHmac::validateTotp(code, kKey, startOf(10), kStep, digits, window),
                 int(WrongLength));
    }
}

void tst_CHmac::noDigits()
{
    QCOMPARE(CHmac::totpStr(kKey, startOf(10), kStep, 0), QString());
    for (const QString &code : {QString(), QString::fromLatin1("")}) {
        for (const unsigned int window : {0U, 1U, 0x7FFFFFFFU}) {
            QCOMPARE(CHmac::validateTotp(code, kKey, startOf(10), kStep, 0, window), int(Accepted));
        }
    }
}

void tst_CHmac::wrongCode()
{
    const quint64 start = startOf(10);
    const QString code = plainText(plainCode(kKey, 10, 6), 6);
    QCOMPARE(CHmac::validateTotp(code, kKey, start, kStep, 6, 0), int(Accepted));
    for (int i = 0; i < code.size(); ++i) {
        const ushort right = code.at(i).unicode();
        const ushort digit = static_cast<ushort>(right - '0');
        QVector<ushort> others{0,
                               ' ',
                               'x',
                               static_cast<ushort>(0x0660 + digit), // Arabic
                               static_cast<ushort>(0x0966 + digit), // Devanagari
                               static_cast<ushort>(0xFF10 + digit), // fullwidth
                               static_cast<ushort>(right | 0x0100),
                               static_cast<ushort>(right | 0x8000)};
        for (ushort bit = 1; bit < 0x80; bit = static_cast<ushort>(bit * 2))
            others += static_cast<ushort>(right ^ bit);
        for (ushort other = '0'; other <= '9'; ++other) {
            if (other != right)
                others += other;
        }
        for (const ushort other : qAsConst(others)) {
            QString wrong = code;
            wrong[i] = QChar(other);
            QCOMPARE(CHmac::validateTotp(wrong, kKey, start, kStep, 6, 0), int(NoMatch));
        }
    }
    QString reversed = code;
    std::reverse(reversed.begin(), reversed.end());
    QVERIFY(reversed != code);
    QCOMPARE(CHmac::validateTotp(reversed, kKey, start, kStep, 6, 0), int(NoMatch));
    // Two changes that make up for each other, too.
    QString twice = code;
    twice[0] = QChar(twice.at(0).unicode() ^ 1);
    twice[1] = QChar(twice.at(1).unicode() ^ 1);
    QCOMPARE(CHmac::validateTotp(twice, kKey, start, kStep, 6, 0), int(NoMatch));
}

void tst_CHmac::manyDigits_data()
{
    QTest::addColumn<int>("digits");
    for (const int digits : {1, 2, 9, 10, 12, 18, 19, 40, 1000})
        QTest::addRow("%d", digits) << digits;
}

void tst_CHmac::manyDigits()
{
    QFETCH(const int, digits);
    const QString code = plainText(plainCode(kKey, 10, digits), digits);
    QCOMPARE(code.size(), digits);
    QCOMPARE(CHmac::validateTotp(code, kKey, startOf(10), kStep, digits, 0), int(Accepted));
    QString wrong = code;
    wrong[digits - 1] = QChar(wrong.at(digits - 1).unicode() ^ 1);
    QCOMPARE(CHmac::validateTotp(wrong, kKey, startOf(10), kStep, digits, 0), int(NoMatch));
}

// No step, no meaning; but an answer.
void tst_CHmac::zeroStep()
{
    const MessageRecorder recorder;
    for (const quint64 start : {Q_UINT64_C(0), now(), kTwo63, quint64(ULLONG_MAX)}) {
        for (const unsigned int window : {0U, 1U, 100U}) {
            QCOMPARE(CHmac::validateTotp(QStringLiteral("abcdef"), kKey, start, 0, 6, window),
                     int(NoMatch));
            QCOMPARE(CHmac::validateTotp(QString(), kKey, start, 0, 6, window), int(WrongLength));
        }
        QCOMPARE(CHmac::totpStr(kKey, start, 0, 0), QString());
        QCOMPARE(CHmac::validateTotp(QString(), kKey, start, 0, 0, 0x7FFFFFFF), int(Accepted));
    }
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CHmac::inThreads()
{
    const quint64 start = startOf(0);
    QVERIFY(trueInThreads([start] {
        bool right = true;
        for (int i = 0; i < 500; ++i) {
            const QByteArray key = QByteArray::number(i);
            const QByteArray sha1 = plainHmacSha1("message", key);
            const int code = plainCode(key, 0, 6);
            right = right && CHmac::hmac("message", QCryptographicHash::Sha1, key) == sha1
                && CHmac::hmacSha1("message", key) == sha1.toBase64()
                && CHmac::hotp("ABCD", 6) == 629280 && CHmac::totp(key, start, kStep, 6) == code
                && CHmac::totpStr(key, start, kStep, 6) == plainText(code, 6)
                && CHmac::validateTotp(plainText(code, 6), key, start, kStep, 6, 0) == Accepted
                && CHmac::totp(kKey, start, kStep, 9) == 673719613;
        }
        return right;
    }));
}

QTEST_APPLESS_MAIN(tst_CHmac)

#include "tst_CHmac.moc"
