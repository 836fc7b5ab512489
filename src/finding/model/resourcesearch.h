#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace content {
class Database;
class Recordset;
} // namespace content

// The resource search: the query that six criteria compose and the list that its rows
// make. The search window and the content tool's "search" command both run this.
namespace finding {

// The six criteria as the combo boxes give them. Keyword, place, time and type hold an id
// in decimal, "0" being no condition; author and museum hold the text, "" being none.
struct SearchCriteria
{
    QString KeyWord = QStringLiteral("0");
    QString Place = QStringLiteral("0");
    QString Time = QStringLiteral("0");
    QString ResType = QStringLiteral("0");
    QString Author;
    QString Museum;

    bool operator==(const SearchCriteria &) const = default;
};

// The query for the criteria. Author and museum are quoted, so any text finds its rows.
QString SearchSQL(const SearchCriteria &criteria);

// One line of the result list: the icon's name, the text and the tag (a ResourceID).
struct SearchListItem
{
    QString icon;
    QString text;
    QString tag;
};

// The one text source that the list shows with the inscription icon, by its Book.
inline constexpr QStringView InscriptionBook = u"Inscriptiones Graeca,e, XII 5, 444";

// The list the rows of a search make, in their order. A row of a kind that the list does
// not show (sound, video) makes no item and leaves the item before it as it was: real
// content has such rows, and each item must still open its own source.
struct SearchList
{
    QList<SearchListItem> items;
};

// Lets the database hand the rows of a search in the list's order without sorting them at
// every search: an index in that order, built once on a content read into memory (a Jet
// file always is). A content read from its file as it is, which nothing may write, is
// left as it is and sorts per search. Returns whether the index is there.
bool PrepareSearchOrder(content::Database &db);

// Reads `rs` from its first row.
SearchList SearchListItems(content::Recordset &rs);

// Runs the query for the criteria on `db` and lists its rows. Query errors are thrown as
// platform::RuntimeError.
SearchList Search(content::Database &db, const SearchCriteria &criteria);

// The width of the list's one column for a list `listWidth` twips wide with `itemCount`
// items: more than 8 leave room for the scroll bar.
constexpr int ResultColumnWidth(int listWidth, int itemCount)
{
    return itemCount > 8 ? listWidth - 315 : listWidth - 90;
}

} // namespace finding
