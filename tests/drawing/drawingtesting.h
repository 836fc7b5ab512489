#pragma once

// What the painter's tests share: a session for each test, a shell that keeps the drawing
// window's check mark, boxes and file dialogs answered for the user through the session's
// recording host, and gestures on the canvas.

#include "../support/testsession.h"

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
#include <QPrinter>
#include <QTest>
#include <QTimer>

#include <memory>

namespace testing {

// A shell for the drawing windows, the session's while it lives.
class DrawingShell final : public QMainWindow, public ShellWindow
{
public:
    explicit DrawingShell(Session &session)
        : m_area(new QMdiArea)
        , mnuDraw(new QAction(QStringLiteral("Χώρος σχεδίασης"), this))
    {
        setCentralWidget(m_area);
        resize(800, 600);
        mnuDraw->setCheckable(true);
        session.setWindow(Session::Window::Shell, this);
    }
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

// The session of one test: made in init(), ended in cleanup().
class DrawingFixture
{
public:
    void beginSession() { m_session = std::make_unique<TestSession>(); }
    void endSession() { m_session.reset(); }

    Session &session() { return *m_session; }
    RecordingHost &host() { return *m_session->host; }

private:
    std::unique_ptr<TestSession> m_session;
};

// Records each box the session's host shows and answers from a list (OK when the list
// is empty).
class AnsweringBoxes : public QList<ShownBox>
{
public:
    QList<int> answers;

    void install(RecordingHost &host)
    {
        clear();
        answers.clear();
        host.onBox = [this, &host](const ShownBox &box) {
            append(box);
            host.answers = {answers.isEmpty() ? int(platform::vbOK) : answers.takeFirst()};
        };
    }
};

// Answers the file and print dialogs: a name to choose, or a cancel.
class AnsweringDialogs
{
public:
    using Action = platform::DialogRequest::Kind;
    struct Shown
    {
        Action action;
        QString title;
        int flags;
        QString filter;
        QString defaultExt;
    };
    QList<Shown> shown;
    QList<QString> names; // an empty name cancels
    std::function<void(QPrinter &)> onPrint;

    void install(RecordingHost &host)
    {
        shown.clear();
        names.clear();
        onPrint = {};
        host.onDialog = [this](const platform::DialogRequest &request) {
            shown.append({request.kind, request.title, request.flags, request.filter,
                request.defaultSuffix.isEmpty() ? QString() : u'.' + request.defaultSuffix});
            platform::DialogAnswer answer;
            if (request.kind == Action::Print) {
                if (onPrint && request.printer) {
                    onPrint(*request.printer);
                    answer.accepted = true;
                }
                return answer;
            }
            answer.fileName = names.isEmpty() ? QString() : names.takeFirst();
            answer.accepted = !answer.fileName.isEmpty();
            return answer;
        };
    }
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
