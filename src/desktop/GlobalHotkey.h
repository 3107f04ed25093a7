#pragma once

#include "desktop/Hotkey.h"

#include <QElapsedTimer>
#include <QObject>

/// Follows the edges of one plain key and tells when its gesture is complete. Lives on the main
/// thread; the time between two edges is the time between their deliveries there.
class GlobalHotkey : public QObject {
    Q_OBJECT

public:
    /// A single click.
    GlobalHotkey(int hotkeyClass, int hotkeyId, Qt::Key key, int modifiers, QObject *parent);
    /// One edge of the given kind.
    GlobalHotkey(int hotkeyClass, int hotkeyId, Qt::Key key, int modifiers, KeyPressType pressType,
                 QObject *parent);
    /// Several clicks in a row.
    /// @param requiredCount  at least 1; less is taken as 1
    GlobalHotkey(int hotkeyClass, int hotkeyId, Qt::Key key, int modifiers, int requiredCount,
                 QObject *parent);

    int hotkeyClass() const { return m_hotkeyClass; }
    int hotkeyId() const { return m_hotkeyId; }
    Qt::Key key() const { return m_key; }
    int modifiers() const { return m_modifiers; }
    KeyPressType pressType() const { return m_pressType; }

    void enable();
    /// Also forgets what was counted.
    void disable();

    /// Takes one edge of any key.
    /// @return true if it completes the gesture
    bool takeEdge(bool isUp, int qtKey);

private:
    GlobalHotkey(int hotkeyClass, int hotkeyId, Qt::Key key, int modifiers, KeyPressType pressType,
                 int requiredCount, QObject *parent);
    bool countEdge();
    void reset();

    /// Between two counted edges, milliseconds.
    const int m_maxInterval = 250;
    KeyPressType m_pressType;
    Qt::Key m_key;
    int m_modifiers;
    int m_requiredCount;
    bool m_enabled = false;
    int m_hotkeyClass;
    int m_hotkeyId;
    /// The key's last edge was a press.
    bool m_down = false;
    int m_count = 0;
    QElapsedTimer m_timer;
};
