#pragma once

#include <QByteArray>
#include <QString>

// The Jet reader as a program of its own (tremidia-jet-reader, beside the program in
// libexec): the importing process starts it afresh for each file, so that libmdb, which
// trusts the file it is given, can crash or loop on a damaged file without harm, and no
// code runs in a copy of a threaded process.
//
// The reader reads the file's bytes from its standard input to the end, then writes
// messages to its standard output: one tag byte, then the fields in host byte order
// (both ends are built together and run on one machine).
namespace content::jet::protocol {

inline constexpr char Progress = 'P'; // qint64 done, qint64 total
inline constexpr char Error = 'E'; // qint32 number, qint32 length, UTF-8 text
inline constexpr char Data = 'D'; // qint64 length, the serialized SQLite database

// Exit codes of the reader besides 0.
inline constexpr int ExitReadError = 2; // an Error message was sent
inline constexpr int ExitWriteFailed = 3; // the importer stopped listening
inline constexpr int ExitUsage = 64;

} // namespace content::jet::protocol

namespace content::jet {

// The reader's whole run: its one optional argument is the Jet 3 code page; returns the
// exit code. Standard output and error go to /dev/null first (the messages keep a copy
// of standard output), so that what libmdb prints can't mix with them.
int runReaderProcess(int argc, char **argv);

// Where the reader program is: $TREMIDIA_JET_READER when set; else beside the running
// program under ../libexec/tremidia (an install, or the build tree, where the programs
// are in bin/ and the reader in libexec/tremidia/), in the program's own folder, in the
// build tree this was built in (for the tests' programs), and last in the configured
// install's libexec folder.
// Empty when none is there.
QString readerProgram();

} // namespace content::jet
