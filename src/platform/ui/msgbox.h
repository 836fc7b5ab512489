#pragma once

#include <QString>
#include <QStringView>

#include <functional>

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
// program's name.
int MsgBox(const QString &text, int style = vbOKOnly, const QString &title = ProgramTitle.toString(),
           QWidget *parent = nullptr);

// Tests (and only tests) replace the modal dialog: the hook receives what would have
// been shown and answers for the user. Passing an empty function restores the dialog.
using MsgBoxHook = std::function<int(const QString &text, int style, const QString &title)>;
void setMsgBoxHook(MsgBoxHook hook);

} // namespace platform
