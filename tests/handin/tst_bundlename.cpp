#include "bundle.h"
#include "manifest.h"

#include <QRegularExpression>
#include <QTest>

// The bundle's file name: what the pupil typed, made safe for any share and kept short.
class tst_BundleName final : public QObject
{
    Q_OBJECT

private:
    static QDateTime when() { return QDateTime(QDate(2026, 11, 25), QTime(10, 42, 7)); }

    // Whatever was typed, the name is a plain file name of at most 120 bytes that ends in
    // the time and a random part.
    static void checkSafe(const QString &name)
    {
        QVERIFY2(handin::isPlainEntryName(name), qPrintable(name));
        QVERIFY2(name.toUtf8().size() <= handin::MaxBundleNameBytes, qPrintable(name));
        QCOMPARE(QString::fromUtf8(name.toUtf8()), name); // whole UTF-8 sequences only
        QVERIFY(!name.contains(QChar::ReplacementCharacter));
        static const QRegularExpression shape(
            QStringLiteral("^[^_/\\\\.]+_[^_/\\\\.]+_[^_/\\\\.]+_20261125-104207_[A-Z0-9]{4}\\.zip$"));
        QVERIFY2(shape.match(name).hasMatch(), qPrintable(name));
        for (const QChar c : name)
            QVERIFY(c.category() != QChar::Other_Control && c.category() != QChar::Other_Format);
    }

    static QStringList typedParts(const QString &name) { return name.split(u'_').mid(0, 3); }

private slots:
    void keepsGreekWordsJoinedByDashes()
    {
        const QString name = handin::bundleName({QStringLiteral("Μαρία Παπαδοπούλου"), QStringLiteral("Β2")},
            QStringLiteral("Η μάχη του  Μαραθώνα"), when());
        checkSafe(name);
        QVERIFY2(
            name.startsWith(QStringLiteral("Β2_Μαρία-Παπαδοπούλου_Η-μάχη-του-Μαραθώνα_20261125-104207_")),
            qPrintable(name));
    }

    void dropsPathsAndPunctuation()
    {
        const QString name = handin::bundleName({QStringLiteral("../x"), QStringLiteral("/etc/passwd")},
            QStringLiteral("..\\..\\win.ini"), when());
        checkSafe(name);
        QCOMPARE(typedParts(name),
            (QStringList {QStringLiteral("etcpasswd"), QStringLiteral("x"), QStringLiteral("winini")}));
    }

    void dropsControlCharacters()
    {
        const QString name
            = handin::bundleName({QStringLiteral("Μα\u0001ρία\nΚ\t\u007f\u200e"), QStringLiteral("Γ\r1")},
                QStringLiteral("α\u0000β"), when());
        checkSafe(name);
        QCOMPARE(typedParts(name),
            (QStringList {QStringLiteral("Γ-1"), QStringLiteral("Μαρία-Κ"), QStringLiteral("αβ")}));
    }

    void givesEmptyPartsAFallback()
    {
        const QString name = handin::bundleName(
            {QStringLiteral("..."), QStringLiteral(" . ")}, QStringLiteral(".."), when());
        checkSafe(name);
        QCOMPARE(typedParts(name),
            (QStringList {QStringLiteral("χωρίς-τμήμα"), QStringLiteral("χωρίς-όνομα"),
                QStringLiteral("χωρίς-δραστηριότητα")}));
        checkSafe(handin::bundleName({}, {}, when()));
    }

    void composesAccents()
    {
        // «ί» typed as ι + combining acute stays one letter.
        QCOMPARE(handin::cleanNamePart(QStringLiteral("Μαρι\u0301α"), QStringLiteral("-")),
            QStringLiteral("Μαρία"));
        QCOMPARE(
            handin::cleanNamePart(QStringLiteral("  -α__β-  "), QStringLiteral("-")), QStringLiteral("α-β"));
    }

    void shortensLongGreekNamesWithinTheBytes()
    {
        const QString longName(300, QChar(u'λ')); // 2 bytes each in UTF-8
        const QString name
            = handin::bundleName({longName, QStringLiteral("Β2")}, QStringLiteral("Μάχη"), when());
        checkSafe(name);
        const QStringList parts = typedParts(name);
        QCOMPARE(parts.at(0), QStringLiteral("Β2"));
        QCOMPARE(parts.at(2), QStringLiteral("Μάχη"));
        QVERIFY(parts.at(1).startsWith(QStringLiteral("λλλλλ")));
        // Shortened only as far as needed: one more letter would not fit.
        QVERIFY(name.toUtf8().size() > handin::MaxBundleNameBytes - 2);
    }

    void shortensEveryLongPart()
    {
        const QString greek(300, QChar(u'ω'));
        const QString name = handin::bundleName({greek, greek}, greek + QStringLiteral(" τέλος"), when());
        checkSafe(name);
        for (const QString &part : typedParts(name))
            QVERIFY2(part.size() >= 10, qPrintable(part));
    }

    void neverCutsACodePointInTwo()
    {
        // Letters outside the Basic Multilingual Plane: 4 bytes, two UTF-16 units each.
        QString wide;
        for (int i = 0; i < 100; ++i)
            wide += QString::fromUcs4(U"\U0001D400", 1);
        QVERIFY(QChar::isLetter(U'\U0001D400'));
        const QString name = handin::bundleName({wide, QStringLiteral("Α1")}, wide, when());
        checkSafe(name);
        for (const QString &part : typedParts(name)) {
            QVERIFY(!part.isEmpty());
            QVERIFY(!part.back().isHighSurrogate());
        }
        // A cut that leaves a '-' at the end takes it away too.
        const QString dashed = QString(15, QChar(u'α')) + QStringLiteral(" ") + QString(200, QChar(u'β'));
        const QString cut = handin::bundleName({dashed, dashed}, dashed, when());
        checkSafe(cut);
        QCOMPARE(typedParts(cut), QStringList(3, QString(15, QChar(u'α'))));
    }

    void randomPartDiffers()
    {
        QSet<QString> names;
        for (int i = 0; i < 20; ++i)
            names.insert(
                handin::bundleName({QStringLiteral("Ν"), QStringLiteral("Τ")}, QStringLiteral("Δ"), when()));
        QVERIFY(names.size() > 15);
    }

    void freshRandomPartKeepsTheRest()
    {
        const QString name = handin::bundleName(
            {QStringLiteral("Νίκος"), QStringLiteral("Α1")}, QStringLiteral("Χάρτης"), when());
        const QString fresh = handin::withFreshRandomPart(name);
        checkSafe(fresh);
        QVERIFY(fresh != name);
        QCOMPARE(fresh.left(name.size() - 8), name.left(name.size() - 8));
        QCOMPARE(fresh.size(), name.size());
        const QString other = handin::withFreshRandomPart(QStringLiteral("work.zip"));
        QVERIFY2(QRegularExpression(QStringLiteral("^work_[A-Z0-9]{4}\\.zip$")).match(other).hasMatch(),
            qPrintable(other));
    }
};

QTEST_GUILESS_MAIN(tst_BundleName)
#include "tst_bundlename.moc"
