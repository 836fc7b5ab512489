// The media player on the sample's short sound and video and on small files of each
// format the content of the era holds: it starts at once, stands at the beginning after
// the end without closing, stops when it closes, and a file that cannot be played gives
// the error box naming it and leaves no window behind. Without a sound device it still
// runs through the piece.

#include "../support/testsession.h"

#include <engines.h>
#include <frmmediaplayer.h>
#include <player.h>
#include <videopicture.h>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString sound = QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/Sounds/term_minoas.wav");
const QString video = QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/Videos/term_caldera.webm");

QString mediaFile(const QString &name)
{
    return QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/data/media/") + name;
}

bool reached(const QSignalSpy &spy, media::Player::MediaStatus status)
{
    return spy.contains(QVariantList {QVariant::fromValue(status)});
}

// Long enough for the sample's pieces of a few seconds, on a busy machine.
constexpr int PieceTimeout = 60000;

} // namespace

class tst_frmMediaPlayer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("TREMIDIA_AUDIO_SINK", "fakesink sync=true"); }
    void init() { m_s = std::make_unique<testing::TestSession>(); }
    void cleanup()
    {
        m_chosen = {};
        m_s.reset();
    }

    void aSoundPlaysAtOnceAndStandsAtTheStartAfterTheEnd()
    {
        chooseMedia(0);
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        QPointer<frmMediaPlayer> guard(form);
        QSignalSpy ended(form->player(), &media::Player::mediaStatusChanged);
        form->Load();
        form->show();
        QCOMPARE(form->fileName(), sound);
        QVERIFY(!form->picVideo->isVisible());
        // The window fits its player.
        QCOMPARE(form->size(), form->WMM->size());
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->playbackState(), media::Player::PlayingState, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(form->player()->position() > 0, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(reached(ended, media::Player::EndOfMedia), PieceTimeout);
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->position(), qint64(0), 5000);
        QVERIFY(form->isVisible());
        QVERIFY(guard);
        QCOMPARE(form->player()->playbackState(), media::Player::StoppedState);
        QCOMPARE(form->sldPosition->value(), 0);
        QVERIFY(form->sldPosition->maximum() > 1000);
        QVERIFY(boxes().isEmpty());
        form->close();
    }

    void aVideoPlaysInItsPictureAreaToTheEndAndRewinds()
    {
        chooseMedia(1);
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        QSignalSpy ended(form->player(), &media::Player::mediaStatusChanged);
        form->Load();
        form->show();
        QCOMPARE(form->fileName(), video);
        QVERIFY(form->picVideo->isVisible());
        QVERIFY(form->height() > form->cmdPlay->height() + 100);
        QTRY_VERIFY_WITH_TIMEOUT(reached(ended, media::Player::EndOfMedia), PieceTimeout);
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->position(), qint64(0), 5000);
        QVERIFY(form->isVisible());
        // The pictures were drawn in the window, at the video's own size.
        QVERIFY(form->picVideo->framesShown() > 5);
        QCOMPARE(form->picVideo->size(), form->player()->videoSize());
        QCOMPARE(form->size(), form->WMM->size());
        form->close();
    }

    void eachFormatOfTheEraPlaysToItsEnd_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("isVideo");
        QTest::newRow("WAV") << u"tone.wav"_s << false;
        QTest::newRow("MIDI") << u"tune.mid"_s << false;
        QTest::newRow("MP3") << u"tone.mp3"_s << false;
        QTest::newRow("AVI") << u"clip.avi"_s << true;
        QTest::newRow("MPEG-1") << u"clip.mpg"_s << true;
        QTest::newRow("WMV") << u"clip.wmv"_s << true;
        QTest::newRow("ASF") << u"clip.asf"_s << true;
    }

    void eachFormatOfTheEraPlaysToItsEnd()
    {
        QFETCH(QString, file);
        QFETCH(bool, isVideo);
        chooseMedia(isVideo ? 1 : 0, mediaFile(file), mediaFile(file));
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        QSignalSpy status(form->player(), &media::Player::mediaStatusChanged);
        form->Load();
        form->show();
        QTRY_VERIFY_WITH_TIMEOUT(reached(status, media::Player::EndOfMedia), PieceTimeout);
        QVERIFY2(boxes().isEmpty(), qPrintable(boxes().value(0).text));
        QVERIFY(form->player()->duration() > 500);
        QCOMPARE(form->player()->hasVideo(), isVideo);
        if (isVideo)
            QVERIFY(form->picVideo->framesShown() > 0);
        form->close();
    }

    void oldWavsShowTheirWholeLengthAndPlayItAll_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("length");
        QTest::newRow("8-bit, an odd number of samples") << u"tone-u8.wav"_s << 500;
        QTest::newRow("Microsoft ADPCM") << u"tone-msadpcm.wav"_s << 1000;
    }

    void oldWavsShowTheirWholeLengthAndPlayItAll()
    {
        QFETCH(QString, file);
        QFETCH(int, length);
        chooseMedia(0, mediaFile(file));
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        QSignalSpy status(form->player(), &media::Player::mediaStatusChanged);
        QElapsedTimer clock;
        form->Load();
        form->show();
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->playbackState(), media::Player::PlayingState, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(form->player()->duration() > 0, 10000);
        QVERIFY2(qAbs(form->sldPosition->maximum() - length) <= 50,
            qPrintable(QString::number(form->sldPosition->maximum())));
        clock.start();
        QTRY_VERIFY_WITH_TIMEOUT(reached(status, media::Player::EndOfMedia), PieceTimeout);
        // Played in time to its end, not cut off where GStreamer's parser thought it ended.
        QVERIFY2(clock.elapsed() >= length - 150, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(boxes().isEmpty());
        form->close();
    }

    void aPlaceChosenInAnAdpcmWavIsWhereThePlayingGoesOn()
    {
        chooseMedia(0, mediaFile(u"tone-msadpcm.wav"_s));
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        QSignalSpy status(form->player(), &media::Player::mediaStatusChanged);
        form->Load();
        form->show();
        QTRY_VERIFY_WITH_TIMEOUT(reached(status, media::Player::LoadedMedia), 10000);
        form->cmdPlay->click(); // pause
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->playbackState(), media::Player::PausedState, 10000);
        form->player()->setPosition(600);
        QElapsedTimer clock;
        clock.start();
        form->cmdPlay->click();
        QTRY_VERIFY_WITH_TIMEOUT(reached(status, media::Player::EndOfMedia), PieceTimeout);
        // The rest of the piece, 400 ms, is played: a place taken at twice the one asked
        // would have ended it at once.
        QVERIFY2(clock.elapsed() >= 300, qPrintable(QString::number(clock.elapsed())));
        form->close();
    }

    void aFileThatCannotBePlayedGivesTheErrorBoxNamingItAndTheWindowGoes_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<qint32>("kind");
        QTest::newRow("a sound cut short") << u"broken.wav"_s << 0;
        QTest::newRow("an MP3 of nothing") << u"broken.mp3"_s << 0;
        QTest::newRow("a video that is text") << u"broken.avi"_s << 1;
        QTest::newRow("a picture given as video") << u"picture.bmp"_s << 1;
    }

    void aFileThatCannotBePlayedGivesTheErrorBoxNamingItAndTheWindowGoes()
    {
        QFETCH(QString, file);
        QFETCH(qint32, kind);
        chooseMedia(kind, mediaFile(file), mediaFile(file));
        QMdiArea area;
        area.resize(800, 600);
        area.show();
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        form->Load();
        QPointer<QMdiSubWindow> sub = area.addSubWindow(form);
        sub->show();
        QTRY_COMPARE_WITH_TIMEOUT(boxes().size(), 1, 20000);
        QVERIFY(boxes().at(0).text.startsWith(u"Λάθος # 5\r\n"_s));
        QVERIFY2(boxes().at(0).text.contains(file), qPrintable(boxes().at(0).text));
        QCOMPARE(boxes().at(0).title, u"Τρεμίδια"_s);
        QCOMPARE(boxes().at(0).style, 16);
        QTRY_VERIFY_WITH_TIMEOUT(!sub, 5000);
    }

    void theBoxGivesTheReasonInGreek_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("reason");
        QTest::newRow("a codec nothing here decodes")
            << mediaFile(u"voxware.wav"_s) << u"δεν υπάρχει αποκωδικοποιητής για αυτό το είδος αρχείου"_s;
        QTest::newRow("a damaged file") << mediaFile(u"broken.wav"_s) << u"το αρχείο είναι κατεστραμμένο"_s;
        QTest::newRow("a missing file") << mediaFile(u"nowhere.wav"_s) << u"το αρχείο δεν βρέθηκε"_s;
    }

    void theBoxGivesTheReasonInGreek()
    {
        QFETCH(QString, file);
        QFETCH(QString, reason);
        chooseMedia(0, file);
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        QPointer<frmMediaPlayer> guard(form);
        form->Load();
        form->show();
        QTRY_COMPARE_WITH_TIMEOUT(boxes().size(), 1, 20000);
        const QString text = boxes().at(0).text;
        const QString name = QFileInfo(file).fileName();
        QVERIFY2(text.endsWith(u"«"_s + name + u"»: "_s + reason), qPrintable(text));
        // GStreamer's English stays in the log: no Latin letter but the file's name's.
        QString rest = text;
        rest.remove(name);
        QVERIFY2(!rest.contains(QRegularExpression(u"[A-Za-z]"_s)), qPrintable(text));
        QTRY_VERIFY_WITH_TIMEOUT(!guard, 5000);
    }

    void aFileThatNeverOpensIsGivenUpWithTheBox()
    {
        // A pipe nobody writes to: GStreamer waits inside its opening for ever. The player's
        // own limit, whatever the machine's builds give it.
        const QByteArray given = qgetenv("TREMIDIA_MEDIA_LOAD_LIMIT_MS");
        qputenv("TREMIDIA_MEDIA_LOAD_LIMIT_MS", QByteArray::number(media::Player::LoadLimitMs));
        const auto restore = qScopeGuard([given] { qputenv("TREMIDIA_MEDIA_LOAD_LIMIT_MS", given); });
        QTemporaryDir dir;
        const QString pipe = dir.filePath(u"stuck.wav"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        chooseMedia(0, pipe);
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        QPointer<frmMediaPlayer> guard(form);
        QElapsedTimer clock;
        clock.start();
        form->Load();
        form->show();
        QTRY_COMPARE_WITH_TIMEOUT(boxes().size(), 1, media::Player::LoadLimitMs + 10000);
        const qint64 waited = clock.elapsed();
        // Qt's coarse timers may fire up to 5 % early.
        QVERIFY2(waited >= media::Player::LoadLimitMs * 9 / 10, qPrintable(QString::number(waited)));
        QVERIFY2(boxes().at(0).text.endsWith(u"«stuck.wav»: το αρχείο είναι κατεστραμμένο"_s),
            qPrintable(boxes().at(0).text));
        QTRY_VERIFY_WITH_TIMEOUT(!guard, 5000);
        // Writers that come and go let the engine out of its waits (GStreamer opens the
        // file more than once), to end by itself.
        QElapsedTimer unstuck;
        unstuck.start();
        bool ended = false;
        while (!ended && unstuck.elapsed() < 10000) {
            const int writer = ::open(QFile::encodeName(pipe).constData(), O_WRONLY | O_NONBLOCK);
            if (writer >= 0)
                ::close(writer);
            ended = (*m_s)->mediaEngines().waitForDropped(std::chrono::milliseconds(200));
        }
        QVERIFY(ended);
    }

    void withTheSystemsSoundOutputASoundRunsToItsEndEvenWithoutASoundCard()
    {
        // The system's choice of output, which on a computer without a sound card (as
        // where the tests run) plays into nothing, in time.
        const QByteArray chosen = qgetenv("TREMIDIA_AUDIO_SINK");
        qunsetenv("TREMIDIA_AUDIO_SINK");
        const auto restore = qScopeGuard([chosen] { qputenv("TREMIDIA_AUDIO_SINK", chosen); });
        chooseMedia(0, mediaFile(u"tone.wav"_s));
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        QSignalSpy status(form->player(), &media::Player::mediaStatusChanged);
        form->Load();
        form->show();
        QTRY_VERIFY_WITH_TIMEOUT(reached(status, media::Player::EndOfMedia), PieceTimeout);
        QVERIFY(boxes().isEmpty());
        form->close();
    }

    void closingWhilePlayingStopsIt()
    {
        chooseMedia(0);
        QMdiArea area;
        area.resize(800, 600);
        area.show();
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        form->Load();
        QMdiSubWindow *sub = area.addSubWindow(form);
        sub->show();
        media::Player *player = form->player();
        QTRY_COMPARE_WITH_TIMEOUT(player->playbackState(), media::Player::PlayingState, 10000);
        QSignalSpy stopped(player, &media::Player::playbackStateChanged);
        form->Unload();
        QVERIFY(stopped.contains(QVariantList {QVariant::fromValue(media::Player::StoppedState)}));
    }

    void thePlayKeyPausesAndPlaysAgain()
    {
        chooseMedia(0);
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        form->Load();
        form->show();
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->playbackState(), media::Player::PlayingState, 10000);
        form->cmdPlay->click();
        QCOMPARE(form->player()->playbackState(), media::Player::PausedState);
        // Paused, the piece stays where it is.
        QTest::qWait(300);
        const qint64 at = form->player()->position();
        QTest::qWait(300);
        QCOMPARE(form->player()->position(), at);
        form->cmdPlay->click();
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->playbackState(), media::Player::PlayingState, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(form->player()->position() > at, 10000);
        form->close();
    }

    void anotherKindSetsNoFile()
    {
        chooseMedia(2);
        auto *form = new frmMediaPlayer(*m_s, chosenMedia());
        form->Load();
        QVERIFY(form->fileName().isEmpty());
        QVERIFY(form->player()->source().isEmpty());
        form->setPayFile(u"kept.wav"_s);
        QCOMPARE(form->PayFile(), u"kept.wav"_s);
        delete form;
    }

private:
    std::unique_ptr<testing::TestSession> m_s;
    // What the index would have chosen, as the players of a test read it.
    frmMediaPlayer::MediaSource m_chosen;

    QList<testing::ShownBox> &boxes() { return m_s->host->boxes; }
    frmMediaPlayer::MediaSource chosenMedia() const { return m_chosen; }
    void chooseMedia(qint32 kind, const QString &soundPath = sound, const QString &videoPath = video)
    {
        m_chosen = [kind, soundPath, videoPath] {
            frmMediaPlayer::IndexMedia media;
            media.MediaKind = kind;
            media.SoundPath = soundPath;
            media.VideoPath = videoPath;
            return media;
        };
    }
};

QTEST_MAIN(tst_frmMediaPlayer)
#include "tst_frmmediaplayer.moc"
