#include "viewingaccessibility.h"

#include "frmtextresource.h"
#include "frmtooltips.h"

#include <accessibility.h>
#include <chotword.h>
#include <colhotwords.h>
#include <errorpolicy.h>
#include <richtextbox.h>

#include <QAccessible>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace viewing {

namespace {

// One hot word inside the text: a link named by its words, whose press does what a
// click on the word does.
class HotWordLink final : public QAccessibleInterface,
                          public QAccessibleActionInterface,
                          public QAccessibleHyperlinkInterface
{
public:
    HotWordLink(RichTextBox *box, int index)
        : m_box(box)
        , m_index(index)
    {
    }

    bool isValid() const override { return m_box && word(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return m_box ? m_box->window()->windowHandle() : nullptr; }
    QAccessibleInterface *focusChild() const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *parent() const override
    {
        return m_box ? QAccessible::queryAccessibleInterface(m_box) : nullptr;
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }

    QString text(QAccessible::Text t) const override
    {
        const CHotWord *w = word();
        if (!w)
            return {};
        switch (t) {
        case QAccessible::Name:
            return words();
        case QAccessible::Description:
            return w->HotwordType() == CHotWord::CommentType ? QStringLiteral("Σχόλιο")
                                                             : QStringLiteral("Όρος του ευρετηρίου");
        default:
            return {};
        }
    }
    void setText(QAccessible::Text, const QString &) override { }

    QRect rect() const override
    {
        const CHotWord *w = word();
        if (!w || !m_box)
            return {};
        QTextCursor c(m_box->document());
        c.setPosition(w->First());
        QRect r = m_box->cursorRect(c);
        c.setPosition(w->Last());
        r = r.united(m_box->cursorRect(c));
        return QRect(m_box->viewport()->mapToGlobal(r.topLeft()), r.size());
    }

    QAccessible::Role role() const override { return QAccessible::Link; }

    QAccessible::State state() const override
    {
        QAccessible::State s;
        const CHotWord *w = word();
        if (!w || !m_box) {
            s.invalid = true;
            return s;
        }
        s.focusable = true;
        s.selectable = true;
        s.linked = true;
        s.traversed = false;
        const QTextCursor c = m_box->QTextEdit::textCursor();
        s.selected = c.selectionStart() == w->First() && c.selectionEnd() == w->Last();
        s.focused = s.selected && m_box->hasFocus();
        s.invisible = !m_box->isVisible();
        return s;
    }

    void *interface_cast(QAccessible::InterfaceType t) override
    {
        if (t == QAccessible::ActionInterface)
            return static_cast<QAccessibleActionInterface *>(this);
        if (t == QAccessible::HyperlinkInterface)
            return static_cast<QAccessibleHyperlinkInterface *>(this);
        return nullptr;
    }

    // QAccessibleActionInterface.
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString &actionName) override
    {
        frmTextResource *viewer = m_box ? qobject_cast<frmTextResource *>(m_box->parentWidget()) : nullptr;
        if (!viewer)
            return;
        if (actionName == pressAction())
            viewer->pressHotWord(m_index);
        else if (actionName == setFocusAction())
            viewer->selectHotWord(m_index);
    }
    QStringList keyBindingsForAction(const QString &actionName) const override
    {
        if (actionName == pressAction())
            return {QStringLiteral("Return")};
        return {};
    }

    // QAccessibleHyperlinkInterface.
    QString anchor() const override { return words(); }
    QString anchorTarget() const override
    {
        const CHotWord *w = word();
        return w && w->HotwordType() == CHotWord::IndexTermType ? w->phrase() : QString();
    }
    int startIndex() const override { return word() ? word()->First() : -1; }
    int endIndex() const override { return word() ? word()->Last() : -1; }

private:
    const CHotWord *word() const
    {
        frmTextResource *viewer = m_box ? qobject_cast<frmTextResource *>(m_box->parentWidget()) : nullptr;
        return viewer ? viewer->locatedHotWord(m_index) : nullptr;
    }

    QString words() const
    {
        const CHotWord *w = word();
        if (!w || !m_box)
            return {};
        // The words as the text shows them; the row's phrase when the two differ only in
        // how they are written.
        const QString shown = m_box->document()->toPlainText().mid(w->First(), w->Last() - w->First());
        return shown.trimmed().isEmpty() ? w->ExactPhrase() : shown.simplified();
    }

    QPointer<RichTextBox> m_box;
    int m_index;
};

// The popup tip: a tool tip whose name is what it says.
class TipAccessible final : public QAccessibleWidget
{
public:
    explicit TipAccessible(frmToolTips *tip)
        : QAccessibleWidget(tip, QAccessible::ToolTip)
    {
    }

    QString text(QAccessible::Text t) const override
    {
        auto *tip = static_cast<frmToolTips *>(widget());
        if (t == QAccessible::Name)
            return tip->TipText().isEmpty() ? QStringLiteral("Εικόνα") : tip->TipText();
        if (t == QAccessible::Description)
            return {};
        return QAccessibleWidget::text(t);
    }
};

QAccessibleInterface *factory(const QString &className, QObject *object)
{
    if (!object || !object->isWidgetType())
        return nullptr;
    if (className == QLatin1String("RichTextBox")
        && qobject_cast<frmTextResource *>(static_cast<QWidget *>(object)->parentWidget()))
        return new HotTextAccessible(static_cast<RichTextBox *>(object));
    if (className == QLatin1String("frmToolTips"))
        return new TipAccessible(static_cast<frmToolTips *>(object));
    return nullptr;
}

} // namespace

void installAccessibility()
{
    controls::installFactoryOnce(factory);
}

void renewAccessible(QWidget *widget)
{
    installAccessibility();
    QAccessibleInterface *cached = QAccessible::queryAccessibleInterface(widget);
    if (!cached || dynamic_cast<HotTextAccessible *>(cached) || dynamic_cast<TipAccessible *>(cached))
        return;
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(cached));
    QAccessible::queryAccessibleInterface(widget);
}

HotTextAccessible::HotTextAccessible(RichTextBox *box)
    : QAccessibleWidget(box, QAccessible::EditableText)
{
}

// The links stay in Qt's cache, which frees them at the end: this interface itself is
// deleted by that cache, also while it deletes every interface at the program's end, when
// deleting more of them from here would free them twice. A link of a closed text only
// reads as invalid.
HotTextAccessible::~HotTextAccessible() = default;

RichTextBox *HotTextAccessible::box() const
{
    return static_cast<RichTextBox *>(widget());
}

frmTextResource *HotTextAccessible::viewer() const
{
    return qobject_cast<frmTextResource *>(widget()->parentWidget());
}

void *HotTextAccessible::interface_cast(QAccessible::InterfaceType t)
{
    if (t == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface *>(this);
    return QAccessibleWidget::interface_cast(t);
}

QAccessible::State HotTextAccessible::state() const
{
    QAccessible::State s = QAccessibleWidget::state();
    s.readOnly = box()->isReadOnly();
    s.editable = !s.readOnly;
    s.multiLine = true;
    s.selectableText = true;
    return s;
}

QString HotTextAccessible::text(QAccessible::Text t) const
{
    switch (t) {
    case QAccessible::Name: {
        // The box is the source itself: its name is the window's caption.
        const QString own = widget()->accessibleName();
        if (!own.isEmpty())
            return own;
        return viewer() ? viewer()->windowTitle() : QString();
    }
    case QAccessible::Value:
        return box()->document()->toPlainText();
    default:
        return QAccessibleWidget::text(t);
    }
}

void HotTextAccessible::syncLinks() const
{
    frmTextResource *v = viewer();
    const void *now = v ? static_cast<const void *>(v->hotWords()) : nullptr;
    const int wanted = v ? v->locatedHotWordCount() : 0;
    if (now == m_linksFor && m_links.size() == wanted)
        return;
    for (QAccessible::Id id : std::as_const(m_links))
        QAccessible::deleteAccessibleInterface(id);
    m_links.clear();
    m_linksFor = now;
    for (int i = 0; i < wanted; ++i)
        m_links.append(QAccessible::registerAccessibleInterface(new HotWordLink(box(), i)));
}

int HotTextAccessible::childCount() const
{
    syncLinks();
    return int(m_links.size());
}

QAccessibleInterface *HotTextAccessible::child(int index) const
{
    syncLinks();
    if (index < 0 || index >= m_links.size())
        return nullptr;
    return QAccessible::accessibleInterface(m_links.at(index));
}

int HotTextAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    syncLinks();
    for (int i = 0; i < m_links.size(); ++i)
        if (QAccessible::accessibleInterface(m_links.at(i)) == child)
            return i;
    return -1;
}

QAccessibleInterface *HotTextAccessible::childAt(int x, int y) const
{
    for (int i = 0; i < childCount(); ++i) {
        QAccessibleInterface *link = child(i);
        if (link && link->rect().contains(x, y))
            return link;
    }
    return nullptr;
}

void HotTextAccessible::selection(int selectionIndex, int *startOffset, int *endOffset) const
{
    *startOffset = *endOffset = 0;
    const QTextCursor c = box()->QTextEdit::textCursor();
    if (selectionIndex == 0 && c.hasSelection()) {
        *startOffset = c.selectionStart();
        *endOffset = c.selectionEnd();
    }
}

int HotTextAccessible::selectionCount() const
{
    return box()->QTextEdit::textCursor().hasSelection() ? 1 : 0;
}

void HotTextAccessible::addSelection(int startOffset, int endOffset)
{
    setSelection(0, startOffset, endOffset);
}

void HotTextAccessible::removeSelection(int selectionIndex)
{
    if (selectionIndex != 0)
        return;
    QTextCursor c = box()->QTextEdit::textCursor();
    c.clearSelection();
    box()->setTextCursor(c);
}

void HotTextAccessible::setSelection(int selectionIndex, int startOffset, int endOffset)
{
    if (selectionIndex != 0)
        return;
    const int last = characterCount();
    QTextCursor c(box()->document());
    c.setPosition(qBound(0, startOffset, last));
    c.setPosition(qBound(0, endOffset, last), QTextCursor::KeepAnchor);
    box()->setTextCursor(c);
}

int HotTextAccessible::cursorPosition() const
{
    return box()->QTextEdit::textCursor().position();
}

void HotTextAccessible::setCursorPosition(int position)
{
    QTextCursor c(box()->document());
    c.setPosition(qBound(0, position, characterCount()));
    box()->setTextCursor(c);
}

QString HotTextAccessible::text(int startOffset, int endOffset) const
{
    const QString all = box()->document()->toPlainText();
    startOffset = qBound(0, startOffset, int(all.size()));
    endOffset = endOffset < 0 ? int(all.size()) : qBound(startOffset, endOffset, int(all.size()));
    return all.mid(startOffset, endOffset - startOffset);
}

int HotTextAccessible::characterCount() const
{
    return qMax(0, box()->document()->characterCount() - 1);
}

QRect HotTextAccessible::characterRect(int offset) const
{
    QTextCursor c(box()->document());
    c.setPosition(qBound(0, offset, characterCount()));
    QRect r = box()->cursorRect(c);
    const QString ch = text(offset, offset + 1);
    r.setWidth(ch.isEmpty() ? 1 : QFontMetrics(c.charFormat().font()).horizontalAdvance(ch));
    return QRect(box()->viewport()->mapToGlobal(r.topLeft()), r.size());
}

int HotTextAccessible::offsetAtPoint(const QPoint &point) const
{
    const QPoint local = box()->viewport()->mapFromGlobal(point);
    if (!box()->viewport()->rect().contains(local))
        return -1;
    return box()->cursorForPosition(local).position();
}

void HotTextAccessible::scrollToSubstring(int startIndex, int endIndex)
{
    setSelection(0, startIndex, endIndex);
    box()->ensureCursorVisible();
}

QString HotTextAccessible::attributes(int offset, int *startOffset, int *endOffset) const
{
    // The words' looks are the authors' colours; nothing a listener needs.
    *startOffset = 0;
    *endOffset = characterCount();
    Q_UNUSED(offset);
    return {};
}

} // namespace viewing
