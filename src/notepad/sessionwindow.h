#pragma once

#include <session.h>

// The session's window of `kind`, made by `make` when `create` is set and there is none.
template<typename Form, typename Make>
Form *sessionWindow(Session &session, Session::Window kind, bool create, Make make)
{
    auto *form = session.window<Form>(kind, false);
    if (!form && create) {
        form = make();
        session.setWindow(kind, form);
    }
    return form;
}
