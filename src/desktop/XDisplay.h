#pragma once

#include <memory>

// The structure behind Display of Xlib, whose headers stay out of ours.
struct _XDisplay;

struct XDisplayCloser {
    void operator()(_XDisplay *display) const;
};

/// One connection to the X server, closed with its owner. A connection belongs to one object and
/// is used by one thread at a time.
using XDisplayPointer = std::unique_ptr<_XDisplay, XDisplayCloser>;

/// Connects to the server that DISPLAY names.
/// @return null if there is none
XDisplayPointer openDisplay();

/// Takes all waiting events off the connection. Nobody asked for them, yet each change of a
/// keyboard map sends some; reading them also makes Xlib forget the map that it knew before.
/// @return whether the keyboard's map has changed
bool drainEvents(_XDisplay *display);
