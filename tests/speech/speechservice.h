#pragma once

// A speech-dispatcher of the test's own, with espeak-ng's Greek voice, on a socket in a
// temporary folder, sounding nowhere: its ALSA output is a file plugin writing into a pipe
// that this helper empties at the pace of real sound (22050 samples of 16 bits a second),
// so that a text takes as long to say as it would through a sound card, and a machine
// with no sound card (a build server) runs it too. The service stops with the helper.

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace testing {

class SpeechService final
{
public:
    SpeechService() = default;
    ~SpeechService() { stop(); }
    SpeechService(const SpeechService &) = delete;
    SpeechService &operator=(const SpeechService &) = delete;

    // Starts the service and waits until its socket is there; false, with the reason in
    // `why`, when this machine cannot run one.
    bool start(QString *why)
    {
        const QString program = QStandardPaths::findExecutable(QStringLiteral("speech-dispatcher"));
        if (program.isEmpty()) {
            *why = QStringLiteral("speech-dispatcher is not installed");
            return false;
        }
        if (!QFileInfo::exists(QStringLiteral("/usr/lib/speech-dispatcher-modules/sd_espeak-ng"))) {
            *why = QStringLiteral("speech-dispatcher-espeak-ng is not installed");
            return false;
        }
        if (!m_dir.isValid()) {
            *why = QStringLiteral("no temporary folder");
            return false;
        }
        const QDir dir(m_dir.path());
        dir.mkpath(QStringLiteral("config/modules"));
        dir.mkpath(QStringLiteral("log"));
        dir.mkpath(QStringLiteral("home"));
        write(dir.filePath(QStringLiteral("config/speechd.conf")),
            "LogLevel 1\n"
            "AudioOutputMethod \"alsa\"\n"
            "AddModule \"espeak-ng\" \"sd_espeak-ng\" \"espeak-ng.conf\"\n"
            "DefaultModule espeak-ng\n"
            "DefaultLanguage \"el\"\n");
        // espeak-ng's own speeds, the ones the program's rate scale is drawn on.
        write(dir.filePath(QStringLiteral("config/modules/espeak-ng.conf")),
            "EspeakMinRate 80\n"
            "EspeakNormalRate 170\n"
            "EspeakMaxRate 449\n"
            "EspeakIndexing 1\n");
        const QByteArray pipe = QFile::encodeName(dir.filePath(QStringLiteral("sound.pipe")));
        if (::mkfifo(pipe.constData(), 0600) != 0) {
            *why = QStringLiteral("no pipe for the sound");
            return false;
        }
        write(dir.filePath(QStringLiteral("home/.asoundrc")),
            "pcm.!default { type file slave.pcm \"null\" file \"" + pipe + "\" format \"raw\" }\n");
        // Opened before the service opens it for writing, so that the service never waits.
        m_pipe = ::open(pipe.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        if (m_pipe < 0) {
            *why = QStringLiteral("the sound pipe does not open");
            return false;
        }
        // A small pipe: what is written is heard (here: drained) soon after.
        ::fcntl(m_pipe, F_SETPIPE_SZ, 4096);
        m_draining = true;
        m_drain = std::thread([this] { drain(); });

        m_socket = dir.filePath(QStringLiteral("speechd.sock"));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), dir.filePath(QStringLiteral("home")));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_dir.path());
        environment.remove(QStringLiteral("SPEECHD_ADDRESS"));
        m_server.setProcessEnvironment(environment);
        m_server.setStandardOutputFile(QProcess::nullDevice());
        m_server.setStandardErrorFile(dir.filePath(QStringLiteral("log/stderr")));
        m_server.start(program,
            {QStringLiteral("--run-single"), QStringLiteral("--config-dir"),
                dir.filePath(QStringLiteral("config")), QStringLiteral("--communication-method"),
                QStringLiteral("unix_socket"), QStringLiteral("--socket-path"), m_socket,
                QStringLiteral("--timeout"), QStringLiteral("0"), QStringLiteral("--log-dir"),
                dir.filePath(QStringLiteral("log")), QStringLiteral("--pid-file"),
                dir.filePath(QStringLiteral("speechd.pid"))});
        if (!m_server.waitForStarted(5000)) {
            *why = QStringLiteral("speech-dispatcher did not start: ") + m_server.errorString();
            return false;
        }
        QElapsedTimer waited;
        waited.start();
        while (!QFileInfo::exists(m_socket)) {
            if (m_server.state() != QProcess::Running || waited.elapsed() > 10000) {
                *why = QStringLiteral("speech-dispatcher opened no socket");
                return false;
            }
            QTest::qWait(20);
        }
        return true;
    }

    // What a client sets SPEECHD_ADDRESS to.
    QByteArray address() const { return "unix_socket:" + QFile::encodeName(m_socket); }

    void stop()
    {
        if (m_server.state() != QProcess::NotRunning) {
            m_server.terminate();
            if (!m_server.waitForFinished(3000)) {
                m_server.kill();
                m_server.waitForFinished(3000);
            }
        }
        if (m_drain.joinable()) {
            m_draining = false;
            m_drain.join();
        }
        if (m_pipe >= 0) {
            ::close(m_pipe);
            m_pipe = -1;
        }
    }

private:
    static void write(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            file.write(text);
    }

    // Reads the sound at the pace it would be played: 441 bytes every 10 ms.
    void drain()
    {
        char buffer[441];
        while (m_draining) {
            pollfd ready {m_pipe, POLLIN, 0};
            if (::poll(&ready, 1, 10) > 0 && (ready.revents & POLLIN)) {
                if (::read(m_pipe, buffer, sizeof buffer) > 0)
                    ::usleep(10000);
            } else if (ready.revents & POLLHUP) {
                // No writer at the moment: wait for the next one.
                ::usleep(10000);
            }
        }
    }

    QTemporaryDir m_dir;
    QProcess m_server;
    QString m_socket;
    int m_pipe = -1;
    std::atomic_bool m_draining {false};
    std::thread m_drain;
};

} // namespace testing
