#include "../hotwords/paintedrtf.h"
#include "../hotwords/testcontent.h"
#include "../support/testsession.h"
#include "viewershell.h"

#include <clstexts.h>
#include <colhotwords.h>
#include <contentpath.h>
#include <errorpolicy.h>
#include <frmtextresource.h>
#include <frmtooltips.h>
#include <hotwordlocator.h>
#include <hotwordtextmodel.h>
#include <msgbox.h>
#include <richtextbox.h>
#include <rtf.h>
#include <runtimeerror.h>
#include <sourceviewer.h>
#include <twips.h>
#include <viewingwindows.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMdiSubWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using paintedrtf::Black;
using paintedrtf::Blue;
using paintedrtf::Red;

namespace {

// "Η Νάξος (κόκκινη) και η σμύριδα (μπλε)· ο οψιανός μόνο μαύρος."
QByteArray naxosText()
{
    return paintedrtf::rtf({{u"Η "_s, Black}, {u"Νάξος"_s, Red}, {u" και η "_s, Black}, {u"σμύριδα"_s, Blue},
        {u" της. Ο οψιανός όμως είναι της Μήλου.\nΔεύτερη παράγραφος για τη "_s, Black}, {u"Νάξο"_s, Red},
        {u"."_s, Black}});
}

// A phrase held together by a non-breaking space, written as Word writes it: \~.
QByteArray nbspText()
{
    QByteArray rtf = paintedrtf::rtf(
        {{u"Μετά την πτώση των τυράννων ο "_s, Black}, {u"Κλεισθένης\u00A0ο Αλκμεωνίδης"_s, Red},
            {u" άλλαξε τις "_s, Black}, {u"φυλές"_s, Red}, {u"."_s, Black}});
    rtf.replace("\\u160?", "\\~");
    return rtf;
}

void writeFile(const QString &path, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(data);
}

} // namespace

class tst_frmTextResource : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<testing::TestSession> m_s;
    testing::ViewerShell *m_shell = nullptr;

    // The texts of the boxes shown.
    QStringList messages() const
    {
        QStringList texts;
        for (const testing::ShownBox &box : std::as_const(m_s->host->boxes))
            texts << box.text;
        return texts;
    }
    frmToolTips *tip() const { return m_s->session->window<frmToolTips>(Session::Window::Tip, false); }

    frmTextResource *open(qint32 id)
    {
        auto *viewer = new frmTextResource(*m_s);
        viewer->setResourceID(id);
        viewer->Load();
        CenterAndShow(*m_s, viewer);
        return viewer;
    }

    // A click as the pupil gives it: the press puts the caret, the release asks.
    static void clickAt(frmTextResource *viewer, int place)
    {
        RichTextBox *box = viewer->rtbTextResource;
        const QPoint at = box->PosFromChar(place) + QPoint(2, box->fontMetrics().height() / 2);
        QTest::mouseClick(box->viewport(), Qt::LeftButton, {}, at);
    }

private slots:
    void initTestCase()
    {
        const QString root = m_dir.path();
        writeFile(root + u"/piges/naxos.rtf"_s, naxosText());
        writeFile(root + u"/piges/plain.rtf"_s, paintedrtf::rtf({{u"Κείμενο χωρίς λέξεις."_s, Black}}));
        writeFile(root + u"/piges/nbsp.rtf"_s, nbspText());
        writeFile(root + u"/photos/broken.png"_s, QByteArrayLiteral("\x89PNG\r\n\x1a\n\0\0\0\rIHDR"));
        QImage photo(40, 30, QImage::Format_RGB32);
        photo.fill(Qt::darkGreen);
        QDir().mkpath(root + u"/photos"_s);
        photo.save(root + u"/photos/emery.png"_s);

        testcontent::Builder b;
        b.textResource(7, u"naxos.rtf"_s, u"Ηρόδοτος, Ιστορίαι"_s);
        b.textResource(8, u"plain.rtf"_s, u"Δεύτερο βιβλίο"_s);
        b.textResource(9, u"gone.rtf"_s, u"Χαμένο"_s);
        b.comment(1, u"Πέτρωμα της Νάξου"_s, u"emery.png"_s);
        b.commentLink(1, 7, u"σμύριδα"_s);
        b.comment(2, u"Ηφαιστειακό γυαλί"_s);
        b.commentLink(2, 7, u"οψιανός"_s);
        b.term(30, u"Νάξος"_s, u"Νησί των Κυκλάδων"_s, 2, u"naxos.jpg"_s);
        b.termLink(30, 7, u"νάξο"_s);
        b.textResource(10, u"nbsp.rtf"_s, u"Αριστοτέλης"_s);
        b.comment(4, u"Ο νομοθέτης του 508 π.Χ."_s);
        b.commentLink(4, 10, u"Κλεισθένης\u00A0ο Αλκμεωνίδης"_s);
        b.comment(5, u"Η ψηφίδα"_s, u"broken.png"_s);
        b.commentLink(5, 10, u"φυλές"_s);
        b.comment(3, u"Άλλο σχόλιο"_s);
        b.commentLink(3, 8, u"απούσα"_s);
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
        if (frmToolTips *shown = tip())
            shown->close();
        delete m_shell;
        m_shell = nullptr;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_s->session->links() = {};
    }

    void aTextTileOpensThisViewer()
    {
        std::unique_ptr<SourceViewer> viewer(SourceViewer::create(*m_s, SourceViewer::Kind::Text));
        QVERIFY(qobject_cast<frmTextResource *>(viewer.get()));
    }

    void loadShowsTheBookOnTheParchment()
    {
        frmTextResource *viewer = open(7);
        QCOMPARE(viewer->windowTitle(), u"Ηρόδοτος, Ιστορίαι"_s);
        RichTextBox *box = viewer->rtbTextResource;
        QVERIFY(box->Locked());
        QCOMPARE(box->BackColor(), quint32(0xC1EEFE));
        QVERIFY(box->Text().startsWith(u"Η Νάξος και η σμύριδα"_s));
        QCOMPARE(viewer->imgPapiros->geometry(), viewer->rect());
        QVERIFY(!viewer->imgPapiros->pixmap().isNull());
        QCOMPARE(viewer->size(), QSize((9300 - 120) / 15, (5310 - 405) / 15));
        // Placed at 1074, 450, 7031, 4004, then centred by the resize that follows.
        QCOMPARE(box->geometry(), QRect((612 - 469) / 2, 30, qRound(7031 / 15.0), qRound(4004 / 15.0)));
        QCOMPARE(box->font().family(), u"Times New Roman"_s);
        QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR));
        viewer->grab().save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/text_viewer.png"));
    }

    void theHotWordsAreLocatedAsOnThePlainText()
    {
        frmTextResource *viewer = open(7);
        colHotWords *words = viewer->hotWords();
        QVERIFY(words);
        QCOMPARE(words->Count(), 3);
        QCOMPARE(words->Item(1).First(), 14);
        QCOMPARE(words->Item(1).Last(), 21);
        QCOMPARE(words->Item(2).First(), 0); // black only
        QCOMPARE(words->Item(3).First(), 2);

        // The same locating over the plain text of the same file.
        PlainTextHotWordModel plain(richtext::readPlainText(naxosText()));
        colHotWords again;
        for (const CHotWord &w : *words)
            again.Add(
                0, 0, w.ExactPhrase(), w.Comment(), w.Photo(), w.HotwordType(), w.IndexType(), w.phrase());
        hotwords::FillHotWords(plain, again);
        for (int i = 1; i <= words->Count(); ++i) {
            QCOMPARE(again.Item(i).First(), words->Item(i).First());
            QCOMPARE(again.Item(i).Last(), words->Item(i).Last());
        }
    }

    void aClickOnACommentOpensTheTip()
    {
        frmTextResource *viewer = open(7);
        clickAt(viewer, 16);
        frmToolTips *shown = tip();
        QVERIFY(shown);
        QVERIFY(shown->isVisible());
        QCOMPARE(shown->TipText(), u"Πέτρωμα της Νάξου"_s);
        QVERIFY(shown->TipPicture() != u"0"_s);
        QCOMPARE(shown->parentWidget(), m_shell);
        shown->grab().save(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/text_viewer_tip.png"));
    }

    void aSecondClickWhileATipIsOpenGetsAFreshTip()
    {
        frmTextResource *viewer = open(7);
        clickAt(viewer, 16);
        QPointer<frmToolTips> first(tip());
        QVERIFY(first);
        first->Unload(); // as the tip's loss of activation does
        viewer->rtbTextResource->setSelStart(0);
        viewer->rtbTextResource_MouseUp(1, 0, 0, 0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(first.isNull());
        QVERIFY(tip());
        QVERIFY(tip()->isVisible());
        QCOMPARE(tip()->TipText(), u"Ηφαιστειακό γυαλί"_s);
    }

    void aClickOnTheFirstCharacterOpensAnUnlocatedHotWord()
    {
        frmTextResource *viewer = open(7);
        viewer->rtbTextResource->setSelStart(0);
        viewer->rtbTextResource_MouseUp(1, 0, 0, 0);
        QVERIFY(tip());
        QCOMPARE(tip()->TipText(), u"Ηφαιστειακό γυαλί"_s);
    }

    void aClickJustBehindAPhraseStillOpensIt()
    {
        frmTextResource *viewer = open(7);
        viewer->rtbTextResource->setSelStart(21);
        viewer->rtbTextResource_MouseUp(1, 0, 0, 0);
        QVERIFY(tip());
        QCOMPARE(tip()->TipText(), u"Πέτρωμα της Νάξου"_s);
    }

    void aSelectionAcrossAHotWordTestsOnlyItsStart()
    {
        frmTextResource *viewer = open(7);
        viewer->rtbTextResource->setSelStart(9);
        viewer->rtbTextResource->setSelLength(10); // from " και η " into "σμύριδα"
        viewer->rtbTextResource_MouseUp(1, 0, 0, 0);
        QVERIFY(!tip());
    }

    void anIndexTermGoesToTheIndex()
    {
        QStringList asked;
        m_s->session->links().openIndex
            = [&](qint32 type, const QString &term, const QString &explanation, const QString &picture) {
                  asked << u"%1|%2|%3|%4"_s.arg(type).arg(term, explanation, picture);
              };
        frmTextResource *viewer = open(7);
        viewer->rtbTextResource->setSelStart(4);
        viewer->rtbTextResource_MouseUp(1, 0, 0, 0);
        QCOMPARE(asked, QStringList {u"2|Νάξος|Νησί των Κυκλάδων|naxos.jpg"_s});
        QVERIFY(!tip());
    }

    void anIndexTermWithoutTheIndexDoesNothing()
    {
        frmTextResource *viewer = open(7);
        viewer->rtbTextResource->setSelStart(4);
        viewer->rtbTextResource_MouseUp(1, 0, 0, 0);
        QVERIFY(!tip());
        QVERIFY(messages().isEmpty());
    }

    void theHandShowsOverAHotWord()
    {
        frmTextResource *viewer = open(7);
        RichTextBox *box = viewer->rtbTextResource;
        const QPoint over = box->PosFromChar(16) + QPoint(2, 4);
        viewer->rtbTextResource_MouseMove(0, 0, over.x() * 15.0, over.y() * 15.0);
        QCOMPARE(box->MousePointer(), int(RichTextBox::CustomPointer));
        const QPoint plain = box->PosFromChar(10) + QPoint(2, 4);
        viewer->rtbTextResource_MouseMove(0, 0, plain.x() * 15.0, plain.y() * 15.0);
        QCOMPARE(box->MousePointer(), int(RichTextBox::DefaultPointer));
    }

    void resizingKeepsTheBoxsShareAndItsMargin()
    {
        frmTextResource *viewer = open(7);
        auto *sub = qobject_cast<QMdiSubWindow *>(viewer->parentWidget());
        QVERIFY(sub);
        viewer->resize(900, 500);
        RichTextBox *box = viewer->rtbTextResource;
        const double ratio = box->width() / 900.0;
        QVERIFY(qAbs(ratio - 469.0 / 612.0) < 0.01);
        QVERIFY(qAbs(box->x() - (900 - box->width()) / 2) <= 1);
        QCOMPARE(box->RightMargin(), int(std::lround(900 * 15 * (469.0 * 15 / (612 * 15)) - 450)));
    }

    void resizingBelow450TwipsSetsNoRightMargin()
    {
        frmTextResource *viewer = open(7);
        viewer->resize(30, 100);
        QVERIFY(viewer->rtbTextResource->width() * 15 < 450);
        QCOMPARE(viewer->rtbTextResource->RightMargin(), 0);
    }

    void theWindowListTakesTheLastTextsCaption()
    {
        frmTextResource *first = open(7);
        QVERIFY(m_shell->windowListSeparator()->isVisible());
        QVERIFY(m_shell->mnuList(1)->isVisible());
        QCOMPARE(m_shell->mnuList(1)->text(), u"Ηρόδοτος, Ιστορίαι"_s);
        QCOMPARE(first->windowListPlace(), qint16(1));
        frmTextResource *second = open(8);
        QCOMPARE(m_shell->mnuList(1)->text(), u"Δεύτερο βιβλίο"_s);
        QCOMPARE(second->windowListPlace(), qint16(1));

        m_shell->growList();
        frmTextResource *third = open(7);
        QCOMPARE(m_shell->mnuList(1)->text(), u"Δεύτερο βιβλίο"_s);
        QCOMPARE(third->windowListPlace(), qint16(0));
    }

    void activationClearsTheWindowListMarks()
    {
        frmTextResource *viewer = open(7);
        m_shell->mnuList(1)->setChecked(true);
        viewer->Form_Activate();
        QVERIFY(!m_shell->mnuList(1)->isChecked());
        QVERIFY(!m_shell->mnuList(0)->isChecked());
    }

    void closingTellsTheTileAndUnghostsTheSearchItem()
    {
        QStringList tags;
        m_s->session->links().unghostSearchItem = [&](const QString &tag) { tags << tag; };
        frmTextResource *viewer = open(7);
        viewer->LoadedFromTheFormSearchResources = true;
        QSignalSpy unloaded(viewer, &SourceViewer::OnUnload);
        viewer->Unload();
        QCOMPARE(unloaded.count(), 1);
        QCOMPARE(tags, QStringList {u"7"_s});
    }

    void closingWithTheSearchListGoneDoesNothingMore()
    {
        frmTextResource *viewer = open(8);
        viewer->LoadedFromTheFormSearchResources = true;
        QSignalSpy unloaded(viewer, &SourceViewer::OnUnload);
        viewer->Unload();
        QCOMPARE(unloaded.count(), 1);
        QVERIFY(messages().isEmpty());
    }

    void theViewerAndTheContentToolLocateTheSampleAlike()
    {
        const QString sample = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
        if (!QFile::exists(sample))
            QSKIP("the sample course is not built");
        // A session of its own, on the sample course.
        testing::TestSession course;
        Session &session = course;
        session.content().database = content::Database::OpenDatabase(sample);
        session.content().dataFolder = QFileInfo(sample).absolutePath();
        const QString &dataFolder = session.content().dataFolder;

        auto rs = session.database().OpenRecordset(
            u"SELECT ResourceID, TextPath FROM Resources WHERE ResTypeID = 2"_s);
        int texts = 0;
        int located = 0;
        while (!rs->Eof()) {
            const qint32 id = rs->Fields(u"ResourceID"_s).Value().toInt();
            QFile file(platform::contentPath(dataFolder, u"\\piges\\"_s, rs->Fields(u"TextPath"_s).text()));
            QVERIFY(file.open(QIODevice::ReadOnly));
            PlainTextHotWordModel plain(richtext::readPlainText(file.readAll()));
            auto expected = clsTexts(session.database(), dataFolder).HotWords(id);
            hotwords::FillHotWords(plain, *expected);

            frmTextResource viewer(session);
            viewer.setResourceID(id);
            viewer.Load();
            QCOMPARE(viewer.hotWords()->Count(), expected->Count());
            for (int i = 1; i <= expected->Count(); ++i) {
                QCOMPARE(viewer.hotWords()->Item(i).First(), expected->Item(i).First());
                QCOMPARE(viewer.hotWords()->Item(i).Last(), expected->Item(i).Last());
                located += expected->Item(i).Last() > 0 ? 1 : 0;
            }
            ++texts;
            rs->MoveNext();
        }
        QVERIFY(texts > 0);
        QVERIFY(located > 0);
    }

    void theRightButtonAsksTheCaretAsTheLeftOneDoes()
    {
        frmTextResource *viewer = open(7);
        RichTextBox *box = viewer->rtbTextResource;
        QCOMPARE(box->contextMenuPolicy(), Qt::PreventContextMenu);
        clickAt(viewer, 16);
        QVERIFY(tip());
        tip()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!tip());

        // A right click through the window system, where a menu would come: the box has
        // none, the release reaches MouseUp, and the caret (still on the comment) decides.
        QWidget *top = box->window();
        const QPoint elsewhere = box->viewport()->mapTo(top, box->PosFromChar(40) + QPoint(2, 4));
        QTest::mouseClick(top->windowHandle(), Qt::RightButton, {}, elsewhere);
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(tip());
        QCOMPARE(tip()->TipText(), u"Πέτρωμα της Νάξου"_s);
    }

    void theMenuKeyBringsNoMenu()
    {
        frmTextResource *viewer = open(7);
        RichTextBox *box = viewer->rtbTextResource;
        QContextMenuEvent fromKey(
            QContextMenuEvent::Keyboard, QPoint(5, 5), box->viewport()->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(box->viewport(), &fromKey);
        QVERIFY(!QApplication::activePopupWidget());
    }

    void aPhraseWithANonBreakingSpaceIsLocatedAsTheContentToolLocatesIt()
    {
        frmTextResource *viewer = open(10);
        QVERIFY(viewer->rtbTextResource->Text().contains(QChar(0x00A0)));
        PlainTextHotWordModel plain(richtext::readPlainText(nbspText()));
        auto expected = clsTexts(m_s->session->database(), m_s->session->content().dataFolder).HotWords(10);
        hotwords::FillHotWords(plain, *expected);
        QCOMPARE(viewer->hotWords()->Count(), expected->Count());
        bool nbspPhraseLocated = false;
        for (int i = 1; i <= expected->Count(); ++i) {
            QCOMPARE(viewer->hotWords()->Item(i).First(), expected->Item(i).First());
            QCOMPARE(viewer->hotWords()->Item(i).Last(), expected->Item(i).Last());
            nbspPhraseLocated = nbspPhraseLocated || expected->Item(i).First() == 30;
        }
        QVERIFY(nbspPhraseLocated);

        clickAt(viewer, 35);
        QVERIFY(tip());
        QCOMPARE(tip()->TipText(), u"Ο νομοθέτης του 508 π.Χ."_s);
    }

    void aCommentPictureThatCannotBeReadGivesTheErrorBoxNamingIt()
    {
        frmTextResource *viewer = open(10);
        clickAt(viewer, 67);
        QCOMPARE(messages(), QStringList {u"Λάθος # 481\r\nΜη έγκυρη εικόνα: «broken.png»"_s});
    }

    void aMissingFileGoesUpToTheOpener()
    {
        auto viewer = std::make_unique<frmTextResource>(*m_s);
        viewer->setResourceID(9);
        bool raised = false;
        try {
            viewer->Load();
        } catch (const platform::RuntimeError &) {
            raised = true;
        }
        QVERIFY(raised);
    }
};

QTEST_MAIN(tst_frmTextResource)
#include "tst_frmtextresource.moc"
