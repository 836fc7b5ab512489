#include "../support/testsession.h"
#include "shownboxes.h"
#include "startscreencontent.h"

#include <btn.h>
#include <checklistview.h>
#include <database.h>
#include <frmnewfirst.h>
#include <msgbox.h>
#include <programbitmaps.h>
#include <runtimeerror.h>
#include <session.h>
#include <shellwindow.h>
#include <twips.h>

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace startscreen_fixture;

namespace {

// Stands in for the main shell: records what the start screen asks of it.
class FakeShell final : public QWidget, public ShellWindow
{
public:
    explicit FakeShell(Session &session)
        : m_session(session)
    {
    }
    QWidget *window() override { return this; }
    QMdiArea *mdiArea() override { return nullptr; }
    int mnuListUBound() const override { return -1; }
    QAction *mnuList(int) override { return nullptr; }
    QAction *windowListSeparator() override { return nullptr; }
    void setSelectedActivity(qint32 activityID) override
    {
        selectedActivities << activityID;
        m_session.content().activityID = activityID;
    }
    void LoadResources() override { }
    void UnloadResources() override { }
    void setToggleChecked(Toggle, bool) override { }

    QList<qint32> selectedActivities;

private:
    Session &m_session;
};

} // namespace

class tst_frmNewFirst : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_path;
    QPointer<frmNewFirst> m_form;
    FakeShell *m_shell = nullptr;
    int m_factoryCalls = 0;
    std::unique_ptr<testing::TestSession> m_s;
    Session &session() { return *m_s; }

    QStringList boxes() const { return testing::boxTexts(*m_s->host); }

    frmNewFirst *form() const { return m_form.data(); }

    void openForm()
    {
        m_form = new frmNewFirst(session());
        m_form->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_form.data()));
    }

    static void clickBox(CheckListView *list, int index)
    {
        QTreeWidgetItem *item = list->ListItems(index);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->checkBoxRect(item).center());
    }

    static void clickRow(CheckListView *list, int index)
    {
        const QRect row = list->visualItemRect(list->ListItems(index));
        QTest::mouseClick(
            list->viewport(), Qt::LeftButton, {}, QPoint(row.left() + row.width() / 2, row.center().y()));
    }

    static QList<int> checkedIndexes(CheckListView *list)
    {
        QList<int> indexes;
        for (int i = 1; i <= list->count(); ++i)
            if (list->isChecked(list->ListItems(i)))
                indexes << i;
        return indexes;
    }

    static QStringList keys(CheckListView *list)
    {
        QStringList result;
        for (int i = 1; i <= list->count(); ++i)
            result << CheckListView::key(list->ListItems(i));
        return result;
    }

    static int indexOfKey(CheckListView *list, const QString &key)
    {
        for (int i = 1; i <= list->count(); ++i)
            if (CheckListView::key(list->ListItems(i)) == key)
                return i;
        return 0;
    }

    static int indexOfTag(CheckListView *list, const QString &tag)
    {
        for (int i = 1; i <= list->count(); ++i)
            if (CheckListView::tag(list->ListItems(i)) == tag)
                return i;
        return 0;
    }

    // Theme 2 checked, then scenario 10 (three activities) checked.
    void pickAthensAssembly()
    {
        clickBox(form()->List2, indexOfKey(form()->List2, QStringLiteral("T2")));
        clickBox(form()->List1, indexOfKey(form()->List1, QStringLiteral("Sc10")));
        QCOMPARE(form()->lvwActivities->count(), 3);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_path = m_dir.filePath(QStringLiteral("content.sqlite"));
        QCOMPARE(writeContent(m_path), QString());
    }

    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        session().content().database = content::Database::OpenDatabase(m_path);
        session().content().databaseTitle = QStringLiteral("Αρχαία Αθήνα");
        session().content().scenarioID = 0;
        session().content().activityID = 0;
        m_factoryCalls = 0;
        m_shell = new FakeShell(session());
        session().setWindowFactory(Session::Window::Shell, [this](Session &) -> QWidget * {
            ++m_factoryCalls;
            return m_shell;
        });
        openForm();
    }

    void cleanup()
    {
        delete m_form.data();
        delete m_shell;
        m_shell = nullptr;
        const QStringList shown = boxes();
        m_s.reset();
        QVERIFY2(shown.isEmpty(), qPrintable(shown.join(u'\n')));
    }

    // ---- load ----

    void loadListsThemesWithNoneChecked()
    {
        QCOMPARE(keys(form()->List2),
            (QStringList {QStringLiteral("T2"), QStringLiteral("T5"), QStringLiteral("T17")}));
        QCOMPARE(form()->List2->ListItems(1)->text(0), QStringLiteral("Η αθηναϊκή δημοκρατία"));
        QVERIFY(checkedIndexes(form()->List2).isEmpty());
        QCOMPARE(form()->List2->SelectedItem(), form()->List2->ListItems(1));
        QCOMPARE(form()->List1->count(), 0);
        QCOMPARE(form()->lvwActivities->count(), 0);
        QVERIFY(!form()->cmdGo->isEnabled());
        QVERIFY(form()->cmdExit->isEnabled());
        QCOMPARE(form()->lastThemeIndex(), qint16(-1));
        QCOMPARE(form()->lastScenarioIndex(), qint16(-1));
        QCOMPARE(form()->lastActivityIndex(), qint16(-1));
        QCOMPARE(form()->currentActivityID(), 0);
        QCOMPARE(form()->widestText(), 0);
    }

    void everyItemOfTheThreeListsShowsItsWholeNameAsItsTooltip()
    {
        pickAthensAssembly();
        int seen = 0;
        for (CheckListView *list : {form()->List2, form()->List1, form()->lvwActivities}) {
            QVERIFY(list->count() > 0);
            for (int i = 1; i <= list->count(); ++i) {
                QCOMPARE(list->ListItems(i)->toolTip(0), list->ListItems(i)->text(0));
                ++seen;
            }
        }
        QVERIFY(seen >= 3);
    }

    void loadSetsSizeCaptionsAndColours()
    {
        QCOMPARE(form()->size(), QSize(800, 600));
        QCOMPARE(form()->minimumSize(), form()->maximumSize());
        QCOMPARE(form()->Label1->text(), QStringLiteral("Θέματα:"));
        QCOMPARE(form()->Label2->text(), QStringLiteral("Σενάρια:"));
        QCOMPARE(form()->Label3->text(), QStringLiteral("Δραστηριότητες:"));
        QCOMPARE(form()->Label4->text(), QStringLiteral("Παρουσίαση Βάσης: Αρχαία Αθήνα"));
        QVERIFY(form()->Label4->width() >= form()->Label4->sizeHint().width());
        QCOMPARE(form()->List2->palette().color(QPalette::Base), QColor(255, 247, 211));
        QVERIFY(form()->List1->palette().color(QPalette::Base) != QColor(255, 247, 211));
        QCOMPARE(form()->cmdGo->toolTip(), QStringLiteral("Εμπρός"));
        QCOMPARE(form()->cmdExit->toolTip(), QStringLiteral("Επιστροφή"));
        QCOMPARE(qint16(platform::TwipsPerPixelX), qint16(15));
        QCOMPARE(qint16(platform::TwipsPerPixelY), qint16(15));
        QVERIFY(form()->testAttribute(Qt::WA_DeleteOnClose));
    }

    void loadSetsColumnWidthsFromListWidths()
    {
        auto expected = [](CheckListView *list, int slack) {
            return platform::pixelsFromTwipsX(list->widthTwips() - slack);
        };
        QCOMPARE(form()->List2->columnWidth(0), expected(form()->List2, 340));
        QCOMPARE(form()->lvwActivities->columnWidth(0), expected(form()->lvwActivities, 340));
        QCOMPARE(form()->List1->columnWidth(0), expected(form()->List1, 240));
    }

    void paintTilesTheBackground()
    {
        const QImage shot = form()->grab().toImage();
        QImage background = resources::LoadResPicture(QStringLiteral("BGR_1"), 1.0).toImage();
        QCOMPARE(background.size(), QSize(800, 600));
        // Corners and the middle of the field show the picture where no control covers it.
        for (const QPoint p :
            {QPoint(3, 3), QPoint(796, 3), QPoint(3, 596), QPoint(400, 20), QPoint(400, 590)})
            QCOMPARE(shot.pixelColor(p).rgb(), background.pixelColor(p).rgb());
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        shot.save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/frmnewfirst-load.png"));
    }

    void firstPaintIsSignalledOnce()
    {
        QPointer<frmNewFirst> fresh = new frmNewFirst(session());
        QSignalSpy painted(fresh.data(), &frmNewFirst::firstPainted);
        fresh->show();
        QVERIFY(QTest::qWaitForWindowExposed(fresh.data()));
        QTRY_COMPARE(painted.count(), 1);
        fresh->repaint();
        QCOMPARE(painted.count(), 1);
        delete fresh.data();
    }

    // ---- themes ----

    void themeBoxChecksThemeAndListsItsScenarios()
    {
        clickBox(form()->List2, 1);
        QCOMPARE(checkedIndexes(form()->List2), QList<int> {1});
        QCOMPARE(form()->lastThemeIndex(), qint16(1));
        QCOMPARE(form()->List2->SelectedItem(), form()->List2->ListItems(1));
        QCOMPARE(keys(form()->List1),
            (QStringList {QStringLiteral("Sc10"), QStringLiteral("Sc12"), QStringLiteral("Sc31")}));
        QVERIFY(checkedIndexes(form()->List1).isEmpty());
        QCOMPARE(form()->lvwActivities->count(), 0);
        QCOMPARE(form()->lastScenarioIndex(), qint16(-1));
    }

    void spaceKeyOnAThemeChecksItLikeItsBox()
    {
        form()->List2->setFocus();
        form()->List2->setSelectedItem(form()->List2->ListItems(2));
        QTest::keyClick(form()->List2, Qt::Key_Space);
        QCOMPARE(checkedIndexes(form()->List2), QList<int> {2});
        QCOMPARE(form()->lastThemeIndex(), qint16(2));
        QCOMPARE(keys(form()->List1), (QStringList {QStringLiteral("Sc40"), QStringLiteral("Sc50")}));
    }

    void themeChecksActAsRadioGroup()
    {
        clickBox(form()->List2, 1);
        clickBox(form()->List2, 2);
        QCOMPARE(checkedIndexes(form()->List2), QList<int> {2});
        QCOMPARE(form()->lastThemeIndex(), qint16(2));
        QCOMPARE(form()->List2->SelectedItem(), form()->List2->ListItems(2));
        QCOMPARE(keys(form()->List1), (QStringList {QStringLiteral("Sc40"), QStringLiteral("Sc50")}));
    }

    void changingThemeEmptiesActivities()
    {
        pickAthensAssembly();
        clickBox(form()->List2, 2);
        QCOMPARE(form()->lvwActivities->count(), 0);
        QCOMPARE(keys(form()->List1), (QStringList {QStringLiteral("Sc40"), QStringLiteral("Sc50")}));
    }

    void clearingTheCheckedThemesBoxDoesNothingElse()
    {
        pickAthensAssembly();
        const QStringList scenarios = keys(form()->List1);
        const int activities = form()->lvwActivities->count();
        const bool go = form()->cmdGo->isEnabled();

        clickBox(form()->List2, 1);
        QVERIFY(checkedIndexes(form()->List2).isEmpty());
        QCOMPARE(form()->lastThemeIndex(), qint16(1));
        QCOMPARE(keys(form()->List1), scenarios);
        QCOMPARE(checkedIndexes(form()->List1), QList<int> {1});
        QCOMPARE(form()->lvwActivities->count(), activities);
        QCOMPARE(form()->cmdGo->isEnabled(), go);
    }

    void clickOnThemeRowChecksItAndListsScenarios()
    {
        clickRow(form()->List2, 2);
        QCOMPARE(form()->List2->SelectedItem(), form()->List2->ListItems(2));
        QCOMPARE(checkedIndexes(form()->List2), QList<int> {2});
        QCOMPARE(form()->lastThemeIndex(), qint16(2));
        QCOMPARE(keys(form()->List1), (QStringList {QStringLiteral("Sc40"), QStringLiteral("Sc50")}));

        clickRow(form()->List2, 1);
        QCOMPARE(checkedIndexes(form()->List2), QList<int> {1});
        QCOMPARE(keys(form()->List1).size(), 3);
    }

    void clickOnCheckedThemeRowKeepsItsScenarios()
    {
        pickAthensAssembly();
        clickRow(form()->List2, 1);
        QCOMPARE(checkedIndexes(form()->List2), QList<int> {1});
        QCOMPARE(checkedIndexes(form()->List1), QList<int> {1});
        QCOMPARE(form()->lvwActivities->count(), 3);
    }

    void checkedThemeBecomesTheSelectedRow()
    {
        // A click on a box does not select the row by itself; the check handler does.
        clickBox(form()->List2, 3);
        QCOMPARE(form()->List2->SelectedItem(), form()->List2->ListItems(3));
    }

    void themeWithoutScenariosKeepsGoAndGoDoesNothing()
    {
        pickAthensAssembly();
        QVERIFY(form()->cmdGo->isEnabled());

        clickBox(form()->List2, indexOfKey(form()->List2, QStringLiteral("T17")));
        QCOMPARE(form()->List1->count(), 0);
        QCOMPARE(form()->lvwActivities->count(), 0);
        QVERIFY(form()->cmdGo->isEnabled());

        QTest::mouseClick(form()->cmdGo, Qt::LeftButton);
        QCOMPARE(m_factoryCalls, 0);
        QCOMPARE(session().content().scenarioID, 0);
        QVERIFY(m_shell->selectedActivities.isEmpty());
        QVERIFY(form());
        QVERIFY(form()->isVisible());
    }

    // ---- scenarios ----

    void scenarioPickEnablesGoForTheFirstActivity()
    {
        clickBox(form()->List2, 1);
        clickBox(form()->List1, indexOfKey(form()->List1, QStringLiteral("Sc10")));
        QCOMPARE(form()->lvwActivities->count(), 3);
        QCOMPARE(form()->lvwActivities->SelectedItem(), form()->lvwActivities->ListItems(1));
        QVERIFY(checkedIndexes(form()->lvwActivities).isEmpty());
        const qint32 first = CheckListView::tag(form()->lvwActivities->ListItems(1)).toInt();
        QVERIFY(first != 0);
        QCOMPARE(form()->currentActivityID(), first);
        QVERIFY(form()->cmdGo->isEnabled());
        QCOMPARE(form()->lastActivityIndex(), qint16(-1));
        QCOMPARE(form()->lastScenarioIndex(), qint16(1));
        QCOMPARE(form()->List1->SelectedItem(), form()->List1->ListItems(1));
    }

    void activitiesHoldTheirIdsInTheTag()
    {
        pickAthensAssembly();
        QStringList tags;
        for (int i = 1; i <= form()->lvwActivities->count(); ++i) {
            tags << CheckListView::tag(form()->lvwActivities->ListItems(i));
            QVERIFY(CheckListView::key(form()->lvwActivities->ListItems(i)).isEmpty());
        }
        tags.sort();
        QCOMPARE(tags, (QStringList {QStringLiteral("101"), QStringLiteral("102"), QStringLiteral("120")}));
    }

    void scenarioChecksActAsRadioGroup()
    {
        clickBox(form()->List2, 1);
        clickBox(form()->List1, 1);
        clickBox(form()->List1, 2);
        QCOMPARE(checkedIndexes(form()->List1), QList<int> {2});
        QCOMPARE(form()->lastScenarioIndex(), qint16(2));
        QCOMPARE(form()->lvwActivities->count(), 1);
        QCOMPARE(form()->currentActivityID(), 120);
    }

    void scenarioCheckCannotBeCleared()
    {
        clickBox(form()->List2, 1);
        clickBox(form()->List1, 1);
        clickBox(form()->List1, 1);
        QCOMPARE(checkedIndexes(form()->List1), QList<int> {1});
        QCOMPARE(form()->lastScenarioIndex(), qint16(1));
        QCOMPARE(form()->lvwActivities->count(), 3);
    }

    void clickOnScenarioRowPicksIt()
    {
        clickBox(form()->List2, 1);
        clickRow(form()->List1, 2);
        QCOMPARE(checkedIndexes(form()->List1), QList<int> {2});
        QCOMPARE(form()->lastScenarioIndex(), qint16(2));
        QCOMPARE(form()->lastActivityIndex(), qint16(-1));
        QCOMPARE(form()->currentActivityID(), 120);
        QVERIFY(form()->cmdGo->isEnabled());

        clickRow(form()->List1, 1);
        QCOMPARE(checkedIndexes(form()->List1), QList<int> {1});
        QCOMPARE(form()->lvwActivities->count(), 3);
    }

    void scenarioWithoutActivitiesDisablesGo()
    {
        pickAthensAssembly();
        QVERIFY(form()->cmdGo->isEnabled());
        clickBox(form()->List1, indexOfKey(form()->List1, QStringLiteral("Sc31")));
        QCOMPARE(form()->lvwActivities->count(), 0);
        QCOMPARE(form()->currentActivityID(), 0);
        QVERIFY(!form()->cmdGo->isEnabled());
    }

    void activityIdZeroCountsAsNone()
    {
        clickBox(form()->List2, indexOfKey(form()->List2, QStringLiteral("T5")));
        clickBox(form()->List1, indexOfKey(form()->List1, QStringLiteral("Sc50")));
        QCOMPARE(form()->lvwActivities->count(), 1);
        QCOMPARE(CheckListView::tag(form()->lvwActivities->ListItems(1)), QStringLiteral("0"));
        QCOMPARE(form()->currentActivityID(), 0);
        QVERIFY(!form()->cmdGo->isEnabled());

        clickBox(form()->lvwActivities, 1);
        QCOMPARE(checkedIndexes(form()->lvwActivities), QList<int> {1});
        QCOMPARE(form()->currentActivityID(), 0);
        QVERIFY(!form()->cmdGo->isEnabled());
    }

    // ---- activities ----

    void activityChecksActAsRadioGroup()
    {
        pickAthensAssembly();
        clickBox(form()->lvwActivities, 2);
        QCOMPARE(checkedIndexes(form()->lvwActivities), QList<int> {2});
        QCOMPARE(form()->lvwActivities->SelectedItem(), form()->lvwActivities->ListItems(2));
        QCOMPARE(form()->lastActivityIndex(), qint16(2));
        QCOMPARE(
            form()->currentActivityID(), CheckListView::tag(form()->lvwActivities->ListItems(2)).toInt());

        clickBox(form()->lvwActivities, 3);
        QCOMPARE(checkedIndexes(form()->lvwActivities), QList<int> {3});
        QCOMPARE(form()->lastActivityIndex(), qint16(3));
        QCOMPARE(
            form()->currentActivityID(), CheckListView::tag(form()->lvwActivities->ListItems(3)).toInt());
        QVERIFY(form()->cmdGo->isEnabled());
    }

    void activityCheckOfTheSelectedRowCannotBeCleared()
    {
        pickAthensAssembly();
        clickBox(form()->lvwActivities, 1);
        QCOMPARE(checkedIndexes(form()->lvwActivities), QList<int> {1});
        clickBox(form()->lvwActivities, 1);
        QCOMPARE(checkedIndexes(form()->lvwActivities), QList<int> {1});
        QCOMPARE(form()->lastActivityIndex(), qint16(1));
    }

    void clickOnActivityRowChoosesItWithoutCheckMark()
    {
        pickAthensAssembly();
        clickBox(form()->lvwActivities, 1);
        clickRow(form()->lvwActivities, 3);
        QCOMPARE(form()->lvwActivities->SelectedItem(), form()->lvwActivities->ListItems(3));
        QVERIFY(checkedIndexes(form()->lvwActivities).isEmpty());
        QCOMPARE(form()->lastActivityIndex(), qint16(3));
        QCOMPARE(
            form()->currentActivityID(), CheckListView::tag(form()->lvwActivities->ListItems(3)).toInt());
    }

    void clickOnEmptyActivityListDoesNothing()
    {
        clickBox(form()->List2, 1);
        QTest::mouseClick(form()->lvwActivities->viewport(), Qt::LeftButton, {}, QPoint(20, 20));
        QCOMPARE(form()->lastActivityIndex(), qint16(-1));
        QCOMPARE(form()->currentActivityID(), 0);
        QVERIFY(!form()->cmdGo->isEnabled());
    }

    // ---- buttons ----

    void goSetsScenarioAndOpensTheShell()
    {
        pickAthensAssembly();
        clickBox(form()->lvwActivities, 2);
        const qint32 activity = form()->currentActivityID();

        QTest::mouseClick(form()->cmdGo, Qt::LeftButton);
        QCOMPARE(session().content().scenarioID, 10);
        QCOMPARE(m_shell->selectedActivities, QList<qint32> {activity});
        QCOMPARE(session().content().activityID, activity);
        QVERIFY(m_shell->window()->isVisible());
        QTRY_VERIFY(!m_form);
    }

    void goWithoutShellOnlySetsTheScenario()
    {
        session().setWindowFactory(Session::Window::Shell, [this](Session &) -> QWidget * {
            ++m_factoryCalls;
            return nullptr;
        });
        pickAthensAssembly();
        QTest::mouseClick(form()->cmdGo, Qt::LeftButton);
        QCOMPARE(session().content().scenarioID, 10);
        QCOMPARE(m_factoryCalls, 1);
        QVERIFY(m_form);
        QVERIFY(form()->isVisible());
    }

    void disabledGoDoesNothing()
    {
        QTest::mouseClick(form()->cmdGo, Qt::LeftButton);
        QCOMPARE(m_factoryCalls, 0);
        QVERIFY(form()->isVisible());
    }

    void exitUnloadsAndEndsTheProgram()
    {
        QTest::mouseClick(form()->cmdExit, Qt::LeftButton);
        QCOMPARE(m_s->host->ends, 1);
        QTRY_VERIFY(!m_form);
        QCOMPARE(m_factoryCalls, 0);
    }

    void newInstanceStartsAfresh()
    {
        pickAthensAssembly();
        clickBox(form()->lvwActivities, 2);
        form()->close();
        QTRY_VERIFY(!m_form);

        openForm();
        QVERIFY(checkedIndexes(form()->List2).isEmpty());
        QCOMPARE(form()->List1->count(), 0);
        QCOMPARE(form()->lvwActivities->count(), 0);
        QVERIFY(!form()->cmdGo->isEnabled());
        QCOMPARE(form()->lastThemeIndex(), qint16(-1));
        QCOMPARE(form()->currentActivityID(), 0);
    }

    // ---- the list and the stub ----

    void listItemsOutsideTheListFail()
    {
        try {
            form()->List1->ListItems(-1);
            QFAIL("no error");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), CheckListView::IndexOutOfBounds);
        }
        QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, form()->List2->ListItems(4));
        QCOMPARE(form()->List2->ListItems(3), form()->List2->topLevelItem(2));
    }

    void checkListBoxOnlyTracksTheWidestText()
    {
        form()->CheckListBox(QStringLiteral("Σύντομο"));
        const qint32 first = form()->widestText();
        QVERIFY(first > 0);
        form()->CheckListBox(QStringLiteral("Ένα πολύ μεγαλύτερο κείμενο σεναρίου"));
        const qint32 second = form()->widestText();
        QVERIFY(second > first);
        form()->CheckListBox(QStringLiteral("Α"));
        QCOMPARE(form()->widestText(), second);
        QCOMPARE(form()->List1->count(), 0);
    }

    void screenshotWithListsFilled()
    {
        pickAthensAssembly();
        clickBox(form()->lvwActivities, 2);
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        QVERIFY(form()->grab().save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/frmnewfirst-picked.png")));
    }
};

QTEST_MAIN(tst_frmNewFirst)
#include "tst_frmnewfirst.moc"
