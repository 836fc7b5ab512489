#pragma once

#include <QByteArray>
#include <QColor>
#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

class QTextBlock;
class QTextCharFormat;
class QTextDocument;
class QTextImageFormat;

namespace richtext {

// Writes a document as the rich-edit control does on a Greek system: code page 1253,
// Greek fonts with charset 161, a colour table with "auto" first, bullets in the
// control's own numbering form and pictures as PNG.
class RtfWriter final
{
public:
    explicit RtfWriter(const QTextDocument &document);
    RtfWriter(const RtfWriter &) = delete;
    RtfWriter &operator=(const RtfWriter &) = delete;

    QByteArray write();

private:
    struct Written
    {
        int font = 0;
        int halfPoints = 24;
        int foreground = 0;
        int background = 0;
        bool bold = false;
        bool italic = false;
        bool underline = false;
        bool strike = false;
        int vertical = 0;
    };

    void collectTables();
    int fontIndex(const QString &family);
    int colorIndex(const QColor &color);
    QString familyOf(const QTextCharFormat &format) const;
    void writeHeader();
    void writeBlock(const QTextBlock &block);
    void writeCharFormat(const QTextCharFormat &format);
    void writeText(const QString &text);
    void writeFontName(const QString &name);
    void writePicture(const QTextImageFormat &format);
    void word(const char *control);
    void word(const char *control, long long value);
    void literal(char c);

    const QTextDocument &m_document;
    QByteArray m_out;
    QStringList m_fonts;
    QHash<QString, int> m_fontIndex;
    std::vector<quint32> m_colors; // 0x00BBGGRR, after the "auto" entry
    QHash<quint32, int> m_colorIndex;
    int m_symbolFont = -1;
    QString m_defaultFamily;
    double m_defaultPointSize = 12;
    Written m_state;
    bool m_needDelimiter = false;
};

} // namespace richtext
