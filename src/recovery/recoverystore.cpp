#include "recoverystore.h"

#include <logging.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLockFile>
#include <QMap>

#include <algorithm>

namespace recovery {

namespace {

constexpr int DefaultDelayMs = 30000;
const QByteArray LockName = QByteArrayLiteral("instance.lock");
const QByteArray SetAsideName = QByteArrayLiteral("set-aside");
const QByteArray DescriptionSuffix = QByteArrayLiteral(".json");
const QByteArray LostPrefix = QByteArrayLiteral("lost-");
// A lock file holds a process id, a host name and a program's name.
constexpr qint64 LockLimit = 4096;
// Later than this (the year 33658) a time in a description is damage.
constexpr double LatestTime = 1e15;

bool isDigits(QByteArrayView text)
{
    return !text.isEmpty()
        && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A program's folder is named `<process id>-<ms since the epoch>`; any other folder there
// is not one of ours, and is left as it is.
bool isProgramFolderName(const QByteArray &name)
{
    const qsizetype dash = name.indexOf('-');
    return name.size() <= 40 && dash > 0 && isDigits(QByteArrayView(name).first(dash))
        && isDigits(QByteArrayView(name).sliced(dash + 1));
}

// The names the program gives its copies: `notes-3`, `drawing-12`, `lost-1`.
bool isCopyName(QByteArrayView name)
{
    return !name.isEmpty() && name.size() <= 64 && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-'
            || c == '_';
    });
}

// The kind of work a content's extension holds; empty for any other file.
QString kindOfContent(QByteArrayView extension)
{
    if (extension == "rtf")
        return QStringLiteral("notes");
    if (extension == "png")
        return QStringLiteral("drawing");
    return {};
}

struct FileName
{
    QByteArray base;
    QByteArray extension;
};

FileName splitName(const QByteArray &name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0)
        return {name, {}};
    return {name.left(dot), name.mid(dot + 1)};
}

QByteArray describe(
    const QString &kind, const QByteArray &contentName, const QJsonObject &details, qint64 writtenAt)
{
    QJsonObject description;
    description.insert(QStringLiteral("kind"), kind);
    description.insert(QStringLiteral("content"), QString::fromLatin1(contentName));
    description.insert(QStringLiteral("details"), details);
    description.insert(QStringLiteral("writtenAt"), writtenAt);
    return QJsonDocument(description).toJson();
}

// The entry a description gives, when it can be read and names its own content, which
// is there; nothing otherwise.
std::optional<Entry> readDescription(
    const SafeFolder &folder, const Node &node, const QMap<QByteArray, Node> &contents)
{
    const QByteArray base = splitName(node.name).base;
    const std::optional<QByteArray> bytes = folder.read(node.name, Store::DescriptionLimit);
    if (!bytes) {
        qCWarning(lcRecovery).noquote() << "the description" << folder.pathOf(node.name)
                                        << "is not read: larger than a description can be, or unreadable";
        return std::nullopt;
    }
    QJsonParseError error {};
    const QJsonDocument document = QJsonDocument::fromJson(*bytes, &error);
    const QJsonObject description = document.object();
    const QByteArray content = description.value(QStringLiteral("content")).toString().toUtf8();
    const FileName contentName = splitName(content);
    const QString kind = kindOfContent(contentName.extension);
    // Only its own content, beside it: a description never points elsewhere.
    if (error.error != QJsonParseError::NoError || !document.isObject() || contentName.base != base
        || kind.isEmpty() || description.value(QStringLiteral("kind")).toString() != kind) {
        qCWarning(lcRecovery).noquote() << "the description" << folder.pathOf(node.name) << "is damaged";
        return std::nullopt;
    }
    // A removal takes the content first: one that a crash cut short leaves this.
    if (!contents.contains(content))
        return std::nullopt;
    Entry entry;
    entry.name = QString::fromLatin1(base);
    entry.kind = kind;
    entry.contentPath = folder.pathOf(content);
    entry.details = description.value(QStringLiteral("details")).toObject();
    const double writtenAt = description.value(QStringLiteral("writtenAt")).toDouble();
    entry.writtenAt
        = writtenAt >= 0 && writtenAt < LatestTime ? qint64(writtenAt) : contents[content].modifiedMs;
    return entry;
}

// Removes a copy: its content first, then its description, and what a write of it left.
bool removeCopy(const SafeFolder &folder, const QByteArray &base)
{
    const QByteArray prefix = base + '.';
    const QByteArray description = base + DescriptionSuffix;
    bool removed = false;
    for (const Node &node : folder.list()) {
        if (node.kind != NodeKind::Folder && node.name.startsWith(prefix) && node.name != description)
            removed = folder.remove(node.name) || removed;
    }
    return folder.remove(description) || removed;
}

// Files that a write left when a crash cut it short: never a whole copy.
void removePartial(const SafeFolder &folder)
{
    for (const Node &node : folder.list()) {
        if (node.kind == NodeKind::File && node.name.endsWith(PartialSuffix) && folder.remove(node.name))
            qCWarning(lcRecovery).noquote()
                << "removed" << folder.pathOf(node.name) << "- a copy whose writing was cut short";
    }
}

// The real folder `name` in `parent`: a link there is removed first, and the folder made
// when it is missing.
SafeFolder realFolder(const SafeFolder &parent, const QByteArray &name)
{
    const Node node = parent.node(name);
    if (node.kind == NodeKind::Link && parent.remove(name))
        qCWarning(lcRecovery).noquote()
            << "removed the link" << parent.pathOf(name) << "as a link, not followed";
    if (node.kind == NodeKind::Link || node.kind == NodeKind::Missing)
        parent.makeFolder(name);
    return parent.folder(name);
}

// A name in `folder` that nothing has yet, made from `name`.
QByteArray freeName(const SafeFolder &folder, const QByteArray &name)
{
    if (folder.node(name).kind == NodeKind::Missing)
        return name;
    for (int n = 2; n < 100; ++n) {
        const QByteArray numbered = name + '-' + QByteArray::number(n);
        if (folder.node(numbered).kind == NodeKind::Missing)
            return numbered;
    }
    return name + '-' + QByteArray::number(QDateTime::currentMSecsSinceEpoch());
}

} // namespace

struct Store::Ended
{
    QByteArray name;
    SafeFolder folder;
    std::unique_ptr<QLockFile> lock;
};

QString Store::folder()
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    // The XDG rule: a relative path is invalid and is ignored.
    if (state.isEmpty() || QDir::isRelativePath(state))
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/tremidia/recovery");
}

QString Store::setAsideFolder()
{
    return folder() + u'/' + QString::fromLatin1(SetAsideName);
}

int Store::delayMs() const
{
    if (m_delayMs > 0)
        return m_delayMs;
    bool ok = false;
    const int fromEnvironment = qEnvironmentVariableIntValue("TREMIDIA_RECOVERY_DELAY_MS", &ok);
    return ok && fromEnvironment > 0 ? std::min(fromEnvironment, DefaultDelayMs) : DefaultDelayMs;
}

void Store::setDelayMs(int ms)
{
    m_delayMs = ms;
}

Store::Store() = default;

Store::~Store()
{
    close();
}

void Store::close()
{
    // A program that ends with nothing unsaved leaves nothing behind; one that ends with
    // work neither saved nor discarded leaves it for the next start.
    if (m_usable && readEntries(m_ownFolder).isEmpty()) {
        m_lock.reset();
        closeFolder(m_ownName, m_ownFolder);
    }
}

void Store::restart()
{
    close();
    m_own.clear();
    m_ownName.clear();
    m_ownFolder = SafeFolder();
    m_top = SafeFolder();
    m_lock.reset();
    m_offered.clear();
    m_lostSerial = 0;
    m_tried = false;
    m_usable = false;
    m_warned = false;
}

void Store::failedOnce(const QString &why)
{
    if (m_warned)
        return;
    m_warned = true;
    qCWarning(lcRecovery).noquote() << "no recovery copies of unsaved work:" << why;
}

bool Store::open()
{
    if (m_tried)
        return m_usable;
    m_tried = true;
    const QString top = folder();
    const QString state = QFileInfo(top).path();
    if (!QDir().mkpath(state)) {
        failedOnce(QStringLiteral("cannot make %1").arg(state));
        return false;
    }
    // The state folder may be a link (kept on another disk); the recovery folder itself
    // may not, or the program would empty whatever folder it names.
    m_top = realFolder(SafeFolder::openFollowing(state), QFile::encodeName(QFileInfo(top).fileName()));
    if (!m_top.isValid()) {
        failedOnce(QStringLiteral("cannot make %1").arg(top));
        return false;
    }
    // The process id makes the name unique among the programs running now; the time,
    // among all that ever ran (ids come round again).
    const QByteArray own = QByteArray::number(QCoreApplication::applicationPid()) + '-'
        + QByteArray::number(QDateTime::currentMSecsSinceEpoch());
    if (!m_top.makeFolder(own)) {
        failedOnce(QStringLiteral("cannot make %1").arg(m_top.pathOf(own)));
        return false;
    }
    SafeFolder ownFolder = m_top.folder(own);
    auto lock = std::make_unique<QLockFile>(ownFolder.pathOf(LockName));
    if (!ownFolder.isValid() || !lock->tryLock(0)) {
        failedOnce(QStringLiteral("cannot lock %1").arg(m_top.pathOf(own)));
        m_top.removeTree(own);
        return false;
    }
    m_lock = std::move(lock);
    m_own = ownFolder.path();
    m_ownName = own;
    m_ownFolder = std::move(ownFolder);
    m_usable = true;
    return true;
}

bool Store::usable()
{
    return open();
}

QString Store::ownFolder()
{
    return open() ? m_own : QString();
}

bool Store::write(const QString &name, const QString &kind, const QByteArray &content,
    const QString &extension, const QJsonObject &details)
{
    if (!open())
        return false;
    const QByteArray base = name.toLatin1();
    const QByteArray contentName = base + '.' + extension.toLatin1();
    if (!isCopyName(base) || kindOfContent(extension.toLatin1()) != kind) {
        qCWarning(lcRecovery).noquote()
            << "no copy of" << name << "as" << kind << extension << "- not a copy's name";
        return false;
    }
    if (!m_ownFolder.write(contentName, content)
        || !m_ownFolder.write(base + DescriptionSuffix,
            describe(kind, contentName, details, QDateTime::currentMSecsSinceEpoch()))) {
        failedOnce(QStringLiteral("cannot write in %1").arg(m_own));
        return false;
    }
    return true;
}

void Store::remove(const QString &name)
{
    if (!m_usable)
        return;
    if (removeCopy(m_ownFolder, name.toLatin1()))
        qCInfo(lcRecovery).noquote() << "removed the copy" << name << "in" << m_own << "- saved or let go";
}

QList<Entry> Store::ownEntries()
{
    return open() ? readEntries(m_ownFolder) : QList<Entry>();
}

std::vector<Store::Ended> Store::endedFolders()
{
    std::vector<Ended> out;
    for (const Node &node : m_top.list()) {
        if (node.name == m_ownName || node.name == SetAsideName)
            continue;
        if (node.kind == NodeKind::Link) {
            if (m_top.remove(node.name))
                qCWarning(lcRecovery).noquote()
                    << "removed the link" << m_top.pathOf(node.name) << "as a link, not followed";
            continue;
        }
        if (node.kind != NodeKind::Folder || !isProgramFolderName(node.name))
            continue;
        SafeFolder folder = m_top.folder(node.name);
        if (!folder.isValid())
            continue;
        const Node lockNode = folder.node(LockName);
        if (lockNode.kind == NodeKind::Link && folder.remove(LockName)) {
            qCWarning(lcRecovery).noquote()
                << "removed the link" << folder.pathOf(LockName) << "as a link, not followed";
        } else if (lockNode.kind != NodeKind::Missing
            && (lockNode.kind != NodeKind::File || lockNode.size > LockLimit)) {
            setAsideFolder(node.name, QStringLiteral("its lock is not a lock file"));
            continue;
        }
        // A lock whose process no longer runs is stale, and taking it removes it; a
        // folder without a lock file at all was never finished by its program.
        auto lock = std::make_unique<QLockFile>(folder.pathOf(LockName));
        if (!lock->tryLock(0))
            continue;
        out.push_back({node.name, std::move(folder), std::move(lock)});
    }
    return out;
}

void Store::finish(Ended &ended)
{
    ended.lock.reset();
    closeFolder(ended.name, ended.folder);
}

void Store::closeFolder(const QByteArray &name, const SafeFolder &folder)
{
    removePartial(folder);
    if (!folder.list().isEmpty())
        setAsideFolder(name, QStringLiteral("it holds files that are no copy of work"));
    else if (!m_top.removeFolder(name))
        qCWarning(lcRecovery).noquote() << "cannot remove the empty folder" << m_top.pathOf(name);
}

SafeFolder Store::setAsidePlace(const QByteArray &name)
{
    SafeFolder aside = realFolder(m_top, SetAsideName);
    return name.isEmpty() ? std::move(aside) : realFolder(aside, name);
}

bool Store::setAsideFolder(const QByteArray &name, const QString &why)
{
    const SafeFolder aside = setAsidePlace({});
    const QByteArray target = freeName(aside, name);
    if (!aside.isValid() || !m_top.move(name, aside, target)) {
        qCWarning(lcRecovery).noquote() << "cannot set aside" << m_top.pathOf(name) << "-" << why;
        return false;
    }
    qCWarning(lcRecovery).noquote() << "set aside" << m_top.pathOf(name) << "as" << aside.pathOf(target)
                                    << "-" << why;
    return true;
}

bool Store::setAside(const Entry &entry, const QString &why)
{
    if (!open())
        return false;
    const QFileInfo content(entry.contentPath);
    const QByteArray folderName = QFile::encodeName(QFileInfo(content.path()).fileName());
    const QByteArray base = entry.name.toLatin1();
    if (!isCopyName(base) || content.path() != m_top.pathOf(folderName))
        return false;
    Ended ended {folderName, m_top.folder(folderName), nullptr};
    // Another program's folder is taken first, as the lost work is.
    if (folderName != m_ownName) {
        ended.lock = std::make_unique<QLockFile>(ended.folder.pathOf(LockName));
        if (!ended.folder.isValid() || !ended.lock->tryLock(0))
            return false;
    }
    const SafeFolder place = setAsidePlace(folderName);
    if (!place.isValid())
        qCWarning(lcRecovery).noquote() << "cannot set aside" << entry.contentPath << "-" << why;
    bool moved = false;
    for (const Node &node : ended.folder.list()) {
        if (node.kind == NodeKind::Folder || !node.name.startsWith(base + '.'))
            continue;
        const QByteArray target = freeName(place, node.name);
        if (ended.folder.move(node.name, place, target)) {
            qCWarning(lcRecovery).noquote() << "set aside" << ended.folder.pathOf(node.name) << "as"
                                            << place.pathOf(target) << "-" << why;
            moved = true;
        }
    }
    if (ended.lock && readEntries(ended.folder).isEmpty())
        finish(ended);
    return moved;
}

QByteArray Store::nextLostName()
{
    for (;;) {
        const QByteArray name = LostPrefix + QByteArray::number(++m_lostSerial);
        const QByteArray prefix = name + '.';
        const QList<Node> own = m_ownFolder.list();
        if (std::none_of(
                own.begin(), own.end(), [&](const Node &node) { return node.name.startsWith(prefix); }))
            return name;
    }
}

QList<Entry> Store::lostWork()
{
    m_offered.clear();
    if (!open())
        return {};
    QList<Entry> out;
    for (Ended &ended : endedFolders()) {
        const QList<Entry> entries = readEntries(ended.folder);
        // A program killed with nothing unsaved leaves an empty folder: nothing to ask.
        if (entries.isEmpty()) {
            finish(ended);
            continue;
        }
        m_offered << ended.name;
        out += entries;
    }
    std::stable_sort(
        out.begin(), out.end(), [](const Entry &a, const Entry &b) { return a.writtenAt < b.writtenAt; });
    return out;
}

bool Store::adopt(const Ended &ended, const Entry &entry)
{
    const QByteArray contentName = QFile::encodeName(QFileInfo(entry.contentPath).fileName());
    const QByteArray name = nextLostName();
    const QByteArray adoptedName = name + '.' + splitName(contentName).extension;
    // Moved, not read: whatever its size, the copy is the pupil's work, and reopening it
    // reads it with the limits of opening a note or a picture.
    if (!ended.folder.move(contentName, m_ownFolder, adoptedName)) {
        failedOnce(QStringLiteral("cannot take over %1").arg(entry.contentPath));
        return false;
    }
    if (!m_ownFolder.write(
            name + DescriptionSuffix, describe(entry.kind, adoptedName, entry.details, entry.writtenAt)))
        qCWarning(lcRecovery).noquote() << "no description for" << m_ownFolder.pathOf(adoptedName);
    // Its description is replaced by the one just written.
    ended.folder.remove(entry.name.toLatin1() + DescriptionSuffix);
    qCInfo(lcRecovery).noquote() << "took over" << entry.contentPath << "as"
                                 << m_ownFolder.pathOf(adoptedName);
    return true;
}

QList<Entry> Store::adoptLostWork()
{
    if (!open())
        return {};
    for (Ended &ended : endedFolders()) {
        bool whole = true;
        for (const Entry &entry : readEntries(ended.folder))
            whole = adopt(ended, entry) && whole;
        // Kept locked until its work is moved, so no other program starting now takes it
        // too; a folder whose work did not all move stays for the next start.
        if (whole)
            finish(ended);
    }
    QList<Entry> adopted;
    for (const Entry &entry : readEntries(m_ownFolder)) {
        if (entry.name.startsWith(QString::fromLatin1(LostPrefix)))
            adopted << entry;
    }
    std::stable_sort(adopted.begin(), adopted.end(),
        [](const Entry &a, const Entry &b) { return a.writtenAt < b.writtenAt; });
    return adopted;
}

void Store::discardLostWork()
{
    const QList<QByteArray> offered = std::exchange(m_offered, {});
    if (!open())
        return;
    for (Ended &ended : endedFolders()) {
        if (!offered.contains(ended.name))
            continue;
        for (const Entry &entry : readEntries(ended.folder)) {
            if (removeCopy(ended.folder, entry.name.toLatin1()))
                qCWarning(lcRecovery).noquote()
                    << "removed the lost copy" << entry.contentPath << "- the pupil said no to it";
        }
        finish(ended);
    }
}

QList<Entry> readEntries(const SafeFolder &folder)
{
    QList<Entry> out;
    QMap<QByteArray, Node> contents;
    QList<Node> descriptions;
    for (const Node &node : folder.list()) {
        if (node.kind == NodeKind::Link) {
            if (folder.remove(node.name))
                qCWarning(lcRecovery).noquote()
                    << "removed the link" << folder.pathOf(node.name) << "as a link, not followed";
            continue;
        }
        const FileName name = splitName(node.name);
        if (node.kind != NodeKind::File || !isCopyName(name.base))
            continue;
        if ('.' + name.extension == DescriptionSuffix)
            descriptions << node;
        else if (!kindOfContent(name.extension).isEmpty())
            contents.insert(node.name, node);
    }
    for (const Node &node : descriptions) {
        if (std::optional<Entry> entry = readDescription(folder, node, contents)) {
            contents.remove(QFile::encodeName(QFileInfo(entry->contentPath).fileName()));
            out << std::move(*entry);
        }
    }
    // The work is in the content: a description cut short or damaged does not lose it.
    for (const Node &node : std::as_const(contents)) {
        const FileName name = splitName(node.name);
        Entry entry;
        entry.name = QString::fromLatin1(name.base);
        entry.kind = kindOfContent(name.extension);
        entry.contentPath = folder.pathOf(node.name);
        entry.writtenAt = node.modifiedMs;
        qCWarning(lcRecovery).noquote()
            << "no description to read for" << entry.contentPath << "- offered by its content alone";
        out << entry;
    }
    return out;
}

QList<Entry> readEntries(const QString &folder)
{
    return readEntries(SafeFolder::open(folder));
}

} // namespace recovery
