#pragma once

#include <QCursor>
#include <QPixmap>
#include <QString>
#include <QWidget>

// The picture button of every window: nothing but two bitmaps, the face and the face shown
// while a mouse button is held on it. It takes the size of its face. Positions in its
// mouse events are in twips, relative to the button, as the windows reason in twips.
class Btn : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Btn)

public:
    // Mouse buttons and shift state as the mouse and key events report them.
    enum MouseButton { vbLeftButton = 1, vbRightButton = 2, vbMiddleButton = 4 };
    enum ShiftState { vbShiftMask = 1, vbCtrlMask = 2, vbAltMask = 4 };
    // Pointer shapes of MousePointer; 99 shows MouseIcon.
    enum Pointer {
        vbDefault = 0,
        vbArrow = 1,
        vbCrosshair = 2,
        vbIbeam = 3,
        vbHourglass = 11,
        vbCustom = 99
    };

    explicit Btn(QWidget *parent = nullptr);
    ~Btn() override;

    QPixmap Picture() const { return m_picture; }
    // Sets the face and, unless it is empty, sizes the button to it.
    void setPicture(const QPixmap &picture);

    QPixmap DownPicture() const { return m_downPicture; }
    // Only the pressed face known at the first press is ever shown.
    void setDownPicture(const QPixmap &picture);

    // Enabled is the widget's own; a disabled button shows a greyed face.
    bool Enabled() const { return isEnabled(); }

    QCursor MouseIcon() const { return m_mouseIcon; }
    void setMouseIcon(const QCursor &icon);
    int MousePointer() const { return m_mousePointer; }
    void setMousePointer(int pointer);

    // A free text the owner keeps with the button (the toolbar keeps its keys there).
    QString Tag() const { return m_tag; }
    void setTag(const QString &tag) { m_tag = tag; }

    // Width and height in twips.
    int Width() const;
    int Height() const;
    int Left() const;
    int Top() const;
    void Move(int leftTwips, int topTwips);

    // Redraws the current face at once.
    void Refresh();

    // Which face shows right now; for the owner's tests and for accessibility.
    enum class Face { Normal, Pressed, Hover };
    Face currentFace() const { return m_face; }

    QSize sizeHint() const override;

    // What a screen reader's press does: the same as a click.
    Q_INVOKABLE void accessiblePress();

signals:
    void Click();
    // The second press of a double click: the first press and release made the Click.
    void DblClick();
    void KeyDown(int keyCode, int shift);
    void KeyPress(int keyAscii);
    void KeyUp(int keyCode, int shift);
    void MouseDown(int button, int shift, double x, double y);
    void MouseMove(int button, int shift, double x, double y);
    void MouseUp(int button, int shift, double x, double y);
    void PropertyChanged(const QString &name);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

    // Shared by the masked button, which adds a hover face.
    void showFace(Face face);
    // Brings the face back, as clearing the drawing surface does.
    void Cls() { showFace(Face::Normal); }
    // Takes the pressed face on first use and keeps it from then on.
    void capturePressedFace();
    virtual QPixmap hoverFace() const { return {}; }

    static int buttonOf(Qt::MouseButton button);
    static int buttonsOf(Qt::MouseButtons buttons);
    static int shiftOf(Qt::KeyboardModifiers modifiers);
    static double twipsX(double pixels);
    static double twipsY(double pixels);

private:
    void SizeToPicture();
    void applyPointer();
    QPixmap disabledFace() const;

    QPixmap m_picture;
    QPixmap m_downPicture;
    QPixmap m_pressedFace;
    bool m_pressedCaptured = false;
    mutable QPixmap m_disabledFace;
    mutable qint64 m_disabledFor = 0;
    QCursor m_mouseIcon;
    int m_mousePointer = vbDefault;
    QString m_tag;
    Face m_face = Face::Normal;
    // The release that ends a double click makes no second Click.
    bool m_inDoubleClick = false;
};
