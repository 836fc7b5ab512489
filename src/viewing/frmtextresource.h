#pragma once

#include "sourceviewer.h"

#include <readable.h>

#include <QCursor>
#include <QPointer>

#include <memory>

class CHotWord;
class QLabel;
class QMdiSubWindow;
class RichTextBox;
class RichTextBoxHotWordModel;
class colHotWords;

// A text source: its rich-text file in a parchment-coloured box over the stretched
// parchment, read-only. Its coloured words are hot: the cursor turns to a hand over them,
// and a click opens the popup tip of a comment or the index at a term.
class frmTextResource final : public SourceViewer, public speech::Readable
{
    Q_OBJECT

public:
    explicit frmTextResource(Session &session, QWidget *parent = nullptr);
    ~frmTextResource() override;
    Q_DISABLE_COPY_MOVE(frmTextResource)

    // Controls.
    QLabel *const imgPapiros; // the parchment, filling the client area
    RichTextBox *const rtbTextResource; // the text
    QLabel *const Label1; // never seen: holds the hot-word cursor

    Kind kind() const override { return Kind::Text; }

    // Read aloud: the selection, or else the whole text.
    QString textToRead() const override;
    QTextEdit *textBoxToRead() const override;

    // Loads the file of the row it was handed (reading the row only when it was handed
    // the number alone), builds and locates its hot words. Raises platform::RuntimeError
    // for a missing row or file, or a Null in a hot word's row.
    void Load() override;

    // Locates the hot words in the loaded text (done by Load).
    void FillHotWords();

    // The hot words of the text, located; null before Load.
    colHotWords *hotWords() const { return m_hotWords.get(); }
    // The hot words found in the text, in the order they stand there; what Tab goes
    // through and screen readers read as links.
    int locatedHotWordCount() const { return int(m_located.size()); }
    const CHotWord *locatedHotWord(int index) const { return m_located.value(index); }
    // Selects a hot word, so that it is seen, and brings it into view.
    void selectHotWord(int index);
    // Does what a click on the hot word does.
    void pressHotWord(int index);

    // The place in the shell's window list, 0 or 1.
    qint16 windowListPlace() const { return m_windowListPlace; }

    // Words a search found in the text, as places and lengths in the box's text: the
    // first is selected and scrolled into view, the others are marked until the pupil
    // clicks in the text. Hot words stay as they are.
    void ShowFoundWords(const QList<std::pair<int, int>> &places);
    // The words still marked.
    const QList<std::pair<int, int>> &markedWords() const { return m_markedWords; }

    // The box's events, as the box gives them (button, shift, twips in the box).
    void rtbTextResource_MouseMove(int button, int shift, double x, double y);
    void rtbTextResource_MouseUp(int button, int shift, double x, double y);
    void Form_Activate();

    // The design size of the window, in twips, and the box's place in it.
    static constexpr int FormWidth = 9300;
    static constexpr int FormHeight = 5310;
    static constexpr int BoxLeft = 1074;
    static constexpr int BoxTop = 450;
    static constexpr int BoxWidth = 7031;
    static constexpr int BoxHeight = 4004;
    static constexpr quint32 BoxBackColor = 0xC1EEFE; // RGB(254, 238, 193)

    // The design size once loaded, which the shell's child frame is sized around.
    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void LoadText();
    void Form_Resize();
    void trimSystemMenu(QMdiSubWindow *sub);
    CHotWord *hotWordAt(int place) const;
    // The tip at a point on the screen, or the index at the term.
    void openHotWord(const CHotWord *word, QPoint screenPoint);
    // Tab and Shift+Tab: the next or previous hot word; false when there is none.
    bool stepHotWord(bool forward);
    int selectedHotWord() const;

    std::unique_ptr<colHotWords> m_hotWords;
    std::unique_ptr<RichTextBoxHotWordModel> m_textModel;
    QList<const CHotWord *> m_located;
    double m_widthRatio = 0;
    double m_heightRatio = 0;
    qint16 m_windowListPlace = 0;
    bool m_loaded = false;
    QPointer<QMdiSubWindow> m_watchedSub;
    QList<std::pair<int, int>> m_markedWords;
};
