// Qt's own dialogs speak Greek once the program's translations are installed.

#include <greekcatalogue.h>
#include <translations.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

class tst_MainGreek : public QObject
{
    Q_OBJECT

    static QString plain(QString text) { return text.remove(u'&'); }

private slots:
    void initTestCase()
    {
        QVERIFY(i18n::hasGreekCatalogue());
        QVERIFY(platform::installGreekTranslations(*qApp));
    }

    void messageBoxButtonsReadGreek()
    {
        QMessageBox box;
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        QCOMPARE(plain(box.button(QMessageBox::Yes)->text()), QStringLiteral("Ναι"));
        QCOMPARE(plain(box.button(QMessageBox::No)->text()), QStringLiteral("Όχι"));
        QCOMPARE(plain(box.button(QMessageBox::Cancel)->text()), QStringLiteral("Άκυρο"));
    }

    void okButtonReadsGreek()
    {
        QMessageBox box;
        box.setStandardButtons(QMessageBox::Ok);
        QCOMPARE(plain(box.button(QMessageBox::Ok)->text()), QStringLiteral("Εντάξει"));
    }

    void buttonBoxReadsGreek()
    {
        QDialogButtonBox box(QDialogButtonBox::Save | QDialogButtonBox::Open | QDialogButtonBox::Close
            | QDialogButtonBox::Apply);
        QCOMPARE(plain(box.button(QDialogButtonBox::Save)->text()), QStringLiteral("Αποθήκευση"));
        QCOMPARE(plain(box.button(QDialogButtonBox::Open)->text()), QStringLiteral("Άνοιγμα"));
        QCOMPARE(plain(box.button(QDialogButtonBox::Close)->text()), QStringLiteral("Κλείσιμο"));
        QCOMPARE(plain(box.button(QDialogButtonBox::Apply)->text()), QStringLiteral("Εφαρμογή"));
    }

    void fileDialogShowsGreekLabels()
    {
        QFileDialog dialog(nullptr, QStringLiteral("Αποθήκευση"), QDir::tempPath());
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));

        auto label = [&](const char *name) {
            auto *l = dialog.findChild<QLabel *>(QString::fromLatin1(name));
            return l ? plain(l->text()) : QString();
        };
        QCOMPARE(label("lookInLabel"), QStringLiteral("Αναζήτηση σε:"));
        QCOMPARE(label("fileNameLabel"), QStringLiteral("Όνομα αρχείου:"));
        QCOMPARE(label("fileTypeLabel"), QStringLiteral("Αρχεία τύπου:"));

        auto *back = dialog.findChild<QToolButton *>(QStringLiteral("backButton"));
        QVERIFY(back);
        QCOMPARE(back->toolTip(), QStringLiteral("Πίσω"));
        auto *newFolder = dialog.findChild<QToolButton *>(QStringLiteral("newFolderButton"));
        QVERIFY(newFolder);
        QCOMPARE(newFolder->toolTip(), QStringLiteral("Δημιουργία νέου φακέλου"));

        auto *buttons = dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
        QVERIFY(buttons);
        QCOMPARE(plain(buttons->button(QDialogButtonBox::Cancel)->text()), QStringLiteral("Άκυρο"));
        QString accept;
        for (QAbstractButton *button : buttons->buttons())
            if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole)
                accept = plain(button->text());
        QCOMPARE(accept, QStringLiteral("Αποθήκευση"));
        dialog.close();
    }

    void overwriteQuestionIsGreek()
    {
        QCOMPARE(QCoreApplication::translate("QFileDialog", "%1 already exists.\nDo you want to replace it?"),
            QStringLiteral("Το %1 υπάρχει ήδη.\nΘέλετε να το αντικαταστήσετε;"));
    }

    void editMenusAreGreek()
    {
        QCOMPARE(plain(QCoreApplication::translate("QLineEdit", "&Undo")), QStringLiteral("Αναίρεση"));
        QCOMPARE(
            plain(QCoreApplication::translate("QWidgetTextControl", "&Paste")), QStringLiteral("Επικόλληση"));
        QCOMPARE(QCoreApplication::translate("QLineEdit", "Select All"), QStringLiteral("Επιλογή όλων"));
    }
};

QTEST_MAIN(tst_MainGreek)
#include "tst_main_greek.moc"
