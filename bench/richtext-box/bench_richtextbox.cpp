// Times of the rich-text box on texts of the content's size: opening a source, and the
// hot-word probe (SelStart then SelColor) over every place of a long text.

#include <richtextbox.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

// An RTF file as the content's sources are written: Greek in the Windows code page as
// \'xx escapes, paragraphs of a few sentences, and a painted hot word now and then.
QByteArray sourceRtf(int targetBytes)
{
    static const QString words[] = {
        u"Θουκυδίδης"_s,
        u"ο"_s,
        u"ναός"_s,
        u"της"_s,
        u"Δήλου"_s,
        u"και"_s,
        u"οι"_s,
        u"Αθηναίοι"_s,
        u"στο"_s,
        u"νησί"_s,
        u"ιερό"_s,
        u"Απόλλωνα"_s,
        u"γιορτή"_s,
        u"με"_s,
        u"πλοία"_s,
        u"χορούς"_s,
        u"αγώνες"_s,
        u"τον"_s,
        u"χειμώνα"_s,
        u"καθαρμός"_s,
    };
    QStringEncoder greek("windows-1253");
    QByteArray rtf
        = "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl{\\f0\\fnil\\fcharset161 Times New "
          "Roman;}}\n{\\colortbl ;\\red192\\green0\\blue0;\\red0\\green0\\blue192;}\n"
          "\\viewkind4\\uc1\\pard\\lang1032\\f0\\fs24 ";
    unsigned seed = 12345;
    int inParagraph = 0;
    while (rtf.size() < targetBytes) {
        seed = seed * 1103515245u + 12345u;
        const QString &word = words[(seed >> 16) % std::size(words)];
        const bool hot = (seed >> 8) % 23 == 0;
        if (hot)
            rtf += (seed >> 4) % 2 ? "\\cf1 " : "\\cf2 ";
        for (char byte : QByteArray(greek.encode(word))) {
            rtf += "\\'";
            rtf += QByteArray::number(uchar(byte), 16).rightJustified(2, '0');
        }
        if (hot)
            rtf += "\\cf0 ";
        rtf += ' ';
        if (++inParagraph == 80) {
            rtf += "\\par\n";
            inParagraph = 0;
        }
    }
    rtf += "\\par\n}\n";
    return rtf;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;

    // Opening a typical source.
    const QString source = dir.filePath(u"source.rtf"_s);
    {
        QFile file(source);
        file.open(QIODevice::WriteOnly);
        file.write(sourceRtf(50 * 1024));
    }
    std::vector<double> loads;
    std::vector<double> laidOut;
    std::vector<double> shown;
    int length = 0;
    for (int run = 0; run < 15; ++run) {
        RichTextBox box;
        box.setFont(QFont(u"Times New Roman"_s, 12));
        box.resize(469, 267);
        QElapsedTimer timer;
        timer.start();
        box.LoadFile(source, RichTextBox::RichTextFile);
        loads.push_back(timer.nsecsElapsed() / 1e6);
        box.LineCount(); // lays the whole text out at the box's width
        laidOut.push_back(timer.nsecsElapsed() / 1e6);
        box.show();
        QCoreApplication::processEvents();
        shown.push_back(timer.nsecsElapsed() / 1e6);
        length = box.TextLength();
    }
    std::printf("open 50 KB source (%d characters), median of %zu: LoadFile %.2f ms; + full layout %.2f ms; "
                "+ show and first paint %.2f ms\n",
        length, loads.size(), median(loads), median(laidOut), median(shown));

    // The hot-word probe over every place of a long text.
    const QString longSource = dir.filePath(u"long.rtf"_s);
    {
        QFile file(longSource);
        file.open(QIODevice::WriteOnly);
        file.write(sourceRtf(500 * 1024));
    }
    // As a viewer does it: loaded before the window shows, then shown.
    RichTextBox box;
    box.resize(469, 267);
    box.setLocked(true);
    QElapsedTimer timer;
    timer.start();
    box.LoadFile(longSource, RichTextBox::RichTextFile);
    const double loadLong = timer.nsecsElapsed() / 1e6;
    box.show();
    box.LineCount();
    const double shownLong = timer.nsecsElapsed() / 1e6;
    const int places = box.TextLength();

    timer.restart();
    quint64 painted = 0;
    for (int place = 0; place <= places; ++place) {
        box.setSelStart(place);
        const auto color = box.SelColor();
        if (color && *color != 0)
            ++painted;
    }
    const double probe = timer.nsecsElapsed() / 1e6;

    // The whole-phrase reading: a selection of a word's length at every place.
    timer.restart();
    quint64 mixed = 0;
    for (int place = 0; place + 8 <= places; place += 1) {
        box.setSelStart(place);
        box.setSelLength(8);
        if (!box.SelColor())
            ++mixed;
    }
    const double phrase = timer.nsecsElapsed() / 1e6;

    timer.restart();
    quint64 colorOnly = 0;
    box.setSelStart(places / 2);
    for (int place = 0; place <= places; ++place) {
        const auto color = box.SelColor();
        colorOnly += color ? *color : 0;
    }
    const double colorTime = timer.nsecsElapsed() / 1e6;

    // Every occurrence of a word, ignoring case, one search after the other.
    timer.restart();
    int found = 0;
    for (int hit = box.Find(u"ΑΠΌΛΛΩΝΑ"_s, 0); hit >= 0; hit = box.Find(u"ΑΠΌΛΛΩΝΑ"_s, hit + 1))
        ++found;
    const double finds = timer.nsecsElapsed() / 1e6;

    std::printf("500 KB source: %d places, LoadFile %.1f ms, LoadFile + show + full layout %.1f ms\n", places,
        loadLong, shownLong);
    std::printf("  SelStart + SelColor at every place: %.1f ms in all, %.2f us a place (%llu painted)\n",
        probe, probe * 1000.0 / (places + 1), static_cast<unsigned long long>(painted));
    std::printf(
        "  SelStart + SelLength 8 + SelColor at every place: %.1f ms in all, %.2f us a place (%llu mixed)\n",
        phrase, phrase * 1000.0 / std::max(1, places - 7), static_cast<unsigned long long>(mixed));
    std::printf("  SelColor alone: %.2f us a reading\n", colorTime * 1000.0 / (places + 1));
    std::printf("  Find of every occurrence, ignoring case: %d found in %.1f ms\n", found, finds);
    return 0;
}
