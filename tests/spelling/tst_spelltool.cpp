// tremidia-content spell: the notepad's checker on an RTF file, a text file and standard
// input.

#include "../support/contenttool.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class tst_SpellTool : public QObject
{
    Q_OBJECT

private slots:
    void rtfFile();
    void textFile();
    void standardInput();
    void aMissingFileFails();

private:
    QTemporaryDir m_dir;
};

void tst_SpellTool::rtfFile()
{
    const QString path = m_dir.filePath(QStringLiteral("note.rtf"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    // «Ο κόσμοσ, ΚΟΣΜΟΣ.» in the Greek code page, as a word processor writes it.
    file.write("{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0\\fcharset161 Arial;}}\\f0 "
               "\\'cf \\'ea\\'fc\\'f3\\'ec\\'ef\\'f3, \\'ca\\'cf\\'d3\\'cc\\'cf\\'d3.\\par}");
    file.close();
    const testing::ToolRun run = testing::contentTool({QStringLiteral("spell"), path});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.lines.size(), 1);
    const QStringList fields = run.lines.at(0).split(u'\t');
    QCOMPARE(fields.size(), 3);
    QCOMPARE(fields.at(0), QStringLiteral("2"));
    QCOMPARE(fields.at(1), QStringLiteral("κόσμοσ"));
    QCOMPARE(fields.at(2).split(u',').value(0), QStringLiteral("κόσμος"));
}

void tst_SpellTool::textFile()
{
    const QString path = m_dir.filePath(QStringLiteral("note.txt"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    // Offsets count UTF-16 code units: the emoji before the words counts two.
    file.write(QStringLiteral("😀 ΑΘΗΝΑ σπιτι London κόςμος\n").toUtf8());
    file.close();
    const testing::ToolRun run = testing::contentTool({QStringLiteral("spell"), path});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.lines.size(), 2);
    QVERIFY(run.lines.at(0).startsWith(QStringLiteral("9\tσπιτι\tσπίτι")));
    QVERIFY(run.lines.at(1).startsWith(QStringLiteral("22\tκόςμος\tκόσμος")));
}

void tst_SpellTool::standardInput()
{
    QProcess process;
    process.start(QStringLiteral(TREMIDIA_BINARY_DIR "/bin/tremidia-content"),
        {QStringLiteral("spell"), QStringLiteral("-")});
    QVERIFY(process.waitForStarted());
    process.write(QStringLiteral("καλημερα κόσμε").toUtf8());
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), 0);
    const QStringList lines
        = QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 1);
    const QStringList fields = lines.at(0).split(u'\t');
    QCOMPARE(fields.value(0), QStringLiteral("0"));
    QCOMPARE(fields.value(1), QStringLiteral("καλημερα"));
    QVERIFY(fields.value(2).split(u',').contains(QStringLiteral("καλημέρα")));
}

void tst_SpellTool::aMissingFileFails()
{
    const testing::ToolRun run
        = testing::contentTool({QStringLiteral("spell"), m_dir.filePath(QStringLiteral("none.rtf"))});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.lines.isEmpty());
}

QTEST_GUILESS_MAIN(tst_SpellTool)
#include "tst_spelltool.moc"
