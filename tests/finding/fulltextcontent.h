#pragma once

// A small content on disk for the text search: texts with the forms a pupil may type,
// rich-text files in a code page, with Unicode escapes and a word split by a colour, a
// text whose file is missing, and words of a short stem.

#include "../hotwords/testcontent.h"

#include <fulltextindex.h>

#include <QDir>
#include <QFile>

namespace fulltextcontent {

using namespace Qt::StringLiterals;

// The sources found, by ResourceID, best first.
inline QList<qint32> ids(const QList<fulltext::Result> &results)
{
    QList<qint32> out;
    for (const fulltext::Result &r : results)
        out << r.resourceID;
    return out;
}

inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

// RTF text with every letter beyond ASCII as a Unicode escape, as word processors write it.
inline QByteArray rtfOf(const QString &text)
{
    QByteArray out;
    for (const QChar c : text) {
        if (c.unicode() < 0x80)
            out += char(c.unicode());
        else
            out += "\\u" + QByteArray::number(c.unicode()) + '?';
    }
    return out;
}

inline void addResource(testcontent::Builder &b, qint32 id, qint32 type, const QVariant &book,
    const QVariant &caption, const QVariant &textPath = QVariant(), const QVariant &author = QVariant(),
    const QVariant &lezanda = QVariant())
{
    b.row(u"Resources"_s,
        {u"ResourceID"_s, u"ResTypeID"_s, u"Book"_s, u"Caption"_s, u"TextPath"_s, u"Author"_s, u"Lezanda"_s},
        {id, type, book, caption, textPath, author, lezanda});
}

// Writes content.sqlite and its piges folder into `folder`; returns the content file.
inline QString make(const QString &folder)
{
    QDir(folder).mkpath(u"piges"_s);
    const QString db = folder + u"/content.sqlite"_s;
    testcontent::Builder b(db);
    addResource(b, 1, 2, u"Θουκυδίδης"_s, QVariant(), u"t1.rtf"_s);
    writeFile(folder + u"/piges/t1.rtf"_s,
        rtfOf(u"{\\rtf1\\ansi\\deff0 Τότε ο ναός της Δήλου καθαρίστηκε.\\par Οι Δήλιοι έφυγαν με "
              "τις τριήρεις.\\par}"_s));
    addResource(b, 2, 2, u"Ναυτικά"_s, QVariant(), u"t2.rtf"_s);
    writeFile(folder + u"/piges/t2.rtf"_s,
        rtfOf(
            u"{\\rtf1\\ansi Το ναυτικό των Αθηναίων και ο ναυτικός νόμος των θαλασσών, για να πλέουν.\\par}"_s));
    // The file of this one is missing: its catalogue words still count.
    addResource(b, 3, 2, u"Ναοί"_s, QVariant(), u"missing.rtf"_s, u"Παυσανίας"_s);
    addResource(
        b, 4, 1, QVariant(), u"Ο ναός του Απόλλωνα"_s, QVariant(), QVariant(), u"Το ιερό της Δήλου"_s);
    // Code page 1253 bytes, Unicode escapes, a word split by a colour change, a line break.
    addResource(b, 5, 2, u"Λόγοι"_s, QVariant(), u"T5.RTF"_s);
    writeFile(folder + u"/piges/t5.rtf"_s,
        QByteArray("{\\rtf1\\ansi\\ansicpg1253{\\colortbl;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}"
                   "\\'ed\\'e1\\'fc\\'f2 NOT {\\cf1 \\'c4\\'de}{\\cf2 \\'eb\\'ef\\'f2} OR * - -- x'y "
                   "\\u949?\\u955?\\u953?\\u940?\\line ")
            + rtfOf(u"Ἀπόλλων\\par}"_s));
    // Words whose Snowball stem is as short as the particle's: "ναι", "ναύς", "να".
    addResource(b, 7, 2, u"Χρησμοί"_s, QVariant(), u"t7.rtf"_s);
    writeFile(
        folder + u"/piges/t7.rtf"_s, rtfOf(u"{\\rtf1\\ansi Ναι, η ναύς έφυγε για να φέρει νερό.\\par}"_s));
    b.row(u"ResTypes"_s, {u"ResTypeID"_s, u"ResType"_s}, {1, u"Φωτογραφία"_s});
    b.row(u"ResTypes"_s, {u"ResTypeID"_s, u"ResType"_s}, {2, u"Κείμενο"_s});
    b.close();
    return db;
}

} // namespace fulltextcontent
