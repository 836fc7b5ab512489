#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

namespace content::sqlite {
class Connection;
}

// The importer's side of the Jet reader's messages (jetreaderprocess.h). The reader runs
// libmdb on a file that may be damaged or made to mislead, so what it sends is read as
// outside input: any bytes, cut anywhere, end in the database or in a run-time error, in
// time and memory bounded by what was sent and by `maxData`.
namespace content::jet {

class ReaderMessages
{
public:
    // Called with rows done and rows in all, always 0 <= done <= total <= INT32_MAX
    // (larger counts come scaled down together); false cancels.
    using Progress = std::function<bool(qint64 done, qint64 total)>;

    // `maxData` is the largest database the reader may announce.
    ReaderMessages(const QString &path, qint64 maxData, Progress progress);

    // Takes the next bytes as they come from the reader. Throws platform::RuntimeError:
    // 3343 on bytes that break the protocol, 3059 when the progress callback cancels.
    void take(const char *bytes, qsizetype size);

    // A beat while the reader is quiet: the last progress again, so the caller can cancel
    // (3059). Nothing before the first progress.
    void beat();

    // The reader has ended with the wait status given: the database it sent, whole; or
    // 3001 for the invalid argument it reported, 3343 for anything else.
    QByteArray finish(int waitStatus);

private:
    void report(qint64 done, qint64 total);
    // Takes whole messages off the front of m_buffer; false when the next is not whole.
    bool takeMessage(qsizetype &at);

    QString m_path;
    qint64 m_maxData;
    Progress m_progress;
    QByteArray m_buffer;
    QByteArray m_data;
    qint64 m_dataLength = -1;
    int m_errorNumber = 0;
    qint64 m_lastDone = 0;
    qint64 m_lastTotal = 0;
    bool m_reported = false;
};

// What the reader sent, opened as a new database in memory with the Greek text rule and
// checked as any other file would be. Throws platform::RuntimeError 3343.
std::unique_ptr<sqlite::Connection> openReaderDatabase(const QString &path, const QByteArray &data);

} // namespace content::jet
