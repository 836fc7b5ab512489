// The text search over a generated content of 20,000 sources, each with a 3-5 KB Greek
// rich-text file whose words are drawn with a Zipf-like frequency from over 20,000 word
// forms (stems with their endings, so that stems gather forms as in real texts). Prints:
//
//   fulltext index build: N ms (20000 texts)
//   fulltext index current check: N ms (processor N ms, 20000 texts)
//   fulltext index file: N KB for M KB of text
//   fulltext query median: N ms
//   fulltext query worst: N ms
//   fulltext query every-text word: N ms
//   search order index build: N ms
//   search all rows ordered: N ms
//
// and, before them, a line per query of the fixed set with its count of results.

#include <database.h>
#include <fulltextindex.h>
#include <resourcesearch.h>
#include <sqliteconnection.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <vector>

namespace {

constexpr int Sources = 20000;
constexpr int Stems = 2600;

const QStringList onsets = {QStringLiteral("β"), QStringLiteral("γ"), QStringLiteral("δ"),
    QStringLiteral("θ"), QStringLiteral("κ"), QStringLiteral("λ"), QStringLiteral("μ"), QStringLiteral("ν"),
    QStringLiteral("π"), QStringLiteral("ρ"), QStringLiteral("σ"), QStringLiteral("τ"), QStringLiteral("φ"),
    QStringLiteral("χ"), QStringLiteral("στ"), QStringLiteral("τρ"), QStringLiteral("πλ"),
    QStringLiteral("κρ"), QStringLiteral("")};
const QStringList vowels = {QStringLiteral("α"), QStringLiteral("ε"), QStringLiteral("η"),
    QStringLiteral("ι"), QStringLiteral("ο"), QStringLiteral("υ"), QStringLiteral("ω"), QStringLiteral("αι"),
    QStringLiteral("ου")};
// Endings of the second declension and of verbs, with their accents.
const QStringList endings
    = {QStringLiteral("ός"), QStringLiteral("ού"), QStringLiteral("ό"), QStringLiteral("οί"),
        QStringLiteral("ών"), QStringLiteral("ούς"), QStringLiteral("ει"), QStringLiteral("ουν")};
// The commonest words, which stand in nearly every text.
const QStringList common = {QStringLiteral("και"), QStringLiteral("το"), QStringLiteral("της"),
    QStringLiteral("η"), QStringLiteral("ο"), QStringLiteral("των"), QStringLiteral("στην"),
    QStringLiteral("με"), QStringLiteral("που"), QStringLiteral("από"), QStringLiteral("τον"),
    QStringLiteral("για"), QStringLiteral("οι"), QStringLiteral("τα"), QStringLiteral("στο")};

// Over 20,000 forms, the commonest first.
QStringList wordForms(QRandomGenerator &random)
{
    QStringList forms = common;
    QSet<QString> stems;
    while (stems.size() < Stems) {
        QString stem;
        const int syllables = 2 + random.bounded(2);
        for (int s = 0; s < syllables; ++s)
            stem += onsets.at(random.bounded(int(onsets.size())))
                + vowels.at(random.bounded(int(vowels.size())));
        stem += onsets.at(random.bounded(int(onsets.size()) - 1));
        stems.insert(stem);
    }
    QStringList stemList(stems.begin(), stems.end());
    std::sort(stemList.begin(), stemList.end());
    for (int i = int(stemList.size()) - 1; i > 0; --i)
        stemList.swapItemsAt(i, random.bounded(i + 1));
    for (const QString &stem : stemList) {
        for (const QString &ending : endings)
            forms << stem + ending;
    }
    // Neighbouring ranks are not all forms of one stem.
    for (int i = int(forms.size()) - 1; i > int(common.size()); --i)
        forms.swapItemsAt(i, int(common.size()) + random.bounded(i - int(common.size()) + 1));
    return forms;
}

// Zipf: rank r is drawn with weight 1 / (r + 1).
class Zipf
{
public:
    explicit Zipf(int n)
    {
        double sum = 0;
        for (int r = 0; r < n; ++r) {
            sum += 1.0 / (r + 1);
            m_cumulative.push_back(sum);
        }
    }
    int draw(QRandomGenerator &random) const
    {
        const double x = random.generateDouble() * m_cumulative.back();
        return int(std::lower_bound(m_cumulative.begin(), m_cumulative.end(), x) - m_cumulative.begin());
    }

private:
    std::vector<double> m_cumulative;
};

// Greek of code page 1253 as its bytes, the rest as Unicode escapes.
QByteArray rtfBytes(const QString &text)
{
    QByteArray out;
    out.reserve(text.size() + 64);
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u < 0x80)
            out += char(u);
        else if (u >= 0x0384 && u <= 0x03CE)
            out += char(u - 0x2D0);
        else
            out += "\\u" + QByteArray::number(u) + '?';
    }
    return out;
}

QString capitalised(const QString &word)
{
    return word.left(1).toUpper() + word.mid(1);
}

struct Generated
{
    QString contentFile;
    QStringList forms;
    std::vector<QStringList> firstWords; // of each text, for phrases that stand somewhere
    qint64 textBytes = 0; // the texts' plain text in UTF-8
};

Generated generate(const QString &folder, bool withTexts)
{
    Generated g;
    g.contentFile = folder + QStringLiteral("/content.sqlite");
    QDir(folder).mkpath(QStringLiteral("piges"));
    QRandomGenerator random(1032);
    g.forms = wordForms(random);
    const Zipf zipf(int(g.forms.size()));

    content::sqlite::Connection db(g.contentFile, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    QFile schema(QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/db/schema.sql"));
    schema.open(QIODevice::ReadOnly);
    db.execute(QString::fromUtf8(schema.readAll()));
    db.execute(QStringLiteral("BEGIN"));
    auto insert
        = db.prepare(QStringLiteral("INSERT INTO Resources (ResourceID, ResTypeID, Book, Caption, Author, "
                                    "TextPath) VALUES (?, ?, ?, ?, ?, ?)"));
    const QList<int> types = {2, 2, 2, 6};
    for (int id = 1; id <= Sources; ++id) {
        const int type = types.at(random.bounded(int(types.size())));
        auto words = [&](int n) {
            QStringList out;
            for (int i = 0; i < n; ++i)
                out << g.forms.at(zipf.draw(random));
            return out;
        };
        const QString title = capitalised(words(4).join(u' '));
        // 3 to 5 KB of text: words, commas, full stops and paragraphs; "και" in every one.
        const int target = withTexts ? 3000 + random.bounded(2000) : 0;
        QString text = QStringLiteral("Και ");
        QStringList first;
        int sentence = 0;
        while (text.size() < target) {
            const QString w = g.forms.at(zipf.draw(random));
            if (first.size() < 12)
                first << w;
            text += sentence == 0 ? capitalised(w) : w;
            ++sentence;
            if (sentence > 8 + random.bounded(10)) {
                text += random.bounded(4) == 0 ? QStringLiteral(".\\par ") : QStringLiteral(". ");
                sentence = 0;
            } else {
                text += random.bounded(8) == 0 ? QStringLiteral(", ") : QStringLiteral(" ");
            }
        }
        g.firstWords.push_back(first);
        // What the RTF reader gives of the file: the text, a line break for each \par.
        if (withTexts) {
            QString plain = text;
            plain.replace(QStringLiteral("\\par "), QStringLiteral("\n"));
            g.textBytes += plain.toUtf8().size() + 1;
        }
        const QString fileName = QStringLiteral("t%1.rtf").arg(id);
        if (withTexts) {
            QFile file(folder + QStringLiteral("/piges/") + fileName);
            file.open(QIODevice::WriteOnly);
            file.write("{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0 Times New Roman;}}\\f0\\fs24 ");
            file.write(rtfBytes(text));
            file.write("\\par}");
        }
        insert->reset();
        insert->bind(1, id);
        insert->bind(2, type);
        insert->bind(3, type == 2 ? QVariant(title) : QVariant());
        insert->bind(4, type != 2 ? QVariant(title) : QVariant(words(3).join(u' ')));
        insert->bind(5, type == 2 ? QVariant(capitalised(g.forms.at(zipf.draw(random)))) : QVariant());
        insert->bind(6, fileName);
        insert->step();
    }
    db.execute(QStringLiteral("COMMIT"));
    return g;
}

// The fixed set: single words of every frequency, prefixes, other endings of a stem,
// two words, and phrases that stand in some text.
QStringList queries(const Generated &g)
{
    QStringList out;
    for (const int rank : {20, 60, 150, 400, 900, 2000, 4000, 7000, 10000, 14000, 17000, 20000})
        out << g.forms.at(rank);
    for (const int rank : {30, 100, 300, 700, 1500, 3000, 6000, 9000, 12000, 16000})
        out << g.forms.at(rank).left(4);
    for (const int rank : {25, 80, 250, 600, 1200, 2500, 5000, 8000, 11000, 15000}) {
        // The same stem with the ending changed.
        QString form = g.forms.at(rank);
        for (const QString &ending : endings) {
            if (form.endsWith(ending)) {
                form.chop(ending.size());
                form += ending == endings.front() ? endings.at(3) : endings.front();
                break;
            }
        }
        out << form;
    }
    for (int i = 0; i < 10; ++i)
        out << g.forms.at(15 + i * 37) + u' ' + g.forms.at(200 + i * 613);
    for (int i = 0; i < 8; ++i) {
        const QStringList &first = g.firstWords.at(size_t(i * 997));
        out << u'"' + first.at(2) + u' ' + first.at(3) + u'"';
    }
    return out;
}

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

// The time this thread has run, which a busy machine does not inflate.
double cpuMs()
{
    timespec t {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
}

// The widest resource search, ordered and not, on the wall clock and in processor time.
// The rows are read from a copy in memory, as a school's Jet file is always read and as
// bench_search reads them.
void measureSearch(QTextStream &out, const QString &contentFile)
{
    std::unique_ptr<content::Database> db;
    {
        content::sqlite::Connection file(contentFile, SQLITE_OPEN_READONLY);
        auto memory = content::sqlite::Connection::openMemory();
        sqlite3_backup *backup = sqlite3_backup_init(memory->handle(), "main", file.handle(), "main");
        sqlite3_backup_step(backup, -1);
        sqlite3_backup_finish(backup);
        db = content::Database::fromConnection(std::move(memory));
    }
    // Once per opened content, as the search window does.
    {
        QElapsedTimer timer;
        timer.start();
        const double before = cpuMs();
        const bool indexed = finding::PrepareSearchOrder(*db);
        out << QStringLiteral("search order index build: %1 ms (processor %2 ms)%3\n")
                   .arg(ms(timer.nsecsElapsed()), 0, 'f', 1)
                   .arg(cpuMs() - before, 0, 'f', 1)
                   .arg(indexed ? QString() : QStringLiteral(", not built"));
    }
    const QString sql = finding::SearchSQL({});
    QString unordered = sql;
    unordered.truncate(sql.indexOf(QStringLiteral(" ORDER BY")));
    auto median = [&](const QString &query, QList<double> &cpu) {
        QList<double> runs;
        QElapsedTimer timer;
        for (int i = 0; i < 9; ++i) {
            const double before = cpuMs();
            timer.start();
            auto rs = db->OpenRecordset(query);
            runs << ms(timer.nsecsElapsed());
            cpu << cpuMs() - before;
            rs->Close();
        }
        std::sort(runs.begin(), runs.end());
        std::sort(cpu.begin(), cpu.end());
        return runs.at(4);
    };
    QList<double> plainCpu, orderedCpu;
    const double plain = median(unordered, plainCpu);
    const double ordered = median(sql, orderedCpu);
    out << QStringLiteral("search all rows without order: %1 ms (processor %2 ms)\n")
               .arg(plain, 0, 'f', 1)
               .arg(plainCpu.at(4), 0, 'f', 1);
    out << QStringLiteral("search all rows ordered, processor time: %1 ms\n")
               .arg(orderedCpu.at(4), 0, 'f', 1);
    out << QStringLiteral("search all rows ordered: %1 ms\n").arg(ordered, 0, 'f', 1);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QTextStream out(stdout);
    QTemporaryDir dir;
    QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", cache.path().toUtf8());

    QElapsedTimer timer;
    timer.start();
    // --search-only: the rows without their texts, and the resource search alone.
    const bool searchOnly = app.arguments().contains(QStringLiteral("--search-only"));
    const Generated g = generate(dir.path(), !searchOnly);
    out << "generate " << Sources << " sources and their texts (" << g.forms.size()
        << " word forms): " << timer.elapsed() << " ms\n";
    out.flush();
    if (searchOnly) {
        measureSearch(out, g.contentFile);
        return 0;
    }

    timer.restart();
    const double buildCpu = cpuMs();
    const QString cacheFile = fulltext::ensureIndex(g.contentFile);
    out << "fulltext index build, processor time: " << qRound(cpuMs() - buildCpu) << " ms\n";
    out << "fulltext index build: " << timer.elapsed() << " ms (" << Sources << " texts)\n";
    out << "fulltext index file: " << QFileInfo(cacheFile).size() / 1024 << " KB for " << g.textBytes / 1024
        << " KB of text\n";
    timer.restart();
    const auto index = fulltext::Index::open(cacheFile);
    out << "fulltext index open: " << timer.elapsed() << " ms\n";
    {
        // Each opening of the window asks first, on the interface thread: a stat per text.
        QList<double> runs;
        QList<double> cpu;
        bool current = true;
        for (int i = 0; i < 7; ++i) {
            const double before = cpuMs();
            timer.restart();
            current = current && fulltext::isCurrent(g.contentFile);
            runs << ms(timer.nsecsElapsed());
            cpu << cpuMs() - before;
        }
        std::sort(runs.begin(), runs.end());
        std::sort(cpu.begin(), cpu.end());
        out << QStringLiteral("fulltext index current check: %1 ms (processor %2 ms, %3 texts)%4\n")
                   .arg(runs.at(3), 0, 'f', 1)
                   .arg(cpu.at(3), 0, 'f', 1)
                   .arg(Sources)
                   .arg(current ? QString() : QStringLiteral(", found stale"));
    }
    out.flush();

    QList<double> times;
    double worstCpu = 0;
    for (const QString &query : queries(g)) {
        QList<double> runs;
        QList<double> cpu;
        qsizetype found = 0;
        for (int i = 0; i < 5; ++i) {
            const double before = cpuMs();
            timer.restart();
            found = index->search(query).size();
            runs << ms(timer.nsecsElapsed());
            cpu << cpuMs() - before;
        }
        std::sort(runs.begin(), runs.end());
        std::sort(cpu.begin(), cpu.end());
        worstCpu = std::max(worstCpu, cpu.at(2));
        times << runs.at(2);
        out << QStringLiteral("  query %1 (%2 found): %3 ms\n")
                   .arg(query, -24)
                   .arg(found, 5)
                   .arg(runs.at(2), 0, 'f', 2);
    }
    std::sort(times.begin(), times.end());
    out << QStringLiteral("fulltext query median: %1 ms\n").arg(times.at(times.size() / 2), 0, 'f', 1);
    out << QStringLiteral("fulltext query worst, processor time: %1 ms\n").arg(worstCpu, 0, 'f', 1);
    out << QStringLiteral("fulltext query worst: %1 ms\n").arg(times.back(), 0, 'f', 1);

    {
        QList<double> runs;
        qsizetype found = 0;
        for (int i = 0; i < 5; ++i) {
            timer.restart();
            found = index->search(QStringLiteral("και")).size();
            runs << ms(timer.nsecsElapsed());
        }
        std::sort(runs.begin(), runs.end());
        if (found != Sources)
            out << "the every-text word found " << found << " sources\n";
        out << QStringLiteral("fulltext query every-text word: %1 ms\n").arg(runs.at(2), 0, 'f', 1);
    }

    measureSearch(out, g.contentFile);
    return 0;
}
