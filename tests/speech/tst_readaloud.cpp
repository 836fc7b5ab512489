#include "recordingspeaker.h"
#include "textwindow.h"

#include <readable.h>
#include <readaloud.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPointer>
#include <QShortcut>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

using testing::TextWindow;

class tst_ReadAloud : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::SpeakingSession> m_session;
    testing::RecordingSpeaker *m_speaker = nullptr;

    speech::ReadAloud &reader() { return m_session->reader(); }
    QList<testing::ShownBox> &boxes() { return m_session->session.host->boxes; }
    QPointer<TextWindow> m_window;

    TextWindow *showWindow(const QString &text)
    {
        m_window = testing::showTextWindow(text);
        return m_window;
    }

private slots:
    void init()
    {
        m_session = std::make_unique<testing::SpeakingSession>();
        m_speaker = m_session->speaker;
    }

    void cleanup()
    {
        delete m_window;
        m_session.reset();
    }

    void thePressReadsTheActiveWindowsWholeText()
    {
        showWindow(u"Ο Κλεισθένης μοίρασε τους Αθηναίους σε δέκα φυλές."_s);
        reader().toggle();
        QCOMPARE(m_speaker->said, QStringList {u"Ο Κλεισθένης μοίρασε τους Αθηναίους σε δέκα φυλές."_s});
        QVERIFY(reader().speaking());
    }

    void aSelectionIsReadRatherThanTheWholeText()
    {
        TextWindow *w = showWindow(u"πρώτη λέξη δεύτερη"_s);
        QTextCursor cursor = w->box->textCursor();
        cursor.setPosition(6);
        cursor.setPosition(10, QTextCursor::KeepAnchor);
        w->box->setTextCursor(cursor);
        reader().toggle();
        QCOMPARE(m_speaker->said, QStringList {u"λέξη"_s});
    }

    void aSecondPressStops()
    {
        showWindow(u"κείμενο"_s);
        reader().toggle();
        reader().toggle();
        QCOMPARE(m_speaker->said.size(), 1);
        QCOMPARE(m_speaker->stops, 1);
        QVERIFY(!reader().speaking());
    }

    void afterTheEndAPressReadsAgain()
    {
        showWindow(u"κείμενο"_s);
        reader().toggle();
        m_speaker->finish();
        reader().toggle();
        QCOMPARE(m_speaker->said.size(), 2);
        QCOMPARE(m_speaker->stops, 0);
    }

    void f9ReadsAndF9Stops()
    {
        TextWindow *w = showWindow(u"κείμενο"_s);
        QTest::keyClick(w->box, Qt::Key_F9);
        QCOMPARE(m_speaker->said, QStringList {u"κείμενο"_s});
        QTest::keyClick(w->box, Qt::Key_F9);
        QCOMPARE(m_speaker->stops, 1);
        QCOMPARE(m_speaker->said.size(), 1);
    }

    void escapeStopsTheReadingAndGoesNoFurther()
    {
        TextWindow *w = showWindow(u"κείμενο"_s);
        QTest::keyClick(w->box, Qt::Key_F9);
        QTest::keyClick(w->box, Qt::Key_Escape);
        QCOMPARE(m_speaker->stops, 1);
        QCOMPARE(w->escapes, 0);
        // Silent again, Escape is the window's once more.
        QTest::keyClick(w->box, Qt::Key_Escape);
        QCOMPARE(w->escapes, 1);
        QCOMPARE(m_speaker->stops, 1);
    }

    void escapeStopsTheReadingBeforeAnEscapeShortcutOfTheWindow()
    {
        TextWindow *w = showWindow(u"κείμενο"_s);
        int closes = 0;
        auto *shortcut = new QShortcut(QKeySequence(Qt::Key_Escape), w);
        connect(shortcut, &QShortcut::activated, w, [&closes] { ++closes; });
        QTest::keyClick(w->box, Qt::Key_F9);
        QTest::keyClick(w->box, Qt::Key_Escape);
        QCOMPARE(m_speaker->stops, 1);
        QCOMPARE(closes, 0);
        QTest::keyClick(w->box, Qt::Key_Escape);
        QCOMPARE(closes, 1);
    }

    void insideAShellTheActiveChildIsRead()
    {
        QMainWindow shell;
        auto *area = new QMdiArea;
        auto *key = new QToolButton;
        key->setFocusPolicy(Qt::NoFocus);
        auto *client = new QWidget;
        auto *layout = new QVBoxLayout(client);
        layout->addWidget(key);
        layout->addWidget(area);
        shell.setCentralWidget(client);
        area->addSubWindow(new TextWindow(u"πρώτο"_s))->show();
        QMdiSubWindow *second = area->addSubWindow(new TextWindow(u"δεύτερο"_s));
        second->show();
        shell.show();
        shell.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&shell));
        area->setActiveSubWindow(second);
        shell.setFocus();
        reader().toggle();
        QCOMPARE(m_speaker->said, QStringList {u"δεύτερο"_s});
    }

    void aWindowThatHasJustLostTheActivationIsStillRead()
    {
        // A tip closes as the pupil reaches for the toolbar's key; the key reads the tip.
        auto *tip = new TextWindow(u"Ηφαιστειακό γυαλί"_s);
        tip->show();
        QEvent deactivate(QEvent::WindowDeactivate);
        QApplication::sendEvent(tip, &deactivate);
        delete tip;
        // Even with a text in the window that took the activation.
        TextWindow *w = showWindow(u"το κείμενο κάτω από το σχόλιο"_s);
        QCOMPARE(reader().activeText(), u"Ηφαιστειακό γυαλί"_s);
        // A key pressed in a window reads that window.
        QCOMPARE(reader().activeText(w->box), u"το κείμενο κάτω από το σχόλιο"_s);
    }

    void aWindowThatLostTheActivationLongAgoIsNotRead()
    {
        auto *tip = new TextWindow(u"Ηφαιστειακό γυαλί"_s);
        tip->show();
        QEvent deactivate(QEvent::WindowDeactivate);
        QApplication::sendEvent(tip, &deactivate);
        delete tip;
        QTest::qWait(1600);
        showWindow(u"κείμενο"_s);
        QCOMPARE(reader().activeText(), u"κείμενο"_s);
    }

    void withoutAnEngineThePressSaysSoOnce()
    {
        m_session.reset();
        m_session = std::make_unique<testing::SpeakingSession>(false);
        testing::RecordingSpeaker *mute = m_session->speaker;
        showWindow(u"κείμενο"_s);
        reader().toggle();
        reader().toggle();
        QCOMPARE(mute->said, QStringList());
        QCOMPARE(boxes().size(), 1);
        QCOMPARE(boxes().first().text, speech::ReadAloud::noEngineMessage());
        QCOMPARE(boxes().first().style, int(platform::vbInformation));
        QCOMPARE(boxes().first().title, u"Τρεμίδια"_s);
        QVERIFY(!reader().speaking());
    }

    void aWindowWithNothingToReadLeavesTheSpeakerQuiet()
    {
        showWindow(u"   "_s);
        reader().toggle();
        QCOMPARE(m_speaker->said, QStringList());
        QVERIFY(boxes().isEmpty());
    }
};

QTEST_MAIN(tst_ReadAloud)
#include "tst_readaloud.moc"
