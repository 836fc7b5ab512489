#include "paintedrtf.h"
#include "testcontent.h"

#include <clstexts.h>
#include <colhotwords.h>
#include <hotwordlocator.h>
#include <hotwordtextmodel.h>
#include <phrasesearch.h>
#include <rtf.h>
#include <runtimeerror.h>

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using paintedrtf::Black;
using paintedrtf::Blue;
using paintedrtf::Green;
using paintedrtf::Red;

namespace {

std::unique_ptr<PlainTextHotWordModel> model(std::initializer_list<paintedrtf::Piece> pieces)
{
    return std::make_unique<PlainTextHotWordModel>(richtext::readPlainText(paintedrtf::rtf(pieces)));
}

CHotWord &addComment(colHotWords &words, const QString &exactPhrase, const QString &comment = u"σχόλιο"_s)
{
    return words.Add(0, 0, exactPhrase, comment, QString(), CHotWord::CommentType, 3, QString());
}

CHotWord &addTerm(colHotWords &words, const QString &exactPhrase, const QString &term)
{
    return words.Add(0, 0, exactPhrase, u"εξήγηση"_s, QString(), CHotWord::IndexTermType, 1, term);
}

int runtimeErrorOf(const std::function<void()> &call)
{
    try {
        call();
    } catch (const platform::RuntimeError &e) {
        return e.number();
    }
    return 0;
}

// A text whose colour reading fails after a number of reads, as a control may fail.
class FailingModel final : public HotWordTextModel
{
public:
    FailingModel(QString text, int readsBeforeFailing)
        : m_inner(text, std::vector<quint32>(std::size_t(text.size()), Red))
        , m_reads(readsBeforeFailing)
    {
    }
    QString Text() const override { return m_inner.Text(); }
    int SelStart() const override { return m_inner.SelStart(); }
    void setSelStart(int place) override { m_inner.setSelStart(place); }
    int SelLength() const override { return m_inner.SelLength(); }
    void setSelLength(int length) override { m_inner.setSelLength(length); }
    std::optional<quint32> SelColor() const override
    {
        if (m_reads-- <= 0)
            throw platform::RuntimeError(5, u"Μη έγκυρη κλήση διαδικασίας ή όρισμα"_s);
        return m_inner.SelColor();
    }

private:
    PlainTextHotWordModel m_inner;
    mutable int m_reads;
};

} // namespace

class tst_HotWords : public QObject
{
    Q_OBJECT

private slots:
    // --- The collection ---------------------------------------------------------------

    void addCopiesTheValuesIntoANewRecord()
    {
        colHotWords words;
        CHotWord &w = words.Add(9, 4, u"φράση"_s, u"σχόλιο"_s, u"a.jpg"_s, 0, 2, u"όρος"_s);
        QCOMPARE(w.Last(), 9);
        QCOMPARE(w.First(), 4);
        QCOMPARE(w.ExactPhrase(), u"φράση"_s);
        QCOMPARE(w.Comment(), u"σχόλιο"_s);
        QCOMPARE(w.Photo(), u"a.jpg"_s);
        QCOMPARE(w.HotwordType(), 0);
        QCOMPARE(w.IndexType(), 2);
        QCOMPARE(w.phrase(), u"όρος"_s);
        QCOMPARE(&words.Item(1), &w);
    }

    void membersKeepTheOrderOfInsertion()
    {
        colHotWords words;
        addComment(words, u"α"_s);
        addComment(words, u"β"_s);
        addComment(words, u"α"_s);
        QCOMPARE(words.Count(), 3);
        QStringList order;
        for (const CHotWord &w : words)
            order << w.ExactPhrase();
        QCOMPARE(order, (QStringList {u"α"_s, u"β"_s, u"α"_s}));
    }

    void keysFindMembersAndRefuseDoubles()
    {
        colHotWords words;
        words.Add(0, 0, u"α"_s, QString(), QString(), 1, 3, QString(), u"κλειδί"_s);
        addComment(words, u"β"_s);
        QCOMPARE(words.Item(u"ΚΛΕΙΔΊ"_s).ExactPhrase(), u"α"_s);
        QCOMPARE(runtimeErrorOf(
                     [&] { words.Add(0, 0, u"γ"_s, QString(), QString(), 1, 3, QString(), u"κλειδί"_s); }),
            457);
        QCOMPARE(runtimeErrorOf([&] { words.Item(u"άλλο"_s); }), 5);
        words.Remove(u"κλειδί"_s);
        QCOMPARE(words.Count(), 1);
        QCOMPARE(words.Item(1).ExactPhrase(), u"β"_s);
    }

    void aBadIndexIsTheCollectionsError()
    {
        colHotWords words;
        addComment(words, u"α"_s);
        QCOMPARE(runtimeErrorOf([&] { words.Item(0); }), 9);
        QCOMPARE(runtimeErrorOf([&] { words.Item(2); }), 9);
        QCOMPARE(runtimeErrorOf([&] { words.Remove(2); }), 9);
        words.Remove(1);
        QCOMPARE(words.Count(), 0);
    }

    // --- Building from the database ---------------------------------------------------

    void commentsComeFirstThenIndexTerms()
    {
        testcontent::Builder b;
        b.textResource(7, u"t.rtf"_s);
        b.term(20, u"Νάξος"_s, u"Νησί"_s, 2, u"naxos.jpg"_s);
        b.termLink(20, 7, u"Νάξο"_s);
        b.comment(1, u"Πρώτο σχόλιο"_s, u"c1.jpg"_s);
        b.commentLink(1, 7, u"σμύριδα"_s);
        b.comment(2, u"Δεύτερο σχόλιο"_s);
        b.commentLink(2, 7, u"μάρμαρο"_s);
        auto db = b.database();

        const auto words = clsTexts(*db, u"/data"_s).HotWords(7);
        QCOMPARE(words->Count(), 3);
        const CHotWord &c1 = words->Item(1);
        QCOMPARE(c1.HotwordType(), 1);
        QCOMPARE(c1.IndexType(), 3);
        QCOMPARE(c1.phrase(), QString());
        QCOMPARE(c1.Comment(), u"Πρώτο σχόλιο"_s);
        QCOMPARE(c1.ExactPhrase(), u"σμύριδα"_s);
        QCOMPARE(c1.Photo(), u"/data/photos/c1.jpg"_s);
        QCOMPARE(c1.First(), 0);
        QCOMPARE(c1.Last(), 0);
        QCOMPARE(words->Item(2).Photo(), QString()); // Null picture
        const CHotWord &t = words->Item(3);
        QCOMPARE(t.HotwordType(), 0);
        QCOMPARE(t.phrase(), u"Νάξος"_s);
        QCOMPARE(t.Comment(), u"Νησί"_s);
        QCOMPARE(t.IndexType(), 2);
        QCOMPARE(t.Photo(), u"naxos.jpg"_s); // the bare name, for the index
        QCOMPARE(t.ExactPhrase(), u"Νάξο"_s);
    }

    void aCommentWithAnEmptyPictureHasNoPhoto()
    {
        testcontent::Builder b;
        b.textResource(7, u"t.rtf"_s);
        b.comment(1, u"σχόλιο"_s, u""_s);
        b.commentLink(1, 7, u"λέξη"_s);
        auto db = b.database();
        const auto words = clsTexts(*db, u"/data"_s).HotWords(7);
        QCOMPARE(words->Item(1).Photo(), QString());
    }

    void aCommentPictureResolvesInTheFolderOnDisk()
    {
        QTemporaryDir dir;
        QDir(dir.path()).mkdir(u"Photos"_s);
        QFile f(dir.path() + u"/Photos/Pic.JPG"_s);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.close();
        testcontent::Builder b;
        b.textResource(7, u"t.rtf"_s);
        b.comment(1, u"σχόλιο"_s, u"pic.jpg"_s);
        b.commentLink(1, 7, u"λέξη"_s);
        auto db = b.database();
        const auto words = clsTexts(*db, dir.path()).HotWords(7);
        QCOMPARE(words->Item(1).Photo(), dir.path() + u"/Photos/Pic.JPG"_s);
    }

    void anIndexTermWithoutTypeHasIndexTypeZeroAndNoPicture()
    {
        testcontent::Builder b;
        b.textResource(7, u"t.rtf"_s);
        b.term(20, u"όρος"_s, u"εξήγηση"_s, QVariant());
        b.termLink(20, 7, u"όρο"_s);
        auto db = b.database();
        const auto words = clsTexts(*db, u"/data"_s).HotWords(7);
        QCOMPARE(words->Item(1).IndexType(), 0);
        QCOMPARE(words->Item(1).Photo(), QString());
    }

    void aResourceWithNoLinksHasNoHotWords()
    {
        testcontent::Builder b;
        b.textResource(7, u"t.rtf"_s);
        b.comment(1, u"σχόλιο"_s);
        b.commentLink(1, 8, u"λέξη"_s);
        auto db = b.database();
        const auto words = clsTexts(*db, u"/data"_s).HotWords(7);
        QCOMPARE(words->Count(), 0);

        auto text = model({{u"λέξη"_s, Red}});
        hotwords::FillHotWords(*text, *words);
        QCOMPARE(words->Count(), 0);
        QCOMPARE(hotwords::HitHotWord(*words, 0), nullptr);
    }

    void aNullInATextColumnIsInvalidUseOfNull_data()
    {
        QTest::addColumn<int>("which");
        QTest::newRow("Comment") << 0;
        QTest::newRow("comment ExactPhrase") << 1;
        QTest::newRow("Oros") << 2;
        QTest::newRow("Epexigisi") << 3;
        QTest::newRow("term ExactPhrase") << 4;
    }

    void aNullInATextColumnIsInvalidUseOfNull()
    {
        QFETCH(int, which);
        testcontent::Builder b;
        b.textResource(7, u"t.rtf"_s);
        b.comment(1, which == 0 ? QVariant() : QVariant(u"σχόλιο"_s));
        b.commentLink(1, 7, which == 1 ? QVariant() : QVariant(u"λέξη"_s));
        b.term(2, which == 2 ? QVariant() : QVariant(u"όρος"_s),
            which == 3 ? QVariant() : QVariant(u"εξήγηση"_s), 1);
        b.termLink(2, 7, which == 4 ? QVariant() : QVariant(u"όρο"_s));
        auto db = b.database();
        try {
            clsTexts(*db, u"/data"_s).HotWords(7);
            QFAIL("no error");
        } catch (const platform::RuntimeError &e) {
            QCOMPARE(e.number(), 94);
            QCOMPARE(e.description(), u"Μη έγκυρη χρήση του Null"_s);
        }
    }

    void theQueriesAreTheContentsOwn()
    {
        QCOMPARE(clsTexts::commentsQuery(42),
            u"SELECT Comments.CommentID, Comments.Comment, Comments.Picture, RelCommentResource.ExactPhrase "
            "FROM Resources INNER JOIN (Comments INNER JOIN RelCommentResource "
            "ON (Comments.CommentID = RelCommentResource.CommentID)) "
            "ON (Resources.ResourceID = RelCommentResource.ResourceID) WHERE Resources.ResourceID= 42"_s);
        QCOMPARE(clsTexts::indexTermsQuery(42),
            u"SELECT Euretirio.EuretirioID,Euretirio.Oros, Euretirio.Picture, "
            "Euretirio.Epexigisi,Euretirio.EuretirioTypeID, RelEuretirioResource.ExactPhrase "
            "FROM Resources INNER JOIN (Euretirio INNER JOIN RelEuretirioResource "
            "ON (Euretirio.EuretirioID = RelEuretirioResource.EuretirioID)) "
            "ON (Resources.ResourceID = RelEuretirioResource.ResourceID) WHERE Resources.ResourceID = 42"_s);
    }

    // --- Searching --------------------------------------------------------------------

    void inStrCountsFromOneAndIgnoresCaseTheGreekWay()
    {
        const hotwords::PhraseSearch s(u"Ο ΛΌΓΟΣ και ο λόγος"_s);
        QCOMPARE(s.InStr(1, u"λόγος"_s), 3);
        QCOMPARE(s.InStr(4, u"λόγος"_s), 15);
        QCOMPARE(s.InStr(16, u"λόγος"_s), 0);
        QCOMPARE(s.InStr(1, u"λογος"_s), 0); // accents count
        QCOMPARE(s.InStr(1, u"ΛΌΓΟΣ ΚΑΙ"_s), 3);
        QCOMPARE(s.InStr(1, u"σ"_s), 7);
    }

    void anEmptyPhraseIsFoundAtTheStartUntilItPassesTheEnd()
    {
        const hotwords::PhraseSearch s(u"αβγ"_s);
        QCOMPARE(s.InStr(1, QString()), 1);
        QCOMPARE(s.InStr(3, QString()), 3);
        QCOMPARE(s.InStr(4, QString()), 4);
        QCOMPARE(s.InStr(5, QString()), 0);
        QCOMPARE(hotwords::PhraseSearch(QString()).InStr(1, QString()), 0);
    }

    // --- Locating ---------------------------------------------------------------------

    void aPhraseIsLocatedAtItsFirstPaintedOccurrence()
    {
        // black, red, red
        auto text = model({{u"Η λέξη, "_s, Black}, {u"λέξη"_s, Red}, {u" και "_s, Black}, {u"λέξη"_s, Red}});
        colHotWords words;
        CHotWord &w = addComment(words, u"λέξη"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(w.First(), 8);
        QCOMPARE(w.Last(), 12);
        // The third occurrence stays dead text.
        QCOMPARE(hotwords::HitHotWord(words, 18), nullptr);
        QCOMPARE(hotwords::HitHotWord(words, 10), &w);
        QCOMPARE(text->SelStart(), 0);
        QCOMPARE(text->SelLength(), 0);
    }

    void anyColourButPureBlackCountsAsPaint()
    {
        auto text = model({{u"λέξη "_s, paintedrtf::ExplicitBlack}, {u"λέξη"_s, 0x010101}});
        colHotWords words;
        CHotWord &w = addComment(words, u"λέξη"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(w.First(), 5);
    }

    void aPhraseInSmallLettersFindsItInCapitals()
    {
        auto text = model({{u"Στη "_s, Black}, {u"ΝΑΞΟ"_s, Red}});
        colHotWords words;
        CHotWord &w = addComment(words, u"νάξο"_s);
        CHotWord &v = addComment(words, u"ναξο"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(w.First(), 0); // "Ά" and "Α" are different letters
        QCOMPARE(v.First(), 4);
        QCOMPARE(v.Last(), 8);
    }

    void finalSigmaAndAccentedCapitalsFold()
    {
        auto text
            = model({{u"Ο "_s, Black}, {u"ΆΡΧΟΝΤΑΣ"_s, Green}, {u" και ο "_s, Black}, {u"λαός"_s, Blue}});
        colHotWords words;
        CHotWord &a = addComment(words, u"άρχοντας"_s);
        CHotWord &b = addTerm(words, u"ΛΑΌΣ"_s, u"λαός"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(a.First(), 2);
        QCOMPARE(a.Last(), 10);
        QCOMPARE(b.First(), 17);
        QCOMPARE(b.Last(), 21);
    }

    void aPhrasePaintedInTwoColoursStaysUnlocated()
    {
        auto text = model(
            {{u"Η "_s, Black}, {u"λέ"_s, Red}, {u"ξη"_s, Blue}, {u" και η "_s, Black}, {u"λέξη"_s, Red}});
        colHotWords words;
        CHotWord &w = addComment(words, u"λέξη"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(w.First(), 0);
        QCOMPARE(w.Last(), 0);
        // The search stopped on the mixed occurrence; the later red one was not tried.
        QCOMPARE(text->SelStart(), 2);
        QCOMPARE(text->SelLength(), 4);
    }

    void twoRecordsOfOnePhraseGetOnePlaceAndTheFirstWins()
    {
        auto text = model({{u"Η "_s, Black}, {u"Δήλος"_s, Red}});
        colHotWords words;
        CHotWord &first = addComment(words, u"Δήλος"_s, u"πρώτο"_s);
        CHotWord &second = addComment(words, u"Δήλος"_s, u"δεύτερο"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(first.First(), 2);
        QCOMPARE(second.First(), 2);
        QCOMPARE(second.Last(), 7);
        for (int p = 2; p <= 7; ++p)
            QCOMPARE(hotwords::HitHotWord(words, p), &first);
    }

    void aCommentWinsOverAnIndexTermOnTheSamePlace()
    {
        testcontent::Builder b;
        b.textResource(7, u"t.rtf"_s);
        b.term(20, u"Νάξος"_s, u"Νησί"_s, 2);
        b.termLink(20, 7, u"Νάξο"_s);
        b.comment(1, u"σχόλιο"_s);
        b.commentLink(1, 7, u"Νάξο"_s);
        auto db = b.database();
        auto words = clsTexts(*db, u"/data"_s).HotWords(7);
        auto text = model({{u"Στη "_s, Black}, {u"Νάξο"_s, Red}});
        hotwords::FillHotWords(*text, *words);
        QCOMPARE(hotwords::HitHotWord(*words, 5)->HotwordType(), 1);
        QCOMPARE(words->Item(2).First(), 4);
    }

    void overlappingOccurrencesAreTriedOneCharacterOn()
    {
        // "ααα": the occurrence of "αα" at 0 begins black, the one at 1 begins red.
        auto text = model({{u"α"_s, Black}, {u"αα"_s, Red}});
        colHotWords words;
        CHotWord &w = addComment(words, u"αα"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(w.First(), 1);
        QCOMPARE(w.Last(), 3);
    }

    void overlappingPhrasesAreLocatedEachOnItsOwn()
    {
        auto text = model({{u"Η "_s, Black}, {u"Εποχή του Χαλκού"_s, Red}});
        colHotWords words;
        CHotWord &term = addTerm(words, u"Χαλκού"_s, u"χαλκός"_s);
        CHotWord &whole = addTerm(words, u"Εποχή του Χαλκού"_s, u"Εποχή του Χαλκού"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(term.First(), 12);
        QCOMPARE(whole.First(), 2);
        QCOMPARE(whole.Last(), 18);
        QCOMPARE(hotwords::HitHotWord(words, 14), &term); // the earlier member wins
        QCOMPARE(hotwords::HitHotWord(words, 5), &whole);
    }

    void anUnlocatedRecordAnswersAtPlaceZero()
    {
        auto text = model({{u"Κείμενο "_s, Black}, {u"λέξη"_s, Red}});
        colHotWords words;
        CHotWord &missing = addComment(words, u"απών"_s);
        CHotWord &found = addComment(words, u"λέξη"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(missing.First(), 0);
        QCOMPARE(missing.Last(), 0);
        QCOMPARE(found.First(), 8);
        QCOMPARE(hotwords::HitHotWord(words, 0), &missing);
        QCOMPARE(hotwords::HitHotWord(words, 1), nullptr);
    }

    void thePlaceJustBehindAPhraseStillBelongsToIt()
    {
        auto text = model({{u"Η "_s, Black}, {u"λέξη"_s, Red}, {u" εδώ"_s, Black}});
        colHotWords words;
        CHotWord &w = addComment(words, u"λέξη"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(hotwords::HitHotWord(words, 6), &w);
        QCOMPARE(hotwords::HitHotWord(words, 7), nullptr);
        QCOMPARE(hotwords::HitHotWord(words, 1), nullptr);
    }

    void aPhraseOnlyInBlackStaysUnlocatedWithTheCaretOnItsLastOccurrence()
    {
        auto text = model({{u"λέξη και λέξη"_s, Black}});
        colHotWords words;
        CHotWord &w = addComment(words, u"λέξη"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(w.First(), 0);
        QCOMPARE(w.Last(), 0);
        QCOMPARE(text->SelStart(), 10);
        QCOMPARE(text->SelLength(), 0);
    }

    void theNextRecordReadsTheSelectionTheSearchLeft()
    {
        // A located record puts the caret back at 0, where the first character is painted;
        // a record whose phrase is not in the text at all then reads that colour.
        auto text = model({{u"Νάξος"_s, Red}, {u" και "_s, Black}});
        colHotWords words;
        addComment(words, u"Νάξος"_s);
        CHotWord &absent = addComment(words, u"Πάρος"_s);
        hotwords::FillHotWords(*text, words);
        QCOMPARE(absent.First(), 0);
        QCOMPARE(absent.Last(), 5);
    }

    void anEmptyPhraseWalksThroughBlackTextAndStaysUnlocated()
    {
        auto text = model({{u"μαύρο"_s, Black}});
        colHotWords words;
        CHotWord &w = addComment(words, QString());
        hotwords::FillHotWords(*text, words);
        QCOMPARE(w.First(), 0);
        QCOMPARE(w.Last(), 0);
    }

    void anEmptyPhraseOnAPaintedCharacterSelectsNothing()
    {
        auto text = model({{u"μαύρο "_s, Black}, {u"κόκκινο"_s, Red}});
        colHotWords words;
        CHotWord &w = addComment(words, QString());
        hotwords::FillHotWords(*text, words);
        // The caret behind the first red character reads red; the empty selection
        // before it reads the black space, so the record is not taken.
        QCOMPARE(text->SelLength(), 0);
        QCOMPARE(w.First(), w.Last());

        auto painted = model({{u"κόκκινο"_s, Red}});
        colHotWords others;
        CHotWord &v = addComment(others, QString());
        hotwords::FillHotWords(*painted, others);
        QCOMPARE(v.First(), 0);
        QCOMPARE(v.Last(), 0);
        QCOMPARE(painted->SelLength(), 0);
    }

    void anErrorEndsTheLocatingQuietly()
    {
        FailingModel text(u"αβγ δεζ"_s, 2);
        colHotWords words;
        CHotWord &a = addComment(words, u"αβγ"_s);
        CHotWord &b = addComment(words, u"δεζ"_s);
        hotwords::FillHotWords(text, words);
        QCOMPARE(a.First(), 0);
        QCOMPARE(a.Last(), 3);
        QCOMPARE(b.First(), 0);
        QCOMPARE(b.Last(), 0);
    }

    void colourReadingsFollowTheCaretAndTheSelection()
    {
        PlainTextHotWordModel text(u"ab\ncd"_s, {Red, Blue, Black, Green, Green});
        text.setSelStart(0);
        QCOMPARE(text.SelColor(), std::optional<quint32>(Red)); // start of a paragraph: the one after
        text.setSelStart(2);
        QCOMPARE(text.SelColor(), std::optional<quint32>(Blue)); // the one before
        text.setSelStart(3);
        QCOMPARE(text.SelColor(), std::optional<quint32>(Green));
        text.setSelStart(0);
        text.setSelLength(2);
        QCOMPARE(text.SelColor(), std::nullopt);
        text.setSelStart(2);
        text.setSelLength(3);
        QCOMPARE(text.SelColor(), std::optional<quint32>(Green)); // paragraph ends do not count
        text.setSelStart(9);
        QCOMPARE(text.SelStart(), 5);
    }
};

QTEST_GUILESS_MAIN(tst_HotWords)
#include "tst_hotwords.moc"
