#pragma once

// A hand-in bundle read back with libzip, as it arrived: its entries by name, in order,
// and its manifest.

#include <manifest.h>

#include <zip.h>

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <optional>

namespace testing {

struct HandInZip
{
    bool ok = false;
    QList<QPair<QString, QByteArray>> entries;

    QStringList names() const
    {
        QStringList all;
        for (const auto &entry : entries)
            all << entry.first;
        return all;
    }
    QByteArray entry(const QString &name) const
    {
        for (const auto &e : entries)
            if (e.first == name)
                return e.second;
        return {};
    }
    std::optional<handin::Manifest> manifest() const
    {
        return handin::Manifest::fromJson(entry(QStringLiteral("manifest.json")));
    }
};

inline HandInZip readHandInZip(const QString &path)
{
    HandInZip read;
    int error = 0;
    zip_t *archive = zip_open(path.toLocal8Bit().constData(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
    if (!archive)
        return read;
    const zip_int64_t count = zip_get_num_entries(archive, 0);
    read.ok = true;
    for (zip_int64_t i = 0; i < count; ++i) {
        zip_stat_t stat;
        zip_stat_init(&stat);
        zip_file_t *file = zip_fopen_index(archive, zip_uint64_t(i), 0);
        if (zip_stat_index(archive, zip_uint64_t(i), 0, &stat) != 0 || !file) {
            read.ok = false;
            if (file)
                zip_fclose(file);
            continue;
        }
        QByteArray data(qsizetype(stat.size), Qt::Uninitialized);
        if (zip_fread(file, data.data(), stat.size) != zip_int64_t(stat.size))
            read.ok = false;
        zip_fclose(file);
        read.entries.append({QString::fromUtf8(stat.name), data});
    }
    zip_close(archive);
    return read;
}

} // namespace testing
