#include <frmfoto.h>

#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_frmFoto : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private slots:
    void initTestCase()
    {
        QImage image(120, 80, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QVERIFY(image.save(m_dir.filePath(u"term.png"_s)));
    }

    void theWindowTakesThePicturesSize()
    {
        frmFoto *foto = frmFoto::instance();
        foto->LoadPicture(m_dir.filePath(u"term.png"_s));
        QCOMPARE(foto->size(), QSize(120, 80));
        QCOMPARE(foto->Image1->size(), QSize(120, 80));
        delete foto;
    }

    void aClickOnThePictureCloses()
    {
        QPointer<frmFoto> foto(frmFoto::instance());
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
        QPointer<frmFoto> foto(frmFoto::instance());
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
