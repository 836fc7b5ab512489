#pragma once

#include <runtimeerror.h>

#include <QString>

// The errors of the content engine, by the numbers and texts of the database engine the
// content was made for, so that the program's error box reads the same.
namespace content::errors {

inline constexpr int InvalidArgument = 3001;
inline constexpr int OperationInvalidWithoutIndex = 3019;
inline constexpr int NoCurrentRecord = 3021;
inline constexpr int FileNotFound = 3024;
inline constexpr int CannotOpenFile = 3051;
inline constexpr int InvalidFileName = 3055;
inline constexpr int CancelledByUser = 3059;
inline constexpr int TooFewParameters = 3061;
inline constexpr int SyntaxError = 3075;
inline constexpr int NoSuchTableOrQuery = 3078;
inline constexpr int InvalidOperation = 3219;
inline constexpr int ItemNotFound = 3265;
inline constexpr int NotSupportedForObject = 3251;
inline constexpr int UnrecognizedFormat = 3343;
inline constexpr int ObjectNoLongerSet = 3420;
inline constexpr int NotAnIndex = 3800;

platform::RuntimeError invalidArgument();
platform::RuntimeError noIndex();
platform::RuntimeError noCurrentRecord();
platform::RuntimeError fileNotFound(const QString &path);
platform::RuntimeError cannotOpen(const QString &path);
platform::RuntimeError invalidFileName();
platform::RuntimeError cancelled();
platform::RuntimeError tooFewParameters(int expected);
platform::RuntimeError syntaxError(const QString &sql);
platform::RuntimeError noSuchTable(const QString &name);
platform::RuntimeError invalidOperation();
platform::RuntimeError itemNotFound();
platform::RuntimeError notSupported();
platform::RuntimeError unrecognizedFormat(const QString &path);
platform::RuntimeError objectNoLongerSet();
platform::RuntimeError notAnIndex(const QString &name);

} // namespace content::errors
