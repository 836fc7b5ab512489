#include "bundle.h"
#include "destinations.h"
#include "outbox.h"

#include <latethreads.h>

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

using namespace std::chrono_literals;

namespace {

// A drop folder on a share whose server hangs: a write into it blocks until the test lets
// the server answer, then goes on as the real one does.
class HungShare final
{
public:
    handin::FolderDelivery delivery()
    {
        return [this](const QString &folder, const QString &fileName, const QByteArray &zip, QString *why) {
            {
                std::unique_lock lock(m_mutex);
                ++m_entered;
                m_changed.notify_all();
                m_changed.wait(lock, [this] { return m_answering; });
            }
            return handin::deliverToFolder(folder, fileName, zip, why);
        };
    }

    int entered()
    {
        const std::lock_guard lock(m_mutex);
        return m_entered;
    }

    void answer()
    {
        const std::lock_guard lock(m_mutex);
        m_answering = true;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_entered = 0;
    bool m_answering = false;
};

} // namespace

// A drop folder write that never returns freezes nothing, is not waited for at the end, and
// hands the bundle in once however it ends.
class tst_StuckFolder final : public QObject
{
    Q_OBJECT

private:
    static constexpr int WaitMs = 20000;

    // Declared first, so that it outlives the outboxes and the share of each test.
    std::unique_ptr<platform::LateThreads> m_late;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<HungShare> m_share;

    QString outboxFolder() const { return m_dir->filePath(QStringLiteral("outbox")); }
    QString dropFolder() const { return m_dir->filePath(QStringLiteral("drop")); }

    static QDateTime tenFortyTwo() { return QDateTime(QDate(2026, 11, 25), QTime(10, 42, 31)); }

    static handin::Bundle bundle(const QString &pupil)
    {
        return handin::makeBundle({pupil, QStringLiteral("Β2")},
            {QStringLiteral("Ιστορία"), 1, QStringLiteral("Αθήνα"), 2, QStringLiteral("Περικλής"), 3,
                QStringLiteral("Η Ακρόπολη")},
            tenFortyTwo(), {{QString::fromLatin1(handin::NoteRtfName), QByteArray("{\\rtf1 Η σημείωση}")}});
    }

    handin::Destinations toDropFolder() const
    {
        handin::Destinations destinations;
        destinations.folder = dropFolder();
        return destinations;
    }

    std::unique_ptr<handin::Outbox> makeOutbox(
        handin::FolderDelivery deliver = {}, int transferTimeoutMs = handin::Outbox::TransferTimeoutMs)
    {
        return std::make_unique<handin::Outbox>(toDropFolder(), *m_late, outboxFolder(),
            [] { return tenFortyTwo(); }, handin::Outbox::RetryMs, nullptr, transferTimeoutMs,
            std::move(deliver));
    }

    static QStringList filesIn(const QString &folder)
    {
        return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

private slots:
    void init()
    {
        m_late = std::make_unique<platform::LateThreads>();
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        QVERIFY(QDir().mkpath(dropFolder()));
        m_share = std::make_unique<HungShare>();
    }

    void cleanup()
    {
        // A test that failed half-way still lets its share answer, so the late thread ends.
        if (m_share)
            m_share->answer();
        if (m_late)
            QVERIFY(m_late->waitForAll(std::chrono::milliseconds(WaitMs)));
        m_late.reset();
        m_share.reset();
        m_dir.reset();
    }

    void aHungShareFreezesNothing()
    {
        std::unique_ptr<handin::Outbox> outbox = makeOutbox(m_share->delivery());
        QSignalSpy delivered(outbox.get(), &handin::Outbox::delivered);
        QSignalSpy queued(outbox.get(), &handin::Outbox::queued);
        const handin::Bundle sent = bundle(QStringLiteral("Μαρία"));
        QVERIFY(outbox->handIn(sent));
        QTRY_COMPARE_WITH_TIMEOUT(m_share->entered(), 1, WaitMs);

        // The event loop goes on while the write is stuck in the share.
        bool fired = false;
        QTimer::singleShot(10, outbox.get(), [&] { fired = true; });
        QTRY_VERIFY_WITH_TIMEOUT(fired, WaitMs);

        // A further try does not start a second write into the same share.
        outbox->resend();
        QTest::qWait(100);
        QCOMPARE(m_share->entered(), 1);
        QVERIFY(delivered.isEmpty());
        QVERIFY(queued.isEmpty());
        QVERIFY(!outbox->statusText().startsWith(QStringLiteral("Παραδόθηκε")));
        QCOMPARE(outbox->waiting(), 1);

        // Leaving does not wait for the share: the thread goes to the late threads.
        outbox.reset();
        QCOMPARE(m_late->count(), 1);
        QCOMPARE(filesIn(outboxFolder()),
            (QStringList {sent.fileName, sent.fileName + QStringLiteral(".lock")}));
        QVERIFY(filesIn(dropFolder()).isEmpty());
    }

    // A write the share keeps too long: the pupil reads that the work waits, and when the
    // share answers after all, that it was handed in.
    void aShareThatKeepsTheWriteTooLongIsSaidToWait()
    {
        std::unique_ptr<handin::Outbox> outbox = makeOutbox(m_share->delivery(), 200);
        QSignalSpy delivered(outbox.get(), &handin::Outbox::delivered);
        QSignalSpy queued(outbox.get(), &handin::Outbox::queued);
        const handin::Bundle sent = bundle(QStringLiteral("Γιώργος"));
        QVERIFY(outbox->handIn(sent));
        QVERIFY(queued.wait(WaitMs));
        QCOMPARE(queued.first().at(1).toString(), handin::Outbox::folderWaitingText());
        QCOMPARE(outbox->statusText(), QStringLiteral("Σε αναμονή: ο φάκελος παράδοσης δεν είναι διαθέσιμος"));
        QVERIFY(delivered.isEmpty());
        QCOMPARE(outbox->waiting(), 1);

        m_share->answer();
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(outbox->statusText(), QStringLiteral("Παραδόθηκε στις 10:42"));
        QCOMPARE(filesIn(dropFolder()), QStringList {sent.fileName});
        QCOMPARE(queued.size(), 1);
    }

    // The share answers after the outbox has gone: the bundle arrives once, and the next
    // outbox does not send it again.
    void aWriteEndingLateIsHandedInOnce()
    {
        std::unique_ptr<handin::Outbox> outbox = makeOutbox(m_share->delivery());
        const handin::Bundle sent = bundle(QStringLiteral("Νίκος"));
        QVERIFY(outbox->handIn(sent));
        QTRY_COMPARE_WITH_TIMEOUT(m_share->entered(), 1, WaitMs);
        outbox.reset();
        QCOMPARE(m_late->count(), 1);

        // Another outbox meanwhile leaves alone the bundle the late write holds.
        {
            std::unique_ptr<handin::Outbox> meanwhile = makeOutbox();
            QSignalSpy delivered(meanwhile.get(), &handin::Outbox::delivered);
            QTest::qWait(300);
            QVERIFY(delivered.isEmpty());
            QVERIFY(filesIn(dropFolder()).isEmpty());
            QCOMPARE(meanwhile->waiting(), 1);
        }

        m_share->answer();
        QVERIFY(m_late->waitForAll(std::chrono::milliseconds(WaitMs)));
        QCOMPARE(m_late->count(), 0);
        QCOMPARE(filesIn(dropFolder()), QStringList {sent.fileName});
        // What the late write did is recorded, and the bundle is no longer locked.
        QCOMPARE(filesIn(outboxFolder()),
            (QStringList {sent.fileName, sent.fileName + QStringLiteral(".sent")}));

        std::unique_ptr<handin::Outbox> next = makeOutbox();
        QSignalSpy delivered(next.get(), &handin::Outbox::delivered);
        QVERIFY(delivered.wait(WaitMs));
        QCOMPARE(delivered.first().at(0).toString(), sent.fileName);
        QCOMPARE(next->statusText(), QStringLiteral("Παραδόθηκε στις 10:42"));
        QCOMPARE(filesIn(dropFolder()), QStringList {sent.fileName});
        QVERIFY(filesIn(outboxFolder()).isEmpty());
    }

    // Bundles handed in while the share hangs wait their turn, and all arrive once it answers.
    void bundlesWaitingBehindAHungWriteArrive()
    {
        std::unique_ptr<handin::Outbox> outbox = makeOutbox(m_share->delivery());
        QSignalSpy delivered(outbox.get(), &handin::Outbox::delivered);
        QVERIFY(outbox->handIn(bundle(QStringLiteral("Άννα"))));
        QVERIFY(outbox->handIn(bundle(QStringLiteral("Ελένη"))));
        QTRY_COMPARE_WITH_TIMEOUT(m_share->entered(), 1, WaitMs);
        QCOMPARE(outbox->waiting(), 2);

        m_share->answer();
        QTRY_COMPARE_WITH_TIMEOUT(delivered.size(), 2, WaitMs);
        QCOMPARE(filesIn(dropFolder()).size(), 2);
        QCOMPARE(outbox->waiting(), 0);
        QCOMPARE(outbox->statusText(), QStringLiteral("Παραδόθηκε στις 10:42"));
        outbox.reset();
        QCOMPARE(m_late->count(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_StuckFolder)
#include "tst_stuckfolder.moc"
