// The Greek rules of the spell checker, on Debian's Greek dictionary (hunspell-el).

#include <checker.h>
#include <dictionary.h>
#include <greekwords.h>
#include <wordlists.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace spelling;

class tst_SpellChecker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void wordsToCheck();
    void lowerCaseWords();
    void capitalsWithoutAccentsAreRight();
    void capitalisedWords();
    void misspeltCapitalsSuggestInCapitals();
    void finalSigma();
    void sigmaInsideAWord();
    void missingAccentSuggested();
    void courseWordsNeverMarked();
    void ownWords();
    void misspellingsOfAText();
    void noDictionaryInAnEmptyFolder();
    void aLoadThatMayBeStopped();
    void pupilWordsFile();

private:
    std::shared_ptr<Dictionary> m_dictionary;
    std::unique_ptr<Checker> m_checker;
};

void tst_SpellChecker::initTestCase()
{
    QString why;
    m_dictionary = Dictionary::load(Dictionary::defaultFolders(), &why);
    QVERIFY2(m_dictionary, qPrintable(why));
    QCOMPARE(m_dictionary->encoding().toUpper(), QStringLiteral("ISO8859-7"));
}

void tst_SpellChecker::init()
{
    m_checker = std::make_unique<Checker>(m_dictionary);
}

void tst_SpellChecker::cleanup()
{
    m_checker.reset();
}

void tst_SpellChecker::wordsToCheck()
{
    const QString text = QStringLiteral("Ο Byron ήρθε το 1824 στο 3ος σ' αυτό ΚΟΣΜΟΣ-κόσμος α ἄνθρωπος");
    QStringList words;
    for (const WordSpan &span : checkableWords(text))
        words << text.mid(span.start, span.length);
    // Single letters, Latin words, words with digits, elided and polytonic words are
    // passed over.
    QCOMPARE(words,
        QStringList({QStringLiteral("ήρθε"), QStringLiteral("το"), QStringLiteral("στο"),
            QStringLiteral("αυτό"), QStringLiteral("ΚΟΣΜΟΣ"), QStringLiteral("κόσμος")}));
}

void tst_SpellChecker::lowerCaseWords()
{
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("κόσμος")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("σπίτι")));
    QVERIFY(m_checker->isMisspelt(QStringLiteral("σπιτι")));
    QVERIFY(m_checker->isMisspelt(QStringLiteral("κσόμος")));
    QCOMPARE(m_checker->suggestions(QStringLiteral("σπιτι")).value(0), QStringLiteral("σπίτι"));
}

void tst_SpellChecker::capitalsWithoutAccentsAreRight()
{
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("ΚΟΣΜΟΣ")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("ΚΌΣΜΟΣ")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("ΑΘΗΝΑ")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("ΕΠΑΝΑΣΤΑΣΗ")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("ΠΡΟΪΟΝ")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("ΙΣΤΟΡΙΑ")));
}

void tst_SpellChecker::capitalisedWords()
{
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("Κόσμος")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("Αθήνα")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("Ιστορία")));
    QVERIFY(m_checker->isMisspelt(QStringLiteral("Ιστορρία")));
}

void tst_SpellChecker::misspeltCapitalsSuggestInCapitals()
{
    QVERIFY(m_checker->isMisspelt(QStringLiteral("ΣΠΙΤΚ")));
    QVERIFY(m_checker->isMisspelt(QStringLiteral("ΕΠΑΝΣΤΑΣΗ")));
    for (const QString &word : {QStringLiteral("ΣΠΙΤΚ"), QStringLiteral("ΕΠΑΝΣΤΑΣΗ")}) {
        const QStringList suggestions = m_checker->suggestions(word);
        QVERIFY2(!suggestions.isEmpty(), qPrintable(word));
        QVERIFY(suggestions.size() <= 5);
        for (const QString &s : suggestions) {
            QCOMPARE(s, s.toUpper());
            QCOMPARE(s, withoutTonos(s));
        }
    }
    QVERIFY(m_checker->suggestions(QStringLiteral("ΣΠΙΤΚ")).contains(QStringLiteral("ΣΠΙΤΙ")));
    QVERIFY(m_checker->suggestions(QStringLiteral("ΕΠΑΝΣΤΑΣΗ")).contains(QStringLiteral("ΕΠΑΝΑΣΤΑΣΗ")));
}

void tst_SpellChecker::finalSigma()
{
    QVERIFY(m_checker->isMisspelt(QStringLiteral("κόσμοσ")));
    QCOMPARE(m_checker->suggestions(QStringLiteral("κόσμοσ")).value(0), QStringLiteral("κόσμος"));
    // The sigma comes first even when the accent is missing too.
    QCOMPARE(m_checker->suggestions(QStringLiteral("κοσμοσ")).value(0), QStringLiteral("κόσμος"));
    QVERIFY(m_checker->isMisspelt(QStringLiteral("Κόσμοσ")));
    QCOMPARE(m_checker->suggestions(QStringLiteral("Κόσμοσ")).value(0), QStringLiteral("Κόσμος"));
}

void tst_SpellChecker::sigmaInsideAWord()
{
    QVERIFY(m_checker->isMisspelt(QStringLiteral("κόςμος")));
    QCOMPARE(m_checker->suggestions(QStringLiteral("κόςμος")).value(0), QStringLiteral("κόσμος"));
}

void tst_SpellChecker::missingAccentSuggested()
{
    QVERIFY(m_checker->isMisspelt(QStringLiteral("καλημερα")));
    QVERIFY(m_checker->suggestions(QStringLiteral("καλημερα")).contains(QStringLiteral("καλημέρα")));
    QVERIFY(m_checker->suggestions(QStringLiteral("επανσταση")).contains(QStringLiteral("επανάσταση")));
}

void tst_SpellChecker::courseWordsNeverMarked()
{
    QVERIFY(m_checker->isMisspelt(QStringLiteral("Τρεμιδόπολη")));
    QVERIFY(m_checker->isMisspelt(QStringLiteral("ΤΡΕΜΙΔΟΠΟΛΗ")));
    m_checker->setCourseWords({QStringLiteral("η μάχη της Τρεμιδόπολης"), QStringLiteral("Τρεμιδόπολη")});
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("Τρεμιδόπολη")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("Τρεμιδόπολης")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("ΤΡΕΜΙΔΟΠΟΛΗ")));
    m_checker->setCourseWords({});
    QVERIFY(m_checker->isMisspelt(QStringLiteral("Τρεμιδόπολη")));
}

void tst_SpellChecker::ownWords()
{
    QVERIFY(m_checker->isMisspelt(QStringLiteral("μπλαμπλίζω")));
    m_checker->addOwnWord(QStringLiteral("μπλαμπλίζω"));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("μπλαμπλίζω")));
    QVERIFY(!m_checker->isMisspelt(QStringLiteral("ΜΠΛΑΜΠΛΙΖΩ")));
}

void tst_SpellChecker::misspellingsOfAText()
{
    const QString text = QStringLiteral("Ο κόσμοσ της ΑΘΗΝΑ και ο London γράφει σπιτι.");
    const QList<Checker::Misspelling> found = m_checker->misspellings(text);
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(0).word, QStringLiteral("κόσμοσ"));
    QCOMPARE(found.at(0).start, 2);
    QCOMPARE(found.at(1).word, QStringLiteral("σπιτι"));
    QCOMPARE(found.at(1).start, text.indexOf(QStringLiteral("σπιτι")));
}

void tst_SpellChecker::noDictionaryInAnEmptyFolder()
{
    const QString empty = QDir::tempPath() + QStringLiteral("/tremidia-no-dictionary");
    QString why;
    QVERIFY(!Dictionary::load({empty}, &why));
    QVERIFY(why.contains(QStringLiteral("hunspell-el")));
}

void tst_SpellChecker::aLoadThatMayBeStopped()
{
    std::atomic_bool cancelled = false;
    std::unique_ptr<Dictionary> loaded = Dictionary::load(Dictionary::defaultFolders(), nullptr, &cancelled);
    QVERIFY(loaded);
    QVERIFY(loaded->spell(QStringLiteral("κόσμος")));
    // Stopped while it loads: it gives up within a moment, not after the whole list.
    cancelled = false;
    std::unique_ptr<Dictionary> stopped;
    std::thread loader(
        [&] { stopped = Dictionary::load(Dictionary::defaultFolders(), nullptr, &cancelled); });
    QTest::qWait(20);
    cancelled = true;
    loader.join();
    QVERIFY(!stopped);
}

void tst_SpellChecker::pupilWordsFile()
{
    QTemporaryDir home;
    const QString path = home.filePath(QStringLiteral("data/tremidia/words.txt"));
    QVERIFY(appendPupilWord(path, QStringLiteral("μπλαμπλίζω")));
    QCOMPARE(readPupilWords(path), QStringList({QStringLiteral("μπλαμπλίζω")}));
    // A last line cut short keeps its word; the next one starts a line of its own.
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append));
    file.write(QStringLiteral("κομμένη").toUtf8());
    file.close();
    QVERIFY(appendPupilWord(path, QStringLiteral("Τρεμιδόπολη")));
    QCOMPARE(readPupilWords(path),
        QStringList(
            {QStringLiteral("μπλαμπλίζω"), QStringLiteral("κομμένη"), QStringLiteral("Τρεμιδόπολη")}));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(QStringLiteral("data"))));
    QCOMPARE(pupilWordsPath(), path);
}

QTEST_GUILESS_MAIN(tst_SpellChecker)
#include "tst_spellchecker.moc"
