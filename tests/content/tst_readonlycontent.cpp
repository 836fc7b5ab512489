// Content on a school's shared folder: the content file, its folder and every content
// folder read-only (and, where the test runs as root, read by a user who does not own
// them). Both kinds of content file open, nothing appears beside them, and two programs
// read the same file at once.

#include "../support/processrun.h"
#include "fixturefiles.h"

#include <database.h>
#include <runtimeerror.h>

#include <sqlite3.h>

#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

namespace {

const QString Tool = QStringLiteral(TREMIDIA_BINARY_DIR "/bin/tremidia-content");
const QString SampleFolder = QStringLiteral(TREMIDIA_BINARY_DIR "/sample");

// Every file and folder below root with its size and modification time.
QStringList listing(const QString &root)
{
    QStringList out;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
        QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        out << QStringLiteral("%1 %2 %3")
                   .arg(info.filePath())
                   .arg(info.isDir() ? -1 : info.size())
                   .arg(info.lastModified().toMSecsSinceEpoch());
    }
    out.sort();
    return out;
}

bool copyTree(const QString &from, const QString &to)
{
    if (!QDir().mkpath(to))
        return false;
    QDirIterator it(from, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        const QString target = to + info.filePath().mid(from.size());
        if (info.isDir() ? !QDir().mkpath(target) : !QFile::copy(info.filePath(), target))
            return false;
    }
    return true;
}

// Files r--r--r--, folders r-xr-xr-x: readable and searchable by everyone, writable by
// no one but root.
void makeReadOnly(const QString &root)
{
    const auto files = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther | QFile::ReadUser;
    const auto folders = files | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther | QFile::ExeUser;
    QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    QStringList dirs {root};
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        if (info.isDir())
            dirs << info.filePath();
        else
            QFile::setPermissions(info.filePath(), files);
    }
    for (const QString &dir : std::as_const(dirs))
        QFile::setPermissions(dir, folders);
}

void makeWritable(const QString &root)
{
    QProcess::execute(QStringLiteral("chmod"), {QStringLiteral("-R"), QStringLiteral("u+w"), root});
}

} // namespace

class tst_ReadOnlyContent : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_content; // the shared folder
    QString m_sqlite;
    QString m_jet;
    QStringList m_before;
    bool m_asOtherUser = false;

    // The content tool, as a user who does not own the content where the test can be
    // someone else, as the test's own user otherwise.
    QProcess *startTool(const QStringList &args)
    {
        auto *p = new QProcess(this);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        if (m_asOtherUser) {
            // The test's runtime folder and home belong to root.
            env.remove(QStringLiteral("XDG_RUNTIME_DIR"));
            env.insert(QStringLiteral("HOME"), QStringLiteral("/tmp"));
            p->setProcessEnvironment(env);
            p->start(QStringLiteral("runuser"),
                QStringList {QStringLiteral("-u"), QStringLiteral("nobody"), QStringLiteral("--"), Tool}
                    + args);
        } else {
            p->setProcessEnvironment(env);
            p->start(Tool, args);
        }
        return p;
    }

    ProcessRun finish(QProcess *p)
    {
        const ProcessRun r = finishProcess(*p);
        delete p;
        return r;
    }

    ProcessRun tool(const QStringList &args) { return finish(startTool(args)); }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        QVERIFY2(QFileInfo::exists(SampleFolder + QStringLiteral("/tremidia.sqlite")),
            "the sample course is built first (target sample-content)");
        // The temporary folder itself is private to its owner; the share below it is not.
        QFile::setPermissions(
            m_dir.path(), QFileInfo(m_dir.path()).permissions() | QFile::ExeOther | QFile::ExeGroup);
        m_content = m_dir.filePath(QStringLiteral("share"));
        QVERIFY(copyTree(SampleFolder, m_content));
        QFile::remove(m_content + QStringLiteral("/.built"));
        m_sqlite = m_content + QStringLiteral("/tremidia.sqlite");
        m_jet = m_content + QStringLiteral("/school.mdb");
        QVERIFY(QFile::copy(fixtures::jet4(), m_jet));
        makeReadOnly(m_content);
        m_before = listing(m_content);

        // As root, who may write anywhere, the share is read by a user who does not own it,
        // where that user can reach the tool and the share.
        m_asOtherUser = ::geteuid() == 0
            && !QStandardPaths::findExecutable(QStringLiteral("runuser")).isEmpty()
            && QProcess::execute(QStringLiteral("runuser"),
                   {QStringLiteral("-u"), QStringLiteral("nobody"), QStringLiteral("--"),
                       QStringLiteral("test"), QStringLiteral("-x"), Tool, QStringLiteral("-a"),
                       QStringLiteral("-r"), m_sqlite})
                == 0;
        qInfo(
            "content tool runs as %s", m_asOtherUser ? "nobody, who does not own the content" : "the owner");
    }

    void cleanupTestCase() { makeWritable(m_dir.path()); }

    void cleanup() { QCOMPARE(listing(m_content), m_before); }

    void sqliteContentOpensFromReadOnlyFolder()
    {
        const auto db = content::Database::OpenDatabase(m_sqlite);
        auto rs
            = db->OpenRecordset(QStringLiteral("SELECT Count(*) AS n FROM Themes"), content::dbOpenSnapshot);
        QVERIFY(rs->Fields(QStringLiteral("n")).Value().toInt() > 0);
        rs->Close();
        QVERIFY(!db->tableNames().isEmpty());
    }

    void jetContentIsImportedIntoMemoryFromReadOnlyFolder()
    {
        const auto db = content::Database::OpenDatabase(m_jet);
        QCOMPARE(db->tableNames().size(), fixtures::expectedTables().size());
        // The import lives in memory: the connection's storage is SQLite's in-memory one.
        char *vfs = nullptr;
        QCOMPARE(sqlite3_file_control(db->handle(), "main", SQLITE_FCNTL_VFSNAME, &vfs), SQLITE_OK);
        const QByteArray storage(vfs);
        sqlite3_free(vfs);
        QVERIFY2(storage.startsWith("memdb"), storage.constData());
    }

    void noJournalLockOrTemporaryFileAppearsBesideTheContent()
    {
        {
            const auto db = content::Database::OpenDatabase(m_sqlite);
            auto rs = db->OpenRecordset(QStringLiteral("Resources"));
            rs->MoveLast();
            QVERIFY(rs->RecordCount() > 0);
            // Even an attempt to write leaves the file as it was.
            QVERIFY_THROWS_EXCEPTION(
                platform::RuntimeError, db->OpenRecordset(QStringLiteral("DELETE FROM Themes")));
        }
        QCOMPARE(listing(m_content), m_before);
    }

    void contentToolChecksTheReadOnlyCourse()
    {
        const ProcessRun r = tool({QStringLiteral("check"), m_sqlite});
        QVERIFY2(r.exitCode == 0, r.out + r.err);
    }

    void contentToolImportsJetFromReadOnlyFolder()
    {
        const ProcessRun r = tool({QStringLiteral("tables"), m_jet});
        QVERIFY2(r.exitCode == 0, r.err.constData());
        QCOMPARE(r.out.count('\n'), fixtures::expectedTables().size());
    }

    void twoProgramsReadTheSameContentAtOnce_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("sql");
        QTest::newRow("sqlite") << QStringLiteral("tremidia.sqlite")
                                << QStringLiteral(
                                       "SELECT ResourceID, TextPath FROM Resources ORDER BY ResourceID");
        QTest::newRow("jet") << QStringLiteral("school.mdb")
                             << QStringLiteral("SELECT * FROM Resources ORDER BY ResourceID");
    }

    void twoProgramsReadTheSameContentAtOnce()
    {
        QFETCH(QString, file);
        QFETCH(QString, sql);
        const QStringList args {QStringLiteral("query"), m_content + u'/' + file, sql};
        QProcess *first = startTool(args);
        QProcess *second = startTool(args);
        const ProcessRun a = finish(first);
        const ProcessRun b = finish(second);
        QVERIFY2(a.exitCode == 0, a.err.constData());
        QVERIFY2(b.exitCode == 0, b.err.constData());
        QVERIFY(a.out.count('\n') > 1);
        QCOMPARE(a.out, b.out);
    }
};

QTEST_GUILESS_MAIN(tst_ReadOnlyContent)
#include "tst_readonlycontent.moc"
