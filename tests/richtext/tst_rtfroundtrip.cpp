#include "rtfcompare.h"

#include <rtf.h>

#include <QRandomGenerator>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>

namespace {

// Characters a pupil's notes hold: Greek with its accents, Latin, digits, the characters
// RTF escapes, tabs, line breaks, and some that only Unicode escapes can carry.
const QString Alphabet = QStringLiteral("αβγδεζηθικλμνξοπρσςτυφχψωάέήίόύώϊϋΐΰ"
                                        "ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩΆΈΉΊΌΎΏΪΫ"
                                        "abcxyzABCXYZ0123456789 .,;:!?-'\"()[]«»·\\{}\t\u2028\u00A0€ßçłЖж—…");

QColor randomColor(QRandomGenerator &random)
{
    static const QColor palette[] = {QColor(0, 0, 0), QColor(255, 0, 0), QColor(0, 128, 0), QColor(0, 0, 255),
        QColor(128, 0, 128), QColor(255, 255, 0), QColor(12, 34, 56)};
    return palette[random.bounded(int(std::size(palette)))];
}

QTextCharFormat randomCharFormat(QRandomGenerator &random)
{
    static const QString fonts[] = {QString(), QStringLiteral("Times New Roman"), QStringLiteral("Arial"),
        QStringLiteral("Tahoma"), QStringLiteral("Γραμματοσειρά Δοκιμής")};
    QTextCharFormat f;
    const QString font = fonts[random.bounded(int(std::size(fonts)))];
    if (!font.isEmpty())
        f.setFontFamilies({font});
    if (random.bounded(3) == 0)
        f.setFontPointSize(random.bounded(12, 72) / 2.0);
    if (random.bounded(4) == 0)
        f.setFontWeight(QFont::Bold);
    if (random.bounded(4) == 0)
        f.setFontItalic(true);
    if (random.bounded(5) == 0)
        f.setFontUnderline(true);
    if (random.bounded(8) == 0)
        f.setFontStrikeOut(true);
    if (random.bounded(2) == 0)
        f.setForeground(randomColor(random));
    if (random.bounded(8) == 0)
        f.setBackground(randomColor(random));
    if (random.bounded(12) == 0)
        f.setVerticalAlignment(
            random.bounded(2) ? QTextCharFormat::AlignSuperScript : QTextCharFormat::AlignSubScript);
    return f;
}

QTextBlockFormat randomBlockFormat(QRandomGenerator &random, bool inList)
{
    static const Qt::Alignment alignments[]
        = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight, Qt::AlignJustify};
    QTextBlockFormat f;
    f.setAlignment(alignments[random.bounded(4)]);
    if (random.bounded(2))
        f.setLeftMargin(random.bounded(0, 80));
    if (random.bounded(3) == 0)
        f.setRightMargin(random.bounded(0, 40));
    if (inList) {
        if (random.bounded(2))
            f.setProperty(richtext::ListFirstLineIndentProperty, -random.bounded(1, 721));
    } else if (random.bounded(3) == 0) {
        f.setTextIndent(random.bounded(-30, 30));
    }
    if (random.bounded(3) == 0)
        f.setTopMargin(random.bounded(0, 20));
    if (random.bounded(3) == 0)
        f.setBottomMargin(random.bounded(0, 20));
    switch (random.bounded(8)) {
    case 0:
        f.setLineHeight(random.bounded(2) ? 150 : 115, QTextBlockFormat::ProportionalHeight);
        break;
    case 1:
        f.setLineHeight(random.bounded(10, 40), QTextBlockFormat::MinimumHeight);
        break;
    case 2:
        f.setLineHeight(random.bounded(10, 40), QTextBlockFormat::FixedHeight);
        break;
    default:
        break;
    }
    if (random.bounded(4) == 0) {
        QList<QTextOption::Tab> tabs;
        static const QTextOption::TabType types[]
            = {QTextOption::LeftTab, QTextOption::RightTab, QTextOption::CenterTab};
        const int count = random.bounded(1, 4);
        for (int i = 0; i < count; ++i)
            tabs.append(QTextOption::Tab(40.0 * (i + 1) + random.bounded(20), types[random.bounded(3)]));
        f.setTabPositions(tabs);
    }
    return f;
}

void fillRandomDocument(QTextDocument &document, quint32 seed)
{
    QRandomGenerator random(seed);
    QTextCursor cursor(&document);
    const int blocks = random.bounded(1, 7);
    QTextList *previousList = nullptr;
    QTextListFormat::Style previousStyle = QTextListFormat::ListDisc;
    for (int b = 0; b < blocks; ++b) {
        const int listChoice = random.bounded(8);
        const bool inList = listChoice < 3;
        const QTextBlockFormat blockFormat = randomBlockFormat(random, inList);
        if (b == 0)
            cursor.setBlockFormat(blockFormat);
        else
            cursor.insertBlock(blockFormat, randomCharFormat(random));
        if (inList) {
            static const QTextListFormat::Style styles[]
                = {QTextListFormat::ListDisc, QTextListFormat::ListDecimal, QTextListFormat::ListLowerAlpha,
                    QTextListFormat::ListUpperRoman};
            const QTextListFormat::Style style = styles[listChoice == 0 ? 0 : random.bounded(4)];
            if (previousList && previousStyle == style) {
                previousList->add(cursor.block());
            } else {
                QTextListFormat listFormat;
                listFormat.setStyle(style);
                listFormat.setIndent(0);
                if (style != QTextListFormat::ListDisc && random.bounded(3) == 0)
                    listFormat.setProperty(richtext::ListStartProperty, random.bounded(2, 9));
                previousList = cursor.createList(listFormat);
                previousStyle = style;
            }
        } else {
            previousList = nullptr;
        }
        const int runs = random.bounded(0, 6);
        for (int r = 0; r < runs; ++r) {
            const QTextCharFormat format = randomCharFormat(random);
            if (random.bounded(15) == 0) {
                QImage image(random.bounded(1, 4), random.bounded(1, 4), QImage::Format_ARGB32);
                image.fill(randomColor(random));
                const QString name = QStringLiteral("generated:%1:%2").arg(seed).arg(r);
                document.addResource(QTextDocument::ImageResource, QUrl(name), image);
                QTextImageFormat imageFormat;
                imageFormat.merge(format);
                imageFormat.setName(name);
                imageFormat.setWidth(random.bounded(1, 200));
                imageFormat.setHeight(random.bounded(1, 200));
                cursor.insertImage(imageFormat);
                continue;
            }
            QString text;
            const int length = random.bounded(1, 12);
            for (int i = 0; i < length; ++i)
                text += Alphabet.at(random.bounded(int(Alphabet.size())));
            if (random.bounded(20) == 0)
                text += QString::fromUtf8("\xF0\x9F\x98\x80"); // beyond the basic plane
            cursor.insertText(text, format);
        }
    }
}

} // namespace

class tst_RtfRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void writtenThenReadGivesTheSameDocument()
    {
        for (quint32 seed = 1; seed <= 1000; ++seed) {
            QTextDocument original;
            original.setDefaultFont(QFont(QStringLiteral("Times New Roman"), 12));
            fillRandomDocument(original, seed);
            const QByteArray rtf = richtext::writeDocument(original);

            QTextDocument copy;
            copy.setDefaultFont(original.defaultFont());
            richtext::readDocument(rtf, &copy);
            const QStringList expected = rtftest::describe(original);
            const QStringList actual = rtftest::describe(copy);
            if (actual != expected) {
                qWarning("seed %u\n%s", seed, rtf.constData());
                QCOMPARE(actual, expected);
            }
            // The plain reading counts the same places as the document.
            const richtext::PlainText plain = richtext::readPlainText(rtf);
            QString text = copy.toRawText();
            text.replace(QChar::ParagraphSeparator, u'\n');
            text.replace(QChar::LineSeparator, u'\n');
            QCOMPARE(plain.text, text);
        }
    }

    void writingTwiceGivesTheSameBytes()
    {
        for (quint32 seed = 2001; seed <= 2100; ++seed) {
            QTextDocument original;
            original.setDefaultFont(QFont(QStringLiteral("Times New Roman"), 12));
            fillRandomDocument(original, seed);
            const QByteArray first = richtext::writeDocument(original);
            QTextDocument copy;
            copy.setDefaultFont(original.defaultFont());
            richtext::readDocument(first, &copy);
            QCOMPARE(richtext::writeDocument(copy), first);
        }
    }
};

QTEST_MAIN(tst_RtfRoundTrip)
#include "tst_rtfroundtrip.moc"
