// The media player on the sample's short sound and video and on small files of each
// format the content of the era holds: it starts at once, stands at the beginning after
// the end without closing, stops when it closes, and a file that cannot be played gives
// the error box naming it and leaves no window behind. Without a sound device it still
// runs through the piece.

#include "../support/msgboxrecorder.h"

#include <frmmediaplayer.h>
#include <player.h>
#include <videopicture.h>

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

const QString sound = QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/Sounds/term_minoas.wav");
const QString video = QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/Videos/term_caldera.webm");

QString mediaFile(const QString &name)
{
    return QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/data/media/") + name;
}

void chooseMedia(qint32 kind, const QString &soundPath = sound, const QString &videoPath = video)
{
    frmMediaPlayer::setMediaSource([kind, soundPath, videoPath] {
        frmMediaPlayer::IndexMedia media;
        media.MediaKind = kind;
        media.SoundPath = soundPath;
        media.VideoPath = videoPath;
        return media;
    });
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
    void init() { m_boxes.install(); }
    void cleanup()
    {
        frmMediaPlayer::setMediaSource({});
        platform::setMsgBoxHook({});
    }

    void aSoundPlaysAtOnceAndStandsAtTheStartAfterTheEnd()
    {
        chooseMedia(0);
        auto *form = new frmMediaPlayer;
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
        QVERIFY(m_boxes.isEmpty());
        form->close();
    }

    void aVideoPlaysInItsPictureAreaToTheEndAndRewinds()
    {
        chooseMedia(1);
        auto *form = new frmMediaPlayer;
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
        auto *form = new frmMediaPlayer;
        QSignalSpy status(form->player(), &media::Player::mediaStatusChanged);
        form->Load();
        form->show();
        QTRY_VERIFY_WITH_TIMEOUT(reached(status, media::Player::EndOfMedia), PieceTimeout);
        QVERIFY2(m_boxes.isEmpty(), qPrintable(m_boxes.value(0).text));
        QVERIFY(form->player()->duration() > 500);
        QCOMPARE(form->player()->hasVideo(), isVideo);
        if (isVideo)
            QVERIFY(form->picVideo->framesShown() > 0);
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
        auto *form = new frmMediaPlayer;
        form->Load();
        QPointer<QMdiSubWindow> sub = area.addSubWindow(form);
        sub->show();
        QTRY_COMPARE_WITH_TIMEOUT(m_boxes.size(), 1, 20000);
        QVERIFY(m_boxes.at(0).text.startsWith(u"Λάθος # 5\r\n"_s));
        QVERIFY2(m_boxes.at(0).text.contains(file), qPrintable(m_boxes.at(0).text));
        QCOMPARE(m_boxes.at(0).title, u"Τρεμίδια"_s);
        QCOMPARE(m_boxes.at(0).style, 16);
        QTRY_VERIFY_WITH_TIMEOUT(!sub, 5000);
    }

    void withTheSystemsSoundOutputASoundRunsToItsEndEvenWithoutASoundCard()
    {
        // The system's choice of output, which on a computer without a sound card (as
        // where the tests run) plays into nothing, in time.
        const QByteArray chosen = qgetenv("TREMIDIA_AUDIO_SINK");
        qunsetenv("TREMIDIA_AUDIO_SINK");
        const auto restore = qScopeGuard([chosen] { qputenv("TREMIDIA_AUDIO_SINK", chosen); });
        chooseMedia(0, mediaFile(u"tone.wav"_s));
        auto *form = new frmMediaPlayer;
        QSignalSpy status(form->player(), &media::Player::mediaStatusChanged);
        form->Load();
        form->show();
        QTRY_VERIFY_WITH_TIMEOUT(reached(status, media::Player::EndOfMedia), PieceTimeout);
        QVERIFY(m_boxes.isEmpty());
        form->close();
    }

    void closingWhilePlayingStopsIt()
    {
        chooseMedia(0);
        QMdiArea area;
        area.resize(800, 600);
        area.show();
        auto *form = new frmMediaPlayer;
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
        auto *form = new frmMediaPlayer;
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
        auto *form = new frmMediaPlayer;
        form->Load();
        QVERIFY(form->fileName().isEmpty());
        QVERIFY(form->player()->source().isEmpty());
        form->setPayFile(u"kept.wav"_s);
        QCOMPARE(form->PayFile(), u"kept.wav"_s);
        delete form;
    }

private:
    testing::MsgBoxRecorder m_boxes;
};

QTEST_MAIN(tst_frmMediaPlayer)
#include "tst_frmmediaplayer.moc"
