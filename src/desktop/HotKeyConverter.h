#pragma once

#include "core/ITypeConverter.h"
#include "desktop/HotKeyInfo.h"

#include <Qt>

class QKeyEvent;

/// Converts key combinations between their value, their text such as `Ctrl+Shift+F5`, and the
/// events and modifier flags of Qt. To be used on the main thread.
class HotKeyConverter : public ITypeConverter<HotKeyInfo> {
public:
    virtual HotKeyInfo HotKeyFromEvent(const QKeyEvent *event) const = 0;
    virtual Qt::KeyboardModifiers GetQtModifiers(const HotKeyInfo *info) const = 0;
    /// Sets the bits of the given flags, or clears them; the others stay.
    virtual void SetQtModifiers(HotKeyInfo *info, Qt::KeyboardModifiers flags, bool on) const = 0;
};
