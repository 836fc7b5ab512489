#include "clstexts.h"

#include <contentpath.h>
#include <database.h>
#include <runtimeerror.h>

namespace {

// Text that the record cannot hold as Null: a Null here is the content's mistake and
// goes up to the window that opened the text.
QString requiredText(const content::Recordset &rs, const QString &column)
{
    const content::Field field = rs.Fields(column);
    if (field.IsNull())
        throw platform::RuntimeError(
            platform::errors::InvalidUseOfNull, QStringLiteral("Μη έγκυρη χρήση του Null"));
    return field.Value().toString();
}

} // namespace

clsTexts::clsTexts(content::Database &database, QString dataFolder)
    : m_database(database)
    , m_dataFolder(std::move(dataFolder))
{
}

QString clsTexts::commentsQuery(qint32 ResourceID)
{
    return QStringLiteral("SELECT Comments.CommentID, Comments.Comment, Comments.Picture, "
                          "RelCommentResource.ExactPhrase ")
        + QStringLiteral("FROM Resources INNER JOIN (Comments INNER JOIN RelCommentResource ")
        + QStringLiteral("ON (Comments.CommentID = RelCommentResource.CommentID)) ")
        + QStringLiteral("ON (Resources.ResourceID = RelCommentResource.ResourceID) ")
        + QStringLiteral("WHERE Resources.ResourceID= ") + QString::number(ResourceID);
}

QString clsTexts::indexTermsQuery(qint32 ResourceID)
{
    return QStringLiteral("SELECT Euretirio.EuretirioID,Euretirio.Oros, Euretirio.Picture, "
                          "Euretirio.Epexigisi,Euretirio.EuretirioTypeID, ")
        + QStringLiteral("RelEuretirioResource.ExactPhrase ")
        + QStringLiteral("FROM Resources INNER JOIN (Euretirio INNER JOIN RelEuretirioResource ")
        + QStringLiteral("ON (Euretirio.EuretirioID = RelEuretirioResource.EuretirioID)) ")
        + QStringLiteral("ON (Resources.ResourceID = RelEuretirioResource.ResourceID) ")
        + QStringLiteral("WHERE Resources.ResourceID = ") + QString::number(ResourceID);
}

std::unique_ptr<colHotWords> clsTexts::HotWords(qint32 ResourceID) const
{
    auto words = std::make_unique<colHotWords>();

    auto rs
        = m_database.OpenRecordset(commentsQuery(ResourceID), content::dbOpenSnapshot, content::dbReadOnly);
    if (rs->RecordCount() > 0) {
        rs->MoveFirst();
        while (!rs->Eof()) {
            const QString comment = requiredText(*rs, QStringLiteral("Comment"));
            const QString exactPhrase = requiredText(*rs, QStringLiteral("ExactPhrase"));
            const QString picture = rs->Fields(QStringLiteral("Picture")).text();
            const QString photo = picture.isEmpty()
                ? QString()
                : platform::contentPath(m_dataFolder, QStringLiteral("\\photos\\"), picture);
            words->Add(0, 0, exactPhrase, comment, photo, CHotWord::CommentType, 3, QString(), QString());
            rs->MoveNext();
        }
    }
    rs->Close();

    rs = m_database.OpenRecordset(indexTermsQuery(ResourceID), content::dbOpenSnapshot, content::dbReadOnly);
    if (rs->RecordCount() > 0) {
        rs->MoveFirst();
        while (!rs->Eof()) {
            const QString explanation = requiredText(*rs, QStringLiteral("Epexigisi"));
            const QString exactPhrase = requiredText(*rs, QStringLiteral("ExactPhrase"));
            const QString term = requiredText(*rs, QStringLiteral("Oros"));
            // The index finds its own pictures by the bare name.
            const QString photo = rs->Fields(QStringLiteral("Picture")).text();
            const content::Field type = rs->Fields(QStringLiteral("EuretirioTypeID"));
            const qint32 indexType = type.IsNull() ? 0 : type.Value().toInt();
            words->Add(
                0, 0, exactPhrase, explanation, photo, CHotWord::IndexTermType, indexType, term, QString());
            rs->MoveNext();
        }
    }
    rs->Close();
    return words;
}
