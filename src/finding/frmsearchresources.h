#pragma once

#include "listicons.h"

#include <resourcesearch.h>
#include <sourceviewer.h>

#include <QPointer>
#include <QWidget>

class QComboBox;
class QFrame;
class QLabel;
class QTreeWidget;
class QTreeWidgetItem;
class Session;

// "Αναζήτηση": all resources narrowed by six criteria, with no search button: every
// change of a box lists the result at once. A double click opens the source in its
// viewer and ghosts its item, so that it is not opened twice, until that viewer closes.
// It is the session's search window.
class frmSearchResources final : public QWidget
{
    Q_OBJECT

public:
    explicit frmSearchResources(Session &session, QWidget *parent = nullptr);
    ~frmSearchResources() override;
    Q_DISABLE_COPY_MOVE(frmSearchResources)

    // Controls.
    QFrame *const Frame1;
    QLabel *const Label1; // "Τύπος πηγής:"
    QLabel *const Label2; // "Συγγραφέας:"
    QLabel *const Label3; // "Μουσείο:"
    QLabel *const Label4; // "Λέξη κλειδί:"
    QLabel *const Label5; // "Χρόνος:"
    QLabel *const Label6; // "Τόπος:"
    QComboBox *const cmbResType;
    QComboBox *const cmbAuthor;
    QComboBox *const cmbMuseum;
    QComboBox *const cmbKeyWord;
    QComboBox *const cmbTime;
    QComboBox *const cmbPlace;
    QTreeWidget *const lvwResources;

    // Opens the database afresh, fills the boxes, lists every resource and centres the
    // window in the shell. Errors of the content go up.
    void Load();

    // The criteria searched last, and the query that ran.
    const finding::SearchCriteria &criteria() const { return m_searched; }
    const QString &SQL() const { return m_sql; }
    // How many times the list was filled: a pick that changes nothing fills nothing.
    int searchCount() const { return m_searchCount; }

    // The list's item with this tag, or nullptr.
    QTreeWidgetItem *FindItem(const QString &tag) const;
    static bool Ghosted(const QTreeWidgetItem *item);
    static void setGhosted(QTreeWidgetItem *item, bool ghosted);
    static QString Tag(const QTreeWidgetItem *item);
    static QString IconKey(const QTreeWidgetItem *item);

    // The viewers last opened from here, one of each kind.
    SourceViewer *MyTextForm() const { return m_myTextForm; }
    SourceViewer *MyPhotoForm() const { return m_myPhotoForm; }
    SourceViewer *MyDrawingForm() const { return m_myDrawingForm; }

    // Event handlers, as the controls raise them.
    void cmbResType_Click();
    void cmbAuthor_Click();
    void cmbMuseum_Click();
    void cmbKeyWord_Click();
    void cmbTime_Click();
    void cmbPlace_Click();
    void lvwResources_DblClick();

    // The design, in twips.
    static constexpr int FormWidth = 9600;
    static constexpr int FormHeight = 6900;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void FillTableCombo(
        QComboBox *combo, const QString &table, const QString &nameColumn, const QString &idColumn);
    void FillTextCombo(QComboBox *combo, const QString &sql);
    static void AddAllEntry(QComboBox *combo);
    void numericCriterionClick(QComboBox *combo, QString finding::SearchCriteria::*criterion);
    void textCriterionClick(QComboBox *combo, QString finding::SearchCriteria::*criterion);
    void SearchResources();
    void SetColumnWidth();
    void layOut();

    Session &m_session;
    ListIcons m_icons;
    finding::SearchCriteria m_criteria;
    finding::SearchCriteria m_searched;
    QString m_sql;
    bool m_filled = false;
    int m_searchCount = 0;
    QPointer<SourceViewer> m_myTextForm;
    QPointer<SourceViewer> m_myPhotoForm;
    QPointer<SourceViewer> m_myDrawingForm;
};
