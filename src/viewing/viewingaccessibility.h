#pragma once

#include <QAccessibleWidget>
#include <QPointer>

class RichTextBox;
class frmTextResource;

// What screen readers hear of the viewers: the text of a source as readable text with
// its hot words as links inside it, and the popup tip as a tool tip that says its text.
namespace viewing {

// Installs the interface factory once; the text viewer and the tip call it when made.
void installAccessibility();
// Drops an interface Qt made for the widget while it was still being built (as its base
// class), so that the next reading asks the factory again.
void renewAccessible(QWidget *widget);

// A text viewer's box: Qt's text reading, kept in our hands so that the hot words can
// stand in it as links. Offsets are the document's character positions.
class HotTextAccessible final : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit HotTextAccessible(RichTextBox *box);
    ~HotTextAccessible() override;
    Q_DISABLE_COPY_MOVE(HotTextAccessible)

    void *interface_cast(QAccessible::InterfaceType t) override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text t) const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;

    // QAccessibleTextInterface.
    void selection(int selectionIndex, int *startOffset, int *endOffset) const override;
    int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int startOffset, int endOffset) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    QString attributes(int offset, int *startOffset, int *endOffset) const override;

    RichTextBox *box() const;
    frmTextResource *viewer() const;

private:
    // The links follow the viewer's hot words, made again when the text is loaded again.
    void syncLinks() const;

    mutable QList<QAccessible::Id> m_links;
    mutable const void *m_linksFor = nullptr;
};

} // namespace viewing
