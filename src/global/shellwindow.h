#pragma once

#include <QtGlobal>


class QAction;
class QMdiArea;
class QWidget;

// What the windows below the main shell may ask of it. The main shell (MDIForm1)
// implements this; the session makes it, by the factory the program registers, and
// hands it to whoever asks (`session.shell()`), so no lower layer has to know the
// shell's class.
class ShellWindow
{
public:
    virtual ~ShellWindow();

    // The shell's top-level window and its area for child windows.
    virtual QWidget *window() = 0;
    virtual QMdiArea *mdiArea() = 0;

    // The window list of the "Παράθυρα" menu: entries mnuList(0 .. upper bound),
    // and the separator above them.
    virtual int mnuListUBound() const = 0;
    virtual QAction *mnuList(int index) = 0;
    virtual QAction *windowListSeparator() = 0;

    // The activity shown, and its tiles: the start screen and the navigation tree
    // drive these.
    virtual void setSelectedActivity(qint32 activityID) = 0;
    virtual void LoadResources() = 0;
    virtual void UnloadResources() = 0;
    // Before the tiles go: closes the windows they opened, each through its own closing.
    // False when one stayed open to keep the pupil's work (its question was cancelled);
    // then the activity, its tiles and the windows left stay as they are.
    virtual bool QueryUnloadResources() { return true; }

    // The three toggles of the "Προβολή" menu, kept in step by their windows.
    enum class Toggle { StudNotes, Catalogue, Draw };
    virtual void setToggleChecked(Toggle toggle, bool checked) = 0;
};
