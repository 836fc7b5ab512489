#include "../support/testsession.h"

#include <frmmaxphoto.h>
#include <photolayout.h>
#include <runtimeerror.h>
#include <viewingwindows.h>

#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class tst_frmMaxPhoto : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<testing::TestSession> m_s;

    // The session's window, made afresh once the last one closed.
    frmMaxPhoto *window() { return m_s->session->window<frmMaxPhoto>(Session::Window::MaxPhoto); }

    QString picture(QSize size)
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QString path = m_dir.filePath(u"p%1x%2.png"_s.arg(size.width()).arg(size.height()));
        image.save(path);
        return path;
    }

private slots:
    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        registerViewingWindows(*m_s);
    }

    void cleanup() { m_s.reset(); }

    void aSmallPictureIsEnlargedCentredWithAMargin()
    {
        frmMaxPhoto *view = window();
        view->setThePicture(picture(QSize(100, 100)));
        view->setBackColor(photolayout::PanelColor);
        view->resize(1000, 800);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view));
        QCOMPARE(view->drawn().factor, 7.8f);
        QCOMPARE(view->drawn().rect, QRect(110, 10, 780, 780));
        const QImage shown = view->grab().toImage();
        QCOMPARE(QColor(shown.pixel(500, 400)), QColor(Qt::red));
        QCOMPARE(QColor(shown.pixel(50, 400)), QColor(255, 224, 175));
        view->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void anyKeyCloses()
    {
        QPointer<frmMaxPhoto> view(window());
        view->setThePicture(picture(QSize(300, 200)));
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view));
        QTest::keyClick(view, Qt::Key_A);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(view.isNull());
    }

    void aMissingPictureFails()
    {
        frmMaxPhoto *view = window();
        try {
            view->setThePicture(m_dir.filePath(u"none.png"_s));
            QFAIL("no error");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), 53);
        }
        delete view;
    }
};

QTEST_MAIN(tst_frmMaxPhoto)
#include "tst_frmmaxphoto.moc"
