// The content tool's search and index commands, on content with awkward texts and on the
// Jet test file: the list exactly as the windows fill it.

#include "../support/contenttool.h"
#include "findingcontent.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Run = testing::ToolRun;

Run tool(const QStringList &args)
{
    return testing::contentTool(args);
}

const QString jet = QStringLiteral(TREMIDIA_FIXTURES_DIR "/content-jet4.mdb");

} // namespace

class tst_FindingTool : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_db;

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_db = m_dir.path() + u"/content.sqlite"_s;
        testcontent::Builder b(m_db);
        findingcontent::fill(b);
        b.close();
    }

    void searchPrintsIconTextAndTagPerItem()
    {
        const Run run = tool({u"search"_s, m_db, u"--type"_s, u"2"_s});
        QCOMPARE(run.exitCode, 0);
        QStringList texts;
        for (const QString &line : run.lines) {
            const QStringList fields = line.split(u'\t');
            QCOMPARE(fields.size(), 3);
            QCOMPARE(fields.at(0), u"keimeno"_s);
            texts << fields.at(1);
        }
        QCOMPARE(texts, findingcontent::dictionaryOrder());
    }

    void searchFindsAwkwardAuthorsAndMuseums_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        const QStringList texts = findingcontent::awkwardTexts();
        for (qsizetype i = 0; i < texts.size(); ++i) {
            const QString line = u"agio\t"_s + texts.at(i) + u'\t' + QString::number(300 + i);
            QTest::addRow("author %d", int(i)) << u"--author"_s << texts.at(i) << line;
            QTest::addRow("museum %d", int(i)) << u"--museum"_s << texts.at(i) << line;
        }
    }

    void searchFindsAwkwardAuthorsAndMuseums()
    {
        QFETCH(QString, option);
        QFETCH(QString, text);
        QFETCH(QString, line);
        const Run run = tool({u"search"_s, m_db, option, text});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.lines, QStringList {line});
    }

    void searchCombinesKeywordPlaceAndTime()
    {
        const Run run
            = tool({u"search"_s, m_db, u"--keyword"_s, u"9"_s, u"--place"_s, u"7"_s, u"--time"_s, u"8"_s});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(
            run.lines, QStringList({u"agio\tx' OR '1'='1\t302"_s, u"agio\tΜουσεί' Αρχαίας Αγοράς\t300"_s}));
    }

    void searchShowsTheInscriptionAndTheJetFixturesApostrophe()
    {
        const Run all = tool({u"search"_s, jet});
        QCOMPARE(all.exitCode, 0);
        QVERIFY(all.lines.contains(u"agio\tΤο λεγόμενο \"Πάριο Χρονικό\"\t211"_s));
        // The sound source 215 makes no line, and the text before it keeps its own tag.
        QCOMPARE(all.lines.size(), 13);
        QVERIFY(std::none_of(all.lines.cbegin(), all.lines.cend(),
            [](const QString &line) { return line.endsWith(u"\t215"); }));
        QVERIFY(all.lines.contains(u"keimeno\tΙστορίαι, βιβλίο 6 (Ερατώ), 102-117\t202"_s));
        const Run museum = tool({u"search"_s, jet, u"--museum"_s, u"Μουσεί' Αρχαίας Αγοράς"_s});
        QCOMPARE(museum.exitCode, 0);
        QCOMPARE(museum.lines, QStringList {u"agio\tΌστρακα με το όνομα του Θεμιστοκλή\t201"_s});
    }

    void searchPrintsTheInscriptionLiteral()
    {
        QTemporaryDir dir;
        const QString path = dir.path() + u"/inscription.sqlite"_s;
        testcontent::Builder b(path);
        findingcontent::resource(b, 1, 2, u"Inscriptiones Graeca,e, XII 5, 444"_s, QVariant());
        b.close();
        const Run run = tool({u"search"_s, path});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.lines, QStringList {u"epigrafi\tInscriptiones Graeca,e, XII 5, 444\t1"_s});
    }

    void soundAndVideoRowsMakeNoLineAndTakeNoTag()
    {
        QTemporaryDir dir;
        const QString path = dir.path() + u"/kinds.sqlite"_s;
        testcontent::Builder b(path);
        findingcontent::resource(b, 1, 3, u"Ήχος πρώτος"_s, QVariant());
        findingcontent::resource(b, 2, 2, u"Κείμενο"_s, QVariant());
        findingcontent::resource(b, 3, 4, u"Βίντεο"_s, QVariant());
        b.close();
        const Run run = tool({u"search"_s, path});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.lines, QStringList {u"keimeno\tΚείμενο\t2"_s});
        const Run sound = tool({u"search"_s, path, u"--type"_s, u"3"_s});
        QCOMPARE(sound.exitCode, 0);
        QVERIFY(sound.lines.isEmpty());
    }

    void searchRejectsBadOptions()
    {
        QCOMPARE(tool({u"search"_s}).exitCode, 1);
        QCOMPARE(tool({u"search"_s, m_db, u"--type"_s}).exitCode, 1);
        QCOMPARE(tool({u"search"_s, m_db, u"--type"_s, u"δύο"_s}).exitCode, 1);
        QCOMPARE(tool({u"search"_s, m_db, u"--colour"_s, u"1"_s}).exitCode, 1);
    }

    void indexPrintsIdAndTermInListOrder()
    {
        const Run run = tool({u"index"_s, m_db});
        QCOMPARE(run.exitCode, 0);
        QStringList terms;
        for (const QString &line : run.lines) {
            const QStringList fields = line.split(u'\t');
            QCOMPARE(fields.size(), 2);
            QVERIFY(fields.at(0).toInt() >= 500);
            terms << fields.at(1);
        }
        QCOMPARE(terms, findingcontent::dictionaryOrder());
        QCOMPARE(tool({u"index"_s, m_db, u"0"_s}).lines, run.lines);
        QCOMPARE(tool({u"index"_s, m_db, u"1"_s}).lines, run.lines);
        const Run empty = tool({u"index"_s, m_db, u"5"_s});
        QCOMPARE(empty.exitCode, 0);
        QVERIFY(empty.lines.isEmpty());
        QCOMPARE(tool({u"index"_s, m_db, u"ένα"_s}).exitCode, 1);
    }
};

QTEST_GUILESS_MAIN(tst_FindingTool)
#include "tst_findingtool.moc"
