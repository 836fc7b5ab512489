#pragma once

#include "rtfstate.h"

#include <QByteArray>

// The pictures of RTF: PNG, JPEG, device-independent bitmaps, and the metafiles that the
// rich-edit control and word processors wrap around a bitmap.
namespace richtext {

struct PictureInput
{
    enum Format : quint8 { Unknown, Png, Jpeg, Dib, Wmf, Emf };
    Format format = Unknown;
    QByteArray data;
    int picw = 0, pich = 0; // pixels for bitmaps, himetric for metafiles
    int goalw = 0, goalh = 0; // twips
    int scalex = 100, scaley = 100;
};

RtfPicture decodePicture(const PictureInput &input);

// A BMP file around a packed DIB (header, colours, bits), or an empty array when the
// header makes no sense.
QByteArray bmpFromDib(const QByteArray &dib);
// The DIB inside a Windows or enhanced metafile, when the metafile draws one.
QByteArray dibFromWmf(const QByteArray &wmf);
QByteArray dibFromEmf(const QByteArray &emf);

} // namespace richtext
