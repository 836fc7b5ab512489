// Spell checking in the notepad: the marks once the dictionary has loaded, the menu of the
// right button, the pupil's words, the choice kept, and a note saved as it was.

#include "../hotwords/testcontent.h"
#include "notestest.h"

#include <checker.h>
#include <notesspelling.h>
#include <rtffile.h>
#include <settings.h>
#include <spellingservice.h>
#include <wordlists.h>

#include <QFile>
#include <QKeyEvent>
#include <QMenu>
#include <QSettings>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextLayout>

using namespace testing;

namespace {

// The words marked in the note, as the layout draws them.
QStringList markedWords(RichTextBox &box)
{
    QStringList words;
    for (QTextBlock block = box.document()->begin(); block.isValid(); block = block.next())
        for (const QTextLayout::FormatRange &range : block.layout()->formats())
            if (range.format.underlineStyle() == QTextCharFormat::SpellCheckUnderline)
                words << block.text().mid(range.start, range.length);
    return words;
}

QStringList warnings;

void keepSpellingWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg && context.category && QByteArray(context.category) == "tremidia.spelling")
        warnings << message;
}

void keepAllWarnings(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg)
        warnings << message;
}

} // namespace

class tst_NotesSpelling : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void marksAppearOnceTheDictionaryHasLoaded();
    void capitalsAndCourseWordsAreNotMarked();
    void marksLeaveTheNoteAsItWas();
    void suggestionReplacesTheWordAsOneUndo();
    void finalSigmaIsOfferedFirst();
    void addedWordsAreKeptAcrossSessions();
    void ignoredWordsLastTheSessionOnly();
    void theChoiceIsKept();
    void withoutADictionaryNothingIsMarkedAndTheLogSaysSoOnce();
    void aSessionEndingWhileTheDictionaryLoadsStopsIt();

private:
    void begin(Session::Services services = {});
    frmNotes *openNotes();
    void typeNote(frmNotes *form, const QString &text);

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<NotesShell> m_shell;
};

void tst_NotesSpelling::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home->filePath(QStringLiteral("config"))));
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_home->filePath(QStringLiteral("data"))));
    warnings.clear();
}

void tst_NotesSpelling::begin(Session::Services services)
{
    m_session = std::make_unique<TestSession>(std::move(services));
    registerNotepadWindows(*m_session);
    m_shell = std::make_unique<NotesShell>(*m_session);
}

void tst_NotesSpelling::cleanup()
{
    if (m_session) {
        closeAll(*m_session);
        m_shell.reset();
        m_session.reset();
    }
    qInstallMessageHandler(nullptr);
    m_home.reset();
}

frmNotes *tst_NotesSpelling::openNotes()
{
    return m_shell->openNotes();
}

void tst_NotesSpelling::typeNote(frmNotes *form, const QString &text)
{
    // As the keyboard types: one key at a time, each with its Greek letter.
    form->notes->setFocus();
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QApplication::sendEvent(form->notes, &press);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QApplication::sendEvent(form->notes, &release);
    }
}

void tst_NotesSpelling::marksAppearOnceTheDictionaryHasLoaded()
{
    begin();
    frmNotes *form = openNotes();
    typeNote(form, QStringLiteral("Ο κόσμοσ είναι ωραίος και το σπιτι μεγάλο."));
    QTRY_VERIFY_WITH_TIMEOUT((*m_session)->spelling().checker() != nullptr, 20000);
    QTRY_COMPARE(markedWords(*form->notes), QStringList({QStringLiteral("κόσμοσ"), QStringLiteral("σπιτι")}));
    // Typing goes on being checked, paragraph by paragraph.
    QTest::keyClick(form->notes, Qt::Key_End, Qt::ControlModifier);
    typeNote(form, QStringLiteral(" Νεο"));
    QTRY_VERIFY(markedWords(*form->notes).contains(QStringLiteral("Νεο")));
}

void tst_NotesSpelling::capitalsAndCourseWordsAreNotMarked()
{
    testcontent::Builder builder;
    builder.textResource(1, QStringLiteral("a.rtf"), QStringLiteral("Τα χρονικά της Τρεμιδόπολης"))
        .term(1, QStringLiteral("Ζαγορίσιος"), QStringLiteral("εξήγηση"), 1)
        .comment(1, QStringLiteral("σχόλιο"))
        .commentLink(1, 1, QStringLiteral("Καστροπυργίτες"));
    begin();
    (*m_session)->content().database = builder.database();
    frmNotes *form = openNotes();
    typeNote(form, QStringLiteral("ΚΟΣΜΟΣ ΚΌΣΜΟΣ ΑΘΗΝΑ Κόσμος Τρεμιδόπολης Ζαγορίσιος ΚΑΣΤΡΟΠΥΡΓΙΤΕΣ ΣΠΙΤΚ"));
    QTRY_VERIFY_WITH_TIMEOUT((*m_session)->spelling().checker() != nullptr, 20000);
    QTRY_COMPARE(markedWords(*form->notes), QStringList({QStringLiteral("ΣΠΙΤΚ")}));
}

void tst_NotesSpelling::marksLeaveTheNoteAsItWas()
{
    const QString text = QStringLiteral("Ο κόσμοσ και το σπιτι, ΚΟΣΜΟΣ.");
    // Saved with checking off.
    begin();
    (*m_session)->spelling().setEnabled(false);
    frmNotes *form = openNotes();
    typeNote(form, text);
    const QString offPath = m_home->filePath(QStringLiteral("off.rtf"));
    form->notes->SaveFile(offPath);
    QVERIFY(markedWords(*form->notes).isEmpty());
    closeAll(*m_session);
    m_shell.reset();
    m_session.reset();

    // Saved with checking on, once the marks are there.
    begin();
    (*m_session)->spelling().setEnabled(true);
    form = openNotes();
    typeNote(form, text);
    const int undoSteps = form->notes->document()->availableUndoSteps();
    form->NotesDirty = false;
    form->notes->document()->setModified(false);
    QTRY_VERIFY_WITH_TIMEOUT(!markedWords(*form->notes).isEmpty(), 20000);
    QCoreApplication::processEvents();
    QVERIFY(!form->NotesDirty);
    QVERIFY(!form->notes->document()->isModified());
    QCOMPARE(form->notes->document()->availableUndoSteps(), undoSteps);
    const QString onPath = m_home->filePath(QStringLiteral("on.rtf"));
    form->notes->SaveFile(onPath);
    QCOMPARE(richtext::readFile(onPath), richtext::readFile(offPath));
}

void tst_NotesSpelling::suggestionReplacesTheWordAsOneUndo()
{
    begin();
    frmNotes *form = openNotes();
    typeNote(form, QStringLiteral("Καλό σπιτι εδώ"));
    QTRY_VERIFY_WITH_TIMEOUT(form->Spelling->isActive(), 20000);
    QMenu menu;
    QVERIFY(!form->Spelling->fillContextMenu(menu, 1)); // on «Καλό»: nothing to offer
    QVERIFY(menu.actions().isEmpty());
    QVERIFY(form->Spelling->fillContextMenu(menu, 7));
    QList<QAction *> items = menu.actions();
    QVERIFY(items.size() >= 4);
    QCOMPARE(items.at(0)->text(), QStringLiteral("σπίτι"));
    QCOMPARE(items.at(items.size() - 2)->text(), QStringLiteral("Προσθήκη στο λεξικό"));
    QCOMPARE(items.last()->text(), QStringLiteral("Παράβλεψη"));
    items.at(0)->trigger();
    QCOMPARE(form->notes->Text(), QStringLiteral("Καλό σπίτι εδώ"));
    QTRY_VERIFY(markedWords(*form->notes).isEmpty());
    form->notes->Undo();
    QCOMPARE(form->notes->Text(), QStringLiteral("Καλό σπιτι εδώ"));
}

void tst_NotesSpelling::finalSigmaIsOfferedFirst()
{
    begin();
    frmNotes *form = openNotes();
    typeNote(form, QStringLiteral("ο κόσμοσ και ο κόςμος"));
    QTRY_VERIFY_WITH_TIMEOUT(form->Spelling->isActive(), 20000);
    QTRY_COMPARE(
        markedWords(*form->notes), QStringList({QStringLiteral("κόσμοσ"), QStringLiteral("κόςμος")}));
    QMenu first;
    QVERIFY(form->Spelling->fillContextMenu(first, 4));
    QCOMPARE(first.actions().at(0)->text(), QStringLiteral("κόσμος"));
    QMenu second;
    QVERIFY(form->Spelling->fillContextMenu(second, 18));
    QCOMPARE(second.actions().at(0)->text(), QStringLiteral("κόσμος"));
}

void tst_NotesSpelling::addedWordsAreKeptAcrossSessions()
{
    begin();
    frmNotes *form = openNotes();
    typeNote(form, QStringLiteral("το μπλαμπλίζω"));
    QTRY_VERIFY_WITH_TIMEOUT(form->Spelling->isActive(), 20000);
    QTRY_COMPARE(markedWords(*form->notes), QStringList({QStringLiteral("μπλαμπλίζω")}));
    QMenu menu;
    QVERIFY(form->Spelling->fillContextMenu(menu, 5));
    QList<QAction *> items = menu.actions();
    items.at(items.size() - 2)->trigger();
    QTRY_VERIFY(markedWords(*form->notes).isEmpty());
    QCOMPARE(
        spelling::readPupilWords(spelling::pupilWordsPath()), QStringList({QStringLiteral("μπλαμπλίζω")}));
    QVERIFY(spelling::pupilWordsPath().startsWith(m_home->path()));
    closeAll(*m_session);
    m_shell.reset();
    m_session.reset();

    begin();
    form = openNotes();
    typeNote(form, QStringLiteral("το μπλαμπλίζω και ΜΠΛΑΜΠΛΙΖΩ σπιτι"));
    QTRY_VERIFY_WITH_TIMEOUT(form->Spelling->isActive(), 20000);
    QTRY_COMPARE(markedWords(*form->notes), QStringList({QStringLiteral("σπιτι")}));
}

void tst_NotesSpelling::ignoredWordsLastTheSessionOnly()
{
    begin();
    frmNotes *form = openNotes();
    typeNote(form, QStringLiteral("το γκλαμπούζι"));
    QTRY_VERIFY_WITH_TIMEOUT(form->Spelling->isActive(), 20000);
    QTRY_COMPARE(markedWords(*form->notes), QStringList({QStringLiteral("γκλαμπούζι")}));
    QMenu menu;
    QVERIFY(form->Spelling->fillContextMenu(menu, 5));
    menu.actions().last()->trigger();
    QTRY_VERIFY(markedWords(*form->notes).isEmpty());
    QVERIFY(!QFile::exists(spelling::pupilWordsPath()));
    closeAll(*m_session);
    m_shell.reset();
    m_session.reset();

    begin();
    form = openNotes();
    typeNote(form, QStringLiteral("το γκλαμπούζι"));
    QTRY_VERIFY_WITH_TIMEOUT(form->Spelling->isActive(), 20000);
    QTRY_COMPARE(markedWords(*form->notes), QStringList({QStringLiteral("γκλαμπούζι")}));
}

void tst_NotesSpelling::theChoiceIsKept()
{
    begin();
    frmNotes *form = openNotes();
    QVERIFY(form->Spelling->mnuSpelling->isCheckable());
    QVERIFY(form->Spelling->mnuSpelling->isChecked());
    QVERIFY(form->mnuFormat->actions().contains(form->Spelling->mnuSpelling));
    typeNote(form, QStringLiteral("το σπιτι"));
    QTRY_VERIFY_WITH_TIMEOUT(!markedWords(*form->notes).isEmpty(), 20000);
    form->Spelling->mnuSpelling->trigger();
    QVERIFY(!form->Spelling->mnuSpelling->isChecked());
    QVERIFY(markedWords(*form->notes).isEmpty());
    QVERIFY(!form->NotesDirty || form->notes->Text() == QStringLiteral("το σπιτι"));
    closeAll(*m_session);
    m_shell.reset();
    m_session.reset();

    begin();
    QVERIFY(!(*m_session)->spelling().isEnabled());
    form = openNotes();
    QVERIFY(!form->Spelling->mnuSpelling->isChecked());
    typeNote(form, QStringLiteral("το σπιτι"));
    QTest::qWait(50);
    QVERIFY(markedWords(*form->notes).isEmpty());
    form->Spelling->mnuSpelling->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(!markedWords(*form->notes).isEmpty(), 20000);
    const QSettings settings(platform::userSettingsPath(), QSettings::IniFormat);
    QCOMPARE(settings.value(QStringLiteral("Spelling/Enabled")).toBool(), true);
}

void tst_NotesSpelling::withoutADictionaryNothingIsMarkedAndTheLogSaysSoOnce()
{
    qInstallMessageHandler(keepSpellingWarnings);
    Session::Services services;
    services.spellingFolders = {m_home->filePath(QStringLiteral("no-dictionary"))};
    begin(std::move(services));
    frmNotes *form = openNotes();
    typeNote(form, QStringLiteral("ο κόσμοσ και το σπιτι"));
    QTRY_COMPARE_WITH_TIMEOUT((*m_session)->spelling().state(), spelling::Service::State::Unavailable, 20000);
    // The notepad opened again asks no second time.
    closeAll(*m_session);
    form = openNotes();
    typeNote(form, QStringLiteral("ο κόσμοσ"));
    QTest::qWait(50);
    QVERIFY(markedWords(*form->notes).isEmpty());
    QCOMPARE(warnings.size(), 1);
    QVERIFY(warnings.at(0).contains(QStringLiteral("hunspell-el")));
    QMenu menu;
    QVERIFY(!form->Spelling->fillContextMenu(menu, 3));
}

void tst_NotesSpelling::aSessionEndingWhileTheDictionaryLoadsStopsIt()
{
    begin();
    frmNotes *form = openNotes();
    QVERIFY(form->Spelling->mnuSpelling->isChecked());
    QCOMPARE((*m_session)->spelling().state(), spelling::Service::State::Loading);
    qInstallMessageHandler(keepAllWarnings);
    closeAll(*m_session);
    m_shell.reset();
    m_session.reset();
    qInstallMessageHandler(nullptr);
    // The load stopped within the session's bound for its background work.
    QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(u'\n')));
}

QTEST_MAIN(tst_NotesSpelling)
#include "tst_notesspelling.moc"
