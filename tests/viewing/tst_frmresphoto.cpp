#include "../hotwords/paintedrtf.h"
#include "../hotwords/testcontent.h"
#include "../support/testsession.h"
#include "viewershell.h"

#include <errorpolicy.h>
#include <frmmaxphoto.h>
#include <frmresphoto.h>
#include <msgbox.h>
#include <photolayout.h>
#include <richtextbox.h>
#include <runtimeerror.h>
#include <sourceviewer.h>
#include <viewingwindows.h>

#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QFrame>
#include <QLabel>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

void writePicture(const QString &path, QSize size, QColor color)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QVERIFY(image.save(path));
}

QString twelveLines()
{
    QStringList lines;
    for (int i = 1; i <= 12; ++i)
        lines << u"Γραμμή %1 της λεζάντας"_s.arg(i);
    return lines.join(u'\n');
}

} // namespace

class tst_frmResPhoto : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<testing::TestSession> m_s;
    testing::ViewerShell *m_shell = nullptr;

    // The boxes shown, as text|style|title.
    QStringList messages() const
    {
        QStringList texts;
        for (const testing::ShownBox &box : std::as_const(m_s->host->boxes))
            texts << u"%1|%2|%3"_s.arg(box.text).arg(box.style).arg(box.title);
        return texts;
    }

    frmResPhoto *open(qint32 id)
    {
        auto *viewer = new frmResPhoto(*m_s);
        viewer->setResourceID(id);
        viewer->Load();
        CenterAndShow(*m_s, viewer);
        return viewer;
    }

private slots:
    void initTestCase()
    {
        const QString root = m_dir.path();
        writePicture(root + u"/Pictures/narrow.png"_s, QSize(399, 120), QColor(120, 80, 40));
        writePicture(root + u"/Pictures/wide.png"_s, QSize(520, 200), QColor(40, 80, 120));
        QDir().mkpath(root + u"/piges"_s);
        QFile legend(root + u"/piges/perigrafi.rtf"_s);
        QVERIFY(legend.open(QIODevice::WriteOnly));
        legend.write(paintedrtf::rtf({{u"Περιγραφή από αρχείο."_s, paintedrtf::Black}}));
        legend.close();

        testcontent::Builder b;
        const QStringList columns {
            u"ResourceID"_s, u"ResTypeID"_s, u"PicturePath"_s, u"Caption"_s, u"Lezanda"_s, u"TextPath"_s};
        b.row(u"Resources"_s, columns,
            {1, 1, u"narrow.png"_s, u"Στενή εικόνα"_s, u"Μία λεζάντα."_s, QVariant()});
        b.row(u"Resources"_s, columns, {2, 1, u"wide.png"_s, QVariant(), twelveLines(), QVariant()});
        b.row(u"Resources"_s, columns, {3, 6, u"wide.png"_s, u"Περιγραφή"_s, QVariant(), u"perigrafi.rtf"_s});
        b.row(u"Resources"_s, columns, {4, 5, u"wide.png"_s, u"Χάρτης"_s, u"Όχι λεζάντα"_s, QVariant()});
        b.row(u"Resources"_s, columns, {5, 1, u""_s, u"Χωρίς εικόνα"_s, QVariant(), QVariant()});
        // One session for the whole run: the content is built once.
        m_s = std::make_unique<testing::TestSession>();
        m_s->session->content().database = b.database();
        m_s->session->content().dataFolder = root;
        registerViewingWindows(*m_s);
    }

    void cleanupTestCase() { m_s.reset(); }

    void init()
    {
        m_s->host->boxes.clear();
        m_shell = new testing::ViewerShell;
        m_s->session->setWindow(Session::Window::Shell, m_shell);
        m_shell->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_shell));
    }

    void cleanup()
    {
        delete m_shell;
        m_shell = nullptr;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_s->session->links() = {};
    }

    // --- The arithmetic ---------------------------------------------------------------

    void aNarrowPictureGetsAPanel400PixelsWide()
    {
        QCOMPARE(photolayout::contentWidth(399), 6000);
        QCOMPARE(photolayout::contentWidth(401), 6015);
        photolayout::Frames frames {60, 60, 0};
        const auto l = photolayout::layOut(399, 100, 300, 300, frames);
        QCOMPARE(l.panel.width(), 6240);
        QCOMPARE(l.caption, QRect(90, 120, 6000, 300));
        QCOMPARE(l.image, QRect((6180 - 5985) / 2, 540, 5985, 1500));
        QCOMPARE(l.legend, QRect(90, 2160, 6000, 300));
        QCOMPARE(l.panel.height(), 300 + 2160 + 60 + 120);
        QCOMPARE(l.windowWidth, 6240 + 120);
        QCOMPARE(l.windowHeight, l.panel.height() + 60);
    }

    void anEmptyCaptionLetsTheImageFollowAt240()
    {
        const auto l = photolayout::layOut(500, 100, 0, 0, photolayout::Frames {60, 60, 0});
        QCOMPARE(l.image.top(), 240);
    }

    void aLegendShowsAtMostEightLines()
    {
        QCOMPARE(photolayout::fittedHeight(3, 270), 810);
        QCOMPARE(photolayout::fittedHeight(12, 270), 8 * 270);
    }

    void theEnlargedViewOfTheExample()
    {
        const auto e = photolayout::enlarge(1000, 800, 100, 100);
        QCOMPARE(e.factor, 7.8f);
        QCOMPARE(e.rect, QRect(110, 10, 780, 780));
        const auto wide = photolayout::enlarge(1000, 800, 400, 100);
        QCOMPARE(wide.rect.width(), 975);
        QCOMPARE(wide.rect.left(), 12);
    }

    // --- The record -------------------------------------------------------------------

    void getRecordReadsTheRow()
    {
        frmResPhoto viewer(*m_s);
        viewer.setResourceID(1);
        QVERIFY(viewer.found());
        QCOMPARE(viewer.PhotoPath(), m_dir.path() + u"/Pictures/narrow.png"_s);
        QCOMPARE(viewer.PhotoCaption(), u"Στενή εικόνα"_s);
        QCOMPARE(viewer.PhotoLezanda(), u"Μία λεζάντα."_s);
        QCOMPARE(viewer.PhotoType(), u"1"_s);
        frmResPhoto described(*m_s);
        described.setResourceID(3);
        QCOMPARE(described.PhotoLezanda(), u"perigrafi.rtf"_s);
        QVERIFY(messages().isEmpty());
    }

    void anEmptyPicturePathIsNotFoundWithoutAWord()
    {
        frmResPhoto viewer(*m_s);
        viewer.setResourceID(5);
        QVERIFY(!viewer.found());
        QVERIFY(messages().isEmpty());
    }

    void aMissingResourceIsTold()
    {
        frmResPhoto viewer(*m_s);
        viewer.setResourceID(99);
        QVERIFY(!viewer.found());
        QCOMPARE(messages(), QStringList {u"Δεν μπορώ να βρώ την συγκεκριμένη Πηγή|0|Τρεμίδια"_s});
    }

    // One query for the one row, not the whole table searched for it.
    void theRowIsReadInOneQueryForIt()
    {
        QStringList statements;
        sqlite3 *db = m_s->session->database().handle();
        sqlite3_trace_v2(
            db, SQLITE_TRACE_STMT,
            [](unsigned, void *context, void *, void *text) {
                // The engine's own look at its catalogue is not a read of the content.
                const QString sql = QString::fromUtf8(static_cast<const char *>(text));
                if (sql.contains(u"Resources"_s))
                    static_cast<QStringList *>(context)->append(sql);
                return 0;
            },
            &statements);
        frmResPhoto viewer(*m_s);
        viewer.setResourceID(3);
        sqlite3_trace_v2(db, 0, nullptr, nullptr);
        QVERIFY(viewer.found());
        QVERIFY2(statements.size() == 1, qPrintable(statements.join(u" ; "_s)));
        QVERIFY2(
            statements.first().contains(u"WHERE"_s, Qt::CaseInsensitive), qPrintable(statements.first()));
        QCOMPARE(viewer.PhotoCaption(), u"Περιγραφή"_s);
        QCOMPARE(viewer.PhotoLezanda(), u"perigrafi.rtf"_s);
    }

    void withoutADatabaseThereIsNoWorkspace()
    {
        auto db = std::move(m_s->session->content().database);
        frmResPhoto viewer(*m_s);
        viewer.setResourceID(1);
        m_s->session->content().database = std::move(db);
        QVERIFY(!viewer.found());
        QCOMPARE(messages(), QStringList {u"Δεν μπορώ να δημιουργήσω το Workspace|0|Τρεμίδια"_s});
    }

    // --- The window -------------------------------------------------------------------

    void aPhotographTileOpensThisViewer()
    {
        std::unique_ptr<SourceViewer> viewer(SourceViewer::create(*m_s, SourceViewer::Kind::Photo));
        QVERIFY(qobject_cast<frmResPhoto *>(viewer.get()));
    }

    void a399PixelPictureIsCentredIn400()
    {
        frmResPhoto *viewer = open(1);
        QCOMPARE(viewer->windowTitle(), u"Στενή εικόνα"_s);
        QCOMPARE(viewer->picContainer->width(), 416);
        const int inside = viewer->picContainer->frameWidth();
        QCOMPARE(viewer->Image1->width(), 399);
        QCOMPARE(viewer->Image1->x() - inside, (412 - 399) / 2);
        QCOMPARE(viewer->rtfCaption->width(), 400);
        QVERIFY(viewer->rtfCaption->isVisible());
        QCOMPARE(viewer->rtfCaption->SelAlignment(), std::optional<int>(RichTextBox::AlignCenter));
        QCOMPARE(viewer->rtfLezanda->Text(), u"Μία λεζάντα."_s);
        QCOMPARE(viewer->palette().color(QPalette::Window), QColor(255, 224, 175));
        QCOMPARE(viewer->rtfLezanda->BackColor(), photolayout::PanelColor);
        QCOMPARE(viewer->size(), viewer->minimumWindowSize());
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        viewer->grab().save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/photo_viewer.png"));
    }

    void anEmptyCaptionIsHiddenAndALongLegendCutAtEightLines()
    {
        frmResPhoto *viewer = open(2);
        QVERIFY(!viewer->rtfCaption->isVisible());
        QCOMPARE(viewer->rtfCaption->height(), 0);
        QCOMPARE(viewer->layout().image.top(), 240);
        const int line = QFontMetrics(viewer->rtfLezanda->font()).height();
        QCOMPARE(viewer->rtfLezanda->height(), 8 * line);
    }

    void aDescribedPhotographReadsItsLegendFromTheFile()
    {
        frmResPhoto *viewer = open(3);
        QCOMPARE(viewer->rtfLezanda->Text().trimmed(), u"Περιγραφή από αρχείο."_s);
        QVERIFY(viewer->rtfLezanda->isVisible());
    }

    void anotherTypeHasNoLegend()
    {
        frmResPhoto *viewer = open(4);
        QVERIFY(!viewer->rtfLezanda->isVisible());
        QCOMPARE(viewer->rtfLezanda->height(), 0);
    }

    void theWindowGrowsButNeverShrinksBelowItsContent()
    {
        frmResPhoto *viewer = open(1);
        const QSize minimum = viewer->minimumWindowSize();
        viewer->resize(minimum + QSize(200, 100));
        QCOMPARE(viewer->picContainer->pos(),
            QPoint((viewer->width() - viewer->picContainer->width()) / 2,
                (viewer->height() - viewer->picContainer->height()) / 2));
        viewer->resize(100, 100);
        QVERIFY(viewer->width() >= minimum.width());
        QVERIFY(viewer->height() >= minimum.height());
    }

    void aPictureThatIsGoneGoesUpToTheOpener()
    {
        frmResPhoto viewer(*m_s);
        viewer.setResourceID(5);
        try {
            viewer.Load();
            QFAIL("no error");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), 53);
        }
    }

    void aDoubleClickOpensTheEnlargedView()
    {
        frmResPhoto *viewer = open(1);
        QTest::mouseDClick(viewer->Image1, Qt::LeftButton, {}, QPoint(10, 10));
        auto *view = m_s->session->window<frmMaxPhoto>(Session::Window::MaxPhoto, false);
        QVERIFY(view);
        QTRY_VERIFY(view->isVisible());
        const auto expected = photolayout::enlarge(view->width(), view->height(), 399, 120);
        QCOMPARE(view->drawn().rect, expected.rect);
        QVERIFY(!QApplication::overrideCursor());
        view->grab().save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/photo_enlarged.png"));
        QPointer<frmMaxPhoto> watch(view);
        QTest::mouseClick(view, Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(watch.isNull());
    }

    void aDragOffersThePictureForCopying()
    {
        frmResPhoto *viewer = open(1);
        std::unique_ptr<QMimeData> data(viewer->Image1_OLEStartDrag());
        QVERIFY(data->hasImage());
        QCOMPARE(qvariant_cast<QImage>(data->imageData()).size(), QSize(399, 120));
        QCOMPARE(frmResPhoto::AllowedEffects, Qt::DropActions(Qt::CopyAction));
    }

    void closingTellsTheTileAndUnghostsTheSearchItem()
    {
        QStringList tags;
        m_s->session->links().unghostSearchItem = [&](const QString &tag) { tags << tag; };
        frmResPhoto *viewer = open(2);
        viewer->LoadedFromTheFormSearchResources = true;
        QSignalSpy unloaded(viewer, &SourceViewer::OnUnload);
        viewer->Unload();
        QCOMPARE(unloaded.count(), 1);
        QCOMPARE(tags, QStringList {u"2"_s});
    }
};

QTEST_MAIN(tst_frmResPhoto)
#include "tst_frmresphoto.moc"
