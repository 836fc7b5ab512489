#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <optional>

namespace recovery {

struct Entry;
class Store;

// What a window hands over to be kept: its work as bytes and what it needs to go on.
struct Work
{
    QByteArray content;
    QString extension; // "rtf", "png"
    QJsonObject details;
};

// Keeps the recovery copy of one window's unsaved work. The window tells it when its
// content changes, when it is saved and when the pupil discards it; the copy is written
// at most the store's delayMs() after a change, and removed on a save or a discard.
//
// A window without a change signal of its own can instead be watched: its version
// (any number that changes with the content) is looked at every delay.
class WorkKeeper final : public QObject
{
    Q_OBJECT

public:
    // `unsaved` gives the work, or nothing when there is nothing unsaved to keep.
    WorkKeeper(Store &store, const QString &kind, std::function<std::optional<Work>()> unsaved, QObject *parent);
    ~WorkKeeper() override;
    Q_DISABLE_COPY_MOVE(WorkKeeper)

    // The content changed: a copy is due.
    void changed();
    // The work is in the pupil's file now: the copy goes.
    void saved();
    // The pupil let the work go: the copy goes.
    void discarded();
    // Looks at `version` every delay, and keeps a copy when it moved since the last one.
    void watch(std::function<qint64()> version);
    void stopWatching();

    // Writes the copy at once (or removes it when nothing is unsaved).
    void keepNow();
    // Takes over lost work that the window has just reopened: its copy becomes this
    // keeper's, written at once, and the adopted entry goes.
    void takeOver(const Entry &lost);

    const QString &name() const { return m_name; }
    bool copyPending() const { return m_due.isActive(); }

private:
    Store *store();

    Store &m_store;
    QString m_kind;
    QString m_name; // given by the store at its first use

    std::function<std::optional<Work>()> m_unsaved;
    std::function<qint64()> m_version;
    std::optional<qint64> m_keptVersion;
    QTimer m_due;
    QTimer m_watch;
    bool m_haveCopy = false;
};

} // namespace recovery
