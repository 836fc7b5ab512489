#pragma once

// Every window the program opens, each opened on the sample course as the pupil reaches
// it, for the tests that look at all of them alike (colours, screen readers). Qt's own
// dialogs (file, print, font, message boxes) are not the program's and are left out.
//
// An opener shows its window and returns it; a window the shell shows inside itself is
// returned as the program's widget, and frameOf gives the shell's frame round it.

#include "../support/testsession.h"

#include <btn.h>
#include <chotword.h>
#include <frmborderwidth.h>
#include <frmbullets.h>
#include <frmcolors.h>
#include <frmdrawing.h>
#include <frmdrawingtext.h>
#include <frmfillstyle.h>
#include <frmfind.h>
#include <frmformat.h>
#include <frmfoto.h>
#include <frmfulltextsearch.h>
#include <frmhandin.h>
#include <frmindex.h>
#include <frmmaxphoto.h>
#include <frmmediaplayer.h>
#include <frmnewfirst.h>
#include <frmnotes.h>
#include <frmpastepicture.h>
#include <frmploigisi.h>
#include <frmresphoto.h>
#include <frmsearchresources.h>
#include <frmtextresource.h>
#include <frmtooltips.h>
#include <session.h>
#include <mdiform1.h>
#include <msgbox.h>
#include <richtextbox.h>
#include <session.h>

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTest>
#include <QTreeWidget>

#include <functional>

#include "../support/testsession.h"
#include "samplecourse.h"

namespace testing {

struct ProgramWindow
{
    const char *name;
    std::function<QWidget *(Session &session, MDIForm1 *shell)> open;
};

// The window to look at for a program window: the shell's frame round a child window,
// else the window itself.
inline QWidget *frameOf(QWidget *window)
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget()))
        return sub;
    return window->window();
}

// The index on the sample, showing the term given (its buttons enabled for it).
inline frmIndex *openIndexAt(Session &session, const QString &term)
{
    auto *index = session.window<frmIndex>(Session::Window::Index);
    CenterAndShow(session, index);
    QTreeWidget *list = index->LvEnnoia;
    const QList<QTreeWidgetItem *> found = list->findItems(term, Qt::MatchExactly);
    if (found.isEmpty())
        return nullptr;
    list->setCurrentItem(found.first());
    list->scrollToItem(found.first());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(found.first()).center());
    return index;
}

inline frmResPhoto *openPhoto(Session &session, qint32 resourceID)
{
    auto *viewer = new frmResPhoto(session);
    session.adopt(viewer);
    viewer->setResourceID(resourceID);
    viewer->Load();
    CenterAndShow(session, viewer);
    return viewer;
}

// The notepad, shown in the shell as its toolbar key shows it.
inline frmNotes *openNotepad(Session &session)
{
    auto *notes = session.window<frmNotes>(Session::Window::Notes);
    CenterAndShow(session, notes);
    return notes;
}

// The painter of the shell's toolbar, with one of its dropdown palettes or dialogs asked
// by its key.
inline frmDrawing *openPainter(Session &session)
{
    auto *drawing = new frmDrawing(session);
    session.adopt(drawing);
    drawing->Load();
    CenterAndShow(session, drawing);
    return drawing;
}

inline QWidget *openPainterPalette(
    Session &session, const QString &key, std::function<QWidget *(frmDrawing *)> which)
{
    frmDrawing *drawing = openPainter(session);
    drawing->tlbGeneral_ButtonClick(key);
    QApplication::processEvents();
    return which(drawing);
}

inline QList<ProgramWindow> programWindows()
{
    using namespace Qt::StringLiterals;
    return {
        {"start_screen",
            [](Session &session, MDIForm1 *) -> QWidget * {
                auto *start = new frmNewFirst(session);
                session.adopt(start);
                start->show();
                return start;
            }},
        {"shell", [](Session &, MDIForm1 *shell) -> QWidget * { return shell; }},
        {"navigation_tree",
            [](Session &session, MDIForm1 *) -> QWidget * {
                // The tree opens at the activity the pupil went in by: 1001 of scenario 101.
                session.content().scenarioID = 101;
                QWidget *tree = session.window(Session::Window::Navigation);
                tree->show();
                return tree;
            }},
        {"text_viewer",
            [](Session &session, MDIForm1 *) -> QWidget * {
                auto *viewer = new frmTextResource(session);
                session.adopt(viewer);
                viewer->setResourceID(101);
                viewer->Load();
                CenterAndShow(session, viewer);
                return viewer;
            }},
        {"tip",
            [](Session &session, MDIForm1 *shell) -> QWidget * {
                frmToolTips *tip = session.window<frmToolTips>(Session::Window::Tip);
                tip->setTipText(u"Η σμύριδα της Νάξου, πέτρωμα σκληρό, γυάλιζε τα μάρμαρα."_s);
                tip->Show(shell);
                return tip;
            }},
        {"photo_viewer", [](Session &session, MDIForm1 *) -> QWidget * { return openPhoto(session, 121); }},
        {"photo_viewer_with_legend",
            [](Session &session, MDIForm1 *) -> QWidget * { return openPhoto(session, 141); }},
        {"enlarged_photo",
            [](Session &session, MDIForm1 *) -> QWidget * {
                openPhoto(session, 121)->Image1_DblClick();
                return session.window<frmMaxPhoto>(Session::Window::MaxPhoto);
            }},
        {"index",
            [](Session &session, MDIForm1 *) -> QWidget * { return openIndexAt(session, u"Μίνωας"_s); }},
        {"index_picture",
            [](Session &session, MDIForm1 *) -> QWidget * {
                for (QTreeWidgetItem *item : session.window<frmIndex>(Session::Window::Index)
                                                 ->LvEnnoia->findItems(u"*"_s, Qt::MatchWildcard)) {
                    frmIndex *index = openIndexAt(session, item->text(0));
                    if (index && index->cmdPicture->isEnabled()) {
                        index->cmdPicture_Click();
                        return index->pictureWindow();
                    }
                }
                return nullptr;
            }},
        {"media_player",
            [](Session &session, MDIForm1 *) -> QWidget * {
                frmIndex *index = openIndexAt(session, u"Μίνωας"_s);
                if (!index || !index->cmdSound->isEnabled())
                    return nullptr;
                index->cmdSound_Click();
                return index->mediaPlayer();
            }},
        {"search",
            [](Session &session, MDIForm1 *) -> QWidget * {
                return session.window(Session::Window::SearchResources);
            }},
        {"text_search",
            [](Session &session, MDIForm1 *) -> QWidget * {
                auto *search = session.window<frmFullTextSearch>(Session::Window::FullTextSearch);
                if (!QTest::qWaitFor([search] { return search->indexReady(); }, 60000))
                    return nullptr;
                search->txtWords->setText(u"ναός"_s);
                if (!QTest::qWaitFor([search] { return search->lstResults->count() > 0; }, 10000))
                    return nullptr;
                return search;
            }},
        {"notepad",
            [](Session &session, MDIForm1 *) -> QWidget * {
                frmNotes *notes = openNotepad(session);
                notes->notes->setText(u"Οι σημειώσεις του μαθητή."_s);
                notes->NotesDirty = false;
                return notes;
            }},
        {"notepad_find",
            [](Session &session, MDIForm1 *) -> QWidget * {
                openNotepad(session);
                frmFind *find = frmFind::open(session);
                find->show();
                return find;
            }},
        {"notepad_format",
            [](Session &session, MDIForm1 *) -> QWidget * {
                openNotepad(session);
                frmFormat *format = frmFormat::open(session);
                format->show();
                return format;
            }},
        {"notepad_bullets",
            [](Session &session, MDIForm1 *) -> QWidget * {
                openNotepad(session);
                frmBullets *bullets = frmBullets::open(session);
                bullets->show();
                return bullets;
            }},
        {"notepad_font_colours",
            [](Session &session, MDIForm1 *) -> QWidget * {
                frmNotes *notes = openNotepad(session);
                notes->Toolbar1_ButtonDropDown(u"SetFontColor"_s);
                return notes->frmFontColors;
            }},
        {"hand_in",
            [](Session &session, MDIForm1 *) -> QWidget * {
                frmNotes *notes = openNotepad(session);
                notes->notes->setText(u"Οι σημειώσεις του μαθητή."_s);
                notes->NotesDirty = false;
                frmHandIn *handIn = frmHandIn::open(session);
                handIn->show();
                return handIn;
            }},
        {"painter", [](Session &session, MDIForm1 *) -> QWidget * { return openPainter(session); }},
        {"painter_text",
            [](Session &session, MDIForm1 *) -> QWidget * {
                auto *text = new frmDrawingText(openPainter(session));
                text->setAttribute(Qt::WA_DeleteOnClose);
                text->show();
                return text;
            }},
        {"painter_line_width",
            [](Session &session, MDIForm1 *) {
                return openPainterPalette(session, u"BorderWidth"_s,
                    [](frmDrawing *d) -> QWidget * { return d->BorderWidthPalette(); });
            }},
        {"painter_line_colour",
            [](Session &session, MDIForm1 *) {
                return openPainterPalette(session, u"BorderColor"_s,
                    [](frmDrawing *d) -> QWidget * { return d->BorderColorPalette(); });
            }},
        {"painter_fill_colour",
            [](Session &session, MDIForm1 *) {
                return openPainterPalette(session, u"FillColor"_s,
                    [](frmDrawing *d) -> QWidget * { return d->FillColorPalette(); });
            }},
        {"painter_fill_style",
            [](Session &session, MDIForm1 *) {
                return openPainterPalette(session, u"FillStyle"_s,
                    [](frmDrawing *d) -> QWidget * { return d->FillStylePalette(); });
            }},
        {"painter_stamps",
            [](Session &session, MDIForm1 *) {
                return openPainterPalette(
                    session, u"Shape"_s, [](frmDrawing *d) -> QWidget * { return d->PastePicture(); });
            }},
    };
}

// The window of a test row.
inline ProgramWindow programWindow(int row)
{
    return programWindows().at(row);
}

// Adds one test row per window, by its name.
inline void addProgramWindowRows()
{
    QTest::addColumn<int>("window");
    const QList<ProgramWindow> windows = programWindows();
    for (int i = 0; i < windows.size(); ++i)
        QTest::newRow(windows.at(i).name) << i;
}

// Closes every window but the shell, and the shell's child windows, as the pupil would.
inline void closeProgramWindows(Session &session, MDIForm1 *shell)
{
    if (frmToolTips *tip = session.window<frmToolTips>(Session::Window::Tip, false))
        tip->close();
    if (auto *notes = session.window<frmNotes>(Session::Window::Notes, false))
        notes->NotesDirty = false;
    for (QWidget *w : QApplication::topLevelWidgets()) {
        if (w != shell && w->isVisible())
            w->close();
    }
    if (shell) {
        for (QMdiSubWindow *sub : shell->area->subWindowList())
            sub->close();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The program on the sample course for a test that opens its windows one after another:
// a session of its own, the shell at the first activity, message boxes answered and kept,
// the text search's index in a cache folder of the test's own.
class WindowsOnTheSample
{
public:
    Session &session() { return m_session; }

    // False when the sample is not built.
    bool open(const QString &cacheFolder)
    {
        if (!openSampleCourse(m_session))
            return false;
        qputenv("XDG_CACHE_HOME", cacheFolder.toUtf8());
        m_session->setWindowFactory(Session::Window::StartScreen, [](Session &) { return nullptr; });
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        return true;
    }

    MDIForm1 *showShell()
    {
        m_shell = qobject_cast<MDIForm1 *>(m_session->window(Session::Window::Shell));
        m_shell->setSelectedActivity(1001);
        m_shell->show();
        return m_shell;
    }

    // Opens the program's window of that number and waits until its frame (the window, or
    // the shell's child window that holds it) is on screen; null when it did not open.
    QWidget *openShown(int window)
    {
        QWidget *opened = programWindow(window).open(session(), m_shell);
        if (!opened)
            return nullptr;
        QWidget *frame = frameOf(opened);
        return QTest::qWaitForWindowExposed(frame->window()) ? frame : nullptr;
    }

    // Closes every window but the shell; the texts of the boxes shown since the last time.
    QStringList closeAll()
    {
        closeProgramWindows(m_session, m_shell);
        QStringList boxes;
        for (const ShownBox &box : std::as_const(m_session.host->boxes))
            boxes << box.text;
        m_session.host->boxes.clear();
        return boxes;
    }

    ~WindowsOnTheSample()
    {
        if (m_shell)
            m_shell->hide();
    }

private:
    TestSession m_session;
    QPointer<MDIForm1> m_shell;
};

} // namespace testing
