#include "../support/contenttool.h"
#include "paintedrtf.h"
#include "testcontent.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using paintedrtf::Black;
using paintedrtf::Red;

namespace {

using Run = testing::ToolRun;

Run tool(const QStringList &args)
{
    return testing::contentTool(args, 60000);
}

QString eraFile(const QString &name)
{
    return QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/data/media/") + name;
}

void writeFile(const QString &path, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(data);
}

} // namespace

class tst_HotWordTool : public QObject
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
        const QString root = m_dir.path();
        writeFile(root + u"/piges/naxos.rtf"_s,
            paintedrtf::rtf({{u"Στη "_s, Black}, {u"Νάξο"_s, Red}, {u" βγαίνει η "_s, Black},
                {u"σμύριδα"_s, Red}, {u", όχι ο οψιανός."_s, Black}}));
        QDir().mkpath(root + u"/photos"_s);
        QVERIFY(QFile::copy(eraFile(u"picture.jpg"_s), root + u"/photos/emery.jpg"_s));
        writeFile(root + u"/Pictures/portara.jpg"_s, "jpg");
        writeFile(root + u"/Sounds/naxos.wav"_s, "wav");

        testcontent::Builder b(m_db);
        b.textResource(10, u"naxos.rtf"_s);
        b.textResource(11, u"gone.rtf"_s);
        b.row(u"Resources"_s, {u"ResourceID"_s, u"ResTypeID"_s, u"PicturePath"_s}, {12, 1, u"portara.jpg"_s});
        b.row(u"Resources"_s, {u"ResourceID"_s, u"ResTypeID"_s, u"PicturePath"_s, u"TextPath"_s},
            {13, 6, u"lost.jpg"_s, u"lost.rtf"_s});
        b.comment(1, u"Πέτρωμα της Νάξου"_s, u"emery.jpg"_s);
        b.commentLink(1, 10, u"σμύριδα"_s);
        b.comment(2, u"Ηφαιστειακό γυαλί"_s, u"obsidian.jpg"_s);
        b.commentLink(2, 10, u"οψιανός"_s);
        b.term(30, u"Νάξος"_s, u"Το μεγαλύτερο νησί των Κυκλάδων"_s, 2, u"naxos.jpg"_s, u"naxos.wav"_s,
            u"naxos.mp4"_s);
        b.termLink(30, 10, u"νάξο"_s);
        b.close();
    }

    void hotwordsPrintsTheLocatedRecordsInCollectionOrder()
    {
        const Run run = tool({u"hotwords"_s, m_db, u"10"_s});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.lines.size(), 3);
        QCOMPARE(run.lines.at(0),
            u"{\"type\":1,\"phrase\":\"\",\"indexType\":3,\"photo\":\"%1/photos/emery.jpg\","
            "\"comment\":\"Πέτρωμα της Νάξου\",\"exactPhrase\":\"σμύριδα\",\"first\":19,\"last\":26}"_s.arg(
                m_dir.path()));
        const QJsonObject obsidian = QJsonDocument::fromJson(run.lines.at(1).toUtf8()).object();
        QCOMPARE(obsidian.value(u"first"_s).toInt(), 0); // only in black
        QCOMPARE(obsidian.value(u"last"_s).toInt(), 0);
        const QJsonObject term = QJsonDocument::fromJson(run.lines.at(2).toUtf8()).object();
        QCOMPARE(term.value(u"type"_s).toInt(), 0);
        QCOMPARE(term.value(u"phrase"_s).toString(), u"Νάξος"_s);
        QCOMPARE(term.value(u"indexType"_s).toInt(), 2);
        QCOMPARE(term.value(u"photo"_s).toString(), u"naxos.jpg"_s);
        QCOMPARE(term.value(u"first"_s).toInt(), 4);
        QCOMPARE(term.value(u"last"_s).toInt(), 8);
    }

    void hotwordsRefusesBadInput()
    {
        QCOMPARE(tool({u"hotwords"_s, m_db}).exitCode, 1);
        QCOMPARE(tool({u"hotwords"_s, m_db, u"x"_s}).exitCode, 1);
        QCOMPARE(tool({u"hotwords"_s, m_db, u"99"_s}).exitCode, 1);
        QCOMPARE(tool({u"hotwords"_s, m_dir.path() + u"/none.sqlite"_s, u"10"_s}).exitCode, 1);
    }

    void checkReportsEveryProblemOnALine()
    {
        const Run run = tool({u"check"_s, m_db});
        QCOMPARE(run.exitCode, 3);
        // A picture that does not show and a sound that does not play are named with
        // the reason the windows would give.
        const QStringList expected {
            u"resource 10: hot word \"οψιανός\" not located"_s,
            u"resource 11: text \"gone.rtf\" missing"_s,
            u"resource 12: picture \"portara.jpg\" does not show: Μη έγκυρη εικόνα: «portara.jpg» (481)"_s,
            u"resource 13: picture \"lost.jpg\" missing"_s,
            u"resource 13: legend \"lost.rtf\" missing"_s,
            u"comment 2: picture \"obsidian.jpg\" missing"_s,
            u"term 30: picture \"naxos.jpg\" missing"_s,
            u"term 30: sound \"naxos.wav\" does not play: Δεν μπορώ να παίξω το αρχείο «naxos.wav»"_s,
            u"term 30: video \"naxos.mp4\" missing"_s,
        };
        QCOMPARE(run.lines.size(), expected.size());
        for (qsizetype i = 0; i < expected.size(); ++i)
            QVERIFY2(run.lines.at(i).startsWith(expected.at(i)), qPrintable(run.lines.at(i)));
    }

    void checkRefusesAFileThatIsNoContent()
    {
        writeFile(m_dir.path() + u"/junk.sqlite"_s, "not a database at all");
        QCOMPARE(tool({u"check"_s, m_dir.path() + u"/junk.sqlite"_s}).exitCode, 1);
        QCOMPARE(tool({u"check"_s}).exitCode, 1);
    }

    void theSampleCourseHasNoProblem()
    {
        const QString sample = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
        if (!QFile::exists(sample))
            QSKIP("the sample course is not built");
        const Run run = tool({u"check"_s, sample});
        QCOMPARE(run.lines, QStringList());
        QCOMPARE(run.exitCode, 0);
    }
};

QTEST_GUILESS_MAIN(tst_HotWordTool)
#include "tst_hotwordtool.moc"
