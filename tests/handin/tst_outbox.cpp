#include "../support/webdavserver.h"

#include "bundle.h"
#include "manifest.h"
#include "outbox.h"

#include <latethreads.h>

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <memory>
#include <optional>

// The outbox against a real WebDAV server (Apache) and a drop folder: a bundle arrives once,
// waits while a destination is away, and goes when it is back, also after a restart.
class tst_Outbox final : public QObject
{
    Q_OBJECT

private:
    platform::LateThreads m_late; // outlives every outbox
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<testing::WebDavServer> m_server;
    std::unique_ptr<handin::Outbox> m_outbox;
    std::optional<QSslConfiguration> m_sslDefaults; // restored after a test that changed them

    static constexpr int WaitMs = 20000;

    QString outboxFolder() const { return m_dir->filePath(QStringLiteral("outbox")); }
    QString dropFolder() const { return m_dir->filePath(QStringLiteral("drop")); }

    static QDateTime tenFortyTwo() { return QDateTime(QDate(2026, 11, 25), QTime(10, 42, 31)); }

    static handin::Bundle bundle(const QString &pupil = QStringLiteral("Μαρία"))
    {
        return handin::makeBundle({pupil, QStringLiteral("Β2")},
            {QStringLiteral("Ιστορία"), 1, QStringLiteral("Αθήνα"), 2, QStringLiteral("Περικλής"), 3,
                QStringLiteral("Η Ακρόπολη")},
            tenFortyTwo(),
            {{QString::fromLatin1(handin::NoteRtfName), QByteArray("{\\rtf1 Η σημείωση}")},
                {handin::drawingName(1), QByteArray(4000, 'p')}});
    }

    void startServer(testing::WebDavServer::Transport transport = testing::WebDavServer::Transport::Http)
    {
        if (!testing::WebDavServer::available())
            QSKIP("apache2 is not installed");
        if (!m_server) {
            m_server = std::make_unique<testing::WebDavServer>(
                QStringLiteral("pupil"), QStringLiteral("secret-1"), transport);
        }
        QString why;
        QVERIFY2(m_server->start(&why), qPrintable(why + m_server->errorLog()));
    }

    handin::Destinations webdav(const QString &password = {}) const
    {
        handin::Destinations destinations;
        destinations.webdav = m_server->url();
        destinations.user = m_server->user();
        destinations.password = password.isEmpty() ? m_server->password() : password;
        return destinations;
    }

    handin::Outbox &makeOutbox(const handin::Destinations &destinations,
        int retryMs = handin::Outbox::RetryMs, int transferTimeoutMs = handin::Outbox::TransferTimeoutMs)
    {
        m_outbox.reset();
        m_outbox = std::make_unique<handin::Outbox>(
            destinations, m_late, outboxFolder(), [] { return tenFortyTwo(); }, retryMs, nullptr, transferTimeoutMs);
        return *m_outbox;
    }

    // What the outbox folder holds besides nothing: bundles, records, locks, parts.
    QStringList outboxFiles() const
    {
        return QDir(outboxFolder()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    static QStringList filesIn(const QString &folder)
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    static QByteArray readFile(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
    }

    void cleanup()
    {
        m_outbox.reset();
        m_server.reset(); // stops Apache, also after a failed check
        m_dir.reset();
        if (m_sslDefaults)
            QSslConfiguration::setDefaultConfiguration(*m_sslDefaults);
        m_sslDefaults.reset();
    }

    void handsInToTheServer()
    {
        startServer();
        handin::Outbox &outbox = makeOutbox(webdav());
        QCOMPARE(outbox.statusText(), QString());
        QSignalSpy delivered(&outbox, &handin::Outbox::delivered);
        QSignalSpy status(&outbox, &handin::Outbox::statusChanged);
        const handin::Bundle sent = bundle();
        QVERIFY(outbox.handIn(sent));
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(delivered.first().at(0).toString(), sent.fileName);

        QCOMPARE(m_server->files(), QStringList {sent.fileName});
        const QByteArray arrived = m_server->read(sent.fileName);
        QCOMPARE(handin::sha256Hex(arrived), handin::sha256Hex(sent.zip));
        QCOMPARE(outbox.statusText(), QStringLiteral("Παραδόθηκε στις 10:42"));
        QCOMPARE(status.last().at(0).toString(), QStringLiteral("Παραδόθηκε στις 10:42"));
        QCOMPARE(outbox.waiting(), 0);
        QCOMPARE(outboxFiles(), QStringList());

        // Nothing more goes out on the next tries.
        outbox.resend();
        QTest::qWait(300);
        QCOMPARE(m_server->files().size(), 1);
    }

    void wrongPasswordWaits()
    {
        startServer();
        handin::Outbox &outbox = makeOutbox(webdav(QStringLiteral("not-the-password")));
        QSignalSpy queued(&outbox, &handin::Outbox::queued);
        const handin::Bundle sent = bundle();
        QVERIFY(outbox.handIn(sent));
        QVERIFY(queued.wait(WaitMs));
        QCOMPARE(queued.first().at(0).toString(), sent.fileName);
        QCOMPARE(
            outbox.statusText(), QStringLiteral("Σε αναμονή: ο διακομιστής παράδοσης δεν είναι διαθέσιμος"));
        QCOMPARE(outbox.waiting(), 1);
        QVERIFY(m_server->files().isEmpty());

        // The technician mends the password: the next start sends it.
        handin::Outbox &mended = makeOutbox(webdav());
        QSignalSpy delivered(&mended, &handin::Outbox::delivered);
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(m_server->files(), QStringList {sent.fileName});
        QCOMPARE(m_server->read(sent.fileName), sent.zip);
    }

    void serverDownThenUpArrivesOnce()
    {
        startServer();
        m_server->stop();
        handin::Outbox &outbox = makeOutbox(webdav(), 400);
        QSignalSpy queued(&outbox, &handin::Outbox::queued);
        QSignalSpy delivered(&outbox, &handin::Outbox::delivered);
        const handin::Bundle sent = bundle();
        QVERIFY(outbox.handIn(sent));
        QVERIFY(queued.wait(WaitMs));
        QCOMPARE(
            outbox.statusText(), QStringLiteral("Σε αναμονή: ο διακομιστής παράδοσης δεν είναι διαθέσιμος"));
        QCOMPARE(outbox.waiting(), 1);
        QVERIFY(delivered.isEmpty());

        // Back: the next timed try hands it in, once.
        startServer();
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(delivered.size(), 1);
        QCOMPARE(outbox.statusText(), QStringLiteral("Παραδόθηκε στις 10:42"));
        QTest::qWait(1500); // a few more timed tries
        QCOMPARE(m_server->files(), QStringList {sent.fileName});
        QCOMPARE(handin::sha256Hex(m_server->read(sent.fileName)), handin::sha256Hex(sent.zip));
        QCOMPARE(delivered.size(), 1);
        QCOMPARE(outbox.waiting(), 0);
    }

    void aNewOutboxSendsWhatWaits()
    {
        handin::Destinations destinations;
        destinations.folder = dropFolder(); // not there yet: the share is not mounted
        {
            handin::Outbox &outbox = makeOutbox(destinations);
            QSignalSpy queued(&outbox, &handin::Outbox::queued);
            QVERIFY(outbox.handIn(bundle(QStringLiteral("Άννα"))));
            QVERIFY(outbox.handIn(bundle(QStringLiteral("Νίκος"))));
            QTRY_COMPARE_WITH_TIMEOUT(queued.size(), 2, WaitMs);
            QCOMPARE(
                outbox.statusText(), QStringLiteral("Σε αναμονή: ο φάκελος παράδοσης δεν είναι διαθέσιμος"));
            QCOMPARE(outbox.waiting(), 2);
        }
        m_outbox.reset();
        QCOMPARE(filesIn(outboxFolder()).size(), 2);

        QVERIFY(QDir().mkpath(dropFolder()));
        handin::Outbox &next = makeOutbox(destinations);
        QSignalSpy delivered(&next, &handin::Outbox::delivered);
        QCOMPARE(next.waiting(), 2);
        QTRY_COMPARE_WITH_TIMEOUT(delivered.size(), 2, WaitMs);
        QCOMPARE(filesIn(dropFolder()).size(), 2);
        QCOMPARE(next.waiting(), 0);
        QCOMPARE(next.statusText(), QStringLiteral("Παραδόθηκε στις 10:42"));
        QCOMPARE(outboxFiles(), QStringList());
    }

    void bothDestinationsGetIt()
    {
        startServer();
        QVERIFY(QDir().mkpath(dropFolder()));
        handin::Destinations destinations = webdav();
        destinations.folder = dropFolder();
        handin::Outbox &outbox = makeOutbox(destinations);
        QSignalSpy delivered(&outbox, &handin::Outbox::delivered);
        const handin::Bundle sent = bundle();
        QVERIFY(outbox.handIn(sent));
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(m_server->files(), QStringList {sent.fileName});
        QCOMPARE(filesIn(dropFolder()), QStringList {sent.fileName});
        QCOMPARE(readFile(QDir(dropFolder()).filePath(sent.fileName)), sent.zip);
        QCOMPARE(m_server->read(sent.fileName), sent.zip);
    }

    void aDestinationThatHasItIsNotSentAgain()
    {
        startServer();
        m_server->stop();
        QVERIFY(QDir().mkpath(dropFolder()));
        handin::Destinations destinations = webdav();
        destinations.folder = dropFolder();
        const handin::Bundle sent = bundle();
        {
            handin::Outbox &outbox = makeOutbox(destinations);
            QSignalSpy queued(&outbox, &handin::Outbox::queued);
            QVERIFY(outbox.handIn(sent));
            QVERIFY(queued.wait(WaitMs));
            QCOMPARE(filesIn(dropFolder()), QStringList {sent.fileName});
            // Tried again while the server is still away: the folder is not written again.
            outbox.resend();
            QVERIFY(queued.wait(WaitMs));
            QCOMPARE(filesIn(dropFolder()), QStringList {sent.fileName});
        }
        m_outbox.reset();
        startServer();
        handin::Outbox &next = makeOutbox(destinations);
        QSignalSpy delivered(&next, &handin::Outbox::delivered);
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(filesIn(dropFolder()), QStringList {sent.fileName});
        QCOMPARE(m_server->files(), QStringList {sent.fileName});
        QCOMPARE(outboxFiles(), QStringList());
    }

    void aNameTakenOnTheServerGetsAFreshOne()
    {
        startServer();
        const handin::Bundle sent = bundle();
        QFile taken(QDir(m_server->uploadFolder()).filePath(sent.fileName));
        QVERIFY(taken.open(QIODevice::WriteOnly));
        taken.write("someone else's");
        taken.close();

        handin::Outbox &outbox = makeOutbox(webdav());
        QSignalSpy delivered(&outbox, &handin::Outbox::delivered);
        QVERIFY(outbox.handIn(sent));
        QVERIFY(delivered.wait(WaitMs));
        const QStringList files = m_server->files();
        QCOMPARE(files.size(), 2);
        QCOMPARE(m_server->read(sent.fileName), QByteArray("someone else's"));
        const QString other = files.at(0) == sent.fileName ? files.at(1) : files.at(0);
        QCOMPARE(m_server->read(other), sent.zip);
    }

    // A try whose answer was lost left the whole bundle on the server: it is not sent again.
    void aBundleTheServerHasAlreadyIsHandedIn()
    {
        startServer();
        const handin::Bundle sent = bundle();
        QFile there(QDir(m_server->uploadFolder()).filePath(sent.fileName));
        QVERIFY(there.open(QIODevice::WriteOnly));
        there.write(sent.zip);
        there.close();

        handin::Outbox &outbox = makeOutbox(webdav());
        QSignalSpy delivered(&outbox, &handin::Outbox::delivered);
        QVERIFY(outbox.handIn(sent));
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(m_server->files(), QStringList {sent.fileName});
        QCOMPARE(outbox.waiting(), 0);
    }

    void destroyedWhileSendingKeepsTheBundle()
    {
        startServer();
        const handin::Bundle sent = bundle();
        {
            handin::Outbox &outbox = makeOutbox(webdav());
            QVERIFY(outbox.handIn(sent));
            m_outbox.reset(); // before any answer
        }
        QCOMPARE(filesIn(outboxFolder()), QStringList {sent.fileName});
        handin::Outbox &next = makeOutbox(webdav());
        QSignalSpy delivered(&next, &handin::Outbox::delivered);
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(m_server->files(), QStringList {sent.fileName});
    }

    void aServerThatNeverAnswersTimesOut()
    {
        // Takes the connection and the upload, and says nothing.
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
        QList<QTcpSocket *> held;
        connect(&silent, &QTcpServer::newConnection, &silent, [&] {
            while (QTcpSocket *socket = silent.nextPendingConnection())
                held.append(socket);
        });
        handin::Destinations destinations;
        destinations.webdav = QUrl(QStringLiteral("http://127.0.0.1:%1/drop").arg(silent.serverPort()));
        destinations.user = QStringLiteral("pupil");
        handin::Outbox &outbox = makeOutbox(destinations, handin::Outbox::RetryMs, 800);
        QSignalSpy queued(&outbox, &handin::Outbox::queued);
        QVERIFY(outbox.handIn(bundle()));
        QVERIFY(queued.wait(WaitMs));
        QVERIFY(!held.isEmpty());
        QCOMPARE(
            outbox.statusText(), QStringLiteral("Σε αναμονή: ο διακομιστής παράδοσης δεν είναι διαθέσιμος"));
        QCOMPARE(outbox.waiting(), 1);
    }

    void aServerWhoseCertificateIsNotTrustedWaits()
    {
        if (!testing::WebDavServer::tlsAvailable())
            QSKIP("mod_ssl or openssl is not installed");
        startServer(testing::WebDavServer::Transport::Https);
        handin::Outbox &outbox = makeOutbox(webdav());
        QSignalSpy queued(&outbox, &handin::Outbox::queued);
        const handin::Bundle sent = bundle();
        QVERIFY(outbox.handIn(sent));
        QVERIFY(queued.wait(WaitMs));
        QVERIFY(m_server->files().isEmpty());
        QCOMPARE(
            outbox.statusText(), QStringLiteral("Σε αναμονή: ο διακομιστής παράδοσης δεν είναι διαθέσιμος"));

        // Once the machine trusts the school's certificate, the next start hands it in.
        const QList<QSslCertificate> certificates = QSslCertificate::fromData(m_server->certificate());
        QCOMPARE(certificates.size(), 1);
        m_sslDefaults = QSslConfiguration::defaultConfiguration();
        QSslConfiguration trusting = *m_sslDefaults;
        trusting.addCaCertificates(certificates);
        QSslConfiguration::setDefaultConfiguration(trusting);
        handin::Outbox &next = makeOutbox(webdav());
        QSignalSpy delivered(&next, &handin::Outbox::delivered);
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(m_server->files(), QStringList {sent.fileName});
        QCOMPARE(m_server->read(sent.fileName), sent.zip);
    }

    // Two programs of one user share the outbox: a bundle one of them is sending is left
    // alone by the other.
    void aBundleAnotherProgramSendsIsLeftAlone()
    {
        const handin::Bundle sent = bundle();
        makeOutbox({}).handIn(sent);
        m_outbox.reset();
        QLockFile other(QDir(outboxFolder()).filePath(sent.fileName + QStringLiteral(".lock")));
        QVERIFY(other.tryLock(0));

        QVERIFY(QDir().mkpath(dropFolder()));
        handin::Destinations destinations;
        destinations.folder = dropFolder();
        handin::Outbox &outbox = makeOutbox(destinations);
        QSignalSpy delivered(&outbox, &handin::Outbox::delivered);
        QTest::qWait(300);
        QVERIFY(filesIn(dropFolder()).isEmpty());
        QCOMPARE(outbox.waiting(), 1);

        other.unlock();
        outbox.resend();
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(filesIn(dropFolder()), QStringList {sent.fileName});
    }

    void aLockLeftByAProgramThatDiedIsTaken()
    {
        const handin::Bundle sent = bundle();
        makeOutbox({}).handIn(sent);
        m_outbox.reset();
        const QString lockPath = QDir(outboxFolder()).filePath(sent.fileName + QStringLiteral(".lock"));
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            QLockFile lock(lockPath);
            ::_exit(lock.tryLock(0) ? 0 : 1); // and never unlocks
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        QVERIFY(QFile::exists(lockPath));

        QVERIFY(QDir().mkpath(dropFolder()));
        handin::Destinations destinations;
        destinations.folder = dropFolder();
        handin::Outbox &outbox = makeOutbox(destinations);
        QSignalSpy delivered(&outbox, &handin::Outbox::delivered);
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(filesIn(dropFolder()), QStringList {sent.fileName});
        QCOMPARE(outboxFiles(), QStringList());
    }

    void withoutDestinationItWaits()
    {
        handin::Outbox &outbox = makeOutbox({});
        QSignalSpy queued(&outbox, &handin::Outbox::queued);
        QVERIFY(outbox.handIn(bundle()));
        QCOMPARE(queued.size(), 1);
        QCOMPARE(outbox.statusText(), QStringLiteral("Σε αναμονή: ο φάκελος παράδοσης δεν είναι διαθέσιμος"));
        QCOMPARE(outbox.waiting(), 1);
    }

    void anOutboxThatCannotKeepSaysSo()
    {
        QFile blocker(outboxFolder());
        QVERIFY(blocker.open(QIODevice::WriteOnly)); // a file where the folder should be
        blocker.close();
        handin::Outbox &outbox = makeOutbox({});
        QVERIFY(!outbox.handIn(bundle()));
        QVERIFY(!outbox.handIn(handin::Bundle {QStringLiteral("x.zip"), {}}));
        QCOMPARE(outbox.waiting(), 0);
    }

    void outboxFollowsTheStateFolder()
    {
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_dir->path()));
        QCOMPARE(handin::Outbox::defaultFolder(), m_dir->filePath(QStringLiteral("tremidia/outbox")));
        qputenv("XDG_STATE_HOME", "relative/path");
        QCOMPARE(handin::Outbox::defaultFolder(),
            QDir::homePath() + QStringLiteral("/.local/state/tremidia/outbox"));
        qunsetenv("XDG_STATE_HOME");
    }
};

QTEST_GUILESS_MAIN(tst_Outbox)
#include "tst_outbox.moc"
