#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

class QProgressDialog;

// The progress box of a Jet import at start. A school's Jet file is read into memory at
// every start; on a slow machine that takes a while, and the pupil should see that the
// program is working. Small files finish before the box would show.
class JetImportProgress final
{
public:
    // The box stays hidden unless the import is expected to run longer than this.
    static constexpr int MinimumDurationMs = 500;

    JetImportProgress();
    ~JetImportProgress();
    Q_DISABLE_COPY_MOVE(JetImportProgress)

    // For content::OpenOptions::progress. Returns false once the user has cancelled.
    std::function<bool(qint64 done, qint64 total)> callback();

    // Whether the box was created (the import reported progress at all).
    bool started() const { return m_dialog != nullptr; }
    QProgressDialog *dialog() const { return m_dialog.get(); }

private:
    bool report(qint64 done, qint64 total);

    std::unique_ptr<QProgressDialog> m_dialog;
};
