#pragma once

#include <QByteArray>
#include <QtGlobal>

// Numbers inside picture and metafile records, which are little-endian; a read past the
// end gives 0, so a short or damaged file is simply a file that says nothing more.
namespace pictures {

inline quint16 le16(const QByteArray &d, qsizetype at)
{
    if (at < 0 || at + 2 > d.size())
        return 0;
    const auto *p = reinterpret_cast<const unsigned char *>(d.constData() + at);
    return quint16(p[0] | (p[1] << 8));
}

inline quint32 le32(const QByteArray &d, qsizetype at)
{
    if (at < 0 || at + 4 > d.size())
        return 0;
    const auto *p = reinterpret_cast<const unsigned char *>(d.constData() + at);
    return quint32(p[0]) | (quint32(p[1]) << 8) | (quint32(p[2]) << 16) | (quint32(p[3]) << 24);
}

} // namespace pictures
