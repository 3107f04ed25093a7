#include "TrayEyes.h"

#include <QApplication>
#include <QLabel>
#include <QStringList>
#include <QWidget>

#include <X11/Xlib.h>
#include <memory>

namespace {

/// A window of Qt's own, which it offers no way to ask for.
QWidget *shownWindow(const char *className) {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->inherits(className) && widget->isVisible())
            return widget;
    }
    return nullptr;
}

} // namespace

bool TrayEyes::iconIsShown() {
    const QWidget *icon = shownWindow("QSystemTrayIconSys");
    const std::unique_ptr<Display, decltype(&XCloseDisplay)> display(XOpenDisplay(nullptr),
                                                                     &XCloseDisplay);
    if (!icon || !display)
        return false;
    // The tray may take the window away between the two questions.
    const XErrorHandler previous = XSetErrorHandler([](auto...) { return 0; });
    Window root = 0;
    Window parent = 0;
    Window *children = nullptr;
    unsigned int count = 0;
    XWindowAttributes attributes{};
    const bool isThere =
        XGetWindowAttributes(display.get(), icon->winId(), &attributes) &&
        XQueryTree(display.get(), icon->winId(), &root, &parent, &children, &count);
    if (children)
        XFree(children);
    XSetErrorHandler(previous);
    return isThere && parent != root && attributes.map_state == IsViewable;
}

QWidget *TrayEyes::balloon() {
    return shownWindow("QBalloonTip");
}

QString TrayEyes::balloonText() {
    QStringList texts;
    if (const QWidget *shown = balloon()) {
        for (const QLabel *label : shown->findChildren<QLabel *>())
            texts += label->text();
    }
    texts.removeAll(QString());
    return texts.join('\n');
}
