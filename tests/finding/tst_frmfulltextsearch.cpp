// The text search window in the program's shell on the sample course: Ctrl+Shift+F and
// the menu open it, the index is built in the background, the pupil types, sees the
// sources with their words in bold, opens a text and finds the words selected there.
// Pictures land in the test output folder.

#include "indexdamage.h"
#include "samplecopy.h"
#include "sampleshell.h"
#include "warninglog.h"

#include <childwindows.h>
#include <colhotwords.h>
#include <database.h>
#include <frmfulltextsearch.h>
#include <frmtextresource.h>
#include <fulltextindex.h>
#include <mdiform1.h>
#include <richtextbox.h>
#include <wordfold.h>

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QProgressBar>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_frmFullTextSearch : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<testing::TestSession> m_s;
    MDIForm1 *m_shell = nullptr;
    std::unique_ptr<QTemporaryDir> m_cache; // each test's own, so each builds its index afresh

    Session &session() { return *m_s->session; }
    const QList<testing::ShownBox> &boxes() const { return m_s->host->boxes; }
    frmFullTextSearch *shownSearch()
    {
        return session().window<frmFullTextSearch>(Session::Window::FullTextSearch, false);
    }

    // The session on another content file while it lives, then on the sample.
    struct SampleSwap
    {
        SampleSwap(Session &session, const QString &contentFile)
            : session(session)
        {
            testing::openContent(session, contentFile);
        }
        ~SampleSwap() { testing::openContent(session, testing::sampleCoursePath); }
        Q_DISABLE_COPY_MOVE(SampleSwap)
        Session &session;
    };

    // Opens the window, types the words and closes it again: whether the window built its
    // index, and the sources it found.
    void searchOnce(const QString &words, bool &built, QList<qint32> &found)
    {
        found.clear();
        m_shell->mnuFullText->trigger();
        frmFullTextSearch *search = shownSearch();
        QVERIFY(search);
        built = search->prgIndex->isVisible();
        QTRY_VERIFY_WITH_TIMEOUT(search->indexReady(), 30000);
        search->txtWords->setText(words);
        QTRY_VERIFY(!search->lblCount->text().isEmpty());
        for (const fulltext::Result &r : search->results())
            found << r.resourceID;
        search->parentWidget()->close();
    }

    // The first opening, which builds the index; the window is closed again.
    void buildIndex()
    {
        m_shell->mnuFullText->trigger();
        frmFullTextSearch *search = shownSearch();
        QVERIFY(search);
        QTRY_VERIFY_WITH_TIMEOUT(search->indexReady(), 30000);
        search->parentWidget()->close();
    }

private slots:
    void initTestCase()
    {
        if (!QFileInfo::exists(testing::sampleCoursePath))
            QSKIP("the sample course is not built");
    }

    void init()
    {
        m_cache = std::make_unique<QTemporaryDir>();
        QVERIFY(m_cache->isValid());
        qputenv("XDG_CACHE_HOME", m_cache->path().toUtf8());
        m_s = std::make_unique<testing::TestSession>();
        m_shell = testing::showSampleShell(session());
        QVERIFY(m_shell);
    }

    void cleanup()
    {
        testing::endSampleShell(m_shell, m_s);
        m_shell = nullptr;
        m_cache.reset();
    }

    void theMenuOffersItBelowTheDatabaseSearch()
    {
        const QList<QAction *> actions = m_shell->mnuChoices->actions();
        const qsizetype search = actions.indexOf(m_shell->mnufacilities);
        QVERIFY(search >= 0);
        QCOMPARE(actions.value(search + 1), m_shell->mnuFullText);
        QCOMPARE(m_shell->mnuFullText->text(), u"Αναζήτηση στα κείμενα"_s);
        QCOMPARE(m_shell->mnuFullText->shortcut(), QKeySequence(u"Ctrl+Shift+F"_s));
    }

    void aPupilTypesSeesTheSourcesAndOpensATextAtTheWords()
    {
        QTest::keyClick(m_shell, Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
        frmFullTextSearch *search = shownSearch();
        QVERIFY(search);
        QVERIFY(search->isVisible());
        QCOMPARE(search->windowTitle(), u"Αναζήτηση στα κείμενα"_s);
        QCOMPARE(search->parentWidget()->parentWidget()->parentWidget(), m_shell->mdiArea());
        // The first opening builds the index in the background, with its progress shown.
        QVERIFY(search->prgIndex->isVisible());
        QVERIFY(!search->indexReady());
        QTRY_VERIFY_WITH_TIMEOUT(search->indexReady(), 30000);
        QVERIFY(!search->prgIndex->isVisible());
        QVERIFY(QDir(m_cache->path() + u"/tremidia"_s).entryList({u"fulltext-*.sqlite"_s}).size() == 1);

        // Typed a letter at a time, as a Greek keyboard sends them.
        for (const QChar c : u"δηλος"_s)
            QTest::sendKeyEvent(QTest::Click, search->txtWords, Qt::Key_unknown, QString(c), Qt::NoModifier);
        QCOMPARE(search->txtWords->text(), u"δηλος"_s);
        QTRY_VERIFY(!search->results().isEmpty());
        const QList<fulltext::Result> results = search->results();
        QCOMPARE(search->lstResults->count(), results.size());
        QCOMPARE(search->lblCount->text(), u"Βρέθηκαν %1 πηγές."_s.arg(results.size()));
        QCOMPARE(search->lstResults->item(0)->text(), results.front().title);
        QVERIFY(!search->lstResults->item(0)->icon().isNull());
        QVERIFY(search->contextHtml(0).contains(u"<b>"_s));
        testing::savePicture(m_shell, u"fulltext-results.png"_s);

        // The first text source among the results, opened with Enter.
        int row = 0;
        while (row < results.size() && results.at(row).resTypeID != 2)
            ++row;
        QVERIFY(row < results.size());
        search->lstResults->setFocus();
        search->lstResults->setCurrentRow(row);
        QTest::keyClick(search->lstResults, Qt::Key_Return);
        QVERIFY(boxes().isEmpty());
        auto *text = qobject_cast<frmTextResource *>(m_shell->mdiArea()->activeSubWindow()->widget());
        QVERIFY(text);
        QCOMPARE(text->ResourceID(), results.at(row).resourceID);
        QVERIFY(!text->markedWords().isEmpty());
        const QString selected = text->rtbTextResource->SelText();
        QVERIFY(fulltext::foldWord(selected).startsWith(u"δηλ"_s));
        QCOMPARE(text->rtbTextResource->SelStart(), text->markedWords().front().first);
        QCOMPARE(text->rtbTextResource->extraSelections().size(), text->markedWords().size());
        QVERIFY(text->rtbTextResource->cursorRect().intersects(text->rtbTextResource->viewport()->rect()));
        // Hot words keep working beside the marks.
        QVERIFY(text->hotWords() && text->hotWords()->Count() > 0);
        testing::savePicture(m_shell, u"fulltext-opened.png"_s);

        // A click in the text puts the marks away.
        QTest::mouseClick(text->rtbTextResource->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(text->markedWords().isEmpty());
        QVERIFY(text->rtbTextResource->extraSelections().isEmpty());
        text->Unload();

        // Words that stand nowhere: an empty list and its count; no words: no count.
        search->txtWords->setText(u"ξυλοκερατιά"_s);
        QTRY_COMPARE(search->lblCount->text(), u"Δεν βρέθηκε καμία πηγή."_s);
        QCOMPARE(search->lstResults->count(), 0);
        search->txtWords->setText(u"\"*"_s);
        QTRY_COMPARE(search->lblCount->text(), QString());
        QVERIFY(boxes().isEmpty());
        search->parentWidget()->close();
        QVERIFY(!shownSearch());
    }

    void theMenuReopensItOnTheIndexAlreadyBuilt()
    {
        buildIndex();
        m_shell->mnuFullText->trigger();
        frmFullTextSearch *search = shownSearch();
        QVERIFY(search);
        QVERIFY(!search->prgIndex->isVisible());
        QTRY_VERIFY(search->indexReady());
        QVERIFY(!search->prgIndex->isVisible());
        search->txtWords->setText(u"\"της Δήλου\""_s);
        QTRY_VERIFY(!search->results().isEmpty());
        search->parentWidget()->close();
    }

    void aDamagedIndexIsBuiltAgainWhenTheWindowOpens()
    {
        buildIndex();
        const QString cache = fulltext::cacheFileFor(session().content().databasePath);
        QVERIFY(fulltext::isCurrent(session().content().databasePath));
        QVERIFY(!indexdamage::overwriteTermPostings(cache).isEmpty());
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(u"the text search's index .* is built again"_s));
        m_shell->mnuFullText->trigger();
        frmFullTextSearch *search = shownSearch();
        QVERIFY(search);
        QTRY_VERIFY_WITH_TIMEOUT(search->indexReady(), 30000);
        QCOMPARE(search->lblCount->text(), QString());
        search->txtWords->setText(u"ΔΗΛΟΣ"_s);
        QTRY_VERIFY(search->results().size() >= 3);
        QVERIFY(search->results().front().title.contains(u"Δήλου"_s));
        QVERIFY(fulltext::Index::open(cache)->sourceCount() > 0);
        QVERIFY(boxes().isEmpty());
        search->parentWidget()->close();
    }

    void theArrowsInTheFieldMoveThroughTheResults()
    {
        m_shell->mnuFullText->trigger();
        frmFullTextSearch *search = shownSearch();
        QVERIFY(search);
        QTRY_VERIFY(search->indexReady());
        search->txtWords->setText(u"ναός"_s);
        QTRY_VERIFY(search->lstResults->count() > 1);
        search->txtWords->setFocus();
        search->lstResults->setCurrentRow(0);
        QTest::keyClick(search->txtWords, Qt::Key_Down);
        QCOMPARE(search->lstResults->currentRow(), 1);
        QTest::keyClick(search->txtWords, Qt::Key_Up);
        QTest::keyClick(search->txtWords, Qt::Key_Up);
        QCOMPARE(search->lstResults->currentRow(), 0);
        // The words stay where the pupil types them.
        QCOMPARE(QApplication::focusWidget(), search->txtWords);
        search->parentWidget()->close();
    }

    void aCorrectedTextIsFoundOnTheNextOpening()
    {
        QTemporaryDir copy;
        const QString content = testing::copySampleTexts(testing::sampleCoursePath, copy.path());
        QVERIFY(!content.isEmpty());
        const SampleSwap swap(session(), content);
        bool built = false;
        QList<qint32> found;
        searchOnce(u"ξυλοκερατιά"_s, built, found);
        QVERIFY(built);
        QCOMPARE(found, QList<qint32>());
        QVERIFY(testing::addCarobTree(copy.path() + u"/piges/akrotiri.rtf"_s));
        // Built again, as the text changed.
        searchOnce(u"ξυλοκερατιά"_s, built, found);
        QVERIFY(built);
        QCOMPARE(found, QList<qint32>({107}));
        QVERIFY(boxes().isEmpty());
    }

    void anUnwritableCacheSearchesFromAnIndexInMemory()
    {
        QTemporaryDir dir;
        QFile file(dir.path() + u"/file"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        // A cache folder that cannot be made, below a regular file.
        qputenv("XDG_CACHE_HOME", QFile::encodeName(file.fileName() + u"/cache"_s));
        QStringList warnings;
        QList<fulltext::Result> results;
        QString context;
        {
            testing::WarningLog log;
            m_shell->mnuFullText->trigger();
            frmFullTextSearch *search = shownSearch();
            QVERIFY(search);
            QTRY_VERIFY_WITH_TIMEOUT(search->indexReady() || !search->lblCount->text().isEmpty(), 30000);
            search->txtWords->setText(u"δηλος"_s);
            QTRY_VERIFY(!search->lblCount->text().isEmpty());
            results = search->results();
            context = search->contextHtml(0);
            search->parentWidget()->close();
            for (const QString &line : log.lines()) {
                if (line.startsWith(u"tremidia."_s))
                    warnings << line;
            }
        }
        qputenv("XDG_CACHE_HOME", m_cache->path().toUtf8());
        QVERIFY(!results.isEmpty());
        QVERIFY(context.contains(u"<b>"_s));
        QCOMPARE(warnings.size(), 1);
        QVERIFY2(warnings.front().startsWith(u"tremidia.content "_s), qPrintable(warnings.front()));
        QVERIFY(boxes().isEmpty());
    }
};

QTEST_MAIN(tst_frmFullTextSearch)
#include "tst_frmfulltextsearch.moc"
