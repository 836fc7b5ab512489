#include "indexterms.h"

#include <database.h>

namespace finding {

QList<IndexTab> IndexTypeTabs(content::Database &db)
{
    QList<IndexTab> tabs;
    auto rs = db.OpenRecordset(QStringLiteral("SELECT EuretirioTypeID, EuretirioType FROM EuretirioTypes"),
        content::dbOpenSnapshot, content::dbReadOnly);
    if (rs->RecordCount() > 0) {
        rs->MoveFirst();
        while (!rs->Eof()) {
            tabs.append({QStringLiteral("tab")
                    + QString::number(rs->Fields(QStringLiteral("EuretirioTypeID")).Value().toLongLong()),
                rs->Fields(QStringLiteral("EuretirioType")).text()});
            rs->MoveNext();
        }
    }
    rs->Close();
    return tabs;
}

qint32 TypeOfTabKey(const QString &key)
{
    const QStringView rest = QStringView(key).mid(qMin<qsizetype>(3, key.size())).trimmed();
    qsizetype digits = 0;
    if (digits < rest.size() && (rest.at(digits) == u'-' || rest.at(digits) == u'+'))
        ++digits;
    while (digits < rest.size() && rest.at(digits).isDigit() && rest.at(digits).unicode() < 128)
        ++digits;
    bool ok = false;
    const qint32 value = rest.left(digits).toInt(&ok);
    return ok ? value : 0;
}

QString IndexListSQL(qint32 type)
{
    if (type == 0)
        return QStringLiteral("SELECT EuretirioID, Oros From Euretirio ORDER BY Oros");
    return QStringLiteral("SELECT EuretirioID, Oros From Euretirio Where EuretirioTypeID = ")
        + QString::number(type) + QStringLiteral(" ORDER BY Oros");
}

QList<IndexTerm> IndexTerms(content::Database &db, qint32 type)
{
    QList<IndexTerm> terms;
    auto rs = db.OpenRecordset(IndexListSQL(type), content::dbOpenSnapshot, content::dbReadOnly);
    if (rs->RecordCount() > 0) {
        rs->MoveFirst();
        while (!rs->Eof()) {
            terms.append({rs->Fields(QStringLiteral("EuretirioID")).text(),
                rs->Fields(QStringLiteral("Oros")).text()});
            rs->MoveNext();
        }
    }
    rs->Close();
    return terms;
}

IndexTermDetails TermDetails(content::Database &db, const QString &tag)
{
    IndexTermDetails details;
    auto rs = db.OpenRecordset(QStringLiteral("SELECT * from Euretirio Where EuretirioID = ") + tag);
    // A tag with no row fails in the reading, as the engine reports it.
    details.Epexigisi = rs->Fields(QStringLiteral("Epexigisi")).text();
    details.Picture = rs->Fields(QStringLiteral("Picture")).text();
    details.Sound = rs->Fields(QStringLiteral("Sound")).text();
    details.Video = rs->Fields(QStringLiteral("Video")).text();
    rs->Close();
    return details;
}

QRect FittedPictureRect(QSize box, QSize picture)
{
    if (picture.isEmpty())
        return QRect();
    const double factor
        = qMin(double(box.width()) / picture.width(), double(box.height()) / picture.height());
    const int width = int(picture.width() * factor);
    const int height = int(picture.height() * factor);
    return QRect((box.width() - width) / 2, (box.height() - height) / 2, width, height);
}

} // namespace finding
