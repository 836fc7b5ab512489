#pragma once

#include <bundlereader.h>

#include <QList>
#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class Session;

// The teacher's list of the work handed in to a folder, «Παραδόσεις εργασιών»: a tree of
// classes, each with its pupils' bundles (pupil, activity, time, files, state), each with
// its note and drawings. Enter or a double click opens a note read-only in the notepad
// and a drawing in a picture window; a damaged bundle says so and opens nothing.
class frmHandIns final : public QWidget
{
    Q_OBJECT

public:
    frmHandIns(Session &session, const QString &folder, QWidget *parent = nullptr);
    ~frmHandIns() override;
    Q_DISABLE_COPY_MOVE(frmHandIns)

    // Controls.
    QLabel *const lblFolder;
    QTreeWidget *const lvwHandIns;
    QPushButton *const cmdOpen;
    QPushButton *const cmdRefresh;
    QPushButton *const cmdClose;

    // The list's columns.
    enum Column { ColPupil, ColActivity, ColTime, ColFiles, ColState, ColumnCount };
    // What an item stands for: the bundle's place in bundles() (-1 on a class), and the
    // file's name inside it (empty on a bundle or a class).
    static constexpr int BundleRole = Qt::UserRole;
    static constexpr int FileRole = Qt::UserRole + 1;

    static QString stateText(bool ok);

    QString folder() const { return m_folder; }
    // The bundles as the list shows them, in its order.
    const QList<handin::BundleInfo> &bundles() const { return m_bundles; }

    // Reads the folder again and fills the list.
    void Refresh();
    // Opens what the item stands for; a bundle opens its note, or its first drawing.
    void Open(QTreeWidgetItem *item);

    // Handlers.
    void lvwHandIns_ItemActivated(QTreeWidgetItem *item);
    void cmdOpen_Click();
    void cmdRefresh_Click();
    void cmdClose_Click();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void fill();
    void openNote(const handin::BundleInfo &bundle, const QString &name);
    void openDrawing(const handin::BundleInfo &bundle, const QString &name);
    void sayUnreadable(const handin::BundleInfo &bundle, const QString &why);

    Session &m_session;
    QString m_folder;
    QList<handin::BundleInfo> m_bundles;
};

// The teacher's start, `tremidia --handins FOLDER`: the list of that folder, with no
// course open. False, after a box that says why, when the folder is not there.
bool showHandIns(Session &session, const QString &folder);
