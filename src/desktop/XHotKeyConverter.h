#pragma once

#include "desktop/HotKeyConverter.h"
#include "desktop/XDisplay.h"

/// Names keys as X names their symbols, on a connection of its own. Without a display every text
/// is empty and every code is 0.
class XHotKeyConverter final : public HotKeyConverter {
public:
    XHotKeyConverter();

    /// The names joined by "+": Ctrl, Alt, Shift, Win, then the key. A key without a name leaves
    /// an empty last part.
    QString ConvertToString(const HotKeyInfo &info) const override;
    /// Never fails: an unknown key gives the code 0. The last of several keys counts.
    HotKeyInfo ConvertFromString(QString text) const override;

    HotKeyInfo HotKeyFromEvent(const QKeyEvent *event) const override;
    Qt::KeyboardModifiers GetQtModifiers(const HotKeyInfo *info) const override;
    void SetQtModifiers(HotKeyInfo *info, Qt::KeyboardModifiers flags, bool on) const override;

    /// Modifiers other than Shift, Control, Alt and Meta are dropped, either way.
    static unsigned int QtToNativeModifiers(Qt::KeyboardModifiers flags);
    static Qt::KeyboardModifiers NativeToQtModifiers(unsigned int modifiers);
    /// True for the keypad's digits and for what the same keys mean without NumLock, except for
    /// the key of the decimal point.
    static bool IsSymKeypadSpecial(unsigned int keysym);

private:
    QString keyName(const HotKeyInfo &info) const;
    void addKey(const QString &name, HotKeyInfo *info) const;

    XDisplayPointer m_display;
};
