#include "frmnotes.h"
#include "modeditor.h"

#include <recoverystore.h>
#include <richtextbox.h>
#include <workkeeper.h>

void frmNotes::RestoreWork(const recovery::Entry &lost)
{
    notes->LoadFile(lost.contentPath);
    modEditor::CurrentFile = lost.details.value(QStringLiteral("fileName")).toString();
    // Unsaved, as it was: the closing asks about it and a save writes to its file.
    NotesDirty = true;
    Recovery->takeOver(lost);
}
