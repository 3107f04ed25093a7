#include "KeyReceiver.h"

#include <QDeadlineTimer>
#include <QMutexLocker>
#include <QSocketNotifier>
#include <QTimer>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <xkbcommon/xkbcommon.h>

KeyReceiver::KeyReceiver(int readEveryMs, int closeAfter, Pings pings)
    : m_display(XOpenDisplay(nullptr), &XCloseDisplay),
      m_readEveryMs(readEveryMs),
      m_closeAfter(closeAfter) {
    openWindow(pings);
    moveToThread(&m_thread);
    connect(&m_thread, &QThread::started, this, &KeyReceiver::startReading);
    m_thread.start();
}

KeyReceiver::~KeyReceiver() {
    m_thread.quit();
    m_thread.wait();
}

void KeyReceiver::openWindow(Pings pings) {
    Display *display = m_display.get();
    // Xlib fetches the map at the first look, and only from then on hears of changes.
    XkbKeycodeToKeysym(display, 0, 0, 0);
    m_window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 300, 200, 0, 0, 0);
    XSelectInput(display, m_window, KeyPressMask | KeyReleaseMask | FocusChangeMask);
    Atom ping = XInternAtom(display, "_NET_WM_PING", False);
    if (pings == Pings::Answered)
        XSetWMProtocols(display, m_window, &ping, 1);
    XMapWindow(display, m_window);
    // The window manager gives the focus to a new window.
    XEvent event;
    XWindowEvent(display, m_window, FocusChangeMask, &event);
}

void KeyReceiver::startReading() {
    if (m_readEveryMs > 0) {
        auto *timer = new QTimer;
        connect(&m_thread, &QThread::finished, timer, &QObject::deleteLater);
        connect(timer, &QTimer::timeout, this, &KeyReceiver::readEvents);
        timer->start(m_readEveryMs);
        return;
    }
    auto *notifier = new QSocketNotifier(ConnectionNumber(m_display.get()), QSocketNotifier::Read);
    connect(&m_thread, &QThread::finished, notifier, &QObject::deleteLater);
    connect(notifier, &QSocketNotifier::activated, this, &KeyReceiver::readEvents);
    readEvents();
}

void KeyReceiver::readEvents() {
    while (XPending(m_display.get()) > 0) {
        XEvent event;
        XNextEvent(m_display.get(), &event);
        if (event.type == MappingNotify)
            XRefreshKeyboardMapping(&event.xmapping);
        else if (event.type == KeyPress || event.type == KeyRelease)
            takeKey(&event);
        else if (event.type == ClientMessage)
            answerPing(&event);
    }
}

void KeyReceiver::answerPing(void *event) {
    auto *message = static_cast<XEvent *>(event);
    const Window root = DefaultRootWindow(m_display.get());
    message->xclient.window = root;
    XSendEvent(m_display.get(), root, False, SubstructureNotifyMask | SubstructureRedirectMask,
               message);
    XFlush(m_display.get());
}

void KeyReceiver::takeKey(void *event) {
    const XKeyEvent &key = static_cast<const XEvent *>(event)->xkey;
    const bool isPress = key.type == KeyPress;
    KeySym keysym = NoSymbol;
    unsigned int consumed = 0;
    XkbLookupKeySym(m_display.get(), static_cast<KeyCode>(key.keycode), key.state, &consumed,
                    &keysym);
    const uint ch = keysym == XK_Return && (key.state & ShiftMask)
                        ? '\n'
                        : xkb_keysym_to_utf32(static_cast<xkb_keysym_t>(keysym));
    const QMutexLocker locker(&m_mutex);
    m_edges.append({isPress, static_cast<int>(key.keycode), key.state, key.send_event != False});
    if (isPress && ch != 0)
        m_text.append(QString::fromUcs4(&ch, 1));
    m_received.wakeAll();
    if (m_closeAfter > 0 && m_edges.size() == 2 * m_closeAfter) {
        XDestroyWindow(m_display.get(), m_window);
        XFlush(m_display.get());
    }
}

QString KeyReceiver::text() const {
    const QMutexLocker locker(&m_mutex);
    return m_text;
}

QVector<KeyReceiver::Edge> KeyReceiver::edges() const {
    const QMutexLocker locker(&m_mutex);
    return m_edges;
}

bool KeyReceiver::waitForLength(int characters, int timeoutMs) const {
    const QMutexLocker locker(&m_mutex);
    const QDeadlineTimer deadline(timeoutMs);
    while (m_text.size() < characters) {
        if (!m_received.wait(&m_mutex, deadline))
            return false;
    }
    return true;
}

void KeyReceiver::clear() {
    const QMutexLocker locker(&m_mutex);
    m_text.clear();
    m_edges.clear();
}
