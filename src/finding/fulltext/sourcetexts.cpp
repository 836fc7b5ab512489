#include "sourcetexts.h"

#include <contentpath.h>
#include <database.h>
#include <rtf.h>

#include <QFile>

namespace fulltext {

QString Source::title() const
{
    return resTypeID == 2 ? book : caption;
}

QString Source::textFile(const QString &dataFolder) const
{
    if (textPath.isEmpty())
        return QString();
    if (resTypeID == 2)
        return platform::contentPath(dataFolder, QStringLiteral("\\piges\\"), textPath);
    if (resTypeID == 6)
        return platform::contentPath(dataFolder, QStringLiteral("\\Piges\\"), textPath);
    return QString();
}

QList<Source> readSources(content::Database &db)
{
    // The list's own order; the same columns and sort as the resource search's list.
    auto rs = db.OpenRecordset(
        QStringLiteral("SELECT ResourceID, ResTypeID, Book, Caption, Author, Museum, Lezanda, TextPath "
                       "FROM Resources WHERE ResTypeID IN (1, 2, 5, 6) ORDER BY ResTypeID, Book, Caption"),
        content::dbOpenSnapshot, content::dbReadOnly);
    QList<Source> sources;
    if (rs->RecordCount() > 0) {
        rs->MoveFirst();
        while (!rs->Eof()) {
            Source s;
            s.resourceID = rs->value(0).toInt();
            s.resTypeID = rs->value(1).toInt();
            s.book = rs->Fields(QStringLiteral("Book")).text();
            s.caption = rs->Fields(QStringLiteral("Caption")).text();
            s.author = rs->Fields(QStringLiteral("Author")).text();
            s.museum = rs->Fields(QStringLiteral("Museum")).text();
            s.lezanda = rs->Fields(QStringLiteral("Lezanda")).text();
            s.textPath = rs->Fields(QStringLiteral("TextPath")).text();
            sources.append(std::move(s));
            rs->MoveNext();
        }
    }
    rs->Close();
    return sources;
}

QString readSourceText(const QString &path)
{
    if (path.isEmpty())
        return QString();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return richtext::readPlainText(file.readAll()).text;
}

QString plainField(const QString &field)
{
    if (!field.startsWith(QStringLiteral("{\\rtf")))
        return field;
    return richtext::readPlainText(richtext::rtfFromString(field)).text;
}

QString listTitle(const Source &source)
{
    return plainField(source.title());
}

} // namespace fulltext
