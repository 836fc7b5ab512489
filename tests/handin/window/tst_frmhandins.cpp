// The teacher's window of the work handed in: grouped by class, a note opened read-only,
// a drawing in a picture window, a damaged bundle told and never opened.

#include "../../support/deferreddeletes.h"
#include "../../support/testsession.h"
#include "../bundlezips.h"

#include <frmhandinpicture.h>
#include <frmhandins.h>
#include <frmnotes.h>
#include <notepadstate.h>
#include <richtextbox.h>

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

template<typename T> QList<T *> openWindows()
{
    QList<T *> found;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<T *>(widget); window && window->isVisible())
            found.append(window);
    }
    return found;
}

} // namespace

class tst_frmHandIns : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<testing::TestSession> m_session;
    frmHandIns *m_form = nullptr;

    QString bundle(const QString &name) const { return m_dir->filePath(name); }

    void hand(const QString &file, const QString &pupil, const QString &className, int hour,
        const QList<handin::File> &files)
    {
        const QDateTime time(QDate(2026, 11, 25), QTime(hour, 15), Qt::OffsetFromUTC, 7200);
        QVERIFY(bundlezips::writeBundle(bundle(file), pupil, className, 3, u"Οι πηγές"_s, time, files));
    }

    // The item of the pupil's bundle, or of its file titled so.
    QTreeWidgetItem *item(const QString &pupil, const QString &file = {}) const
    {
        QTreeWidget *list = m_form->lvwHandIns;
        for (int c = 0; c < list->topLevelItemCount(); ++c) {
            QTreeWidgetItem *classItem = list->topLevelItem(c);
            for (int b = 0; b < classItem->childCount(); ++b) {
                QTreeWidgetItem *bundleItem = classItem->child(b);
                if (bundleItem->text(frmHandIns::ColPupil) != pupil)
                    continue;
                if (file.isEmpty())
                    return bundleItem;
                for (int f = 0; f < bundleItem->childCount(); ++f) {
                    if (bundleItem->child(f)->text(frmHandIns::ColPupil) == file)
                        return bundleItem->child(f);
                }
            }
        }
        return nullptr;
    }

    void doubleClick(QTreeWidgetItem *target)
    {
        QVERIFY(target);
        QTreeWidget *list = m_form->lvwHandIns;
        list->scrollToItem(target);
        const QPoint centre = list->visualItemRect(target).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, centre);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, centre);
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        hand(u"1.zip"_s, u"Ωρίων"_s, u"Β2"_s, 9,
            {{u"note.rtf"_s, bundlezips::noteRtf(u"Η σημείωση του Ωρίωνα"_s)}});
        hand(u"Β2_Αθηνά_Οι-πηγές_20261125-101500_aaaa.zip"_s, u"Αθηνά"_s, u"Β2"_s, 10,
            {{u"note.rtf"_s, bundlezips::noteRtf(u"Η σημείωση της Αθηνάς"_s)},
                {u"drawing-1.png"_s, bundlezips::png(40, 30, Qt::red)}});
        hand(u"3.zip"_s, u"Γιάννης"_s, u"Α1"_s, 11, {{u"drawing-1.png"_s, bundlezips::png(20, 10, Qt::blue)}});
        QFile broken(bundle(u"Β2_Κώστας_Οι-πηγές_20261125-083000_beef.zip"_s));
        QVERIFY(broken.open(QIODevice::WriteOnly));
        broken.write("PK\x03\x04 and nothing after");
        broken.close();

        m_session = std::make_unique<testing::TestSession>();
        QVERIFY(showHandIns(*m_session, m_dir->path()));
        const QList<frmHandIns *> forms = openWindows<frmHandIns>();
        QCOMPARE(forms.size(), 1);
        m_form = forms.first();
        QVERIFY(QTest::qWaitForWindowExposed(m_form));
    }

    void cleanup()
    {
        m_form = nullptr;
        m_session.reset();
        testing::flushDeletes();
        m_dir.reset();
    }

    void groupsByClass()
    {
        QCOMPARE(m_form->windowTitle(), u"Παραδόσεις εργασιών"_s);
        QCOMPARE(m_form->objectName(), u"frmHandIns"_s);
        QTreeWidget *list = m_form->lvwHandIns;
        QCOMPARE(list->topLevelItemCount(), 2);
        QCOMPARE(list->topLevelItem(0)->text(0), u"Τμήμα Α1"_s);
        QCOMPARE(list->topLevelItem(1)->text(0), u"Τμήμα Β2"_s);
        QTreeWidgetItem *b2 = list->topLevelItem(1);
        QCOMPARE(b2->childCount(), 3);
        QCOMPARE(b2->child(0)->text(frmHandIns::ColPupil), u"Αθηνά"_s);
        QCOMPARE(b2->child(1)->text(frmHandIns::ColPupil), u"Κώστας"_s);
        QCOMPARE(b2->child(2)->text(frmHandIns::ColPupil), u"Ωρίων"_s);
        QCOMPARE(b2->child(0)->text(frmHandIns::ColActivity), u"Οι πηγές"_s);
        QCOMPARE(b2->child(0)->text(frmHandIns::ColTime), u"25/11/2026 10:15"_s);
        QCOMPARE(b2->child(0)->text(frmHandIns::ColFiles), u"2"_s);
        QCOMPARE(b2->child(0)->text(frmHandIns::ColState), u"εντάξει"_s);
        QCOMPARE(b2->child(1)->text(frmHandIns::ColState), u"κατεστραμμένο"_s);
        QVERIFY(!b2->child(1)->toolTip(frmHandIns::ColState).isEmpty());
        QCOMPARE(b2->child(0)->childCount(), 2);
        QCOMPARE(b2->child(0)->child(0)->text(0), u"Σημείωση"_s);
        QCOMPARE(b2->child(0)->child(1)->text(0), u"Ζωγραφιά 1"_s);
        QVERIFY(!list->accessibleName().isEmpty());
        QVERIFY(!m_form->cmdOpen->accessibleName().isEmpty());
    }

    void doubleClickOnANoteOpensItReadOnly()
    {
        doubleClick(item(u"Αθηνά"_s, u"Σημείωση"_s));
        QList<frmNotes *> notes;
        QTRY_COMPARE((notes = openWindows<frmNotes>()).size(), 1);
        frmNotes *note = notes.first();
        QVERIFY(note->isReadOnly());
        QVERIFY(note->notes->Text().contains(u"Η σημείωση της Αθηνάς"));
        QVERIFY(note->notes->Locked());
        QVERIFY(note->Toolbar1->isHidden());
        // Not the pupil's notepad, which stays as it was.
        QVERIFY(!m_session->session->window(Session::Window::Notes, false));
        const QString before = note->notes->Text();
        note->notes->setFocus();
        QTest::keyClicks(note->notes, u"xyz"_s);
        QCOMPARE(note->notes->Text(), before);
        QVERIFY(!note->NotesDirty);
        // It closes without a question: there is nothing to save.
        QVERIFY(note->close());
        QVERIFY(m_session->host->boxes.isEmpty());
    }

    void theNotepadKeepsItsOwnNote()
    {
        Session &session = *m_session;
        frmNotes *own = frmNotes::open(session);
        own->show();
        own->notes->setSelText(u"Η δική μου σημείωση"_s);
        session.notepad().CurrentFile = u"/tmp/mine.rtf"_s;
        frmNotes *read = frmNotes::showReadOnly(session, bundlezips::noteRtf(u"Άλλη"_s), u"Σημείωση"_s);
        QVERIFY(read != own);
        QCOMPARE(frmNotes::open(session, false), own);
        QVERIFY(read->close());
        testing::flushDeletes();
        QCOMPARE(frmNotes::open(session, false), own);
        QCOMPARE(session.notepad().CurrentFile, u"/tmp/mine.rtf"_s);
        QVERIFY(own->NotesDirty);
        QVERIFY(m_session->host->boxes.isEmpty());
    }

    void aBundleOpensItsNote()
    {
        doubleClick(item(u"Ωρίων"_s));
        QList<frmNotes *> notes;
        QTRY_COMPARE((notes = openWindows<frmNotes>()).size(), 1);
        QVERIFY(notes.first()->notes->Text().contains(u"Ωρίωνα"));
    }

    void doubleClickOnADrawingOpensThePicture()
    {
        doubleClick(item(u"Αθηνά"_s, u"Ζωγραφιά 1"_s));
        QList<frmHandInPicture *> pictures;
        QTRY_COMPARE((pictures = openWindows<frmHandInPicture>()).size(), 1);
        const QImage picture = pictures.first()->picture();
        QCOMPARE(picture.size(), QSize(40, 30));
        QCOMPARE(QColor(picture.pixel(5, 5)), QColor(Qt::red));
        QVERIFY(pictures.first()->windowTitle().contains(u"Αθηνά"));
        QVERIFY(openWindows<frmNotes>().isEmpty());
        // Escape puts it away.
        QTest::keyClick(pictures.first(), Qt::Key_Escape);
        QTRY_VERIFY(openWindows<frmHandInPicture>().isEmpty());
    }

    void aDamagedBundleSaysSoAndOpensNothing()
    {
        QTreeWidgetItem *damaged = item(u"Κώστας"_s);
        QVERIFY(damaged);
        QCOMPARE(damaged->childCount(), 0);
        doubleClick(damaged);
        QTRY_COMPARE(m_session->host->boxes.size(), 1);
        QVERIFY(m_session->host->boxes.first().text.contains(u"κατεστραμμένη"));
        QVERIFY(openWindows<frmNotes>().isEmpty());
        QVERIFY(openWindows<frmHandInPicture>().isEmpty());
    }

    void aBundleDamagedSinceTheListIsTold()
    {
        QFile file(bundle(u"Β2_Αθηνά_Οι-πηγές_20261125-101500_aaaa.zip"_s));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("gone");
        file.close();
        doubleClick(item(u"Αθηνά"_s, u"Σημείωση"_s));
        QTRY_COMPARE(m_session->host->boxes.size(), 1);
        QVERIFY(openWindows<frmNotes>().isEmpty());
        // Read again, the list shows it damaged.
        QTest::mouseClick(m_form->cmdRefresh, Qt::LeftButton);
        QCOMPARE(item(u"Αθηνά"_s)->text(frmHandIns::ColState), u"κατεστραμμένο"_s);
    }

    void theKeyboardOpensToo()
    {
        QTreeWidget *list = m_form->lvwHandIns;
        m_form->activateWindow();
        list->setFocus();
        list->setCurrentItem(item(u"Γιάννης"_s, u"Ζωγραφιά 1"_s));
        QTest::keyClick(list, Qt::Key_Return);
        QTRY_COMPARE(openWindows<frmHandInPicture>().size(), 1);
        QCOMPARE(openWindows<frmHandInPicture>().first()->picture().size(), QSize(20, 10));
        // Tab reaches the keys.
        QVERIFY(m_form->cmdOpen->focusPolicy() & Qt::TabFocus);
        list->setCurrentItem(item(u"Ωρίων"_s));
        QTest::mouseClick(m_form->cmdOpen, Qt::LeftButton);
        QTRY_COMPARE(openWindows<frmNotes>().size(), 1);
    }

    void aMissingFolderIsTold()
    {
        QVERIFY(!showHandIns(*m_session, m_dir->filePath(u"none"_s)));
        QCOMPARE(m_session->host->boxes.size(), 1);
        QCOMPARE(openWindows<frmHandIns>().size(), 1);
    }
};

QTEST_MAIN(tst_frmHandIns)
#include "tst_frmhandins.moc"
