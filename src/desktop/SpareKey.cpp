#include "desktop/SpareKey.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <algorithm>
#include <memory>

namespace {

/// The lowest keycode without any symbol. A keycode whose first level alone is free may be one
/// that carries a modifier in its second.
unsigned char findSpareKeycode(Display *display) {
    int lowest = 0;
    int highest = 0;
    XDisplayKeycodes(display, &lowest, &highest);
    int width = 0;
    const std::unique_ptr<KeySym, int (*)(void *)> mapping(
        XGetKeyboardMapping(display, static_cast<KeyCode>(lowest), highest - lowest + 1, &width),
        XFree);
    if (!mapping)
        return 0;
    const KeySym *row = mapping.get();
    for (int keycode = lowest; keycode <= highest; ++keycode, row += width) {
        if (std::all_of(row, row + width, [](KeySym keysym) { return keysym == NoSymbol; }))
            return static_cast<unsigned char>(keycode);
    }
    return 0;
}

} // namespace

SpareKey::~SpareKey() {
    if (m_keycode == 0)
        return;
    changeMapping(NoSymbol);
    XFlush(m_display);
}

unsigned char SpareKey::map(unsigned long keysym) {
    if (m_keycode == 0)
        m_keycode = findSpareKeycode(m_display);
    if (m_keycode == 0)
        return 0;
    changeMapping(keysym);
    XSync(m_display, False);
    return m_keycode;
}

void SpareKey::changeMapping(unsigned long keysym) {
    // A letter given alone would become a pair of small and capital letter.
    KeySym levels[] = {keysym, keysym};
    XChangeKeyboardMapping(m_display, m_keycode, 2, levels, 1);
}
