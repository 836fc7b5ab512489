// RichTextBox: the paragraph format of the selection.

#include "richtextbox.h"
#include "richtextboxunits.h"
#include "rtf.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>

#include <algorithm>

using namespace richtextbox;

namespace {

// A stop every half inch, as the control places new tab stops.
constexpr int DefaultTabTwips = 720;
// The text of a new bullet paragraph starts this far behind the bullet.
constexpr int DefaultBulletHangingTwips = 360;

struct BlockRange
{
    QTextBlock first;
    QTextBlock last;
};

BlockRange selectedBlocks(const QTextDocument &document, const QTextCursor &cursor)
{
    const int start = cursor.selectionStart();
    const int end = std::max(start, cursor.selectionEnd() - 1);
    return {document.findBlock(start), document.findBlock(end)};
}

bool isListParagraph(const QTextBlockFormat &format)
{
    return format.objectIndex() >= 0 && format.hasProperty(richtext::ListFirstLineIndentProperty);
}

// A list paragraph shows its first line at the left indent, the bullet standing in
// front of it, and keeps the first-line offset aside; other paragraphs carry it as
// Qt's text indent.
int firstLineTwips(const QTextBlockFormat &format)
{
    if (isListParagraph(format))
        return format.intProperty(richtext::ListFirstLineIndentProperty);
    return twipsFromPixels(format.textIndent());
}

int indentTwips(const QTextBlockFormat &format)
{
    return twipsFromPixels(format.leftMargin()) + firstLineTwips(format);
}

int hangingTwips(const QTextBlockFormat &format)
{
    return -firstLineTwips(format);
}

void setIndents(QTextBlockFormat &format, int indent, int hanging)
{
    format.setLeftMargin(pixelsFromTwips(indent + hanging));
    if (isListParagraph(format)) {
        format.setTextIndent(0);
        format.setProperty(richtext::ListFirstLineIndentProperty, -hanging);
    } else {
        format.setTextIndent(-pixelsFromTwips(hanging));
    }
}

} // namespace

template<typename Read>
auto RichTextBox::blockProperty(Read read) const -> std::optional<decltype(read(QTextBlock()))>
{
    const BlockRange range = selectedBlocks(*document(), currentCursor());
    const auto value = read(range.first);
    for (QTextBlock block = range.first; block.isValid() && block != range.last;) {
        block = block.next();
        if (block.isValid() && read(block) != value)
            return std::nullopt;
    }
    return value;
}

template<typename Edit> void RichTextBox::changeBlocks(Edit change)
{
    const BlockRange range = selectedBlocks(*document(), currentCursor());
    QTextCursor edit(document());
    edit.beginEditBlock();
    for (QTextBlock block = range.first; block.isValid();) {
        QTextBlockFormat format = block.blockFormat();
        change(format, block);
        edit.setPosition(block.position());
        edit.setBlockFormat(format);
        if (block == range.last)
            break;
        block = block.next();
    }
    edit.endEditBlock();
}

std::optional<int> RichTextBox::SelAlignment() const
{
    return blockProperty([](const QTextBlock &block) {
        const Qt::Alignment a = block.blockFormat().alignment() & Qt::AlignHorizontal_Mask;
        if (a & Qt::AlignHCenter)
            return int(AlignCenter);
        if (a & Qt::AlignRight)
            return int(AlignRight);
        return int(AlignLeft);
    });
}

void RichTextBox::setSelAlignment(int alignment)
{
    Qt::Alignment qt;
    switch (alignment) {
    case AlignLeft:
        qt = Qt::AlignLeft;
        break;
    case AlignRight:
        qt = Qt::AlignRight;
        break;
    case AlignCenter:
        qt = Qt::AlignHCenter;
        break;
    default:
        throwInvalidPropertyValue();
    }
    changeBlocks([qt](QTextBlockFormat &format, const QTextBlock &) { format.setAlignment(qt); });
}

std::optional<bool> RichTextBox::SelBullet() const
{
    return blockProperty([](const QTextBlock &block) { return block.textList() != nullptr; });
}

void RichTextBox::setSelBullet(bool on)
{
    const BlockRange range = selectedBlocks(*document(), currentCursor());
    QTextCursor edit(document());
    edit.beginEditBlock();
    QTextList *list = nullptr;
    for (QTextBlock block = range.first; block.isValid();) {
        edit.setPosition(block.position());
        if (on && !block.textList()) {
            const QTextBlockFormat before = block.blockFormat();
            const int indent = indentTwips(before);
            const int hanging = hangingTwips(before) > 0 ? hangingTwips(before) : DefaultBulletHangingTwips;
            if (!list) {
                QTextListFormat listFormat;
                listFormat.setStyle(QTextListFormat::ListDisc);
                listFormat.setIndent(0);
                list = edit.createList(listFormat);
            } else {
                list->add(block);
            }
            QTextBlockFormat format = edit.blockFormat();
            format.setProperty(richtext::ListFirstLineIndentProperty, 0);
            richtext::hideListMarker(format);
            setIndents(format, indent, hanging);
            edit.setBlockFormat(format);
        } else if (!on && block.textList()) {
            const QTextBlockFormat before = block.blockFormat();
            const int indent = indentTwips(before);
            const int hanging = hangingTwips(before);
            block.textList()->remove(block);
            QTextBlockFormat format = edit.blockFormat();
            format.setObjectIndex(-1);
            format.clearProperty(richtext::ListFirstLineIndentProperty);
            richtext::showListMarker(format);
            format.setIndent(0);
            setIndents(format, indent, hanging);
            edit.setBlockFormat(format);
        }
        if (block == range.last)
            break;
        block = block.next();
    }
    edit.endEditBlock();
}

std::optional<int> RichTextBox::SelIndent() const
{
    return blockProperty([](const QTextBlock &block) { return indentTwips(block.blockFormat()); });
}

void RichTextBox::setSelIndent(int twips)
{
    changeBlocks([twips](QTextBlockFormat &format, const QTextBlock &) {
        setIndents(format, twips, hangingTwips(format));
    });
}

std::optional<int> RichTextBox::SelRightIndent() const
{
    return blockProperty(
        [](const QTextBlock &block) { return twipsFromPixels(block.blockFormat().rightMargin()); });
}

void RichTextBox::setSelRightIndent(int twips)
{
    changeBlocks([twips](QTextBlockFormat &format, const QTextBlock &) {
        format.setRightMargin(pixelsFromTwips(twips));
    });
}

std::optional<int> RichTextBox::SelHangingIndent() const
{
    return blockProperty([](const QTextBlock &block) { return hangingTwips(block.blockFormat()); });
}

void RichTextBox::setSelHangingIndent(int twips)
{
    changeBlocks([twips](QTextBlockFormat &format, const QTextBlock &) {
        setIndents(format, indentTwips(format), twips);
    });
}

std::optional<int> RichTextBox::SelTabCount() const
{
    return blockProperty(
        [](const QTextBlock &block) { return int(block.blockFormat().tabPositions().size()); });
}

void RichTextBox::setSelTabCount(int count)
{
    requireNotNegative(count);
    changeBlocks([count](QTextBlockFormat &format, const QTextBlock &) {
        QList<QTextOption::Tab> tabs = format.tabPositions();
        if (tabs.size() > count)
            tabs.resize(count);
        while (tabs.size() < count) {
            const double last = tabs.isEmpty() ? 0.0 : tabs.last().position;
            tabs.append(QTextOption::Tab(last + pixelsFromTwips(DefaultTabTwips), QTextOption::LeftTab));
        }
        format.setTabPositions(tabs);
    });
}

std::optional<int> RichTextBox::SelTabs(int index) const
{
    const auto value = blockProperty([index](const QTextBlock &block) {
        const QList<QTextOption::Tab> tabs = block.blockFormat().tabPositions();
        return index >= 0 && index < tabs.size() ? twipsFromPixels(tabs.at(index).position) : -1;
    });
    if (!value || *value < 0)
        return std::nullopt;
    return value;
}

void RichTextBox::setSelTabs(int index, int twips)
{
    requireNotNegative(index);
    requireNotNegative(twips);
    changeBlocks([index, twips](QTextBlockFormat &format, const QTextBlock &) {
        QList<QTextOption::Tab> tabs = format.tabPositions();
        if (index >= tabs.size())
            return;
        tabs[index].position = pixelsFromTwips(twips);
        std::sort(tabs.begin(), tabs.end(),
            [](const QTextOption::Tab &a, const QTextOption::Tab &b) { return a.position < b.position; });
        format.setTabPositions(tabs);
    });
}
