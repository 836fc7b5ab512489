#pragma once

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QProcess>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>
#include <QUrl>

#include <memory>

#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace testing {

// A real Apache 2 with mod_dav on loopback, for the hand-in's WebDAV destination: its own
// configuration, logs, lock database and upload folder in a temporary folder, one user with
// basic authentication. stop() and start() again keep the port, so that a test can take the
// server away and bring it back. The destructor stops it, also when a test fails midway.
//
//   testing::WebDavServer server;
//   QVERIFY2(server.start(), qPrintable(server.errorLog()));
//   destinations.webdav = server.url(); destinations.user = server.user(); ...
//   server.files() // what arrived, in server.uploadFolder()
class WebDavServer final
{
public:
    // Https: TLS with a certificate made for 127.0.0.1 at the first start, which no one
    // trusts unless told to (certificate()).
    enum class Transport { Http, Https };

    explicit WebDavServer(QString user = QStringLiteral("pupil"),
        QString password = QStringLiteral("secret-1"), Transport transport = Transport::Http)
        : m_user(std::move(user))
        , m_password(std::move(password))
        , m_transport(transport)
    {
    }
    ~WebDavServer() { stop(); }
    WebDavServer(const WebDavServer &) = delete;
    WebDavServer &operator=(const WebDavServer &) = delete;

    static QString apacheBinary() { return QStringLiteral("/usr/sbin/apache2"); }
    static bool available() { return QFile::exists(apacheBinary()) && QFile::exists(htpasswdBinary()); }
    static bool tlsAvailable()
    {
        return available() && QFile::exists(opensslBinary())
            && QFile::exists(modules() + QStringLiteral("mod_ssl.so"));
    }

    // Starts the server and waits until it accepts connections (at most 15 s). The first
    // start picks a free port; later ones reuse it. False with the reason in `why`.
    bool start(QString *why = nullptr)
    {
        if (isRunning())
            return true;
        QString reason;
        bool ok = prepare(reason);
        if (ok && m_port != 0) {
            ok = configure(reason) && launch(reason);
        } else if (ok) {
            // Another program may take the free port before Apache binds it: a few more.
            for (int attempt = 0; attempt < 4; ++attempt) {
                m_port = freePort();
                ok = m_port != 0 && configure(reason) && launch(reason);
                if (ok)
                    break;
            }
            if (!ok)
                m_port = 0;
        }
        if (!ok && why)
            *why = reason;
        if (!ok)
            m_lastError = reason;
        return ok;
    }

    // Stops the server (SIGTERM, then SIGKILL after 10 s) and waits for it to end.
    void stop()
    {
        if (!m_process)
            return;
        if (m_process->state() != QProcess::NotRunning) {
            m_process->terminate();
            if (!m_process->waitForFinished(10000)) {
                m_process->kill();
                m_process->waitForFinished(5000);
            }
        }
        m_process.reset();
        // The children may outlive the parent by a moment; wait until the port is free.
        QDeadlineTimer deadline(5000);
        while (!deadline.hasExpired() && accepts())
            QThread::msleep(50);
    }

    bool isRunning() const { return m_process && m_process->state() == QProcess::Running; }

    quint16 port() const { return m_port; }
    QString user() const { return m_user; }
    QString password() const { return m_password; }

    // The upload collection's URL, without a trailing slash.
    QUrl url() const
    {
        return QUrl(
            QStringLiteral("%1://127.0.0.1:%2/drop")
                .arg(m_transport == Transport::Https ? QStringLiteral("https") : QStringLiteral("http"))
                .arg(m_port));
    }

    // The server's certificate (PEM), once started with Https.
    QByteArray certificate() const
    {
        if (!m_dir)
            return {};
        QFile file(m_dir->filePath(QStringLiteral("cert.pem")));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Where the uploaded files land on disk.
    QString uploadFolder() const { return m_dir ? m_dir->filePath(QStringLiteral("www/drop")) : QString(); }

    // The names of the files in the upload folder, sorted.
    QStringList files() const
    {
        return QDir(uploadFolder()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }

    QByteArray read(const QString &name) const
    {
        QFile file(QDir(uploadFolder()).filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Apache's error log and what it printed, for a failing test's message.
    QString errorLog() const
    {
        QString text = m_lastError;
        if (m_dir) {
            QFile log(m_dir->filePath(QStringLiteral("error.log")));
            if (log.open(QIODevice::ReadOnly))
                text += u'\n' + QString::fromUtf8(log.readAll().right(4000));
        }
        return text;
    }

private:
    static QString htpasswdBinary() { return QStringLiteral("/usr/bin/htpasswd"); }
    static QString opensslBinary() { return QStringLiteral("/usr/bin/openssl"); }

    static bool run(const QString &program, const QStringList &arguments, QString &reason)
    {
        QProcess process;
        process.start(program, arguments);
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit
            || process.exitCode() != 0) {
            reason
                = program + QStringLiteral(" failed: ") + QString::fromUtf8(process.readAllStandardError());
            return false;
        }
        return true;
    }
    static QString modules() { return QStringLiteral("/usr/lib/apache2/modules/"); }

    static quint16 freePort()
    {
        QTcpServer probe;
        if (!probe.listen(QHostAddress::LocalHost, 0))
            return 0;
        const quint16 port = probe.serverPort();
        probe.close();
        return port;
    }

    bool accepts() const
    {
        if (m_port == 0)
            return false;
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, m_port);
        const bool ok = socket.waitForConnected(500);
        socket.abort();
        return ok;
    }

    // Apache will not serve as root: it serves as www-data then, which must reach the
    // folders it writes (the upload folder and its lock database).
    bool handToServer(const QString &path, QString &reason) const
    {
        if (geteuid() != 0)
            return true;
        const passwd *account = getpwnam("www-data");
        if (!account) {
            reason = QStringLiteral("no www-data account to run Apache as");
            return false;
        }
        if (::chown(QFile::encodeName(path).constData(), account->pw_uid, account->pw_gid) != 0) {
            reason = QStringLiteral("cannot hand %1 to www-data").arg(path);
            return false;
        }
        return true;
    }

    bool prepare(QString &reason)
    {
        if (!available()) {
            reason = QStringLiteral("apache2 or htpasswd is not installed");
            return false;
        }
        if (m_dir)
            return true;
        m_dir = std::make_unique<QTemporaryDir>();
        if (!m_dir->isValid()) {
            reason = QStringLiteral("no temporary folder");
            return false;
        }
        const QString root = m_dir->path();
        QFile::setPermissions(root,
            QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner | QFileDevice::ReadGroup
                | QFileDevice::ExeGroup | QFileDevice::ReadOther | QFileDevice::ExeOther);
        QDir(root).mkpath(QStringLiteral("www/drop"));
        QDir(root).mkdir(QStringLiteral("run"));
        if (!handToServer(root + QStringLiteral("/www/drop"), reason)
            || !handToServer(root + QStringLiteral("/run"), reason))
            return false;

        if (!run(htpasswdBinary(),
                {QStringLiteral("-cbB"), root + QStringLiteral("/htpasswd"), m_user, m_password}, reason))
            return false;
        const bool tls = m_transport == Transport::Https;
        if (tls
            && !run(opensslBinary(),
                {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                    QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-days"),
                    QStringLiteral("2"), QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1"),
                    QStringLiteral("-addext"), QStringLiteral("subjectAltName=IP:127.0.0.1,DNS:localhost"),
                    QStringLiteral("-keyout"), root + QStringLiteral("/key.pem"), QStringLiteral("-out"),
                    root + QStringLiteral("/cert.pem")},
                reason))
            return false;

        return true;
    }

    // The configuration for the port in m_port.
    bool configure(QString &reason)
    {
        const QString root = m_dir->path();
        const bool tls = m_transport == Transport::Https;
        const auto module = [](const char *name, const char *file) {
            return QStringLiteral("LoadModule %1 %2%3\n")
                .arg(QLatin1String(name), modules(), QLatin1String(file));
        };
        QString config;
        config += QStringLiteral("ServerRoot \"%1\"\n").arg(root);
        config += QStringLiteral("ServerName 127.0.0.1\n");
        config += QStringLiteral("Listen 127.0.0.1:%1\n").arg(m_port);
        config += QStringLiteral("PidFile \"%1/run/apache.pid\"\n").arg(root);
        config += QStringLiteral("DefaultRuntimeDir \"%1/run\"\n").arg(root);
        config += QStringLiteral("ErrorLog \"%1/error.log\"\n").arg(root);
        config += QStringLiteral("LogLevel warn\n");
        config += module("mpm_prefork_module", "mod_mpm_prefork.so");
        config += module("authz_core_module", "mod_authz_core.so");
        config += module("authn_core_module", "mod_authn_core.so");
        config += module("authn_file_module", "mod_authn_file.so");
        config += module("auth_basic_module", "mod_auth_basic.so");
        config += module("authz_user_module", "mod_authz_user.so");
        config += module("dav_module", "mod_dav.so");
        config += module("dav_fs_module", "mod_dav_fs.so");
        if (tls) {
            config += module("socache_shmcb_module", "mod_socache_shmcb.so");
            config += module("ssl_module", "mod_ssl.so");
            config += QStringLiteral("SSLEngine on\nSSLCertificateFile \"%1/cert.pem\"\n"
                                     "SSLCertificateKeyFile \"%1/key.pem\"\n")
                          .arg(root);
        }
        config += QStringLiteral("StartServers 1\nMinSpareServers 1\nMaxSpareServers 2\n"
                                 "MaxRequestWorkers 4\nKeepAlive On\nTimeout 30\n");
        if (geteuid() == 0)
            config += QStringLiteral("User www-data\nGroup www-data\n");
        config += QStringLiteral("DavLockDB \"%1/run/davlock\"\n").arg(root);
        // The document root holds only the collection; the configuration and the
        // passwords stay beside it, out of reach.
        config += QStringLiteral("DocumentRoot \"%1/www\"\n").arg(root);
        config += QStringLiteral("<Directory \"%1/www/drop\">\n"
                                 "    Dav On\n"
                                 "    AuthType Basic\n"
                                 "    AuthName \"drop\"\n"
                                 "    AuthUserFile \"%1/htpasswd\"\n"
                                 "    Require valid-user\n"
                                 "</Directory>\n")
                      .arg(root);
        QFile file(root + QStringLiteral("/apache.conf"));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(config.toUtf8()) < 0) {
            reason = QStringLiteral("cannot write the configuration");
            return false;
        }
        return true;
    }

    bool launch(QString &reason)
    {
        m_process = std::make_unique<QProcess>();
        m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process->setStandardOutputFile(QProcess::nullDevice());
        // A process group of its own: as it stops, Apache signals its whole group, which
        // in the foreground would otherwise be the test's. It ends with the test even if
        // the test dies: its parent keeps its user in the foreground, so the death signal
        // stays set, and it takes its children with it.
        m_process->setChildProcessModifier([] {
            ::setpgid(0, 0);
            ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        });
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("LANG"), QStringLiteral("C"));
        m_process->setProcessEnvironment(env);
        m_process->start(apacheBinary(),
            {QStringLiteral("-DFOREGROUND"), QStringLiteral("-f"),
                m_dir->filePath(QStringLiteral("apache.conf"))});
        if (!m_process->waitForStarted(10000)) {
            reason = QStringLiteral("apache2 did not start: ") + m_process->errorString();
            m_process.reset();
            return false;
        }
        QDeadlineTimer deadline(15000);
        while (!deadline.hasExpired()) {
            if (m_process->state() != QProcess::Running) {
                reason = QStringLiteral("apache2 ended at once");
                m_process.reset();
                return false;
            }
            if (accepts())
                return true;
            QThread::msleep(50);
        }
        reason = QStringLiteral("apache2 did not listen within 15 s");
        stop();
        return false;
    }

    QString m_user;
    QString m_password;
    Transport m_transport;
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QProcess> m_process;
    quint16 m_port = 0;
    QString m_lastError;
};

} // namespace testing
