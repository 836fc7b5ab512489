#pragma once

#include <database.h>
#include <sqliteconnection.h>

#include <QFile>
#include <QString>
#include <QVariant>

#include <memory>
#include <sqlite3.h>

// Content built by a test: the program's schema on an SQLite database, in memory or in a
// file, with rows added through bound values so that Nulls are real Nulls.
namespace testcontent {

using namespace Qt::StringLiterals;

inline QString schema()
{
    QFile file(QStringLiteral(TREMIDIA_SOURCE_DIR "/sample/db/schema.sql"));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

class Builder
{
public:
    // An empty path builds in memory.
    explicit Builder(const QString &path = QString())
        : m_connection(path.isEmpty() ? content::sqlite::Connection::openMemory()
                                      : std::make_unique<content::sqlite::Connection>(
                                          path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE))
    {
        m_connection->execute(schema());
    }

    Builder &row(const QString &table, const QStringList &columns, const QVariantList &values)
    {
        QStringList marks;
        for (qsizetype i = 0; i < columns.size(); ++i)
            marks << QStringLiteral("?");
        auto statement = m_connection->prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                                   .arg(table, columns.join(u','), marks.join(u',')));
        for (qsizetype i = 0; i < values.size(); ++i)
            statement->bind(int(i + 1), values.at(i));
        statement->step();
        return *this;
    }

    Builder &textResource(qint32 id, const QString &textPath, const QString &book = QStringLiteral("Βιβλίο"))
    {
        return row(QStringLiteral("Resources"), {u"ResourceID"_s, u"ResTypeID"_s, u"TextPath"_s, u"Book"_s},
            {id, 2, textPath, book});
    }

    Builder &comment(qint32 id, const QVariant &text, const QVariant &picture = QVariant())
    {
        return row(
            QStringLiteral("Comments"), {u"CommentID"_s, u"Comment"_s, u"Picture"_s}, {id, text, picture});
    }

    Builder &commentLink(qint32 commentID, qint32 resourceID, const QVariant &exactPhrase)
    {
        return row(QStringLiteral("RelCommentResource"), {u"CommentID"_s, u"ResourceID"_s, u"ExactPhrase"_s},
            {commentID, resourceID, exactPhrase});
    }

    Builder &term(qint32 id, const QVariant &oros, const QVariant &epexigisi, const QVariant &typeID,
        const QVariant &picture = QVariant(), const QVariant &sound = QVariant(),
        const QVariant &video = QVariant())
    {
        return row(QStringLiteral("Euretirio"),
            {u"EuretirioID"_s, u"Oros"_s, u"Epexigisi"_s, u"EuretirioTypeID"_s, u"Picture"_s, u"Sound"_s,
                u"Video"_s},
            {id, oros, epexigisi, typeID, picture, sound, video});
    }

    Builder &termLink(qint32 termID, qint32 resourceID, const QVariant &exactPhrase)
    {
        return row(QStringLiteral("RelEuretirioResource"),
            {u"EuretirioID"_s, u"ResourceID"_s, u"ExactPhrase"_s}, {termID, resourceID, exactPhrase});
    }

    // The content as the program opens it. The builder is spent.
    std::unique_ptr<content::Database> database()
    {
        return content::Database::fromConnection(std::move(m_connection));
    }

    // Closes a file-backed database so that another process may open it.
    void close() { m_connection.reset(); }

private:
    std::unique_ptr<content::sqlite::Connection> m_connection;
};

} // namespace testcontent
