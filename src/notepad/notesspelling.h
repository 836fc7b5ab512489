#pragma once

#include <QObject>

class QAction;
class QMenu;
class RichTextBox;
class Session;
namespace spelling {
class DocumentSpelling;
}

// The notepad's spell checking: the red marks under misspelt words, the menu entry that
// turns checking on and off («Έλεγχος ορθογραφίας», at the end of the menu it is given),
// and what the right button offers on a marked word: its suggestions, «Προσθήκη στο
// λεξικό», «Παράβλεψη».
class NotesSpelling final : public QObject
{
    Q_OBJECT

public:
    NotesSpelling(Session &session, RichTextBox &notes, QMenu &menu, QObject *parent);

    QAction *mnuSpelling = nullptr;

    // The marks are changing over the whole note: the box's change is no edit.
    bool isMarking() const;
    // Whether the marks are on the note now (checking on and the dictionary loaded).
    bool isActive() const;

    // Fills `menu` with what the right button offers at a place of the text; false, and
    // nothing added, when no marked word is there.
    bool fillContextMenu(QMenu &menu, int place);

private:
    void notes_ContextMenu(const QPoint &pixels);
    void replaceWord(int start, int length, const QString &with);

    Session &m_session;
    RichTextBox &m_notes;
    spelling::DocumentSpelling *m_document;
};
