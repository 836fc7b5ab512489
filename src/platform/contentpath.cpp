#include "contentpath.h"

#include <QDir>
#include <QFileInfo>

namespace platform {

namespace {

QString toNativeSeparators(QString path)
{
    path.replace(u'\\', u'/');
    while (path.contains(QStringLiteral("//")))
        path.replace(QStringLiteral("//"), QStringLiteral("/"));
    return path;
}

// Finds an entry of `dir` named `name` regardless of case; exact names win.
QString matchEntry(const QString &dir, const QString &name)
{
    const QDir d(dir.isEmpty() ? QStringLiteral(".") : dir);
    if (QFileInfo::exists(d.filePath(name)))
        return name;
    const QStringList entries = d.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return entry;
    }
    return {};
}

} // namespace

QString resolvePath(const QString &path)
{
    const QString unified = toNativeSeparators(path);
    if (unified.isEmpty())
        return unified;

    const bool absolute = unified.startsWith(u'/');
    const QStringList parts = unified.split(u'/', Qt::SkipEmptyParts);
    QString current = absolute ? QStringLiteral("/") : QString();
    bool resolving = true;
    for (const QString &part : parts) {
        QString name = part;
        if (resolving && part != QStringLiteral(".") && part != QStringLiteral("..")) {
            const QString found = matchEntry(current, part);
            if (found.isEmpty())
                resolving = false; // nothing below a missing folder can be matched
            else
                name = found;
        }
        if (current.isEmpty() || current.endsWith(u'/'))
            current += name;
        else
            current += u'/' + name;
    }
    if (unified.endsWith(u'/') && !current.endsWith(u'/'))
        current += u'/';
    return current;
}

QString contentPath(const QString &dataFolder, const QString &literal, const QString &fileName)
{
    return resolvePath(dataFolder + literal + fileName);
}

QString parentFolderName(const QString &path)
{
    const QString unified = toNativeSeparators(path);
    const qsizetype slash = unified.lastIndexOf(u'/');
    if (slash < 0)
        return {};
    if (slash == 0)
        return QStringLiteral("/");
    return unified.left(slash);
}

QString buildPath(const QString &folder, const QString &name)
{
    if (folder.isEmpty())
        return name;
    if (folder.endsWith(u'/') || folder.endsWith(u'\\'))
        return folder + name;
    return folder + u'/' + name;
}

bool fileExists(const QString &path)
{
    if (path.isEmpty())
        return false;
    const QFileInfo info(resolvePath(path));
    return info.exists() && info.isFile();
}

} // namespace platform
