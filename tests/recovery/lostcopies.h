#pragma once

// Lost work laid out by hand in a recovery folder, as a program that ended (or something
// else that wrote there) left it, and a look at a folder that tells links from what they
// point at.

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace testing {

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A description as the program writes it.
inline QByteArray description(const QString &kind, const QString &content, const QJsonObject &details = {})
{
    QJsonObject object;
    object.insert(QStringLiteral("kind"), kind);
    object.insert(QStringLiteral("content"), content);
    object.insert(QStringLiteral("details"), details);
    object.insert(QStringLiteral("writtenAt"), 1700000000000.0);
    return QJsonDocument(object).toJson();
}

// A copy of a note in `folder` (a program's folder, made when missing): its content, and
// its description when one is given.
inline bool plantNote(
    const QString &folder, const QString &name, const QByteArray &rtf, const QByteArray &descriptionBytes)
{
    return writeFile(folder + u'/' + name + QStringLiteral(".rtf"), rtf)
        && (descriptionBytes.isNull()
            || writeFile(folder + u'/' + name + QStringLiteral(".json"), descriptionBytes));
}

// Every name below `folder`, with what it is: a file with its bytes, a folder, or a link
// with where it points (never followed).
inline QStringList treeOf(const QString &folder)
{
    QStringList out;
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
        QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        const QString name = QDir(folder).relativeFilePath(info.filePath());
        if (info.isSymLink())
            out << name + QStringLiteral(" -> ") + info.symLinkTarget();
        else if (info.isDir())
            out << name + u'/';
        else
            out << name + QStringLiteral(": ") + QString::fromUtf8(readFile(info.filePath()).left(200));
    }
    out.sort();
    return out;
}

// Whether `path` is there as itself: a link counts, even one whose target is gone.
inline bool isThere(const QString &path)
{
    return QFileInfo(path).isSymLink() || QFileInfo::exists(path);
}

} // namespace testing
