#pragma once

// Content for the search and index tests: the program's schema in memory, with Greek
// words whose dictionary order differs from the order of their code points, and texts
// that SQL would misread if they were not quoted.

#include "../hotwords/testcontent.h"

#include <QStringList>

namespace findingcontent {

using namespace Qt::StringLiterals;

// Words in the order a Greek dictionary gives: case, accents and final sigma do not
// count, so capitals and small letters mix.
inline QStringList dictionaryOrder()
{
    return {u"άγαλμα"_s, u"Αγορά"_s, u"ΑΓΡΟΣ"_s, u"θησαυρός"_s, u"ΘΗΣΕΑΣ"_s, u"όρος"_s, u"ορφανός"_s,
        u"Ωραίος"_s, u"ώρες"_s};
}

// The same words as they are stored: neither in order nor in code-point order.
inline QStringList storedOrder()
{
    return {u"ΘΗΣΕΑΣ"_s, u"ώρες"_s, u"Αγορά"_s, u"ορφανός"_s, u"άγαλμα"_s, u"Ωραίος"_s, u"θησαυρός"_s,
        u"ΑΓΡΟΣ"_s, u"όρος"_s};
}

// Authors and museums that break a query joined without quoting.
inline QStringList awkwardTexts()
{
    return {u"Μουσεί' Αρχαίας Αγοράς"_s, u"Ο \"Σοφός\" Συγγραφέας"_s, u"x' OR '1'='1"_s,
        u"'; DELETE FROM Resources; --"_s, u"Ο Σοφός"_s};
}

inline testcontent::Builder &resource(testcontent::Builder &b, qint32 id, qint32 type, const QVariant &book,
    const QVariant &caption, const QVariant &author = QVariant(), const QVariant &museum = QVariant(),
    qint32 place = 0, qint32 time = 0)
{
    return b.row(u"Resources"_s,
        {u"ResourceID"_s, u"ResTypeID"_s, u"Book"_s, u"Caption"_s, u"Author"_s, u"Museum"_s, u"PlaceID"_s,
            u"ChronologicalID"_s},
        {id, type, book, caption, author, museum, place, time});
}

// Text sources 100.. with the dictionary words as Book, in stored order; index terms
// 500.. with them as Oros, type 1; resources 300.. with the awkward texts as author and
// museum and captions; the catalogue tables with one entry each.
inline void fill(testcontent::Builder &b)
{
    const QStringList words = storedOrder();
    for (qsizetype i = 0; i < words.size(); ++i) {
        resource(b, qint32(100 + i), 2, words.at(i), QVariant());
        b.term(qint32(500 + i), words.at(i), u"Εξήγηση "_s + words.at(i), 1);
    }
    const QStringList awkward = awkwardTexts();
    for (qsizetype i = 0; i < awkward.size(); ++i)
        resource(b, qint32(300 + i), 1, QVariant(), awkward.at(i), awkward.at(i), awkward.at(i), 7, 8);
    b.row(u"ResTypes"_s, {u"ResTypeID"_s, u"ResType"_s}, {1, u"Φωτογραφία"_s});
    b.row(u"ResTypes"_s, {u"ResTypeID"_s, u"ResType"_s}, {2, u"Κείμενο"_s});
    b.row(u"Places"_s, {u"PlaceID"_s, u"Place"_s}, {7, u"Αθήνα"_s});
    b.row(u"Chronologicals"_s, {u"ChronologicalID"_s, u"Chronological"_s}, {8, u"Κλασική εποχή"_s});
    b.row(u"Keywords"_s, {u"KeywordID"_s, u"Keyword"_s}, {9, u"Δημοκρατία"_s});
    b.row(u"RelKeywordResource"_s, {u"KeywordID"_s, u"ResourceID"_s}, {9, 300});
    b.row(u"RelKeywordResource"_s, {u"KeywordID"_s, u"ResourceID"_s}, {9, 302});
    b.row(u"EuretirioTypes"_s, {u"EuretirioTypeID"_s, u"EuretirioType"_s}, {1, u"Λέξεις"_s});
}

// In memory, or written to `file` as well when one is given.
inline std::unique_ptr<content::Database> build(const QString &file = QString())
{
    testcontent::Builder b(file);
    fill(b);
    return b.database();
}

} // namespace findingcontent
