#include <rtf.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

namespace {

QString documentText(const QTextDocument &document)
{
    QString text = document.toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

// Reads the bytes both ways; the text when the readings agree place for place and the
// runs cover it, one after the other, and a text no reading can give otherwise.
const QString Disagreement = QStringLiteral("\uFFFF readings disagree");

QString readBothWays(const QByteArray &rtf)
{
    const richtext::PlainText plain = richtext::readPlainText(rtf);
    QTextDocument document;
    richtext::readDocument(rtf, &document);
    const QString text = documentText(document);
    if (text != plain.text)
        return Disagreement;
    int covered = 0;
    for (const richtext::TextRun &run : plain.runs) {
        if (run.start != covered || run.length <= 0)
            return Disagreement;
        covered += run.length;
    }
    return covered == plain.text.size() ? plain.text : Disagreement;
}

} // namespace

class tst_RtfMalformed : public QObject
{
    Q_OBJECT

private slots:
    void unbalancedBracesGiveWhatCouldBeRead()
    {
        QCOMPARE(readBothWays("{\\rtf1 abc{\\b def"), QStringLiteral("abcdef"));
        QCOMPARE(readBothWays("{\\rtf1 a}}}b{c}"), QStringLiteral("a"));
        // Without "{\\rtf" in front the bytes are not RTF at all, and read as plain text.
        QCOMPARE(readBothWays("}}}{\\rtf1 a\\par b}"), QStringLiteral("}}}{\\rtf1 a\\par b}"));
        QCOMPARE(readBothWays("{\\rtf1 {{{{x"), QStringLiteral("x"));
    }

    void truncatedFilesGiveWhatCouldBeRead()
    {
        QCOMPARE(readBothWays("{\\rtf1\\ansi\\ansicpg1253 \\'e1\\'e"), QStringLiteral("α"));
        QCOMPARE(readBothWays("{\\rtf1 ab\\u"), QStringLiteral("ab"));
        QCOMPARE(readBothWays("{\\rtf1 ab\\"), QStringLiteral("ab"));
        QCOMPARE(readBothWays("{\\rtf1 a{\\pict\\pngblip 89504e47"), QStringLiteral("a\uFFFC"));
        QCOMPARE(readBothWays("{\\rtf1 a{\\fonttbl{\\f0 Ari"), QStringLiteral("a"));
        QCOMPARE(readBothWays("{\\rtf1 a\\bin99999 xyz"), QStringLiteral("a"));
        QCOMPARE(readBothWays(QByteArray()), QString());
    }

    void binaryJunkNeverCrashes()
    {
        QRandomGenerator random(4711);
        for (int round = 0; round < 300; ++round) {
            QByteArray junk = "{\\rtf1\\ansi\\ansicpg1253 ";
            const int length = random.bounded(1, 4000);
            for (int i = 0; i < length; ++i)
                junk += static_cast<char>(random.bounded(256));
            QVERIFY(readBothWays(junk) != Disagreement);
        }
    }

    void junkMadeOfRtfPiecesNeverCrashes()
    {
        static const char *const pieces[] = {"{", "}", "\\par ", "\\pard", "\\'e1", "\\u945?", "\\uc3", "\\b",
            "\\cf1", "{\\colortbl;\\red9;}", "{\\fonttbl{\\f0\\fcharset128 X;}}", "\\f0", "\\'93",
            "{\\pict\\dibitmap0 2800", "{\\*\\pn\\pnlvlblt}", "\\ls1", "{\\object{\\result r}",
            "{\\upr{a}{\\*\\ud b}}", "\\v", "\\line", "\\tab", "\\cell", "\\row", "\\bin3 ", "\\*", "text ",
            "\\~", "\\-", "{\\field{\\*\\fldinst x}{\\fldrslt y}}", "\\fs0", "\\li-5", "\\tx9"};
        QRandomGenerator random(1253);
        for (int round = 0; round < 500; ++round) {
            QByteArray rtf = "{\\rtf1";
            const int count = random.bounded(1, 60);
            for (int i = 0; i < count; ++i)
                rtf += pieces[random.bounded(int(std::size(pieces)))];
            QVERIFY2(readBothWays(rtf) != Disagreement, rtf.constData());
        }
    }

    void hugeNumbersAreKeptInBounds()
    {
        const QByteArray rtf
            = "{\\rtf1{\\colortbl;\\red99999999999\\green-5\\blue300;}\\fs99999999999999\\li-99999999999"
              "\\fi2147483648\\sb99999999\\tx99999999999\\cf1 a\\u99999999 b\\u-99999999 c"
              "\\uc999999999 d\\ls9999\\ilvl999\\pnstart-9 e\\par"
              "{\\pict\\dibitmap0\\picw99999999\\pich99999999\\picscalex99999999\\picwgoal-5 00}}";
        const richtext::PlainText plain = richtext::readPlainText(rtf);
        QVERIFY(plain.text.startsWith(u'a'));
        QCOMPARE(plain.runs.front().color, 0xFF00FFu);
        QVERIFY(plain.runs.front().size > 0 && plain.runs.front().size <= 1638);
        QTextDocument document;
        richtext::readDocument(rtf, &document);
        QCOMPARE(documentText(document), plain.text);
    }

    void deepNestingNeitherCrashesNorHangs()
    {
        QByteArray deep = "{\\rtf1 a";
        deep += QByteArray(1000000, '{');
        deep += "b";
        deep += QByteArray(1000000, '}');
        deep += "c}";
        const QString text = readBothWays(deep);
        QVERIFY(text.startsWith(u'a'));
        QVERIFY(text.endsWith(u'c'));

        // Up to a depth that documents really have, nothing is lost.
        QByteArray nested = "{\\rtf1 ";
        nested += QByteArray(200, '{') + "x" + QByteArray(200, '}') + "y}";
        QCOMPARE(readBothWays(nested), QStringLiteral("xy"));
    }

    void bytesThatAreNotRtfReadAsPlainText()
    {
        QCOMPARE(readBothWays("\xce\x91\xce\xb8\xce\xae\xce\xbd\xce\xb1\r\nline\rend\n"),
            QStringLiteral("Αθήνα\nline\nend\n"));
        QCOMPARE(readBothWays("\xc1\xe8\xde\xed\xe1\ttab\x01"), QStringLiteral("Αθήνα\ttab"));
        QCOMPARE(readBothWays("\xEF\xBB\xBFutf8"), QStringLiteral("utf8"));

        QTextDocument document;
        document.setPlainText(QStringLiteral("αρχή τέλος"));
        QTextCursor cursor(&document);
        cursor.setPosition(5);
        richtext::insertRtf(cursor, QStringLiteral("μέση ").toUtf8());
        QCOMPARE(document.toPlainText(), QStringLiteral("αρχή μέση τέλος"));
    }

    void codePagesWithControlCharactersGiveNone()
    {
        // EBCDIC pages give control characters for high bytes; a document has no place
        // for them, and the writer could not give them back.
        for (const int page : {500, 1390}) {
            QByteArray rtf = "{\\rtf1\\ansi\\ansicpg" + QByteArray::number(page) + ' ';
            for (int b = 0x80; b < 0x100; ++b)
                rtf += "\\'" + QByteArray::number(b, 16);
            rtf += '}';
            const QString text = readBothWays(rtf);
            QVERIFY(text != Disagreement);
            for (const QChar c : text)
                QVERIFY2(c.unicode() >= 0x20, qPrintable(QString::number(c.unicode(), 16)));
            QTextDocument document;
            richtext::readDocument(rtf, &document);
            QTextDocument again;
            richtext::readDocument(richtext::writeDocument(document), &again);
            QCOMPARE(documentText(again), text);
        }
    }

    void hiddenTextAndUnknownDestinationsAreLeftOut()
    {
        QCOMPARE(
            readBothWays("{\\rtf1 a{\\v b\\par c}d{\\*\\foo e{f}g}h\\v i\\v0 j}"), QStringLiteral("adhj"));
    }

    void seedCorpusReadsAlikeBothWays()
    {
        const QDir corpus(QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/richtext/fuzz-corpus"));
        const QStringList names = corpus.entryList(QDir::Files, QDir::Name);
        QVERIFY(!names.isEmpty());
        for (const QString &name : names) {
            QFile file(corpus.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray rtf = file.readAll();
            QVERIFY2(readBothWays(rtf) != Disagreement, qPrintable(name));
            // What the writer makes of it reads back to the same text.
            QTextDocument document;
            richtext::readDocument(rtf, &document);
            QTextDocument again;
            richtext::readDocument(richtext::writeDocument(document), &again);
            QCOMPARE(documentText(again), documentText(document));
        }
    }
};

QTEST_MAIN(tst_RtfMalformed)
#include "tst_rtfmalformed.moc"
