#include "jetimport.h"

#include "contenterrors.h"
#include "greekcollation.h"
#include "jetreader.h"
#include "sqliteconnection.h"

#include <sqlite3.h>

#include <QCryptographicHash>
#include <QElapsedTimer>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <iconv.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace content::jet {

namespace {

// Messages from the reader: one tag byte, then the fields in host byte order (both ends
// are the same program).
constexpr char TagProgress = 'P'; // qint64 done, qint64 total
constexpr char TagError = 'E'; // qint32 number, qint32 length, UTF-8 text
constexpr char TagData = 'D'; // qint64 length, the serialized database

bool writeAll(int fd, const void *data, size_t size)
{
    const char *p = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t n = ::write(fd, p, size);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        p += n;
        size -= size_t(n);
    }
    return true;
}

template<typename T> void append(QByteArray &out, T value)
{
    out.append(reinterpret_cast<const char *>(&value), sizeof value);
}

// Keeps a damaged file from taking the machine's memory: the reader may grow by a
// bounded amount beyond what it has at the fork.
void limitMemory()
{
    long pages = 0;
    if (FILE *f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld", &pages) != 1)
            pages = 0;
        std::fclose(f);
    }
    const rlim_t current = rlim_t(pages) * rlim_t(sysconf(_SC_PAGESIZE));
    const rlim_t limit = current + (rlim_t(2) << 30);
    struct rlimit rl = {limit, limit};
    setrlimit(RLIMIT_AS, &rl);
}

[[noreturn]] void runReader(int fd, const QByteArray &bytes, const QByteArray &codePage)
{
    // No core files and no messages from libmdb: a crash here is reported by the parent.
    struct rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    prctl(PR_SET_DUMPABLE, 0);
    const int devNull = ::open("/dev/null", O_RDWR);
    if (devNull >= 0) {
        dup2(devNull, STDOUT_FILENO);
        dup2(devNull, STDERR_FILENO);
    }
    // A crash handler of the parent (a test runner's, say, that starts a debugger) has no
    // business in the reader: a crash here is an answer, not an accident.
    for (int sig : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL, SIGTRAP, SIGSYS, SIGPIPE, SIGTERM, SIGINT})
        signal(sig, SIG_DFL);
    sigset_t all;
    sigemptyset(&all);
    sigprocmask(SIG_SETMASK, &all, nullptr);
    limitMemory();

    int status = 0;
    sqlite3 *db = nullptr;
    try {
        if (sqlite3_open_v2(":memory:", &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr)
            != SQLITE_OK)
            throw ReadError {errors::UnrecognizedFormat, QString()};
        readJetInto(bytes, codePage, db, [fd](qint64 done, qint64 total) {
            QByteArray msg;
            msg.append(TagProgress);
            append(msg, done);
            append(msg, total);
            if (!writeAll(fd, msg.constData(), size_t(msg.size())))
                _exit(3);
        });
        sqlite3_int64 size = 0;
        unsigned char *data = sqlite3_serialize(db, "main", &size, 0);
        if (!data)
            throw ReadError {errors::UnrecognizedFormat, QString()};
        QByteArray msg;
        msg.append(TagData);
        append(msg, qint64(size));
        if (!writeAll(fd, msg.constData(), size_t(msg.size())) || !writeAll(fd, data, size_t(size)))
            status = 3;
        sqlite3_free(data);
    } catch (const ReadError &e) {
        const QByteArray text = e.description.toUtf8();
        QByteArray msg;
        msg.append(TagError);
        append(msg, qint32(e.number));
        append(msg, qint32(text.size()));
        msg.append(text);
        writeAll(fd, msg.constData(), size_t(msg.size()));
        status = 2;
    } catch (...) {
        status = 2;
    }
    // _exit: the parent's atexit handlers and static objects belong to the parent.
    _exit(status);
}

// Each reader is a fresh process; converters loaded here once are inherited by all of
// them instead of being loaded by each.
class PreloadedCodePages
{
public:
    PreloadedCodePages() = default;
    ~PreloadedCodePages()
    {
        for (iconv_t cd : m_loaded)
            iconv_close(cd);
    }
    Q_DISABLE_COPY_MOVE(PreloadedCodePages)

    void load(const QByteArray &name)
    {
        if (m_names.contains(name))
            return;
        m_names << name;
        const iconv_t cd = iconv_open("UTF-8", name.constData());
        if (cd != iconv_t(-1))
            m_loaded.push_back(cd);
    }

private:
    std::vector<iconv_t> m_loaded;
    QList<QByteArray> m_names;
};

void preloadCodePages(const QByteArray &extra)
{
    static PreloadedCodePages preloaded;
    for (const char *name : {"UCS-2LE", "CP1253", "CP1252"})
        preloaded.load(QByteArray(name));
    if (!extra.isEmpty())
        preloaded.load(extra);
}

class ChildProcess
{
public:
    ChildProcess(pid_t pid, int fd)
        : m_pid(pid)
        , m_fd(fd)
    {
    }
    ~ChildProcess()
    {
        if (m_fd >= 0)
            ::close(m_fd);
        if (m_pid > 0) {
            kill(m_pid, SIGKILL);
            reap();
        }
    }
    Q_DISABLE_COPY_MOVE(ChildProcess)

    int fd() const { return m_fd; }

    // Waits for the child to end; returns its wait status.
    int reap()
    {
        int status = 0;
        while (m_pid > 0 && waitpid(m_pid, &status, 0) < 0 && errno == EINTR) { }
        m_pid = -1;
        return status;
    }

private:
    pid_t m_pid;
    int m_fd;
};

// Runs the reader on the bytes and returns the serialized database it sends back.
QByteArray readInChild(const QString &path, const QByteArray &bytes, const ImportOptions &options)
{
    preloadCodePages(options.jet3CodePage);

    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0)
        throw errors::cannotOpen(path);
    const pid_t pid = fork();
    if (pid < 0) {
        ::close(fds[0]);
        ::close(fds[1]);
        throw errors::cannotOpen(path);
    }
    if (pid == 0) {
        ::close(fds[0]);
        runReader(fds[1], bytes, options.jet3CodePage);
    }
    ::close(fds[1]);
    ChildProcess child(pid, fds[0]);

    // The database comes back whole; more than a generous multiple of the file would be
    // a damaged file talking.
    const qint64 maxData = qint64(bytes.size()) * 16 + (qint64(64) << 20);
    QByteArray buffer;
    QByteArray data;
    bool haveData = false;
    qint64 dataLength = -1;
    int errorNumber = 0;
    QString errorText;
    qint64 lastDone = 0;
    qint64 lastTotal = 0;
    bool reported = false;
    QElapsedTimer quiet;
    quiet.start();
    char chunk[65536];
    for (;;) {
        struct pollfd pfd = {child.fd(), POLLIN, 0};
        const int ready = poll(&pfd, 1, 200);
        if (ready < 0 && errno != EINTR)
            throw errors::unrecognizedFormat(path);
        if (ready <= 0) {
            if (quiet.elapsed() > options.stallTimeoutMs)
                throw errors::unrecognizedFormat(path);
            // A beat even while a large table or memo keeps the reader quiet, so that the
            // caller's progress window stays alive and can cancel.
            if (reported && options.progress && !options.progress(lastDone, lastTotal))
                throw errors::cancelled();
            continue;
        }
        const ssize_t n = ::read(child.fd(), chunk, sizeof chunk);
        if (n < 0) {
            if (errno == EINTR || errno == EAGAIN)
                continue;
            throw errors::unrecognizedFormat(path);
        }
        if (n == 0)
            break;
        quiet.restart();
        if (dataLength >= 0) {
            data.append(chunk, n);
        } else {
            buffer.append(chunk, n);
        }
        // Take whole messages off the front of the buffer.
        while (dataLength < 0 && !buffer.isEmpty()) {
            const char tag = buffer.at(0);
            if (tag == TagProgress) {
                if (buffer.size() < 17)
                    break;
                qint64 done = 0, total = 0;
                std::memcpy(&done, buffer.constData() + 1, 8);
                std::memcpy(&total, buffer.constData() + 9, 8);
                buffer.remove(0, 17);
                lastDone = done;
                lastTotal = total;
                reported = true;
                if (options.progress && !options.progress(done, total))
                    throw errors::cancelled();
            } else if (tag == TagError) {
                if (buffer.size() < 9)
                    break;
                qint32 number = 0, length = 0;
                std::memcpy(&number, buffer.constData() + 1, 4);
                std::memcpy(&length, buffer.constData() + 5, 4);
                if (length < 0 || length > (1 << 20))
                    throw errors::unrecognizedFormat(path);
                if (buffer.size() < 9 + length)
                    break;
                errorNumber = number;
                errorText = QString::fromUtf8(buffer.constData() + 9, length);
                buffer.remove(0, 9 + length);
            } else if (tag == TagData) {
                if (buffer.size() < 9)
                    break;
                std::memcpy(&dataLength, buffer.constData() + 1, 8);
                if (dataLength < 0 || dataLength > maxData)
                    throw errors::unrecognizedFormat(path);
                data = buffer.mid(9);
                data.reserve(dataLength);
                buffer.clear();
            } else {
                throw errors::unrecognizedFormat(path);
            }
        }
        if (dataLength >= 0 && data.size() > dataLength)
            throw errors::unrecognizedFormat(path);
        if (dataLength >= 0 && data.size() == dataLength)
            haveData = true;
    }
    const int status = child.reap();
    if (errorNumber != 0) {
        if (errorNumber == errors::InvalidArgument)
            throw errors::invalidArgument();
        throw errors::unrecognizedFormat(path);
    }
    if (!haveData || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw errors::unrecognizedFormat(path);
    return data;
}

// The last import, by the file's content: the search window opens the database afresh,
// and a second open of the same file is then a copy in memory instead of a new import.
struct LastImport
{
    QByteArray key;
    QByteArray data;
};

LastImport &lastImport()
{
    static LastImport last;
    return last;
}

} // namespace

void forgetLastImport()
{
    lastImport() = LastImport();
}

std::unique_ptr<sqlite::Connection> importJet(
    const QString &path, const QByteArray &bytes, const ImportOptions &options)
{
    Header header;
    QString reason;
    if (!checkHeader(bytes, &header, &reason))
        throw errors::unrecognizedFormat(path);

    LastImport &last = lastImport();
    const QByteArray key
        = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256) + '\0' + options.jet3CodePage;
    QByteArray data;
    if (last.key == key) {
        data = last.data;
    } else {
        data = readInChild(path, bytes, options);
        last.key = key;
        last.data = data;
    }

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
