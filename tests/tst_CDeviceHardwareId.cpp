#include "CDeviceHardwareId.h"

#include "InThreads.h"
#include "MessageRecorder.h"
#include "TextSets.h"

#include <QDataStream>
#include <QStringList>
#include <QtTest>

#include <cstddef>
#include <iterator>
#include <random>
#include <type_traits>
#include <utility>

using SHardwareId = CDeviceHardwareId::SHardwareId;

Q_DECLARE_METATYPE(CDeviceHardwareId)
Q_DECLARE_METATYPE(SHardwareId)

namespace {

static_assert(std::has_virtual_destructor_v<CDeviceHardwareId>);
static_assert(std::is_nothrow_move_constructible_v<CDeviceHardwareId>);
static_assert(std::is_nothrow_move_assignable_v<CDeviceHardwareId>);
static_assert(std::is_nothrow_swappable_v<CDeviceHardwareId>);
static_assert(std::is_copy_constructible_v<CDeviceHardwareId>);
static_assert(std::is_convertible_v<const QString &, CDeviceHardwareId>);
static_assert(std::is_convertible_v<const CDeviceHardwareId &, QString>);
static_assert(sizeof(CDeviceHardwareId) == sizeof(void *) + sizeof(SHardwareId));

static_assert(std::is_same_v<decltype(SHardwareId::prefix), QString>);
static_assert(std::is_same_v<decltype(SHardwareId::platform), unsigned short>);
static_assert(std::is_same_v<decltype(SHardwareId::version), unsigned short>);
static_assert(std::is_same_v<decltype(SHardwareId::revision), unsigned short>);
static_assert(std::is_same_v<decltype(SHardwareId::name), QString>);
static_assert(offsetof(SHardwareId, prefix) < offsetof(SHardwareId, platform));
static_assert(offsetof(SHardwareId, platform) < offsetof(SHardwareId, version));
static_assert(offsetof(SHardwareId, version) < offsetof(SHardwareId, revision));
static_assert(offsetof(SHardwareId, revision) < offsetof(SHardwareId, name));

constexpr ushort kNotSet = 0xFFFF;
constexpr int kLongText = 100000;
constexpr QDataStream::Version kVersions[]
    = {QDataStream::Qt_4_6, QDataStream::Qt_5_0, QDataStream::Qt_5_15};

constexpr char kMinimumPattern[] = R"(^((\D?\d{3}){1})(_{1}\w+)?$)";
constexpr char kShortPattern[] = R"(^((\D?\d{3}_\d{3}){1})(_{1}\w+)?$)";
constexpr char kFullPattern[] = R"(^((\D?\d{3}_\d{3}_\d{3}){1})(_{1}\w+)?$)";

const QString kArabicDigits = QStringLiteral("\u0661\u0662\u0663");

QRegExp expression(const char *pattern)
{
    return QRegExp(QLatin1String(pattern), Qt::CaseSensitive, QRegExp::RegExp);
}

//! Returns the parts as text, with a mark for a text that is null.
QByteArray shown(const SHardwareId &parts)
{
    const auto quoted = [](const QString &text) {
        return text.isNull() ? QByteArray("null") : '"' + text.toUtf8().toPercentEncoding() + '"';
    };
    return quoted(parts.prefix) + ' ' + QByteArray::number(parts.platform) + ' '
        + QByteArray::number(parts.version) + ' ' + QByteArray::number(parts.revision) + ' '
        + quoted(parts.name);
}

SHardwareId partsOf(const CDeviceHardwareId &id)
{
    return {id.prefix(), id.platform(), id.version(), id.revision(), id.name()};
}

QByteArray shown(const CDeviceHardwareId &id)
{
    return shown(partsOf(id));
}

CDeviceHardwareId made(const SHardwareId &parts)
{
    CDeviceHardwareId id;
    id.setPrefix(parts.prefix);
    id.setPlatform(parts.platform);
    id.setVersion(parts.version);
    id.setRevision(parts.revision);
    id.setName(parts.name);
    return id;
}

//! The code units of a text, for a failure's message.
QByteArray units(const QString &text)
{
    QByteArray shown;
    for (const QChar unit : text)
        shown += QByteArray::number(unit.unicode(), 16) + ' ';
    return shown;
}

//! What the class does, by the public expressions and Qt's operations on lists of texts.
class Model
{
public:
    bool isMinimum(const QString &text) const { return mMinimum.exactMatch(text); }
    bool isShort(const QString &text) const { return mShort.exactMatch(text); }
    bool isFull(const QString &text) const { return mFull.exactMatch(text); }
    bool isNumber(const QString &text) const { return mNumber.exactMatch(text); }
    bool isPrefix(const QString &text) const { return text.isEmpty() || mPrefix.exactMatch(text); }

    bool parse(const QString &text, SHardwareId &parts) const
    {
        parts = SHardwareId();
        if (text.isEmpty())
            return true;
        QStringList pieces = text.split(QLatin1Char('_'), Qt::KeepEmptyParts, Qt::CaseSensitive);
        QRegExp first(mFirst);
        if (first.indexIn(pieces.first()) == 0)
            parts.prefix = first.cap(0);
        pieces.first().replace(first, QString());
        ushort *const numbers[] = {&parts.platform, &parts.version, &parts.revision};
        for (int i = 0; i < pieces.size(); ++i) {
            if (i < 3 && isNumber(pieces.at(i))) {
                *numbers[i] = static_cast<ushort>(pieces.at(i).toUInt());
                continue;
            }
            if (i == 0)
                return false;
            parts.name = QStringList(pieces.mid(i)).join(QLatin1Char('_'));
            return true;
        }
        return true;
    }

    //! Returns what is wrong with the class on \a text, nothing if all is right.
    QByteArray difference(const QString &text) const
    {
        if (CDeviceHardwareId::isMinimumHardwareId(text) != isMinimum(text))
            return "minimum: " + units(text);
        if (CDeviceHardwareId::isShortHardwareId(text) != isShort(text))
            return "short: " + units(text);
        if (CDeviceHardwareId::isFullHardwareId(text) != isFull(text))
            return "full: " + units(text);
        if (CDeviceHardwareId().checkIVR(text) != isNumber(text))
            return "number: " + units(text);
        SHardwareId expected;
        const bool isParsed = parse(text, expected);
        CDeviceHardwareId id = made({QStringLiteral("Q"), 1, 2, 3, QStringLiteral("Old")});
        if (id.setHardwareId(text) != isParsed || shown(id) != shown(expected))
            return "parts: " + units(text) + " gives " + shown(id) + ", not " + shown(expected);
        return {};
    }

private:
    const QRegExp mMinimum = expression(kMinimumPattern);
    const QRegExp mShort = expression(kShortPattern);
    const QRegExp mFull = expression(kFullPattern);
    const QRegExp mNumber = expression(R"(^\d{1,3}$)");
    const QRegExp mPrefix = expression(R"(^\D{1}$)");
    const QRegExp mFirst = expression(R"(^\D{1,1})");
};

//! Texts near the forms of an identifier, the same ones in each run.
class RandomTexts
{
public:
    QString next()
    {
        QString text;
        if (chance(2))
            text += any();
        const int numbers = below(5);
        for (int i = 0; i < numbers; ++i) {
            if (i > 0)
                text += QLatin1Char('_');
            const int digits = chance(8) ? below(5) : 3;
            for (int k = 0; k < digits; ++k)
                text += chance(20) ? any() : QChar('0' + below(10));
        }
        if (chance(2)) {
            text += QLatin1Char('_');
            for (int length = below(6); length > 0; --length)
                text += chance(10) ? any() : QChar('A' + below(26));
        }
        for (int changes = chance(3) ? below(3) : 0; changes > 0; --changes) {
            if (chance(2) && !text.isEmpty())
                text.remove(below(text.size()), 1);
            else
                text.insert(below(text.size() + 1), any());
        }
        return text;
    }

private:
    int below(int end) { return static_cast<int>(mEngine() % static_cast<uint>(end)); }
    bool chance(int of) { return below(of) == 0; }
    QChar any()
    {
        static const QString odd = QStringLiteral("P_-+ %\t\n\r$\\.\u0661\u0966\uff11\u00b2\u2160"
                                                  "\u0301\u20dd\u203f\u00e9\u4e2d\u2028\ufeff");
        return chance(4) ? QChar(static_cast<ushort>(mEngine())) : odd.at(below(odd.size()));
    }

    std::mt19937 mEngine{20140506};
};

QString repeated(const char *text, int times)
{
    return QString::fromLatin1(text).repeated(times);
}

} // namespace

class tst_CDeviceHardwareId : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void clearedParts();
    void construction();
    void copies();
    void moves();
    void swaps();
    void compares_data();
    void compares();
    void empty_data();
    void empty();

    void patterns_data();
    void patterns();
    void forms_data();
    void forms();
    void numbers_data();
    void numbers();
    void numericSetters_data();
    void numericSetters();
    void uncheckedTexts_data();
    void uncheckedTexts();

    void prints_data();
    void prints();
    void printsAllCombinations();
    void prefixUnits();
    void numberTexts();

    void sets_data();
    void sets();
    void roundTrips_data();
    void roundTrips();

    void allShortTexts_data();
    void allShortTexts();
    void allUnits_data();
    void allUnits();
    void randomTexts();
    void longTexts_data();
    void longTexts();
    void longParts();
    void threads();

    void stream_data();
    void stream();
    void streamOfValues_data();
    void streamOfValues();
    void shortStream_data();
    void shortStream();
    void hostileStream_data();
    void hostileStream();
    void debug_data();
    void debug();

private:
    QScopedPointer<MessageRecorder> mRecorder;
};

// Nothing of the class ever logs.
void tst_CDeviceHardwareId::init()
{
    mRecorder.reset(new MessageRecorder);
}

void tst_CDeviceHardwareId::cleanup()
{
    const QStringList messages = mRecorder->messages();
    mRecorder.reset();
    QCOMPARE(messages, QStringList());
}

void tst_CDeviceHardwareId::clearedParts()
{
    QCOMPARE(shown(SHardwareId()), QByteArray("null 65535 65535 65535 null"));
    const CDeviceHardwareId id;
    QCOMPARE(shown(id), QByteArray("null 65535 65535 65535 null"));
    QVERIFY(id.isEmpty());
    QVERIFY(id.isNull());
    QVERIFY(!id.isValid());
    QVERIFY(id.hardwareId().isNull());
    QVERIFY(id.platformStr().isNull());
    QVERIFY(id.versionStr().isNull());
    QVERIFY(id.revisionStr().isNull());

    CDeviceHardwareId cleared = made({QStringLiteral("P"), 1, 2, 3, QStringLiteral("N")});
    cleared.clear();
    QCOMPARE(shown(cleared), QByteArray("null 65535 65535 65535 null"));
}

void tst_CDeviceHardwareId::construction()
{
    const QByteArray whole = R"("P" 1 2 3 "Drive_A")";
    const QString text = QStringLiteral("P001_002_003_Drive_A");
    QCOMPARE(shown(CDeviceHardwareId(text)), whole);
    const CDeviceHardwareId implicit = text;
    QCOMPARE(shown(implicit), whole);

    CDeviceHardwareId id = made({QStringLiteral("Q"), 7, 8, 9, QStringLiteral("Old")});
    QCOMPARE(&(id = QStringLiteral("X1234")), &id); // starts from the cleared values
    QCOMPARE(shown(id), QByteArray(R"("X" 65535 65535 65535 null)"));
    QCOMPARE(shown(CDeviceHardwareId(QStringLiteral("X1234"))), shown(id));
    id = text;
    QCOMPARE(shown(id), whole);
    id = QString();
    QVERIFY(id.isNull());
    QCOMPARE(shown(CDeviceHardwareId(QString())), QByteArray("null 65535 65535 65535 null"));

    const QString printed = CDeviceHardwareId(text); // by conversion
    QCOMPARE(printed, text);
    const QString none = CDeviceHardwareId();
    QVERIFY(none.isNull());
    QVERIFY(QVariant::fromValue(implicit).value<CDeviceHardwareId>() == implicit);
}

void tst_CDeviceHardwareId::copies()
{
    CDeviceHardwareId original(QStringLiteral("P001_002_003_Drive"));
    const CDeviceHardwareId copy(original);
    CDeviceHardwareId assigned(QStringLiteral("Q9_8_7_Other"));
    QCOMPARE(&(assigned = original), &assigned);
    const CDeviceHardwareId &same = assigned;
    assigned = same;

    original.setPrefix(QStringLiteral("X"));
    original.setPlatform(4);
    original.setVersion(5);
    original.setRevision(6);
    original.setName(QStringLiteral("New"));
    QCOMPARE(shown(original), QByteArray(R"("X" 4 5 6 "New")"));
    QCOMPARE(shown(copy), QByteArray(R"("P" 1 2 3 "Drive")"));
    QCOMPARE(shown(assigned), QByteArray(R"("P" 1 2 3 "Drive")"));

    QString prefix = copy.prefix();
    QString name = copy.name();
    prefix += QLatin1Char('!');
    name.clear();
    QCOMPARE(shown(copy), QByteArray(R"("P" 1 2 3 "Drive")"));
}

void tst_CDeviceHardwareId::moves()
{
    CDeviceHardwareId first(QStringLiteral("P001_002_003_Drive"));
    CDeviceHardwareId second(std::move(first));
    QCOMPARE(shown(second), QByteArray(R"("P" 1 2 3 "Drive")"));
    first = CDeviceHardwareId(QStringLiteral("Q004")); // a moved-from object may be assigned
    QCOMPARE(shown(first), QByteArray(R"("Q" 4 65535 65535 null)"));
    CDeviceHardwareId third(QStringLiteral("9_9_9_Nine"));
    third = std::move(first);
    QCOMPARE(shown(third), QByteArray(R"("Q" 4 65535 65535 null)"));
    const CDeviceHardwareId last(std::move(second)); // or just destroyed
    QCOMPARE(shown(last), QByteArray(R"("P" 1 2 3 "Drive")"));
}

void tst_CDeviceHardwareId::swaps()
{
    CDeviceHardwareId left(QStringLiteral("P001_002_003_Drive"));
    CDeviceHardwareId right(QStringLiteral("Q004"));
    left.swap(right);
    QCOMPARE(shown(left), QByteArray(R"("Q" 4 65535 65535 null)"));
    QCOMPARE(shown(right), QByteArray(R"("P" 1 2 3 "Drive")"));
    swap(left, right);
    QCOMPARE(shown(left), QByteArray(R"("P" 1 2 3 "Drive")"));
    QCOMPARE(shown(right), QByteArray(R"("Q" 4 65535 65535 null)"));
}

void tst_CDeviceHardwareId::compares_data()
{
    QTest::addColumn<SHardwareId>("left");
    QTest::addColumn<SHardwareId>("right");
    QTest::addColumn<bool>("equal");

    const QString p = QStringLiteral("P");
    const QString n = QStringLiteral("N");
    const QString empty = QStringLiteral("");
    const SHardwareId base = {p, 1, 2, 3, n};
    QTest::newRow("all equal") << base << base << true;
    QTest::newRow("cleared") << SHardwareId() << SHardwareId() << true;
    QTest::newRow("prefix, case") << base << SHardwareId{QStringLiteral("p"), 1, 2, 3, n} << false;
    QTest::newRow("prefix, none") << base << SHardwareId{QString(), 1, 2, 3, n} << false;
    QTest::newRow("platform") << base << SHardwareId{p, 4, 2, 3, n} << false;
    QTest::newRow("platform, high byte") << base << SHardwareId{p, 257, 2, 3, n} << false;
    QTest::newRow("version") << base << SHardwareId{p, 1, 4, 3, n} << false;
    QTest::newRow("revision") << base << SHardwareId{p, 1, 2, 4, n} << false;
    QTest::newRow("revision not set") << base << SHardwareId{p, 1, 2, kNotSet, n} << false;
    QTest::newRow("name, case") << base << SHardwareId{p, 1, 2, 3, QStringLiteral("n")} << false;
    QTest::newRow("name, none") << base << SHardwareId{p, 1, 2, 3, QString()} << false;
    QTest::newRow("prefix null and empty")
        << SHardwareId{QString(), 1, 2, 3, n} << SHardwareId{empty, 1, 2, 3, n} << true;
    QTest::newRow("name null and empty")
        << SHardwareId{p, 1, 2, 3, QString()} << SHardwareId{p, 1, 2, 3, empty} << true;
    QTest::newRow("versions exchanged") << base << SHardwareId{p, 1, 3, 2, n} << false;
    QTest::newRow("same text, other parts")
        << SHardwareId{p, 1, kNotSet, kNotSet, QStringLiteral("002")}
        << SHardwareId{p, 1, 2, kNotSet, QString()} << false;
}

void tst_CDeviceHardwareId::compares()
{
    QFETCH(const SHardwareId, left);
    QFETCH(const SHardwareId, right);
    QFETCH(const bool, equal);
    const CDeviceHardwareId first = made(left);
    const CDeviceHardwareId second = made(right);
    QCOMPARE(first == second, equal);
    QCOMPARE(second == first, equal);
    QCOMPARE(first != second, !equal);
    QCOMPARE(second != first, !equal);
}

void tst_CDeviceHardwareId::empty_data()
{
    QTest::addColumn<SHardwareId>("parts");
    QTest::addColumn<bool>("expected");
    const QString none;
    const QString text = QStringLiteral("N");
    const QString empty = QStringLiteral("");
    QTest::newRow("cleared") << SHardwareId() << true;
    QTest::newRow("empty texts") << SHardwareId{empty, kNotSet, kNotSet, kNotSet, empty} << true;
    QTest::newRow("prefix") << SHardwareId{text, kNotSet, kNotSet, kNotSet, none} << false;
    QTest::newRow("platform 0") << SHardwareId{none, 0, kNotSet, kNotSet, none} << false;
    QTest::newRow("version 0") << SHardwareId{none, kNotSet, 0, kNotSet, none} << false;
    QTest::newRow("revision 0") << SHardwareId{none, kNotSet, kNotSet, 0, none} << false;
    QTest::newRow("name") << SHardwareId{none, kNotSet, kNotSet, kNotSet, text} << false;
}

void tst_CDeviceHardwareId::empty()
{
    QFETCH(const SHardwareId, parts);
    QTEST(made(parts).isEmpty(), "expected");
    QTEST(made(parts).isNull(), "expected");
}

void tst_CDeviceHardwareId::patterns_data()
{
    QTest::addColumn<QRegExp>("actual");
    QTest::addColumn<QString>("pattern");
    QTest::newRow("minimum") << CDeviceHardwareId::minimumRegExp()
                             << QStringLiteral("^((\\D?\\d{3}){1})(_{1}\\w+)?$");
    QTest::newRow("short") << CDeviceHardwareId::shortRegExp()
                           << QStringLiteral("^((\\D?\\d{3}_\\d{3}){1})(_{1}\\w+)?$");
    QTest::newRow("full") << CDeviceHardwareId::fullRegExp()
                          << QStringLiteral("^((\\D?\\d{3}_\\d{3}_\\d{3}){1})(_{1}\\w+)?$");
}

void tst_CDeviceHardwareId::patterns()
{
    QFETCH(const QRegExp, actual);
    QTEST(actual.pattern(), "pattern");
    QCOMPARE(actual.caseSensitivity(), Qt::CaseSensitive);
    QCOMPARE(actual.patternSyntax(), QRegExp::RegExp);
    QVERIFY(!actual.isMinimal());
    QVERIFY2(actual.isValid(), qPrintable(actual.errorString()));

    // Each call gives an object of its own.
    QRegExp changed = CDeviceHardwareId::minimumRegExp();
    changed.setPattern(QStringLiteral("x"));
    QCOMPARE(CDeviceHardwareId::minimumRegExp().pattern(), QLatin1String(kMinimumPattern));
}

void tst_CDeviceHardwareId::forms_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("minimum");
    QTest::addColumn<bool>("isShort");
    QTest::addColumn<bool>("full");

    const auto row = [](const char *name, const QString &text, int numbers) {
        QTest::newRow(name) << text << (numbers > 0) << (numbers > 1) << (numbers > 2);
    };
    const auto latin1 = [row](const char *text, int numbers) {
        row(*text ? text : "empty", QString::fromLatin1(text), numbers);
    };
    latin1("P001_002_003", 3);
    latin1("001_002_003", 3);
    latin1("P001_002_003_Drive_A", 3);
    latin1("P001_002_003_", 2); // a name "003_"
    latin1("P001_002_003__", 3);
    latin1("P001_002_003_004", 3);
    latin1("P001_002_003_Drive-A", 0);
    latin1("P001_002_003 ", 0);
    latin1("P001_002_003\n", 0);
    latin1("P001_002_0034", 2); // a name
    latin1("P001_002_03", 2);
    latin1("P001_002", 2);
    latin1("P001_002_x", 2);
    latin1("P001_002_", 1);
    latin1("P001_02", 1);
    latin1("P001_x_003", 1);
    latin1("P001", 1);
    latin1("p001", 1);
    latin1("001", 1);
    latin1("_001", 1); // "_" is a prefix too
    latin1("__001", 0);
    latin1("-001", 1);
    latin1(" 001", 1);
    latin1("\t001_N", 1);
    latin1("001_N", 1);
    latin1("001_", 0);
    latin1("001__", 1);
    latin1("001N", 0);
    latin1("PP001", 0);
    latin1("P01", 0);
    latin1("P0001", 0);
    latin1("0001", 0);
    latin1("01", 0);
    latin1("P", 0);
    latin1("_", 0);
    latin1("", 0);
    row("null", QString(), 0);
    row("Arabic digits", kArabicDigits + QLatin1Char('_') + kArabicDigits, 2);
    row("fullwidth digits", QStringLiteral("P\uff10\uff10\uff11"), 1);
    row("superscript digits are none", QStringLiteral("P00\u00b2"), 0);
    row("name of letters that are not ASCII", QStringLiteral("P001_\u00e9\u4e2d"), 1);
    row("name with a combining mark", QStringLiteral("P001_e\u0301"), 1);
    row("name with a superscript two", QStringLiteral("P001_m\u00b2"), 1);
    row("name with a Roman numeral", QStringLiteral("P001_\u2163"), 1);
    row("name with a tie, which is no letter", QStringLiteral("P001_a\u203fb"), 0);
    row("name with a letter of two units", QStringLiteral("P001_\U00010400"), 0);
    row("digit of two units before", QStringLiteral("\U0001d7cf001"), 0);
    row("half of a letter of two units before", QString(QChar(0xd835)) + QLatin1String("001"), 1);
    row("zero unit before", QString(QChar(0)) + QLatin1String("001"), 1);
    row("zero unit behind", QLatin1String("001") + QString(QChar(0)), 0);
    row("line feed before", QStringLiteral("\n001"), 1);
    row("line separator behind", QStringLiteral("P001\u2028"), 0);
}

void tst_CDeviceHardwareId::forms()
{
    QFETCH(const QString, text);
    QTEST(CDeviceHardwareId::isMinimumHardwareId(text), "minimum");
    QTEST(CDeviceHardwareId::isShortHardwareId(text), "isShort");
    QTEST(CDeviceHardwareId::isFullHardwareId(text), "full");
    QTEST(CDeviceHardwareId::minimumRegExp().exactMatch(text), "minimum");
    QTEST(CDeviceHardwareId::shortRegExp().exactMatch(text), "isShort");
    QTEST(CDeviceHardwareId::fullRegExp().exactMatch(text), "full");
}

void tst_CDeviceHardwareId::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<int>("value");

    const auto good = [](const char *name, const QString &text, int value) {
        QTest::newRow(name) << text << true << value;
    };
    const auto bad
        = [](const char *name, const QString &text) { QTest::newRow(name) << text << false << -1; };
    good("0", QStringLiteral("0"), 0);
    good("7", QStringLiteral("7"), 7);
    good("00", QStringLiteral("00"), 0);
    good("08, no octal number", QStringLiteral("08"), 8);
    good("12", QStringLiteral("12"), 12);
    good("007", QStringLiteral("007"), 7);
    good("010", QStringLiteral("010"), 10);
    good("100", QStringLiteral("100"), 100);
    good("999, greatest", QStringLiteral("999"), 999);
    good("three Arabic digits have no value", kArabicDigits, 0);
    good("one Arabic digit", QStringLiteral("\u0665"), 0);
    good("ASCII before Arabic digit", QStringLiteral("1\u0662"), 0);
    good("Arabic before ASCII digits", QStringLiteral("\u066112"), 0);
    good("Devanagari digit", QStringLiteral("\u0967"), 0);
    good("fullwidth digit", QStringLiteral("\uff17"), 0);
    bad("null", QString());
    bad("empty", QStringLiteral(""));
    bad("0012, four digits", QStringLiteral("0012"));
    bad("1000", QStringLiteral("1000"));
    bad("65535", QStringLiteral("65535"));
    bad("four Arabic digits", kArabicDigits + QLatin1Char('\x31'));
    bad("-1", QStringLiteral("-1"));
    bad("+1", QStringLiteral("+1"));
    bad("blank before", QStringLiteral(" 1"));
    bad("blank behind", QStringLiteral("1 "));
    bad("blank", QStringLiteral(" "));
    bad("line feed behind", QStringLiteral("1\n"));
    bad("zero unit behind", QLatin1String("1") + QString(QChar(0)));
    bad("1a", QStringLiteral("1a"));
    bad("a", QStringLiteral("a"));
    bad("0x1", QStringLiteral("0x1"));
    bad("1.0", QStringLiteral("1.0"));
    bad("1_2", QStringLiteral("1_2"));
    bad("superscript two", QStringLiteral("\u00b2"));
    bad("Roman numeral", QStringLiteral("\u2160"));
    bad("fraction", QStringLiteral("\u00bd"));
    bad("digit of two units", QStringLiteral("\U0001d7cf"));
    bad("%1", QStringLiteral("%1"));
}

void tst_CDeviceHardwareId::numbers()
{
    QFETCH(const QString, text);
    QFETCH(const bool, accepted);
    QFETCH(const int, value);
    QCOMPARE(CDeviceHardwareId().checkIVR(text), accepted);

    for (const ushort before : {ushort(77), ushort(1234), kNotSet}) {
        const SHardwareId parts
            = {QStringLiteral("P"), before, before, before, QStringLiteral("Name")};
        const ushort after = accepted ? static_cast<ushort>(value) : before;
        CDeviceHardwareId id = made(parts);
        SHardwareId expected = parts;

        QCOMPARE(id.setPlatform(text), accepted);
        expected.platform = after;
        QCOMPARE(shown(id), shown(expected));
        QCOMPARE(id.setVersion(text), accepted);
        expected.version = after;
        QCOMPARE(shown(id), shown(expected));
        QCOMPARE(id.setRevision(text), accepted);
        expected.revision = after;
        QCOMPARE(shown(id), shown(expected));
    }
}

void tst_CDeviceHardwareId::numericSetters_data()
{
    QTest::addColumn<ushort>("value");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("0") << ushort(0) << QStringLiteral("000") << true;
    QTest::newRow("7") << ushort(7) << QStringLiteral("007") << true;
    QTest::newRow("10") << ushort(10) << QStringLiteral("010") << true;
    QTest::newRow("12") << ushort(12) << QStringLiteral("012") << true;
    QTest::newRow("99") << ushort(99) << QStringLiteral("099") << true;
    QTest::newRow("100") << ushort(100) << QStringLiteral("100") << true;
    QTest::newRow("999") << ushort(999) << QStringLiteral("999") << true;
    QTest::newRow("1000") << ushort(1000) << QStringLiteral("1000") << false;
    QTest::newRow("1001") << ushort(1001) << QStringLiteral("1001") << false;
    QTest::newRow("32768") << ushort(32768) << QStringLiteral("32768") << false;
    QTest::newRow("65534") << ushort(65534) << QStringLiteral("65534") << false;
    QTest::newRow("65535, not set") << kNotSet << QString() << false;
}

void tst_CDeviceHardwareId::numericSetters()
{
    QFETCH(const ushort, value);
    QFETCH(const QString, text);
    QFETCH(const bool, valid);
    const SHardwareId base = {QString(), 1, 2, 3, QString()};

    CDeviceHardwareId id = made(base);
    id.setPlatform(value);
    QCOMPARE(shown(id), shown(SHardwareId{QString(), value, 2, 3, QString()}));
    QCOMPARE(id.platformStr(), text);
    QCOMPARE(id.platformStr().isNull(), text.isNull());
    QCOMPARE(id.isMinimumHardwareId(), valid);
    QCOMPARE(id.isShortHardwareId(), valid);
    QCOMPARE(id.isFullHardwareId(), valid);
    QCOMPARE(id.isValid(), valid);

    id = made(base);
    id.setVersion(value);
    QCOMPARE(shown(id), shown(SHardwareId{QString(), 1, value, 3, QString()}));
    QCOMPARE(id.versionStr(), text);
    QCOMPARE(id.versionStr().isNull(), text.isNull());
    QVERIFY(id.isMinimumHardwareId());
    QCOMPARE(id.isShortHardwareId(), valid);
    QCOMPARE(id.isFullHardwareId(), valid);
    QVERIFY(id.isValid());

    id = made(base);
    id.setRevision(value);
    QCOMPARE(shown(id), shown(SHardwareId{QString(), 1, 2, value, QString()}));
    QCOMPARE(id.revisionStr(), text);
    QCOMPARE(id.revisionStr().isNull(), text.isNull());
    QVERIFY(id.isMinimumHardwareId());
    QVERIFY(id.isShortHardwareId());
    QCOMPARE(id.isFullHardwareId(), valid);
    QVERIFY(id.isValid());
}

void tst_CDeviceHardwareId::uncheckedTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("one letter") << QStringLiteral("K");
    QTest::newRow("digits") << QStringLiteral("123");
    QTest::newRow("_") << QStringLiteral("_");
    QTest::newRow("a_b_") << QStringLiteral("a_b_");
    QTest::newRow("%1%2") << QStringLiteral("%1%2");
    QTest::newRow("not ASCII") << QStringLiteral("\u00e9\u4e2d\U00010400");
    QTest::newRow("zero unit inside") << QLatin1String("a") + QString(QChar(0)) + QLatin1Char('b');
    QTest::newRow("byte order mark first") << QStringLiteral("\ufeffx");
}

void tst_CDeviceHardwareId::uncheckedTexts()
{
    QFETCH(const QString, text);
    const QString old = QStringLiteral("Old");
    CDeviceHardwareId id = made({old, 1, 2, 3, old});
    id.setPrefix(text);
    QCOMPARE(shown(id), shown(SHardwareId{text, 1, 2, 3, old}));
    id.setName(text);
    QCOMPARE(shown(id), shown(SHardwareId{text, 1, 2, 3, text}));
    id.setPrefix(old);
    QCOMPARE(shown(id), shown(SHardwareId{old, 1, 2, 3, text}));
    id.setName(id.name());
    QCOMPARE(shown(id), shown(SHardwareId{old, 1, 2, 3, text}));
}

void tst_CDeviceHardwareId::prints_data()
{
    QTest::addColumn<SHardwareId>("parts");
    QTest::addColumn<int>("numbers"); // of the longest form
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("hardwareId");

    const auto row = [](const char *name, const SHardwareId &parts, const QStringList &texts) {
        QTest::newRow(name) << parts << texts.size() << texts
                            << (texts.isEmpty() ? parts.name : texts.last());
    };
    const auto list
        = [](const char *text) { return QString::fromLatin1(text).split(QLatin1Char(' ')); };
    const QString none;
    const QString k = QStringLiteral("K");
    const QString n = QStringLiteral("N");
    row("nothing set", {none, kNotSet, kNotSet, kNotSet, none}, {});
    row("name alone", {none, kNotSet, kNotSet, kNotSet, QStringLiteral("Drive_A")}, {});
    row("name alone, empty", {none, kNotSet, kNotSet, kNotSet, QStringLiteral("")}, {});
    row("prefix and name", {k, kNotSet, kNotSet, kNotSet, n}, {});
    row("platform 5", {none, 5, kNotSet, kNotSet, none}, list("005"));
    row("platform 5, empty texts", {QStringLiteral(""), 5, kNotSet, kNotSet, QStringLiteral("")},
        list("005"));
    row("K, 5", {k, 5, kNotSet, kNotSet, none}, list("K005"));
    row("K, 5, N", {k, 5, kNotSet, kNotSet, n}, list("K005_N"));
    row("5, N", {none, 5, kNotSet, kNotSet, n}, list("005_N"));
    row("5, 6", {none, 5, 6, kNotSet, none}, list("005 005_006"));
    row("K, 5, 6", {k, 5, 6, kNotSet, none}, list("K005 K005_006"));
    row("K, 5, 6, N", {k, 5, 6, kNotSet, n}, list("K005_N K005_006_N"));
    row("5, 6, 7", {none, 5, 6, 7, none}, list("005 005_006 005_006_007"));
    row("K, 5, 6, 7", {k, 5, 6, 7, none}, list("K005 K005_006 K005_006_007"));
    row("K, 5, 6, 7, N", {k, 5, 6, 7, n}, list("K005_N K005_006_N K005_006_007_N"));
    row("0, 99, 999", {none, 0, 99, 999, none}, list("000 000_099 000_099_999"));
    row("name with _", {k, 1, 2, 3, QStringLiteral("a_b_")},
        list("K001_a_b_ K001_002_a_b_ K001_002_003_a_b_"));
    row("name of digits", {k, 1, kNotSet, kNotSet, QStringLiteral("002")}, list("K001_002"));
    row("version not set", {k, 5, kNotSet, 7, n}, list("K005_N"));
    row("platform not set", {k, kNotSet, 6, 7, n}, {});
    row("platform 1000", {k, 1000, 6, 7, n}, {});
    row("version 1000", {k, 5, 1000, 7, n}, list("K005_N"));
    row("revision 1000", {k, 5, 6, 1000, n}, list("K005_N K005_006_N"));
    row("prefix of two characters", {QStringLiteral("KL"), 5, 6, 7, n}, {});
    row("prefix of a digit", {QStringLiteral("5"), 5, 6, 7, n}, {});
    row("prefix of an Arabic digit", {QStringLiteral("\u0661"), 5, 6, 7, n}, {});
    row("prefix of a letter of two units", {QStringLiteral("\U00010400"), 5, 6, 7, n}, {});
    row("prefix K and line feed", {QStringLiteral("K\n"), 5, 6, 7, n}, {});
    row("prefix _", {QStringLiteral("_"), 5, 6, kNotSet, none}, list("_005 _005_006"));
    row("prefix -", {QStringLiteral("-"), 5, kNotSet, kNotSet, none}, list("-005"));
    row("prefix blank", {QStringLiteral(" "), 5, kNotSet, kNotSet, none}, {QStringLiteral(" 005")});
    row("prefix line feed", {QStringLiteral("\n"), 5, kNotSet, kNotSet, none}, list("\n005"));
    row("prefix superscript two", {QStringLiteral("\u00b2"), 5, kNotSet, kNotSet, none},
        list("\xb2"
             "005"));
    // Digits behind a "%" of the caller's text are no place for a number.
    row("prefix %, 5, 7", {QStringLiteral("%"), 5, 7, kNotSet, none}, list("%005 %005_007"));
    row("prefix %, 123, 456, 789", {QStringLiteral("%"), 123, 456, 789, none},
        list("%123 %123_456 %123_456_789"));
    row("prefix %, 3, 4, 5, N", {QStringLiteral("%"), 3, 4, 5, n},
        list("%003_N %003_004_N %003_004_005_N"));
    row("name %1", {k, 5, 6, 7, QStringLiteral("%1")}, list("K005_%1 K005_006_%1 K005_006_007_%1"));
    row("name %5%L1%99", {k, 5, 6, 7, QStringLiteral("%5%L1%99")},
        list("K005_%5%L1%99 K005_006_%5%L1%99 K005_006_007_%5%L1%99"));
    row("name %2_%3", {none, 5, kNotSet, kNotSet, QStringLiteral("%2_%3")}, list("005_%2_%3"));
}

void tst_CDeviceHardwareId::prints()
{
    QFETCH(const SHardwareId, parts);
    QFETCH(const int, numbers);
    QFETCH(const QStringList, texts);
    QFETCH(const QString, hardwareId);
    const CDeviceHardwareId id = made(parts);
    const auto check = [&texts](const QString &text, int index) {
        return index < texts.size() ? !text.isNull() && text == texts.at(index) : text.isNull();
    };
    QVERIFY2(check(id.minimumHardwareId(), 0), qPrintable(id.minimumHardwareId()));
    QVERIFY2(check(id.shortHardwareId(), 1), qPrintable(id.shortHardwareId()));
    QVERIFY2(check(id.fullHardwareId(), 2), qPrintable(id.fullHardwareId()));
    QCOMPARE(id.isMinimumHardwareId(), numbers > 0);
    QCOMPARE(id.isShortHardwareId(), numbers > 1);
    QCOMPARE(id.isFullHardwareId(), numbers > 2);
    QCOMPARE(id.isValid(), numbers > 0);
    QCOMPARE(id.hardwareId(), hardwareId);
    QCOMPARE(id.hardwareId().isNull(), hardwareId.isNull());
    const QString converted = id;
    QCOMPARE(converted, hardwareId);
    QCOMPARE(converted.isNull(), hardwareId.isNull());
    QCOMPARE(shown(id), shown(parts)); // nothing has changed
}

void tst_CDeviceHardwareId::printsAllCombinations()
{
    const Model model;
    const QString prefixes[]
        = {QString(),           QStringLiteral(""),       QStringLiteral("P"),
           QStringLiteral("_"), QStringLiteral("%"),      QStringLiteral("4"),
           kArabicDigits[0],    QStringLiteral("\u00e9"), QStringLiteral("PQ")};
    const QString names[] = {QString(), QStringLiteral(""), QStringLiteral("N"),
                             QStringLiteral("%1_%2"), QStringLiteral("5")};
    const ushort values[] = {0, 7, 45, 999, 1000, 0xFFFE, kNotSet};
    const auto padded
        = [](ushort value) { return QString::number(value).rightJustified(3, QLatin1Char('0')); };
    for (const QString &prefix : prefixes) {
        for (const ushort platform : values) {
            for (const ushort version : values) {
                for (const ushort revision : values) {
                    for (const QString &name : names) {
                        const bool minimum = model.isPrefix(prefix) && platform < 1000;
                        const bool isShort = minimum && version < 1000;
                        const bool full = isShort && revision < 1000;
                        const QString behind = name.isEmpty() ? name : QLatin1Char('_') + name;
                        QString texts[3];
                        if (minimum)
                            texts[0] = prefix + padded(platform) + behind;
                        const QString two
                            = prefix + padded(platform) + QLatin1Char('_') + padded(version);
                        if (isShort)
                            texts[1] = two + behind;
                        if (full)
                            texts[2] = two + QLatin1Char('_') + padded(revision) + behind;
                        const QString any = full ? texts[2]
                            : isShort            ? texts[1]
                            : minimum            ? texts[0]
                                                 : name;

                        const SHardwareId parts = {prefix, platform, version, revision, name};
                        const CDeviceHardwareId id = made(parts);
                        const bool isRight = id.isMinimumHardwareId() == minimum
                            && id.isShortHardwareId() == isShort && id.isFullHardwareId() == full
                            && id.isValid() == minimum && id.minimumHardwareId() == texts[0]
                            && id.shortHardwareId() == texts[1] && id.fullHardwareId() == texts[2]
                            && id.minimumHardwareId().isNull() == !minimum
                            && id.shortHardwareId().isNull() == !isShort
                            && id.fullHardwareId().isNull() == !full && id.hardwareId() == any
                            && id.hardwareId().isNull() == any.isNull();
                        QVERIFY2(isRight, shown(parts).constData());
                    }
                }
            }
        }
    }
}

void tst_CDeviceHardwareId::prefixUnits()
{
    const Model model;
    int accepted = 0;
    CDeviceHardwareId id = made({QString(), 1, 2, 3, QString()});
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const QString prefix(QChar(static_cast<ushort>(unit)));
        id.setPrefix(prefix);
        const bool expected = model.isPrefix(prefix);
        if (id.isMinimumHardwareId() != expected || id.isShortHardwareId() != expected
            || id.isFullHardwareId() != expected || id.isValid() != expected) {
            QFAIL(units(prefix).constData());
        }
        accepted += expected ? 1 : 0;
    }
    QVERIFY(accepted > 65000 && accepted < 65536 - 10);
}

void tst_CDeviceHardwareId::numberTexts()
{
    CDeviceHardwareId id;
    for (int value = 0; value < kNotSet; ++value) {
        const auto number = static_cast<ushort>(value);
        id.setPlatform(number);
        id.setVersion(number);
        id.setRevision(number);
        const QString expected = QString::number(value).rightJustified(3, QLatin1Char('0'));
        if (id.platformStr() != expected || id.versionStr() != expected
            || id.revisionStr() != expected) {
            QFAIL(qPrintable(expected));
        }
        if (value < 1000) {
            CDeviceHardwareId read;
            QVERIFY(read.setPlatform(expected) && read.setVersion(QString::number(value))
                    && read.setRevision(expected));
            if (read != id)
                QFAIL(qPrintable(expected));
        }
    }
}

void tst_CDeviceHardwareId::sets_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QVector<int>>("numbers");
    QTest::addColumn<QString>("name");

    const auto row = [](const QString &text, bool accepted, const QString &prefix,
                        const QVector<int> &numbers, const QString &name) {
        QTest::addRow("%s", text.isEmpty() ? "empty" : text.toUtf8().toPercentEncoding().data())
            << text << accepted << prefix << numbers << name;
    };
    const auto latin1 = [row](const char *text, bool accepted, const char *prefix,
                              const QVector<int> &numbers, const char *name) {
        row(QString::fromLatin1(text), accepted, QString::fromLatin1(prefix), numbers,
            QString::fromLatin1(name));
    };
    latin1("P001_002_003", true, "P", {1, 2, 3}, "");
    latin1("P001_002_003_Drive_A", true, "P", {1, 2, 3}, "Drive_A");
    latin1("7_12_Servo", true, "", {7, 12}, "Servo");
    latin1("X1234", false, "X", {}, "");
    latin1("001_x_5", true, "", {1}, "x_5");
    latin1("AB001", false, "A", {}, "");
    latin1("P001_", true, "P", {1}, "");
    latin1("P001__", true, "P", {1}, "_");
    latin1("P001__2", true, "P", {1}, "_2");
    latin1("P001___", true, "P", {1}, "__");
    latin1("_001", false, "", {}, "");
    latin1("_", false, "", {}, "");
    latin1("__", false, "", {}, "");
    latin1("_001_002_003_N", false, "", {}, "");
    latin1("P001_002_003_004", true, "P", {1, 2, 3}, "004");
    latin1("P001_002_003_004_005", true, "P", {1, 2, 3}, "004_005");
    latin1("P001_002_003_", true, "P", {1, 2, 3}, "");
    latin1("P001_002_003__", true, "P", {1, 2, 3}, "_");
    latin1("P001_002_003__N", true, "P", {1, 2, 3}, "_N");
    latin1("P001_002_", true, "P", {1, 2}, "");
    latin1("P001_002__3", true, "P", {1, 2}, "_3");
    latin1("P001_002_0003", true, "P", {1, 2}, "0003");
    latin1("P001_002_Drive_A_", true, "P", {1, 2}, "Drive_A_");
    latin1("P001_0002_003", true, "P", {1}, "0002_003");
    latin1("P001_1000", true, "P", {1}, "1000");
    latin1("P001_-1_2", true, "P", {1}, "-1_2");
    latin1("P001_ 2", true, "P", {1}, " 2");
    latin1("P001_Name", true, "P", {1}, "Name");
    latin1("P0001", false, "P", {}, "");
    latin1("P1000_002_003_N", false, "P", {}, "");
    latin1("P001 ", false, "P", {}, "");
    latin1("P001\n", false, "P", {}, "");
    latin1("P_001", false, "P", {}, "");
    latin1("P", false, "P", {}, "");
    latin1("PQ", false, "P", {}, "");
    latin1("p7", true, "p", {7}, "");
    latin1("-1", true, "-", {1}, "");
    latin1("--1", false, "-", {}, "");
    latin1(" 5", true, " ", {5}, "");
    latin1("%5_7", true, "%", {5, 7}, "");
    latin1("%1_%2_%3", true, "%", {1}, "%2_%3");
    latin1("\n5", true, "\n", {5}, "");
    latin1("0", true, "", {0}, "");
    latin1("999_999_999", true, "", {999, 999, 999}, "");
    latin1("1_2_3", true, "", {1, 2, 3}, "");
    latin1("5P", false, "", {}, "");
    latin1("1234", false, "", {}, "");
    latin1("001N", false, "", {}, "");
    latin1("", true, "", {}, "");
    const QString one = kArabicDigits.left(1);
    row(kArabicDigits, true, QString(), {0}, QString());
    row(QLatin1Char('P') + kArabicDigits + QStringLiteral("_12_") + one + QLatin1String("_N"), true,
        QStringLiteral("P"), {0, 12, 0}, QStringLiteral("N"));
    row(one + QLatin1String("P"), false, QString(), {}, QString());
    row(QStringLiteral("\u00e9") + QLatin1String("007_\u00e9"), true, QStringLiteral("\u00e9"), {7},
        QString::fromLatin1("\u00e9"));
    row(QStringLiteral("\u00b2") + QLatin1String("5"), true, QStringLiteral("\u00b2"), {5},
        QString());
    row(QStringLiteral("\u0301") + QLatin1String("5"), true, QStringLiteral("\u0301"), {5},
        QString());
    row(QStringLiteral("\U0001d7cf") + QLatin1String("5"), false, QString(QChar(0xd835)), {},
        QString());
    row(QString(QChar(0)) + QLatin1String("5"), true, QString(QChar(0)), {5}, QString());
    row(QStringLiteral("5_") + QString(QChar(0)), true, QString(), {5}, QString(QChar(0)));
    row(QStringLiteral("5_\u4e2d_\U00010400"), true, QString(), {5},
        QStringLiteral("\u4e2d_\U00010400"));
}

void tst_CDeviceHardwareId::sets()
{
    QFETCH(const QString, text);
    QFETCH(const bool, accepted);
    QFETCH(const QString, prefix);
    QFETCH(const QVector<int>, numbers);
    QFETCH(const QString, name);
    const auto number = [&numbers](int index) {
        return numbers.size() > index ? static_cast<ushort>(numbers.at(index)) : kNotSet;
    };
    // What no piece gives stays null.
    const SHardwareId expected = {prefix.isEmpty() ? QString() : prefix, number(0), number(1),
                                  number(2), name.isEmpty() ? QString() : name};
    CDeviceHardwareId id = made({QStringLiteral("Q"), 7, 8, 9, QStringLiteral("Old")});
    QCOMPARE(id.setHardwareId(text), accepted);
    QCOMPARE(shown(id), shown(expected));

    QCOMPARE(shown(CDeviceHardwareId(text)), shown(expected));
    id = QStringLiteral("Q7_8_9_Old");
    id = text;
    QCOMPARE(shown(id), shown(expected));
    QCOMPARE(id.isValid(), accepted && !numbers.isEmpty());
    QCOMPARE(id.isNull(), text.isEmpty() || (prefix.isEmpty() && !accepted));
}

void tst_CDeviceHardwareId::roundTrips_data()
{
    QTest::addColumn<SHardwareId>("parts");
    QTest::addColumn<bool>("same");

    const QString none;
    const QString p = QStringLiteral("P");
    const QString names[] = {none,
                             QStringLiteral("Drive"),
                             QStringLiteral("Drive_A"),
                             QStringLiteral("_"),
                             QStringLiteral("_5"),
                             QStringLiteral("1234_5"),
                             QStringLiteral("5x"),
                             QStringLiteral("%1"),
                             QStringLiteral("%3%2_%1"),
                             QStringLiteral("a b-c"),
                             QStringLiteral("\u00e9\U00010400")};
    const QString prefixes[] = {none, p, QStringLiteral("%"), QStringLiteral("\u00b2")};
    for (const QString &prefix : prefixes) {
        for (const QString &name : names) {
            for (int numbers = 1; numbers <= 3; ++numbers) {
                const ushort version = numbers > 1 ? 2 : kNotSet;
                const ushort revision = numbers > 2 ? 999 : kNotSet;
                const SHardwareId parts = {prefix, 0, version, revision, name};
                QTest::addRow("%s", shown(parts).constData()) << parts << true;
            }
        }
    }
    // A piece of a name that is a number is read as the next one, unless none is left.
    const QString five = QStringLiteral("5");
    QTest::newRow("full, name 5") << SHardwareId{p, 1, 2, 3, five} << true;
    QTest::newRow("short, name 5") << SHardwareId{p, 1, 2, kNotSet, five} << false;
    QTest::newRow("minimum, name 5") << SHardwareId{p, 1, kNotSet, kNotSet, five} << false;
    QTest::newRow("minimum, Arabic name")
        << SHardwareId{p, 1, kNotSet, kNotSet, kArabicDigits} << false;
    QTest::newRow("prefix _") << SHardwareId{QStringLiteral("_"), 1, 2, 3, none} << false;
    QTest::newRow("two-character prefix")
        << SHardwareId{QStringLiteral("PQ"), 1, 2, 3, none} << false;
}

void tst_CDeviceHardwareId::roundTrips()
{
    QFETCH(const SHardwareId, parts);
    QFETCH(const bool, same);
    const CDeviceHardwareId id = made(parts);
    CDeviceHardwareId read(QStringLiteral("Q7_8_9_Old"));
    const bool isRead = read.setHardwareId(id.hardwareId());
    QCOMPARE(read == id, same);
    if (same) {
        QVERIFY(isRead);
        QCOMPARE(shown(read), shown(parts));
    }
}

void tst_CDeviceHardwareId::allShortTexts_data()
{
    QTest::addColumn<QString>("alphabet");
    QTest::addColumn<int>("length");
    QTest::newRow("digit, letter, _, Arabic digit, mark, blank")
        << QStringLiteral("1a_\u0661\u0301 ") << 6;
    QTest::newRow("digit, _") << QStringLiteral("1_") << 14;
    QTest::newRow("digit, letter, _") << QStringLiteral("1a_") << 9;
    QTest::newRow("digit, halves of a pair, line feed, zero, %")
        << QStringLiteral("1\U0001d7cf\n%") + QChar(0) << 5;
    QTest::newRow("digit, superscript, numeral, tie, sign, _")
        << QStringLiteral("1\u00b2\u2160\u203f-_") << 5;
}

void tst_CDeviceHardwareId::allShortTexts()
{
    QFETCH(const QString, alphabet);
    QFETCH(const int, length);
    const Model model;
    QByteArray difference;
    forAllTexts(alphabet, length, [&](const QString &text) {
        difference = model.difference(text);
        return difference.isEmpty();
    });
    QVERIFY2(difference.isEmpty(), difference.constData());
}

void tst_CDeviceHardwareId::allUnits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("place");
    for (const char *text : {"001", "P001_N", "P001_002_003_N"}) {
        for (int place = 0; place < static_cast<int>(qstrlen(text)); ++place)
            QTest::addRow("%s, unit %d", text, place) << QString::fromLatin1(text) << place;
    }
}

void tst_CDeviceHardwareId::allUnits()
{
    QFETCH(QString, text);
    QFETCH(const int, place);
    const Model model;
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        text[place] = QChar(static_cast<ushort>(unit));
        const bool isRight = text.size() > 6
            ? CDeviceHardwareId::isFullHardwareId(text) == model.isFull(text)
            : model.difference(text).isEmpty();
        if (!isRight)
            QFAIL(units(text).constData());
    }
}

void tst_CDeviceHardwareId::randomTexts()
{
    const Model model;
    RandomTexts texts;
    int minimum = 0;
    int full = 0;
    for (int i = 0; i < 200000; ++i) {
        const QString text = texts.next();
        const QByteArray difference = model.difference(text);
        QVERIFY2(difference.isEmpty(), difference.constData());
        minimum += model.isMinimum(text) ? 1 : 0;
        full += model.isFull(text) ? 1 : 0;
    }
    QVERIFY(minimum > 20000 && minimum < 180000); // both answers are frequent
    QVERIFY(full > 10000);
}

void tst_CDeviceHardwareId::longTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("form"); // the numbers of the longest one, 0: none
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<SHardwareId>("parts");

    const QString none;
    const QString p = QStringLiteral("P");
    const SHardwareId cleared;
    const QString letters = repeated("Ab", kLongText / 2);
    const QString digits = repeated("1", kLongText);
    const QString separators = repeated("_", kLongText);
    const QString pieces = repeated("123_", kLongText / 4);
    QTest::newRow("digits") << digits << 0 << false << cleared;
    QTest::newRow("P and digits") << p + digits << 0 << false
                                  << SHardwareId{p, kNotSet, kNotSet, kNotSet, none};
    QTest::newRow("letters") << letters << 0 << false
                             << SHardwareId{QStringLiteral("A"), kNotSet, kNotSet, kNotSet, none};
    QTest::newRow("separators") << separators << 0 << false << cleared;
    QTest::newRow("Arabic digits") << QString(kLongText, kArabicDigits[0]) << 0 << false << cleared;
    QTest::newRow("numbers") << pieces + QLatin1Char('1') << 3 << true
                             << SHardwareId{none, 123, 123, 123, pieces.mid(12) + QLatin1Char('1')};
    QTest::newRow("P001_ and letters") << QStringLiteral("P001_") + letters << 1 << true
                                       << SHardwareId{p, 1, kNotSet, kNotSet, letters};
    QTest::newRow("P001_ and digits") << QStringLiteral("P001_") + digits << 1 << true
                                      << SHardwareId{p, 1, kNotSet, kNotSet, digits};
    QTest::newRow("P001_002_ and letters") << QStringLiteral("P001_002_") + letters << 2 << true
                                           << SHardwareId{p, 1, 2, kNotSet, letters};
    QTest::newRow("P001_002_003_ and separators") << QStringLiteral("P001_002_003_")
            + separators << 3 << true << SHardwareId{p, 1, 2, 3, separators};
    QTest::newRow("P001_002_003_ and letters, then a blank")
        << QStringLiteral("P001_002_003_") + letters + QLatin1Char(' ') << 0 << true
        << SHardwareId{p, 1, 2, 3, letters + QLatin1Char(' ')};
    QTest::newRow("001_ and %1") << QStringLiteral("001_") + repeated("%1", kLongText / 2) << 0
                                 << true
                                 << SHardwareId{none, 1, kNotSet, kNotSet,
                                                repeated("%1", kLongText / 2)};
}

void tst_CDeviceHardwareId::longTexts()
{
    QFETCH(const QString, text);
    QFETCH(const int, form);
    QFETCH(const bool, accepted);
    QFETCH(const SHardwareId, parts);
    QVERIFY(text.size() >= kLongText);
    QCOMPARE(CDeviceHardwareId::isMinimumHardwareId(text), form > 0);
    QCOMPARE(CDeviceHardwareId::isShortHardwareId(text), form > 1);
    QCOMPARE(CDeviceHardwareId::isFullHardwareId(text), form > 2);

    CDeviceHardwareId id(QStringLiteral("Q7_8_9_Old"));
    QVERIFY(!id.checkIVR(text));
    QVERIFY(!id.setPlatform(text) && !id.setVersion(text) && !id.setRevision(text));
    QCOMPARE(shown(id), QByteArray(R"("Q" 7 8 9 "Old")"));
    QCOMPARE(id.setHardwareId(text), accepted);
    QVERIFY(shown(id) == shown(parts));
    if (accepted)
        QVERIFY(id.hardwareId() == text);
}

void tst_CDeviceHardwareId::longParts()
{
    const QString longText = repeated("%1_x5", kLongText / 5);
    CDeviceHardwareId id(QStringLiteral("P001_002_003"));
    id.setName(longText);
    QVERIFY(id.isFullHardwareId());
    QVERIFY(id.minimumHardwareId() == QStringLiteral("P001_") + longText);
    QVERIFY(id.shortHardwareId() == QStringLiteral("P001_002_") + longText);
    QVERIFY(id.fullHardwareId() == QStringLiteral("P001_002_003_") + longText);
    id.setPrefix(longText);
    QVERIFY(id.prefix() == longText);
    QVERIFY(!id.isMinimumHardwareId() && !id.isShortHardwareId() && !id.isFullHardwareId());
    QVERIFY(id.minimumHardwareId().isNull() && id.fullHardwareId().isNull());
    QVERIFY(id.hardwareId() == longText); // the name alone

    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << id;
    CDeviceHardwareId read;
    QDataStream in(bytes);
    in >> read;
    QVERIFY(read == id);
}

void tst_CDeviceHardwareId::threads()
{
    const auto check = [] {
        for (int i = 0; i < 2000; ++i) {
            const int number = i % 1000;
            const QString digits = QString::number(number).rightJustified(3, QLatin1Char('0'));
            const QString two = QLatin1Char('P') + digits + QLatin1Char('_') + digits;
            const QString three = two + QLatin1Char('_') + digits + QLatin1String("_N");
            CDeviceHardwareId id;
            const bool isRight = CDeviceHardwareId::isMinimumHardwareId(two)
                && CDeviceHardwareId::isShortHardwareId(two)
                && !CDeviceHardwareId::isFullHardwareId(two)
                && CDeviceHardwareId::isFullHardwareId(three)
                && CDeviceHardwareId::shortRegExp().exactMatch(two)
                && !CDeviceHardwareId::fullRegExp().exactMatch(two) && id.checkIVR(digits)
                && !id.checkIVR(two) && id.setPlatform(digits) && !id.setVersion(two)
                && id.platform() == number && id.setHardwareId(three) && id.revision() == number
                && id.fullHardwareId() == three && id.isFullHardwareId();
            if (!isRight)
                return false;
        }
        return true;
    };
    QVERIFY(trueInThreads(check));
}

void tst_CDeviceHardwareId::stream_data()
{
    QTest::addColumn<SHardwareId>("parts");
    QTest::addColumn<QByteArray>("bigEndian");
    QTest::addColumn<QByteArray>("littleEndian");

    const auto row = [](const char *name, const SHardwareId &parts, const QByteArray &bigEndian,
                        const QByteArray &littleEndian) {
        QTest::newRow(name) << parts << bigEndian << littleEndian;
    };
    const QString none;
    const QString empty = QStringLiteral("");
    const QString p = QStringLiteral("P");
    row("cleared", {}, "ffffffffffffffffffffffffffff", "ffffffffffffffffffffffffffff");
    row("P001_002_003_Ab", {p, 1, 2, 3, QStringLiteral("Ab")},
        "00000002"
        "0050"
        "000100020003"
        "00000004"
        "00410062",
        "02000000"
        "5000"
        "010002000300"
        "04000000"
        "41006200");
    row("texts empty, not null", {empty, 0, 0, 0, empty},
        "00000000000000000000"
        "00000000",
        "00000000000000000000"
        "00000000");
    row("prefix empty, name null", {empty, 0x0102, 0x0304, 0x0506, none},
        "00000000"
        "010203040506"
        "ffffffff",
        "00000000"
        "020104030605"
        "ffffffff");
    row("prefix null, name empty", {none, 999, 0x7FFF, 0x8000, empty},
        "ffffffff"
        "03e77fff8000"
        "00000000",
        "ffffffff"
        "e703ff7f0080"
        "00000000");
    row("what no identifier has",
        {QStringLiteral("12"), 1000, 0xFFFE, kNotSet, QStringLiteral("\u0661\U00010400")},
        "00000004"
        "00310032"
        "03e8fffeffff"
        "00000006"
        "0661d801dc00",
        "04000000"
        "31003200"
        "e803feffffff"
        "06000000"
        "610601d800dc");
    row("zero unit and byte order mark",
        {QString(QChar(0)), 1, 2, 3, QStringLiteral("\ufeff") + QChar(0xfffe)},
        "00000002"
        "0000"
        "000100020003"
        "00000004"
        "fefffffe",
        "02000000"
        "0000"
        "010002000300"
        "04000000"
        "fffefeff");
}

void tst_CDeviceHardwareId::stream()
{
    QFETCH(const SHardwareId, parts);
    for (const auto version : kVersions) {
        for (const auto order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out.setVersion(version);
            out.setByteOrder(order);
            QCOMPARE(&(out << made(parts)), &out);
            QTEST(bytes.toHex(), order == QDataStream::BigEndian ? "bigEndian" : "littleEndian");
            QCOMPARE(out.version(), static_cast<int>(version));
            QCOMPARE(out.byteOrder(), order);

            QDataStream in(bytes + "tail");
            in.setVersion(version);
            in.setByteOrder(order);
            CDeviceHardwareId id(QStringLiteral("Q7_8_9_Old"));
            const CDeviceHardwareId copy(id);
            QCOMPARE(&(in >> id), &in);
            QCOMPARE(shown(id), shown(parts));
            QCOMPARE(in.status(), QDataStream::Ok);
            QCOMPARE(in.device()->bytesAvailable(), 4LL);
            QCOMPARE(shown(copy), QByteArray(R"("Q" 7 8 9 "Old")"));
        }
    }
}

void tst_CDeviceHardwareId::streamOfValues_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("P001") << QStringLiteral("P001");
    QTest::newRow("P001_002") << QStringLiteral("P001_002");
    QTest::newRow("P001_002_003_Drive_A") << QStringLiteral("P001_002_003_Drive_A");
    QTest::newRow("X1234, prefix alone") << QStringLiteral("X1234");
}

// Two in a row, with a value between them.
void tst_CDeviceHardwareId::streamOfValues()
{
    QFETCH(const QString, text);
    const CDeviceHardwareId id(text);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << id << quint8(0x5A) << CDeviceHardwareId(QStringLiteral("K9")) << id;
    QDataStream in(bytes);
    CDeviceHardwareId first(QStringLiteral("Q7_8_9_Old"));
    CDeviceHardwareId second(first);
    CDeviceHardwareId third(first);
    quint8 between = 0;
    in >> first >> between >> second >> third;
    QCOMPARE(shown(first), shown(id));
    QCOMPARE(between, quint8(0x5A));
    QCOMPARE(shown(second), QByteArray(R"("K" 9 65535 65535 null)"));
    QCOMPARE(shown(third), shown(id));
    QVERIFY(in.atEnd());
    QCOMPARE(in.status(), QDataStream::Ok);
}

void tst_CDeviceHardwareId::shortStream_data()
{
    QTest::addColumn<int>("length");
    for (int length = 0; length < 20; ++length)
        QTest::addRow("%d of 20 bytes", length) << length;
}

void tst_CDeviceHardwareId::shortStream()
{
    QFETCH(const int, length);
    const QByteArray whole = QByteArray::fromHex("00000002"
                                                 "0050"
                                                 "010203040506"
                                                 "00000004"
                                                 "00410062");
    QCOMPARE(whole.size(), 20);
    for (const auto version : kVersions) {
        QDataStream in(whole.left(length));
        in.setVersion(version);
        CDeviceHardwareId id(QStringLiteral("Q7_8_9_Old"));
        in >> id;
        QCOMPARE(id.prefix(), length < 6 ? QString() : QStringLiteral("P"));
        QCOMPARE(id.platform(), static_cast<ushort>(length < 8 ? 0 : 0x0102));
        QCOMPARE(id.version(), static_cast<ushort>(length < 10 ? 0 : 0x0304));
        QCOMPARE(id.revision(), static_cast<ushort>(length < 12 ? 0 : 0x0506));
        QCOMPARE(id.name(), QString());
        QCOMPARE(in.status(), QDataStream::ReadPastEnd);
        QVERIFY(in.atEnd());
    }
}

void tst_CDeviceHardwareId::hostileStream_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<SHardwareId>("parts");
    QTest::addColumn<int>("status");
    // A text of an odd number of bytes is refused before it is read; what follows is read.
    QTest::newRow("prefix of 3 bytes") << QByteArray("00000003"
                                                     "000100020003"
                                                     "00000002"
                                                     "0041")
                                       << SHardwareId{QString(), 1, 2, 3, QStringLiteral("A")}
                                       << static_cast<int>(QDataStream::ReadCorruptData);
    QTest::newRow("name of 2^32 - 3 bytes") << QByteArray("00000002"
                                                          "0050"
                                                          "000100020003"
                                                          "fffffffd")
                                            << SHardwareId{QStringLiteral("P"), 1, 2, 3, QString()}
                                            << static_cast<int>(QDataStream::ReadCorruptData);
    QTest::newRow("prefix of 2^32 - 2 bytes")
        << QByteArray("fffffffe"
                      "000100020003"
                      "00000002"
                      "0041")
        << SHardwareId{QString(), 0, 0, 0, QString()} << static_cast<int>(QDataStream::ReadPastEnd);
}

void tst_CDeviceHardwareId::hostileStream()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const SHardwareId, parts);
    QDataStream in(QByteArray::fromHex(bytes));
    CDeviceHardwareId id(QStringLiteral("Q7_8_9_Old"));
    in >> id;
    QVERIFY(id == made(parts));
    QTEST(static_cast<int>(in.status()), "status");
}

void tst_CDeviceHardwareId::debug_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("P001_002") << QStringLiteral("P001_002")
                              << QStringLiteral("CDeviceHardwareId(\"P001_002\")");
    QTest::newRow("P001_002_003_Drive")
        << QStringLiteral("P001_002_003_Drive")
        << QStringLiteral("CDeviceHardwareId(\"P001_002_003_Drive\")");
    QTest::newRow("empty") << QString() << QStringLiteral("CDeviceHardwareId(\"\")");
}

void tst_CDeviceHardwareId::debug()
{
    QFETCH(const QString, text);
    QFETCH(const QString, expected);
    const CDeviceHardwareId id(text);
    QString written;
    QDebug(&written).nospace() << id << '|' << 7 << " x"; // the state of the stream is kept
    QCOMPARE(written, expected + QLatin1String("|7 x"));
    QString spaced;
    QDebug(&spaced) << 1 << id << 2;
    QCOMPARE(spaced.trimmed(), QLatin1String("1 ") + expected + QLatin1String(" 2"));
}

QTEST_APPLESS_MAIN(tst_CDeviceHardwareId)

#include "tst_CDeviceHardwareId.moc"
