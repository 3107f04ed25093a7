#include "desktop/OwnKeyMarks.h"

#include <X11/Xlib.h>
#include <atomic>

namespace {

std::atomic<Window> receiver{None};

Atom messageType(Display *display) {
    return XInternAtom(display, "_VELLUMAR_OWN_KEYS", False);
}

} // namespace

OwnKeyMarks::OwnKeyMarks(_XDisplay *display) : m_display(display), m_receiver(receiver) {
    send(Mark::Begin);
}

OwnKeyMarks::~OwnKeyMarks() {
    send(Mark::End);
}

void OwnKeyMarks::setReceiver(unsigned long window) {
    receiver = window;
}

void OwnKeyMarks::dropReceiver(unsigned long window) {
    receiver.compare_exchange_strong(window, None);
}

OwnKeyMarks::Mark OwnKeyMarks::read(_XDisplay *display, const _XEvent &event) {
    if (event.type != ClientMessage || event.xclient.message_type != messageType(display))
        return Mark::Nothing;
    return event.xclient.data.l[0] == static_cast<long>(Mark::Begin) ? Mark::Begin : Mark::End;
}

void OwnKeyMarks::send(Mark mark) {
    if (m_receiver == None)
        return;
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = m_receiver;
    event.xclient.message_type = messageType(m_display);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(mark);
    // Without an event mask it goes to the client that made the window.
    XSendEvent(m_display, m_receiver, False, NoEventMask, &event);
}
