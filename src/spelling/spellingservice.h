#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>

namespace content {
class Database;
}

namespace spelling {

class Checker;

// What a load of the dictionary gives: the checker, or why there is none.
struct Loaded
{
    std::shared_ptr<Checker> checker;
    QString why;
};

// The session's spell checker: the dictionary loaded on a worker at its first need (about
// a second), then used on the interface thread only; the words the pupil added or passed
// over; whether checking is on, kept in the pupil's settings (Spelling/Enabled).
// Until the dictionary has loaded nothing is marked; a machine without one marks nothing
// and says so once in tremidia.spelling.
class Service final : public QObject
{
    Q_OBJECT

public:
    using Job = std::function<Loaded(const std::atomic_bool &cancelled)>;
    using Done = std::function<void(Loaded)>;
    // Runs the job in the background and hands its result back on `context`'s thread.
    using Runner = std::function<void(QObject *context, Job job, Done done)>;

    // `folders`: where the dictionary is looked for; empty, the system's folders.
    Service(Runner runner, QStringList folders);
    ~Service() override;
    Q_DISABLE_COPY_MOVE(Service)

    enum class State { NotLoaded, Loading, Ready, Unavailable };
    State state() const { return m_state; }
    // Starts loading, once; the ready() signal says when it is done.
    void request();
    // Null until the dictionary has loaded.
    Checker *checker() const;

    bool isEnabled() const;
    void setEnabled(bool on);

    // «Προσθήκη στο λεξικό»: for good, in the pupil's words file.
    void addToDictionary(const QString &word);
    // «Παράβλεψη»: for the rest of this session.
    void ignore(const QString &word);
    // The course's own words, read from its content now (and kept for a checker to come).
    void useCourse(content::Database &database);

signals:
    // The dictionary loaded (or was found missing: then checker() stays null).
    void ready();
    // The known words changed: what was marked must be checked again.
    void wordsChanged();
    void enabledChanged(bool on);

private:
    void loaded(Loaded result);

    Runner m_runner;
    QStringList m_folders;
    State m_state = State::NotLoaded;
    std::shared_ptr<Checker> m_checker;
    QStringList m_courseWords;
    QStringList m_sessionWords;
    mutable int m_enabled = -1; // -1 until read from the settings
};

} // namespace spelling
