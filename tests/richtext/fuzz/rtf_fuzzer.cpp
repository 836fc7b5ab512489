// libFuzzer target for the RTF reader and writer. Besides crashes, hangs and leaks it
// checks that the plain reading and the document count the same places, and that what
// the writer makes of a document reads back to the same text.
#include <rtf.h>

#include <QGuiApplication>
#include <QTextDocument>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

QString documentText(const QTextDocument &document)
{
    QString text = document.toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Broken pictures make the image readers complain at every turn; that is expected
    // here and only slows the run down.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    static QGuiApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray rtf(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const richtext::PlainText plain = richtext::readPlainText(rtf);
    // Long runs may take the plain reading alone, the fastest, which walks the same
    // tokenizer, destinations and code pages as the document reading.
    static const bool plainOnly = qEnvironmentVariableIntValue("RTF_FUZZ_PLAIN_ONLY") != 0;
    if (plainOnly) {
        qsizetype covered = 0;
        for (const richtext::TextRun &run : plain.runs) {
            if (run.start != covered || run.length <= 0)
                std::abort();
            covered += run.length;
        }
        if (covered != plain.text.size())
            std::abort();
        return 0;
    }
    QTextDocument document;
    richtext::readDocument(rtf, &document);
    if (documentText(document) != plain.text) {
        std::fprintf(stderr, "document: %s\nplain: %s", qPrintable(documentText(document).toHtmlEscaped()),
            qPrintable(plain.text.toHtmlEscaped()));
        std::abort();
    }
    qsizetype covered = 0;
    for (const richtext::TextRun &run : plain.runs) {
        if (run.start != covered || run.length <= 0)
            std::abort();
        covered += run.length;
    }
    if (covered != plain.text.size())
        std::abort();

    // Long runs may leave the writer out, for speed; the reader is what meets outside data.
    static const bool checkWriter = qEnvironmentVariableIntValue("RTF_FUZZ_READER_ONLY") == 0;
    if (!checkWriter)
        return 0;
    const QByteArray written = richtext::writeDocument(document);
    QTextDocument again;
    richtext::readDocument(written, &again);
    if (documentText(again) != documentText(document)) {
        std::fprintf(stderr, "written: %s\nread back: %s\noriginal: %s", written.constData(),
            qPrintable(documentText(again).toHtmlEscaped()),
            qPrintable(documentText(document).toHtmlEscaped()));
        std::abort();
    }
    return 0;
}
