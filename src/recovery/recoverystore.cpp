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
#include <QSaveFile>

#include <algorithm>

namespace recovery {

namespace {

constexpr int DefaultDelayMs = 30000;
int g_delayMs = 0;
const QString LockName = QStringLiteral("instance.lock");
const QString DescriptionSuffix = QStringLiteral(".json");

std::unique_ptr<Store> &theStore()
{
    static std::unique_ptr<Store> store;
    return store;
}

// Removes the folder of an ended program, whose lock we hold: the lock goes first, as
// QLockFile removes its own file.
void removeEnded(const QString &path, QMap<QString, std::shared_ptr<QLockFile>> &locks)
{
    if (const auto lock = locks.take(path))
        lock->unlock();
    QDir(path).removeRecursively();
}

bool writeWhole(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit();
}

} // namespace

Store &Store::instance()
{
    auto &store = theStore();
    if (!store)
        store.reset(new Store);
    return *store;
}

void Store::reset()
{
    theStore().reset();
}

QString Store::folder()
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    // The XDG rule: a relative path is invalid and is ignored.
    if (state.isEmpty() || QDir::isRelativePath(state))
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/tremidia/recovery");
}

int Store::delayMs()
{
    if (g_delayMs > 0)
        return g_delayMs;
    bool ok = false;
    const int fromEnvironment = qEnvironmentVariableIntValue("TREMIDIA_RECOVERY_DELAY_MS", &ok);
    return ok && fromEnvironment > 0 ? std::min(fromEnvironment, DefaultDelayMs) : DefaultDelayMs;
}

void Store::setDelayMs(int ms)
{
    g_delayMs = ms;
}

Store::Store() = default;

Store::~Store()
{
    // A program that ends with nothing unsaved leaves nothing behind; one that ends with
    // work neither saved nor discarded leaves it for the next start.
    if (m_usable && readEntries(m_own).isEmpty()) {
        m_lock.reset();
        QDir(m_own).removeRecursively();
    }
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
    if (!QDir().mkpath(top)) {
        failedOnce(QStringLiteral("cannot make %1").arg(top));
        return false;
    }
    // The process id makes the name unique among the programs running now; the time,
    // among all that ever ran (ids come round again).
    const QString own = top + u'/' + QString::number(QCoreApplication::applicationPid()) + u'-'
        + QString::number(QDateTime::currentMSecsSinceEpoch());
    if (!QDir().mkpath(own)) {
        failedOnce(QStringLiteral("cannot make %1").arg(own));
        return false;
    }
    auto lock = std::make_unique<QLockFile>(own + u'/' + LockName);
    if (!lock->tryLock(0)) {
        failedOnce(QStringLiteral("cannot lock %1").arg(own));
        QDir(own).removeRecursively();
        return false;
    }
    m_lock = std::move(lock);
    m_own = own;
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
    const QString contentName = name + u'.' + extension;
    QJsonObject description;
    description.insert(QStringLiteral("kind"), kind);
    description.insert(QStringLiteral("content"), contentName);
    description.insert(QStringLiteral("details"), details);
    description.insert(QStringLiteral("writtenAt"), QDateTime::currentMSecsSinceEpoch());
    if (!writeWhole(m_own + u'/' + contentName, content)
        || !writeWhole(m_own + u'/' + name + DescriptionSuffix, QJsonDocument(description).toJson())) {
        failedOnce(QStringLiteral("cannot write in %1").arg(m_own));
        return false;
    }
    return true;
}

void Store::remove(const QString &name)
{
    if (!m_usable)
        return;
    // The description goes first: without it, a content file left behind is nothing.
    QFile::remove(m_own + u'/' + name + DescriptionSuffix);
    QDir own(m_own);
    for (const QString &file : own.entryList({name + QStringLiteral(".*")}, QDir::Files))
        own.remove(file);
}

QList<Entry> Store::ownEntries()
{
    return open() ? readEntries(m_own) : QList<Entry>();
}

QStringList Store::endedFolders(QMap<QString, std::shared_ptr<QLockFile>> *locks)
{
    QStringList out;
    const QDir top(folder());
    const QString ownName = QFileInfo(m_own).fileName();
    for (const QString &name : top.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        if (name == ownName)
            continue;
        const QString path = top.filePath(name);
        // A lock whose process no longer runs is stale, and taking it removes it; a
        // folder without a lock file at all was never finished by its program.
        auto lock = std::make_shared<QLockFile>(path + u'/' + LockName);
        if (!lock->tryLock(0))
            continue;
        locks->insert(path, lock);
        out << path;
    }
    return out;
}

QList<Entry> Store::lostWork()
{
    QMap<QString, std::shared_ptr<QLockFile>> locks;
    QList<Entry> out;
    for (const QString &path : endedFolders(&locks)) {
        const QList<Entry> entries = readEntries(path);
        // A program killed with nothing unsaved leaves an empty folder: nothing to ask.
        if (entries.isEmpty())
            removeEnded(path, locks);
        out += entries;
    }
    std::stable_sort(
        out.begin(), out.end(), [](const Entry &a, const Entry &b) { return a.writtenAt < b.writtenAt; });
    return out;
}

QList<Entry> Store::adoptLostWork()
{
    if (!open())
        return {};
    QMap<QString, std::shared_ptr<QLockFile>> locks;
    const QStringList ended = endedFolders(&locks);
    int serial = 0;
    for (const QString &path : ended) {
        bool whole = true;
        for (const Entry &entry : readEntries(path)) {
            const QString name = QStringLiteral("lost-%1").arg(++serial);
            const QString contentName = name + u'.' + QFileInfo(entry.contentPath).suffix();
            QJsonObject description;
            description.insert(QStringLiteral("kind"), entry.kind);
            description.insert(QStringLiteral("content"), contentName);
            description.insert(QStringLiteral("details"), entry.details);
            description.insert(QStringLiteral("writtenAt"), entry.writtenAt);
            // Copied, not moved, so that a failure halfway leaves the old folder whole.
            QFile::remove(m_own + u'/' + contentName);
            if (!QFile::copy(entry.contentPath, m_own + u'/' + contentName)
                || !writeWhole(
                    m_own + u'/' + name + DescriptionSuffix, QJsonDocument(description).toJson())) {
                whole = false;
                failedOnce(QStringLiteral("cannot take over %1").arg(path));
            }
        }
        // Kept locked until its work is copied, so no other program starting now takes
        // it too.
        if (whole)
            removeEnded(path, locks);
    }
    QList<Entry> adopted;
    for (const Entry &entry : readEntries(m_own)) {
        if (entry.name.startsWith(QStringLiteral("lost-")))
            adopted << entry;
    }
    std::stable_sort(adopted.begin(), adopted.end(),
        [](const Entry &a, const Entry &b) { return a.writtenAt < b.writtenAt; });
    return adopted;
}

void Store::discardLostWork()
{
    QMap<QString, std::shared_ptr<QLockFile>> locks;
    const QStringList ended = endedFolders(&locks);
    for (const QString &path : ended)
        removeEnded(path, locks);
}

QList<Entry> readEntries(const QString &folder)
{
    QList<Entry> out;
    const QDir dir(folder);
    for (const QString &name :
        dir.entryList({QStringLiteral("*") + DescriptionSuffix}, QDir::Files, QDir::Name)) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QJsonObject description = QJsonDocument::fromJson(file.readAll()).object();
        const QString content = description.value(QStringLiteral("content")).toString();
        // Only a plain name in the same folder: a description never points elsewhere.
        if (content.isEmpty() || content.contains(u'/') || !dir.exists(content))
            continue;
        Entry entry;
        entry.name = name.chopped(DescriptionSuffix.size());
        entry.kind = description.value(QStringLiteral("kind")).toString();
        entry.contentPath = dir.filePath(content);
        entry.details = description.value(QStringLiteral("details")).toObject();
        entry.writtenAt = qint64(description.value(QStringLiteral("writtenAt")).toDouble());
        out << entry;
    }
    return out;
}

} // namespace recovery
