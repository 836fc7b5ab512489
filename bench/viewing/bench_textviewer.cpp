// The same work as bench_hotwords, done the way the text viewer does it: the text is an
// RTF file loaded into the viewer's rich-text box, and the hot words are located over the
// box. Prints the load and the locating apart.

#include <colhotwords.h>
#include <hotwordlocator.h>
#include <richtextbox.h>
#include <rtbhotwordmodel.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int HotWordCount = 500;

QByteArray escaped(const QString &text)
{
    QByteArray out;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u == u'\n')
            out += "\\par\n";
        else if (u < 0x80)
            out += char(u);
        else
            out += "\\u" + QByteArray::number(qint16(u)) + '?';
    }
    return out;
}

struct Source
{
    QByteArray rtf;
    QStringList phrases;
    int characters = 0;
};

// Black words, and each phrase once in black and once painted, spread through the text.
Source makeSource(int kilobytes)
{
    static const QStringList words
        = {u"και"_s, u"το"_s, u"της"_s, u"στο"_s, u"νησί"_s, u"Αιγαίο"_s, u"πλοία"_s, u"ανάκτορο"_s,
            u"θάλασσα"_s, u"οψιανός"_s, u"Κυκλάδες"_s, u"μάρμαρο"_s, u"εμπόριο"_s, u"ειδώλιο"_s};
    Source s;
    for (int i = 0; i < HotWordCount; ++i)
        s.phrases << words.at(i % words.size()) + u" αρ"_s + QString::number(i);
    const int target = kilobytes * 1024;
    s.rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Times New Roman;}}{\\colortbl "
            ";\\red192\\green0\\blue0;}\n\\pard ";
    int length = 0;
    int next = 0;
    int word = 0;
    while (length < target) {
        if (next < HotWordCount && length >= qint64(target) * (next + 1) / (HotWordCount + 1)) {
            const QString &p = s.phrases.at(next++);
            s.rtf += escaped(p + u", "_s) + "{\\cf1 " + escaped(p) + "} ";
            length += int(2 * p.size() + 3);
            continue;
        }
        const QString w = words.at((word++ * 7) % words.size());
        const bool paragraph = word % 40 == 0;
        s.rtf += escaped(w + (paragraph ? u"\n"_s : u" "_s));
        length += int(w.size() + 1);
    }
    s.rtf += "\\par\n}";
    s.characters = length;
    return s;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    QTextStream out(stdout);
    out << "text viewer: load an RTF text and locate " << HotWordCount << " hot words in its box\n";
    for (const int kb : {125, 250, 500}) {
        const Source source = makeSource(kb);
        const QString path = dir.filePath(u"bench%1.rtf"_s.arg(kb));
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(source.rtf);
        file.close();

        double bestLoad = 1e9;
        double bestLocate = 1e9;
        int located = 0;
        for (int round = 0; round < 3; ++round) {
            RichTextBox box;
            box.resize(469, 267);
            QElapsedTimer timer;
            timer.start();
            box.LoadFile(path);
            bestLoad = std::min(bestLoad, timer.nsecsElapsed() / 1e6);

            colHotWords words;
            for (const QString &p : source.phrases)
                words.Add(0, 0, p, u"σχόλιο"_s, QString(), 1, 3, QString());
            timer.restart();
            RichTextBoxHotWordModel model(box);
            hotwords::FillHotWords(model, words);
            bestLocate = std::min(bestLocate, timer.nsecsElapsed() / 1e6);
            located = 0;
            for (const CHotWord &w : words)
                located += w.Last() > w.First() ? 1 : 0;
        }
        out << QStringLiteral("  %1 KB text (%2 characters): load %3 ms, locate %4 ms, %5 of %6 located\n")
                   .arg(kb)
                   .arg(source.characters)
                   .arg(bestLoad, 0, 'f', 1)
                   .arg(bestLocate, 0, 'f', 2)
                   .arg(located)
                   .arg(HotWordCount);
        out.flush();
    }
    return 0;
}
