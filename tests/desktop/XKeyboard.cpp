#include "XKeyboard.h"

#include <QDataStream>
#include <QStringList>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

XKeyboard::XKeyboard() : m_display(XOpenDisplay(nullptr), &XCloseDisplay) {}

void XKeyboard::play(const QString &edges) {
    for (const QString &edge : edges.split(' ', Qt::SkipEmptyParts)) {
        XTestFakeKeyEvent(m_display.get(), static_cast<unsigned int>(keycode(edge.mid(1))),
                          edge.startsWith('+'), CurrentTime);
        XSync(m_display.get(), False);
    }
}

int XKeyboard::keycode(const QString &key) const {
    const KeySym keysym = XStringToKeysym(key.toLatin1().constData());
    return keysym == NoSymbol ? 0 : XKeysymToKeycode(m_display.get(), keysym);
}

void XKeyboard::setRepeating(const QString &key, bool on) {
    XKeyboardControl control = {};
    control.key = keycode(key);
    control.auto_repeat_mode = on ? AutoRepeatModeOn : AutoRepeatModeOff;
    XChangeKeyboardControl(m_display.get(), KBKey | KBAutoRepeatMode, &control);
    XSync(m_display.get(), False);
}

void XKeyboard::lockGroup(int group) {
    XkbLockGroup(m_display.get(), XkbUseCoreKbd, static_cast<unsigned int>(group));
    XSync(m_display.get(), False);
}

int XKeyboard::lockedGroup() const {
    XkbStateRec state = {};
    XkbGetState(m_display.get(), XkbUseCoreKbd, &state);
    return state.locked_group;
}

QByteArray XKeyboard::map() const {
    XkbDescRec *map = XkbGetMap(m_display.get(), XkbAllMapComponentsMask, XkbUseCoreKbd);
    QByteArray dump;
    QDataStream stream(&dump, QIODevice::WriteOnly);
    for (int key = map->min_key_code; key <= map->max_key_code; ++key) {
        const XkbSymMapRec &symbols = map->map->key_sym_map[key];
        stream << key << symbols.group_info << map->map->modmap[key]
               << map->server->c_explicit[key];
        for (int group = 0; group < XkbKeyNumGroups(map, key); ++group)
            stream << symbols.kt_index[group];
        for (int symbol = 0; symbol < XkbKeyNumSyms(map, key); ++symbol)
            stream << static_cast<quint64>(XkbKeySymsPtr(map, key)[symbol]);
    }
    XkbFreeKeyboard(map, XkbAllComponentsMask, True);
    return dump;
}

bool XKeyboard::grab() {
    return XGrabKeyboard(m_display.get(), DefaultRootWindow(m_display.get()), False, GrabModeAsync,
                         GrabModeAsync, CurrentTime) == GrabSuccess;
}

void XKeyboard::ungrab() {
    XUngrabKeyboard(m_display.get(), CurrentTime);
    XSync(m_display.get(), False);
}

void XKeyboard::unfocus() {
    XSetInputFocus(m_display.get(), PointerRoot, RevertToPointerRoot, CurrentTime);
    XSync(m_display.get(), False);
}

void XKeyboard::askToClose(unsigned long window) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(m_display.get(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(XInternAtom(m_display.get(), "WM_DELETE_WINDOW", False));
    XSendEvent(m_display.get(), window, False, NoEventMask, &event);
    XSync(m_display.get(), False);
}
