#pragma once

#include <database.h>
#include <resourcesearch.h>

#include <QString>

// The content queries of the program, joined from their literals exactly as the windows
// join them, so that the engine is tested on the very text it will be given.
namespace contentsql {

inline QString n(long id)
{
    return QString::number(id);
}

// Start screen
inline QString scenarios(long themeID)
{
    if (themeID >= 1)
        return QStringLiteral("SELECT ScenarioID, Scenario FROM Scenarios WHERE ThemeID= ") + n(themeID);
    return QStringLiteral("SELECT ScenarioID, Scenario FROM Scenarios");
}

inline QString activities(long scenarioID)
{
    if (scenarioID >= 1)
        return QStringLiteral("SELECT Activities.Activity,Activities.ActivityID  FROM Scenarios INNER JOIN ")
            + QStringLiteral("(Activities INNER JOIN RelScenarioActivity ON ")
            + QStringLiteral("(Activities.ActivityID = RelScenarioActivity.ActivityID)) ")
            + QStringLiteral(
                "ON (Scenarios.ScenarioID = RelScenarioActivity.ScenarioID) where Scenarios.ScenarioID=")
            + n(scenarioID);
    return QStringLiteral("SELECT ActivityID, Activity FROM Activities");
}

// Main shell
inline QString resources(long activityID)
{
    return QStringLiteral(
               "SELECT Activities.ActivityID, Resources.ResourceID, Resources.ResTypeID, Resources.PlaceID, "
               "Resources.ChronologicalID, Resources.Author, Resources.Book, Resources.TextRTF, "
               "Resources.TextPath, "
               "Resources.PicturePath, Resources.Caption, Resources.Lezanda, Resources.Kind, "
               "Resources.Museum ")
        + QStringLiteral(
            "FROM Resources INNER JOIN (Activities INNER JOIN RelActivityResource ON (Activities.ActivityID "
            "= "
            "RelActivityResource.ActivityID) AND (Activities.ActivityID = RelActivityResource.ActivityID) "
            "AND "
            "(Activities.ActivityID = RelActivityResource.ActivityID)) ON (Resources.ResourceID = "
            "RelActivityResource.ResourceID) AND (Resources.ResourceID = RelActivityResource.ResourceID)")
        + QStringLiteral("WHERE Activities.ActivityID = ") + n(activityID);
}

inline QString actionsDocument(long activityID)
{
    return QStringLiteral("SELECT ActionsDocument From Activities WHERE ActivityID=") + n(activityID);
}

// Navigation tree
inline QString treeActivities()
{
    return QStringLiteral("SELECT Activities.Activity, ")
        + QStringLiteral("Activities.ActivityID,RelScenarioActivity.ScenarioID from Activities ")
        + QStringLiteral(
            " INNER JOIN RelScenarioActivity ON RelScenarioActivity.ActivityID=Activities.ActivityID");
}

// Resource tiles
inline QString tile(long resourceID)
{
    return QStringLiteral("SELECT ResourceID, ResTypeID, Book, Caption, PicturePath, Kind ")
        + QStringLiteral("From Resources WHERE Resources.ResourceID = ") + n(resourceID);
}

inline QString picturePath(long resourceID)
{
    return QStringLiteral("SELECT PicturePath FROM Resources WHERE ResourceID = ") + n(resourceID);
}

inline QString textPath(long resourceID)
{
    return QStringLiteral("SELECT TextPath FROM Resources WHERE ResourceID = ") + n(resourceID);
}

// Text source viewer
inline QString textSource(long resourceID)
{
    return QStringLiteral("SELECT TextPath, Author, Book From Resources ")
        + QStringLiteral("WHERE ResourceID= ") + n(resourceID);
}

// Hot words
inline QString commentHotWords(long resourceID)
{
    return QStringLiteral("SELECT Comments.CommentID, Comments.Comment, Comments.Picture, "
                          "RelCommentResource.ExactPhrase ")
        + QStringLiteral("FROM Resources INNER JOIN (Comments INNER JOIN RelCommentResource ")
        + QStringLiteral("ON (Comments.CommentID = RelCommentResource.CommentID)) ")
        + QStringLiteral("ON (Resources.ResourceID = RelCommentResource.ResourceID) ")
        + QStringLiteral("WHERE Resources.ResourceID= ") + n(resourceID);
}

inline QString indexHotWords(long resourceID)
{
    return QStringLiteral("SELECT Euretirio.EuretirioID,Euretirio.Oros, Euretirio.Picture, "
                          "Euretirio.Epexigisi,Euretirio.EuretirioTypeID, ")
        + QStringLiteral("RelEuretirioResource.ExactPhrase ")
        + QStringLiteral("FROM Resources INNER JOIN (Euretirio INNER JOIN RelEuretirioResource ")
        + QStringLiteral("ON (Euretirio.EuretirioID = RelEuretirioResource.EuretirioID)) ")
        + QStringLiteral("ON (Resources.ResourceID = RelEuretirioResource.ResourceID) ")
        + QStringLiteral("WHERE Resources.ResourceID = ") + n(resourceID);
}

// Resource search
inline QString authors()
{
    return QStringLiteral("SELECT DISTINCT Author From Resources ORDER BY Author");
}

inline QString museums()
{
    return QStringLiteral("SELECT DISTINCT Museum From Resources ORDER BY Museum");
}

struct SearchCriteria
{
    QString keyword = QStringLiteral("0");
    QString time = QStringLiteral("0");
    QString place = QStringLiteral("0");
    QString type = QStringLiteral("0");
    QString author;
    QString museum;
};

// The search window's own query for the criteria.
inline QString search(const SearchCriteria &c)
{
    finding::SearchCriteria criteria;
    criteria.KeyWord = c.keyword;
    criteria.Place = c.place;
    criteria.Time = c.time;
    criteria.ResType = c.type;
    criteria.Author = c.author;
    criteria.Museum = c.museum;
    return finding::SearchSQL(criteria);
}

// Index
inline QString indexTypes()
{
    return QStringLiteral("SELECT EuretirioTypeID, EuretirioType FROM EuretirioTypes");
}

inline QString terms(long type)
{
    if (type == 0)
        return QStringLiteral("SELECT EuretirioID, Oros From Euretirio ORDER BY Oros");
    return QStringLiteral("SELECT EuretirioID, Oros From Euretirio Where EuretirioTypeID = ") + n(type)
        + QStringLiteral(" ORDER BY Oros");
}

inline QString term(long id)
{
    return QStringLiteral("SELECT * from Euretirio Where EuretirioID = ") + n(id);
}

} // namespace contentsql
