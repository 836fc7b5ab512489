#include "destinations.h"

#include "bundle.h"
#include "logging.h"
#include "manifest.h"
#include "settings.h"

#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace handin {

Destinations Destinations::fromSettings()
{
    const platform::SettingsGroup group = platform::readSettingsGroup(QStringLiteral("Παράδοση"));
    Destinations destinations;
    destinations.folder = group.value(QStringLiteral("Folder")).trimmed();
    const QString webdav = group.value(QStringLiteral("WebDAV")).trimmed();
    if (!webdav.isEmpty()) {
        QUrl url(webdav, QUrl::StrictMode);
        const QString scheme = url.scheme().toLower();
        if (url.isValid() && !url.host().isEmpty() && (scheme == u"https" || scheme == u"http")) {
            // The bundle's name is added after one '/'.
            QString path = url.path();
            while (path.endsWith(u'/'))
                path.chop(1);
            url.setPath(path);
            destinations.webdav = url;
        } else {
            qCWarning(lcHandin) << "WebDAV= in" << group.settingsFile << "is not an http(s) URL:" << webdav;
        }
    }
    destinations.user = group.value(QStringLiteral("User"));
    destinations.password = group.value(QStringLiteral("Password"));
    return destinations;
}

namespace {

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

class Descriptor final
{
public:
    explicit Descriptor(int fd = -1)
        : m_fd(fd)
    {
    }
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        if (this != &other) {
            reset();
            m_fd = other.m_fd;
            other.m_fd = -1;
        }
        return *this;
    }
    int get() const { return m_fd; }
    bool valid() const { return m_fd >= 0; }
    // Closes now; false when close() reported an error (a write that failed late).
    bool reset()
    {
        if (m_fd < 0)
            return true;
        const int fd = m_fd;
        m_fd = -1;
        return ::close(fd) == 0;
    }

private:
    int m_fd;
};

bool writeAll(int fd, const QByteArray &data, int &error)
{
    const char *at = data.constData();
    qsizetype left = data.size();
    while (left > 0) {
        const ssize_t written = ::write(fd, at, static_cast<size_t>(left));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            error = errno;
            return false;
        }
        at += written;
        left -= written;
    }
    if (::fsync(fd) != 0) {
        error = errno;
        return false;
    }
    return true;
}

QByteArray temporaryName()
{
    // A leading dot keeps a half-written bundle out of the teacher's list of *.zip.
    return ".tremidia-" + QByteArray::number(QRandomGenerator::system()->generate64(), 36) + ".part";
}

// The file is created only by this call (O_EXCL), never through a link.
int createExclusive(int dir, const QByteArray &name, int &error)
{
    for (;;) {
        const int fd
            = ::openat(dir, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
        if (fd >= 0 || errno != EINTR) {
            error = fd >= 0 ? 0 : errno;
            return fd;
        }
    }
}

enum class Placed { Done, Taken, Unsupported, Failed };

// Gives the temporary file its name without ever replacing a file of that name.
Placed placeWithoutReplacing(int dir, const QByteArray &from, const QByteArray &to, int &error)
{
    if (::renameat2(dir, from.constData(), dir, to.constData(), RENAME_NOREPLACE) == 0)
        return Placed::Done;
    error = errno;
    if (error == EEXIST)
        return Placed::Taken;
    if (error != EINVAL && error != ENOSYS && error != EOPNOTSUPP)
        return Placed::Failed;
    // The file system cannot rename without replacing: a second link cannot replace either.
    if (::linkat(dir, from.constData(), dir, to.constData(), 0) == 0) {
        ::unlinkat(dir, from.constData(), 0);
        return Placed::Done;
    }
    error = errno;
    if (error == EEXIST)
        return Placed::Taken;
    if (error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK)
        return Placed::Unsupported;
    return Placed::Failed;
}

Delivery unavailable(QString *why, const QString &reason)
{
    if (why)
        *why = reason;
    return Delivery::Unavailable;
}

constexpr int MaxNameTries = 32;

// Where the file system can neither rename without replacing nor link, the bundle is
// written straight under its final name, created exclusively: a teacher may see it
// half-written for a moment, but nothing is ever replaced.
Delivery writeUnderFinalName(int dir, QString name, const QByteArray &zip, QString *why, QString *deliveredAs)
{
    for (int attempt = 0; attempt < MaxNameTries; ++attempt, name = withFreshRandomPart(name)) {
        const QByteArray encoded = QFile::encodeName(name);
        int error = 0;
        Descriptor file(createExclusive(dir, encoded, error));
        if (!file.valid()) {
            if (error == EEXIST)
                continue;
            return unavailable(why, QStringLiteral("cannot create %1: %2").arg(name, systemError(error)));
        }
        if (!writeAll(file.get(), zip, error) || (!file.reset() && (error = errno))) {
            ::unlinkat(dir, encoded.constData(), 0);
            return unavailable(why, QStringLiteral("cannot write %1: %2").arg(name, systemError(error)));
        }
        if (deliveredAs)
            *deliveredAs = name;
        return Delivery::Delivered;
    }
    return unavailable(why, QStringLiteral("every name tried is taken"));
}

} // namespace

Delivery deliverToFolder(
    const QString &folder, const QString &fileName, const QByteArray &zip, QString *why, QString *deliveredAs)
{
    if (folder.isEmpty())
        return unavailable(why, QStringLiteral("no folder is set"));
    if (!isPlainEntryName(fileName))
        return unavailable(why, QStringLiteral("not a plain file name: %1").arg(fileName));

    // Opened for reading where we may, to sync the folder after the rename; a drop folder
    // (1733) only lets us in by path, which is all renameat2 needs.
    const QByteArray folderPath = QFile::encodeName(folder);
    Descriptor dir(::open(folderPath.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    bool canSyncFolder = dir.valid();
    if (!dir.valid())
        dir = Descriptor(::open(folderPath.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!dir.valid())
        return unavailable(why, QStringLiteral("cannot open %1: %2").arg(folder, systemError(errno)));

    int error = 0;
    QByteArray temporary;
    Descriptor file;
    for (int attempt = 0; attempt < MaxNameTries && !file.valid(); ++attempt) {
        temporary = temporaryName();
        file = Descriptor(createExclusive(dir.get(), temporary, error));
        if (!file.valid() && error != EEXIST)
            break;
    }
    if (!file.valid())
        return unavailable(
            why, QStringLiteral("cannot create a file in %1: %2").arg(folder, systemError(error)));
    if (!writeAll(file.get(), zip, error) || (!file.reset() && (error = errno))) {
        ::unlinkat(dir.get(), temporary.constData(), 0);
        return unavailable(why, QStringLiteral("cannot write into %1: %2").arg(folder, systemError(error)));
    }

    QString name = fileName;
    for (int attempt = 0; attempt < MaxNameTries; ++attempt, name = withFreshRandomPart(name)) {
        switch (placeWithoutReplacing(dir.get(), temporary, QFile::encodeName(name), error)) {
        case Placed::Done:
            if (canSyncFolder)
                ::fsync(dir.get());
            if (deliveredAs)
                *deliveredAs = name;
            return Delivery::Delivered;
        case Placed::Taken:
            continue;
        case Placed::Unsupported:
            ::unlinkat(dir.get(), temporary.constData(), 0);
            return writeUnderFinalName(dir.get(), name, zip, why, deliveredAs);
        case Placed::Failed:
            ::unlinkat(dir.get(), temporary.constData(), 0);
            return unavailable(
                why, QStringLiteral("cannot name %1 in %2: %3").arg(name, folder, systemError(error)));
        }
    }
    ::unlinkat(dir.get(), temporary.constData(), 0);
    return unavailable(why, QStringLiteral("every name tried in %1 is taken").arg(folder));
}

} // namespace handin
