// The pupil's unsaved note and drawing survive a killed program: a copy is kept while
// the work is unsaved, goes when it is saved or let go, and a killed program's work is
// offered at the next start and reopens, changed and unsaved, in the shell.

#include "../app/shellcontent.h"
#include "../support/recordinghost.h"
#include "../support/testsession.h"
#include "lostcopies.h"

#include <childwindows.h>
#include <commondialog.h>
#include <drawingdialog.h>
#include <frmdrawing.h>
#include <frmnotes.h>
#include <lostwork.h>
#include <mdiform1.h>
#include <modeditor.h>
#include <msgbox.h>
#include <notepadstate.h>
#include <picphoto.h>
#include <recoverystore.h>
#include <richtextbox.h>
#include <session.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <csignal>

using recovery::Store;
using testing::plantNote;
using testing::writeFile;

namespace {

const QString NoteText = QStringLiteral("Οι σημειώσεις της Μαρίας για τον Κλεισθένη");
const QString NoteFile = QStringLiteral("/home/pupil/kleisthenis.rtf");
const QString MapCaption = QStringLiteral("Χάρτης των Κυκλάδων");
const QByteArray LostNote = "{\\rtf1\\ansi Kleisthenis}";

QByteArray noteDescription()
{
    return testing::description(
        QStringLiteral("notes"), QStringLiteral("notes-1.rtf"), {{QStringLiteral("fileName"), NoteFile}});
}

QImage mapPicture()
{
    QImage image(90, 60, QImage::Format_RGB32);
    image.fill(QColor(170, 200, 230));
    return image;
}

// Types as the keyboard does, Greek letters included (QTest's key clicks take Latin-1).
void type(QWidget *widget, const QString &text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(widget, &press);
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(widget, &release);
    }
}

QImage drawnPicture()
{
    QImage image(120, 80, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.fillRect(10, 10, 50, 30, QColor(200, 30, 30));
    return image;
}

// Played by this executable in a process of its own: the pupil writes a note and
// draws, and the program runs on until it is killed.
int editAndRunUntilKilled(const QString &mapFile)
{
    // The program played here has its session, as the real one has.
    testing::TestSession session;
    frmNotes *notes = frmNotes::open(session, true);
    notes->show();
    session->notepad().CurrentFile = NoteFile;
    type(notes->notes, NoteText);
    auto *drawing = new frmDrawing(session);
    drawing->Load();
    drawing->show();
    drawing->picPhoto->setPicture(drawnPicture());
    // A map tile's drawing window, drawn on.
    auto *map = new frmDrawing(session);
    map->setResourceID(205);
    map->Load();
    map->setMapPicture(mapFile);
    map->setMapCaption(MapCaption);
    map->show();
    QImage onMap = mapPicture();
    QPainter(&onMap).fillRect(5, 5, 20, 20, Qt::black);
    map->picPhoto->setPicture(onMap);
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly))
        return 2;
    out.write("edited\n");
    out.flush();
    return QApplication::exec();
}

// Answers every message box of the host with `answer` and keeps what they said.
struct Answers
{
    Answers(testing::RecordingHost &host, int answer)
        : m_host(host)
    {
        host.otherwise = answer;
        host.onBox = [this](const testing::ShownBox &box) {
            texts << box.text;
            styles << box.style;
        };
    }
    ~Answers()
    {
        m_host.otherwise = platform::vbOK;
        m_host.onBox = {};
    }
    Q_DISABLE_COPY_MOVE(Answers)
    QStringList texts;
    QList<int> styles;

private:
    testing::RecordingHost &m_host;
};

frmDrawing *drawingIn(QMdiArea *area, const QString &title)
{
    for (QMdiSubWindow *sub : area->subWindowList()) {
        auto *drawing = qobject_cast<frmDrawing *>(sub->widget());
        if (drawing && drawing->windowTitle() == title)
            return drawing;
    }
    return nullptr;
}

} // namespace

class tst_LostWork : public QObject
{
    Q_OBJECT

    QTemporaryDir m_state;
    testing::ShellContent m_content;
    QString m_mapFile;
    // The running program, new for each test; a restart of its store is the next start.
    std::unique_ptr<testing::TestSession> m_session;

    Store &store() { return (*m_session)->recovery(); }
    Session &session() { return *m_session->session; }
    testing::RecordingHost &host() { return *m_session->host; }

    QString recoveryFolder() const { return m_state.path() + QStringLiteral("/tremidia/recovery"); }

private slots:
    void initTestCase()
    {
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_state.path()));
        m_mapFile = m_state.filePath(QStringLiteral("map.png"));
        QVERIFY(mapPicture().save(m_mapFile, "PNG"));
    }

    void init()
    {
        QDir(recoveryFolder()).removeRecursively();
        m_session = std::make_unique<testing::TestSession>(Session::Services {{}, 200});
        QVERIFY(m_content.open(session()));
        registerChildWindows(session());
        session().setWindowFactory(Session::Window::StartScreen, [](Session &) { return new QWidget; });
    }

    void cleanup()
    {
        {
            // Whatever is left open goes without saving.
            Answers no(host(), platform::vbNo);
            if (ShellWindow *shell = session().shell(false))
                shell->window()->close();
            if (frmNotes *notes = frmNotes::open(session(), false))
                notes->close();
            QApplication::processEvents();
        }
        m_session.reset();
    }

    void noteIsKeptWhileUnsavedAndGoesWhenSavedOrLetGo()
    {
        QTemporaryDir files;
        frmNotes *notes = frmNotes::open(session(), true);
        notes->show();
        type(notes->notes, QStringLiteral("Πρώτη"));
        QTRY_COMPARE_WITH_TIMEOUT(store().ownEntries().size(), 1, 3000);
        QCOMPARE(store().ownEntries()[0].kind, QStringLiteral("notes"));

        // Saved: the copy goes.
        session().notepad().CurrentFile = files.filePath(QStringLiteral("a.rtf"));
        modEditor::FileSave(session());
        QVERIFY(store().ownEntries().isEmpty());

        // "Νέο", and "Όχι" to saving first: let go.
        type(notes->notes, QStringLiteral(" δεύτερη"));
        QTRY_COMPARE_WITH_TIMEOUT(store().ownEntries().size(), 1, 3000);
        {
            Answers no(host(), platform::vbNo);
            modEditor::FileNew(session());
        }
        QTest::qWait(400);
        QVERIFY(store().ownEntries().isEmpty());

        // Closed with "Όχι": let go.
        type(notes->notes, QStringLiteral("Τρίτη"));
        QTRY_COMPARE_WITH_TIMEOUT(store().ownEntries().size(), 1, 3000);
        {
            Answers no(host(), platform::vbNo);
            notes->close();
            QCOMPARE(no.texts.size(), 1);
        }
        QVERIFY(store().ownEntries().isEmpty());
    }

    void drawingIsKeptWhileUnsavedAndGoesWhenSavedOrLetGo()
    {
        QTemporaryDir files;
        auto *drawing = new frmDrawing(session());
        drawing->setAttribute(Qt::WA_DeleteOnClose);
        drawing->Load();
        drawing->show();
        drawing->picPhoto->setPicture(drawnPicture());
        QTRY_COMPARE_WITH_TIMEOUT(store().ownEntries().size(), 1, 3000);
        const recovery::Entry kept = store().ownEntries()[0];
        QCOMPARE(kept.kind, QStringLiteral("drawing"));
        QVERIFY(kept.contentPath.endsWith(QStringLiteral(".png")));
        QCOMPARE(QImage(kept.contentPath).convertToFormat(QImage::Format_RGB32), drawnPicture());

        // Saved under a name: the copy goes.
        m_session->host->onDialog = [&](const platform::DialogRequest &) {
            platform::DialogAnswer saved;
            saved.accepted = true;
            saved.fileName = files.filePath(QStringLiteral("d.bmp"));
            return saved;
        };
        drawing->tlbGeneral_ButtonClick(QStringLiteral("Save"));
        m_session->host->onDialog = {};
        QVERIFY(QFile::exists(files.filePath(QStringLiteral("d.bmp"))));
        QVERIFY(store().ownEntries().isEmpty());

        // Changed again, then "Όχι" to the closing's question: let go.
        QImage changed = drawnPicture();
        changed.fill(Qt::blue);
        drawing->picPhoto->setPicture(changed);
        QTRY_COMPARE_WITH_TIMEOUT(store().ownEntries().size(), 1, 3000);
        {
            Answers no(host(), platform::vbNo);
            drawing->close();
            QCOMPARE(no.texts.size(), 1);
        }
        QVERIFY(store().ownEntries().isEmpty());
    }

    void killedProgramGivesItsWorkBackAtTheNextStart_data()
    {
        QTest::addColumn<int>("delayMs");
        QTest::addColumn<int>("killAfterMs");
        QTest::newRow("copy due within a second, killed after two") << 300 << 2000;
        // As it happens in a classroom: the program's own 30 seconds, killed 35 seconds
        // after the edit.
        QTest::newRow("copy due within 30 s, killed after 35") << 0 << 35000;
    }

    void killedProgramGivesItsWorkBackAtTheNextStart()
    {
        QFETCH(int, delayMs);
        QFETCH(int, killAfterMs);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("TREMIDIA_RECOVERY_DELAY_MS"));
        if (delayMs > 0)
            env.insert(QStringLiteral("TREMIDIA_RECOVERY_DELAY_MS"), QString::number(delayMs));
        QProcess program;
        program.setProcessEnvironment(env);
        program.setProgram(QCoreApplication::applicationFilePath());
        program.setArguments({QStringLiteral("--edit-and-run-until-killed"), m_mapFile});
        program.start();
        QVERIFY(program.waitForReadyRead(30000));
        QElapsedTimer sinceEdit;
        sinceEdit.start();
        QCOMPARE(program.readAllStandardOutput(), QByteArray("edited\n"));
        while (sinceEdit.elapsed() < killAfterMs)
            QTest::qWait(100);
        ::kill(pid_t(program.processId()), SIGKILL);
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitStatus(), QProcess::CrashExit);

        // The next start asks, in Greek, and the pupil says yes.
        Answers yes(host(), platform::vbYes);
        lostwork::offer(session());
        QCOMPARE(yes.texts.size(), 1);
        QVERIFY2(yes.texts[0].contains(QStringLiteral("το σημειωματάριο (kleisthenis.rtf)")),
            qPrintable(yes.texts[0]));
        QVERIFY2(yes.texts[0].contains(QStringLiteral("ένα σχέδιο\r\n")), qPrintable(yes.texts[0]));
        QVERIFY(yes.texts[0].contains(QStringLiteral("ένα σχέδιο στον χάρτη «Χάρτης των Κυκλάδων»")));
        QVERIFY(yes.texts[0].contains(QStringLiteral("Θέλετε να την επαναφέρετε;")));
        QCOMPARE(yes.styles[0], platform::vbYesNoCancel | platform::vbQuestion);

        // The work opens when the pupil goes into an activity.
        QVERIFY(!frmNotes::open(session(), false));
        ShellWindow *shell = session().shell();
        shell->setSelectedActivity(101);
        shell->window()->show();
        QTRY_VERIFY(frmNotes::open(session(), false) && frmNotes::open(session(), false)->isVisible());
        frmNotes *notes = frmNotes::open(session(), false);
        QCOMPARE(notes->notes->Text(), NoteText);
        QVERIFY(notes->NotesDirty);
        QCOMPARE(session().notepad().CurrentFile, NoteFile);
        QTRY_VERIFY(drawingIn(shell->mdiArea(), QStringLiteral("Σχεδιαστήριο")));
        frmDrawing *drawing = drawingIn(shell->mdiArea(), QStringLiteral("Σχεδιαστήριο"));
        QCOMPARE(drawing->picPhoto->Picture().convertToFormat(QImage::Format_RGB32), drawnPicture());
        QVERIFY(drawing->PictureChangedSinceKept());
        // The map's drawing: on its map, under its caption, changed against the map.
        frmDrawing *map = drawingIn(shell->mdiArea(), MapCaption);
        QVERIFY(map);
        QCOMPARE(map->ResourceID(), 205);
        QCOMPARE(map->picPhoto->Picture().pixelColor(10, 10), QColor(Qt::black));
        QVERIFY(map->PictureChangedSinceKept());
        map->picPhoto->setPicture(mapPicture());
        QVERIFY(!map->PictureChangedSinceKept());

        // Still safe from the next crash: kept by this program now, nothing left lost.
        QCOMPARE(store().ownEntries().size(), 3);
        QVERIFY(store().lostWork().isEmpty());

        // Closed with "Όχι" to the questions: nothing is kept any more.
        {
            Answers no(host(), platform::vbNo);
            shell->window()->close();
            QApplication::processEvents();
            QCOMPARE(no.texts.size(), 2);
        }
        QVERIFY(store().ownEntries().isEmpty());
    }

    void lostWorkSaidNoToIsGoneAndNotAskedAgain()
    {
        QProcess program;
        program.setProgram(QCoreApplication::applicationFilePath());
        program.setArguments({QStringLiteral("--edit-and-run-until-killed"), m_mapFile});
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("TREMIDIA_RECOVERY_DELAY_MS"), QStringLiteral("100"));
        program.setProcessEnvironment(env);
        program.start();
        QVERIFY(program.waitForReadyRead(30000));
        QTest::qWait(1500);
        ::kill(pid_t(program.processId()), SIGKILL);
        QVERIFY(program.waitForFinished(10000));
        {
            Answers no(host(), platform::vbNo);
            lostwork::offer(session());
            QCOMPARE(no.texts.size(), 1);
        }
        Answers none(host(), platform::vbYes);
        lostwork::offer(session());
        QVERIFY(none.texts.isEmpty());
    }

    void escapeOrClosingTheQuestionKeepsTheWork_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("Άκυρο") << QStringLiteral("cancel");
        QTest::newRow("Escape") << QStringLiteral("escape");
        QTest::newRow("the box's window closed") << QStringLiteral("close");
    }

    // Only "Όχι" lets the work go: a pupil who presses Escape or closes the box finds it
    // offered again at the next start.
    void escapeOrClosingTheQuestionKeepsTheWork()
    {
        QFETCH(QString, how);
        const QString ended = recoveryFolder() + QStringLiteral("/999-1");
        QVERIFY(plantNote(ended, QStringLiteral("notes-1"), LostNote, noteDescription()));
        if (how == u"cancel") {
            Answers cancel(host(), platform::vbCancel);
            lostwork::offer(session());
            QCOMPARE(cancel.texts.size(), 1);
        } else {
            // The box itself, answered from the keyboard or by its window's frame.
            platform::DesktopHost desktop;
            const platform::HostScope shown(desktop);
            QList<QMessageBox::StandardButton> buttons;
            QTimer answer;
            answer.setInterval(50);
            connect(&answer, &QTimer::timeout, this, [&] {
                auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                if (!box)
                    return;
                answer.stop();
                for (QAbstractButton *button : box->buttons())
                    buttons << box->standardButton(button);
                if (how == u"escape")
                    QTest::keyClick(box, Qt::Key_Escape);
                else
                    box->close();
            });
            answer.start();
            lostwork::offer(session());
            QVERIFY(QFileInfo::exists(ended + QStringLiteral("/notes-1.rtf")));
            QCOMPARE(buttons.size(), 3);
            QVERIFY(buttons.contains(QMessageBox::Cancel));
        }
        QVERIFY(QFileInfo::exists(ended + QStringLiteral("/notes-1.rtf")));
        store().restart();
        Answers again(host(), platform::vbCancel);
        lostwork::offer(session());
        QCOMPARE(again.texts.size(), 1);
        QVERIFY(again.texts[0].contains(QStringLiteral("το σημειωματάριο (kleisthenis.rtf)")));
    }

    // A drawing's copy that does not decode is told of once, set aside, and not asked about.
    void drawingCopyThatDoesNotDecodeIsToldOnceAndSetAside()
    {
        const QString ended = recoveryFolder() + QStringLiteral("/999-1");
        QVERIFY(
            writeFile(ended + QStringLiteral("/drawing-1.png"), QByteArray("\x89PNG\r\n\x1a\n broken", 15)));
        QVERIFY(writeFile(ended + QStringLiteral("/drawing-1.json"),
            testing::description(QStringLiteral("drawing"), QStringLiteral("drawing-1.png"),
                {{QStringLiteral("fileName"), QStringLiteral("/home/pupil/xartis.bmp")}})));
        QVERIFY(plantNote(ended, QStringLiteral("notes-1"), LostNote, noteDescription()));
        QList<testing::ShownBox> &boxes = host().boxes;
        boxes.clear();
        host().answers = {platform::vbOK, platform::vbCancel};
        lostwork::offer(session());
        QCOMPARE(boxes.size(), 2);
        QCOMPARE(boxes[0].style, int(platform::vbExclamation));
        QVERIFY2(
            boxes[0].text.contains(QStringLiteral("ένα σχέδιο (xartis.bmp)")), qPrintable(boxes[0].text));
        QVERIFY(boxes[0].text.contains(QDir::toNativeSeparators(Store::setAsideFolder())));
        QVERIFY(boxes[1].text.contains(QStringLiteral("το σημειωματάριο")));
        QVERIFY(!boxes[1].text.contains(QStringLiteral("σχέδιο")));
        QVERIFY(QFileInfo::exists(Store::setAsideFolder() + QStringLiteral("/999-1/drawing-1.png")));

        // The next start asks about the note alone, and tells nothing more.
        store().restart();
        boxes.clear();
        host().answers = {platform::vbCancel};
        lostwork::offer(session());
        QCOMPARE(boxes.size(), 1);
        QVERIFY(boxes[0].text.contains(QStringLiteral("το σημειωματάριο")));
        QVERIFY(!boxes[0].text.contains(QStringLiteral("σχέδιο")));
    }

    // A description cut short does not lose the note beside it: offered, and reopened.
    void noteWithADamagedDescriptionReopensFromItsContent()
    {
        const QString ended = recoveryFolder() + QStringLiteral("/999-1");
        QVERIFY(plantNote(ended, QStringLiteral("notes-1"), LostNote, noteDescription().left(20)));
        Answers yes(host(), platform::vbYes);
        lostwork::offer(session());
        QCOMPARE(yes.texts.size(), 1);
        QVERIFY(yes.texts[0].contains(QStringLiteral("το σημειωματάριο")));
        ShellWindow *shell = session().shell();
        shell->setSelectedActivity(101);
        shell->window()->show();
        QTRY_VERIFY(frmNotes::open(session(), false) && frmNotes::open(session(), false)->isVisible());
        frmNotes *notes = frmNotes::open(session(), false);
        QVERIFY2(
            notes->notes->Text().contains(QStringLiteral("Kleisthenis")), qPrintable(notes->notes->Text()));
        QVERIFY(notes->NotesDirty);
        QCOMPARE(store().ownEntries().size(), 1);
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc > 2 && QByteArray(argv[1]) == "--edit-and-run-until-killed")
        return editAndRunUntilKilled(QString::fromLocal8Bit(argv[2]));
    tst_LostWork test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_lostwork.moc"
