#include "lostwork.h"

#include "childwindows.h"
#include "mdiform1.h"

#include <database.h>
#include <errorpolicy.h>
#include <frmdrawing.h>
#include <frmnotes.h>
#include <msgbox.h>
#include <session.h>
#include <sourceviewer.h>

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace lostwork {

namespace {

// Waits for the shell's first showing (the pupil goes to an activity) and then opens
// the work in it.
class ShellWatcher final : public QObject
{
public:
    explicit ShellWatcher(QList<recovery::Entry> work)
        : m_work(std::move(work))
    {
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show) {
            if (auto *shell = qobject_cast<MDIForm1 *>(watched)) {
                qApp->removeEventFilter(this);
                // After the shell's own loading, its tiles in place.
                QTimer::singleShot(0, shell, [shell = QPointer<MDIForm1>(shell), work = m_work] {
                    if (shell)
                        platform::guarded([&] { reopen(*shell, work); });
                });
                deleteLater();
            }
        }
        return false;
    }

private:
    QList<recovery::Entry> m_work;
};

QString describe(const recovery::Entry &entry)
{
    const QString file = QFileInfo(entry.details.value(QStringLiteral("fileName")).toString()).fileName();
    QString what;
    if (entry.kind == u"notes") {
        what = QStringLiteral("το σημειωματάριο");
    } else {
        const QString title = entry.details.value(QStringLiteral("title")).toString();
        what = title.isEmpty() || title == u"Σχεδιαστήριο"
            ? QStringLiteral("ένα σχέδιο")
            : QStringLiteral("ένα σχέδιο στον χάρτη «%1»").arg(title);
    }
    if (!file.isEmpty())
        what += QStringLiteral(" (%1)").arg(file);
    return QStringLiteral("- ") + what;
}

// Copies that can't be reopened are set aside and told of once, so that they are not
// offered at every start.
void setAsideUnreadable(recovery::Store &store, const QList<recovery::Entry> &unreadable)
{
    if (unreadable.isEmpty())
        return;
    QStringList lines;
    for (const recovery::Entry &entry : unreadable) {
        store.setAside(entry, QStringLiteral("its picture does not decode"));
        lines << describe(entry);
    }
    platform::MsgBox(
        QStringLiteral("Δεν ήταν δυνατό να διαβαστεί η εργασία που είχε μείνει χωρίς αποθήκευση:")
            + QStringLiteral("\r\n") + lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n\r\n")
            + QStringLiteral("Φυλάχτηκε χωριστά, στον φάκελο «%1».")
                  .arg(QDir::toNativeSeparators(recovery::Store::setAsideFolder())),
        platform::vbExclamation);
}

// The drawings among the work whose copies hold no picture that can be read.
QList<recovery::Entry> undecodable(const QList<recovery::Entry> &work)
{
    QList<recovery::Entry> out;
    for (const recovery::Entry &entry : work) {
        if (entry.kind == u"drawing" && frmDrawing::RecoveredPicture(entry.contentPath).isNull())
            out << entry;
    }
    return out;
}

} // namespace

QString question(const QList<recovery::Entry> &work)
{
    QStringList lines;
    for (const recovery::Entry &entry : work)
        lines << describe(entry);
    return QStringLiteral("Την προηγούμενη φορά το πρόγραμμα έκλεισε χωρίς να αποθηκευτεί η εργασία σας:")
        + QStringLiteral("\r\n") + lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n\r\n")
        + QStringLiteral("Θέλετε να την επαναφέρετε; Θα ανοίξει μόλις μπείτε σε μια δραστηριότητα.")
        + QStringLiteral("\r\n")
        + QStringLiteral("Με «Όχι» χάνεται· με «Άκυρο» μένει, και θα ερωτηθείτε ξανά την επόμενη φορά.");
}

void offer(Session &session)
{
    recovery::Store &store = session.recovery();
    if (!store.usable())
        return;
    QList<recovery::Entry> lost = store.lostWork();
    const QList<recovery::Entry> unreadable = undecodable(lost);
    setAsideUnreadable(store, unreadable);
    lost.removeIf([&](const recovery::Entry &entry) {
        return std::any_of(unreadable.begin(), unreadable.end(),
            [&](const recovery::Entry &bad) { return bad.contentPath == entry.contentPath; });
    });
    if (lost.isEmpty())
        return;
    // Only "Όχι" lets the work go: Escape, or closing the box, keeps it for the next start.
    const int answer = platform::MsgBox(question(lost), platform::vbYesNoCancel | platform::vbQuestion);
    if (answer == platform::vbNo) {
        store.discardLostWork();
        return;
    }
    if (answer != platform::vbYes)
        return;
    const QList<recovery::Entry> work = store.adoptLostWork();
    if (work.isEmpty())
        return;
    if (auto *shell = qobject_cast<MDIForm1 *>(session.window(Session::Window::Shell, false));
        shell && shell->isVisible()) {
        reopen(*shell, work);
        return;
    }
    qApp->installEventFilter(new ShellWatcher(work));
}

void reopen(MDIForm1 &shell, const QList<recovery::Entry> &work)
{
    Session &session = shell.session();
    // The notepad is one: the newest note goes into it; an older one stays kept and is
    // offered again at the next start.
    const recovery::Entry *note = nullptr;
    for (const recovery::Entry &entry : work) {
        if (entry.kind == u"notes")
            note = &entry;
    }
    QList<recovery::Entry> unreadable;
    for (const recovery::Entry &entry : work) {
        if (entry.kind == u"drawing") {
            // Made here, not by a tile: it goes when it is closed.
            frmDrawing *drawing = newDrawingWindow(session);
            // Its copy changed since the question: set aside, not an empty painter.
            if (!drawing->RestoreWork(entry)) {
                unreadable << entry;
                drawing->deleteLater();
                continue;
            }
            session.adopt(drawing);
            CenterAndShow(session, drawing);
        }
    }
    setAsideUnreadable(session.recovery(), unreadable);
    if (note) {
        shell.TlbMain_ButtonClick(QStringLiteral("Notes"));
        if (auto *notes = session.window<frmNotes>(Session::Window::Notes, false))
            notes->RestoreWork(*note);
    }
}

} // namespace lostwork
