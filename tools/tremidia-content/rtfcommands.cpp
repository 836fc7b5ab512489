#include "commands.h"

#include <rtf.h>
#include <rtffile.h>
#include <runtimeerror.h>

#include <QFile>
#include <QFont>
#include <QTextDocument>

#include <cstdio>

namespace commands {

namespace {

// Reads the RTF file of the only argument, or says why not.
bool loadRtf(const QStringList &args, const char *command, QByteArray &data, int &status)
{
    if (args.size() != 1) {
        status = fail(QStringLiteral("usage: %1 FILE.rtf").arg(QString::fromLatin1(command)));
        return false;
    }
    QFile file(args.first());
    if (!file.open(QIODevice::ReadOnly)) {
        status = fail(QStringLiteral("cannot read %1: %2").arg(args.first(), file.errorString()));
        return false;
    }
    data = file.readAll();
    if (!richtext::isRtf(data)) {
        status = fail(QStringLiteral("%1 is not an RTF file").arg(args.first()));
        return false;
    }
    return true;
}

void writeOut(const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
}

} // namespace

int rtfText(const QStringList &args)
{
    QByteArray data;
    int status = 0;
    if (!loadRtf(args, "rtf-text", data, status))
        return status;
    writeOut(richtext::readPlainText(data).text.toUtf8());
    std::fflush(stdout);
    return 0;
}

int rtfRuns(const QStringList &args)
{
    QByteArray data;
    int status = 0;
    if (!loadRtf(args, "rtf-runs", data, status))
        return status;
    const richtext::PlainText plain = richtext::readPlainText(data);
    QByteArray out;
    for (const richtext::TextRun &run : plain.runs)
        out += richtext::runToJson(run) + '\n';
    writeOut(out);
    std::fflush(stdout);
    return 0;
}

int rtfRewrite(const QStringList &args)
{
    if (args.size() != 2)
        return fail(QStringLiteral("usage: rtf-rewrite IN.rtf OUT.rtf"));
    // The same steps as the notepad's open and save: a document in the notes' font, the
    // file read into it (RTF, or plain text), and written back whole or not at all.
    try {
        QTextDocument document;
        QFont font(QString::fromUtf16(richtext::NotesFontFamily));
        font.setPointSize(richtext::NotesFontPoints);
        document.setDefaultFont(font);
        richtext::loadDocument(document, richtext::readFile(args.at(0)));
        richtext::writeFileWhole(args.at(1), richtext::writeDocument(document));
    } catch (const platform::RuntimeError &e) {
        return fail(
            QStringLiteral("cannot rewrite %1 as %2: %3").arg(args.at(0), args.at(1), e.description()));
    }
    return 0;
}

} // namespace commands
