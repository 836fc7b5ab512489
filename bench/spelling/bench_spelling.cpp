// Times of the spell checker: loading the Greek dictionary, checking a note of about a
// hundred printed pages as the notepad does when the dictionary arrives, and the
// suggestions the right button offers.

#include <checker.h>
#include <dictionary.h>
#include <rtf.h>
#include <spellhighlighter.h>
#include <spellingservice.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextDocument>

#include <algorithm>
#include <cstdio>

namespace {

void report(const char *name, qint64 ms)
{
    std::printf("%s: %lld ms\n", name, static_cast<long long>(ms));
    std::fflush(stdout);
}

// The sample course's sources, one after another until about a hundred pages (some
// 3,000 characters a page), with some words in capitals and some misspelt.
QString hundredPages()
{
    QString sources;
    const QDir folder(QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/files/piges"));
    for (const QString &name : folder.entryList({QStringLiteral("*.rtf")}, QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            sources += richtext::readPlainText(file.readAll()).text;
    }
    if (sources.isEmpty())
        sources = QStringLiteral("Ο ναός της Αθηνάς στην Ακρόπολη, με τα γλυπτά του Φειδία.\n");
    QString note;
    int round = 0;
    while (note.size() < 300000) {
        QString part = sources;
        if (round % 3 == 1)
            part = part.toUpper();
        // Each round misspells in its own way, so that the note is not one text repeated.
        if (round % 2 == 0)
            part.replace(QStringLiteral("ς "), QStringLiteral("σ "));
        part.replace(QStringLiteral("ό"), round % 4 == 3 ? QStringLiteral("ο") : QStringLiteral("ό"));
        note += part;
        ++round;
    }
    return note;
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    // The pupil's own words and choices stay as they are.
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("config"))));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(QStringLiteral("data"))));

    QElapsedTimer clock;
    clock.start();
    QString why;
    std::shared_ptr<spelling::Dictionary> dictionary
        = spelling::Dictionary::load(spelling::Dictionary::defaultFolders(), &why);
    report("spell dictionary load", clock.elapsed());
    if (!dictionary) {
        std::printf("no dictionary: %s\n", qPrintable(why));
        return 1;
    }

    // The session's service, its dictionary loaded at once instead of on a worker.
    spelling::Service service(
        [](QObject *, spelling::Service::Job job, spelling::Service::Done done) {
            const std::atomic_bool cancelled = false;
            done(job(cancelled));
        },
        {});
    service.request();

    QTextDocument note;
    note.setPlainText(hundredPages());
    std::printf("note: %d characters, %d paragraphs\n", note.characterCount(), note.blockCount());
    clock.restart();
    spelling::DocumentSpelling checking(service, &note, nullptr);
    report("spell check 100-page note", clock.elapsed());

    // Suggestions for misspellings of the kinds pupils make: accents, sigma, letters.
    const QStringList misspelt = {QStringLiteral("καλημερα"), QStringLiteral("κόσμοσ"),
        QStringLiteral("σπιτι"), QStringLiteral("επανσταση"), QStringLiteral("ιστορεια"),
        QStringLiteral("ΣΠΙΤΚ"), QStringLiteral("Αθηνα"), QStringLiteral("μαθιτής"),
        QStringLiteral("πόλεμοσ"), QStringLiteral("κόςμος"), QStringLiteral("θάλλασα"),
        QStringLiteral("αρχαιοι"), QStringLiteral("ελληνικος"), QStringLiteral("βιβλιοθίκη"),
        QStringLiteral("ΕΠΑΝΣΤΑΣΗ"), QStringLiteral("δημοκρατεία"), QStringLiteral("Ακροπολη"),
        QStringLiteral("πολιτισμόσ"), QStringLiteral("εκλησία"), QStringLiteral("ανθρωποι")};
    QList<qint64> times;
    for (const QString &word : misspelt) {
        clock.restart();
        const QStringList suggestions = service.checker()->suggestions(word);
        times.append(clock.nsecsElapsed() / 1000);
        Q_UNUSED(suggestions);
    }
    std::sort(times.begin(), times.end());
    report("spell suggestions median", times.at(times.size() / 2) / 1000);
    std::printf("spell suggestions slowest: %lld ms\n", static_cast<long long>(times.last() / 1000));
    return 0;
}
