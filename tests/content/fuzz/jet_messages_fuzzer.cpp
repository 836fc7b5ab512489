// libFuzzer target for the importer's side of the Jet reader's messages: the bytes are
// what a reader led astray by a damaged file might send, cut into reads as the first byte
// says. Besides crashes, hangs and leaks it checks that every run ends in the database or
// in a run-time error, and that progress stays within what a progress bar can divide.
#include <contenterrors.h>
#include <jetmessages.h>
#include <runtimeerror.h>
#include <sqliteconnection.h>

#include <QCoreApplication>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <sys/wait.h>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // The importer warns of every reader that ends badly; that is expected here.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    static QCoreApplication app(*argc, *argv);
    return 0;
}

// The first byte: bits 0-2 the size of each read, bit 3 a reader that ends with an error
// status, bit 4 one that ends on a signal, bit 5 a progress window cancelled at the
// third report, bit 6 a quiet beat after each read.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    static constexpr qsizetype readSizes[] = {1, 2, 7, 17, 64, 4096, 65536, std::numeric_limits<int>::max()};
    const uint8_t how = data[0];
    const qsizetype readSize = readSizes[how & 7];
    int waitStatus = 0;
    if (how & 0x08)
        waitStatus = 2 << 8;
    if (how & 0x10)
        waitStatus = SIGSEGV;
    const bool cancels = how & 0x20;
    const bool beats = how & 0x40;
    const char *stream = reinterpret_cast<const char *>(data + 1);
    const qsizetype length = qsizetype(size - 1);

    int reports = 0;
    auto progress = [&](qint64 done, qint64 total) {
        if (done < 0 || total < 0 || done > total || total > std::numeric_limits<qint32>::max()) {
            std::fprintf(stderr, "progress %lld of %lld\n", static_cast<long long>(done),
                static_cast<long long>(total));
            std::abort();
        }
        // What the import's progress window makes of them.
        volatile qint64 steps = total > 0 ? done * 1000 / total : 1000;
        (void)steps;
        return !cancels || ++reports < 3;
    };
    const QString path = QStringLiteral("fuzz.mdb");
    try {
        content::jet::ReaderMessages messages(path, qint64(length) * 16 + (qint64(64) << 20), progress);
        for (qsizetype at = 0; at < length; at += readSize) {
            messages.take(stream + at, std::min(readSize, length - at));
            if (beats)
                messages.beat();
        }
        const QByteArray database = messages.finish(waitStatus);
        content::jet::openReaderDatabase(path, database);
    } catch (const platform::RuntimeError &error) {
        switch (error.number()) {
        case content::errors::UnrecognizedFormat:
        case content::errors::InvalidArgument:
        case content::errors::CancelledByUser:
            break;
        default:
            std::fprintf(stderr, "unexpected error %d\n", error.number());
            std::abort();
        }
    }
    return 0;
}
