#include "frmploigisi.h"

#include <btn.h>
#include <clicktree.h>
#include <database.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <programbitmaps.h>
#include <session.h>
#include <shellwindow.h>

#include <QCloseEvent>
#include <QTreeWidget>

#include <algorithm>
#include <limits>

namespace {

constexpr int KeyRole = Qt::UserRole;
constexpr int TagRole = Qt::UserRole + 1;

// The number in an activity key: the part before the first "Sc", without "Ac".
QString activityDigits(const QString &key)
{
    const qsizetype sc = key.indexOf(QStringLiteral("Sc"));
    return (sc < 0 ? key : key.left(sc)).mid(2);
}

qint32 toLong(const QString &digits)
{
    bool ok = false;
    const qlonglong value = digits.trimmed().toLongLong(&ok);
    if (!ok)
        throw platform::RuntimeError(13, QStringLiteral("Ασυμβατότητα τύπων"));
    if (value < std::numeric_limits<qint32>::min() || value > std::numeric_limits<qint32>::max())
        throw platform::RuntimeError(platform::errors::Overflow, QStringLiteral("Υπερχείλιση"));
    return qint32(value);
}

// The pending id is a 16-bit integer: a larger activity id overflows.
qint16 toInteger(const QString &digits)
{
    const qint32 value = toLong(digits);
    if (value < std::numeric_limits<qint16>::min() || value > std::numeric_limits<qint16>::max())
        throw platform::RuntimeError(platform::errors::Overflow, QStringLiteral("Υπερχείλιση"));
    return qint16(value);
}

} // namespace

frmPloigisi::frmPloigisi(Session &session, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , TreeView1(new ClickTree(this))
    , TreeView2(new QTreeWidget(this))
    , cmdGo(new Btn(this))
    , m_session(session)
{
    setObjectName(QStringLiteral("frmPloigisi"));
    platform::useDesignedColours(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Θέματα - Σενάρια - Δραστηριότητες"));
    resize(360, 480);

    TreeView1->setObjectName(QStringLiteral("TreeView1"));
    TreeView1->setAccessibleName(QStringLiteral("Πλοήγηση"));
    TreeView1->setHeaderHidden(true);
    TreeView1->setRootIsDecorated(true);
    TreeView1->setSelectionMode(QAbstractItemView::SingleSelection);
    TreeView2->setObjectName(QStringLiteral("TreeView2"));
    TreeView2->hide();

    cmdGo->setObjectName(QStringLiteral("cmdGo"));
    platform::resumeNext([this] {
        cmdGo->setPicture(resources::LoadResPicture(QStringLiteral("GO")));
        cmdGo->setDownPicture(resources::LoadResPicture(QStringLiteral("GO_DOWN")));
    });
    cmdGo->setToolTip(QStringLiteral("Μετάβαση στη δραστηριότητα"));

    // A node reached by the keyboard is clicked too, so Go always matches the selection.
    connect(static_cast<ClickTree *>(TreeView1), &ClickTree::ItemClick, this,
        [this](QTreeWidgetItem *item) { platform::guarded([&] { TreeView1_NodeClick(item); }); });
    connect(cmdGo, &Btn::Click, this, [this] { platform::guarded([this] { cmdGo_Click(); }); });
}

frmPloigisi::~frmPloigisi() = default;

QString frmPloigisi::nodeKey(const QTreeWidgetItem *node)
{
    return node ? node->data(0, KeyRole).toString() : QString();
}

qint32 frmPloigisi::nodeTag(const QTreeWidgetItem *node)
{
    return node ? node->data(0, TagRole).toInt() : 0;
}

void frmPloigisi::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!m_loaded) {
        m_loaded = true;
        Form_Load();
    }
}

QTreeWidgetItem *frmPloigisi::addNode(
    const QString &relativeKey, const QString &key, const QString &text, const QString &image, qint32 tag)
{
    // As the tree control does: a missing parent or a key already taken is an error,
    // and the node is not added.
    QTreeWidgetItem *parent = nullptr;
    if (!relativeKey.isEmpty()) {
        parent = m_nodes.value(relativeKey);
        if (!parent)
            throw platform::RuntimeError(35601, QStringLiteral("Το στοιχείο δεν βρέθηκε"));
    }
    if (m_nodes.contains(key))
        throw platform::RuntimeError(35602, QStringLiteral("Το κλειδί δεν είναι μοναδικό στη συλλογή"));

    auto *item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(TreeView1);
    item->setText(0, text);
    // The window is narrow: a long name shows whole when the pointer rests on it.
    item->setToolTip(0, text);
    item->setData(0, KeyRole, key);
    item->setData(0, TagRole, tag);
    platform::resumeNext([&] { item->setIcon(0, resources::LoadResIcon(image)); });
    m_nodes.insert(key, item);
    return item;
}

void frmPloigisi::Form_Load()
{
    using platform::resumeNext;

    // Every failure here is passed over: what can be built of the tree is shown.
    resumeNext([this] {
        QPalette pal = palette();
        pal.setColor(QPalette::Window, QColor(254, 238, 193));
        setPalette(pal);
        setAutoFillBackground(true);
    });

    resumeNext([this] {
        m_themes = m_session.database().OpenRecordset(QStringLiteral("Themes"), content::dbOpenSnapshot);
    });
    resumeNext([this] {
        m_scenarios
            = m_session.database().OpenRecordset(QStringLiteral("Scenarios"), content::dbOpenSnapshot);
    });
    resumeNext([this] {
        m_activities = m_session.database().OpenRecordset(QStringLiteral("SELECT Activities.Activity, ")
                + QStringLiteral("Activities.ActivityID,RelScenarioActivity.ScenarioID from Activities ")
                + QStringLiteral(" INNER JOIN RelScenarioActivity ON "
                                 "RelScenarioActivity.ActivityID=Activities.ActivityID"),
            content::dbOpenSnapshot);
    });

    if (m_themes) {
        resumeNext([this] {
            if (m_themes->RecordCount() > 0)
                m_themes->MoveFirst();
        });
        while (!m_themes->Eof()) {
            resumeNext([this] {
                const qint32 id = m_themes->Fields(QStringLiteral("ThemeID")).Value().toInt();
                addNode({}, QStringLiteral("Th") + QString::number(id),
                    QStringLiteral("Θέμα: ") + m_themes->Fields(QStringLiteral("Theme")).text(),
                    QStringLiteral("Th"), id);
            });
            m_themes->MoveNext();
        }
    }

    if (m_scenarios) {
        resumeNext([this] {
            if (m_scenarios->RecordCount() > 0)
                m_scenarios->MoveFirst();
        });
        while (!m_scenarios->Eof()) {
            resumeNext([this] {
                const qint32 themeID = m_scenarios->Fields(QStringLiteral("ThemeID")).Value().toInt();
                const qint32 scenarioID = m_scenarios->Fields(QStringLiteral("ScenarioID")).Value().toInt();
                if (themeID != 0 && scenarioID != 0)
                    addNode(QStringLiteral("Th") + QString::number(themeID),
                        QStringLiteral("Sc") + QString::number(scenarioID),
                        QStringLiteral("Σενάριο: ") + m_scenarios->Fields(QStringLiteral("Scenario")).text(),
                        QStringLiteral("Sc"), scenarioID);
            });
            m_scenarios->MoveNext();
        }
    }

    if (m_activities) {
        resumeNext([this] {
            if (m_activities->RecordCount() > 0)
                m_activities->MoveFirst();
        });
        while (!m_activities->Eof()) {
            resumeNext([this] {
                const qint32 activityID = m_activities->Fields(QStringLiteral("ActivityID")).Value().toInt();
                const qint32 scenarioID = m_activities->Fields(QStringLiteral("ScenarioID")).Value().toInt();
                addNode(QStringLiteral("Sc") + QString::number(scenarioID),
                    QStringLiteral("Ac") + QString::number(activityID) + QStringLiteral("Sc")
                        + QString::number(scenarioID),
                    QStringLiteral("Δραστηριότητα: ")
                        + m_activities->Fields(QStringLiteral("Activity")).text(),
                    QStringLiteral("Ac"), activityID);
            });
            m_activities->MoveNext();
        }
    }

    resumeNext([this] {
        QTreeWidgetItem *selected
            = m_nodes.value(QStringLiteral("Ac") + QString::number(m_session.content().activityID)
                + QStringLiteral("Sc") + QString::number(m_session.content().scenarioID));
        TreeView1->setCurrentItem(selected);
        if (selected) {
            for (QTreeWidgetItem *up = selected->parent(); up; up = up->parent())
                up->setExpanded(true);
            TreeView1->scrollToItem(selected);
        }
    });
    resumeNext([this] {
        QTreeWidgetItem *selected = TreeView1->currentItem();
        if (!selected || !selected->parent())
            throw platform::RuntimeError(91, QStringLiteral("Δεν έχει οριστεί μεταβλητή αντικειμένου"));
        m_pendingScenarioID = toLong(nodeKey(selected->parent()).mid(2));
    });
    cmdGo->setEnabled(false);
    Form_Resize();
}

void frmPloigisi::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Form_Resize();
}

void frmPloigisi::Form_Resize()
{
    platform::resumeNext([this] {
        const int scaleWidth = width();
        const int scaleHeight = height();
        TreeView1->setGeometry(0, 0, scaleWidth, std::max(0, scaleHeight - cmdGo->height()));
        cmdGo->move((scaleWidth - cmdGo->width()) / 2, scaleHeight - cmdGo->height());
    });
}

void frmPloigisi::TreeView1_NodeClick(QTreeWidgetItem *node)
{
    const QString key = nodeKey(node);
    if (key.startsWith(QStringLiteral("Ac"))) {
        // Not trapped: an id beyond the 16-bit range ends the click with the error box.
        m_pendingActivityID = toInteger(activityDigits(key));
        cmdGo->setEnabled(m_pendingActivityID != m_session.content().activityID);
    } else {
        cmdGo->setEnabled(false);
    }
}

void frmPloigisi::cmdGo_Click()
{
    // The windows the present tiles opened go first: one that keeps the pupil's work
    // (a question cancelled) keeps the activity, its tiles and the tree as they are.
    if (ShellWindow *shell = m_session.shell(false); shell && !shell->QueryUnloadResources())
        return;
    if (QTreeWidgetItem *selected = TreeView1->currentItem()) {
        if (!selected->parent())
            throw platform::RuntimeError(91, QStringLiteral("Δεν έχει οριστεί μεταβλητή αντικειμένου"));
        m_session.content().scenarioID = toLong(nodeKey(selected->parent()).mid(2));
        m_session.content().activityID = toLong(activityDigits(nodeKey(selected)));
    }
    const qint16 pending = m_pendingActivityID;
    close();

    ShellWindow *shell = m_session.shell();
    if (!shell)
        return;
    shell->UnloadResources();
    shell->setSelectedActivity(pending);
    shell->LoadResources();
}

void frmPloigisi::closeEvent(QCloseEvent *event)
{
    Form_Unload();
    QWidget::closeEvent(event);
}

void frmPloigisi::Form_Unload()
{
    // The themes stay open with the window; the others are let go here.
    platform::resumeNext([this] {
        if (m_activities)
            m_activities->Close();
        m_activities.reset();
        if (m_scenarios)
            m_scenarios->Close();
        m_scenarios.reset();
    });
}
