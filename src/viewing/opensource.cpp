#include "opensource.h"

#include "sourceviewer.h"

#include <contenterrors.h>
#include <contentpath.h>
#include <database.h>
#include <errorpolicy.h>
#include <session.h>

std::optional<SourceRow> findSourceRow(content::Database &database, qint32 resourceID)
{
    auto rs = database.OpenRecordset(
        QStringLiteral("SELECT ResourceID, ResTypeID, Book, Caption, PicturePath, TextPath, Lezanda ")
        + QStringLiteral("FROM Resources WHERE ResourceID = ") + QString::number(resourceID));
    if (rs->BOF() && rs->Eof())
        return std::nullopt;
    SourceRow row;
    row.ResourceID = rs->Fields(QStringLiteral("ResourceID")).Value().toInt();
    row.ResTypeID = rs->Fields(QStringLiteral("ResTypeID")).Value().toInt();
    row.Book = rs->Fields(QStringLiteral("Book")).text();
    row.Caption = rs->Fields(QStringLiteral("Caption")).text();
    row.PicturePath = rs->Fields(QStringLiteral("PicturePath")).text();
    row.TextPath = rs->Fields(QStringLiteral("TextPath")).text();
    row.Lezanda = rs->Fields(QStringLiteral("Lezanda")).text();
    rs->Close();
    return row;
}

SourceRow readSourceRow(content::Database &database, qint32 resourceID)
{
    std::optional<SourceRow> row = findSourceRow(database, resourceID);
    if (!row)
        throw content::errors::noCurrentRecord();
    return *row;
}

SourceViewer *openSource(Session &session, const SourceRow &row, const OpenSourceWay &way)
{
    const SourceViewer::Kind kind = SourceViewer::kindOfResType(row.ResTypeID);
    const bool made = !way.viewer;
    SourceViewer *viewer = made ? SourceViewer::create(session, kind) : way.viewer;
    if (!viewer)
        return nullptr;
    try {
        if (kind == SourceViewer::Kind::Map) {
            // A drawing window stands ready first; the map is its picture.
            viewer->Load();
            viewer->setMapPicture(platform::contentPath(
                session.content().dataFolder, QStringLiteral("\\Pictures\\"), row.PicturePath));
            viewer->setMapCaption(row.Caption);
            viewer->SetScrollBars();
            if (made)
                viewer->setSource(row);
        } else {
            if (made)
                viewer->setSource(row);
            viewer->Load();
        }
    } catch (...) {
        // A source that cannot be read leaves no window behind.
        if (made) {
            platform::resumeNext([viewer] { viewer->Unload(); });
            delete viewer;
        }
        throw;
    }
    if (way.fromSearchList)
        viewer->LoadedFromTheFormSearchResources = true;
    CenterAndShow(session, viewer);
    return viewer;
}

SourceViewer *openSource(Session &session, qint32 resourceID, const OpenSourceWay &way)
{
    return openSource(session, readSourceRow(session.database(), resourceID), way);
}
