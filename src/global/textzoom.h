#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <functional>

class QTextEdit;
class QWidget;

// The size of the reading text for pupils who need it larger: the text viewer, the tip,
// the index's explanation and the notepad's view follow one size, from 100% to 300%.
// Ctrl+plus, Ctrl+minus, Ctrl+0 and Ctrl+wheel change it in any of them, and it is kept
// for the user in tremidia/reading.conf below the XDG config folder, apart from the
// machine's choice of content. The session owns the one size.
class TextZoom final : public QObject
{
    Q_OBJECT

public:
    static constexpr int Smallest = 100;
    static constexpr int Largest = 300;
    static constexpr int Step = 25;

    // Read from the user's file.
    TextZoom();
    ~TextZoom() override;
    Q_DISABLE_COPY_MOVE(TextZoom)

    int percent() const { return m_percent; }
    // Clamped to 100..300, saved, and given to every window that follows it.
    void setPercent(int percent);
    void enlarge() { setPercent(m_percent + Step); }
    void reduce() { setPercent(m_percent - Step); }
    void reset() { setPercent(Smallest); }

    // The keys and the wheel over `watched` (and the viewports of scroll areas among
    // them) change the size; `apply` runs now and after each change, while `context`
    // lives.
    void follow(QObject *context, const QList<QWidget *> &watched, std::function<void(int percent)> apply);

    // Lays out a text box's document as if its screen had `percent` of its resolution:
    // letters, pictures and indents grow and the lines wrap anew in the same box, and
    // clicks still find their characters. The document itself is not changed.
    static void zoomTextEdit(QTextEdit *edit, int percent);

    // The user's file, and the size saved in it (100 when none).
    static QString settingsFile();
    static int savedPercent();

signals:
    void percentChanged(int percent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int m_percent = Smallest;
};
