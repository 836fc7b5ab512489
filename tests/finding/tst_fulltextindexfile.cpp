// The text search's index file: a damaged file is found on opening and built again, never
// read past its ends; a new file replaces the old one only whole and on the disk; its
// texts are stored packed and come back as they were.

#include "fulltextcontent.h"
#include "indexdamage.h"

#include <fulltextindex.h>
#include <runtimeerror.h>
#include <sourcetexts.h>

#include <QDateTime>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using fulltextcontent::ids;

namespace {

// The line a damaged index leaves in tremidia.content as it is built again.
void expectRebuildLine()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"the text search's index .* is built again"_s));
}

// A pid that no process has now.
qint64 endedProcessId()
{
    QProcess process;
    process.start(u"true"_s, {});
    process.waitForStarted();
    const qint64 pid = process.processId();
    process.waitForFinished();
    return pid;
}

// Plain Greek prose of `bytes` UTF-8 bytes or a little more, drawn from a small vocabulary.
QString prose(quint32 seed, qsizetype bytes)
{
    static const QStringList words = {u"και"_s, u"ο"_s, u"η"_s, u"το"_s, u"της"_s, u"των"_s, u"στην"_s,
        u"ναός"_s, u"Δήλου"_s, u"Απόλλωνα"_s, u"θάλασσα"_s, u"Αθηναίοι"_s, u"τριήρεις"_s, u"πόλη"_s,
        u"νησί"_s, u"λιμάνι"_s, u"ιερό"_s, u"γιορτή"_s, u"αγώνες"_s, u"έφυγαν"_s, u"ήρθαν"_s,
        u"καθαρίστηκε"_s, u"Θουκυδίδης"_s, u"ιστορία"_s, u"πόλεμος"_s, u"ειρήνη"_s, u"σύμμαχοι"_s,
        u"Σπαρτιάτες"_s, u"στόλος"_s, u"καράβια"_s, u"κάτοικοι"_s, u"ελιά"_s};
    QString text;
    quint32 state = seed;
    qsizetype size = 0;
    int sentence = 0;
    while (size < bytes) {
        state = state * 1664525u + 1013904223u;
        // Common words far more often than the rest.
        const quint32 r = (state >> 8) % 1024;
        const QString &w = words.at(qsizetype((r * r / 1024) * words.size() / 1024));
        text += w;
        size += w.toUtf8().size() + 1;
        text += ++sentence % 12 == 0 ? u"."_s : u""_s;
        text += u' ';
    }
    return text;
}

} // namespace

class tst_FullTextIndexFile : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_cache;
    QTemporaryDir m_content;
    QString m_db;

    QList<fulltext::Source> sources() const
    {
        const auto db = content::Database::OpenDatabase(m_db);
        return fulltext::readSources(*db);
    }

    QString freshIndex()
    {
        QFile::remove(fulltext::cacheFileFor(m_db));
        return fulltext::ensureIndex(m_db);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_cache.isValid());
        QVERIFY(m_content.isValid());
        qputenv("XDG_CACHE_HOME", m_cache.path().toUtf8());
        m_db = fulltextcontent::make(m_content.path());
    }

    void aTermOverwrittenInTheFileIsFoundDamaged()
    {
        const QString cache = freshIndex();
        QVERIFY(!indexdamage::overwriteTermPostings(cache).isEmpty());
        try {
            const auto index = fulltext::Index::open(cache);
            index->search(u"\"ο ναός\" Δήλου"_s);
            QFAIL("the damaged index was opened");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), 3343);
        }
    }

    void damageThatPointsInsideIsFoundToo_data()
    {
        QTest::addColumn<bool>("ofAText");
        QTest::newRow("a text's title") << true;
        // Before an empty field, which the checksum must not take for a fresh start.
        QTest::newRow("a photograph's title") << false;
    }

    void damageThatPointsInsideIsFoundToo()
    {
        QFETCH(bool, ofAText);
        const QString cache = freshIndex();
        QVERIFY(indexdamage::swapTitleLetters(cache, ofAText));
        QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, fulltext::Index::open(cache));
    }

    void aDamagedIndexIsBuiltAgainAndAnswersRight_data()
    {
        QTest::addColumn<int>("damage");
        QTest::newRow("a term overwritten") << 0;
        QTest::newRow("a title changed") << 1;
        QTest::newRow("its second half lost") << 2;
        QTest::newRow("cut short") << 3;
    }

    void aDamagedIndexIsBuiltAgainAndAnswersRight()
    {
        QFETCH(int, damage);
        const QString cache = freshIndex();
        const QList<qint32> right = ids(fulltext::Index::open(cache)->search(u"ναός"_s));
        QCOMPARE(right, QList<qint32>({4, 3, 1, 5}));
        switch (damage) {
        case 0:
            QVERIFY(!indexdamage::overwriteTermPostings(cache).isEmpty());
            break;
        case 1:
            QVERIFY(indexdamage::swapTitleLetters(cache));
            break;
        case 2:
            QVERIFY(indexdamage::zeroSecondHalf(cache));
            break;
        default:
            QVERIFY(QFile::resize(cache, QFileInfo(cache).size() / 2));
        }
        // A file cut where its meta stood is not current any more, and is built without a word.
        if (fulltext::isCurrent(m_db))
            expectRebuildLine();
        const auto index = fulltext::Index::open(fulltext::ensureIndex(m_db));
        QCOMPARE(ids(index->search(u"ναός"_s)), right);
        QCOMPARE(index->search(u"Θουκυδίδης"_s).value(0).title, u"Θουκυδίδης"_s);
        // Built again on the disk too: the next opening reads it as it is.
        QCOMPARE(ids(fulltext::Index::open(cache)->search(u"ναός"_s)), right);
        QCOMPARE(fulltext::ensureIndex(m_db), cache);
    }

    void ensureIndexBuildsADamagedIndexAgain()
    {
        const QString cache = freshIndex();
        QVERIFY(!indexdamage::overwriteTermPostings(cache).isEmpty());
        expectRebuildLine();
        QCOMPARE(fulltext::ensureIndex(m_db), cache);
        QCOMPARE(ids(fulltext::Index::open(cache)->search(u"Δήλ"_s)), QList<qint32>({1, 4, 5}));
    }

    void anIndexOfAnotherFormatIsBuiltAgain()
    {
        const QString cache = freshIndex();
        {
            content::sqlite::Connection db(cache, SQLITE_OPEN_READWRITE);
            db.execute(u"UPDATE meta SET value = '1' WHERE key = 'format'"_s);
        }
        QVERIFY(!fulltext::isCurrent(m_db));
        QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, fulltext::Index::open(cache));
        QCOMPARE(ids(fulltext::Index::open(fulltext::ensureIndex(m_db))->search(u"ναυτικός"_s)),
            QList<qint32>({2}));
        QVERIFY(fulltext::isCurrent(m_db));
    }

    void aHalfWrittenTemporaryNeverReplacesTheIndex()
    {
        const QString cache = freshIndex();
        const QByteArray good = indexdamage::bytesOf(cache);
        // Left by a build that a power cut stopped, and by one still running here.
        const QString torn = cache + u".%1-5eed.tmp"_s.arg(endedProcessId());
        const QString running = cache + u".%1-7a11.tmp"_s.arg(QCoreApplication::applicationPid());
        for (const QString &path : {torn, running}) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(good.left(good.size() / 2));
        }
        QCOMPARE(fulltext::ensureIndex(m_db), cache);
        QCOMPARE(indexdamage::bytesOf(cache), good);
        // The next build clears what ended builds left, and only that.
        QCOMPARE(fulltext::buildIndex(m_db, sources(), m_content.path()), cache);
        QVERIFY(!QFileInfo::exists(torn));
        QVERIFY(QFileInfo::exists(running));
        QFile::remove(running);
        QCOMPARE(fulltext::Index::open(cache)->sourceCount(), int(sources().size()));
    }

    void aFailedBuildKeepsTheOldIndex()
    {
        const QString cache = freshIndex();
        const QByteArray good = indexdamage::bytesOf(cache);
        try {
            fulltext::buildIndex(
                m_db, sources(), m_content.path(), [](qint64 done, qint64) { return done < 3; });
            QFAIL("the build went on");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), 3059);
        }
        QCOMPARE(indexdamage::bytesOf(cache), good);
        QCOMPARE(ids(fulltext::Index::open(cache)->search(u"ναός"_s)), QList<qint32>({4, 3, 1, 5}));
        QCOMPARE(QDir(fulltext::cacheFolder()).entryList({u"*.tmp"_s}, QDir::Files), QStringList());
    }

    void theIndexTakesAtMostHalfTheSizeOfItsTexts()
    {
        QTemporaryDir folder;
        QDir(folder.path()).mkpath(u"piges"_s);
        const QString db = folder.path() + u"/content.sqlite"_s;
        qint64 textBytes = 0;
        {
            testcontent::Builder b(db);
            for (int id = 1; id <= 120; ++id) {
                const QString text = prose(quint32(id), 6000 + (id % 5) * 1000);
                textBytes += text.toUtf8().size();
                const QString name = u"t%1.rtf"_s.arg(id);
                fulltextcontent::writeFile(folder.path() + u"/piges/"_s + name,
                    fulltextcontent::rtfOf(u"{\\rtf1\\ansi "_s + text + u"}"_s));
                b.textResource(id, name, u"Κείμενο %1"_s.arg(id));
            }
        }
        const QString cache = fulltext::ensureIndex(db);
        QVERIFY2(QFileInfo(cache).size() <= textBytes / 2,
            qPrintable(u"%1 bytes for %2 of text"_s.arg(QFileInfo(cache).size()).arg(textBytes)));
        const auto index = fulltext::Index::open(cache);
        const QList<fulltext::Result> found = index->search(u"Κείμενο 101"_s);
        QCOMPARE(found.value(0).resourceID, 101);
        QVERIFY(index->sourceText(found.front()).endsWith(prose(101, 6000 + 1000)));
    }

    void everyCharacterOfATextComesBack()
    {
        QTemporaryDir folder;
        QDir(folder.path()).mkpath(u"piges"_s);
        const QString db = folder.path() + u"/content.sqlite"_s;
        // ASCII, monotonic and polytonic Greek, the Greek block's last signs, Latin letters,
        // a control character, signs beyond the 16-bit range, Chinese.
        const QString words = u"Abc \u0001 ναός Ἀπόλλων ᾠδῇ ϰϱϵ϶Ͽ École Straße \u00A0 x\u0001y 𝔄𝔅 😀 中文"_s;
        {
            testcontent::Builder b(db);
            fulltextcontent::writeFile(folder.path() + u"/piges/t1.rtf"_s,
                fulltextcontent::rtfOf(u"{\\rtf1\\ansi "_s + words + u"}"_s));
            b.textResource(1, u"t1.rtf"_s, u"Όλα \u0001 ϶"_s);
            b.textResource(2, u"none.rtf"_s, u"Κανένα"_s);
        }
        const QString text = fulltext::readSourceText(folder.path() + u"/piges/t1.rtf"_s);
        QVERIFY(text.contains(u"😀"_s));
        const auto index = fulltext::Index::open(fulltext::ensureIndex(db));
        const QList<fulltext::Result> found = index->search(u"ναός"_s);
        QCOMPARE(found.size(), 1);
        const QString stored = index->sourceText(found.front());
        QVERIFY(stored.startsWith(u"Όλα \u0001 ϶\n"_s));
        QVERIFY(stored.endsWith(u'\n' + text));
        QCOMPARE(index->sourceText(index->search(u"Κανένα"_s).value(0)), u"Κανένα"_s);
    }
};

QTEST_GUILESS_MAIN(tst_FullTextIndexFile)
#include "tst_fulltextindexfile.moc"
