#pragma once

#include <handin.h>

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QPointer>
#include <QString>

class RichTextBox;
class Session;
class frmDrawing;

// What a pupil can hand in from the windows open now, turned into a bundle's files. The
// windows are only read: the note and the drawings stay as they are, saved or not.
namespace handin {

// The note as RTF, written by our writer as the notepad saves it.
QByteArray noteRtf(const RichTextBox &note);
// The note printed to PDF as the notepad prints it: A4, an inch of margin all round.
QByteArray notePdf(RichTextBox &note);
// A picture as the PNG the bundle holds.
QByteArray drawingPng(const QImage &picture);

// The session's open note with something written in it; null when there is none.
RichTextBox *openNote(Session &session);

// A drawing window of the activity with the pupil's work in it.
struct OpenDrawing
{
    QPointer<frmDrawing> window;
    QString title; // the window's caption
};
// The drawing windows in the shell, in the order they were opened, that hold something the
// pupil drew or opened: a map only looked at, or an empty painter, is not the pupil's work.
QList<OpenDrawing> openDrawings(Session &session);
// The picture the pupil sees in a drawing window: a map with what was drawn on it.
QImage drawingPicture(const frmDrawing &drawing);

// The course, theme, scenario and activity the pupil is in, with their titles.
Place placeOf(Session &session);

} // namespace handin
