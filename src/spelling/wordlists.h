#pragma once

#include <QString>
#include <QStringList>

namespace content {
class Database;
}

namespace spelling {

// The pupil's own words: $XDG_DATA_HOME/tremidia/words.txt, or
// ~/.local/share/tremidia/words.txt; UTF-8, one word per line.
QString pupilWordsPath();
QStringList readPupilWords(const QString &path);
// Appends one word and syncs it to the disk before returning, so that a word the pupil
// added survives a power cut; the folder is made when missing. False when it could not
// be written.
bool appendPupilWord(const QString &path, const QString &word);

// The course's own words, which are never marked: the hot words' phrases (comments and
// index terms, as the texts write them), the index's terms, and the sources' titles,
// authors, places and keywords. A table the course lacks is passed over (logged).
QStringList readCourseWords(content::Database &database);

} // namespace spelling
