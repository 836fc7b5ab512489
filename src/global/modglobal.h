#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>

class QWidget;

namespace content {
class Database;
}

// Global state laid down at start and read by every window.
namespace modGlobal {

inline QString gDatabasePath;  // full path of the content database file
inline QString gDatabaseTitle; // its presentation name, shown on the start screen
inline std::unique_ptr<content::Database> gDatabase; // every query runs on it
inline QString gDataFolder;    // parent folder of the database file, no trailing separator
inline qint32 gScenarioID = 0; // scenario the user last went through
inline qint32 gActivityID = 0; // activity now shown in the main shell
inline qint16 gTwipsPerPixelX = 0; // kept as state; nothing reads them
inline qint16 gTwipsPerPixelY = 0;

// Centres `form` in the main shell's client area and shows it modelessly, as a child
// window of the shell. The left and top are computed in twips, unrounded, and may be
// negative for a form larger than the shell. Creates the shell if there is none.
void CenterAndShow(QWidget *form);

// Stops the program at once, running no further unload handlers: the way the start
// screen's exit button, the toolbar's exit key and a failed start end it. Tests replace
// the ending with setEndHook() to observe it.
void End();
void setEndHook(std::function<void()> hook);

} // namespace modGlobal
