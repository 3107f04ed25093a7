#pragma once

/// Ends the process with a status: logs and streams are flushed, and nothing runs after it, neither
/// destructors of static objects nor what libraries have left to be done at an end. Some of that
/// must not run while other threads do, and Qt's sound engine must not be destroyed at all: it
/// disconnects from PulseAudio without the lock of its own loop, whose thread now and then aborts
/// the process over it.
///
/// From any thread. Of several the first one decides on the status, the others wait for the end. A
/// log or a stream that cannot be flushed keeps the process for a few seconds at most.
///
/// exit() leads here, too: libraries call it in the middle of things, Qt and Xlib when the X server
/// has gone.
[[noreturn]] void endProcess(int status);

/// Keeps the memory of the process, in which is what was dictated, out of core files and from other
/// programs of the same user. Builds without NDEBUG are left open to the debugger.
void keepMemoryPrivate();
