#pragma once

#include <QMetaType>

/// A key combination in terms of X.
struct HotKeyInfo {
    /// The X keycode, 0 if none.
    unsigned int code = 0;
    /// X modifier mask: 1 Shift, 4 Control, 8 Alt, 64 Super; 16 marks a keypad key of the digit or
    /// navigation group, which is named by its second level.
    unsigned int modifiers = 0;
    /// The X symbol that was asked for by name, XK_VoidSymbol if X does not know the name; 0 if a
    /// key was pressed or there is none. It counts where no layout has the key, and so no keycode.
    unsigned long keysym = 0;
};

inline bool operator==(const HotKeyInfo &left, const HotKeyInfo &right) {
    return left.code == right.code && left.modifiers == right.modifiers &&
           (left.code != 0 || left.keysym == right.keysym);
}

inline bool operator!=(const HotKeyInfo &left, const HotKeyInfo &right) {
    return !(left == right);
}

Q_DECLARE_METATYPE(HotKeyInfo)
