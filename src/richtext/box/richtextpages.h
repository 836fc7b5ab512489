#pragma once

#include <QRectF>

#include <memory>

class QPainter;
class QPaintDevice;
class QTextDocument;

namespace richtextbox {

// The text laid out for one output device at one line width, drawn a page at a time:
// each call renders the lines that fit in a rectangle from a character place on and
// tells the place where the next page begins. Lines are never cut at a page's foot.
class PageLayout final
{
public:
    // Takes a copy of the document, so the box can go on being edited meanwhile.
    PageLayout(const QTextDocument &source, QPaintDevice *device, double widthTwips);
    ~PageLayout();
    Q_DISABLE_COPY_MOVE(PageLayout)

    bool fits(QPaintDevice *device, double widthTwips) const;

    // rectTwips is in twips from the painter's origin (for a printer that is not set
    // to full page, the corner of the printable area). Draws only when
    // render is true. Returns the place of the first character not drawn, or the
    // length of the text when all of it is done.
    int formatRange(QPainter *painter, const QRectF &rectTwips, int from, bool render);

    int textLength() const;

private:
    std::unique_ptr<QTextDocument> m_document;
    QPaintDevice *m_device;
    double m_widthTwips;
    int m_dpiX;
    int m_dpiY;
};

} // namespace richtextbox
