#include "CVariant.h"

#include <QDataStream>
#include <QtTest>

/*!
    A program that has stream functions of its own for some of the library's types. They hold for a
    whole program, so that this one is apart; each type is met in another order.
*/

namespace NTypes {

// The record as its text, the other way round than the library has it: from a variant.
QDataStream &operator<<(QDataStream &out, const tsDateTime &value)
{
    return out << CVariant(value).toStr();
}

QDataStream &operator>>(QDataStream &in, tsDateTime &value)
{
    QString text;
    in >> text;
    const QDateTime dateTime = QDateTime::fromString(text, Qt::ISODate);
    const QDate date = dateTime.date();
    const QTime time = dateTime.time();
    value.time = {0, static_cast<qint8>(time.second()), static_cast<qint8>(time.minute()),
                  static_cast<qint8>(time.hour())};
    value.date = {static_cast<qint8>(date.day()), static_cast<qint8>(date.month()),
                  static_cast<qint16>(date.year())};
    return in;
}

} // namespace NTypes

namespace {

constexpr NTypes::tsDateTime kRecord{{0, 30, 20, 10}, {5, 3, 2014}};

template <class String>
String name()
{
    return String(QStringLiteral("axis"));
}

//! The program's own functions: the text as a QString, not the array of units.
template <class String>
void registerTexts()
{
    QMetaType::registerStreamOperators(
        qMetaTypeId<String>(),
        [](QDataStream &out, const void *data) { out << static_cast<const String *>(data)->str(); },
        [](QDataStream &in, void *data) {
            QString text;
            in >> text;
            *static_cast<String *>(data) = String(text);
        });
}

QByteArray written(const QVariant &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    return bytes;
}

QByteArray written(const CVariant &value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    return bytes;
}

//! Returns \a content and the tag \a type, as a stream holds them.
QByteArray tagged(const QByteArray &content, NTypes::ETypes type)
{
    QByteArray bytes = content;
    QDataStream out(&bytes, QIODevice::Append);
    out << static_cast<qint32>(type);
    return bytes;
}

//! Returns a user type of this \a name with these \a payload bytes, as a QVariant is streamed.
QByteArray userType(const QByteArray &name, const QByteArray &payload)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << quint32{1024} << quint8{0};
    out.writeBytes(name.constData(), static_cast<uint>(name.size() + 1)); // with its zero
    return bytes + payload;
}

QByteArray textPayload(const QString &text)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << text;
    return bytes;
}

//! Returns \a text as an array of \a count big-endian units.
QByteArray units(const QByteArray &text, int count)
{
    QByteArray bytes;
    for (const char character : text)
        bytes += QByteArray(1, '\0') + character;
    return bytes.leftJustified(2 * count, '\0');
}

} // namespace

class tst_CVariantStreams : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void streams_data();
    void streams();

private:
    struct Written
    {
        QByteArray string32;
        QByteArray record;
        QByteArray string128;
    };
    Written mBefore; // the first CVariant, or the program's own functions
};

void tst_CVariantStreams::initTestCase()
{
    registerTexts<CString32>();
    qRegisterMetaTypeStreamOperators<NTypes::tsDateTime>("NTypes::tsDateTime");
    mBefore.string32 = written(QVariant::fromValue(name<CString32>()));
    mBefore.record = written(QVariant::fromValue(kRecord));

    mBefore.string128 = written(CVariant(name<CString128>()));
    QCOMPARE(mBefore.string128,
             tagged(userType("CString128", units("axis", 128)), NTypes::TYPE_STRING128));
    registerTexts<CString128>();
}

void tst_CVariantStreams::streams_data()
{
    QTest::addColumn<QVariant>("content");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("before"); // empty: nothing was written
    QTest::addColumn<QByteArray>("expected");
    const auto text = textPayload(QStringLiteral("axis"));
    QTest::newRow("own before the first variant")
        << QVariant::fromValue(name<CString32>()) << int(NTypes::TYPE_STRING32) << mBefore.string32
        << userType("CString32", text);
    QTest::newRow("own before, by means of a variant")
        << QVariant::fromValue(kRecord) << int(NTypes::TYPE_DATETIME) << mBefore.record
        << userType("NTypes::tsDateTime", textPayload(QStringLiteral("2014-03-05T10:20:30")));
    QTest::newRow("none") << QVariant::fromValue(name<CString64>()) << int(NTypes::TYPE_STRING64)
                          << QByteArray() << userType("CString64", units("axis", 64));
    QTest::newRow("own after the first variant")
        << QVariant::fromValue(name<CString128>()) << int(NTypes::TYPE_STRING128) << QByteArray()
        << userType("CString128", text);
}

void tst_CVariantStreams::streams()
{
    QFETCH(const QVariant, content);
    QFETCH(const int, type);
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, expected);
    const auto tag = static_cast<NTypes::ETypes>(type);
    QCOMPARE(written(content), expected);
    if (!before.isEmpty())
        QCOMPARE(before, expected);

    QDataStream in(tagged(expected, tag));
    CVariant read;
    in >> read;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
    QCOMPARE(read.type(), tag);
    QCOMPARE(written(read), tagged(expected, tag));
    if (tag == NTypes::TYPE_DATETIME)
        QCOMPARE(read.toStr(), QStringLiteral("2014-03-05T10:20:30"));
    else
        QCOMPARE(read.toStr(), QStringLiteral("axis"));
}

QTEST_APPLESS_MAIN(tst_CVariantStreams)
#include "tst_CVariantStreams.moc"
