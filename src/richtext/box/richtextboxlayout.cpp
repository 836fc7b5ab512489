// RichTextBox: files, finding, measuring on screen and printing.

#include "contentpath.h"
#include "richtextbox.h"
#include "richtextboxunits.h"
#include "richtextbullets.h"
#include "richtextpages.h"
#include "richtextsearch.h"
#include "rtf.h"
#include "rtffile.h"
#include "runtimeerror.h"

#include <QAbstractTextDocumentLayout>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextLayout>
#include <QUrl>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

// --- Files ------------------------------------------------------------------------------------

void RichTextBox::LoadFile(const QString &path, int type)
{
    if (type != RichTextFile && type != TextFile)
        richtextbox::throwInvalidPropertyValue();
    const QByteArray data = richtext::readFile(path);

    m_pending = false;
    document()->setDefaultFont(font());
    richtext::loadDocument(*document(), data, type == RichTextFile);
    document()->clearUndoRedoStacks();
    document()->setModified(false);
    m_undoneLast = false;
    QTextCursor start(document());
    setTextCursor(start);
}

void RichTextBox::SaveFile(const QString &path, int type) const
{
    if (type != RichTextFile && type != TextFile)
        richtextbox::throwInvalidPropertyValue();
    richtext::writeFileWhole(
        path, type == RichTextFile ? richtext::writeDocument(*document()) : Text().toUtf8());
}

void RichTextBox::InsertPicture(const QString &path)
{
    const QString resolved = platform::resolvePath(path);
    const QImage image(resolved);
    if (image.isNull())
        throw platform::RuntimeError(platform::errors::InvalidPicture, u"Μη έγκυρη εικόνα"_s);
    insertImage(image);
}

void RichTextBox::insertImage(const QImage &image)
{
    // Named as the RTF reader names its pictures, so the writer finds it the same way.
    const QUrl name(richtext::newPictureName());
    document()->addResource(QTextDocument::ImageResource, name, image);
    QTextImageFormat format;
    format.setName(name.toString());
    format.setWidth(image.width());
    format.setHeight(image.height());
    QTextCursor cursor = textCursor();
    cursor.insertImage(format);
    setTextCursor(cursor);
}

bool RichTextBox::canInsertFromMimeData(const QMimeData *source) const
{
    return source->hasImage() || QTextEdit::canInsertFromMimeData(source);
}

void RichTextBox::insertFromMimeData(const QMimeData *source)
{
    // A bitmap alone on the clipboard goes in as a picture, as the control pastes one.
    if (source->hasImage() && !source->hasText() && !source->hasHtml()) {
        const QImage image = qvariant_cast<QImage>(source->imageData());
        if (!image.isNull()) {
            insertImage(image);
            return;
        }
    }
    QTextEdit::insertFromMimeData(source);
}

// --- Finding ------------------------------------------------------------------------------------

int RichTextBox::Find(const QString &text, int start, int end, int options)
{
    const QString all = Text();
    const bool matchCase = options & FindMatchCase;
    const int hit = richtextbox::findText(all, matchCase ? all : foldedText(), text, start, end, options);
    if (hit >= 0)
        setPendingSelection(hit, hit + int(text.size()));
    return hit;
}

// --- Measuring on screen ------------------------------------------------------------------------

void RichTextBox::ensureLayoutWidth() const
{
    // A box that has not been shown yet has not heard of its size, and its lines are
    // still wrapped at the width it was made with. Callers measure such boxes to size
    // them, so wrap at the width they will have.
    if (isVisible() || !testAttribute(Qt::WA_PendingResizeEvent) || lineWrapMode() != QTextEdit::WidgetWidth)
        return;
    const int width = contentsRect().width() - viewportMargins().left() - viewportMargins().right();
    if (width > 0 && document()->textWidth() != width)
        document()->setTextWidth(width);
}

int RichTextBox::LineCount() const
{
    ensureLayoutWidth();
    QAbstractTextDocumentLayout *layout = document()->documentLayout();
    layout->documentSize();
    int lines = 0;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (!block.isVisible())
            continue;
        layout->blockBoundingRect(block);
        lines += std::max(1, block.layout()->lineCount());
    }
    return lines;
}

int RichTextBox::GetLineFromChar(int place) const
{
    ensureLayoutWidth();
    place = std::clamp(place, 0, TextLength());
    QAbstractTextDocumentLayout *layout = document()->documentLayout();
    const QTextBlock target = document()->findBlock(place);
    layout->blockBoundingRect(target);
    int lines = 0;
    for (QTextBlock block = document()->begin(); block.isValid() && block != target; block = block.next()) {
        if (block.isVisible())
            lines += std::max(1, block.layout()->lineCount());
    }
    const QTextLine line = target.layout()->lineForTextPosition(place - target.position());
    if (line.isValid())
        return lines + line.lineNumber();
    return lines + std::max(0, target.layout()->lineCount() - 1);
}

int RichTextBox::CharFromPos(QPoint pixels) const
{
    ensureLayoutWidth();
    QAbstractTextDocumentLayout *layout = document()->documentLayout();
    const QPointF inDocument = QPointF(pixels - viewport()->geometry().topLeft())
        + QPointF(horizontalScrollBar()->value(), verticalScrollBar()->value());
    int hit = layout->hitTest(inDocument, Qt::FuzzyHit);
    if (hit < 0)
        hit = TextLength();
    const QTextBlock block = document()->findBlock(hit);
    const QRectF blockRect = layout->blockBoundingRect(block);
    const QTextLayout *lines = block.layout();
    if (!lines || lines->lineCount() == 0)
        return block.position();
    const QPointF local = inDocument - blockRect.topLeft();
    int index = lines->lineCount() - 1;
    for (int i = 0; i < lines->lineCount(); ++i) {
        const QTextLine line = lines->lineAt(i);
        if (local.y() < line.y() + line.height()) {
            index = i;
            break;
        }
    }
    const QTextLine line = lines->lineAt(index);
    int inBlock = line.xToCursor(local.x(), QTextLine::CursorOnCharacter);
    const int lineEnd = line.textStart() + line.textLength();
    inBlock = std::clamp(inBlock, line.textStart(), lineEnd);
    // Past the end of a wrapped line lies its last character, not the next line's first.
    if (inBlock == lineEnd && index + 1 < lines->lineCount() && line.textLength() > 0)
        --inBlock;
    return block.position() + inBlock;
}

QPoint RichTextBox::PosFromChar(int place) const
{
    ensureLayoutWidth();
    place = std::clamp(place, 0, TextLength());
    QAbstractTextDocumentLayout *layout = document()->documentLayout();
    const QTextBlock block = document()->findBlock(place);
    const QRectF blockRect = layout->blockBoundingRect(block);
    const QTextLine line = block.layout()->lineForTextPosition(place - block.position());
    QPointF inDocument = blockRect.topLeft();
    if (line.isValid())
        inDocument += QPointF(line.cursorToX(place - block.position()), line.y());
    const QPointF inBox = inDocument - QPointF(horizontalScrollBar()->value(), verticalScrollBar()->value())
        + QPointF(viewport()->geometry().topLeft());
    return inBox.toPoint();
}

// --- Printing -----------------------------------------------------------------------------------

int RichTextBox::FormatRange(QPainter *painter, const QRectF &rectTwips, int from, bool render)
{
    if (!painter || !painter->device())
        return TextLength();
    QPaintDevice *device = painter->device();
    if (!m_pages || !m_pages->fits(device, rectTwips.width()))
        m_pages = std::make_unique<richtextbox::PageLayout>(*document(), device, rectTwips.width());
    return m_pages->formatRange(painter, rectTwips, from, render);
}

void RichTextBox::FormatRangeDone()
{
    m_pages.reset();
}

void RichTextBox::SelPrint(QPagedPaintDevice *device) const
{
    if (!device)
        return;
    // A copy of the whole text, cut down to the selection, keeps the pictures, which a
    // bare fragment would leave behind. Without a selection all of the text prints.
    std::unique_ptr<QTextDocument> selection(document()->clone());
    const QTextCursor selected = currentCursor();
    if (selected.hasSelection()) {
        QTextCursor cut(selection.get());
        cut.setPosition(selected.selectionEnd());
        cut.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        cut.removeSelectedText();
        cut.setPosition(0);
        cut.setPosition(selected.selectionStart(), QTextCursor::KeepAnchor);
        cut.removeSelectedText();
    }

    QPainter painter(device);
    if (!painter.isActive())
        return;
    const QRect paint = device->pageLayout().paintRectPixels(device->logicalDpiX());
    const QRectF rectTwips(0, 0, paint.width() * 1440.0 / device->logicalDpiX(),
        paint.height() * 1440.0 / device->logicalDpiY());
    richtextbox::PageLayout pages(*selection, device, rectTwips.width());
    int from = 0;
    for (;;) {
        const int next = pages.formatRange(&painter, rectTwips, from, true);
        if (next >= pages.textLength() || next <= from)
            break;
        from = next;
        device->newPage();
    }
}

void RichTextBox::paintEvent(QPaintEvent *event)
{
    QTextEdit::paintEvent(event);
    // The bullets, at their paragraphs' indents, over what the text edit drew.
    QPainter painter(viewport());
    const QPointF offset(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
    painter.translate(offset);
    richtextbox::drawBullets(
        painter, *document(), QRectF(event->rect()).translated(-offset), palette().color(QPalette::Text));
}
