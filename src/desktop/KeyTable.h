#pragma once

#include <QHash>
#include <QVector>

struct _XDisplay;
struct _XkbDesc;

/// What to press for one character.
struct XKey {
    wchar_t ch;            ///< the code point that the key yields, 0 if none
    unsigned char keycode; ///< 0 if the key has none
    unsigned long keysym;
    unsigned int state; ///< modifiers and layout group, as a key event carries them
    bool onKeyboard;    ///< false if a spare keycode has to be lent to it
};

/// The symbols of all layouts that the keyboard has at one moment, and the keycodes that have none.
class KeyTable {
public:
    /// Without any key.
    KeyTable() = default;
    /// @param lent  keycodes that are left out, since what is on them is of no layout
    KeyTable(_XDisplay *display, const _XkbDesc &map, const QVector<unsigned char> &lent);

    /// The lowest key of a code point. One that no layout has comes with its symbol and without a
    /// keycode; without either if no symbol can stand for it.
    XKey wchar2key(wchar_t ch) const;
    /// The lowest key of a symbol; its keycode is 0 if no layout has it.
    XKey symbol2key(unsigned long keysym) const;
    /// Keycodes without any symbol and modifier, ascending.
    const QVector<unsigned char> &unused() const { return m_unused; }

private:
    void addLineBreaks(_XDisplay *display, const QVector<unsigned char> &lent);
    void addKeycode(const _XkbDesc &map, unsigned char keycode, unsigned int modifier);
    void addKey(const XKey &key);

    QVector<XKey> m_keys;
    /// Where the first key of a code point, and of a symbol, stands in the table.
    QHash<wchar_t, int> m_keyByChar;
    QHash<unsigned long, int> m_keyBySymbol;
    QVector<unsigned char> m_unused;
};
