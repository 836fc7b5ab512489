#pragma once

#include "database.h"

#include <QHash>
#include <QStringList>
#include <QVariant>

#include <string>
#include <vector>

// What a recordset holds: a snapshot of its rows, read whole when it was opened, with the
// names of its fields and, for a table, the indexes it can be ordered and sought by.
namespace content {

namespace sqlite {
class Connection;
}

struct RecordsetSource
{
    bool isTable = false;
    QString table; // the table's name as the file spells it
    QString sql; // what SQLite runs
    QString text; // what the caller gave
};

// A table's name (alone, or in brackets) opens that table; anything else is SQL in the
// content's dialect.
RecordsetSource resolveRecordsetSource(
    sqlite::Connection &db, const QStringList &tables, const QString &source);

// One value of a snapshot as SQLite gave it. Text and binary stay UTF-8 and raw bytes in
// the snapshot's one buffer until a field is read, so a wide query costs no string per
// value it never shows.
struct RecordsetCell
{
    enum Kind : unsigned char { Null, Integer, Real, Text, Blob };
    union {
        qint64 integer = 0;
        double real;
        std::size_t offset; // of Text and Blob in Recordset::Private::bytes
    };
    int length = 0;
    Kind kind = Null;
};

struct Recordset::Private
{
    QStringList names; // as the fields are called: bare, or table.column where bare is ambiguous
    QStringList qualified; // table.column where SQLite knows the origin, else empty
    int columns = 0;
    long count = 0;
    std::vector<RecordsetCell> cells; // count rows of `columns` values
    std::string bytes; // the text and binary values, one after another
    long position = -1; // -1 before the first (BOF), count after the last (EOF)
    bool closed = false;
    bool tableType = false;
    bool forwardOnly = false;
    bool noMatch = false;
    QString indexName;
    std::vector<int> indexColumns;
    QHash<QString, std::vector<int>> indexes; // by lower-case name

    // As the engine reads it: Null as a null QVariant, integers as int where they fit,
    // else qlonglong; text as QString, binary as QByteArray.
    QVariant at(long row, int column) const;
};

// Runs the source and fills the snapshot; throws the engine's errors.
void readSnapshot(
    sqlite::Connection &db, const RecordsetSource &source, const QString &path, Recordset::Private *d);
// Finds the table's primary key (as "PrimaryKey") and its other indexes.
void readTableIndexes(sqlite::Connection &db, const QString &table, Recordset::Private *d);

// The order of values in an index and in Seek: Null first, then numbers, then text by
// the Greek rule, then binary. A text that reads as a number compares with numbers as one.
int compareValues(const QVariant &a, const QVariant &b);

} // namespace content
