#pragma once

#include <atomic>

struct _XDisplay;

/// Catches the protocol errors of one connection while it exists, so that a window which vanished
/// does not end the program. Errors of other connections go on to the handler that stood before.
/// Scopes of one connection nest on one thread: an error belongs to the innermost in which its
/// request was sent.
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
    /// The number of the first request that was sent in this scope.
    unsigned long firstRequest() const { return m_firstRequest; }
    /// For the error handler: keeps the first code.
    void record(int errorCode);

private:
    _XDisplay *m_display;
    const unsigned long m_firstRequest;
    std::atomic<int> m_errorCode{0};
};
