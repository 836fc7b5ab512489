#pragma once

#include <QColor>
#include <QRectF>

class QPainter;
class QTextDocument;

namespace richtextbox {

// The bullet of a bulleted paragraph stands at the paragraph's indent, its text at the
// hanging indent from there, as the rich-edit control draws it; Qt's own marker would
// stand just before the text. Such paragraphs carry Qt's block-level list style
// "undefined" (see richtext::hideListMarker), so that Qt draws no marker, and the box
// draws the bullet here: on screen after the text, and on each printed page.
//
// Draws the bullets of the blocks that touch `clip` (document coordinates; the painter
// is set to them). `textColor` is the colour of text without a colour of its own.
void drawBullets(
    QPainter &painter, const QTextDocument &document, const QRectF &clip, const QColor &textColor);

} // namespace richtextbox
