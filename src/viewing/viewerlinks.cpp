#include "viewerlinks.h"

namespace viewerlinks {

namespace {

IndexOpener &indexOpener()
{
    static IndexOpener opener;
    return opener;
}

SearchItemUnghoster &searchItemUnghoster()
{
    static SearchItemUnghoster unghoster;
    return unghoster;
}

} // namespace

void setIndexOpener(IndexOpener opener)
{
    indexOpener() = std::move(opener);
}

bool openIndex(qint32 indexType, const QString &term, const QString &explanation, const QString &pictureName)
{
    if (!indexOpener())
        return false;
    indexOpener()(indexType, term, explanation, pictureName);
    return true;
}

void setSearchItemUnghoster(SearchItemUnghoster unghoster)
{
    searchItemUnghoster() = std::move(unghoster);
}

void unghostSearchItem(const QString &tag)
{
    if (searchItemUnghoster())
        searchItemUnghoster()(tag);
}

} // namespace viewerlinks
