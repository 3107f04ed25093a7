#pragma once

#include <chrono>

/// Ends the process with a status: logs and streams are flushed, and nothing runs after it, neither
/// destructors of static objects nor what libraries have left to be done at an end: some of that
/// must not run while other threads do.
///
/// From any thread. Of several the first one decides on the status, the others wait for the end. A
/// log or a stream that cannot be flushed keeps the process for a few seconds at most.
///
/// exit() leads here, too: libraries call it in the middle of things, Qt and Xlib when the X server
/// has gone.
[[noreturn]] void endProcess(int status);

/// Ends the process with a status in a while, if nothing has ended it by then: for an end that may
/// be kept waiting. Any thread; returns at once.
void endProcessWithin(std::chrono::milliseconds limit, int status);

/// Keeps the memory of the process, in which is what was dictated, out of core files and from other
/// programs of the same user. Builds without NDEBUG are left open to the debugger.
void keepMemoryPrivate();
