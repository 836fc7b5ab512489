#pragma once

// Viewers that stand in for the real ones in the tests of the tiles and the shell: they
// count what the tile asks of them.

#include <session.h>
#include <sourceviewer.h>

#include <QList>
#include <QPointer>

namespace testing {

class FakeViewer final : public SourceViewer
{
    Q_OBJECT

public:
    FakeViewer(Session &session, Kind kind)
        : SourceViewer(session)
        , m_kind(kind)
    {
        resize(300, 200);
        all().append(this);
    }

    Kind kind() const override { return m_kind; }
    void Load() override { ++loads; }
    void setMapPicture(const QString &path) override { mapPicture = path; }
    void setMapCaption(const QString &caption) override
    {
        SourceViewer::setMapCaption(caption);
        mapCaption = caption;
    }
    void SetScrollBars() override { ++scrollBars; }

    int loads = 0;
    int scrollBars = 0;
    QString mapPicture;
    QString mapCaption;

    static QList<QPointer<FakeViewer>> &all()
    {
        static QList<QPointer<FakeViewer>> viewers;
        return viewers;
    }

    static void registerAll(Session &session)
    {
        for (Kind kind : {Kind::Photo, Kind::Text, Kind::Map})
            session.setViewerFactory(
                int(kind), [kind](Session &s) -> QWidget * { return new FakeViewer(s, kind); });
    }

private:
    Kind m_kind;
};

} // namespace testing
