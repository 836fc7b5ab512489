#pragma once

#include "colhotwords.h"

#include <QString>

#include <memory>

namespace content {
class Database;
}

// Builds the hot words of a text source from the content's link tables: all comments
// first, then all index terms, each in the order the database gives them, with First
// and Last still 0. The builder keeps nothing between calls; it is told the content
// database and the data folder it reads, which the program keeps in its session.
class clsTexts final
{
public:
    clsTexts(content::Database &database, QString dataFolder);
    Q_DISABLE_COPY_MOVE(clsTexts)

    // Raises platform::RuntimeError: a database error, or error 94 for a Null comment,
    // explanation, term or phrase.
    std::unique_ptr<colHotWords> HotWords(qint32 ResourceID) const;

    // The two queries, for the resource, as the database is asked them.
    static QString commentsQuery(qint32 ResourceID);
    static QString indexTermsQuery(qint32 ResourceID);

private:
    content::Database &m_database;
    QString m_dataFolder;
};
