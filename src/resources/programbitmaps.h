#pragma once

#include <QCursor>
#include <QIcon>
#include <QPixmap>
#include <QPoint>
#include <QSize>
#include <QString>
#include <QStringList>

// The bitmaps the program carries by name: the start screen's background "BGR_1", the
// faces of the picture buttons ("GO", "EXIT", the index window's "PICTURE", "SOUND",
// "VIDEO", the toolbar's "tlb_" + key, each with its pressed face ending in "_DOWN" or
// "_down"), the tiles of the sources, the parchment "PAPIROS", the hand cursor "HAND" and
// the small icons of the tree ("Th", "Sc", "Ac") and of the search list ("epigrafi",
// "keimeno", "agio", "xartis"), the line-width palette's ten lines "LINEWIDTHS" and the notepad's toolbar
// ("nt_" + image key). They are drawn as vector
// pictures and rendered at the screen's device pixel ratio, so a picture has one size in logical pixels and
// stays sharp on HiDPI screens.
namespace resources {

// Error number raised for a name the program does not carry.
inline constexpr int ResourceNotFound = 326;

// The named bitmap at its design size in logical pixels, rendered for the primary
// screen's device pixel ratio. An unknown name throws platform::RuntimeError(326, ...).
QPixmap LoadResPicture(const QString &name);

// The same at an explicit device pixel ratio (2 gives a pixmap of twice the pixels,
// drawn afresh at that resolution, with devicePixelRatio 2).
QPixmap LoadResPicture(const QString &name, qreal devicePixelRatio);

// The design size in logical pixels; an invalid size for an unknown name.
QSize designSize(const QString &name);

// Whether the program carries a bitmap of that name (names are case-sensitive).
bool exists(const QString &name);

// Every name the program carries, in a stable order.
QStringList names();

// An icon that renders the picture afresh for each size and ratio it is asked for.
// Throws like LoadResPicture for an unknown name.
QIcon LoadResIcon(const QString &name);

// A cursor made of the named picture with its hot spot ("HAND": the fingertip).
// Throws like LoadResPicture for an unknown name.
QCursor LoadResCursor(const QString &name);

// The hot spot of a cursor picture in logical pixels; (0, 0) for other pictures.
QPoint hotSpot(const QString &name);

// The device pixel ratio pictures are rendered at by default: the primary screen's, or
// the application's when there is no screen, or 1 before there is an application.
qreal screenPixelRatio();

} // namespace resources
