#pragma once

#include "handin.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace handin {

// The bundle's file name: Τμήμα_Όνομα_Δραστηριότητα_YYYYMMDD-HHMMSS_XXXX.zip, XXXX random.
// What the pupil typed keeps letters (Greek too), digits and '-', nothing else; the name
// has no separator, no leading dot, no control character, and at most 120 bytes in UTF-8
// (the typed parts are shortened, never the time or the random part).
// A space, any other blank or '_' becomes '-' (runs of them one '-', none at either end); every
// other character that is not a letter, a digit or '-' is dropped. A part left empty gets
// «χωρίς-τμήμα», «χωρίς-όνομα» or «χωρίς-δραστηριότητα». XXXX is four of A-Z and 0-9 (upper
// case only, since the school's share may not tell case apart).
QString bundleName(const Pupil &pupil, const QString &activityTitle, const QDateTime &time);

// A typed part of the name as bundleName() keeps it, before any shortening; `fallback`
// when nothing is left.
QString cleanNamePart(const QString &typed, const QString &fallback);

// The same name with a fresh random part, for a name already taken at a destination.
// A name not made by bundleName() gets "_XXXX" before its extension.
QString withFreshRandomPart(const QString &fileName);

inline constexpr int MaxBundleNameBytes = 120;

// One ZIP (made with libzip) of `files` and their manifest.json (first), every entry dated
// `time`; PNG and PDF are stored as they are, the rest deflated. The same input gives the
// same bytes. `zip` is empty when a file's name is not a plain entry name (or is twice, or
// is manifest.json) or libzip failed; nothing can be handed in then.
struct Bundle
{
    QString fileName; // bundleName(...)
    QByteArray zip;
};
Bundle makeBundle(const Pupil &pupil, const Place &place, const QDateTime &time, const QList<File> &files);

} // namespace handin
