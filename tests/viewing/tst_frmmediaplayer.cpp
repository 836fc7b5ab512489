// The media player on the sample's short sound and video: it starts at once, stands at
// the beginning after the end without closing, and stops when it closes. Without a sound
// device it still runs through the piece.

#include <frmmediaplayer.h>

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMediaPlayer>
#include <QPointer>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QToolButton>
#include <QVideoWidget>

using namespace Qt::StringLiterals;

namespace {

const QString sound = QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/Sounds/term_minoas.wav");
const QString video = QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/Videos/term_caldera.webm");

void chooseMedia(qint32 kind)
{
    frmMediaPlayer::setMediaSource([kind] {
        frmMediaPlayer::IndexMedia media;
        media.MediaKind = kind;
        media.SoundPath = sound;
        media.VideoPath = video;
        return media;
    });
}

// Long enough for the sample's pieces of a few seconds, on a busy machine.
constexpr int PieceTimeout = 60000;

} // namespace

class tst_frmMediaPlayer : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { frmMediaPlayer::setMediaSource({}); }

    void aSoundPlaysAtOnceAndStandsAtTheStartAfterTheEnd()
    {
        chooseMedia(0);
        auto *form = new frmMediaPlayer;
        QPointer<frmMediaPlayer> guard(form);
        QSignalSpy ended(form->player(), &QMediaPlayer::mediaStatusChanged);
        form->Load();
        form->show();
        QCOMPARE(form->fileName(), sound);
        QVERIFY(!form->picVideo->isVisible());
        // The window fits its player.
        QCOMPARE(form->size(), form->WMM->size());
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->playbackState(), QMediaPlayer::PlayingState, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(
            ended.contains(QVariantList {QVariant::fromValue(QMediaPlayer::EndOfMedia)}), PieceTimeout);
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->position(), qint64(0), 5000);
        QVERIFY(form->isVisible());
        QVERIFY(guard);
        QCOMPARE(form->player()->playbackState(), QMediaPlayer::StoppedState);
        QCOMPARE(form->sldPosition->value(), 0);
        form->close();
    }

    void aVideoPlaysInItsPictureAreaToTheEndAndRewinds()
    {
        chooseMedia(1);
        auto *form = new frmMediaPlayer;
        QSignalSpy ended(form->player(), &QMediaPlayer::mediaStatusChanged);
        form->Load();
        form->show();
        QCOMPARE(form->fileName(), video);
        QVERIFY(form->picVideo->isVisible());
        QVERIFY(form->height() > form->cmdPlay->height() + 100);
        QTRY_VERIFY_WITH_TIMEOUT(
            ended.contains(QVariantList {QVariant::fromValue(QMediaPlayer::EndOfMedia)}), PieceTimeout);
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->position(), qint64(0), 5000);
        QVERIFY(form->isVisible());
        QCOMPARE(form->size(), form->WMM->size());
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
        QMediaPlayer *player = form->player();
        QTRY_COMPARE_WITH_TIMEOUT(player->playbackState(), QMediaPlayer::PlayingState, 10000);
        QSignalSpy stopped(player, &QMediaPlayer::playbackStateChanged);
        form->Unload();
        QVERIFY(stopped.contains(QVariantList {QVariant::fromValue(QMediaPlayer::StoppedState)}));
    }

    void thePlayKeyPausesAndPlaysAgain()
    {
        chooseMedia(0);
        auto *form = new frmMediaPlayer;
        form->Load();
        form->show();
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->playbackState(), QMediaPlayer::PlayingState, 10000);
        form->cmdPlay->click();
        QCOMPARE(form->player()->playbackState(), QMediaPlayer::PausedState);
        form->cmdPlay->click();
        QTRY_COMPARE_WITH_TIMEOUT(form->player()->playbackState(), QMediaPlayer::PlayingState, 10000);
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
};

QTEST_MAIN(tst_frmMediaPlayer)
#include "tst_frmmediaplayer.moc"
