// A test whose code under test throws fails that test, and the run goes on with the next
// one: the executable ends normally, its exit code counting the failures.

#include <QProcess>

#include <QTest>

using namespace Qt::StringLiterals;

class tst_TestMain : public QObject
{
    Q_OBJECT

private slots:
    void aThrowingTestFailsAndTheRunGoesOn()
    {
        QProcess p;
        p.setProcessChannelMode(QProcess::SeparateChannels);
        p.start(QStringLiteral(THROWING_TEST), {});
        QVERIFY(p.waitForFinished(60000));
        const QString out = QString::fromUtf8(p.readAllStandardOutput());
        const QString err = QString::fromUtf8(p.readAllStandardError());
        const QString both = out + err;
        QCOMPARE(p.exitStatus(), QProcess::NormalExit);
        QVERIFY2(!both.contains(u"terminate called"_s), qPrintable(both));
        for (const QString &failed :
            {u"throwsInTheCodeUnderTest"_s, u"throwsInAnEventHandler"_s, u"throwsFromATimer"_s})
            QVERIFY2(out.contains(u"FAIL!  : tst_Throwing::"_s + failed + u"()"_s), qPrintable(both));
        for (const QString &passed : {u"passesFirst"_s, u"passesBetween"_s, u"passesLast"_s})
            QVERIFY2(out.contains(u"PASS   : tst_Throwing::"_s + passed + u"()"_s), qPrintable(both));
        QCOMPARE(p.exitCode(), 3);
    }

    void aChosenFunctionThatThrowsFailsWithoutAbort()
    {
        QProcess p;
        p.start(QStringLiteral(THROWING_TEST), {u"throwsInTheCodeUnderTest"_s});
        QVERIFY(p.waitForFinished(60000));
        QCOMPARE(p.exitStatus(), QProcess::NormalExit);
        QCOMPARE(p.exitCode(), 1);
        QVERIFY(QString::fromUtf8(p.readAllStandardOutput())
                    .contains(u"FAIL!  : tst_Throwing::throwsInTheCodeUnderTest()"_s));
    }

    // TREMIDIA_TEST_ORDER=reverse runs the functions last to first, and a run that meets
    // an exception goes on in that order.
    void reverseOrderRunsTheFunctionsLastToFirst()
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"TREMIDIA_TEST_ORDER"_s, u"reverse"_s);
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(THROWING_TEST), {});
        QVERIFY(p.waitForFinished(60000));
        const QString out = QString::fromUtf8(p.readAllStandardOutput());
        QCOMPARE(p.exitStatus(), QProcess::NormalExit);
        QCOMPARE(p.exitCode(), 3);
        const QStringList lastToFirst {u"passesLast"_s, u"throwsFromATimer"_s, u"throwsInAnEventHandler"_s,
            u"passesBetween"_s, u"throwsInTheCodeUnderTest"_s, u"passesFirst"_s};
        qsizetype at = 0;
        for (const QString &function : lastToFirst) {
            const qsizetype next = out.indexOf(u"tst_Throwing::"_s + function + u"()"_s, at);
            QVERIFY2(next >= 0, qPrintable(function + u" not after the one before it:\n"_s + out));
            at = next;
        }
    }
};

QTEST_GUILESS_MAIN(tst_TestMain)
#include "tst_testmain.moc"
