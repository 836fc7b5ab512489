#pragma once

#include <QString>

namespace platform {
class Host;
}

// The conference program that schools receive beside the program, in the folder
// "Network" below the program's own folder.
namespace outside {

// The program to run: "Network/conference.exe" below `programFolder`, names matched
// without regard to case, or "Network/conference" when only a build without the
// extension is there. When neither exists, the first, so that the failure names it.
QString conferenceProgram(const QString &programFolder);

// Starts the conference program through `host` and does not wait for it. A program that
// will not start raises the run-time error "file not found", as any failed start does.
// Without a folder, the program's own.
void StartConference(platform::Host &host, const QString &programFolder);
void StartConference(platform::Host &host);

} // namespace outside
