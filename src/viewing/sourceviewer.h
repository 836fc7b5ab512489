#pragma once

#include "sourcerow.h"

#include <QWidget>

#include <optional>

class Session;

// The window that shows one source: the text viewer, the photo viewer, or a drawing
// window holding a map. A tile creates the viewer of its resource by kind, through the
// session's viewer factories, and never needs to know the viewer classes themselves; the
// viewers register theirs in registerViewingWindows().
class SourceViewer : public QWidget
{
    Q_OBJECT

public:
    // What the content calls a resource type, seen from the window that opens it.
    enum class Kind {
        None, // a type with no viewer
        Photo, // ResTypeID 1 and 6
        Text, // ResTypeID 2
        Map, // ResTypeID 5: an ordinary drawing window with the map as its picture
    };

    explicit SourceViewer(Session &session, QWidget *parent = nullptr);
    ~SourceViewer() override;
    Q_DISABLE_COPY_MOVE(SourceViewer)

    virtual Kind kind() const = 0;

    // The resource shown. A viewer handed only the id reads its row itself (the photo
    // viewer at once, the text viewer at Load); a map window is given its picture instead
    // and ignores the id.
    virtual void setResourceID(qint32 resourceID);
    qint32 ResourceID() const { return m_resourceID; }
    // The resource with the row its opener read: the viewer reads it no more.
    virtual void setSource(const SourceRow &row);
    // The row handed with setSource, while it is the row of ResourceID.
    const std::optional<SourceRow> &source() const { return m_source; }

    // Set by the search window when it opens the source: closing the window then gives
    // the search list its item back.
    bool LoadedFromTheFormSearchResources = false;

    // Builds the window's content before it is shown (the window's Load). Raises
    // platform::RuntimeError when the source cannot be read. A window that was closed
    // is loaded again, from scratch, before it shows again.
    virtual void Load() { }

    // A map window only: the picture file, its title and the scroll bars that fit it.
    // Raises platform::RuntimeError when the picture cannot be read.
    virtual void setMapPicture(const QString &path);
    virtual void setMapCaption(const QString &caption);
    virtual void SetScrollBars() { }

    // Closes the window as its own close button would, wherever it is shown (in the
    // shell's area or on its own). False when the window stayed open: its question was
    // cancelled and it keeps the pupil's work.
    bool Unload();

    // The kind for a content ResTypeID.
    static Kind kindOfResType(qint32 resTypeID);

    // A new, unloaded viewer of the kind, made by the session's factory for it; nullptr
    // for Kind::None or a kind that has no viewer yet.
    static SourceViewer *create(Session &session, Kind kind);

signals:
    // Raised as the window unloads, after its own unload work; once per close.
    void OnUnload();

protected:
    Session &m_session;

    // Viewers that handle the close themselves call this at the end of theirs, so that
    // the search list and the owner hear of the unload.
    void closeEvent(QCloseEvent *event) override;
    // Escape closes a text or a photograph; a drawing keeps the pupil's work.
    void keyPressEvent(QKeyEvent *event) override;

private:
    qint32 m_resourceID = 0;
    std::optional<SourceRow> m_source;
};
