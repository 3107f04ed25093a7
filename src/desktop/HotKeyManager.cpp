#include "desktop/HotKeyManager.h"

#include "core/settings/HotkeySettings.h"
#include "desktop/GlobalHotkey.h"
#include "desktop/XHotKeyManager.h"

namespace {

template <typename T>
int idByText(const QString &text) {
    try {
        return static_cast<int>(Enum<T>::FromInvariantString(text));
    } catch (const ConveterException &) {
        return 0;
    }
}

} // namespace

HotKeyManager::HotKeyManager()
    : m_hotkeys{
          new GlobalHotkey(Push2TalkHotkey, 0, Qt::Key_Control, 0, KeyDown, this),
          new GlobalHotkey(Push2TalkHotkey, 0, Qt::Key_Control, 0, KeyUp, this),
          new GlobalHotkey(Push2TalkHotkey, 1, Qt::Key_Pause, 0, KeyDown, this),
          new GlobalHotkey(Push2TalkHotkey, 1, Qt::Key_Pause, 0, KeyUp, this),
          new GlobalHotkey(ToggleHotkey, 0, Qt::Key_Control, 0, 2, this),
          new GlobalHotkey(ToggleHotkey, 1, Qt::Key_CapsLock, 0, 2, this),
      } {}

HotKeyManager *HotKeyManager::getHotkeyManager() {
    static XHotKeyManager manager;
    return &manager;
}

void HotKeyManager::applyHotkeySettings() {
    HotkeySettings settings;
    const bool isToggle = settings.UseHotkey;
    const HotkeyClass hotkeyClass = isToggle ? ToggleHotkey : Push2TalkHotkey;
    const int hotkeyId =
        isToggle ? idByText<Hotkey>(settings.HotKey) : idByText<Push2TalkKey>(settings.P2TKey);
    applyHotkeySettings(hotkeyClass, hotkeyId);
    emit activationModeChanged(hotkeyClass, hotkeyId);
}

void HotKeyManager::onSettingsChanged() {
    stopKeyListener();
    applyHotkeySettings();
    startKeyListener();
}

bool HotKeyManager::checkHotkeys(bool isUp, int qtKey) {
    bool isActivated = false;
    for (GlobalHotkey *hotkey : qAsConst(m_hotkeys)) {
        if (!hotkey->takeEdge(isUp, qtKey) || isActivated)
            continue;
        isActivated = true;
        emit activated(hotkey->hotkeyClass(), hotkey->hotkeyId(), hotkey->pressType());
    }
    return isActivated;
}
