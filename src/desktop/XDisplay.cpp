#include "desktop/XDisplay.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

void XDisplayCloser::operator()(_XDisplay *display) const {
    XCloseDisplay(display);
}

XDisplayPointer openDisplay() {
    return XDisplayPointer(XOpenDisplay(nullptr));
}

bool drainEvents(_XDisplay *display) {
    bool hasChanged = false;
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type != MappingNotify)
            continue;
        XRefreshKeyboardMapping(&event.xmapping);
        hasChanged = true;
    }
    return hasChanged;
}
