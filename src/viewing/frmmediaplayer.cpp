#include "frmmediaplayer.h"

#include <designedcolours.h>
#include <errorpolicy.h>

#include <QAudioOutput>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMdiSubWindow>
#include <QMediaPlayer>
#include <QSlider>
#include <QStyle>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>
#include <QVideoSink>
#include <QVideoWidget>

namespace {

frmMediaPlayer::MediaSource &mediaSource()
{
    static frmMediaPlayer::MediaSource source;
    return source;
}

// The player's design sizes in logical pixels: the bar alone for a sound, the picture
// area above it for a video until the video tells its own size.
constexpr int BarWidth = 320;
constexpr int BarHeight = 34;
constexpr int VideoWidth = 320;
constexpr int VideoHeight = 240;

} // namespace

frmMediaPlayer::frmMediaPlayer(QWidget *parent)
    : QWidget(parent)
    , WMM(new QWidget(this))
    , picVideo(new QVideoWidget(WMM))
    , cmdPlay(new QToolButton(WMM))
    , sldPosition(new QSlider(Qt::Horizontal, WMM))
    , m_player(new QMediaPlayer(this))
{
    setObjectName(QStringLiteral("frmMediaPlayer"));
    platform::useDesignedColours(this);
    WMM->setObjectName(QStringLiteral("WMM"));
    picVideo->setObjectName(QStringLiteral("picVideo"));
    cmdPlay->setObjectName(QStringLiteral("cmdPlay"));
    sldPosition->setObjectName(QStringLiteral("sldPosition"));
    setAttribute(Qt::WA_DeleteOnClose);

    auto *bar = new QHBoxLayout;
    bar->setContentsMargins(4, 2, 4, 2);
    bar->addWidget(cmdPlay);
    bar->addWidget(sldPosition, 1);
    auto *layout = new QVBoxLayout(WMM);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(picVideo, 1);
    layout->addLayout(bar);
    picVideo->hide();
    cmdPlay->setAutoRaise(true);
    cmdPlay->setToolTip(QStringLiteral("Αναπαραγωγή / Παύση"));
    sldPosition->setToolTip(QStringLiteral("Θέση"));
    showPlayState();

    connect(cmdPlay, &QToolButton::clicked, this, [this] { platform::guarded([this] { cmdPlay_Click(); }); });
    connect(m_player, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus status) {
        if (status == QMediaPlayer::EndOfMedia)
            platform::guarded([this] { WMM_EndOfStream(); });
    });
    connect(m_player, &QMediaPlayer::playbackStateChanged, this, [this] { showPlayState(); });
    connect(m_player, &QMediaPlayer::durationChanged, this,
        [this](qint64 duration) { sldPosition->setRange(0, int(qMin<qint64>(duration, INT_MAX))); });
    connect(m_player, &QMediaPlayer::positionChanged, this, [this](qint64 position) {
        if (!m_userSeeking)
            sldPosition->setValue(int(qMin<qint64>(position, INT_MAX)));
    });
    connect(sldPosition, &QSlider::sliderPressed, this, [this] { m_userSeeking = true; });
    connect(sldPosition, &QSlider::sliderReleased, this, [this] {
        m_userSeeking = false;
        m_player->setPosition(sldPosition->value());
    });
    // A video shows at its own size once it is known. The sink tells of the size while it
    // still holds its lock, so the size is asked for once that signal is over.
    connect(
        picVideo->videoSink(), &QVideoSink::videoSizeChanged, this,
        [this] {
            platform::resumeNext([this] {
                const QSize size = picVideo->videoSink()->videoSize();
                if (m_video && size.isValid() && !size.isEmpty()) {
                    picVideo->setFixedSize(size);
                    FitToPlayer();
                }
            });
        },
        Qt::QueuedConnection);
}

frmMediaPlayer::~frmMediaPlayer() = default;

void frmMediaPlayer::setMediaSource(MediaSource source)
{
    mediaSource() = std::move(source);
}

void frmMediaPlayer::Load()
{
    if (m_loaded)
        return;
    m_loaded = true;

    // The sound always goes to an output: without a sound device the output plays into
    // nothing and the piece still runs to its end, where a player without one would stop
    // at once with a stream error.
    m_audio = new QAudioOutput(this);
    m_player->setAudioOutput(m_audio);
    m_player->setVideoOutput(picVideo);
    m_player->setPosition(0);

    const IndexMedia media = mediaSource() ? mediaSource()() : IndexMedia();
    if (media.MediaKind == 1)
        m_fileName = media.VideoPath;
    else if (media.MediaKind == 0)
        m_fileName = media.SoundPath;
    m_video = media.MediaKind == 1;
    picVideo->setVisible(m_video);
    if (m_video)
        picVideo->setFixedSize(VideoWidth, VideoHeight);
    FitToPlayer();
    if (media.MediaKind == 0 || media.MediaKind == 1) {
        m_player->setSource(QUrl::fromLocalFile(m_fileName));
        m_player->play();
    }
}

void frmMediaPlayer::FitToPlayer()
{
    const int height = BarHeight + (m_video ? picVideo->height() : 0);
    const int width = qMax(BarWidth, m_video ? picVideo->width() : 0);
    WMM->setGeometry(0, 0, width, height);
    setFixedSize(width, height);
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
        sub->resize(size().grownBy(sub->contentsMargins()));
}

void frmMediaPlayer::WMM_EndOfStream()
{
    // The piece stands ready to play again, without playing again by itself.
    m_player->setPosition(0);
    sldPosition->setValue(0);
}

void frmMediaPlayer::cmdPlay_Click()
{
    if (m_player->playbackState() == QMediaPlayer::PlayingState)
        m_player->pause();
    else
        m_player->play();
}

void frmMediaPlayer::showPlayState()
{
    const bool playing = m_player->playbackState() == QMediaPlayer::PlayingState;
    cmdPlay->setIcon(style()->standardIcon(playing ? QStyle::SP_MediaPause : QStyle::SP_MediaPlay));
}

void frmMediaPlayer::Unload()
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
        sub->close();
    else
        close();
}

void frmMediaPlayer::showEvent(QShowEvent *event)
{
    platform::guarded([this] { Load(); });
    QWidget::showEvent(event);
}

void frmMediaPlayer::closeEvent(QCloseEvent *event)
{
    m_player->stop();
    QWidget::closeEvent(event);
}
