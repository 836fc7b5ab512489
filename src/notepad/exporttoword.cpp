#include "exporttoword.h"

#include "frmnotes.h"

#include <errorpolicy.h>
#include <host.h>
#include <launch.h>
#include <notepadstate.h>
#include <richtextbox.h>
#include <rtf.h>
#include <rtffile.h>
#include <session.h>

#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>

namespace exporttoword {

namespace {

bool processRuns(qint64 pid)
{
    return pid > 0 && QFileInfo::exists(QStringLiteral("/proc/%1").arg(pid));
}

void removeFolder(const QString &folder)
{
    QDir(folder).removeRecursively();
}

} // namespace

HandedCopies::HandedCopies(platform::Host &host)
    : m_host(host)
{
    QObject::connect(&m_sweeper, &QTimer::timeout, &m_sweeper, [this] { sweep(); });
}

HandedCopies::~HandedCopies()
{
    removeAll();
}

// The process started on a copy ends once the word processor has read it (a running
// Writer takes the file over and lets the starter go; a Writer started anew ends when the
// pupil closes it). The grace lets a slow reader finish.
void HandedCopies::sweep()
{
    const QDateTime now = m_host.now();
    for (qsizetype i = m_copies.size() - 1; i >= 0; --i) {
        const Copy &copy = m_copies.at(i);
        if (copy.pid > 0 && !processRuns(copy.pid) && copy.handed.msecsTo(now) >= m_grace.count()) {
            removeFolder(copy.folder);
            m_copies.removeAt(i);
        }
    }
    if (m_copies.isEmpty())
        m_sweeper.stop();
}

void HandedCopies::keep(const QString &folder, qint64 pid)
{
    m_copies.append({folder, pid, m_host.now()});
    if (!m_sweeper.isActive())
        m_sweeper.start(int(std::max<qint64>(1000, m_grace.count() / 2)));
}

void HandedCopies::removeAll()
{
    for (const Copy &copy : std::as_const(m_copies))
        removeFolder(copy.folder);
    m_copies.clear();
    m_sweeper.stop();
}

HandedCopies &handedCopies(Session &session)
{
    std::shared_ptr<HandedCopies> &copies = session.notepad().handedCopies;
    if (!copies)
        copies = std::make_shared<HandedCopies>(session.host());
    return *copies;
}

void copyRichText(const QByteArray &rtf, const QString &plainText)
{
    auto *data = new QMimeData;
    data->setData(QStringLiteral("text/rtf"), rtf);
    data->setData(QStringLiteral("application/rtf"), rtf);
    data->setText(plainText);
    QApplication::clipboard()->setMimeData(data);
}

bool openInWordProcessor(Session &session, const QByteArray &rtf)
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
    const platform::LaunchResult launched
        = session.host().launch(program, {QStringLiteral("-n"), file}, QString());
    if (!launched.started) {
        removeFolder(folder.path());
        return false;
    }
    handedCopies(session).keep(folder.path(), launched.pid);
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
    platform::resumeNext([&] { exporttoword::openInWordProcessor(m_session, rtf); });
    platform::resumeNext([&] {
        notes->setSelStart(selStart);
        notes->setSelLength(selLength);
    });
}
