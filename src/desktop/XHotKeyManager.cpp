#include "desktop/XHotKeyManager.h"

#include "core/workers/SubService.h"
#include "desktop/GlobalHotkey.h"
#include "desktop/KeyboardListener.h"

XHotKeyManager::XHotKeyManager() {
    keyboardHookReg();
    applyHotkeySettings();
    startKeyListener();
}

XHotKeyManager::~XHotKeyManager() {
    keyboardHookUnreg();
}

bool XHotKeyManager::IsInitialized() const {
    return m_listener && m_listener->IsInitialized();
}

void XHotKeyManager::applyHotkeySettings(HotkeyClass hotkeyClass, int hotkeyId) {
    if (!m_listener)
        return;
    m_listener->ResetKeys(hotkeyClass == Push2TalkHotkey);
    for (GlobalHotkey *hotkey : qAsConst(m_hotkeys)) {
        if (hotkey->hotkeyClass() == hotkeyClass && hotkey->hotkeyId() == hotkeyId) {
            hotkey->enable();
            m_listener->AddKey(hotkey->key(), hotkey->modifiers());
        } else {
            hotkey->disable();
        }
    }
}

void XHotKeyManager::keyboardHookReg() {
    auto listener = std::make_unique<KeyboardListener>();
    m_listener = listener.get();
    m_service = std::make_unique<SubService>(listener.release(), true);
    connect(m_listener, &KeyboardListener::keyEventAction, this, &XHotKeyManager::onKeyEvent);
}

void XHotKeyManager::keyboardHookUnreg() {
    if (!m_service)
        return;
    stopKeyListener();
    disconnect(m_listener, &KeyboardListener::keyEventAction, this, &XHotKeyManager::onKeyEvent);
    m_listener = nullptr;
    m_service.reset();
}

void XHotKeyManager::startKeyListener() {
    if (m_service)
        m_service->Start();
}

void XHotKeyManager::stopKeyListener() {
    if (m_service)
        m_service->Stop();
}

void XHotKeyManager::onKeyEvent(bool isUp, int qtKey) {
    checkHotkeys(isUp, qtKey);
}
