#include "desktop/NativeGeometry.h"

#include "desktop/XDisplay.h"
#include "desktop/XErrorScope.h"

#include <QGuiApplication>
#include <QScreen>

#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace {

QRect nativeGeometry(const QScreen *screen) {
    // Qt scales a screen's size about its corner, which stays where X has it.
    return {screen->geometry().topLeft(), screen->geometry().size() * screen->devicePixelRatio()};
}

const QScreen *screenAt(const QPoint &nativePoint) {
    const auto screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        if (nativeGeometry(screen).contains(nativePoint))
            return screen;
    }
    return QGuiApplication::primaryScreen();
}

QRect fromNativeOn(const QScreen *screen, const QRect &rect) {
    const QPoint origin = screen->geometry().topLeft();
    const qreal factor = screen->devicePixelRatio();
    return {origin + (rect.topLeft() - origin) / factor, rect.size() / factor};
}

/// What the window manager leaves to windows beside its panels, over all monitors; an invalid
/// rectangle if it does not tell.
QRect readWorkArea() {
    const XDisplayPointer connection = openDisplay();
    if (!connection)
        return {};
    Display *display = connection.get();
    const XErrorScope errors(display);
    const Atom name = XInternAtom(display, "_NET_WORKAREA", True);
    if (!name)
        return {};
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long bytesLeft = 0;
    unsigned char *value = nullptr;
    // The first of the desktops stands for all: panels are the same on each.
    constexpr int numbersOfOneDesktop = 4;
    XGetWindowProperty(display, DefaultRootWindow(display), name, 0, numbersOfOneDesktop, False,
                       XA_CARDINAL, &type, &format, &count, &bytesLeft, &value);
    QRect area;
    if (value && format == 32 && count == numbersOfOneDesktop) {
        const auto *numbers = reinterpret_cast<const unsigned long *>(value);
        area = QRect(static_cast<int>(numbers[0]), static_cast<int>(numbers[1]),
                     static_cast<int>(numbers[2]), static_cast<int>(numbers[3]));
    }
    if (value)
        XFree(value);
    return area;
}

} // namespace

QRect fromNative(const QRect &rect) {
    const QScreen *screen = screenAt(rect.center());
    return screen ? fromNativeOn(screen, rect) : rect;
}

QRect availableGeometry(const QScreen *screen) {
    if (QGuiApplication::screens().size() < 2)
        return screen->availableGeometry();
    const QRect native = readWorkArea() & nativeGeometry(screen);
    return native.isEmpty() ? screen->availableGeometry() : fromNativeOn(screen, native);
}
