#pragma once

// What the notepad's tests share: a shell that keeps the "Σημειωματάριο" check, the notes
// window opened in it as the shell opens it, and stand-ins for the user in front of the
// message boxes and the common dialogs.

#include "../viewing/viewershell.h"

#include <commondialog.h>
#include <frmnotes.h>
#include <modeditor.h>
#include <msgbox.h>
#include <richtextbox.h>
#include <shellwindow.h>

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTest>

#include <functional>

namespace testing {

class NotesShell final : public ViewerShell
{
public:
    // Opens the notepad as the shell's toolbar key does: its one instance, in a child frame.
    frmNotes *openNotes()
    {
        show();
        frmNotes *form = frmNotes::instance(true);
        auto *sub = qobject_cast<QMdiSubWindow *>(form->parentWidget());
        if (!sub)
            sub = m_area->addSubWindow(form);
        sub->show();
        form->show();
        return form;
    }

    bool studNotesChecked() const { return toggleChecked(Toggle::StudNotes); }
};

struct Box
{
    QString text;
    int style = 0;
    QString title;
};

// Records the boxes and answers each with `answer`.
class Boxes : public QList<Box>
{
public:
    explicit Boxes(int answer = platform::vbNo)
        : answer(answer)
    {
        platform::setMsgBoxHook([this](const QString &text, int style, const QString &title) {
            append({text, style, title});
            return this->answer;
        });
    }
    ~Boxes() { platform::setMsgBoxHook({}); }
    int answer;
};

// Answers the common dialogs: `answer` gets the kind and the dialog (and the printer
// for printing) and returns false for cancel. Counts the dialogs shown.
class Dialogs
{
public:
    using Answer = std::function<bool(CommonDialog::Kind, CommonDialog &, QPrinter *)>;
    explicit Dialogs(Answer answer = {})
        : answer(std::move(answer))
    {
        CommonDialog::setHook([this](CommonDialog::Kind kind, CommonDialog &dialog, QPrinter *printer) {
            shown.append(kind);
            titles.append(dialog.DialogTitle);
            return this->answer ? this->answer(kind, dialog, printer) : false;
        });
    }
    ~Dialogs() { CommonDialog::setHook({}); }
    Answer answer;
    QList<CommonDialog::Kind> shown;
    QStringList titles;
};

// Closes every window the test left and forgets the module state between tests.
inline void closeAll()
{
    if (frmNotes *form = frmNotes::instance(false)) {
        form->NotesDirty = false;
        if (QWidget *sub = form->parentWidget())
            sub->close();
        else
            form->close();
    }
    QApplication::closeAllWindows();
    QTest::qWait(1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    modEditor::CurrentFile.clear();
    modEditor::FontPaletteShown = false;
}

inline void select(RichTextBox &box, int start, int length)
{
    box.setSelStart(start);
    box.setSelLength(length);
}

} // namespace testing
