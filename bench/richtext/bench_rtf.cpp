// Reads a generated 1 MB RTF text source (Greek in code page 1253, many coloured runs,
// bullets, a few pictures) into plain text with runs and into a QTextDocument, and
// puts the times beside those of unrtf on the same file, measured in the same run.
#include <rtf.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextDocument>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

QByteArray greekWord(QRandomGenerator &random)
{
    // Lower-case Greek letters of code page 1253, with the accented vowels.
    static const char letters[]
        = "\xe1\xe2\xe3\xe4\xe5\xe6\xe7\xe8\xe9\xea\xeb\xec\xed\xee\xef\xf0\xf1\xf3\xf4\xf5"
          "\xf6\xf7\xf8\xf9\xdc\xdd\xde\xdf\xfc\xfd\xfe";
    QByteArray word;
    const int length = random.bounded(2, 11);
    for (int i = 0; i < length; ++i) {
        const unsigned char c = static_cast<unsigned char>(letters[random.bounded(int(sizeof letters - 1))]);
        word += "\\'" + QByteArray::number(c, 16);
    }
    return word;
}

QByteArray pictureHex(QRandomGenerator &random)
{
    QImage image(160, 120, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb((x * 3) & 0xFF, (y * 5) & 0xFF, random.bounded(256)));
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    QByteArray hex = png.toHex();
    QByteArray out;
    for (qsizetype i = 0; i < hex.size(); i += 128)
        out += hex.mid(i, 128) + "\r\n";
    return out;
}

QByteArray generate(qsizetype target)
{
    QRandomGenerator random(1253);
    QByteArray rtf
        = "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl{\\f0\\froman\\fcharset161 Times New "
          "Roman Greek;}{\\f1\\fnil\\fcharset2 Symbol;}{\\f2\\fswiss\\fcharset161 Arial Greek;}}\r\n"
          "{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue255;\\red0\\green128\\blue0;"
          "\\red128\\green0\\blue128;}\r\n\\viewkind4\\uc1\\pard\\qj\\f0\\fs24 ";
    int pictures = 0;
    int paragraph = 0;
    while (rtf.size() < target) {
        const bool bullet = paragraph % 7 == 3;
        if (bullet)
            rtf += "{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}\\fi-"
                   "360\\li360 ";
        const int words = random.bounded(40, 120);
        for (int w = 0; w < words; ++w) {
            const int kind = random.bounded(12);
            if (kind == 0)
                rtf += "\\cf" + QByteArray::number(random.bounded(1, 5)) + ' ' + greekWord(random) + "\\cf0 ";
            else if (kind == 1)
                rtf += "\\b " + greekWord(random) + "\\b0 ";
            else if (kind == 2)
                rtf += "{\\i " + greekWord(random) + "} ";
            else
                rtf += greekWord(random) + ' ';
        }
        if (pictures < 4 && paragraph % 40 == 20) {
            rtf += "{\\pict\\pngblip\\picw160\\pich120\\picwgoal2400\\pichgoal1800\r\n" + pictureHex(random)
                + "}";
            ++pictures;
        }
        rtf += "\\par\r\n";
        if (bullet)
            rtf += "\\pard\\qj ";
        ++paragraph;
    }
    rtf += "}\r\n";
    return rtf;
}

template<typename F> double bestOf(int rounds, F &&work)
{
    double best = 1e18;
    for (int i = 0; i < rounds; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        best = std::min(best, timer.nsecsElapsed() / 1e6);
    }
    return best;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    const QByteArray rtf = generate(1024 * 1024);
    const double megabytes = rtf.size() / (1024.0 * 1024.0);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.rtf"));
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return 1;
        file.write(rtf);
    }

    std::size_t runs = 0;
    qsizetype characters = 0;
    const double plainMs = bestOf(10, [&] {
        const richtext::PlainText plain = richtext::readPlainText(rtf);
        runs = plain.runs.size();
        characters = plain.text.size();
    });
    int blocks = 0;
    const double documentMs = bestOf(5, [&] {
        QTextDocument document;
        richtext::readDocument(rtf, &document);
        blocks = document.blockCount();
    });
    QTextDocument document;
    richtext::readDocument(rtf, &document);
    QByteArray written;
    const double writeMs = bestOf(5, [&] { written = richtext::writeDocument(document); });

    std::printf("RTF file: %.2f MB, %lld characters, %zu runs, %d paragraphs\n", megabytes,
        static_cast<long long>(characters), runs, blocks);
    std::printf("read into text + runs:   %8.2f ms  (%.2f ms per MB)\n", plainMs, plainMs / megabytes);
    std::printf("read into QTextDocument: %8.2f ms  (%.2f ms per MB)\n", documentMs, documentMs / megabytes);
    std::printf("write from QTextDocument:%8.2f ms  (%.2f MB written)\n", writeMs,
        written.size() / (1024.0 * 1024.0));

    const QString unrtf = QStandardPaths::findExecutable(QStringLiteral("unrtf"));
    if (unrtf.isEmpty()) {
        std::printf("unrtf: not installed, no comparison\n");
        return 0;
    }
    const double unrtfMs = bestOf(3, [&] {
        QProcess process;
        // unrtf drops the pictures it meets into its working folder.
        process.setWorkingDirectory(dir.path());
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        process.start(unrtf, {QStringLiteral("--text"), path});
        process.waitForFinished(120000);
    });
    std::printf("unrtf --text:            %8.2f ms\n", unrtfMs);
    std::printf("text + runs is %.1fx faster than unrtf\n", unrtfMs / plainMs);
    return 0;
}
