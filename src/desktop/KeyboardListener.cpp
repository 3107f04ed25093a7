#include "desktop/KeyboardListener.h"

#include "core/LoggingCategories.h"
#include "desktop/OwnKeyMarks.h"
#include "desktop/XErrorScope.h"

#include <QMutexLocker>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/XI2.h>
#include <X11/extensions/XInput2.h>
#include <X11/keysym.h>
#include <climits>

namespace {

struct KnownKey {
    Qt::Key qtKey;
    KeySym keysym;
};

constexpr KnownKey KnownKeys[] = {
    {Qt::Key_Control, XK_Control_L},
    {Qt::Key_Control, XK_Control_R},
    {Qt::Key_CapsLock, XK_Caps_Lock},
    {Qt::Key_Pause, XK_Pause},
};

} // namespace

KeyboardListener::KeyboardListener() : RepeatWorker(0) {}

bool KeyboardListener::IsInitialized() const {
    const QMutexLocker locker(&m_mutex);
    return m_display != nullptr;
}

void KeyboardListener::AddKey(Qt::Key key, int modifiers) {
    const QMutexLocker locker(&m_mutex);
    for (const KeyEntry &entry : qAsConst(m_keys)) {
        if (entry.qtKey == key)
            return;
    }
    for (const KnownKey &known : KnownKeys) {
        if (known.qtKey == key)
            m_keys.append({key, known.keysym, 0, modifiers});
    }
}

void KeyboardListener::ResetKeys(bool pushToTalk) {
    const QMutexLocker locker(&m_mutex);
    m_pushToTalk = pushToTalk;
    m_keys.clear();
}

void KeyboardListener::initialize() {
    const QMutexLocker locker(&m_mutex);
    qCDebug(kbdlog, "KeyboardListener::initialize");
    m_held = 0;
    m_areOwnKeys = false;
    m_display = openDisplay();
    if (!m_display) {
        qCWarning(kbdlog, "No display: gestures will not be seen");
        return;
    }
    for (KeyEntry &entry : m_keys)
        entry.keycode = XKeysymToKeycode(m_display.get(), entry.keysym);
    if (!hasRawKeys() || !selectRawKeys()) {
        qCWarning(kbdlog, "No raw key events: gestures will not be seen");
        disconnectFromServer();
    }
}

bool KeyboardListener::hasRawKeys() {
    int event = 0;
    int error = 0;
    if (!XQueryExtension(m_display.get(), "XInputExtension", &m_opcode, &event, &error))
        return false;
    // Raw events tell the device that they come from since this version.
    int major = 2;
    int minor = 2;
    return XIQueryVersion(m_display.get(), &major, &minor) == Success;
}

bool KeyboardListener::selectRawKeys() {
    Display *display = m_display.get();
    const Window root = DefaultRootWindow(display);
    m_window = XCreateWindow(display, root, 0, 0, 1, 1, 0, 0, InputOnly, nullptr, 0, nullptr);
    OwnKeyMarks::setReceiver(m_window);
    unsigned char bits[4] = {};
    XISetMask(bits, XI_RawKeyPress);
    XISetMask(bits, XI_RawKeyRelease);
    XIEventMask mask{XIAllMasterDevices, sizeof bits, bits};
    if (XISelectEvents(display, root, &mask, 1) != Success)
        return false;
    XSync(display, False);
    return true;
}

void KeyboardListener::disconnectFromServer() {
    OwnKeyMarks::dropReceiver(m_window);
    m_window = 0;
    m_display.reset();
}

void KeyboardListener::cleanUp() {
    qCDebug(kbdlog, "KeyboardListener::cleanUp");
    const QMutexLocker locker(&m_mutex);
    disconnectFromServer();
}

void KeyboardListener::repeatableWork(CancellationCondition *cancellation) {
    // Only this thread changes the pointer, so it reads it without the mutex.
    if (!m_display)
        cancellation->pause(ULONG_MAX);
    else if (XPending(m_display.get()) == 0)
        cancellation->awaitInput(ConnectionNumber(m_display.get()));
    else
        readEvent();
}

void KeyboardListener::readEvent() {
    XEvent event;
    XNextEvent(m_display.get(), &event);
    const OwnKeyMarks::Mark mark = OwnKeyMarks::read(m_display.get(), event);
    if (mark != OwnKeyMarks::Mark::Nothing)
        m_areOwnKeys = mark == OwnKeyMarks::Mark::Begin;
    XGenericEventCookie *cookie = &event.xcookie;
    if (event.type != GenericEvent || !XGetEventData(m_display.get(), cookie))
        return;
    const bool isPress = cookie->evtype == XI_RawKeyPress;
    if (cookie->extension == m_opcode && (isPress || cookie->evtype == XI_RawKeyRelease)) {
        const auto *raw = static_cast<const XIRawEvent *>(cookie->data);
        if (!m_areOwnKeys || !isXTestDevice(raw->sourceid))
            takeEdge(raw->detail, isPress);
    }
    XFreeEventData(m_display.get(), cookie);
}

bool KeyboardListener::isXTestDevice(int deviceId) {
    Display *display = m_display.get();
    // A device may have gone since its event.
    const XErrorScope errors(display);
    const Atom property = XInternAtom(display, "XTEST Device", True);
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char *value = nullptr;
    if (XIGetProperty(display, deviceId, property, 0, 1, False, XA_INTEGER, &type, &format, &count,
                      &left, &value) != Success)
        return false;
    const bool isXTest = value && count == 1 && *value != 0;
    if (value)
        XFree(value);
    return isXTest;
}

void KeyboardListener::takeEdge(int keycode, bool isPress) {
    const int qtKey = getQtKey(keycode);
    if (m_held == 0) {
        if (isPress) {
            m_held = keycode;
            emit keyEventAction(false, qtKey);
        }
        return;
    }
    if (m_held == keycode) {
        if (!isPress) {
            m_held = 0;
            emit keyEventAction(true, qtKey);
        }
        return;
    }
    if (isPress && !m_pushToTalk) {
        // Typing in between is no gesture; the release of the second key passes unseen.
        m_held = 0;
        emit keyEventAction(true, -1);
    }
}

int KeyboardListener::getQtKey(int keycode) const {
    for (const KeyEntry &entry : m_keys) {
        if (entry.keycode == keycode)
            return entry.qtKey;
    }
    return -1;
}
