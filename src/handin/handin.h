#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

// Handing work in: a pupil's note and drawings go, as one ZIP bundle with a manifest, to
// the school's drop folder or WebDAV share; the teacher lists and reads the bundles.
// Everything here is Qt Core and Network: the windows hand over bytes.
namespace handin {

// Who hands in, as the pupil typed it.
struct Pupil
{
    QString name;      // «Όνομα»
    QString className; // «Τμήμα», e.g. Β2
};

// Where in the course the work was done.
struct Place
{
    QString contentTitle; // the content database's title
    qint32 themeID = 0;
    QString themeTitle;
    qint32 scenarioID = 0;
    QString scenarioTitle;
    qint32 activityID = 0;
    QString activityTitle;
};

// One file of a bundle, by its name inside the ZIP: "note.rtf", "note.pdf",
// "drawing-1.png", "drawing-2.png", ... (manifest.json is made from the rest).
struct File
{
    QString name;
    QByteArray data;
};

inline constexpr char NoteRtfName[] = "note.rtf";
inline constexpr char NotePdfName[] = "note.pdf";
inline constexpr char ManifestName[] = "manifest.json";
// "drawing-<n>.png", n from 1.
QString drawingName(int number);

} // namespace handin
