#pragma once

#include "bundle.h"
#include "destinations.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

class QNetworkAccessManager;

namespace handin {

// The bundles waiting to be handed in, in $XDG_STATE_HOME/tremidia/outbox/ (or
// ~/.local/state/tremidia/outbox/). A bundle is written there first, then sent to every
// destination; it leaves the outbox only when all of them have it. What could not be sent
// is tried again at the next start (the session makes the outbox, which tries at once)
// and every two minutes while the program runs. A bundle reaches each destination once:
// the outbox remembers which destinations have it.
// A network failure is never an error box: it is a state, told through the signals.
class Outbox final : public QObject
{
    Q_OBJECT

public:
    static constexpr int RetryMs = 2 * 60 * 1000;

    // `folder` empty: the user's state folder. `now` gives the time the status shows.
    Outbox(Destinations destinations, QString folder = {},
        std::function<QDateTime()> now = {}, int retryMs = RetryMs, QObject *parent = nullptr);
    ~Outbox() override;

    const Destinations &destinations() const { return m_destinations; }
    QString folder() const { return m_folder; }

    // Keeps the bundle in the outbox and starts sending it. False when the outbox itself
    // cannot keep it (then nothing was handed in, and the caller says so).
    bool handIn(const Bundle &bundle);

    // Tries every waiting bundle again now.
    void resend();

    // Bundles still waiting.
    int waiting() const;

    // «Παραδόθηκε στις 10:42» or «Σε αναμονή: ο φάκελος παράδοσης δεν είναι διαθέσιμος»;
    // empty before the first hand-in of this run.
    QString statusText() const;

signals:
    // Every destination has the bundle.
    void delivered(const QString &fileName, const QDateTime &at);
    // At least one destination did not take it; it waits in the outbox.
    void queued(const QString &fileName, const QString &reason);
    void statusChanged(const QString &text);

private:
    Destinations m_destinations;
    QString m_folder;
    std::function<QDateTime()> m_now;
    QTimer m_retry;
    QNetworkAccessManager *m_network = nullptr;
    QString m_status;
};

} // namespace handin
