#include "hotwordlocator.h"

#include "colhotwords.h"
#include "hotwordtextmodel.h"
#include "phrasesearch.h"

#include <logging.h>

namespace hotwords {

void FindHotWord(HotWordTextModel &rtb, const QString &phrase)
{
    int start = 1;
    for (;;) {
        const int result = rtb.search().InStr(start, phrase);
        if (result == 0)
            return;
        // The caret goes just behind the occurrence's first character, so the colour
        // read is that character's.
        rtb.setSelStart(result);
        const std::optional<quint32> color = rtb.SelColor();
        if (color && *color == 0) {
            // One character on, not one phrase: overlapping occurrences are tried too.
            start = result + 1;
            continue;
        }
        rtb.setSelStart(result - 1);
        rtb.setSelLength(int(phrase.size()));
        return;
    }
}

void FillHotWords(HotWordTextModel &rtb, colHotWords &words)
{
    try {
        for (CHotWord &word : words) {
            FindHotWord(rtb, word.ExactPhrase());
            // Read whatever the selection now is: a phrase painted in two colours reads
            // Null here and stays unlocated, though the search stopped on it.
            const std::optional<quint32> color = rtb.SelColor();
            if (color && *color != 0) {
                word.setFirst(rtb.SelStart());
                word.setLast(word.First() + qint32(word.ExactPhrase().size()));
                rtb.setSelStart(0);
                rtb.setSelLength(0);
            }
        }
    } catch (...) {
        // A failing record ends the locating; what was located so far stands.
        platform::logCurrentPassedOver(std::source_location::current());
    }
}

CHotWord *HitHotWord(const colHotWords &words, int place)
{
    for (CHotWord &word : words) {
        if (word.First() <= place && place <= word.Last())
            return &word;
    }
    return nullptr;
}

} // namespace hotwords
