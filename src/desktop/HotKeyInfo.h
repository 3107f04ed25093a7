#pragma once

#include <QMetaType>

/// A key combination in terms of X.
struct HotKeyInfo {
    /// The X keycode, 0 if none.
    unsigned int code = 0;
    /// X modifier mask: 1 Shift, 4 Control, 8 Alt, 64 Super; 16 marks a keypad key of the digit or
    /// navigation group, which is named by its second level.
    unsigned int modifiers = 0;
    /// The X symbol of a key that no layout has, so that there is no keycode; 0 if none is needed,
    /// XK_VoidSymbol for a name that X does not know.
    unsigned long keysym = 0;
};

inline bool operator==(const HotKeyInfo &left, const HotKeyInfo &right) {
    return left.code == right.code && left.modifiers == right.modifiers &&
           left.keysym == right.keysym;
}

inline bool operator!=(const HotKeyInfo &left, const HotKeyInfo &right) {
    return !(left == right);
}

Q_DECLARE_METATYPE(HotKeyInfo)
