#pragma once

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <initializer_list>
#include <vector>

// Small RTF texts painted piece by piece, written here so that each test shows the text
// it searches. A colour of 0 leaves the piece in the automatic colour (black); any other
// number is a 0x00BBGGRR colour of the colour table. "\n" ends a paragraph.
namespace paintedrtf {

inline constexpr quint32 Black = 0;
inline constexpr quint32 Red = 0x0000FF;
inline constexpr quint32 Blue = 0xFF0000;
inline constexpr quint32 Green = 0x008000;
inline constexpr quint32 ExplicitBlack = 0x1000000; // \red0\green0\blue0 in the table

struct Piece
{
    QString text;
    quint32 color = Black;
};

inline QByteArray escaped(const QString &text)
{
    QByteArray out;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u == u'\n')
            out += "\\par\n";
        else if (u == u'\\' || u == u'{' || u == u'}')
            out += '\\' + QByteArray(1, char(u));
        else if (u < 0x80)
            out += char(u);
        else
            out += "\\u" + QByteArray::number(qint16(u)) + '?';
    }
    return out;
}

inline QByteArray rtf(std::initializer_list<Piece> pieces)
{
    std::vector<quint32> table;
    for (const Piece &p : pieces) {
        if (p.color != Black && std::find(table.begin(), table.end(), p.color) == table.end())
            table.push_back(p.color);
    }
    QByteArray out
        = "{\\rtf1\\ansi\\ansicpg1253\\deff0{\\fonttbl{\\f0\\froman\\fcharset161 Times New Roman;}}\n"
          "{\\colortbl ;";
    for (const quint32 c : table) {
        const quint32 rgb = c == ExplicitBlack ? 0 : c;
        out += "\\red" + QByteArray::number(rgb & 0xFF) + "\\green" + QByteArray::number((rgb >> 8) & 0xFF)
            + "\\blue" + QByteArray::number((rgb >> 16) & 0xFF) + ';';
    }
    out += "}\n\\uc1\\pard\\f0\\fs24 ";
    for (const Piece &p : pieces) {
        int index = 0;
        if (p.color != Black)
            index = int(std::find(table.begin(), table.end(), p.color) - table.begin()) + 1;
        out += "{\\cf" + QByteArray::number(index) + ' ' + escaped(p.text) + '}';
    }
    out += "\\par\n}\n";
    return out;
}

} // namespace paintedrtf
