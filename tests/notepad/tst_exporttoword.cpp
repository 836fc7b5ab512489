// The key "Word": the whole note, formatted, to the word processor as a new untitled
// document, and onto the clipboard; nothing shown on failure; the selection restored.

#include "../outside/recorder.h"
#include "notestest.h"

#include <exporttoword.h>
#include <launch.h>
#include <rtf.h>

#include <QClipboard>
#include <QFileInfo>
#include <QMimeData>
#include <QScopeGuard>
#include <QTemporaryDir>

using namespace testing;

class tst_ExportToWord : public QObject, public NotesFixture
{
    Q_OBJECT

private:
    QByteArray m_path;
    QTemporaryDir m_bin;

    QString argvFile() const { return m_bin.filePath(QStringLiteral("argv")); }

private slots:
    void initTestCase()
    {
        m_path = qgetenv("PATH");
        QVERIFY(writeRecorder(m_bin.filePath(QStringLiteral("soffice")), argvFile()));
    }
    void init()
    {
        QFile::remove(argvFile());
        qputenv("PATH", (m_bin.path() + QStringLiteral(":/usr/bin:/bin")).toUtf8());
        beginSession();
        // The word processor the host starts is the recorder in PATH, really started.
        host().onLaunch = [](const Launch &launch) {
            return platform::launchDetached(launch.program, launch.arguments, launch.workingDirectory);
        };
    }
    void cleanup()
    {
        qputenv("PATH", m_path);
        closeAll(session());
        endSession();
    }

    void theWholeNoteGoesFormattedToANewUntitledDocument()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("έντονο και απλό\nδεύτερη γραμμή"));
        select(*form->notes, 0, 6);
        form->notes->setSelBold(true);
        select(*form->notes, 7, 3);
        form->NotesDirty = false;
        Boxes boxes(host());
        form->button(QStringLiteral("Word"))->trigger();

        QCOMPARE(form->notes->SelStart(), 7);
        QCOMPARE(form->notes->SelLength(), 3);
        QVERIFY(!form->NotesDirty);
        QVERIFY(boxes.isEmpty());

        QTRY_VERIFY(QFile::exists(argvFile()));
        const QStringList args = readRecorded(argvFile());
        QCOMPARE(args.size(), 2);
        QCOMPARE(args.at(0), QStringLiteral("-n"));
        QVERIFY(args.at(1).endsWith(QStringLiteral(".rtf")));
        QFile file(args.at(1));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const richtext::PlainText plain = richtext::readPlainText(file.readAll());
        QCOMPARE(plain.text, QStringLiteral("έντονο και απλό\nδεύτερη γραμμή"));
        QVERIFY(plain.runs.front().bold);
        QVERIFY(!plain.runs.back().bold);

        // The user's clipboard now holds the note, as rich text and as plain text.
        const QMimeData *data = QApplication::clipboard()->mimeData();
        QVERIFY(richtext::isRtf(data->data(QStringLiteral("text/rtf"))));
        QCOMPARE(data->text(), QStringLiteral("έντονο και απλό\nδεύτερη γραμμή"));
    }

    void withoutAWordProcessorNothingIsShownAndTheSelectionComesBack()
    {
        qputenv("PATH", "/nonexistent");
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("κείμενο"));
        form->notes->setSelStart(3);
        Boxes boxes(host());
        form->button(QStringLiteral("Word"))->trigger();
        QVERIFY(boxes.isEmpty());
        QCOMPARE(form->notes->SelStart(), 3);
        QCOMPARE(form->notes->SelLength(), 0);
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("κείμενο"));
    }

    void anEmptyNoteOpensAnEmptyDocument()
    {
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->button(QStringLiteral("Word"))->trigger();
        QTRY_VERIFY(QFile::exists(argvFile()));
        QFile file(readRecorded(argvFile()).value(1));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(richtext::readPlainText(file.readAll()).text.trimmed(), QString());
    }

    void theCopyGoesOnceTheWordProcessorHasReadIt()
    {
        exporttoword::handedCopies(session()).setReadGrace(std::chrono::milliseconds(0));
        NotesShell shell(session());
        frmNotes *form = shell.openNotes();
        form->notes->setText(QStringLiteral("κείμενο"));
        form->button(QStringLiteral("Word"))->trigger();
        QTRY_VERIFY(QFile::exists(argvFile()));
        const QString copy = readRecorded(argvFile()).value(1);
        QVERIFY(!copy.isEmpty());
        // The recorder, like a Writer that hands the file to one already running, ends
        // once it has read its arguments.
        QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(copy), 15000);
        QVERIFY(!QFileInfo::exists(QFileInfo(copy).path()));
        QCOMPARE(exporttoword::handedCopies(session()).count(), 0);
    }

    void aCopyWhoseReaderStillRunsGoesWhenTheProgramEnds()
    {
        exporttoword::handedCopies(session()).setReadGrace(std::chrono::milliseconds(0));
        QString copy;
        // A Writer started anew runs until the pupil closes it: here, this very process.
        host().onLaunch = [&copy](const Launch &launch) {
            copy = launch.arguments.value(1);
            return platform::LaunchResult {true, QCoreApplication::applicationPid(), {}};
        };
        auto shell = std::make_unique<NotesShell>(session());
        frmNotes *form = shell->openNotes();
        form->notes->setText(QStringLiteral("κείμενο"));
        form->button(QStringLiteral("Word"))->trigger();
        QVERIFY(QFileInfo::exists(copy));
        QTest::qWait(2500);
        QVERIFY(QFileInfo::exists(copy));
        QCOMPARE(exporttoword::handedCopies(session()).count(), 1);

        // The program's end: its session's.
        closeAll(session());
        shell.reset();
        endSession();
        beginSession();
        QVERIFY(!QFileInfo::exists(copy));
        QVERIFY(!QFileInfo::exists(QFileInfo(copy).path()));
    }
};

QTEST_MAIN(tst_ExportToWord)
#include "tst_exporttoword.moc"
