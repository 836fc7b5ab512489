#pragma once

// Reads a flat ODF text document (what LibreOffice's "--convert-to fodt" writes): its
// paragraphs, their runs and the properties in force on each, styles resolved; and runs
// LibreOffice headless to make one.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QList>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>
#include <QXmlStreamReader>

#include <cmath>

namespace testing {

using namespace Qt::Literals::StringLiterals;

using Properties = QHash<QString, QString>;

struct Run
{
    QString text;
    Properties properties;
};

struct Paragraph
{
    QString text;
    Properties properties;
    QList<Run> runs;
    bool inList = false;
};

struct Style
{
    QString parent;
    Properties properties;
};

// Reads the styles and the paragraphs of a flat ODF text document.
class FlatOdf
{
public:
    explicit FlatOdf(const QByteArray &xml)
    {
        QXmlStreamReader reader(xml);
        int listDepth = 0;
        int frameDepth = 0; // names and descriptions of pictures are no text of the page
        QList<QString> spanStyles;
        QString styleName;
        bool inBody = false;
        while (!reader.atEnd()) {
            reader.readNext();
            const QString name = reader.qualifiedName().toString();
            if (reader.isStartElement()) {
                const QXmlStreamAttributes attributes = reader.attributes();
                if (name == u"style:style" || name == u"style:default-style") {
                    styleName = name == u"style:default-style"
                        ? u"#default-"_s + attributes.value(u"style:family"_s).toString()
                        : attributes.value(u"style:name"_s).toString();
                    Style &style = m_styles[styleName];
                    style.parent = attributes.value(u"style:parent-style-name"_s).toString();
                    if (style.parent.isEmpty() && name == u"style:style")
                        style.parent = u"#default-"_s + attributes.value(u"style:family"_s).toString();
                } else if (name == u"style:text-properties" || name == u"style:paragraph-properties") {
                    if (!styleName.isEmpty()) {
                        for (const QXmlStreamAttribute &a : attributes)
                            m_styles[styleName].properties.insert(
                                a.qualifiedName().toString(), a.value().toString());
                    }
                } else if (name == u"style:tab-stop") {
                    if (!styleName.isEmpty()) {
                        QString &stops = m_styles[styleName].properties[u"tab-stops"_s];
                        stops += (stops.isEmpty() ? QString() : u","_s)
                            + attributes.value(u"style:position"_s).toString();
                    }
                } else if (name == u"office:text") {
                    inBody = true;
                } else if (inBody && name == u"draw:frame") {
                    ++frameDepth;
                } else if (inBody && name == u"text:list") {
                    ++listDepth;
                } else if (inBody && (name == u"text:p" || name == u"text:h")) {
                    Paragraph paragraph;
                    paragraph.properties = resolved(attributes.value(u"text:style-name"_s).toString());
                    paragraph.inList = listDepth > 0;
                    m_paragraphs.append(paragraph);
                    spanStyles = {attributes.value(u"text:style-name"_s).toString()};
                } else if (inBody && name == u"text:span") {
                    spanStyles.append(attributes.value(u"text:style-name"_s).toString());
                } else if (inBody && name == u"text:s") {
                    const int count = attributes.value(u"text:c"_s).toInt();
                    addText(QString(std::max(1, count), u' '), spanStyles);
                } else if (inBody && name == u"text:line-break") {
                    addText(u"\n"_s, spanStyles);
                } else if (inBody && name == u"text:tab") {
                    addText(u"\t"_s, spanStyles);
                }
            } else if (reader.isEndElement()) {
                if (name == u"style:style" || name == u"style:default-style")
                    styleName.clear();
                else if (name == u"text:span" && !spanStyles.isEmpty())
                    spanStyles.removeLast();
                else if (name == u"text:p" || name == u"text:h")
                    spanStyles.clear();
                else if (name == u"text:list")
                    --listDepth;
                else if (name == u"draw:frame")
                    --frameDepth;
                else if (name == u"office:text")
                    inBody = false;
            } else if (reader.isCharacters() && inBody && frameDepth == 0 && !m_paragraphs.isEmpty()
                && !spanStyles.isEmpty()) {
                addText(reader.text().toString(), spanStyles);
            }
        }
    }

    const QList<Paragraph> &paragraphs() const { return m_paragraphs; }

    // The run that holds the text, with the properties in force there.
    Properties runOf(const QString &text) const
    {
        for (const Paragraph &p : m_paragraphs) {
            for (const Run &run : p.runs) {
                if (run.text.contains(text))
                    return run.properties;
            }
        }
        return {{u"missing"_s, text}};
    }

    const Paragraph *paragraphOf(const QString &text) const
    {
        for (const Paragraph &p : m_paragraphs) {
            if (p.text.contains(text))
                return &p;
        }
        return nullptr;
    }

private:
    Properties resolved(const QString &styleName, int depth = 0) const
    {
        if (styleName.isEmpty() || depth > 20 || !m_styles.contains(styleName))
            return {};
        const Style &style = m_styles[styleName];
        Properties properties = resolved(style.parent, depth + 1);
        properties.insert(style.properties);
        return properties;
    }

    void addText(const QString &text, const QList<QString> &styles)
    {
        Paragraph &paragraph = m_paragraphs.last();
        paragraph.text += text;
        Properties properties;
        for (const QString &style : styles)
            properties.insert(resolved(style));
        paragraph.runs.append({text, properties});
    }

    QHash<QString, Style> m_styles;
    QList<Paragraph> m_paragraphs;
};

// A length of ODF ("2.54cm", "1in", "18pt") in twips.
inline int twips(const QString &length)
{
    static const QList<std::pair<QString, double>> units
        = {{u"cm"_s, 1440 / 2.54}, {u"mm"_s, 144 / 2.54}, {u"in"_s, 1440}, {u"pt"_s, 20}};
    for (const auto &[unit, factor] : units) {
        if (length.endsWith(unit))
            return int(std::lround(length.chopped(unit.size()).toDouble() * factor));
    }
    return length.isEmpty() ? 0 : -1;
}

// Converts a file with LibreOffice headless into flat ODF in `outDir`; returns the fodt's
// path, or an empty string with the output in `log`.
inline QString convertToFlatOdf(
    const QString &soffice, const QString &file, const QString &outDir, QByteArray *log)
{
    QTemporaryDir profile;
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(soffice,
        {u"-env:UserInstallation="_s + QUrl::fromLocalFile(profile.path()).toString(), u"--headless"_s,
            u"--norestore"_s, u"--convert-to"_s, u"fodt"_s, u"--outdir"_s, outDir, file});
    process.waitForFinished(180000);
    if (log)
        *log = process.readAll();
    QString name = QFileInfo(file).completeBaseName() + u".fodt"_s;
    const QString fodt = QDir(outDir).filePath(name);
    return QFile::exists(fodt) ? fodt : QString();
}

} // namespace testing
