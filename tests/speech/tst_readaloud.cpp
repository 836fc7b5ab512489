#include "recordingspeaker.h"
#include "textwindow.h"
#include "wordmarks.h"

#include <rate.h>
#include <ratemenu.h>
#include <readable.h>
#include <readaloud.h>
#include <wordhighlight.h>
#include <words.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QSettings>
#include <QShortcut>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <settings.h>

#include <cmath>

using namespace Qt::StringLiterals;
using testing::marksIn;

using testing::TextWindow;

namespace {

const QString ThreeSentences = u"Πρώτη πρόταση εδώ. Δεύτερη πρόταση μετά. Τρίτη και τελευταία."_s;

double luminance(const QColor &colour)
{
    const auto linear
        = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

} // namespace

class tst_ReadAloud : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_config; // the user's settings, the test's own
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
        m_config = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_config->path()));
        m_session = std::make_unique<testing::SpeakingSession>();
        m_speaker = m_session->speaker;
    }

    void cleanup()
    {
        delete m_window;
        m_session.reset();
        m_config.reset();
    }

    void ctrlF9ReadsFromTheCursor()
    {
        TextWindow *w = showWindow(ThreeSentences);
        QTextCursor cursor = w->box->textCursor();
        cursor.setPosition(19);
        w->box->setTextCursor(cursor);
        QTest::keyClick(w->box, Qt::Key_F9, Qt::ControlModifier);
        QCOMPARE(m_speaker->said, QStringList {ThreeSentences.mid(19)});
        QCOMPARE(reader().markedWord(), 19);
        // The pupil's cursor stays where it was.
        QCOMPARE(w->box->textCursor().position(), 19);
    }

    void ctrlF9ReadsOnlyTheSelection()
    {
        TextWindow *w = showWindow(ThreeSentences);
        QTextCursor cursor = w->box->textCursor();
        cursor.setPosition(19);
        cursor.setPosition(41, QTextCursor::KeepAnchor);
        w->box->setTextCursor(cursor);
        QTest::keyClick(w->box, Qt::Key_F9, Qt::ControlModifier);
        QCOMPARE(m_speaker->said, QStringList {u"Δεύτερη πρόταση μετά."_s});
        QVERIFY(w->box->textCursor().hasSelection());
    }

    void theMarkFollowsTheWordsTheVoiceReaches()
    {
        TextWindow *w = showWindow(ThreeSentences);
        QTest::keyClick(w->box, Qt::Key_F9);
        const QList<speech::Word> words = speech::findWords(ThreeSentences);
        m_speaker->reach(4);
        QCOMPARE(reader().markedWord(), words.at(4).start);
        const QList<QTextEdit::ExtraSelection> marks = marksIn(w->box);
        QCOMPARE(marks.size(), 1);
        QCOMPARE(marks.first().cursor.selectedText(), u"πρόταση"_s);
        QCOMPARE(marks.first().format.foreground().color(), speech::readingWordForeground());
        QCOMPARE(marks.first().format.background().color(), speech::readingWordBackground());
        m_speaker->reach(5);
        QCOMPARE(marksIn(w->box).size(), 1);
        QCOMPARE(marksIn(w->box).first().cursor.selectedText(), u"μετά"_s);
        // The end of the text takes the mark away.
        m_speaker->finish();
        QCOMPARE(reader().markedWord(), -1);
        QVERIFY(marksIn(w->box).isEmpty());
    }

    void theBoxsOwnExtraSelectionsStay()
    {
        TextWindow *w = showWindow(ThreeSentences);
        QTextEdit::ExtraSelection own;
        own.cursor = QTextCursor(w->box->document());
        own.cursor.setPosition(0);
        own.cursor.setPosition(5, QTextCursor::KeepAnchor);
        own.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        w->box->setExtraSelections({own});
        QTest::keyClick(w->box, Qt::Key_F9);
        m_speaker->reach(2);
        QCOMPARE(w->box->extraSelections().size(), 2);
        QTest::keyClick(w->box, Qt::Key_Escape);
        QCOMPARE(w->box->extraSelections().size(), 1);
        QCOMPARE(w->box->extraSelections().first().format.underlineStyle(), QTextCharFormat::WaveUnderline);
    }

    void theMarksColoursReadUnderAnyTheme()
    {
        const double fore = luminance(speech::readingWordForeground());
        const double back = luminance(speech::readingWordBackground());
        const double contrast = (qMax(fore, back) + 0.05) / (qMin(fore, back) + 0.05);
        QVERIFY2(contrast >= 4.5, qPrintable(QString::number(contrast)));
    }

    void altRightAndAltLeftGoFromSentenceToSentence()
    {
        TextWindow *w = showWindow(ThreeSentences);
        QTest::keyClick(w->box, Qt::Key_F9);
        m_speaker->reach(1);
        QTest::keyClick(w->box, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(m_speaker->said.last(), ThreeSentences.mid(19));
        QCOMPARE(reader().markedWord(), 19);
        QTest::keyClick(w->box, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(m_speaker->said.last(), u"Τρίτη και τελευταία."_s);
        QCOMPARE(reader().markedWord(), 41);
        // Past the last sentence there is nowhere to go.
        QTest::keyClick(w->box, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(m_speaker->said.size(), 3);
        m_speaker->reach(1);
        QTest::keyClick(w->box, Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(m_speaker->said.last(), ThreeSentences.mid(19));
        QTest::keyClick(w->box, Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(m_speaker->said.last(), ThreeSentences);
        QCOMPARE(reader().markedWord(), 0);
        // The reading went on throughout: no stop between.
        QCOMPARE(m_speaker->stops, 0);
        QVERIFY(reader().speaking());
        // The pupil's cursor did not move.
        QCOMPARE(w->box->textCursor().position(), 0);
    }

    void theReadingKeysAreTheWindowsWhenNothingIsRead()
    {
        TextWindow *w = showWindow(ThreeSentences);
        QTest::keyClick(w->box, Qt::Key_Right, Qt::AltModifier);
        QTest::keyClick(w->box, Qt::Key_Up, Qt::AltModifier);
        QVERIFY(m_speaker->said.isEmpty());
        QCOMPARE(reader().rate(), speech::NormalRate);
    }

    void altUpAndAltDownChangeTheSpeedWithinItsBounds()
    {
        TextWindow *w = showWindow(ThreeSentences);
        QCOMPARE(reader().rate(), 100);
        QCOMPARE(m_speaker->rates, QList<int> {100});
        QTest::keyClick(w->box, Qt::Key_F9);
        m_speaker->reach(3);
        QTest::keyClick(w->box, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(reader().rate(), 110);
        QCOMPARE(m_speaker->rates.last(), 110);
        // The voice goes on from the word it was saying, at the new speed.
        QCOMPARE(m_speaker->said.last(), ThreeSentences.mid(speech::findWords(ThreeSentences).at(3).start));
        for (int i = 0; i < 20; ++i)
            QTest::keyClick(w->box, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(reader().rate(), speech::FastestRate);
        for (int i = 0; i < 30; ++i)
            QTest::keyClick(w->box, Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(reader().rate(), speech::SlowestRate);
        QCOMPARE(m_speaker->rates.last(), speech::SlowestRate);
        QVERIFY(reader().speaking());
    }

    void theSpeedMenuSetsTheSpeedAndShowsIt()
    {
        std::unique_ptr<QMenu> menu(speech::makeRateMenu(reader(), nullptr));
        QCOMPARE(menu->title(), u"Ταχύτητα ανάγνωσης"_s);
        const QList<QAction *> items = menu->actions();
        QCOMPARE(items.size(), 21);
        QCOMPARE(items.first()->text(), u"50%"_s);
        QCOMPARE(items.last()->text(), u"250%"_s);
        const auto checked = [&] {
            QStringList names;
            for (QAction *item : items) {
                if (item->isChecked())
                    names << item->text();
            }
            return names;
        };
        QCOMPARE(checked(), QStringList {u"100% (κανονική)"_s});
        items.at(10)->trigger();
        QCOMPARE(reader().rate(), 150);
        QCOMPARE(m_speaker->rates.last(), 150);
        QCOMPARE(checked(), QStringList {u"150%"_s});
        // A change by the keys shows in the menu.
        TextWindow *w = showWindow(ThreeSentences);
        QTest::keyClick(w->box, Qt::Key_F9);
        QTest::keyClick(w->box, Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(checked(), QStringList {u"140%"_s});
    }

    void theSpeedIsKeptForTheNextSession()
    {
        reader().setRate(170);
        reader().setRate(173); // on the scale's steps
        QCOMPARE(reader().rate(), 170);
        m_session.reset();
        m_session = std::make_unique<testing::SpeakingSession>();
        m_speaker = m_session->speaker;
        QCOMPARE(reader().rate(), 170);
        QCOMPARE(m_speaker->rates, QList<int> {170});
        QSettings settings(platform::userSettingsPath(), QSettings::IniFormat);
        QCOMPARE(settings.value(u"Reading/Rate"_s).toInt(), 170);
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
