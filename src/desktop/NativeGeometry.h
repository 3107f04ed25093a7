#pragma once

#include <QRect>

class QScreen;

// Between pixels of the X server and the coordinates that Qt places windows in. Main thread.

/// From pixels of the X server, for whatever lies on the screen that holds the rectangle's centre.
QRect fromNative(const QRect &rect);

/// What panels leave of a screen. Qt tells the whole of it as soon as there are several.
QRect availableGeometry(const QScreen *screen);
