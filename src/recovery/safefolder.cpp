#include "safefolder.h"

#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace recovery {

namespace {

constexpr int FolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
// Deeper than this, a tree is not ours: the program makes two levels.
constexpr int MaxDepth = 16;

// One name inside a folder: never a path, never "." or "..".
bool isPlainName(const QByteArray &name)
{
    return !name.isEmpty() && !name.contains('/') && !name.contains('\0') && name != "." && name != "..";
}

NodeKind kindOf(mode_t mode)
{
    if (S_ISLNK(mode))
        return NodeKind::Link;
    if (S_ISREG(mode))
        return NodeKind::File;
    if (S_ISDIR(mode))
        return NodeKind::Folder;
    return NodeKind::Other;
}

Node nodeAt(int folder, const QByteArray &name)
{
    Node node;
    node.name = name;
    struct stat st
    {
    };
    if (!isPlainName(name) || ::fstatat(folder, name.constData(), &st, AT_SYMLINK_NOFOLLOW) != 0)
        return node;
    node.kind = kindOf(st.st_mode);
    node.size = qint64(st.st_size);
    node.modifiedMs = qint64(st.st_mtim.tv_sec) * 1000 + st.st_mtim.tv_nsec / 1000000;
    return node;
}

// The names in an open folder, at most `most`, through a descriptor of their own so that
// the folder's own keeps its place.
QList<QByteArray> namesIn(int folder, int most)
{
    QList<QByteArray> names;
    const int listing = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (listing < 0)
        return names;
    DIR *dir = ::fdopendir(listing);
    if (!dir) {
        ::close(listing);
        return names;
    }
    while (names.size() < most) {
        const dirent *entry = ::readdir(dir);
        if (!entry)
            break;
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..")
            names << name;
    }
    ::closedir(dir);
    return names;
}

bool removeTreeAt(int parent, const QByteArray &name, int depth)
{
    const Node node = nodeAt(parent, name);
    if (node.kind == NodeKind::Missing)
        return isPlainName(name);
    if (node.kind != NodeKind::Folder)
        return ::unlinkat(parent, name.constData(), 0) == 0;
    if (depth > MaxDepth)
        return false;
    const int folder = ::openat(parent, name.constData(), FolderFlags);
    if (folder < 0)
        return false;
    // Removed a batch at a time, listed again after each, until nothing more goes.
    for (;;) {
        const QList<QByteArray> names = namesIn(folder, SafeFolder::MaxListed);
        bool removedAny = false;
        for (const QByteArray &child : names)
            removedAny = removeTreeAt(folder, child, depth + 1) || removedAny;
        if (names.isEmpty() || !removedAny)
            break;
    }
    ::close(folder);
    return ::unlinkat(parent, name.constData(), AT_REMOVEDIR) == 0;
}

bool writeAll(int fd, const QByteArray &data)
{
    qsizetype done = 0;
    while (done < data.size()) {
        const ssize_t written = ::write(fd, data.constData() + done, size_t(data.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

} // namespace

SafeFolder::SafeFolder(int fd, QString path)
    : m_fd(fd)
    , m_path(std::move(path))
{
}

SafeFolder::~SafeFolder()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

SafeFolder::SafeFolder(SafeFolder &&other) noexcept
    : m_fd(std::exchange(other.m_fd, -1))
    , m_path(std::move(other.m_path))
{
}

SafeFolder &SafeFolder::operator=(SafeFolder &&other) noexcept
{
    if (this != &other) {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = std::exchange(other.m_fd, -1);
        m_path = std::move(other.m_path);
    }
    return *this;
}

SafeFolder SafeFolder::open(const QString &path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), FolderFlags);
    return fd < 0 ? SafeFolder() : SafeFolder(fd, path);
}

SafeFolder SafeFolder::openFollowing(const QString &path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    return fd < 0 ? SafeFolder() : SafeFolder(fd, path);
}

SafeFolder SafeFolder::folder(const QByteArray &name) const
{
    if (m_fd < 0 || !isPlainName(name))
        return {};
    const int fd = ::openat(m_fd, name.constData(), FolderFlags);
    return fd < 0 ? SafeFolder() : SafeFolder(fd, pathOf(name));
}

QString SafeFolder::pathOf(const QByteArray &name) const
{
    return m_path + u'/' + QFile::decodeName(name);
}

QList<Node> SafeFolder::list() const
{
    QList<Node> out;
    if (m_fd < 0)
        return out;
    for (const QByteArray &name : namesIn(m_fd, MaxListed)) {
        Node node = nodeAt(m_fd, name);
        if (node.kind != NodeKind::Missing)
            out << std::move(node);
    }
    std::sort(out.begin(), out.end(), [](const Node &a, const Node &b) { return a.name < b.name; });
    return out;
}

Node SafeFolder::node(const QByteArray &name) const
{
    return m_fd < 0 ? Node {name} : nodeAt(m_fd, name);
}

std::optional<QByteArray> SafeFolder::read(const QByteArray &name, qint64 limit) const
{
    // Looked at before it is opened: opening a device or a pipe can itself do harm or wait.
    const Node before = node(name);
    if (before.kind != NodeKind::File || before.size > limit)
        return std::nullopt;
    const int fd
        = ::openat(m_fd, name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0)
        return std::nullopt;
    struct stat st
    {
    };
    std::optional<QByteArray> out;
    if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && qint64(st.st_size) <= limit) {
        // One byte more than allowed tells a file that grew since.
        QByteArray bytes(qsizetype(st.st_size) + 1, Qt::Uninitialized);
        qsizetype done = 0;
        bool failed = false;
        while (done < bytes.size()) {
            const ssize_t got = ::read(fd, bytes.data() + done, size_t(bytes.size() - done));
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                failed = true;
            if (got <= 0)
                break;
            done += got;
        }
        if (!failed && done <= limit && done < bytes.size()) {
            bytes.truncate(done);
            out = std::move(bytes);
        }
    }
    ::close(fd);
    return out;
}

bool SafeFolder::write(const QByteArray &name, const QByteArray &data) const
{
    if (m_fd < 0 || !isPlainName(name))
        return false;
    const QByteArray aside
        = name + '.' + QByteArray::number(QRandomGenerator::global()->generate(), 16) + PartialSuffix;
    // O_EXCL with O_NOFOLLOW: a new file of our own, never one that a link names.
    const int fd
        = ::openat(m_fd, aside.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    // On the disk before the rename, so that a power cut leaves the former copy or this one.
    const bool written = writeAll(fd, data) && ::fdatasync(fd) == 0;
    const bool closed = ::close(fd) == 0;
    if (written && closed && ::renameat(m_fd, aside.constData(), m_fd, name.constData()) == 0)
        return true;
    ::unlinkat(m_fd, aside.constData(), 0);
    return false;
}

bool SafeFolder::makeFolder(const QByteArray &name) const
{
    return m_fd >= 0 && isPlainName(name) && ::mkdirat(m_fd, name.constData(), 0700) == 0;
}

bool SafeFolder::remove(const QByteArray &name) const
{
    return m_fd >= 0 && isPlainName(name) && ::unlinkat(m_fd, name.constData(), 0) == 0;
}

bool SafeFolder::removeFolder(const QByteArray &name) const
{
    return m_fd >= 0 && isPlainName(name) && ::unlinkat(m_fd, name.constData(), AT_REMOVEDIR) == 0;
}

bool SafeFolder::removeTree(const QByteArray &name) const
{
    return m_fd >= 0 && isPlainName(name) && removeTreeAt(m_fd, name, 0);
}

bool SafeFolder::move(const QByteArray &name, const SafeFolder &to, const QByteArray &newName) const
{
    if (m_fd < 0 || to.m_fd < 0 || !isPlainName(name) || !isPlainName(newName))
        return false;
    if (::renameat2(m_fd, name.constData(), to.m_fd, newName.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // A file system without the flag: looked at first, which is as good where only this
    // program writes.
    if (to.node(newName).kind != NodeKind::Missing)
        return false;
    return ::renameat(m_fd, name.constData(), to.m_fd, newName.constData()) == 0;
}

} // namespace recovery
