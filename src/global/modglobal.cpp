#include "modglobal.h"

#include "shellwindow.h"

#include <database.h>
#include <twips.h>

#include <QMdiArea>
#include <QMdiSubWindow>

namespace modGlobal {

void DatabaseOwner::operator()(content::Database *database) const
{
    if (owns)
        delete database;
}

void lendContent(content::Database *database, const QString &path, const QString &dataFolder)
{
    DatabaseOwner lent;
    lent.owns = false;
    gDatabase = std::unique_ptr<content::Database, DatabaseOwner>(database, lent);
    gDatabasePath = path;
    gDataFolder = dataFolder;
}

void CenterAndShow(QWidget *form)
{
    if (!form)
        return;
    ShellWindow *shell = ShellWindow::instance();
    QMdiArea *area = shell ? shell->mdiArea() : nullptr;
    if (!area) {
        form->show();
        return;
    }

    QMdiSubWindow *sub = qobject_cast<QMdiSubWindow *>(form);
    if (!sub)
        sub = qobject_cast<QMdiSubWindow *>(form->parentWidget());
    if (!sub || sub->mdiArea() != area) {
        // A child window takes its size from its form, as the form was designed; the
        // sub-window would otherwise shrink it to its own default.
        const QSize designed = form->size();
        const Qt::WindowFlags flags = form->windowFlags() & Qt::FramelessWindowHint;
        sub = area->addSubWindow(form, flags ? Qt::SubWindow | Qt::FramelessWindowHint : Qt::SubWindow);
        const QMargins frame = sub->contentsMargins();
        sub->resize(designed.grownBy(frame));
    }

    const double scaleWidth = platform::twipsFromPixelsX(area->viewport()->width());
    const double scaleHeight = platform::twipsFromPixelsY(area->viewport()->height());
    const double width = platform::twipsFromPixelsX(sub->width());
    const double height = platform::twipsFromPixelsY(sub->height());
    const double left = (scaleWidth - width) / 2.0;
    const double top = (scaleHeight - height) / 2.0;
    sub->move(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top));
    sub->show();
    form->show();
    sub->raise();
    area->setActiveSubWindow(sub);
}

} // namespace modGlobal
