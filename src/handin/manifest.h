#pragma once

#include "handin.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace handin {

// manifest.json: who, where, when, with which program, and each file's name, size and
// SHA-256, so that the teacher's side can tell a whole bundle from a damaged one.
//
// {
//   "format": 1,
//   "pupil": "Μαρία", "class": "Β2",
//   "content": "…",
//   "theme": {"id": 1, "title": "…"}, "scenario": {…}, "activity": {…},
//   "time": "2026-11-25T10:42:07+02:00",
//   "version": "0.1",
//   "files": [{"name": "note.rtf", "size": 1234, "sha256": "<64 hex digits>"}, …]
// }
struct ManifestEntry
{
    QString name;
    qint64 size = 0;
    QByteArray sha256; // lower-case hex
};

struct Manifest
{
    int format = 1;
    Pupil pupil;
    Place place;
    QDateTime time; // with its offset from UTC
    QString version;
    QList<ManifestEntry> files;

    // The manifest of these files, hashed here.
    static Manifest describe(const Pupil &pupil, const Place &place, const QDateTime &time,
        const QString &version, const QList<File> &files);

    QByteArray toJson() const;
    // Empty when `json` is not a manifest of a format this program reads (damaged, or
    // hostile: every field is checked for type, and names for being plain file names).
    static std::optional<Manifest> fromJson(const QByteArray &json);
};

// Lower-case hex SHA-256 of `data`.
QByteArray sha256Hex(const QByteArray &data);

// Whether `name` may be a file inside a bundle: no separator, no leading dot, no control
// character, not empty, at most 120 bytes in UTF-8.
bool isPlainEntryName(const QString &name);

// The program's version as a bundle records it.
QString programVersion();

} // namespace handin
