#include "desktop/SpareKeys.h"

#include <QtGlobal>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <algorithm>
#include <memory>

namespace {

/// In the note: the keycode and the symbols of each lent key.
constexpr int NoteFields = 3;

Atom noteName(Display *display) {
    return XInternAtom(display, "_VELLUMAR_SPARE_KEYS", False);
}

} // namespace

SpareKeys::SpareKeys(_XDisplay *display) : m_display(display) {
    adoptLeftovers();
}

void SpareKeys::adoptLeftovers() {
    constexpr long Longest = 256L * NoteFields;
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char *content = nullptr;
    XGetWindowProperty(m_display, DefaultRootWindow(m_display), noteName(m_display), 0, Longest,
                       False, XA_CARDINAL, &type, &format, &count, &left, &content);
    const std::unique_ptr<unsigned char, int (*)(void *)> owner(content, XFree);
    constexpr int LongFormat = 32;
    if (type != XA_CARDINAL || format != LongFormat)
        return;
    const auto *fields = reinterpret_cast<const unsigned long *>(content);
    for (; count >= NoteFields; count -= NoteFields, fields += NoteFields)
        m_keys.append(Key{static_cast<unsigned char>(fields[0]), {fields[1], fields[2]}});
}

void SpareKeys::follow(const _XkbDesc &map) {
    const auto isElsewhere = [&map](const Key &key) {
        if (!key.isLent() || key.keycode < map.min_key_code || key.keycode > map.max_key_code ||
            XkbKeyNumGroups(&map, key.keycode) != 1 ||
            XkbKeyGroupWidth(&map, key.keycode, 0) < Levels)
            return true;
        const KeySym plain = XkbKeySymEntry(&map, key.keycode, 0, 0);
        const KeySym shifted = XkbKeySymEntry(&map, key.keycode, 1, 0);
        return plain != key.symbols[0] || shifted != (key.symbols[1] ? key.symbols[1] : plain);
    };
    m_keys.erase(std::remove_if(m_keys.begin(), m_keys.end(), isElsewhere), m_keys.end());
}

void SpareKeys::setUnused(const QVector<unsigned char> &keycodes) {
    const auto isFree = [](const Key &key) { return !key.isLent(); };
    m_keys.erase(std::remove_if(m_keys.begin(), m_keys.end(), isFree), m_keys.end());
    for (const unsigned char keycode : keycodes)
        m_keys.append(Key{keycode, {}});
}

QVector<unsigned char> SpareKeys::lentKeycodes() const {
    QVector<unsigned char> keycodes;
    for (const Key &key : m_keys) {
        if (key.isLent())
            keycodes.append(key.keycode);
    }
    return keycodes;
}

bool SpareKeys::contains(unsigned char keycode) const {
    return std::any_of(m_keys.begin(), m_keys.end(),
                       [keycode](const Key &key) { return key.keycode == keycode; });
}

std::optional<SpareKeys::Place> SpareKeys::find(unsigned long keysym) const {
    if (keysym == NoSymbol)
        return std::nullopt;
    for (const Key &key : m_keys) {
        if (key.symbols[0] == keysym)
            return Place{key.keycode, 0};
        if (key.symbols[1] == keysym)
            return Place{key.keycode, ShiftMask};
    }
    return std::nullopt;
}

SpareKeys::Lending SpareKeys::lend(const QVector<unsigned long> &keysyms, Replace replace) {
    QVector<unsigned long> missing;
    for (const unsigned long keysym : keysyms) {
        if (!find(keysym))
            missing.append(keysym);
    }
    if (missing.isEmpty())
        return Lending::AllThere;
    QVector<Key> changed = m_keys;
    int placed = 0;
    const auto fill = [&](const auto &isFree) {
        for (Key &key : changed) {
            for (unsigned long &symbol : key.symbols) {
                if (placed < missing.size() && isFree(symbol))
                    symbol = missing.at(placed++);
            }
        }
    };
    fill([](unsigned long symbol) { return symbol == NoSymbol; });
    if (replace == Replace::Yes)
        fill([&](unsigned long symbol) { return !keysyms.contains(symbol); });
    if (placed < missing.size())
        return Lending::NoRoom;
    m_keys.swap(changed);
    for (int index = 0; index < m_keys.size(); ++index) {
        if (m_keys.at(index).symbols != changed.at(index).symbols)
            map(m_keys.at(index));
    }
    leaveNote();
    return Lending::Lent;
}

unsigned char SpareKeys::findWhole(unsigned long keysym) const {
    const std::array<unsigned long, Levels> both{keysym, keysym};
    const auto key = std::find_if(m_keys.begin(), m_keys.end(), [&both](const Key &candidate) {
        return candidate.symbols == both;
    });
    return key != m_keys.end() ? key->keycode : 0;
}

unsigned char SpareKeys::lendWhole(unsigned long keysym, Replace replace) {
    if (const unsigned char keycode = findWhole(keysym))
        return keycode;
    auto key = std::find_if(m_keys.begin(), m_keys.end(),
                            [](const Key &candidate) { return !candidate.isLent(); });
    if (key == m_keys.end() && replace == Replace::Yes)
        key = m_keys.begin();
    if (key == m_keys.end())
        return 0;
    key->symbols = {keysym, keysym};
    map(*key);
    leaveNote();
    return key->keycode;
}

void SpareKeys::giveBack() {
    for (Key &key : m_keys) {
        if (!key.isLent())
            continue;
        key.symbols = {};
        map(key);
    }
    leaveNote();
}

void SpareKeys::map(const Key &key) {
    // A letter given alone would become a pair of small and capital letter.
    KeySym levels[Levels] = {key.symbols[0], key.symbols[1] ? key.symbols[1] : key.symbols[0]};
    XChangeKeyboardMapping(m_display, key.keycode, Levels, levels, 1);
}

void SpareKeys::leaveNote() {
    QVector<unsigned long> note;
    for (const Key &key : qAsConst(m_keys)) {
        if (key.isLent())
            note << key.keycode << key.symbols[0] << key.symbols[1];
    }
    const Window root = DefaultRootWindow(m_display);
    constexpr int LongFormat = 32;
    if (note.isEmpty())
        XDeleteProperty(m_display, root, noteName(m_display));
    else
        XChangeProperty(m_display, root, noteName(m_display), XA_CARDINAL, LongFormat,
                        PropModeReplace, reinterpret_cast<const unsigned char *>(note.constData()),
                        note.size());
}
