#include "desktop/KeyPress.h"

#include "desktop/OwnKeyMarks.h"
#include "desktop/ServerGrab.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace {

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

bool isHeld(const char *keymap, KeyCode keycode) {
    return keymap[keycode >> 3] & (1 << (keycode & 7));
}

} // namespace

std::optional<QVector<ModifierKeys>> modifierKeys(_XDisplay *display, unsigned int mask) {
    QVector<ModifierKeys> keys;
    for (const HeldModifier &modifier : HeldModifiers) {
        if (!(mask & modifier.mask))
            continue;
        const KeyCode left = XKeysymToKeycode(display, modifier.left);
        const KeyCode right = XKeysymToKeycode(display, modifier.right);
        if (left == 0 && right == 0)
            return std::nullopt;
        keys.append({left ? left : right, right ? right : left});
    }
    return keys;
}

QVector<unsigned int> pressKey(_XDisplay *display, const QVector<ModifierKeys> &modifiers,
                               unsigned int keycode) {
    QVector<unsigned int> keycodes;
    const ServerGrab grab(display);
    char keymap[32] = {};
    XQueryKeymap(display, keymap);
    for (const ModifierKeys &modifier : modifiers) {
        if (!isHeld(keymap, modifier.left) && !isHeld(keymap, modifier.right))
            keycodes.append(modifier.left);
    }
    if (keycode != 0)
        keycodes.append(keycode);

    // The grab stands: whoever listens by now is known to the marks.
    const OwnKeyMarks marks(display);
    for (const unsigned int code : qAsConst(keycodes))
        XTestFakeKeyEvent(display, code, True, CurrentTime);
    for (auto code = keycodes.crbegin(); code != keycodes.crend(); ++code)
        XTestFakeKeyEvent(display, *code, False, CurrentTime);
    return keycodes;
}
