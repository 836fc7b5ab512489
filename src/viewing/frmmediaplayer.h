#pragma once

#include <QWidget>

#include <functional>

class QSlider;
class QToolButton;
class Session;
class VideoPicture;
namespace media {
class Player;
}

// The small window that plays an index term's sound or video. It starts at once, stands
// at the beginning again when the piece ends, and stops when it closes. It fits itself
// round its player: a picture area for a video above a bar with play/pause and the
// position. A file that cannot be played gives the error box, naming it and saying why in
// the player's words (no decoder, damaged, not found), and the window closes; so does a
// file that has not opened within the player's load limit.
class frmMediaPlayer final : public QWidget
{
    Q_OBJECT

public:
    // What the index tells the player: 0 plays the sound, 1 the video, any other value
    // nothing.
    struct IndexMedia
    {
        qint32 MediaKind = -1;
        QString SoundPath;
        QString VideoPath;
    };
    // Where the index's choice is read, at Load; without one the player plays nothing.
    using MediaSource = std::function<IndexMedia()>;

    frmMediaPlayer(Session &session, MediaSource source, QWidget *parent = nullptr);
    ~frmMediaPlayer() override;
    Q_DISABLE_COPY_MOVE(frmMediaPlayer)

    // Controls: the player (WMM) is the picture area over the transport bar.
    QWidget *const WMM;
    VideoPicture *const picVideo;
    QToolButton *const cmdPlay;
    QSlider *const sldPosition;

    // Only stored: the file to play comes from the index.
    QString PayFile() const { return m_payFile; }
    void setPayFile(const QString &file) { m_payFile = file; }

    // Sets the player up, takes the file the index names (which starts the playing) and
    // fits the window. Done once, before the window is first shown if the opener has not.
    void Load();
    void Unload();

    // The playing engine, for the owner's and the tests' questions.
    media::Player *player() const { return m_player; }
    QString fileName() const { return m_fileName; }

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void WMM_EndOfStream();
    void WMM_Error();
    void cmdPlay_Click();
    void FitToPlayer();
    void showPlayState();

    Session &m_session;
    const MediaSource m_source;
    media::Player *const m_player;
    QString m_payFile;
    QString m_fileName;
    bool m_loaded = false;
    bool m_video = false;
    bool m_userSeeking = false;
};
