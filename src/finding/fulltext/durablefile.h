#pragma once

#include <QString>

// Replacing a file that readers may hold open, so that a crash or a power cut at any
// moment leaves either the old file or the new one whole under its name.
namespace fulltext {

// Puts `temporary`, written whole beside `target`, in its place: the temporary's data
// reaches the disk before the rename, and the rename before this returns. False when the
// data or the rename failed; `target` is then as it was.
bool replaceDurably(const QString &temporary, const QString &target);

// Removes the temporaries "TARGET.PID-N.tmp" left beside `target` by builds that never
// ended (a crash, a power cut): their process is gone or they have not been written to
// for an hour.
void removeLeftTemporaries(const QString &target);

} // namespace fulltext
