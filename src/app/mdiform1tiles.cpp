// The shell's tiles and the arrangements of its child windows.
#include "mdiform1.h"
#include "windowlist.h"

#include <database.h>
#include <frmsmallbutton.h>
#include <twips.h>

#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStyle>

#include <algorithm>

void MDIForm1::setSelectedActivity(qint32 activityID)
{
    m_activityID = activityID;
    m_session.content().activityID = activityID;
    mnuHandIn->setEnabled(activityID != 0);
    m_resourceSQL
        = QStringLiteral(
              "SELECT Activities.ActivityID, Resources.ResourceID, Resources.ResTypeID, Resources.PlaceID, "
              "Resources.ChronologicalID, Resources.Author, Resources.Book, Resources.TextRTF, "
              "Resources.TextPath, Resources.PicturePath, Resources.Caption, Resources.Lezanda, "
              "Resources.Kind, Resources.Museum ")
        + QStringLiteral(
            "FROM Resources INNER JOIN (Activities INNER JOIN RelActivityResource ON "
            "(Activities.ActivityID = RelActivityResource.ActivityID) AND (Activities.ActivityID = "
            "RelActivityResource.ActivityID) AND (Activities.ActivityID = "
            "RelActivityResource.ActivityID)) ON (Resources.ResourceID = RelActivityResource.ResourceID) "
            "AND (Resources.ResourceID = RelActivityResource.ResourceID)")
        + QStringLiteral("WHERE Activities.ActivityID = ") + QString::number(activityID);
}

void MDIForm1::LoadResources()
{
    if (m_resourceSQL.isEmpty())
        return;
    m_resourcesRecordset = m_session.database().OpenRecordset(m_resourceSQL, content::dbOpenSnapshot);
    // An activity without resources leaves the count of the one before; the tiles of
    // that one are gone already, and unloading them again does no harm.
    if (m_resourcesRecordset->RecordCount() == 0)
        return;
    m_resourcesRecordset->MoveLast();
    m_resourcesRecordset->MoveFirst();
    m_resourceCount = qint16(m_resourcesRecordset->RecordCount());

    m_tiles = QList<QPointer<frmSmallButton>>(m_resourceCount);
    CreateTiles();
    ArrangeTiles();
}

void MDIForm1::CreateTiles()
{
    content::Recordset &rs = *m_resourcesRecordset;
    int counter = 1;
    while (!rs.Eof()) {
        auto *tile = new frmSmallButton(m_session);
        m_tiles[counter - 1] = tile;
        tile->setResourceID(rs.Fields(QStringLiteral("ResourceID")).Value().toInt());
        tile->Label1->setText(QString::number(counter));
        tile->resize(tile->Image1->size());
        // A tile is a bare picture in the area: no title bar, no frame.
        QMdiSubWindow *sub = area->addSubWindow(tile, Qt::FramelessWindowHint);
        sub->setObjectName(QStringLiteral("tileFrame%1").arg(counter));
        // Nor a window menu, whose shortcuts would close a tile from the keyboard.
        sub->setSystemMenu(nullptr);
        sub->resize(tile->size());
        tile->Load();
        rs.MoveNext();
        ++counter;
    }
}

void MDIForm1::ArrangeTiles()
{
    for (int i = 1; i <= m_resourceCount; ++i) {
        frmSmallButton *tile = m_tiles.value(i - 1);
        if (!tile)
            continue;
        QWidget *frame = tile->parentWidget() ? tile->parentWidget() : tile;
        const int width = platform::twipsFromPixelsX(frame->width());
        const int height = platform::twipsFromPixelsY(frame->height());
        const int column = (i - 1) % 6;
        const int row = (i - 1) / 6;
        const int left = column * width + (column + 1) * 100;
        const int top = row * height + (row + 1) * 100;
        frame->move(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top));
    }
    for (int i = 1; i <= m_resourceCount; ++i) {
        if (frmSmallButton *tile = m_tiles.value(i - 1)) {
            if (tile->parentWidget())
                tile->parentWidget()->show();
            tile->show();
        }
    }
    WindowList::chainTiles(TlbMain, m_tiles.mid(0, m_resourceCount));
}

bool MDIForm1::QueryUnloadResources()
{
    for (int i = 1; i <= m_resourceCount; ++i) {
        frmSmallButton *tile = m_tiles.value(i - 1);
        if (!tile || !tile->SourceOpen() || !tile->SourceForm())
            continue;
        if (!tile->SourceForm()->Unload() && tile->SourceOpen())
            return false;
    }
    return true;
}

void MDIForm1::UnloadResources()
{
    for (int i = 1; i <= m_resourceCount; ++i) {
        if (frmSmallButton *tile = m_tiles.value(i - 1))
            tile->Unload();
    }
}

void MDIForm1::Arrange(int arrangement)
{
    // The tiles are the activity's board and keep their places; the arrangements are
    // for the windows the pupil opened.
    QList<QMdiSubWindow *> windows;
    QList<QMdiSubWindow *> minimised;
    for (QMdiSubWindow *sub : area->subWindowList(QMdiArea::CreationOrder)) {
        if (sub->isHidden() || qobject_cast<frmSmallButton *>(sub->widget()))
            continue;
        if (sub->isMinimized())
            minimised.append(sub);
        else
            windows.append(sub);
    }
    const QRect client = area->viewport()->rect();

    switch (arrangement) {
    case 0: { // cascade
        const int step
            = std::max(1, area->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, area)) + 2;
        const int count = int(windows.size());
        const int width = std::max(client.width() - step * (count - 1), client.width() * 2 / 3);
        const int height = std::max(client.height() - step * (count - 1), client.height() * 2 / 3);
        int offset = 0;
        for (QMdiSubWindow *sub : std::as_const(windows)) {
            if (sub->isMaximized())
                sub->showNormal();
            sub->setGeometry(offset % std::max(1, client.width() - width + 1),
                offset % std::max(1, client.height() - height + 1), width, height);
            sub->raise();
            offset += step;
        }
        break;
    }
    case 1: // horizontal tiling: full-width bands, one above the other
    case 2: { // vertical tiling: full-height columns, side by side
        const int count = int(windows.size());
        for (int i = 0; i < count; ++i) {
            QMdiSubWindow *sub = windows.at(i);
            if (sub->isMaximized())
                sub->showNormal();
            if (arrangement == 1) {
                const int top = client.height() * i / count;
                const int bottom = client.height() * (i + 1) / count;
                sub->setGeometry(0, top, client.width(), bottom - top);
            } else {
                const int left = client.width() * i / count;
                const int right = client.width() * (i + 1) / count;
                sub->setGeometry(left, 0, right - left, client.height());
            }
        }
        break;
    }
    case 3: { // the minimised windows in rows from the bottom left
        int x = 0;
        int y = client.height();
        for (QMdiSubWindow *sub : std::as_const(minimised)) {
            const QSize size = sub->size();
            if (x > 0 && x + size.width() > client.width()) {
                x = 0;
                y -= size.height();
            }
            sub->move(x, y - size.height());
            x += size.width();
        }
        break;
    }
    default:
        break;
    }
}
