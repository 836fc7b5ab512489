// `tremidia-content handins`: the teacher's list of a drop folder, and the PDF to mark.

#include "../support/contenttool.h"
#include "bundlezips.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The text poppler reads from a PDF.
QString pdfText(const QString &path)
{
    QProcess process;
    process.start(u"pdftotext"_s, {u"-enc"_s, u"UTF-8"_s, path, u"-"_s});
    process.waitForFinished(60000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

int pdfPages(const QString &path)
{
    QProcess process;
    process.start(u"pdfinfo"_s, {path});
    process.waitForFinished(60000);
    for (const QString &line : QString::fromUtf8(process.readAllStandardOutput()).split(u'\n')) {
        if (line.startsWith(u"Pages:"))
            return line.mid(6).trimmed().toInt();
    }
    return -1;
}

} // namespace

class tst_HandInsTool : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_folder;

    void hand(const QString &file, const QString &pupil, const QString &className, qint32 activity,
        const QString &title, int hour, const QList<handin::File> &files)
    {
        const QDateTime time(QDate(2026, 11, 25), QTime(hour, 5, 9), Qt::OffsetFromUTC, 7200);
        QVERIFY(
            bundlezips::writeBundle(m_folder + u'/' + file, pupil, className, activity, title, time, files));
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_folder = m_dir->filePath(u"drop"_s);
        QVERIFY(QDir().mkpath(m_folder));
        const QList<handin::File> noteOnly
            = {{u"note.rtf"_s, bundlezips::noteRtf(u"Σημείωση της Ωραιοζήλης"_s)}};
        hand(u"b.zip"_s, u"Ωραιοζήλη"_s, u"Β2"_s, 3, u"Οι πηγές"_s, 9, noteOnly);
        hand(u"c.zip"_s, u"Αθηνά"_s, u"Β2"_s, 3, u"Οι πηγές"_s, 11,
            {{u"note.rtf"_s, bundlezips::noteRtf(u"Σημείωση της Αθηνάς"_s)},
                {u"drawing-1.png"_s, bundlezips::png(1600, 1200, Qt::blue)},
                {u"drawing-2.png"_s, bundlezips::png(30, 20, Qt::green)}});
        hand(u"a.zip"_s, u"Αθηνά"_s, u"Β2"_s, 4, u"Ο χάρτης"_s, 10,
            {{u"note.rtf"_s, bundlezips::noteRtf(u"Ο χάρτης της Αθηνάς"_s)}});
        hand(u"d.zip"_s, u"Γιάννης"_s, u"Α1"_s, 3, u"Οι πηγές"_s, 12, noteOnly);
        QFile broken(m_folder + u"/Β2_Κώστας_Οι-πηγές_20261125-083000_beef.zip"_s);
        QVERIFY(broken.open(QIODevice::WriteOnly));
        broken.write("PK\x03\x04 and nothing after");
    }
    void cleanup() { m_dir.reset(); }

    void listsByClassPupilAndTime()
    {
        const testing::ToolRun run = testing::contentTool({u"handins"_s, m_folder});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.lines,
            (QStringList {
                u"Α1\tΓιάννης\tΟι πηγές\t2026-11-25T12:05:09+02:00\t1\tok"_s,
                u"Β2\tΑθηνά\tΟ χάρτης\t2026-11-25T10:05:09+02:00\t1\tok"_s,
                u"Β2\tΑθηνά\tΟι πηγές\t2026-11-25T11:05:09+02:00\t3\tok"_s,
                u"Β2\tΚώστας\tΟι-πηγές\t2026-11-25T08:30:00\t0\tdamaged"_s,
                u"Β2\tΩραιοζήλη\tΟι πηγές\t2026-11-25T09:05:09+02:00\t1\tok"_s,
            }));
    }

    void anEmptyFolderListsNothing()
    {
        QTemporaryDir empty;
        const testing::ToolRun run = testing::contentTool({u"handins"_s, empty.path()});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.lines.isEmpty());
    }

    void refusesBadArguments()
    {
        QCOMPARE(testing::contentTool({u"handins"_s}).exitCode, 1);
        QCOMPARE(testing::contentTool({u"handins"_s, m_folder + u"/none"_s}).exitCode, 1);
        QCOMPARE(testing::contentTool({u"handins"_s, m_folder, u"--pdf"_s}).exitCode, 1);
        QCOMPARE(testing::contentTool({u"handins"_s, m_folder, u"--colour"_s, u"x"_s}).exitCode, 1);
    }

    void activityFilters()
    {
        const testing::ToolRun run = testing::contentTool({u"handins"_s, m_folder, u"--activity"_s, u"4"_s});
        QCOMPARE(run.exitCode, 0);
        // The damaged bundle's activity is unknown: it stays, so that it is not missed.
        QCOMPARE(run.lines.size(), 2);
        QVERIFY(run.lines.at(0).contains(u"Ο χάρτης"));
        QVERIFY(run.lines.at(1).endsWith(u"damaged"));
        const testing::ToolRun byTitle
            = testing::contentTool({u"handins"_s, m_folder, u"--activity"_s, u"ο χάρτης"_s});
        QCOMPARE(byTitle.lines.size(), 1);
    }

    void writesOnePdfToMark()
    {
        if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
            QSKIP("poppler-utils is not installed");
        const QString pdf = m_dir->filePath(u"marks.pdf"_s);
        const testing::ToolRun run = testing::contentTool({u"handins"_s, m_folder, u"--pdf"_s, pdf});
        QCOMPARE(run.exitCode, 0);
        // Nothing but the damaged bundle's line in the log.
        for (const QString &line : run.errors.split(u'\n', Qt::SkipEmptyParts))
            QVERIFY2(line.startsWith(u"tremidia.handin: damaged bundle"), qPrintable(run.errors));
        const QString text = pdfText(pdf);
        // The pupils in the list's order, each with the note.
        const QStringList order = {u"Γιάννης"_s, u"Ο χάρτης της Αθηνάς"_s, u"Σημείωση της Αθηνάς"_s,
            u"Κώστας"_s, u"Σημείωση της Ωραιοζήλης"_s};
        qsizetype at = 0;
        for (const QString &expected : order) {
            const qsizetype found = text.indexOf(expected, at);
            QVERIFY2(
                found >= 0, qPrintable(expected + u" after "_s + QString::number(at) + u" in\n"_s + text));
            at = found;
        }
        QVERIFY(text.contains(u"Τμήμα: Β2"));
        QVERIFY(text.contains(u"κατεστραμμένη"));
        // Every bundle starts a page of its own; the large drawing fits under its note.
        QCOMPARE(pdfPages(pdf), 5);
    }

    void aPdfOfOneActivity()
    {
        if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
            QSKIP("poppler-utils is not installed");
        const QString pdf = m_dir->filePath(u"map.pdf"_s);
        QCOMPARE(
            testing::contentTool({u"handins"_s, m_folder, u"--pdf"_s, pdf, u"--activity"_s, u"4"_s}).exitCode,
            0);
        const QString text = pdfText(pdf);
        QVERIFY(text.contains(u"Ο χάρτης της Αθηνάς"));
        QVERIFY(!text.contains(u"Σημείωση"));
        QVERIFY(!text.contains(u"Γιάννης"));
        QCOMPARE(pdfPages(pdf), 2);
    }
};

QTEST_GUILESS_MAIN(tst_HandInsTool)
#include "tst_handinstool.moc"
