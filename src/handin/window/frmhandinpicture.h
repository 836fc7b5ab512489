#pragma once

#include <QImage>
#include <QWidget>

class QLabel;
class QScrollArea;
class Session;

// A drawing handed in, to look at: the picture at its size, or smaller to fit the
// screen, in a window of its own that Escape closes. Nothing in it can be changed.
class frmHandInPicture final : public QWidget
{
    Q_OBJECT

public:
    explicit frmHandInPicture(Session &session, QWidget *parent = nullptr);
    ~frmHandInPicture() override;
    Q_DISABLE_COPY_MOVE(frmHandInPicture)

    // Controls.
    QScrollArea *const scrPicture;
    QLabel *const Image1;

    // The largest side of a picture this window takes: a drawing larger than a large
    // screen is not one the painter made.
    static constexpr int MaxSide = 8192;

    // Decodes a PNG within MaxSide; a null image when it is not one.
    static QImage decode(const QByteArray &png);

    // Shows the picture under the caption, the window sized to it within the screen.
    void setPicture(const QImage &picture, const QString &caption);
    QImage picture() const { return m_picture; }

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    Session &m_session;
    QImage m_picture;
};
