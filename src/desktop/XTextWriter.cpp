#include "desktop/XTextWriter.h"

#include "desktop/HotKeyInfo.h"
#include "desktop/WindowParent.h"
#include "desktop/XErrorScope.h"
#include "desktop/XTypist.h"

#include <QDebug>
#include <QRect>
#include <QThread>

#include <X11/Xlib.h>

namespace {

/// How long the end of the program waits for the last words, and then for the thread, milliseconds.
constexpr int LastWordsMs = 2000;
constexpr int EndMs = 1500;

bool hasProperty(Display *display, Window window, const char *name) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char *value = nullptr;
    XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, 0, False,
                       AnyPropertyType, &type, &format, &count, &left, &value);
    if (value)
        XFree(value);
    return type != None;
}

} // namespace

XTextWriter::XTextWriter() : m_display(openDisplay()) {
    XDisplayPointer typistDisplay = m_display ? openDisplay() : nullptr;
    if (!typistDisplay)
        return;
    m_thread = std::make_unique<QThread>();
    m_thread->setObjectName(QStringLiteral("TextWriter"));
    m_typist = new XTypist(std::move(typistDisplay));
    m_typist->moveToThread(m_thread.get());
    QObject::connect(m_thread.get(), &QThread::finished, m_typist, &QObject::deleteLater);
    m_thread->start();
}

XTextWriter::~XTextWriter() {
    if (m_thread)
        endTyping();
}

void XTextWriter::endTyping() {
    if (!m_typist->waitForAll(LastWordsMs))
        qWarning("XTextWriter: The program ends, not typed, characters: %d",
                 m_typist->waitingCharacters());
    m_typist->cancel();
    m_thread->quit();
    if (m_thread->wait(EndMs))
        return;
    // The X server does not answer. What the thread works on must outlive it.
    qWarning("XTextWriter: The thread does not end");
    static_cast<void>(m_thread.release());
}

bool XTextWriter::writeText(unsigned long window, const QString &text,
                            const TypingFailure &failure) {
    if (!m_typist)
        return false;
    if (window == 0) {
        qInfo("XTextWriter: No window");
        return false;
    }
    m_typist->typeLater(window, text, failure);
    return true;
}

bool XTextWriter::writeKey(unsigned long, const HotKeyInfo &key) {
    if (!m_typist)
        return false;
    m_typist->pressLater(key);
    return true;
}

bool XTextWriter::waitForTyped(int timeoutMs) {
    return m_typist && m_typist->waitForAll(timeoutMs);
}

unsigned long XTextWriter::getFocusedWindow() {
    if (!m_display)
        return 0;
    const XErrorScope errors(m_display.get());
    drainEvents(m_display.get());
    Window window = None;
    int revert = 0;
    if (!XGetInputFocus(m_display.get(), &window, &revert) || window == PointerRoot)
        return 0;
    return window;
}

bool XTextWriter::getWindowRect(unsigned long window, QRect *rect) {
    if (!m_display)
        return false;
    Display *display = m_display.get();
    const XErrorScope errors(display);
    WindowParent tree = queryParent(display, window);
    while (tree.isKnown && tree.parent != tree.root) {
        window = tree.parent;
        tree = queryParent(display, window);
    }
    XWindowAttributes attributes;
    if (!tree.isKnown || !XGetWindowAttributes(display, window, &attributes))
        return false;
    *rect = QRect(attributes.x, attributes.y, attributes.width, attributes.height);
    return true;
}

bool XTextWriter::windowExists(unsigned long window) {
    if (!m_display)
        return true;
    const XErrorScope errors(m_display.get());
    return queryParent(m_display.get(), window).isKnown;
}

bool XTextWriter::takesText(unsigned long window) {
    if (!m_display)
        return false;
    Display *display = m_display.get();
    const XErrorScope errors(display);
    // A window manager marks the windows that it manages; without one there are no marks.
    const bool isManaged =
        hasProperty(display, DefaultRootWindow(display), "_NET_SUPPORTING_WM_CHECK");
    WindowParent tree = queryParent(display, window);
    while (tree.isKnown && window != tree.root) {
        if (!isManaged || hasProperty(display, window, "WM_STATE"))
            return true;
        window = tree.parent;
        tree = queryParent(display, window);
    }
    return false;
}
