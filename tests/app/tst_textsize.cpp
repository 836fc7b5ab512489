// Larger text: the keys and the wheel enlarge the text of the viewer, the tip, the index's
// explanation and the notepad's view, from 100% to 300%, the hot words keep working, the
// note keeps its own sizes, and the size is kept for the user.

#include "../hotwords/paintedrtf.h"
#include "../hotwords/testcontent.h"
#include "../notepad/notestest.h"
#include "../support/testsession.h"

#include <findingwindows.h>
#include <frmindex.h>
#include <frmnotes.h>
#include <frmtextresource.h>
#include <frmtooltips.h>
#include <notepadwindows.h>
#include <richtextbox.h>
#include <session.h>
#include <textzoom.h>
#include <viewingwindows.h>

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

using namespace Qt::StringLiterals;
using paintedrtf::Black;
using paintedrtf::Blue;
using paintedrtf::Red;

namespace {

// "Η σμύριδα" is a comment hot word at places 2 to 8.
QByteArray emeryText()
{
    return paintedrtf::rtf({{u"Η "_s, Black}, {u"σμύριδα"_s, Blue},
        {u" της Νάξου έφτανε ως την Αίγυπτο, όπου γυάλιζαν μ' αυτήν τα αγάλματα.\nΚαι οι τεχνίτες της "_s,
            Black},
        {u"Νάξου"_s, Red}, {u" ήταν ξακουστοί."_s, Black}});
}

double documentHeight(RichTextBox *box)
{
    return box->document()->documentLayout()->documentSize().height();
}

void ctrlWheel(QWidget *target, int delta)
{
    const QPointF at(target->width() / 2.0, target->height() / 2.0);
    QWheelEvent wheel(at, target->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton,
        Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(target, &wheel);
}

} // namespace

class tst_TextSize : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QTemporaryDir m_config;
    testing::NotesShell *m_shell = nullptr;
    std::unique_ptr<testing::TestSession> m_s = std::make_unique<testing::TestSession>();
    Session &session() { return *m_s; }

    frmTextResource *openText()
    {
        auto *viewer = new frmTextResource(session());
        session().adopt(viewer);
        viewer->setResourceID(7);
        viewer->Load();
        CenterAndShow(session(), viewer);
        return viewer;
    }

    static void clickAt(frmTextResource *viewer, int place)
    {
        RichTextBox *box = viewer->rtbTextResource;
        const QPoint at = box->PosFromChar(place) + QPoint(2, 4);
        QTest::mouseClick(box->viewport(), Qt::LeftButton, {}, at);
    }

private slots:
    void initTestCase()
    {
        // The user's settings go to a folder of the test's own.
        qputenv("XDG_CONFIG_HOME", m_config.path().toUtf8());
        registerViewingWindows(session());
        finding::registerFindingWindows(session());
        registerNotepadWindows(session());
        const QString root = m_dir.path();
        QDir().mkpath(root + u"/piges"_s);
        QFile file(root + u"/piges/naxos.rtf"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(emeryText());
        file.close();
        testcontent::Builder b;
        b.textResource(7, u"naxos.rtf"_s, u"Ηρόδοτος, Ιστορίαι"_s);
        b.comment(1, u"Πέτρωμα της Νάξου"_s);
        b.commentLink(1, 7, u"σμύριδα"_s);
        session().content().database = b.database();
        session().content().dataFolder = root;
    }

    void cleanupTestCase() { m_s.reset(); }

    void init()
    {
        session().textZoom().reset();
        m_shell = new testing::NotesShell(session());
        m_shell->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_shell));
    }

    void cleanup()
    {
        if (frmToolTips *tip = session().window<frmToolTips>(Session::Window::Tip, false))
            tip->close();
        if (frmNotes *notes = frmNotes::open(session(), false))
            notes->NotesDirty = false;
        delete m_shell;
        m_shell = nullptr;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        session().textZoom().reset();
    }

    void theKeysGoFrom100To300AndBack()
    {
        frmTextResource *viewer = openText();
        RichTextBox *box = viewer->rtbTextResource;
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(session().textZoom().percent(), 125);
        QTest::keyClick(box, Qt::Key_Equal, Qt::ControlModifier);
        QCOMPARE(session().textZoom().percent(), 150);
        for (int i = 0; i < 10; ++i)
            QTest::keyClick(box, Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(session().textZoom().percent(), 300);
        QTest::keyClick(box, Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(session().textZoom().percent(), 275);
        QTest::keyClick(box, Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(session().textZoom().percent(), 100);
        QTest::keyClick(box, Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(session().textZoom().percent(), 100);
    }

    void theCtrlWheelEnlargesAndReduces()
    {
        frmTextResource *viewer = openText();
        ctrlWheel(viewer->rtbTextResource->viewport(), 120);
        QCOMPARE(session().textZoom().percent(), 125);
        ctrlWheel(viewer->rtbTextResource->viewport(), -120);
        QCOMPARE(session().textZoom().percent(), 100);
    }

    void theViewersLettersGrowAndTheLinesWrapAnew()
    {
        frmTextResource *viewer = openText();
        RichTextBox *box = viewer->rtbTextResource;
        const double normal = documentHeight(box);
        const int width = box->viewport()->width();
        session().textZoom().setPercent(300);
        QVERIFY2(documentHeight(box) > 2.5 * normal,
            qPrintable(u"%1 against %2"_s.arg(documentHeight(box)).arg(normal)));
        // Wrapped within the box: no line runs out to the side.
        QVERIFY(box->document()->documentLayout()->documentSize().width() <= width + 1);
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        viewer->grab().save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/text_viewer_300.png"));
        session().textZoom().reset();
        QCOMPARE(documentHeight(box), normal);
    }

    void aHotWordClickedAt300StillOpensItsTip()
    {
        session().textZoom().setPercent(300);
        frmTextResource *viewer = openText();
        clickAt(viewer, 4);
        frmToolTips *tip = session().window<frmToolTips>(Session::Window::Tip, false);
        QVERIFY(tip);
        QCOMPARE(tip->TipText(), u"Πέτρωμα της Νάξου"_s);
        // The tip is written at the same size.
        QCOMPARE(tip->font().pointSizeF(), 30.0);
    }

    void theOpenTipGrowsWithTheKeys()
    {
        frmTextResource *viewer = openText();
        clickAt(viewer, 4);
        frmToolTips *tip = session().window<frmToolTips>(Session::Window::Tip, false);
        QVERIFY(tip);
        const QSize normal = tip->size();
        QTest::keyClick(tip, Qt::Key_Plus, Qt::ControlModifier);
        QTest::keyClick(tip, Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(session().textZoom().percent(), 150);
        QVERIFY(tip->isVisible());
        QVERIFY(tip->size().height() > normal.height());
    }

    void theIndexsExplanationGrows()
    {
        auto *index = session().window<frmIndex>(Session::Window::Index);
        CenterAndShow(session(), index);
        index->DisplayHotword(u"Νάξος"_s, u"Νησί των Κυκλάδων, το μεγαλύτερο από όλα."_s, u""_s);
        const double normal = documentHeight(index->rtfExp);
        QTest::keyClick(index->rtfExp, Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(session().textZoom().percent(), 125);
        QVERIFY(documentHeight(index->rtfExp) > normal);
        index->close();
    }

    void theNotepadsViewGrowsButTheNoteKeepsItsSizes()
    {
        frmNotes *notes = m_shell->openNotes();
        notes->notes->setText(u"Η σημείωση του μαθητή."_s);
        notes->notes->selectAll();
        notes->notes->setSelFontSize(12);
        notes->NotesDirty = false;
        const QString path = m_dir.filePath(u"before.rtf"_s);
        notes->notes->SaveFile(path);
        const double normal = documentHeight(notes->notes);
        QTest::keyClick(notes->notes, Qt::Key_Plus, Qt::ControlModifier);
        QTest::keyClick(notes->notes, Qt::Key_Plus, Qt::ControlModifier);
        QVERIFY(documentHeight(notes->notes) > normal);
        QVERIFY(!notes->NotesDirty);
        const QString zoomed = m_dir.filePath(u"zoomed.rtf"_s);
        notes->notes->SaveFile(zoomed);
        QFile a(path), b(zoomed);
        QVERIFY(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly));
        QCOMPARE(b.readAll(), a.readAll());
    }

    void theSizeIsKeptForTheUser()
    {
        session().textZoom().setPercent(200);
        QCOMPARE(TextZoom::settingsFile(), m_config.filePath(u"tremidia/reading.conf"_s));
        QVERIFY(QFile::exists(TextZoom::settingsFile()));
        QCOMPARE(TextZoom::savedPercent(), 200);
        // Nothing is written beside the machine's choice of content.
        QVERIFY(!QFile::exists(m_config.filePath(u"tremidia/tremidia.conf"_s)));
        // A size out of range in the file is brought back within it.
        {
            QSettings edited(TextZoom::settingsFile(), QSettings::IniFormat);
            edited.setValue(u"Reading/TextSize"_s, 900);
        }
        QCOMPARE(TextZoom::savedPercent(), 300);
    }
};

QTEST_MAIN(tst_TextSize)
#include "tst_textsize.moc"
