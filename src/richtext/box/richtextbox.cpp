#include "richtextbox.h"

#include "richtextboxunits.h"
#include "richtextpages.h"
#include "richtextruns.h"
#include "richtextsearch.h"
#include "rtf.h"
#include "runtimeerror.h"
#include "twips.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextBlock>
#include <QTextDocumentFragment>

#include <algorithm>
#include <cmath>

namespace {

// The rich-edit control keeps its text a pixel or two off the border.
constexpr int DocumentMarginPixels = 2;

} // namespace

RichTextBox::RichTextBox(QWidget *parent)
    : QTextEdit(parent)
    , m_runs(std::make_unique<richtextbox::FormatRuns>())
{
    setAcceptRichText(true);
    setTabChangesFocus(false);
    document()->setDocumentMargin(DocumentMarginPixels);
    document()->setDefaultStyleSheet(QString());
    connect(document(), &QTextDocument::contentsChange, this, &RichTextBox::onContentsChange);
    connect(document(), &QTextDocument::undoCommandAdded, this, [this] { m_undoneLast = false; });
    connect(this, &QTextEdit::textChanged, this, &RichTextBox::Change);
    connect(this, &QTextEdit::cursorPositionChanged, this, &RichTextBox::onSelectionMoved);
    connect(this, &QTextEdit::selectionChanged, this, &RichTextBox::onSelectionMoved);
    // The viewer changes the pointer over hot words as the mouse merely passes.
    viewport()->setMouseTracking(true);
    // No menu of its own: the right button's press and release reach MouseDown and
    // MouseUp like the left one's.
    setContextMenuPolicy(Qt::PreventContextMenu);
    viewport()->setContextMenuPolicy(Qt::PreventContextMenu);
}

RichTextBox::~RichTextBox() = default;

quint32 RichTextBox::colorNumber(const QColor &color)
{
    const QColor rgb = color.toRgb();
    return quint32(rgb.red()) | (quint32(rgb.green()) << 8) | (quint32(rgb.blue()) << 16);
}

QColor RichTextBox::colorFromNumber(quint32 number)
{
    return QColor(int(number & 0xFF), int((number >> 8) & 0xFF), int((number >> 16) & 0xFF));
}

void RichTextBox::onContentsChange(int, int, int)
{
    m_textValid = false;
    m_foldedValid = false;
    m_runs->invalidate();
    m_pages.reset();
}

void RichTextBox::onSelectionMoved()
{
    if (m_pending)
        return; // the pending selection has been told already
    const QTextCursor cursor = QTextEdit::textCursor();
    noteSelection(cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart());
}

void RichTextBox::noteSelection(int start, int length)
{
    if (start == m_lastSelStart && length == m_lastSelLength)
        return;
    m_lastSelStart = start;
    m_lastSelLength = length;
    emit SelChange();
}

// A selection set through SelStart and SelLength is kept aside and handed to the text
// edit at the next event. The hot-word search moves the selection thousands of times
// without anyone looking, and the text edit would scroll and repaint for each of them.
void RichTextBox::setPendingSelection(int anchor, int position)
{
    m_pending = true;
    m_pendingAnchor = anchor;
    m_pendingPosition = position;
    if (!m_flushQueued) {
        m_flushQueued = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_flushQueued = false;
                flushSelection();
            },
            Qt::QueuedConnection);
    }
    noteSelection(std::min(anchor, position), std::abs(position - anchor));
}

void RichTextBox::flushSelection()
{
    if (!m_pending)
        return;
    m_pending = false;
    const int length = TextLength();
    QTextCursor cursor = QTextEdit::textCursor();
    cursor.setPosition(std::min(m_pendingAnchor, length));
    cursor.setPosition(std::min(m_pendingPosition, length), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

QTextCursor RichTextBox::currentCursor() const
{
    if (!m_pending)
        return QTextEdit::textCursor();
    const int length = TextLength();
    QTextCursor cursor(document());
    cursor.setPosition(std::min(m_pendingAnchor, length));
    cursor.setPosition(std::min(m_pendingPosition, length), QTextCursor::KeepAnchor);
    return cursor;
}

QTextCursor RichTextBox::textCursor() const
{
    const_cast<RichTextBox *>(this)->flushSelection();
    return QTextEdit::textCursor();
}

bool RichTextBox::event(QEvent *event)
{
    flushSelection();
    return QTextEdit::event(event);
}

bool RichTextBox::viewportEvent(QEvent *event)
{
    flushSelection();
    return QTextEdit::viewportEvent(event);
}

// --- Text and selection ---------------------------------------------------------------

QString RichTextBox::Text() const
{
    if (!m_textValid) {
        // As toPlainText(), but a non-breaking space stays what it is: the hot words and
        // the content tool read the same characters from the same file.
        m_text = document()->toRawText();
        for (QChar &c : m_text) {
            switch (c.unicode()) {
            case 0xfdd0: // beginning of a frame
            case 0xfdd1: // end of a frame
            case QChar::ParagraphSeparator:
            case QChar::LineSeparator:
                c = u'\n';
                break;
            default:
                break;
            }
        }
        m_textValid = true;
    }
    return m_text;
}

const QString &RichTextBox::foldedText() const
{
    if (!m_foldedValid) {
        m_folded = richtextbox::foldCase(Text());
        m_foldedValid = true;
    }
    return m_folded;
}

void RichTextBox::setText(const QString &text)
{
    // The text takes the box's font and nothing of what stood before.
    m_pending = false;
    document()->setDefaultFont(font());
    setPlainText(text);
    m_undoneLast = false;
}

int RichTextBox::TextLength() const
{
    return std::max(0, document()->characterCount() - 1);
}

int RichTextBox::SelStart() const
{
    if (m_pending)
        return std::min({m_pendingAnchor, m_pendingPosition, TextLength()});
    return QTextEdit::textCursor().selectionStart();
}

void RichTextBox::setSelStart(int place)
{
    richtextbox::requireNotNegative(place);
    const int start = std::min(place, TextLength());
    setPendingSelection(start, start);
}

int RichTextBox::SelLength() const
{
    if (m_pending) {
        const int length = TextLength();
        return std::abs(std::min(m_pendingPosition, length) - std::min(m_pendingAnchor, length));
    }
    const QTextCursor cursor = QTextEdit::textCursor();
    return cursor.selectionEnd() - cursor.selectionStart();
}

void RichTextBox::setSelLength(int length)
{
    richtextbox::requireNotNegative(length);
    const int start = SelStart();
    setPendingSelection(start, std::min(start + length, TextLength()));
}

QString RichTextBox::SelText() const
{
    const QTextCursor cursor = currentCursor();
    if (!cursor.hasSelection())
        return QString();
    // Same characters as Text, one for one.
    return Text().mid(cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart());
}

void RichTextBox::setSelText(const QString &text)
{
    QTextCursor cursor = textCursor();
    if (cursor.hasSelection()) {
        // The new text takes the format of the first character it replaces.
        QTextCursor first(document());
        first.setPosition(cursor.selectionStart() + 1);
        const QTextCharFormat format = first.charFormat();
        cursor.beginEditBlock();
        cursor.removeSelectedText();
        cursor.insertText(text, format);
        cursor.endEditBlock();
    } else {
        cursor.insertText(text);
    }
    setTextCursor(cursor);
}

QByteArray RichTextBox::SelRTF() const
{
    return richtext::writeSelection(currentCursor());
}

void RichTextBox::setSelRTF(const QByteArray &rtf)
{
    if (!richtext::isRtf(rtf)) {
        setSelText(QString::fromUtf8(rtf));
        return;
    }
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    richtext::insertRtf(cursor, rtf);
    cursor.endEditBlock();
    setTextCursor(cursor);
}

void RichTextBox::setSelRTF(const QString &rtf)
{
    const QByteArray bytes = rtf.toUtf8();
    if (richtext::isRtf(bytes))
        setSelRTF(bytes);
    else
        setSelText(rtf);
}

// --- Character format ------------------------------------------------------------------

template<typename Read>
auto RichTextBox::charProperty(Read read) const -> std::optional<decltype(read(QTextCharFormat()))>
{
    int from = 0;
    int to = 0;
    if (m_pending) {
        const int length = TextLength();
        from = std::min({m_pendingAnchor, m_pendingPosition, length});
        to = std::min(std::max(m_pendingAnchor, m_pendingPosition), length);
    } else {
        const QTextCursor cursor = QTextEdit::textCursor();
        // The edit's own cursor also knows the format set for typing at the caret.
        if (!cursor.hasSelection())
            return read(cursor.charFormat());
        from = cursor.selectionStart();
        to = cursor.selectionEnd();
    }
    QVarLengthArray<int, 8> formats;
    if (from == to) {
        // The character before the caret; at the start of a paragraph, the one after.
        const QTextBlock block = document()->findBlock(from);
        const int place = from == block.position() && block.length() > 1 ? from : from - 1;
        if (place < 0)
            return read(block.charFormat());
        m_runs->formatsIn(*document(), place, place + 1, formats);
    } else {
        m_runs->formatsIn(*document(), from, to, formats);
    }
    if (formats.isEmpty()) // nothing but paragraph ends
        return read(document()->findBlock(from).charFormat());
    const QList<QTextFormat> all = document()->allFormats();
    const auto value = read(all.at(formats.at(0)).toCharFormat());
    for (qsizetype i = 1; i < formats.size(); ++i) {
        if (read(all.at(formats.at(i)).toCharFormat()) != value)
            return std::nullopt;
    }
    return value;
}

void RichTextBox::mergeSelectionFormat(const QTextCharFormat &format)
{
    QTextCursor cursor = textCursor();
    // With an empty selection this sets the format for what is typed next.
    cursor.mergeCharFormat(format);
    setTextCursor(cursor);
}

std::optional<quint32> RichTextBox::SelColor() const
{
    return charProperty([](const QTextCharFormat &f) -> quint32 {
        const QBrush brush = f.foreground();
        return brush.style() == Qt::NoBrush ? 0u : colorNumber(brush.color());
    });
}

void RichTextBox::setSelColor(quint32 color)
{
    QTextCharFormat format;
    format.setForeground(colorFromNumber(color));
    mergeSelectionFormat(format);
}

std::optional<bool> RichTextBox::SelBold() const
{
    return charProperty([](const QTextCharFormat &f) { return f.fontWeight() >= QFont::DemiBold; });
}

void RichTextBox::setSelBold(bool on)
{
    QTextCharFormat format;
    format.setFontWeight(on ? QFont::Bold : QFont::Normal);
    mergeSelectionFormat(format);
}

std::optional<bool> RichTextBox::SelItalic() const
{
    return charProperty([](const QTextCharFormat &f) { return f.fontItalic(); });
}

void RichTextBox::setSelItalic(bool on)
{
    QTextCharFormat format;
    format.setFontItalic(on);
    mergeSelectionFormat(format);
}

std::optional<bool> RichTextBox::SelUnderline() const
{
    return charProperty([](const QTextCharFormat &f) { return f.fontUnderline(); });
}

void RichTextBox::setSelUnderline(bool on)
{
    QTextCharFormat format;
    format.setFontUnderline(on);
    mergeSelectionFormat(format);
}

std::optional<bool> RichTextBox::SelStrikeThru() const
{
    return charProperty([](const QTextCharFormat &f) { return f.fontStrikeOut(); });
}

void RichTextBox::setSelStrikeThru(bool on)
{
    QTextCharFormat format;
    format.setFontStrikeOut(on);
    mergeSelectionFormat(format);
}

std::optional<QString> RichTextBox::SelFontName() const
{
    const QString fallback = document()->defaultFont().family();
    return charProperty([&fallback](const QTextCharFormat &f) {
        const QStringList families = f.fontFamilies().toStringList();
        if (!families.isEmpty() && !families.first().isEmpty())
            return families.first();
        return fallback;
    });
}

void RichTextBox::setSelFontName(const QString &family)
{
    QTextCharFormat format;
    format.setFontFamilies({family});
    mergeSelectionFormat(format);
}

std::optional<double> RichTextBox::SelFontSize() const
{
    const QFont fallback = document()->defaultFont();
    const double fallbackSize = fallback.pointSizeF() > 0 ? fallback.pointSizeF() : 12.0;
    return charProperty([fallbackSize](const QTextCharFormat &f) {
        return f.hasProperty(QTextFormat::FontPointSize) && f.fontPointSize() > 0 ? f.fontPointSize()
                                                                                  : fallbackSize;
    });
}

void RichTextBox::setSelFontSize(double points)
{
    if (points <= 0)
        richtextbox::throwInvalidPropertyValue();
    QTextCharFormat format;
    format.setFontPointSize(points);
    mergeSelectionFormat(format);
}

// --- The box ----------------------------------------------------------------------------

bool RichTextBox::Locked() const
{
    return isReadOnly();
}

void RichTextBox::setLocked(bool locked)
{
    setReadOnly(locked);
    // Locked text still shows a caret and can be selected and moved through, so that a
    // click tells where it fell.
    if (locked)
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    applyPointer();
}

quint32 RichTextBox::BackColor() const
{
    return colorNumber(palette().color(QPalette::Base));
}

void RichTextBox::setBackColor(quint32 color)
{
    QPalette p = palette();
    p.setColor(QPalette::Base, colorFromNumber(color));
    setPalette(p);
}

int RichTextBox::RightMargin() const
{
    return m_rightMarginTwips;
}

void RichTextBox::setRightMargin(int twips)
{
    richtextbox::requireNotNegative(twips);
    m_rightMarginTwips = twips;
    applyWrapping();
}

void RichTextBox::setTargetDevice(int lineWidthTwips)
{
    m_targetWidthTwips = std::max(0, lineWidthTwips);
    // Metrics free of the screen's hinting measure the text as the printer will, so the
    // lines break at the same words on screen and on paper.
    document()->setUseDesignMetrics(m_targetWidthTwips > 0);
    applyWrapping();
}

void RichTextBox::applyWrapping()
{
    const int twips = m_targetWidthTwips > 0 ? m_targetWidthTwips : m_rightMarginTwips;
    if (twips <= 0) {
        setLineWrapMode(QTextEdit::WidgetWidth);
        return;
    }
    // The document's margins lie inside the wrapping width; the lines themselves get
    // the width asked for.
    const double margin = document()->documentMargin();
    setLineWrapMode(QTextEdit::FixedPixelWidth);
    setLineWrapColumnOrWidth(int(std::lround(richtextbox::pixelsFromTwips(twips) + 2 * margin)));
}

int RichTextBox::MousePointer() const
{
    return m_pointer;
}

void RichTextBox::setMousePointer(int pointer)
{
    m_pointer = pointer;
    applyPointer();
}

QCursor RichTextBox::MouseIcon() const
{
    return m_icon;
}

void RichTextBox::setMouseIcon(const QCursor &icon)
{
    m_icon = icon;
    applyPointer();
}

void RichTextBox::applyPointer()
{
    static const Qt::CursorShape shapes[] = {
        Qt::IBeamCursor,
        Qt::ArrowCursor,
        Qt::CrossCursor,
        Qt::IBeamCursor,
        Qt::ArrowCursor,
        Qt::SizeAllCursor,
        Qt::SizeBDiagCursor,
        Qt::SizeVerCursor,
        Qt::SizeFDiagCursor,
        Qt::SizeHorCursor,
        Qt::UpArrowCursor,
        Qt::WaitCursor,
        Qt::ForbiddenCursor,
        Qt::BusyCursor,
        Qt::WhatsThisCursor,
        Qt::SizeAllCursor,
    };
    QCursor cursor;
    if (m_pointer == CustomPointer)
        cursor = m_icon;
    else if (m_pointer > 0 && m_pointer < int(std::size(shapes)))
        cursor = QCursor(shapes[m_pointer]);
    else
        cursor = QCursor(Qt::IBeamCursor); // also over locked text, as the control shows it
    if (viewport()->cursor().shape() != cursor.shape() || cursor.shape() == Qt::BitmapCursor)
        viewport()->setCursor(cursor);
}

void RichTextBox::Move(int left, int top, int width, int height)
{
    const QRect now = geometry();
    setGeometry(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top),
        width < 0 ? now.width() : platform::pixelsFromTwipsX(width),
        height < 0 ? now.height() : platform::pixelsFromTwipsY(height));
}

void RichTextBox::Refresh()
{
    viewport()->update();
}

// --- Undo ---------------------------------------------------------------------------------

void RichTextBox::Undo()
{
    flushSelection();
    if (m_undoneLast) {
        if (document()->isRedoAvailable())
            redo();
        m_undoneLast = false;
    } else if (document()->isUndoAvailable()) {
        undo();
        m_undoneLast = true;
    }
}

bool RichTextBox::CanUndo() const
{
    return m_undoneLast ? document()->isRedoAvailable() : document()->isUndoAvailable();
}

// --- Events -------------------------------------------------------------------------------

void RichTextBox::emitMouse(
    void (RichTextBox::*signal)(int, int, double, double), QMouseEvent *event, bool pressed)
{
    const Qt::MouseButtons buttons = pressed ? event->buttons() : Qt::MouseButtons(event->button());
    int button = 0;
    if (buttons & Qt::LeftButton)
        button |= 1;
    if (buttons & Qt::RightButton)
        button |= 2;
    if (buttons & Qt::MiddleButton)
        button |= 4;
    int shift = 0;
    if (event->modifiers() & Qt::ShiftModifier)
        shift |= 1;
    if (event->modifiers() & Qt::ControlModifier)
        shift |= 2;
    if (event->modifiers() & Qt::AltModifier)
        shift |= 4;
    const QPointF inBox = viewport()->mapTo(this, event->position());
    emit(this->*signal)(
        button, shift, inBox.x() * platform::TwipsPerPixelX, inBox.y() * platform::TwipsPerPixelY);
}

void RichTextBox::mousePressEvent(QMouseEvent *event)
{
    QTextEdit::mousePressEvent(event);
    emitMouse(&RichTextBox::MouseDown, event, true);
}

void RichTextBox::mouseMoveEvent(QMouseEvent *event)
{
    QTextEdit::mouseMoveEvent(event);
    emitMouse(&RichTextBox::MouseMove, event, true);
    // The text edit sets its own cursor over links and selections; ours wins.
    applyPointer();
}

void RichTextBox::mouseReleaseEvent(QMouseEvent *event)
{
    QTextEdit::mouseReleaseEvent(event);
    emitMouse(&RichTextBox::MouseUp, event, false);
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Undo) || event->matches(QKeySequence::Redo)) {
        // The one level of undo toggles; there is no separate redo.
        if (event->matches(QKeySequence::Undo) && !isReadOnly())
            Undo();
        event->accept();
        return;
    }
    QTextEdit::keyPressEvent(event);
}

void RichTextBox::contextMenuEvent(QContextMenuEvent *event)
{
    // The box has no menu of its own (the Menu key included), and none of its owner's
    // shows in its place.
    event->accept();
}

void RichTextBox::dragEnterEvent(QDragEnterEvent *event)
{
    // With a manual drop every kind of data may come in, and the window decides.
    if (m_oleDropManual) {
        event->acceptProposedAction();
        return;
    }
    QTextEdit::dragEnterEvent(event);
}

void RichTextBox::dragMoveEvent(QDragMoveEvent *event)
{
    if (m_oleDropManual) {
        event->acceptProposedAction();
        return;
    }
    QTextEdit::dragMoveEvent(event);
}

void RichTextBox::dropEvent(QDropEvent *event)
{
    if (m_oleDropManual) {
        emit OLEDragDrop(event->mimeData());
        event->acceptProposedAction();
        return;
    }
    QTextEdit::dropEvent(event);
}
