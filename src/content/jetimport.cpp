#include "jetimport.h"

#include "contenterrors.h"
#include "jetmessages.h"
#include "jetreader.h"
#include "jetreaderprocess.h"
#include "sqliteconnection.h"

#include <logging.h>

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace content::jet {

namespace {

// The reader program's input: the file's bytes in an anonymous file, so the reader can
// take them at its own pace and nothing here waits on a pipe while it starts.
int bytesAsFile(const QByteArray &bytes)
{
    const int fd = memfd_create("tremidia-jet", MFD_CLOEXEC);
    if (fd < 0)
        return -1;
    const char *p = bytes.constData();
    size_t size = size_t(bytes.size());
    while (size > 0) {
        const ssize_t n = ::write(fd, p, size);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            ::close(fd);
            return -1;
        }
        p += n;
        size -= size_t(n);
    }
    if (lseek(fd, 0, SEEK_SET) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
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

// Starts the reader program with the bytes as its input and a pipe as its output.
// posix_spawn, unlike a bare fork, is safe in a process that has threads (Qt's, the
// media player's): nothing of this process runs in the child before the reader starts.
std::unique_ptr<ChildProcess> startReader(
    const QString &path, const QByteArray &bytes, const QByteArray &codePage)
{
    const QString program = readerProgram();
    if (program.isEmpty()) {
        qCWarning(lcContent) << "the Jet reader program tremidia-jet-reader was not found";
        throw errors::cannotOpen(path);
    }
    const int input = bytesAsFile(bytes);
    if (input < 0)
        throw errors::cannotOpen(path);
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) {
        ::close(input);
        throw errors::cannotOpen(path);
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // A crash handler of this process (a test runner's, say, that starts a debugger)
    // has no business in the reader: a crash there is an answer, not an accident.
    sigset_t all;
    sigfillset(&all);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);

    const QByteArray file = QFile::encodeName(program);
    std::vector<char *> argv {const_cast<char *>(file.constData())};
    if (!codePage.isEmpty())
        argv.push_back(const_cast<char *>(codePage.constData()));
    argv.push_back(nullptr);
    pid_t pid = -1;
    const int rc = posix_spawn(&pid, file.constData(), &actions, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    ::close(input);
    ::close(fds[1]);
    if (rc != 0) {
        ::close(fds[0]);
        qCWarning(lcContent) << "the Jet reader" << program << "could not start:" << std::strerror(rc);
        throw errors::cannotOpen(path);
    }
    return std::make_unique<ChildProcess>(pid, fds[0]);
}

// Runs the reader on the bytes and returns the serialized database it sends back.
QByteArray readInChild(const QString &path, const QByteArray &bytes, const ImportOptions &options)
{
    const std::unique_ptr<ChildProcess> reader = startReader(path, bytes, options.jet3CodePage);
    ChildProcess &child = *reader;

    // The database comes back whole; more than a generous multiple of the file would be
    // a damaged file talking.
    const qint64 maxData = qint64(bytes.size()) * 16 + (qint64(64) << 20);
    ReaderMessages messages(path, maxData, options.progress);
    QElapsedTimer quiet;
    quiet.start();
    char chunk[65536];
    for (;;) {
        struct pollfd pfd = {child.fd(), POLLIN, 0};
        const int ready = poll(&pfd, 1, 200);
        if (ready < 0 && errno != EINTR)
            throw errors::unrecognizedFormat(path);
        if (ready <= 0) {
            if (quiet.elapsed() > options.stallTimeoutMs) {
                qCWarning(lcContent) << "the Jet reader went quiet for" << options.stallTimeoutMs << "ms on"
                                     << path << "and was stopped";
                throw errors::unrecognizedFormat(path);
            }
            // A beat even while a large table or memo keeps the reader quiet, so that the
            // caller's progress window stays alive and can cancel.
            messages.beat();
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
        messages.take(chunk, n);
    }
    return messages.finish(child.reap());
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

    return openReaderDatabase(path, data);
}

} // namespace content::jet
