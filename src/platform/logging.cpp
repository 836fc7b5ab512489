#include "logging.h"

#include "runtimeerror.h"

#include <QFileInfo>

// Warnings only: a pupil's computer has nothing to show by default, and a technician
// turns the categories on by rule.
Q_LOGGING_CATEGORY(lcErrors, "tremidia.errors", QtWarningMsg)
Q_LOGGING_CATEGORY(lcContent, "tremidia.content", QtWarningMsg)
Q_LOGGING_CATEGORY(lcRecovery, "tremidia.recovery", QtWarningMsg)
Q_LOGGING_CATEGORY(lcMedia, "tremidia.media", QtWarningMsg)
Q_LOGGING_CATEGORY(lcHandin, "tremidia.handin", QtWarningMsg)

namespace platform {

namespace {

QString placeOf(const std::source_location &where)
{
    return QFileInfo(QString::fromUtf8(where.file_name())).fileName() + u':' + QString::number(where.line())
        + QStringLiteral(" (") + QString::fromUtf8(where.function_name()) + u')';
}

} // namespace

void logPassedOver(
    const std::exception *error, const std::source_location &where, const QLoggingCategory &category)
{
    if (!category.isWarningEnabled())
        return;
    QString what;
    if (const auto *runtime = dynamic_cast<const RuntimeError *>(error))
        what = QStringLiteral("error %1: %2").arg(runtime->number()).arg(runtime->description());
    else if (error)
        what = QString::fromLocal8Bit(error->what());
    else
        what = QStringLiteral("an exception of unknown kind");
    qCWarning(category).noquote() << "passed over at" << placeOf(where) << "-" << what;
}

void logCurrentPassedOver(const std::source_location &where, const QLoggingCategory &category)
{
    try {
        throw;
    } catch (const std::exception &e) {
        logPassedOver(&e, where, category);
    } catch (...) {
        logPassedOver(nullptr, where, category);
    }
}

} // namespace platform
