#pragma once

#include <atomic>

struct _XDisplay;

/// Tells when a window has read all that was sent to it before: windows that list _NET_WM_PING
/// answer a message in the order in which they read their events.
///
/// Belongs to the thread of its connection. A window that has closed is no error of the caller's.
class WindowPing {
public:
    /// @param display  not owned, outlives this object
    explicit WindowPing(_XDisplay *display);

    /// The window that answers for the given one: itself or the nearest one around it that has
    /// protocols. 0 if that one does not answer.
    unsigned long answering(unsigned long window) const;
    /// Asks and waits.
    /// @param window     one that answers
    /// @param cancelled  ends the wait within a few dozen milliseconds
    /// @return true if it has answered or is gone; false if it stayed silent for so long
    bool hasRead(unsigned long window, int timeoutMs, const std::atomic<bool> &cancelled);

private:
    void ask(unsigned long window);
    bool isAnswered(unsigned long window);
    void listen(bool on);

    _XDisplay *m_display;
    const unsigned long m_root;
    const unsigned long m_protocols;
    const unsigned long m_ping;
    /// Of the last question; the answer carries it, too.
    long m_number = 0;
};
