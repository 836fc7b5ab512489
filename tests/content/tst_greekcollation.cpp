#include <greekcollation.h>
#include <sqliteconnection.h>

#include <sqlite3.h>

#include <QTest>

using content::compareText;
using content::sqlite::Connection;

namespace {

QStringList column(Connection &db, const QString &sql)
{
    QStringList out;
    auto stmt = db.prepare(sql);
    while (stmt->step())
        out << stmt->value(0).toString();
    return out;
}

std::unique_ptr<Connection> greekDatabase()
{
    auto db = Connection::openMemory();
    if (!content::installGreekNocase(db->handle()))
        return nullptr;
    db->execute(QStringLiteral("CREATE TABLE w (word TEXT COLLATE NOCASE, plain TEXT)"));
    return db;
}

} // namespace

class tst_GreekCollation : public QObject
{
    Q_OBJECT

private slots:
    void lettersDecideBeforeAccentsAndCase()
    {
        QVERIFY(compareText(u"άγαλμα", u"Αγαμέμνων") < 0);
        QVERIFY(compareText(u"Αγαμέμνων", u"αγγείο") < 0);
        QVERIFY(compareText(u"άγαλμα", u"αγγείο") < 0);
    }

    void caseIsIgnored()
    {
        QCOMPARE(compareText(u"ΑΘΗΝΑ", u"αθηνα"), 0);
        QCOMPARE(compareText(u"Μουσείο", u"ΜΟΥΣΕΊΟ"), 0);
    }

    void finalSigmaEqualsSigma()
    {
        QCOMPARE(compareText(u"Κλεισθένης", u"ΚΛΕΙΣΘΈΝΗΣ"), 0);
        QCOMPARE(compareText(u"ς", u"σ"), 0);
    }

    void accentsBreakTiesOnly()
    {
        QVERIFY(compareText(u"αθηναϊκή", u"αθηναικη") != 0);
        QVERIFY(compareText(u"ποτέ", u"πότε") != 0);
    }

    void latinSortsBeforeGreek()
    {
        QVERIFY(compareText(u"Meiggs – Lewis, GHI 23", u"Αθηναίων Πολιτεία, 22") < 0);
        QVERIFY(compareText(u"zeta", u"άλφα") < 0);
        QVERIFY(compareText(u"102", u"Αθήνα") < 0);
    }

    void sqliteAllowsNocaseToBeReplaced()
    {
        auto db = Connection::openMemory();
        // SQLite's own NOCASE folds ASCII only.
        QCOMPARE(column(*db, QStringLiteral("SELECT 'Α' = 'α' COLLATE NOCASE")),
            QStringList {QStringLiteral("0")});
        QVERIFY(content::installGreekNocase(db->handle()));
        QCOMPARE(column(*db, QStringLiteral("SELECT 'Α' = 'α' COLLATE NOCASE")),
            QStringList {QStringLiteral("1")});
    }

    void equalityOnANocaseColumnIsGreekAware()
    {
        auto db = greekDatabase();
        QVERIFY(db);
        db->execute(
            QStringLiteral("INSERT INTO w VALUES ('Κλεισθένης', 'Κλεισθένης'), ('Μουσείο', 'Μουσείο')"));
        QCOMPARE(column(*db, QStringLiteral("SELECT word FROM w WHERE word = 'ΚΛΕΙΣΘΈΝΗΣ'")),
            QStringList {QStringLiteral("Κλεισθένης")});
        QCOMPARE(column(*db, QStringLiteral("SELECT word FROM w WHERE word = 'κλεισθένησ'")),
            QStringList {QStringLiteral("Κλεισθένης")});
        // A column not declared NOCASE keeps SQLite's exact comparison.
        QVERIFY(column(*db, QStringLiteral("SELECT plain FROM w WHERE plain = 'ΚΛΕΙΣΘΈΝΗΣ'")).isEmpty());
    }

    void orderByOnANocaseColumnIsGreekAware()
    {
        auto db = greekDatabase();
        QVERIFY(db);
        db->execute(
            QStringLiteral("INSERT INTO w (word) VALUES ('αγγείο'), ('Αγαμέμνων'), ('άγαλμα'), ('Ωρωπός'), "
                           "('βωμός'), ('Ερμής')"));
        QCOMPARE(column(*db, QStringLiteral("SELECT word FROM w ORDER BY word")),
            (QStringList {QStringLiteral("άγαλμα"), QStringLiteral("Αγαμέμνων"), QStringLiteral("αγγείο"),
                QStringLiteral("βωμός"), QStringLiteral("Ερμής"), QStringLiteral("Ωρωπός")}));
    }

    void distinctFoldsCaseAndFinalSigma()
    {
        auto db = greekDatabase();
        QVERIFY(db);
        db->execute(QStringLiteral("INSERT INTO w (word) VALUES ('Σωκράτης'), ('ΣΩΚΡΆΤΗΣ'), ('σωκράτησ')"));
        QCOMPARE(column(*db, QStringLiteral("SELECT DISTINCT word FROM w")).size(), 1);
    }

    void likeFoldsGreekCaseAndFinalSigma()
    {
        QVERIFY(content::likeMatches(u"κλεισ%", u"Κλεισθένης"));
        QVERIFY(content::likeMatches(u"%ΘΈΝΗΣ", u"Κλεισθένης"));
        QVERIFY(content::likeMatches(u"%θένησ", u"Κλεισθένης"));
        QVERIFY(content::likeMatches(u"Κλεισθ_νης", u"Κλεισθένης"));
        QVERIFY(!content::likeMatches(u"%θενης", u"Κλεισθένης")); // accents still count
        QVERIFY(!content::likeMatches(u"Κλεισ", u"Κλεισθένης"));
        QVERIFY(content::likeMatches(u"100!%", u"100%", u'!'));
        QVERIFY(!content::likeMatches(u"100!%", u"1000", u'!'));
        QVERIFY(content::likeMatches(u"%", u""));
        QVERIFY(!content::likeMatches(u"_", u""));
    }

    void likeOnAConnectionUsesTheGreekRule()
    {
        auto db = Connection::openMemory();
        QVERIFY(content::installGreekTextRules(db->handle()));
        QCOMPARE(
            column(*db, QStringLiteral("SELECT 'Αθήνα' LIKE 'αθή%'")), QStringList {QStringLiteral("1")});
        QCOMPARE(column(*db, QStringLiteral("SELECT 'Αθήνα' LIKE 'x%'")), QStringList {QStringLiteral("0")});
        QCOMPARE(column(*db, QStringLiteral("SELECT 'a_b' LIKE 'a\\_b' ESCAPE '\\'")),
            QStringList {QStringLiteral("1")});
        QCOMPARE(
            column(*db, QStringLiteral("SELECT NULL LIKE 'a' IS NULL")), QStringList {QStringLiteral("1")});
    }

    void indexOnANocaseColumnFollowsTheGreekOrder()
    {
        auto db = greekDatabase();
        QVERIFY(db);
        db->execute(QStringLiteral("CREATE INDEX w_word ON w (word);"
                                   "INSERT INTO w (word) VALUES ('αγγείο'), ('Αγαμέμνων'), ('άγαλμα')"));
        QCOMPARE(column(*db, QStringLiteral("SELECT word FROM w WHERE word > 'Α' ORDER BY word")),
            (QStringList {QStringLiteral("άγαλμα"), QStringLiteral("Αγαμέμνων"), QStringLiteral("αγγείο")}));
        QCOMPARE(column(*db, QStringLiteral("SELECT word FROM w WHERE word = 'ΑΓΓΕΊΟ'")),
            QStringList {QStringLiteral("αγγείο")});
    }
};

QTEST_GUILESS_MAIN(tst_GreekCollation)
#include "tst_greekcollation.moc"
