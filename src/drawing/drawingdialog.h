#pragma once

#include <QString>

#include <memory>

class QPrinter;
class QWidget;
class Session;

namespace drawing {

// The drawing window's file and print dialogs, set up by properties and shown by one
// call each, through the session's host. A cancel raises error 32755 when CancelError is on, so that the
// caller's handler treats it as silence.
class CommonDialog final
{
public:
    explicit CommonDialog(Session &session);
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

private:
    void showFile(bool save, QWidget *parent);
    void finish(bool accepted);

    Session &m_session;
    std::unique_ptr<QPrinter> m_printer;
};

} // namespace drawing
