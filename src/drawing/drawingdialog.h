#pragma once

#include <QString>

#include <functional>
#include <memory>

class QPrinter;
class QWidget;

namespace drawing {

// The drawing window's file and print dialogs, set up by properties and shown by one
// call each. A cancel raises error 32755 when CancelError is on, so that the caller's
// handler treats it as silence.
class CommonDialog final
{
public:
    CommonDialog();
    ~CommonDialog();
    Q_DISABLE_COPY_MOVE(CommonDialog)

    QString FileName;
    // "Description|pattern" pairs joined by "|".
    QString Filter;
    QString DefaultExt;
    QString DialogTitle;
    int Flags = 0;
    bool CancelError = false;
    // After ShowPrinter: whether the printer chosen is the one to print on.
    bool PrinterDefault = true;

    void ShowOpen(QWidget *parent);
    void ShowSave(QWidget *parent);
    void ShowPrinter(QWidget *parent);

    // The printer the print dialog set up.
    QPrinter &Printer();

    // Tests stand in for the user: the hook receives the dialog about to show and
    // answers true for OK (having set FileName or the printer) or false for a cancel.
    // An empty function restores the real dialogs.
    enum class Action { Open, Save, Print };
    using Hook = std::function<bool(CommonDialog &dialog, Action action)>;
    static void setHook(Hook hook);

private:
    void finish(bool accepted);

    std::unique_ptr<QPrinter> m_printer;
};

} // namespace drawing
