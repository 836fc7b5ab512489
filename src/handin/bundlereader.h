#pragma once

#include "manifest.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace handin {

// Reading bundles on the teacher's side. A bundle is untrusted: it is read with limits
// (entries, sizes, the ratio of unpacked to packed bytes), in memory or inside a temporary
// folder, never unpacked anywhere else, and anything wrong makes it `damaged`, never a crash.
struct Limits
{
    int maxEntries = 64;
    qint64 maxEntryBytes = 256LL * 1024 * 1024; // one file
    qint64 maxTotalBytes = 512LL * 1024 * 1024; // all files together
    qint64 maxRatio = 200; // unpacked bytes per packed byte
};

struct BundleInfo
{
    QString path; // the ZIP file
    bool ok = false; // a ZIP, every listed file present, every SHA-256 right
    QString damage; // why not, for the log and the window
    std::optional<Manifest> manifest;
    // The class, pupil, activity and time: from the manifest, else from the file's name.
    QString className, pupil, activity;
    qint32 activityID = 0; // 0 when the manifest could not be read
    QDateTime time;
    QStringList files; // the listed files' names
};

// The pupil's parts of a bundle's file name (Τμήμα_Όνομα_Δραστηριότητα_YYYYMMDD-HHMMSS_XXXX.zip),
// for a bundle whose manifest cannot be read: class, pupil, activity and the local time.
// A name of another shape gives its base name as the pupil and nothing else.
void describeFromFileName(BundleInfo &info);

// The list's order: class, pupil (both in Greek order), time (unknown last), file.
bool bundleBefore(const BundleInfo &a, const BundleInfo &b);

// Whether two classes are one in that order (case and final sigma do not count), so that
// a list groups them together.
bool sameClass(const QString &a, const QString &b);

BundleInfo readBundle(const QString &zipPath, const Limits &limits = {});

// Every *.zip in `folder` (not hidden files, not links), sorted by bundleBefore.
QList<BundleInfo> readBundles(const QString &folder, const Limits &limits = {});

// One listed file's bytes, checked against the manifest; empty when it is not there,
// too large or not what the manifest says.
std::optional<QByteArray> readEntry(const QString &zipPath, const QString &name, const Limits &limits = {});

} // namespace handin
