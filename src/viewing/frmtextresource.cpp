#include "frmtextresource.h"

#include "frmtooltips.h"
#include "opensource.h"
#include "rtbhotwordmodel.h"
#include "viewingaccessibility.h"

#include <clstexts.h>
#include <colhotwords.h>
#include <contentpath.h>
#include <database.h>
#include <errorpolicy.h>
#include <hotwordlocator.h>
#include <programbitmaps.h>
#include <richtextbox.h>
#include <session.h>
#include <shellwindow.h>
#include <textzoom.h>
#include <twips.h>

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScopeGuard>
#include <QTextCursor>

#include <algorithm>
#include <cmath>

namespace {

// The client area that the design's outer size leaves inside the usual child-window
// frame: 4 pixels at each side, and the title bar above.
constexpr int FrameWidthTwips = 120;
constexpr int FrameHeightTwips = 405;

void useSerifSubstitute()
{
    // The texts were set in Times New Roman; where it is missing, its metric twin keeps
    // the line breaks where the authors saw them.
    static const bool done = [] {
        QFont::insertSubstitution(QStringLiteral("Times New Roman"), QStringLiteral("Liberation Serif"));
        return true;
    }();
    Q_UNUSED(done);
}

double scaleWidth(const QWidget *w)
{
    return platform::twipsFromPixelsX(w->width());
}

double scaleHeight(const QWidget *w)
{
    return platform::twipsFromPixelsY(w->height());
}

} // namespace

frmTextResource::frmTextResource(Session &session, QWidget *parent)
    : SourceViewer(session, parent)
    , imgPapiros(new QLabel(this))
    , rtbTextResource(new RichTextBox(this))
    , Label1(new QLabel(this))
{
    setObjectName(QStringLiteral("frmTextResource"));
    imgPapiros->setObjectName(QStringLiteral("imgPapiros"));
    rtbTextResource->setObjectName(QStringLiteral("rtbTextResource"));
    Label1->setObjectName(QStringLiteral("Label1"));

    imgPapiros->setScaledContents(true);
    platform::resumeNext(
        [this] { imgPapiros->setPixmap(resources::LoadResPicture(QStringLiteral("PAPIROS"))); });
    imgPapiros->lower();
    Label1->hide();
    platform::resumeNext([this] { Label1->setCursor(resources::LoadResCursor(QStringLiteral("HAND"))); });

    viewing::installAccessibility();
    // Tab goes from hot word to hot word and Enter opens one, as a click does.
    rtbTextResource->installEventFilter(this);
    rtbTextResource->setAccessibleDescription(QStringLiteral("Κείμενο"));
    viewing::renewAccessible(rtbTextResource);

    connect(
        rtbTextResource, &RichTextBox::MouseMove, this, [this](int button, int shift, double x, double y) {
            platform::guarded([&] { rtbTextResource_MouseMove(button, shift, x, y); });
        });
    // A click in the text puts the search's marks away.
    connect(rtbTextResource, &RichTextBox::MouseDown, this, [this](int, int, double, double) {
        if (!m_markedWords.isEmpty())
            platform::guarded([this] { ShowFoundWords({}); });
    });
    connect(rtbTextResource, &RichTextBox::MouseUp, this, [this](int button, int shift, double x, double y) {
        platform::guarded([&] { rtbTextResource_MouseUp(button, shift, x, y); });
    });
    m_session.textZoom().follow(this, {this, rtbTextResource},
        [this](int percent) { TextZoom::zoomTextEdit(rtbTextResource, percent); });
}

frmTextResource::~frmTextResource() = default;

void frmTextResource::ShowFoundWords(const QList<std::pair<int, int>> &places)
{
    m_markedWords = places;
    QList<QTextEdit::ExtraSelection> marks;
    for (const auto &[start, length] : places) {
        QTextEdit::ExtraSelection mark;
        mark.cursor = QTextCursor(rtbTextResource->document());
        mark.cursor.setPosition(start);
        mark.cursor.setPosition(start + length, QTextCursor::KeepAnchor);
        mark.format.setBackground(QColor(255, 214, 92));
        marks.append(mark);
    }
    rtbTextResource->setExtraSelections(marks);
    if (places.isEmpty())
        return;
    rtbTextResource->setSelStart(places.front().first);
    rtbTextResource->setSelLength(places.front().second);
    rtbTextResource->ensureCursorVisible();
}

void frmTextResource::Load()
{
    useSerifSubstitute();
    QFont font(QStringLiteral("Times New Roman"));
    font.setPointSize(12);
    rtbTextResource->setFont(font);
    rtbTextResource->document()->setDefaultFont(font);

    m_loaded = false;
    resize(sizeHint());
    rtbTextResource->Move(BoxLeft, BoxTop, BoxWidth, BoxHeight);
    m_widthRatio = platform::twipsFromPixelsX(rtbTextResource->width()) / scaleWidth(this);
    m_heightRatio = platform::twipsFromPixelsY(rtbTextResource->height()) / scaleHeight(this);
    rtbTextResource->setLocked(true);
    rtbTextResource->setBackColor(BoxBackColor);

    LoadText();

    m_windowListPlace = 0;
    if (ShellWindow *shell = m_session.shell()) {
        if (shell->mnuListUBound() == 1) {
            shell->windowListSeparator()->setVisible(true);
            QAction *entry = shell->mnuList(1);
            entry->setVisible(true);
            entry->setText(windowTitle());
            m_windowListPlace = 1;
        }
    }
    m_loaded = true;
    Form_Resize();
}

void frmTextResource::LoadText()
{
    content::Database &database = m_session.database();
    const QString &dataFolder = m_session.content().dataFolder;
    const SourceRow row = source() ? *source() : readSourceRow(database, ResourceID());
    const clsTexts texts(database, dataFolder);
    rtbTextResource->LoadFile(platform::contentPath(dataFolder, QStringLiteral("\\piges\\"), row.TextPath),
        RichTextBox::RichTextFile);
    setWindowTitle(row.Book);
    m_hotWords = texts.HotWords(ResourceID());
    FillHotWords();
}

void frmTextResource::FillHotWords()
{
    m_located.clear();
    if (!m_hotWords)
        return;
    m_textModel = std::make_unique<RichTextBoxHotWordModel>(*rtbTextResource);
    hotwords::FillHotWords(*m_textModel, *m_hotWords);
    for (const CHotWord &word : *m_hotWords)
        if (word.Last() > word.First())
            m_located.append(&word);
    std::stable_sort(m_located.begin(), m_located.end(),
        [](const CHotWord *a, const CHotWord *b) { return a->First() < b->First(); });
}

QSize frmTextResource::sizeHint() const
{
    return QSize(platform::pixelsFromTwipsX(FormWidth - FrameWidthTwips),
        platform::pixelsFromTwipsY(FormHeight - FrameHeightTwips));
}

CHotWord *frmTextResource::hotWordAt(int place) const
{
    return m_hotWords ? hotwords::HitHotWord(*m_hotWords, place) : nullptr;
}

void frmTextResource::resizeEvent(QResizeEvent *event)
{
    SourceViewer::resizeEvent(event);
    platform::guarded([this] { Form_Resize(); });
}

void frmTextResource::Form_Resize()
{
    imgPapiros->setGeometry(0, 0, width(), height());
    if (!m_loaded)
        return;
    const double sw = scaleWidth(this);
    const double sh = scaleHeight(this);
    const double boxWidth = sw * m_widthRatio;
    const double boxHeight = sh * m_heightRatio;
    // The left is rounded before halving and the top is not; the half twip between them
    // cannot be seen.
    const double left = std::floor(std::nearbyint(sw - boxWidth) / 2);
    const double top = (sh - boxHeight) / 2;
    rtbTextResource->setGeometry(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top),
        platform::pixelsFromTwipsX(boxWidth), platform::pixelsFromTwipsY(boxHeight));
    rtbTextResource->setRightMargin(boxWidth >= 450 ? int(std::lround(boxWidth - 450)) : 0);
    rtbTextResource->Refresh();
}

void frmTextResource::rtbTextResource_MouseMove(int, int, double x, double y)
{
    const QPoint pixels(
        int(std::nearbyint(x)) / platform::TwipsPerPixelX, int(std::nearbyint(y)) / platform::TwipsPerPixelY);
    const int place = rtbTextResource->CharFromPos(pixels);
    if (hotWordAt(place)) {
        rtbTextResource->setMousePointer(RichTextBox::CustomPointer);
        rtbTextResource->setMouseIcon(Label1->cursor());
    } else {
        rtbTextResource->setMousePointer(RichTextBox::DefaultPointer);
    }
}

void frmTextResource::rtbTextResource_MouseUp(int, int, double, double)
{
    // The caret decides, not the pointer: a selection tests only where it begins.
    openHotWord(hotWordAt(rtbTextResource->SelStart()), QCursor::pos());
}

void frmTextResource::openHotWord(const CHotWord *word, QPoint cursor)
{
    if (!word)
        return;
    if (word->HotwordType() == 1) {
        auto *tip = m_session.window<frmToolTips>(Session::Window::Tip);
        if (!tip)
            return;
        tip->setTipLeft(platform::twipsFromPixelsX(cursor.x()));
        tip->setTipTop(platform::twipsFromPixelsY(cursor.y()));
        tip->setTipText(word->Comment());
        tip->setTipPicture(word->Photo());
        ShellWindow *shell = m_session.shell(false);
        tip->Show(shell ? shell->window() : window());
    } else if (word->HotwordType() == 0) {
        // The index shows the term when it stands; until then a term's click is quiet.
        QApplication::setOverrideCursor(Qt::WaitCursor);
        const auto restore = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
        if (const auto &openIndex = m_session.links().openIndex)
            openIndex(word->IndexType(), word->phrase(), word->Comment(), word->Photo());
    }
}

int frmTextResource::selectedHotWord() const
{
    const int start = rtbTextResource->SelStart();
    for (int i = 0; i < m_located.size(); ++i)
        if (m_located.at(i)->First() <= start && start < m_located.at(i)->Last())
            return i;
    return -1;
}

void frmTextResource::selectHotWord(int index)
{
    const CHotWord *word = m_located.value(index);
    if (!word)
        return;
    rtbTextResource->setSelStart(word->First());
    rtbTextResource->setSelLength(word->Last() - word->First());
    rtbTextResource->textCursor();
    rtbTextResource->ensureCursorVisible();
}

void frmTextResource::pressHotWord(int index)
{
    platform::guarded([&] {
        const CHotWord *word = m_located.value(index);
        if (!word)
            return;
        selectHotWord(index);
        // The tip stands below the word's first line, where the pointer would have been.
        const QPoint corner = rtbTextResource->PosFromChar(word->First());
        const int line = rtbTextResource->fontMetrics().height();
        openHotWord(word, rtbTextResource->mapToGlobal(corner + QPoint(line / 2, line)));
    });
}

bool frmTextResource::stepHotWord(bool forward)
{
    if (m_located.isEmpty())
        return false;
    const int start = rtbTextResource->SelStart();
    const int end = start + rtbTextResource->SelLength();
    if (forward) {
        for (int i = 0; i < m_located.size(); ++i) {
            if (m_located.at(i)->First() >= end) {
                selectHotWord(i);
                return true;
            }
        }
        return false;
    }
    for (int i = int(m_located.size()) - 1; i >= 0; --i) {
        if (m_located.at(i)->Last() <= start) {
            selectHotWord(i);
            return true;
        }
    }
    return false;
}

bool frmTextResource::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != rtbTextResource || event->type() != QEvent::KeyPress)
        return SourceViewer::eventFilter(watched, event);
    auto *key = static_cast<QKeyEvent *>(event);
    if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return false;
    bool handled = false;
    platform::guarded([&] {
        switch (key->key()) {
        case Qt::Key_Tab:
            handled = stepHotWord(!(key->modifiers() & Qt::ShiftModifier));
            break;
        case Qt::Key_Backtab:
            handled = stepHotWord(false);
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (const int index = selectedHotWord(); index >= 0) {
                pressHotWord(index);
                handled = true;
            }
            break;
        default:
            break;
        }
    });
    // Past the last hot word Tab goes on to the next control, as anywhere else.
    return handled;
}

void frmTextResource::showEvent(QShowEvent *event)
{
    SourceViewer::showEvent(event);
    auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget());
    if (sub && sub != m_watchedSub) {
        m_watchedSub = sub;
        trimSystemMenu(sub);
        connect(sub, &QMdiSubWindow::windowStateChanged, this,
            [this](Qt::WindowStates before, Qt::WindowStates now) {
                if ((now & Qt::WindowActive) && !(before & Qt::WindowActive))
                    platform::resumeNext([this] { Form_Activate(); });
            });
    }
}

void frmTextResource::trimSystemMenu(QMdiSubWindow *sub)
{
    // The window menu of a text offers no more than moving, sizing and closing the
    // window; "stay on top" has no meaning among the shell's children.
    QMenu *menu = sub->systemMenu();
    if (!menu)
        return;
    const QList<QAction *> actions = menu->actions();
    for (QAction *action : actions) {
        if (action->objectName() == QLatin1String("StayOnTop") || action->isCheckable())
            menu->removeAction(action);
    }
}

QString frmTextResource::textToRead() const
{
    return rtbTextResource->SelLength() > 0 ? rtbTextResource->SelText() : rtbTextResource->Text();
}

QTextEdit *frmTextResource::textBoxToRead() const
{
    return rtbTextResource;
}

void frmTextResource::Form_Activate()
{
    ShellWindow *shell = m_session.shell(false);
    if (!shell)
        return;
    for (int i = 1; i <= shell->mnuListUBound(); ++i)
        shell->mnuList(i)->setChecked(false);
    // The entry of this window is cleared too, not marked.
    shell->mnuList(m_windowListPlace)->setChecked(false);
}
