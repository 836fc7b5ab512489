#include "commands.h"

#include <bundlereader.h>
#include <greekcollation.h>
#include <rtf.h>
#include <rtffile.h>

#include <QBuffer>
#include <QDir>
#include <QFont>
#include <QImageReader>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QTextStream>
#include <QUrl>

#include <exception>

namespace commands {

namespace {

// An A4 page as the document lays it out, in its own pixels (96 to the inch), with 2 cm
// margins; the writer scales it to the paper.
constexpr double PageWidth = 210.0 / 25.4 * 96;
constexpr double PageHeight = 297.0 / 25.4 * 96;
constexpr double PageMargin = 20.0 / 25.4 * 96;
// A drawing fits into this much of a page, keeping its proportions; never enlarged.
constexpr double DrawingWidth = PageWidth - 2 * PageMargin;
constexpr double DrawingHeight = PageHeight - 2 * PageMargin - 60;
// A drawing larger than a large screen is not one the painter made.
constexpr int MaxDrawingSide = 8192;

struct Options
{
    QString folder;
    QString pdf;
    QString activity;
};

bool parse(const QStringList &args, Options &options)
{
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString &arg = args.at(i);
        if (arg == u"--pdf" || arg == u"--activity") {
            if (i + 1 >= args.size() || args.at(i + 1).isEmpty())
                return false;
            (arg == u"--pdf" ? options.pdf : options.activity) = args.at(++i);
        } else if (arg.startsWith(u"--") || !options.folder.isEmpty()) {
            return false;
        } else {
            options.folder = arg;
        }
    }
    return !options.folder.isEmpty();
}

// The activity's number, or its title as the list shows it. A bundle whose manifest
// cannot be read has no number: it stays in the list, damaged, so that it is not missed.
bool ofActivity(const handin::BundleInfo &bundle, const QString &activity)
{
    if (activity.isEmpty())
        return true;
    bool number = false;
    const qint32 id = activity.toInt(&number);
    if (number)
        return bundle.activityID == id || (!bundle.manifest && !bundle.ok);
    return content::compareText(bundle.activity, activity) == 0;
}

QString timeText(const QDateTime &time)
{
    return time.isValid() ? time.toString(Qt::ISODate) : QString();
}

// The drawing as a resource of the document, within its limits; false when it is not a
// picture that can be shown.
bool addDrawing(QTextDocument &document, const QString &url, const QByteArray &png, QSizeF &shown)
{
    QBuffer buffer;
    buffer.setData(png);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "png");
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || size.width() > MaxDrawingSide || size.height() > MaxDrawingSide)
        return false;
    const QImage image = reader.read();
    if (image.isNull())
        return false;
    document.addResource(QTextDocument::ImageResource, QUrl(url), image);
    shown = QSizeF(image.size());
    if (shown.width() > DrawingWidth || shown.height() > DrawingHeight)
        shown = shown.scaled(DrawingWidth, DrawingHeight, Qt::KeepAspectRatio);
    return true;
}

void insertLine(QTextCursor &cursor, const QString &text, const QTextCharFormat &format = {})
{
    cursor.insertBlock(QTextBlockFormat(), format);
    cursor.insertText(text, format);
}

// One pupil's part of the PDF: a header on a new page, then the note, then the drawings.
void addBundle(QTextDocument &document, QTextCursor &cursor, const handin::BundleInfo &bundle, int number)
{
    QTextBlockFormat header;
    if (number > 0)
        header.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCharFormat title;
    title.setFontWeight(QFont::Bold);
    title.setFontPointSize(16);
    if (number > 0)
        cursor.insertBlock(header, title);
    else
        cursor.setBlockFormat(header);
    cursor.insertText(bundle.pupil.isEmpty() ? QStringLiteral("(χωρίς όνομα)") : bundle.pupil, title);
    insertLine(cursor, QStringLiteral("Τμήμα: %1").arg(bundle.className));
    insertLine(cursor, QStringLiteral("Δραστηριότητα: %1").arg(bundle.activity));
    insertLine(cursor,
        QStringLiteral("Ώρα: %1").arg(bundle.time.isValid()
                ? bundle.time.toString(QStringLiteral("dd/MM/yyyy HH:mm"))
                : QStringLiteral("άγνωστη")));
    if (!bundle.ok) {
        QTextCharFormat warning;
        warning.setFontWeight(QFont::Bold);
        warning.setForeground(Qt::darkRed);
        insertLine(cursor, QStringLiteral("Η εργασία είναι κατεστραμμένη: %1.").arg(bundle.damage), warning);
        return;
    }
    insertLine(cursor, QString());
    for (const QString &name : bundle.files) {
        if (name == QLatin1String(handin::NoteRtfName)) {
            const std::optional<QByteArray> rtf = handin::readEntry(bundle.path, name);
            cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
            if (rtf)
                richtext::insertRtf(cursor, *rtf);
            else
                cursor.insertText(QStringLiteral("Η σημείωση δεν διαβάζεται."));
        }
    }
    int drawing = 0;
    for (const QString &name : bundle.files) {
        if (!name.startsWith(u"drawing-") || !name.endsWith(u".png"))
            continue;
        const std::optional<QByteArray> png = handin::readEntry(bundle.path, name);
        const QString url = QStringLiteral("handin-%1-%2").arg(number).arg(++drawing);
        QSizeF shown;
        if (png && addDrawing(document, url, *png, shown)) {
            cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
            QTextImageFormat image;
            image.setName(url);
            image.setWidth(shown.width());
            image.setHeight(shown.height());
            cursor.insertImage(image);
        } else {
            insertLine(cursor, QStringLiteral("Η ζωγραφιά %1 δεν διαβάζεται.").arg(name));
        }
    }
}

bool writePdf(const QList<handin::BundleInfo> &bundles, const QString &path)
{
    QTextDocument document;
    QFont font(QString::fromUtf16(richtext::NotesFontFamily));
    font.setPointSize(richtext::NotesFontPoints);
    document.setDefaultFont(font);
    document.setPageSize(QSizeF(PageWidth, PageHeight));
    document.setDocumentMargin(PageMargin);
    QTextCursor cursor(&document);
    if (bundles.isEmpty())
        cursor.insertText(QStringLiteral("Δεν βρέθηκαν εργασίες."));
    int number = 0;
    for (const handin::BundleInfo &bundle : bundles)
        addBundle(document, cursor, bundle, number++);

    QPdfWriter writer(path);
    writer.setTitle(QStringLiteral("Παραδόσεις εργασιών"));
    writer.setCreator(QStringLiteral("tremidia-content"));
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()));
    document.print(&writer);
    return QFileInfo(path).size() > 0;
}

} // namespace

int handins(const QStringList &args)
{
    Options options;
    if (!parse(args, options))
        return fail(QStringLiteral("usage: handins FOLDER [--pdf OUT.pdf] [--activity ID]"));
    if (!QFileInfo(options.folder).isDir())
        return fail(QStringLiteral("%1 is not a folder").arg(options.folder));
    QList<handin::BundleInfo> bundles = handin::readBundles(options.folder);
    bundles.removeIf([&options](const handin::BundleInfo &b) { return !ofActivity(b, options.activity); });

    if (!options.pdf.isEmpty()) {
        QFile::remove(options.pdf);
        try {
            if (!writePdf(bundles, options.pdf))
                return fail(QStringLiteral("cannot write %1").arg(options.pdf));
        } catch (const std::exception &e) {
            return fail(
                QStringLiteral("cannot write %1: %2").arg(options.pdf, QString::fromLocal8Bit(e.what())));
        }
        return 0;
    }
    QTextStream out(stdout);
    for (const handin::BundleInfo &bundle : std::as_const(bundles)) {
        out << bundle.className << u'\t' << bundle.pupil << u'\t' << bundle.activity << u'\t'
            << timeText(bundle.time) << u'\t' << bundle.files.size() << u'\t'
            << (bundle.ok ? QStringLiteral("ok") : QStringLiteral("damaged")) << u'\n';
    }
    return 0;
}

} // namespace commands
