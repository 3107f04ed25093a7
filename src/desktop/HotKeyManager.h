#pragma once

#include "desktop/Hotkey.h"

#include <QList>
#include <QObject>

class GlobalHotkey;

/// Decides which key events of the desk are the gesture that starts, stops or changes
/// recognition. It only listens: no key is taken away from anyone. Lives on the main thread.
class HotKeyManager : public QObject {
    Q_OBJECT

public:
    HotKeyManager();

    /// The one manager of the program, made at the first call.
    static HotKeyManager *getHotkeyManager();

    /// Whether key events can be seen at all.
    virtual bool IsInitialized() const = 0;
    /// Makes the stored gesture the current one; a stored text that is no gesture counts as the
    /// first of its class.
    void applyHotkeySettings();
    virtual void applyHotkeySettings(HotkeyClass hotkeyClass, int hotkeyId) = 0;

    virtual void keyboardHookReg() = 0;
    virtual void keyboardHookUnreg() = 0;
    virtual void startKeyListener() = 0;
    virtual void stopKeyListener() = 0;

public slots:
    /// Told when the user begins and ends to enter a key combination. On X11 the gesture stays
    /// live, as it grabs no key.
    virtual void muteListener() = 0;
    virtual void unmuteListener() = 0;
    /// Restarts the listener with the stored gesture.
    void onSettingsChanged();

signals:
    void activated(int hotkeyClass, int hotkeyId, int pressType);
    void activationModeChanged(int hotkeyClass, int hotkeyId);

protected:
    /// Shows one edge to every gesture; emits activated() at most once.
    /// @return whether it was emitted
    bool checkHotkeys(bool isUp, int qtKey);

    /// Children of this object, in the order in which they see an edge.
    QList<GlobalHotkey *> m_hotkeys;
};
