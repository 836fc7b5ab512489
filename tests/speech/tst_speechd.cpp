// Reading aloud through a real speech-dispatcher and espeak-ng (a private one, see
// speechservice.h): the marks of the words, the word marked in the window, Escape, and
// the speed.

#include "../support/testsession.h"
#include "speechservice.h"
#include "textwindow.h"
#include "wordmarks.h"

#include <readaloud.h>
#include <speaker.h>
#include <wordhighlight.h>
#include <words.h>

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using testing::marksIn;

using testing::TextWindow;

namespace {

const QString Kleisthenes = u"Ο Κλεισθένης μοίρασε τους Αθηναίους σε δέκα φυλές. "
                            u"Κάθε φυλή είχε ανθρώπους από την πόλη, την παραλία και την ενδοχώρα."_s;

} // namespace

class tst_Speechd : public QObject
{
    Q_OBJECT

    testing::SpeechService m_service;
    QTemporaryDir m_config;
    std::unique_ptr<testing::TestSession> m_session;
    QPointer<TextWindow> m_window;

    speech::ReadAloud &reader() { return m_session->session->readAloud(); }

    // Says a text through the reader's own speaker at a speed and returns how long the
    // voice took, from the order to the end.
    qint64 timeToSay(const QString &text, int rate)
    {
        speech::Speaker *voice = reader().speaker();
        voice->setRate(rate);
        QSignalSpy ended(voice, &speech::Speaker::speakingChanged);
        QElapsedTimer took;
        took.start();
        voice->say(text);
        [&] { QTRY_VERIFY_WITH_TIMEOUT(!voice->speaking(), 30000); }();
        return took.elapsed();
    }

private slots:
    void initTestCase()
    {
        QString why;
        if (!m_service.start(&why))
            QFAIL(qPrintable(why));
        // The pupil's speed is written into the user's settings: a folder of the test's.
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_config.path()));
    }

    void cleanupTestCase() { m_service.stop(); }

    void init()
    {
        qputenv("SPEECHD_ADDRESS", m_service.address());
        m_session = std::make_unique<testing::TestSession>();
    }

    void cleanup()
    {
        delete m_window;
        m_session.reset();
    }

    void everyWordsMarkArrivesOnceInOrderAndIsMarkedInTheWindow()
    {
        m_window = testing::showTextWindow(Kleisthenes);
        speech::Speaker *voice = reader().speaker();
        const QList<speech::Word> words = speech::findWords(Kleisthenes);
        QList<int> reached;
        QList<int> marked;
        // Connected after the reader, so the reader has marked the word by then.
        connect(voice, &speech::Speaker::wordReached, this, [&](int index) {
            reached << index;
            marked << reader().markedWord();
        });
        QTest::keyClick(m_window->box, Qt::Key_F9);
        QVERIFY(reader().speaking());
        QTRY_VERIFY_WITH_TIMEOUT(!reader().speaking(), 30000);

        QList<int> expected;
        QList<int> places;
        for (int i = 0; i < words.size(); ++i) {
            expected << i;
            places << words.at(i).start;
        }
        QCOMPARE(reached, expected);
        QCOMPARE(marked, places);
        // The end takes the mark away.
        QCOMPARE(reader().markedWord(), -1);
        QVERIFY(marksIn(m_window->box).isEmpty());
    }

    void theMarkLiesOnTheWordBeingSaidAndEscapeTakesItAway()
    {
        m_window = testing::showTextWindow(Kleisthenes);
        speech::Speaker *voice = reader().speaker();
        const QList<speech::Word> words = speech::findWords(Kleisthenes);
        int last = -1;
        connect(voice, &speech::Speaker::wordReached, this, [&](int index) { last = index; });
        QTest::keyClick(m_window->box, Qt::Key_F9);
        QTRY_VERIFY_WITH_TIMEOUT(last >= 2, 20000);
        QCOMPARE(reader().markedWord(), words.at(last).start);
        const QList<QTextEdit::ExtraSelection> marks = marksIn(m_window->box);
        QCOMPARE(marks.size(), 1);
        QCOMPARE(marks.first().cursor.selectedText(),
            Kleisthenes.mid(words.at(last).start, words.at(last).length));

        QTest::keyClick(m_window->box, Qt::Key_Escape);
        QVERIFY(!reader().speaking());
        QCOMPARE(reader().markedWord(), -1);
        QVERIFY(marksIn(m_window->box).isEmpty());
        // What the service still had on its way changes nothing.
        QTest::qWait(300);
        QVERIFY(marksIn(m_window->box).isEmpty());
        QCOMPARE(m_window->escapes, 0);
    }

    void aFasterSpeedTakesLessTime()
    {
        const QString sentence = u"Ο Κλεισθένης μοίρασε τους Αθηναίους σε δέκα φυλές."_s;
        const qint64 slow = timeToSay(sentence, 50);
        const qint64 fast = timeToSay(sentence, 250);
        qInfo("the text took %lld ms at 50 %% and %lld ms at 250 %%", slow, fast);
        QVERIFY2(fast < slow, qPrintable(u"%1 ms fast, %2 ms slow"_s.arg(fast).arg(slow)));
    }

    void withoutTheServiceTheMessageShowsAndNothingWaits()
    {
        m_session.reset();
        QTemporaryDir nowhere;
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + QFile::encodeName(nowhere.filePath(u"none.sock"_s)));
        m_session = std::make_unique<testing::TestSession>();
        m_window = testing::showTextWindow(Kleisthenes);
        QElapsedTimer pressed;
        pressed.start();
        QTest::keyClick(m_window->box, Qt::Key_F9);
        QVERIFY(pressed.elapsed() < 1000);
        QTRY_COMPARE_WITH_TIMEOUT(m_session->host->boxes.size(), 1, 10000);
        QCOMPARE(m_session->host->boxes.first().text, speech::ReadAloud::noEngineMessage());
        QVERIFY(!reader().speaking());
        QVERIFY(marksIn(m_window->box).isEmpty());
    }
};

QTEST_MAIN(tst_Speechd)
#include "tst_speechd.moc"
