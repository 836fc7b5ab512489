#pragma once

#include <QString>

#include <string_view>

struct sqlite3;

// Text comparison as the content's database engine did it: by the letters first, with
// case ignored and final sigma equal to sigma; accents only break ties between words
// that are otherwise the same; Latin script sorts before Greek. One rule serves `=`,
// DISTINCT and ORDER BY on text.
namespace content {

// <0, 0, >0.
int compareText(QStringView a, QStringView b);

// The rule as the database runs it, on UTF-8 (<0, 0, >0): the same order as compareText.
// Texts whose first different base letters differ are ordered by those letters without
// asking ICU; lettersDecide tells whether a pair is ordered so.
int compareUtf8(std::string_view a, std::string_view b);
bool lettersDecide(std::string_view a, std::string_view b);

// Installs the rule on a connection under the name NOCASE, replacing SQLite's own
// ASCII-only NOCASE, so that every text column declared COLLATE NOCASE compares this
// way. Returns false if SQLite refused.
bool installGreekNocase(sqlite3 *db);

// Replaces SQLite's LIKE, which folds the case of ASCII letters only, with one that folds
// Greek case and final sigma too (accents still count), with the wildcards % and _ and an
// optional ESCAPE character. Returns false if SQLite refused.
bool installGreekLike(sqlite3 *db);

// Both of the above: what every content connection gets.
bool installGreekTextRules(sqlite3 *db);

// LIKE's matching, for tests: `pattern` with % and _, `escape` or a null QChar.
bool likeMatches(QStringView pattern, QStringView text, QChar escape = QChar());

} // namespace content
