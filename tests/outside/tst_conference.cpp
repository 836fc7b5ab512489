#include "recorder.h"
#include "startforreal.h"

#include <conference.h>
#include <runtimeerror.h>

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

class tst_Conference : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    testing::RecordingHost m_host;

    // A program folder with the characters that a shell would have mangled.
    QString programFolder() const { return m_dir.path() + QStringLiteral("/Τρεμίδια app; \"x\" 'y'"); }
    QString argvFile() const { return m_dir.path() + QStringLiteral("/argv.txt"); }

private slots:
    void init()
    {
        m_host.launches.clear();
        testing::startForReal(m_host);
        QVERIFY(m_dir.isValid());
        QDir(programFolder()).removeRecursively();
        QFile::remove(argvFile());
        QVERIFY(QDir().mkpath(programFolder()));
    }

    void startsTheProgramBelowNetworkWithNoArguments()
    {
        const QString program = programFolder() + QStringLiteral("/Network/conference.exe");
        QVERIFY(testing::writeRecorder(program, argvFile()));

        QCOMPARE(outside::conferenceProgram(programFolder()), program);
        outside::StartConference(m_host, programFolder());
        QCOMPARE(m_host.launches.size(), 1);
        QCOMPARE(m_host.launches[0].program, program);
        QCOMPARE(m_host.launches[0].workingDirectory, QFileInfo(program).absolutePath());
        QTRY_VERIFY(QFileInfo::exists(argvFile()));
        QCOMPARE(testing::readRecorded(argvFile()), QStringList());
    }

    void namesAreMatchedWithoutRegardToCase()
    {
        const QString program = programFolder() + QStringLiteral("/network/Conference.EXE");
        QVERIFY(testing::writeRecorder(program, argvFile()));
        QCOMPARE(outside::conferenceProgram(programFolder()), program);
        outside::StartConference(m_host, programFolder());
        QTRY_VERIFY(QFileInfo::exists(argvFile()));
    }

    void aBuildWithoutExtensionIsFoundToo()
    {
        const QString program = programFolder() + QStringLiteral("/Network/conference");
        QVERIFY(testing::writeRecorder(program, argvFile()));
        QCOMPARE(outside::conferenceProgram(programFolder()), program);
        outside::StartConference(m_host, programFolder());
        QTRY_VERIFY(QFileInfo::exists(argvFile()));
    }

    void missingProgramRaisesFileNotFound()
    {
        try {
            outside::StartConference(m_host, programFolder());
            QFAIL("no error raised");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), 53);
            QVERIFY(!e.description().isEmpty());
        }
    }

    void aFileThatCannotRunRaisesTheError()
    {
        const QString program = programFolder() + QStringLiteral("/Network/conference.exe");
        QDir().mkpath(QFileInfo(program).absolutePath());
        QFile f(program);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("MZ not a program here");
        f.close();
        bool raised = false;
        try {
            outside::StartConference(m_host, programFolder());
        } catch (const platform::RuntimeError &) {
            raised = true;
        }
        QVERIFY(raised);
    }
};

QTEST_GUILESS_MAIN(tst_Conference)
#include "tst_conference.moc"
