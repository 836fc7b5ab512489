#include "findingwindows.h"

#include "frmindex.h"
#include "frmsearchresources.h"

#include <database.h>
#include <frmmediaplayer.h>
#include <modglobal.h>
#include <viewerlinks.h>

#include <QTreeWidgetItem>

namespace finding {

void registerFindingLinks()
{
    viewerlinks::setIndexOpener(
        [](qint32 indexType, const QString &term, const QString &explanation, const QString &pictureName) {
            frmIndex *index = frmIndex::instance();
            modGlobal::CenterAndShow(index);
            index->FillListView(indexType);
            index->DisplayHotword(term, explanation, pictureName);
        });
    viewerlinks::setSearchItemUnghoster([](const QString &tag) {
        if (frmSearchResources *search = frmSearchResources::instance(false))
            frmSearchResources::setGhosted(search->FindItem(tag), false);
    });
    frmMediaPlayer::setMediaSource([] {
        frmMediaPlayer::IndexMedia media;
        if (const frmIndex *index = frmIndex::instance(false)) {
            media.MediaKind = index->MediaKind;
            media.SoundPath = index->SoundPath;
            media.VideoPath = index->VideoPath;
        }
        return media;
    });
}

} // namespace finding
