// Builds and locates 500 hot words in texts of 125, 250 and 500 KB: the work a text
// viewer does as it opens. Prints the time per size; the goal is at most 20 ms for
// 500 KB, growing linearly with the text.

#include <clstexts.h>
#include <colhotwords.h>
#include <database.h>
#include <hotwordlocator.h>
#include <hotwordtextmodel.h>
#include <sqliteconnection.h>

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTextStream>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int HotWordCount = 500;

const QStringList &vocabulary()
{
    static const QStringList words = {u"και"_s, u"το"_s, u"της"_s, u"στο"_s, u"νησί"_s, u"Αιγαίο"_s,
        u"πλοία"_s, u"ανάκτορο"_s, u"θάλασσα"_s, u"οψιανός"_s, u"Κυκλάδες"_s, u"μάρμαρο"_s, u"εμπόριο"_s,
        u"ειδώλιο"_s, u"τοιχογραφία"_s, u"λιμάνι"_s, u"οικισμός"_s, u"Μίνωας"_s, u"Κνωσός"_s, u"Δήλος"_s,
        u"ναός"_s, u"πόλη"_s, u"κάτοικοι"_s, u"αρχαίοι"_s, u"ιστορία"_s, u"πηγή"_s, u"εποχή"_s};
    return words;
}

struct Text
{
    QString text;
    std::vector<quint32> colors;
};

// Common words in black; each hot phrase stands in black once before its painted place,
// which lies at a spread of places through the text, so the searches walk far.
Text makeText(int kilobytes, const QStringList &phrases)
{
    QRandomGenerator random(42);
    Text t;
    const int target = kilobytes * 1024; // one character for each byte, as in a Greek code page
    const QStringList &words = vocabulary();
    std::vector<int> plantAt;
    for (int i = 0; i < phrases.size(); ++i)
        plantAt.push_back(int(qint64(target) * (i + 1) / (phrases.size() + 1)));
    std::size_t next = 0;
    while (t.text.size() < target) {
        if (next < plantAt.size() && t.text.size() >= plantAt[next]) {
            const QString &phrase = phrases.at(int(next));
            t.text += phrase + u", "_s;
            t.colors.resize(std::size_t(t.text.size()), 0);
            const int at = int(t.text.size());
            t.text += phrase;
            t.colors.resize(std::size_t(t.text.size()), 0x0000C0);
            Q_UNUSED(at);
            t.text += u' ';
            t.colors.push_back(0);
            ++next;
            continue;
        }
        t.text += words.at(int(random.bounded(qsizetype(words.size()))));
        t.text += random.bounded(12) == 0 ? u'\n' : u' ';
        t.colors.resize(std::size_t(t.text.size()), 0);
    }
    return t;
}

QStringList makePhrases()
{
    QStringList phrases;
    const QStringList &words = vocabulary();
    for (int i = 0; i < HotWordCount; ++i)
        phrases << words.at(i % words.size()) + u" αρ"_s + QString::number(i) + u' '
                + words.at((i * 7 + 3) % words.size());
    return phrases;
}

std::unique_ptr<content::Database> makeDatabase(const QStringList &phrases)
{
    auto connection = content::sqlite::Connection::openMemory();
    QFile schema(QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/db/schema.sql"));
    schema.open(QIODevice::ReadOnly);
    connection->execute(QString::fromUtf8(schema.readAll()));
    connection->execute(
        u"INSERT INTO Resources (ResourceID, ResTypeID, TextPath) VALUES (1, 2, 'bench.rtf')"_s);
    connection->execute(u"BEGIN"_s);
    for (int i = 0; i < phrases.size(); ++i) {
        const bool comment = i % 2 == 0;
        auto row = connection->prepare(comment
                ? u"INSERT INTO Comments (CommentID, Comment, Picture) VALUES (?, 'σχόλιο', NULL)"_s
                : u"INSERT INTO Euretirio (EuretirioID, Oros, Epexigisi, EuretirioTypeID) VALUES (?, 'όρος', 'εξήγηση', 1)"_s);
        row->bind(1, i + 1);
        row->step();
        auto link = connection->prepare(comment
                ? u"INSERT INTO RelCommentResource (CommentID, ResourceID, ExactPhrase) VALUES (?, 1, ?)"_s
                : u"INSERT INTO RelEuretirioResource (EuretirioID, ResourceID, ExactPhrase) VALUES (?, 1, ?)"_s);
        link->bind(1, i + 1);
        link->bind(2, phrases.at(i));
        link->step();
    }
    connection->execute(u"COMMIT"_s);
    return content::Database::fromConnection(std::move(connection));
}

} // namespace

int main()
{
    const QStringList phrases = makePhrases();
    auto db = makeDatabase(phrases);
    QTextStream out(stdout);
    out << "hot words: build and locate " << HotWordCount << " phrases\n";
    for (const int kb : {125, 250, 500, 1000}) {
        const Text text = makeText(kb, phrases);
        double best = 1e9;
        int located = 0;
        for (int round = 0; round < 7; ++round) {
            QElapsedTimer timer;
            timer.start();
            PlainTextHotWordModel model(text.text, text.colors);
            auto words = clsTexts(*db, u"/data"_s).HotWords(1);
            hotwords::FillHotWords(model, *words);
            best = std::min(best, timer.nsecsElapsed() / 1e6);
            located = 0;
            for (const CHotWord &w : *words)
                located += w.Last() > w.First() ? 1 : 0;
        }
        out << QStringLiteral("  %1 KB text (%2 characters): %3 ms, %4 of %5 located\n")
                   .arg(kb)
                   .arg(text.text.size())
                   .arg(best, 0, 'f', 2)
                   .arg(located)
                   .arg(phrases.size());
    }
    return 0;
}
