#include "exporttoword.h"

#include "frmnotes.h"

#include <errorpolicy.h>
#include <launch.h>
#include <richtextbox.h>
#include <rtf.h>
#include <rtffile.h>

#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QPointer>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>

namespace exporttoword {

namespace {

// A copy of the note handed to the word processor: its private folder, the process that
// was started on it, and when.
struct HandedCopy
{
    QString folder;
    qint64 pid = 0;
    QDateTime handed;
};

struct HandedCopies
{
    QList<HandedCopy> copies;
    QPointer<QTimer> sweeper;
    std::chrono::milliseconds grace {10000};
};

HandedCopies &handed()
{
    static HandedCopies state;
    return state;
}

bool processRuns(qint64 pid)
{
    return pid > 0 && QFileInfo::exists(QStringLiteral("/proc/%1").arg(pid));
}

void removeFolder(const QString &folder)
{
    QDir(folder).removeRecursively();
}

// Looked at now and then while copies are out: the process started on a copy ends once
// the word processor has read it (a running Writer takes the file over and lets the
// starter go; a Writer started anew ends when the pupil closes it). The grace lets a
// slow reader finish.
void sweep()
{
    HandedCopies &state = handed();
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (qsizetype i = state.copies.size() - 1; i >= 0; --i) {
        const HandedCopy &copy = state.copies.at(i);
        if (copy.pid > 0 && !processRuns(copy.pid) && copy.handed.msecsTo(now) >= state.grace.count()) {
            removeFolder(copy.folder);
            state.copies.removeAt(i);
        }
    }
    if (state.copies.isEmpty() && state.sweeper)
        state.sweeper->stop();
}

void keep(const QString &folder, qint64 pid)
{
    HandedCopies &state = handed();
    // Whatever is still out goes with the program.
    static const bool removedAtTheEnd = (qAddPostRoutine(removeHandedCopies), true);
    Q_UNUSED(removedAtTheEnd);
    state.copies.append({folder, pid, QDateTime::currentDateTimeUtc()});
    if (!state.sweeper && QCoreApplication::instance()) {
        state.sweeper = new QTimer(QCoreApplication::instance());
        QObject::connect(state.sweeper, &QTimer::timeout, state.sweeper, [] { sweep(); });
    }
    if (state.sweeper && !state.sweeper->isActive())
        state.sweeper->start(std::max<qint64>(1000, state.grace.count() / 2));
}

} // namespace

void removeHandedCopies()
{
    HandedCopies &state = handed();
    for (const HandedCopy &copy : std::as_const(state.copies))
        removeFolder(copy.folder);
    state.copies.clear();
    if (state.sweeper)
        state.sweeper->stop();
}

int handedCopies()
{
    return int(handed().copies.size());
}

void setReadGrace(std::chrono::milliseconds grace)
{
    handed().grace = grace;
}

void copyRichText(const QByteArray &rtf, const QString &plainText)
{
    auto *data = new QMimeData;
    data->setData(QStringLiteral("text/rtf"), rtf);
    data->setData(QStringLiteral("application/rtf"), rtf);
    data->setText(plainText);
    QApplication::clipboard()->setMimeData(data);
}

bool openInWordProcessor(const QByteArray &rtf)
{
    const QString program = platform::wordProcessorProgram();
    if (program.isEmpty())
        return false;
    // A folder of its own, which the word processor may still read after we are gone.
    QTemporaryDir folder(QDir(QStandardPaths::writableLocation(QStandardPaths::TempLocation))
                             .filePath(QStringLiteral("tremidia-notes-XXXXXX")));
    if (!folder.isValid())
        return false;
    folder.setAutoRemove(false);
    const QString file = folder.filePath(QStringLiteral("Σημειωματάριο.rtf"));
    if (!platform::resumeNext([&] { richtext::writeFileWhole(file, rtf); })) {
        removeFolder(folder.path());
        return false;
    }
    // "-n" opens the file as a template: a new untitled document with its content.
    const platform::LaunchResult launched = platform::launchDetached(program, {QStringLiteral("-n"), file});
    if (!launched.started) {
        removeFolder(folder.path());
        return false;
    }
    keep(folder.path(), launched.pid);
    return true;
}

} // namespace exporttoword

void frmNotes::ExportToWord()
{
    // Every step goes on whatever the one before did; no failure is shown, and the
    // selection comes back.
    const int selStart = notes->SelStart();
    const int selLength = notes->SelLength();
    QByteArray rtf;
    platform::resumeNext([&] {
        notes->setSelStart(0);
        notes->setSelLength(notes->TextLength());
    });
    platform::resumeNext([&] {
        rtf = richtext::writeDocument(*notes->document());
        exporttoword::copyRichText(rtf, notes->Text());
    });
    platform::resumeNext([&] { exporttoword::openInWordProcessor(rtf); });
    platform::resumeNext([&] {
        notes->setSelStart(selStart);
        notes->setSelLength(selLength);
    });
}
