// "Παράγραφος" and "Κουκίδες": alignment, indents and bullets of the selected paragraphs,
// with change flags that outlive the dialogs.

#include "../support/bulletink.h"
#include "notestest.h"

#include <frmbullets.h>
#include <frmformat.h>
#include <updown.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

using namespace testing;

class tst_frmFormat : public QObject, public NotesFixture
{
    Q_OBJECT

private:
    frmNotes *openWithText()
    {
        frmNotes *form = m_shell->openNotes();
        form->notes->setText(QStringLiteral("πρώτη παράγραφος\nδεύτερη παράγραφος"));
        select(*form->notes, 0, 5);
        return form;
    }

    std::unique_ptr<NotesShell> m_shell;

private slots:
    void init()
    {
        beginSession();
        m_shell = std::make_unique<NotesShell>(session());
    }
    void cleanup()
    {
        closeAll(session());
        m_shell.reset();
        endSession();
    }

    void loadingOffersTheThreeAlignmentsAndTheIndentKinds()
    {
        frmNotes *form = openWithText();
        form->notes->setSelAlignment(RichTextBox::AlignRight);
        frmFormat *dialog = frmFormat::open(session());
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Παράγραφος"));
        QCOMPARE(dialog->imgCombo->count(), 3);
        QCOMPARE(dialog->imgCombo->itemText(1), QStringLiteral("Κεντρική στοίχιση"));
        QCOMPARE(dialog->imgCombo->currentIndex(), 2);
        QCOMPARE(dialog->Combo1->itemText(2), QStringLiteral("Αναρτημένες γραμμές "));
        QCOMPARE(dialog->Combo1->currentText(), QString());
        QCOMPARE(dialog->Text1->text(), QString());
    }

    void okWithNothingTouchedAppliesTheAlignmentAndNoIndent()
    {
        frmNotes *form = openWithText();
        select(*form->notes, 0, 20);
        form->notes->setSelIndent(300);
        frmFormat *dialog = frmFormat::open(session());
        dialog->imgCombo->setCurrentIndex(1);
        dialog->cmdOK->click();
        QCOMPARE(form->notes->SelAlignment(), std::optional<int>(RichTextBox::AlignCenter));
        QCOMPARE(form->notes->SelIndent(), std::optional<int>(300));
        QCOMPARE(form->buttonValue(QStringLiteral("Center")), 1);
    }

    void okOverAMixedAlignmentAlignsItLeft()
    {
        frmNotes *form = openWithText();
        select(*form->notes, 0, 1);
        form->notes->setSelAlignment(RichTextBox::AlignRight);
        select(*form->notes, 20, 1);
        form->notes->setSelAlignment(RichTextBox::AlignCenter);
        select(*form->notes, 0, 30);
        QCOMPARE(form->notes->SelAlignment(), std::nullopt);
        frmFormat *dialog = frmFormat::open(session());
        QCOMPARE(dialog->imgCombo->currentIndex(), 0);
        dialog->cmdOK->click();
        QCOMPARE(form->notes->SelAlignment(), std::optional<int>(RichTextBox::AlignLeft));
        QCOMPARE(form->buttonValue(QStringLiteral("Left")), 1);
    }

    void twelveWithOrWithoutTheUnitGives1200()
    {
        for (const QString &typed : {QStringLiteral("12"), QStringLiteral("12 mm")}) {
            frmNotes *form = openWithText();
            frmFormat *dialog = frmFormat::open(session());
            dialog->Text1->setText(typed);
            dialog->Text2->setText(typed);
            QVERIFY(state().LeftChanged);
            QCOMPARE(state().Indentation, typed);
            dialog->cmdOK->click();
            QCOMPARE(form->notes->SelIndent(), std::optional<int>(1200));
            QCOMPARE(form->notes->SelRightIndent(), std::optional<int>(1200));
            QVERIFY(!state().LeftChanged);
            QVERIFY(!state().RightChanged);
            closeAll(session());
        }
    }

    void aSpinnerPressFillsAnEmptyFieldAndSetsTheFlag()
    {
        frmNotes *form = openWithText();
        frmFormat *dialog = frmFormat::open(session());
        dialog->UpDown2->upButton->click();
        QCOMPARE(dialog->Text2->text(), QStringLiteral("1 mm"));
        QVERIFY(state().RightChanged);
        dialog->UpDown2->upButton->click();
        dialog->cmdOK->click();
        QCOMPARE(form->notes->SelRightIndent(), std::optional<int>(200));
    }

    void typingAnAmountWithTheKindEmptySelectsFirstLine()
    {
        frmNotes *form = openWithText();
        frmFormat *dialog = frmFormat::open(session());
        dialog->Text3->setText(QStringLiteral("5"));
        QCOMPARE(dialog->Combo1->currentText(), QStringLiteral("Πρώτη γραμμή"));
        QVERIFY(state().FirstLineChanged);
        dialog->cmdOK->click();
        // The first line is set by one tab stop.
        QCOMPARE(form->notes->SelTabCount(), std::optional<int>(1));
        QCOMPARE(form->notes->SelTabs(0), std::optional<int>(500));
        QVERIFY(!state().FirstLineChanged);
    }

    void anAmountWithNoneSetsTheHangingIndent()
    {
        frmNotes *form = openWithText();
        frmFormat *dialog = frmFormat::open(session());
        dialog->Combo1->setCurrentIndex(0);
        QCOMPARE(dialog->Combo1->currentText(), QStringLiteral("Καμία"));
        dialog->Text3->setText(QStringLiteral("7 mm"));
        QVERIFY(state().HangingChanged);
        dialog->cmdOK->click();
        QCOMPARE(form->notes->SelHangingIndent(), std::optional<int>(700));
        QVERIFY(!state().HangingChanged);
    }

    void aFieldTouchedAndCancelledFailsAtTheNextOkInTheConversion()
    {
        frmNotes *form = openWithText();
        frmFormat *dialog = frmFormat::open(session());
        dialog->Text1->setText(QStringLiteral("3"));
        dialog->cmdCancel->click();
        QVERIFY(state().LeftChanged);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        frmFormat *again = frmFormat::open(session());
        QVERIFY(again != dialog || again->Text1->text().isEmpty());
        QCOMPARE(again->Text1->text(), QString());
        again->show();
        Boxes boxes(host());
        again->cmdOK->click();
        QCOMPARE(boxes.size(), 1);
        QVERIFY2(boxes.first().text.startsWith(QStringLiteral("Λάθος # 13")), qPrintable(boxes.first().text));
        // The failed OK leaves the dialog open, to be filled again.
        QVERIFY(again->isVisible());
        QCOMPARE(form->notes->SelIndent(), std::optional<int>(0));
        // Filled again, it goes through and closes.
        again->Text1->setText(QStringLiteral("4"));
        const QPointer<frmFormat> open(again);
        again->cmdOK->click();
        QCOMPARE(form->notes->SelIndent(), std::optional<int>(400));
        QVERIFY(!open || !open->isVisible());
    }

    void bulletsOkWithBothFieldsUntouchedChangesNothing()
    {
        frmNotes *form = openWithText();
        frmBullets *dialog = frmBullets::open(session());
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Κουκίδες"));
        dialog->cmdOK->click();
        QCOMPARE(form->notes->SelBullet(), std::optional<bool>(false));
        QCOMPARE(form->notes->SelIndent(), std::optional<int>(0));
    }

    void theBulletStandsAtSelIndentAndTheTextAtTheHangingIndent()
    {
        frmNotes *form = openWithText();
        frmBullets *dialog = frmBullets::open(session());
        dialog->Text1->setText(QStringLiteral("3 mm"));
        dialog->UpDown2->upButton->click();
        dialog->UpDown2->upButton->click();
        QCOMPARE(dialog->Text2->text(), QStringLiteral("2 mm"));
        QCOMPARE(state().BulIndentation, QStringLiteral("3 mm"));
        dialog->cmdOK->click();
        QCOMPARE(form->notes->SelBullet(), std::optional<bool>(true));
        QCOMPARE(form->notes->SelIndent(), std::optional<int>(300));
        QCOMPARE(form->notes->SelHangingIndent(), std::optional<int>(200));
        QVERIFY(!state().BulletChanged);
        QVERIFY(!state().TextChanged);
    }

    void theBulletIsDrawnWhereItsPositionPutsItAndTheTextBehind()
    {
        frmNotes *form = openWithText();
        frmBullets *dialog = frmBullets::open(session());
        dialog->Text1->setText(QStringLiteral("6 mm"));
        dialog->Text2->setText(QStringLiteral("8 mm"));
        dialog->cmdOK->click();
        RichTextBox &notes = *form->notes;
        const int margin = int(notes.document()->documentMargin());
        const int bullet = testing::bulletInkLeft(notes, 0) - margin;
        QVERIFY2(bullet >= 600 / 15 - 1 && bullet <= 600 / 15 + 4, qPrintable(QString::number(bullet)));
        const QPoint text = notes.PosFromChar(0) - notes.viewport()->geometry().topLeft();
        QVERIFY(qAbs(text.x() - margin - 1400 / 15.0) <= 1);
    }

    void aBulletsFieldTouchedAndCancelledKeepsItsFlag()
    {
        frmNotes *form = openWithText();
        frmBullets *dialog = frmBullets::open(session());
        dialog->Text2->setText(QStringLiteral("1"));
        dialog->cmdCancel->click();
        QVERIFY(state().TextChanged);
        QCOMPARE(form->notes->SelBullet(), std::optional<bool>(false));
    }
};

QTEST_MAIN(tst_frmFormat)
#include "tst_frmformat.moc"
