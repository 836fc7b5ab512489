#pragma once

#include <QByteArray>
#include <QSize>
#include <QtEndian>

#include <initializer_list>

// Small metafiles written record by record, so that each test shows what it draws.
namespace metafiles {

inline void put16(QByteArray &out, int value)
{
    const quint16 v = quint16(value);
    out.append(char(v & 0xFF)).append(char(v >> 8));
}

inline void put32(QByteArray &out, quint32 value)
{
    put16(out, int(value & 0xFFFF));
    put16(out, int(value >> 16));
}

// One record: its size in words, its function, its parameters.
inline QByteArray record(int function, std::initializer_list<int> words)
{
    QByteArray out;
    put32(out, quint32(3 + words.size()));
    put16(out, function);
    for (const int w : words)
        put16(out, w);
    return out;
}

// A placeable Windows metafile of `width` by `height` logical units at `unitsPerInch`:
// a white background, then a rectangle filled with `colour` (0x00BBGGRR) and no outline
// over the middle third.
inline QByteArray filledRectangle(int width, int height, int unitsPerInch, quint32 colour)
{
    auto brush = [](quint32 c) {
        QByteArray out;
        put32(out, 7);
        put16(out, 0x02FC); // CreateBrushIndirect
        put16(out, 0); // solid
        put32(out, c);
        put16(out, 0);
        return out;
    };
    QByteArray records;
    records += record(0x0103, {8}); // SetMapMode: anisotropic
    records += record(0x020B, {0, 0}); // SetWindowOrg (y, x)
    records += record(0x020C, {height, width}); // SetWindowExt (y, x)
    records += record(0x02FA, {5, 0, 0, 0, 0}); // CreatePenIndirect: PS_NULL
    records += record(0x012D, {0}); // SelectObject: the pen
    records += brush(0xFFFFFF);
    records += record(0x012D, {1});
    records += record(0x041B, {height, width, 0, 0}); // Rectangle (bottom, right, top, left)
    records += record(0x01F0, {1}); // DeleteObject: the white brush
    records += brush(colour);
    records += record(0x012D, {1});
    records += record(0x041B, {height * 2 / 3, width * 2 / 3, height / 3, width / 3});
    records += record(0x0000, {}); // end of file

    QByteArray header;
    put16(header, 1); // in memory
    put16(header, 9); // header words
    put16(header, 0x0300);
    put32(header, quint32((18 + records.size()) / 2));
    put16(header, 2); // objects
    put32(header, 7); // largest record, in words
    put16(header, 0);

    QByteArray placeable;
    put32(placeable, 0x9AC6CDD7u);
    put16(placeable, 0);
    put16(placeable, 0);
    put16(placeable, 0);
    put16(placeable, width);
    put16(placeable, height);
    put16(placeable, unitsPerInch);
    put32(placeable, 0);
    quint16 checksum = 0;
    for (int i = 0; i < 10; ++i)
        checksum ^= qFromLittleEndian<quint16>(placeable.constData() + 2 * i);
    put16(placeable, checksum);
    return placeable + header + records;
}

// The header of an enhanced metafile whose frame is `frame` hundredths of a millimetre,
// with an end record and nothing drawn.
inline QByteArray enhancedHeaderOnly(QSize frame)
{
    QByteArray out;
    put32(out, 1); // EMR_HEADER
    put32(out, 88);
    for (int i = 0; i < 4; ++i)
        put32(out, 0); // bounds in pixels
    put32(out, 0);
    put32(out, 0);
    put32(out, quint32(frame.width()));
    put32(out, quint32(frame.height()));
    out += QByteArrayLiteral(" EMF");
    put32(out, 0x10000); // version
    put32(out, 88 + 20); // bytes
    put32(out, 2); // records
    put16(out, 1); // handles
    put16(out, 0);
    put32(out, 0); // description
    put32(out, 0);
    put32(out, 0); // palette entries
    put32(out, 1024); // device pixels
    put32(out, 768);
    put32(out, 320); // device millimetres
    put32(out, 240);
    put32(out, 14); // EMR_EOF
    put32(out, 20);
    put32(out, 0);
    put32(out, 16);
    put32(out, 20);
    return out;
}

} // namespace metafiles
