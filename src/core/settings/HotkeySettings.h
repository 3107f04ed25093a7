#pragma once

#include "core/settings/Setting.h"

/// The gesture that starts and stops recognition.
class HotkeySettings : public Settings {
public:
    HotkeySettings() : Settings(QStringLiteral("HotKeys")) {}

    Setting<bool> UseHotkey{this, QStringLiteral("UseHotkey"), true};
    Setting<QString> HotKey{this, QStringLiteral("HotKey"), QStringLiteral("DoubleCtrl")};
    Setting<QString> P2TKey{this, QStringLiteral("P2TKey"), QStringLiteral("Ctrl")};
};
