#pragma once

#include "desktop/TextWriter.h"
#include "desktop/XDisplay.h"

#include <QHash>
#include <QVector>

class SpareKey;

/// Types text by key events that are sent to one window, so that the user's own keyboard state
/// is left alone, and key combinations by fake presses that act as real ones.
///
/// The layouts are those of the moment of construction. Without a display every operation does
/// nothing and reports failure. Used by one thread at a time.
class XTextWriter final : public TextWriter {
public:
    /// What to press for one character.
    struct XKey {
        wchar_t ch;            ///< the code point that the key yields, 0 if none
        unsigned char keycode; ///< 0 if the key has none
        unsigned long keysym;
        unsigned int state; ///< modifiers and layout group, as a key event carries them
        bool onKeyboard;    ///< false if it is typed with pauses, through a spare keycode if it has
                            ///< none
    };

    XTextWriter();

    bool writeText(unsigned long window, const QString &text) override;
    bool writeKey(unsigned long window, const HotKeyInfo &key) override;
    unsigned long getFocusedWindow() override;
    bool getWindowRect(unsigned long window, QRect *rect) override;
    bool windowExists(unsigned long window) override;

private:
    /// Where one text goes.
    struct Target {
        unsigned long root;
        unsigned long window;
    };

    void addKey(const XKey &key);
    void buildKeyTable();
    XKey wchar2key(wchar_t ch) const;
    void typeKey(const Target &target, const XKey &key);
    void typeSlowly(const Target &target, XKey key, SpareKey &spare);
    void sendKey(unsigned long root, unsigned long window, unsigned long subwindow, const XKey &key,
                 bool press);

    XDisplayPointer m_display;
    QVector<XKey> m_keys;
    /// Where the first key of a code point, and of a symbol, stands in the table.
    QHash<wchar_t, int> m_keyByChar;
    QHash<unsigned long, int> m_keyBySymbol;
    /// Microseconds, 0 for none.
    int m_symbolDelay;
    int m_enterDelay;
};
