#include "frmnewfirst.h"

#include "checklistview.h"

#include <btn.h>
#include <database.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <programbitmaps.h>
#include <runtimeerror.h>
#include <session.h>
#include <shellwindow.h>
#include <twips.h>

#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>

#include <limits>

using platform::resumeNext;

namespace {

// The screen's design, in twips. The background's frame leaves an inner field from
// 450 to 11550 across and 450 to 8550 down; the sea along the bottom carries the buttons.
constexpr int FormWidthPixels = 800;
constexpr int FormHeightPixels = 600;
constexpr int TitleLeft = 720;
constexpr int TitleTop = 570;
constexpr int CaptionTop = 1290;
constexpr int ListTop = 1650;
constexpr int ListWidth = 3360;
constexpr int ListHeight = 5550;
constexpr int ThemesLeft = 720;
constexpr int ScenariosLeft = 4320;
constexpr int ActivitiesLeft = 7920;
constexpr int ButtonTop = 7440;
constexpr int ExitLeft = 720;
constexpr int GoLeft = 10320;

// Room left beside a list's column for its scroll bar.
constexpr int ThemeColumnSlack = 340;
constexpr int ActivityColumnSlack = 340;
constexpr int ScenarioColumnSlack = 240;

constexpr int TypeMismatch = 13;

QRect twipsRect(int left, int top, int width, int height)
{
    return QRect(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top),
        platform::pixelsFromTwipsX(width), platform::pixelsFromTwipsY(height));
}

// The number inside a key such as "T17" or "Sc10": the key without its prefix.
qint32 numberFromKey(const QTreeWidgetItem *item, int prefixLength)
{
    if (!item)
        throw platform::RuntimeError(
            CheckListView::ObjectNotSet, QStringLiteral("Δεν έχει οριστεί μεταβλητή αντικειμένου"));
    bool ok = false;
    const qint32 number = CheckListView::key(item).mid(prefixLength).trimmed().toInt(&ok);
    if (!ok)
        throw platform::RuntimeError(TypeMismatch, QStringLiteral("Ασυμβατότητα τύπων"));
    return number;
}

qint32 numberFromTag(const QTreeWidgetItem *item)
{
    if (!item)
        throw platform::RuntimeError(
            CheckListView::ObjectNotSet, QStringLiteral("Δεν έχει οριστεί μεταβλητή αντικειμένου"));
    bool ok = false;
    const qint32 number = CheckListView::tag(item).trimmed().toInt(&ok);
    if (!ok)
        throw platform::RuntimeError(TypeMismatch, QStringLiteral("Ασυμβατότητα τύπων"));
    return number;
}

// Clears the check mark of the list's item `index`, when there is one: before the first
// check the index is -1, and a list filled afresh may be shorter than the index kept.
void clearCheck(CheckListView *list, int index)
{
    if (index >= 1 && index <= list->count())
        list->setChecked(list->ListItems(index), false);
}

} // namespace

frmNewFirst::frmNewFirst(Session &session, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_session(session)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Τρεμίδια"));
    platform::useDesignedColours(this);
    createControls();
    Form_Load();
}

frmNewFirst::~frmNewFirst() = default;

void frmNewFirst::createControls()
{
    QFont base(QStringLiteral("DejaVu Sans"));
    base.setPointSizeF(10);
    setFont(base);

    const QColor ink(0x4a, 0x24, 0x10);
    auto makeCaption = [&](const QString &text, int left, qreal pointSize) {
        auto *label = new QLabel(text, this);
        QFont font = base;
        font.setBold(true);
        font.setPointSizeF(pointSize);
        label->setFont(font);
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, ink);
        label->setPalette(palette);
        label->move(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(CaptionTop));
        label->adjustSize();
        return label;
    };
    Label1 = makeCaption(QStringLiteral("Θέματα:"), ThemesLeft, 12);
    Label2 = makeCaption(QStringLiteral("Σενάρια:"), ScenariosLeft, 12);
    Label3 = makeCaption(QStringLiteral("Δραστηριότητες:"), ActivitiesLeft, 12);
    Label4 = makeCaption(QStringLiteral("Παρουσίαση Βάσης:"), TitleLeft, 15);
    Label4->move(platform::pixelsFromTwipsX(TitleLeft), platform::pixelsFromTwipsY(TitleTop));

    auto makeList = [&](int left) {
        auto *list = new CheckListView(this);
        list->setGeometry(twipsRect(left, ListTop, ListWidth, ListHeight));
        QFont font = base;
        font.setPointSizeF(11);
        list->setFont(font);
        list->setFrameShape(QFrame::Box);
        list->setWordWrap(false);
        return list;
    };
    List2 = makeList(ThemesLeft);
    List1 = makeList(ScenariosLeft);
    lvwActivities = makeList(ActivitiesLeft);
    List2->setAccessibleName(QStringLiteral("Θέματα"));
    List1->setAccessibleName(QStringLiteral("Σενάρια"));
    lvwActivities->setAccessibleName(QStringLiteral("Δραστηριότητες"));

    cmdExit = new Btn(this);
    cmdExit->setToolTip(QStringLiteral("Επιστροφή"));
    cmdExit->setAccessibleName(QStringLiteral("Επιστροφή"));
    cmdGo = new Btn(this);
    cmdGo->setToolTip(QStringLiteral("Εμπρός"));
    cmdGo->setAccessibleName(QStringLiteral("Εμπρός"));

    // The keyboard reads the screen as the eye does: the lists from left to right, then
    // on, then back.
    setTabOrder(List2, List1);
    setTabOrder(List1, lvwActivities);
    setTabOrder(lvwActivities, cmdGo);
    setTabOrder(cmdGo, cmdExit);

    connect(List2, &CheckListView::ItemCheck, this, &frmNewFirst::List2_ItemCheck);
    connect(List2, &CheckListView::Click, this, &frmNewFirst::List2_Click);
    connect(List1, &CheckListView::ItemCheck, this, &frmNewFirst::List1_ItemCheck);
    connect(List1, &CheckListView::Click, this, &frmNewFirst::List1_Click);
    connect(lvwActivities, &CheckListView::ItemCheck, this, &frmNewFirst::lvwActivities_ItemCheck);
    connect(lvwActivities, &CheckListView::Click, this, &frmNewFirst::lvwActivities_Click);
    // Moving to an activity with the keys chooses it, as a click on its row does.
    connect(lvwActivities, &CheckListView::KeyMove, this, &frmNewFirst::lvwActivities_Click);
    connect(cmdGo, &Btn::Click, this, &frmNewFirst::cmdGo_Click);
    connect(cmdExit, &Btn::Click, this, &frmNewFirst::cmdExit_Click);
}

void frmNewFirst::Form_Load()
{
    Picture = resources::LoadResPicture(QStringLiteral("BGR_1"));
    cmdGo->setPicture(resources::LoadResPicture(QStringLiteral("GO")));
    cmdGo->setDownPicture(resources::LoadResPicture(QStringLiteral("GO_DOWN")));
    cmdExit->setPicture(resources::LoadResPicture(QStringLiteral("EXIT")));
    cmdExit->setDownPicture(resources::LoadResPicture(QStringLiteral("EXIT_DOWN")));
    cmdExit->Move(ExitLeft, ButtonTop);
    cmdGo->Move(GoLeft, ButtonTop);

    setFixedSize(platform::pixelsFromTwipsX(platform::TwipsPerPixelX * FormWidthPixels),
        platform::pixelsFromTwipsY(platform::TwipsPerPixelY * FormHeightPixels));
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());

    // Only the themes are coloured; the other lists keep the plain list colour.
    QPalette palette = List2->palette();
    palette.setColor(QPalette::Base, QColor(255, 247, 211));
    List2->setPalette(palette);

    LastThemeIndex = -1;
    LastScenarioIndex = -1;
    LastActivityIndex = -1;
    CurrentActivityID = 0;
    WidestText = 0;

    List2->setColumnWidthTwips(List2->widthTwips() - ThemeColumnSlack);
    lvwActivities->setColumnWidthTwips(lvwActivities->widthTwips() - ActivityColumnSlack);
    List1->setColumnWidthTwips(List1->widthTwips() - ScenarioColumnSlack);

    // The first theme is only selected: no scenarios until the pupil picks one.
    FillThemes();

    Label4->setText(QStringLiteral("Παρουσίαση Βάσης: ") + m_session.content().databaseTitle);
    Label4->adjustSize();

    cmdGo->setEnabled(false);
}

void frmNewFirst::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QSizeF tile = Picture.deviceIndependentSize();
    if (!Picture.isNull() && tile.width() >= 1 && tile.height() >= 1) {
        for (qreal x = 0; x < width(); x += tile.width())
            for (qreal y = 0; y < height(); y += tile.height())
                painter.drawPixmap(QPointF(x, y), Picture);
    }
    if (!m_painted) {
        m_painted = true;
        Q_EMIT firstPainted();
    }
}

void frmNewFirst::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    update();
}

void frmNewFirst::keyPressEvent(QKeyEvent *event)
{
    // Enter anywhere on the screen goes on, once there is an activity to go to; the lists
    // pass it up untouched.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        if (cmdGo->isEnabled())
            cmdGo_Click();
        event->accept();
        return;
    }
    QWidget::keyPressEvent(event);
}

void frmNewFirst::CheckListBox(const QString &text)
{
    // The text's width in twips times the size of the scenario list's font.
    const int widthTwips = platform::twipsFromPixelsX(fontMetrics().horizontalAdvance(text));
    const qint64 result = static_cast<qint64>(widthTwips) * qRound(List1->font().pointSizeF());
    if (result > WidestText)
        WidestText = static_cast<qint32>(qMin<qint64>(result, std::numeric_limits<qint32>::max()));
}

// ---- Themes ----------------------------------------------------------------------------

// Errors are passed over statement by statement in all list handlers, so that one failing
// step leaves the lists as usable as it can; the normal path meets none.
void frmNewFirst::List2_ItemCheck(QTreeWidgetItem *item)
{
    const int index = List2->indexOf(item);
    // The checked theme itself: its check mark may go, and no list changes.
    if (index == LastThemeIndex)
        return;

    if (!List2->isChecked(item)) {
        resumeNext([&] { clearCheck(List2, LastThemeIndex); });
        resumeNext([&] { List2->setChecked(item, true); });
        resumeNext([&] { LastThemeIndex = static_cast<qint16>(List2->indexOf(List2->selected())); });
    } else {
        checkTheme(item);
    }
    fillScenariosOfSelectedTheme();
}

void frmNewFirst::List2_Click()
{
    QTreeWidgetItem *item = List2->SelectedItem();
    if (!item)
        return;
    const bool wasChecked = List2->isChecked(item);
    resumeNext([&] { List2->setChecked(item, true); });
    // Checking from code raises no ItemCheck, so the click does what that event would:
    // a click on a theme's row leaves the theme checked and its scenarios listed.
    if (!wasChecked)
        List2_ItemCheck(item);
}

void frmNewFirst::checkTheme(QTreeWidgetItem *item)
{
    resumeNext([&] { clearCheck(List2, LastThemeIndex); });
    resumeNext([&] { List2->setSelectedItem(item); });
    resumeNext([&] { List2->setChecked(item, true); });
    resumeNext([&] { LastThemeIndex = static_cast<qint16>(List2->indexOf(item)); });
}

void frmNewFirst::fillScenariosOfSelectedTheme()
{
    resumeNext([&] { lvwActivities->clearItems(); });
    resumeNext([&] { List1->clearItems(); });
    resumeNext([&] { FillScenarios(numberFromKey(List2->selected(), 1)); });
}

// ---- Scenarios -------------------------------------------------------------------------

void frmNewFirst::List1_ItemCheck(QTreeWidgetItem *item)
{
    resumeNext([&] {
        const QTreeWidgetItem *selected = List1->SelectedItem();
        if (!selected || selected->text(0) != item->text(0))
            List1->setSelectedItem(item);
    });
    // A scenario's check mark cannot be cleared.
    resumeNext([&] { List1->setChecked(List1->selected(), true); });
    resumeNext([&] {
        if (List1->indexOf(List1->selected()) != LastScenarioIndex)
            pickScenario(List1->selected());
    });
}

void frmNewFirst::List1_Click()
{
    QTreeWidgetItem *item = List1->SelectedItem();
    if (!item || List1->isChecked(item))
        return;
    resumeNext([&] { List1->setChecked(item, true); });
    if (List1->indexOf(item) != LastScenarioIndex) {
        pickScenario(item);
        LastActivityIndex = -1;
    }
}

void frmNewFirst::pickScenario(QTreeWidgetItem *item)
{
    resumeNext([&] { clearCheck(List1, LastScenarioIndex); });
    resumeNext([&] { LastScenarioIndex = static_cast<qint16>(List1->indexOf(item)); });
    resumeNext([&] { lvwActivities->clearItems(); });
    // The first activity counts as chosen at once, though it carries no check mark.
    resumeNext([&] { CurrentActivityID = FillActivities(numberFromKey(item, 2)); });
    resumeNext([&] { cmdGo->setEnabled(CurrentActivityID != 0); });
}

// ---- Activities ------------------------------------------------------------------------

void frmNewFirst::lvwActivities_ItemCheck(QTreeWidgetItem *item)
{
    bool sameRow = false;
    resumeNext([&] {
        QTreeWidgetItem *selected = lvwActivities->SelectedItem();
        if (!selected || selected->text(0) != item->text(0)) {
            lvwActivities->setSelectedItem(item);
        } else {
            sameRow = true;
            lvwActivities->setChecked(selected, true);
        }
    });

    // A failing test goes on into the block, as errors are skipped statement by statement.
    bool inStep = true;
    resumeNext([&] { inStep = List1->indexOf(List1->selected()) == LastScenarioIndex; });
    if (sameRow && LastScenarioIndex == 0)
        inStep = true;
    if (inStep)
        pickActivity();
}

void frmNewFirst::lvwActivities_Click()
{
    // A click on a row does not check it; only its box does.
    if (lvwActivities->count() == 0)
        return;
    bool inStep = true;
    resumeNext(
        [&] { inStep = List1->indexOf(List1->selected()) == LastScenarioIndex || LastScenarioIndex == 0; });
    if (inStep)
        pickActivity();
}

void frmNewFirst::pickActivity()
{
    resumeNext([&] {
        if (lvwActivities->indexOf(lvwActivities->selected()) != LastActivityIndex)
            clearCheck(lvwActivities, LastActivityIndex);
    });
    resumeNext(
        [&] { LastActivityIndex = static_cast<qint16>(lvwActivities->indexOf(lvwActivities->selected())); });
    resumeNext([&] { CurrentActivityID = numberFromTag(lvwActivities->selected()); });
    resumeNext([&] { cmdGo->setEnabled(CurrentActivityID != 0); });
}

// ---- Buttons ---------------------------------------------------------------------------

void frmNewFirst::cmdGo_Click()
{
    platform::guarded([&] {
        // A theme without scenarios leaves no scenario to go through: nothing happens.
        const QTreeWidgetItem *scenario = List1->SelectedItem();
        if (!scenario)
            return;
        m_session.content().scenarioID = numberFromKey(scenario, 2);
        if (const QTreeWidgetItem *theme = List2->selected())
            resumeNext([&] { m_session.content().themeID = numberFromKey(theme, 1); });
        ShellWindow *shell = m_session.shell();
        if (!shell)
            return;
        shell->setSelectedActivity(CurrentActivityID);
        shell->window()->show();
        close();
    });
}

void frmNewFirst::cmdExit_Click()
{
    platform::guarded([&] {
        close();
        End(m_session);
    });
}

// ---- Filling the lists -----------------------------------------------------------------

qint32 frmNewFirst::FillThemes()
{
    auto themes = m_session.database().OpenRecordset(QStringLiteral("Themes"), content::dbOpenSnapshot);
    if (themes->RecordCount() > 0) {
        themes->MoveFirst();
        while (!themes->Eof()) {
            List2->add(QStringLiteral("T") + themes->Fields(QStringLiteral("ThemeID")).text(),
                themes->Fields(QStringLiteral("Theme")).text());
            themes->MoveNext();
        }
        List2->setSelectedItem(List2->ListItems(1));
    }
    themes->Close();
    if (List2->count() > 0)
        return numberFromKey(List2->SelectedItem(), 1);
    return 0;
}

void frmNewFirst::FillScenarios(qint32 themeID)
{
    QString sql;
    if (themeID >= 1)
        sql = QStringLiteral("SELECT ScenarioID, Scenario FROM Scenarios WHERE ThemeID= ")
            + QString::number(themeID);
    else
        sql = QStringLiteral("SELECT ScenarioID, Scenario FROM Scenarios");
    auto scenarios = m_session.database().OpenRecordset(sql, content::dbOpenSnapshot);
    while (!scenarios->Eof()) {
        List1->add(QStringLiteral("Sc") + scenarios->Fields(QStringLiteral("ScenarioID")).text(),
            scenarios->Fields(QStringLiteral("Scenario")).text());
        scenarios->MoveNext();
    }
    scenarios->Close();
    LastScenarioIndex = -1;
    LastActivityIndex = -1;
}

qint32 frmNewFirst::FillActivities(qint32 scenarioID)
{
    QString sql;
    if (scenarioID >= 1)
        sql = QStringLiteral("SELECT Activities.Activity,Activities.ActivityID  FROM Scenarios INNER JOIN ")
            + QStringLiteral("(Activities INNER JOIN RelScenarioActivity ON ")
            + QStringLiteral("(Activities.ActivityID = RelScenarioActivity.ActivityID)) ")
            + QStringLiteral(
                "ON (Scenarios.ScenarioID = RelScenarioActivity.ScenarioID) where Scenarios.ScenarioID=")
            + QString::number(scenarioID);
    else
        sql = QStringLiteral("SELECT ActivityID, Activity FROM Activities");

    auto activities = m_session.database().OpenRecordset(sql, content::dbOpenSnapshot);
    while (!activities->Eof()) {
        QTreeWidgetItem *item
            = lvwActivities->add(QString(), activities->Fields(QStringLiteral("Activity")).text());
        CheckListView::setTag(item, activities->Fields(QStringLiteral("ActivityID")).text());
        activities->MoveNext();
    }
    activities->Close();

    qint32 firstActivityID = 0;
    if (lvwActivities->count() > 0) {
        lvwActivities->setSelectedItem(lvwActivities->ListItems(1));
        firstActivityID = numberFromTag(lvwActivities->SelectedItem());
        lvwActivities->setFocus();
    }
    LastActivityIndex = -1;
    return firstActivityID;
}
