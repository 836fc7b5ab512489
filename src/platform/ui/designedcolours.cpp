#include "designedcolours.h"

#include <QWidget>

namespace platform {

QPalette designedPalette()
{
    const QColor black(0, 0, 0);
    const QColor white(255, 255, 255);
    const QColor face(240, 240, 240);
    const QColor greyText(109, 109, 109); // still 4.5:1 on the face

    QPalette p;
    p.setColor(QPalette::WindowText, black);
    p.setColor(QPalette::Window, face);
    p.setColor(QPalette::Base, white);
    p.setColor(QPalette::AlternateBase, QColor(247, 247, 247));
    p.setColor(QPalette::Text, black);
    p.setColor(QPalette::Button, face);
    p.setColor(QPalette::ButtonText, black);
    p.setColor(QPalette::BrightText, white);
    p.setColor(QPalette::Light, white);
    p.setColor(QPalette::Midlight, QColor(227, 227, 227));
    p.setColor(QPalette::Mid, QColor(160, 160, 160));
    p.setColor(QPalette::Dark, QColor(160, 160, 160));
    p.setColor(QPalette::Shadow, QColor(105, 105, 105));
    p.setColor(QPalette::Highlight, QColor(0, 120, 215));
    p.setColor(QPalette::HighlightedText, white);
    p.setColor(QPalette::ToolTipBase, QColor(255, 255, 225));
    p.setColor(QPalette::ToolTipText, black);
    p.setColor(QPalette::Link, QColor(0, 102, 204));
    p.setColor(QPalette::LinkVisited, QColor(128, 0, 128));
    p.setColor(QPalette::PlaceholderText, greyText);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, greyText);
    p.setColor(QPalette::Disabled, QPalette::Base, face);
    p.setColor(QPalette::Disabled, QPalette::Highlight, QColor(160, 160, 160));
    return p;
}

void useDesignedColours(QWidget *window)
{
    window->setPalette(designedPalette());
}

} // namespace platform
