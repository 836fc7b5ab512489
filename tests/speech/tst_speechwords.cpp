// What the voice is given: the words of a text, its sentences, the SSML with the words'
// marks, and the speed.

#include <rate.h>
#include <words.h>

#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

QStringList wordsOf(const QString &text)
{
    QStringList out;
    for (const speech::Word &w : speech::findWords(text))
        out << text.mid(w.start, w.length);
    return out;
}

} // namespace

class tst_SpeechWords : public QObject
{
    Q_OBJECT

private slots:
    void wordsLeaveOutSpacesAndPunctuation()
    {
        QCOMPARE(wordsOf(u"Ο Κλεισθένης, το 508 π.Χ., μοίρασε «τους» Αθηναίους!"_s),
            (QStringList {u"Ο"_s, u"Κλεισθένης"_s, u"το"_s, u"508"_s, u"π"_s, u"Χ"_s, u"μοίρασε"_s, u"τους"_s,
                u"Αθηναίους"_s}));
        QVERIFY(speech::findWords(u"  ,.;  "_s).isEmpty());
        QVERIFY(speech::findWords(QString()).isEmpty());
    }

    void sentencesStartAfterTheirStops()
    {
        const QString text = u"Πρώτη πρόταση. Δεύτερη; Τρίτη!\nΤέταρτη"_s;
        const QList<int> starts = speech::sentenceStarts(text);
        QStringList sentences;
        for (int i = 0; i < starts.size(); ++i)
            sentences << text.mid(starts.at(i), i + 1 < starts.size() ? starts.at(i + 1) - starts.at(i) : -1);
        QCOMPARE(
            sentences, (QStringList {u"Πρώτη πρόταση. "_s, u"Δεύτερη; "_s, u"Τρίτη!\n"_s, u"Τέταρτη"_s}));
    }

    void theSsmlMarksEveryWordAndKeepsTheText()
    {
        const QString text = u"Α & Β <γ> \"δ\" 'ε'\x01ζ"_s;
        const QList<speech::Word> words = speech::findWords(text);
        const QByteArray ssml = speech::ssmlWithMarks(text, words);
        QXmlStreamReader xml(ssml);
        QString said;
        QStringList marks;
        int sentences = 0;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.name() == u"s")
                ++sentences;
            if (xml.isStartElement() && xml.name() == u"mark")
                marks << xml.attributes().value(QStringLiteral("name")).toString();
            else if (xml.isCharacters())
                said += xml.text();
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(marks, (QStringList {u"0"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s}));
        QCOMPARE(sentences, 1);
        // The character XML cannot carry became a space; nothing moved.
        QCOMPARE(said, QString(text).replace(QChar(1), u' '));
    }

    void eachSentenceIsAnSsmlSentence()
    {
        const QString text = u"Πρώτη. Δεύτερη; Τρίτη"_s;
        QCOMPARE(speech::ssmlWithMarks(text, speech::findWords(text)),
            QStringLiteral("<speak><s><mark name=\"0\"/>Πρώτη. </s><s><mark name=\"1\"/>Δεύτερη; </s>"
                           "<s><mark name=\"2\"/>Τρίτη</s></speak>")
                .toUtf8());
    }

    void aBoxsTextKeepsItsPlaces()
    {
        const QString raw = u"α\u2029β\u00a0γ\u2028δ\ufffc"_s;
        const QString said = speech::sayableText(raw);
        QCOMPARE(said, u"α\nβ\u00a0γ\nδ "_s);
        QCOMPARE(said.size(), raw.size());
    }

    void theSpeedsMapOntoTheVoicesScale()
    {
        QCOMPARE(speech::voiceRate(100), 0);
        QCOMPARE(speech::voiceRate(50), -94);
        QCOMPARE(speech::voiceRate(250), 91);
        QCOMPARE(speech::voiceRate(10), speech::voiceRate(50));
        QCOMPARE(speech::voiceRate(400), speech::voiceRate(250));
        for (int p = speech::SlowestRate; p < speech::FastestRate; p += speech::RateStep)
            QVERIFY(speech::voiceRate(p) < speech::voiceRate(p + speech::RateStep));
    }
};

QTEST_MAIN(tst_SpeechWords)
#include "tst_speechwords.moc"
