#include "jetimportprogress.h"

#include <QProgressDialog>

namespace {

// The dialog counts in int; the import counts bytes or rows in 64 bits.
constexpr int Steps = 1000;

} // namespace

JetImportProgress::JetImportProgress() = default;
JetImportProgress::~JetImportProgress() = default;

std::function<bool(qint64, qint64)> JetImportProgress::callback()
{
    return [this](qint64 done, qint64 total) { return report(done, total); };
}

bool JetImportProgress::report(qint64 done, qint64 total)
{
    if (!m_dialog) {
        // Created at the first report, so the dialog's clock starts with the import.
        m_dialog = std::make_unique<QProgressDialog>(
            QStringLiteral("Φόρτωση περιεχομένου…"), QStringLiteral("Άκυρο"), 0, Steps);
        m_dialog->setWindowTitle(QStringLiteral("Τρεμίδια"));
        m_dialog->setWindowModality(Qt::ApplicationModal);
        m_dialog->setMinimumDuration(MinimumDurationMs);
        m_dialog->setAutoClose(false);
        m_dialog->setAutoReset(false);
        m_dialog->setValue(0);
    }
    int value = Steps;
    if (total > 0)
        value = static_cast<int>(qBound(qint64(0), done * Steps / total, qint64(Steps)));
    // A modal progress dialog processes events in setValue, which keeps the box painted
    // and lets the cancel button through while the import runs.
    m_dialog->setValue(value);
    return !m_dialog->wasCanceled();
}
