#pragma once

#include "photolayout.h"
#include "sourceviewer.h"

#include <readable.h>

#include <QImage>

class QFrame;
class QLabel;
class QMimeData;
class RichTextBox;

// A photograph among the sources: the picture at its own size in a panel, its caption
// centred above and its legend centred below, the window sized to what it holds. The
// legend is plain text for a photograph and a rich-text file for a resource of type 6.
// A double click opens the enlarged view; a drag offers the picture to other windows.
class frmResPhoto final : public SourceViewer, public speech::Readable
{
    Q_OBJECT

public:
    explicit frmResPhoto(Session &session, QWidget *parent = nullptr);
    ~frmResPhoto() override;
    Q_DISABLE_COPY_MOVE(frmResPhoto)

    // Read aloud: the caption, then the legend.
    QString textToRead() const override;

    // Controls.
    QFrame *const picContainer; // the panel
    QLabel *const Image1; // the photograph
    RichTextBox *const rtfCaption;
    RichTextBox *const rtfLezanda;

    Kind kind() const override { return Kind::Photo; }

    // Stores the number and reads the resource's row at once.
    void setResourceID(qint32 resourceID) override;
    // Takes the row its opener read, reading nothing.
    void setSource(const SourceRow &row) override;

    QString PhotoPath() const { return m_photoPath; }
    QString PhotoCaption() const { return m_photoCaption; }
    QString PhotoLezanda() const { return m_photoLezanda; }
    QString PhotoType() const { return QString::number(m_resTypeID); }
    // Whether the last GetRecord found a row with a picture.
    bool found() const { return m_found; }

    // Reads the row of the resource, in one query; tells of a failure in a message box
    // and never raises.
    void GetRecord(qint32 number);

    // Builds the window for the record read. Raises platform::RuntimeError when the
    // picture cannot be read.
    void Load() override;

    // The window's smallest size, in pixels, as Load left it.
    QSize minimumWindowSize() const { return m_minimum; }
    const photolayout::Layout &layout() const { return m_layout; }

    void Image1_DblClick();

    // What a drag of the picture offers: the picture itself, to be copied only.
    QMimeData *Image1_OLEStartDrag() const;
    static constexpr Qt::DropActions AllowedEffects = Qt::CopyAction;

    // The size Load worked out, which the shell's child frame is sized around.
    QSize sizeHint() const override { return m_minimum.isValid() ? m_minimum : SourceViewer::sizeHint(); }

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int fitHeight(RichTextBox *box);
    void centreText(RichTextBox *box);
    void placeInPanel(QWidget *control, const QRect &twips);
    void Form_Resize();
    void startDrag();
    // Takes the photograph's path, caption and legend from its row.
    void takeRow(const SourceRow &row);

    bool m_found = false;
    qint32 m_resTypeID = 0;
    QString m_photoPath;
    QString m_photoCaption;
    QString m_photoLezanda;
    QImage m_picture;
    photolayout::Layout m_layout;
    QSize m_minimum;
    QPoint m_pressAt;
    bool m_pressed = false;
};
