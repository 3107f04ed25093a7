#pragma once

#include <atomic>

struct _XDisplay;

/// Catches the protocol errors of one connection while it exists, so that a window which vanished
/// does not end the program. Errors of other connections go on to the handler that stood before.
///
/// Scopes of several connections may overlap on several threads. The destructor waits for the
/// server, should it still have requests to answer, so that no error of this scope arrives after
/// it.
class XErrorScope {
public:
    /// @param display  not owned, outlives the scope
    explicit XErrorScope(_XDisplay *display);
    ~XErrorScope();
    XErrorScope(const XErrorScope &) = delete;
    XErrorScope &operator=(const XErrorScope &) = delete;

    /// The code of the first error that has arrived so far, 0 if none.
    int errorCode() const { return m_errorCode; }

    _XDisplay *display() const { return m_display; }
    /// For the error handler: keeps the first code.
    void record(int errorCode);

private:
    _XDisplay *m_display;
    std::atomic<int> m_errorCode{0};
};
