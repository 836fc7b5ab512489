#include "../support/testsession.h"

#include <frmfoto.h>
#include <viewingwindows.h>

#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class tst_frmFoto : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<testing::TestSession> m_s;

    // The session's window, made afresh once the last one closed.
    frmFoto *window() { return m_s->session->window<frmFoto>(Session::Window::Photo); }

private slots:
    void init()
    {
        m_s = std::make_unique<testing::TestSession>();
        registerViewingWindows(*m_s);
    }

    void cleanup() { m_s.reset(); }

    void initTestCase()
    {
        QImage image(120, 80, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QVERIFY(image.save(m_dir.filePath(u"term.png"_s)));
    }

    void theWindowTakesThePicturesSize()
    {
        frmFoto *foto = window();
        foto->LoadPicture(m_dir.filePath(u"term.png"_s));
        QCOMPARE(foto->size(), QSize(120, 80));
        QCOMPARE(foto->Image1->size(), QSize(120, 80));
        delete foto;
    }

    void aClickOnThePictureCloses()
    {
        QPointer<frmFoto> foto(window());
        foto->LoadPicture(m_dir.filePath(u"term.png"_s));
        foto->show();
        QVERIFY(QTest::qWaitForWindowExposed(foto));
        QTest::mouseClick(foto->Image1, Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(foto.isNull());
    }

    void losingTheActivationCloses()
    {
        QWidget other;
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        QPointer<frmFoto> foto(window());
        foto->LoadPicture(m_dir.filePath(u"term.png"_s));
        foto->show();
        foto->activateWindow();
        QTRY_VERIFY(foto && foto->isActiveWindow());
        other.activateWindow();
        QTRY_VERIFY(foto.isNull());
    }
};

QTEST_MAIN(tst_frmFoto)
#include "tst_frmfoto.moc"
