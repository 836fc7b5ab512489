#include "notespalette.h"

namespace notespalette {

void show(QPointer<QWidget> &, QWidget *, const QPoint &, std::function<void(quint32)>)
{
    // The colour palette is not part of the program yet: the key does nothing.
}

void release(QPointer<QWidget> &palette)
{
    if (palette)
        palette->deleteLater();
    palette = nullptr;
}

} // namespace notespalette
