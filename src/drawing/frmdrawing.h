#pragma once

#include "drawingdialog.h"
#include "frmdrawingtext.h"
#include "frmpastepicture.h"

#include <frmborderwidth.h>
#include <frmcolors.h>
#include <frmfillstyle.h>

#include <sourceviewer.h>
#include <workkeeper.h>

#include <QFont>
#include <QImage>
#include <QPointer>

#include <array>
#include <memory>

class DrawingTool;
class DrawingToolbar;
class PicPhoto;
class QMimeData;
class QScrollBar;
class Session;
namespace recovery {
struct Entry;
}

// "Σχεδιαστήριο": the program's small bitmap painter. One picture on a scrollable
// canvas, nine tools on the left, the commands and five dropdown palettes on top, one
// level of undo, bitmap files, clipboard and printer. The shell keeps one as its own
// drawing window; a map tile or a map of the search opens one more, with the map as the
// picture. A drawing is never written back to the content: it goes to a file the pupil
// names.
//
// Geometry is reasoned about in twips, as the mouse positions that reach the tools.
class frmDrawing final : public SourceViewer
{
    Q_OBJECT

public:
    explicit frmDrawing(Session &session, QWidget *parent = nullptr);
    ~frmDrawing() override;
    Q_DISABLE_COPY_MOVE(frmDrawing)

    // Controls.
    DrawingToolbar *const tlbTools;
    DrawingToolbar *const tlbGeneral;
    QWidget *const picContainer;
    PicPhoto *const picPhoto;
    QScrollBar *const HS;
    QScrollBar *const VS;
    drawing::CommonDialog cmD;

    // Tool numbers; 7 stays unused.
    enum Tool : qint32 {
        Arrow = 0,
        Pen = 1,
        Line = 2,
        Rectangle = 3,
        FilledRectangle = 4,
        Ellipse = 5,
        FilledEllipse = 6,
        FloodFill = 8,
        Text = 9,
    };

    // The smallest window, in twips.
    static constexpr int MinimumWidth = 7155;
    static constexpr int MinimumHeight = 3800;

    Kind kind() const override { return Kind::Map; }
    void Load() override;
    // An opener puts the map in, names the window and lays out the scroll bars.
    void setMapPicture(const QString &path) override;
    void SetScrollBars() override;

    // The window's state, for those who look at it.
    const QString &PictureFileName() const { return m_pictureFileName; }
    bool MouseIsDown() const { return m_mouseIsDown; }
    const QImage &InitialPicture() const { return m_initialPicture; }
    const QImage &UndoPicture() const { return m_undoPicture; }
    const QString &TextToWrite() const { return m_textToWrite; }
    qint32 CurrentTool() const { return m_currentTool; }
    frmPastePicture *PastePicture() const { return vFormPastePicture; }
    frmBorderWidth *BorderWidthPalette() const { return vFormBorderWidth; }
    frmColors *BorderColorPalette() const { return vFormBorderColor; }
    frmColors *FillColorPalette() const { return vFormFillColor; }
    frmFillStyle *FillStylePalette() const { return vFormFillStyle; }

    // Event handlers.
    void picPhoto_MouseDown(int button, int shift, double x, double y);
    void picPhoto_MouseMove(int button, int shift, double x, double y);
    void picPhoto_MouseUp(int button, int shift, double x, double y);
    void picPhoto_OLEDragOver(const QMimeData *data, bool &accept);
    void picPhoto_OLEDragDrop(const QMimeData *data);
    void tlbTools_ButtonClick(const QString &key);
    void tlbGeneral_ButtonClick(const QString &key);
    void vFormBorderColor_NewColor(quint32 color);
    void vFormBorderWidth_NewBorderWidth(qint16 width);
    void vFormFillColor_NewColor(quint32 color);
    void vFormFillStyle_NewFillStyle(qint32 style);
    void vFormPastePicture_NewBitmap(const QImage &picture);
    void vFormText_WriteString(const QFont &font, const QString &text);

    // Drops the palette of a dropdown button under it.
    void ShowPaletteDropdown(const QString &key);

    // True when the caller may go on and lose the present picture: asks whether to save
    // first when there is one. "Yes" goes on only when the save wrote the file.
    bool QuerySave();
    // True when the picture differs from the one last opened, saved or answered for.
    bool PictureChangedSinceKept() const;

    // The recovery copy of the drawing while it is not saved.
    recovery::WorkKeeper *const Recovery;
    // Reopens a drawing that a crash left unsaved: as it was, unsaved, with the file
    // name it had and the map it was drawn on. False, and nothing changed, when its copy
    // holds no picture that can be read.
    bool RestoreWork(const recovery::Entry &lost);
    // The picture of a drawing's recovery copy, read as a picture file is, within its
    // allocation limit; null when it does not decode.
    static QImage RecoveredPicture(const QString &path);

    // The size the window is designed at, which the shell's child frame is sized around.
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildToolbars();
    void Form_Resize();
    void HS_Change();
    void VS_Change();
    void showMouseError(const std::exception &error);
    QString askText();

    // Commands of the general toolbar.
    void NewDrawing();
    void OpenCommand();
    void OpenDrawing();
    // True when the file was written.
    bool SaveDrawing();
    bool SaveDrawingAs();
    void CopyDrawing();
    void PasteDrawing();
    void PrintDrawing();
    void UndoCommand();
    void PictureCommand();
    void ExitCommand();
    QWidget *createPalette(const QString &key);
    std::optional<recovery::Work> unsavedWork() const;
    void showToggle(bool checked);

    QString m_pictureFileName;
    QString m_mapPath; // the map's file, for a map's window
    bool m_mouseIsDown = false;
    bool m_strokeAbandoned = false; // the memory ran out during this stroke
    QImage m_initialPicture;
    QImage m_keptPicture; // as last opened, saved, or let go by the pupil's answer
    QImage m_undoPicture;
    QString m_textToWrite;
    qint32 m_currentTool = Arrow;
    std::array<std::unique_ptr<DrawingTool>, 10> m_tools;

    QPointer<frmBorderWidth> vFormBorderWidth;
    QPointer<frmColors> vFormBorderColor;
    QPointer<frmColors> vFormFillColor;
    QPointer<frmFillStyle> vFormFillStyle;
    QPointer<frmPastePicture> vFormPastePicture;
    QPointer<frmDrawingText> vFormText;
};
