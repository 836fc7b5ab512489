#include "fixturefiles.h"
#include "readerstandin.h"

#include <contenterrors.h>
#include <database.h>
#include <jetimport.h>
#include <jetreader.h>
#include <jetreaderprocess.h>
#include <sqliteconnection.h>

#include <sqlite3.h>

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using content::Database;
using platform::RuntimeError;

namespace {

QVariant fromJson(const QJsonValue &v)
{
    if (v.isNull())
        return QVariant();
    if (v.isDouble())
        return QVariant(v.toInt());
    return QVariant(v.toString());
}

QString writeFile(const QTemporaryDir &dir, const char *name, const QByteArray &bytes)
{
    const QString path = dir.filePath(QString::fromUtf8(name));
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return QString();
    f.write(bytes);
    return path;
}

using readerstandin::writeScript;

int importErrorWith(const QString &reader, int stallTimeoutMs = 15000)
{
    content::jet::ImportOptions options;
    options.stallTimeoutMs = stallTimeoutMs;
    return readerstandin::importErrorWith(reader, options);
}

void putLe32(QByteArray &b, qsizetype at, quint32 v)
{
    for (int i = 0; i < 4; ++i)
        b[at + i] = char((v >> (8 * i)) & 0xff);
}

// Makes the long explanation of index term 3 longer than libmdb's bound buffer: its
// long value is pointed at a chain of new long-value pages appended to the file.
QByteArray withLongMemo(QByteArray file, bool jet3, const QByteArray &encodedText)
{
    const int pageSize = jet3 ? 2048 : 4096;
    const quint32 oldLength = jet3 ? 6248 : 12496;
    QByteArray pattern(4, 0);
    putLe32(pattern, 0, oldLength);
    const qsizetype header = file.indexOf(pattern + QByteArray::fromHex("002c0000"));
    if (header < 0 || file.indexOf(pattern + QByteArray::fromHex("002c0000"), header + 1) >= 0)
        return QByteArray();
    const int rowCountOffset = jet3 ? 8 : 12;
    const int rowStart = rowCountOffset + 4;
    const int perPage = pageSize - rowStart - 4;
    const int firstPage = int(file.size() / pageSize);
    const int pages = int((encodedText.size() + perPage - 1) / perPage);
    for (int p = 0; p < pages; ++p) {
        QByteArray page(pageSize, 0);
        page[0] = 0x01;
        page[1] = 0x01;
        page.replace(4, 4, "LVAL");
        page[rowCountOffset] = 1;
        page[rowCountOffset + 2] = char(rowStart);
        const bool last = p == pages - 1;
        putLe32(page, rowStart, last ? 0 : quint32(firstPage + p + 1) << 8);
        const QByteArray chunk = encodedText.mid(qsizetype(p) * perPage, perPage);
        page.replace(rowStart + 4, chunk.size(), chunk);
        // The row runs to the end of the page; the declared length says where the text stops.
        file.append(page);
    }
    putLe32(file, header, quint32(encodedText.size()));
    putLe32(file, header + 4, quint32(firstPage) << 8);
    return file;
}

QString longText()
{
    QString text;
    int i = 0;
    while (text.size() < 30000)
        text += QStringLiteral("Ο Κλεισθένης μοίρασε την Αττική σε δέκα φυλές (%1).\r\n").arg(++i);
    return text;
}

} // namespace

class tst_JetImport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { REQUIRE_FIXTURE_FILES(); }

    void importGivesExactlyTheFixturesData_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("Jet 3") << fixtures::jet3();
        QTest::newRow("Jet 4") << fixtures::jet4();
    }

    void importGivesExactlyTheFixturesData()
    {
        QFETCH(QString, file);
        const auto db = Database::OpenDatabase(file);
        const QJsonArray tables = fixtures::expectedTables();
        QVERIFY(!tables.isEmpty());
        QStringList names;
        for (const QJsonValue &t : tables)
            names << t.toObject().value(QStringLiteral("name")).toString();
        QCOMPARE(db->tableNames(), names);

        for (const QJsonValue &t : tables) {
            const QJsonObject table = t.toObject();
            const QString name = table.value(QStringLiteral("name")).toString();
            const QJsonArray columns = table.value(QStringLiteral("columns")).toArray();
            const QJsonArray rows = table.value(QStringLiteral("rows")).toArray();
            auto rs = db->OpenRecordset(name, content::dbOpenSnapshot);
            QCOMPARE(rs->fieldCount(), int(columns.size()));
            for (int c = 0; c < columns.size(); ++c)
                QCOMPARE(rs->fieldName(c), columns.at(c).toObject().value(QStringLiteral("name")).toString());
            QCOMPARE(rs->RecordCount(), long(rows.size()));
            // Rows come in the order they are stored in the file.
            for (const QJsonValue &r : rows) {
                const QJsonArray row = r.toArray();
                for (int c = 0; c < row.size(); ++c) {
                    const QVariant expected = fromJson(row.at(c));
                    const QVariant actual = rs->value(c);
                    if (expected != actual || expected.isNull() != actual.isNull())
                        QFAIL(qPrintable(QStringLiteral("%1 row %2 column %3: %4 != %5")
                                             .arg(name)
                                             .arg(rs->AbsolutePosition())
                                             .arg(c)
                                             .arg(actual.toString().left(80), expected.toString().left(80))));
                }
                rs->MoveNext();
            }
            QVERIFY(rs->Eof());
        }
    }

    void textColumnsAreDeclaredNocaseAndKeysKept()
    {
        const auto db = Database::OpenDatabase(fixtures::jet4());
        sqlite3_stmt *stmt = nullptr;
        QCOMPARE(sqlite3_prepare_v2(db->handle(), "SELECT sql FROM sqlite_schema WHERE name = 'Resources'",
                     -1, &stmt, nullptr),
            SQLITE_OK);
        QCOMPARE(sqlite3_step(stmt), SQLITE_ROW);
        const QString sql = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(stmt, 0)));
        sqlite3_finalize(stmt);
        QVERIFY2(sql.contains(QStringLiteral("\"Author\" TEXT COLLATE NOCASE")), qPrintable(sql));
        QVERIFY2(sql.contains(QStringLiteral("\"Lezanda\" TEXT COLLATE NOCASE")), qPrintable(sql));
        QVERIFY2(sql.contains(QStringLiteral("PRIMARY KEY (\"ResourceID\")")), qPrintable(sql));
        auto rs = db->OpenRecordset(QStringLiteral("RelActivityResource"));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, rs->setIndex(QStringLiteral("PrimaryKey")));
    }

    void longMemoComesThroughWholeWithItsLineBreaks_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("Jet 3") << fixtures::jet3();
        QTest::newRow("Jet 4") << fixtures::jet4();
    }

    void longMemoComesThroughWholeWithItsLineBreaks()
    {
        QFETCH(QString, file);
        const auto db = Database::OpenDatabase(file);
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT Epexigisi FROM Euretirio WHERE EuretirioID = 3"), content::dbOpenSnapshot);
        const QString text = rs->Fields(QStringLiteral("Epexigisi")).text();
        QCOMPARE(text.size(), 6248);
        QCOMPARE(text.toUtf8().size(), 11277);
        QVERIFY(text.contains(QStringLiteral("\r\n")));
    }

    void memoFarBeyondTheBindBufferComesThroughWhole_data()
    {
        QTest::addColumn<bool>("jet3");
        QTest::newRow("Jet 3") << true;
        QTest::newRow("Jet 4") << false;
    }

    void memoFarBeyondTheBindBufferComesThroughWhole()
    {
        QFETCH(bool, jet3);
        const QString text = longText();
        QByteArray encoded;
        if (jet3) {
            // Windows-1253 for the Greek and ASCII used here.
            for (QChar c : text) {
                const char16_t u = c.unicode();
                if (u < 0x80)
                    encoded.append(char(u));
                else if (u == 0x0386)
                    encoded.append(char(0xA2));
                else if (u >= 0x0388 && u <= 0x03CE)
                    encoded.append(char(u - 0x0388 + 0xB8));
                else
                    QFAIL("character outside the test's code page table");
            }
        } else {
            for (QChar c : text) {
                encoded.append(char(c.unicode() & 0xff));
                encoded.append(char(c.unicode() >> 8));
            }
        }
        QVERIFY(encoded.size() > 16384);
        QVERIFY(text.toUtf8().size() > 3 * 16384);
        const QByteArray file
            = withLongMemo(fixtures::bytes(jet3 ? fixtures::jet3() : fixtures::jet4()), jet3, encoded);
        QVERIFY(!file.isEmpty());
        QTemporaryDir dir;
        const QString path = writeFile(dir, "long.mdb", file);
        const auto db = Database::OpenDatabase(path);
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT Epexigisi FROM Euretirio WHERE EuretirioID = 3"), content::dbOpenSnapshot);
        QCOMPARE(rs->Fields(QStringLiteral("Epexigisi")).text(), text);
        // The rest of the file reads as before.
        auto other = db->OpenRecordset(
            QStringLiteral("SELECT Oros FROM Euretirio WHERE EuretirioID = 4"), content::dbOpenSnapshot);
        QCOMPARE(other->Fields(QStringLiteral("Oros")).text(), QStringLiteral("Μιλτιάδης"));
    }

    void greekJet3FileReadsRightWithNothingSet()
    {
        content::jet::forgetLastImport();
        qputenv("MDB_JET3_CHARSET", "CP1252");
        const auto db = Database::OpenDatabase(fixtures::jet3());
        qunsetenv("MDB_JET3_CHARSET");
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT Theme FROM Themes WHERE ThemeID = 2"), content::dbOpenSnapshot);
        QCOMPARE(rs->Fields(QStringLiteral("Theme")).text(), QStringLiteral("Η αθηναϊκή δημοκρατία"));
    }

    void jet3CodePageCanBeOverridden()
    {
        content::OpenOptions options;
        options.jet3CodePage = "CP1252";
        const auto db = Database::OpenDatabase(fixtures::jet3(), options);
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT Theme FROM Themes WHERE ThemeID = 2"), content::dbOpenSnapshot);
        QCOMPARE(rs->Fields(QStringLiteral("Theme")).text(), QStringLiteral("Ç áèçíáúêÞ äçìïêñáôßá"));
        // Jet 4 text is Unicode; the override does not touch it.
        const auto db4 = Database::OpenDatabase(fixtures::jet4(), options);
        auto rs4 = db4->OpenRecordset(
            QStringLiteral("SELECT Theme FROM Themes WHERE ThemeID = 2"), content::dbOpenSnapshot);
        QCOMPARE(rs4->Fields(QStringLiteral("Theme")).text(), QStringLiteral("Η αθηναϊκή δημοκρατία"));
    }

    void codePageMayBeGivenByNumber()
    {
        content::OpenOptions options;
        options.jet3CodePage = "1253";
        const auto db = Database::OpenDatabase(fixtures::jet3(), options);
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT Theme FROM Themes WHERE ThemeID = 2"), content::dbOpenSnapshot);
        QCOMPARE(rs->Fields(QStringLiteral("Theme")).text(), QStringLiteral("Η αθηναϊκή δημοκρατία"));
    }

    void unknownCodePageIsAnInvalidArgument()
    {
        content::OpenOptions options;
        options.jet3CodePage = "NO-SUCH-CODE-PAGE";
        try {
            Database::OpenDatabase(fixtures::jet3(), options);
            QFAIL("no error");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), content::errors::InvalidArgument);
        }
    }

    void progressIsReportedUpToTheWhole()
    {
        content::OpenOptions options;
        qint64 lastDone = -1, lastTotal = -1;
        int calls = 0;
        content::jet::forgetLastImport();
        options.progress = [&](qint64 done, qint64 total) {
            ++calls;
            if (done < lastDone)
                return false;
            lastDone = done;
            lastTotal = total;
            return true;
        };
        Database::OpenDatabase(fixtures::jet4(), options);
        QVERIFY(calls >= 2);
        QCOMPARE(lastTotal, qint64(117));
        QCOMPARE(lastDone, lastTotal);
    }

    void progressCanCancelTheImport()
    {
        content::OpenOptions options;
        options.progress = [](qint64, qint64) { return false; };
        content::jet::forgetLastImport();
        try {
            Database::OpenDatabase(fixtures::jet3(), options);
            QFAIL("no error");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), content::errors::CancelledByUser);
        }
    }

    // The reader runs as a program of its own, started afresh: never a copy of this
    // (threaded) process going on after a fork.
    void readerIsAProgramOfItsOwnFoundInTheBuildTree()
    {
        const QString reader = content::jet::readerProgram();
        QVERIFY2(!reader.isEmpty(), "tremidia-jet-reader not found");
        QVERIFY(reader.endsWith(QStringLiteral("/libexec/tremidia/tremidia-jet-reader")));
        QVERIFY(QFileInfo(reader).isExecutable());
    }

    void importStartsTheReaderProgram()
    {
        QTemporaryDir dir;
        const QString marker = dir.filePath(QStringLiteral("started"));
        const QString wrapper = writeScript(dir,
            QStringLiteral("echo \"$@\" > '%1'\nexec '%2' \"$@\"\n")
                .arg(marker, content::jet::readerProgram()));
        qputenv("TREMIDIA_JET_READER", QFile::encodeName(wrapper));
        content::jet::forgetLastImport();
        content::OpenOptions options;
        options.jet3CodePage = "CP1253";
        const auto db = Database::OpenDatabase(fixtures::jet3(), options);
        qunsetenv("TREMIDIA_JET_READER");
        QVERIFY(db);
        QVERIFY(QFile::exists(marker));
        QFile args(marker);
        QVERIFY(args.open(QIODevice::ReadOnly));
        QCOMPARE(args.readAll().trimmed(), QByteArray("CP1253"));
    }

    void missingReaderProgramCannotOpenTheFileAndSaysWhyInTheLog()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("reader.*not found")));
        QCOMPARE(importErrorWith(QStringLiteral("/nonexistent/tremidia-jet-reader")),
            content::errors::CannotOpenFile);
    }

    void readerThatCrashesGivesUnrecognizedFormat()
    {
        QTemporaryDir dir;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("ended on signal 11")));
        QCOMPARE(importErrorWith(writeScript(dir, QStringLiteral("kill -SEGV $$\n"))),
            content::errors::UnrecognizedFormat);
    }

    void readerThatGoesQuietIsStoppedAfterTheStallTime()
    {
        QTemporaryDir dir;
        const QString pidFile = dir.filePath(QStringLiteral("pid"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("went quiet")));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(importErrorWith(
                     writeScript(dir, QStringLiteral("echo $$ > '%1'\nexec sleep 60\n").arg(pidFile)), 500),
            content::errors::UnrecognizedFormat);
        QVERIFY(clock.elapsed() < 10000);
        // The stuck reader is gone with the import, not left behind.
        QFile file(pidFile);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray pid = file.readAll().trimmed();
        QVERIFY(!pid.isEmpty());
        QVERIFY(!QFile::exists(QStringLiteral("/proc/") + QString::fromLatin1(pid)));
    }

    void jet4TextReadsPlainAndCompressedForms()
    {
        const unsigned char plain[] = {0x9f, 0x03, 0x20, 0x00, 0x9a, 0x03};
        QCOMPARE(content::jet::jet4Text(plain, sizeof plain), QStringLiteral("Ο Κ"));
        // FF FE, "Ab", switch to two bytes, "Ω", switch back, "c".
        const unsigned char compressed[] = {0xff, 0xfe, 'A', 'b', 0x00, 0xa9, 0x03, 0x00, 'c'};
        QCOMPARE(content::jet::jet4Text(compressed, sizeof compressed), QStringLiteral("AbΩc"));
        const unsigned char cut[] = {0xff, 0xfe, 'A', 0x00, 0xa9};
        QCOMPARE(content::jet::jet4Text(cut, sizeof cut), QStringLiteral("A"));
        QCOMPARE(content::jet::jet4Text(plain, 0), QString());
    }

    void dateTimesBecomeIsoText()
    {
        QCOMPARE(content::jet::jetDateTime(0.0), QStringLiteral("1899-12-30T00:00:00"));
        QCOMPARE(content::jet::jetDateTime(36526.5), QStringLiteral("2000-01-01T12:00:00"));
        QCOMPARE(content::jet::jetDateTime(-1.25), QStringLiteral("1899-12-29T06:00:00"));
        // Rounded to the second, into the next day.
        QCOMPARE(content::jet::jetDateTime(45000.999999999), QStringLiteral("2023-03-16T00:00:00"));
        QCOMPARE(content::jet::jetDateTime(45000.0), QStringLiteral("2023-03-15T00:00:00"));
        QCOMPARE(content::jet::jetDateTime(1e12), QString());
        QCOMPARE(content::jet::jetDateTime(std::nan("")), QString());
    }

    void openingAgainGivesAFreshCopyOfTheSameContent()
    {
        QTemporaryDir dir;
        const QString path = writeFile(dir, "course.mdb", fixtures::bytes(fixtures::jet4()));
        const auto first = Database::OpenDatabase(path);
        int calls = 0;
        content::OpenOptions options;
        options.progress = [&](qint64, qint64) {
            ++calls;
            return true;
        };
        const auto second = Database::OpenDatabase(path, options);
        QCOMPARE(calls, 0); // copied, not read again
        QVERIFY(first->handle() != second->handle());
        sqlite3_exec(first->handle(), "DELETE FROM Themes", nullptr, nullptr, nullptr);
        QCOMPARE(second->OpenRecordset(QStringLiteral("Themes"))->RecordCount(), 3L);

        // Another file at the same path is read anew.
        writeFile(dir, "course.mdb", fixtures::bytes(fixtures::jet3()));
        const auto third = Database::OpenDatabase(path, options);
        QVERIFY(calls > 0);
        QCOMPARE(third->OpenRecordset(QStringLiteral("Themes"))->RecordCount(), 3L);
    }

    void kindIsToldByContentNotName()
    {
        QTemporaryDir dir;
        const QString path = writeFile(dir, "content.sqlite", fixtures::bytes(fixtures::jet4()));
        const auto db = Database::OpenDatabase(path);
        QCOMPARE(db->OpenRecordset(QStringLiteral("Resources"))->RecordCount(), 14L);
    }
};

QTEST_GUILESS_MAIN(tst_JetImport)
#include "tst_jetimport.moc"
