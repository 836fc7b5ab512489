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
#include <session.h> // session: the finding windows are the session's; the test gets one of its own with the shell
#include <mdiform1.h>
#include <modglobal.h>
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

#include "samplecourse.h"

namespace testing {

struct ProgramWindow
{
    const char *name;
    std::function<QWidget *(MDIForm1 *shell)> open;
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
inline frmIndex *openIndexAt(const QString &term)
{
    frmIndex *index = Session::current()->window<frmIndex>(Session::Window::Index, true);
    modGlobal::CenterAndShow(index);
    QTreeWidget *list = index->LvEnnoia;
    const QList<QTreeWidgetItem *> found = list->findItems(term, Qt::MatchExactly);
    if (found.isEmpty())
        return nullptr;
    list->setCurrentItem(found.first());
    list->scrollToItem(found.first());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(found.first()).center());
    return index;
}

inline frmResPhoto *openPhoto(qint32 resourceID)
{
    auto *viewer = new frmResPhoto(*Session::current());
    viewer->setResourceID(resourceID);
    viewer->Load();
    modGlobal::CenterAndShow(viewer);
    return viewer;
}

// The notepad, shown in the shell as its toolbar key shows it.
// session: the running session, until these windows are handed one.
inline Session &runningSession()
{
    return *Session::current();
}

inline frmNotes *openNotepad()
{
    frmNotes *notes = frmNotes::open(runningSession(), true);
    modGlobal::CenterAndShow(notes);
    return notes;
}

// The painter of the shell's toolbar, with one of its dropdown palettes or dialogs asked
// by its key.
inline frmDrawing *openPainter()
{
    auto *drawing = new frmDrawing(runningSession());
    drawing->Load();
    modGlobal::CenterAndShow(drawing);
    return drawing;
}

inline QWidget *openPainterPalette(const QString &key, std::function<QWidget *(frmDrawing *)> which)
{
    frmDrawing *drawing = openPainter();
    drawing->tlbGeneral_ButtonClick(key);
    QApplication::processEvents();
    return which(drawing);
}

inline QList<ProgramWindow> programWindows()
{
    using namespace Qt::StringLiterals;
    return {
        {"start_screen",
            [](MDIForm1 *) -> QWidget * {
                auto *start = new frmNewFirst;
                start->show();
                return start;
            }},
        {"shell", [](MDIForm1 *shell) -> QWidget * { return shell; }},
        {"navigation_tree",
            [](MDIForm1 *shell) -> QWidget * {
                // The tree opens at the activity the pupil went in by: 1001 of scenario 101.
                modGlobal::gScenarioID = 101;
                frmPloigisi *tree = frmPloigisi::defaultInstance(shell);
                tree->show();
                return tree;
            }},
        {"text_viewer",
            [](MDIForm1 *) -> QWidget * {
                auto *viewer = new frmTextResource(*Session::current());
                viewer->setResourceID(101);
                viewer->Load();
                modGlobal::CenterAndShow(viewer);
                return viewer;
            }},
        {"tip",
            [](MDIForm1 *shell) -> QWidget * {
                frmToolTips *tip = Session::current()->window<frmToolTips>(Session::Window::Tip);
                tip->setTipText(u"Η σμύριδα της Νάξου, πέτρωμα σκληρό, γυάλιζε τα μάρμαρα."_s);
                tip->Show(shell);
                return tip;
            }},
        {"photo_viewer", [](MDIForm1 *) -> QWidget * { return openPhoto(121); }},
        {"photo_viewer_with_legend", [](MDIForm1 *) -> QWidget * { return openPhoto(141); }},
        {"enlarged_photo",
            [](MDIForm1 *) -> QWidget * {
                openPhoto(121)->Image1_DblClick();
                return Session::current()->window<frmMaxPhoto>(Session::Window::MaxPhoto);
            }},
        {"index", [](MDIForm1 *) -> QWidget * { return openIndexAt(u"Μίνωας"_s); }},
        {"index_picture",
            [](MDIForm1 *) -> QWidget * {
                for (QTreeWidgetItem *item : Session::current()
                                                 ->window<frmIndex>(Session::Window::Index, true)
                                                 ->LvEnnoia->findItems(u"*"_s, Qt::MatchWildcard)) {
                    frmIndex *index = openIndexAt(item->text(0));
                    if (index && index->cmdPicture->isEnabled()) {
                        index->cmdPicture_Click();
                        return index->pictureWindow();
                    }
                }
                return nullptr;
            }},
        {"media_player",
            [](MDIForm1 *) -> QWidget * {
                frmIndex *index = openIndexAt(u"Μίνωας"_s);
                if (!index || !index->cmdSound->isEnabled())
                    return nullptr;
                index->cmdSound_Click();
                return index->mediaPlayer();
            }},
        {"search",
            [](MDIForm1 *) -> QWidget * {
                return Session::current()->window<frmSearchResources>(Session::Window::SearchResources, true);
            }},
        {"text_search",
            [](MDIForm1 *) -> QWidget * {
                frmFullTextSearch *search
                    = Session::current()->window<frmFullTextSearch>(Session::Window::FullTextSearch, true);
                if (!QTest::qWaitFor([search] { return search->indexReady(); }, 60000))
                    return nullptr;
                search->txtWords->setText(u"ναός"_s);
                if (!QTest::qWaitFor([search] { return search->lstResults->count() > 0; }, 10000))
                    return nullptr;
                return search;
            }},
        {"notepad",
            [](MDIForm1 *) -> QWidget * {
                frmNotes *notes = openNotepad();
                notes->notes->setText(u"Οι σημειώσεις του μαθητή."_s);
                notes->NotesDirty = false;
                return notes;
            }},
        {"notepad_find",
            [](MDIForm1 *) -> QWidget * {
                openNotepad();
                frmFind *find = frmFind::open(runningSession());
                find->show();
                return find;
            }},
        {"notepad_format",
            [](MDIForm1 *) -> QWidget * {
                openNotepad();
                frmFormat *format = frmFormat::open(runningSession());
                format->show();
                return format;
            }},
        {"notepad_bullets",
            [](MDIForm1 *) -> QWidget * {
                openNotepad();
                frmBullets *bullets = frmBullets::open(runningSession());
                bullets->show();
                return bullets;
            }},
        {"notepad_font_colours",
            [](MDIForm1 *) -> QWidget * {
                frmNotes *notes = openNotepad();
                notes->Toolbar1_ButtonDropDown(u"SetFontColor"_s);
                return notes->frmFontColors;
            }},
        {"painter", [](MDIForm1 *) -> QWidget * { return openPainter(); }},
        {"painter_text",
            [](MDIForm1 *) -> QWidget * {
                auto *text = new frmDrawingText(openPainter());
                text->setAttribute(Qt::WA_DeleteOnClose);
                text->show();
                return text;
            }},
        {"painter_line_width",
            [](MDIForm1 *) {
                return openPainterPalette(
                    u"BorderWidth"_s, [](frmDrawing *d) -> QWidget * { return d->BorderWidthPalette(); });
            }},
        {"painter_line_colour",
            [](MDIForm1 *) {
                return openPainterPalette(
                    u"BorderColor"_s, [](frmDrawing *d) -> QWidget * { return d->BorderColorPalette(); });
            }},
        {"painter_fill_colour",
            [](MDIForm1 *) {
                return openPainterPalette(
                    u"FillColor"_s, [](frmDrawing *d) -> QWidget * { return d->FillColorPalette(); });
            }},
        {"painter_fill_style",
            [](MDIForm1 *) {
                return openPainterPalette(
                    u"FillStyle"_s, [](frmDrawing *d) -> QWidget * { return d->FillStylePalette(); });
            }},
        {"painter_stamps",
            [](MDIForm1 *) {
                return openPainterPalette(
                    u"Shape"_s, [](frmDrawing *d) -> QWidget * { return d->PastePicture(); });
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
inline void closeProgramWindows(MDIForm1 *shell)
{
    if (frmToolTips *tip = Session::current()->window<frmToolTips>(Session::Window::Tip, false))
        tip->close();
    if (frmNotes *notes = frmNotes::open(runningSession(), false))
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
// the shell at the first activity, message boxes answered and kept, the text search's
// index in a cache folder of the test's own.
class WindowsOnTheSample
{
    testing::TestSession m_session;

public:
    // False when the sample is not built.
    bool open(const QString &cacheFolder)
    {
        if (!openSampleCourse())
            return false;
        platform::setMsgBoxHook([this](const QString &text, int, const QString &) {
            m_boxes << text;
            return int(platform::vbOK);
        });
        qputenv("XDG_CACHE_HOME", cacheFolder.toUtf8());
        MDIForm1::setStartScreenFactory([] { return static_cast<QWidget *>(nullptr); });
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        return true;
    }

    MDIForm1 *showShell()
    {
        m_shell = static_cast<MDIForm1 *>(ShellWindow::instance());
        m_shell->setSelectedActivity(1001);
        m_shell->show();
        return m_shell;
    }

    // Closes every window but the shell; the texts of the boxes shown since the last time.
    QStringList closeAll()
    {
        closeProgramWindows(m_shell);
        return std::exchange(m_boxes, {});
    }

    ~WindowsOnTheSample()
    {
        if (m_shell)
            m_shell->hide();
        platform::setMsgBoxHook({});
    }

private:
    QPointer<MDIForm1> m_shell;
    QStringList m_boxes;
};

} // namespace testing
