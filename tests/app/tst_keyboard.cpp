#include "../support/msgboxrecorder.h"
#include "samplecourse.h"

#include <btn.h>
#include <frmnewfirst.h>
#include <frmsmallbutton.h>
#include <tlb.h>

#include <QAccessible>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

class tst_Keyboard : public QObject
{
    Q_OBJECT

    testing::MsgBoxRecorder m_boxes;

private slots:
    void initTestCase() { QVERIFY(testing::openSampleCourse()); }

    void probe()
    {
        auto *shell = static_cast<MDIForm1 *>(ShellWindow::instance());
        shell->setSelectedActivity(1001);
        shell->show();
        shell->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(shell));
        for (int i = 0; i < 20; ++i) {
            QWidget *f = QApplication::focusWidget();
            qDebug() << i << f << (f ? f->accessibleName() : QString()) << shell->area->activeSubWindow();
            QTest::keyClick(f ? f : shell, Qt::Key_Tab);
        }
        auto *tile = shell->Tiles().first().data();
        tile->setFocus(Qt::TabFocusReason);
        QTest::keyClick(tile, Qt::Key_Return);
        QWidget *f = QApplication::focusWidget();
        QAccessibleInterface *ai = QAccessible::queryAccessibleInterface(f);
        qDebug() << "iface" << ai->role() << ai->childCount() << ai->text(QAccessible::Name)
                 << typeid(*ai).name();
        qDebug() << "after" << f << (f ? f->focusPolicy() : Qt::NoFocus) << (f ? f->parentWidget() : nullptr);
    }
};

QTEST_MAIN(tst_Keyboard)
#include "tst_keyboard.moc"
