#pragma once

#include <QString>

#include <functional>

class PicPhoto;

// The tools of the drawing window, one small class each. The window hands every tool
// the press, the moves while pressed and the release of a gesture on the canvas, with
// the position in twips. Rubber bands show a gesture without touching the picture; the
// picture is drawn at the release, and only the pen draws as it goes. A tool keeps its
// own state between the calls of one gesture and for the window's life.
class DrawingTool
{
public:
    explicit DrawingTool(PicPhoto &canvas)
        : picPhoto(canvas)
    {
    }
    virtual ~DrawingTool();
    Q_DISABLE_COPY_MOVE(DrawingTool)

    virtual void press(double x, double y) = 0;
    virtual void move(double x, double y) = 0;
    virtual void release(double x, double y) = 0;

protected:
    PicPhoto &picPhoto;
};

// Freehand: each move draws from the current point; a press without a move leaves no
// mark.
class DrawPen final : public DrawingTool
{
public:
    using DrawingTool::DrawingTool;
    void press(double x, double y) override;
    void move(double x, double y) override;
    void release(double x, double y) override;
};

// A straight line that follows the pointer in Line1 and lands at the release, from the
// press to the last move.
class DrawStraightLine final : public DrawingTool
{
public:
    using DrawingTool::DrawingTool;
    void press(double x, double y) override;
    void move(double x, double y) override;
    void release(double x, double y) override;
};

// The rectangle and ellipse family: a box dragged in Shape1 in any direction, drawn at
// the release where the last move left it. The plain members draw an outline only, so
// they set the fill aside for the gesture and give it back after.
class DrawBox : public DrawingTool
{
public:
    enum class Figure { Rectangle, Ellipse };
    DrawBox(PicPhoto &canvas, Figure figure, bool filled);

    void press(double x, double y) override;
    void move(double x, double y) override;
    void release(double x, double y) override;

private:
    const Figure m_figure;
    const bool m_filled;
    float X0 = 0;
    float Y0 = 0;
    qint32 m_savedFillStyle = 0;
};

class DrawRectangle final : public DrawBox
{
public:
    explicit DrawRectangle(PicPhoto &canvas)
        : DrawBox(canvas, Figure::Rectangle, false)
    {
    }
};

class DrawFilledRectangle final : public DrawBox
{
public:
    explicit DrawFilledRectangle(PicPhoto &canvas)
        : DrawBox(canvas, Figure::Rectangle, true)
    {
    }
};

class DrawEllipse final : public DrawBox
{
public:
    explicit DrawEllipse(PicPhoto &canvas)
        : DrawBox(canvas, Figure::Ellipse, false)
    {
    }
};

class DrawFilledEllipse final : public DrawBox
{
public:
    explicit DrawFilledEllipse(PicPhoto &canvas)
        : DrawBox(canvas, Figure::Ellipse, true)
    {
    }
};

// Fills the surface of the colour under the press with the fill colour and pattern.
// It acts on the press alone.
class DrawFloodFill final : public DrawingTool
{
public:
    using DrawingTool::DrawingTool;
    void press(double x, double y) override;
    void move(double, double) override { }
    void release(double, double) override { }
};

// Asks for a line of text at the release and writes it where the press was.
class DrawTextTool final : public DrawingTool
{
public:
    // Shows the text dialog modally and answers the text to write, empty for none.
    using AskText = std::function<QString()>;
    DrawTextTool(PicPhoto &canvas, AskText askText);

    void press(double x, double y) override;
    void move(double, double) override { }
    void release(double x, double y) override;

private:
    AskText m_askText;
    double m_x = 0;
    double m_y = 0;
};

namespace drawing {

// A twips position in whole pixels, halves to the even neighbour.
int roundedPixels(double twips, int twipsPerPixel);

// Text as it survives the system's 8-bit Greek code page: characters the page lacks
// come out as question marks.
QString throughGreekCodePage(const QString &text);

} // namespace drawing
