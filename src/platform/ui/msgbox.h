#pragma once

#include <QString>
#include <QStringView>


class QWidget;

// Message boxes in the styles the program uses. A style is a button set plus an icon,
// added together: 16 is OK with a critical icon, 48 OK with a warning, 64 OK with
// information, 35 Yes/No/Cancel with a question.
namespace platform {

enum MsgBoxStyle : int {
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbYesNoCancel = 3,
    vbYesNo = 4,
    vbCritical = 16,
    vbQuestion = 32,
    vbExclamation = 48,
    vbInformation = 64,
};

enum MsgBoxResult : int {
    vbOK = 1,
    vbCancel = 2,
    vbYes = 6,
    vbNo = 7,
};

inline constexpr QStringView ProgramTitle = u"Τρεμίδια";

// Shows a modal box and returns the button pressed. The title defaults to the
// program's name. The box goes through the running session's host (host.h): a test's
// host answers it.
int MsgBox(const QString &text, int style = vbOKOnly, const QString &title = ProgramTitle.toString(),
           QWidget *parent = nullptr);

} // namespace platform
