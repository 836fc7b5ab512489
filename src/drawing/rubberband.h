#pragma once

#include <QWidget>

// The two light controls that lie over the canvas and show a gesture while it lasts,
// without touching the picture: the line of the Line tool and the box or oval of the
// shape tools. Positions and sizes are in twips of the canvas; the controls let every
// mouse event through to the canvas below.
class RubberLine final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RubberLine)

public:
    explicit RubberLine(QWidget *canvas);
    ~RubberLine() override;

    double X1 = 0;
    double Y1 = 0;
    double X2 = 0;
    double Y2 = 0;
    quint32 BorderColor = 0;
    qint16 BorderWidth = 1;

    void Refresh() { update(); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

class RubberShape final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RubberShape)

public:
    explicit RubberShape(QWidget *canvas);
    ~RubberShape() override;

    enum ShapeKind { Rectangle = 0, Oval = 2 };
    int Shape = Rectangle;
    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;
    quint32 BorderColor = 0;
    qint16 BorderWidth = 1;
    qint16 FillStyle = 0;
    quint32 FillColor = 0;

    void Move(double left, double top, double width, double height);

protected:
    void paintEvent(QPaintEvent *event) override;
};
