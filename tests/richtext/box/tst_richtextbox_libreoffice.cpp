// What RichTextBox::SaveFile writes must open in a word processor as the pupil sees it
// in the notepad. LibreOffice Writer converts the saved file to flat ODF, and the text
// and the formats are read back from there.

#include "../../support/flatodf.h"

#include <richtextbox.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

using namespace testing;

class tst_RichTextBoxLibreOffice : public QObject
{
    Q_OBJECT

private slots:
    void savedFileOpensInWriterWithItsTextAndFormats()
    {
        const QString soffice = QStandardPaths::findExecutable(u"soffice"_s);
        if (soffice.isEmpty())
            QSKIP("LibreOffice (soffice) is not installed");

        RichTextBox box;
        box.setFont(QFont(u"Liberation Serif"_s, 12));
        box.setText(u"Έντονο πλάγιο υπογραμμισμένο διαγραμμένο\n"
                    "Κόκκινο και μπλε\n"
                    "Μεγάλα γράμματα\n"
                    "Στο κέντρο\n"
                    "Στα δεξιά\n"
                    "Παράγραφος με εσοχές που είναι αρκετά μακριά ώστε να πιάνει δύο γραμμές στη σελίδα του "
                    "επεξεργαστή κειμένου, για να φαίνεται και η προεξοχή\n"
                    "Πρώτη κουκίδα\n"
                    "Δεύτερη κουκίδα\n"
                    "Τέλος με\tστηλοθέτη"_s);
        const QString text = box.Text();
        auto select = [&](const QString &what) {
            const int at = int(text.indexOf(what));
            QVERIFY(at >= 0);
            box.setSelStart(at);
            box.setSelLength(int(what.size()));
        };
        select(u"Έντονο"_s);
        box.setSelBold(true);
        select(u"πλάγιο"_s);
        box.setSelItalic(true);
        select(u"υπογραμμισμένο"_s);
        box.setSelUnderline(true);
        select(u"διαγραμμένο"_s);
        box.setSelStrikeThru(true);
        select(u"Κόκκινο"_s);
        box.setSelColor(0x0000FF); // RGB(255, 0, 0)
        select(u"μπλε"_s);
        box.setSelColor(0xC00000); // RGB(0, 0, 192)
        select(u"Μεγάλα γράμματα"_s);
        box.setSelFontName(u"DejaVu Sans"_s);
        box.setSelFontSize(18);
        select(u"Στο κέντρο"_s);
        box.setSelAlignment(RichTextBox::AlignCenter);
        select(u"Στα δεξιά"_s);
        box.setSelAlignment(RichTextBox::AlignRight);
        select(u"Παράγραφος με εσοχές"_s);
        box.setSelIndent(1440);
        box.setSelHangingIndent(360);
        box.setSelRightIndent(720);
        select(u"στηλοθέτη"_s);
        box.setSelTabCount(1);
        box.setSelTabs(0, 2000);
        select(u"Πρώτη κουκίδα\nΔεύτερη"_s);
        box.setSelBullet(true);
        box.setSelIndent(360);
        box.setSelHangingIndent(360);

        QTemporaryDir dir;
        const QString rtf = dir.filePath(u"notes.rtf"_s);
        box.SaveFile(rtf);

        QTemporaryDir profile;
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(soffice,
            {u"-env:UserInstallation="_s + QUrl::fromLocalFile(profile.path()).toString(), u"--headless"_s,
                u"--norestore"_s, u"--convert-to"_s, u"fodt"_s, u"--outdir"_s, dir.path(), rtf});
        QVERIFY(process.waitForFinished(180000));
        const QString fodt = dir.filePath(u"notes.fodt"_s);
        QFile converted(fodt);
        QVERIFY2(converted.open(QIODevice::ReadOnly), process.readAll().constData());
        const FlatOdf odf(converted.readAll());

        QStringList paragraphs;
        for (const Paragraph &p : odf.paragraphs())
            paragraphs.append(p.text);
        QCOMPARE(paragraphs.join(u'\n'), text);

        QCOMPARE(odf.runOf(u"Έντονο"_s).value(u"fo:font-weight"_s), u"bold"_s);
        QCOMPARE(odf.runOf(u"πλάγιο"_s).value(u"fo:font-style"_s), u"italic"_s);
        QVERIFY(odf.runOf(u"πλάγιο"_s).value(u"fo:font-weight"_s, u"normal"_s) != u"bold"_s);
        QCOMPARE(odf.runOf(u"υπογραμμισμένο"_s).value(u"style:text-underline-style"_s), u"solid"_s);
        QCOMPARE(odf.runOf(u"διαγραμμένο"_s).value(u"style:text-line-through-style"_s), u"solid"_s);
        QCOMPARE(odf.runOf(u"Κόκκινο"_s).value(u"fo:color"_s), u"#ff0000"_s);
        QCOMPARE(odf.runOf(u"μπλε"_s).value(u"fo:color"_s), u"#0000c0"_s);
        QCOMPARE(odf.runOf(u"Μεγάλα"_s).value(u"fo:font-size"_s), u"18pt"_s);
        QVERIFY(odf.runOf(u"Μεγάλα"_s).value(u"style:font-name"_s).startsWith(u"DejaVu Sans"_s));
        QVERIFY(odf.runOf(u"Έντονο"_s).value(u"style:font-name"_s).startsWith(u"Liberation Serif"_s));
        QCOMPARE(odf.runOf(u"Έντονο"_s).value(u"fo:font-size"_s), u"12pt"_s);

        const Paragraph *centre = odf.paragraphOf(u"Στο κέντρο"_s);
        QVERIFY(centre);
        QCOMPARE(centre->properties.value(u"fo:text-align"_s), u"center"_s);
        const Paragraph *right = odf.paragraphOf(u"Στα δεξιά"_s);
        QVERIFY(right);
        QVERIFY(right->properties.value(u"fo:text-align"_s) == u"end"_s
            || right->properties.value(u"fo:text-align"_s) == u"right"_s);

        // The first line at SelIndent, the others at SelIndent + SelHangingIndent.
        const Paragraph *indented = odf.paragraphOf(u"Παράγραφος με εσοχές"_s);
        QVERIFY(indented);
        QCOMPARE(twips(indented->properties.value(u"fo:margin-left"_s)), 1800);
        QCOMPARE(twips(indented->properties.value(u"fo:text-indent"_s)), -360);
        QCOMPARE(twips(indented->properties.value(u"fo:margin-right"_s)), 720);

        const Paragraph *first = odf.paragraphOf(u"Πρώτη κουκίδα"_s);
        const Paragraph *second = odf.paragraphOf(u"Δεύτερη κουκίδα"_s);
        QVERIFY(first && second);
        QVERIFY(first->inList);
        QVERIFY(second->inList);
        const Paragraph *tabbed = odf.paragraphOf(u"Τέλος"_s);
        QVERIFY(tabbed);
        QVERIFY(!tabbed->inList);
        QCOMPARE(twips(tabbed->properties.value(u"tab-stops"_s)), 2000);
        QVERIFY(!indented->inList);
    }
};

QTEST_MAIN(tst_RichTextBoxLibreOffice)
#include "tst_richtextbox_libreoffice.moc"
