#pragma once

#include <QPointer>
#include <QSyntaxHighlighter>

class QTextDocument;

namespace spelling {

class Service;

// Marks the misspelt words of a document with a red wavy underline. The marks are the
// layout's only: the document's text, formats, undo and modified flag stay as they were,
// so a saved note is the same with checking on or off. Only the paragraphs that change
// are checked again.
class Highlighter final : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    Highlighter(Service &service, QObject *parent);

protected:
    void highlightBlock(const QString &text) override;

private:
    Service &m_service;
    QTextCharFormat m_mark;
};

// The spell checking of one document: the highlighter is on it while checking is on and
// the dictionary has loaded, and rechecks it when the known words change. Asks the
// service for its dictionary when made.
class DocumentSpelling final : public QObject
{
    Q_OBJECT

public:
    DocumentSpelling(Service &service, QTextDocument *document, QObject *parent);

    // True while the marks change on the whole document at once; the document then
    // reports changes that are no edit of the pupil's.
    bool isMarking() const { return m_marking; }
    bool isActive() const { return m_highlighter->document() != nullptr; }
    // Checks the whole document again.
    void recheck();

private:
    void follow();

    Service &m_service;
    QPointer<QTextDocument> m_document;
    Highlighter *m_highlighter;
    bool m_marking = false;
};

} // namespace spelling
