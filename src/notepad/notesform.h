#pragma once

#include "frmnotes.h"

#include <runtimeerror.h>
#include <session.h>

namespace modEditor {

// The session's notes window the procedures work on; raises 424 when there is none.
inline frmNotes &notesForm(Session &session)
{
    frmNotes *form = frmNotes::open(session, false);
    if (!form)
        throw platform::RuntimeError(
            platform::errors::ObjectRequired, QStringLiteral("Απαιτείται αντικείμενο"));
    return *form;
}

} // namespace modEditor
