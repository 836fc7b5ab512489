// The text search's words and index without a window: how words fold and match, what a
// query means, the order of results, the sources' files, and the index in the cache.

#include "fulltextcontent.h"
#include "warninglog.h"

#include <fulltextindex.h>
#include <runtimeerror.h>
#include <textquery.h>
#include <wordfold.h>

#include <QDateTime>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>
#include <sys/resource.h>

#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;
using fulltextcontent::ids;

namespace {

QStringList folded(const QString &text)
{
    QStringList out;
    for (const fulltext::Word &w : fulltext::words(text))
        out << w.folded;
    return out;
}

QStringList fileNames(const QString &folder)
{
    QStringList names;
    for (const QFileInfo &info : QDir(folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        names << info.fileName() + u' ' + QString::number(info.size()) + u' '
                + QString::number(info.lastModified().toMSecsSinceEpoch());
        if (info.isDir())
            names << fileNames(info.filePath());
    }
    return names;
}

// When `apply`, files this process writes may not grow past `bytes` while it lives, as
// on a disk that fills.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes, bool apply)
    {
        getrlimit(RLIMIT_FSIZE, &m_previous);
        if (!apply)
            return;
        m_applied = true;
        m_signal = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = m_previous;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        if (!m_applied)
            return;
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_signal);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit m_previous {};
    bool m_applied = false;
    void (*m_signal)(int) = SIG_DFL;
};

// Sets an environment variable while it lives.
class EnvironmentValue
{
public:
    EnvironmentValue(const char *name, const QByteArray &value)
        : m_name(name)
        , m_had(qEnvironmentVariableIsSet(name))
        , m_previous(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~EnvironmentValue()
    {
        if (m_had)
            qputenv(m_name, m_previous);
        else
            qunsetenv(m_name);
    }
    Q_DISABLE_COPY_MOVE(EnvironmentValue)

private:
    const char *m_name;
    bool m_had;
    QByteArray m_previous;
};

} // namespace

class tst_FullText : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_cache;
    QTemporaryDir m_content;
    QString m_db;
    std::unique_ptr<fulltext::Index> m_index;

    QList<qint32> find(const QString &query) { return ids(m_index->search(query)); }

private slots:
    void initTestCase()
    {
        QVERIFY(m_cache.isValid());
        QVERIFY(m_content.isValid());
        qputenv("XDG_CACHE_HOME", m_cache.path().toUtf8());
        m_db = fulltextcontent::make(m_content.path());
        m_index = fulltext::Index::open(fulltext::ensureIndex(m_db));
        QCOMPARE(m_index->sourceCount(), 6);
    }

    void greekFormsFoldToOneWord_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("expected");
        QTest::newRow("accent") << u"Δήλος"_s << u"δηλοσ"_s;
        QTest::newRow("capitals") << u"ΔΗΛΟΣ"_s << u"δηλοσ"_s;
        QTest::newRow("circumflex") << u"Δῆλος"_s << u"δηλοσ"_s;
        QTest::newRow("final sigma typed as sigma") << u"δηλοσ"_s << u"δηλοσ"_s;
        QTest::newRow("breathings") << u"Ἀπόλλων ἥρως"_s << u"απολλων ηρωσ"_s;
        QTest::newRow("iota subscript") << u"ᾠδῇ ᾼ"_s << u"ωδη α"_s;
        QTest::newRow("diaeresis") << u"προϊόν ΠΡΟΪΟΝ ΰ"_s << u"προιον προιον υ"_s;
        QTest::newRow("latin case and accents") << u"École ÉCOLE Straße"_s << u"ecole ecole strasse"_s;
    }

    void greekFormsFoldToOneWord()
    {
        QFETCH(QString, word);
        QFETCH(QString, expected);
        QCOMPARE(folded(word).join(u' '), expected);
    }

    void apostrophesAndMarksPartWords()
    {
        QCOMPARE(folded(u"απ' τον δ’ εκείνον μ\u02BCαυτό x-y"_s),
            QStringList({u"απ"_s, u"τον"_s, u"δ"_s, u"εκεινον"_s, u"μ"_s, u"αυτο"_s, u"x"_s, u"y"_s}));
        const QList<fulltext::Word> w = fulltext::words(u"  Δῆλος."_s);
        QCOMPARE(w.size(), 1);
        QCOMPARE(w.front().start, 2);
        QCOMPARE(w.front().length, 5);
    }

    void aWordFindsTheWordsItBegins()
    {
        // 1 has two words of it, 4 (in its legend) and 5 one each, in the list's order.
        QCOMPARE(find(u"Δήλ"_s), QList<qint32>({1, 4, 5}));
        QVERIFY(find(u"δηλιο"_s).contains(1));
        QCOMPARE(find(u"ΤΡΙΗΡ"_s), QList<qint32>({1}));
    }

    void aGreekWordFindsOtherEndingsOfItsStem()
    {
        QCOMPARE(find(u"ναού"_s), QList<qint32>({4, 3, 1, 5}));
        QCOMPARE(find(u"θάλασσα"_s), QList<qint32>({2}));
        QCOMPARE(find(u"τριήρης"_s), QList<qint32>({1}));
    }

    void aStemDoesNotReachOtherWords()
    {
        QVERIFY(!find(u"ναός"_s).contains(2));
        QCOMPARE(find(u"ναυτικός"_s), QList<qint32>({2}));
        // "να" is its own stem: "ναός" does not find the particle "να" of text 2.
        QCOMPARE(fulltext::greekStem(u"να"_s), QString());
        QCOMPARE(fulltext::greekStem(u"ναός"_s), u"να"_s);
    }

    void aShortStemFindsTheWordsFirstLettersOnly()
    {
        // "ναός", "ναι", "ναύς" and the particle "να" share the stem "να", too short to
        // join words: "ναός" finds the words that begin "ναο".
        QCOMPARE(fulltext::greekStem(u"ναι"_s), u"να"_s);
        QCOMPARE(fulltext::greekStem(u"ναυσ"_s), u"να"_s);
        QVERIFY(!find(u"ναός"_s).contains(7));
        QVERIFY(!find(u"ναοί"_s).contains(7));
        QCOMPARE(find(u"ναι"_s), QList<qint32>({7}));
        QCOMPARE(find(u"ναύς"_s), QList<qint32>({2, 7}));
        QCOMPARE(find(u"\"η ναός\""_s), QList<qint32>());
        const QString text = u"Ναι, ο ναός, η ναύς, να, του ναού, τον ναό, οι ναοί, τους ναούς."_s;
        QStringList marked;
        for (const fulltext::Hit &hit : fulltext::findHits(text, fulltext::parseQuery(u"ναός"_s)))
            marked << text.mid(hit.start, hit.length);
        QCOMPARE(marked, QStringList({u"ναός"_s, u"ναού"_s, u"ναό"_s, u"ναοί"_s, u"ναούς"_s}));
        // A stem of three letters or more still joins its endings; a beginning still counts.
        QCOMPARE(fulltext::parseQuery(u"θάλασσα"_s).phrases.front().front().stem, u"θαλασσ"_s);
        QCOMPARE(find(u"θάλασσα"_s), QList<qint32>({2}));
        QList<qint32> all = find(u"να"_s);
        std::sort(all.begin(), all.end());
        QCOMPARE(all, QList<qint32>({1, 2, 3, 4, 5, 7}));
    }

    void everyWordMustMatch()
    {
        QCOMPARE(find(u"ναός Παυσανίας"_s), QList<qint32>({3}));
        QCOMPARE(find(u"ναός Αθηναίων"_s), QList<qint32>());
    }

    void quotedWordsAreAPhrase()
    {
        QCOMPARE(find(u"\"ο ναός\""_s), QList<qint32>({4, 1}));
        QCOMPARE(find(u"\"ναός ο\""_s), QList<qint32>());
        QCOMPARE(find(u"\"ναός της Δήλου\""_s), QList<qint32>({1}));
        QCOMPARE(find(u"\"της Δήλου\" Απόλλωνα"_s), QList<qint32>({4}));
    }

    void aPhraseStaysInsideOneField()
    {
        // A title and its author, a title and its text, a caption and its legend.
        QCOMPARE(find(u"\"Ναοί Παυσανίας\""_s), QList<qint32>());
        QCOMPARE(find(u"\"Θουκυδίδης Τότε\""_s), QList<qint32>());
        QCOMPARE(find(u"\"Απόλλωνα Το ιερό\""_s), QList<qint32>());
        // Inside one field, and from one paragraph of a text to the next, it stands.
        QCOMPARE(find(u"\"Το ιερό της Δήλου\""_s), QList<qint32>({4}));
        QCOMPARE(find(u"\"καθαρίστηκε Οι Δήλιοι\""_s), QList<qint32>({1}));
        // What stands in the title still ranks first; the author is not the title.
        const QList<fulltext::Result> results = m_index->search(u"\"του Απόλλωνα\""_s);
        QCOMPARE(ids(results), QList<qint32>({4}));
        QCOMPARE(results.front().titleWords, 1);
        QCOMPARE(m_index->search(u"Παυσανίας"_s).front().titleWords, 0);
        QCOMPARE(m_index->search(u"Ναοί Παυσανίας"_s).front().titleWords, 1);
    }

    void operatorsArePlainWords_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QList<qint32>>("expected");
        QTest::newRow("NOT") << u"NOT Δήλος"_s << QList<qint32>({5});
        QTest::newRow("OR") << u"Ναυτικά OR Λόγοι"_s << QList<qint32>();
        QTest::newRow("or as a word") << u"or λόγοι"_s << QList<qint32>({5});
        QTest::newRow("star") << u"Δήλ*"_s << QList<qint32>({1, 4, 5});
        QTest::newRow("minus") << u"-Δήλου ναός"_s << QList<qint32>({4, 1, 5});
        QTest::newRow("double minus") << u"ναός --"_s << QList<qint32>({4, 3, 1, 5});
        QTest::newRow("NEAR") << u"NEAR(ναός Δήλου)"_s << QList<qint32>();
        QTest::newRow("open quote") << u"\"Δήλου ναός"_s << QList<qint32>({4, 1, 5});
        QTest::newRow("apostrophe") << u"x'y"_s << QList<qint32>({5});
        QTest::newRow("sql quote") << u"'; DROP TABLE docs; --"_s << QList<qint32>();
    }

    void operatorsArePlainWords()
    {
        QFETCH(QString, query);
        QFETCH(QList<qint32>, expected);
        QCOMPARE(find(query), expected);
    }

    void aQueryWithoutWordsFindsNothing_data()
    {
        QTest::addColumn<QString>("query");
        QTest::newRow("empty") << QString();
        QTest::newRow("spaces") << u"   "_s;
        QTest::newRow("star") << u"*"_s;
        QTest::newRow("quotes") << u"\"\""_s;
        QTest::newRow("dashes") << u"-- -"_s;
    }

    void aQueryWithoutWordsFindsNothing()
    {
        QFETCH(QString, query);
        QVERIFY(fulltext::parseQuery(query).isEmpty());
        QCOMPARE(find(query), QList<qint32>());
    }

    void theTitleComesFirstThenMoreHitsThenTheListOrder()
    {
        // 4 and 3 have it in their titles (photographs list before texts), then 1 and 5
        // by the list's order, each with one hit.
        const QList<fulltext::Result> results = m_index->search(u"ναός"_s);
        QCOMPARE(ids(results), QList<qint32>({4, 3, 1, 5}));
        QCOMPARE(results.at(0).titleWords, 1);
        QCOMPARE(results.at(2).titleWords, 0);
        QCOMPARE(results.at(0).title, u"Ο ναός του Απόλλωνα"_s);
        QCOMPARE(results.at(0).resTypeID, 1);
    }

    void theTextIsReadAsTheViewersShowIt()
    {
        // Code page bytes, a word split by a colour change, Unicode escapes, a line break.
        QVERIFY(find(u"ναός"_s).contains(5));
        QCOMPARE(find(u"Δήλος Λόγοι"_s), QList<qint32>({5}));
        QCOMPARE(find(u"\"ελιά Απόλλων\""_s), QList<qint32>({5}));
    }

    void aSourceWhoseFileIsMissingKeepsItsCatalogueWords()
    {
        QCOMPARE(find(u"Παυσανίας"_s), QList<qint32>({3}));
        QVERIFY(find(u"Ναοί"_s).contains(3));
    }

    void theContextLineMarksTheWordsFound()
    {
        const fulltext::TextQuery query = fulltext::parseQuery(u"Δήλου"_s);
        const QList<fulltext::Result> results = m_index->search(query);
        const fulltext::Result &text = results.at(1);
        QCOMPARE(text.resourceID, 1);
        const fulltext::ContextLine line = m_index->context(text, query);
        QVERIFY(line.text.contains(u"ο ναός της Δήλου"_s));
        QVERIFY(!line.text.contains(u'\n'));
        QCOMPARE(line.hits.size(), 1);
        QCOMPARE(line.text.mid(line.hits.front().start, line.hits.front().length), u"Δήλου"_s);
        // A text's hits are all marked; a phrase marks its words.
        const QList<fulltext::Hit> hits
            = fulltext::findHits(u"Ο ναός, ο ναός!"_s, fulltext::parseQuery(u"\"ο ναός\""_s));
        QCOMPARE(hits.size(), 4);
    }

    void theIndexIsBuiltOnceAndAgainWhenTheContentChanges()
    {
        const QString cache = fulltext::cacheFileFor(m_db);
        QVERIFY(cache.startsWith(m_cache.path() + u"/tremidia/"_s));
        QVERIFY(fulltext::isCurrent(m_db));
        const QDateTime built = QFileInfo(cache).lastModified();
        QTest::qWait(20);
        QCOMPARE(fulltext::ensureIndex(m_db), cache);
        QCOMPARE(QFileInfo(cache).lastModified(), built);

        {
            content::sqlite::Connection db(m_db, SQLITE_OPEN_READWRITE);
            db.execute(
                u"INSERT INTO Resources (ResourceID, ResTypeID, Caption) VALUES (6, 5, 'Χάρτης της Νάξου')"_s);
        }
        QVERIFY(!fulltext::isCurrent(m_db));
        auto index = fulltext::Index::open(fulltext::ensureIndex(m_db));
        QVERIFY(fulltext::isCurrent(m_db));
        QCOMPARE(ids(index->search(u"Νάξος"_s)), QList<qint32>({6}));
        QCOMPARE(ids(m_index->search(u"Νάξος"_s)), QList<qint32>());
    }

    void aTextChangedPutInPlaceOrRemovedMakesTheIndexStale()
    {
        QTemporaryDir folder;
        const QString db = fulltextcontent::make(folder.path());
        const QString piges = folder.path() + u"/piges/"_s;
        const auto findIn = [&](const QString &query) {
            return ids(fulltext::Index::open(fulltext::ensureIndex(db))->search(query));
        };
        QCOMPARE(findIn(u"ξανά"_s), QList<qint32>());
        QVERIFY(fulltext::isCurrent(db));

        // A word added to a text.
        const QString t1 = piges + u"t1.rtf"_s;
        fulltextcontent::writeFile(t1, fulltextcontent::rtfOf(u"{\\rtf1 Ο ναός καθαρίστηκε ξανά.}"_s));
        QVERIFY(!fulltext::isCurrent(db));
        QCOMPARE(findIn(u"ξανά"_s), QList<qint32>({1}));
        QVERIFY(fulltext::isCurrent(db));
        // A word changed for one as long, the file's time of change all that tells.
        QDateTime changed = QFileInfo(t1).lastModified();
        fulltextcontent::writeFile(t1, fulltextcontent::rtfOf(u"{\\rtf1 Ο ναός καθαρίστηκε πάλι.}"_s));
        {
            QFile file(t1);
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(changed.addSecs(1), QFileDevice::FileModificationTime));
        }
        QVERIFY(!fulltext::isCurrent(db));
        QCOMPARE(findIn(u"πάλι"_s), QList<qint32>({1}));

        // A text put in place where a source named one that was not there.
        const QString missing = piges + u"missing.rtf"_s;
        fulltextcontent::writeFile(missing, fulltextcontent::rtfOf(u"{\\rtf1 Ο Πίνδαρος}"_s));
        QVERIFY(!fulltext::isCurrent(db));
        QCOMPARE(findIn(u"Πίνδαρος"_s), QList<qint32>({3}));
        // Removed again, then put in place under a name of another case.
        QVERIFY(QFile::remove(missing));
        QVERIFY(!fulltext::isCurrent(db));
        QCOMPARE(findIn(u"Πίνδαρος"_s), QList<qint32>());
        QTest::qWait(30); // the folder's time of change moves on
        fulltextcontent::writeFile(
            piges + u"MISSING.RTF"_s, fulltextcontent::rtfOf(u"{\\rtf1 Ο Πίνδαρος}"_s));
        QVERIFY(!fulltext::isCurrent(db));
        QCOMPARE(findIn(u"Πίνδαρος"_s), QList<qint32>({3}));

        // A text removed.
        QVERIFY(QFile::remove(piges + u"t2.rtf"_s));
        QVERIFY(!fulltext::isCurrent(db));
        QCOMPARE(findIn(u"θάλασσα"_s), QList<qint32>());
    }

    void anUnwritableCacheSearchesFromAnIndexInMemory_data()
    {
        QTest::addColumn<QString>("cache");
        QTest::newRow("read-only folder") << u"read-only"_s;
        QTest::newRow("read-only index folder") << u"read-only index folder"_s;
        QTest::newRow("under a regular file") << u"under a file"_s;
        QTest::newRow("full") << u"full"_s;
    }

    void anUnwritableCacheSearchesFromAnIndexInMemory()
    {
        QFETCH(QString, cache);
        if (cache.startsWith(u"read-only"_s) && geteuid() == 0)
            QSKIP("the superuser writes in a read-only folder");
        QTemporaryDir folder;
        const QString db = fulltextcontent::make(folder.path() + u"/content"_s);
        QString home = folder.path() + u"/cache"_s;
        const QString locked = cache == u"read-only"_s ? home : home + u"/tremidia"_s;
        if (cache.startsWith(u"read-only"_s)) {
            QVERIFY(QDir().mkpath(locked));
            QVERIFY(QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        } else if (cache == u"under a file"_s) {
            fulltextcontent::writeFile(home, "a file, not a folder");
            home += u"/cache"_s;
        }
        std::unique_ptr<fulltext::Index> index;
        QStringList warnings;
        bool current = true;
        {
            const EnvironmentValue cacheHome("XDG_CACHE_HOME", QFile::encodeName(home));
            testing::WarningLog log;
            {
                const FileSizeLimit limit(16384, cache == u"full"_s);
                index = fulltext::openIndex(db);
            }
            current = fulltext::isCurrent(db);
            warnings = log.lines();
        }
        QFile::setPermissions(
            locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QVERIFY(index);
        QCOMPARE(warnings.size(), 1);
        QVERIFY2(warnings.front().startsWith(u"tremidia.content "_s), qPrintable(warnings.front()));
        QVERIFY(!current);
        QCOMPARE(index->sourceCount(), 6);
        QCOMPARE(ids(index->search(u"Δήλιοι"_s)), QList<qint32>({1}));
        QCOMPARE(ids(index->search(u"\"ο ναός\""_s)), QList<qint32>({4, 1}));
        const fulltext::TextQuery query = fulltext::parseQuery(u"τριήρεις"_s);
        QVERIFY(index->context(index->search(query).front(), query).text.contains(u"τις τριήρεις"_s));
        // Nothing was left behind in the cache.
        QCOMPARE(QDir(home + u"/tremidia"_s).entryList(QDir::Files), QStringList());
    }

    void aReadOnlyContentFolderIsNeverWritten()
    {
        QTemporaryDir folder;
        const QString db = fulltextcontent::make(folder.path());
        const QStringList before = fileNames(folder.path());
        QVERIFY(QFile::setPermissions(folder.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        QVERIFY(QFile::setPermissions(
            folder.path() + u"/piges"_s, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        const QString cache = fulltext::ensureIndex(db);
        QVERIFY(cache.startsWith(m_cache.path()));
        QCOMPARE(ids(fulltext::Index::open(cache)->search(u"Δήλιοι"_s)), QList<qint32>({1}));
        QCOMPARE(fileNames(folder.path()), before);
        QFile::setPermissions(
            folder.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QFile::setPermissions(folder.path() + u"/piges"_s,
            QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }

    void aCancelledBuildLeavesNoIndex()
    {
        QTemporaryDir folder;
        const QString db = fulltextcontent::make(folder.path());
        try {
            fulltext::ensureIndex(db, [](qint64 done, qint64) { return done < 2; });
            QFAIL("the build went on");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), 3059);
        }
        QVERIFY(!fulltext::isCurrent(db));
        QCOMPARE(QDir(fulltext::cacheFolder()).entryList({u"*.tmp"_s}, QDir::Files), QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_FullText)
#include "tst_fulltext.moc"
