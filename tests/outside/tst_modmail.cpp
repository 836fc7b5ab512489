#include "recorder.h"
#include "startforreal.h"

#include <desktopentry.h>
#include <modmail.h>

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

class tst_ModMail : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    testing::RecordingHost m_host;
    QString m_argvFile;

    QString root() const { return m_dir.path(); }

    void writeFile(const QString &path, const QString &text)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(text.toUtf8());
    }

    // A desktop whose default mailto handler is `desktopId` with the given Exec line.
    void registerHandler(const QString &desktopId, const QString &exec)
    {
        writeFile(root() + QStringLiteral("/config/mimeapps.list"),
            QStringLiteral("[Default Applications]\nx-scheme-handler/mailto=%1;\n").arg(desktopId));
        writeFile(root() + QStringLiteral("/data/applications/") + desktopId,
            QStringLiteral("[Desktop Entry]\nType=Application\nName=Mail\nExec=%1\n").arg(exec));
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void init()
    {
        QDir(root()).removeRecursively();
        QDir().mkpath(root());
        // A desktop of the test's own, so the machine's settings play no part.
        qputenv("HOME", root().toUtf8());
        qputenv("XDG_CONFIG_HOME", (root() + QStringLiteral("/config")).toUtf8());
        qputenv("XDG_CONFIG_DIRS", (root() + QStringLiteral("/sysconfig")).toUtf8());
        qputenv("XDG_DATA_HOME", (root() + QStringLiteral("/data")).toUtf8());
        qputenv("XDG_DATA_DIRS", (root() + QStringLiteral("/sysdata")).toUtf8());
        for (const char *name : {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
                 "GNOME_DESKTOP_SESSION_ID", "MATE_DESKTOP_SESSION_ID", "XDG_MENU_PREFIX"})
            qunsetenv(name);
        m_argvFile = root() + QStringLiteral("/argv.txt");
        m_host.launches.clear();
        testing::startForReal(m_host);
    }

    void machineWithoutMailtoHandlerGivesFalse() { QVERIFY(!modMail::StartMailClient(m_host)); }

    void handlerStartsWithNoMessage()
    {
        const QString program = root() + QStringLiteral("/bin dir/mail \"client\";x.sh");
        QVERIFY(testing::writeRecorder(program, m_argvFile));
        QString quoted = program;
        quoted.replace(u'\\', QStringLiteral("\\\\\\\\")).replace(u'"', QStringLiteral("\\\\\""));
        registerHandler(QStringLiteral("fakemail.desktop"), u'"' + quoted + QStringLiteral("\" %u"));

        QVERIFY(modMail::StartMailClient(m_host));
        QCOMPARE(m_host.launches.size(), 1);
        QCOMPARE(m_host.launches[0].program, program);
        QTRY_VERIFY(QFileInfo::exists(m_argvFile));
        QCOMPARE(testing::readRecorded(m_argvFile), QStringList());
    }

    void otherPercentTextIsPassedAsItStands()
    {
        const QString program = root() + QStringLiteral("/bin/mailer");
        QVERIFY(testing::writeRecorder(program, m_argvFile));
        registerHandler(
            QStringLiteral("fakemail.desktop"), program + QStringLiteral(" -compose %1 100%% %U"));

        QVERIFY(modMail::StartMailClient(m_host));
        QTRY_VERIFY(QFileInfo::exists(m_argvFile));
        QCOMPARE(testing::readRecorded(m_argvFile),
            (QStringList {QStringLiteral("-compose"), QStringLiteral("%1"), QStringLiteral("100%")}));
    }

    void handlerWhoseProgramIsGoneGivesFalse()
    {
        registerHandler(QStringLiteral("gone.desktop"), root() + QStringLiteral("/bin/no-such-mailer %u"));
        QVERIFY(!modMail::StartMailClient(m_host));
    }

    void handlerWithoutDesktopFileGivesFalse()
    {
        writeFile(root() + QStringLiteral("/config/mimeapps.list"),
            QStringLiteral("[Default Applications]\nx-scheme-handler/mailto=missing.desktop\n"));
        QVERIFY(!modMail::StartMailClient(m_host));
    }

    void execSplitsLikeTheDesktopFormat_data()
    {
        QTest::addColumn<QString>("exec");
        QTest::addColumn<QStringList>("argv");
        QTest::newRow("plain") << QStringLiteral("thunderbird %u")
                               << QStringList {QStringLiteral("thunderbird")};
        QTest::newRow("quoted path") << QStringLiteral("\"/opt/My Mail/mail\" -n %U")
                                     << QStringList {
                                            QStringLiteral("/opt/My Mail/mail"), QStringLiteral("-n")};
        QTest::newRow("escapes in quotes") << QStringLiteral("sh \"a\\\"b\\$c\\\\d\"")
                                           << QStringList {QStringLiteral("sh"), QStringLiteral("a\"b$c\\d")};
        QTest::newRow("semicolon kept")
            << QStringLiteral("prog a;b") << QStringList {QStringLiteral("prog"), QStringLiteral("a;b")};
        QTest::newRow("empty quoted arg")
            << QStringLiteral("prog \"\"") << QStringList {QStringLiteral("prog"), QString()};
        QTest::newRow("icon and name codes") << QStringLiteral("prog %i %c %k --x")
                                             << QStringList {QStringLiteral("prog"), QStringLiteral("--x")};
    }

    void execSplitsLikeTheDesktopFormat()
    {
        QFETCH(QString, exec);
        QFETCH(QStringList, argv);
        QCOMPARE(outside::splitExec(exec), argv);
    }
};

QTEST_GUILESS_MAIN(tst_ModMail)
#include "tst_modmail.moc"
