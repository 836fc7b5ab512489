#include "mdiform1.h"

#include "actionsdocument.h"
#include "windowlist.h"

#include <conference.h>
#include <database.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <frmsmallbutton.h>
#include <modmail.h>
#include <msgbox.h>
#include <outbox.h>
#include <programbitmaps.h>
#include <ratemenu.h>
#include <readaloud.h>
#include <tlb.h>
#include <twips.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

MDIForm1::MDIForm1(Session &session, QWidget *parent)
    : QMainWindow(parent)
    , area(new QMdiArea)
    , TlbMain(new Tlb)
    , m_session(session)
{
    setObjectName(QStringLiteral("MDIForm1"));
    platform::useDesignedColours(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("ΤΡΕΜΙΔΙΑ"));
    // The shell has one size: no maximise box and no resizing frame.
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
        | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    setFixedSize(800, 600);

    area->setObjectName(QStringLiteral("area"));
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    TlbMain->setObjectName(QStringLiteral("TlbMain"));

    auto *client = new QWidget;
    auto *layout = new QVBoxLayout(client);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(TlbMain);
    layout->addWidget(area, 1);
    setCentralWidget(client);

    buildMenu();
    new WindowList(this, area, mnuWndAlign, WindowListSeparator);
    // The menus drop down as windows of their own, which do not inherit the shell's colours.
    for (QMenu *menu : menuBar()->findChildren<QMenu *>())
        platform::useDesignedColours(menu);
    connect(TlbMain, &Tlb::ButtonClick, this,
        [this](const QString &key) { platform::guarded([&] { TlbMain_ButtonClick(key); }); });

    // F9 and Escape read and stop in every window of the activity.
    m_session.readAloud();

    // The shell is one: whoever makes it, the session hands it on.
    m_session.setWindow(Session::Window::Shell, this);
}

MDIForm1::~MDIForm1() = default;

void MDIForm1::buildMenu()
{
    QMenuBar *bar = menuBar();

    mnuFile = bar->addMenu(QStringLiteral("Πλοήγηση"));
    mnuPrev = mnuFile->addAction(QStringLiteral("Επιστροφή"));
    mnuFile->addSeparator();
    mnuExit = mnuFile->addAction(QStringLiteral("&Έξοδος"));
    // Going back is the shell's closing, which shows the start screen once every child
    // window has agreed to go; a refusal leaves the shell as it was.
    connect(mnuPrev, &QAction::triggered, this, [this] { platform::guarded([this] { close(); }); });
    connect(mnuExit, &QAction::triggered, this, [this] { close(); });

    mnumousia = bar->addMenu(QStringLiteral("Μουσεία"));
    mnuMoys1 = mnumousia->addAction(QStringLiteral("Εικονικό μουσείο"));
    mnuMous2 = mnumousia->addAction(QStringLiteral("Συλλογές ευρημάτων στο διαδίκτυο"));

    mnuChoices = bar->addMenu(QStringLiteral("Επιλογές"));
    mnufacilities = mnuChoices->addAction(QStringLiteral("Αναζήτηση στη βάση δεδομένων"));
    connect(mnufacilities, &QAction::triggered, this,
        [this] { platform::guarded([this] { showChild(Session::Window::SearchResources, false); }); });
    mnuFullText = mnuChoices->addAction(QStringLiteral("Αναζήτηση στα κείμενα"));
    mnuFullText->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
    mnuFullText->setShortcutContext(Qt::ApplicationShortcut);
    connect(mnuFullText, &QAction::triggered, this,
        [this] { platform::guarded([this] { showChild(Session::Window::FullTextSearch, false); }); });
    mnuChoices->addSeparator();
    mnuChoices->addMenu(speech::makeRateMenu(m_session.readAloud(), mnuChoices));
    mnuHandIn = mnuChoices->addAction(QStringLiteral("Παράδοση εργασίας…"));
    mnuHandIn->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P));
    mnuHandIn->setShortcutContext(Qt::ApplicationShortcut);
    mnuHandIn->setEnabled(m_activityID != 0);
    connect(mnuHandIn, &QAction::triggered, this, [this] { platform::guarded([this] { OpenHandIn(); }); });

    mnuView = bar->addMenu(QStringLiteral("Προβολή"));
    mnuStudNotes = mnuView->addAction(QStringLiteral("Σημειωματάριο"));
    mnuCatalogue = mnuView->addAction(QStringLiteral("Ευρετήριο"));
    mnuDraw = mnuView->addAction(QStringLiteral("Χώρος σχεδίασης"));
    mnuNotes = mnuView->addAction(QStringLiteral("Εργασίες"));
    for (QAction *toggle : {mnuStudNotes, mnuCatalogue, mnuDraw})
        toggle->setCheckable(true);
    connect(mnuStudNotes, &QAction::triggered, this,
        [this] { platform::guarded([this] { toggleWindow(mnuStudNotes, Session::Window::Notes, false); }); });
    connect(mnuCatalogue, &QAction::triggered, this,
        [this] { platform::guarded([this] { toggleWindow(mnuCatalogue, Session::Window::Index, true); }); });
    connect(mnuDraw, &QAction::triggered, this,
        [this] { platform::guarded([this] { toggleWindow(mnuDraw, Session::Window::Drawing, true); }); });
    connect(mnuNotes, &QAction::triggered, this,
        [this] { platform::guarded([this] { OpenActionsDocument(); }); });

    mnuWndAlign = bar->addMenu(QStringLiteral("Παράθυρα"));
    mnuCascade = mnuWndAlign->addAction(QStringLiteral("&Επικάλυψη"));
    mnuTileHorizontal = mnuWndAlign->addAction(QStringLiteral("&Ορίζοντια Παράθεση"));
    mnuTileVertical = mnuWndAlign->addAction(QStringLiteral("&Κάθετη Παράθεση"));
    mnuArrangeIcons = mnuWndAlign->addAction(QStringLiteral("&Τακτοποίηση Παραθύρων"));
    // The tiling items pass each other's arrangement: the horizontal item lays the
    // windows side by side, the vertical one above each other.
    connect(mnuCascade, &QAction::triggered, this, [this] { Arrange(0); });
    connect(mnuTileHorizontal, &QAction::triggered, this, [this] { Arrange(2); });
    connect(mnuTileVertical, &QAction::triggered, this, [this] { Arrange(1); });
    connect(mnuArrangeIcons, &QAction::triggered, this, [this] { Arrange(3); });
    WindowListSeparator = mnuWndAlign->addSeparator();
    WindowListSeparator->setVisible(false);
    // Entry 0 is the designed "List", never shown; the text windows take entry 1 as
    // their place in the list, so it stands ready, hidden, from the start.
    // The menu itself lists the open windows by their titles (WindowList); these entries
    // keep the text windows' bookkeeping and stay out of it.
    for (int i = 0; i <= 1; ++i) {
        auto *entry = new QAction(QStringLiteral("List"), mnuWndAlign);
        entry->setCheckable(true);
        entry->setVisible(false);
        m_mnuList.append(entry);
    }

    mnuHelp = bar->addAction(QStringLiteral("Βοήθεια"));

    lblHandIn = new QLabel(m_session.handIns().statusText());
    lblHandIn->setObjectName(QStringLiteral("lblHandIn"));
    lblHandIn->setContentsMargins(0, 0, 6, 0);
    lblHandIn->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // The menu bar sizes its corner once, not when the text changes: room for the longest
    // status from the start keeps a later one from being cut to its last letters.
    int widest = 0;
    for (const QString &text : {handin::Outbox::folderWaitingText(), handin::Outbox::serverWaitingText(),
             handin::Outbox::deliveredText(QDateTime(QDate(2000, 1, 1), QTime(23, 59)))})
        widest = std::max(widest, lblHandIn->fontMetrics().horizontalAdvance(text));
    lblHandIn->setMinimumWidth(widest + 12);
    bar->setCornerWidget(lblHandIn, Qt::TopRightCorner);
    connect(&m_session.handIns(), &handin::Outbox::statusChanged, lblHandIn, &QLabel::setText);
}

int MDIForm1::mnuListUBound() const
{
    return int(m_mnuList.size()) - 1;
}

QAction *MDIForm1::mnuList(int index)
{
    if (index < 0 || index >= m_mnuList.size())
        throw platform::RuntimeError(
            platform::errors::SubscriptOutOfRange, QStringLiteral("Δείκτης εκτός περιοχής"));
    return m_mnuList.at(index);
}

void MDIForm1::setToggleChecked(Toggle toggle, bool checked)
{
    switch (toggle) {
    case Toggle::StudNotes:
        mnuStudNotes->setChecked(checked);
        break;
    case Toggle::Catalogue:
        mnuCatalogue->setChecked(checked);
        break;
    case Toggle::Draw:
        mnuDraw->setChecked(checked);
        break;
    }
}

void MDIForm1::toggleWindow(QAction *toggle, Session::Window which, bool centred)
{
    // The mark belongs to the window, which sets it on load and clears it on unload;
    // a click only reads it.
    const bool wasChecked = !toggle->isChecked();
    toggle->setChecked(wasChecked);
    if (!wasChecked) {
        showChild(which, centred);
        return;
    }
    if (QWidget *w = m_session.window(which, false)) {
        if (auto *sub = qobject_cast<QMdiSubWindow *>(w->parentWidget()))
            sub->close();
        else
            w->close();
    }
}

void MDIForm1::showChild(Session::Window which, bool centred)
{
    QWidget *w = m_session.window(which);
    if (!w)
        return;
    if (centred) {
        CenterAndShow(m_session, w);
        return;
    }
    auto *sub = qobject_cast<QMdiSubWindow *>(w->parentWidget());
    if (w->isWindow() && !sub)
        sub = area->addSubWindow(w);
    if (sub) {
        sub->show();
        area->setActiveSubWindow(sub);
    }
    w->show();
}

void MDIForm1::TlbMain_ButtonClick(const QString &key)
{
    if (key == u"first" || key == u"prev") {
        close();
    } else if (key == u"exit") {
        // The program ends only when every child window let the shell go.
        if (close())
            End(m_session);
    } else if (key == u"Search") {
        if (QWidget *index = m_session.window(Session::Window::Index))
            CenterAndShow(m_session, index);
    } else if (key == u"Notes") {
        showChild(Session::Window::Notes, false);
    } else if (key == u"drawing") {
        showChild(Session::Window::Drawing, false);
    } else if (key == u"e-mail") {
        if (!modMail::StartMailClient(m_session.host()))
            platform::MsgBox(QStringLiteral("Δεν μπορώ να βρώ κάποιο πρόγραμμα αποστολής e-mail")
                    + QStringLiteral("\r\n") + QStringLiteral("εγκατεστημένο στον υπολογιστή σας"),
                platform::vbCritical, platform::ProgramTitle.toString());
    } else if (key == u"Network") {
        outside::StartConference(m_session.host());
    } else if (key == u"Ploigisi") {
        if (QWidget *tree = m_session.window(Session::Window::Navigation)) {
            tree->show();
            tree->raise();
            tree->activateWindow();
        }
    } else if (key == u"SearchResources") {
        showChild(Session::Window::SearchResources, false);
    } else if (key == u"Sound") {
        m_session.readAloud().toggle();
    }
    // Any other key does nothing.
}

void MDIForm1::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!m_loaded) {
        m_loaded = true;
        platform::guarded([this] { Form_Load(); });
    }
}

void MDIForm1::Form_Load()
{
    area->setBackground(QBrush(resources::LoadResPicture(QStringLiteral("BGR_1"))));

    // Left and top come from the size the window has before the move; the shell's own
    // size is 800 by 600 from the start, so it comes out centred.
    if (QScreen *screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen()) {
        const int screenWidth = platform::twipsFromPixelsX(screen->geometry().width());
        const int screenHeight = platform::twipsFromPixelsY(screen->geometry().height());
        const int left = (screenWidth - platform::twipsFromPixelsX(frameGeometry().width())) / 2;
        const int top = (screenHeight - platform::twipsFromPixelsY(frameGeometry().height())) / 2;
        move(screen->geometry().left() + platform::pixelsFromTwipsX(left),
            screen->geometry().top() + platform::pixelsFromTwipsY(top));
    }
    setFixedSize(platform::pixelsFromTwipsX(platform::TwipsPerPixelX * 800.0),
        platform::pixelsFromTwipsY(platform::TwipsPerPixelY * 600.0));

    LoadResources();
}

void MDIForm1::closeEvent(QCloseEvent *event)
{
    if (!m_unloaded) {
        // The children go first, each through its own closing, so that a window with
        // unsaved work asks its question and every window clears its menu mark and tells
        // its owner; a child that stays open keeps the shell open too.
        if (!UnloadChildWindows()) {
            event->ignore();
            return;
        }
        m_unloaded = true;
        Form_Unload();
    }
    QMainWindow::closeEvent(event);
}

bool MDIForm1::UnloadChildWindows()
{
    // The pupil's windows go first, in the order they came, and the tiles after them:
    // a window that stays open (unsaved work kept) then leaves the activity's board whole.
    // A tile takes its viewer with it, so each window is looked at again before its turn.
    QList<QPointer<QMdiSubWindow>> windows;
    QList<QPointer<QMdiSubWindow>> tiles;
    for (QMdiSubWindow *sub : area->subWindowList(QMdiArea::CreationOrder))
        (qobject_cast<frmSmallButton *>(sub->widget()) ? tiles : windows).append(sub);
    // Last, the windows that float above the shell and belong to it, such as the tree.
    QList<QPointer<QWidget>> owned;
    for (QObject *child : children()) {
        auto *w = qobject_cast<QWidget *>(child);
        if (w && w->isWindow() && w->isVisible())
            owned.append(w);
    }

    for (const QPointer<QMdiSubWindow> &sub : std::as_const(windows)) {
        if (sub && !sub->close())
            return false;
    }
    for (const QPointer<QMdiSubWindow> &sub : std::as_const(tiles)) {
        if (sub && !sub->close())
            return false;
    }
    for (const QPointer<QWidget> &w : std::as_const(owned)) {
        if (w && w->isVisible() && !w->close())
            return false;
    }
    return true;
}

void MDIForm1::Form_Unload()
{
    platform::guarded([this] { UnloadResources(); });
    // From here a request for the shell makes a new one; this one goes when it is closed,
    // or with the session.
    if (m_session.window(Session::Window::Shell, false) == this) {
        m_session.setWindow(Session::Window::Shell, nullptr);
        m_session.adopt(this);
    }
    platform::guarded([this] { showStartScreen(); });
}

void MDIForm1::showStartScreen()
{
    // The start screen is one window: going back by the menu asks for it twice, and the
    // second request finds the first one up. One that was left hidden is not shown again:
    // a new one is made, and the old one goes with the session.
    if (QWidget *shown = m_session.window(Session::Window::StartScreen, false)) {
        if (shown->isVisible())
            return;
        m_session.setWindow(Session::Window::StartScreen, nullptr);
        m_session.adopt(shown);
    }
    if (QWidget *shown = m_session.window(Session::Window::StartScreen))
        shown->show();
}

void MDIForm1::OpenActionsDocument()
{
    try {
        auto rs = m_session.database().OpenRecordset(
            QStringLiteral("SELECT ActionsDocument From Activities WHERE ActivityID=")
            + QString::number(m_activityID));
        if (rs->BOF() && rs->Eof())
            return;
        rs->MoveFirst();
        const QString document = rs->Fields(QStringLiteral("ActionsDocument")).text();
        rs->Close();
        if (document.isEmpty())
            return;
        actions::openCopyInWordProcessor(
            m_session.host(), m_session.content().dataFolder, QStringLiteral("\\Actions\\"), document);
    } catch (const platform::RuntimeError &e) {
        platform::MsgBox(e.description(), platform::vbCritical, platform::ProgramTitle.toString());
    }
}

void MDIForm1::OpenHandIn()
{
    // The work handed in is an activity's: its note and its drawings.
    if (m_activityID == 0)
        return;
    if (QWidget *handIn = m_session.window(Session::Window::HandIn)) {
        handIn->show();
        handIn->raise();
        handIn->activateWindow();
    }
}

QString MDIForm1::RomanNumeral(int number)
{
    static const QStringList numerals = {
        QStringLiteral("I"),
        QStringLiteral("II"),
        QStringLiteral("III"),
        QStringLiteral("IV"),
        QStringLiteral("V"),
        QStringLiteral("VI"),
        QStringLiteral("VII"),
        QStringLiteral("VIII"),
        QStringLiteral("IX"),
        QStringLiteral("X"),
        QStringLiteral("XI"),
        QStringLiteral("XII"),
        QStringLiteral("XIII"),
        QStringLiteral("XIV"),
        QStringLiteral("XV"),
        QStringLiteral("XVI"),
        QStringLiteral("XVII"),
        QStringLiteral("XVIII"),
        QStringLiteral("XIX"),
        QStringLiteral("XX"),
        QStringLiteral("XXI"),
        QStringLiteral("XXII"),
        QStringLiteral("XXIII"),
        QStringLiteral("XXIV"),
        QStringLiteral("XXV"),
        QStringLiteral("XXVI"),
        QStringLiteral("XXVII"),
        QStringLiteral("XXVIII"),
        QStringLiteral("XXIX"),
        QStringLiteral("XXX"),
    };
    if (number < 1 || number > numerals.size())
        throw platform::RuntimeError(
            platform::errors::SubscriptOutOfRange, QStringLiteral("Δείκτης εκτός περιοχής"));
    return numerals.at(number - 1);
}
