#include "engines.h"

#include "engine.h"

#include <pthread.h>

namespace media {

Engines::Engines(platform::LateThreads &late)
    : m_late(late)
{
}

Engines::~Engines()
{
    stop(std::chrono::milliseconds(StopWaitMs));
}

std::shared_ptr<engine::Mailbox> Engines::start(const QString &file, bool silent)
{
    m_threads.count(); // joins the ones that have ended
    m_mailboxes.removeIf([](const std::weak_ptr<engine::Mailbox> &mailbox) { return mailbox.expired(); });
    auto mailbox = std::make_shared<engine::Mailbox>();
    auto ended = std::make_shared<std::atomic_bool>(false);
    std::thread thread([mailbox, file, silent, ended] {
        // Named, so that a look at the process's threads tells the engines apart.
        pthread_setname_np(pthread_self(), "media engine");
        engine::run(mailbox, file, silent);
        *ended = true;
    });
    m_threads.keep(std::move(thread), std::move(ended));
    m_mailboxes.append(mailbox);
    return mailbox;
}

bool Engines::waitForDropped(std::chrono::milliseconds limit)
{
    return m_threads.waitForAll(limit);
}

bool Engines::stop(std::chrono::milliseconds limit)
{
    // The players that still hold their engines are not asked: the owner is ending.
    for (const std::weak_ptr<engine::Mailbox> &held : std::as_const(m_mailboxes)) {
        if (std::shared_ptr<engine::Mailbox> mailbox = held.lock())
            engine::drop(mailbox);
    }
    m_mailboxes.clear();
    if (m_threads.waitForAll(limit))
        return true;
    m_threads.moveTo(m_late);
    return false;
}

int Engines::threads()
{
    return m_threads.count();
}

} // namespace media
