#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>

// The windows that the viewers open or answer to but that stand in other parts of the
// program: the index (opened by an index hot word) and the resource search (whose list
// item is ghosted while a viewer it opened is open). Those windows install their side
// here when they come; until then a viewer does nothing on their account.
namespace viewerlinks {

// Shows the index on the term's tab at the term, with its explanation and picture name.
using IndexOpener = std::function<void(
    qint32 indexType, const QString &term, const QString &explanation, const QString &pictureName)>;
void setIndexOpener(IndexOpener opener);
bool openIndex(qint32 indexType, const QString &term, const QString &explanation, const QString &pictureName);

// Clears Ghosted on the search list's item whose tag is the text given, if there is one.
using SearchItemUnghoster = std::function<void(const QString &tag)>;
void setSearchItemUnghoster(SearchItemUnghoster unghoster);
void unghostSearchItem(const QString &tag);

} // namespace viewerlinks
