#pragma once

#include "sourcerow.h"

#include <optional>

class Session;
class SourceViewer;
namespace content {
class Database;
}

// The row of the resource, in one query for that one row; nothing when there is none.
std::optional<SourceRow> findSourceRow(content::Database &database, qint32 resourceID);
// The same, raising the content's "no current record" when there is none.
SourceRow readSourceRow(content::Database &database, qint32 resourceID);

// How a source is opened, when not in a viewer of its own from the session.
struct OpenSourceWay
{
    // The viewer to load and show: a tile's own, handed its row when it was made.
    SourceViewer *viewer = nullptr;
    // The search list opens it: closing the viewer gives the list its item back.
    bool fromSearchList = false;
};

// Opens a source, the same way from a tile, the resource search and the text search:
// hands the row on to a viewer of its kind made through the session, loads it (a map:
// its picture from the data folder, its caption and scroll bars) and shows it in the
// middle of the shell. Returns the viewer shown, or null when the program has no viewer
// of that kind. What the loading raises is raised on, and a viewer made here is then
// closed and gone.
SourceViewer *openSource(Session &session, const SourceRow &row, const OpenSourceWay &way = {});
// The same from the resource's number: its row read once, here.
SourceViewer *openSource(Session &session, qint32 resourceID, const OpenSourceWay &way = {});
