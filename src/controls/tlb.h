#pragma once

#include "btn.h"

#include <QString>
#include <QWidget>

#include <array>

// The main shell's bar of eleven picture buttons, each known by its key. The shell only
// listens to ButtonClick; the bar lays its buttons out itself on every paint and resize.
class Tlb final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Tlb)

public:
    static constexpr int ButtonCount = 11;

    explicit Tlb(QWidget *parent = nullptr);
    ~Tlb() override;

    // The buttons, indexes 0 to 10; each one's Tag is its key.
    std::array<Btn *, ButtonCount> Btn1 {};

    // Shows or hides the last button, the search over the sources.
    void setSearchVisible(bool visible);

    // The keys in index order: "exit", "first", "prev", "Ploigisi", "Network", "e-mail",
    // "Sound", "Search", "Notes", "drawing", "SearchResources".
    static QStringList keys();
    // The tool tip shown over the button of a key.
    static QString toolTipFor(const QString &key);

    // Width and height in twips.
    int Width() const;
    int Height() const;

    QSize sizeHint() const override;

signals:
    void ButtonClick(const QString &key);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void PaintBar();
    void layOutButtons();
    void drawEdges(QPainter &painter);

    int ButtonWidth = 0;
    int ButtonHeight = 0;
};
