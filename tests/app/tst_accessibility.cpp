#include "../support/testsession.h"
#include "accessibletree.h"
#include "programwindows.h"
#include "samplecourse.h"

#include <btn.h>
#include <checklistview.h>
#include <chotword.h>
#include <frmdrawing.h>
#include <frmindex.h>
#include <frmnewfirst.h>
#include <frmnotes.h>
#include <frmploigisi.h>
#include <frmsearchresources.h>
#include <frmsmallbutton.h>
#include <frmtextresource.h>
#include <frmtooltips.h>
#include <richtextbox.h>
#include <session.h>
#include <tlb.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocumentFragment>

using testing::namelessFocusable;
using testing::withRole;

// The real windows on the sample course, read through Qt's accessibility as a screen
// reader reads them: each control a pupil can reach has its role and a Greek name.
class tst_Accessibility : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::TestSession> m_s;
    Session &session() { return *m_s; }
    QTemporaryDir m_cache;

    MDIForm1 *shell()
    {
        auto *s = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell));
        if (!s->isVisible()) {
            s->setSelectedActivity(1001);
            s->show();
        }
        return s;
    }

    frmSmallButton *tileOfKind(SourceViewer::Kind kind)
    {
        for (const auto &tile : shell()->Tiles())
            if (tile && tile->kind() == kind)
                return tile;
        return nullptr;
    }

    frmTextResource *openText()
    {
        frmSmallButton *tile = tileOfKind(SourceViewer::Kind::Text);
        if (!tile)
            return nullptr;
        tile->accessiblePress();
        return qobject_cast<frmTextResource *>(tile->SourceForm());
    }

    static QString failures(const QStringList &problems) { return problems.join(QStringLiteral("\n")); }

private slots:
    void initTestCase()
    {
        m_s = std::make_unique<testing::TestSession>();
        QVERIFY(testing::openSampleCourse(session()));
        // The text search's index of the sample goes to a cache of the test's own.
        QVERIFY(m_cache.isValid());
        qputenv("XDG_CACHE_HOME", m_cache.path().toUtf8());
    }

    void cleanupTestCase() { m_s.reset(); }

    void startScreenButtonsArePushButtonsNamedByTheirTips()
    {
        auto *screen = new frmNewFirst(session());
        session().adopt(screen);
        screen->show();
        QAccessibleInterface *go = QAccessible::queryAccessibleInterface(screen->cmdGo);
        QCOMPARE(go->role(), QAccessible::PushButton);
        QCOMPARE(go->text(QAccessible::Name), QStringLiteral("Εμπρός"));
        QVERIFY(go->state().focusable);
        QCOMPARE(QAccessible::queryAccessibleInterface(screen->cmdExit)->text(QAccessible::Name),
            QStringLiteral("Επιστροφή"));
        QAccessibleInterface *window = QAccessible::queryAccessibleInterface(screen);
        QCOMPARE(window->role(), QAccessible::Window);
        QCOMPARE(window->text(QAccessible::Name), QStringLiteral("Τρεμίδια"));
        const QStringList problems = namelessFocusable(screen);
        QVERIFY2(problems.isEmpty(), qPrintable(failures(problems)));
        screen->close();
    }

    void checkListItemsAreCheckableAndSayTheirState()
    {
        auto *screen = new frmNewFirst(session());
        session().adopt(screen);
        screen->show();
        QTreeWidgetItem *first = screen->List2->topLevelItem(0);
        screen->List2->setChecked(first, true);
        const QList<QAccessibleInterface *> items = withRole(screen->List2, QAccessible::Cell)
            + withRole(screen->List2, QAccessible::ListItem) + withRole(screen->List2, QAccessible::TreeItem);
        QVERIFY(!items.isEmpty());
        bool sawChecked = false;
        bool sawUnchecked = false;
        for (QAccessibleInterface *item : items) {
            QVERIFY2(item->state().checkable, qPrintable(testing::describe(item)));
            (item->state().checked ? sawChecked : sawUnchecked) = true;
        }
        QVERIFY(sawChecked);
        QVERIFY(sawUnchecked);
        screen->close();
    }

    void toolbarKeysArePushButtonsNamedByTheirTips()
    {
        MDIForm1 *s = shell();
        QStringList names;
        for (Btn *key : s->TlbMain->Btn1) {
            QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(key);
            QCOMPARE(iface->role(), QAccessible::PushButton);
            QVERIFY(iface->state().focusable);
            names << iface->text(QAccessible::Name);
        }
        QVERIFY(names.contains(QStringLiteral("Έξοδος")));
        QVERIFY(names.contains(QStringLiteral("Αναζήτηση στη βάση δεδομένων")));
        QAccessibleInterface *window = QAccessible::queryAccessibleInterface(s);
        QCOMPARE(window->role(), QAccessible::Window);
        QCOMPARE(window->text(QAccessible::Name), QStringLiteral("ΤΡΕΜΙΔΙΑ"));
    }

    void aToolbarKeysPressDoesWhatItsClickDoes()
    {
        MDIForm1 *s = shell();
        Btn *search = s->TlbMain->Btn1[10];
        QAccessibleActionInterface *actions
            = QAccessible::queryAccessibleInterface(search)->actionInterface();
        QVERIFY(actions);
        QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
        actions->doAction(QAccessibleActionInterface::pressAction());
        const auto found = [this] { return session().window(Session::Window::SearchResources, false); };
        QTRY_VERIFY(found() && found()->isVisible());
        found()->window()->close();
        if (auto *sub = qobject_cast<QMdiSubWindow *>(found() ? found()->parentWidget() : nullptr))
            sub->close();
    }

    void tilesArePushButtonsNamedByNumberAndTitleWithTheirKind()
    {
        MDIForm1 *s = shell();
        QVERIFY(!s->Tiles().isEmpty());
        QStringList kinds;
        for (const auto &tile : s->Tiles()) {
            QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(tile);
            QCOMPARE(iface->role(), QAccessible::PushButton);
            QVERIFY(iface->state().focusable);
            QVERIFY2(iface->text(QAccessible::Name).startsWith(tile->Label1->text() + QStringLiteral(": ")),
                qPrintable(iface->text(QAccessible::Name)));
            kinds << iface->text(QAccessible::Description);
        }
        QCOMPARE(QAccessible::queryAccessibleInterface(s->Tiles().first())->text(QAccessible::Name),
            QStringLiteral("1: Τα κυκλαδικά ειδώλια"));
        QVERIFY(kinds.contains(QStringLiteral("Κείμενο")));
        QVERIFY(kinds.contains(QStringLiteral("Φωτογραφία")));
        QVERIFY(kinds.contains(QStringLiteral("Χάρτης")));
        const QStringList problems = namelessFocusable(s);
        QVERIFY2(problems.isEmpty(), qPrintable(failures(problems)));
    }

    void theTextIsReadableWithItsHotWordsAsLinks()
    {
        frmTextResource *text = openText();
        QVERIFY(text);
        QAccessibleInterface *box = QAccessible::queryAccessibleInterface(text->rtbTextResource);
        QCOMPARE(box->text(QAccessible::Name), text->windowTitle());
        QAccessibleTextInterface *reading = box->textInterface();
        QVERIFY(reading);
        QVERIFY(reading->characterCount() > 100);
        QVERIFY(reading->text(0, reading->characterCount()).contains(QStringLiteral("Κυκλάδες")));
        QCOMPARE(box->childCount(), text->locatedHotWordCount());
        QVERIFY(box->childCount() > 0);
        for (int i = 0; i < box->childCount(); ++i) {
            QAccessibleInterface *link = box->child(i);
            QCOMPARE(link->role(), QAccessible::Link);
            QCOMPARE(link->parent(), box);
            QCOMPARE(box->indexOfChild(link), i);
            QVERIFY(!link->text(QAccessible::Name).isEmpty());
            QVERIFY(link->actionInterface());
            QAccessibleHyperlinkInterface *hyper = link->hyperlinkInterface();
            QVERIFY(hyper);
            QCOMPARE(reading->text(hyper->startIndex(), hyper->endIndex()).simplified(),
                link->text(QAccessible::Name));
        }
        QCOMPARE(box->child(0)->text(QAccessible::Name), QStringLiteral("Κυκλάδες"));
        QAccessibleInterface *frame = QAccessible::queryAccessibleInterface(text->parentWidget());
        QCOMPARE(frame->role(), QAccessible::Window);
        QCOMPARE(frame->text(QAccessible::Name), text->windowTitle());
        const QStringList problems = namelessFocusable(shell());
        QVERIFY2(problems.isEmpty(), qPrintable(failures(problems)));
    }

    void aHotWordsPressOpensTheTipNamedByItsText()
    {
        frmTextResource *text = openText();
        QVERIFY(text);
        QAccessibleInterface *box = QAccessible::queryAccessibleInterface(text->rtbTextResource);
        QAccessibleInterface *comment = nullptr;
        for (int i = 0; i < box->childCount() && !comment; ++i)
            if (text->locatedHotWord(i)->HotwordType() == CHotWord::CommentType)
                comment = box->child(i);
        QVERIFY(comment);
        comment->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        frmToolTips *tip = session().window<frmToolTips>(Session::Window::Tip, false);
        QVERIFY(tip);
        QTRY_VERIFY(tip->isVisible());
        QVERIFY(comment->state().selected);
        QAccessibleInterface *tipFace = QAccessible::queryAccessibleInterface(tip);
        QCOMPARE(tipFace->role(), QAccessible::ToolTip);
        QCOMPARE(tipFace->text(QAccessible::Name), tip->TipText());
        QVERIFY(!tip->TipText().isEmpty());
        const QStringList problems = namelessFocusable(tip);
        QVERIFY2(problems.isEmpty(), qPrintable(failures(problems)));
        tip->close();
    }

    void theWindowMenuNamesTheWindowsByTitleNeverList()
    {
        MDIForm1 *s = shell();
        frmTextResource *text = openText();
        QVERIFY(text);
        emit s->mnuWndAlign->aboutToShow();
        QStringList entries;
        for (QAccessibleInterface *item : withRole(s->mnuWndAlign, QAccessible::MenuItem))
            entries << item->text(QAccessible::Name);
        QVERIFY2(entries.contains(text->windowTitle()), qPrintable(entries.join(u'|')));
        QVERIFY2(!entries.contains(QStringLiteral("List")), qPrintable(entries.join(u'|')));
        for (const QString &entry : std::as_const(entries))
            QVERIFY(!entry.isEmpty());
    }

    void everyWindowOfTheShellNamesEveryFocusableObject_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("navigation tree") << QStringLiteral("Ploigisi");
        QTest::newRow("index") << QStringLiteral("Search");
        QTest::newRow("notepad") << QStringLiteral("Notes");
        QTest::newRow("drawing") << QStringLiteral("drawing");
        QTest::newRow("search") << QStringLiteral("SearchResources");
    }

    void everyWindowOfTheShellNamesEveryFocusableObject()
    {
        QFETCH(QString, key);
        MDIForm1 *s = shell();
        s->TlbMain_ButtonClick(key);
        QApplication::processEvents();
        QStringList problems = namelessFocusable(s);
        for (QWidget *top : QApplication::topLevelWidgets())
            if (top != s && top->isVisible() && !qobject_cast<QMenu *>(top))
                problems += namelessFocusable(top);
        QVERIFY2(problems.isEmpty(), qPrintable(failures(problems)));
    }

    void thePalettesNameEveryFocusableObject_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("line width") << QStringLiteral("BorderWidth");
        QTest::newRow("line colour") << QStringLiteral("BorderColor");
        QTest::newRow("fill colour") << QStringLiteral("FillColor");
        QTest::newRow("fill style") << QStringLiteral("FillStyle");
        QTest::newRow("stamps") << QStringLiteral("Shape");
    }

    void thePalettesNameEveryFocusableObject()
    {
        QFETCH(QString, key);
        MDIForm1 *s = shell();
        s->TlbMain_ButtonClick(QStringLiteral("drawing"));
        auto *drawing = qobject_cast<frmDrawing *>(
            s->area->activeSubWindow() ? s->area->activeSubWindow()->widget() : nullptr);
        QVERIFY(drawing);
        drawing->tlbGeneral_ButtonClick(key);
        QApplication::processEvents();
        QStringList problems;
        for (QWidget *top : QApplication::topLevelWidgets())
            if (top->isVisible() && !qobject_cast<QMenu *>(top))
                problems += namelessFocusable(top);
        QVERIFY2(problems.isEmpty(), qPrintable(failures(problems)));
        for (QWidget *top : QApplication::topLevelWidgets())
            if (top->isVisible() && top->windowFlags() & Qt::Popup)
                top->close();
    }

    void everyWindowTheProgramOpensIsNamedAndNamesEveryFocusableObject_data()
    {
        testing::addProgramWindowRows();
    }

    void everyWindowTheProgramOpensIsNamedAndNamesEveryFocusableObject()
    {
        QFETCH(int, window);
        const testing::ProgramWindow program = testing::programWindow(window);
        QWidget *opened = program.open(session(), shell());
        QVERIFY2(opened, program.name);
        QTRY_VERIFY(opened->isVisible());
        QApplication::processEvents();
        QWidget *frame = testing::frameOf(opened);
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(frame);
        QVERIFY(face);
        QVERIFY2(!face->text(QAccessible::Name).trimmed().isEmpty(), qPrintable(testing::describe(face)));
        const QStringList problems = namelessFocusable(frame);
        testing::closeProgramWindows(session(), shell());
        QVERIFY2(problems.isEmpty(), qPrintable(failures(problems)));
        QVERIFY(m_s->host->boxes.isEmpty());
    }

    void theTextSearchNamesItsResultsAndReadsEachOnesLineOfText()
    {
        const QList<testing::ProgramWindow> windows = testing::programWindows();
        const auto textSearch = std::find_if(windows.cbegin(), windows.cend(),
            [](const testing::ProgramWindow &w) { return qstrcmp(w.name, "text_search") == 0; });
        QVERIFY(textSearch != windows.cend());
        auto *search = qobject_cast<frmFullTextSearch *>(textSearch->open(session(), shell()));
        QVERIFY(search);
        QAccessibleInterface *list = QAccessible::queryAccessibleInterface(search->lstResults);
        QCOMPARE(list->role(), QAccessible::List);
        QVERIFY2(!list->text(QAccessible::Name).isEmpty(), "the result list has no name");
        const QList<QAccessibleInterface *> items = withRole(search->lstResults, QAccessible::ListItem);
        QCOMPARE(items.size(), search->lstResults->count());
        for (int row = 0; row < items.size(); ++row) {
            QAccessibleInterface *item = items.at(row);
            QCOMPARE(item->text(QAccessible::Name), search->results().at(row).title);
            // The line the list draws under the title, words found and all, without the bold.
            const QString line = QTextDocumentFragment::fromHtml(search->contextHtml(row)).toPlainText();
            QVERIFY(!line.isEmpty());
            QCOMPARE(item->text(QAccessible::Description), line);
        }
        testing::closeProgramWindows(session(), shell());
    }
};

QTEST_MAIN(tst_Accessibility)
#include "tst_accessibility.moc"
