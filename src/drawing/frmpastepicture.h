#pragma once

#include <QImage>
#include <QRect>
#include <QWidget>

#include <array>

class QPainter;

// The dropdown palette behind the "Shape" button: four small pictures in a column. It
// marks the chosen one with a sunken edge and the one under the pointer with a raised
// edge, reports a press by NewBitmap and closes at the release, or when another window
// becomes active. The pointer is captured while it is over the palette, so that the
// palette hears it leave.
//
// Mouse positions reach the handlers in twips; the stamps' rectangles are pixels.
class frmPastePicture final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmPastePicture)

public:
    explicit frmPastePicture(QWidget *parent = nullptr);
    ~frmPastePicture() override;

    struct StampRecord
    {
        QRect rect; // right and bottom excluded
        QImage picture;
    };
    static constexpr int StampCount = 4;

    // The stamp marked, 1 to 4, and the one under the pointer, 0 for none.
    qint16 SelectedStamp() const { return m_selectedStamp; }
    qint16 HotStamp() const { return m_hotStamp; }
    bool StampPressed() const { return m_stampPressed; }
    const StampRecord &Stamp(int index) const { return m_stamps.at(size_t(index - 1)); }

    // Marks the stamp that shows this very picture; any other picture changes nothing.
    void setSelectedBitmap(const QImage &picture);

    // Event handlers; x and y in twips of the client area.
    void Form_MouseDown(int button, int shift, double x, double y);
    void Form_MouseMove(int button, int shift, double x, double y);
    void Form_MouseUp(int button, int shift, double x, double y);

signals:
    void NewBitmap(const QImage &picture);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    int stampAt(QPoint pixel) const;
    static QPoint pixelOf(double x, double y);

    std::array<StampRecord, StampCount> m_stamps;
    qint16 m_selectedStamp = 0;
    qint16 m_hotStamp = 0;
    bool m_stampPressed = false;
};

namespace drawing {

// The frames that mark a cell of a palette: raised under the pointer, sunken when
// chosen; one pixel wide, on the rectangle's own edge pixels.
void drawRaisedEdge(QPainter &painter, const QRect &rect);
void drawSunkenEdge(QPainter &painter, const QRect &rect);

} // namespace drawing
