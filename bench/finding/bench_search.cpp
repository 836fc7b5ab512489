// The resource search over a generated content of 20,000 resources: for each of the 64
// combinations of set and unset criteria, the query with its list rules, and the search
// window's list filled by a pick. Prints "NAME: N ms" lines.

#include <database.h>
#include <errorpolicy.h>
#include <findingwindows.h>
#include <frmsearchresources.h>
#include <resourcesearch.h>
#include <latethreads.h>
#include <session.h>
#include <sqliteconnection.h>

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTextStream>
#include <QTreeWidget>

#include <algorithm>

namespace {

constexpr int Resources = 20000;
constexpr int Places = 40;
constexpr int Times = 12;
constexpr int Keywords = 60;
constexpr int Authors = 150;
constexpr int Museums = 40;

const QStringList syllables = {QStringLiteral("Αθη"), QStringLiteral("να"), QStringLiteral("ίος"),
    QStringLiteral("Σπάρ"), QStringLiteral("τη"), QStringLiteral("ΘΗ"), QStringLiteral("ρα"),
    QStringLiteral("ός"), QStringLiteral("Μή"), QStringLiteral("λος"), QStringLiteral("κώ"),
    QStringLiteral("ΝΟΣ"), QStringLiteral("δή"), QStringLiteral("μος")};

QString word(QRandomGenerator &random, int parts)
{
    QString out;
    for (int i = 0; i < parts; ++i)
        out += syllables.at(random.bounded(int(syllables.size())));
    return out;
}

std::unique_ptr<content::Database> generate()
{
    auto connection = content::sqlite::Connection::openMemory();
    QFile schema(QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/db/schema.sql"));
    schema.open(QIODevice::ReadOnly);
    connection->execute(QString::fromUtf8(schema.readAll()));
    connection->execute(QStringLiteral("BEGIN"));
    QRandomGenerator random(1032);
    auto insert = [&](const QString &sql, const QVariantList &values) {
        auto statement = connection->prepare(sql);
        for (qsizetype i = 0; i < values.size(); ++i)
            statement->bind(int(i + 1), values.at(i));
        statement->step();
    };
    const QList<int> types = {1, 2, 2, 2, 5, 6};
    for (const auto &[id, name] : {std::pair {1, "Φωτογραφία"}, {2, "Κείμενο"}, {5, "Χάρτης"}, {6, "Εικόνα"}})
        insert(QStringLiteral("INSERT INTO ResTypes VALUES (?, ?)"), {id, QString::fromUtf8(name)});
    for (int i = 1; i <= Places; ++i)
        insert(QStringLiteral("INSERT INTO Places VALUES (?, ?)"), {i, word(random, 3)});
    for (int i = 1; i <= Times; ++i)
        insert(QStringLiteral("INSERT INTO Chronologicals VALUES (?, ?)"), {i, word(random, 3)});
    for (int i = 1; i <= Keywords; ++i)
        insert(QStringLiteral("INSERT INTO Keywords VALUES (?, ?)"), {i, word(random, 3)});
    QStringList authors, museums;
    for (int i = 0; i < Authors; ++i)
        authors << word(random, 2) + QStringLiteral(" ") + word(random, 3);
    for (int i = 0; i < Museums; ++i)
        museums << QStringLiteral("Μουσείο ") + word(random, 3)
                + (i % 7 == 0 ? QStringLiteral("'") : QString());
    for (int id = 1; id <= Resources; ++id) {
        auto statement = connection->prepare(QStringLiteral(
            "INSERT INTO Resources (ResourceID, ResTypeID, PlaceID, ChronologicalID, Author, Book, Caption, "
            "Museum) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
        const int type = types.at(random.bounded(int(types.size())));
        statement->bind(1, id);
        statement->bind(2, type);
        statement->bind(3, 1 + random.bounded(Places));
        statement->bind(4, 1 + random.bounded(Times));
        statement->bind(5, type == 2 ? QVariant(authors.at(random.bounded(Authors))) : QVariant());
        statement->bind(6, type == 2 ? QVariant(word(random, 4)) : QVariant());
        statement->bind(7, word(random, 5));
        statement->bind(8, type != 2 ? QVariant(museums.at(random.bounded(Museums))) : QVariant());
        statement->step();
        for (int k = 0; k < 2; ++k)
            insert(QStringLiteral("INSERT INTO RelKeywordResource VALUES (?, ?)"),
                {1 + random.bounded(Keywords), id});
    }
    connection->execute(QStringLiteral("COMMIT"));
    return content::Database::fromConnection(std::move(connection));
}

// Criteria for a mask, with values that a common resource has, so lists are not empty
// where the criteria allow.
finding::SearchCriteria criteriaFor(int mask, content::Database &db)
{
    static QVariantList seed;
    if (seed.isEmpty()) {
        auto rs = db.OpenRecordset(QStringLiteral(
            "SELECT Resources.PlaceID, Resources.ChronologicalID, Resources.ResTypeID, Resources.Author, "
            "Resources.Museum, RelKeywordResource.KeywordID FROM Resources INNER JOIN RelKeywordResource ON "
            "Resources.ResourceID = RelKeywordResource.ResourceID WHERE Resources.ResTypeID = 2"));
        for (int i = 0; i < 6; ++i)
            seed << rs->value(i);
        auto museum = db.OpenRecordset(QStringLiteral("SELECT Museum FROM Resources WHERE Museum <> ''"));
        seed[4] = museum->value(0);
    }
    finding::SearchCriteria c;
    if (mask & 1)
        c.KeyWord = seed.at(5).toString();
    if (mask & 2)
        c.Place = seed.at(0).toString();
    if (mask & 4)
        c.Time = seed.at(1).toString();
    if (mask & 8)
        c.ResType = seed.at(2).toString();
    if (mask & 16)
        c.Author = seed.at(3).toString();
    if (mask & 32)
        c.Museum = seed.at(4).toString();
    return c;
}

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTextStream out(stdout);

    platform::LateThreads late;
    Session session(std::make_unique<platform::DesktopHost>(), late);
    finding::registerFindingWindows(session);
    QElapsedTimer timer;
    timer.start();
    session.content().database = generate();
    out << "generate 20000 resources: " << timer.elapsed() << " ms\n";
    // As the search window does when it opens.
    timer.restart();
    finding::PrepareSearchOrder(session.database());
    out << "search order index build: " << timer.elapsed() << " ms\n";

    // The query and its list rules, each combination five times; the median.
    double worstQuery = 0;
    QList<double> medians;
    for (int mask = 0; mask < 64; ++mask) {
        const finding::SearchCriteria c = criteriaFor(mask, session.database());
        QList<double> runs;
        qsizetype items = 0;
        for (int i = 0; i < 5; ++i) {
            timer.restart();
            items = finding::Search(session.database(), c).items.size();
            runs << ms(timer.nsecsElapsed());
        }
        std::sort(runs.begin(), runs.end());
        medians << runs.at(2);
        worstQuery = std::max(worstQuery, runs.at(2));
        out << QStringLiteral("query mask %1 (%2 items): %3 ms\n")
                   .arg(mask, 2)
                   .arg(items, 5)
                   .arg(runs.at(2), 0, 'f', 2);
    }
    std::sort(medians.begin(), medians.end());
    out << QStringLiteral("query median of 64: %1 ms\n").arg(medians.at(32), 0, 'f', 2);
    out << QStringLiteral("query worst of 64: %1 ms\n").arg(worstQuery, 0, 'f', 2);

    // Where the time of the widest search goes: the engine's query with and without its
    // order, and the list rules over the rows.
    {
        const QString sql = finding::SearchSQL({});
        QString unordered = sql;
        unordered.truncate(sql.indexOf(QStringLiteral(" ORDER BY")));
        timer.restart();
        auto plain = session.database().OpenRecordset(unordered);
        out << QStringLiteral("all rows, no order: %1 ms\n").arg(ms(timer.nsecsElapsed()), 0, 'f', 2);
        timer.restart();
        auto ordered = session.database().OpenRecordset(sql);
        out << QStringLiteral("all rows, ordered: %1 ms\n").arg(ms(timer.nsecsElapsed()), 0, 'f', 2);
        timer.restart();
        const qsizetype items = finding::SearchListItems(*ordered).items.size();
        out << QStringLiteral("list rules over %1 rows: %2 ms\n")
                   .arg(items)
                   .arg(ms(timer.nsecsElapsed()), 0, 'f', 2);
    }

    // The window: a pick of a type runs the query and fills the list; the all-entry lists
    // every resource.
    frmSearchResources *search = nullptr;
    timer.restart();
    platform::guarded([&] { search = session.window<frmSearchResources>(Session::Window::SearchResources); });
    out << "window load with 20000 items: " << timer.elapsed() << " ms\n";
    if (!search)
        return 1;
    for (int round = 0; round < 3; ++round) {
        for (int index = 0; index < search->cmbResType->count(); ++index) {
            finding::SearchCriteria c;
            c.ResType = QString::number(search->cmbResType->itemData(index).toInt());
            timer.restart();
            finding::Search(session.database(), c);
            const double query = ms(timer.nsecsElapsed());
            timer.restart();
            search->cmbResType->setCurrentIndex(index);
            const double pick = ms(timer.nsecsElapsed());
            out << QStringLiteral("pick type '%1' (%2 items): %3 ms, of which filling the list %4 ms\n")
                       .arg(search->cmbResType->itemText(index))
                       .arg(search->lvwResources->topLevelItemCount())
                       .arg(pick, 0, 'f', 1)
                       .arg(pick - query, 0, 'f', 1);
        }
    }
    return 0;
}
