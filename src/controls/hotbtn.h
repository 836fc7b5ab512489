#pragma once

#include "btn.h"

#include <QColor>

// The picture button with a third face, shown while the pointer is over it, and a shape
// cut out of a mask picture: every pixel of MaskPicture in MaskColor is see-through.
class HotBtn final : public Btn
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HotBtn)

public:
    // The system colour of button faces, the default mask colour.
    static constexpr quint32 ButtonFaceColor = 0x8000000F;

    explicit HotBtn(QWidget *parent = nullptr);
    ~HotBtn() override;

    QPixmap UpPicture() const { return m_upPicture; }
    // Only the hover face known at the first hover is ever shown.
    void setUpPicture(const QPixmap &picture);

    // 0x00BBGGRR, or a system colour with the high bit set.
    quint32 MaskColor() const { return m_maskColor; }
    void setMaskColor(quint32 color);

    QPixmap MaskPicture() const { return m_maskPicture; }
    void setMaskPicture(const QPixmap &picture);

    // The colour a 0x00BBGGRR value or a system colour stands for.
    static QColor colorFromValue(quint32 value);

protected:
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    QPixmap hoverFace() const override { return m_hoverFace; }

private:
    void applyMask();

    QPixmap m_upPicture;
    QPixmap m_hoverFace;
    bool m_hoverCaptured = false;
    quint32 m_maskColor = ButtonFaceColor;
    QPixmap m_maskPicture;
};
