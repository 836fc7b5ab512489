#include "durablefile.h"

#include <logging.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace fulltext {

namespace {

bool syncPath(const QString &path, int flags)
{
    const int fd = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    if (fd < 0)
        return false;
    int rc;
    do
        rc = ::fsync(fd);
    while (rc != 0 && errno == EINTR);
    const int error = errno;
    ::close(fd);
    errno = error;
    return rc == 0;
}

bool processRuns(qint64 pid)
{
    return pid > 0 && (::kill(pid_t(pid), 0) == 0 || errno == EPERM);
}

} // namespace

bool replaceDurably(const QString &temporary, const QString &target)
{
    // Without the first sync, a file system may write the rename before the data, and a
    // power cut between them leaves the name on a file of holes.
    if (!syncPath(temporary, O_RDONLY)) {
        qCWarning(lcContent) << "cannot write" << temporary << "to the disk:" << std::strerror(errno);
        return false;
    }
    // rename(2) replaces the old file in one step, under a reader that has it open too.
    if (std::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(target).constData()) != 0)
        return false;
    // The new name is safe only once its folder is on the disk too. The file is in place
    // by now: a folder that cannot be synced leaves the old name or the new one after a
    // power cut, each a whole file.
    const QString folder = QFileInfo(target).absolutePath();
    if (!syncPath(folder, O_RDONLY | O_DIRECTORY))
        qCWarning(lcContent) << "cannot write the folder" << folder << "to the disk:" << std::strerror(errno);
    return true;
}

void removeLeftTemporaries(const QString &target)
{
    const QFileInfo info(target);
    const QString prefix = info.fileName() + u'.';
    const QDateTime stale = QDateTime::currentDateTime().addSecs(-3600);
    const QFileInfoList files
        = QDir(info.absolutePath()).entryInfoList({prefix + QStringLiteral("*.tmp")}, QDir::Files);
    for (const QFileInfo &file : files) {
        bool number = false;
        const qint64 pid = file.fileName().mid(prefix.size()).section(u'-', 0, 0).toLongLong(&number);
        if (!number || (processRuns(pid) && file.lastModified() > stale))
            continue;
        if (QFile::remove(file.filePath()))
            qCInfo(lcContent) << "removed" << file.filePath() << "left by a build that did not end";
    }
}

} // namespace fulltext
