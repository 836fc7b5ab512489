#pragma once

#include <QList>
#include <QString>

namespace content {
class Database;
}

// The words a pupil can read of each source, as the viewers show them.
namespace fulltext {

struct Source
{
    qint32 resourceID = 0;
    qint32 resTypeID = 0;
    QString book;
    QString caption;
    QString author;
    QString museum;
    QString lezanda;
    QString textPath;

    // The text of the search list's item: the book of a text, the caption of the rest.
    QString title() const;
    // The rich-text file below the data folder, or an empty string for a kind without one.
    QString textFile(const QString &dataFolder) const;
};

// Every source the search list shows (texts, photographs, maps), in the list's order:
// by type, book and caption, as the content compares text. Errors of the content are
// thrown as platform::RuntimeError.
QList<Source> readSources(content::Database &db);

// The plain text of the source's rich-text file, as the RTF reader gives it to the
// viewers; an empty string for a missing or unreadable file.
QString readSourceText(const QString &path);

// The text of a field that may hold rich text (a caption): its words as shown.
QString plainField(const QString &field);

// The title of a source as a list shows it: its title's words, without rich text.
QString listTitle(const Source &source);

} // namespace fulltext
