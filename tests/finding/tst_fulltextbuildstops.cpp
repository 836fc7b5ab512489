// The text search's index is built in the session's background: closing the window, or
// ending the session, while it is built stops the build, and nothing comes back to the
// window. A text file that is a named pipe holds the build at that source until the test
// writes it, so the test knows where the build stands.

#include "../hotwords/testcontent.h"
#include "../support/testsession.h"

#include <errorpolicy.h>
#include <findingwindows.h>
#include <frmfulltextsearch.h>
#include <fulltextindex.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

// Writes a text into the pipe, once the build opens it to read.
void feedPipe(const QString &pipe)
{
    const int fd = ::open(QFile::encodeName(pipe).constData(), O_WRONLY);
    if (fd < 0)
        return;
    const QByteArray rtf = "{\\rtf1\\ansi Naxos.\\par}";
    [[maybe_unused]] const auto written = ::write(fd, rtf.constData(), size_t(rtf.size()));
    ::close(fd);
}

} // namespace

class tst_FullTextBuildStops : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_cache;
    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<testing::TestSession> m_s;
    QString m_content;

    Session &session() { return *m_s->session; }
    QString pipe() const { return m_data->filePath(u"piges/t2.rtf"_s); }

    // The index files of the test's content in the cache, whole or being written.
    QStringList cacheFiles() const
    {
        const QFileInfo index(fulltext::cacheFileFor(m_content));
        return index.dir().entryList({index.fileName() + u'*'}, QDir::Files);
    }

    // Opens the text search and waits until its build stands at the pipe, the second source.
    frmFullTextSearch *openAtThePipe()
    {
        auto *search = session().window<frmFullTextSearch>(Session::Window::FullTextSearch);
        if (!search || !search->prgIndex->isVisible())
            return nullptr;
        if (!QTest::qWaitFor([&] { return search->prgIndex->value() == 1; }, 10000))
            return nullptr;
        return search;
    }

    // Opens the text search with the pipe written at once, as a file is read.
    frmFullTextSearch *openWithThePipeWritten()
    {
        std::thread feeder([pipe = pipe()] { feedPipe(pipe); });
        frmFullTextSearch *search = nullptr;
        platform::guarded(
            [&] { search = session().window<frmFullTextSearch>(Session::Window::FullTextSearch); });
        if (!search || !search->prgIndex->isVisible()) {
            // No build reads the pipe: a reader of the test's own lets the feeder go.
            ::close(::open(QFile::encodeName(pipe()).constData(), O_RDONLY | O_NONBLOCK));
        }
        feeder.join();
        return search;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_cache.isValid());
        qputenv("XDG_CACHE_HOME", m_cache.path().toUtf8());
        // A pipe whose reader has gone fails the feeder's write, and ends nothing else.
        ::signal(SIGPIPE, SIG_IGN);
    }

    void init()
    {
        // Three texts: the second is the pipe.
        m_data = std::make_unique<QTemporaryDir>();
        QVERIFY(m_data->isValid());
        QVERIFY(QDir(m_data->path()).mkpath(u"piges"_s));
        m_content = m_data->filePath(u"content.sqlite"_s);
        testcontent::Builder b(m_content);
        b.textResource(1, u"t1.rtf"_s, u"Α"_s);
        b.textResource(2, u"t2.rtf"_s, u"Β"_s);
        b.textResource(3, u"t3.rtf"_s, u"Γ"_s);
        b.close();
        writeFile(m_data->filePath(u"piges/t1.rtf"_s), "{\\rtf1\\ansi Delos.\\par}");
        writeFile(m_data->filePath(u"piges/t3.rtf"_s), "{\\rtf1\\ansi Paros.\\par}");
        QCOMPARE(::mkfifo(QFile::encodeName(pipe()).constData(), 0600), 0);

        m_s = std::make_unique<testing::TestSession>();
        finding::registerFindingWindows(session());
        Session::Content &content = session().content();
        content.databasePath = m_content;
        content.dataFolder = m_data->path();
        content.database = content::Database::OpenDatabase(m_content);
    }

    void cleanup()
    {
        m_s.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_data.reset();
    }

    void closingTheWindowStopsTheBuildAndNothingComesBack()
    {
        QPointer<frmFullTextSearch> search = openAtThePipe();
        QVERIFY(search);
        QCOMPARE(session().background().running(), 1);
        search->close();
        // The build goes on to its next source, and stops there.
        feedPipe(pipe());
        QVERIFY(session().background().waitForDone(10000));
        QCoreApplication::processEvents();
        QVERIFY(!search || !search->indexReady());
        QCOMPARE(cacheFiles(), QStringList());
        QVERIFY(!fulltext::isCurrent(m_content));
        QVERIFY(m_s->host->boxes.isEmpty());
        QVERIFY(!session().window(Session::Window::FullTextSearch, false));
    }

    void endingTheSessionStopsTheBuild()
    {
        QVERIFY(openAtThePipe());
        // The pipe is written once the session's end has told the build to stop.
        std::thread feeder([pipe = pipe()] {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            feedPipe(pipe);
        });
        m_s.reset();
        feeder.join();
        QCOMPARE(cacheFiles(), QStringList());
        QVERIFY(!fulltext::isCurrent(m_content));
    }

    void aResultThatArrivesAfterTheWindowClosedIsDropped()
    {
        // The build ends, and its result waits for the event loop.
        QPointer<frmFullTextSearch> search = openWithThePipeWritten();
        QVERIFY(search);
        QVERIFY(session().background().waitForDone(10000));
        QCOMPARE(cacheFiles().size(), 1);
        // Words typed: an index that came would search them at once.
        search->txtWords->setText(u"Naxos"_s);
        QSignalSpy searched(search.data(), &frmFullTextSearch::searched);
        search->close();
        QCoreApplication::processEvents();
        QCOMPARE(searched.count(), 0);
        QVERIFY(!search || !search->indexReady());
    }

    void anUndisturbedBuildIsDelivered()
    {
        // The same, left open: the index comes to the window.
        QPointer<frmFullTextSearch> search = openWithThePipeWritten();
        QVERIFY(search);
        QTRY_VERIFY_WITH_TIMEOUT(search->indexReady(), 10000);
        QVERIFY(!search->prgIndex->isVisible());
    }
};

QTEST_MAIN(tst_FullTextBuildStops)
#include "tst_fulltextbuildstops.moc"
