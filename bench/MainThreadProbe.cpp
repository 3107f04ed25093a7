#include "MainThreadProbe.h"

#include "Figures.h"

#include <QMutexLocker>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

constexpr int pauseMs = 2;

Atom atom(Display *display, const char *name) {
    return XInternAtom(display, name, False);
}

/// The values of a property of 32-bit items; empty without the property.
std::vector<unsigned long> property(Display *display, Window window, const char *name) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char *data = nullptr;
    XGetWindowProperty(display, window, atom(display, name), 0, 64, False, AnyPropertyType, &type,
                       &format, &count, &rest, &data);
    std::vector<unsigned long> values;
    if (data && format == 32) {
        const auto *items = reinterpret_cast<const unsigned long *>(data);
        values.assign(items, items + count);
    }
    if (data)
        XFree(data);
    return values;
}

bool answers(Display *display, Window window, qint64 processId) {
    const auto owner = property(display, window, "_NET_WM_PID");
    const auto protocols = property(display, window, "WM_PROTOCOLS");
    return !owner.empty() && static_cast<qint64>(owner.front()) == processId &&
           std::count(protocols.begin(), protocols.end(), atom(display, "_NET_WM_PING")) > 0;
}

Window findWindow(Display *display, Window parent, qint64 processId) {
    if (answers(display, parent, processId))
        return parent;
    Window ignored = None;
    Window *children = nullptr;
    unsigned int count = 0;
    if (!XQueryTree(display, parent, &ignored, &ignored, &children, &count))
        return None;
    Window found = None;
    for (unsigned int i = 0; i < count && found == None; ++i)
        found = findWindow(display, children[i], processId);
    if (children)
        XFree(children);
    return found;
}

} // namespace

MainThreadProbe::MainThreadProbe(qint64 processId) {
    const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr),
                                                               XCloseDisplay);
    if (display)
        m_window = findWindow(display.get(), DefaultRootWindow(display.get()), processId);
    if (m_window == None)
        throw std::runtime_error("the program has no window that answers");
    start();
}

MainThreadProbe::~MainThreadProbe() {
    m_isEnding = true;
    wait();
}

double MainThreadProbe::takeLongestBlockMs() {
    const QMutexLocker locker(&m_mutex);
    // A question that is still open counts as far as it has waited.
    if (m_askedMs > 0)
        m_longestMs = std::max(m_longestMs, nowMs() - m_askedMs);
    return std::exchange(m_longestMs, 0);
}

void MainThreadProbe::run() {
    const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr),
                                                               XCloseDisplay);
    // Qt sends its answers to those who watch the root window itself.
    XSelectInput(display.get(), DefaultRootWindow(display.get()), StructureNotifyMask);
    unsigned long stamp = 0;
    while (!m_isEnding) {
        bool isAnswered = false;
        {
            const QMutexLocker locker(&m_mutex);
            isAnswered = m_askedMs == 0;
        }
        if (isAnswered)
            ask(display.get(), ++stamp);
        msleep(pauseMs);
        readAnswers(display.get());
    }
}

void MainThreadProbe::ask(Display *display, unsigned long stamp) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = m_window;
    event.xclient.message_type = atom(display, "WM_PROTOCOLS");
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(atom(display, "_NET_WM_PING"));
    event.xclient.data.l[1] = static_cast<long>(stamp);
    event.xclient.data.l[2] = static_cast<long>(m_window);
    {
        const QMutexLocker locker(&m_mutex);
        m_askedMs = nowMs();
    }
    XSendEvent(display, m_window, False, NoEventMask, &event);
    XFlush(display);
}

void MainThreadProbe::readAnswers(Display *display) {
    const Atom ping = atom(display, "_NET_WM_PING");
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type != ClientMessage || static_cast<Atom>(event.xclient.data.l[0]) != ping)
            continue;
        const QMutexLocker locker(&m_mutex);
        m_longestMs = std::max(m_longestMs, nowMs() - std::exchange(m_askedMs, 0));
    }
}
