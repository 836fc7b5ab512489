#include "sourceviewer.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <session.h>

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiSubWindow>

SourceViewer::SourceViewer(Session &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
{
    platform::useDesignedColours(this);
}

SourceViewer::~SourceViewer() = default;

void SourceViewer::setResourceID(qint32 resourceID)
{
    if (m_source && m_source->ResourceID != resourceID)
        m_source.reset();
    m_resourceID = resourceID;
}

void SourceViewer::setSource(const SourceRow &row)
{
    m_resourceID = row.ResourceID;
    m_source = row;
}

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
        platform::resumeNext([this] {
            if (const auto &unghost = m_session.links().unghostSearchItem)
                unghost(QString::number(ResourceID()));
        });
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

SourceViewer *SourceViewer::create(Session &session, Kind kind)
{
    if (kind == Kind::None)
        return nullptr;
    QWidget *viewer = session.makeViewer(int(kind));
    auto *sourceViewer = qobject_cast<SourceViewer *>(viewer);
    if (viewer && !sourceViewer)
        delete viewer;
    return sourceViewer;
}
