// CenterAndShow places a window in the middle of the main shell's client area, in twips,
// without rounding until the move, and keeps negative positions as they come.

#include "../support/testsession.h"

#include <session.h>
#include <shellwindow.h>
#include <twips.h>

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

namespace {

class ShellWithArea final : public QMainWindow, public ShellWindow
{
public:
    ShellWithArea()
    {
        m_area = new QMdiArea;
        setCentralWidget(m_area);
        resize(400, 300);
    }
    QWidget *window() override { return this; }
    QMdiArea *mdiArea() override { return m_area; }
    int mnuListUBound() const override { return -1; }
    QAction *mnuList(int) override { return nullptr; }
    QAction *windowListSeparator() override { return nullptr; }
    void setSelectedActivity(qint32) override { }
    void LoadResources() override { }
    void UnloadResources() override { }
    void setToggleChecked(Toggle, bool) override { }

    QMdiArea *m_area;
};

} // namespace

class tst_MainCenterAndShow : public QObject
{
    Q_OBJECT

    std::unique_ptr<testing::TestSession> m_s;
    ShellWithArea *m_shell = nullptr;

    static int expectedOffset(int areaPixels, int formPixels)
    {
        const double left
            = (platform::twipsFromPixelsX(areaPixels) - platform::twipsFromPixelsX(formPixels)) / 2.0;
        return platform::pixelsFromTwipsX(left);
    }

private slots:
    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        m_shell = new ShellWithArea;
        Session &session = *m_s;
        session.setWindowFactory(Session::Window::Shell, [this](Session &) -> QWidget * { return m_shell; });
        m_shell->window()->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_shell->window()));
    }

    void cleanup()
    {
        delete m_shell;
        m_shell = nullptr;
        m_s.reset();
    }

    void smallFormIsCentredInTheClientArea()
    {
        auto *form = new QWidget;
        form->setFixedSize(120, 80);
        CenterAndShow(*m_s, form);
        auto *sub = qobject_cast<QMdiSubWindow *>(form->parentWidget());
        QVERIFY(sub);
        QVERIFY(form->isVisible());
        const QWidget *viewport = m_shell->mdiArea()->viewport();
        QCOMPARE(sub->x(), expectedOffset(viewport->width(), sub->width()));
        QCOMPARE(sub->y(), expectedOffset(viewport->height(), sub->height()));
        QVERIFY(sub->x() > 0);
        QVERIFY(sub->y() > 0);
    }

    void formLargerThanTheShellGetsNegativeLeftAndTop()
    {
        auto *form = new QWidget;
        form->setFixedSize(900, 700);
        CenterAndShow(*m_s, form);
        auto *sub = qobject_cast<QMdiSubWindow *>(form->parentWidget());
        QVERIFY(sub);
        const QWidget *viewport = m_shell->mdiArea()->viewport();
        QVERIFY(sub->x() < 0);
        QVERIFY(sub->y() < 0);
        QCOMPARE(sub->x(), expectedOffset(viewport->width(), sub->width()));
        QCOMPARE(sub->y(), expectedOffset(viewport->height(), sub->height()));
    }
};

QTEST_MAIN(tst_MainCenterAndShow)
#include "tst_main_centerandshow.moc"
