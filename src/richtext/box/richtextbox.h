#pragma once

#include <QCursor>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextEdit>

#include <memory>
#include <optional>

class QImage;
class QMimeData;
class QPagedPaintDevice;
class QPainter;

namespace richtextbox {
class PageLayout;
class FormatRuns;
} // namespace richtextbox

// The rich-text box of the viewers and the notepad: a QTextEdit that answers with the
// members and the counting of the rich-edit control that the content and the windows
// were written for.
//
// Character places count from 0, one per character and one per paragraph end, in Text
// and in SelStart alike; a tab, a picture and a soft line break are one character each,
// a bullet none. Sizes and indents are in twips, colours are 0x00BBGGRR numbers (0 is
// black; text without a colour of its own reads as black).
//
// The Sel... readings return std::nullopt, the control's Null, when the selection mixes
// values. With an empty selection they read the character just before the caret (at the
// start of a paragraph, the one after it), or the format set for typing at the caret.
// Paragraph readings look at every paragraph the selection touches.
//
// Members that fail the way the control fails throw platform::RuntimeError: 380 for a
// negative place or length or a value out of range, 53 for a file that is not there,
// 75 for one that cannot be read or written, 481 for a picture that cannot be read.
//
// A selection set through SelStart, SelLength or Find is read back at once by every
// member here and announced by SelChange at once, but reaches QTextEdit's own cursor
// (its caret, its scrolling, its signals) only at the next event. This class's
// textCursor() brings it in first; QTextEdit::textCursor() does not.
class RichTextBox : public QTextEdit
{
    Q_OBJECT

public:
    enum FileType { RichTextFile = 0, TextFile = 1 };
    enum Alignment { AlignLeft = 0, AlignRight = 1, AlignCenter = 2 };
    enum FindOption { FindWholeWord = 2, FindMatchCase = 4 };
    // The MousePointer values in use; the others between 1 and 15 are the system's
    // usual arrows and sizers.
    enum Pointer {
        DefaultPointer = 0,
        ArrowPointer = 1,
        IBeamPointer = 3,
        HourglassPointer = 11,
        CustomPointer = 99
    };

    explicit RichTextBox(QWidget *parent = nullptr);
    ~RichTextBox() override;
    Q_DISABLE_COPY_MOVE(RichTextBox)

    static quint32 colorNumber(const QColor &color);
    static QColor colorFromNumber(quint32 number);

    // --- Text and selection -----------------------------------------------------------

    // Paragraphs joined by "\n"; the last paragraph has no "\n" behind it.
    QString Text() const;
    // Replaces the whole content by plain text in the box's font; forgets the undo.
    void setText(const QString &text);
    int TextLength() const;

    int SelStart() const;
    // Puts the caret there and empties the selection; clipped to the text.
    void setSelStart(int place);
    int SelLength() const;
    // Selects from SelStart on; clipped to the text.
    void setSelLength(int length);
    QString SelText() const;
    // Replaces the selection; the new text takes the format of the selection's start.
    void setSelText(const QString &text);
    QByteArray SelRTF() const;
    // Replaces the selection by the RTF; text that is no RTF goes in as plain text.
    void setSelRTF(const QByteArray &rtf);
    void setSelRTF(const QString &rtf);

    // --- Character format of the selection --------------------------------------------

    std::optional<quint32> SelColor() const;
    void setSelColor(quint32 color);
    std::optional<bool> SelBold() const;
    void setSelBold(bool on);
    std::optional<bool> SelItalic() const;
    void setSelItalic(bool on);
    std::optional<bool> SelUnderline() const;
    void setSelUnderline(bool on);
    std::optional<bool> SelStrikeThru() const;
    void setSelStrikeThru(bool on);
    std::optional<QString> SelFontName() const;
    void setSelFontName(const QString &family);
    // Points.
    std::optional<double> SelFontSize() const;
    void setSelFontSize(double points);

    // --- Paragraph format of the selection --------------------------------------------

    // AlignLeft, AlignRight or AlignCenter (justified text reads as left).
    std::optional<int> SelAlignment() const;
    void setSelAlignment(int alignment);
    std::optional<bool> SelBullet() const;
    void setSelBullet(bool on);
    // The first line starts at SelIndent; the other lines at SelIndent +
    // SelHangingIndent (and so does the text behind a bullet).
    std::optional<int> SelIndent() const;
    void setSelIndent(int twips);
    std::optional<int> SelRightIndent() const;
    void setSelRightIndent(int twips);
    std::optional<int> SelHangingIndent() const;
    void setSelHangingIndent(int twips);
    std::optional<int> SelTabCount() const;
    // Keeps the first stops, or adds stops a half inch apart behind the last.
    void setSelTabCount(int count);
    // The tab stop by index from 0; Null past SelTabCount.
    std::optional<int> SelTabs(int index) const;
    void setSelTabs(int index, int twips);

    // --- The box ----------------------------------------------------------------------

    // Locked text cannot be changed by the user, but the caret and the selection can.
    bool Locked() const;
    void setLocked(bool locked);
    quint32 BackColor() const;
    void setBackColor(quint32 color);
    // Lines wrap at this distance from the box's left edge; 0 wraps at the box's width.
    int RightMargin() const;
    void setRightMargin(int twips);
    int MousePointer() const;
    void setMousePointer(int pointer);
    QCursor MouseIcon() const;
    void setMouseIcon(const QCursor &icon);
    // Position and size in twips within the parent; a negative width or height keeps it.
    void Move(int left, int top, int width = -1, int height = -1);
    void Refresh();

    // --- Files ------------------------------------------------------------------------

    // A file given as rich text that holds no RTF is read as plain text, UTF-8 or, if it
    // is not valid UTF-8, the Greek Windows code page. Forgets the undo.
    void LoadFile(const QString &path, int type = RichTextFile);
    // Rich text as RTF; plain text as UTF-8 with "\n" at paragraph ends.
    void SaveFile(const QString &path, int type = RichTextFile) const;
    // Puts a picture file into the text at the caret as one character.
    void InsertPicture(const QString &path);

    // --- Finding and measuring --------------------------------------------------------

    // Searches [start, end) (end < 0: to the end of the text) for text, options
    // FindWholeWord and FindMatchCase added; a match must lie wholly inside. Without
    // FindMatchCase case is ignored the Greek way (see richtextsearch.h). Selects the
    // match and returns its place, or -1 with the selection untouched; an empty text is
    // never found.
    int Find(const QString &text, int start = 0, int end = -1, int options = 0);
    // The display line, from 0, that holds the place, counting wrapped lines.
    int GetLineFromChar(int place) const;
    // The number of display lines as the text is wrapped now.
    int LineCount() const;
    // The place of the character drawn under a point in pixels relative to the box; past
    // the end of a line, the line's end; below the text, the last line.
    int CharFromPos(QPoint pixels) const;
    // The top-left corner of the place's character, in pixels relative to the box.
    QPoint PosFromChar(int place) const;

    // QTextEdit's cursor, with a selection set through SelStart and SelLength brought in.
    QTextCursor textCursor() const;

    // One level of undo: the last change is undone, and a second Undo redoes it.
    void Undo();
    bool CanUndo() const;

    // --- Printing ---------------------------------------------------------------------

    // Lines on screen wrap at this width in twips, as on the printed page; 0 wraps at
    // the box again.
    void setTargetDevice(int lineWidthTwips);
    int targetDeviceWidth() const { return m_targetWidthTwips; }
    // Draws the text from a place into a rectangle in twips from the painter's origin
    // (for a printer not set to full page, the printable area's corner) and returns the
    // place where the next page begins, TextLength() when all is done. With render
    // false it only measures. The layout is kept for the next page of the same device.
    int FormatRange(QPainter *painter, const QRectF &rectTwips, int from, bool render = true);
    // Forgets the layout FormatRange keeps between pages.
    void FormatRangeDone();
    // Prints the selection over the device's pages, within its page layout's margins;
    // without a selection, the whole text.
    void SelPrint(QPagedPaintDevice *device) const;

signals:
    // Any change of the content, its formats included, by the user or by the program.
    void Change();
    // The selection or the caret moved.
    void SelChange();
    // Mouse events with the control's arguments: buttons 1 left, 2 right, 4 middle;
    // shift 1 Shift, 2 Ctrl, 4 Alt; x and y in twips relative to the box. They come
    // after the box has acted on the event, so a MouseUp sees the caret the click set.
    void MouseDown(int button, int shift, double x, double y);
    void MouseMove(int button, int shift, double x, double y);
    void MouseUp(int button, int shift, double x, double y);
    // A drop on the box when oleDropManual is set; the box inserts nothing itself then.
    void OLEDragDrop(const QMimeData *data);

public:
    void setOleDropManual(bool manual) { m_oleDropManual = manual; }

protected:
    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    const QString &foldedText() const;
    void onContentsChange(int position, int removed, int added);
    void onSelectionMoved();
    void noteSelection(int start, int length);
    void setPendingSelection(int anchor, int position);
    void flushSelection();
    QTextCursor currentCursor() const;
    void applyWrapping();
    void applyPointer();
    void ensureLayoutWidth() const;
    template<typename Read>
    auto charProperty(Read read) const -> std::optional<decltype(read(QTextCharFormat()))>;
    template<typename Read>
    auto blockProperty(Read read) const -> std::optional<decltype(read(QTextBlock()))>;
    void mergeSelectionFormat(const QTextCharFormat &format);
    template<typename Edit> void changeBlocks(Edit edit);
    void insertImage(const QImage &image);
    void emitMouse(void (RichTextBox::*signal)(int, int, double, double), QMouseEvent *event, bool pressed);

    mutable QString m_text;
    mutable bool m_textValid = false;
    mutable QString m_folded;
    mutable bool m_foldedValid = false;
    std::unique_ptr<richtextbox::FormatRuns> m_runs;
    std::unique_ptr<richtextbox::PageLayout> m_pages;
    bool m_pending = false;
    bool m_flushQueued = false;
    int m_pendingAnchor = 0;
    int m_pendingPosition = 0;
    int m_lastSelStart = 0;
    int m_lastSelLength = 0;
    bool m_undoneLast = false;
    int m_rightMarginTwips = 0;
    int m_targetWidthTwips = 0;
    int m_pointer = DefaultPointer;
    QCursor m_icon;
    bool m_oleDropManual = false;
};
