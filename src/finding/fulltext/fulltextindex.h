#pragma once

#include "sourcetexts.h"
#include "textquery.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace content::sqlite {
class Connection;
}

// The index of the words of every source. It lives in the user's cache folder
// ($XDG_CACHE_HOME/tremidia/, by default ~/.cache/tremidia/), one SQLite file per content
// file, keyed by the content file's path, size and modification time: the content folder
// is never written, and a content file that changed is indexed again. Building reads
// every rich-text file once and may take seconds on a large content, so callers run it
// away from the interface thread; an index once open answers a query in milliseconds.
namespace fulltext {

// Called with the sources done and the sources in all; returning false cancels the build.
using Progress = std::function<bool(qint64 done, qint64 total)>;

// The folder and the file of the index of a content file.
QString cacheFolder();
QString cacheFileFor(const QString &contentFile);

// True when the cache holds an index made from the content file as it is now, and from
// every text file it looked for as it is now (changed, put in place or removed since, it
// is not current).
bool isCurrent(const QString &contentFile);

// Builds the index of `sources` (rich-text files found below `dataFolder`) for the
// content file: written beside its final name and renamed when whole and on the disk, so
// that neither a reader nor a power cut ever leaves half an index. A missing or unreadable text file leaves its source with its
// catalogue words. Returns the cache file's path; throws platform::RuntimeError when
// the cache cannot be written or the build was cancelled (error 3059).
QString buildIndex(const QString &contentFile, const QList<Source> &sources, const QString &dataFolder,
    const Progress &progress = {});

// The index of the content file, built first when it is not current or its file is
// damaged. Throws platform::RuntimeError for a content file that cannot be read.
QString ensureIndex(const QString &contentFile, const Progress &progress = {});

// One source found, with what ranks it.
struct Result
{
    qint32 resourceID = 0;
    qint32 resTypeID = 0;
    QString title; // the search list's text
    QString book;
    int place = 0; // its place in the search list's order
    int titleWords = 0; // query words (or phrases) found in the title
    int hits = 0; // how many times they stand in the source
};

class Index
{
public:
    ~Index();
    Q_DISABLE_COPY_MOVE(Index)

    // Reads the index file into memory, all but the sources' texts, and checks it: a file
    // that is not whole, or points outside itself, or whose checksum differs, throws
    // platform::RuntimeError (3343) as a file that cannot be read does.
    static std::unique_ptr<Index> open(const QString &cacheFile);
    // The same for an index database already open (one built in memory), which the
    // index keeps.
    static std::unique_ptr<Index> read(std::unique_ptr<content::sqlite::Connection> db);

    int sourceCount() const;

    // The sources where every word and phrase of the query stands, the best first: more
    // of the query in the title, then more hits, then the search list's order. A query
    // with no word finds nothing.
    QList<Result> search(const TextQuery &query) const;
    QList<Result> search(QStringView text) const { return search(parseQuery(text)); }

    // All the words of a source as they were indexed: its title, its catalogue fields
    // and its text, one per line.
    QString sourceText(const Result &result) const;
    // A line around the first hit in the source, preferring its text to its title.
    ContextLine context(const Result &result, const TextQuery &query) const;

private:
    Index();
    struct Private;
    std::unique_ptr<Private> d;
};

// The index built as buildIndex builds it, and opened. Where the cache folder cannot be
// made or written (read-only, full), the same index is built in memory instead, with one
// warning in tremidia.content: the search works, the index is only not kept.
std::unique_ptr<Index> buildAndOpen(const QString &contentFile, const QList<Source> &sources,
    const QString &dataFolder, const Progress &progress = {});

// The index of `sources` built in a database in memory, and opened.
std::unique_ptr<Index> buildIndexInMemory(const QString &contentFile, const QList<Source> &sources,
    const QString &dataFolder, const Progress &progress = {});

// The index of the content file, opened: the cache's when current and intact, else built
// as buildAndOpen does. Throws platform::RuntimeError for a content file that cannot be read.
std::unique_ptr<Index> openIndex(const QString &contentFile, const Progress &progress = {});

// Opens the index file that isCurrent found current. A file that does not read or is
// damaged is logged (tremidia.content) and gives nullptr, for the caller to build it again:
// an index is never trusted beyond what Index::open checks.
std::unique_ptr<Index> openIntact(const QString &cacheFile);

} // namespace fulltext
