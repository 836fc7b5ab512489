// The text dialog and the Text tool that writes its line into the canvas.
#include "drawingtesting.h"

#include <drawingtools.h>
#include <frmdrawingtext.h>
#include <surface.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

using namespace testing;

namespace {

struct Window
{
    frmDrawing w;
    explicit Window(Session &session)
        : w(session)
    {
        w.Load();
        w.show();
        chooseTool(w, QStringLiteral("Text"));
    }
};

// The rows of the picture that hold anything but white, from the top.
int firstInkedRow(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != qRgb(255, 255, 255))
                return y;
    return -1;
}

} // namespace

class tst_frmDrawingText : public QObject, public DrawingFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        beginSession();
        boxes.install(host());
    }
    void cleanup() { endSession(); }

    void dialogStartsWithItsOwnTextFontAndSizes()
    {
        frmDrawingText dialog;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Εισαγωγή Κειμένου"));
        QCOMPARE(dialog.txtText->text(), QStringLiteral("Γράψτε εδώ"));
        QCOMPARE(dialog.txtText->font().pointSize(), 24);
        // "MS Sans Serif" is drawn in the family that fontconfig puts in its place.
        const QString family = QFontInfo(QFont(QStringLiteral("MS Sans Serif"))).family();
        QVERIFY(family != QStringLiteral("MS Sans Serif"));
        QCOMPARE(dialog.txtText->font().family(), family);
        QCOMPARE(dialog.cmbFontSize->count(), 11);
        QCOMPARE(dialog.cmbFontSize->itemText(0), QStringLiteral("8"));
        QCOMPARE(dialog.cmbFontSize->itemText(10), QStringLiteral("24"));
        QCOMPARE(dialog.cmbFontSize->currentText(), QStringLiteral("24"));
        QCOMPARE(dialog.cmdApply->toolTip(), QStringLiteral("Εφαρμογή και έξοδος"));
    }

    void fontListHoldsEveryFamilyWhenTheSystemFontWritesGreek()
    {
        frmDrawingText dialog;
        const bool greek
            = QFontDatabase::writingSystems(QFontInfo(QFont()).family()).contains(QFontDatabase::Greek);
        QCOMPARE(dialog.cmbFontName->count(), greek ? int(QFontDatabase::families().size()) : 0);
        QCOMPARE(dialog.cmbFontName->toolTip(), QStringLiteral("Γραμματοσειρά"));
        // The list shows the dialog's font chosen.
        if (greek)
            QCOMPARE(dialog.cmbFontName->currentText(), dialog.txtText->font().family());
    }

    void fontControlsChangeThePreviewAndSelectTheText()
    {
        frmDrawingText dialog;
        dialog.chcBold->setChecked(true);
        dialog.chcBold_Click();
        QVERIFY(dialog.txtText->font().bold());
        QCOMPARE(dialog.txtText->selectedText(), dialog.txtText->text());
        dialog.cmbFontSize->setEditText(QStringLiteral("12"));
        dialog.cmbFontSize_Click();
        QCOMPARE(dialog.txtText->font().pointSize(), 12);
        dialog.cmbFontSize->setEditText(QStringLiteral("μεγάλο"));
        dialog.cmbFontSize_Click();
        QCOMPARE(dialog.txtText->font().pointSize(), 12);
        dialog.chcItalics->setChecked(true);
        dialog.chcItalics_Click();
        QVERIFY(dialog.txtText->font().italic());
    }

    void applyRaisesWriteStringOnceAndCancelNone()
    {
        frmDrawingText apply;
        QSignalSpy written(&apply, &frmDrawingText::WriteString);
        apply.cmdApply_Click();
        QCOMPARE(written.size(), 1);
        QCOMPARE(written.first().at(1).toString(), QStringLiteral("Γράψτε εδώ"));
        frmDrawingText cancel;
        QSignalSpy none(&cancel, &frmDrawingText::WriteString);
        cancel.cmdCancel_Click();
        QCOMPARE(none.size(), 0);
    }

    void applyWithTheTextUntouchedWritesJustThat()
    {
        Window t(session());
        answerTextDialog([](frmDrawingText &d) { d.cmdApply->click(); });
        stroke(t.w, {{20, 10}});
        QCOMPARE(t.w.TextToWrite(), QStringLiteral("Γράψτε εδώ"));

        // The same text, font and place drawn by the canvas's own text call.
        QImage expected = drawing::blankImage(t.w.picPhoto->size(), 0xFFFFFF);
        drawing::drawText(expected, 20, 10, t.w.picPhoto->Font, 0, QStringLiteral("Γράψτε εδώ"));
        QCOMPARE(t.w.picPhoto->Picture(), expected);
        QCOMPARE(firstInkedRow(t.w.picPhoto->Picture()) >= 10, true);
    }

    void cancelOrAnEmptyBoxWritesNothing()
    {
        Window t(session());
        const QImage before = t.w.picPhoto->Image();
        answerTextDialog([](frmDrawingText &d) { d.cmdCancel->click(); });
        stroke(t.w, {{20, 10}});
        QCOMPARE(t.w.picPhoto->Picture(), before);
        answerTextDialog([](frmDrawingText &d) {
            d.txtText->clear();
            d.cmdApply->click();
        });
        stroke(t.w, {{20, 10}});
        QCOMPARE(t.w.picPhoto->Picture(), before);
    }

    void fontStaysOnTheCanvasAndTheNextDialogStartsAfresh()
    {
        Window t(session());
        answerTextDialog([](frmDrawingText &d) {
            d.cmbFontSize->setEditText(QStringLiteral("10"));
            d.cmbFontSize_Click();
            d.cmdApply->click();
        });
        stroke(t.w, {{5, 5}});
        QCOMPARE(t.w.picPhoto->Font.pointSize(), 10);
        int nextSize = 0;
        QString nextBox;
        answerTextDialog([&](frmDrawingText &d) {
            nextSize = d.txtText->font().pointSize();
            nextBox = d.cmbFontSize->currentText();
            d.cmdCancel->click();
        });
        stroke(t.w, {{5, 50}});
        QCOMPARE(nextSize, 24);
        QCOMPARE(nextBox, QStringLiteral("24"));
        QCOMPARE(t.w.picPhoto->Font.pointSize(), 10);
    }

    void greekGoesThroughTheEightBitCodePage()
    {
        QCOMPARE(drawing::throughGreekCodePage(QStringLiteral("Αθήνα")), QStringLiteral("Αθήνα"));
        QCOMPARE(drawing::throughGreekCodePage(QStringLiteral("ἀρχή")), QStringLiteral("?ρχή"));
        QCOMPARE(drawing::throughGreekCodePage(QStringLiteral("日")), QStringLiteral("?"));
    }

    void charactersOutsideTheGreekCodePageReachTheCanvasAsQuestionMarks()
    {
        Window t(session());
        answerTextDialog([](frmDrawingText &d) {
            d.txtText->setText(QStringLiteral("ἀνήρ"));
            d.cmdApply->click();
        });
        stroke(t.w, {{10, 10}});
        QImage expected = drawing::blankImage(t.w.picPhoto->size(), 0xFFFFFF);
        drawing::drawText(expected, 10, 10, t.w.picPhoto->Font, 0, QStringLiteral("?νήρ"));
        QCOMPARE(t.w.picPhoto->Picture(), expected);
    }

    void textIsWrittenAtThePressNotTheRelease()
    {
        Window t(session());
        answerTextDialog([](frmDrawingText &d) {
            d.txtText->setText(QStringLiteral("Α"));
            d.cmdApply->click();
        });
        t.w.picPhoto_MouseDown(1, 0, tw(40), tw(30));
        t.w.picPhoto_MouseMove(1, 0, tw(90), tw(80));
        t.w.picPhoto_MouseUp(1, 0, tw(90), tw(80));
        QImage expected = drawing::blankImage(t.w.picPhoto->size(), 0xFFFFFF);
        drawing::drawText(expected, 40, 30, t.w.picPhoto->Font, 0, QStringLiteral("Α"));
        QCOMPARE(t.w.picPhoto->Picture(), expected);
    }

    void textTakesTheOutlineColourAndOneUndoTakesItAway()
    {
        Window t(session());
        t.w.vFormBorderColor_NewColor(0x0000FF);
        const QImage before = t.w.picPhoto->Picture();
        answerTextDialog([](frmDrawingText &d) {
            d.txtText->setText(QStringLiteral("ΜΜΜ"));
            d.cmdApply->click();
        });
        stroke(t.w, {{10, 10}});
        bool red = false;
        const QImage after = t.w.picPhoto->Picture();
        for (int y = 0; y < after.height() && !red; ++y)
            for (int x = 0; x < after.width() && !red; ++x)
                red = after.pixel(x, y) == qRgb(255, 0, 0);
        QVERIFY(red);
        t.w.tlbGeneral_ButtonClick(QStringLiteral("Undo"));
        QCOMPARE(t.w.picPhoto->Picture(), before);
    }

private:
    AnsweringBoxes boxes;
};

QTEST_MAIN(tst_frmDrawingText)
#include "tst_frmdrawingtext.moc"
