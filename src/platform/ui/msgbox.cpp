#include "msgbox.h"

#include "host.h"

#include <QApplication>
#include <QMessageBox>

namespace platform {

int MsgBox(const QString &text, int style, const QString &title, QWidget *parent)
{
    if (Host *host = Host::active())
        return host->messageBox(text, style, title, parent);
    return showMessageBox(text, style, title, parent);
}

int showMessageBox(const QString &text, int style, const QString &title, QWidget *parent)
{
    QMessageBox box(parent ? parent : QApplication::activeWindow());
    box.setWindowTitle(title);
    box.setText(text);

    switch (style & 0x70) {
    case vbCritical: box.setIcon(QMessageBox::Critical); break;
    case vbQuestion: box.setIcon(QMessageBox::Question); break;
    case vbExclamation: box.setIcon(QMessageBox::Warning); break;
    case vbInformation: box.setIcon(QMessageBox::Information); break;
    default: box.setIcon(QMessageBox::NoIcon); break;
    }

    switch (style & 0x7) {
    case vbOKCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        break;
    case vbYesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    case vbYesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    default:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    }

    switch (box.exec()) {
    case QMessageBox::Yes: return vbYes;
    case QMessageBox::No: return vbNo;
    case QMessageBox::Cancel: return vbCancel;
    default: return vbOK;
    }
}

} // namespace platform
