// The content tool's fulltext command on the sample course and on the Jet test files:
// one line per source found, best first; nothing for no match; a file that cannot be
// read is an error; a text corrected is found on the next run; a cache that cannot be
// written leaves the index in memory; a damaged index is built again; a new index reaches
// the disk before its name does.

#include "../support/contenttool.h"
#include "indexdamage.h"
#include "samplecopy.h"

#include <fulltextindex.h>

#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString sample = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
const QString jet4 = QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb");
const QString jet3 = QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet3.mdb");

} // namespace

class tst_FullTextTool : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_cache;

private slots:
    void initTestCase()
    {
        QVERIFY(m_cache.isValid());
        // The tool keeps its index where the program does; here, a folder of the test's own.
        qputenv("XDG_CACHE_HOME", m_cache.path().toUtf8());
    }

    void theSampleListsTheSourcesBestFirst()
    {
        if (!QFileInfo::exists(sample))
            QSKIP("the sample course is not built");
        const testing::ToolRun run = testing::contentTool({u"fulltext"_s, sample, u"ΔΗΛΟΣ"_s});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.lines.size() >= 3);
        for (const QString &line : run.lines)
            QCOMPARE(line.split(u'\t').size(), 3);
        QVERIFY(run.lines.front().split(u'\t').at(2).contains(u"Δήλου"_s));
        // The words of the command line form one query.
        const testing::ToolRun two
            = testing::contentTool({u"fulltext"_s, sample, u"\"της Δήλου\""_s, u"Θουκυδίδης"_s});
        QCOMPARE(two.exitCode, 0);
        QVERIFY(!two.lines.isEmpty());
        QVERIFY(two.lines.size() < run.lines.size());
        QVERIFY(QDir(m_cache.path() + u"/tremidia"_s).entryList({u"fulltext-*.sqlite"_s}).size() == 1);
    }

    void noMatchPrintsNothing()
    {
        if (!QFileInfo::exists(sample))
            QSKIP("the sample course is not built");
        for (const QStringList &query :
            {QStringList {u"ξυλοκερατιά"_s}, QStringList {}, QStringList {u"*"_s}}) {
            const testing::ToolRun run = testing::contentTool(QStringList {u"fulltext"_s, sample} + query);
            QCOMPARE(run.exitCode, 0);
            QCOMPARE(run.lines, QStringList());
            QCOMPARE(run.errors, QString());
        }
    }

    void aCorrectedTextIsFoundOnTheNextRun()
    {
        if (!QFileInfo::exists(sample))
            QSKIP("the sample course is not built");
        // A copy of the course's content and texts, one text corrected between two runs.
        QTemporaryDir copy;
        const QString content = testing::copySampleTexts(sample, copy.path());
        QVERIFY(!content.isEmpty());
        const QStringList query {u"fulltext"_s, content, u"ξυλοκερατιά"_s};
        QCOMPARE(testing::contentTool(query).lines, QStringList());
        QVERIFY(testing::addCarobTree(copy.path() + u"/piges/akrotiri.rtf"_s));
        const testing::ToolRun run = testing::contentTool(query);
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.lines, QStringList({u"107\t2\tΑκρωτήρι: μια πόλη κάτω από τη στάχτη"_s}));
    }

    void anUnwritableCacheSearchesFromAnIndexInMemory()
    {
        if (!QFileInfo::exists(sample))
            QSKIP("the sample course is not built");
        const testing::ToolRun kept = testing::contentTool({u"fulltext"_s, sample, u"ΔΗΛΟΣ"_s});
        QTemporaryDir dir;
        QFile file(dir.path() + u"/file"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        // A cache folder that cannot be made, below a regular file.
        qputenv("XDG_CACHE_HOME", QFile::encodeName(file.fileName() + u"/cache"_s));
        const testing::ToolRun run = testing::contentTool({u"fulltext"_s, sample, u"ΔΗΛΟΣ"_s});
        qputenv("XDG_CACHE_HOME", m_cache.path().toUtf8());
        QCOMPARE(run.exitCode, 0);
        QVERIFY(!run.lines.isEmpty());
        QCOMPARE(run.lines, kept.lines);
        const QStringList warnings = run.errors.split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(warnings.size(), 1);
        QVERIFY2(warnings.front().startsWith(u"tremidia.content: "_s), qPrintable(run.errors));
    }

    void aDamagedIndexIsBuiltAgainAndAnswersRight()
    {
        if (!QFileInfo::exists(sample))
            QSKIP("the sample course is not built");
        QCOMPARE(testing::contentTool({u"fulltext"_s, sample, u"Δήλος"_s}).exitCode, 0);
        // The word whose postings are lost is the one asked for.
        const QString word = indexdamage::overwriteTermPostings(fulltext::cacheFileFor(sample));
        QVERIFY(!word.isEmpty());
        const QStringList args {u"fulltext"_s, sample, word, u"\"της Δήλου\""_s};
        const testing::ToolRun damaged = testing::contentTool(args);
        QCOMPARE(damaged.exitCode, 0);
        QCOMPARE(damaged.errors.count(QRegularExpression(u"the text search's index .* is built again"_s)), 1);
        QVERIFY(!damaged.lines.isEmpty());
        const testing::ToolRun again = testing::contentTool(args);
        QCOMPARE(again.lines, damaged.lines);
        QCOMPARE(again.errors, QString());
    }

    // Traced as it builds: the file's data is synced before the rename puts it under the
    // index's name, and the folder after, so that a power cut leaves one whole index.
    void aNewIndexReachesTheDiskBeforeItsName()
    {
        if (!QFileInfo::exists(sample))
            QSKIP("the sample course is not built");
        const QString strace = QStandardPaths::findExecutable(u"strace"_s);
        if (strace.isEmpty())
            QSKIP("strace is not installed");
        QTemporaryDir cache;
        const QString log = cache.filePath(u"trace.log"_s);
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"XDG_CACHE_HOME"_s, cache.path());
        // The leak checker of a sanitizer build cannot run under a tracer.
        env.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
        process.setProcessEnvironment(env);
        process.start(strace,
            {u"-f"_s, u"-y"_s, u"-qq"_s, u"-e"_s, u"trace=fsync,fdatasync,rename,renameat,renameat2"_s,
                u"-o"_s, log, QStringLiteral(TREMIDIA_BINARY_DIR "/bin/tremidia-content"), u"fulltext"_s,
                sample, u"Δήλος"_s});
        QVERIFY(process.waitForFinished(120000));
        QCOMPARE(process.exitCode(), 0);
        QFile file(log);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QStringList calls = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        const QString index = fulltext::cacheFileFor(sample).replace(m_cache.path(), cache.path());
        const auto find = [&](const QRegularExpression &call) {
            for (qsizetype i = 0; i < calls.size(); ++i) {
                if (call.match(calls.at(i)).hasMatch())
                    return i;
            }
            return qsizetype(-1);
        };
        const QString name = QRegularExpression::escape(index);
        const qsizetype dataSynced
            = find(QRegularExpression(u"f(data)?sync\\(\\d+<"_s + name + u"\\.[^>]*\\.tmp>\\) = 0"_s));
        const qsizetype renamed = find(
            QRegularExpression(u"rename(at2?)?\\(.*\\.tmp\", .*\""_s + name + u"\"(, \\d+)?\\) = 0"_s));
        const qsizetype folderSynced = find(QRegularExpression(u"f(data)?sync\\(\\d+<"_s
            + QRegularExpression::escape(QFileInfo(index).absolutePath()) + u">\\) = 0"_s));
        QVERIFY2(
            dataSynced >= 0 && renamed > dataSynced && folderSynced > renamed, qPrintable(calls.join(u'\n')));
    }

    void aJetFileIsSearchedToo_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("jet 4") << jet4;
        QTest::newRow("jet 3") << jet3;
    }

    void aJetFileIsSearchedToo()
    {
        QFETCH(QString, file);
        // Its text files are not beside it: the catalogue's words are found all the same.
        const testing::ToolRun run = testing::contentTool({u"fulltext"_s, file, u"Μαραθώνα"_s});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.lines.contains(u"212\t1\tΟ τύμβος των Αθηναίων (Σωρός) στον Μαραθώνα"_s));
        QVERIFY(run.lines.contains(u"202\t2\tΙστορίαι, βιβλίο 6 (Ερατώ), 102-117"_s));
    }

    void aFileThatCannotBeReadIsAnError()
    {
        QTemporaryDir dir;
        const testing::ToolRun missing
            = testing::contentTool({u"fulltext"_s, dir.path() + u"/none.mdb"_s, u"x"_s});
        QCOMPARE(missing.exitCode, 1);
        QVERIFY(missing.errors.startsWith(u"tremidia-content: "_s));
        QVERIFY(missing.lines.isEmpty());
        QFile junk(dir.path() + u"/junk.mdb"_s);
        QVERIFY(junk.open(QIODevice::WriteOnly));
        junk.write("not a database at all");
        junk.close();
        const testing::ToolRun damaged = testing::contentTool({u"fulltext"_s, junk.fileName(), u"x"_s});
        QCOMPARE(damaged.exitCode, 1);
        QVERIFY(!damaged.errors.isEmpty());
        const testing::ToolRun usage = testing::contentTool({u"fulltext"_s});
        QCOMPARE(usage.exitCode, 1);
    }
};

QTEST_GUILESS_MAIN(tst_FullTextTool)
#include "tst_fulltexttool.moc"
