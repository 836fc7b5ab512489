// RichTextBox as the windows use it: places, selection, formats and their Null
// readings, Find, the box's own properties and its signals.

#include "richtextboxtesthelpers.h"

#include <richtextbox.h>
#include <richtextsearch.h>
#include <rtf.h>
#include <runtimeerror.h>

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QFile>
#include <QImage>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace richtextboxtest;

// How the text viewer locates a hot word: the first occurrence, ignoring case, whose
// first character is painted; then the whole phrase must be of one colour, not black.
// Returns the place found, or -1.
int locatePaintedPhrase(RichTextBox &box, const QString &phrase)
{
    int start = 0;
    bool found = false;
    for (;;) {
        const QString text = box.Text();
        const int hit = richtextbox::findText(text, richtextbox::foldCase(text), phrase, start, -1, 0);
        if (hit < 0)
            break;
        found = true;
        box.setSelStart(hit + 1); // behind the first character
        if (box.SelColor() == std::optional<quint32>(0)) {
            start = hit + 1;
            continue;
        }
        box.setSelStart(hit);
        box.setSelLength(int(phrase.size()));
        break;
    }
    const std::optional<quint32> color = box.SelColor();
    return found && color && *color != 0 ? box.SelStart() : -1;
}

} // namespace

class tst_RichTextBox : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;

    QString tempPath(const QString &name) const { return m_dir->filePath(name); }

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    // --- Places ----------------------------------------------------------------------

    void textCountsOnePlacePerCharacterAndParagraphEnd()
    {
        RichTextBox box;
        box.setText(u"Αβγ\tδ\nεζ\n\nη"_s);
        QCOMPARE(box.Text(), u"Αβγ\tδ\nεζ\n\nη"_s);
        QCOMPARE(box.TextLength(), int(box.Text().size()));
        for (int place = 0; place < box.TextLength(); ++place) {
            select(box, place, 1);
            QCOMPARE(box.SelStart(), place);
            QCOMPARE(box.SelText(), box.Text().mid(place, 1));
        }
        select(box, 5, 3);
        QCOMPARE(box.SelText(), u"\nεζ"_s);
    }

    void aNonBreakingSpaceStaysInTheText()
    {
        RichTextBox box;
        box.setSelRTF(QByteArrayLiteral("{\\rtf1\\ansi\\ansicpg1253 \\'ca\\'eb\\'e5\\'e9\\~\\'e1}"));
        QCOMPARE(box.Text(), u"Κλει\u00A0α"_s);
        select(box, 4, 1);
        QCOMPARE(box.SelText(), u"\u00A0"_s);
    }

    void bulletsAddNoPlaces()
    {
        RichTextBox box;
        box.setText(u"πρώτη\nδεύτερη\nτρίτη"_s);
        const QString before = box.Text();
        select(box, 7, 3); // inside the second paragraph
        box.setSelBullet(true);
        QCOMPARE(box.SelBullet(), std::optional<bool>(true));
        QCOMPARE(box.Text(), before);
        select(box, 6, 7);
        QCOMPARE(box.SelText(), u"δεύτερη"_s);
        select(box, 0, 1);
        QCOMPARE(box.SelBullet(), std::optional<bool>(false));
    }

    void aPictureIsOneCharacter()
    {
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::green);
        const QString picture = tempPath(u"εικόνα.png"_s);
        QVERIFY(image.save(picture));

        RichTextBox box;
        box.setText(u"αβ\nγδ"_s);
        box.setSelStart(1);
        box.InsertPicture(picture);
        QCOMPARE(box.TextLength(), 6);
        QCOMPARE(box.Text().at(1), QChar(QChar::ObjectReplacementCharacter));
        QCOMPARE(box.SelStart(), 2);
        select(box, 4, 2);
        QCOMPARE(box.SelText(), u"γδ"_s);
    }

    void selStartCollapsesAndClipsTheSelection()
    {
        RichTextBox box;
        box.setText(u"αβγδε"_s);
        select(box, 1, 3);
        box.setSelStart(2);
        QCOMPARE(box.SelLength(), 0);
        box.setSelStart(100);
        QCOMPARE(box.SelStart(), 5);
        box.setSelStart(3);
        box.setSelLength(100);
        QCOMPARE(box.SelLength(), 2);
        QCOMPARE(errorNumberOf([&] { box.setSelStart(-1); }), 380);
        QCOMPARE(errorNumberOf([&] { box.setSelLength(-1); }), 380);
    }

    void aSelectionSetByTheProgramReachesTheEditAtTheNextEvent()
    {
        RichTextBox box;
        box.setText(u"αβγδεζ"_s);
        box.setSelStart(2);
        box.setSelLength(3);
        QCOMPARE(box.textCursor().selectionStart(), 2);
        QCOMPARE(box.textCursor().selectionEnd(), 5);
        box.setSelStart(1);
        QCoreApplication::processEvents();
        const QTextEdit &edit = box;
        QCOMPARE(edit.textCursor().position(), 1);
        QVERIFY(!edit.textCursor().hasSelection());
    }

    void selTextOfFormattedTextIsPlain()
    {
        RichTextBox box;
        box.setText(u"έντονο\nκόκκινο"_s);
        select(box, 0, 10);
        box.setSelBold(true);
        box.setSelColor(Red);
        QCOMPARE(box.SelText(), u"έντονο\nκόκ"_s);
    }

    void selTextReplacesInTheFormatOfTheFirstCharacter()
    {
        RichTextBox box;
        box.setText(u"ένα δύο τρία"_s);
        select(box, 4, 3);
        box.setSelColor(Red);
        box.setSelBold(true);
        select(box, 4, 3);
        box.setSelText(u"ΔΥΟ"_s);
        QCOMPARE(box.Text(), u"ένα ΔΥΟ τρία"_s);
        select(box, 4, 3);
        QCOMPARE(box.SelColor(), std::optional<quint32>(Red));
        QCOMPARE(box.SelBold(), std::optional<bool>(true));
    }

    // --- Character format and the Null readings ---------------------------------------

    void selColorReadsZeroForUncolouredText()
    {
        RichTextBox box;
        box.setText(u"κείμενο"_s);
        select(box, 0, 7);
        QCOMPARE(box.SelColor(), std::optional<quint32>(0));
        box.setSelStart(3);
        QCOMPARE(box.SelColor(), std::optional<quint32>(0));
    }

    void selColorIsNullOverMixedColours()
    {
        RichTextBox box;
        box.setText(u"κόκκινομπλε"_s);
        select(box, 0, 7);
        box.setSelColor(Red);
        select(box, 7, 4);
        box.setSelColor(Blue);

        select(box, 0, 7);
        QCOMPARE(box.SelColor(), std::optional<quint32>(Red));
        select(box, 7, 4);
        QCOMPARE(box.SelColor(), std::optional<quint32>(Blue));
        select(box, 5, 4);
        QCOMPARE(box.SelColor(), std::nullopt);
    }

    void emptySelectionReadsTheCharacterBeforeTheCaret()
    {
        RichTextBox box;
        box.setText(u"αβγ\nδε"_s);
        select(box, 1, 1);
        box.setSelColor(Red);
        box.setSelBold(true);
        select(box, 4, 1);
        box.setSelColor(Blue);

        box.setSelStart(2); // behind β
        QCOMPARE(box.SelColor(), std::optional<quint32>(Red));
        QCOMPARE(box.SelBold(), std::optional<bool>(true));
        box.setSelStart(1); // behind α
        QCOMPARE(box.SelColor(), std::optional<quint32>(0));
        QCOMPARE(box.SelBold(), std::optional<bool>(false));
        box.setSelStart(3); // behind γ
        QCOMPARE(box.SelColor(), std::optional<quint32>(0));
        // At the start of a paragraph there is nothing before the caret in it: the
        // paragraph's first character answers.
        box.setSelStart(4);
        QCOMPARE(box.SelColor(), std::optional<quint32>(Blue));
    }

    void hotWordProbeReadsTheFirstCharacterOfAnOccurrence()
    {
        // The hot-word search puts the caret one past the start of an occurrence and
        // reads the colour, then selects the phrase and reads it whole.
        RichTextBox box;
        box.setText(u"ναός ναός ναός"_s);
        select(box, 5, 4);
        box.setSelColor(Red);
        box.setSelStart(1);
        QCOMPARE(box.SelColor(), std::optional<quint32>(0));
        box.setSelStart(6);
        QCOMPARE(box.SelColor(), std::optional<quint32>(Red));
        select(box, 5, 4);
        QCOMPARE(box.SelColor(), std::optional<quint32>(Red));
        select(box, 4, 4);
        QCOMPARE(box.SelColor(), std::nullopt);
    }

    void hotWordsAreLocatedAtTheirFirstPaintedOccurrence()
    {
        RichTextBox box;
        box.setText(u"ΝΑΌΣ ναός ναός και δίχρωμη λέξη"_s);
        select(box, 5, 4);
        box.setSelColor(Red);
        select(box, 10, 4);
        box.setSelColor(Red);
        select(box, 19, 4);
        box.setSelColor(Red);
        select(box, 23, 3);
        box.setSelColor(Blue);

        QCOMPARE(locatePaintedPhrase(box, u"ναός"_s), 5);
        QCOMPARE(locatePaintedPhrase(box, u"ΝΑΟΣ"_s), -1); // the accent counts
        QCOMPARE(locatePaintedPhrase(box, u"δίχρωμη"_s), -1);
        QCOMPARE(box.SelStart(), 19); // the search stopped there all the same
        QCOMPARE(locatePaintedPhrase(box, u"λέξη"_s), -1);
    }

    void aSourceOfTheCourseLoadsWithItsPaintedWords()
    {
        RichTextBox box;
        box.setFont(QFont(u"Times New Roman"_s, 12));
        box.setLocked(true);
        box.LoadFile(QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/piges/knossos.rtf"), 0);
        const QString text = box.Text();
        QVERIFY(!text.contains(u'\\'));
        QVERIFY(!text.contains(u'{'));
        const int at = int(text.indexOf(u"Λαβύρινθου"_s));
        QVERIFY(at > 0);
        box.setSelStart(at + 1);
        QCOMPARE(box.SelColor(), std::optional<quint32>(0x0000C0)); // RGB(192, 0, 0)
        QCOMPARE(locatePaintedPhrase(box, u"λαβύρινθου"_s), at);
        box.setSelStart(1);
        QCOMPARE(box.SelColor(), std::optional<quint32>(0));
    }

    void characterReadingsAreNullOverMixedSelections()
    {
        RichTextBox box;
        box.setText(u"αβγδεζ"_s);
        select(box, 0, 3);
        box.setSelBold(true);
        box.setSelItalic(true);
        box.setSelUnderline(true);
        box.setSelStrikeThru(true);
        box.setSelFontName(u"DejaVu Sans"_s);
        box.setSelFontSize(20);

        select(box, 0, 3);
        QCOMPARE(box.SelBold(), std::optional<bool>(true));
        QCOMPARE(box.SelItalic(), std::optional<bool>(true));
        QCOMPARE(box.SelUnderline(), std::optional<bool>(true));
        QCOMPARE(box.SelStrikeThru(), std::optional<bool>(true));
        QCOMPARE(box.SelFontName(), std::optional<QString>(u"DejaVu Sans"_s));
        QCOMPARE(box.SelFontSize(), std::optional<double>(20));

        select(box, 3, 3);
        QCOMPARE(box.SelBold(), std::optional<bool>(false));
        QCOMPARE(box.SelFontSize(), std::optional<double>(box.font().pointSizeF()));

        select(box, 2, 2);
        QCOMPARE(box.SelBold(), std::nullopt);
        QCOMPARE(box.SelItalic(), std::nullopt);
        QCOMPARE(box.SelUnderline(), std::nullopt);
        QCOMPARE(box.SelStrikeThru(), std::nullopt);
        QCOMPARE(box.SelFontName(), std::nullopt);
        QCOMPARE(box.SelFontSize(), std::nullopt);
    }

    void formatSetOnAnEmptySelectionIsReadBackAndTyped()
    {
        RichTextBox box;
        box.setText(u"αβ"_s);
        box.setSelStart(2);
        box.setSelBold(true);
        QCOMPARE(box.SelBold(), std::optional<bool>(true));
        box.setSelText(u"γ"_s);
        select(box, 2, 1);
        QCOMPARE(box.SelBold(), std::optional<bool>(true));
    }

    void paragraphReadingsAreNullOverMixedParagraphs()
    {
        RichTextBox box;
        box.setText(u"ένα\nδύο\nτρία"_s);
        select(box, 0, 1);
        box.setSelAlignment(RichTextBox::AlignCenter);
        box.setSelBullet(true);
        box.setSelIndent(720);
        box.setSelRightIndent(300);
        box.setSelTabCount(1);
        box.setSelTabs(0, 1000);

        select(box, 0, 2);
        QCOMPARE(box.SelAlignment(), std::optional<int>(RichTextBox::AlignCenter));
        QCOMPARE(box.SelBullet(), std::optional<bool>(true));
        QCOMPARE(box.SelIndent(), std::optional<int>(720));
        QCOMPARE(box.SelRightIndent(), std::optional<int>(300));
        QCOMPARE(box.SelTabCount(), std::optional<int>(1));
        QCOMPARE(box.SelTabs(0), std::optional<int>(1000));

        select(box, 2, 4); // the first and the second paragraph
        QCOMPARE(box.SelAlignment(), std::nullopt);
        QCOMPARE(box.SelBullet(), std::nullopt);
        QCOMPARE(box.SelIndent(), std::nullopt);
        QCOMPARE(box.SelRightIndent(), std::nullopt);
        QCOMPARE(box.SelTabCount(), std::nullopt);
        QCOMPARE(box.SelTabs(0), std::nullopt);

        // A selection that ends at the start of a paragraph does not reach into it.
        select(box, 0, 4);
        QCOMPARE(box.SelAlignment(), std::optional<int>(RichTextBox::AlignCenter));
    }

    void alignmentTakesTheThreeValues()
    {
        RichTextBox box;
        box.setText(u"α\nβ"_s);
        for (int alignment : {RichTextBox::AlignRight, RichTextBox::AlignCenter, RichTextBox::AlignLeft}) {
            box.setSelStart(0);
            box.setSelAlignment(alignment);
            QCOMPARE(box.SelAlignment(), std::optional<int>(alignment));
        }
        QCOMPARE(errorNumberOf([&] { box.setSelAlignment(7); }), 380);
    }

    void indentsKeepEachOther()
    {
        RichTextBox box;
        box.setText(u"παράγραφος"_s);
        box.setSelIndent(1200);
        box.setSelHangingIndent(500);
        QCOMPARE(box.SelIndent(), std::optional<int>(1200));
        QCOMPARE(box.SelHangingIndent(), std::optional<int>(500));
        box.setSelIndent(300);
        QCOMPARE(box.SelHangingIndent(), std::optional<int>(500));
        const QTextBlockFormat format = box.document()->firstBlock().blockFormat();
        QCOMPARE(format.leftMargin(), 800.0 / 15);
        QCOMPARE(format.textIndent(), -500.0 / 15);
    }

    void bulletKeepsItsIndents()
    {
        RichTextBox box;
        box.setText(u"κουκίδα"_s);
        box.setSelBullet(true);
        box.setSelIndent(600);
        box.setSelHangingIndent(400);
        QCOMPARE(box.SelIndent(), std::optional<int>(600));
        QCOMPARE(box.SelHangingIndent(), std::optional<int>(400));
        box.setSelBullet(false);
        QCOMPARE(box.SelBullet(), std::optional<bool>(false));
        QCOMPARE(box.SelIndent(), std::optional<int>(600));
        QCOMPARE(box.SelHangingIndent(), std::optional<int>(400));
    }

    void tabCountAddsAndDropsStops()
    {
        RichTextBox box;
        box.setText(u"α\tβ"_s);
        QCOMPARE(box.SelTabCount(), std::optional<int>(0));
        QCOMPARE(box.SelTabs(0), std::nullopt);
        box.setSelTabCount(3);
        QCOMPARE(box.SelTabs(2), std::optional<int>(3 * 720));
        box.setSelTabs(0, 200);
        box.setSelTabCount(1);
        QCOMPARE(box.SelTabCount(), std::optional<int>(1));
        QCOMPARE(box.SelTabs(0), std::optional<int>(200));
    }

    // --- Find ------------------------------------------------------------------------------

    void find_data()
    {
        QTest::addColumn<QString>("needle");
        QTest::addColumn<int>("options");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("expected");

        // Σωκράτης at 2, ΣΩΚΡΆΤΗΣ at 19, σωκρατικός at 31, Σωκράτη at 42.
        QTest::newRow("any case, accented capitals") << u"σωκράτης"_s << 0 << 0 << 2;
        QTest::newRow("any case, from behind the first") << u"σωκράτης"_s << 0 << 3 << 19;
        QTest::newRow("final sigma matches sigma") << u"ΣΩΚΡΆΤΗΣ"_s << 0 << 0 << 2;
        QTest::newRow("inside a word") << u"σωκρατ"_s << 0 << 20 << 31;
        QTest::newRow("whole word skips part of a word") << u"Σωκράτη"_s << 2 << 0 << 42;
        QTest::newRow("match case") << u"ΣΩΚΡΆΤΗΣ"_s << 4 << 0 << 19;
        QTest::newRow("match case misses") << u"σωκράτης"_s << 4 << 0 << -1;
        QTest::newRow("whole word and case") << u"σωκράτη"_s << 6 << 0 << -1;
        QTest::newRow("whole word and case hit") << u"Σωκράτη"_s << 6 << 0 << 42;
        QTest::newRow("whole word, any case") << u"σωκρατικός"_s << 2 << 0 << 31;
        QTest::newRow("absent") << u"Πλάτων"_s << 0 << 0 << -1;
    }

    void find()
    {
        QFETCH(QString, needle);
        QFETCH(int, options);
        QFETCH(int, start);
        QFETCH(int, expected);
        RichTextBox box;
        box.setText(u"Ο Σωκράτης μίλησε. ΣΩΚΡΆΤΗΣ, ο σωκρατικός Σωκράτη άκουσε"_s);
        box.setSelStart(1);
        QCOMPARE(box.Find(needle, start, box.TextLength(), options), expected);
        if (expected >= 0) {
            QCOMPARE(box.SelStart(), expected);
            QCOMPARE(box.SelLength(), int(needle.size()));
        } else {
            QCOMPARE(box.SelStart(), 1);
            QCOMPARE(box.SelLength(), 0);
        }
    }

    void greekFoldsAccentedCapitalsAndFinalSigma()
    {
        QCOMPARE(richtextbox::foldCase(u"ΆΈΉΊΌΎΏΪΫ ΑΣ ας Σ"_s), u"άέήίόύώϊϋ ασ ασ σ"_s);
        QCOMPARE(richtextbox::foldCase(u"ABC"_s), u"abc"_s);
        QVERIFY(richtextbox::isWordCharacter(u'ά'));
        QVERIFY(richtextbox::isWordCharacter(u'7'));
        QVERIFY(!richtextbox::isWordCharacter(u'·'));
        QVERIFY(!richtextbox::isWordCharacter(u';'));
    }

    void findKeepsWithinTheRange()
    {
        RichTextBox box;
        box.setText(u"αβγ αβγ αβγ"_s);
        QCOMPARE(box.Find(u"αβγ"_s, 1, 7), 4);
        QCOMPARE(box.Find(u"αβγ"_s, 1, 6), -1); // the match would run past the end
        QCOMPARE(box.Find(u"αβγ"_s, 9, -1), -1);
        QCOMPARE(box.Find(QString(), 0, -1), -1);
    }

    void findSeesTextChangedSinceTheLastSearch()
    {
        RichTextBox box;
        box.setText(u"αλφα"_s);
        QCOMPARE(box.Find(u"ΒΗΤΑ"_s), -1);
        box.setSelStart(4);
        box.setSelText(u" βήτα"_s);
        QCOMPARE(box.Find(u"ΒΉΤΑ"_s), 5);
    }

    // --- The box -----------------------------------------------------------------------------

    void lockedBoxRefusesTheUserButNotTheProgram()
    {
        RichTextBox box;
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        box.setText(u"κλειδωμένο"_s);
        box.setLocked(true);
        QVERIFY(box.Locked());
        box.setSelStart(3);
        QTest::keyClicks(&box, u"x"_s);
        QCOMPARE(box.Text(), u"κλειδωμένο"_s);
        box.setSelText(u"Χ"_s);
        QCOMPARE(box.Text(), u"κλεΧιδωμένο"_s);
        QTest::keyClick(&box, Qt::Key_Right);
        QCOMPARE(box.SelStart(), 5);
        box.setLocked(false);
        QVERIFY(!box.Locked());
    }

    void backColorIsAColourNumber()
    {
        RichTextBox box;
        box.setBackColor(0xC1EEFE); // RGB(254, 238, 193)
        QCOMPARE(box.BackColor(), quint32(0xC1EEFE));
        QCOMPARE(box.viewport()->palette().color(QPalette::Base), QColor(254, 238, 193));
    }

    void colourNumbersAreBlueGreenRed()
    {
        QCOMPARE(RichTextBox::colorNumber(QColor(255, 224, 175)), quint32(0xAFE0FF));
        QCOMPARE(RichTextBox::colorFromNumber(0xAFE0FF), QColor(255, 224, 175));
        QCOMPARE(RichTextBox::colorNumber(Qt::black), quint32(0));
    }

    void rightMarginWrapsAtItsDistance()
    {
        RichTextBox box;
        box.resize(600, 300);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QString words;
        for (int i = 0; i < 40; ++i)
            words += u"λέξη "_s;
        box.setText(words);
        const int wide = box.LineCount();
        box.setRightMargin(1500); // 100 pixels
        QCOMPARE(box.RightMargin(), 1500);
        QCOMPARE_GT(box.LineCount(), wide);
        box.setRightMargin(0);
        QCOMPARE(box.LineCount(), wide);
    }

    void mousePointerShowsTheIconWhenCustom()
    {
        RichTextBox box;
        QPixmap hand(16, 16);
        hand.fill(Qt::red);
        box.setMouseIcon(QCursor(hand, 1, 1));
        box.setMousePointer(RichTextBox::CustomPointer);
        QCOMPARE(box.MousePointer(), 99);
        QCOMPARE(box.viewport()->cursor().shape(), Qt::BitmapCursor);
        box.setMousePointer(RichTextBox::HourglassPointer);
        QCOMPARE(box.viewport()->cursor().shape(), Qt::WaitCursor);
        box.setMousePointer(RichTextBox::DefaultPointer);
        QCOMPARE(box.viewport()->cursor().shape(), Qt::IBeamCursor);
        box.setLocked(true);
        QCOMPARE(box.viewport()->cursor().shape(), Qt::IBeamCursor);
    }

    void moveTakesTwips()
    {
        QWidget window;
        RichTextBox box(&window);
        box.Move(1074, 450, 7031, 4004);
        QCOMPARE(box.geometry(), QRect(72, 30, 469, 267));
        box.Move(150, 300);
        QCOMPARE(box.geometry(), QRect(10, 20, 469, 267));
    }

    // --- Signals ----------------------------------------------------------------------------

    void changeComesForEveryEdit()
    {
        RichTextBox box;
        QSignalSpy change(&box, &RichTextBox::Change);
        box.setText(u"αβγ"_s);
        QCOMPARE_GE(change.count(), 1);
        change.clear();
        select(box, 0, 1);
        QCOMPARE(change.count(), 0);
        box.setSelBold(true);
        QCOMPARE_GE(change.count(), 1);
        change.clear();
        box.setSelText(u"Χ"_s);
        QCOMPARE_GE(change.count(), 1);
    }

    void selChangeComesWhenTheSelectionMoves()
    {
        RichTextBox box;
        box.setText(u"αβγδ"_s);
        box.setSelStart(0);
        QSignalSpy moved(&box, &RichTextBox::SelChange);
        box.setSelStart(2);
        QCOMPARE(moved.count(), 1);
        box.setSelStart(2);
        QCOMPARE(moved.count(), 1);
        box.setSelLength(1);
        QCOMPARE(moved.count(), 2);
    }

    void mouseUpSeesTheCaretTheClickSet()
    {
        RichTextBox box;
        box.resize(300, 100);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        box.setText(u"ένα δύο τρία"_s);
        box.setLocked(true);
        QTextCursor c(box.document());
        c.setPosition(5);
        const QPoint at = box.cursorRect(c).center() + QPoint(1, 0);
        int selStartAtUp = -1;
        double xAtUp = -1;
        connect(&box, &RichTextBox::MouseUp, &box, [&](int button, int, double x, double) {
            QCOMPARE(button, 1);
            selStartAtUp = box.SelStart();
            xAtUp = x;
        });
        QTest::mouseClick(box.viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(selStartAtUp, 5);
        QCOMPARE(xAtUp, double(box.viewport()->mapTo(&box, at).x() * 15));
    }

    void aManualDropIsLeftToTheWindow()
    {
        // The window system hands drops to the handler; the test does the same.
        struct DropTarget : RichTextBox
        {
            using RichTextBox::dropEvent;
        } box;
        box.setText(u"αβ"_s);
        box.setOleDropManual(true);
        int dropped = 0;
        connect(&box, &RichTextBox::OLEDragDrop, &box, [&](const QMimeData *data) {
            QVERIFY(data->hasImage());
            ++dropped;
        });
        QMimeData data;
        data.setImageData(QImage(4, 4, QImage::Format_RGB32));
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        box.dropEvent(&drop);
        QCOMPARE(dropped, 1);
        QCOMPARE(box.Text(), u"αβ"_s);
    }

    void aManualDropBoxWelcomesDataItCouldNotInsertItself()
    {
        struct DropTarget : RichTextBox
        {
            using RichTextBox::dragEnterEvent;
            using RichTextBox::dragMoveEvent;
        } box;
        QMimeData data;
        data.setData(u"application/x-unknown"_s, "?");
        QDragEnterEvent refused(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        refused.setAccepted(false);
        box.dragEnterEvent(&refused);
        QVERIFY(!refused.isAccepted());
        box.setOleDropManual(true);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        enter.setAccepted(false);
        box.dragEnterEvent(&enter);
        QVERIFY(enter.isAccepted());
        QDragMoveEvent move(QPoint(6, 6), Qt::CopyAction, &data, Qt::LeftButton, {});
        move.setAccepted(false);
        box.dragMoveEvent(&move);
        QVERIFY(move.isAccepted());
    }

    void aBitmapOnTheClipboardPastesAsAPicture()
    {
        RichTextBox box;
        box.setText(u"αβ"_s);
        box.setSelStart(1);
        QImage image(6, 4, QImage::Format_RGB32);
        image.fill(Qt::green);
        QApplication::clipboard()->setImage(image);
        box.paste();
        QCOMPARE(box.TextLength(), 3);
        QCOMPARE(box.Text().at(1), QChar(QChar::ObjectReplacementCharacter));
        // And it is saved as a picture.
        const richtext::PlainText saved = richtext::readPlainText(richtext::writeDocument(*box.document()));
        QCOMPARE(saved.text.left(3), u"α\uFFFCβ"_s);
    }

    void mouseMoveComesWithoutAButtonInTwips()
    {
        RichTextBox box;
        box.resize(300, 100);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QList<QList<double>> moves;
        connect(&box, &RichTextBox::MouseMove, &box, [&](int button, int shift, double x, double y) {
            moves.append({double(button), double(shift), x, y});
        });
        QMouseEvent move(QEvent::MouseMove, QPointF(20, 10), box.viewport()->mapToGlobal(QPointF(20, 10)),
            Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(box.viewport(), &move);
        QVERIFY(!moves.isEmpty());
        const QPoint inBox = box.viewport()->mapTo(&box, QPoint(20, 10));
        QCOMPARE(moves.last(), (QList<double> {0, 0, inBox.x() * 15.0, inBox.y() * 15.0}));
    }

    void undoIsOneLevelAndTogglesBack()
    {
        RichTextBox box;
        box.setText(u"αβ"_s);
        box.setSelStart(2);
        box.setSelText(u"γ"_s);
        box.setSelStart(0);
        box.setSelText(u"Χ"_s);
        QCOMPARE(box.Text(), u"Χαβγ"_s);
        QVERIFY(box.CanUndo());
        box.Undo();
        QCOMPARE(box.Text(), u"αβγ"_s);
        box.Undo();
        QCOMPARE(box.Text(), u"Χαβγ"_s);
        box.Undo();
        QCOMPARE(box.Text(), u"αβγ"_s);
    }

    void undoKeyUsesTheOneLevel()
    {
        RichTextBox box;
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        box.setText(QString());
        QTest::keyClicks(&box, u"ab"_s);
        QTest::keyClick(&box, Qt::Key_Return);
        QTest::keyClicks(&box, u"c"_s);
        const QString typed = box.Text();
        QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(box.Text() != typed);
        QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(box.Text(), typed);
        QTest::keyClick(&box, Qt::Key_Y, Qt::ControlModifier); // no redo beside the toggle
        QCOMPARE(box.Text(), typed);
    }
};

QTEST_MAIN(tst_RichTextBox)
#include "tst_richtextbox.moc"
