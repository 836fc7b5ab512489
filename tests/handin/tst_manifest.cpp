#include "bundle.h"
#include "bundlereader.h"
#include "manifest.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

// The manifest is the one place where the pupil's side and the teacher's side meet: what
// one writes the other must read back whole, and a manifest that lies must be refused.
class tst_Manifest final : public QObject
{
    Q_OBJECT

private:
    static handin::Pupil pupil() { return {QStringLiteral("Μαρία Παπά"), QStringLiteral("Β2")}; }

    static handin::Place place()
    {
        return {QStringLiteral("Η Αθήνα του Περικλή"), 3, QStringLiteral("Θέμα"), 4,
            QStringLiteral("Σενάριο «α»"), 12, QStringLiteral("Δραστηριότητα 1")};
    }

    static QDateTime athensMorning()
    {
        return QDateTime(QDate(2026, 11, 25), QTime(10, 42, 7), QTimeZone(2 * 3600));
    }

    static QList<handin::File> files()
    {
        return {{QString::fromLatin1(handin::NoteRtfName), QByteArray("{\\rtf1 Καλημέρα}")},
            {handin::drawingName(1), QByteArray(1000, 'x')}};
    }

    static QJsonObject parsed(const handin::Manifest &manifest)
    {
        return QJsonDocument::fromJson(manifest.toJson()).object();
    }

    static QByteArray with(const handin::Manifest &manifest, const QString &key, const QJsonValue &value)
    {
        QJsonObject root = parsed(manifest);
        root.insert(key, value);
        return QJsonDocument(root).toJson();
    }

private slots:
    void readsBackWhatItWrote()
    {
        const auto written = handin::Manifest::describe(pupil(), place(), athensMorning(),
            QStringLiteral("0.1"), files());
        const auto read = handin::Manifest::fromJson(written.toJson());
        QVERIFY(read);
        QCOMPARE(read->pupil.name, pupil().name);
        QCOMPARE(read->pupil.className, pupil().className);
        QCOMPARE(read->place.contentTitle, place().contentTitle);
        QCOMPARE(read->place.scenarioID, 4);
        QCOMPARE(read->place.scenarioTitle, place().scenarioTitle);
        QCOMPARE(read->place.activityID, 12);
        QCOMPARE(read->time, athensMorning());
        QCOMPARE(read->time.offsetFromUtc(), 2 * 3600);
        QCOMPARE(read->version, QStringLiteral("0.1"));
        QCOMPARE(read->files.size(), 2);
        QCOMPARE(read->files.at(1).size, 1000);
        QCOMPARE(read->files.at(1).sha256, handin::sha256Hex(QByteArray(1000, 'x')));
    }

    void theTimeCarriesItsZone()
    {
        const auto manifest = handin::Manifest::describe(pupil(), place(), athensMorning(),
            QStringLiteral("0.1"), files());
        QCOMPARE(parsed(manifest).value(QStringLiteral("time")).toString(),
            QStringLiteral("2026-11-25T10:42:07+02:00"));
    }

    void refusesWhatIsNotAManifest_data()
    {
        QTest::addColumn<QByteArray>("json");
        const auto good = handin::Manifest::describe(pupil(), place(), athensMorning(),
            QStringLiteral("0.1"), files());
        QTest::newRow("not JSON") << QByteArray("{\"format\": 1,");
        QTest::newRow("an array") << QByteArray("[1, 2]");
        QTest::newRow("a later format") << with(good, QStringLiteral("format"), 2);
        QTest::newRow("pupil a number") << with(good, QStringLiteral("pupil"), 7);
        QTest::newRow("activity without id")
            << with(good, QStringLiteral("activity"), QJsonObject{{QStringLiteral("title"), QStringLiteral("x")}});
        QTest::newRow("activity id a fraction") << with(good, QStringLiteral("activity"),
            QJsonObject{{QStringLiteral("id"), 1.5}, {QStringLiteral("title"), QStringLiteral("x")}});
        QTest::newRow("time not a time") << with(good, QStringLiteral("time"), QStringLiteral("αύριο"));
        QTest::newRow("files not a list") << with(good, QStringLiteral("files"), QStringLiteral("note.rtf"));
        const auto file = [](const QString &name, double size, const QString &sha) {
            return QJsonArray{QJsonObject{{QStringLiteral("name"), name}, {QStringLiteral("size"), size},
                {QStringLiteral("sha256"), sha}}};
        };
        const QString sha = QString::fromLatin1(handin::sha256Hex("x"));
        QTest::newRow("a path for a name") << with(good, QStringLiteral("files"), file(QStringLiteral("../x"), 1, sha));
        QTest::newRow("a hidden name") << with(good, QStringLiteral("files"), file(QStringLiteral(".x"), 1, sha));
        QTest::newRow("a control character")
            << with(good, QStringLiteral("files"), file(QStringLiteral("a\u0007b"), 1, sha));
        QTest::newRow("a negative size") << with(good, QStringLiteral("files"), file(QStringLiteral("a"), -1, sha));
        QTest::newRow("a size past any disk")
            << with(good, QStringLiteral("files"), file(QStringLiteral("a"), 1e300, sha));
        QTest::newRow("a short hash") << with(good, QStringLiteral("files"), file(QStringLiteral("a"), 1, sha.left(10)));
        QTest::newRow("an upper-case hash")
            << with(good, QStringLiteral("files"), file(QStringLiteral("a"), 1, sha.toUpper()));
    }

    void refusesWhatIsNotAManifest()
    {
        QFETCH(QByteArray, json);
        QVERIFY(!handin::Manifest::fromJson(json));
    }

    void entryNamesArePlainAndShort()
    {
        QVERIFY(handin::isPlainEntryName(QStringLiteral("note.rtf")));
        QVERIFY(handin::isPlainEntryName(QString(60, QChar(0x03B1)))); // 120 bytes
        QVERIFY(!handin::isPlainEntryName(QString(61, QChar(0x03B1))));
        QVERIFY(!handin::isPlainEntryName(QStringLiteral("a/b")));
        QVERIFY(!handin::isPlainEntryName(QStringLiteral("a\\b")));
        QVERIFY(!handin::isPlainEntryName(QString()));
    }

    void theTeachersSideReadsThePupilsBundleWhole()
    {
        QTemporaryDir folder;
        const auto bundle = handin::makeBundle(pupil(), place(), athensMorning(), files());
        QVERIFY(!bundle.zip.isEmpty());
        QFile out(QDir(folder.path()).filePath(bundle.fileName));
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(bundle.zip);
        out.close();

        const handin::BundleInfo info = handin::readBundle(out.fileName());
        QVERIFY2(info.ok, qPrintable(info.damage));
        QCOMPARE(info.className, pupil().className);
        QCOMPARE(info.pupil, pupil().name);
        QCOMPARE(info.time, athensMorning());
        QCOMPARE(info.files.size(), 2);
        const auto note = handin::readEntry(out.fileName(), QString::fromLatin1(handin::NoteRtfName));
        QVERIFY(note);
        QCOMPARE(*note, files().first().data);
    }
};

QTEST_GUILESS_MAIN(tst_Manifest)
#include "tst_manifest.moc"
