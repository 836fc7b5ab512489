#include "programbitmaps.h"

#include <runtimeerror.h>

#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QScreen>
#include <QSvgRenderer>

#include <cmath>

// The compiled resource file has to be pulled in by hand from a static library, and the
// macro only works at global scope.
static void initProgramPictures()
{
    Q_INIT_RESOURCE(programpictures);
}

namespace resources {
namespace {

struct Entry
{
    const char16_t *name;
    int width;
    int height;
    int hotX = 0;
    int hotY = 0;
};

constexpr int TileWidth = 50;
constexpr int TileHeight = 47;
constexpr int ToolbarSize = 40;
constexpr int GoSize = 64;
constexpr int PainterIcon = 20;

// Every picture with its design size in logical pixels. The file of each is
// ":/pictures/<name>.svg", listed by that alias in programpictures.qrc.
const Entry kEntries[] = {
    {u"BGR_1", 800, 600},
    {u"PAPIROS", 620, 354},
    {u"HAND", 32, 32, 12, 1},
    // The line-width palette's ten lines.
    {u"LINEWIDTHS", 70, 170},

    {u"GO", GoSize, GoSize},
    {u"GO_DOWN", GoSize, GoSize},
    {u"EXIT", GoSize, GoSize},
    {u"EXIT_DOWN", GoSize, GoSize},

    {u"tlb_exit", ToolbarSize, ToolbarSize},
    {u"tlb_exit_down", ToolbarSize, ToolbarSize},
    {u"tlb_first", ToolbarSize, ToolbarSize},
    {u"tlb_first_down", ToolbarSize, ToolbarSize},
    {u"tlb_prev", ToolbarSize, ToolbarSize},
    {u"tlb_prev_down", ToolbarSize, ToolbarSize},
    {u"tlb_Ploigisi", ToolbarSize, ToolbarSize},
    {u"tlb_Ploigisi_down", ToolbarSize, ToolbarSize},
    {u"tlb_Network", ToolbarSize, ToolbarSize},
    {u"tlb_Network_down", ToolbarSize, ToolbarSize},
    {u"tlb_e-mail", ToolbarSize, ToolbarSize},
    {u"tlb_e-mail_down", ToolbarSize, ToolbarSize},
    {u"tlb_Sound", ToolbarSize, ToolbarSize},
    {u"tlb_Sound_down", ToolbarSize, ToolbarSize},
    {u"tlb_Search", ToolbarSize, ToolbarSize},
    {u"tlb_Search_down", ToolbarSize, ToolbarSize},
    {u"tlb_Notes", ToolbarSize, ToolbarSize},
    {u"tlb_Notes_down", ToolbarSize, ToolbarSize},
    {u"tlb_drawing", ToolbarSize, ToolbarSize},
    {u"tlb_drawing_down", ToolbarSize, ToolbarSize},
    {u"tlb_SearchResources", ToolbarSize, ToolbarSize},
    {u"tlb_SearchResources_down", ToolbarSize, ToolbarSize},

    {u"PICTURE", ToolbarSize, ToolbarSize},
    {u"PICTURE_DOWN", ToolbarSize, ToolbarSize},
    {u"SOUND", ToolbarSize, ToolbarSize},
    {u"SOUND_DOWN", ToolbarSize, ToolbarSize},
    {u"VIDEO", ToolbarSize, ToolbarSize},
    {u"VIDEO_DOWN", ToolbarSize, ToolbarSize},

    {u"AGEIA", TileWidth, TileHeight},
    {u"AGEIA1", TileWidth, TileHeight},
    {u"AGEIA2", TileWidth, TileHeight},
    {u"KEIMENO", TileWidth, TileHeight},
    {u"KEIMENO1", TileWidth, TileHeight},
    {u"KEIMENO2", TileWidth, TileHeight},
    {u"XARTIS", TileWidth, TileHeight},
    {u"XARTIS1", TileWidth, TileHeight},
    {u"XARTIS2", TileWidth, TileHeight},
    {u"AGALMA", TileWidth, TileHeight},
    {u"AGALMA1", TileWidth, TileHeight},
    {u"AGALMA2", TileWidth, TileHeight},
    {u"EPIGRAFI", TileWidth, TileHeight},
    {u"EPIGRAFI1", TileWidth, TileHeight},
    {u"EPIGRAFI2", TileWidth, TileHeight},
    {u"NAOS", TileWidth, TileHeight},
    {u"NAOS1", TileWidth, TileHeight},
    {u"NAOS2", TileWidth, TileHeight},
    {u"NOMISMA", TileWidth, TileHeight},
    {u"NOMISMA1", TileWidth, TileHeight},
    {u"NOMISMA2", TileWidth, TileHeight},

    {u"Th", 16, 16},
    {u"Sc", 16, 16},
    {u"Ac", 16, 16},

    {u"epigrafi", 32, 32},
    {u"keimeno", 32, 32},
    {u"agio", 32, 32},
    {u"xartis", 32, 32},
    // The painter: tools, commands, the stamps and its cursor.
    {u"dt_Arrow", PainterIcon, PainterIcon},
    {u"dt_Pen", PainterIcon, PainterIcon},
    {u"dt_Line", PainterIcon, PainterIcon},
    {u"dt_Ellipse", PainterIcon, PainterIcon},
    {u"dt_Rectangle", PainterIcon, PainterIcon},
    {u"dt_FilledEllipse", PainterIcon, PainterIcon},
    {u"dt_FilledRectangle", PainterIcon, PainterIcon},
    {u"dt_FloodFill", PainterIcon, PainterIcon},
    {u"dt_Text", PainterIcon, PainterIcon},
    {u"dg_New", PainterIcon, PainterIcon},
    {u"dg_Open", PainterIcon, PainterIcon},
    {u"dg_Save", PainterIcon, PainterIcon},
    {u"dg_SaveAs", PainterIcon, PainterIcon},
    {u"dg_Copy", PainterIcon, PainterIcon},
    {u"dg_Paste", PainterIcon, PainterIcon},
    {u"dg_Print", PainterIcon, PainterIcon},
    {u"dg_Undo", PainterIcon, PainterIcon},
    {u"dg_Picture", PainterIcon, PainterIcon},
    {u"dg_Exit", PainterIcon, PainterIcon},
    {u"dg_Shape", PainterIcon, PainterIcon},
    {u"dg_BorderWidth", PainterIcon, PainterIcon},
    {u"dg_BorderColor", PainterIcon, PainterIcon},
    {u"dg_FillColor", PainterIcon, PainterIcon},
    {u"dg_FillStyle", PainterIcon, PainterIcon},
    {u"STAMP_TRIANGLE", 22, 24},
    {u"STAMP_STAR", 22, 24},
    {u"STAMP_ROMBOS", 22, 24},
    {u"STAMP_PERIERGO", 22, 24},
    {u"DRAWCURSOR", 32, 32, 16, 16},

    // The notepad's toolbar.
    {u"nt_New", 20, 20},
    {u"nt_Open", 20, 20},
    {u"nt_Save", 20, 20},
    {u"nt_SaveAs", 20, 20},
    {u"nt_Exit", 20, 20},
    {u"nt_Word", 20, 20},
    {u"nt_Print", 20, 20},
    {u"nt_Cut", 20, 20},
    {u"nt_Copy", 20, 20},
    {u"nt_Paste", 20, 20},
    {u"nt_Delete", 20, 20},
    {u"nt_Find", 20, 20},
    {u"nt_Undo", 20, 20},
    {u"nt_Bold", 20, 20},
    {u"nt_Italics", 20, 20},
    {u"nt_Underline", 20, 20},
    {u"nt_Left", 20, 20},
    {u"nt_Center", 20, 20},
    {u"nt_Right", 20, 20},
    {u"nt_Bullets", 20, 20},
    {u"nt_Fonts", 20, 20},
    {u"nt_FontsColor", 20, 20},
};

const Entry *find(const QString &name)
{
    for (const Entry &e : kEntries) {
        if (name == QStringView(e.name))
            return &e;
    }
    return nullptr;
}

const Entry &require(const QString &name)
{
    const Entry *e = find(name);
    if (!e)
        throw platform::RuntimeError(
            ResourceNotFound, QStringLiteral("Δεν βρέθηκε ο πόρος «%1» στο αρχείο πόρων").arg(name));
    return *e;
}

QString filePath(const Entry &e)
{
    return QStringLiteral(":/pictures/") + QStringView(e.name).toString() + QStringLiteral(".svg");
}

struct CacheKey
{
    const Entry *entry;
    qint64 ratioMilli;
    bool operator==(const CacheKey &) const = default;
};

size_t qHash(const CacheKey &k, size_t seed = 0) noexcept
{
    return qHashMulti(seed, quintptr(k.entry), k.ratioMilli);
}

// Pictures are asked for again and again (each tile, each return to the start screen);
// rendering is the expensive part, so each name and ratio is rendered once.
QHash<CacheKey, QPixmap> &cache()
{
    // Made at the first picture asked for, which is when the pictures' files must be there.
    static struct Cache
    {
        Cache() { initProgramPictures(); }
        QHash<CacheKey, QPixmap> pixmaps;
    } c;
    return c.pixmaps;
}

// Renders at the pixel size that the ratio asks for, so nothing is ever scaled up from
// a smaller bitmap.
QImage render(const Entry &e, QSize pixelSize)
{
    cache(); // the pictures' resources are registered with it

    QImage image(pixelSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(filePath(e));
    if (!renderer.isValid())
        throw platform::RuntimeError(platform::errors::InvalidPicture,
            QStringLiteral("Η εικόνα «%1» δεν είναι έγκυρη").arg(QStringView(e.name).toString()));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(pixelSize)));
    return image;
}

QSize pixelSizeFor(const Entry &e, qreal ratio)
{
    return QSize(int(std::ceil(e.width * ratio - 0.001)), int(std::ceil(e.height * ratio - 0.001)));
}

class PictureIconEngine final : public QIconEngine
{
public:
    explicit PictureIconEngine(const Entry &e)
        : m_entry(e)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawPixmap(rect, scaledPixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state, ratio));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1.0);
    }

    // The size asked for is already in device pixels.
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State, qreal scale) override
    {
        QPixmap pix = QPixmap::fromImage(render(m_entry, size));
        pix.setDevicePixelRatio(scale);
        if (mode == QIcon::Disabled) {
            QImage grey = pix.toImage().convertToFormat(QImage::Format_ARGB32);
            for (int y = 0; y < grey.height(); ++y) {
                auto *line = reinterpret_cast<QRgb *>(grey.scanLine(y));
                for (int x = 0; x < grey.width(); ++x) {
                    const int g = (qGray(line[x]) + 2 * 200) / 3;
                    line[x] = qRgba(g, g, g, qAlpha(line[x]));
                }
            }
            pix = QPixmap::fromImage(grey);
            pix.setDevicePixelRatio(scale);
        }
        return pix;
    }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        return QSize(m_entry.width, m_entry.height).scaled(size, Qt::KeepAspectRatio);
    }

    QIconEngine *clone() const override { return new PictureIconEngine(m_entry); }
    QString key() const override { return QStringLiteral("tremidia-picture"); }

private:
    const Entry &m_entry;
};

} // namespace

qreal screenPixelRatio()
{
    if (!qGuiApp)
        return 1.0;
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        return screen->devicePixelRatio();
    return qGuiApp->devicePixelRatio();
}

QPixmap LoadResPicture(const QString &name)
{
    return LoadResPicture(name, screenPixelRatio());
}

QPixmap LoadResPicture(const QString &name, qreal devicePixelRatio)
{
    const Entry &e = require(name);
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    const CacheKey key {&e, qRound64(ratio * 1000)};
    auto &c = cache();
    if (auto it = c.constFind(key); it != c.constEnd())
        return *it;
    QPixmap pix = QPixmap::fromImage(render(e, pixelSizeFor(e, ratio)));
    pix.setDevicePixelRatio(ratio);
    c.insert(key, pix);
    return pix;
}

QSize designSize(const QString &name)
{
    const Entry *e = find(name);
    return e ? QSize(e->width, e->height) : QSize();
}

bool exists(const QString &name)
{
    return find(name) != nullptr;
}

QStringList names()
{
    QStringList list;
    list.reserve(int(std::size(kEntries)));
    for (const Entry &e : kEntries)
        list.append(QStringView(e.name).toString());
    return list;
}

QIcon LoadResIcon(const QString &name)
{
    return QIcon(new PictureIconEngine(require(name)));
}

QCursor LoadResCursor(const QString &name)
{
    const Entry &e = require(name);
    return QCursor(LoadResPicture(name), e.hotX, e.hotY);
}

QPoint hotSpot(const QString &name)
{
    const Entry *e = find(name);
    return e ? QPoint(e->hotX, e->hotY) : QPoint();
}

} // namespace resources
