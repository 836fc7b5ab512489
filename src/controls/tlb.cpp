#include "tlb.h"

#include <errorpolicy.h>
#include <programbitmaps.h>
#include <twips.h>

#include <QPainter>
#include <QResizeEvent>

namespace {

struct Key
{
    const char16_t *key;
    const char16_t *toolTip;
    bool halfButtonAfter;
};

const Key kKeys[Tlb::ButtonCount] = {
    {u"exit", u"Έξοδος", false},
    {u"first", u"Αρχή", false},
    {u"prev", u"Προηγούμενο", true},
    {u"Ploigisi", u"Πλοήγηση", true},
    {u"Network", u"Τηλεδιάσκεψη", false},
    {u"e-mail", u"Ηλεκτρονικό ταχυδρομείο", true},
    {u"Sound", u"Ήχος", true},
    {u"Search", u"Ευρετήριο", false},
    {u"Notes", u"Σημειωματάριο", false},
    {u"drawing", u"Χώρος σχεδίασης", true},
    {u"SearchResources", u"Αναζήτηση στη βάση δεδομένων", false},
};

// Layout of the bar, in twips.
constexpr int FirstLeft = 120;
constexpr int ButtonTop = 60;
constexpr int Gap = 60;
constexpr int HeightAboveButtons = 90;

// The search button's place in the bar's design: the right end of a bar as wide as the
// shell, out of the way of the others, which the bar lays out from the left.
constexpr int SearchButtonLeft = 11160;

// The bar's colour, RGB(127, 0, 0).
const QColor BarColor(127, 0, 0);

} // namespace

Tlb::Tlb(QWidget *parent)
    : QWidget(parent)
{
    for (int i = 0; i < ButtonCount; ++i) {
        const QString key = QStringView(kKeys[i].key).toString();
        auto *button = new Btn(this);
        button->setTag(key);
        button->setPicture(resources::LoadResPicture(QStringLiteral("tlb_") + key));
        button->setDownPicture(
            resources::LoadResPicture(QStringLiteral("tlb_") + key + QStringLiteral("_down")));
        button->setToolTip(QStringView(kKeys[i].toolTip).toString());
        button->setAccessibleName(button->toolTip());
        connect(button, &Btn::Click, this, [this, button] { emit ButtonClick(button->Tag()); });
        Btn1[size_t(i)] = button;
    }
    Btn1[ButtonCount - 1]->Move(SearchButtonLeft, ButtonTop);
    PaintBar();
}

Tlb::~Tlb() = default;

void Tlb::setSearchVisible(bool visible)
{
    Btn1[ButtonCount - 1]->setVisible(visible);
}

QStringList Tlb::keys()
{
    QStringList list;
    for (const Key &k : kKeys)
        list.append(QStringView(k.key).toString());
    return list;
}

QString Tlb::toolTipFor(const QString &key)
{
    for (const Key &k : kKeys) {
        if (key == QStringView(k.key))
            return QStringView(k.toolTip).toString();
    }
    return {};
}

int Tlb::Width() const
{
    return platform::twipsFromPixelsX(width());
}

int Tlb::Height() const
{
    return platform::twipsFromPixelsY(height());
}

QSize Tlb::sizeHint() const
{
    const Btn *last = Btn1[ButtonCount - 1];
    const int widthTwips = last->Left() + last->Width() + FirstLeft;
    return QSize(platform::pixelsFromTwipsX(widthTwips),
        platform::pixelsFromTwipsY(Btn1[0]->Height() + HeightAboveButtons));
}

void Tlb::PaintBar()
{
    ButtonWidth = Btn1[0]->Width();
    ButtonHeight = Btn1[0]->Height();
    // The bar keeps its own height, whatever the container asks for.
    const int heightPixels = platform::pixelsFromTwipsY(ButtonHeight + HeightAboveButtons);
    if (minimumHeight() != heightPixels || maximumHeight() != heightPixels)
        setFixedHeight(heightPixels);
    if (height() != heightPixels)
        resize(width(), heightPixels);
    layOutButtons();
}

void Tlb::layOutButtons()
{
    int x = FirstLeft;
    for (int i = 0; i < ButtonCount - 1; ++i) {
        Btn *button = Btn1[size_t(i)];
        button->Move(x, ButtonTop);
        x = button->Left() + button->Width() + Gap;
        if (kKeys[i].halfButtonAfter)
            x += ButtonWidth / 2;
    }
}

void Tlb::drawEdges(QPainter &painter)
{
    // An etched line is two pixels: shadow on the outside, light inside on the left and
    // top; light on the outside, shadow inside on the right.
    const QColor shadow = palette().color(QPalette::Dark);
    const QColor light = palette().color(QPalette::Light);
    int left = 1;
    int top = 0;
    const int right = platform::pixelsFromTwipsX(Width());
    const int bottom = platform::pixelsFromTwipsY(Height());

    painter.fillRect(QRect(left, top, 1, bottom - top), shadow);
    painter.fillRect(QRect(left, top, right - left, 1), shadow);
    painter.fillRect(QRect(left + 1, top + 1, 1, bottom - top - 1), light);
    painter.fillRect(QRect(left + 1, top + 1, right - left - 1, 1), light);
    left += 2;
    top += 2;

    // When the buttons run past the bar it has no right edge.
    const Btn *lastLaidOut = Btn1[ButtonCount - 2];
    if (lastLaidOut->Left() + lastLaidOut->Width() < Width()) {
        painter.fillRect(QRect(right - 1, top, 1, bottom - top), light);
        painter.fillRect(QRect(right - 2, top, 1, bottom - top), shadow);
    }
}

void Tlb::paintEvent(QPaintEvent *)
{
    platform::guarded([&] {
        PaintBar();
        QPainter painter(this);
        painter.fillRect(rect(), BarColor);
        drawEdges(painter);
    });
}

void Tlb::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    platform::resumeNext([&] { PaintBar(); });
}
