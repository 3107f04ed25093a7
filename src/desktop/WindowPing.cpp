#include "desktop/WindowPing.h"

#include "desktop/WindowParent.h"
#include "desktop/XErrorScope.h"

#include <QDeadlineTimer>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <algorithm>
#include <memory>
#include <poll.h>

namespace {

/// How often a waiting one looks whether it is still to wait, milliseconds.
constexpr int SliceMs = 50;

/// What an answer looks like.
struct Answer {
    Atom protocols;
    long ping;
    long number;
    long window;
};

Bool isAnswer(Display *, XEvent *event, XPointer argument) {
    const auto *answer = reinterpret_cast<const Answer *>(argument);
    return event->type == ClientMessage && event->xclient.message_type == answer->protocols &&
           event->xclient.data.l[0] == answer->ping && event->xclient.data.l[1] == answer->number &&
           event->xclient.data.l[2] == answer->window;
}

} // namespace

WindowPing::WindowPing(_XDisplay *display)
    : m_display(display),
      m_root(DefaultRootWindow(display)),
      m_protocols(XInternAtom(display, "WM_PROTOCOLS", False)),
      m_ping(XInternAtom(display, "_NET_WM_PING", False)) {}

unsigned long WindowPing::answering(unsigned long window) const {
    const XErrorScope errors(m_display);
    while (window != None && window != m_root) {
        Atom *list = nullptr;
        int count = 0;
        if (XGetWMProtocols(m_display, window, &list, &count)) {
            const std::unique_ptr<Atom, int (*)(void *)> protocols(list, XFree);
            return std::find(list, list + count, m_ping) != list + count ? window : None;
        }
        window = queryParent(m_display, window).parent;
    }
    return None;
}

bool WindowPing::hasRead(unsigned long window, int timeoutMs, const std::atomic<bool> &cancelled) {
    const XErrorScope errors(m_display);
    const QDeadlineTimer deadline(timeoutMs);
    listen(true);
    ask(window);
    bool isRead = isAnswered(window);
    while (!isRead && !cancelled && !deadline.hasExpired()) {
        pollfd socket{ConnectionNumber(m_display), POLLIN, 0};
        const qint64 left = deadline.remainingTime();
        const int ready = poll(&socket, 1, static_cast<int>(std::min<qint64>(left, SliceMs)));
        isRead = isAnswered(window) || (ready == 0 && !queryParent(m_display, window).isKnown);
    }
    listen(false);
    return isRead;
}

void WindowPing::listen(bool on) {
    // Qt sends its answers to those who watch the root window itself, others as the manual says.
    XSelectInput(m_display, m_root,
                 on ? StructureNotifyMask | SubstructureNotifyMask : NoEventMask);
}

void WindowPing::ask(unsigned long window) {
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = m_protocols;
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(m_ping);
    event.xclient.data.l[1] = ++m_number;
    event.xclient.data.l[2] = static_cast<long>(window);
    XSendEvent(m_display, window, False, NoEventMask, &event);
    XFlush(m_display);
}

bool WindowPing::isAnswered(unsigned long window) {
    Answer answer{m_protocols, static_cast<long>(m_ping), m_number, static_cast<long>(window)};
    XEvent event;
    return XCheckIfEvent(m_display, &event, isAnswer, reinterpret_cast<XPointer>(&answer)) != 0;
}
