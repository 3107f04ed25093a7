#pragma once

struct _XDisplay;

/// No other client's requests are served while it exists, so that nobody changes the keyboard or
/// presses a key in between. The whole desk waits: to be held for a few milliseconds, never over a
/// pause.
class ServerGrab {
public:
    /// @param display  not owned, outlives the object
    explicit ServerGrab(_XDisplay *display);
    ~ServerGrab();
    ServerGrab(const ServerGrab &) = delete;
    ServerGrab &operator=(const ServerGrab &) = delete;

private:
    _XDisplay *m_display;
};
