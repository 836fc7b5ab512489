#pragma once

#include <QFont>
#include <QString>
#include <QtGlobal>

class QPrinter;
class QWidget;
class Session;
namespace platform {
struct DialogAnswer;
struct DialogRequest;
} // namespace platform

// The one dialog object of the notes window, for open, save, print and font: its
// properties are set, a Show... call asks the session's host (Qt's own dialog, in Greek,
// on the desktop), and the answers are read back from the same properties. With CancelError set, cancelling
// raises the run-time error 32755, which callers treat as silence.
//
// The file dialogs start in the pupil's documents folder and, while the program runs,
// in the folder of the last file chosen.
class CommonDialog final
{
public:
    CommonDialog(Session &session, QWidget *owner);

    // Flags of the file, print and font dialogs, as far as they change what Qt shows;
    // FontEffects offers underline, strikeout and the colour.
    enum : int {
        OverwritePrompt = 0x2,
        HideReadOnly = 0x4,
        PrintSelection = 0x1,
        PathMustExist = 0x800,
        FileMustExist = 0x1000,
        FontEffects = 0x100,
    };

    // The font dialog's own title.
    static inline const QString FontDialogTitle = QStringLiteral("Γραμματοσειρά");

    QString DialogTitle;
    // "description|pattern|description|pattern".
    QString Filter;
    int FilterIndex = 1;
    int Flags = 0;
    bool CancelError = false;
    // The full path chosen, or the proposal before the dialog; FileTitle is its name.
    QString FileName;
    QString FileTitle;
    QString DefaultExt;
    // Print.
    int Copies = 1;
    // Font, as the dialog starts and as the user left it. Color is 0x00BBGGRR.
    QString FontName = QStringLiteral("Times New Roman");
    double FontSize = 12;
    bool FontBold = false;
    bool FontItalic = false;
    bool FontStrikethru = false;
    bool FontUnderline = false;
    quint32 Color = 0;

    void ShowOpen();
    void ShowSave();
    // Asks for the printer's settings; the printer then prints where the user said.
    void ShowPrinter(QPrinter &printer);
    void ShowFont();

    // The folder the next file dialog starts in.
    QString startFolder() const;

private:
    bool runFileDialog(bool save);
    platform::DialogAnswer ask(const platform::DialogRequest &request);
    void finishFile(const QString &path);
    void cancelled();

    Session &m_session;
    QWidget *m_owner;
};
