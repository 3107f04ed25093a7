#pragma once

#include <QVector>

#include <optional>

struct _XDisplay;

/// The two keys of one modifier; a keyboard that has but one of them has it twice.
struct ModifierKeys {
    unsigned char left;
    unsigned char right;
};

/// The keys of the modifiers that a combination has.
/// @param mask  X modifier mask: Shift, Control, Mod1 for Alt, Mod4 for Super
/// @return nothing if the keyboard has no key for one of them
std::optional<QVector<ModifierKeys>> modifierKeys(_XDisplay *display, unsigned int mask);

/// Presses and releases a key through the server, as a user does, together with those modifiers
/// that the user does not hold. Nobody else presses a key in between, and the listener for gestures
/// is told whose keys these are. XTest has to be ready: nothing may wait behind the grab for a lock
/// of Xlib.
/// @param keycode  0 for the modifiers alone
/// @return what was pressed, in this order
QVector<unsigned int> pressKey(_XDisplay *display, const QVector<ModifierKeys> &modifiers,
                               unsigned int keycode);
