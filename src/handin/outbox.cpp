#include "outbox.h"

#include "logging.h"
#include "manifest.h"

#include <latethreads.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSaveFile>
#include <QSet>
#include <QThread>

namespace handin {

namespace {

constexpr char SentSuffix[] = ".sent";
constexpr char LockSuffix[] = ".lock";
// A name taken on the server gets this many fresh names in one try.
constexpr int MaxRenames = 3;

QString folderKey(const QString &folder)
{
    return QStringLiteral("folder:") + QDir::cleanPath(folder);
}

QString webdavKey(const QUrl &url)
{
    return QStringLiteral("webdav:") + url.toString(QUrl::RemoveUserInfo);
}

// Which destinations have a bundle: the side file <name>.sent.
struct Record
{
    QSet<QString> delivered;
    QString webdavName; // empty: the bundle's own name

    static Record read(const QString &path)
    {
        Record record;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return record;
        const QJsonObject root = QJsonDocument::fromJson(file.read(1 << 16)).object();
        for (const QJsonValue &value : root.value(QStringLiteral("delivered")).toArray())
            record.delivered.insert(value.toString());
        const QString name = root.value(QStringLiteral("webdavName")).toString();
        if (isPlainEntryName(name))
            record.webdavName = name;
        return record;
    }

    bool write(const QString &path) const
    {
        QJsonArray keys;
        QStringList sorted(delivered.cbegin(), delivered.cend());
        sorted.sort();
        for (const QString &key : sorted)
            keys.append(key);
        QJsonObject root {{QStringLiteral("delivered"), keys}};
        if (!webdavName.isEmpty())
            root.insert(QStringLiteral("webdavName"), webdavName);
        // Written aside and renamed over the old record, so that a crash leaves one whole.
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(root).toJson()) < 0
            || !file.commit()) {
            qCWarning(lcHandin) << "cannot record which destinations have" << path << file.errorString();
            return false;
        }
        return true;
    }
};

// Adds `key` to the record on disk, whoever wrote it last.
bool recordDelivered(const QString &path, const QString &key, std::mutex &mutex)
{
    const std::lock_guard guard(mutex);
    Record record = Record::read(path);
    record.delivered.insert(key);
    return record.write(path);
}

// One bundle for the drop folder, as the folder's thread gets it.
struct FolderJob
{
    QString folder;
    QString fileName;
    QByteArray zip;
    QString recordPath;
    // The bundle's lock, shared with its round: a write stuck in the share keeps it even
    // after the outbox is gone, so no other outbox sends the bundle meanwhile.
    std::shared_ptr<QLockFile> lock;
    std::shared_ptr<std::mutex> recordMutex;
    std::shared_ptr<const std::atomic_bool> leaving;
};

// Lives on the drop folder's thread; its answers reach the outbox queued.
class FolderWorker final : public QObject
{
    Q_OBJECT

public:
    explicit FolderWorker(FolderDelivery deliver)
        : m_deliver(std::move(deliver))
    {
    }

    void deliver(FolderJob job)
    {
        if (job.leaving->load())
            return; // the outbox is gone: the bundle waits for the next start
        QString why;
        const bool delivered
            = m_deliver(job.folder, job.fileName, job.zip, &why) == Delivery::Delivered;
        // Recorded here, right after the rename, and not by the outbox: a write that ends
        // after the outbox is gone (the share came back after the program had stopped
        // waiting) would otherwise be sent again at the next start, and a folder never
        // replaces, so the teacher would find the bundle twice under two random parts.
        // Should even this record fail, the bundle goes once more: a duplicate, never a loss.
        if (delivered)
            recordDelivered(job.recordPath, folderKey(job.folder), *job.recordMutex);
        job.lock.reset(); // the round, or nobody, has it now
        emit finished(job.fileName, delivered, why);
    }

signals:
    void finished(const QString &fileName, bool delivered, const QString &why);

private:
    FolderDelivery m_deliver;
};

} // namespace

struct Outbox::Round
{
    QString fileName;
    std::shared_ptr<QLockFile> lock;
    Record record;
    int pending = 0; // requests to the server and drop folder writes not answered yet
    int renames = 0;
    QString compared; // the name on the server last compared with the bundle
    bool folderFailed = false;
    bool webdavFailed = false;
    bool folderUnderWay = false; // a write into the drop folder not answered yet

    Round(const QString &name, const QString &lockPath)
        : fileName(name)
        , lock(std::make_shared<QLockFile>(lockPath))
    {
    }

    QString remoteName() const { return record.webdavName.isEmpty() ? fileName : record.webdavName; }
};

QString Outbox::defaultFolder()
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (state.isEmpty() || QDir::isRelativePath(state))
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return state + QStringLiteral("/tremidia/outbox");
}

QString Outbox::deliveredText(const QDateTime &at)
{
    return QStringLiteral("Παραδόθηκε στις ") + at.toString(QStringLiteral("HH:mm"));
}

QString Outbox::folderWaitingText()
{
    return QStringLiteral("Σε αναμονή: ο φάκελος παράδοσης δεν είναι διαθέσιμος");
}

QString Outbox::serverWaitingText()
{
    return QStringLiteral("Σε αναμονή: ο διακομιστής παράδοσης δεν είναι διαθέσιμος");
}

Outbox::Outbox(Destinations destinations, platform::LateThreads &late, QString folder,
    std::function<QDateTime()> now, int retryMs, QObject *parent, int transferTimeoutMs, FolderDelivery deliver)
    : QObject(parent)
    , m_destinations(std::move(destinations))
    , m_folder(folder.isEmpty() ? defaultFolder() : QDir::cleanPath(folder))
    , m_now(now ? std::move(now) : [] { return QDateTime::currentDateTime(); })
    , m_transferTimeoutMs(transferTimeoutMs)
    , m_network(new QNetworkAccessManager(this))
    , m_late(late)
{
    if (!m_destinations.folder.isEmpty()) {
        m_folderThread = new QThread;
        m_folderThread->setObjectName(QStringLiteral("handin-folder"));
        auto *worker = new FolderWorker(deliver ? std::move(deliver) : FolderDelivery([](const QString &to,
            const QString &fileName, const QByteArray &zip, QString *why) {
            return deliverToFolder(to, fileName, zip, why);
        }));
        worker->moveToThread(m_folderThread);
        m_folderWorker = worker;
        connect(m_folderThread, &QThread::finished, worker, &QObject::deleteLater);
        connect(worker, &FolderWorker::finished, this, &Outbox::folderFinished);
        m_folderThread->start();
    }

    if (QDir().mkpath(m_folder))
        QFile::setPermissions(
            m_folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    else
        qCWarning(lcHandin) << "cannot make the outbox" << m_folder;
    tidy();

    m_retry.setInterval(retryMs);
    connect(&m_retry, &QTimer::timeout, this, &Outbox::resend);
    m_retry.start();
    // Once the event loop runs, so that whoever made the outbox hears what the first try did.
    QTimer::singleShot(0, this, &Outbox::resend);
}

Outbox::~Outbox()
{
    leave(std::chrono::milliseconds(FolderExitWaitMs));
}

bool Outbox::writingToFolder() const
{
    for (const auto &[name, round] : m_rounds) {
        if (round->folderUnderWay)
            return true;
    }
    return false;
}

void Outbox::leave(std::chrono::milliseconds limit)
{
    m_retry.stop();
    m_leaving->store(true);
    // Aborting a reply finishes it at once; nothing of ours may hear that any more.
    for (QNetworkReply *reply : m_network->findChildren<QNetworkReply *>()) {
        disconnect(reply, nullptr, this, nullptr);
        reply->abort();
    }
    if (m_folderThread) {
        disconnect(m_folderWorker, nullptr, this, nullptr);
        m_folderThread->quit();
        std::unique_ptr<QThread> thread(m_folderThread);
        m_folderThread = nullptr;
        m_folderWorker = nullptr;
        // A share that hangs must not keep the program from closing: the write is given a
        // moment, then its thread goes to the late threads' owner, which joins it once the
        // share lets it go. It still records what it wrote, and unlocks its bundle then.
        if (!thread->wait(QDeadlineTimer(limit))) {
            qCWarning(lcHandin) << "a write into the drop folder is still under way; left to end on its own";
            m_late.keep(std::move(thread));
        }
    }
    m_rounds.clear(); // unlocks what no folder write holds: the bundles wait for the next try
}

QString Outbox::path(const QString &fileName) const
{
    return m_folder + u'/' + fileName;
}

QStringList Outbox::bundles() const
{
    QStringList names;
    const QStringList found = QDir(m_folder).entryList({QStringLiteral("*.zip")}, QDir::Files, QDir::Name);
    for (const QString &name : found) {
        if (isPlainEntryName(name))
            names.append(name);
    }
    return names;
}

// What an earlier run left: the record of a bundle that went (the program ended between
// removing the one and the other), and a half-written bundle of a run that died.
void Outbox::tidy()
{
    QDir dir(m_folder);
    for (const QString &name : dir.entryList({QStringLiteral("*.zip.sent")}, QDir::Files)) {
        if (!dir.exists(name.chopped(qstrlen(SentSuffix))))
            dir.remove(name);
    }
    const QDateTime dayAgo = QDateTime::currentDateTimeUtc().addDays(-1);
    const QFileInfoList parts
        = dir.entryInfoList({QStringLiteral(".tremidia-*.part")}, QDir::Files | QDir::Hidden);
    for (const QFileInfo &part : parts) {
        if (part.lastModified().toUTC() < dayAgo)
            dir.remove(part.fileName());
    }
}

bool Outbox::handIn(const Bundle &bundle)
{
    if (bundle.zip.isEmpty() || !isPlainEntryName(bundle.fileName)) {
        qCWarning(lcHandin) << "nothing to hand in as" << bundle.fileName;
        return false;
    }
    QDir().mkpath(m_folder);
    QString why, kept;
    if (deliverToFolder(m_folder, bundle.fileName, bundle.zip, &why, &kept) != Delivery::Delivered) {
        qCWarning(lcHandin).noquote() << "the outbox cannot keep" << bundle.fileName << "-" << why;
        return false;
    }
    send(kept);
    return true;
}

void Outbox::resend()
{
    for (const QString &name : bundles())
        send(name);
}

int Outbox::waiting() const
{
    return static_cast<int>(bundles().size());
}

QString Outbox::statusText() const
{
    return m_status;
}

void Outbox::setStatus(const QString &text)
{
    if (text == m_status)
        return;
    m_status = text;
    emit statusChanged(m_status);
}

void Outbox::send(const QString &fileName)
{
    if (m_rounds.count(fileName))
        return; // already on its way
    if (m_leaving->load())
        return;
    auto round = std::make_unique<Round>(fileName, path(fileName) + QLatin1String(LockSuffix));
    round->lock->setStaleLockTime(0); // stale only when its program is gone
    if (!round->lock->tryLock(0))
        return; // another program of this user is sending it
    QFile file(path(fileName));
    if (!file.open(QIODevice::ReadOnly))
        return; // handed in meanwhile by that other program
    const QByteArray zip = file.readAll();
    file.close();
    round->record = Record::read(path(fileName) + QLatin1String(SentSuffix));
    Round &r = *round;
    m_rounds.emplace(fileName, std::move(round));

    const QString folder = m_destinations.folder;
    if (m_folderWorker && !r.record.delivered.contains(folderKey(folder))) {
        FolderJob job {folder, fileName, zip, path(fileName) + QLatin1String(SentSuffix), r.lock,
            m_recordMutex, m_leaving};
        auto *worker = static_cast<FolderWorker *>(m_folderWorker);
        ++r.pending;
        r.folderUnderWay = true;
        QMetaObject::invokeMethod(
            worker, [worker, job = std::move(job)]() mutable { worker->deliver(std::move(job)); },
            Qt::QueuedConnection);
        // A hung share never answers: the pupil is told that the work waits rather than
        // seeing it go on being handed in for ever. The write goes on, and may still end it.
        QTimer::singleShot(m_transferTimeoutMs, this, [this, fileName] { folderIsSlow(fileName); });
    }
    if (m_destinations.webdav.isValid() && !r.record.delivered.contains(webdavKey(m_destinations.webdav)))
        put(r, zip);
    if (r.pending == 0)
        finish(fileName);
}

void Outbox::folderFinished(const QString &fileName, bool delivered, const QString &why)
{
    const auto found = m_rounds.find(fileName);
    if (found == m_rounds.end())
        return;
    Round &round = *found->second;
    --round.pending;
    round.folderUnderWay = false;
    if (delivered) {
        round.record.delivered.insert(folderKey(m_destinations.folder)); // on disk already
    } else {
        round.folderFailed = true;
        qCWarning(lcHandin).noquote() << "the drop folder did not take" << fileName << "-" << why;
    }
    if (round.pending == 0)
        finish(fileName);
}

void Outbox::folderIsSlow(const QString &fileName)
{
    const auto found = m_rounds.find(fileName);
    if (found == m_rounds.end() || !found->second->folderUnderWay)
        return;
    qCWarning(lcHandin).noquote() << "the drop folder has not answered for" << m_transferTimeoutMs
                                  << "ms while taking" << fileName;
    emit queued(fileName, folderWaitingText());
    setStatus(folderWaitingText());
}

// The record as this round knows it, merged with what the folder's thread wrote meanwhile.
bool Outbox::saveRecord(Round &round)
{
    const QString recordPath = path(round.fileName) + QLatin1String(SentSuffix);
    const std::lock_guard guard(*m_recordMutex);
    round.record.delivered.unite(Record::read(recordPath).delivered);
    return round.record.write(recordPath);
}

QNetworkRequest Outbox::request(const QString &remoteName) const
{
    QUrl url = m_destinations.webdav;
    QString base = url.path(QUrl::FullyDecoded);
    if (!base.endsWith(u'/'))
        base += u'/';
    url.setPath(base + remoteName, QUrl::DecodedMode);

    QNetworkRequest request(url);
    if (!m_destinations.user.isEmpty() || !m_destinations.password.isEmpty()) {
        request.setRawHeader("Authorization",
            "Basic " + (m_destinations.user + u':' + m_destinations.password).toUtf8().toBase64());
    }
    // A redirect would send the work elsewhere than the technician set; it counts as a failure.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setTransferTimeout(m_transferTimeoutMs);
    return request;
}

void Outbox::watch(QNetworkReply *reply, const QString &fileName)
{
    connect(reply, &QNetworkReply::sslErrors, this, [fileName](const QList<QSslError> &errors) {
        for (const QSslError &error : errors)
            qCWarning(lcHandin).noquote() << "TLS refused for" << fileName << "-" << error.errorString();
    });
}

void Outbox::put(Round &round, const QByteArray &zip)
{
    QNetworkRequest put = request(round.remoteName());
    put.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/zip"));
    // Never over a file that is there, whoever put it.
    put.setRawHeader("If-None-Match", "*");
    QNetworkReply *reply = m_network->put(put, zip);
    ++round.pending;
    const QString fileName = round.fileName;
    watch(reply, fileName);
    connect(reply, &QNetworkReply::finished, this,
        [this, reply, fileName, zip] { putFinished(reply, fileName, zip); });
}

// The name is taken on the server. It may be this very bundle, from a try whose answer
// never came (a timeout after the server had it all): then it is handed in already.
void Outbox::compareTaken(Round &round, const QByteArray &zip)
{
    round.compared = round.remoteName();
    QNetworkReply *reply = m_network->get(request(round.compared));
    ++round.pending;
    const QString fileName = round.fileName;
    watch(reply, fileName);
    // Anything longer than the bundle is not the bundle; it is not read to its end.
    connect(
        reply, &QNetworkReply::downloadProgress, reply, [reply, limit = zip.size()](qint64 received, qint64) {
            if (received > limit)
                reply->abort();
        });
    connect(reply, &QNetworkReply::finished, this,
        [this, reply, fileName, zip] { takenFinished(reply, fileName, zip); });
}

void Outbox::putFinished(QNetworkReply *reply, const QString &fileName, const QByteArray &zip)
{
    reply->deleteLater();
    const auto found = m_rounds.find(fileName);
    if (found == m_rounds.end())
        return;
    Round &round = *found->second;
    --round.pending;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 201 || status == 204) {
        round.record.delivered.insert(webdavKey(m_destinations.webdav));
        saveRecord(round);
    } else if (status == 412 && round.compared != round.remoteName()) {
        compareTaken(round, zip);
        return;
    } else if (status == 412) {
        takeFreshName(round, zip);
        return;
    } else {
        round.webdavFailed = true;
        qCWarning(lcHandin).noquote()
            << "the WebDAV share did not take" << fileName << "- HTTP" << status << reply->errorString();
    }
    if (round.pending == 0)
        finish(fileName);
}

void Outbox::takenFinished(QNetworkReply *reply, const QString &fileName, const QByteArray &zip)
{
    reply->deleteLater();
    const auto found = m_rounds.find(fileName);
    if (found == m_rounds.end())
        return;
    Round &round = *found->second;
    --round.pending;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // A drop share usually lets nobody read; then the name is someone else's as far as we know.
    if (status == 200 && reply->readAll() == zip) {
        round.record.delivered.insert(webdavKey(m_destinations.webdav));
        saveRecord(round);
        if (round.pending == 0)
            finish(fileName);
        return;
    }
    takeFreshName(round, zip);
}

// Another bundle has this name on the server: ours goes under a fresh one, which is
// remembered so that the next try asks for the same.
void Outbox::takeFreshName(Round &round, const QByteArray &zip)
{
    if (round.renames >= MaxRenames) {
        round.webdavFailed = true;
        qCWarning(lcHandin).noquote()
            << "every name tried on the WebDAV share is taken for" << round.fileName;
        if (round.pending == 0)
            finish(round.fileName);
        return;
    }
    ++round.renames;
    round.record.webdavName = withFreshRandomPart(round.remoteName());
    saveRecord(round);
    put(round, zip);
}

void Outbox::finish(const QString &fileName)
{
    const auto found = m_rounds.find(fileName);
    if (found == m_rounds.end())
        return;
    const std::unique_ptr<Round> round = std::move(found->second);
    m_rounds.erase(found);

    const Record &record = round->record;
    const bool folderHasIt
        = m_destinations.folder.isEmpty() || record.delivered.contains(folderKey(m_destinations.folder));
    const bool webdavHasIt
        = !m_destinations.webdav.isValid() || record.delivered.contains(webdavKey(m_destinations.webdav));
    if (m_destinations.any() && folderHasIt && webdavHasIt) {
        // The bundle first, then its record: a crash between the two leaves a record that
        // tidy() removes, never a bundle that would go twice.
        if (!QFile::remove(path(fileName)))
            qCWarning(lcHandin) << "cannot take" << fileName << "out of the outbox";
        QFile::remove(path(fileName) + QLatin1String(SentSuffix));
        round->lock->unlock();
        m_lastDelivered = m_now();
        emit delivered(fileName, m_lastDelivered);
        if (waiting() == 0)
            setStatus(deliveredText(m_lastDelivered));
        return;
    }
    round->lock->unlock();
    if (!m_destinations.any())
        qCWarning(lcHandin).noquote() << "no destination is set:" << fileName << "waits in" << m_folder;
    const QString reason
        = round->folderFailed || !m_destinations.any() ? folderWaitingText() : serverWaitingText();
    emit queued(fileName, reason);
    setStatus(reason);
}

} // namespace handin

#include "outbox.moc"
