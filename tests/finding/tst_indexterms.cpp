// The index's queries without the window: tabs, lists in Greek order, a term's fields and
// the fitted picture.

#include "findingcontent.h"

#include <database.h>
#include <greekcollation.h>
#include <indexterms.h>
#include <runtimeerror.h>

#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QStringList termsOf(content::Database &db, qint32 type)
{
    QStringList out;
    for (const finding::IndexTerm &term : finding::IndexTerms(db, type))
        out << term.Oros;
    return out;
}

} // namespace

class tst_IndexTerms : public QObject
{
    Q_OBJECT

private slots:
    void theTermsStandInGreekDictionaryOrder()
    {
        const auto db = findingcontent::build();
        QCOMPARE(termsOf(*db, 0), findingcontent::dictionaryOrder());
        QCOMPARE(termsOf(*db, 1), findingcontent::dictionaryOrder());
    }

    void theSampleIndexStandsInGreekDictionaryOrder()
    {
        const QString path = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");
        if (!QFileInfo::exists(path))
            QSKIP("the sample course is not built");
        const auto db = content::Database::OpenDatabase(path);
        const QStringList terms = termsOf(*db, 0);
        QVERIFY(terms.size() > 20);
        for (qsizetype i = 1; i < terms.size(); ++i)
            QVERIFY2(content::compareText(terms.at(i - 1), terms.at(i)) <= 0, qPrintable(terms.at(i)));
        // The letters order, not the accent: "Άρθουρ Έβανς" comes after "Απόλλωνας" (π
        // before ρ), though its accented capital comes first among the code points.
        QVERIFY(terms.indexOf(u"Άρθουρ Έβανς"_s) > terms.indexOf(u"Απόλλωνας"_s));
    }

    void anEmptyTypeListsNothing()
    {
        const auto db = findingcontent::build();
        QVERIFY(finding::IndexTerms(*db, 42).isEmpty());
    }

    void theListQueryOfATypeAndOfAll()
    {
        QCOMPARE(finding::IndexListSQL(0), u"SELECT EuretirioID, Oros From Euretirio ORDER BY Oros"_s);
        QCOMPARE(finding::IndexListSQL(3),
            u"SELECT EuretirioID, Oros From Euretirio Where EuretirioTypeID = 3 ORDER BY Oros"_s);
    }

    void tabsFollowTheTypesAfterTheAlphabeticalOne()
    {
        const auto db = findingcontent::build();
        const QList<finding::IndexTab> tabs = finding::IndexTypeTabs(*db);
        QCOMPARE(tabs.size(), 1);
        QCOMPARE(tabs.at(0).key, u"tab1"_s);
        QCOMPARE(tabs.at(0).caption, u"Λέξεις"_s);
        QCOMPARE(finding::alphabeticalTab().key, u"tab0"_s);
        QCOMPARE(finding::alphabeticalTab().caption, u"Αλφαβητικό"_s);
    }

    void aTabsKeyGivesItsType()
    {
        QCOMPARE(finding::TypeOfTabKey(u"tab0"_s), 0);
        QCOMPARE(finding::TypeOfTabKey(u"tab12"_s), 12);
        QCOMPARE(finding::TypeOfTabKey(u"tab"_s), 0);
        QCOMPARE(finding::TypeOfTabKey(u"tab3x"_s), 3);
    }

    void aTermsFieldsReadNullAsEmpty()
    {
        testcontent::Builder b;
        b.term(1, u"Όρος"_s, QVariant(), 1, u"p.jpg"_s, QVariant(), u"v.webm"_s);
        const auto db = b.database();
        const finding::IndexTermDetails term = finding::TermDetails(*db, u"1"_s);
        QVERIFY(term.Epexigisi.isEmpty());
        QCOMPARE(term.Picture, u"p.jpg"_s);
        QVERIFY(term.Sound.isEmpty());
        QCOMPARE(term.Video, u"v.webm"_s);
        QVERIFY_THROWS_EXCEPTION(platform::RuntimeError, finding::TermDetails(*db, u"2"_s));
    }

    void aFittedPictureKeepsItsShapeAndIsCentred()
    {
        QCOMPARE(finding::FittedPictureRect(QSize(3000, 2000), QSize(1500, 1500)), QRect(500, 0, 2000, 2000));
        QCOMPARE(finding::FittedPictureRect(QSize(3000, 2000), QSize(6000, 1000)), QRect(0, 750, 3000, 500));
        QVERIFY(finding::FittedPictureRect(QSize(3000, 2000), QSize()).isNull());
    }
};

QTEST_GUILESS_MAIN(tst_IndexTerms)
#include "tst_indexterms.moc"
