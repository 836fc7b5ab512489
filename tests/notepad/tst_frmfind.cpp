// Finding and replacing: the find window and the search of modEditor.

#include "notestest.h"

#include <frmfind.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace testing;

namespace {

// The options the box's Find is given, learnt from what a search finds.
struct Search
{
    frmNotes *form;
    frmFind *find;
};

} // namespace

class tst_frmFind : public QObject, public NotesFixture
{
    Q_OBJECT

private:
    Search open(const QString &text)
    {
        frmNotes *form = m_shell->openNotes();
        form->notes->setText(text);
        form->notes->setSelStart(0);
        form->mnuFind->trigger();
        return {form, frmFind::open(session(), false)};
    }

    std::unique_ptr<NotesShell> m_shell;

private slots:
    void init()
    {
        beginSession();
        m_shell = std::make_unique<NotesShell>(session());
        state().FindDirection = 1;
    }
    void cleanup()
    {
        closeAll(session());
        m_shell.reset();
        endSession();
    }

    void theWindowHasItsCaptionsAndStartsInFindMode()
    {
        const Search s = open(QStringLiteral("κείμενο"));
        QCOMPARE(s.find->windowTitle(), QStringLiteral("Αναζήτηση"));
        QCOMPARE(s.find->optionDirection[0]->text(), QStringLiteral("Πάνω"));
        QCOMPARE(s.find->optionDirection[1]->text(), QStringLiteral("Κάτω"));
        QCOMPARE(s.find->chCase->text(), QStringLiteral("Συνδιασμός Κεφαλαίων"));
        QCOMPARE(s.find->cmdReplace->text(), QStringLiteral("Αντικατάσταση ..."));
        QVERIFY(s.find->TxtRep->isHidden());
        QVERIFY(s.find->optionDirection[1]->isChecked());
    }

    void theFirstSearchOfTheProgramGoesUp()
    {
        state().FindDirection = 0;
        const Search s = open(QStringLiteral("α"));
        QVERIFY(s.find->optionDirection[0]->isChecked());
    }

    void searchingDownFromTheStartSkipsAnOccurrenceThatStartsTheText()
    {
        const Search s = open(QStringLiteral("λέξη και λέξη"));
        s.find->txtFind->setText(QStringLiteral("λέξη"));
        Boxes boxes(host());
        s.find->cmdFind->click();
        QCOMPARE(s.form->notes->SelStart(), 9);
        QCOMPARE(s.form->notes->SelLength(), 4);
        QCOMPARE(s.form->SimpleText(), QStringLiteral("Γραμμή 1"));
        QVERIFY(boxes.isEmpty());
        // The next press finds no more: the search ran to the end without wrapping.
        s.find->cmdFind->click();
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().text,
            QStringLiteral(
                "Έχει ολοκληρωθεί η αναζήτηση της συμβολοσειράς \"λέξη\" στην καθορισμένη περιοχή κειμένου"));
        QCOMPARE(boxes.first().title, QStringLiteral("Τρεμίδια"));
        QCOMPARE(s.form->notes->SelStart(), 9);
    }

    void theCaseAndWholeWordBoxesGiveTheOptions_data()
    {
        QTest::addColumn<bool>("matchCase");
        QTest::addColumn<bool>("wholeWord");
        QTest::addColumn<int>("found");
        // Text: " Αλφα αλφαβήτα αλφα"; searching down for "αλφα".
        QTest::newRow("neither") << false << false << 1;
        QTest::newRow("case (4)") << true << false << 6;
        QTest::newRow("whole word (2)") << false << true << 1;
        QTest::newRow("both (6)") << true << true << 15;
    }
    void theCaseAndWholeWordBoxesGiveTheOptions()
    {
        QFETCH(bool, matchCase);
        QFETCH(bool, wholeWord);
        QFETCH(int, found);
        const Search s = open(QStringLiteral(" Αλφα αλφαβήτα αλφα"));
        s.find->txtFind->setText(QStringLiteral("αλφα"));
        s.find->chCase->setChecked(matchCase);
        s.find->ChWholeWord->setChecked(wholeWord);
        s.form->notes->setSelStart(0);
        Boxes boxes(host());
        s.find->cmdFind->click();
        QCOMPARE(s.form->notes->SelStart(), found);
    }

    void theUpwardSearchWalksFromTheTopAndKeepsTheLastHitBeforeTheCaret()
    {
        const Search s = open(QStringLiteral("x αβ αβ αβ"));
        s.find->optionDirection[0]->click();
        QCOMPARE(state().FindDirection, 0);
        s.find->txtFind->setText(QStringLiteral("αβ"));
        s.form->notes->setSelStart(9);
        Boxes boxes(host());
        s.find->cmdFind->click();
        QCOMPARE(s.form->notes->SelStart(), 5);
        QVERIFY(boxes.isEmpty());
    }

    void theUpwardWalkStopsAtAHitWhereItStood()
    {
        const Search s = open(QStringLiteral("αβαβαβ"));
        s.find->optionDirection[0]->click();
        s.find->txtFind->setText(QStringLiteral("αβ"));
        s.form->notes->setSelStart(6);
        Boxes boxes(host());
        s.find->cmdFind->click();
        // Touching occurrences: the walk stops at the first, not at the last before the caret.
        QCOMPARE(s.form->notes->SelStart(), 0);
    }

    void replaceWithTheSelectionEqualToTheFindTextReplacesWithoutMovingOn()
    {
        const Search s = open(QStringLiteral("γάτα και γάτα"));
        s.find->txtFind->setText(QStringLiteral("γάτα"));
        s.find->cmdReplace->click();
        QVERIFY(!s.find->TxtRep->isHidden());
        QCOMPARE(s.find->cmdReplace->text(), QStringLiteral("Αντικατάσταση"));
        QCOMPARE(s.form->notes->Text(), QStringLiteral("γάτα και γάτα"));
        s.find->TxtRep->setText(QStringLiteral("σκύλος"));
        select(*s.form->notes, 0, 4);
        s.find->cmdReplace->click();
        QCOMPARE(s.form->notes->Text(), QStringLiteral("σκύλος και γάτα"));
        // A selection that differs in case goes on to search, and the hit it finds goes at
        // once: the selected one stays.
        s.form->notes->setText(QStringLiteral("σκύλος και γάτα και γάτα"));
        s.find->txtFind->setText(QStringLiteral("Γάτα"));
        select(*s.form->notes, 11, 4);
        Boxes boxes(host());
        s.find->cmdReplace->click();
        QVERIFY(boxes.isEmpty());
        QCOMPARE(s.form->notes->Text(), QStringLiteral("σκύλος και γάτα και σκύλος"));
    }

    void aMissingSelectionMatchSearchesAndReplacesTheHitAtOnce()
    {
        const Search s = open(QStringLiteral("ένα δύο ένα"));
        s.find->txtFind->setText(QStringLiteral("ένα"));
        s.find->cmdReplace->click();
        s.find->TxtRep->setText(QStringLiteral("τρία"));
        s.form->notes->setSelStart(1);
        Boxes boxes(host());
        s.find->cmdReplace->click();
        QCOMPARE(s.form->notes->Text(), QStringLiteral("ένα δύο τρία"));
        QVERIFY(boxes.isEmpty());
    }

    void changingTheFindTextResetsFirstTimeAndAChangedTextGivesTheSecondMessage()
    {
        const Search s = open(QStringLiteral("αβγ αβγ"));
        s.find->txtFind->setText(QStringLiteral("βγ"));
        Boxes boxes(host());
        s.find->cmdFind->click();
        QVERIFY(!state().FindFirstTime);
        s.find->txtFind->setText(QStringLiteral("ωω"));
        QVERIFY(state().FindFirstTime);
        s.find->cmdFind->click();
        QCOMPARE(boxes.size(), 1);
        QCOMPARE(boxes.first().text,
            QStringLiteral("Η συμβολοσειρά \"ωω\" δεν έχει βρεθεί στην καθορισμένη περιοχή κειμένου"));
        QVERIFY(!state().LastSearchFound);
    }

    void anEmptyFindTextDisablesOnlyTheFindButton()
    {
        const Search s = open(QStringLiteral("α"));
        s.find->txtFind->setText(QStringLiteral("α"));
        QVERIFY(s.find->cmdFind->isEnabled());
        s.find->txtFind->clear();
        QVERIFY(!s.find->cmdFind->isEnabled());
        QVERIFY(s.find->cmdReplace->isEnabled());
    }

    void reopenedTheFindTextAndCaseReturnButNotWholeWordNorTheReplaceRow()
    {
        const Search s = open(QStringLiteral("κείμενο"));
        s.find->txtFind->setText(QStringLiteral("κεί"));
        s.find->chCase->setChecked(true);
        s.find->ChWholeWord->setChecked(true);
        s.find->cmdReplace->click();
        s.find->cmdCancel->click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        s.form->notes->setSelStart(0);
        s.form->mnuFind->trigger();
        frmFind *again = frmFind::open(session(), false);
        QVERIFY(again);
        QCOMPARE(again->txtFind->text(), QStringLiteral("κεί"));
        QVERIFY(again->chCase->isChecked());
        QVERIFY(!again->ChWholeWord->isChecked());
        QVERIFY(again->TxtRep->isHidden());
    }

    void showFindTakesTheSelectionAsTheFindText()
    {
        frmNotes *form = m_shell->openNotes();
        form->notes->setText(QStringLiteral("ένα δύο"));
        select(*form->notes, 4, 3);
        form->button(QStringLiteral("Find"))->trigger();
        QCOMPARE(frmFind::open(session(), false)->txtFind->text(), QStringLiteral("δύο"));
        QVERIFY(state().FindFirstTime);
    }

    void menuReplaceOnAClosedWindowOpensTheRowAndReplacesNothing()
    {
        frmNotes *form = m_shell->openNotes();
        form->notes->setText(QStringLiteral("κείμενο"));
        form->notes->setSelStart(2);
        Boxes boxes(host());
        form->mnuReplace->trigger();
        frmFind *find = frmFind::open(session(), false);
        QVERIFY(find);
        QVERIFY(!find->TxtRep->isHidden());
        QVERIFY(!state().ReplaceRequested);
        QCOMPARE(form->notes->Text(), QStringLiteral("κείμενο"));
        QVERIFY(boxes.isEmpty());
    }

    void findingPastThe32767thCharacterWorksAsBeforeIt()
    {
        frmNotes *form = m_shell->openNotes();
        form->notes->setText(
            QString(33000, u'α') + QStringLiteral("β") + QString(100, u'α') + QStringLiteral("β"));
        form->mnuFind->trigger();
        frmFind *find = frmFind::open(session(), false);
        find->txtFind->setText(QStringLiteral("β"));
        form->notes->setSelStart(32800);
        Boxes boxes(host());
        find->cmdFind->click();
        QCOMPARE(form->notes->SelStart(), 33000);
        QCOMPARE(form->notes->SelLength(), 1);
        find->cmdFind->click();
        QCOMPARE(form->notes->SelStart(), 33101);
        // Upwards, from beyond the range of old too.
        find->optionDirection[0]->click();
        find->cmdFind->click();
        QCOMPARE(form->notes->SelStart(), 33000);
        QVERIFY2(boxes.isEmpty(), boxes.isEmpty() ? "" : qPrintable(boxes.first().text));
    }
};

QTEST_MAIN(tst_frmFind)
#include "tst_frmfind.moc"
