// Test functions whose code under test throws, in the three ways a test meets it:
// called directly, from an event handler, and from a timer inside an event loop. Between
// them stand functions that pass, so that a run which goes on can be told from one that
// stopped.

#include <runtimeerror.h>

#include <QCoreApplication>
#include <QEvent>
#include <QTest>
#include <QTimer>

namespace {

[[noreturn]] void failToReadPicture()
{
    throw platform::RuntimeError(481, QStringLiteral("Μη έγκυρη εικόνα"));
}

class ThrowingReceiver final : public QObject
{
public:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::User)
            failToReadPicture();
        return QObject::event(event);
    }
};

} // namespace

class tst_Throwing : public QObject
{
    Q_OBJECT

private slots:
    void passesFirst() { QVERIFY(true); }

    void throwsInTheCodeUnderTest() { failToReadPicture(); }

    void passesBetween() { QCOMPARE(1 + 1, 2); }

    void throwsInAnEventHandler()
    {
        ThrowingReceiver receiver;
        QEvent event(QEvent::User);
        QCoreApplication::sendEvent(&receiver, &event);
    }

    void throwsFromATimer()
    {
        QTimer::singleShot(0, [] { failToReadPicture(); });
        QTest::qWait(200);
    }

    void passesLast() { QVERIFY(true); }
};

QTEST_GUILESS_MAIN(tst_Throwing)
#include "throwingtest.moc"
