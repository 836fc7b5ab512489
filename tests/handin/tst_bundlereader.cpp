// The teacher's reading of bundles: whole ones read, and every broken or hostile one
// reported damaged, without a crash and without unpacking more than the limits allow.

#include "bundlezips.h"

#include <bundlereader.h>

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <sys/resource.h>

using namespace handin;
using bundlezips::Entries;

namespace {

const QDateTime When(QDate(2026, 11, 25), QTime(10, 42, 7), Qt::OffsetFromUTC, 7200);

QList<File> someFiles()
{
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QByteArray png;
    {
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        picture.save(&buffer, "PNG");
    }
    return {{QStringLiteral("note.rtf"), bundlezips::noteRtf(QStringLiteral("Η σημείωσή μου"))},
        {QStringLiteral("drawing-1.png"), png}};
}

// Peak memory of this process, in megabytes.
qint64 peakMegabytes()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace

class tst_BundleReader : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString path(const QString &name) const { return m_dir->filePath(name); }

    // The name a pupil's bundle has, so that a damaged one is still told by its name.
    QString bundlePath() const
    {
        return path(QStringLiteral("Β2_Μαρία_Δραστηριότητα-1_20261125-104207_a1b2.zip"));
    }

    void expectDamaged(const BundleInfo &info)
    {
        QVERIFY(!info.ok);
        QVERIFY(!info.damage.isEmpty());
        QCOMPARE(info.className, QStringLiteral("Β2"));
        QCOMPARE(info.pupil, QStringLiteral("Μαρία"));
    }

    Entries wholeEntries() const
    {
        const QList<File> files = someFiles();
        return bundlezips::entriesOf(bundlezips::manifestOf(QStringLiteral("Μαρία"), QStringLiteral("Β2"), 7,
                                         QStringLiteral("Δραστηριότητα 1"), When, files),
            files);
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
    }
    void cleanup() { m_dir.reset(); }

    void readsAWholeBundle()
    {
        QVERIFY(bundlezips::writeZip(bundlePath(), wholeEntries()));
        const BundleInfo info = readBundle(bundlePath());
        QVERIFY2(info.ok, qPrintable(info.damage));
        QVERIFY(info.manifest);
        QCOMPARE(info.className, QStringLiteral("Β2"));
        QCOMPARE(info.pupil, QStringLiteral("Μαρία"));
        QCOMPARE(info.activity, QStringLiteral("Δραστηριότητα 1"));
        QCOMPARE(info.activityID, 7);
        QCOMPARE(info.time, When);
        QCOMPARE(info.files, (QStringList {QStringLiteral("note.rtf"), QStringLiteral("drawing-1.png")}));
        const std::optional<QByteArray> note = readEntry(bundlePath(), QStringLiteral("note.rtf"));
        QVERIFY(note);
        QCOMPARE(*note, someFiles().first().data);
        QVERIFY(!readEntry(bundlePath(), QStringLiteral("drawing-2.png")));
    }

    void notAZipIsDamaged()
    {
        QFile file(bundlePath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("this is not a zip at all\n");
        file.close();
        const BundleInfo info = readBundle(bundlePath());
        expectDamaged(info);
        QCOMPARE(info.activity, QStringLiteral("Δραστηριότητα-1"));
        QCOMPARE(info.time, QDateTime(QDate(2026, 11, 25), QTime(10, 42, 7)));
        QVERIFY(!readEntry(bundlePath(), QStringLiteral("note.rtf")));
    }

    void anEmptyFileIsDamaged()
    {
        QFile file(bundlePath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        expectDamaged(readBundle(bundlePath()));
    }

    void aTruncatedZipIsDamaged()
    {
        QVERIFY(bundlezips::writeZip(bundlePath(), wholeEntries()));
        QFile file(bundlePath());
        QVERIFY(file.open(QIODevice::ReadWrite));
        const qint64 size = file.size();
        for (const qint64 keep : {size - 10, size / 2, qint64(30)}) {
            QVERIFY(file.resize(keep));
            expectDamaged(readBundle(bundlePath()));
        }
    }

    void aMissingManifestIsDamaged()
    {
        Entries entries = wholeEntries();
        entries.removeLast();
        QVERIFY(bundlezips::writeZip(bundlePath(), entries));
        const BundleInfo info = readBundle(bundlePath());
        expectDamaged(info);
        QVERIFY(!info.manifest);
    }

    void anInvalidManifestIsDamaged_data()
    {
        QTest::addColumn<QByteArray>("manifest");
        QTest::newRow("not JSON") << QByteArray("{\"format\": 1, \"pupil\": ");
        QTest::newRow("not an object") << QByteArray("[1, 2, 3]");
        QTest::newRow("empty") << QByteArray();
        QByteArray whole = wholeEntries().last().second;
        QTest::newRow("size a string")
            << QByteArray(whole).replace("\"size\": ", "\"size\": \"1\" , \"x\": ");
        QTest::newRow("pupil a number") << QByteArray(whole).replace("\"pupil\": \"Μαρία\"", "\"pupil\": 5");
        QTest::newRow("format 2") << QByteArray(whole).replace("\"format\": 1", "\"format\": 2");
        QTest::newRow("a path as a name") << QByteArray(whole).replace("\"note.rtf\"", "\"../note.rtf\"");
    }

    void anInvalidManifestIsDamaged()
    {
        QFETCH(QByteArray, manifest);
        Entries entries = wholeEntries();
        entries.last().second = manifest;
        QVERIFY(bundlezips::writeZip(bundlePath(), entries));
        expectDamaged(readBundle(bundlePath()));
    }

    void aListedFileMissingIsDamaged()
    {
        Entries entries = wholeEntries();
        entries.removeFirst();
        QVERIFY(bundlezips::writeZip(bundlePath(), entries));
        const BundleInfo info = readBundle(bundlePath());
        expectDamaged(info);
        QVERIFY(info.damage.contains(u"note.rtf"));
        // What the manifest says is still shown.
        QCOMPARE(info.activity, QStringLiteral("Δραστηριότητα 1"));
    }

    void aTamperedManifestIsDamaged()
    {
        Entries entries = wholeEntries();
        const QByteArray hash = sha256Hex(entries.first().second);
        entries.last().second.replace(hash, sha256Hex("something else"));
        QVERIFY(bundlezips::writeZip(bundlePath(), entries));
        expectDamaged(readBundle(bundlePath()));
    }

    void aTamperedFileIsDamaged()
    {
        Entries entries = wholeEntries();
        // The same size, another text.
        entries.first().second.replace("\\par", "\\pat");
        QVERIFY(bundlezips::writeZip(bundlePath(), entries));
        const BundleInfo info = readBundle(bundlePath());
        expectDamaged(info);
        QVERIFY(!readEntry(bundlePath(), QStringLiteral("note.rtf")));
        // The other file is whole and still readable.
        QVERIFY(readEntry(bundlePath(), QStringLiteral("drawing-1.png")));
    }

    void aFileOfAnotherSizeIsDamaged()
    {
        Entries entries = wholeEntries();
        entries.first().second += "more";
        QVERIFY(bundlezips::writeZip(bundlePath(), entries));
        expectDamaged(readBundle(bundlePath()));
    }

    void aZipBombIsRefusedBeforeUnpacking()
    {
        // A gigabyte of zeros deflates to about a megabyte.
        const zip_uint64_t gigabyte = 1024ULL * 1024 * 1024;
        const QByteArray manifest = QByteArray(R"({"format": 1, "pupil": "Μαρία", "class": "Β2",
            "content": "", "theme": {"id": 1, "title": ""}, "scenario": {"id": 1, "title": ""},
            "activity": {"id": 1, "title": ""}, "time": "2026-11-25T10:42:07+02:00", "version": "0.1",
            "files": [{"name": "note.rtf", "size": 1073741824, "sha256": "%1"}]})")
                                        .replace("%1", QByteArray(64, 'a'));
        QVERIFY(bundlezips::writeZeros(bundlePath(), QStringLiteral("note.rtf"), gigabyte,
            {{QStringLiteral("manifest.json"), manifest}}));
        QVERIFY(QFileInfo(bundlePath()).size() < 8 * 1024 * 1024);
        expectDamaged(readBundle(bundlePath()));
        QVERIFY(!readEntry(bundlePath(), QStringLiteral("note.rtf")));
        // Under the entry limit but far beyond the ratio: refused as well.
        Limits roomy;
        roomy.maxEntryBytes = 2 * gigabyte;
        roomy.maxTotalBytes = 2 * gigabyte;
        expectDamaged(readBundle(bundlePath(), roomy));
        QVERIFY(peakMegabytes() < 400);
    }

    void anEntryClaimingTwoGigabytesIsRefused()
    {
        QVERIFY(bundlezips::writeZip(bundlePath(), wholeEntries()));
        QVERIFY(bundlezips::claimSize(bundlePath(), QStringLiteral("note.rtf"), 0x80000000U));
        expectDamaged(readBundle(bundlePath()));
        QVERIFY(!readEntry(bundlePath(), QStringLiteral("note.rtf")));
    }

    void anEntryLyingAboutItsSizeStopsAtTheClaim()
    {
        // 64 MB of zeros whose headers claim 1000 bytes, and a manifest that agrees with them.
        const QByteArray manifest = QByteArray(R"({"format": 1, "pupil": "Μαρία", "class": "Β2",
            "content": "", "theme": {"id": 1, "title": ""}, "scenario": {"id": 1, "title": ""},
            "activity": {"id": 1, "title": ""}, "time": "2026-11-25T10:42:07+02:00", "version": "0.1",
            "files": [{"name": "note.rtf", "size": 1000, "sha256": "%1"}]})")
                                        .replace("%1", sha256Hex(QByteArray(1000, '\0')));
        QVERIFY(bundlezips::writeZeros(bundlePath(), QStringLiteral("note.rtf"), 64ULL * 1024 * 1024,
            {{QStringLiteral("manifest.json"), manifest}}));
        QVERIFY(bundlezips::claimSize(bundlePath(), QStringLiteral("note.rtf"), 1000));
        expectDamaged(readBundle(bundlePath()));
        QVERIFY(!readEntry(bundlePath(), QStringLiteral("note.rtf")));
        QVERIFY(peakMegabytes() < 400);
    }

    void pathsAsEntryNamesAreDamaged_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("parent") << QStringLiteral("../x");
        QTest::newRow("absolute") << QStringLiteral("/etc/passwd");
        QTest::newRow("backslash") << QStringLiteral("..\\x");
        QTest::newRow("hidden") << QStringLiteral(".x");
    }

    void pathsAsEntryNamesAreDamaged()
    {
        QFETCH(QString, name);
        Entries entries = wholeEntries();
        entries.prepend({name, QByteArray("root:x:0:0")});
        QVERIFY(bundlezips::writeZip(bundlePath(), entries));
        expectDamaged(readBundle(bundlePath()));
        QVERIFY(!QFile::exists(QStringLiteral("/x")));
        QVERIFY(!QFile::exists(path(QStringLiteral("../x"))));
    }

    void twoEntriesOfOneNameAreDamaged()
    {
        Entries entries = wholeEntries();
        entries.prepend({QStringLiteral("note.rtX"), QByteArray("{\\rtf1 other}")});
        QVERIFY(bundlezips::writeZip(bundlePath(), entries));
        QVERIFY(bundlezips::renameEntry(bundlePath(), "note.rtX", "note.rtf"));
        expectDamaged(readBundle(bundlePath()));
    }

    void tooManyEntriesAreDamaged()
    {
        Entries entries = wholeEntries();
        for (int i = 0; i < 70; ++i)
            entries.prepend({QStringLiteral("extra-%1.txt").arg(i), QByteArray("x")});
        QVERIFY(bundlezips::writeZip(bundlePath(), entries));
        const BundleInfo info = readBundle(bundlePath());
        expectDamaged(info);
        // The same bundle within a larger limit is whole: the extras are not listed, so not read.
        Limits roomy;
        roomy.maxEntries = 100;
        QVERIFY(readBundle(bundlePath(), roomy).ok);
    }

    void aFolderIsListedInOrder()
    {
        const QList<File> files = someFiles();
        struct Pupil
        {
            QString className, name;
            int hour;
        };
        const QList<Pupil> pupils = {
            {QStringLiteral("Β2"), QStringLiteral("Ωρίων"), 9},
            {QStringLiteral("Α1"), QStringLiteral("Νίκος"), 9},
            {QStringLiteral("Β2"), QStringLiteral("άλκηστις"), 11},
            {QStringLiteral("Β2"), QStringLiteral("Άλκηστις"), 10},
            {QStringLiteral("Β2"), QStringLiteral("Βασίλης"), 9},
        };
        int n = 0;
        for (const Pupil &pupil : pupils) {
            const QDateTime time(QDate(2026, 11, 25), QTime(pupil.hour, 0), Qt::UTC);
            QVERIFY(bundlezips::writeBundle(path(QStringLiteral("bundle-%1.zip").arg(n++)), pupil.name,
                pupil.className, 1, QStringLiteral("Δ"), time, files));
        }
        QFile broken(path(QStringLiteral("Α1_Ζωή_Δ_20261125-090000_ffff.zip")));
        QVERIFY(broken.open(QIODevice::WriteOnly));
        broken.write("PK\x03\x04 broken");
        broken.close();
        QFile other(path(QStringLiteral("notes.txt")));
        QVERIFY(other.open(QIODevice::WriteOnly));
        other.close();

        const QList<BundleInfo> bundles = readBundles(m_dir->path());
        QStringList order;
        for (const BundleInfo &info : bundles)
            order.append(info.className + u' ' + info.pupil + u' '
                + (info.ok ? QStringLiteral("ok") : QStringLiteral("damaged")));
        QCOMPARE(order,
            (QStringList {QStringLiteral("Α1 Ζωή damaged"), QStringLiteral("Α1 Νίκος ok"),
                QStringLiteral("Β2 Άλκηστις ok"), QStringLiteral("Β2 άλκηστις ok"),
                QStringLiteral("Β2 Βασίλης ok"), QStringLiteral("Β2 Ωρίων ok")}));
        QVERIFY(bundles.at(2).time < bundles.at(3).time);
        QVERIFY(sameClass(QStringLiteral("β2"), QStringLiteral("Β2")));
        QVERIFY(!sameClass(QStringLiteral("Α1"), QStringLiteral("Β2")));
    }
};

QTEST_GUILESS_MAIN(tst_BundleReader)
#include "tst_bundlereader.moc"
