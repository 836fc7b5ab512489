#include "commands.h"

#include <latethreads.h>
#include <rate.h>
#include <rtf.h>
#include <speechdengine.h>
#include <threadedspeaker.h>
#include <words.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <cstdio>

namespace commands {

namespace {

// A service that took the text but never tells its end is given up after this long plus
// the time the slowest voice could take over the words.
constexpr int EndMarginMs = 10000;
constexpr int SlowestWordMs = 1500;
// How long the end waits for an engine that is still stopping.
constexpr int LeaveWaitMs = 300;
constexpr int ExitWaitMs = 1000;

} // namespace

int readAloud(const QStringList &args)
{
    QString path;
    int rate = speech::NormalRate;
    for (int i = 0; i < args.size(); ++i) {
        if (args.at(i) == u"--rate" && i + 1 < args.size()) {
            bool ok = false;
            rate = args.at(++i).toInt(&ok);
            if (!ok || rate < speech::SlowestRate || rate > speech::FastestRate)
                return fail(QStringLiteral("--rate takes a percentage from %1 to %2")
                                .arg(speech::SlowestRate)
                                .arg(speech::FastestRate));
        } else if (path.isEmpty() && !args.at(i).startsWith(u"--")) {
            path = args.at(i);
        } else {
            return fail(QStringLiteral("usage: read-aloud FILE.rtf [--rate PERCENT]"));
        }
    }
    if (path.isEmpty())
        return fail(QStringLiteral("usage: read-aloud FILE.rtf [--rate PERCENT]"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("cannot read %1: %2").arg(path, file.errorString()));
    const QByteArray data = file.readAll();
    if (!richtext::isRtf(data))
        return fail(QStringLiteral("%1 is not an RTF file").arg(path));
    const QString text = speech::sayableText(richtext::readPlainText(data).text);
    const QList<speech::Word> words = speech::findWords(text);
    if (words.isEmpty())
        return 0;

    // The engine's thread is this run's: one stuck in the service ends with the process.
    platform::LateThreads late;
    int code = 0;
    {
        speech::ThreadedSpeaker speaker([] { return std::make_unique<speech::SpeechdEngine>(); }, late);
        speaker.setRate(rate);
        QEventLoop loop;
        QElapsedTimer clock;
        bool over = false;
        const auto end = [&](int status) {
            if (over)
                return;
            over = true;
            code = status;
            loop.quit();
        };
        QObject::connect(&speaker, &speech::Speaker::wordReached, &loop, [&](int index) {
            const speech::Word &word = words.at(index);
            const QByteArray line = QByteArray::number(index) + '\t' + QByteArray::number(clock.elapsed())
                + '\t' + text.mid(word.start, word.length).toUtf8() + '\n';
            std::fwrite(line.constData(), 1, std::size_t(line.size()), stdout);
            std::fflush(stdout);
        });
        QObject::connect(&speaker, &speech::Speaker::speakingChanged, &loop, [&](bool now) {
            if (!now)
                end(speaker.ready() ? 0 : fail(QStringLiteral("no speech service answered")));
        });
        QObject::connect(&speaker, &speech::Speaker::unavailable, &loop,
            [&] { end(fail(QStringLiteral("no speech service answered"))); });
        QTimer::singleShot(
            speech::ThreadedSpeaker::DefaultStartLimitMs + EndMarginMs + int(words.size()) * SlowestWordMs,
            &loop, [&] { end(fail(QStringLiteral("the speech service did not finish the text"))); });
        clock.start();
        speaker.say(text);
        if (!over)
            loop.exec();
        speaker.leave(std::chrono::milliseconds(LeaveWaitMs));
    }
    return late.finish(code, std::chrono::milliseconds(ExitWaitMs));
}

} // namespace commands
