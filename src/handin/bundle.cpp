#include "bundle.h"

#include "logging.h"
#include "manifest.h"

#include <QRandomGenerator>
#include <QSet>

#include <zip.h>

#include <memory>

namespace handin {

namespace {

QString randomPart()
{
    static constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    QString part;
    for (int i = 0; i < 4; ++i)
        part += QLatin1Char(alphabet[QRandomGenerator::system()->bounded(36)]);
    return part;
}

bool isRandomPart(QStringView text)
{
    if (text.size() != 4)
        return false;
    for (const QChar c : text) {
        if (!((c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9')))
            return false;
    }
    return true;
}

// The part without its last code point.
QString withoutLastCodePoint(const QString &text)
{
    qsizetype end = text.size() - 1;
    if (end > 0 && text.at(end).isLowSurrogate() && text.at(end - 1).isHighSurrogate())
        --end;
    return text.left(end);
}

qsizetype utf8Bytes(const QString &text)
{
    return text.toUtf8().size();
}

} // namespace

QString cleanNamePart(const QString &typed, const QString &fallback)
{
    // Composed first, so that a Greek letter typed as letter + accent stays one letter.
    const QString composed = typed.normalized(QString::NormalizationForm_C);
    QString clean;
    bool blank = false;
    for (const char32_t c : composed.toUcs4()) {
        if (QChar::isSpace(c) || c == U'_') {
            blank = true;
            continue;
        }
        if (!QChar::isLetterOrNumber(c) && c != U'-')
            continue;
        // A run of blanks becomes one '-', and only between two kept characters.
        if (blank && !clean.isEmpty() && !clean.endsWith(u'-'))
            clean += u'-';
        blank = false;
        clean += QString::fromUcs4(&c, 1);
    }
    while (clean.startsWith(u'-'))
        clean.remove(0, 1);
    while (clean.endsWith(u'-'))
        clean.chop(1);
    return clean.isEmpty() ? fallback : clean;
}

QString bundleName(const Pupil &pupil, const QString &activityTitle, const QDateTime &time)
{
    QString parts[3] = {
        cleanNamePart(pupil.className, QStringLiteral("χωρίς-τμήμα")),
        cleanNamePart(pupil.name, QStringLiteral("χωρίς-όνομα")),
        cleanNamePart(activityTitle, QStringLiteral("χωρίς-δραστηριότητα")),
    };
    const QString tail = u'_' + time.toString(QStringLiteral("yyyyMMdd-HHmmss")) + u'_' + randomPart()
        + QStringLiteral(".zip");
    // Two '_' between the three typed parts.
    const qsizetype budget = MaxBundleNameBytes - utf8Bytes(tail) - 2;
    qsizetype bytes[3] = {utf8Bytes(parts[0]), utf8Bytes(parts[1]), utf8Bytes(parts[2])};
    // The longest part gives way first, one code point at a time, so that a short class
    // name survives a very long pupil's name.
    while (bytes[0] + bytes[1] + bytes[2] > budget) {
        int longest = 0;
        for (int i = 1; i < 3; ++i) {
            if (bytes[i] > bytes[longest])
                longest = i;
        }
        parts[longest] = withoutLastCodePoint(parts[longest]);
        bytes[longest] = utf8Bytes(parts[longest]);
    }
    for (QString &part : parts) {
        while (part.endsWith(u'-'))
            part.chop(1);
    }
    return parts[0] + u'_' + parts[1] + u'_' + parts[2] + tail;
}

QString withFreshRandomPart(const QString &fileName)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    const QString stem = dot > 0 ? fileName.left(dot) : fileName;
    const QString extension = dot > 0 ? fileName.mid(dot) : QString();
    const qsizetype underscore = stem.lastIndexOf(u'_');
    if (underscore >= 0 && isRandomPart(QStringView(stem).mid(underscore + 1))) {
        QString fresh;
        do
            fresh = randomPart();
        while (fresh == stem.mid(underscore + 1));
        return stem.left(underscore + 1) + fresh + extension;
    }
    return stem + u'_' + randomPart() + extension;
}

namespace {

struct ZipCloser
{
    void operator()(zip_t *archive) const { zip_discard(archive); }
};
struct SourceFreer
{
    void operator()(zip_source_t *source) const { zip_source_free(source); }
};

bool isStored(const QString &name)
{
    // PNG and PDF are compressed already; deflating them again only costs time.
    return name.endsWith(QStringLiteral(".png"), Qt::CaseInsensitive)
        || name.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive);
}

QByteArray zipOf(const QList<File> &entries, const QDateTime &time)
{
    zip_error_t error;
    zip_error_init(&error);
    std::unique_ptr<zip_source_t, SourceFreer> memory(zip_source_buffer_create(nullptr, 0, 0, &error));
    if (!memory) {
        qCWarning(lcHandin) << "no memory ZIP:" << zip_error_strerror(&error);
        zip_error_fini(&error);
        return {};
    }
    std::unique_ptr<zip_t, ZipCloser> archive(zip_open_from_source(memory.get(), ZIP_TRUNCATE, &error));
    if (!archive) {
        qCWarning(lcHandin) << "cannot open a memory ZIP:" << zip_error_strerror(&error);
        zip_error_fini(&error);
        return {};
    }
    zip_error_fini(&error);
    // The archive takes the source over on success; we keep a reference to read it back.
    zip_source_keep(memory.get());

    const time_t mtime = time.toSecsSinceEpoch();
    for (const File &entry : entries) {
        zip_source_t *data = zip_source_buffer(
            archive.get(), entry.data.constData(), static_cast<zip_uint64_t>(entry.data.size()), 0);
        if (!data) {
            qCWarning(lcHandin) << "cannot add" << entry.name << zip_strerror(archive.get());
            return {};
        }
        const zip_int64_t index
            = zip_file_add(archive.get(), entry.name.toUtf8().constData(), data, ZIP_FL_ENC_UTF_8);
        if (index < 0) {
            zip_source_free(data);
            qCWarning(lcHandin) << "cannot add" << entry.name << zip_strerror(archive.get());
            return {};
        }
        const auto i = static_cast<zip_uint64_t>(index);
        if (zip_set_file_compression(
                archive.get(), i, isStored(entry.name) ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 9)
                != 0
            || zip_file_set_mtime(archive.get(), i, mtime, 0) != 0) {
            qCWarning(lcHandin) << "cannot set up" << entry.name << zip_strerror(archive.get());
            return {};
        }
    }
    if (zip_close(archive.get()) != 0) {
        qCWarning(lcHandin) << "cannot write the ZIP:" << zip_strerror(archive.get());
        return {};
    }
    (void)archive.release(); // zip_close freed it

    zip_source_t *source = memory.get();
    if (zip_source_open(source) != 0)
        return {};
    QByteArray bytes;
    if (zip_source_seek(source, 0, SEEK_END) == 0) {
        const zip_int64_t size = zip_source_tell(source);
        if (size >= 0 && zip_source_seek(source, 0, SEEK_SET) == 0) {
            bytes.resize(static_cast<qsizetype>(size));
            if (zip_source_read(source, bytes.data(), static_cast<zip_uint64_t>(size)) != size)
                bytes.clear();
        }
    }
    zip_source_close(source);
    return bytes;
}

} // namespace

Bundle makeBundle(const Pupil &pupil, const Place &place, const QDateTime &time, const QList<File> &files)
{
    Bundle bundle;
    bundle.fileName = bundleName(pupil, place.activityTitle, time);

    QSet<QString> names {QString::fromLatin1(ManifestName)};
    for (const File &file : files) {
        if (!isPlainEntryName(file.name) || names.contains(file.name)) {
            qCWarning(lcHandin) << "not a bundle's file name:" << file.name;
            return bundle;
        }
        names.insert(file.name);
    }
    const Manifest manifest = Manifest::describe(pupil, place, time, programVersion(), files);
    QList<File> entries {{QString::fromLatin1(ManifestName), manifest.toJson()}};
    entries += files;
    bundle.zip = zipOf(entries, time);
    return bundle;
}

} // namespace handin
