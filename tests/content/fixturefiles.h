#pragma once

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

// The content fixtures: one small course in a Jet 3 and a Jet 4 file with the same data,
// and that data as JSON.
namespace fixtures {

inline QString path(const char *name)
{
    return QStringLiteral(TREMIDIA_FIXTURES_DIR "/") + QString::fromUtf8(name);
}

inline QString jet3()
{
    return path("content-jet3.mdb");
}

inline QString jet4()
{
    return path("content-jet4.mdb");
}

// The first of the files that is not where the tests look for it; empty when all are.
// A test checks this first, so that a checkout without its data fails with one line
// naming the file instead of failing later in ways that say nothing about why.
inline QString missingFile()
{
    for (const char *name : {"content-jet3.mdb", "content-jet4.mdb", "content-expected.json"}) {
        if (!QFile::exists(path(name)))
            return path(name);
    }
    return {};
}

#define REQUIRE_FIXTURE_FILES()                                                                              \
    QVERIFY2(fixtures::missingFile().isEmpty(),                                                              \
        qPrintable(QStringLiteral("missing test data file: ") + fixtures::missingFile()))

inline QJsonArray expectedTables()
{
    QFile f(path("content-expected.json"));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(f.readAll()).object().value(QStringLiteral("tables")).toArray();
}

inline QByteArray bytes(const QString &file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace fixtures
