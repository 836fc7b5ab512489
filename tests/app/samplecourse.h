#pragma once

// The bundled sample course, as the program opens it, for the tests that walk the real
// windows with the keyboard and read them as a screen reader does.

#include <childwindows.h>
#include <database.h>
#include <main_routine.h>
#include <mdiform1.h>
#include <session.h>
#include <sourceviewer.h>
#include <viewingwindows.h>

#include <QFileInfo>
#include <QString>

namespace testing {

inline const QString SampleDatabase = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");

// Opens the sample as the session's content and registers the program's windows on it.
inline bool openSampleCourse(Session &session)
{
    if (!QFileInfo::exists(SampleDatabase))
        return false;
    Session::Content &content = session.content();
    content.databaseTitle = QStringLiteral("Το Αιγαίο στην αρχαιότητα");
    content.databasePath = SampleDatabase;
    content.database = content::Database::OpenDatabase(SampleDatabase);
    content.dataFolder = QFileInfo(SampleDatabase).absolutePath();
    registerChildWindows(session);
    return true;
}

} // namespace testing
