#include "main_routine.h"

#include "jetimportprogress.h"

#include <contentpath.h>
#include <database.h>
#include <errorpolicy.h>
#include <session.h>
#include <settings.h>

bool Main(Session &session)
{
    // One handler for the whole start: every failure ends in the same box, and nothing
    // is retried or looked for elsewhere.
    return platform::guarded([&session] {
        Session::Content &content = session.content();
        // A machine without a selection gives empty strings; the open of the empty path
        // is what then fails, with the engine's own message.
        const platform::SelectedDatabase selected = platform::readSelectedDatabase();
        content.databaseTitle = selected.title;
        content.databasePath = selected.path;

        JetImportProgress progress;
        content::OpenOptions options;
        options.progress = progress.callback();
        content.database = content::Database::OpenDatabase(content.databasePath, options);

        content.dataFolder = platform::parentFolderName(content.databasePath);

        if (QWidget *startScreen = session.window(Session::Window::StartScreen))
            startScreen->show();
    });
}
