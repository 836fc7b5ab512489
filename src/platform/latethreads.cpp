#include "latethreads.h"

#include "logging.h"

#include <QDeadlineTimer>
#include <QThread>

#include <cstdio>
#include <cstdlib>

namespace platform {

namespace {

// How often a wait looks whether the kept threads have ended.
constexpr auto Poll = std::chrono::milliseconds(5);

} // namespace

LateThreads::LateThreads() = default;

LateThreads::~LateThreads()
{
    std::lock_guard lock(m_mutex);
    for (Entry &entry : m_entries)
        entry.join();
    m_entries.clear();
}

void LateThreads::keep(std::thread thread, std::shared_ptr<const std::atomic_bool> ended)
{
    auto shared = std::make_shared<std::thread>(std::move(thread));
    add({[ended] { return ended->load(); }, [shared] { shared->join(); }});
}

void LateThreads::keep(std::unique_ptr<QThread> thread)
{
    std::shared_ptr<QThread> shared(std::move(thread));
    add({[shared] { return shared->isFinished(); }, [shared] { shared->wait(); }});
}

void LateThreads::add(Entry entry)
{
    std::lock_guard lock(m_mutex);
    m_entries.append(std::move(entry));
}

bool LateThreads::reap()
{
    std::lock_guard lock(m_mutex);
    for (qsizetype i = 0; i < m_entries.size();) {
        if (m_entries[i].ended()) {
            m_entries[i].join();
            m_entries.removeAt(i);
        } else {
            ++i;
        }
    }
    return m_entries.isEmpty();
}

bool LateThreads::waitForAll(std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    while (!reap()) {
        if (deadline.hasExpired())
            return false;
        std::this_thread::sleep_for(Poll);
    }
    return true;
}

int LateThreads::count()
{
    reap();
    std::lock_guard lock(m_mutex);
    return int(m_entries.size());
}

void LateThreads::moveTo(LateThreads &owner)
{
    QList<Entry> entries;
    {
        std::lock_guard lock(m_mutex);
        entries.swap(m_entries);
    }
    for (Entry &entry : entries)
        owner.add(std::move(entry));
}

int LateThreads::finish(int code, std::chrono::milliseconds limit)
{
    if (waitForAll(limit))
        return code;
    qCWarning(lcErrors) << count()
                        << "thread(s) still stuck inside a library at the end; the process ends around them";
    std::fflush(nullptr);
    std::_Exit(code);
}

} // namespace platform
