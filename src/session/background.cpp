#include "background.h"

Background::Background()
{
    // The pool's threads are the session's: none is left idle for later sessions to meet.
    m_pool.setExpiryTimeout(-1);
    m_pool.setMaxThreadCount(std::max(2, QThread::idealThreadCount()));
}

Background::~Background()
{
    cancelAll();
    m_pool.waitForDone();
}

void Background::cancel(const CancelFlag &flag)
{
    if (flag)
        *std::const_pointer_cast<std::atomic_bool>(flag) = true;
}

void Background::cancelAll()
{
    for (const auto &weak : std::as_const(m_flags)) {
        if (const auto flag = weak.lock())
            *flag = true;
    }
    m_flags.clear();
}

bool Background::waitForDone(int milliseconds)
{
    return m_pool.waitForDone(milliseconds);
}

int Background::running() const
{
    return m_pool.activeThreadCount();
}

std::shared_ptr<std::atomic_bool> Background::newFlag()
{
    m_flags.removeIf([](const std::weak_ptr<std::atomic_bool> &weak) { return weak.expired(); });
    auto flag = std::make_shared<std::atomic_bool>(false);
    m_flags.append(flag);
    return flag;
}

void Background::start(std::function<void()> job)
{
    m_pool.start(std::move(job));
}
