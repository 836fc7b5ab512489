#pragma once

#include <QString>
#include <QUrl>

namespace handin {

// Where bundles go, as the technician set it in the system settings file, group
// «Παράδοση»: Folder= (a drop folder, usually the school server's share, mode 1733) and/or
// WebDAV= with User= and Password=. Both are used when both are set.
struct Destinations
{
    QString folder;
    QUrl webdav;
    QString user;
    QString password;

    bool any() const { return !folder.isEmpty() || webdav.isValid(); }

    static Destinations fromSettings(); // platform::readSettingsGroup(u"Παράδοση")
};

// The outcome of one try at one destination.
enum class Delivery {
    Delivered, // the bundle is there, whole
    Unavailable, // not there now (server down, share not mounted, disk full, 4xx/5xx): try again
};

// Writes `zip` into `folder` as `fileName`: under a temporary name, fsync, then a rename
// that never replaces anything (a name already taken gets the bundle under a fresh random
// part). Never lists or reads the folder (pupils may write but not read a 1733 folder).
// A file system that can neither rename without replacing nor link gets the bundle written
// straight under its name, created exclusively. Whatever fails, the half-written file is
// removed and nothing else in the folder is touched. `why`: the reason, for the log;
// `deliveredAs`: the name the bundle got.
Delivery deliverToFolder(const QString &folder, const QString &fileName, const QByteArray &zip,
    QString *why = nullptr, QString *deliveredAs = nullptr);

} // namespace handin
