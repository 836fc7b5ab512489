#pragma once

#include "surface.h"

#include <QFont>
#include <QImage>
#include <QWidget>

class QMimeData;
class RubberLine;
class RubberShape;

// The canvas of the drawing window. It holds two pictures: the committed one
// (Picture) and the backing image that every drawing lands on (Image). Setting Picture
// replaces the backing image; "Picture = Image" freezes what was drawn. Both are
// implicitly shared images, so handing a picture around copies nothing, and the first
// stroke after a commit gives the backing image pixels of its own.
//
// Coordinates of the mouse, the current point, Line and Point are in twips; the
// device-context calls (Rectangle, Ellipse, ExtFloodFill, TextOut) take pixels.
class PicPhoto final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PicPhoto)

public:
    explicit PicPhoto(QWidget *parent = nullptr);
    ~PicPhoto() override;

    // The rubber bands that lie over the canvas.
    RubberLine *const Line1;
    RubberShape *const Shape1;

    // The committed picture; a null image is "no picture". A picture sizes the canvas
    // to itself; no picture leaves the size and gives a blank backing image. A picture
    // that finds no memory for the canvas's format raises the out-of-memory error.
    const QImage &Picture() const { return m_picture; }
    void setPicture(const QImage &picture);
    bool hasPicture() const { return !m_picture.isNull(); }

    // The backing image with everything drawn, as a picture of its own.
    QImage Image() const { return m_image; }

    // Drawing attributes.
    quint32 ForeColor = 0;
    qint16 DrawWidth = 1;
    qint16 FillStyle = drawing::Solid;
    quint32 FillColor = 0;
    QFont Font;
    // What the canvas shows where no picture is.
    static constexpr quint32 BackColor = 0xFFFFFF;

    // The pen's current point.
    double CurrentX = 0;
    double CurrentY = 0;

    // 0 the default pointer, 99 the window's own cursor.
    int MousePointer() const { return m_mousePointer; }
    void setMousePointer(int pointer);

    // Draws from the current point to (x, y) with ForeColor and DrawWidth, and moves
    // the current point there.
    void Line(double x, double y);
    // The colour under (x, y), or -1 outside the picture.
    qint64 Point(double x, double y) const;

    // Device-context calls with the pen and brush of the attributes.
    void Rectangle(int left, int top, int right, int bottom);
    void Ellipse(int left, int top, int right, int bottom);
    bool ExtFloodFill(int x, int y, qint64 color);
    void TextOut(int x, int y, const QString &text);

    void Refresh() { update(); }

    // Position and size in twips of the container.
    int Left() const;
    int Top() const;
    int Width() const;
    int Height() const;
    void setLeft(int twips);
    void setTop(int twips);
    void Move(int left, int top, int width, int height);

signals:
    // Button 1 left, 2 right, 4 middle; shift 1, control 2, alt 4; x and y in twips.
    void MouseDown(int button, int shift, double x, double y);
    void MouseMove(int button, int shift, double x, double y);
    void MouseUp(int button, int shift, double x, double y);
    // A drag over the canvas asks whether it may drop; the handler clears `accept` to
    // refuse. A drop hands over the data.
    void OLEDragOver(const QMimeData *data, bool &accept);
    void OLEDragDrop(const QMimeData *data);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    drawing::Pen pen() const { return {ForeColor, DrawWidth}; }
    drawing::Brush brush() const { return {FillStyle, FillColor}; }
    // Makes the backing image cover the canvas, keeping what is drawn.
    void fitImage();
    void answerDrag(QDragMoveEvent *event);

    QImage m_picture;
    QImage m_image;
    int m_mousePointer = 0;
};
