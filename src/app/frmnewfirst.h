#pragma once

#include <QPixmap>
#include <QWidget>

class Btn;
class Session;
class CheckListView;
class QLabel;
class QTreeWidgetItem;

// The start screen: a fixed 800 by 600 pixel window on which the pupil picks a theme, a
// scenario of it and an activity of that, then goes on into the main shell. The three
// lists have check boxes, used as radio groups.
//
// The window deletes itself when closed; each time it is needed a new one is made, so it
// always starts with no theme checked, empty scenario and activity lists and cmdGo off.
// The load reads the themes of the session's content; an error on the way (a database
// without the table) rises out of the constructor. Going on records the theme and the
// scenario in the session's content and shows the session's shell.
class frmNewFirst final : public QWidget
{
    Q_OBJECT

public:
    explicit frmNewFirst(Session &session, QWidget *parent = nullptr);
    ~frmNewFirst() override;
    Q_DISABLE_COPY_MOVE(frmNewFirst)

    // Controls. List2 holds the themes and List1 the scenarios: the names stay that way
    // round.
    CheckListView *List2 = nullptr; // themes: key "T" + ThemeID
    CheckListView *List1 = nullptr; // scenarios: key "Sc" + ScenarioID
    CheckListView *lvwActivities = nullptr; // activities: tag ActivityID, no key
    Btn *cmdGo = nullptr;
    Btn *cmdExit = nullptr;
    QLabel *Label1 = nullptr; // "Θέματα:"
    QLabel *Label2 = nullptr; // "Σενάρια:"
    QLabel *Label3 = nullptr; // "Δραστηριότητες:"
    QLabel *Label4 = nullptr; // "Παρουσίαση Βάσης: " and the database's title

    // Kept for callers that want the scenario list's column to fit a text; it only
    // tracks the widest text measured so far.
    void CheckListBox(const QString &text);

    // The screen's state, read by the main shell's tests and our own.
    qint16 lastThemeIndex() const { return LastThemeIndex; }
    qint16 lastScenarioIndex() const { return LastScenarioIndex; }
    qint16 lastActivityIndex() const { return LastActivityIndex; }
    qint32 currentActivityID() const { return CurrentActivityID; }
    qint32 widestText() const { return WidestText; }

Q_SIGNALS:
    // The first paint after the window appeared; for the start-up measurement.
    void firstPainted();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void createControls();
    void Form_Load();

    void List2_ItemCheck(QTreeWidgetItem *item);
    void List2_Click();
    void List1_ItemCheck(QTreeWidgetItem *item);
    void List1_Click();
    void lvwActivities_ItemCheck(QTreeWidgetItem *item);
    void lvwActivities_Click();
    void cmdGo_Click();
    void cmdExit_Click();

    // Themes and scenarios share these steps between ItemCheck and Click.
    void checkTheme(QTreeWidgetItem *item);
    void fillScenariosOfSelectedTheme();
    void pickScenario(QTreeWidgetItem *item);
    void pickActivity();

    qint32 FillThemes();
    void FillScenarios(qint32 themeID);
    qint32 FillActivities(qint32 scenarioID);

    qint16 LastThemeIndex = -1;
    qint16 LastScenarioIndex = -1;
    qint16 LastActivityIndex = -1;
    qint32 CurrentActivityID = 0;
    qint32 WidestText = 0;

    QPixmap Picture;
    bool m_painted = false;
    Session &m_session;
};
