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
