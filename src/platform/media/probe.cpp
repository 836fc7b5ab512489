#include "probe.h"

#include "player.h"

#include <runtimeerror.h>

#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>

namespace media {

QString unplayableText(const QString &file, const QString &why)
{
    return QStringLiteral("Δεν μπορώ να παίξω το αρχείο «%1»: %2").arg(QFileInfo(file).fileName(), why);
}

MediaInfo probe(Engines &engines, const QString &file, int playMs)
{
    // Anything else that is there goes to the player, which tells a folder or a pipe
    // apart from a sound as it does in the window.
    if (file.isEmpty() || !QFileInfo::exists(file))
        throw platform::RuntimeError(platform::errors::FileNotFound,
            QStringLiteral("Το αρχείο δεν βρέθηκε: «%1»").arg(QFileInfo(file).fileName()));

    Player player(engines);
    player.setSilent(true);
    QEventLoop loop;
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&player, &Player::mediaStatusChanged, &loop, [&loop](Player::MediaStatus status) {
        if (status != Player::LoadingMedia)
            loop.quit();
    });
    player.setSource(file);
    if (player.mediaStatus() == Player::LoadingMedia)
        loop.exec(); // the player gives up on its own after its load limit
    if (player.mediaStatus() != Player::LoadedMedia)
        throw platform::RuntimeError(UnplayableMedia, unplayableText(file, player.errorString()));

    // Some files (MIDI among them) tell their length only once they play; played silently
    // this takes no longer than reading them.
    MediaInfo info;
    info.video = player.hasVideo();
    info.durationMs = player.duration();
    if (info.durationMs == 0) {
        QObject::connect(&player, &Player::durationChanged, &loop, &QEventLoop::quit);
        player.play();
        deadline.start(playMs);
        if (player.duration() == 0 && player.mediaStatus() == Player::LoadedMedia)
            loop.exec();
        info.durationMs = player.duration();
        if (player.mediaStatus() == Player::InvalidMedia)
            throw platform::RuntimeError(UnplayableMedia, unplayableText(file, player.errorString()));
    }
    return info;
}

} // namespace media
