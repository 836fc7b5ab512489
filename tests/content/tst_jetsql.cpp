#include "contentsql.h"

#include <jetsql.h>

#include <QTest>

using content::jetToSqlite;

class tst_JetSql : public QObject
{
    Q_OBJECT

private slots:
    void theProgramsQueriesPassUnchanged_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::newRow("scenarios") << contentsql::scenarios(2);
        QTest::newRow("all scenarios") << contentsql::scenarios(0);
        QTest::newRow("activities") << contentsql::activities(10);
        QTest::newRow("resources") << contentsql::resources(102);
        QTest::newRow("actions document") << contentsql::actionsDocument(101);
        QTest::newRow("tree") << contentsql::treeActivities();
        QTest::newRow("tile") << contentsql::tile(204);
        QTest::newRow("picture") << contentsql::picturePath(204);
        QTest::newRow("text") << contentsql::textPath(204);
        QTest::newRow("text source") << contentsql::textSource(204);
        QTest::newRow("comments") << contentsql::commentHotWords(204);
        QTest::newRow("index terms") << contentsql::indexHotWords(204);
        QTest::newRow("authors") << contentsql::authors();
        QTest::newRow("museums") << contentsql::museums();
        contentsql::SearchCriteria c;
        c.keyword = QStringLiteral("7");
        c.author = QStringLiteral("Αριστοτέλης");
        QTest::newRow("search") << contentsql::search(c);
        QTest::newRow("index types") << contentsql::indexTypes();
        QTest::newRow("terms") << contentsql::terms(4);
        QTest::newRow("term") << contentsql::term(3);
    }

    void theProgramsQueriesPassUnchanged()
    {
        QFETCH(QString, sql);
        QCOMPARE(jetToSqlite(sql), sql);
    }

    void doubleQuotedStringsBecomeSingleQuoted()
    {
        QCOMPARE(jetToSqlite(QStringLiteral("SELECT * FROM R WHERE Book = \"Αθηναίων Πολιτεία\"")),
            QStringLiteral("SELECT * FROM R WHERE Book = 'Αθηναίων Πολιτεία'"));
        QCOMPARE(jetToSqlite(QStringLiteral("SELECT \"it's \"\"so\"\"\"")),
            QStringLiteral("SELECT 'it''s \"so\"'"));
    }

    void singleQuotedStringsAreLeftAlone()
    {
        const QString sql
            = QStringLiteral("SELECT * FROM R WHERE Museum = 'Μουσεί'' & \"Αγοράς\" #1/2/2000# True'");
        QCOMPARE(jetToSqlite(sql), sql);
    }

    void dateLiteralsBecomeIsoText()
    {
        QCOMPARE(
            jetToSqlite(QStringLiteral("WHERE d > #12/31/1999#")), QStringLiteral("WHERE d > '1999-12-31'"));
        QCOMPARE(jetToSqlite(QStringLiteral("WHERE d = #2001-02-03 14:05:06#")),
            QStringLiteral("WHERE d = '2001-02-03T14:05:06'"));
        QCOMPARE(jetToSqlite(QStringLiteral("WHERE d = #1/2/2003 2:05 PM#")),
            QStringLiteral("WHERE d = '2003-01-02T14:05:00'"));
    }

    void ampersandConcatenates()
    {
        QCOMPARE(jetToSqlite(QStringLiteral("SELECT Author & ', ' & Book FROM R")),
            QStringLiteral("SELECT Author || ', ' || Book FROM R"));
    }

    void booleanWordsBecomeNumbers()
    {
        QCOMPARE(jetToSqlite(QStringLiteral("WHERE Shown = True OR Hidden=false")),
            QStringLiteral("WHERE Shown = -1 OR Hidden=0"));
        // A column or table called True keeps its name.
        QCOMPARE(jetToSqlite(QStringLiteral("SELECT T.True FROM T")), QStringLiteral("SELECT T.True FROM T"));
        QCOMPARE(jetToSqlite(QStringLiteral("SELECT [True] FROM T")), QStringLiteral("SELECT [True] FROM T"));
    }

    void distinctRowIsDistinct()
    {
        QCOMPARE(jetToSqlite(QStringLiteral("SELECT DISTINCTROW Author FROM R")),
            QStringLiteral("SELECT DISTINCT Author FROM R"));
    }

    void likeWildcardsAreTranslated()
    {
        QCOMPARE(
            jetToSqlite(QStringLiteral("WHERE Oros LIKE 'Μ*ς?'")), QStringLiteral("WHERE Oros LIKE 'Μ%ς_'"));
        QCOMPARE(
            jetToSqlite(QStringLiteral("WHERE Oros Like \"*ος\"")), QStringLiteral("WHERE Oros Like '%ος'"));
        // Outside a pattern a star is a star.
        QCOMPARE(jetToSqlite(QStringLiteral("SELECT * FROM R WHERE a = '*'")),
            QStringLiteral("SELECT * FROM R WHERE a = '*'"));
    }

    void unterminatedTextIsLeftForTheEngineToReport()
    {
        QCOMPARE(jetToSqlite(QStringLiteral("SELECT 'abc")), QStringLiteral("SELECT 'abc"));
        QCOMPARE(jetToSqlite(QStringLiteral("SELECT \"abc")), QStringLiteral("SELECT \"abc"));
    }
};

QTEST_GUILESS_MAIN(tst_JetSql)
#include "tst_jetsql.moc"
