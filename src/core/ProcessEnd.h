#pragma once

/// Ends the process with a status, once everything of the program's own has been taken down: logs
/// and streams are flushed, the destructors of static objects are left out. Among those is one that
/// must not run: Qt's sound engine disconnects from PulseAudio without the lock of its own loop,
/// whose thread now and then aborts the process over it. The main thread calls this last.
[[noreturn]] void endProcess(int status);
