// "tremidia-content rtf-rewrite": a file opened as the notepad opens it and saved as the
// notepad saves it; the file written is whole or the former one stays.

#include <rtf.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

namespace {

struct Result
{
    int status = -1;
    QByteArray err;
};

Result rewrite(const QString &in, const QString &out)
{
    QProcess tool;
    tool.start(QStringLiteral(TREMIDIA_CONTENT_TOOL), {QStringLiteral("rtf-rewrite"), in, out});
    tool.waitForFinished(120000);
    return {tool.exitCode(), tool.readAllStandardError()};
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &data)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(data);
}

} // namespace

class tst_RtfRewrite : public QObject
{
    Q_OBJECT

private slots:
    void aPlainTextFileBecomesRtfInTheNotesFont()
    {
        QTemporaryDir dir;
        write(dir.filePath(QStringLiteral("a.txt")), QStringLiteral("πρώτη\nδεύτερη\n").toUtf8());
        const Result result
            = rewrite(dir.filePath(QStringLiteral("a.txt")), dir.filePath(QStringLiteral("a.rtf")));
        QCOMPARE(result.status, 0);
        const QByteArray rtf = readAll(dir.filePath(QStringLiteral("a.rtf")));
        QVERIFY(richtext::isRtf(rtf));
        const richtext::PlainText plain = richtext::readPlainText(rtf);
        QCOMPARE(plain.text, QStringLiteral("πρώτη\nδεύτερη\n"));
        QCOMPARE(plain.runs.front().font, QStringLiteral("Times New Roman"));
        QCOMPARE(plain.runs.front().size, 12.0);
    }

    void aFileThatCannotBeReadExitsWithOneAndAMessage()
    {
        QTemporaryDir dir;
        const Result result
            = rewrite(dir.filePath(QStringLiteral("missing.rtf")), dir.filePath(QStringLiteral("out.rtf")));
        QCOMPARE(result.status, 1);
        QVERIFY2(result.err.startsWith("tremidia-content: "), result.err.constData());
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("out.rtf"))));
        const Result usage = rewrite(dir.filePath(QStringLiteral("missing.rtf")), QString());
        QCOMPARE(usage.status, 1);
    }

    void aRewriteKilledHalfwayLeavesTheFormerFileWhole()
    {
        QTemporaryDir dir;
        const QString in = dir.filePath(QStringLiteral("big.rtf"));
        QByteArray big = "{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0 Times New Roman;}}\\f0\\fs24 ";
        for (int i = 0; i < 200000; ++i)
            big += "\\b bold\\b0  plain \\i italic\\i0\\par\n";
        big += '}';
        write(in, big);
        const QString out = dir.filePath(QStringLiteral("notes.rtf"));
        const QByteArray former = "{\\rtf1 the former notes\\par}";

        int killedWhileWriting = 0;
        for (int attempt = 0; attempt < 6; ++attempt) {
            write(out, former);
            QProcess tool;
            tool.start(QStringLiteral(TREMIDIA_CONTENT_TOOL), {QStringLiteral("rtf-rewrite"), in, out});
            QVERIFY(tool.waitForStarted());
            // Killed as soon as the writer has its file open beside the target, or after
            // a while that grows with each attempt.
            QElapsedTimer clock;
            clock.start();
            bool writing = false;
            while (tool.state() == QProcess::Running && clock.elapsed() < 200 * (attempt + 1)) {
                if (QDir(dir.path()).entryList(QDir::Files).size() > 2) {
                    writing = true;
                    break;
                }
                QThread::usleep(200);
            }
            tool.kill();
            tool.waitForFinished();
            killedWhileWriting += writing ? 1 : 0;
            const QByteArray now = readAll(out);
            QVERIFY(now == former
                || (now.startsWith("{\\rtf1") && now.trimmed().endsWith('}')
                    && richtext::readPlainText(now).text.count(QStringLiteral("italic")) == 200000));
        }
        qInfo("killed while writing in %d of 6 attempts", killedWhileWriting);
    }
};

QTEST_MAIN(tst_RtfRewrite)
#include "tst_rtfrewrite.moc"
