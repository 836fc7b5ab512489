#pragma once

#include <QHash>
#include <QWidget>

#include <memory>

class Btn;
class Session;
class QTreeWidget;
class QTreeWidgetItem;

namespace content {
class Recordset;
}

// The whole path of themes, scenarios and activities as one tree, from which the pupil
// jumps to another activity without going back to the start screen. It is the session's
// navigation window, owned by the shell it floats above; closed, it goes, and the next
// request makes it afresh.
class frmPloigisi final : public QWidget
{
    Q_OBJECT

public:
    explicit frmPloigisi(Session &session, QWidget *parent = nullptr);
    ~frmPloigisi() override;
    Q_DISABLE_COPY_MOVE(frmPloigisi)

    // Controls.
    QTreeWidget *const TreeView1;
    QTreeWidget *const TreeView2; // lies on the form; nothing uses it
    Btn *const cmdGo;

    // The tree's nodes by key ("Th5", "Sc10", "Ac120Sc10").
    QTreeWidgetItem *node(const QString &key) const { return m_nodes.value(key); }
    static QString nodeKey(const QTreeWidgetItem *node);
    static qint32 nodeTag(const QTreeWidgetItem *node);

    qint16 PendingActivityID() const { return m_pendingActivityID; }
    qint32 PendingScenarioID() const { return m_pendingScenarioID; }

    // Event handlers, as the user drives them.
    void TreeView1_NodeClick(QTreeWidgetItem *node);
    void cmdGo_Click();

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void Form_Load();
    void Form_Resize();
    void Form_Unload();
    QTreeWidgetItem *addNode(const QString &relativeKey, const QString &key, const QString &text,
        const QString &image, qint32 tag);

    qint16 m_pendingActivityID = 0;
    qint32 m_pendingScenarioID = 0;
    std::unique_ptr<content::Recordset> m_themes;
    std::unique_ptr<content::Recordset> m_scenarios;
    std::unique_ptr<content::Recordset> m_activities;
    QHash<QString, QTreeWidgetItem *> m_nodes;
    bool m_loaded = false;
    Session &m_session;
};
