#include "desktop/WindowParent.h"

#include <X11/Xlib.h>

WindowParent queryParent(_XDisplay *display, unsigned long window) {
    WindowParent result;
    Window *children = nullptr;
    unsigned int count = 0;
    result.isKnown =
        XQueryTree(display, window, &result.root, &result.parent, &children, &count) != 0;
    if (children)
        XFree(children);
    return result;
}
