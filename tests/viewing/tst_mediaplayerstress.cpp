// A pupil who opens sounds and videos one after another, quickly: two hundred player
// windows opened and closed in a row, each at another moment of its piece (before it
// opened, while it loads, while it plays), never hold the program up.

#include "../support/testsession.h"

#include <engines.h>
#include <frmmediaplayer.h>
#include <player.h>

#include <QElapsedTimer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString mediaFile(const QString &name)
{
    return QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/data/media/") + name;
}

} // namespace

class tst_MediaPlayerStress : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("TREMIDIA_AUDIO_SINK", "fakesink sync=true"); }

    void twoHundredSoundAndVideoWindowsOpenAndCloseInARow()
    {
        const QStringList sounds {mediaFile(u"tone.wav"_s), mediaFile(u"tone.mp3"_s),
            mediaFile(u"tune.mid"_s),
            QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/Sounds/term_minoas.wav")};
        const QStringList videos {mediaFile(u"clip.avi"_s), mediaFile(u"clip.mpg"_s),
            mediaFile(u"clip.wmv"_s),
            QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/Videos/term_caldera.webm")};
        testing::TestSession s;
        QMdiArea area;
        area.resize(800, 600);
        area.show();
        int playing = 0;
        qint64 longestClose = 0;
        QElapsedTimer whole;
        whole.start();
        for (int i = 0; i < 200; ++i) {
            const bool isVideo = i % 2 == 1;
            const QString file
                = isVideo ? videos.at((i / 2) % videos.size()) : sounds.at((i / 2) % sounds.size());
            auto *form = new frmMediaPlayer(s, [isVideo, file] {
                frmMediaPlayer::IndexMedia media;
                media.MediaKind = isVideo ? 1 : 0;
                media.SoundPath = file;
                media.VideoPath = file;
                return media;
            });
            form->Load();
            QPointer<QMdiSubWindow> sub = area.addSubWindow(form);
            sub->show();
            media::Player *player = form->player();
            switch (i % 4) {
            case 0: // closed at once, while the pipeline starts
                break;
            case 1: // closed while it loads or just after
                QCoreApplication::processEvents();
                break;
            default: // closed while it plays
                QTRY_VERIFY_WITH_TIMEOUT(
                    player->position() > 0 || player->mediaStatus() == media::Player::EndOfMedia, 20000);
                ++playing;
                break;
            }
            QElapsedTimer closing;
            closing.start();
            form->Unload();
            QTRY_VERIFY_WITH_TIMEOUT(!sub, 5000);
            longestClose = qMax(longestClose, closing.elapsed());
        }
        QCOMPARE(playing, 100);
        QVERIFY2(s.host->boxes.isEmpty(), qPrintable(s.host->boxes.value(0).text));
        qInfo("200 windows in %lld ms, the longest close %lld ms", qint64(whole.elapsed()), longestClose);
        // Every pipeline the windows left behind stops on its own thread, none hangs.
        QVERIFY(s->mediaEngines().waitForDropped(std::chrono::milliseconds(120000)));
    }
};

QTEST_MAIN(tst_MediaPlayerStress)
#include "tst_mediaplayerstress.moc"
