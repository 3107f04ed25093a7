#include "desktop/KeyTable.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <memory>
#include <optional>
#include <xkbcommon/xkbcommon.h>

namespace {

/// Code points from here on have a symbol of the same number plus this.
constexpr unsigned long UnicodeSymbols = 0x1000000;

struct ModifierMapCloser {
    void operator()(XModifierKeymap *map) const { XFreeModifiermap(map); }
};
using ModifierMap = std::unique_ptr<XModifierKeymap, ModifierMapCloser>;

/// The modifier that a key itself is, as a bit; 0 if it is none.
unsigned int modifierOf(const XModifierKeymap *map, int keycode) {
    constexpr int Rows = 8;
    for (int row = 0; row < Rows; ++row) {
        const KeyCode *first = map->modifiermap + row * map->max_keypermod;
        for (int column = 0; column < map->max_keypermod && first[column] != 0; ++column) {
            if (first[column] == keycode)
                return 1U << row;
        }
    }
    return 0;
}

/// The modifiers that select a level of a key; nothing if none do.
std::optional<unsigned int> levelModifiers(const XkbKeyTypeRec &type, int level) {
    for (int index = 0; index < type.map_count; ++index) {
        const XkbKTMapEntryRec &entry = type.map[index];
        // With the real modifiers that stand for virtual ones, as for the third level.
        if (entry.active && entry.level == level)
            return entry.mods.mask;
    }
    return level == 0 ? std::optional<unsigned int>(0) : std::nullopt;
}

bool hasSymbol(const _XkbDesc &map, unsigned char keycode) {
    const KeySym *first = XkbKeySymsPtr(&map, keycode);
    for (int index = 0; index < XkbKeyNumSyms(&map, keycode); ++index) {
        if (first[index] != NoSymbol)
            return true;
    }
    return false;
}

} // namespace

KeyTable::KeyTable(_XDisplay *display, const _XkbDesc &map, const QVector<unsigned char> &lent) {
    addLineBreaks(display, lent);
    const ModifierMap modifiers(XGetModifierMapping(display));
    if (!modifiers)
        return;
    for (int code = map.min_key_code; code <= map.max_key_code; ++code) {
        const auto keycode = static_cast<unsigned char>(code);
        if (lent.contains(keycode))
            continue;
        const unsigned int modifier = modifierOf(modifiers.get(), keycode);
        if (hasSymbol(map, keycode))
            addKeycode(map, keycode, modifier);
        else if (modifier == 0)
            m_unused.append(keycode);
    }
}

void KeyTable::addLineBreaks(_XDisplay *display, const QVector<unsigned char> &lent) {
    // A new line is Shift+Return: a plain Return would send the form in many an application. It
    // takes the real key if there is one, since browsers know Return by its keycode, not its
    // symbol.
    KeyCode keycode = XKeysymToKeycode(display, XK_Return);
    if (lent.contains(keycode) || XkbKeycodeToKeysym(display, keycode, 0, 0) != XK_Return)
        keycode = 0;
    for (const wchar_t lineBreak : {L'\n', L'\u00B6'})
        addKey({lineBreak, keycode, XK_Return, ShiftMask, keycode != 0});
}

void KeyTable::addKeycode(const _XkbDesc &map, unsigned char keycode, unsigned int modifier) {
    constexpr int GroupShift = 13;
    for (int group = 0; group < XkbKeyNumGroups(&map, keycode); ++group) {
        const unsigned int state = (static_cast<unsigned int>(group) << GroupShift) | modifier;
        const XkbKeyTypeRec &type = *XkbKeyKeyType(&map, keycode, group);
        for (int level = 0; level < type.num_levels; ++level) {
            const auto levelState = levelModifiers(type, level);
            if (!levelState)
                continue;
            const KeySym keysym = XkbKeySymEntry(&map, keycode, level, group);
            const auto ch =
                static_cast<wchar_t>(xkb_keysym_to_utf32(static_cast<xkb_keysym_t>(keysym)));
            addKey({ch, keycode, keysym, state | *levelState, true});
        }
    }
}

void KeyTable::addKey(const XKey &key) {
    const int index = m_keys.size();
    m_keys.append(key);
    // Keys without a character or a symbol answer to none.
    if (key.ch != 0 && !m_keyByChar.contains(key.ch))
        m_keyByChar.insert(key.ch, index);
    if (key.keysym != NoSymbol && !m_keyBySymbol.contains(key.keysym))
        m_keyBySymbol.insert(key.keysym, index);
}

XKey KeyTable::wchar2key(wchar_t ch) const {
    const auto byChar = m_keyByChar.constFind(ch);
    if (byChar != m_keyByChar.constEnd())
        return m_keys.at(*byChar);
    constexpr wchar_t Latin1End = 256;
    const unsigned long code = static_cast<char32_t>(ch);
    const unsigned long keysym = ch < Latin1End ? code : code + UnicodeSymbols;
    // The symbols above all have names, which Xlib would allocate and never free.
    if (ch < Latin1End && !XKeysymToString(keysym))
        return {ch, 0, NoSymbol, 0, false};
    XKey key = symbol2key(keysym);
    if (key.keycode == 0)
        key.ch = ch;
    return key;
}

XKey KeyTable::symbol2key(unsigned long keysym) const {
    const auto bySymbol = m_keyBySymbol.constFind(keysym);
    return bySymbol != m_keyBySymbol.constEnd() ? m_keys.at(*bySymbol)
                                                : XKey{0, 0, keysym, 0, false};
}
