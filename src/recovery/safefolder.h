#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// Folders and files of the recovery folder, handled through open descriptors and never
// through what a name points at: a symbolic link found there is a link, and removing it
// removes the link, never its target. Anything may turn up in the user's state folder
// (a link to the pupil's documents, a pipe, a file of gigabytes), so every reading has
// a limit and nothing blocks. Names are the file system's bytes, so that whatever name
// is found can be acted on.
namespace recovery {

enum class NodeKind { Missing, File, Folder, Link, Other };

// One name in a folder, as it is itself (lstat), not as what it points at.
struct Node
{
    QByteArray name;
    NodeKind kind = NodeKind::Missing;
    qint64 size = 0;
    qint64 modifiedMs = 0; // since the epoch
};

class SafeFolder
{
public:
    // More names than this in one folder are not looked at: a folder of a million files
    // must not hold up the start.
    static constexpr int MaxListed = 4096;

    SafeFolder() = default;
    ~SafeFolder();
    SafeFolder(SafeFolder &&other) noexcept;
    SafeFolder &operator=(SafeFolder &&other) noexcept;
    SafeFolder(const SafeFolder &) = delete;
    SafeFolder &operator=(const SafeFolder &) = delete;

    // The folder at `path`; not valid when its last part is a link or not a folder.
    static SafeFolder open(const QString &path);
    // The same, where the last part may be a link (a state folder kept on another disk).
    static SafeFolder openFollowing(const QString &path);
    // A subfolder; not valid when `name` is a link or not a folder.
    SafeFolder folder(const QByteArray &name) const;

    bool isValid() const { return m_fd >= 0; }
    const QString &path() const { return m_path; }
    QString pathOf(const QByteArray &name) const;

    // The names in the folder, sorted, at most MaxListed.
    QList<Node> list() const;
    Node node(const QByteArray &name) const;

    // The bytes of a plain file of at most `limit` bytes; nothing when the name is not a
    // plain file (a link, a pipe, a folder), is larger, or can't be read.
    std::optional<QByteArray> read(const QByteArray &name, qint64 limit) const;
    // Writes the bytes aside and renames them over `name`, which is replaced as it is:
    // a link there is replaced, its target never written.
    bool write(const QByteArray &name, const QByteArray &data) const;
    bool makeFolder(const QByteArray &name) const;
    // Removes a name that is not a folder: a file, a link (itself), a pipe.
    bool remove(const QByteArray &name) const;
    // Removes an empty folder.
    bool removeFolder(const QByteArray &name) const;
    // Removes a folder and all it holds, links inside removed as links; a name that is
    // not a folder is removed as remove() does.
    bool removeTree(const QByteArray &name) const;
    // Moves `name` into `to` as `newName`, never replacing what is there.
    bool move(const QByteArray &name, const SafeFolder &to, const QByteArray &newName) const;

private:
    SafeFolder(int fd, QString path);

    int m_fd = -1;
    QString m_path;
};

// The suffix of the files a write leaves while it is under way; such a file left behind
// is a write that a crash cut short.
inline constexpr char PartialSuffix[] = ".part";

} // namespace recovery
