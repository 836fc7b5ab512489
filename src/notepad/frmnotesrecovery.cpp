#include "frmnotes.h"
#include "modeditor.h"

#include <notepadstate.h>

#include <recoverystore.h>
#include <richtextbox.h>
#include <rtf.h>
#include <session.h>
#include <workkeeper.h>

// The note is kept as RTF through our own writer, as the notepad saves it.
std::optional<recovery::Work> frmNotes::unsavedWork() const
{
    if (!NotesDirty)
        return std::nullopt;
    recovery::Work work;
    work.content = richtext::writeDocument(*notes->document());
    work.extension = QStringLiteral("rtf");
    work.details.insert(QStringLiteral("fileName"), m_session.notepad().CurrentFile);
    return work;
}

void frmNotes::RestoreWork(const recovery::Entry &lost)
{
    notes->LoadFile(lost.contentPath);
    m_session.notepad().CurrentFile = lost.details.value(QStringLiteral("fileName")).toString();
    // Unsaved, as it was: the closing asks about it and a save writes to its file.
    NotesDirty = true;
    Recovery->takeOver(lost);
}
