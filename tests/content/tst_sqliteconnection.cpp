#include <sqliteconnection.h>

#include <sqlite3.h>

#include <QTemporaryDir>
#include <QTest>

using content::sqlite::Connection;
using content::sqlite::Error;

class tst_SqliteConnection : public QObject
{
    Q_OBJECT

private slots:
    void memoryDatabaseRunsStatementsAndReturnsRows()
    {
        auto db = Connection::openMemory();
        db->execute(QStringLiteral("CREATE TABLE t (i INT, r REAL, s TEXT, b BLOB, n TEXT);"
                                   "INSERT INTO t VALUES (7, 2.5, 'Αθήνα', x'00ff', NULL)"));
        auto stmt = db->prepare(QStringLiteral("SELECT i, r, s, b, n FROM t"));
        QCOMPARE(stmt->columnCount(), 5);
        QCOMPARE(stmt->columnName(2), QStringLiteral("s"));
        QVERIFY(stmt->step());
        QCOMPARE(stmt->value(0), QVariant(7));
        QCOMPARE(stmt->value(1), QVariant(2.5));
        QCOMPARE(stmt->value(2), QVariant(QStringLiteral("Αθήνα")));
        QCOMPARE(stmt->value(3), QVariant(QByteArray("\x00\xff", 2)));
        QVERIFY(stmt->value(4).isNull());
        QVERIFY(!stmt->step());
    }

    void emptyTextIsNotNull()
    {
        auto db = Connection::openMemory();
        auto stmt = db->prepare(QStringLiteral("SELECT '', NULL"));
        QVERIFY(stmt->step());
        QVERIFY(!stmt->value(0).isNull());
        QCOMPARE(stmt->value(0).toString(), QString());
        QVERIFY(stmt->value(1).isNull());
    }

    void wideIntegersStayWhole()
    {
        auto db = Connection::openMemory();
        auto stmt = db->prepare(QStringLiteral("SELECT 9000000000"));
        QVERIFY(stmt->step());
        QCOMPARE(stmt->value(0).toLongLong(), 9000000000LL);
    }

    void bindingsReachTheQueryAndResetClearsThem()
    {
        auto db = Connection::openMemory();
        auto stmt = db->prepare(QStringLiteral("SELECT ?, ?, ?, ?"));
        stmt->bind(1, 42);
        stmt->bind(2, QStringLiteral("Μουσεί' Αρχαίας Αγοράς"));
        stmt->bind(3, QVariant());
        stmt->bind(4, QByteArray("ab"));
        QVERIFY(stmt->step());
        QCOMPARE(stmt->value(0), QVariant(42));
        QCOMPARE(stmt->value(1).toString(), QStringLiteral("Μουσεί' Αρχαίας Αγοράς"));
        QVERIFY(stmt->value(2).isNull());
        QCOMPARE(stmt->value(3).toByteArray(), QByteArray("ab"));
        stmt->reset();
        QVERIFY(stmt->step());
        QVERIFY(stmt->value(0).isNull());
    }

    void badSqlThrowsWithSqlitesMessage()
    {
        auto db = Connection::openMemory();
        try {
            db->prepare(QStringLiteral("SELECT * FROM nowhere"));
            QFAIL("no error");
        } catch (const Error &e) {
            QCOMPARE(e.code(), SQLITE_ERROR);
            QVERIFY(e.message().contains(QStringLiteral("no such table")));
        }
        QVERIFY_THROWS_EXCEPTION(Error, db->execute(QStringLiteral("CREATE TABLE")));
    }

    void missingFileFailsToOpenReadOnly()
    {
        QTemporaryDir dir;
        QVERIFY_THROWS_EXCEPTION(
            Error, Connection(dir.filePath(QStringLiteral("none.sqlite")), SQLITE_OPEN_READONLY));
    }

    void statementMayOutliveNothingButClosesCleanly()
    {
        // The connection closes with _v2, so a statement finalized after it is harmless.
        auto db = Connection::openMemory();
        auto stmt = db->prepare(QStringLiteral("SELECT 1"));
        QVERIFY(stmt->step());
        db.reset();
        stmt.reset();
    }

    void fileDatabaseKeepsItsContent()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("a.sqlite"));
        {
            Connection db(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
            db.execute(QStringLiteral("CREATE TABLE t (x); INSERT INTO t VALUES (1)"));
        }
        Connection db(path, SQLITE_OPEN_READONLY);
        auto stmt = db.prepare(QStringLiteral("SELECT x FROM t"));
        QVERIFY(stmt->step());
        QCOMPARE(stmt->value(0), QVariant(1));
        QVERIFY_THROWS_EXCEPTION(Error, db.execute(QStringLiteral("INSERT INTO t VALUES (2)")));
    }

    void originOfAResultColumnIsKnown()
    {
        auto db = Connection::openMemory();
        db->execute(QStringLiteral("CREATE TABLE a (id INT); CREATE TABLE b (id INT)"));
        auto stmt = db->prepare(QStringLiteral("SELECT a.id, b.id FROM a, b"));
        QCOMPARE(stmt->columnName(0), QStringLiteral("id"));
        QCOMPARE(stmt->columnTableName(1), QStringLiteral("b"));
        QCOMPARE(stmt->columnOriginName(1), QStringLiteral("id"));
    }
};

QTEST_GUILESS_MAIN(tst_SqliteConnection)
#include "tst_sqliteconnection.moc"
