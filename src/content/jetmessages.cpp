#include "jetmessages.h"

#include "contenterrors.h"
#include "greekcollation.h"
#include "jetreaderprocess.h"
#include "sqliteconnection.h"

#include <logging.h>

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <sys/wait.h>

namespace content::jet {

namespace {

constexpr qsizetype ProgressSize = 1 + 8 + 8;
constexpr qsizetype ErrorHeadSize = 1 + 4 + 4;
constexpr qsizetype DataHeadSize = 1 + 8;
constexpr qint32 MaxErrorText = 1 << 20;
constexpr qint64 MaxCount = std::numeric_limits<qint32>::max();

template<typename T> T fieldAt(const QByteArray &buffer, qsizetype at)
{
    T value = 0;
    std::memcpy(&value, buffer.constData() + at, sizeof value);
    return value;
}

} // namespace

ReaderMessages::ReaderMessages(const QString &path, qint64 maxData, Progress progress)
    : m_path(path)
    , m_maxData(maxData)
    , m_progress(std::move(progress))
{
}

void ReaderMessages::take(const char *bytes, qsizetype size)
{
    if (size <= 0)
        return;
    if (m_dataLength >= 0) {
        // Nothing follows the database; a reader that sends more is not the reader.
        if (size > m_dataLength - m_data.size())
            throw errors::unrecognizedFormat(m_path);
        m_data.append(bytes, size);
        return;
    }
    m_buffer.append(bytes, size);
    // Whole messages are taken off the front in one pass and the rest moved once, so
    // that many small messages in one read cost no more than their bytes.
    qsizetype at = 0;
    while (m_dataLength < 0 && at < m_buffer.size() && takeMessage(at)) { }
    if (m_dataLength >= 0) {
        if (m_buffer.size() - at > m_dataLength)
            throw errors::unrecognizedFormat(m_path);
        // The database grows as it comes, not by what the reader announced.
        m_data = m_buffer.mid(at);
        m_buffer.clear();
    } else {
        m_buffer.remove(0, at);
    }
}

bool ReaderMessages::takeMessage(qsizetype &at)
{
    const qsizetype available = m_buffer.size() - at;
    const char tag = m_buffer.at(at);
    if (tag == protocol::Progress) {
        if (available < ProgressSize)
            return false;
        const auto done = fieldAt<qint64>(m_buffer, at + 1);
        const auto total = fieldAt<qint64>(m_buffer, at + 9);
        at += ProgressSize;
        report(done, total);
        return true;
    }
    if (tag == protocol::Error) {
        if (available < ErrorHeadSize)
            return false;
        const auto number = fieldAt<qint32>(m_buffer, at + 1);
        const auto length = fieldAt<qint32>(m_buffer, at + 5);
        if (length < 0 || length > MaxErrorText)
            throw errors::unrecognizedFormat(m_path);
        if (available < ErrorHeadSize + length)
            return false;
        m_errorNumber = number;
        at += ErrorHeadSize + length;
        return true;
    }
    if (tag == protocol::Data) {
        if (available < DataHeadSize)
            return false;
        m_dataLength = fieldAt<qint64>(m_buffer, at + 1);
        if (m_dataLength < 0 || m_dataLength > m_maxData)
            throw errors::unrecognizedFormat(m_path);
        at += DataHeadSize;
        return true;
    }
    throw errors::unrecognizedFormat(m_path);
}

void ReaderMessages::report(qint64 done, qint64 total)
{
    // The reader counts rows as the file's tables declare them, and a damaged file may
    // declare anything: counts below zero are no counts, rows done beyond the whole are
    // the whole, and counts beyond what a progress bar can divide are scaled down.
    if (done < 0 || total < 0)
        throw errors::unrecognizedFormat(m_path);
    done = std::min(done, total);
    if (total > MaxCount) {
        const qint64 scale = total / MaxCount + 1;
        done /= scale;
        total /= scale;
    }
    m_lastDone = done;
    m_lastTotal = total;
    m_reported = true;
    if (m_progress && !m_progress(done, total))
        throw errors::cancelled();
}

void ReaderMessages::beat()
{
    if (m_reported && m_progress && !m_progress(m_lastDone, m_lastTotal))
        throw errors::cancelled();
}

QByteArray ReaderMessages::finish(int waitStatus)
{
    if (m_errorNumber != 0) {
        if (m_errorNumber == errors::InvalidArgument)
            throw errors::invalidArgument();
        throw errors::unrecognizedFormat(m_path);
    }
    const bool whole = m_dataLength >= 0 && m_data.size() == m_dataLength;
    if (!whole || !WIFEXITED(waitStatus) || WEXITSTATUS(waitStatus) != 0) {
        if (WIFSIGNALED(waitStatus))
            qCWarning(lcContent) << "the Jet reader ended on signal" << WTERMSIG(waitStatus) << "reading"
                                 << m_path;
        else
            qCWarning(lcContent) << "the Jet reader ended with status" << WEXITSTATUS(waitStatus) << "reading"
                                 << m_path;
        throw errors::unrecognizedFormat(m_path);
    }
    return m_data;
}

std::unique_ptr<sqlite::Connection> openReaderDatabase(const QString &path, const QByteArray &data)
{
    auto connection = sqlite::Connection::openMemory();
    installGreekTextRules(connection->handle());
    auto *copy = static_cast<unsigned char *>(sqlite3_malloc64(sqlite3_uint64(data.size())));
    if (!copy)
        throw errors::unrecognizedFormat(path);
    std::memcpy(copy, data.constData(), size_t(data.size()));
    const int rc = sqlite3_deserialize(connection->handle(), "main", copy, data.size(), data.size(),
        SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
    if (rc != SQLITE_OK)
        throw errors::unrecognizedFormat(path);
    try {
        // What comes back from a reader that libmdb may have led astray is checked like
        // any other file.
        auto check = connection->prepare(QStringLiteral("PRAGMA quick_check"));
        if (!check->step() || check->value(0).toString() != u"ok")
            throw errors::unrecognizedFormat(path);
        check.reset();
        // Keys on text were ordered by the reader's plain rule; order them by the Greek one.
        connection->execute(QStringLiteral("REINDEX"));
    } catch (const sqlite::Error &) {
        throw errors::unrecognizedFormat(path);
    }
    return connection;
}

} // namespace content::jet
