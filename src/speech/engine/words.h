#pragma once

#include <QList>
#include <QString>

namespace speech {

// One word of a text being read: where it starts and how long it is, in the text's
// UTF-16 positions.
struct Word
{
    int start = 0;
    int length = 0;

    int end() const { return start + length; }
    friend bool operator==(const Word &, const Word &) = default;
};

// The words of a text, as the reader highlights them: Unicode's word boundaries, keeping
// only the pieces with a letter or a digit in them (spaces and punctuation are not words).
QList<Word> findWords(const QString &text);

// Where the text's sentences start, the first at 0 (Unicode's sentence boundaries, and
// after a Greek question mark).
QList<int> sentenceStarts(const QString &text);

// The text as SSML for the speech service, each sentence an <s>, with a mark named by each
// word's number before the word, so that the service tells when it reaches it. Characters XML does not allow
// become spaces, so the words keep their places.
QByteArray ssmlWithMarks(const QString &text, const QList<Word> &words);

// The text the way the reader says it: the paragraph, line and frame separators of a text
// box become new lines (as RichTextBox::Text has them), its embedded pictures spaces, one
// character for one, so that positions in what is said are positions in the box.
QString sayableText(const QString &rawText);

} // namespace speech
