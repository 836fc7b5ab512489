#include "spellhighlighter.h"

#include "checker.h"
#include "spellingservice.h"

#include <QScopedValueRollback>
#include <QTextDocument>

namespace spelling {

Highlighter::Highlighter(Service &service, QObject *parent)
    : QSyntaxHighlighter(parent)
    , m_service(service)
{
    m_mark.setUnderlineStyle(QTextCharFormat::SpellCheckUnderline);
    m_mark.setUnderlineColor(Qt::red);
}

void Highlighter::highlightBlock(const QString &text)
{
    Checker *checker = m_service.checker();
    if (!checker)
        return;
    for (const WordSpan &span : checkableWords(text))
        if (checker->isMisspelt(text.mid(span.start, span.length)))
            setFormat(int(span.start), int(span.length), m_mark);
}

DocumentSpelling::DocumentSpelling(Service &service, QTextDocument *document, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_document(document)
    , m_highlighter(new Highlighter(service, this))
{
    connect(&service, &Service::ready, this, &DocumentSpelling::follow);
    connect(&service, &Service::enabledChanged, this, &DocumentSpelling::follow);
    connect(&service, &Service::wordsChanged, this, &DocumentSpelling::recheck);
    follow();
}

void DocumentSpelling::follow()
{
    const bool wanted = m_service.isEnabled() && m_document;
    if (wanted)
        m_service.request();
    const bool on = wanted && m_service.checker();
    if (on == isActive())
        return;
    QScopedValueRollback<bool> marking(m_marking, true);
    m_highlighter->setDocument(on ? m_document.data() : nullptr);
    // A highlighter newly set on a document checks it at the next turn of the event
    // loop; now is as good, and the marks are there when the pupil looks.
    if (on)
        m_highlighter->rehighlight();
}

void DocumentSpelling::recheck()
{
    if (!isActive())
        return;
    QScopedValueRollback<bool> marking(m_marking, true);
    m_highlighter->rehighlight();
}

} // namespace spelling
