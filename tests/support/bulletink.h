#pragma once

// Where a rich-text box draws the bullet of a paragraph: the left edge of the first dark
// pixels in the band of the paragraph's first line, left of where its text begins.

#include <richtextbox.h>

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QTextBlock>
#include <QTextLayout>

#include <algorithm>

namespace testing {

// The leftmost dark column in `image` within rows [top, bottom) and columns [from, right),
// or -1 when there is none.
inline int inkLeft(const QImage &image, int top, int bottom, int right, int from = 0)
{
    for (int x = std::max(from, 0); x < std::min(right, image.width()); ++x)
        for (int y = std::max(top, 0); y < std::min(bottom, image.height()); ++y)
            if (qGray(image.pixel(x, y)) < 128)
                return x;
    return -1;
}

// In viewport pixels; the paragraph's first line must be in view.
inline int bulletInkLeft(RichTextBox &box, int place)
{
    const QImage shot = box.viewport()->grab().toImage();
    const QTextBlock block = box.document()->findBlock(place);
    const QPoint textStart = box.PosFromChar(block.position()) - box.viewport()->geometry().topLeft();
    const int height = int(block.layout()->lineAt(0).height());
    return inkLeft(shot, textStart.y(), textStart.y() + height, textStart.x() - 1);
}

} // namespace testing
