#include "textstamps.h"

#include <sqliteconnection.h>

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>
#include <sys/stat.h>

#include <cstring>

namespace fulltext {

namespace {

enum Kind { File, Missing, Folder };

constexpr const char *kindNames[] = {"file", "missing", "folder"};

struct Stamp
{
    int kind = Missing;
    qint64 size = 0;
    qint64 mtime = 0;
};

// `path` in the file system's bytes. Something other than what was asked for (a folder
// where a file was, or the reverse) counts as missing.
Stamp stampOf(const char *path, bool folder)
{
    struct stat st
    {
    };
    if (::stat(path, &st) != 0 || (folder ? !S_ISDIR(st.st_mode) : !S_ISREG(st.st_mode)))
        return {};
    return {folder ? Folder : File, folder ? 0 : qint64(st.st_size),
        qint64(st.st_mtim.tv_sec) * 1'000'000'000 + st.st_mtim.tv_nsec};
}

} // namespace

void TextStamps::note(const QString &path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    const Stamp stamp = stampOf(QFile::encodeName(absolute).constData(), false);
    m_rows.push_back({absolute, stamp.kind, stamp.size, stamp.mtime});
    if (stamp.kind != Missing)
        return;
    // A file put in place later, under any case of its name, changes the time of the
    // nearest folder that is there now.
    QString folder = absolute;
    for (;;) {
        const QString parent = QFileInfo(folder).absolutePath();
        if (parent == folder)
            return;
        folder = parent;
        const Stamp f = stampOf(QFile::encodeName(folder).constData(), true);
        if (f.kind != Folder)
            continue;
        if (!m_folders.contains(folder)) {
            m_folders.insert(folder);
            m_rows.push_back({folder, Folder, 0, f.mtime});
        }
        return;
    }
}

void TextStamps::write(content::sqlite::Connection &db) const
{
    db.execute(QStringLiteral("CREATE TABLE stamps (path TEXT, kind TEXT, size INTEGER, mtime INTEGER)"));
    auto insert = db.prepare(QStringLiteral("INSERT INTO stamps VALUES (?, ?, ?, ?)"));
    for (const Row &row : m_rows) {
        insert->reset();
        insert->bind(1, row.path);
        insert->bind(2, QString::fromLatin1(kindNames[row.kind]));
        insert->bind(3, row.kind == File ? QVariant(row.size) : QVariant());
        insert->bind(4, row.kind == Missing ? QVariant() : QVariant(row.mtime));
        insert->step();
    }
}

bool TextStamps::unchanged(content::sqlite::Connection &db)
{
    // Straight on the C interface: tens of thousands of rows, and the stored path is
    // already the file system's bytes (UTF-8, as Qt names files here).
    auto select = db.prepare(QStringLiteral("SELECT path, kind, size, mtime FROM stamps"));
    sqlite3_stmt *st = select->handle();
    while (select->step()) {
        const auto *path = reinterpret_cast<const char *>(sqlite3_column_text(st, 0));
        const auto *kindName = reinterpret_cast<const char *>(sqlite3_column_text(st, 1));
        if (!path || !kindName)
            return false;
        int kind = -1;
        for (int k = File; k <= Folder; ++k) {
            if (std::strcmp(kindName, kindNames[k]) == 0)
                kind = k;
        }
        if (kind < 0)
            return false;
        const Stamp now = stampOf(path, kind == Folder);
        if (now.kind != kind)
            return false;
        if (kind == File && now.size != sqlite3_column_int64(st, 2))
            return false;
        if (kind != Missing && now.mtime != sqlite3_column_int64(st, 3))
            return false;
    }
    return true;
}

} // namespace fulltext
