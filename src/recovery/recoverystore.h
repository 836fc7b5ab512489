#pragma once

#include "safefolder.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <memory>
#include <vector>

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
// written aside and renamed, the content first, so a copy is never half written; a
// removal takes the content first, so a description alone offers nothing.
//
// The folder is the user's, and anything may be found in it. A link there is removed as
// a link and never followed, nor is a recovery folder that is itself a link; nothing
// outside the folder is ever written or removed. A description that can't be read (cut
// short, damaged, larger than DescriptionLimit) does not lose its work: the content is
// offered by itself. The program removes lost work only when the pupil says no to it;
// what it can't offer or reopen is set aside, under set-aside/ in the folder, where it is
// no longer offered and a technician still finds it. Every copy removed or set aside is
// written to the log (tremidia.recovery).
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
    // A description is a few hundred bytes; one larger than this is not read.
    static constexpr qint64 DescriptionLimit = 64 * 1024;

    // The store of this program: the session owns it. Its folder is made and locked at
    // the first use.
    Store();
    ~Store();
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;

    // Lets go of this program's folder, left as it is, and starts anew at the next use as
    // a program started now would (tests play more than one program in one session).
    void restart();

    // $XDG_STATE_HOME/tremidia/recovery, or ~/.local/state/tremidia/recovery.
    static QString folder();
    // Where copies that are no longer offered are kept: one folder in it for each
    // program's folder they came from.
    static QString setAsideFolder();

    // Milliseconds from a change to its recovery copy: 30 seconds, or
    // $TREMIDIA_RECOVERY_DELAY_MS, or what setDelayMs() gave (the tests' shorter wait).
    int delayMs() const;
    void setDelayMs(int ms); // 0 goes back to the default

    // A number for the name of a new piece of work, unique in this program.
    int nextSerial() { return ++m_serial; }

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
    // Removes the lost work the last lostWork() offered: the pupil said no to it. Work
    // left by a program that ended since is not touched.
    void discardLostWork();
    // Moves one copy, of this program or of an ended one, to the set-aside folder, where
    // it is no longer offered; `why` goes to the log. False when it could not.
    bool setAside(const Entry &entry, const QString &why);

private:
    struct Ended;

    bool open();
    // The end of the program's use of its folder: removed when nothing is left in it.
    void close();
    void failedOnce(const QString &why);
    // Folders of programs that have ended, each locked by us meanwhile. Links found
    // beside them are removed.
    std::vector<Ended> endedFolders();
    bool adopt(const Ended &ended, const Entry &entry);
    // Lets go of an ended program's folder once its work is dealt with.
    void finish(Ended &ended);
    // A program's folder with its lock gone: removed when empty, else set aside.
    void closeFolder(const QByteArray &name, const SafeFolder &dir);
    bool setAsideFolder(const QByteArray &name, const QString &why);
    // The set-aside folder's folder for the copies of `name`'s folder.
    SafeFolder setAsidePlace(const QByteArray &name);
    QByteArray nextLostName();

    QString m_own;
    QByteArray m_ownName;
    SafeFolder m_top;
    SafeFolder m_ownFolder;
    std::unique_ptr<QLockFile> m_lock;
    QList<QByteArray> m_offered;
    int m_lostSerial = 0;
    int m_serial = 0; // kept across restart(): keepers made before it still write
    int m_delayMs = 0;
    bool m_tried = false;
    bool m_usable = false;
    bool m_warned = false;
};

// Reads the entries of one folder: each content with its description, or by itself
// when its description is missing or can't be read; a description whose content is
// missing offers nothing. Links found there are removed.
QList<Entry> readEntries(const SafeFolder &folder);
QList<Entry> readEntries(const QString &folder);

} // namespace recovery
