// The database's Greek text order takes a short way when the first different letters
// decide; this proves that the short way orders exactly as the full rule does, over many
// texts made to be hard: capitals, accents, diaeresis, final sigma, Latin letters,
// digits, spaces, punctuation, prefixes of each other, and a few characters outside the
// short way's table.

#include <greekcollation.h>

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class tst_GreekOrderByLetters : public QObject
{
    Q_OBJECT

private:
    static QString randomText(QRandomGenerator &random, const QString &alphabet)
    {
        QString out;
        const int length = random.bounded(7);
        for (int i = 0; i < length; ++i)
            out += alphabet.at(random.bounded(int(alphabet.size())));
        return out;
    }

private slots:
    void theShortWayOrdersAsTheFullRule_data()
    {
        QTest::addColumn<QString>("alphabet");
        QTest::newRow("greek") << u"αάΑΆεέηήιίϊΐΙΪοόσςΣωώΩ"_s;
        QTest::newRow("greek and latin") << u"αΑάbBeéEσςΣoOöÖ"_s;
        QTest::newRow("spaces and punctuation") << u"αβ .,'\"-()ά:;!?0123"_s;
        QTest::newRow("every kind") << u"αάἀᾳβΒςσΣaAàæßøœ ñÑ1-'.\u0301ﬁЖ"_s;
    }

    void theShortWayOrdersAsTheFullRule()
    {
        QFETCH(QString, alphabet);
        QRandomGenerator random(1253);
        int decided = 0;
        constexpr int Pairs = 40000;
        for (int i = 0; i < Pairs; ++i) {
            const QString a = randomText(random, alphabet);
            // Half of the pairs share a beginning, as neighbours in a sorted list do.
            const QString b = random.bounded(2)
                ? a.left(random.bounded(int(a.size()) + 1)) + randomText(random, alphabet)
                : randomText(random, alphabet);
            const QByteArray ua = a.toUtf8();
            const QByteArray ub = b.toUtf8();
            const int full = content::compareText(a, b);
            const int expected = full < 0 ? -1 : (full > 0 ? 1 : 0);
            const int got = content::compareUtf8(std::string_view(ua.constData(), size_t(ua.size())),
                std::string_view(ub.constData(), size_t(ub.size())));
            if (got != expected)
                QFAIL(qPrintable(
                    u"\"%1\" against \"%2\": %3, the full rule says %4"_s.arg(a, b).arg(got).arg(expected)));
            if (content::lettersDecide(std::string_view(ua.constData(), size_t(ua.size())),
                    std::string_view(ub.constData(), size_t(ub.size()))))
                ++decided;
        }
        // The short way must carry most of the work, or it would prove nothing.
        QVERIFY2(decided > Pairs / 3, qPrintable(QString::number(decided)));
    }

    void aSortedListIsTheSameEitherWay()
    {
        QRandomGenerator random(1032);
        const QString alphabet = u"αάΑβγδεέηήθιϊκλμνοόπρσςΣτυύφχψωώ "_s;
        QList<QByteArray> texts;
        for (int i = 0; i < 3000; ++i)
            texts << randomText(random, alphabet).toUtf8();
        QList<QByteArray> byRule = texts;
        std::stable_sort(byRule.begin(), byRule.end(), [](const QByteArray &a, const QByteArray &b) {
            return content::compareText(QString::fromUtf8(a), QString::fromUtf8(b)) < 0;
        });
        QList<QByteArray> byDatabase = texts;
        std::stable_sort(byDatabase.begin(), byDatabase.end(), [](const QByteArray &a, const QByteArray &b) {
            return content::compareUtf8(std::string_view(a.constData(), size_t(a.size())),
                       std::string_view(b.constData(), size_t(b.size())))
                < 0;
        });
        QCOMPARE(byDatabase, byRule);
    }
};

QTEST_GUILESS_MAIN(tst_GreekOrderByLetters)
#include "tst_greekorderbyletters.moc"
