#include "jetreaderprocess.h"

#include "contenterrors.h"
#include "jetreader.h"

#include <sqlite3.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace content::jet {

namespace {

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

bool readAll(int fd, QByteArray &out)
{
    char chunk[65536];
    for (;;) {
        const ssize_t n = ::read(fd, chunk, sizeof chunk);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (n == 0)
            return true;
        out.append(chunk, n);
    }
}

template<typename T> void append(QByteArray &out, T value)
{
    out.append(reinterpret_cast<const char *>(&value), sizeof value);
}

// Keeps a damaged file from taking the machine's memory: the reader may grow by a
// bounded amount beyond what it has once the file is read in.
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

QString existing(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable() ? info.absoluteFilePath() : QString();
}

} // namespace

int runReaderProcess(int argc, char **argv)
{
    if (argc > 2)
        return protocol::ExitUsage;
    const QByteArray codePage = argc == 2 ? QByteArray(argv[1]) : QByteArray();

    // No core files: a crash here is an answer, reported by the importer.
    struct rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    prctl(PR_SET_DUMPABLE, 0);
    const int out = ::dup(STDOUT_FILENO);
    if (out < 0)
        return protocol::ExitWriteFailed;
    const int devNull = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (devNull >= 0) {
        dup2(devNull, STDOUT_FILENO);
        dup2(devNull, STDERR_FILENO);
    }

    QByteArray bytes;
    if (!readAll(STDIN_FILENO, bytes))
        return protocol::ExitUsage;
    limitMemory();

    int status = 0;
    sqlite3 *db = nullptr;
    try {
        if (sqlite3_open_v2(":memory:", &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr)
            != SQLITE_OK)
            throw ReadError {errors::UnrecognizedFormat, QString()};
        readJetInto(bytes, codePage, db, [out](qint64 done, qint64 total) {
            QByteArray msg;
            msg.append(protocol::Progress);
            append(msg, done);
            append(msg, total);
            if (!writeAll(out, msg.constData(), size_t(msg.size())))
                _exit(protocol::ExitWriteFailed);
        });
        sqlite3_int64 size = 0;
        unsigned char *data = sqlite3_serialize(db, "main", &size, 0);
        if (!data)
            throw ReadError {errors::UnrecognizedFormat, QString()};
        QByteArray msg;
        msg.append(protocol::Data);
        append(msg, qint64(size));
        if (!writeAll(out, msg.constData(), size_t(msg.size())) || !writeAll(out, data, size_t(size)))
            status = protocol::ExitWriteFailed;
        sqlite3_free(data);
    } catch (const ReadError &e) {
        const QByteArray text = e.description.toUtf8();
        QByteArray msg;
        msg.append(protocol::Error);
        append(msg, qint32(e.number));
        append(msg, qint32(text.size()));
        msg.append(text);
        writeAll(out, msg.constData(), size_t(msg.size()));
        status = protocol::ExitReadError;
    } catch (...) {
        status = protocol::ExitReadError;
    }
    sqlite3_close(db);
    ::close(out);
    return status;
}

QString readerProgram()
{
    const QString name = QStringLiteral("tremidia-jet-reader");
    const QString fromEnvironment = qEnvironmentVariable("TREMIDIA_JET_READER");
    if (!fromEnvironment.isEmpty())
        return existing(fromEnvironment);
    QString ownFolder;
    if (QCoreApplication::instance())
        ownFolder = QCoreApplication::applicationDirPath();
    else
        ownFolder = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).absolutePath();
    const QStringList candidates {
        ownFolder + QStringLiteral("/../libexec/tremidia/") + name,
        ownFolder + u'/' + name,
        QStringLiteral(TREMIDIA_BUILD_LIBEXEC_DIR "/") + name,
        QStringLiteral(TREMIDIA_INSTALL_LIBEXEC_DIR "/") + name,
    };
    for (const QString &candidate : candidates) {
        const QString found = existing(candidate);
        if (!found.isEmpty())
            return QDir::cleanPath(found);
    }
    return QString();
}

} // namespace content::jet
