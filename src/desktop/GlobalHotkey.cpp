#include "desktop/GlobalHotkey.h"

GlobalHotkey::GlobalHotkey(int hotkeyClass, int hotkeyId, Qt::Key key, int modifiers,
                           QObject *parent)
    : GlobalHotkey(hotkeyClass, hotkeyId, key, modifiers, KeyClick, 1, parent) {}

GlobalHotkey::GlobalHotkey(int hotkeyClass, int hotkeyId, Qt::Key key, int modifiers,
                           KeyPressType pressType, QObject *parent)
    : GlobalHotkey(hotkeyClass, hotkeyId, key, modifiers, pressType, 1, parent) {}

GlobalHotkey::GlobalHotkey(int hotkeyClass, int hotkeyId, Qt::Key key, int modifiers,
                           int requiredCount, QObject *parent)
    : GlobalHotkey(hotkeyClass, hotkeyId, key, modifiers, KeyClick, requiredCount, parent) {}

GlobalHotkey::GlobalHotkey(int hotkeyClass, int hotkeyId, Qt::Key key, int modifiers,
                           KeyPressType pressType, int requiredCount, QObject *parent)
    : QObject(parent),
      m_pressType(pressType),
      m_key(key),
      m_modifiers(modifiers),
      m_requiredCount(qMax(1, requiredCount)),
      m_hotkeyClass(hotkeyClass),
      m_hotkeyId(hotkeyId) {}

void GlobalHotkey::enable() {
    m_enabled = true;
    // The listener forgets the held key at its restart, so that release may never come.
    m_down = false;
}

void GlobalHotkey::disable() {
    m_enabled = false;
    reset();
}

bool GlobalHotkey::takeEdge(bool isUp, int qtKey) {
    if (!m_enabled)
        return false;
    if (qtKey != m_key || m_modifiers != 0) {
        reset();
        return false;
    }
    const bool isRepeat = !isUp && m_down;
    if (isRepeat)
        return false;
    m_down = !isUp;
    const bool counts = m_pressType == KeyDown ? !isUp : isUp;
    if (counts)
        return countEdge();
    if (m_pressType != KeyClick)
        reset();
    return false;
}

bool GlobalHotkey::countEdge() {
    if (m_count > 0 && m_requiredCount >= 2 && m_timer.hasExpired(m_maxInterval))
        reset();
    ++m_count;
    m_timer.start();
    if (m_count < m_requiredCount)
        return false;
    reset();
    return true;
}

void GlobalHotkey::reset() {
    m_count = 0;
    m_timer.start();
}
