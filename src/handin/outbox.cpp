#include "outbox.h"

namespace handin {

Outbox::Outbox(Destinations destinations, QString folder, std::function<QDateTime()> now,
    int retryMs, QObject *parent)
    : QObject(parent)
    , m_destinations(std::move(destinations))
    , m_folder(std::move(folder))
    , m_now(std::move(now))
{
    m_retry.setInterval(retryMs);
}

Outbox::~Outbox() = default;

bool Outbox::handIn(const Bundle &)
{
    return false; // TODO
}

void Outbox::resend() {}

int Outbox::waiting() const
{
    return 0;
}

QString Outbox::statusText() const
{
    return m_status;
}

} // namespace handin
