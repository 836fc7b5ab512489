#include "fixturefiles.h"
#include "readerstandin.h"

#include <contenterrors.h>
#include <jetimport.h>
#include <jetmessages.h>
#include <sqliteconnection.h>

#include <sqlite3.h>

#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <vector>

using platform::RuntimeError;

namespace {

struct Report
{
    qint64 done;
    qint64 total;
};

QByteArray progressMessage(qint64 done, qint64 total)
{
    QByteArray out(1, 'P');
    out.append(reinterpret_cast<const char *>(&done), sizeof done);
    out.append(reinterpret_cast<const char *>(&total), sizeof total);
    return out;
}

QByteArray dataMessage(const QByteArray &database)
{
    const qint64 length = database.size();
    QByteArray out(1, 'D');
    out.append(reinterpret_cast<const char *>(&length), sizeof length);
    return out + database;
}

// A small database as the reader sends it: one table with a text key.
QByteArray smallDatabase()
{
    auto connection = content::sqlite::Connection::openMemory();
    connection->execute(QStringLiteral("CREATE TABLE t (name TEXT COLLATE NOCASE PRIMARY KEY, n INTEGER);"
                                       "INSERT INTO t VALUES ('Αθήνα', 1), ('Σπάρτη', 2), ('Ίος', 3)"));
    sqlite3_int64 size = 0;
    unsigned char *data = sqlite3_serialize(connection->handle(), "main", &size, 0);
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    sqlite3_free(data);
    return bytes;
}

// Imports the Jet 4 fixture with a stand-in reader that sends `stream` whatever it is
// given; the error number (0 when it imports) and the progress reported.
int importWithStream(const QByteArray &stream, std::vector<Report> *reports)
{
    QTemporaryDir dir;
    const QString streamPath = dir.filePath(QStringLiteral("stream"));
    QFile streamFile(streamPath);
    if (!streamFile.open(QIODevice::WriteOnly))
        return -1;
    streamFile.write(stream);
    streamFile.close();
    content::jet::ImportOptions options;
    options.progress = [reports](qint64 done, qint64 total) {
        reports->push_back({done, total});
        return true;
    };
    return readerstandin::importErrorWith(
        readerstandin::writeScript(dir, QStringLiteral("exec cat '%1'\n").arg(streamPath)), options);
}

} // namespace

class tst_JetMessages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { REQUIRE_FIXTURE_FILES(); }

    // A damaged file may declare any number of rows; the progress window divides what it
    // is given, so the counts it gets stay in range.
    void progressBeyondWhatABarCanDivideComesScaledDown()
    {
        std::vector<Report> reports;
        const int number = importWithStream(
            fixtures::bytes(fixtures::path("messages/progress_beyond_a_bar.bin")), &reports);
        QCOMPARE(number, content::errors::UnrecognizedFormat);
        QCOMPARE(reports.size(), size_t(3));
        for (const Report &r : reports) {
            QVERIFY2(r.done >= 0 && r.done <= r.total && r.total <= std::numeric_limits<qint32>::max(),
                qPrintable(QStringLiteral("%1 of %2").arg(r.done).arg(r.total)));
        }
        QCOMPARE(reports.back().done, reports.back().total);
    }

    void countsBelowZeroAreNotTheReadersAndRefuseTheImport()
    {
        std::vector<Report> reports;
        QCOMPARE(importWithStream(progressMessage(-1, 3) + dataMessage(smallDatabase()), &reports),
            content::errors::UnrecognizedFormat);
        QVERIFY(reports.empty());
    }

    void aWholeStreamImports()
    {
        std::vector<Report> reports;
        QCOMPARE(importWithStream(
                     progressMessage(0, 3) + progressMessage(3, 3) + dataMessage(smallDatabase()), &reports),
            0);
        QCOMPARE(reports.size(), size_t(2));
    }

    // The pipe may cut the messages anywhere.
    void messagesCutIntoReadsOfAnySizeGiveTheSameDatabase()
    {
        const QByteArray database = smallDatabase();
        const QByteArray stream = progressMessage(0, 3) + progressMessage(3, 3) + dataMessage(database);
        for (const qsizetype readSize : {qsizetype(1), qsizetype(5), qsizetype(17), stream.size()}) {
            int reports = 0;
            content::jet::ReaderMessages messages(QStringLiteral("x.mdb"), 1 << 20, [&](qint64, qint64) {
                ++reports;
                return true;
            });
            for (qsizetype at = 0; at < stream.size(); at += readSize)
                messages.take(stream.constData() + at, std::min(readSize, stream.size() - at));
            QCOMPARE(messages.finish(0), database);
            QCOMPARE(reports, 2);
        }
    }

    void moreThanTheAnnouncedDatabaseIsRefused()
    {
        content::jet::ReaderMessages messages(QStringLiteral("x.mdb"), 1 << 20, {});
        const QByteArray stream = dataMessage(smallDatabase()) + "P";
        QVERIFY_THROWS_EXCEPTION(RuntimeError, messages.take(stream.constData(), stream.size()));
    }

    void aDatabaseLargerThanAllowedIsRefusedBeforeItComes()
    {
        content::jet::ReaderMessages messages(QStringLiteral("x.mdb"), 1000, {});
        const QByteArray head = dataMessage(QByteArray(1001, 'x')).left(9);
        QVERIFY_THROWS_EXCEPTION(RuntimeError, messages.take(head.constData(), head.size()));
    }

    void aStreamThatEndsShortIsAnUnrecognizedFormat()
    {
        content::jet::ReaderMessages messages(QStringLiteral("x.mdb"), 1 << 20, {});
        const QByteArray stream = dataMessage(smallDatabase()).chopped(1);
        messages.take(stream.constData(), stream.size());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("ended with status 0")));
        try {
            messages.finish(0);
            QFAIL("no error");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), content::errors::UnrecognizedFormat);
        }
    }
};

QTEST_GUILESS_MAIN(tst_JetMessages)
#include "tst_jetmessages.moc"
