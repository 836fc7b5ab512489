#include "contentsql.h"
#include "fixturefiles.h"

#include <contenterrors.h>
#include <database.h>
#include <greekcollation.h>

#include <QTest>

#include <algorithm>

using content::Database;
using content::Recordset;

namespace {

QList<int> ints(Recordset &rs, const QString &field)
{
    QList<int> out;
    if (rs.RecordCount() > 0) {
        rs.MoveFirst();
        for (; !rs.Eof(); rs.MoveNext())
            out << rs.Fields(field).Value().toInt();
    }
    return out;
}

QStringList texts(Recordset &rs, const QString &field)
{
    QStringList out;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext())
        out << rs.Fields(field).text();
    return out;
}

QList<int> sorted(QList<int> v)
{
    std::sort(v.begin(), v.end());
    return v;
}

} // namespace

// Every query the program runs, on the imported fixture, with the rows its data implies.
// The class runs once on the Jet 3 file and once on the Jet 4 file.
class tst_ContentQueries : public QObject
{
    Q_OBJECT

public:
    explicit tst_ContentQueries(QString file)
        : m_file(std::move(file))
    {
    }

private slots:
    void initTestCase()
    {
        REQUIRE_FIXTURE_FILES();
        m_db = Database::OpenDatabase(m_file);
        QVERIFY(m_db);
    }

    // Start screen
    void themesTableListsEveryTheme()
    {
        auto rs = m_db->OpenRecordset(QStringLiteral("Themes"), content::dbOpenSnapshot);
        QCOMPARE(rs->RecordCount(), 3L);
        QCOMPARE(ints(*rs, QStringLiteral("ThemeID")), (QList<int> {2, 5, 17}));
    }

    void scenariosOfATheme()
    {
        auto rs = m_db->OpenRecordset(contentsql::scenarios(5), content::dbOpenSnapshot);
        QCOMPARE(sorted(ints(*rs, QStringLiteral("ScenarioID"))), (QList<int> {12, 31}));
        QCOMPARE(m_db->OpenRecordset(contentsql::scenarios(0), content::dbOpenSnapshot)->RecordCount(), 3L);
    }

    void themeWithoutScenariosGivesNone()
    {
        QCOMPARE(m_db->OpenRecordset(contentsql::scenarios(17), content::dbOpenSnapshot)->RecordCount(), 0L);
    }

    void activitiesOfAScenarioThroughTheNestedJoin()
    {
        auto rs = m_db->OpenRecordset(contentsql::activities(10), content::dbOpenSnapshot);
        QCOMPARE(sorted(ints(*rs, QStringLiteral("ActivityID"))), (QList<int> {101, 102, 120}));
        rs->MoveFirst();
        QVERIFY(!rs->Fields(QStringLiteral("Activity")).text().isEmpty());
        QCOMPARE(m_db->OpenRecordset(contentsql::activities(31), content::dbOpenSnapshot)->RecordCount(), 0L);
        QCOMPARE(m_db->OpenRecordset(contentsql::activities(0), content::dbOpenSnapshot)->RecordCount(), 5L);
    }

    // Main shell
    void resourcesOfAnActivityHaveTheFourteenFields()
    {
        auto rs = m_db->OpenRecordset(contentsql::resources(101), content::dbOpenSnapshot);
        QCOMPARE(rs->fieldCount(), 14);
        const QStringList names {QStringLiteral("ActivityID"), QStringLiteral("ResourceID"),
            QStringLiteral("ResTypeID"), QStringLiteral("PlaceID"), QStringLiteral("ChronologicalID"),
            QStringLiteral("Author"), QStringLiteral("Book"), QStringLiteral("TextRTF"),
            QStringLiteral("TextPath"), QStringLiteral("PicturePath"), QStringLiteral("Caption"),
            QStringLiteral("Lezanda"), QStringLiteral("Kind"), QStringLiteral("Museum")};
        for (int c = 0; c < names.size(); ++c)
            QCOMPARE(rs->fieldName(c), names.at(c));
        rs->MoveLast();
        rs->MoveFirst();
        QCOMPARE(rs->RecordCount(), 2L);
        QCOMPARE(sorted(ints(*rs, QStringLiteral("ResourceID"))), (QList<int> {205, 250}));
    }

    void resourceFieldsCarryTheirValues()
    {
        auto rs = m_db->OpenRecordset(contentsql::resources(103), content::dbOpenSnapshot);
        bool seen = false;
        for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) {
            if (rs->Fields(QStringLiteral("ResourceID")).Value().toInt() != 212)
                continue;
            seen = true;
            QCOMPARE(rs->Fields(QStringLiteral("ActivityID")).Value(), QVariant(103));
            QVERIFY(rs->Fields(QStringLiteral("Author")).IsNull());
            QVERIFY(rs->Fields(QStringLiteral("Lezanda")).text().contains(QStringLiteral("\r\n")));
            QCOMPARE(rs->Fields(QStringLiteral("PicturePath")).text(), QStringLiteral("soros.jpg"));
        }
        QVERIFY(seen);
    }

    void activityWithoutResourcesGivesAnEmptyRecordset()
    {
        auto rs = m_db->OpenRecordset(contentsql::resources(120), content::dbOpenSnapshot);
        QCOMPARE(rs->RecordCount(), 0L);
        QVERIFY(rs->BOF() && rs->Eof());
    }

    void repeatedJoinConditionsGiveOneRowPerLink()
    {
        auto links = m_db->OpenRecordset(QStringLiteral("RelActivityResource"), content::dbOpenSnapshot);
        QHash<int, int> perActivity;
        for (; !links->Eof(); links->MoveNext())
            ++perActivity[links->Fields(QStringLiteral("ActivityID")).Value().toInt()];
        for (int activity : {101, 102, 103, 107, 120}) {
            auto rs = m_db->OpenRecordset(contentsql::resources(activity), content::dbOpenSnapshot);
            QCOMPARE(rs->RecordCount(), long(perActivity.value(activity)));
        }
    }

    void activityLinkedTwiceToOneResourceGivesTwoRows()
    {
        auto rs = m_db->OpenRecordset(contentsql::resources(102), content::dbOpenSnapshot);
        QCOMPARE(sorted(ints(*rs, QStringLiteral("ResourceID"))), (QList<int> {201, 204, 204}));
    }

    void assignmentDocumentOfAnActivity()
    {
        auto rs = m_db->OpenRecordset(contentsql::actionsDocument(101));
        QCOMPARE(rs->Fields(QStringLiteral("ActionsDocument")).text(), QStringLiteral("drasi101.doc"));
        auto none = m_db->OpenRecordset(contentsql::actionsDocument(103));
        QVERIFY(none->Fields(QStringLiteral("ActionsDocument")).IsNull());
        QCOMPARE(none->Fields(QStringLiteral("ActionsDocument")).text(), QString());
    }

    // Navigation tree
    void treeListsEachActivityUnderEachOfItsScenarios()
    {
        auto rs = m_db->OpenRecordset(contentsql::treeActivities(), content::dbOpenSnapshot);
        QCOMPARE(rs->RecordCount(), 6L);
        QList<int> scenariosOf120;
        for (; !rs->Eof(); rs->MoveNext()) {
            if (rs->Fields(QStringLiteral("ActivityID")).Value().toInt() == 120)
                scenariosOf120 << rs->Fields(QStringLiteral("ScenarioID")).Value().toInt();
        }
        QCOMPARE(sorted(scenariosOf120), (QList<int> {10, 12}));
        QCOMPARE(
            m_db->OpenRecordset(QStringLiteral("Scenarios"), content::dbOpenSnapshot)->RecordCount(), 3L);
    }

    // Resource tiles
    void tileOfAResource()
    {
        auto rs = m_db->OpenRecordset(contentsql::tile(204));
        QCOMPARE(rs->Fields(QStringLiteral("ResTypeID")).Value(), QVariant(2));
        QCOMPARE(rs->Fields(QStringLiteral("Book")).text(), QStringLiteral("Αθηναίων Πολιτεία, 22"));
        QCOMPARE(rs->Fields(QStringLiteral("Caption")).text(), QStringLiteral("Ο νόμος για τον οστρακισμό"));
        QVERIFY(rs->Fields(QStringLiteral("PicturePath")).IsNull());
        QCOMPARE(rs->Fields(QStringLiteral("Kind")).text(), QStringLiteral("Πολιτειολογία"));
        QCOMPARE(m_db->OpenRecordset(contentsql::tile(203))->RecordCount(), 0L);
    }

    void inscriptionBookKeepsItsOddComma()
    {
        auto rs = m_db->OpenRecordset(contentsql::tile(211));
        QCOMPARE(
            rs->Fields(QStringLiteral("Book")).text(), QStringLiteral("Inscriptiones Graeca,e, XII 5, 444"));
        auto caption = m_db->OpenRecordset(contentsql::tile(211));
        QCOMPARE(caption->Fields(QStringLiteral("Caption")).text(),
            QStringLiteral("Το λεγόμενο \"Πάριο Χρονικό\""));
    }

    void resourceOfAnUnknownKindStillReads()
    {
        // Type 3 names no viewer; the database hands it over all the same.
        auto rs = m_db->OpenRecordset(contentsql::tile(215));
        const int type = rs->Fields(QStringLiteral("ResTypeID")).Value().toInt();
        QCOMPARE(type, 3);
        QVERIFY(type != 1 && type != 2 && type != 5 && type != 6);
        QCOMPARE(m_db->OpenRecordset(QStringLiteral("SELECT ResourceID FROM Resources WHERE ResTypeID = 4"),
                         content::dbOpenSnapshot)
                     ->RecordCount(),
            0L);
    }

    void fileNamesOfAResource()
    {
        QCOMPARE(
            m_db->OpenRecordset(contentsql::picturePath(205))->Fields(QStringLiteral("PicturePath")).text(),
            QStringLiteral("xartis_attikis.jpg"));
        QCOMPARE(m_db->OpenRecordset(contentsql::textPath(204))->Fields(QStringLiteral("TextPath")).text(),
            QStringLiteral("pig02.rtf"));
        QCOMPARE(m_db->OpenRecordset(contentsql::picturePath(999))->RecordCount(), 0L);
    }

    // Photo viewer
    void seekOnResourcesPrimaryKey()
    {
        auto rs = m_db->OpenRecordset(QStringLiteral("Resources"));
        rs->setIndex(QStringLiteral("PrimaryKey"));
        rs->Seek(QStringLiteral("="), 212);
        QVERIFY(!rs->NoMatch());
        QCOMPARE(rs->Fields(QStringLiteral("PicturePath")).text(), QStringLiteral("soros.jpg"));
        rs->Seek(QStringLiteral("="), 203);
        QVERIFY(rs->NoMatch());
        rs->Seek(QStringLiteral("="), 201);
        QVERIFY(!rs->NoMatch());
        QCOMPARE(rs->Fields(QStringLiteral("Museum")).text(), QStringLiteral("Μουσεί' Αρχαίας Αγοράς"));
        rs->Close();
    }

    // Text source viewer
    void textSourceFields()
    {
        auto rs = m_db->OpenRecordset(contentsql::textSource(202), content::dbOpenSnapshot);
        QCOMPARE(rs->Fields(QStringLiteral("TextPath")).text(), QStringLiteral("pig01.rtf"));
        QCOMPARE(rs->Fields(QStringLiteral("Author")).text(), QStringLiteral("Ηρόδοτος"));
        QCOMPARE(
            rs->Fields(QStringLiteral("Book")).text(), QStringLiteral("Ιστορίαι, βιβλίο 6 (Ερατώ), 102-117"));
    }

    // Hot words
    void commentHotWordsOfAText()
    {
        auto rs = m_db->OpenRecordset(
            contentsql::commentHotWords(204), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(sorted(ints(*rs, QStringLiteral("CommentID"))), (QList<int> {10, 14}));
        QStringList phrases = texts(*rs, QStringLiteral("ExactPhrase"));
        phrases.sort();
        QCOMPARE(phrases,
            (QStringList {
                QStringLiteral("έξι χιλιάδες"), QStringLiteral("μετά την κατάλυση της τυραννίδας")}));
        auto shared = m_db->OpenRecordset(
            contentsql::commentHotWords(212), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(ints(*shared, QStringLiteral("CommentID")), QList<int> {4});
    }

    void indexHotWordsOfAText()
    {
        auto rs = m_db->OpenRecordset(
            contentsql::indexHotWords(204), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(sorted(ints(*rs, QStringLiteral("EuretirioID"))), (QList<int> {3, 15, 16}));
        for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) {
            if (rs->Fields(QStringLiteral("EuretirioID")).Value().toInt() == 3) {
                QCOMPARE(rs->Fields(QStringLiteral("Epexigisi")).text().size(), 6248);
                QCOMPARE(rs->Fields(QStringLiteral("EuretirioTypeID")).Value(), QVariant(1));
                QCOMPARE(rs->Fields(QStringLiteral("Picture")).text(), QStringLiteral("kleisthenis.jpg"));
            }
        }
        auto untyped = m_db->OpenRecordset(
            contentsql::indexHotWords(211), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(untyped->RecordCount(), 1L);
        QVERIFY(untyped->Fields(QStringLiteral("EuretirioTypeID")).IsNull());
    }

    void textWithoutHotWordsGivesNone()
    {
        QCOMPARE(
            m_db->OpenRecordset(contentsql::commentHotWords(250), content::dbOpenSnapshot)->RecordCount(),
            0L);
        QCOMPARE(
            m_db->OpenRecordset(contentsql::indexHotWords(202), content::dbOpenSnapshot)->RecordCount(), 1L);
    }

    // Resource search
    void criteriaTablesOpenAsSnapshots()
    {
        QCOMPARE(m_db->OpenRecordset(QStringLiteral("Keywords"), content::dbOpenSnapshot, content::dbReadOnly)
                     ->RecordCount(),
            5L);
        QCOMPARE(m_db->OpenRecordset(QStringLiteral("Places"), content::dbOpenSnapshot, content::dbReadOnly)
                     ->RecordCount(),
            4L);
        QCOMPARE(m_db->OpenRecordset(QStringLiteral("Chronologicals"))->RecordCount(), 4L);
        QCOMPARE(m_db->OpenRecordset(QStringLiteral("ResTypes"), content::dbOpenSnapshot, content::dbReadOnly)
                     ->RecordCount(),
            6L);
    }

    void authorsAreDistinctAndInGreekOrderWithNullFirst()
    {
        auto rs = m_db->OpenRecordset(contentsql::authors(), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(rs->RecordCount(), 5L);
        QVERIFY(rs->Fields(QStringLiteral("Author")).IsNull());
        rs->MoveNext();
        QStringList names;
        for (; !rs->Eof(); rs->MoveNext())
            names << rs->Fields(QStringLiteral("Author")).text();
        QCOMPARE(names,
            (QStringList {QStringLiteral("Αριστοτέλης"), QStringLiteral("Ηρόδοτος"),
                QStringLiteral("Θουκυδίδης"), QStringLiteral("Πλούταρχος")}));
    }

    void museumsAreDistinctAndInGreekOrder()
    {
        auto rs = m_db->OpenRecordset(contentsql::museums(), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(rs->RecordCount(), 6L);
        QVERIFY(rs->Fields(QStringLiteral("Museum")).IsNull());
        rs->MoveNext();
        QStringList names;
        for (; !rs->Eof(); rs->MoveNext())
            names << rs->Fields(QStringLiteral("Museum")).text();
        QCOMPARE(names,
            (QStringList {QStringLiteral("Αρχαιολογικό Μουσείο Ολυμπίας"),
                QStringLiteral("Αρχαιολογικό Μουσείο Πάρου"), QStringLiteral("Επιγραφικό Μουσείο"),
                QStringLiteral("Μουσεί' Αρχαίας Αγοράς"), QStringLiteral("Μουσείο Ακρόπολης")}));
    }

    void searchWithNoCriteriaGivesEveryResourceInOrder()
    {
        auto rs = m_db->OpenRecordset(contentsql::search({}));
        QCOMPARE(rs->RecordCount(), 14L);
        QList<int> photos;
        int lastType = 0;
        QString lastBook;
        for (; !rs->Eof(); rs->MoveNext()) {
            const int type = rs->Fields(QStringLiteral("ResTypeID")).Value().toInt();
            const QString book = rs->Fields(QStringLiteral("Book")).text();
            QVERIFY(type >= lastType);
            if (type == lastType)
                QVERIFY(content::compareText(lastBook, book) <= 0);
            lastType = type;
            lastBook = book;
            if (type == 1)
                photos << rs->Fields(QStringLiteral("ResourceID")).Value().toInt();
        }
        // Photographs have no Book; their captions decide.
        QCOMPARE(photos, (QList<int> {212, 201, 250, 221}));
    }

    void searchByTimeKeepsTheDoubleSpace()
    {
        contentsql::SearchCriteria c;
        c.time = QStringLiteral("2");
        const QString sql = contentsql::search(c);
        QVERIFY(sql.contains(QStringLiteral("ChronologicalID=  2")));
        QCOMPARE(sorted(ints(*m_db->OpenRecordset(sql), QStringLiteral("ResourceID"))),
            (QList<int> {201, 215, 220, 233, 240, 250}));
    }

    void searchByKeywordAndAuthorJoinsWithAnd()
    {
        contentsql::SearchCriteria c;
        c.keyword = QStringLiteral("7");
        c.author = QStringLiteral("Αριστοτέλης");
        const QString sql = contentsql::search(c);
        QVERIFY(sql.contains(QStringLiteral("KeywordID= 7 AND  Resources.Author = 'Αριστοτέλης'")));
        QCOMPARE(ints(*m_db->OpenRecordset(sql), QStringLiteral("ResourceID")), QList<int> {204});
    }

    void searchByAuthorIgnoresCase()
    {
        contentsql::SearchCriteria c;
        c.author = QStringLiteral("ΗΡΌΔΟΤΟΣ");
        QCOMPARE(ints(*m_db->OpenRecordset(contentsql::search(c)), QStringLiteral("ResourceID")),
            QList<int> {202});
    }

    void museumWithAnApostropheIsFoundThroughSqlQuote()
    {
        contentsql::SearchCriteria c;
        c.museum = QStringLiteral("Μουσεί' Αρχαίας Αγοράς");
        QCOMPARE(ints(*m_db->OpenRecordset(contentsql::search(c)), QStringLiteral("ResourceID")),
            QList<int> {201});
    }

    void criteriaThatExcludeEachOtherGiveNothing()
    {
        contentsql::SearchCriteria c;
        c.place = QStringLiteral("21");
        c.type = QStringLiteral("1");
        QCOMPARE(m_db->OpenRecordset(contentsql::search(c))->RecordCount(), 0L);
    }

    // Index
    void indexTypesInStoredOrder()
    {
        auto rs = m_db->OpenRecordset(contentsql::indexTypes(), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(ints(*rs, QStringLiteral("EuretirioTypeID")), (QList<int> {1, 4, 7}));
    }

    void termsInGreekOrder()
    {
        auto rs = m_db->OpenRecordset(contentsql::terms(0), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(texts(*rs, QStringLiteral("Oros")),
            (QStringList {QStringLiteral("Βουλή των Πεντακοσίων"), QStringLiteral("Εκκλησία του Δήμου"),
                QStringLiteral("Θεμιστοκλής"), QStringLiteral("Κλεισθένης"), QStringLiteral("Μαραθώνας"),
                QStringLiteral("Μιλτιάδης"), QStringLiteral("Οστρακισμός"), QStringLiteral("Πάριο Χρονικό"),
                QStringLiteral("Πνύκα"), QStringLiteral("Τριήρης")}));
        auto byType = m_db->OpenRecordset(contentsql::terms(4), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(ints(*byType, QStringLiteral("EuretirioID")), (QList<int> {16, 22, 15, 23}));
    }

    void oneTermWithEveryField()
    {
        auto rs = m_db->OpenRecordset(contentsql::term(22), content::dbOpenSnapshot, content::dbReadOnly);
        QCOMPARE(rs->fieldCount(), 7);
        QCOMPARE(rs->Fields(QStringLiteral("Oros")).text(), QStringLiteral("Εκκλησία του Δήμου"));
        QVERIFY(rs->Fields(QStringLiteral("Epexigisi")).IsNull());
        QCOMPARE(rs->Fields(QStringLiteral("Sound")).text(), QStringLiteral("ekklisia.wav"));
    }

    void likeWithTheEnginesWildcardIgnoresCase()
    {
        auto rs = m_db->OpenRecordset(
            QStringLiteral("SELECT EuretirioID FROM Euretirio WHERE Oros LIKE 'κλεισ*'"),
            content::dbOpenSnapshot);
        QCOMPARE(ints(*rs, QStringLiteral("EuretirioID")), QList<int> {3});
    }

private:
    QString m_file;
    std::unique_ptr<Database> m_db;
};

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    int failures = 0;
    for (const QString &file : {fixtures::jet3(), fixtures::jet4()}) {
        tst_ContentQueries test(file);
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures;
}

#include "tst_contentqueries.moc"
