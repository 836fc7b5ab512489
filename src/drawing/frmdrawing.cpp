#include "frmdrawing.h"

#include <accessibility.h>

#include "canvaskeys.h"
#include "drawingtoolbar.h"
#include "drawingtools.h"
#include "frmdrawingtext.h"
#include "picphoto.h"
#include "picturedata.h"
#include "rubberband.h"

#include <designedcolours.h>
#include <errorpolicy.h>
#include <msgbox.h>
#include <picturefile.h>
#include <runtimeerror.h>
#include <session.h>
#include <shellwindow.h>
#include <twips.h>

#include <QCloseEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QToolButton>

#include <string_view>
#include <tuple>

namespace {

// Room kept for the scroll bars beside and below the canvas, shown or not, and the
// margin an empty canvas keeps inside its container; in twips.
constexpr int ScrollRoom = 255;
constexpr int CanvasMargin = 150;
// The size the window opens at, in twips.
constexpr int DesignWidth = 9600;
constexpr int DesignHeight = 6600;

// The whole pixels that hold at least so many twips.
constexpr int pixelsCoveringX(int twips)
{
    return (twips + platform::TwipsPerPixelX - 1) / platform::TwipsPerPixelX;
}
constexpr int pixelsCoveringY(int twips)
{
    return (twips + platform::TwipsPerPixelY - 1) / platform::TwipsPerPixelY;
}

using platform::pixelsFromTwipsX;
using platform::pixelsFromTwipsY;
using platform::twipsFromPixelsX;
using platform::twipsFromPixelsY;

// Which palette buttons a tool wants: outline width, outline colour, fill colour, fill
// pattern.
struct ToolRow
{
    const char16_t *key;
    const char16_t *picture;
    const char16_t *toolTip;
    qint32 tool;
    bool borderWidth, borderColor, fillColor, fillStyle;
};

constexpr ToolRow kToolRows[] = {
    {u"Arrow", u"dt_Arrow", u"", frmDrawing::Arrow, false, false, false, false},
    {u"Pen", u"dt_Pen", u"Ελεύθερη σχεδίαση", frmDrawing::Pen, true, true, false, false},
    {u"Line", u"dt_Line", u"Ευθεία γραμμή", frmDrawing::Line, true, true, false, false},
    {u"Ellipse", u"dt_Ellipse", u"'Ελλειψη", frmDrawing::Ellipse, true, true, false, false},
    {u"Rectangle", u"dt_Rectangle", u"Παραλληλόγραμμο", frmDrawing::Rectangle, true, true, false, false},
    {u"FilledEllipse", u"dt_FilledEllipse", u"'Ελλειψη με γέμισμα", frmDrawing::FilledEllipse, true, true,
        true, true},
    {u"FilledRectangle", u"dt_FilledRectangle", u"Παραλληλόγραμμο με γέμισμα", frmDrawing::FilledRectangle,
        true, true, true, true},
    {u"FloodFill", u"dt_FloodFill", u"", frmDrawing::FloodFill, false, false, true, true},
    {u"Text", u"dt_Text", u"", frmDrawing::Text, false, true, false, false},
};

struct CommandRow
{
    const char16_t *key;
    const char16_t *toolTip;
    bool dropdown;
};

constexpr CommandRow kCommandRows[] = {
    {u"New", u"Καινούργιο", false},
    {u"Open", u"Άνοιγμα", false},
    {u"Save", u"Αποθήκευση", false},
    {u"SaveAs", u"Αποθήκευση ως...", false},
    {u"Copy", u"Αντιγραφή", false},
    {u"Paste", u"Επικόλληση", false},
    {u"Print", u"Εκτύπωση", false},
    {u"Undo", u"Αναίρεση", false},
    {u"Picture", u"Αρχική εικόνα", false},
    {u"Exit", u"Έξοδος", false},
    {u"Shape", u"", true},
    {u"BorderWidth", u"Πάχος περιγράμματος", true},
    {u"BorderColor", u"Χρώμα περιγράμματος και γραμματοσειράς", true},
    {u"FillColor", u"Χρώμα γεμίσματος", true},
    {u"FillStyle", u"Τύπος γεμίσματος", true},
};

QString text(const char16_t *s)
{
    return QString::fromUtf16(s);
}

} // namespace

// The shell's check mark of the drawing window; a drawing window never brings the shell
// up by itself.
void frmDrawing::showToggle(bool checked)
{
    platform::resumeNext([this, checked] {
        if (ShellWindow *shell = m_session.shell(false))
            shell->setToggleChecked(ShellWindow::Toggle::Draw, checked);
    });
}

frmDrawing::frmDrawing(Session &session, QWidget *parent)
    : SourceViewer(session, parent)
    , tlbTools(new DrawingToolbar(QStringLiteral("tlbTools"), Qt::Vertical, this))
    , tlbGeneral(new DrawingToolbar(QStringLiteral("tlbGeneral"), Qt::Horizontal, this))
    , picContainer(new QWidget(this))
    , picPhoto(new PicPhoto(picContainer))
    , HS(new QScrollBar(Qt::Horizontal, this))
    , VS(new QScrollBar(Qt::Vertical, this))
    , cmD(session)
    , Recovery(new recovery::WorkKeeper(
          session.recovery(), QStringLiteral("drawing"), [this] { return unsavedWork(); }, this))
{
    setObjectName(QStringLiteral("frmDrawing"));
    platform::useDesignedColours(this);
    setWindowTitle(QStringLiteral("Σχεδιαστήριο"));
    picContainer->setObjectName(QStringLiteral("picContainer"));
    HS->setObjectName(QStringLiteral("HS"));
    VS->setObjectName(QStringLiteral("VS"));
    picContainer->setAutoFillBackground(true);
    picContainer->setFocusPolicy(Qt::StrongFocus);
    controls::setAccessibleRole(picContainer, QAccessible::Canvas, QStringLiteral("Σχέδιο"));
    new CanvasScrollKeys(picContainer, HS, VS);
    // A scroll bar never keeps the focus: the container takes it.
    HS->setFocusPolicy(Qt::NoFocus);
    VS->setFocusPolicy(Qt::NoFocus);
    HS->hide();
    VS->hide();
    setMinimumSize(pixelsCoveringX(MinimumWidth), pixelsCoveringY(MinimumHeight));
    resize(pixelsFromTwipsX(DesignWidth), pixelsFromTwipsY(DesignHeight));
    buildToolbars();

    m_tools[Pen] = std::make_unique<DrawPen>(*picPhoto);
    m_tools[Line] = std::make_unique<DrawStraightLine>(*picPhoto);
    m_tools[Rectangle] = std::make_unique<DrawRectangle>(*picPhoto);
    m_tools[FilledRectangle] = std::make_unique<DrawFilledRectangle>(*picPhoto);
    m_tools[Ellipse] = std::make_unique<DrawEllipse>(*picPhoto);
    m_tools[FilledEllipse] = std::make_unique<DrawFilledEllipse>(*picPhoto);
    m_tools[FloodFill] = std::make_unique<DrawFloodFill>(*picPhoto);
    m_tools[Text] = std::make_unique<DrawTextTool>(*picPhoto, [this] { return askText(); });

    connect(picPhoto, &PicPhoto::MouseDown, this,
        [this](int button, int shift, double x, double y) { picPhoto_MouseDown(button, shift, x, y); });
    connect(picPhoto, &PicPhoto::MouseMove, this,
        [this](int button, int shift, double x, double y) { picPhoto_MouseMove(button, shift, x, y); });
    connect(picPhoto, &PicPhoto::MouseUp, this,
        [this](int button, int shift, double x, double y) { picPhoto_MouseUp(button, shift, x, y); });
    connect(picPhoto, &PicPhoto::OLEDragOver, this, [this](const QMimeData *data, bool &accept) {
        platform::guarded([&] { picPhoto_OLEDragOver(data, accept); });
    });
    connect(picPhoto, &PicPhoto::OLEDragDrop, this,
        [this](const QMimeData *data) { platform::guarded([&] { picPhoto_OLEDragDrop(data); }); });
    connect(tlbTools, &DrawingToolbar::ButtonClick, this,
        [this](const QString &key) { platform::guarded([&] { tlbTools_ButtonClick(key); }); });
    connect(tlbGeneral, &DrawingToolbar::ButtonClick, this,
        [this](const QString &key) { platform::guarded([&] { tlbGeneral_ButtonClick(key); }); });
    connect(HS, &QScrollBar::valueChanged, this, [this] { platform::guarded([this] { HS_Change(); }); });
    connect(VS, &QScrollBar::valueChanged, this, [this] { platform::guarded([this] { VS_Change(); }); });
}

frmDrawing::~frmDrawing() = default;

QSize frmDrawing::sizeHint() const
{
    return QSize(pixelsFromTwipsX(DesignWidth), pixelsFromTwipsY(DesignHeight));
}

void frmDrawing::buildToolbars()
{
    for (const ToolRow &row : kToolRows)
        tlbTools->addButton(
            text(row.key), text(row.picture), text(row.toolTip), DrawingToolbar::Style::Group);
    for (const CommandRow &row : kCommandRows) {
        if (row.key == std::u16string_view(u"Shape"))
            tlbGeneral->addSeparator();
        tlbGeneral->addButton(text(row.key), QStringLiteral("dg_") + text(row.key), text(row.toolTip),
            row.dropdown ? DrawingToolbar::Style::Dropdown : DrawingToolbar::Style::Plain);
    }
    // Keys that show no tip are still said by a screen reader for what they are.
    for (const auto &[bar, key, name] :
        {std::tuple {tlbTools, QStringLiteral("Arrow"), QStringLiteral("Δείκτης")},
            std::tuple {tlbTools, QStringLiteral("FloodFill"), QStringLiteral("Γέμισμα")},
            std::tuple {tlbTools, QStringLiteral("Text"), QStringLiteral("Κείμενο")},
            std::tuple {tlbGeneral, QStringLiteral("Shape"), QStringLiteral("Σφραγίδες")}})
        if (QToolButton *button = bar->Buttons(key))
            button->setAccessibleName(name);
}

void frmDrawing::Load()
{
    m_undoPicture = QImage();
    picPhoto->setMousePointer(0);
    m_currentTool = Arrow;

    vFormBorderColor_NewColor(0);
    vFormBorderWidth_NewBorderWidth(1);
    vFormFillStyle_NewFillStyle(drawing::Solid);
    vFormFillColor_NewColor(0);

    // A window loaded again starts as a new one would.
    m_mouseIsDown = false;
    m_pictureFileName.clear();
    m_initialPicture = QImage();
    m_keptPicture = QImage();
    m_textToWrite.clear();
    picPhoto->setPicture(QImage());
    tlbTools->setValue(QStringLiteral("Arrow"), 1);
    tlbTools_ButtonClick(QStringLiteral("Arrow"));
    Form_Resize();

    showToggle(true);
    Recovery->watch([this] { return picPhoto->Picture().cacheKey(); });
}

void frmDrawing::setMapPicture(const QString &path)
{
    picPhoto->setPicture(pictures::LoadPicture(path));
    m_keptPicture = picPhoto->Picture();
    m_mapPath = path;
}

void frmDrawing::resizeEvent(QResizeEvent *event)
{
    SourceViewer::resizeEvent(event);
    platform::resumeNext([this] { Form_Resize(); });
}

void frmDrawing::Form_Resize()
{
    if (twipsFromPixelsX(width()) < MinimumWidth) {
        resize(pixelsCoveringX(MinimumWidth), height());
        return;
    }
    if (twipsFromPixelsY(height()) < MinimumHeight) {
        resize(width(), pixelsCoveringY(MinimumHeight));
        return;
    }
    tlbGeneral->setGeometry(0, 0, width(), tlbGeneral->sizeHint().height());
    tlbTools->setGeometry(
        0, tlbGeneral->height(), tlbTools->sizeHint().width(), height() - tlbGeneral->height());

    const int scaleWidth = twipsFromPixelsX(width());
    const int scaleHeight = twipsFromPixelsY(height());
    picContainer->setGeometry(pixelsFromTwipsX(tlbTools->Width()), pixelsFromTwipsY(tlbGeneral->Height()),
        qMax(pixelsFromTwipsX(scaleWidth - tlbTools->Width() - ScrollRoom), 1),
        qMax(pixelsFromTwipsY(scaleHeight - tlbGeneral->Height() - ScrollRoom), 1));
    if (!picPhoto->hasPicture()) {
        picPhoto->Move(0, 0, twipsFromPixelsX(picContainer->width()) - CanvasMargin,
            twipsFromPixelsY(picContainer->height()) - CanvasMargin);
        return;
    }
    SetScrollBars();
}

void frmDrawing::SetScrollBars()
{
    const int containerLeft = twipsFromPixelsX(picContainer->x());
    const int containerTop = twipsFromPixelsY(picContainer->y());
    const int containerWidth = twipsFromPixelsX(picContainer->width());
    const int containerHeight = twipsFromPixelsY(picContainer->height());

    if (containerWidth - CanvasMargin < picPhoto->Width()) {
        platform::resumeNext([&] {
            HS->setGeometry(pixelsFromTwipsX(containerLeft),
                pixelsFromTwipsY(twipsFromPixelsY(height()) - ScrollRoom), pixelsFromTwipsX(containerWidth),
                pixelsFromTwipsY(ScrollRoom));
            HS->setValue(0);
            // Twips of any map: a scan thousands of pixels across scrolls to its far edge.
            HS->setRange(0, picPhoto->Width() - containerWidth + CanvasMargin);
            HS->setPageStep(containerWidth / 3);
            HS->setSingleStep(platform::TwipsPerPixelX);
            if (HS->pageStep() == 0)
                HS->setPageStep(HS->singleStep());
            HS->setVisible(true);
        });
    } else {
        HS->setVisible(false);
    }

    if (containerHeight - CanvasMargin < picPhoto->Height()) {
        platform::resumeNext([&] {
            VS->setGeometry(pixelsFromTwipsX(containerLeft + containerWidth), pixelsFromTwipsY(containerTop),
                pixelsFromTwipsX(ScrollRoom), pixelsFromTwipsY(containerHeight));
            VS->setValue(0);
            // Twips of any map: a scan thousands of pixels across scrolls to its far edge.
            VS->setRange(0, picPhoto->Height() - containerHeight + CanvasMargin);
            VS->setPageStep(containerHeight / 3);
            VS->setSingleStep(platform::TwipsPerPixelY);
            if (VS->pageStep() == 0)
                VS->setPageStep(VS->singleStep());
            VS->setVisible(true);
        });
    } else {
        VS->setVisible(false);
    }
}

void frmDrawing::HS_Change()
{
    picPhoto->setLeft(-HS->value());
}

void frmDrawing::VS_Change()
{
    picPhoto->setTop(-VS->value());
}

void frmDrawing::showMouseError(const std::exception &error)
{
    int number = 0;
    QString description = QString::fromLocal8Bit(error.what());
    if (const auto *runtime = dynamic_cast<const platform::RuntimeError *>(&error)) {
        number = runtime->number();
        description = runtime->description();
    }
    // A picture too large to draw on is not the tool's failure but the program's: it
    // gets the program's error box, and the picture stays as it was.
    if (number == drawing::OutOfMemory) {
        m_mouseIsDown = false;
        m_strokeAbandoned = true;
        platform::resumeNext([this] { picPhoto->setPicture(picPhoto->Picture()); });
        platform::showRuntimeError(number, description);
        return;
    }
    platform::MsgBox(QString::number(number) + QStringLiteral("\r\n") + description, platform::vbOKOnly);
}

void frmDrawing::picPhoto_MouseDown(int, int, double x, double y)
{
    try {
        m_strokeAbandoned = false;
        m_mouseIsDown = true;
        m_undoPicture = picPhoto->Picture();
        if (DrawingTool *tool = m_tools.at(size_t(m_currentTool)).get())
            tool->press(x, y);
    } catch (const std::exception &e) {
        showMouseError(e);
    }
}

void frmDrawing::picPhoto_MouseMove(int, int, double x, double y)
{
    try {
        if (!m_mouseIsDown || m_currentTool == FloodFill)
            return;
        if (DrawingTool *tool = m_tools.at(size_t(m_currentTool)).get())
            tool->move(x, y);
    } catch (const std::exception &e) {
        showMouseError(e);
    }
}

void frmDrawing::picPhoto_MouseUp(int, int, double x, double y)
{
    try {
        if (m_strokeAbandoned) {
            m_strokeAbandoned = false;
            return;
        }
        if (m_currentTool != FloodFill) {
            if (DrawingTool *tool = m_tools.at(size_t(m_currentTool)).get())
                tool->release(x, y);
        }
        m_mouseIsDown = false;
        // The only commit a stroke has: what was drawn becomes the picture.
        picPhoto->setPicture(picPhoto->Image());
    } catch (const std::exception &e) {
        showMouseError(e);
    }
}

void frmDrawing::picPhoto_OLEDragOver(const QMimeData *data, bool &accept)
{
    accept = data && data->hasImage();
}

void frmDrawing::picPhoto_OLEDragDrop(const QMimeData *data)
{
    if (!data || !data->hasImage())
        return;
    const QImage dropped = drawing::pictureFromMimeData(data, QStringLiteral("Μεταφορά"));
    if (dropped.isNull())
        return;
    if (!QuerySave())
        return;
    picPhoto->setPicture(dropped);
    SetScrollBars();
}

void frmDrawing::tlbTools_ButtonClick(const QString &key)
{
    picPhoto->setMousePointer(tlbTools->Value(QStringLiteral("Arrow")) == 1 ? 0 : 99);
    for (const ToolRow &row : kToolRows) {
        if (key != QStringView(row.key))
            continue;
        tlbGeneral->Buttons(QStringLiteral("BorderWidth"))->setEnabled(row.borderWidth);
        tlbGeneral->Buttons(QStringLiteral("BorderColor"))->setEnabled(row.borderColor);
        tlbGeneral->Buttons(QStringLiteral("FillColor"))->setEnabled(row.fillColor);
        tlbGeneral->Buttons(QStringLiteral("FillStyle"))->setEnabled(row.fillStyle);
        m_currentTool = row.tool;
        return;
    }
}

void frmDrawing::tlbGeneral_ButtonClick(const QString &key)
{
    if (key == u"New")
        NewDrawing();
    else if (key == u"Open")
        OpenCommand();
    else if (key == u"Save")
        SaveDrawing();
    else if (key == u"SaveAs")
        SaveDrawingAs();
    else if (key == u"Copy")
        CopyDrawing();
    else if (key == u"Paste")
        PasteDrawing();
    else if (key == u"Print")
        PrintDrawing();
    else if (key == u"Undo")
        UndoCommand();
    else if (key == u"Picture")
        PictureCommand();
    else if (key == u"Exit")
        ExitCommand();
    else if (key == u"BorderWidth" || key == u"BorderColor" || key == u"FillColor" || key == u"FillStyle"
        || key == u"Shape")
        ShowPaletteDropdown(key);
    else
        platform::MsgBox(key);
}

void frmDrawing::vFormBorderColor_NewColor(quint32 color)
{
    picPhoto->ForeColor = color;
    picPhoto->Shape1->BorderColor = color;
    picPhoto->Line1->BorderColor = color;
}

void frmDrawing::vFormBorderWidth_NewBorderWidth(qint16 width)
{
    picPhoto->DrawWidth = width;
    picPhoto->Shape1->BorderWidth = width;
    picPhoto->Line1->BorderWidth = width;
}

void frmDrawing::vFormFillColor_NewColor(quint32 color)
{
    picPhoto->FillColor = color;
    picPhoto->Shape1->FillColor = color;
}

void frmDrawing::vFormFillStyle_NewFillStyle(qint32 style)
{
    picPhoto->FillStyle = qint16(style);
    picPhoto->Shape1->FillStyle = qint16(style);
}

void frmDrawing::vFormPastePicture_NewBitmap(const QImage &)
{
    // A chosen stamp does not reach the canvas yet; this is where it would.
}

void frmDrawing::vFormText_WriteString(const QFont &font, const QString &text)
{
    picPhoto->Font = font;
    m_textToWrite = text;
}

QString frmDrawing::askText()
{
    m_textToWrite.clear();
    vFormText = new frmDrawingText(this);
    connect(vFormText, &frmDrawingText::WriteString, this,
        [this](const QFont &font, const QString &text) { vFormText_WriteString(font, text); });
    vFormText->exec();
    delete vFormText.data();
    return m_textToWrite;
}

void frmDrawing::closeEvent(QCloseEvent *event)
{
    // Closed by its frame or with the shell, the window would take the pupil's drawing
    // with it: when the picture changed since it was opened or saved, the save question
    // comes first, and Cancel keeps the window (and so the shell) open.
    if (PictureChangedSinceKept() && !QuerySave()) {
        event->ignore();
        return;
    }
    m_keptPicture = picPhoto->Picture();
    Recovery->stopWatching();
    Recovery->discarded();
    // The search gets its item back and the opener hears of the unload.
    SourceViewer::closeEvent(event);
    if (event->isAccepted())
        showToggle(false);
}
