#include "desktop/XHotKeyConverter.h"

#include <QDebug>
#include <QKeyEvent>
#include <QStringList>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>

namespace {

constexpr unsigned int KeypadMark = Mod2Mask;
constexpr unsigned int NativeModifiers = ShiftMask | ControlMask | Mod1Mask | Mod4Mask;

struct Modifier {
    const char *name;
    unsigned int mask;
    Qt::KeyboardModifier flag;
};

// In the order in which the text names them.
constexpr Modifier Modifiers[] = {
    {"Ctrl", ControlMask, Qt::ControlModifier},
    {"Alt", Mod1Mask, Qt::AltModifier},
    {"Shift", ShiftMask, Qt::ShiftModifier},
    {"Win", Mod4Mask, Qt::MetaModifier},
};

unsigned int modifierByName(const QString &name) {
    for (const Modifier &modifier : Modifiers) {
        if (name.compare(QLatin1String(modifier.name), Qt::CaseInsensitive) == 0)
            return modifier.mask;
    }
    return 0;
}

void logValue(const char *pattern, const HotKeyInfo &info) {
    qDebug().noquote() << QString::fromLatin1(pattern).arg(info.code).arg(info.modifiers, 0, 16);
}

} // namespace

XHotKeyConverter::XHotKeyConverter() : m_display(openDisplay()) {}

QString XHotKeyConverter::ConvertToString(const HotKeyInfo &info) const {
    if (!m_display)
        return QString();
    QStringList parts;
    for (const Modifier &modifier : Modifiers) {
        if (info.modifiers & modifier.mask)
            parts.append(QString::fromLatin1(modifier.name));
    }
    if (info.code != 0)
        parts.append(keyName(info));
    else if (info.keysym != NoSymbol && info.keysym != XK_VoidSymbol)
        parts.append(QString::fromLatin1(XKeysymToString(info.keysym)));
    return parts.join(QLatin1Char('+'));
}

QString XHotKeyConverter::keyName(const HotKeyInfo &info) const {
    drainEvents(m_display.get());
    const int level = info.modifiers & KeypadMark ? 1 : 0;
    const KeySym keysym =
        XkbKeycodeToKeysym(m_display.get(), static_cast<KeyCode>(info.code), 0, level);
    return QString::fromLatin1(XKeysymToString(keysym));
}

HotKeyInfo XHotKeyConverter::ConvertFromString(QString text) const {
    HotKeyInfo info;
    const QStringList parts = text.split(QLatin1Char('+'), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        if (const unsigned int modifier = modifierByName(part))
            info.modifiers |= modifier;
        else
            addKey(part, &info);
    }
    return info;
}

void XHotKeyConverter::addKey(const QString &name, HotKeyInfo *info) const {
    info->code = 0;
    info->keysym = XK_VoidSymbol;
    const KeySym keysym = XStringToKeysym(name.toUtf8().constData());
    if (!m_display || keysym == NoSymbol) // which X would find on the first key with a free level
        return;
    drainEvents(m_display.get());
    info->code = XKeysymToKeycode(m_display.get(), keysym);
    info->keysym = keysym;
    if (IsSymKeypadSpecial(static_cast<unsigned int>(keysym)))
        info->modifiers |= KeypadMark;
}

HotKeyInfo XHotKeyConverter::HotKeyFromEvent(const QKeyEvent *event) const {
    HotKeyInfo info;
    info.code = event->nativeScanCode();
    info.modifiers = event->nativeModifiers() & NativeModifiers;
    if (IsSymKeypadSpecial(event->nativeVirtualKey()))
        info.modifiers |= KeypadMark;
    logValue("RES:  %1/%2", info);
    logValue("      %1/%2", ConvertFromString(ConvertToString(info)));
    return info;
}

Qt::KeyboardModifiers XHotKeyConverter::GetQtModifiers(const HotKeyInfo *info) const {
    return NativeToQtModifiers(info->modifiers);
}

void XHotKeyConverter::SetQtModifiers(HotKeyInfo *info, Qt::KeyboardModifiers flags,
                                      bool on) const {
    const unsigned int bits = QtToNativeModifiers(flags);
    info->modifiers = on ? info->modifiers | bits : info->modifiers & ~bits;
}

unsigned int XHotKeyConverter::QtToNativeModifiers(Qt::KeyboardModifiers flags) {
    unsigned int modifiers = 0;
    for (const Modifier &modifier : Modifiers) {
        if (flags & modifier.flag)
            modifiers |= modifier.mask;
    }
    return modifiers;
}

Qt::KeyboardModifiers XHotKeyConverter::NativeToQtModifiers(unsigned int modifiers) {
    Qt::KeyboardModifiers flags;
    for (const Modifier &modifier : Modifiers)
        flags.setFlag(modifier.flag, modifiers & modifier.mask);
    return flags;
}

bool XHotKeyConverter::IsSymKeypadSpecial(unsigned int keysym) {
    return (keysym >= XK_KP_Home && keysym <= XK_KP_Insert) ||
           (keysym >= XK_KP_0 && keysym <= XK_KP_9);
}
