#include "desktop/XTextWriter.h"

#include "core/settings/TextWriterSettings.h"
#include "desktop/HotKeyInfo.h"
#include "desktop/OwnKeyMarks.h"
#include "desktop/SpareKey.h"
#include "desktop/XErrorScope.h"

#include <QDebug>
#include <QRect>
#include <QThread>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <limits>
#include <xkbcommon/xkbcommon.h>

namespace {

/// Code points from here on have a symbol of the same number plus this.
constexpr unsigned long UnicodeSymbols = 0x1000000;

struct ModifierMapCloser {
    void operator()(XModifierKeymap *map) const { XFreeModifiermap(map); }
};
using ModifierMap = std::unique_ptr<XModifierKeymap, ModifierMapCloser>;

struct ClientMapCloser {
    // Freeing the client map alone would leave the record that holds it.
    void operator()(XkbDescRec *map) const { XkbFreeKeyboard(map, XkbAllComponentsMask, True); }
};
using ClientMap = std::unique_ptr<XkbDescRec, ClientMapCloser>;

struct HeldModifier {
    unsigned int mask;
    KeySym left;
    KeySym right;
};

constexpr HeldModifier HeldModifiers[] = {
    {ShiftMask, XK_Shift_L, XK_Shift_R},
    {ControlMask, XK_Control_L, XK_Control_R},
    {Mod1Mask, XK_Alt_L, XK_Alt_R},
    {Mod4Mask, XK_Super_L, XK_Super_R},
};

int microseconds(int milliseconds) {
    constexpr int Factor = 1000;
    return qBound(0, milliseconds, std::numeric_limits<int>::max() / Factor) * Factor;
}

void pause(int microsecondsToWait) {
    if (microsecondsToWait > 0)
        QThread::usleep(static_cast<unsigned long>(microsecondsToWait));
}

/// The modifier that a key itself is, as a bit; 0 if it is none.
unsigned int modifierOf(const XModifierKeymap *map, int keycode) {
    constexpr int Rows = 8;
    for (int row = 0; row < Rows; ++row) {
        const KeyCode *first = map->modifiermap + row * map->max_keypermod;
        for (int column = 0; column < map->max_keypermod && first[column] != 0; ++column) {
            if (first[column] == keycode)
                return 1U << row;
        }
    }
    return 0;
}

/// The modifiers that select a level of a key.
unsigned int levelModifiers(const XkbKeyTypeRec &type, int level) {
    for (int index = 0; index < type.map_count; ++index) {
        const XkbKTMapEntryRec &entry = type.map[index];
        if (entry.active && entry.level == level)
            return entry.mods.real_mods;
    }
    return 0;
}

/// One step towards the root of the window tree.
struct WindowParent {
    Window root = 0;
    Window parent = 0;
    bool isKnown = false;
};

WindowParent queryParent(Display *display, Window window) {
    WindowParent result;
    Window *children = nullptr;
    unsigned int count = 0;
    result.isKnown =
        XQueryTree(display, window, &result.root, &result.parent, &children, &count) != 0;
    if (children)
        XFree(children);
    return result;
}

/// The two keys of one modifier.
struct ModifierKeys {
    KeyCode left;
    KeyCode right;
};

/// The keys of the modifiers that a combination has.
QVector<ModifierKeys> modifierKeys(Display *display, const HotKeyInfo &key) {
    QVector<ModifierKeys> keys;
    for (const HeldModifier &modifier : HeldModifiers) {
        if (key.modifiers & modifier.mask)
            keys.append({XKeysymToKeycode(display, modifier.left),
                         XKeysymToKeycode(display, modifier.right)});
    }
    return keys;
}

bool isHeld(const char *keymap, KeyCode keycode) {
    return keymap[keycode >> 3] & (1 << (keycode & 7));
}

/// No other client's requests are served while it exists.
class ServerGrab {
public:
    explicit ServerGrab(Display *display) : m_display(display) { XGrabServer(display); }
    ~ServerGrab() {
        XUngrabServer(m_display);
        XSync(m_display, False);
    }
    ServerGrab(const ServerGrab &) = delete;
    ServerGrab &operator=(const ServerGrab &) = delete;

private:
    Display *m_display;
};

/// Presses and releases a key with those modifiers that the user does not hold. Everything that
/// takes time is done before: the whole desk waits here.
/// @return what was pressed, in this order
QVector<unsigned int> pressAlone(Display *display, const QVector<ModifierKeys> &modifiers,
                                 unsigned int code) {
    QVector<unsigned int> keycodes;
    const ServerGrab grab(display);
    char keymap[32] = {};
    XQueryKeymap(display, keymap);
    for (const ModifierKeys &modifier : modifiers) {
        if (!isHeld(keymap, modifier.left) && !isHeld(keymap, modifier.right))
            keycodes.append(modifier.left);
    }
    keycodes.append(code);

    // The answer above says that the grab stands: whoever listens by now is known to the marks.
    const OwnKeyMarks marks(display);
    for (const unsigned int keycode : qAsConst(keycodes))
        XTestFakeKeyEvent(display, keycode, True, CurrentTime);
    for (auto keycode = keycodes.crbegin(); keycode != keycodes.crend(); ++keycode)
        XTestFakeKeyEvent(display, *keycode, False, CurrentTime);
    return keycodes;
}

} // namespace

XTextWriter::XTextWriter() {
    TextWriterSettings settings;
    m_symbolDelay = microseconds(settings.SymbolDelay);
    m_enterDelay = microseconds(settings.EnterDelay);
    m_display = openDisplay();
    if (m_display)
        buildKeyTable();
}

void XTextWriter::addKey(const XKey &key) {
    const int index = m_keys.size();
    m_keys.append(key);
    // Keys without a character or a symbol answer to none.
    if (key.ch != 0 && !m_keyByChar.contains(key.ch))
        m_keyByChar.insert(key.ch, index);
    if (key.keysym != NoSymbol && !m_keyBySymbol.contains(key.keysym))
        m_keyBySymbol.insert(key.keysym, index);
}

void XTextWriter::buildKeyTable() {
    Display *display = m_display.get();
    // A new line is Shift+Return: a plain Return would send the form in many an application. It
    // takes the real key if there is one, since browsers know Return by its keycode, not its
    // symbol.
    KeyCode returnKey = XKeysymToKeycode(display, XK_Return);
    if (XkbKeycodeToKeysym(display, returnKey, 0, 0) != XK_Return)
        returnKey = 0;
    for (const wchar_t lineBreak : {L'\n', L'\u00B6'})
        addKey({lineBreak, returnKey, XK_Return, ShiftMask, false});

    const ModifierMap modifiers(XGetModifierMapping(display));
    const ClientMap map(
        XkbGetMap(display, XkbKeyTypesMask | XkbKeySymsMask | XkbModifierMapMask, XkbUseCoreKbd));
    if (!modifiers || !map)
        return;
    int lowest = 0;
    int highest = 0;
    XDisplayKeycodes(display, &lowest, &highest);
    for (int keycode = lowest; keycode <= highest; ++keycode) {
        const unsigned int modifier = modifierOf(modifiers.get(), keycode);
        const int groups = XkbKeyNumGroups(map.get(), keycode);
        for (int group = 0; group < groups; ++group) {
            const unsigned int state = (static_cast<unsigned int>(group) << 13) | modifier;
            const XkbKeyTypeRec &type = *XkbKeyKeyType(map.get(), keycode, group);
            for (int level = 0; level < type.num_levels; ++level) {
                const auto code = static_cast<KeyCode>(keycode);
                const KeySym keysym = XkbKeycodeToKeysym(display, code, group, level);
                const auto ch =
                    static_cast<wchar_t>(xkb_keysym_to_utf32(static_cast<xkb_keysym_t>(keysym)));
                addKey({ch, code, keysym, state | levelModifiers(type, level), true});
            }
        }
    }
}

XTextWriter::XKey XTextWriter::wchar2key(wchar_t ch) const {
    const auto byChar = m_keyByChar.constFind(ch);
    if (byChar != m_keyByChar.constEnd())
        return m_keys.at(*byChar);
    constexpr wchar_t Latin1End = 256;
    const unsigned long code = static_cast<char32_t>(ch);
    const unsigned long keysym = ch < Latin1End ? code : code + UnicodeSymbols;
    // The symbols above all have names, which Xlib would allocate and never free.
    if (ch < Latin1End && !XKeysymToString(keysym))
        return {ch, 0, NoSymbol, 0, false};
    const auto bySymbol = m_keyBySymbol.constFind(keysym);
    if (bySymbol != m_keyBySymbol.constEnd())
        return m_keys.at(*bySymbol);
    return {ch, 0, keysym, 0, false};
}

bool XTextWriter::writeText(unsigned long window, const QString &text) {
    if (!m_display)
        return false;
    if (window == 0) {
        qInfo("XTextWriter: No window");
        return false;
    }
    Display *display = m_display.get();
    const XErrorScope errors(display);
    const WindowParent tree = queryParent(display, window);
    if (!tree.isKnown)
        return false;
    drainEvents(display);
    XFlush(display);

    const Target target{tree.root, window};
    {
        SpareKey spare(display);
        const QVector<uint> codePoints = text.toUcs4();
        // Each flush also reads the errors that have arrived, so a closed window ends the loop.
        for (auto code = codePoints.begin(); code != codePoints.end() && !errors.errorCode();
             ++code) {
            const XKey key = wchar2key(static_cast<wchar_t>(*code));
            if (key.onKeyboard)
                typeKey(target, key);
            else if (key.keysym == NoSymbol)
                qInfo().noquote()
                    << QStringLiteral("XTextWriter: Unknown char %1").arg(*code, 0, 16);
            else
                typeSlowly(target, key, spare);
        }
    }
    XSync(display, False);
    if (errors.errorCode() != 0) {
        qInfo("XTextWriter: X error %d while typing", errors.errorCode());
        return false;
    }
    return true;
}

void XTextWriter::typeKey(const Target &target, const XKey &key) {
    for (const bool press : {true, false}) {
        sendKey(target.root, target.window, 0, key, press);
        pause(m_symbolDelay);
    }
}

void XTextWriter::typeSlowly(const Target &target, XKey key, SpareKey &spare) {
    if (key.keycode == 0)
        key.keycode = spare.map(key.keysym);
    if (key.keycode == 0)
        return;
    // The receiver hears of the new map first and fetches it when it comes to that event; until
    // the last pause is over the keycode must keep its meaning.
    pause(m_enterDelay);
    for (const bool press : {true, false}) {
        sendKey(target.root, target.window, 0, key, press);
        XSync(m_display.get(), False);
        pause(m_enterDelay);
    }
}

void XTextWriter::sendKey(unsigned long root, unsigned long window, unsigned long subwindow,
                          const XKey &key, bool press) {
    XEvent event = {};
    XKeyEvent &keyEvent = event.xkey;
    keyEvent.type = press ? KeyPress : KeyRelease;
    keyEvent.display = m_display.get();
    keyEvent.window = window;
    keyEvent.root = root;
    keyEvent.subwindow = subwindow;
    keyEvent.time = CurrentTime;
    keyEvent.x = keyEvent.y = keyEvent.x_root = keyEvent.y_root = 1;
    keyEvent.state = key.state;
    keyEvent.keycode = key.keycode;
    keyEvent.same_screen = True;
    XSendEvent(m_display.get(), window, True, NoEventMask, &event);
    XFlush(m_display.get());
}

bool XTextWriter::writeKey(unsigned long, const HotKeyInfo &key) {
    int unused = 0;
    // It also readies the extension, which Xlib must not do behind the grab: that takes a lock
    // which another thread may hold while it waits for the server.
    if (!m_display || !XTestQueryExtension(m_display.get(), &unused, &unused, &unused, &unused))
        return false;
    Display *display = m_display.get();
    const XErrorScope errors(display);
    XSync(display, False);
    drainEvents(display);
    const QVector<unsigned int> keycodes =
        pressAlone(display, modifierKeys(display, key), key.code);
    for (const unsigned int keycode : keycodes)
        qDebug().noquote() << QStringLiteral("push %1").arg(keycode);
    return true;
}

unsigned long XTextWriter::getFocusedWindow() {
    if (!m_display)
        return 0;
    const XErrorScope errors(m_display.get());
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
