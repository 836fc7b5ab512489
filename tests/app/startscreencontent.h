#pragma once

// Small content databases for the start-up and start screen tests, written with the
// SQLite C API: the four tables the start screen reads, with ids that are not 1..N.

#include <QByteArray>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

#include <sqlite3.h>

namespace startscreen_fixture {

// Themes: 2 has three scenarios, 5 has two, 17 has none.
// Scenarios: 10 has activities 101, 102 and 120; 12 has 120; 31 has none; 40 has 130;
// 50 has only the activity whose id is 0.
inline const char *const Schema = R"sql(
CREATE TABLE Themes (ThemeID INTEGER PRIMARY KEY, Theme TEXT COLLATE NOCASE);
CREATE TABLE Scenarios (ScenarioID INTEGER PRIMARY KEY, Scenario TEXT COLLATE NOCASE, ThemeID INTEGER);
CREATE TABLE Activities (ActivityID INTEGER PRIMARY KEY, Activity TEXT COLLATE NOCASE, ActionsDocument TEXT COLLATE NOCASE);
CREATE TABLE RelScenarioActivity (ScenarioID INTEGER, ActivityID INTEGER);
INSERT INTO Themes VALUES (2, 'Η αθηναϊκή δημοκρατία');
INSERT INTO Themes VALUES (5, 'Η Σπάρτη');
INSERT INTO Themes VALUES (17, 'Θέμα χωρίς σενάρια');
INSERT INTO Scenarios VALUES (10, 'Η εκκλησία του δήμου', 2);
INSERT INTO Scenarios VALUES (12, 'Ο οστρακισμός', 2);
INSERT INTO Scenarios VALUES (31, 'Σενάριο χωρίς δραστηριότητες', 2);
INSERT INTO Scenarios VALUES (40, 'Η αγωγή', 5);
INSERT INTO Scenarios VALUES (50, 'Σενάριο με δραστηριότητα μηδέν', 5);
INSERT INTO Activities VALUES (101, 'Ποιοι ψήφιζαν;', NULL);
INSERT INTO Activities VALUES (102, 'Η Πνύκα', 'pnyka.doc');
INSERT INTO Activities VALUES (120, 'Τα όστρακα', NULL);
INSERT INTO Activities VALUES (130, 'Τα παιδιά της Σπάρτης', NULL);
INSERT INTO Activities VALUES (0, 'Δραστηριότητα μηδέν', NULL);
INSERT INTO RelScenarioActivity VALUES (10, 101);
INSERT INTO RelScenarioActivity VALUES (10, 102);
INSERT INTO RelScenarioActivity VALUES (10, 120);
INSERT INTO RelScenarioActivity VALUES (12, 120);
INSERT INTO RelScenarioActivity VALUES (40, 130);
INSERT INTO RelScenarioActivity VALUES (50, 0);
)sql";

// Writes the content database to `path`; returns an empty string or SQLite's message.
inline QString writeContent(const QString &path, const char *sql = Schema)
{
    QFile::remove(path);
    sqlite3 *db = nullptr;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr)
        != SQLITE_OK) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(db));
        sqlite3_close(db);
        return message;
    }
    char *error = nullptr;
    QString message;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &error) != SQLITE_OK) {
        message = QString::fromUtf8(error);
        sqlite3_free(error);
    }
    sqlite3_close(db);
    return message;
}

inline QByteArray fileHash(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

// The settings file that selects a database, as a machine would have it.
inline bool writeSettings(const QString &configHome, const QString &body)
{
    const QString folder = configHome + QStringLiteral("/tremidia");
    if (!QDir().mkpath(folder))
        return false;
    QFile file(folder + QStringLiteral("/tremidia.conf"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    file.write(body.toUtf8());
    return true;
}

} // namespace startscreen_fixture
