#include "sourceviewer.h"

#include "viewerlinks.h"

#include <designedcolours.h>
#include <errorpolicy.h>

#include <QCloseEvent>
#include <QHash>
#include <QKeyEvent>
#include <QMdiSubWindow>

namespace {

QHash<int, SourceViewer::Factory> &factories()
{
    static QHash<int, SourceViewer::Factory> table;
    static bool standardRegistered = false;
    if (!standardRegistered) {
        standardRegistered = true;
        registerStandardViewers();
    }
    return table;
}

} // namespace

SourceViewer::SourceViewer(QWidget *parent)
    : QWidget(parent)
{
    platform::useDesignedColours(this);
}

SourceViewer::~SourceViewer() = default;

void SourceViewer::setMapPicture(const QString &)
{
}

void SourceViewer::setMapCaption(const QString &caption)
{
    setWindowTitle(caption);
}

bool SourceViewer::Unload()
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
        return sub->close();
    return close();
}

void SourceViewer::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    if (!event->isAccepted())
        return;
    if (LoadedFromTheFormSearchResources)
        platform::resumeNext([this] { viewerlinks::unghostSearchItem(QString::number(ResourceID())); });
    emit OnUnload();
}

void SourceViewer::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier
        && (kind() == Kind::Text || kind() == Kind::Photo)) {
        platform::guarded([this] { Unload(); });
        return;
    }
    QWidget::keyPressEvent(event);
}

SourceViewer::Kind SourceViewer::kindOfResType(qint32 resTypeID)
{
    switch (resTypeID) {
    case 1:
    case 6:
        return Kind::Photo;
    case 2:
        return Kind::Text;
    case 5:
        return Kind::Map;
    default:
        return Kind::None;
    }
}

SourceViewer *SourceViewer::create(Kind kind)
{
    if (kind == Kind::None)
        return nullptr;
    const auto it = factories().constFind(int(kind));
    if (it == factories().constEnd() || !*it)
        return nullptr;
    return (*it)();
}

void SourceViewer::setFactory(Kind kind, Factory factory)
{
    factories().insert(int(kind), std::move(factory));
}

bool SourceViewer::hasFactory(Kind kind)
{
    const auto it = factories().constFind(int(kind));
    return it != factories().constEnd() && bool(*it);
}
