#include "frmindex.h"

#include <btn.h>
#include <clicktree.h>
#include <contentpath.h>
#include <database.h>
#include <designedcolours.h>
#include <errorpolicy.h>
#include <frmfoto.h>
#include <frmmediaplayer.h>
#include <greekcollation.h>
#include <indexterms.h>
#include <msgbox.h>
#include <programbitmaps.h>
#include <richtextbox.h>
#include <session.h>
#include <shellwindow.h>
#include <textzoom.h>
#include <twips.h>

#include <QCloseEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QTreeWidget>

namespace {

constexpr int TagRole = Qt::UserRole;
constexpr quint32 ListBackColor = 0xD3F7FF; // RGB(255, 247, 211)

QRect twipsRect(int left, int top, int width, int height)
{
    return QRect(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top),
        platform::pixelsFromTwipsX(width), platform::pixelsFromTwipsY(height));
}

void setFaces(Btn *button, const QString &face)
{
    platform::resumeNext([&] {
        button->setPicture(resources::LoadResPicture(face));
        button->setDownPicture(resources::LoadResPicture(face + QStringLiteral("_DOWN")));
    });
}

} // namespace

frmIndex::frmIndex(Session &session, QWidget *parent)
    : QWidget(parent)
    , tbs(new QTabBar(this))
    , LvEnnoia(new ClickTree(this))
    , rtfExp(new RichTextBox(this))
    , cmdPicture(new Btn(this))
    , cmdSound(new Btn(this))
    , cmdVideo(new Btn(this))
    , Picture1(new QLabel(this))
    , Image1(new QLabel(Picture1))
    , m_session(session)
{
    setObjectName(QStringLiteral("frmIndex"));
    platform::useDesignedColours(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Ευρετήριο"));
    const std::pair<QWidget *, const char *> names[]
        = {{tbs, "tbs"}, {LvEnnoia, "LvEnnoia"}, {rtfExp, "rtfExp"}, {cmdPicture, "cmdPicture"},
            {cmdSound, "cmdSound"}, {cmdVideo, "cmdVideo"}, {Picture1, "Picture1"}, {Image1, "Image1"}};
    for (const auto &[widget, name] : names)
        widget->setObjectName(QString::fromLatin1(name));
    LvEnnoia->setAccessibleName(QStringLiteral("Όροι"));
    rtfExp->setAccessibleName(QStringLiteral("Επεξήγηση"));
    tbs->setAccessibleName(QStringLiteral("Είδη όρων"));

    // The first tab is the design's own: every term, in one list.
    const finding::IndexTab all = finding::alphabeticalTab();
    tbs->setTabData(tbs->addTab(all.caption), all.key);
    tbs->setExpanding(false);
    LvEnnoia->setColumnCount(1);
    LvEnnoia->setHeaderHidden(true);
    LvEnnoia->setRootIsDecorated(false);
    LvEnnoia->setUniformRowHeights(true);
    LvEnnoia->setSelectionMode(QAbstractItemView::SingleSelection);
    LvEnnoia->header()->setStretchLastSection(false);
    rtfExp->setLocked(true);
    setFaces(cmdPicture, QStringLiteral("PICTURE"));
    setFaces(cmdSound, QStringLiteral("SOUND"));
    setFaces(cmdVideo, QStringLiteral("VIDEO"));
    cmdPicture->setToolTip(QStringLiteral("Εικόνα"));
    cmdSound->setToolTip(QStringLiteral("Ήχος"));
    cmdVideo->setToolTip(QStringLiteral("Βίντεο"));
    Picture1->hide();
    Image1->setScaledContents(true);
    layOut();

    // An item reached by the keyboard is clicked too, as the platform's list does.
    connect(static_cast<ClickTree *>(LvEnnoia), &ClickTree::ItemClick, this,
        [this](QTreeWidgetItem *item) { platform::guarded([&] { LvEnnoia_ItemClick(item); }); });
    connect(tbs, &QTabBar::currentChanged, this, [this] { platform::guarded([this] { tbs_Click(); }); });
    // A click on the tab already chosen is a click too, though nothing changes.
    connect(tbs, &QTabBar::tabBarClicked, this, [this](int index) {
        if (index >= 0 && index == tbs->currentIndex())
            platform::guarded([this] { tbs_Click(); });
    });
    connect(cmdPicture, &Btn::Click, this, [this] { platform::guarded([this] { cmdPicture_Click(); }); });
    connect(cmdSound, &Btn::Click, this, [this] { platform::guarded([this] { cmdSound_Click(); }); });
    connect(cmdVideo, &Btn::Click, this, [this] { platform::guarded([this] { cmdVideo_Click(); }); });
    // The explanation takes the pupil's text size, whichever control has the keys.
    m_session.textZoom().follow(
        this, {this, LvEnnoia, rtfExp}, [this](int percent) { TextZoom::zoomTextEdit(rtfExp, percent); });
}

frmIndex::~frmIndex() = default;

QString frmIndex::textToRead() const
{
    return rtfExp->Text();
}

QTextEdit *frmIndex::textBoxToRead() const
{
    return rtfExp;
}

void frmIndex::layOut()
{
    resize(platform::pixelsFromTwipsX(FormWidth), platform::pixelsFromTwipsY(FormHeight));
    tbs->setGeometry(twipsRect(120, 120, 8760, 390));
    LvEnnoia->setGeometry(twipsRect(120, 540, 3360, 5880));
    rtfExp->setGeometry(twipsRect(3600, 540, 5280, 4860));
    Picture1->setGeometry(rtfExp->geometry());
    cmdPicture->Move(3600, 5520);
    cmdSound->Move(5520, 5520);
    cmdVideo->Move(7440, 5520);
}

void frmIndex::Load()
{
    LvEnnoia->setColumnWidth(
        0, platform::pixelsFromTwipsX(platform::twipsFromPixelsX(LvEnnoia->width()) - 240));
    FillTabs();
    FillListView(m_type);
    cmdPicture->setEnabled(false);
    cmdVideo->setEnabled(false);
    cmdSound->setEnabled(false);
    // The cream goes into the list's own palette, over the designed colours it inherits: a
    // style sheet would cut the list off from them, and a dark desktop's light text would
    // come through onto the cream.
    QPalette cream = LvEnnoia->palette();
    cream.setColor(QPalette::Base, QColor(255, 247, 211));
    LvEnnoia->setPalette(cream);
    rtfExp->setBackColor(ListBackColor);
    if (ShellWindow *shell = m_session.shell(false))
        shell->setToggleChecked(ShellWindow::Toggle::Catalogue, true);
}

void frmIndex::FillTabs()
{
    const QSignalBlocker quiet(tbs);
    for (const finding::IndexTab &tab : finding::IndexTypeTabs(m_session.database()))
        tbs->setTabData(tbs->addTab(tab.caption), tab.key);
}

void frmIndex::FillListView(qint32 type)
{
    const QList<finding::IndexTerm> terms = finding::IndexTerms(m_session.database(), type);
    for (int i = 0; i < tbs->count(); ++i) {
        if (finding::TypeOfTabKey(tbs->tabData(i).toString()) == type) {
            tbs->setCurrentIndex(i);
            break;
        }
    }
    LvEnnoia->clear();
    rtfExp->setText(QString());
    QList<QTreeWidgetItem *> items;
    items.reserve(terms.size());
    for (const finding::IndexTerm &term : terms) {
        auto *item = new QTreeWidgetItem(QStringList {term.Oros});
        item->setData(0, TagRole, term.EuretirioID);
        items.append(item);
    }
    LvEnnoia->addTopLevelItems(items);
    if (!items.isEmpty()) {
        LvEnnoia->setCurrentItem(items.first());
        LvEnnoia_ItemClick(items.first());
    }
}

void frmIndex::CloseOpenWindows(bool picture)
{
    if (picture && m_pictureOpen) {
        if (m_foto)
            m_foto->Unload();
        m_pictureOpen = false;
    }
    if (m_soundOpen) {
        if (m_player)
            m_player->Unload();
        m_soundOpen = false;
    }
    if (m_videoOpen) {
        if (m_player)
            m_player->Unload();
        m_videoOpen = false;
    }
}

void frmIndex::LvEnnoia_ItemClick(QTreeWidgetItem *item)
{
    if (!item)
        return;
    CloseOpenWindows(true);
    const finding::IndexTermDetails term = finding::TermDetails(m_session.database(), Tag(item));
    // A term without explanation leaves the last one on screen.
    if (!term.Epexigisi.isEmpty())
        rtfExp->setText(term.Epexigisi);
    cmdPicture->setEnabled(!term.Picture.isEmpty());
    if (!term.Picture.isEmpty())
        cmdPicture->setTag(term.Picture);
    cmdVideo->setEnabled(!term.Video.isEmpty());
    VideoPath
        = platform::contentPath(m_session.content().dataFolder, QStringLiteral("\\Videos\\"), term.Video);
    cmdSound->setEnabled(!term.Sound.isEmpty());
    SoundPath
        = platform::contentPath(m_session.content().dataFolder, QStringLiteral("\\Sounds\\"), term.Sound);
}

void frmIndex::tbs_Click()
{
    // The picture stays; sound and video belong to the list that goes.
    CloseOpenWindows(false);
    const int index = tbs->currentIndex();
    if (index < 0)
        return;
    const qint32 type = finding::TypeOfTabKey(tbs->tabData(index).toString());
    if (type != m_type) {
        m_type = type;
        FillListView(type);
    }
}

void frmIndex::DisplayHotword(const QString &term, const QString &explanation, const QString &pictureName)
{
    CloseOpenWindows(true);
    if (QTreeWidgetItem *item = FindItem(term)) {
        LvEnnoia->scrollToItem(item);
        LvEnnoia->setCurrentItem(item);
        item->setSelected(true);
    }
    rtfExp->setText(explanation);
    rtfExp->show();
    if (!pictureName.isEmpty()) {
        cmdPicture->setEnabled(true);
        rtfExp->lower();
    } else {
        cmdPicture->setEnabled(false);
    }
    cmdPicture->setTag(pictureName);
}

void frmIndex::cmdPicture_Click()
{
    const QString path = platform::contentPath(
        m_session.content().dataFolder, QStringLiteral("\\Photos\\"), cmdPicture->Tag());
    auto *foto = m_session.window<frmFoto>(Session::Window::Photo);
    if (!foto)
        return;
    m_foto = foto;
    foto->LoadPicture(path);
    const QPoint centre = mapToGlobal(rect().center());
    foto->move(centre - QPoint(foto->width() / 2, foto->height() / 2));
    foto->show();
    foto->raise();
    foto->activateWindow();
    m_pictureOpen = true;
}

void frmIndex::cmdSound_Click()
{
    PlayMedia(0, SoundPath, m_soundOpen, QStringLiteral("Ήχος ευρετηρίου"),
        QStringLiteral("Το αρχείο ήχου δεν βρέθηκε !!!"));
}

void frmIndex::cmdVideo_Click()
{
    PlayMedia(1, VideoPath, m_videoOpen, QStringLiteral("Βίντεο ευρετηρίου"),
        QStringLiteral("Το αρχείο βίντεο δεν βρέθηκε !!!"));
}

void frmIndex::PlayMedia(
    qint32 kind, const QString &path, bool &flag, const QString &caption, const QString &missing)
{
    if (path.isEmpty())
        return;
    flag = true;
    if (!platform::fileExists(path)) {
        platform::MsgBox(missing, platform::vbExclamation, QStringLiteral("Tremidia"));
        return;
    }
    MediaKind = kind;
    // One piece plays at a time: another sound or video stops the one playing.
    if (m_player)
        m_player->Unload();
    // The player reads the choice as it loads, from this index while it stands.
    auto *player = new frmMediaPlayer(m_session, [index = QPointer<frmIndex>(this)] {
        frmMediaPlayer::IndexMedia media;
        if (index) {
            media.MediaKind = index->MediaKind;
            media.SoundPath = index->SoundPath;
            media.VideoPath = index->VideoPath;
        }
        return media;
    });
    m_player = player;
    player->Load();
    player->setWindowTitle(caption);
    CenterPlayer(player);
}

void frmIndex::CenterPlayer(frmMediaPlayer *player)
{
    ShellWindow *shell = m_session.shell(false);
    QMdiArea *area = shell ? shell->mdiArea() : nullptr;
    if (!area) {
        player->show();
        return;
    }
    QMdiSubWindow *sub = area->addSubWindow(player);
    sub->resize(player->size().grownBy(sub->contentsMargins()));
    const int left = platform::pixelsFromTwipsX(
        (platform::twipsFromPixelsX(area->viewport()->width()) - platform::twipsFromPixelsX(sub->width()))
        / 2.0);
    const int top = platform::pixelsFromTwipsY(
        (platform::twipsFromPixelsY(area->viewport()->height()) - platform::twipsFromPixelsY(sub->height()))
        / 2.0);
    sub->move(left, top);
    sub->show();
    player->show();
    area->setActiveSubWindow(sub);
}

void frmIndex::FitPicture(const QPixmap &picture)
{
    const QSize pictureTwips(
        platform::twipsFromPixelsX(picture.width()), platform::twipsFromPixelsY(picture.height()));
    const QSize boxTwips(
        platform::twipsFromPixelsX(Picture1->width()), platform::twipsFromPixelsY(Picture1->height()));
    const QRect place = finding::FittedPictureRect(boxTwips, pictureTwips);
    Image1->setPixmap(picture);
    Image1->setGeometry(twipsRect(place.left(), place.top(), place.width(), place.height()));
}

QTreeWidgetItem *frmIndex::FindItem(const QString &text) const
{
    // As the list control finds by text: the first item whose text begins with the whole
    // word or words given, case ignored, so "Δήλος" finds "Δήλος (νησί)" but not "Δηλιακός".
    for (int i = 0; i < LvEnnoia->topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = LvEnnoia->topLevelItem(i);
        const QString itemText = item->text(0);
        if (itemText.size() < text.size())
            continue;
        if (content::compareText(QStringView(itemText).left(text.size()), text) != 0)
            continue;
        if (itemText.size() == text.size() || !itemText.at(text.size()).isLetterOrNumber())
            return item;
    }
    return nullptr;
}

QString frmIndex::Tag(const QTreeWidgetItem *item)
{
    return item ? item->data(0, TagRole).toString() : QString();
}

void frmIndex::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    if (!event->isAccepted())
        return;
    if (ShellWindow *shell = m_session.shell(false))
        shell->setToggleChecked(ShellWindow::Toggle::Catalogue, false);
    if (m_session.window(Session::Window::Index, false) == this)
        m_session.setWindow(Session::Window::Index, nullptr);
}
