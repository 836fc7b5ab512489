#include "../support/testsession.h"
#include "../support/webdavserver.h"
#include "handinzip.h"
#include "shellcontent.h"

#include <childwindows.h>
#include <destinations.h>
#include <drawingtoolbar.h>
#include <frmdrawing.h>
#include <frmhandin.h>
#include <frmnotes.h>
#include <mdiform1.h>
#include <msgbox.h>
#include <outbox.h>
#include <picphoto.h>
#include <richtextbox.h>
#include <rtffile.h>
#include <session.h>
#include <sourceviewer.h>
#include <twips.h>

#include <QApplication>
#include <QCheckBox>
#include <QCryptographicHash>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMenuBar>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

#include <memory>

using namespace Qt::StringLiterals;

// The pupil hands in through the real shell: an activity open, a note written, a drawing
// made, the menu's «Παράδοση εργασίας…», name and class, Enter; the bundle is read back
// from where it went.
class tst_HandIn : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<testing::ShellContent> m_content;
    std::unique_ptr<testing::TestSession> m_s;
    QPointer<MDIForm1> m_shell;

    Session &session() { return *m_s; }
    testing::RecordingHost &host() { return *m_s->host; }
    QString path(const QString &relative) const { return m_dir->filePath(relative); }

    // The program's clock for the whole test: what the manifest and the status read.
    static QDateTime clock() { return QDateTime(QDate(2026, 11, 25), QTime(10, 42, 7)); }

    // A session of its own with the destinations given, the shell on activity 101.
    MDIForm1 *start(const handin::Destinations &destinations)
    {
        Session::Services services;
        services.handInFolder = path(u"outbox"_s);
        services.handInDestinations = destinations;
        m_s = std::make_unique<testing::TestSession>(std::move(services));
        m_s->host->clock = clock();
        m_content = std::make_unique<testing::ShellContent>();
        if (!m_content->open(session()))
            return nullptr;
        Session::Content &content = session().content();
        content.databaseTitle = u"Δοκιμαστικό μάθημα"_s;
        content.themeID = 2;
        content.scenarioID = 10;
        registerChildWindows(session());
        session().setWindowFactory(Session::Window::StartScreen, [](Session &) { return nullptr; });
        m_shell = qobject_cast<MDIForm1 *>(session().window(Session::Window::Shell));
        m_shell->setSelectedActivity(101);
        m_shell->show();
        m_shell->activateWindow();
        if (!QTest::qWaitForWindowActive(m_shell))
            return nullptr;
        return m_shell;
    }

    void end()
    {
        if (m_shell)
            m_shell->hide();
        m_s.reset();
        m_content.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    frmNotes *writeNote(const QString &text)
    {
        auto *notes = session().window<frmNotes>(Session::Window::Notes);
        CenterAndShow(session(), notes);
        notes->notes->setText(text);
        return notes;
    }

    static void stroke(frmDrawing &drawing, QList<QPoint> points)
    {
        drawing.tlbTools->setValue(u"Pen"_s, 1);
        drawing.tlbTools_ButtonClick(u"Pen"_s);
        const auto tw = [](int pixels) { return double(platform::twipsFromPixelsX(pixels)); };
        const QPoint first = points.takeFirst();
        drawing.picPhoto_MouseDown(1, 0, tw(first.x()), tw(first.y()));
        QPoint last = first;
        for (const QPoint &p : std::as_const(points)) {
            drawing.picPhoto_MouseMove(1, 0, tw(p.x()), tw(p.y()));
            last = p;
        }
        drawing.picPhoto_MouseUp(1, 0, tw(last.x()), tw(last.y()));
    }

    // The shell's drawing window, from the menu, with a line drawn across it.
    frmDrawing *makeDrawing()
    {
        m_shell->mnuDraw->trigger();
        auto *drawing = session().window<frmDrawing>(Session::Window::Drawing, false);
        if (drawing)
            stroke(*drawing, {QPoint(10, 10), QPoint(60, 10), QPoint(60, 40)});
        return drawing;
    }

    // A map opened as a tile opens it, drawn on.
    frmDrawing *drawOnMap()
    {
        auto *map = qobject_cast<frmDrawing *>(session().makeViewer(int(SourceViewer::Kind::Map)));
        map->Load();
        map->setMapPicture(m_content->folder() + u"/pictures/photo303.png"_s);
        map->setWindowTitle(u"Χάρτης της Θήρας"_s);
        CenterAndShow(session(), map);
        stroke(*map, {QPoint(5, 5), QPoint(30, 5)});
        return map;
    }

    // The hand-in window as the pupil reaches it: Ctrl+Shift+P in the shell.
    frmHandIn *openHandIn()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_shell->activateWindow();
        if (!QTest::qWaitForWindowActive(m_shell))
            return nullptr;
        QTest::keyClick(m_shell, Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
        auto *handIn = session().window<frmHandIn>(Session::Window::HandIn, false);
        if (handIn && !QTest::qWaitForWindowExposed(handIn))
            return nullptr;
        return handIn;
    }

    // Typed key by key: QTest's own typing takes Latin-1 only.
    static void type(QWidget *widget, const QString &text)
    {
        for (const QChar c : text) {
            QTest::sendKeyEvent(QTest::Press, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
            QTest::sendKeyEvent(QTest::Release, widget, Qt::Key_unknown, QString(c), Qt::NoModifier);
        }
    }

    static void sign(frmHandIn *handIn, const QString &name, const QString &className)
    {
        handIn->txtName->clear();
        type(handIn->txtName, name);
        handIn->txtClass->clear();
        type(handIn->txtClass, className);
    }

    // The bundles that arrived in a folder, by their paths.
    static QStringList bundlesIn(const QString &folder)
    {
        QStringList paths;
        for (const QString &name : QDir(folder).entryList({u"*.zip"_s}, QDir::Files, QDir::Name))
            paths << QDir(folder).filePath(name);
        return paths;
    }

    void checkBundle(const QString &zip, int drawings)
    {
        const testing::HandInZip read = testing::readHandInZip(zip);
        QVERIFY(read.ok);
        const std::optional<handin::Manifest> manifest = read.manifest();
        QVERIFY(manifest);
        const handin::Manifest &m = *manifest;
        QCOMPARE(m.pupil.name, u"Μαρία Παπαδάκη"_s);
        QCOMPARE(m.pupil.className, u"Β2"_s);
        QCOMPARE(m.place.contentTitle, u"Δοκιμαστικό μάθημα"_s);
        QCOMPARE(m.place.themeID, 2);
        QCOMPARE(m.place.themeTitle, u"Η αθηναϊκή δημοκρατία"_s);
        QCOMPARE(m.place.scenarioID, 10);
        QCOMPARE(m.place.scenarioTitle, u"Ο Κλεισθένης"_s);
        QCOMPARE(m.place.activityID, 101);
        QCOMPARE(m.place.activityTitle, u"Μία πηγή"_s);
        QCOMPARE(m.time, clock());
        QCOMPARE(m.time.offsetFromUtc(), clock().offsetFromUtc());
        QStringList expected = {u"note.rtf"_s, u"note.pdf"_s};
        for (int i = 1; i <= drawings; ++i)
            expected << handin::drawingName(i);
        QStringList listed;
        for (const handin::ManifestEntry &entry : m.files) {
            listed << entry.name;
            QCOMPARE(entry.size, read.entry(entry.name).size());
            QCOMPARE(entry.sha256, handin::sha256Hex(read.entry(entry.name)));
        }
        QCOMPARE(listed, expected);
        QCOMPARE(read.names(), QStringList {u"manifest.json"_s} + expected);
        const QByteArray rtf = read.entry(u"note.rtf"_s);
        QVERIFY(rtf.startsWith("{\\rtf1"));
        QTextDocument note;
        richtext::loadDocument(note, rtf);
        QVERIFY2(note.toPlainText().contains(u"Σημειώσεις"_s), qPrintable(note.toPlainText()));
        QVERIFY(read.entry(u"note.pdf"_s).startsWith("%PDF-"));
        for (int i = 1; i <= drawings; ++i)
            QVERIFY(!QImage::fromData(read.entry(handin::drawingName(i)), "PNG").isNull());
    }

    static handin::Destinations toFolder(const QString &folder)
    {
        handin::Destinations d;
        d.folder = folder;
        return d;
    }

    // Starts the share once to learn its address, stops it, and hands a note in to it.
    void handInWhileTheShareIsDown(
        testing::WebDavServer &server, handin::Destinations &destinations, frmHandIn **handIn)
    {
        QString why;
        QVERIFY2(server.start(&why), qPrintable(why + server.errorLog()));
        server.stop();
        destinations.webdav = server.url();
        destinations.user = server.user();
        destinations.password = server.password();
        QVERIFY(start(destinations));
        writeNote(u"Σημειώσεις για τον Κλεισθένη."_s);
        *handIn = openHandIn();
        QVERIFY(*handIn);
        sign(*handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick((*handIn)->txtClass, Qt::Key_Return);
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        // The pupil's remembered name and class live in a settings file of this test's own.
        qputenv("XDG_CONFIG_HOME", path(u"config"_s).toUtf8());
        QDir().mkpath(path(u"drop"_s));
    }

    void cleanup()
    {
        end();
        m_dir.reset();
    }

    void theMenuItemOpensTheWindowInAnActivity()
    {
        QVERIFY(start(toFolder(path(u"drop"_s))));
        QAction *item = m_shell->mnuHandIn;
        QVERIFY(item);
        QCOMPARE(item->text(), u"Παράδοση εργασίας…"_s);
        QCOMPARE(item->shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
        QVERIFY(m_shell->mnuChoices->actions().contains(item));
        QVERIFY(item->isEnabled());
        item->trigger();
        auto *handIn = session().window<frmHandIn>(Session::Window::HandIn, false);
        QVERIFY(handIn);
        QVERIFY(handIn->isVisible());
        QCOMPARE(handIn->windowTitle(), u"Παράδοση εργασίας"_s);
        QCOMPARE(handIn->cmdHandIn->text(), u"Παράδοση"_s);
        QCOMPARE(handIn->cmdCancel->text(), u"Άκυρο"_s);
        QVERIFY(handIn->cmdHandIn->isDefault());
        // Nothing open yet: nothing to hand in.
        QVERIFY(!handIn->cmdHandIn->isEnabled());
        QVERIFY(handIn->lblNothing->isVisible());
        handIn->close();
        // Outside an activity the item waits.
        m_shell->setSelectedActivity(0);
        QVERIFY(!item->isEnabled());
    }

    void theStatusTakesNothingOfTheShellsClientArea()
    {
        QVERIFY(start(toFolder(path(u"drop"_s))));
        const QRect area = m_shell->area->geometry();
        QVERIFY(m_shell->lblHandIn);
        QCOMPARE(m_shell->menuBar()->cornerWidget(Qt::TopRightCorner), m_shell->lblHandIn);
        m_shell->lblHandIn->setText(u"Σε αναμονή: ο φάκελος παράδοσης δεν είναι διαθέσιμος"_s);
        QApplication::processEvents();
        QCOMPARE(m_shell->size(), QSize(800, 600));
        QCOMPARE(m_shell->area->geometry(), area);
        // The whole status is read, not its last letters: the corner is as wide as its text.
        QVERIFY(m_shell->lblHandIn->isVisible());
        QVERIFY(m_shell->lblHandIn->width()
            >= m_shell->lblHandIn->fontMetrics().horizontalAdvance(m_shell->lblHandIn->text()));
    }

    void aNoteAndDrawingsGoToTheDropFolder()
    {
        QVERIFY(start(toFolder(path(u"drop"_s))));
        writeNote(u"Σημειώσεις για τον Κλεισθένη."_s);
        QVERIFY(makeDrawing());
        frmDrawing *map = drawOnMap();
        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        QVERIFY(handIn->chkNote->isVisible());
        QVERIFY(handIn->chkNote->isChecked());
        QCOMPARE(handIn->chkDrawings.size(), 2);
        for (QCheckBox *check : std::as_const(handIn->chkDrawings))
            QVERIFY(check->isChecked());
        QVERIFY(handIn->chkDrawings.at(1)->text().contains(u"Χάρτης της Θήρας"_s));
        sign(handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick(handIn->txtClass, Qt::Key_Return);

        QTRY_COMPARE(bundlesIn(path(u"drop"_s)).size(), 1);
        const QString zip = bundlesIn(path(u"drop"_s)).first();
        checkBundle(zip, 2);
        // The map's drawing is the map with the pupil's line on it, as the pupil sees it.
        const QImage sent
            = QImage::fromData(testing::readHandInZip(zip).entry(handin::drawingName(2)), "PNG");
        QCOMPARE(sent.convertToFormat(QImage::Format_RGB32),
            map->picPhoto->Picture().convertToFormat(QImage::Format_RGB32));
        QCOMPARE(QColor(sent.pixel(50, 40)), QColor(120, 90, 40));

        const QString delivered = u"Παραδόθηκε στις "_s + clock().toString(u"HH:mm"_s);
        QTRY_COMPARE(handIn->lblStatus->text(), delivered);
        QCOMPARE(m_shell->lblHandIn->text(), delivered);
        // Enter now closes the window: a second hand-in is the button's own.
        QVERIFY(handIn->cmdCancel->isDefault());
        QCOMPARE(handIn->cmdCancel->text(), u"Κλείσιμο"_s);
        QCOMPARE(host().boxes.size(), 0);

        // Handed in again within the same minute: a second bundle, and the status says so.
        handIn->cmdHandIn->click();
        QCOMPARE(handIn->lblStatus->text(), u"Η εργασία παραδίδεται…"_s);
        QTRY_COMPARE(bundlesIn(path(u"drop"_s)).size(), 2);
        QTRY_COMPARE(handIn->lblStatus->text(), delivered);
    }

    void uncheckedDrawingsStayOut()
    {
        QVERIFY(start(toFolder(path(u"drop"_s))));
        writeNote(u"Σημειώσεις για τον Κλεισθένη."_s);
        QVERIFY(makeDrawing());
        drawOnMap();
        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        QCOMPARE(handIn->chkDrawings.size(), 2);
        handIn->chkDrawings.at(0)->setChecked(false);
        sign(handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick(handIn->txtClass, Qt::Key_Return);
        QTRY_COMPARE(bundlesIn(path(u"drop"_s)).size(), 1);
        const testing::HandInZip read = testing::readHandInZip(bundlesIn(path(u"drop"_s)).first());
        QCOMPARE(read.names(),
            (QStringList {u"manifest.json"_s, u"note.rtf"_s, u"note.pdf"_s, u"drawing-1.png"_s}));
        // The one left is the map.
        const QImage sent = QImage::fromData(read.entry(u"drawing-1.png"_s), "PNG");
        QCOMPARE(QColor(sent.pixel(50, 40)), QColor(120, 90, 40));
    }

    void nameAndClassAreRememberedForTheNextSession()
    {
        QVERIFY(start(toFolder(path(u"drop"_s))));
        writeNote(u"Σημειώσεις."_s);
        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        QVERIFY(handIn->txtName->text().isEmpty());
        QVERIFY(handIn->txtName->hasFocus());
        sign(handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick(handIn->txtClass, Qt::Key_Return);
        QTRY_COMPARE(bundlesIn(path(u"drop"_s)).size(), 1);
        end();

        QSettings kept(path(u"config/tremidia/user.conf"_s), QSettings::IniFormat);
        QCOMPARE(kept.value(u"HandIn/Name"_s).toString(), u"Μαρία Παπαδάκη"_s);
        QCOMPARE(kept.value(u"HandIn/Class"_s).toString(), u"Β2"_s);

        QVERIFY(start(toFolder(path(u"drop"_s))));
        writeNote(u"Κι άλλες σημειώσεις."_s);
        handIn = openHandIn();
        QVERIFY(handIn);
        QCOMPARE(handIn->txtName->text(), u"Μαρία Παπαδάκη"_s);
        QCOMPARE(handIn->txtClass->text(), u"Β2"_s);
        // Signed already: Enter hands in at once.
        QVERIFY(handIn->cmdHandIn->hasFocus());
        QTest::keyClick(handIn->cmdHandIn, Qt::Key_Return);
        QTRY_COMPARE(bundlesIn(path(u"drop"_s)).size(), 2);
    }

    void aMissingNameIsAskedFor()
    {
        QVERIFY(start(toFolder(path(u"drop"_s))));
        writeNote(u"Σημειώσεις."_s);
        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        sign(handIn, u""_s, u"Β2"_s);
        handIn->cmdHandIn->click();
        QCOMPARE(host().boxes.size(), 1);
        QCOMPARE(host().boxes.first().text, u"Γράψε το όνομά σου."_s);
        QVERIFY(handIn->isVisible());
        QTest::qWait(50);
        QCOMPARE(bundlesIn(path(u"drop"_s)).size(), 0);
        QCOMPARE(session().handIns().waiting(), 0);
    }

    void cancelHandsInNothing()
    {
        QVERIFY(start(toFolder(path(u"drop"_s))));
        writeNote(u"Σημειώσεις."_s);
        QVERIFY(makeDrawing());
        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        QPointer<frmHandIn> watched = handIn;
        sign(handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick(handIn->txtName, Qt::Key_Escape);
        QTRY_VERIFY(!watched || !watched->isVisible());
        QTest::qWait(50);
        QCOMPARE(bundlesIn(path(u"drop"_s)).size(), 0);
        QCOMPARE(QDir(path(u"outbox"_s)).entryList(QDir::Files).size(), 0);

        handIn = openHandIn();
        QVERIFY(handIn);
        watched = handIn;
        handIn->cmdCancel->click();
        QTRY_VERIFY(!watched || !watched->isVisible());
        QCOMPARE(bundlesIn(path(u"drop"_s)).size(), 0);
        QCOMPARE(host().dialogs.size(), 0);
    }

    void withoutADestinationThePupilSavesTheBundle()
    {
        QVERIFY(start(handin::Destinations()));
        writeNote(u"Σημειώσεις για τον Κλεισθένη."_s);
        QVERIFY(makeDrawing());
        const QString chosen = path(u"chosen/εργασία.zip"_s);
        QDir().mkpath(path(u"chosen"_s));
        host().onDialog = [&](const platform::DialogRequest &request) {
            platform::DialogAnswer answer;
            answer.accepted = request.kind == platform::DialogRequest::Kind::Save;
            answer.fileName = chosen;
            return answer;
        };
        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        sign(handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick(handIn->txtClass, Qt::Key_Return);
        QCOMPARE(host().dialogs.size(), 1);
        const platform::DialogRequest &asked = host().dialogs.first();
        QCOMPARE(asked.kind, platform::DialogRequest::Kind::Save);
        QVERIFY(asked.fileName.endsWith(u".zip"_s));
        QVERIFY(asked.fileName.startsWith(u"Β2_"_s));
        QVERIFY(QFileInfo::exists(chosen));
        checkBundle(chosen, 1);
        QVERIFY(handIn->lblStatus->text().contains(u"εργασία.zip"_s));
        QCOMPARE(session().handIns().waiting(), 0);

        // A file that is there is written over only when the pupil says so.
        const QByteArray first = [&] {
            QFile f(chosen);
            return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        }();
        host().answers = {platform::vbNo};
        handIn->cmdHandIn->click();
        QCOMPARE(host().dialogs.size(), 2);
        QCOMPARE(host().boxes.size(), 1);
        QVERIFY(host().boxes.first().text.contains(u"υπάρχει ήδη"_s));
        QFile again(chosen);
        QVERIFY(again.open(QIODevice::ReadOnly));
        QCOMPARE(again.readAll(), first);
    }

    void theSaveDialogCancelledWritesNothing()
    {
        QVERIFY(start(handin::Destinations()));
        writeNote(u"Σημειώσεις."_s);
        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        sign(handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick(handIn->txtClass, Qt::Key_Return);
        QCOMPARE(host().dialogs.size(), 1);
        QVERIFY(handIn->cmdHandIn->isDefault());
        QCOMPARE(handIn->cmdCancel->text(), u"Άκυρο"_s);
        QCOMPARE(host().boxes.size(), 0);
    }

    void thePupilsOwnFilesStayAsTheyWere()
    {
        QVERIFY(start(toFolder(path(u"drop"_s))));
        // A note the pupil saved, opened again and changed since.
        const QString noteFile = path(u"mine/σημειώσεις.rtf"_s);
        QDir().mkpath(path(u"mine"_s));
        {
            QFile f(noteFile);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("{\\rtf1\\ansi\\ansicpg1253 \\'d3\\'e7\\'ec\\'e5\\'e9\\'fe\\'f3\\'e5\\'e9\\'f2\\par }");
        }
        const QByteArray before = [&] {
            QFile f(noteFile);
            return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        }();
        const QDateTime modified = QFileInfo(noteFile).lastModified();
        frmNotes *notes = writeNote(QString());
        notes->notes->LoadFile(noteFile);
        notes->notes->setSelStart(0);
        type(notes->notes, u"Νέα αρχή. "_s);
        const QString typed = notes->notes->Text();
        frmDrawing *drawing = makeDrawing();
        QVERIFY(drawing);
        const QImage drawn = drawing->picPhoto->Picture();

        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        sign(handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick(handIn->txtClass, Qt::Key_Return);
        QTRY_COMPARE(bundlesIn(path(u"drop"_s)).size(), 1);

        QFile after(noteFile);
        QVERIFY(after.open(QIODevice::ReadOnly));
        QCOMPARE(after.readAll(), before);
        QCOMPARE(QFileInfo(noteFile).lastModified(), modified);
        QCOMPARE(
            QDir(path(u"mine"_s)).entryList(QDir::Files | QDir::Hidden), QStringList {u"σημειώσεις.rtf"_s});
        QCOMPARE(notes->notes->Text(), typed);
        QVERIFY(drawing->PictureChangedSinceKept());
        QCOMPARE(drawing->picPhoto->Picture(), drawn);
    }

    void aWebDavShareReceivesTheBundle()
    {
        if (!testing::WebDavServer::available())
            QSKIP("Apache is not installed");
        testing::WebDavServer server;
        QString why;
        QVERIFY2(server.start(&why), qPrintable(why + server.errorLog()));
        handin::Destinations destinations;
        destinations.webdav = server.url();
        destinations.user = server.user();
        destinations.password = server.password();
        QVERIFY(start(destinations));
        writeNote(u"Σημειώσεις για τον Κλεισθένη."_s);
        QVERIFY(makeDrawing());
        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        sign(handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick(handIn->txtClass, Qt::Key_Return);

        QTRY_COMPARE_WITH_TIMEOUT(server.files().size(), 1, 15000);
        const QString zip = QDir(server.uploadFolder()).filePath(server.files().first());
        QCOMPARE(QFileInfo(zip).fileName(), handIn->LastBundle());
        const QString delivered = u"Παραδόθηκε στις "_s + clock().toString(u"HH:mm"_s);
        QTRY_COMPARE(handIn->lblStatus->text(), delivered);
        QCOMPARE(m_shell->lblHandIn->text(), delivered);
        checkBundle(zip, 1);
        QCOMPARE(session().handIns().waiting(), 0);
        QCOMPARE(host().boxes.size(), 0);
    }

    void aStoppedShareKeepsTheBundleUntilItIsBack()
    {
        if (!testing::WebDavServer::available())
            QSKIP("Apache is not installed");
        testing::WebDavServer server;
        handin::Destinations destinations;
        frmHandIn *handIn = nullptr;
        handInWhileTheShareIsDown(server, destinations, &handIn);
        QVERIFY(handIn);
        QString why;

        QTRY_VERIFY_WITH_TIMEOUT(handIn->lblStatus->text().startsWith(u"Σε αναμονή"_s), 15000);
        QVERIFY(m_shell->lblHandIn->text().startsWith(u"Σε αναμονή"_s));
        QCOMPARE(session().handIns().waiting(), 1);
        // No box for trouble on the network.
        QCOMPARE(host().boxes.size(), 0);

        QVERIFY2(server.start(&why), qPrintable(why + server.errorLog()));
        session().handIns().resend();
        QTRY_COMPARE_WITH_TIMEOUT(server.files().size(), 1, 15000);
        QTRY_COMPARE(session().handIns().waiting(), 0);
        const QString delivered = u"Παραδόθηκε στις "_s + clock().toString(u"HH:mm"_s);
        QTRY_COMPARE(m_shell->lblHandIn->text(), delivered);
        checkBundle(QDir(server.uploadFolder()).filePath(server.files().first()), 0);
        // Once: a further try sends nothing more.
        session().handIns().resend();
        QTest::qWait(300);
        QCOMPARE(server.files().size(), 1);
    }

    void anUploadUnderWayWhenTheProgramEndsStaysQueued()
    {
        // A share that takes the connection and never answers.
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        handin::Destinations destinations;
        destinations.webdav = QUrl(u"http://127.0.0.1:%1/drop"_s.arg(silent.serverPort()));
        destinations.user = u"pupil"_s;
        QVERIFY(start(destinations));
        writeNote(u"Σημειώσεις για τον Κλεισθένη."_s);
        frmHandIn *handIn = openHandIn();
        QVERIFY(handIn);
        sign(handIn, u"Μαρία Παπαδάκη"_s, u"Β2"_s);
        QTest::keyClick(handIn->txtClass, Qt::Key_Return);
        QTRY_VERIFY(silent.hasPendingConnections());
        QCOMPARE(session().handIns().waiting(), 1);
        end();
        QCOMPARE(QDir(path(u"outbox"_s)).entryList({u"*.zip"_s}, QDir::Files).size(), 1);
    }

    void aBundleLeftWaitingGoesAtTheNextStart()
    {
        if (!testing::WebDavServer::available())
            QSKIP("Apache is not installed");
        testing::WebDavServer server;
        handin::Destinations destinations;
        frmHandIn *handIn = nullptr;
        handInWhileTheShareIsDown(server, destinations, &handIn);
        QVERIFY(handIn);
        QString why;
        QTRY_COMPARE_WITH_TIMEOUT(session().handIns().waiting(), 1, 15000);
        end();

        QVERIFY2(server.start(&why), qPrintable(why + server.errorLog()));
        QVERIFY(start(destinations));
        QTRY_COMPARE_WITH_TIMEOUT(server.files().size(), 1, 15000);
        QTRY_COMPARE(session().handIns().waiting(), 0);
    }
};

QTEST_MAIN(tst_HandIn)
#include "tst_handin.moc"
