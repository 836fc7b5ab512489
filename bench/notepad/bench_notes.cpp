// Times of the notepad on a long note (about a hundred printed pages, formatted): saving,
// opening, printing to PDF, and a search from the top to a word near the end.

#include <commondialog.h>
#include <frmfind.h>
#include <frmnotes.h>
#include <modeditor.h>
#include <msgbox.h>
#include <notepadstate.h>
#include <richtextbox.h>
#include <latethreads.h>
#include <session.h>

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

// The desktop, with its user saying "no" to every question, choosing `file` in the file
// dialogs and printing to `pdf`.
class BenchHost final : public platform::DesktopHost
{
public:
    BenchHost(QString file, QString pdf)
        : m_file(std::move(file))
        , m_pdf(std::move(pdf))
    {
    }
    int messageBox(const QString &, int, const QString &, QWidget *) override { return platform::vbNo; }
    platform::DialogAnswer dialog(const platform::DialogRequest &request, QWidget *) override
    {
        platform::DialogAnswer answer;
        answer.accepted = true;
        answer.fileName = m_file;
        if (request.kind == platform::DialogRequest::Kind::Print && request.printer) {
            request.printer->setOutputFormat(QPrinter::PdfFormat);
            request.printer->setOutputFileName(m_pdf);
            answer.copies = request.printer->copyCount();
        }
        return answer;
    }

private:
    QString m_file;
    QString m_pdf;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("notes.rtf"));
    const QString pdf = dir.filePath(QStringLiteral("notes.pdf"));
    platform::LateThreads late;
    Session session(std::make_unique<BenchHost>(file, pdf), late);

    frmNotes *form = frmNotes::open(session, true);
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

    QElapsedTimer clock;
    session.notepad().CurrentFile = file;
    clock.start();
    modEditor::FileSave(session);
    report("notes_save", clock.elapsed());
    std::printf("file: %lld bytes\n", static_cast<long long>(QFileInfo(file).size()));

    clock.restart();
    modEditor::FileOpen(session);
    report("notes_open", clock.elapsed());

    int pages = 0;
    session.notepad().printJobObserver = [&](int count) { pages = count; };
    notes.setSelStart(0);
    clock.restart();
    modEditor::PrepareForPrinter(session, notes, 1440, 1440);
    modEditor::PrintDocument(session);
    report("notes_print_pdf", clock.elapsed());
    std::printf("pages: %d\n", pages);

    // A search down from the top to the last word; places stay within 16 bits.
    notes.setText(lines.mid(0, 400).join(u'\n') + QStringLiteral(" Τέλος"));
    notes.setSelStart(0);
    form->mnuFind->trigger();
    frmFind *find = frmFind::open(session, false);
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
