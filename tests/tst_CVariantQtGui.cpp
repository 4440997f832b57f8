#include <QtTest>

#include "CVariant.h"

#include <QColor>
#include <QPolygon>
#include <QTextFormat>
#include <QVector3D>

/*!
    Contents of Qt Gui, in a program that links it: Qt could read them, but neither in bounded memory
    nor to any depth.
*/
class tst_CVariantQtGui : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refused_data();
    void refused();
    void asWritten_data();
    void asWritten();
};

namespace {

QByteArray head(int type)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << static_cast<quint32>(type) << qint8{0};
    return bytes;
}

} // namespace

void tst_CVariantQtGui::refused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray huge(4, '\x7F');
    QTest::newRow("QPolygon of 2^31 points") << head(QMetaType::QPolygon) + QByteArray(4, '\xFF');
    QTest::newRow("QPolygonF of 2^31 points") << head(QMetaType::QPolygonF) + huge;
    // Its properties are a map, in which lies the next: key, type, null flag, type of the format.
    const QByteArray format = head(QMetaType::QTextFormat) + QByteArray::fromHex("0000000100000001")
        + QByteArray::fromHex("00000001");
    QTest::newRow("100000 nested QTextFormat") << format.repeated(100000);
    QTest::newRow("QPolygon by name") << head(QMetaType::User) + QByteArray::fromHex("00000009")
            + QByteArray("QPolygon", 9) + huge;
}

void tst_CVariantQtGui::refused()
{
    QFETCH(const QByteArray, bytes);
    for (const bool isInList : {false, true}) {
        QDataStream in(isInList
                           ? head(QMetaType::QVariantList) + QByteArray::fromHex("00000001") + bytes
                           : bytes);
        CVariant value(7);
        in >> value;
        QCOMPARE(in.status(), QDataStream::ReadCorruptData);
        const QVariant content = value;
        QCOMPARE(content, isInList ? QVariant(QVariantList()) : QVariant());
    }
}

void tst_CVariantQtGui::asWritten_data()
{
    QTest::addColumn<QVariant>("content");
    QTest::newRow("QColor") << QVariant(QColor(Qt::red));
    QTest::newRow("QPolygon") << QVariant(QPolygon(QRect(0, 0, 2, 2)));
    QTest::newRow("QVector3D") << QVariant(QVector3D(1, 2, 3));
    QTest::newRow("QTextFormat") << QVariant(QTextFormat(QTextFormat::CharFormat));
}

// Qt reads these, which shows that it knows them here.
void tst_CVariantQtGui::asWritten()
{
    QFETCH(const QVariant, content);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << content;
    QDataStream in(bytes);
    QVariant byQt;
    in >> byQt;
    QCOMPARE(in.status(), QDataStream::Ok);
    QCOMPARE(byQt.userType(), content.userType());
    QDataStream again(bytes);
    CVariant value;
    again >> value;
    QCOMPARE(again.status(), QDataStream::ReadCorruptData);
    QVERIFY(!static_cast<QVariant>(value).isValid());
}

QTEST_GUILESS_MAIN(tst_CVariantQtGui)
#include "tst_CVariantQtGui.moc"
