// libFuzzer target for the recovery folder as a start finds it. The bytes lay out a
// recovery folder (programs' folders, copies, descriptions, locks, links, pipes, files
// of hundreds of megabytes) and the start's own code reads it, and then takes the work
// over, lets it go or sets a copy aside. Besides crashes, hangs and leaks it checks what
// must hold whatever the folder holds:
//  - nothing outside the recovery folder is written or removed: the pupil's documents,
//    which the links point at, stay as they were, and so does the state folder around;
//  - every copy offered is a plain file inside the recovery folder;
//  - a note whose description is the fuzzer's bytes is offered, whatever they are, and
//    its content is lost only to a "no".
//
// Input: one byte of flags, then (with flag 8) two bytes of length and the witness note's
// description, then records of one byte of operation, a name and their data.
#include <recoverystore.h>

#include <memory>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QStringList>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

using recovery::Entry;
using recovery::Store;

namespace {

const QByteArray WitnessNote = "{\\rtf1\\ansi the witness note}";
const QByteArray WitnessFolder = "888-1";

QString g_root; // the fuzzer's own folder, made at start
QString g_documents; // the pupil's documents, which nothing may touch
QStringList g_documentsBefore;

[[noreturn]] void fail(const char *what, const QString &detail = {})
{
    std::fprintf(stderr, "recovery fuzzer: %s %s\n", what, qPrintable(detail));
    std::abort();
}

struct Input
{
    const uint8_t *data;
    size_t size;
    size_t at = 0;

    bool atEnd() const { return at >= size; }
    uint8_t byte() { return at < size ? data[at++] : 0; }
    QByteArray bytes(size_t n)
    {
        n = std::min(n, size - std::min(at, size));
        QByteArray out(reinterpret_cast<const char *>(data + at), qsizetype(n));
        at += n;
        return out;
    }
    quint16 word() { return quint16(byte() | (byte() << 8)); }
};

// Names the program gives and meets, so that the fuzzer reaches them soon.
const char *const KnownNames[] = {"999-1", "999-2", "1-1", "set-aside", "instance.lock", "notes-1.rtf",
    "notes-1.json", "drawing-1.png", "drawing-1.json", "lost-1.rtf", "lost-1.json", "notes-1.rtf.1a.part",
    "999-1/instance.lock", "999-1/notes-1.rtf", "999-1/notes-1.json", "999-1/drawing-1.png",
    "999-1/drawing-1.json", "999-1/notes-2.rtf", "999-1/notes-2.json", "999-2/notes-1.rtf",
    "999-2/notes-1.json", "999-2/instance.lock", "999-1/sub", "999-1/sub/notes-1.rtf", "set-aside/999-1",
    "set-aside/999-1/notes-1.rtf", "999-1/lost-1.rtf", "999-1/lost-1.json", "999-1/x.txt"};

QByteArray nameFrom(Input &in)
{
    const uint8_t n = in.byte();
    if (n & 0x80)
        return KnownNames[(n & 0x7f) % std::size(KnownNames)];
    return in.bytes(n % 24);
}

// A name of one to three parts inside the recovery folder, never the witness's folder.
bool isInside(const QByteArray &name)
{
    const QList<QByteArray> parts = name.split('/');
    if (parts.size() > 3 || parts.first() == WitnessFolder)
        return false;
    return std::none_of(parts.begin(), parts.end(), [](const QByteArray &part) {
        return part.isEmpty() || part == "." || part == ".." || part.contains('\0');
    });
}

bool writeAt(const QByteArray &path, const QByteArray &bytes)
{
    const int fd
        = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    const bool ok = ::write(fd, bytes.constData(), size_t(bytes.size())) == bytes.size();
    ::close(fd);
    return ok;
}

QByteArray description(Input &in)
{
    static const char *const Kinds[] = {"notes", "drawing", "", "nothing"};
    QJsonObject object;
    object.insert(QStringLiteral("kind"), QString::fromLatin1(Kinds[in.byte() % 4]));
    object.insert(QStringLiteral("content"), QString::fromUtf8(nameFrom(in)));
    double writtenAt = 0;
    const QByteArray time = in.bytes(sizeof writtenAt);
    std::memcpy(&writtenAt, time.constData(), size_t(time.size()));
    object.insert(QStringLiteral("writtenAt"), writtenAt);
    object.insert(QStringLiteral("details"),
        QJsonObject {{QStringLiteral("fileName"), QString::fromUtf8(in.bytes(in.byte() % 16))}});
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray linkTarget(uint8_t which)
{
    const QByteArray documents = QFile::encodeName(g_documents);
    const QByteArray targets[]
        = {documents, documents + "/ergasia.rtf", documents + "/999-7", documents + "/pipe", "/dev/zero",
            "nowhere", "..", "../..", "999-1", "notes-1.rtf", documents + "/999-7/notes-1.json"};
    return targets[which % std::size(targets)];
}

// One record of the layout; nothing is made outside the recovery folder.
void plant(const QByteArray &recovery, Input &in)
{
    const uint8_t op = in.byte();
    const QByteArray name = nameFrom(in);
    if (!isInside(name))
        return;
    const QByteArray path = recovery + '/' + name;
    // The folders on the way, as far as they can be made, and never through a link that
    // an earlier record put there: the layout itself stays inside.
    for (qsizetype slash = name.indexOf('/'); slash > 0; slash = name.indexOf('/', slash + 1)) {
        const QByteArray folder = recovery + '/' + name.left(slash);
        ::mkdir(folder.constData(), 0700);
        struct stat st
        {
        };
        if (::lstat(folder.constData(), &st) != 0 || !S_ISDIR(st.st_mode))
            return;
    }
    switch (op % 8) {
    case 0:
        writeAt(path, in.bytes(in.byte()));
        break;
    case 1:
        ::mkdir(path.constData(), 0700);
        break;
    case 2:
        ::symlink(linkTarget(in.byte()).constData(), path.constData());
        break;
    case 3:
        ::mkfifo(path.constData(), 0600);
        break;
    case 4: {
        // Up to 255 MB, sparse: a reading that takes it whole shows in the memory limit.
        const int fd
            = ::open(path.constData(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
        if (fd >= 0) {
            if (::ftruncate(fd, off_t(in.byte() + 1) * 1024 * 1024) != 0)
                std::perror("ftruncate");
            ::close(fd);
        }
        break;
    }
    case 5:
        writeAt(path, description(in));
        break;
    case 6:
        writeAt(path, WitnessNote);
        break;
    default:
        // A lock file's lines: process id, program, host.
        writeAt(path, in.bytes(in.byte() % 64));
        break;
    }
}

// Every name below `folder` with its kind, a plain file with its bytes; nothing followed,
// nothing but plain files opened.
QStringList treeOf(const QString &folder)
{
    static QStringList *out = nullptr;
    QStringList names;
    out = &names;
    ::nftw(
        QFile::encodeName(folder).constData(),
        [](const char *path, const struct stat *st, int, FTW *) {
            QString line = QFile::decodeName(path);
            if (S_ISREG(st->st_mode)) {
                QFile file(line);
                line += QStringLiteral(": ");
                if (file.open(QIODevice::ReadOnly))
                    line += QString::fromLatin1(file.read(4096).toHex());
            } else if (S_ISLNK(st->st_mode)) {
                char target[4096];
                const ssize_t n = ::readlink(path, target, sizeof target);
                line += QStringLiteral(" -> ") + QString::fromLocal8Bit(target, n > 0 ? n : 0);
            } else {
                line += QStringLiteral(" mode %1").arg(st->st_mode & S_IFMT);
            }
            *out << line;
            return 0;
        },
        16, FTW_PHYS);
    names.sort();
    return names;
}

void removeAll(const QString &folder)
{
    ::nftw(
        QFile::encodeName(folder).constData(),
        [](const char *path, const struct stat *, int type, FTW *) {
            return type == FTW_DP ? ::rmdir(path) : ::unlink(path);
        },
        16, FTW_PHYS | FTW_DEPTH);
}

bool isPlainFileInside(const QString &path, const QString &recovery)
{
    struct stat st
    {
    };
    return path.startsWith(recovery + u'/') && !path.contains(QStringLiteral("/../"))
        && ::lstat(QFile::encodeName(path).constData(), &st) == 0 && S_ISREG(st.st_mode);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(4096) : QByteArray();
}

const Entry *witnessIn(const QList<Entry> &entries, const QString &folder)
{
    for (const Entry &entry : entries) {
        if (entry.contentPath == folder + QStringLiteral("/notes-1.rtf"))
            return &entry;
    }
    return nullptr;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // The folder is full of what the program warns about; that is expected here, and
    // RECOVERY_FUZZ_VERBOSE=1 shows it.
    if (qEnvironmentVariableIsEmpty("RECOVERY_FUZZ_VERBOSE")) {
        QLoggingCategory::setFilterRules(QStringLiteral("tremidia.recovery.warning=false"));
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    }
    static QCoreApplication app(*argc, *argv);
    // The folders it lays out go to memory where they can: the run is their making.
    QByteArray base = qgetenv("RECOVERY_FUZZ_DIR");
    if (base.isEmpty())
        base = ::access("/dev/shm", W_OK) == 0 ? QByteArray("/dev/shm") : QFile::encodeName(QDir::tempPath());
    QByteArray root = base + "/recovery-fuzz-XXXXXX";
    if (!::mkdtemp(root.data()))
        fail("cannot make a folder in", QString::fromLocal8Bit(base));
    g_root = QFile::decodeName(root);
    g_documents = g_root + QStringLiteral("/documents");
    QDir().mkpath(g_documents + QStringLiteral("/999-7"));
    writeAt(QFile::encodeName(g_documents + QStringLiteral("/ergasia.rtf")), "{\\rtf1 the pupil's own}");
    writeAt(QFile::encodeName(g_documents + QStringLiteral("/999-7/notes-1.rtf")), "{\\rtf1 looks lost}");
    writeAt(QFile::encodeName(g_documents + QStringLiteral("/999-7/notes-1.json")),
        "{\"kind\":\"notes\",\"content\":\"notes-1.rtf\"}");
    ::mkfifo(QFile::encodeName(g_documents + QStringLiteral("/pipe")).constData(), 0600);
    g_documentsBefore = treeOf(g_documents);
    std::atexit([] { removeAll(g_root); });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input in {data, size};
    const uint8_t flags = in.byte();
    const QString state = g_root + QStringLiteral("/state");
    const QString recovery = state + QStringLiteral("/tremidia/recovery");
    const QByteArray recoveryBytes = QFile::encodeName(recovery);
    const QString witness = recovery + u'/' + QString::fromLatin1(WitnessFolder);
    removeAll(state);
    QDir().mkpath(state + QStringLiteral("/tremidia"));

    const bool recoveryIsALink = (flags & 0x44) == 0x44;
    const bool witnessed = !recoveryIsALink && (flags & 0x08);
    if (recoveryIsALink) {
        ::symlink(QFile::encodeName(g_documents).constData(), recoveryBytes.constData());
    } else {
        ::mkdir(recoveryBytes.constData(), 0700);
        if (witnessed) {
            const QByteArray folder = recoveryBytes + '/' + WitnessFolder;
            ::mkdir(folder.constData(), 0700);
            writeAt(folder + "/notes-1.rtf", WitnessNote);
            writeAt(folder + "/notes-1.json", in.bytes(in.word()));
        }
        for (int records = 0; records < 32 && !in.atEnd(); ++records)
            plant(recoveryBytes, in);
    }

    qputenv("XDG_STATE_HOME", QFile::encodeName(state));
    // A program started now, with its own store; it ends before the checks below.
    auto running = std::make_unique<Store>();
    Store &store = *running;
    const QList<Entry> lost = store.lostWork();
    for (const Entry &entry : lost) {
        if (!isPlainFileInside(entry.contentPath, recovery))
            fail("offered a copy that is not a plain file inside:", entry.contentPath);
    }
    if (recoveryIsALink && !lost.isEmpty())
        fail("offered work from behind a link");
    if (witnessed && !witnessIn(lost, witness))
        fail("the witness note is not offered");

    switch (flags & 3) {
    case 1: {
        const QList<Entry> adopted = store.adoptLostWork();
        for (const Entry &entry : adopted) {
            if (!entry.contentPath.startsWith(store.ownFolder() + u'/')
                || !isPlainFileInside(entry.contentPath, recovery))
                fail("took over a copy outside its own folder:", entry.contentPath);
        }
        if (witnessed && std::none_of(adopted.begin(), adopted.end(), [](const Entry &entry) {
                return contentOf(entry.contentPath) == WitnessNote;
            }))
            fail("the witness note was not taken over");
        break;
    }
    case 2:
        store.discardLostWork();
        if (witnessed && QFile::exists(witness + QStringLiteral("/notes-1.rtf")))
            fail("the witness note stayed after a no");
        break;
    case 3:
        if (!lost.isEmpty()) {
            const Entry &first = lost.first();
            const bool isWitness = first.contentPath == witness + QStringLiteral("/notes-1.rtf");
            // A set-aside folder that the layout made a file, say, can't take it.
            const bool setAside = store.setAside(first, QStringLiteral("fuzzed"));
            if (isWitness && setAside
                && contentOf(Store::setAsideFolder() + u'/' + QString::fromLatin1(WitnessFolder)
                       + QStringLiteral("/notes-1.rtf"))
                    != WitnessNote)
                fail("the witness note was not set aside whole");
        }
        if (witnessed && !QFile::exists(witness + QStringLiteral("/notes-1.rtf"))
            && !QFile::exists(Store::setAsideFolder() + u'/' + QString::fromLatin1(WitnessFolder)
                + QStringLiteral("/notes-1.rtf")))
            fail("the witness note is lost");
        break;
    default:
        if (witnessed && !witnessIn(store.lostWork(), witness))
            fail("the witness note is not offered again");
        break;
    }
    running.reset();

    if (treeOf(g_documents) != g_documentsBefore)
        fail("the pupil's documents changed:", treeOf(g_documents).join(u'\n'));
    // Around the recovery folder, nothing new.
    if (QDir(state).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
            != QStringList {QStringLiteral("tremidia")}
        || QDir(state + QStringLiteral("/tremidia"))
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
            != QStringList {QStringLiteral("recovery")})
        fail("something was written beside the recovery folder");
    struct stat st
    {
    };
    if (::lstat(recoveryBytes.constData(), &st) != 0 || !S_ISDIR(st.st_mode))
        fail("the recovery folder is not a folder of its own");
    return 0;
}
