#include "handinwork.h"

#include <logging.h>

#include <database.h>
#include <frmdrawing.h>
#include <frmnotes.h>
#include <picphoto.h>
#include <richtextbox.h>
#include <rtf.h>
#include <runtimeerror.h>
#include <session.h>
#include <shellwindow.h>

#include <QBuffer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

namespace handin {

namespace {

// The notepad prints with an inch of margin on every side.
constexpr double MarginTwips = 1440;

QString field(Session &session, const QString &sql, const QString &name)
{
    auto rs = session.database().OpenRecordset(sql);
    if (rs->BOF() && rs->Eof())
        return {};
    rs->MoveFirst();
    return rs->Fields(name).text();
}

} // namespace

QByteArray noteRtf(const RichTextBox &note)
{
    return richtext::writeDocument(*note.document());
}

QByteArray notePdf(RichTextBox &note)
{
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(QStringLiteral("Σημειώσεις"));
        writer.setCreator(QStringLiteral("Τρεμίδια"));
        // The painter's origin at the paper's corner: the margins are the notepad's own.
        writer.setPageLayout(QPageLayout(
            QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0), QPageLayout::Point));
        const QRectF paper = writer.pageLayout().fullRectPoints();
        const QRectF drawing(QPointF(MarginTwips, MarginTwips),
            QPointF(paper.width() * 20 - MarginTwips, paper.height() * 20 - MarginTwips));
        QPainter painter(&writer);
        if (!painter.isActive())
            throw platform::RuntimeError(57, QStringLiteral("Δεν μπορώ να τυπώσω τις σημειώσεις"));
        const int textLength = note.TextLength();
        int next = 0;
        for (;;) {
            const int from = next;
            next = note.FormatRange(&painter, drawing, next, true);
            if (next >= textLength || next <= from)
                break;
            writer.newPage();
        }
        painter.end();
        note.FormatRangeDone();
    }
    return pdf;
}

QByteArray drawingPng(const QImage &picture)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!picture.save(&buffer, "PNG"))
        throw platform::RuntimeError(platform::errors::InvalidPicture, QStringLiteral("Μη έγκυρη εικόνα"));
    return png;
}

RichTextBox *openNote(Session &session)
{
    auto *notes = session.window<frmNotes>(Session::Window::Notes, false);
    if (!notes || notes->notes->TextLength() == 0)
        return nullptr;
    return notes->notes;
}

QList<OpenDrawing> openDrawings(Session &session)
{
    QList<OpenDrawing> found;
    ShellWindow *shell = session.shell(false);
    QMdiArea *area = shell ? shell->mdiArea() : nullptr;
    if (!area)
        return found;
    for (QMdiSubWindow *sub : area->subWindowList(QMdiArea::CreationOrder)) {
        auto *drawing = qobject_cast<frmDrawing *>(sub->widget());
        if (!drawing || !drawing->picPhoto->hasPicture())
            continue;
        if (!drawing->PictureChangedSinceKept() && drawing->PictureFileName().isEmpty())
            continue;
        found.append({drawing, drawing->windowTitle()});
    }
    return found;
}

QImage drawingPicture(const frmDrawing &drawing)
{
    return drawing.picPhoto->hasPicture() ? drawing.picPhoto->Picture() : drawing.picPhoto->Image();
}

Place placeOf(Session &session)
{
    const Session::Content &content = session.content();
    Place place;
    place.contentTitle = content.databaseTitle;
    place.activityID = content.activityID;
    place.scenarioID = content.scenarioID;
    place.themeID = content.themeID;
    try {
        place.activityTitle = field(session,
            QStringLiteral("SELECT Activity FROM Activities WHERE ActivityID=")
                + QString::number(place.activityID),
            QStringLiteral("Activity"));
        // The scenario last gone through, if the activity is one of its own; else the
        // first that holds the activity (the tree can reach an activity of another one).
        const QString inScenario = field(session,
            QStringLiteral("SELECT ScenarioID FROM RelScenarioActivity WHERE ActivityID=")
                + QString::number(place.activityID) + QStringLiteral(" AND ScenarioID=")
                + QString::number(place.scenarioID),
            QStringLiteral("ScenarioID"));
        if (inScenario.isEmpty()) {
            const QString first = field(session,
                QStringLiteral("SELECT ScenarioID FROM RelScenarioActivity WHERE ActivityID=")
                    + QString::number(place.activityID) + QStringLiteral(" ORDER BY ScenarioID"),
                QStringLiteral("ScenarioID"));
            if (!first.isEmpty())
                place.scenarioID = first.toInt();
        }
        const QString scenarioSql
            = QStringLiteral("SELECT Scenario, ThemeID FROM Scenarios WHERE ScenarioID=")
            + QString::number(place.scenarioID);
        place.scenarioTitle = field(session, scenarioSql, QStringLiteral("Scenario"));
        const QString theme = field(session, scenarioSql, QStringLiteral("ThemeID"));
        if (!theme.isEmpty())
            place.themeID = theme.toInt();
        place.themeTitle = field(session,
            QStringLiteral("SELECT Theme FROM Themes WHERE ThemeID=") + QString::number(place.themeID),
            QStringLiteral("Theme"));
    } catch (const platform::RuntimeError &e) {
        // The titles help the teacher read the list; the work goes without them.
        qCWarning(lcHandin) << "the activity's titles could not be read:" << e.description();
    }
    return place;
}

} // namespace handin
