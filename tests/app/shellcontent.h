#pragma once

// A small course for the tests of the main shell, its tiles and the navigation tree: an
// SQLite content file with the tables the program reads, and the content folders beside
// it, opened as the program's database.

#include <database.h>
#include <session.h>

#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QStringList>
#include <QTemporaryDir>

namespace testing {

inline const QStringList &shellSchema()
{
    static const QStringList schema = {
        QStringLiteral("CREATE TABLE Themes (ThemeID INTEGER PRIMARY KEY, Theme TEXT COLLATE NOCASE)"),
        QStringLiteral(
            "CREATE TABLE Scenarios (ScenarioID INTEGER PRIMARY KEY, Scenario TEXT COLLATE NOCASE, "
            "ThemeID INTEGER)"),
        QStringLiteral(
            "CREATE TABLE Activities (ActivityID INTEGER PRIMARY KEY, Activity TEXT COLLATE NOCASE, "
            "ActionsDocument TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE RelScenarioActivity (ScenarioID INTEGER, ActivityID INTEGER)"),
        QStringLiteral("CREATE TABLE RelActivityResource (ActivityID INTEGER, ResourceID INTEGER)"),
        QStringLiteral(
            "CREATE TABLE Resources (ResourceID INTEGER PRIMARY KEY, ResTypeID INTEGER, PlaceID INTEGER, "
            "ChronologicalID INTEGER, Author TEXT COLLATE NOCASE, Book TEXT COLLATE NOCASE, "
            "TextRTF TEXT COLLATE NOCASE, TextPath TEXT COLLATE NOCASE, PicturePath TEXT COLLATE NOCASE, "
            "Caption TEXT COLLATE NOCASE, Lezanda TEXT COLLATE NOCASE, Kind TEXT COLLATE NOCASE, "
            "Museum TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE ResTypes (ResTypeID INTEGER PRIMARY KEY, ResType TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE Places (PlaceID INTEGER PRIMARY KEY, Place TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE Chronologicals (ChronologicalID INTEGER PRIMARY KEY, "
                       "Chronological TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE Keywords (KeywordID INTEGER PRIMARY KEY, Keyword TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE RelKeywordResource (KeywordID INTEGER, ResourceID INTEGER)"),
        QStringLiteral("CREATE TABLE Comments (CommentID INTEGER PRIMARY KEY, Comment TEXT COLLATE NOCASE, "
                       "Picture TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE RelCommentResource (CommentID INTEGER, ResourceID INTEGER, "
                       "ExactPhrase TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE Euretirio (EuretirioID INTEGER PRIMARY KEY, Oros TEXT COLLATE NOCASE, "
                       "Epexigisi TEXT COLLATE NOCASE, EuretirioTypeID INTEGER, Picture TEXT COLLATE NOCASE, "
                       "Sound TEXT COLLATE NOCASE, Video TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE EuretirioTypes (EuretirioTypeID INTEGER PRIMARY KEY, "
                       "EuretirioType TEXT COLLATE NOCASE)"),
        QStringLiteral("CREATE TABLE RelEuretirioResource (EuretirioID INTEGER, ResourceID INTEGER, "
                       "ExactPhrase TEXT COLLATE NOCASE)"),
    };
    return schema;
}

// Resources 301 to 313 cycle through text, photograph, map and described photograph,
// so any activity of them shows every tile family.
inline int resTypeOf(int resourceID)
{
    static const int cycle[] = {2, 1, 5, 6};
    return cycle[(resourceID - 301) % 4];
}

class ShellContent
{
public:
    ShellContent() = default;
    Q_DISABLE_COPY_MOVE(ShellContent)

    QString folder() const { return m_dir.path(); }
    QString databasePath() const { return m_dir.filePath(QStringLiteral("course.sqlite")); }

    // Builds the course, runs `extra` statements on it, and opens it as the session's
    // content with its folder as the data folder.
    bool open(Session &session, const QStringList &extra = {})
    {
        if (!m_dir.isValid() || !build(extra))
            return false;
        Session::Content &content = session.content();
        content.database = content::Database::OpenDatabase(databasePath());
        content.databasePath = databasePath();
        content.dataFolder = folder();
        return true;
    }

    void writeFile(const QString &relative, const QByteArray &bytes) const
    {
        const QString path = m_dir.filePath(relative);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile f(path);
        if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
            f.write(bytes);
    }

    void writePicture(const QString &relative, QColor colour = QColor(120, 90, 40)) const
    {
        const QString path = m_dir.filePath(relative);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(colour);
        image.save(path, "PNG");
    }

private:
    bool exec(sqlite3 *db, const QString &sql)
    {
        char *error = nullptr;
        const int rc = sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, &error);
        if (rc != SQLITE_OK) {
            qWarning("SQL failed: %s: %s", qPrintable(sql), error ? error : "");
            sqlite3_free(error);
            return false;
        }
        return true;
    }

    bool build(const QStringList &extra)
    {
        QFile::remove(databasePath());
        sqlite3 *db = nullptr;
        if (sqlite3_open(databasePath().toUtf8().constData(), &db) != SQLITE_OK)
            return false;
        QStringList sql = shellSchema();
        sql << QStringLiteral(
            "INSERT INTO ResTypes VALUES (1,'Φωτογραφία'),(2,'Κείμενο'),(3,'Άγαλμα'),(5,'Χάρτης'),"
            "(6,'Φωτογραφία με περιγραφή')")
            << QStringLiteral("INSERT INTO Themes VALUES (2,'Η αθηναϊκή δημοκρατία'),(5,'Οι Κυκλάδες')")
            << QStringLiteral("INSERT INTO Scenarios VALUES (10,'Ο Κλεισθένης',2),(12,'Η Θήρα',5),"
                              "(31,'Χωρίς θέμα',0),(44,'Θέμα που λείπει',99)")
            << QStringLiteral(
                   "INSERT INTO Activities VALUES "
                   "(101,'Μία πηγή','Εργασία 1.odt'),(106,'Έξι πηγές',NULL),(107,'Επτά πηγές',''),"
                   "(113,'Δεκατρείς πηγές','Λείπει.odt'),(120,'Χωρίς πηγές',NULL),"
                   "(40000,'Μεγάλος αριθμός',NULL),(130,'Διπλή πηγή',NULL),(140,'Άγνωστο είδος',NULL),"
                   "(150,'Πηγές που λείπουν',NULL)")
            << QStringLiteral(
                   "INSERT INTO RelScenarioActivity VALUES (10,101),(10,106),(10,107),(10,113),(10,120),"
                   "(12,120),(12,40000),(12,130),(44,140),(10,150)");
        for (int id = 301; id <= 313; ++id) {
            const int type = resTypeOf(id);
            const QString text = type == 2
                ? QStringLiteral("'text%1.rtf'").arg(id)
                : (type == 6 ? QStringLiteral("'desc%1.rtf'").arg(id) : QStringLiteral("NULL"));
            const QString picture
                = type == 2 ? QStringLiteral("NULL") : QStringLiteral("'Photo%1.PNG'").arg(id);
            sql << QStringLiteral("INSERT INTO Resources VALUES (%1,%2,1,1,NULL,'Βιβλίο %1',NULL,%3,%4,"
                                  "'Λεζάντα «%1»',NULL,NULL,NULL)")
                       .arg(id)
                       .arg(type)
                       .arg(text, picture);
            // On disk the names differ in case from the database, as on the school's discs.
            if (type == 2)
                writeFile(QStringLiteral("piges/Text%1.RTF").arg(id),
                    QByteArrayLiteral(
                        "{\\rtf1\\ansi\\ansicpg1253 {\\colortbl;\\red0\\green0\\blue0;"
                        "\\red128\\green0\\blue0;}\\f0\\fs24 \\'c7 \\'f0\\'e7\\'e3\\'de "
                        "\\cf2 \\'e4\\'e7\\'ec\\'ef\\'ea\\'f1\\'e1\\'f4\\'df\\'e1\\cf1 .\\par }"));
            else
                writePicture(QStringLiteral("pictures/photo%1.png").arg(id));
        }
        for (int id = 301; id <= 313; ++id) {
            if (id == 301)
                sql << QStringLiteral("INSERT INTO RelActivityResource VALUES (101,301)");
            if (id <= 306)
                sql << QStringLiteral("INSERT INTO RelActivityResource VALUES (106,%1)").arg(id);
            if (id <= 307)
                sql << QStringLiteral("INSERT INTO RelActivityResource VALUES (107,%1)").arg(id);
            sql << QStringLiteral("INSERT INTO RelActivityResource VALUES (113,%1)").arg(id);
        }
        sql << QStringLiteral("INSERT INTO RelActivityResource VALUES (40000,302)")
            << QStringLiteral("INSERT INTO RelActivityResource VALUES (130,303),(130,303)")
            << QStringLiteral(
                   "INSERT INTO Resources VALUES (401,3,1,1,NULL,'Άγαλμα',NULL,NULL,'statue.png','Άγαλμα',"
                   "NULL,NULL,NULL)")
            << QStringLiteral("INSERT INTO RelActivityResource VALUES (140,401)")
            // A text without a file name, a text whose file is gone, a photograph whose
            // picture is gone.
            << QStringLiteral(
                   "INSERT INTO Resources VALUES (501,2,1,1,NULL,'Χωρίς αρχείο',NULL,NULL,NULL,NULL,"
                   "NULL,NULL,NULL)")
            << QStringLiteral(
                   "INSERT INTO Resources VALUES (502,2,1,1,NULL,'Χαμένο αρχείο',NULL,'gone.rtf',NULL,"
                   "NULL,NULL,NULL,NULL)")
            << QStringLiteral(
                   "INSERT INTO Resources VALUES (503,1,1,1,NULL,NULL,NULL,NULL,'gone.png','Χαμένη',"
                   "NULL,NULL,NULL)")
            << QStringLiteral("INSERT INTO RelActivityResource VALUES (150,501),(150,502),(150,503)");
        writePicture(QStringLiteral("pictures/statue.png"));
        writeFile(QStringLiteral("Actions/Εργασία 1.odt"), "assignment body");
        sql << extra;
        bool ok = true;
        for (const QString &statement : std::as_const(sql))
            ok = exec(db, statement) && ok;
        sqlite3_close(db);
        return ok;
    }

    QTemporaryDir m_dir;
};

} // namespace testing
