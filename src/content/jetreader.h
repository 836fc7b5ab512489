#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

struct sqlite3;

// Reading a Jet file (Jet 3, Jet 4, ACE) through mdbtools' libmdb into an SQLite
// database. libmdb trusts the file it is given, so a damaged file can make it crash or
// loop; callers run readJetInto() in a process of its own (see jetimport.h) and only the
// header check here runs in the program itself.
namespace content::jet {

struct Header
{
    int version = -1; // 0 Jet 3, 1 Jet 4, 2 and above ACE
    int pageSize = 0; // 2048 for Jet 3, 4096 otherwise
    qint64 pageCount = 0; // whole pages in the file
};

// True if the first bytes carry a Jet or ACE signature (the kind of the file, not yet
// whether it is whole).
bool hasJetSignature(const QByteArray &head);

// Checks what can be checked before handing the bytes to libmdb: signature, a version
// libmdb knows, whole pages, and the first pages present. Returns false and a reason.
bool checkHeader(const QByteArray &bytes, Header *header, QString *reason);

// Text as a Jet 4 file stores it: UCS-2, or the compressed form that starts with FF FE
// and switches between one and two bytes a character at each 00.
QString jet4Text(const unsigned char *data, size_t size);

// A date/time value (days since 1899-12-30, the fraction the time of day) as ISO 8601
// text; empty for a value outside the years the engine knows.
QString jetDateTime(double value);

// Why a read failed, by the engine's error number.
struct ReadError
{
    int number;
    QString description;
};

// Imports every user table in catalogue order into `db` (an empty connection), with its
// columns, rows, NULLs and primary key. Text columns are declared TEXT COLLATE NOCASE.
// `jet3CodePage` overrides the code page that a Jet 3 file declares. `report` is called
// with rows done and rows in all; throws ReadError.
void readJetInto(const QByteArray &bytes, const QByteArray &jet3CodePage, sqlite3 *db,
    const std::function<void(qint64 done, qint64 total)> &report);

} // namespace content::jet
