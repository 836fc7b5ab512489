#pragma once

// What the painter's tests share: a shell that keeps the drawing window's check mark,
// boxes and file dialogs answered for the user, and gestures on the canvas.

#include <drawingdialog.h>
#include <drawingtoolbar.h>
#include <frmdrawing.h>
#include <msgbox.h>
#include <picphoto.h>
#include <shellwindow.h>
#include <twips.h>

#include <frmdrawingtext.h>

#include <QAction>
#include <QApplication>
#include <QList>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenu>
#include <QTest>
#include <QTimer>

namespace testing {

class DrawingShell final : public QMainWindow, public ShellWindow
{
public:
    DrawingShell()
        : m_area(new QMdiArea)
        , mnuDraw(new QAction(QStringLiteral("Χώρος σχεδίασης"), this))
    {
        setCentralWidget(m_area);
        resize(800, 600);
        mnuDraw->setCheckable(true);
        ShellWindow::setCurrent(this);
    }
    ~DrawingShell() override { ShellWindow::clearCurrent(this); }
    QWidget *window() override { return this; }
    QMdiArea *mdiArea() override { return m_area; }
    int mnuListUBound() const override { return -1; }
    QAction *mnuList(int) override { return nullptr; }
    QAction *windowListSeparator() override { return nullptr; }
    void setSelectedActivity(qint32) override { }
    void LoadResources() override { }
    void UnloadResources() override { }
    void setToggleChecked(Toggle toggle, bool checked) override
    {
        if (toggle == Toggle::Draw)
            mnuDraw->setChecked(checked);
    }

    QMdiArea *m_area;
    QAction *mnuDraw;
};

struct Box
{
    QString text;
    int style = 0;
    QString title;
};

// Records each box and answers from a list (OK when the list is empty).
class AnsweringBoxes : public QList<Box>
{
public:
    QList<int> answers;

    void install()
    {
        clear();
        platform::setMsgBoxHook([this](const QString &text, int style, const QString &title) {
            append({text, style, title});
            return answers.isEmpty() ? int(platform::vbOK) : answers.takeFirst();
        });
    }
    ~AnsweringBoxes() { platform::setMsgBoxHook({}); }
};

// Answers the file and print dialogs: a name to choose, or a cancel.
class AnsweringDialogs
{
public:
    struct Shown
    {
        drawing::CommonDialog::Action action;
        QString title;
        int flags;
        QString filter;
        QString defaultExt;
    };
    QList<Shown> shown;
    QList<QString> names; // an empty name cancels
    std::function<void(drawing::CommonDialog &)> onPrint;

    AnsweringDialogs()
    {
        drawing::CommonDialog::setHook(
            [this](drawing::CommonDialog &d, drawing::CommonDialog::Action action) {
                shown.append({action, d.DialogTitle, d.Flags, d.Filter, d.DefaultExt});
                if (action == drawing::CommonDialog::Action::Print) {
                    if (!onPrint)
                        return false;
                    onPrint(d);
                    return true;
                }
                const QString name = names.isEmpty() ? QString() : names.takeFirst();
                if (name.isEmpty())
                    return false;
                d.FileName = name;
                return true;
            });
    }
    ~AnsweringDialogs() { drawing::CommonDialog::setHook({}); }
};

inline double tw(int pixels)
{
    return platform::twipsFromPixelsX(pixels);
}

// A gesture with the window's own handlers, positions in pixels of the canvas.
inline void stroke(frmDrawing &w, QList<QPoint> points, int button = 1)
{
    const QPoint first = points.takeFirst();
    w.picPhoto_MouseDown(button, 0, tw(first.x()), tw(first.y()));
    QPoint last = first;
    for (const QPoint &p : points) {
        w.picPhoto_MouseMove(button, 0, tw(p.x()), tw(p.y()));
        last = p;
    }
    w.picPhoto_MouseUp(button, 0, tw(last.x()), tw(last.y()));
}

inline void chooseTool(frmDrawing &w, const QString &key)
{
    w.tlbTools->setValue(key, 1);
    w.tlbTools_ButtonClick(key);
}

// Answers the next modal text dialog: `act` fills it in and presses a button.
inline void answerTextDialog(std::function<void(frmDrawingText &)> act)
{
    QTimer::singleShot(0, [act = std::move(act)] {
        auto *dialog = qobject_cast<frmDrawingText *>(QApplication::activeModalWidget());
        if (!dialog) {
            const auto all = QApplication::topLevelWidgets();
            for (QWidget *w : all)
                if (auto *d = qobject_cast<frmDrawingText *>(w); d && d->isVisible())
                    dialog = d;
        }
        QVERIFY(dialog);
        act(*dialog);
    });
}

inline QImage solidPicture(QSize size, QColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace testing
