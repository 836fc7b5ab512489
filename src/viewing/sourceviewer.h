#pragma once

#include <QWidget>

#include <functional>

// The window that shows one source: the text viewer, the photo viewer, or a drawing
// window holding a map. A tile creates the viewer of its resource by kind, through the
// factories below, and never needs to know the viewer classes themselves; the viewers
// register their factories in registerStandardViewers().
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

    explicit SourceViewer(QWidget *parent = nullptr);
    ~SourceViewer() override;
    Q_DISABLE_COPY_MOVE(SourceViewer)

    virtual Kind kind() const = 0;

    // The resource shown. Photo and text viewers read their row at Load; a map window
    // is given its picture instead and ignores the id.
    virtual void setResourceID(qint32 resourceID) { m_resourceID = resourceID; }
    qint32 ResourceID() const { return m_resourceID; }

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

    // A new, unloaded viewer of the kind; nullptr for Kind::None or a kind that has no
    // viewer yet.
    using Factory = std::function<SourceViewer *()>;
    static SourceViewer *create(Kind kind);
    static void setFactory(Kind kind, Factory factory);
    static bool hasFactory(Kind kind);

signals:
    // Raised as the window unloads, after its own unload work; once per close.
    void OnUnload();

protected:
    // Viewers that handle the close themselves call this at the end of theirs, so that
    // the search list and the owner hear of the unload.
    void closeEvent(QCloseEvent *event) override;
    // Escape closes a text or a photograph; a drawing keeps the pupil's work.
    void keyPressEvent(QKeyEvent *event) override;

private:
    qint32 m_resourceID = 0;
};

// Registers the program's own viewers with SourceViewer::setFactory. Defined next to
// the viewers; called once, the first time a viewer is asked for.
void registerStandardViewers();
