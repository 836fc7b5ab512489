// The sample course is the first thing a new user sees, so the build checks that it is
// whole: the tables the program reads, the amounts of content the course promises, rows
// for every query the windows run, a file for every name, and hot words that the text
// viewer can find.

#include "contentpath.h"
#include "database.h"
#include "rtf.h"

#include <sqlite3.h>

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString SamplePath = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
const QString InscriptionBook = u"Inscriptiones Graeca,e, XII 5, 444"_s;

// Colours of the hot words in the texts, 0x00BBGGRR.
constexpr quint32 CommentColour = 0x0000C0;
constexpr quint32 TermColour = 0xC00000;

struct Column
{
    const char *name;
    bool text;
};

struct Table
{
    const char *name;
    const char *key; // nullptr for a link table
    std::vector<Column> columns;
};

// The tables and columns of the content, in the order the program's queries meet them.
const std::vector<Table> &contentTables()
{
    static const std::vector<Table> tables = {
        {"Themes", "ThemeID", {{"ThemeID", false}, {"Theme", true}}},
        {"Scenarios", "ScenarioID", {{"ScenarioID", false}, {"Scenario", true}, {"ThemeID", false}}},
        {"Activities", "ActivityID", {{"ActivityID", false}, {"Activity", true}, {"ActionsDocument", true}}},
        {"RelScenarioActivity", nullptr, {{"ScenarioID", false}, {"ActivityID", false}}},
        {"RelActivityResource", nullptr, {{"ActivityID", false}, {"ResourceID", false}}},
        {"Resources", "ResourceID",
            {{"ResourceID", false}, {"ResTypeID", false}, {"PlaceID", false}, {"ChronologicalID", false},
                {"Author", true}, {"Book", true}, {"TextRTF", true}, {"TextPath", true},
                {"PicturePath", true}, {"Caption", true}, {"Lezanda", true}, {"Kind", true},
                {"Museum", true}}},
        {"ResTypes", "ResTypeID", {{"ResTypeID", false}, {"ResType", true}}},
        {"Places", "PlaceID", {{"PlaceID", false}, {"Place", true}}},
        {"Chronologicals", "ChronologicalID", {{"ChronologicalID", false}, {"Chronological", true}}},
        {"Keywords", "KeywordID", {{"KeywordID", false}, {"Keyword", true}}},
        {"RelKeywordResource", nullptr, {{"KeywordID", false}, {"ResourceID", false}}},
        {"Comments", "CommentID", {{"CommentID", false}, {"Comment", true}, {"Picture", true}}},
        {"RelCommentResource", nullptr, {{"CommentID", false}, {"ResourceID", false}, {"ExactPhrase", true}}},
        {"Euretirio", "EuretirioID",
            {{"EuretirioID", false}, {"Oros", true}, {"Epexigisi", true}, {"EuretirioTypeID", false},
                {"Picture", true}, {"Sound", true}, {"Video", true}}},
        {"EuretirioTypes", "EuretirioTypeID", {{"EuretirioTypeID", false}, {"EuretirioType", true}}},
        {"RelEuretirioResource", nullptr,
            {{"EuretirioID", false}, {"ResourceID", false}, {"ExactPhrase", true}}},
    };
    return tables;
}

int wordCount(const QString &text)
{
    static const QRegularExpression word(u"\\w+"_s, QRegularExpression::UseUnicodePropertiesOption);
    int count = 0;
    for (auto it = word.globalMatch(text); it.hasNext(); it.next())
        ++count;
    return count;
}

// The colour of the character at place: black for the automatic colour.
quint32 colourAt(const richtext::PlainText &plain, int place)
{
    const int index = richtext::runIndexAt(plain, place);
    if (index < 0)
        return 0;
    const richtext::TextRun &run = plain.runs[size_t(index)];
    return run.colorIsAuto ? 0 : run.color;
}

} // namespace

class tst_SampleContent : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void schemaHasExactlyTheContentTablesAndColumns();
    void courseHasThemesScenariosAndActivities();
    void oneActivityShowsThirteenTiles();
    void resourcesCoverEveryKindOfSource();
    void oneTextIsTheInscription();
    void searchCriteriaAreFilled();
    void museumWithApostropheIsFoundWhenQuoted();
    void commentsHavePicturesForAThird();
    void indexTermsHaveExplanationsPicturesSoundsAndVideos();
    void mostActivitiesHaveAnAssignment();
    void everyQueryOfTheWindowsReturnsRows_data();
    void everyQueryOfTheWindowsReturnsRows();
    void resourceTableSeeksByPrimaryKey();
    void everyTextHasCommentsAndIndexTerms();
    void everyFileNamedByTheContentExists();
    void mediaFilesAreWhatTheirNamesSay();
    void textsAreWrittenAsTheRichEditControlWritesThem();
    void hotWordPhrasesStandPaintedInTheirColour();
    void onePhraseStandsBlackBeforeItsPaintedPlace();
    void textsAndDescriptionsHaveTheirLength();
    void wholeContentIsUnderTwentyMegabytes();

private:
    long count(const QString &sql);
    QStringList column(const QString &sql);
    QString dataFolder() const { return platform::parentFolderName(SamplePath); }
    richtext::PlainText readText(const QString &literal, const QString &name);

    std::unique_ptr<content::Database> m_db;
};

void tst_SampleContent::initTestCase()
{
    QVERIFY2(QFileInfo::exists(SamplePath), qPrintable(SamplePath));
    m_db = content::Database::OpenDatabase(SamplePath);
    QVERIFY(m_db);
}

long tst_SampleContent::count(const QString &sql)
{
    return m_db->OpenRecordset(sql, content::dbOpenSnapshot)->RecordCount();
}

QStringList tst_SampleContent::column(const QString &sql)
{
    QStringList values;
    auto rs = m_db->OpenRecordset(sql, content::dbOpenSnapshot);
    if (rs->RecordCount() > 0) {
        rs->MoveFirst();
        while (!rs->Eof()) {
            values << rs->value(0).toString();
            rs->MoveNext();
        }
    }
    return values;
}

richtext::PlainText tst_SampleContent::readText(const QString &literal, const QString &name)
{
    QFile file(platform::contentPath(dataFolder(), literal, name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return richtext::readPlainText(file.readAll());
}

void tst_SampleContent::schemaHasExactlyTheContentTablesAndColumns()
{
    sqlite3 *db = m_db->handle();
    QStringList expectedTables;
    for (const Table &table : contentTables()) {
        expectedTables << QString::fromLatin1(table.name);
        QStringList names;
        auto rs = m_db->OpenRecordset(
            u"SELECT name FROM pragma_table_info('%1')"_s.arg(QLatin1StringView(table.name)));
        for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext())
            names << rs->value(0).toString();
        QStringList expectedColumns;
        for (const Column &c : table.columns)
            expectedColumns << QString::fromLatin1(c.name);
        QCOMPARE(names, expectedColumns);

        for (const Column &c : table.columns) {
            const char *type = nullptr;
            const char *collation = nullptr;
            int notNull = 0;
            int primaryKey = 0;
            int autoIncrement = 0;
            QCOMPARE(sqlite3_table_column_metadata(db, "main", table.name, c.name, &type, &collation,
                         &notNull, &primaryKey, &autoIncrement),
                SQLITE_OK);
            const QByteArray where = QByteArray(table.name) + '.' + c.name;
            if (c.text) {
                QVERIFY2(qstrcmp(type, "TEXT") == 0, where.constData());
                QVERIFY2(qstricmp(collation, "NOCASE") == 0, where.constData());
            } else {
                QVERIFY2(qstrcmp(type, "INTEGER") == 0, where.constData());
            }
            const bool isKey = table.key && qstrcmp(table.key, c.name) == 0;
            QVERIFY2(bool(primaryKey) == isKey, where.constData());
        }
    }
    QStringList tables = m_db->tableNames();
    tables.sort();
    expectedTables.sort();
    QCOMPARE(tables, expectedTables);
}

void tst_SampleContent::courseHasThemesScenariosAndActivities()
{
    QVERIFY(count(u"Themes"_s) >= 3);
    QVERIFY(count(u"Scenarios"_s) >= 6);
    QVERIFY(count(u"Activities"_s) >= 12);
    QVERIFY(count(u"SELECT ThemeID FROM Scenarios GROUP BY ThemeID HAVING COUNT(*) = 1"_s) >= 1);
    QVERIFY(
        count(u"SELECT ActivityID FROM RelScenarioActivity GROUP BY ActivityID HAVING COUNT(*) >= 2"_s) >= 1);
    // Every theme leads somewhere, and every activity shows something.
    QCOMPARE(count(u"SELECT ThemeID FROM Themes WHERE ThemeID NOT IN (SELECT ThemeID FROM Scenarios)"_s), 0L);
    QCOMPARE(count(u"SELECT ScenarioID FROM Scenarios WHERE ScenarioID NOT IN "
                   "(SELECT ScenarioID FROM RelScenarioActivity)"_s),
        0L);
    QCOMPARE(count(u"SELECT ActivityID FROM Activities WHERE ActivityID NOT IN "
                   "(SELECT ActivityID FROM RelActivityResource)"_s),
        0L);
    QCOMPARE(count(u"SELECT ResourceID FROM Resources WHERE ResourceID NOT IN "
                   "(SELECT ResourceID FROM RelActivityResource)"_s),
        0L);
}

void tst_SampleContent::oneActivityShowsThirteenTiles()
{
    const QStringList activities
        = column(u"SELECT ActivityID FROM RelActivityResource GROUP BY ActivityID HAVING COUNT(*) = 13"_s);
    QVERIFY(!activities.isEmpty());
    const QString sql
        = u"SELECT Activities.ActivityID, Resources.ResourceID, Resources.ResTypeID, Resources.PlaceID, "
          "Resources.ChronologicalID, Resources.Author, Resources.Book, Resources.TextRTF, "
          "Resources.TextPath, "
          "Resources.PicturePath, Resources.Caption, Resources.Lezanda, Resources.Kind, Resources.Museum "
          "FROM Resources INNER JOIN (Activities INNER JOIN RelActivityResource ON (Activities.ActivityID = "
          "RelActivityResource.ActivityID) AND (Activities.ActivityID = RelActivityResource.ActivityID) AND "
          "(Activities.ActivityID = RelActivityResource.ActivityID)) ON (Resources.ResourceID = "
          "RelActivityResource.ResourceID) AND (Resources.ResourceID = RelActivityResource.ResourceID)"
          "WHERE Activities.ActivityID = "_s
        + activities.first();
    QCOMPARE(count(sql), 13L);
}

void tst_SampleContent::resourcesCoverEveryKindOfSource()
{
    QVERIFY(count(u"Resources"_s) >= 45);
    for (int kind : {1, 2, 5, 6})
        QVERIFY2(count(u"SELECT ResourceID FROM Resources WHERE ResTypeID = %1"_s.arg(kind)) >= 8,
            qPrintable(QString::number(kind)));
    QCOMPARE(count(u"SELECT ResourceID FROM Resources WHERE ResTypeID NOT IN (1, 2, 5, 6)"_s), 0L);
    // What each kind needs to be shown.
    QCOMPARE(count(u"SELECT ResourceID FROM Resources WHERE ResTypeID = 1 AND "
                   "(PicturePath IS NULL OR PicturePath = '' OR Lezanda IS NULL OR Lezanda = '')"_s),
        0L);
    QCOMPARE(count(u"SELECT ResourceID FROM Resources WHERE ResTypeID = 6 AND "
                   "(PicturePath IS NULL OR PicturePath = '' OR TextPath IS NULL OR TextPath = '')"_s),
        0L);
    QCOMPARE(count(u"SELECT ResourceID FROM Resources WHERE ResTypeID = 2 AND "
                   "(TextPath IS NULL OR TextPath = '' OR Book IS NULL OR Book = '')"_s),
        0L);
    QCOMPARE(count(u"SELECT ResourceID FROM Resources WHERE ResTypeID IN (1, 5, 6) AND "
                   "(Caption IS NULL OR Caption = '')"_s),
        0L);
}

void tst_SampleContent::oneTextIsTheInscription()
{
    const QStringList books = column(u"SELECT Book FROM Resources WHERE ResTypeID = 2"_s);
    QCOMPARE(books.count(InscriptionBook), 1);
}

void tst_SampleContent::searchCriteriaAreFilled()
{
    const QStringList kinds = column(u"SELECT ResTypeID FROM ResTypes ORDER BY ResTypeID"_s);
    QCOMPARE(kinds, (QStringList {u"1"_s, u"2"_s, u"5"_s, u"6"_s}));
    QCOMPARE(count(u"SELECT ResTypeID FROM ResTypes WHERE ResType IS NULL OR ResType = ''"_s), 0L);
    QVERIFY(count(u"Places"_s) >= 5);
    QVERIFY(count(u"Chronologicals"_s) >= 4);
    QVERIFY(count(u"Keywords"_s) >= 8);
    QCOMPARE(
        count(
            u"SELECT KeywordID FROM Keywords WHERE KeywordID NOT IN (SELECT KeywordID FROM RelKeywordResource)"_s),
        0L);
    QVERIFY(count(u"SELECT ResourceID FROM Resources WHERE Author IS NULL"_s) > 0);
    QVERIFY(column(u"SELECT DISTINCT Author From Resources ORDER BY Author"_s).size() >= 3);
    QVERIFY(count(u"SELECT ResourceID FROM Resources WHERE Museum IS NULL"_s) > 0);
    QVERIFY(column(u"SELECT DISTINCT Museum From Resources ORDER BY Museum"_s).size() >= 5);
    // Every place and period chosen in the search finds something.
    QCOMPARE(count(u"SELECT PlaceID FROM Places WHERE PlaceID NOT IN (SELECT PlaceID FROM Resources "
                   "WHERE PlaceID IS NOT NULL)"_s),
        0L);
    QCOMPARE(count(u"SELECT ChronologicalID FROM Chronologicals WHERE ChronologicalID NOT IN "
                   "(SELECT ChronologicalID FROM Resources WHERE ChronologicalID IS NOT NULL)"_s),
        0L);
}

void tst_SampleContent::museumWithApostropheIsFoundWhenQuoted()
{
    QStringList withApostrophe;
    for (const QString &museum : column(u"SELECT DISTINCT Museum From Resources ORDER BY Museum"_s)) {
        if (museum.contains(u'\''))
            withApostrophe << museum;
    }
    QCOMPARE(withApostrophe.size(), 1);
    const QString sql
        = u"SELECT  Resources.ResourceID, Resources.ResTypeID, Resources.Book, Resources.Caption "
          "FROM Resources  WHERE  Resources.Museum = "_s
        + content::sqlQuote(withApostrophe.first()) + u" ORDER BY ResTypeID, Book, Caption"_s;
    QVERIFY(count(sql) >= 1);
}

void tst_SampleContent::commentsHavePicturesForAThird()
{
    const long comments = count(u"Comments"_s);
    QVERIFY(comments >= 35);
    const long withPicture
        = count(u"SELECT CommentID FROM Comments WHERE Picture IS NOT NULL AND Picture <> ''"_s);
    QVERIFY(withPicture * 3 >= comments - 2);
    // Both ways of having no picture occur, as they do in real content.
    QVERIFY(count(u"SELECT CommentID FROM Comments WHERE Picture IS NULL"_s) > 0);
    QVERIFY(count(u"SELECT CommentID FROM Comments WHERE Picture = ''"_s) > 0);
    QCOMPARE(count(u"SELECT CommentID FROM Comments WHERE Comment IS NULL OR Comment = ''"_s), 0L);
    QCOMPARE(
        count(
            u"SELECT CommentID FROM Comments WHERE CommentID NOT IN (SELECT CommentID FROM RelCommentResource)"_s),
        0L);
}

void tst_SampleContent::indexTermsHaveExplanationsPicturesSoundsAndVideos()
{
    QVERIFY(count(u"Euretirio"_s) >= 45);
    QVERIFY(count(u"EuretirioTypes"_s) >= 3);
    QCOMPARE(count(u"SELECT EuretirioID FROM Euretirio WHERE Oros IS NULL OR Oros = '' "
                   "OR Epexigisi IS NULL OR Epexigisi = ''"_s),
        0L);
    QCOMPARE(count(u"SELECT EuretirioTypeID FROM EuretirioTypes WHERE EuretirioTypeID NOT IN "
                   "(SELECT EuretirioTypeID FROM Euretirio WHERE EuretirioTypeID IS NOT NULL)"_s),
        0L);
    QVERIFY(count(u"SELECT EuretirioID FROM Euretirio WHERE Picture IS NOT NULL AND Picture <> ''"_s) >= 20);
    QVERIFY(count(u"SELECT EuretirioID FROM Euretirio WHERE Sound IS NOT NULL AND Sound <> ''"_s) >= 8);
    QVERIFY(count(u"SELECT EuretirioID FROM Euretirio WHERE Video IS NOT NULL AND Video <> ''"_s) >= 2);
    // Terms are listed by name within their tab: two terms of one name would be one item.
    QCOMPARE(count(u"SELECT Oros FROM Euretirio GROUP BY Oros HAVING COUNT(*) > 1"_s), 0L);
}

void tst_SampleContent::mostActivitiesHaveAnAssignment()
{
    QVERIFY(count(u"SELECT ActivityID FROM Activities WHERE ActionsDocument <> ''"_s) >= 8);
    QVERIFY(
        count(u"SELECT ActivityID FROM Activities WHERE ActionsDocument IS NULL OR ActionsDocument = ''"_s)
        >= 1);
}

void tst_SampleContent::everyQueryOfTheWindowsReturnsRows_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<int>("minimum");

    // The start screen.
    QTest::newRow("themes") << u"Themes"_s << 3;
    QTest::newRow("all scenarios") << u"SELECT ScenarioID, Scenario FROM Scenarios"_s << 6;
    QTest::newRow("scenarios of a theme")
        << u"SELECT ScenarioID, Scenario FROM Scenarios WHERE ThemeID= 10"_s << 2;
    QTest::newRow("activities of a scenario")
        << u"SELECT Activities.Activity,Activities.ActivityID  FROM Scenarios INNER JOIN "
           "(Activities INNER JOIN RelScenarioActivity ON "
           "(Activities.ActivityID = RelScenarioActivity.ActivityID)) "
           "ON (Scenarios.ScenarioID = RelScenarioActivity.ScenarioID) where Scenarios.ScenarioID=203"_s
        << 3;
    QTest::newRow("all activities") << u"SELECT ActivityID, Activity FROM Activities"_s << 12;
    // The main shell.
    QTest::newRow("assignment") << u"SELECT ActionsDocument From Activities WHERE ActivityID=1001"_s << 1;
    // The navigation tree.
    QTest::newRow("tree scenarios") << u"Scenarios"_s << 6;
    QTest::newRow("tree activities")
        << u"SELECT Activities.Activity, Activities.ActivityID,RelScenarioActivity.ScenarioID from "
           u"Activities "
           " INNER JOIN RelScenarioActivity ON RelScenarioActivity.ActivityID=Activities.ActivityID"_s
        << 13;
    // Tiles and viewers.
    QTest::newRow("tile") << u"SELECT ResourceID, ResTypeID, Book, Caption, PicturePath, Kind "
                             "From Resources WHERE Resources.ResourceID = 101"_s
                          << 1;
    QTest::newRow("tile picture") << u"SELECT PicturePath FROM Resources WHERE ResourceID = 121"_s << 1;
    QTest::newRow("tile text") << u"SELECT TextPath FROM Resources WHERE ResourceID = 101"_s << 1;
    QTest::newRow("text viewer") << u"SELECT TextPath, Author, Book From Resources WHERE ResourceID= 104"_s
                                 << 1;
    // The search.
    QTest::newRow("keywords") << u"Keywords"_s << 8;
    QTest::newRow("places") << u"Places"_s << 5;
    QTest::newRow("periods") << u"Chronologicals"_s << 4;
    QTest::newRow("kinds") << u"ResTypes"_s << 4;
    QTest::newRow("authors") << u"SELECT DISTINCT Author From Resources ORDER BY Author"_s << 3;
    QTest::newRow("museums") << u"SELECT DISTINCT Museum From Resources ORDER BY Museum"_s << 5;
    const QString head
        = u"SELECT  Resources.ResourceID, Resources.ResTypeID, Resources.Book, Resources.Caption "
          "FROM Resources "_s;
    const QString keywordHead = u"SELECT  Resources.ResourceID, Resources.ResTypeID, "
                                "Resources.Book, Resources.Caption "
                                "FROM Resources INNER JOIN RelKeywordResource "
                                "ON Resources.ResourceID = RelKeywordResource.ResourceID "
                                "WHERE RelKeywordResource.KeywordID= "_s;
    const QString order = u" ORDER BY ResTypeID, Book, Caption"_s;
    QTest::newRow("search everything") << head + order << 45;
    QTest::newRow("search period and place")
        << head + u" WHERE  Resources.ChronologicalID=  4 AND  Resources.PlaceID= 9"_s + order << 10;
    QTest::newRow("search texts") << head + u" WHERE  Resources.ResTypeID= 2"_s + order << 8;
    QTest::newRow("search keyword and author")
        << keywordHead + u"12 AND  Resources.Author = 'Θουκυδίδης'"_s + order << 2;
    QTest::newRow("search keyword and period")
        << keywordHead + u"8 AND  Resources.ChronologicalID=  4"_s + order << 5;
    // The index.
    QTest::newRow("index tabs") << u"SELECT EuretirioTypeID, EuretirioType FROM EuretirioTypes"_s << 3;
    QTest::newRow("index terms") << u"SELECT EuretirioID, Oros From Euretirio ORDER BY Oros"_s << 45;
    for (int type : {1, 2, 3}) {
        QTest::addRow("index terms of type %d", type)
            << u"SELECT EuretirioID, Oros From Euretirio Where EuretirioTypeID = %1 ORDER BY Oros"_s.arg(type)
            << 10;
    }
    QTest::newRow("index term") << u"SELECT * from Euretirio Where EuretirioID = 737"_s << 1;
}

void tst_SampleContent::everyQueryOfTheWindowsReturnsRows()
{
    QFETCH(QString, sql);
    QFETCH(int, minimum);
    QVERIFY2(count(sql) >= minimum, qPrintable(sql));
}

void tst_SampleContent::resourceTableSeeksByPrimaryKey()
{
    for (const QString &id : column(u"SELECT ResourceID FROM Resources WHERE ResTypeID IN (1, 6)"_s)) {
        auto rs = m_db->OpenRecordset(u"Resources"_s);
        rs->setIndex(u"PrimaryKey"_s);
        rs->Seek(u"="_s, id.toInt());
        QVERIFY2(!rs->NoMatch(), qPrintable(id));
        QCOMPARE(rs->Fields(u"ResourceID"_s).Value().toInt(), id.toInt());
    }
}

void tst_SampleContent::everyTextHasCommentsAndIndexTerms()
{
    for (const QString &id : column(u"SELECT ResourceID FROM Resources WHERE ResTypeID = 2"_s)) {
        const long comments = count(
            u"SELECT Comments.CommentID, Comments.Comment, Comments.Picture, RelCommentResource.ExactPhrase "
            "FROM Resources INNER JOIN (Comments INNER JOIN RelCommentResource "
            "ON (Comments.CommentID = RelCommentResource.CommentID)) "
            "ON (Resources.ResourceID = RelCommentResource.ResourceID) "
            "WHERE Resources.ResourceID= "_s
            + id);
        const long terms = count(u"SELECT Euretirio.EuretirioID,Euretirio.Oros, Euretirio.Picture, "
                                 "Euretirio.Epexigisi,Euretirio.EuretirioTypeID, "
                                 "RelEuretirioResource.ExactPhrase "
                                 "FROM Resources INNER JOIN (Euretirio INNER JOIN RelEuretirioResource "
                                 "ON (Euretirio.EuretirioID = RelEuretirioResource.EuretirioID)) "
                                 "ON (Resources.ResourceID = RelEuretirioResource.ResourceID) "
                                 "WHERE Resources.ResourceID = "_s
            + id);
        QVERIFY2(comments + terms >= 3, qPrintable(id));
        QVERIFY2(terms >= 2, qPrintable(id));
    }
}

void tst_SampleContent::everyFileNamedByTheContentExists()
{
    struct Named
    {
        QString sql;
        QString literal;
    };
    const std::vector<Named> named = {
        {u"SELECT PicturePath FROM Resources WHERE ResTypeID IN (1, 5, 6)"_s, u"\\Pictures\\"_s},
        {u"SELECT TextPath FROM Resources WHERE ResTypeID = 2"_s, u"\\piges\\"_s},
        {u"SELECT TextPath FROM Resources WHERE ResTypeID = 6"_s, u"\\Piges\\"_s},
        {u"SELECT ActionsDocument FROM Activities WHERE ActionsDocument <> ''"_s, u"\\Actions\\"_s},
        {u"SELECT Picture FROM Comments WHERE Picture <> ''"_s, u"\\photos\\"_s},
        {u"SELECT Picture FROM Euretirio WHERE Picture <> ''"_s, u"\\Photos\\"_s},
        {u"SELECT Sound FROM Euretirio WHERE Sound <> ''"_s, u"\\Sounds\\"_s},
        {u"SELECT Video FROM Euretirio WHERE Video <> ''"_s, u"\\Videos\\"_s},
    };
    QStringList missing;
    for (const Named &n : named) {
        for (const QString &name : column(n.sql)) {
            if (!platform::fileExists(platform::contentPath(dataFolder(), n.literal, name)))
                missing << n.literal + name;
        }
    }
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(u", "_s)));
}

void tst_SampleContent::mediaFilesAreWhatTheirNamesSay()
{
    struct Named
    {
        QString sql;
        QString literal;
    };
    const std::vector<Named> pictures = {
        {u"SELECT PicturePath FROM Resources WHERE ResTypeID IN (1, 5, 6)"_s, u"\\Pictures\\"_s},
        {u"SELECT Picture FROM Comments WHERE Picture <> ''"_s, u"\\photos\\"_s},
        {u"SELECT Picture FROM Euretirio WHERE Picture <> ''"_s, u"\\Photos\\"_s},
    };
    for (const Named &n : pictures) {
        for (const QString &name : column(n.sql)) {
            QImageReader reader(platform::contentPath(dataFolder(), n.literal, name));
            const QByteArray format = reader.format();
            const QByteArray expected
                = name.endsWith(u".png"_s) ? QByteArrayLiteral("png") : QByteArrayLiteral("jpeg");
            QVERIFY2(format == expected, qPrintable(name + u' ' + QString::fromLatin1(format)));
            const QSize size = reader.size();
            QVERIFY2(size.width() >= 100 && size.height() >= 100, qPrintable(name));
            QVERIFY2(size.width() <= 2000 && size.height() <= 2000, qPrintable(name));
        }
    }
    const auto head = [&](const QString &literal, const QString &name) {
        QFile file(platform::contentPath(dataFolder(), literal, name));
        return file.open(QIODevice::ReadOnly) ? file.read(12) : QByteArray();
    };
    for (const QString &name : column(u"SELECT Sound FROM Euretirio WHERE Sound <> ''"_s)) {
        const QByteArray bytes = head(u"\\Sounds\\"_s, name);
        QVERIFY2(bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WAVE", qPrintable(name));
    }
    for (const QString &name : column(u"SELECT Video FROM Euretirio WHERE Video <> ''"_s))
        QVERIFY2(head(u"\\Videos\\"_s, name).startsWith("\x1a\x45\xdf\xa3"), qPrintable(name));
}

void tst_SampleContent::textsAreWrittenAsTheRichEditControlWritesThem()
{
    const QByteArray header = "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032"
                              "{\\fonttbl{\\f0\\fnil\\fcharset161 Times New Roman;}}\r\n"
                              "{\\colortbl ;\\red192\\green0\\blue0;\\red0\\green0\\blue192;}\r\n"
                              "\\viewkind4\\uc1\\pard\\lang1032\\f0\\fs24 ";
    const QStringList names = column(u"SELECT TextPath FROM Resources WHERE ResTypeID IN (2, 6)"_s)
        + column(u"SELECT ActionsDocument FROM Activities WHERE ActionsDocument <> ''"_s);
    for (const QString &name : names) {
        const QString literal = name.startsWith(u"ergasia"_s) ? u"\\Actions\\"_s : u"\\piges\\"_s;
        QFile file(platform::contentPath(dataFolder(), literal, name));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(name));
        const QByteArray data = file.readAll();
        QVERIFY2(data.startsWith(header), qPrintable(name));
        QVERIFY2(data.endsWith("\\par\r\n}\r\n"), qPrintable(name));
        for (qsizetype i = 0; i < data.size(); ++i) {
            QVERIFY2(uchar(data[i]) < 0x80, qPrintable(name));
            if (data[i] == '\n')
                QVERIFY2(i > 0 && data[i - 1] == '\r', qPrintable(name));
        }
        // The Greek comes through the code page, not as stray Latin letters.
        const richtext::PlainText plain = richtext::readPlainText(data);
        QVERIFY2(plain.text.contains(QRegularExpression(u"[α-ω]{4}"_s)), qPrintable(name));
    }
}

void tst_SampleContent::hotWordPhrasesStandPaintedInTheirColour()
{
    struct Link
    {
        QString what;
        QString textPath;
        QString phrase;
        quint32 colour;
    };
    std::vector<Link> links;
    const auto collect = [&](const QString &sql, const QString &what, quint32 colour) {
        auto rs = m_db->OpenRecordset(sql, content::dbOpenSnapshot);
        for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext())
            links.push_back(
                {what + rs->value(0).toString(), rs->value(1).toString(), rs->value(2).toString(), colour});
    };
    collect(u"SELECT RelCommentResource.CommentID, Resources.TextPath, RelCommentResource.ExactPhrase "
            "FROM RelCommentResource INNER JOIN Resources ON Resources.ResourceID = "
            "RelCommentResource.ResourceID "
            "WHERE Resources.ResTypeID = 2"_s,
        u"comment "_s, CommentColour);
    collect(u"SELECT RelEuretirioResource.EuretirioID, Resources.TextPath, RelEuretirioResource.ExactPhrase "
            "FROM RelEuretirioResource INNER JOIN Resources ON Resources.ResourceID = "
            "RelEuretirioResource.ResourceID "
            "WHERE Resources.ResTypeID = 2"_s,
        u"term "_s, TermColour);
    QVERIFY(links.size() >= 70);

    for (const Link &link : links) {
        const QString where = link.what + u" in "_s + link.textPath + u": "_s + link.phrase;
        const richtext::PlainText plain = readText(u"\\piges\\"_s, link.textPath);
        QVERIFY2(!link.phrase.isEmpty(), qPrintable(where));
        // As the viewer looks: the first occurrence, whatever the case, that starts painted.
        qsizetype start = plain.text.indexOf(link.phrase, 0, Qt::CaseInsensitive);
        while (start >= 0 && colourAt(plain, int(start)) == 0)
            start = plain.text.indexOf(link.phrase, start + 1, Qt::CaseInsensitive);
        QVERIFY2(start >= 0, qPrintable(where));
        for (qsizetype i = start; i < start + link.phrase.size(); ++i)
            QVERIFY2(colourAt(plain, int(i)) == link.colour, qPrintable(where));
        // Written exactly as in the text, but for case.
        QVERIFY2(
            plain.text.mid(start, link.phrase.size()).toLower() == link.phrase.toLower(), qPrintable(where));
    }
}

void tst_SampleContent::onePhraseStandsBlackBeforeItsPaintedPlace()
{
    int found = 0;
    auto rs = m_db->OpenRecordset(
        u"SELECT Resources.TextPath, RelEuretirioResource.ExactPhrase FROM RelEuretirioResource INNER JOIN "
        u"Resources "
        "ON Resources.ResourceID = RelEuretirioResource.ResourceID WHERE Resources.ResTypeID = 2"_s,
        content::dbOpenSnapshot);
    for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) {
        const QString phrase = rs->value(1).toString();
        const richtext::PlainText plain = readText(u"\\piges\\"_s, rs->value(0).toString());
        // A whole word in black, not the title, ahead of the painted one.
        const QRegularExpression word(u"(?<!\\w)"_s + QRegularExpression::escape(phrase) + u"(?!\\w)"_s,
            QRegularExpression::UseUnicodePropertiesOption);
        const qsizetype firstLineEnd = plain.text.indexOf(u'\n');
        const QRegularExpressionMatch first = word.match(plain.text, firstLineEnd);
        if (first.hasMatch() && colourAt(plain, int(first.capturedStart())) == 0)
            ++found;
    }
    QVERIFY(found >= 1);
}

void tst_SampleContent::textsAndDescriptionsHaveTheirLength()
{
    for (const QString &name : column(u"SELECT TextPath FROM Resources WHERE ResTypeID = 2"_s)) {
        const int words = wordCount(readText(u"\\piges\\"_s, name).text);
        QVERIFY2(words >= 150 && words <= 600, qPrintable(name + u' ' + QString::number(words)));
    }
    for (const QString &name : column(u"SELECT TextPath FROM Resources WHERE ResTypeID = 6"_s)) {
        const int words = wordCount(readText(u"\\Piges\\"_s, name).text);
        QVERIFY2(words >= 80 && words <= 200, qPrintable(name + u' ' + QString::number(words)));
    }
    for (const QString &legend : column(u"SELECT Lezanda FROM Resources WHERE ResTypeID = 1"_s)) {
        const int words = wordCount(legend);
        QVERIFY2(words >= 8 && words <= 80, qPrintable(legend));
    }
}

void tst_SampleContent::wholeContentIsUnderTwentyMegabytes()
{
    qint64 total = 0;
    for (QDirIterator it(dataFolder(), QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
        total += QFileInfo(it.next()).size();
    qInfo("sample content: %lld bytes", total);
    QVERIFY(total < 20 * 1024 * 1024);
}

QTEST_GUILESS_MAIN(tst_SampleContent)
#include "tst_samplecontent.moc"
