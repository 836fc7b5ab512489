// tremidia-content read-aloud: a text read through the program's own voice, word by word,
// with a private speech-dispatcher (speechservice.h); and what it says without one.

#include "../support/contenttool.h"
#include "speechservice.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// An RTF file of the text, its Greek letters as \u escapes.
QString writeRtf(const QTemporaryDir &dir, const QString &text)
{
    QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0 Arial;}}\\f0\\fs24 ";
    for (const QChar c : text) {
        if (c.unicode() < 0x80)
            rtf += char(c.unicode());
        else
            rtf += "\\u" + QByteArray::number(c.unicode()) + '?';
    }
    rtf += "\\par}";
    const QString path = dir.filePath(u"text.rtf"_s);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(rtf);
    return path;
}

} // namespace

class tst_ReadAloudTool : public QObject
{
    Q_OBJECT

    testing::SpeechService m_service;
    QTemporaryDir m_dir;

private slots:
    void initTestCase()
    {
        QString why;
        if (!m_service.start(&why))
            QFAIL(qPrintable(why));
    }

    void cleanupTestCase() { m_service.stop(); }

    void init() { qputenv("SPEECHD_ADDRESS", m_service.address()); }

    void everyWordIsPrintedAsItIsSaid()
    {
        const QString path = writeRtf(m_dir, u"Ο Σόλων έγραψε νόμους, για όλους τους Αθηναίους."_s);
        const testing::ToolRun run
            = testing::contentTool({u"read-aloud"_s, path, u"--rate"_s, u"200"_s}, 60000);
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        const QStringList expected {
            u"Ο"_s, u"Σόλων"_s, u"έγραψε"_s, u"νόμους"_s, u"για"_s, u"όλους"_s, u"τους"_s, u"Αθηναίους"_s};
        QCOMPARE(run.lines.size(), expected.size());
        qint64 before = -1;
        for (int i = 0; i < run.lines.size(); ++i) {
            const QStringList fields = run.lines.at(i).split(u'\t');
            QCOMPARE(fields.size(), 3);
            QCOMPARE(fields.at(0).toInt(), i);
            const qint64 ms = fields.at(1).toLongLong();
            QVERIFY(ms >= before);
            before = ms;
            QCOMPARE(fields.at(2), expected.at(i));
        }
    }

    void withoutAServiceItSaysSoAndEnds()
    {
        QTemporaryDir nowhere;
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + QFile::encodeName(nowhere.filePath(u"none.sock"_s)));
        const QString path = writeRtf(m_dir, u"Κείμενο"_s);
        QElapsedTimer took;
        took.start();
        const testing::ToolRun run = testing::contentTool({u"read-aloud"_s, path}, 30000);
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(u"no speech service answered"_s), qPrintable(run.errors));
        QVERIFY(run.lines.isEmpty());
        qInfo("the tool gave up after %lld ms", took.elapsed());
    }

    void aSpeedOutsideTheScaleIsRefused()
    {
        const QString path = writeRtf(m_dir, u"Κείμενο"_s);
        for (const QString &rate : {u"40"_s, u"260"_s, u"γρήγορα"_s}) {
            const testing::ToolRun run = testing::contentTool({u"read-aloud"_s, path, u"--rate"_s, rate});
            QCOMPARE(run.exitCode, 1);
            QVERIFY(run.errors.contains(u"--rate"_s));
        }
    }
};

QTEST_GUILESS_MAIN(tst_ReadAloudTool)
#include "tst_readaloudtool.moc"
