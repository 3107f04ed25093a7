#include "desktop/XDisplay.h"

#include "core/ProcessEnd.h"

#include <QDebug>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

/// Xlib would end the process after it in any case.
int onServerLost(Display *) {
    qCritical() << "The connection to the X server is lost";
    endProcess(1);
}

} // namespace

void XDisplayCloser::operator()(_XDisplay *display) const {
    XCloseDisplay(display);
}

void prepareXlibForThreads() {
    XInitThreads();
}

XDisplayPointer openDisplay() {
    return XDisplayPointer(XOpenDisplay(nullptr));
}

void endWithServer() {
    XSetIOErrorHandler(onServerLost);
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
