#pragma once

// What the notepad's tests share: a fresh session for each test, a shell that keeps the
// "Σημειωματάριο" check, the notes window opened in it as the shell opens it, and the
// user in front of the message boxes and the common dialogs, answering through the
// session's recording host.

#include "../support/testsession.h"
#include "../viewing/viewershell.h"

#include <commondialog.h>
#include <frmnotes.h>
#include <modeditor.h>
#include <msgbox.h>
#include <notepadstate.h>
#include <notepadwindows.h>
#include <richtextbox.h>
#include <shellwindow.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPrinter>
#include <QTest>

#include <functional>
#include <memory>

namespace testing {

// A shell for the notepad, the session's while it lives.
class NotesShell final : public ViewerShell
{
public:
    explicit NotesShell(Session &session)
        : m_session(session)
    {
        session.setWindow(Session::Window::Shell, this);
    }

    // Opens the notepad as the shell's toolbar key does: its one window, in a child frame.
    frmNotes *openNotes()
    {
        show();
        frmNotes *form = frmNotes::open(m_session, true);
        auto *sub = qobject_cast<QMdiSubWindow *>(form->parentWidget());
        if (!sub)
            sub = m_area->addSubWindow(form);
        sub->show();
        form->show();
        return form;
    }

    bool studNotesChecked() const { return toggleChecked(Toggle::StudNotes); }

private:
    Session &m_session;
};

// The session of one test: made in init(), ended in cleanup().
class NotesFixture
{
public:
    void beginSession()
    {
        m_session = std::make_unique<TestSession>();
        registerNotepadWindows(*m_session);
    }
    void endSession() { m_session.reset(); }

    Session &session() { return *m_session; }
    RecordingHost &host() { return *m_session->host; }
    NotepadState &state() { return m_session->session->notepad(); }

private:
    std::unique_ptr<TestSession> m_session;
};

// Records the boxes shown from now on and answers each with `answer`.
class Boxes : public QList<ShownBox>
{
public:
    explicit Boxes(RecordingHost &host, int answer = platform::vbNo)
        : answer(answer)
        , m_host(host)
    {
        m_host.onBox = [this](const ShownBox &box) {
            append(box);
            m_host.answers = {this->answer};
        };
    }
    ~Boxes()
    {
        m_host.onBox = {};
        m_host.answers.clear();
    }
    Boxes(const Boxes &) = delete;
    Boxes &operator=(const Boxes &) = delete;
    int answer;

private:
    RecordingHost &m_host;
};

using DialogKind = platform::DialogRequest::Kind;

// A dialog as the user sees it, set up by the program; what the user leaves in it is the
// answer.
struct SeenDialog
{
    QString DialogTitle;
    int Flags = 0;
    QString Filter;
    int FilterIndex = 1;
    QString FileName;
    QString DefaultExt;
    int Copies = 1;
    QString FontName;
    double FontSize = 0;
    bool FontBold = false;
    bool FontItalic = false;
    bool FontStrikethru = false;
    bool FontUnderline = false;
    quint32 Color = 0;
};

// Answers the common dialogs: `answer` gets the kind and the dialog (and the printer
// for printing) and returns false for cancel. Counts the dialogs shown.
class Dialogs
{
public:
    using Answer = std::function<bool(DialogKind, SeenDialog &, QPrinter *)>;
    explicit Dialogs(RecordingHost &host, Answer answer = {})
        : answer(std::move(answer))
        , m_host(host)
    {
        m_host.onDialog = [this](const platform::DialogRequest &request) { return respond(request); };
    }
    ~Dialogs() { m_host.onDialog = {}; }
    Dialogs(const Dialogs &) = delete;
    Dialogs &operator=(const Dialogs &) = delete;
    Answer answer;
    QList<DialogKind> shown;
    QStringList titles;

private:
    platform::DialogAnswer respond(const platform::DialogRequest &request)
    {
        shown.append(request.kind);
        titles.append(request.title);
        SeenDialog dialog;
        dialog.DialogTitle = request.title;
        dialog.Flags = request.flags;
        dialog.Filter = request.filter;
        dialog.FilterIndex = request.selectedFilter + 1;
        if (!request.fileName.isEmpty())
            dialog.FileName = request.folder.isEmpty() ? request.fileName
                                                       : QDir(request.folder).filePath(request.fileName);
        if (!request.defaultSuffix.isEmpty())
            dialog.DefaultExt = u'.' + request.defaultSuffix;
        if (request.printer)
            dialog.Copies = request.printer->copyCount();
        dialog.FontName = request.font.family();
        dialog.FontSize = request.font.pointSizeF();
        dialog.FontBold = request.font.bold();
        dialog.FontItalic = request.font.italic();
        dialog.FontStrikethru = request.font.strikeOut();
        dialog.FontUnderline = request.font.underline();
        dialog.Color = request.colour;

        platform::DialogAnswer reply;
        reply.accepted = answer && answer(request.kind, dialog, request.printer);
        reply.fileName = dialog.FileName;
        reply.copies = dialog.Copies;
        reply.font = QFont(dialog.FontName);
        reply.font.setPointSizeF(dialog.FontSize > 0 ? dialog.FontSize : 12);
        reply.font.setBold(dialog.FontBold);
        reply.font.setItalic(dialog.FontItalic);
        reply.font.setStrikeOut(dialog.FontStrikethru);
        reply.font.setUnderline(dialog.FontUnderline);
        reply.colour = dialog.Color;
        return reply;
    }

    RecordingHost &m_host;
};

// Closes every window the test left, as the pupil would leave them.
inline void closeAll(Session &session)
{
    if (frmNotes *form = frmNotes::open(session, false)) {
        form->NotesDirty = false;
        if (QWidget *sub = form->parentWidget())
            sub->close();
        else
            form->close();
    }
    QApplication::closeAllWindows();
    QTest::qWait(1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

inline void select(RichTextBox &box, int start, int length)
{
    box.setSelStart(start);
    box.setSelLength(length);
}

} // namespace testing
