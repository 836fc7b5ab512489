#include "../support/msgboxrecorder.h"

#include <errorpolicy.h>
#include <msgbox.h>

#include <QApplication>
#include <QTest>

class tst_ErrorPolicy : public QObject
{
    Q_OBJECT

    testing::MsgBoxRecorder m_shown;

private slots:
    void init() { m_shown.install(); }
    void cleanup() { platform::setMsgBoxHook({}); }

    void untrappedErrorStopsHandlerAndShowsBox()
    {
        bool after = false;
        const bool finished = platform::guarded([&] {
            throw platform::RuntimeError(3024, QStringLiteral("Δεν βρέθηκε το αρχείο"));
            after = true;
        });
        QVERIFY(!finished);
        QVERIFY(!after);
        QCOMPARE(m_shown.size(), 1);
        QCOMPARE(m_shown[0].text, QStringLiteral("Λάθος # 3024\r\nΔεν βρέθηκε το αρχείο"));
        QCOMPARE(m_shown[0].style, 16);
        QCOMPARE(m_shown[0].title, QStringLiteral("Τρεμίδια"));
    }

    void handlerThatSucceedsShowsNothing()
    {
        QVERIFY(platform::guarded([] {}));
        QVERIFY(m_shown.isEmpty());
    }

    void resumeNextDropsTheError()
    {
        int reached = 0;
        platform::resumeNext([] { throw platform::RuntimeError(9, QStringLiteral("x")); });
        ++reached;
        QCOMPARE(reached, 1);
        QVERIFY(m_shown.isEmpty());
    }

    void foreignExceptionStillGivesTheBox()
    {
        platform::guarded([] { throw std::runtime_error("boom"); });
        QCOMPARE(m_shown.size(), 1);
        QVERIFY(m_shown[0].text.startsWith(QStringLiteral("Λάθος # ")));
    }
};

QTEST_MAIN(tst_ErrorPolicy)
#include "tst_errorpolicy.moc"
