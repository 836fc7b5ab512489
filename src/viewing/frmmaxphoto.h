#pragma once

#include <QImage>
#include <QPointer>
#include <QWidget>

#include "photolayout.h"

class Session;

// The enlarged view of a photograph: the picture scaled to fill a large window, keeping
// its proportions. A click or any key closes it. The session's Window::MaxPhoto: one
// serves the program.
class frmMaxPhoto final : public QWidget
{
    Q_OBJECT

public:
    explicit frmMaxPhoto(Session &session, QWidget *parent = nullptr);
    ~frmMaxPhoto() override;
    Q_DISABLE_COPY_MOVE(frmMaxPhoto)

    // Loads the picture from the file; raises platform::RuntimeError when it cannot.
    void setThePicture(const QString &path);
    void setBackColor(quint32 color);

    // The design size of the area the picture is fitted into, in pixels.
    static constexpr int DesignWidth = 780;
    static constexpr int DesignHeight = 560;

    // Where the picture was drawn at the last activation.
    const photolayout::Enlarged &drawn() const { return m_drawn; }

    void Unload();

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void Form_Activate();

    Session &m_session;
    QImage m_picture;
    QImage m_surface; // the window's persistent picture
    photolayout::Enlarged m_drawn;
};
