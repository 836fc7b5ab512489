#pragma once

// The bundled sample course, as the program opens it, for the tests that walk the real
// windows with the keyboard and read them as a screen reader does.

#include <childwindows.h>
#include <database.h>
#include <mdiform1.h>
#include <modglobal.h>
#include <session.h>
#include <sourceviewer.h>
#include <viewingwindows.h>

#include <QFileInfo>
#include <QString>

namespace testing {

inline const QString SampleDatabase = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");

// Opens the sample as the program's database and registers the program's windows.
inline bool openSampleCourse()
{
    if (!QFileInfo::exists(SampleDatabase))
        return false;
    modGlobal::gDatabaseTitle = QStringLiteral("Το Αιγαίο στην αρχαιότητα");
    modGlobal::gDatabasePath = SampleDatabase;
    modGlobal::gDatabase = content::Database::OpenDatabase(SampleDatabase);
    modGlobal::gDataFolder = QFileInfo(SampleDatabase).absolutePath();
    MDIForm1::registerDefaultInstance();
    registerChildWindows();
    registerViewingWindows(*Session::current());
    return true;
}

} // namespace testing
