#pragma once

#include "bundle.h"
#include "destinations.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>

class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;
class QThread;

namespace platform {
class LateThreads;
}

namespace handin {

// Writes a bundle into a drop folder: deliverToFolder, or what a test puts in its place.
using FolderDelivery
    = std::function<Delivery(const QString &folder, const QString &fileName, const QByteArray &zip, QString *why)>;

// The bundles waiting to be handed in, in $XDG_STATE_HOME/tremidia/outbox/ (or
// ~/.local/state/tremidia/outbox/). A bundle is written there first, then sent to every
// destination; it leaves the outbox only when all of them have it. What could not be sent
// is tried again at the next start (the session makes the outbox, which tries at once)
// and every two minutes while the program runs. A bundle reaches each destination once:
// the outbox remembers which destinations have it.
// A network failure is never an error box: it is a state, told through the signals.
//
// On disk, beside each waiting <name>.zip: <name>.zip.sent, which destinations have it
// (and the name the WebDAV share gives it, when the first was taken), and while it is
// being sent <name>.zip.lock, so that two programs of one user never send it at once.
// WebDAV: an HTTP PUT of <WebDAV>/<name> with basic authentication and If-None-Match: *,
// so nothing on the server is ever replaced; only 201 or 204 counts as handed in. A name
// already taken there (412) is read back where the share lets us: the very bundle (from a
// try whose answer was lost) counts as handed in; anything else, or a share that lets
// nobody read, makes the bundle go again at once under a fresh random part.
// Everything runs on the thread that made the outbox, except the writes into the drop
// folder: a hard-mounted share whose server hangs blocks open/write/fsync for ever, so
// they run one at a time on a thread of the outbox's own. The outbox may be destroyed at
// any time: what is being sent is dropped and stays in the outbox for the next try; a
// folder write stuck in the share goes to the late threads and keeps its bundle locked
// until it ends.
class Outbox final : public QObject
{
    Q_OBJECT

public:
    static constexpr int RetryMs = 2 * 60 * 1000;
    // The longest a WebDAV upload may stall before it counts as not handed in.
    static constexpr int TransferTimeoutMs = 30 * 1000;
    // How long leaving waits for a drop folder write under way before it goes on without it.
    static constexpr int FolderExitWaitMs = 200;

    // `late` takes the drop folder's thread when a write is stuck in the share as the
    // outbox goes; it outlives the outbox. `folder` empty: the user's state folder. `now`
    // gives the time the status shows. `transferTimeoutMs`: how long an upload may stall,
    // and how long a drop folder may keep a write before the status says the work waits.
    // `deliver`: writes into the drop folder, on the folder's thread; empty: deliverToFolder.
    Outbox(Destinations destinations, platform::LateThreads &late, QString folder = {},
        std::function<QDateTime()> now = {}, int retryMs = RetryMs, QObject *parent = nullptr,
        int transferTimeoutMs = TransferTimeoutMs, FolderDelivery deliver = {});
    ~Outbox() override;
    Q_DISABLE_COPY_MOVE(Outbox)

    // Drops what is being sent and ends the drop folder's thread, waiting up to `limit`;
    // a thread still writing then goes to the late threads. Nothing is sent afterwards.
    void leave(std::chrono::milliseconds limit);

    const Destinations &destinations() const { return m_destinations; }
    QString folder() const { return m_folder; }

    // Keeps the bundle in the outbox and starts sending it. False when the outbox itself
    // cannot keep it (then nothing was handed in, and the caller says so). `delivered` or
    // `queued` come later, through the event loop (only an outbox without any destination
    // says `queued` before this returns). The bundle may be kept under a fresh random part if its name is
    // in the outbox already; the signals give the name it is kept under.
    bool handIn(const Bundle &bundle);

    // Tries every waiting bundle again now (a bundle on its way is left to finish).
    void resend();

    // Whether a write into the drop folder is under way (it may be stuck in the share).
    bool writingToFolder() const;

    // Bundles still waiting.
    int waiting() const;

    // «Παραδόθηκε στις 10:42» (nothing waits, the last delivered at 10:42 by `now`) or
    // «Σε αναμονή: ο φάκελος παράδοσης δεν είναι διαθέσιμος» (the drop folder, or no
    // destination at all) or «Σε αναμονή: ο διακομιστής παράδοσης δεν είναι διαθέσιμος»
    // (only the WebDAV share); empty until a bundle was handed in or tried this run
    // (the try at construction counts).
    QString statusText() const;

    // The default outbox folder: $XDG_STATE_HOME/tremidia/outbox, or
    // ~/.local/state/tremidia/outbox.
    static QString defaultFolder();

    static QString deliveredText(const QDateTime &at);
    static QString folderWaitingText();
    static QString serverWaitingText();

signals:
    // Every destination has the bundle.
    void delivered(const QString &fileName, const QDateTime &at);
    // At least one destination did not take it; it waits in the outbox. `reason` is the
    // waiting status text; the technical reason goes to the log (tremidia.handin).
    void queued(const QString &fileName, const QString &reason);
    void statusChanged(const QString &text);

private:
    struct Round; // one bundle being sent

    QString path(const QString &fileName) const;
    QStringList bundles() const;
    void tidy();
    void send(const QString &fileName);
    QNetworkRequest request(const QString &remoteName) const;
    void watch(QNetworkReply *reply, const QString &fileName);
    void put(Round &round, const QByteArray &zip);
    void putFinished(QNetworkReply *reply, const QString &fileName, const QByteArray &zip);
    void compareTaken(Round &round, const QByteArray &zip);
    void takenFinished(QNetworkReply *reply, const QString &fileName, const QByteArray &zip);
    void takeFreshName(Round &round, const QByteArray &zip);
    void folderFinished(const QString &fileName, bool delivered, const QString &why);
    bool saveRecord(Round &round);
    void folderIsSlow(const QString &fileName);
    void finish(const QString &fileName);
    void setStatus(const QString &text);

    Destinations m_destinations;
    QString m_folder;
    std::function<QDateTime()> m_now;
    QTimer m_retry;
    int m_transferTimeoutMs;
    QNetworkAccessManager *m_network = nullptr;
    QString m_status;
    QDateTime m_lastDelivered;
    std::map<QString, std::unique_ptr<Round>> m_rounds;

    platform::LateThreads &m_late;
    QThread *m_folderThread = nullptr;
    QObject *m_folderWorker = nullptr; // lives on m_folderThread
    // Set when the outbox goes: the folder writes not started yet are dropped.
    std::shared_ptr<std::atomic_bool> m_leaving = std::make_shared<std::atomic_bool>(false);
    // The records are written from both threads, and by the folder's after the outbox is gone.
    std::shared_ptr<std::mutex> m_recordMutex = std::make_shared<std::mutex>();
};

} // namespace handin
