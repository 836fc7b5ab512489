#pragma once

#include <QString>

// The content's queries are written in the dialect of the engine the content was made
// for. SQLite reads nearly all of it as it is; the few constructs it reads differently
// are rewritten here, in one place, so that callers keep their SQL text unchanged.
namespace content {

// Double-quoted strings become single-quoted ones, #date# literals ISO text, `&` the
// concatenation operator, True and False -1 and 0, DISTINCTROW DISTINCT, and the
// wildcards * and ? of a LIKE pattern % and _. Everything else, including the text of
// quoted strings and [bracketed] names, passes through untouched.
QString jetToSqlite(const QString &sql);

} // namespace content
