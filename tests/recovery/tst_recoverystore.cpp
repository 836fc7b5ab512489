#include "lostcopies.h"

#include <recoverystore.h>
#include <workkeeper.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

using recovery::Store;
using recovery::Work;
using recovery::WorkKeeper;
using testing::isThere;
using testing::plantNote;
using testing::readFile;
using testing::treeOf;
using testing::writeFile;

namespace {

// Played by this executable in a process of its own: a program that keeps a copy of
// some work and then runs until it is killed.
int holdWorkUntilKilled()
{
    Store store;
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

void recordMessage(QtMsgType, const QMessageLogContext &context, const QString &text)
{
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

const QByteArray GoodNote = "{\\rtf1\\ansi Kleisthenis}";

// The most memory this process has held, in KB.
long peakMemoryKb()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

class tst_RecoveryStore : public QObject
{
    Q_OBJECT

    QTemporaryDir m_state;
    // This program's store, new for each test.
    std::unique_ptr<Store> m_store;

    Store &theStore() { return *m_store; }

    QString recoveryFolder() const { return m_state.path() + QStringLiteral("/tremidia/recovery"); }

private slots:
    void init()
    {
        // A recovery folder left a link by a test is removed as one.
        if (QFileInfo(recoveryFolder()).isSymLink())
            QFile::remove(recoveryFolder());
        QDir(recoveryFolder()).removeRecursively();
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_state.path()));
        m_store = std::make_unique<Store>();
        m_store->setDelayMs(100);
    }
    void cleanup()
    {
        m_store.reset();
        qInstallMessageHandler(nullptr);
        QLoggingCategory::setFilterRules({});
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
        theStore().setDelayMs(0);
        QCOMPARE(theStore().delayMs(), 30000);
        qputenv("TREMIDIA_RECOVERY_DELAY_MS", "250");
        QCOMPARE(theStore().delayMs(), 250);
        // Never longer than the promise.
        qputenv("TREMIDIA_RECOVERY_DELAY_MS", "90000");
        QCOMPARE(theStore().delayMs(), 30000);
        qunsetenv("TREMIDIA_RECOVERY_DELAY_MS");
    }

    void copyIsWholeWithItsDescriptionInAFolderOfThisProgram()
    {
        Store &store = theStore();
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
            theStore(), QStringLiteral("notes"),
            [&] {
                return std::optional(Work {text, QStringLiteral("rtf"), {}});
            },
            nullptr);
        keeper.changed();
        QVERIFY(keeper.copyPending());
        QVERIFY(theStore().ownEntries().isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(theStore().ownEntries().size(), 1, 2000);

        text = "second";
        keeper.changed();
        QTRY_VERIFY_WITH_TIMEOUT(!keeper.copyPending(), 2000);
        QFile content(theStore().ownEntries().at(0).contentPath);
        QVERIFY(content.open(QIODevice::ReadOnly));
        QCOMPARE(content.readAll(), QByteArray("second"));

        keeper.saved();
        QVERIFY(theStore().ownEntries().isEmpty());
        keeper.changed();
        keeper.discarded();
        QVERIFY(!keeper.copyPending());
        QTest::qWait(300);
        QVERIFY(theStore().ownEntries().isEmpty());
    }

    void watchedWorkIsKeptWhenItsVersionMovesAndGoesWhenNothingIsUnsaved()
    {
        qint64 version = 1;
        bool unsaved = true;
        WorkKeeper keeper(
            theStore(), QStringLiteral("drawing"),
            [&]() -> std::optional<Work> {
                if (!unsaved)
                    return std::nullopt;
                return Work {QByteArray::number(version), QStringLiteral("png"), {}};
            },
            nullptr);
        keeper.watch([&] { return version; });
        QTest::qWait(300);
        // Nothing moved since the watch began: nothing to keep.
        QVERIFY(theStore().ownEntries().isEmpty());
        version = 2;
        QTRY_COMPARE_WITH_TIMEOUT(theStore().ownEntries().size(), 1, 2000);
        unsaved = false;
        version = 3;
        QTRY_VERIFY_WITH_TIMEOUT(theStore().ownEntries().isEmpty(), 2000);
    }

    void programEndingWithNothingUnsavedLeavesNoFolder()
    {
        theStore().write(QStringLiteral("x"), QStringLiteral("notes"), "x", QStringLiteral("rtf"), {});
        const QString own = theStore().ownFolder();
        theStore().remove(QStringLiteral("x"));
        theStore().restart();
        QVERIFY(!QFileInfo::exists(own));
    }

    void workOfARunningProgramIsLeftAloneAndOfAKilledOneIsLost()
    {
        QProcess other;
        QVERIFY(startOtherProgram(other));

        Store &store = theStore();
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
        Store &store = theStore();
        QCOMPARE(store.lostWork().size(), 1);
        store.discardLostWork();
        QVERIFY(store.lostWork().isEmpty());
        QCOMPARE(QDir(recoveryFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
            QStringList({QFileInfo(store.ownFolder()).fileName()}));
    }

    void linkInRecoveryFolderIsRemovedNotFollowed_data()
    {
        QTest::addColumn<QString>("linkName");
        QTest::newRow("named as a program's folder") << QStringLiteral("999-1");
        QTest::newRow("named otherwise") << QStringLiteral("Έγγραφα");
    }

    // The pupil's documents, behind a link where a program's folder would be: nothing in
    // them is read, written or removed, and the link goes.
    void linkInRecoveryFolderIsRemovedNotFollowed()
    {
        QFETCH(QString, linkName);
        QTemporaryDir documents;
        QVERIFY(writeFile(documents.filePath(QStringLiteral("ergasia.rtf")), GoodNote));
        QVERIFY(plantNote(documents.filePath(QStringLiteral("999-2")), QStringLiteral("notes-1"), GoodNote,
            testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf"))));
        const QStringList before = treeOf(documents.path());
        QVERIFY(QDir().mkpath(recoveryFolder()));
        const QString link = recoveryFolder() + u'/' + linkName;
        QVERIFY(QFile::link(documents.path(), link));

        Store &store = theStore();
        QVERIFY(store.lostWork().isEmpty());
        store.discardLostWork();
        QVERIFY(store.adoptLostWork().isEmpty());
        theStore().restart();

        QCOMPARE(treeOf(documents.path()), before);
        QVERIFY(!isThere(link));
    }

    // A recovery folder that is itself a link to the pupil's documents is not worked in:
    // the link goes, and a folder of the program's own takes its place.
    void recoveryFolderThatIsALinkIsNotFollowed()
    {
        QTemporaryDir documents;
        QVERIFY(writeFile(documents.filePath(QStringLiteral("ergasia.rtf")), GoodNote));
        // In the documents, what looks like a program's folder with lost work, and an empty one.
        QVERIFY(plantNote(documents.filePath(QStringLiteral("999-1")), QStringLiteral("notes-1"), GoodNote,
            testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf"))));
        QVERIFY(QDir().mkpath(documents.filePath(QStringLiteral("999-2"))));
        const QStringList before = treeOf(documents.path());
        QVERIFY(QDir().mkpath(QFileInfo(recoveryFolder()).path()));
        QVERIFY(QFile::link(documents.path(), recoveryFolder()));

        Store &store = theStore();
        QVERIFY(store.usable());
        QVERIFY(store.lostWork().isEmpty());
        QVERIFY(store.write(
            QStringLiteral("notes-1"), QStringLiteral("notes"), "{\\rtf1 new}", QStringLiteral("rtf"), {}));
        store.adoptLostWork();
        store.discardLostWork();
        QCOMPARE(treeOf(documents.path()), before);
        QVERIFY(!QFileInfo(recoveryFolder()).isSymLink());
        QVERIFY(QFileInfo(recoveryFolder()).isDir());
        QVERIFY(store.ownFolder().startsWith(recoveryFolder() + u'/'));
        theStore().restart();
        QCOMPARE(treeOf(documents.path()), before);
    }

    // Links inside a program's folder, to a note, a description, a folder and as its
    // lock: each is removed as a link, none is offered, and their targets stay as they were.
    void linksInsideAProgramsFolderAreRemovedNotFollowed()
    {
        QTemporaryDir documents;
        QVERIFY(writeFile(documents.filePath(QStringLiteral("ergasia.rtf")), GoodNote));
        QVERIFY(writeFile(documents.filePath(QStringLiteral("perigrafi.json")),
            testing::description(QStringLiteral("drawing"), QStringLiteral("drawing-1.png"))));
        QVERIFY(writeFile(documents.filePath(QStringLiteral("lock")), "4242\ntremidia\nhost\n"));
        const QStringList before = treeOf(documents.path());
        const QString ended = recoveryFolder() + QStringLiteral("/999-1");
        QVERIFY(QDir().mkpath(ended));
        QVERIFY(QFile::link(
            documents.filePath(QStringLiteral("ergasia.rtf")), ended + QStringLiteral("/notes-1.rtf")));
        QVERIFY(writeFile(ended + QStringLiteral("/notes-1.json"),
            testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf"))));
        QVERIFY(QFile::link(
            documents.filePath(QStringLiteral("perigrafi.json")), ended + QStringLiteral("/drawing-1.json")));
        QVERIFY(QFile::link(documents.path(), ended + QStringLiteral("/photos")));
        QVERIFY(QFile::link(
            documents.filePath(QStringLiteral("lock")), ended + QStringLiteral("/instance.lock")));

        Store &store = theStore();
        QVERIFY(store.lostWork().isEmpty());
        for (const QString &name : {QStringLiteral("notes-1.rtf"), QStringLiteral("drawing-1.json"),
                 QStringLiteral("photos"), QStringLiteral("instance.lock")})
            QVERIFY2(!QFileInfo(ended + u'/' + name).isSymLink(), qPrintable(name));
        store.discardLostWork();
        store.adoptLostWork();
        theStore().restart();
        QCOMPARE(treeOf(documents.path()), before);
    }

    // A link put in this program's own folder where its next copy goes: the copy takes
    // the link's place, and the file it named stays as it was.
    void copyWrittenWhereALinkStandsReplacesTheLink()
    {
        QTemporaryDir documents;
        const QString target = documents.filePath(QStringLiteral("ergasia.rtf"));
        QVERIFY(writeFile(target, GoodNote));
        Store &store = theStore();
        QVERIFY(QFile::link(target, store.ownFolder() + QStringLiteral("/notes-1.rtf")));
        QVERIFY(QFile::link(target, store.ownFolder() + QStringLiteral("/notes-1.json")));
        QVERIFY(store.write(
            QStringLiteral("notes-1"), QStringLiteral("notes"), "{\\rtf1 new}", QStringLiteral("rtf"), {}));
        QCOMPARE(readFile(target), GoodNote);
        QVERIFY(!QFileInfo(store.ownFolder() + QStringLiteral("/notes-1.rtf")).isSymLink());
        QCOMPARE(store.ownEntries().size(), 1);
        QCOMPARE(readFile(store.ownEntries()[0].contentPath), QByteArray("{\\rtf1 new}"));
        QVERIFY(QFile::link(target, store.ownFolder() + QStringLiteral("/notes-2.rtf")));
        store.remove(QStringLiteral("notes-2"));
        QCOMPARE(readFile(target), GoodNote);
    }

    void damagedDescriptionBesideAGoodNoteIsStillOffered_data()
    {
        QTest::addColumn<QByteArray>("damage");
        const QByteArray whole = testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf"));
        QTest::newRow("cut short") << whole.left(whole.size() / 2);
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("bytes of nothing") << QByteArray("\x00\xff\xfe garbage \x01", 13);
        QTest::newRow("not an object") << QByteArray("[1, 2, 3]");
        QTest::newRow("names a file elsewhere")
            << testing::description(QStringLiteral("notes"), QStringLiteral("../../ergasia.rtf"));
        QTest::newRow("names a content that is not there")
            << testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.png"));
        QTest::newRow("a folder") << QByteArray("folder");
        QTest::newRow("a pipe") << QByteArray("pipe");
    }

    void damagedDescriptionBesideAGoodNoteIsStillOffered()
    {
        QFETCH(QByteArray, damage);
        const QString ended = recoveryFolder() + QStringLiteral("/999-1");
        QVERIFY(plantNote(ended, QStringLiteral("notes-1"), GoodNote, {}));
        const QString descriptionPath = ended + QStringLiteral("/notes-1.json");
        if (damage == "folder")
            QVERIFY(QDir().mkpath(descriptionPath));
        else if (damage == "pipe")
            QCOMPARE(::mkfifo(QFile::encodeName(descriptionPath).constData(), 0600), 0);
        else
            QVERIFY(writeFile(descriptionPath, damage));

        Store &store = theStore();
        const QList<recovery::Entry> lost = store.lostWork();
        QCOMPARE(lost.size(), 1);
        QCOMPARE(lost[0].kind, QStringLiteral("notes"));
        QCOMPARE(lost[0].contentPath, ended + QStringLiteral("/notes-1.rtf"));
        const QList<recovery::Entry> adopted = store.adoptLostWork();
        QCOMPARE(adopted.size(), 1);
        QCOMPARE(readFile(adopted[0].contentPath), GoodNote);
    }

    // A description of 100 MB, where a few hundred bytes are all it takes, is not read
    // at all: the start does not take its size in memory, and the note is offered.
    void hugeDescriptionIsNotReadWhole()
    {
        const QString ended = recoveryFolder() + QStringLiteral("/999-1");
        QVERIFY(plantNote(ended, QStringLiteral("notes-1"), GoodNote, {}));
        QFile description(ended + QStringLiteral("/notes-1.json"));
        QVERIFY(description.open(QIODevice::WriteOnly));
        description.write(
            testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf")).chopped(2));
        description.write(",\"padding\": \"");
        QVERIFY(description.resize(100 * 1024 * 1024));
        description.close();

        const long before = peakMemoryKb();
        const QList<recovery::Entry> lost = theStore().lostWork();
        const long grown = peakMemoryKb() - before;
        QVERIFY2(grown < 16 * 1024, qPrintable(QStringLiteral("grew by %1 KB").arg(grown)));
        QCOMPARE(lost.size(), 1);
        QCOMPARE(lost[0].contentPath, ended + QStringLiteral("/notes-1.rtf"));
    }

    // A program's folder that holds nothing the program can offer, but holds something,
    // is set aside whole rather than removed.
    void folderWithNothingToOfferIsSetAsideNotRemoved()
    {
        const QString ended = recoveryFolder() + QStringLiteral("/999-1");
        QVERIFY(writeFile(ended + QStringLiteral("/notes-1.json"),
            testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf"))));
        QVERIFY(writeFile(ended + QStringLiteral("/simeioseis.txt"), "of the teacher"));
        Store &store = theStore();
        QVERIFY(store.lostWork().isEmpty());
        QVERIFY(!isThere(ended));
        const QString aside = Store::setAsideFolder() + QStringLiteral("/999-1");
        QCOMPARE(readFile(aside + QStringLiteral("/simeioseis.txt")), QByteArray("of the teacher"));
        QVERIFY(QFileInfo::exists(aside + QStringLiteral("/notes-1.json")));
        // Not offered, not removed, at the next start either.
        theStore().restart();
        QVERIFY(theStore().lostWork().isEmpty());
        QCOMPARE(readFile(aside + QStringLiteral("/simeioseis.txt")), QByteArray("of the teacher"));
        // An empty one, as a program killed with nothing unsaved leaves, simply goes.
        QVERIFY(QDir().mkpath(recoveryFolder() + QStringLiteral("/999-2")));
        QVERIFY(theStore().lostWork().isEmpty());
        QVERIFY(!isThere(recoveryFolder() + QStringLiteral("/999-2")));
        QVERIFY(!isThere(Store::setAsideFolder() + QStringLiteral("/999-2")));
    }

    // "Όχι" lets go of the work it was asked about, not of work a program left since.
    void noRemovesOnlyTheWorkAskedAbout()
    {
        QVERIFY(plantNote(recoveryFolder() + QStringLiteral("/999-1"), QStringLiteral("notes-1"), GoodNote,
            testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf"))));
        Store &store = theStore();
        QCOMPARE(store.lostWork().size(), 1);
        QVERIFY(plantNote(recoveryFolder() + QStringLiteral("/999-2"), QStringLiteral("notes-1"), GoodNote,
            testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf"))));
        store.discardLostWork();
        QVERIFY(!isThere(recoveryFolder() + QStringLiteral("/999-1")));
        const QList<recovery::Entry> lost = store.lostWork();
        QCOMPARE(lost.size(), 1);
        QCOMPARE(lost[0].contentPath, recoveryFolder() + QStringLiteral("/999-2/notes-1.rtf"));
    }

    // A copy set aside is kept where a technician finds it, and is offered no more.
    void copySetAsideIsKeptButNoLongerOffered()
    {
        const QString ended = recoveryFolder() + QStringLiteral("/999-1");
        QVERIFY(plantNote(ended, QStringLiteral("notes-1"), GoodNote,
            testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf"))));
        QVERIFY(writeFile(ended + QStringLiteral("/drawing-1.png"), "not a picture"));
        QVERIFY(writeFile(ended + QStringLiteral("/drawing-1.json"),
            testing::description(QStringLiteral("drawing"), QStringLiteral("drawing-1.png"))));
        Store &store = theStore();
        const QList<recovery::Entry> lost = store.lostWork();
        QCOMPARE(lost.size(), 2);
        const recovery::Entry drawing = lost[0].kind == u"drawing" ? lost[0] : lost[1];
        QVERIFY(store.setAside(drawing, QStringLiteral("it does not decode")));
        const QString aside = Store::setAsideFolder() + QStringLiteral("/999-1");
        QCOMPARE(readFile(aside + QStringLiteral("/drawing-1.png")), QByteArray("not a picture"));
        QVERIFY(QFileInfo::exists(aside + QStringLiteral("/drawing-1.json")));
        const QList<recovery::Entry> still = store.lostWork();
        QCOMPARE(still.size(), 1);
        QCOMPARE(still[0].kind, QStringLiteral("notes"));
    }

    // A technician reads in tremidia.recovery every copy removed or set aside, and every
    // link removed.
    void everyCopyRemovedOrSetAsideIsLogged()
    {
        const QString ended = recoveryFolder() + QStringLiteral("/999-1");
        QVERIFY(plantNote(ended, QStringLiteral("notes-1"), GoodNote,
            testing::description(QStringLiteral("notes"), QStringLiteral("notes-1.rtf"))));
        QVERIFY(plantNote(ended, QStringLiteral("notes-2"), GoodNote, "{ cut"));
        QVERIFY(QFile::link(m_state.path(), recoveryFolder() + QStringLiteral("/999-2")));
        QVERIFY(writeFile(recoveryFolder() + QStringLiteral("/999-3/readme.txt"), "?"));
        QLoggingCategory::setFilterRules(QStringLiteral("tremidia.recovery.info=true"));
        g_warnings.clear();
        qInstallMessageHandler(&recordMessage);
        Store &store = theStore();
        QCOMPARE(store.lostWork().size(), 2);
        store.discardLostWork();
        QVERIFY(
            store.write(QStringLiteral("notes-7"), QStringLiteral("notes"), "x", QStringLiteral("rtf"), {}));
        store.remove(QStringLiteral("notes-7"));
        qInstallMessageHandler(nullptr);
        for (const QString &expected : {ended + QStringLiteral("/notes-1.rtf"),
                 ended + QStringLiteral("/notes-2.rtf"), recoveryFolder() + QStringLiteral("/999-2"),
                 recoveryFolder() + QStringLiteral("/999-3"), QStringLiteral("notes-7")}) {
            const bool logged = std::any_of(g_warnings.begin(), g_warnings.end(), [&](const QString &line) {
                return line.startsWith(QStringLiteral("tremidia.recovery ")) && line.contains(expected);
            });
            QVERIFY2(logged, qPrintable(expected + QStringLiteral(" not in:\n") + g_warnings.join(u'\n')));
        }
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
        theStore().restart();
        g_warnings.clear();
        const QtMessageHandler previous = qInstallMessageHandler(&recordWarning);
        WorkKeeper keeper(
            theStore(), QStringLiteral("notes"),
            [] {
                return std::optional(Work {"x", QStringLiteral("rtf"), {}});
            },
            nullptr);
        keeper.keepNow();
        keeper.keepNow();
        QVERIFY(!theStore().usable());
        QVERIFY(theStore().write(QStringLiteral("y"), QStringLiteral("notes"), "y", QStringLiteral("rtf"), {})
            == false);
        QVERIFY(theStore().lostWork().isEmpty());
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
