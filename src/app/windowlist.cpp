#include "windowlist.h"

#include <errorpolicy.h>
#include <frmsmallbutton.h>
#include <tlb.h>

#include <QAction>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QShortcut>

namespace {

QString titleOf(const QMdiSubWindow *sub)
{
    QString title = sub->windowTitle();
    if (title.isEmpty() && sub->widget())
        title = sub->widget()->windowTitle();
    // A title without a name is still a window the pupil can go to.
    return title.isEmpty() ? QStringLiteral("Παράθυρο") : title;
}

} // namespace

WindowList::WindowList(QWidget *shell, QMdiArea *area, QMenu *menu, QAction *separator)
    : QObject(shell)
    , m_area(area)
    , m_menu(menu)
    , m_separator(separator)
{
    connect(menu, &QMenu::aboutToShow, this, [this] { platform::resumeNext([this] { refresh(); }); });
    const auto forward = [this] { platform::guarded([this] { step(true); }); };
    const auto backward = [this] { platform::guarded([this] { step(false); }); };
    for (const QKeySequence &keys : {QKeySequence(Qt::CTRL | Qt::Key_Tab)})
        connect(new QShortcut(keys, shell), &QShortcut::activated, this, forward);
    for (const QKeySequence &keys : {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab),
             QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab)})
        connect(new QShortcut(keys, shell), &QShortcut::activated, this, backward);
}

WindowList::~WindowList() = default;

QList<QMdiSubWindow *> WindowList::windows() const
{
    QList<QMdiSubWindow *> list;
    for (QMdiSubWindow *sub : m_area->subWindowList(QMdiArea::CreationOrder)) {
        if (sub->isHidden() || qobject_cast<frmSmallButton *>(sub->widget()))
            continue;
        list.append(sub);
    }
    return list;
}

void WindowList::step(bool forward)
{
    const QList<QMdiSubWindow *> list = windows();
    if (list.isEmpty())
        return;
    const qsizetype at = list.indexOf(m_area->activeSubWindow());
    qsizetype next = 0;
    if (at < 0)
        next = forward ? 0 : list.size() - 1;
    else
        next = (at + (forward ? 1 : list.size() - 1)) % list.size();
    QMdiSubWindow *sub = list.at(next);
    if (sub->isMinimized())
        sub->showNormal();
    m_area->setActiveSubWindow(sub);
    sub->raise();
    if (QWidget *content = sub->widget())
        content->setFocus(Qt::ShortcutFocusReason);
}

void WindowList::refresh()
{
    if (!m_menu)
        return;
    for (QAction *entry : std::as_const(m_entries)) {
        m_menu->removeAction(entry);
        entry->deleteLater();
    }
    m_entries.clear();
    const QList<QMdiSubWindow *> list = windows();
    for (QMdiSubWindow *sub : list) {
        auto *entry = new QAction(titleOf(sub), m_menu);
        entry->setCheckable(true);
        entry->setChecked(sub == m_area->activeSubWindow());
        connect(entry, &QAction::triggered, this, [this, sub = QPointer<QMdiSubWindow>(sub)] {
            platform::guarded([&] {
                if (!sub)
                    return;
                if (sub->isMinimized())
                    sub->showNormal();
                m_area->setActiveSubWindow(sub);
                if (QWidget *content = sub->widget())
                    content->setFocus(Qt::ShortcutFocusReason);
            });
        });
        m_menu->addAction(entry);
        m_entries.append(entry);
    }
    if (m_separator)
        m_separator->setVisible(!list.isEmpty());
}

void WindowList::chainTiles(Tlb *toolbar, const QList<QPointer<frmSmallButton>> &tiles)
{
    frmSmallButton *first = nullptr;
    for (const QPointer<frmSmallButton> &tile : tiles) {
        if (tile) {
            first = tile;
            break;
        }
    }
    if (!first)
        return;
    QWidget::setTabOrder(toolbar->Btn1.back(), first);
    // A tile that took the focus as the shell opened gives it to the first one, so the
    // keys start at the beginning of the board.
    if (QWidget *focus = QApplication::focusWidget(); qobject_cast<frmSmallButton *>(focus) && focus != first)
        first->setFocus(Qt::OtherFocusReason);
}
