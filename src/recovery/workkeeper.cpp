#include "workkeeper.h"

#include "recoverystore.h"

#include <QFile>

namespace recovery {

WorkKeeper::WorkKeeper(
    Store &store, const QString &kind, std::function<std::optional<Work>()> unsaved, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_kind(kind)
    , m_unsaved(std::move(unsaved))
{
    m_due.setSingleShot(true);
    connect(&m_due, &QTimer::timeout, this, &WorkKeeper::keepNow);
    connect(&m_watch, &QTimer::timeout, this, [this] {
        if (!m_version)
            return;
        const qint64 now = m_version();
        if (m_keptVersion && *m_keptVersion == now)
            return;
        keepNow();
        m_keptVersion = now;
    });
}

Store *WorkKeeper::store()
{
    // The session's store, which ends after its windows.
    if (m_name.isEmpty())
        m_name = m_kind + u'-' + QString::number(m_store.nextSerial());
    return &m_store;
}

// The copy stays when the window goes without a save or a discard: the program is
// ending without its windows' questions, and the work is what the next start offers.
WorkKeeper::~WorkKeeper() = default;

void WorkKeeper::changed()
{
    // The first change since the last copy sets the time; later ones ride along, so a
    // pupil who types on still gets a copy every delay.
    if (m_due.isActive())
        return;
    if (Store *kept = store())
        m_due.start(kept->delayMs());
}

void WorkKeeper::saved()
{
    m_due.stop();
    if (m_version)
        m_keptVersion = m_version();
    if (m_haveCopy && store())
        store()->remove(m_name);
    m_haveCopy = false;
}

void WorkKeeper::discarded()
{
    saved();
}

void WorkKeeper::watch(std::function<qint64()> version)
{
    m_version = std::move(version);
    m_keptVersion = m_version();
    if (Store *kept = store())
        m_watch.start(kept->delayMs());
}

void WorkKeeper::stopWatching()
{
    m_watch.stop();
    m_version = nullptr;
}

void WorkKeeper::keepNow()
{
    m_due.stop();
    Store *kept = store();
    if (!kept)
        return;
    const std::optional<Work> work = m_unsaved ? m_unsaved() : std::nullopt;
    if (!work) {
        if (m_haveCopy)
            kept->remove(m_name);
        m_haveCopy = false;
        return;
    }
    if (kept->write(m_name, m_kind, work->content, work->extension, work->details))
        m_haveCopy = true;
}

void WorkKeeper::takeOver(const Entry &lost)
{
    keepNow();
    if (m_haveCopy && store())
        store()->remove(lost.name);
    if (m_version)
        m_keptVersion = m_version();
}

} // namespace recovery
