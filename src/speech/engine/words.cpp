#include "words.h"

#include <QTextBoundaryFinder>

namespace speech {

namespace {

bool hasLetterOrDigit(QStringView piece)
{
    for (const QChar c : piece) {
        if (c.isLetterOrNumber())
            return true;
    }
    return false;
}

// XML 1.0 allows tab, new line and carriage return among the control characters; a
// surrogate is fine only in a pair.
bool allowedInXml(const QString &text, int i)
{
    const QChar c = text.at(i);
    if (c.unicode() < 0x20)
        return c == u'\t' || c == u'\n' || c == u'\r';
    if (c.isHighSurrogate())
        return i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
    if (c.isLowSurrogate())
        return i > 0 && text.at(i - 1).isHighSurrogate();
    return c.unicode() != 0xFFFE && c.unicode() != 0xFFFF;
}

void appendEscaped(QString &out, const QString &text, int from, int to)
{
    for (int i = from; i < to; ++i) {
        const QChar c = text.at(i);
        if (!allowedInXml(text, i)) {
            out += u' ';
            continue;
        }
        switch (c.unicode()) {
        case u'&':
            out += u"&amp;";
            break;
        case u'<':
            out += u"&lt;";
            break;
        case u'>':
            out += u"&gt;";
            break;
        case u'"':
            out += u"&quot;";
            break;
        case u'\'':
            out += u"&apos;";
            break;
        default:
            out += c;
        }
    }
}

} // namespace

QList<Word> findWords(const QString &text)
{
    QList<Word> words;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    int start = 0;
    for (qsizetype next = finder.toNextBoundary(); next != -1; next = finder.toNextBoundary()) {
        const int end = int(next);
        if (end > start && hasLetterOrDigit(QStringView(text).sliced(start, end - start)))
            words.append({start, end - start});
        start = end;
    }
    return words;
}

QList<int> sentenceStarts(const QString &text)
{
    QList<int> starts;
    if (text.isEmpty())
        return starts;
    starts.append(0);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, text);
    for (qsizetype next = finder.toNextBoundary(); next != -1; next = finder.toNextBoundary()) {
        if (next > 0 && next < text.size())
            starts.append(int(next));
    }
    return starts;
}

QByteArray ssmlWithMarks(const QString &text, const QList<Word> &words)
{
    QString out;
    out.reserve(text.size() * 2 + words.size() * 20 + 20);
    out += u"<speak>";
    int at = 0;
    for (int i = 0; i < words.size(); ++i) {
        const Word &word = words.at(i);
        appendEscaped(out, text, at, word.start);
        out += QStringLiteral("<mark name=\"%1\"/>").arg(i);
        appendEscaped(out, text, word.start, word.end());
        at = word.end();
    }
    appendEscaped(out, text, at, int(text.size()));
    out += u"</speak>";
    return out.toUtf8();
}

QString sayableText(const QString &rawText)
{
    QString text = rawText;
    for (QChar &c : text) {
        switch (c.unicode()) {
        case QChar::ParagraphSeparator:
        case QChar::LineSeparator:
            c = u'\n';
            break;
        case QChar::Nbsp:
        case QChar::ObjectReplacementCharacter:
            c = u' ';
            break;
        default:
            break;
        }
    }
    return text;
}

} // namespace speech
