#include "main_routine.h"

#include "frmnewfirst.h"
#include "jetimportprogress.h"

#include <contentpath.h>
#include <database.h>
#include <errorpolicy.h>
#include <modglobal.h>
#include <settings.h>

bool Main()
{
    // One handler for the whole start: every failure ends in the same box, and nothing
    // is retried or looked for elsewhere.
    return platform::guarded([] {
        // A machine without a selection gives empty strings; the open of the empty path
        // is what then fails, with the engine's own message.
        const platform::SelectedDatabase selected = platform::readSelectedDatabase();
        modGlobal::gDatabaseTitle = selected.title;
        modGlobal::gDatabasePath = selected.path;

        JetImportProgress progress;
        content::OpenOptions options;
        options.progress = progress.callback();
        modGlobal::gDatabase = content::Database::OpenDatabase(modGlobal::gDatabasePath, options);

        modGlobal::gDataFolder = platform::parentFolderName(modGlobal::gDatabasePath);

        auto *startScreen = new frmNewFirst;
        startScreen->show();
    });
}
