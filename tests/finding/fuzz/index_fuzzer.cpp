// libFuzzer target for the text search's index reader: the input is an index file, opened
// and searched as the program does. A file that does not pass the reader's checks must be
// turned away with the program's error; one that passes must answer every query with
// sources that exist, and give their context lines. Built without the checksum, so that
// mutated files reach the checks of their bounds.
#include <fulltextindex.h>
#include <runtimeerror.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

// The input as a file, on a memory file system where there is one: a disk would spend
// most of the run writing it.
QString indexFile()
{
    static const QString path
        = (QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm") : QDir::tempPath())
        + QStringLiteral("/tremidia-index-fuzz-%1.sqlite").arg(QCoreApplication::applicationPid());
    return path;
}

// Words of the seed files, a prefix, a phrase, words that stand nowhere.
const QStringList queries = {QStringLiteral("ναός"), QStringLiteral("Δήλ"), QStringLiteral("\"ο ναός\""),
    QStringLiteral("\"της Δήλου\" Απόλλωνα"), QStringLiteral("κ"), QStringLiteral("ναυτικός θάλασσα"),
    QStringLiteral("\"a b c\"")};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // Damaged files are logged as they are met; that is expected here and only slows
    // the run down.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    static QCoreApplication app(*argc, *argv);
    // Made before the handler is registered, so that it is still there when it runs. A
    // mutated header may ask for WAL mode, and SQLite then makes its two files beside it.
    static const QByteArray path = QFile::encodeName(indexFile());
    std::atexit([] {
        for (const char *suffix : {"", "-wal", "-shm"})
            std::remove((path + suffix).constData());
    });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    {
        QFile file(indexFile());
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            std::abort();
        file.write(reinterpret_cast<const char *>(data), qint64(size));
    }
    std::unique_ptr<fulltext::Index> index;
    try {
        index = fulltext::Index::open(indexFile());
    } catch (const platform::RuntimeError &e) {
        if (e.number() != 3343)
            std::abort();
        return 0;
    }
    for (const QString &text : queries) {
        const fulltext::TextQuery query = fulltext::parseQuery(text);
        const QList<fulltext::Result> results = index->search(query);
        for (qsizetype i = 0; i < results.size(); ++i) {
            const fulltext::Result &r = results.at(i);
            if (r.place < 0 || r.place >= index->sourceCount() || r.hits < 0)
                std::abort();
            if (i < 3)
                index->context(r, query);
        }
    }
    return 0;
}
