#pragma once

#include <QSet>
#include <QString>

#include <vector>

namespace content::sqlite {
class Connection;
}

// What the index read of each text file: its size and time of change, or that it was
// not there. An index is current only while every text it looked for is as it was: a
// text corrected, removed or put in place later makes it stale. A missing file also
// stamps the folder it would appear in, so that it is seen whatever case its name
// takes. Checking costs one stat per file, no reading.
//
//   stamps(path, kind, size, mtime)  kind 'file', 'missing' or 'folder'; mtime in ns
namespace fulltext {

class TextStamps
{
public:
    // Notes a file as it is now; called before the file is read, so that a change made
    // while the index is built makes it stale.
    void note(const QString &path);

    // Writes what was noted into the index database, in its own table.
    void write(content::sqlite::Connection &db) const;

    // True when every file the index noted is still as it was. False for an index
    // without the table.
    static bool unchanged(content::sqlite::Connection &db);

private:
    struct Row
    {
        QString path;
        int kind = 0;
        qint64 size = 0;
        qint64 mtime = 0;
    };
    std::vector<Row> m_rows;
    QSet<QString> m_folders;
};

} // namespace fulltext
