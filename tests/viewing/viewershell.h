#pragma once

// A shell for the tests of the windows that live in it: the area for child windows, the
// window list of the "Παράθυρα" menu (entries 0 and 1, hidden, and the separator above
// them) and the marks of the "Προβολή" menu. A test makes it its session's Window::Shell.

#include <shellwindow.h>

#include <QAction>
#include <QHash>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenu>

namespace testing {

class ViewerShell : public QMainWindow, public ShellWindow
{
public:
    ViewerShell()
        : m_area(new QMdiArea)
        , m_menu(new QMenu(this))
    {
        setCentralWidget(m_area);
        resize(800, 600);
        m_separator = m_menu->addSeparator();
        m_separator->setVisible(false);
        for (int i = 0; i <= 1; ++i) {
            QAction *entry = m_menu->addAction(QStringLiteral("List"));
            entry->setCheckable(true);
            entry->setVisible(false);
            m_list.append(entry);
        }
    }
    QWidget *window() override { return this; }
    QMdiArea *mdiArea() override { return m_area; }
    int mnuListUBound() const override { return int(m_list.size()) - 1; }
    QAction *mnuList(int index) override { return m_list.value(index); }
    QAction *windowListSeparator() override { return m_separator; }
    void setSelectedActivity(qint32) override { }
    void LoadResources() override { }
    void UnloadResources() override { }
    void setToggleChecked(Toggle toggle, bool checked) override { m_toggles[int(toggle)] = checked; }
    // The last mark a window gave a toggle of the "Προβολή" menu.
    bool toggleChecked(Toggle toggle) const { return m_toggles.value(int(toggle)); }

    // A third entry, as if another window had taken a place in the list.
    void growList() { m_list.append(m_menu->addAction(QStringLiteral("List"))); }

protected:
    QMdiArea *m_area;
    QMenu *m_menu;
    QAction *m_separator = nullptr;
    QList<QAction *> m_list;
    QHash<int, bool> m_toggles;
};

} // namespace testing
