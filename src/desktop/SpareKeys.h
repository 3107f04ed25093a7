#pragma once

#include <QVector>

#include <array>
#include <optional>

struct _XDisplay;
struct _XkbDesc;

/// Lends the keycodes that no layout uses to symbols that no layout holds: one symbol plain,
/// another with Shift.
///
/// A symbol stays on its keycode until others need the place or all are given back: whoever has not
/// read an earlier key by then reads another symbol instead. What is lent is also written to a
/// property of the root window, from which the next process learns what one that was killed left
/// behind. Every operation that talks to the server is to be called with the server grabbed.
class SpareKeys {
public:
    /// A symbol's place.
    struct Place {
        unsigned char keycode;
        unsigned int state; ///< the modifiers that select it
    };
    /// Whether a symbol that is in the way may lose its place.
    enum class Replace { No, Yes };

    /// @param display  not owned, outlives this object
    explicit SpareKeys(_XDisplay *display);

    /// Takes note of a new keyboard map: what is no longer on its keycode is forgotten.
    void follow(const _XkbDesc &map);
    /// Says which keycodes no layout uses.
    void setUnused(const QVector<unsigned char> &keycodes);

    /// How many symbols can be lent a place at a time.
    int capacity() const { return m_keys.size() * Levels; }
    QVector<unsigned char> lentKeycodes() const;
    /// Whether no layout uses the keycode, be it lent or free.
    bool contains(unsigned char keycode) const;
    std::optional<Place> find(unsigned long keysym) const;
    enum class Lending {
        AllThere, ///< nothing had to be done
        Lent,     ///< each has a place now; clients learn of it before the keys that come after
        NoRoom,   ///< nothing has changed: others would have to be replaced
    };
    /// Gives each of these symbols, at most capacity(), a place.
    Lending lend(const QVector<unsigned long> &keysyms, Replace replace);
    /// The keycode that is lent to this symbol alone; 0 if none is.
    unsigned char findWhole(unsigned long keysym) const;
    /// Puts one symbol on a keycode of its own, whatever modifiers are held.
    /// @return its keycode; 0 if there is no room
    unsigned char lendWhole(unsigned long keysym, Replace replace);
    void giveBack();

private:
    static constexpr int Levels = 2;
    struct Key {
        bool isLent() const { return symbols[0] != 0 || symbols[1] != 0; }

        unsigned char keycode;
        std::array<unsigned long, Levels> symbols; ///< 0 for a free one
    };

    void adoptLeftovers();
    void map(const Key &key);
    void leaveNote();

    _XDisplay *m_display;
    QVector<Key> m_keys;
};
