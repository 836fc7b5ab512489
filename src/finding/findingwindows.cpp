#include "findingwindows.h"

#include "frmfulltextsearch.h"
#include "frmindex.h"
#include "frmsearchresources.h"

#include <session.h>

#include <QTreeWidgetItem>

#include <memory>

namespace finding {

namespace {

// A window whose first load failed is not kept: the next opening loads afresh.
template<typename Form> QWidget *loaded(Session &session)
{
    auto form = std::make_unique<Form>(session);
    form->Load();
    return form.release();
}

void registerLinks(Session &session)
{
    session.links().openIndex = [&session](qint32 indexType, const QString &term, const QString &explanation,
                                    const QString &pictureName) {
        auto *index = session.window<frmIndex>(Session::Window::Index);
        CenterAndShow(session, index);
        index->FillListView(indexType);
        index->DisplayHotword(term, explanation, pictureName);
    };
    session.links().unghostSearchItem = [&session](const QString &tag) {
        if (auto *search = session.window<frmSearchResources>(Session::Window::SearchResources, false))
            frmSearchResources::setGhosted(search->FindItem(tag), false);
    };
}

} // namespace

void registerFindingWindows(Session &session)
{
    session.setWindowFactory(Session::Window::Index, &loaded<frmIndex>);
    session.setWindowFactory(Session::Window::SearchResources, &loaded<frmSearchResources>);
    // The text search stays open when its index cannot be read: it says why in its count.
    session.setWindowFactory(Session::Window::FullTextSearch, [](Session &s) -> QWidget * {
        auto *form = new frmFullTextSearch(s);
        s.setWindow(Session::Window::FullTextSearch, form);
        form->Load();
        return form;
    });
    registerLinks(session);
}

} // namespace finding
