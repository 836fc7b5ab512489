#include "fixturefiles.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Run
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

Run run(const QString &program, const QStringList &args)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p.setProcessEnvironment(env);
    p.start(program, args);
    p.waitForFinished(120000);
    return Run {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(),
        p.readAllStandardError()};
}

Run tool(const QStringList &args)
{
    return run(QStringLiteral(TREMIDIA_BINARY_DIR "/bin/tremidia-content"), args);
}

// The lines the tool wrote on stderr, without the platform's own notices.
QList<QByteArray> messages(const QByteArray &err)
{
    QList<QByteArray> out;
    for (const QByteArray &line : err.split('\n')) {
        if (line.startsWith("tremidia-content:"))
            out << line;
    }
    return out;
}

} // namespace

class tst_ContentTool : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString copyOfJet4()
    {
        const QString path = m_dir.filePath(QStringLiteral("copy.mdb"));
        if (!QFile::exists(path))
            QFile::copy(fixtures::jet4(), path);
        return path;
    }

private slots:
    void initTestCase() { REQUIRE_FIXTURE_FILES(); }

    void tablesListsEachTableWithItsRowCount_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("Jet 3") << fixtures::jet3();
        QTest::newRow("Jet 4") << fixtures::jet4();
    }

    void tablesListsEachTableWithItsRowCount()
    {
        QFETCH(QString, file);
        const Run r = tool({QStringLiteral("tables"), file});
        QCOMPARE(r.exitCode, 0);
        const QList<QByteArray> lines = r.out.trimmed().split('\n');
        QCOMPARE(lines.size(), 16);
        QCOMPARE(lines.first(), QByteArray("Themes\t3"));
        QCOMPARE(lines.at(5), QByteArray("Resources\t14"));
        QCOMPARE(lines.last(), QByteArray("RelEuretirioResource\t11"));
    }

    void queryPrintsTsvWithHeaderNullsAndUtf8()
    {
        const Run r = tool({QStringLiteral("query"), fixtures::jet3(),
            QStringLiteral("SELECT ResourceID, Author, Museum FROM Resources WHERE ResourceID IN (201, 202) "
                           "ORDER BY ResourceID")});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(QString::fromUtf8(r.out),
            QStringLiteral("ResourceID\tAuthor\tMuseum\n"
                           "201\t\\N\tΜουσεί' Αρχαίας Αγοράς\n"
                           "202\tΗρόδοτος\t\\N\n"));
    }

    void queryKeepsLineBreaksOfAMemoOnItsRow()
    {
        const Run r = tool({QStringLiteral("query"), fixtures::jet4(),
            QStringLiteral("SELECT Lezanda FROM Resources WHERE ResourceID = 212")});
        QCOMPARE(r.exitCode, 0);
        const QList<QByteArray> lines = r.out.trimmed().split('\n');
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines.at(1).contains("\\r\\n"));
    }

    void importWritesAFileTheShellAndTheToolRead()
    {
        QTemporaryDir dir;
        const QString dest = dir.filePath(QStringLiteral("course.sqlite"));
        const Run r = tool({QStringLiteral("import"), fixtures::jet3(), dest});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(messages(r.err).isEmpty());

        const QString shell = QStandardPaths::findExecutable(QStringLiteral("sqlite3"));
        if (shell.isEmpty())
            QSKIP("the sqlite3 shell is not installed");
        const Run check = run(shell, {dest, QStringLiteral("PRAGMA integrity_check;")});
        QCOMPARE(check.out.trimmed(), QByteArray("ok"));
        const Run count = run(shell, {dest, QStringLiteral("SELECT count(*) FROM Resources;")});
        QCOMPARE(count.out.trimmed(), QByteArray("14"));
        const Run greek = run(shell, {dest, QStringLiteral("SELECT Theme FROM Themes WHERE ThemeID = 2;")});
        QCOMPARE(QString::fromUtf8(greek.out.trimmed()), QStringLiteral("Η αθηναϊκή δημοκρατία"));
        const Run memo = run(
            shell, {dest, QStringLiteral("SELECT length(Epexigisi) FROM Euretirio WHERE EuretirioID = 3;")});
        QCOMPARE(memo.out.trimmed(), QByteArray("6248"));

        const Run again = tool({QStringLiteral("tables"), dest});
        QCOMPARE(again.exitCode, 0);
        QVERIFY(again.out.startsWith("Themes\t3\n"));
        const Run query = tool({QStringLiteral("query"), dest,
            QStringLiteral("SELECT * from Euretirio Where EuretirioID = 22")});
        QCOMPARE(query.exitCode, 0);
        QVERIFY(query.out.contains("Εκκλησία του Δήμου\t\\N\t4"));
    }

    void importAcceptsAnSqliteFileToo()
    {
        QTemporaryDir dir;
        const QString first = dir.filePath(QStringLiteral("first.sqlite"));
        const QString second = dir.filePath(QStringLiteral("second.sqlite"));
        QCOMPARE(tool({QStringLiteral("import"), fixtures::jet4(), first}).exitCode, 0);
        QCOMPARE(tool({QStringLiteral("import"), first, second}).exitCode, 0);
        const Run a = tool({QStringLiteral("tables"), first});
        const Run b = tool({QStringLiteral("tables"), second});
        QCOMPARE(b.exitCode, 0);
        QCOMPARE(b.out, a.out);
    }

    void queryWithNoRowsPrintsTheHeaderOnly()
    {
        const Run r = tool({QStringLiteral("query"), fixtures::jet4(),
            QStringLiteral("SELECT ResourceID, Book FROM Resources WHERE ResourceID = 1")});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.out, QByteArray("ResourceID\tBook\n"));
    }

    void badInputExitsWithOneLineOnStderr_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("missing file")
            << QStringList {QStringLiteral("tables"), QStringLiteral("/nonexistent/x.mdb")};
        QTest::newRow("not content") << QStringList {QStringLiteral("tables"), fixtures::path("README.md")};
        QTest::newRow("bad sql") << QStringList {
            QStringLiteral("query"), fixtures::jet4(), QStringLiteral("SELECT FROM")};
        QTest::newRow("no table") << QStringList {
            QStringLiteral("query"), fixtures::jet4(), QStringLiteral("SELECT * FROM Nowhere")};
        QTest::newRow("too few arguments") << QStringList {QStringLiteral("query"), fixtures::jet4()};
        QTest::newRow("import onto itself")
            << QStringList {QStringLiteral("import"), copyOfJet4(), copyOfJet4()};
    }

    void badInputExitsWithOneLineOnStderr()
    {
        QFETCH(QStringList, args);
        const Run r = tool(args);
        QCOMPARE(r.exitCode, 1);
        QCOMPARE(messages(r.err).size(), 1);
        QVERIFY(r.out.isEmpty());
        if (args.first() == u"import")
            QCOMPARE(fixtures::bytes(args.at(1)), fixtures::bytes(fixtures::jet4()));
    }
};

QTEST_GUILESS_MAIN(tst_ContentTool)
#include "tst_contenttool.moc"
