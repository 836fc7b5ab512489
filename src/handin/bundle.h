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
QString bundleName(const Pupil &pupil, const QString &activityTitle, const QDateTime &time);

// One ZIP (made with libzip) of `files` and their manifest.json.
struct Bundle
{
    QString fileName; // bundleName(...)
    QByteArray zip;
};
Bundle makeBundle(const Pupil &pupil, const Place &place, const QDateTime &time,
    const QList<File> &files);

} // namespace handin
