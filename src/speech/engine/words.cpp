#include "words.h"

#include <QTextBoundaryFinder>

#include <algorithm>

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
    // Greek asks with ";" (or its own U+037E), which Unicode's rules do not count as the
    // end of a sentence: a question ends where the next word starts with a capital.
    for (int i = 0; i + 1 < text.size(); ++i) {
        if (text.at(i) != u';' && text.at(i) != QChar(0x037E))
            continue;
        int next = i + 1;
        while (next < text.size() && text.at(next).isSpace())
            ++next;
        if (next > i + 1 && next < text.size() && text.at(next).isUpper())
            starts.append(next);
    }
    std::sort(starts.begin(), starts.end());
    starts.erase(std::unique(starts.begin(), starts.end()), starts.end());
    return starts;
}

QByteArray ssmlWithMarks(const QString &text, const QList<Word> &words)
{
    // Each sentence goes in an <s> of its own: espeak-ng loses a mark that stands between
    // one sentence's stop and the next one's first word, and finds it inside an <s>.
    const QList<int> starts = sentenceStarts(text);
    QString out;
    out.reserve(text.size() * 2 + words.size() * 20 + starts.size() * 7 + 20);
    out += u"<speak><s>";
    int at = 0;
    qsizetype sentence = 0;
    const auto closeSentencesBefore = [&](int position) {
        while (sentence + 1 < starts.size() && starts.at(sentence + 1) <= position) {
            ++sentence;
            appendEscaped(out, text, at, starts.at(sentence));
            at = starts.at(sentence);
            out += u"</s><s>";
        }
    };
    for (int i = 0; i < words.size(); ++i) {
        const Word &word = words.at(i);
        closeSentencesBefore(word.start);
        appendEscaped(out, text, at, word.start);
        out += QStringLiteral("<mark name=\"%1\"/>").arg(i);
        appendEscaped(out, text, word.start, word.end());
        at = word.end();
    }
    closeSentencesBefore(int(text.size()));
    appendEscaped(out, text, at, int(text.size()));
    out += u"</s></speak>";
    return out.toUtf8();
}

QString sayableText(const QString &rawText)
{
    QString text = rawText;
    for (QChar &c : text) {
        switch (c.unicode()) {
        case 0xfdd0: // the beginning and the end of a frame
        case 0xfdd1:
        case QChar::ParagraphSeparator:
        case QChar::LineSeparator:
            c = u'\n';
            break;
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
