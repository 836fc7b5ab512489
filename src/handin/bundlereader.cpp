#include "bundlereader.h"

#include <greekcollation.h>
#include <logging.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <zip.h>

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <memory>

namespace handin {

namespace {

// A manifest is a few kilobytes; one of more than this is not ours.
constexpr qint64 MaxManifestBytes = 1024 * 1024;
// Small entries are let through the ratio test: a short run of blank text deflates far
// better than 200 to 1, and so little can do no harm.
constexpr qint64 RatioFloorBytes = 1024 * 1024;
// What the ZIP's own headers may add to its files when they are stored.
constexpr qint64 ZipOverheadBytes = 1024 * 1024;
// Decompressed a piece at a time, so that what is counted is all that is held.
constexpr zip_uint64_t ChunkBytes = 64 * 1024;

struct ZipDiscard
{
    void operator()(zip_t *zip) const { zip_discard(zip); }
};
struct ZipFileClose
{
    void operator()(zip_file_t *file) const { zip_fclose(file); }
};

struct Entry
{
    zip_uint64_t index = 0;
    qint64 size = 0; // as the archive claims it
    qint64 packed = 0; // as the archive claims it
};

// A thrown damage: what is wrong with the bundle, in the window's words.
struct Damage
{
    QString why;
};

[[noreturn]] void damaged(const QString &why)
{
    throw Damage {why};
}

// One bundle open, its entries checked against the limits by what they claim.
// Entry names are only ever compared, never used as paths.
class Archive
{
public:
    Archive(const QString &path, const Limits &limits)
        : m_limits(limits)
    {
        // Read where it lies, a piece at a time: only what is decompressed is held.
        const QFileInfo about(path);
        if (!about.isFile())
            damaged(QStringLiteral("δεν είναι αρχείο"));
        if (about.size() > limits.maxTotalBytes + ZipOverheadBytes)
            damaged(QStringLiteral("το αρχείο είναι πολύ μεγάλο"));
        if (!about.isReadable())
            damaged(QStringLiteral("δεν ανοίγει: δεν επιτρέπεται η ανάγνωση"));

        zip_error_t error;
        zip_error_init(&error);
        zip_source_t *source = zip_source_file_create(QFile::encodeName(path).constData(), 0, -1, &error);
        if (!source) {
            const QString why = QString::fromUtf8(zip_error_strerror(&error));
            zip_error_fini(&error);
            damaged(QStringLiteral("δεν ανοίγει: %1").arg(why));
        }
        m_zip.reset(zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, &error));
        if (!m_zip) {
            zip_source_free(source);
            const QString why = QString::fromUtf8(zip_error_strerror(&error));
            zip_error_fini(&error);
            damaged(QStringLiteral("δεν είναι σωστό αρχείο ZIP (%1)").arg(why));
        }
        zip_error_fini(&error);
        readDirectory();
    }

    // The entry of that name, or null.
    const Entry *find(const QString &name) const
    {
        const auto at = m_entries.constFind(name);
        return at == m_entries.cend() ? nullptr : &*at;
    }

    // Decompresses the entry a chunk at a time into `take`, counting: more than `expected`
    // bytes stops the reading at once.
    void read(const QString &name, const Entry &entry, qint64 expected,
        const std::function<void(const char *, qint64)> &take)
    {
        std::unique_ptr<zip_file_t, ZipFileClose> file(zip_fopen_index(m_zip.get(), entry.index, 0));
        if (!file)
            damaged(QStringLiteral("το αρχείο %1 δεν αποσυμπιέζεται").arg(name));
        std::array<char, ChunkBytes> chunk;
        qint64 total = 0;
        for (;;) {
            const zip_int64_t got = zip_fread(file.get(), chunk.data(), chunk.size());
            if (got < 0)
                damaged(QStringLiteral("το αρχείο %1 δεν αποσυμπιέζεται").arg(name));
            if (got == 0)
                break;
            total += got;
            if (total > expected)
                damaged(QStringLiteral("το αρχείο %1 είναι μεγαλύτερο απ' ό,τι δηλώνει").arg(name));
            take(chunk.data(), got);
        }
        if (zip_fclose(file.release()) != 0)
            damaged(QStringLiteral("το αρχείο %1 δεν αποσυμπιέζεται").arg(name));
        if (total != expected)
            damaged(QStringLiteral("το αρχείο %1 δεν έχει το σωστό μέγεθος").arg(name));
    }

    // The manifest, read and parsed; damaged when it is missing or not one.
    Manifest manifest()
    {
        const QString name = QString::fromLatin1(ManifestName);
        const Entry *entry = find(name);
        if (!entry)
            damaged(QStringLiteral("λείπει το %1").arg(name));
        if (entry->size > MaxManifestBytes)
            damaged(QStringLiteral("το %1 είναι πολύ μεγάλο").arg(name));
        QByteArray json;
        read(name, *entry, entry->size, [&json](const char *data, qint64 size) { json.append(data, size); });
        std::optional<Manifest> manifest = Manifest::fromJson(json);
        if (!manifest)
            damaged(QStringLiteral("το %1 δεν διαβάζεται").arg(name));
        QSet<QString> names;
        for (const ManifestEntry &file : manifest->files) {
            if (file.name == name || names.contains(file.name))
                damaged(QStringLiteral("το %1 αναφέρει δύο φορές το %2").arg(name, file.name));
            names.insert(file.name);
        }
        return *manifest;
    }

    // One listed file checked against its manifest entry: there, of its size and hash.
    // Its bytes go to `take` (when set) as they come.
    void check(const ManifestEntry &listed, const std::function<void(const char *, qint64)> &take = {})
    {
        const Entry *entry = find(listed.name);
        if (!entry)
            damaged(QStringLiteral("λείπει το αρχείο %1").arg(listed.name));
        if (entry->size != listed.size)
            damaged(QStringLiteral("το αρχείο %1 δεν έχει το μέγεθος που γράφει το %2")
                        .arg(listed.name, QString::fromLatin1(ManifestName)));
        QCryptographicHash hash(QCryptographicHash::Sha256);
        read(listed.name, *entry, listed.size, [&](const char *data, qint64 size) {
            hash.addData(QByteArrayView(data, size));
            if (take)
                take(data, size);
        });
        if (hash.result().toHex() != listed.sha256)
            damaged(QStringLiteral("το αρχείο %1 δεν είναι αυτό που γράφει το %2")
                        .arg(listed.name, QString::fromLatin1(ManifestName)));
    }

private:
    // Every entry's name and claimed sizes, refused before anything is decompressed.
    void readDirectory()
    {
        const zip_int64_t count = zip_get_num_entries(m_zip.get(), 0);
        if (count < 0)
            damaged(QStringLiteral("δεν διαβάζεται ο κατάλογός του"));
        if (count > m_limits.maxEntries)
            damaged(QStringLiteral("έχει πάρα πολλά αρχεία (%1)").arg(count));
        qint64 total = 0;
        for (zip_int64_t i = 0; i < count; ++i) {
            zip_stat_t stat;
            zip_stat_init(&stat);
            if (zip_stat_index(m_zip.get(), zip_uint64_t(i), 0, &stat) != 0 || !(stat.valid & ZIP_STAT_NAME)
                || !(stat.valid & ZIP_STAT_SIZE) || !(stat.valid & ZIP_STAT_COMP_SIZE))
                damaged(QStringLiteral("δεν διαβάζεται ο κατάλογός του"));
            const QString name = QString::fromUtf8(stat.name);
            if (!isPlainEntryName(name))
                damaged(QStringLiteral("έχει αρχείο με όνομα που δεν επιτρέπεται: «%1»").arg(name.left(60)));
            if (m_entries.contains(name))
                damaged(QStringLiteral("έχει δύο φορές το αρχείο %1").arg(name));
            if (stat.size > zip_uint64_t(m_limits.maxEntryBytes))
                damaged(QStringLiteral("το αρχείο %1 είναι πολύ μεγάλο").arg(name));
            const Entry entry {zip_uint64_t(i), qint64(stat.size),
                qint64(std::min<zip_uint64_t>(stat.comp_size, std::numeric_limits<qint64>::max()))};
            total += entry.size;
            if (total > m_limits.maxTotalBytes)
                damaged(QStringLiteral("τα αρχεία του είναι πολύ μεγάλα όλα μαζί"));
            // Divided, not multiplied: a packed size the archive claims may be anything.
            if (entry.size > RatioFloorBytes
                && (entry.packed <= 0 || entry.size / std::max<qint64>(1, m_limits.maxRatio) > entry.packed))
                damaged(QStringLiteral("το αρχείο %1 είναι ύποπτα συμπιεσμένο").arg(name));
            m_entries.insert(name, entry);
        }
    }

    Limits m_limits;
    std::unique_ptr<zip_t, ZipDiscard> m_zip;
    QHash<QString, Entry> m_entries;
};

void describeFromManifest(BundleInfo &info, const Manifest &manifest)
{
    info.manifest = manifest;
    info.className = manifest.pupil.className;
    info.pupil = manifest.pupil.name;
    info.activity = manifest.place.activityTitle;
    info.activityID = manifest.place.activityID;
    info.time = manifest.time;
    info.files.clear();
    for (const ManifestEntry &file : manifest.files)
        info.files.append(file.name);
}

} // namespace

void describeFromFileName(BundleInfo &info)
{
    const QString base = QFileInfo(info.path).completeBaseName();
    const QStringList parts = base.split(u'_');
    if (parts.size() != 5) {
        info.pupil = base;
        return;
    }
    info.className = parts.at(0);
    info.pupil = parts.at(1);
    info.activity = parts.at(2);
    info.time = QDateTime::fromString(parts.at(3), QStringLiteral("yyyyMMdd-HHmmss"));
}

BundleInfo readBundle(const QString &zipPath, const Limits &limits)
{
    BundleInfo info;
    info.path = zipPath;
    try {
        Archive archive(zipPath, limits);
        describeFromManifest(info, archive.manifest());
        for (const ManifestEntry &file : std::as_const(info.manifest->files))
            archive.check(file);
        info.ok = true;
    } catch (const Damage &damage) {
        info.damage = damage.why;
    } catch (const std::bad_alloc &) {
        info.damage = QStringLiteral("δεν χωράει στη μνήμη");
    }
    if (!info.manifest)
        describeFromFileName(info);
    if (!info.ok)
        qCWarning(lcHandin) << "damaged bundle" << zipPath << info.damage;
    return info;
}

bool bundleBefore(const BundleInfo &a, const BundleInfo &b)
{
    if (const int byClass = content::compareText(a.className, b.className))
        return byClass < 0;
    if (const int byPupil = content::compareText(a.pupil, b.pupil))
        return byPupil < 0;
    if (a.time.isValid() != b.time.isValid())
        return a.time.isValid();
    if (a.time != b.time)
        return a.time < b.time;
    return a.path < b.path;
}

bool sameClass(const QString &a, const QString &b)
{
    return content::compareText(a, b) == 0;
}

QList<BundleInfo> readBundles(const QString &folder, const Limits &limits)
{
    QList<BundleInfo> bundles;
    const QDir dir(folder);
    const QStringList names
        = dir.entryList({QStringLiteral("*.zip")}, QDir::Files | QDir::NoSymLinks, QDir::Name);
    for (const QString &name : names)
        bundles.append(readBundle(dir.filePath(name), limits));
    std::stable_sort(bundles.begin(), bundles.end(), bundleBefore);
    return bundles;
}

std::optional<QByteArray> readEntry(const QString &zipPath, const QString &name, const Limits &limits)
{
    try {
        Archive archive(zipPath, limits);
        const Manifest manifest = archive.manifest();
        for (const ManifestEntry &file : manifest.files) {
            if (file.name != name)
                continue;
            QByteArray bytes;
            archive.check(file, [&bytes](const char *data, qint64 size) { bytes.append(data, size); });
            return bytes;
        }
        qCWarning(lcHandin) << "no" << name << "listed in" << zipPath;
    } catch (const Damage &damage) {
        qCWarning(lcHandin) << "cannot read" << name << "from" << zipPath << damage.why;
    } catch (const std::bad_alloc &) {
        qCWarning(lcHandin) << "cannot read" << name << "from" << zipPath << "out of memory";
    }
    return std::nullopt;
}

} // namespace handin
