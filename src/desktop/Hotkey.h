#pragma once

#include "core/Enum.h"

/// The kind of gesture; goes as an int in signals.
enum HotkeyClass {
    ToggleHotkey = 0,   ///< a double press: each one changes the mode
    Push2TalkHotkey = 1 ///< recognition runs while the key is down
};

/// The edge of a key on which a gesture counts; goes as an int in signals.
enum KeyPressType {
    KeyClick = 0, ///< the release; the press only marks the key as down
    KeyDown = 1,  ///< the press; the release resets the count
    KeyUp = 2     ///< the release; the press resets the count
};

/// The gestures of the class ToggleHotkey.
enum class Hotkey { DoubleCtrl = 0, DoubleCapsLock = 1 };

/// The gestures of the class Push2TalkHotkey.
enum class Push2TalkKey { Ctrl = 0, Pause = 1 };

template <>
const Enum<Hotkey>::Container Enum<Hotkey>::Values;
template <>
const Enum<Push2TalkKey>::Container Enum<Push2TalkKey>::Values;
