#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

namespace content::sqlite {
class Connection;
}

namespace content::jet {

struct ImportOptions
{
    QByteArray jet3CodePage;
    std::function<bool(qint64 done, qint64 total)> progress;
    // With no sign of life from the reader for this long, it is taken to be stuck.
    int stallTimeoutMs = 15000;
};

// Imports the Jet file whose bytes are given into a new in-memory SQLite database with
// the Greek text rule installed. The file is read by libmdb in the reader program, a
// process of its own (jetreaderprocess.h), so that a damaged file that would crash
// libmdb or make it loop ends as an error here; the reader sends progress and, at the
// end, the whole database. Throws
// platform::RuntimeError: 3343 for a file that cannot be read, 3059 when the progress
// callback cancels; 3051 when the reader program is missing or cannot start.
std::unique_ptr<sqlite::Connection> importJet(
    const QString &path, const QByteArray &bytes, const ImportOptions &options);

// The last import is kept, by the file's content, so that opening the same file again
// copies it instead of reading it anew. This forgets it (for measurements and tests).
void forgetLastImport();

} // namespace content::jet
