#include "resourcesearch.h"

#include <database.h>

#include <sqlite3.h>

namespace finding {

namespace {

// The conditions in the order they join, each without its joining " AND ".
QStringList conditions(const SearchCriteria &c)
{
    QStringList out;
    if (c.Time.toLong() != 0)
        out << QStringLiteral(" Resources.ChronologicalID=  ") + c.Time;
    if (c.Place.toLong() != 0)
        out << QStringLiteral(" Resources.PlaceID= ") + c.Place;
    if (c.ResType.toLong() != 0)
        out << QStringLiteral(" Resources.ResTypeID= ") + c.ResType;
    if (!c.Author.isEmpty())
        out << QStringLiteral(" Resources.Author = ") + content::sqlQuote(c.Author);
    if (!c.Museum.isEmpty())
        out << QStringLiteral(" Resources.Museum = ") + content::sqlQuote(c.Museum);
    return out;
}

} // namespace

QString SearchSQL(const SearchCriteria &criteria)
{
    const QStringList conds = conditions(criteria);
    QString head;
    QString clauses;
    if (criteria.KeyWord.toLong() == 0) {
        head = QStringLiteral("SELECT  Resources.ResourceID, Resources.ResTypeID, Resources.Book, "
                              "Resources.Caption FROM Resources ");
        for (const QString &cond : conds)
            clauses += cond + QStringLiteral(" AND ");
        if (!clauses.isEmpty())
            clauses = QStringLiteral(" WHERE ") + clauses.left(clauses.size() - 5);
    } else {
        head = QStringLiteral("SELECT  Resources.ResourceID, Resources.ResTypeID, ")
            + QStringLiteral("Resources.Book, Resources.Caption ")
            + QStringLiteral("FROM Resources INNER JOIN RelKeywordResource ")
            + QStringLiteral("ON Resources.ResourceID = RelKeywordResource.ResourceID ")
            + QStringLiteral("WHERE RelKeywordResource.KeywordID= ") + criteria.KeyWord;
        for (const QString &cond : conds)
            clauses += QStringLiteral(" AND ") + cond;
    }
    return head + clauses + QStringLiteral(" ORDER BY ResTypeID, Book, Caption");
}

bool PrepareSearchOrder(content::Database &db)
{
    if (sqlite3_db_readonly(db.handle(), "main") != 0)
        return false;
    // The columns' own NOCASE is the Greek rule on every content connection, so the
    // index is in the order that SearchSQL's ORDER BY asks for.
    const int rc = sqlite3_exec(db.handle(),
        "CREATE INDEX IF NOT EXISTS Resources_SearchOrder ON Resources (ResTypeID, Book, Caption, PlaceID, "
        "ChronologicalID, Author, Museum)",
        nullptr, nullptr, nullptr);
    return rc == SQLITE_OK;
}

namespace {

// A field the list reads, by its column when the recordset has one of that name, so that
// the name is looked up once and not at every row; otherwise as Fields finds it.
class ListField
{
public:
    ListField(content::Recordset &rs, QString name)
        : m_rs(rs)
        , m_name(std::move(name))
    {
        for (int c = 0; c < rs.fieldCount() && m_column < 0; ++c) {
            if (rs.fieldName(c).compare(m_name, Qt::CaseInsensitive) == 0)
                m_column = c;
        }
    }
    QVariant value() const { return m_column >= 0 ? m_rs.value(m_column) : m_rs.Fields(m_name).Value(); }
    // Null joined to an empty string, as Field::text reads it.
    QString text() const
    {
        const QVariant v = value();
        return v.isNull() ? QString() : v.toString();
    }

private:
    content::Recordset &m_rs;
    QString m_name;
    int m_column = -1;
};

} // namespace

SearchList SearchListItems(content::Recordset &rs)
{
    SearchList list;
    if (rs.RecordCount() <= 0)
        return list;
    rs.MoveFirst();
    const ListField id(rs, QStringLiteral("ResourceID"));
    const ListField type(rs, QStringLiteral("ResTypeID"));
    const ListField book(rs, QStringLiteral("Book"));
    const ListField caption(rs, QStringLiteral("Caption"));
    list.items.reserve(rs.RecordCount());
    while (!rs.Eof()) {
        switch (type.value().toInt()) {
        case 2: {
            const QString text = book.text();
            list.items.append(
                {text == InscriptionBook ? QStringLiteral("epigrafi") : QStringLiteral("keimeno"), text,
                    QString()});
            break;
        }
        case 1:
        case 6:
            list.items.append({QStringLiteral("agio"), caption.text(), QString()});
            break;
        case 5:
            list.items.append({QStringLiteral("xartis"), caption.text(), QString()});
            break;
        default:
            rs.MoveNext();
            continue;
        }
        list.items.last().tag = id.text();
        rs.MoveNext();
    }
    return list;
}

SearchList Search(content::Database &db, const SearchCriteria &criteria)
{
    auto rs = db.OpenRecordset(SearchSQL(criteria));
    SearchList list = SearchListItems(*rs);
    rs->Close();
    return list;
}

} // namespace finding
