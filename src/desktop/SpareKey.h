#pragma once

struct _XDisplay;

/// Lends a keycode that no key of the keyboard uses to symbols that no layout holds, one at a
/// time, and gives it back when it goes out of scope.
class SpareKey {
public:
    /// @param display  not owned, outlives this object
    explicit SpareKey(_XDisplay *display) : m_display(display) {}
    ~SpareKey();
    SpareKey(const SpareKey &) = delete;
    SpareKey &operator=(const SpareKey &) = delete;

    /// Puts a symbol on the spare keycode, whatever modifiers or layout are active. Clients learn
    /// of it a little later; whoever has not read an earlier symbol by now reads this one instead.
    /// @return the keycode, 0 if every keycode is in use
    unsigned char map(unsigned long keysym);

private:
    void changeMapping(unsigned long keysym);

    _XDisplay *m_display;
    /// 0 until the first symbol.
    unsigned char m_keycode = 0;
};
