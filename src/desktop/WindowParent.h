#pragma once

struct _XDisplay;

/// One step towards the root of the window tree.
struct WindowParent {
    unsigned long root = 0;
    unsigned long parent = 0;
    bool isKnown = false; ///< false if there is no such window
};

/// Asks the server; the error of a window that has gone is the caller's to catch.
WindowParent queryParent(_XDisplay *display, unsigned long window);
