// The search's query and list, without the window: every combination of criteria against
// what the content holds, the list's rules and the Greek order of its texts.

#include "findingcontent.h"

#include <database.h>
#include <greekcollation.h>
#include <resourcesearch.h>
#include <runtimeerror.h>

#include <QFileInfo>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct Row
{
    qint32 id = 0;
    qint32 type = 0;
    QVariant place, time, author, museum, book, caption;
};

// The content read plainly, for the expected answers.
struct Plain
{
    QList<Row> resources;
    QList<std::pair<qint32, qint32>> keywordLinks; // (keyword, resource), as stored
};

Plain readPlain(content::Database &db)
{
    Plain plain;
    auto rs = db.OpenRecordset(
        u"SELECT ResourceID, ResTypeID, PlaceID, ChronologicalID, Author, Museum, Book, Caption FROM Resources"_s);
    while (!rs->Eof()) {
        Row row;
        row.id = rs->value(0).toInt();
        row.type = rs->value(1).toInt();
        row.place = rs->value(2);
        row.time = rs->value(3);
        row.author = rs->value(4);
        row.museum = rs->value(5);
        row.book = rs->value(6);
        row.caption = rs->value(7);
        plain.resources.append(row);
        rs->MoveNext();
    }
    auto links = db.OpenRecordset(u"SELECT KeywordID, ResourceID FROM RelKeywordResource"_s);
    while (!links->Eof()) {
        plain.keywordLinks.append({links->value(0).toInt(), links->value(1).toInt()});
        links->MoveNext();
    }
    return plain;
}

bool sameText(const QVariant &value, const QString &wanted)
{
    return !value.isNull() && content::compareText(value.toString(), wanted) == 0;
}

bool sameNumber(const QVariant &value, const QString &wanted)
{
    return !value.isNull() && value.toLongLong() == wanted.toLongLong();
}

// The ids a search must give, once per matching keyword link when a keyword is set.
QList<qint32> expectedIds(const Plain &plain, const finding::SearchCriteria &c)
{
    QList<qint32> ids;
    for (const Row &row : plain.resources) {
        if (c.Time != u"0" && !sameNumber(row.time, c.Time))
            continue;
        if (c.Place != u"0" && !sameNumber(row.place, c.Place))
            continue;
        if (c.ResType != u"0" && row.type != c.ResType.toInt())
            continue;
        if (!c.Author.isEmpty() && !sameText(row.author, c.Author))
            continue;
        if (!c.Museum.isEmpty() && !sameText(row.museum, c.Museum))
            continue;
        int times = 1;
        if (c.KeyWord != u"0")
            times = int(std::count(plain.keywordLinks.cbegin(), plain.keywordLinks.cend(),
                std::pair<qint32, qint32>(c.KeyWord.toInt(), row.id)));
        for (int i = 0; i < times; ++i)
            ids.append(row.id);
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

int compareNullable(const QVariant &a, const QVariant &b)
{
    if (a.isNull() || b.isNull())
        return int(!a.isNull()) - int(!b.isNull());
    return content::compareText(a.toString(), b.toString());
}

// Runs the composed query and checks its rows against the plain reading, in number and
// in order.
void checkCombination(content::Database &db, const Plain &plain, const finding::SearchCriteria &c)
{
    const QString sql = finding::SearchSQL(c);
    auto rs = db.OpenRecordset(sql);
    QList<qint32> ids;
    QList<Row> rows;
    while (!rs->Eof()) {
        Row row;
        row.id = rs->Fields(u"ResourceID"_s).Value().toInt();
        row.type = rs->Fields(u"ResTypeID"_s).Value().toInt();
        row.book = rs->Fields(u"Book"_s).Value();
        row.caption = rs->Fields(u"Caption"_s).Value();
        ids.append(row.id);
        rows.append(row);
        rs->MoveNext();
    }
    std::sort(ids.begin(), ids.end());
    QCOMPARE(ids, expectedIds(plain, c));
    for (qsizetype i = 1; i < rows.size(); ++i) {
        const Row &a = rows.at(i - 1);
        const Row &b = rows.at(i);
        int order = a.type - b.type;
        if (order == 0)
            order = compareNullable(a.book, b.book);
        if (order == 0)
            order = compareNullable(a.caption, b.caption);
        QVERIFY2(order <= 0, qPrintable(sql));
    }
}

// Every combination of set and unset criteria, with the values of each resource that has
// a keyword (a criterion the seed lacks takes the first value the content has).
int checkAllCombinations(content::Database &db)
{
    const Plain plain = readPlain(db);
    QString firstAuthor, firstMuseum;
    for (const Row &row : plain.resources) {
        if (firstAuthor.isEmpty() && !row.author.toString().isEmpty())
            firstAuthor = row.author.toString();
        if (firstMuseum.isEmpty() && !row.museum.toString().isEmpty())
            firstMuseum = row.museum.toString();
    }
    int runs = 0;
    for (const auto &[keyword, resourceID] : plain.keywordLinks) {
        const auto seed = std::find_if(plain.resources.cbegin(), plain.resources.cend(),
            [id = resourceID](const Row &row) { return row.id == id; });
        if (seed == plain.resources.cend())
            continue;
        for (int mask = 0; mask < 64; ++mask) {
            finding::SearchCriteria c;
            if (mask & 1)
                c.KeyWord = QString::number(keyword);
            if (mask & 2)
                c.Place = QString::number(seed->place.isNull() ? 1 : seed->place.toInt());
            if (mask & 4)
                c.Time = QString::number(seed->time.isNull() ? 1 : seed->time.toInt());
            if (mask & 8)
                c.ResType = QString::number(seed->type);
            if (mask & 16)
                c.Author = seed->author.toString().isEmpty() ? firstAuthor : seed->author.toString();
            if (mask & 32)
                c.Museum = seed->museum.toString().isEmpty() ? firstMuseum : seed->museum.toString();
            checkCombination(db, plain, c);
            if (QTest::currentTestFailed())
                return runs;
            ++runs;
        }
    }
    return runs;
}

QList<qint32> idsOf(const finding::SearchList &list)
{
    QList<qint32> ids;
    for (const finding::SearchListItem &item : list.items)
        ids.append(item.tag.toInt());
    return ids;
}

} // namespace

class tst_ResourceSearch : public QObject
{
    Q_OBJECT

private slots:
    void allCriteriaOnTheirAllEntryHaveNoWhere()
    {
        QCOMPARE(finding::SearchSQL({}),
            u"SELECT  Resources.ResourceID, Resources.ResTypeID, Resources.Book, Resources.Caption FROM "
            u"Resources "
            " ORDER BY ResTypeID, Book, Caption"_s);
    }

    void criteriaWithoutKeywordJoinByAndUnderOneWhere()
    {
        finding::SearchCriteria c;
        c.Time = u"3"_s;
        c.Museum = u"Μουσείο"_s;
        QCOMPARE(finding::SearchSQL(c),
            u"SELECT  Resources.ResourceID, Resources.ResTypeID, Resources.Book, Resources.Caption FROM "
            u"Resources "
            " WHERE  Resources.ChronologicalID=  3 AND  Resources.Museum = 'Μουσείο' ORDER BY ResTypeID, Book, Caption"_s);
    }

    void keywordAndAuthorJoinWithAndAfterTheKeywordsWhere()
    {
        finding::SearchCriteria c;
        c.KeyWord = u"12"_s;
        c.Author = u"Ηρόδοτος"_s;
        QCOMPARE(finding::SearchSQL(c),
            u"SELECT  Resources.ResourceID, Resources.ResTypeID, Resources.Book, Resources.Caption "
            "FROM Resources INNER JOIN RelKeywordResource ON Resources.ResourceID = "
            "RelKeywordResource.ResourceID "
            "WHERE RelKeywordResource.KeywordID= 12 AND  Resources.Author = 'Ηρόδοτος' ORDER BY ResTypeID, Book, Caption"_s);
    }

    void all64CombinationsGiveTheContentsRowsOnTheJetFixture()
    {
        const auto db
            = content::Database::OpenDatabase(QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb"));
        QVERIFY(checkAllCombinations(*db) >= 64);
    }

    void all64CombinationsGiveTheContentsRowsOnTheSample()
    {
        const QString path = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
        if (!QFileInfo::exists(path))
            QSKIP("the sample course is not built");
        const auto db = content::Database::OpenDatabase(path);
        QVERIFY(checkAllCombinations(*db) >= 64);
    }

    void all64CombinationsGiveTheContentsRowsWithAwkwardTexts()
    {
        const auto db = findingcontent::build();
        QVERIFY(checkAllCombinations(*db) >= 64);
    }

    void theSearchOrderIndexKeepsEveryListAsTheSortGaveIt_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::newRow("jet") << QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb");
        QTest::newRow("awkward texts") << QString();
    }

    void theSearchOrderIndexKeepsEveryListAsTheSortGaveIt()
    {
        QFETCH(QString, fixture);
        const auto db
            = fixture.isEmpty() ? findingcontent::build() : content::Database::OpenDatabase(fixture);
        auto lists = [&] {
            QList<QList<qint32>> out;
            for (const QString &type : {u"0"_s, u"1"_s, u"2"_s, u"5"_s, u"6"_s}) {
                finding::SearchCriteria c;
                c.ResType = type;
                out << idsOf(finding::Search(*db, c));
            }
            return out;
        };
        const QList<QList<qint32>> sorted = lists();
        QVERIFY(finding::PrepareSearchOrder(*db));
        QCOMPARE(lists(), sorted);
        QVERIFY(checkAllCombinations(*db) >= 64);
    }

    void aContentReadFromItsFileAsItIsKeepsSortingPerSearch()
    {
        const QString path = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
        if (!QFileInfo::exists(path))
            QSKIP("the sample course is not built");
        const auto db = content::Database::OpenDatabase(path);
        const QList<qint32> before = idsOf(finding::Search(*db, {}));
        finding::PrepareSearchOrder(*db);
        QCOMPARE(idsOf(finding::Search(*db, {})), before);
    }

    void apostropheQuotesAndSqlLookingTextFindTheirOwnRows_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint32>("id");
        const QStringList texts = findingcontent::awkwardTexts();
        for (qsizetype i = 0; i < texts.size(); ++i)
            QTest::newRow(qPrintable(QString::number(i))) << texts.at(i) << qint32(300 + i);
    }

    void apostropheQuotesAndSqlLookingTextFindTheirOwnRows()
    {
        QFETCH(QString, text);
        QFETCH(qint32, id);
        const auto db = findingcontent::build();
        finding::SearchCriteria byAuthor;
        byAuthor.Author = text;
        QCOMPARE(idsOf(finding::Search(*db, byAuthor)), QList<qint32> {id});
        finding::SearchCriteria byMuseum;
        byMuseum.Museum = text;
        QCOMPARE(idsOf(finding::Search(*db, byMuseum)), QList<qint32> {id});
        // The content is only read: every resource is still there.
        QCOMPARE(finding::Search(*db, {}).items.size(), 14);
    }

    void theApostropheOfTheFixturesMuseumFindsItsPhoto()
    {
        const auto db
            = content::Database::OpenDatabase(QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb"));
        finding::SearchCriteria c;
        c.Museum = u"Μουσεί' Αρχαίας Αγοράς"_s;
        const finding::SearchList list = finding::Search(*db, c);
        QCOMPARE(list.items.size(), 1);
        QCOMPARE(list.items.at(0).tag, u"201"_s);
        QCOMPARE(list.items.at(0).icon, u"agio"_s);
        QCOMPARE(list.items.at(0).text, u"Όστρακα με το όνομα του Θεμιστοκλή"_s);
    }

    void theInscriptionBookAloneShowsTheInscriptionIcon()
    {
        testcontent::Builder b;
        findingcontent::resource(b, 1, 2, u"Inscriptiones Graeca,e, XII 5, 444"_s, u"Χρονικό"_s);
        findingcontent::resource(b, 2, 2, u"Inscriptiones Graecae, XII 5, 444"_s, QVariant());
        findingcontent::resource(b, 3, 6, u"Inscriptiones Graeca,e, XII 5, 444"_s, u"Πάριο Χρονικό"_s);
        const auto db = b.database();
        const finding::SearchList list = finding::Search(*db, {});
        QCOMPARE(list.items.size(), 3);
        QCOMPARE(list.items.at(0).icon, u"epigrafi"_s);
        QCOMPARE(list.items.at(0).text, u"Inscriptiones Graeca,e, XII 5, 444"_s);
        QCOMPARE(list.items.at(1).icon, u"keimeno"_s);
        QCOMPARE(list.items.at(2).icon, u"agio"_s);
        QCOMPARE(list.items.at(2).text, u"Πάριο Χρονικό"_s);
    }

    void eachKindShowsItsIconAndText()
    {
        testcontent::Builder b;
        findingcontent::resource(b, 1, 1, u"Β1"_s, u"Φωτογραφία"_s);
        findingcontent::resource(b, 2, 2, u"Βιβλίο"_s, u"Λεζάντα"_s);
        findingcontent::resource(b, 3, 5, u"Β5"_s, u"Χάρτης"_s);
        findingcontent::resource(b, 4, 6, u"Β6"_s, u"Εικόνα με λεζάντα"_s);
        findingcontent::resource(b, 5, 2, QVariant(), u"Κείμενο χωρίς βιβλίο"_s);
        const auto db = b.database();
        const finding::SearchList list = finding::Search(*db, {});
        QStringList lines;
        for (const finding::SearchListItem &item : list.items)
            lines << item.icon + u'|' + item.text + u'|' + item.tag;
        QCOMPARE(lines,
            QStringList({u"agio|Φωτογραφία|1"_s, u"keimeno||5"_s, u"keimeno|Βιβλίο|2"_s, u"xartis|Χάρτης|3"_s,
                u"agio|Εικόνα με λεζάντα|4"_s}));
    }

    void soundAndVideoRowsLeaveTheTextBeforeThemItsOwnTag()
    {
        const auto db
            = content::Database::OpenDatabase(QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb"));
        const finding::SearchList list = finding::Search(*db, {});
        // The sound source 215 (type 3) stands after the text 202 and makes no item.
        QCOMPARE(list.items.size(), 13);
        QVERIFY(std::none_of(list.items.cbegin(), list.items.cend(),
            [](const finding::SearchListItem &item) { return item.tag == u"215"; }));
        const auto last = std::find_if(list.items.cbegin(), list.items.cend(),
            [](const finding::SearchListItem &item) { return item.tag == u"202"; });
        QVERIFY(last != list.items.cend());
        QCOMPARE(last->icon, u"keimeno"_s);
        QCOMPARE(std::next(last)->icon, u"xartis"_s);
    }

    void soundAndVideoRowsBeforeAnyItemAreSkipped()
    {
        testcontent::Builder b;
        findingcontent::resource(b, 1, 0, u"Α"_s, u"Χωρίς είδος"_s);
        findingcontent::resource(b, 2, 2, u"Β"_s, QVariant());
        findingcontent::resource(b, 3, 3, u"Γ"_s, u"Ήχος"_s);
        findingcontent::resource(b, 4, 4, u"Δ"_s, u"Βίντεο"_s);
        findingcontent::resource(b, 5, 5, u"Ε"_s, u"Χάρτης"_s);
        const auto db = b.database();
        const finding::SearchList list = finding::Search(*db, {});
        QStringList lines;
        for (const finding::SearchListItem &item : list.items)
            lines << item.icon + u'|' + item.text + u'|' + item.tag;
        QCOMPARE(lines, QStringList({u"keimeno|Β|2"_s, u"xartis|Χάρτης|5"_s}));
    }

    void theSoundOrVideoTypeAloneGivesAnEmptyList()
    {
        testcontent::Builder b;
        findingcontent::resource(b, 1, 3, u"Α"_s, u"Ήχος"_s);
        findingcontent::resource(b, 2, 4, u"Β"_s, u"Βίντεο"_s);
        const auto db = b.database();
        for (const QString &type : {u"3"_s, u"4"_s}) {
            finding::SearchCriteria c;
            c.ResType = type;
            QVERIFY(finding::Search(*db, c).items.isEmpty());
        }
    }

    void twoCriteriaThatExcludeEachOtherGiveAnEmptyList()
    {
        const auto db
            = content::Database::OpenDatabase(QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb"));
        finding::SearchCriteria c;
        c.ResType = u"5"_s;
        c.Author = u"Ηρόδοτος"_s;
        const finding::SearchList list = finding::Search(*db, c);
        QVERIFY(list.items.isEmpty());
    }

    void theSearchListStandsInGreekDictionaryOrder()
    {
        const auto db = findingcontent::build();
        finding::SearchCriteria c;
        c.ResType = u"2"_s;
        QStringList texts;
        for (const finding::SearchListItem &item : finding::Search(*db, c).items)
            texts << item.text;
        QCOMPARE(texts, findingcontent::dictionaryOrder());
    }

    void exactlyEightAndNineResultsDifferInTheColumnsWidth()
    {
        QCOMPARE(finding::ResultColumnWidth(9360, 8), 9270);
        QCOMPARE(finding::ResultColumnWidth(9360, 9), 9045);
        QCOMPARE(finding::ResultColumnWidth(9360, 0), 9270);
    }
};

QTEST_GUILESS_MAIN(tst_ResourceSearch)
#include "tst_resourcesearch.moc"
