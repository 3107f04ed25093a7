#include "desktop/FixedWindow.h"

#include "desktop/XDisplay.h"
#include "desktop/XErrorScope.h"

#include <QDebug>
#include <QGuiApplication>
#include <QPlatformSurfaceEvent>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <limits>

namespace {

struct XFreer {
    void operator()(void *memory) const { XFree(memory); }
};

/// The whole of one property of a window.
struct XProperty {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    std::unique_ptr<unsigned char, XFreer> value;
};

Atom existingAtom(Display *display, const char *name) {
    return XInternAtom(display, name, True);
}

XProperty readProperty(Display *display, Window window, Atom name) {
    XProperty property;
    if (!name)
        return property;
    unsigned long bytesLeft = 0;
    unsigned char *value = nullptr;
    XGetWindowProperty(display, window, name, 0, std::numeric_limits<long>::max() / 4, False,
                       AnyPropertyType, &property.type, &property.format, &property.count,
                       &bytesLeft, &value);
    property.value.reset(value);
    return property;
}

QString windowName(Display *display, Window window) {
    const XProperty name = readProperty(display, window, existingAtom(display, "_NET_WM_NAME"));
    if (!name.value)
        return QStringLiteral("<unknown>");
    return QString::fromUtf8(reinterpret_cast<const char *>(name.value.get()));
}

QString elementText(Display *display, const XProperty &property, unsigned long index) {
    if (property.format == 32) {
        const unsigned long element =
            reinterpret_cast<const unsigned long *>(property.value.get())[index];
        if (property.type != XA_ATOM)
            return QString::number(element);
        const std::unique_ptr<char, XFreer> name(XGetAtomName(display, element));
        return name ? QString::fromUtf8(name.get()) : QStringLiteral("<unknown>");
    }
    if (property.format == 16)
        return QString::number(
            reinterpret_cast<const unsigned short *>(property.value.get())[index]);
    return QString::number(property.value.get()[index]);
}

void LogXProperty(Display *display, unsigned long window, const char *name) {
    const XProperty property = readProperty(display, window, existingAtom(display, name));
    qInfo().noquote().nospace() << name << ":";
    if (!property.value)
        return;
    for (unsigned long i = 0; i < property.count; ++i)
        qInfo().noquote() << QStringLiteral("  ") + elementText(display, property, i);
}

void logProperties(Display *display, Window window, const char *when) {
    qInfo().noquote() << QStringLiteral("FixedWindow '%1' #%2(%3) Properties %4:")
                             .arg(windowName(display, window), QString::number(window, 16),
                                  QString::number(window), QString::fromLatin1(when));
    LogXProperty(display, window, "_NET_WM_STATE");
    LogXProperty(display, window, "_NET_WM_ALLOWED_ACTIONS");
}

} // namespace

FixedWindow::FixedWindow(QWindow *parent) : QQuickApplicationWindow(parent) {}

bool FixedWindow::event(QEvent *event) {
    if (event->type() == QEvent::PlatformSurface &&
        static_cast<QPlatformSurfaceEvent *>(event)->surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceCreated)
        appendState();
    return QQuickApplicationWindow::event(event);
}

void FixedWindow::appendState() {
    const unsigned long window = winId();
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return;
    // The window manager reads the state when the window is shown; Qt keeps what it finds there.
    const XDisplayPointer connection = openDisplay();
    if (!connection) {
        qWarning() << "No display: the window may show in the task bar";
        return;
    }
    Display *display = connection.get();
    // A display without a window manager may know none of these atoms.
    const XErrorScope errors(display);
    const Atom state = existingAtom(display, "_NET_WM_STATE");
    const Atom additions[] = {existingAtom(display, "_NET_WM_STATE_SKIP_TASKBAR"),
                              existingAtom(display, "_NET_WM_STATE_SKIP_PAGER"),
                              existingAtom(display, "_NET_WM_STATE_STICKY")};
    logProperties(display, window, "BEFORE");
    for (const Atom &addition : additions) {
        XChangeProperty(display, window, state, XA_ATOM, 32, PropModeAppend,
                        reinterpret_cast<const unsigned char *>(&addition), 1);
    }
    logProperties(display, window, "AFTER");
}
