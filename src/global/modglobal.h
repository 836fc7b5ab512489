#pragma once

#include <QString>

#include <memory>

class QWidget;

namespace content {
class Database;
}

// session: bridge. The content as the windows that are not handed a session yet read it.
// The session owns the content; it lends the database here, and a window that still owns
// what it sets here keeps owning it.
namespace modGlobal {

// Deletes the database only when it was handed over, not when it was lent.
struct DatabaseOwner
{
    bool owns = true;
    DatabaseOwner() = default;
    DatabaseOwner(std::default_delete<content::Database>) { }
    operator std::default_delete<content::Database>() const { return {}; }
    void operator()(content::Database *database) const;
};

inline QString gDatabasePath; // full path of the content database file
inline std::unique_ptr<content::Database, DatabaseOwner> gDatabase; // every query runs on it
inline QString gDataFolder; // parent folder of the database file, no trailing separator

// Points the three above at content another owner keeps.
void lendContent(content::Database *database, const QString &path, const QString &dataFolder);

// Centres `form` in the main shell's client area and shows it modelessly, as a child
// window of the shell. The left and top are computed in twips, unrounded, and may be
// negative for a form larger than the shell. Creates the shell if there is none.
void CenterAndShow(QWidget *form);

} // namespace modGlobal
