#include "textquery.h"

#include "wordfold.h"

#include <QHash>

namespace fulltext {

QueryWord QueryWord::of(const QString &folded)
{
    const QString stem = greekStem(folded);
    if (stem.size() >= MinStemLetters)
        return {folded, stem, folded};
    if (!stem.isEmpty())
        return {folded, QString(), folded.left(MinStemLetters)};
    return {folded, QString(), folded};
}

bool QueryWord::matches(const QString &foldedWord, const QString &wordStem) const
{
    if (foldedWord.startsWith(begins))
        return true;
    return !stem.isEmpty() && wordStem == stem;
}

namespace {

Phrase phraseOf(QStringView text)
{
    Phrase phrase;
    forEachWord(
        text, [&](qsizetype, qsizetype, const QString &folded) { phrase.append(QueryWord::of(folded)); });
    return phrase;
}

} // namespace

TextQuery parseQuery(QStringView text)
{
    TextQuery query;
    // Quotes pair from the left; an odd last one is no quote at all.
    QList<qsizetype> quotes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == u'"')
            quotes.append(i);
    }
    if (quotes.size() % 2 == 1)
        quotes.removeLast();
    qsizetype from = 0;
    auto addLoose = [&](QStringView part) {
        for (const QueryWord &word : phraseOf(part))
            query.phrases.append(Phrase {word});
    };
    for (qsizetype q = 0; q < quotes.size(); q += 2) {
        addLoose(text.mid(from, quotes.at(q) - from));
        const Phrase phrase = phraseOf(text.mid(quotes.at(q) + 1, quotes.at(q + 1) - quotes.at(q) - 1));
        if (!phrase.isEmpty())
            query.phrases.append(phrase);
        from = quotes.at(q + 1) + 1;
    }
    addLoose(text.mid(from));
    return query;
}

QList<Hit> findHits(QStringView text, const TextQuery &query)
{
    const QList<Word> all = words(text);
    QHash<QString, QString> stems;
    QList<QString> wordStems;
    wordStems.reserve(all.size());
    for (const Word &w : all) {
        auto it = stems.find(w.folded);
        if (it == stems.end())
            it = stems.insert(w.folded, greekStem(w.folded));
        wordStems.append(*it);
    }
    QList<bool> marked(all.size(), false);
    for (const Phrase &phrase : query.phrases) {
        for (qsizetype i = 0; i + phrase.size() <= all.size(); ++i) {
            bool whole = true;
            for (qsizetype j = 0; j < phrase.size() && whole; ++j)
                whole = phrase.at(j).matches(all.at(i + j).folded, wordStems.at(i + j));
            if (!whole)
                continue;
            for (qsizetype j = 0; j < phrase.size(); ++j)
                marked[i + j] = true;
        }
    }
    QList<Hit> hits;
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (marked.at(i))
            hits.append({all.at(i).start, all.at(i).length});
    }
    return hits;
}

ContextLine contextLine(QStringView text, const TextQuery &query, int width)
{
    const QList<Hit> hits = findHits(text, query);
    qsizetype from = 0;
    if (!hits.isEmpty()) {
        // Some words before the first hit, so that it reads in its place.
        from = std::max<qsizetype>(0, hits.front().start - width / 3);
        while (from > 0 && !text.at(from - 1).isSpace())
            --from;
    }
    qsizetype to = std::min(text.size(), from + width);
    if (to < text.size()) {
        qsizetype cut = to;
        while (cut > from && !text.at(cut).isSpace())
            --cut;
        if (cut > from)
            to = cut;
    }
    ContextLine line;
    if (from > 0)
        line.text += u'…';
    const qsizetype shift = line.text.size() - from;
    QString body = text.mid(from, to - from).toString();
    for (QChar &c : body) {
        if (c == u'\n' || c == u'\r' || c == u'\t' || c == QChar(0x2028) || c == QChar(0x0B))
            c = u' ';
    }
    line.text += body;
    if (to < text.size())
        line.text += u'…';
    for (const Hit &h : hits) {
        if (h.start >= from && h.start + h.length <= to)
            line.hits.append({h.start + shift, h.length});
    }
    return line;
}

} // namespace fulltext
