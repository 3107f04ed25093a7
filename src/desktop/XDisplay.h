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

/// Lets several threads use Xlib, each on a connection of its own. To be called before anything of
/// Xlib's; its later versions need no such word.
void prepareXlibForThreads();

/// Connects to the server that DISPLAY names.
/// @return null if there is none
XDisplayPointer openDisplay();

/// Lets the process end, with status 1, when a connection of Xlib's breaks, whichever thread finds
/// that out. To be called once the application object exists, as Qt sets up something of its own.
void endWithServer();

/// Takes all waiting events off the connection. Nobody asked for them, yet each change of a
/// keyboard map sends some; reading them also makes Xlib forget the map that it knew before.
/// @return whether the keyboard's map has changed
bool drainEvents(_XDisplay *display);
