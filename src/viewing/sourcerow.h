#pragma once

#include <QString>
#include <QtGlobal>

// A row of Resources, as a source is opened from it: read once by whoever opens the
// source and handed on to its viewer, which reads no more of it.
struct SourceRow
{
    qint32 ResourceID = 0;
    qint32 ResTypeID = 0;
    QString Book;
    QString Caption;
    QString PicturePath;
    QString TextPath;
    QString Lezanda;
};
