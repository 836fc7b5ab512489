#pragma once

// The program's shell on the built sample course, with every child window registered, as
// the finding windows' tests in the shell start it. Pictures land in the test output folder.

#include "../support/msgboxrecorder.h"
#include "../support/testsession.h"

#include <childwindows.h>
#include <database.h>
#include <mdiform1.h>
#include <modglobal.h>
#include <session.h>

#include <QDir>
#include <QFileInfo>
#include <QTest>

namespace testing {

inline const QString sampleCoursePath = QStringLiteral(TREMIDIA_BINARY_DIR "/sample/tremidia.sqlite");

inline void savePicture(QWidget *w, const QString &name)
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
    QVERIFY(QDir().mkpath(QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR)));
    const QString file = QStringLiteral(TREMIDIA_TEST_OUTPUT_DIR "/") + name;
    QVERIFY(w->grab().save(file, "PNG"));
    qInfo("picture: %s", qPrintable(file));
}

// Opens the sample and shows its shell; null when the shell did not show.
inline MDIForm1 *showSampleShell(Session &session, MsgBoxRecorder &boxes)
{
    modGlobal::gDatabasePath = sampleCoursePath;
    modGlobal::gDataFolder = QFileInfo(sampleCoursePath).absolutePath();
    modGlobal::gDatabase = content::Database::OpenDatabase(sampleCoursePath);
    // session: the shell reads the session's content; the finding windows still modGlobal.
    session.content().databasePath = sampleCoursePath;
    session.content().dataFolder = QFileInfo(sampleCoursePath).absolutePath();
    session.content().database = content::Database::OpenDatabase(sampleCoursePath);
    registerChildWindows(session);
    session.setWindowFactory(Session::Window::StartScreen, [](Session &) { return nullptr; });
    boxes.install();
    auto *shell = session.window<MDIForm1>(Session::Window::Shell);
    shell->show();
    return QTest::qWaitForWindowExposed(shell) ? shell : nullptr;
}

} // namespace testing
