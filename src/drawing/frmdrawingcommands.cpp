// The commands of the drawing window's general toolbar: new, open, save, copy, paste,
// print, undo, the starting picture, exit, and the palettes that drop down.
#include "frmdrawing.h"

#include "drawingprint.h"
#include "drawingtoolbar.h"
#include "frmpastepicture.h"
#include "picphoto.h"
#include "picturedata.h"

#include <errorpolicy.h>
#include <frmborderwidth.h>
#include <frmcolors.h>
#include <frmfillstyle.h>

#include <msgbox.h>
#include <picturefile.h>
#include <runtimeerror.h>
#include <twips.h>

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QSaveFile>
#include <QScreen>
#include <QScrollBar>
#include <QToolButton>

namespace {

constexpr int CanvasMargin = 150;
constexpr int OpenFlags = 0x83000;
constexpr int SaveFlags = 0x80002;
constexpr int PrintFlags = 0x140000;

// Drawings are stored as 24-bit bitmaps whatever the name's extension. The bitmap is
// written aside and put in place at the end, so a failure never leaves half a drawing
// where the pupil's file was.
void SavePicture(const QImage &picture, const QString &fileName)
{
    if (picture.isNull())
        throw platform::RuntimeError(platform::errors::InvalidPicture, QStringLiteral("Μη έγκυρη εικόνα"));
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || !picture.convertToFormat(QImage::Format_RGB32).save(&file, "BMP")
        || !file.commit())
        throw platform::RuntimeError(75, QStringLiteral("Σφάλμα πρόσβασης στη διαδρομή/αρχείο"));
}

bool isCancel(const platform::RuntimeError &e)
{
    return e.number() == platform::errors::CommonDialogCancelled;
}

void critical(const QString &text)
{
    platform::MsgBox(text, platform::vbCritical, platform::ProgramTitle.toString());
}

// Formats a picture may come in: a bitmap, a device-independent bitmap, a metafile.
bool hasPictureFormat(const QMimeData *data)
{
    if (!data)
        return false;
    if (data->hasImage())
        return true;
    for (const QString &format : data->formats()) {
        if (format.startsWith(QStringLiteral("image/"))
            || format.contains(QStringLiteral("Metafile"), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

} // namespace

bool frmDrawing::QuerySave()
{
    if (!picPhoto->hasPicture())
        return true;
    const int answer = platform::MsgBox(QStringLiteral("Θέλετε να αποθηκεύσετε την εικόνα")
            + QStringLiteral("\r\n") + QStringLiteral("πριν συνεχίσετε"),
        platform::vbYesNoCancel | platform::vbQuestion, QStringLiteral("Αποθήκευση"));
    // A "Yes" whose save wrote nothing (the dialog cancelled, the writing failed) keeps
    // the picture as a cancel would: going on would lose it.
    if (answer == platform::vbYes)
        return SaveDrawing();
    if (answer == platform::vbNo)
        Recovery->discarded();
    return answer != platform::vbCancel;
}

void frmDrawing::NewDrawing()
{
    if (!QuerySave())
        return;
    picPhoto->setPicture(QImage());
    picPhoto->Move(0, 0, platform::twipsFromPixelsX(picContainer->width()) - CanvasMargin,
        platform::twipsFromPixelsY(picContainer->height()) - CanvasMargin);
    m_initialPicture = QImage();
    SetScrollBars();
}

void frmDrawing::OpenCommand()
{
    if (!QuerySave())
        return;
    OpenDrawing();
    m_initialPicture = picPhoto->Picture();
    SetScrollBars();
}

void frmDrawing::OpenDrawing()
{
    try {
        cmD.CancelError = true;
        cmD.Filter = QStringLiteral("Εικόνες (*.bmp)|*.bmp");
        cmD.Flags = OpenFlags;
        cmD.DialogTitle = QStringLiteral("Άνοιγμα εικόνας");
        cmD.ShowOpen(this);
        picPhoto->setPicture(pictures::LoadPicture(cmD.FileName));
        picPhoto->move(0, 0);
        m_pictureFileName = cmD.FileName;
        m_keptPicture = picPhoto->Picture();
        update();
    } catch (const platform::RuntimeError &e) {
        if (!isCancel(e))
            critical(QStringLiteral("Υπάρχει πρόβλημα στο άνοιγμα της εικόνας."));
    } catch (const std::exception &) {
        critical(QStringLiteral("Υπάρχει πρόβλημα στο άνοιγμα της εικόνας."));
    }
}

bool frmDrawing::SaveDrawing()
{
    try {
        if (m_pictureFileName.isEmpty())
            return SaveDrawingAs();
        SavePicture(picPhoto->Picture(), m_pictureFileName);
        m_keptPicture = picPhoto->Picture();
        Recovery->saved();
        return true;
    } catch (const std::exception &) {
        critical(QStringLiteral("Υπάρχει πρόβλημα στην αποθήκευση της εικόνας."));
    }
    return false;
}

bool frmDrawing::SaveDrawingAs()
{
    try {
        cmD.CancelError = true;
        cmD.DefaultExt = QStringLiteral(".bmp");
        cmD.Flags = SaveFlags;
        cmD.DialogTitle = QStringLiteral("Αποθήκευση εικόνας");
        cmD.ShowSave(this);
        // The name stays even when the writing fails.
        m_pictureFileName = cmD.FileName;
        SavePicture(picPhoto->Picture(), m_pictureFileName);
        m_keptPicture = picPhoto->Picture();
        Recovery->saved();
        return true;
    } catch (const platform::RuntimeError &e) {
        if (!isCancel(e))
            critical(QStringLiteral("Υπάρχει πρόβλημα στην αποθήκευση της εικόνας."));
    } catch (const std::exception &) {
        critical(QStringLiteral("Υπάρχει πρόβλημα στην αποθήκευση της εικόνας."));
    }
    return false;
}

void frmDrawing::CopyDrawing()
{
    // An empty canvas has nothing to give: the clipboard keeps what it holds.
    if (!picPhoto->hasPicture())
        return;
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setImage(picPhoto->Picture());
}

void frmDrawing::PasteDrawing()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (!hasPictureFormat(clipboard->mimeData()))
        return;
    // Only a bitmap that decodes replaces the picture, and it is read before the
    // question, so that nothing is asked for data that would change nothing.
    const QImage pasted = drawing::pictureFromMimeData(clipboard->mimeData(), QStringLiteral("Πρόχειρο"));
    if (pasted.isNull())
        return;
    if (!QuerySave())
        return;
    picPhoto->setPicture(pasted);
    m_initialPicture = picPhoto->Picture();
    SetScrollBars();
}

void frmDrawing::PrintDrawing()
{
    try {
        cmD.CancelError = true;
        cmD.Flags = PrintFlags;
        cmD.DialogTitle = QStringLiteral("Εκτύπωση της εικόνας");
        cmD.ShowPrinter(this);
        if (cmD.PrinterDefault)
            drawing::PrintPictureFit(cmD.Printer(), picPhoto->Picture());
    } catch (const platform::RuntimeError &e) {
        if (!isCancel(e))
            critical(QString::number(e.number()) + QStringLiteral("\r\n")
                + QStringLiteral("Υπάρχει πρόβλημα με τον εκτυπωτή σας."));
    } catch (const std::exception &) {
        critical(QStringLiteral("0\r\n") + QStringLiteral("Υπάρχει πρόβλημα με τον εκτυπωτή σας."));
    }
}

void frmDrawing::UndoCommand()
{
    // One level, both ways: the picture and the undo picture change places.
    const QImage present = picPhoto->Picture();
    picPhoto->setPicture(m_undoPicture);
    m_undoPicture = present;
}

void frmDrawing::PictureCommand()
{
    picPhoto->setPicture(m_initialPicture);
}

void frmDrawing::ExitCommand()
{
    if (!QuerySave())
        return;
    // The pupil has just answered; the closing asks nothing more.
    m_keptPicture = picPhoto->Picture();
    Unload();
}

bool frmDrawing::PictureChangedSinceKept() const
{
    const QImage present = picPhoto->Picture();
    return present.cacheKey() != m_keptPicture.cacheKey() && present != m_keptPicture;
}

void frmDrawing::ShowPaletteDropdown(const QString &key)
{
    const QRect bar(tlbGeneral->mapToGlobal(QPoint(0, 0)), tlbGeneral->size());
    QToolButton *button = tlbGeneral->Buttons(key);
    QWidget *palette = createPalette(key);
    if (!palette || !button)
        return;
    auto *paletteWindow = qobject_cast<PaletteWindow *>(palette);

    // Hung from the toolbar's lower edge under the button.
    const int left = bar.left() * platform::TwipsPerPixelX + platform::twipsFromPixelsX(button->x());
    const int top = (bar.bottom() + 1) * platform::TwipsPerPixelY;
    auto moveTo = [&](int leftTwips) {
        if (paletteWindow)
            paletteWindow->Move(leftTwips, top);
        else
            palette->move(platform::pixelsFromTwipsX(leftTwips), platform::pixelsFromTwipsY(top));
    };
    moveTo(left);

    if (key == u"BorderWidth") {
        vFormBorderWidth->setSelectedDrawWidth(picPhoto->DrawWidth);
    } else if (key == u"BorderColor") {
        vFormBorderColor->setSelectedColor(picPhoto->ForeColor);
        vFormBorderColor->setCaption(QStringLiteral("Περίγραμμα-Γραμματοσειρά"));
    } else if (key == u"FillColor") {
        vFormFillColor->setSelectedColor(picPhoto->FillColor);
        vFormFillColor->setCaption(QStringLiteral("Γέμισμα"));
    } else if (key == u"FillStyle") {
        vFormFillStyle->setSelectedFillStyle(picPhoto->FillStyle);
    }

    if (paletteWindow) {
        paletteWindow->Show();
    } else {
        palette->show();
        palette->raise();
        palette->activateWindow();
    }

    // Only the right screen edge is kept, with the palette's frame, which the window
    // system gives it once it shows.
    const int paletteWidth = platform::twipsFromPixelsX(palette->frameGeometry().width());
    const QScreen *screen = QGuiApplication::primaryScreen();
    const int screenWidth = screen ? platform::twipsFromPixelsX(screen->geometry().width()) : 0;
    if (screen && left + paletteWidth > screenWidth)
        moveTo(screenWidth - paletteWidth);
}

namespace {

// A new palette object for each showing: the one it replaces goes.
template<typename Palette> Palette *renew(QPointer<Palette> &field, Palette *palette)
{
    if (field)
        field->deleteLater();
    field = palette;
    return palette;
}

} // namespace

QWidget *frmDrawing::createPalette(const QString &key)
{
    if (key == u"BorderWidth") {
        auto *palette = renew(vFormBorderWidth, new frmBorderWidth(this));
        connect(palette, &frmBorderWidth::NewBorderWidth, this,
            [this](qint16 width) { platform::guarded([&] { vFormBorderWidth_NewBorderWidth(width); }); });
        return palette;
    }
    if (key == u"BorderColor") {
        auto *palette = renew(vFormBorderColor, new frmColors(this));
        connect(palette, &frmColors::NewColor, this,
            [this](quint32 color) { platform::guarded([&] { vFormBorderColor_NewColor(color); }); });
        return palette;
    }
    if (key == u"FillColor") {
        auto *palette = renew(vFormFillColor, new frmColors(this));
        connect(palette, &frmColors::NewColor, this,
            [this](quint32 color) { platform::guarded([&] { vFormFillColor_NewColor(color); }); });
        return palette;
    }
    if (key == u"FillStyle") {
        auto *palette = renew(vFormFillStyle, new frmFillStyle(this));
        connect(palette, &frmFillStyle::NewFillStyle, this,
            [this](qint32 style) { platform::guarded([&] { vFormFillStyle_NewFillStyle(style); }); });
        return palette;
    }
    if (key == u"Shape") {
        vFormPastePicture = new frmPastePicture(this);
        connect(vFormPastePicture, &frmPastePicture::NewBitmap, this,
            [this](const QImage &picture) { vFormPastePicture_NewBitmap(picture); });
        return vFormPastePicture;
    }
    return nullptr;
}
