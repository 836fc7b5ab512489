#pragma once

// Bundles made by hand with libzip for the teacher's side: whole ones, and every kind of
// broken or hostile one a drop folder may hold.

#include <manifest.h>

#include <QBuffer>
#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QList>
#include <QString>

#include <zip.h>

#include <cstring>
#include <utility>

namespace bundlezips {

// A drawing as a pupil would hand it in: a PNG of one colour.
inline QByteArray png(int width, int height, Qt::GlobalColor colour)
{
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes;
}


using Entries = QList<std::pair<QString, QByteArray>>;

// A ZIP of these entries, in this order, deflated.
inline bool writeZip(const QString &path, const Entries &entries)
{
    int error = 0;
    zip_t *zip = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!zip)
        return false;
    for (const auto &[name, data] : entries) {
        // libzip copies the bytes at zip_close; they live until then in `entries`.
        zip_source_t *source = zip_source_buffer(zip, data.constData(), zip_uint64_t(data.size()), 0);
        if (!source || zip_file_add(zip, name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8) < 0) {
            zip_source_free(source);
            zip_discard(zip);
            return false;
        }
    }
    return zip_close(zip) == 0;
}

inline handin::Place place(qint32 activityID, const QString &activityTitle)
{
    handin::Place where;
    where.contentTitle = QStringLiteral("Τρεμίδια");
    where.themeID = 1;
    where.themeTitle = QStringLiteral("Θέμα");
    where.scenarioID = 2;
    where.scenarioTitle = QStringLiteral("Σενάριο");
    where.activityID = activityID;
    where.activityTitle = activityTitle;
    return where;
}

inline QByteArray manifestOf(const QString &pupil, const QString &className, qint32 activityID,
    const QString &activityTitle, const QDateTime &time, const QList<handin::File> &files)
{
    return handin::Manifest::describe(
        {pupil, className}, place(activityID, activityTitle), time, QStringLiteral("0.1"), files)
        .toJson();
}

// The files and then their manifest, as a pupil's program hands them in.
inline Entries entriesOf(const QByteArray &manifest, const QList<handin::File> &files)
{
    Entries entries;
    for (const handin::File &file : files)
        entries.append({file.name, file.data});
    entries.append({QStringLiteral("manifest.json"), manifest});
    return entries;
}

inline bool writeBundle(const QString &path, const QString &pupil, const QString &className,
    qint32 activityID, const QString &activityTitle, const QDateTime &time, const QList<handin::File> &files)
{
    return writeZip(
        path, entriesOf(manifestOf(pupil, className, activityID, activityTitle, time, files), files));
}

// A short note in RTF with Greek text.
inline QByteArray noteRtf(const QString &text)
{
    QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0 Times New Roman;}}\\f0\\fs24 ";
    for (const QChar c : text) {
        if (c.unicode() < 128)
            rtf += char(c.unicode());
        else
            rtf += "\\u" + QByteArray::number(qint16(c.unicode())) + '?';
    }
    return rtf + "\\par}";
}

// `size` zeros, read through a source of libzip's own kind, so that a huge entry is
// made without holding it.
struct Zeros
{
    zip_uint64_t size = 0;
    zip_uint64_t done = 0;
};

inline zip_int64_t zerosSource(void *state, void *data, zip_uint64_t length, zip_source_cmd_t command)
{
    auto *zeros = static_cast<Zeros *>(state);
    switch (command) {
    case ZIP_SOURCE_OPEN:
        zeros->done = 0;
        return 0;
    case ZIP_SOURCE_READ: {
        const zip_uint64_t n = std::min(length, zeros->size - zeros->done);
        std::memset(data, 0, n);
        zeros->done += n;
        return zip_int64_t(n);
    }
    case ZIP_SOURCE_CLOSE:
        return 0;
    case ZIP_SOURCE_STAT: {
        auto *stat = static_cast<zip_stat_t *>(data);
        zip_stat_init(stat);
        stat->size = zeros->size;
        stat->valid |= ZIP_STAT_SIZE;
        return sizeof(zip_stat_t);
    }
    case ZIP_SOURCE_ERROR:
        return 2 * sizeof(int);
    case ZIP_SOURCE_FREE:
        delete zeros;
        return 0;
    case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE,
            ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
    default:
        return -1;
    }
}

// A ZIP whose one entry `name` is `size` zeros, deflated fast, with `extra` entries before it.
inline bool writeZeros(const QString &path, const QString &name, zip_uint64_t size, const Entries &extra = {})
{
    int error = 0;
    zip_t *zip = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!zip)
        return false;
    for (const auto &[entryName, data] : extra) {
        zip_source_t *source = zip_source_buffer(zip, data.constData(), zip_uint64_t(data.size()), 0);
        zip_file_add(zip, entryName.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8);
    }
    zip_source_t *source = zip_source_function(zip, zerosSource, new Zeros {size, 0});
    const zip_int64_t index = zip_file_add(zip, name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
        zip_source_free(source);
        zip_discard(zip);
        return false;
    }
    zip_set_file_compression(zip, zip_uint64_t(index), ZIP_CM_DEFLATE, 1);
    return zip_close(zip) == 0;
}

// Rewrites the unpacked size every header of the ZIP claims for `name` (local header and
// central directory alike), so that the archive lies consistently about it.
inline bool claimSize(const QString &path, const QString &name, quint32 claimed)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    QByteArray bytes = file.readAll();
    const QByteArray encoded = name.toUtf8();
    int patched = 0;
    const auto put32 = [&bytes](qsizetype at, quint32 value) {
        for (int i = 0; i < 4; ++i)
            bytes[at + i] = char((value >> (8 * i)) & 0xFF);
    };
    for (qsizetype at = 0; at + 46 < bytes.size(); ++at) {
        if (bytes.mid(at, 4) == QByteArray("PK\x03\x04", 4)
            && bytes.mid(at + 30, encoded.size()) == encoded) {
            put32(at + 22, claimed);
            ++patched;
        } else if (bytes.mid(at, 4) == QByteArray("PK\x01\x02", 4)
            && bytes.mid(at + 46, encoded.size()) == encoded) {
            put32(at + 24, claimed);
            ++patched;
        }
    }
    file.seek(0);
    file.write(bytes);
    return patched == 2;
}

// Renames an entry in every header, to a name of the same length: how a ZIP with two
// entries of one name is made, since libzip refuses to write one.
inline bool renameEntry(const QString &path, const QByteArray &from, const QByteArray &to)
{
    QFile file(path);
    if (from.size() != to.size() || !file.open(QIODevice::ReadWrite))
        return false;
    QByteArray bytes = file.readAll();
    const int before = int(bytes.count(from));
    bytes.replace(from, to);
    file.seek(0);
    file.write(bytes);
    return before >= 2;
}

} // namespace bundlezips
