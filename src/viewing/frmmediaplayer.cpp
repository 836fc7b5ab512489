#include "frmmediaplayer.h"

#include "videopicture.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <player.h>
#include <probe.h>
#include <runtimeerror.h>
#include <session.h>

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMdiSubWindow>
#include <QSlider>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// The player's design sizes in logical pixels: the bar alone for a sound, the picture
// area above it for a video until the video tells its own size.
constexpr int BarWidth = 320;
constexpr int BarHeight = 34;
constexpr int VideoWidth = 320;
constexpr int VideoHeight = 240;

} // namespace

frmMediaPlayer::frmMediaPlayer(Session &session, MediaSource source, QWidget *parent)
    : QWidget(parent)
    , WMM(new QWidget(this))
    , picVideo(new VideoPicture(WMM))
    , cmdPlay(new QToolButton(WMM))
    , sldPosition(new QSlider(Qt::Horizontal, WMM))
    , m_session(session)
    , m_source(std::move(source))
    , m_player(new media::Player(session.mediaEngines(), this))
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
    // Screen readers say the picture key and the slider by their tips.
    cmdPlay->setAccessibleName(cmdPlay->toolTip());
    sldPosition->setAccessibleName(sldPosition->toolTip());
    showPlayState();

    connect(cmdPlay, &QToolButton::clicked, this, [this] { platform::guarded([this] { cmdPlay_Click(); }); });
    connect(m_player, &media::Player::mediaStatusChanged, this, [this](media::Player::MediaStatus status) {
        if (status == media::Player::EndOfMedia)
            platform::guarded([this] { WMM_EndOfStream(); });
    });
    // The box comes once this signal is over, and the window that could not play goes.
    connect(
        m_player, &media::Player::errorOccurred, this,
        [this] {
            platform::guarded([this] { WMM_Error(); });
            Unload();
        },
        Qt::QueuedConnection);
    connect(m_player, &media::Player::playbackStateChanged, this, [this] { showPlayState(); });
    connect(m_player, &media::Player::durationChanged, this,
        [this](qint64 duration) { sldPosition->setRange(0, int(qMin<qint64>(duration, INT_MAX))); });
    connect(m_player, &media::Player::positionChanged, this, [this](qint64 position) {
        if (!m_userSeeking)
            sldPosition->setValue(int(qMin<qint64>(position, INT_MAX)));
    });
    connect(sldPosition, &QSlider::sliderPressed, this, [this] { m_userSeeking = true; });
    connect(sldPosition, &QSlider::sliderReleased, this, [this] {
        m_userSeeking = false;
        m_player->setPosition(sldPosition->value());
    });
    // The arrow and page keys (and a click beside the handle) seek at once.
    connect(sldPosition, &QAbstractSlider::actionTriggered, this, [this](int action) {
        if (action != QAbstractSlider::SliderMove && !m_userSeeking)
            m_player->setPosition(sldPosition->sliderPosition());
    });
    connect(m_player, &media::Player::videoFrameChanged, this,
        [this] { picVideo->setFrame(m_player->videoFrame()); });
    // A video shows at its own size once it is known.
    connect(m_player, &media::Player::videoSizeChanged, this, [this](QSize size) {
        platform::resumeNext([this, size] {
            if (m_video && size.isValid() && !size.isEmpty()) {
                picVideo->setFixedSize(size);
                FitToPlayer();
            }
        });
    });
}

frmMediaPlayer::~frmMediaPlayer() = default;

void frmMediaPlayer::Load()
{
    if (m_loaded)
        return;
    m_loaded = true;

    m_player->setPosition(0);

    const IndexMedia media = m_source ? m_source() : IndexMedia();
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
        m_player->setSource(m_fileName);
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

void frmMediaPlayer::WMM_Error()
{
    throw platform::RuntimeError(
        media::UnplayableMedia, media::unplayableText(m_fileName, m_player->errorString()));
}

void frmMediaPlayer::cmdPlay_Click()
{
    if (m_player->playbackState() == media::Player::PlayingState)
        m_player->pause();
    else
        m_player->play();
}

void frmMediaPlayer::showPlayState()
{
    const bool playing = m_player->playbackState() == media::Player::PlayingState;
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
