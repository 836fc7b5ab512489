#include <contenterrors.h>
#include <database.h>
#include <sqliteconnection.h>

#include <QTest>

#include <sqlite3.h>

#include <functional>

using content::Database;
using content::Recordset;
using platform::RuntimeError;

namespace {

std::unique_ptr<Database> sampleDatabase()
{
    auto connection = content::sqlite::Connection::openMemory();
    auto db = Database::fromConnection(std::move(connection), QStringLiteral("sample"));
    char *message = nullptr;
    const char *sql
        = "CREATE TABLE Places (PlaceID INT, Place TEXT COLLATE NOCASE, PRIMARY KEY (PlaceID));"
          "INSERT INTO Places VALUES (9, 'Σαλαμίνα'), (3, 'Αθήνα'), (21, 'Πάρος'), (8, 'Μαραθώνας');"
          "CREATE TABLE Notes (Word TEXT COLLATE NOCASE, Note TEXT COLLATE NOCASE);"
          "INSERT INTO Notes VALUES ('άγαλμα', NULL), ('αγγείο', 'x'), ('Αγαμέμνων', '');"
          "CREATE TABLE Words (Word TEXT COLLATE NOCASE PRIMARY KEY, N INT);"
          "INSERT INTO Words VALUES ('Ωρωπός', 1), ('άγαλμα', 2), ('Βωμός', 3);";
    sqlite3_exec(db->handle(), sql, nullptr, nullptr, &message);
    if (message) {
        qWarning("%s", message);
        sqlite3_free(message);
    }
    return db;
}

int errorOf(const std::function<void()> &f)
{
    try {
        f();
    } catch (const RuntimeError &e) {
        return e.number();
    }
    return 0;
}

} // namespace

class tst_Recordset : public QObject
{
    Q_OBJECT

private slots:
    void readingAListWalksEveryRecordToEof()
    {
        auto db = sampleDatabase();
        auto rs
            = db->OpenRecordset(QStringLiteral("SELECT PlaceID, Place FROM Places"), content::dbOpenSnapshot);
        QCOMPARE(rs->RecordCount(), 4L);
        QVERIFY(!rs->BOF());
        QVERIFY(!rs->Eof());
        rs->MoveFirst();
        QStringList places;
        while (!rs->Eof()) {
            places << rs->Fields(QStringLiteral("Place")).text();
            rs->MoveNext();
        }
        QCOMPARE(places.size(), 4);
        QCOMPARE(places.first(), QStringLiteral("Σαλαμίνα"));
        QCOMPARE(errorOf([&] { rs->MoveNext(); }), content::errors::NoCurrentRecord);
        QCOMPARE(errorOf([&] { rs->Fields(QStringLiteral("Place")); }), content::errors::NoCurrentRecord);
    }

    void emptyResultIsBothBofAndEof()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT * FROM Places WHERE PlaceID = 99"), content::dbOpenSnapshot);
        QCOMPARE(rs->RecordCount(), 0L);
        QVERIFY(rs->BOF());
        QVERIFY(rs->Eof());
        QCOMPARE(rs->AbsolutePosition(), -1L);
        QCOMPARE(errorOf([&] { rs->MoveFirst(); }), content::errors::NoCurrentRecord);
        QCOMPARE(errorOf([&] { rs->MoveLast(); }), content::errors::NoCurrentRecord);
    }

    void moveLastThenMoveFirstGivesTheWholeCount()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(QStringLiteral("Places"));
        rs->MoveLast();
        QCOMPARE(rs->AbsolutePosition(), 3L);
        rs->MoveFirst();
        QCOMPARE(rs->AbsolutePosition(), 0L);
        QCOMPARE(rs->RecordCount(), 4L);
        rs->MovePrevious();
        QVERIFY(rs->BOF());
        QCOMPARE(rs->AbsolutePosition(), -1L);
        rs->MoveNext();
        QCOMPARE(rs->Fields(QStringLiteral("PlaceID")).Value(), QVariant(9));
    }

    void nullIsARealNullAndEmptyTextIsNot()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(QStringLiteral("SELECT Note FROM Notes"), content::dbOpenSnapshot);
        QVERIFY(rs->Fields(QStringLiteral("Note")).IsNull());
        QVERIFY(rs->Fields(QStringLiteral("Note")).Value().isNull());
        QCOMPARE(rs->Fields(QStringLiteral("Note")).text(), QString());
        rs->MoveNext();
        rs->MoveNext();
        QVERIFY(!rs->Fields(QStringLiteral("Note")).IsNull());
        QCOMPARE(rs->Fields(QStringLiteral("Note")).text(), QString());
    }

    void fieldNamesIgnoreCaseAndUnknownOnesAreNotFound()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT Places.PlaceID, Place FROM Places"), content::dbOpenSnapshot);
        QCOMPARE(rs->Fields(QStringLiteral("placeid")).Value(), QVariant(9));
        QCOMPARE(rs->Fields(QStringLiteral("Places.PlaceID")).Value(), QVariant(9));
        QCOMPARE(rs->Fields(QStringLiteral("PlaceID")).Name(), QStringLiteral("PlaceID"));
        QCOMPARE(errorOf([&] { rs->Fields(QStringLiteral("Museum")); }), content::errors::ItemNotFound);
    }

    void sameNameFromTwoTablesIsQualified()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT * FROM Places INNER JOIN Words ON Words.N = 1"), content::dbOpenSnapshot);
        QCOMPARE(rs->fieldName(0), QStringLiteral("PlaceID"));
        auto join = db->OpenRecordset(
            QStringLiteral("SELECT * FROM Notes INNER JOIN Words ON Notes.Word = Words.Word"),
            content::dbOpenSnapshot);
        QCOMPARE(join->fieldName(0), QStringLiteral("Notes.Word"));
        QCOMPARE(join->fieldName(2), QStringLiteral("Words.Word"));
        QCOMPARE(join->Fields(QStringLiteral("Words.Word")).text(), QStringLiteral("άγαλμα"));
    }

    void snapshotDoesNotChangeAfterItIsOpened()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(QStringLiteral("SELECT Place FROM Places"), content::dbOpenSnapshot);
        sqlite3_exec(db->handle(), "DELETE FROM Places", nullptr, nullptr, nullptr);
        QCOMPARE(rs->RecordCount(), 4L);
        QCOMPARE(rs->Fields(QStringLiteral("Place")).text(), QStringLiteral("Σαλαμίνα"));
    }

    void seekOnThePrimaryKeyFindsAndNoMatchTellsAMiss()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(QStringLiteral("Places"));
        rs->setIndex(QStringLiteral("PrimaryKey"));
        QCOMPARE(rs->Index(), QStringLiteral("PrimaryKey"));
        // The index puts the table in key order.
        QCOMPARE(rs->Fields(QStringLiteral("PlaceID")).Value(), QVariant(3));
        rs->Seek(QStringLiteral("="), 21);
        QVERIFY(!rs->NoMatch());
        QCOMPARE(rs->Fields(QStringLiteral("Place")).text(), QStringLiteral("Πάρος"));
        rs->Seek(QStringLiteral("="), 5);
        QVERIFY(rs->NoMatch());
        QCOMPARE(errorOf([&] { rs->Fields(QStringLiteral("Place")); }), content::errors::NoCurrentRecord);
        rs->Seek(QStringLiteral(">="), 5);
        QVERIFY(!rs->NoMatch());
        QCOMPARE(rs->Fields(QStringLiteral("PlaceID")).Value(), QVariant(8));
        rs->Seek(QStringLiteral("<"), 8);
        QCOMPARE(rs->Fields(QStringLiteral("PlaceID")).Value(), QVariant(3));
        rs->Seek(QStringLiteral("="), QStringLiteral("9"));
        QCOMPARE(rs->Fields(QStringLiteral("Place")).text(), QStringLiteral("Σαλαμίνα"));
    }

    void seekOnATextKeyIsGreekAware()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(QStringLiteral("Words"));
        rs->setIndex(QStringLiteral("PrimaryKey"));
        QCOMPARE(rs->Fields(QStringLiteral("Word")).text(), QStringLiteral("άγαλμα"));
        rs->Seek(QStringLiteral("="), QStringLiteral("ΒΩΜΌΣ"));
        QVERIFY(!rs->NoMatch());
        QCOMPARE(rs->Fields(QStringLiteral("N")).Value(), QVariant(3));
    }

    void seekNeedsATableAndAnIndex()
    {
        auto db = sampleDatabase();
        auto snapshot = db->OpenRecordset(QStringLiteral("Places"), content::dbOpenSnapshot);
        QCOMPARE(errorOf([&] { snapshot->setIndex(QStringLiteral("PrimaryKey")); }),
            content::errors::NotSupportedForObject);
        auto query = db->OpenRecordset(QStringLiteral("SELECT * FROM Places"));
        QCOMPARE(
            errorOf([&] { query->Seek(QStringLiteral("="), 3); }), content::errors::NotSupportedForObject);
        auto table = db->OpenRecordset(QStringLiteral("Places"));
        QCOMPARE(errorOf([&] { table->Seek(QStringLiteral("="), 3); }),
            content::errors::OperationInvalidWithoutIndex);
        QCOMPARE(errorOf([&] { table->setIndex(QStringLiteral("ByName")); }), content::errors::NotAnIndex);
        auto keyless = db->OpenRecordset(QStringLiteral("Notes"));
        QCOMPARE(
            errorOf([&] { keyless->setIndex(QStringLiteral("PrimaryKey")); }), content::errors::NotAnIndex);
        table->setIndex(QStringLiteral("PrimaryKey"));
        QCOMPARE(errorOf([&] { table->Seek(QStringLiteral("~"), 3); }), content::errors::InvalidArgument);
    }

    void tableNamesOpenInAnyCaseAndInBrackets()
    {
        auto db = sampleDatabase();
        QCOMPARE(db->OpenRecordset(QStringLiteral("places"))->RecordCount(), 4L);
        QCOMPARE(db->OpenRecordset(QStringLiteral("[Places]"))->RecordCount(), 4L);
    }

    void missingTableOrQueryIsReportedByName()
    {
        auto db = sampleDatabase();
        try {
            db->OpenRecordset(QStringLiteral("Museums"));
            QFAIL("no error");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), content::errors::NoSuchTableOrQuery);
            QVERIFY(e.description().contains(QStringLiteral("'Museums'")));
        }
        try {
            db->OpenRecordset(QStringLiteral("SELECT * FROM Museums WHERE ID = 1"));
            QFAIL("no error");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), content::errors::NoSuchTableOrQuery);
            QVERIFY(e.description().contains(QStringLiteral("'Museums'")));
        }
    }

    void unknownColumnIsAMissingParameter()
    {
        auto db = sampleDatabase();
        QCOMPARE(errorOf([&] { db->OpenRecordset(QStringLiteral("SELECT Museum FROM Places")); }),
            content::errors::TooFewParameters);
    }

    void brokenSqlIsASyntaxError()
    {
        auto db = sampleDatabase();
        // An author with an apostrophe joined in without doubling it.
        QCOMPARE(errorOf([&] {
            db->OpenRecordset(QStringLiteral("SELECT * FROM Places WHERE Place = 'Μουσεί' Αγοράς'"));
        }),
            content::errors::SyntaxError);
    }

    void writingThroughARecordsetIsRefused()
    {
        auto db = sampleDatabase();
        QCOMPARE(errorOf([&] { db->OpenRecordset(QStringLiteral("DELETE FROM Places")); }),
            content::errors::InvalidOperation);
        QCOMPARE(db->OpenRecordset(QStringLiteral("Places"))->RecordCount(), 4L);
    }

    void closedRecordsetIsNoLongerSet()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(QStringLiteral("Places"));
        rs->Close();
        QCOMPARE(errorOf([&] { rs->RecordCount(); }), content::errors::ObjectNoLongerSet);
        QCOMPARE(errorOf([&] { rs->MoveNext(); }), content::errors::ObjectNoLongerSet);
    }

    void forwardOnlyCannotGoBack()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(QStringLiteral("SELECT * FROM Places"), content::dbOpenForwardOnly);
        rs->MoveNext();
        QCOMPARE(errorOf([&] { rs->MovePrevious(); }), content::errors::NotSupportedForObject);
        QCOMPARE(errorOf([&] { rs->MoveFirst(); }), content::errors::NotSupportedForObject);
    }

    void orderByTextFollowsTheGreekRule()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT Word FROM Notes ORDER BY Word"), content::dbOpenSnapshot);
        QStringList words;
        for (; !rs->Eof(); rs->MoveNext())
            words << rs->Fields(QStringLiteral("Word")).text();
        QCOMPARE(words,
            (QStringList {QStringLiteral("άγαλμα"), QStringLiteral("Αγαμέμνων"), QStringLiteral("αγγείο")}));
    }

    void textComparisonIgnoresCase()
    {
        auto db = sampleDatabase();
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT PlaceID FROM Places WHERE Place = 'ΑΘΉΝΑ'"), content::dbOpenSnapshot);
        QCOMPARE(rs->RecordCount(), 1L);
        QCOMPARE(rs->Fields(QStringLiteral("PlaceID")).Value(), QVariant(3));
    }

    void sqlQuoteDoublesTheQuote()
    {
        QCOMPARE(content::sqlQuote(QStringLiteral("Μουσεί' Αρχαίας Αγοράς")),
            QStringLiteral("'Μουσεί'' Αρχαίας Αγοράς'"));
        QCOMPARE(content::sqlQuote(QStringLiteral("a\"b"), u'"'), QStringLiteral("\"a\"\"b\""));
        QCOMPARE(content::sqlQuote(QString()), QStringLiteral("''"));
    }

    void tableNamesComeInCatalogueOrder()
    {
        auto db = sampleDatabase();
        QCOMPARE(db->tableNames(),
            (QStringList {QStringLiteral("Places"), QStringLiteral("Notes"), QStringLiteral("Words")}));
    }
};

QTEST_GUILESS_MAIN(tst_Recordset)
#include "tst_recordset.moc"
