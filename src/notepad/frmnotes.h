#pragma once

#include "commondialog.h"

#include <readable.h>
#include <workkeeper.h>

#include <QPointer>
#include <QStringList>
#include <QWidget>

class QAction;
class QMdiSubWindow;
class QMenu;
class QMenuBar;
class QMimeData;
class QPrinter;
class QStatusBar;
class QToolBar;
class NotesSpelling;
class RichTextBox;
class Session;
class frmColors;
namespace recovery {
struct Entry;
}

// The pupil's notepad: one rich-text document in a child window of the shell, with its
// menus, its toolbar of 28 places and a status line. Every operation on the document
// lives in modEditor and reaches this window as the session's notes window.
class frmNotes final : public QWidget, public speech::Readable
{
    Q_OBJECT

public:
    explicit frmNotes(Session &session, QWidget *parent = nullptr);
    ~frmNotes() override;
    Q_DISABLE_COPY_MOVE(frmNotes)

    // Read aloud: the selection, or else the whole note.
    QString textToRead() const override;
    QTextEdit *textBoxToRead() const override;

    // The session's notes window: made when `create` is set and there is none.
    static frmNotes *open(Session &session, bool create = true);

    // Someone else's note to read, such as work a pupil handed in: a window of its own,
    // never the session's notepad, showing the RTF locked, with only «Έξοδος» in its menu,
    // nothing to save and no recovery copy. The session closes it at its end.
    static frmNotes *showReadOnly(Session &session, const QByteArray &rtf, const QString &caption);
    bool isReadOnly() const { return m_readOnly; }

    // Controls.
    QMenuBar *const menuBar;
    QToolBar *const Toolbar1;
    RichTextBox *const notes;
    QStatusBar *const Status;
    CommonDialog CMDialog1;
    // The colour palette of the key "SetFontColor": one object while the window lives.
    QPointer<frmColors> frmFontColors;

    QMenu *mnuFile = nullptr;
    QAction *mnuNew = nullptr;
    QAction *mnuOpen = nullptr;
    QAction *mnuSave = nullptr;
    QAction *mnuSaveAs = nullptr;
    QAction *mnuPrint = nullptr;
    QAction *mnuExit = nullptr;
    QMenu *mnuEdit = nullptr;
    QAction *mnuCut = nullptr;
    QAction *mnuCopy = nullptr;
    QAction *mnuPaste = nullptr;
    QAction *mnuClear = nullptr;
    QAction *mnuSelectAll = nullptr;
    QAction *mnuFind = nullptr;
    QAction *mnuReplace = nullptr;
    QMenu *mnuInsert = nullptr;
    QAction *mnuInsPicture = nullptr;
    QMenu *mnuFormat = nullptr;
    QAction *mnuFonts = nullptr;
    QAction *mnuParagraph = nullptr;
    QAction *mnuBullets = nullptr;

    // The toolbar's places, 1 to 28, separators included; null for an index out of range.
    QAction *Buttons(int index) const;
    // The key of a place by its key, null for a key the toolbar lacks.
    QAction *button(const QString &key) const;
    // 1 pressed, 0 up.
    int buttonValue(const QString &key) const;
    void setButtonValue(const QString &key, int value);
    static const QStringList &buttonKeys();

    // The status line in its simple mode.
    QString SimpleText() const;
    void setSimpleText(const QString &text);

    // Fields.
    bool NotesDirty = false;
    // The spell checking of the note: its marks, its menu entry, its right-button menu.
    NotesSpelling *Spelling = nullptr;
    // The recovery copy of the note while it is not saved.
    recovery::WorkKeeper *Recovery = nullptr;
    // Reopens a note that a crash left unsaved: as it was, unsaved, under its file name.
    void RestoreWork(const recovery::Entry &lost);
    QPrinter *PrinterContext = nullptr;

    // The palette's event: the chosen colour, 0x00BBGGRR, goes to the selection.
    void frmFontColors_NewColor(quint32 color);

    // Handlers, as the controls raise them.
    void Toolbar1_ButtonClick(const QString &key);
    void Toolbar1_ButtonDropDown(const QString &key);
    void notes_SelChange();
    void notes_OLEDragDrop(const QMimeData *data);
    void mnuInsPicture_Click();
    void mnuReplace_Click();

    // The child frame, once the shell has put the window into one.
    QMdiSubWindow *subWindow() const;
    // Minimised in the shell.
    bool isMinimisedInShell() const;

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildMenus();
    void buildToolbar();
    void Form_Load();
    void Form_Resize();
    // Cancel set keeps the window open.
    void Form_Unload(int &Cancel);
    void ShowFind();
    void ExportToWord();
    void PrintSequence();
    void unloadFontPalette();
    std::optional<recovery::Work> unsavedWork() const;

    Session &m_session;
    QList<QAction *> m_buttons;
    QPointer<QMdiSubWindow> m_watchedSub;
    bool m_loaded = false;
    bool m_readOnly = false;
    bool m_unloading = false;
    bool m_unloaded = false;
};
