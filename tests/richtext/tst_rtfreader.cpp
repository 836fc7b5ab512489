#include <rtf.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextList>
#include <QUrl>

namespace {

QByteArray readData(const QString &name)
{
    QFile file(QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/richtext/data/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("missing test data %s", qPrintable(name));
    return file.readAll();
}

QByteArray runLines(const richtext::PlainText &plain)
{
    QByteArray out;
    for (const richtext::TextRun &run : plain.runs)
        out += richtext::runToJson(run) + '\n';
    return out;
}

// The document's text with its paragraph ends as "\n", place for place.
QString documentText(const QTextDocument &document)
{
    QString text = document.toRawText();
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    return text;
}

QTextCharFormat formatAt(QTextDocument &document, int place)
{
    QTextCursor cursor(&document);
    cursor.setPosition(place + 1);
    return cursor.charFormat();
}

} // namespace

class tst_RtfReader : public QObject
{
    Q_OBJECT

private slots:
    void filesGiveTheirTextAndRuns_data()
    {
        QTest::addColumn<QString>("name");
        const QStringList names = QDir(QStringLiteral(TREMIDIA_SOURCE_DIR "/tests/richtext/data"))
                                      .entryList({QStringLiteral("*.rtf")}, QDir::Files, QDir::Name);
        QVERIFY(names.size() >= 7);
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << name.chopped(4);
    }
    void filesGiveTheirTextAndRuns()
    {
        QFETCH(QString, name);
        const QByteArray rtf = readData(name + QStringLiteral(".rtf"));
        QVERIFY(richtext::isRtf(rtf));
        const richtext::PlainText plain = richtext::readPlainText(rtf);
        QCOMPARE(plain.text, QString::fromUtf8(readData(name + QStringLiteral(".txt"))));
        QCOMPARE(runLines(plain), readData(name + QStringLiteral(".runs")));
    }

    void documentCountsTheSamePlacesAsThePlainText_data() { filesGiveTheirTextAndRuns_data(); }
    void documentCountsTheSamePlacesAsThePlainText()
    {
        QFETCH(QString, name);
        const QByteArray rtf = readData(name + QStringLiteral(".rtf"));
        const richtext::PlainText plain = richtext::readPlainText(rtf);
        QTextDocument document;
        richtext::readDocument(rtf, &document);
        QCOMPARE(documentText(document), plain.text);
        // The colour of every character is the same in both readings.
        for (const richtext::TextRun &run : plain.runs) {
            for (int p = run.start; p < run.start + run.length; ++p) {
                // A paragraph end has no character of its own in the document to ask.
                if (plain.text.at(p) == u'\n')
                    continue;
                const QTextCharFormat format = formatAt(document, p);
                const bool painted = format.foreground().style() != Qt::NoBrush;
                QCOMPARE(painted, !run.colorIsAuto);
                if (painted) {
                    const QColor c = format.foreground().color();
                    QCOMPARE(quint32(c.red() | (c.green() << 8) | (c.blue() << 16)), run.color);
                }
                QCOMPARE(format.fontWeight() >= QFont::DemiBold, run.bold);
                QCOMPARE(format.fontItalic(), run.italic);
            }
        }
    }

    void aWordProcessorsRtfReadsLikeTheOriginal_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("colours") << QStringLiteral("greek_colors");
        QTest::newRow("lists") << QStringLiteral("word_lists");
        QTest::newRow("pictures") << QStringLiteral("pictures");
    }
    void aWordProcessorsRtfReadsLikeTheOriginal()
    {
        // The files of this folder, saved again by LibreOffice Writer: Unicode escapes,
        // styles, its own list tables and picture wrapping.
        QFETCH(QString, name);
        const auto original = richtext::readPlainText(readData(name + QStringLiteral(".rtf")));
        const auto saved = richtext::readPlainText(
            readData(QStringLiteral("libreoffice/") + name + QStringLiteral(".rtf")));
        QCOMPARE(saved.text, original.text);
        for (int p = 0; p < int(original.text.size()); ++p) {
            if (original.text.at(p) == u'\n')
                continue;
            const auto &a = original.runs[std::size_t(richtext::runIndexAt(original, p))];
            const auto &b = saved.runs[std::size_t(richtext::runIndexAt(saved, p))];
            QCOMPARE(b.colorIsAuto ? -1 : int(b.color), a.colorIsAuto ? -1 : int(a.color));
            QCOMPARE(b.bold, a.bold);
            QCOMPARE(b.italic, a.italic);
            QCOMPARE(b.underline, a.underline);
        }
        if (name == u"word_lists") {
            QTextDocument document;
            richtext::readDocument(readData(QStringLiteral("libreoffice/word_lists.rtf")), &document);
            const QTextBlock first = document.begin().next();
            QVERIFY(first.textList());
            QCOMPARE(first.textList()->format().style(), QTextListFormat::ListDisc);
            QVERIFY(first.next().next().textList());
            QCOMPARE(first.next().next().textList()->format().style(), QTextListFormat::ListDecimal);
        }
    }

    void greekCodePageBytesBecomeGreekLetters()
    {
        const auto plain
            = richtext::readPlainText("{\\rtf1\\ansi\\ansicpg1253 \\'e1\\'e2\\'e3 \\'d9\\'f9\\'dc}");
        QCOMPARE(plain.text, QStringLiteral("αβγ Ωωά"));
    }

    void fontCharsetOverridesTheDocumentCodePage()
    {
        const auto plain
            = richtext::readPlainText("{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset161 "
                                      "Arial Greek;}{\\f2\\cpg1253 X;}}"
                                      "\\f0\\'e1\\f1\\'e1\\f2\\'e1}");
        QCOMPARE(plain.text, QStringLiteral("áαα"));
    }

    void autoColourReadsAsBlackButIsNotPainted()
    {
        const auto plain
            = richtext::readPlainText("{\\rtf1{\\colortbl ;\\red0\\green0\\blue0;}a\\cf1 b\\cf0 c\\cf7 d}");
        QCOMPARE(plain.runs.size(), std::size_t(3));
        QVERIFY(plain.runs[0].colorIsAuto);
        QCOMPARE(plain.runs[0].color, 0u);
        QVERIFY(!plain.runs[1].colorIsAuto);
        QCOMPARE(plain.runs[1].color, 0u);
        QVERIFY(plain.runs[2].colorIsAuto); // "c" and an index the table does not have
        QCOMPARE(plain.runs[2].length, 2);
    }

    void eachCharacterHasItsOwnColour()
    {
        // The same word three times, black, red and red, then a word half red and half blue:
        // the colours that locating hot words asks of each place.
        const auto plain = richtext::readPlainText(
            "{\\rtf1\\ansi\\ansicpg1253{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}"
            "\\'e1\\'e3\\'ef\\'f1\\'dc \\cf1\\'e1\\'e3\\'ef\\'f1\\'dc\\cf0  "
            "\\cf1\\'e1\\'e3\\'ef\\'f1\\'dc\\cf0  "
            "\\cf1\\'ed\\'e1\\cf2\\'fc\\'f2\\cf0 }");
        QCOMPARE(plain.text, QStringLiteral("αγορά αγορά αγορά ναός"));
        const auto colourAt = [&](int place) {
            const richtext::TextRun &run = plain.runs[std::size_t(richtext::runIndexAt(plain, place))];
            return run.colorIsAuto ? -1 : int(run.color);
        };
        for (int p = 0; p < 5; ++p)
            QCOMPARE(colourAt(p), -1);
        for (int p = 6; p < 11; ++p)
            QCOMPARE(colourAt(p), 0x0000FF);
        for (int p = 12; p < 17; ++p)
            QCOMPARE(colourAt(p), 0x0000FF);
        QCOMPARE(colourAt(18), 0x0000FF);
        QCOMPARE(colourAt(19), 0x0000FF);
        QCOMPARE(colourAt(20), 0xFF0000);
        QCOMPARE(colourAt(21), 0xFF0000);
        QCOMPARE(colourAt(11), -1);
    }

    void windowsCharsetFontNamesShowTheirFamily()
    {
        QTextDocument document;
        richtext::readDocument("{\\rtf1{\\fonttbl{\\f0\\fcharset161 Arial Greek;}}\\f0 a}", &document);
        QCOMPARE(formatAt(document, 0).fontFamilies().toStringList(), QStringList {QStringLiteral("Arial")});
        // The runs say what the file says.
        QCOMPARE(
            richtext::readPlainText("{\\rtf1{\\fonttbl{\\f0\\fcharset161 Arial Greek;}}\\f0 a}").runs[0].font,
            QStringLiteral("Arial Greek"));
    }

    void aLastColourWithoutItsSemicolonStillCounts()
    {
        const auto plain = richtext::readPlainText("{\\rtf1{\\colortbl;\\red0\\green128\\blue0}\\cf1 a}");
        QVERIFY(!plain.runs.front().colorIsAuto);
        QCOMPARE(plain.runs.front().color, 0x008000u);
    }

    void rtfHeldInAStringReadsAsTheControlReadsIt()
    {
        const QString held
            = QStringLiteral("{\\rtf1\\ansi\\ansicpg1253 {\\b Ο νόμος για τον οστρακισμό} €\\par}");
        const QByteArray bytes = richtext::rtfFromString(held);
        QVERIFY(bytes.contains("\\b \xcf \xed\xfc\xec\xef\xf2"));
        const auto plain = richtext::readPlainText(bytes);
        QCOMPARE(plain.text, QStringLiteral("Ο νόμος για τον οστρακισμό €\n"));
        QVERIFY(plain.runs.front().bold);
    }

    void runIndexAtFindsTheRunOfAPlace()
    {
        const auto plain = richtext::readPlainText(readData(QStringLiteral("greek_colors.rtf")));
        QCOMPARE(richtext::runIndexAt(plain, 0), 0);
        QCOMPARE(richtext::runIndexAt(plain, 2), 1);
        QCOMPARE(richtext::runIndexAt(plain, 9), 1);
        QCOMPARE(richtext::runIndexAt(plain, 10), 2);
        QCOMPARE(richtext::runIndexAt(plain, int(plain.text.size()) - 1), int(plain.runs.size()) - 1);
        QCOMPARE(richtext::runIndexAt(plain, int(plain.text.size())), -1);
        QCOMPARE(richtext::runIndexAt(plain, -1), -1);
    }

    void richEditBulletsBecomeAList()
    {
        QTextDocument document;
        richtext::readDocument(readData(QStringLiteral("bullets.rtf")), &document);
        QCOMPARE(document.blockCount(), 5);
        const QTextBlock first = document.begin();
        QVERIFY(!first.textList());
        const QTextBlock zeus = first.next();
        const QTextBlock hera = zeus.next();
        QVERIFY(zeus.textList());
        QCOMPARE(zeus.textList(), hera.textList());
        QCOMPARE(zeus.textList()->format().style(), QTextListFormat::ListDisc);
        QCOMPARE(zeus.blockFormat().leftMargin(), 24.0);
        QCOMPARE(zeus.blockFormat().property(richtext::ListFirstLineIndentProperty).toInt(), -360);
        QVERIFY(!hera.next().textList());
        QCOMPARE(hera.next().text(), QStringLiteral("Τέλος."));
    }

    void wordListsBecomeListsOfTheirKind()
    {
        QTextDocument document;
        richtext::readDocument(readData(QStringLiteral("word_lists.rtf")), &document);
        const QTextBlock first = document.begin().next();
        const QTextBlock second = first.next();
        const QTextBlock third = second.next();
        QVERIFY(first.textList());
        QCOMPARE(first.textList(), second.textList());
        QCOMPARE(first.textList()->format().style(), QTextListFormat::ListDisc);
        QVERIFY(third.textList());
        QCOMPARE(third.textList()->format().style(), QTextListFormat::ListDecimal);
        QCOMPARE(third.textList()->format().property(richtext::ListStartProperty).toInt(), 3);
        QCOMPARE(third.text(), QStringLiteral("Τρίτο"));
    }

    void picturesAreDecodedAtTheirShownSize()
    {
        QTextDocument document;
        richtext::readDocument(readData(QStringLiteral("pictures.rtf")), &document);
        QList<QTextImageFormat> images;
        for (auto it = document.begin().begin(); !it.atEnd(); ++it) {
            if (it.fragment().charFormat().isImageFormat()) {
                for (int i = 0; i < it.fragment().length(); ++i)
                    images.append(it.fragment().charFormat().toImageFormat());
            }
        }
        QCOMPARE(images.size(), 3);
        const QSize sizes[3] = {QSize(96, 48), QSize(4, 2), QSize(96, 96)};
        const QRgb firstPixels[3] = {qRgb(255, 0, 0), qRgb(255, 0, 0), qRgb(255, 0, 0)};
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(QSizeF(images[i].width(), images[i].height()), QSizeF(sizes[i]));
            const QImage image
                = document.resource(QTextDocument::ImageResource, QUrl(images[i].name())).value<QImage>();
            QVERIFY2(!image.isNull(), qPrintable(images[i].name()));
            QCOMPARE(image.pixel(0, 0) & 0xFFFFFF, firstPixels[i] & 0xFFFFFF);
        }
    }

    void paragraphFormatsAreRead()
    {
        QTextDocument document;
        richtext::readDocument(
            "{\\rtf1\\pard\\qc\\li300\\ri150\\fi-150\\sb60\\sa120\\tqr\\tx1500\\tx3000 a\\par"
            "\\pard\\qr\\sl360\\slmult1 b\\par\\pard\\qj c}",
            &document);
        const QTextBlockFormat a = document.begin().blockFormat();
        QCOMPARE(a.alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
        QCOMPARE(a.leftMargin(), 20.0);
        QCOMPARE(a.rightMargin(), 10.0);
        QCOMPARE(a.textIndent(), -10.0);
        QCOMPARE(a.topMargin(), 4.0);
        QCOMPARE(a.bottomMargin(), 8.0);
        QCOMPARE(a.tabPositions().size(), 2);
        QCOMPARE(a.tabPositions().at(0).type, QTextOption::RightTab);
        QCOMPARE(a.tabPositions().at(1).position, 200.0);
        QCOMPARE(
            document.begin().next().blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignRight);
        QCOMPARE(document.begin().next().blockFormat().lineHeightType(),
            int(QTextBlockFormat::ProportionalHeight));
        QCOMPARE(document.begin().next().blockFormat().lineHeight(), 150.0);
        QCOMPARE(document.lastBlock().blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignJustify);
    }

    void characterFormatsAreRead()
    {
        const auto plain = richtext::readPlainText(
            "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Tahoma;}}\\f1\\fs36\\b\\i\\ul\\strike x\\plain y}");
        QCOMPARE(plain.runs.size(), std::size_t(2));
        QCOMPARE(plain.runs[0].font, QStringLiteral("Tahoma"));
        QCOMPARE(plain.runs[0].size, 18.0);
        QVERIFY(
            plain.runs[0].bold && plain.runs[0].italic && plain.runs[0].underline && plain.runs[0].strike);
        QCOMPARE(plain.runs[1].font, QStringLiteral("Arial"));
        QCOMPARE(plain.runs[1].size, 12.0);
        QVERIFY(!plain.runs[1].bold && !plain.runs[1].underline);
    }

    void highlightIsTheBackground()
    {
        const auto plain = richtext::readPlainText(
            "{\\rtf1{\\colortbl ;\\red255\\green255\\blue0;}a\\highlight1 b\\highlight0 c}");
        QCOMPARE(plain.runs.size(), std::size_t(3));
        QVERIFY(plain.runs[1].hasBackground);
        QCOMPARE(plain.runs[1].background, 0x00FFFFu);
        QVERIFY(!plain.runs[2].hasBackground);
    }

    void fragmentAndInsertKeepThePictures()
    {
        const QByteArray rtf = readData(QStringLiteral("pictures.rtf"));
        const QTextDocumentFragment fragment = richtext::readFragment(rtf);
        QVERIFY(fragment.toPlainText().startsWith(QStringLiteral("Εικόνα")));

        QTextDocument document;
        document.setPlainText(QStringLiteral("αρχή τέλος"));
        QTextCursor cursor(&document);
        cursor.setPosition(5);
        richtext::insertRtf(cursor,
            "{\\rtf1\\ansi\\ansicpg1253{\\colortbl ;\\red255\\green0\\blue0;}\\cf1 \\'ec\\'dd\\'f3\\'e7 }");
        QCOMPARE(document.toPlainText(), QStringLiteral("αρχή μέση τέλος"));
        QCOMPARE(document.blockCount(), 1);
        QCOMPARE(formatAt(document, 5).foreground().color(), QColor(255, 0, 0));

        QTextCursor second(&document);
        second.movePosition(QTextCursor::End);
        richtext::insertRtf(second, rtf);
        bool found = false;
        for (QTextBlock b = document.begin(); b.isValid(); b = b.next()) {
            for (auto it = b.begin(); !it.atEnd(); ++it) {
                if (it.fragment().charFormat().isImageFormat()) {
                    const QString name = it.fragment().charFormat().toImageFormat().name();
                    QVERIFY(!document.resource(QTextDocument::ImageResource, QUrl(name))
                                 .value<QImage>()
                                 .isNull());
                    found = true;
                }
            }
        }
        QVERIFY(found);
    }

    void notRtfIsRecognised()
    {
        QVERIFY(!richtext::isRtf("hello"));
        QVERIFY(!richtext::isRtf(QByteArray()));
        QVERIFY(richtext::isRtf("\xEF\xBB\xBF  {\\rtf1}"));
        QVERIFY(richtext::isRtf("{\\rtf"));
    }
};

QTEST_MAIN(tst_RtfReader)
#include "tst_rtfreader.moc"
