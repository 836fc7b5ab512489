#include "../support/testsession.h"
#include "samplecourse.h"

#include <btn.h>
#include <checklistview.h>
#include <chotword.h>
#include <frmcolors.h>
#include <frmnewfirst.h>
#include <frmsearchresources.h>
#include <frmsmallbutton.h>
#include <frmtextresource.h>
#include <frmtooltips.h>
#include <richtextbox.h>
#include <session.h>
#include <tlb.h>

#include <QApplication>
#include <QComboBox>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

// The program by the keyboard alone, on the sample course and its real windows.
class tst_Keyboard : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::TestSession> m_s;
    Session &session() { return *m_s; }

    static void key(int k, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget *target = QApplication::focusWidget();
        QVERIFY(target);
        QTest::keyClick(target, Qt::Key(k), modifiers);
    }

    MDIForm1 *openShell()
    {
        auto *shell = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell));
        if (!shell->isVisible()) {
            shell->setSelectedActivity(1001);
            shell->show();
        }
        if (shell->ActivityID() != 1001) {
            // A change of activity inside the shell, as the navigation tree makes it.
            shell->UnloadResources();
            shell->setSelectedActivity(1001);
            shell->LoadResources();
            QApplication::processEvents();
        }
        shell->activateWindow();
        [&] { QVERIFY(QTest::qWaitForWindowActive(shell)); }();
        return shell;
    }

    void closeViewers(MDIForm1 *shell)
    {
        for (QMdiSubWindow *sub : shell->area->subWindowList())
            if (!qobject_cast<frmSmallButton *>(sub->widget()))
                sub->close();
        QApplication::processEvents();
    }

    frmTextResource *openTextByKeys(MDIForm1 *shell)
    {
        frmSmallButton *tile = shell->Tiles().first();
        tile->setFocus(Qt::TabFocusReason);
        QTest::keyClick(tile, Qt::Key_Return);
        return qobject_cast<frmTextResource *>(tile->SourceForm());
    }

private slots:
    void initTestCase()
    {
        m_s = std::make_unique<testing::TestSession>();
        QVERIFY(testing::openSampleCourse(session()));
    }

    void cleanupTestCase() { m_s.reset(); }

    void pictureButtonsArePressedWithEnterAndSpace()
    {
        Btn button;
        QSignalSpy clicks(&button, &Btn::Click);
        QCOMPARE(button.focusPolicy(), Qt::TabFocus);
        QTest::keyClick(&button, Qt::Key_Return);
        QCOMPARE(clicks.count(), 1);
        QTest::keyClick(&button, Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(clicks.count(), 2);
        QTest::keyClick(&button, Qt::Key_Space);
        QCOMPARE(clicks.count(), 3);
        QTest::keyClick(&button, Qt::Key_A);
        QCOMPARE(clicks.count(), 3);
    }

    void theFocusedPictureButtonShowsAFocusFrame()
    {
        QWidget window;
        auto *button = new Btn(&window);
        QPixmap face(40, 30);
        face.fill(Qt::white);
        button->setPicture(face);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        button->clearFocus();
        const QImage plain = button->grab().toImage();
        button->setFocus(Qt::TabFocusReason);
        QVERIFY(button->hasFocus());
        QVERIFY(button->grab().toImage() != plain);
        button->clearFocus();
        QCOMPARE(button->grab().toImage(), plain);
    }

    void aPaletteIsPickedWithTheArrowsAndEnter()
    {
        QWidget owner;
        owner.show();
        auto *palette = new frmColors(&owner);
        palette->setSelectedColor(frmColors::ColourTable().at(0));
        palette->Show();
        QVERIFY(QTest::qWaitForWindowActive(palette));
        QSignalSpy picks(palette, &frmColors::NewColor);
        QTest::keyClick(palette, Qt::Key_Right);
        QTest::keyClick(palette, Qt::Key_Down);
        QCOMPARE(picks.count(), 0);
        QTest::keyClick(palette, Qt::Key_Return);
        QCOMPARE(picks.count(), 1);
        QCOMPARE(
            picks.first().first().value<quint32>(), frmColors::ColourTable().at(frmColors::CellsPerRow + 1));
        QVERIFY(!palette->isVisible());
        // Escape closes without a pick.
        palette->Show();
        QVERIFY(QTest::qWaitForWindowActive(palette));
        QTest::keyClick(palette, Qt::Key_Left);
        QTest::keyClick(palette, Qt::Key_Escape);
        QCOMPARE(picks.count(), 1);
        QVERIFY(!palette->isVisible());
    }

    void startScreenByKeysAlone()
    {
        auto *screen = new frmNewFirst(session());
        session().adopt(screen);
        screen->show();
        screen->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(screen));
        screen->List2->setFocus(Qt::TabFocusReason);
        // Space checks the current theme as a click on its box does; the scenarios follow.
        key(Qt::Key_Space);
        QVERIFY(screen->List2->isChecked(screen->List2->topLevelItem(0)));
        QVERIFY(screen->List1->count() > 0);
        // Down and Space move the check to the next theme.
        key(Qt::Key_Down);
        key(Qt::Key_Space);
        QVERIFY(!screen->List2->isChecked(screen->List2->topLevelItem(0)));
        QVERIFY(screen->List2->isChecked(screen->List2->topLevelItem(1)));
        key(Qt::Key_Up);
        key(Qt::Key_Space);
        QVERIFY(screen->List2->isChecked(screen->List2->topLevelItem(0)));
        // Tab: themes, scenarios, activities, on, back.
        key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), screen->List1);
        key(Qt::Key_Space);
        QVERIFY(screen->List1->isChecked(screen->List1->topLevelItem(0)));
        QVERIFY(screen->cmdGo->isEnabled());
        QCOMPARE(QApplication::focusWidget(), screen->lvwActivities);
        const qint32 first = screen->currentActivityID();
        // Moving to an activity chooses it, as a click on its row does.
        key(Qt::Key_Down);
        QVERIFY(screen->currentActivityID() != first);
        QCOMPARE(screen->lastActivityIndex(), 2);
        key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), screen->cmdGo);
        key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), screen->cmdExit);
        key(Qt::Key_Tab, Qt::ShiftModifier);
        key(Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), screen->lvwActivities);
        // Enter goes on from the list itself.
        QPointer<frmNewFirst> gone(screen);
        key(Qt::Key_Return);
        QTRY_VERIFY(!gone);
        auto *shell = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell, false));
        QVERIFY(shell && shell->isVisible());
        QCOMPARE(shell->ActivityID(), first + 1);
    }

    void spaceChecksTheFirstScenarioRightAfterTab()
    {
        auto *screen = new frmNewFirst(session());
        session().adopt(screen);
        screen->show();
        screen->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(screen));
        screen->List2->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Space);
        QVERIFY(screen->List1->count() > 0);
        // A list that once had a current item and lost it, as a refilled list has.
        screen->List1->setCurrentIndex(QModelIndex());
        key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), screen->List1);
        key(Qt::Key_Space);
        QVERIFY(screen->List1->isChecked(screen->List1->topLevelItem(0)));
        screen->close();
    }

    void enterDoesNothingBeforeThereIsAnActivity()
    {
        auto *screen = new frmNewFirst(session());
        session().adopt(screen);
        screen->show();
        screen->List2->setFocus(Qt::TabFocusReason);
        QPointer<frmNewFirst> still(screen);
        QTest::keyClick(screen->List2, Qt::Key_Return);
        QApplication::processEvents();
        QVERIFY(still);
        screen->close();
    }

    void tabGoesThroughTheToolbarKeysAndTheTiles()
    {
        MDIForm1 *shell = openShell();
        QList<QWidget *> order;
        shell->TlbMain->Btn1[0]->setFocus(Qt::TabFocusReason);
        for (int i = 0; i < 20; ++i) {
            order << QApplication::focusWidget();
            key(Qt::Key_Tab);
        }
        for (int i = 0; i < Tlb::ButtonCount; ++i)
            QCOMPARE(order.at(i), static_cast<QWidget *>(shell->TlbMain->Btn1[size_t(i)]));
        for (int i = 0; i < shell->ResourceCount(); ++i)
            QCOMPARE(order.at(Tlb::ButtonCount + i), static_cast<QWidget *>(shell->Tiles().at(i).data()));
        // After the last tile the keys come round to the toolbar again.
        QCOMPARE(order.at(Tlb::ButtonCount + shell->ResourceCount()), shell->TlbMain->Btn1[0]);
        // And back.
        shell->Tiles().first()->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), shell->TlbMain->Btn1.back());
    }

    void arrowsMoveBetweenTilesAndEnterOpensOne()
    {
        MDIForm1 *shell = openShell();
        closeViewers(shell);
        frmSmallButton *first = shell->Tiles().first();
        first->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Right);
        QCOMPARE(QApplication::focusWidget(), shell->Tiles().at(1).data());
        key(Qt::Key_Left);
        QCOMPARE(QApplication::focusWidget(), first);
        // A focused tile keeps the focus: activation does not take it away.
        QVERIFY(first->hasFocus());
        key(Qt::Key_Return);
        QTRY_VERIFY(first->SourceOpen());
        QVERIFY(first->SourceForm()->isVisible());
        // Escape closes the text again.
        QTRY_VERIFY(first->SourceForm()->isAncestorOf(QApplication::focusWidget()));
        key(Qt::Key_Escape);
        QTRY_VERIFY(!first->SourceOpen());
        // The keys come back to the tile the text was opened from.
        QTRY_COMPARE(QApplication::focusWidget(), first);
        // Space opens as well.
        shell->Tiles().at(1)->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Space);
        QTRY_VERIFY(shell->Tiles().at(1)->SourceOpen());
        closeViewers(shell);
    }

    void ctrlTabGoesThroughTheOpenWindowsAndTheMenuListsThem()
    {
        MDIForm1 *shell = openShell();
        closeViewers(shell);
        for (int i : {0, 1}) {
            shell->Tiles().at(i)->setFocus(Qt::TabFocusReason);
            key(Qt::Key_Return);
            QTRY_VERIFY(shell->Tiles().at(i)->SourceOpen());
        }
        QMdiSubWindow *text
            = qobject_cast<QMdiSubWindow *>(shell->Tiles().at(0)->SourceForm()->parentWidget());
        QMdiSubWindow *photo
            = qobject_cast<QMdiSubWindow *>(shell->Tiles().at(1)->SourceForm()->parentWidget());
        QVERIFY(text && photo);
        shell->area->setActiveSubWindow(text);
        key(Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(shell->area->activeSubWindow(), photo);
        key(Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(shell->area->activeSubWindow(), text);
        key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(shell->area->activeSubWindow(), photo);

        emit shell->mnuWndAlign->aboutToShow();
        QStringList titles;
        QAction *textEntry = nullptr;
        for (QAction *a : shell->mnuWndAlign->actions()) {
            titles << a->text();
            if (a->text() == text->windowTitle())
                textEntry = a;
        }
        QVERIFY2(textEntry, qPrintable(titles.join(u'|')));
        QVERIFY(titles.contains(photo->windowTitle()));
        QVERIFY(!titles.contains(QStringLiteral("List")));
        textEntry->trigger();
        QCOMPARE(shell->area->activeSubWindow(), text);
        closeViewers(shell);
    }

    void enterOnAFoundSourceOpensIt()
    {
        MDIForm1 *shell = openShell();
        closeViewers(shell);
        shell->TlbMain_ButtonClick(QStringLiteral("SearchResources"));
        auto *search = session().window<frmSearchResources>(Session::Window::SearchResources, false);
        QVERIFY(search);
        search->cmbKeyWord->setCurrentIndex(0);
        QVERIFY(search->lvwResources->topLevelItemCount() > 0);
        QTreeWidgetItem *item = search->lvwResources->topLevelItem(0);
        search->lvwResources->setCurrentItem(item);
        search->lvwResources->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(search->lvwResources->hasFocus());
        const int windows = int(shell->area->subWindowList().size());
        key(Qt::Key_Return);
        QVERIFY(frmSearchResources::Ghosted(item));
        QCOMPARE(int(shell->area->subWindowList().size()), windows + 1);
        closeViewers(shell);
    }

    void tabGoesThroughTheHotWordsAndEnterOpensTheTip()
    {
        MDIForm1 *shell = openShell();
        closeViewers(shell);
        frmTextResource *text = openTextByKeys(shell);
        QVERIFY(text);
        QTRY_COMPARE(QApplication::focusWidget(), text->rtbTextResource);
        QVERIFY(text->locatedHotWordCount() > 1);
        key(Qt::Key_Tab);
        const CHotWord *first = text->locatedHotWord(0);
        QCOMPARE(text->rtbTextResource->SelStart(), first->First());
        QCOMPARE(text->rtbTextResource->SelLength(), first->Last() - first->First());
        key(Qt::Key_Tab);
        QCOMPARE(text->rtbTextResource->SelStart(), text->locatedHotWord(1)->First());
        key(Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(text->rtbTextResource->SelStart(), first->First());
        // On to the first comment, and Enter: the tip, as a click shows it.
        int comment = -1;
        for (int i = 0; i < text->locatedHotWordCount() && comment < 0; ++i)
            if (text->locatedHotWord(i)->HotwordType() == CHotWord::CommentType)
                comment = i;
        QVERIFY(comment >= 0);
        for (int i = 0; i < comment; ++i)
            key(Qt::Key_Tab);
        QCOMPARE(text->rtbTextResource->SelStart(), text->locatedHotWord(comment)->First());
        key(Qt::Key_Return);
        frmToolTips *tip = session().window<frmToolTips>(Session::Window::Tip, false);
        QVERIFY(tip);
        QTRY_VERIFY(tip->isVisible());
        QCOMPARE(tip->TipText(), text->locatedHotWord(comment)->Comment());
        // Escape closes the tip, and leaves the text open.
        QPointer<frmToolTips> gone(tip);
        QTest::keyClick(tip, Qt::Key_Escape);
        QTRY_VERIFY(!gone || !gone->isVisible());
        QVERIFY(text->isVisible());
        closeViewers(shell);
    }
};

QTEST_MAIN(tst_Keyboard)
#include "tst_keyboard.moc"
