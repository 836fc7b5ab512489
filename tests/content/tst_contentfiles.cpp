#include "fixturefiles.h"

#include <contenterrors.h>
#include <database.h>
#include <sqliteconnection.h>

#include <sqlite3.h>

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <sys/wait.h>

using content::Database;
using platform::RuntimeError;

namespace {

QString writeFile(const QTemporaryDir &dir, const QString &name, const QByteArray &bytes)
{
    const QString path = dir.filePath(name);
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write(bytes);
    return path;
}

int openError(const QString &path)
{
    try {
        Database::OpenDatabase(path);
    } catch (const RuntimeError &e) {
        return e.number();
    }
    return 0;
}

QByteArray digest(const QString &path)
{
    return QCryptographicHash::hash(fixtures::bytes(path), QCryptographicHash::Sha256);
}

// Every table read whole: what a damaged file that still opens must survive.
void readEverything(Database &db)
{
    for (const QString &table : db.tableNames()) {
        auto rs = db.OpenRecordset(table, content::dbOpenSnapshot);
        for (; !rs->Eof(); rs->MoveNext()) {
            for (int c = 0; c < rs->fieldCount(); ++c)
                rs->value(c);
        }
    }
}

bool noChildLeft()
{
    int status = 0;
    return waitpid(-1, &status, WNOHANG) == -1 && errno == ECHILD;
}

} // namespace

class tst_ContentFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { REQUIRE_FIXTURE_FILES(); }

    void missingFileIsNotFound()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("none.mdb"));
        try {
            Database::OpenDatabase(path);
            QFAIL("no error");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), content::errors::FileNotFound);
            QVERIFY(e.description().contains(path));
        }
    }

    void emptyPathIsNoFileName()
    {
        // A machine with no database selected gets here with an empty path.
        QCOMPARE(openError(QString()), content::errors::InvalidFileName);
    }

    void folderCannotBeOpened()
    {
        QTemporaryDir dir;
        QCOMPARE(openError(dir.path()), content::errors::CannotOpenFile);
    }

    void fileOfAnotherKindIsUnrecognised_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("ThemeID,Theme\n2,Η αθηναϊκή δημοκρατία\n");
        QTest::newRow("picture") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
        QTest::newRow("Jet signature only") << QByteArray("\0\x01\0\0Standard Jet DB\0", 20);
        QTest::newRow("SQLite signature only") << QByteArray("SQLite format 3\0", 16);
    }

    void fileOfAnotherKindIsUnrecognised()
    {
        QFETCH(QByteArray, bytes);
        QTemporaryDir dir;
        const QString path = writeFile(dir, QStringLiteral("content.mdb"), bytes);
        try {
            Database::OpenDatabase(path);
            QFAIL("no error");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), content::errors::UnrecognizedFormat);
            QVERIFY(e.description().contains(path));
        }
    }

    void damagedJetCopiesFailCleanlyOrOpen_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("cut"); // bytes kept, or -1
        QTest::addColumn<QList<int>>("at"); // bytes flipped
        QRandomGenerator random(20240521);
        for (const QString &source : {fixtures::jet3(), fixtures::jet4()}) {
            const int size = int(QFileInfo(source).size());
            const int page = source == fixtures::jet3() ? 2048 : 4096;
            const char *kind = source == fixtures::jet3() ? "jet3" : "jet4";
            // Cuts at page boundaries and inside pages, from the header to the last page.
            const QList<int> cuts {0, 100, page - 1, page, 2 * page, 3 * page, 3 * page + 17, size / 2,
                size / 2 + page / 2, size - page, size - 1};
            for (int cut : cuts)
                QTest::addRow("%s cut at %d", kind, cut) << source << cut << QList<int> {};
            // Flips in the header page, in the catalogue's pages and anywhere.
            for (int i = 0; i < 14; ++i) {
                QList<int> at;
                const int count = 1 + int(random.bounded(8));
                for (int k = 0; k < count; ++k) {
                    if (i < 3)
                        at << int(random.bounded(0x18, 0x100));
                    else if (i < 7)
                        at << 2 * page + int(random.bounded(3 * page));
                    else
                        at << int(random.bounded(size));
                }
                QTest::addRow("%s flip %d", kind, i) << source << -1 << at;
            }
        }
    }

    void damagedJetCopiesFailCleanlyOrOpen()
    {
        QFETCH(QString, source);
        QFETCH(int, cut);
        QFETCH(QList<int>, at);
        QByteArray bytes = fixtures::bytes(source);
        if (cut >= 0)
            bytes.truncate(cut);
        for (int i : at)
            bytes[i] = char(~bytes.at(i));
        QTemporaryDir dir;
        const QString path = writeFile(dir, QStringLiteral("damaged.mdb"), bytes);
        QElapsedTimer timer;
        timer.start();
        try {
            auto db = Database::OpenDatabase(path);
            readEverything(*db);
            qInfo("opened in %lld ms", timer.elapsed());
        } catch (const RuntimeError &e) {
            qInfo("error %d in %lld ms", e.number(), timer.elapsed());
            QCOMPARE(e.number(), content::errors::UnrecognizedFormat);
        }
        QVERIFY(noChildLeft());
    }

    void damagedSqliteFilesFailCleanly()
    {
        QTemporaryDir dir;
        const QString whole = dir.filePath(QStringLiteral("whole.sqlite"));
        Database::OpenDatabase(fixtures::jet4())->saveCopy(whole);
        const QByteArray bytes = fixtures::bytes(whole);
        QCOMPARE(openError(writeFile(dir, QStringLiteral("cut.sqlite"), bytes.left(bytes.size() / 2))),
            content::errors::UnrecognizedFormat);
        QByteArray header = bytes;
        header[16] = char(0x03); // page size 0x0300, not a power of two
        QCOMPARE(openError(writeFile(dir, QStringLiteral("header.sqlite"), header)),
            content::errors::UnrecognizedFormat);
        QByteArray pages = bytes;
        for (qsizetype i = 4096; i < pages.size(); i += 97)
            pages[i] = char(~pages.at(i));
        QCOMPARE(openError(writeFile(dir, QStringLiteral("pages.sqlite"), pages)),
            content::errors::UnrecognizedFormat);
    }

    void openingNeverChangesTheFile_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("SQLite") << QStringLiteral("sqlite");
        QTest::newRow("Jet 3") << QStringLiteral("jet3");
        QTest::newRow("Jet 4") << QStringLiteral("jet4");
    }

    void openingNeverChangesTheFile()
    {
        QFETCH(QString, kind);
        QTemporaryDir dir;
        QString path;
        if (kind == u"sqlite") {
            path = dir.filePath(QStringLiteral("content.sqlite"));
            Database::OpenDatabase(fixtures::jet3())->saveCopy(path);
        } else {
            path = writeFile(dir, QStringLiteral("content.mdb"),
                fixtures::bytes(kind == u"jet3" ? fixtures::jet3() : fixtures::jet4()));
        }
        const QByteArray before = digest(path);
        const QDateTime modified = QFileInfo(path).lastModified();
        const QStringList files = QDir(dir.path()).entryList(QDir::Files);
        {
            auto db = Database::OpenDatabase(path);
            readEverything(*db);
            auto rs = db->OpenRecordset(QStringLiteral("Resources"));
            rs->setIndex(QStringLiteral("PrimaryKey"));
            rs->Seek(QStringLiteral("="), 204);
            QVERIFY(!rs->NoMatch());
            QVERIFY_THROWS_EXCEPTION(
                RuntimeError, db->OpenRecordset(QStringLiteral("DELETE FROM Resources")));
            // Even a write past the engine is refused by the file's connection.
            if (kind == u"sqlite")
                QVERIFY(sqlite3_exec(db->handle(), "DELETE FROM Resources", nullptr, nullptr, nullptr)
                    != SQLITE_OK);
        }
        QCOMPARE(digest(path), before);
        QCOMPARE(QFileInfo(path).lastModified(), modified);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), files);
    }

    void sqliteFileIndexedByAnotherProgramFollowsTheGreekRule()
    {
        // The sqlite3 shell builds an index on a NOCASE column in its ASCII order.
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("shell.sqlite"));
        {
            content::sqlite::Connection db(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
            db.execute(QStringLiteral(
                "CREATE TABLE Euretirio (EuretirioID INTEGER PRIMARY KEY, Oros TEXT COLLATE NOCASE UNIQUE);"
                "INSERT INTO Euretirio VALUES (1, 'αγγείο'), (2, 'Αγαμέμνων'), (3, 'άγαλμα'), (4, "
                "'Βωμός');"));
        }
        auto db = Database::OpenDatabase(path);
        auto rs = db->OpenRecordset(
            QStringLiteral("SELECT EuretirioID, Oros From Euretirio ORDER BY Oros"), content::dbOpenSnapshot);
        QStringList order;
        for (; !rs->Eof(); rs->MoveNext())
            order << rs->Fields(QStringLiteral("Oros")).text();
        QCOMPARE(order,
            (QStringList {QStringLiteral("άγαλμα"), QStringLiteral("Αγαμέμνων"), QStringLiteral("αγγείο"),
                QStringLiteral("Βωμός")}));
        auto one
            = db->OpenRecordset(QStringLiteral("SELECT EuretirioID FROM Euretirio WHERE Oros = 'ΑΓΓΕΊΟ'"),
                content::dbOpenSnapshot);
        QCOMPARE(one->RecordCount(), 1L);
        QCOMPARE(one->Fields(QStringLiteral("EuretirioID")).Value(), QVariant(1));
    }

    void pathWithGreekSpacesAndUriCharactersOpens()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("Το Αιγαίο #1 ? 100%")));
        const QString folder = dir.filePath(QStringLiteral("Το Αιγαίο #1 ? 100%"));
        const QString sqlitePath = folder + QStringLiteral("/μάθημα.sqlite");
        Database::OpenDatabase(fixtures::jet4())->saveCopy(sqlitePath);
        QCOMPARE(
            Database::OpenDatabase(sqlitePath)->OpenRecordset(QStringLiteral("Resources"))->RecordCount(),
            14L);
        const QString jetPath = folder + QStringLiteral("/μάθημα.mdb");
        QVERIFY(QFile::copy(fixtures::jet3(), jetPath));
        QCOMPARE(
            Database::OpenDatabase(jetPath)->OpenRecordset(QStringLiteral("Resources"))->RecordCount(), 14L);
    }

    void savedCopyOpensAgainWithTheSameData()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("copy.sqlite"));
        Database::OpenDatabase(fixtures::jet3())->saveCopy(path);
        auto db = Database::OpenDatabase(path);
        QCOMPARE(db->tableNames().size(), 16);
        auto rs = db->OpenRecordset(QStringLiteral("SELECT Epexigisi FROM Euretirio WHERE EuretirioID = 3"));
        QCOMPARE(rs->Fields(QStringLiteral("Epexigisi")).text().size(), 6248);
        QVERIFY_THROWS_EXCEPTION(RuntimeError, db->saveCopy(path));
        QVERIFY(!QFileInfo::exists(path + QStringLiteral(".part")));
    }
};

QTEST_GUILESS_MAIN(tst_ContentFiles)
#include "tst_contentfiles.moc"
