#pragma once

#include "tipgeometry.h"

#include <readable.h>

#include <QFont>
#include <QImage>
#include <QPixmap>
#include <QPointer>
#include <QWidget>

class QAction;
class QMenu;
class Session;

// The popup tip of a comment hot word: its text, its picture, or both, on the tooltip
// background, with a dark frame and a grey shadow that belong to the window's shape. It
// stands at the mouse above the shell and goes at the next click, at Escape, or when it
// loses the activation. The session's Window::Tip: one serves the program; a closed tip
// is gone, and the next one starts from nothing.
class frmToolTips final : public QWidget, public speech::Readable
{
    Q_OBJECT

public:
    explicit frmToolTips(Session &session, QWidget *parent = nullptr);
    ~frmToolTips() override;
    Q_DISABLE_COPY_MOVE(frmToolTips)

    // Where to point, in screen twips; stored only.
    int TipLeft() const { return m_tipLeft; }
    void setTipLeft(int twips) { m_tipLeft = twips; }
    int TipTop() const { return m_tipTop; }
    void setTipTop(int twips) { m_tipTop = twips; }
    QString TipText() const { return m_tipText; }
    QString textToRead() const override { return m_tipText; }
    void setTipText(const QString &text) { m_tipText = text; }
    // The word being read is painted over the tip's text in the reading colours, where
    // the text has it; characters of TipText().
    void highlightWord(int start, int length) override;
    void clearWordHighlight() override;
    int highlightedStart() const { return m_markStart; } // -1: none
    int highlightedLength() const { return m_markStart < 0 ? 0 : m_markLength; }
    // Where the highlighted word is painted, in the tip's pixels; empty when none.
    QRegion highlightArea() const;
    // Takes a picture file's path, or an empty text for none. Raises
    // platform::RuntimeError for a file that is missing or no picture. The reading gives
    // the picture's handle as decimal text, "0" for none.
    QString TipPicture() const;
    void setTipPicture(const QString &path);

    // Shows the tip, modeless, owned by the window given (the shell): the window's Load,
    // which measures, places, paints and shapes it.
    void Show(QWidget *owner);
    void ShowTip();

    // Controls.
    QMenu *const mnuPopUp;
    QAction *const mnuCopyText;
    QAction *const mnuCopyPicture;

    // What ShowTip worked out, for the tests.
    const tipgeometry::Layout &layout() const { return m_layout; }
    const QPixmap &image() const { return m_image; }

    void Unload();

protected:
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    // Arial 10, at the pupil's text size.
    QFont tipFont() const;
    void Form_Load();
    void mnuCopyText_Click();
    void mnuCopyPicture_Click();

    Session &m_session;
    int m_tipLeft = 0;
    int m_tipTop = 0;
    QString m_tipText;
    QImage m_picture;
    tipgeometry::Layout m_layout;
    QPixmap m_image; // the window's persistent picture
    bool m_closing = false;
    int m_markStart = -1;
    int m_markLength = 0;
};
