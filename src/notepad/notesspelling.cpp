#include "notesspelling.h"

#include <checker.h>
#include <errorpolicy.h>
#include <richtextbox.h>
#include <session.h>
#include <spellhighlighter.h>
#include <spellingservice.h>

#include <QAction>
#include <QMenu>
#include <QTextBlock>

namespace {

// The most suggestions the menu offers.
constexpr int MostSuggestions = 5;

} // namespace

NotesSpelling::NotesSpelling(Session &session, RichTextBox &notes, QMenu &menu, QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_notes(notes)
    , m_document(new spelling::DocumentSpelling(session.spelling(), notes.document(), this))
{
    spelling::Service &service = session.spelling();
    menu.addSeparator();
    mnuSpelling = menu.addAction(QStringLiteral("Έλεγχος ορθογραφίας"));
    mnuSpelling->setObjectName(QStringLiteral("mnuSpelling"));
    mnuSpelling->setCheckable(true);
    mnuSpelling->setChecked(service.isEnabled());
    connect(mnuSpelling, &QAction::toggled, this,
        [this](bool on) { platform::guarded([this, on] { m_session.spelling().setEnabled(on); }); });
    connect(&service, &spelling::Service::enabledChanged, mnuSpelling, &QAction::setChecked);

    // The course's own words are never marked: its terms, hot words and titles.
    if (session.content().database)
        platform::resumeNext([&session] { session.spelling().useCourse(session.database()); });

    // The box has no menu of its own; the notepad offers one on a marked word.
    notes.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&notes, &QWidget::customContextMenuRequested, this,
        [this](const QPoint &pixels) { platform::guarded([this, pixels] { notes_ContextMenu(pixels); }); });
}

bool NotesSpelling::isMarking() const
{
    return m_document->isMarking();
}

bool NotesSpelling::isActive() const
{
    return m_document->isActive();
}

bool NotesSpelling::fillContextMenu(QMenu &menu, int place)
{
    spelling::Service &service = m_session.spelling();
    spelling::Checker *checker = service.checker();
    if (!checker || !isActive())
        return false;
    const QTextBlock block = m_notes.document()->findBlock(place);
    if (!block.isValid())
        return false;
    const QString text = block.text();
    const int inBlock = place - block.position();
    for (const spelling::WordSpan &span : spelling::checkableWords(text)) {
        if (inBlock < span.start || inBlock > span.start + span.length)
            continue;
        const QString word = text.mid(span.start, span.length);
        if (!checker->isMisspelt(word))
            return false;
        const int start = block.position() + int(span.start);
        const int length = int(span.length);
        const QStringList suggestions = checker->suggestions(word, MostSuggestions);
        for (const QString &suggestion : suggestions) {
            QAction *item = menu.addAction(suggestion);
            connect(item, &QAction::triggered, this, [this, start, length, suggestion] {
                platform::guarded([&] { replaceWord(start, length, suggestion); });
            });
        }
        if (suggestions.isEmpty())
            menu.addAction(QStringLiteral("(Καμία πρόταση)"))->setEnabled(false);
        menu.addSeparator();
        connect(menu.addAction(QStringLiteral("Προσθήκη στο λεξικό")), &QAction::triggered, this,
            [this, word] { platform::guarded([&] { m_session.spelling().addToDictionary(word); }); });
        connect(menu.addAction(QStringLiteral("Παράβλεψη")), &QAction::triggered, this,
            [this, word] { platform::guarded([&] { m_session.spelling().ignore(word); }); });
        return true;
    }
    return false;
}

void NotesSpelling::notes_ContextMenu(const QPoint &pixels)
{
    // The box hands on the viewport's event, so the place is the viewport's; the Menu
    // key's lands near the caret.
    const int place = m_notes.cursorForPosition(pixels).position();
    auto *menu = new QMenu(&m_notes);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (!fillContextMenu(*menu, place)) {
        delete menu;
        return;
    }
    menu->popup(m_notes.viewport()->mapToGlobal(pixels));
}

void NotesSpelling::replaceWord(int start, int length, const QString &with)
{
    // One step of undo, in the format of the word it replaces.
    QTextCursor cursor(m_notes.document());
    cursor.setPosition(start);
    cursor.setPosition(start + length, QTextCursor::KeepAnchor);
    cursor.beginEditBlock();
    cursor.insertText(with);
    cursor.endEditBlock();
}
