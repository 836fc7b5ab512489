// RichTextBox on screen and on paper: line counts, points and places, files, printing.

#include "../../support/bulletink.h"
#include "richtextboxtesthelpers.h"

#include <richtextbox.h>
#include <richtextpages.h>
#include <runtimeerror.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPrinter>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

using namespace richtextboxtest;

class tst_RichTextBoxLayout : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;

    QString tempPath(const QString &name) const { return m_dir->filePath(name); }

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    // --- Measuring -------------------------------------------------------------------------

    void lineCountFollowsTheWrapping()
    {
        RichTextBox box;
        box.resize(200, 300);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        box.setText(u"ένα\nδύο"_s);
        QCOMPARE(box.LineCount(), 2);
        box.setText(QString());
        QCOMPARE(box.LineCount(), 1);
        QString words;
        for (int i = 0; i < 60; ++i)
            words += u"λέξη "_s;
        box.setText(words);
        const int narrow = box.LineCount();
        QVERIFY(narrow > 3);
        box.resize(600, 300);
        QCOMPARE_LT(box.LineCount(), narrow);
    }

    void lineCountOfAHiddenBoxUsesItsNewWidth()
    {
        // Windows size their boxes before they are first shown.
        QWidget window;
        RichTextBox box(&window);
        QString words;
        for (int i = 0; i < 40; ++i)
            words += u"λέξη "_s;
        box.setText(words);
        box.resize(120, 50);
        const int narrow = box.LineCount();
        box.resize(900, 50);
        const int wide = box.LineCount();
        QCOMPARE_LT(wide, narrow);
        QCOMPARE_LT(wide, 4);

        // Shown at that width, the count stays; hidden and narrowed, it follows again.
        window.resize(1000, 100);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(box.LineCount(), wide);
        window.hide();
        box.resize(120, 50);
        QCOMPARE(box.LineCount(), narrow);
    }

    void aTwelveLineLegendCountsTwelveLines()
    {
        QWidget window;
        RichTextBox box(&window);
        box.resize(400, 50);
        QStringList lines;
        for (int i = 1; i <= 12; ++i)
            lines.append(u"Γραμμή %1"_s.arg(i));
        box.setText(lines.join(u'\n'));
        QCOMPARE(box.LineCount(), 12);
    }

    void bulletStandsAtTheIndentAndTextAtTheHangingIndent()
    {
        RichTextBox box;
        box.resize(400, 300);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QString words;
        for (int i = 0; i < 20; ++i)
            words += u"λέξη "_s;
        box.setText(words + u"\n"_s + words);
        const double margin = box.document()->documentMargin() + box.viewport()->x();
        auto xOf = [&](int place) { return box.PosFromChar(place).x() - margin; };

        // A plain paragraph: first line at the indent, the others past the hanging indent.
        box.setSelStart(0);
        box.setSelIndent(600);
        box.setSelHangingIndent(400);
        QVERIFY(qAbs(xOf(0) - 40) <= 1);
        const int secondLine = int(box.document()->firstBlock().layout()->lineAt(1).textStart());
        QVERIFY(qAbs(xOf(secondLine) - 1000 / 15.0) <= 1);

        // A bullet paragraph: the bullet at the indent, all its text past the hanging indent.
        const int second = int(words.size()) + 1;
        box.setSelStart(second);
        box.setSelBullet(true);
        box.setSelIndent(600);
        box.setSelHangingIndent(400);
        QVERIFY(qAbs(xOf(second) - 1000 / 15.0) <= 1);
        QCOMPARE(box.SelIndent(), std::optional<int>(600));
        // The bullet is drawn at the indent, not just before the text.
        const int bullet = testing::bulletInkLeft(box, second) - int(box.document()->documentMargin());
        QVERIFY2(bullet >= 600 / 15 - 1 && bullet <= 600 / 15 + 4, qPrintable(QString::number(bullet)));
        // A wider hanging indent moves the text, and the bullet stays.
        box.setSelHangingIndent(1200);
        QVERIFY(qAbs(xOf(second) - 1800 / 15.0) <= 1);
        QCOMPARE(testing::bulletInkLeft(box, second) - int(box.document()->documentMargin()), bullet);
    }

    void thePrintedBulletStandsAtTheIndentToo()
    {
        RichTextBox box;
        box.resize(400, 300);
        box.setText(u"Μία παράγραφος με κουκίδα."_s);
        box.setSelStart(0);
        box.setSelBullet(true);
        box.setSelIndent(600);
        box.setSelHangingIndent(900);
        // A page at 300 dots per inch: 1440 twips to the inch.
        QImage page(1500, 600, QImage::Format_RGB32);
        page.setDotsPerMeterX(11811);
        page.setDotsPerMeterY(11811);
        page.fill(Qt::white);
        richtextbox::PageLayout pages(*box.document(), &page, 6 * 1440);
        QPainter painter(&page);
        pages.formatRange(&painter, QRectF(0, 0, 6 * 1440, 2 * 1440), 0, true);
        painter.end();
        // The bullet stands at the indent and the text at the hanging indent from it, in
        // whatever scale the page lays the indents out.
        const int bullet = testing::inkLeft(page, 0, 150, page.width());
        const int text = testing::inkLeft(page, 0, 150, page.width(), bullet + 20);
        QVERIFY2(bullet > 0 && qAbs(bullet - text * 600.0 / 1500) <= 6,
            qPrintable(QString::number(bullet) + u" "_s + QString::number(text)));
    }

    void getLineFromCharCountsWrappedLines()
    {
        RichTextBox box;
        box.resize(200, 300);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QString words;
        for (int i = 0; i < 30; ++i)
            words += u"λέξη "_s;
        box.setText(u"αρχή\n"_s + words + u"\nτέλος"_s);
        QCOMPARE(box.GetLineFromChar(0), 0);
        QCOMPARE(box.GetLineFromChar(5), 1);
        const int last = box.GetLineFromChar(box.TextLength());
        QCOMPARE(last, box.LineCount() - 1);
        int previous = 0;
        for (int place = 0; place <= box.TextLength(); ++place) {
            const int line = box.GetLineFromChar(place);
            QVERIFY(line == previous || line == previous + 1);
            previous = line;
        }
        QVERIFY(last > 3);
    }

    void charFromPosLandsOnTheCharacterDrawnThere()
    {
        RichTextBox box;
        box.resize(300, 120);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QString text;
        for (int i = 0; i < 12; ++i)
            text += u"Γραμμή %1 με\tστηλοθέτη και λέξεις που αναδιπλώνονται\n"_s.arg(i);
        box.setText(text);
        box.verticalScrollBar()->setValue(box.verticalScrollBar()->maximum() / 2);

        int checked = 0;
        for (int place = 0; place + 1 < box.TextLength(); ++place) {
            if (box.Text().at(place) == u'\n')
                continue;
            QTextCursor left(box.document());
            left.setPosition(place);
            QTextCursor right(box.document());
            right.setPosition(place + 1);
            const QRect a = box.cursorRect(left);
            const QRect b = box.cursorRect(right);
            if (a.top() != b.top() || b.left() - a.left() < 3)
                continue; // the character wraps to the next line, or is too thin
            if (a.bottom() < 0 || a.top() > box.viewport()->height())
                continue;
            const QPoint viewportOrigin = box.viewport()->geometry().topLeft();
            const int y = (a.top() + a.bottom()) / 2;
            // Both halves of the cell belong to the character.
            for (int x : {a.left() + 1, b.left() - 1}) {
                QCOMPARE(box.CharFromPos(QPoint(x, y) + viewportOrigin), place);
            }
            ++checked;
        }
        QVERIFY(checked > 50);
    }

    void charFromPosPastTheEndOfALineGivesItsEnd()
    {
        RichTextBox box;
        box.resize(400, 200);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        box.setText(u"αβγ\nδε"_s);
        QTextCursor c(box.document());
        c.setPosition(1);
        const int y = box.cursorRect(c).center().y() + box.viewport()->y();
        QCOMPARE(box.CharFromPos(QPoint(380, y)), 3);
        QCOMPARE(box.CharFromPos(QPoint(10, 190)), 4); // below the text: the last line
    }

    void anEmptyBoxAnswersAtPlaceZero()
    {
        RichTextBox box;
        box.resize(200, 100);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QCOMPARE(box.TextLength(), 0);
        QCOMPARE(box.CharFromPos(QPoint(50, 50)), 0);
        QCOMPARE(box.GetLineFromChar(0), 0);
        QCOMPARE(box.GetLineFromChar(10), 0);
        QCOMPARE(box.LineCount(), 1);
        QCOMPARE(box.Find(u"α"_s), -1);
        QCOMPARE(box.SelColor(), std::optional<quint32>(0));
    }

    void posFromCharIsWhereTheCharacterIsDrawn()
    {
        RichTextBox box;
        box.resize(300, 200);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        box.setText(u"αβγ δεζ\nηθι"_s);
        for (int place : {0, 2, 5, 8, 10}) {
            QTextCursor c(box.document());
            c.setPosition(place);
            const QRect r = box.cursorRect(c);
            const QPoint p = box.PosFromChar(place);
            QVERIFY2(qAbs(p.x() - (r.left() + box.viewport()->x())) <= 1, qPrintable(QString::number(place)));
            QVERIFY2(qAbs(p.y() - (r.top() + box.viewport()->y())) <= 2, qPrintable(QString::number(place)));
        }
    }

    // --- Files ------------------------------------------------------------------------------

    void saveFileThenLoadFileKeepsTextAndFormat()
    {
        RichTextBox box;
        box.setText(u"Έντονο πλάγιο κόκκινο\nΚέντρο\nΚουκίδα\tμε στηλοθέτη"_s);
        select(box, 0, 6);
        box.setSelBold(true);
        select(box, 7, 6);
        box.setSelItalic(true);
        box.setSelUnderline(true);
        select(box, 14, 7);
        box.setSelColor(Red);
        box.setSelFontSize(18);
        box.setSelStrikeThru(true);
        box.setSelFontName(u"DejaVu Sans"_s);
        select(box, 23, 1);
        box.setSelAlignment(RichTextBox::AlignCenter);
        box.setSelIndent(720);
        select(box, 30, 1);
        box.setSelBullet(true);
        box.setSelIndent(360);
        box.setSelHangingIndent(360);

        const QString path = tempPath(u"σημειώσεις.rtf"_s);
        box.SaveFile(path);
        QFile saved(path);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QVERIFY(saved.readAll().startsWith("{\\rtf"));

        RichTextBox loaded;
        QSignalSpy change(&loaded, &RichTextBox::Change);
        loaded.LoadFile(path, RichTextBox::RichTextFile);
        QCOMPARE_GE(change.count(), 1);
        QCOMPARE(loaded.Text(), box.Text());
        QCOMPARE(loaded.SelStart(), 0);
        select(loaded, 0, 6);
        QCOMPARE(loaded.SelBold(), std::optional<bool>(true));
        QCOMPARE(loaded.SelItalic(), std::optional<bool>(false));
        select(loaded, 7, 6);
        QCOMPARE(loaded.SelItalic(), std::optional<bool>(true));
        QCOMPARE(loaded.SelUnderline(), std::optional<bool>(true));
        select(loaded, 14, 7);
        QCOMPARE(loaded.SelColor(), std::optional<quint32>(Red));
        QCOMPARE(loaded.SelFontSize(), std::optional<double>(18));
        QCOMPARE(loaded.SelStrikeThru(), std::optional<bool>(true));
        QCOMPARE(loaded.SelFontName(), std::optional<QString>(u"DejaVu Sans"_s));
        select(loaded, 0, 6);
        QCOMPARE(loaded.SelFontName(), std::optional<QString>(box.font().family()));
        select(loaded, 0, 21);
        QCOMPARE(loaded.SelFontName(), std::nullopt);
        select(loaded, 23, 1);
        QCOMPARE(loaded.SelAlignment(), std::optional<int>(RichTextBox::AlignCenter));
        QCOMPARE(loaded.SelIndent(), std::optional<int>(720));
        QCOMPARE(loaded.SelBullet(), std::optional<bool>(false));
        select(loaded, 30, 1);
        QCOMPARE(loaded.SelBullet(), std::optional<bool>(true));
        QCOMPARE(loaded.SelIndent(), std::optional<int>(360));
        QCOMPARE(loaded.SelHangingIndent(), std::optional<int>(360));
    }

    void aPictureSurvivesSaveAndLoad()
    {
        QImage image(12, 10, QImage::Format_RGB32);
        image.fill(Qt::blue);
        const QString picture = tempPath(u"χάρτης.png"_s);
        QVERIFY(image.save(picture));
        RichTextBox box;
        box.setText(u"πριν μετά"_s);
        box.setSelStart(5);
        box.InsertPicture(picture);
        const QString path = tempPath(u"με εικόνα.rtf"_s);
        box.SaveFile(path);

        RichTextBox loaded;
        loaded.LoadFile(path);
        QCOMPARE(loaded.Text(), box.Text());
        QCOMPARE(loaded.Text().at(5), QChar(QChar::ObjectReplacementCharacter));
        QTextCursor at(loaded.document());
        at.setPosition(6);
        const QTextImageFormat format = at.charFormat().toImageFormat();
        QVERIFY(format.isValid());
        const QVariant resource
            = loaded.document()->resource(QTextDocument::ImageResource, QUrl(format.name()));
        QVERIFY(resource.isValid());
    }

    void plainTextSavesAndLoadsAsText()
    {
        RichTextBox box;
        box.setText(u"Γραμμή ένα\nΓραμμή δύο"_s);
        const QString path = tempPath(u"σημειώσεις.txt"_s);
        box.SaveFile(path, RichTextBox::TextFile);
        QFile saved(path);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(saved.readAll()), box.Text());

        RichTextBox loaded;
        loaded.LoadFile(path, RichTextBox::TextFile);
        QCOMPARE(loaded.Text(), box.Text());
    }

    void richTextLoadOfAPlainFileReadsItAsText()
    {
        const QString path = tempPath(u"ελληνικά.txt"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("\xc1\xe8\xde\xed\xe1"); // "Αθήνα" in the Greek Windows code page
        file.close();
        RichTextBox box;
        box.LoadFile(path);
        QCOMPARE(box.Text(), u"Αθήνα"_s);
    }

    void loadFileOfAMissingFileRaisesFileNotFound()
    {
        RichTextBox box;
        box.setText(u"μένει"_s);
        QCOMPARE(errorNumberOf([&] { box.LoadFile(tempPath(u"λείπει.rtf"_s)); }), 53);
        QCOMPARE(box.Text(), u"μένει"_s);
        QCOMPARE(errorNumberOf([&] { box.SaveFile(tempPath(u"δεν/υπάρχει/φάκελος.rtf"_s)); }), 75);
    }

    void loadFileForgetsTheUndo()
    {
        RichTextBox box;
        box.setText(u"αβ"_s);
        box.setSelText(u"γ"_s);
        const QString path = tempPath(u"α.txt"_s);
        box.SaveFile(path, RichTextBox::TextFile);
        box.LoadFile(path, RichTextBox::TextFile);
        QVERIFY(!box.CanUndo());
    }

    void selRtfReadsAndWritesRichText()
    {
        RichTextBox box;
        box.setText(u"απλό έντονο"_s);
        select(box, 5, 6);
        box.setSelBold(true);
        select(box, 5, 6);
        const QByteArray rtf = box.SelRTF();
        QVERIFY(rtf.startsWith("{\\rtf"));

        RichTextBox other;
        other.setText(u"[]"_s);
        other.setSelStart(1);
        other.setSelRTF(rtf);
        QVERIFY(other.Text().startsWith(u"[έντονο"_s));
        select(other, 1, 6);
        QCOMPARE(other.SelBold(), std::optional<bool>(true));

        // Text that is no RTF goes in as it stands.
        select(other, 1, 6);
        other.setSelRTF(u"νέο"_s);
        QVERIFY(other.Text().startsWith(u"[νέο"_s));
    }

    // --- Printing ---------------------------------------------------------------------------

    void printingPagesThroughALongTextWithIncreasingPlaces()
    {
        RichTextBox box;
        QString text;
        for (int i = 0; i < 300; ++i)
            text += u"Παράγραφος %1: ο Θουκυδίδης γράφει για τον πόλεμο.\n"_s.arg(i);
        box.setText(text);

        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        const QString pdf = tempPath(u"σημειώσεις.pdf"_s);
        printer.setOutputFileName(pdf);
        printer.setPageSize(QPageSize(QPageSize::A4));
        printer.setFullPage(true);

        const double pageWidthTwips = printer.width() * 1440.0 / printer.logicalDpiX();
        const double pageHeightTwips = printer.height() * 1440.0 / printer.logicalDpiY();
        box.setTargetDevice(int(pageWidthTwips - 2 * 1440));
        const QRectF rect(1440, 1440, pageWidthTwips - 2 * 1440, pageHeightTwips - 2 * 1440);

        QPainter painter(&printer);
        QList<int> starts {0};
        for (;;) {
            const int next = box.FormatRange(&painter, rect, starts.last());
            QCOMPARE_GT(next, starts.last());
            if (next >= box.TextLength())
                break;
            starts.append(next);
            QVERIFY(printer.newPage());
            QVERIFY(starts.size() < 100);
        }
        painter.end();
        box.FormatRangeDone();
        QCOMPARE_GT(starts.size(), 3);
        // Each page begins at the start of a line.
        for (int start : starts)
            QVERIFY(start == 0 || box.Text().at(start - 1) == u'\n' || box.Text().at(start - 1) == u' ');
        QFile file(pdf);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.read(5).startsWith("%PDF"));
        QCOMPARE_GT(file.size(), 2000);
        file.seek(0);
        const QByteArray content = file.readAll();
        static const QRegularExpression page(u"/Type\\s*/Page[^s]"_s);
        QCOMPARE(QString::fromLatin1(content).count(page), starts.size());
    }

    void measuringAPageDrawsNothingAndAgreesWithDrawing()
    {
        RichTextBox box;
        QString text;
        for (int i = 0; i < 100; ++i)
            text += u"Γραμμή %1\n"_s.arg(i);
        box.setText(text);
        QImage page(800, 1100, QImage::Format_RGB32);
        page.fill(Qt::white);
        QPainter painter(&page);
        const QRectF rect(0, 0, 800 * 1440.0 / page.logicalDpiX(), 1100 * 1440.0 / page.logicalDpiY());
        const int measured = box.FormatRange(&painter, rect, 0, false);
        QCOMPARE(page.pixel(40, 10), qRgb(255, 255, 255));
        const int drawn = box.FormatRange(&painter, rect, 0, true);
        painter.end();
        QCOMPARE(measured, drawn);
        bool ink = false;
        for (int x = 0; x < 200 && !ink; ++x)
            for (int y = 0; y < 30 && !ink; ++y)
                ink = page.pixel(x, y) != qRgb(255, 255, 255);
        QVERIFY(ink);
    }

    void picturesPrint()
    {
        QImage picture(40, 30, QImage::Format_RGB32);
        picture.fill(Qt::blue);
        const QString path = tempPath(u"μπλε.png"_s);
        QVERIFY(picture.save(path));
        RichTextBox box;
        box.setText(u"Εικόνα: "_s);
        box.setSelStart(8);
        box.InsertPicture(path);

        QImage page(400, 300, QImage::Format_RGB32);
        page.fill(Qt::white);
        QPainter painter(&page);
        const QRectF rect(0, 0, 400 * 1440.0 / page.logicalDpiX(), 300 * 1440.0 / page.logicalDpiY());
        QCOMPARE(box.FormatRange(&painter, rect, 0), box.TextLength());
        painter.end();
        int blue = 0;
        for (int y = 0; y < page.height(); ++y)
            for (int x = 0; x < page.width(); ++x)
                blue += page.pixel(x, y) == qRgb(0, 0, 255);
        QCOMPARE_GT(blue, 40 * 30 / 2);
    }

    void emptyDocumentPrintsOneBlankPage()
    {
        RichTextBox box;
        QImage page(100, 100, QImage::Format_RGB32);
        QPainter painter(&page);
        QCOMPARE(box.FormatRange(&painter, QRectF(0, 0, 1440, 1440), 0), 0);
        QCOMPARE(box.TextLength(), 0);
    }

    void targetDeviceWrapsTheScreenAsThePage()
    {
        RichTextBox box;
        box.resize(300, 200);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QString words;
        for (int i = 0; i < 80; ++i)
            words += u"λέξη "_s;
        box.setText(words);
        box.setTargetDevice(6000);
        QCOMPARE(box.targetDeviceWidth(), 6000);
        const int lines = box.LineCount();
        box.resize(700, 200);
        QCOMPARE(box.LineCount(), lines);
        const QTextBlock block = box.document()->firstBlock();
        QVERIFY(block.layout()->lineAt(0).naturalTextWidth() <= 6000 / 15.0);
        box.setTargetDevice(0);
        QCOMPARE_LT(box.LineCount(), lines);
    }

    void printedLinesBreakWhereTheScreenBreaksThem()
    {
        RichTextBox box;
        box.resize(500, 300);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QString text;
        for (int i = 0; i < 12; ++i)
            text += u"Ο Θουκυδίδης γράφει για τον καθαρμό της Δήλου από τους Αθηναίους το χειμώνα. "_s;
        box.setText(text + u"\n"_s + text);
        const int lineWidth = 6 * 1440;
        box.setTargetDevice(lineWidth);

        QList<int> screen;
        for (QTextBlock block = box.document()->begin(); block.isValid(); block = block.next()) {
            box.document()->documentLayout()->blockBoundingRect(block);
            for (int i = 0; i < block.layout()->lineCount(); ++i)
                screen.append(block.position() + block.layout()->lineAt(i).textStart());
        }

        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(tempPath(u"γραμμές.pdf"_s));
        QPainter painter(&printer);
        // A page one twip high holds one line, so each page tells where a line begins.
        QList<int> printed {0};
        for (int next = 0;
             (next = box.FormatRange(&painter, QRectF(0, 0, lineWidth, 1), next, false)) < box.TextLength();)
            printed.append(next);
        painter.end();
        QCOMPARE(printed, screen);
    }

    void selPrintPrintsTheSelectionOrAll()
    {
        RichTextBox box;
        QString text;
        for (int i = 0; i < 200; ++i)
            text += u"Επιλεγμένη γραμμή %1\n"_s.arg(i);
        box.setText(text);
        auto pagesPrinted = [&](const QString &name) {
            QPrinter printer(QPrinter::ScreenResolution);
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(tempPath(name));
            box.SelPrint(&printer);
            QFile file(tempPath(name));
            if (!file.open(QIODevice::ReadOnly))
                return -1;
            const QByteArray content = file.readAll();
            if (!content.startsWith("%PDF"))
                return -1;
            static const QRegularExpression page(u"/Type\\s*/Page[^s]"_s);
            return int(QString::fromLatin1(content).count(page));
        };
        box.setSelStart(0);
        box.setSelLength(60);
        QCOMPARE(pagesPrinted(u"επιλογή.pdf"_s), 1);
        box.setSelStart(0);
        const int all = pagesPrinted(u"όλο.pdf"_s);
        QCOMPARE_GT(all, 2);
        box.setSelStart(box.TextLength() / 2);
        box.setSelLength(box.TextLength());
        const int half = pagesPrinted(u"μισό.pdf"_s);
        QVERIFY(half > 1 && half < all);
    }
};

QTEST_MAIN(tst_RichTextBoxLayout)
#include "tst_richtextbox_layout.moc"
