#pragma once

#include <QImage>
#include <QWidget>

// The media player's picture area: the video's latest frame, drawn at the area's size
// (black until the first frame comes).
class VideoPicture final : public QWidget
{
    Q_OBJECT

public:
    explicit VideoPicture(QWidget *parent = nullptr);

    void setFrame(const QImage &frame);
    const QImage &frame() const { return m_frame; }
    // How many frames were drawn since the piece began.
    int framesShown() const { return m_shown; }
    void clear();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_frame;
    int m_shown = 0;
};
