#include "textzoom.h"

#include <QAbstractScrollArea>
#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QScreen>
#include <QSettings>
#include <QTextDocument>
#include <QTextEdit>
#include <QWheelEvent>

#include <algorithm>
#include <map>

namespace {

const QString SizeKey = QStringLiteral("Reading/TextSize");

enum class ZoomKey { None, Enlarge, Reduce, Reset };

ZoomKey zoomKeyOf(const QKeyEvent *key)
{
    const Qt::KeyboardModifiers mods = key->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    if (mods != Qt::ControlModifier)
        return ZoomKey::None;
    switch (key->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: // the plus of most keyboards, without Shift
        return ZoomKey::Enlarge;
    case Qt::Key_Minus:
        return ZoomKey::Reduce;
    case Qt::Key_0:
        return ZoomKey::Reset;
    default:
        return ZoomKey::None;
    }
}

int screenDpi()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? qRound(screen->logicalDotsPerInchY()) : 96;
}

} // namespace

TextZoom::TextZoom()
    : m_percent(savedPercent())
{
}

TextZoom::~TextZoom() = default;

QString TextZoom::settingsFile()
{
    QString home = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (home.isEmpty())
        home = QDir::homePath() + QStringLiteral("/.config");
    return QDir(home).filePath(QStringLiteral("tremidia/reading.conf"));
}

int TextZoom::savedPercent()
{
    const QSettings settings(settingsFile(), QSettings::IniFormat);
    bool ok = false;
    const int saved = settings.value(SizeKey, Smallest).toInt(&ok);
    return ok ? std::clamp(saved, Smallest, Largest) : Smallest;
}

void TextZoom::setPercent(int percent)
{
    percent = std::clamp(percent, Smallest, Largest);
    if (percent == m_percent)
        return;
    m_percent = percent;
    // A home that cannot be written keeps the size for this session only.
    QSettings settings(settingsFile(), QSettings::IniFormat);
    settings.setValue(SizeKey, percent);
    settings.sync();
    emit percentChanged(percent);
}

void TextZoom::follow(QObject *context, const QList<QWidget *> &watched, std::function<void(int)> apply)
{
    for (QWidget *w : watched) {
        w->installEventFilter(this);
        if (auto *area = qobject_cast<QAbstractScrollArea *>(w))
            area->viewport()->installEventFilter(this);
    }
    if (!apply)
        return;
    connect(this, &TextZoom::percentChanged, context, apply);
    apply(m_percent);
}

void TextZoom::zoomTextEdit(QTextEdit *edit, int percent)
{
    QTextDocument *document = edit->document();
    QAbstractTextDocumentLayout *layout = document->documentLayout();
    if (percent == Smallest) {
        layout->setPaintDevice(nullptr);
    } else {
        // The layout measures fonts and scales lengths by the resolution of its device;
        // an image with a higher resolution is such a device and never painted on. A
        // cache for the whole process: one blank image per size, the same for every session.
        static std::map<int, QImage> devices;
        QImage &device = devices[percent];
        if (device.isNull()) {
            device = QImage(1, 1, QImage::Format_RGB32);
            const double dotsPerMetre = screenDpi() * percent / 100.0 / 0.0254;
            device.setDotsPerMeterX(qRound(dotsPerMetre));
            device.setDotsPerMeterY(qRound(dotsPerMetre));
        }
        layout->setPaintDevice(&device);
    }
    document->markContentsDirty(0, document->characterCount());
    edit->viewport()->update();
}

bool TextZoom::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride: {
        // Ahead of any shortcut of the window (the notepad's own keys among them).
        if (zoomKeyOf(static_cast<QKeyEvent *>(event)) != ZoomKey::None) {
            event->accept();
            return true;
        }
        break;
    }
    case QEvent::KeyPress: {
        switch (zoomKeyOf(static_cast<QKeyEvent *>(event))) {
        case ZoomKey::Enlarge:
            enlarge();
            return true;
        case ZoomKey::Reduce:
            reduce();
            return true;
        case ZoomKey::Reset:
            reset();
            return true;
        case ZoomKey::None:
            break;
        }
        break;
    }
    case QEvent::Wheel: {
        auto *wheel = static_cast<QWheelEvent *>(event);
        if (wheel->modifiers() & Qt::ControlModifier) {
            const int delta = wheel->angleDelta().y();
            if (delta > 0)
                enlarge();
            else if (delta < 0)
                reduce();
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
