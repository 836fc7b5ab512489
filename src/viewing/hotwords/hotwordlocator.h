#pragma once

#include <QString>

class CHotWord;
class HotWordTextModel;
class colHotWords;

// Where the hot words of a text lie, worked out each time the text is opened: each
// phrase is searched for from the start of the text, and only an occurrence whose first
// character is painted (any colour but black) is taken.
namespace hotwords {

// Selects the first painted occurrence of phrase, by text comparison. When there is
// none the selection is left where the search left it: on the caret behind the first
// character of the last black occurrence, or untouched if the phrase is not there.
void FindHotWord(HotWordTextModel &rtb, const QString &phrase);

// Locates every record of the collection in order. A record is located when, after its
// search, the whole selection reads one colour other than black; the selection is then
// put back to the start. Otherwise First and Last stay 0, and the selection stays for
// the next record to read. An error ends the loop quietly; later records stay 0.
void FillHotWords(HotWordTextModel &rtb, colHotWords &words);

// The first record, in collection order, with First <= place <= Last. Records that were
// not located have both at 0 and so answer at place 0. nullptr for no hit.
CHotWord *HitHotWord(const colHotWords &words, int place);

} // namespace hotwords
