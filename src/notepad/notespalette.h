#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

// The notes window's colour palette, the one object of the window's life: shown at a
// place, it reports the colour picked and closes itself.
namespace notespalette {

// Shows the palette at a place in the shell's coordinates, owner the notes window,
// making it on first use. Without a palette in the program this does nothing.
void show(
    QPointer<QWidget> &palette, QWidget *owner, const QPoint &place, std::function<void(quint32)> picked);

// Lets the palette go with the window.
void release(QPointer<QWidget> &palette);

} // namespace notespalette
