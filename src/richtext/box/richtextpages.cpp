#include "richtextpages.h"

#include "richtextbullets.h"

#include <QAbstractTextDocumentLayout>
#include <QPaintDevice>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>

namespace richtextbox {

namespace {

constexpr double TwipsPerInch = 1440.0;

double deviceX(const QPaintDevice *device, double twips)
{
    return twips * device->logicalDpiX() / TwipsPerInch;
}

double deviceY(const QPaintDevice *device, double twips)
{
    return twips * device->logicalDpiY() / TwipsPerInch;
}

} // namespace

PageLayout::PageLayout(const QTextDocument &source, QPaintDevice *device, double widthTwips)
    : m_document(source.clone())
    , m_device(device)
    , m_widthTwips(widthTwips)
    , m_dpiX(device->logicalDpiX())
    , m_dpiY(device->logicalDpiY())
{
    m_document->setUndoRedoEnabled(false);
    m_document->setDocumentMargin(0);
    m_document->setUseDesignMetrics(true);
    // Laying out for the device itself makes the lines break where the device's own
    // font metrics say, and scales the indents from screen pixels to device pixels.
    m_document->documentLayout()->setPaintDevice(device);
    m_document->setTextWidth(deviceX(device, widthTwips));
    m_document->documentLayout()->documentSize();
}

PageLayout::~PageLayout() = default;

bool PageLayout::fits(QPaintDevice *device, double widthTwips) const
{
    return device == m_device && widthTwips == m_widthTwips && device->logicalDpiX() == m_dpiX
        && device->logicalDpiY() == m_dpiY;
}

int PageLayout::textLength() const
{
    return std::max(0, m_document->characterCount() - 1);
}

int PageLayout::formatRange(QPainter *painter, const QRectF &rectTwips, int from, bool render)
{
    const int length = textLength();
    from = std::clamp(from, 0, length);
    QAbstractTextDocumentLayout *layout = m_document->documentLayout();
    const double pageHeight = deviceY(m_device, rectTwips.height());

    double top = -1;
    double bottom = 0;
    int next = length;
    bool pageFull = false;
    for (QTextBlock block = m_document->findBlock(from); block.isValid() && !pageFull; block = block.next()) {
        if (!block.isVisible())
            continue;
        const QRectF blockRect = layout->blockBoundingRect(block);
        const QTextLayout *lines = block.layout();
        for (int i = 0; i < lines->lineCount(); ++i) {
            const QTextLine line = lines->lineAt(i);
            const int lineStart = block.position() + line.textStart();
            const int lineEnd = lineStart + line.textLength();
            if (top < 0) {
                // The first line on the page is the one that holds the starting place.
                if (from >= lineEnd && i + 1 < lines->lineCount())
                    continue;
                top = blockRect.top() + line.y();
            }
            const double lineBottom = blockRect.top() + line.y() + line.height();
            if (lineBottom - top > pageHeight && bottom > top) {
                next = lineStart;
                pageFull = true;
                break;
            }
            bottom = lineBottom;
        }
    }
    if (top < 0)
        return length;
    if (!pageFull)
        next = length;

    if (render && painter) {
        painter->save();
        painter->translate(deviceX(m_device, rectTwips.left()), deviceY(m_device, rectTwips.top()) - top);
        // Only the vertical extent is clipped: bullets and pictures may stand to the
        // left of the text's edge.
        const QRectF clip(-1e6, top, 2e6, bottom - top);
        painter->setClipRect(clip, Qt::IntersectClip);
        QAbstractTextDocumentLayout::PaintContext context;
        // The layout draws every line that touches its clip, also one that only begins
        // on its edge; the page's own lines lie wholly inside, so the edges are moved in.
        context.clip = clip.adjusted(0, 0.5, 0, -0.5);
        context.palette.setColor(QPalette::Text, Qt::black);
        layout->draw(painter, context);
        drawBullets(*painter, *m_document, clip, Qt::black);
        painter->restore();
    }
    return next;
}

} // namespace richtextbox
