#pragma once

// A copy of the built sample course's content file and its texts, to correct a text in:
// the sample itself stays as it was built.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>

namespace testing {

// Copies the content file and its "piges" folder into `folder`; returns the copied
// content file, or an empty string when a copy failed.
inline QString copySampleTexts(const QString &contentFile, const QString &folder)
{
    const QString content = folder + QStringLiteral("/") + QFileInfo(contentFile).fileName();
    if (!QFile::copy(contentFile, content) || !QDir(folder).mkdir(QStringLiteral("piges")))
        return QString();
    const QDir texts(QFileInfo(contentFile).absolutePath() + QStringLiteral("/piges"));
    for (const QString &name : texts.entryList(QDir::Files)) {
        if (!QFile::copy(texts.filePath(name), folder + QStringLiteral("/piges/") + name))
            return QString();
    }
    return content;
}

// Adds a paragraph "ξυλοκερατιά" at the end of an RTF file of code page 1253, as the
// sample's texts are written.
inline bool addCarobTree(const QString &rtfFile)
{
    QFile file(rtfFile);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    QByteArray rtf = file.readAll();
    const qsizetype end = rtf.lastIndexOf('}');
    if (end < 0)
        return false;
    rtf.insert(end, "\\par \\'ee\\'f5\\'eb\\'ef\\'ea\\'e5\\'f1\\'e1\\'f4\\'e9\\'dc");
    return file.resize(0) && file.write(rtf) == rtf.size();
}

} // namespace testing
