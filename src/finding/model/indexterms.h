#pragma once

#include <QList>
#include <QRect>
#include <QSize>
#include <QString>

namespace content {
class Database;
}

// The index: its types (the tabs), the terms of a type in the database's order, and what
// one term carries. The index window and the content tool's "index" command run this.
namespace finding {

// A tab: its key ("tab" + EuretirioTypeID) and its caption.
struct IndexTab
{
    QString key;
    QString caption;
};

// The first tab, standing before the types of the content: all terms.
inline IndexTab alphabeticalTab()
{
    return {QStringLiteral("tab0"), QStringLiteral("Αλφαβητικό")};
}

// The types of the content, in the order the database gives them.
QList<IndexTab> IndexTypeTabs(content::Database &db);

// The type a tab's key stands for: the number behind its first three letters, read as far
// as it is digits; 0 when there are none.
qint32 TypeOfTabKey(const QString &key);

// The query of the list for a type, 0 being all terms.
QString IndexListSQL(qint32 type);

struct IndexTerm
{
    QString EuretirioID;
    QString Oros;
};

// The list of a type in list order.
QList<IndexTerm> IndexTerms(content::Database &db, qint32 type);

// What the index shows of one term. Text fields are read as Null joined to "".
struct IndexTermDetails
{
    QString Epexigisi;
    QString Picture;
    QString Sound;
    QString Video;
};

// The term by its EuretirioID as the list's tag holds it. A tag without a row throws
// the engine's error.
IndexTermDetails TermDetails(content::Database &db, const QString &tag);

// Where a picture of `picture` twips shows in a box of `box` twips: scaled by the smaller
// of the two ratios, so the whole picture shows, and centred.
QRect FittedPictureRect(QSize box, QSize picture);

} // namespace finding
