#pragma once

#include <twips.h>

#include <QWidget>

// A control at its designed place and size within its parent, given in twips.
inline void placeTwips(QWidget *widget, int left, int top, int width, int height)
{
    widget->setGeometry(platform::pixelsFromTwipsX(left), platform::pixelsFromTwipsY(top),
        platform::pixelsFromTwipsX(width), platform::pixelsFromTwipsY(height));
}
