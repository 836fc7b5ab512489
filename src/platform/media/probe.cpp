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

MediaInfo probe(const QString &file, int timeoutMs)
{
    if (file.isEmpty() || !QFileInfo(file).isFile())
        throw platform::RuntimeError(platform::errors::FileNotFound,
            QStringLiteral("Το αρχείο δεν βρέθηκε: «%1»").arg(QFileInfo(file).fileName()));

    Player player;
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
    if (player.mediaStatus() == Player::LoadingMedia) {
        deadline.start(timeoutMs);
        loop.exec();
    }
    if (player.mediaStatus() == Player::InvalidMedia)
        throw platform::RuntimeError(UnplayableMedia, unplayableText(file, player.errorString()));
    if (player.mediaStatus() != Player::LoadedMedia)
        throw platform::RuntimeError(UnplayableMedia,
            unplayableText(file, QStringLiteral("it did not open in %1 s").arg(timeoutMs / 1000)));

    // Some files (MIDI among them) tell their length only once they play; played silently
    // this takes no longer than reading them.
    MediaInfo info;
    info.video = player.hasVideo();
    info.durationMs = player.duration();
    if (info.durationMs == 0) {
        QObject::connect(&player, &Player::durationChanged, &loop, &QEventLoop::quit);
        player.play();
        deadline.start(timeoutMs);
        if (player.duration() == 0 && player.mediaStatus() == Player::LoadedMedia)
            loop.exec();
        info.durationMs = player.duration();
        if (player.mediaStatus() == Player::InvalidMedia)
            throw platform::RuntimeError(UnplayableMedia, unplayableText(file, player.errorString()));
    }
    return info;
}

} // namespace media
