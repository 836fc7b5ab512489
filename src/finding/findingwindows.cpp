#include "findingwindows.h"

#include "frmindex.h"
#include "frmsearchresources.h"

#include <database.h>
#include <modglobal.h>
#include <session.h>

#include <QTreeWidgetItem>

namespace finding {

void registerFindingLinks(Session &session)
{
    session.links().openIndex
        = [](qint32 indexType, const QString &term, const QString &explanation, const QString &pictureName) {
              frmIndex *index = frmIndex::instance();
              modGlobal::CenterAndShow(index);
              index->FillListView(indexType);
              index->DisplayHotword(term, explanation, pictureName);
          };
    session.links().unghostSearchItem = [](const QString &tag) {
        if (frmSearchResources *search = frmSearchResources::instance(false))
            frmSearchResources::setGhosted(search->FindItem(tag), false);
    };
}

} // namespace finding
