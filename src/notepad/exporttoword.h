#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QTimer>

#include <chrono>

class Session;

namespace platform {
class Host;
}

// The notes go to the word processor (LibreOffice Writer) as a new, untitled document
// that the pupil then owns; the program does not wait for it. Also on the clipboard.
namespace exporttoword {

// Puts the RTF on the clipboard as rich text, with its plain text beside it.
void copyRichText(const QByteArray &rtf, const QString &plainText);

// Writes the RTF to a file of its own in a private temporary folder and starts the word
// processor on it, through the session's host, as on a template. Returns false when there
// is no word processor or it did not start; nothing is shown either way. The copy is
// removed once the word processor has read it (the process started on it has ended, and
// a short grace has passed), or at the latest when the session ends.
bool openInWordProcessor(Session &session, const QByteArray &rtf);

// The copies handed out and not yet removed: each one's private folder, the process that
// was started on it, and when. Looked at now and then while copies are out; whatever is
// still out goes with this object, which the session owns.
class HandedCopies final
{
public:
    // The host's clock tells each copy's age.
    explicit HandedCopies(platform::Host &host);
    ~HandedCopies();
    HandedCopies(const HandedCopies &) = delete;
    HandedCopies &operator=(const HandedCopies &) = delete;

    void keep(const QString &folder, qint64 pid);
    int count() const { return int(m_copies.size()); }
    void removeAll();
    // How long a copy stays after its reader has gone (tests shorten it).
    void setReadGrace(std::chrono::milliseconds grace) { m_grace = grace; }

private:
    struct Copy
    {
        QString folder;
        qint64 pid = 0;
        QDateTime handed;
    };
    void sweep();

    platform::Host &m_host;
    QList<Copy> m_copies;
    QTimer m_sweeper;
    std::chrono::milliseconds m_grace {10000};
};

// The session's handed copies, made at the first hand-over.
HandedCopies &handedCopies(Session &session);

} // namespace exporttoword
