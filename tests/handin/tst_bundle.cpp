#include "bundle.h"
#include "manifest.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTimeZone>

#include <zip.h>

#include <memory>

// The bundle is a ZIP any reader opens: every file as given, and a manifest whose sizes and
// SHA-256 sums are those of the files.
class tst_Bundle final : public QObject
{
    Q_OBJECT

private:
    struct Entry
    {
        QString name;
        QByteArray data;
        quint16 method = 0;
    };

    // Reads the whole archive back through libzip, from memory.
    static QList<Entry> unzip(const QByteArray &zip, bool *ok)
    {
        *ok = false;
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t *source
            = zip_source_buffer_create(zip.constData(), static_cast<zip_uint64_t>(zip.size()), 0, &error);
        if (!source)
            return {};
        zip_t *archive = zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, &error);
        zip_error_fini(&error);
        if (!archive) {
            zip_source_free(source);
            return {};
        }
        QList<Entry> entries;
        const zip_int64_t count = zip_get_num_entries(archive, 0);
        for (zip_int64_t i = 0; i < count; ++i) {
            zip_stat_t stat;
            if (zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &stat) != 0) {
                zip_discard(archive);
                return {};
            }
            Entry entry {QString::fromUtf8(stat.name), QByteArray(static_cast<qsizetype>(stat.size), '\0'),
                stat.comp_method};
            zip_file_t *file = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0);
            const zip_int64_t read = file ? zip_fread(file, entry.data.data(), stat.size) : -1;
            if (file)
                zip_fclose(file);
            if (read != static_cast<zip_int64_t>(stat.size)) {
                zip_discard(archive);
                return {};
            }
            entries.append(entry);
        }
        zip_discard(archive);
        *ok = true;
        return entries;
    }

    static QByteArray randomBytes(int size)
    {
        QByteArray bytes(size, '\0');
        QRandomGenerator generator(size);
        for (char &b : bytes)
            b = static_cast<char>(generator.bounded(256));
        return bytes;
    }

    static handin::Pupil pupil() { return {QStringLiteral("Μαρία"), QStringLiteral("Β2")}; }
    static handin::Place place()
    {
        return {QStringLiteral("Αρχαία Ιστορία"), 1, QStringLiteral("Αθήνα"), 2, QStringLiteral("Ο Περικλής"),
            3, QStringLiteral("Η Ακρόπολη")};
    }
    static QDateTime when() { return QDateTime(QDate(2026, 11, 25), QTime(10, 42, 7), QTimeZone(7200)); }

    static QList<handin::File> files()
    {
        return {
            {QString::fromLatin1(handin::NoteRtfName),
                QByteArray("{\\rtf1\\ansi Μαρία ") + QByteArray(5000, 'a') + "}"},
            {QString::fromLatin1(handin::NotePdfName), randomBytes(20000)},
            {handin::drawingName(1), randomBytes(30000)},
            {handin::drawingName(2), QByteArray()},
        };
    }

private slots:
    void holdsTheFilesAndTheirManifest()
    {
        const handin::Bundle bundle = handin::makeBundle(pupil(), place(), when(), files());
        QVERIFY(!bundle.zip.isEmpty());
        QVERIFY(bundle.fileName.startsWith(QStringLiteral("Β2_Μαρία_Η-Ακρόπολη_20261125-104207_")));

        bool ok = false;
        const QList<Entry> entries = unzip(bundle.zip, &ok);
        QVERIFY(ok);
        QCOMPARE(entries.size(), files().size() + 1);
        QCOMPARE(entries.first().name, QString::fromLatin1(handin::ManifestName));
        for (int i = 0; i < files().size(); ++i) {
            QCOMPARE(entries.at(i + 1).name, files().at(i).name);
            QCOMPARE(entries.at(i + 1).data, files().at(i).data);
        }
        // Pictures and PDF as they are; the rest deflated.
        QCOMPARE(entries.at(1).method, quint16(ZIP_CM_DEFLATE));
        QCOMPARE(entries.at(2).method, quint16(ZIP_CM_STORE));
        QCOMPARE(entries.at(3).method, quint16(ZIP_CM_STORE));

        const std::optional<handin::Manifest> manifest = handin::Manifest::fromJson(entries.first().data);
        QVERIFY(manifest);
        QCOMPARE(manifest->pupil.name, pupil().name);
        QCOMPARE(manifest->pupil.className, pupil().className);
        QCOMPARE(manifest->place.activityTitle, place().activityTitle);
        QCOMPARE(manifest->place.scenarioID, 2);
        QCOMPARE(manifest->time, when());
        QCOMPARE(manifest->version, handin::programVersion());
        QCOMPARE(manifest->files.size(), files().size());
        for (int i = 0; i < files().size(); ++i) {
            QCOMPARE(manifest->files.at(i).name, files().at(i).name);
            QCOMPARE(manifest->files.at(i).size, files().at(i).data.size());
            QCOMPARE(manifest->files.at(i).sha256, handin::sha256Hex(entries.at(i + 1).data));
        }
    }

    void sameInputSameBytes()
    {
        const handin::Bundle first = handin::makeBundle(pupil(), place(), when(), files());
        const handin::Bundle second = handin::makeBundle(pupil(), place(), when(), files());
        QCOMPARE(first.zip, second.zip);
    }

    void noteOnly()
    {
        const handin::Bundle bundle = handin::makeBundle(
            pupil(), place(), when(), {{QString::fromLatin1(handin::NoteRtfName), QByteArray("{\\rtf1 x}")}});
        bool ok = false;
        QCOMPARE(unzip(bundle.zip, &ok).size(), 2);
        QVERIFY(ok);
    }

    void refusesNamesThatAreNotPlain_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("path") << QStringLiteral("../note.rtf");
        QTest::newRow("hidden") << QStringLiteral(".note.rtf");
        QTest::newRow("empty") << QString();
        QTest::newRow("manifest") << QString::fromLatin1(handin::ManifestName);
        QTest::newRow("twice") << handin::drawingName(1);
        QTest::newRow("control") << QStringLiteral("a\nb.png");
    }

    void refusesNamesThatAreNotPlain()
    {
        QFETCH(QString, name);
        const handin::Bundle bundle
            = handin::makeBundle(pupil(), place(), when(), {{handin::drawingName(1), "x"}, {name, "y"}});
        QVERIFY(bundle.zip.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_Bundle)
#include "tst_bundle.moc"
