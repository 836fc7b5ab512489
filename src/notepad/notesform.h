#pragma once

#include "frmnotes.h"

#include <runtimeerror.h>

namespace modEditor {

// The notes window the procedures work on; raises 424 when there is none.
inline frmNotes &notesForm()
{
    frmNotes *form = frmNotes::instance(false);
    if (!form)
        throw platform::RuntimeError(
            platform::errors::ObjectRequired, QStringLiteral("Απαιτείται αντικείμενο"));
    return *form;
}

} // namespace modEditor
