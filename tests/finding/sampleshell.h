#pragma once

// The program's shell on the built sample course, with every child window registered, as
// the finding windows' tests in the shell start it, in the test's session. Pictures land in
// the test output folder.

#include "../support/testsession.h"

#include <childwindows.h>
#include <database.h>
#include <mdiform1.h>
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

// Puts a content file in the session.
inline void openContent(Session &session, const QString &contentFile)
{
    Session::Content &content = session.content();
    content.databasePath = contentFile;
    content.dataFolder = QFileInfo(contentFile).absolutePath();
    content.database = content::Database::OpenDatabase(contentFile);
}

// Opens the sample in the session and shows its shell; null when the shell did not show.
inline MDIForm1 *showSampleShell(Session &session)
{
    openContent(session, sampleCoursePath);
    registerChildWindows(session);
    session.setWindowFactory(Session::Window::StartScreen, [](Session &) { return nullptr; });
    auto *shell = session.window<MDIForm1>(Session::Window::Shell);
    shell->show();
    return QTest::qWaitForWindowExposed(shell) ? shell : nullptr;
}

// Closes the shell and ends the session, with everything it opened.
inline void endSampleShell(MDIForm1 *shell, std::unique_ptr<TestSession> &session)
{
    if (shell)
        shell->close();
    session.reset();
}

} // namespace testing
