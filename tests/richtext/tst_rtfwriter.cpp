#include "rtfcompare.h"

#include <rtf.h>

#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextList>

namespace {

const QString GreekLetters
    = QStringLiteral("ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩαβγδεζηθικλμνξοπρστυφχψωςάέήίόύώΆΈΉΊΌΎΏϊϋΐΰΪΫ΄΅·");

void makeDocument(QTextDocument &document)
{
    document.setDefaultFont(QFont(QStringLiteral("Times New Roman"), 12));
}

} // namespace

class tst_RtfWriter : public QObject
{
    Q_OBJECT

private slots:
    void headerIsTheRichEditControls()
    {
        QTextDocument document;
        makeDocument(document);
        document.setPlainText(QStringLiteral("Καλημέρα"));
        const QByteArray rtf = richtext::writeDocument(document);
        QVERIFY2(rtf.startsWith("{\\rtf1\\ansi\\ansicpg1253\\deff0"), rtf.constData());
        QVERIFY(rtf.contains("{\\fonttbl{\\f0\\fnil\\fcharset161 Times New Roman;}}"));
        QVERIFY(rtf.contains("{\\colortbl ;}"));
        QVERIFY(rtf.trimmed().endsWith('}'));
        QVERIFY(richtext::isRtf(rtf));
    }

    void greekIsWrittenAsUnicodeWithTheGreekCodePageAfter()
    {
        QTextDocument document;
        makeDocument(document);
        document.setPlainText(QStringLiteral("αΩ"));
        const QByteArray rtf = richtext::writeDocument(document);
        QVERIFY2(rtf.contains("\\u945\\'e1\\u937\\'d9"), rtf.constData());
    }

    void greekRoundTripsExactly()
    {
        QTextDocument document;
        makeDocument(document);
        const QString text = GreekLetters + QStringLiteral(" ASCII 0123 «εισαγωγικά» € — ∑ \U0001F600");
        document.setPlainText(text);
        const QByteArray rtf = richtext::writeDocument(document);
        QCOMPARE(richtext::readPlainText(rtf).text, text);
        QTextDocument copy;
        richtext::readDocument(rtf, &copy);
        QCOMPARE(copy.toPlainText(), text);
    }

    void charactersRtfReservesAreEscaped()
    {
        QTextDocument document;
        makeDocument(document);
        QTextCursor cursor(&document);
        cursor.insertText(QStringLiteral("a\\b{c}d\te\u00A0f"));
        cursor.insertText(QString(QChar::LineSeparator));
        cursor.insertText(QStringLiteral("g"));
        const QByteArray rtf = richtext::writeDocument(document);
        QVERIFY2(rtf.contains("a\\\\b\\{c\\}d\\tab e\\~f\\line g"), rtf.constData());
        QCOMPARE(richtext::readPlainText(rtf).text, QStringLiteral("a\\b{c}d\te\u00A0f\ng"));
    }

    void coloursGoToTheTableWithAutoFirst()
    {
        QTextDocument document;
        makeDocument(document);
        QTextCursor cursor(&document);
        cursor.insertText(QStringLiteral("μαύρο "));
        QTextCharFormat red;
        red.setForeground(QColor(255, 0, 0));
        cursor.insertText(QStringLiteral("κόκκινο"), red);
        QTextCharFormat black;
        black.setForeground(QColor(0, 0, 0));
        cursor.insertText(QStringLiteral(" μαύρο"), black);
        const QByteArray rtf = richtext::writeDocument(document);
        QVERIFY2(
            rtf.contains("{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue0;}"), rtf.constData());
        const richtext::PlainText plain = richtext::readPlainText(rtf);
        QCOMPARE(plain.runs.size(), std::size_t(3));
        QVERIFY(plain.runs[0].colorIsAuto);
        QCOMPARE(plain.runs[1].color, 0x0000FFu);
        QVERIFY(!plain.runs[2].colorIsAuto);
        QCOMPARE(plain.runs[2].color, 0u);
    }

    void bulletsAreInTheRichEditForm()
    {
        QTextDocument document;
        makeDocument(document);
        QTextCursor cursor(&document);
        cursor.insertText(QStringLiteral("Θεοί"));
        QTextBlockFormat item;
        item.setLeftMargin(24);
        cursor.insertBlock(item);
        QTextListFormat bullets;
        bullets.setStyle(QTextListFormat::ListDisc);
        cursor.createList(bullets);
        cursor.insertText(QStringLiteral("Δίας"));
        cursor.insertBlock();
        cursor.insertText(QStringLiteral("Ήρα"));
        const QByteArray rtf = richtext::writeDocument(document);
        QVERIFY2(rtf.contains("{\\f1\\fnil\\fcharset2 Symbol;}"), rtf.constData());
        QCOMPARE(rtf.count("{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}"), 2);
        QVERIFY(rtf.contains("\\li360"));

        QTextDocument copy;
        richtext::readDocument(rtf, &copy);
        QCOMPARE(rtftest::describe(copy), rtftest::describe(document));
        QCOMPARE(richtext::readPlainText(rtf).text, QStringLiteral("Θεοί\nΔίας\nΉρα"));
    }

    void numberedListsKeepTheirKindAndStart()
    {
        QTextDocument document;
        makeDocument(document);
        QTextCursor cursor(&document);
        QTextListFormat numbers;
        numbers.setStyle(QTextListFormat::ListUpperRoman);
        numbers.setProperty(richtext::ListStartProperty, 4);
        cursor.createList(numbers);
        cursor.insertText(QStringLiteral("πρώτο"));
        cursor.insertBlock();
        cursor.insertText(QStringLiteral("δεύτερο"));
        const QByteArray rtf = richtext::writeDocument(document);
        QVERIFY2(rtf.contains("\\pnlvlbody\\pnf0\\pnindent0\\pnstart4\\pnucrm"), rtf.constData());
        QTextDocument copy;
        richtext::readDocument(rtf, &copy);
        QCOMPARE(rtftest::describe(copy), rtftest::describe(document));
    }

    void paragraphFormatsAreWrittenInTwips()
    {
        QTextDocument document;
        makeDocument(document);
        QTextCursor cursor(&document);
        QTextBlockFormat format;
        format.setAlignment(Qt::AlignHCenter);
        format.setLeftMargin(20);
        format.setRightMargin(10);
        format.setTextIndent(-6);
        format.setTopMargin(4);
        format.setBottomMargin(8);
        format.setTabPositions({QTextOption::Tab(100, QTextOption::RightTab)});
        cursor.setBlockFormat(format);
        cursor.insertText(QStringLiteral("κέντρο"));
        const QByteArray rtf = richtext::writeDocument(document);
        QVERIFY2(rtf.contains("\\pard\\qc\\fi-90\\li300\\ri150\\sb60\\sa120\\tqr\\tx1500"), rtf.constData());
        QTextDocument copy;
        richtext::readDocument(rtf, &copy);
        QCOMPARE(rtftest::describe(copy), rtftest::describe(document));
    }

    void picturesAreWrittenAsPng()
    {
        QTextDocument document;
        makeDocument(document);
        QImage image(3, 2, QImage::Format_ARGB32);
        image.fill(QColor(10, 200, 30));
        document.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("pic")), image);
        QTextCursor cursor(&document);
        cursor.insertText(QStringLiteral("εικόνα "));
        QTextImageFormat picture;
        picture.setName(QStringLiteral("pic"));
        picture.setWidth(30);
        picture.setHeight(20);
        cursor.insertImage(picture);
        const QByteArray rtf = richtext::writeDocument(document);
        QVERIFY2(rtf.contains("{\\pict\\pngblip\\picw3\\pich2\\picwgoal450\\pichgoal300"), rtf.constData());
        QVERIFY(rtf.contains("89504e470d0a1a0a"));
        QTextDocument copy;
        richtext::readDocument(rtf, &copy);
        QCOMPARE(rtftest::describe(copy), rtftest::describe(document));
    }

    void selectionsAreWrittenWithTheirPictures()
    {
        QTextDocument document;
        makeDocument(document);
        QImage image(2, 2, QImage::Format_ARGB32);
        image.fill(Qt::blue);
        document.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("pic")), image);
        QTextCursor cursor(&document);
        cursor.insertText(QStringLiteral("πριν "));
        QTextCharFormat bold;
        bold.setFontWeight(QFont::Bold);
        cursor.insertText(QStringLiteral("μέσα"), bold);
        QTextImageFormat picture;
        picture.setName(QStringLiteral("pic"));
        cursor.insertImage(picture);
        cursor.insertText(QStringLiteral(" μετά"));

        QTextCursor selection(&document);
        selection.setPosition(5);
        selection.setPosition(10, QTextCursor::KeepAnchor);
        const QByteArray rtf = richtext::writeSelection(selection);
        QVERIFY2(rtf.contains("\\b"), rtf.constData());
        QVERIFY(rtf.contains("89504e470d0a1a0a"));
        const richtext::PlainText plain = richtext::readPlainText(rtf);
        QCOMPARE(plain.text, QStringLiteral("μέσα\uFFFC"));
        QVERIFY(plain.runs.front().bold);

        const QByteArray fragment = richtext::writeFragment(selection.selection());
        QCOMPARE(richtext::readPlainText(fragment).text, plain.text);
    }

    void wordProcessorOpensWhatWeWrite()
    {
        const QString office = QStandardPaths::findExecutable(QStringLiteral("soffice"));
        if (office.isEmpty())
            QSKIP("no word processor installed");
        QTextDocument document;
        makeDocument(document);
        QTextCursor cursor(&document);
        QTextCharFormat red;
        red.setForeground(QColor(255, 0, 0));
        cursor.insertText(QStringLiteral("Η "));
        cursor.insertText(QStringLiteral("Ακρόπολη"), red);
        cursor.insertBlock();
        QTextListFormat bullets;
        bullets.setStyle(QTextListFormat::ListDisc);
        cursor.createList(bullets);
        cursor.insertText(QStringLiteral("Δίας"), QTextCharFormat());

        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("notes.rtf")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(richtext::writeDocument(document));
        file.close();
        QProcess process;
        process.start(office,
            {QStringLiteral("-env:UserInstallation=file://") + dir.filePath(QStringLiteral("profile")),
                QStringLiteral("--headless"), QStringLiteral("--convert-to"), QStringLiteral("txt:Text"),
                QStringLiteral("--outdir"), dir.path(), file.fileName()});
        QVERIFY(process.waitForFinished(180000));
        QFile text(dir.filePath(QStringLiteral("notes.txt")));
        QVERIFY2(text.open(QIODevice::ReadOnly), process.readAllStandardError().constData());
        const QString converted = QString::fromUtf8(text.readAll());
        QVERIFY2(converted.contains(QStringLiteral("Η Ακρόπολη")), qPrintable(converted));
        QVERIFY2(converted.contains(QStringLiteral("• Δίας")), qPrintable(converted));
    }
};

QTEST_MAIN(tst_RtfWriter)
#include "tst_rtfwriter.moc"
