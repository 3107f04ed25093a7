#include "desktop/ServerGrab.h"

#include <X11/Xlib.h>

ServerGrab::ServerGrab(_XDisplay *display) : m_display(display) {
    XGrabServer(m_display);
    // With the answer the grab stands, and every event from before it has arrived.
    XSync(m_display, False);
}

ServerGrab::~ServerGrab() {
    XUngrabServer(m_display);
    XSync(m_display, False);
}
