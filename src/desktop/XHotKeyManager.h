#pragma once

#include "desktop/HotKeyManager.h"

#include <memory>

class KeyboardListener;
class SubService;

/// Sees the keys of an X session through a listener on a thread of its own, which the constructor
/// starts. Without a display nothing is ever activated.
class XHotKeyManager final : public HotKeyManager {
    Q_OBJECT

public:
    XHotKeyManager();
    ~XHotKeyManager() override;

    bool IsInitialized() const override;
    using HotKeyManager::applyHotkeySettings;
    /// The listener must be stopped.
    void applyHotkeySettings(HotkeyClass hotkeyClass, int hotkeyId) override;

    void keyboardHookReg() override;
    /// Stops the listener for good and frees it.
    void keyboardHookUnreg() override;
    void startKeyListener() override;
    void stopKeyListener() override;

public slots:
    /// Both do nothing: the gesture stays live.
    void muteListener() override {}
    void unmuteListener() override {}
    void onKeyEvent(bool isUp, int qtKey);

private:
    std::unique_ptr<SubService> m_service;
    /// Owned by the service.
    KeyboardListener *m_listener = nullptr;
};
