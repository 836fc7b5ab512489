// Times of the notepad on a long note (about a hundred printed pages, formatted): saving,
// opening, printing to PDF, and a search from the top to a word near the end.

#include <commondialog.h>
#include <frmfind.h>
#include <frmnotes.h>
#include <modeditor.h>
#include <msgbox.h>
#include <richtextbox.h>

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLineEdit>
#include <QPrinter>
#include <QRadioButton>
#include <QTemporaryDir>

#include <cstdio>

namespace {

void report(const char *name, qint64 ms)
{
    std::printf("%s: %lld ms\n", name, static_cast<long long>(ms));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    platform::setMsgBoxHook([](const QString &, int, const QString &) { return int(platform::vbNo); });
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("notes.rtf"));
    const QString pdf = dir.filePath(QStringLiteral("notes.pdf"));

    frmNotes *form = frmNotes::instance(true);
    form->show();
    RichTextBox &notes = *form->notes;
    QStringList lines;
    for (int i = 1; i <= 5000; ++i)
        lines.append(
            QStringLiteral("Γραμμή %1: ο ναός της Αθηνάς στην Ακρόπολη, με τα γλυπτά του Φειδία.").arg(i));
    lines.last() += QStringLiteral(" Τέλος");
    notes.setText(lines.join(u'\n'));
    int place = 0;
    for (int i = 0; i < 5000; ++i) {
        if (i % 7 == 0) {
            notes.setSelStart(place);
            notes.setSelLength(6);
            notes.setSelBold(true);
            notes.setSelColor(0x0000C0);
        }
        place += int(lines.at(i).size()) + 1;
    }
    std::printf("note: %d characters\n", notes.TextLength());

    CommonDialog::setHook([&](CommonDialog::Kind kind, CommonDialog &dialog, QPrinter *printer) {
        if (kind == CommonDialog::Kind::Print) {
            printer->setOutputFormat(QPrinter::PdfFormat);
            printer->setOutputFileName(pdf);
        } else {
            dialog.FileName = file;
        }
        return true;
    });

    QElapsedTimer clock;
    modEditor::CurrentFile = file;
    clock.start();
    modEditor::FileSave();
    report("notes_save", clock.elapsed());
    std::printf("file: %lld bytes\n", static_cast<long long>(QFileInfo(file).size()));

    clock.restart();
    modEditor::FileOpen();
    report("notes_open", clock.elapsed());

    int pages = 0;
    modEditor::setPrintJobObserver([&](int count) { pages = count; });
    notes.setSelStart(0);
    clock.restart();
    modEditor::PrepareForPrinter(notes, 1440, 1440);
    modEditor::PrintDocument();
    report("notes_print_pdf", clock.elapsed());
    std::printf("pages: %d\n", pages);

    // A search down from the top to the last word; places stay within 16 bits.
    notes.setText(lines.mid(0, 400).join(u'\n') + QStringLiteral(" Τέλος"));
    notes.setSelStart(0);
    form->mnuFind->trigger();
    frmFind *find = frmFind::instance(false);
    find->optionDirection[1]->click();
    find->txtFind->setText(QStringLiteral("Τέλος"));
    clock.restart();
    find->cmdFind_Click();
    report("notes_find_down", clock.elapsed());
    find->optionDirection[0]->click();
    notes.setSelStart(notes.TextLength());
    clock.restart();
    find->cmdFind_Click();
    report("notes_find_up", clock.elapsed());
    form->NotesDirty = false;
    form->close();
    return 0;
}
