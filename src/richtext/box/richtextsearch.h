#pragma once

#include <QString>

// Text search of the rich-text box. Character places are indexes into the box's plain
// text, counted from 0.
namespace richtextbox {

// Option bits of RichTextBox::Find, added together.
inline constexpr int FindWholeWord = 2;
inline constexpr int FindMatchCase = 4;

// The text folded for a comparison that ignores case, one character for one so that
// places in the folded text are places in the original. Greek needs more than lower
// case: final sigma folds to sigma, and accented or diaeresis capitals to their small
// letters, so "ΤΕΙΧΟΣ" finds "τείχος" only where the accents agree, and "Ά" finds "ά".
QString foldCase(const QString &text);

// True when c counts as part of a word: letters, digits and the accents that combine
// with them. Everything else parts words.
bool isWordCharacter(QChar c);

// Searches haystack for needle, within [start, end) (end < 0 meaning the end of the
// text): the whole match must lie inside. With FindWholeWord the match has to stand
// between word boundaries. When the search ignores case, foldedHaystack must be
// foldCase(haystack) (the caller caches it); it is not read otherwise.
// Returns the place of the first match, or -1.
int findText(const QString &haystack, const QString &foldedHaystack, const QString &needle, int start,
    int end, int options);

} // namespace richtextbox
