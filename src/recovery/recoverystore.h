#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QString>

#include <memory>

class QLockFile;

// The recovery copies of work that is not saved yet, below
// $XDG_STATE_HOME/tremidia/recovery/ (~/.local/state/... when the variable is unset),
// never in the content folder.
//
// Each running program has a folder of its own there, with a lock file that holds its
// process id for as long as it runs. A folder whose lock nobody holds was left by a
// program that ended without saving or discarding its work (killed, crashed, a power
// cut): that is the lost work offered at the next start. Folders of other programs that
// still run are left alone.
//
// One piece of work is two files: its content (`<name>.rtf`, `<name>.png`) and a JSON
// description that names the content file and tells what is needed to go on. Both are
// written aside and renamed, the content first, so a copy is never half written and a
// description never names a content that isn't there.
namespace recovery {

// One piece of work found in a folder.
struct Entry
{
    QString name; // unique in its folder
    QString kind; // "notes" or "drawing"
    QString contentPath; // the copy of the work itself
    QJsonObject details; // what the window needs to go on: file name, title, map, ...
    qint64 writtenAt = 0; // ms since the epoch
};

class Store
{
public:
    // The store of this program; opened (its folder made and locked) on first use.
    static Store &instance();
    // Forgets the store of this program, its folder left as it is (for tests, which
    // play more than one program in one process, and for a change of state folder).
    static void reset();

    // $XDG_STATE_HOME/tremidia/recovery, or ~/.local/state/tremidia/recovery.
    static QString folder();

    // Milliseconds from a change to its recovery copy: 30 seconds, or
    // $TREMIDIA_RECOVERY_DELAY_MS (the tests' shorter wait).
    static int delayMs();
    static void setDelayMs(int ms); // 0 goes back to the default

    ~Store();
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    // False where the state folder can't be written: the program then works on without
    // recovery copies (said once, in the log).
    bool usable();
    // This program's own folder; empty when not usable.
    QString ownFolder();

    // Writes (or replaces) the copy of one piece of work under `name` (a plain file name
    // without extension, unique in this program). Returns false when it could not.
    bool write(const QString &name, const QString &kind, const QByteArray &content, const QString &extension,
        const QJsonObject &details);
    // Removes the copy of `name`, if there is one.
    void remove(const QString &name);
    // The copies this program has now.
    QList<Entry> ownEntries();

    // Work left by programs that are no longer running, oldest first.
    QList<Entry> lostWork();
    // Takes the lost work into this program's folder, so that it stays safe until it is
    // saved or discarded here; returns the entries as they now are.
    QList<Entry> adoptLostWork();
    // Removes the lost work: the pupil said no to it.
    void discardLostWork();

private:
    Store();
    bool open();
    void failedOnce(const QString &why);
    // Folders of programs that have ended, each locked by us meanwhile.
    QStringList endedFolders(QMap<QString, std::shared_ptr<QLockFile>> *locks);

    QString m_own;
    std::unique_ptr<QLockFile> m_lock;
    bool m_tried = false;
    bool m_usable = false;
    bool m_warned = false;
};

// Reads the entries of one folder (whole ones only: a description whose content is
// missing, or that can't be read, is passed over).
QList<Entry> readEntries(const QString &folder);

} // namespace recovery
