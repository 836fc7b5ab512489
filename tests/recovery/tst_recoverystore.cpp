#include <recoverystore.h>
#include <workkeeper.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <csignal>

using recovery::Store;
using recovery::Work;
using recovery::WorkKeeper;

namespace {

// Played by this executable in a process of its own: a program that keeps a copy of
// some work and then runs until it is killed.
int holdWorkUntilKilled()
{
    Store &store = Store::instance();
    if (!store.write(QStringLiteral("notes-1"), QStringLiteral("notes"), "{\\rtf1 held}",
            QStringLiteral("rtf"), {{QStringLiteral("fileName"), QStringLiteral("/home/pupil/held.rtf")}}))
        return 2;
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly))
        return 2;
    out.write("ready\n");
    out.flush();
    for (;;)
        QThread::sleep(1);
}

QStringList g_warnings;
void recordWarning(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtWarningMsg)
        g_warnings << QString::fromLatin1(context.category) + u' ' + text;
}

// Starts another program that keeps some work; true once it has.
bool startOtherProgram(QProcess &other)
{
    other.setProgram(QCoreApplication::applicationFilePath());
    other.setArguments({QStringLiteral("--hold-work-until-killed")});
    other.start();
    return other.waitForReadyRead(10000) && other.readAllStandardOutput() == "ready\n";
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files, QDir::Name);
}

} // namespace

class tst_RecoveryStore : public QObject
{
    Q_OBJECT

    QTemporaryDir m_state;

    QString recoveryFolder() const { return m_state.path() + QStringLiteral("/tremidia/recovery"); }

private slots:
    void init()
    {
        QDir(recoveryFolder()).removeRecursively();
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_state.path()));
        Store::reset();
        Store::setDelayMs(100);
    }
    void cleanup()
    {
        Store::reset();
        Store::setDelayMs(0);
    }

    void folderFollowsXdgStateHomeAndDefaultsToLocalState()
    {
        QCOMPARE(Store::folder(), recoveryFolder());
        qputenv("XDG_STATE_HOME", "relative/is/ignored");
        QCOMPARE(Store::folder(), QDir::homePath() + QStringLiteral("/.local/state/tremidia/recovery"));
        qunsetenv("XDG_STATE_HOME");
        QCOMPARE(Store::folder(), QDir::homePath() + QStringLiteral("/.local/state/tremidia/recovery"));
    }

    void delayIsThirtySecondsUnlessGiven()
    {
        Store::setDelayMs(0);
        QCOMPARE(Store::delayMs(), 30000);
        qputenv("TREMIDIA_RECOVERY_DELAY_MS", "250");
        QCOMPARE(Store::delayMs(), 250);
        // Never longer than the promise.
        qputenv("TREMIDIA_RECOVERY_DELAY_MS", "90000");
        QCOMPARE(Store::delayMs(), 30000);
        qunsetenv("TREMIDIA_RECOVERY_DELAY_MS");
    }

    void copyIsWholeWithItsDescriptionInAFolderOfThisProgram()
    {
        Store &store = Store::instance();
        QVERIFY(store.write(QStringLiteral("notes-1"), QStringLiteral("notes"), "{\\rtf1 one}",
            QStringLiteral("rtf"), {{QStringLiteral("fileName"), QStringLiteral("/tmp/a.rtf")}}));
        const QString own = store.ownFolder();
        QVERIFY(own.startsWith(
            recoveryFolder() + u'/' + QString::number(QCoreApplication::applicationPid()) + u'-'));
        // The content, its description, the lock: no half-written file beside them.
        QCOMPARE(filesIn(own),
            QStringList({QStringLiteral("instance.lock"), QStringLiteral("notes-1.json"),
                QStringLiteral("notes-1.rtf")}));
        const QList<recovery::Entry> entries = store.ownEntries();
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries[0].kind, QStringLiteral("notes"));
        QCOMPARE(
            entries[0].details.value(QStringLiteral("fileName")).toString(), QStringLiteral("/tmp/a.rtf"));
        QFile content(entries[0].contentPath);
        QVERIFY(content.open(QIODevice::ReadOnly));
        QCOMPARE(content.readAll(), QByteArray("{\\rtf1 one}"));

        store.remove(QStringLiteral("notes-1"));
        QCOMPARE(filesIn(own), QStringList({QStringLiteral("instance.lock")}));
    }

    void keeperWritesWithinTheDelayOfAChangeAndRemovesOnSaveOrDiscard()
    {
        QByteArray text = "first";
        WorkKeeper keeper(
            QStringLiteral("notes"),
            [&] {
                return std::optional(Work {text, QStringLiteral("rtf"), {}});
            },
            nullptr);
        keeper.changed();
        QVERIFY(keeper.copyPending());
        QVERIFY(Store::instance().ownEntries().isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(Store::instance().ownEntries().size(), 1, 2000);

        text = "second";
        keeper.changed();
        QTRY_VERIFY_WITH_TIMEOUT(!keeper.copyPending(), 2000);
        QFile content(Store::instance().ownEntries().at(0).contentPath);
        QVERIFY(content.open(QIODevice::ReadOnly));
        QCOMPARE(content.readAll(), QByteArray("second"));

        keeper.saved();
        QVERIFY(Store::instance().ownEntries().isEmpty());
        keeper.changed();
        keeper.discarded();
        QVERIFY(!keeper.copyPending());
        QTest::qWait(300);
        QVERIFY(Store::instance().ownEntries().isEmpty());
    }

    void watchedWorkIsKeptWhenItsVersionMovesAndGoesWhenNothingIsUnsaved()
    {
        qint64 version = 1;
        bool unsaved = true;
        WorkKeeper keeper(
            QStringLiteral("drawing"),
            [&]() -> std::optional<Work> {
                if (!unsaved)
                    return std::nullopt;
                return Work {QByteArray::number(version), QStringLiteral("png"), {}};
            },
            nullptr);
        keeper.watch([&] { return version; });
        QTest::qWait(300);
        // Nothing moved since the watch began: nothing to keep.
        QVERIFY(Store::instance().ownEntries().isEmpty());
        version = 2;
        QTRY_COMPARE_WITH_TIMEOUT(Store::instance().ownEntries().size(), 1, 2000);
        unsaved = false;
        version = 3;
        QTRY_VERIFY_WITH_TIMEOUT(Store::instance().ownEntries().isEmpty(), 2000);
    }

    void programEndingWithNothingUnsavedLeavesNoFolder()
    {
        Store::instance().write(QStringLiteral("x"), QStringLiteral("notes"), "x", QStringLiteral("rtf"), {});
        const QString own = Store::instance().ownFolder();
        Store::instance().remove(QStringLiteral("x"));
        Store::reset();
        QVERIFY(!QFileInfo::exists(own));
    }

    void workOfARunningProgramIsLeftAloneAndOfAKilledOneIsLost()
    {
        QProcess other;
        QVERIFY(startOtherProgram(other));

        Store &store = Store::instance();
        QVERIFY(store.usable());
        QVERIFY(store.lostWork().isEmpty());
        store.discardLostWork();
        QCOMPARE(QDir(recoveryFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 2);

        ::kill(pid_t(other.processId()), SIGKILL);
        QVERIFY(other.waitForFinished(10000));
        const QList<recovery::Entry> lost = store.lostWork();
        QCOMPARE(lost.size(), 1);
        QCOMPARE(lost[0].details.value(QStringLiteral("fileName")).toString(),
            QStringLiteral("/home/pupil/held.rtf"));

        // Taken over: the copy is this program's now, and the dead one's folder is gone.
        const QList<recovery::Entry> adopted = store.adoptLostWork();
        QCOMPARE(adopted.size(), 1);
        QVERIFY(adopted[0].contentPath.startsWith(store.ownFolder() + u'/'));
        QFile content(adopted[0].contentPath);
        QVERIFY(content.open(QIODevice::ReadOnly));
        QCOMPARE(content.readAll(), QByteArray("{\\rtf1 held}"));
        QCOMPARE(QDir(recoveryFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
        QVERIFY(store.lostWork().isEmpty());
    }

    void lostWorkSaidNoToIsRemoved()
    {
        QProcess other;
        QVERIFY(startOtherProgram(other));
        ::kill(pid_t(other.processId()), SIGKILL);
        QVERIFY(other.waitForFinished(10000));
        Store &store = Store::instance();
        QCOMPARE(store.lostWork().size(), 1);
        store.discardLostWork();
        QVERIFY(store.lostWork().isEmpty());
        QCOMPARE(QDir(recoveryFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
            QStringList({QFileInfo(store.ownFolder()).fileName()}));
    }

    // A state folder that can't be made (here a file stands where a folder would be,
    // which stops even the superuser): no copies, one line in the log, nothing more.
    void unwritableStateFolderMeansNoCopiesAndOneWarning()
    {
        const QString blocker = m_state.filePath(QStringLiteral("blocked"));
        QFile file(blocker);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        qputenv("XDG_STATE_HOME", QFile::encodeName(blocker));
        Store::reset();
        g_warnings.clear();
        const QtMessageHandler previous = qInstallMessageHandler(&recordWarning);
        WorkKeeper keeper(
            QStringLiteral("notes"),
            [] {
                return std::optional(Work {"x", QStringLiteral("rtf"), {}});
            },
            nullptr);
        keeper.keepNow();
        keeper.keepNow();
        QVERIFY(!Store::instance().usable());
        QVERIFY(Store::instance().write(
                    QStringLiteral("y"), QStringLiteral("notes"), "y", QStringLiteral("rtf"), {})
            == false);
        QVERIFY(Store::instance().lostWork().isEmpty());
        keeper.saved();
        qInstallMessageHandler(previous);
        QCOMPARE(g_warnings.size(), 1);
        QVERIFY2(g_warnings[0].startsWith(QStringLiteral("tremidia.recovery no recovery copies")),
            qPrintable(g_warnings[0]));
    }
};

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc > 1 && QByteArray(argv[1]) == "--hold-work-until-killed")
        return holdWorkUntilKilled();
    tst_RecoveryStore test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_recoverystore.moc"
