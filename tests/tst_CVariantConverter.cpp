#include "CVariant.h"

#include "VariantModel.h"
#include "VariantSamples.h"

#include <QMetaType>
#include <QtTest>

using namespace VariantTest;

Q_DECLARE_METATYPE(CVariant)

namespace {

//! What the converters give. It is no number of any record below.
constexpr int kConverted = 99;

template <class... Numbers>
bool registerConverters()
{
    return (QMetaType::registerConverter<NTypes::tsDateTime, Numbers>(
                [](const NTypes::tsDateTime &) { return static_cast<Numbers>(kConverted); })
            && ...);
}

} // namespace

/*!
    Date-times in a program that has registered converters of the record to numbers: their 8 bytes
    are the number then. Converters hold for a whole program, so that this one is apart.
*/
class tst_CVariantConverter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void numbers_data();
    void numbers();
    void comparisons_data();
    void comparisons();
    void otherTags();
    void operations_data();
    void operations();
    void allComparisons();
};

// Before: no number at all. One converter brings one target; the others bring theirs.
void tst_CVariantConverter::initTestCase()
{
    const CVariant value = record(5, 3, 2014, 10, 20, 30, 99);
    const CVariant other = NTypes::tsDateTime();
    bool ok = true;
    QCOMPARE(value.toI32(&ok), 0);
    QVERIFY(!ok);
    QVERIFY(!value.canConvertTo(NTypes::TYPE_I32));
    QVERIFY(value == other && !(value > other));

    QVERIFY(registerConverters<int>());
    QVERIFY(value.canConvertTo(NTypes::TYPE_I32));
    QVERIFY(!value.canConvertTo(NTypes::TYPE_I64));
    QCOMPARE(value.toI32(&ok), 0x0A141E63);
    QVERIFY(ok);
    QCOMPARE(value.toI64(&ok), 0LL);
    QVERIFY(!ok);
    QVERIFY(value == other && !(value > other)); // I64 is what is compared

    QVERIFY((registerConverters<signed char, unsigned char, short, unsigned short, unsigned int,
                                float, unsigned long long, long long, double>()));
}

void tst_CVariantConverter::numbers_data()
{
    QTest::addColumn<CVariant>("value");
    QTest::addColumn<quint64>("bytes"); // byte 0 is the lowest
    const auto add = [](const char *name, const CVariant &value, quint64 bytes) {
        QTest::addRow("%s", name) << value << bytes;
    };
    add("2014-03-05T10:20:30.99", record(5, 3, 2014, 10, 20, 30, 99),
        Q_UINT64_C(0x07DE03050A141E63));
    add("zeros", NTypes::tsDateTime(), 0);
    add("hundredths -1: no sign beyond", record(0, 0, 0, 0, 0, 0, -1), 0xFF);
    add("hours -128", record(0, 0, 0, -128, 0, 0, 0), 0x80000000U);
    add("year -1", record(0, 0, -1, 0, 0, 0, 0), Q_UINT64_C(0xFFFF000000000000));
    add("all -1", record(-1, -1, -1, -1, -1, -1, -1), Q_UINT64_C(0xFFFFFFFFFFFFFFFF));
    add("parsed -2", CVariant::fromStr(QStringLiteral("-2"), NTypes::TYPE_DATETIME),
        Q_UINT64_C(0xFFFFFFFFFFFFFFFE));
}

void tst_CVariantConverter::numbers()
{
    QFETCH(const CVariant, value);
    QFETCH(const quint64, bytes);
    const QStringList expected = numberLines([bytes](auto to) {
        using To = decltype(to);
        if constexpr (std::is_floating_point_v<To>)
            return Result<To>{static_cast<To>(static_cast<qint64>(bytes)), true};
        else
            return Result<To>{static_cast<To>(bytes), true};
    });
    QCOMPARE(numberLines(value), expected);
    for (int code = 1; code <= 10; ++code)
        QVERIFY(value.canConvertTo(tag(code)));
}

void tst_CVariantConverter::comparisons_data()
{
    QTest::addColumn<CVariant>("left");
    QTest::addColumn<CVariant>("right");
    QTest::addColumn<QString>("expected"); // == != < > <= >=
    const auto add
        = [](const char *name, const CVariant &left, const CVariant &right, const char *expected) {
              QTest::addRow("%s", name) << left << right << QString::fromLatin1(expected);
          };
    const CVariant value = record(5, 3, 2014, 10, 20, 30, 99);
    add("the same", value, record(5, 3, 2014, 10, 20, 30, 99), "100011");
    add("a hundredth earlier", record(5, 3, 2014, 10, 20, 30, 98), value, "011010");
    add("the year counts most", value, record(31, 12, 2013, 23, 59, 59, 99), "010101");
    add("a negative year", record(1, 1, -1, 0, 0, 0, 0), NTypes::tsDateTime(), "011010");
    add("I64 of the bytes", value, 0x07DE03050A141E63LL, "010011");
    add("I32: 8 bytes of the left, the number of the right", value, 5, "010101");
    add("I32 of the low bytes", 0x0A141E63, value, "011010");
    add("U8 5: all 8 bytes as unsigned", static_cast<unsigned char>(5), value, "011010");
    add("F64", 1.0, value, "011010");
}

void tst_CVariantConverter::comparisons()
{
    QFETCH(const CVariant, left);
    QFETCH(const CVariant, right);
    QFETCH(const QString, expected);
    QCOMPARE(compared(left, right), expected);
}

// The converter's result is what QVariant gives under another tag, and never that of this one.
void tst_CVariantConverter::otherTags()
{
    const QVariant content = CVariant(record(5, 3, 2014, 10, 20, 30, 99));
    bool ok = false;
    QCOMPARE(withTag(content, 6).toI32(&ok), kConverted);
    QVERIFY(ok);
    QCOMPARE(withTag(content, 6).toStr(), QString::number(kConverted));
    QCOMPARE(withTag(content, 25).toI32(&ok), 0);
    QVERIFY(!ok);
    // A tag of a date-time over another content is the null record.
    QCOMPARE(withTag(5, 16).toI64(&ok), 0LL);
    QVERIFY(ok);
}

void tst_CVariantConverter::operations_data()
{
    QTest::addColumn<CVariant>("value");
    for (const Sample &sample : values())
        QTest::addRow("%s", sample.name) << sample.value;
    for (const int code : tags()) {
        const QVariant content = CVariant(record(5, 3, 2014, 10, 20, 30, 99));
        QTest::addRow("tag %d over a record", code) << withTag(content, code);
        QTest::addRow("tag %d over Int 5", code) << withTag(5, code);
    }
}

void tst_CVariantConverter::operations()
{
    QFETCH(const CVariant, value);
    QCOMPARE(resultsOf(value), resultsOf(modelOf(value)));
}

void tst_CVariantConverter::allComparisons()
{
    const QVector<Sample> all = values();
    QStringList wrong;
    for (const Sample &left : all) {
        for (const Sample &right : all) {
            const QString expected = modelOf(left.value).compared(modelOf(right.value));
            if (compared(left.value, right.value) != expected)
                wrong += QLatin1String(left.name) + QLatin1String(", ") + QLatin1String(right.name);
        }
    }
    QCOMPARE(wrong, QStringList());
}

QTEST_APPLESS_MAIN(tst_CVariantConverter)
#include "tst_CVariantConverter.moc"
