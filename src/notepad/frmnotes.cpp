#include "frmnotes.h"

#include "frmbullets.h"
#include "frmfind.h"
#include "frmformat.h"
#include "modeditor.h"
#include "notesspelling.h"
#include "sessionwindow.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <frmcolors.h>
#include <msgbox.h>
#include <notepadstate.h>
#include <programbitmaps.h>
#include <richtextbox.h>
#include <rtffile.h>
#include <session.h>
#include <shellwindow.h>
#include <textzoom.h>
#include <twips.h>
#include <workkeeper.h>

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// The designed outer size, in twips, from which the window places itself at load: as
// wide as the shell's area leaves it, so that it stands centred once widened.
constexpr int DesignWidth = 11600;
constexpr int DesignHeight = 3000;

struct ToolbarKey
{
    QString key;
    QString tip;
    QString image;
};

// The toolbar's places in order; an empty key is a separator, and separators count.
const QList<ToolbarKey> &toolbarKeys()
{
    static const QList<ToolbarKey> keys = {
        {QStringLiteral("New"), QStringLiteral("Καινούριο έγγραφο"), QStringLiteral("New")},
        {QStringLiteral("Open"), QStringLiteral("Άνοιγμα εγγράφου"), QStringLiteral("Open")},
        {QStringLiteral("Save"), QStringLiteral("Σώσιμο εγγράφου"), QStringLiteral("Save")},
        {QStringLiteral("SaveAs"), QStringLiteral("Σώσιμο εγγράφου ως..."), QStringLiteral("SaveAs")},
        {QStringLiteral("Exit"), QStringLiteral("Ελαχιστοποίηση παραθύρου"), QStringLiteral("Exit")},
        {},
        {QStringLiteral("Word"), QStringLiteral("Εξαγωγή στο Word"), QStringLiteral("Word")},
        {QStringLiteral("Print"), QStringLiteral("Εκτύπωση εγγράφου"), QStringLiteral("Print")},
        {},
        {QStringLiteral("Cut"), QStringLiteral("Αποκοπή"), QStringLiteral("Cut")},
        {QStringLiteral("Copy"), QStringLiteral("Αντιγραφή"), QStringLiteral("Copy")},
        {QStringLiteral("Paste"), QStringLiteral("Επικόλληση"), QStringLiteral("Paste")},
        {QStringLiteral("Delete"), QStringLiteral("Διαγραφή"), QStringLiteral("Delete")},
        {QStringLiteral("Find"), QStringLiteral("Εύρεση"), QStringLiteral("Find")},
        {},
        {QStringLiteral("Undo"), QStringLiteral("Αναίρεση"), QStringLiteral("Undo")},
        {},
        {QStringLiteral("Bold"), QStringLiteral("Έντονη γραφή"), QStringLiteral("Bold")},
        {QStringLiteral("Italic"), QStringLiteral("Πλάγια γραφή"), QStringLiteral("Italics")},
        {QStringLiteral("Underline"), QStringLiteral("Υπογραμμισμένη γραφή"), QStringLiteral("Underline")},
        {},
        {QStringLiteral("Left"), QStringLiteral("Αριστερή στοίχιση"), QStringLiteral("Left")},
        {QStringLiteral("Center"), QStringLiteral("Κεντραρισμένη Στοίχιση"), QStringLiteral("Center")},
        {QStringLiteral("Right"), QStringLiteral("Δεξιά στοίχιση"), QStringLiteral("Right")},
        {QStringLiteral("Bullets"), QStringLiteral("Κουκίδες"), QStringLiteral("Bullets")},
        {},
        {QStringLiteral("Fonts"), QStringLiteral("Αλλαγή γραμματοσειράς"), QStringLiteral("Fonts")},
        {QStringLiteral("SetFontColor"), QStringLiteral("Χρωματισμός κειμένου"),
            QStringLiteral("FontsColor")},
    };
    return keys;
}

// Keys whose button stays pressed or up, showing the selection's state.
bool isStateKey(const QString &key)
{
    static const QStringList keys = {QStringLiteral("Bold"), QStringLiteral("Italic"),
        QStringLiteral("Underline"), QStringLiteral("Left"), QStringLiteral("Center"),
        QStringLiteral("Right"), QStringLiteral("Bullets")};
    return keys.contains(key);
}

// The shell the notes window stands in, if there is one.
ShellWindow *shellOf(Session &session)
{
    return session.shell(false);
}

} // namespace

frmNotes::frmNotes(Session &session, QWidget *parent)
    : QWidget(parent)
    , menuBar(new QMenuBar(this))
    , Toolbar1(new QToolBar(this))
    , notes(new RichTextBox(this))
    , Status(new QStatusBar(this))
    , CMDialog1(session, this)
    , m_session(session)
{
    setObjectName(QStringLiteral("frmNotes"));
    platform::useDesignedColours(this);
    setWindowTitle(QStringLiteral("Σημειωματάριο"));
    setAttribute(Qt::WA_DeleteOnClose);
    notes->setObjectName(QStringLiteral("notes"));
    notes->setAccessibleName(QStringLiteral("Σημειωματάριο"));
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    Status->setObjectName(QStringLiteral("Status"));
    Status->setSizeGripEnabled(false);
    resize(platform::pixelsFromTwipsX(DesignWidth), platform::pixelsFromTwipsY(DesignHeight));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->setMenuBar(menuBar);
    layout->addWidget(Toolbar1);
    layout->addWidget(notes, 1);
    layout->addWidget(Status);

    buildMenus();
    buildToolbar();
    Spelling = new NotesSpelling(m_session, *notes, *mnuFormat, this);

    notes->setOleDropManual(true);
    Recovery = new recovery::WorkKeeper(
        m_session.recovery(), QStringLiteral("notes"), [this] { return unsavedWork(); }, this);
    connect(notes, &RichTextBox::Change, this, [this] {
        // A note shown read-only never changes, and the spelling marks are no change of the note's.
        if (m_readOnly || Spelling->isMarking())
            return;
        NotesDirty = true;
        Recovery->changed();
    });
    connect(
        notes, &RichTextBox::SelChange, this, [this] { platform::guarded([this] { notes_SelChange(); }); });
    connect(notes, &RichTextBox::OLEDragDrop, this,
        [this](const QMimeData *data) { platform::guarded([this, data] { notes_OLEDragDrop(data); }); });
    // Only the view grows: the note keeps its own sizes, and saves with them.
    m_session.textZoom().follow(
        this, {this, notes}, [this](int percent) { TextZoom::zoomTextEdit(notes, percent); });
}

QString frmNotes::textToRead() const
{
    return notes->SelLength() > 0 ? notes->SelText() : notes->Text();
}

QTextEdit *frmNotes::textBoxToRead() const
{
    return notes;
}

frmNotes::~frmNotes() = default;

frmNotes *frmNotes::open(Session &session, bool create)
{
    // A window that unloaded is not the notepad any more, even before it goes.
    if (auto *form = session.window<frmNotes>(Session::Window::Notes, false); form && form->m_unloaded)
        session.setWindow(Session::Window::Notes, nullptr);
    return sessionWindow<frmNotes>(
        session, Session::Window::Notes, create, [&session] { return new frmNotes(session); });
}

frmNotes *frmNotes::showReadOnly(Session &session, const QByteArray &rtf, const QString &caption)
{
    auto *form = new frmNotes(session);
    form->m_readOnly = true;
    form->setWindowTitle(caption);
    form->Toolbar1->hide();
    // The menus' procedures work on the session's notepad, not on this window: only the
    // way out stays.
    for (QMenu *menu : {form->mnuEdit, form->mnuInsert, form->mnuFormat})
        menu->menuAction()->setVisible(false);
    for (QAction *item : form->mnuFile->actions())
        item->setVisible(item == form->mnuExit);
    QFont font(QString::fromUtf16(richtext::NotesFontFamily));
    font.setPointSize(richtext::NotesFontPoints);
    form->notes->setFont(font);
    session.adopt(form);
    // Read as the box opens a file, from memory: nothing of it is written anywhere.
    QTextDocument *document = form->notes->document();
    document->setDefaultFont(font);
    richtext::loadDocument(*document, rtf);
    document->clearUndoRedoStacks();
    document->setModified(false);
    form->notes->setTextCursor(QTextCursor(document));
    form->notes->setLocked(true);
    form->NotesDirty = false;
    form->show();
    return form;
}

void frmNotes::buildMenus()
{
    // Each menu entry runs its procedure under the error policy, as a handler of its own.
    auto add = [this](QMenu *menu, const QString &caption, std::function<void()> action) {
        QAction *item = menu->addAction(caption);
        connect(item, &QAction::triggered, this, [action = std::move(action)] { platform::guarded(action); });
        return item;
    };
    // A procedure of modEditor, on this window's session.
    auto editor
        = [this](void (*procedure)(Session &)) { return [this, procedure] { procedure(m_session); }; };
    mnuFile = menuBar->addMenu(QStringLiteral("Αρχείο"));
    mnuNew = add(mnuFile, QStringLiteral("Νέο"), editor(modEditor::FileNew));
    mnuOpen = add(mnuFile, QStringLiteral("Άνοιγμα..."), editor(modEditor::FileOpen));
    mnuFile->addSeparator();
    mnuSave = add(mnuFile, QStringLiteral("Σώσιμο κειμένου"), editor(modEditor::FileSave));
    mnuSaveAs = add(mnuFile, QStringLiteral("Σώσιμο κειμένου ως..."), editor(modEditor::FileSaveAs));
    mnuFile->addSeparator();
    mnuPrint = add(mnuFile, QStringLiteral("Εκτύπωση"), [this] { PrintSequence(); });
    mnuFile->addSeparator();
    mnuExit = add(mnuFile, QStringLiteral("Έξοδος"), [this] {
        if (QMdiSubWindow *sub = subWindow())
            sub->close();
        else
            close();
    });

    mnuEdit = menuBar->addMenu(QStringLiteral("Επεξεργασία"));
    mnuCut = add(mnuEdit, QStringLiteral("Αποκοπή"), editor(modEditor::EditCut));
    mnuCopy = add(mnuEdit, QStringLiteral("Αντιγραφή"), editor(modEditor::EditCopy));
    mnuPaste = add(mnuEdit, QStringLiteral("Επικόλληση"), editor(modEditor::EditPaste));
    mnuEdit->addSeparator();
    mnuClear = add(mnuEdit, QStringLiteral("Διαγραφή"), editor(modEditor::EditDelete));
    mnuSelectAll = add(mnuEdit, QStringLiteral("Επιλογή όλων"), editor(modEditor::SelectAllText));
    mnuEdit->addSeparator();
    mnuFind = add(mnuEdit, QStringLiteral("Εύρεση..."), [this] { ShowFind(); });
    mnuReplace = add(mnuEdit, QStringLiteral("Αντικατάσταση..."), [this] { mnuReplace_Click(); });

    mnuInsert = menuBar->addMenu(QStringLiteral("Εισαγωγή"));
    mnuInsPicture = add(mnuInsert, QStringLiteral("Εισαγωγή Εικόνας..."), [this] { mnuInsPicture_Click(); });

    mnuFormat = menuBar->addMenu(QStringLiteral("Μορφοποίηση"));
    mnuFonts = add(mnuFormat, QStringLiteral("Γραμματοσειράς..."), editor(modEditor::ChooseFont));
    mnuParagraph
        = add(mnuFormat, QStringLiteral("Παραγράφου..."), [this] { frmFormat::open(m_session)->exec(); });
    mnuBullets
        = add(mnuFormat, QStringLiteral("Κουκίδων..."), [this] { frmBullets::open(m_session)->exec(); });
}

void frmNotes::buildToolbar()
{
    Toolbar1->setIconSize(QSize(20, 20));
    Toolbar1->setMovable(false);
    Toolbar1->setFloatable(false);
    for (const ToolbarKey &entry : toolbarKeys()) {
        if (entry.key.isEmpty()) {
            m_buttons.append(Toolbar1->addSeparator());
            continue;
        }
        QAction *action = Toolbar1->addAction(entry.tip);
        action->setObjectName(entry.key);
        action->setToolTip(entry.tip);
        action->setCheckable(isStateKey(entry.key));
        platform::resumeNext(
            [&] { action->setIcon(resources::LoadResIcon(QStringLiteral("nt_") + entry.image)); });
        const QString key = entry.key;
        connect(action, &QAction::triggered, this,
            [this, key] { platform::guarded([this, &key] { Toolbar1_ButtonClick(key); }); });
        m_buttons.append(action);
    }
    if (auto *colour
        = qobject_cast<QToolButton *>(Toolbar1->widgetForAction(button(QStringLiteral("SetFontColor")))))
        colour->setArrowType(Qt::NoArrow);
    // Every key of the bar is reachable with Tab too, and pressed with Space.
    for (QAction *action : std::as_const(m_buttons))
        if (QWidget *key = Toolbar1->widgetForAction(action); key && !action->isSeparator())
            key->setFocusPolicy(Qt::TabFocus);
}

const QStringList &frmNotes::buttonKeys()
{
    static const QStringList keys = [] {
        QStringList all;
        for (const ToolbarKey &entry : toolbarKeys())
            all.append(entry.key);
        return all;
    }();
    return keys;
}

QAction *frmNotes::Buttons(int index) const
{
    return index >= 1 && index <= m_buttons.size() ? m_buttons.at(index - 1) : nullptr;
}

QAction *frmNotes::button(const QString &key) const
{
    const qsizetype at = buttonKeys().indexOf(key);
    return key.isEmpty() || at < 0 ? nullptr : m_buttons.at(at);
}

int frmNotes::buttonValue(const QString &key) const
{
    const QAction *action = button(key);
    return action && action->isChecked() ? 1 : 0;
}

void frmNotes::setButtonValue(const QString &key, int value)
{
    if (QAction *action = button(key))
        action->setChecked(value == 1);
}

QString frmNotes::SimpleText() const
{
    return Status->currentMessage();
}

void frmNotes::setSimpleText(const QString &text)
{
    if (text.isEmpty())
        Status->clearMessage();
    else
        Status->showMessage(text);
}

QMdiSubWindow *frmNotes::subWindow() const
{
    return qobject_cast<QMdiSubWindow *>(parentWidget());
}

bool frmNotes::isMinimisedInShell() const
{
    const QMdiSubWindow *sub = subWindow();
    return sub ? sub->isMinimized() : isMinimized();
}

// --- Load, resize, unload ---------------------------------------------------------------

void frmNotes::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QMdiSubWindow *sub = subWindow();
    if (sub && sub != m_watchedSub) {
        m_watchedSub = sub;
        // A minimised window gets no resize of its own content; the palette closes all
        // the same.
        connect(
            sub, &QMdiSubWindow::windowStateChanged, this, [this](Qt::WindowStates, Qt::WindowStates now) {
                if (now & Qt::WindowMinimized)
                    platform::resumeNext([this] { Form_Resize(); });
            });
    }
    if (!m_loaded) {
        m_loaded = true;
        platform::guarded([this] { Form_Load(); });
    }
}

void frmNotes::Form_Load()
{
    NotesDirty = false;
    QFont font(QString::fromUtf16(richtext::NotesFontFamily));
    font.setPointSize(richtext::NotesFontPoints);
    notes->setFont(font);
    notes->document()->setDefaultFont(font);
    NotesDirty = false;

    frmFontColors = new frmColors(this);
    connect(frmFontColors, &frmColors::NewColor, this,
        [this](quint32 color) { platform::guarded([this, color] { frmFontColors_NewColor(color); }); });

    if (ShellWindow *shell = m_readOnly ? nullptr : shellOf(m_session)) {
        // Left and top come from the designed size, before the move.
        QWidget *frame = subWindow() ? static_cast<QWidget *>(subWindow()) : this;
        const QWidget *client = shell->mdiArea()->viewport();
        const int scaleWidth = platform::twipsFromPixelsX(client->width());
        const int scaleHeight = platform::twipsFromPixelsY(client->height());
        const int left = (scaleWidth - DesignWidth) / 2;
        const int top = (scaleHeight - DesignHeight) / 2;
        frame->setGeometry(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top),
            platform::pixelsFromTwipsX(scaleWidth - 400), platform::pixelsFromTwipsY(3000));
        shell->setToggleChecked(ShellWindow::Toggle::StudNotes, true);
    }
}

void frmNotes::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    platform::resumeNext([this] { Form_Resize(); });
}

void frmNotes::Form_Resize()
{
    // A note to read has no palette, and the notepad's own stays.
    if (m_readOnly)
        return;
    unloadFontPalette();
    // The toolbar, the box and the status line follow the window through its layout.
}

void frmNotes::unloadFontPalette()
{
    bool &shown = m_session.notepad().FontPaletteShown;
    if (!shown)
        return;
    if (frmFontColors)
        frmFontColors->Unload();
    shown = false;
}

void frmNotes::closeEvent(QCloseEvent *event)
{
    // The window stays the notepad's instance while its unload runs, so that a save
    // answered there reaches it.
    if (!m_unloaded && !m_unloading) {
        m_unloading = true;
        int cancel = 0;
        platform::guarded([this, &cancel] { Form_Unload(cancel); });
        m_unloading = false;
        if (cancel != 0) {
            event->ignore();
            return;
        }
        m_unloaded = true;
        if (m_session.window(Session::Window::Notes, false) == this)
            m_session.setWindow(Session::Window::Notes, nullptr);
    }
    event->accept();
    QWidget::closeEvent(event);
    // Closed on its own, the window takes its child frame along.
    if (QMdiSubWindow *sub = subWindow()) {
        if (sub->isVisible())
            QMetaObject::invokeMethod(sub, &QWidget::close, Qt::QueuedConnection);
    }
}

void frmNotes::Form_Unload(int &Cancel)
{
    // A note to read has nothing to save and leaves the notepad's memory alone.
    if (m_readOnly) {
        if (frmFontColors)
            frmFontColors->deleteLater();
        frmFontColors = nullptr;
        return;
    }
    // The question has no cancel: the window closes whatever the answer, unless the save
    // the pupil asked for wrote nothing (its dialog cancelled, or the file not written);
    // then the note stays, or it would be lost.
    if (NotesDirty) {
        if (platform::MsgBox(QStringLiteral("Θέλετε να αποθηκευτεί το παρόν έγγραφο;"), platform::vbYesNo,
                QStringLiteral("Κλείσιμο Σημειωματαρίου"), this)
            == platform::vbYes) {
            bool &saveFailed = m_session.notepad().SaveFailed;
            saveFailed = false;
            if (!platform::guarded([this] { modEditor::FileSave(m_session); }) || saveFailed) {
                Cancel = 1;
                return;
            }
        }
    }
    Recovery->discarded();
    m_session.notepad().CurrentFile.clear();
    unloadFontPalette();
    if (frmFontColors)
        frmFontColors->deleteLater();
    frmFontColors = nullptr;
    if (ShellWindow *shell = shellOf(m_session))
        shell->setToggleChecked(ShellWindow::Toggle::StudNotes, false);
    if (frmFind *find = frmFind::open(m_session, false))
        find->close();
}

// --- Toolbar ------------------------------------------------------------------------------

void frmNotes::Toolbar1_ButtonClick(const QString &key)
{
    if (const QAction *action = button(key))
        setSimpleText(action->toolTip());
    if (key == u"New") {
        modEditor::FileNew(m_session);
    } else if (key == u"Open") {
        modEditor::FileOpen(m_session);
    } else if (key == u"Save") {
        modEditor::FileSave(m_session);
    } else if (key == u"SaveAs") {
        modEditor::FileSaveAs(m_session);
    } else if (key == u"Exit") {
        // This key only puts the window aside; "Έξοδος" of the menu closes it.
        if (QMdiSubWindow *sub = subWindow())
            sub->showMinimized();
        else
            showMinimized();
    } else if (key == u"Word") {
        ExportToWord();
    } else if (key == u"Print") {
        PrintSequence();
    } else if (key == u"Cut") {
        modEditor::EditCut(m_session);
    } else if (key == u"Copy") {
        modEditor::EditCopy(m_session);
    } else if (key == u"Paste") {
        modEditor::EditPaste(m_session);
    } else if (key == u"Delete") {
        modEditor::EditDelete(m_session);
    } else if (key == u"Find") {
        ShowFind();
    } else if (key == u"Undo") {
        notes->setFocus();
        notes->Undo();
    } else if (key == u"Bold") {
        modEditor::ToggleBold(m_session);
    } else if (key == u"Italic") {
        modEditor::ToggleItalic(m_session);
    } else if (key == u"Underline") {
        modEditor::ToggleUnderline(m_session);
    } else if (key == u"Left") {
        modEditor::SetAlignment(m_session, 0);
    } else if (key == u"Center") {
        modEditor::SetAlignment(m_session, 2);
    } else if (key == u"Right") {
        modEditor::SetAlignment(m_session, 1);
    } else if (key == u"Bullets") {
        modEditor::ToggleBullet(m_session);
    } else if (key == u"Fonts") {
        modEditor::ChooseFont(m_session);
    } else if (key == u"SetFontColor") {
        Toolbar1_ButtonDropDown(key);
    }
    setSimpleText(QString());
}

void frmNotes::Toolbar1_ButtonDropDown(const QString &key)
{
    if (key == u"SetFontColor") {
        m_session.notepad().FontPaletteShown = true;
        const QWidget *frame = subWindow() ? static_cast<QWidget *>(subWindow()) : this;
        const QWidget *keyWidget = Toolbar1->widgetForAction(button(key));
        const QWidget *widget23 = Toolbar1->widgetForAction(Buttons(23));
        const QPoint keyPlace = keyWidget ? keyWidget->pos() : QPoint();
        int left = platform::twipsFromPixelsX(Toolbar1->x() + frame->x() + keyPlace.x()) + 45;
        int top = platform::twipsFromPixelsY(Toolbar1->y() + frame->y() + keyPlace.y())
            + platform::twipsFromPixelsY(widget23 ? widget23->height() : 0) + 500;
        // The sums are places in the shell's area for child windows; the palette is a
        // window of its own, placed on the screen, so the area's corner is added.
        if (frame->parentWidget()) {
            const QPoint corner = frame->parentWidget()->mapToGlobal(QPoint(0, 0));
            left += platform::twipsFromPixelsX(corner.x());
            top += platform::twipsFromPixelsY(corner.y());
        }
        if (frmFontColors) {
            frmFontColors->Move(left, top);
            frmFontColors->Show();
        }
    }
    setSimpleText(QString());
}

void frmNotes::frmFontColors_NewColor(quint32 color)
{
    notes->setSelColor(color);
}

// --- The box ------------------------------------------------------------------------------

void frmNotes::notes_SelChange()
{
    // A mixed selection reads as Null, which counts as false: its button shows up.
    setButtonValue(QStringLiteral("Bold"), notes->SelBold().value_or(false) ? 1 : 0);
    setButtonValue(QStringLiteral("Italic"), notes->SelItalic().value_or(false) ? 1 : 0);
    setButtonValue(QStringLiteral("Underline"), notes->SelUnderline().value_or(false) ? 1 : 0);
    const std::optional<int> alignment = notes->SelAlignment();
    setButtonValue(QStringLiteral("Left"), alignment == RichTextBox::AlignLeft ? 1 : 0);
    setButtonValue(QStringLiteral("Center"), alignment == RichTextBox::AlignCenter ? 1 : 0);
    setButtonValue(QStringLiteral("Right"), alignment == RichTextBox::AlignRight ? 1 : 0);
    setButtonValue(QStringLiteral("Bullets"), notes->SelBullet().value_or(false) ? 1 : 0);
}

void frmNotes::notes_OLEDragDrop(const QMimeData *data)
{
    // A dropped picture lands by way of a paste; other kinds of data are not taken.
    if (m_readOnly || !data || !data->hasImage())
        return;
    notes->setFocus();
    notes->paste();
}

// --- Commands of this window ---------------------------------------------------------------

void frmNotes::ShowFind()
{
    NotepadState &state = m_session.notepad();
    frmFind *find = frmFind::open(m_session);
    const QString selected = notes->SelText();
    find->txtFind->setText(!selected.isEmpty() ? selected : state.FindText);
    if (state.MatchCaseSetting != 0)
        find->chCase->setChecked(true);
    state.FindFirstTime = true;
    find->show();
    find->move(find->x(), subWindow() ? subWindow()->y() : y());
}

void frmNotes::mnuReplace_Click()
{
    m_session.notepad().ReplaceRequested = true;
    frmFind *find = frmFind::open(m_session);
    find->show();
    find->raise();
    find->move(find->x(), subWindow() ? subWindow()->y() : y());
    find->LoadReplace();
}

void frmNotes::mnuInsPicture_Click()
{
    // Any error, cancelling included, leaves quietly.
    platform::resumeNext([this] {
        CMDialog1.CancelError = true;
        CMDialog1.DialogTitle = QStringLiteral("Εισαγωγή εικόνας");
        CMDialog1.Flags = 6144;
        CMDialog1.Filter = QStringLiteral("Bitmaps (*.bmp)|*.bmp|JPEG Images (*.jpg)|*.jpg|GIF Images "
                                          "(*.gif)|*.gif|Icons (*.ico;*.cur)|*.ico;*.cur");
        CMDialog1.FilterIndex = 1;
        CMDialog1.ShowOpen();
        if (!CMDialog1.FileTitle.isEmpty())
            notes->InsertPicture(CMDialog1.FileName);
    });
}

void frmNotes::PrintSequence()
{
    PrinterContext = modEditor::PrepareForPrinter(m_session, *notes, 1440, 1440);
    modEditor::PrintDocument(m_session);
}
