// Every window stays readable, and looks as designed, whatever palette the desktop hands
// to Qt: each window is shown under a light desktop palette, then the desktop turns dark,
// and each text must keep a contrast of 4.5:1 against what it stands on, and the window
// must look as it did.

#include "childwindows.h"
#include "frmnewfirst.h"
#include "frmploigisi.h"
#include "mdiform1.h"

#include <database.h>
#include <designedcolours.h>
#include <frmborderwidth.h>
#include <frmcolors.h>
#include <frmdrawing.h>
#include <frmfillstyle.h>
#include <frmindex.h>
#include <frmnotes.h>
#include <frmresphoto.h>
#include <frmsearchresources.h>
#include <frmtextresource.h>
#include <frmtooltips.h>
#include <modglobal.h>
#include <msgbox.h>
#include <richtextbox.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QFileInfo>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTabBar>
#include <QTest>
#include <QTextBlock>
#include <QTreeWidget>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

const QString SamplePath = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");

QPalette desktopPalette(bool dark)
{
    // Roughly what a GTK theme hands to Qt: Adwaita and Adwaita-dark.
    QPalette p;
    const QColor window = dark ? QColor(53, 53, 53) : QColor(246, 245, 244);
    const QColor text = dark ? QColor(238, 238, 236) : QColor(46, 52, 54);
    const QColor base = dark ? QColor(45, 45, 45) : QColor(255, 255, 255);
    for (auto role : {QPalette::Window, QPalette::Button, QPalette::AlternateBase, QPalette::Midlight})
        p.setColor(role, window);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        p.setColor(role, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::ToolTipBase, dark ? QColor(30, 30, 30) : QColor(255, 255, 255));
    p.setColor(QPalette::Light, dark ? QColor(80, 80, 80) : Qt::white);
    p.setColor(QPalette::Dark, dark ? QColor(20, 20, 20) : QColor(160, 160, 160));
    p.setColor(QPalette::Highlight, QColor(53, 132, 228));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Disabled, QPalette::Text, dark ? QColor(145, 145, 145) : QColor(140, 140, 140));
    return p;
}

double luminance(QColor c)
{
    auto channel = [](double v) {
        v /= 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(c.red()) + 0.7152 * channel(c.green()) + 0.0722 * channel(c.blue());
}

double contrast(QColor a, QColor b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// What a control stands on: the colour painted most in its place on the window.
QColor groundOf(const QImage &shot, const QRect &where)
{
    QHash<QRgb, int> counts;
    const QRect r = where.intersected(shot.rect());
    for (int y = r.top(); y <= r.bottom(); ++y) {
        for (int x = r.left(); x <= r.right(); ++x)
            ++counts[shot.pixel(x, y) & 0xF0F0F0];
    }
    QRgb best = 0;
    int most = -1;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        if (it.value() > most) {
            most = it.value();
            best = it.key();
        }
    }
    // The middle of the bucket.
    return QColor(qRed(best) | 8, qGreen(best) | 8, qBlue(best) | 8);
}

struct Finding
{
    QString what;
    double ratio;
};

// The texts of a window (or of one child window of the shell) whose colours come from
// its palette, each with its foreground and the colour it stands on: a box's own
// background where it paints one, else what the window shows in the control's place.
QList<Finding> lowContrasts(QWidget *scope)
{
    QList<Finding> found;
    const QImage shot = scope->grab().toImage();
    auto check = [&](QWidget *w, QColor ink, const QString &what) {
        QColor ground;
        if (w->autoFillBackground())
            ground = w->palette().color(w->backgroundRole());
        else
            ground = groundOf(shot, QRect(w->mapTo(scope, QPoint(0, 0)), w->size()));
        const double ratio = contrast(ink, ground);
        if (ratio < 4.5)
            found.append({what, ratio});
    };
    const QList<QWidget *> all = scope->findChildren<QWidget *>();
    for (QWidget *w : all) {
        if (!w->isVisibleTo(scope) || w->window() != scope->window() || w->width() < 4 || w->height() < 4)
            continue;
        const QString name
            = u"%1 %2"_s.arg(QString::fromLatin1(w->metaObject()->className()), w->objectName());
        if (auto *label = qobject_cast<QLabel *>(w)) {
            if (!label->text().isEmpty())
                check(label, label->palette().color(label->foregroundRole()),
                    name + u" «"_s + label->text() + u"»"_s);
        } else if (auto *button = qobject_cast<QAbstractButton *>(w)) {
            if (!button->text().isEmpty() && button->isEnabled())
                check(button, button->palette().color(button->foregroundRole()), name);
        } else if (auto *edit = qobject_cast<QTextEdit *>(w)) {
            if (edit->document()->isEmpty())
                continue;
            // Runs without a colour of their own take the box's text colour.
            bool plainRun = false;
            for (QTextBlock block = edit->document()->begin(); block.isValid() && !plainRun;
                 block = block.next()) {
                for (auto it = block.begin(); !it.atEnd(); ++it) {
                    if (!it.fragment().charFormat().hasProperty(QTextFormat::ForegroundBrush)
                        && !it.fragment().text().trimmed().isEmpty()) {
                        plainRun = true;
                        break;
                    }
                }
            }
            if (plainRun)
                check(edit->viewport(), edit->palette().color(QPalette::Text), name);
        } else if (auto *view = qobject_cast<QAbstractItemView *>(w)) {
            if (view->model() && view->model()->rowCount() > 0)
                check(view->viewport(), view->palette().color(QPalette::Text), name);
        } else if (auto *line = qobject_cast<QLineEdit *>(w)) {
            if (!line->text().isEmpty())
                check(line, line->palette().color(QPalette::Text), name);
        } else if (auto *tabs = qobject_cast<QTabBar *>(w)) {
            if (tabs->count() > 0)
                check(tabs, tabs->palette().color(QPalette::WindowText), name);
        } else if (auto *menu = qobject_cast<QMenuBar *>(w)) {
            check(menu, menu->palette().color(QPalette::ButtonText), name);
        }
    }
    return found;
}

// The share of the window's pixels that differ between two shots.
double changedShare(const QImage &a, const QImage &b)
{
    if (a.size() != b.size())
        return 1.0;
    qint64 changed = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            changed += a.pixel(x, y) != b.pixel(x, y);
    }
    return double(changed) / double(std::max<qint64>(1, qint64(a.width()) * a.height()));
}

} // namespace

class tst_DarkDesktop : public QObject
{
    Q_OBJECT

    QPointer<MDIForm1> m_shell;
    QStringList m_boxes;

    // Shows the window under the light desktop, turns the desktop dark, and checks it:
    // the whole window, or the child window of the shell that holds it.
    void checkWindow(QWidget *window, const QString &name)
    {
        QApplication::setPalette(desktopPalette(false));
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window->window()));
        QApplication::processEvents();
        QWidget *top = window->window();
        if (auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget()))
            top = sub;
        const QImage light = top->grab().toImage();
        QApplication::setPalette(desktopPalette(true));
        QApplication::processEvents();
        const QImage dark = top->grab().toImage();
        dark.save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/dark_") + name + u".png"_s);

        const QList<Finding> found = lowContrasts(top);
        QStringList lines;
        for (const Finding &f : found)
            lines << u"%1: %2:1"_s.arg(f.what).arg(f.ratio, 0, 'f', 2);
        QVERIFY2(found.isEmpty(), qPrintable(name + u": "_s + lines.join(u"; "_s)));
        const double share = changedShare(light, dark);
        QVERIFY2(share < 0.002,
            qPrintable(u"%1: %2% of the window changed"_s.arg(name).arg(share * 100, 0, 'f', 2)));
    }

    // A window the shell shows inside itself, checked as the shell around it.
    void checkChild(QWidget *child, const QString &name)
    {
        modGlobal::CenterAndShow(child);
        QVERIFY(qobject_cast<QMdiSubWindow *>(child->parentWidget()));
        checkWindow(child, name);
    }

private slots:
    void initTestCase()
    {
        if (!QFileInfo::exists(SamplePath))
            QSKIP("the sample course is not built");
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        platform::setMsgBoxHook([this](const QString &text, int, const QString &) {
            m_boxes << text;
            return int(platform::vbOK);
        });
        modGlobal::gDatabase = content::Database::OpenDatabase(SamplePath);
        modGlobal::gDataFolder = QFileInfo(SamplePath).absolutePath();
        modGlobal::gDatabaseTitle = u"Δείγμα"_s;
        MDIForm1::registerDefaultInstance();
        MDIForm1::setStartScreenFactory([] { return static_cast<QWidget *>(nullptr); });
        registerChildWindows();
    }

    void init()
    {
        QApplication::setPalette(desktopPalette(false));
        m_shell = new MDIForm1;
        m_shell->setSelectedActivity(1001);
        m_shell->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_shell));
    }

    void cleanup()
    {
        if (frmToolTips *tip = frmToolTips::existing())
            tip->close();
        for (QWidget *w : QApplication::topLevelWidgets()) {
            if (w != m_shell && w->isVisible())
                w->close();
        }
        if (m_shell) {
            for (QMdiSubWindow *sub : m_shell->area->subWindowList())
                sub->close();
            delete m_shell;
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY2(m_boxes.isEmpty(), qPrintable(m_boxes.join(u"; "_s)));
    }

    void cleanupTestCase()
    {
        modGlobal::gDatabase.reset();
        platform::setMsgBoxHook({});
    }

    void theStartScreen()
    {
        auto *start = new frmNewFirst;
        checkWindow(start, u"start_screen"_s);
        start->close();
    }

    void theShellAndItsTiles()
    {
        checkWindow(m_shell, u"shell"_s);
        // Its menus drop down in the same colours.
        const QList<QMenu *> menus = m_shell->menuBar()->findChildren<QMenu *>();
        QVERIFY(!menus.isEmpty());
        for (QMenu *menu : menus) {
            // Qt's own overflow menu has no title of ours.
            if (menu->title().isEmpty())
                continue;
            const QPalette p = menu->palette();
            QVERIFY2(contrast(p.color(QPalette::WindowText), p.color(QPalette::Window)) >= 4.5,
                qPrintable(menu->title()));
            QCOMPARE(p.color(QPalette::Window), platform::designedPalette().color(QPalette::Window));
        }
    }

    void theTextViewer()
    {
        auto *viewer = new frmTextResource;
        viewer->setResourceID(101);
        viewer->Load();
        checkChild(viewer, u"text_viewer"_s);
    }

    void theTip()
    {
        frmToolTips *tip = frmToolTips::instance();
        tip->setTipText(u"Η σμύριδα της Νάξου, πέτρωμα σκληρό, γυάλιζε τα μάρμαρα."_s);
        tip->Show(m_shell);
        checkWindow(tip, u"tip"_s);
    }

    void thePhotoViewers()
    {
        for (int id : {121, 141}) {
            auto *viewer = new frmResPhoto;
            viewer->setResourceID(id);
            viewer->Load();
            checkChild(viewer, u"photo_viewer_%1"_s.arg(id));
        }
    }

    void theIndex()
    {
        frmIndex *index = frmIndex::instance(true);
        modGlobal::CenterAndShow(index);
        auto *list = index->findChild<QTreeWidget *>(u"LvEnnoia"_s);
        QVERIFY(list && list->topLevelItemCount() > 0);
        list->setCurrentItem(list->topLevelItem(0));
        index->DisplayHotword(
            list->topLevelItem(0)->text(0), u"Εξήγηση του όρου, σε απλό κείμενο."_s, QString());
        checkChild(index, u"index"_s);
    }

    void theSearch()
    {
        frmSearchResources *search = frmSearchResources::instance(true);
        checkChild(search, u"search"_s);
    }

    void theNotepad()
    {
        frmNotes *notes = frmNotes::instance(true);
        notes->notes->setText(u"Οι σημειώσεις του μαθητή."_s);
        checkChild(notes, u"notepad"_s);
        notes->NotesDirty = false;
    }

    void thePainter()
    {
        auto *drawing = new frmDrawing;
        drawing->Load();
        checkChild(drawing, u"painter"_s);
    }

    void thePalettes()
    {
        auto *colours = new frmColors(m_shell);
        colours->Show();
        checkWindow(colours, u"colours"_s);
        colours->Unload();
        auto *fill = new frmFillStyle(m_shell);
        fill->Show();
        checkWindow(fill, u"fill_style"_s);
        fill->Unload();
        auto *border = new frmBorderWidth(m_shell);
        border->Show();
        checkWindow(border, u"border_width"_s);
        border->Unload();
    }

    void theNavigationTree()
    {
        frmPloigisi *tree = frmPloigisi::defaultInstance(m_shell);
        checkWindow(tree, u"navigation_tree"_s);
    }
};

QTEST_MAIN(tst_DarkDesktop)
#include "tst_darkdesktop.moc"
