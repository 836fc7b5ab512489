// Bitmap files, the question before losing a picture, clipboard and printing.
#include "drawingtesting.h"

#include <drawingprint.h>

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QPrinter>
#include <QTemporaryDir>

using namespace testing;

namespace {

const QString SaveQuestion = QStringLiteral("Θέλετε να αποθηκεύσετε την εικόνα\r\nπριν συνεχίσετε");

struct Window
{
    frmDrawing w;
    explicit Window(Session &session)
        : w(session)
    {
        w.Load();
        w.show();
    }
    void click(const QString &key) { w.tlbGeneral_ButtonClick(key); }
};

QImage patterned(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb((x * 7) & 0xFF, (y * 13) & 0xFF, (x * y) & 0xFF));
    return image;
}

quint16 bitsPerPixel(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray header = f.read(30);
    return quint16(uchar(header.at(28)) | (uchar(header.at(29)) << 8));
}

} // namespace

class tst_DrawingFiles : public QObject, public DrawingFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        beginSession();
        boxes.install(host());
        dialogs.install(host());
        QVERIFY(dir.isValid());
    }
    void cleanup() { endSession(); }

    void saveThenOpenGivesTheSameBitsInATwentyFourBitFile()
    {
        Window t(session());
        const QImage picture = patterned(QSize(37, 23));
        t.w.picPhoto->setPicture(picture);
        const QString path = dir.filePath(QStringLiteral("ζωγραφιά.bmp"));
        dialogs.names = {path};
        t.click(QStringLiteral("SaveAs"));
        QCOMPARE(t.w.PictureFileName(), path);
        QCOMPARE(dialogs.shown.last().title, QStringLiteral("Αποθήκευση εικόνας"));
        QCOMPARE(dialogs.shown.last().flags, 0x80002);
        QCOMPARE(dialogs.shown.last().defaultExt, QStringLiteral(".bmp"));
        QCOMPARE(bitsPerPixel(path), quint16(24));

        Window other(session());
        dialogs.names = {path};
        other.click(QStringLiteral("Open"));
        QCOMPARE(dialogs.shown.last().title, QStringLiteral("Άνοιγμα εικόνας"));
        QCOMPARE(dialogs.shown.last().filter, QStringLiteral("Εικόνες (*.bmp)|*.bmp"));
        QCOMPARE(dialogs.shown.last().flags, 0x83000);
        QCOMPARE(other.w.picPhoto->Picture().convertToFormat(QImage::Format_RGB32), picture);
        QCOMPARE(other.w.InitialPicture(), other.w.picPhoto->Picture());
        QCOMPARE(other.w.PictureFileName(), path);
        QCOMPARE(other.w.picPhoto->size(), QSize(37, 23));
        QVERIFY(boxes.isEmpty());
    }

    void saveWithAFileWritesOverItWithoutADialog()
    {
        Window t(session());
        const QString path = dir.filePath(QStringLiteral("a.bmp"));
        t.w.picPhoto->setPicture(patterned(QSize(10, 10)));
        dialogs.names = {path};
        t.click(QStringLiteral("Save"));
        QCOMPARE(dialogs.shown.size(), 1);
        t.w.picPhoto->setPicture(solidPicture(QSize(12, 8), Qt::red));
        t.click(QStringLiteral("Save"));
        QCOMPARE(dialogs.shown.size(), 1);
        QCOMPARE(QImage(path).size(), QSize(12, 8));
    }

    void afterSaveExitStillAsks()
    {
        Window t(session());
        t.w.picPhoto->setPicture(patterned(QSize(10, 10)));
        dialogs.names = {dir.filePath(QStringLiteral("b.bmp"))};
        t.click(QStringLiteral("Save"));
        boxes.answers = {platform::vbCancel};
        t.click(QStringLiteral("Exit"));
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().text, SaveQuestion);
        QCOMPARE(boxes.first().style, 35);
        QCOMPARE(boxes.first().title, QStringLiteral("Αποθήκευση"));
        QVERIFY(t.w.isVisible());
    }

    void closingByTheFrameAfterDrawingAsksAndCancelKeepsTheWindow()
    {
        Window t(session());
        stroke(t.w, {QPoint(5, 5), QPoint(40, 30)});
        QVERIFY(t.w.PictureChangedSinceKept());
        boxes.answers = {platform::vbCancel};
        t.w.close();
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().text, SaveQuestion);
        QCOMPARE(boxes.first().style, 35);
        QVERIFY(t.w.isVisible());

        // No: the pupil lets the drawing go, and the window closes.
        boxes.answers = {platform::vbNo};
        t.w.close();
        QCOMPARE(boxes.size(), 2);
        QVERIFY(!t.w.isVisible());
    }

    void closingByTheFrameWithYesSavesTheDrawingFirst()
    {
        Window t(session());
        stroke(t.w, {QPoint(5, 5), QPoint(40, 30)});
        const QString path = dir.filePath(QStringLiteral("πριν το κλείσιμο.bmp"));
        dialogs.names = {path};
        boxes.answers = {platform::vbYes};
        t.w.close();
        QVERIFY(!t.w.isVisible());
        QCOMPARE(QImage(path).size(), t.w.picPhoto->Picture().size());
    }

    void closingAnUntouchedOrJustSavedPictureAsksNothing()
    {
        {
            Window t(session());
            t.w.setMapPicture(QStringLiteral(TREMIDIA_SOURCE_DIR "/src/resources/svg/XARTIS.svg"));
            QVERIFY(!t.w.PictureChangedSinceKept());
            t.w.close();
            QVERIFY(boxes.isEmpty());
        }
        Window t(session());
        stroke(t.w, {QPoint(5, 5), QPoint(40, 30)});
        dialogs.names = {dir.filePath(QStringLiteral("saved.bmp"))};
        t.click(QStringLiteral("SaveAs"));
        t.w.close();
        QVERIFY(boxes.isEmpty());
        QVERIFY(!t.w.isVisible());
    }

    void exitAsksOnceAndTheClosingThatFollowsAsksNothingMore()
    {
        Window t(session());
        stroke(t.w, {QPoint(5, 5), QPoint(40, 30)});
        boxes.answers = {platform::vbNo};
        t.click(QStringLiteral("Exit"));
        QCOMPARE(boxes.size(), 1);
        QVERIFY(!t.w.isVisible());
    }

    void emptyUntouchedCanvasAsksNothing()
    {
        Window t(session());
        t.click(QStringLiteral("New"));
        dialogs.names = {QString()};
        t.click(QStringLiteral("Open"));
        QVERIFY(boxes.isEmpty());
        t.click(QStringLiteral("Exit"));
        QVERIFY(boxes.isEmpty());
        QVERIFY(!t.w.isVisible());
    }

    void cancelInTheSaveDialogWithNoFileStopsTheCommand()
    {
        Window t(session());
        const QImage picture = patterned(QSize(10, 10));
        t.w.picPhoto->setPicture(picture);
        boxes.answers = {platform::vbYes, platform::vbYes};
        dialogs.names = {QString(), QString()};
        QVERIFY(!t.w.QuerySave());
        t.click(QStringLiteral("Exit"));
        QVERIFY(t.w.isVisible());
        // No message for the cancel itself.
        QCOMPARE(boxes.size(), 2);
    }

    void yesWhoseSaveWritesNothingIsACancelEvenAfterAnEarlierFile()
    {
        Window t(session());
        // An open that failed leaves its name in the dialog and none in the window.
        const QString path = dir.filePath(QStringLiteral("not-a-picture.bmp"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("BM?");
        f.close();
        dialogs.names = {path};
        t.click(QStringLiteral("Open"));
        QVERIFY(t.w.PictureFileName().isEmpty());
        const QImage picture = patterned(QSize(10, 10));
        t.w.picPhoto->setPicture(picture);
        boxes.answers = {platform::vbYes};
        dialogs.names = {QString()};
        QVERIFY(!t.w.QuerySave());
        QCOMPARE(t.w.cmD.FileName, path);

        // A save to a file that cannot be written: the error shows and the picture stays.
        boxes.clear();
        boxes.answers = {platform::vbYes};
        dialogs.names = {QStringLiteral("/nonexistent-folder/χάρτης.bmp")};
        t.click(QStringLiteral("New"));
        QCOMPARE(boxes.size(), 2);
        QCOMPARE(boxes.at(1).text, QStringLiteral("Υπάρχει πρόβλημα στην αποθήκευση της εικόνας."));
        QCOMPARE(t.w.picPhoto->Picture(), picture);
    }

    void cancelledOpenMakesThePresentDrawingTheStartingPicture()
    {
        Window t(session());
        const QImage picture = patterned(QSize(10, 10));
        t.w.picPhoto->setPicture(picture);
        boxes.answers = {platform::vbNo};
        dialogs.names = {QString()};
        t.click(QStringLiteral("Open"));
        QCOMPARE(t.w.InitialPicture().cacheKey(), picture.cacheKey());
        QCOMPARE(boxes.size(), 1);
    }

    void failedOpenTellsAndKeepsThePicture()
    {
        Window t(session());
        const QString path = dir.filePath(QStringLiteral("broken.bmp"));
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("BM not a picture");
        f.close();
        dialogs.names = {path};
        t.click(QStringLiteral("Open"));
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().text, QStringLiteral("Υπάρχει πρόβλημα στο άνοιγμα της εικόνας."));
        QCOMPARE(boxes.first().style, 16);
        QVERIFY(!t.w.picPhoto->hasPicture());
        QVERIFY(t.w.PictureFileName().isEmpty());
    }

    void failedSaveTellsAndKeepsTheName()
    {
        Window t(session());
        t.w.picPhoto->setPicture(patterned(QSize(10, 10)));
        const QString path = dir.filePath(QStringLiteral("missing/folder/d.bmp"));
        dialogs.names = {path};
        t.click(QStringLiteral("SaveAs"));
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().text, QStringLiteral("Υπάρχει πρόβλημα στην αποθήκευση της εικόνας."));
        QCOMPARE(t.w.PictureFileName(), path);
    }

    void newKeepsTheFileNameAndEmptiesTheCanvas()
    {
        Window t(session());
        const QString path = dir.filePath(QStringLiteral("e.bmp"));
        patterned(QSize(300, 300)).save(path, "BMP");
        dialogs.names = {path};
        t.click(QStringLiteral("Open"));
        boxes.answers = {platform::vbNo};
        t.click(QStringLiteral("New"));
        QVERIFY(!t.w.picPhoto->hasPicture());
        QCOMPARE(t.w.PictureFileName(), path);
        QVERIFY(t.w.InitialPicture().isNull());
        QCOMPARE(t.w.picPhoto->width(), t.w.picContainer->width() - 10);
    }

    void copyThenPasteBringsThePictureBack()
    {
        Window t(session());
        const QImage picture = patterned(QSize(16, 9));
        t.w.picPhoto->setPicture(picture);
        t.click(QStringLiteral("Copy"));
        QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), picture);
        Window other(session());
        other.click(QStringLiteral("Paste"));
        QCOMPARE(other.w.picPhoto->Picture(), picture);
        QCOMPARE(other.w.InitialPicture(), picture);
    }

    void textOnTheClipboardKeepsPasteSilent()
    {
        Window t(session());
        t.w.picPhoto->setPicture(patterned(QSize(16, 9)));
        QGuiApplication::clipboard()->setText(QStringLiteral("κείμενο"));
        const QImage before = t.w.picPhoto->Picture();
        t.click(QStringLiteral("Paste"));
        QVERIFY(boxes.isEmpty());
        QCOMPARE(t.w.picPhoto->Picture(), before);
    }

    void aMetafileThatDoesNotDecodeLeavesThePictureAlone()
    {
        Window t(session());
        t.w.picPhoto->setPicture(patterned(QSize(16, 9)));
        const QImage before = t.w.picPhoto->Picture();
        auto *data = new QMimeData;
        data->setData(QStringLiteral("image/x-emf"), QByteArray("not a bitmap"));
        QGuiApplication::clipboard()->setMimeData(data);
        boxes.answers = {platform::vbNo};
        t.click(QStringLiteral("Paste"));
        // Nothing to take: the pupil is not asked, and the drawing stays.
        QVERIFY(boxes.isEmpty());
        QVERIFY(t.w.picPhoto->hasPicture());
        QCOMPARE(t.w.picPhoto->Picture(), before);
    }

    void wideDrawingPrintsLandscapeAcrossThePage()
    {
        Window t(session());
        t.w.picPhoto->setPicture(patterned(QSize(300, 100)));
        const QString pdf = dir.filePath(QStringLiteral("print.pdf"));
        QPrinter *used = nullptr;
        dialogs.onPrint = [&](QPrinter &printer) {
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(pdf);
            used = &printer;
        };
        t.click(QStringLiteral("Print"));
        QVERIFY(boxes.isEmpty());
        QVERIFY(used);
        QCOMPARE(dialogs.shown.last().title, QStringLiteral("Εκτύπωση της εικόνας"));
        QCOMPARE(dialogs.shown.last().flags, 0x140000);
        QCOMPARE(used->pageLayout().orientation(), QPageLayout::Landscape);
        QVERIFY(QFile(pdf).size() > 0);
    }

    void printFitFillsTheWidthOfTheLandscapePage()
    {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(dir.filePath(QStringLiteral("fit.pdf")));
        const QRectF printed = drawing::PrintPictureFit(printer, patterned(QSize(300, 100)));
        const QRect area = printer.pageLayout().paintRectPixels(printer.resolution());
        QCOMPARE(printer.pageLayout().orientation(), QPageLayout::Landscape);
        QCOMPARE(printed.topLeft(), QPointF(0, 0));
        QCOMPARE(printed.width(), double(area.width()));
        QCOMPARE(printed.height(), area.width() / 3.0);
    }

    void tallAndSquareDrawingsPrintUpright()
    {
        for (const QSize size : {QSize(100, 300), QSize(100, 100)}) {
            QPrinter printer(QPrinter::HighResolution);
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(dir.filePath(QStringLiteral("tall.pdf")));
            const QRectF printed = drawing::PrintPictureFit(printer, patterned(size));
            const QRect area = printer.pageLayout().paintRectPixels(printer.resolution());
            QCOMPARE(printer.pageLayout().orientation(), QPageLayout::Portrait);
            QVERIFY(qFuzzyCompare(printed.width(), double(area.width()))
                || qFuzzyCompare(printed.height(), double(area.height())));
        }
    }

    void cancelledPrintIsSilent()
    {
        Window t(session());
        t.w.picPhoto->setPicture(patterned(QSize(30, 10)));
        t.click(QStringLiteral("Print"));
        QVERIFY(boxes.isEmpty());
    }

    void printingNoPictureTellsOfThePrinter()
    {
        Window t(session());
        dialogs.onPrint = [&](QPrinter &printer) {
            printer.setOutputFormat(QPrinter::PdfFormat);
            printer.setOutputFileName(dir.filePath(QStringLiteral("none.pdf")));
        };
        t.click(QStringLiteral("Print"));
        QCOMPARE(boxes.size(), 1);
        QVERIFY(boxes.first().text.endsWith(QStringLiteral("\r\nΥπάρχει πρόβλημα με τον εκτυπωτή σας.")));
        QCOMPARE(boxes.first().style, 16);
    }

private:
    AnsweringBoxes boxes;
    AnsweringDialogs dialogs;
    QTemporaryDir dir;
};

QTEST_MAIN(tst_DrawingFiles)
#include "tst_drawingfiles.moc"
