#pragma once

// Damage to a text search index file as a failing disk or a power cut leaves it: bytes
// overwritten in place, SQLite's own pages left whole, or the file cut short.

#include <sqliteconnection.h>

#include <QFile>
#include <QString>

#include <sqlite3.h>

namespace indexdamage {

using namespace Qt::StringLiterals;

inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writes `bytes` over the file's own bytes at `offset`.
inline bool overwrite(const QString &path, qint64 offset, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && file.seek(offset) && file.write(bytes) == bytes.size();
}

// The place of `needle` in the file, when it stands there once; -1 otherwise.
inline qint64 placeOnce(const QString &path, const QByteArray &needle)
{
    const QByteArray data = bytesOf(path);
    const qsizetype at = data.indexOf(needle);
    return at >= 0 && data.lastIndexOf(needle) == at ? at : -1;
}

// Overwrites the stored postings of one term (its longest that fit a page) with 0xFF;
// returns the term, or an empty string when its postings were not found once.
inline QString overwriteTermPostings(const QString &cacheFile)
{
    QString term;
    QByteArray postings;
    {
        content::sqlite::Connection db(cacheFile, SQLITE_OPEN_READONLY);
        auto st
            = db.prepare(u"SELECT term, docs, positions FROM terms WHERE length(docs) + length(positions) "
                         "BETWEEN 8 AND 1000 ORDER BY length(docs) + length(positions) DESC LIMIT 1"_s);
        if (!st->step())
            return QString();
        term = st->value(0).toString();
        postings = st->value(1).toByteArray() + st->value(2).toByteArray();
    }
    const qint64 at = placeOnce(cacheFile, postings);
    return at >= 0 && overwrite(cacheFile, at, QByteArray(postings.size(), char(0xFF))) ? term : QString();
}

// Swaps the first two letters of a source's title in the file: every count and offset
// still points inside, only the words changed. A text's title is its book, which follows
// it; a photograph's book is empty.
inline bool swapTitleLetters(const QString &cacheFile, bool ofAText = true)
{
    QString title;
    QString book;
    {
        content::sqlite::Connection db(cacheFile, SQLITE_OPEN_READONLY);
        auto st = db.prepare(
            u"SELECT title, book FROM docs WHERE length(title) > 2 AND %1 ORDER BY doc LIMIT 1"_s.arg(
                ofAText ? u"title = book"_s : u"coalesce(book, '') = ''"_s));
        if (!st->step())
            return false;
        title = st->value(0).toString();
        book = st->value(1).toString();
    }
    if (title.at(0) == title.at(1))
        return false;
    const qint64 at = placeOnce(cacheFile, title.toUtf8() + book.toUtf8());
    const QString swapped = QString(title.at(1)) + title.at(0) + title.mid(2);
    return at >= 0 && overwrite(cacheFile, at, swapped.toUtf8());
}

// What a power cut leaves of a file whose name reached the disk before its data: its
// first part, then zeros.
inline bool zeroSecondHalf(const QString &path)
{
    const qint64 size = QFile(path).size();
    return overwrite(path, size / 2, QByteArray(size - size / 2, '\0'));
}

} // namespace indexdamage
