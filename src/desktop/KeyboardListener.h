#pragma once

#include "core/workers/RepeatWorker.h"
#include "desktop/XDisplay.h"

#include <QList>
#include <QMutex>

/// Observes the keys of the whole X session without grabbing any, and reduces them to the edges
/// of at most one held key. What the program itself presses (OwnKeyMarks) is no edge.
///
/// AddKey() and ResetKeys() are to be called while the worker is stopped, IsInitialized() at any
/// time from any thread. Without a display or without XInput 2 the worker idles.
class KeyboardListener : public RepeatWorker {
    Q_OBJECT

public:
    KeyboardListener();

    /// True while the listener is connected to the X server.
    bool IsInitialized() const;
    /// Makes a key known: Control, CapsLock or Pause; any other adds nothing.
    void AddKey(Qt::Key key, int modifiers);
    /// Forgets all keys.
    /// @param pushToTalk  whether a held key stays held when another one is pressed
    void ResetKeys(bool pushToTalk);

signals:
    /// @param qtKey  -1 for a key that is not known, and for a held key that another one cancels
    void keyEventAction(bool isUp, int qtKey);

protected:
    void initialize() override;
    void cleanUp() override;
    void repeatableWork(CancellationCondition *cancellation) override;

private:
    /// One key of X for a key of Qt.
    struct KeyEntry {
        Qt::Key qtKey;
        unsigned long keysym;
        int keycode; ///< known from initialize() on; 0 if no key has the symbol
        int modifiers;
    };

    bool hasRawKeys();
    bool selectRawKeys();
    void disconnectFromServer();
    void readEvent();
    bool isXTestDevice(int deviceId);
    void takeEdge(int keycode, bool isPress);
    int getQtKey(int keycode) const;

    mutable QMutex m_mutex;
    QList<KeyEntry> m_keys;
    XDisplayPointer m_display;
    int m_opcode = 0;
    /// Gets the marks of own keys; goes with the connection.
    unsigned long m_window = 0;
    /// What is pressed through XTest now comes from this program.
    bool m_areOwnKeys = false;
    /// The keycode of the key held, 0 if none.
    int m_held = 0;
    bool m_pushToTalk = false;
};
