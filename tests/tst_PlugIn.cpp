#include <QProcess>
#include <QtTest>

/*!
    Plug-ins that use the library, in programs that do not: what Qt keeps of the library's types to
    the end of the program is there as long.
*/
class tst_PlugIn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void closes_data();
    void closes();
};

void tst_PlugIn::closes_data()
{
    QTest::addColumn<QString>("function");
    QTest::newRow("used again") << QStringLiteral("-");
    QTest::newRow("content of a variant, a fixed string") << QStringLiteral("variantOfString");
    QTest::newRow("content of a variant, a record") << QStringLiteral("variantOfRecord");
    QTest::newRow("wrapped by the plug-in, a fixed string") << QStringLiteral("wrappedString");
    QTest::newRow("wrapped by the plug-in, a record") << QStringLiteral("wrappedRecord");
}

void tst_PlugIn::closes()
{
    QFETCH(const QString, function);
    const QString others = QStringLiteral(K7E_OTHERS);
    QProcess host;
    host.setProcessChannelMode(QProcess::MergedChannels);
    host.start(QStringLiteral(K7E_HOST),
               QStringList{QStringLiteral(K7E_PLUGIN), function} + others.split(QLatin1Char('|')));
    QVERIFY(host.waitForFinished());
    QCOMPARE(QString::fromLocal8Bit(host.readAll()), QString());
    QCOMPARE(host.exitStatus(), QProcess::NormalExit);
    QCOMPARE(host.exitCode(), 0);
}

QTEST_APPLESS_MAIN(tst_PlugIn)
#include "tst_PlugIn.moc"
