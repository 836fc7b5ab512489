#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString DataDir = QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/richtext/data/");

QByteArray readData(const QString &name)
{
    QFile file(DataDir + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("missing test data %s", qPrintable(name));
    return file.readAll();
}

struct Result
{
    int status = -1;
    QByteArray out;
    QByteArray err;
};

Result run(const QStringList &args)
{
    QProcess process;
    process.start(QStringLiteral(TREMIDIA_CONTENT_TOOL), args);
    process.waitForFinished(60000);
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

} // namespace

class tst_RtfCommands : public QObject
{
    Q_OBJECT

private slots:
    void rtfTextPrintsThePlainTextAsUtf8_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &file :
            QDir(DataDir).entryList({QStringLiteral("*.rtf")}, QDir::Files, QDir::Name))
            QTest::newRow(qPrintable(file)) << file.chopped(4);
    }
    void rtfTextPrintsThePlainTextAsUtf8()
    {
        QFETCH(QString, name);
        const Result result = run({QStringLiteral("rtf-text"), DataDir + name + QStringLiteral(".rtf")});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.out, readData(name + QStringLiteral(".txt")));
    }

    void rtfRunsPrintsOneJsonObjectPerRun_data() { rtfTextPrintsThePlainTextAsUtf8_data(); }
    void rtfRunsPrintsOneJsonObjectPerRun()
    {
        QFETCH(QString, name);
        const Result result = run({QStringLiteral("rtf-runs"), DataDir + name + QStringLiteral(".rtf")});
        QCOMPARE(result.status, 0);
        QCOMPARE(result.out, readData(name + QStringLiteral(".runs")));
    }

    void aFileThatIsNotRtfFailsWithOneLine()
    {
        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("notes.txt")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("plain text, not RTF\n");
        file.close();
        for (const QString &command : {QStringLiteral("rtf-text"), QStringLiteral("rtf-runs")}) {
            const Result result = run({command, file.fileName()});
            QCOMPARE(result.status, 1);
            QVERIFY(result.out.isEmpty());
            const QList<QByteArray> lines = result.err.trimmed().split('\n');
            QVERIFY2(
                lines.last().startsWith("tremidia-content: ") && lines.last().contains("not an RTF file"),
                result.err.constData());
        }
        const Result missing = run({QStringLiteral("rtf-text"), dir.filePath(QStringLiteral("none.rtf"))});
        QCOMPARE(missing.status, 1);
    }
};

QTEST_MAIN(tst_RtfCommands)
#include "tst_rtfcommands.moc"
