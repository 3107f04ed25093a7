#include "desktop/XDisplay.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

void XDisplayCloser::operator()(_XDisplay *display) const {
    XCloseDisplay(display);
}

XDisplayPointer openDisplay() {
    return XDisplayPointer(XOpenDisplay(nullptr));
}

void drainEvents(_XDisplay *display) {
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == MappingNotify)
            XRefreshKeyboardMapping(&event.xmapping);
    }
}
