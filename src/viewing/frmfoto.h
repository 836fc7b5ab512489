#pragma once

#include <QPointer>
#include <QWidget>

class QLabel;
class Session;

// A bare picture window for the index: the picture at its size. It goes when it loses
// the activation or when the picture is clicked. The session's Window::Photo: one serves
// the program.
class frmFoto final : public QWidget
{
    Q_OBJECT

public:
    explicit frmFoto(Session &session, QWidget *parent = nullptr);
    ~frmFoto() override;
    Q_DISABLE_COPY_MOVE(frmFoto)

    QLabel *const Image1;

    // Loads the picture into Image1 and sizes the window to it. Raises
    // platform::RuntimeError when the file is missing or no picture.
    void LoadPicture(const QString &path);

    void Unload();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    Session &m_session;
};
